#pragma once
#include <cstddef>

namespace Lumo::hierarchy {

/// Horizontal lines tried for a sample point between the least and greatest y. Count. The widest stretch of
/// the first lines is good enough for any ordinary shape; only slivers go on to the last one.
inline constexpr int kMaxSampleLines = 64;
/// Lines that are compared before the widest stretch among them is taken. Count.
inline constexpr int kComparedSampleLines = 5;
/// Bound on rows times nodes examined when the sample point of an integer subpath is sought on the grid.
/// Count; about ten milliseconds, met only by subpaths that have no interior grid point in the rows tried
/// before.
inline constexpr long long kMaxGridWork = 4'000'000;
/// How far (relative to the subpath's coordinates) a grid point must stay from the outline to count as
/// strictly inside. Ratio; a few times the error of a crossing computed in doubles.
inline constexpr double kOnOutlineRatio = 1e-12;

/// Steps towards a crossing of a line with a monotone part of a curve: Newton takes some five, and halving
/// alone would reach neighbouring parameters after that many. Count.
inline constexpr int kCrossingSteps = 64;
/// A step this short ends the search: Newton's next one is below the rounding of the parameter. Parameter.
inline constexpr double kCrossingSettled = 1e-12;

/// Up to this many subpaths are compared each with each: building the spatial indexes costs more. Count.
inline constexpr std::size_t kFewSubpaths = 16;

}  // namespace Lumo::hierarchy
