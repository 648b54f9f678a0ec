// Which segments are compared, and what is written down.

#include <algorithm>
#include <new>
#include <vector>

#include "intersect/box_tree.h"
#include "intersect/record.h"
#include "intersect/segment_pair.h"
#include "lumo/curve_segment.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo {
namespace {

using Box = TavMath::BoundsT<double>;

bool IsCurve(const SegmentIntersections& segment) {
  return segment.SegmentType() == SegmentIntersections::Type::curve;
}

/// The entry of a segment's path, or null when the id is none.
const CurveEntry* EntryOf(const SegmentIntersectionTable& table, const SegmentIntersections& segment) {
  const int id = segment.GetCurveID();
  if (id < 0 || static_cast<std::size_t>(id) >= table.Curves().size()) return nullptr;
  return &table.Curves()[static_cast<std::size_t>(id)];
}

/// One segment of the outer loop against others of its table.
class SegmentComparer {
 public:
  SegmentComparer(std::size_t i, SegmentIntersectionTable& table, const SegmentIntersectionSettings& settings)
      : i_(i), table_(table), settings_(settings), margin_(PairMargin(settings)) {
    const SegmentIntersections& segment = table.Segments()[i];
    own_ = {table.SegmentPoints(segment), IsCurve(segment)};
    if (own_.p) box_ = GrownBox(own_, margin_);
  }

  static Box GrownBox(const PairSegment& segment, double margin) {
    Box box = segment.Box();
    if (!box.IsEmpty()) box.Inflate(margin, margin);
    return box;
  }

  /// A zero-length segment, or one without points, meets nothing.
  bool TakesPart() const { return own_.p && !table_.Segments()[i_].IsZeroLength(); }

  /// The loop of a cubic, when its path's own crossings are wanted. A curve that only closes on its own node
  /// has none.
  bool RecordLoop() {
    const CurveEntry* entry = EntryOf(table_, table_.Segments()[i_]);
    if (!own_.isCurve || !entry || !entry->selfIntersectionsWanted) return true;
    double t0, t1;
    DPoint point;
    if (!TavMath::CubicBezier::FindBezierSelfIntersection(own_.p, t0, t1, point)) return true;
    if (t0 == 0 && t1 == 1) return true;
    return Add(own_, own_, i_, i_, {t0, t1, point, false, -1}) != nullptr;
  }

  /// Whether the pair is looked at in the turn of the own segment.
  bool IsWanted(std::size_t j) const {
    if (j == i_) return false;
    const SegmentIntersections& one = table_.Segments()[i_];
    const SegmentIntersections& other = table_.Segments()[j];
    const CurveEntry* entry = EntryOf(table_, other);
    if (entry && entry->pairOnce && j <= i_) return false;
    if (other.IsZeroLength()) return false;
    if (other.GetCurveID() == one.GetCurveID()) return entry && entry->selfIntersectionsWanted;
    return true;
  }

  bool BoxesMeet(std::size_t j) const {
    const SegmentIntersections& other = table_.Segments()[j];
    const PairSegment b{table_.SegmentPoints(other), IsCurve(other)};
    return b.p && box_.Overlaps(GrownBox(b, margin_));
  }

  /// Records what a wanted pair whose boxes meet has in common. False when memory runs out.
  bool Compare(std::size_t j) {
    const SegmentIntersections& other = table_.Segments()[j];
    const PairSegment b{table_.SegmentPoints(other), IsCurve(other)};
    // Of a line and a curve, the line comes first.
    const bool swap = own_.isCurve && !b.isCurve;
    const Adjacency adjacency = AdjacencyOf(other, swap);
    PairContacts found;
    if (swap) {
      IntersectPair(b, own_, adjacency, settings_, found);
      return Record(b, own_, j, i_, found);
    }
    IntersectPair(own_, b, adjacency, settings_, found);
    return Record(own_, b, i_, j, found);
  }

 private:
  Adjacency AdjacencyOf(const SegmentIntersections& other, bool swap) const {
    const bool follows = other.PrevSegment() == static_cast<int>(i_);
    const bool precedes = other.NextSegment() == static_cast<int>(i_);
    if (follows && precedes) return Adjacency::both;
    if (!follows && !precedes) return Adjacency::none;
    return follows != swap ? Adjacency::bFollowsA : Adjacency::aFollowsB;
  }

  Intersection* Add(const PairSegment& a, const PairSegment& b, std::size_t ia, std::size_t ib,
                    const PairContact& contact) {
    const RecordSides sides{
        contact.ta,   static_cast<int>(ia), a.Tangent(contact.ta), a.Curvature(contact.ta),
        contact.tb,   static_cast<int>(ib), b.Tangent(contact.tb), b.Curvature(contact.tb),
        contact.point};
    return IntersectionRecorder::AddPair(sides, table_, settings_.GetNormalizeDirVectors(), contact.touch);
  }

  bool Record(const PairSegment& a, const PairSegment& b, std::size_t ia, std::size_t ib,
              const PairContacts& found) {
    Intersection* records[PairContacts::kRoom];
    for (int k = 0; k < found.count; ++k) {
      records[k] = Add(a, b, ia, ib, found.at[k]);
      if (!records[k]) return false;
      const int overlap = found.at[k].overlap;
      if (overlap < 0 || overlap >= k) continue;
      // Both ends know each other, on both segments.
      records[k]->SetOverlapPartner(records[overlap]);
      records[overlap]->SetOverlapPartner(records[k]);
    }
    return true;
  }

  std::size_t i_;
  SegmentIntersectionTable& table_;
  const SegmentIntersectionSettings& settings_;
  double margin_;
  PairSegment own_;
  Box box_;
};

}  // namespace

const DPoint* SegmentIntersectionTable::SegmentPoints(const SegmentIntersections& segment) const noexcept {
  const CurveEntry* entry = EntryOf(*this, segment);
  const int start = segment.SegmentStart();
  const int reach = IsCurve(segment) ? 3 : 1;
  if (!entry || !entry->points || start < 0 || entry->count - reach <= start) return nullptr;
  return entry->points + start;
}

int SegmentIntersectionTable::AddCurve(const DPoint* points, const NODETYPE* types, int count, bool pairOnce,
                                       bool selfIntersectionsWanted) noexcept {
  if (!points || !types) return -1;
  const std::size_t before = segments_.size();
  try {
    const int id = static_cast<int>(curves_.size());
    CurveEntry entry;
    entry.points = points;
    entry.nodes = types;
    entry.count = count;
    entry.pairOnce = pairOnce;
    entry.selfIntersectionsWanted = selfIntersectionsWanted;
    std::size_t first = before;  // of the subpath
    bool open = false;           // a start node has been seen
    const auto finish = [&](int end) {
      if (!open || segments_.size() == first || !types[end].IsClosed()) return;
      segments_.back().SetNextSegment(static_cast<int>(first));
      segments_[first].SetPrevSegment(static_cast<int>(segments_.size()) - 1);
    };
    int last = -1;  // the last on-curve node
    for (int i = 0; i < count; ++i) {
      const NODETYPE type = types[i];
      if (type.IsMove()) {
        if (last >= 0) finish(last);
        first = segments_.size();
        open = true;
        last = i;
        continue;
      }
      const bool curve = type.IsCurve();
      if (type.IsControl() || !open) continue;
      const int start = i - (curve ? 3 : 1);
      if (start < 0 || start != last || (curve && !(types[i - 1].IsControl() && types[i - 2].IsControl())))
        continue;
      const int index = static_cast<int>(segments_.size());
      const bool hasPrevious = segments_.size() > first;
      bool zero = true;
      for (int k = start + 1; k <= i; ++k) zero = zero && points[k] == points[start];
      segments_.emplace_back(start, id, -1, index, hasPrevious ? index - 1 : -1, zero,
                             curve ? SegmentIntersections::Type::curve : SegmentIntersections::Type::line);
      if (hasPrevious) segments_[segments_.size() - 2].SetNextSegment(index);
      last = i;
    }
    if (last >= 0) finish(last);
    curves_.push_back(std::move(entry));
    return id;
  } catch (const std::bad_alloc&) {
    while (segments_.size() > before) segments_.pop_back();
    return -1;
  }
}

bool FindSegmentIntersections(int segment, SegmentIntersectionTable& table,
                              const SegmentIntersectionSettings& settings) noexcept {
  if (segment < 0 || static_cast<std::size_t>(segment) >= table.Segments().size()) return false;
  SegmentComparer comparer(static_cast<std::size_t>(segment), table, settings);
  if (!comparer.TakesPart()) return true;
  if (!comparer.RecordLoop()) return false;
  for (std::size_t j = 0; j < table.Segments().size(); ++j) {
    if (comparer.IsWanted(j) && comparer.BoxesMeet(j) && !comparer.Compare(j)) return false;
  }
  return true;
}

bool FindAllIntersections(SegmentIntersectionTable& table,
                          const SegmentIntersectionSettings& settings) noexcept {
  try {
    const double margin = PairMargin(settings);
    const std::size_t count = table.Segments().size();
    std::vector<Box> boxes(count);
    for (std::size_t k = 0; k < count; ++k) {
      const SegmentIntersections& segment = table.Segments()[k];
      const PairSegment geometry{table.SegmentPoints(segment), IsCurve(segment)};
      if (geometry.p && !segment.IsZeroLength()) boxes[k] = SegmentComparer::GrownBox(geometry, margin);
    }
    const BoxTree tree(boxes);
    std::vector<std::size_t> others;
    for (std::size_t i = 0; i < count; ++i) {
      SegmentComparer comparer(i, table, settings);
      if (!comparer.TakesPart()) continue;
      if (!comparer.RecordLoop()) return false;
      others.clear();
      tree.Visit(boxes[i], [&](std::size_t j) {
        if (comparer.IsWanted(j)) others.push_back(j);
      });
      std::sort(others.begin(), others.end());
      for (const std::size_t j : others) {
        if (!comparer.Compare(j)) return false;
      }
    }
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace Lumo
