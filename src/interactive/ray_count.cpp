#include "interactive/ray_count.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "interactive/candidates.h"
#include "interactive/tolerances.h"
#include "math/point_traits.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo::Interactive {

namespace {

__extension__ using Wide = __int128;

/// Where the line a-b meets the row y, rounded half away from zero. y lies strictly between a.y and b.y.
/// Integer points: exact, whatever the coordinates; the numerator takes 65 bits.
std::int64_t RoundedCrossing(const tagPOINT& a, const tagPOINT& b, int y) {
  std::int64_t rise = std::int64_t{b.y} - a.y;
  Wide numerator = Wide{a.x} * rise + Wide{std::int64_t{y} - a.y} * (std::int64_t{b.x} - a.x);
  if (rise < 0) rise = -rise, numerator = -numerator;
  const Wide twice = 2 * (numerator < 0 ? -numerator : numerator) + rise;
  const auto rounded = static_cast<std::int64_t>(twice / (Wide{2} * rise));
  return numerator < 0 ? -rounded : rounded;
}
double RoundedCrossing(const DPoint& a, const DPoint& b, int y) {
  const double x = a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x);
  return std::trunc(x < 0 ? x - 0.5 : x + 0.5);
}

/// Above, below or left of the point: half-planes that the ray does not enter.
RectCode RayCode(const tagPOINT& p) { return RectCode({p.x, p.y, std::numeric_limits<int>::max(), p.y}); }

}  // namespace

template <class T>
bool RayCount::AddPiece(const T& a, const T& b) noexcept {
  const auto x = static_cast<decltype(T::x)>(p_.x), y = static_cast<decltype(T::x)>(p_.y);
  if (a.y == y) {
    if (a.x == x) return false;
    if (b.y == y) return !((a.x >= x && x >= b.x) || (a.x < x && x <= b.x));
    if (a.x > x) ++(b.y < y ? downTouches_ : upTouches_);
    return true;
  }
  if (b.y == y) {
    if (b.x == x) return false;
    if (b.x > x) ++(a.y > y ? upTouches_ : downTouches_);
    return true;
  }
  if ((a.y > y) == (b.y > y)) return true;
  if (a.x > x && b.x > x) {
    ++crossings_;
  } else if (a.x >= x || b.x >= x) {
    const auto at = RoundedCrossing(a, b, p_.y);
    if (at == p_.x) return false;
    crossings_ += at > p_.x;
  }
  return true;
}

bool RayCount::AddLine(const tagPOINT& a, const tagPOINT& b) noexcept { return AddPiece(a, b); }

bool RayCount::AddCubic(const tagPOINT* bezier) noexcept {
  const RectCode code = RayCode(p_);
  if ((code(bezier[0]) & code(bezier[1]) & code(bezier[2]) & code(bezier[3])) != 0) return true;
  const auto right = [this](const tagPOINT& q) { return q.x > p_.x; };
  const int y0 = bezier[0].y, y3 = bezier[3].y;
  if (std::all_of(bezier, bezier + 4, right) && y0 != p_.y && y3 != p_.y) {
    // Whatever the curve does, it does on the ray: an odd number of crossings when its ends lie on different
    // sides, else an even one.
    crossings_ += (y0 < p_.y) != (y3 < p_.y);
    return true;
  }
  DPoint p[4], polyline[kFillPieces + 1];
  LoadCubic(bezier, p);
  const int pieces = TavMath::BezierToLines(p, polyline, TavMath::CalculateNumBezierLines(p, kFillPieces));
  for (int k = 0; k < pieces; ++k)
    if (!AddPiece(polyline[k], polyline[k + 1])) return false;
  return true;
}

bool RayCount::AddSegments(const tagPOINT* points, const NODETYPE* types, int count, int first,
                           int end) noexcept {
  return ForCandidates(points, types, count, first, end, RayCode(p_), [&](int i) {
    return types[i].IsLine() ? AddLine(points[i - 1], points[i]) : AddCubic(points + (i - 1));
  });
}

bool RayCount::AddClosingLine(const tagPOINT* points, int first, int end) noexcept {
  if (end - first < 2 || points[first] == points[end - 1]) return true;
  return AddLine(points[end - 1], points[first]);
}

}  // namespace Lumo::Interactive
