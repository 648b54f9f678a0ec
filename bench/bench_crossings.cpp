// Crossings per pair: random cubics in one square, pairs that only share an end (the neighbours of every
// path), nearly equal curves, lines, loops.
#include <benchmark/benchmark.h>

#include <vector>

#include "../tests/support/cubics.h"

namespace {

using namespace LumoTest;
using namespace TavMath;

struct Pair {
  Cubic a, b;
};

std::vector<Pair> MakePairs(void (*shape)(Random&, Pair&)) {
  Random random(5);
  std::vector<Pair> pairs(1000);
  for (Pair& p : pairs) {
    p.a = UnitCubic(random, CubicShape::general);
    p.b = UnitCubic(random, CubicShape::general);
    shape(random, p);
  }
  return pairs;
}

void Run(benchmark::State& state, const std::vector<Pair>& pairs) {
  std::size_t k = 0;
  long found = 0;
  for (auto _ : state) {
    found += CubicBezier::IntersectBeziers(pairs[k].a.data(), pairs[k].b.data()).count;
    if (++k == pairs.size()) k = 0;
  }
  state.counters["contacts"] =
      benchmark::Counter(static_cast<double>(found), benchmark::Counter::kAvgIterations);
}

void RandomPair(benchmark::State& state) {
  Run(state, MakePairs([](Random&, Pair&) {}));
}
void SmoothJoint(benchmark::State& state) {
  Run(state, MakePairs([](Random& random, Pair& p) {
        const DVector move = p.a[3] - p.b[0];
        for (DPoint& q : p.b) q += move;
        p.b[1] = p.b[0] + random.Uniform(0.3, 1) * (p.a[3] - p.a[2]);
      }));
}
void NearlyEqual(benchmark::State& state) {
  Run(state, MakePairs([](Random& random, Pair& p) {
        p.b = p.a;
        for (DPoint& q : p.b) q += 1e-5 * (random.Point(1) - DPoint{0, 0});
      }));
}
void Equal(benchmark::State& state) {
  Run(state, MakePairs([](Random&, Pair& p) { p.b = p.a; }));
}
void CubicAndLine(benchmark::State& state) {
  const auto pairs = MakePairs([](Random&, Pair&) {});
  std::size_t k = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        CubicBezier::IntersectBezierLine(pairs[k].a.data(), pairs[k].b[0], pairs[k].b[3], false).count);
    if (++k == pairs.size()) k = 0;
  }
}
void DoublePoint(benchmark::State& state) {
  const auto pairs = MakePairs([](Random& random, Pair& p) { p.a = UnitCubic(random, CubicShape::loop); });
  std::size_t k = 0;
  double t0, t1;
  DPoint point;
  for (auto _ : state) {
    benchmark::DoNotOptimize(CubicBezier::FindBezierSelfIntersection(pairs[k].a.data(), t0, t1, point));
    if (++k == pairs.size()) k = 0;
  }
}

BENCHMARK(RandomPair);
BENCHMARK(SmoothJoint);
BENCHMARK(NearlyEqual);
BENCHMARK(Equal);
BENCHMARK(CubicAndLine);
BENCHMARK(DoublePoint);

}  // namespace
