#include <algorithm>
#include <cmath>
#include <limits>

#include "math/roots.h"
#include "math/tolerances.h"
#include "tav/math/cubic_bezier.h"

namespace TavMath::CubicBezier {
namespace {

double Largest(const DVector& v) { return std::max(std::abs(v.x), std::abs(v.y)); }

/// The size below which a derivative (in units of a polygon leg) is rounding noise.
double Noise(const DPoint p[4]) {
  const double legs = std::max({Largest(p[1] - p[0]), Largest(p[2] - p[1]), Largest(p[3] - p[2])});
  return legs * Tolerances::kVanishedDerivative;
}

DVector SafeTangent(double t, const DPoint p[4], double noise) {
  const DVector derivative = Derivative(p, t);
  if (Largest(derivative) > noise) return derivative;
  if (t >= 1) {
    if (Largest(p[3] - p[1]) > noise) return p[3] - p[1];
    return p[3] - p[0];
  }
  if (t <= 0) {
    if (Largest(p[2] - p[0]) > noise) return p[2] - p[0];
    return p[3] - p[0];
  }
  // A cusp inside the curve: the direction in which it leaves, that of the part beyond t.
  DPoint right[4];
  Split(t, p, nullptr, right);
  if (Largest(right[2] - right[0]) > noise) return right[2] - right[0];
  if (right[3] != right[0]) return right[3] - right[0];
  // So near to the end that the part beyond is a point: the direction in which the curve arrives.
  return SafeTangent(1, p, noise);
}

}  // namespace

DVector SafeBezierTangent(double t, const DPoint p[4]) noexcept { return SafeTangent(t, p, Noise(p)); }

DVector SafeBezierTangent(double t, const DVector& k3, const DVector& k2, const DVector& k1,
                          const DPoint&) noexcept {
  // A direction does not depend on where the curve lies; leaving k0 out keeps the digits of the differences.
  DPoint p[4];
  FromPowerForm({k3, k2, k1, {0, 0}}, p);
  const double size = std::max({Largest(k3), Largest(k2), Largest(k1)});
  return SafeTangent(t, p, size * Tolerances::kVanishedPowerDerivative);
}

double SafeBezierCurvature(double t, const DPoint p[4]) noexcept {
  const DVector first = Derivative(p, t), second = SecondDerivative(p, t);
  const double speed = Length(first);
  if (!(speed > Noise(p))) {
    return 0;
  }
  return Cross(first, second) / (speed * speed * speed);
}

double GetCurvatureRadiusAt(double t, const DPoint p[4]) noexcept {
  const double curvature = SafeBezierCurvature(t, p);
  constexpr double kStraight = std::numeric_limits<double>::max();
  if (curvature == 0) return kStraight;
  return std::clamp(1 / curvature, -kStraight, kStraight);
}

int FindCurvatureMinMax(const DPoint p[4], double t[6]) noexcept {
  // The curvature is stationary where cross(B', B''') |B'|^2 - 3 cross(B', B'') dot(B', B'') vanishes. With
  // the derivative as a quadratic Bezier of d, its slope as a linear one of e and the constant f:
  const DVector d[3] = {p[1] - p[0], p[2] - p[1], p[3] - p[2]};
  const DVector e[2] = {d[1] - d[0], d[2] - d[1]};
  const DVector f = e[1] - e[0];
  // cross(d, f) as a quadratic is really linear (the t^2 term is f itself): its Bernstein form of degree 1.
  const double u[2] = {Cross(d[0], f), Cross(d[2], f)};
  const double n[5] = {Dot(d[0], d[0]), Dot(d[0], d[1]), (Dot(d[0], d[2]) + 2 * Dot(d[1], d[1])) / 3,
                       Dot(d[1], d[2]), Dot(d[2], d[2])};
  // cross(d, e): the cubic term vanishes, leaving a quadratic.
  const double v[3] = {Cross(d[0], d[1]), 0.5 * Cross(d[0], d[2]), Cross(d[1], d[2])};
  const double w[4] = {Dot(d[0], e[0]), (Dot(d[0], e[1]) + 2 * Dot(d[1], e[0])) / 3,
                       (2 * Dot(d[1], e[1]) + Dot(d[2], e[0])) / 3, Dot(d[2], e[1])};
  constexpr double kFour[5] = {1, 4, 6, 4, 1}, kThree[4] = {1, 3, 3, 1}, kTwo[3] = {1, 2, 1};
  constexpr double kFive[6] = {1, 5, 10, 10, 5, 1};
  // B' = 3 d, B'' = 6 e, B''' = 6 f: cross(B', B''') |B'|^2 = 162 u n, 3 cross(B', B'') dot(B', B'') = 972 v
  // w.
  double c[6] = {};
  for (int i = 0; i < 2; ++i) {
    for (int j = 0; j < 5; ++j) c[i + j] += u[i] * n[j] * kFour[j];
  }
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 4; ++j) c[i + j] -= 6 * v[i] * w[j] * kTwo[i] * kThree[j];
  }
  double largest = 0, leg = 0;
  for (int k = 0; k < 6; ++k) {
    c[k] /= kFive[k];
    largest = std::max(largest, std::abs(c[k]));
  }
  // A straight cubic has no curvature: what is left of the sums is rounding.
  for (const DVector& side : d) leg = std::max(leg, LengthSqrd(side));
  if (!(largest > Tolerances::kStraightNoise * leg * leg)) return 0;
  double roots[Roots::kMaxDegree];
  const int count = Roots::Solve(c, 5, roots);
  int kept = 0;
  for (int k = 0; k < count; ++k) {
    if (roots[k] > 0 && roots[k] < 1) t[kept++] = roots[k];
  }
  return kept;
}

Side GetSide(const DPoint p[4], const DPoint& query) noexcept {
  double t, distanceSqrd;
  DPoint foot;
  if (!FindClosestPointOnBezier(p, query, t, foot, distanceSqrd)) return Side::none;
  const double cross = Cross(SafeBezierTangent(t, p), query - foot);
  return cross > 0 ? Side::left : cross < 0 ? Side::right : Side::none;
}

}  // namespace TavMath::CubicBezier
