#include <algorithm>
#include <cmath>

#include "math/simd.h"
#include "math/tolerances.h"
#include "tav/math/cubic_bezier.h"

// Adaptive flattening: the longest chord that keeps the tolerance, again and again, from both ends at once
// and for many chords from one. With corners on the curve no other choice gives fewer chords.
//
// From a corner at t the curve is B(t + s h) = B(t) + s h d1 + (s h)^2 d2 + (s h)^3 d3. Over the chord h c,
// where c = d1 + h d2 + h^2 d3, its distance from the chord's line is
//     s (1 - s) |alpha + s beta| / |c|,   alpha = h^2 (x2 + h x3),   beta = h^3 (x3 + h x23),
// with x2 = d1 x d2, x3 = d1 x d3, x23 = d2 x d3: the greatest deviation of a chord is known in closed form,
// and solving it for h gives the next step, usually right at the first attempt.

namespace TavMath {
namespace {

/// A chord that uses less of the squared tolerance is tried longer: 0.8 costs at most 6 percent more chords.
constexpr double kLooseShare = 0.8;

/// How much of the tolerance a chord uses, squared, as a fraction.
struct Use {
  double deviation, limit;
  bool Fits() const { return deviation <= limit; }
  bool UsesAtLeast(double share) const { return deviation >= share * limit; }
  double Share() const { return deviation / limit; }
};

struct Tolerance {
  double sqrd;
  /// A chord over h that is shorter than h times the root of this is a point: its direction is rounding.
  double pointSqrd;
};

/// The tolerance, but not below what the roundings of the curve's coordinates leave.
Tolerance UsableTolerance(const DPoint p[4], double toleranceSqrd) {
  double size = Tolerances::kEpsilon * (std::abs(p[0].x) + std::abs(p[0].y));
  for (int k = 0; k < 3; ++k) size += std::abs(p[k + 1].x - p[k].x) + std::abs(p[k + 1].y - p[k].y);
  const double least = 6 * Tolerances::kEpsilon * size, point = 16 * Tolerances::kEpsilon * size;
  return {toleranceSqrd > least * least ? toleranceSqrd : least * least, point * point};
}

/// The curve from a corner: B(t + s) = B(t) + s d1 + s^2 d2 + s^3 d3.
struct FromCorner {
  DVector d1, d2, d3;
};

/// The use when the curve turns back along the chord: how far it passes an end is added to the squared
/// deviation (given times |c|^2) at right angles.
Use WithOvershoot(const FromCorner& curve, double h, double deviation, const Tolerance& tolerance) {
  const DVector c = curve.d1 + h * (curve.d2 + h * curve.d3);
  const double chordSqrd = LengthSqrd(c);
  if (!(chordSqrd > tolerance.pointSqrd)) {
    // The chord is a point: the control polygon bounds the distance from it.
    const DVector q1 = (h / 3) * curve.d1, q2 = 2.0 * q1 + (h * h / 3) * curve.d2;
    return {std::max(LengthSqrd(q1), LengthSqrd(q2)), tolerance.sqrd};
  }
  const double a0 = Dot(c, curve.d1), a1 = Dot(c, curve.d2), a2 = Dot(c, curve.d3);
  const auto advance = [&](double s) { return s * (a0 + s * (a1 + s * a2)); };
  // a0 + 2 a1 s + 3 a2 s^2 = 0 for s in (0, h).
  const double root = std::sqrt(std::max(a1 * a1 - 3 * a0 * a2, 0.0));
  const double q = a1 < 0 ? root - a1 : -(a1 + root);
  double excess = 0;
  for (const double s : {q / (3 * a2), a0 / q}) {
    if (s > 0 && s < h) excess = std::max({excess, -advance(s), advance(s) - h * chordSqrd});
  }
  return {deviation + excess * excess, tolerance.sqrd * chordSqrd};
}

/// A part of the curve, and the point at its end.
struct Stretch {
  double from, to;
  DPoint last;
};

/// The walk from one end.
class Flattener {
 public:
  Flattener(const DPoint p[4], const Tolerance& tolerance) : start_(p[0]) {
    const auto form = CubicBezier::ToPowerForm(p);
    k1_ = form.k1;
    k2_ = form.k2;
    k3_ = form.k3;
    x23_ = Cross(k2_, k3_);
    tolerance_ = tolerance;
  }

  /// Walks a stretch from buffer[0], the point at its start. Returns the number of chords, or capacity + 1
  /// when more are needed; reached() then tells how far they came.
  int Walk(const Stretch& stretch, DPoint* buffer, int capacity) {
    double t = stretch.from;
    int count = 0;
    last_ = beforeLast_ = 0;
    while (count < capacity) {
      const double rest = stretch.to - t;
      SetCorner(t);
      const double h = LongestStep(rest);
      const double next = t + h;
      if (h >= rest || !(next > t) || !(next < stretch.to)) {
        buffer[++count] = stretch.last;
        return count;
      }
      t = next;
      buffer[++count] = {start_.x + t * (k1_.x + t * (k2_.x + t * k3_.x)),
                         start_.y + t * (k1_.y + t * (k2_.y + t * k3_.y))};
    }
    reached_ = t;
    return capacity + 1;
  }

  double reached() const { return reached_; }
  void Coarsen(double factor) { tolerance_.sqrd *= factor; }

 private:
  void SetCorner(double t) {
    d1_ = k1_ + t * (2.0 * k2_ + (3 * t) * k3_);
    d2_ = k2_ + (3 * t) * k3_;
    x2_ = Cross(d1_, d2_);
    x3_ = Cross(d1_, k3_);
  }

  Use UseOf(double h) const {
    const DVector c = d1_ + h * (d2_ + h * k3_);
    const double chordSqrd = LengthSqrd(c), limit = tolerance_.sqrd * chordSqrd;
    const double beta = h * (x3_ + h * x23_), middle = x2_ + h * x3_ + 0.5 * beta, hh = h * h;
    // s (1 - s) |alpha + s beta| is largest near s = 1/2, at most |middle| / 4 + beta^2 / (64 |middle|) while
    // the sign is the same all along; squared, with |beta| <= |middle| in the last term.
    const double mm = middle * middle, bb = beta * beta;
    double deviation = (hh * hh) * (mm * (1.0 / 16) + bb * (1.0 / 128 + 1.0 / 4096));
    if (!(bb <= mm)) {
      const double lopsided = hh * LopsidedMaximum(x2_ + h * x3_, beta);
      deviation = lopsided * lopsided;
    }
    // Along the chord the curve must advance; its advance is a quadratic with these control values.
    const DVector m = d1_ + h * d2_;
    const double a0 = Dot(c, d1_), a1 = Dot(c, m), a2 = Dot(c, m + h * (d2_ + (3 * h) * k3_));
    if (!(std::min(a0, std::min(a1, a2)) >= 0) || !(chordSqrd > tolerance_.pointSqrd))
      return WithOvershoot({d1_, d2_, k3_}, h, deviation, tolerance_);
    return {deviation, limit};
  }

  /// The maximum over s in [0, 1] of s (1 - s) |alpha + s beta|.
  static double LopsidedMaximum(double alpha, double beta) {
    if (beta == 0) return 0.25 * std::abs(alpha);
    // With s = 1/2 + u: 3 beta u^2 + 2 m u - beta / 4 = 0, where m = alpha + beta / 2.
    const double m = alpha + 0.5 * beta;
    const double root = std::sqrt(m * m + 0.75 * beta * beta), q = m < 0 ? root - m : -(m + root);
    double largest = 0;
    for (const double u : {q / (3 * beta), -0.25 * beta / q}) {
      if (std::abs(u) <= 0.5) largest = std::max(largest, (0.25 - u * u) * std::abs(m + u * beta));
    }
    return largest;
  }

  /// h (kAim ratio)^(1/4): deviations grow as h^2, and their squares are compared.
  static double Scaled(double h, double ratio) {
    const double x = kAim * ratio - 1;
    // The series as far as it is good to a percent; it spares two square roots in the common case.
    if (std::abs(x) < 0.4) return h * (1 + x * (0.25 - x * (3.0 / 32 - x * (7.0 / 128))));
    return h * SquareRoot(SquareRoot(kAim * ratio));
  }

  /// The first attempt at a step, from the deviation that the last step would have here.
  double FirstStep(double last) const {
    const DVector c = d1_ + last * (d2_ + last * k3_);
    const double middle = x2_ + last * (1.5 * x3_ + 0.5 * last * x23_);
    if (!(last > 0))
      return SquareRoot(4 * SquareRoot(kAim * tolerance_.sqrd * LengthSqrd(c)) / std::abs(middle));
    const double deviation = last * last * middle;
    return Scaled(last, 16 * tolerance_.sqrd * LengthSqrd(c) / (deviation * deviation));
  }

  /// The step from the corner at hand; afterwards last_, beforeLast_ and lastUse_ describe it.
  double LongestStep(double rest) {
    double fits = 0, fails = 2, h;
    if (std::abs(last_ - beforeLast_) < kSmooth * last_) {
      // Steps that change slowly: continue their trend, corrected by what the last chord left. Nothing here
      // waits for the geometry of this corner, so the processor works on several chords at once.
      h = 2 * last_ - beforeLast_ + last_ * kFeedback * (kSmoothAim - lastShare_);
    } else {
      h = FirstStep(last_);
      if (last_ == 0 && h < rest) h = FirstStep(h);
    }
    if (!(h > 0 && h < rest)) h = rest;
    Use use = UseOf(h);
    for (int attempt = 0; attempt < Tolerances::kMaxFlattenAttempts; ++attempt) {
      if (use.Fits()) {
        fits = h;
        if (use.UsesAtLeast(kLooseShare) || h >= rest || attempt >= kEnoughAttempts) break;
      } else {
        fails = h;
        if (fits > 0 && attempt >= kEnoughAttempts) break;
      }
      h = std::min(Scaled(h, use.limit / use.deviation), rest);
      // A curve that turns back overshoots by as much for any longer step: the estimate would creep.
      if (fits == 0 && attempt >= 2) h = std::min(h, 0.5 * fails);
      if (!(h > fits && h < fails)) h = fits > 0 || fails <= 1 ? 0.5 * (fits + std::min(fails, rest)) : rest;
      use = UseOf(h);
    }
    beforeLast_ = last_;
    last_ = fits > 0 ? fits : h;
    lastShare_ = use.Share();
    return last_;
  }

  /// Attempts aim a little below the tolerance, so that an error of the estimate does not fail them.
  static constexpr double kAim = 0.97;
  /// Steps that differ by less than this share continue their trend.
  static constexpr double kSmooth = 0.1;
  /// The squared share that the trend is steered to, and how: a quarter of the miss would be the whole
  /// correction, but the trend holds part of it already.
  static constexpr double kSmoothAim = 0.94, kFeedback = 0.18;
  /// After this many attempts any chord that fits will do.
  static constexpr int kEnoughAttempts = 6;

  DPoint start_;
  DVector k1_, k2_, k3_;  ///< the power form
  Tolerance tolerance_;
  double x23_;
  DVector d1_{}, d2_{};  ///< the derivatives at the corner, over 1! and 2!
  double x2_ = 0, x3_ = 0;
  double last_ = 0, beforeLast_ = 0, lastShare_ = 0;
  double reached_ = 0;
};

/// The walk from both ends at once, in the two halves of each register: the forward one on the curve, the
/// other on the reversed curve. Longest chords from both sides give as few as from one, and the processor
/// needs the time of half of them.
class BothEnds {
 public:
  BothEnds(const DPoint p[4], const Tolerance& tolerance) : start_(p[0]), end_(p[3]) {
    const DVector e1 = p[1] - p[0], e2 = p[2] - p[1], e3 = p[3] - p[2];
    k1x_ = TwoDoubles{e1.x, -e3.x} * 3;
    k1y_ = TwoDoubles{e1.y, -e3.y} * 3;
    k2x_ = TwoDoubles{e2.x - e1.x, e3.x - e2.x} * 3;
    k2y_ = TwoDoubles{e2.y - e1.y, e3.y - e2.y} * 3;
    const DVector k3 = (e3 - e2) - (e2 - e1);
    k3x_ = TwoDoubles{k3.x, -k3.x};
    k3y_ = TwoDoubles{k3.y, -k3.y};
    x23_ = k2x_ * k3y_ - k2y_ * k3x_;
    tolerance_ = tolerance;
  }

  /// True when the walks met: buffer then has the corners of the forward one up to the last of the other.
  /// False when they used up their rounds, or stopped at a place that has no clear longest chord; Gap() is
  /// left between them. Either way `count` chords are in the buffer.
  bool Walk(DPoint* buffer, int& count) {
    buffer[0] = start_;
    const bool met = Meet(buffer);
    count = frontCount_;
    return met;
  }

  Stretch Gap() const { return {t_[0], 1 - t_[1], Last()}; }

  /// Appends the corners of the walk from the end after `count` chords; returns the number of all.
  int AppendBack(DPoint* buffer, int count) const {
    for (int k = backCount_ - 1; k-- > 0;) buffer[++count] = back_[k];
    if (backCount_ > 0) buffer[++count] = end_;
    return count;
  }

  /// Both walks take at most so many steps.
  static constexpr int kRounds = 24;

 private:
  DPoint Last() const { return backCount_ > 0 ? back_[backCount_ - 1] : end_; }

  bool Meet(DPoint* buffer) {
    TwoDoubles before = Both(0);
    for (int round = 0; round < kRounds; ++round) {
      SetCorners();
      const double rest = 1 - t_[0] - t_[1];
      TwoDoubles h =
          round == 0 ? LocalStep() : Within(ideal_ + (ideal_ - before), 0.6 * ideal_, 1.6 * ideal_);
      before = ideal_;
      h = Least(h, Both(rest));  // where the curve is straight: all of it
      const double reach = h[0] + h[1];
      if (reach >= kTryReach * rest &&
          Finish(buffer, h[0] / reach * rest, h[1] / reach * rest, reach > kOneReach * rest))
        return true;
      if (!LongestSteps(h, rest)) return false;
      if (round == 0) before = ideal_;
      if (h[0] >= rest) {
        buffer[++frontCount_] = Last();
        return true;
      }
      if (h[0] + h[1] >= rest) {
        const double excess = 0.5 * (h[0] + h[1] - rest);
        return Finish(buffer, h[0] - excess, rest - (h[0] - excess), false);
      }
      t_ += h;
      buffer[++frontCount_] = PointsAt(t_, 0);
      back_[backCount_++] = PointsAt(t_, 1);
    }
    return false;
  }

  /// Ends with one chord, if that is worth a try, or with two of the given lengths.
  bool Finish(DPoint* buffer, double first, double second, bool tryOne) {
    if (tryOne) {
      Measure(Both(first + second));
      if (deviation_[0] <= limit_[0]) {
        buffer[++frontCount_] = Last();
        return true;
      }
    }
    Measure(TwoDoubles{first, second});
    if (!(deviation_[0] <= limit_[0] && deviation_[1] <= limit_[1])) return false;
    t_[0] += first;
    buffer[++frontCount_] = PointsAt(t_, 0);
    buffer[++frontCount_] = Last();
    return true;
  }

  static TwoDoubles Least(TwoDoubles a, TwoDoubles b) { return a < b ? a : b; }
  static TwoDoubles Greatest(TwoDoubles a, TwoDoubles b) { return a > b ? a : b; }
  static TwoDoubles Within(TwoDoubles v, TwoDoubles low, TwoDoubles high) {
    return Least(Greatest(v, low), high);
  }

  void SetCorners() {
    const TwoDoubles t = t_;
    d1x_ = k1x_ + t * (2 * k2x_ + (3 * t) * k3x_);
    d1y_ = k1y_ + t * (2 * k2y_ + (3 * t) * k3y_);
    d2x_ = k2x_ + (3 * t) * k3x_;
    d2y_ = k2y_ + (3 * t) * k3y_;
    x2_ = d1x_ * d2y_ - d1y_ * d2x_;
    x3_ = d1x_ * k3y_ - d1y_ * k3x_;
  }

  DPoint PointsAt(TwoDoubles t, int lane) const {
    const TwoDoubles x = t * (k1x_ + t * (k2x_ + t * k3x_)), y = t * (k1y_ + t * (k2y_ + t * k3y_));
    const DPoint& from = lane == 0 ? start_ : end_;
    return {from.x + x[lane], from.y + y[lane]};
  }

  /// The step by the curvature at the corner alone: h^2 |x2| / (4 |d1|) is the tolerance.
  TwoDoubles LocalStep() const {
    const TwoDoubles bend = x2_ * x2_, speed = d1x_ * d1x_ + d1y_ * d1y_;
    return SquareRoot(SquareRoot(16 * tolerance_.sqrd * speed / bend));
  }

  /// Deviation and limit of both chords.
  void Measure(TwoDoubles h) {
    const TwoDoubles cx = d1x_ + h * (d2x_ + h * k3x_), cy = d1y_ + h * (d2y_ + h * k3y_);
    const TwoDoubles chordSqrd = cx * cx + cy * cy;
    limit_ = tolerance_.sqrd * chordSqrd;
    const TwoDoubles beta = h * (x3_ + h * x23_), middle = x2_ + h * x3_ + 0.5 * beta, hh = h * h;
    // s (1 - s) |middle + (s - 1/2) beta|, at most and squared: the first bound is close while |beta| is the
    // smaller one, the second when it is much the larger one; together 4 percent of a chord at worst.
    const TwoDoubles mm = middle * middle, bb = beta * beta, mb = middle * beta;
    const TwoDoubles lopsided =
        Least(bb * (1.0 / 128 + 1.0 / 4096), Greatest(mb, -mb) * kMixed + bb * (1.0 / 432));
    deviation_ = (hh * hh) * (mm * (1.0 / 16) + lopsided);
    // Along the chord the curve must advance; its advance is a quadratic with these control values. (Where
    // the chord fails already, an overshoot does not matter.)
    const TwoDoubles mx = d1x_ + h * d2x_, my = d1y_ + h * d2y_;
    const TwoDoubles nx = mx + h * (d2x_ + (3 * h) * k3x_), ny = my + h * (d2y_ + (3 * h) * k3y_);
    const TwoDoubles a0 = cx * d1x_ + cy * d1y_, a1 = cx * mx + cy * my, a2 = cx * nx + cy * ny;
    const TwoDoubles least = Least(a0, Least(a1, a2));
    const auto unsure = ((deviation_ <= limit_) & ~(least >= 0)) | ~(chordSqrd > tolerance_.pointSqrd);
    if (AnyOf(unsure)) {
      for (int k = 0; k < 2; ++k) {
        if (!unsure[k]) continue;
        const FromCorner curve{{d1x_[k], d1y_[k]}, {d2x_[k], d2y_[k]}, {k3x_[k], k3y_[k]}};
        const Use use = WithOvershoot(curve, h[k], deviation_[k], tolerance_);
        deviation_[k] = use.deviation;
        limit_[k] = use.limit;
      }
    }
  }

  /// The longest steps that fit, from a first attempt h.
  bool LongestSteps(TwoDoubles& h, double rest) {
    const TwoDoubles most = Both(rest);
    TwoDoubles fitting = Both(0), failing = 2 * most, lastH = h, lastRoom = Both(0);
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
      Measure(h);
      // (kAim limit / deviation)^(1/4) - 1, by the rational function that agrees to the second order.
      const TwoDoubles aim = kAim * limit_;
      const TwoDoubles room = (aim - deviation_) * 2 / (5 * deviation_ + 3 * aim);
      const auto fits = deviation_ <= limit_;
      const auto done =
          fits & ((deviation_ >= (attempt < kPatience ? kLooseShare : kLateShare) * limit_) | (h >= most));
      ideal_ = h + h * room;
      if (AllOf(done)) return true;
      fitting = fits ? h : fitting;
      failing = fits ? failing : h;
      TwoDoubles next = ideal_;
      if (attempt > 0) {
        // Deviations that do not grow as the square of the step: by their growth since the last attempt.
        const TwoDoubles growth = Within(h * (lastRoom - room) / (h - lastH), Both(0.5), Both(4));
        next = h + h * room / growth;
      }
      next = Least(next, most);
      next = ((next > fitting) & (next < failing)) ? next : 0.5 * (fitting + Least(failing, most));
      lastH = done ? lastH : h;
      lastRoom = done ? lastRoom : room;
      h = done ? h : next;
    }
    h = fitting;
    ideal_ = fitting;
    return h[0] > 0 && h[1] > 0;
  }

  /// Attempts aim a little below the tolerance, so that an error of the estimate does not fail them.
  static constexpr double kAim = 0.92;
  /// When the next chords seem to cover this share of the rest, two are tried for it; from the other share
  /// on, one first.
  static constexpr double kTryReach = 0.85, kOneReach = 1.4;
  /// 2 (1/4 - 1/12) / (12 sqrt 3), rounded up: the mixed term of the bound for lopsided chords.
  static constexpr double kMixed = 0.016038;
  /// After so many attempts a chord with a lesser share will do.
  static constexpr int kPatience = 3;
  static constexpr double kLateShare = 0.5;
  static constexpr int kAttempts = 8;

  DPoint start_, end_, back_[kRounds];
  int frontCount_ = 0, backCount_ = 0;
  Tolerance tolerance_;
  TwoDoubles k1x_, k1y_, k2x_, k2y_, k3x_, k3y_, x23_;
  TwoDoubles t_ = Both(0), ideal_ = Both(0);
  TwoDoubles d1x_, d1y_, d2x_, d2y_, x2_, x3_;
  TwoDoubles deviation_, limit_;
};

}  // namespace

int AdaptiveBezierToLines(const DPoint p[4], DPoint* buffer, double toleranceSqrd, int maxPoints) noexcept {
  if (buffer == nullptr || maxPoints < 2) return 0;
  const int capacity = maxPoints - 1;
  const DPoint source[4] = {p[0], p[1], p[2], p[3]};
  const Tolerance tolerance = UsableTolerance(source, toleranceSqrd);
  if (capacity >= 2 * BothEnds::kRounds + 1) {
    BothEnds ends(source, tolerance);
    int count;
    if (ends.Walk(buffer, count)) return ends.AppendBack(buffer, count);
    // What is left between them is walked from one side.
    const int room = capacity - 2 * BothEnds::kRounds;
    Flattener between(source, tolerance);
    const int middle = between.Walk(ends.Gap(), buffer + count, room);
    if (middle <= room) return ends.AppendBack(buffer, count + middle);
  }
  // When the room runs out, a coarser tolerance spreads it over the whole curve: the number of chords falls
  // with the square root of the tolerance.
  Flattener flattener(source, tolerance);
  for (int attempt = 0; attempt < Tolerances::kMaxCoarsenings; ++attempt) {
    buffer[0] = source[0];
    const int count = flattener.Walk({0, 1, source[3]}, buffer, capacity);
    if (count <= capacity) return count;
    const double needed = 1.05 / std::max(flattener.reached(), 1e-3);
    flattener.Coarsen(needed * needed * needed * needed);
  }
  return BezierToLines(source, buffer, capacity);
}

}  // namespace TavMath
