#pragma once
// The nearest point of a whole path: a bound from some of its nodes, then one pass in which boxes further
// away than the bound are passed over, so that only the few segments near the query are solved.

#include <algorithm>

#include "core/closest.h"
#include "core/segment_walk.h"
#include "lumo/node_type.h"
#include "lumo/path_views.h"
#include "polycurve/tolerances.h"
#include "tav/math/rect.h"

namespace Lumo {

inline double DistanceSqrdToBox(const TavMath::BoundsT<double>& box, const DPoint& q) noexcept {
  const auto outside = [](double low, double high, double value) {
    return value < low ? low - value : value > high ? value - high : 0;
  };
  return TavMath::LengthSqrd(DVector{outside(box.minx, box.maxx, q.x), outside(box.miny, box.maxy, q.y)});
}
inline double DistanceSqrdToBox(const tagRECT& box, const DPoint& q) noexcept {
  return DistanceSqrdToBox(
      TavMath::BoundsT<double>{static_cast<double>(box.left), static_cast<double>(box.top),
                               static_cast<double>(box.right), static_cast<double>(box.bottom)},
      q);
}

/// Nodes that are passed over together when their box lies too far away.
inline constexpr int kClosestStep = 64;

/// Calls visit(first, last) in path order for every segment that may come as near to the query as the nearest
/// point of the path, and perhaps for some that may not.
template <class T, class Visit>
void VisitNearSegments(const T* points, const NODETYPE* types, int count, const DPoint& query, Visit visit) {
  double bound = (std::numeric_limits<double>::max)();
  for (int i = 0; i < count; i += kClosestStep / 4) {
    // Only ends of segments are sure to be points of the path: a move node may stand alone.
    const int node = count - i > 2 && types[i].IsControl() ? (types[i + 1].IsControl() ? i + 2 : i + 1) : i;
    if (IsSegmentEnd(types, count, node)) {
      bound = std::min(bound, TavMath::DistanceSqrd(ToDouble(points[node]), query));
    }
    if (count - i <= kClosestStep / 4) break;  // and i never overflows
  }
  bound *= 1 + kBoundRounding;
  const auto isNear = [&](int from, int to) {
    return !(DistanceSqrdToBox(TavMath::GetPointsBBox(points + from, static_cast<std::size_t>(to - from)),
                               query) > bound);
  };
  for (int first = 1; first < count; first += kClosestStep) {
    const int end = count - first > kClosestStep ? first + kClosestStep : count;
    if (isNear(first - 1, count - end > 2 ? end + 2 : count)) {
      WalkSegments(types, first, end, count, [&](int a, int b) {
        if (isNear(a, b + 1)) visit(a, b);
      });
    }
    if (end == count) break;
  }
}

}  // namespace Lumo
