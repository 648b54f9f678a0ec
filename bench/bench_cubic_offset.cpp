// Offset pieces per second next to the raw evaluation rate. The answer of every cubic is measured before
// anything is timed: a result beyond its tolerance stops the program.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

#include "../tests/support/cubics.h"
#include "../tests/support/offset_oracle.h"

namespace {

using namespace LumoTest;
using namespace TavMath;

struct Job {
  Cubic cubic;
  double offset;
};

const std::vector<Job>& Jobs() {
  static const std::vector<Job> jobs = [] {
    Random random(1);
    std::vector<Job> out;
    for (int k = 0; k < 1000; ++k) {
      Cubic c = UnitCubic(random, CubicShape::general);
      for (DPoint& p : c) p = {1e5 * p.x, 1e5 * p.y};
      out.push_back({c, (k % 2 ? 1 : -1) * random.LogUniform(1e2, 5e4)});
    }
    return out;
  }();
  return jobs;
}

void OffsetCubics(benchmark::State& state) {
  const double tolerance = static_cast<double>(state.range(0));
  for (std::size_t k = 0; k < 100; ++k)
    for (const OffsetPiece& piece : OffsetPieces::Of(Jobs()[k].cubic, Jobs()[k].offset, tolerance).pieces)
      if (Deviation(piece, Jobs()[k].offset) > tolerance) {
        std::fprintf(stderr, "beyond the tolerance: %s\n", ToSvg(Jobs()[k].cubic).c_str());
        std::exit(1);
      }
  std::size_t pieces = 0;
  for (auto _ : state)
    for (const Job& job : Jobs()) pieces += OffsetPieces::Of(job.cubic, job.offset, tolerance).pieces.size();
  state.SetItemsProcessed(static_cast<std::int64_t>(pieces));
  state.counters["pieces per cubic"] = static_cast<double>(pieces) / static_cast<double>(Jobs().size()) /
                                       static_cast<double>(state.iterations());
}
BENCHMARK(OffsetCubics)->Arg(1000)->Arg(100)->Arg(10)->Arg(1);

void RawEvaluation(benchmark::State& state) {
  std::int64_t points = 0;
  for (auto _ : state)
    for (const Job& job : Jobs())
      for (int k = 0; k < 10; ++k, ++points)
        benchmark::DoNotOptimize(CubicBezier::Evaluate(job.cubic.data(), 0.1 * k));
  state.SetItemsProcessed(points);
}
BENCHMARK(RawEvaluation);

}  // namespace
