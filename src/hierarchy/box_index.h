#pragma once
#include <algorithm>
#include <bitset>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "tav/math/bounds.h"
#include "tav/math/vector2d.h"

namespace Lumo {

/// Finds the boxes around a point. Each box lives on the level whose cells are at least as large as it is, in
/// the at most four cells that it overlaps there, so that a drawing with boxes of every size costs no more
/// than one with equal boxes: a query looks at one cell of each level in use.
class BoxIndex {
 public:
  void Add(const TavMath::BoundsT<double>& box, int id) {
    const double size = std::max(box.Width(), box.Height());
    if (!(size < kHugeSize)) return huge_.push_back(id);
    const int level = LevelOf(size);
    levels_.set(static_cast<std::size_t>(level));
    const double cell = CellSize(level);
    const std::int64_t x0 = Cell(box.minx, cell), x1 = Cell(box.maxx, cell);
    const std::int64_t y0 = Cell(box.miny, cell), y1 = Cell(box.maxy, cell);
    for (std::int64_t x = x0; x <= x1; ++x) {
      for (std::int64_t y = y0; y <= y1; ++y) cells_[Key(level, x, y)].push_back(id);
    }
  }

  /// Calls visit(id) for every box that may hold p (once each).
  template <class Visit>
  void ForEachAround(const TavMath::DPoint& p, Visit visit) const {
    for (const int id : huge_) visit(id);
    for (int level = 0; level < kLevels; ++level) {
      if (!levels_.test(static_cast<std::size_t>(level))) continue;
      const double cell = CellSize(level);
      const auto found = cells_.find(Key(level, Cell(p.x, cell), Cell(p.y, cell)));
      if (found == cells_.end()) continue;
      for (const int id : found->second) visit(id);
    }
  }

 private:
  static constexpr int kLevels = 128;
  static constexpr int kUnitLevel = 64;        // level of cells of size 1
  static constexpr double kHugeSize = 0x1p62;  // larger boxes (and infinite ones) are simply tried every time

  static int LevelOf(double size) {
    if (!(size > 0)) return 0;
    return std::max(std::ilogb(size) + 1 + kUnitLevel, 0);
  }
  static double CellSize(int level) { return std::ldexp(1.0, level - kUnitLevel); }
  static std::int64_t Cell(double coordinate, double cell) {
    const double index = std::floor(coordinate / cell);
    // Beyond this a double tells no cells apart; such boxes share the outermost cell.
    constexpr double kFarthest = 4e15;
    if (!(index > -kFarthest)) return static_cast<std::int64_t>(-kFarthest);  // NaN too
    return static_cast<std::int64_t>(std::min(index, kFarthest));
  }
  /// Cells with equal keys only share a list: a visitor tests the real box anyway.
  static std::uint64_t Key(int level, std::int64_t x, std::int64_t y) {
    std::uint64_t key = static_cast<std::uint64_t>(x) * 0x9E3779B97F4A7C15u;
    key ^= (static_cast<std::uint64_t>(y) + static_cast<std::uint64_t>(level) * 0x632BE59BD9B4E019u) *
           0xC2B2AE3D27D4EB4Fu;
    return key ^ key >> 29;
  }

  std::unordered_map<std::uint64_t, std::vector<int>> cells_;
  std::bitset<kLevels> levels_;
  std::vector<int> huge_;
};

/// Finds the points inside a box. A uniform grid over the given ground with about one point a cell.
class PointIndex {
 public:
  PointIndex(const TavMath::BoundsT<double>& ground, std::size_t expected) : ground_(ground) {
    const double side = std::ceil(std::sqrt(static_cast<double>(expected)));
    side_ = static_cast<int>(side < 1 ? 1 : side > 4096 ? 4096 : side);
    cells_.resize(static_cast<std::size_t>(side_) * static_cast<std::size_t>(side_));
  }

  void Add(const TavMath::DPoint& p, int id) {
    cells_[Slot(Clamp(p.x, ground_.minx, ground_.Width()), Clamp(p.y, ground_.miny, ground_.Height()))]
        .push_back(id);
  }

  /// Calls visit(id) for every point that may lie in the box (once each).
  template <class Visit>
  void ForEachIn(const TavMath::BoundsT<double>& box, Visit visit) const {
    const int x0 = Clamp(box.minx, ground_.minx, ground_.Width()),
              x1 = Clamp(box.maxx, ground_.minx, ground_.Width());
    const int y0 = Clamp(box.miny, ground_.miny, ground_.Height()),
              y1 = Clamp(box.maxy, ground_.miny, ground_.Height());
    for (int x = x0; x <= x1; ++x) {
      for (int y = y0; y <= y1; ++y) {
        for (const int id : cells_[Slot(x, y)]) visit(id);
      }
    }
  }

 private:
  int Clamp(double coordinate, double low, double extent) const {
    const double cell = extent > 0 ? (coordinate - low) / extent * side_ : 0;
    return cell >= side_ ? side_ - 1 : cell > 0 ? static_cast<int>(cell) : 0;
  }
  std::size_t Slot(int x, int y) const {
    return static_cast<std::size_t>(x) * static_cast<std::size_t>(side_) + static_cast<std::size_t>(y);
  }

  TavMath::BoundsT<double> ground_;
  int side_;
  std::vector<std::vector<int>> cells_;
};

}  // namespace Lumo
