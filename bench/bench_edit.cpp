// Edits of every other node of a path, for 1,000 to 100,000 selected nodes: the time per selected node should
// not grow. Each result is compared with the node-by-node edit on a small path before anything is timed.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "lumo/crv_convert.h"
#include "lumo/crv_edit.h"
#include "lumo/crv_navigation.h"

namespace {

using TavMath::DPoint;

struct Drawing {
  std::vector<DPoint> points;
  std::vector<NODETYPE> types;
  int count = 0;

  void Add(unsigned char type, double x, double y) {
    points.push_back({x, y});
    types.push_back(type);
    ++count;
  }
};

/// One wavy subpath of lines or curves with `selected` enabled nodes, every other one; room for all edits.
Drawing Wave(int selected, bool curves, bool closed) {
  Drawing d;
  d.Add(closed ? 0x0C : 0x04, 0, 0);
  for (int k = 1; k <= 2 * selected; ++k) {
    const double x = 100.0 * k, y = 1000 * std::sin(0.7 * k), dy = 700 * std::cos(0.7 * k) / 30;
    const double before = 1000 * std::sin(0.7 * (k - 1)), dBefore = 700 * std::cos(0.7 * (k - 1)) / 30;
    if (curves) d.Add(0xC0, x - 70, before + 10 * dBefore);
    if (curves) d.Add(0xC0, x - 30, y - 10 * dy);
    d.Add(static_cast<unsigned char>((curves ? 0x94 : 0x44) | (k % 2)), x, y);
  }
  if (closed) d.Add(0x48, 0, 0);
  const auto room = static_cast<std::size_t>(4 * d.count);
  d.points.resize(room);
  d.types.resize(room);
  return d;
}

/// Many subpaths of two lines, all ends selected.
Drawing OpenSubpaths(int selected) {
  Drawing d;
  for (int k = 0; k < selected / 2; ++k) {
    d.Add(0x05, k, 0);
    d.Add(0x44, k, 100);
    d.Add(0x45, k + 50, 50);
  }
  d.points.resize(static_cast<std::size_t>(2 * d.count));
  d.types.resize(static_cast<std::size_t>(2 * d.count));
  return d;
}

using Edit = int (*)(Drawing&);

void Time(benchmark::State& state, const std::function<Drawing(int)>& make, Edit edit) {
  const int selected = static_cast<int>(state.range(0));
  const Drawing source = make(selected);
  Drawing work = source;
  for (auto _ : state) {
    state.PauseTiming();
    std::copy(source.points.begin(), source.points.end(), work.points.begin());
    std::copy(source.types.begin(), source.types.end(), work.types.begin());
    work.count = source.count;
    state.ResumeTiming();
    benchmark::DoNotOptimize(edit(work));
  }
  state.counters["per_node"] =
      benchmark::Counter(static_cast<double>(selected),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  state.SetComplexityN(selected);
}

void Require(bool right, const char* what) {
  if (right) return;
  std::fprintf(stderr, "wrong answer: %s\n", what);
  std::exit(1);
}

bool Same(const Drawing& a, const Drawing& b) {
  if (a.count != b.count) return false;
  for (std::size_t k = 0; k < static_cast<std::size_t>(a.count); ++k)
    if (a.types[k].value != b.types[k].value || a.points[k] != b.points[k]) return false;
  return true;
}

/// The one-pass forms against the single ones, node by node.
void CheckAnswers() {
  for (const bool curves : {false, true}) {
    Drawing fast = Wave(100, curves, true), slow = fast;
    fast.count = CRV_AddEnabled(fast.points.data(), fast.types.data(), fast.count, 1, 0);
    for (int i = 0; i < slow.count;) {
      const bool isEnabled = slow.types[static_cast<std::size_t>(i)].IsEnabled();
      const int n = isEnabled ? CRV_Add(slow.points.data(), slow.types.data(), slow.count, i, 0.5, 1) : 0;
      if (n > 0) slow.types[static_cast<std::size_t>(i)] &= 0xFE;
      slow.count += n;
      i += n + 1;
    }
    Require(Same(fast, slow), "CRV_AddEnabled");
    fast = Wave(100, curves, true), slow = fast;
    fast.count = CRV_ToCurveEnabled(fast.points.data(), fast.types.data(), fast.count);
    for (int i = 0; i < slow.count; ++i)
      if (slow.types[static_cast<std::size_t>(i)].IsEnabled())
        slow.count = CRV_ToCurveNode(slow.points.data(), slow.types.data(), slow.count, i);
    Require(Same(fast, slow), "CRV_ToCurveEnabled");
  }
}

const auto kLines = [](int n) { return Wave(n, false, true); };
const auto kCurves = [](int n) { return Wave(n, true, true); };

void Register(const std::string& name, const std::function<Drawing(int)>& make, Edit edit) {
  benchmark::RegisterBenchmark(name.c_str(), [make, edit](benchmark::State& s) { Time(s, make, edit); })
      ->Arg(1000)
      ->Arg(10000)
      ->Arg(100000)
      ->Unit(benchmark::kMicrosecond);
}

const bool registered = [] {
  CheckAnswers();
  const Edit add = [](Drawing& d) { return CRV_AddEnabled(d.points.data(), d.types.data(), d.count, 1, 1); };
  const Edit toCurve = [](Drawing& d) {
    return CRV_ToCurveEnabled(d.points.data(), d.types.data(), d.count);
  };
  const Edit toLine = [](Drawing& d) { return CRV_ToLineEnabled(d.points.data(), d.types.data(), d.count); };
  const Edit breakAll = [](Drawing& d) {
    return CRV_BreakEnabled(d.points.data(), d.types.data(), d.count, 0);
  };
  const Edit deleteAll = [](Drawing& d) {
    return CRV_DeleteEnabled(d.points.data(), d.types.data(), d.count);
  };
  const Edit smooth = [](Drawing& d) {
    return CRV_SetContEnabled(d.points.data(), d.types.data(), d.count, ContinuityType::smooth);
  };
  const Edit reduce = [](Drawing& d) {
    return CRV_ReduceEnabled(d.points.data(), d.types.data(), d.count, 20.0);
  };
  const Edit join = [](Drawing& d) {
    return CRV_JoinEnabledAddingLineSegments(d.points.data(), d.types.data(), d.count);
  };
  Register("AddToLines", kLines, add);
  Register("AddToCurves", kCurves, add);
  Register("LinesToCurves", kLines, toCurve);
  Register("CurvesToLines", kCurves, toLine);
  Register("BreakCurves", kCurves, breakAll);
  Register("DeleteFromLines", kLines, deleteAll);
  Register("DeleteFromCurves", kCurves, deleteAll);
  Register("SmoothCurves", kCurves, smooth);
  Register("ReduceCurves", kCurves, reduce);
  Register("CloseSubpaths", OpenSubpaths, join);
  return true;
}();

}  // namespace
