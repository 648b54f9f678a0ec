// Places on a path: by length, their points and tangents, and the side of the path that a point lies on.

#include <algorithm>
#include <cmath>

#include "lumo/crv_navigation.h"
#include "lumo/measure.h"
#include "lumo/polycurve.h"
#include "polycurve/path_segment.h"

namespace Lumo {

template <class T>
bool PolycurveT<T>::GetPointAt(const CurvePosition& position, T& out) const noexcept {
  if (!IsPosition(GetNodeTypes(), IntCount(), position)) return false;
  out = FromDouble<T>(LoadSegment(GetPoints(), position.firstNode, position.lastNode).PointAt(position.t));
  return true;
}

template <class T>
double PolycurveT<T>::GetLengthFrom(const CurvePosition& position) const noexcept {
  if (!IsPosition(GetNodeTypes(), IntCount(), position)) return 0;
  double length = LoadSegment(GetPoints(), position.firstNode, position.lastNode).LengthFrom(position.t);
  WalkSegments(GetNodeTypes(), position.lastNode + 1, IntCount(), IntCount(),
               [&](int first, int last) { length += LoadSegment(GetPoints(), first, last).Length(); });
  return length;
}

template <class T>
double PolycurveT<T>::GetLengthAlongCurveTo(const CurvePosition& position) const noexcept {
  if (!IsPosition(GetNodeTypes(), IntCount(), position)) return 0;
  double length = 0;
  WalkSegments(GetNodeTypes(), 1, position.firstNode + 1, IntCount(),
               [&](int first, int last) { length += LoadSegment(GetPoints(), first, last).Length(); });
  return length + LoadSegment(GetPoints(), position.firstNode, position.lastNode).LengthTo(position.t);
}

template <class T>
std::optional<CurvePosition> PolycurveT<T>::GetPositionAtLength(double length) const noexcept {
  if (std::isnan(length)) return std::nullopt;
  std::optional<CurvePosition> found;
  double before = 0;  // the segment's start
  bool done = false;
  // The last segment seen stays when the length is beyond the path's own.
  WalkSegments(GetNodeTypes(), IntCount(), [&](int first, int last) {
    if (done) return;
    const PathSegment segment = LoadSegment(GetPoints(), first, last);
    const double own = segment.Length();
    done = length <= before + own;
    const double wanted = std::clamp(length - before, 0.0, own);
    found = CurvePosition{first, last,
                          wanted < own ? segment.ParameterAt(wanted / own) : (length > 0 ? 1.0 : 0.0)};
    before += own;
  });
  return found;
}

template <class T>
std::optional<CurvePosition> PolycurveT<T>::GetPositionAtRelativeLength(double fraction) const noexcept {
  return GetPositionAtLength(GetLength() * fraction);
}

template <class T>
TavMath::DVector PolycurveT<T>::GetTangentAt(const CurvePosition& position, bool reverse) const noexcept {
  if (!IsPosition(GetNodeTypes(), IntCount(), position)) return {0, 0};
  const DVector tangent =
      LoadSegment(GetPoints(), position.firstNode, position.lastNode).TangentAt(position.t);
  return reverse ? -tangent : tangent;
}

namespace {

/// The segment that begins (or, for `before`, ends) at a node, round the joint of a closed subpath too; false
/// at an open end.
template <class T>
bool LoadNeighbour(const PolycurveT<T>& path, int node, bool before, PathSegment& out) noexcept {
  const NODETYPE* types = path.GetNodeTypes();
  const int count = static_cast<int>(path.GetPointCount());
  const bool atEnd = before ? types[node].IsMove() : node + 1 == count || types[node + 1].IsMove();
  if (atEnd && (node = OtherClosedEnd(types, node, count)) < 0) return false;
  const int own = before ? node : node + 1;
  if (own < 1 || own >= count || types[own].IsMove()) return false;
  const int length = types[own].IsLine() ? 1 : 3;
  const int first = before ? own - length : own - 1;
  if (!IsPosition(types, count, {first, first + length, 0})) return false;
  out = LoadSegment(path.GetPoints(), first, first + length);
  return true;
}

}  // namespace

template <class T>
TavMath::Side PolycurveT<T>::GetSide(const T& point) const noexcept {
  Closest nearest;
  if (!FindClosestPoint(point, nearest)) return TavMath::Side::none;
  const CurvePosition at = nearest.position;
  const PathSegment segment = LoadSegment(GetPoints(), at.firstNode, at.lastNode);
  DVector along = segment.TangentAt(at.t);
  // At a corner the two segments may disagree; the line that halves it tells the side of both.
  PathSegment neighbour;
  if (at.t == 0 && LoadNeighbour(*this, at.firstNode, true, neighbour))
    along = along + neighbour.TangentAt(1);
  if (at.t == 1 && LoadNeighbour(*this, at.lastNode, false, neighbour))
    along = along + neighbour.TangentAt(0);
  const double cross = TavMath::Cross(along, ToDouble(point) - segment.PointAt(at.t));
  return cross > 0 ? TavMath::Side::left : cross < 0 ? TavMath::Side::right : TavMath::Side::none;
}

template <class T>
TavMath::Side PolycurveT<T>::OnLeftOrRight(const T& point) const noexcept {
  return GetSide(point);
}

#define LUMO_POSITION_MEMBERS(T)                                                                            \
  LUMO_INSTANTIATE bool PolycurveT<T>::GetPointAt(const CurvePosition&, T&) const noexcept;                 \
  LUMO_INSTANTIATE double PolycurveT<T>::GetLengthFrom(const CurvePosition&) const noexcept;                \
  LUMO_INSTANTIATE double PolycurveT<T>::GetLengthAlongCurveTo(const CurvePosition&) const noexcept;        \
  LUMO_INSTANTIATE std::optional<CurvePosition> PolycurveT<T>::GetPositionAtLength(double) const noexcept;  \
  LUMO_INSTANTIATE std::optional<CurvePosition> PolycurveT<T>::GetPositionAtRelativeLength(double)          \
      const noexcept;                                                                                       \
  LUMO_INSTANTIATE TavMath::DVector PolycurveT<T>::GetTangentAt(const CurvePosition&, bool) const noexcept; \
  LUMO_INSTANTIATE TavMath::Side PolycurveT<T>::GetSide(const T&) const noexcept;                           \
  LUMO_INSTANTIATE TavMath::Side PolycurveT<T>::OnLeftOrRight(const T&) const noexcept;
LUMO_POSITION_MEMBERS(tagPOINT)
LUMO_POSITION_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
