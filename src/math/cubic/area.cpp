#include "tav/math/cubic_bezier.h"

namespace TavMath::CubicBezier {

double GetAreaUnderBezier(const DVector& k3, const DVector& k2, const DVector& k1,
                          const DPoint& k0) noexcept {
  // The sum over i = 0..3, j = 1..3 of y_i j x_j / (i + j), where t^i t^(j-1) integrates to 1 / (i + j).
  const double constant = k0.y * (k1.x + k2.x + k3.x);
  const double linear = k1.y * (k1.x / 2 + k2.x * 2 / 3 + k3.x * 3 / 4);
  const double square = k2.y * (k1.x / 3 + k2.x / 2 + k3.x * 3 / 5);
  const double cube = k3.y * (k1.x / 4 + k2.x * 2 / 5 + k3.x / 2);
  return constant + (linear + (square + cube));
}

double GetAreaUnderBezier(const DPoint p[4]) noexcept {
  // The trapezoid under the chord, and the area between chord and curve from differences alone (Green's
  // theorem), so that a far origin costs no digits in the second part.
  const DVector a = p[1] - p[0], b = p[2] - p[0], c = p[3] - p[0];
  const double trapezoid = c.x * (0.5 * p[0].y + 0.5 * p[3].y);
  const double bulge = 3 * Cross(a, b) + 3 * Cross(a, c) + 6 * Cross(b, c);
  return trapezoid - bulge / 20;
}

}  // namespace TavMath::CubicBezier
