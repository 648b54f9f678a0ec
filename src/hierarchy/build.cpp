#include <algorithm>
#include <cmath>
#include <deque>

#include "hierarchy/box_index.h"
#include "lumo/measure.h"
#include "lumo/subpath_hierarchy.h"
#include "math/point_traits.h"
#include "tav/math/rect.h"

namespace Lumo {

/// Inserts many closed subpaths at once. While it works the tree is a flat list of entries that know their
/// parent and their place among its children; only at the end is it turned into nested nodes. Which subpaths
/// can contain or be contained is asked of two spatial indexes; the decision itself is IsInsideOf, as in
/// one-by-one insertion.
class HierarchyBuilder {
 public:
  explicit HierarchyBuilder(std::vector<SubpathTreeNode> nodes)
      : nodes_(std::move(nodes)), entries_(nodes_.size()) {
    BoundsD ground;
    for (std::size_t k = 0; k < nodes_.size(); ++k) {
      entries_[k].box = BoxOf(nodes_[k]);
      ground.Add(entries_[k].box);
    }
    ground_ = ground;
  }

  /// The top-level nodes in order, each with its subtree.
  std::vector<SubpathTreeNode> Build() {
    PointIndex samples(ground_, nodes_.size());
    BoxIndex boxes;
    for (int id = 0; id < static_cast<int>(nodes_.size()); ++id) {
      if (!nodes_[Index(id)].IsClosed()) {
        Append(id, kRoot);
        continue;
      }
      const int parent = FindParent(boxes, id);
      AdoptContained(samples, id, parent);
      Append(id, parent);
      if (!entries_[Index(id)].box.IsEmpty()) boxes.Add(entries_[Index(id)].box, id);
      samples.Add(nodes_[Index(id)].GetSamplePoint(), id);
    }
    return Nest();
  }

 private:
  using BoundsD = TavMath::BoundsT<double>;
  static constexpr int kRoot = -1;
  struct Entry {
    BoundsD box;  ///< grown by a unit: a sample point may have been rounded
    int parent = kRoot;
    int place = 0;  ///< rises along the parent's children; gaps are left where a child was adopted by another
  };

  static std::size_t Index(int id) { return static_cast<std::size_t>(id); }

  static BoundsD BoxOf(const SubpathTreeNode& node) {
    BoundsD box;
    const auto count = static_cast<std::size_t>(std::max(node.GetNumberOfPoints(), 0));
    if (node.GetPoints()) box = TavMath::GetPointsBBox(node.GetPoints(), count);
    if (node.GetCGIPoints() && count > 0) {
      const tagRECT rect = TavMath::GetPointsBBox(node.GetCGIPoints(), count);
      box.Add(rect.left, rect.top);
      box.Add(rect.right, rect.bottom);
    }
    if (!box.IsEmpty()) box.Inflate(1, 1);
    return box;
  }

  void Append(int id, int parent) {
    entries_[Index(id)].parent = parent;
    entries_[Index(id)].place = nextPlace_++;
  }

  /// Goes down from the root into the first child that contains the node, as long as there is one. All
  /// subpaths that can contain it have a box around its sample point, so one query serves every level.
  int FindParent(const BoxIndex& boxes, int id) {
    const DPoint sample = nodes_[Index(id)].GetSamplePoint();
    candidates_.clear();
    boxes.ForEachAround(sample, [&](int other) {
      if (entries_[Index(other)].box.Contains(sample.x, sample.y)) candidates_.push_back(other);
    });
    std::sort(candidates_.begin(), candidates_.end(),
              [&](int a, int b) { return entries_[Index(a)].place < entries_[Index(b)].place; });
    int parent = kRoot;
    for (std::size_t level = 0; level < candidates_.size(); ++level) {
      const auto found = std::find_if(candidates_.begin(), candidates_.end(), [&](int other) {
        return entries_[Index(other)].parent == parent && nodes_[Index(id)].IsInsideOf(nodes_[Index(other)]);
      });
      if (found == candidates_.end()) break;
      parent = *found;
    }
    return parent;
  }

  /// The children of the parent that lie inside the new node become its own, last one first.
  void AdoptContained(const PointIndex& samples, int id, int parent) {
    const BoundsD& box = entries_[Index(id)].box;
    candidates_.clear();
    samples.ForEachIn(box, [&](int other) {
      const DPoint sample = nodes_[Index(other)].GetSamplePoint();
      if (entries_[Index(other)].parent == parent && box.Contains(sample.x, sample.y))
        candidates_.push_back(other);
    });
    std::sort(candidates_.begin(), candidates_.end(),
              [&](int a, int b) { return entries_[Index(a)].place > entries_[Index(b)].place; });
    for (const int other : candidates_) {
      if (nodes_[Index(other)].IsInsideOf(nodes_[Index(id)])) Append(other, id);
    }
  }

  /// Turns the flat list into nested nodes, children before parents: places rise, so a child that was
  /// appended to its parent later stands behind.
  std::vector<SubpathTreeNode> Nest() {
    std::vector<int> byPlace(nodes_.size());
    for (std::size_t k = 0; k < byPlace.size(); ++k) byPlace[k] = static_cast<int>(k);
    std::sort(byPlace.begin(), byPlace.end(),
              [&](int a, int b) { return entries_[Index(a)].place < entries_[Index(b)].place; });
    std::vector<std::vector<int>> children(nodes_.size());
    std::vector<int> top;
    for (const int id : byPlace) {
      const int parent = entries_[Index(id)].parent;
      (parent == kRoot ? top : children[Index(parent)]).push_back(id);
    }
    // Every node is finished after all of its descendants: walk the tree from the top and take the list
    // backwards.
    std::vector<int> order = top;
    for (std::size_t k = 0; k < order.size(); ++k) {
      order.insert(order.end(), children[Index(order[k])].begin(), children[Index(order[k])].end());
    }
    for (auto id = order.rbegin(); id != order.rend(); ++id) {
      for (const int child : children[Index(*id)]) {
        nodes_[Index(*id)].children_.push_back(std::move(nodes_[Index(child)]));
      }
    }
    std::vector<SubpathTreeNode> result;
    result.reserve(top.size());
    for (const int id : top) result.push_back(std::move(nodes_[Index(id)]));
    return result;
  }

  std::vector<SubpathTreeNode> nodes_;
  std::vector<Entry> entries_;
  BoundsD ground_;
  int nextPlace_ = 0;
  std::vector<int> candidates_;
};

namespace {

template <class T>
std::vector<ConstDrawCurveT<T>> MakeView(const T* points, const NODETYPE* nodes, int count) {
  if (!points || !nodes || count < 1) return {};
  return {{points, nodes, static_cast<std::size_t>(count)}};
}

template <class T>
std::vector<ConstDrawCurveT<T>> MakeViews(const std::vector<PolycurveT<T>>& curves) {
  std::vector<ConstDrawCurveT<T>> views;
  views.reserve(curves.size());
  for (const PolycurveT<T>& curve : curves) {
    views.push_back({curve.GetPoints(), curve.GetNodeTypes(), curve.GetPointCount()});
  }
  return views;
}

/// Calls visit(first, count) for each subpath; a path that does not begin with a move node has its first
/// nodes taken as a subpath all the same.
template <class Visit>
void ForEachSubpath(const NODETYPE* nodes, int count, bool wholeCurveAsOne, Visit visit) {
  for (int first = 0; first < count;) {
    int end = wholeCurveAsOne ? count : first + 1;
    while (end < count && !nodes[end].IsMove()) ++end;
    visit(first, end - first);
    first = end;
  }
}

}  // namespace

template <class T>
void SubpathHierarchy::Build(const std::vector<ConstDrawCurveT<T>>& curves, bool groupOpenSubpaths,
                             bool wholeCurveAsOne) {
  std::vector<SubpathTreeNode> nodes;
  SubpathTreeNode open;
  const auto flush = [&] {
    if (open.children_.empty()) return;
    if (groupOpenSubpaths) {
      nodes.push_back(std::move(open));
    } else {
      std::move(open.children_.begin(), open.children_.end(), std::back_inserter(nodes));
    }
    open = SubpathTreeNode();
  };
  for (std::size_t id = 0; id < curves.size(); ++id) {
    const ConstDrawCurveT<T>& curve = curves[id];
    if (!curve.points || !curve.types) continue;
    ForEachSubpath(curve.types, static_cast<int>(curve.count), wholeCurveAsOne, [&](int first, int n) {
      const NODETYPE start = curve.types[first];
      if (start.IsMove() && start.IsLetter()) return flush();
      SubpathTreeNode node(curve.points + first, curve.types + first, n, static_cast<int>(id));
      (start.IsClosed() ? nodes : open.children_).push_back(std::move(node));
    });
  }
  flush();
  if (children_.empty()) {
    children_ = HierarchyBuilder(std::move(nodes)).Build();
  } else {
    AddNodes(nodes);  // a tree that stands already is added to one by one
  }
}

void SubpathHierarchy::BuildSubpathHierarchy(const std::vector<ConstDrawCurveT<DPoint>>& curves,
                                             bool groupOpenSubpaths, bool wholeCurveAsOne) {
  Build(curves, groupOpenSubpaths, wholeCurveAsOne);
}
void SubpathHierarchy::BuildSubpathHierarchy(const std::vector<ConstDrawCurveT<tagPOINT>>& curves,
                                             bool groupOpenSubpaths, bool wholeCurveAsOne) {
  Build(curves, groupOpenSubpaths, wholeCurveAsOne);
}

SubpathHierarchy::SubpathHierarchy(const std::vector<ConstDrawCurveT<DPoint>>& curves) {
  Build(curves, false, false);
}
SubpathHierarchy::SubpathHierarchy(const std::vector<ConstDrawCurveT<tagPOINT>>& curves) {
  Build(curves, false, false);
}

SubpathHierarchy::SubpathHierarchy(const DPoint* points, const NODETYPE* nodes, int count,
                                   bool groupOpenSubpaths) {
  Build(MakeView(points, nodes, count), groupOpenSubpaths, false);
}
SubpathHierarchy::SubpathHierarchy(const tagPOINT* points, const NODETYPE* nodes, int count,
                                   bool groupOpenSubpaths) {
  Build(MakeView(points, nodes, count), groupOpenSubpaths, false);
}
SubpathHierarchy::SubpathHierarchy(const std::vector<PolycurveT<DPoint>>& curves) {
  Build(MakeViews(curves), false, false);
}
SubpathHierarchy::SubpathHierarchy(const std::vector<PolycurveT<tagPOINT>>& curves) {
  Build(MakeViews(curves), false, false);
}
SubpathHierarchy::SubpathHierarchy(const std::vector<SubpathTreeNode>& nodes) { AddNodes(nodes); }

void SubpathHierarchy::AddNode(const SubpathTreeNode& node) {
  SubpathTreeNode copy = node;
  AddSubpathToTree(*this, copy);
}

void SubpathHierarchy::AddNodes(const std::vector<SubpathTreeNode>& nodes) {
  for (const SubpathTreeNode& node : nodes) AddNode(node);
}

void SubpathHierarchy::AddSubpathToTree(SubpathTreeNode& parent, SubpathTreeNode& node) {
  SubpathTreeNode* into = &parent;
  for (bool deeper = true; deeper;) {
    const auto containing =
        std::find_if(into->children_.begin(), into->children_.end(),
                     [&](const SubpathTreeNode& child) { return node.IsInsideOf(child); });
    deeper = containing != into->children_.end();
    if (deeper) into = &*containing;
  }
  // Adopted children are appended last one first.
  for (std::size_t k = into->children_.size(); k-- > 0;) {
    if (!into->children_[k].IsInsideOf(node)) continue;
    node.AddChild(into->children_[k]);
    into->RemoveChild(k);
  }
  into->children_.push_back(node);
}

}  // namespace Lumo
