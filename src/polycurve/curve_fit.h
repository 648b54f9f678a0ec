#pragma once
// Smooth cubics through a row of points.

#include <vector>

#include "tav/math/cubic_bezier.h"

namespace Lumo {

/// One piece of a fitted curve, from the end of the piece before.
struct FittedPiece {
  TavMath::DPoint control1, control2;
  int end;         ///< index of the point that it ends at
  bool line;       ///< straight: the control points mean nothing
  bool smoothEnd;  ///< the next piece leaves along the same tangent
};

/// Fits pieces to the points, which are finite and without equal neighbours, so that none is farther than the
/// tolerance from its piece; every piece begins and ends at a point. A turn sharper than kFitCornerDegrees,
/// measured a few tolerances away to either side, is a corner, and pieces do not run on through it. With
/// wholeUnits the handles lie on whole units. Throws bad_alloc.
///
/// After P. J. Schneider, "An algorithm for automatically fitting digitized curves", Graphics Gems, 1990:
/// least squares for the handle lengths, Newton steps for the parameters. Here the pieces are grown as long
/// as they can be instead of being halved, tangents come from a local polynomial over as many neighbours as
/// it fits, so that jitter does not turn them, and the error is that of the handles as they are stored. O(n
/// log n) on n points.
std::vector<FittedPiece> FitCurve(const std::vector<TavMath::DPoint>& points, double tolerance,
                                  bool wholeUnits);

}  // namespace Lumo
