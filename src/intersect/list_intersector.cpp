#include <atomic>
#include <cmath>
#include <new>
#include <optional>

#include "intersect/tolerances.h"
#include "lumo/polycurve_intersector.h"
#include "tav/math/cubic_bezier.h"
#include "tav/utils/rw_lock.h"

namespace Lumo {

using TavMath::DPoint;
using TavMath::DVector;

/// The parameters that a routine finds, in the order of its own two segments.
struct CPolyCurveIntersector::Hits {
  static constexpr std::size_t kRoom = 12;
  std::array<double, kRoom> ta, tb;
  std::size_t count = 0;
  void Add(double a, double b) {
    if (count < kRoom) ta[count] = a, tb[count] = b, ++count;
  }
};

namespace {

bool IsOnExtent(double t, LineExtent extent) {
  const bool start = extent == LineExtent::segment || extent == LineExtent::openEnd;
  const bool end = extent == LineExtent::segment || extent == LineExtent::openStart;
  return (!start || t >= 0) && (!end || t <= 1) && std::isfinite(t);
}

}  // namespace

const CPolyCurveIntersector& CPolyCurveIntersector::Instance() noexcept {
  static TavUtils::ThreadLock lock;
  struct Holder {
    CPolyCurveIntersector value;
  };
  static std::optional<Holder> owner;
  static std::atomic<const CPolyCurveIntersector*> ready{nullptr};
  // Acquire pairs with the release below: whoever sees the pointer sees the map that it points at.
  if (const auto* made = ready.load(std::memory_order_acquire)) return *made;
  const TavUtils::WriteLock writing(lock);
  if (const auto* made = ready.load(std::memory_order_acquire)) return *made;
  owner.emplace();
  ready.store(&owner->value, std::memory_order_release);
  return owner->value;
}

CPolyCurveIntersector::CPolyCurveIntersector() noexcept
    : map_{{{{{&LineLine, false}, {&LineCurve, false}}}, {{{&LineCurve, true}, {&CurveCurve, false}}}}} {}

const CPolyCurveIntersector::Entry& CPolyCurveIntersector::Find(int kindA, int kindB) const noexcept {
  return map_[kindA == CSegment::kLine ? 0 : 1][kindB == CSegment::kLine ? 0 : 1];
}

bool CPolyCurveIntersector::LineLine(const CSegment& a, const CSegment& b, Hits& hits) {
  const DVector da = a.EndPoint() - a.StartPoint(), db = b.EndPoint() - b.StartPoint();
  const DVector w = a.StartPoint() - b.StartPoint();
  const double denominator = TavMath::Cross(da, db);
  if (denominator == 0) return false;
  const double ta = TavMath::Cross(db, w) / denominator, tb = TavMath::Cross(da, w) / denominator;
  if (IsOnExtent(ta, a.Extent()) && IsOnExtent(tb, b.Extent())) hits.Add(ta, tb);
  return hits.count > 0;
}

bool CPolyCurveIntersector::LineCurve(const CSegment& line, const CSegment& curve, Hits& hits) {
  const auto found =
      TavMath::CubicBezier::IntersectBezierLine(curve.Points(), line.StartPoint(), line.EndPoint(), true);
  for (std::size_t k = 0; k < static_cast<std::size_t>(found.count); ++k) {
    if (IsOnExtent(found.at[k].tb, line.Extent())) hits.Add(found.at[k].tb, found.at[k].ta);
  }
  return hits.count > 0;
}

bool CPolyCurveIntersector::CurveCurve(const CSegment& a, const CSegment& b, Hits& hits) {
  const auto found = TavMath::CubicBezier::IntersectBeziers(a.Points(), b.Points());
  for (std::size_t k = 0; k < static_cast<std::size_t>(found.count); ++k)
    hits.Add(found.at[k].ta, found.at[k].tb);
  return hits.count > 0;
}

std::vector<std::vector<SegmentListHit>> CPolyCurveIntersector::Intersect(
    const CSegmentList& a, const CSegmentList& b) const noexcept {
  try {
    std::vector<std::vector<SegmentListHit>> result(a.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
      // Segment 0 never ends the search: a list may touch the other where it starts.
      if (i >= 2 && !result[i - 1].empty()) break;
      for (std::size_t j = 0; j < b.size(); ++j) {
        const Entry& entry = Find(a[i].Kind(), b[j].Kind());
        Hits hits;
        if (!entry.routine(entry.swap ? b[j] : a[i], entry.swap ? a[i] : b[j], hits)) continue;
        for (std::size_t k = 0; k < hits.count; ++k) {
          const double ta = entry.swap ? hits.tb[k] : hits.ta[k], tb = entry.swap ? hits.ta[k] : hits.tb[k];
          const double distance = i == 0 ? std::abs(1 - ta) : std::abs(static_cast<double>(i) + ta - 1);
          if (i == 0 && j == 0 && distance > IntersectTolerances::kFirstPairReach && ta <= 1 && tb <= 1)
            continue;
          result[i].push_back({ta, tb, distance, j});
        }
      }
    }
    return result;
  } catch (const std::bad_alloc&) {
    return {};
  }
}

}  // namespace Lumo
