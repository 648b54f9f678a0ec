#pragma once
// Intersections of two segment lists by a table of routines over the kinds of segment.

#include <array>
#include <cstddef>
#include <vector>

#include "lumo/segment_list.h"

namespace Lumo {

/// One hit of a segment of the first list.
struct LUMO_TYPE SegmentListHit {
  double timeA;  ///< parameter on the first list's segment
  double timeB;  ///< parameter on the second list's segment
  double
      distance;  ///< |1 - timeA| on segment 0, |i + timeA - 1| on segment i: how far along the list, less one
  /// The index in the second list.
  std::size_t segmentB;
};

/// The one dispatcher of the process, created on first use and destroyed at exit. Read-only afterwards:
/// Intersect may be called from many threads.
class LUMO_API CPolyCurveIntersector {
 public:
  /// The object.
  static const CPolyCurveIntersector& Instance() noexcept;

  CPolyCurveIntersector(const CPolyCurveIntersector&) = delete;
  CPolyCurveIntersector& operator=(const CPolyCurveIntersector&) = delete;

  /// One entry per segment of a, each with its hits in the order of b's segments. Two rules make this a
  /// search for the first place where a list leaves another, and are kept: a hit of segment 0 with segment 0
  /// more than 0.8 short of a's first end node is dropped; and before segment i >= 2 the search stops when
  /// segment i - 1 has a hit, so that later segments have none (segment 0 never stops it). Empty when memory
  /// runs out.
  std::vector<std::vector<SegmentListHit>> Intersect(const CSegmentList& a,
                                                     const CSegmentList& b) const noexcept;

 private:
  struct Hits;
  using Routine = bool (*)(const CSegment& a, const CSegment& b, Hits& hits);
  struct Entry {
    Routine routine;
    bool swap;  ///< the routine takes the segments the other way round
  };

  CPolyCurveIntersector() noexcept;
  const Entry& Find(int kindA, int kindB) const noexcept;
  static bool LineLine(const CSegment& a, const CSegment& b, Hits& hits);
  static bool LineCurve(const CSegment& line, const CSegment& curve, Hits& hits);
  static bool CurveCurve(const CSegment& a, const CSegment& b, Hits& hits);

  std::array<std::array<Entry, 2>, 2> map_;
};

}  // namespace Lumo
