#pragma once
// The whole offset of one cubic at once: what GetSegmentsToOffset, FindBezierOffsetCurve and splitting at its
// answers give step by step, without forming the source pieces in between or fitting a piece twice.

#include <vector>

#include "tav/math/cubic_bezier.h"

namespace TavMath {

/// Appends the cubics of the parallel curve in order. With cusps in the offset, the tolerance is multiplied
/// by `cuspShare`: the branches at a cusp touch. False, and nothing appended, when the cubic itself has a
/// cusp or a stretch is beyond fitting: then the steps have to be taken one by one.
bool OffsetCubicPieces(const DPoint bezier[4], double offset, double tolerance, double cuspShare,
                       std::vector<Cubic>& out);

}  // namespace TavMath
