// Joining the enabled ends of open subpaths.

#include "core/room.h"
#include "edit/join.h"
#include "edit/segment.h"
#include "lumo/crv_edit.h"
#include "lumo/crv_navigation.h"
#include "lumo/path_array.h"

using namespace Lumo;

namespace {

/// The enabled ends of open subpaths, in index order: how many, and the first two.
struct EnabledEnds {
  int count = 0;
  int first = -1;
  int second = -1;
};

EnabledEnds FindEnabledEnds(const NODETYPE* types, int count) {
  EnabledEnds ends;
  for (int i = 0; i < count; ++i) {
    if (!types[i].IsEnabled() || types[i].IsClosed()) continue;
    if (!types[i].IsMove() && !IsLastOfSubpath(types, count, i)) continue;
    if (ends.count == 0) ends.first = i;
    if (ends.count == 1) ends.second = i;
    ++ends.count;
  }
  return ends;
}

/// Whether the subpath first..last is one segment that cannot be closed: a line never, a curve only by a
/// line.
bool IsSegmentLeftAlone(const NODETYPE* types, int first, int last, bool addLines) {
  const bool isLine = last == first + 1;
  const bool isCurve = last == first + 3 && types[last].IsCurve();
  return isLine || (isCurve && !addLines);
}

NODETYPE BridgeByte(NODETYPE end) {
  return static_cast<unsigned char>(NODETYPE::kLine | (end & NODETYPE::kSelected));
}

template <class T>
int JoinTwo(T* points, NODETYPE* types, int count, int first, int second, bool addLines) {
  if (addLines && points[first] != points[second]) {
    const T from = points[first], to = points[second];
    const bool isStart = types[first].IsMove();
    const NODETYPE bridge = BridgeByte(types[first]);
    // Before a start the line runs from second's point to the old start; behind an end it runs to second.
    count = CRV_AppendLine(points, types, count, first, isStart ? from : to);
    types[first + 1] = bridge;
    ++second;
    if (isStart) {
      points[first] = to;
    } else {
      ++first;
    }
  }
  return CRV_JoinTwoNodes(points, types, count, first, second);
}

/// Whether the subpath first..last is to be closed on itself.
bool IsToBeClosed(const NODETYPE* types, int first, int last, bool addLines) {
  return types[first].IsMove() && last > first && types[first].IsEnabled() && types[last].IsEnabled() &&
         !types[first].IsClosed() && !types[last].IsClosed() && types[last].IsOnCurve() &&
         !IsSegmentLeftAlone(types, first, last, addLines);
}

/// How many lines CloseAll inserts; -1 when it has nothing to close.
template <class T>
int LinesToInsert(const T* points, const NODETYPE* types, int count, bool addLines) {
  int lines = 0;
  bool any = false;
  for (int first = 0; first < count;) {
    const int last = SubpathEnd(types, count, first) - 1;
    if (IsToBeClosed(types, first, last, addLines)) {
      any = true;
      lines += addLines && points[first] != points[last];
    }
    first = last + 1;
  }
  return any ? lines : -1;
}

/// Closes every subpath whose two ends are enabled, front to back: what is done stands at 0.., what is to
/// come `lines` places later, where `lines` is what is still to be inserted.
template <class T>
int CloseAll(T* points, NODETYPE* types, int count, bool addLines) {
  int lines = LinesToInsert(points, types, count, addLines);
  if (lines < 0) return count;
  AssertRoom(points, types, count, count + lines);
  if (lines > 0) MovePath(points, types, lines, 0, count);
  const int end = count + lines;
  bool isFirst = true;
  int done = 0;
  for (int rest = lines; rest < end;) {
    const int restEnd = SubpathEnd(types, end, rest);
    const int last = restEnd - 1;
    const bool close = IsToBeClosed(types, rest, last, addLines);
    const bool addLine = close && addLines && points[rest] != points[last];
    int first = done;
    if (addLine) {
      const T closing = points[last];
      points[done] = closing;
      types[done] = types[rest];
      points[done + 1] = points[rest];
      types[done + 1] = BridgeByte(types[rest]);
      done += 2;
      ++rest;
    }
    if (done != rest) MovePath(points, types, done, rest, restEnd - rest);
    done += restEnd - rest;
    rest = restEnd;
    if (!close) continue;
    // The tidy-up behind the first join takes the open ends that are still there for cusps.
    if (!isFirst) types[done - 1].SetContinuity(ContinuityType::cusp);
    isFirst = false;
    CloseEnds(points, types, first, done - 1);
  }
  return TidyUp(points, types, done);
}

template <class T>
int JoinEnabledEnds(T* points, NODETYPE* types, int count, bool addLines) {
  if (!HasNodes(points, types, count)) return -2;
  const EnabledEnds ends = FindEnabledEnds(types, count);
  if (ends.count < 2) return -2;
  if (ends.count > 2) return CloseAll(points, types, count, addLines);
  const bool isOneSubpath = CRV_TwoNodesInSameSubpath(types, count, ends.first, ends.second) != 0;
  if (isOneSubpath && IsSegmentLeftAlone(types, ends.first, ends.second, addLines)) return count;
  return JoinTwo(points, types, count, ends.first, ends.second, addLines);
}

}  // namespace

template <class T>
int CRV_JoinEnabled(T* points, NODETYPE* types, int count) noexcept {
  return JoinEnabledEnds(points, types, count, false);
}

template <class T>
int CRV_JoinEnabledAddingLineSegments(T* points, NODETYPE* types, int count) noexcept {
  return JoinEnabledEnds(points, types, count, true);
}

LUMO_CRV_JOIN_ENABLED(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_JOIN_ENABLED(LUMO_INSTANTIATE, TavMath::DPoint)
