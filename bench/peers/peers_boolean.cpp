// Unions of pairs of shapes, compared with Clipper on the same shapes flattened to 1/2400 of their size (its
// flattening counted, as a drawing program would have to do it). Shapes are the elements of SVG drawings;
// without a drawing, random self-crossing loops. Areas are compared before times are believed.
//
//   peers_boolean [FILE.svg ...]    script/corpus fetches icons into build/corpus
#include <cmath>
#include <cstdio>
#include <vector>

#include "lumo/boolean.h"
#include "lumo/measure.h"
#include "processor_time.h"
#include "shapes.h"
#include "to_clipper.h"

namespace {

constexpr double kUnits = 1e3;  // Clipper's integers to a document unit

}  // namespace

int main(int argc, char** argv) {
  const std::vector<Path> paths = LoadShapes(argc - 1, argv + 1);
  double lumo = 0, clipper = 0;
  std::size_t pairs = 0, lumoNodes = 0, clipperNodes = 0, differ = 0;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    const Path &a = paths[i], &b = paths[(i * 7919 + 13) % paths.size()];
    if (a.IsEmpty() || b.IsEmpty()) continue;
    ++pairs;
    double start = ProcessorTime();
    const Path result = Lumo::Union(a, b);
    lumo += ProcessorTime() - start;
    const double tolerance = std::fmax(SizeOf(a), SizeOf(b)) / 2400;
    start = ProcessorTime();
    ClipperLib::Clipper peer;
    peer.AddPaths(ToClipper(a, tolerance, kUnits), ClipperLib::ptSubject, true);
    peer.AddPaths(ToClipper(b, tolerance, kUnits), ClipperLib::ptClip, true);
    ClipperLib::Paths flat;
    peer.Execute(ClipperLib::ctUnion, flat, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
    clipper += ProcessorTime() - start;
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
