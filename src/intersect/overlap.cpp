// Feet, shared stretches and tangencies: the questions about distance between two segments.

#include <algorithm>
#include <cmath>

#include "intersect/segment_pair.h"
#include "intersect/tolerances.h"
#include "math/cubic/piece.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo {
namespace {

using namespace IntersectTolerances;
using TavMath::Cross;
using TavMath::DistanceSqrd;
using TavMath::Dot;
using TavMath::LengthSqrd;

/// A place on a line's own parameter; the slack is what lies outside its ends and still counts.
bool FindLineFoot(const DPoint& start, const DPoint& end, const DPoint& p, double toleranceSqrd, double slack,
                  double& t, DPoint& foot) {
  const DVector d = end - start;
  const double length = LengthSqrd(d);
  if (!(length > 0)) return false;
  t = Dot(d, p - start) / length;
  if (!(t >= -slack && t <= 1 + slack)) return false;
  foot = start + t * d;
  return DistanceSqrd(foot, p) < toleranceSqrd;
}

bool FindCubicFoot(const DPoint bezier[4], const DPoint& p, double toleranceSqrd, double slack, double& t,
                   DPoint& foot) {
  // Most points are far away: a few halvings show it for much less than the distance costs.
  constexpr int kLooks = 4;
  if (!TavMath::Pieces::MayTouch(TavMath::Pieces::Piece(bezier, 0, 1), p, std::sqrt(toleranceSqrd), kLooks))
    return false;
  double distanceSqrd;
  if (!TavMath::CubicBezier::FindClosestPointOnBezier(bezier, p, t, foot, distanceSqrd)) return false;
  if (!(distanceSqrd < toleranceSqrd)) return false;
  if (t > slack && t < 1 - slack) return true;
  // At an end: only when the point does not lie beyond it.
  const DVector tangent = TavMath::CubicBezier::SafeBezierTangent(t, bezier);
  const double beyond = Dot(tangent, p - foot) * (t < 0.5 ? -1 : 1);
  return beyond <= kFootSlack * LengthSqrd(tangent);
}

/// The stretch of a segment between two parameters, in their order: 2 or 4 points.
struct Stretch {
  DPoint p[4];
  Stretch(const PairSegment& segment, double from, double to) {
    if (segment.isCurve) {
      TavMath::CubicBezier::Subsection(from, to, segment.p, p);
    } else {
      p[0] = segment.At(from), p[1] = segment.At(to);
    }
  }
};

/// Control points of one stretch beside a straight one: the hull lies along it.
bool LiesAlongLine(const DPoint* p, int count, const DPoint& start, const DPoint& end, double toleranceSqrd) {
  for (int k = 0; k < count; ++k) {
    double t;
    DPoint foot;
    if (!FindLineFoot(start, end, p[k], toleranceSqrd, kFootSlack, t, foot)) return false;
  }
  return true;
}

/// Sampled points of one curved stretch on the other.
bool LiesAlongCubic(const DPoint from[4], const DPoint to[4], double toleranceSqrd) {
  for (int k = 0; k <= kStretchSamples; ++k) {
    const DPoint p = TavMath::CubicBezier::Evaluate(from, k / static_cast<double>(kStretchSamples));
    double t, distanceSqrd;
    DPoint foot;
    if (!TavMath::CubicBezier::FindClosestPointOnBezier(to, p, t, foot, distanceSqrd)) return false;
    if (!(distanceSqrd < toleranceSqrd)) return false;
  }
  return true;
}

/// On which side of b the point a(ta + step) lies, near b(tb): -1, 1, or 0 when that is not certain.
int SideBeside(const PairSegment& a, const PairSegment& b, double ta, double tb, double step,
               double certain) {
  if (!(ta + step >= 0 && ta + step <= 1)) return 0;
  const DPoint p = a.At(ta + step);
  double t = tb;
  for (int k = 0; k < 8; ++k) {
    const DVector tangent = b.isCurve ? TavMath::CubicBezier::Derivative(b.p, t) : b.Tangent(t);
    const double speed = LengthSqrd(tangent);
    if (!(speed > 0)) break;
    t += Dot(tangent, p - b.At(t)) / speed;
    if (!(t >= -1 && t <= 2)) return 0;
  }
  if (t < 0 || t > 1) return 0;
  const DVector tangent = b.Tangent(t);
  const double length = std::sqrt(LengthSqrd(tangent));
  const double off = Cross(tangent, p - b.At(t));
  if (!(std::abs(off) > certain * length)) return 0;
  return off > 0 ? 1 : -1;
}

}  // namespace

bool FindFoot(const PairSegment& on, const DPoint& p, double toleranceSqrd, double& t,
              DPoint& foot) noexcept {
  return on.isCurve ? FindCubicFoot(on.p, p, toleranceSqrd, 0, t, foot)
                    : FindLineFoot(on.p[0], on.p[1], p, toleranceSqrd, 0, t, foot);
}

bool StretchesCoincide(const PairSegment& a, const PairSegment& b, const PairContact& first,
                       const PairContact& second, double toleranceSqrd) noexcept {
  if (!(std::abs(first.ta - second.ta) > kDistinctTime && std::abs(first.tb - second.tb) > kDistinctTime))
    return false;
  const PairContact& low = first.ta < second.ta ? first : second;
  const PairContact& high = first.ta < second.ta ? second : first;
  const Stretch u(a, low.ta, high.ta), v(b, low.tb, high.tb);
  if (!a.isCurve) return LiesAlongLine(v.p, b.isCurve ? 4 : 2, u.p[0], u.p[1], toleranceSqrd);
  if (!b.isCurve) return LiesAlongLine(u.p, 4, v.p[0], v.p[1], toleranceSqrd);
  return LiesAlongCubic(u.p, v.p, toleranceSqrd) && LiesAlongCubic(v.p, u.p, toleranceSqrd);
}

bool IsTangency(const PairSegment& a, const PairSegment& b, double ta, double tb) noexcept {
  const DVector u = a.Tangent(ta), v = b.Tangent(tb);
  const double turn = Cross(u, v);
  if (turn * turn > kTangencySine * kTangencySine * LengthSqrd(u) * LengthSqrd(v)) return false;
  const TavMath::BoundsT<double> box = a.Box(), other = b.Box();
  const double size = std::max({box.Width(), box.Height(), other.Width(), other.Height()});
  int before = 0, after = 0;
  for (const double step : kSideSteps) {
    if (before == 0) before = SideBeside(a, b, ta, tb, -step, kCertainSide * size);
    if (after == 0) after = SideBeside(a, b, ta, tb, step, kCertainSide * size);
  }
  return before == 0 || after == 0 || before == after;
}

}  // namespace Lumo
