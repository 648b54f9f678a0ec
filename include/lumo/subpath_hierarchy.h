#pragma once
// The containment tree of the closed subpaths of one or more paths: which subpath is an outline, which a hole
// in it, which an island in the hole. Open subpaths are kept beside the tree.
//
// The tree points into the arrays it was built from. They must outlive it unchanged: areas are cached on
// first use and never invalidated, and writing to a PolycurveT moves its storage.
//
// What is not noexcept here throws std::bad_alloc when memory runs out.

#include <cstddef>
#include <vector>

#include "lumo/node_type.h"
#include "lumo/point_types.h"
#include "lumo/polycurve.h"

namespace Lumo {

/// One subpath of the tree, with the subpaths directly inside it as its children (held by value).
class LUMO_API SubpathTreeNode {
 public:
  /// A node without a path: the root of a tree, or a group of open subpaths. Curve id -1.
  SubpathTreeNode() noexcept = default;
  /// A view of one subpath; points and nodes are not owned. A closed subpath (closed flag on its first node)
  /// gets its sample point at once: O(count) in the ordinary case.
  SubpathTreeNode(const TavMath::DPoint* points, const NODETYPE* nodes, int count, int curveId);
  SubpathTreeNode(const tagPOINT* points, const NODETYPE* nodes, int count, int curveId);

  /// The number of subpaths directly inside this one.
  std::size_t GetNumberOfChildren() const noexcept { return children_.size(); }
  /// index must lie below the number of children.
  const SubpathTreeNode& GetChild(std::size_t index) const { return children_[index]; }
  SubpathTreeNode& GetChild(std::size_t index) { return children_[index]; }

  /// The subpath's points: exactly one of the two is not null when the node has a path.
  const TavMath::DPoint* GetPoints() const noexcept { return doublePoints_; }
  const tagPOINT* GetCGIPoints() const noexcept { return integerPoints_; }
  /// The node types and how many nodes there are.
  const NODETYPE* GetNodes() const noexcept { return nodes_; }
  int GetNumberOfPoints() const noexcept { return count_; }
  /// Which of the paths the subpath comes from.
  int GetCurveID() const noexcept { return curveId_; }
  /// A point strictly inside a closed subpath (of non-zero winding when it crosses itself); on the integer
  /// grid for an integer path whenever a strictly interior grid point is found.
  const TavMath::DPoint& GetSamplePoint() const noexcept { return sample_; }

  /// A mark for callers; no operation of the tree touches it.
  void Mark(bool marked = true) noexcept { marked_ = marked; }
  bool IsMarked() const noexcept { return marked_; }

  /// The signed area of the subpath (see GetArea in measure.h), cached on first use; 0 without a path or when
  /// the first node lacks the closed flag. Not safe for concurrent first use.
  double GetArea() const noexcept;
  /// The own area plus that of all descendants: holes of opposite direction reduce it.
  double GetAreaWithChildren() const noexcept;
  /// Whether this subpath's sample point lies in the area that `other` encloses and `other` is not the
  /// smaller of the two. False when either is open or has no path.
  bool IsInsideOf(const SubpathTreeNode& other) const noexcept;
  /// Drops the children whose net area (own plus descendants) does not have the wanted sign, with their
  /// subtrees, then asks for the other sign one level down. A net area of 0 counts as not positive.
  void EliminateCutOffs(bool positive);

  /// Appends this node's subpath and then, depth first, those of its children.
  void AppendToPolycurve(PolycurveT<tagPOINT>& target) const;
  void AppendToPolycurve(PolycurveT<TavMath::DPoint>& target) const;
  void AppendNodes(std::vector<TavMath::DPoint>& points, std::vector<NODETYPE>& nodes) const;
  /// Own count plus the children's totals.
  int GetTotalNumberOfPoints() const noexcept;

 private:
  friend class SubpathHierarchy;
  friend class HierarchyBuilder;

  bool IsClosed() const noexcept { return nodes_ != nullptr && count_ > 0 && nodes_[0].IsClosed(); }
  void AddChild(const SubpathTreeNode& child) { children_.push_back(child); }
  void RemoveChild(std::size_t index) {
    children_.erase(children_.begin() + static_cast<std::ptrdiff_t>(index));
  }
  /// Appends the children to the target (or, asOneChild, a copy of this whole node as one child) and forgets
  /// them.
  void MoveChildrenTo(SubpathTreeNode& target, bool asOneChild);

  std::vector<SubpathTreeNode> children_;
  const TavMath::DPoint* doublePoints_ = nullptr;
  const tagPOINT* integerPoints_ = nullptr;
  const NODETYPE* nodes_ = nullptr;
  int count_ = 0;
  TavMath::DPoint sample_{0, 0};
  int curveId_ = -1;
  bool marked_ = false;
  mutable bool areaKnown_ = false;
  mutable double area_ = 0;
};

/// The root of the tree; its children are the top-level subpaths.
///
/// Insertion: a node goes into the first child that contains it, recursively; where none does, it adopts the
/// children that lie inside it (which come to stand in it in reverse order) and is appended. Building a whole
/// path gives the same tree as inserting its subpaths one by one, but finds containing and contained subpaths
/// through a spatial index: near-linear on spread-out input.
///
/// A subpath whose move node carries the letter flag is a separator between groups: it is not added itself.
/// Closed subpaths enter the tree; the open ones between two separators become one pathless child of the root
/// each group (groupOpenSubpaths) or children of the root one by one.
class LUMO_API SubpathHierarchy : public SubpathTreeNode {
 public:
  SubpathHierarchy() noexcept = default;
  /// Build the tree of one or more paths (open subpaths one by one, unless said otherwise), or from nodes.
  /// The arrays stay the caller's.
  explicit SubpathHierarchy(const std::vector<ConstDrawCurveT<TavMath::DPoint>>& curves);
  explicit SubpathHierarchy(const std::vector<ConstDrawCurveT<tagPOINT>>& curves);
  SubpathHierarchy(const TavMath::DPoint* points, const NODETYPE* nodes, int count, bool groupOpenSubpaths);
  SubpathHierarchy(const tagPOINT* points, const NODETYPE* nodes, int count, bool groupOpenSubpaths);
  explicit SubpathHierarchy(const std::vector<PolycurveT<TavMath::DPoint>>& curves);
  explicit SubpathHierarchy(const std::vector<PolycurveT<tagPOINT>>& curves);
  explicit SubpathHierarchy(const std::vector<SubpathTreeNode>& nodes);

  /// Inserts copies of nodes (with their subtrees) under the root.
  void AddNode(const SubpathTreeNode& node);
  void AddNodes(const std::vector<SubpathTreeNode>& nodes);
  /// The insertion step below any node of the tree; `node` is left with the children that it adopted.
  void AddSubpathToTree(SubpathTreeNode& parent, SubpathTreeNode& node);

  /// Adds the subpaths of the paths (curve id: the index in the vector); wholeCurveAsOne takes each path as
  /// one subpath.
  void BuildSubpathHierarchy(const std::vector<ConstDrawCurveT<TavMath::DPoint>>& curves,
                             bool groupOpenSubpaths, bool wholeCurveAsOne);
  void BuildSubpathHierarchy(const std::vector<ConstDrawCurveT<tagPOINT>>& curves, bool groupOpenSubpaths,
                             bool wholeCurveAsOne);

 private:
  template <class T>
  void Build(const std::vector<ConstDrawCurveT<T>>& curves, bool groupOpenSubpaths, bool wholeCurveAsOne);
};

}  // namespace Lumo
