#pragma once
// A static tree of boxes in flat arrays: boxes in the order of a space-filling curve, leaves of a few boxes
// each, parents of a few nodes each. Built in O(n log n); finds all overlapping pairs in about O(n log n +
// pairs).

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "boolean/arc.h"

namespace Lumo::Planar {

/// Up to so many boxes a sweep finds overlaps faster than a tree, which has to be built first.
inline constexpr std::size_t kSweptBoxes = 192;

class BoxTree {
 public:
  /// Boxes are indexed as given. They must be finite.
  explicit BoxTree(std::vector<Box> boxes);

  /// Calls visit(i, j) once for every unordered pair of boxes that overlap or touch.
  template <class Visit>
  void ForEachPair(Visit&& visit) const;
  /// Calls visit(i) for every box that spans x and begins at or below y: all that a downward ray from (x, y)
  /// can meet.
  template <class Visit>
  void ForEachBelow(double x, double y, Visit&& visit) const;
  /// Calls visit(i) for every box that holds the point.
  template <class Visit>
  void ForEachAt(double x, double y, Visit&& visit) const;

 private:
  template <class Meets, class Visit>
  void Descend(Meets&& meets, Visit&& visit) const;

  static constexpr int kFan = 4;
  static constexpr int kMostLevels = 17;  // 4^16 leaves hold more boxes than an int counts
  struct Node {
    Box box;
    int first, last;  // children in nodes_, or boxes in the sorted order for a leaf
    bool leaf;
  };
  template <class Visit>
  void LeafPairs(const Node& a, const Node& b, Visit&& visit) const;

  std::vector<Box> boxes_;  // sorted
  std::vector<int> index_;  // sorted position -> index as given
  std::vector<Node> nodes_;
  int root_ = -1;
};

template <class Visit>
void BoxTree::LeafPairs(const Node& a, const Node& b, Visit&& visit) const {
  const bool same = &a == &b;
  for (int i = a.first; i < a.last; ++i) {
    const Box& box = boxes_[static_cast<std::size_t>(i)];
    if (!same && !box.Overlaps(b.box)) continue;
    for (int j = same ? i + 1 : b.first; j < b.last; ++j) {
      if (box.Overlaps(boxes_[static_cast<std::size_t>(j)])) {
        visit(index_[static_cast<std::size_t>(i)], index_[static_cast<std::size_t>(j)]);
      }
    }
  }
}

template <class Visit>
void BoxTree::ForEachPair(Visit&& visit) const {
  if (root_ < 0) return;
  std::vector<std::pair<int, int>> stack{{root_, root_}};
  while (!stack.empty()) {
    const auto [ia, ib] = stack.back();
    stack.pop_back();
    const Node &a = nodes_[static_cast<std::size_t>(ia)], &b = nodes_[static_cast<std::size_t>(ib)];
    if (a.leaf && b.leaf) {
      LeafPairs(a, b, visit);
    } else if (ia == ib) {
      for (int i = a.first; i < a.last; ++i) {
        for (int j = i; j < a.last; ++j) {
          if (nodes_[static_cast<std::size_t>(i)].box.Overlaps(nodes_[static_cast<std::size_t>(j)].box)) {
            stack.emplace_back(i, j);
          }
        }
      }
    } else {
      const bool openA = !a.leaf;  // all leaves lie on one level, so both open or neither
      for (int i = openA ? a.first : ia; i < (openA ? a.last : ia + 1); ++i) {
        if (!nodes_[static_cast<std::size_t>(i)].box.Overlaps(b.box)) continue;
        for (int j = b.leaf ? ib : b.first; j < (b.leaf ? ib + 1 : b.last); ++j) {
          if (nodes_[static_cast<std::size_t>(i)].box.Overlaps(nodes_[static_cast<std::size_t>(j)].box)) {
            stack.emplace_back(i, j);
          }
        }
      }
    }
  }
}

template <class Meets, class Visit>
void BoxTree::Descend(Meets&& meets, Visit&& visit) const {
  if (root_ < 0 || !meets(nodes_[static_cast<std::size_t>(root_)].box)) return;
  // On every level all children of one node but the one that is descended into may wait.
  std::array<int, (kFan - 1) * kMostLevels + 1> stack;
  std::size_t top = 0;
  stack[top++] = root_;
  while (top > 0) {
    const Node& node = nodes_[static_cast<std::size_t>(stack[--top])];
    for (int i = node.first; i < node.last; ++i) {
      const auto k = static_cast<std::size_t>(i);
      if (node.leaf) {
        if (meets(boxes_[k])) visit(index_[k]);
      } else if (meets(nodes_[k].box)) {
        stack[top++] = i;
      }
    }
  }
}

template <class Visit>
void BoxTree::ForEachBelow(double x, double y, Visit&& visit) const {
  Descend([&](const Box& box) { return box.minx <= x && x <= box.maxx && box.miny <= y; }, visit);
}

template <class Visit>
void BoxTree::ForEachAt(double x, double y, Visit&& visit) const {
  Descend([&](const Box& box) { return box.Contains(x, y); }, visit);
}

/// Boxes asked for those that hold a point: a few are looked through, many go into a tree.
class BoxesAt {
 public:
  explicit BoxesAt(std::vector<Box> boxes) {
    if (boxes.size() <= kSweptBoxes) {
      few_ = std::move(boxes);
    } else {
      tree_.emplace(std::move(boxes));
    }
  }
  template <class Visit>
  void ForEachAt(double x, double y, Visit&& visit) const {
    if (tree_) return tree_->ForEachAt(x, y, visit);
    // Without branches, which would be guessed wrong half of the time.
    std::array<int, kSweptBoxes> hits;
    std::size_t count = 0;
    for (std::size_t k = 0; k < few_.size(); ++k) {
      const Box& b = few_[k];
      hits[count] = static_cast<int>(k);
      count += unsigned{b.minx <= x} & unsigned{x <= b.maxx} & unsigned{b.miny <= y} & unsigned{y <= b.maxy};
    }
    for (std::size_t k = 0; k < count; ++k) visit(hits[k]);
  }

 private:
  std::vector<Box> few_;
  std::optional<BoxTree> tree_;
};

/// Calls visit(i, j) once for every unordered pair of boxes that overlap or touch: a few boxes by a sweep in
/// x, which costs less than a tree, and many by a tree.
template <class Visit>
void ForEachOverlap(const std::vector<Box>& boxes, Visit&& visit) {
  if (boxes.size() > kSweptBoxes) {
    BoxTree(boxes).ForEachPair(visit);
    return;
  }
  struct Start {
    double x;
    int index;
  };
  std::array<Start, kSweptBoxes> starts;
  const std::size_t n = boxes.size();
  for (std::size_t i = 0; i < n; ++i) starts[i] = {boxes[i].minx, static_cast<int>(i)};
  std::sort(starts.begin(), starts.begin() + static_cast<std::ptrdiff_t>(n),
            [](const Start& a, const Start& b) { return a.x != b.x ? a.x < b.x : a.index < b.index; });
  struct Span {
    double low, high;
  };
  std::array<Span, kSweptBoxes> spans;  // in y
  for (std::size_t i = 0; i < n; ++i) {
    const Box& box = boxes[static_cast<std::size_t>(starts[i].index)];
    spans[i] = {box.miny, box.maxy};
  }
  std::array<int, kSweptBoxes> hits;
  for (std::size_t i = 0; i < n; ++i) {
    const double end = boxes[static_cast<std::size_t>(starts[i].index)].maxx;
    const Span span = spans[i];
    std::size_t count = 0;
    for (std::size_t j = i + 1; j < n && starts[j].x <= end; ++j) {  // no branch but the loop's
      hits[count] = starts[j].index;
      count += unsigned{spans[j].low <= span.high} & unsigned{span.low <= spans[j].high};
    }
    for (std::size_t k = 0; k < count; ++k) visit(starts[i].index, hits[k]);
  }
}

}  // namespace Lumo::Planar
