#pragma once
// The constants of pointer queries.

namespace Lumo::Interactive {

/// How far, in document units, a flattened curve may stray from the curve when a segment is picked: below
/// what a pick rectangle of a few pixels can tell apart.
inline constexpr double kPickTolerance = 2.0;
/// Points of a curve that is flattened for picking: a buffer on the stack.
inline constexpr int kPickPoints = 256;
/// Chords of a curve in fill and rectangle tests: a buffer on the stack, and a bound on the cost of one
/// curve.
inline constexpr int kFillPieces = 32;
/// Rows through a path on which a representative inner point is looked for, and after how many rows with a
/// find the widest one is taken.
inline constexpr int kFaceRows = 128;
inline constexpr int kFaceFinds = 8;
/// Crossings of a row that are looked at, the leftmost ones: a buffer on the stack.
inline constexpr int kFaceCrossings = 256;
/// Stretches of a row that are tried, from the widest on, when nodes of the outline lie on the row.
inline constexpr int kFaceTries = 4;

}  // namespace Lumo::Interactive
