#pragma once
// Which of up to 64 nodes lie below and above a height, as bits: the first look of a fill test, which then
// visits only the nodes at which the outline's control polygon reaches the height.

#include <cstdint>
#include <cstring>

#include "core/node_words.h"
#include "lumo/node_type.h"
#include "lumo/point_types.h"
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace Lumo {

/// Bit k speaks of node k.
struct HeightMasks {
  std::uint64_t below = 0;
  std::uint64_t above = 0;
};

inline constexpr int kMaskNodes = 64;

/// How four nodes compare, in the low bits.
template <class T>
HeightMasks CompareFour(const T* p, decltype(T::y) y) noexcept {
#if defined(__SSE2__)
  __m128 below, above;
  if constexpr (sizeof(T) == 16) {
    const auto pair = [p](int k) { return _mm_loadh_pd(_mm_load_sd(&p[k].y), &p[k + 1].y); };
    const __m128d low = pair(0), high = pair(2);
    const __m128d height = _mm_set1_pd(y);
    // The lower half of each 64-bit answer stands for the whole.
    const auto narrow = [](__m128d a, __m128d b) {
      return _mm_shuffle_ps(_mm_castpd_ps(a), _mm_castpd_ps(b), _MM_SHUFFLE(2, 0, 2, 0));
    };
    below = narrow(_mm_cmplt_pd(low, height), _mm_cmplt_pd(high, height));
    above = narrow(_mm_cmpgt_pd(low, height), _mm_cmpgt_pd(high, height));
  } else {
    const auto load = [p](int k) {
      return _mm_castsi128_ps(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p + k)));
    };
    const __m128i ys = _mm_castps_si128(_mm_shuffle_ps(load(0), load(2), _MM_SHUFFLE(3, 1, 3, 1)));
    const __m128i height = _mm_set1_epi32(y);
    below = _mm_castsi128_ps(_mm_cmplt_epi32(ys, height));
    above = _mm_castsi128_ps(_mm_cmpgt_epi32(ys, height));
  }
  return {static_cast<unsigned>(_mm_movemask_ps(below)), static_cast<unsigned>(_mm_movemask_ps(above))};
#else
  HeightMasks masks;
  for (int k = 0; k < 4; ++k) {
    masks.below |= std::uint64_t{p[k].y < y} << k;
    masks.above |= std::uint64_t{p[k].y > y} << k;
  }
  return masks;
#endif
}

/// For count <= kMaskNodes nodes. A coordinate that is not a number is neither below nor above.
template <class T>
HeightMasks CompareHeights(const T* points, int count, decltype(T::y) y) noexcept {
  HeightMasks masks;
  const auto add = [&](int k) {
    const HeightMasks four = CompareFour(points + k, y);
    masks.below |= four.below << k;
    masks.above |= four.above << k;
  };
  int k = 0;
  for (; count - k >= 4; k += 4) add(k);
  if (k > 0 && k < count) add(count - 4), k = count;  // some of them twice
  for (; k < count; ++k) {
    masks.below |= std::uint64_t{points[k].y < y} << k;
    masks.above |= std::uint64_t{points[k].y > y} << k;
  }
  return masks;
}

/// The move nodes among count <= kMaskNodes nodes.
inline std::uint64_t MoveMask(const NODETYPE* types, int count) noexcept {
  std::uint64_t moves = 0;
  const auto add = [&](int k) {
    std::uint64_t word;
    std::memcpy(&word, types + k, sizeof word);
    moves |= Gather(MovesOf(word)) << k;
  };
  int k = 0;
  for (; count - k >= 8; k += 8) add(k);
  if (k > 0 && k < count) add(count - 8), k = count;  // some of them twice
  for (; k < count; ++k) moves |= std::uint64_t{types[k].IsMove()} << k;
  return moves;
}

}  // namespace Lumo
