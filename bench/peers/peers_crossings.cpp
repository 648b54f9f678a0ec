// Crossings of two cubics beside lib2geom: nanoseconds per pair and the worst parameter error of each, over
// the same pairs in the same run. Every answer is checked against a long-double reference before anything is
// timed.
//
//   peers_crossings [file]    file: one cubic a line, eight numbers; every two whose boxes meet are a pair

#include <2geom/bezier-curve.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <vector>

#include "support/crossing_oracle.h"

namespace {

using namespace LumoTest;
using TavMath::BoundsT;
using TavMath::CubicBezier::Crossings;
using TavMath::CubicBezier::IntersectBeziers;

long sink = 0;  // keeps the optimiser from dropping a call

struct Pair {
  Cubic a, b;
  Geom::CubicBezier peerA, peerB;
};

Geom::CubicBezier ToPeer(const Cubic& c) {
  const auto point = [](const DPoint& p) { return Geom::Point(p.x, p.y); };
  return {point(c[0]), point(c[1]), point(c[2]), point(c[3])};
}

std::vector<Pair> RandomPairs(int count) {
  std::vector<Pair> pairs;
  Random random(20240602);
  for (int k = 0; k < count; ++k) {
    const Cubic a{random.Point(1000), random.Point(1000), random.Point(1000), random.Point(1000)};
    const Cubic b{random.Point(1000), random.Point(1000), random.Point(1000), random.Point(1000)};
    pairs.push_back({a, b, ToPeer(a), ToPeer(b)});
  }
  return pairs;
}

std::vector<Pair> ReadPairs(const char* name, std::size_t limit) {
  std::vector<Cubic> cubics;
  std::ifstream in(name);
  for (Cubic c; in >> c[0].x >> c[0].y >> c[1].x >> c[1].y >> c[2].x >> c[2].y >> c[3].x >> c[3].y;) {
    cubics.push_back(c);
  }
  const auto box = [](const Cubic& c) {
    BoundsT<double> b;
    for (const DPoint& p : c) b.Add(p.x, p.y);
    return b;
  };
  std::vector<Pair> pairs;
  // Neighbours in the file come from one drawing.
  for (std::size_t i = 0; i < cubics.size() && pairs.size() < limit; ++i) {
    for (std::size_t j = i + 1; j < cubics.size() && j < i + 40 && pairs.size() < limit; ++j) {
      if (!box(cubics[i]).Overlaps(box(cubics[j]))) continue;
      pairs.push_back({cubics[i], cubics[j], ToPeer(cubics[i]), ToPeer(cubics[j])});
    }
  }
  return pairs;
}

struct Score {
  int missed = 0;
  double error = 0;
  void Take(double best) {
    if (best > 1e-3) {
      ++missed;
    } else {
      error = std::max(error, best);
    }
  }
};

template <class F>
double Nearest(const ClearCrossing& wanted, int count, F at) {
  double best = 1;
  for (int k = 0; k < count; ++k) {
    const auto [ta, tb] = at(k);
    best = std::min(best, std::max(std::abs(ta - wanted.ta), std::abs(tb - wanted.tb)));
  }
  return best;
}

double Time(const std::vector<Pair>& pairs, int rounds, const std::function<long(const Pair&)>& run) {
  double best = 1e300;
  for (int k = 0; k < rounds; ++k) {
    const auto start = std::chrono::steady_clock::now();
    for (const Pair& p : pairs) sink += run(p);
    const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - start;
    best = std::min(best, taken.count() / static_cast<double>(pairs.size()));
  }
  return best;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<Pair> pairs = argc > 1 ? ReadPairs(argv[1], 20000) : RandomPairs(20000);
  if (pairs.empty()) return std::fprintf(stderr, "no pairs\n"), 1;
  Score ours, theirs;
  int crossings = 0;
  for (std::size_t k = 0; k < pairs.size(); k += 5) {
    const Pair& p = pairs[k];
    const Crossings found = IntersectBeziers(p.a.data(), p.b.data());
    const auto peer = p.peerA.intersect(p.peerB);
    if (found.overlap) continue;
    for (const ClearCrossing& c : FindClearCrossings(p.a, p.b)) {
      ++crossings;
      ours.Take(Nearest(c, found.count, [&](int n) {
        const auto& x = found.at[static_cast<std::size_t>(n)];
        return std::pair(x.ta, x.tb);
      }));
      theirs.Take(Nearest(c, static_cast<int>(peer.size()), [&](int n) {
        const auto& x = peer[static_cast<std::size_t>(n)];
        return std::pair(x.first, x.second);
      }));
    }
  }
  const double a =
      Time(pairs, 12, [](const Pair& p) -> long { return IntersectBeziers(p.a.data(), p.b.data()).count; });
  const double b = Time(
      pairs, 4, [](const Pair& p) -> long { return static_cast<long>(p.peerA.intersect(p.peerB).size()); });
  std::printf("%zu pairs, %d clear crossings checked\n", pairs.size(), crossings);
  std::printf("lumo      %8.1f ns  missed %d  error %.1e\n", a, ours.missed, ours.error);
  std::printf("lib2geom  %8.1f ns  missed %d  error %.1e\n", b, theirs.missed, theirs.error);
  std::printf("%.1f times\n", b / a);
  return ours.missed > 0 || ours.error > 1e-9;
}
