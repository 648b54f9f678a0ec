#pragma once
// Distances to flattened outlines and their winding numbers, through a tree of boxes. Nothing here calls the
// engine: curves are evaluated by the Bernstein formula.

#include <algorithm>
#include <cmath>
#include <vector>

#include "lumo/polycurve.h"

namespace check {

using TavMath::DPoint;
using TavMath::DVector;
using Path = Lumo::PolycurveT<DPoint>;

/// A piece of a flattened segment: which one, and between which parameters.
struct Chord {
  DPoint a, b;
  int segment = -1;
  double from = 0, to = 1;
};

/// A segment of a path as a cubic; lines have their controls on their ends.
struct Segment {
  DPoint p[4];
  bool line;
  bool startsSubpath;
  NODETYPE end;  // the type of its last node

  DPoint At(double t) const {
    if (line) return p[0] + t * (p[3] - p[0]);
    const double s = 1 - t, w[4] = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
    DPoint q{0, 0};
    for (int k = 0; k < 4; ++k) q = {q.x + w[k] * p[k].x, q.y + w[k] * p[k].y};
    return q;
  }
  /// How many chords keep within the tolerance: the second derivative bounds how far a chord strays.
  int Chords(double tolerance) const {
    if (line) return 1;
    const double bend = (std::max)(TavMath::Length((p[2] - p[1]) - (p[1] - p[0])),
                                   TavMath::Length((p[3] - p[2]) - (p[2] - p[1])));
    return std::clamp(static_cast<int>(std::ceil(std::sqrt(0.75 * bend / tolerance))), 1, 4000);
  }
};

inline std::vector<Segment> SegmentsOf(const DPoint* points, const NODETYPE* types, std::size_t count) {
  std::vector<Segment> out;
  bool first = true;
  for (std::size_t k = 0; k < count; ++k) {
    if (types[k].IsMove()) {
      first = true;
      continue;
    }
    if (types[k].IsControl()) continue;
    if (types[k].IsCurve())
      out.push_back({{points[k - 3], points[k - 2], points[k - 1], points[k]}, false, first, types[k]});
    else
      out.push_back({{points[k - 1], points[k - 1], points[k], points[k]}, true, first, types[k]});
    first = false;
  }
  return out;
}
inline std::vector<Segment> SegmentsOf(const Path& path) {
  return SegmentsOf(path.GetPoints(), path.GetNodeTypes(), path.GetPointCount());
}

inline std::vector<Chord> Flatten(const std::vector<Segment>& segments, double tolerance) {
  std::vector<Chord> out;
  for (std::size_t i = 0; i < segments.size(); ++i) {
    const Segment& s = segments[i];
    const int n = s.Chords(tolerance);
    DPoint from = s.p[0];
    for (int k = 1; k <= n; ++k) {
      const double t = static_cast<double>(k) / n;
      const DPoint to = k == n ? s.p[3] : s.At(t);
      out.push_back({from, to, static_cast<int>(i), t - 1.0 / n, t});
      from = to;
    }
  }
  return out;
}

inline double DistanceSqrdTo(const Chord& c, const DPoint& p) {
  const DVector d = c.b - c.a;
  const double length = Dot(d, d);
  const double t = length > 0 ? std::clamp(Dot(p - c.a, d) / length, 0.0, 1.0) : 0.0;
  return TavMath::DistanceSqrd(p, c.a + t * d);
}

/// Chords in a tree of boxes.
class ChordTree {
 public:
  ChordTree() = default;
  explicit ChordTree(std::vector<Chord> chords) : chords_(std::move(chords)) {
    if (!chords_.empty()) Build(0, chords_.size());
  }

  bool IsEmpty() const { return chords_.empty(); }
  const std::vector<Chord>& Chords() const { return chords_; }

  /// The distance to the nearest chord, or `most` if all are farther.
  double Distance(const DPoint& p, double most = 1e300) const {
    double best = most * most;
    if (!IsEmpty()) Nearest(0, p, best);
    return std::sqrt(best);
  }
  double BoxDistance(const DPoint& p) const {
    return IsEmpty() ? 1e300 : std::sqrt(nodes_[0].DistanceSqrd(p));
  }

  /// How often the chords wind about a point that is not on them.
  int Winding(const DPoint& p) const { return IsEmpty() ? 0 : CountRay(0, p); }

  /// Calls `visit` with each chord whose box meets that of `c`.
  template <class Visit>
  void Near(const Chord& c, const Visit& visit) const {
    if (!IsEmpty()) NearIn(0, BoxOf(c), visit);
  }

 private:
  struct Box {
    double x0 = 1e300, y0 = 1e300, x1 = -1e300, y1 = -1e300;
    void Add(const DPoint& p) {
      x0 = (std::min)(x0, p.x), y0 = (std::min)(y0, p.y), x1 = (std::max)(x1, p.x), y1 = (std::max)(y1, p.y);
    }
    bool Meets(const Box& o) const { return x0 <= o.x1 && o.x0 <= x1 && y0 <= o.y1 && o.y0 <= y1; }
  };
  struct Node : Box {
    std::size_t first, end;
    std::size_t second = 0;  // 0: a leaf; the first child follows its parent
    double DistanceSqrd(const DPoint& p) const {
      const double dx = std::fmax(0, std::fmax(x0 - p.x, p.x - x1)),
                   dy = std::fmax(0, std::fmax(y0 - p.y, p.y - y1));
      return dx * dx + dy * dy;
    }
  };
  static Box BoxOf(const Chord& c) {
    Box box;
    box.Add(c.a), box.Add(c.b);
    return box;
  }

  void Build(std::size_t first, std::size_t end) {
    const std::size_t at = nodes_.size();
    Node node;
    node.first = first, node.end = end;
    for (std::size_t k = first; k < end; ++k) node.Add(chords_[k].a), node.Add(chords_[k].b);
    nodes_.push_back(node);
    if (end - first <= 4) return;
    const bool byX = node.x1 - node.x0 > node.y1 - node.y0;
    const std::size_t middle = (first + end) / 2;
    const auto key = [byX](const Chord& c) { return byX ? c.a.x + c.b.x : c.a.y + c.b.y; };
    const auto begin = chords_.begin();
    std::nth_element(begin + static_cast<std::ptrdiff_t>(first), begin + static_cast<std::ptrdiff_t>(middle),
                     begin + static_cast<std::ptrdiff_t>(end),
                     [&](const Chord& a, const Chord& b) { return key(a) < key(b); });
    Build(first, middle);
    nodes_[at].second = nodes_.size();
    Build(middle, end);
  }

  void Nearest(std::size_t at, const DPoint& p, double& best) const {
    const Node& node = nodes_[at];
    if (node.second == 0) {
      for (std::size_t k = node.first; k < node.end; ++k)
        best = (std::min)(best, DistanceSqrdTo(chords_[k], p));
      return;
    }
    std::size_t near = at + 1, far = node.second;
    double dNear = nodes_[near].DistanceSqrd(p), dFar = nodes_[far].DistanceSqrd(p);
    if (dFar < dNear) std::swap(near, far), std::swap(dNear, dFar);
    if (dNear < best) Nearest(near, p, best);
    if (dFar < best) Nearest(far, p, best);
  }

  int CountRay(std::size_t at, const DPoint& p) const {
    const Node& node = nodes_[at];
    if (p.y < node.y0 || p.y > node.y1 || p.x > node.x1) return 0;
    if (node.second != 0) return CountRay(at + 1, p) + CountRay(node.second, p);
    int winding = 0;
    for (std::size_t k = node.first; k < node.end; ++k) {
      const DPoint &a = chords_[k].a, &b = chords_[k].b;
      const bool up = a.y <= p.y && b.y > p.y, down = b.y <= p.y && a.y > p.y;
      if (!up && !down) continue;
      const double side = (b.x - a.x) * (p.y - a.y) - (p.x - a.x) * (b.y - a.y);
      if (up && side > 0) ++winding;
      if (down && side < 0) --winding;
    }
    return winding;
  }

  template <class Visit>
  void NearIn(std::size_t at, const Box& box, const Visit& visit) const {
    const Node& node = nodes_[at];
    if (!node.Meets(box)) return;
    if (node.second != 0) return NearIn(at + 1, box, visit), NearIn(node.second, box, visit);
    for (std::size_t k = node.first; k < node.end; ++k)
      if (BoxOf(chords_[k]).Meets(box)) visit(chords_[k]);
  }

  std::vector<Chord> chords_;
  std::vector<Node> nodes_;
};

}  // namespace check
