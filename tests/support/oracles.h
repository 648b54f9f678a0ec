#pragma once
// Slow, obvious references that the library is compared with. Nothing here calls the library.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "lumo/node_type.h"
#include "lumo/point_types.h"
#include "support/path_builder.h"

namespace test {

/// Why a pair of arrays is not a well-formed path; empty when it is. A path of no nodes is well formed.
template <class T>
std::string WhyIllFormed(const T* points, const NODETYPE* types, int count) {
  const auto at = [](const char* what, int k) { return std::string(what) + " at node " + std::to_string(k); };
  if (count > 0 && !types[0].IsMove()) return "node 0 is not a move node";
  for (int first = 0; first < count;) {
    int end = first + 1;
    while (end < count && !types[end].IsMove()) ++end;
    for (int k = first + 1; k < end;) {  // node k-1 is on the curve here
      if (types[k].IsLine()) {
        ++k;
        continue;
      }
      if (!types[k].IsControl()) return at("a curve node without two control points", k);
      if (k + 2 >= end || !types[k + 1].IsControl() || !types[k + 2].IsCurve())
        return at("a control point outside the pattern control, control, curve", k);
      k += 3;
    }
    for (int k = first; k < end; ++k) {
      if (((types[k].value >> 4) & 3) == 3) return at("continuity 3", k);
      if (types[k].IsClosed() && k != first && k != end - 1) return at("an inner closed flag", k);
    }
    const NODETYPE head = types[first], tail = types[end - 1];
    if (head.IsClosed() != tail.IsClosed()) return at("a subpath closed at one end only, starting", first);
    if (head.IsClosed() && end - first > 1) {
      if (points[first] != points[end - 1]) return at("closed ends that differ, subpath starting", first);
      if (!head.IsUser()) return at("a closed move node without the user flag", first);
      if (tail.IsUser()) return at("a closed last node with the user flag", end - 1);
    }
    first = end;
  }
  return {};
}
template <class T>
std::string WhyIllFormed(const Path<T>& path) {
  return WhyIllFormed(path.points.data(), path.types.data(), path.count());
}

template <class T>
testing::AssertionResult IsWellFormed(const Path<T>& path) {
  const std::string why = WhyIllFormed(path);
  if (why.empty()) return testing::AssertionSuccess();
  return testing::AssertionFailure() << why << " of " << testing::PrintToString(path);
}

/// A cubic by the Bernstein formula, in long doubles.
inline DPoint BezierAt(const DPoint p[4], double parameter) {
  const long double t = parameter, s = 1 - t;
  const long double w[4] = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
  long double x = 0, y = 0;
  for (int k = 0; k < 4; ++k) {
    x += w[k] * static_cast<long double>(p[k].x);
    y += w[k] * static_cast<long double>(p[k].y);
  }
  return {static_cast<double>(x), static_cast<double>(y)};
}

/// The point at a parameter of the segment that ends at a node.
template <class T>
DPoint SegmentAt(const Path<T>& path, int last, double t) {
  const auto at = [&](int back) { return AsDouble(path.point(last - back)); };
  if (path.type(last).IsLine()) return at(1) + t * (at(0) - at(1));
  const DPoint cubic[4] = {at(3), at(2), at(1), at(0)};
  return BezierAt(cubic, t);
}

/// A subpath as a polyline with its own first point; curves in equal parameter steps.
struct Polyline {
  std::vector<DPoint> points;
  bool closed = false;
};

/// Every subpath, each curve in the given number of pieces.
template <class T>
std::vector<Polyline> Flatten(const Path<T>& path, int pieces) {
  std::vector<Polyline> out;
  const auto point = [&](int k) { return AsDouble(path.point(k)); };
  for (int k = 0; k < path.count(); ++k) {
    const NODETYPE type = path.type(k);
    if (type.IsMove()) {
      out.push_back({{point(k)}, type.IsClosed()});
    } else if (type.IsLine()) {
      out.back().points.push_back(point(k));
    } else if (type.IsCurve()) {
      const DPoint cubic[4] = {point(k - 3), point(k - 2), point(k - 1), point(k)};
      for (int step = 1; step < pieces; ++step)
        out.back().points.push_back(BezierAt(cubic, static_cast<double>(step) / pieces));
      out.back().points.push_back(point(k));
    }
  }
  return out;
}

inline long double SegmentDistanceSqrd(const DPoint& a, const DPoint& b, const DPoint& p) {
  const long double ax = a.x, ay = a.y, dx = b.x - ax, dy = b.y - ay, px = p.x - ax, py = p.y - ay;
  const long double length = dx * dx + dy * dy;
  long double t = length > 0 ? (px * dx + py * dy) / length : 0;
  t = t < 0 ? 0 : t > 1 ? 1 : t;
  const long double ex = px - t * dx, ey = py - t * dy;
  return ex * ex + ey * ey;
}

/// Distance from a point to the nearest polyline piece (subpaths closed implicitly when asked for).
inline double DistanceTo(const std::vector<Polyline>& lines, const DPoint& p, bool closeAll = false) {
  long double best = HUGE_VALL;
  for (const Polyline& line : lines) {
    for (std::size_t k = 0; k + 1 < line.points.size(); ++k)
      best = std::fmin(best, SegmentDistanceSqrd(line.points[k], line.points[k + 1], p));
    if (closeAll || line.points.size() == 1)
      best = std::fmin(best, SegmentDistanceSqrd(line.points.back(), line.points.front(), p));
  }
  return static_cast<double>(std::sqrt(best));
}

/// The winding number of the polylines, each closed, about a point that is not on them.
inline int WindingNumber(const std::vector<Polyline>& lines, const DPoint& p) {
  int winding = 0;
  for (const Polyline& line : lines) {
    for (std::size_t k = 0; k < line.points.size(); ++k) {
      const DPoint a = line.points[k], b = line.points[(k + 1) % line.points.size()];
      const bool up = a.y <= p.y && b.y > p.y, down = b.y <= p.y && a.y > p.y;
      if (!up && !down) continue;
      const long double side = (static_cast<long double>(b.x) - a.x) * (static_cast<long double>(p.y) - a.y) -
                               (static_cast<long double>(p.x) - a.x) * (static_cast<long double>(b.y) - a.y);
      if (up && side > 0) ++winding;
      if (down && side < 0) --winding;
    }
  }
  return winding;
}

}  // namespace test
