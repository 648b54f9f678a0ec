// Joining ends, closing subpaths, and appending that continues a path.

#include <cmath>

#include "lumo/crv_edit.h"
#include "lumo/crv_navigation.h"
#include "lumo/path_array.h"
#include "lumo/polycurve.h"
#include "math/point_traits.h"
#include "polycurve/edit_in_place.h"
#include "polycurve/path_segment.h"
#include "polycurve/subpath_walk.h"

namespace Lumo {
namespace {

int Index(std::size_t i) { return static_cast<int>(i); }

/// Marks two ends that lie at one place as the closed ends of their subpath.
void MarkClosed(NODETYPE& start, NODETYPE& last) {
  start |= NODETYPE::kClosed | NODETYPE::kUser;
  last |= NODETYPE::kClosed;
  last.Set(NODETYPE::kUser, false);
}

/// The direction that leaves an open end, away from its subpath; false for a lone move node.
template <class T>
bool OutwardTangent(const T* points, const NODETYPE* types, int count, int end, DVector& outward) {
  const bool atStart = types[end].IsMove();
  const int own = atStart ? end + 1 : end;
  if (own >= count) return false;
  const int length = types[own].IsLine() ? 1 : 3;
  const int first = atStart ? end : own - length;
  if (!IsPosition(types, count, {first, first + length, 0})) return false;
  const PathSegment segment = LoadSegment(points, first, first + length);
  outward = atStart ? -segment.TangentAt(0) : segment.TangentAt(1);
  return true;
}

/// Joins two open ends by a cubic along their tangents. The bridge is put behind the path and joined at both
/// ends.
template <class T>
int BridgeWithCurve(T* points, NODETYPE* types, int count, int a, int b) {
  DVector fromA{}, fromB{};
  if (!OutwardTangent(points, types, count, a, fromA) || !OutwardTangent(points, types, count, b, fromB))
    return -1;
  const DPoint start = ToDouble(points[a]), end = ToDouble(points[b]);
  const double handle = TavMath::Distance(start, end) / 3;
  const T bridge[] = {points[a], FromDouble<T>(start + handle * fromA), FromDouble<T>(end + handle * fromB),
                      points[b]};
  constexpr NODETYPE kTypes[] = {NODETYPE::kMove | NODETYPE::kUser, NODETYPE::kControl, NODETYPE::kControl,
                                 NODETYPE::kCurve | NODETYPE::kUser};
  CopyPath(points, types, count, bridge, kTypes, 0, 4);
  int p1 = a, p2 = b, p3 = count, p4 = count + 3;
  const int joined = CRV_JoinTwoNodesWithOpenSubpathExt(points, types, count + 4, &p1, &p2, &p3, &p4);
  if (joined < 0) return joined;
  CRV_SetCont(types, joined, p1, ContinuityType::smooth);
  CRV_SetCont(types, joined, p2, ContinuityType::smooth);
  return joined;
}

/// The enabled ends of open subpaths. A lone move node is one end.
struct EnabledEnds {
  int count = 0;
  int first = -1;
  int second = -1;
};
EnabledEnds FindEnabledEnds(const NODETYPE* types, int count) {
  EnabledEnds ends;
  for (int i = 0; i < count; ++i) {
    if (!types[i].IsEnabled() || types[i].IsControl() || !CRV_IsFirstOrLastOpenSubpathNode(types, count, i))
      continue;
    (ends.count == 0 ? ends.first : ends.second) = ends.count < 2 ? i : ends.second;
    ++ends.count;
  }
  return ends;
}

/// Closes every open subpath whose two ends are enabled with a cubic, from the last to the first, so that the
/// indices of those still to come stay right.
template <class T>
int CloseEnabledWithCurves(T* points, NODETYPE* types, int count) {
  for (int last = count - 1; last >= 0;) {
    const int first = CRV_FirstNodeOfThisSubpath(types, count, last);
    if (first < 0) break;
    if (first < last && types[first].IsEnabled() && types[last].IsEnabled() && !types[last].IsClosed()) {
      const int joined = BridgeWithCurve(points, types, count, first, last);
      if (joined >= 0) count = joined;
    }
    last = first - 1;
  }
  return count;
}

}  // namespace

template <class T>
bool PolycurveT<T>::Join(std::size_t a, std::size_t b) noexcept {
  if (a >= GetPointCount() || b >= GetPointCount()) return false;
  return EditInPlace(*this, 0, [&](T* points, NODETYPE* types, int count) {
    return CRV_JoinTwoNodes(points, types, count, Index(a), Index(b));
  });
}

template <class T>
bool PolycurveT<T>::JoinEndpoints() noexcept {
  return !IsEmpty() && Join(0, GetPointCount() - 1);
}

template <class T>
bool PolycurveT<T>::JoinEnabled() noexcept {
  return !IsEmpty() && EditInPlace(*this, 0, CRV_JoinEnabled<T>);
}

template <class T>
bool PolycurveT<T>::JoinEnabledAddingLineSegments() noexcept {
  const int ends = FindEnabledEnds(GetNodeTypes(), IntCount()).count;
  return ends >= 2 &&
         EditInPlace(*this, static_cast<std::size_t>(ends), CRV_JoinEnabledAddingLineSegments<T>);
}

template <class T>
bool PolycurveT<T>::JoinEnabledAddingCurves() noexcept {
  const EnabledEnds ends = FindEnabledEnds(GetNodeTypes(), IntCount());
  if (ends.count < 2) return false;
  return EditInPlace(*this, 4 + 3 * static_cast<std::size_t>(ends.count),
                     [&](T* points, NODETYPE* types, int count) {
                       return ends.count == 2 ? BridgeWithCurve(points, types, count, ends.first, ends.second)
                                              : CloseEnabledWithCurves(points, types, count);
                     });
}

template <class T>
bool PolycurveT<T>::CloseSubpath(std::size_t i) noexcept {
  if (i >= GetPointCount()) return false;
  const int first = CRV_FirstNodeOfThisSubpath(GetNodeTypes(), IntCount(), Index(i));
  const int last = CRV_LastNodeOfThisSubpath(GetNodeTypes(), IntCount(), Index(i));
  if (first < 0 || last <= first) return false;
  // The join works on the selection, so what was selected before is lost; hosts select anew. It is done even
  // when there turns out to be nothing to close.
  return EditInPlace(*this, 2, [&](T* points, NODETYPE* types, int count) {
    CRV_DisableAllNodes(types, count);
    types[first] |= NODETYPE::kEnabled;
    types[last] |= NODETYPE::kEnabled;
    const int joined = CRV_JoinEnabledAddingLineSegments(points, types, count);
    return joined < 0 ? count : joined;
  });
}

template <class T>
bool PolycurveT<T>::CloseLastSubpath(double tolerance, bool addLine) noexcept {
  const int count = IntCount();
  const int first = CRV_FirstNodeOfThisSubpath(GetNodeTypes(), count, count - 1), last = count - 1;
  if (first < 0 || last <= first) return false;
  if (GetNodeTypes()[first].IsClosed() && GetNodeTypes()[last].IsClosed()) return true;
  const double gap = TavMath::Distance(ToDouble(GetPoints()[first]), ToDouble(GetPoints()[last]));
  const bool snap = gap <= tolerance || gap == 0;
  if (!snap && !addLine) return false;
  return EditInPlace(*this, 1, [&](T* points, NODETYPE* types, int n) {
    if (!snap) {
      types[n] = NODETYPE::kLine;
      ++n;
    }
    points[n - 1] = points[first];
    MarkClosed(types[first], types[n - 1]);
    return n;
  });
}

template <class T>
bool PolycurveT<T>::CloseLastSubpathWithOptionalLine() noexcept {
  return CloseLastSubpath(0, true);
}

template <class T>
bool PolycurveT<T>::CloseOpenSubpaths() noexcept {
  PolycurveT closed;
  if (!closed.Reserve(GetPointCount() + GetSubpathCount())) return false;
  WalkSubpaths(GetNodeTypes(), GetPointCount(), [&](std::size_t first, std::size_t end) {
    closed.PushBack(GetPoints() + first, GetNodeTypes() + first, end - first);
    if (end - first > 1) closed.CloseLastSubpathWithOptionalLine();
    return true;
  });
  Swap(closed);
  return true;
}

// ---- Appending that continues the last subpath ----

template <class T>
bool PolycurveT<T>::PushBackWithJoinCheck(const T& point, NODETYPE type) noexcept {
  const std::size_t count = GetPointCount();
  if (count > 0 && GetPoint(count - 1) == point) {
    constexpr unsigned char kTaken = NODETYPE::kEnabled | NODETYPE::kContinuityMask;
    const NODETYPE last = GetNodeType(count - 1);
    return SetNodeType(count - 1, static_cast<unsigned char>((last & ~kTaken) | (type & kTaken)));
  }
  // A point that does not continue the path begins a subpath of its own, whatever kind was given.
  type.SetKind(NODETYPE::kMove);
  return PushBack(point, type);
}

template <class T>
bool PolycurveT<T>::PushBackStart(const T& point, NODETYPE type) noexcept {
  // A closed subpath has no end that could be continued.
  if (!IsLastSubpathClosed()) return PushBackWithJoinCheck(point, type);
  type.SetKind(NODETYPE::kMove);
  return PushBack(point, type);
}

template <class T>
bool PolycurveT<T>::AppendLineWithJoin(const T& start, const T& end) noexcept {
  const T from = start, to = end;  // they may lie in this path
  return Reserve(GetPointCount() + 2) && PushBackStart(from, NODETYPE::kUser) && LineTo(to);
}

template <class T>
bool PolycurveT<T>::AppendBezierWithJoin(const T& start, const T& control1, const T& control2,
                                         const T& end) noexcept {
  const T from = start, first = control1, second = control2, to = end;
  return Reserve(GetPointCount() + 4) && PushBackStart(from, NODETYPE::kUser) && CubicTo(first, second, to);
}

template <class T>
bool PolycurveT<T>::AppendWithJoin(const PolycurveT& other) noexcept {
  const PolycurveT source(other);
  const std::size_t n = source.GetPointCount();
  if (n == 0) return GetCurveData() != nullptr;
  if (source.GetPointCount() != other.GetPointCount() || !Reserve(GetPointCount() + n)) return false;
  // Only an open subpath can become the rest of another one.
  if (source.GetNodeType(0).IsClosed()) return PushBack(source);
  return PushBackStart(source.GetPoint(0), source.GetNodeType(0)) &&
         PushBack(source.GetPoints() + 1, source.GetNodeTypes() + 1, n - 1);
}

#define LUMO_JOINING_MEMBERS(T)                                                            \
  LUMO_INSTANTIATE bool PolycurveT<T>::Join(std::size_t, std::size_t) noexcept;            \
  LUMO_INSTANTIATE bool PolycurveT<T>::JoinEndpoints() noexcept;                           \
  LUMO_INSTANTIATE bool PolycurveT<T>::JoinEnabled() noexcept;                             \
  LUMO_INSTANTIATE bool PolycurveT<T>::JoinEnabledAddingLineSegments() noexcept;           \
  LUMO_INSTANTIATE bool PolycurveT<T>::JoinEnabledAddingCurves() noexcept;                 \
  LUMO_INSTANTIATE bool PolycurveT<T>::CloseSubpath(std::size_t) noexcept;                 \
  LUMO_INSTANTIATE bool PolycurveT<T>::CloseLastSubpath(double, bool) noexcept;            \
  LUMO_INSTANTIATE bool PolycurveT<T>::CloseLastSubpathWithOptionalLine() noexcept;        \
  LUMO_INSTANTIATE bool PolycurveT<T>::CloseOpenSubpaths() noexcept;                       \
  LUMO_INSTANTIATE bool PolycurveT<T>::PushBackWithJoinCheck(const T&, NODETYPE) noexcept; \
  LUMO_INSTANTIATE bool PolycurveT<T>::PushBackStart(const T&, NODETYPE) noexcept;         \
  LUMO_INSTANTIATE bool PolycurveT<T>::AppendLineWithJoin(const T&, const T&) noexcept;    \
  LUMO_INSTANTIATE bool PolycurveT<T>::AppendBezierWithJoin(const T&, const T&, const T&,  \
                                                            const T&) noexcept;            \
  LUMO_INSTANTIATE bool PolycurveT<T>::AppendWithJoin(const PolycurveT&) noexcept;
LUMO_JOINING_MEMBERS(tagPOINT)
LUMO_JOINING_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
