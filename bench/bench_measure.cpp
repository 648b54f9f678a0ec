// Measures of a path of a million nodes, half of them in curves, beside a plain memory copy of the same
// bytes. Every answer is checked before it is timed.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "lumo/measure.h"
#include "lumo/polycurve.h"

namespace {

using Lumo::PolycurveT;
using TavMath::DPoint;

constexpr int kNodes = 1000000;

std::uint64_t Next(std::uint64_t& state) {
  state = state * 6364136223846793005u + 1442695040888963407u;
  return state >> 33;
}

/// Small segments wandering over the plane, in closed subpaths of 100 nodes or so.
template <class T>
PolycurveT<T> Wandering(int nodes) {
  PolycurveT<T> path(static_cast<std::size_t>(nodes) + 8);
  std::uint64_t state = 42;
  double x = 0, y = 0;
  const auto step = [&] {
    x += static_cast<double>(Next(state) % 2001) - 1000;
    y += static_cast<double>(Next(state) % 2001) - 1000;
    return T{static_cast<decltype(T::x)>(x), static_cast<decltype(T::y)>(y)};
  };
  while (path.GetPointCount() < static_cast<std::size_t>(nodes)) {
    const std::size_t start = path.GetPointCount();
    path.MoveTo(step());
    while (path.GetPointCount() < start + 100) {
      // Three lines to a curve: as many nodes of each.
      for (int k = 0; k < 3; ++k) path.LineTo(step());
      const T a = step(), b = step();
      path.CubicTo(a, b, step());
    }
    path.CloseLastSubpathWithOptionalLine();
  }
  return path;
}

template <class T>
const PolycurveT<T>& Path(std::int64_t nodes) {
  static std::vector<std::pair<std::int64_t, PolycurveT<T>>> made;
  for (const auto& [n, path] : made) {
    if (n == nodes) return path;
  }
  return made.emplace_back(nodes, Wandering<T>(static_cast<int>(nodes))).second;
}

void Require(bool right) {
  if (!right) std::abort();
}

template <class T>
void PointBytes(benchmark::State& state, std::size_t nodes) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(nodes * sizeof(T)));
}

template <class T>
void MemoryCopy(benchmark::State& state) {
  const auto& path = Path<T>(kNodes);
  std::vector<T> copy(path.GetPointCount());
  for (auto _ : state) {
    std::memcpy(copy.data(), path.GetPoints(), copy.size() * sizeof(T));
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
  }
  PointBytes<T>(state, path.GetPointCount());
}

template <class T>
void LooseBox(benchmark::State& state) {
  const auto& path = Path<T>(kNodes);
  for (auto _ : state) benchmark::DoNotOptimize(path.GetLooseBBox());
  PointBytes<T>(state, path.GetPointCount());
}

template <class T>
void TightBox(benchmark::State& state) {
  const auto& path = Path<T>(kNodes);
  for (auto _ : state) benchmark::DoNotOptimize(path.GetTightBBox());
  PointBytes<T>(state, path.GetPointCount());
}

template <class T>
void Translate(benchmark::State& state) {
  PolycurveT<T> path = Path<T>(kNodes);
  path.TranslatePoints({1, -1});
  Require(path.GetPoint(5).x == Path<T>(kNodes).GetPoint(5).x + 1);
  for (auto _ : state) path.TranslatePoints({1, -1});
  PointBytes<T>(state, path.GetPointCount());
}

template <class T>
void Area(benchmark::State& state) {
  const auto& path = Path<T>(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(path.GetArea());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class T>
void Length(benchmark::State& state) {
  const auto& path = Path<T>(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(path.GetLength());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class T>
void PointInShape(benchmark::State& state) {
  const auto& path = Path<T>(state.range(0));
  std::uint64_t seed = 7;
  for (auto _ : state) {
    const T p = path.GetPoint(Next(seed) % path.GetPointCount());
    benchmark::DoNotOptimize(path.IsPointInShape(T{p.x + 3, p.y + 5}));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class T>
void Nearest(benchmark::State& state) {
  const auto& path = Path<T>(state.range(0));
  std::uint64_t seed = 7;
  typename PolycurveT<T>::Closest nearest;
  for (auto _ : state) {
    const T p = path.GetPoint(Next(seed) % path.GetPointCount());
    Require(path.FindClosestPoint(T{p.x + 300, p.y + 500}, nearest));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void FitStroke(benchmark::State& state) {
  std::vector<DPoint> stroke;
  for (int k = 0; k < state.range(0); ++k) {
    const double a = 0.001 * k;
    stroke.push_back({100 * a + 5000 * std::cos(a), 5000 * std::sin(1.3 * a)});
  }
  for (auto _ : state) {
    PolycurveT<DPoint> path;
    Require(path.AppendFittedCurve(stroke, 2));
    benchmark::DoNotOptimize(path.GetPoints());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void CopyPath(benchmark::State& state) {
  const auto& path = Path<DPoint>(kNodes);
  for (auto _ : state) {
    PolycurveT<DPoint> copy = path;
    benchmark::DoNotOptimize(copy);
  }
}

BENCHMARK(MemoryCopy<tagPOINT>);
BENCHMARK(LooseBox<tagPOINT>);
BENCHMARK(TightBox<tagPOINT>);
BENCHMARK(Translate<tagPOINT>);
BENCHMARK(MemoryCopy<DPoint>);
BENCHMARK(LooseBox<DPoint>);
BENCHMARK(TightBox<DPoint>);
BENCHMARK(Translate<DPoint>);
BENCHMARK(Area<tagPOINT>)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(Length<DPoint>)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(PointInShape<tagPOINT>)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(PointInShape<DPoint>)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(Nearest<tagPOINT>)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(Nearest<DPoint>)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(FitStroke)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(CopyPath);

}  // namespace
