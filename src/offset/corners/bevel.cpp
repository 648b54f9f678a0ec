#include "lumo/offset_corners.h"
#include "offset/corners/corner_geometry.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo {

using namespace TavMath;

namespace {

/// Whether the offset of a Bezier folds back at an end with this signed radius of curvature: it bends towards
/// the offset side more tightly than the distance.
bool FoldsBack(double radius, double offset) { return radius > 0 && radius < offset; }

/// The offset normal where the offset of the arriving (or leaving) Bezier folds back: at the inner end of the
/// piece that reaches the corner.
bool FoldNormal(const DPoint* bezier, bool arriving, double offset, DVector& normal) {
  std::vector<Cubic> pieces;
  GetSegmentsToOffset(bezier, pieces, offset);
  if (pieces.empty()) return false;
  const Cubic& piece = arriving ? pieces.back() : pieces.front();
  normal =
      offset * LeftNormal(Normalized(CubicBezier::SafeBezierTangent(arriving ? 0.0 : 1.0, piece.data())));
  return LengthSqrd(normal) > 0;
}

}  // namespace

Bevel::~Bevel() = default;

void Bevel::BuildCorner(std::vector<DPoint>& outPoints, std::vector<NODETYPE>& outNodes, const DVector&,
                        const DVector&, const DVector& N1, const DVector& N2, const DPoint& P,
                        const DPoint& A, const DPoint& B, double offset, double joinToleranceSqrd) const {
  const Offset::Output out{outPoints, outNodes};
  DPoint from = A, to = B;
  DVector fold;
  const DPoint* left = GetLeftBezier();
  if (left != nullptr && FoldsBack(CubicBezier::GetCurvatureRadiusAt(1.0, left), offset) &&
      FoldNormal(left, true, offset, fold)) {
    from = P + fold;
    Offset::AppendCornerArc(out, P, N1 + fold, A, from, offset, joinToleranceSqrd);
  }
  const DPoint* right = GetRightBezier();
  const bool foldsAfter = right != nullptr &&
                          FoldsBack(CubicBezier::GetCurvatureRadiusAt(0.0, right), offset) &&
                          FoldNormal(right, false, offset, fold);
  if (foldsAfter) to = P + fold;
  Offset::AppendOffsetLine(out, from, to, joinToleranceSqrd, false, true);
  if (foldsAfter) Offset::AppendCornerArc(out, P, fold + N2, to, B, offset, joinToleranceSqrd);
}

bool Bevel::IsPointInCorner(const DPoint& q, const DVector&, const DVector&, const DVector&, const DVector&,
                            const DPoint& P, const DPoint& A, const DPoint& B, double) const {
  return Offset::IsRightOfAll(q, {P, A, B});
}

}  // namespace Lumo
