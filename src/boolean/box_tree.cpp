#include "boolean/box_tree.h"

#include <algorithm>

namespace Lumo::Planar {
namespace {

constexpr double kCells = 65535;  // of each side of the grid whose cells the curve passes

/// Spreads the low 16 bits to the even places.
std::uint32_t Spread(std::uint32_t v) {
  v = (v | (v << 8)) & 0x00FF00FFu;
  v = (v | (v << 4)) & 0x0F0F0F0Fu;
  v = (v | (v << 2)) & 0x33333333u;
  return (v | (v << 1)) & 0x55555555u;
}

/// The cell of a place along one side; 0 where the side is so short that its scale overflows.
std::uint32_t CellAt(double along) {
  return along > 0 && along <= kCells ? static_cast<std::uint32_t>(along) : 0;
}

std::vector<std::uint64_t> CurveOrder(const std::vector<Box>& boxes) {
  Box all;
  for (const Box& b : boxes) all.Add(b);
  const double sx = all.Width() > 0 ? kCells / all.Width() : 0,
               sy = all.Height() > 0 ? kCells / all.Height() : 0;
  std::vector<std::uint64_t> order(boxes.size());
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    const double x = (0.5 * (boxes[i].minx + boxes[i].maxx) - all.minx) * sx,
                 y = (0.5 * (boxes[i].miny + boxes[i].maxy) - all.miny) * sy;
    const auto cell = Spread(CellAt(x)) | (Spread(CellAt(y)) << 1);
    order[i] = (std::uint64_t{cell} << 32) | i;
  }
  std::sort(order.begin(), order.end());
  return order;
}

}  // namespace

BoxTree::BoxTree(std::vector<Box> boxes) {
  if (boxes.empty()) return;
  const auto order = CurveOrder(boxes);
  const int n = static_cast<int>(boxes.size());
  boxes_.reserve(boxes.size());
  index_.reserve(boxes.size());
  for (const std::uint64_t o : order) {
    index_.push_back(static_cast<int>(o & 0xFFFFFFFFu));
    boxes_.push_back(boxes[static_cast<std::size_t>(index_.back())]);
  }
  nodes_.reserve(static_cast<std::size_t>(n) / (kFan - 1) + 8);
  for (int i = 0; i < n; i += kFan) {
    Node leaf{{}, i, (std::min)(i + kFan, n), true};
    for (int k = leaf.first; k < leaf.last; ++k) leaf.box.Add(boxes_[static_cast<std::size_t>(k)]);
    nodes_.push_back(leaf);
  }
  int first = 0, last = static_cast<int>(nodes_.size());
  while (last - first > 1) {
    for (int i = first; i < last; i += kFan) {
      Node parent{{}, i, (std::min)(i + kFan, last), false};
      for (int k = parent.first; k < parent.last; ++k)
        parent.box.Add(nodes_[static_cast<std::size_t>(k)].box);
      nodes_.push_back(parent);
    }
    first = last;
    last = static_cast<int>(nodes_.size());
  }
  root_ = first;
}

}  // namespace Lumo::Planar
