#include "intersect/segment_pair.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo {

void MeetCubicCubic(const PairSegment& a, const PairSegment& b, InnerMeetings& found) noexcept {
  const auto crossings = TavMath::CubicBezier::IntersectBeziers(a.p, b.p);
  found.overlap = crossings.overlap;
  for (std::size_t k = 0; k < static_cast<std::size_t>(crossings.count); ++k) {
    const auto& c = crossings.at[k];
    found.at[found.count++] = {c.ta, c.tb, c.point};
  }
}

}  // namespace Lumo
