#pragma once
// The path class: a pair of arrays (points and node types) in storage that copies share until one of them
// writes.
//
// Copying a path of any size costs one atomic increment. Every member that is not const first gives the path
// storage of its own (if copies share it, or if it refers to arrays of the caller), then writes. Pointers,
// references and views obtained from a path stay valid until the next call of a non-const member of that
// path, or its destruction. Queries, and any use of different paths (copies included), are safe on different
// threads; one path object that is written must not be used elsewhere at the same time.
//
// Nothing throws. Members that return bool give false when memory runs out (the path is then as it was), when
// an index is not below the node count, or when the edit does not apply; ranges that reach past the end are
// cut to it.
//
// Coordinates, lengths and distances are in the path's own units, areas in square units, angles in radians.
// A call costs one pass over the nodes or less, unless it or the header that it refers to says more.

#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>
#include <type_traits>
#include <vector>

#include "lumo/curve_data.h"
#include "lumo/forward.h"
#include "lumo/node_type.h"
#include "lumo/path_views.h"
#include "lumo/point_types.h"
#include "tav/math/cubic_bezier.h"
#include "tav/math/matrix.h"
#include "tav/math/rect.h"

namespace Lumo {

/// What AlignEnabledNodes lines nodes up with: an edge or a middle line of their common box.
enum class NodeEdge : int { left = 0, right = 1, top = 2, bottom = 3, middleX = 4, middleY = 5 };

/// A path. The comment of the file says what copies share, how long pointers live and what false means.
template <class T>
class LUMO_TEMPLATE_API PolycurveT {
 public:
  /// A coordinate of a point: a 32-bit integer or a double.
  using Coordinate = decltype(T::x);
  /// What translates a path: a point of integers for integer paths, a direction for double paths.
  using Translation = std::conditional_t<std::is_same_v<T, tagPOINT>, tagPOINT, TavMath::DVector>;
  /// The other of the two point types.
  using OtherPoint = std::conditional_t<std::is_same_v<T, tagPOINT>, TavMath::DPoint, tagPOINT>;
  /// A box of such points.
  using Box = BoxT<T>;
  /// What nearest-point searches give.
  using Closest = ClosestPoint<T, CurvePosition>;
  /// Exists for types with coordinates x and y that are not the Translation itself.
  template <class Vector>
  using OtherVector = std::enable_if_t<
      !std::is_same_v<Vector, Translation> && std::is_arithmetic_v<decltype(Vector::x + Vector::y)>, int>;

  // ---- Construction and assignment ----

  /// Empty.
  PolycurveT() noexcept;
  /// Empty, with room reserved for n nodes.
  explicit PolycurveT(std::size_t n) noexcept;
  /// Copies the arrays; empty when either is null.
  PolycurveT(const T* points, const NODETYPE* types, std::size_t n) noexcept;
  /// Shares the storage of the other path; a path that refers to a caller's arrays is copied.
  PolycurveT(const PolycurveT& other) noexcept;
  /// Takes the storage; the other path is left empty and usable.
  PolycurveT(PolycurveT&& other) noexcept;
  /// Converts every point (to integers: half away from zero).
  explicit PolycurveT(const PolycurveT<OtherPoint>& other) noexcept;
  virtual ~PolycurveT();
  /// As the constructors do.
  PolycurveT& operator=(const PolycurveT& other) noexcept;
  PolycurveT& operator=(PolycurveT&& other) noexcept;

  // ---- Storage ----

  /// Whether both hold the same storage object.
  bool IsSameData(const PolycurveT& other) const noexcept { return data_ == other.data_; }
  /// Gives a path that refers to a caller's arrays a copy of its own; leaves any other path as it is.
  void EnsureDataOwnership() noexcept;
  /// Makes room for n nodes in all.
  bool Reserve(std::size_t n) noexcept;
  /// Exchanges two paths without copying nodes.
  void Swap(PolycurveT& other) noexcept;
  /// Removes all nodes and gives the memory up.
  bool Clear() noexcept;
  /// The writable arrays, for the in-place functions: get a buffer large enough, let them write, and end with
  /// ReleaseBuffer(final count). With n, both arrays are made at least n nodes long (never shorter); new
  /// slots are zero. Empty on failure.
  DrawCurveT<T> GetBuffer() noexcept;
  DrawCurveT<T> GetBuffer(std::size_t n) noexcept;
  /// The same with exactly n nodes.
  DrawCurveT<T> GetBufferSetCount(std::size_t n) noexcept;
  /// Ends the use of a buffer: cuts the path to n nodes; refuses an n above the count. Without n, keeps the
  /// count.
  bool ReleaseBuffer() noexcept;
  bool ReleaseBuffer(std::size_t n) noexcept;

  // ---- Elements ----

  /// The number of nodes, control points included.
  std::size_t GetPointCount() const noexcept { return data_ ? data_->GetCount() : 0; }
  bool IsEmpty() const noexcept { return GetPointCount() == 0; }
  /// Null when the path is empty.
  const T* GetPoints() const noexcept { return data_ ? data_->GetPoints() : nullptr; }
  const NODETYPE* GetNodeTypes() const noexcept { return data_ ? data_->GetNodeTypes() : nullptr; }
  /// One element; a zero element for an index outside the path.
  const T& GetPoint(std::size_t i) const noexcept;
  const NODETYPE& GetNodeType(std::size_t i) const noexcept;
  /// Replace one element. O(1) on storage of its own, else a copy of the path comes first.
  bool SetPoint(std::size_t i, const T& point) noexcept;
  bool SetNodeType(std::size_t i, NODETYPE type) noexcept;
  /// Replace all contents. Vectors of different length count up to the shorter one.
  bool SetPoints(const T* points, const NODETYPE* types, std::size_t n) noexcept;
  bool SetPoints(const std::vector<T>& points, const std::vector<NODETYPE>& types) noexcept;
  bool SetPoints(std::vector<T>&& points, std::vector<NODETYPE>&& types) noexcept;
  bool SetPoints(const PolycurveT& other) noexcept;
  /// Writes the closed flag of node i alone. The subpath's other closed end keeps its own, so the path is not
  /// well formed until the caller has set both.
  bool SetNodeClosed(std::size_t i, bool closed) noexcept;
  /// The user and the letter flag of node i; false outside the path.
  bool IsUser(std::size_t i) const noexcept;
  bool SetUserNode(std::size_t i, bool user) noexcept;
  bool IsLetter(std::size_t i) const noexcept;
  bool SetLetter(std::size_t i, bool letter) noexcept;
  /// True when at least one node carried the flag.
  bool ClearLetterFlags() noexcept;
  /// One path per letter: a subpath whose move node carries the letter flag begins a new one. Subpaths before
  /// the first such node form a path of their own.
  std::vector<PolycurveT> GetLetterCurves() const;
  /// Hides the handles: clears the user flag of every control point.
  bool ClearUserFlagOnArcs() noexcept;

  // Per-node flags as the functions of crv_navigation.h write them: both closed ends of a closed subpath
  // together.
  bool IsEnabled(std::size_t i) const noexcept;
  bool SetEnabled(std::size_t i, bool enable) noexcept;
  bool SetCont(std::size_t i, ContinuityType continuity) noexcept;
  bool EnableAllNodes() noexcept;
  bool DisableAllNodes() noexcept;
  bool EnableAllControls() noexcept;
  bool EnableOneControl(std::size_t i) noexcept;
  bool EnableSubpath(std::size_t i, bool enable) noexcept;
  /// In every closed subpath, selects both closed ends when either is selected.
  bool EnableFirstAndLastInClosedSubpaths() noexcept;

  // ---- Appending ----

  /// Append a move node, a line end or a curve with its two control points; all on-curve nodes are user nodes
  /// and cusps. Nothing is checked: begin with MoveTo. Amortised constant time on storage of its own.
  bool MoveTo(const T& point) noexcept;
  bool MoveTo(Coordinate x, Coordinate y) noexcept { return MoveTo(T{x, y}); }
  bool LineTo(const T& point) noexcept;
  bool LineTo(Coordinate x, Coordinate y) noexcept { return LineTo(T{x, y}); }
  /// With mergeCollinear, a last line that runs on nearly straight (within about 3.16 units) is lengthened
  /// instead. Unlike LineTo(point), this form appends nothing to an empty path and returns false, whatever
  /// the flag.
  bool LineTo(const T& point, bool mergeCollinear) noexcept;
  bool LineTo(Coordinate x, Coordinate y, bool mergeCollinear) noexcept {
    return LineTo(T{x, y}, mergeCollinear);
  }
  /// A curve from the last point; see MoveTo.
  bool CubicTo(const T& control1, const T& control2, const T& end) noexcept;
  /// Append nodes as they are, unchecked. The source may be this path.
  bool PushBack(const T& point, NODETYPE type) noexcept;
  bool PushBack(const T* points, const NODETYPE* types, std::size_t n) noexcept;
  bool PushBack(const std::vector<T>& points, const std::vector<NODETYPE>& types) noexcept;
  bool PushBack(const PolycurveT& other) noexcept;
  bool PushBack(const PolycurveT<OtherPoint>& other) noexcept;
  /// A circular arc from the last point through a point to an end point; a straight line when the three are
  /// collinear.
  bool CircularArcTo(const T& through, const T& end) noexcept;
  /// A circular arc about a centre from the last point, counter-clockwise (y up) by an angle in radians.
  bool CircularArcTo(const T& center, double sweep) noexcept;
  /// Continue the last subpath when its last point equals the first point given, exactly; else begin a new
  /// subpath.
  bool AppendLineWithJoin(const T& start, const T& end) noexcept;
  bool AppendBezierWithJoin(const T& start, const T& control1, const T& control2, const T& end) noexcept;
  bool AppendWithJoin(const PolycurveT& other) noexcept;
  /// Smooth cubics through n points (the first and last exactly) with no point farther than the tolerance
  /// from them; corners sharper than the fit can follow stay cusps. Continues the last subpath when its last
  /// point equals the first point, else begins a new one.
  bool AppendFittedCurve(const T* points, std::size_t n, double tolerance) noexcept;
  bool AppendFittedCurve(const std::vector<T>& points, double tolerance) noexcept;

  // ---- Comparison and operators ----

  /// Fewer nodes -1, more 1, else the sign of the first differing byte of the points, then of the node types.
  /// An order for containers, not a geometric one.
  int Compare(const PolycurveT& other) const noexcept;
  /// By Compare.
  bool operator==(const PolycurveT& other) const noexcept { return Compare(other) == 0; }
  bool operator!=(const PolycurveT& other) const noexcept { return Compare(other) != 0; }
  bool operator<(const PolycurveT& other) const noexcept { return Compare(other) < 0; }
  /// TransformPoints, UnTransformPoints, TranslatePoints.
  PolycurveT& operator*=(const MATRIX& matrix) noexcept;
  PolycurveT& operator/=(const MATRIX& matrix) noexcept;
  PolycurveT& operator+=(const Translation& offset) noexcept;
  /// Any other kind of vector; see TranslatePoints.
  template <class Vector, OtherVector<Vector> = 0>
  PolycurveT& operator+=(const Vector& offset) noexcept {
    TranslatePoints(offset);
    return *this;
  }
  /// PushBack of the nodes of other paths.
  PolycurveT& operator+=(const PolycurveT& other) noexcept;
  PolycurveT& operator+=(const std::vector<PolycurveT>& others) noexcept;

  // ---- Subpaths ----

  /// The number of move nodes. One scan.
  std::size_t GetSubpathCount() const noexcept;
  /// The nodes of subpath k (0 is the first), found by a walk up to it; none, or false, when there is none.
  std::optional<SubcurveRange> GetSubpathRange(std::size_t k) const noexcept;
  bool GetSubpathRange(std::size_t k, std::size_t& first, std::size_t& end) const noexcept;
  /// Empty when there is no subpath k.
  PolycurveT GetSubpath(std::size_t k) const noexcept;
  /// Each subpath as a path of its own.
  std::vector<PolycurveT> GetSubpaths() const;
  /// Paths over this path's arrays: valid until it is next written.
  std::vector<PolycurveRefT<T>> GetSubpathRefs() const;
  /// The node ranges of all subpaths.
  std::vector<SubcurveRange> GetSubpathIndices() const;
  /// Their arrays, inside this path's: valid until it is next written.
  std::vector<ConstDrawCurveT<T>> GetSubpathCurves() const;
  /// Those with a selected node.
  std::vector<ConstDrawCurveT<T>> GetEnabledSubpathCurves() const;
  /// Whether subpath k is closed; false when there is none.
  bool IsClosed(std::size_t k) const noexcept;
  /// The same of the last subpath; of any.
  bool IsLastSubpathClosed() const noexcept;
  bool ContainsClosedSubpaths() const noexcept;
  /// With onlyRealSubpaths, lone move nodes do not count.
  bool ContainsOpenSubpaths(bool onlyRealSubpaths) const noexcept;

  // ---- Measures (see measure.h) ----

  /// The box of all points; of the path itself; of the path after a map; of the selected part. All-zero
  /// (integer) or empty (double) when there is nothing to measure.
  Box GetLooseBBox() const noexcept;
  Box GetTightBBox() const noexcept;
  TavMath::BoundsT<double> GetTightTransformedBBox(const MATRIX& matrix) const noexcept;
  Box GetTightEnabledBBox() const noexcept;
  /// False, and box untouched, when nothing is selected.
  bool GetTightEnabledBBox(Box& box) const noexcept;
  /// Signed area enclosed by the closed subpaths: positive when they run clockwise (y up).
  double GetArea() const noexcept;
  /// GetArea() > 0.
  bool IsClockwise() const noexcept;
  /// The length of all segments; gaps between subpaths do not count.
  double GetLength() const noexcept;
  double GetLength(TavMath::LengthAccuracy accuracy) const noexcept;
  /// The length from a position to the end of the path, and from the start of the path to a position.
  double GetLengthFrom(const CurvePosition& position) const noexcept;
  double GetLengthAlongCurveTo(const CurvePosition& position) const noexcept;
  /// The position at a length from the start (clamped to the path); none when the path has no segment.
  std::optional<CurvePosition> GetPositionAtLength(double length) const noexcept;
  /// The same with the length given as a fraction of the whole.
  std::optional<CurvePosition> GetPositionAtRelativeLength(double fraction) const noexcept;
  /// The point at a position; false (out untouched) when the position is not one of this path.
  bool GetPointAt(const CurvePosition& position, T& out) const noexcept;
  /// The unit tangent in the direction of travel (reverse: against it); zero where there is none.
  TavMath::DVector GetTangentAt(const CurvePosition& position, bool reverse = false) const noexcept;
  /// The side of the nearest segment that a point lies on (y up).
  TavMath::Side GetSide(const T& point) const noexcept;
  /// The same.
  TavMath::Side OnLeftOrRight(const T& point) const noexcept;
  /// The nearest point; of equally near ones the first. False when the path has no segment.
  bool FindClosestPoint(const T& point, Closest& result) const noexcept;
  /// All equally near points, in path order.
  std::vector<Closest> FindClosestPoints(const T& point) const;
  /// The farthest point; of equally far ones the first. False when the path has no segment.
  bool FindFarthestPoint(const T& point, Closest& result) const noexcept;
  /// n points at equal distances along the path; of an open path both ends are among them.
  std::vector<T> GetEvenlySpacedPoints(std::size_t n) const;
  /// Adds nodes so that the path consists of n stretches of equal length.
  bool DivideEqually(std::size_t n) noexcept;
  /// The path as straight lines, nowhere farther than the tolerance from it.
  PolycurveT GetPolyline(double tolerance) const noexcept;
  /// See IsPointInShape in measure.h.
  bool IsPointInShape(const T& point, bool surrounded = false, bool hitVertices = false) const noexcept;

  // ---- Range edits and transforms ----

  /// Removes removeCount nodes at start and puts n given ones in their place. Start and removeCount are cut
  /// to the path. The source may lie in this path's own arrays.
  bool ReplacePoints(std::size_t start, std::size_t removeCount, const T* points, const NODETYPE* types,
                     std::size_t n) noexcept;
  bool ReplacePoints(std::size_t start, std::size_t removeCount, const PolycurveT& other) noexcept;
  /// The other path's nodes from otherStart, at most n of them.
  bool ReplacePoints(std::size_t start, std::size_t removeCount, const PolycurveT& other,
                     std::size_t otherStart, std::size_t n) noexcept;
  /// ReplacePoints that removes nothing.
  bool InsertPoints(std::size_t at, const T* points, const NODETYPE* types, std::size_t n) noexcept;
  bool InsertPoints(std::size_t at, const PolycurveT& other) noexcept;
  bool InsertPoints(std::size_t at, const PolycurveT& other, std::size_t otherStart, std::size_t n) noexcept;
  /// ReplacePoints that inserts nothing. Whole subpaths or segments are the caller's care.
  bool DeletePoints(std::size_t start, std::size_t n) noexcept;
  /// Cuts the path to n nodes when it has at least as many.
  bool Truncate(std::size_t n) noexcept;
  /// Subpaths come out in reverse order, each reversed.
  bool Reverse() noexcept;
  /// The range forms map the nodes first .. last (both included, in either order, cut to the path).
  bool TransformPoints(const MATRIX& matrix) noexcept;
  bool TransformPoints(const MATRIX& matrix, std::size_t first, std::size_t last) noexcept;
  /// Map by the inverse; false, and nothing changed, when the matrix has none.
  bool UnTransformPoints(const MATRIX& matrix) noexcept;
  bool UnTransformPoints(const MATRIX& matrix, std::size_t first, std::size_t last) noexcept;
  /// Integer coordinates saturate at the 32-bit range.
  bool TranslatePoints(const Translation& offset) noexcept;
  bool TranslatePoints(const Translation& offset, std::size_t first, std::size_t last) noexcept;
  /// Any other kind of vector; integer points are rounded half away from zero.
  template <class Vector, OtherVector<Vector> = 0>
  bool TranslatePoints(const Vector& offset) noexcept {
    return TransformPoints(Shift(offset));
  }
  template <class Vector, OtherVector<Vector> = 0>
  bool TranslatePoints(const Vector& offset, std::size_t first, std::size_t last) noexcept {
    return TransformPoints(Shift(offset), first, last);
  }
  /// Scales and moves the path so that its tight box becomes the rectangle; an extent of zero is only moved.
  bool TransformToFit(const Box& rect) noexcept;

  // ---- Joining and closing (see crv_edit.h) ----

  /// Joins two open ends, named by their node indices.
  bool Join(std::size_t a, std::size_t b) noexcept;
  /// CRV_JoinEnabled and its like; false when nothing was joined.
  bool JoinEnabled() noexcept;
  bool JoinEnabledAddingLineSegments() noexcept;
  /// As JoinEnabledAddingLineSegments with a cubic that leaves and arrives along the tangents of the two
  /// ends.
  bool JoinEnabledAddingCurves() noexcept;
  /// Merges open ends that lie within the tolerance of each other, nearest first. O(n log n) for n ends.
  bool JoinTouchingSubpaths(double tolerance) noexcept;
  /// Joins the path's first node to its last.
  bool JoinEndpoints() noexcept;
  /// Joins the two nearest open ends by a line, again and again, until none is left. O(n log n) for n ends.
  bool JoinClosestPairsAddingLineSegments() noexcept;
  /// Closes the subpath that holds node i with a straight line. The selection is lost. The closing line
  /// becomes the first segment, so the start node moves. False for a lone move node.
  bool CloseSubpath(std::size_t i) noexcept;
  /// Closes the last subpath: ends within the tolerance are put together (the last node moves to the first),
  /// else a closing line is added when addLine is set, else false.
  bool CloseLastSubpath(double tolerance, bool addLine) noexcept;
  /// CloseLastSubpath(0, true).
  bool CloseLastSubpathWithOptionalLine() noexcept;
  /// Closes every open subpath, with a line where its ends differ.
  bool CloseOpenSubpaths() noexcept;

  // ---- Breaking, deleting, converting (see crv_edit.h, crv_convert.h) ----

  /// CRV_BreakAtLocation at a position; at a length along the path, clamped to it.
  bool BreakAt(const CurvePosition& position) noexcept;
  bool BreakAtLength(double length) noexcept;
  /// CRV_BreakEnabled.
  bool BreakEnabled(bool keepEnabled = false) noexcept;
  /// CRV_DeleteEnabled of one on-curve node. The selection is lost.
  bool DeleteNode(std::size_t i) noexcept;
  /// Deletes the segment that ends at node i (or that control point i belongs to): opens a closed subpath
  /// there, splits an open one.
  bool DeleteSegment(std::size_t i) noexcept;
  /// Removes the nodes of subpath k.
  bool DeleteSubpath(std::size_t k) noexcept;
  /// CRV_DeleteEnabled.
  bool DeleteEnabled() noexcept;
  /// Delete the segments whose two end nodes are both selected, or are not both selected.
  bool DeleteSelectedChords() noexcept;
  bool DeleteUnselectedChords() noexcept;
  /// The segment that ends at node i; without an index, those that end at selected nodes.
  bool ConvertToLine(std::size_t i) noexcept;
  bool ConvertToLine() noexcept;
  bool ConvertToCurve(std::size_t i) noexcept;
  bool ConvertToCurve() noexcept;
  /// Reverses every subpath that has a selected node.
  bool ReverseEnabledSubpaths() noexcept;
  /// Lets a closed subpath start at on-curve node i. False for an open one and for a control point.
  bool SpinSubpath(std::size_t i) noexcept;
  bool SetPathStartAt(std::size_t i) noexcept;
  /// Lengthen every open subpath straight along its tangent: at its end, at its start, at both.
  bool ExtendForward(double length) noexcept;
  bool ExtendBackward(double length) noexcept;
  bool Extend(double length) noexcept;
  /// Replaces runs of lines that stay within the tolerance of one line by that line. Only nodes between two
  /// lines, that are not subpath ends, go.
  bool MergeLines(double tolerance) noexcept;

  // ---- Alignment: nodes move together with their handles ----

  /// Gives the selected nodes the edge or middle line of their common box.
  bool AlignEnabledNodes(NodeEdge edge) noexcept;
  /// Gives the selected nodes the position's x, y or both.
  bool AlignEnabledNodesToPosition(const T& position, bool alignX = true, bool alignY = true) noexcept;
  /// Moves one node there.
  bool AlignSingleNodeToPosition(std::size_t i, const T& position) noexcept;
  /// To the centre of the pixel it lies in; pixels are squares of the given size, with a corner at the
  /// origin.
  bool AlignSingleNodeToPixel(std::size_t i, double pixelSize) noexcept;
  /// To the nearest corner of a pixel.
  bool AlignFirstNodeToPixelEdge(double pixelSize) noexcept;
  bool AlignLastNodeToPixelEdge(double pixelSize) noexcept;

  // ---- Repair and intersections (see repair.h, intersections.h) ----

  /// See the function in repair.h.
  bool IsValidCurve() const noexcept;
  /// True when some node type was changed.
  bool RepairNodeTypes() noexcept;
  /// See the functions in repair.h; lengths in units.
  bool ScrubDanglingMoves(bool keepLetterFlags) noexcept;
  bool RepairCurves(const CurveRepairSettings& settings) noexcept;
  bool RepairContinuity(const CurveRepairSettings& settings) noexcept;
  bool RemoveZeroLengthSegments() noexcept;
  bool RemoveShortSegments(double length) noexcept;
  /// Removes the subpaths whose box is smaller than the size in both directions.
  bool RemoveSmallSubpaths(double size) noexcept;
  /// Breaks this path where it meets the other; where it meets itself.
  bool BreakAtIntersections(const PolycurveT& other) noexcept;
  bool BreakAtSelfIntersections() noexcept;
  /// Whether some on-curve node lies within the tolerance of the point.
  bool HasNodeCloseToCurve(const T& point, double tolerance) const noexcept;

  // ---- Shapes (see shapes.h) ----

  /// The builders of shapes.h as paths; empty when memory runs out or a number is not finite.
  static PolycurveT CreateLine(const T& a, const T& b) noexcept;
  static PolycurveT CreateEllipse(const T& center, double rx, double ry, double startAngle = 0,
                                  double endAngle = 0, bool pie = false, bool userOnEnd = false) noexcept;
  /// The builders of shapes.h as paths; empty when memory runs out or a number is not finite.
  static PolycurveT CreateCircle(const T& center, double radius) noexcept;
  static PolycurveT CreateRectangle(const Box& rect) noexcept;
  static PolycurveT CreateRectangle(double width, double height) noexcept;
  static PolycurveT CreateRectangle(double width, double height, double radius, RectangleCorner corner,
                                    bool userOnEnd) noexcept;
  /// The same shapes, appended as a subpath.
  bool CreateLineSubpath(const T& a, const T& b) noexcept;
  bool CreateEllipseSubpath(const T& center, double rx, double ry, double startAngle = 0, double endAngle = 0,
                            bool pie = false, bool userOnEnd = false) noexcept;
  bool CreateCircleSubpath(const T& center, double radius) noexcept;
  bool CreateRectangleSubpath(const Box& rect) noexcept;
  bool CreateRectangleSubpath(double width, double height) noexcept;
  bool CreateRectangleSubpath(double width, double height, double radius, RectangleCorner corner,
                              bool userOnEnd) noexcept;
  /// The shapes with points of the other kind: of doubles for an integer path (it is the nodes that are
  /// rounded, not what is given), of integers for a double path.
  template <class P, Only<P, OtherPoint> = 0>
  static PolycurveT CreateLine(const P& a, const P& b) noexcept {
    return PolycurveT(DoublePath<P>::CreateLine(InDoubles(a), InDoubles(b)));
  }
  template <class P, Only<P, OtherPoint> = 0>
  static PolycurveT CreateEllipse(const P& center, double rx, double ry, double startAngle = 0,
                                  double endAngle = 0, bool pie = false, bool userOnEnd = false) noexcept {
    return PolycurveT(
        DoublePath<P>::CreateEllipse(InDoubles(center), rx, ry, startAngle, endAngle, pie, userOnEnd));
  }
  template <class P, Only<P, OtherPoint> = 0>
  static PolycurveT CreateCircle(const P& center, double radius) noexcept {
    return CreateEllipse(center, radius, radius);
  }
  template <class P, Only<P, OtherPoint> = 0>
  bool CreateLineSubpath(const P& a, const P& b) noexcept {
    return PushBackShape(CreateLine(a, b));
  }
  template <class P, Only<P, OtherPoint> = 0>
  bool CreateEllipseSubpath(const P& center, double rx, double ry, double startAngle = 0, double endAngle = 0,
                            bool pie = false, bool userOnEnd = false) noexcept {
    return PushBackShape(CreateEllipse(center, rx, ry, startAngle, endAngle, pie, userOnEnd));
  }
  template <class P, Only<P, OtherPoint> = 0>
  bool CreateCircleSubpath(const P& center, double radius) noexcept {
    return CreateEllipseSubpath(center, radius, radius);
  }

  /// The same with a box of the other kind.
  template <class Rect, Only<Rect, BoxT<OtherPoint>> = 0>
  static PolycurveT CreateRectangle(const Rect& rect) noexcept {
    return PolycurveT(DoublePath<Rect>::CreateRectangle(InDoubles(rect)));
  }
  template <class Rect, Only<Rect, BoxT<OtherPoint>> = 0>
  bool CreateRectangleSubpath(const Rect& rect) noexcept {
    return PushBackShape(CreateRectangle(rect));
  }

  // ---- Boolean operations (see boolean.h): new paths, operands unchanged ----

  /// The functions of boolean.h with one rule for both operands.
  PolycurveT Union(const PolycurveT& other, FillRule rule = FillRule::nonZero) const noexcept;
  PolycurveT Intersect(const PolycurveT& other, FillRule rule = FillRule::nonZero) const noexcept;
  PolycurveT Subtract(const PolycurveT& other, FillRule rule = FillRule::nonZero) const noexcept;
  PolycurveT Xor(const PolycurveT& other, FillRule rule = FillRule::nonZero) const noexcept;
  /// The part of this path (open subpaths stay open) inside or outside a closed shape.
  PolycurveT ClipToShape(const PolycurveT& shape, bool keepInside = true,
                         FillRule rule = FillRule::nonZero) const noexcept;
  /// Outlines that do not cross themselves and fill the same ground.
  PolycurveT Simplify(FillRule rule = FillRule::nonZero) const noexcept;

  // ---- Offsets (see offset.h) ----

  /// Replaces the path by its offset. True when the result is not empty.
  bool OffsetCurve(const Offset::OffsetSettings& settings) noexcept;
  /// The parallel curve at a signed distance (positive: to the left), and at count multiples of it, nearest
  /// first.
  PolycurveT CreateParallelCurve(double distance, std::optional<double> maxError = std::nullopt,
                                 bool pure = false) const noexcept;
  PolycurveT CreateParallelCurves(double distance, std::size_t count,
                                  std::optional<double> maxError = std::nullopt,
                                  bool pure = false) const noexcept;

 protected:
  /// Adopts storage, together with one reference to it. (A template, so that PolycurveT(0) still means a
  /// size.)
  template <class Data, std::enable_if_t<std::is_base_of_v<CurveDataBase<T>, Data>, int> = 0>
  explicit PolycurveT(Data* data) noexcept : data_(data) {}
  /// The one door to writing: storage that only this path holds. Null (path unchanged) when memory runs out.
  CurveData<T>* GetCurveData() noexcept;
  /// Replaces the contents by two vectors, which are left empty.
  bool MoveData(std::vector<T>&& points, std::vector<NODETYPE>&& types) noexcept;
  /// ReleaseBuffer for the result of an in-place function: refuses a negative count.
  bool ReleaseBufferInternal(int n) noexcept;

 private:
  // Templates, so that the instances of the class do not export them.
  /// The map that adds an offset.
  template <class Vector>
  static MATRIX Shift(const Vector& by) noexcept {
    return {1, 0, 0, 1, static_cast<double>(by.x), static_cast<double>(by.y)};
  }
  template <class Given>
  static auto InDoubles(const Given& given) noexcept {
    if constexpr (std::is_same_v<Given, tagPOINT>) {
      return TavMath::DPoint{static_cast<double>(given.x), static_cast<double>(given.y)};
    } else if constexpr (std::is_same_v<Given, tagRECT>) {
      return TavMath::ToBox(given);
    } else {
      return given;
    }
  }
  /// Depends on the argument, so that reading a member needs no instance before it is declared below.
  template <class Given>
  using DoublePath = PolycurveT<std::conditional_t<std::is_void_v<Given>, T, TavMath::DPoint>>;
  /// False for a shape that could not be made.
  template <class Shape>
  bool PushBackShape(const Shape& shape) noexcept {
    return !shape.IsEmpty() && PushBack(shape);
  }
  bool PushBackWithJoinCheck(const T& point, NODETYPE type) noexcept;
  /// The same for a path whose last subpath may be closed, and then is never continued.
  bool PushBackStart(const T& point, NODETYPE type) noexcept;
  /// Joins the nearest open ends, pair by pair, up to a distance; by lines, or at their mean.
  bool JoinNearestEnds(double limit, bool withLines) noexcept;
  /// Lengthens the ends and the starts of the open subpaths.
  bool ExtendEnds(double forward, double backward) noexcept;
  /// Keeps the segments between two selected nodes, or all others.
  bool KeepChords(bool selected) noexcept;
  /// The node count for functions that count in int: a path beyond their range is read up to it.
  int IntCount() const noexcept {
    constexpr std::size_t kMost = (std::numeric_limits<int>::max)();
    return static_cast<int>((std::min)(GetPointCount(), kMost));
  }

  /// Null only after the path was moved from, or when memory ran out at construction: an empty path.
  CurveDataBase<T>* data_;
};

/// A path over a caller's arrays, which are never written: the first write copies them. They must outlive
/// every read through it. Null arrays make an empty path.
template <class T>
class LUMO_TEMPLATE_API PolycurveRefT : public PolycurveT<T> {
 public:
  /// Refers to the arrays.
  PolycurveRefT(const T* points, const NODETYPE* types, std::size_t n) noexcept;
  /// A copy owns its nodes; a moved-to path still refers to the caller's arrays.
  PolycurveRefT(const PolycurveRefT&) noexcept = default;
  PolycurveRefT(PolycurveRefT&&) noexcept = default;
  PolycurveRefT& operator=(const PolycurveRefT&) noexcept = default;
  PolycurveRefT& operator=(PolycurveRefT&&) noexcept = default;
  ~PolycurveRefT() override;
};

LUMO_EXTERN_CLASS(PolycurveT<tagPOINT>);
LUMO_EXTERN_CLASS(PolycurveT<TavMath::DPoint>);
LUMO_EXTERN_CLASS(PolycurveRefT<tagPOINT>);
LUMO_EXTERN_CLASS(PolycurveRefT<TavMath::DPoint>);

}  // namespace Lumo
