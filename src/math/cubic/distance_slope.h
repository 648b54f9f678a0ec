#pragma once
#include "tav/math/vector2d.h"

namespace TavMath::CubicBezier {

/// A sixth of the derivative of the squared distance |B(t) - query|^2, (B - query) . (B' / 3), as the six
/// Bernstein coefficients of a quintic. Its roots are where the distance is least or greatest.
inline void DistanceSlope(const DPoint p[4], const DPoint& query, double g[6]) {
  const DVector v[4] = {p[0] - query, p[1] - query, p[2] - query, p[3] - query};
  const DVector d[3] = {p[1] - p[0], p[2] - p[1], p[3] - p[2]};
  g[0] = Dot(v[0], d[0]);
  g[1] = (2 * Dot(v[0], d[1]) + 3 * Dot(v[1], d[0])) * 0.2;
  g[2] = (Dot(v[0], d[2]) + 6 * Dot(v[1], d[1]) + 3 * Dot(v[2], d[0])) * 0.1;
  g[3] = (Dot(v[3], d[0]) + 6 * Dot(v[2], d[1]) + 3 * Dot(v[1], d[2])) * 0.1;
  g[4] = (2 * Dot(v[3], d[1]) + 3 * Dot(v[2], d[2])) * 0.2;
  g[5] = Dot(v[3], d[2]);
}

}  // namespace TavMath::CubicBezier
