#pragma once
// The cubics that stand for a circular arc.

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "lumo/node_type.h"
#include "math/point_traits.h"
#include "polycurve/tolerances.h"

namespace Lumo {

/// A quarter turn and a full turn, in radians.
inline constexpr double kQuarterTurn = 1.5707963267948966;
inline constexpr double kFullTurn = 6.283185307179586;

/// The length of the handles of an arc over an angle (at most a half turn), as a share of the radius.
inline double ArcHandleFactor(double angle) noexcept { return 4.0 / 3.0 * std::tan(angle * 0.25); }

/// A direction turned left by an angle.
inline DVector Turned(const DVector& d, double angle) {
  const double c = std::cos(angle), s = std::sin(angle);
  return {c * d.x - s * d.y, s * d.x + c * d.y};
}

/// The nodes of an arc that are written so far.
template <class T>
struct ArcNodes {
  T* points;
  NODETYPE* types;
  std::size_t count = 0;

  void Add(const DPoint& p, int type) {
    points[count] = FromDouble<T>(p);
    types[count++] = static_cast<unsigned char>(type);
  }
  /// Appends the arc about a centre, from a point (which stands already) by a turn to a point that lies
  /// there. Pieces of a quarter turn at most, all alike.
  void AddTurn(const DPoint& center, const DPoint& from, const DPoint& to, double turn) {
    constexpr int kJoint = NODETYPE::kCurve | NODETYPE::kSmooth | NODETYPE::kUser;
    const int pieces =
        std::max(1, static_cast<int>(std::ceil(std::abs(turn) / kQuarterTurn - kFullTurnSlack)));
    const double step = turn / pieces, f = ArcHandleFactor(step);
    DVector radius = from - center;
    DPoint start = from;
    for (int k = 1; k <= pieces; ++k) {
      const DPoint end = k == pieces ? to : center + Turned(from - center, k * step);
      const DVector next = end - center;
      Add(start + f * TavMath::LeftNormal(radius), NODETYPE::kControl);
      Add(end - f * TavMath::LeftNormal(next), NODETYPE::kControl);
      Add(end, kJoint);
      radius = next;
      start = end;
    }
  }
  std::size_t Finish() {
    types[count - 1].SetContinuity(ContinuityType::cusp);
    return count;
  }
};

}  // namespace Lumo
