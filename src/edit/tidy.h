#pragma once
// The tidy-up that break, close and delete end with, and indices that follow their nodes through such edits.

#include <algorithm>
#include <array>
#include <initializer_list>

#include "lumo/node_type.h"

namespace Lumo {

/// Indices of nodes that are carried along while nodes move.
class TrackedNodes {
 public:
  TrackedNodes(std::initializer_list<int*> nodes = {}) : count_((std::min)(nodes.size(), nodes_.size())) {
    std::copy_n(nodes.begin(), count_, nodes_.begin());
  }

  /// The same indices and one more.
  TrackedNodes With(int* node) const {
    TrackedNodes more = *this;
    if (more.count_ < more.nodes_.size()) more.nodes_[more.count_++] = node;
    return more;
  }

  /// The range first..last was reversed.
  void Reversed(int first, int last) const {
    ForEach([=](int& node) {
      if (node >= first && node <= last) node = first + last - node;
    });
  }
  /// The ranges first..middle-1 and middle..end-1 changed places.
  void Rotated(int first, int middle, int end) const {
    ForEach([=](int& node) {
      if (node >= first && node < end) node += node < middle ? end - middle : first - middle;
    });
  }
  /// A node was removed; an index of that node goes on with the node before it.
  void Removed(int index) const {
    ForEach([=](int& node) {
      if (node >= index) --node;
    });
  }

 private:
  template <class Change>
  void ForEach(Change change) const {
    for (std::size_t k = 0; k < count_; ++k) change(*nodes_[k]);
  }

  std::array<int*, 5> nodes_{};
  std::size_t count_;
};

/// Brings an edited path in order and returns the new count (a count below 1: unchanged):
///   1. the first node is a move node;
///   2. a closed subpath with a move node inside, which is what a break inserts, becomes one open subpath
///      that starts at that move node;
///   3. of a run of move nodes only the last stays (all stay when the path's first node starts a letter); a
///      node after two control points is a curve node;
///   4. continuity that cannot hold is cleared: of control points, at open ends and between lines; a
///      symmetric curve node before a line becomes smooth.
/// O(count), no heap memory.
template <class T>
int TidyUp(T* points, NODETYPE* types, int count, const TrackedNodes& tracked = {});

}  // namespace Lumo
