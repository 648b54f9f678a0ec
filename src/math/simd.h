#pragma once
// Two doubles, four floats, or four 32-bit integers, side by side: every 64-bit x86 processor works on 16
// bytes at once, and the compilers build the same types from scalars elsewhere.

#include <cmath>
#include <cstdint>
#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace TavMath {

using TwoDoubles = double __attribute__((vector_size(16)));

/// What comparing them gives: all bits of a half set where it holds.
using TwoFlags = decltype(TwoDoubles{} < TwoDoubles{});

inline TwoDoubles Both(double v) { return TwoDoubles{v, v}; }

inline bool AllOf(TwoFlags flags) {
#if defined(__SSE2__)
  return _mm_movemask_pd(_mm_castsi128_pd(reinterpret_cast<__m128i>(flags))) == 3;
#else
  return (flags[0] & flags[1]) != 0;
#endif
}
inline bool AnyOf(TwoFlags flags) {
#if defined(__SSE2__)
  return _mm_movemask_pd(_mm_castsi128_pd(reinterpret_cast<__m128i>(flags))) != 0;
#else
  return (flags[0] | flags[1]) != 0;
#endif
}

using FourInts = std::int32_t __attribute__((vector_size(16)));
/// For arithmetic that wraps around.
using FourWords = std::uint32_t __attribute__((vector_size(16)));

/// For what a comparison gives.
inline bool AnyOf(FourInts flags) {
#if defined(__SSE2__)
  return _mm_movemask_epi8(reinterpret_cast<__m128i>(flags)) != 0;
#else
  return (flags[0] | flags[1] | flags[2] | flags[3]) != 0;
#endif
}

/// The top bits of the sixteen bytes, byte i as bit i.
inline unsigned TopBitsOf(FourWords v) {
#if defined(__SSE2__)
  return static_cast<unsigned>(_mm_movemask_epi8(reinterpret_cast<__m128i>(v)));
#else
  unsigned bits = 0;
  for (unsigned i = 0; i < 16; ++i) bits |= (v[i / 4] >> (8 * (i % 4) + 7) & 1) << i;
  return bits;
#endif
}

/// The lesser and the greater of each pair; b where one is not a number.
inline TwoDoubles Lesser(TwoDoubles a, TwoDoubles b) {
#if defined(__SSE2__)
  return _mm_min_pd(a, b);
#else
  return a < b ? a : b;
#endif
}
inline TwoDoubles Greater(TwoDoubles a, TwoDoubles b) {
#if defined(__SSE2__)
  return _mm_max_pd(a, b);
#else
  return a > b ? a : b;
#endif
}

inline TwoDoubles SquareRoot(TwoDoubles v) {
#if defined(__SSE2__)
  return _mm_sqrt_pd(v);
#else
  return TwoDoubles{std::sqrt(v[0]), std::sqrt(v[1])};
#endif
}

inline double SquareRoot(double v) {
#if defined(__SSE2__)
  // Without the library call that std::sqrt keeps for setting errno.
  return _mm_cvtsd_f64(_mm_sqrt_pd(_mm_set_sd(v)));
#else
  return std::sqrt(v);
#endif
}

using FourFloats = float __attribute__((vector_size(16)));

inline FourFloats SquareRoot(FourFloats v) {
#if defined(__SSE2__)
  return _mm_sqrt_ps(v);
#else
  return FourFloats{std::sqrt(v[0]), std::sqrt(v[1]), std::sqrt(v[2]), std::sqrt(v[3])};
#endif
}

inline float SquareRoot(float v) {
#if defined(__SSE2__)
  return _mm_cvtss_f32(_mm_sqrt_ss(_mm_set_ss(v)));
#else
  return std::sqrt(v);
#endif
}

inline TwoDoubles Absolute(TwoDoubles v) {
  using Bits = long long __attribute__((vector_size(16)));
  return reinterpret_cast<TwoDoubles>(reinterpret_cast<Bits>(v) &
                                      Bits{0x7fffffffffffffff, 0x7fffffffffffffff});
}
inline FourFloats Absolute(FourFloats v) {
  constexpr int kAllButSign = 0x7fffffff;
  return reinterpret_cast<FourFloats>(reinterpret_cast<FourInts>(v) &
                                      FourInts{kAllButSign, kAllButSign, kAllButSign, kAllButSign});
}

inline FourFloats Load(const float* from) {
  FourFloats v;
  std::memcpy(&v, from, sizeof v);
  return v;
}
inline void Store(float* to, FourFloats v) { std::memcpy(to, &v, sizeof v); }
inline int SumOf(FourInts v) {
#if defined(__SSE2__)
  const __m128i all = reinterpret_cast<__m128i>(v), pairs = _mm_add_epi32(all, _mm_unpackhi_epi64(all, all));
  return _mm_cvtsi128_si32(_mm_add_epi32(pairs, _mm_shuffle_epi32(pairs, 1)));
#else
  return (v[0] + v[1]) + (v[2] + v[3]);
#endif
}

}  // namespace TavMath
