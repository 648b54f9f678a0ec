#pragma once
// Collects the nodes of one drawn element: moves, lines, cubics, and what SVG has besides them, as cubics.

#include <vector>

#include "lumo/node_type.h"
#include "lumo/point_types.h"

namespace tool {

using TavMath::DPoint;

/// Whether two ends are so near, for their distance from the origin, that closing a subpath takes them as one
/// point. `times` widens the limit.
bool SameEnd(DPoint a, DPoint b, double times = 1);

class PathBuilder {
 public:
  bool IsEmpty() const { return points_.empty(); }
  const std::vector<DPoint>& Points() const { return points_; }
  const std::vector<NODETYPE>& Types() const { return types_; }
  /// Where the next segment begins. Before the first MoveTo the origin.
  DPoint Current() const { return current_; }

  /// A start with no segment after it draws nothing and leaves no node.
  void MoveTo(DPoint p);
  void LineTo(DPoint p);
  void CubicTo(DPoint c1, DPoint c2, DPoint p);
  void QuadraticTo(DPoint c, DPoint p);
  /// An elliptical arc as in SVG: radii, rotation of the ellipse in degrees, which of the four arcs, end
  /// point. Radii that are too small are scaled up; a zero radius gives a line; equal ends give nothing.
  ///
  /// Each cubic spans at most 45 degrees (30 when the radii differ), and its handles have the length for
  /// which the sector under it has exactly the area of the sector of the ellipse. The usual handle, which
  /// meets the ellipse in the middle, lies outside it everywhere, and is off by 2e-6 in length and area; this
  /// one crosses it, so that errors cancel: areas are exact, lengths are within 2e-8, and no point is farther
  /// than 5e-6 radii away.
  void ArcTo(double rx, double ry, double degrees, bool largeArc, bool sweep, DPoint p);
  /// A whole ellipse from its point at angle 0, in the direction of growing angles.
  void Ellipse(DPoint center, double rx, double ry);
  /// Closes the subpath, with a line when its ends differ. What is drawn next begins where it began.
  void Close();

 private:
  void Begin();
  void Append(DPoint p, unsigned char type);
  void Arc(DPoint center, double rx, double ry, double rotation, double from, double turn, DPoint last);

  std::vector<DPoint> points_;
  std::vector<NODETYPE> types_;
  DPoint current_{0, 0};
  DPoint start_{0, 0};
  std::size_t first_ = 0;
  bool open_ = false;
  /// A MoveTo that has no segment yet.
  bool moved_ = false;
};

}  // namespace tool
