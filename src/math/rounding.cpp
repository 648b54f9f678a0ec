#include <cmath>
#include <cstdint>
#include <limits>

#include "tav/math/rect.h"

namespace TavMath {
namespace {
constexpr double kLow = std::numeric_limits<std::int32_t>::min();
constexpr double kHigh = std::numeric_limits<std::int32_t>::max();
}  // namespace

std::int32_t TruncateToInt(double value) noexcept {
  if (!(value > kLow)) return value <= kLow ? std::numeric_limits<std::int32_t>::min() : 0;  // NaN: 0
  if (value >= kHigh) return std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(value);
}

std::int32_t RoundToInt(double value) noexcept {
  return TruncateToInt(value < 0 ? value - 0.5 : value + 0.5);
}

}  // namespace TavMath
