#pragma once
// How far a cubic strays from a chord, in closed form: what the two ways of flattening share.
//
// From a corner at t the curve is B(t + s h) = B(t) + s h d1 + (s h)^2 d2 + (s h)^3 d3. Over the chord h c,
// where c = d1 + h d2 + h^2 d3, its distance from the chord's line is
//     s (1 - s) |alpha + s beta| / |c|,   alpha = h^2 (x2 + h x3),   beta = h^3 (x3 + h x23),
// with x2 = d1 x d2, x3 = d1 x d3, x23 = d2 x d3.

#include "math/simd.h"
#include "math/tolerances.h"
#include "tav/math/vector2d.h"

namespace TavMath {

/// 2 (1/4 - 1/12) / (12 sqrt 3), rounded up, and 1/432: s (1 - s) |middle + (s - 1/2) beta| is at most, and
/// squared, middle^2 / 16 + kMixed |middle beta| + kFarBeta beta^2: close while |beta| is much the larger
/// one.
inline constexpr double kMixed = 0.016038, kFarBeta = 1.0 / 432;
/// The same by middle^2 / 16 + kNearBeta beta^2: close while |beta| is the smaller one. The lesser of both
/// bounds costs 4 percent of a chord at worst.
inline constexpr double kNearBeta = 1.0 / 128 + 1.0 / 4096;

struct FlattenTolerance {
  double sqrd;
  /// A chord over h that is shorter than h times the root of this is a point: its direction is rounding.
  double pointSqrd;
  /// The control polygon's length, by the sum of both coordinates.
  double size;

  /// The caller's, but not below what the roundings of the curve's coordinates leave.
  FlattenTolerance(const DPoint p[4], double toleranceSqrd) noexcept {
    const TwoDoubles p0{p[0].x, p[0].y}, p1{p[1].x, p[1].y}, p2{p[2].x, p[2].y}, p3{p[3].x, p[3].y};
    const TwoDoubles both =
        (Tolerances::kEpsilon * Absolute(p0) + Absolute(p1 - p0)) + (Absolute(p2 - p1) + Absolute(p3 - p2));
    size = both[0] + both[1];
    const double least = 6 * Tolerances::kEpsilon * size, point = 16 * Tolerances::kEpsilon * size;
    sqrd = toleranceSqrd > least * least ? toleranceSqrd : least * least;
    pointSqrd = point * point;
  }
};

/// How much of the tolerance a chord uses, squared, as a fraction.
struct ChordUse {
  double deviation, limit;
  bool Fits() const { return deviation <= limit; }
  bool UsesAtLeast(double share) const { return deviation >= share * limit; }
  double Share() const { return deviation / limit; }
};

/// The curve from a corner: B(t + s) = B(t) + s d1 + s^2 d2 + s^3 d3, and the cross products.
struct FromCorner {
  DVector d1, d2, d3;
  double x2, x3, x23;

  /// At t of the curve with the power form k1 t + k2 t^2 + k3 t^3.
  FromCorner(const DVector& k1, const DVector& k2, const DVector& k3, double t) noexcept
      : d1(k1 + t * (2.0 * k2 + (3 * t) * k3)),
        d2(k2 + (3 * t) * k3),
        d3(k3),
        x2(Cross(d1, d2)),
        x3(Cross(d1, d3)),
        x23(Cross(k2, k3)) {}

  /// What the chord over h uses. Where the curve turns back along the chord, how far it passes an end is
  /// added at right angles.
  ChordUse UseOf(double h, const FlattenTolerance& tolerance) const noexcept;
};

}  // namespace TavMath
