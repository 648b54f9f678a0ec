#pragma once
// Small questions about a node that every verb of this folder asks. Indices must lie inside the path.

#include "lumo/node_type.h"

namespace Lumo {

template <class T>
inline bool HasNodes(const T* points, const NODETYPE* types, int count) {
  return points != nullptr && types != nullptr && count > 0;
}

inline bool HasNode(int count, int i) { return i >= 0 && i < count; }

/// The number of nodes of the segment that ends at node i: 1 for a line, 3 for a curve (its two control
/// points come first), 0 where no whole segment ends (moves, control points, and ends of malformed segments).
inline int SegmentNodes(const NODETYPE* types, int i) {
  if (types[i].IsLine()) return i >= 1 ? 1 : 0;
  const bool whole = types[i].IsCurve() && i >= 3 && types[i - 1].IsControl() && types[i - 2].IsControl();
  return whole ? 3 : 0;
}

inline bool IsLastOfSubpath(const NODETYPE* types, int count, int i) {
  return i + 1 == count || types[i + 1].IsMove();
}

/// One past the last node of the subpath that node i belongs to.
inline int SubpathEnd(const NODETYPE* types, int count, int i) {
  while (!IsLastOfSubpath(types, count, i)) ++i;
  return i + 1;
}

}  // namespace Lumo
