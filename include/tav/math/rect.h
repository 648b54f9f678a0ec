#pragma once
#include <cstddef>
#include <cstdint>

#include "lumo/point_types.h"

// Integer rectangles here have top as the lesser y ("class form") unless stated; the in-place C-style layer
// uses y-up rectangles (top is the greater y) and swaps at its own edge.

namespace TavMath {

/// The box of all points: left, top, right, bottom are the least x, least y, greatest x, greatest y. An
/// all-zero rectangle for a null array or a count of 0.
LUMO_API tagRECT GetPointsBBox(const tagPOINT* points, std::size_t count) noexcept;
/// The same in doubles; an empty box for a null array or a count of 0. Coordinates that are NaN are ignored.
LUMO_API BoundsT<double> GetPointsBBox(const DPoint* points, std::size_t count) noexcept;

/// Moves every edge outwards by dx and dy (inwards when negative), saturating at the 32-bit range.
LUMO_API void InflateRect(tagRECT& rect, int dx, int dy) noexcept;
/// The common part of two rectangles; may be empty (left > right or top > bottom).
LUMO_API tagRECT IntersectRect(const tagRECT& a, const tagRECT& b) noexcept;
/// The smallest rectangle that holds both.
LUMO_API tagRECT UnionRect(const tagRECT& a, const tagRECT& b) noexcept;
/// Edges count as inside. Right for both orientations: y is compared with the lesser and greater of top and
/// bottom.
LUMO_API bool IsPointInRect(const tagRECT& rect, const tagPOINT& p) noexcept;
/// Edges count as inside.
LUMO_API bool IsPointInRect(const BoundsT<double>& box, const DPoint& p) noexcept;

/// Half away from zero through a 32-bit integer: outside its range the result saturates, NaN gives 0.
LUMO_API std::int32_t RoundToInt(double value) noexcept;
/// Both coordinates.
inline tagPOINT RoundPoint(const DPoint& p) noexcept { return {RoundToInt(p.x), RoundToInt(p.y)}; }
/// A box of doubles rounded coordinate by coordinate, and a rectangle as a box of doubles.
inline tagRECT RoundBox(const BoundsT<double>& box) noexcept {
  return {RoundToInt(box.minx), RoundToInt(box.miny), RoundToInt(box.maxx), RoundToInt(box.maxy)};
}
inline BoundsT<double> ToBox(const tagRECT& rect) noexcept {
  return {static_cast<double>(rect.left), static_cast<double>(rect.top), static_cast<double>(rect.right),
          static_cast<double>(rect.bottom)};
}
/// Towards zero, with the same saturation.
LUMO_API std::int32_t TruncateToInt(double value) noexcept;

}  // namespace TavMath
