// Joining ends of open subpaths.

#include "edit/join.h"

#include <algorithm>
#include <cmath>

#include "edit/segment.h"
#include "lumo/crv_edit.h"
#include "lumo/crv_navigation.h"
#include "lumo/path_array.h"
#include "math/point_traits.h"

namespace Lumo {
namespace {

bool IsOpenEnd(const NODETYPE* types, int count, int i) {
  return CRV_IsFirstOrLastOpenSubpathNode(types, count, i) != 0;
}

/// The nodes of one subpath.
struct Range {
  int first;
  int last;
};

Range SubpathOf(const NODETYPE* types, int count, int i) {
  return {std::max(CRV_FirstNodeOfThisSubpath(types, count, i), 0),
          CRV_LastNodeOfThisSubpath(types, count, i)};
}

template <class T>
void ReverseRange(T* points, NODETYPE* types, const Range& range, const TrackedNodes& tracked) {
  Reverse(points, types, range.first, range.last);
  tracked.Reversed(range.first, range.last);
}

/// Brings the subpath `next` right behind the subpath `to`, whose last node takes the place of next's first.
/// Returns the merged range; *joint receives the index of the shared node.
template <class T>
Range Merge(T* points, NODETYPE* types, int count, Range to, Range next, int* joint,
            const TrackedNodes& tracked) {
  const bool isBehind = next.first > to.last;
  const int first = isBehind ? to.last + 1 : next.first;
  const int middle = isBehind ? next.first : next.last + 1;
  const int end = isBehind ? next.last + 1 : to.last + 1;
  std::rotate(points + first, points + middle, points + end);
  std::rotate(types + first, types + middle, types + end);
  tracked.Rotated(first, middle, end);
  const int length = next.last - next.first + 1;
  if (!isBehind) to = {to.first - length, to.last - length};
  PathDelNext(types, points, to.last + 1, 1, count);
  tracked.Removed(to.last + 1);
  *joint = to.last;
  return {to.first, to.last + length - 1};
}

}  // namespace

template <class T>
T JointOf(const T& a, const T& b) {
  const DPoint p = ToDouble(a), q = ToDouble(b);
  return FromDouble<T>({std::trunc((p.x + q.x) * 0.5), std::trunc((p.y + q.y) * 0.5)});
}

template <class T>
void CloseEnds(T* points, NODETYPE* types, int first, int last) {
  types[first] |= NODETYPE::kClosed;
  types[last] |= NODETYPE::kClosed;
  types[last].Set(NODETYPE::kUser, false);
  points[first] = points[last] = JointOf(points[first], points[last]);
}

template <class T>
int JoinEnds(T* points, NODETYPE* types, int count, int a, int b, int* joined, const TrackedNodes& tracked) {
  if (a == b || !IsOpenEnd(types, count, a) || !IsOpenEnd(types, count, b)) return -2;
  Range ofA = SubpathOf(types, count, a), ofB = SubpathOf(types, count, b);
  if (ofA.first == ofB.first) {
    CloseEnds(points, types, ofA.first, ofA.last);
    *joined = types[a].IsUser() ? a : b;
    return TidyUp(points, types, count, tracked.With(joined));
  }
  const bool wasStart = types[a].IsMove(), isEnd = !types[b].IsMove();
  if (wasStart) ReverseRange(points, types, ofA, tracked);
  if (isEnd) ReverseRange(points, types, ofB, tracked);
  points[ofA.last] = points[ofB.first] = JointOf(points[ofA.last], points[ofB.first]);
  const Range merged = Merge(points, types, count, ofA, ofB, joined, tracked);
  if (wasStart && isEnd) {  // the result runs the way a's subpath did
    ReverseRange(points, types, merged, tracked);
    *joined = merged.first + (merged.last - *joined);
  }
  return count - 1;
}

template int JoinEnds<tagPOINT>(tagPOINT*, NODETYPE*, int, int, int, int*, const TrackedNodes&);
template int JoinEnds<DPoint>(DPoint*, NODETYPE*, int, int, int, int*, const TrackedNodes&);
template void CloseEnds<tagPOINT>(tagPOINT*, NODETYPE*, int, int);
template void CloseEnds<DPoint>(DPoint*, NODETYPE*, int, int);

namespace {

/// Whether the four indices name two ends to be joined and a bridge that joins them.
bool IsBridge(const NODETYPE* types, int count, int p1, int p2, int p3, int p4) {
  for (const int p : {p1, p2, p3, p4}) {
    if (!IsOpenEnd(types, count, p)) return false;
  }
  const auto together = [&](int a, int b) { return CRV_TwoNodesInSameSubpath(types, count, a, b) != 0; };
  const auto isLone = [&](int p) { return types[p].IsMove() && IsLastOfSubpath(types, count, p); };
  if (!together(p3, p4) || together(p1, p3) || together(p2, p3)) return false;
  if (p3 == p4 && !isLone(p3)) return false;
  return p1 != p2 || (isLone(p1) && !isLone(p3));
}

template <class T>
int JoinWithBridge(T* points, NODETYPE* types, int count, int& p1, int& p2, int& p3, int& p4) {
  const TrackedNodes tracked{&p1, &p2, &p3, &p4};
  const auto reverse = [&](int node) { ReverseRange(points, types, SubpathOf(types, count, node), tracked); };
  if (types[p1].IsMove()) reverse(p1);
  if (!types[p2].IsMove()) reverse(p2);
  if (!types[p3].IsMove()) reverse(p3);
  int joint = 0;
  count = JoinEnds(points, types, count, p1, p3, &joint, tracked);
  if (count < 0) return count;
  count = JoinEnds(points, types, count, p4, p2, &joint, tracked);
  if (count >= 0) p2 = p4 = joint;
  return count;
}

}  // namespace
}  // namespace Lumo

using namespace Lumo;

template <class T>
int CRV_JoinTwoNodesExt(T* points, NODETYPE* types, int count, int a, int b, int* joinedIndex) noexcept {
  if (!HasNodes(points, types, count)) return -2;
  int joined = -1;
  const int newCount = JoinEnds(points, types, count, a, b, &joined, {});
  if (newCount >= 0 && joinedIndex != nullptr) *joinedIndex = joined;
  return newCount;
}

template <class T>
int CRV_JoinTwoNodes(T* points, NODETYPE* types, int count, int a, int b) noexcept {
  return CRV_JoinTwoNodesExt(points, types, count, a, b, nullptr);
}

template <class T>
int CRV_JoinTwoNodesWithOpenSubpathExt(T* points, NODETYPE* types, int count, int* p1, int* p2, int* p3,
                                       int* p4) noexcept {
  if (!HasNodes(points, types, count) || !p1 || !p2 || !p3 || !p4) return -1;
  if (!IsBridge(types, count, *p1, *p2, *p3, *p4)) return -1;
  int nodes[4] = {*p1, *p2, *p3, *p4};  // the caller's pointers may be the same
  const int newCount = JoinWithBridge(points, types, count, nodes[0], nodes[1], nodes[2], nodes[3]);
  *p1 = nodes[0], *p2 = nodes[1], *p3 = nodes[2], *p4 = nodes[3];
  return newCount;
}

template <class T>
int CRV_JoinTwoNodesWithOpenSubpath(T* points, NODETYPE* types, int count, int p1, int p2, int p3,
                                    int p4) noexcept {
  if (p1 >= 0 && p2 >= 0) return CRV_JoinTwoNodesWithOpenSubpathExt(points, types, count, &p1, &p2, &p3, &p4);
  if (p1 >= 0 && p3 >= 0) return CRV_JoinTwoNodes(points, types, count, p1, p3);
  if (p2 < 0 || p4 < 0) return -1;
  return CRV_JoinTwoNodes(points, types, count, p4, p2);
}

LUMO_CRV_JOIN(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_JOIN(LUMO_INSTANTIATE, TavMath::DPoint)
