#include <cmath>
#include <new>

#include "boolean/winding_filter.h"
#include "lumo/measure.h"
#include "lumo/offset.h"
#include "offset/closed.h"
#include "offset/open_path.h"
#include "offset/raw_path.h"
#include "offset/tolerances.h"

namespace Lumo::Offset {

namespace {

void MarkAsCap(NODETYPE& node) {
  node.Set(NODETYPE::kEnabled, true);
  node.SetContinuity(ContinuityType::cusp);
}

/// There and back: one closed outline without area whose two turning nodes are marked for the caps.
OwnedPath ThereAndBack(const OwnedPath& subpath) {
  OwnedPath back = subpath, loop = subpath;
  back.Reverse();
  loop.Append(back.points.data() + 1, back.nodes.data() + 1, back.Count() - 1);
  MarkAsCap(loop.nodes[0]);
  MarkAsCap(loop.nodes[subpath.points.size() - 1]);
  loop.nodes.front().Set(NODETYPE::kClosed, true);
  loop.nodes.back().Set(NODETYPE::kClosed, true);
  loop.nodes.back().Set(NODETYPE::kUser, false);
  return loop;
}

/// The offset curve, a line across, the source run backwards, a line across.
OwnedPath BandOutline(const OwnedPath& subpath, double distance, const OffsetSettings& settings) {
  OwnedPath band, back = subpath;
  AppendRawOffset(SourceOf(subpath, {0, subpath.Count()}), distance, settings, band.Out());
  if (band.IsEmpty()) return band;
  back.Reverse();
  back.nodes[0] = NODETYPE::kLine | NODETYPE::kUser;
  band.Append(back);
  band.points.push_back(band.points.front());
  band.nodes.push_back(NODETYPE::kLine | NODETYPE::kClosed);
  band.nodes.front() |= NODETYPE::kClosed;
  return band;
}

void RemoveSlivers(OwnedPath& path) {
  OwnedPath kept;
  for (const Range& range : Subpaths(path.nodes.data(), path.Count())) {
    const Source outline = SourceOf(path, range);
    if (std::abs(GetArea(outline.points, outline.nodes, outline.count)) >= kSliverArea)
      kept.Append(outline.points, outline.nodes, outline.count);
  }
  path = std::move(kept);
}

}  // namespace

bool CloseOpenPath(const OwnedPath& subpath, EOpenCurveOffsetSide side, double distance,
                   const OffsetSettings& settings, OwnedPath& result) {
  OwnedPath raw;
  if (side == EOpenCurveOffsetSide::both) {
    const OwnedPath loop = ThereAndBack(subpath);
    AppendRawOffset(SourceOf(loop, {0, loop.Count()}), distance, settings, raw.Out());
  } else {
    OwnedPath path = subpath;
    if (side == EOpenCurveOffsetSide::right) path.Reverse();
    raw = BandOutline(path, distance, settings);
  }
  if (!Planar::KeepByWinding({raw.points.data(), raw.nodes.data(), raw.Count()},
                             Planar::WindingRule::positive, result.points, result.nodes))
    return false;
  RemoveSlivers(result);
  return true;
}

}  // namespace Lumo::Offset

namespace Lumo {

void CloseOffsetCurves(const TavMath::DPoint* points, const NODETYPE* nodes, int count,
                       std::vector<TavMath::DPoint>& outPoints, std::vector<NODETYPE>& outNodes,
                       Offset::EOpenCurveOffsetSide side, const Offset::OffsetSettings& settings) noexcept {
  if (points == nullptr || nodes == nullptr || count < 1) return;
  const double distance = std::abs(settings.Offset());
  if (!(distance > 0) || !std::isfinite(distance)) return;
  const std::size_t before = outPoints.size(), nodesBefore = outNodes.size();
  try {
    const Offset::OwnedPath subpath = Offset::PrepareSubpath(points, nodes, count, settings);
    Offset::OwnedPath result;
    if (subpath.IsEmpty() || !Offset::CloseOpenPath(subpath, side, distance, settings, result)) return;
    outPoints.insert(outPoints.end(), result.points.begin(), result.points.end());
    outNodes.insert(outNodes.end(), result.nodes.begin(), result.nodes.end());
  } catch (const std::bad_alloc&) {
    outPoints.resize(before);
    outNodes.resize(nodesBefore);
  }
}

}  // namespace Lumo
