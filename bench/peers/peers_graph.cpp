// Unions of pairs of shapes beside lib2geom's PathIntersectionGraph, which keeps curves as curves. Its result
// counts as a success when it reports a valid graph and its area agrees with ours; only these pairs are timed
// against each other, for it ends early when it fails.
//
//   peers_graph [FILE.svg ...]    script/corpus fetches icons into build/corpus
#include <2geom/intersection-graph.h>

#include <cmath>
#include <cstdio>
#include <vector>

#include "lumo/boolean.h"
#include "lumo/measure.h"
#include "processor_time.h"
#include "shapes.h"
#include "to_lib2geom.h"

namespace {

double Area(const Path& path) {
  return std::fabs(
      Lumo::GetArea(path.GetPoints(), path.GetNodeTypes(), static_cast<int>(path.GetPointCount())));
}

/// Areas that differ by less, as a share of the square of the size, are equal: the peer's crossings are good
/// to some 1e-6 of the size.
constexpr double kSameArea = 1e-4;

/// The ground that outlines cover by the even-odd rule: the peer promises no direction for holes.
double Ground(const Geom::PathVector& outlines) {
  Path path;
  const auto add = [&path](const Geom::Point& p, NODETYPE type) {
    path.PushBack({p[Geom::X], p[Geom::Y]}, type);
  };
  for (const Geom::Path& outline : outlines) {
    add(outline.initialPoint(), NODETYPE::kMove);
    for (const Geom::Curve& curve : outline) {
      const auto* cubic = dynamic_cast<const Geom::CubicBezier*>(&curve);
      if (cubic) {
        add((*cubic)[1], NODETYPE::kControl);
        add((*cubic)[2], NODETYPE::kControl);
      }
      add(curve.finalPoint(), NODETYPE(cubic ? NODETYPE::kCurve : NODETYPE::kLine));
    }
    path.CloseLastSubpathWithOptionalLine();
  }
  return Area(Lumo::Simplify(path, Lumo::FillRule::evenOdd));
}

/// A path as the peer wants its operands: closed outlines.
Geom::PathVector Closed(const Path& path) {
  Geom::PathVector out = ToLib2geom(path);
  for (Geom::Path& outline : out) outline.close();
  return out;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<Path> paths = LoadShapes(argc - 1, argv + 1);
  std::size_t pairs = 0, refused = 0, differ = 0, right = 0;
  double lumo = 0, peer = 0;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    // The ground of each, in outlines that do not cross: the peer knows no fill rule but that of its input.
    const Path a = Lumo::Simplify(paths[i], Lumo::FillRule::nonZero);
    const Path b = Lumo::Simplify(paths[(i * 7919 + 13) % paths.size()], Lumo::FillRule::nonZero);
    if (a.IsEmpty() || b.IsEmpty()) continue;
    ++pairs;
    double start = ProcessorTime();
    const Path result = Lumo::Union(a, b);
    const double ours = ProcessorTime() - start;
    const Geom::PathVector peerA = Closed(a), peerB = Closed(b);
    Geom::PathVector peerResult;
    start = ProcessorTime();
    try {
      Geom::PathIntersectionGraph graph(peerA, peerB);
      peerResult = graph.getUnion();
      if (!graph.valid()) {
        ++refused;
        continue;
      }
    } catch (...) {  // what it throws has no common base
      ++refused;
      continue;
    }
    const double theirs = ProcessorTime() - start;
    const double size = std::fmax(SizeOf(a), SizeOf(b));
    if (std::fabs(Area(result) - Ground(peerResult)) > kSameArea * size * size) {
      ++differ;
      continue;
    }
    ++right;
    lumo += ours;
    peer += theirs;
  }
  const auto n = static_cast<double>(right);
  std::printf(
      "%zu unions: lib2geom refused %zu, differs in area on %zu; the other %zu: Lumo %.1f us, lib2geom %.1f "
      "us "
      "each (%.2f times)\n",
      pairs, refused, differ, right, lumo / n, peer / n, peer / lumo);
}
