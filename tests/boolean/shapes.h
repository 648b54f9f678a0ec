#pragma once
// Shapes and measures shared by the Boolean tests.

#include <cmath>
#include <vector>

#include "lumo/boolean.h"
#include "lumo/measure.h"
#include "lumo/path_array.h"
#include "support/curves.h"
#include "support/generators.h"
#include "support/oracles.h"

namespace test {

using Lumo::FillRule;
using Lumo::PolycurveT;

/// The area that a result covers: holes run the other way, so signs add up.
template <class T>
double Covered(const PolycurveT<T>& result) {
  return std::fabs(
      Lumo::GetArea(result.GetPoints(), result.GetNodeTypes(), static_cast<int>(result.GetPointCount())));
}

inline void AddCircle(DoublePath& path, DPoint c, double r) {
  const double k = 0.5522847498307936 * r;
  const auto at = [&](double x, double y) { return DPoint{c.x + x, c.y + y}; };
  path.Add(0x0C, at(r, 0));
  const double ends[4][2] = {{0, r}, {-r, 0}, {0, -r}, {r, 0}};
  double x = r, y = 0;
  for (int i = 0; i < 4; ++i) {
    const double ex = ends[i][0], ey = ends[i][1];
    path.Add(0xC0, at(x + ex / r * k, y + ey / r * k));
    path.Add(0xC0, at(ex + x / r * k, ey + y / r * k));
    path.Add(static_cast<unsigned char>(i < 3 ? 0x94 : 0x98), at(ex, ey));
    x = ex, y = ey;
  }
  path.types[path.types.size() - 13].SetContinuity(ContinuityType::smooth);
}
inline PolycurveT<DPoint> Circle(DPoint c, double r) {
  DoublePath path;
  AddCircle(path, c, r);
  return ToCurve(path);
}

/// A closed loop of n segments with random control points in a box: crosses itself freely. With a grid,
/// coordinates are multiples of it, so that ends, handles and whole segments coincide; then lines occur too.
inline DoublePath RandomLoop(Bits& bits, int n, double size, double grid = 0) {
  DoublePath path;
  const auto point = [&] {
    const auto coordinate = [&] {
      const double v = bits.Unit() * size;
      return grid > 0 ? std::floor(v / grid) * grid : v;
    };
    const double x = coordinate();
    return DPoint{x, coordinate()};
  };
  path.Add(0x0C, point());
  for (int i = 0; i < n; ++i) {
    const bool last = i + 1 == n;
    const bool line = grid > 0 && bits.OneIn(3);
    if (!line) {
      path.Add(0xC0, point());
      path.Add(0xC0, point());
    }
    const unsigned kind = line ? 0x40 : 0x80, flag = last ? 0x08 : 0x04;
    path.Add(static_cast<unsigned char>(kind | flag), last ? path.points[0] : point());
  }
  return path;
}

inline bool Fills(FillRule rule, int counterClockwise) {
  switch (rule) {
    case FillRule::evenOdd:
      return (counterClockwise & 1) != 0;
    case FillRule::nonZero:
      return counterClockwise != 0;
    case FillRule::positive:
      return counterClockwise < 0;  // positive area is clockwise
  }
  return false;
}

/// Sampled membership of a result: at points off all outlines, it fills exactly what `wanted` says, and winds
/// once.
template <class T, class Wanted>
testing::AssertionResult FillsWhere(const PolycurveT<T>& result, const Path<T>& a, const Path<T>& b,
                                    Bits& bits, DPoint low, DPoint high, double margin, Wanted&& wanted) {
  const auto flatA = Flatten(a, 64), flatB = Flatten(b, 64), flat = Flatten(ToPath(result), 64);
  for (int k = 0; k < 40; ++k) {
    const double x = low.x + bits.Unit() * (high.x - low.x);
    const DPoint p{x, low.y + bits.Unit() * (high.y - low.y)};
    if (DistanceTo(flatA, p, true) < margin || DistanceTo(flatB, p, true) < margin) continue;
    const int winding = WindingNumber(flat, p);
    const bool want = wanted(WindingNumber(flatA, p), WindingNumber(flatB, p));
    if (std::abs(winding) > 1 || (winding != 0) != want) {
      return testing::AssertionFailure() << "winds " << winding << " instead of " << want << " at " << p.x
                                         << "," << p.y << " of " << testing::PrintToString(ToPath(result));
    }
  }
  return testing::AssertionSuccess();
}

}  // namespace test
