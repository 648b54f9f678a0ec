#pragma once
// Primitive shapes written into the caller's arrays: lines, ellipses, elliptical arcs, pie wedges, circular
// arcs and rectangles. Each returns the number of nodes written and states the most it may write; 0 for null
// arrays and for numbers that are not finite. Angles are in radians, counter-clockwise (y up). Integer points
// are rounded half away from zero.
//
// Arcs are cubics of at most a quarter turn, whose handles are 4/3 tan(a/4) times the radius for an angle a.
// A quarter strays from its circle by at most 2.8e-4 of the radius; an eighth by 4e-6. (M. Goldapp,
// "Approximation of circular arcs by cubic polynomials", Computer Aided Geometric Design 8, 1991.)

#include <cstddef>

#include "lumo/forward.h"
#include "lumo/node_type.h"
#include "lumo/path_views.h"
#include "lumo/point_types.h"
#include "tav/math/rect.h"

namespace Lumo {

/// How a rectangle's corner is shaped: a quarter ellipse bulging outwards, one bulging inwards, a straight
/// cut.
enum class RectangleCorner : int { round = 0, scallop = 1, chamfer = 2 };

/// Most nodes that a builder writes.
inline constexpr std::size_t kMaxLineNodes = 2;
inline constexpr std::size_t kMaxArcNodes = 16;
inline constexpr std::size_t kMaxPieNodes = 18;
inline constexpr std::size_t kMaxRectangleNodes = 17;

/// A straight line: 2 nodes.
template <class T>
LUMO_TEMPLATE_API std::size_t BuildLine(T* points, NODETYPE* types, const TavMath::DPoint& a,
                                        const TavMath::DPoint& b) noexcept;

/// An elliptical arc from startAngle on to endAngle (a full turn when they are equal; an end before the start
/// lies a turn further on), a full ellipse, or a pie wedge: centre, arc, back to the centre. Split at the
/// quarter turns, whose nodes are symmetric where two whole quarters meet, else smooth. `userOnEnd`: inner
/// arc nodes are no user nodes; a pie's centre neither. The arc end of a pie is a cusp with the user flag,
/// always. 16 nodes at most, a pie 18.
template <class T>
LUMO_TEMPLATE_API std::size_t BuildEllipse(T* points, NODETYPE* types, const TavMath::DPoint& center,
                                           double rx, double ry, double startAngle, double endAngle, bool pie,
                                           bool userOnEnd) noexcept;
/// A full circle: 13 nodes, starting at the centre + (r, 0).
template <class T>
LUMO_TEMPLATE_API void BuildCircle(T* points, NODETYPE* types, const TavMath::DPoint& center,
                                   double r) noexcept;

/// A closed rectangle of 5 nodes: (0,0), (width,0), (width,height), (0,height), (0,0).
template <class T>
LUMO_TEMPLATE_API std::size_t BuildRectangle(T* points, NODETYPE* types, double width,
                                             double height) noexcept;
/// The same at (left,top), (right,top), (right,bottom), (left,bottom), (left,top) of a tagRECT or
/// BoundsT<double>. With null types, or without, the points only.
template <class T>
LUMO_TEMPLATE_API std::size_t BuildRectangle(T* points, NODETYPE* types, const BoxT<T>& rect) noexcept;
template <class T>
LUMO_TEMPLATE_API std::size_t BuildRectangle(T* points, const BoxT<T>& rect) noexcept;
/// A rectangle with shaped corners, in the order (0,0), (width,0), (width,height), (0,height). A radius of 0
/// makes a plain corner. A corner's radii are its radius times scaleX and scaleY, at most half a side each.
/// The path starts behind the first corner; lines of no length are left out. `userOnEnd`: the closing node
/// carries the user flag instead of the first. 17 nodes at most.
template <class T>
LUMO_TEMPLATE_API std::size_t BuildRectangle(T* points, NODETYPE* types, double width, double height,
                                             double radius0, RectangleCorner corner0, double radius1,
                                             RectangleCorner corner1, double radius2, RectangleCorner corner2,
                                             double radius3, RectangleCorner corner3, double scaleX,
                                             double scaleY, bool userOnEnd) noexcept;
/// The same corner four times, unscaled.
template <class T>
LUMO_TEMPLATE_API std::size_t BuildRectangle(T* points, NODETYPE* types, double width, double height,
                                             double radius, RectangleCorner corner, bool userOnEnd) noexcept;

// Open circular arcs, 16 nodes at most. They pass exactly (for integers: rounded) through the points given.

/// About a centre, counter-clockwise; a full turn when the angles are equal.
template <class T>
LUMO_TEMPLATE_API std::size_t BuildCircularArc(T* points, NODETYPE* types, const TavMath::DPoint& center,
                                               double radius, double startAngle, double endAngle) noexcept;
/// From p1 through p2, which becomes a node, to p3; a line from p1 to p3 when the three are collinear.
template <class T>
LUMO_TEMPLATE_API std::size_t Build3PointCircularArc(T* points, NODETYPE* types, const TavMath::DPoint& p1,
                                                     const TavMath::DPoint& p2,
                                                     const TavMath::DPoint& p3) noexcept;
template <class T>
LUMO_TEMPLATE_API std::size_t BuildCircularArc(T* points, NODETYPE* types, const TavMath::DPoint& p1,
                                               const TavMath::DPoint& p2, const TavMath::DPoint& p3) noexcept;
/// From p1 to p2, leaving p1 along the tangent; a line when the tangent has no length or points at or away
/// from p2.
template <class T>
LUMO_TEMPLATE_API std::size_t BuildCircularArc(T* points, NODETYPE* types, const TavMath::DPoint& p1,
                                               const TavMath::DPoint& p2,
                                               const TavMath::DVector& tangent) noexcept;

// The same with integer points for arguments.
template <class T, class P, Only<P, tagPOINT> = 0>
std::size_t BuildLine(T* points, NODETYPE* types, const P& a, const P& b) noexcept {
  return BuildLine(points, types, {1.0 * a.x, 1.0 * a.y}, TavMath::DPoint{1.0 * b.x, 1.0 * b.y});
}
template <class T, class P, Only<P, tagPOINT> = 0>
std::size_t BuildEllipse(T* points, NODETYPE* types, const P& center, double rx, double ry, double startAngle,
                         double endAngle, bool pie, bool userOnEnd) noexcept {
  return BuildEllipse(points, types, TavMath::DPoint{1.0 * center.x, 1.0 * center.y}, rx, ry, startAngle,
                      endAngle, pie, userOnEnd);
}
template <class T, class P, Only<P, tagPOINT> = 0>
void BuildCircle(T* points, NODETYPE* types, const P& center, double r) noexcept {
  BuildCircle(points, types, TavMath::DPoint{1.0 * center.x, 1.0 * center.y}, r);
}
template <class T, class P, Only<P, tagPOINT> = 0>
std::size_t BuildCircularArc(T* points, NODETYPE* types, const P& center, double radius, double startAngle,
                             double endAngle) noexcept {
  return BuildCircularArc(points, types, TavMath::DPoint{1.0 * center.x, 1.0 * center.y}, radius, startAngle,
                          endAngle);
}
template <class T, class P, Only<P, tagPOINT> = 0>
std::size_t Build3PointCircularArc(T* points, NODETYPE* types, const P& p1, const P& p2,
                                   const P& p3) noexcept {
  return Build3PointCircularArc(points, types, TavMath::DPoint{1.0 * p1.x, 1.0 * p1.y},
                                TavMath::DPoint{1.0 * p2.x, 1.0 * p2.y},
                                TavMath::DPoint{1.0 * p3.x, 1.0 * p3.y});
}
template <class T, class P, Only<P, tagPOINT> = 0>
std::size_t BuildCircularArc(T* points, NODETYPE* types, const P& p1, const P& p2, const P& p3) noexcept {
  return Build3PointCircularArc(points, types, p1, p2, p3);
}

// The same with a rectangle of the other kind: rounded, or as doubles.
template <class T, class Rect, Only<T, tagPOINT> = 0, Only<Rect, TavMath::BoundsT<double>> = 0>
std::size_t BuildRectangle(T* points, NODETYPE* types, const Rect& rect) noexcept {
  return BuildRectangle(points, types, TavMath::RoundBox(rect));
}
template <class T, class Rect, Only<T, TavMath::DPoint> = 0, Only<Rect, tagRECT> = 0>
std::size_t BuildRectangle(T* points, NODETYPE* types, const Rect& rect) noexcept {
  return BuildRectangle(points, types, TavMath::ToBox(rect));
}
template <class T, class Rect, Only<T, tagPOINT> = 0, Only<Rect, TavMath::BoundsT<double>> = 0>
std::size_t BuildRectangle(T* points, const Rect& rect) noexcept {
  return BuildRectangle(points, TavMath::RoundBox(rect));
}
template <class T, class Rect, Only<T, TavMath::DPoint> = 0, Only<Rect, tagRECT> = 0>
std::size_t BuildRectangle(T* points, const Rect& rect) noexcept {
  return BuildRectangle(points, TavMath::ToBox(rect));
}

/// The two handles of one cubic for the arc about a centre from one point to another, the shorter way round.
/// False (out untouched) when a radius is 0, the points are equal or opposite, or a number is not finite.
LUMO_API bool GetArcSegmentHandles(TavMath::DPoint out[2], const TavMath::DPoint& center,
                                   const TavMath::DPoint& from, const TavMath::DPoint& to) noexcept;

#define LUMO_SHAPE_ELLIPSE(LUMO_VERB, T)                                                               \
  LUMO_VERB std::size_t BuildLine<T>(T*, NODETYPE*, const TavMath::DPoint&,                            \
                                     const TavMath::DPoint&) noexcept;                                 \
  LUMO_VERB std::size_t BuildEllipse<T>(T*, NODETYPE*, const TavMath::DPoint&, double, double, double, \
                                        double, bool, bool) noexcept;                                  \
  LUMO_VERB void BuildCircle<T>(T*, NODETYPE*, const TavMath::DPoint&, double) noexcept;
LUMO_SHAPE_ELLIPSE(LUMO_EXTERN, tagPOINT)
LUMO_SHAPE_ELLIPSE(LUMO_EXTERN, TavMath::DPoint)

#define LUMO_SHAPE_RECTANGLE(LUMO_VERB, T)                                                                   \
  LUMO_VERB std::size_t BuildRectangle<T>(T*, NODETYPE*, double, double) noexcept;                           \
  LUMO_VERB std::size_t BuildRectangle<T>(T*, NODETYPE*, const BoxT<T>&) noexcept;                           \
  LUMO_VERB std::size_t BuildRectangle<T>(T*, const BoxT<T>&) noexcept;                                      \
  LUMO_VERB std::size_t BuildRectangle<T>(T*, NODETYPE*, double, double, double, RectangleCorner, double,    \
                                          RectangleCorner, double, RectangleCorner, double, RectangleCorner, \
                                          double, double, bool) noexcept;                                    \
  LUMO_VERB std::size_t BuildRectangle<T>(T*, NODETYPE*, double, double, double, RectangleCorner,            \
                                          bool) noexcept;
LUMO_SHAPE_RECTANGLE(LUMO_EXTERN, tagPOINT)
LUMO_SHAPE_RECTANGLE(LUMO_EXTERN, TavMath::DPoint)

#define LUMO_SHAPE_ARC(LUMO_VERB, T)                                                                        \
  LUMO_VERB std::size_t BuildCircularArc<T>(T*, NODETYPE*, const TavMath::DPoint&, double, double,          \
                                            double) noexcept;                                               \
  LUMO_VERB std::size_t Build3PointCircularArc<T>(T*, NODETYPE*, const TavMath::DPoint&,                    \
                                                  const TavMath::DPoint&, const TavMath::DPoint&) noexcept; \
  LUMO_VERB std::size_t BuildCircularArc<T>(T*, NODETYPE*, const TavMath::DPoint&, const TavMath::DPoint&,  \
                                            const TavMath::DPoint&) noexcept;                               \
  LUMO_VERB std::size_t BuildCircularArc<T>(T*, NODETYPE*, const TavMath::DPoint&, const TavMath::DPoint&,  \
                                            const TavMath::DVector&) noexcept;
LUMO_SHAPE_ARC(LUMO_EXTERN, tagPOINT)
LUMO_SHAPE_ARC(LUMO_EXTERN, TavMath::DPoint)

}  // namespace Lumo
