#include <algorithm>
#include <cmath>
#include <new>

#include "hierarchy/sample_point.h"
#include "lumo/measure.h"
#include "lumo/subpath_hierarchy.h"
#include "math/point_traits.h"

namespace Lumo {
namespace {

bool StartsClosed(const NODETYPE* nodes, int count) { return nodes && count > 0 && nodes[0].IsClosed(); }

/// A node without both arrays has no path, whatever count it was given.
int HeldNodes(const void* points, const NODETYPE* nodes, int count) {
  return points && nodes ? std::max(count, 0) : 0;
}

/// Appends the nodes of one type of path to a polycurve of any type.
template <class To, class From>
void AppendPath(PolycurveT<To>& target, const From* points, const NODETYPE* nodes, int count) {
  const auto n = static_cast<std::size_t>(count);
  if constexpr (std::is_same_v<To, From>) {
    if (!target.InsertPoints(target.GetPointCount(), points, nodes, n)) throw std::bad_alloc();
  } else {
    std::vector<To> converted(n);
    for (std::size_t i = 0; i < n; ++i) converted[i] = FromDouble<To>(ToDouble(points[i]));
    AppendPath(target, converted.data(), nodes, count);
  }
}

}  // namespace

SubpathTreeNode::SubpathTreeNode(const DPoint* points, const NODETYPE* nodes, int count, int curveId)
    : doublePoints_(points), nodes_(nodes), count_(HeldNodes(points, nodes, count)), curveId_(curveId) {
  if (points && StartsClosed(nodes, count)) sample_ = FindSamplePoint(points, nodes, count);
}

SubpathTreeNode::SubpathTreeNode(const tagPOINT* points, const NODETYPE* nodes, int count, int curveId)
    : integerPoints_(points), nodes_(nodes), count_(HeldNodes(points, nodes, count)), curveId_(curveId) {
  if (points && StartsClosed(nodes, count)) sample_ = FindSamplePoint(points, nodes, count);
}

double SubpathTreeNode::GetArea() const noexcept {
  if (areaKnown_) return area_;
  areaKnown_ = true;
  if (!IsClosed()) return area_ = 0;
  if (doublePoints_) return area_ = Lumo::GetArea(doublePoints_, nodes_, count_);
  return area_ = integerPoints_ ? Lumo::GetArea(integerPoints_, nodes_, count_) : 0;
}

double SubpathTreeNode::GetAreaWithChildren() const noexcept {
  double area = GetArea();
  for (const SubpathTreeNode& child : children_) area += child.GetAreaWithChildren();
  return area;
}

bool SubpathTreeNode::IsInsideOf(const SubpathTreeNode& other) const noexcept {
  // Open subpaths and groups enclose nothing and have no inside point that could be enclosed.
  if (!IsClosed() || !other.IsClosed()) return false;
  if (std::abs(other.GetArea()) < std::abs(GetArea())) return false;
  if (other.doublePoints_) return IsPointInShape(other.doublePoints_, other.nodes_, other.count_, sample_);
  if (other.integerPoints_) {
    return IsPointInShape(other.integerPoints_, other.nodes_, other.count_, TavMath::RoundPoint(sample_));
  }
  return false;
}

void SubpathTreeNode::EliminateCutOffs(bool positive) {
  std::vector<SubpathTreeNode> kept;
  for (SubpathTreeNode& child : children_) {
    double net = child.GetArea();
    for (const SubpathTreeNode& inner : child.children_) net += inner.GetAreaWithChildren();
    // An area of exactly 0 is not positive, so it survives only where holes are wanted.
    if ((net > 0) == positive) kept.push_back(std::move(child));
  }
  children_ = std::move(kept);
  for (SubpathTreeNode& child : children_) child.EliminateCutOffs(!positive);
}

void SubpathTreeNode::AppendToPolycurve(PolycurveT<tagPOINT>& target) const {
  if (doublePoints_) AppendPath(target, doublePoints_, nodes_, count_);
  if (integerPoints_) AppendPath(target, integerPoints_, nodes_, count_);
  for (const SubpathTreeNode& child : children_) child.AppendToPolycurve(target);
}

void SubpathTreeNode::AppendToPolycurve(PolycurveT<DPoint>& target) const {
  if (doublePoints_) AppendPath(target, doublePoints_, nodes_, count_);
  if (integerPoints_) AppendPath(target, integerPoints_, nodes_, count_);
  for (const SubpathTreeNode& child : children_) child.AppendToPolycurve(target);
}

void SubpathTreeNode::AppendNodes(std::vector<DPoint>& points, std::vector<NODETYPE>& nodes) const {
  for (int i = 0; i < count_ && nodes_ != nullptr; ++i) {
    points.push_back(doublePoints_ ? doublePoints_[i] : ToDouble(integerPoints_[i]));
    nodes.push_back(nodes_[i]);
  }
  for (const SubpathTreeNode& child : children_) child.AppendNodes(points, nodes);
}

int SubpathTreeNode::GetTotalNumberOfPoints() const noexcept {
  int total = count_;
  for (const SubpathTreeNode& child : children_) total += child.GetTotalNumberOfPoints();
  return total;
}

void SubpathTreeNode::MoveChildrenTo(SubpathTreeNode& target, bool asOneChild) {
  if (children_.empty()) return;
  if (asOneChild) {
    target.children_.push_back(*this);
  } else {
    target.children_.insert(target.children_.end(), children_.begin(), children_.end());
  }
  children_.clear();
}

}  // namespace Lumo
