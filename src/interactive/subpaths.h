#pragma once

#include "lumo/node_type.h"

namespace Lumo::Interactive {

/// The index of the next move node after i, or count. Looks at a block of bytes at a time.
inline int NextMove(const NODETYPE* types, int count, int i) noexcept {
  constexpr int kBlock = 64;
  int k = i + 1;
  for (; count - k >= kBlock; k += kBlock) {
    unsigned char moves = 0;
    for (int j = 0; j < kBlock; ++j)
      moves |= static_cast<unsigned char>(types[k + j].value < NODETYPE::kLine);
    if (moves != 0) break;
  }
  while (k < count && !types[k].IsMove()) ++k;
  return k;
}

/// Calls visit(first, end) for each subpath, in order; false ends the walk and is returned.
template <class Visit>
bool ForSubpaths(const NODETYPE* types, int count, Visit visit) noexcept {
  for (int first = 0; first < count;) {
    const int end = NextMove(types, count, first);
    if (!visit(first, end)) return false;
    first = end;
  }
  return true;
}

}  // namespace Lumo::Interactive
