#include "math/cubic/flatten_chord.h"

#include <algorithm>
#include <cmath>

namespace TavMath {
namespace {

/// The maximum over s in [0, 1] of s (1 - s) |alpha + s beta|.
double LopsidedMaximum(double alpha, double beta) {
  if (beta == 0) return 0.25 * std::abs(alpha);
  // With s = 1/2 + u: 3 beta u^2 + 2 m u - beta / 4 = 0, where m = alpha + beta / 2.
  const double m = alpha + 0.5 * beta;
  const double root = std::sqrt(m * m + 0.75 * beta * beta), q = m < 0 ? root - m : -(m + root);
  double largest = 0;
  for (const double u : {q / (3 * beta), -0.25 * beta / q}) {
    if (std::abs(u) <= 0.5) largest = std::max(largest, (0.25 - u * u) * std::abs(m + u * beta));
  }
  return largest;
}

/// The use when the curve turns back along the chord h c. The deviation is squared and times |c|^2.
ChordUse WithOvershoot(const FromCorner& curve, const DVector& c, double h, double deviation,
                       const FlattenTolerance& tolerance) {
  const double chordSqrd = LengthSqrd(c);
  if (!(chordSqrd > tolerance.pointSqrd)) {
    // The chord is a point: the control polygon bounds the distance from it.
    const DVector q1 = (h / 3) * curve.d1, q2 = 2.0 * q1 + (h * h / 3) * curve.d2;
    return {std::max(LengthSqrd(q1), LengthSqrd(q2)), tolerance.sqrd};
  }
  const double a0 = Dot(c, curve.d1), a1 = Dot(c, curve.d2), a2 = Dot(c, curve.d3);
  const auto advance = [&](double s) { return s * (a0 + s * (a1 + s * a2)); };
  // a0 + 2 a1 s + 3 a2 s^2 = 0 for s in (0, h).
  const double root = std::sqrt(std::max(a1 * a1 - 3 * a0 * a2, 0.0));
  const double q = a1 < 0 ? root - a1 : -(a1 + root);
  double excess = 0;
  for (const double s : {q / (3 * a2), a0 / q}) {
    if (s > 0 && s < h) excess = std::max({excess, -advance(s), advance(s) - h * chordSqrd});
  }
  return {deviation + excess * excess, tolerance.sqrd * chordSqrd};
}

}  // namespace

ChordUse FromCorner::UseOf(double h, const FlattenTolerance& tolerance) const noexcept {
  const DVector c = d1 + h * (d2 + h * d3);
  const double chordSqrd = LengthSqrd(c), limit = tolerance.sqrd * chordSqrd;
  const double beta = h * (x3 + h * x23), middle = x2 + h * x3 + 0.5 * beta, hh = h * h;
  const double mm = middle * middle, bb = beta * beta;
  double deviation = (hh * hh) * (mm * (1.0 / 16) + bb * kNearBeta);
  if (!(bb <= mm)) {
    const double lopsided = hh * LopsidedMaximum(x2 + h * x3, beta);
    deviation = lopsided * lopsided;
  }
  // Along the chord the curve must advance; its advance is a quadratic with these control values.
  const DVector m = d1 + h * d2;
  const double a0 = Dot(c, d1), a1 = Dot(c, m), a2 = Dot(c, m + h * (d2 + (3 * h) * d3));
  if (!(std::min(a0, std::min(a1, a2)) >= 0) || !(chordSqrd > tolerance.pointSqrd))
    return WithOvershoot(*this, c, h, deviation, tolerance);
  return {deviation, limit};
}

}  // namespace TavMath
