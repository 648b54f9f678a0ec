#include <cmath>

#include "lumo/offset_corners.h"
#include "offset/corners/corner_geometry.h"
#include "offset/tolerances.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo {

using namespace Offset;

OffsetCorner::~OffsetCorner() = default;
NoCorner::~NoCorner() = default;
CornerBase::~CornerBase() = default;

void NoCorner::CreateCorner(std::vector<DPoint>&, std::vector<NODETYPE>&, int, int, const DPoint*,
                            const NODETYPE*, double, double) const {}
bool NoCorner::IsPointWithinCorner(const DPoint&, int, int, const DPoint*, const NODETYPE*, double) const {
  return false;
}

namespace {

/// Directions, offset normals and offset ends at a corner.
struct Frame {
  DVector d1, d2, N1, N2;
  DPoint P, A, B;
  double cross;

  Frame(const CornerSource& source, double offset) {
    P = source.points[source.right];
    d1 = TavMath::Normalized(source.Arrival());
    d2 = TavMath::Normalized(source.Departure());
    N1 = offset * LeftNormal(d1);
    N2 = offset * LeftNormal(d2);
    A = P + N1;
    B = P + N2;
    cross = Cross(d1, d2);
  }
};

/// Nearly parallel directions: the curvatures tell whether the two sides part (build), or run on in one
/// another (build too: a reversal is a cap, a smooth run has no gap and never gets here).
bool BuildsAtParallel(const CornerSource& source) {
  const double k1 =
      source.IsLeftBezier() ? TavMath::CubicBezier::SafeBezierCurvature(1.0, source.LeftBezier()) : 0.0;
  const double k2 =
      source.IsRightBezier() ? TavMath::CubicBezier::SafeBezierCurvature(0.0, source.RightBezier()) : 0.0;
  return k2 >= -k1 || std::abs(k1 + k2) < kCurvatureMatch;
}

}  // namespace

void CornerBase::CreateCorner(std::vector<DPoint>& outPoints, std::vector<NODETYPE>& outNodes, int left,
                              int right, const DPoint* points, const NODETYPE* nodes, double offset,
                              double joinTolerance) const {
  if (points == nullptr || nodes == nullptr) return;
  points_ = points;
  nodes_ = nodes;
  left_ = left;
  right_ = right;
  const CornerSource source{points, nodes, left, right};
  const Frame f(source, offset);
  const double toleranceSqrd = joinTolerance * joinTolerance;
  if (LengthSqrd(f.N1 - f.N2) < toleranceSqrd) {
    if (!outPoints.empty() && DistanceSqrd(outPoints.back(), f.A) < toleranceSqrd)
      outPoints.back() = TavMath::Midpoint(f.A, f.B);
    return;
  }
  if (std::abs(f.cross) >= kParallelSine ? f.cross >= 0 : !BuildsAtParallel(source)) return;
  BuildCorner(outPoints, outNodes, f.d1, f.d2, f.N1, f.N2, f.P, f.A, f.B, offset, toleranceSqrd);
}

bool CornerBase::IsPointWithinCorner(const DPoint& q, int left, int right, const DPoint* points,
                                     const NODETYPE* nodes, double offset) const {
  if (points == nullptr || nodes == nullptr) return false;
  points_ = points;
  nodes_ = nodes;
  left_ = left;
  right_ = right;
  const Frame f({points, nodes, left, right}, offset);
  // A cap turns back exactly (cross is 0): it counts as having no region.
  if (!(DistanceSqrd(f.A, f.B) > 0) || !(f.cross < 0)) return false;
  return IsPointInCorner(q, f.d1, f.d2, f.N1, f.N2, f.P, f.A, f.B, offset);
}

bool CornerBase::IsLeftABezier() const noexcept { return nodes_ != nullptr && nodes_[left_ + 1].IsCurve(); }
bool CornerBase::IsRightABezier() const noexcept {
  // The control point is asked for first: only then are there three more nodes.
  return nodes_ != nullptr && nodes_[right_ + 1].IsControl() && nodes_[right_ + 3].IsCurve();
}
const DPoint* CornerBase::GetLeftBezier() const noexcept {
  return IsLeftABezier() ? points_ + (left_ - 2) : nullptr;
}
const DPoint* CornerBase::GetRightBezier() const noexcept {
  return IsRightABezier() ? points_ + right_ : nullptr;
}

}  // namespace Lumo
