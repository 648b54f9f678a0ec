#include "offset/tidy.h"

#include <algorithm>

#include "lumo/repair.h"
#include "offset/tolerances.h"

namespace Lumo::Offset {

using namespace TavMath;

namespace {

bool RunsOn(const DPoint& from, const DPoint& through, const DPoint& to) {
  const DVector chord = to - from, way = through - from;
  const double across = Cross(chord, way), along = Dot(chord, way), length = LengthSqrd(chord);
  return along > 0 && along < length && across * across <= kStraightNode * kStraightNode * length;
}

/// Whether node k of a subpath lies between two lines that run on straight. Not for its two ends.
bool IsStraight(const Source& outline, int k) {
  return outline.nodes[k].IsLine() && outline.nodes[k + 1].IsLine() &&
         RunsOn(outline.points[k - 1], outline.points[k], outline.points[k + 1]);
}

bool StartsStraight(const Source& outline) {
  const int last = outline.count - 1;
  return outline.closed && outline.count > kFewestNodes && outline.nodes[1].IsLine() &&
         outline.nodes[last].IsLine() &&
         RunsOn(outline.points[last - 1], outline.points[0], outline.points[1]);
}

bool HasStraightNode(const Source& outline) {
  for (int k = 1; k + 1 < outline.count; ++k)
    if (IsStraight(outline, k)) return true;
  return StartsStraight(outline);
}

/// Appends the outline without such nodes. All nodes that one line replaces lie on it, or a bend of many
/// small turns would become straight.
void AppendWithout(const Source& outline, OwnedPath& to) {
  const std::size_t first = to.points.size();
  to.Append(outline.points, outline.nodes, 1);
  int dropped = 0;
  for (int k = 1; k < outline.count; ++k) {
    const auto liesOnLine = [&](int through) {
      return RunsOn(to.points.back(), outline.points[through], outline.points[k + 1]);
    };
    bool drop = k + 1 < outline.count && dropped < kMostDropped && IsStraight(outline, k);
    for (int through = k - dropped; drop && through <= k; ++through) drop = liesOnLine(through);
    if (drop) {
      ++dropped;
      continue;
    }
    to.Append(outline.points + k, outline.nodes + k, 1);
    dropped = 0;
  }
  const Source kept = SourceOf(to, {static_cast<int>(first), to.Count()});
  if (!StartsStraight(kept)) return;
  // The outline starts at its last node instead, and ends there.
  to.points[first] = to.points[to.points.size() - 2];
  to.points.pop_back();
  to.nodes.pop_back();
  NODETYPE& end = to.nodes.back();
  end.Set(NODETYPE::kClosed, true);
  end.Set(NODETYPE::kUser, false);
  to.nodes[first].SetContinuity(end.Continuity());
}

}  // namespace

void DropStraightNodes(OwnedPath& closed) {
  const std::vector<Range> ranges = Subpaths(closed.nodes.data(), closed.Count());
  const auto hasStraightNode = [&](const Range& range) { return HasStraightNode(SourceOf(closed, range)); };
  if (std::none_of(ranges.begin(), ranges.end(), hasStraightNode)) return;
  OwnedPath kept;
  for (const Range& range : ranges) AppendWithout(SourceOf(closed, range), kept);
  closed = std::move(kept);
}

void DropShortSegments(OwnedPath& path) {
  const auto isShort = [&](std::size_t k) {
    if (path.nodes[k].IsMove() || path.nodes[k].IsControl()) return false;
    const std::size_t from = path.nodes[k].IsCurve() ? k - 3 : k - 1;
    return Distance(path.points[from], path.points[k]) < kShortestSegment;
  };
  bool found = false;
  for (std::size_t k = 1; k < path.points.size() && !found; ++k) found = isShort(k);
  if (!found) return;
  const int count = RemoveShortSegments(path.points.data(), path.nodes.data(), path.Count(), kShortestSegment,
                                        kShortestSegment);
  path.points.resize(static_cast<std::size_t>(count));
  path.nodes.resize(static_cast<std::size_t>(count));
}

}  // namespace Lumo::Offset
