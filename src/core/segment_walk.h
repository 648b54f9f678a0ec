#pragma once
// What a segment is, and the lines and cubics of two arrays in path order, for everything that names a
// segment by its nodes. Never reads outside the arrays, whatever they hold.

#include "lumo/node_type.h"

namespace Lumo {

/// Whether node i is the first control point of a cubic: another one and a curve node follow, a node stands
/// before it. No two cubics share a control point or a curve node, so a walk may begin anywhere.
template <class Index>
bool StartsCurve(const NODETYPE* types, Index count, Index i) noexcept {
  return i >= 1 && i < count && count - i > 2 && types[i].IsControl() && types[i + 1].IsControl() &&
         types[i + 2].IsCurve();
}

/// Whether node i ends a line: a line node with a node before it.
inline bool EndsLine(const NODETYPE* types, int i) noexcept { return i >= 1 && types[i].IsLine(); }

/// Whether node i ends a line or a cubic.
inline bool IsSegmentEnd(const NODETYPE* types, int count, int i) noexcept {
  return EndsLine(types, i) || (i >= 3 && StartsCurve(types, count, i - 2));
}

/// Calls visit(first, last) for every segment whose first own node is from .. end-1: last is first + 1 for a
/// line, first + 3 for a cubic.
template <class Visit>
void WalkSegments(const NODETYPE* types, int from, int end, int count, Visit visit) {
  for (int i = from < 1 ? 1 : from; i < end; ++i) {
    if (types[i].IsLine()) {
      visit(i - 1, i);
    } else if (StartsCurve(types, count, i)) {
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
