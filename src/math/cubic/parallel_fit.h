#pragma once
// One cubic for a stretch of a parallel curve: the ends and the end tangents are exact, the two handle
// lengths make the normal deviation least in the mean square.

#include "math/cubic/parallel_curve.h"

namespace TavMath {

struct ParallelFit {
  std::array<DPoint, 4> cubic;
  /// An upper estimate of the largest normal deviation over the whole stretch; infinite when there is no fit.
  double error;
};

/// Fits [t0, t1]; the speed must not change its sign inside. `samples` holds the stretch's samples
/// afterwards. A fit whose error is within `verify` is measured once more half-way between the samples. An
/// error of `enough` is not made smaller.
ParallelFit FitParallel(const ParallelCurve& curve, double t0, double t1, double verify,
                        ParallelSamples& samples, double enough = 0) noexcept;
/// The same for a stretch whose samples are there already.
ParallelFit FitSamples(const ParallelCurve& curve, double verify, const ParallelSamples& samples,
                       double enough = 0) noexcept;

/// The cubic with the exact end tangents and speeds (third of the end derivatives): what is left to use when
/// subdivision has to stop.
std::array<DPoint, 4> HermiteParallel(const ParallelCurve& curve, double t0, double t1) noexcept;

/// The fit with the speeds at the ends, when a look at few samples shows that it errs by at most `enough`:
/// most pieces of a drawing are done with that. False for others, and where the curve may have a cusp.
bool FitPlain(const ParallelCurve& curve, double t0, double t1, double enough, ParallelSamples& samples,
              ParallelFit& fit) noexcept;

}  // namespace TavMath
