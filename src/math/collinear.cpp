#include "tav/math/cubic_bezier.h"

namespace TavMath {

bool AreCollinear(const DPoint& p0, const DPoint& p1, const DPoint& p2, double toleranceSqrd) noexcept {
  const double a = DistanceSqrd(p0, p1), b = DistanceSqrd(p1, p2), c = DistanceSqrd(p2, p0);
  if (a < toleranceSqrd || b < toleranceSqrd || c < toleranceSqrd) return true;
  // The longest side is the base; the point opposite it is the apex.
  const DPoint* from = &p0;
  const DPoint* to = &p1;
  const DPoint* apex = &p2;
  double base = a;
  if (b > a && b > c) {
    from = &p2, to = &p1, apex = &p0, base = b;
  } else if (c > a) {
    from = &p0, to = &p2, apex = &p1, base = c;
  }
  if (!(base > 0)) return false;
  const DVector along = *to - *from;
  const double height = Cross(along, *apex - *from);
  return height * height / base < toleranceSqrd;
}

}  // namespace TavMath
