#pragma once
// A slow, obvious reference for crossings: boxes of ever smaller stretches in extended precision, chords at
// the bottom, Newton's method to finish. It gives only crossings that are beyond doubt: at a clear angle,
// away from the ends and from each other.

#include <algorithm>
#include <vector>

#include "support/cubics.h"

namespace LumoTest {

struct ClearCrossing {
  double ta, tb;
};

namespace CrossingOracle {

struct Box {
  long double minx, miny, maxx, maxy;
};

/// A box that holds the curve over [u, v]: its chord, grown by the greatest second derivative.
inline Box BoxOf(const Cubic& c, long double u, long double v, long double bend) {
  const LPoint p = EvaluateLong(c, u), q = EvaluateLong(c, v);
  const long double room = bend * (v - u) * (v - u) / 8;
  return {(std::min)(p.x, q.x) - room, (std::min)(p.y, q.y) - room, (std::max)(p.x, q.x) + room,
          (std::max)(p.y, q.y) + room};
}

/// The greatest |B''|.
inline long double BendOf(const Cubic& c) {
  const auto bend = [&](std::size_t k) { return 6 * Length((c[k + 2] - c[k + 1]) - (c[k + 1] - c[k])); };
  return (std::max)(bend(0), bend(1));
}

struct Search {
  const Cubic &a, &b;
  long double aBend, bBend;
  std::vector<ClearCrossing> found;

  void Polish(long double s, long double t) {
    for (int step = 0; step < 30; ++step) {
      const LPoint p = EvaluateLong(a, s), q = EvaluateLong(b, t), u = DerivativeLong(a, s),
                   v = DerivativeLong(b, t);
      const long double gx = p.x - q.x, gy = p.y - q.y, det = u.x * v.y - u.y * v.x;
      if (!(std::fabs(det) > 1e-2L * std::hypot(u.x, u.y) * std::hypot(v.x, v.y))) return;
      const long double ds = -(gx * v.y - gy * v.x) / det, dt = -(gx * u.y - gy * u.x) / det;
      s += ds, t += dt;
      if (!(std::fabs(s - 0.5L) < 1 && std::fabs(t - 0.5L) < 1)) return;
      if (std::fabs(ds) + std::fabs(dt) < 1e-18L) {
        const long double low = 1e-9L, high = 1 - low;
        if (s > low && s < high && t > low && t < high) {
          Add(static_cast<double>(s), static_cast<double>(t));
        }
        return;
      }
    }
  }
  void Add(double s, double t) {
    for (const ClearCrossing& c : found) {
      if (std::abs(c.ta - s) < 1e-10 && std::abs(c.tb - t) < 1e-10) return;
    }
    found.push_back({s, t});
  }
  void Run(long double s0, long double s1, long double t0, long double t1, int depth) {
    const Box p = BoxOf(a, s0, s1, aBend), q = BoxOf(b, t0, t1, bBend);
    if (p.minx > q.maxx || q.minx > p.maxx || p.miny > q.maxy || q.miny > p.maxy) return;
    if (depth == 0) return Polish((s0 + s1) / 2, (t0 + t1) / 2);
    const long double s = (s0 + s1) / 2, t = (t0 + t1) / 2;
    Run(s0, s, t0, t, depth - 1);
    Run(s0, s, t, t1, depth - 1);
    Run(s, s1, t0, t, depth - 1);
    Run(s, s1, t, t1, depth - 1);
  }
};

}  // namespace CrossingOracle

/// Crossings inside both curves at an angle of at least half a degree.
inline std::vector<ClearCrossing> FindClearCrossings(const Cubic& a, const Cubic& b, int depth = 8) {
  CrossingOracle::Search search{a, b, CrossingOracle::BendOf(a), CrossingOracle::BendOf(b), {}};
  search.Run(0, 1, 0, 1, depth);
  return search.found;
}

}  // namespace LumoTest
