#pragma once
// A path from bytes, well formed or not: three bytes a node, its node type and two coordinates of eight bits.
// The first byte of the input says how far the coordinates are spread: by small factors coincidences are
// common, by large ones the ends of the 32-bit plane are reached.
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "lumo/node_type.h"
#include "lumo/point_types.h"

namespace fuzz {

inline void Require(bool condition) {
  if (!condition) std::abort();
}

/// Exactly as long as its nodes, so that the sanitizer sees a read beyond the last one.
template <class T>
struct Path {
  std::vector<T> points;
  std::vector<NODETYPE> types;
  int count() const { return static_cast<int>(points.size()); }
};

struct Input {
  const std::uint8_t* data;
  std::size_t size;

  std::uint8_t Byte() {
    if (size == 0) return 0;
    --size;
    return *data++;
  }
  /// -128 .. 127 times the spread; the spread is 1, 100, 100,000 or the whole plane.
  int Coordinate(int spread) { return static_cast<std::int8_t>(Byte()) * spread; }
};

inline int Spread(std::uint8_t byte) {
  constexpr int kSpreads[] = {1, 100, 100000, 1 << 24};
  return kSpreads[byte & 3];
}

/// Takes the rest of the input, at most 500 nodes.
template <class T>
Path<T> TakePath(Input& input, int spread) {
  Path<T> path;
  while (input.size >= 3 && path.count() < 500) {
    path.types.push_back(NODETYPE(input.Byte()));
    using Coordinate = decltype(T::x);
    const int x = input.Coordinate(spread), y = input.Coordinate(spread);
    path.points.push_back({static_cast<Coordinate>(x), static_cast<Coordinate>(y)});
  }
  path.points.shrink_to_fit();
  path.types.shrink_to_fit();
  return path;
}

}  // namespace fuzz
