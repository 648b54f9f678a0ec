#include "offset/thorns.h"

#include <algorithm>
#include <cmath>
#include <list>

#include "offset/reach.h"
#include "offset/tolerances.h"

namespace Lumo::Offset {

using namespace TavMath;

namespace {

bool TurnsBack(const DVector& arriving, const DVector& leaving) {
  const double along = Dot(arriving, leaving);
  return along < 0 && std::abs(Cross(arriving, leaving)) < kThornSine * -along;
}

/// One closed outline as a ring of segments, each with the type of its last node.
class Ring {
 public:
  Ring(const Source& outline, double width) : width_(width) {
    const std::vector<Part> parts = PartsOf(outline.points, outline.nodes, outline.count);
    auto part = parts.begin();
    for (int k = 1; k < outline.count; ++k)
      if (outline.nodes[k].IsOnCurve()) ring_.push_back({*part++, outline.nodes[k]});
  }

  /// Takes out thorns until there are none; each goes with one segment at least. True when there were any.
  bool RemoveThorns() {
    bool removed = false;
    auto at = ring_.begin();
    // So many nodes up to here are no tips.
    for (std::size_t sound = 0; sound < ring_.size() && ring_.size() > kFewest;) {
      if (!TurnsBackAfter(at) || !RemoveAfter(at)) {
        at = Next(at);
        ++sound;
        continue;
      }
      removed = true;
      sound -= (std::min)(sound, std::size_t{2});
    }
    return removed;
  }

  void AppendTo(OwnedPath& path) const {
    if (ring_.size() < 2) return;
    const std::size_t start = path.points.size();
    path.points.push_back(ring_.front().part.Start());
    path.nodes.push_back(NODETYPE::kClosed | NODETYPE::kUser);
    for (const Segment& segment : ring_) {
      const Cubic& c = segment.part.curve;
      if (segment.part.line) {
        path.points.push_back(c[3]);
        path.nodes.push_back(NODETYPE::kLine);
      } else {
        PushCubic(path.Out(), c[1], c[2], c[3]);
      }
      path.nodes.back().Set(NODETYPE::kUser, segment.end.IsUser());
      path.nodes.back().SetContinuity(segment.end.Continuity());
    }
    path.nodes.back().Set(NODETYPE::kClosed, true);
    path.nodes.back().Set(NODETYPE::kUser, false);
    path.nodes[start].SetContinuity(path.nodes.back().Continuity());
  }

 private:
  struct Segment {
    Part part;
    NODETYPE end;
  };
  using At = std::list<Segment>::iterator;

  /// Fewer segments than this bound nothing without a thorn.
  static constexpr std::size_t kFewest = 3;

  At Next(At at) { return ++at == ring_.end() ? ring_.begin() : at; }
  At Before(At at) { return --(at == ring_.begin() ? ring_.end() : at); }

  bool TurnsBackAfter(At at) {
    return TurnsBack(CubicBezier::SafeBezierTangent(1, at->part.curve.data()),
                     CubicBezier::SafeBezierTangent(0, Next(at)->part.curve.data()));
  }

  /// Where the point is nearest on the part, if it is within the width of it.
  bool IsBeside(const DPoint& p, const Part& part, double& t) const {
    DPoint nearest;
    double distanceSqrd;
    return CubicBezier::FindClosestPointOnBezier(part.curve.data(), p, t, nearest, distanceSqrd) &&
           distanceSqrd <= width_ * width_;
  }

  bool RunsBeside(const Part& part, const Part& other) const {
    double t;
    return std::all_of(std::begin(kLooks), std::end(kLooks), [&](double at) {
      return IsBeside(CubicBezier::Evaluate(part.curve.data(), at), other, t);
    });
  }

  /// The thorn whose tip is the end of this segment: its shorter side goes, and as much of the other, which
  /// then ends at the thorn's root. False when the two sides are apart. `at` is then before the root.
  bool RemoveAfter(At& at) {
    const At next = Next(at), before = Before(at);
    const bool first =
        DistanceSqrd(at->part.Start(), at->part.End()) <= DistanceSqrd(next->part.Start(), next->part.End());
    const Part side = first ? at->part : next->part;
    Part& other = first ? next->part : at->part;
    const DPoint root = first ? side.Start() : side.End(), far = first ? other.End() : other.Start();
    double t;
    if (!RunsBeside(side, other) || !IsBeside(root, other, t)) return false;
    if (DistanceSqrd(root, far) <= width_ * width_) {
      // Nothing is left of the other side: what follows starts where what precedes ends.
      MoveStart(Next(next)->part, before->part.End());
      before->end.SetContinuity(ContinuityType::cusp);
      ring_.erase(next);
      ring_.erase(at);
    } else if (first) {
      CubicBezier::RightOf(t, other.curve.data(), other.curve.data());
      MoveStart(other, root);
      before->end.SetContinuity(ContinuityType::cusp);
      ring_.erase(at);
    } else {
      CubicBezier::LeftOf(t, other.curve.data(), other.curve.data());
      MoveEnd(other, root);
      at->end = next->end;
      at->end.SetContinuity(ContinuityType::cusp);
      ring_.erase(next);
    }
    at = before;
    return true;
  }

  static void MoveStart(Part& part, const DPoint& to) {
    part.MoveStart(to);
    if (part.line) part.curve = {to, to, part.End(), part.End()};
  }
  static void MoveEnd(Part& part, const DPoint& to) {
    part.curve[2] += to - part.curve[3];
    part.curve[3] = to;
    if (part.line) part.curve = {part.Start(), part.Start(), to, to};
  }

  /// Where the two sides of a thorn are compared.
  static constexpr double kLooks[] = {0.25, 0.5, 0.75};

  std::list<Segment> ring_;
  double width_;
};

/// Whether some outline turns back at a node.
bool HasTip(const OwnedPath& path) {
  const std::size_t count = path.points.size();
  const DPoint* p = path.points.data();
  std::size_t start = 0;
  for (std::size_t k = 1; k < count; ++k) {
    if (path.nodes[k].IsMove()) start = k;
    if (!path.nodes[k].IsOnCurve() || k == start) continue;
    const bool last = k + 1 == count || path.nodes[k + 1].IsMove();
    const std::size_t next = last ? start + 1 : k + 1;
    DVector arriving = p[k] - p[k - 1], leaving = p[next] - p[k];
    if (Dot(arriving, leaving) > 0) continue;
    if (path.nodes[k].IsCurve()) arriving = CubicBezier::SafeBezierTangent(1, p + k - 3);
    if (path.nodes[next].IsControl()) leaving = CubicBezier::SafeBezierTangent(0, p + next - 1);
    if (TurnsBack(arriving, leaving)) return true;
  }
  return false;
}

}  // namespace

void RemoveThorns(OwnedPath& path, const OffsetSettings& settings) {
  if (!HasTip(path)) return;
  OwnedPath kept;
  for (const Range& range : Subpaths(path.nodes.data(), path.Count())) {
    const Source outline = SourceOf(path, range);
    Ring ring(outline, kThornShare * settings.MaxOffsetError());
    if (outline.closed && ring.RemoveThorns())
      ring.AppendTo(kept);
    else
      kept.Append(outline.points, outline.nodes, outline.count);
  }
  path = std::move(kept);
}

}  // namespace Lumo::Offset
