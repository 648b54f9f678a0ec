// Breaking a path where it crosses another one, or itself.

#include <algorithm>
#include <cmath>

#include "lumo/crv_navigation.h"
#include "lumo/polycurve.h"
#include "polycurve/keep_segments.h"
#include "polycurve/path_segment.h"
#include "polycurve/split_writer.h"
#include "polycurve/tolerances.h"

namespace Lumo {
namespace {

/// How far apart two segments of such points may run and still meet: the nodes of an integer path are
/// rounded, so a node that was put on a segment lies beside it.
template <class T>
constexpr double kReachSqrd = std::is_same_v<T, tagPOINT> ? kRoundedNodeSqrd : 0;

/// A segment with its box and the parameters at which it is cut.
struct CutSegment {
  PathSegment segment;
  TavMath::BoundsT<double> box;
  std::vector<double> cuts;

  /// A cut at an end is a break at that node.
  void Cut(double t) { cuts.push_back(t < kCutAtNode ? 0 : t > 1 - kCutAtNode ? 1 : t); }

  /// Puts the cuts in order, each once.
  template <class T>
  void Tidy() {
    std::sort(cuts.begin(), cuts.end());
    cuts.erase(std::unique(cuts.begin(), cuts.end(), [](double p, double q) { return q - p < kCutAtNode; }),
               cuts.end());
    if constexpr (std::is_same_v<T, tagPOINT>) {
      // Rounding would leave nothing of a piece shorter than a unit: its two ends become one cut.
      double from = 0;
      for (double& t : cuts) from = t = IsNothing<T>(from, t) ? from : IsNothing<T>(t, 1) ? 1 : t;
      cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());
    }
  }

 private:
  /// Whether a piece has all its points at one place once they are rounded.
  template <class T>
  bool IsNothing(double from, double to) const {
    const T start = FromDouble<T>(segment.PointAt(from));
    return start == FromDouble<T>(segment.PointAt(0.5 * from + 0.5 * to)) &&
           start == FromDouble<T>(segment.PointAt(to));
  }
};

template <class T>
std::vector<CutSegment> Collect(const PolycurveT<T>& path) {
  std::vector<CutSegment> segments;
  const double grow = std::sqrt(kReachSqrd<T>);
  WalkSegments(path.GetNodeTypes(), static_cast<int>(path.GetPointCount()), [&](int first, int last) {
    CutSegment cut{LoadSegment(path.GetPoints(), first, last), {}, {}};
    for (int k = 0; k <= last - first; ++k) cut.box.Add(cut.segment.p[k].x, cut.segment.p[k].y);
    cut.box.Inflate(grow, grow);
    segments.push_back(std::move(cut));
  });
  return segments;
}

/// A line as the cubic that runs along it evenly, so that parameters agree.
void AsCubic(const PathSegment& segment, DPoint out[4]) {
  if (segment.IsLine()) {
    for (int k = 0; k < 4; ++k)
      out[k] = k == 3 ? segment.p[1] : TavMath::Lerp(segment.p[0], segment.p[1], k / 3.0);
  } else {
    std::copy(segment.p, segment.p + 4, out);
  }
}

bool AreParallel(const PathSegment& a, const PathSegment& b) {
  const DVector u = a.p[1] - a.p[0], v = b.p[1] - b.p[0];
  return !(std::abs(TavMath::Cross(u, v)) > kParallelLines * TavMath::Length(u) * TavMath::Length(v));
}

/// Where two lines that are not parallel cross or touch.
TavMath::CubicBezier::Crossings CrossLines(const PathSegment& a, const PathSegment& b) {
  TavMath::CubicBezier::Crossings found;
  const DVector u = a.p[1] - a.p[0], v = b.p[1] - b.p[0], w = b.p[0] - a.p[0];
  const double cross = TavMath::Cross(u, v);
  const double ta = TavMath::Cross(w, v) / cross, tb = TavMath::Cross(w, u) / cross;
  if (ta >= 0 && ta <= 1 && tb >= 0 && tb <= 1)
    found.at[static_cast<std::size_t>(found.count++)] = {ta, tb, a.PointAt(ta)};
  return found;
}

TavMath::CubicBezier::Crossings Cross(const PathSegment& a, const PathSegment& b) {
  if (a.IsLine() && b.IsLine() && !AreParallel(a, b)) return CrossLines(a, b);
  DPoint p[4], q[4];
  AsCubic(a, p);
  AsCubic(b, q);
  return TavMath::CubicBezier::IntersectBeziers(p, q);
}

/// The parameter at which a segment passes a point within the reach; false when it does not.
bool Passes(const PathSegment& segment, const DPoint& p, double reachSqrd, double& t) {
  double distanceSqrd = 0;
  if (segment.IsLine()) {
    const DVector d = segment.p[1] - segment.p[0];
    const double length = TavMath::LengthSqrd(d);
    t = length > 0 ? std::clamp(TavMath::Dot(d, p - segment.p[0]) / length, 0.0, 1.0) : 0;
    distanceSqrd = TavMath::DistanceSqrd(segment.PointAt(t), p);
  } else {
    DPoint foot;
    if (!TavMath::CubicBezier::FindClosestPointOnBezier(segment.p, p, t, foot, distanceSqrd)) return false;
  }
  return distanceSqrd < reachSqrd;
}

/// Where two segments meet, at parameters of both.
struct Meeting {
  double ta, tb;
  DPoint point;
};

/// The crossings of two segments and, within the reach, the ends of either that lie on the other. An end
/// stands for a crossing right beside it, and two ends of lines for the whole stretch between them.
void FindMeetings(const CutSegment& a, const CutSegment& b, double reachSqrd, std::vector<Meeting>& found) {
  found.clear();
  if (reachSqrd > 0) {
    for (const double end : {0.0, 1.0}) {
      double t = 0;
      const DPoint ofA = a.segment.PointAt(end), ofB = b.segment.PointAt(end);
      if (b.box.Contains(ofA.x, ofA.y) && Passes(b.segment, ofA, reachSqrd, t))
        found.push_back({end, t, ofA});
      if (a.box.Contains(ofB.x, ofB.y) && Passes(a.segment, ofB, reachSqrd, t))
        found.push_back({t, end, ofB});
    }
  }
  const std::size_t ends = found.size();
  const auto isAtEnd = [&](const DPoint& p) {
    return std::any_of(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(ends),
                       [&](const Meeting& m) { return TavMath::DistanceSqrd(m.point, p) < kBesideEndSqrd; });
  };
  if (a.segment.IsLine() && b.segment.IsLine() && ends > 1 &&
      std::any_of(found.begin() + 1, found.end(), [&](const Meeting& m) {
        return !(TavMath::DistanceSqrd(m.point, found[0].point) < kBesideEndSqrd);
      })) {
    return;
  }
  const auto crossings = Cross(a.segment, b.segment);
  for (int k = 0; k < crossings.count; ++k) {
    const auto& at = crossings.at[static_cast<std::size_t>(k)];
    if (!isAtEnd(at.point)) found.push_back({at.ta, at.tb, at.point});
  }
}

/// Calls visit(i, j) for every pair of boxes that meet, one from each list: a sweep along x.
template <class Visit>
void SweepPairs(const std::vector<CutSegment>& a, const std::vector<CutSegment>& b, Visit visit) {
  struct Entry {
    double x;
    std::size_t index;
    bool second;
  };
  std::vector<Entry> entries;
  for (std::size_t i = 0; i < a.size(); ++i) entries.push_back({a[i].box.minx, i, false});
  for (std::size_t j = 0; j < b.size(); ++j) entries.push_back({b[j].box.minx, j, true});
  std::erase_if(entries, [](const Entry& e) { return std::isnan(e.x); });
  std::sort(entries.begin(), entries.end(), [](const Entry& p, const Entry& q) {
    return p.x != q.x ? p.x < q.x : p.second != q.second ? q.second : p.index < q.index;
  });
  std::vector<std::size_t> activeA, activeB;
  for (const Entry& e : entries) {
    const CutSegment& own = e.second ? b[e.index] : a[e.index];
    const std::vector<CutSegment>& others = e.second ? a : b;
    std::vector<std::size_t>& active = e.second ? activeA : activeB;
    std::erase_if(active, [&](std::size_t k) { return others[k].box.maxx < own.box.minx; });
    for (const std::size_t k : active) {
      if (others[k].box.Overlaps(own.box)) e.second ? visit(k, e.index) : visit(e.index, k);
    }
    (e.second ? activeB : activeA).push_back(e.index);
  }
}

/// Whether the two meet at a node that they share, at these parameters: the joint of neighbours is no
/// crossing.
bool IsSharedNode(const NODETYPE* types, int count, const PathSegment& a, double ta, const PathSegment& b,
                  double tb) {
  if ((ta != 0 && ta != 1) || (tb != 0 && tb != 1)) return false;
  const int nodeA = ta == 0 ? a.first : a.last, nodeB = tb == 0 ? b.first : b.last;
  return nodeA == nodeB || OtherClosedEnd(types, nodeA, count) == nodeB;
}

/// The path with its cuts made: nodes where there are none, and breaks at all of them.
template <class T>
bool Break(const PolycurveT<T>& path, std::vector<CutSegment>& segments, std::vector<T>& points,
           std::vector<NODETYPE>& types) {
  SplitWriter<T> writer(path);
  std::vector<int> breaks;
  for (CutSegment& s : segments) {
    if (s.cuts.empty()) continue;
    s.template Tidy<T>();
    writer.CopyUpTo(s.segment.first + 1);
    if (s.cuts.front() == 0) breaks.push_back(writer.LastIndex());
    const bool atEnd = s.cuts.back() == 1;
    std::erase_if(s.cuts, [](double t) { return t == 0 || t == 1; });
    if (!s.cuts.empty()) {
      const int first = writer.Split(s.segment, s.cuts);
      const int apart = s.segment.IsLine() ? 1 : 3;
      for (std::size_t k = 0; k < s.cuts.size(); ++k) breaks.push_back(first + apart * static_cast<int>(k));
    }
    writer.CopyUpTo(s.segment.last + 1);
    if (atEnd) breaks.push_back(writer.LastIndex());
  }
  writer.Finish();
  const int count = static_cast<int>(writer.types.size());
  std::vector<bool> breaksAt(writer.types.size());
  for (const int node : breaks) {
    breaksAt[static_cast<std::size_t>(node)] = true;
    const int twin = OtherClosedEnd(writer.types.data(), node, count);
    if (twin >= 0) breaksAt[static_cast<std::size_t>(twin)] = true;
  }
  return CutSegments(
      writer.points.data(), writer.types.data(), count, [](int, int) { return true; },
      [&](int node) { return static_cast<bool>(breaksAt[static_cast<std::size_t>(node)]); }, points, types);
}

}  // namespace

template <class T>
bool PolycurveT<T>::BreakAtIntersections(const PolycurveT& other) noexcept {
  try {
    std::vector<CutSegment> own = Collect(*this);
    const std::vector<CutSegment> others = Collect(other);
    std::vector<Meeting> found;
    SweepPairs(own, others, [&](std::size_t i, std::size_t j) {
      FindMeetings(own[i], others[j], kReachSqrd<T>, found);
      for (const Meeting& at : found) own[i].Cut(at.ta);
    });
    std::vector<T> points;
    std::vector<NODETYPE> types;
    return Break(*this, own, points, types) && MoveData(std::move(points), std::move(types));
  } catch (...) {
    return false;
  }
}

template <class T>
bool PolycurveT<T>::BreakAtSelfIntersections() noexcept {
  try {
    std::vector<CutSegment> own = Collect(*this);
    std::vector<Meeting> found;
    SweepPairs(own, own, [&](std::size_t i, std::size_t j) {
      if (i >= j) return;  // every pair comes twice
      FindMeetings(own[i], own[j], kReachSqrd<T>, found);
      for (const Meeting& at : found) {
        CutSegment cutA{own[i].segment, {}, {}}, cutB{own[j].segment, {}, {}};
        cutA.Cut(at.ta);
        cutB.Cut(at.tb);
        if (IsSharedNode(GetNodeTypes(), IntCount(), cutA.segment, cutA.cuts[0], cutB.segment, cutB.cuts[0]))
          continue;
        own[i].Cut(at.ta);
        own[j].Cut(at.tb);
      }
    });
    for (CutSegment& s : own) {
      double t0 = 0, t1 = 0;
      DPoint point;
      if (s.segment.IsLine() || !TavMath::CubicBezier::FindBezierSelfIntersection(s.segment.p, t0, t1, point))
        continue;
      s.Cut(t0);
      s.Cut(t1);
    }
    std::vector<T> points;
    std::vector<NODETYPE> types;
    return Break(*this, own, points, types) && MoveData(std::move(points), std::move(types));
  } catch (...) {
    return false;
  }
}

#define LUMO_CROSSING_MEMBERS(T)                                                         \
  LUMO_INSTANTIATE bool PolycurveT<T>::BreakAtIntersections(const PolycurveT&) noexcept; \
  LUMO_INSTANTIATE bool PolycurveT<T>::BreakAtSelfIntersections() noexcept;
LUMO_CROSSING_MEMBERS(tagPOINT)
LUMO_CROSSING_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
