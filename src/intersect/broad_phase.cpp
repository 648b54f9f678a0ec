#include <algorithm>
#include <cmath>

#include "intersect/box_tree.h"

namespace Lumo {
namespace {

/// Position along a Hilbert curve of order 16 (the turtle form: quadrant by quadrant, turning as it goes).
std::uint32_t HilbertIndex(std::uint32_t x, std::uint32_t y) {
  std::uint32_t index = 0;
  for (std::uint32_t side = 1u << 15; side > 0; side >>= 1) {
    const std::uint32_t right = (x & side) != 0, upper = (y & side) != 0;
    index += side * side * ((3 * right) ^ upper);
    if (!upper) {
      if (right) {
        x = (side - 1) & ~x;
        y = (side - 1) & ~y;
      }
      std::swap(x, y);
    }
  }
  return index;
}

bool IsUsable(const BoxTree::Box& box) {
  return !box.IsEmpty() && std::isfinite(box.minx + box.maxx) && std::isfinite(box.miny + box.maxy);
}

}  // namespace

BoxTree::BoxTree(const std::vector<Box>& boxes) {
  Box whole;
  for (const Box& box : boxes) {
    if (IsUsable(box)) whole.Add(box);
  }
  // Half of it, as half of the coordinates below: the whole may be more than the greatest double.
  const double size = std::max(0.5 * whole.maxx - 0.5 * whole.minx, 0.5 * whole.maxy - 0.5 * whole.miny);
  const double cells = 65535;
  const double scale = size > 0 && std::isfinite(cells / size) ? cells / size : 0;
  const auto cell = [&](double low, double high, double from) {
    return static_cast<std::uint32_t>(
        std::clamp((0.25 * low + 0.25 * high - 0.5 * from) * scale, 0.0, cells));
  };
  std::vector<std::uint64_t> keys;
  keys.reserve(boxes.size());
  for (std::size_t k = 0; k < boxes.size(); ++k) {
    const Box& box = boxes[k];
    if (!IsUsable(box)) continue;
    const std::uint64_t index =
        HilbertIndex(cell(box.minx, box.maxx, whole.minx), cell(box.miny, box.maxy, whole.miny));
    keys.push_back((index << 32) | k);
  }
  if (keys.empty()) return;
  std::sort(keys.begin(), keys.end());
  order_.reserve(keys.size());
  levels_.emplace_back().reserve(keys.size());
  for (const std::uint64_t key : keys) {
    order_.push_back(static_cast<std::uint32_t>(key));
    levels_[0].push_back(boxes[order_.back()]);
  }
  while (levels_.back().size() > kWidth) {
    std::vector<Box> groups;
    const std::vector<Box>& below = levels_.back();
    groups.reserve((below.size() + kWidth - 1) / kWidth);
    for (std::size_t k = 0; k < below.size(); ++k) {
      if (k % kWidth == 0) groups.emplace_back();
      groups.back().Add(below[k]);
    }
    levels_.push_back(std::move(groups));
  }
}

}  // namespace Lumo
