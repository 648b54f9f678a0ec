#include <algorithm>
#include <bit>
#include <cmath>

#include "math/cubic/distance_slope.h"
#include "math/tolerances.h"
#include "tav/math/cubic_bezier.h"

namespace TavMath::CubicBezier {
namespace {

// With V = P - query, the squared distance D(t) = |B(t) - query|^2 has the derivative 6 g(t), where
// g = (B - query) . (B' / 3) is a quintic. In Bernstein form the coefficients of D (degree 6) differ by those
// of g, so D over a piece is bounded below by running sums of g: pieces that cannot hold the minimum are
// dropped without forming D, and its common part |V|^2, which would cancel, never enters. A piece in which g
// changes its sign once, from falling to rising distance, holds one minimum.
struct Piece {
  double g[6];
  double start, width;
  double rise;  ///< D(start) - D(0)
};

struct Candidate {
  double t;
  DPoint point;
};

/// The candidates in rising order of their parameters: both ends and at most three minima; pieces at the
/// least width may repeat one.
struct Candidates {
  Candidate at[8];
  int count = 0;
  double unit = 1;  ///< a power of two that brings distances near 1
  void Add(double t, const DPoint& point) {
    if (count < 8) at[count++] = {t, point};
  }
  /// The sign of D(a) - D(b) without the part that both share, which would hide the difference of far points,
  /// and without a common reference, which would hide that of near ones.
  double Difference(const DPoint& a, const DPoint& b, const DPoint& query) const {
    return Dot(unit * (a - b), unit * (a - query) + unit * (b - query));
  }
  /// The nearest; the first of equally near ones.
  const Candidate& Nearest(const DPoint& query) const {
    const Candidate* best = &at[0];
    for (int k = 1; k < count; ++k) {
      if (Difference(at[k].point, best->point, query) < 0) best = &at[k];
    }
    return *best;
  }
};

/// Bit k: the sign of g[k]. A zero counts as positive, which can only add sign changes.
unsigned Signs(const double g[6]) {
  unsigned signs = 0;
  for (unsigned k = 0; k < 6; ++k) signs |= static_cast<unsigned>(g[k] < 0) << k;
  return signs;
}

/// The root in [0, 1] of a quintic with one sign change, from negative to positive. Newton steps in power
/// form from the crossing of the control polygon, kept inside a shrinking bracket. `flat` is set where the
/// slope all but vanishes at the root, so that rounding alone decides its last digits.
double RisingRoot(const double g[6], unsigned signs, bool& flat) {
  const int before = std::countr_one(signs) - 1;  // the last negative coefficient
  double t = (before + g[before] / (g[before] - g[before + 1])) * 0.2;
  // Forward differences: the power form of the piece.
  const double d0 = g[1] - g[0], d1 = g[2] - g[1], d2 = g[3] - g[2], d3 = g[4] - g[3], d4 = g[5] - g[4];
  const double e0 = d1 - d0, e1 = d2 - d1, e2 = d3 - d2, e3 = d4 - d3;
  const double f0 = e1 - e0, f1 = e2 - e1, f2 = e3 - e2;
  const double h0 = f1 - f0, h1 = f2 - f1;
  const double a[6] = {g[0], 5 * d0, 10 * e0, 10 * f0, 5 * h0, h1 - h0};
  const double b[5] = {a[1], 2 * a[2], 3 * a[3], 4 * a[4], 5 * a[5]};
  const double flatSlope = Tolerances::kFlatRootSlope * std::max(std::abs(g[0]), std::abs(g[5]));
  double low = 0, high = 1;
  for (int step = 0; step < Tolerances::kMaxRootSteps; ++step) {
    // Grouped by pairs: half the chain of dependent operations of Horner's rule.
    const double tt = t * t;
    const double value = (a[0] + t * a[1]) + tt * ((a[2] + t * a[3]) + tt * (a[4] + t * a[5]));
    const double slope = (b[0] + t * b[1]) + tt * ((b[2] + t * b[3]) + tt * b[4]);
    (value < 0 ? low : high) = t;
    flat = std::abs(slope) < flatSlope;
    double next = t - value / slope;
    if (std::abs(next - t) <= Tolerances::kClosestParameter) return std::clamp(next, low, high);
    if (!(next > low && next < high)) {
      next = 0.5 * (low + high);
      if (!(next > low && next < high)) return t;
    }
    t = next;
  }
  return t;
}

/// A minimum at a cusp is a triple root of the slope, one where the query lies on a point of no speed a
/// fivefold one, and the quintic's rounding hides them. The slope formed from the curve itself loses no
/// digits there, since both its factors vanish: bisection on its sign. Never farther from the query than t
/// was.
double BisectFlatRoot(const DPoint p[4], const DPoint& query, double t) {
  const auto falls = [&](double at) { return Dot(Evaluate(p, at) - query, Derivative(p, at)) < 0; };
  const double rough = t;
  double low = std::max(t - Tolerances::kFlatRootReach, 0.0),
         high = std::min(t + Tolerances::kFlatRootReach, 1.0);
  if (!falls(low) || falls(high)) return t;
  for (int step = 0; step < Tolerances::kMaxRootSteps && high - low > Tolerances::kEpsilon; ++step) {
    const double middle = 0.5 * (low + high);
    (falls(middle) ? low : high) = middle;
  }
  return DistanceSqrd(Evaluate(p, high), query) <= DistanceSqrd(Evaluate(p, rough), query) ? high : rough;
}

/// Both halves of a quintic: de Casteljau's triangle at 1/2 with the factors drawn out of the sums, so that
/// each row costs additions only.
void Halve(const double g[6], double left[6], double right[6]) {
  const double a0 = g[0], a1 = g[1], a2 = g[2], a3 = g[3], a4 = g[4], a5 = g[5];
  const double b0 = a0 + a1, b1 = a1 + a2, b2 = a2 + a3, b3 = a3 + a4, b4 = a4 + a5;
  const double c0 = b0 + b1, c1 = b1 + b2, c2 = b2 + b3, c3 = b3 + b4;
  const double d0 = c0 + c1, d1 = c1 + c2, d2 = c2 + c3;
  const double e0 = d0 + d1, e1 = d1 + d2;
  left[0] = a0;
  left[1] = 0.5 * b0;
  left[2] = 0.25 * c0;
  left[3] = 0.125 * d0;
  left[4] = 0.0625 * e0;
  left[5] = right[0] = 0.03125 * (e0 + e1);
  right[1] = 0.0625 * e1;
  right[2] = 0.125 * d2;
  right[3] = 0.25 * c3;
  right[4] = 0.5 * b4;
  right[5] = a5;
}

/// Adds every minimum of the distance inside (0, 1) whose square can lie within `slack` of the least, as a
/// point of `p`. `shape` and `query` are the curve and the query in a unit whose squares have all their
/// digits.
void CollectMinima(const DPoint p[4], const DPoint shape[4], const DPoint& query, double slack,
                   Candidates& found) {
  Piece stack[Tolerances::kClosestDepth + 2];
  DistanceSlope(shape, query, stack[0].g);
  stack[0].start = 0;
  stack[0].width = 1;
  stack[0].rise = 0;
  double best = 0, end = 0, largest = 0;
  for (const double g : stack[0].g) {
    end += g;
    largest = std::max(largest, std::abs(g));
  }
  const double noise = Tolerances::kRootNoise * largest;
  best = std::min(best, end) + slack;
  int top = 0;
  for (int looked = 0; top >= 0 && looked < Tolerances::kMaxClosestPieces; ++looked) {
    Piece& piece = stack[top--];
    const unsigned signs = Signs(piece.g);
    // 0: no change; 1: one change, falling then rising; anything else is one change to a maximum or several.
    if (signs == 0 || signs == 63) continue;
    double bound = piece.rise, sum = piece.rise;
    for (const double g : piece.g) bound = std::min(bound, sum += g * piece.width);
    if (bound > best) continue;
    if ((signs & (signs + 1)) == 0) {
      bool flat = false;
      double t = piece.start + piece.width * RisingRoot(piece.g, signs, flat);
      // A slope that is nothing but noise all over its piece tells as little.
      if (flat || (-piece.g[0] < noise && piece.g[5] < noise)) t = BisectFlatRoot(shape, query, t);
      found.Add(t, Evaluate(p, t));
      continue;
    }
    const unsigned inverted = 63 - signs;
    if ((inverted & (inverted + 1)) == 0) continue;  // one change, to a maximum
    if (top + 2 > Tolerances::kClosestDepth) {
      const double t = piece.start + 0.5 * piece.width;
      found.Add(t, Evaluate(p, t));
      continue;
    }
    const Piece whole = piece;
    Piece& right = stack[top + 1];
    Piece& left = stack[top + 2];
    top += 2;
    Halve(whole.g, left.g, right.g);
    const double half = 0.5 * whole.width;
    left.start = whole.start;
    left.rise = whole.rise;
    left.width = right.width = half;
    right.start = whole.start + half;
    sum = 0;
    for (const double g : left.g) sum += g;
    right.rise = whole.rise + sum * half;
    best = std::min(best, right.rise + slack);
  }
}

bool AllFinite(const DPoint p[4], const DPoint& query) {
  double sum = query.x - query.x + query.y - query.y;
  for (int k = 0; k < 4; ++k) sum += (p[k].x - p[k].x) + (p[k].y - p[k].y);
  return sum == 0;
}

double Reach(const DPoint p[4], const DPoint& query) {
  double reach = 0;
  for (int k = 0; k < 4; ++k) {
    reach = std::max({reach, std::abs(p[k].x - query.x), std::abs(p[k].y - query.y)});
  }
  return reach;
}

/// The same from the curve: slackShare is the slack as a share of the squared reach.
void CollectMinima(const DPoint p[4], const DPoint& query, double reach, double slackShare,
                   Candidates& found) {
  if (reach < Tolerances::kLargestReach && reach > Tolerances::kLeastReach) {
    CollectMinima(p, p, query, slackShare * reach * reach, found);
  } else if (reach > 0) {
    // Squares would overflow or vanish: look at the curve from the query, in units of its reach.
    found.unit = std::ldexp(1.0, -std::clamp(std::ilogb(reach), -1000, 1000));
    DPoint shape[4];
    for (int k = 0; k < 4; ++k) shape[k] = {p[k].x * found.unit, p[k].y * found.unit};
    const DPoint from{query.x * found.unit, query.y * found.unit};
    CollectMinima(p, shape, from, 4 * slackShare, found);
  }
}

}  // namespace

bool FindClosestPointOnBezier(const DPoint p[4], const DPoint& query, double& t, DPoint& point,
                              double& distanceSqrd) noexcept {
  if (!AllFinite(p, query)) return false;
  const double reach = Reach(p, query);
  Candidates found;
  found.Add(0, p[0]);
  found.Add(1, p[3]);
  CollectMinima(p, query, reach, 16 * Tolerances::kEpsilon, found);
  const Candidate& best = found.Nearest(query);
  t = best.t;
  point = best.point;
  distanceSqrd = DistanceSqrd(point, query);
  return true;
}

ClosestPointsOnBezier FindClosestPointsOnBezier(const DPoint p[4], const DPoint& query) noexcept {
  ClosestPointsOnBezier result;
  if (!AllFinite(p, query)) return result;
  const double reach = Reach(p, query);
  Candidates found;
  found.Add(0, p[0]);
  CollectMinima(p, query, reach, 4 * Tolerances::kClosestTie, found);
  found.Add(1, p[3]);
  const Candidate& best = found.Nearest(query);
  const double least = Distance(best.point, query), limit = least + Tolerances::kClosestTie * reach;
  for (int k = 0; k < found.count && result.count < 6; ++k) {
    const Candidate& c = found.at[k];
    if (!(Distance(c.point, query) <= limit)) continue;
    // One minimum found twice, or a curve that is a single point.
    const int last = result.count - 1;
    if (last >= 0 && c.t - result.t[last] < Tolerances::kClosestSameParameter) continue;
    if (last >= 0 && c.point == result.point[last] && p[0] == p[1] && p[1] == p[2]) continue;
    result.t[result.count] = c.t;
    result.point[result.count] = c.point;
    ++result.count;
  }
  result.distanceSqrd = DistanceSqrd(best.point, query);
  return result;
}

}  // namespace TavMath::CubicBezier
