// Pointer questions about paths of 10,000, 100,000 and 1,000,000 nodes, half of the segments curves: the
// growth with the size, and the speed against memcpy over the bytes that a question must read (points and
// node types). Two drawings: a wandering outline whose neighbours lie close together, as in real drawings,
// and segments scattered over the page, the worst case for passing over whole stretches. Answers are checked
// before anything is timed. The counter "curves" is the number of curves whose hull the question cannot pass
// over.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <map>
#include <vector>

#include "lumo/crv_freehand.h"
#include "lumo/crv_hit.h"

namespace {

constexpr int kPage = 2000000;

struct Drawing {
  std::vector<tagPOINT> points;
  std::vector<NODETYPE> types;
  int count() const { return static_cast<int>(points.size()); }
};

unsigned Random(unsigned& state) { return (state = state * 1664525u + 1013904223u) >> 8; }

Drawing Make(int count, bool scattered) {
  Drawing d;
  unsigned state = 7;
  tagPOINT at{kPage / 2, kPage / 2};
  const auto next = [&] {
    const auto below = [&](int n) { return static_cast<int>(Random(state) % static_cast<unsigned>(n)); };
    const auto close = [&](int value) { return std::clamp(value + below(1201) - 600, 0, kPage); };
    at = scattered ? tagPOINT{below(kPage), below(kPage)} : tagPOINT{close(at.x), close(at.y)};
    return at;
  };
  const auto add = [&](unsigned char type) {
    d.types.push_back(type);
    d.points.push_back(next());
  };
  while (d.count() + 4 <= count) {
    if (d.count() == 0 || Random(state) % 100 == 0) add(0x04);
    if (Random(state) % 2 == 0) {
      add(0xC0);
      add(0xC0);
      add(0x84);
    } else {
      add(0x44);
    }
  }
  while (d.count() < count) add(0x44);
  return d;
}

const Drawing& Of(int count, bool scattered) {
  static std::map<std::pair<int, bool>, Drawing> made;
  auto& drawing = made[{count, scattered}];
  if (drawing.points.empty()) drawing = Make(count, scattered);
  return drawing;
}

tagRECT RectAbout(tagPOINT p, int r) { return {p.x - r, p.y + r, p.x + r, p.y - r}; }

/// Curves whose control box meets the rectangle and, with a radius, comes that near to its middle.
int CurvesMeeting(const Drawing& d, const tagRECT& r, double radius = HUGE_VAL) {
  int curves = 0;
  for (std::size_t k = 3; k < d.points.size(); ++k) {
    if (!d.types[k].IsCurve()) continue;
    const tagPOINT* const p = &d.points[k - 3];
    const auto [x0, x1] = std::minmax({p[0].x, p[1].x, p[2].x, p[3].x});
    const auto [y0, y1] = std::minmax({p[0].y, p[1].y, p[2].y, p[3].y});
    const double x = 0.5 * r.left + 0.5 * r.right, y = 0.5 * r.bottom + 0.5 * r.top;
    const double dx = std::max({x0 - x, x - x1, 0.0}), dy = std::max({y0 - y, y - y1, 0.0});
    const bool meets = x0 <= r.right && x1 >= r.left && y0 <= r.top && y1 >= r.bottom;
    curves += meets && dx * dx + dy * dy <= radius * radius;
  }
  return curves;
}

void Require(bool right, const char* what) {
  if (right) return;
  std::fprintf(stderr, "wrong answer: %s\n", what);
  std::exit(1);
}

/// A miss everywhere but at the path's last node: the whole path has to be looked at.
void CheckAnswers() {
  for (const bool scattered : {false, true}) {
    Drawing d = Of(10000, scattered);
    d.points.back() = {-5000, -5000};
    const tagRECT rect = RectAbout(d.points.back(), 10);
    const int last = d.count() - 1;
    Require(CRV_NodeHit(&rect, d.points.data(), d.types.data(), d.count()) == last, "node hit");
    Require(CRV_PathHit(&rect, nullptr, nullptr, d.points.data(), d.types.data(), d.count(), 0) == last,
            "hit");
    int end = 0, inside = 1;
    UTLGetClosestPointOnPath(d.points.data(), d.types.data(), d.count(), {-5000, -5001}, nullptr, &end,
                             nullptr);
    Require(end == last, "closest");
    UTLIsPointInFill(d.points.data(), d.types.data(), d.count(), {-6000, 100}, &inside);
    Require(inside == 0, "fill");
  }
}
const bool checked = (CheckAnswers(), true);

template <class Query>
void Run(benchmark::State& state, bool scattered, Query query) {
  const Drawing& d = Of(static_cast<int>(state.range(0)), scattered);
  for (auto _ : state) benchmark::DoNotOptimize(query(d));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * d.count() * 9);
  state.SetComplexityN(state.range(0));
}

void MemcpyOfTheArrays(benchmark::State& state) {
  const Drawing& d = Of(static_cast<int>(state.range(0)), false);
  std::vector<tagPOINT> points(d.points.size());
  std::vector<NODETYPE> types(d.types.size());
  for (auto _ : state) {
    std::memcpy(points.data(), d.points.data(), points.size() * sizeof(tagPOINT));
    std::memcpy(types.data(), d.types.data(), types.size());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * d.count() * 9);
}
BENCHMARK(MemcpyOfTheArrays)->Arg(1000000)->Unit(benchmark::kMicrosecond);

const tagPOINT kBeside{-5000, 700000};  // misses everything, level with much of the drawing
const tagPOINT kMiddle{kPage / 2, kPage / 2};

#define LUMO_SIZES ->RangeMultiplier(10)->Range(10000, 1000000)->Unit(benchmark::kMicrosecond)->Complexity()
#define LUMO_QUERY(name, query)                                      \
  BENCHMARK_CAPTURE(Run, name##_wandering, false, query) LUMO_SIZES; \
  BENCHMARK_CAPTURE(Run, name##_scattered, true, query) LUMO_SIZES

int NodeHit(const Drawing& d) {
  const tagRECT rect = RectAbout(kBeside, 50);
  return CRV_NodeHit(&rect, d.points.data(), d.types.data(), d.count());
}
int RectOnPath(const Drawing& d) {
  const tagRECT rect = RectAbout(kBeside, 50);
  return UTLIsRectOnPath(d.points.data(), d.types.data(), d.count(), &rect);
}
int PathHit(const Drawing& d) {
  const tagRECT rect = RectAbout(kBeside, 50);
  double t = 0;
  return CRV_PathHit(&rect, &kBeside, &t, d.points.data(), d.types.data(), d.count(), 0);
}
int Fill(const Drawing& d) {
  int inside = 0;
  UTLIsPointInFill(d.points.data(), d.types.data(), d.count(), kMiddle, &inside);
  return inside;
}
int Closest(const Drawing& d) {
  int end = 0;
  UTLGetClosestPointOnPath(d.points.data(), d.types.data(), d.count(), {12345, 54321}, nullptr, &end,
                           nullptr);
  return end;
}
LUMO_QUERY(NodeHit, NodeHit);
LUMO_QUERY(RectOnPath, RectOnPath);
LUMO_QUERY(PathHit, PathHit);
LUMO_QUERY(Fill, Fill);
LUMO_QUERY(Closest, Closest);

/// How many curves the fill test and the nearest point have to look at closely.
void CurvesLookedAt(benchmark::State& state) {
  const Drawing& d = Of(static_cast<int>(state.range(0)), state.range(1) != 0);
  const tagPOINT query{12345, 54321};
  double nearest = HUGE_VAL;
  for (std::size_t k = 0; k < d.points.size(); ++k)
    if (d.types[k].IsOnCurve())
      nearest = std::min(nearest, std::hypot(0.0 + d.points[k].x - query.x, 0.0 + d.points[k].y - query.y));
  for (auto _ : state) benchmark::DoNotOptimize(nearest);
  state.counters["fill"] = CurvesMeeting(d, {kMiddle.x, kMiddle.y, INT_MAX, kMiddle.y});
  state.counters["closest"] =
      CurvesMeeting(d, RectAbout(query, static_cast<int>(std::ceil(nearest))), nearest);
}
BENCHMARK(CurvesLookedAt)->ArgsProduct({{10000, 100000, 1000000}, {0, 1}})->Iterations(1);

/// A stream of a million points, into a record that grows by 65,536.
void FreehandStream(benchmark::State& state) {
  const Drawing& d = Of(1000000, false);
  for (auto _ : state) {
    CRV_FREEHANDINFO* const record = CRV_FreehandInfoConstruct(0, static_cast<int>(state.range(0)));
    for (const tagPOINT& p : d.points) CRV_FreehandInfoAppendPoint(record, p);
    benchmark::DoNotOptimize(record->count);
    CRV_FreehandInfoDestruct(record);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * d.count());
}
BENCHMARK(FreehandStream)->Arg(65536)->Arg(1000000)->Unit(benchmark::kMillisecond);

}  // namespace
