#pragma once
// Inserts many closed subpaths into a tree at once.

#include <optional>
#include <vector>

#include "hierarchy/box_index.h"
#include "lumo/subpath_hierarchy.h"

namespace Lumo {

/// Which nodes of a tree get their sample points: those of a tree that hosts see all have one, but where a
/// few subpaths lie in which other is mostly settled by boxes and areas.
enum class SamplePoints { ofAll, whereNeeded };

/// While it works the tree is a flat list of entries that know their parent and their place among its
/// children; only at the end is it turned into nested nodes. Which subpaths can contain or be contained is
/// told by boxes, of many subpaths by two spatial indexes; the decision itself is IsInsideOf, as in
/// one-by-one insertion.
class HierarchyBuilder {
 public:
  explicit HierarchyBuilder(SamplePoints samples) : samples_(samples) {}

  /// Adds the subpaths of paths, as SubpathHierarchy::BuildSubpathHierarchy describes.
  template <class T>
  void Collect(const ConstDrawCurveT<T>* curves, std::size_t count, bool groupOpenSubpaths,
               bool wholeCurveAsOne);

  /// The collected nodes as they are; their sample points are there when all were asked for.
  std::vector<SubpathTreeNode> TakeNodes() { return std::move(nodes_); }
  /// The top-level nodes in order, each with its subtree.
  std::vector<SubpathTreeNode> Build();

  /// The tree of one path without the sample points that the nesting does not need. Open subpaths are
  /// grouped.
  static SubpathTreeNode Nesting(const TavMath::DPoint* points, const NODETYPE* nodes, int count);

 private:
  using BoundsD = TavMath::BoundsT<double>;
  static constexpr int kNone = -1;  // as a parent: the root
  struct Entry {
    BoundsD box;  ///< grown by a unit: a sample point may have been rounded
    int parent = kNone;
    int place = 0;  ///< rises along the parent's children; gaps are left where a child was adopted by another
    bool sampled = false;
    std::size_t childCount = 0;
    int firstChild = kNone, nextSibling = kNone;
  };

  static std::size_t Index(int id) { return static_cast<std::size_t>(id); }
  static BoundsD BoxOf(const SubpathTreeNode& node);

  template <class T>
  SubpathTreeNode NodeOf(const T* points, const NODETYPE* nodes, int count, int curveId) const;
  void MakeEntries();
  /// The sample point, found now when it has not been yet.
  const TavMath::DPoint& Sample(int id);
  /// Whether the box of one holds the sample point of the other, which must not be larger.
  bool MayLieIn(int inner, int outer);
  void Append(int id, int parent);
  /// Goes down from the root into the first child that contains the node, as long as there is one. All
  /// subpaths that can contain it have a box around its sample point, so one query serves every level.
  int FindParent(int id);
  /// The children of the parent that lie inside the new node become its own, last one first.
  void AdoptContained(int id, int parent);
  /// Turns the flat list into nested nodes, children before parents: places rise, so a child that was
  /// appended to its parent later stands behind.
  std::vector<SubpathTreeNode> Nest();

  SamplePoints samples_;
  std::vector<SubpathTreeNode> nodes_;
  std::vector<Entry> entries_;
  std::optional<BoxIndex> boxIndex_;  ///< of many subpaths only
  std::optional<PointIndex> sampleIndex_;
  int nextPlace_ = 0;
  std::vector<int> candidates_;
};

}  // namespace Lumo
