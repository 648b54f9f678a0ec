#include "math/cubic/parallel_fit.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "math/tolerances.h"

namespace TavMath {

using namespace CubicBezier;
using namespace Tolerances;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// The state of one fit. Directions are those of travel along the parallel curve: the source's where its
/// speed is positive, reversed where it runs backwards.
class Fitter {
 public:
  explicit Fitter(const ParallelSamples& samples, double direction) noexcept
      : s_(samples), direction_(direction), last_(static_cast<std::size_t>(samples.count - 1)) {
    const double span = s_.at[last_].t - s_.at[0].t;
    for (std::size_t k = 0; k <= last_; ++k) {
      u_[k] = (s_.at[k].t - s_.at[0].t) / span;
      deviation_[k] = slope_[k] = 0;  // a measure that breaks off leaves the samples behind it alone
    }
    const double shortest = kShortestHandle * s_.measure[last_];
    SetHandles((std::max)(shortest, s_.at[0].speed * direction_ * span / 3),
               (std::max)(shortest, s_.at[last_].speed * direction_ * span / 3));
  }

  const std::array<DPoint, 4>& Cubic() const { return cubic_; }

  /// Least squares over the two handle lengths (Gauss-Newton, damped); the best state seen is kept. An error
  /// of `enough` needs no improvement.
  double Solve(double enough) {
    double error = Measure(), best = RunsForward() ? error : kInfinity;
    Cubic4 bestCubic = cubic_;
    for (int k = 0; k < kFitIterations && best > enough; ++k) {
      const double change = Step();
      error = Measure();
      if (error < best && RunsForward()) {
        best = error;
        bestCubic = cubic_;
      }
      if (!(change > kFitSettled * error)) break;
    }
    if (best < kInfinity && cubic_ != bestCubic) {
      cubic_ = bestCubic;
      power_ = ToPowerForm(cubic_.data());
      Measure();
    }
    return best;
  }

  /// Whether the fit never runs against the middle direction of the stretch, as what it stands for, which
  /// turns by half a turn at most, never does. A fit that does has a hook so tight that it may fall between
  /// two samples.
  bool RunsForward() const {
    const DVector middle = Tangent(0) + Tangent(last_);
    if (!(LengthSqrd(middle) > kHalfTurnSqrd)) return true;
    const double from = Dot(cubic_[1] - cubic_[0], middle), between = Dot(cubic_[2] - cubic_[1], middle),
                 to = Dot(cubic_[3] - cubic_[2], middle);
    return between >= 0 || between * between <= from * to;
  }

  /// The largest deviation half-way between the samples of the last measure.
  double MeasureBetween(const ParallelCurve& curve) const {
    double worst = 0;
    for (std::size_t k = 1; k <= last_; ++k) {
      const ParallelSample mid = curve.At(0.5 * (s_.at[k - 1].t + s_.at[k].t));
      const Crossing at = CrossNormal(mid, 0.5 * (u_[k - 1] + u_[k]));
      if (!at.found || at.u < u_[k - 1] || at.u > u_[k]) return kInfinity;
      const double half = 0.5 * (s_.measure[k] - s_.measure[k - 1]);
      worst = (std::max)({worst, std::abs(at.deviation),
                          BetweenSamples(deviation_[k - 1], slope_[k - 1], at.deviation, at.slope, half),
                          BetweenSamples(at.deviation, at.slope, deviation_[k], slope_[k], half)});
    }
    return worst;
  }

  /// Deviations and slopes at every sample; the largest deviation, between samples too, by the cubic that
  /// takes their values and slopes.
  double Measure() {
    slope_[0] = slope_[last_] = deviation_[0] = deviation_[last_] = 0;
    double worst = 0;
    for (std::size_t k = 1; k < last_; ++k) {
      if (!Project(k) || u_[k] < u_[k - 1]) return kInfinity;
      worst = (std::max)(worst, std::abs(deviation_[k]));
    }
    for (std::size_t k = 1; k <= last_; ++k) {
      const double h = s_.measure[k] - s_.measure[k - 1];
      worst =
          (std::max)(worst, BetweenSamples(deviation_[k - 1], slope_[k - 1], deviation_[k], slope_[k], h));
    }
    return worst;
  }

 private:
  using Cubic4 = std::array<DPoint, 4>;

  DVector Tangent(std::size_t k) const { return direction_ * s_.at[k].tangent; }

  void SetHandles(double a, double b) {
    a_ = a;
    b_ = b;
    cubic_ = {s_.at[0].point, s_.at[0].point + a * Tangent(0), s_.at[last_].point + (-b) * Tangent(last_),
              s_.at[last_].point};
    power_ = ToPowerForm(cubic_.data());
  }

  /// Moves the parameter of sample k to where the fit crosses the normal there; false when it does not.
  bool Project(std::size_t k) {
    const Crossing at = CrossNormal(s_.at[k], u_[k]);
    u_[k] = at.u;
    deviation_[k] = at.deviation;
    slope_[k] = at.slope;
    return at.found;
  }

  struct Crossing {
    double u, deviation, slope;
    bool found;
  };

  /// Where the fit crosses the normal of a sample, by Newton from u.
  Crossing CrossNormal(const ParallelSample& sample, double u) const {
    const DVector tangent = direction_ * sample.tangent, normal = LeftNormal(tangent);
    const DVector from = cubic_[0] - sample.point;
    const double c0 = Dot(from, tangent), c1 = Dot(power_.k1, tangent), c2 = Dot(power_.k2, tangent),
                 c3 = Dot(power_.k3, tangent);
    for (int step = 0; step < kProjectionSteps; ++step) {
      const double slope = (3 * c3 * u + 2 * c2) * u + c1;
      if (!(slope > 0)) return {u, 0, 0, false};
      const double move = (((c3 * u + c2) * u + c1) * u + c0) / slope;
      u = std::clamp(u - move, 0.0, 1.0);
      if (std::abs(move) < kProjectionSettled) break;
    }
    const double along = (3 * c3 * u + 2 * c2) * u + c1;
    const double n1 = Dot(power_.k1, normal), n2 = Dot(power_.k2, normal), n3 = Dot(power_.k3, normal);
    return {u, ((n3 * u + n2) * u + n1) * u + Dot(from, normal), ((3 * n3 * u + 2 * n2) * u + n1) / along,
            along > 0};
  }

  static double BetweenSamples(double e0, double m0, double e1, double m1, double h) {
    double worst = 0;
    for (const double f : {0.25, 0.5, 0.75}) {
      const double g = 1 - f;
      const double e = g * g * (1 + 2 * f) * e0 + f * f * (1 + 2 * g) * e1 + f * g * h * (g * m0 - f * m1);
      worst = (std::max)(worst, std::abs(e));
    }
    return worst;
  }

  /// One damped Gauss-Newton step. Returns the largest deviation that the change of the handles can have
  /// made.
  double Step() {
    double aa = 0, ab = 0, bb = 0, ae = 0, be = 0, weights = 0;
    const DVector t0 = Tangent(0), t1 = Tangent(last_);
    for (std::size_t k = 1; k < last_; ++k) {
      const double u = u_[k], v = 1 - u, weight = s_.measure[k + 1] - s_.measure[k - 1];
      const DVector tangent = Tangent(k), normal = LeftNormal(tangent);
      const double ja = 3 * u * v * v * (Dot(t0, normal) - slope_[k] * Dot(t0, tangent));
      const double jb = -3 * u * u * v * (Dot(t1, normal) - slope_[k] * Dot(t1, tangent));
      aa += weight * ja * ja;
      ab += weight * ja * jb;
      bb += weight * jb * jb;
      ae += weight * ja * deviation_[k];
      be += weight * jb * deviation_[k];
      weights += weight;
    }
    const double damping = kFitDamping * weights;
    aa += damping;
    bb += damping;
    const double determinant = aa * bb - ab * ab;
    if (!(determinant > 0)) return 0;
    const double total = s_.measure[last_];
    const double da = (ab * be - bb * ae) / determinant, db = (ab * ae - aa * be) / determinant;
    const double oldA = a_, oldB = b_;
    SetHandles(std::clamp(a_ + da, kShortestHandle * total, 2 * total),
               std::clamp(b_ + db, kShortestHandle * total, 2 * total));
    return std::sqrt((aa * (a_ - oldA) * (a_ - oldA) + 2 * ab * (a_ - oldA) * (b_ - oldB) +
                      bb * (b_ - oldB) * (b_ - oldB)) /
                     weights);
  }

  const ParallelSamples& s_;
  double direction_;
  std::size_t last_;
  double a_ = 0, b_ = 0;
  Cubic4 cubic_;
  PowerForm power_;
  std::array<double, ParallelSamples::kCapacity> u_, deviation_, slope_;
};

double DirectionOfTravel(const ParallelSamples& samples) {
  // The sign in the middle: at the ends the speed may be zero.
  double sum = 0;
  for (std::size_t k = 1; k + 1 < static_cast<std::size_t>(samples.count); ++k) sum += samples.at[k].speed;
  return sum < 0 ? -1.0 : 1.0;
}

}  // namespace

ParallelFit FitParallel(const ParallelCurve& curve, double t0, double t1, double verify,
                        ParallelSamples& samples, double enough) noexcept {
  samples.Build(curve, t0, t1);
  return FitSamples(curve, verify, samples, enough);
}

ParallelFit FitSamples(const ParallelCurve& curve, double verify, const ParallelSamples& samples,
                       double enough) noexcept {
  const double t0 = samples.at[0].t, t1 = samples.at[static_cast<std::size_t>(samples.count - 1)].t;
  if (samples.totalTurn > kFitMaxTurn || !(samples.measure[static_cast<std::size_t>(samples.count - 1)] > 0))
    return {HermiteParallel(curve, t0, t1), kInfinity};
  Fitter fitter(samples, DirectionOfTravel(samples));
  double error = fitter.Solve(enough);
  // Between the samples of a curve without cusps no fit strays by several times what it strays at them.
  const bool hasRoom = error <= enough && curve.IsSurelySmooth();
  if (error <= verify && !hasRoom) error = (std::max)(error, fitter.MeasureBetween(curve));
  return {fitter.Cubic(), error};
}

bool FitPlain(const ParallelCurve& curve, double t0, double t1, double enough, ParallelSamples& samples,
              ParallelFit& fit) noexcept {
  if (!curve.IsSurelySmooth() || !samples.BuildSparse(curve, t0, t1)) return false;
  Fitter fitter(samples, 1.0);
  const double error = fitter.RunsForward() ? fitter.Measure() : kInfinity;
  fit = {fitter.Cubic(), error};
  return error <= enough;
}

std::array<DPoint, 4> HermiteParallel(const ParallelCurve& curve, double t0, double t1) noexcept {
  const ParallelSample from = curve.At(t0), to = curve.At(t1);
  const double third = (t1 - t0) / 3;
  return {from.point, from.point + (from.speed * third) * from.tangent,
          to.point + (-to.speed * third) * to.tangent, to.point};
}

}  // namespace TavMath
