// Bezier handles that sit on their node or bend too tightly there, and Beziers that overlap themselves.

#include <algorithm>
#include <cmath>

#include "cleanup/subpath.h"
#include "cleanup/tolerances.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo::cleanup {
namespace {

/// One end of a Bezier, seen from its node: the control points in the order in which they are met from there.
struct End {
  DPoint node, handle, beyond, opposite;
};

End EndOf(const CSegment& segment, bool atStart) {
  const DPoint* p = segment.Points();
  return atStart ? End{p[0], p[1], p[2], p[3]} : End{p[3], p[2], p[1], p[0]};
}

/// The parameters at which a Bezier whose control points lie on a line turns back. Returns their number.
int FindFolds(const DPoint p[4], double t[2]) {
  TavMath::BoundsT<double> box;
  for (int k = 0; k < 4; ++k) box.Add(p[k].x, p[k].y);
  const double size = std::max(box.Width(), box.Height());
  const DVector axis = box.Width() >= box.Height() ? DVector{1, 0} : DVector{0, 1};
  DVector along = p[3] - p[0];
  for (const int k : {1, 2})
    if (LengthSqrd(p[k] - p[0]) > LengthSqrd(along)) along = p[k] - p[0];
  for (int k = 1; k < 4; ++k)
    if (std::fabs(Cross(along, p[k] - p[0])) > kCollinearCross * size * size) return 0;
  return axis.x != 0 ? TavMath::CubicBezier::GetVerticalTangents(p, t)
                     : TavMath::CubicBezier::GetHorizontalTangents(p, t);
}

/// The parameter to split a Bezier at, or -1 when it does not overlap itself.
double OverlapSplit(const CSegment& segment) {
  const DPoint* p = segment.Points();
  double t[2];
  DPoint at;
  // Half-way round a loop: neither half crosses itself.
  if (TavMath::CubicBezier::FindBezierSelfIntersection(p, t[0], t[1], at)) {
    const bool isWholeLoop = t[0] < kSplitMargin && t[1] > 1 - kSplitMargin;
    return isWholeLoop ? -1 : 0.5 * (t[0] + t[1]);  // a drop from a node to itself overlaps nothing
  }
  const int folds = FindFolds(p, t);
  for (int k = 0; k < folds; ++k)
    if (t[k] > kSplitMargin && t[k] < 1 - kSplitMargin) return t[k];
  return -1;
}

/// Moves a handle unless the curve would begin to overlap itself: a later split would bring the old defect
/// back, and so on for ever.
bool MoveHandle(CSegment& segment, bool atStart, const DPoint& handle) {
  CSegment moved = segment;
  moved.SetControl(atStart ? 1 : 2, handle);
  if (OverlapSplit(moved) > 0 && !(OverlapSplit(segment) > 0)) return false;
  segment = moved;
  return true;
}

/// Calls change(segment, atStart) for both ends of every Bezier; it returns whether it changed the handle.
template <class Change>
int ForEachEnd(Subpath& subpath, Change change) {
  int changed = 0;
  for (CSegment& segment : subpath.segments) {
    if (segment.IsLine()) continue;
    for (const bool atStart : {true, false}) changed += change(segment, atStart);
  }
  return changed;
}

/// Where the curve goes from a node whose handle says nothing.
DVector DirectionBeyondHandle(const End& end) {
  const DVector beyond = end.beyond - end.node;
  return LengthSqrd(beyond) > 0 ? beyond : end.opposite - end.node;
}

bool FixOverlap(CSegment& segment, bool atStart, double offset, Precision precision) {
  const End end = EndOf(segment, atStart);
  const DVector handle = end.handle - end.node, direction = DirectionBeyondHandle(end);
  if (Dot(handle, direction) > 0) return false;
  const double chord = Distance(end.node, end.opposite), size = Length(direction);
  const double reach = offset * (chord > 0 ? chord : size);
  if (!(size > 0) || !(reach > 0)) return false;
  const bool isOnOrBehind = LengthSqrd(handle) < reach * reach && Dot(handle, direction) <= 0;
  // The integer points need room for a direction; 0 would stay 0 for ever.
  if (!isOnOrBehind || (precision.isInteger && reach < kShortestIntegerHandle)) return false;
  return MoveHandle(segment, atStart, end.node + direction * (reach / size));
}

/// The curvature at a node is 2/3 of the distance of the far control point from the tangent, over the square
/// of the handle: a longer handle eases it and keeps the tangent.
bool Ease(CSegment& segment, bool atStart, double radiusLimit, Precision precision) {
  const End end = EndOf(segment, atStart);
  const DVector handle = end.handle - end.node, beyond = end.beyond - end.node;
  // The far control point is no farther from the tangent than from the node: most handles are long enough for
  // that.
  if (LengthSqrd(handle) > radiusLimit * (std::fabs(beyond.x) + std::fabs(beyond.y))) return false;
  const double length = Length(handle);
  if (!(length > 0)) return false;
  const DVector unit = handle * (1.0 / length);
  const double off = std::fabs(Cross(unit, beyond)), arm = Distance(end.node, end.beyond);
  const auto lengthFor = [=](double distance) { return std::sqrt(2.0 / 3.0 * distance * radiusLimit); };
  const double needed = lengthFor(off);
  if (!(length < needed)) return false;
  // Rounding turns an integer handle a little, and with it a far control point moves off the tangent.
  const double turned = precision.isInteger ? arm * kIntegerHandleError / std::max(needed, 1.0) : 0;
  const double slack = precision.isInteger ? kIntegerEaseSlack : 0;
  // Where the whole curve is as small as the limit, the handle must not reach beyond it. No bound that grows
  // with this handle, or the two ends of a curve would chase each other outwards.
  const double most = std::max(Distance(end.node, end.opposite), Distance(end.beyond, end.opposite));
  const double eased = std::min(lengthFor(off + turned) * kEaseSlack + slack, most);
  // A gain that rounding takes back is none.
  if (!(eased > length + (eased == most ? slack : 0))) return false;
  return MoveHandle(segment, atStart, end.node + unit * eased);
}

}  // namespace

int FixOverlappingHandles(Subpath& subpath, double offset, Precision precision) {
  return ForEachEnd(subpath, [=](CSegment& segment, bool atStart) {
    return FixOverlap(segment, atStart, offset, precision);
  });
}

int FixTightEndpoints(Subpath& subpath, double radiusLimit, Precision precision) {
  if (!(radiusLimit > 0)) return 0;
  int changed = 0;
  for (CSegment& segment : subpath.segments) {
    if (segment.IsLine()) continue;
    // A longer handle at one end can make the other end tighter: in turn until both hold.
    bool start = false, end = false;
    for (int turn = 0; turn < kMaxEaseTurns; ++turn) {
      const bool startNow = Ease(segment, true, radiusLimit, precision);
      const bool endNow = Ease(segment, false, radiusLimit, precision);
      if (!startNow && !endNow) break;
      start |= startNow, end |= endNow;
    }
    changed += start + end;
  }
  return changed;
}

int SplitOverlapping(Subpath& subpath) {
  constexpr int kMostPieces = 3;  // a cubic folds back at most twice and has at most one loop
  std::vector<CSegment> result;
  result.reserve(subpath.segments.size());
  int splits = 0;
  for (CSegment rest : subpath.segments) {
    double t = -1;
    for (int piece = 1; piece < kMostPieces && !rest.IsLine() && (t = OverlapSplit(rest)) > 0; ++piece) {
      DPoint halves[7];
      TavMath::CubicBezier::Split(t, rest.Points(), halves, halves + 3);
      const NODETYPE end = rest.EndType();
      CSegment left = CBezierSegment(halves);
      left.SetEndType(
          static_cast<unsigned char>(NODETYPE::kCurve | NODETYPE::kUser | (end & NODETYPE::kEnabled)));
      result.push_back(left);
      rest = CBezierSegment(halves + 3);
      rest.SetEndType(end);
      ++splits;
    }
    result.push_back(rest);
  }
  subpath.segments.swap(result);
  return splits;
}

}  // namespace Lumo::cleanup
