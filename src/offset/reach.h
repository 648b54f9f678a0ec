#pragma once
// Which points lie within reach of a source path.

#include <vector>

#include "intersect/box_tree.h"
#include "offset/piece.h"
#include "tav/math/bounds.h"

namespace Lumo::Offset {

/// The segments of a path of one or more subpaths; lines have their controls on their ends.
std::vector<Part> PartsOf(const DPoint* points, const NODETYPE* nodes, int count);

TavMath::BoundsT<double> BoxOf(const Part& part);

/// A source path by its segments.
class Reach {
 public:
  Reach(const DPoint* points, const NODETYPE* nodes, int count);

  /// Whether some segment lies nearer to a point than the limit.
  bool Holds(const DPoint& p, double limit) const;

 private:
  std::vector<Part> parts_;
  BoxTree tree_;
};

}  // namespace Lumo::Offset
