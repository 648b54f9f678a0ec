#include <algorithm>
#include <cmath>

#include "math/cubic/arc_length.h"
#include "tav/math/cubic_bezier.h"

namespace TavMath::CubicBezier {
namespace {

ArcLength OfControls(const DPoint p[4]) {
  const DVector d0 = p[1] - p[0], d1 = p[2] - p[1], d2 = p[3] - p[2];
  return {3.0 * d0, 6.0 * (d1 - d0), 3.0 * ((d2 - d1) - (d1 - d0))};
}

double Between(const ArcLength& arc, double t0, double t1) { return arc.scale() * arc.Over(t0, t1); }

/// The parameter into 0..1; NaN stays.
double Clamped(double t) { return t < 0 ? 0 : t > 1 ? 1 : t; }

double Parameter(const ArcLength& arc, double fraction) {
  if (fraction <= 0) return 0;
  if (fraction >= 1) return 1;
  return std::isnan(fraction) ? fraction : arc.ParameterAt(fraction);
}

}  // namespace

double Length(const DPoint p[4], LengthAccuracy) noexcept { return Between(OfControls(p), 0, 1); }

double Length(const DVector& k3, const DVector& k2, const DVector& k1, LengthAccuracy) noexcept {
  return Between({k1, 2.0 * k2, 3.0 * k3}, 0, 1);
}

double Length(const DVector d[3], LengthAccuracy) noexcept {
  return Between({d[0], 2.0 * (d[1] - d[0]), (d[2] - d[1]) - (d[1] - d[0])}, 0, 1);
}

double LengthTo(const DPoint p[4], double t, LengthAccuracy) noexcept {
  return Between(OfControls(p), 0, Clamped(t));
}

double LengthFrom(const DPoint p[4], double t, LengthAccuracy) noexcept {
  return Between(OfControls(p), Clamped(t), 1);
}

double GetCurveRelativeLengthParameter(const DPoint p[4], double fraction) noexcept {
  return Parameter(OfControls(p), fraction);
}

double GetCurveRelativeLengthParameter(const DVector& k3, const DVector& k2, const DVector& k1,
                                       double fraction) noexcept {
  return Parameter({k1, 2.0 * k2, 3.0 * k3}, fraction);
}

}  // namespace TavMath::CubicBezier
