#include "offset/combine.h"

#include <algorithm>
#include <new>

#include "boolean/winding_filter.h"
#include "lumo/offset.h"
#include "tav/math/rect.h"

namespace Lumo::Offset {

void RoundToWholeUnits(OwnedPath& path) {
  for (DPoint& p : path.points) {
    const tagPOINT rounded = TavMath::RoundPoint(p);
    p = {static_cast<double>(rounded.x), static_cast<double>(rounded.y)};
  }
}

namespace {

bool UniteAll(OwnedPath& path, const OwnedPath& added) {
  OwnedPath result;
  if (!Planar::UniteGroups({path.points.data(), path.nodes.data(), path.Count()},
                           {added.points.data(), added.nodes.data(), added.Count()},
                           Planar::WindingRule::nonZero, result.points, result.nodes))
    return false;
  path = std::move(result);
  return true;
}

}  // namespace

bool Unite(OwnedPath& bodies) {
  // Every body winds its ground by one and nothing else, so where the sum is positive is the union.
  OwnedPath result;
  if (!Planar::KeepByWinding({bodies.points.data(), bodies.nodes.data(), bodies.Count()},
                             Planar::WindingRule::positive, result.points, result.nodes))
    return false;
  bodies = std::move(result);
  return true;
}

}  // namespace Lumo::Offset

namespace Lumo {

void CombineClosedOffsetCurves(const TavMath::DPoint* points, const NODETYPE* nodes, int count,
                               std::vector<TavMath::DPoint>& outPoints, std::vector<NODETYPE>& outNodes,
                               int first, int split) noexcept {
  if (points == nullptr || nodes == nullptr || count < 1) return;
  first = std::clamp(first, 0, count);
  split = std::clamp(split, first, count);
  const std::size_t before = outPoints.size(), nodesBefore = outNodes.size();
  try {
    Offset::OwnedPath path, added;
    path.Append(points + first, nodes + first, split - first);
    added.Append(points + split, nodes + split, count - split);
    if (path.IsEmpty()) path.points.swap(added.points), path.nodes.swap(added.nodes);
    if (added.IsEmpty()) added = path;  // one group alone is united with itself
    if (!Offset::UniteAll(path, added)) return;
    outPoints.insert(outPoints.end(), path.points.begin(), path.points.end());
    outNodes.insert(outNodes.end(), path.nodes.begin(), path.nodes.end());
  } catch (const std::bad_alloc&) {
    outPoints.resize(before);
    outNodes.resize(nodesBefore);
  }
}

}  // namespace Lumo
