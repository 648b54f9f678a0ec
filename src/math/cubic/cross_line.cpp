// Crossings of a cubic and a straight line: the signed distances of the control points from the line are the
// Bernstein coefficients of the distance along the curve, whose roots are isolated between its extrema.

#include <algorithm>
#include <cmath>
#include <utility>

#include "math/cubic/cubic_pair.h"
#include "math/cubic/overlap.h"
#include "math/roots.h"
#include "math/tolerances.h"
#include "tav/math/rect.h"

namespace TavMath {
namespace {

using namespace Tolerances;

/// The cubic and the line in a common frame (the line as a cubic, so that one frame serves all).
struct LinePair {
  CubicPair pair;
  DPoint documentLine[4];
  DPoint start, end;
  DVector along;  ///< from start to end
  double length;
  double distance[4];  ///< of the control points, positive to the left of the line
};

/// Three roots, two extrema and two ends, before any are found to be the same.
constexpr int kMostContacts = 7;

/// Parameters of the roots of the distance and, where the distance has an extremum that only touches zero, of
/// that; sorted.
int FindContacts(const double d[4], double gap, double t[kMostContacts]) {
  const double slope[3] = {d[1] - d[0], d[2] - d[1], d[3] - d[2]};
  double extremum[2];
  const int extrema = Roots::SolveQuadratic(slope, extremum);
  double touch[2];
  int touches = 0;
  for (int k = 0; k < extrema; ++k) {
    double unused;
    if (std::abs(Roots::Evaluate(d, 3, extremum[k], unused)) <= gap) touch[touches++] = extremum[k];
  }
  double root[3];
  const int roots = Roots::SolveCubic(d, root);
  int count = 0;
  // Within the contact distance of one extremum everything is that one tangency.
  const auto belongsToTouch = [&](double at) {
    for (int k = 0; k < touches; ++k) {
      double unused;
      if (std::abs(at - touch[k]) < kMergeWindow &&
          std::abs(Roots::Evaluate(d, 3, 0.5 * (at + touch[k]), unused)) <= gap) {
        return true;
      }
    }
    return false;
  };
  for (int k = 0; k < roots; ++k) {
    if (!belongsToTouch(root[k])) t[count++] = root[k];
  }
  for (int k = 0; k < touches; ++k) t[count++] = touch[k];
  // Ends that lie on the line up to rounding.
  const auto isNear = [&](double end) {
    for (int k = 0; k < count; ++k) {
      double unused;
      if (t[k] == end) return true;
      if (std::abs(t[k] - end) < kMergeWindow &&
          std::abs(Roots::Evaluate(d, 3, 0.5 * (t[k] + end), unused)) <= gap) {
        t[k] = end;
        return true;
      }
    }
    return false;
  };
  if (std::abs(d[0]) <= gap && !isNear(0)) t[count++] = 0;
  if (std::abs(d[3]) <= gap && !isNear(1)) t[count++] = 1;
  for (int k = 1; k < count; ++k) {
    for (int m = k; m > 0 && t[m] < t[m - 1]; --m) std::swap(t[m], t[m - 1]);
  }
  return count;
}

/// The line parameter of a point of the curve, on 0 or 1 when that end of the line is in contact.
double LineParameter(const LinePair& line, const DPoint& p) {
  const auto touches = [&](const DPoint& end) {
    return std::max(std::abs(p.x - end.x), std::abs(p.y - end.y)) <= kContactGap;
  };
  if (touches(line.start)) return 0;
  if (touches(line.end)) return 1;
  return (Dot(p - line.start, line.along) / line.length) / line.length;
}

bool MakeLinePair(const DPoint bezier[4], const DPoint& l0, const DPoint& l1, bool infinite, LinePair& line) {
  for (int k = 0; k < 4; ++k) line.documentLine[k] = Lerp(l0, l1, k / 3.0);
  line.documentLine[3] = l1;
  const BoxRule rule = infinite ? BoxRule::mayBeApart : BoxRule::mustOverlap;
  if (!MakeCubicPair(bezier, line.documentLine, line.pair, rule)) return false;
  line.start = line.pair.b[0];
  line.end = line.pair.b[3];
  line.along = line.end - line.start;
  line.length = Length(line.along);
  if (!(line.length > 0)) return false;
  for (int k = 0; k < 4; ++k) {
    line.distance[k] = Cross(line.along, line.pair.a[k] - line.start) / line.length;
  }
  return true;
}

/// The curve lies on the line: the stretch that both cover. False when crossings are still to be found.
bool AddStretch(const LinePair& line, bool infinite, Crossings& out) {
  Crossing ends[2];
  Sharing sharing;
  if (infinite) {
    CubicPair twice = line.pair;
    for (int k = 0; k < 4; ++k) twice.b[k] = twice.a[k];
    twice.documentB = twice.documentA;
    sharing = CompareOnLine(twice, line.start, (1 / line.length) * line.along, ends);
  } else {
    sharing = CompareOnLine(line.pair, line.start, (1 / line.length) * line.along, ends);
  }
  if (sharing == Sharing::apart) return true;
  if (sharing == Sharing::no) return false;
  out.count = sharing == Sharing::contact ? 1 : 2;
  out.overlap = sharing == Sharing::stretch;
  for (int k = 0; k < out.count; ++k) {
    DVector unused;
    const DPoint p = EvaluateBoth(line.pair.a, ends[k].ta, unused);
    const double tb = LineParameter(line, p);
    out.at[static_cast<std::size_t>(k)] = {ends[k].ta, infinite ? tb : std::clamp(tb, 0.0, 1.0),
                                           ends[k].point};
  }
  return true;
}

bool IsOnLine(const LinePair& line, bool infinite) {
  const BoundsT<double> box = GetPointsBBox(line.pair.a, 4);
  double size = std::max(box.Width(), box.Height());
  if (!infinite) size = std::min(size, line.length);
  const double gap = std::max(kSharedNoise * size, kContactGap);
  return std::all_of(line.distance, line.distance + 4, [&](double d) { return std::abs(d) <= gap; });
}

}  // namespace

namespace CubicBezier {

Crossings IntersectBezierLine(const DPoint bezier[4], const DPoint& l0, const DPoint& l1,
                              bool infinite) noexcept {
  Crossings out;
  if (l0 == l1) {
    if (infinite) return out;
    const DPoint point[4] = {l0, l0, l0, l0};
    return IntersectBeziers(bezier, point);
  }
  LinePair line;
  if (!MakeLinePair(bezier, l0, l1, infinite, line)) return out;
  if (IsOnLine(line, infinite) && AddStretch(line, infinite, out)) return out;
  double t[kMostContacts];
  const int count = FindContacts(line.distance, kContactGap, t);
  for (int k = 0; k < count; ++k) {
    DVector unused;
    const double u = LineParameter(line, EvaluateBoth(line.pair.a, t[k], unused));
    if (!infinite && !(u >= 0 && u <= 1)) continue;
    out.at[static_cast<std::size_t>(out.count++)] = {t[k], u, ContactPoint(line.pair, t[k], u)};
  }
  return out;
}

bool FindBezierLineIntersection(const DPoint bezier[4], const DPoint& l0, const DPoint& l1, bool infinite,
                                std::vector<double>& tBezier, std::vector<double>& tLine) {
  const Crossings found = IntersectBezierLine(bezier, l0, l1, infinite);
  tBezier.clear();
  tLine.clear();
  for (int k = 0; k < found.count; ++k) {
    tBezier.push_back(found.at[static_cast<std::size_t>(k)].ta);
    tLine.push_back(found.at[static_cast<std::size_t>(k)].tb);
  }
  return found.count > 0;
}

bool DoesBezierIntersectLineSegment(const DPoint bezier[4], const DPoint& l0, const DPoint& l1) noexcept {
  return IntersectBezierLine(bezier, l0, l1, false).count > 0;
}

}  // namespace CubicBezier
}  // namespace TavMath
