#pragma once
// Arcs: pieces of the input's lines and cubics that are monotone in x and in y. Monotone arcs do not cross
// themselves, are boxed by their ends, and meet a horizontal or vertical line once. The small primitives here
// are inline because the pair crossing calls them in its innermost loop.

#include <algorithm>
#include <cmath>

#include "tav/math/bounds.h"
#include "tav/math/vector2d.h"

namespace Lumo::Planar {

using TavMath::DPoint;
using TavMath::DVector;
using Box = TavMath::BoundsT<double>;

/// A line (p[0], p[3]; p[1] and p[2] at the thirds) or a cubic.
struct Curve {
  DPoint p[4];
  bool line;

  static Curve Line(const DPoint& a, const DPoint& b) {
    return {{a, TavMath::Lerp(a, b, 1.0 / 3), TavMath::Lerp(b, a, 1.0 / 3), b}, true};
  }
};

/// How much the winding number of each operand grows when an edge is crossed from its right to its left.
struct Winding {
  int a = 0, b = 0;
  friend Winding operator+(Winding u, Winding v) { return {u.a + v.a, u.b + v.b}; }
  friend Winding operator-(Winding u, Winding v) { return {u.a - v.a, u.b - v.b}; }
  friend bool operator==(Winding u, Winding v) { return u.a == v.a && u.b == v.b; }
};

/// A monotone arc: the part [t0, t1] of a segment, from vertex v0 to vertex v1.
struct Arc {
  Curve curve;
  int segment;
  double t0, t1;
  int v0, v1;
  double bend;        ///< An upper bound of |B''| / 8 over the arc; 0 for a line.
  bool straight;      ///< A line, or a cubic that lies on its chord to within rounding: crossed as a line.
  bool open = false;  ///< Of an open subpath: encloses nothing, and has no step.
  Winding step{};
  int side = 0;  ///< See BulgeSide.
};

inline DPoint Evaluate(const DPoint p[4], double t) {
  const double s = 1 - t, a = s * s * s, b = 3 * s * s * t, c = 3 * s * t * t, d = t * t * t;
  return {a * p[0].x + b * p[1].x + c * p[2].x + d * p[3].x,
          a * p[0].y + b * p[1].y + c * p[2].y + d * p[3].y};
}
inline DPoint Evaluate(const Curve& c, double t) {
  if (t == 0) return c.p[0];
  if (t == 1) return c.p[3];
  return c.line ? TavMath::Lerp(c.p[0], c.p[3], t) : Evaluate(c.p, t);
}
inline DVector Derivative(const DPoint p[4], double t) {
  const double s = 1 - t;
  return 3 * s * s * (p[1] - p[0]) + 6 * s * t * (p[2] - p[1]) + 3 * t * t * (p[3] - p[2]);
}
inline DVector Derivative(const Curve& c, double t) { return c.line ? c.p[3] - c.p[0] : Derivative(c.p, t); }

/// The blossom of the cubic: its control point for the parameter triple (a, b, c).
inline DPoint Blossom(const DPoint p[4], double a, double b, double c) {
  const DPoint q0 = TavMath::Lerp(p[0], p[1], a), q1 = TavMath::Lerp(p[1], p[2], a),
               q2 = TavMath::Lerp(p[2], p[3], a);
  return TavMath::Lerp(TavMath::Lerp(q0, q1, b), TavMath::Lerp(q1, q2, b), c);
}
/// The part over [t0, t1].
inline Curve Part(const Curve& c, double t0, double t1) {
  if (t0 == 0 && t1 == 1) return c;
  if (c.line) return Curve::Line(Evaluate(c, t0), Evaluate(c, t1));
  return {{Evaluate(c, t0), Blossom(c.p, t0, t0, t1), Blossom(c.p, t0, t1, t1), Evaluate(c, t1)}, false};
}
/// Moves the ends to where the vertices are; each handle moves with its end.
inline void MoveEnds(Curve& c, const DPoint& a, const DPoint& b) {
  if (c.line) {
    c = Curve::Line(a, b);
    return;
  }
  c.p[1] += a - c.p[0];
  c.p[2] += b - c.p[3];
  c.p[0] = a;
  c.p[3] = b;
}

/// |B''| / 8 is what the distance from the chord is bounded by, times the square of the parameter width.
inline double Bend(const Curve& c) {
  if (c.line) return 0;
  const DVector a = (c.p[0] - c.p[1]) + (c.p[2] - c.p[1]), b = (c.p[1] - c.p[2]) + (c.p[3] - c.p[2]);
  return 0.75 * std::sqrt((std::max)(TavMath::LengthSqrd(a), TavMath::LengthSqrd(b)));
}

/// The side of its own chord, and of the chord of every part of it, that a monotone arc lies on: 1 left,
/// -1 right, 0 when it may change sides. An arc whose legs all turn one way lies on the other side.
inline int BulgeSide(const Curve& c) {
  if (c.line) return 0;
  const DVector leg = c.p[2] - c.p[1];
  const DVector first = c.p[1] == c.p[0] ? leg : c.p[1] - c.p[0],
                last = c.p[3] == c.p[2] ? leg : c.p[3] - c.p[2];
  if (!(TavMath::Dot(first, last) >= 0)) return 0;
  const double before = TavMath::Cross(first, leg), after = TavMath::Cross(leg, last),
               whole = TavMath::Cross(first, last);
  if (whole > 0 && before >= 0 && after >= 0) return -1;
  return whole < 0 && before <= 0 && after <= 0 ? 1 : 0;
}

/// Whether the curve keeps within `tolerance` of its chord. (A monotone arc cannot reach past the chord's
/// ends.)
inline bool IsStraight(const Curve& c, double tolerance) {
  if (c.line) return true;
  const DVector chord = c.p[3] - c.p[0];
  const double limit = tolerance * std::sqrt(TavMath::LengthSqrd(chord));
  return std::fabs(TavMath::Cross(chord, c.p[1] - c.p[0])) <= limit &&
         std::fabs(TavMath::Cross(chord, c.p[2] - c.p[0])) <= limit;
}

inline Box EndBox(const DPoint& a, const DPoint& b) {
  return {(std::min)(a.x, b.x), (std::min)(a.y, b.y), (std::max)(a.x, b.x), (std::max)(a.y, b.y)};
}
/// The box of the control points: holds the curve also where a moved end made it not quite monotone.
inline Box HullBox(const Curve& c) {
  Box box = EndBox(c.p[0], c.p[3]);
  box.Add(c.p[1].x, c.p[1].y);
  box.Add(c.p[2].x, c.p[2].y);
  return box;
}

/// The direction in which the curve leaves p[0] (or, backwards, p[3]): handles shorter than `tiny` do not
/// count.
inline DVector LeavingDirection(const Curve& c, bool backwards, double tiny) {
  const DPoint& from = c.p[backwards ? 3 : 0];
  for (int k = 1; k < 3; ++k) {
    const DVector d = c.p[backwards ? 3 - k : k] - from;
    if (!c.line && TavMath::LengthSqrd(d) > tiny * tiny) return d;
  }
  return c.p[backwards ? 0 : 3] - from;
}

/// The parameter of the point of a monotone arc that is nearest to a near point.
double Project(const Curve& c, const DPoint& q);

/// Whether a point may lie within `reach` of a monotone arc: by boxes halved a few times.
inline bool MayBeNear(const Curve& c, const DPoint& q, double reach) {
  if (c.line) {
    const DVector chord = c.p[3] - c.p[0];
    const double off = TavMath::Cross(chord, q - c.p[0]);
    return off * off <= reach * reach * TavMath::LengthSqrd(chord);
  }
  DPoint a = c.p[0], b = c.p[3];
  double t0 = 0, t1 = 1;
  const auto inside = [&](const DPoint& u, const DPoint& v) {
    return q.x >= (std::min)(u.x, v.x) - reach && q.x <= (std::max)(u.x, v.x) + reach &&
           q.y >= (std::min)(u.y, v.y) - reach && q.y <= (std::max)(u.y, v.y) + reach;
  };
  for (int k = 0; k < 8; ++k) {
    const double t = 0.5 * (t0 + t1);
    const DPoint m = Evaluate(c, t);
    if (inside(a, m)) {
      b = m;
      t1 = t;
    } else if (inside(m, b)) {
      a = m;
      t0 = t;
    } else {
      return false;
    }
  }
  return true;
}

}  // namespace Lumo::Planar
