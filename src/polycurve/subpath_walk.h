#pragma once
#include <cstddef>

#include "lumo/node_type.h"

namespace Lumo {

/// Calls visit(first, end) for every subpath in order, until it returns false. Nodes before the first move
/// node belong to none.
template <class Visit>
void WalkSubpaths(const NODETYPE* types, std::size_t count, Visit visit) {
  std::size_t first = 0;
  while (first < count && !types[first].IsMove()) ++first;
  while (first < count) {
    std::size_t end = first + 1;
    while (end < count && !types[end].IsMove()) ++end;
    if (!visit(first, end)) return;
    first = end;
  }
}

}  // namespace Lumo
