#pragma once
// Named constants of src/intersect. The tolerances that hosts set are in SegmentIntersectionSettings.

namespace Lumo::IntersectTolerances {

/// Parameters of a stretch's ends on one segment must differ by more than this (double machine epsilon).
inline constexpr double kDistinctTime = 2.220446049250313e-16;
/// How far outside its piece (as a parameter) a foot may lie and still count as on it: the ends of a stretch
/// are feet themselves, and projecting them again rounds.
inline constexpr double kFootSlack = 1e-9;
/// Sine of the angle between two tangents below which a meeting is tested for being a tangency. A crossing at
/// a smaller angle is told from it by the sides on which the curves leave.
inline constexpr double kTangencySine = 1e-4;
/// Gap, as a share of the segments' extent, from which the side on which one curve leaves the other is
/// certain.
inline constexpr double kCertainSide = 1e-11;
/// Steps (as parameters) away from a tangency at which the side is looked at, nearest first.
inline constexpr double kSideSteps[] = {1e-4, 1e-3, 1e-2, 5e-2};
/// Samples at which two curved stretches are compared.
inline constexpr int kStretchSamples = 12;
/// Tolerance (document units) of a question that has no settings: whether two segments have a point in
/// common.
inline constexpr double kCommonPoint = 0.01;
/// In the list intersector, a hit of the first segment with the first segment counts only this close (as a
/// parameter) to the first segment's end.
inline constexpr double kFirstPairReach = 0.8;

}  // namespace Lumo::IntersectTolerances
