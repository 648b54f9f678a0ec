#include "lumo/offset_corners.h"
#include "offset/corners/corner_geometry.h"
#include "offset/tolerances.h"

namespace Lumo {

Round::~Round() = default;

void Round::BuildCorner(std::vector<TavMath::DPoint>& outPoints, std::vector<NODETYPE>& outNodes,
                        const TavMath::DVector& d1, const TavMath::DVector&, const TavMath::DVector& N1,
                        const TavMath::DVector& N2, const TavMath::DPoint& P, const TavMath::DPoint& A,
                        const TavMath::DPoint& B, double offset, double joinToleranceSqrd) const {
  TavMath::DVector h = N1 + N2;
  // At a reversal the normals cancel: the arc passes straight ahead.
  if (LengthSqrd(h) < Offset::kNoBisectorSqrd) h = d1;
  Offset::AppendCornerArc({outPoints, outNodes}, P, h, A, B, offset, joinToleranceSqrd);
}

bool Round::IsPointInCorner(const TavMath::DPoint& q, const TavMath::DVector&, const TavMath::DVector&,
                            const TavMath::DVector&, const TavMath::DVector&, const TavMath::DPoint& P,
                            const TavMath::DPoint&, const TavMath::DPoint&, double offset) const {
  return DistanceSqrd(q, P) < offset * offset;
}

}  // namespace Lumo
