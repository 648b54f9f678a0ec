// The continuity of nodes, judged by their handles.

#include <algorithm>
#include <cmath>

#include "cleanup/subpath.h"
#include "cleanup/tolerances.h"
#include "tav/math/angle.h"

namespace Lumo::cleanup {
namespace {

constexpr double kDegreesPerRadian = 57.295779513082320877;

/// The two segments that meet at a node.
struct Corner {
  const CSegment* in;
  const CSegment* out;

  DVector In() const { return in->TangentAt(1); }
  DVector Out() const { return out->TangentAt(0); }
  double InHandle() const { return Distance(in->Points()[2], in->EndPoint()); }
  double OutHandle() const { return Distance(out->Points()[1], out->StartPoint()); }
};

/// How far rounding may have turned a direction given by two integer points, in degrees.
double RoundingTurn(const CSegment& segment, bool atStart) {
  const DPoint* p = segment.Points();
  const int last = segment.PointCount() - 1;
  const double length = atStart ? Distance(p[0], p[1]) : Distance(p[last], p[last - 1]);
  return kDegreesPerRadian * std::asin(std::min(1.0, kIntegerHandleError / std::max(length, 1.0)));
}

/// Whether two directions turn by at most so many degrees. The angle x in radians lies below its tangent, and
/// the tangent below x + x^3 up to x = 1: only what is between needs the arc tangent itself.
bool TurnsAtMost(const DVector& in, const DVector& out, double degrees) {
  const double x = degrees / kDegreesPerRadian;
  const double sizes = LengthSqrd(in) * LengthSqrd(out);
  if (x > kLeastQuickTurn && x < 1 && sizes > kQuickTurnFrom && sizes < kQuickTurnTo) {
    const double cross = std::fabs(Cross(in, out)), dot = Dot(in, out);
    if (!(dot > 0) || cross > dot * (x + x * x * x)) return false;
    if (cross < dot * x) return true;
  }
  return TavMath::Degrees::GetFineAngle(in, out) <= degrees;
}

ContinuityType ContinuityOf(const Corner& corner, ContinuityType marked, double angleLimit,
                            Precision precision) {
  if (corner.in->IsLine() && corner.out->IsLine()) return ContinuityType::cusp;
  const DVector in = corner.In(), out = corner.Out();
  if (!(LengthSqrd(in) > 0) || !(LengthSqrd(out) > 0)) return ContinuityType::cusp;
  const bool wasSmooth = marked == ContinuityType::smooth || marked == ContinuityType::symmetric;
  double limit = angleLimit;
  if (precision.isInteger && wasSmooth)
    limit += RoundingTurn(*corner.in, false) + RoundingTurn(*corner.out, true);
  if (!TurnsAtMost(in, out, limit)) return ContinuityType::cusp;
  if (marked != ContinuityType::symmetric || corner.in->IsLine() || corner.out->IsLine())
    return ContinuityType::smooth;
  const double a = corner.InHandle(), b = corner.OutHandle();
  const double slack = kSymmetricSlack * std::max(a, b) + (precision.isInteger ? kIntegerHandleError : 0);
  return std::fabs(a - b) <= slack ? ContinuityType::symmetric : ContinuityType::smooth;
}

int Write(NODETYPE& type, ContinuityType continuity) {
  const NODETYPE before = type;
  type.SetContinuity(continuity);
  return before.value != type.value;
}

int Write(CSegment& segment, ContinuityType continuity) {
  NODETYPE type = segment.EndType();
  const int changed = Write(type, continuity);
  segment.SetEndType(type);
  return changed;
}

}  // namespace

int FixContinuity(Subpath& subpath, double angleLimit, Precision precision) {
  std::vector<CSegment>& segments = subpath.segments;
  if (segments.empty()) return Write(subpath.startType, ContinuityType::cusp);
  int changed = 0;
  for (std::size_t k = 0; k + 1 < segments.size(); ++k) {
    const Corner corner{&segments[k], &segments[k + 1]};
    changed +=
        Write(segments[k], ContinuityOf(corner, segments[k].EndType().Continuity(), angleLimit, precision));
  }
  ContinuityType atEnds = ContinuityType::cusp;
  if (subpath.IsClosed())
    atEnds = ContinuityOf({&segments.back(), &segments.front()}, subpath.startType.Continuity(), angleLimit,
                          precision);
  return changed + Write(subpath.startType, atEnds) + Write(segments.back(), atEnds);
}

}  // namespace Lumo::cleanup
