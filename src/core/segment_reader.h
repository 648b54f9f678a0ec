#pragma once
// Which segments the nodes of a path make.

#include "lumo/node_type.h"
#include "lumo/segment_list.h"
#include "math/point_traits.h"

namespace Lumo {

/// Calls move(i) for each move node and add(segment) for each segment of the subpath that it began. A node
/// that no segment can end at (a stray control point, a curve without its two control points, anything before
/// the first move node) is left out.
template <class T, class Move, class Add>
void ReadSegments(const T* points, const NODETYPE* types, int count, Move move, Add add) {
  bool begun = false;
  DPoint last{};  // end of the previous segment, or the move node
  for (int i = 0; i < count; ++i) {
    const NODETYPE type = types[i];
    const DPoint end = ToDouble(points[i]);
    if (type.IsMove()) {
      begun = true;
      move(i);
    } else if (!begun || type.IsControl()) {
      continue;
    } else if (type.IsLine()) {
      CLineSegment line(last, end);
      line.SetEndType(type);
      add(line);
    } else if (i >= 3 && types[i - 1].IsControl() && types[i - 2].IsControl()) {
      const DPoint bezier[4] = {last, ToDouble(points[i - 2]), ToDouble(points[i - 1]), end};
      CBezierSegment curve(bezier);
      curve.SetControlType(1, types[i - 2]);
      curve.SetControlType(2, types[i - 1]);
      curve.SetEndType(type);
      add(curve);
    } else {
      continue;
    }
    last = end;
  }
}

}  // namespace Lumo
