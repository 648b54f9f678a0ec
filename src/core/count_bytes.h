#pragma once
// Counting node bytes that satisfy a condition: the one scan behind every count of the library.

#include <algorithm>
#include <cstddef>

#include "lumo/node_type.h"

namespace Lumo {

/// How many of the indices 0 .. count-1 satisfy a condition. Byte-wide counters keep sixteen counts in one
/// vector register; they are emptied before the largest possible sum, 255, is passed. The condition must be
/// branch-free arithmetic on bytes for the compiler to vectorise it.
template <class Condition>
std::size_t CountIndices(std::size_t count, Condition condition) noexcept {
  constexpr std::size_t kLanes = 64;
  constexpr std::size_t kRows = 255;
  std::size_t total = 0, k = 0;
  while (count - k >= kLanes) {
    const std::size_t rows = (std::min)((count - k) / kLanes, kRows);
    unsigned char lanes[kLanes] = {};
    for (std::size_t row = 0; row < rows; ++row, k += kLanes)
      for (std::size_t lane = 0; lane < kLanes; ++lane)
        lanes[lane] = static_cast<unsigned char>(lanes[lane] + condition(k + lane));
    for (const unsigned char lane : lanes) total += lane;
  }
  for (; k < count; ++k) total += condition(k);
  return total;
}

/// How many of the bytes satisfy the condition, a function from byte to 0 or 1.
template <class Condition>
std::size_t CountBytes(const NODETYPE* types, std::size_t count, Condition condition) noexcept {
  return CountIndices(count, [types, condition](std::size_t k) { return condition(types[k].value); });
}

/// The same over neighbours: how many k in 0 .. count-2 satisfy the condition on bytes k and k+1.
template <class Condition>
std::size_t CountBytePairs(const NODETYPE* types, std::size_t count, Condition condition) noexcept {
  if (count < 2) return 0;
  return CountIndices(
      count - 1, [types, condition](std::size_t k) { return condition(types[k].value, types[k + 1].value); });
}

/// Whether a node kind ends a segment: a line or a curve node. Branch-free.
inline unsigned char EndsSegment(unsigned char byte) noexcept {
  return static_cast<unsigned char>(byte - NODETYPE::kLine) < 0x80;
}

}  // namespace Lumo
