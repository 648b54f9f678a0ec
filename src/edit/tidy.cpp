#include "edit/tidy.h"

#include <algorithm>

#include "edit/segment.h"
#include "lumo/path_array.h"
#include "lumo/point_types.h"

namespace Lumo {
namespace {

/// Step 3. Control points are followed by a curve node (they come in pairs).
template <class T>
int CollapseMoveRuns(T* points, NODETYPE* types, int count, const TrackedNodes& tracked) {
  int kept = 0;
  for (int i = 0; i < count; ++i) {
    const NODETYPE type = types[i];
    const bool isFollowed = i + 1 < count;
    if (type.IsControl() && kept > 0 && types[kept - 1].IsControl() && isFollowed)
      types[i + 1].SetKind(NODETYPE::kCurve);
    const bool keepsRuns = (kept > 0 ? types[0] : type).IsLetter();
    if (type.IsMove() && isFollowed && types[i + 1].IsMove() && !keepsRuns) {
      tracked.Removed(kept);
      continue;
    }
    if (kept != i) points[kept] = points[i];
    types[kept++] = type;
  }
  return kept;
}

/// Rotates the closed subpath first..last, which is broken at the move node `middle`, so that it starts
/// there. The two closed ends meet inside now: one stays, with the kind of the later and the flags of the
/// earlier, which is the one the user knows. Returns the number of nodes left.
template <class T>
int StartAtBreak(T* points, NODETYPE* types, int first, int middle, int last) {
  std::rotate(points + first, points + middle, points + last + 1);
  std::rotate(types + first, types + middle, types + last + 1);
  const int seam = first + (last - middle);
  NODETYPE survivor = types[seam + 1];
  survivor.SetKind(types[seam].Kind());
  survivor.Set(NODETYPE::kClosed, false);
  types[seam] = survivor;
  const int nodes = last + 1 - first;
  MovePath(points, types, seam + 1, seam + 2, first + nodes - (seam + 2));
  return nodes - 1;
}

/// The last node of a closed subpath that starts at first and has a move node at middle inside; -1 when the
/// subpath is whole, or malformed.
int BrokenSubpathEnd(const NODETYPE* types, int count, int first, int middle) {
  if (!types[first].IsMove() || !types[first].IsClosed() || middle == count) return -1;
  int last = first + 1;
  while (last < count && !types[last].IsClosed()) ++last;
  return last > middle && last < count && !types[last].IsMove() ? last : -1;
}

/// Step 2.
template <class T>
int OpenBrokenSubpaths(T* points, NODETYPE* types, int count) {
  int kept = 0;
  for (int first = 0; first < count;) {
    int end = SubpathEnd(types, count, first), nodes = end - first;
    const int last = BrokenSubpathEnd(types, count, first, end);
    if (last >= 0) {
      nodes = StartAtBreak(points, types, first, end, last);
      end = last + 1;
    }
    if (kept != first) MovePath(points, types, kept, first, nodes);
    kept += nodes;
    first = end;
  }
  return kept;
}

/// Step 4 at one node.
void FixContinuity(NODETYPE* types, int count, int i) {
  NODETYPE& type = types[i];
  if (type.IsMove()) return;
  const bool isOpenEnd = IsLastOfSubpath(types, count, i) && !type.IsClosed();
  const bool lineFollows = i + 1 < count && types[i + 1].IsLine();
  if (type.IsControl() || isOpenEnd || (type.IsLine() && lineFollows)) {
    type.SetContinuity(ContinuityType::cusp);
  } else if (type.IsCurve() && lineFollows && type.Continuity() == ContinuityType::symmetric) {
    type.SetContinuity(ContinuityType::smooth);
  }
}

}  // namespace

template <class T>
int TidyUp(T* points, NODETYPE* types, int count, const TrackedNodes& tracked) {
  if (count < 1) return count;
  if (!types[0].IsMove()) types[0].SetKind(NODETYPE::kMove);
  count = OpenBrokenSubpaths(points, types, count);
  count = CollapseMoveRuns(points, types, count, tracked);
  for (int i = 0; i < count; ++i) FixContinuity(types, count, i);
  return count;
}

template int TidyUp<tagPOINT>(tagPOINT*, NODETYPE*, int, const TrackedNodes&);
template int TidyUp<TavMath::DPoint>(TavMath::DPoint*, NODETYPE*, int, const TrackedNodes&);

}  // namespace Lumo
