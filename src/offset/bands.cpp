#include "offset/bands.h"

#include <algorithm>

#include "boolean/winding_filter.h"
#include "lumo/measure.h"
#include "offset/raw_path.h"
#include "offset/tolerances.h"

namespace Lumo::Offset {

namespace {

/// Node indices at which segments start, and the last node.
std::vector<int> SegmentStarts(const Source& outline) {
  std::vector<int> starts;
  for (int k = 0; k < outline.count; ++k)
    if (outline.nodes[k].IsOnCurve()) starts.push_back(k);
  return starts;
}

bool Clean(const OwnedPath& raw, OwnedPath& result) {
  return Planar::KeepByWinding({raw.points.data(), raw.nodes.data(), raw.Count()},
                               Planar::WindingRule::positive, result.points, result.nodes);
}

/// The band of one stretch: its offset, then back along the stretch itself. The last segment of the stretch
/// belongs to the next band; the join before it is this band's.
bool MakeBand(const OwnedPath& stretch, int lastNode, double distance, const OffsetSettings& settings,
              OwnedPath& band) {
  const Source source{stretch.points.data(), stretch.nodes.data(), stretch.Count(), false};
  OwnedPath raw, back;
  AppendRawStretch(source, distance, settings, raw.Out());
  if (raw.IsEmpty()) return true;
  back.Append(source.points, source.nodes, lastNode + 1);
  back.Reverse();
  back.nodes[0] = NODETYPE::kLine | NODETYPE::kUser;
  raw.Append(back);
  raw.points.push_back(raw.points.front());
  raw.nodes.push_back(NODETYPE::kLine | NODETYPE::kClosed);
  raw.nodes.front() |= NODETYPE::kClosed;
  return Clean(raw, band);
}

/// Neighbours are united until one body is left.
bool UnitePairwise(std::vector<OwnedPath>& bodies) {
  while (bodies.size() > 1) {
    std::size_t kept = 0;
    for (std::size_t k = 0; k < bodies.size(); k += 2) {
      OwnedPath& target = bodies[kept++];
      if (k + 1 == bodies.size()) {
        target = std::move(bodies[k]);
        break;
      }
      OwnedPath both = std::move(bodies[k]), united;
      both.Append(bodies[k + 1]);
      bodies[k + 1] = OwnedPath();
      if (!Clean(both, united)) return false;
      target = std::move(united);
    }
    bodies.resize(kept);
  }
  return true;
}

}  // namespace

bool IsDense(const Source& outline, double distance) {
  if (outline.count <= kDenseSegments) return false;
  const auto segments = static_cast<double>(SegmentStarts(outline).size() - 1);
  return segments >= kDenseSegments &&
         distance * segments > kDenseReach * GetLength(outline.points, outline.nodes, outline.count);
}

bool UniteBands(const Source& outline, double distance, const OffsetSettings& settings, OwnedPath& body) {
  const std::vector<int> starts = SegmentStarts(outline);
  const std::size_t segments = starts.size() - 1;
  std::vector<OwnedPath> bodies;
  for (std::size_t first = 0; first < segments; first += kBandSegments) {
    const std::size_t end = (std::min)(first + kBandSegments, segments);
    OwnedPath stretch;
    const int from = starts[first], to = starts[end];
    stretch.Append(outline.points + from, outline.nodes + from, to - from + 1);
    // One segment more, for the join at the stretch's end.
    const int next = end == segments ? 0 : to, nextEnd = end == segments ? starts[1] : starts[end + 1];
    stretch.Append(outline.points + next + 1, outline.nodes + next + 1, nextEnd - next);
    // Open: it begins with a move node and carries no closed flag, also where it passes the outline's start.
    if (end == segments)
      stretch.nodes[static_cast<std::size_t>(to - from)].SetContinuity(outline.nodes[0].Continuity());
    for (NODETYPE& node : stretch.nodes) node.Set(NODETYPE::kClosed, false);
    stretch.nodes[0].SetKind(NODETYPE::kMove);
    OwnedPath& band = bodies.emplace_back();
    if (!MakeBand(stretch, to - from, distance, settings, band)) return false;
  }
  if (!UnitePairwise(bodies)) return false;
  if (!bodies.empty()) body = std::move(bodies.front());
  return true;
}

}  // namespace Lumo::Offset
