#include "offset/append.h"

#include <algorithm>

#include "offset/tolerances.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo::Offset {

void MakeRoom(const Output& out, std::size_t more) {
  const std::size_t needed = out.points.size() + more;
  if (needed > out.points.capacity()) out.points.reserve(std::max(needed, 2 * out.points.capacity()));
  if (needed > out.nodes.capacity()) out.nodes.reserve(std::max(needed, 2 * out.nodes.capacity()));
}

bool Continues(const Output& out, const DPoint& start, double toleranceSqrd) {
  return out.points.size() >= 2 && DistanceSqrd(start, out.points.back()) < toleranceSqrd;
}

void MoveLastPoint(const Output& out, const DPoint& to) {
  if (out.points.empty()) return;
  const std::size_t last = out.points.size() - 1;
  if (out.nodes[last].IsCurve() && last > 0) out.points[last - 1] += to - out.points[last];
  out.points[last] = to;
}

void AppendOffsetLine(const Output& out, const DPoint& start, const DPoint& end, double toleranceSqrd,
                      bool forceNewStart, bool mergeCollinear) {
  if (forceNewStart || !Continues(out, start, toleranceSqrd)) {
    out.points.push_back(start);
    out.nodes.push_back(NODETYPE::kUser);
  } else {
    const std::size_t last = out.points.size() - 1;
    NODETYPE& lastNode = out.nodes[last];
    // A subpath's first point has no point of its own before it.
    const bool straight = mergeCollinear && !lastNode.IsMove() &&
                          TavMath::AreCollinear(out.points[last - 1], start, end, kAppendCollinearSqrd);
    if (straight && lastNode.IsLine()) {
      out.points[last] = end;
      return;
    }
    if (straight)
      lastNode.SetContinuity(ContinuityType::smooth);
    else
      MoveLastPoint(out, TavMath::Midpoint(out.points[last], start));
  }
  out.points.push_back(end);
  out.nodes.push_back(NODETYPE::kLine | NODETYPE::kUser);
}

void AppendOffsetCubic(const Output& out, const DPoint cubic[4], double toleranceSqrd, bool forceNewStart) {
  DVector moved{0, 0};
  if (forceNewStart || !Continues(out, cubic[0], toleranceSqrd)) {
    out.points.push_back(cubic[0]);
    out.nodes.push_back(NODETYPE::kUser);
  } else {
    const DPoint joint = TavMath::Midpoint(out.points.back(), cubic[0]);
    moved = joint - cubic[0];
    MoveLastPoint(out, joint);
  }
  // The cubic keeps its start tangent when its start has moved to the joint.
  PushCubic(out, cubic[1] + moved, cubic[2], cubic[3]);
}

}  // namespace Lumo::Offset
