#include "lumo/path_array.h"

#include <algorithm>
#include <cstring>

#include "core/room.h"

namespace {

template <class T>
void MoveNodes(T* toPoints, NODETYPE* toTypes, const T* fromPoints, const NODETYPE* fromTypes, int n) {
  const auto nodes = static_cast<std::size_t>(n);
  std::memmove(toPoints, fromPoints, nodes * sizeof(T));
  std::memmove(toTypes, fromTypes, nodes);
}

/// The byte of an on-curve node after reversal: the kind comes from the node before it, whose segment now
/// ends here.
NODETYPE ReversedType(NODETYPE type, NODETYPE before) {
  if (type.IsControl()) return type;
  type.SetKind(before.IsControl() ? NODETYPE::kCurve : before.Kind());
  if (type.IsClosed()) type.Set(NODETYPE::kUser, type.IsMove());
  return type;
}

}  // namespace

namespace Lumo {

template <class T>
void MovePath(T* points, NODETYPE* types, int destination, int source, int n) noexcept {
  CopyPath(points, types, destination, points, types, source, n);
}

template <class T>
void CopyPath(T* toPoints, NODETYPE* toTypes, int destination, const NotDeduced<T>* fromPoints,
              const NODETYPE* fromTypes, int source, int n) noexcept {
  if (!toPoints || !toTypes || !fromPoints || !fromTypes || destination < 0 || source < 0 || n < 1) return;
  AssertRoom(toPoints, toTypes, destination, destination + n);
  MoveNodes(toPoints + destination, toTypes + destination, fromPoints + source, fromTypes + source, n);
}

template <class T>
void Reverse(T* points, NODETYPE* types, int count) noexcept {
  if (count >= 1) Reverse(points, types, 0, count - 1);
}

template <class T>
void Reverse(T* points, NODETYPE* types, int first, int last) noexcept {
  if (first > last) std::swap(first, last);
  if (!points || !types || first < 0) return;
  std::reverse(points + first, points + last + 1);
  std::reverse(types + first, types + last + 1);
  for (int k = last; k > first; --k) types[k] = ReversedType(types[k], types[k - 1]);
  types[first].SetKind(NODETYPE::kMove);
  types[first] |= NODETYPE::kUser;
}

}  // namespace Lumo

template <class T>
void PathInsNext(NODETYPE* types, T* points, int index, int n, int count) noexcept {
  if (!types || !points || index < 0 || n < 1 || index >= count) return;
  Lumo::AssertRoom(points, types, count, count + n);
  MoveNodes(points + index + n, types + index + n, points + index, types + index, count - index);
}

template <class T>
void PathDelNext(NODETYPE* types, T* points, int index, int n, int count) noexcept {
  if (!types || !points || index < 0 || n < 1 || index >= count) return;
  n = std::min(n, count - index);
  const int tail = count - index - n;
  if (tail > 0) MoveNodes(points + index, types + index, points + index + n, types + index + n, tail);
}

LUMO_PATH_ARRAY(LUMO_INSTANTIATE, tagPOINT)
LUMO_PATH_ARRAY(LUMO_INSTANTIATE, TavMath::DPoint)
