#pragma once
// A packed tree over boxes: built once, flat, no node has a pointer. Boxes are sorted along a space-filling
// curve and grouped in sixteens, level by level.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tav/math/bounds.h"

namespace Lumo {

class BoxTree {
 public:
  using Box = TavMath::BoundsT<double>;
  /// Throws std::bad_alloc. Empty boxes (and any with a coordinate that is not a number) are found by
  /// nothing.
  explicit BoxTree(const std::vector<Box>& boxes);

  /// Calls visit(index) for every box that meets the query, in no particular order.
  template <class F>
  void Visit(const Box& query, F visit) const {
    if (levels_.empty()) return;
    struct Range {
      std::size_t level, first, last;
    };
    Range stack[kMostLevels * kWidth];
    std::size_t top = 0;
    stack[top++] = {levels_.size() - 1, 0, levels_.back().size()};
    while (top > 0) {
      const Range range = stack[--top];
      const std::vector<Box>& boxes = levels_[range.level];
      for (std::size_t k = range.first; k < range.last; ++k) {
        if (!boxes[k].Overlaps(query)) continue;
        if (range.level == 0) {
          visit(order_[k]);
          continue;
        }
        const std::size_t below = levels_[range.level - 1].size(), first = k * kWidth;
        stack[top++] = {range.level - 1, first, first + kWidth < below ? first + kWidth : below};
      }
    }
  }

 private:
  static constexpr std::size_t kWidth = 8;
  /// 8^22 > 2^64.
  static constexpr std::size_t kMostLevels = 22;

  std::vector<std::uint32_t> order_;
  std::vector<std::vector<Box>> levels_;  ///< the boxes in order, then each group's box, up to one group
};

}  // namespace Lumo
