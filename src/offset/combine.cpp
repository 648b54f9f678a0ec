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

TavMath::BoundsT<double> BoxOf(const OwnedPath& path, const Range& range) {
  TavMath::BoundsT<double> box;
  for (int k = range.first; k < range.end; ++k) {
    const DPoint& p = path.points[static_cast<std::size_t>(k)];
    box.Add(p.x, p.y);
  }
  return box;
}

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

bool Unite(OwnedPath& path, const OwnedPath& added) {
  if (added.IsEmpty()) return true;
  // Outlines away from everything that is added stay as they are.
  const TavMath::BoundsT<double> box = BoxOf(added, {0, added.Count()});
  OwnedPath touched, apart;
  for (const Range& range : Subpaths(path.nodes.data(), path.Count()))
    (BoxOf(path, range).Overlaps(box) ? touched : apart)
        .Append(path.points.data() + range.first, path.nodes.data() + range.first, range.end - range.first);
  if (touched.IsEmpty()) {
    path.Append(added);
    return true;
  }
  if (!UniteAll(touched, added)) return false;
  apart.Append(touched);
  path = std::move(apart);
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
