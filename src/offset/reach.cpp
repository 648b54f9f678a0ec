#include "offset/reach.h"

#include <cmath>

namespace Lumo::Offset {

using namespace TavMath;

BoundsT<double> BoxOf(const Part& part) {
  BoundsT<double> box;
  for (const DPoint& p : part.curve) box.Add(p.x, p.y);
  return box;
}

std::vector<Part> PartsOf(const DPoint* points, const NODETYPE* nodes, int count) {
  std::vector<Part> parts;
  for (int k = 1; k < count; ++k) {
    if (nodes[k].IsMove()) continue;
    if (nodes[k].IsControl() && k + 2 < count) {
      parts.push_back({{points[k - 1], points[k], points[k + 1], points[k + 2]}, false});
      k += 2;
    } else {
      parts.push_back({{points[k - 1], points[k - 1], points[k], points[k]}, true});
    }
  }
  return parts;
}

Reach::Reach(const DPoint* points, const NODETYPE* nodes, int count) : parts_(PartsOf(points, nodes, count)) {
  boxes_.reserve(parts_.size());
  for (const Part& part : parts_) boxes_.push_back(BoxOf(part));
}

bool Reach::Holds(const DPoint& p, double limit) const {
  for (std::size_t k = 0; k < parts_.size(); ++k) {
    BoundsT<double> box = boxes_[k];
    box.Inflate(limit, limit);
    if (!box.Contains(p.x, p.y)) continue;
    double t, distanceSqrd;
    DPoint nearest;
    if (CubicBezier::FindClosestPointOnBezier(parts_[k].curve.data(), p, t, nearest, distanceSqrd) &&
        distanceSqrd < limit * limit)
      return true;
  }
  return false;
}

}  // namespace Lumo::Offset
