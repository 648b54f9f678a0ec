#pragma once
// The pointer questions of an editor about a path of integer points: what lies under a pick rectangle, is a
// point inside the filled path, how long is it, what is nearest.
//
// Rectangles are y-up: top is the greater y, bottom the lesser; edges count as inside. Results are node
// indices (the node that ends the hit segment) or -1, truths 1 or 0. Everything is read-only and one pass
// over the arrays; nothing allocates but the list of CRV_NodeHitAll. A null array or rectangle or a count
// below 1 is a miss. On malformed arrays nothing outside 0..count-1 is read; a line without a start node and
// control points that are not followed by a control point and a curve node are passed over.

#include <vector>

#include "lumo/node_type.h"
#include "lumo/point_types.h"

/// The first segment, in path order, that touches the rectangle; -1 for none. With a cursor and tOut, *tOut
/// receives the parameter of the cursor on that segment: of its foot on the (infinite) line, of the nearest
/// point of a curve; the largest double for a line without length. With clamp, a line whose parameter lies
/// outside 0..1 is passed over; *tOut has been written by then all the same. Curves are never passed over.
LUMO_API int CRV_PathHit(const tagRECT* rect, const tagPOINT* cursor, double* tOut, const tagPOINT* points,
                         const NODETYPE* types, int count, int clamp) noexcept;

/// Whether a cubic, flattened to the tolerance (at most 255 pieces), touches the rectangle.
LUMO_API int CRV_BezierIntersectsRect(const tagPOINT* bezier, const tagRECT* rect, double tolerance) noexcept;

/// The user node in the rectangle: the lowest on-curve node, else the lowest shown handle, else -1.
LUMO_API int CRV_NodeHit(const tagRECT* rect, const tagPOINT* points, const NODETYPE* types,
                         int count) noexcept;
/// All user nodes and shown handles in the rectangle, in index order. Empty also when memory runs out.
LUMO_API std::vector<int> CRV_NodeHitAll(const tagRECT* rect, const tagPOINT* points, const NODETYPE* types,
                                         int count) noexcept;

/// Whether any segment touches the rectangle. Curves are taken as at most 32 chords.
LUMO_API int UTLIsRectOnPath(const tagPOINT* points, const NODETYPE* types, int count,
                             const tagRECT* rect) noexcept;

/// Whether a point is inside the filled path: even-odd rule, every subpath taken as closed. 0 when the point
/// lies on the path (*inside is not written): on a vertex, or where the outline passes it within half a unit
/// in x. Else 1, and *inside is 1 or 0.
///
/// Exact for straight outlines anywhere in the 32-bit plane. A curve is taken as at most 32 chords: half a
/// unit from it while no second difference of its control points exceeds 682 units, beyond that up to
/// 0.00074 times the largest second difference.
LUMO_API int UTLIsPointInFill(const tagPOINT* points, const NODETYPE* types, int count, tagPOINT point,
                              int* inside) noexcept;

/// Whether the subpath that starts at node `first` is a hole: its node first + offset lies inside an odd
/// number of the closed subpaths whose boxes contain its box. A subpath on whose outline that node lies does
/// not count as enclosing it.
LUMO_API int UTLIsSubpathHole_Ex(const tagPOINT* points, const NODETYPE* types, int count, int first,
                                 int offset) noexcept;
/// The same for the first node.
LUMO_API int UTLIsSubpathHole(const tagPOINT* points, const NODETYPE* types, int count, int first) noexcept;

/// Writes count doubles: the length of the path up to each node. The total runs on over move nodes, so later
/// subpaths continue the length of earlier ones. A curve's first control point receives the length before the
/// curve, its second one and its end node the length after it. Nothing for a null array.
LUMO_API void UTLGenerateNodeLengthArray(const tagPOINT* points, const NODETYPE* types, int count,
                                         double* lengths) noexcept;

/// The place at a length along the path, from the array that UTLGenerateNodeLengthArray filled; a binary
/// search. A length outside the path is clamped to its ends. The outputs (each may be null) are the rounded
/// point, the end node of the segment and the parameter on it. 0 when the path has no segment or the length
/// is not a number.
LUMO_API int UTLFastGotoPathLength(const tagPOINT* points, const NODETYPE* types, int count,
                                   const double* lengths, double length, tagPOINT* out, int* endNode,
                                   double* t) noexcept;

/// The point of the path nearest to a point; of equally near ones the first in path order. The outputs (each
/// may be null) are the rounded nearest point, the end node of its segment and the parameter on it. 0 when
/// the path has no segment.
LUMO_API int UTLGetClosestPointOnPath(const tagPOINT* points, const NODETYPE* types, int count,
                                      tagPOINT point, tagPOINT* out, int* endNode, double* t) noexcept;

/// A point of the grid inside the filled path, near the middle of a wide part of it. 0 (out untouched) when
/// none was found: the path encloses no grid point, or it is so thin that none of 128 rows through it meets
/// one.
LUMO_API int UTLGetFacePoint(const tagPOINT* points, const NODETYPE* types, int count,
                             tagPOINT* out) noexcept;
