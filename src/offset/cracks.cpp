#include "offset/cracks.h"

#include <algorithm>
#include <cmath>

#include "lumo/measure.h"
#include "offset/reach.h"
#include "offset/tolerances.h"

namespace Lumo::Offset {

namespace {

/// Tells outlines of a result that only lie between two pieces of the raw offset, each of which may be off by
/// the errors that the settings allow.
class CrackTest {
 public:
  CrackTest(const OwnedPath& source, const OffsetSettings& settings)
      : source_(source),
        distance_(std::abs(settings.Offset())),
        tolerance_(settings.MaxOffsetError() + settings.MaxConnectError()) {}

  bool IsCrack(const Source& outline) const {
    const double area = std::abs(GetArea(outline.points, outline.nodes, outline.count));
    // The control polygon is longer than the outline, and nearly always tells enough.
    double polygon = 0;
    for (int k = 1; k < outline.count; ++k)
      polygon += TavMath::Distance(outline.points[k - 1], outline.points[k]);
    if (area > kThinShare * tolerance_ * polygon) return false;
    const double length = GetLength(outline.points, outline.nodes, outline.count);
    if (!(area > kCrackShare * tolerance_ * length)) return true;
    return !(area > kThinShare * tolerance_ * length) && ComesNear(outline);
  }

 private:
  /// Whether it passes a place that is clearly within the distance of the source: then it bounds nothing.
  bool ComesNear(const Source& outline) const {
    const double limit = distance_ - 2 * tolerance_;
    if (!(limit > 0)) return false;
    const Reach reach(source_.points.data(), source_.nodes.data(), source_.Count());
    for (const Part& part : PartsOf(outline.points, outline.nodes, outline.count))
      if (reach.Holds(TavMath::CubicBezier::Evaluate(part.curve.data(), 0.5), limit)) return true;
    return false;
  }

  const OwnedPath& source_;
  double distance_;
  double tolerance_;
};

}  // namespace

void RemoveCracks(OwnedPath& path, const OwnedPath& source, const OffsetSettings& settings) {
  const std::vector<Range> ranges = Subpaths(path.nodes.data(), path.Count());
  const CrackTest test(source, settings);
  const auto isCrack = [&](const Range& range) { return test.IsCrack(SourceOf(path, range)); };
  if (std::none_of(ranges.begin(), ranges.end(), isCrack)) return;
  OwnedPath kept;
  for (const Range& range : ranges) {
    const Source outline = SourceOf(path, range);
    if (!isCrack(range)) kept.Append(outline.points, outline.nodes, outline.count);
  }
  path = std::move(kept);
}

}  // namespace Lumo::Offset
