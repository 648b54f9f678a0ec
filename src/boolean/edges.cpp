#include "boolean/edges.h"

#include <bit>
#include <cstdint>
#include <numeric>

#include "boolean/box_tree.h"
#include "boolean/pair_crossing.h"
#include "boolean/tolerances.h"

namespace Lumo::Planar {
namespace {

std::size_t At(int i) { return static_cast<std::size_t>(i); }

/// Disjoint sets of vertices. The least index represents a set, so original nodes stand for computed points.
class VertexSets {
 public:
  explicit VertexSets(std::size_t n) : parent_(n) { std::iota(parent_.begin(), parent_.end(), 0); }
  void Add() { parent_.push_back(static_cast<int>(parent_.size())); }
  int Find(int v) {
    while (parent_[At(v)] != v) v = parent_[At(v)] = parent_[At(parent_[At(v)])];
    return v;
  }
  void Unite(int u, int v) {
    u = Find(u);
    v = Find(v);
    parent_[At((std::max)(u, v))] = (std::min)(u, v);
  }

 private:
  std::vector<int> parent_;
};

struct Cut {
  int arc;
  double t;
  int vertex;
};

double Snap(double x) {
  return std::nearbyint(x / kGrid) * kGrid;  // a division by a power of two: exact
}

class Splitter {
 public:
  /// How subpaths and vertices are treated.
  enum class Mode {
    plain,     ///< subpaths that meet nothing become loops
    thorough,  ///< every vertex is looked for on every arc near it
    again      ///< the arcs are edges of an earlier run, with their ends moved
  };

  Splitter(const Collection& collection, const std::vector<Arc>& arcs, const std::vector<Vertex>& vertices,
           double contact, Mode mode)
      : in_(collection),
        arcs_(arcs),
        contact_(contact),
        sets_(vertices.size()),
        pair_(contact),
        mode_(mode),
        touched_(collection.subpaths.size(), mode != Mode::plain) {
    out_.vertices = vertices;
  }

  EdgeSet Run() {
    MakeSteps();
    FoldDuplicates();
    const std::vector<Box> boxes = LiveBoxes();
    ForEachOverlap(boxes, [this](int i, int j) {
      const int a = live_[At(i)], b = live_[At(j)];
      Cross((std::min)(a, b), (std::max)(a, b));
    });
    SetLoopsApart();
    if (live_.empty()) return std::move(out_);
    SortCuts();
    if (mode_ != Mode::plain) alongside_.assign(arcs_.size(), {0, 1});
    UniteAlongArcs();
    if (!alongside_.empty()) AlignVertices();
    MakePieces();
    Link();
    if (MergeCoincident()) Link();
    return std::move(out_);
  }

 private:
  /// Part of an arc that runs beside another one or has vertices crowded on it; none when low > high.
  struct Interval {
    double low = 1, high = 0;
    bool Holds(double t) const { return low <= t && t <= high; }
  };

  void MakeSteps() {
    steps_.reserve(arcs_.size());
    for (const Arc& arc : arcs_) steps_.push_back(arc.step);
  }

  /// Arcs that are equal bit for bit, in either direction, count as one: the first carries the steps of all.
  /// Exact copies are common, and n copies would have n^2 pairs. Arcs whose steps cancel drop out.
  void FoldDuplicates() {
    // Chains of arcs with the same bits of their fingerprint; the head of each chain is the latest.
    const std::size_t slots = std::bit_ceil(arcs_.size() * 2 + 1);
    std::vector<int> heads(slots, -1), chain(arcs_.size(), -1);
    std::vector<char> folded;
    dead_.assign(arcs_.size(), false);
    for (int i = 0; i < static_cast<int>(arcs_.size()); ++i) {
      int& head = heads[Fingerprint(arcs_[At(i)].curve) & (slots - 1)];
      for (int j = head; j >= 0 && !dead_[At(i)]; j = chain[At(j)]) {
        if (!Fold(j, i)) continue;
        if (folded.empty()) folded.assign(arcs_.size(), false);
        folded[At(j)] = true;
      }
      if (dead_[At(i)]) continue;
      chain[At(i)] = head;
      head = i;
    }
    live_.reserve(arcs_.size());
    for (std::size_t i = 0; i < arcs_.size(); ++i) {
      if (!folded.empty() && folded[i] && steps_[i] == Winding{}) dead_[i] = true;
      if (!dead_[i]) live_.push_back(static_cast<int>(i));
    }
  }

  /// The same for a curve and its reverse.
  static std::uint64_t Fingerprint(const Curve& c) {
    const auto bits = [](double x) { return std::bit_cast<std::uint64_t>(x + 0.0); };  // -0 counts as 0
    const auto mix = [&](const DPoint& p) {
      return (bits(p.x) * 0x9E3779B97F4A7C15u) ^ (bits(p.y) * 0xC2B2AE3D27D4EB4Fu);
    };
    const std::uint64_t h = (mix(c.p[0]) + mix(c.p[3])) ^ ((mix(c.p[1]) + mix(c.p[2])) * 31);
    return h ^ (h >> 29) ^ (h >> 47);
  }

  bool Fold(int i, int j) {
    const Arc &a = arcs_[At(i)], &b = arcs_[At(j)];
    const DPoint *p = a.curve.p, *q = b.curve.p;
    if (a.open || b.open || a.curve.line != b.curve.line) return false;
    const bool same = p[0] == q[0] && p[1] == q[1] && p[2] == q[2] && p[3] == q[3];
    const bool reversed = p[0] == q[3] && p[1] == q[2] && p[2] == q[1] && p[3] == q[0];
    if (!same && !reversed) return false;
    sets_.Unite(a.v0, same ? b.v0 : b.v1);
    sets_.Unite(a.v1, same ? b.v1 : b.v0);
    Touch(i);
    Touch(j);
    steps_[At(i)] = same ? steps_[At(i)] + steps_[At(j)] : steps_[At(i)] - steps_[At(j)];
    dead_[At(j)] = true;
    return true;
  }

  std::vector<Box> LiveBoxes() const {
    std::vector<Box> boxes;
    boxes.reserve(live_.size());
    for (const int i : live_) {
      const Curve& c = arcs_[At(i)].curve;
      Box box = EndBox(c.p[0], c.p[3]);
      box.Inflate(contact_, contact_);
      boxes.push_back(box);
    }
    return boxes;
  }

  int SubpathOf(int arc) const { return in_.segments[At(arcs_[At(arc)].segment)].subpath; }
  /// The arc's subpath meets something.
  void Touch(int arc) { touched_[At(SubpathOf(arc))] = true; }

  /// Subpaths that were not touched become loops; their arcs need no more attention.
  void SetLoopsApart() {
    for (const int i : live_) {
      if (Tiny(arcs_[At(i)])) Touch(i);
    }
    for (std::size_t k = 0; k < touched_.size(); ++k) {
      touched_[k] |= !in_.subpaths[k].encloses;
      if (!touched_[k]) out_.loops.push_back(static_cast<int>(k));
    }
    if (!out_.loops.empty()) std::erase_if(live_, [this](int i) { return !touched_[At(SubpathOf(i))]; });
  }

  void MarkAlongside(int arc, double low, double high) {
    Touch(arc);
    if (alongside_.empty()) alongside_.resize(arcs_.size());
    Interval& interval = alongside_[At(arc)];
    interval.low = (std::min)(interval.low, low);
    interval.high = (std::max)(interval.high, high);
  }

  /// Where several arcs run side by side, a vertex that some of them share lies on the others too.
  void AlignVertices() {
    const BoxesAt boxes(LiveBoxes());
    looks_ = static_cast<std::int64_t>(kLooks * (arcs_.size() + cuts_.size()) + kLooksMore);
    for (int round = 0; round < kAlignRounds && CutAtNearVertices(boxes); ++round) {
      PlaceCuts();
      SortCuts();
      UniteAlongArcs();
    }
    PlaceCuts();
    SortCuts();
  }

  /// Looks for every vertex of such arcs, at the place to which it was moved, on all arcs near it. True when
  /// something was added.
  bool CutAtNearVertices(const BoxesAt& boxes) {
    bool added = false;
    std::vector<char> seen(out_.vertices.size(), false);
    const auto look = [&](int vertex) {
      const int v = sets_.Find(vertex);
      if (seen[At(v)]) return;
      seen[At(v)] = true;
      const DPoint p = out_.vertices[At(v)].p;
      boxes.ForEachAt(p.x, p.y, [&](int i) { added |= CutNear(live_[At(i)], v, p); });
    };
    for (const int i : live_) {
      const Interval interval = alongside_[At(i)];
      if (interval.low > interval.high) continue;
      if (interval.Holds(0)) look(arcs_[At(i)].v0);
      if (interval.Holds(1)) look(arcs_[At(i)].v1);
      for (int k = firstCut_[At(i)]; k < firstCut_[At(i) + 1]; ++k) {
        if (interval.Holds(cuts_[At(k)].t)) look(cuts_[At(k)].vertex);
      }
    }
    return added;
  }

  /// Where arcs run side by side, cuts stand in the order in which their vertices' final places project on
  /// the arc: each vertex once, and not where it is one of the arc's ends.
  void PlaceCuts() {
    std::erase_if(cuts_, [this](Cut& c) {
      if (alongside_[At(c.arc)].low > alongside_[At(c.arc)].high) return false;
      const Arc& arc = arcs_[At(c.arc)];
      c.vertex = sets_.Find(c.vertex);
      if (c.vertex == sets_.Find(arc.v0) || c.vertex == sets_.Find(arc.v1)) return true;
      // Beside a near cusp the projection may settle far off; the place that was computed is better then.
      const DPoint& place = Place(c.vertex);
      const double t = Project(arc.curve, place);
      if (TavMath::DistanceSqrd(Evaluate(arc.curve, t), place) <=
          TavMath::DistanceSqrd(Evaluate(arc.curve, c.t), place)) {
        c.t = t;
      }
      return false;
    });
  }

  /// Whether the arc passes the vertex already, by a cut not far from parameter t. (A few neighbours will do:
  /// a cut that is made twice does no harm.)
  bool PassesNear(int arc, double t, int vertex) {
    constexpr int kNeighbours = 16;
    const int first = firstCut_[At(arc)], last = firstCut_[At(arc) + 1];
    const auto at = std::lower_bound(cuts_.begin() + first, cuts_.begin() + last, t,
                                     [](const Cut& c, double value) { return c.t < value; });
    const int middle = static_cast<int>(at - cuts_.begin());
    for (int k = (std::max)(first, middle - kNeighbours); k < (std::min)(last, middle + kNeighbours); ++k) {
      if (sets_.Find(cuts_[At(k)].vertex) == vertex) return true;
    }
    return false;
  }

  /// Cuts the arc at a vertex within the contact distance that it does not pass yet.
  bool CutNear(int i, int vertex, const DPoint& p) {
    const Arc& arc = arcs_[At(i)];
    const int v0 = sets_.Find(arc.v0), v1 = sets_.Find(arc.v1);
    if (v0 == vertex || v1 == vertex) return false;
    if (--looks_ < 0 || !MayBeNear(arc.curve, p, contact_)) return false;
    const double limit = contact_ * contact_;
    const bool at0 = TavMath::DistanceSqrd(p, Place(v0)) <= limit,
               at1 = TavMath::DistanceSqrd(p, Place(v1)) <= limit;
    if (at0 || at1) {
      sets_.Unite(at0 ? v0 : v1, vertex);
      MarkAlongside(i, at0 ? 0 : 1, at0 ? 0 : 1);
      return true;
    }
    const double t = Project(arc.curve, p);
    if (TavMath::DistanceSqrd(p, Evaluate(arc.curve, t)) > limit) return false;
    if (PassesNear(i, t, vertex)) return false;
    cuts_.push_back({i, t, vertex});
    MarkAlongside(i, t, t);
    return true;
  }

  /// Neighbours that only meet where they are joined, as nearly all do.
  bool OnlyJoined(const Arc& a, const Arc& b) const {
    const bool tailHead = a.v1 == b.v0, headTail = a.v0 == b.v1;
    if (tailHead == headTail) return false;
    const DPoint &joint = tailHead ? a.curve.p[3] : a.curve.p[0],
                 &farA = tailHead ? a.curve.p[0] : a.curve.p[3],
                 &farB = tailHead ? b.curve.p[3] : b.curve.p[0];
    const DVector u = farA - joint, v = farB - joint;
    const bool apartX = u.x * v.x <= 0, apartY = u.y * v.y <= 0;
    if (apartX && apartY) return true;
    if (a.curve.line && b.curve.line) {
      return std::fabs(TavMath::Cross(u, v)) > 0x1p-8 * std::fabs(TavMath::Dot(u, v));
    }
    // One above and one below the joint: they could only touch along the horizontal through it, which an arc
    // that does not leave horizontally quits at once. The same for left and right.
    if (!apartX && !apartY) return PartAtCusp(a, tailHead, b);
    const DVector du = LeavingDirection(a.curve, tailHead, contact_),
                  dv = LeavingDirection(b.curve, !tailHead, contact_);
    const auto quits = [apartX](const DVector& d) {
      return apartX ? std::fabs(d.x) > 0x1p-6 * std::fabs(d.y) : std::fabs(d.y) > 0x1p-6 * std::fabs(d.x);
    };
    return quits(du) || quits(dv);
  }

  /// Neighbours that leave their joint in one direction, as at a cusp, but on the two sides of their common
  /// tangent, and clearly at their far ends.
  bool PartAtCusp(const Arc& a, bool tailHead, const Arc& b) const {
    const DVector du = LeavingDirection(a.curve, tailHead, contact_),
                  dv = LeavingDirection(b.curve, !tailHead, contact_);
    const double uu = TavMath::LengthSqrd(du), vv = TavMath::LengthSqrd(dv);
    if (!(uu > 0 && vv > 0)) return false;
    const DVector tangent = (1 / std::sqrt(uu)) * du + (1 / std::sqrt(vv)) * dv;
    const double length = std::sqrt(TavMath::LengthSqrd(tangent));
    // Distances of the control points from the tangent, times its length.
    const auto spread = [&](const Curve& c, bool atEnd, double& low, double& high) {
      const DPoint& joint = c.p[atEnd ? 3 : 0];
      low = high = 0;
      for (const DPoint& p : c.p) {
        const double off = TavMath::Cross(tangent, p - joint);
        low = (std::min)(low, off);
        high = (std::max)(high, off);
      }
      const DVector chord = c.p[atEnd ? 0 : 3] - joint;
      return std::fabs(TavMath::Cross(tangent, chord)) >
             kClearlyOff * length * std::sqrt(TavMath::LengthSqrd(chord));
    };
    double lowA, highA, lowB, highB;
    if (!spread(a.curve, tailHead, lowA, highA) || !spread(b.curve, !tailHead, lowB, highB)) return false;
    const double slack = 0.25 * contact_ * length;
    return (lowA >= -slack && highB <= slack) || (lowB >= -slack && highA <= slack);
  }

  void Cross(int i, int j) {
    const Arc &a = arcs_[At(i)], &b = arcs_[At(j)];
    if (OnlyJoined(a, b)) return;
    if (pair_.Find(a, b, contacts_)) {
      const PairCrossing::Alongside& beside = pair_.alongside();
      MarkAlongside(i, beside.lowA, beside.highA);
      MarkAlongside(j, beside.lowB, beside.highB);
    }
    for (const Contact& c : contacts_) {
      const int va = c.a == 0 ? a.v0 : c.a == 1 ? a.v1 : -1, vb = c.b == 0 ? b.v0 : c.b == 1 ? b.v1 : -1;
      if (va >= 0 && va == vb) continue;  // neighbours, at their joint
      Touch(i);
      Touch(j);
      if (va >= 0 && vb >= 0) {
        sets_.Unite(va, vb);
      } else if (va >= 0) {
        cuts_.push_back({j, c.b, va});
      } else if (vb >= 0) {
        cuts_.push_back({i, c.a, vb});
      } else {
        const int v = static_cast<int>(out_.vertices.size());
        out_.vertices.push_back({{Snap(c.point.x), Snap(c.point.y)}});
        sets_.Add();
        cuts_.push_back({i, c.a, v});
        cuts_.push_back({j, c.b, v});
      }
    }
  }

  void SortCuts() {
    firstCut_.assign(arcs_.size() + 1, 0);
    for (const Cut& c : cuts_) ++firstCut_[At(c.arc) + 1];
    for (std::size_t i = 1; i < firstCut_.size(); ++i) firstCut_[i] += firstCut_[i - 1];
    std::vector<Cut> sorted(cuts_.size());
    std::vector<int> place(firstCut_.begin(), firstCut_.end() - 1);
    for (const Cut& c : cuts_) sorted[At(place[At(c.arc)]++)] = c;
    cuts_ = std::move(sorted);
    for (std::size_t i = 0; i + 1 < firstCut_.size(); ++i) {
      if (firstCut_[i + 1] - firstCut_[i] < 2) continue;
      std::sort(cuts_.begin() + firstCut_[i], cuts_.begin() + firstCut_[i + 1],
                [](const Cut& p, const Cut& q) { return p.t != q.t ? p.t < q.t : p.vertex < q.vertex; });
    }
  }

  const DPoint& Place(int v) { return out_.vertices[At(sets_.Find(v))].p; }

  /// Consecutive cuts of one arc within the contact distance are one vertex. Any two nearly equal crossings
  /// share an arc, so this finds them all.
  void UniteAlongArcs() {
    const double limit = contact_ * contact_;
    for (const int i : live_) {
      const Arc& arc = arcs_[At(i)];
      const int begin = firstCut_[At(i)], end = firstCut_[At(i) + 1];
      if (begin == end && !Tiny(arc)) continue;
      int last = arc.v0;
      double lastT = 0;
      for (int k = begin; k <= end; ++k) {
        const int v = k < end ? cuts_[At(k)].vertex : arc.v1;
        const double t = k < end ? cuts_[At(k)].t : 1;
        const double sqrd = TavMath::DistanceSqrd(Place(last), Place(v));
        if (sqrd <= limit) {
          sets_.Unite(last, v);
        } else if (sqrd <= kCrowdedContacts * kCrowdedContacts * limit) {
          MarkAlongside(i, lastT, t);
        }
        last = v;
        lastT = t;
      }
    }
  }

  bool Tiny(const Arc& arc) const {
    return TavMath::DistanceSqrd(arc.curve.p[0], arc.curve.p[3]) <= contact_ * contact_;
  }

  void MakePieces() {
    out_.edges.reserve(arcs_.size() + cuts_.size());
    for (const int live : live_) {
      const std::size_t i = At(live);
      const Arc& arc = arcs_[i];
      const Curve& segment = in_.segments[At(arc.segment)].curve;
      int v = sets_.Find(arc.v0);
      double t = arc.t0;
      for (int k = firstCut_[i]; k <= firstCut_[i + 1]; ++k) {
        const bool last = k == firstCut_[i + 1];
        const int to = sets_.Find(last ? arc.v1 : cuts_[At(k)].vertex);
        if (to == v) {
          // A piece too short to exist: the one before it takes its parameters over.
          if (last && t != arc.t0) out_.edges.back().t1 = arc.t1;
          continue;
        }
        const double tTo = last ? arc.t1 : arc.t0 + cuts_[At(k)].t * (arc.t1 - arc.t0);
        Edge e{arc.curve, arc.segment, t, tTo, v, to, steps_[i], arc.open};
        if (t != arc.t0 || !last) {
          const double width = arc.t1 - arc.t0, high = last ? 1 : cuts_[At(k)].t;
          e.curve =
              mode_ == Mode::again ? Part(arc.curve, (t - arc.t0) / width, high) : Part(segment, t, tTo);
        }
        const DPoint &from = out_.vertices[At(v)].p, &end = out_.vertices[At(to)].p;
        const double straight = kStraightContacts * contact_;
        if (TavMath::DistanceSqrd(from, end) < straight * straight) {
          e.curve = Curve::Line(from, end);
        } else {
          MoveEnds(e.curve, from, end);
        }
        out_.edges.push_back(e);
        v = to;
        t = tTo;
      }
    }
  }

  /// Groups the outgoing half-edges by vertex.
  void Link() {
    out_.first.assign(out_.vertices.size() + 1, 0);
    for (const Edge& e : out_.edges) {
      ++out_.first[At(e.v0) + 1];
      ++out_.first[At(e.v1) + 1];
    }
    for (std::size_t i = 1; i < out_.first.size(); ++i) out_.first[i] += out_.first[i - 1];
    out_.outgoing.resize(out_.edges.size() * 2);
    std::vector<int> place(out_.first.begin(), out_.first.end() - 1);
    for (int half = 0; half < static_cast<int>(out_.outgoing.size()); ++half) {
      out_.outgoing[At(place[At(out_.From(half))]++)] = half;
    }
  }

  bool Coincident(const Edge& e, const Edge& f) const {
    if (e.curve.line && f.curve.line) return true;
    const double limit = kCoincidentContacts * contact_;
    for (const double t : {0.5, 0.25, 0.75}) {
      const DPoint p = Evaluate(e.curve, t), q = Evaluate(f.curve, t);
      if (TavMath::DistanceSqrd(p, Evaluate(f.curve, Project(f.curve, p))) > limit * limit) return false;
      if (TavMath::DistanceSqrd(q, Evaluate(e.curve, Project(e.curve, q))) > limit * limit) return false;
    }
    return true;
  }

  /// One edge for each bundle of coincident ones: the earliest in the input carries all their steps. Edges
  /// that no longer separate anything vanish. True when any did.
  bool MergeCoincident() {
    bool merged = false;
    struct Spoke {
      int to, half;
    };
    std::vector<Spoke> spokes;
    for (int v = 0; v + 1 < static_cast<int>(out_.first.size()); ++v) {
      const int begin = out_.first[At(v)], end = out_.first[At(v) + 1];
      if (end - begin < 2) continue;
      spokes.clear();
      for (int k = begin; k < end; ++k) {
        const int half = out_.outgoing[At(k)], to = out_.To(half);
        if (to > v) spokes.push_back({to, half});
      }
      if (spokes.size() < 2) continue;
      // Most vertices have two spokes to different places.
      if (spokes.size() == 2 && spokes[0].to != spokes[1].to) continue;
      std::sort(spokes.begin(), spokes.end(),
                [](const Spoke& g, const Spoke& h) { return g.to != h.to ? g.to < h.to : g.half < h.half; });
      for (std::size_t i = 0; i < spokes.size(); ++i) {
        if (out_.edges[At(spokes[i].half >> 1)].segment < 0) continue;
        for (std::size_t j = i + 1; j < spokes.size() && spokes[j].to == spokes[i].to; ++j) {
          merged |= TryMerge(spokes[i].half, spokes[j].half);
        }
      }
    }
    if (merged) DropMerged();
    return merged;
  }

  bool TryMerge(int g, int h) {
    const int i = g >> 1, j = h >> 1;
    Edge &e = out_.edges[At(i)], &f = out_.edges[At(j)];
    if (e.segment < 0 || f.segment < 0 || !Coincident(e, f)) return false;
    if (mergedInto_.empty()) mergedInto_.assign(out_.edges.size(), -1);
    const bool fRides = f.open;  // an open edge rides on a closed one, or on an earlier open one
    if (e.open || f.open) {
      out_.riders.push_back({fRides ? f : e, fRides ? i : j});
      mergedInto_[At(fRides ? j : i)] = fRides ? i : j;
      (fRides ? f : e).segment = -1;
      return true;
    }
    const bool sameWay = ((g ^ h) & 1) == 0;
    e.step = sameWay ? e.step + f.step : e.step - f.step;
    f.step = {};
    f.segment = -1;
    mergedInto_[At(j)] = i;
    return true;
  }

  /// Removes the edges that were merged into others and those that no longer separate anything. A rider whose
  /// host goes becomes an edge of its own.
  void DropMerged() {
    const auto vanishes = [](const Edge& e) { return e.segment < 0 || (e.step == Winding{} && !e.open); };
    std::vector<EdgeSet::Rider> riders;
    for (EdgeSet::Rider& rider : out_.riders) {
      while (mergedInto_[At(rider.host)] >= 0) rider.host = mergedInto_[At(rider.host)];
      if (!vanishes(out_.edges[At(rider.host)])) {
        riders.push_back(rider);
        continue;
      }
      mergedInto_[At(rider.host)] = static_cast<int>(out_.edges.size());  // later riders ride on this one
      mergedInto_.push_back(-1);
      out_.edges.push_back(rider.edge);
    }
    std::vector<int> index(out_.edges.size(), -1);
    int kept = 0;
    for (std::size_t i = 0; i < index.size(); ++i) {
      if (!vanishes(out_.edges[i])) index[i] = kept++;
    }
    for (EdgeSet::Rider& rider : riders) rider.host = index[At(rider.host)];
    out_.riders = std::move(riders);
    std::erase_if(out_.edges, vanishes);
  }

  const Collection& in_;
  const std::vector<Arc>& arcs_;
  double contact_;
  VertexSets sets_;
  PairCrossing pair_;
  std::vector<Contact> contacts_;
  std::vector<Cut> cuts_;
  std::vector<int> firstCut_;
  Mode mode_;
  std::vector<char> touched_;        // of each subpath
  std::vector<Interval> alongside_;  // of each arc; empty when no arc has any
  std::vector<Winding> steps_;       // of each arc
  std::vector<char> dead_;           // arcs folded into an equal one
  std::vector<int> live_;            // the others
  std::vector<int> mergedInto_;      // of each edge: the edge that carries it; empty until something merges
  std::int64_t looks_ = 0;           // how many more near arcs may be looked at
  EdgeSet out_;
};

}  // namespace

EdgeSet MakeEdges(const Collection& collection, double contact, bool thorough) {
  return Splitter(collection, collection.arcs, collection.vertices, contact,
                  thorough ? Splitter::Mode::thorough : Splitter::Mode::plain)
      .Run();
}

EdgeSet CrossAgain(const Collection& collection, const EdgeSet& edges, double contact) {
  std::vector<Arc> arcs;
  arcs.reserve(edges.edges.size() + edges.riders.size());
  const auto add = [&](const Edge& e) {
    arcs.push_back({e.curve, e.segment, e.t0, e.t1, e.v0, e.v1, Bend(e.curve), IsStraight(e.curve, kStraight),
                    e.open, e.step, BulgeSide(e.curve)});
  };
  for (const Edge& e : edges.edges) add(e);
  for (const EdgeSet::Rider& rider : edges.riders) add(rider.edge);
  EdgeSet again = Splitter(collection, arcs, edges.vertices, contact, Splitter::Mode::again).Run();
  again.loops = edges.loops;
  return again;
}

}  // namespace Lumo::Planar
