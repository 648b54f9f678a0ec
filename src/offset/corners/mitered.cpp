#include <algorithm>
#include <cmath>

#include "lumo/offset_corners.h"
#include "offset/corners/corner_geometry.h"
#include "offset/tolerances.h"

namespace Lumo {

using namespace TavMath;

MiteredCorner::MiteredCorner(double miterLimitDegrees, OffsetCorner* fallback)
    : angle_(miterLimitDegrees < Offset::kLeastMiterAngle      ? Offset::kLeastMiterAngle
             : miterLimitDegrees > Offset::kGreatestMiterAngle ? Offset::kGreatestMiterAngle
                                                               : miterLimitDegrees),
      fallback_(fallback != nullptr ? fallback : new Bevel),
      // Of the argument, not of the stored angle: 0 degrees means that nothing is too sharp.
      cosine_(std::cos(miterLimitDegrees * Offset::kMiterDegree)) {}

MiteredCorner::~MiteredCorner() { delete fallback_; }

bool MiteredCorner::IsTooSharp(int left, int right, const DPoint* points,
                               const NODETYPE* nodes) const noexcept {
  if (fallback_ == nullptr || points == nullptr || nodes == nullptr) return false;
  const Offset::CornerSource source{points, nodes, left, right};
  const DVector d1 = source.Arrival(), d2 = source.Departure();
  const double product = LengthSqrd(d1) * LengthSqrd(d2);
  // Rounding must not push an exact reversal above a limit cosine of 1.
  const double cosine = product == 0 ? 0.0 : std::clamp(Dot(d1, -d2) / std::sqrt(product), -1.0, 1.0);
  return cosine > cosine_;
}

void MiteredCorner::CreateCorner(std::vector<DPoint>& outPoints, std::vector<NODETYPE>& outNodes, int left,
                                 int right, const DPoint* points, const NODETYPE* nodes, double offset,
                                 double joinTolerance) const {
  if (IsTooSharp(left, right, points, nodes))
    fallback_->CreateCorner(outPoints, outNodes, left, right, points, nodes, offset, joinTolerance);
  else
    Ray().CreateCorner(outPoints, outNodes, left, right, points, nodes, offset, joinTolerance);
}

bool MiteredCorner::IsPointWithinCorner(const DPoint& q, int left, int right, const DPoint* points,
                                        const NODETYPE* nodes, double offset) const {
  return IsTooSharp(left, right, points, nodes)
             ? fallback_->IsPointWithinCorner(q, left, right, points, nodes, offset)
             : Ray().IsPointWithinCorner(q, left, right, points, nodes, offset);
}

}  // namespace Lumo
