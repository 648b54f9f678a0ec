#pragma once
// Writing into a table: the only code that adds or removes records.

#include "intersect/segment_pair.h"
#include "lumo/intersections.h"

namespace Lumo {

/// One crossing as both segments see it.
struct RecordSides {
  double timeA;
  int segmentA;
  DVector directionA;
  double curvatureA;
  double timeB;
  int segmentB;
  DVector directionB;
  double curvatureB;
  DPoint point;
};

struct IntersectionRecorder {
  /// Adds a record to both segments' lists, links the two as partners, notes each path in the other's entry
  /// and sets the table's found-anything flag. Returns the record on A; null (nothing added) when memory runs
  /// out.
  static Intersection* AddPair(const RecordSides& sides, SegmentIntersectionTable& table, bool normalize,
                               bool touch) noexcept;
  /// Takes a record and its partner out of their lists, unlinks what was linked with them, and deletes both.
  static void RemovePair(Intersection* record, SegmentIntersectionTable& table) noexcept;
  static void Kill(SegmentIntersections& segment, Intersection* record) noexcept {
    segment.KillIntersection(record);
  }
};

}  // namespace Lumo
