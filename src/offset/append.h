#pragma once
// Appending lines and cubics to an output path under construction: a piece that starts where the output ends
// continues it, any other begins a new subpath.

#include <vector>

#include "lumo/node_type.h"
#include "lumo/point_types.h"

namespace Lumo::Offset {

using TavMath::DPoint;
using TavMath::DVector;

/// The output path: two parallel vectors owned by the caller.
struct Output {
  std::vector<DPoint>& points;
  std::vector<NODETYPE>& nodes;
};

/// Makes room for so many more nodes, at least doubling what there is.
void MakeRoom(const Output& out, std::size_t more);

/// Appends the last three nodes of a cubic.
inline void PushCubic(const Output& out, const DPoint& control1, const DPoint& control2, const DPoint& end) {
  for (const DPoint& p : {control1, control2, end}) out.points.push_back(p);
  for (int k = 0; k < 2; ++k) out.nodes.push_back(NODETYPE::kControl);
  out.nodes.push_back(NODETYPE::kCurve | NODETYPE::kUser);
}

/// Whether a piece that starts at `start` continues the output: at least two points, the last within the
/// tolerance.
bool Continues(const Output& out, const DPoint& start, double toleranceSqrd);

/// Moves the output's last point; the handle in front of a curve end moves along, so that the curve keeps its
/// end tangent.
void MoveLastPoint(const Output& out, const DPoint& to);

/// Appends the line start -> end. With mergeCollinear, a last line that runs on nearly straight is lengthened
/// instead, and a curve that runs on straight into the line gets a smooth node. Otherwise the joint moves
/// half-way towards start.
void AppendOffsetLine(const Output& out, const DPoint& start, const DPoint& end, double toleranceSqrd,
                      bool forceNewStart, bool mergeCollinear);
/// The same rule for a cubic; it is never merged.
void AppendOffsetCubic(const Output& out, const DPoint cubic[4], double toleranceSqrd, bool forceNewStart);

}  // namespace Lumo::Offset
