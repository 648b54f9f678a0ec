#pragma once
// The ground that cleaned outlines bound: which side of an outline it lies on, and which outline lies in
// which.

#include <vector>

#include "offset/source.h"

namespace Lumo::Offset {

/// Outlines of one nesting level of the ground.
struct GroundLevel {
  OwnedPath outer;  ///< clockwise
  OwnedPath holes;  ///< counter-clockwise, each inside one of the outer ones

  void Reverse() {
    outer.Reverse();
    holes.Reverse();
  }
};

/// Outlines that do not cross, outer ones clockwise, level by level: the outermost with their holes, the
/// islands in these holes with theirs, and so on. At least one level.
std::vector<GroundLevel> LevelsOfGround(const OwnedPath& clean);

}  // namespace Lumo::Offset
