#pragma once
// Stages 5 and 6: the order of edges round each vertex, the faces that this order implies, and each face's
// winding numbers.

#include <vector>

#include "boolean/edges.h"

namespace Lumo::Planar {

/// A subpath that meets nothing, and the windings on both its sides as it runs.
struct Loop {
  int subpath;
  Winding left, right;
};

/// Faces to the left of half-edges.
///
/// Invariants when `plane` is true: the orders round the vertices are those of a drawing without crossings
/// (Euler's formula holds for every connected part), so the windings are the same whichever way they are
/// added up, and on every edge left = right + step.
struct PlanarMap {
  std::vector<int> face;         ///< Of each half-edge.
  std::vector<int> next;         ///< Of each half-edge: the one after it along the face on its left.
  std::vector<Winding> winding;  ///< Of each face.
  std::vector<Loop> loops;       ///< Of EdgeSet::loops, in that order.
  bool plane = true;
};

/// Orders the outgoing half-edges of every vertex counter-clockwise (y up), in place.
void OrderRoundVertices(EdgeSet& edges, double contact);

/// Needs ordered vertices.
PlanarMap MakePlanarMap(const Collection& collection, const EdgeSet& edges, double contact);

}  // namespace Lumo::Planar
