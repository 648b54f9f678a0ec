#pragma once
#include "math/point_traits.h"

namespace Lumo {

/// a + (b - a) t. For integer points each coordinate of the offset is rounded half away from zero, then
/// added: so a line and its reversal may differ by a unit, and stored drawings rely on which.
inline DPoint Interpolate(const DPoint& a, const DPoint& b, double t) { return TavMath::Lerp(a, b, t); }
inline tagPOINT Interpolate(const tagPOINT& a, const tagPOINT& b, double t) {
  const auto coordinate = [t](double from, double to) {
    const double offset = (to - from) * t;
    return TavMath::TruncateToInt(from + std::trunc(offset < 0 ? offset - 0.5 : offset + 0.5));
  };
  return {coordinate(a.x, b.x), coordinate(a.y, b.y)};
}

}  // namespace Lumo
