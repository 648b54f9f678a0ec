#pragma once
// Whether a run of points lies in a box. Comparing costs a third of finding the run's own box, and most runs
// of a long path lie in the box of what came before them.

#include <cstdint>
#include <cstring>

#include "math/simd.h"
#include "tav/math/rect.h"

namespace TavMath {

/// `box` has left <= right and top <= bottom. Edges count as inside.
inline bool Holds(const tagRECT& box, const tagPOINT* points, std::size_t count) noexcept {
  const auto bits = [](auto value) { return static_cast<std::uint32_t>(value); };
  // low <= v <= high as one signed comparison: v - low, moved down by 2^31, against high - low moved
  // likewise.
  constexpr std::uint32_t kDown = 0x80000000u;
  const FourWords low = {bits(box.left) + kDown, bits(box.top) + kDown, bits(box.left) + kDown,
                         bits(box.top) + kDown};
  const std::uint32_t width = bits(box.right) - bits(box.left) - kDown;
  const std::uint32_t height = bits(box.bottom) - bits(box.top) - kDown;
  const auto span = reinterpret_cast<FourInts>(FourWords{width, height, width, height});
  const auto outside = [&](const tagPOINT* two) {
    FourWords v;
    std::memcpy(&v, two, sizeof v);
    return reinterpret_cast<FourInts>(v - low) > span;
  };
  FourInts out{}, out2{};
  std::size_t k = 0;
  for (; count - k >= 4; k += 4) {
    out |= outside(points + k);
    out2 |= outside(points + k + 2);
  }
  for (; k < count; ++k) {
    const tagPOINT twice[] = {points[k], points[k]};
    out |= outside(twice);
  }
  return !AnyOf(out | out2);
}

/// A coordinate that is not a number counts as inside.
inline bool Holds(const BoundsT<double>& box, const DPoint* points, std::size_t count) noexcept {
  const TwoDoubles low{box.minx, box.miny}, high{box.maxx, box.maxy};
  FourInts out{}, out2{};  // as integers: of flags that add up, g++ 12 makes a branch each
  const auto outside = [&](const DPoint& p) {
    const TwoDoubles v{p.x, p.y};
    return reinterpret_cast<FourInts>(v < low) | reinterpret_cast<FourInts>(v > high);
  };
  std::size_t k = 0;
  for (; count - k >= 2; k += 2) {
    out |= outside(points[k]);
    out2 |= outside(points[k + 1]);
  }
  if (k < count) out |= outside(points[k]);
  return !AnyOf(out | out2);
}

}  // namespace TavMath
