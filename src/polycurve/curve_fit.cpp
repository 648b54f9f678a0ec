#include "polycurve/curve_fit.h"

#include <algorithm>
#include <cmath>

#include "polycurve/tolerances.h"
#include "tav/math/angle.h"
#include "tav/math/rect.h"

namespace Lumo {
namespace {

using TavMath::DPoint;
using TavMath::DVector;
using Points = std::vector<DPoint>;

std::size_t At(int i) { return static_cast<std::size_t>(i); }

DVector Unit(const DVector& d) {
  const double length = TavMath::Length(d);
  return length > 0 ? d * (1 / length) : DVector{0, 0};
}

/// A stretch of points with the tangents that its curve leaves and arrives along (both in the direction of
/// travel).
struct Span {
  int first, last;
  DVector start, end;
};

/// The polynomial of degree three or less, over the length along the points first .. last, that passes point
/// `at` and is nearest to the others in the sense of least squares.
class LocalCubic {
 public:
  LocalCubic(const Points& points, int first, int at, int last)
      : points_(points), first_(first), at_(at), last_(last) {
    unit_ = std::max(LengthBetween(first, at), LengthBetween(at, last));
    terms_ = std::min(3, last - first);
    double matrix[3][5] = {};
    ForEach([&](const DVector& offset, const double power[3]) {
      for (int r = 0; r < terms_; ++r) {
        for (int c = 0; c < terms_; ++c) matrix[r][c] += power[r] * power[c];
        matrix[r][3] += power[r] * offset.x;
        matrix[r][4] += power[r] * offset.y;
      }
    });
    Solve(matrix);
    ForEach([&](const DVector& offset, const double power[3]) {
      DVector rest = offset;
      for (int k = 0; k < terms_; ++k) rest = rest - coefficient_[k] * power[k];
      errorSqrd_ = std::max(errorSqrd_, TavMath::LengthSqrd(rest));
    });
  }

  DVector Slope() const { return coefficient_[0]; }
  double ErrorSqrd() const { return errorSqrd_; }

 private:
  double LengthBetween(int from, int to) const {
    double length = 0;
    for (int i = from; i < to; ++i) length += TavMath::Distance(points_[At(i)], points_[At(i + 1)]);
    return length;
  }
  /// Calls visit with every other point's offset from point `at` and the powers of its signed length from
  /// there.
  template <class Visit>
  void ForEach(Visit visit) const {
    for (const int step : {-1, 1}) {
      double length = 0;
      for (int i = at_; i != (step < 0 ? first_ : last_); i += step) {
        length += TavMath::Distance(points_[At(i)], points_[At(i + step)]) / unit_;
        const double s = step * length, power[3] = {s, s * s, s * s * s};
        visit(points_[At(i + step)] - points_[At(at_)], power);
      }
    }
  }
  /// Elimination with pivots; a column without one is left at zero.
  void Solve(double matrix[3][5]) {
    for (int column = 0; column < terms_; ++column) {
      int pivot = column;
      for (int r = column + 1; r < terms_; ++r) {
        if (std::abs(matrix[r][column]) > std::abs(matrix[pivot][column])) pivot = r;
      }
      std::swap_ranges(matrix[column], matrix[column] + 5, matrix[pivot]);
      if (matrix[column][column] == 0) continue;
      for (int r = 0; r < terms_; ++r) {
        if (r == column) continue;
        const double factor = matrix[r][column] / matrix[column][column];
        for (int c = column; c < 5; ++c) matrix[r][c] -= factor * matrix[column][c];
      }
    }
    for (int k = 0; k < terms_; ++k) {
      if (matrix[k][k] != 0) coefficient_[k] = {matrix[k][3] / matrix[k][k], matrix[k][4] / matrix[k][k]};
    }
  }

  const Points& points_;
  int first_, at_, last_;
  int terms_ = 0;
  double unit_ = 1;
  double errorSqrd_ = 0;
  DVector coefficient_[3]{};
};

class CurveFitter {
 public:
  CurveFitter(const Points& points, double tolerance, bool wholeUnits)
      : points_(points),
        toleranceSqrd_(tolerance * tolerance),
        arm_(kFitArm * tolerance),
        wholeUnits_(wholeUnits),
        parameters_(points.size()) {}

  std::vector<FittedPiece> Run() {
    const std::vector<int> corners = FindCorners();
    for (std::size_t k = 0; k + 1 < corners.size(); ++k) {
      low_ = corners[k];
      high_ = corners[k + 1];
      FitStretch();
      pieces_.back().smoothEnd = false;
    }
    return std::move(pieces_);
  }

 private:
  const DPoint& Point(int i) const { return points_[At(i)]; }

  // ---- Tangents and corners ----

  /// A point about an arm's length before or behind point i, at least one step and no farther than `limit`:
  /// found in growing steps, so that a dense stroke costs no more than a sparse one.
  int ArmEnd(int i, int step, int limit) const {
    const auto isFar = [&](int at) { return TavMath::DistanceSqrd(Point(at), Point(i)) >= arm_ * arm_; };
    const int room = std::abs(limit - i);
    int inside = 0, outside = std::min(1, room);
    while (outside < room && !isFar(i + step * outside)) {
      inside = outside;
      outside = outside > room / 2 ? room : 2 * outside;
    }
    while (outside - inside > 1) {
      const int middle = inside + (outside - inside) / 2;
      (isFar(i + step * middle) ? outside : inside) = middle;
    }
    return i + step * outside;
  }

  /// Both ends and every corner in order.
  std::vector<int> FindCorners() const {
    const int last = static_cast<int>(points_.size()) - 1;
    std::vector<int> corners{0};
    double sharpest = 0;
    for (int i = 1; i < last; ++i) {
      const int before = ArmEnd(i, -1, 0), after = ArmEnd(i, 1, last);
      const double turn = TavMath::Degrees::GetFineAngle(Point(i) - Point(before), Point(after) - Point(i));
      if (turn < kFitCornerDegrees) continue;
      // Of the points round one corner the sharpest stands for it.
      const bool sameCorner = corners.back() > 0 && before <= corners.back();
      if (sameCorner && turn <= sharpest) continue;
      if (sameCorner) corners.pop_back();
      corners.push_back(i);
      sharpest = turn;
    }
    corners.push_back(last);
    return corners;
  }

  /// The tangent at point i: that of the cubic polynomial through it which fits the most neighbours, to both
  /// sides but not past a corner, within half the tolerance.
  DVector TangentAt(int i) const {
    DVector tangent = Unit(i == high_ ? Point(i) - Point(i - 1) : Point(i + 1) - Point(i));
    for (int reach = 1;; reach *= 2) {
      const int first = i - low_ > reach ? i - reach : low_, last = high_ - i > reach ? i + reach : high_;
      const LocalCubic local(points_, first, i, last);
      const DVector slope = Unit(local.Slope());
      if (slope != DVector{0, 0} && (reach == 1 || local.ErrorSqrd() <= 0.25 * toleranceSqrd_))
        tangent = slope;
      if (local.ErrorSqrd() > 0.25 * toleranceSqrd_ || (first == low_ && last == high_)) return tangent;
    }
  }

  // ---- Fitting one stretch between corners ----

  /// Piece by piece, each as long as one cubic can be: its length is doubled until the fit fails and then
  /// halved in on, to within a thirty-second.
  void FitStretch() {
    Span whole{low_, high_, {}, {}};
    if (IsStraight(whole)) return pieces_.push_back({{}, {}, high_, true, false});
    Span piece{low_, low_, TangentAt(low_), {}};
    while (piece.first != high_) {
      DPoint best[4]{}, bezier[4]{};
      int fits = piece.first, fails = high_ + 1;
      while (fails - fits > 1 + (fits - piece.first) / kFitLengthShare) {
        const int length = fits - piece.first;
        const int next =
            fails <= high_ ? fits + (fails - fits) / 2 : std::min(fits + std::max(length, 1), high_);
        const Span longer{piece.first, next, piece.start, TangentAt(next)};
        if (!FitSpan(longer, bezier)) {
          fails = next;
          continue;
        }
        fits = next;
        piece.end = longer.end;
        std::copy(bezier, bezier + 4, best);
        if (next == high_) break;
      }
      pieces_.push_back({best[1], best[2], fits, false, fits != high_});
      piece = {fits, fits, piece.end, {}};
    }
  }

  /// A whole stretch between two corners within the tolerance of its chord is a line.
  bool IsStraight(const Span& span) const {
    if (span.first != low_ || span.last != high_) return false;
    const DPoint a = Point(span.first), b = Point(span.last);
    const DVector chord = b - a;
    const double lengthSqrd = TavMath::LengthSqrd(chord);
    double along = 0;
    for (int i = span.first + 1; i < span.last; ++i) {
      const DVector d = Point(i) - a;
      const double dot = TavMath::Dot(d, chord), cross = TavMath::Cross(chord, d);
      // Points that come back along the chord, or pass its end, are no straight stroke.
      if (cross * cross > toleranceSqrd_ * lengthSqrd || dot < along || dot > lengthSqrd) return false;
      along = dot;
    }
    return lengthSqrd > 0;
  }

  /// One cubic for the span; false when it is not near enough to every point.
  bool FitSpan(const Span& span, DPoint bezier[4]) {
    SetChordParameters(span);
    double error = 0;
    for (int round = 0; round <= kFitRounds; ++round) {
      PlaceHandles(span, bezier);
      const double before = error;
      error = FindError(span, bezier);
      if (error <= toleranceSqrd_) return true;
      const bool hopeless = error > kFitHopelessSqrd * toleranceSqrd_;
      if (hopeless || (round > 0 && error > kFitGain * before)) return false;
      ImproveParameters(span, bezier);
    }
    return false;
  }

  void SetChordParameters(const Span& span) {
    double length = 0;
    parameters_[At(span.first)] = 0;
    for (int i = span.first + 1; i <= span.last; ++i) {
      parameters_[At(i)] = length += TavMath::Distance(Point(i - 1), Point(i));
    }
    for (int i = span.first + 1; i <= span.last; ++i) parameters_[At(i)] /= length;
  }

  /// The handle lengths that bring the cubic nearest to the points at their parameters, in the sense of least
  /// squares.
  void PlaceHandles(const Span& span, DPoint bezier[4]) const {
    const DPoint p0 = Point(span.first), p3 = Point(span.last);
    const DVector u = span.start, v = -span.end;
    double uu = 0, uv = 0, vv = 0, ur = 0, vr = 0;
    for (int i = span.first + 1; i < span.last; ++i) {
      const double t = parameters_[At(i)], s = 1 - t;
      const double b1 = 3 * s * s * t, b2 = 3 * s * t * t;
      const DVector rest = Point(i) - TavMath::Lerp(p0, p3, t * t * (3 - 2 * t));
      uu += b1 * b1;
      uv += b1 * b2;
      vv += b2 * b2;
      ur += b1 * TavMath::Dot(u, rest);
      vr += b2 * TavMath::Dot(v, rest);
    }
    uv *= TavMath::Dot(u, v);
    const double determinant = uu * vv - uv * uv, chord = TavMath::Distance(p0, p3);
    double a = (ur * vv - vr * uv) / determinant, b = (vr * uu - ur * uv) / determinant;
    const double most = kFitLongestHandle * chord;
    if (!(determinant > 0 && a > 0 && b > 0 && a < most && b < most)) a = b = chord / 3;
    bezier[0] = p0;
    bezier[1] = Stored(p0 + a * u);
    bezier[2] = Stored(p3 + b * v);
    bezier[3] = p3;
  }

  DPoint Stored(const DPoint& p) const {
    if (!wholeUnits_) return p;
    const tagPOINT rounded = TavMath::RoundPoint(p);
    return {static_cast<double>(rounded.x), static_cast<double>(rounded.y)};
  }

  /// The greatest squared distance of a point from the cubic at its parameter.
  double FindError(const Span& span, const DPoint bezier[4]) const {
    double error = 0;
    for (int i = span.first + 1; i < span.last; ++i) {
      error = std::max(
          error, TavMath::DistanceSqrd(TavMath::CubicBezier::Evaluate(bezier, parameters_[At(i)]), Point(i)));
    }
    return error;
  }

  /// One Newton step for each parameter, towards the foot of its point on the cubic.
  void ImproveParameters(const Span& span, const DPoint bezier[4]) {
    for (int i = span.first + 1; i < span.last; ++i) {
      double& t = parameters_[At(i)];
      const DVector off = TavMath::CubicBezier::Evaluate(bezier, t) - Point(i);
      const DVector d1 = TavMath::CubicBezier::Derivative(bezier, t);
      const double slope =
          TavMath::LengthSqrd(d1) + TavMath::Dot(off, TavMath::CubicBezier::SecondDerivative(bezier, t));
      if (slope > 0) t = std::clamp(t - TavMath::Dot(off, d1) / slope, 0.0, 1.0);
    }
  }

  const Points& points_;
  double toleranceSqrd_;
  double arm_;
  bool wholeUnits_;
  std::vector<double> parameters_;  ///< of each point on the cubic of its span
  std::vector<FittedPiece> pieces_;
  int low_ = 0, high_ = 0;  ///< the corners round the stretch
};

}  // namespace

std::vector<FittedPiece> FitCurve(const Points& points, double tolerance, bool wholeUnits) {
  if (points.size() < 2) return {};
  return CurveFitter(points, tolerance, wholeUnits).Run();
}

}  // namespace Lumo
