#include <algorithm>
#include <bit>
#include <cstdint>

#include "core/height_masks.h"
#include "core/outline_ray.h"
#include "core/segment_walk.h"
#include "lumo/measure.h"
#include "lumo/polycurve.h"
#include "polycurve/tolerances.h"
#include "tav/math/rect.h"

namespace Lumo {
namespace {

template <class T>
bool IsOnVertex(const T& vertex, const T& point) {
  return TavMath::DistanceSqrd(ToDouble(vertex), ToDouble(point)) <= kVertexHitSqrd;
}

bool IsNearBox(const tagPOINT* points, int count, const tagPOINT& point) {
  tagRECT box = TavMath::GetPointsBBox(points, static_cast<std::size_t>(count));
  TavMath::InflateRect(box, 1, 1);
  return TavMath::IsPointInRect(box, point);
}
bool IsNearBox(const DPoint* points, int count, const DPoint& point) {
  auto box = TavMath::GetPointsBBox(points, static_cast<std::size_t>(count));
  box.Inflate(1, 1);
  return TavMath::IsPointInRect(box, point);
}

/// Whether a vertex makes the point inside at once. A vertex just out of reach of the grown box does not.
template <class T>
bool HitsVertex(const T* points, const NODETYPE* types, int count, const T& point) {
  if (!IsNearBox(points, count, point)) return false;
  for (int i = 0; i < count; ++i) {
    if (types[i].IsOnCurve() && IsOnVertex(points[i], point)) return true;
  }
  return false;
}

/// Feeds the outlines of a path to a ray, each subpath closed by a straight line where its ends differ.
template <class T>
class ShapeScan {
 public:
  ShapeScan(const T* points, const NODETYPE* types, int count, const T& point, OutlineRay<T>& ray)
      : points_(points), types_(types), count_(count), point_(point), ray_(ray) {}

  void Run() {
    // Of the node before the step: the low bits of below and above. The first node of all ends no segment and
    // starts the first subpath, whatever it is: nothing to visit.
    std::uint64_t carried = 0;
    for (int first = 0; first < count_ && !ray_.IsOnOutline(); first += kMaskNodes) {
      const int step = std::min(count_ - first, kMaskNodes);
      const HeightMasks at = CompareHeights(points_ + first, step, point_.y);
      const std::uint64_t below = at.below << 1 | (carried & 1), above = at.above << 1 | carried >> 1;
      // Two neighbours of the control polygon both below, or both above, do not reach the height.
      std::uint64_t reaching = ~(at.below & below) & ~(at.above & above);
      if (step < kMaskNodes) reaching &= (std::uint64_t{1} << step) - 1;
      carried = at.below >> 63 | (at.above >> 63) << 1;
      reaching |= MoveMask(types_ + first, step);
      if (first == 0) reaching &= ~std::uint64_t{1};
      for (; reaching != 0; reaching &= reaching - 1) Visit(first + std::countr_zero(reaching));
      if (count_ - first <= kMaskNodes) break;  // and first never overflows
    }
    CloseSubpath(count_);
  }

 private:
  /// A move node, or a node whose step from the one before it reaches the height; not the first node.
  void Visit(int i) {
    if (i < done_) return;
    const NODETYPE type = types_[i];
    if (type.IsMove()) {
      CloseSubpath(i);
      start_ = i;
    } else if (type.IsLine()) {
      ray_.AddLine(points_[i - 1], points_[i]);
    } else {
      const int control = type.IsCurve() ? i - 2 : StartsCurve(types_, count_, i) ? i : i - 1;
      if (!StartsCurve(types_, count_, control)) return;
      ray_.AddCubic(points_ + control - 1);
      done_ = control + 3;
    }
  }

  /// The subpath that ends before node `end`. (A subpath of one node gives a line from a point to itself: no
  /// area.)
  void CloseSubpath(int end) {
    if (end > start_ + 1 && points_[end - 1] != points_[start_])
      ray_.AddLine(points_[end - 1], points_[start_]);
  }

  const T* points_;
  const NODETYPE* types_;
  int count_;
  T point_;
  OutlineRay<T>& ray_;
  int start_ = 0;  // of the current subpath
  int done_ = 0;   // nodes before this one belong to a cubic that the ray has
};

}  // namespace

template <class T>
bool IsPointInPolygon(const T* points, int count, const T& point, bool surrounded, bool hitVertices,
                      bool* onVertex) noexcept {
  if (onVertex) *onVertex = false;
  if (!points || count < 1) return false;
  int oneSide = 0, otherSide = 0;
  const T* previous = points + count - 1;
  for (const T* current = points; current != points + count; previous = current++) {
    if (hitVertices && IsOnVertex(*current, point)) {
      if (onVertex) *onVertex = true;
      return true;
    }
    const bool risesToCurrent = previous->y < current->y;
    const T& low = risesToCurrent ? *previous : *current;
    const T& high = risesToCurrent ? *current : *previous;
    // Strictly above the lower end: a point level with a horizontal edge is not counted by it.
    if (!(low.y < point.y && point.y <= high.y)) continue;
    ++(LineCross(low, high, point) > 0 ? oneSide : otherSide);
  }
  if (surrounded) return oneSide >= 1 && otherSide >= 1;
  return oneSide % 2 == 1 && otherSide % 2 == 1;
}

template <class T>
bool IsPointInShape(const T* points, const NODETYPE* types, int count, const T& point, bool surrounded,
                    bool hitVertices) noexcept {
  if (!points || !types || count < 1) return false;
  if (hitVertices && HitsVertex(points, types, count, point)) return true;
  OutlineRay<T> ray(point, surrounded);
  ShapeScan<T>(points, types, count, point, ray).Run();
  return surrounded ? ray.IsSurrounded() : ray.IsInside();
}

template <class T>
bool PolycurveT<T>::IsPointInShape(const T& point, bool surrounded, bool hitVertices) const noexcept {
  return Lumo::IsPointInShape(GetPoints(), GetNodeTypes(), IntCount(), point, surrounded, hitVertices);
}

LUMO_FILL(LUMO_INSTANTIATE, tagPOINT)
LUMO_FILL(LUMO_INSTANTIATE, TavMath::DPoint)
LUMO_INSTANTIATE bool PolycurveT<tagPOINT>::IsPointInShape(const tagPOINT&, bool, bool) const noexcept;
LUMO_INSTANTIATE bool PolycurveT<DPoint>::IsPointInShape(const DPoint&, bool, bool) const noexcept;

}  // namespace Lumo
