// Building the containment tree of a page of lettering: n letters of three nested outlines each, spread out
// evenly. Reported per subpath; --benchmark_filter with the growth line of script/bench gives the exponent.
// Before timing, the tree is checked: every letter at the top, one hole in it, one island in the hole.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>

#include "lumo/subpath_hierarchy.h"

namespace {

using TavMath::DPoint;
using Path = Lumo::PolycurveT<DPoint>;

void AddOutline(Path& path, double x, double y, double r, bool reversed) {
  const double h = 0.5522847498 * r;
  Path disc;
  disc.PushBack({x + r, y}, NODETYPE(0x0C));
  disc.CubicTo({x + r, y + h}, {x + h, y + r}, {x, y + r});
  disc.CubicTo({x - h, y + r}, {x - r, y + h}, {x - r, y});
  disc.LineTo({x, y - r});
  disc.PushBack({x + r, y}, NODETYPE(0x48));
  if (reversed) disc.Reverse();
  path.PushBack(disc);
}

Path Page(int subpaths) {
  Path page;
  const int letters = subpaths / 3;
  const int columns = static_cast<int>(std::sqrt(letters)) + 1;
  for (int k = 0; k < letters; ++k) {
    const double x = 2000.0 * (k % columns), y = 2000.0 * (k / columns);
    AddOutline(page, x, y, 300, false);
    AddOutline(page, x, y, 900, false);
    AddOutline(page, x, y, 600, true);
  }
  return page;
}

void BuildHierarchy(benchmark::State& state) {
  const int subpaths = static_cast<int>(state.range(0));
  const Path page = Page(subpaths);
  const int count = static_cast<int>(page.GetPointCount());
  const auto build = [&] {
    return Lumo::SubpathHierarchy(page.GetPoints(), page.GetNodeTypes(), count, false);
  };
  const Lumo::SubpathHierarchy tree = build();
  if (tree.GetNumberOfChildren() != static_cast<std::size_t>(subpaths / 3)) std::abort();
  for (std::size_t k = 0; k < tree.GetNumberOfChildren(); ++k) {
    const auto& letter = tree.GetChild(k);
    if (letter.GetNumberOfChildren() != 1 || letter.GetChild(0).GetNumberOfChildren() != 1) std::abort();
  }
  for (auto _ : state) benchmark::DoNotOptimize(build());
  state.SetItemsProcessed(state.iterations() * subpaths);
  state.SetComplexityN(subpaths);
}
BENCHMARK(BuildHierarchy)->Arg(999)->Arg(9999)->Arg(99999)->Unit(benchmark::kMillisecond)->Complexity();

}  // namespace
