#pragma once
// Stages 5 and 6: the order of edges round each vertex, the faces that this order implies, and each face's
// winding numbers.

#include <vector>

#include "boolean/edges.h"

namespace Lumo::Planar {

/// Faces to the left of half-edges.
///
/// Invariants when `plane` is true: the orders round the vertices are those of a drawing without crossings
/// (Euler's formula holds for every connected part), so the windings are the same whichever way they are
/// added up, and on every edge left = right + step.
struct PlanarMap {
  std::vector<int> face;         ///< Of each half-edge.
  std::vector<Winding> winding;  ///< Of each face.
  bool plane = true;
};

/// Orders the outgoing half-edges of every vertex counter-clockwise (y up), in place.
void OrderRoundVertices(EdgeSet& edges, double contact);

/// Needs ordered vertices.
PlanarMap MakePlanarMap(const EdgeSet& edges, double contact);

}  // namespace Lumo::Planar
