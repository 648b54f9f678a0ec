#pragma once
// Stretches that two cubics share, found by geometry: it does not matter how either is parametrised.

#include "math/cubic/cubic_pair.h"
#include "math/cubic/piece.h"

namespace TavMath {

/// What is known about a pair before any subdivision.
enum class Sharing {
  no,       ///< no stretch is shared; crossings are still to be found
  stretch,  ///< one is shared: ends[0] and ends[1] are its ends
  contact,  ///< both lie on one line and have the single point ends[0] in common
  apart     ///< both lie on one line and have no point in common
};

/// A shared stretch ends where one of the curves ends, so the ends of each are looked up on the other and the
/// curves between two such contacts compared.
Sharing FindSharedStretch(const CubicPair& pair, const Pieces::Piece& wholeA, const Pieces::Piece& wholeB,
                          Crossing ends[2]) noexcept;

/// The same for two cubics that lie on the line through start along the unit vector axis. `no` when their
/// ranges share a single position at which the curves, each within the noise of the line, do not touch.
Sharing CompareOnLine(const CubicPair& pair, const DPoint& start, const DVector& axis,
                      Crossing ends[2]) noexcept;

}  // namespace TavMath
