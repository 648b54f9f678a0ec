#include "lumo/segment_list.h"

#include <algorithm>

#include "core/segment_reader.h"
#include "math/point_traits.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo {

void CSegment::SetControl(int index, const DPoint& p) noexcept {
  if (!IsLine() && (index == 1 || index == 2)) points_[static_cast<std::size_t>(index)] = p;
}

DPoint CSegment::PointAt(double t) const noexcept {
  return IsLine() ? TavMath::Lerp(points_[0], points_[1], t)
                  : TavMath::CubicBezier::Evaluate(points_.data(), t);
}

DVector CSegment::TangentAt(double t) const noexcept {
  return IsLine() ? points_[1] - points_[0] : TavMath::CubicBezier::SafeBezierTangent(t, points_.data());
}

double CSegment::Length() const noexcept {
  return IsLine() ? TavMath::Distance(points_[0], points_[1]) : TavMath::CubicBezier::Length(points_.data());
}

TavMath::BoundsT<double> CSegment::ControlBox() const noexcept {
  TavMath::BoundsT<double> box;
  for (int k = 0; k < PointCount(); ++k) box.Add(Points()[k].x, Points()[k].y);
  return box;
}

CLineSegment::CLineSegment(const DPoint& start, const DPoint& end, LineExtent extent) noexcept {
  extent_ = extent;
  points_[0] = start;
  points_[1] = end;
}

CBezierSegment::CBezierSegment(const DPoint bezier[4]) noexcept {
  kind_ = kCurve;
  types_[2] = NODETYPE(0x84);
  std::copy(bezier, bezier + 4, points_.begin());
}

CSegmentList::CSegmentList(const DPoint* points, const NODETYPE* types, int count) {
  Read(points, types, count);
}
CSegmentList::CSegmentList(const tagPOINT* points, const NODETYPE* types, int count) {
  Read(points, types, count);
}

template <class T>
void CSegmentList::Read(const T* points, const NODETYPE* types, int count) {
  if (!points || !types) return;
  ReadSegments(
      points, types, count, [&](int i) { AppendMove(ToDouble(points[i]), types[i]); },
      [&](const CSegment& segment) { segments_.push_back(segment); });
}

void CSegmentList::AppendMove(const DPoint& start, NODETYPE type) {
  type.SetKind(NODETYPE::kMove);
  subpaths_.push_back({start, type, segments_.size()});
}

void CSegmentList::Append(const CSegment& segment) {
  if (subpaths_.empty()) AppendMove(segment.StartPoint(), NODETYPE(0x04));
  segments_.push_back(segment);
}

void CSegmentList::AppendTo(std::vector<DPoint>& points, std::vector<NODETYPE>& types) const {
  for (std::size_t k = 0; k < subpaths_.size(); ++k) {
    points.push_back(subpaths_[k].start);
    types.push_back(subpaths_[k].startType);
    for (std::size_t s = subpaths_[k].firstSegment; s < SubpathEnd(k); ++s) {
      const CSegment& segment = segments_[s];
      for (int c = 1; c + 1 < segment.PointCount(); ++c) {
        points.push_back(segment.Points()[c]);
        types.push_back(segment.ControlType(c));
      }
      points.push_back(segment.EndPoint());
      types.push_back(segment.EndType());
    }
  }
}

}  // namespace Lumo
