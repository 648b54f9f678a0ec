#pragma once
// Stages 7 and 8: which edges bound the wanted region, and the simple loops that they form.

#include <vector>

#include "boolean/planar_map.h"

namespace Lumo::Planar {

/// Which winding numbers of one operand count as inside.
struct InsideRule {
  enum class Kind { evenOdd, nonZero, positive, negative } kind = Kind::nonZero;

  bool operator()(int winding) const {
    switch (kind) {
      case Kind::evenOdd:
        return (winding & 1) != 0;
      case Kind::nonZero:
        return winding != 0;
      // Outlines of positive area run clockwise (y up), which the map counts as -1.
      case Kind::positive:
        return winding < 0;
      case Kind::negative:
        return winding > 0;
    }
    return false;
  }
};

/// The wanted region: bit (inside a) + 2 (inside b) of the truth table tells whether a place belongs to it.
struct Region {
  InsideRule a, b;
  unsigned truth = 2;

  bool operator()(Winding w) const {
    return ((truth >> ((a(w.a) ? 1u : 0u) + (b(w.b) ? 2u : 0u))) & 1u) != 0;
  }
};
inline constexpr unsigned kOnlyA = 0b1010, kUnion = 0b1110, kIntersection = 0b1000, kDifference = 0b0010,
                          kExclusive = 0b0110;

/// Closed loops of half-edges with the region on their left.
///
/// Invariants: every loop passes each of its vertices once; every edge between the region and the rest lies
/// on exactly one loop; loops may meet at vertices but do not cross there.
struct Outlines {
  /// A subpath that is an outline as it stands, or reversed.
  struct Whole {
    int subpath;
    bool forward;
  };

  std::vector<int> halves;
  std::vector<int> first;  ///< Loop i is halves[first[i]] .. halves[first[i + 1] - 1].
  std::vector<Whole> wholes;
  /// At each vertex: how many selected edges meet.
  std::vector<int> degree;
  /// False when some selected edges could not be closed (the map was not plane); they are left out.
  bool complete = true;
};

Outlines TraceOutlines(const EdgeSet& edges, const PlanarMap& map, const Region& region);

}  // namespace Lumo::Planar
