#pragma once
// Whether an array of node types describes a path, and the mending of paths that come from files, tools and
// geometric operations. Everything works in place; nothing here throws.

#include <cstddef>
#include <vector>

#include "lumo/node_type.h"
#include "lumo/point_types.h"
#include "lumo/segment_list.h"

namespace Lumo {

/// What a repair may do and where its limits lie. Lengths are in document units, angles in degrees.
class LUMO_TYPE CurveRepairSettings {
 public:
  /// Handles that turn by no more than this at a node make it a smooth node when continuity is repaired.
  double GetSmoothNodeAngleLimit() const noexcept { return smoothNodeAngleLimit_; }
  void SetSmoothNodeAngleLimit(double degrees) noexcept { smoothNodeAngleLimit_ = degrees; }
  /// Line segments shorter than this are taken out, unless the whole subpath is as small.
  double GetMinLineLength() const noexcept { return minLineLength_; }
  void SetMinLineLength(double length) noexcept { minLineLength_ = length; }
  /// Bezier segments shorter than this are taken out.
  double GetMinBezierLength() const noexcept { return minBezierLength_; }
  void SetMinBezierLength(double length) noexcept { minBezierLength_ = length; }
  /// Whether handles that lie on their own node, or behind it by less than the offset below, are moved off
  /// it, in the direction in which the curve leaves the node.
  bool FixOverlappingHandles() const noexcept { return fixOverlappingHandles_; }
  void SetFixOverlappingHandles(bool fix) noexcept { fixOverlappingHandles_ = fix; }
  /// How far such a handle is moved, as a fraction of the chord.
  double GetOverlappingHandleOffset() const noexcept { return overlappingHandleOffset_; }
  void SetOverlappingHandleOffset(double fraction) noexcept { overlappingHandleOffset_ = fraction; }
  /// Whether Beziers that bend too tightly at an end point are eased: the handle is lengthened, so that the
  /// tangent stays.
  bool FixTightEndpointRadius() const noexcept { return fixTightEndpointRadius_; }
  void SetFixTightEndpointRadius(bool fix) noexcept { fixTightEndpointRadius_ = fix; }
  /// A radius of curvature below this counts as too tight.
  double GetTightEndpointRadiusLimit() const noexcept { return tightEndpointRadiusLimit_; }
  void SetTightEndpointRadiusLimit(double radius) noexcept { tightEndpointRadiusLimit_ = radius; }
  /// Whether Beziers that cross themselves or fold back along a line are split.
  bool SplitOverlappingBeziers() const noexcept { return splitOverlappingBeziers_; }
  void SetSplitOverlappingBeziers(bool split) noexcept { splitOverlappingBeziers_ = split; }

 private:
  double smoothNodeAngleLimit_ = 1.0;
  double minLineLength_ = 10.0;
  double minBezierLength_ = 10.0;
  bool fixOverlappingHandles_ = true;
  double overlappingHandleOffset_ = 0.004;
  bool fixTightEndpointRadius_ = false;
  double tightEndpointRadiusLimit_ = 1.0;
  bool splitOverlappingBeziers_ = false;
};

/// Whether the node types describe a path, by the kinds and flags alone. A count of 0 is valid, a null array
/// with a count is not. Refused: a path that does not begin with a subpath start; a subpath start after a
/// control point; a line or curve end whose segment would start at a control point; a curve end without its
/// two control points; a control point at either end of the array, with closed flag or continuity, or shown
/// (user flag) without being enabled; a subpath whose last node disagrees with its start about being closed,
/// and one whose two closed ends both carry the user flag. The closed flag on inner nodes is not looked at.
LUMO_API bool IsValidCurve(const NODETYPE* types, std::size_t count) noexcept;

/// Makes flags and kinds agree in one pass: subpath starts and inner on-curve nodes become user nodes, inner
/// nodes lose the closed flag, a control point at the end of a subpath becomes a line end, the last node
/// takes its closed flag from the subpath's start and is a user node only when open. A subpath start that is
/// also the last node of its subpath keeps its flags but for the user flag, which it gets. Where the array
/// does not begin with a subpath start, the first subpath counts as open. Returns whether a byte changed.
/// Curve ends without control points are not mended: the result need not be valid.
LUMO_API bool FixNodeTypes(NODETYPE* types, std::size_t count) noexcept;

/// Removes subpaths of a single move node and brings the user flags in order (set on subpath starts and on
/// every on-curve node that is not a closing node, clear on the rest). With keepLetters, the letter flag of
/// a removed node passes to the node behind it; without, every letter flag of the path is cleared, also on
/// nodes that stay. Returns the new count; 0 for a null array or a count below 1. One pass.
template <class T>
LUMO_TEMPLATE_API int ScrubDanglingMoves(T* points, NODETYPE* types, int count, bool keepLetters) noexcept;

/// Removes from a polyline every point equal to the one before it, compared exactly. Returns the new count;
/// 0 for a null array.
template <class T>
LUMO_TEMPLATE_API std::size_t RemoveZeroLengthSegments(T* points, std::size_t count) noexcept;

/// Removes every segment whose points all coincide, compared exactly; the node it starts at stays. The last
/// segment of a subpath and lone moves stay. The ends and closed flags of subpaths stay in order. Returns the
/// new count; count unchanged for null arrays or without heap memory.
template <class T>
LUMO_TEMPLATE_API std::size_t RemoveZeroLengthSegments(T* points, NODETYPE* types,
                                                       std::size_t count) noexcept;
/// Removes lines and Beziers shorter than the given lengths: the next segment then starts where the removed
/// one did, or, at the end of a subpath, the previous one ends where it did; handles move along. So ends stay
/// where they are, and no point of the outline moves by more than twice the greater length. Left alone: a
/// subpath whose box is smaller than the lengths in both directions, and the last segment of a subpath
/// (three, when a closed one is all lines). Returns the new count; count unchanged for null arrays or without
/// heap memory.
template <class T>
LUMO_TEMPLATE_API int RemoveShortSegments(T* points, NODETYPE* types, int count, double minLineLength,
                                          double minBezierLength) noexcept;
/// Removes the subpaths whose box is smaller than size in both directions. Returns the new count.
template <class T>
LUMO_TEMPLATE_API int RemoveSmallSubpaths(T* points, NODETYPE* types, int count, double size) noexcept;
/// Brings the continuity of nodes in line with their handles: a node beside a curve whose directions turn by
/// at most the angle limit (and the rounding of integer handles, where it was marked smooth before) is
/// smooth, or stays symmetric when its handles are equally long; every other node, open ends and nodes
/// between lines included, is a cusp. Closed ends are written alike. Returns the number of bytes changed.
template <class T>
LUMO_TEMPLATE_API int RepairContinuity(const T* points, NODETYPE* types, int count,
                                       const CurveRepairSettings& settings) noexcept;

/// What a repair mended: how many times each.
struct LUMO_TYPE CurveRepairReport {
  int strayNodes = 0;     ///< nodes that no segment could end at, or that were not finite
  int danglingMoves = 0;  ///< move nodes that started nothing
  int fixedTypes = 0;     ///< flags of nodes
  int closedGaps = 0;     ///< closed subpaths whose ends lay apart
  /// Segments that were removed or split, handles that were moved: see CurveRepairSettings.
  int zeroLengthSegments = 0;
  int shortSegments = 0;
  int splitBeziers = 0;
  int overlappingHandles = 0;
  int tightEndpoints = 0;
  int continuity = 0;  ///< nodes whose continuity was wrong

  /// Whether anything was mended.
  bool Any() const noexcept {
    return (strayNodes | danglingMoves | fixedTypes | closedGaps | zeroLengthSegments | shortSegments |
            splitBeziers | overlappingHandles | tightEndpoints | continuity) != 0;
  }
};

/// Mends a path from any bytes at all, in this order: stray and dangling nodes go, flags are put in order,
/// closed subpaths are closed (by moving the last node when it is nearer than the minimum line length, else
/// by a line), zero-length and short segments go, and then what the settings ask for is done to Beziers and
/// continuity. The result is well formed; repairing it again changes nothing; a path without defects comes
/// back bit for bit. Integer points are rounded half away from zero. report may be null.
/// False, and everything as before, when there is no memory. Linear in the number of nodes.
template <class T>
LUMO_TEMPLATE_API bool RepairCurves(std::vector<T>& points, std::vector<NODETYPE>& types,
                                    const CurveRepairSettings& settings,
                                    CurveRepairReport* report = nullptr) noexcept;
/// The same on a list of segments, in doubles.
LUMO_API bool RepairCurves(CSegmentList& list, const CurveRepairSettings& settings,
                           CurveRepairReport* report = nullptr) noexcept;

}  // namespace Lumo

#define LUMO_REPAIR(LUMO_VERB, T)                                               \
  LUMO_VERB int Lumo::ScrubDanglingMoves<T>(T*, NODETYPE*, int, bool) noexcept; \
  LUMO_VERB std::size_t Lumo::RemoveZeroLengthSegments<T>(T*, std::size_t) noexcept;
#define LUMO_CURVE_REPAIR(LUMO_VERB, T)                                                         \
  LUMO_VERB std::size_t Lumo::RemoveZeroLengthSegments<T>(T*, NODETYPE*, std::size_t) noexcept; \
  LUMO_VERB int Lumo::RemoveShortSegments<T>(T*, NODETYPE*, int, double, double) noexcept;      \
  LUMO_VERB int Lumo::RemoveSmallSubpaths<T>(T*, NODETYPE*, int, double) noexcept;              \
  LUMO_VERB int Lumo::RepairContinuity<T>(const T*, NODETYPE*, int,                             \
                                          const Lumo::CurveRepairSettings&) noexcept;           \
  LUMO_VERB bool Lumo::RepairCurves<T>(std::vector<T>&, std::vector<NODETYPE>&,                 \
                                       const Lumo::CurveRepairSettings&, Lumo::CurveRepairReport*) noexcept;
LUMO_REPAIR(LUMO_EXTERN, tagPOINT)
LUMO_REPAIR(LUMO_EXTERN, TavMath::DPoint)
LUMO_CURVE_REPAIR(LUMO_EXTERN, tagPOINT)
LUMO_CURVE_REPAIR(LUMO_EXTERN, TavMath::DPoint)
