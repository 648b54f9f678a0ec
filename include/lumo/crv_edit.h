#pragma once
// Adding, deleting, joining and breaking nodes, in place in the caller's parallel arrays (points, types,
// count) of either point type. Nothing here reallocates the arrays: each function says how many slots beyond
// count it may use. The result is the new count unless stated.
//
// Failures: -1 for a bad argument or a break, a closed end or a bridge that does not exist; -2 where there is
// nothing that can be joined; count where there is nothing to do. A call that fails leaves the arrays as they
// were. A null array or a count below 1 changes nothing and gives the count unless stated.
//
// "Enabled" is bit 0 alone. The ...Enabled functions are single passes (a bounded number of block moves),
// however many nodes are enabled. The CRV_NodeEdit functions run the plain operation and then
// CRV_EnableAllControls, when the operation did not fail.
//
// Break, close and delete end with a tidy-up: a path begins with a move node; runs of move nodes collapse to
// their last one (they stay when node 0 carries the letter flag); open ends and nodes between two lines are
// cusps; a symmetric curve node before a line is smooth; a closed subpath with a move node inside becomes one
// open subpath that starts there.

#include "lumo/node_type.h"
#include "lumo/point_types.h"

/// The room that CRV_Add may need on a node of a kind numbered 0 move, 1 line, 2 curve, 3 control point: 1,
/// 1, 3, 0; 0 for any other number. A move node gets 1 although CRV_Add inserts nothing there.
LUMO_API int CRV_NeedGrowForAddNodeOfType(int kind) noexcept;

/// Splits the segment that ends at node index at parameter t. Returns the number of nodes INSERTED: 1 at a
/// line node, 3 at a curve node (that much room is needed), 0 at any other node, for a t that is not finite
/// or an index outside the path. The new node stands at index, the old one behind it. The new node takes the
/// old one's flags; it is a user node, never a closing one; on a curve it is smooth, and both ends of the old
/// segment are demoted from symmetric to smooth. With smooth, SmoothNode then runs on the new and on the old
/// node.
template <class T>
LUMO_TEMPLATE_API int CRV_Add(T* points, NODETYPE* types, int count, int index, double t,
                              int smooth) noexcept;
/// Splits the segment that ends at every enabled node in its middle, with smoothing. The enabled flag of the
/// enabled nodes becomes enableOld (also of those where nothing was inserted), that of the inserted nodes
/// enableNew; only bit 0 of each counts, and closed twins are not written. A handle that loses the flag is
/// hidden. Room: 3 for each enabled curve node, 1 for each enabled line node.
template <class T>
LUMO_TEMPLATE_API int CRV_AddEnabled(T* points, NODETYPE* types, int count, int enableOld,
                                     int enableNew) noexcept;
/// CRV_AddEnabled with old and new nodes selected; the handles are shown afterwards.
template <class T>
LUMO_TEMPLATE_API int CRV_NodeEditAddEnabled(T* points, NODETYPE* types, int count) noexcept;
/// CRV_Add with smoothing; the new node becomes the enabled one in place of the old one. -1 when nothing was
/// inserted.
template <class T>
LUMO_TEMPLATE_API int CRV_NodeEditAddHere(T* points, NODETYPE* types, int count, int index,
                                          double t) noexcept;

/// Inserts one node after node index (0..count, else -1): a line end (byte 0x44) or a move (0x04). Room: 1.
/// To append at the end pass count - 1: index == count is accepted and writes slot count + 1, leaving slot
/// count untouched, and so needs room for 2.
template <class T>
LUMO_TEMPLATE_API int CRV_AppendLine(T* points, NODETYPE* types, int count, int index, T point) noexcept;
template <class T>
LUMO_TEMPLATE_API int CRV_AppendMove(T* points, NODETYPE* types, int count, int index, T point) noexcept;
/// Opens a gap of n - first nodes after node index (0..count, else -1) and copies n nodes from source index
/// first on into it. With first > 0 the copy runs `first` nodes past the gap and overwrites what followed it
/// (never past the new end), and the source must hold first + n nodes then. index == count as with
/// CRV_AppendLine. Nothing for n < 1, first < 0, first > n or a null source. Room: n - first.
template <class T>
LUMO_TEMPLATE_API int CRV_Append(T* points, NODETYPE* types, int count, int index,
                                 const Lumo::NotDeduced<T>* srcPoints, const NODETYPE* srcTypes, int n,
                                 int first) noexcept;

/// Removes n nodes from node first on; nothing for n < 1 or first outside the path. A range that reaches the
/// end cuts the tail, so the result is first then.
template <class T>
LUMO_TEMPLATE_API int CRV_Remove(T* points, NODETYPE* types, int count, int first, int n) noexcept;
/// Removes every subpath whose move node lacks the closed flag.
template <class T>
LUMO_TEMPLATE_API int CRV_RemoveOpenSubpaths(T* points, NODETYPE* types, int count) noexcept;
/// Reverses the subpath that holds node index and returns the new index of that node; -1 when there is no
/// such subpath.
template <class T>
LUMO_TEMPLATE_API int CRV_ReverseThisSubpath(T* points, NODETYPE* types, int count, int index) noexcept;

/// Breaks the path at every enabled node that is not an end of an open subpath (a closed subpath is opened at
/// its ends when either is enabled). Both ends that a break makes are cusps; the one that ends has its
/// enabled flag from keepEnabled, the one that starts stays enabled. Room: 1 for each enabled inner line or
/// curve node. -1 when a closed subpath's enabled move node has no other closed end.
template <class T>
LUMO_TEMPLATE_API int CRV_BreakEnabled(T* points, NODETYPE* types, int count, int keepEnabled) noexcept;
/// With keepEnabled 0.
template <class T>
LUMO_TEMPLATE_API int CRV_NodeEditBreakEnabled(T* points, NODETYPE* types, int count) noexcept;
/// Breaks the path at parameter t of the segment that ends at node index; at t = 0 and t = 1 at the node
/// itself. The closing nodes of a closed subpath open it without adding nodes. Both new ends are disabled
/// when a segment was split. Room: 4. -1 for t outside 0..1, an index outside the path, an end of an open
/// subpath, a control point or a closed end without partner.
template <class T>
LUMO_TEMPLATE_API int CRV_BreakAtLocation(T* points, NODETYPE* types, int count, int index,
                                          double t) noexcept;

/// Joins two ends of open subpaths in their mean, truncated to whole units for both point types. Ends of one
/// subpath close it (tidy-up runs). Ends of two subpaths merge them: a's subpath runs on into b's, keeping
/// its place and direction; the result is count - 1. joinedIndex (may be null) receives the joined node. -2
/// for a == b, an index outside the path or one that is no open end. No room needed, no heap memory.
template <class T>
LUMO_TEMPLATE_API int CRV_JoinTwoNodesExt(T* points, NODETYPE* types, int count, int a, int b,
                                          int* joinedIndex) noexcept;
/// The same without the joined node.
template <class T>
LUMO_TEMPLATE_API int CRV_JoinTwoNodes(T* points, NODETYPE* types, int count, int a, int b) noexcept;
/// Joins p1 to p3 and p4 to p2, where p3 and p4 are the ends of a bridge, an open subpath that holds neither
/// p1 nor p2 (p3 == p4 when it has one node). The pointers receive the final indices: p1 and p3 the first
/// joint, p2 and p4 the second. -1, with everything as before, when an index is no such end.
template <class T>
LUMO_TEMPLATE_API int CRV_JoinTwoNodesWithOpenSubpathExt(T* points, NODETYPE* types, int count, int* p1,
                                                         int* p2, int* p3, int* p4) noexcept;
/// The same without the indices. A negative p2 joins only p1 to p3, a negative p1 only p4 to p2.
template <class T>
LUMO_TEMPLATE_API int CRV_JoinTwoNodesWithOpenSubpath(T* points, NODETYPE* types, int count, int p1, int p2,
                                                      int p3, int p4) noexcept;
/// Joins the enabled ends of open subpaths: exactly two are joined to each other; of more, every subpath with
/// both ends enabled is closed and different subpaths are not joined. A subpath of one segment is left alone.
/// -2 for fewer than two enabled ends or a count below 1.
template <class T>
LUMO_TEMPLATE_API int CRV_JoinEnabled(T* points, NODETYPE* types, int count) noexcept;
/// The same with a straight line between ends that lie apart, so that neither moves (but for the truncation
/// of the mean). A subpath of one curve is closed, one of one line left alone. Room: 1 for each join.
template <class T>
LUMO_TEMPLATE_API int CRV_JoinEnabledAddingLineSegments(T* points, NODETYPE* types, int count) noexcept;
/// The two joins with the handles shown afterwards.
template <class T>
LUMO_TEMPLATE_API int CRV_NodeEditJoinEnabled(T* points, NODETYPE* types, int count) noexcept;
template <class T>
LUMO_TEMPLATE_API int CRV_NodeEditJoinEnabledAddingLineSegments(T* points, NODETYPE* types,
                                                                int count) noexcept;

/// One run of nodes that a deletion took out. Indices are those of the path before the call.
struct LUMO_TYPE WDeleteRunInfo {
  /// The first node removed (handles included) in the direction of travel, and how many. The two closing
  /// nodes of a closed subpath, one node to the user, count once: a run across them goes on behind the
  /// subpath's first node.
  int first;
  int count;
  /// The kept on-curve nodes before and after the run; -1 where the run reached an open end or the whole
  /// subpath went.
  int before;
  int after;
  /// 1 when a fitted curve from before to after stands in for the run.
  int fitted;
};

/// Removes the enabled nodes. At the ends of an open subpath the segments go with them. Inside, one node
/// between two lines leaves a line; any other run is replaced by one curve, fitted to what was there with the
/// tangents at the kept nodes preserved (see docs/editing.md for its bound). A closed subpath is re-rooted so
/// that it starts at a kept node; one without a kept node goes. When no more than two nodes are left after
/// the ends, inner runs stay. -1 when a closed subpath's enabled move node has no other closed end.
template <class T>
LUMO_TEMPLATE_API int CRV_DeleteEnabled(T* points, NODETYPE* types, int count) noexcept;
/// The same; *runs receives a record per removed run in index order, in memory from malloc that the caller
/// frees, or null when there is none; *runCount their number. Either pointer may be null. -1, with everything
/// as before, also when the records cannot be allocated.
template <class T>
LUMO_TEMPLATE_API int CRV_DeleteEnabledEx(T* points, NODETYPE* types, int count, WDeleteRunInfo** runs,
                                          int* runCount) noexcept;
/// The two deletions with the handles shown afterwards.
template <class T>
LUMO_TEMPLATE_API int CRV_NodeEditDeleteEnabled(T* points, NODETYPE* types, int count) noexcept;
template <class T>
LUMO_TEMPLATE_API int CRV_NodeEditDeleteEnabledEx(T* points, NODETYPE* types, int count,
                                                  WDeleteRunInfo** runs, int* runCount) noexcept;

// The conversions of crv_convert.h with the handles shown afterwards.
template <class T>
LUMO_TEMPLATE_API int CRV_NodeEditToLineEnabled(T* points, NODETYPE* types, int count) noexcept;
template <class T>
LUMO_TEMPLATE_API int CRV_NodeEditToCurveEnabled(T* points, NODETYPE* types, int count) noexcept;
template <class T>
LUMO_TEMPLATE_API int CRV_NodeEditSetContEnabled(T* points, NODETYPE* types, int count,
                                                 ContinuityType continuity) noexcept;
template <class T>
LUMO_TEMPLATE_API int CRV_NodeEditReduceEnabled(T* points, NODETYPE* types, int count,
                                                double tolerance) noexcept;
template <class T>
LUMO_TEMPLATE_API int CRV_NodeEditReduceEnabledDouble(T* points, NODETYPE* types, int count, double tolerance,
                                                      TavMath::DPoint* second) noexcept;

// The instances, by source file.
#define LUMO_CRV_ADD(LUMO_VERB, T)                                         \
  LUMO_VERB int CRV_Add<T>(T*, NODETYPE*, int, int, double, int) noexcept; \
  LUMO_VERB int CRV_AddEnabled<T>(T*, NODETYPE*, int, int, int) noexcept;
#define LUMO_CRV_APPEND(LUMO_VERB, T)                                   \
  LUMO_VERB int CRV_AppendLine<T>(T*, NODETYPE*, int, int, T) noexcept; \
  LUMO_VERB int CRV_AppendMove<T>(T*, NODETYPE*, int, int, T) noexcept; \
  LUMO_VERB int CRV_Append<T>(T*, NODETYPE*, int, int, const T*, const NODETYPE*, int, int) noexcept;
#define LUMO_CRV_REMOVE(LUMO_VERB, T)                                   \
  LUMO_VERB int CRV_Remove<T>(T*, NODETYPE*, int, int, int) noexcept;   \
  LUMO_VERB int CRV_RemoveOpenSubpaths<T>(T*, NODETYPE*, int) noexcept; \
  LUMO_VERB int CRV_ReverseThisSubpath<T>(T*, NODETYPE*, int, int) noexcept;
#define LUMO_CRV_BREAK(LUMO_VERB, T)                                   \
  LUMO_VERB int CRV_BreakEnabled<T>(T*, NODETYPE*, int, int) noexcept; \
  LUMO_VERB int CRV_BreakAtLocation<T>(T*, NODETYPE*, int, int, double) noexcept;
#define LUMO_CRV_JOIN(LUMO_VERB, T)                                                                         \
  LUMO_VERB int CRV_JoinTwoNodesExt<T>(T*, NODETYPE*, int, int, int, int*) noexcept;                        \
  LUMO_VERB int CRV_JoinTwoNodes<T>(T*, NODETYPE*, int, int, int) noexcept;                                 \
  LUMO_VERB int CRV_JoinTwoNodesWithOpenSubpathExt<T>(T*, NODETYPE*, int, int*, int*, int*, int*) noexcept; \
  LUMO_VERB int CRV_JoinTwoNodesWithOpenSubpath<T>(T*, NODETYPE*, int, int, int, int, int) noexcept;
#define LUMO_CRV_JOIN_ENABLED(LUMO_VERB, T)                      \
  LUMO_VERB int CRV_JoinEnabled<T>(T*, NODETYPE*, int) noexcept; \
  LUMO_VERB int CRV_JoinEnabledAddingLineSegments<T>(T*, NODETYPE*, int) noexcept;
#define LUMO_CRV_DELETE(LUMO_VERB, T)                              \
  LUMO_VERB int CRV_DeleteEnabled<T>(T*, NODETYPE*, int) noexcept; \
  LUMO_VERB int CRV_DeleteEnabledEx<T>(T*, NODETYPE*, int, WDeleteRunInfo**, int*) noexcept;
#define LUMO_CRV_NODE_EDIT(LUMO_VERB, T)                                                             \
  LUMO_VERB int CRV_NodeEditAddEnabled<T>(T*, NODETYPE*, int) noexcept;                              \
  LUMO_VERB int CRV_NodeEditAddHere<T>(T*, NODETYPE*, int, int, double) noexcept;                    \
  LUMO_VERB int CRV_NodeEditBreakEnabled<T>(T*, NODETYPE*, int) noexcept;                            \
  LUMO_VERB int CRV_NodeEditJoinEnabled<T>(T*, NODETYPE*, int) noexcept;                             \
  LUMO_VERB int CRV_NodeEditJoinEnabledAddingLineSegments<T>(T*, NODETYPE*, int) noexcept;           \
  LUMO_VERB int CRV_NodeEditDeleteEnabled<T>(T*, NODETYPE*, int) noexcept;                           \
  LUMO_VERB int CRV_NodeEditDeleteEnabledEx<T>(T*, NODETYPE*, int, WDeleteRunInfo**, int*) noexcept; \
  LUMO_VERB int CRV_NodeEditToLineEnabled<T>(T*, NODETYPE*, int) noexcept;                           \
  LUMO_VERB int CRV_NodeEditToCurveEnabled<T>(T*, NODETYPE*, int) noexcept;                          \
  LUMO_VERB int CRV_NodeEditSetContEnabled<T>(T*, NODETYPE*, int, ContinuityType) noexcept;          \
  LUMO_VERB int CRV_NodeEditReduceEnabled<T>(T*, NODETYPE*, int, double) noexcept;                   \
  LUMO_VERB int CRV_NodeEditReduceEnabledDouble<T>(T*, NODETYPE*, int, double, TavMath::DPoint*) noexcept;
#define LUMO_CRV_EDIT(LUMO_VERB, T)   \
  LUMO_CRV_ADD(LUMO_VERB, T)          \
  LUMO_CRV_APPEND(LUMO_VERB, T)       \
  LUMO_CRV_REMOVE(LUMO_VERB, T)       \
  LUMO_CRV_BREAK(LUMO_VERB, T)        \
  LUMO_CRV_JOIN(LUMO_VERB, T)         \
  LUMO_CRV_JOIN_ENABLED(LUMO_VERB, T) \
  LUMO_CRV_DELETE(LUMO_VERB, T)       \
  LUMO_CRV_NODE_EDIT(LUMO_VERB, T)
LUMO_CRV_EDIT(LUMO_EXTERN, tagPOINT)
LUMO_CRV_EDIT(LUMO_EXTERN, TavMath::DPoint)
