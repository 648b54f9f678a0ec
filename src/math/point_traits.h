#pragma once
// The one place that knows how a computed point becomes a stored point of either type.

#include "lumo/point_types.h"
#include "tav/math/rect.h"

namespace Lumo {

using TavMath::DPoint;
using TavMath::DVector;

inline constexpr DPoint ToDouble(const tagPOINT& p) {
  return {static_cast<double>(p.x), static_cast<double>(p.y)};
}
inline constexpr const DPoint& ToDouble(const DPoint& p) { return p; }

/// Integer points: each coordinate rounded half away from zero, saturating. Double points: unchanged.
template <class T>
T FromDouble(const DPoint& p) noexcept;
template <>
inline tagPOINT FromDouble<tagPOINT>(const DPoint& p) noexcept {
  return TavMath::RoundPoint(p);
}
template <>
inline DPoint FromDouble<DPoint>(const DPoint& p) noexcept {
  return p;
}

/// The cubic whose first control point is points[0], in doubles.
template <class T>
inline void LoadCubic(const T* points, DPoint out[4]) {
  for (int k = 0; k < 4; ++k) out[k] = ToDouble(points[k]);
}

}  // namespace Lumo
