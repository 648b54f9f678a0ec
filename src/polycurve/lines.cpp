// Lengthening open subpaths, merging lines, and the path as lines only.

#include <algorithm>
#include <cmath>

#include "lumo/path_array.h"
#include "lumo/polycurve.h"
#include "math/point_traits.h"
#include "polycurve/edit_in_place.h"
#include "polycurve/path_segment.h"
#include "polycurve/subpath_walk.h"
#include "polycurve/tolerances.h"

namespace Lumo {
namespace {

/// The points of lines that one line from an anchor can replace: those directions from the anchor that pass
/// every point within the tolerance. (H. Imai and M. Iri, "Computational-geometric methods for polygonal
/// approximations of a curve", Computer Vision, Graphics, and Image Processing 36, 1986: the cone
/// intersection.)
class Cone {
 public:
  Cone(const DPoint& anchor, double tolerance) : anchor_(anchor), tolerance_(tolerance) {}

  /// Whether a line from the anchor to p passes every point that was added, in order.
  bool Reaches(const DPoint& p) const {
    const DVector d = p - anchor_;
    if (!(TavMath::LengthSqrd(d) >= farthestSqrd_)) return false;  // it would turn back
    return !narrowed_ ||
           (TavMath::Cross(right_, d) >= 0 && TavMath::Cross(d, left_) >= 0 && TavMath::Dot(right_, d) > 0);
  }
  /// Every later line must pass p within the tolerance.
  void Add(const DPoint& p) {
    const DVector d = p - anchor_;
    const double length = TavMath::Length(d);
    farthestSqrd_ = std::max(farthestSqrd_, TavMath::LengthSqrd(d));
    if (!(length > tolerance_)) return;
    // The two tangents from the anchor to the circle about p.
    const double s = tolerance_ / length, c = std::sqrt(std::max(0.0, 1 - s * s));
    const DVector left{c * d.x - s * d.y, s * d.x + c * d.y}, right{c * d.x + s * d.y, c * d.y - s * d.x};
    if (!narrowed_ || TavMath::Cross(left, left_) > 0) left_ = left;
    if (!narrowed_ || TavMath::Cross(right_, right) > 0) right_ = right;
    narrowed_ = true;
  }

 private:
  DPoint anchor_;
  double tolerance_;
  double farthestSqrd_ = 0;
  bool narrowed_ = false;
  DVector left_{}, right_{};
};

/// Keeps only the nodes that the lines need; returns the new count.
template <class T>
int MergeLinesInPlace(T* points, NODETYPE* types, int count, double tolerance) {
  int to = 0;
  const auto keep = [&](int i) {
    points[to] = points[i];
    types[to++] = types[i];
  };
  for (int i = 0; i < count;) {
    keep(i);
    if (!(i + 1 < count && types[i].IsOnCurve() && types[i + 1].IsLine())) {
      ++i;
      continue;
    }
    // The farthest end of a run of lines that one line from node i can reach. The nodes between are never
    // ends of the subpath: they have a line on both sides.
    Cone cone(ToDouble(points[i]), tolerance);
    int end = i + 1;
    cone.Add(ToDouble(points[end]));
    for (int next = end + 1; next < count && types[next].IsLine() && !types[next - 1].IsClosed(); ++next) {
      if (!cone.Reaches(ToDouble(points[next]))) break;
      end = next;
      cone.Add(ToDouble(points[end]));
    }
    i = end;
  }
  return to;
}

/// The pieces that keep a cubic within the tolerance: half of the second difference bound of uniform
/// subdivision, so that the adaptive flattening never runs out of room.
int RoomFor(const DPoint bezier[4], double tolerance) {
  const double bend = std::max(TavMath::Length((bezier[0] - bezier[1]) + (bezier[2] - bezier[1])),
                               TavMath::Length((bezier[1] - bezier[2]) + (bezier[3] - bezier[2])));
  const double pieces = std::ceil(std::sqrt(0.75 * bend / tolerance));
  return 2 + 2 * (pieces < kMaxFlattenPieces ? std::max(static_cast<int>(pieces), 1) : kMaxFlattenPieces);
}

template <class T>
class LineWriter {
 public:
  LineWriter(std::vector<T>& points, std::vector<NODETYPE>& types, double tolerance)
      : points_(points), types_(types), tolerance_(tolerance) {}

  void AddNode(const T& point, NODETYPE type) {
    points_.push_back(point);
    types_.push_back(type);
  }
  /// A curve node: lines to it, the last of which ends with the node's own flags.
  void AddCurve(const DPoint bezier[4], const T& end, NODETYPE endType) {
    double size = 0;
    for (int k = 1; k < 4; ++k) size += TavMath::Distance(bezier[0], bezier[k]);
    const double tolerance = std::max(tolerance_, size * kFinestFlattening);
    // A curve without a size, and one of numbers that are none or too large to halve, is its chord.
    const bool divisible = tolerance > 0 && size < kMostFlattened;
    buffer_.resize(static_cast<std::size_t>(divisible ? RoomFor(bezier, tolerance) : 2));
    const int pieces = TavMath::AdaptiveBezierToLines(bezier, buffer_.data(), tolerance * tolerance,
                                                      static_cast<int>(buffer_.size()));
    for (int k = 1; k < pieces; ++k) {
      const T point = FromDouble<T>(buffer_[static_cast<std::size_t>(k)]);
      if (points_.empty() || point != points_.back()) AddNode(point, NODETYPE::kLine | NODETYPE::kUser);
    }
    endType.SetKind(NODETYPE::kLine);
    endType.SetContinuity(ContinuityType::cusp);
    AddNode(end, endType);
  }

 private:
  std::vector<T>& points_;
  std::vector<NODETYPE>& types_;
  double tolerance_;
  std::vector<DPoint> buffer_;
};

}  // namespace

template <class T>
bool PolycurveT<T>::MergeLines(double tolerance) noexcept {
  if (!(tolerance >= 0)) return false;
  return EditInPlace(*this, 0, [&](T* points, NODETYPE* types, int count) {
    return MergeLinesInPlace(points, types, count, tolerance);
  });
}

template <class T>
PolycurveT<T> PolycurveT<T>::GetPolyline(double tolerance) const noexcept {
  PolycurveT lines;
  try {
    std::vector<T> points;
    std::vector<NODETYPE> types;
    points.reserve(GetPointCount());
    types.reserve(GetPointCount());
    LineWriter<T> writer(points, types, tolerance > 0 ? tolerance : 0);
    for (std::size_t i = 0; i < GetPointCount(); ++i) {
      const NODETYPE type = GetNodeTypes()[i];
      if (!type.IsControl() && !type.IsCurve()) {
        NODETYPE plain = type;
        plain.SetContinuity(ContinuityType::cusp);
        writer.AddNode(GetPoints()[i], plain);
      } else if (type.IsCurve() && i >= 3) {
        DPoint bezier[4];
        LoadCubic(GetPoints() + i - 3, bezier);
        writer.AddCurve(bezier, GetPoints()[i], type);
      }
    }
    lines.MoveData(std::move(points), std::move(types));
  } catch (...) {
    lines.Clear();
  }
  return lines;
}

// ---- Lengthening ----

namespace {

/// The end of an open subpath moved on, or a new line beyond it, straight along the tangent there.
template <class T>
void ExtendEnd(std::vector<T>& points, std::vector<NODETYPE>& types, std::size_t first, double length) {
  const int last = static_cast<int>(points.size()) - 1;
  const int own = types.back().IsLine() ? 1 : 3;
  if (last - static_cast<int>(first) < own) return;
  const PathSegment segment = LoadSegment(points.data(), last - own, last);
  const T end = FromDouble<T>(segment.End() + length * segment.TangentAt(1));
  if (segment.IsLine()) {
    points.back() = end;
  } else {
    NODETYPE type = NODETYPE::kLine | NODETYPE::kUser;
    type |= types.back() & NODETYPE::kEnabled;
    types.back().SetContinuity(ContinuityType::smooth);
    points.push_back(end);
    types.push_back(type);
  }
}

}  // namespace

template <class T>
bool PolycurveT<T>::ExtendEnds(double forward, double backward) noexcept {
  if (!(forward >= 0 && backward >= 0 && std::isfinite(forward + backward))) return false;
  try {
    std::vector<T> points;
    std::vector<NODETYPE> types;
    points.reserve(GetPointCount() + 2 * GetSubpathCount());
    types.reserve(GetPointCount() + 2 * GetSubpathCount());
    WalkSubpaths(GetNodeTypes(), GetPointCount(), [&](std::size_t from, std::size_t end) {
      const std::size_t first = points.size();
      points.insert(points.end(), GetPoints() + from, GetPoints() + end);
      types.insert(types.end(), GetNodeTypes() + from, GetNodeTypes() + end);
      if (types[first].IsClosed() || end - from < 2) return true;
      const bool letter = types[first].IsLetter();
      const auto reverse = [&] {
        Lumo::Reverse(points.data() + first, types.data() + first, 0,
                      static_cast<int>(points.size() - first) - 1);
      };
      if (forward > 0) ExtendEnd(points, types, first, forward);
      if (backward > 0) {
        // The start is an end of the reversed subpath.
        reverse();
        ExtendEnd(points, types, first, backward);
        reverse();
        for (std::size_t i = first; i < points.size(); ++i)
          types[i].Set(NODETYPE::kLetter, letter && i == first);
      }
      return true;
    });
    return MoveData(std::move(points), std::move(types));
  } catch (...) {
    return false;
  }
}

template <class T>
bool PolycurveT<T>::ExtendForward(double length) noexcept {
  return ExtendEnds(length, 0);
}

template <class T>
bool PolycurveT<T>::ExtendBackward(double length) noexcept {
  return ExtendEnds(0, length);
}

template <class T>
bool PolycurveT<T>::Extend(double length) noexcept {
  return ExtendEnds(length, length);
}

#define LUMO_LINE_MEMBERS(T)                                                        \
  LUMO_INSTANTIATE bool PolycurveT<T>::MergeLines(double) noexcept;                 \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::GetPolyline(double) const noexcept; \
  LUMO_INSTANTIATE bool PolycurveT<T>::ExtendEnds(double, double) noexcept;         \
  LUMO_INSTANTIATE bool PolycurveT<T>::ExtendForward(double) noexcept;              \
  LUMO_INSTANTIATE bool PolycurveT<T>::ExtendBackward(double) noexcept;             \
  LUMO_INSTANTIATE bool PolycurveT<T>::Extend(double) noexcept;
LUMO_LINE_MEMBERS(tagPOINT)
LUMO_LINE_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
