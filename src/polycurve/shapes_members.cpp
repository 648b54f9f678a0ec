// The shape builders as members, and arcs that continue a path.

#include <algorithm>
#include <cmath>

#include "lumo/polycurve.h"
#include "lumo/shapes.h"
#include "math/point_traits.h"
#include "polycurve/arc_pieces.h"

namespace Lumo {
namespace {

/// Appends what a builder writes; a builder that writes nothing leaves the path as it is.
template <class T, std::size_t kRoom, class Build>
bool AppendShape(PolycurveT<T>& path, Build build, std::size_t skip = 0) noexcept {
  T points[kRoom];
  NODETYPE types[kRoom];
  const std::size_t n = build(points, types);
  return n > skip && path.PushBack(points + skip, types + skip, n - skip);
}

}  // namespace

template <class T>
bool PolycurveT<T>::CreateLineSubpath(const T& a, const T& b) noexcept {
  return AppendShape<T, kMaxLineNodes>(
      *this, [&](T* points, NODETYPE* types) { return BuildLine(points, types, ToDouble(a), ToDouble(b)); });
}

template <class T>
bool PolycurveT<T>::CreateEllipseSubpath(const T& center, double rx, double ry, double startAngle,
                                         double endAngle, bool pie, bool userOnEnd) noexcept {
  return AppendShape<T, kMaxPieNodes>(*this, [&](T* points, NODETYPE* types) {
    return BuildEllipse(points, types, ToDouble(center), rx, ry, startAngle, endAngle, pie, userOnEnd);
  });
}

template <class T>
bool PolycurveT<T>::CreateCircleSubpath(const T& center, double radius) noexcept {
  return CreateEllipseSubpath(center, radius, radius);
}

template <class T>
bool PolycurveT<T>::CreateRectangleSubpath(const Box& rect) noexcept {
  return AppendShape<T, kMaxRectangleNodes>(
      *this, [&](T* points, NODETYPE* types) { return BuildRectangle(points, types, rect); });
}

template <class T>
bool PolycurveT<T>::CreateRectangleSubpath(double width, double height) noexcept {
  return AppendShape<T, kMaxRectangleNodes>(
      *this, [&](T* points, NODETYPE* types) { return BuildRectangle(points, types, width, height); });
}

template <class T>
bool PolycurveT<T>::CreateRectangleSubpath(double width, double height, double radius, RectangleCorner corner,
                                           bool userOnEnd) noexcept {
  return AppendShape<T, kMaxRectangleNodes>(*this, [&](T* points, NODETYPE* types) {
    return BuildRectangle(points, types, width, height, radius, corner, userOnEnd);
  });
}

template <class T>
PolycurveT<T> PolycurveT<T>::CreateLine(const T& a, const T& b) noexcept {
  PolycurveT path;
  path.CreateLineSubpath(a, b);
  return path;
}

template <class T>
PolycurveT<T> PolycurveT<T>::CreateEllipse(const T& center, double rx, double ry, double startAngle,
                                           double endAngle, bool pie, bool userOnEnd) noexcept {
  PolycurveT path;
  path.CreateEllipseSubpath(center, rx, ry, startAngle, endAngle, pie, userOnEnd);
  return path;
}

template <class T>
PolycurveT<T> PolycurveT<T>::CreateCircle(const T& center, double radius) noexcept {
  return CreateEllipse(center, radius, radius);
}

template <class T>
PolycurveT<T> PolycurveT<T>::CreateRectangle(const Box& rect) noexcept {
  PolycurveT path;
  path.CreateRectangleSubpath(rect);
  return path;
}

template <class T>
PolycurveT<T> PolycurveT<T>::CreateRectangle(double width, double height) noexcept {
  PolycurveT path;
  path.CreateRectangleSubpath(width, height);
  return path;
}

template <class T>
PolycurveT<T> PolycurveT<T>::CreateRectangle(double width, double height, double radius,
                                             RectangleCorner corner, bool userOnEnd) noexcept {
  PolycurveT path;
  path.CreateRectangleSubpath(width, height, radius, corner, userOnEnd);
  return path;
}

template <class T>
bool PolycurveT<T>::CircularArcTo(const T& through, const T& end) noexcept {
  if (IsEmpty()) return false;
  const DPoint start = ToDouble(GetPoint(GetPointCount() - 1));
  return AppendShape<T, kMaxArcNodes>(
      *this,
      [&](T* points, NODETYPE* types) {
        return Build3PointCircularArc(points, types, start, ToDouble(through), ToDouble(end));
      },
      1);
}

template <class T>
bool PolycurveT<T>::CircularArcTo(const T& center, double sweep) noexcept {
  if (IsEmpty() || !std::isfinite(sweep) || sweep == 0) return false;
  const DPoint middle = ToDouble(center), start = ToDouble(GetPoint(GetPointCount() - 1));
  sweep = std::clamp(sweep, -kFullTurn, kFullTurn);
  const DPoint end = std::abs(sweep) == kFullTurn ? start : middle + Turned(start - middle, sweep);
  return AppendShape<T, kMaxArcNodes>(
      *this,
      [&](T* points, NODETYPE* types) {
        ArcNodes<T> nodes{points, types};
        nodes.Add(start, NODETYPE::kMove);
        nodes.AddTurn(middle, start, end, sweep);
        return nodes.Finish();
      },
      1);
}

#define LUMO_SHAPE_MEMBERS(T)                                                                               \
  LUMO_INSTANTIATE bool PolycurveT<T>::CreateLineSubpath(const T&, const T&) noexcept;                      \
  LUMO_INSTANTIATE bool PolycurveT<T>::CreateEllipseSubpath(const T&, double, double, double, double, bool, \
                                                            bool) noexcept;                                 \
  LUMO_INSTANTIATE bool PolycurveT<T>::CreateCircleSubpath(const T&, double) noexcept;                      \
  LUMO_INSTANTIATE bool PolycurveT<T>::CreateRectangleSubpath(const BoxT<T>&) noexcept;                     \
  LUMO_INSTANTIATE bool PolycurveT<T>::CreateRectangleSubpath(double, double) noexcept;                     \
  LUMO_INSTANTIATE bool PolycurveT<T>::CreateRectangleSubpath(double, double, double, RectangleCorner,      \
                                                              bool) noexcept;                               \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::CreateLine(const T&, const T&) noexcept;                    \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::CreateEllipse(const T&, double, double, double, double,     \
                                                              bool, bool) noexcept;                         \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::CreateCircle(const T&, double) noexcept;                    \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::CreateRectangle(const BoxT<T>&) noexcept;                   \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::CreateRectangle(double, double) noexcept;                   \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::CreateRectangle(double, double, double, RectangleCorner,    \
                                                                bool) noexcept;                             \
  LUMO_INSTANTIATE bool PolycurveT<T>::CircularArcTo(const T&, const T&) noexcept;                          \
  LUMO_INSTANTIATE bool PolycurveT<T>::CircularArcTo(const T&, double) noexcept;
LUMO_SHAPE_MEMBERS(tagPOINT)
LUMO_SHAPE_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
