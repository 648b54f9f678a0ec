#include "math/cubic/parallel_curve.h"

#include <algorithm>
#include <cmath>

#include "math/cubic/blossom.h"
#include "math/tolerances.h"

namespace TavMath {

using namespace CubicBezier;
using namespace Tolerances;

void CuspList::Add(double value) {
  if (count == static_cast<int>(t.size())) return;
  int k = count++;
  for (; k > 0 && t[static_cast<std::size_t>(k - 1)] > value; --k)
    t[static_cast<std::size_t>(k)] = t[static_cast<std::size_t>(k - 1)];
  t[static_cast<std::size_t>(k)] = value;
}

bool CuspList::Contains(double value) const {
  return std::find(t.begin(), t.begin() + count, value) != t.begin() + count;
}

namespace {

DVector ThirdDerivative(const std::array<DPoint, 4>& p) {
  return 6.0 * ((p[3] - p[0]) - 3.0 * (p[2] - p[1]));
}

/// Length at any size of drawing; the quick form where the squares neither overflow nor underflow.
double SafeLength(const DVector& v) {
  const double sqrd = LengthSqrd(v);
  return sqrd > kSquaresFrom && sqrd < kSquaresTo ? std::sqrt(sqrd) : Length(v);
}

/// Whether a vector is no longer than a length, which most are by far.
bool IsWithin(const DVector& v, double length) {
  return !(std::abs(v.x) > length || std::abs(v.y) > length) && SafeLength(v) <= length;
}

/// A zero vector stays zero.
DVector UnitVector(const DVector& v) {
  const double length = SafeLength(v);
  return length > 0 ? DVector{v.x / length, v.y / length} : v;
}

/// The root of a function that has opposite signs at a and b: bisection until the interval holds no further
/// double.
template <class F>
double Bisect(const F& f, double a, double b) {
  bool negativeAtA = f(a) < 0;
  for (int k = 0; k < kBisectionSteps; ++k) {
    const double mid = 0.5 * (a + b);
    if (mid <= a || mid >= b) break;
    if ((f(mid) < 0) == negativeAtA)
      a = mid;
    else
      b = mid;
  }
  return 0.5 * (a + b);
}

}  // namespace

void DropShortHandles(DPoint bezier[4], double polygon) noexcept {
  const double coordinates = (std::max)(std::abs(bezier[0].x), std::abs(bezier[0].y));
  const double least = kShortestHandleRelative * polygon + kShortestHandleRounding * coordinates;
  if (IsWithin(bezier[1] - bezier[0], least)) bezier[1] = bezier[0];
  if (IsWithin(bezier[2] - bezier[0], least)) bezier[2] = bezier[0];
  if (IsWithin(bezier[3] - bezier[2], least)) bezier[2] = bezier[3];
  if (IsWithin(bezier[3] - bezier[1], least)) bezier[1] = bezier[3];
}

ParallelCurve::ParallelCurve(const DPoint bezier[4], double offset) noexcept
    : bezier_{bezier[0], bezier[1], bezier[2], bezier[3]}, offset_(offset) {
  for (int k = 0; k < 3; ++k) polygon_ += SafeLength(bezier[k + 1] - bezier[k]);
  scale_ = (std::max)(polygon_, std::abs(offset));
  const double coordinates = (std::max)(std::abs(bezier[0].x), std::abs(bezier[0].y));
  noise_ = kShortestPieceRelative * polygon_ + kShortestPieceRounding * coordinates;
  DropShortHandles(bezier_.data(), polygon_);
  for (std::size_t k = 0; k < 3; ++k) leg_[k] = bezier_[k + 1] - bezier_[k];
  for (std::size_t k = 0; k < 2; ++k) bend_[k] = leg_[k + 1] - leg_[k];
  usable_ = polygon_ > 0 && polygon_ < kLargestOffsetSize && coordinates < kLargestOffsetSize &&
            std::abs(offset) < kLargestOffsetSize;
  // The longest of the three vectors from P0 decides the line that the other control points are measured
  // from.
  DVector axis = bezier_[3] - bezier_[0];
  for (const DVector& v : {bezier_[1] - bezier_[0], bezier_[2] - bezier_[0]})
    if (LengthSqrd(v) > LengthSqrd(axis)) axis = v;
  straight_ = true;
  const DVector unit = UnitVector(axis);
  const double rounding = kCoordinateRounding * coordinates;
  for (std::size_t k = 1; k < 4; ++k)
    if (std::abs(Cross(unit, bezier_[k] - bezier_[0])) > kStraightCubicRelative * polygon_ + rounding)
      straight_ = false;
  BoundSpeed();
}

void ParallelCurve::BoundSpeed() noexcept {
  // |B'| is at least its component along the chord, a mean of three times the legs' components; B' x B'' is a
  // mean of 18 times the legs' cross products, the middle one halved.
  const auto& [d0, d1, d2] = leg_;
  const DVector axis = UnitVector(bezier_[3] - bezier_[0]);
  const double least = 3 * (std::min)({Dot(d0, axis), Dot(d1, axis), Dot(d2, axis)});
  sourceSmooth_ = least > kTurningRateRelative * polygon_;
  smooth_ = sourceSmooth_ && straight_;
  if (!sourceSmooth_ || straight_) return;
  const double sign = offset_ < 0 ? -1.0 : 1.0;
  const double most =
      18 * (std::max)({sign * Cross(d0, d1), 0.5 * sign * Cross(d0, d2), sign * Cross(d1, d2)});
  smooth_ = std::abs(offset_) * most < least * least * least;
}

ParallelSample ParallelCurve::At(double t) const noexcept {
  ParallelSample s;
  s.t = t;
  const double u = 1 - t;
  const DVector first = 3.0 * ((u * u) * leg_[0] + (2 * u * t) * leg_[1] + (t * t) * leg_[2]);
  const double length = SafeLength(first);
  if (length > kTurningRateRelative * polygon_) {
    s.tangent = {first.x / length, first.y / length};
    const DVector second = 6.0 * (u * bend_[0] + t * bend_[1]);
    s.speed = straight_ ? length : length - offset_ * (Cross(s.tangent, second) / length);
  } else {
    s.tangent = UnitVector(SafeBezierTangent(t, bezier_.data()));
    s.speed = Speed(t);
  }
  const Weight w(t);
  s.point = Blossom(bezier_.data(), w, w, w) + offset_ * LeftNormal(s.tangent);
  return s;
}

double ParallelCurve::Speed(double t) const noexcept {
  const DVector d1 = Derivative(bezier_.data(), t), d2 = SecondDerivative(bezier_.data(), t);
  const double speed = SafeLength(d1);
  if (straight_) return speed;
  if (speed > kTurningRateRelative * polygon_) {
    const DVector unit = {d1.x / speed, d1.y / speed};
    return speed - offset_ * (Cross(unit, d2) / speed);
  }
  // The derivative vanishes: B' = s B'' + s^2/2 B''' near by, so the turning rate tends to (B'' x B''') /
  // 2|B''|^2.
  const double second = LengthSqrd(d2);
  if (!(second > 0)) return speed;
  return speed - offset_ * Cross(d2, ThirdDerivative(bezier_)) / (2.0 * second);
}

bool ParallelCurve::IsCuspOfSource(double t) const noexcept {
  return Length(Derivative(bezier_.data(), t)) <= kStalledSpeedRelative * polygon_;
}

CuspList ParallelCurve::SourceCusps() const noexcept {
  CuspList cusps;
  if (!usable_ || sourceSmooth_) return cusps;
  // The speed is least where B' . B'' = 0, a cubic in t; its own turning points bound the intervals with one
  // root.
  const auto slope = [this](double t) {
    return Dot(Derivative(bezier_.data(), t), SecondDerivative(bezier_.data(), t));
  };
  const DVector d2 = SecondDerivative(bezier_.data(), 0), d3 = ThirdDerivative(bezier_);
  const DVector d1 = Derivative(bezier_.data(), 0);
  // (B' . B'')' = |B''|^2 + B' . B''' = a t^2 + b t + c.
  const double a = 1.5 * Dot(d3, d3), b = 3.0 * Dot(d2, d3), c = Dot(d2, d2) + Dot(d1, d3);
  double bounds[4] = {0, 1, 1, 1};
  int count = 1;
  const double discriminant = b * b - 4 * a * c;
  if (discriminant > 0) {
    const double q = -0.5 * (b + std::copysign(std::sqrt(discriminant), b));
    double r0 = a != 0 ? q / a : 2.0, r1 = q != 0 ? c / q : 2.0;
    if (r0 > r1) std::swap(r0, r1);
    for (const double r : {r0, r1})
      if (r > 0 && r < 1) bounds[count++] = r;
  }
  bounds[count] = 1;
  for (int k = 0; k < count; ++k) {
    if ((slope(bounds[k]) < 0) == (slope(bounds[k + 1]) < 0)) continue;
    const double t = Bisect(slope, bounds[k], bounds[k + 1]);
    if (t > kCuspMargin && t < 1 - kCuspMargin && IsCuspOfSource(t)) cusps.Add(t);
  }
  return cusps;
}

void ParallelCurve::AddSignChange(double a, double b, CuspList& cusps) const noexcept {
  if (!(a < b)) return;
  const auto speed = [this](double t) { return Speed(t); };
  if ((speed(a) < 0) != (speed(b) < 0)) cusps.Add(Bisect(speed, a, b));
}

CuspList ParallelCurve::Cusps() const noexcept {
  const CuspList source = SourceCusps();
  CuspList cusps = source;
  if (!usable_ || smooth_ || straight_ || offset_ == 0) return cusps;
  // Between neighbouring curvature extrema the curvature is monotone: the speed changes sign at most once.
  CuspList bounds = source;
  double extrema[6];
  const int count = FindCurvatureMinMax(bezier_.data(), extrema);
  for (int k = 0; k < count; ++k) bounds.Add(extrema[k]);
  double from = kCuspMargin;
  for (int k = 0; k < bounds.count; ++k) {
    const double bound = bounds.t[static_cast<std::size_t>(k)];
    const double margin = source.Contains(bound) ? kSourceCuspMargin : 0;
    AddSignChange(from, bound - margin, cusps);
    from = (std::max)(from, bound + margin);
  }
  AddSignChange(from, 1 - kCuspMargin, cusps);
  return cusps;
}

namespace {

/// The series of the arc sine: a sine below 1/4 leaves out less than 1e-3 of the angle, one below 1/2 1e-2.
double SmallAngle(double sine) { return sine * (1 + sine * sine / 6); }

double TurnBetween(const ParallelSample& a, const ParallelSample& b) {
  const double sine = std::abs(Cross(a.tangent, b.tangent)), cosine = Dot(a.tangent, b.tangent);
  if (cosine > 0 && sine < 0.25) return SmallAngle(sine);
  return std::atan2(sine, cosine);
}

/// How far the chord between two samples is from what their speeds say it is: a tight bend between them makes
/// the one or the other wrong.
double HiddenLength(const ParallelSample& a, const ParallelSample& b, double chord) {
  return std::abs(0.5 * std::abs(a.speed + b.speed) * (b.t - a.t) - chord);
}

double Interpolate(const std::array<double, ParallelSamples::kCapacity>& sums, const ParallelSamples& s,
                   double fraction) {
  const double target = fraction * sums[static_cast<std::size_t>(s.count - 1)];
  const auto end = sums.begin() + s.count;
  const auto above = static_cast<std::size_t>(std::upper_bound(sums.begin(), end, target) - sums.begin());
  if (above == 0) return s.at[0].t;
  if (above >= static_cast<std::size_t>(s.count)) return s.at[static_cast<std::size_t>(s.count - 1)].t;
  const double low = sums[above - 1], high = sums[above];
  const double f = high > low ? (target - low) / (high - low) : 0;
  return s.at[above - 1].t + f * (s.at[above].t - s.at[above - 1].t);
}

}  // namespace

ParallelSamples::Step::Step(const ParallelSample& from, const ParallelSample& to)
    : turn(TurnBetween(from, to)),
      chord(SafeLength(to.point - from.point)),
      hidden(HiddenLength(from, to, chord)) {}

void ParallelSamples::Append(const ParallelSample& to, double turned, double chord) noexcept {
  const auto k = static_cast<std::size_t>(count++);
  at[k] = to;
  turn[k] = turn[k - 1] + turned;
  // The chord of an arc that turns by an angle is shorter than the arc by its square/24 to first order.
  measure[k] = measure[k - 1] + chord * (1 + turned * turned / 24);
}

void ParallelSamples::Refine(const ParallelCurve& curve, const ParallelSample& from, const ParallelSample& to,
                             const Step& step, int depth) noexcept {
  // The left half is finished before the right one is begun; `from` is already stored. Room for what is
  // pending is kept, so that the last sample always fits.
  if (depth > 0 && count < kCapacity - kSampleDepth - kSampleIntervals &&
      (step.turn > kSampleTurn || step.chord > longest_ ||
       (step.hidden > mostHidden_ && depth > kSampleDepth - kHiddenDepth))) {
    const ParallelSample mid = curve.At(0.5 * (from.t + to.t));
    Refine(curve, from, mid, {from, mid}, depth - 1);
    Refine(curve, mid, to, {mid, to}, depth - 1);
    return;
  }
  Append(to, step.turn, step.chord);
}

void ParallelSamples::Build(const ParallelCurve& curve, double t0, double t1) noexcept {
  at[0] = curve.At(t0);
  measure[0] = turn[0] = 0;
  count = 1;
  std::array<ParallelSample, kSampleIntervals + 1> uniform;
  std::array<Step, kSampleIntervals + 1> steps;
  uniform[0] = at[0];
  double length = 0;
  for (std::size_t k = 1; k <= kSampleIntervals; ++k) {
    uniform[k] =
        curve.At(k == kSampleIntervals ? t1 : t0 + (t1 - t0) * static_cast<double>(k) / kSampleIntervals);
    steps[k] = {uniform[k - 1], uniform[k]};
    length += steps[k].chord;
  }
  longest_ = kSampleShare * length;
  mostHidden_ = kSampleHidden * length;
  for (std::size_t k = 1; k <= kSampleIntervals; ++k)
    Refine(curve, uniform[k - 1], uniform[k], steps[k], kSampleDepth);
  totalTurn = turn[static_cast<std::size_t>(count - 1)];
}

bool ParallelSamples::BuildSparse(const ParallelCurve& curve, double t0, double t1) noexcept {
  at[0] = curve.At(t0);
  measure[0] = turn[0] = 0;
  count = 1;
  double longest = 0, length = 0, hidden = 0;
  for (std::size_t k = 1; k <= kSparseIntervals; ++k) {
    const ParallelSample to =
        curve.At(k == kSparseIntervals ? t1 : t0 + (t1 - t0) * static_cast<double>(k) / kSparseIntervals);
    const double sine = std::abs(Cross(at[k - 1].tangent, to.tangent));
    if (!(sine <= kSparseSine && Dot(at[k - 1].tangent, to.tangent) > 0)) return false;
    const double chord = SafeLength(to.point - at[k - 1].point);
    hidden = (std::max)(hidden, HiddenLength(at[k - 1], to, chord));
    Append(to, SmallAngle(sine), chord);
    length += chord;
    longest = (std::max)(longest, chord);
  }
  totalTurn = turn[kSparseIntervals];
  return longest <= kSparseShare * length && hidden <= kSparseHidden * length;
}

double ParallelSamples::AtMeasure(double fraction) const noexcept {
  return Interpolate(measure, *this, fraction);
}
double ParallelSamples::AtTurn(double fraction) const noexcept { return Interpolate(turn, *this, fraction); }

}  // namespace TavMath
