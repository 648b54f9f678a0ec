#pragma once
#include <array>
#include <limits>
#include <vector>

#include "lumo/point_types.h"

// Primitives of one cubic Bezier. A cubic is an array of four control points, P0 to P3; the power form is
// B(t) = ((k3 t + k2) t + k1) t + k0 with k3 = P3 - 3(P2 - P1) - P0, k2 = 3(P2 - 2 P1 + P0), k1 = 3(P1 - P0),
// k0 = P0. Nothing here throws or (unless a std::vector is filled) allocates; every iteration is bounded. NaN
// or infinite input gives NaN or an empty result.

namespace TavMath {

/// Four control points.
using Cubic = std::array<DPoint, 4>;

/// How deep an arc length may subdivide; the result is always as good as doubles allow (1e-9 relative).
struct LUMO_TYPE LengthAccuracy {
  /// From and to the depth.
  constexpr LengthAccuracy(int depth = 10) : value(depth) {}
  constexpr operator int() const { return value; }
  int value;
};

namespace CubicBezier {

/// B(t), de Casteljau: the same bits as Split gives at the same t.
LUMO_API DPoint Evaluate(const DPoint bezier[4], double t) noexcept;
/// B'(t) and B''(t); may be zero.
LUMO_API DVector Derivative(const DPoint bezier[4], double t) noexcept;
LUMO_API DVector SecondDerivative(const DPoint bezier[4], double t) noexcept;

/// Subdivision at t; left and right hold four points each and may overlap the source or each other by the
/// shared split point (left + 3 == right).
LUMO_API void Split(double t, const DPoint source[4], DPoint* left, DPoint* right) noexcept;
/// The part over [t0, t1] (t0 > t1: reversed), re-parametrised to [0, 1].
LUMO_API void Subsection(double t0, double t1, const DPoint bezier[4], DPoint out[4]) noexcept;
/// The part before t and the part behind it.
LUMO_API void LeftOf(double t, const DPoint bezier[4], DPoint out[4]) noexcept;
LUMO_API void RightOf(double t, const DPoint bezier[4], DPoint out[4]) noexcept;

/// Arc length, relative error at most 1e-9 on every curve, cusps included.
LUMO_API double Length(const DPoint bezier[4], LengthAccuracy accuracy = {}) noexcept;
/// From the power form (k0 is not needed).
LUMO_API double Length(const DVector& k3, const DVector& k2, const DVector& k1,
                       LengthAccuracy accuracy = {}) noexcept;
/// From the derivative as a quadratic Bezier: 3(P1 - P0), 3(P2 - P1), 3(P3 - P2).
LUMO_API double Length(const DVector derivative[3], LengthAccuracy accuracy = {}) noexcept;
/// Arc length over [0, t] and over [t, 1].
LUMO_API double LengthTo(const DPoint bezier[4], double t, LengthAccuracy accuracy = {}) noexcept;
LUMO_API double LengthFrom(const DPoint bezier[4], double t, LengthAccuracy accuracy = {}) noexcept;
/// The parameter at which the given fraction (clamped to 0..1) of the length is reached.
LUMO_API double GetCurveRelativeLengthParameter(const DPoint bezier[4], double fraction) noexcept;
LUMO_API double GetCurveRelativeLengthParameter(const DVector& k3, const DVector& k2, const DVector& k1,
                                                double fraction) noexcept;

/// The global nearest point. False (outputs untouched) only when an input is not finite.
LUMO_API bool FindClosestPointOnBezier(const DPoint bezier[4], const DPoint& query, double& t, DPoint& point,
                                       double& distanceSqrd) noexcept;
/// All nearest points within rounding of each other, in parameter order.
struct LUMO_TYPE ClosestPointsOnBezier {
  /// How many; parameters and points, sorted by parameter; their common squared distance.
  int count = 0;
  double t[6];
  DPoint point[6];
  double distanceSqrd = (std::numeric_limits<double>::max)();
};
/// All points that are as near as the nearest. None when an input is not finite.
LUMO_API ClosestPointsOnBezier FindClosestPointsOnBezier(const DPoint bezier[4],
                                                         const DPoint& query) noexcept;

/// One crossing.
struct LUMO_TYPE Crossing {
  /// The two parameters and the place.
  double ta;
  double tb;
  DPoint point;
};
/// Crossings of two cubics (or a cubic and a line) in a fixed array, sorted by ta. A stretch that the two
/// share is reported by its two ends with `overlap` set. A tangency is reported once.
struct LUMO_TYPE Crossings {
  /// How many, whether a stretch is shared, and the crossings.
  int count = 0;
  bool overlap = false;
  std::array<Crossing, 12> at;
};
/// All crossings of two cubics.
LUMO_API Crossings IntersectBeziers(const DPoint a[4], const DPoint b[4]) noexcept;
/// All crossings of a cubic (ta) and a line (tb). `infinite`: the line parameter may lie outside [0, 1].
LUMO_API Crossings IntersectBezierLine(const DPoint bezier[4], const DPoint& l0, const DPoint& l1,
                                       bool infinite) noexcept;
/// The vector forms replace the contents of the vectors. True when there is at least one crossing.
LUMO_API bool FindBezierIntersections(const DPoint a[4], const DPoint b[4], std::vector<double>& ta,
                                      std::vector<double>& tb, std::vector<DPoint>& points);
LUMO_API bool FindBezierLineIntersection(const DPoint bezier[4], const DPoint& l0, const DPoint& l1,
                                         bool infinite, std::vector<double>& tBezier,
                                         std::vector<double>& tLine);
/// The double point of a loop: t0 < t1 in [0, 1].
LUMO_API bool FindBezierSelfIntersection(const DPoint bezier[4], double& t0, double& t1,
                                         DPoint& point) noexcept;
/// Whether the two have a point in common.
LUMO_API bool DoBeziersIntersect(const DPoint a[4], const DPoint b[4]) noexcept;
LUMO_API bool DoesBezierIntersectLineSegment(const DPoint bezier[4], const DPoint& l0,
                                             const DPoint& l1) noexcept;

/// A tangent that is defined also where the derivative vanishes: then the direction to the next distinct
/// control point (at t = 1, from the previous one); zero only when all control points coincide. Not
/// normalised.
LUMO_API DVector SafeBezierTangent(double t, const DPoint bezier[4]) noexcept;
LUMO_API DVector SafeBezierTangent(double t, const DVector& k3, const DVector& k2, const DVector& k1,
                                   const DPoint& k0) noexcept;
/// Signed curvature, positive when turning left (y up); 0 for a degenerate cubic.
LUMO_API double SafeBezierCurvature(double t, const DPoint bezier[4]) noexcept;
/// Signed radius of curvature; the largest finite double where the curve is straight.
LUMO_API double GetCurvatureRadiusAt(double t, const DPoint bezier[4]) noexcept;
/// Parameters strictly inside (0, 1), sorted, at which the curvature has an extremum. Returns their number.
LUMO_API int FindCurvatureMinMax(const DPoint bezier[4], double t[6]) noexcept;
/// Which side of the curve (at the parameter nearest to the query) the query lies on.
LUMO_API Side GetSide(const DPoint bezier[4], const DPoint& query) noexcept;
/// Parameters strictly inside (0, 1), sorted, where the tangent is horizontal (y' = 0) or vertical (x' = 0).
LUMO_API int GetHorizontalTangents(const DPoint bezier[4], double t[2]) noexcept;
LUMO_API int GetVerticalTangents(const DPoint bezier[4], double t[2]) noexcept;
/// The box of the curve itself.
LUMO_API BoundsT<double> GetTightBox(const DPoint bezier[4]) noexcept;

/// The integral of y dx over [0, 1], exact up to rounding (Green): the trapezoid rule of a line agrees with
/// it.
LUMO_API double GetAreaUnderBezier(const DVector& k3, const DVector& k2, const DVector& k1,
                                   const DPoint& k0) noexcept;
LUMO_API double GetAreaUnderBezier(const DPoint bezier[4]) noexcept;

/// Control points from and to power form.
struct LUMO_TYPE PowerForm {
  /// The coefficients of the powers.
  DVector k3, k2, k1;
  /// The constant one: the start.
  DPoint k0;
};
/// There and back; back agrees to rounding.
constexpr PowerForm ToPowerForm(const DPoint p[4]) {
  return {(p[3] - p[0]) - 3.0 * (p[2] - p[1]), 3.0 * ((p[2] - p[1]) - (p[1] - p[0])), 3.0 * (p[1] - p[0]),
          p[0]};
}
constexpr void FromPowerForm(const PowerForm& form, DPoint p[4]) {
  const DVector third{form.k1.x / 3, form.k1.y / 3}, bend{form.k2.x / 3, form.k2.y / 3};
  p[0] = form.k0;
  p[1] = p[0] + third;
  p[2] = p[1] + (third + bend);
  p[3] = p[0] + (form.k1 + (form.k2 + form.k3));
}

}  // namespace CubicBezier

// Offsetting of one cubic. The parallel curve at a distance (positive to the left) has a cusp wherever the
// distance reaches the radius of curvature, and jumps where the cubic itself turns back. Method: both ends
// and end tangents are exact, the two handle lengths make the normal deviation from the parallel curve least
// in the mean square; the error falls with the sixth power of the length where the curvature does not vanish
// (C. de Boor, K. Hoellig, M. Sabin, "High accuracy geometric Hermite interpolation", CAGD 4, 1987). The
// deviation is measured along the whole piece.

/// True when the parallel curve of the whole piece exists without a cusp (1 - curvature * offset > 0
/// everywhere) and the piece turns by at most 90 degrees.
LUMO_API bool IsBezierValidForOffset(const DPoint bezier[4], double offset) noexcept;
/// One cubic within `tolerance` of the parallel curve at the signed distance, everywhere; end points and end
/// tangents are those of the parallel curve. A piece that runs backwards (the distance exceeds the radius of
/// curvature) gives a cubic that runs backwards. False when one cubic does not do; then split is the
/// parameter in (0, 1) to split at: the cusp if there is one inside, else chosen so that repeated splitting
/// gives nearly as few pieces as possible. split is -1 when no split would help (not finite, a single point,
/// a negative tolerance). Stretches so short that the rounding of their coordinates leaves no direction are
/// beyond any promise.
LUMO_API bool FindBezierOffsetCurve(const DPoint bezier[4], DPoint out[4], double offset, double tolerance,
                                    double& split) noexcept;
/// Splits a cubic into pieces suitable for offsetting: at its own cusps, at cusps of the parallel curve, and
/// where a piece would turn by more than 180 degrees. Replaces the contents of pieces; empty for unusable
/// input.
LUMO_API void GetSegmentsToOffset(const DPoint bezier[4], std::vector<Cubic>& pieces, double offset);

/// Writes pieces + 1 points at uniform parameters; the end points are exact. Returns the number of pieces
/// written (at least 1, at most the given number).
LUMO_API int BezierToLines(const DPoint bezier[4], DPoint* buffer, int pieces) noexcept;
/// Writes at most maxPoints points so that no point of the curve is farther than the tolerance (given
/// squared) from the polyline, unless the room runs out. Returns the number of line pieces; 0 when maxPoints
/// < 2.
LUMO_API int AdaptiveBezierToLines(const DPoint bezier[4], DPoint* buffer, double toleranceSqrd,
                                   int maxPoints) noexcept;
/// The number of uniform pieces that keeps the error within half a unit, clamped to 1..maximum.
LUMO_API int CalculateNumBezierLines(const DPoint bezier[4], int maximum) noexcept;
/// The same bound over every cubic whose control points lie in the box.
LUMO_API int CalculateNumBezierLines(const tagRECT& box, int maximum) noexcept;

/// Whether three points count as collinear. All lengths squared; base is the longest side, the apex is
/// projected on its infinite line. Any side shorter than the tolerance passes.
LUMO_API bool AreCollinear(const DPoint& p0, const DPoint& p1, const DPoint& p2,
                           double toleranceSqrd) noexcept;

}  // namespace TavMath
