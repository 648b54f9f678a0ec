#include "lumo/curve_segment.h"

#include <algorithm>

#include "core/closest.h"
#include "core/count_bytes.h"
#include "core/segment_walk.h"
#include "math/point_traits.h"

namespace Lumo {

namespace {

/// How many nodes the segment with this number has from its start node on; 0 when there is no such segment.
std::size_t SegmentSize(const NODETYPE* types, std::size_t number, std::optional<std::size_t> count) {
  if (types == nullptr || (count && number >= *count)) return 0;
  const NODETYPE type = types[number];
  if (type.IsMove()) return 1;
  if (number == 0) return 0;
  if (type.IsLine()) return 2;
  return StartsCurve(types, count.value_or(SIZE_MAX), number) ? 4 : 0;
}

}  // namespace

template <class T>
CurveSegmentT<T>::CurveSegmentT(const NODETYPE* types, const T* points, std::size_t number,
                                std::optional<std::size_t> count) noexcept
    : number_(number), count_(count) {
  const std::size_t size = points == nullptr ? 0 : SegmentSize(types, number, count);
  if (size == 0) return;
  const std::size_t start = size == 1 ? number : number - 1;
  nodes_ = {types + start, size};
  points_ = {points + start, size};
}

template <class T>
std::size_t CurveSegmentT<T>::prev_number() const noexcept {
  if (nodes_.empty()) return number_;
  if (number_ == 0) return 0;
  const NODETYPE before = types()[number_ - 1];
  if (before.IsControl()) return 0;
  if (!before.IsCurve()) return number_ - 1;
  return number_ < 3 ? 0 : number_ - 3;
}

template <class T>
CurveSegmentT<T> CurveSegmentT<T>::next() const noexcept {
  return nodes_.empty() ? CurveSegmentT() : CurveSegmentT(types(), path_points(), next_number(), count_);
}

template <class T>
CurveSegmentT<T> CurveSegmentT<T>::prev() const noexcept {
  if (nodes_.empty() || number_ == 0) return {};
  return CurveSegmentT(types(), path_points(), prev_number(), count_);
}

template <class T>
BoxT<T> CurveSegmentT<T>::GetPointsBBox() const noexcept {
  return TavMath::GetPointsBBox(points_.data(), points_.size());
}

template <class T>
bool CurveSegmentT<T>::FindClosestPoint(const T& query,
                                        ClosestPoint<T, SegmentPosition>& result) const noexcept {
  if (type() == CurveSegmentType::none || points_.size() != nodes_.size()) return false;
  if (type() == CurveSegmentType::move) {
    result = {points_[0], {0}, TavMath::DistanceSqrd(ToDouble(points_[0]), ToDouble(query))};
    return true;
  }
  Nearest<T> nearest(query);
  if (type() == CurveSegmentType::line) {
    nearest.TryLine(points_[0], points_[1]);
  } else {
    nearest.TryCubic(points_.data());
  }
  if (!nearest.Found()) return false;
  result = {FromDouble<T>(nearest.point), {nearest.t}, nearest.distanceSqrd};
  return true;
}

template <class T>
bool CurveSegmentT<T>::IsPointOnCurve(const T& query, double tolerance) const noexcept {
  ClosestPoint<T, SegmentPosition> nearest;
  return FindClosestPoint(query, nearest) && tolerance * tolerance >= nearest.distanceSqrd;
}

namespace {

/// Whether a node cannot stand where it does: a curve node without two control points before it, two control
/// points without a curve node after them, or a control point without another one beside it. A path whose
/// first node is a move node and that has no such node is a sequence of whole segments. Branch-free.
unsigned char IsMisplaced(unsigned char before2, unsigned char before, unsigned char here,
                          unsigned char after) noexcept {
  const bool pair = (before2 >= NODETYPE::kControl) & (before >= NODETYPE::kControl);
  const bool curve = (here & NODETYPE::kKindMask) == NODETYPE::kCurve;
  const bool alone =
      (here >= NODETYPE::kControl) & (before < NODETYPE::kControl) & (after < NODETYPE::kControl);
  return (curve != pair) | alone;
}

}  // namespace

bool ValidSegments(const NODETYPE* types, std::size_t count) noexcept {
  if (count == 0) return true;
  if (types == nullptr || !types[0].IsMove()) return false;
  // The window of four bytes about node k; outside the array, move nodes.
  const auto misplaced = [types, count](std::size_t k) {
    const auto at = [types, count](std::size_t i) { return i < count ? types[i].value : NODETYPE::kMove; };
    return IsMisplaced(k >= 2 ? at(k - 2) : NODETYPE::kMove, at(k - 1), at(k), at(k + 1)) != 0;
  };
  constexpr std::size_t kBlock = 4096;  // a search as fast as counting, which stops early
  std::size_t k = 1;
  if (misplaced(k++)) return false;
  while (k + 1 < count) {
    const std::size_t nodes = (std::min)(count - 1 - k, kBlock);
    const NODETYPE* const t = types + k;
    if (CountIndices(nodes, [t](std::size_t i) {
          return IsMisplaced((t + i)[-2].value, (t + i)[-1].value, t[i].value, t[i + 1].value);
        }) != 0) {
      return false;
    }
    k += nodes;
  }
  for (; k <= count; ++k) {  // with what the end cuts short
    if (misplaced(k)) return false;
  }
  return true;
}

}  // namespace Lumo

LUMO_CURVE_SEGMENT(LUMO_INSTANTIATE, tagPOINT)
LUMO_CURVE_SEGMENT(LUMO_INSTANTIATE, TavMath::DPoint)
