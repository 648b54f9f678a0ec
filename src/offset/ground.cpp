#include "offset/ground.h"

#include "hierarchy/builder.h"
#include "lumo/measure.h"

namespace Lumo::Offset {

namespace {

class LevelBuilder {
 public:
  /// The subtrees of `parent`: outer outlines at even depths, holes at odd ones. (Where rounding nested two
  /// outlines of one kind, the direction still says which kind they are.)
  void Add(const SubpathTreeNode& parent, std::size_t depth) {
    for (std::size_t k = 0; k < parent.GetNumberOfChildren(); ++k) {
      const SubpathTreeNode& node = parent.GetChild(k);
      if (node.GetNodes() != nullptr)
        Append(depth / 2, {node.GetPoints(), node.GetNodes(), node.GetNumberOfPoints(), true});
      Add(node, depth + 1);
    }
  }

  void Append(std::size_t level, const Source& outline) {
    if (levels_.size() <= level) levels_.resize(level + 1);
    const bool outer = GetArea(outline.points, outline.nodes, outline.count) > 0;
    (outer ? levels_[level].outer : levels_[level].holes)
        .Append(outline.points, outline.nodes, outline.count);
  }

  std::vector<GroundLevel> Take() { return std::move(levels_); }

 private:
  std::vector<GroundLevel> levels_{1};
};

/// Whether there can be an island: another outer outline than the first, and a hole.
bool MayHaveIslands(const OwnedPath& clean, const std::vector<Range>& outlines) {
  std::size_t outer = 0;
  for (const Range& range : outlines)
    if (GetArea(clean.points.data() + range.first, clean.nodes.data() + range.first,
                range.end - range.first) > 0)
      ++outer;
  return outer > 1 && outer < outlines.size();
}

}  // namespace

std::vector<GroundLevel> LevelsOfGround(const OwnedPath& clean) {
  LevelBuilder levels;
  const std::vector<Range> outlines = Subpaths(clean.nodes.data(), clean.Count());
  if (outlines.size() > 2 && MayHaveIslands(clean, outlines))
    levels.Add(HierarchyBuilder::Nesting(clean.points.data(), clean.nodes.data(), clean.Count()), 0);
  else
    for (const Range& range : outlines) levels.Append(0, SourceOf(clean, range));
  return levels.Take();
}

}  // namespace Lumo::Offset
