// Offsets of real drawings and of random outlines against what an offset is, without the engine's own code:
// distances to the flattened source, and Clipper's offset of it. Each element is scaled to the size that the
// program gives drawings, its outlines are taken level by level (the outer ones; the islands in their holes),
// and the ground of each outline is what Clipper's union under the non-zero rule says. For each distance:
//
//  near      every point sampled along the result lies at the distance from the ground's edge;
//  reached   every point of the true offset, sampled along the ground's edge and round its corners, has a
//            point of the result near it, unless the ground (or gap) there is thinner than the tolerance;
//  clean     the result neither crosses itself nor has specks, backward steps or nodes to no purpose;
//  area      Clipper's offset of the same ground differs from it by the tolerance along its outline at most;
//  order     a larger distance contains a smaller one; miter contains round contains bevel, outwards;
//  start     another start node and the other direction give the same;
//  nodes     no more nodes than twice the source's and its joins.
//
//   check_offset [--list] [--most N] [--random N] [--error E] [--draw FOLDER] [FILE.svg ...]

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "input_error.h"
#include "lumo/boolean.h"
#include "lumo/measure.h"
#include "lumo/offset.h"
#include "lumo/offset_corners.h"
#include "lumo/repair.h"
#include "lumo/subpath_hierarchy.h"
#include "offset_levels.h"
#include "svg_read.h"
#include "to_clipper.h"

namespace {

using namespace check;

/// Failures by name, listed as they come when asked for.
class Tally {
 public:
  bool list = false;
  std::string folder;  ///< for drawings of failures
  void Checked(const std::string& what) { ++rows_[what].checked; }
  /// `place`: where the worst is, when it is in one place.
  void Failed(const std::string& what, const Level& level, const Result& r, double value,
              const DPoint* place = nullptr) {
    ++rows_[what].failed;
    if (!folder.empty()) Draw(folder + "/" + std::to_string(drawn_++) + ".svg", level.path, r.path, place);
    Worst(what, value);
    if (!list) return;
    std::printf("%s: %s at %.10g: %.6g", what.c_str(), level.name.c_str(), r.offset, value);
    if (place != nullptr) std::printf(" near %.1f %.1f", place->x, place->y);
    std::printf("\n");
  }
  void Worst(const std::string& what, double value) {
    rows_[what].worst = (std::max)(rows_[what].worst, value);
  }
  void Print() const {
    for (const auto& [what, row] : rows_)
      std::printf("%-28s checked %9zu  failed %6zu  worst %.4g\n", what.c_str(), row.checked, row.failed,
                  row.worst);
  }

 private:
  struct Row {
    std::size_t checked = 0, failed = 0;
    double worst = 0;
  };
  std::map<std::string, Row> rows_;
  std::size_t drawn_ = 0;
};

// --- the checks

double WorstDepth(const Level& level, const Result& r, DPoint& place) {
  double worst = 0;
  for (const Segment& s : r.segments)
    for (int k = 0; k < 6; ++k) {
      const DPoint p = s.At(k / 6.0);
      const double depth = std::abs(level.Depth(p, r.offset));
      if (depth > worst) worst = depth, place = p;
    }
  return worst;
}

void CheckNear(const Level& level, const Result& r, double error, Tally& tally) {
  DPoint place{0, 0};
  double worst = WorstDepth(level, r, place);
  if (worst > error + kFlat + kRepair + kGrid) worst = WorstDepth(level.Finer(), r, place);
  tally.Checked("near");
  tally.Worst("near", worst / error);
  if (worst > error + kFlat + kRepair + kGrid) {
    const bool connected = worst <= error + kConnect + kFlat + kRepair + kGrid;
    tally.Failed(connected ? "near, within connecting" : "near", level, r, worst / error, &place);
  }
}

/// Calls `visit` with points of the raw parallel line of a ground's edge: beside chords and round corners.
template <class Visit>
void AlongParallel(const Ground& ground, double offset, std::size_t most, const Visit& visit) {
  std::size_t count = 0;
  for (const ClipperLib::Path& path : ground.polygons) count += path.size();
  const std::size_t step = 1 + count / most;
  const auto point = [](const ClipperLib::IntPoint& p) {
    return DPoint{static_cast<double>(p.X) / kFine, static_cast<double>(p.Y) / kFine};
  };
  for (const ClipperLib::Path& path : ground.polygons) {
    const std::size_t n = path.size();
    for (std::size_t k = 0; k < n; ++k) {
      const DPoint a = point(path[k]), b = point(path[(k + 1) % n]), c = point(path[(k + 2) % n]);
      // The ground lies on the left: outwards is the right.
      const DVector u = Normalized(b - a), v = Normalized(c - b);
      const auto out = [&](const DVector& along) { return offset * DVector{along.y, -along.x}; };
      const double turn = std::atan2(Cross(u, v), Dot(u, v));
      const bool corner = (turn > 0) == (offset > 0) && std::abs(turn) > 0.1;
      if (k % step != 0 && !corner) continue;
      for (const double t : {0.1, 0.5, 0.9}) visit(a + t * (b - a), out(u));
      if (!corner) continue;
      for (int i = 0; i <= 4; ++i) {
        const double angle = turn * i / 4, cs = std::cos(angle), sn = std::sin(angle);
        visit(b, out({u.x * cs - u.y * sn, u.x * sn + u.y * cs}));
      }
    }
  }
}

/// How far the worst of the points that the result must reach is from it; 0 when it reaches all.
double WorstMiss(const Level& level, const Result& r, double error, DPoint& place) {
  const double allowed = error + kConnect + kFlat + kRepair + kGrid;
  double worst = 0;
  for (const Ground& ground : level.grounds)
    AlongParallel(ground, r.offset, 400, [&](const DPoint& foot, const DVector& normal) {
      const DPoint q = foot + normal;
      if (level.Depth(q, r.offset) < -0.5) return;
      const double d = r.chords.Distance(q, 1e9);
      if (d <= allowed) return;
      // Where nothing around is deeper (or, covered, emptier) than the tolerance, it may be lost.
      const bool covered = r.chords.Winding(q) != 0;
      const DVector unit = (r.offset > 0 ? 1.0 : -1.0) * Normalized(normal);
      const double there = level.Depth(q + (covered ? allowed : -allowed) * unit, r.offset);
      if (covered ? there < 0.9 * allowed : there > -0.9 * allowed) return;
      if (d > worst) worst = d, place = q;
    });
  return worst;
}

void CheckReached(const Level& level, const Result& r, double error, Tally& tally) {
  DPoint place{0, 0};
  double worst = WorstMiss(level, r, error, place);
  if (worst > 0) worst = WorstMiss(level.Finer(), r, error, place);
  tally.Checked("reached");
  if (worst > 0) tally.Failed("reached", level, r, worst / error, &place);
}

/// The parameters at which two segments cross near two given ones; false when they do not.
bool Refine(const Segment& f, const Segment& g, double& s, double& t) {
  for (int k = 0; k < 12; ++k) {
    const double h = 1e-5;
    const DVector df = (1 / (2 * h)) * (f.At(s + h) - f.At(s - h)),
                  dg = (1 / (2 * h)) * (g.At(t + h) - g.At(t - h));
    const DVector gap = g.At(t) - f.At(s);
    const double det = Cross(df, dg);
    if (det == 0) return false;
    s += Cross(gap, dg) / det, t += Cross(gap, df) / det;
    if (!(std::abs(s) < 2) || !(std::abs(t) < 2)) return false;
  }
  return s >= 0 && s <= 1 && t >= 0 && t <= 1 && TavMath::Distance(f.At(s), g.At(t)) < 1e-3;
}

/// How far from all ends the result crosses itself; 0 when it does not.
double CrossingDepth(const Result& r) {
  double deepest = 0;
  for (const Chord& c : r.chords.Chords())
    r.chords.Near(c, [&](const Chord& o) {
      if (o.segment < c.segment || (o.segment == c.segment && o.from <= c.to + 1e-9)) return;
      const auto side = [](const Chord& of, const DPoint& p) { return Cross(of.b - of.a, p - of.a); };
      if (!(side(c, o.a) * side(c, o.b) < 0 && side(o, c.a) * side(o, c.b) < 0)) return;
      const Segment &f = r.segments[static_cast<std::size_t>(c.segment)],
                    &g = r.segments[static_cast<std::size_t>(o.segment)];
      const double sc = side(o, c.a) / (side(o, c.a) - side(o, c.b)),
                   so = side(c, o.a) / (side(c, o.a) - side(c, o.b));
      double s = c.from + sc * (c.to - c.from), t = o.from + so * (o.to - o.from);
      if (!Refine(f, g, s, t)) return;
      const DPoint at = f.At(s);
      const auto room = [&](const Segment& x) {
        return (std::min)(TavMath::Distance(at, x.p[0]), TavMath::Distance(at, x.p[3]));
      };
      deepest = (std::max)(deepest, (std::max)(room(f), room(g)));
    });
  return deepest;
}

DVector StartTangent(const Segment& s) {
  return Normalized(s.p[1] != s.p[0]   ? s.p[1] - s.p[0]
                    : s.p[2] != s.p[0] ? s.p[2] - s.p[0]
                                       : s.p[3] - s.p[0]);
}
DVector EndTangent(const Segment& s) {
  return Normalized(s.p[2] != s.p[3]   ? s.p[3] - s.p[2]
                    : s.p[1] != s.p[3] ? s.p[3] - s.p[1]
                                       : s.p[3] - s.p[0]);
}

void CheckClean(const Level& level, const Result& r, double error, Tally& tally) {
  tally.Checked("clean: crossing");
  const double deep = CrossingDepth(r);
  if (deep > 1)
    tally.Failed("clean: crossing", level, r, deep);
  else if (deep > 0)
    tally.Failed("clean: crossing at a node", level, r, deep);
  if (!Lumo::IsValidCurve(r.path.GetNodeTypes(), r.path.GetPointCount()))
    tally.Failed("clean: invalid", level, r, 0);
  DPoint place{0, 0};
  double specks = 0, tiny = 0, back = 0, straight = 0;
  for (const auto& subpath : SubpathsOf(r.path)) {
    const Path one = StartingAt(subpath, 0);
    if (std::abs(Area(one)) < 0.125 * error * one.GetLength()) ++specks;
    for (std::size_t k = 0; k < subpath.size(); ++k) {
      const Segment &f = subpath[k], &g = subpath[(k + 1) % subpath.size()];
      if (TavMath::Distance(f.p[0], f.p[3]) < 2 && subpath.size() > 1) ++tiny, place = f.p[3];
      const DVector u = EndTangent(f), v = StartTangent(g);
      if (Dot(u, v) < -0.99999 && TavMath::Distance(f.p[0], f.p[3]) > 20 &&
          TavMath::Distance(g.p[0], g.p[3]) > 20)
        ++back, place = f.p[3];
      if (f.line && g.line && Dot(u, v) > 0 &&
          std::abs(Cross(u, v)) * TavMath::Distance(g.p[0], g.p[3]) < 0.1)
        ++straight;
    }
  }
  if (specks > 0) tally.Failed("clean: specks", level, r, specks);
  if (tiny > 0) tally.Failed("clean: tiny segments", level, r, tiny, &place);
  if (back > 0) tally.Failed("clean: turning back", level, r, back, &place);
  if (straight > 0) tally.Failed("clean: nodes on lines", level, r, straight);
}

double AreaOf(const ClipperLib::Paths& paths) {
  double area = 0;
  for (const ClipperLib::Path& path : paths) area += ClipperLib::Area(path);
  return area / (kFine * kFine);
}

void CheckArea(const Level& level, const Result& r, double error, Tally& tally) {
  ClipperLib::Paths truth;
  for (const Ground& ground : level.grounds) {
    ClipperLib::ClipperOffset offset(2.0, kFlat * kFine);
    offset.AddPaths(ground.polygons, ClipperLib::jtRound, ClipperLib::etClosedPolygon);
    ClipperLib::Paths one;
    offset.Execute(one, r.offset * kFine);
    truth.insert(truth.end(), one.begin(), one.end());
  }
  ClipperLib::Clipper clipper;
  clipper.AddPaths(truth, ClipperLib::ptSubject, true);
  clipper.AddPaths(Integers(r.path, kFlat), ClipperLib::ptClip, true);
  ClipperLib::Paths differ;
  clipper.Execute(ClipperLib::ctXor, differ, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
  double perimeter = 0;
  for (const Chord& c : ChordsOf(truth)) perimeter += TavMath::Distance(c.a, c.b);
  perimeter = (std::max)(perimeter, r.path.GetLength());
  const double area = std::abs(AreaOf(differ)), allowed = error * perimeter;
  tally.Checked("area");
  if (allowed > 0) tally.Worst("area", area / allowed);
  if (area > allowed) tally.Failed("area", level, r, area / allowed);
}

/// Whether no sampled point of the smaller result lies outside the larger by more than the tolerance.
bool Contains(const Result& larger, const Result& smaller, double tolerance, double& worst) {
  for (const Segment& s : smaller.segments)
    for (const double t : {0.0, 0.5}) {
      const DPoint p = s.At(t);
      if (larger.chords.Winding(p) != 0) continue;
      worst = (std::max)(worst, larger.chords.Distance(p, 1e9));
    }
  return worst <= tolerance;
}

void CheckOrder(const Level& level, const std::vector<Result>& results, double error, Tally& tally) {
  for (std::size_t k = 0; k + 1 < results.size(); ++k) {
    const Result &small = results[k], &large = results[k + 1];
    const double e =
        MaxError(large.offset, error) + MaxError(small.offset, error) + 2 * kConnect + 2 * kGrid + kFlat;
    double worst = 0;
    tally.Checked("order");
    if (!Contains(large, small, (std::max)(0.0, e - (large.offset - small.offset)), worst))
      tally.Failed("order", level, small, worst / e);
    const double slack = (std::max)(0.0, e - (large.offset - small.offset)) * small.path.GetLength();
    if (std::abs(Area(small.path)) > std::abs(Area(large.path)) + slack)
      tally.Failed("order: area", level, small, std::abs(Area(small.path)) / std::abs(Area(large.path)));
  }
}

void CheckJoins(const Level& level, const Result& round, double error, Tally& tally) {
  const double e = MaxError(round.offset, error), allowed = 2 * (e + kConnect + kGrid) + kFlat;
  const Result miter(round.offset, OffsetOf(level.path, round.offset, error,
                                            std::make_unique<Lumo::MiteredCorner>(30, nullptr)));
  const Result bevel(round.offset,
                     OffsetOf(level.path, round.offset, error, std::make_unique<Lumo::Bevel>()));
  double worst = 0;
  tally.Checked("order: joins");
  if (!Contains(miter, round, allowed, worst)) {
    // A miter beyond its limit is bevelled: only ask where it is not.
    double sharpest = 0;
    const Result ray(round.offset, OffsetOf(level.path, round.offset, error,
                                            std::make_unique<Lumo::MiteredCorner>(0, nullptr)));
    if (!Contains(ray, round, allowed, sharpest))
      tally.Failed("order: joins, miter", level, round, sharpest / e);
  }
  worst = 0;
  if (!Contains(round, bevel, allowed, worst)) tally.Failed("order: joins, bevel", level, round, worst / e);
}

void CheckStart(const Level& level, const Result& r, double error, std::mt19937_64& random, Tally& tally) {
  Path turned;
  for (const auto& subpath : SubpathsOf(level.path)) {
    Path one = StartingAt(subpath, random() % subpath.size());
    if (random() % 2) one.Reverse();
    turned.PushBack(one);
  }
  const Result other(r.offset, OffsetOf(turned, r.offset, error));
  const double e = MaxError(r.offset, error), allowed = 2 * (e + kConnect + kGrid) + kFlat;
  tally.Checked("start");
  double worst = 0, back = 0;
  const bool same = Contains(other, r, allowed, worst) && Contains(r, other, allowed, back);
  if (!same) tally.Failed("start", level, r, (std::max)(worst, back) / e);
  const double slack = e * (r.path.GetLength() + other.path.GetLength()) / 2;
  if (std::abs(Area(r.path) - Area(other.path)) > slack)
    tally.Failed("start: area", level, r, (Area(r.path) - Area(other.path)) / slack);
}

void CheckNodes(const Level& level, const Result& r, Tally& tally, std::size_t& source, std::size_t& result) {
  std::size_t nodes = 0, joins = 0;
  for (const auto& subpath : SubpathsOf(level.path)) {
    nodes += subpath.size();
    const double sign = Area(StartingAt(subpath, 0)) > 0 ? -1 : 1;  // positive areas run clockwise
    for (std::size_t k = 0; k < subpath.size(); ++k) {
      const DVector u = EndTangent(subpath[k]), v = StartTangent(subpath[(k + 1) % subpath.size()]);
      const double turn = sign * std::atan2(Cross(u, v), Dot(u, v)) * (r.offset > 0 ? 1 : -1);
      if (turn > 0.03) joins += turn > 1.58 ? 2 : 1;
    }
  }
  source += 2 * nodes + joins, result += r.segments.size();
  tally.Checked("nodes");
  if (r.segments.size() > 2 * nodes + joins)
    tally.Failed("nodes", level, r,
                 static_cast<double>(r.segments.size()) / static_cast<double>(2 * nodes + joins));
}

/// Shares of the size; each element's own are up to a third larger or smaller.
constexpr double kShares[] = {-0.05, -0.01, -0.0001, 0.0001, 0.003, 0.02, 0.15, 3};

struct Totals {
  std::size_t levels = 0, runs = 0, allowedNodes = 0, nodes = 0;
};

void CheckLevel(const Level& level, double error, std::mt19937_64& random, Tally& tally, Totals& totals) {
  const double vary = 0.75 + 0.5 * static_cast<double>(random() % 1000) / 1000;
  std::vector<Result> results;
  ++totals.levels;
  for (const double share : kShares) {
    const double offset = std::abs(share) == 3 ? 3 * kSize : share * vary * kSize,
                 e = MaxError(offset, error);
    results.emplace_back(offset, OffsetOf(level.path, offset, error));
    const Result& r = results.back();
    ++totals.runs;
    CheckNear(level, r, e, tally);
    CheckReached(level, r, e, tally);
    CheckClean(level, r, e, tally);
    CheckArea(level, r, e, tally);
    CheckStart(level, r, error, random, tally);
    CheckNodes(level, r, tally, totals.allowedNodes, totals.nodes);
    if (offset > 0) CheckJoins(level, r, error, tally);
  }
  CheckOrder(level, results, error, tally);
}

/// Scaled to the size and moved to the origin; empty when there is no size.
Path AtSize(Path path) {
  if (path.IsEmpty()) return {};
  const auto box = path.GetTightBBox();
  const double size = std::fmax(box.maxx - box.minx, box.maxy - box.miny);
  if (!(size > 0)) return {};
  const double f = kSize / size;
  path.TransformPoints({f, 0, 0, f, -box.minx * f, -box.miny * f});
  return path;
}

void CheckElement(const std::string& name, const Path& element, double error, std::uint64_t seed,
                  Tally& tally, Totals& totals) {
  std::mt19937_64 random(seed);
  const Path path = AtSize(element);
  if (path.IsEmpty()) return;
  const std::vector<Path> levels = LevelsOf(path);
  for (std::size_t k = 0; k < levels.size(); ++k) {
    const Level level(name + (k == 0 ? "" : ", level " + std::to_string(k)), levels[k]);
    if (!level.grounds.empty()) CheckLevel(level, error, random, tally, totals);
  }
}

/// Polygons and curved outlines, round or crossing themselves.
Path RandomPath(std::mt19937_64& random) {
  const auto unit = [&] { return static_cast<double>(random() >> 11) * 0x1p-53; };
  const int n = 3 + static_cast<int>(random() % 12);
  const bool blob = random() % 2, curves = random() % 3 != 0;
  std::vector<DPoint> at;
  for (int k = 0; k < n; ++k) {
    const double r = 0.2 + 0.8 * unit(), a = 2 * std::acos(-1.0) * k / n;
    at.push_back(blob ? DPoint{r * std::cos(a), r * std::sin(a)} : DPoint{2 * unit(), 2 * unit()});
  }
  const double bulge = std::pow(10.0, -2 + 2 * unit());
  Path path;
  std::vector<Segment> subpath;
  for (int k = 0; k < n; ++k) {
    const DPoint &a = at[static_cast<std::size_t>(k)], &b = at[static_cast<std::size_t>((k + 1) % n)];
    Segment s{{a, a, b, b}, !curves || random() % 4 == 0, k == 0, NODETYPE(0)};
    if (!s.line)
      for (const int i : {1, 2})
        s.p[i] = a + (i / 3.0) * (b - a) + DVector{bulge * (unit() - 0.5), bulge * (unit() - 0.5)};
    subpath.push_back(s);
  }
  return StartingAt(subpath, 0);
}

}  // namespace

int main(int argc, char** argv) {
  Tally tally;
  Totals totals;
  std::size_t most = 1000000, elements = 0;
  double error = 0;
  for (int k = 1; k < argc && elements < most; ++k) {
    const auto is = [&](const char* option) { return std::strcmp(argv[k], option) == 0 && k + 1 < argc; };
    if (std::strcmp(argv[k], "--list") == 0) {
      tally.list = true;
    } else if (is("--most")) {
      most = static_cast<std::size_t>(std::atol(argv[++k]));
    } else if (is("--error")) {
      error = std::atof(argv[++k]);
    } else if (is("--draw")) {
      tally.folder = argv[++k];
    } else if (is("--random")) {
      const int count = std::atoi(argv[++k]);
      for (int i = 0; i < count; ++i, ++elements) {
        std::mt19937_64 random(static_cast<std::uint64_t>(i));
        CheckElement("random " + std::to_string(i), RandomPath(random), error, static_cast<std::uint64_t>(i),
                     tally, totals);
      }
    } else {
      try {
        for (const tool::Element& element : tool::ReadSvg(argv[k]).elements) {
          if (elements++ >= most) break;
          CheckElement(std::string(argv[k]) + " " + element.id, element.path, error, elements, tally, totals);
        }
      } catch (const std::exception& problem) {
        std::fprintf(stderr, "%s\n", problem.what());
      }
    }
  }
  if (elements == 0)
    return std::fprintf(stderr,
                        "usage: check_offset [--list] [--most N] [--random N] [--error E] FILE.svg ...\n"),
           1;
  std::printf("%zu elements, %zu levels, %zu offsets; nodes %zu of %zu allowed\n", elements, totals.levels,
              totals.runs, totals.nodes, totals.allowedNodes);
  tally.Print();
  return 0;
}
