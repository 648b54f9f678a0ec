#pragma once
// Segments against y-up rectangles.

#include <algorithm>

#include "core/closest.h"
#include "lumo/point_types.h"

namespace Lumo::Interactive {

/// Whether the segment a-b touches the rectangle: its box does, and not all four corners lie strictly on one
/// side of its line. Exact for integer points.
template <class T>
bool SegmentTouchesRect(const T& a, const T& b, const tagRECT& rect) noexcept {
  const auto left = static_cast<decltype(T::x)>(rect.left), right = static_cast<decltype(T::x)>(rect.right);
  const auto top = static_cast<decltype(T::x)>(rect.top), bottom = static_cast<decltype(T::x)>(rect.bottom);
  if (left > std::max(a.x, b.x) || right < std::min(a.x, b.x)) return false;
  if (top < std::min(a.y, b.y) || bottom > std::max(a.y, b.y)) return false;
  const double corner = LineCross(a, b, T{left, bottom});
  return corner * LineCross(a, b, T{left, top}) <= 0 || corner * LineCross(a, b, T{right, bottom}) <= 0 ||
         corner * LineCross(a, b, T{right, top}) <= 0;
}

/// Whether the box of four control points has a point in common with the rectangle.
inline bool HullTouchesRect(const tagPOINT* p, const tagRECT& rect) noexcept {
  const auto [minX, maxX] = std::minmax({p[0].x, p[1].x, p[2].x, p[3].x});
  const auto [minY, maxY] = std::minmax({p[0].y, p[1].y, p[2].y, p[3].y});
  return std::max(minX, rect.left) <= std::min(maxX, rect.right) &&
         std::max(minY, rect.bottom) <= std::min(maxY, rect.top);
}

/// Whether any of the n pieces of a polyline touches the rectangle.
inline bool PiecesTouchRect(const DPoint* polyline, int n, const tagRECT& rect) noexcept {
  for (int k = 0; k < n; ++k)
    if (SegmentTouchesRect(polyline[k], polyline[k + 1], rect)) return true;
  return false;
}

}  // namespace Lumo::Interactive
