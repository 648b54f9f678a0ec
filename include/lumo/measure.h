#pragma once
// Read-only measures of a path held in two arrays: boxes, areas, lengths, fill tests and the nearest point.
// The path class offers the same as members, and what builds on positions along the path (tangents, sampling)
// besides.
//
// Coordinates, lengths and areas are in the path's own units, computed in doubles. Nothing here allocates or
// throws; a null array or a count below 1 measures nothing. On malformed arrays every read stays inside the
// arrays; a curve that is cut short is skipped. All are one pass over the arrays, plus what the single curves
// cost.

#include "lumo/node_type.h"
#include "lumo/path_views.h"
#include "lumo/point_types.h"
#include "tav/math/cubic_bezier.h"
#include "tav/math/matrix.h"

namespace Lumo {

// Boxes. `BoxT` is a tagRECT (top is the least y) for integer points and an unrounded BoundsT<double> for
// double ones. The returning forms give an all-zero rectangle or an empty box when there is nothing to
// measure; the others leave `box` untouched and return false.

/// The box of all points, control points included.
template <class T>
LUMO_TEMPLATE_API BoxT<T> GetLooseBBox(const T* points, int count) noexcept;
template <class T>
LUMO_TEMPLATE_API bool GetLooseBBox(const T* points, int count, BoxT<T>& box) noexcept;

/// The box of the path itself: on-curve points and the extrema of each cubic (of integer paths rounded half
/// away from zero). Moves count too.
template <class T>
LUMO_TEMPLATE_API BoxT<T> GetTightBBox(const T* points, const NODETYPE* types, int count) noexcept;
template <class T>
LUMO_TEMPLATE_API bool GetTightBBox(const T* points, const NODETYPE* types, int count, BoxT<T>& box) noexcept;

/// The tight box of the path after a map, exact: not the map of the box.
template <class T>
LUMO_TEMPLATE_API TavMath::BoundsT<double> GetTightTransformedBBox(const T* points, const NODETYPE* types,
                                                                   int count, const MATRIX& matrix) noexcept;

/// The tight box of the selected part: enabled on-curve nodes, and every segment whose two end nodes are
/// enabled.
template <class T>
LUMO_TEMPLATE_API BoxT<T> GetTightEnabledBBox(const T* points, const NODETYPE* types, int count) noexcept;
template <class T>
LUMO_TEMPLATE_API bool GetTightEnabledBBox(const T* points, const NODETYPE* types, int count,
                                           BoxT<T>& box) noexcept;

/// The signed area that the closed subpaths enclose, the sum of their integrals of y dx: positive for a
/// subpath that runs clockwise (y up). For integer points the sum and the difference of two neighbours are
/// formed in 32 bits and wrap around beyond them.
template <class T>
LUMO_TEMPLATE_API double GetArea(const T* points, const NODETYPE* types, int count) noexcept;
/// The same sum over the edges of a polygon. There is no closing edge: the caller repeats the first point.
template <class T>
LUMO_TEMPLATE_API double GetPolygonArea(const T* points, int count) noexcept;

/// The length of the polyline through the points.
template <class T>
LUMO_TEMPLATE_API double GetLength(const T* points, int count) noexcept;
/// The length of all segments; gaps between subpaths do not count.
template <class T>
LUMO_TEMPLATE_API double GetLength(const T* points, const NODETYPE* types, int count) noexcept;
template <class T>
LUMO_TEMPLATE_API double GetLength(const T* points, const NODETYPE* types, int count,
                                   TavMath::LengthAccuracy accuracy) noexcept;

/// Whether a point lies in a polygon, which is closed implicitly. Even-odd; a point level with a horizontal
/// edge is not counted by that edge. `surrounded`: whether the polygon has edges on both sides of the point
/// (at its height) instead. `hitVertices`: a point within a squared distance of 2.0 of a vertex is inside at
/// once, and *onVertex (may be null) then true.
template <class T>
LUMO_TEMPLATE_API bool IsPointInPolygon(const T* points, int count, const T& point, bool surrounded,
                                        bool hitVertices, bool* onVertex) noexcept;

/// Whether a point lies in the area that a path fills by the even-odd rule over all its subpaths; open ones
/// are closed by a straight line. Curves are not flattened: for integer points no point that is a unit away
/// from the outline is ever misjudged. A point on the outline is inside. `surrounded`: outlines on both sides
/// of the point (at its height) make it inside as well. `hitVertices`: so does an on-curve node within a
/// squared distance of 2.0, but only inside the box of all points grown by 1 unit.
template <class T>
LUMO_TEMPLATE_API bool IsPointInShape(const T* points, const NODETYPE* types, int count, const T& point,
                                      bool surrounded = false, bool hitVertices = false) noexcept;

/// The point of the path nearest to a point. Of equally near ones the first in path order. False, and result
/// reset to none, when the path has no segment.
template <class T>
LUMO_TEMPLATE_API bool FindClosestPoint(const T* points, const NODETYPE* types, int count, const T& point,
                                        ClosestPoint<T, CurvePosition>& result) noexcept;

#define LUMO_BOXES(LUMO_VERB, T)                                                                \
  LUMO_VERB BoxT<T> GetLooseBBox<T>(const T*, int) noexcept;                                    \
  LUMO_VERB bool GetLooseBBox<T>(const T*, int, BoxT<T>&) noexcept;                             \
  LUMO_VERB BoxT<T> GetTightBBox<T>(const T*, const NODETYPE*, int) noexcept;                   \
  LUMO_VERB bool GetTightBBox<T>(const T*, const NODETYPE*, int, BoxT<T>&) noexcept;            \
  LUMO_VERB TavMath::BoundsT<double> GetTightTransformedBBox<T>(const T*, const NODETYPE*, int, \
                                                                const MATRIX&) noexcept;        \
  LUMO_VERB BoxT<T> GetTightEnabledBBox<T>(const T*, const NODETYPE*, int) noexcept;            \
  LUMO_VERB bool GetTightEnabledBBox<T>(const T*, const NODETYPE*, int, BoxT<T>&) noexcept;
LUMO_BOXES(LUMO_EXTERN, tagPOINT)
LUMO_BOXES(LUMO_EXTERN, TavMath::DPoint)

#define LUMO_AREA_AND_LENGTH(LUMO_VERB, T)                                \
  LUMO_VERB double GetArea<T>(const T*, const NODETYPE*, int) noexcept;   \
  LUMO_VERB double GetPolygonArea<T>(const T*, int) noexcept;             \
  LUMO_VERB double GetLength<T>(const T*, int) noexcept;                  \
  LUMO_VERB double GetLength<T>(const T*, const NODETYPE*, int) noexcept; \
  LUMO_VERB double GetLength<T>(const T*, const NODETYPE*, int, TavMath::LengthAccuracy) noexcept;
LUMO_AREA_AND_LENGTH(LUMO_EXTERN, tagPOINT)
LUMO_AREA_AND_LENGTH(LUMO_EXTERN, TavMath::DPoint)

#define LUMO_FILL(LUMO_VERB, T)                                                            \
  LUMO_VERB bool IsPointInPolygon<T>(const T*, int, const T&, bool, bool, bool*) noexcept; \
  LUMO_VERB bool IsPointInShape<T>(const T*, const NODETYPE*, int, const T&, bool, bool) noexcept;
LUMO_FILL(LUMO_EXTERN, tagPOINT)
LUMO_FILL(LUMO_EXTERN, TavMath::DPoint)

#define LUMO_CLOSEST(LUMO_VERB, T)                                             \
  LUMO_VERB bool FindClosestPoint<T>(const T*, const NODETYPE*, int, const T&, \
                                     ClosestPoint<T, CurvePosition>&) noexcept;
LUMO_CLOSEST(LUMO_EXTERN, tagPOINT)
LUMO_CLOSEST(LUMO_EXTERN, TavMath::DPoint)

}  // namespace Lumo
