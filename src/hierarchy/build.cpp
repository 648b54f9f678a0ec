#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "hierarchy/builder.h"
#include "hierarchy/sample_point.h"
#include "hierarchy/tolerances.h"
#include "math/point_traits.h"
#include "tav/math/rect.h"

namespace Lumo {

namespace {

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
void HierarchyBuilder::Collect(const ConstDrawCurveT<T>* curves, std::size_t count, bool groupOpenSubpaths,
                               bool wholeCurveAsOne) {
  SubpathTreeNode open;
  const auto flush = [&] {
    if (open.children_.empty()) return;
    if (groupOpenSubpaths) {
      nodes_.push_back(std::move(open));
    } else {
      std::move(open.children_.begin(), open.children_.end(), std::back_inserter(nodes_));
    }
    open = SubpathTreeNode();
  };
  for (std::size_t id = 0; id < count; ++id) {
    const ConstDrawCurveT<T>& curve = curves[id];
    if (!curve.points || !curve.types) continue;
    ForEachSubpath(curve.types, static_cast<int>(curve.count), wholeCurveAsOne, [&](int first, int n) {
      const NODETYPE start = curve.types[first];
      if (start.IsMove() && start.IsLetter()) return flush();
      (start.IsClosed() ? nodes_ : open.children_)
          .push_back(NodeOf(curve.points + first, curve.types + first, n, static_cast<int>(id)));
    });
  }
  flush();
}

template <class T>
SubpathTreeNode HierarchyBuilder::NodeOf(const T* points, const NODETYPE* nodes, int count,
                                         int curveId) const {
  if (samples_ == SamplePoints::ofAll) return {points, nodes, count, curveId};
  SubpathTreeNode node;
  if constexpr (std::is_same_v<T, DPoint>)
    node.doublePoints_ = points;
  else
    node.integerPoints_ = points;
  node.nodes_ = nodes;
  node.count_ = count;
  node.curveId_ = curveId;
  return node;
}

std::vector<SubpathTreeNode> HierarchyBuilder::Build() {
  MakeEntries();
  for (int id = 0; id < static_cast<int>(nodes_.size()); ++id) {
    if (!nodes_[Index(id)].IsClosed()) {
      Append(id, kNone);
      continue;
    }
    const int parent = FindParent(id);
    AdoptContained(id, parent);
    Append(id, parent);
    if (boxIndex_ && !entries_[Index(id)].box.IsEmpty()) boxIndex_->Add(entries_[Index(id)].box, id);
    if (sampleIndex_) sampleIndex_->Add(Sample(id), id);
  }
  return Nest();
}

SubpathTreeNode HierarchyBuilder::Nesting(const DPoint* points, const NODETYPE* nodes, int count) {
  HierarchyBuilder builder(SamplePoints::whereNeeded);
  const ConstDrawCurveT<DPoint> curve{points, nodes, static_cast<std::size_t>(count)};
  builder.Collect(&curve, 1, true, false);
  SubpathTreeNode root;
  root.children_ = builder.Build();
  return root;
}

void HierarchyBuilder::MakeEntries() {
  entries_.resize(nodes_.size());
  BoundsD ground;
  for (std::size_t k = 0; k < nodes_.size(); ++k) {
    entries_[k].box = BoxOf(nodes_[k]);
    entries_[k].sampled = samples_ == SamplePoints::ofAll;
    ground.Add(entries_[k].box);
  }
  if (nodes_.size() <= hierarchy::kFewSubpaths) return;
  boxIndex_.emplace();
  sampleIndex_.emplace(ground, nodes_.size());
}

HierarchyBuilder::BoundsD HierarchyBuilder::BoxOf(const SubpathTreeNode& node) {
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

const DPoint& HierarchyBuilder::Sample(int id) {
  SubpathTreeNode& node = nodes_[Index(id)];
  if (!entries_[Index(id)].sampled)
    node.sample_ = node.doublePoints_ ? FindSamplePoint(node.doublePoints_, node.nodes_, node.count_)
                                      : FindSamplePoint(node.integerPoints_, node.nodes_, node.count_);
  entries_[Index(id)].sampled = true;
  return node.sample_;
}

bool HierarchyBuilder::MayLieIn(int inner, int outer) {
  const BoundsD& box = entries_[Index(outer)].box;
  // Where there is no sample point yet, boxes and areas may spare it.
  if (!entries_[Index(inner)].sampled &&
      (!box.Overlaps(entries_[Index(inner)].box) ||
       std::abs(nodes_[Index(outer)].GetArea()) < std::abs(nodes_[Index(inner)].GetArea())))
    return false;
  const DPoint& sample = Sample(inner);
  return box.Contains(sample.x, sample.y);
}

void HierarchyBuilder::Append(int id, int parent) {
  entries_[Index(id)].parent = parent;
  entries_[Index(id)].place = nextPlace_++;
}

int HierarchyBuilder::FindParent(int id) {
  candidates_.clear();
  const auto consider = [&](int other) {
    if (nodes_[Index(other)].IsClosed() && MayLieIn(id, other)) candidates_.push_back(other);
  };
  if (boxIndex_)
    boxIndex_->ForEachAround(Sample(id), consider);
  else
    for (int other = 0; other < id; ++other) consider(other);
  std::sort(candidates_.begin(), candidates_.end(),
            [&](int a, int b) { return entries_[Index(a)].place < entries_[Index(b)].place; });
  int parent = kNone;
  for (std::size_t level = 0; level < candidates_.size(); ++level) {
    const auto found = std::find_if(candidates_.begin(), candidates_.end(), [&](int other) {
      return entries_[Index(other)].parent == parent && nodes_[Index(id)].IsInsideOf(nodes_[Index(other)]);
    });
    if (found == candidates_.end()) break;
    parent = *found;
  }
  return parent;
}

void HierarchyBuilder::AdoptContained(int id, int parent) {
  candidates_.clear();
  const auto consider = [&](int other) {
    if (entries_[Index(other)].parent == parent && nodes_[Index(other)].IsClosed() && MayLieIn(other, id))
      candidates_.push_back(other);
  };
  if (sampleIndex_)
    sampleIndex_->ForEachIn(entries_[Index(id)].box, consider);
  else
    for (int other = 0; other < id; ++other) consider(other);
  std::sort(candidates_.begin(), candidates_.end(),
            [&](int a, int b) { return entries_[Index(a)].place > entries_[Index(b)].place; });
  for (const int other : candidates_) {
    if (nodes_[Index(other)].IsInsideOf(nodes_[Index(id)])) Append(other, id);
  }
}

std::vector<SubpathTreeNode> HierarchyBuilder::Nest() {
  std::vector<int> byPlace(nodes_.size());
  for (std::size_t k = 0; k < byPlace.size(); ++k) byPlace[k] = static_cast<int>(k);
  std::sort(byPlace.begin(), byPlace.end(),
            [&](int a, int b) { return entries_[Index(a)].place < entries_[Index(b)].place; });
  // Siblings in the order of their places: linked from the last one on.
  Entry top;
  for (auto id = byPlace.rbegin(); id != byPlace.rend(); ++id) {
    Entry& entry = entries_[Index(*id)];
    Entry& parent = entry.parent == kNone ? top : entries_[Index(entry.parent)];
    entry.nextSibling = std::exchange(parent.firstChild, *id);
    ++parent.childCount;
  }
  // Every node is finished after all of its descendants: walk the tree from the top and take the list
  // backwards.
  std::vector<int>& order = byPlace;
  order.clear();
  const auto addChildren = [&](const Entry& entry) {
    for (int id = entry.firstChild; id != kNone; id = entries_[Index(id)].nextSibling) order.push_back(id);
  };
  addChildren(top);
  for (std::size_t k = 0; k < order.size(); ++k) addChildren(entries_[Index(order[k])]);
  const auto moveChildren = [&](const Entry& entry, std::vector<SubpathTreeNode>& to) {
    to.reserve(to.size() + entry.childCount);
    for (int id = entry.firstChild; id != kNone; id = entries_[Index(id)].nextSibling)
      to.push_back(std::move(nodes_[Index(id)]));
  };
  for (auto id = order.rbegin(); id != order.rend(); ++id)
    moveChildren(entries_[Index(*id)], nodes_[Index(*id)].children_);
  std::vector<SubpathTreeNode> result;
  moveChildren(top, result);
  return result;
}

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

}  // namespace

template <class T>
void SubpathHierarchy::Build(const std::vector<ConstDrawCurveT<T>>& curves, bool groupOpenSubpaths,
                             bool wholeCurveAsOne) {
  HierarchyBuilder builder(SamplePoints::ofAll);
  builder.Collect(curves.data(), curves.size(), groupOpenSubpaths, wholeCurveAsOne);
  if (children_.empty()) {
    children_ = builder.Build();
  } else {
    AddNodes(builder.TakeNodes());  // a tree that stands already is added to one by one
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
