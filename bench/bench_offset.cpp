// Offsets of whole paths: drawings at several distances, and how the cost grows with the density of an
// outline. Every result is checked for area before anything is timed.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "../tests/support/cubics.h"
#include "lumo/measure.h"
#include "lumo/offset.h"
#include "lumo/offset_corners.h"

namespace {

using namespace LumoTest;

struct Outline {
  std::vector<DPoint> points;
  std::vector<NODETYPE> nodes;
  int Count() const { return static_cast<int>(points.size()); }
  double Area() const { return Lumo::GetArea(points.data(), nodes.data(), Count()); }
};

Outline OffsetOf(const Outline& source, double offset, double error) {
  Lumo::Offset::OffsetSettings settings(new Lumo::Round, new Lumo::Round, offset, false);
  if (error > 0) settings.SetMaxOffsetError(error);
  Outline out;
  Lumo::CreateOffsetCurve(source.points.data(), source.nodes.data(), source.Count(), out.points, out.nodes,
                          settings);
  return out;
}

/// A ring of radius 1000 whose vertices wander by 2, in units of a hundredth.
Outline NoisyRing(int vertices) {
  Random random(1);
  Outline ring;
  const double turn = -2 * std::acos(-1.0) / vertices;
  for (int k = 0; k < vertices; ++k) {
    const double r = 100 * (1000 + random.Uniform(-2, 2)), a = turn * k;
    ring.points.push_back({r * std::cos(a), r * std::sin(a)});
    ring.nodes.push_back(k == 0 ? NODETYPE(0x0C) : NODETYPE(0x44));
  }
  ring.points.push_back(ring.points.front());
  ring.nodes.push_back(NODETYPE(0x48));
  return ring;
}

void Require(bool truth, const char* what) {
  if (truth) return;
  std::fprintf(stderr, "wrong answer: %s\n", what);
  std::exit(1);
}

void NoisyRingGrowth(benchmark::State& state) {
  const Outline ring = NoisyRing(static_cast<int>(state.range(0)));
  const Outline grown = OffsetOf(ring, 2000, 10);
  // Between the offsets of the inner and of the outer edge of the noise.
  const double pi = std::acos(-1.0), radius = std::sqrt(grown.Area() / pi);
  Require(radius > 101900 && radius < 102200, "area of the grown ring");
  for (auto _ : state) benchmark::DoNotOptimize(OffsetOf(ring, 2000, 10).points.data());
  state.SetComplexityN(state.range(0));
  state.counters["nodes out"] = static_cast<double>(grown.points.size());
}
BENCHMARK(NoisyRingGrowth)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Complexity();

/// A round outline of a dozen curves, as an icon has.
Outline Blob(Random& random) {
  Outline blob;
  const int n = 12;
  const double turn = -2 * std::acos(-1.0) / n;
  std::vector<DPoint> at;
  for (int k = 0; k < n; ++k) {
    const double r = random.Uniform(40000, 100000);
    at.push_back({r * std::cos(turn * k), r * std::sin(turn * k)});
  }
  blob.points.push_back(at[0]);
  blob.nodes.push_back(NODETYPE(0x0C));
  for (int k = 1; k <= n; ++k) {
    const DPoint& from = at[static_cast<std::size_t>(k - 1)];
    const DPoint& to = at[static_cast<std::size_t>(k % n)];
    for (const double t : {1.0 / 3, 2.0 / 3}) {
      const DPoint bulge = random.Point(15000);
      blob.points.push_back(from + t * (to - from) + (bulge - DPoint{0, 0}));
      blob.nodes.push_back(NODETYPE(0xC0));
    }
    blob.points.push_back(to);
    blob.nodes.push_back(k == n ? NODETYPE(0x88) : NODETYPE(0x84));
  }
  return blob;
}

void Blobs(benchmark::State& state) {
  Random random(2);
  std::vector<Outline> blobs;
  for (int k = 0; k < 100; ++k) blobs.push_back(Blob(random));
  const auto offset = static_cast<double>(state.range(0));
  std::size_t nodes = 0, sourceNodes = 0;
  for (const Outline& blob : blobs) {
    const Outline result = OffsetOf(blob, offset, 0), ground = OffsetOf(blob, 0, 0);
    Require(offset > 0 ? result.Area() > ground.Area() : result.Area() < ground.Area(),
            "area of a blob's offset");
    nodes += result.points.size();
    sourceNodes += blob.points.size();
  }
  for (auto _ : state)
    for (const Outline& blob : blobs) benchmark::DoNotOptimize(OffsetOf(blob, offset, 0).points.data());
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(blobs.size()));
  state.counters["nodes out per node in"] = static_cast<double>(nodes) / static_cast<double>(sourceNodes);
}
BENCHMARK(Blobs)->Arg(2000)->Arg(-2000)->Arg(10000)->Arg(-10000)->Unit(benchmark::kMillisecond);

}  // namespace
