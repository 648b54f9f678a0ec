#pragma once
// Every tolerance of the cubic primitives, with its unit and its reason. Values are relative unless a unit is
// named.

#include <limits>

namespace TavMath::Tolerances {

/// The distance from 1 to the next double: twice the relative error of one rounding.
inline constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

// --- roots ---
/// A Bernstein polynomial whose coefficients over a piece are all below this share of the largest original
/// coefficient is indistinguishable from zero there: forming and subdividing the coefficients costs a few
/// roundings each. Such a piece counts as one multiple root.
inline constexpr double kRootNoise = 16 * kEpsilon;
/// Halvings before a piece with several sign changes counts as one multiple root: its width is then below one
/// rounding of the parameter.
inline constexpr int kMaxRootDepth = 52;
/// Steps of one bracketed search; bisection alone would need 53 to reach the last bit, each wasted Newton
/// step costs one more.
inline constexpr int kMaxRootSteps = 120;

// --- length ---
/// Relative error of one quadrature rule at the ellipse where the next smaller rule takes over. Ten times
/// better than the 1e-9 that is promised.
inline constexpr double kLengthError = 1e-10;
/// A root of the derivative whose imaginary part is below this share of the piece is a cusp: its rounding off
/// changes the length by the square of this, times a logarithm.
inline constexpr double kCuspWidth = 1e-6;
/// Splits of one curve. Grading towards a root by sixteenths reaches kCuspWidth after five; two roots with
/// two sides each and the splits at the roots need 22.
inline constexpr int kLengthSplits = 48;
/// Share of the whole length to which an inverse length is solved; below what the quadrature promises.
inline constexpr double kInverseLengthError = 1e-12;

/// A last step of the inverse length is taken unmeasured when the first term that its series leaves out is
/// below the root of this, in parameter units; the distance to the nearest root of the derivative is the
/// radius of convergence.
inline constexpr double kInverseLengthTruncationSqrd = 1e-21;

// --- closest point ---
/// Two distances tie when they differ by less than this share of the farthest control point's distance: an
/// evaluated point is off by a few roundings of that size.
inline constexpr double kClosestTie = 1e-12;
/// The last Newton step of the search for a minimum, in units of the piece: its error is of the order of the
/// square of this, and the distance, being stationary there, errs by the square of that.
inline constexpr double kClosestParameter = 1e-8;
/// A root of the distance's slope counts as multiple when its derivative, over the piece, is below this share
/// of the slope at the piece's ends. Ratio.
inline constexpr double kFlatRootSlope = 1e-6;
/// Parameter. How far from the quintic's root a multiple root is looked for: beyond what rounding can hide,
/// 1e-5 at a cusp (a triple root) and 1e-3 where the query lies on a point of no speed (a fivefold one).
inline constexpr double kFlatRootReach = 3e-3;
/// Halvings before a piece in which the distance may still turn several times gives its middle: all its
/// points are then nearer to each other than their distances can be told apart.
inline constexpr int kClosestDepth = 44;
/// Between these distances of the farthest control point the squares of the search keep all their digits.
inline constexpr double kLargestReach = 1e140, kLeastReach = 1e-140;
/// Pieces looked at in one search; a quintic has at most five roots, so that no more than two pieces of a
/// level hold several, and only rounding could make more.
inline constexpr int kMaxClosestPieces = 512;
/// Two nearest points of one minimum that was found twice are this close in parameter.
inline constexpr double kClosestSameParameter = 1e-7;

// --- extrema ---
/// Squared coordinate differences within these limits may be squared again without overflow or underflow;
/// others take the way that scales first.
inline constexpr double kLargeSqrd = 1e150, kSmallSqrd = 1e-130;

// --- flattening ---
/// Attempts at one chord. The closed form needs one or two; beyond the first few they halve.
inline constexpr int kMaxFlattenAttempts = 60;
/// Times the tolerance is raised when the caller's room does not suffice, before equal parameter steps take
/// over.
inline constexpr int kMaxCoarsenings = 8;

// --- curvature, tangents ---
/// A derivative shorter than this share of the control polygon's longest leg counts as vanished: the
/// direction of anything shorter is rounding noise.
inline constexpr double kVanishedDerivative = 8 * kEpsilon;
/// The same beside the largest coefficient of the power form, whose derivative at 1 is a sum of all three.
inline constexpr double kVanishedPowerDerivative = 16 * kEpsilon;
/// The condition for a curvature extremum, beside the fourth power of the longest leg, below which it is the
/// rounding of its terms: the cubic is straight.
inline constexpr double kStraightNoise = 64 * kEpsilon;

// --- crossings
// ---------------------------------------------------------------------------------------------------
// Lengths are shares of the pair's size: the greater extent of the box of both curves.

/// Points of two curves this close are in contact: some fifty roundings of an evaluated point. A tangency
/// whose true gap is zero is found in spite of them, two crossings that a wider lens separates stay two.
inline constexpr double kContactGap = 2e-14;
/// The most that a parameter may lie outside a piece and still count as on it, where the curve is so slow
/// that kContactGap would allow more.
inline constexpr double kEndWindow = 1e-3;
/// Contacts found twice, from two neighbouring pieces, agree this well in both parameters.
inline constexpr double kSameParameter = 1e-9;
/// Contacts farther apart than this are never looked at for merging, and pieces longer than this are never
/// taken for one contact: a contact of order three stays within kContactGap over some 1e-4.
inline constexpr double kMergeReach = 1e-3;
/// Feet of one point on one curve that are this close in parameter are the same foot.
inline constexpr double kMergeWindow = 1e-3;
/// Pieces narrower than this in both parameters are not divided further: two tangents that agree over less
/// are equal up to the rounding of their curves.
inline constexpr double kNarrowestPiece = 0x1p-26;
/// A Newton step shorter than this is the last one: what is left is of the order of its square, below one
/// rounding.
inline constexpr double kLastNewtonStep = 1e-9;
/// Piece pairs that one call may examine; a pair of cubics needs ten on average, nearly equal ones some
/// hundred.
inline constexpr int kMaxPiecePairs = 4096;
/// Pairs that stay open before lenses are looked for: most crossings are isolated sooner, by halving alone.
inline constexpr int kUnsettledBeforeLens = 8;
/// Pairs that stay open before they are compared side by side, which costs more than halving: only curves
/// that nearly coincide get there.
inline constexpr int kUnsettledBeforeSideBySide = 24;
/// Two curves share a stretch when they stay this close along it: twice the noise, a millionth of the size,
/// that drawings carry after a round trip through a file.
inline constexpr double kSharedNoise = 2e-6;
/// ... and when the gap is small against the fourth power of the stretch's length, which tells a stretch from
/// a tangency of high order.
inline constexpr double kSharedShare = 5e-3;
/// A stretch shorter than this is a tangency.
inline constexpr double kShortestStretch = 1e-3;

// --- offset of one cubic
// -------------------------------------------------------------------------------------
/// Coordinates and distances from here on are refused: the sixth powers of the cusp test would overflow.
inline constexpr double kLargestOffsetSize = 1e50;
/// Control points this near to one line, as a share of the control polygon: the offset is a translation.
inline constexpr double kStraightCubicRelative = 1e-14;
/// Plus what the rounding of the coordinates themselves may have moved them, as a share of the coordinates.
inline constexpr double kCoordinateRounding = 4 * kEpsilon;
/// A derivative below this share of the control polygon inside the curve is a cusp of the source: the tip
/// that a slightly faster curve would round off has about the square of this share, too little for the
/// rounding of the pieces' coordinates to leave it a direction.
inline constexpr double kStalledSpeedRelative = 1e-5;
/// A derivative below this share has no turning rate of its own; its limit is taken.
inline constexpr double kTurningRateRelative = 1e-12;
/// Cusps nearer than this parameter distance to an end are the end: a piece that was cut at a cusp has it
/// there.
inline constexpr double kCuspMargin = 1e-9;
/// Around a cusp of the source, where the speed is as good as zero, its sign means nothing; a stretch that is
/// skipped there has about the square of this share of the size.
inline constexpr double kSourceCuspMargin = 1e-4;
inline constexpr int kBisectionSteps = 100;
/// A handle shorter than this share of the control polygon, plus this share of the coordinates, counts as
/// zero: its direction is rounding noise, and the parallel curve would be the distance times that uncertain.
inline constexpr double kShortestHandleRelative = 1e-8;
inline constexpr double kShortestHandleRounding = 256 * kEpsilon;
/// A piece between cusps that is shorter than this share of the control polygon, plus this share of the
/// coordinates, is rounding noise and left out.
inline constexpr double kShortestPieceRelative = 1e-11;
inline constexpr double kShortestPieceRounding = 64 * kEpsilon;
/// Squared lengths between these need no guard against underflow and overflow.
inline constexpr double kSquaresFrom = 1e-200;
inline constexpr double kSquaresTo = 1e200;
/// Samples of a stretch: uniform intervals, halved while the tangent turns by more than kSampleTurn (radians,
/// about 14 degrees) between neighbours, or they are farther apart than kSampleShare of the length, or their
/// distance differs from what their speeds say by more than kSampleHidden of it, at most kSampleDepth times.
inline constexpr int kSampleIntervals = 8;
inline constexpr double kSampleTurn = 0.25;
inline constexpr double kSampleShare = 0.15;
inline constexpr double kSampleHidden = 0.01;
inline constexpr int kSampleDepth = 40;
/// Halvings for the sake of speeds: a tighter bend, at a tip, has speeds of rounding noise.
inline constexpr int kHiddenDepth = 8;
/// Samples for a first look at a surely smooth stretch: uniform intervals, between which it turns by a sine
/// of at most kSparseSine (about 29 degrees), does not run farther than kSparseShare of the length, and no
/// farther or less far than the speeds say by more than kSparseHidden of it.
inline constexpr int kSparseIntervals = 4;
inline constexpr double kSparseSine = 0.48;
inline constexpr double kSparseShare = 0.35;
inline constexpr double kSparseHidden = 0.06;
/// The unsigned turn (radians, 180 degrees) above which one cubic is not tried.
inline constexpr double kFitMaxTurn = 3.1415926535897932;
/// Square of the length below which the sum of two opposite unit tangents is taken for zero: it has no
/// direction.
inline constexpr double kHalfTurnSqrd = 0x1p-40;
/// The unsigned turn of a piece that counts as valid for offsetting: 90 degrees and rounding.
inline constexpr double kValidTurn = 1.5707963267948966 + 1e-9;
/// Share of the tolerance that the measured error may use; the measure between samples is an interpolation.
inline constexpr double kFitSafety = 0.97;
/// No fit is better than the rounding of its coordinates, as a share of the size.
inline constexpr double kFitRoundingRelative = 1e-13;
/// Gauss-Newton steps; four are usual.
inline constexpr int kFitIterations = 10;
/// A fit that is to be within a tolerance, and not the best one, is good enough at this share of it: most
/// pieces of a drawing then need no step at all.
inline constexpr double kFitEnough = 0.2;
/// Share of the tolerance below which the fit by the end speeds needs no closer look than at few samples:
/// what these miss is by far less than what is left to kFitEnough.
inline constexpr double kFitPlain = 0.95 * kFitEnough;
/// The handles have settled when the last step moved the curve by less than this share of its error.
inline constexpr double kFitSettled = 0.1;
/// Damping against the mean square sensitivity (at most 0.2): handles along the curve have no effect on it,
/// then the starting value stays.
inline constexpr double kFitDamping = 1e-16;
/// Shortest handle as a share of the length, so that the end tangent stays defined.
inline constexpr double kShortestHandle = 1e-6;
inline constexpr int kProjectionSteps = 6;
inline constexpr double kProjectionSettled = 1e-4;
/// The error falls with this power of the length of a piece.
inline constexpr double kFitOrder = 6.0;
/// Two pieces are tried when the error suggests that a piece of this share of the length would do.
inline constexpr double kTwoPieceShrink = 0.4;
inline constexpr int kTwoPieceTries = 7;
/// The errors of two pieces count as even within this factor.
inline constexpr double kEvenErrors = 2.0;
/// Search for the longest prefix: tries, where in the tolerance it aims, and what is full enough.
inline constexpr int kPrefixTries = 8;
inline constexpr double kPrefixAim = 0.92;
inline constexpr double kPrefixFull = 0.8;
inline constexpr double kShortestPrefix = 0.02;
/// Successive and nested splits of one stretch before its fit is given up.
inline constexpr int kPieceSplits = 64;
inline constexpr int kPieceDepth = 16;

}  // namespace TavMath::Tolerances
