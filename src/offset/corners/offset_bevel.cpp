#include "lumo/offset_corners.h"
#include "offset/corners/corner_geometry.h"

namespace Lumo {

using namespace TavMath;

OffsetBevel::~OffsetBevel() = default;

namespace {

/// Where the line through Q along w meets the line through S along d; false when they are parallel.
bool Meet(const DPoint& Q, const DVector& w, const DPoint& S, const DVector& d, DPoint& X) {
  const double denominator = w.x * d.y - w.y * d.x;
  if (denominator == 0) return false;
  X = S + (Cross(w, Q - S) / denominator) * d;
  return true;
}

}  // namespace

bool OffsetBevel::GetBevelLine(const DVector& d1, const DVector& d2, const DPoint& A, const DPoint& B,
                               const DPoint& P, double offset, DPoint& X1, DPoint& X2) const noexcept {
  DVector u = d1 - d2;
  if (!(LengthSqrd(u) > 0)) return false;
  u = Normalized(u);
  const DPoint Q = P + offset * u;
  const DVector w = {-offset * u.y, offset * u.x};
  return Meet(Q, w, A, d1, X1) && Meet(Q, w, B, d2, X2);
}

void OffsetBevel::BuildCorner(std::vector<DPoint>& outPoints, std::vector<NODETYPE>& outNodes,
                              const DVector& d1, const DVector& d2, const DVector&, const DVector&,
                              const DPoint& P, const DPoint& A, const DPoint& B, double offset,
                              double joinToleranceSqrd) const {
  DPoint X1, X2;
  if (!GetBevelLine(d1, d2, A, B, P, offset, X1, X2)) return;
  const Offset::Output out{outPoints, outNodes};
  Offset::AppendOffsetLine(out, A, X1, joinToleranceSqrd, false, true);
  Offset::AppendOffsetLine(out, X1, X2, joinToleranceSqrd, false, true);
  Offset::AppendOffsetLine(out, X2, B, joinToleranceSqrd, false, true);
}

bool OffsetBevel::IsPointInCorner(const DPoint& q, const DVector& d1, const DVector& d2, const DVector&,
                                  const DVector&, const DPoint& P, const DPoint& A, const DPoint& B,
                                  double offset) const {
  DPoint X1, X2;
  return GetBevelLine(d1, d2, A, B, P, offset, X1, X2) && Offset::IsRightOfAll(q, {P, A, X1, X2, B});
}

}  // namespace Lumo
