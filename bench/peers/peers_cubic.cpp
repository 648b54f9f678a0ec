// The primitives of one cubic beside lib2geom and cairo: nanoseconds per call and worst error of each, over
// the same curves in the same run. Every answer is checked before it is timed.
//
//   peers_cubic [file]    file: one cubic a line, eight numbers; without it random cubics of drawing size

#include <2geom/bezier-curve.h>
#include <cairo.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "support/cubic_oracles.h"

namespace {

using namespace LumoTest;
using TavMath::BoundsT;
using namespace TavMath::CubicBezier;

double sink = 0;  // keeps the optimiser from dropping a call

struct Case {
  Cubic cubic;
  DPoint query;
  Geom::CubicBezier peer;
  double length;
};

std::vector<Case> RandomCases(int count) {
  std::vector<Case> cases;
  Random random(20240601);
  while (static_cast<int>(cases.size()) < count) {
    Cubic c{random.Point(1000), random.Point(1000), random.Point(1000), random.Point(1000)};
    cases.push_back({c, random.Point(1500), {}, 0});
  }
  return cases;
}

std::vector<Case> ReadCases(const char* name, std::size_t limit) {
  std::vector<Case> cases;
  std::ifstream in(name);
  Random random(1);
  Cubic c;
  std::vector<Cubic> all;
  while (in >> c[0].x >> c[0].y >> c[1].x >> c[1].y >> c[2].x >> c[2].y >> c[3].x >> c[3].y) all.push_back(c);
  const std::size_t step = std::max<std::size_t>(1, all.size() / limit);
  for (std::size_t k = 0; k < all.size(); k += step) {
    const double size = SizeOf(all[k]);
    cases.push_back({all[k], all[k][0] + 1.5 * size * (random.Point(1) - DPoint{0, 0}), {}, 0});
  }
  return cases;
}

/// Nanoseconds per case. The cases are timed in chunks, and each chunk counts with the best of its rounds, so
/// that a machine that does other work as well disturbs the result little.
double Time(const std::vector<Case>& cases, int rounds,
            const std::function<double(const Case*, const Case*)>& run) {
  constexpr std::size_t kChunk = 250;
  double total = 0;
  for (std::size_t from = 0; from < cases.size(); from += kChunk) {
    const Case* first = cases.data() + from;
    const Case* last = cases.data() + std::min(from + kChunk, cases.size());
    double best = 1e300;
    for (int k = 0; k < rounds; ++k) {
      const auto start = std::chrono::steady_clock::now();
      sink += run(first, last);
      const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - start;
      best = std::min(best, taken.count());
    }
    total += best;
  }
  return total / static_cast<double>(cases.size());
}

void Report(const char* name, double ours, double ourError, const char* peer, double theirs,
            double theirError) {
  std::printf("%-16s %8.1f ns  error %8.1e   %-9s %9.1f ns  error %8.1e   %7.1f times\n", name, ours,
              ourError, peer, theirs, theirError, theirs / ours);
}

template <class F>
auto Each(F f) {
  return [f](const Case* first, const Case* last) {
    double sum = 0;
    for (; first != last; ++first) sum += f(*first);
    return sum;
  };
}

void Lengths(const std::vector<Case>& cases, const std::vector<Case>& fewer) {
  double ours = 0, theirs = 0;
  for (const Case& c : fewer) {
    if (!(c.length > 0)) continue;
    ours = std::max(ours, std::abs(Length(c.cubic.data()) / c.length - 1));
    theirs = std::max(theirs, std::abs(c.peer.length(1e-9 * c.length) / c.length - 1));
  }
  const double a = Time(cases, 30, Each([](const Case& c) { return Length(c.cubic.data()); }));
  const double b = Time(fewer, 3, Each([](const Case& c) { return c.peer.length(1e-9 * c.length); }));
  Report("length", a, ours, "lib2geom", b, theirs);

  double worst = 0;
  for (const Case& c : fewer) {
    if (!(c.length > 0)) continue;
    const double t = GetCurveRelativeLengthParameter(c.cubic.data(), 0.3);
    worst = std::max(worst, std::abs(static_cast<double>(LengthOracle(c.cubic).Over(0, t)) / c.length - 0.3));
  }
  double inverse = 0;
  for (const double f : {0.1, 0.3, 0.5, 0.77}) {
    inverse +=
        0.25 * Time(cases, 15,
                    Each([f](const Case& c) { return GetCurveRelativeLengthParameter(c.cubic.data(), f); }));
  }
  std::printf("%-16s %8.1f ns  error %8.1e   %.2f times a length\n", "inverse length", inverse, worst,
              inverse / a);
}

void ClosestPoints(const std::vector<Case>& cases) {
  const auto ours = [](const Case& c) {
    double t = 0, d = 0;
    DPoint foot{};
    FindClosestPointOnBezier(c.cubic.data(), c.query, t, foot, d);
    return d;
  };
  const auto theirs = [](const Case& c) { return c.peer.nearestTime({c.query.x, c.query.y}); };
  double ourError = 0, theirError = 0;
  for (std::size_t k = 0; k < cases.size(); k += 7) {
    const Case& c = cases[k];
    double best = 1e300;
    for (int j = 0; j <= 10000; ++j)
      best = std::min(best, DistanceSqrd(Evaluate(c.cubic.data(), j * 1e-4), c.query));
    best = std::sqrt(best);
    const double size = SizeOf(c.cubic);
    ourError = std::max(ourError, (std::sqrt(ours(c)) - best) / size);
    theirError = std::max(theirError, (Distance(Evaluate(c.cubic.data(), theirs(c)), c.query) - best) / size);
  }
  Report("closest point", Time(cases, 20, Each(ours)), ourError, "lib2geom", Time(cases, 3, Each(theirs)),
         theirError);
}

void Boxes(const std::vector<Case>& cases) {
  double ourError = 0, theirError = 0;
  for (std::size_t k = 0; k < cases.size(); k += 7) {
    const Case& c = cases[k];
    const BoundsT<double> box = GetTightBox(c.cubic.data());
    const Geom::Rect peer = c.peer.boundsExact();
    BoundsT<double> dense;
    for (int j = 0; j <= 4000; ++j) {
      const LPoint p = EvaluateLong(c.cubic, j / 4000.0L);
      dense.Add(static_cast<double>(p.x), static_cast<double>(p.y));
    }
    const double size = SizeOf(c.cubic);
    const auto miss = [&](double minx, double miny, double maxx, double maxy) {
      return std::max({minx - dense.minx, miny - dense.miny, dense.maxx - maxx, dense.maxy - maxy}) / size;
    };
    ourError = std::max(ourError, miss(box.minx, box.miny, box.maxx, box.maxy));
    theirError = std::max(theirError, miss(peer.left(), peer.top(), peer.right(), peer.bottom()));
  }
  const double a = Time(cases, 30, Each([](const Case& c) {
                          const auto box = GetTightBox(c.cubic.data());
                          return box.minx + box.maxx + box.miny + box.maxy;
                        }));
  const double b = Time(cases, 5, Each([](const Case& c) {
                          const auto box = c.peer.boundsExact();
                          return box.left() + box.right() + box.top() + box.bottom();
                        }));
  Report("tight box", a, ourError, "lib2geom", b, theirError);
}

double DistanceToLines(const DPoint& p, const DPoint* lines, int count) {
  double best = 1e300;
  for (int j = 0; j < count; ++j) {
    const DVector e = lines[j + 1] - lines[j];
    const double l = LengthSqrd(e);
    const double s = l > 0 ? std::clamp(Dot(p - lines[j], e) / l, 0.0, 1.0) : 0;
    best = std::min(best, DistanceSqrd(p, lines[j] + s * e));
  }
  return std::sqrt(best);
}

/// The fewest chords with corners on the curve: the longest stretch within the tolerance, again and again
/// (dense sampling decides, so this is slow).
int FewestPieces(const Cubic& c, double tolerance) {
  constexpr int kSamples = 2000;
  static DPoint at[kSamples + 1];
  for (int k = 0; k <= kSamples; ++k) at[k] = Evaluate(c.data(), static_cast<double>(k) / kSamples);
  const auto fits = [&](int from, int to) {
    const DPoint chord[2] = {at[from], at[to]};
    for (int k = from + 1; k < to; ++k) {
      if (DistanceToLines(at[k], chord, 1) > tolerance) return false;
    }
    return true;
  };
  int pieces = 0;
  for (int from = 0; from < kSamples; ++pieces) {
    int low = from + 1, high = kSamples;
    if (fits(from, high)) low = high;
    while (high - low > 1) {
      const int middle = (low + high) / 2;
      (fits(from, middle) ? low : high) = middle;
    }
    from = low;
  }
  return pieces;
}

struct Flattened {
  double ours = 0, theirs = 0, ourTime = 0, theirTime = 0;
};

void Flattening(const std::vector<Case>& cases, double relativeTolerance) {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
  cairo_t* cr = cairo_create(surface);
  double ourWorst = 0, theirWorst = 0, ourRatio = 0;
  long ours = 0, theirs = 0, fewest = 0, checked = 0;
  static DPoint lines[4096];
  // cairo keeps coordinates in 24.8 fixed point, so every curve is brought to a size of 10,000 for both.
  std::vector<Case> scaled;
  for (const Case& c : cases) {
    const double size = SizeOf(c.cubic);
    if (!(size > 0)) continue;
    Case s = c;
    for (std::size_t k = 0; k < 4; ++k) {
      const DVector v = c.cubic[k] - c.cubic[0];
      s.cubic[k] = {std::round(v.x * 10000 / size), std::round(v.y * 10000 / size)};
    }
    scaled.push_back(s);
  }
  const double tolerance = relativeTolerance * 10000;
  cairo_set_tolerance(cr, tolerance);
  const auto flatten = [&](const Case& c) {
    return AdaptiveBezierToLines(c.cubic.data(), lines, tolerance * tolerance, 4096);
  };
  const auto cairoFlatten = [&](const Case& c, bool read) {
    cairo_new_path(cr);
    cairo_move_to(cr, c.cubic[0].x, c.cubic[0].y);
    cairo_curve_to(cr, c.cubic[1].x, c.cubic[1].y, c.cubic[2].x, c.cubic[2].y, c.cubic[3].x, c.cubic[3].y);
    cairo_path_t* path = cairo_copy_path_flat(cr);
    int count = 0;
    for (int k = 0; k < path->num_data; k += path->data[k].header.length) {
      if (read) lines[count] = {path->data[k + 1].point.x, path->data[k + 1].point.y};
      ++count;
    }
    cairo_path_destroy(path);
    return count - 1;
  };
  const auto worst = [&](const Case& c, int count) {
    double farthest = 0;
    for (int k = 0; k <= 500; ++k)
      farthest = std::max(farthest, DistanceToLines(Evaluate(c.cubic.data(), k / 500.0), lines, count));
    return farthest / tolerance;
  };
  for (std::size_t k = 0; k < scaled.size(); k += 29) {
    const int n = flatten(scaled[k]);
    ourWorst = std::max(ourWorst, worst(scaled[k], n));
    const int f = FewestPieces(scaled[k].cubic, tolerance);
    ourRatio = std::max(ourRatio, static_cast<double>(n) / f);
    fewest += f;
    ours += n;
    ++checked;
    const int m = cairoFlatten(scaled[k], true);
    theirs += m;
    theirWorst = std::max(theirWorst, worst(scaled[k], m));
  }
  const double a = Time(scaled, 10, Each([&](const Case& c) { return static_cast<double>(flatten(c)); }));
  const double b =
      Time(scaled, 5, Each([&](const Case& c) { return static_cast<double>(cairoFlatten(c, false)); }));
  const double n = static_cast<double>(checked);
  std::printf(
      "flatten %-8.0e %8.1f ns  error %.4f tol, %.2f pieces (%.3f x fewest, worst %.2f)   cairo %9.1f ns  "
      "error %.3f tol, "
      "%.2f pieces   %.1f times\n",
      relativeTolerance, a, ourWorst, static_cast<double>(ours) / n,
      static_cast<double>(ours) / static_cast<double>(fewest), ourRatio, b, theirWorst,
      static_cast<double>(theirs) / n, b / a);
  cairo_destroy(cr);
  cairo_surface_destroy(surface);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<Case> cases = argc > 1 ? ReadCases(argv[1], 10000) : RandomCases(5000);
  for (Case& c : cases) {
    const auto point = [](const DPoint& p) { return Geom::Point(p.x, p.y); };
    c.peer = Geom::CubicBezier(point(c.cubic[0]), point(c.cubic[1]), point(c.cubic[2]), point(c.cubic[3]));
    c.length = static_cast<double>(LengthOracle(c.cubic).Over(0, 1));
  }
  const std::vector<Case> fewer(
      cases.begin(), cases.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(cases.size(), 1000)));
  std::printf("%zu cubics\n", cases.size());
  Lengths(cases, fewer);
  ClosestPoints(cases);
  Boxes(cases);
  for (const double tolerance : {1e-2, 1e-3, 1e-4, 1e-5}) Flattening(cases, tolerance);
  return sink == 12345 ? 1 : 0;
}
