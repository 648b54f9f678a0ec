#pragma once
// The constants of node editing.

namespace Lumo {

/// Document units (a length, not its square). Handles are turned only where the line or chord that gives the
/// direction is longer than this; below it the quotient of lengths means nothing.
inline constexpr double kMinSmoothingLength = 2.220446049250313e-16;

/// Ratio. Fitted handles are at most this many times as long as the stretch they stand for: a cubic's handle
/// is at most twice its arc (the endpoint bound of a quadratic by its mean absolute value), and samples make
/// the arc a little shorter.
inline constexpr double kMaxHandlePerLength = 2.5;

/// Ratio of distances to the length of the stretch. A fit that misses no sample by more is what was split:
/// nothing is left to refine. Rounding of doubles stays a thousand times below.
inline constexpr double kExactFit = 1e-12;

/// Ratio to the length of the stretch. Handles that move by less in a step have settled; where the fit is
/// exact the steps converge quadratically, so that the next one would move them by the square of this.
inline constexpr double kSettledHandle = 1e-6;

/// Steps of refinement of a fit. Fits without residual settle in about five, others improve by less than a
/// percent after ten.
inline constexpr int kMaxFitSteps = 12;

/// Ratio. Below this the determinant of the normal equations (of unit-scaled columns) is rounding.
inline constexpr double kSingularFit = 1e-12;

}  // namespace Lumo
