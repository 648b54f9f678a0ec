#include <algorithm>
#include <cmath>

#include "math/cubic/flatten_chord.h"
#include "math/cubic/flatten_spread.h"
#include "math/simd.h"
#include "math/tolerances.h"
#include "tav/math/cubic_bezier.h"

// Adaptive flattening. Chords are spread evenly where that succeeds, which is nearly always. Otherwise each
// is the longest that keeps the tolerance: with corners on the curve no choice gives fewer chords. The
// greatest deviation of a chord is known in closed form (flatten_chord.h), and solving it for the step is
// usually right at the first attempt.

namespace TavMath {
namespace {

/// A chord that uses less of the squared tolerance is tried longer: 0.8 costs at most 6 percent more chords.
constexpr double kLooseShare = 0.8;

/// The walk from the start, one longest chord after the other.
class Flattener {
 public:
  Flattener(const DPoint p[4], const FlattenTolerance& tolerance)
      : start_(p[0]), end_(p[3]), tolerance_(tolerance) {
    const auto form = CubicBezier::ToPowerForm(p);
    k1_ = form.k1;
    k2_ = form.k2;
    k3_ = form.k3;
  }

  /// Writes the corners. Returns the number of chords, or capacity + 1 when more are needed; reached() then
  /// tells how far they came.
  int Walk(DPoint* buffer, int capacity) {
    double t = 0;
    int count = 0;
    last_ = beforeLast_ = 0;
    buffer[0] = start_;
    while (count < capacity) {
      const double rest = 1 - t;
      const double h = LongestStep(FromCorner(k1_, k2_, k3_, t), rest), next = t + h;
      if (h >= rest || !(next > t) || !(next < 1)) {
        buffer[++count] = end_;
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
  /// h (kAim ratio)^(1/4): deviations grow as h^2, and their squares are compared.
  static double Scaled(double h, double ratio) {
    const double x = kAim * ratio - 1;
    // The series as far as it is good to a percent; it spares two square roots in the common case.
    if (std::abs(x) < 0.4) return h * (1 + x * (0.25 - x * (3.0 / 32 - x * (7.0 / 128))));
    return h * SquareRoot(SquareRoot(kAim * ratio));
  }

  /// The first attempt at a step, from the deviation that the last step would have here.
  double FirstStep(const FromCorner& corner, double last) const {
    const DVector c = corner.d1 + last * (corner.d2 + last * corner.d3);
    const double middle = corner.x2 + last * (1.5 * corner.x3 + 0.5 * last * corner.x23);
    if (!(last > 0))
      return SquareRoot(4 * SquareRoot(kAim * tolerance_.sqrd * LengthSqrd(c)) / std::abs(middle));
    const double deviation = last * last * middle;
    return Scaled(last, 16 * tolerance_.sqrd * LengthSqrd(c) / (deviation * deviation));
  }

  /// The step from the corner at hand; afterwards last_, beforeLast_ and lastShare_ describe it.
  double LongestStep(const FromCorner& corner, double rest) {
    double fits = 0, fails = 2, h;
    if (std::abs(last_ - beforeLast_) < kSmooth * last_) {
      // Steps that change slowly: continue their trend, corrected by what the last chord left. Nothing here
      // waits for the geometry of this corner, so the processor works on several chords at once.
      h = 2 * last_ - beforeLast_ + last_ * kFeedback * (kSmoothAim - lastShare_);
    } else {
      h = FirstStep(corner, last_);
      if (last_ == 0 && h < rest) h = FirstStep(corner, h);
    }
    if (!(h > 0 && h < rest)) h = rest;
    ChordUse use = corner.UseOf(h, tolerance_);
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
      use = corner.UseOf(h, tolerance_);
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

  DPoint start_, end_;
  DVector k1_, k2_, k3_;  ///< the power form
  FlattenTolerance tolerance_;
  double last_ = 0, beforeLast_ = 0, lastShare_ = 0;
  double reached_ = 0;
};

}  // namespace

int AdaptiveBezierToLines(const DPoint p[4], DPoint* buffer, double toleranceSqrd, int maxPoints) noexcept {
  if (buffer == nullptr || maxPoints < 2) return 0;
  const int capacity = maxPoints - 1;
  const DPoint source[4] = {p[0], p[1], p[2], p[3]};
  const FlattenTolerance tolerance(source, toleranceSqrd);
  if (const int count = SpreadLines(source, tolerance, buffer, capacity); count > 0) return count;
  // When the room runs out, a coarser tolerance spreads it over the whole curve: the number of chords falls
  // with the square root of the tolerance.
  Flattener flattener(source, tolerance);
  for (int attempt = 0; attempt < Tolerances::kMaxCoarsenings; ++attempt) {
    const int count = flattener.Walk(buffer, capacity);
    if (count <= capacity) return count;
    const double needed = 1.05 / std::max(flattener.reached(), 1e-3);
    flattener.Coarsen(needed * needed * needed * needed);
  }
  return BezierToLines(source, buffer, capacity);
}

}  // namespace TavMath
