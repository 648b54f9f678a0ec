#include "math/cubic/overlap.h"

#include <algorithm>
#include <cmath>

#include "math/roots.h"
#include "math/tolerances.h"

namespace TavMath {
namespace {

using namespace Tolerances;
using Pieces::MayTouch;
using Pieces::Piece;

struct EndContact {
  double ta, tb;
};

/// Newton steps from t towards a foot of q on the curve, inside [low, high]; a step that leads away is
/// shortened. Returns the distance.
double RefineFoot(const DPoint p[4], const DPoint& q, double low, double high, double& t) {
  constexpr int kSteps = 24;
  DVector d;
  DVector r = EvaluateBoth(p, t, d) - q;
  double best = LengthSqrd(r), shorten = 1;
  for (int step = 0; step < kSteps; ++step) {
    const double speed = LengthSqrd(d);
    const double bend = speed + Dot(r, CubicBezier::SecondDerivative(p, t));
    const double slope = bend > 0.25 * speed ? bend : speed;
    if (!(slope > 0)) break;
    const double next = std::clamp(t - shorten * Dot(r, d) / slope, low, high);
    if (std::abs(next - t) <= kEpsilon) break;
    DVector nextD;
    const DVector nextR = EvaluateBoth(p, next, nextD) - q;
    const double distance = LengthSqrd(nextR);
    if (!(distance < best)) {
      shorten *= 0.25;
      continue;
    }
    t = next, r = nextR, d = nextD, best = distance, shorten = 1;
  }
  return std::sqrt(best);
}

/// The parameters at which the curve passes within the gap of q: one, or several at a double point.
int FindFeet(const DPoint p[4], const DPoint& q, double gap, double t[3]) {
  double nearest, distanceSqrd;
  DPoint point;
  if (!CubicBezier::FindClosestPointOnBezier(p, q, nearest, point, distanceSqrd)) return 0;
  if (!(distanceSqrd <= gap * gap)) return 0;
  t[0] = nearest;
  int count = 1;
  const CubicBezier::ClosestPointsOnBezier ties = CubicBezier::FindClosestPointsOnBezier(p, q);
  for (int k = 0; k < ties.count && count < 3; ++k) {
    if (std::abs(ties.t[k] - t[count - 1]) > kMergeWindow && std::abs(ties.t[k] - t[0]) > kMergeWindow) {
      t[count++] = ties.t[k];
    }
  }
  return count;
}

/// Whether the curves run together between two contacts.
bool RunTogether(const CubicPair& pair, const EndContact& u, const EndContact& v, double size) {
  constexpr int kSamples = 16;
  const double low = std::min(u.tb, v.tb), high = std::max(u.tb, v.tb);
  double length = 0, widest = 0;
  DVector unused;
  DPoint last = EvaluateBoth(pair.a, u.ta, unused);
  for (int k = 1; k <= kSamples; ++k) {
    const double share = k / static_cast<double>(kSamples);
    const DPoint q = EvaluateBoth(pair.a, u.ta + share * (v.ta - u.ta), unused);
    length += Distance(last, q);
    last = q;
    double foot = u.tb + share * (v.tb - u.tb);
    double gap = RefineFoot(pair.b, q, low, high, foot);
    if (gap > kSharedNoise * size) {
      // The parameters do not keep step: look everywhere.
      double feet[3];
      const int count = FindFeet(pair.b, q, kSharedNoise * size, feet);
      bool inside = false;
      for (int n = 0; n < count; ++n)
        inside = inside || (feet[n] >= low - kMergeWindow && feet[n] <= high + kMergeWindow);
      if (!inside) return false;
      gap = kSharedNoise * size;
    }
    widest = std::max(widest, gap);
  }
  const double share = length / size;
  if (share < kShortestStretch) return false;
  return widest <= std::max(kContactGap, kSharedShare * share * share * share * share * size);
}

// --- both on one line ---

/// The line through the two farthest control points, when all lie within the gap of it.
bool IsStraight(const DPoint p[4], double gap, DPoint& start, DVector& axis) {
  double longest = 0;
  for (int i = 0; i < 4; ++i) {
    for (int j = i + 1; j < 4; ++j) {
      const double d = LengthSqrd(p[j] - p[i]);
      if (d > longest) longest = d, start = p[i], axis = p[j] - p[i];
    }
  }
  if (!(longest > 0)) return false;
  axis = (1 / std::sqrt(longest)) * axis;
  for (int i = 0; i < 4; ++i) {
    if (std::abs(Cross(axis, p[i] - start)) > gap) return false;
  }
  return true;
}

/// False when the control points are certainly not on one line within the gap: they span a triangle of more
/// area than a strip of that width can hold.
bool MayBeStraight(const DPoint p[4], double gap) {
  const DVector u = p[1] - p[0], v = p[2] - p[0], w = p[3] - p[0];
  const double limit = 8 * gap;  // legs are shorter than 2 in the pair's frame
  return std::abs(Cross(u, v)) <= limit && std::abs(Cross(u, w)) <= limit && std::abs(Cross(v, w)) <= limit;
}

/// A straight cubic as its positions along the line, with the range that it covers.
struct Track {
  double c[4];
  double low, high, lowT, highT;
  Track(const DPoint p[4], const DPoint& start, const DVector& axis) {
    for (int k = 0; k < 4; ++k) c[k] = Dot(axis, p[k] - start);
    low = high = c[0], lowT = highT = 0;
    const double slope[3] = {c[1] - c[0], c[2] - c[1], c[3] - c[2]};
    double t[3];
    int count = Roots::SolveQuadratic(slope, t);
    t[count++] = 1;
    for (int k = 0; k < count; ++k) {
      double unused;
      const double x = Roots::Evaluate(c, 3, t[k], unused);
      if (x < low) low = x, lowT = t[k];
      if (x > high) high = x, highT = t[k];
    }
  }
  double ParameterAt(double x) const {
    if (x <= low) return lowT;
    if (x >= high) return highT;
    const double shifted[4] = {c[0] - x, c[1] - x, c[2] - x, c[3] - x};
    double t[3];
    if (Roots::SolveCubic(shifted, t) > 0) return t[0];
    return std::abs(c[0] - x) < std::abs(c[3] - x) ? 0 : 1;
  }
};

/// Whether the curves touch at the parameters, not only across the width that both have on their line.
bool AreInContact(const CubicPair& pair, const Crossing& at) {
  DVector unused;
  const DVector gap = EvaluateBoth(pair.a, at.ta, unused) - EvaluateBoth(pair.b, at.tb, unused);
  return std::max(std::abs(gap.x), std::abs(gap.y)) <= kContactGap;
}

}  // namespace

Sharing CompareOnLine(const CubicPair& pair, const DPoint& start, const DVector& axis,
                      Crossing ends[2]) noexcept {
  const Track a(pair.a, start, axis), b(pair.b, start, axis);
  const double low = std::max(a.low, b.low), high = std::min(a.high, b.high);
  if (low > high + kContactGap) return Sharing::apart;
  const auto at = [&](double x) {
    const double ta = a.ParameterAt(x), tb = b.ParameterAt(x);
    return Crossing{ta, tb, ContactPoint(pair, ta, tb)};
  };
  ends[0] = at(low);
  if (high - low <= kContactGap) return AreInContact(pair, ends[0]) ? Sharing::contact : Sharing::no;
  ends[1] = at(high);
  if (ends[1].ta < ends[0].ta) std::swap(ends[0], ends[1]);
  return Sharing::stretch;
}

namespace {

/// Both lie on one line within the gap: then nothing can be isolated and the ranges that they cover decide.
bool AreOnOneLine(const CubicPair& pair, bool aIsLonger, double gap, DPoint& start, DVector& axis) {
  if (!MayBeStraight(pair.a, gap) || !MayBeStraight(pair.b, gap)) return false;
  const DPoint* longer = aIsLonger ? pair.a : pair.b;
  const DPoint* other = aIsLonger ? pair.b : pair.a;
  return IsStraight(longer, gap, start, axis) && std::all_of(other, other + 4, [&](const DPoint& p) {
           return std::abs(Cross(axis, p - start)) <= gap;
         });
}

/// The ends of either curve that lie on the other within the gap.
int FindEndContacts(const CubicPair& pair, const Piece& wholeA, const Piece& wholeB, double gap,
                    EndContact found[12]) {
  constexpr int kLooks = 5;
  bool maybe[2][2];
  int left = 0;
  for (int end = 0; end < 2; ++end) {
    left += maybe[0][end] = MayTouch(wholeB, pair.a[3 * end], gap);
    left += maybe[1][end] = MayTouch(wholeA, pair.b[3 * end], gap);
  }
  int count = 0;
  for (int side = 0; side < 2; ++side) {
    const DPoint* own = side == 0 ? pair.a : pair.b;
    const DPoint* other = side == 0 ? pair.b : pair.a;
    for (int end = 0; end < 2; ++end) {
      // A stretch has two ends.
      if (count + left < 2) return 0;
      if (!maybe[side][end]) continue;
      --left;
      if (!MayTouch(side == 0 ? wholeB : wholeA, own[3 * end], gap, kLooks)) continue;
      double feet[3];
      const int n = FindFeet(other, own[3 * end], gap, feet);
      for (int k = 0; k < n; ++k) {
        found[count++] = side == 0 ? EndContact{static_cast<double>(end), feet[k]}
                                   : EndContact{feet[k], static_cast<double>(end)};
      }
    }
  }
  return count;
}

}  // namespace

Sharing FindSharedStretch(const CubicPair& pair, const Piece& wholeA, const Piece& wholeB,
                          Crossing ends[2]) noexcept {
  const double size = std::min(wholeA.Extent(), wholeB.Extent());
  const double gap = std::max(kSharedNoise * size, kContactGap);
  DPoint start;
  DVector axis;
  if (AreOnOneLine(pair, wholeA.Extent() >= wholeB.Extent(), gap, start, axis)) {
    return CompareOnLine(pair, start, axis, ends);
  }
  EndContact found[12];
  const int count = FindEndContacts(pair, wholeA, wholeB, gap, found);
  const EndContact* best[2] = {nullptr, nullptr};
  double longest = 0;
  for (int i = 0; i < count; ++i) {
    for (int j = i + 1; j < count; ++j) {
      const double reach = std::abs(found[i].ta - found[j].ta);
      if (reach <= longest || found[i].tb == found[j].tb) continue;
      if (!RunTogether(pair, found[i], found[j], size)) continue;
      longest = reach;
      best[0] = &found[i], best[1] = &found[j];
    }
  }
  if (!best[0]) return Sharing::no;
  for (int k = 0; k < 2; ++k) {
    ends[k] = {best[k]->ta, best[k]->tb, ContactPoint(pair, best[k]->ta, best[k]->tb)};
  }
  return Sharing::stretch;
}

}  // namespace TavMath
