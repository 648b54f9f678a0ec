#pragma once
// Random paths, made from raw engine bits: the same seed gives the same path on every platform.

#include <cstdint>
#include <vector>

#include "lumo/node_type.h"
#include "lumo/point_types.h"
#include "support/path_builder.h"

namespace test {

/// A small generator of raw bits (splitmix64: Steele, Lea, Flood, "Fast splittable pseudorandom number
/// generators", 2014).
class Bits {
 public:
  explicit Bits(std::uint64_t seed) : state_(seed) {}
  std::uint64_t operator()() {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15u;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }
  /// 0 .. n-1; 0 for n < 1.
  int Below(int n) { return n < 1 ? 0 : static_cast<int>((*this)() % static_cast<std::uint64_t>(n)); }
  /// low .. high, both included.
  int Between(int low, int high) {
    return static_cast<int>(
        low + static_cast<std::int64_t>(
                  (*this)() % (static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low) + 1)));
  }
  /// [0, 1).
  double Unit() { return static_cast<double>((*this)() >> 11) * 0x1p-53; }
  bool OneIn(int n) { return Below(n) == 0; }

 private:
  std::uint64_t state_;
};

/// What a generated path may hold. The defaults give a bit of everything that is well formed.
struct PathOptions {
  int minSubpaths = 1;
  int maxSubpaths = 4;
  int maxSegments = 6;
  int range = 1000;    ///< coordinates lie in -range .. range
  bool open = true;    ///< open subpaths allowed
  bool closed = true;  ///< closed subpaths allowed
  bool lines = true;
  bool curves = true;
  bool loneMoves = true;   ///< subpaths of a single move node, open
  bool degenerate = true;  ///< coincident control points, zero-length segments, collinear controls
  bool flags = true;       ///< random enabled, letter and continuity bits, handles shown
  bool whole = false;      ///< double points on whole units only
};

template <class T>
T RandomPoint(Bits& bits, const PathOptions& options) {
  const auto coordinate = [&] {
    const int whole = bits.Between(-options.range, options.range);
    const bool fraction = !options.whole && bits.OneIn(2);
    return fraction ? whole * bits.Unit() : static_cast<double>(whole);
  };
  const double x = coordinate();
  return MakePoint<T>(x, coordinate());
}

namespace detail {

template <class T>
void AddRandomSegment(Bits& bits, const PathOptions& options, Path<T>& path) {
  const T from = path.points.back();
  T to = RandomPoint<T>(bits, options);
  if (options.degenerate && bits.OneIn(12)) to = from;
  const bool curve = options.curves && (!options.lines || bits.OneIn(2));
  if (!curve) return path.Add(NODETYPE::kLine | NODETYPE::kUser, to);
  T c1 = RandomPoint<T>(bits, options), c2 = RandomPoint<T>(bits, options);
  if (options.degenerate) {
    switch (bits.Below(10)) {
      case 0:
        c1 = from;
        break;
      case 1:
        c2 = to;
        break;
      case 2:
        c1 = from, c2 = to;
        break;
      case 3:
        c1 = c2;
        break;
      case 4:  // collinear, possibly folding back over an end
        c1 = MakePoint<T>(2.0 * to.x - from.x, 2.0 * to.y - from.y);
        c2 = from;
        break;
      default:
        break;
    }
  }
  path.Add(NODETYPE::kControl, c1);
  path.Add(NODETYPE::kControl, c2);
  path.Add(NODETYPE::kCurve | NODETYPE::kUser, to);
}

template <class T>
void AddRandomSubpath(Bits& bits, const PathOptions& options, Path<T>& path) {
  const std::size_t first = path.points.size();
  path.Add(NODETYPE::kMove | NODETYPE::kUser, RandomPoint<T>(bits, options));
  if (options.loneMoves && options.open && bits.OneIn(10)) return;
  for (int n = 1 + bits.Below(options.maxSegments); n > 0; --n) AddRandomSegment(bits, options, path);
  if (!options.closed || (options.open && bits.OneIn(2))) return;
  if (path.points.back() != path.points[first]) {
    // Close with a line, or by bringing the last node home.
    if (options.lines && bits.OneIn(2)) {
      path.Add(NODETYPE::kLine | NODETYPE::kUser, T(path.points[first]));
    } else {
      path.points.back() = path.points[first];
    }
  }
  path.types[first].Set(NODETYPE::kClosed, true);
  path.types.back().Set(NODETYPE::kClosed, true);
  path.types.back().Set(NODETYPE::kUser, false);
}

/// Closed ends stay in step: they are one node to the user.
template <class T>
void AddRandomFlags(Bits& bits, Path<T>& path) {
  std::size_t first = 0;
  for (std::size_t k = 0; k < path.types.size(); ++k) {
    NODETYPE& type = path.types[k];
    if (type.IsMove()) first = k;
    type.Set(NODETYPE::kEnabled, bits.OneIn(3));
    if (type.IsControl()) {
      type.Set(NODETYPE::kUser, type.IsEnabled());
      continue;
    }
    type.SetContinuity(static_cast<ContinuityType>(bits.Below(3)));
    if (type.IsMove()) type.Set(NODETYPE::kLetter, bits.OneIn(4));
    if (!type.IsMove() && type.IsClosed()) {
      type.Set(NODETYPE::kEnabled, path.types[first].IsEnabled());
      type.SetContinuity(path.types[first].Continuity());
    }
  }
}

}  // namespace detail

/// A well-formed path. With the defaults: open, closed and mixed, lone moves, degenerate curves.
template <class T>
Path<T> RandomPath(Bits& bits, const PathOptions& options = {}) {
  Path<T> path;
  const int subpaths = bits.Between(options.minSubpaths, options.maxSubpaths);
  for (int k = 0; k < subpaths; ++k) detail::AddRandomSubpath(bits, options, path);
  if (options.flags) detail::AddRandomFlags(bits, path);
  return path;
}

/// Bytes that break the rules: a third anything at all, a third runs of plausible kinds, a third a
/// well-formed path with a few bytes struck.
inline std::vector<NODETYPE> RandomMalformedTypes(Bits& bits, int maxCount) {
  const int style = bits.Below(3);
  if (style == 2) {
    std::vector<NODETYPE> types = RandomPath<tagPOINT>(bits).types;
    if (types.size() > static_cast<std::size_t>(maxCount)) types.resize(static_cast<std::size_t>(maxCount));
    for (int hits = 1 + bits.Below(3); hits > 0 && !types.empty(); --hits)
      types[static_cast<std::size_t>(bits.Below(static_cast<int>(types.size())))] =
          static_cast<unsigned char>(bits());
    return types;
  }
  std::vector<NODETYPE> types(static_cast<std::size_t>(bits.Below(maxCount + 1)));
  for (NODETYPE& type : types) {
    type = static_cast<unsigned char>(bits());
    if (style == 1) type &= bits.OneIn(4) ? 0xFF : 0xC5;
  }
  return types;
}

/// Malformed types with points to match.
template <class T>
Path<T> RandomMalformedPath(Bits& bits, int maxCount, const PathOptions& options = {}) {
  Path<T> path;
  path.types = RandomMalformedTypes(bits, maxCount);
  for (std::size_t k = 0; k < path.types.size(); ++k) path.points.push_back(RandomPoint<T>(bits, options));
  return path;
}

}  // namespace test
