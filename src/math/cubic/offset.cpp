#include <algorithm>
#include <cmath>
#include <limits>

#include "math/cubic/offset_pieces.h"
#include "math/cubic/parallel_fit.h"
#include "math/tolerances.h"

// Offsetting of one cubic. Method: Hermite ends and two free handle lengths, fitted to the exact parallel
// curve in the mean square of the normal deviation; sixth order in the length of the piece (C. de Boor, K.
// Hoellig, M. Sabin, "High accuracy geometric Hermite interpolation", CAGD 4, 1987, for the order that two
// free handle lengths reach). The deviation is measured along the whole piece, not assumed from where the fit
// was made.

namespace TavMath {

using namespace CubicBezier;
using namespace Tolerances;

namespace {

constexpr double kInfiniteError = std::numeric_limits<double>::infinity();

/// Error as a multiple of the tolerance that a fit must reach: the rest absorbs what the measure between
/// samples may miss.
double Target(const ParallelCurve& curve, double tolerance) {
  return (std::max)(tolerance * kFitSafety, kFitRoundingRelative * curve.Scale());
}

/// Length of a piece, as a fraction of the present one, at which the error would fall from error to target
/// when it falls with the given power of the length.
double Shrink(double error, double target, double power) {
  if (!(error > 0)) return 1;
  return std::isfinite(error) ? std::pow(target / error, 1 / power) : 0.5;
}

/// Where to split a stretch, and the fits of its parts that were found on the way (their error is infinite
/// when they were not).
struct SplitResult {
  double t;
  ParallelFit left;
  ParallelFit right;
};

/// Chooses where to split a stretch that one cubic does not cover: in the middle of the error when two pieces
/// will do, else at the end of about the longest stretch from the start that one cubic covers.
class SplitSearch {
 public:
  SplitSearch(const ParallelCurve& curve, const ParallelSamples& whole, double error, double target) noexcept
      : curve_(curve), whole_(whole), error_(error), target_(target) {}

  SplitResult Find() {
    const double shrink = Shrink(error_, target_, kFitOrder);
    SplitResult result{0, {{}, kInfiniteError}, {{}, kInfiniteError}};
    if (!(shrink > kTwoPieceShrink && InTwo(result))) Prefix(shrink, result);
    return result;
  }

 private:
  ParallelFit Fit(double f0, double f1) {
    return FitParallel(curve_, whole_.AtMeasure(f0), whole_.AtMeasure(f1), target_, scratch_);
  }

  /// Looks for the split at which both sides have the same error, and reports whether both then pass.
  bool InTwo(SplitResult& result) {
    double f = 0.5, low = 0, high = 1;
    bool found = false;
    for (int k = 0; k < kTwoPieceTries && !found; ++k) {
      const ParallelFit leftFit = Fit(0, f), rightFit = Fit(f, 1);
      const double left = leftFit.error, right = rightFit.error;
      const bool even = left <= kEvenErrors * right && right <= kEvenErrors * left;
      if (left <= target_ && right <= target_) {
        result = {whole_.AtMeasure(f), leftFit, rightFit};
        found = true;
      } else if (even) {
        break;  // the better of the two cannot get better without the other getting worse
      }
      (left > right ? high : low) = f;
      // Cost per length is taken as even on each side; the new split halves the total cost.
      const double costLeft = std::pow(left, 1 / kFitOrder), costRight = std::pow(right, 1 / kFitOrder);
      const double half = 0.5 * (costLeft + costRight);
      double next = costLeft > half ? f * half / costLeft : 1 - (1 - f) * half / costRight;
      if (!(next > low && next < high) || k > 1) next = 0.5 * (low + high);
      f = std::clamp(next, low + 0.1 * (high - low), high - 0.1 * (high - low));
    }
    return found;
  }

  void Prefix(double shrink, SplitResult& result) {
    double good = 0, bad = 1, badError = error_, power = kFitOrder;
    double f = std::clamp(shrink, kShortestPrefix, 0.95);
    for (int k = 0; k < kPrefixTries; ++k) {
      const ParallelFit fit = Fit(0, f);
      const double error = fit.error, previous = bad;
      if (error <= target_) {
        good = f;
        result.left = fit;
        if (error > kPrefixFull * target_) break;
      } else {
        if (std::isfinite(error) && std::isfinite(badError) && error < badError)
          power = std::clamp(std::log(badError / error) / std::log(previous / f), 1.0, 8.0);
        bad = f;
        badError = error;
      }
      const double next = f * Shrink(error, kPrefixAim * target_, power);
      f = std::clamp(next, good + 0.1 * (bad - good), bad - 0.1 * (bad - good));
    }
    result.t = whole_.AtMeasure(good > 0 ? good : bad);
  }

  const ParallelCurve& curve_;
  const ParallelSamples& whole_;
  double error_;
  double target_;
  ParallelSamples scratch_;
};

void Translate(const DPoint bezier[4], const DVector& by, DPoint out[4]) {
  for (int k = 0; k < 4; ++k) out[k] = bezier[k] + by;
}

bool IsInside(double t) { return t > 0 && t < 1; }

}  // namespace

bool IsBezierValidForOffset(const DPoint bezier[4], double offset) noexcept {
  const ParallelCurve curve(bezier, offset);
  if (!curve.IsUsable() || curve.Cusps().count > 0) return false;
  ParallelSamples samples;
  samples.Build(curve, 0, 1);
  for (int k = 0; k < samples.count; ++k)
    if (!(samples.at[static_cast<std::size_t>(k)].speed > 0)) return false;
  return samples.totalTurn <= kValidTurn;
}

bool FindBezierOffsetCurve(const DPoint bezier[4], DPoint out[4], double offset, double tolerance,
                           double& split) noexcept {
  split = -1.0;
  const ParallelCurve curve(bezier, offset);
  if (!curve.IsUsable() || !(tolerance >= 0)) return false;
  const CuspList cusps = curve.Cusps();
  if (cusps.count > 0) {
    split = cusps.t[static_cast<std::size_t>(cusps.count / 2)];
    return false;
  }
  if (curve.IsStraight()) {
    Translate(bezier, offset * LeftNormal(curve.At(0).tangent), out);
    return true;
  }
  ParallelSamples samples;
  const double target = Target(curve, tolerance);
  const ParallelFit fit = FitParallel(curve, 0, 1, target, samples);
  if (fit.error <= target) {
    std::copy(fit.cubic.begin(), fit.cubic.end(), out);
    return true;
  }
  const double t = samples.totalTurn > kFitMaxTurn ? samples.AtTurn(0.5)
                                                   : SplitSearch(curve, samples, fit.error, target).Find().t;
  if (IsInside(t)) split = t;
  return false;
}

namespace {

double PolygonLength(const Cubic& c) {
  return Distance(c[0], c[1]) + Distance(c[1], c[2]) + Distance(c[2], c[3]);
}

/// Appends a piece without cusps, divided where it turns by more than one cubic is tried for. Pieces of
/// `least` length or less are rounding noise without a direction and left out.
void AddByTurn(const Cubic& piece, double offset, double least, std::vector<Cubic>& pieces) {
  const ParallelCurve curve(piece.data(), offset);
  if (!curve.IsUsable() || curve.PolygonLength() <= least) return;
  ParallelSamples samples;
  samples.Build(curve, 0, 1);
  const int parts = curve.IsStraight() ? 1 : 1 + static_cast<int>(samples.totalTurn / kFitMaxTurn);
  double start = 0;
  for (int part = 1; part <= parts; ++part) {
    const double end = part == parts ? 1.0 : samples.AtTurn(static_cast<double>(part) / parts);
    if (!(start < end)) continue;
    Cubic& out = pieces.emplace_back(piece);
    if (parts > 1) Subsection(start, end, piece.data(), out.data());
    if (PolygonLength(out) <= least) pieces.pop_back();
    start = end;
  }
}

}  // namespace

void GetSegmentsToOffset(const DPoint bezier[4], std::vector<Cubic>& pieces, double offset) {
  pieces.clear();
  const ParallelCurve curve(bezier, offset);
  if (!curve.IsUsable()) return;
  const CuspList cusps = curve.Cusps(), source = curve.SourceCusps();
  double from = 0;
  for (int k = 0; k <= cusps.count; ++k) {
    const double to = k < cusps.count ? cusps.t[static_cast<std::size_t>(k)] : 1.0;
    if (!(from < to)) continue;
    Cubic piece;
    Subsection(from, to, curve.Source(), piece.data());
    // At a cusp of the source the handle of the piece is zero; its rounding must not pass for a direction.
    if (source.Contains(from)) piece[1] = piece[0];
    if (source.Contains(to)) piece[2] = piece[3];
    AddByTurn(piece, offset, curve.Noise(), pieces);
    from = to;
  }
}

namespace {

/// Fits a parallel curve stretch by stretch, on the parameters of the one source.
class PieceFitter {
 public:
  PieceFitter(const ParallelCurve& curve, double target, std::vector<Cubic>& out)
      : curve_(curve), target_(target), out_(out) {}

  bool Stretch(double from, double to) {
    ParallelFit plain;
    if (FitPlain(curve_, from, to, kFitPlain * target_, samples_, plain)) return Add(plain);
    samples_.Build(curve_, from, to);
    const int parts = 1 + static_cast<int>(samples_.totalTurn / kFitMaxTurn);
    if (parts == 1) {
      const ParallelFit fit = FitSamples(curve_, target_, samples_, kFitEnough * target_);
      return fit.error <= target_ ? Add(fit) : Part(from, to, 0);
    }
    std::vector<double> ends;
    for (int k = 1; k < parts; ++k) ends.push_back(samples_.AtTurn(static_cast<double>(k) / parts));
    ends.push_back(to);
    for (const double end : ends) {
      if (end > from && !Part(from, end, 0)) return false;
      from = end;
    }
    return true;
  }

 private:
  bool Part(double from, double to, int depth) {
    for (int k = 0; k < kPieceSplits; ++k) {
      const ParallelFit fit = FitParallel(curve_, from, to, target_, samples_, kFitEnough * target_);
      if (fit.error <= target_) return Add(fit);
      if (depth > kPieceDepth) return false;
      SplitResult split;
      if (samples_.totalTurn > kFitMaxTurn)
        split = {samples_.AtTurn(0.5), {{}, kInfiniteError}, {{}, kInfiniteError}};
      else
        split = SplitSearch(curve_, samples_, fit.error, target_).Find();
      if (!(split.t > from && split.t < to)) return false;
      if (!(split.left.error <= target_ ? Add(split.left) : Part(from, split.t, depth + 1))) return false;
      if (split.right.error <= target_) return Add(split.right);
      from = split.t;
    }
    return false;
  }

  bool Add(const ParallelFit& fit) {
    out_.push_back(fit.cubic);
    return true;
  }

  const ParallelCurve& curve_;
  double target_;
  std::vector<Cubic>& out_;
  ParallelSamples samples_;
};

}  // namespace

bool OffsetCubicPieces(const DPoint bezier[4], double offset, double tolerance, double cuspShare,
                       std::vector<Cubic>& out) {
  const ParallelCurve curve(bezier, offset);
  if (!curve.IsUsable() || !(tolerance >= 0)) return false;
  if (!curve.IsSurelySmooth() && curve.SourceCusps().count > 0) return false;
  if (curve.IsStraight()) {
    Translate(bezier, offset * LeftNormal(curve.At(0).tangent), out.emplace_back().data());
    return true;
  }
  CuspList cusps;
  if (!curve.IsSurelySmooth()) cusps = curve.Cusps();
  const std::size_t before = out.size();
  PieceFitter fitter(curve, Target(curve, cusps.count > 0 ? cuspShare * tolerance : tolerance), out);
  double from = 0;
  for (int k = 0; k <= cusps.count; ++k) {
    const double to = k < cusps.count ? cusps.t[static_cast<std::size_t>(k)] : 1.0;
    if (from < to && !fitter.Stretch(from, to)) {
      out.resize(before);
      return false;
    }
    from = to;
  }
  return true;
}

}  // namespace TavMath
