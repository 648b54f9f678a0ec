#include "math/cubic/arc_length.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "math/gauss_legendre.h"
#include "math/simd.h"
#include "math/tolerances.h"

namespace TavMath {
namespace {

constexpr double kFar = 1e30;  // a root at infinity

double Largest(const DVector& a, const DVector& b, const DVector& c) {
  const auto larger = [](double u, double v) { return u < v ? v : u; };
  return larger(larger(larger(std::abs(a.x), std::abs(a.y)), larger(std::abs(b.x), std::abs(b.y))),
                larger(std::abs(c.x), std::abs(c.y)));
}

/// How small the half axis (in half widths of the piece) of the ellipse through the nearest root may be for a
/// relative error of kLengthError with each of kGaussRules: the worst of 4,000 pairs of roots on and outside
/// of each of 240 ellipses.
constexpr double kReach[] = {7.31, 1.93, 1.36, 1.19, 1.12, 1.081, 1.0425, 1.0187};

/// The least rule measures a step this short, squared, beside the squared distance of the nearest root: the
/// half axis is then twice the distance over the step, above the first of kReach.
constexpr double kShortStepSqrd = 0.05;
/// Rules up to this one (an index into kGaussRules) are not worth shortening.
constexpr int kCheapRule = 2;
/// Every so many steps of an inverse length halve the bracket, whatever the derivatives say.
constexpr int kHalveEvery = 6;

double LesserOf(TwoDoubles v) { return v[0] < v[1] ? v[0] : v[1]; }

/// The rule for a half axis. Found by counting, and its length drives one loop: a tree of branches would be
/// mispredicted more often than it saves nodes.
int RuleFor(double reach) {
  int rule = 0;
  for (int k = 0; k < 7; ++k) rule += reach < kReach[k];
  return rule;
}

}  // namespace

ArcLength::ArcLength(const DVector& c0, const DVector& c1, const DVector& c2) noexcept
    : c0_(c0), c1_(c1), c2_(c2) {
  const double largest = Largest(c0, c1, c2);
  if (!(largest > 1e-60 && largest < 1e60) && largest > 0 && std::isfinite(largest)) {
    int exponent;
    std::frexp(largest, &exponent);
    exponent = std::clamp(exponent, -1000, 1000);
    const double down = std::ldexp(1.0, -exponent);
    scale_ = std::ldexp(1.0, exponent);
    c0_ *= down;
    c1_ *= down;
    c2_ *= down;
  }
  FindRoots();
}

void ArcLength::FindRoots() {
  // c2 t^2 + 2 b t + c0 over the complex numbers; the root of greater magnitude first (no cancellation), the
  // other from the product of the roots.
  const DVector a = c2_, b = 0.5 * c1_, c = c0_;
  const double re = b.x * b.x - b.y * b.y - (a.x * c.x - a.y * c.y);
  const double im = 2 * b.x * b.y - (a.x * c.y + a.y * c.x);
  const double modulus = SquareRoot(re * re + im * im);
  const double main = SquareRoot(0.5 * (modulus + std::abs(re)));
  const double other = main > 0 ? 0.5 * im / main : 0;
  DVector root = re >= 0 ? DVector{main, other} : DVector{other, main};
  if (Dot(b, root) < 0) root = -root;
  const DVector q = -(b + root);
  // Quotients x / y as x conj(y) / |y|^2.
  const auto divide = [](const DVector& x, const DVector& y, double norm) {
    const double inverse = 1 / norm;
    return Root{Dot(x, y) * inverse, std::abs(Cross(y, x)) * inverse};
  };
  const double largest = LengthSqrd(a) + LengthSqrd(b) + LengthSqrd(c), least = 1e-40 * largest;
  const double normA = LengthSqrd(a), normQ = LengthSqrd(q);
  root_[0] = normA > least ? divide(q, a, normA) : Root{kFar, kFar};
  root_[1] = normQ > least ? divide(c, q, normQ) : root_[0];
}

double ArcLength::Gauss(double t0, double t1, int rule) const {
  // z(middle + half u) = e(u) + o(u), even and odd in u: one node and its mirror image share both.
  const double middle = 0.5 * (t0 + t1), half = 0.5 * (t1 - t0);
  const DVector z0 = c0_ + middle * (c1_ + middle * c2_);
  const DVector z1 = half * (c1_ + (2 * middle) * c2_);
  const DVector z2 = (half * half) * c2_;
  TwoDoubles sum = Both(0);
  const GaussStep* step = kGaussSteps + kGaussRules[rule].first;
  for (const GaussStep* end = step + kGaussRules[rule].steps; step != end; ++step) {
    const TwoDoubles u{step->node[0], step->node[1]}, weight{step->weight[0], step->weight[1]};
    const TwoDoubles uu = u * u;
    const TwoDoubles ex = z0.x + uu * z2.x, ey = z0.y + uu * z2.y, ox = u * z1.x, oy = u * z1.y;
    const TwoDoubles px = ex + ox, py = ey + oy, mx = ex - ox, my = ey - oy;
    sum += weight * (SquareRoot(px * px + py * py) + SquareRoot(mx * mx + my * my));
  }
  return half * (sum[0] + sum[1]);
}

double ArcLength::SplitPoint(const Root& root, double t0, double t1) const {
  const double width = t1 - t0, inside = std::min(root.x - t0, t1 - root.x);
  if (inside > 0.125 * width || (inside > 0 && inside > root.y)) return root.x;
  // The root is beside an end: leave a sixteenth to it.
  return root.x - t0 < t1 - root.x ? t0 + width / 16 : t1 - width / 16;
}

TwoDoubles ArcLength::ReachOf(double t0, double t1) const {
  // Both roots side by side.
  const double width = t1 - t0;
  const TwoDoubles x{root_[0].x, root_[1].x}, y{root_[0].y, root_[1].y};
  const TwoDoubles d0 = x - t0, d1 = x - t1, yy = y * y;
  TwoDoubles reach = (SquareRoot(d0 * d0 + yy) + SquareRoot(d1 * d1 + yy)) / Both(width);
  const double shallow = Tolerances::kCuspWidth * width;
  for (int k = 0; k < 2; ++k) {
    // A true cusp at or beyond an end: the speed is a polynomial there up to its sign.
    if (root_[k].y <= shallow && !(d0[k] > shallow && d1[k] < -shallow)) reach[k] = kFar;
  }
  return reach;
}

double ArcLength::OverPiece(double t0, double t1, int& splits, Pieces* pieces) const {
  const TwoDoubles reach = ReachOf(t0, t1);
  const int nearest = reach[1] < reach[0];
  if (reach[nearest] < kReach[7] && splits > 0) {
    const double split = SplitPoint(root_[nearest], t0, t1);
    if (split > t0 && split < t1) {
      --splits;
      const double left = OverPiece(t0, split, splits, pieces);
      return left + OverPiece(split, t1, splits, pieces);
    }
  }
  const int rule = RuleFor(reach[nearest]);
  const double length = Gauss(t0, t1, rule);
  if (pieces != nullptr && pieces->count < Pieces::kCapacity)
    pieces->at[pieces->count++] = {t0, t1, length, rule};
  return length;
}

double ArcLength::Over(double t0, double t1, Pieces* pieces) const noexcept {
  if (!(t0 < t1)) return t0 > t1 ? -Over(t1, t0, pieces) : t0 - t1;
  int splits = Tolerances::kLengthSplits;
  return OverPiece(t0, t1, splits, pieces);
}

inline double ArcLength::GuessIn(const Piece& piece, double wanted) const {
  // The parameter as a function of the length: the quintic with the values, slopes and curvatures at both
  // ends.
  const double l = piece.length, inverseLength = 1 / l, width = piece.t1 - piece.t0;
  const TwoDoubles t{piece.t0, piece.t1};
  const TwoDoubles zx = c0_.x + t * (c1_.x + t * c2_.x), zy = c0_.y + t * (c1_.y + t * c2_.y);
  const TwoDoubles dx = c1_.x + (2 * t) * c2_.x, dy = c1_.y + (2 * t) * c2_.y;
  const TwoDoubles slope = l / SquareRoot(zx * zx + zy * zy), square = slope * slope;
  const TwoDoubles bend = -(zx * dx + zy * dy) * (square * square) * (inverseLength * inverseLength);
  const double u = wanted * inverseLength, v = 1 - u;
  // Hermite's quintic, grouped by end.
  const double uu = u * u, vv = v * v;
  const double value1 = uu * u * (10 - u * (15 - 6 * u));
  const double slope0 = u * vv * v * (1 + 3 * u), slope1 = -v * uu * u * (1 + 3 * v);
  const double bend0 = 0.5 * uu * vv * v, bend1 = 0.5 * vv * uu * u;
  const double guess =
      width * value1 + slope[0] * slope0 + slope[1] * slope1 + bend[0] * bend0 + bend[1] * bend1;
  if (guess > 0 && guess < width) return piece.t0 + guess;
  return piece.t0 + u * width;
}

inline double ArcLength::NearestRootSqrd(double t) const {
  double nearest = kFar;
  for (const Root& r : root_) nearest = std::min(nearest, (r.x - t) * (r.x - t) + r.y * r.y);
  return nearest;
}

inline double ArcLength::Invert(const Piece& piece, double wanted, double tolerance) const {
  double low = piece.t0, high = piece.t1;
  double t = GuessIn(piece, wanted);
  // From the nearer end of the piece; afterwards only the length of each step is measured.
  const bool fromLow = t - low < high - t;
  const double t0 = fromLow ? low : t, t1 = fromLow ? t : high;
  // The part needs fewer nodes than the whole; for the short rules finding out costs more than it saves.
  int partRule = piece.rule;
  if (partRule > kCheapRule) {
    partRule = std::min(partRule, RuleFor(LesserOf(ReachOf(t0, t1))));
  }
  const double part = Gauss(t0, t1, partRule);
  double length = fromLow ? part : piece.length - part;
  for (int step = 0; step < Tolerances::kMaxRootSteps; ++step) {
    const double error = length - wanted;
    if (std::abs(error) <= tolerance) return t;
    (error < 0 ? low : high) = t;
    // The series of the inverse function up to the third power of the step.
    const DVector z = c0_ + t * (c1_ + t * c2_), dz = c1_ + (2 * t) * c2_;
    const double inverse = 1 / LengthSqrd(z);
    const double e = -error * SquareRoot(inverse);
    const double first = Dot(z, dz) * inverse;  // s' / s
    const double second = (LengthSqrd(dz) + 2 * Dot(z, c2_)) * inverse - first * first;
    const double ee = e * e, nearest = NearestRootSqrd(t);
    // Far outside of its radius of convergence the series may stand still: there the plain Newton step.
    const bool converges = ee < kShortStepSqrd * nearest;
    double next =
        t + e * (converges ? 1 - 0.5 * e * first + ee * (0.5 * first * first - second * (1.0 / 6)) : 1);
    const bool halve = !(next > low && next < high) || step % kHalveEvery == kHalveEvery - 1;
    if (halve) {
      next = 0.5 * (low + high);
      if (!(next > low && next < high)) return t;
    } else if (ee * ee * ee * ee < Tolerances::kInverseLengthTruncationSqrd * nearest * nearest * nearest) {
      return next;  // the first term left out is about e (e / distance)^3
    }
    const int rule = converges && !halve ? 0 : piece.rule;
    length += Gauss(t, next, rule);
    t = next;
  }
  return t;
}

double ArcLength::ParameterAt(double fraction) const noexcept {
  // Most curves are one piece, which then need not be written and read back.
  const double nearest = LesserOf(ReachOf(0, 1));
  if (nearest >= kReach[7]) {
    const int rule = RuleFor(nearest);
    const double length = Gauss(0, 1, rule);
    if (!(length > 0)) return std::isnan(length) ? length : fraction;
    return Invert({0, 1, length, rule}, fraction * length, Tolerances::kInverseLengthError * length);
  }
  Pieces pieces;
  const double total = Over(0, 1, &pieces);
  if (!(total > 0) || pieces.count == 0) return std::isnan(total) ? total : fraction;
  double wanted = fraction * total;
  int k = 0;
  while (k + 1 < pieces.count && wanted > pieces.at[k].length) wanted -= pieces.at[k++].length;
  const Piece piece = pieces.at[k];
  if (!(wanted > 0)) return piece.t0;
  if (!(wanted < piece.length)) return piece.t1;
  return Invert(piece, wanted, Tolerances::kInverseLengthError * total);
}

}  // namespace TavMath
