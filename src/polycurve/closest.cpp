#include <algorithm>
#include <cmath>

#include "lumo/crv_navigation.h"
#include "lumo/measure.h"
#include "lumo/polycurve.h"
#include "math/cubic/distance_slope.h"
#include "math/roots.h"
#include "polycurve/closest_search.h"
#include "polycurve/path_segment.h"

namespace Lumo {
namespace {

template <class T>
using Found = ClosestPoint<T, CurvePosition>;

template <class T>
bool TrySegment(Nearest<T>& nearest, const T* points, int first, int last) {
  return last - first == 1 ? nearest.TryLine(points[first], points[last]) : nearest.TryCubic(points + first);
}

/// The places of one segment at which it is nearest to the query, in order.
struct NearestPlaces {
  int count = 0;
  double t[6];
  double distanceSqrd = (std::numeric_limits<double>::max)();
};

NearestPlaces FindNearestPlaces(const PathSegment& segment, const DPoint& query) {
  NearestPlaces places;
  if (segment.IsLine()) {
    Nearest<DPoint> nearest(query);
    nearest.TryLine(segment.p[0], segment.p[1]);
    places.count = nearest.Found() ? 1 : 0;
    places.t[0] = nearest.t;
    places.distanceSqrd = nearest.distanceSqrd;
  } else {
    const auto found = TavMath::CubicBezier::FindClosestPointsOnBezier(segment.p, query);
    places.count = found.count;
    std::copy(found.t, found.t + found.count, places.t);
    places.distanceSqrd = found.distanceSqrd;
  }
  return places;
}

/// A length below which two distances from the query to the segment are one: what solving it may round.
double TieWidth(const PathSegment& segment, const DPoint& query) {
  double reach = 0;
  for (int k = 0; k <= segment.last - segment.first; ++k)
    reach = std::max(reach, TavMath::Distance(segment.p[k], query));
  return kEquallyNear * reach;
}

/// Keeps the farthest place seen; the first of equally far ones.
struct Farthest {
  DPoint query;
  double distanceSqrd = -1;
  DPoint point{};
  CurvePosition position{};

  void Try(const PathSegment& segment, double t) {
    const DPoint candidate = segment.PointAt(t);
    const double sqrd = TavMath::DistanceSqrd(candidate, query);
    if (!(sqrd > distanceSqrd)) return;
    distanceSqrd = sqrd;
    point = candidate;
    position = {segment.first, segment.last, t};
  }
  void Try(const PathSegment& segment) {
    // No point of a segment lies farther away than its farthest control point.
    const int points = segment.last - segment.first + 1;
    if (std::none_of(segment.p, segment.p + points,
                     [&](const DPoint& p) { return TavMath::DistanceSqrd(p, query) > distanceSqrd; })) {
      return;
    }
    Try(segment, 0);
    if (!segment.IsLine()) {
      double slope[6], t[5];
      TavMath::CubicBezier::DistanceSlope(segment.p, query, slope);
      const int turns = TavMath::Roots::Solve(slope, 5, t);
      for (int k = 0; k < turns; ++k) Try(segment, t[k]);
    }
    Try(segment, 1);
  }
};

}  // namespace

template <class T>
bool FindClosestPoint(const T* points, const NODETYPE* types, int count, const T& point,
                      Found<T>& result) noexcept {
  const T query = point;  // result may hold it
  result = {};
  if (!points || !types || count < 2) return false;
  Nearest<T> nearest(query);
  VisitNearSegments(points, types, count, ToDouble(query), [&](int first, int last) {
    if (!TrySegment(nearest, points, first, last)) return;
    result = {FromDouble<T>(nearest.point), {first, last, nearest.t}, nearest.distanceSqrd};
  });
  return nearest.Found();
}

template <class T>
bool PolycurveT<T>::FindClosestPoint(const T& point, Closest& result) const noexcept {
  return Lumo::FindClosestPoint(GetPoints(), GetNodeTypes(), IntCount(), point, result);
}

template <class T>
std::vector<Found<T>> PolycurveT<T>::FindClosestPoints(const T& point) const {
  std::vector<Closest> found;
  Closest nearest;
  if (!FindClosestPoint(point, nearest)) return found;
  const DPoint query = ToDouble(point);
  const double least = std::sqrt(nearest.distanceSqrd);
  const NODETYPE* types = GetNodeTypes();
  int subpathStart = -1;  // a place at the start of the current subpath, as an index of found
  const auto visit = [&](int first, int last) {
    const PathSegment segment = LoadSegment(GetPoints(), first, last);
    const NearestPlaces places = FindNearestPlaces(segment, query);
    if (std::sqrt(places.distanceSqrd) > least + TieWidth(segment, query)) return;
    for (int k = 0; k < places.count; ++k) {
      const double t = places.t[k];
      // A node is the end of one segment and the start of the next, and in a closed subpath both of its ends:
      // one place.
      if (t == 0 && !found.empty() && found.back().position.lastNode == first && found.back().position.t == 1)
        continue;
      const bool closesSubpath = t == 1 && types[last].IsClosed();
      if (closesSubpath && subpathStart >= 0 &&
          OtherClosedEnd(types, last, IntCount()) ==
              found[static_cast<std::size_t>(subpathStart)].position.firstNode) {
        continue;
      }
      if (t == 0 && types[first].IsMove()) subpathStart = static_cast<int>(found.size());
      found.push_back({FromDouble<T>(segment.PointAt(t)), {first, last, t}, places.distanceSqrd});
    }
  };
  try {
    VisitNearSegments(GetPoints(), types, IntCount(), query, visit);
  } catch (...) {
    found.clear();
  }
  return found;
}

template <class T>
bool PolycurveT<T>::FindFarthestPoint(const T& point, Closest& result) const noexcept {
  Farthest farthest{ToDouble(point)};
  result = {};
  WalkSegments(GetNodeTypes(), IntCount(),
               [&](int first, int last) { farthest.Try(LoadSegment(GetPoints(), first, last)); });
  if (farthest.distanceSqrd < 0) return false;
  result = {FromDouble<T>(farthest.point), farthest.position, farthest.distanceSqrd};
  return true;
}

LUMO_CLOSEST(LUMO_INSTANTIATE, tagPOINT)
LUMO_CLOSEST(LUMO_INSTANTIATE, TavMath::DPoint)

#define LUMO_CLOSEST_MEMBERS(T)                                                             \
  LUMO_INSTANTIATE bool PolycurveT<T>::FindClosestPoint(const T&, Closest&) const noexcept; \
  LUMO_INSTANTIATE std::vector<Found<T>> PolycurveT<T>::FindClosestPoints(const T&) const;  \
  LUMO_INSTANTIATE bool PolycurveT<T>::FindFarthestPoint(const T&, Closest&) const noexcept;
LUMO_CLOSEST_MEMBERS(tagPOINT)
LUMO_CLOSEST_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
