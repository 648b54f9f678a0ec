#pragma once
// Two cubics brought to a common frame in which sums and products neither overflow nor cancel: origin in the
// middle of the common part of their boxes, size between a half and one (by a power of two, so that scaled
// drawings give the same bits).

#include "tav/math/cubic_bezier.h"

namespace TavMath {

using CubicBezier::Crossing;
using CubicBezier::Crossings;

struct CubicPair {
  DPoint a[4], b[4];
  const DPoint* documentA;
  const DPoint* documentB;
  DPoint origin;
  double scale;  ///< frame = (document - origin) * scale

  DPoint ToDocument(const DPoint& p) const { return {origin.x + p.x / scale, origin.y + p.y / scale}; }
};

enum class BoxRule { mustOverlap, mayBeApart };

/// False when a coordinate is not finite, or the boxes of the control points are apart where they must
/// overlap: then the curves share no point.
bool MakeCubicPair(const DPoint a[4], const DPoint b[4], CubicPair& pair,
                   BoxRule rule = BoxRule::mustOverlap) noexcept;

/// The point of a contact in document units: an end point itself, bit for bit, when a parameter is 0 or 1.
DPoint ContactPoint(const CubicPair& pair, double ta, double tb) noexcept;

/// Sorts by ta, then tb: the few contacts of one pair.
inline void SortCrossings(Crossings& list) {
  for (std::size_t k = 1; k < static_cast<std::size_t>(list.count); ++k) {
    const Crossing moved = list.at[k];
    std::size_t m = k;
    for (; m > 0; --m) {
      const Crossing& before = list.at[m - 1];
      if (before.ta < moved.ta || (before.ta == moved.ta && before.tb <= moved.tb)) break;
      list.at[m] = before;
    }
    list.at[m] = moved;
  }
}

/// B(t) and B'(t) in one go.
inline DPoint EvaluateBoth(const DPoint p[4], double t, DVector& derivative) {
  const double s = 1 - t;
  const DVector d0 = p[1] - p[0], d1 = p[2] - p[1], d2 = p[3] - p[2];
  const double w0 = s * s, w1 = 2 * s * t, w2 = t * t;
  derivative = {3 * (w0 * d0.x + w1 * d1.x + w2 * d2.x), 3 * (w0 * d0.y + w1 * d1.y + w2 * d2.y)};
  // From the nearer end, so that the ends are exact.
  if (t <= 0.5) {
    const double c0 = t * (1 + s * (1 + s)), c1 = w2 * (1 + 2 * s), c2 = w2 * t;
    return {p[0].x + (c0 * d0.x + c1 * d1.x + c2 * d2.x), p[0].y + (c0 * d0.y + c1 * d1.y + c2 * d2.y)};
  }
  const double c2 = s * (1 + t * (1 + t)), c1 = w0 * (1 + 2 * t), c0 = w0 * s;
  return {p[3].x - (c0 * d0.x + c1 * d1.x + c2 * d2.x), p[3].y - (c0 * d0.y + c1 * d1.y + c2 * d2.y)};
}

}  // namespace TavMath
