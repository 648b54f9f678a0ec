#include "offset/closed.h"

#include <algorithm>
#include <cmath>

#include "boolean/winding_filter.h"
#include "lumo/measure.h"
#include "offset/bands.h"
#include "offset/cracks.h"
#include "offset/fill_pockets.h"
#include "offset/ground.h"
#include "offset/raw_path.h"
#include "offset/tolerances.h"

namespace Lumo::Offset {

using Planar::KeepByWinding;
using Planar::WindingRule;

namespace {

Planar::OutlineView View(const OwnedPath& path) {
  return {path.points.data(), path.nodes.data(), path.Count()};
}

bool Filter(const OwnedPath& raw, WindingRule rule, OwnedPath& result) {
  return KeepByWinding(View(raw), rule, result.points, result.nodes);
}

double AreaOf(const OwnedPath& path, const Range& range) {
  return GetArea(path.points.data() + range.first, path.nodes.data() + range.first, range.end - range.first);
}

/// Whether pockets are worth filling, and may be.
bool HasPockets(const Source& source, double distance, const OffsetSettings& settings) {
  return IsDense(source, distance) && MayFillPockets(settings);
}

OwnedPath Filled(const Source& source, double distance, const OffsetSettings& settings) {
  return FillPockets(source, WidestPocket(distance, settings.MaxOffsetError()));
}

/// The outlines' ground (on their right) grown by the distance: raw offsets of all of them in one
/// arrangement. They must run clockwise: the winding number of a point is then the number of stretches of
/// ground within reach of it. (Ground that overlaps itself where pockets were filled is still a disc laid on
/// the plane, whose stretches within reach are counted as before.)
bool Grow(const OwnedPath& outlines, double distance, const OffsetSettings& settings, OwnedPath& result) {
  OwnedPath raw;
  for (const Range& range : Subpaths(outlines.nodes.data(), outlines.Count())) {
    Source source = SourceOf(outlines, range);
    OwnedPath filled;
    if (HasPockets(source, distance, settings)) {
      filled = Filled(source, distance, settings);
      source = SourceOf(filled, {0, filled.Count()});
    }
    if (IsDense(source, distance)) {
      OwnedPath body;
      if (!UniteBands(source, distance, settings, body)) return false;
      raw.Append(source.points, source.nodes, source.count);
      raw.Append(body);
    } else {
      AppendRawOffset(source, distance, settings, raw.Out());
    }
  }
  return Filter(raw, WindingRule::positive, result);
}

/// The outline winds its inside by -1, the body winds by +1: what stays negative is what the body does not
/// cover.
bool ShrinkDense(const Source& source, double distance, const OffsetSettings& settings, OwnedPath& kept) {
  OwnedPath body, both;
  if (!UniteBands(source, distance, settings, body)) return false;
  both.Append(source.points, source.nodes, source.count);
  both.Append(body);
  return Filter(both, WindingRule::negative, kept);
}

/// One simple outline of `Shrink`.
bool ShrinkOne(const Source& source, double distance, const OffsetSettings& settings, OwnedPath& kept) {
  // A point that all of the outline is within reach of counts wrongly; there is none while the distance is
  // less than half the smaller extent, and from there on nothing is left anyway.
  const TavMath::BoundsT<double> box = GetTightBBox(source.points, source.nodes, source.count);
  if (!(2 * distance < (std::min)(box.Width(), box.Height()))) return true;
  if (IsDense(source, distance)) return ShrinkDense(source, distance, settings, kept);
  OwnedPath raw;
  AppendRawOffset(source, distance, settings, raw.Out());
  return Filter(raw, WindingRule::negative, kept);
}

/// What is left of a hole when the pockets of the ground round it are filled: simple outlines again, so that
/// each has its own extent.
bool FillHole(const Source& source, double distance, const OffsetSettings& settings, OwnedPath& holes) {
  if (!Filter(Filled(source, distance, settings), WindingRule::negative, holes)) return false;
  holes.Reverse();
  return true;
}

/// The ground inside counter-clockwise outlines shrunk by the distance, each for itself: what one outline's
/// raw offset leaves outside of it means nothing for another. The result is clockwise.
bool Shrink(const OwnedPath& outlines, double distance, const OffsetSettings& settings, OwnedPath& result) {
  const auto shrink = [&](const Source& source) {
    OwnedPath kept;
    if (!ShrinkOne(source, distance, settings, kept)) return false;
    RemoveCracks(kept, outlines, settings);
    result.Append(kept);
    return true;
  };
  for (const Range& range : Subpaths(outlines.nodes.data(), outlines.Count())) {
    const Source source = SourceOf(outlines, range);
    if (!HasPockets(source, distance, settings)) {
      if (!shrink(source)) return false;
      continue;
    }
    OwnedPath holes;
    if (!FillHole(source, distance, settings, holes)) return false;
    for (const Range& part : Subpaths(holes.nodes.data(), holes.Count()))
      if (!shrink(SourceOf(holes, part))) return false;
  }
  return true;
}

/// One nesting level of the ground, offset: what its outer outlines become, less what its holes become.
bool OffsetLevel(GroundLevel& level, const OffsetSettings& settings, OwnedPath& outer, OwnedPath& holes) {
  const double distance = std::abs(settings.Offset());
  if (settings.Offset() > 0)
    return Grow(level.outer, distance, settings, outer) && Shrink(level.holes, distance, settings, holes);
  // Seen from the other side: outer outlines shrink, holes grow.
  level.Reverse();
  return Shrink(level.outer, distance, settings, outer) && Grow(level.holes, distance, settings, holes);
}

/// All levels: outer outlines less holes. One arrangement for all of them: where a level covers a point, it
/// lies in its outer outlines and in none of its holes, and no level takes away from another, since what it
/// takes away lies in its own outer outlines, or as deep in a hole as nothing of another level reaches.
bool OffsetLevels(std::vector<GroundLevel>& levels, const OffsetSettings& settings, OwnedPath& result) {
  for (GroundLevel& level : levels) {
    OwnedPath outer, holes;
    if (!OffsetLevel(level, settings, outer, holes)) return false;
    if (levels.size() == 1 && holes.IsEmpty()) {
      result = std::move(outer);
      return true;
    }
    holes.Reverse();
    result.Append(outer);
    result.Append(holes);
  }
  const OwnedPath all = std::move(result);
  result.Clear();
  return Filter(all, WindingRule::positive, result);
}

/// Whether the control points of a closed outline, in order, run round a convex polygon once: no turn to the
/// other side, and each coordinate rises and falls once. Then the outline is simple and convex itself.
bool IsConvex(const OwnedPath& path) {
  const std::size_t n = path.points.size();
  DVector before{0, 0};
  // The last edge with a length precedes the first.
  for (std::size_t k = n - 1; k > 0 && before == DVector{0, 0}; --k)
    before = path.points[k] - path.points[k - 1];
  int left = 0, right = 0, turnsX = 0, turnsY = 0;
  DVector sign = before;
  for (std::size_t k = 1; k < n; ++k) {
    const DVector edge = path.points[k] - path.points[k - 1];
    if (edge == DVector{0, 0}) continue;
    const double cross = Cross(before, edge);
    if (cross > 0) ++left;
    if (cross < 0) ++right;
    if (cross == 0 && Dot(before, edge) < 0) return false;
    if (edge.x != 0 && sign.x != 0 && (edge.x < 0) != (sign.x < 0)) ++turnsX;
    if (edge.y != 0 && sign.y != 0 && (edge.y < 0) != (sign.y < 0)) ++turnsY;
    if (edge.x != 0) sign.x = edge.x;
    if (edge.y != 0) sign.y = edge.y;
    before = edge;
  }
  return (left == 0 || right == 0) && left + right > 0 && turnsX <= 2 && turnsY <= 2;
}

/// A convex outline needs no cleaning; grown, its raw offset is simple as well.
bool OffsetConvex(OwnedPath outline, const OffsetSettings& settings, OwnedPath& result) {
  const bool grows = settings.Offset() > 0;
  const Range all{0, outline.Count()};
  if ((AreaOf(outline, all) > 0) != grows) outline.Reverse();
  const double distance = std::abs(settings.Offset());
  if (!grows) return Shrink(outline, distance, settings, result);
  AppendRawOffset(SourceOf(outline, all), distance, settings, result.Out());
  return true;
}

}  // namespace

bool OffsetGround(const OwnedPath& subpath, const OffsetSettings& settings, OwnedPath& result) {
  if (settings.Offset() != 0 && IsConvex(subpath)) return OffsetConvex(subpath, settings, result);
  OwnedPath clean;
  if (!Filter(subpath, WindingRule::nonZero, clean)) return false;
  const double distance = std::abs(settings.Offset());
  if (!(distance > 0)) {
    result = std::move(clean);
    return true;
  }
  std::vector<GroundLevel> levels = LevelsOfGround(clean);
  if (!OffsetLevels(levels, settings, result)) return false;
  RemoveCracks(result, clean, settings);
  return true;
}

}  // namespace Lumo::Offset
