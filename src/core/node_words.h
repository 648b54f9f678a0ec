#pragma once
// Node bytes eight at a time: a word holds node i in its byte i (x86-64 is little-endian). The top bit of
// each byte of a mask is the answer for its node.

#include <bit>
#include <cstdint>
#include <cstring>

#include "lumo/node_type.h"

namespace Lumo {

// For words of eight nodes or of sixteen.
template <class Word>
Word MovesOf(Word word) noexcept {
  return ~(word | word << 1);
}
template <class Word>
Word OnCurveOf(Word word) noexcept {
  return ~(word & word << 1);
}
template <class Word>
Word EnabledOf(Word word) noexcept {
  return OnCurveOf(word) & word << 7;
}
inline std::uint64_t SelectedOf(std::uint64_t word) noexcept { return EnabledOf(word) & word << 5; }

inline constexpr std::uint64_t kTopBits = 0x8080808080808080u;

/// The eight answers of a mask, node i as bit i.
inline std::uint64_t Gather(std::uint64_t mask) noexcept {
  constexpr std::uint64_t kToLastByte = 0x0102040810204080u;  // bit 8i -> bit 56 + i
  return ((mask & kTopBits) >> 7) * kToLastByte >> 56;
}

/// Calls visit(i) in order for every node that pick, a function from word to mask, answers yes for. pick must
/// not answer yes for a control point without flags. visit may change what pick does not look at.
template <class Pick, class Visit>
void ForPickedNodes(const NODETYPE* types, int count, Pick pick, Visit visit) {
  constexpr int kNodes = 8;
  for (int first = 0; first < count; first += kNodes) {
    std::uint64_t word = NODETYPE::kControl * (kTopBits >> 7);
    const int nodes = count - first < kNodes ? count - first : kNodes;
    if (nodes == kNodes) {
      std::memcpy(&word, types + first, kNodes);
    } else {
      std::memcpy(&word, types + first, static_cast<std::size_t>(nodes));
    }
    for (std::uint64_t picked = pick(word) & kTopBits; picked != 0; picked &= picked - 1)
      visit(first + std::countr_zero(picked) / 8);
    if (nodes < kNodes) break;  // and first never overflows
  }
}

}  // namespace Lumo
