#include "intersect/record.h"

#include <algorithm>
#include <new>
#include <utility>

namespace Lumo {

SegmentIntersections::SegmentIntersections(int segmentStart, int curveId, int nextSegment, int thisSegment,
                                           int prevSegment, bool zeroLength, Type type) noexcept
    : segmentStart_(segmentStart),
      curveId_(curveId),
      next_(nextSegment),
      this_(thisSegment),
      previous_(prevSegment),
      zeroLength_(zeroLength),
      type_(type) {}

SegmentIntersections::SegmentIntersections(SegmentIntersections&& other) noexcept
    : segmentStart_(other.segmentStart_),
      curveId_(other.curveId_),
      next_(other.next_),
      this_(other.this_),
      previous_(other.previous_),
      zeroLength_(other.zeroLength_),
      records_(std::exchange(other.records_, {})),
      type_(other.type_),
      valid_(other.valid_),
      sides_(other.sides_),
      cookie_(other.cookie_) {}

SegmentIntersections& SegmentIntersections::operator=(SegmentIntersections&& other) noexcept {
  if (this == &other) return *this;
  DeleteRecords();
  segmentStart_ = other.segmentStart_;
  curveId_ = other.curveId_;
  next_ = other.next_;
  this_ = other.this_;
  previous_ = other.previous_;
  zeroLength_ = other.zeroLength_;
  records_ = std::exchange(other.records_, {});
  type_ = other.type_;
  valid_ = other.valid_;
  sides_ = other.sides_;
  cookie_ = other.cookie_;
  return *this;
}

SegmentIntersections::~SegmentIntersections() { DeleteRecords(); }

void SegmentIntersections::DeleteRecords() noexcept {
  for (Intersection*& record : records_) delete std::exchange(record, nullptr);
  records_.clear();
}

Intersection* SegmentIntersections::AddIntersection(const Intersection& record) noexcept {
  Intersection* copy = new (std::nothrow) Intersection(record);
  if (!copy) return nullptr;
  try {
    records_.push_back(copy);
  } catch (const std::bad_alloc&) {
    delete copy;
    return nullptr;
  }
  return copy;
}

void SegmentIntersections::KillIntersection(Intersection* record) noexcept {
  const auto at = std::find(records_.begin(), records_.end(), record);
  if (at != records_.end()) records_.erase(at);
}

int SegmentIntersections::GetIndex(const Intersection* record) const noexcept {
  const auto at = std::find(records_.begin(), records_.end(), record);
  return at == records_.end() ? -1 : static_cast<int>(at - records_.begin());
}

void SegmentIntersections::Sort() noexcept {
  std::sort(records_.begin(), records_.end(),
            [](const Intersection* a, const Intersection* b) { return *a < *b; });
}

bool CurveEntry::Crosses(int curveId) const noexcept {
  return std::binary_search(crossedCurves.begin(), crossedCurves.end(), curveId);
}

namespace {

/// False when memory runs out.
bool NoteCrossing(SegmentIntersectionTable& table, int curve, int other) noexcept {
  if (curve < 0 || static_cast<std::size_t>(curve) >= table.Curves().size()) return true;
  std::vector<int>& crossed = table.Curves()[static_cast<std::size_t>(curve)].crossedCurves;
  const auto at = std::lower_bound(crossed.begin(), crossed.end(), other);
  if (at != crossed.end() && *at == other) return true;
  try {
    crossed.insert(at, other);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

void Detach(Intersection* record) noexcept {
  if (Intersection* overlap = record->GetOverlapPartner()) {
    if (overlap->GetOverlapPartner() == record) overlap->SetOverlapPartner(nullptr);
    record->SetOverlapPartner(nullptr);
  }
}

}  // namespace

Intersection* IntersectionRecorder::AddPair(const RecordSides& sides, SegmentIntersectionTable& table,
                                            bool normalize, bool touch) noexcept {
  // A direction too short to have a length stays as it is.
  const auto direction = [&](const DVector& d) { return normalize ? TavMath::Normalized(d) : d; };
  SegmentIntersections& onA = table.Segments()[static_cast<std::size_t>(sides.segmentA)];
  SegmentIntersections& onB = table.Segments()[static_cast<std::size_t>(sides.segmentB)];
  if (!NoteCrossing(table, onA.GetCurveID(), onB.GetCurveID()) ||
      !NoteCrossing(table, onB.GetCurveID(), onA.GetCurveID())) {
    return nullptr;
  }
  Intersection* a = onA.AddIntersection(
      Intersection(sides.timeA, sides.segmentA, sides.point, direction(sides.directionA), sides.curvatureA));
  if (!a) return nullptr;
  Intersection* b = onB.AddIntersection(
      Intersection(sides.timeB, sides.segmentB, sides.point, direction(sides.directionB), sides.curvatureB));
  if (!b) {
    onA.KillIntersection(a);
    delete a;
    return nullptr;
  }
  a->SetIntersectionPartner(b);
  b->SetIntersectionPartner(a);
  a->SetTouch(touch);
  b->SetTouch(touch);
  table.SetFoundAnything(true);
  return a;
}

void IntersectionRecorder::RemovePair(Intersection* record, SegmentIntersectionTable& table) noexcept {
  Intersection* const both[] = {record, record->GetPartner()};
  for (Intersection* r : both) {
    if (!r) continue;
    Detach(r);
    const int segment = r->SegmentID();
    if (segment >= 0 && static_cast<std::size_t>(segment) < table.Segments().size()) {
      table.Segments()[static_cast<std::size_t>(segment)].KillIntersection(r);
    }
  }
  delete both[1];
  delete both[0];
}

}  // namespace Lumo
