#pragma once
// The constants of validity and repair.

namespace Lumo {

/// Rounds of repair. Mending a handle can bring a neighbour below a limit; a second round is usual then, more
/// are rare, and the bound keeps hostile input from costing more.
inline constexpr int kMaxRepairRounds = 8;

/// Times that the two handles of one Bezier are eased in turn: each turn halves what is left, so that the
/// digits of a double are through before.
inline constexpr int kMaxEaseTurns = 64;

/// Ratio. A handle is eased a little beyond the radius limit, so that rounding does not put it below again.
inline constexpr double kEaseSlack = 1.0 + 1e-6;

/// Document units. An eased integer handle is this much longer still: what rounding may take from it.
inline constexpr double kIntegerEaseSlack = 2.0;

/// Document units. Integer handles are not moved off their node by less: the direction of a shorter one is
/// decided by rounding (an error of up to 2.5 degrees at this length).
inline constexpr double kShortestIntegerHandle = 16.0;

/// Document units. How far the end of an integer handle may lie off its true direction: rounding moves it by
/// up to 0.71, the truncation of smoothing by up to 1.42.
inline constexpr double kIntegerHandleError = 1.5;

/// Ratio. Handles of a symmetric node may differ in length by this share (and by kIntegerHandleError).
inline constexpr double kSymmetricSlack = 1e-3;

/// Ratio to the squared size of a control polygon. Below this a cross product counts as zero: all control
/// points lie on a line.
inline constexpr double kCollinearCross = 1e-12;

/// Parameter. A Bezier is not split nearer to its ends: what is left there is rounding.
inline constexpr double kSplitMargin = 1e-3;

/// Limits of angle (radians) above which, and products of squared lengths (units^4) between which, a turn is
/// compared by cross and dot product: rounding is far below the room between the angle and its tangent.
inline constexpr double kLeastQuickTurn = 1e-3;
inline constexpr double kQuickTurnFrom = 1e-200;
inline constexpr double kQuickTurnTo = 1e200;

}  // namespace Lumo
