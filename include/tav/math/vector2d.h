#pragma once
#include <cmath>

#include "lumo/export.h"

namespace TavMath {

/// Two coordinates. Kind 1 is a point, kind 0 a direction (a difference of points); the layout is the same:
/// x, then y. Arithmetic follows the affine rules: point - point is a direction, point + direction is a
/// point. Trivially default constructible (uninitialised), so that arrays of points cost nothing to make.
template <class Scalar, int Kind>
struct LUMO_TYPE vector2dT {
  /// The coordinates.
  Scalar x;
  Scalar y;

  /// The affine rules in place.
  constexpr vector2dT& operator+=(const vector2dT<Scalar, 0>& d) {
    x += d.x;
    y += d.y;
    return *this;
  }
  constexpr vector2dT& operator-=(const vector2dT<Scalar, 0>& d) {
    x -= d.x;
    y -= d.y;
    return *this;
  }
  constexpr vector2dT& operator*=(Scalar s) {
    x *= s;
    y *= s;
    return *this;
  }
  /// Exactly the same coordinates; not.
  friend constexpr bool operator==(const vector2dT& a, const vector2dT& b) {
    return a.x == b.x && a.y == b.y;
  }
  friend constexpr bool operator!=(const vector2dT& a, const vector2dT& b) { return !(a == b); }
};

/// A point of two doubles.
using DPoint = vector2dT<double, 1>;
/// A direction of two doubles.
using DVector = vector2dT<double, 0>;

/// The affine rules; see vector2dT.
template <class S>
constexpr vector2dT<S, 0> operator-(const vector2dT<S, 1>& a, const vector2dT<S, 1>& b) {
  return {a.x - b.x, a.y - b.y};
}
template <class S, int K>
constexpr vector2dT<S, K> operator+(const vector2dT<S, K>& a, const vector2dT<S, 0>& d) {
  return {a.x + d.x, a.y + d.y};
}
template <class S, int K>
constexpr vector2dT<S, K> operator-(const vector2dT<S, K>& a, const vector2dT<S, 0>& d) {
  return {a.x - d.x, a.y - d.y};
}
template <class S>
constexpr vector2dT<S, 0> operator-(const vector2dT<S, 0>& d) {
  return {-d.x, -d.y};
}
template <class S>
constexpr vector2dT<S, 0> operator*(const vector2dT<S, 0>& d, S s) {
  return {d.x * s, d.y * s};
}
template <class S>
constexpr vector2dT<S, 0> operator*(S s, const vector2dT<S, 0>& d) {
  return {d.x * s, d.y * s};
}

/// u.x v.x + u.y v.y.
constexpr double Dot(const DVector& u, const DVector& v) { return u.x * v.x + u.y * v.y; }
/// u.x v.y - u.y v.x: positive when v turns left of u (y up).
constexpr double Cross(const DVector& u, const DVector& v) { return u.x * v.y - u.y * v.x; }
/// u . u.
constexpr double LengthSqrd(const DVector& u) { return Dot(u, u); }
/// Length without overflow or underflow of the squares: the plain root wherever they are in range.
inline double Length(const DVector& u) {
  const double sqrd = LengthSqrd(u);
  return sqrd > 0x1p-900 && sqrd < 0x1p900 ? std::sqrt(sqrd) : std::hypot(u.x, u.y);
}
/// The distance squared.
constexpr double DistanceSqrd(const DPoint& a, const DPoint& b) { return LengthSqrd(a - b); }
/// The distance.
inline double Distance(const DPoint& a, const DPoint& b) { return Length(a - b); }
/// The point (1 - t) a + t b, formed as a + t (b - a).
constexpr DPoint Lerp(const DPoint& a, const DPoint& b, double t) { return a + t * (b - a); }
/// The midpoint without overflow.
constexpr DPoint Midpoint(const DPoint& a, const DPoint& b) {
  return {0.5 * a.x + 0.5 * b.x, 0.5 * a.y + 0.5 * b.y};
}
/// The direction from the origin to a point, and back.
constexpr DVector AsVector(const DPoint& p) { return {p.x, p.y}; }
constexpr DPoint AsPoint(const DVector& d) { return {d.x, d.y}; }
/// The left normal of a direction (y up): the direction turned by +90 degrees.
constexpr DVector LeftNormal(const DVector& d) { return {-d.y, d.x}; }

/// Vectors are normalised only when their squared length exceeds this (double machine epsilon).
inline constexpr double kNormalizeLimitSqrd = 2.220446049250313e-16;
/// The unit vector along d; d itself when its squared length does not exceed kNormalizeLimitSqrd.
inline DVector Normalized(const DVector& d) {
  const double sqrd = LengthSqrd(d);
  return sqrd > kNormalizeLimitSqrd ? d * (1.0 / std::sqrt(sqrd)) : d;
}

/// Where a point lies relative to a directed line or curve (y up).
enum class Side : int { none = 0, left = 1, right = 2 };

}  // namespace TavMath
