#pragma once
// De Casteljau's construction, once for evaluation, subdivision and sections, so that a point evaluated at t
// and the split point at t are the same bits.

#include "tav/math/vector2d.h"

namespace TavMath {

/// The weight of one de Casteljau step, taken from the nearer end: exact at t = 0 and t = 1, equal inputs
/// give that same value, and reversing the curve mirrors the result.
struct Weight {
  explicit constexpr Weight(double t) : fromStart(t <= 0.5), w(t <= 0.5 ? t : 1 - t) {}
  bool fromStart;
  double w;
  constexpr DPoint operator()(const DPoint& a, const DPoint& b) const {
    return fromStart ? DPoint{a.x + w * (b.x - a.x), a.y + w * (b.y - a.y)}
                     : DPoint{b.x - w * (b.x - a.x), b.y - w * (b.y - a.y)};
  }
};

/// The polar form of the cubic: Blossom(p, t, t, t) is the point at t.
constexpr DPoint Blossom(const DPoint p[4], Weight u, Weight v, Weight w) {
  const DPoint a = u(p[0], p[1]), b = u(p[1], p[2]), c = u(p[2], p[3]);
  return w(v(a, b), v(b, c));
}

}  // namespace TavMath
