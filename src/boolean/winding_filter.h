#pragma once
// The Boolean engine for other folders: raw outlines in, clean outlines out, by winding number.

#include <vector>

#include "lumo/node_type.h"
#include "lumo/point_types.h"

namespace Lumo::Planar {

/// Closed outlines as parallel arrays. Open subpaths are taken as closed by a line.
struct OutlineView {
  const TavMath::DPoint* points;
  const NODETYPE* types;
  int count;
};

/// Which winding numbers belong to the region. Outlines of positive area (clockwise, y up: the sense that
/// GetArea counts as positive) wind by +1.
enum class WindingRule { nonZero, positive, negative };

/// Replaces the contents of the two vectors by the boundary of the region: closed outlines that do not cross,
/// each passing a point once, outer ones of positive area and holes of negative area. An outline that comes
/// through untouched keeps its nodes bit for bit (reversed where that sense asks for it). Curves stay curves.
/// Always ends, in near-linear time; never fails on malformed input (subpaths with coordinates that are not
/// finite are left out). False when memory ran out: the vectors are then empty.
bool KeepByWinding(const OutlineView& outlines, WindingRule rule, std::vector<TavMath::DPoint>& points,
                   std::vector<NODETYPE>& types) noexcept;

/// The union of two groups of outlines, each filled by the rule.
bool UniteGroups(const OutlineView& a, const OutlineView& b, WindingRule rule,
                 std::vector<TavMath::DPoint>& points, std::vector<NODETYPE>& types) noexcept;

}  // namespace Lumo::Planar
