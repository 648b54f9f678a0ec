#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/count_bytes.h"
#include "core/node_words.h"
#include "lumo/crv_navigation.h"

namespace {

using Lumo::CountBytePairs;
using Lumo::CountBytes;
using Lumo::Gather;
using Lumo::MovesOf;
using Lumo::SelectedOf;

constexpr unsigned char kKind = NODETYPE::kKindMask;
constexpr unsigned char kEnabled = NODETYPE::kEnabled;
constexpr unsigned char kClosed = NODETYPE::kClosed;

template <class Condition>
int Count(const NODETYPE* types, int count, Condition condition) {
  if (types == nullptr || count < 1) return 0;
  return static_cast<int>(CountBytes(types, static_cast<std::size_t>(count), condition));
}

/// Nodes whose bits under the mask have exactly this value.
int CountMasked(const NODETYPE* types, int count, unsigned char mask, unsigned char value) {
  return Count(types, count,
               [mask, value](unsigned char byte) -> unsigned char { return (byte & mask) == value; });
}

template <class Condition>
int CountPairs(const NODETYPE* types, int count, Condition condition) {
  if (types == nullptr || count < 2) return 0;
  return static_cast<int>(CountBytePairs(types, static_cast<std::size_t>(count), condition));
}

/// Whether some byte pair satisfies the condition; looks at a block at a time, so that the search is as fast
/// as counting and stops early.
template <class Block>
bool AnyBlock(int count, Block block) {
  constexpr int kBlock = 4096;
  for (int k = 0; k < count;) {
    const int end = count - k > kBlock ? k + kBlock : count;
    if (block(k, end)) return true;
    k = end;
  }
  return false;
}

}  // namespace

int CRV_NumSubpaths(const NODETYPE* types, int count) noexcept {
  return CountMasked(types, count, kKind, NODETYPE::kMove);
}

int CRV_ContainsClosedSubpath(const NODETYPE* types, int count) noexcept {
  if (types == nullptr) return 0;
  return AnyBlock(count,
                  [types](int k, int end) { return CountMasked(types + k, end - k, kClosed, kClosed) != 0; });
}

int CRV_ContainsOpenSubpath(const NODETYPE* types, int count, bool onlyRealSubpaths) noexcept {
  if (types == nullptr) return 0;
  constexpr unsigned char mask = kKind | kClosed;
  if (!onlyRealSubpaths)
    return AnyBlock(count, [types](int k, int end) { return CountMasked(types + k, end - k, mask, 0) != 0; });
  return AnyBlock(count, [types, count](int k, int end) {
    const int pairs = end < count ? end - k + 1 : end - k;  // the pair across the block's end belongs to it
    return CountPairs(types + k, pairs, [](unsigned char byte, unsigned char next) -> unsigned char {
             return ((byte & mask) == 0) & (next >= NODETYPE::kLine);
           }) != 0;
  });
}

int CRV_HowManyEnabled(const NODETYPE* types, int count) noexcept {
  return Count(types, count, [](unsigned char byte) -> unsigned char {
    return ((byte & NODETYPE::kSelected) == NODETYPE::kSelected) & (byte < NODETYPE::kControl);
  });
}

int CRV_HowManyEnabledNotClosed(const NODETYPE* types, int count) noexcept {
  return Count(types, count, [](unsigned char byte) -> unsigned char {
    return ((byte & (kEnabled | kClosed)) == kEnabled) & (byte < NODETYPE::kControl);
  });
}

int CRV_HowManyEnabledNotFirstOrLastInSubpath(const NODETYPE* types, int count) noexcept {
  return CountPairs(types, count, [](unsigned char byte, unsigned char next) -> unsigned char {
    const bool inside = (byte >= NODETYPE::kLine) & (byte < NODETYPE::kControl) & (next >= NODETYPE::kLine);
    return inside & ((byte & kEnabled) == kEnabled);
  });
}

int CRV_HowManyEnabledNotFirstOrLastInOpenSubpath(const NODETYPE* types, int count) noexcept {
  return CountPairs(types, count, [](unsigned char byte, unsigned char next) -> unsigned char {
    const bool selected = ((byte & NODETYPE::kSelected) == NODETYPE::kSelected) & (byte < NODETYPE::kControl);
    const bool inner = (byte >= NODETYPE::kLine) & (next >= NODETYPE::kLine);
    return selected & (((byte & kClosed) != 0) | inner);
  });
}

int CRV_HowManyEnabledLines(const NODETYPE* types, int count) noexcept {
  return CountMasked(types, count, kKind | kEnabled, NODETYPE::kLine | kEnabled);
}
int CRV_HowManyEnabledCurves(const NODETYPE* types, int count) noexcept {
  return CountMasked(types, count, kKind | kEnabled, NODETYPE::kCurve | kEnabled);
}
int CRV_HowManyLines(const NODETYPE* types, int count) noexcept {
  return CountMasked(types, count, kKind, NODETYPE::kLine);
}
int CRV_HowManyCurves(const NODETYPE* types, int count) noexcept {
  return CountMasked(types, count, kKind, NODETYPE::kCurve);
}
int CRV_HowManyOpenSubpaths(const NODETYPE* types, int count) noexcept {
  return CountMasked(types, count, kKind | kClosed, NODETYPE::kMove);
}

// A subpath without a selected node so far is a carry that travels along the nodes. Adding the unselected
// starts to the word of unselected nodes starts one at each, lets it run on, and drops it at the first
// selected node, where it turns a 0 into a 1; that node is the first selected one of its subpath. A selected
// start is the first of its own subpath whether a carry reaches it or not.
int CRV_HowManyEnabledSubpaths(const NODETYPE* types, int count) noexcept {
  if (types == nullptr) return 0;
  int subpaths = 0;
  bool carry = true;  // nodes before the first move node count as a subpath
  for (int k = 0; k < count; k += 64) {
    const int n = count - k < 64 ? count - k : 64;
    std::uint64_t words[8];
    std::memset(words, NODETYPE::kControl, sizeof words);  // control points are neither moves nor selected
    std::memcpy(words, types + k, static_cast<std::size_t>(n));
    std::uint64_t moves = 0, selected = 0;
    for (int w = 0; w < 8; ++w) {
      moves |= Gather(MovesOf(words[w])) << (8 * w);
      selected |= Gather(SelectedOf(words[w])) << (8 * w);
    }
    const std::uint64_t starts = moves & ~selected;
    const std::uint64_t started = ~selected + starts;
    const std::uint64_t landed = started + (carry ? 1 : 0);
    carry = started < starts || landed < started;
    subpaths += std::popcount((landed & selected & ~moves) | (selected & moves));
  }
  return subpaths;
}

int CRV_GetNumberOfUserNodes(const NODETYPE* types, unsigned count, bool onlyEnabled) noexcept {
  if (types == nullptr) return 0;
  const unsigned char mask = onlyEnabled ? NODETYPE::kSelected : NODETYPE::kUser;
  return static_cast<int>(CountBytes(types, count, [mask](unsigned char byte) -> unsigned char {
    return ((byte & mask) == mask) & (byte < NODETYPE::kControl);
  }));
}
