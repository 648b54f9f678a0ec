#include <algorithm>
#include <cmath>

#include "lumo/shapes.h"
#include "math/point_traits.h"
#include "polycurve/arc_pieces.h"

namespace Lumo {
namespace {

constexpr NODETYPE kPlainTypes[] = {NODETYPE::kMove | NODETYPE::kClosed | NODETYPE::kUser,
                                    NODETYPE::kLine | NODETYPE::kUser, NODETYPE::kLine | NODETYPE::kUser,
                                    NODETYPE::kLine | NODETYPE::kUser, NODETYPE::kLine | NODETYPE::kClosed};

template <class T>
std::size_t WritePlain(T* points, NODETYPE* types, const T& low, const T& high) {
  if (!points) return 0;
  const T corners[] = {low, {high.x, low.y}, high, {low.x, high.y}, low};
  std::copy(corners, corners + 5, points);
  if (types) std::copy(kPlainTypes, kPlainTypes + 5, types);
  return 5;
}

void GetCorners(const tagRECT& rect, tagPOINT& low, tagPOINT& high) {
  low = {rect.left, rect.top};
  high = {rect.right, rect.bottom};
}
void GetCorners(const TavMath::BoundsT<double>& rect, DPoint& low, DPoint& high) {
  low = {rect.minx, rect.miny};
  high = {rect.maxx, rect.maxy};
}

/// A corner with its two radii: along the sides that meet there.
struct Corner {
  DPoint at;
  double rx, ry;
  RectangleCorner kind;

  bool IsPlain() const { return !(rx > 0 && ry > 0); }
};

/// Writes a closed path whose start is known only by its first node; lines of no length are left out.
template <class T>
struct ClosedPathWriter {
  T* points;
  NODETYPE* types;
  std::size_t count = 0;

  void Add(const DPoint& p, int type) {
    points[count] = FromDouble<T>(p);
    types[count++] = static_cast<unsigned char>(type);
  }
  void LineTo(const DPoint& p) {
    if (points[count - 1] != FromDouble<T>(p)) Add(p, NODETYPE::kLine | NODETYPE::kUser);
  }
  /// A quarter ellipse from the last node; `from` and `to` are its radii there, as directions from its
  /// centre.
  void QuarterTo(const DPoint& center, const DVector& from, const DVector& to, bool smooth) {
    const double f = ArcHandleFactor(kQuarterTurn);
    if (smooth) types[count - 1].SetContinuity(ContinuityType::smooth);
    Add(center + from + f * to, NODETYPE::kControl);
    Add(center + to + f * from, NODETYPE::kControl);
    Add(center + to, NODETYPE::kCurve | NODETYPE::kUser | (smooth ? NODETYPE::kSmooth : 0));
  }
};

/// The side of corner k that the path arrives along and the one that it leaves along, as directions away from
/// the corner.
DVector ArrivalSide(int k, const Corner& c) {
  const DVector sides[] = {{0, c.ry}, {-c.rx, 0}, {0, -c.ry}, {c.rx, 0}};
  return sides[k];
}
DVector DepartureSide(int k, const Corner& c) {
  const DVector sides[] = {{c.rx, 0}, {0, c.ry}, {-c.rx, 0}, {0, -c.ry}};
  return sides[k];
}

template <class T>
void AddCorner(ClosedPathWriter<T>& path, int k, const Corner& corner) {
  if (corner.IsPlain()) return path.LineTo(corner.at);
  const DVector arrival = ArrivalSide(k, corner), departure = DepartureSide(k, corner);
  path.LineTo(corner.at + arrival);
  switch (corner.kind) {
    case RectangleCorner::chamfer:
      return path.LineTo(corner.at + departure);
    case RectangleCorner::scallop:
      return path.QuarterTo(corner.at, arrival, departure, false);
    case RectangleCorner::round:
      break;
  }
  path.QuarterTo(corner.at + arrival + departure, -departure, -arrival, true);
}

}  // namespace

template <class T>
std::size_t BuildRectangle(T* points, NODETYPE* types, double width, double height) noexcept {
  if (!types || !std::isfinite(width) || !std::isfinite(height)) return 0;
  return WritePlain(points, types, T{0, 0}, FromDouble<T>({width, height}));
}

template <class T>
std::size_t BuildRectangle(T* points, NODETYPE* types, const BoxT<T>& rect) noexcept {
  T low, high;
  GetCorners(rect, low, high);
  return WritePlain(points, types, low, high);
}

template <class T>
std::size_t BuildRectangle(T* points, const BoxT<T>& rect) noexcept {
  return BuildRectangle(points, static_cast<NODETYPE*>(nullptr), rect);
}

template <class T>
std::size_t BuildRectangle(T* points, NODETYPE* types, double width, double height, double radius0,
                           RectangleCorner corner0, double radius1, RectangleCorner corner1, double radius2,
                           RectangleCorner corner2, double radius3, RectangleCorner corner3, double scaleX,
                           double scaleY, bool userOnEnd) noexcept {
  for (const double v : {width, height, radius0, radius1, radius2, radius3, scaleX, scaleY}) {
    if (!std::isfinite(v)) return 0;
  }
  if (!points || !types) return 0;
  const double most = 0.5 * std::min(std::abs(width), std::abs(height));
  // The sides of a rectangle of negative size run the other way.
  const double towardsX = width < 0 ? -1 : 1, towardsY = height < 0 ? -1 : 1;
  const auto make = [&](const DPoint& at, double radius, RectangleCorner kind) {
    const double limited = std::clamp(radius, 0.0, most);
    return Corner{at, std::clamp(limited * scaleX, 0.0, 0.5 * std::abs(width)),
                  std::clamp(limited * scaleY, 0.0, 0.5 * std::abs(height)), kind};
  };
  const Corner corners[] = {make({0, 0}, radius0, corner0), make({std::abs(width), 0}, radius1, corner1),
                            make({std::abs(width), std::abs(height)}, radius2, corner2),
                            make({0, std::abs(height)}, radius3, corner3)};
  ClosedPathWriter<T> path{points, types};
  const Corner& first = corners[0];
  path.Add(first.IsPlain() ? first.at : first.at + DepartureSide(0, first),
           NODETYPE::kMove | NODETYPE::kUser);
  for (const int k : {1, 2, 3, 0}) AddCorner(path, k, corners[k]);
  if (path.count < 2) return BuildRectangle(points, types, width, height);
  for (std::size_t k = 0; k < path.count; ++k) {
    const DPoint p = ToDouble(points[k]);
    points[k] = FromDouble<T>({towardsX * p.x, towardsY * p.y});
  }
  NODETYPE& start = types[0];
  NODETYPE& last = types[path.count - 1];
  points[path.count - 1] = points[0];
  start |= NODETYPE::kClosed;
  last |= NODETYPE::kClosed;
  start.SetContinuity(last.Continuity());
  (userOnEnd ? start : last).Set(NODETYPE::kUser, false);
  return path.count;
}

template <class T>
std::size_t BuildRectangle(T* points, NODETYPE* types, double width, double height, double radius,
                           RectangleCorner corner, bool userOnEnd) noexcept {
  return BuildRectangle(points, types, width, height, radius, corner, radius, corner, radius, corner, radius,
                        corner, 1.0, 1.0, userOnEnd);
}

LUMO_SHAPE_RECTANGLE(LUMO_INSTANTIATE, tagPOINT)
LUMO_SHAPE_RECTANGLE(LUMO_INSTANTIATE, TavMath::DPoint)

}  // namespace Lumo
