// Counting, flag setters and segment walks over a path of a million nodes, half of them in curves, against
// the speed at which memcpy moves the same bytes. Answers are checked before anything is timed.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "lumo/crv_navigation.h"
#include "lumo/curve_segment.h"

namespace {

struct Fixture {
  std::vector<NODETYPE> types;
  std::vector<tagPOINT> points;
  int lines = 0, curves = 0, subpaths = 0, enabled = 0, enabledSubpaths = 0;

  /// One on-curve node in `perEnabled` is enabled.
  explicit Fixture(int count, unsigned perEnabled = 4) {
    unsigned state = 12345;
    const auto random = [&state] { return (state = state * 1664525u + 1013904223u) >> 16; };
    bool counted = false;
    while (static_cast<int>(types.size()) + 3 < count) {
      const unsigned enable = random() % perEnabled == 0 ? 1 : 0;
      if (types.empty() || random() % 50 == 0) {
        types.push_back(static_cast<unsigned char>(0x04 | enable));
        ++subpaths;
        counted = false;
      } else if (random() % 4 == 0) {
        for (const unsigned byte : {0xC0u, 0xC0u, 0x94u | enable})
          types.push_back(static_cast<unsigned char>(byte));
        ++curves;
      } else {
        types.push_back(static_cast<unsigned char>(0x44 | enable));
        ++lines;
      }
      enabled += static_cast<int>(enable);
      enabledSubpaths += enable && !counted;
      counted = counted || enable;
    }
    while (static_cast<int>(types.size()) < count) {
      types.push_back(0x44);
      ++lines;
    }
    for (std::size_t k = 0; k < types.size(); ++k)
      points.push_back({static_cast<int>(random() % 100000), static_cast<int>(random() % 100000)});
  }
  int count() const { return static_cast<int>(types.size()); }
};

const Fixture& Million() {
  static const Fixture fixture(1000000);
  return fixture;
}

/// As after a few clicks of a user.
const Fixture& MillionWithFewEnabled() {
  static const Fixture fixture(1000000, 2000);
  return fixture;
}

void Require(bool right, const char* what) {
  if (right) return;
  std::fprintf(stderr, "wrong answer: %s\n", what);
  std::exit(1);
}

void CheckAnswers() {
  const Fixture& f = Million();
  const NODETYPE* const t = f.types.data();
  Require(CRV_HowManyLines(t, f.count()) == f.lines, "lines");
  Require(CRV_HowManyCurves(t, f.count()) == f.curves, "curves");
  Require(CRV_NumSubpaths(t, f.count()) == f.subpaths, "subpaths");
  Require(CRV_HowManyEnabled(t, f.count()) == f.enabled, "enabled");
  Require(CRV_HowManyEnabledSubpaths(t, f.count()) == f.enabledSubpaths, "enabled subpaths");
  Require(Lumo::GetSegmentCount(t, f.count()) == f.lines + f.curves, "segments");
  Require(Lumo::ValidSegments(t, f.types.size()), "valid");
}

void MemcpyOfTheBytes(benchmark::State& state) {
  const Fixture& f = Million();
  std::vector<NODETYPE> to(f.types.size());
  for (auto _ : state) {
    std::memcpy(to.data(), f.types.data(), to.size());
    benchmark::DoNotOptimize(to.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * f.count());
}
BENCHMARK(MemcpyOfTheBytes);

template <class Query>
void Scan(benchmark::State& state, Query query, const Fixture& f = Million()) {
  for (auto _ : state) benchmark::DoNotOptimize(query(f.types.data(), f.count()));
  state.SetBytesProcessed(state.iterations() * f.count());
}

#define LUMO_SCAN(query) BENCHMARK_CAPTURE(Scan, query, query)
LUMO_SCAN(CRV_HowManyEnabled);
LUMO_SCAN(CRV_HowManyEnabledNotClosed);
LUMO_SCAN(CRV_HowManyEnabledNotFirstOrLastInSubpath);
LUMO_SCAN(CRV_HowManyEnabledNotFirstOrLastInOpenSubpath);
LUMO_SCAN(CRV_HowManyCurves);
LUMO_SCAN(CRV_NumSubpaths);
LUMO_SCAN(CRV_HowManyEnabledSubpaths);
LUMO_SCAN(CRV_ContainsClosedSubpath);
int EnablingInfo(const NODETYPE* types, int count) {
  CRV_ENABLINGINFO info;
  return CRV_GetEnablingInfo(types, count, 0, -1, &info);
}
BENCHMARK_CAPTURE(Scan, GetEnablingInfo, EnablingInfo);
BENCHMARK_CAPTURE(Scan, GetEnablingInfo of few, EnablingInfo, MillionWithFewEnabled());
BENCHMARK_CAPTURE(Scan, SegmentToLastNodeIndex, [](const NODETYPE* types, int count) {
  return Lumo::SegmentToLastNodeIndex(types, count, 0x7FFFFFFF);
});
BENCHMARK_CAPTURE(Scan, ValidSegments, [](const NODETYPE* types, int count) {
  return Lumo::ValidSegments(types, static_cast<std::size_t>(count));
});
/// One step at a time over the whole path.
BENCHMARK_CAPTURE(Scan, NN, [](const NODETYPE* types, int count) {
  int steps = 0;
  for (int i = 0; i < count; ++i) steps += NN(types, i, count) == i + 1;
  return steps;
});
BENCHMARK_CAPTURE(Scan, SegmentWalk, [](const NODETYPE* types, int count) {
  std::size_t nodes = 0;
  const auto range = Lumo::details::GetCurveSegments_Raw(
      types, Million().points.data(), TavUtils::IndexRange(0, static_cast<std::size_t>(count)));
  for (const auto& segment : range) nodes += segment->nodes().size();
  return nodes;
});

void EnableAllControls(benchmark::State& state, const Fixture& f) {
  std::vector<NODETYPE> types = f.types;
  for (auto _ : state) benchmark::DoNotOptimize(CRV_EnableAllControls(types.data(), f.count()));
  state.SetBytesProcessed(state.iterations() * f.count());
}
BENCHMARK_CAPTURE(EnableAllControls, many, Million());
BENCHMARK_CAPTURE(EnableAllControls, few, MillionWithFewEnabled());

const bool checked = (CheckAnswers(), true);

}  // namespace
