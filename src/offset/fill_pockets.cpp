#include "offset/fill_pockets.h"

#include <algorithm>
#include <cmath>
#include <typeinfo>

#include "lumo/offset_corners.h"
#include "offset/tolerances.h"

namespace Lumo::Offset {

using namespace TavMath;

bool MayFillPockets(const OffsetSettings& settings) {
  const OffsetCorner* join = settings.CornerType();
  // Not a class that a host has derived from it.
  return join != nullptr && typeid(*join) == typeid(Round);
}

double WidestPocket(double distance, double error) {
  // A point at `distance` from a chord's middle is farther from its ends by chord^2 / (8 distance) at most.
  const double felt = std::sqrt(8 * distance * kPocketShare * error);
  return (std::min)(kPocketReach * distance, felt);
}

namespace {

/// Keeps the nodes seen so far as a stack: closing one pocket may make a wider one round it, as in Graham's
/// scan of a hull.
class PocketFiller {
 public:
  PocketFiller(const Source& outline, double widest) : outline_(outline), widestSqrd_(widest * widest) {
    out_.points.reserve(static_cast<std::size_t>(outline.count));
    out_.nodes.reserve(static_cast<std::size_t>(outline.count));
  }

  OwnedPath Run() {
    Copy(0);
    for (int k = 1; k < outline_.count; ++k) {
      const bool filled = outline_.nodes[k].IsLine() && FillTowards(outline_.points[k]);
      Copy(k);
      // A chord does not leave or arrive as smoothly as what it stands for.
      if (filled) MakeCorner(out_.nodes.size() - 2), MakeCorner(out_.nodes.size() - 1);
    }
    // The two ends of the closed outline are one node.
    if (out_.nodes.front().IsCusp()) MakeCorner(out_.nodes.size() - 1);
    if (out_.nodes.back().IsCusp()) MakeCorner(0);
    return std::move(out_);
  }

 private:
  void Copy(int k) {
    out_.points.push_back(outline_.points[k]);
    out_.nodes.push_back(outline_.nodes[k]);
  }

  void MakeCorner(std::size_t k) { out_.nodes[k].SetContinuity(ContinuityType::cusp); }

  /// Takes nodes off the end as long as the line to the next node closes a pocket. The start stays: it is no
  /// line's end.
  bool FillTowards(const DPoint& next) {
    bool filled = false;
    while (out_.nodes.back().IsLine() && IsPocket(next)) {
      out_.points.pop_back();
      out_.nodes.pop_back();
      filled = true;
    }
    return filled;
  }

  bool IsPocket(const DPoint& next) const {
    const DPoint& floor = out_.points.back();
    const DPoint& before = out_.points[out_.points.size() - 2];
    return Cross(floor - before, next - floor) > 0 && DistanceSqrd(before, next) <= widestSqrd_;
  }

  const Source& outline_;
  double widestSqrd_;
  OwnedPath out_;
};

}  // namespace

OwnedPath FillPockets(const Source& outline, double widest) { return PocketFiller(outline, widest).Run(); }

}  // namespace Lumo::Offset
