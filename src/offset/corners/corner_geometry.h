#pragma once
// What the joins share: the directions at a corner, arcs about it, and polygons as regions.

#include <initializer_list>

#include "offset/append.h"

namespace Lumo::Offset {

/// The segments that meet at a corner, addressed as offset_corners.h describes.
struct CornerSource {
  const DPoint* points;
  const NODETYPE* nodes;
  int left;
  int right;

  bool IsLeftBezier() const { return nodes[left + 1].IsCurve(); }
  bool IsRightBezier() const { return nodes[right + 1].IsControl(); }
  const DPoint* LeftBezier() const { return points + (left - 2); }
  const DPoint* RightBezier() const { return points + right; }
  /// Directions of arrival and departure, not normalised.
  DVector Arrival() const;
  DVector Departure() const;
};

/// Appends the arc about the centre from A to B that passes the side which h points to, as one cubic or,
/// wider than a right angle, as two. Where there is no arc to make, the output's last point moves to the
/// midpoint of A and B.
void AppendCornerArc(const Output& out, const DPoint& center, const DVector& h, const DPoint& A,
                     const DPoint& B, double radius, double toleranceSqrd);

/// Whether q lies strictly to the right of every edge of the closed polygon.
bool IsRightOfAll(const DPoint& q, std::initializer_list<DPoint> polygon);

}  // namespace Lumo::Offset
