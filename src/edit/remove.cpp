// Taking nodes out, and reversing one subpath.

#include "edit/segment.h"
#include "lumo/crv_edit.h"
#include "lumo/crv_navigation.h"
#include "lumo/path_array.h"

using namespace Lumo;

template <class T>
int CRV_Remove(T* points, NODETYPE* types, int count, int first, int n) noexcept {
  if (!HasNodes(points, types, count) || !HasNode(count, first) || n < 1) return count;
  if (n >= count - first) return first;
  PathDelNext(types, points, first, n, count);
  return count - n;
}

template <class T>
int CRV_RemoveOpenSubpaths(T* points, NODETYPE* types, int count) noexcept {
  if (!HasNodes(points, types, count)) return count;
  int kept = 0;
  for (int first = 0; first < count;) {
    const int end = SubpathEnd(types, count, first);
    const bool isOpen = types[first].IsMove() && !types[first].IsClosed();
    if (!isOpen) {
      if (kept != first) MovePath(points, types, kept, first, end - first);
      kept += end - first;
    }
    first = end;
  }
  return kept;
}

template <class T>
int CRV_ReverseThisSubpath(T* points, NODETYPE* types, int count, int index) noexcept {
  if (!HasNodes(points, types, count)) return -1;
  const int first = CRV_FirstNodeOfThisSubpath(types, count, index);
  if (first < 0) return -1;
  const int last = CRV_LastNodeOfThisSubpath(types, count, index);
  Reverse(points, types, first, last);
  return first + (last - index);
}

LUMO_CRV_REMOVE(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_REMOVE(LUMO_INSTANTIATE, TavMath::DPoint)
