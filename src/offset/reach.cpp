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

namespace {

std::vector<BoundsT<double>> BoxesOf(const std::vector<Part>& parts) {
  std::vector<BoundsT<double>> boxes;
  boxes.reserve(parts.size());
  for (const Part& part : parts) boxes.push_back(BoxOf(part));
  return boxes;
}

}  // namespace

Reach::Reach(const DPoint* points, const NODETYPE* nodes, int count)
    : parts_(PartsOf(points, nodes, count)), tree_(BoxesOf(parts_)) {}

bool Reach::Holds(const DPoint& p, double limit) const {
  bool held = false;
  tree_.Visit({p.x - limit, p.y - limit, p.x + limit, p.y + limit}, [&](std::size_t k) {
    double t, distanceSqrd;
    DPoint nearest;
    held =
        held || (CubicBezier::FindClosestPointOnBezier(parts_[k].curve.data(), p, t, nearest, distanceSqrd) &&
                 distanceSqrd < limit * limit);
  });
  return held;
}

}  // namespace Lumo::Offset
