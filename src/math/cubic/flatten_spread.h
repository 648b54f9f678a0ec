#pragma once
// Flattening by spreading chords evenly: all corners at once, every chord checked afterwards.
//
// A short chord over h strays by h^2 |B' x B''| / (8 |B'|). So the integral of the root of |B' x B''| / (8
// tolerance |B'|) is the number of chords, and its equal shares are the corners (R. Levien, "Flattening
// quadratic Beziers", 2019, has this integral in closed form for parabolas). Here it is sampled, in single
// precision: it is an estimate anyway, so each chord is measured, and one that strays too far is shortened.

#include "math/cubic/flatten_chord.h"

namespace TavMath {

/// Writes the corners, the first one included, and returns the number of chords. Returns 0 when the chords
/// are too many for the buffer (which holds capacity + 1 points) or for the samples, or when too many had to
/// be added; the buffer may have been written all the same.
int SpreadLines(const DPoint p[4], const FlattenTolerance& tolerance, DPoint* buffer, int capacity) noexcept;

}  // namespace TavMath
