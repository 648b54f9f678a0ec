// A line and an arc that bulges to one side: the arc's distance from the line's straight continuation is a
// cubic with one turn at most, so most pairs are settled by one root of it.

#include "boolean/pair_crossing.h"
#include "boolean/tolerances.h"
#include "math/roots.h"

namespace Lumo::Planar {
namespace {

using TavMath::Cross;
using TavMath::DistanceSqrd;
using TavMath::Dot;
using TavMath::LengthSqrd;

/// The signed distance of a cubic from a straight line, in Bernstein form over [0, 1].
struct Height {
  double d[4];

  void Turn() {
    std::swap(d[0], d[3]);
    std::swap(d[1], d[2]);
  }
  void Mirror() {
    for (double& v : d) v = -v;
  }
  bool Rises() const { return d[0] <= d[1] && d[1] <= d[2] && d[2] <= d[3]; }

  /// Where the height passes `level`, which it does once between its ends, rising; off by less than `slack`
  /// before the last step, which is short: where the height hardly rises, a small distance can be far from
  /// the place. Newton within a bracket.
  double Reaches(double level, double t, double slack) const {
    double low = 0, high = 1;
    for (int k = 0; k < kProjectSteps; ++k) {
      double slope;
      const double off = TavMath::Roots::Evaluate(d, 3, t, slope) - level;
      (off < 0 ? low : high) = t;
      const double next = slope > 0 ? t - off / slope : low;
      const bool inside = next > low && next < high;
      const bool settled = inside && std::fabs(off) <= slack && std::fabs(next - t) <= kRootStep;
      t = inside ? next : 0.5 * (low + high);
      if (settled) break;
    }
    return t;
  }
};

/// Places along a line from its start, in units of length.
struct LinePlaces {
  enum Kind { before, on, behind, nearEnd };

  DPoint start;
  DVector along;  // a unit vector
  double length;
  double clear;  // what is farther from an end than this keeps clear of it

  double Along(const DPoint& at) const { return Dot(along, at - start); }
  Kind KindOf(double s) const {
    if (s < -clear) return before;
    if (s > length + clear) return behind;
    return s > clear && s < length - clear ? on : nearEnd;
  }
};

}  // namespace

/// Settles the pair when it is of a simple kind: one clear crossing, one end of the arc on the line (or
/// beyond its ends), or nothing. Whatever comes near an end of the line is left to the general way: false,
/// and nothing found.
bool PairCrossing::FindLineAndArc(const Arc& line, const Arc& arc, bool lineFirst) {
  const DPoint *p = line.curve.p, *c = arc.curve.p;
  const DVector chord = p[3] - p[0];
  const double length = std::sqrt(LengthSqrd(chord)), straight = kStraightContacts * contact_;
  if (!(length > straight && DistanceSqrd(c[0], c[3]) > straight * straight)) return false;
  const DVector u = (1 / length) * chord;
  Height height{};
  for (int k = 0; k < 4; ++k) height.d[k] = Cross(u, c[k] - p[0]);
  // Seen so that the arc ends to the left of the line, and is nearer to it at its start.
  const bool turned = std::fabs(height.d[0]) > contact_ && std::fabs(height.d[3]) <= contact_;
  if (turned) height.Turn();
  if (height.d[3] < 0) height.Mirror();
  if (!(height.d[3] > contact_)) return false;

  const LinePlaces places{p[0], u, length, kClearContacts * contact_};
  if (height.d[0] < -contact_) {  // a crossing of the continued line, and one only
    const double t = height.Reaches(0, height.d[0] / (height.d[0] - height.d[3]), kRootSettled);
    double slope;
    TavMath::Roots::Evaluate(height.d, 3, t, slope);
    if (!(slope * slope > kTransversal * kTransversal * LengthSqrd(Derivative(arc.curve, t)))) return false;
    const double s = places.Along(Evaluate(arc.curve, t));
    const LinePlaces::Kind kind = places.KindOf(s);
    if (kind == LinePlaces::on) AddOnLine(line, arc, lineFirst, s / length, t);
    return kind != LinePlaces::nearEnd;
  }
  if (!(height.d[0] <= contact_) || !height.Rises()) return false;
  // The arc leaves the continued line from its end there: at once, or tangentially along a shared stretch.
  const double rise = 3 * (height.d[2] - 2 * height.d[1] + height.d[0]);
  const double guess = rise > 0 ? std::sqrt(2 * contact_ / rise) : 1;
  const double t = height.Reaches(contact_, (std::min)(0.5, guess), kNearShare * contact_);
  const double t0 = turned ? 1 : 0, t1 = turned ? 1 - t : t;
  const DPoint end = Evaluate(arc.curve, t0), leaves = Evaluate(arc.curve, t1);
  const double s0 = places.Along(end), s1 = places.Along(leaves);
  const LinePlaces::Kind kind = places.KindOf(s0);
  if (kind == LinePlaces::nearEnd || places.KindOf(s1) != kind) return false;
  if (kind != LinePlaces::on) return true;
  if (DistanceSqrd(end, leaves) <= places.clear * places.clear) {
    AddOnLine(line, arc, lineFirst, s0 / length, t0);
    return true;
  }
  Stretch stretch{s0 / length, t0, s1 / length, t1};
  if (!lineFirst) stretch = {t0, s0 / length, t1, s1 / length};
  if (stretch.lowA > stretch.highA) stretch = {stretch.highA, stretch.highB, stretch.lowA, stretch.lowB};
  stretches_.push_back(stretch);
  return true;
}

void PairCrossing::AddOnLine(const Arc& line, const Arc& arc, bool lineFirst, double onLine, double onArc) {
  if (lineFirst) {
    Add(line.curve, arc.curve, onLine, onArc);
  } else {
    Add(arc.curve, line.curve, onArc, onLine);
  }
}

}  // namespace Lumo::Planar
