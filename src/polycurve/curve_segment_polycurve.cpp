// The members of a segment view that know the path class.

#include <algorithm>

#include "lumo/crv_navigation.h"
#include "lumo/curve_segment.h"
#include "lumo/polycurve.h"

namespace Lumo {

template <class T>
CurveSegmentT<T>::CurveSegmentT(const PolycurveT<T>& polycurve, std::size_t number) noexcept
    : CurveSegmentT(polycurve.GetNodeTypes(), polycurve.GetPoints(), number, polycurve.GetPointCount()) {}

template <class T>
std::optional<CurveSegmentT<T>> CurveSegmentT<T>::FromNumber(const PolycurveT<T>& polycurve,
                                                             std::size_t number) noexcept {
  const CurveSegmentT segment(polycurve, number);
  return segment ? std::optional(segment) : std::nullopt;
}

template <class T>
std::optional<CurveSegmentT<T>> CurveSegmentT<T>::FromEndIdx(const PolycurveT<T>& polycurve,
                                                             std::size_t end) noexcept {
  if (end >= polycurve.GetPointCount()) return std::nullopt;
  const NODETYPE type = polycurve.GetNodeType(end);
  if (!type.IsControl() && !type.IsCurve()) return FromNumber(polycurve, end);
  if (type.IsControl() || end < 2 || !polycurve.GetNodeType(end - 2).IsControl()) return std::nullopt;
  return FromNumber(polycurve, end - 2);
}

template <class T>
std::optional<CurveSegmentT<T>> CurveSegmentT<T>::FromStartIdx(const PolycurveT<T>& polycurve,
                                                               std::size_t start) noexcept {
  if (start >= polycurve.GetPointCount()) return std::nullopt;  // also keeps start + 1 from wrapping
  return FromNumber(polycurve, start + 1);
}

namespace {

/// Whether the last subpath's move node carries the closed flag.
template <class T>
bool LastSubpathStartsClosed(const PolycurveT<T>& polycurve) {
  const auto count = static_cast<int>(polycurve.GetPointCount());
  return CRV_IsThisSubpathClosed(polycurve.GetNodeTypes(), count, count - 1) != 0;
}

}  // namespace

template <class T>
bool CurveSegmentT<T>::AppendTo(PolycurveT<T>& polycurve, bool join) const noexcept {
  const std::size_t size = nodes_.size();
  if (type() == CurveSegmentType::none || points_.size() != size) return true;
  T points[4];  // copies: the segment may look into the very path that grows
  NODETYPE types[4];
  std::copy(points_.begin(), points_.end(), points);
  std::copy(nodes_.begin(), nodes_.end(), types);
  if (type() == CurveSegmentType::move) return polycurve.PushBack(points, types, 1);

  const std::size_t count = polycurve.GetPointCount();
  const bool joins = join && count > 0 && polycurve.GetPoint(count - 1) == points[0];
  types[0] = NODETYPE::kMove | NODETYPE::kUser;
  // The end of a closed subpath stays one only where the subpath it lands in began as closed, so that
  // appending all segments of a path in turn gives that path back.
  NODETYPE& end = types[size - 1];
  if (end.IsClosed() && !(joins && LastSubpathStartsClosed(polycurve))) {
    end.Set(NODETYPE::kClosed, false);
    end.Set(NODETYPE::kUser, true);
  }
  const std::size_t first = joins ? 1 : 0;
  return polycurve.PushBack(points + first, types + first, size - first);
}

template <class T>
bool ValidSegments(const PolycurveT<T>& polycurve) noexcept {
  return ValidSegments(polycurve.GetNodeTypes(), polycurve.GetPointCount());
}

}  // namespace Lumo

LUMO_CURVE_SEGMENT_POLYCURVE(LUMO_INSTANTIATE, tagPOINT)
LUMO_CURVE_SEGMENT_POLYCURVE(LUMO_INSTANTIATE, TavMath::DPoint)
