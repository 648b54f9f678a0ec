#pragma once
// One line or cubic of a path in doubles, addressed by the nodes at its ends.

#include "core/segment_walk.h"
#include "lumo/path_views.h"
#include "math/point_traits.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo {

struct PathSegment {
  int first = -1;
  int last = -1;
  DPoint p[4];

  bool IsLine() const noexcept { return last - first == 1; }
  const DPoint& End() const noexcept { return p[IsLine() ? 1 : 3]; }

  DPoint PointAt(double t) const noexcept {
    if (t == 1) return End();
    return IsLine() ? TavMath::Lerp(p[0], p[1], t) : TavMath::CubicBezier::Evaluate(p, t);
  }
  double Length() const noexcept {
    return IsLine() ? TavMath::Distance(p[0], p[1]) : TavMath::CubicBezier::Length(p);
  }
  double LengthTo(double t) const noexcept {
    return IsLine() ? t * Length() : TavMath::CubicBezier::LengthTo(p, t);
  }
  double LengthFrom(double t) const noexcept {
    return IsLine() ? (1 - t) * Length() : TavMath::CubicBezier::LengthFrom(p, t);
  }
  /// The parameter at a fraction of the length.
  double ParameterAt(double fraction) const noexcept {
    return IsLine() ? fraction : TavMath::CubicBezier::GetCurveRelativeLengthParameter(p, fraction);
  }
  /// The unit tangent; zero where the segment is a single point.
  DVector TangentAt(double t) const noexcept {
    const DVector d = IsLine() ? p[1] - p[0] : TavMath::CubicBezier::SafeBezierTangent(t, p);
    const double length = TavMath::Length(d);
    return length > 0 ? d * (1 / length) : DVector{0, 0};
  }
};

template <class T>
PathSegment LoadSegment(const T* points, int first, int last) noexcept {
  PathSegment segment{first, last, {}};
  for (int k = first; k <= last; ++k) segment.p[k - first] = ToDouble(points[k]);
  return segment;
}

/// Whether the position names a segment of the path and a parameter on it.
inline bool IsPosition(const NODETYPE* types, int count, const CurvePosition& at) noexcept {
  if (at.firstNode < 0 || at.lastNode >= count || !(at.t >= 0 && at.t <= 1)) return false;
  const int first = at.firstNode, last = at.lastNode;
  if (last == first + 1) return EndsLine(types, last);
  return last == first + 3 && StartsCurve(types, count, first + 1);
}

}  // namespace Lumo
