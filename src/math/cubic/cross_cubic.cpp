// Crossings of two cubics: both are halved in turn; a pair of pieces is dropped when it is apart for certain,
// solved by Newton's method when it crosses at most once for certain, and treated as a lens (its point of
// equal tangents sought) when it crosses at most twice for certain. Separation: T. W. Sederberg and T.
// Nishita, "Curve intersection using Bezier clipping", Computer-Aided Design 22, 1990; disjoint tangent
// cones: T. W. Sederberg and R. J. Meyers, "Loop detection in surface patch intersections", Computer Aided
// Geometric Design 5, 1988.

#include <algorithm>
#include <cmath>

#include "math/cubic/contact_list.h"
#include "math/cubic/cubic_pair.h"
#include "math/cubic/overlap.h"
#include "math/cubic/piece.h"
#include "math/tolerances.h"

namespace TavMath {
namespace {

using namespace Tolerances;
using CubicBezier::ClosestPointsOnBezier;
using CubicBezier::FindClosestPointsOnBezier;
using Pieces::Bend;
using Pieces::Piece;

struct PiecePair {
  Piece a, b;
};

/// How far outside its piece a parameter may lie and still be the piece's: the contact distance along the
/// curve.
double Slack(const DVector& derivative) {
  const double speed = std::abs(derivative.x) + std::abs(derivative.y);
  return speed * kEndWindow > kContactGap ? kContactGap / speed : kEndWindow;
}

bool IsWithin(double t, const Piece& piece, double slack) {
  return t >= piece.from - slack && t <= piece.to + slack;
}

class Isolator {
 public:
  explicit Isolator(const CubicPair& pair) : pair_(pair), contacts_(pair) {}

  void Run(const Piece& wholeA, const Piece& wholeB, Crossings& out) {
    AddCommonEnds();
    stack_[0] = {wholeA, wholeB};
    top_ = 1;
    int budget = kMaxPiecePairs;
    while (top_ > 0) {
      const PiecePair& current = stack_[top_ - 1];
      const Outcome outcome = Settle(current);
      if (outcome == Outcome::divided) continue;
      if (outcome == Outcome::done) {
        --top_;
      } else if (--budget <= 0 || IsNarrow(current) || top_ == kRoom) {
        FindNearest(current);
        --top_;
      } else {
        Divide(stack_[top_ - 1]);
      }
    }
    contacts_.Finish(out);
  }

 private:
  static constexpr int kRoom = 160;

  void AddCommonEnds() {
    for (int i = 0; i < 2; ++i) {
      for (int j = 0; j < 2; ++j) {
        common_[i][j] = pair_.a[3 * i] == pair_.b[3 * j];
        if (!common_[i][j]) continue;
        anyCommon_ = true;
        contacts_.Add(i, j, ContactKind::commonEnd);
      }
    }
  }

  /// The pieces hold a common end of the curves and meet nowhere else.
  bool IsSettledAtCommonEnd(const PiecePair& c) const {
    for (int i = 0; i < 2; ++i) {
      if ((i == 0 ? c.a.from : c.a.to) != i) continue;
      for (int j = 0; j < 2; ++j) {
        if (!common_[i][j] || (j == 0 ? c.b.from : c.b.to) != j) continue;
        if (Pieces::MeetOnlyAtVertex(c.a, 3 * i, c.b, 3 * j)) return true;
      }
    }
    return false;
  }

  static bool IsNarrow(const PiecePair& c) {
    return (c.a.to - c.a.from <= kNarrowestPiece && c.b.to - c.b.from <= kNarrowestPiece) ||
           (c.a.Extent() <= kContactGap && c.b.Extent() <= kContactGap);
  }

  enum class Outcome {
    open,    ///< the pair must be looked at more closely
    done,    ///< nothing is left to do for it
    divided  ///< its parts have taken its place
  };

  /// Looks at a pair that is not apart.
  Outcome Settle(const PiecePair& c) {
    if (anyCommon_ && IsSettledAtCommonEnd(c)) return Outcome::done;
    const bool once = Pieces::CrossAtMostOnce(c.a, c.b);
    Outcome outcome = Outcome::open;
    if (once) {
      outcome = FindOnlyCrossing(c);
    } else if (unsettled_ >= kUnsettledBeforeLens) {
      outcome = SettleLens(c);
    }
    if (outcome != Outcome::open || ++unsettled_ < kUnsettledBeforeSideBySide) return outcome;
    if (Pieces::AreIndistinct(c.a, c.b, kContactGap, kMergeReach)) {
      FindNearest(c);
      return Outcome::done;
    }
    return !once && Pieces::RunSideBySide(c.a, c.b, pair_.b) ? Outcome::done : Outcome::open;
  }

  /// Halves the larger piece; the parts that are not apart from the other piece take the pair's place.
  void Divide(PiecePair& c) {
    const bool aFirst = c.b.to - c.b.from <= kNarrowestPiece ||
                        (c.a.to - c.a.from > kNarrowestPiece && c.a.Extent() >= c.b.Extent());
    Piece& larger = aFirst ? c.a : c.b;
    const Piece& other = aFirst ? c.b : c.a;
    Piece left, right;
    Pieces::HalvePiece(larger, left, right);
    const bool keepLeft = !Pieces::AreApart(left, other, kContactGap);
    const bool keepRight = !Pieces::AreApart(right, other, kContactGap);
    if (keepLeft && keepRight) {
      stack_[top_] = c;
      (aFirst ? stack_[top_].a : stack_[top_].b) = left;
      ++top_;
      larger = right;
    } else if (keepLeft || keepRight) {
      larger = keepLeft ? left : right;
    } else {
      --top_;
    }
  }

  /// Newton's method on A(s) = B(t), kept near the pieces. Done when it lands inside.
  Outcome FindOnlyCrossing(const PiecePair& c) {
    constexpr int kSteps = 12;
    const double aWidth = c.a.to - c.a.from, bWidth = c.b.to - c.b.from;
    // Where the chords cross.
    const DVector u = c.a.p[3] - c.a.p[0], v = c.b.p[3] - c.b.p[0], w = c.b.p[0] - c.a.p[0];
    const double turn = Cross(u, v);
    double s = c.a.At(0.5), t = c.b.At(0.5);
    if (turn != 0) {
      s = c.a.At(std::clamp(Cross(w, v) / turn, 0.0, 1.0));
      t = c.b.At(std::clamp(Cross(w, u) / turn, 0.0, 1.0));
    }
    DVector du{0, 0}, dv{0, 0};
    for (int step = 0; step < kSteps; ++step) {
      const DVector gap = EvaluateBoth(pair_.a, s, du) - EvaluateBoth(pair_.b, t, dv);
      const double determinant = Cross(du, dv);
      if (!(std::abs(determinant) > 0)) return Outcome::open;
      const double ds = -Cross(gap, dv) / determinant, dt = -Cross(gap, du) / determinant;
      const double nextS = std::clamp(s + ds, c.a.from - 0.125 * aWidth, c.a.to + 0.125 * aWidth);
      const double nextT = std::clamp(t + dt, c.b.from - 0.125 * bWidth, c.b.to + 0.125 * bWidth);
      const double moved = std::max(std::abs(nextS - s), std::abs(nextT - t));
      if (!(moved <= 2)) return Outcome::open;
      const bool stuck = step > 1 && (nextS != s + ds || nextT != t + dt);
      s = nextS, t = nextT;
      if (stuck) return Outcome::open;
      if (moved <= kLastNewtonStep) break;
    }
    if (!IsWithin(s, c.a, Slack(du)) || !IsWithin(t, c.b, Slack(dv))) return Outcome::open;
    return AddIfTouching(s, t, ContactKind::crossing) ? Outcome::done : Outcome::open;
  }

  bool AddIfTouching(double s, double t, ContactKind kind) {
    s = std::clamp(s, 0.0, 1.0);
    t = std::clamp(t, 0.0, 1.0);
    DVector unused;
    const DVector gap = EvaluateBoth(pair_.a, s, unused) - EvaluateBoth(pair_.b, t, unused);
    if (!(std::max(std::abs(gap.x), std::abs(gap.y)) <= kContactGap)) return false;
    contacts_.Add(s, t, kind);
    return true;
  }

  /// Pieces of which one turns more than the other everywhere have at most one pair of points opposite each
  /// other with the same tangent; the gap there decides.
  Outcome SettleLens(const PiecePair& c) {
    DVector axis;
    const Bend bend = Pieces::CompareBend(c.a, c.b, axis);
    if (bend == Bend::unknown) return Outcome::open;
    double s, t;
    if (!FindEqualTangents(c, axis, s, t)) return Outcome::open;
    if (!IsWithin(s, c.a, kSameParameter) || !IsWithin(t, c.b, kSameParameter)) return Outcome::open;
    s = std::clamp(s, 0.0, 1.0);
    t = std::clamp(t, 0.0, 1.0);
    if (AddIfTouching(s, t, ContactKind::tangency)) return Outcome::done;
    DVector unused;
    const double gap = Cross(axis, EvaluateBoth(pair_.a, s, unused) - EvaluateBoth(pair_.b, t, unused));
    if ((gap > 0) == (bend == Bend::aTurnsMore)) return Outcome::done;
    return DivideLens(c, axis, s, t) ? Outcome::divided : Outcome::open;
  }

  /// Newton's method for opposite points (across the axis) with parallel tangents.
  bool FindEqualTangents(const PiecePair& c, const DVector& axis, double& s, double& t) const {
    constexpr int kSteps = 12;
    const double aWidth = c.a.to - c.a.from, bWidth = c.b.to - c.b.from;
    s = c.a.At(0.5), t = c.b.At(0.5);
    for (int step = 0; step < kSteps; ++step) {
      DVector du, dv;
      const DVector gap = EvaluateBoth(pair_.a, s, du) - EvaluateBoth(pair_.b, t, dv);
      const DVector ddu = CubicBezier::SecondDerivative(pair_.a, s);
      const DVector ddv = CubicBezier::SecondDerivative(pair_.b, t);
      const double f = Dot(axis, gap), g = Cross(du, dv);
      const double fs = Dot(axis, du), ft = -Dot(axis, dv), gs = Cross(ddu, dv), gt = Cross(du, ddv);
      const double determinant = fs * gt - ft * gs;
      if (!(std::abs(determinant) > 0)) return false;
      const double ds = -(f * gt - ft * g) / determinant, dt = -(fs * g - gs * f) / determinant;
      const double nextS = std::clamp(s + ds, c.a.from - 0.5 * aWidth, c.a.to + 0.5 * aWidth);
      const double nextT = std::clamp(t + dt, c.b.from - 0.5 * bWidth, c.b.to + 0.5 * bWidth);
      const double moved = std::max(std::abs(nextS - s), std::abs(nextT - t));
      if (!(moved <= 2)) return false;
      const bool stuck = nextS != s + ds || nextT != t + dt;
      s = nextS, t = nextT;
      if (stuck) return false;
      if (moved <= kLastNewtonStep) return true;
    }
    return false;
  }

  /// The curves cross on both sides of the point of equal tangents.
  bool DivideLens(const PiecePair& c, const DVector& axis, double s, double t) {
    const double localA = (s - c.a.from) / (c.a.to - c.a.from), localB = (t - c.b.from) / (c.b.to - c.b.from);
    constexpr double kLeast = 1e-6;  // parts narrower than this share of the piece: halving does as well
    if (localA < kLeast || localA > 1 - kLeast || localB < kLeast || localB > 1 - kLeast) return false;
    if (top_ == kRoom) return false;
    PiecePair& one = stack_[top_ - 1];
    PiecePair& two = stack_[top_++];
    const PiecePair whole = c;
    Pieces::SplitPiece(whole.a, localA, one.a, two.a);
    if (Dot(axis, whole.a.p[3] - whole.a.p[0]) * Dot(axis, whole.b.p[3] - whole.b.p[0]) > 0) {
      Pieces::SplitPiece(whole.b, localB, one.b, two.b);
    } else {
      Pieces::SplitPiece(whole.b, localB, two.b, one.b);
    }
    return true;
  }

  /// Pieces that no test tells apart: at cusps, zero handles and contacts of high order. Damped least squares
  /// for the nearest points; a contact when they touch.
  void FindNearest(const PiecePair& c) {
    constexpr int kSteps = 12;
    double s = c.a.At(0.5), t = c.b.At(0.5);
    for (int step = 0; step < kSteps; ++step) {
      DVector du, dv;
      const DVector gap = EvaluateBoth(pair_.a, s, du) - EvaluateBoth(pair_.b, t, dv);
      const double uu = LengthSqrd(du), vv = LengthSqrd(dv), uv = Dot(du, dv);
      const double damping = 1e-9 * (uu + vv) + 1e-300;
      const double determinant = (uu + damping) * (vv + damping) - uv * uv;
      if (!(determinant > 0)) break;
      const double fu = Dot(du, gap), fv = Dot(dv, gap);
      s = std::clamp(s + (-(vv + damping) * fu + uv * fv) / determinant, c.a.from, c.a.to);
      t = std::clamp(t + ((uu + damping) * fv - uv * fu) / determinant, c.b.from, c.b.to);
    }
    AddIfTouching(s, t, ContactKind::indistinct);
  }

  const CubicPair& pair_;
  ContactList contacts_;
  bool common_[2][2];
  bool anyCommon_ = false;
  int unsettled_ = 0;
  int top_ = 0;
  PiecePair stack_[kRoom];
};

bool ComesBefore(const DPoint& p, const DPoint& q) { return p.x < q.x || (p.x == q.x && p.y < q.y); }

/// Copies the curve in the direction in which it comes first. True when that is backwards.
bool CopyInOrder(const DPoint p[4], DPoint out[4]) {
  const bool turned = ComesBefore(p[3], p[0]) || (p[0] == p[3] && ComesBefore(p[2], p[1]));
  for (int k = 0; k < 4; ++k) out[k] = p[turned ? 3 - k : k];
  return turned;
}

/// One of the curves is a point: where the other passes through it, once or (at a double point) twice. A
/// curve that lingers there, with handles of no length, passes once.
void CrossPoint(const CubicPair& pair, bool aIsPoint, Crossings& out) {
  const DPoint* curve = aIsPoint ? pair.b : pair.a;
  const DPoint& point = aIsPoint ? pair.a[0] : pair.b[0];
  const ClosestPointsOnBezier feet = FindClosestPointsOnBezier(curve, point);
  const auto touches = [&](double t) {
    DVector unused;
    return DistanceSqrd(EvaluateBoth(curve, t, unused), point) <= kContactGap * kContactGap;
  };
  double places[6];
  int count = 0;
  for (int k = 0; k < feet.count; ++k) {
    const double t = feet.t[k];
    if (!touches(t)) continue;
    if (count == 0 || !touches(0.5 * (places[count - 1] + t))) {
      places[count++] = t;
    } else if (t == 1) {
      places[count - 1] = t;  // of one stay, its end on the curve's end
    }
  }
  for (int k = 0; k < count; ++k) {
    const double ta = aIsPoint ? 0 : places[k], tb = aIsPoint ? places[k] : 0;
    out.at[static_cast<std::size_t>(out.count++)] = {ta, tb, ContactPoint(pair, ta, tb)};
  }
}

Crossings IntersectInOrder(const DPoint a[4], const DPoint b[4]) {
  Crossings out;
  CubicPair pair;
  if (!MakeCubicPair(a, b, pair)) return out;
  const Piece wholeA(pair.a, 0, 1), wholeB(pair.b, 0, 1);
  if (Pieces::AreApart(wholeA, wholeB, kSharedNoise)) return out;
  const bool aIsPoint = wholeA.Extent() <= kContactGap;
  if (aIsPoint || wholeB.Extent() <= kContactGap) {
    CrossPoint(pair, aIsPoint, out);
    return out;
  }
  Crossing ends[2];
  switch (FindSharedStretch(pair, wholeA, wholeB, ends)) {
    case Sharing::apart:
      return out;
    case Sharing::contact:
      out.at[0] = ends[0];
      out.count = 1;
      return out;
    case Sharing::stretch:
      out.at[0] = ends[0];
      out.at[1] = ends[1];
      out.count = 2;
      out.overlap = true;
      return out;
    case Sharing::no:
      break;
  }
  Isolator(pair).Run(wholeA, wholeB, out);
  return out;
}

}  // namespace

namespace CubicBezier {

Crossings IntersectBeziers(const DPoint a[4], const DPoint b[4]) noexcept {
  // Always solved in one order and direction, so that trading or reversing the curves cannot change what is
  // found.
  DPoint first[4], second[4];
  const bool aTurned = CopyInOrder(a, first), bTurned = CopyInOrder(b, second);
  const bool swapped = std::lexicographical_compare(second, second + 4, first, first + 4, ComesBefore);
  Crossings out = swapped ? IntersectInOrder(second, first) : IntersectInOrder(first, second);
  for (int k = 0; k < out.count; ++k) {
    Crossing& crossing = out.at[static_cast<std::size_t>(k)];
    if (swapped) std::swap(crossing.ta, crossing.tb);
    if (aTurned) crossing.ta = 1 - crossing.ta;
    if (bTurned) crossing.tb = 1 - crossing.tb;
  }
  SortCrossings(out);
  return out;
}

bool FindBezierIntersections(const DPoint a[4], const DPoint b[4], std::vector<double>& ta,
                             std::vector<double>& tb, std::vector<DPoint>& points) {
  const Crossings found = IntersectBeziers(a, b);
  ta.clear();
  tb.clear();
  points.clear();
  for (int k = 0; k < found.count; ++k) {
    const Crossing& crossing = found.at[static_cast<std::size_t>(k)];
    ta.push_back(crossing.ta);
    tb.push_back(crossing.tb);
    points.push_back(crossing.point);
  }
  return found.count > 0;
}

bool DoBeziersIntersect(const DPoint a[4], const DPoint b[4]) noexcept {
  return IntersectBeziers(a, b).count > 0;
}

}  // namespace CubicBezier
}  // namespace TavMath
