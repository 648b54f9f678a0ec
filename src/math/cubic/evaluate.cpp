#include "math/cubic/blossom.h"
#include "tav/math/cubic_bezier.h"

namespace TavMath::CubicBezier {

DPoint Evaluate(const DPoint p[4], double t) noexcept {
  const Weight w(t);
  return Blossom(p, w, w, w);
}

DVector Derivative(const DPoint p[4], double t) noexcept {
  const DVector d0 = p[1] - p[0], d1 = p[2] - p[1], d2 = p[3] - p[2];
  const double s = 1 - t;
  return 3.0 * (s * s * d0 + 2 * s * t * d1 + t * t * d2);
}

DVector SecondDerivative(const DPoint p[4], double t) noexcept {
  const DVector d0 = p[1] - p[0], d1 = p[2] - p[1], d2 = p[3] - p[2];
  return 6.0 * ((1 - t) * (d1 - d0) + t * (d2 - d1));
}

}  // namespace TavMath::CubicBezier
