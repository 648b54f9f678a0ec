#pragma once
// The nearest point of lines and cubics to a query: the one rule by which a candidate replaces the best so
// far. A candidate wins only by a strictly smaller squared distance, so that of equally near ones the first
// in path order stays.

#include <cstdint>
#include <limits>

#include "lumo/point_types.h"
#include "math/point_traits.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo {

/// (b - a) x (q - a) as a double; for integer points exact before the one conversion, so that it is 0 only
/// for points on the line.
inline double LineCross(const tagPOINT& a, const tagPOINT& b, const tagPOINT& q) noexcept {
  __extension__ using Wide = __int128;  // differences take 33 bits, their products 66
  const auto side = [](std::int32_t to, std::int32_t from) { return Wide{to} - from; };
  return static_cast<double>(side(b.x, a.x) * side(q.y, a.y) - side(b.y, a.y) * side(q.x, a.x));
}
inline double LineCross(const DPoint& a, const DPoint& b, const DPoint& q) noexcept {
  return TavMath::Cross(b - a, q - a);
}

/// The best candidate so far. `query` is fixed; feed segments in path order.
template <class T>
class Nearest {
 public:
  /// Cubics whose control box is farther away than the limit (squared) are passed over.
  explicit Nearest(const T& query, double limitSqrd = (std::numeric_limits<double>::max)()) noexcept
      : stored_(query), query_(ToDouble(query)), limitSqrd_(limitSqrd) {}

  /// Tries the foot on the line, then its two ends. Whether the best was replaced.
  bool TryLine(const T& a, const T& b) noexcept {
    const DPoint start = ToDouble(a), end = ToDouble(b);
    const DVector direction = end - start;
    const double lengthSqrd = TavMath::LengthSqrd(direction);
    bool better = false;
    if (lengthSqrd > 0) {
      const double at = TavMath::Dot(query_ - start, direction) / lengthSqrd;
      if (at >= 0 && at <= 1) {
        const double cross = LineCross(a, b, stored_);
        better = Try(start + direction * at, at, cross * cross / lengthSqrd);
      }
    }
    better |= TryEnd(start, 0);
    better |= TryEnd(end, 1);
    return better;
  }

  /// Tries the nearest point of the cubic whose first point is p[0], then its two ends. Whether the best was
  /// replaced. A cubic whose control box is no nearer than the best is not solved.
  bool TryCubic(const T* p) noexcept {
    DPoint bezier[4];
    LoadCubic(p, bezier);
    const double box = BoxDistanceSqrd(bezier);
    if (!(box < distanceSqrd && box <= limitSqrd_)) return false;
    double at = 0, sqrd = 0;
    DPoint nearest{};
    bool better = TavMath::CubicBezier::FindClosestPointOnBezier(bezier, query_, at, nearest, sqrd) &&
                  Try(nearest, at, sqrd);
    better |= TryEnd(bezier[0], 0);
    better |= TryEnd(bezier[3], 1);
    return better;
  }

  bool Found() const noexcept { return t >= 0; }

  DPoint point{};  ///< unrounded
  double t = -1;   ///< on the segment that gave the best candidate
  double distanceSqrd = (std::numeric_limits<double>::max)();

 private:
  bool Try(const DPoint& candidate, double parameter, double sqrd) noexcept {
    if (!(sqrd < distanceSqrd)) return false;
    point = candidate;
    t = parameter;
    distanceSqrd = sqrd;
    return true;
  }
  bool TryEnd(const DPoint& end, double parameter) noexcept {
    return Try(end, parameter, TavMath::DistanceSqrd(end, query_));
  }
  /// From the query to the box of the control points, which holds the whole curve. 0 when a coordinate is not
  /// a number: such a cubic is left to the solver.
  double BoxDistanceSqrd(const DPoint p[4]) const noexcept {
    TavMath::BoundsT<double> box;
    for (int k = 0; k < 4; ++k) box.Add(p[k].x, p[k].y);
    const auto outside = [](double low, double high, double value) {
      return value < low ? low - value : value > high ? value - high : 0;
    };
    return TavMath::LengthSqrd(
        DVector{outside(box.minx, box.maxx, query_.x), outside(box.miny, box.maxy, query_.y)});
  }

  T stored_;
  DPoint query_;
  double limitSqrd_;
};

}  // namespace Lumo
