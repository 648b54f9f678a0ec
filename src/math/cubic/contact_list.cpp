#include "math/cubic/contact_list.h"

#include <algorithm>
#include <cmath>

#include "math/tolerances.h"

namespace TavMath {
namespace {

using namespace Tolerances;

/// Moves a parameter on 0 or 1 when the curve from there to that end is shorter than the contact distance.
double SnapToEnd(const DPoint p[4], double t) {
  if (t == 0 || t == 1) return t;
  DVector unused;
  const DPoint at = EvaluateBoth(p, t, unused);
  const DPoint& end = t < 0.5 ? p[0] : p[3];
  return std::max(std::abs(at.x - end.x), std::abs(at.y - end.y)) <= kContactGap ? (t < 0.5 ? 0 : 1) : t;
}

/// How far the gap reaches across a direction.
double Across(const DVector& direction, const DVector& gap) {
  const double length = Length(direction);
  return length > 0 ? std::abs(Cross(direction, gap)) / length : Length(gap);
}

}  // namespace

void ContactList::Add(double ta, double tb, ContactKind kind) noexcept {
  for (int k = 0; k < count_; ++k) {
    Contact& other = at_[k];
    if (std::abs(other.ta - ta) > kSameParameter || std::abs(other.tb - tb) > kSameParameter) continue;
    if (kind > other.kind) other = {ta, tb, kind};
    return;
  }
  if (count_ < kRoom) at_[count_++] = {ta, tb, kind};
}

bool ContactList::IsSame(const Contact& a, const Contact& b) const noexcept {
  DVector unused;
  const DPoint first = EvaluateBoth(pair_.a, a.ta, unused), second = EvaluateBoth(pair_.a, b.ta, unused);
  if (std::max(std::abs(first.x - second.x), std::abs(first.y - second.y)) > kMergeReach) return false;
  DVector u, v;
  const DPoint p = EvaluateBoth(pair_.a, 0.5 * (a.ta + b.ta), u);
  const DPoint q = EvaluateBoth(pair_.b, 0.5 * (a.tb + b.tb), v);
  const DVector gap = p - q;
  // Across either curve: at a cusp the way from one branch to the other runs along the tangent of one of
  // them.
  const double across = std::max(Across(u, gap), Across(v, gap));
  return across <= 2 * kContactGap;
}

void ContactList::Finish(Crossings& out) noexcept {
  for (int k = 0; k < count_; ++k) {
    at_[k].ta = SnapToEnd(pair_.a, at_[k].ta);
    at_[k].tb = SnapToEnd(pair_.b, at_[k].tb);
  }
  std::sort(at_, at_ + count_,
            [](const Contact& a, const Contact& b) { return a.ta < b.ta || (a.ta == b.ta && a.tb < b.tb); });
  int kept = 0;
  for (int k = 0; k < count_; ++k) {
    bool merged = false;
    for (int m = kept - 1; m >= 0 && !merged; --m) {
      if (!(merged = IsSame(at_[m], at_[k]))) continue;
      if (at_[k].kind > at_[m].kind) at_[m] = at_[k];
    }
    if (!merged) at_[kept++] = at_[k];
  }
  count_ = kept;
  out.count = 0;
  for (int k = 0; k < count_ && k < static_cast<int>(out.at.size()); ++k) {
    out.at[static_cast<std::size_t>(out.count++)] = {at_[k].ta, at_[k].tb,
                                                     ContactPoint(pair_, at_[k].ta, at_[k].tb)};
  }
}

}  // namespace TavMath
