#include <algorithm>
#include <cmath>

#include "math/tolerances.h"
#include "tav/math/cubic_bezier.h"

namespace TavMath::CubicBezier {
namespace {

using namespace Tolerances;

/// Extended precision: near a cusp, and on a nearly straight curve, the difference of two products is all
/// that counts.
using Wide = long double;
struct WideVector {
  Wide x, y;
};
Wide Cross(const WideVector& u, const WideVector& v) { return u.x * v.y - u.y * v.x; }
WideVector Difference(const DPoint& u, const DPoint& v) {
  return {static_cast<Wide>(u.x) - v.x, static_cast<Wide>(u.y) - v.y};
}

/// k3 t^3 + k2 t^2 + k1 t, with the start of the curve as the origin.
struct WidePower {
  WideVector k1, k2, k3;
  explicit WidePower(const DPoint p[4]) {
    const WideVector d0 = Difference(p[1], p[0]), d1 = Difference(p[2], p[1]), d2 = Difference(p[3], p[2]);
    k1 = {3 * d0.x, 3 * d0.y};
    k2 = {3 * (d1.x - d0.x), 3 * (d1.y - d0.y)};
    k3 = {d0.x - 2 * d1.x + d2.x, d0.y - 2 * d1.y + d2.y};
  }
  WideVector Slope(Wide t) const {
    return {(3 * k3.x * t + 2 * k2.x) * t + k1.x, (3 * k3.y * t + 2 * k2.y) * t + k1.y};
  }
  /// (B(u) - B(v)) / (u - v).
  WideVector DividedDifference(Wide u, Wide v) const {
    const Wide s = u + v, q = s * s - u * v;
    return {k3.x * q + k2.x * s + k1.x, k3.y * q + k2.y * s + k1.y};
  }
};

/// Newton's method on B(u) = B(v). Returns the distance left.
Wide Polish(const WidePower& curve, Wide& u, Wide& v) {
  constexpr int kSteps = 4;
  for (int step = 0; step < kSteps; ++step) {
    const WideVector f = curve.DividedDifference(u, v), a = curve.Slope(u), b = curve.Slope(v);
    const Wide width = u - v, determinant = Cross(a, b);
    if (determinant == 0) break;
    const Wide du = -Cross(f, b) * width / determinant, dv = -Cross(f, a) * width / determinant;
    // A larger step than the loop itself would leave it.
    if (!(std::abs(du) + std::abs(dv) < std::abs(width) / 2)) break;
    u += du, v += dv;
  }
  const WideVector f = curve.DividedDifference(u, v);
  return std::hypot(f.x, f.y) * std::abs(u - v);
}

}  // namespace

// B(u) = B(v) divided by u - v is linear in the sum S = u + v and in Q = S^2 - u v:
//   k3 Q + k2 S + k1 = 0, two equations (x and y). The loop is real when (u - v)^2 = 4 Q - 3 S^2 > 0.
bool FindBezierSelfIntersection(const DPoint p[4], double& t0, double& t1, DPoint& point) noexcept {
  const WidePower curve(p);
  const Wide determinant = Cross(curve.k3, curve.k2);
  if (determinant == 0 || !std::isfinite(determinant)) return false;
  const Wide sum = Cross(curve.k1, curve.k3) / determinant, q = Cross(curve.k2, curve.k1) / determinant;
  const Wide square = 4 * q - 3 * sum * sum;
  if (!(square > 0) || !std::isfinite(square)) return false;
  const Wide half = std::sqrt(square) / 2;
  Wide low = sum / 2 - half, high = sum / 2 + half;
  if (p[0] == p[3]) {
    // The ends meet: that is the double point, whatever rounding says.
    low = 0, high = 1;
  } else {
    // On a curve that is straight up to rounding the equations say nothing; there is no loop then.
    Wide size = 0;
    for (int k = 1; k < 4; ++k) {
      const WideVector d = Difference(p[k], p[0]);
      size = std::max({size, std::abs(d.x), std::abs(d.y)});
    }
    if (!(Polish(curve, low, high) <= kContactGap * size)) return false;
  }
  const double first = static_cast<double>(low), second = static_cast<double>(high);
  if (!(first >= 0 && second <= 1 && first < second)) return false;
  t0 = first;
  t1 = second;
  point = Evaluate(p, t0);
  return true;
}

}  // namespace TavMath::CubicBezier
