#include "tav/math/rect.h"

#include <algorithm>
#include <limits>

#include "math/box_holds.h"
#include "math/simd.h"

namespace TavMath {
namespace {

/// Points that the box of an integer path takes at once.
constexpr std::size_t kBoxRun = 64;

std::int32_t SaturatedSum(std::int64_t a, std::int64_t b) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(a + b, (Limits::min)(), (Limits::max)()));
}

}  // namespace

tagRECT GetPointsBBox(const tagPOINT* points, std::size_t count) noexcept {
  if (points == nullptr || count == 0) return {0, 0, 0, 0};
  tagRECT box{points[0].x, points[0].y, points[0].x, points[0].y};
  for (std::size_t first = 1; first < count; first += kBoxRun) {
    const std::size_t run = (std::min)(kBoxRun, count - first);
    // Where its last point lies outside, the comparison would be made in vain.
    if (Holds(box, points + first + run - 1, 1) && Holds(box, points + first, run)) continue;
    for (std::size_t k = first; k < first + run; ++k) {
      box.left = (std::min)(box.left, points[k].x);
      box.top = (std::min)(box.top, points[k].y);
      box.right = (std::max)(box.right, points[k].x);
      box.bottom = (std::max)(box.bottom, points[k].y);
    }
  }
  return box;
}

BoundsT<double> GetPointsBBox(const DPoint* points, std::size_t count) noexcept {
  BoundsT<double> box;
  if (points == nullptr) return box;
  // Two points at a time, x and y side by side. A comparison with NaN is false and keeps the box.
  TwoDoubles low[2] = {Both(box.minx), Both(box.minx)}, high[2] = {Both(box.maxx), Both(box.maxx)};
  const auto add = [&](std::size_t lane, const DPoint& p) {
    const TwoDoubles v{p.x, p.y};
    low[lane] = v < low[lane] ? v : low[lane];
    high[lane] = v > high[lane] ? v : high[lane];
  };
  std::size_t k = 0;
  for (; k + 1 < count; k += 2) {
    add(0, points[k]);
    add(1, points[k + 1]);
  }
  if (k < count) add(0, points[k]);
  for (const std::size_t lane : {0u, 1u}) {
    box.minx = (std::min)(box.minx, low[lane][0]);
    box.miny = (std::min)(box.miny, low[lane][1]);
    box.maxx = (std::max)(box.maxx, high[lane][0]);
    box.maxy = (std::max)(box.maxy, high[lane][1]);
  }
  return box;
}

void InflateRect(tagRECT& rect, int dx, int dy) noexcept {
  rect.left = SaturatedSum(rect.left, -std::int64_t{dx});
  rect.top = SaturatedSum(rect.top, -std::int64_t{dy});
  rect.right = SaturatedSum(rect.right, dx);
  rect.bottom = SaturatedSum(rect.bottom, dy);
}

tagRECT IntersectRect(const tagRECT& a, const tagRECT& b) noexcept {
  return {(std::max)(a.left, b.left), (std::max)(a.top, b.top), (std::min)(a.right, b.right),
          (std::min)(a.bottom, b.bottom)};
}

tagRECT UnionRect(const tagRECT& a, const tagRECT& b) noexcept {
  return {(std::min)(a.left, b.left), (std::min)(a.top, b.top), (std::max)(a.right, b.right),
          (std::max)(a.bottom, b.bottom)};
}

bool IsPointInRect(const tagRECT& rect, const tagPOINT& p) noexcept {
  const auto [low, high] = std::minmax(rect.top, rect.bottom);
  return rect.left <= p.x && p.x <= rect.right && low <= p.y && p.y <= high;
}

bool IsPointInRect(const BoundsT<double>& box, const DPoint& p) noexcept { return box.Contains(p.x, p.y); }

}  // namespace TavMath
