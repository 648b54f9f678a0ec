#pragma once
// Named constants of src/polycurve.

namespace Lumo {

/// LineTo with merging: squared distance (document units squared) of the middle point from the line, and
/// squared length of a side, below which a new line lengthens the last one. About 3.16 units, far below a
/// pixel at any zoom.
inline constexpr double kMergeLineToleranceSqrd = 10.0;

/// Squared distance (units squared) up to which a point counts as hitting a vertex in a fill test: the eight
/// integer neighbours of a vertex, and the vertex itself.
inline constexpr double kVertexHitSqrd = 2.0;

/// Squared lengths between these are rooted directly; outside them squaring may have lost digits.
inline constexpr double kPlainRootMin = 1e-280;
inline constexpr double kPlainRootMax = 1e280;

/// Relative slack of the bound beyond which a box counts as too far away: more than the rounding of a squared
/// distance, so that no box that holds the nearest point is ever passed over.
inline constexpr double kBoundRounding = 1e-12;

/// Squared distances that differ by less than this share count as equally near: what solving a cubic rounds.
inline constexpr double kEquallyNear = 1e-12;

/// Angles (radians) that differ by no more are one: the end of a full turn, a quarter boundary, a piece of no
/// width.
inline constexpr double kAngleRounding = 2.220446049250313e-16;
/// A turn may exceed two pi by this much (radians) before it is reduced: the start plus two pi is rounded.
inline constexpr double kFullTurnSlack = 1e-12;
/// Sine of the angle at a point below which three points count as collinear, and no circle is drawn through
/// them: its radius would be a trillion times their distance.
inline constexpr double kCollinearSine = 1e-12;

/// GetPolyline never works to less than this share of a curve's size, never into more pieces than this and
/// never on curves larger than this: finer lines only cost room.
inline constexpr double kFinestFlattening = 1e-8;
inline constexpr double kMostFlattened = 1e150;
inline constexpr int kMaxFlattenPieces = 1 << 16;

/// A share of the whole length within which a division point counts as standing on a node: dividing a path
/// again adds nothing.
inline constexpr double kOnNodeShare = 1e-9;

// Fitting curves to points.

/// A turn of more degrees than this is a corner: more than two neighbours of a regular hexagon, so that a
/// circle of as few as seven points is still round.
inline constexpr double kFitCornerDegrees = 60;
/// Tolerances away at which corners are measured: beyond the jitter that the tolerance allows for.
inline constexpr double kFitArm = 3;
/// Rounds of parameter improvement for one cubic, and the share of the squared error that a round must leave
/// at most for another to be tried.
inline constexpr int kFitRounds = 12;
inline constexpr double kFitGain = 0.95;
/// The longest piece is sought to within one part in this many of its length.
inline constexpr int kFitLengthShare = 32;
/// Squared errors beyond this many squared tolerances are not worth a round: a shorter piece is tried at
/// once.
inline constexpr double kFitHopelessSqrd = 64;
/// A handle longer than this many chords would make a loop; the fit then falls back to a third of the chord.
inline constexpr double kFitLongestHandle = 3;

/// A crossing whose parameter is within this of an end of its segment is at the node there: breaking next to
/// a node would only leave a sliver.
inline constexpr double kCutAtNode = 1e-9;

/// Squared distance (units squared) by which rounding moves a node of an integer path at most: a node this
/// close to a segment was put on it, and lines whose ends are this close run together.
inline constexpr double kRoundedNodeSqrd = 0.5;
/// Squared distance (units squared) from such a node within which a crossing is the same meeting.
inline constexpr double kBesideEndSqrd = 4.0;

/// Two lines whose directions differ by less than this sine may share a stretch: the quotient that gives
/// their crossing says nothing then, and they are compared as curves, which finds the ends of the stretch.
inline constexpr double kParallelLines = 1e-9;

}  // namespace Lumo
