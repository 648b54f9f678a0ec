#pragma once
#include <cstddef>

// The constants of offsetting. Lengths are in document units unless a line says otherwise.

namespace Lumo::Offset {

// --- settings
// ------------------------------------------------------------------------------------------------
/// The automatic offset error is a hundredth of the offset, but at least this (units).
inline constexpr double kLeastOffsetError = 100.0;

// --- corners
// -------------------------------------------------------------------------------------------------
/// Degrees to radians as the miter limit has always been converted; the digits decide borderline corners.
inline constexpr double kMiterDegree = 0.01745329251;
/// Limits of the stored miter angle, degrees.
inline constexpr double kLeastMiterAngle = 1.0;
inline constexpr double kGreatestMiterAngle = 179.0;
/// Sine of the turn below which two directions count as parallel: about 0.01 degree.
inline constexpr double kParallelSine = 0.00017;
/// Curvatures (1/unit) of two nearly parallel ends that cancel within this count as one smooth run or one
/// cap.
inline constexpr double kCurvatureMatch = 0.0001;
/// A bisector of two normals with a squared length below this is none: the corner is a reversal.
inline constexpr double kNoBisectorSqrd = 1e-5;
/// Cosine of the opening below which an arc is built in two halves: slightly wider than a right angle.
inline constexpr double kWideArcCosine = -0.001;
/// A miter point farther from the offset ends than this many times the offset is no miter (nearly exact
/// reversals).
inline constexpr double kLongestMiter = 10000.0;

// --- appending
// -----------------------------------------------------------------------------------------------
/// Squared distance (units^2) within which three points count as collinear when lines are appended.
inline constexpr double kAppendCollinearSqrd = 4.0;

// --- one segment
// ---------------------------------------------------------------------------------------------
/// Where a cubic that does not fit is split: at a curvature extremum inside this range of parameters, else
/// half-way.
inline constexpr double kExtremumFrom = 0.05;
inline constexpr double kExtremumTo = 0.95;
/// Squared length (units^2) that the handles of a half must exceed to be offset directly.
inline constexpr double kUsableHandleSqrd = 0.01;
/// Share of the offset error that the pieces of a cubic with a cusp in its offset get: the branches at a cusp
/// touch, and errors as large as elsewhere would let them cross and leave cracks.
inline constexpr double kCuspPrecision = 0.25;
/// Nested splits of one cubic before what is left is offset without a measure of its error.
inline constexpr int kSplitDepth = 16;
/// Splits of one cubic in all; regular ones need a few dozen.
inline constexpr int kMostSplits = 1024;
/// Successive splits at one level; a cubic at the rounding of its coordinates needs some forty.
inline constexpr int kSplitsInARow = 64;

// --- open paths
// ----------------------------------------------------------------------------------------------
/// Places at which a piece of a parallel is asked whether it lies too near to the path: a stretch shorter
/// than the distance between two of them may be passed over.
inline constexpr int kReachLooks = 16;
/// Halvings that tell where it comes too near: to a millionth of the piece.
inline constexpr int kReachHalvings = 16;
/// What runs on past a crossing before it comes too near, in offset errors: branches that cross at more than
/// fifteen degrees have lost an error by then.
inline constexpr double kOvershoot = 4;

// --- connecting
// ----------------------------------------------------------------------------------------------
/// Turn (degrees) up to which two pieces count as running on, and the squared gaps (units^2) that are then,
/// and otherwise, closed by moving both ends to their midpoint.
inline constexpr double kRunsOnDegrees = 2.0;
inline constexpr double kRunsOnGapSqrd = 100000.0;
inline constexpr double kCornerGapSqrd = 250000.0;

// --- dense outlines
// ------------------------------------------------------------------------------------------
/// An outline counts as dense from this many segments on, when the distance exceeds this many mean segment
/// lengths.
inline constexpr double kDenseSegments = 128;
inline constexpr double kDenseReach = 10;
/// Segments of one band.
inline constexpr std::size_t kBandSegments = 8;
/// Share of the offset error by which the chord that closes a pocket may move the result. Where a chord is
/// felt the result is the parallel of a line, which has no error of its own, but ends that are moved together
/// and rounding need room beside it.
inline constexpr double kPocketShare = 0.5;
/// Longest such chord as a share of the distance: what it cuts off is then within half of the distance, so
/// that no hole of the result is filled.
inline constexpr double kPocketReach = 0.5;

// --- results
// -------------------------------------------------------------------------------------------------
/// Segments of closed results that are shorter (units) are rounding: results lie on whole units.
inline constexpr double kShortestSegment = 2.0;
/// Boxes up to this many are compared each with each.
inline constexpr std::size_t kMostBoxesCompared = 32;
/// Outlines made from open subpaths with less area (units^2) are slivers. It does not scale with the
/// distance.
inline constexpr double kSliverArea = 1000000.0;
/// A closed result whose area is below this share of its length times the offset and connection errors is a
/// crack between two pieces, not an offset: its mean width is a quarter of what each of them may be off.
inline constexpr double kCrackShare = 0.125;
/// Up to this share it may still be one, both pieces being off as far as they may, to opposite sides; it is
/// if it comes nearer to the source than the distance less twice those errors.
inline constexpr double kThinShare = 2;
/// Two sides of a thorn are together within this share of the offset error, so that taking it out adds next
/// to nothing to that.
inline constexpr double kThornShare = 0.1;
/// Distance (units) from the line through its neighbours up to which a node is on it.
inline constexpr double kStraightNode = 0.25;
/// Nodes that one line replaces at most, and nodes, ends included, that a closed outline keeps at least.
inline constexpr int kMostDropped = 8;
inline constexpr int kFewestNodes = 4;
/// The sine of the angle below which an outline that turns back at a node has a tip there.
inline constexpr double kThornSine = 0.02;
/// Share of the offset error by which the repair of handles may move a curve: what fitting leaves of it.
inline constexpr double kRepairShare = 0.03;
/// Squared distance (units^2) within which nodes between two lines are taken out of the source before
/// offsetting.
inline constexpr double kSourceCollinearSqrd = 1e-6;

}  // namespace Lumo::Offset
