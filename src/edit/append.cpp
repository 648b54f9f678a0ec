// Inserting given nodes.

#include <algorithm>

#include "core/room.h"
#include "edit/segment.h"
#include "lumo/crv_edit.h"
#include "lumo/path_array.h"

using namespace Lumo;

namespace {

/// index == count is let through on purpose and writes slot count + 1: hosts pass count - 1 to append.
template <class T>
int InsertAfter(T* points, NODETYPE* types, int count, int index, const T& point, NODETYPE type) {
  if (points == nullptr || types == nullptr) return count;
  if (index < 0 || index > count) return -1;
  AssertRoom(points, types, count, std::max(count, index + 1) + 1);
  PathInsNext(types, points, index + 1, 1, count);
  points[index + 1] = point;
  types[index + 1] = type;
  return count + 1;
}

}  // namespace

template <class T>
int CRV_AppendLine(T* points, NODETYPE* types, int count, int index, T point) noexcept {
  return InsertAfter(points, types, count, index, point, NODETYPE::kLine | NODETYPE::kUser);
}

template <class T>
int CRV_AppendMove(T* points, NODETYPE* types, int count, int index, T point) noexcept {
  return InsertAfter(points, types, count, index, point, NODETYPE::kMove | NODETYPE::kUser);
}

template <class T>
int CRV_Append(T* points, NODETYPE* types, int count, int index, const Lumo::NotDeduced<T>* srcPoints,
               const NODETYPE* srcTypes, int n, int first) noexcept {
  if (points == nullptr || types == nullptr) return count;
  if (index < 0 || index > count) return -1;
  if (srcPoints == nullptr || srcTypes == nullptr || n < 1 || first < 0 || first > n) return count;
  const int gap = n - first;
  AssertRoom(points, types, count, count + gap);
  PathInsNext(types, points, index + 1, gap, count);
  // All n nodes are copied, `first` of them past the gap: hosts use it to replace what followed.
  const int copied = std::min(n, count + gap - (index + 1));
  CopyPath(points, types, index + 1, srcPoints, srcTypes, first, copied);
  return count + gap;
}

LUMO_CRV_APPEND(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_APPEND(LUMO_INSTANTIATE, TavMath::DPoint)
