#include "math/cubic/flatten_spread.h"

#include <algorithm>
#include <cmath>

#include "math/tolerances.h"

namespace TavMath {
namespace {

/// The integrand is sampled in four lanes of so many nodes each, at equal parameters.
constexpr int kPerLane = 5, kNodes = 4 * kPerLane, kCells = kNodes - 1;
constexpr float kCellWidth = 1.0f / kCells;
/// More chords than this need more samples than there are.
constexpr int kMostChords = 300;
/// Up to so many corners are looked up by counting.
constexpr int kCounted = 12;
/// Sizes whose fourth powers are far inside the range of single precision; estimates need no more.
constexpr double kSmallest = 1e-8, kLargest = 1e8;
/// A speed below this share of the size counts as this: at a cusp the integrand has a pole.
constexpr double kStillSqrd = 1e-12;
/// Chords are taken this much shorter than the estimate, less a share of one chord: fewer fail than the
/// additional chords cost.
constexpr double kMargin = 1.02, kRoundingShare = 0.1;
/// To so few chords one may be added, to more one for each kChordsPerExtra: with the estimate's own surplus a
/// curve stays within a tenth, or one chord, of the fewest.
constexpr int kSmallNumber = 12, kChordsPerExtra = 18;
/// Where chords are few, one that strays too far is shortened to this share of the squared tolerance, so many
/// times at most, and the next takes over the rest. Of many it is halved, since one more does not matter.
constexpr int kFewChords = 24;
constexpr double kShortenedShare = 0.9;
constexpr int kShortenings = 6;

TwoDoubles Least(TwoDoubles a, TwoDoubles b) { return a < b ? a : b; }

constexpr int PlaceOf(int cell) { return cell % kPerLane * 4 + cell / kPerLane; }

/// The integrand at the start of every cell and its integral up to there. Node k of lane i, and the cell that
/// starts there, is in place 4 k + i; the cell ends in place 4 (k + 1) + i.
struct Estimate {
  alignas(16) float value[kNodes + 4], before[kNodes];
  float sum;

  /// Parameters of the corners of n chords, 0 and 1 among them, and a 1 beyond.
  void Place(int n, float* corner) const {
    corner[0] = 0;
    corner[n] = corner[n + 1] = 1;
    if (n == 1) return;
    FourFloats row[kPerLane];
    for (int k = 0; k < kPerLane; ++k) row[k] = Load(before + 4 * k);
    const float share = sum / static_cast<float>(n);
    for (int j = 1, cell = 0; j < n; ++j) {
      // The last cell that starts before: counted, since a search would be mispredicted, unless corners are
      // so many that most follow the last one into its cell.
      const float wanted = share * static_cast<float>(j);
      if (n <= kCounted) {
        FourInts starts{};
        for (const FourFloats& r : row) starts += r <= wanted;
        cell = -1 - SumOf(starts);
      } else {
        while (cell + 1 < kCells && before[PlaceOf(cell + 1)] <= wanted) ++cell;
      }
      const int k = PlaceOf(cell);
      // Taking the integrand as linear, 2 a x + (b - a) x^2 is what is left over of the integral.
      const float a = value[k], left = wanted - before[k];
      const float x = left / (a + SquareRoot(a * a + (value[k + 4] - a) * left) + 1e-30f);
      corner[j] = kCellWidth * (static_cast<float>(cell) + x);
    }
  }
};

/// Two places on the curve, from its start, and the derivatives.
struct Corners {
  TwoDoubles x, y, dx, dy;
};

TwoDoubles LastAndFirst(TwoDoubles a, TwoDoubles b) { return TwoDoubles{a[1], b[0]}; }

/// The second of two does not count, or both do.
constexpr TwoFlags kWaived[2] = {{0, -1}, {0, 0}};

class EvenSpread {
 public:
  EvenSpread(const DPoint p[4], const FlattenTolerance& tolerance)
      : start_(p[0]), end_(p[3]), tolerance_(tolerance) {
    const TwoDoubles p0{p[0].x, p[0].y}, p1{p[1].x, p[1].y}, p2{p[2].x, p[2].y}, p3{p[3].x, p[3].y};
    const TwoDoubles e1 = p1 - p0, e2 = p2 - p1, e3 = p3 - p2;
    const TwoDoubles k1 = 3 * e1, k2 = 3 * (e2 - e1), k3 = (e3 - e2) - (e2 - e1);
    k1_ = {k1[0], k1[1]}, k2_ = {k2[0], k2[1]}, k3_ = {k3[0], k3[1]};
    x1_ = Both(k1_.x), y1_ = Both(k1_.y);
    x2_ = Both(k2_.x), y2_ = Both(k2_.y);
    x3_ = Both(k3_.x), y3_ = Both(k3_.y);
  }

  int Lines(DPoint* buffer, int capacity);

 private:
  bool Sample(Estimate& estimate) const;
  Corners At(TwoDoubles t) const;
  int Number(const Estimate& estimate, int capacity) const;
  TwoFlags Fit(const Corners& from, const Corners& to, TwoDoubles h) const;
  TwoFlags WritePair(const float* t, Corners& last, DPoint* buffer) const;
  int Mend(const float* t, int j, int n, DPoint* buffer);

  DPoint start_, end_;
  DVector k1_, k2_, k3_;                    ///< the power form
  TwoDoubles x1_, x2_, x3_, y1_, y2_, y3_;  ///< the same, twice
  FlattenTolerance tolerance_;
  int count_ = 0, capacity_ = 0;
  int extra_ = 0;  ///< so many more chords than estimated are allowed
};

bool EvenSpread::Sample(Estimate& estimate) const {
  const double size = tolerance_.size;
  if (!(size > kSmallest && size < kLargest)) return false;
  const auto single = [](double v) { return static_cast<float>(v); };
  const float ax = single(k1_.x), bx = single(2 * k2_.x), cx = single(3 * k3_.x);
  const float ay = single(k1_.y), by = single(2 * k2_.y), cy = single(3 * k3_.y);
  const float still = single(kStillSqrd * size * size);
  // B' x B'' is a quadratic.
  const float turn0 = single(2 * Cross(k1_, k2_)), turn1 = single(6 * Cross(k1_, k3_)),
              turn2 = single(6 * Cross(k2_, k3_));
  constexpr float kLane = kPerLane * kCellWidth;
  FourFloats t{0, kLane, 2 * kLane, 3 * kLane}, value[kPerLane + 1];
  for (int k = 0; k < kPerLane; ++k, t += kCellWidth) {
    const FourFloats x = ax + t * (bx + t * cx), y = ay + t * (by + t * cy);
    const FourFloats turn = turn0 + t * (turn1 + t * turn2);
    value[k] = SquareRoot(Absolute(turn) / SquareRoot(x * x + y * y + still));
    Store(estimate.value + 4 * k, value[k]);
  }
  // Behind the last node there is no cell: its integral is made to vanish.
  value[kPerLane] = FourFloats{value[0][1], value[0][2], value[0][3], -value[kPerLane - 1][3]};
  Store(estimate.value + kNodes, value[kPerLane]);
  FourFloats lane[kPerLane], sum{0, 0, 0, 0};
  for (int k = 0; k < kPerLane; ++k) {
    lane[k] = sum;
    sum += value[k] + value[k + 1];
  }
  const float half = sum[0] + sum[1];
  const FourFloats before{0, sum[0], half, half + sum[2]};
  for (int k = 0; k < kPerLane; ++k) Store(estimate.before + 4 * k, lane[k] + before);
  estimate.sum = half + (sum[2] + sum[3]);
  return true;
}

Corners EvenSpread::At(TwoDoubles t) const {
  const TwoDoubles vx = x2_ + t * x3_, vy = y2_ + t * y3_;
  const TwoDoubles ux = x1_ + t * vx, uy = y1_ + t * vy;
  return {t * ux, t * uy, ux + t * (vx + t * x3_), uy + t * (vy + t * y3_)};
}

TwoFlags EvenSpread::Fit(const Corners& from, const Corners& to, TwoDoubles h) const {
  // The chord h c and h c x d1, h c x B'(t + h): all that flatten_chord.h has, times h.
  const TwoDoubles cx = to.x - from.x, cy = to.y - from.y, chordSqrd = cx * cx + cy * cy;
  const TwoDoubles left = cx * from.dy - cy * from.dx, right = cy * to.dx - cx * to.dy;
  const TwoDoubles beta = right - left, middle = 0.5 * (left + right);
  const TwoDoubles mm = middle * middle, bb = beta * beta, mb = middle * beta;
  const TwoDoubles lopsided = Least(bb * kNearBeta, Absolute(mb) * kMixed + bb * kFarBeta);
  const TwoFlags fits = (h * h) * (mm * (1.0 / 16) + lopsided) <= tolerance_.sqrd * chordSqrd;
  // The control values of the curve's advance along the chord.
  const TwoDoubles a0 = cx * from.dx + cy * from.dy, a2 = cx * to.dx + cy * to.dy;
  const TwoDoubles a1 = chordSqrd - h * (1.0 / 3) * (a0 + a2);
  // A chord shorter than the tolerance is too short for differences of points.
  return fits & (Least(a0, Least(a1, a2)) >= 0) & (chordSqrd > tolerance_.sqrd);
}

/// Places chords one after the other from t[j], each to its planned corner or, when that is too far, short of
/// it, until one ends at a planned corner again. Returns the number of that corner; 0 on failure.
int EvenSpread::Mend(const float* t, int j, int n, DPoint* buffer) {
  const bool few = n <= kFewChords;
  double from = t[j];
  while (j < n) {
    const double planned = t[j + 1];
    const FromCorner corner(k1_, k2_, k3_, from);
    double h = planned - from;
    ChordUse use = corner.UseOf(h, tolerance_);
    for (int attempt = 0; !use.Fits() && attempt < kShortenings; ++attempt) {
      h *= few ? std::clamp(SquareRoot(SquareRoot(kShortenedShare / use.Share())), 0.1, 0.95) : 0.5;
      use = corner.UseOf(h, tolerance_);
    }
    const double to = from + h;
    const bool reached = to >= planned;
    // What is left over is added to the next chord, or becomes a chord of its own.
    const bool added = !reached && (!few || j + 1 == n);
    if (!use.Fits() || !(to > from) || count_ >= capacity_ || (added && --extra_ < 0)) return 0;
    const Corners end = At(Both(to));
    buffer[++count_] = {start_.x + end.x[0], start_.y + end.y[0]};
    if (reached) return j + 1;
    if (!added) ++j;
    from = to;
  }
  return 0;
}

/// The number of chords; 0 when they are too many.
int EvenSpread::Number(const Estimate& estimate, int capacity) const {
  const double perRoot = SquareRoot(0.125 / SquareRoot(tolerance_.sqrd));
  const double chords =
      kMargin * (0.5 * kCellWidth) * perRoot * static_cast<double>(estimate.sum) - kRoundingShare;
  if (!(chords < kMostChords - 1)) return 0;
  const int whole = static_cast<int>(chords), n = std::max(1, whole + (chords > whole));
  return n < capacity ? n : 0;
}

/// Writes the points at t[1] and t[2], and tells which of the chords before them fit. `last` are corners of
/// which the second is at t[0], and becomes those.
TwoFlags EvenSpread::WritePair(const float* t, Corners& last, DPoint* buffer) const {
  const TwoDoubles from{t[0], t[1]}, to{t[1], t[2]};
  const Corners next = At(to), first{LastAndFirst(last.x, next.x), LastAndFirst(last.y, next.y),
                                     LastAndFirst(last.dx, next.dx), LastAndFirst(last.dy, next.dy)};
  buffer[0] = {start_.x + next.x[0], start_.y + next.y[0]};
  buffer[1] = {start_.x + next.x[1], start_.y + next.y[1]};
  last = next;
  return Fit(first, next, to - from);
}

int EvenSpread::Lines(DPoint* buffer, int capacity) {
  Estimate estimate;
  if (!Sample(estimate)) return 0;
  const int n = Number(estimate, capacity);
  if (n == 0) return 0;
  float t[kMostChords + 2];
  estimate.Place(n, t);
  buffer[0] = start_;
  capacity_ = capacity;
  extra_ = n < kSmallNumber ? 1 : n / kChordsPerExtra;
  Corners last{Both(0), Both(0), x1_, y1_};
  for (int j = 0; j < n;) {
    const int both = j + 1 < n;
    if (AllOf(WritePair(t + j, last, buffer + count_ + 1) | kWaived[both])) {
      count_ += 1 + both;
      j += 1 + both;
    } else {
      j = Mend(t, j, n, buffer);
      if (j == 0 || count_ + (n - j) >= capacity) return 0;
      last = At(Both(t[j]));
    }
  }
  buffer[count_] = end_;
  return count_;
}

}  // namespace

int SpreadLines(const DPoint p[4], const FlattenTolerance& tolerance, DPoint* buffer, int capacity) noexcept {
  return EvenSpread(p, tolerance).Lines(buffer, capacity);
}

}  // namespace TavMath
