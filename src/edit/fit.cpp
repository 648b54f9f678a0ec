// Least squares with the end tangents kept: of the cubic only the two handle lengths are free. Parameters are
// first guessed, then refined. The refinement is a Gauss-Newton iteration on the distances at foot points
// ("tangent distance minimization": Wang, Pottmann, Liu, "Fitting B-spline curves to point clouds by
// curvature-based squared distance minimization", ACM Transactions on Graphics 25, 2006), damped.

#include "edit/fit.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "edit/segment.h"
#include "edit/tolerances.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo {
namespace {

using TavMath::CubicBezier::Evaluate;

/// The stretch of a path between two on-curve nodes, segment by segment.
template <class T>
struct Stretch {
  const T* points;
  const NODETYPE* types;
  int k0;
  int k1;

  /// The node at which the segment after on-curve node i ends.
  int NextEnd(int i) const { return types[i + 1].IsControl() && i + 3 <= k1 ? i + 3 : i + 1; }
  int CountSegments() const {
    int n = 0;
    for (int i = k0; i < k1; i = NextEnd(i)) ++n;
    return n;
  }
  /// The segment after node i as a cubic; a line has its handles at the thirds.
  void Load(int i, DPoint out[4]) const {
    if (NextEnd(i) == i + 3) return LoadCubic(points + i, out);
    out[0] = ToDouble(points[i]);
    out[3] = ToDouble(points[i + 1]);
    out[1] = Lerp(out[0], out[3], 1.0 / 3.0);
    out[2] = Lerp(out[0], out[3], 2.0 / 3.0);
  }
  /// The first of the points from..to (in either order) that differs from `origin`, as a unit vector from
  /// there; zero when there is none.
  DVector DirectionFrom(const DPoint& origin, int from, int to) const {
    const int step = from <= to ? 1 : -1;
    for (int i = from; i != to + step; i += step) {
      const DVector d = ToDouble(points[i]) - origin;
      const double length = Length(d);
      if (length > 0) return d * (1.0 / length);
    }
    return {0, 0};
  }
};

/// A cubic in power form: the iteration evaluates it hundreds of times.
struct Power {
  DVector k3, k2, k1, k0;  ///< k0 as a direction from the origin

  explicit Power(const DPoint cubic[4]) {
    const TavMath::CubicBezier::PowerForm form = TavMath::CubicBezier::ToPowerForm(cubic);
    k3 = form.k3, k2 = form.k2, k1 = form.k1, k0 = TavMath::AsVector(form.k0);
  }
  DVector MissAt(double t, const DPoint& p) const {
    return (t * (t * (t * k3 + k2) + k1)) + (k0 - TavMath::AsVector(p));
  }
  DVector FirstAt(double t) const { return t * (3.0 * t * k3 + 2.0 * k2) + k1; }
  DVector SecondAt(double t) const { return 6.0 * t * k3 + 2.0 * k2; }
};

/// The family of cubics that a fit chooses from, and the choice.
struct Fit {
  DPoint p0, p3;
  DVector t0, t3;       ///< unit directions from p0 and p3 to their handles
  double length;        ///< of the stretch, along its samples
  double a = 0, b = 0;  ///< the handle lengths

  void Write(DPoint cubic[4]) const {
    cubic[0] = p0;
    cubic[1] = p0 + a * t0;
    cubic[2] = p3 + b * t3;
    cubic[3] = p3;
  }
  Power Curve() const {
    DPoint cubic[4];
    Write(cubic);
    return Power(cubic);
  }
  double MaxHandle() const { return kMaxHandlePerLength * length; }
};

/// The normal equations of the two handle lengths.
struct NormalEquations {
  double aa = 0, ab = 0, bb = 0, ya = 0, yb = 0;

  void Add(double fa, double fb, double y) {
    aa += fa * fa;
    ab += fa * fb;
    bb += fb * fb;
    ya += fa * y;
    yb += fb * y;
  }
  /// The least-squares solution in [0, limit] x [0, limit]; false when the equations are singular.
  bool Solve(double limit, double& a, double& b) const {
    const double det = aa * bb - ab * ab;
    if (!(det > kSingularFit * aa * bb)) return false;
    a = (ya * bb - yb * ab) / det;
    b = (yb * aa - ya * ab) / det;
    const bool inside = a >= 0 && b >= 0 && a <= limit && b <= limit;
    if (inside) return true;
    // The quadratic is convex: the best point of the box lies on its boundary. Each edge has a closed form.
    double best = std::numeric_limits<double>::infinity(), bestA = 0, bestB = 0;
    const auto take = [&](double x, double y) {
      const double value = aa * x * x + 2 * ab * x * y + bb * y * y - 2 * (ya * x + yb * y);
      if (value < best) best = value, bestA = x, bestB = y;
    };
    for (const double edge : {0.0, limit}) {
      take(edge, std::clamp((yb - ab * edge) / bb, 0.0, limit));
      take(std::clamp((ya - ab * edge) / aa, 0.0, limit), edge);
    }
    a = bestA;
    b = bestB;
    return std::isfinite(best);
  }
};

template <class T>
void TakeSamples(const Stretch<T>& stretch, FitSamples& samples) {
  const int segments = stretch.CountSegments();
  samples.count = std::min(FitSamples::kPerSegment * segments - 1, FitSamples::kMax);
  const double step = static_cast<double>(segments) / (samples.count + 1);
  DPoint cubic[4];
  int segment = 0, node = stretch.k0;
  stretch.Load(node, cubic);
  for (int k = 0; k < samples.count; ++k) {
    const double at = (k + 1) * step;
    for (; segment + 1 < segments && segment + 1 <= at; ++segment) {
      node = stretch.NextEnd(node);
      stretch.Load(node, cubic);
    }
    samples.at[static_cast<std::size_t>(k)].point = Evaluate(cubic, std::min(at - segment, 1.0));
  }
}

/// Parameters in proportion to the length of the polyline through the samples, which is returned.
double GuessByLength(FitSamples& samples, const DPoint& p0, const DPoint& p3) {
  double length = 0;
  DPoint before = p0;
  for (int k = 0; k < samples.count; ++k) {
    FitSamples::Sample& sample = samples.at[static_cast<std::size_t>(k)];
    length += Distance(before, sample.point);
    before = sample.point;
    sample.t = length;
  }
  length += Distance(before, p3);
  for (int k = 0; k < samples.count && length > 0; ++k) samples.at[static_cast<std::size_t>(k)].t /= length;
  return length;
}

/// Parameters under the assumption that the stretch is one cubic, split: where a cubic is split in the ratio
/// r : s, so are the handles at the split point. False where a handle at an inner node is zero.
template <class T>
bool GuessBySplits(const Stretch<T>& stretch, FitSamples& samples) {
  const int segments = stretch.CountSegments();
  const double step = static_cast<double>(segments) / (samples.count + 1);
  DPoint cubic[4];
  int segment = 0, node = stretch.k0;
  double begin = 0, duration = 1;
  stretch.Load(node, cubic);
  const auto advance = [&] {
    const double in = Distance(cubic[2], cubic[3]);
    node = stretch.NextEnd(node);
    stretch.Load(node, cubic);
    begin += duration;
    duration *= Distance(cubic[0], cubic[1]) / in;
    ++segment;
    return std::isfinite(duration) && duration > 0;
  };
  for (int k = 0; k < samples.count; ++k) {
    const double at = (k + 1) * step;
    while (segment + 1 < segments && segment + 1 <= at)
      if (!advance()) return false;
    samples.at[static_cast<std::size_t>(k)].t = begin + duration * std::min(at - segment, 1.0);
  }
  while (segment + 1 < segments)
    if (!advance()) return false;
  const double total = begin + duration;
  for (int k = 0; k < samples.count; ++k) samples.at[static_cast<std::size_t>(k)].t /= total;
  return std::isfinite(total);
}

/// Least squares at the given parameters. Returns the sum of the squared distances; infinity when singular.
double SolveAtParameters(Fit& fit, const FitSamples& samples) {
  NormalEquations equations;
  double constant = 0;
  for (int k = 0; k < samples.count; ++k) {
    const auto& [point, t] = samples.at[static_cast<std::size_t>(k)];
    const double s = 1 - t, b1 = 3 * s * s * t, b2 = 3 * s * t * t;
    const DPoint base = Lerp(fit.p0, fit.p3, t * t * (3 - 2 * t));
    const DVector missing = point - base;
    equations.Add(b1 * fit.t0.x, b2 * fit.t3.x, missing.x);
    equations.Add(b1 * fit.t0.y, b2 * fit.t3.y, missing.y);
    constant += LengthSqrd(missing);
  }
  if (!equations.Solve(fit.MaxHandle(), fit.a, fit.b)) return std::numeric_limits<double>::infinity();
  const auto& [aa, ab, bb, ya, yb] = equations;
  const double a = fit.a, b = fit.b;
  return std::max(0.0, constant + aa * a * a + 2 * ab * a * b + bb * b * b - 2 * (ya * a + yb * b));
}

/// The distances of all samples from a cubic.
struct Misses {
  double sum = 0;    ///< of the squares
  double worst = 0;  ///< the greatest square
};

/// Moves every parameter to the foot point of its sample (by Newton, from where it is).
Misses FindFootPoints(const Power& curve, FitSamples& samples) {
  constexpr int kNewtonSteps = 2;
  Misses misses;
  for (int k = 0; k < samples.count; ++k) {
    FitSamples::Sample& sample = samples.at[static_cast<std::size_t>(k)];
    DVector miss = curve.MissAt(sample.t, sample.point);
    double best = LengthSqrd(miss);
    for (int step = 0; step < kNewtonSteps; ++step) {
      const DVector d = curve.FirstAt(sample.t);
      const double speed = LengthSqrd(d);
      const double full = speed + Dot(miss, curve.SecondAt(sample.t));
      const double slope = full > 0 ? full : speed;
      if (!(slope > 0)) break;
      const double t = std::clamp(sample.t - Dot(miss, d) / slope, 0.0, 1.0);
      const DVector next = curve.MissAt(t, sample.point);
      const double distance = LengthSqrd(next);
      if (!(distance < best)) break;
      best = distance;
      miss = next;
      sample.t = t;
    }
    misses.sum += best;
    misses.worst = std::max(misses.worst, best);
  }
  return misses;
}

/// Adds to the misses where a cubic that is near its samples strays between two of them: farther from both
/// than any sample is from it, and than the samples about there are from each other, which a bend that they
/// pass over is not.
void AddStrays(const Fit& fit, const FitSamples& samples, Misses& misses) {
  const Power curve = fit.Curve();
  const auto at = [&](int k) -> FitSamples::Sample {
    if (k < 0) return {fit.p0, 0};
    return k < samples.count ? samples.at[static_cast<std::size_t>(k)] : FitSamples::Sample{fit.p3, 1};
  };
  const auto gapSqrd = [&](int k) { return DistanceSqrd(at(k - 1).point, at(k).point); };
  for (int k = 0; k <= samples.count; ++k) {
    const FitSamples::Sample from = at(k - 1), to = at(k);
    const double middle = 0.5 * (from.t + to.t);
    const double strayed =
        std::min(LengthSqrd(curve.MissAt(middle, from.point)), LengthSqrd(curve.MissAt(middle, to.point)));
    if (strayed <= std::max({misses.worst, gapSqrd(k - 1), gapSqrd(k), gapSqrd(k + 1)})) continue;
    misses.sum += strayed - misses.worst;
    misses.worst = strayed;
  }
}

/// One damped Gauss-Newton step on the distances at the foot points.
Fit StepAtFootPoints(const Fit& fit, const Power& curve, const FitSamples& samples, double damping) {
  NormalEquations equations;
  for (int k = 0; k < samples.count; ++k) {
    const auto& [point, t] = samples.at[static_cast<std::size_t>(k)];
    const DVector d = curve.FirstAt(t);
    const double speedSqrd = LengthSqrd(d);
    if (!(speedSqrd > 0)) continue;
    const DVector normal = LeftNormal(d) * (1.0 / std::sqrt(speedSqrd));
    const double s = 1 - t;
    equations.Add(3 * s * s * t * Dot(fit.t0, normal), 3 * s * t * t * Dot(fit.t3, normal),
                  -Dot(curve.MissAt(t, point), normal));
  }
  // Solved for the handles themselves, so that the box of allowed lengths applies.
  const double extra = damping * (equations.aa + equations.bb);
  equations.aa += extra;
  equations.bb += extra;
  equations.ya += equations.aa * fit.a + equations.ab * fit.b;
  equations.yb += equations.ab * fit.a + equations.bb * fit.b;
  Fit next = fit;
  if (!equations.Solve(fit.MaxHandle(), next.a, next.b)) return fit;
  return next;
}

/// Refines a fit until its handles settle. The parameters belong to it on entry and on return.
Misses Refine(Fit& fit, FitSamples& samples) {
  Power curve = fit.Curve();
  Misses misses = FindFootPoints(curve, samples);
  double damping = 1e-6;
  const double exactSqrd = fit.length * fit.length * kExactFit * kExactFit;
  for (int step = 0; step < kMaxFitSteps && misses.worst > exactSqrd; ++step) {
    const Fit next = StepAtFootPoints(fit, curve, samples, damping);
    const double moved = std::max(std::fabs(next.a - fit.a), std::fabs(next.b - fit.b));
    if (!(moved > kSettledHandle * fit.length)) break;
    const Power nextCurve = next.Curve();
    samples.Keep();
    const Misses now = FindFootPoints(nextCurve, samples);
    if (now.sum < misses.sum) {
      fit = next;
      curve = nextCurve;
      misses = now;
      damping *= 0.1;
    } else {
      samples.Restore();
      damping = damping * 100 + 1e-4;
    }
  }
  return misses;
}

/// The better of the two guesses of parameters, solved; false when neither can be.
template <class T>
bool Begin(const Stretch<T>& stretch, Fit& fit, FitSamples& samples) {
  Fit bySplits = fit;
  double sum = std::numeric_limits<double>::infinity();
  if (GuessBySplits(stretch, samples)) {
    sum = SolveAtParameters(bySplits, samples);
    const double exact = kExactFit * fit.length;
    if (sum <= exact * exact * samples.count) {
      fit = bySplits;
      return true;
    }
  }
  GuessByLength(samples, fit.p0, fit.p3);
  if (SolveAtParameters(fit, samples) <= sum) return std::isfinite(fit.a + fit.b) && fit.a + fit.b > 0;
  fit = bySplits;
  return GuessBySplits(stretch, samples) && std::isfinite(sum);
}

}  // namespace

template <class T>
double FitCubic(const T* points, const NODETYPE* types, int k0, int k1, DPoint cubic[4]) {
  const Stretch<T> stretch{points, types, k0, k1};
  FitSamples samples;
  TakeSamples(stretch, samples);
  Fit fit;
  fit.p0 = ToDouble(points[k0]);
  fit.p3 = ToDouble(points[k1]);
  fit.t0 = stretch.DirectionFrom(fit.p0, k0 + 1, k1);
  fit.t3 = stretch.DirectionFrom(fit.p3, k1 - 1, k0);
  fit.length = GuessByLength(samples, fit.p0, fit.p3);
  // The plain answer, which no fit may be worse than.
  Fit thirds = fit;
  thirds.a = thirds.b = Distance(fit.p0, fit.p3) / 3;
  Misses best{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
  if (Begin(stretch, fit, samples)) {
    best = Refine(fit, samples);
    AddStrays(fit, samples, best);
  }
  if (best.worst > kExactFit * kExactFit * fit.length * fit.length) {
    GuessByLength(samples, fit.p0, fit.p3);
    Misses plain = FindFootPoints(thirds.Curve(), samples);
    AddStrays(thirds, samples, plain);
    if (!(best.sum <= plain.sum)) best = plain, fit = thirds;
  }
  fit.Write(cubic);
  return best.worst;
}

template <class T>
double DeviationFromLineSqrd(const T* points, const NODETYPE* types, int k0, int k1) {
  FitSamples samples;
  TakeSamples(Stretch<T>{points, types, k0, k1}, samples);
  const DPoint from = ToDouble(points[k0]);
  const DVector line = ToDouble(points[k1]) - from;
  const double lengthSqrd = LengthSqrd(line);
  double worst = 0;
  for (int k = 0; k < samples.count; ++k) {
    const DVector d = samples.at[static_cast<std::size_t>(k)].point - from;
    const double t = lengthSqrd > 0 ? std::clamp(Dot(d, line) / lengthSqrd, 0.0, 1.0) : 0;
    worst = std::max(worst, LengthSqrd(d - t * line));
  }
  return worst;
}

template double FitCubic<tagPOINT>(const tagPOINT*, const NODETYPE*, int, int, DPoint[4]);
template double FitCubic<DPoint>(const DPoint*, const NODETYPE*, int, int, DPoint[4]);
template double DeviationFromLineSqrd<tagPOINT>(const tagPOINT*, const NODETYPE*, int, int);
template double DeviationFromLineSqrd<DPoint>(const DPoint*, const NODETYPE*, int, int);

}  // namespace Lumo
