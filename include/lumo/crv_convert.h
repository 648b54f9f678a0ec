#pragma once
// What kind of segment ends at a node, how smooth nodes are, and the handles that go with it; moving the
// selection, its box, and the clean-up of thin subpaths. Everything works in place on the caller's parallel
// arrays (points, types, count) of either point type, never reallocates them, and returns the new count
// unless stated. A null array, a count below 1 or an index outside 0..count-1 changes nothing and gives the
// count (0 from the truths).
//
// "Enabled" is bit 0 alone. Integer points: each function states how it rounds; results outside the 32-bit
// range saturate. The ...Enabled functions are single passes, however many nodes are enabled.

#include "lumo/node_type.h"
#include "lumo/point_types.h"
#include "tav/math/matrix.h"

/// Turns the line that ends at a line node into a curve that traces it exactly: handles at one and two thirds
/// (integer points: each coordinate of the offset from the start rounded half away from zero). Needs room for
/// two more nodes. The node keeps its flags; the handles have none. No smoothing.
template <class T>
LUMO_TEMPLATE_API int CRV_ToCurveNode(T* points, NODETYPE* types, int count, int index) noexcept;
/// The same at every enabled line node. Needs room for two more nodes each.
template <class T>
LUMO_TEMPLATE_API int CRV_ToCurveEnabled(T* points, NODETYPE* types, int count) noexcept;

/// Turns the curve that ends at a curve node into a line. The node keeps enabled, letter and closed flag and
/// its continuity (symmetric becomes smooth); it is a user node unless it is a closing node. The node before
/// it becomes a cusp when it is neither a curve node nor closed, and also when something other than a curve
/// follows the new line node: this differs from CRV_ToLineEnabled, hosts rely on both. SmoothEnabledNodes
/// then runs, also when index is no curve node.
template <class T>
LUMO_TEMPLATE_API int CRV_ToLineNode(T* points, NODETYPE* types, int count, int index) noexcept;
/// The same conversion at every enabled curve node; nodes between two lines become cusps. SmoothEnabledNodes
/// then runs.
template <class T>
LUMO_TEMPLATE_API int CRV_ToLineEnabled(T* points, NODETYPE* types, int count) noexcept;

/// Writes the continuity of the enabled nodes: cusp always, smooth where IsNodeSmoothable, symmetric where
/// IsNodeSymmetable, any other value nowhere. Only the enabled nodes are written, not their closed twins.
/// Unless cusp was asked for, SmoothEnabledNodes then runs, also when nothing was written.
template <class T>
LUMO_TEMPLATE_API int CRV_SetContEnabled(T* points, NODETYPE* types, int count,
                                         ContinuityType continuity) noexcept;

/// Brings the handles at a node in line with its continuity. Nothing happens at cusps and at nodes with
/// neither the closed nor the user flag. Between a line and a curve the handle is turned onto the extension
/// of the line and keeps its length. Between two curves both handles are put parallel to the chord between
/// them and keep their lengths (a symmetric node: both get the mean). Integer points: the offset from the
/// node is truncated, beside a line after 0.5 was added to it; so an integer handle may lose up to a unit per
/// call. Zero lengths leave the handles alone.
template <class T>
LUMO_TEMPLATE_API void SmoothNode(T* points, const NODETYPE* types, int count, int index) noexcept;
/// SmoothNode at every node that is enabled or next to an enabled node (handles count as nodes). Returns
/// count.
template <class T>
LUMO_TEMPLATE_API int SmoothEnabledNodes(T* points, const NODETYPE* types, int count) noexcept;
/// SmoothNode at every node. Returns count.
template <class T>
LUMO_TEMPLATE_API int SmoothNodes(T* points, const NODETYPE* types, int count) noexcept;

/// Demotes the nodes first (if >= 0) and last (if below count) from symmetric to smooth where they are
/// smoothable, with their other closed ends: for use after a segment between them was split.
LUMO_API void SmoothEndNodes(NODETYPE* types, int first, int last, int count) noexcept;
/// 1 when there are segments on both sides and at least one is a curve; 0 for a control point. Order: types,
/// index, count.
LUMO_API int IsNodeSmoothable(const NODETYPE* types, int index, int count) noexcept;
/// 1 when there are curves on both sides. A closed last node is asked about the curve after the first one.
LUMO_API int IsNodeSymmetable(const NODETYPE* types, int index, int count) noexcept;

/// Maps the enabled points (enabled handles included) by the matrix; with smooth, SmoothEnabledNodes then
/// runs. -1 for a null matrix.
template <class T>
LUMO_TEMPLATE_API int CRV_TransformEnabled(T* points, const NODETYPE* types, int count,
                                           const TavMath::MATRIX* matrix, int smooth) noexcept;

/// The box of the enabled points (enabled handles included), y up: top is the greatest y. Double points are
/// rounded half away from zero. 0, and box unwritten, when nothing is enabled or box is null.
template <class T>
LUMO_TEMPLATE_API int CRV_GetEnabledBoundingBox(const T* points, const NODETYPE* types, int count,
                                                tagRECT* box) noexcept;

/// Removes enabled nodes that the path can do without: while the path stays within the tolerance (a distance)
/// of what it was before the call, the inner enabled node whose removal deviates least goes first. Ends of
/// open subpaths and closing nodes stay, and at least two nodes of a closed subpath. Between two lines the
/// result is a line, else a curve fitted to the original. Heap memory in proportion to the count; when there
/// is none, nothing changes. O(n log n) for n nodes.
template <class T>
LUMO_TEMPLATE_API int CRV_ReduceEnabled(T* points, NODETYPE* types, int count, double tolerance) noexcept;
/// The same; a second array of points in doubles that runs beside the first (may be null) loses the same
/// nodes, and its new handles are fitted to its own curve.
template <class T>
LUMO_TEMPLATE_API int CRV_ReduceEnabledDouble(T* points, NODETYPE* types, int count, double tolerance,
                                              TavMath::DPoint* second) noexcept;

/// Replaces a subpath that runs out and back along itself, within the tolerance, by an open subpath that runs
/// one way; short segments that have no partner on the other way are dropped. Only closed subpaths, and open
/// ones whose ends lie within the tolerance, are looked at; one of fewer than three nodes is removed. Any
/// other subpath, a negative tolerance, or a failed heap allocation leave the path unchanged.
template <class T>
LUMO_TEMPLATE_API int CRV_TransferThisThinSubpathToRegular(T* points, NODETYPE* types, int count, int index,
                                                           int tolerance) noexcept;
/// The same for every subpath, in one pass.
template <class T>
LUMO_TEMPLATE_API int CRV_TransferAllThinSubpathsToRegular(T* points, NODETYPE* types, int count,
                                                           int tolerance) noexcept;
/// CRV_TransferAllThinSubpathsToRegular, then removes every open subpath.
template <class T>
LUMO_TEMPLATE_API int CRV_RepairClosedCurveAfterWeld(T* points, NODETYPE* types, int count,
                                                     int tolerance) noexcept;
/// Changes nothing and returns 0, whatever it is given: kept so that hosts that call it still link. The
/// result is not a count.
template <class T>
LUMO_TEMPLATE_API int CRV_RepairBadClosedSubpaths(T* points, NODETYPE* types, int count) noexcept;

// The instances, by source file.
#define LUMO_CRV_TO_CURVE(LUMO_VERB, T)                               \
  LUMO_VERB int CRV_ToCurveNode<T>(T*, NODETYPE*, int, int) noexcept; \
  LUMO_VERB int CRV_ToCurveEnabled<T>(T*, NODETYPE*, int) noexcept;
#define LUMO_CRV_TO_LINE(LUMO_VERB, T)                               \
  LUMO_VERB int CRV_ToLineNode<T>(T*, NODETYPE*, int, int) noexcept; \
  LUMO_VERB int CRV_ToLineEnabled<T>(T*, NODETYPE*, int) noexcept;
#define LUMO_CRV_SMOOTH(LUMO_VERB, T)                                               \
  LUMO_VERB int CRV_SetContEnabled<T>(T*, NODETYPE*, int, ContinuityType) noexcept; \
  LUMO_VERB void SmoothNode<T>(T*, const NODETYPE*, int, int) noexcept;             \
  LUMO_VERB int SmoothEnabledNodes<T>(T*, const NODETYPE*, int) noexcept;           \
  LUMO_VERB int SmoothNodes<T>(T*, const NODETYPE*, int) noexcept;
#define LUMO_CRV_TRANSFORM(LUMO_VERB, T)                                                                 \
  LUMO_VERB int CRV_TransformEnabled<T>(T*, const NODETYPE*, int, const TavMath::MATRIX*, int) noexcept; \
  LUMO_VERB int CRV_GetEnabledBoundingBox<T>(const T*, const NODETYPE*, int, tagRECT*) noexcept;
#define LUMO_CRV_REDUCE(LUMO_VERB, T)                                      \
  LUMO_VERB int CRV_ReduceEnabled<T>(T*, NODETYPE*, int, double) noexcept; \
  LUMO_VERB int CRV_ReduceEnabledDouble<T>(T*, NODETYPE*, int, double, TavMath::DPoint*) noexcept;
#define LUMO_CRV_THIN(LUMO_VERB, T)                                                             \
  LUMO_VERB int CRV_TransferThisThinSubpathToRegular<T>(T*, NODETYPE*, int, int, int) noexcept; \
  LUMO_VERB int CRV_TransferAllThinSubpathsToRegular<T>(T*, NODETYPE*, int, int) noexcept;      \
  LUMO_VERB int CRV_RepairClosedCurveAfterWeld<T>(T*, NODETYPE*, int, int) noexcept;            \
  LUMO_VERB int CRV_RepairBadClosedSubpaths<T>(T*, NODETYPE*, int) noexcept;
#define LUMO_CRV_CONVERT(LUMO_VERB, T) \
  LUMO_CRV_TO_CURVE(LUMO_VERB, T)      \
  LUMO_CRV_TO_LINE(LUMO_VERB, T)       \
  LUMO_CRV_SMOOTH(LUMO_VERB, T)        \
  LUMO_CRV_TRANSFORM(LUMO_VERB, T)     \
  LUMO_CRV_REDUCE(LUMO_VERB, T)        \
  LUMO_CRV_THIN(LUMO_VERB, T)
LUMO_CRV_CONVERT(LUMO_EXTERN, tagPOINT)
LUMO_CRV_CONVERT(LUMO_EXTERN, TavMath::DPoint)
