#pragma once
// Where the segments of one or more paths meet: crossings, touches and coincident stretches, kept per segment
// so that a later stage can walk from a crossing on one segment to the same crossing on the other. All in
// doubles.
//
//   Lumo::SegmentIntersectionTable table;
//   table.AddCurve(points, types, count);
//   Lumo::FindAllIntersections(table, Lumo::SegmentIntersectionSettings());
//   for (const Lumo::SegmentIntersections& segment : table.Segments()) ...

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lumo/node_type.h"
#include "lumo/point_types.h"

namespace Lumo {

struct IntersectionRecorder;  // writes records; private to the library

/// One crossing, seen from one of the two segments. The record of the same crossing on the other segment is
/// its partner.
class LUMO_TYPE Intersection {
 public:
  /// A record without partner: the parameter on the segment, its index in the table, the place, the tangent
  /// and the curvature there.
  Intersection(double time, int segment, const TavMath::DPoint& point, const TavMath::DVector& direction,
               double curvature) noexcept
      : time_(time), segment_(segment), point_(point), direction_(direction), curvature_(curvature) {}

  /// Parameter on this segment: 0 at its start node, 1 at its end node.
  double GetIntersectionTime() const noexcept { return time_; }
  /// Index in the table of the segment that this record belongs to.
  int SegmentID() const noexcept { return segment_; }
  /// The record of the same crossing on the other segment; not owned.
  Intersection* GetPartner() const noexcept { return partner_; }
  void SetIntersectionPartner(Intersection* partner) noexcept { partner_ = partner; }
  /// The record at the other end of the coincident stretch that starts or ends here; not owned.
  Intersection* GetOverlapPartner() const noexcept { return overlap_; }
  /// Links this record, and the two partners on the other segment when all of them are there.
  void SetOverlapPartner(Intersection* other) noexcept {
    overlap_ = other;
    if (partner_ && other && other->partner_) partner_->overlap_ = other->partner_;
  }
  /// Unlinks this record and the one it is linked with, on this segment only: the links between the partners
  /// stay. False when there was none.
  bool BreakOverlapLink() noexcept {
    if (!overlap_) return false;
    overlap_->overlap_ = nullptr;
    overlap_ = nullptr;
    return true;
  }

  /// The place.
  const TavMath::DPoint& GetIntersection() const noexcept { return point_; }
  /// Tangent of this segment at the crossing; of unit length when the settings ask for it.
  operator const TavMath::DVector&() const noexcept { return direction_; }
  /// Curvature of this segment at the crossing, positive when turning left; 0 for a line.
  double GetCurvature() const noexcept { return curvature_; }
  /// This record's direction x its partner's: on which side the other segment crosses. 0 without a partner.
  double DirectionCross() const noexcept {
    return partner_ ? TavMath::Cross(direction_, partner_->direction_) : 0;
  }

  /// A mark, a side and a number for the stages that read the table; nothing here looks at them.
  bool IsValid() const noexcept { return valid_; }
  void Invalidate() noexcept { valid_ = false; }
  void Reset() noexcept { valid_ = true; }
  TavMath::Side GetSides() const noexcept { return sides_; }
  void SetSides(TavMath::Side sides) noexcept { sides_ = sides; }
  /// The segments meet without crossing: at an end, or in a tangency.
  bool IsTouch() const noexcept { return touch_; }
  void SetTouch(bool touch) noexcept { touch_ = touch; }
  /// A number for the stages that read the table.
  std::uint64_t GetCookie() const noexcept { return cookie_; }
  void SetCookie(std::uint64_t cookie) noexcept { cookie_ = cookie; }

  /// By parameter only.
  friend bool operator<(const Intersection& a, const Intersection& b) noexcept { return a.time_ < b.time_; }
  /// Same segment and exactly the same parameter.
  friend bool operator==(const Intersection& a, const Intersection& b) noexcept {
    return a.segment_ == b.segment_ && a.time_ == b.time_;
  }

 private:
  double time_;
  std::int32_t segment_;
  Intersection* partner_ = nullptr;
  Intersection* overlap_ = nullptr;
  TavMath::DPoint point_;
  TavMath::DVector direction_;
  double curvature_;
  bool valid_ = true;
  TavMath::Side sides_ = TavMath::Side::none;
  bool touch_ = false;
  std::uint64_t cookie_ = 0;
};

/// All crossings on one segment. Owns its records; a copy shares them with its source, so that only one of
/// the two may be destroyed with its records: hosts move.
class LUMO_API SegmentIntersections {
 public:
  /// The kind of a segment.
  enum class Type : std::int32_t { line = 0, curve = 1 };

  /// A segment without records; see the accessors below for the numbers.
  SegmentIntersections(int segmentStart, int curveId, int nextSegment, int thisSegment, int prevSegment,
                       bool zeroLength, Type type) noexcept;
  /// Shares the records with the source.
  SegmentIntersections(const SegmentIntersections& other) = default;
  /// Takes the records; the source is left without any.
  SegmentIntersections(SegmentIntersections&& other) noexcept;
  SegmentIntersections& operator=(const SegmentIntersections&) = delete;
  /// Deletes the own records first.
  SegmentIntersections& operator=(SegmentIntersections&& other) noexcept;
  ~SegmentIntersections();

  /// Index of the segment's first node in its path, and of its last: 3 beyond for a curve, 1 for a line.
  int SegmentStart() const noexcept { return segmentStart_; }
  void SetSegmentStart(int node) noexcept { segmentStart_ = node; }
  int SegmentEnd() const noexcept { return segmentStart_ + (type_ == Type::curve ? 3 : 1); }
  /// Which of the table's paths the segment belongs to.
  int GetCurveID() const noexcept { return curveId_; }
  void SetCurveID(int id) noexcept { curveId_ = id; }
  /// Indices in the table: of the segment that follows in the subpath (-1: none), of this one, of the one
  /// before.
  int NextSegment() const noexcept { return next_; }
  void SetNextSegment(int segment) noexcept { next_ = segment; }
  int ThisSegment() const noexcept { return this_; }
  void SetThisSegment(int segment) noexcept { this_ = segment; }
  int PrevSegment() const noexcept { return previous_; }
  void SetPrevSegment(int segment) noexcept { previous_ = segment; }
  /// A segment without extent; it takes part in no comparison.
  bool IsZeroLength() const noexcept { return zeroLength_; }
  void SetSegmentAsZeroLength(bool zeroLength = true) noexcept { zeroLength_ = zeroLength; }

  /// The records, owned by this object, in the order of their discovery until Sort is called. An index must
  /// lie below size; front and back need a record.
  const std::vector<Intersection*>& Intersections() const noexcept { return records_; }
  std::size_t size() const noexcept { return records_.size(); }
  bool empty() const noexcept { return records_.empty(); }
  Intersection* operator[](std::size_t index) const { return records_[index]; }
  Intersection* front() const { return records_.front(); }
  Intersection* back() const { return records_.back(); }

  /// Line or curve.
  Type SegmentType() const noexcept { return type_; }
  void SetSegmentType(Type type) noexcept { type_ = type; }
  /// A mark, a side and a number for the stages that read the table; nothing here looks at them.
  bool IsValid() const noexcept { return valid_; }
  void Invalidate() noexcept { valid_ = false; }
  void Reset() noexcept { valid_ = true; }
  TavMath::Side GetSides() const noexcept { return sides_; }
  void SetSides(TavMath::Side sides) noexcept { sides_ = sides; }
  std::uint64_t GetCookie() const noexcept { return cookie_; }
  void SetCookie(std::uint64_t cookie) noexcept { cookie_ = cookie; }

  /// Appends a copy of the record and returns it; it stays where it is however the table grows. Null when
  /// memory runs out.
  Intersection* AddIntersection(const Intersection& record) noexcept;
  /// Position of the record in the list, -1 when it is not there.
  int GetIndex(const Intersection* record) const noexcept;
  /// By parameter along the segment; equal parameters in no particular order.
  void Sort() noexcept;

 private:
  friend struct IntersectionRecorder;
  /// Takes the record out of the list, the others keep their order; it is not deleted.
  void KillIntersection(Intersection* record) noexcept;
  void DeleteRecords() noexcept;

  std::int32_t segmentStart_;
  std::int32_t curveId_;
  std::int32_t next_;
  std::int32_t this_;
  std::int32_t previous_;
  bool zeroLength_;
  std::vector<Intersection*> records_;
  Type type_;
  bool valid_ = true;
  TavMath::Side sides_ = TavMath::Side::none;
  std::uint64_t cookie_ = 0;
};

/// Tolerances (document units, compared squared and strictly) and options. The tolerances are fixed at
/// construction.
class LUMO_TYPE SegmentIntersectionSettings {
 public:
  SegmentIntersectionSettings() noexcept = default;
  /// With tolerances other than the defaults of 0.01 and 10 units.
  SegmentIntersectionSettings(double endpointTolerance, double touchTolerance) noexcept
      : endpoint_(endpointTolerance),
        touch_(touchTolerance),
        endpointSqrd_(endpointTolerance * endpointTolerance),
        touchSqrd_(touchTolerance * touchTolerance) {}

  /// Two ends closer than this are one point.
  double GetEndpointTolerance() const noexcept { return endpoint_; }
  /// An end closer than this to the other segment touches it; a stretch that stays this close is shared.
  double GetTouchTolerance() const noexcept { return touch_; }
  /// A crossing this close in both parameters to a recorded contact is the same one.
  double GetDuplicateEndpointTimeTolerance() const noexcept { return duplicateTime_; }
  /// The squares of the two tolerances.
  double GetEndpointToleranceSqrd() const noexcept { return endpointSqrd_; }
  double GetTouchToleranceSqrd() const noexcept { return touchSqrd_; }
  /// With cover gaps: ends closer than this are joined when their segments do not meet otherwise.
  double GetGapTolerance() const noexcept { return gap_; }
  void SetGapTolerance(double gap) noexcept { gap_ = gap; }
  double GetGapToleranceSqrd() const noexcept { return gap_ * gap_; }

  /// Whether tangents in the records have unit length; default false.
  bool GetNormalizeDirVectors() const noexcept { return normalize_; }
  void SetNormalizeDirVectors(bool on) noexcept { normalize_ = on; }
  /// The next five are not read here; they are carried for the stages that read the table.
  bool GetIncludeFullOverlaps() const noexcept { return fullOverlaps_; }
  void SetIncludeFullOverlaps(bool on) noexcept { fullOverlaps_ = on; }
  bool GetIncludeOverlaps() const noexcept { return overlaps_; }
  void SetIncludeOverlaps(bool on) noexcept { overlaps_ = on; }
  bool GetIncludeNonCrossingTouches() const noexcept { return nonCrossingTouches_; }
  void SetIncludeNonCrossingTouches(bool on) noexcept { nonCrossingTouches_ = on; }
  bool GetIncludeAdjacentSegmentIntersections() const noexcept { return adjacent_; }
  void SetIncludeAdjacentSegmentIntersections(bool on) noexcept { adjacent_ = on; }
  bool GetPreferTouches() const noexcept { return preferTouches_; }
  void SetPreferTouches(bool on) noexcept { preferTouches_ = on; }
  /// Whether ends within the gap tolerance are joined; default false.
  bool GetCoverGaps() const noexcept { return coverGaps_; }
  void SetCoverGaps(bool on) noexcept { coverGaps_ = on; }

 private:
  double endpoint_ = 0.01;
  double touch_ = 10.0;
  double duplicateTime_ = 0.0001;
  double endpointSqrd_ = 0.0001;
  double touchSqrd_ = 100.0;
  double gap_ = 0;
  bool normalize_ = false;
  bool fullOverlaps_ = true;
  bool overlaps_ = true;
  bool nonCrossingTouches_ = false;
  bool adjacent_ = true;
  bool preferTouches_ = false;
  bool coverGaps_ = false;
};

/// One path of a table. The arrays are the caller's and must outlive the table's use.
struct LUMO_API CurveEntry {
  /// The arrays and the number of nodes in each.
  const TavMath::DPoint* points = nullptr;
  const NODETYPE* nodes = nullptr;
  int count = 0;
  /// Each unordered pair of segments is examined once, from the lower index.
  bool pairOnce = true;
  /// Segments of this path are compared with each other, and cubics with themselves.
  bool selfIntersectionsWanted = true;
  /// Ids of the paths that this one was found to meet, rising.
  std::vector<int> crossedCurves;

  /// Whether a path is among them. Logarithmic.
  bool Crosses(int curveId) const noexcept;
};

/// The segments of all input paths, in the order in which they were added, with what was found on each.
class LUMO_API SegmentIntersectionTable {
 public:
  SegmentIntersectionTable() = default;
  /// Tables are moved, not copied: they own records.
  SegmentIntersectionTable(SegmentIntersectionTable&&) noexcept = default;
  SegmentIntersectionTable& operator=(SegmentIntersectionTable&&) noexcept = default;
  SegmentIntersectionTable(const SegmentIntersectionTable&) = delete;
  SegmentIntersectionTable& operator=(const SegmentIntersectionTable&) = delete;

  /// Adds a path and a header for each of its line and curve segments. Returns the path's id, or -1 when
  /// memory runs out or an array is null; then the table is as before. Nodes that no segment can end at are
  /// passed over.
  int AddCurve(const TavMath::DPoint* points, const NODETYPE* types, int count, bool pairOnce = true,
               bool selfIntersectionsWanted = true) noexcept;

  /// The segments and the paths, in the order in which they were added, and whether a search has found
  /// anything.
  std::vector<SegmentIntersections>& Segments() noexcept { return segments_; }
  const std::vector<SegmentIntersections>& Segments() const noexcept { return segments_; }
  std::vector<CurveEntry>& Curves() noexcept { return curves_; }
  const std::vector<CurveEntry>& Curves() const noexcept { return curves_; }
  bool FoundAnything() const noexcept { return foundAnything_; }
  void SetFoundAnything(bool found) noexcept { foundAnything_ = found; }

  /// Control points of a segment (2 or 4), or null when its path has no arrays or its nodes lie outside them.
  const TavMath::DPoint* SegmentPoints(const SegmentIntersections& segment) const noexcept;

 private:
  std::vector<SegmentIntersections> segments_;
  std::vector<CurveEntry> curves_;
  bool foundAnything_ = false;
};

/// Compares one segment with every segment of the table and records what they have in common on both. Called
/// once per segment in table order it finds everything. O(number of segments). False when the index is
/// outside the table or memory ran out.
LUMO_API bool FindSegmentIntersections(int segment, SegmentIntersectionTable& table,
                                       const SegmentIntersectionSettings& settings) noexcept;
/// The same as FindSegmentIntersections for every segment in table order: the same records in the same order,
/// but only segments whose boxes meet are compared. O((n + pairs whose boxes meet) log n). False when memory
/// ran out.
LUMO_API bool FindAllIntersections(SegmentIntersectionTable& table,
                                   const SegmentIntersectionSettings& settings) noexcept;

}  // namespace Lumo
