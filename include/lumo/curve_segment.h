#pragma once
// A path as a sequence of segments: moves, straight lines and cubic Beziers.
//
// A segment's number is the index of the first node that belongs to it and not to the segment before: the
// move node itself, a line's end node, a curve's first control point. Nothing here allocates. A view is valid
// only while the arrays it looks at are unchanged. Malformed arrays yield empty segments, never a read
// outside 0..count-1 (where no count is given, outside what the node at the number calls for).

#include <cstddef>
#include <optional>

#include "lumo/forward.h"
#include "lumo/node_type.h"
#include "lumo/path_views.h"
#include "lumo/point_types.h"
#include "tav/math/rect.h"
#include "tav/utils/array_view.h"
#include "tav/utils/index_range.h"

namespace Lumo {

/// Decided by the length of a segment's node view alone: 1, 2 or 4 nodes.
enum class CurveSegmentType : int { none = 0, move = 1, line = 2, curve = 3 };

/// The step from a segment's number to the next one's: +1 at a move or line node, +3 at a control point. A
/// curve node, which is no segment's number, gives 1: a walk that meets one starts again near the front,
/// which ValidSegments detects.
class LUMO_TYPE NextCurveSegment {
 public:
  NextCurveSegment() = default;
  /// Steps over an array of node types; of the path, which must outlive the object.
  explicit NextCurveSegment(const NODETYPE* types) noexcept : types_(types) {}
  template <class T>
  explicit NextCurveSegment(const PolycurveT<T>& polycurve) noexcept : types_(polycurve.GetNodeTypes()) {}

  /// The number after a number.
  std::size_t operator()(std::size_t number) const noexcept { return After(types_[number], number); }

  /// The same, from the type of the node at the number.
  static std::size_t After(NODETYPE type, std::size_t number) noexcept {
    if (type.IsControl()) return number + 3;
    return type.IsCurve() ? 1 : number + 1;
  }

 private:
  const NODETYPE* types_ = nullptr;
};

/// A non-owning view of one segment.
template <class T>
class LUMO_TEMPLATE_API CurveSegmentT {
 public:
  /// Views of the node types and of the points of one segment.
  using NodeView = TavUtils::array_view<const NODETYPE>;
  using PointView = TavUtils::array_view<const T>;

  /// An empty segment.
  CurveSegmentT() = default;
  /// The segment with that number; empty where the arrays hold none: a number at or beyond the count, a line
  /// or a curve without a start node, a curve node, a control point that does not begin the run control,
  /// control, curve. Without a count the caller vouches for the nodes that the kind calls for.
  CurveSegmentT(const NODETYPE* types, const T* points, std::size_t number,
                std::optional<std::size_t> count = std::nullopt) noexcept;
  CurveSegmentT(const PolycurveT<T>& polycurve, std::size_t number) noexcept;
  /// The three fields as they are; the views are parts of a whole path, at that number.
  CurveSegmentT(std::size_t number, NodeView nodes, PointView points) noexcept
      : number_(number), nodes_(nodes), points_(points) {}

  /// The segment with a number; none where the path holds none.
  static std::optional<CurveSegmentT> FromNumber(const PolycurveT<T>& polycurve, std::size_t number) noexcept;
  /// The segment that ends at a node: none for a control point.
  static std::optional<CurveSegmentT> FromEndIdx(const PolycurveT<T>& polycurve, std::size_t end) noexcept;
  /// The segment whose number follows a node. At the end of a subpath that is the next subpath's move.
  static std::optional<CurveSegmentT> FromStartIdx(const PolycurveT<T>& polycurve,
                                                   std::size_t start) noexcept;

  /// Whether it is a segment; of which kind.
  explicit operator bool() const noexcept { return !nodes_.empty(); }
  CurveSegmentType type() const noexcept {
    switch (nodes_.size()) {
      case 1:
        return CurveSegmentType::move;
      case 2:
        return CurveSegmentType::line;
      case 4:
        return CurveSegmentType::curve;
      default:
        return CurveSegmentType::none;
    }
  }
  /// The number and the two views.
  std::size_t number() const noexcept { return number_; }
  const NodeView& nodes() const noexcept { return nodes_; }
  const PointView& points() const noexcept { return points_; }
  /// Indices of the start and end node; of an empty segment, its number.
  std::size_t startIndex() const noexcept {
    return nodes_.empty() || nodes_.back().IsMove() || number_ == 0 ? number_ : number_ - 1;
  }
  std::size_t endIndex() const noexcept {
    return points_.empty() ? number_ : startIndex() + points_.size() - 1;
  }
  /// The end node's byte and the end points; zeros for an empty segment.
  NODETYPE node() const noexcept { return nodes_.empty() ? NODETYPE(0) : nodes_.back(); }
  T endpoint() const noexcept { return points_.empty() ? T{} : points_.back(); }
  T startpoint() const noexcept { return points_.empty() ? T{} : points_.front(); }
  /// The two control points of a curve; empty for a line.
  PointView arc_points() const noexcept { return points_.inner(); }
  NodeView arc_nodes() const noexcept { return nodes_.inner(); }

  /// The numbers of the neighbours. After a curve node, which is no segment's number, 1; before a control
  /// point and before the first segment 0; of an empty segment its own number.
  std::size_t next_number() const noexcept {
    return nodes_.empty() ? number_ : NextCurveSegment::After(types()[number_], number_);
  }
  std::size_t prev_number() const noexcept;
  /// The neighbours in the path; empty before the first segment and, when the count is known, beyond the
  /// last. Without a count the node after the last one must exist.
  CurveSegmentT next() const noexcept;
  CurveSegmentT prev() const noexcept;

  /// The box of all points, control points included.
  BoxT<T> GetPointsBBox() const noexcept;
  /// The point of the segment nearest to the query. A move is its point at parameter 0. False, and the result
  /// untouched, for an empty segment and for coordinates that are not finite.
  bool FindClosestPoint(const T& query, ClosestPoint<T, SegmentPosition>& result) const noexcept;
  /// Whether the query lies within the tolerance of the segment. The distance is that of the exact nearest
  /// point: an integer point beside a line is not on it although the rounded nearest point may be the query
  /// itself.
  bool IsPointOnCurve(const T& query, double tolerance) const noexcept;
  /// Whether two segments cross; with countTouches, whether they have any point in common.
  bool DoesIntersectWith(const CurveSegmentT& other, bool countTouches) const noexcept;
  /// Appends the segment to a path; with join its start node is left out when it equals the path's last
  /// point. False when the path has no writable storage.
  bool AppendTo(PolycurveT<T>& polycurve, bool join) const noexcept;

 private:
  /// The first elements of the whole arrays.
  const NODETYPE* types() const noexcept { return nodes_.data() - startIndex(); }
  const T* path_points() const noexcept { return points_.data() - startIndex(); }

  std::size_t number_ = 0;
  NodeView nodes_;
  PointView points_;
  std::optional<std::size_t> count_;
};

/// Called with a number, gives the segment with that number, or nothing.
template <class T>
class LUMO_TYPE CurveSegmentGetter {
 public:
  CurveSegmentGetter() = default;
  /// Over arrays; without a count the caller vouches for the nodes.
  CurveSegmentGetter(const NODETYPE* types, const T* points, std::optional<std::size_t> count) noexcept
      : types_(types), points_(points), count_(count) {}
  /// The polycurve's own count, or the limit where that is smaller.
  explicit CurveSegmentGetter(const PolycurveT<T>& polycurve,
                              std::optional<std::size_t> limit = std::nullopt) noexcept
      : types_(polycurve.GetNodeTypes()), points_(polycurve.GetPoints()), count_(polycurve.GetPointCount()) {
    if (limit && *limit < *count_) count_ = limit;
  }

  /// The segment with a number, or nothing.
  std::optional<CurveSegmentT<T>> operator()(std::size_t number) const noexcept {
    const CurveSegmentT<T> segment(types_, points_, number, count_);
    return segment ? std::optional(segment) : std::nullopt;
  }

 private:
  const NODETYPE* types_ = nullptr;
  const T* points_ = nullptr;
  std::optional<std::size_t> count_;
};

/// Iterates over segment numbers; dereferenced, an optional segment that is empty where the arrays are
/// malformed.
template <class T>
using CurveSegmentIterator = TavUtils::factory_iterator_t<CurveSegmentGetter<T>, NextCurveSegment>;

/// Makers of segment ranges.
struct LUMO_TYPE details {
  /// A range of numbers; ranges of segments over arrays, and over a path that they keep.
  using Indices = TavUtils::RangeView<TavUtils::IndexT<std::size_t>>;
  template <class T>
  using RawRange = TavUtils::RangeView<CurveSegmentIterator<T>>;
  template <class T>
  using PolycurveRange = TavUtils::RangeView<CurveSegmentIterator<T>, std::optional<PolycurveT<T>>>;

  /// The segments whose numbers run from the first index up to the end; a segment that reaches past the end
  /// is not produced. The arrays hold at least as many nodes as the range's end says.
  template <class T>
  static RawRange<T> GetCurveSegments_Raw(const NODETYPE* types, const T* points, const Indices& range) {
    const std::size_t end = types && points ? *range.end() : 0;
    return {At(types, points, *range.begin(), end), At(types, points, end, end)};
  }
  /// The same over a polycurve; the end is limited to its count. The range holds a copy of the polycurve,
  /// which shares its data, so that the views stay valid while the range lives.
  template <class T>
  static PolycurveRange<T> GetCurveSegments_Range(const PolycurveT<T>& polycurve, const Indices& range) {
    std::optional<PolycurveT<T>> owner(polycurve);
    const NODETYPE* const types = owner->GetNodeTypes();
    const T* const points = owner->GetPoints();
    const std::size_t count = owner->GetPointCount();
    const std::size_t end = *range.end() < count ? *range.end() : count;
    return {At(types, points, *range.begin(), end), At(types, points, end, end), std::move(owner)};
  }
  /// All segments of a polycurve.
  template <class T>
  static PolycurveRange<T> GetCurveSegments_Base(const PolycurveT<T>& polycurve) {
    return GetCurveSegments_Range(polycurve, TavUtils::IndexRange(0, polycurve.GetPointCount()));
  }

 private:
  template <class T>
  static CurveSegmentIterator<T> At(const NODETYPE* types, const T* points, std::size_t number,
                                    std::size_t end) {
    return {number, end, CurveSegmentGetter<T>(types, points, end), NextCurveSegment(types)};
  }
};

/// Whether the whole path can be walked as segments: every number yields one, and the last one ends exactly
/// at the count. True for an empty path.
LUMO_API bool ValidSegments(const NODETYPE* types, std::size_t count) noexcept;
/// The same of a path.
template <class T>
LUMO_TEMPLATE_API bool ValidSegments(const PolycurveT<T>& polycurve) noexcept;

// Node and segment index conversion. Here a segment index counts line and curve segments only, from 0; -1
// stands for none. One scan over the bytes each.

/// The number of line and curve segments.
LUMO_API int GetSegmentCount(const NODETYPE* types, int count) noexcept;
/// The segment that starts at a node: the one that ends at node + 1 when that is a line, else at node + 3.
LUMO_API int FirstNodeToSegmentIndex(const NODETYPE* types, int count, int node) noexcept;
/// The segment that ends at a node; at a move node or a control point, the last one that ends before it.
LUMO_API int LastNodeToSegmentIndex(const NODETYPE* types, int count, int node) noexcept;
/// The end node and the start node of a segment.
LUMO_API int SegmentToLastNodeIndex(const NODETYPE* types, int count, int segment) noexcept;
LUMO_API int SegmentToFirstNodeIndex(const NODETYPE* types, int count, int segment) noexcept;

// Members are instantiated one by one: those that need a polycurve or an intersection test live beside these.
#define LUMO_CURVE_SEGMENT(LUMO_VERB, T)                                                  \
  LUMO_VERB Lumo::CurveSegmentT<T>::CurveSegmentT(const NODETYPE*, const T*, std::size_t, \
                                                  std::optional<std::size_t>) noexcept;   \
  LUMO_VERB std::size_t Lumo::CurveSegmentT<T>::prev_number() const noexcept;             \
  LUMO_VERB Lumo::CurveSegmentT<T> Lumo::CurveSegmentT<T>::next() const noexcept;         \
  LUMO_VERB Lumo::CurveSegmentT<T> Lumo::CurveSegmentT<T>::prev() const noexcept;         \
  LUMO_VERB Lumo::BoxT<T> Lumo::CurveSegmentT<T>::GetPointsBBox() const noexcept;         \
  LUMO_VERB bool Lumo::CurveSegmentT<T>::FindClosestPoint(                                \
      const T&, Lumo::ClosestPoint<T, Lumo::SegmentPosition>&) const noexcept;            \
  LUMO_VERB bool Lumo::CurveSegmentT<T>::IsPointOnCurve(const T&, double) const noexcept;
#define LUMO_CURVE_SEGMENT_POLYCURVE(LUMO_VERB, T)                                                   \
  LUMO_VERB Lumo::CurveSegmentT<T>::CurveSegmentT(const Lumo::PolycurveT<T>&, std::size_t) noexcept; \
  LUMO_VERB std::optional<Lumo::CurveSegmentT<T>> Lumo::CurveSegmentT<T>::FromNumber(                \
      const Lumo::PolycurveT<T>&, std::size_t) noexcept;                                             \
  LUMO_VERB std::optional<Lumo::CurveSegmentT<T>> Lumo::CurveSegmentT<T>::FromEndIdx(                \
      const Lumo::PolycurveT<T>&, std::size_t) noexcept;                                             \
  LUMO_VERB std::optional<Lumo::CurveSegmentT<T>> Lumo::CurveSegmentT<T>::FromStartIdx(              \
      const Lumo::PolycurveT<T>&, std::size_t) noexcept;                                             \
  LUMO_VERB bool Lumo::CurveSegmentT<T>::AppendTo(Lumo::PolycurveT<T>&, bool) const noexcept;        \
  LUMO_VERB bool Lumo::ValidSegments<T>(const Lumo::PolycurveT<T>&) noexcept;
#define LUMO_CURVE_SEGMENT_INTERSECT(LUMO_VERB, T)                                              \
  LUMO_VERB bool Lumo::CurveSegmentT<T>::DoesIntersectWith(const Lumo::CurveSegmentT<T>&, bool) \
      const noexcept;

}  // namespace Lumo

LUMO_CURVE_SEGMENT(LUMO_EXTERN, tagPOINT)
LUMO_CURVE_SEGMENT(LUMO_EXTERN, TavMath::DPoint)
LUMO_CURVE_SEGMENT_POLYCURVE(LUMO_EXTERN, tagPOINT)
LUMO_CURVE_SEGMENT_POLYCURVE(LUMO_EXTERN, TavMath::DPoint)
LUMO_CURVE_SEGMENT_INTERSECT(LUMO_EXTERN, tagPOINT)
LUMO_CURVE_SEGMENT_INTERSECT(LUMO_EXTERN, TavMath::DPoint)
