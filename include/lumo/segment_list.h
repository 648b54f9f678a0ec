#pragma once
// A path as a list of segment values in double precision: the form that repair edits and that the list
// intersector walks. Flat and copyable; a list turns back into the same points and node-type bytes that it
// was made from.

#include <array>
#include <cstddef>
#include <vector>

#include "lumo/node_type.h"
#include "lumo/point_types.h"

namespace Lumo {

/// How far a line reaches beyond its two points, for intersections.
enum class LineExtent : int {
  segment = 0,    ///< parameter within [0, 1]
  openStart = 1,  ///< before its start too: only t <= 1 is required
  openEnd = 2,    ///< beyond its end too: only t >= 0 is required
  infinite = 3,   ///< the whole line
};

/// A line or a cubic. The two derived classes add no data, so that a list can hold them by value.
class LUMO_API CSegment {
 public:
  // An enumeration, since a constant object of an exported class would have to be imported on Windows.
  enum : int { kLine = 1, kCurve = 2 };

  /// kLine or kCurve.
  int Kind() const noexcept { return kind_; }
  bool IsLine() const noexcept { return kind_ == kLine; }
  /// 2 points of a line, 4 control points of a cubic.
  const TavMath::DPoint* Points() const noexcept { return points_.data(); }
  /// How many.
  int PointCount() const noexcept { return kind_ == kLine ? 2 : 4; }
  /// The two ends.
  const TavMath::DPoint& StartPoint() const noexcept { return points_[0]; }
  const TavMath::DPoint& EndPoint() const noexcept { return points_[kind_ == kLine ? 1 : 3]; }
  void SetStartPoint(const TavMath::DPoint& p) noexcept { points_[0] = p; }
  void SetEndPoint(const TavMath::DPoint& p) noexcept { points_[kind_ == kLine ? 1 : 3] = p; }
  /// Control point 1 or 2 of a cubic; does nothing on a line.
  void SetControl(int index, const TavMath::DPoint& p) noexcept;
  /// LineExtent::segment for a cubic.
  LineExtent Extent() const noexcept { return extent_; }

  /// The byte of the end node, and of a cubic's control points (index 1 or 2).
  NODETYPE EndType() const noexcept { return types_[2]; }
  void SetEndType(NODETYPE type) noexcept { types_[2] = type; }
  NODETYPE ControlType(int index) const noexcept { return types_[index == 1 ? 0 : 1]; }
  void SetControlType(int index, NODETYPE type) noexcept { types_[index == 1 ? 0 : 1] = type; }

  /// The point at a parameter.
  TavMath::DPoint PointAt(double t) const noexcept;
  /// Defined also where the derivative vanishes; not normalised.
  TavMath::DVector TangentAt(double t) const noexcept;
  /// The length in units.
  double Length() const noexcept;
  /// The box of all points, control points included.
  TavMath::BoundsT<double> ControlBox() const noexcept;

 protected:
  CSegment() noexcept = default;

  /// What the accessors give.
  int kind_ = kLine;
  LineExtent extent_ = LineExtent::segment;
  std::array<TavMath::DPoint, 4> points_{};
  std::array<NODETYPE, 3> types_{NODETYPE(0xC0), NODETYPE(0xC0), NODETYPE(0x44)};
};

/// A straight line.
class LUMO_API CLineSegment : public CSegment {
 public:
  /// From its two ends; the type of the end node is 0x44.
  CLineSegment(const TavMath::DPoint& start, const TavMath::DPoint& end,
               LineExtent extent = LineExtent::segment) noexcept;
};

/// A cubic.
class LUMO_API CBezierSegment : public CSegment {
 public:
  /// From its four control points.
  explicit CBezierSegment(const TavMath::DPoint bezier[4]) noexcept;
};

/// The segments of one path in node order, with the places where subpaths begin.
class LUMO_API CSegmentList {
 public:
  /// One subpath: its move node and the index of its first segment. Its segments end where those of the next
  /// begin.
  struct Subpath {
    /// The move node's point and byte; the index of the first segment.
    TavMath::DPoint start;
    NODETYPE startType;
    std::size_t firstSegment;
  };

  CSegmentList() = default;
  /// Reads a path. A node that no segment can end at (a stray control point, a curve without its two control
  /// points, anything before the first move node) is left out, so that any bytes give a list of a well-formed
  /// path.
  CSegmentList(const TavMath::DPoint* points, const NODETYPE* types, int count);
  CSegmentList(const tagPOINT* points, const NODETYPE* types, int count);

  /// The segments. An index must lie below size.
  std::size_t size() const noexcept { return segments_.size(); }
  bool empty() const noexcept { return segments_.empty(); }
  const CSegment& operator[](std::size_t index) const { return segments_[index]; }
  CSegment& operator[](std::size_t index) { return segments_[index]; }
  const std::vector<CSegment>& Segments() const noexcept { return segments_; }

  /// The subpaths. k must lie below their number.
  std::size_t SubpathCount() const noexcept { return subpaths_.size(); }
  const Subpath& GetSubpath(std::size_t k) const { return subpaths_[k]; }
  /// One past the last segment of a subpath.
  std::size_t SubpathEnd(std::size_t k) const noexcept {
    return k + 1 < subpaths_.size() ? subpaths_[k + 1].firstSegment : segments_.size();
  }

  /// Begins a subpath; the segments appended next belong to it.
  void AppendMove(const TavMath::DPoint& start, NODETYPE type);
  /// Appends a segment; the first of a list without a subpath begins one at its start point.
  void Append(const CSegment& segment);
  /// Appends the path's nodes to the two arrays.
  void AppendTo(std::vector<TavMath::DPoint>& points, std::vector<NODETYPE>& types) const;

 private:
  template <class T>
  void Read(const T* points, const NODETYPE* types, int count);

  std::vector<CSegment> segments_;
  std::vector<Subpath> subpaths_;
};

}  // namespace Lumo
