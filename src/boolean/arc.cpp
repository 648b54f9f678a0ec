#include "boolean/arc.h"

#include "boolean/tolerances.h"

namespace Lumo::Planar {

double Project(const Curve& c, const DPoint& q) {
  if (c.line) {
    const DVector d = c.p[3] - c.p[0];
    const double sqrd = TavMath::LengthSqrd(d);
    return sqrd > 0 ? std::clamp(TavMath::Dot(q - c.p[0], d) / sqrd, 0.0, 1.0) : 0;
  }
  // All directions of a monotone arc lie in one quadrant, so f(t) = (B(t) - q) . B'(t) changes sign once for
  // a near point q: Newton within a bracket, with the slope of a near point, which keeps its sign.
  if (TavMath::Dot(c.p[0] - q, LeavingDirection(c, false, kHandle)) >= 0) return 0;
  if (TavMath::Dot(c.p[3] - q, LeavingDirection(c, true, kHandle)) >= 0) return 1;
  // In powers of t, as seen from q.
  const DVector e0 = c.p[0] - q, e1 = 3.0 * (c.p[1] - c.p[0]),
                e2 = 3.0 * ((c.p[2] - c.p[1]) - (c.p[1] - c.p[0])),
                e3 = (c.p[3] - c.p[0]) - 3.0 * (c.p[2] - c.p[1]);
  double low = 0, high = 1;
  const DVector chord = c.p[3] - c.p[0];
  double t = std::clamp(TavMath::Dot(q - c.p[0], chord) / TavMath::LengthSqrd(chord), 0.01, 0.99);
  for (int k = 0; k < kProjectSteps && high - low > kProjectSettled; ++k) {
    const DVector away = e0 + t * (e1 + t * (e2 + t * e3)), d = e1 + t * (2.0 * e2 + (3 * t) * e3);
    const double f = TavMath::Dot(away, d), slope = TavMath::LengthSqrd(d);
    double next = 0.5 * (low + high);
    if (slope > 0) {
      if (f == 0) break;
      (f > 0 ? high : low) = t;
      next = t - f / slope;
      if (!(next > low && next < high)) next = 0.5 * (low + high);
    }
    const double step = std::fabs(next - t);
    t = next;
    if (step < kProjectSettled) break;
  }
  return t;
}

}  // namespace Lumo::Planar
