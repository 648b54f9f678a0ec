#include "offset/open_path.h"

#include <algorithm>
#include <cmath>

#include "offset/raw_path.h"
#include "offset/reach.h"
#include "offset/tolerances.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo::Offset {

using namespace TavMath;
using namespace TavMath::CubicBezier;

namespace {

/// The parameters at which each part is crossed by another.
class SelfCrossings {
 public:
  explicit SelfCrossings(const std::vector<Part>& parts) : parts_(parts), cuts_(parts.size()) {
    std::vector<BoundsT<double>> boxes;
    for (const Part& part : parts) boxes.push_back(BoxOf(part));
    std::vector<std::size_t> order(parts.size());
    for (std::size_t k = 0; k < order.size(); ++k) order[k] = k;
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return boxes[a].minx < boxes[b].minx; });
    for (std::size_t a = 0; a < order.size(); ++a)
      for (std::size_t b = a + 1; b < order.size() && boxes[order[b]].minx <= boxes[order[a]].maxx; ++b)
        if (boxes[order[a]].Overlaps(boxes[order[b]])) Cross(order[a], order[b]);
    for (std::vector<double>& cuts : cuts_) std::sort(cuts.begin(), cuts.end());
  }

  const std::vector<double>& Of(std::size_t part) const { return cuts_[part]; }

 private:
  void Cross(std::size_t a, std::size_t b) {
    const Part &f = parts_[a], &g = parts_[b];
    // A line is a cubic with its controls at its ends; crossings are found by the same routine.
    const Crossings crossings = IntersectBeziers(f.curve.data(), g.curve.data());
    for (int k = 0; k < crossings.count; ++k) {
      const Crossing& c = crossings.at[static_cast<std::size_t>(k)];
      if (c.ta > 0 && c.ta < 1) cuts_[a].push_back(c.ta);
      if (c.tb > 0 && c.tb < 1) cuts_[b].push_back(c.tb);
    }
  }

  const std::vector<Part>& parts_;
  std::vector<std::vector<double>> cuts_;
};

}  // namespace

void OffsetOpenPath(const OwnedPath& subpath, double distance, const OffsetSettings& settings,
                    OwnedPath& result) {
  OwnedPath raw;
  AppendRawOffset(SourceOf(subpath, {0, subpath.Count()}), distance, settings, raw.Out());
  const Reach source(subpath.points.data(), subpath.nodes.data(), subpath.Count());
  const std::vector<Part> parts = PartsOf(raw.points.data(), raw.nodes.data(), raw.Count());
  const SelfCrossings crossings(parts);
  // What a piece may err, and a little of the distance, so that stretches at the distance are never taken
  // out.
  const double limit = distance - (std::min)(settings.MaxOffsetError(), 0.5 * distance);
  bool broken = true;
  for (std::size_t k = 0; k < parts.size(); ++k) {
    std::vector<double> cuts = crossings.Of(k);
    cuts.push_back(1.0);
    double from = 0;
    for (const double to : cuts) {
      if (!(to > from)) continue;
      Part part = parts[k];
      if (part.line) {
        const DPoint a = Lerp(parts[k].Start(), parts[k].End(), from),
                     b = Lerp(parts[k].Start(), parts[k].End(), to);
        part.curve = {a, a, b, b};
      } else {
        Subsection(from, to, parts[k].curve.data(), part.curve.data());
      }
      from = to;
      if (source.Holds(Evaluate(part.curve.data(), 0.5), limit)) {
        broken = true;
        continue;
      }
      // After a gap the curve goes on where it left itself, or begins anew.
      const Output out = result.Out();
      const bool anew =
          out.points.empty() || (broken && !Continues(out, part.Start(), settings.MaxConnectErrorSqrd()));
      if (part.line)
        AppendOffsetLine(out, part.Start(), part.End(), settings.MaxConnectErrorSqrd(), anew, false);
      else
        AppendOffsetCubic(out, part.curve.data(), settings.MaxConnectErrorSqrd(), anew);
      broken = false;
    }
  }
}

}  // namespace Lumo::Offset
