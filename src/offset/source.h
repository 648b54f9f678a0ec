#pragma once
// What a subpath is made into before it is offset.

#include <vector>

#include "lumo/offset_settings.h"
#include "offset/piece.h"

namespace Lumo::Offset {

/// A path with storage of its own.
struct OwnedPath {
  std::vector<DPoint> points;
  std::vector<NODETYPE> nodes;

  bool IsEmpty() const { return points.empty(); }
  int Count() const { return static_cast<int>(points.size()); }
  Output Out() { return {points, nodes}; }
  void Clear();
  void Append(const DPoint* fromPoints, const NODETYPE* fromNodes, int count);
  void Append(const OwnedPath& other) { Append(other.points.data(), other.nodes.data(), other.Count()); }
  void Reverse();
};

/// One subpath of a path: nodes first .. end-1.
struct Range {
  int first;
  int end;
};
std::vector<Range> Subpaths(const NODETYPE* nodes, int count);

/// A view of one subpath for the offset.
Source SourceOf(const OwnedPath& path, const Range& range);

/// A copy of one subpath, repaired as the settings say (but for handles whose move could be felt in the
/// result), without zero-length segments and without nodes on straight runs, with a node at every cusp inside
/// a curve; no node selected or carrying a letter flag. Empty when nothing is left or a coordinate is not
/// finite.
OwnedPath PrepareSubpath(const DPoint* points, const NODETYPE* nodes, int count,
                         const OffsetSettings& settings);

}  // namespace Lumo::Offset
