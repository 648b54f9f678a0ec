// Unions of pairs of shapes, compared with Clipper on the same shapes flattened to 1/2400 of their size (its
// flattening counted, as a drawing program would have to do it). Shapes are the elements of SVG drawings;
// without a drawing, random self-crossing loops. Areas are compared before times are believed.
//
//   peers_boolean [FILE.svg ...]    script/corpus fetches icons into build/corpus
#include <cmath>
#include <cstdio>
#include <ctime>
#include <polyclipping/clipper.hpp>
#include <vector>

#include "input_error.h"
#include "lumo/boolean.h"
#include "lumo/measure.h"
#include "support/generators.h"
#include "support/path_builder.h"
#include "svg_read.h"

namespace {

using TavMath::DPoint;
using Path = Lumo::PolycurveT<DPoint>;

/// Processor time of this program: what else the machine does counts for neither side.
double Now() { return static_cast<double>(std::clock()) * 1e6 / CLOCKS_PER_SEC; }
double Microseconds(double since) { return Now() - since; }

double Size(const Path& path) {
  const auto box = path.GetLooseBBox();
  return std::fmax(box.maxx - box.minx, box.maxy - box.miny);
}

constexpr double kUnits = 1e3;  // Clipper's integers to a document unit

ClipperLib::Paths Flatten(const Path& path, double tolerance) {
  ClipperLib::Paths out;
  const auto add = [&out](const DPoint& p) {
    out.back().emplace_back(std::llround(p.x * kUnits), std::llround(p.y * kUnits));
  };
  std::vector<DPoint> points(300);
  for (std::size_t k = 0; k < path.GetPointCount(); ++k) {
    const NODETYPE type = path.GetNodeType(k);
    if (type.IsMove()) out.emplace_back();
    if (type.IsControl()) continue;
    if (!type.IsCurve()) {
      add(path.GetPoint(k));
      continue;
    }
    const int n =
        TavMath::AdaptiveBezierToLines(path.GetPoints() + k - 3, points.data(), tolerance * tolerance, 300);
    for (int i = 1; i <= n; ++i) add(points[static_cast<std::size_t>(i)]);
  }
  return out;
}

std::vector<Path> Load(int files, char** names) {
  std::vector<Path> paths;
  for (int k = 0; k < files; ++k) {
    try {
      for (const tool::Element& element : tool::ReadSvg(names[k]).elements) {
        if (Size(element.path) > 0) paths.push_back(element.path);
      }
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s\n", error.what());
    }
  }
  if (files > 0) return paths;
  test::Bits bits(1);
  test::PathOptions options;
  options.open = options.loneMoves = options.degenerate = options.flags = false;
  for (int k = 0; k < 2000; ++k) {
    const auto p = test::RandomPath<DPoint>(bits, options);
    paths.emplace_back(p.points.data(), p.types.data(), p.points.size());
  }
  return paths;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<Path> paths = Load(argc - 1, argv + 1);
  double lumo = 0, clipper = 0;
  std::size_t pairs = 0, lumoNodes = 0, clipperNodes = 0, differ = 0;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    const Path &a = paths[i], &b = paths[(i * 7919 + 13) % paths.size()];
    if (a.IsEmpty() || b.IsEmpty()) continue;
    ++pairs;
    auto start = Now();
    const Path result = Lumo::Union(a, b);
    lumo += Microseconds(start);
    const double tolerance = std::fmax(Size(a), Size(b)) / 2400;
    start = Now();
    ClipperLib::Clipper peer;
    peer.AddPaths(Flatten(a, tolerance), ClipperLib::ptSubject, true);
    peer.AddPaths(Flatten(b, tolerance), ClipperLib::ptClip, true);
    ClipperLib::Paths flat;
    peer.Execute(ClipperLib::ctUnion, flat, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
    clipper += Microseconds(start);
    double area = 0;
    for (const auto& outline : flat) {
      area += ClipperLib::Area(outline) / (kUnits * kUnits);
      clipperNodes += outline.size();
    }
    lumoNodes += result.GetPointCount();
    const double ours = std::fabs(
        Lumo::GetArea(result.GetPoints(), result.GetNodeTypes(), static_cast<int>(result.GetPointCount())));
    // A flattened outline is off by its length times the tolerance; nothing here is longer than some ten
    // sizes.
    if (std::fabs(ours - std::fabs(area)) > 24000 * tolerance * tolerance) ++differ;
  }
  const auto n = static_cast<double>(pairs);
  std::printf(
      "%zu unions: Lumo %.1f us, Clipper %.1f us each (%.2f times); nodes %zu and %zu; areas differ: %zu\n",
      pairs, lumo / n, clipper / n, clipper / lumo, lumoNodes, clipperNodes, differ);
  return differ == 0 ? 0 : 1;
}
