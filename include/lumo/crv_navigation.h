#pragma once
// Moving from node to node, finding subpath ends, counting, per-node flags and the selection summary.
// Everything here is one linear scan or a short walk over the byte array, never allocates and never changes
// the count.
//
// Safety: a null array, a count below 1 or an index outside 0..count-1 gives "nothing": the index itself from
// NN, PN, NNControl and PNControl, -1 from functions that return an index, 0 from counts and truths, no write
// from setters. On malformed arrays every walk stays inside 0..count-1 and ends after at most count steps.

#include "lumo/node_type.h"
#include "lumo/point_types.h"

/// The next node of the subpath. The last node of a closed subpath is followed by the node after the move
/// node (move node and last node are one place); at an open end, and for a lone move node, i itself. Order:
/// types, index, count.
LUMO_API int NN(const NODETYPE* types, int i, int count) noexcept;
/// The previous node of the subpath. Of a closed subpath's move node, and also of the node after it, the last
/// node (the move node's twin); of an open move node, i itself.
LUMO_API int PN(const NODETYPE* types, int i, int count) noexcept;
/// The next / previous on-curve node, by steps of NN / PN.
LUMO_API int NNControl(const NODETYPE* types, int i, int count) noexcept;
LUMO_API int PNControl(const NODETYPE* types, int i, int count) noexcept;
/// The other of the two closed ends of a closed subpath; -1 when node i carries no closed flag or there is
/// none.
LUMO_API int OtherClosedEnd(const NODETYPE* types, int i, int count) noexcept;

// Subpath ends and membership: 1 or 0. "First" is a move node; "last" is followed by a move node or by
// nothing; "open" and "closed" look at the closed flag of that same node.
LUMO_API int CRV_IsFirstSubpathNode(const NODETYPE* types, int count, int i) noexcept;
LUMO_API int CRV_IsLastSubpathNode(const NODETYPE* types, int count, int i) noexcept;
LUMO_API int CRV_IsFirstOrLastSubpathNode(const NODETYPE* types, int count, int i) noexcept;
LUMO_API int CRV_IsFirstOpenSubpathNode(const NODETYPE* types, int count, int i) noexcept;
LUMO_API int CRV_IsLastOpenSubpathNode(const NODETYPE* types, int count, int i) noexcept;
LUMO_API int CRV_IsFirstOrLastOpenSubpathNode(const NODETYPE* types, int count, int i) noexcept;
LUMO_API int CRV_IsFirstClosedSubpathNode(const NODETYPE* types, int count, int i) noexcept;
LUMO_API int CRV_IsLastClosedSubpathNode(const NODETYPE* types, int count, int i) noexcept;
LUMO_API int CRV_IsFirstOrLastClosedSubpathNode(const NODETYPE* types, int count, int i) noexcept;
/// The move node of the subpath that holds i; -1 when no move node stands at or before i.
LUMO_API int CRV_FirstNodeOfThisSubpath(const NODETYPE* types, int count, int i) noexcept;
/// The last node of the subpath that holds i.
LUMO_API int CRV_LastNodeOfThisSubpath(const NODETYPE* types, int count, int i) noexcept;
/// The closed flag of the subpath's move node.
LUMO_API int CRV_IsThisSubpathClosed(const NODETYPE* types, int count, int i) noexcept;
/// Whether no move node lies between two nodes, or at the later one.
LUMO_API int CRV_TwoNodesInSameSubpath(const NODETYPE* types, int count, int a, int b) noexcept;
/// The number of nodes of the subpath that starts at index first of the whole path; at least 1. `types`
/// points AT that node, not at the start of the array, while first and count are those of the whole path.
LUMO_API int CRV_CountNodesInSubpath(const NODETYPE* types, int first, int count) noexcept;
/// The number of move nodes.
LUMO_API int CRV_NumSubpaths(const NODETYPE* types, int count) noexcept;
/// 1 when any node carries the closed flag.
LUMO_API int CRV_ContainsClosedSubpath(const NODETYPE* types, int count) noexcept;
/// 1 when some move node lacks the closed flag; with onlyRealSubpaths only one that is followed by a non-move
/// node.
LUMO_API int CRV_ContainsOpenSubpath(const NODETYPE* types, int count, bool onlyRealSubpaths) noexcept;

// Counts. "Enabled" is bit 0 alone; "selected" is enabled and user flag on an on-curve node.
/// Selected nodes.
LUMO_API int CRV_HowManyEnabled(const NODETYPE* types, int count) noexcept;
/// Enabled on-curve nodes without the closed flag, whether the user sees them as nodes or not.
LUMO_API int CRV_HowManyEnabledNotClosed(const NODETYPE* types, int count) noexcept;
/// Enabled line and curve nodes that do not end their subpath. The path's last node is never examined: it is
/// always a subpath end.
LUMO_API int CRV_HowManyEnabledNotFirstOrLastInSubpath(const NODETYPE* types, int count) noexcept;
/// Selected nodes that are inner ones or carry the closed flag: where a path can be broken.
LUMO_API int CRV_HowManyEnabledNotFirstOrLastInOpenSubpath(const NODETYPE* types, int count) noexcept;
/// Nodes of that kind, with the enabled flag.
LUMO_API int CRV_HowManyEnabledLines(const NODETYPE* types, int count) noexcept;
LUMO_API int CRV_HowManyEnabledCurves(const NODETYPE* types, int count) noexcept;
/// Nodes of that kind.
LUMO_API int CRV_HowManyLines(const NODETYPE* types, int count) noexcept;
LUMO_API int CRV_HowManyCurves(const NODETYPE* types, int count) noexcept;
/// Subpaths whose move node lacks the closed flag.
LUMO_API int CRV_HowManyOpenSubpaths(const NODETYPE* types, int count) noexcept;
/// Subpaths with a selected node.
LUMO_API int CRV_HowManyEnabledSubpaths(const NODETYPE* types, int count) noexcept;
/// On-curve nodes with the user flag; with onlyEnabled also the enabled flag.
LUMO_API int CRV_GetNumberOfUserNodes(const NODETYPE* types, unsigned count, bool onlyEnabled) noexcept;

/// The control point next to node i on the side it is reached from / left by; -1 when that side is not a
/// curve.
LUMO_API int CRV_GetArcBefore(const NODETYPE* types, int count, int i) noexcept;
LUMO_API int CRV_GetArcAfter(const NODETYPE* types, int count, int i) noexcept;
/// i when it has the user flag, else its other closed end when that has it, else -1.
LUMO_API int CRV_GetUserNode(const NODETYPE* types, int count, int i) noexcept;

// Flag setters. The per-node ones write both closed ends of a closed subpath and return count.
LUMO_API int CRV_SetEnabled(NODETYPE* types, int count, int i, int enable) noexcept;
LUMO_API int CRV_SetCont(NODETYPE* types, int count, int i, ContinuityType continuity) noexcept;
/// Select every node, with all handles shown; select none, with all handles hidden. Return count.
LUMO_API int CRV_EnableAllNodes(NODETYPE* types, int count) noexcept;
LUMO_API int CRV_DisableAllNodes(NODETYPE* types, int count) noexcept;
/// Shows the handles that belong to the selection: the enabled flag of each selected node goes to the control
/// points on both its sides (and beyond a neighbouring line whose far node is no cusp). Returns the number of
/// selected nodes.
LUMO_API int CRV_EnableAllControls(NODETYPE* types, int count) noexcept;
/// Hides all handles but those beside node i (none for a control point). Returns count.
LUMO_API int CRV_EnableOneControl(NODETYPE* types, int count, int i) noexcept;
/// Sets or clears the enabled flag on every node of the subpath that holds i, then shows the handles of the
/// selection. Returns count.
LUMO_API int CRV_EnableSubpath(NODETYPE* types, int count, int i, int enable) noexcept;

/// What can be done with the selection. "Enabled" is bit 0 of an on-curve node; "counted" leaves out the move
/// node of a closed subpath, whose twin, the last node, stands for both. The "current node" is an extra node
/// that the host names.
struct LUMO_TYPE CRV_ENABLINGINFO {
  /// The bits of `flags`.
  enum : unsigned {
    kLine = 0x1,           ///< an enabled line node; or the current node is no curve node
    kCurve = 0x2,          ///< an enabled curve node; or the current node is one
    kCanJoin = 0x4,        ///< both ends of an open subpath of more than one segment are enabled; or exactly
                           ///< two open ends are, of different subpaths
    kHasContinuity = 0x8,  ///< an enabled node with a segment on both sides; or a current node
    kCanBeCusp = 0x10,     ///< as kHasContinuity, and that node is not a cusp
    kCanBeSmooth = 0x20,   ///< an enabled node that meets a curve (a curve node: also a line) and is not
                           ///< smooth; or the current node is not smooth
    kCanBeSymmetric = 0x40,  ///< an enabled node between curves is not symmetric; or the current node is not
    kSomeCusp = 0x80,        ///< some enabled node, move nodes included, is a cusp
    kSomeSmooth = 0x100,
    kSomeSymmetric = 0x200,
    kNotOpenStart = 0x400,  ///< an enabled node that is not the start of an open subpath; or a current node
    kAnyNode = 0x800,       ///< at least one counted node; or a current node
    kTwoNodes = 0x1000,     ///< at least two counted nodes
    kOneNode = 0x2000,      ///< at least one counted node
    kCanAlign = 0x4000,     ///< at least two counted nodes
    kSeveralSubpaths = 0x8000,
    kAlways = 0x10000,
  };
  /// Any of the bits above.
  unsigned flags;
  /// 1 when every enabled on-curve node lies in one subpath of a path that has several; 0 when none is
  /// enabled.
  int singleSubpath;
  /// Bit 0: as kCanJoin, but a single curve with both ends enabled counts too; a single line does not.
  int endFlags;
};
/// Fills info (may be null) and returns the number of counted nodes. The third argument is ignored.
/// currentNode is -1 for none; any other value sets kHasContinuity, kNotOpenStart and kAnyNode even when it
/// names no node. A count below 1 gives 0 and only kAlways.
LUMO_API int CRV_GetEnablingInfo(const NODETYPE* types, int count, int ignored, int currentNode,
                                 CRV_ENABLINGINFO* info) noexcept;

/// The point at parameter t of the segment that ends at node i; 1, or 0 (out untouched) for any other node.
/// Reads points[i-1] or points[i-3]: i must lie inside the path. Integer lines round the delta, not the sum.
template <class T>
LUMO_TEMPLATE_API int CRV_GetPointOnCurve(Lumo::NotDeduced<T>* out, const T* points, const NODETYPE* types,
                                          int i, double t) noexcept;
/// Whether every point of the segment that ends at node i lies within tolerance of point i. The limit is
/// tolerance squared in wrapping 32-bit arithmetic; a squared distance equal to it passes.
template <class T>
LUMO_TEMPLATE_API int CRV_SegmentIsShort(const T* points, const NODETYPE* types, int count, int i,
                                         int tolerance) noexcept;
/// Whether the segments that end at a and b run close to each other: direction 1 the same way, -1 opposite
/// ways, 0 either; any other direction gives 0.
template <class T>
LUMO_TEMPLATE_API int CRV_SegmentsAreClose(const T* points, const NODETYPE* types, int count, int a, int b,
                                           int tolerance, int direction) noexcept;

/// A question that has no problem to report: always 0.
LUMO_API int crvProblem() noexcept;

#define LUMO_CRV_NAVIGATION(LUMO_VERB, T)                                                    \
  LUMO_VERB int CRV_GetPointOnCurve<T>(T*, const T*, const NODETYPE*, int, double) noexcept; \
  LUMO_VERB int CRV_SegmentIsShort<T>(const T*, const NODETYPE*, int, int, int) noexcept;    \
  LUMO_VERB int CRV_SegmentsAreClose<T>(const T*, const NODETYPE*, int, int, int, int, int) noexcept;
LUMO_CRV_NAVIGATION(LUMO_EXTERN, tagPOINT)
LUMO_CRV_NAVIGATION(LUMO_EXTERN, TavMath::DPoint)
