// CurveSegmentT::DoesIntersectWith: the pair steps without a table.

#include "intersect/segment_pair.h"
#include "intersect/tolerances.h"
#include "lumo/curve_segment.h"
#include "math/point_traits.h"

namespace Lumo {
namespace {

/// The segment's points in doubles; a move has none.
template <class T>
bool Load(const CurveSegmentT<T>& segment, DPoint points[4], PairSegment& out) {
  const std::size_t count = segment.points().size();
  if (count != 2 && count != 4) return false;
  for (std::size_t k = 0; k < count; ++k) points[k] = ToDouble(segment.points()[k]);
  out = {points, count == 4};
  return true;
}

}  // namespace

template <class T>
bool CurveSegmentT<T>::DoesIntersectWith(const CurveSegmentT& other, bool countTouches) const noexcept {
  DPoint own[4], others[4];
  PairSegment a, b;
  if (!Load(*this, own, a) || !Load(other, others, b)) return false;
  const double tolerance = IntersectTolerances::kCommonPoint;
  TavMath::BoundsT<double> box = a.Box();
  box.Inflate(2 * tolerance, 2 * tolerance);
  if (!box.Overlaps(b.Box())) return false;
  PairContacts found;
  const bool swap = a.isCurve && !b.isCurve;
  IntersectPair(swap ? b : a, swap ? a : b, Adjacency::none,
                SegmentIntersectionSettings(tolerance, tolerance), found);
  if (countTouches) return found.count > 0;
  for (int k = 0; k < found.count; ++k) {
    if (!found.at[k].touch) return true;
  }
  return false;
}

}  // namespace Lumo

LUMO_CURVE_SEGMENT_INTERSECT(LUMO_INSTANTIATE, tagPOINT)
LUMO_CURVE_SEGMENT_INTERSECT(LUMO_INSTANTIATE, TavMath::DPoint)
