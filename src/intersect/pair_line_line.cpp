#include "intersect/segment_pair.h"

namespace Lumo {

// Formed so that an exact parameter comes out exact; nothing here may be fused.
void MeetLineLine(const PairSegment& a, const PairSegment& b, InnerMeetings& found) noexcept {
  const DVector da = a.End() - a.Start(), db = b.End() - b.Start(), w = a.Start() - b.Start();
  const double denominator = da.x * db.y - da.y * db.x;
  if (denominator == 0) return;
  const double ta = (db.x * w.y - db.y * w.x) / denominator;
  const double tb = (da.x * w.y - da.y * w.x) / denominator;
  // Ends are found as ends.
  if (!(0 < ta && ta < 1 && 0 < tb && tb < 1)) return;
  found.at[found.count++] = {ta, tb, a.Start() + ta * da};
}

}  // namespace Lumo
