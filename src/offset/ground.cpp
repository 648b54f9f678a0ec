#include "offset/ground.h"

#include "hierarchy/builder.h"
#include "lumo/measure.h"

namespace Lumo::Offset {

namespace {

void Append(const Source& outline, bool outer, GroundLevel& level) {
  (outer ? level.outer : level.holes).Append(outline.points, outline.nodes, outline.count);
}

/// Adds the subtrees of `parent`: outer outlines at even depths, holes at odd ones. (Where rounding nested
/// two outlines of one kind, the direction still says which kind they are.)
void AddSubtrees(const SubpathTreeNode& parent, std::size_t depth, std::vector<GroundLevel>& levels) {
  if (levels.size() <= depth / 2 && parent.GetNumberOfChildren() > 0) levels.resize(depth / 2 + 1);
  for (std::size_t k = 0; k < parent.GetNumberOfChildren(); ++k) {
    const SubpathTreeNode& node = parent.GetChild(k);
    if (node.GetNodes() != nullptr)
      Append({node.GetPoints(), node.GetNodes(), node.GetNumberOfPoints(), true}, node.GetArea() > 0,
             levels[depth / 2]);
    AddSubtrees(node, depth + 1, levels);
  }
}

}  // namespace

std::vector<GroundLevel> LevelsOfGround(const OwnedPath& clean) {
  std::vector<GroundLevel> levels(1);
  int outerOnes = 0;
  for (const Range& range : Subpaths(clean.nodes.data(), clean.Count())) {
    const Source outline = SourceOf(clean, range);
    const bool outer = GetArea(outline.points, outline.nodes, outline.count) > 0;
    Append(outline, outer, levels[0]);
    outerOnes += outer;
  }
  // An island takes another outer outline, and a hole that it lies in.
  if (outerOnes < 2 || levels[0].holes.IsEmpty()) return levels;
  levels[0] = {};
  AddSubtrees(HierarchyBuilder::Nesting(clean.points.data(), clean.nodes.data(), clean.Count()), 0, levels);
  return levels;
}

}  // namespace Lumo::Offset
