#include <algorithm>
#include <cmath>

#include "lumo/shapes.h"
#include "math/point_traits.h"
#include "polycurve/arc_pieces.h"
#include "polycurve/tolerances.h"

namespace Lumo {
namespace {

bool IsFinite(const DPoint& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

/// The turn from u to v, in (-pi, pi].
double AngleBetween(const DVector& u, const DVector& v) {
  return std::atan2(TavMath::Cross(u, v), TavMath::Dot(u, v));
}

/// The centre of the circle through three points; false when they are (nearly) collinear.
bool FindCenter(const DPoint& p1, const DPoint& p2, const DPoint& p3, DPoint& center) {
  const DVector a = p2 - p1, b = p3 - p1;
  const double cross = TavMath::Cross(a, b);
  if (!(std::abs(cross) > kCollinearSine * TavMath::Length(a) * TavMath::Length(b))) return false;
  const double aa = TavMath::LengthSqrd(a), bb = TavMath::LengthSqrd(b);
  center = p1 + DVector{b.y * aa - a.y * bb, a.x * bb - b.x * aa} * (0.5 / cross);
  return IsFinite(center);
}

}  // namespace

bool GetArcSegmentHandles(DPoint out[2], const DPoint& center, const DPoint& from,
                          const DPoint& to) noexcept {
  const DVector u = from - center, v = to - center;
  const double turn = AngleBetween(u, v);
  const bool opposite = TavMath::Cross(u, v) == 0 && TavMath::Dot(u, v) < 0;
  if (TavMath::Length(u) == 0 || TavMath::Length(v) == 0 || from == to || opposite || !std::isfinite(turn))
    return false;
  const double f = ArcHandleFactor(turn);
  out[0] = from + f * TavMath::LeftNormal(u);
  out[1] = to - f * TavMath::LeftNormal(v);
  return true;
}

template <class T>
std::size_t BuildCircularArc(T* points, NODETYPE* types, const DPoint& center, double radius,
                             double startAngle, double endAngle) noexcept {
  return BuildEllipse(points, types, center, radius, radius, startAngle, endAngle, false, false);
}

template <class T>
std::size_t Build3PointCircularArc(T* points, NODETYPE* types, const DPoint& p1, const DPoint& p2,
                                   const DPoint& p3) noexcept {
  if (!points || !types || !IsFinite(p1) || !IsFinite(p2) || !IsFinite(p3)) return 0;
  DPoint center;
  if (!FindCenter(p1, p2, p3, center)) return BuildLine(points, types, p1, p3);
  // An angle at the rim is half of the one at the centre over the same arc: the turn from p1 to p2 is twice
  // the angle at p3, with the sign of the way the three points turn.
  const double first = 2 * AngleBetween(p1 - p3, p2 - p3), second = 2 * AngleBetween(p2 - p1, p3 - p1);
  ArcNodes<T> nodes{points, types};
  nodes.Add(p1, NODETYPE::kMove | NODETYPE::kUser);
  nodes.AddTurn(center, p1, p2, first);
  nodes.AddTurn(center, p2, p3, second);
  return nodes.Finish();
}

template <class T>
std::size_t BuildCircularArc(T* points, NODETYPE* types, const DPoint& p1, const DPoint& p2,
                             const DPoint& p3) noexcept {
  return Build3PointCircularArc(points, types, p1, p2, p3);
}

template <class T>
std::size_t BuildCircularArc(T* points, NODETYPE* types, const DPoint& p1, const DPoint& p2,
                             const DVector& tangent) noexcept {
  if (!points || !types || !IsFinite(p1) || !IsFinite(p2) || !IsFinite(TavMath::AsPoint(tangent))) return 0;
  const DVector chord = p2 - p1;
  const double cross = TavMath::Cross(tangent, chord);
  if (!(std::abs(cross) > kCollinearSine * TavMath::Length(tangent) * TavMath::Length(chord))) {
    return BuildLine(points, types, p1, p2);
  }
  // The centre lies on the normal at p1, as far from p2 as from p1.
  const DVector normal = TavMath::LeftNormal(tangent);
  const DPoint center = p1 + normal * (TavMath::LengthSqrd(chord) / (2 * cross));
  if (!IsFinite(center)) return BuildLine(points, types, p1, p2);
  ArcNodes<T> nodes{points, types};
  nodes.Add(p1, NODETYPE::kMove | NODETYPE::kUser);
  nodes.AddTurn(center, p1, p2, 2 * AngleBetween(tangent, chord));
  return nodes.Finish();
}

LUMO_SHAPE_ARC(LUMO_INSTANTIATE, tagPOINT)
LUMO_SHAPE_ARC(LUMO_INSTANTIATE, TavMath::DPoint)

}  // namespace Lumo
