// Boolean operations: growth with segments and crossings, and small shapes. The answer is checked before it
// is timed: areas of union and intersection must add up.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "lumo/boolean.h"
#include "lumo/measure.h"

namespace {

using TavMath::DPoint;
using Path = Lumo::PolycurveT<DPoint>;

double Unit(std::uint64_t& state) {
  state = state * 6364136223846793005u + 1442695040888963407u;
  return static_cast<double>(state >> 11) * 0x1p-53;
}

double Area(const Path& path) {
  return std::fabs(
      Lumo::GetArea(path.GetPoints(), path.GetNodeTypes(), static_cast<int>(path.GetPointCount())));
}

/// A smooth closed scribble of n cubics that crosses itself about 0.85 n times, whatever n.
Path Scribble(int n) {
  std::uint64_t seed = 7;
  std::vector<DPoint> at;
  const double size = 0.62 * std::sqrt(n);
  double x = 0, y = 0, direction = 0;
  for (int i = 0; i < n; ++i) {
    direction += 1.2 * (Unit(seed) - 0.5);
    x += std::cos(direction);
    y += std::sin(direction);
    if (x < 0 || x > size || y < 0 || y > size) direction = std::atan2(size / 2 - y, size / 2 - x);
    at.push_back({x, y});
  }
  Path path;
  path.PushBack(at[0], NODETYPE(0x0C));
  const auto wrap = [&](int i) { return at[static_cast<std::size_t>((i + n) % n)]; };
  for (int i = 0; i < n; ++i) {
    const DPoint a = wrap(i - 1), b = wrap(i), c = wrap(i + 1), d = wrap(i + 2);
    path.CubicTo(b + (c - a) * (1.0 / 6), c - (d - b) * (1.0 / 6), c);
  }
  path.SetNodeType(path.GetPointCount() - 1, NODETYPE(0x88));
  return path;
}

void SimplifyScribble(benchmark::State& state) {
  const Path path = Scribble(static_cast<int>(state.range(0)));
  const double area = Area(Lumo::Simplify(path));
  if (std::fabs(Area(Lumo::Simplify(Lumo::Simplify(path))) - area) > 1e-6 * area) std::abort();
  for (auto _ : state) benchmark::DoNotOptimize(Lumo::Simplify(path));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(SimplifyScribble)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Complexity();

Path Circles(int n, double shift) {
  Path path;
  for (int i = 0; i < n; ++i) path.CreateCircleSubpath({i * 37 % 100 + shift, i * 53 % 100 + shift / 2}, 30);
  return path;
}

void UnionOfCircles(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const Path a = Circles(n, 0), b = Circles(n, 7);
  const double sum = Area(Lumo::Simplify(a)) + Area(Lumo::Simplify(b));
  if (std::fabs(Area(Lumo::Union(a, b)) + Area(Lumo::Intersect(a, b)) - sum) > 1e-6 * sum) std::abort();
  for (auto _ : state) benchmark::DoNotOptimize(Lumo::Union(a, b));
}
BENCHMARK(UnionOfCircles)->Arg(1)->Arg(5)->Arg(20)->Unit(benchmark::kMicrosecond);

}  // namespace
