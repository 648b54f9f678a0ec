#pragma once
// A stretch of a cubic during subdivision, and the tests that decide about two such stretches without
// computing a crossing: apart for certain, at most one crossing for certain, at most two for certain.

#include <algorithm>
#include <cmath>
#include <limits>

#include "math/cubic/blossom.h"
#include "math/tolerances.h"
#include "tav/math/cubic_bezier.h"

namespace TavMath::Pieces {

/// A box that costs nothing to make: the stack of pieces is not initialised.
struct Box {
  double minx, miny, maxx, maxy;
};

struct Piece {
  DPoint p[4];
  double from, to;  ///< where it lies on the whole cubic
  Box box;

  Piece() {}
  Piece(const DPoint whole[4], double first, double last);
  double Extent() const { return std::max(box.maxx - box.minx, box.maxy - box.miny); }
  double At(double local) const { return from + local * (to - from); }
};

/// The two parts of a piece about a local parameter; left and right may not be the piece itself.
void SplitPiece(const Piece& piece, double local, Piece& left, Piece& right);

inline void HalvePiece(const Piece& piece, Piece& left, Piece& right);

/// True when no point of a comes within the slack of any point of b: the boxes are apart, or the strip around
/// the chord of one that holds it (T. W. Sederberg and T. Nishita, "Curve intersection using Bezier
/// clipping", Computer-Aided Design 22, 1990) holds no point of the other.
bool AreApart(const Piece& a, const Piece& b, double slack);

/// True when every tangent of a turns the same way into every tangent of b. Then the pieces cross at most
/// once: the chord between two crossings would be a positive combination of either one's tangents.
bool CrossAtMostOnce(const Piece& a, const Piece& b);

/// True when a and b do not meet although they run side by side, closer than their own bend, so that no strip
/// separates them. Compares a with the stretch of b's whole cubic opposite it: were A(s) = B(t), the gap
/// between A(s) and its opposite point B(u) would be a chord of b, a combination of b's tangents; no
/// combination of the gaps' control vectors turns into one of the tangents' if all turn the same way.
bool RunSideBySide(const Piece& a, const Piece& b, const DPoint wholeB[4]);

/// True when both lie within the gap of one line over less than the reach: one contact, whatever the pieces
/// of them do.
bool AreIndistinct(const Piece& a, const Piece& b, double gap, double reach);

/// Both pieces as graphs over the chord of a, when the curvature of one is greater everywhere.
enum class Bend { unknown, aTurnsMore, bTurnsMore };
Bend CompareBend(const Piece& a, const Piece& b, DVector& axis);

/// True when the pieces start (or end) at the same point `vertex` and a line through it has one on each side:
/// then they meet nowhere else. `aEnd` and `bEnd` are 0 or 3, the control point at the vertex.
bool MeetOnlyAtVertex(const Piece& a, int aEnd, const Piece& b, int bEnd);

// --- bodies ---

/// The box of the control points, which holds the curve.
inline Box ControlBox(const DPoint p[4]) {
  return {std::min(std::min(p[0].x, p[1].x), std::min(p[2].x, p[3].x)),
          std::min(std::min(p[0].y, p[1].y), std::min(p[2].y, p[3].y)),
          std::max(std::max(p[0].x, p[1].x), std::max(p[2].x, p[3].x)),
          std::max(std::max(p[0].y, p[1].y), std::max(p[2].y, p[3].y))};
}

/// Whether b lies outside the strip that holds a.
inline bool IsOutsideStrip(const Piece& a, const Piece& b, double slack) {
  const DVector chord = a.p[3] - a.p[0];
  const double d1 = Cross(chord, a.p[1] - a.p[0]), d2 = Cross(chord, a.p[2] - a.p[0]);
  // How much of the control points' distances the curve itself reaches.
  const double share = d1 * d2 > 0 ? 0.75 : 4.0 / 9;
  const double room = slack * (std::abs(chord.x) + std::abs(chord.y));
  const double low = share * std::min(0.0, std::min(d1, d2)) - room;
  const double high = share * std::max(0.0, std::max(d1, d2)) + room;
  const double e0 = Cross(chord, b.p[0] - a.p[0]), e1 = Cross(chord, b.p[1] - a.p[0]);
  const double e2 = Cross(chord, b.p[2] - a.p[0]), e3 = Cross(chord, b.p[3] - a.p[0]);
  return std::min(std::min(e0, e1), std::min(e2, e3)) > high ||
         std::max(std::max(e0, e1), std::max(e2, e3)) < low;
}

/// A piece as a graph over an axis: the legs of its control polygon and how far each goes along the axis.
struct Graph {
  DVector d[3];
  double slow, fast;  ///< the least and greatest advance, both positive
  double sign;        ///< -1 when the piece runs against the axis

  Graph(const Piece& piece, const DVector& axis)
      : d{piece.p[1] - piece.p[0], piece.p[2] - piece.p[1], piece.p[3] - piece.p[2]} {
    const double x0 = Dot(axis, d[0]), x1 = Dot(axis, d[1]), x2 = Dot(axis, d[2]);
    sign = x0 > 0 ? 1 : -1;
    const double low = std::min(std::min(x0, x1), x2), high = std::max(std::max(x0, x1), x2);
    slow = sign > 0 ? low : -high;
    fast = sign > 0 ? high : -low;
  }
  /// No vertical tangent: the piece is a graph.
  bool IsOne() const { return slow > 0; }
  /// Bounds of y'', up to a factor common to all graphs over this axis.
  void BendRange(double& least, double& greatest) const {
    const double c0 = sign * Cross(d[0], d[1]), c1 = sign * 0.5 * Cross(d[0], d[2]);
    const double c2 = sign * Cross(d[1], d[2]);
    const double low = std::min(std::min(c0, c1), c2), high = std::max(std::max(c0, c1), c2);
    const double most = 1 / (slow * slow * slow), fewest = 1 / (fast * fast * fast);
    least = low * (low < 0 ? most : fewest);
    greatest = high * (high > 0 ? most : fewest);
  }
};

inline Piece::Piece(const DPoint whole[4], double first, double last)
    : p{whole[0], whole[1], whole[2], whole[3]}, from(first), to(last), box(ControlBox(whole)) {}

inline void SplitPiece(const Piece& piece, double local, Piece& left, Piece& right) {
  const Weight w(local);
  const DPoint ab = w(piece.p[0], piece.p[1]), bc = w(piece.p[1], piece.p[2]), cd = w(piece.p[2], piece.p[3]);
  const DPoint abc = w(ab, bc), bcd = w(bc, cd);
  const DPoint mid = w(abc, bcd);
  left.p[0] = piece.p[0], left.p[1] = ab, left.p[2] = abc, left.p[3] = mid;
  right.p[0] = mid, right.p[1] = bcd, right.p[2] = cd, right.p[3] = piece.p[3];
  left.from = piece.from;
  left.to = right.from = piece.At(local);
  right.to = piece.to;
  left.box = ControlBox(left.p);
  right.box = ControlBox(right.p);
}

inline void HalvePiece(const Piece& piece, Piece& left, Piece& right) {
  const auto middle = [](const DPoint& p, const DPoint& q) {
    return DPoint{0.5 * (p.x + q.x), 0.5 * (p.y + q.y)};
  };
  const DPoint ab = middle(piece.p[0], piece.p[1]), bc = middle(piece.p[1], piece.p[2]);
  const DPoint cd = middle(piece.p[2], piece.p[3]), abc = middle(ab, bc), bcd = middle(bc, cd);
  const DPoint mid = middle(abc, bcd);
  left.p[0] = piece.p[0], left.p[1] = ab, left.p[2] = abc, left.p[3] = mid;
  right.p[0] = mid, right.p[1] = bcd, right.p[2] = cd, right.p[3] = piece.p[3];
  left.from = piece.from;
  left.to = right.from = 0.5 * (piece.from + piece.to);
  right.to = piece.to;
  left.box = ControlBox(left.p);
  right.box = ControlBox(right.p);
}

inline bool AreApart(const Piece& a, const Piece& b, double slack) {
  if (a.box.minx > b.box.maxx + slack || b.box.minx > a.box.maxx + slack || a.box.miny > b.box.maxy + slack ||
      b.box.miny > a.box.maxy + slack) {
    return true;
  }
  return IsOutsideStrip(a, b, slack) || IsOutsideStrip(b, a, slack);
}

/// The legs of a control polygon; one of no length, which adds no direction, gives way to its neighbour.
struct Legs {
  DVector d[3];
  explicit Legs(const DPoint p[4]) : d{p[1] - p[0], p[2] - p[1], p[3] - p[2]} {
    if (d[1].x == 0 && d[1].y == 0) d[1] = d[0].x == 0 && d[0].y == 0 ? d[2] : d[0];
    if (d[0].x == 0 && d[0].y == 0) d[0] = d[1];
    if (d[2].x == 0 && d[2].y == 0) d[2] = d[1];
  }
};

inline bool CrossAtMostOnce(const Piece& a, const Piece& b) {
  const Legs u(a.p), v(b.p);
  double least[3], greatest[3];
  for (int k = 0; k < 3; ++k) {
    const double c0 = Cross(u.d[k], v.d[0]), c1 = Cross(u.d[k], v.d[1]), c2 = Cross(u.d[k], v.d[2]);
    least[k] = std::min(std::min(c0, c1), c2);
    greatest[k] = std::max(std::max(c0, c1), c2);
  }
  return std::min(std::min(least[0], least[1]), least[2]) > 0 ||
         std::max(std::max(greatest[0], greatest[1]), greatest[2]) < 0;
}

inline bool RunSideBySide(const Piece& a, const Piece& b, const DPoint wholeB[4]) {
  const DVector chord = b.p[3] - b.p[0];
  const double length = LengthSqrd(chord);
  if (!(length > 0)) return false;
  const double width = b.to - b.from;
  const double u0 = b.from + width * (Dot(chord, a.p[0] - b.p[0]) / length);
  const double u1 = b.from + width * (Dot(chord, a.p[3] - b.p[0]) / length);
  const double low = std::min(std::min(u0, u1), b.from), high = std::max(std::max(u0, u1), b.to);
  if (!(high - low <= 4 * width)) return false;
  const Weight w0(u0), w1(u1), lowWeight(low), highWeight(high);
  const auto section = [&](Weight u, Weight v, DPoint out[4]) {
    out[0] = Blossom(wholeB, u, u, u), out[1] = Blossom(wholeB, u, u, v);
    out[2] = Blossom(wholeB, u, v, v), out[3] = Blossom(wholeB, v, v, v);
  };
  DPoint opposite[4], reach[4];
  section(w0, w1, opposite);
  section(lowWeight, highWeight, reach);
  const Legs legs(reach);
  double least = std::numeric_limits<double>::max(), greatest = -least;
  for (int k = 0; k < 4; ++k) {
    const DVector gap = a.p[k] - opposite[k];
    for (const DVector& leg : legs.d) {
      const double turn = Cross(leg, gap);
      least = std::min(least, turn);
      greatest = std::max(greatest, turn);
    }
  }
  // The rounding of the sections' points, as a gap.
  const double noise = 16 * Tolerances::kEpsilon * std::sqrt(length) * (high - low) / width;
  return least > noise || greatest < -noise;
}

inline bool AreIndistinct(const Piece& a, const Piece& b, double gap, double reach) {
  if (a.Extent() > reach || b.Extent() > reach) return false;
  const DPoint* p = a.Extent() >= b.Extent() ? a.p : b.p;
  const DVector chord = p[3] - p[0];
  const double limit = gap * std::max(std::abs(chord.x), std::abs(chord.y));
  for (int k = 0; k < 4; ++k) {
    if (std::abs(Cross(chord, a.p[k] - p[0])) > limit || std::abs(Cross(chord, b.p[k] - p[0])) > limit) {
      return false;
    }
  }
  return true;
}

inline Bend CompareBend(const Piece& a, const Piece& b, DVector& axis) {
  axis = a.p[3] - a.p[0];
  const double length = std::abs(axis.x) + std::abs(axis.y);
  if (!(length > 0)) return Bend::unknown;
  axis = (1 / length) * axis;
  const Graph graphA(a, axis);
  if (!graphA.IsOne()) return Bend::unknown;
  const Graph graphB(b, axis);
  if (!graphB.IsOne()) return Bend::unknown;
  double aLeast, aGreatest, bLeast, bGreatest;
  graphA.BendRange(aLeast, aGreatest);
  graphB.BendRange(bLeast, bGreatest);
  if (aLeast > bGreatest) return Bend::aTurnsMore;
  if (bLeast > aGreatest) return Bend::bTurnsMore;
  return Bend::unknown;
}

inline bool MeetOnlyAtVertex(const Piece& a, int aEnd, const Piece& b, int bEnd) {
  const DPoint vertex = a.p[aEnd];
  DVector u[3], v[3];
  DVector uSum{0, 0}, vSum{0, 0};
  int uCount = 0, vCount = 0;
  for (int k = 0; k < 4; ++k) {
    const DVector d = a.p[k] - vertex, e = b.p[k] - b.p[bEnd];
    if (k != aEnd && (d.x != 0 || d.y != 0))
      uSum += (1 / (std::abs(d.x) + std::abs(d.y))) * d, u[uCount++] = d;
    if (k != bEnd && (e.x != 0 || e.y != 0))
      vSum += (1 / (std::abs(e.x) + std::abs(e.y))) * e, v[vCount++] = e;
  }
  if (uCount == 0 || vCount == 0) return false;
  const DVector axis = (1.0 / vCount) * vSum - (1.0 / uCount) * uSum;
  for (int k = 0; k < uCount; ++k) {
    if (!(Dot(u[k], axis) < 0)) return false;
  }
  for (int k = 0; k < vCount; ++k) {
    if (!(Dot(v[k], axis) > 0)) return false;
  }
  return true;
}

/// False when the point cannot lie within the gap of the piece: outside the grown box, or outside the strip
/// around the chord.
inline bool MayTouch(const Piece& piece, const DPoint& q, double gap) {
  if (q.x < piece.box.minx - gap || q.x > piece.box.maxx + gap || q.y < piece.box.miny - gap ||
      q.y > piece.box.maxy + gap) {
    return false;
  }
  const DPoint* p = piece.p;
  const DVector chord = p[3] - p[0];
  const double d1 = Cross(chord, p[1] - p[0]), d2 = Cross(chord, p[2] - p[0]);
  const double share = d1 * d2 > 0 ? 0.75 : 4.0 / 9;
  const double room = gap * (std::abs(chord.x) + std::abs(chord.y));
  const double e = Cross(chord, q - p[0]);
  return e >= share * std::min({0.0, d1, d2}) - room && e <= share * std::max({0.0, d1, d2}) + room;
}

/// The same, looking closer before the distance is computed in full.
inline bool MayTouch(const Piece& piece, const DPoint& q, double gap, int depth) {
  if (!MayTouch(piece, q, gap)) return false;
  if (depth == 0) return true;
  Piece left, right;
  HalvePiece(piece, left, right);
  return MayTouch(left, q, gap, depth - 1) || MayTouch(right, q, gap, depth - 1);
}

}  // namespace TavMath::Pieces
