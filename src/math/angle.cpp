#include "tav/math/angle.h"

#include <cmath>
#include <numbers>

namespace TavMath {

namespace Radians {

double NormalizeAngle(double angle) noexcept {
  constexpr double kTurn = 2 * std::numbers::pi;
  double reduced = std::fmod(angle, kTurn);
  if (reduced < 0) reduced += kTurn;
  // A tiny negative angle rounds up to a full turn, which is no angle of the half-open range.
  return reduced >= kTurn ? 0 : reduced;
}

DVector AngleToVector(double angle) noexcept { return {std::cos(angle), std::sin(angle)}; }

double VectorToAngle(const DVector& v) noexcept {
  if (v.x == 0 && v.y == 0) return 0;
  const double angle = std::atan2(v.y, v.x);
  return angle == -std::numbers::pi ? std::numbers::pi : angle;
}

}  // namespace Radians

namespace Degrees {

double GetFineAngle(const DVector& u, const DVector& v) noexcept {
  // The arc tangent of cross and dot keeps its digits near 0 and 180 degrees, where an arc cosine loses half
  // of them. Both vectors are brought near unit size first, so that no product overflows or vanishes.
  const auto scaled = [](const DVector& w) {
    const double largest = std::fmax(std::abs(w.x), std::abs(w.y));
    if (!(largest > 0)) return DVector{0, 0};
    return DVector{w.x / largest, w.y / largest};
  };
  const DVector a = scaled(u), b = scaled(v);
  if ((a.x == 0 && a.y == 0) || (b.x == 0 && b.y == 0)) return 0;
  return std::atan2(std::abs(Cross(a, b)), Dot(a, b)) * (180 / std::numbers::pi);
}

}  // namespace Degrees
}  // namespace TavMath
