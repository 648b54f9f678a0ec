#pragma once
// Small records that the path interface passes around: views of a path's arrays, index ranges, positions on a
// path and the box type of a point type. All are plain aggregates; none owns anything.

#include <cstddef>
#include <limits>

#include "lumo/forward.h"
#include "lumo/node_type.h"
#include "lumo/point_types.h"

namespace Lumo {

/// Writable arrays of a path. Empty (null, null, 0) when the storage could not be had.
template <class T>
struct LUMO_TYPE DrawCurveT {
  /// Parallel arrays and their length.
  T* points = nullptr;
  NODETYPE* types = nullptr;
  std::size_t count = 0;
};

/// Read-only arrays of a path.
template <class T>
struct LUMO_TYPE ConstDrawCurveT {
  /// Parallel arrays and their length.
  const T* points = nullptr;
  const NODETYPE* types = nullptr;
  std::size_t count = 0;
};

/// The nodes first .. end-1 of a path.
struct LUMO_TYPE SubcurveRange {
  /// The first node, and one past the last.
  std::size_t first = 0;
  std::size_t end = 0;
  friend constexpr bool operator==(const SubcurveRange& a, const SubcurveRange& b) {
    return a.first == b.first && a.end == b.end;
  }
};

/// A place on one segment: 0 at its start node, 1 at its end node, -1 for none.
struct LUMO_TYPE SegmentPosition {
  /// The parameter.
  double t = -1;
};

/// A place on a path: the segment between two on-curve nodes (lastNode is firstNode + 1 for a line, + 3 for a
/// curve) and the parameter on it; -1 for none.
struct LUMO_TYPE CurvePosition {
  /// The start node, the end node, the parameter between them.
  int firstNode = -1;
  int lastNode = -1;
  double t = -1;
};

/// The nearest point found so far. A search only replaces it by a strictly nearer one.
template <class T, class Position>
struct LUMO_TYPE ClosestPoint {
  /// The nearest point, its place on the path, and the squared distance.
  T point{};
  Position position{};
  double distanceSqrd = (std::numeric_limits<double>::max)();
};

/// Gives the box type below. A class with a member, not a condition over the type: compilers write a
/// condition into the names of exported functions in different ways and would not find each other's.
template <class T>
struct BoxOf {
  /// The box.
  using type = TavMath::BoundsT<double>;
};
/// The same for integer points.
template <>
struct BoxOf<tagPOINT> {
  /// The box.
  using type = tagRECT;
};
/// The box of points of type T: `tagRECT` (top is the least y) for integer points, unrounded
/// `TavMath::BoundsT<double>` for double points.
template <class T>
using BoxT = typename BoxOf<T>::type;

/// How overlapping outlines fill.
enum class FillRule : int { evenOdd = 0, nonZero = 1, positive = 2 };

}  // namespace Lumo
