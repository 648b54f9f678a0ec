// All self-crossings of closed random paths of cubics whose number of crossings grows with their own. The
// growth exponent is the slope between the sizes. Answers are checked before timing: a sample of segments
// against the plain loop.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "../tests/support/cubics.h"
#include "lumo/intersections.h"

namespace {

using namespace LumoTest;
using namespace Lumo;

/// Steps of this many cells give about one crossing per cubic.
constexpr double kStride = 1.42;

/// A closed walk through the cells of a square, smooth at its nodes; each segment meets about one other.
struct Path {
  std::vector<DPoint> points;
  std::vector<NODETYPE> types;
};

Path RandomClosedPath(int cubics) {
  Random random(static_cast<std::uint64_t>(cubics));
  const double cell = 4000, side = cell * std::sqrt(static_cast<double>(cubics));
  Path path;
  std::vector<DPoint> nodes;
  DPoint at{side / 2, side / 2};
  double heading = 0;
  for (int k = 0; k < cubics; ++k) {
    nodes.push_back(at);
    heading += random.Uniform(-1.2, 1.2);
    const double step = kStride * cell * random.Uniform(0.7, 1.3);
    DPoint next = at + DVector{step * std::cos(heading), step * std::sin(heading)};
    // Turn back at the edge of the square.
    if (next.x < 0 || next.x > side || next.y < 0 || next.y > side) {
      heading = std::atan2(side / 2 - at.y, side / 2 - at.x) + random.Uniform(-0.8, 0.8);
      next = at + DVector{step * std::cos(heading), step * std::sin(heading)};
    }
    at = next;
  }
  const std::size_t n = nodes.size();
  path.points.push_back(nodes[0]);
  path.types.push_back(NODETYPE(0x0C));
  for (std::size_t k = 0; k < n; ++k) {
    const DPoint &before = nodes[(k + n - 1) % n], &from = nodes[k], &to = nodes[(k + 1) % n],
                 &after = nodes[(k + 2) % n];
    path.points.push_back(from + 0.2 * (to - before));
    path.points.push_back(to - 0.2 * (after - from));
    path.points.push_back(to);
    path.types.insert(path.types.end(), {NODETYPE(0xC0), NODETYPE(0xC0), NODETYPE(0x84)});
  }
  path.types.back() |= 0x08;
  return path;
}

std::size_t CountRecords(const SegmentIntersectionTable& table) {
  std::size_t count = 0;
  for (const SegmentIntersections& s : table.Segments()) count += s.size();
  return count;
}

SegmentIntersectionTable MakeTable(const Path& path) {
  SegmentIntersectionTable table;
  table.AddCurve(path.points.data(), path.types.data(), static_cast<int>(path.points.size()));
  return table;
}

void Check(const Path& path) {
  SegmentIntersectionTable quick = MakeTable(path);
  FindAllIntersections(quick, SegmentIntersectionSettings());
  const std::size_t count = quick.Segments().size();
  for (std::size_t k = 0; k < count; k += 1 + count / 50) {
    SegmentIntersectionTable plain = MakeTable(path);
    FindSegmentIntersections(static_cast<int>(k), plain, SegmentIntersectionSettings());
    std::size_t later = 0;
    for (const Intersection* x : quick.Segments()[k].Intersections()) {
      later += x->GetPartner()->SegmentID() >= static_cast<int>(k);
    }
    if (plain.Segments()[k].size() != later) {
      std::fprintf(stderr, "segment %zu: %zu records, the plain loop finds %zu\n", k, later,
                   plain.Segments()[k].size());
      std::exit(1);
    }
  }
}

void SelfCrossings(benchmark::State& state) {
  const Path path = RandomClosedPath(static_cast<int>(state.range(0)));
  Check(path);
  std::size_t records = 0;
  for (auto _ : state) {
    state.PauseTiming();
    SegmentIntersectionTable table = MakeTable(path);
    state.ResumeTiming();
    FindAllIntersections(table, SegmentIntersectionSettings());
    records = CountRecords(table);
    state.PauseTiming();
    table = SegmentIntersectionTable();
    state.ResumeTiming();
  }
  state.counters["crossings"] = static_cast<double>(records / 2);
  state.SetComplexityN(state.range(0));
}
BENCHMARK(SelfCrossings)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void DoubleLoop(benchmark::State& state) {
  const Path path = RandomClosedPath(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    SegmentIntersectionTable table = MakeTable(path);
    for (int i = 0; i < state.range(0); ++i)
      FindSegmentIntersections(i, table, SegmentIntersectionSettings());
    benchmark::DoNotOptimize(CountRecords(table));
  }
}
BENCHMARK(DoubleLoop)->Arg(16)->Arg(64)->Arg(256);

void BroadPhase(benchmark::State& state) {
  const Path path = RandomClosedPath(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    SegmentIntersectionTable table = MakeTable(path);
    FindAllIntersections(table, SegmentIntersectionSettings());
    benchmark::DoNotOptimize(CountRecords(table));
  }
}
BENCHMARK(BroadPhase)->Arg(16)->Arg(64)->Arg(256);

}  // namespace
