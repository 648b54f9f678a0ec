#include "lumo/offset_corners.h"
#include "offset/corners/corner_geometry.h"
#include "offset/tolerances.h"

namespace Lumo {

using namespace TavMath;

Ray::~Ray() = default;

bool Ray::GetCornerPoint(const DVector& d1, const DVector& d2, const DPoint& A, const DPoint& B,
                         DPoint& X) const noexcept {
  const double denominator = d1.x * d2.y - d1.y * d2.x;
  if (denominator == 0) return false;
  const double t = ((A.y - B.y) * d2.x - (A.x - B.x) * d2.y) / denominator;
  X = A + t * d1;
  return true;
}

namespace {

/// Nearly exact reversals would put the miter point anywhere up to the end of the number range.
bool IsInReach(const DPoint& X, const DPoint& P, double offset) {
  const double reach = Offset::kLongestMiter * offset;
  return DistanceSqrd(X, P) <= reach * reach;
}

}  // namespace

void Ray::BuildCorner(std::vector<DPoint>& outPoints, std::vector<NODETYPE>& outNodes, const DVector& d1,
                      const DVector& d2, const DVector&, const DVector&, const DPoint& P, const DPoint& A,
                      const DPoint& B, double offset, double joinToleranceSqrd) const {
  DPoint X;
  if (!GetCornerPoint(d1, d2, A, B, X) || !IsInReach(X, P, offset)) return;
  const Offset::Output out{outPoints, outNodes};
  Offset::AppendOffsetLine(out, A, X, joinToleranceSqrd, false, true);
  Offset::AppendOffsetLine(out, X, B, joinToleranceSqrd, false, true);
}

bool Ray::IsPointInCorner(const DPoint& q, const DVector& d1, const DVector& d2, const DVector&,
                          const DVector&, const DPoint& P, const DPoint& A, const DPoint& B,
                          double offset) const {
  DPoint X;
  return GetCornerPoint(d1, d2, A, B, X) && IsInReach(X, P, offset) && Offset::IsRightOfAll(q, {P, A, X, B});
}

}  // namespace Lumo
