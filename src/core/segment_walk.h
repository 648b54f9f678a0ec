#pragma once
// The lines and cubics of two arrays, in path order, by the reading that all measures share. Never reads
// outside the arrays, whatever they hold.

#include "lumo/node_type.h"

namespace Lumo {

/// Calls visit(first, last) for every segment whose first own node is from .. end-1: last is first + 1 for a
/// line, first + 3 for a cubic. A cubic that the end of the arrays cuts short is left out.
template <class Visit>
void WalkSegments(const NODETYPE* types, int from, int end, int count, Visit visit) {
  for (int i = from < 1 ? 1 : from; i < end; ++i) {
    if (types[i].IsLine()) {
      visit(i - 1, i);
    } else if (types[i].IsControl() && count - i > 2) {
      visit(i - 1, i + 2);
      i += 2;
    }
  }
}

/// All of them.
template <class Visit>
void WalkSegments(const NODETYPE* types, int count, Visit visit) {
  WalkSegments(types, 1, count, count, visit);
}

}  // namespace Lumo
