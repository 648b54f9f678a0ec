#include <cmath>
#include <cstdint>

#include "lumo/crv_navigation.h"
#include "math/point_traits.h"

namespace {

using Lumo::DPoint;
using Lumo::DVector;
using Lumo::FromDouble;
using Lumo::ToDouble;

double RoundHalfAway(double value) { return std::trunc(value < 0 ? value - 0.5 : value + 0.5); }

/// A delta along a line as it is added to the start: whole units for integer points.
DVector LineDelta(const tagPOINT&, const DVector& delta) {
  return {RoundHalfAway(delta.x), RoundHalfAway(delta.y)};
}
const DVector& LineDelta(const DPoint&, const DVector& delta) { return delta; }

/// The square of a tolerance as 32-bit integers wrap: tolerances above 46340 give a limit that may be small
/// or negative, which callers with whole-drawing tolerances depend on never meeting.
double LimitSqrd(int tolerance) {
  const auto side = static_cast<std::uint32_t>(tolerance);
  return static_cast<std::int32_t>(side * side);
}

/// Where the points of a segment start: its end node minus the result is its start node. 0 for a node that
/// ends no segment or whose start would lie before the array.
int SegmentLength(const NODETYPE* types, int i) {
  if (types[i].IsLine()) return i >= 1 ? 1 : 0;
  if (types[i].IsCurve()) return i >= 3 ? 3 : 0;
  return 0;
}

template <class T>
bool Within(const T& a, const T& b, double limitSqrd) {
  return TavMath::DistanceSqrd(ToDouble(a), ToDouble(b)) <= limitSqrd;
}

}  // namespace

template <class T>
int CRV_GetPointOnCurve(Lumo::NotDeduced<T>* out, const T* points, const NODETYPE* types, int i,
                        double t) noexcept {
  if (!out || !points || !types || i < 0) return 0;
  const int length = SegmentLength(types, i);
  if (length == 0) return 0;
  if (length == 1) {
    const DPoint start = ToDouble(points[i - 1]);
    const DVector delta = ToDouble(points[i]) - start;
    *out = FromDouble<T>(start + LineDelta(points[i], delta * t));
    return 1;
  }
  DPoint p[4];
  Lumo::LoadCubic(points + (i - 3), p);
  const auto coordinate = [t](double p0, double p1, double p2, double p3) {
    const double k3 = p3 - 3 * p2 + 3 * p1 - p0, k2 = 3 * (p2 - 2 * p1 + p0), k1 = 3 * (p1 - p0);
    return ((k3 * t + k2) * t + k1) * t + p0;
  };
  *out = FromDouble<T>(
      DPoint{coordinate(p[0].x, p[1].x, p[2].x, p[3].x), coordinate(p[0].y, p[1].y, p[2].y, p[3].y)});
  return 1;
}

template <class T>
int CRV_SegmentIsShort(const T* points, const NODETYPE* types, int count, int i, int tolerance) noexcept {
  if (!points || !types || i < 0 || i >= count) return 0;
  const int length = SegmentLength(types, i);
  const double limit = LimitSqrd(tolerance);
  for (int k = 1; k <= length; ++k)
    if (!Within(points[i - k], points[i], limit)) return 0;
  return length != 0;
}

template <class T>
int CRV_SegmentsAreClose(const T* points, const NODETYPE* types, int count, int a, int b, int tolerance,
                         int direction) noexcept {
  if (!points || !types || a < 0 || a >= count || b < 0 || b >= count) return 0;
  const int length = SegmentLength(types, a);
  if (length == 0 || length != SegmentLength(types, b)) return 0;
  const double limit = LimitSqrd(tolerance);
  const auto close = [&](bool same) {
    for (int k = 0; k <= length; ++k)
      if (!Within(points[a - k], points[same ? b - k : b - (length - k)], limit)) return false;
    return true;
  };
  switch (direction) {
    case 1:
      return close(true);
    case -1:
      return close(false);
    case 0:
      return close(true) || close(false);
    default:
      return 0;
  }
}

LUMO_CRV_NAVIGATION(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_NAVIGATION(LUMO_INSTANTIATE, TavMath::DPoint)
