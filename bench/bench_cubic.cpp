// Nanoseconds per call of the primitives of one cubic, over random cubics. Every answer is checked before it
// is timed; bench/peers/peers_cubic compares them with open peers on the same inputs.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

#include "../tests/support/cubic_oracles.h"

namespace {

using namespace LumoTest;
using namespace TavMath;

struct Job {
  Cubic cubic;
  DPoint query;
  double fraction;
};

void Stop(const char* what, const Cubic& c) {
  std::fprintf(stderr, "%s: %s\n", what, ToSvg(c).c_str());
  std::exit(1);
}

const std::vector<Job>& Jobs() {
  static const std::vector<Job> jobs = [] {
    Random random(1);
    std::vector<Job> out;
    for (int k = 0; k < 1000; ++k) {
      const Cubic c{random.Point(1000), random.Point(1000), random.Point(1000), random.Point(1000)};
      out.push_back({c, random.Point(1500), random.Unit()});
      const LengthOracle oracle(c);
      const double length = static_cast<double>(oracle.Over(0, 1));
      if (!(std::abs(CubicBezier::Length(c.data()) - length) <= 1e-9 * length)) Stop("length", c);
      const double t = CubicBezier::GetCurveRelativeLengthParameter(c.data(), out.back().fraction);
      if (!(std::abs(static_cast<double>(oracle.Over(0, t)) - out.back().fraction * length) <=
            1e-9 * length)) {
        Stop("inverse length", c);
      }
      double at, distanceSqrd;
      DPoint foot;
      CubicBezier::FindClosestPointOnBezier(c.data(), out.back().query, at, foot, distanceSqrd);
      for (int n = 0; n <= 1000; ++n) {
        if (DistanceSqrd(CubicBezier::Evaluate(c.data(), n * 1e-3), out.back().query) <
            distanceSqrd * (1 - 1e-9)) {
          Stop("closest point", c);
        }
      }
    }
    return out;
  }();
  return jobs;
}

/// One call for each job in turn.
template <class F>
void Run(benchmark::State& state, F f) {
  const std::vector<Job>& jobs = Jobs();
  std::size_t k = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(f(jobs[k]));
    if (++k == jobs.size()) k = 0;
  }
  state.SetItemsProcessed(state.iterations());
}

void Evaluate(benchmark::State& state) {
  Run(state, [](const Job& j) { return CubicBezier::Evaluate(j.cubic.data(), j.fraction); });
}
void Split(benchmark::State& state) {
  Run(state, [](const Job& j) {
    std::array<DPoint, 7> out;
    CubicBezier::Split(j.fraction, j.cubic.data(), out.data(), out.data() + 3);
    return out;
  });
}
void LengthOfCubic(benchmark::State& state) {
  Run(state, [](const Job& j) { return CubicBezier::Length(j.cubic.data()); });
}
void InverseLength(benchmark::State& state) {
  Run(state,
      [](const Job& j) { return CubicBezier::GetCurveRelativeLengthParameter(j.cubic.data(), j.fraction); });
}
void ClosestPoint(benchmark::State& state) {
  Run(state, [](const Job& j) {
    double t = 0, distanceSqrd = 0;
    DPoint foot{};
    CubicBezier::FindClosestPointOnBezier(j.cubic.data(), j.query, t, foot, distanceSqrd);
    return distanceSqrd;
  });
}
void TightBox(benchmark::State& state) {
  Run(state, [](const Job& j) { return CubicBezier::GetTightBox(j.cubic.data()); });
}
void CurvatureExtrema(benchmark::State& state) {
  Run(state, [](const Job& j) {
    double t[6];
    return CubicBezier::FindCurvatureMinMax(j.cubic.data(), t);
  });
}
void Area(benchmark::State& state) {
  Run(state, [](const Job& j) { return CubicBezier::GetAreaUnderBezier(j.cubic.data()); });
}
/// The argument is the tolerance; pieces per second are the items.
void Flatten(benchmark::State& state) {
  const double tolerance = 1 / static_cast<double>(state.range(0));
  const std::vector<Job>& jobs = Jobs();
  static DPoint lines[4096];
  std::size_t k = 0;
  long pieces = 0;
  for (auto _ : state) {
    pieces += AdaptiveBezierToLines(jobs[k].cubic.data(), lines, tolerance * tolerance, 4096);
    benchmark::DoNotOptimize(lines[0]);
    if (++k == jobs.size()) k = 0;
  }
  state.SetItemsProcessed(pieces);
}

BENCHMARK(Evaluate);
BENCHMARK(Split);
BENCHMARK(LengthOfCubic);
BENCHMARK(InverseLength);
BENCHMARK(ClosestPoint);
BENCHMARK(TightBox);
BENCHMARK(CurvatureExtrema);
BENCHMARK(Area);
BENCHMARK(Flatten)->Arg(1)->Arg(10)->Arg(100);

}  // namespace
