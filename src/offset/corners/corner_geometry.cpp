#include "offset/corners/corner_geometry.h"

#include <algorithm>
#include <cmath>

#include "lumo/shapes.h"
#include "offset/tolerances.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo::Offset {

using namespace TavMath::CubicBezier;

DVector CornerSource::Arrival() const {
  if (!IsLeftBezier()) return points[left + 1] - points[left];
  const PowerForm k = ToPowerForm(LeftBezier());
  return SafeBezierTangent(1.0, k.k3, k.k2, k.k1, k.k0);
}

DVector CornerSource::Departure() const {
  if (!IsRightBezier()) return points[right + 1] - points[right];
  const PowerForm k = ToPowerForm(RightBezier());
  return SafeBezierTangent(0.0, k.k3, k.k2, k.k1, k.k0);
}

namespace {

void MergeLastPoint(const Output& out, const DPoint& A, const DPoint& B) {
  if (!out.points.empty()) out.points.back() = TavMath::Midpoint(A, B);
}

bool AppendArc(const Output& out, const DPoint& center, const DPoint& from, const DPoint& to,
               double toleranceSqrd) {
  DPoint handles[2];
  if (!GetArcSegmentHandles(handles, center, from, to)) return false;
  const DPoint cubic[4] = {from, handles[0], handles[1], to};
  AppendOffsetCubic(out, cubic, toleranceSqrd, false);
  return true;
}

}  // namespace

void AppendCornerArc(const Output& out, const DPoint& center, const DVector& h, const DPoint& A,
                     const DPoint& B, double radius, double toleranceSqrd) {
  const double product = LengthSqrd(B - center) * LengthSqrd(A - center);
  const double cosine =
      product > 0 ? std::clamp(Dot(B - center, A - center) / std::sqrt(product), -1.0, 1.0) : 0.0;
  if (cosine >= 1.0) return MergeLastPoint(out, A, B);
  if (!(cosine < kWideArcCosine)) {
    if (!AppendArc(out, center, A, B, toleranceSqrd)) MergeLastPoint(out, A, B);
    return;
  }
  const double lengthSqrd = LengthSqrd(h);
  // Without a direction to pass through, the middle point is a fixed one beside the centre.
  const DPoint middle = lengthSqrd <= TavMath::kNormalizeLimitSqrd
                            ? DPoint{center.x + radius, center.y + h.y}
                            : center + (radius / std::sqrt(lengthSqrd)) * h;
  DPoint handles[2];
  if (!GetArcSegmentHandles(handles, center, A, middle) || !GetArcSegmentHandles(handles, center, middle, B))
    return MergeLastPoint(out, A, B);
  AppendArc(out, center, A, middle, toleranceSqrd);
  AppendArc(out, center, middle, B, toleranceSqrd);
}

bool IsRightOfAll(const DPoint& q, std::initializer_list<DPoint> polygon) {
  const DPoint* from = polygon.end() - 1;
  for (const DPoint* to = polygon.begin(); to != polygon.end(); from = to++)
    if (!(Cross(*to - *from, q - *from) < 0)) return false;
  return true;
}

}  // namespace Lumo::Offset
