#include "intersect/segment_pair.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "intersect/tolerances.h"
#include "tav/math/cubic_bezier.h"
#include "tav/math/rect.h"

namespace Lumo {

DPoint PairSegment::At(double t) const {
  return isCurve ? TavMath::CubicBezier::Evaluate(p, t) : TavMath::Lerp(p[0], p[1], t);
}
DVector PairSegment::Tangent(double t) const {
  return isCurve ? TavMath::CubicBezier::SafeBezierTangent(t, p) : p[1] - p[0];
}
double PairSegment::Curvature(double t) const {
  return isCurve ? TavMath::CubicBezier::SafeBezierCurvature(t, p) : 0;
}
TavMath::BoundsT<double> PairSegment::Box() const {
  const TavMath::BoundsT<double> box = TavMath::GetPointsBBox(p, isCurve ? 4 : 2);
  double sum = std::abs(box.minx) + std::abs(box.maxx) + std::abs(box.miny) + std::abs(box.maxy);
  for (int k = 0; k < (isCurve ? 4 : 2); ++k) sum += 0 * p[k].x + 0 * p[k].y;
  return std::isfinite(sum) ? box : TavMath::BoundsT<double>{};
}

double PairMargin(const SegmentIntersectionSettings& settings) noexcept {
  const double margin = std::max(settings.GetTouchTolerance(), settings.GetEndpointTolerance());
  return settings.GetCoverGaps() ? std::max(margin, settings.GetGapTolerance()) : margin;
}

namespace {

using namespace IntersectTolerances;

/// The steps of one pair, in the order in which IntersectPair takes them.
class PairSteps {
 public:
  PairSteps(const PairSegment& a, const PairSegment& b, Adjacency adjacency,
            const SegmentIntersectionSettings& settings, PairContacts& found)
      : a_(a), b_(b), adjacency_(adjacency), settings_(settings), found_(found) {
    const double limit = settings.GetEndpointToleranceSqrd();
    const auto same = [&](const DPoint& p, const DPoint& q) { return TavMath::DistanceSqrd(p, q) < limit; };
    same_[0][0] = same(a.Start(), b.Start());
    same_[0][1] = same(a.Start(), b.End());
    same_[1][0] = same(a.End(), b.Start());
    same_[1][1] = same(a.End(), b.End());
  }

  void RecordCommonEnds() {
    if (same_[0][0]) found_.Add(0, 0, a_.Start(), true);
    if (same_[1][1]) found_.Add(1, 1, a_.End(), true);
    // The joint of two neighbours is no intersection. In a closed subpath of two segments both joints are:
    // there neither segment is only the one before the other.
    const bool parallel = same_[0][0] || same_[1][1];
    if (same_[1][0] && adjacency_ != Adjacency::bFollowsA && !parallel) found_.Add(1, 0, a_.End(), true);
    if (same_[0][1] && adjacency_ != Adjacency::aFollowsB && !parallel) found_.Add(0, 1, a_.Start(), true);
  }

  void RecordEndsOnTheOther() {
    const double limit = settings_.GetTouchToleranceSqrd();
    for (int end = 0; end < 2; ++end) {
      if (same_[end][0] || same_[end][1]) continue;
      double t;
      DPoint foot;
      if (FindFoot(b_, end == 0 ? a_.Start() : a_.End(), limit, t, foot)) AddTouch(end, t, foot);
    }
    for (int end = 0; end < 2; ++end) {
      if (same_[0][end] || same_[1][end]) continue;
      double t;
      DPoint foot;
      if (FindFoot(a_, end == 0 ? b_.Start() : b_.End(), limit, t, foot)) AddTouch(t, end, foot);
    }
  }

  /// True when the stretch between the first two contacts is shared.
  bool LinkSharedStretch() {
    if (found_.count == 0) return false;
    const bool addJoint =
        found_.count == 1 && (adjacency_ == Adjacency::bFollowsA || adjacency_ == Adjacency::aFollowsB);
    if (addJoint) {
      const bool follows = adjacency_ == Adjacency::bFollowsA;
      found_.Add(follows ? 1 : 0, follows ? 0 : 1, follows ? a_.End() : a_.Start(), false);
    }
    if (found_.count < 2) return false;
    if (StretchesCoincide(a_, b_, found_.at[0], found_.at[1], settings_.GetTouchToleranceSqrd())) {
      found_.Link(0, 1);
      return true;
    }
    if (addJoint) --found_.count;
    return false;
  }

  void RecordInside() {
    InnerMeetings inner;
    if (a_.isCurve) {
      MeetCubicCubic(a_, b_, inner);
    } else if (b_.isCurve) {
      MeetLineCubic(a_, b_, inner);
    } else {
      MeetLineLine(a_, b_, inner);
    }
    if (inner.overlap) return RecordStretch(inner);
    const int ends = found_.count;
    for (int k = 0; k < inner.count; ++k) {
      const InnerMeeting& m = inner.at[k];
      if (!(0 < m.ta && m.ta < 1 && 0 < m.tb && m.tb < 1)) continue;
      if (IsKnownEnd(m) || FindContact(m, ends) >= 0) continue;
      found_.Add(m.ta, m.tb, m.point, IsTangency(a_, b_, m.ta, m.tb));
    }
  }

  /// The nearest ends are joined first, each end once.
  void JoinGaps() {
    if (!settings_.GetCoverGaps() || found_.count > 0) return;
    struct Candidate {
      double distanceSqrd;
      int ea, eb;
    } candidates[4];
    int count = 0;
    for (int ea = 0; ea < 2; ++ea) {
      for (int eb = 0; eb < 2; ++eb) {
        if (same_[ea][eb]) return;  // a joint that was left out on purpose
        const double d =
            TavMath::DistanceSqrd(ea == 0 ? a_.Start() : a_.End(), eb == 0 ? b_.Start() : b_.End());
        if (d < settings_.GetGapToleranceSqrd()) candidates[count++] = {d, ea, eb};
      }
    }
    for (int k = 1; k < count; ++k) {
      for (int m = k; m > 0 && candidates[m].distanceSqrd < candidates[m - 1].distanceSqrd; --m) {
        std::swap(candidates[m], candidates[m - 1]);
      }
    }
    bool usedA[2] = {false, false}, usedB[2] = {false, false};
    for (int k = 0; k < count; ++k) {
      const Candidate& c = candidates[k];
      if (usedA[c.ea] || usedB[c.eb]) continue;
      usedA[c.ea] = usedB[c.eb] = true;
      found_.Add(c.ea, c.eb,
                 TavMath::Midpoint(c.ea == 0 ? a_.Start() : a_.End(), c.eb == 0 ? b_.Start() : b_.End()),
                 true);
    }
  }

 private:
  bool Near(double t, double u) const {
    return std::abs(t - u) <= settings_.GetDuplicateEndpointTimeTolerance();
  }

  /// A touch that agrees with an earlier one on either segment is the same touch.
  void AddTouch(double ta, double tb, const DPoint& foot) {
    for (int k = 0; k < found_.count; ++k) {
      if (Near(found_.at[k].ta, ta) || Near(found_.at[k].tb, tb)) return;
    }
    found_.Add(ta, tb, foot, true);
  }

  int FindContact(const InnerMeeting& m, int count) const {
    for (int k = 0; k < count; ++k) {
      if (Near(found_.at[k].ta, m.ta) && Near(found_.at[k].tb, m.tb)) return k;
    }
    return -1;
  }
  /// Beside a common end, recorded or left out because it is the joint of neighbours.
  bool IsKnownEnd(const InnerMeeting& m) const {
    for (int ea = 0; ea < 2; ++ea) {
      for (int eb = 0; eb < 2; ++eb) {
        if (same_[ea][eb] && Near(m.ta, ea) && Near(m.tb, eb)) return true;
      }
    }
    return false;
  }

  /// A stretch that the ends did not show, because its ends lie farther apart than the touch tolerance or the
  /// curves fold: its two ends, recorded unless they are there.
  void RecordStretch(const InnerMeetings& inner) {
    int index[2];
    for (int k = 0; k < 2; ++k) {
      const InnerMeeting& m = inner.at[k];
      index[k] = FindContact(m, found_.count);
      if (index[k] >= 0) continue;
      index[k] = found_.count;
      found_.Add(m.ta, m.tb, m.point, true);
    }
    if (index[0] != index[1] && found_.count <= PairContacts::kRoom) found_.Link(index[0], index[1]);
  }

  const PairSegment& a_;
  const PairSegment& b_;
  Adjacency adjacency_;
  const SegmentIntersectionSettings& settings_;
  PairContacts& found_;
  bool same_[2][2];  ///< ends of a and of b that are one point
};

}  // namespace

void IntersectPair(const PairSegment& a, const PairSegment& b, Adjacency adjacency,
                   const SegmentIntersectionSettings& settings, PairContacts& found) noexcept {
  PairSteps steps(a, b, adjacency, settings, found);
  steps.RecordCommonEnds();
  steps.RecordEndsOnTheOther();
  if (!steps.LinkSharedStretch()) steps.RecordInside();
  steps.JoinGaps();
}

}  // namespace Lumo
