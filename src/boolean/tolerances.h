#pragma once
#include <cstddef>

// Lengths of the Boolean engine. The engine works in a frame in which the largest coordinate of the drawing
// lies in (1/2, 1], reached by a power of two; so every length here is relative to the drawing and a drawing
// scaled by a power of two gives the same result.

namespace Lumo::Planar {

/// Computed crossings are rounded to multiples of this. Doubles carry 2^-53 here and a transversal crossing
/// comes out within a few of those; 2^-36 leaves room for shallow crossings and is still far below anything
/// drawn.
inline constexpr double kGrid = 0x1p-36;
/// Places closer than this are one place: two vertices become one, an end that close to an arc lies on it.
/// Several grid steps, so that rounding to the grid never separates what belongs together.
inline constexpr double kContact = 0x1p-33;
/// A cubic arc that keeps this close to its chord is crossed as a line: far below the contact distance, above
/// rounding.
inline constexpr double kStraight = 0x1p-40;
/// Handles shorter than this have no direction of their own: rounding of the cuts made them.
inline constexpr double kHandle = 0x1p-44;
/// An attempt whose edges do not form a plane map (a crossing fell between tolerances) is repeated in other
/// ways, and then with tolerances this many times larger.
inline constexpr double kRetryFactor = 0x1p4;
/// How many contact distances are tried: up to 2^-33 * 2^20 = 2^-13 of the drawing's size, a tenth of a pixel
/// on a screen. Only hundreds of copies shifted by next to nothing come as far.
inline constexpr int kContactLevels = 6;
/// How often the edges of an attempt are crossed again: moving ends once more settles nearly all.
inline constexpr int kCrossings = 2;
/// Up to so many edges are crossed again: where there are more, most of them run side by side.
inline constexpr std::size_t kCrossedAgain = 4096;
/// Edges with common ends are one edge when they stay this many contact distances together: both may have
/// been moved by a contact distance at each end.
inline constexpr double kCoincidentContacts = 4;
/// Parameters of extrema this close to an end of a segment, or to each other, are not split at: a cubic
/// overshoots by less than 6 (1e-6)^2 there, which is below the contact distance.
inline constexpr double kExtremumParameter = 1e-6;
/// Edges shorter than this many contact distances are straight in the map: moving their ends by up to a
/// contact distance each, with the handles, would bend them out of proportion. (The output is cut from the
/// source curve all the same.)
inline constexpr double kStraightContacts = 128;
/// Parameters of nearest points settle to this, a thousandth of the contact distance for the longest arc, in
/// so many steps at most: halvings alone need 44.
inline constexpr double kProjectSettled = 0x1p-44;
inline constexpr int kProjectSteps = 60;
/// A place nearer to a line than this is on it after one more step of Newton's method: each doubles the
/// digits.
inline constexpr double kRootSettled = 0x1p-28;
/// And the step is shorter than this: its square is below the contact distance for a slope that counts as
/// transversal.
inline constexpr double kRootStep = 0x1p-20;
/// The end of a stretch that an arc shares with a line is wanted to this share of the contact distance only.
inline constexpr double kNearShare = 0x1p-6;
/// Sine of the angle from which on a crossing of a line and an arc counts as transversal: an end within the
/// contact distance of the other is then within eight contact distances of the crossing.
inline constexpr double kTransversal = 0x1p-3;
/// What keeps clear of the ends of a line by more contact distances than this needs no look at them: more
/// than the eight of a transversal crossing.
inline constexpr double kClearContacts = 10;
/// Edges at a vertex whose directions differ by less (radians) are ordered by their geometry further out.
/// Larger than the two contact distances by which the ends of a not so short edge may turn it (2/128); larger
/// still only costs time, as both ways agree wherever edges do not cross.
inline constexpr double kTangentialAngle = 0x1p-6;
/// Vertices on one arc nearer than this many contact distances are crowded: moving them by a contact distance
/// may turn the edge between them about, so every arc near them has to pass through them.
inline constexpr double kCrowdedContacts = 4;
/// Sine of the angle between a chord and a tangent above which the chord's end is clearly off the tangent.
inline constexpr double kClearlyOff = 0x1p-6;
/// Rounds of looking for vertices on near arcs: each round may move vertices by a contact distance, seldom
/// twice.
inline constexpr int kAlignRounds = 6;
/// Near arcs looked at when vertices are aligned: so many for each arc and cut, and some more. Only hundreds
/// of copies within a few contact distances reach it; then a larger contact distance takes them for one.
inline constexpr std::size_t kLooks = 64;
inline constexpr std::size_t kLooksMore = 100000;
/// Pairs of sub-arcs examined before a pair of arcs is tested for running on top of one another.
inline constexpr int kStepsBeforeOverlap = 40;
/// Arcs count as running side by side when they are nearer than this fraction of their common length:
/// matching parts by nearest points is sound well beyond that.
inline constexpr double kSideBySide = 0x1p-5;
/// Matching parts compared at most for one pair of arcs; a regular pair takes a few for each halving towards
/// a crossing.
inline constexpr int kMatchLimit = 600;
/// Pairs of sub-arcs examined at most for one pair of arcs; what is left counts as contact. Reached only by
/// arcs that run side by side at a few contact distances.
inline constexpr int kStepLimit = 40000;

}  // namespace Lumo::Planar
