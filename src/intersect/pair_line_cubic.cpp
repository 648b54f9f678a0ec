#include "intersect/segment_pair.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo {

void MeetLineCubic(const PairSegment& line, const PairSegment& cubic, InnerMeetings& found) noexcept {
  const auto crossings = TavMath::CubicBezier::IntersectBezierLine(cubic.p, line.Start(), line.End(), false);
  found.overlap = crossings.overlap;
  for (std::size_t k = 0; k < static_cast<std::size_t>(crossings.count); ++k) {
    const auto& c = crossings.at[k];
    found.at[found.count++] = {c.tb, c.ta, c.point};
  }
}

}  // namespace Lumo
