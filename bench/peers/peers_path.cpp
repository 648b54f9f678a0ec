// Whole-path queries on real drawings beside lib2geom: nearest point, fill, exact box and length, over the
// same paths and points in the same run. The answers are compared before anything is timed: a query point
// nearer to the outline than rounding is left out of the fill comparison, since either answer is right there.
//
//   peers_path FILE.svg ...    script/corpus fetches icons into build/corpus

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

#include "input_error.h"
#include "lumo/measure.h"
#include "svg_read.h"
#include "to_lib2geom.h"

namespace {

using TavMath::DPoint;
using Path = Lumo::PolycurveT<DPoint>;
using Closest = Lumo::ClosestPoint<DPoint, Lumo::CurvePosition>;

constexpr int kQueries = 16;               // points for each path, in its box
constexpr double kSame = 1e-9;             // of the path's size: two lengths that differ by less are equal
constexpr double kLengthTolerance = 1e-9;  // asked of the peer, of the path's size

double sink = 0;  // keeps the optimiser from dropping a call

struct Case {
  Path path;
  Geom::PathVector peer;
  double size;
  DPoint queries[kQueries];
};

double Random() {
  static unsigned state = 20240603;
  return ((state = state * 1664525u + 1013904223u) >> 8) * 0x1p-24;
}

void Load(const char* file, std::vector<Case>& cases) {
  for (const tool::Element& element : tool::ReadSvg(file).elements) {
    const auto box = element.path.GetTightBBox();
    const double size = std::max(box.maxx - box.minx, box.maxy - box.miny);
    if (!(size > 0)) continue;
    Case c{element.path, ToLib2geom(element.path), size, {}};
    for (DPoint& q : c.queries) {
      q = {box.minx + (box.maxx - box.minx) * Random(), box.miny + (box.maxy - box.miny) * Random()};
    }
    cases.push_back(std::move(c));
  }
}

// ---- The queries, ours and the peer's ----

double OurNearest(const Case& c, const DPoint& q) {
  Closest found;
  c.path.FindClosestPoint(q, found);
  return std::sqrt(found.distanceSqrd);
}
double PeerNearest(const Case& c, const DPoint& q) {
  double distance = 0;
  c.peer.nearestTime(ToLib2geom(q), &distance);
  return distance;
}
bool OurInside(const Case& c, const DPoint& q) { return c.path.IsPointInShape(q); }
bool PeerInside(const Case& c, const DPoint& q) { return c.peer.winding(ToLib2geom(q)) % 2 != 0; }
double PeerLength(const Case& c) {
  double sum = 0;
  for (const Geom::Path& path : c.peer) {
    for (const Geom::Curve& curve : path) sum += curve.length(kLengthTolerance * c.size);
  }
  return sum;
}

// ---- Comparison ----

/// The even-odd answer by a polyline through many points of every curve.
bool DenseInside(const Case& c, const DPoint& q) {
  const DPoint* p = c.path.GetPoints();
  bool inside = false;
  DPoint start{}, at{};
  const auto lineTo = [&](const DPoint& to) {
    const DPoint& low = at.y < to.y ? at : to;
    const DPoint& high = at.y < to.y ? to : at;
    if (low.y < q.y && q.y <= high.y) inside ^= TavMath::Cross(high - low, q - low) > 0;
    at = to;
  };
  for (std::size_t k = 0; k < c.path.GetPointCount(); ++k) {
    const NODETYPE type = c.path.GetNodeType(k);
    if (type.IsMove()) {
      lineTo(start);
      start = at = p[k];
    } else if (type.IsLine()) {
      lineTo(p[k]);
    } else if (type.IsCurve()) {
      for (int j = 1; j < 20000; ++j) lineTo(TavMath::CubicBezier::Evaluate(p + k - 3, j / 20000.0));
      lineTo(p[k]);
    }
  }
  lineTo(start);
  return inside;
}

struct Disagreements {
  long checked = 0, ours = 0, theirs = 0;  // whose answer was the worse one
  void Take(bool ourFault, bool theirFault) {
    ++checked;
    ours += ourFault;
    theirs += theirFault;
  }
  void Print(const char* name) const {
    std::printf("%-14s %8ld compared, %ld wrong by Lumo, %ld wrong by lib2geom\n", name, checked, ours,
                theirs);
  }
};

void Compare(const std::vector<Case>& cases) {
  Disagreements nearest, inside, box, length;
  for (const Case& c : cases) {
    const double same = kSame * c.size;
    for (const DPoint& q : c.queries) {
      const double ours = OurNearest(c, q), theirs = PeerNearest(c, q);
      nearest.Take(ours > theirs + same, theirs > ours + same);
      // Open subpaths are filled as if a line closed them: the outline then is more than the segments.
      if (ours <= same || OurInside(c, q) == PeerInside(c, q)) {
        inside.Take(false, false);
      } else {
        const bool right = DenseInside(c, q);
        inside.Take(OurInside(c, q) != right, PeerInside(c, q) != right);
      }
    }
    const auto ours = c.path.GetTightBBox();
    const Geom::Rect theirs = *c.peer.boundsExact();
    // Both boxes are attained, so the larger one is the right one.
    const double in = std::max({theirs.left() - ours.minx, theirs.top() - ours.miny,
                                ours.maxx - theirs.right(), ours.maxy - theirs.bottom()});
    const double out = std::max({ours.minx - theirs.left(), ours.miny - theirs.top(),
                                 theirs.right() - ours.maxx, theirs.bottom() - ours.maxy});
    box.Take(out > same, in > same);
    const double a = c.path.GetLength(), b = PeerLength(c);
    // A subdivision's length is that of chords and control polygons: it is the peer's that is approximate.
    length.Take(false, std::abs(a - b) > 1e-6 * a);
  }
  nearest.Print("nearest point");
  inside.Print("inside");
  box.Print("exact box");
  length.Print("length to 1e-6");
}

// ---- Timing ----

/// Nanoseconds for each path. Chunks of paths count with the best of their rounds, so that a machine that
/// does other work as well disturbs the result little.
template <class Query>
double Time(const std::vector<Case>& cases, int rounds, Query query) {
  constexpr std::size_t kChunk = 50;
  double total = 0;
  for (std::size_t from = 0; from < cases.size(); from += kChunk) {
    const std::size_t end = std::min(from + kChunk, cases.size());
    double best = 1e300;
    for (int round = 0; round < rounds; ++round) {
      const auto start = std::chrono::steady_clock::now();
      for (std::size_t k = from; k < end; ++k) sink += query(cases[k]);
      const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - start;
      best = std::min(best, taken.count());
    }
    total += best;
  }
  return total / static_cast<double>(cases.size());
}

template <class Query>
auto EachPoint(Query query) {
  return [query](const Case& c) {
    double sum = 0;
    for (const DPoint& q : c.queries) sum += query(c, q);
    return sum / kQueries;
  };
}

template <class Ours, class Theirs>
void Race(const std::vector<Case>& cases, const char* name, int calls, Ours ours, Theirs theirs) {
  const double a = Time(cases, 9, ours) / calls, b = Time(cases, 5, theirs) / calls;
  std::printf("%-14s Lumo %10.1f ns   lib2geom %10.1f ns   %7.1f times\n", name, a, b, b / a);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<Case> cases;
  for (int k = 1; k < argc; ++k) {
    try {
      Load(argv[k], cases);
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s\n", error.what());
    }
  }
  if (cases.empty()) return std::fprintf(stderr, "usage: peers_path FILE.svg ...\n"), 1;
  std::size_t nodes = 0;
  for (const Case& c : cases) nodes += c.path.GetPointCount();
  std::printf("%zu paths, %.1f nodes each\n", cases.size(),
              static_cast<double>(nodes) / static_cast<double>(cases.size()));
  Compare(cases);
  Race(cases, "nearest point", kQueries, EachPoint(OurNearest), EachPoint(PeerNearest));
  Race(cases, "inside", kQueries, EachPoint(OurInside), EachPoint(PeerInside));
  Race(
      cases, "exact box", 1, [](const Case& c) { return c.path.GetTightBBox().maxx; },
      [](const Case& c) { return c.peer.boundsExact()->right(); });
  Race(
      cases, "length", 1, [](const Case& c) { return c.path.GetLength(); },
      [](const Case& c) { return PeerLength(c); });
  return sink == 12345 ? 2 : 0;
}
