#pragma once
// Stages 2 to 4: arcs cut at their contacts, vertices snapped and merged, coincident edges merged.

#include <vector>

#include "boolean/collect.h"

namespace Lumo::Planar {

/// A piece of a segment between two different vertices, running in the segment's direction.
struct Edge {
  Curve curve;  ///< In the frame; its ends are exactly its vertices.
  int segment;
  double t0, t1;
  int v0, v1;
  Winding step;
  bool open;  ///< Belongs to an open subpath: encloses nothing.
};

/// Half-edge 2e runs from v0 to v1 of edge e, half-edge 2e + 1 back.
struct EdgeSet {
  /// An edge of an open subpath that runs on top of another edge: it takes no part in the map.
  struct Rider {
    Edge edge;
    int host;
  };

  std::vector<Vertex> vertices;
  std::vector<Edge> edges;
  std::vector<Rider> riders;
  /// Subpaths that meet nothing, not even themselves: simple outlines by themselves, which need no edges.
  std::vector<int> loops;
  /// Outgoing half-edges grouped by vertex: those of v are outgoing[first[v]] .. outgoing[first[v + 1] - 1].
  std::vector<int> first, outgoing;

  int From(int half) const {
    const Edge& e = edges[static_cast<std::size_t>(half >> 1)];
    return (half & 1) ? e.v1 : e.v0;
  }
  int To(int half) const { return From(half ^ 1); }
};

/// Cuts, snaps and merges. `contact` is the contact distance of this attempt. `thorough`: every vertex is
/// looked for on all arcs near it, not only where arcs were found to run side by side, and no subpath is left
/// out as a loop.
///
/// Invariants of the result: no edge joins a vertex to itself; no two edges with the same ends run on top of
/// one another; no edge has a zero step unless it is open; the steps round every vertex, those of incoming
/// edges counted positive, add up to zero.
EdgeSet MakeEdges(const Collection& collection, double contact, bool thorough);

/// The same once more for edges that turned out not to be plane: where moving ends to their vertices pushed
/// one edge across another, the crossing is found and cut as well. Iterated, this ends in edges that cross
/// nowhere (D. Halperin and E. Packer, "Iterated snap rounding", Computational Geometry 23, 2002).
EdgeSet CrossAgain(const Collection& collection, const EdgeSet& edges, double contact);

}  // namespace Lumo::Planar
