#include <cmath>

#include "math/roots.h"
#include "math/simd.h"
#include "math/tolerances.h"
#include "tav/math/cubic_bezier.h"

namespace TavMath::CubicBezier {
namespace {

using Tolerances::kLargeSqrd;
using Tolerances::kSmallSqrd;

/// Parameters strictly inside (0, 1) where one coordinate of the curve is stationary.
int StationaryParameters(double p0, double p1, double p2, double p3, double t[2]) {
  const double slope[3] = {p1 - p0, p2 - p1, p3 - p2};
  double roots[2];
  const int count = Roots::SolveQuadratic(slope, roots);
  int kept = 0;
  for (int k = 0; k < count; ++k) {
    if (roots[k] > 0 && roots[k] < 1) t[kept++] = roots[k];
  }
  return kept;
}

/// One coordinate of the curve, by the same steps as Evaluate.
double Coordinate(double p0, double p1, double p2, double p3, double t) {
  const double s = 1 - t;
  return s * s * (s * p0 + 3 * t * p1) + t * t * (3 * s * p2 + t * p3);
}

TwoDoubles Load(const DPoint& p) { return TwoDoubles{p.x, p.y}; }
TwoDoubles Least(TwoDoubles a, TwoDoubles b) { return a < b ? a : b; }
TwoDoubles Greatest(TwoDoubles a, TwoDoubles b) { return a > b ? a : b; }

BoundsT<double> BoxOf(TwoDoubles low, TwoDoubles high) {
  BoundsT<double> box;
  box.minx = low[0];
  box.miny = low[1];
  box.maxx = high[0];
  box.maxy = high[1];
  return box;
}

/// Any size, one coordinate at a time.
BoundsT<double> ScaledTightBox(const DPoint p[4]) {
  BoundsT<double> box;
  for (int k = 0; k < 4; ++k) {
    if (!std::isfinite(p[k].x) || !std::isfinite(p[k].y)) return box;
  }
  box.Add(p[0].x, p[0].y);
  box.Add(p[3].x, p[3].y);
  double t[2];
  for (int k = GetVerticalTangents(p, t); k-- > 0;) {
    box.Add(Coordinate(p[0].x, p[1].x, p[2].x, p[3].x, t[k]), p[0].y);
  }
  for (int k = GetHorizontalTangents(p, t); k-- > 0;) {
    box.Add(p[0].x, Coordinate(p[0].y, p[1].y, p[2].y, p[3].y, t[k]));
  }
  return box;
}

}  // namespace

int GetHorizontalTangents(const DPoint p[4], double t[2]) noexcept {
  return StationaryParameters(p[0].y, p[1].y, p[2].y, p[3].y, t);
}

int GetVerticalTangents(const DPoint p[4], double t[2]) noexcept {
  return StationaryParameters(p[0].x, p[1].x, p[2].x, p[3].x, t);
}

BoundsT<double> GetTightBox(const DPoint p[4]) noexcept {
  // x and y side by side, without a branch on where the extrema lie: a root outside (0, 1) or none at all
  // becomes an end, which changes nothing.
  const TwoDoubles p0 = Load(p[0]), p1 = Load(p[1]), p2 = Load(p[2]), p3 = Load(p[3]);
  TwoDoubles low = Least(p0, p3), high = Greatest(p0, p3);
  const TwoDoubles c0 = p1 - p0, c1 = p2 - p1, c2 = p3 - p2;
  const TwoDoubles size = c0 * c0 + c1 * c1 + c2 * c2;
  // Outside this range squares may overflow or vanish; also the way of NaN.
  if (!(size[0] + size[1] < kLargeSqrd && size[0] > kSmallSqrd && size[1] > kSmallSqrd))
    return ScaledTightBox(p);
  // Most curves that were drawn keep their controls within the box of their ends, and so keep within it
  // themselves.
  const auto within = (p1 >= low) & (p1 <= high) & (p2 >= low) & (p2 <= high);
  if (AllOf(within)) return BoxOf(low, high);
  const TwoDoubles half = c0 - c1, discriminant = c1 * c1 - c0 * c2;
  const TwoDoubles root = SquareRoot(Greatest(discriminant, Both(0)));
  const TwoDoubles q = half < 0 ? half - root : half + root;
  for (TwoDoubles t : {q / (half + (c2 - c1)), c0 / q}) {
    t = t < 1 ? t : Both(1);  // NaN: 1
    t = t > 0 ? t : Both(0);
    const TwoDoubles s = 1 - t;
    const TwoDoubles value = s * s * (s * p0 + 3 * t * p1) + t * t * (3 * s * p2 + t * p3);
    low = Least(value, low);
    high = Greatest(value, high);
  }
  return BoxOf(low, high);
}

}  // namespace TavMath::CubicBezier
