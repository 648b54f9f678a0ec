#include "lumo/repair.h"

namespace {

NODETYPE FixedInner(NODETYPE type) {
  type.Set(NODETYPE::kClosed, false);
  if (type.IsOnCurve()) type.Set(NODETYPE::kUser, true);
  return type;
}

NODETYPE FixedLast(NODETYPE type, bool isClosed) {
  if (type.IsControl()) type.SetKind(NODETYPE::kLine);
  type.Set(NODETYPE::kClosed, isClosed);
  type.Set(NODETYPE::kUser, !isClosed);
  return type;
}

}  // namespace

namespace Lumo {

bool FixNodeTypes(NODETYPE* types, std::size_t count) noexcept {
  if (types == nullptr) return false;
  bool changed = false;
  bool isClosed = false;
  for (std::size_t i = 0; i < count; ++i) {
    NODETYPE fixed = types[i];
    if (fixed.IsMove()) {
      isClosed = fixed.IsClosed();
      fixed |= NODETYPE::kUser;
    } else {
      const bool isLast = i + 1 == count || types[i + 1].IsMove();
      fixed = isLast ? FixedLast(fixed, isClosed) : FixedInner(fixed);
    }
    changed |= fixed.value != types[i].value;
    types[i] = fixed;
  }
  return changed;
}

template <class T>
int ScrubDanglingMoves(T* points, NODETYPE* types, int count, bool keepLetters) noexcept {
  if (points == nullptr || types == nullptr || count < 1) return 0;
  int kept = 0;
  unsigned char letter = 0;  // of the dangling nodes since the last kept node
  for (int i = 0; i < count; ++i) {
    NODETYPE type = types[i];
    type |= letter;
    letter = 0;
    if (type.IsMove() && (i + 1 == count || types[i + 1].IsMove())) {
      if (keepLetters) letter = type & NODETYPE::kLetter;
      continue;
    }
    const bool isUser = type.IsMove() || (type.IsOnCurve() && !type.IsClosed());
    type.Set(NODETYPE::kUser, isUser);
    // Clears the bit on every node, not only on subpath starts: the caller asks for a path without letters.
    if (!keepLetters) type.Set(NODETYPE::kLetter, false);
    points[kept] = points[i];
    types[kept++] = type;
  }
  return kept;
}

template <class T>
std::size_t RemoveZeroLengthSegments(T* points, std::size_t count) noexcept {
  if (points == nullptr || count == 0) return 0;
  std::size_t kept = 1;
  for (std::size_t i = 1; i < count; ++i) {
    // Kept points only move forward, and equal points are dropped: the last kept one equals the one before i.
    if (points[i] != points[kept - 1]) points[kept++] = points[i];
  }
  return kept;
}

}  // namespace Lumo

LUMO_REPAIR(LUMO_INSTANTIATE, tagPOINT)
LUMO_REPAIR(LUMO_INSTANTIATE, TavMath::DPoint)
