#include "boolean/pair_crossing.h"

#include "boolean/tolerances.h"

namespace Lumo::Planar {
namespace {

using TavMath::Cross;
using TavMath::DistanceSqrd;
using TavMath::Dot;
using TavMath::LengthSqrd;

bool BoxesApart(const DPoint& a0, const DPoint& a1, const DPoint& b0, const DPoint& b1, double margin) {
  return (std::max)(a0.x, a1.x) + margin < (std::min)(b0.x, b1.x) ||
         (std::max)(b0.x, b1.x) + margin < (std::min)(a0.x, a1.x) ||
         (std::max)(a0.y, a1.y) + margin < (std::min)(b0.y, b1.y) ||
         (std::max)(b0.y, b1.y) + margin < (std::min)(a0.y, a1.y);
}

/// Whether the control polygons are separated along the normal of a's chord: settles most pairs that only
/// have overlapping boxes, such as the two sides of a bent band.
bool HullsApart(const Curve& a, const Curve& b, double margin) {
  const DVector u = a.p[3] - a.p[0];
  double lowA = 0, highA = 0, lowB = Cross(u, b.p[0] - a.p[0]), highB = lowB;
  for (int k = 1; k < 4; ++k) {
    const double da = k < 3 ? Cross(u, a.p[k] - a.p[0]) : 0, db = Cross(u, b.p[k] - a.p[0]);
    lowA = (std::min)(lowA, da);
    highA = (std::max)(highA, da);
    lowB = (std::min)(lowB, db);
    highB = (std::max)(highB, db);
  }
  const double gap = (std::max)(lowB - highA, lowA - highB);
  return gap > 0 && gap * gap > margin * margin * LengthSqrd(u);
}

}  // namespace

bool PairCrossing::Find(const Arc& a, const Arc& b, std::vector<Contact>& contacts) {
  contacts.clear();
  stretches_.clear();
  alongside_ = {};
  out_ = &contacts;
  if (FindIdentical(a.curve, b.curve)) return false;
  if (a.straight && b.straight) {
    FindLines(a, b);
  } else {
    FindCurves(a, b);
    AddStretches(a.curve, b.curve);
  }
  return alongside_.lowA <= alongside_.highA;
}

void PairCrossing::Mark(double a, double b) {
  alongside_.lowA = (std::min)(alongside_.lowA, a);
  alongside_.highA = (std::max)(alongside_.highA, a);
  alongside_.lowB = (std::min)(alongside_.lowB, b);
  alongside_.highB = (std::max)(alongside_.highB, b);
}

/// Records a contact; parameters of places within the contact distance of an arc's end become that end.
void PairCrossing::Add(const Curve& a, const Curve& b, double ta, double tb) {
  const double limit = contact_ * contact_;
  const auto atEnd = [limit](const Curve& c, double& t) {
    const DPoint p = Evaluate(c, t);
    if (DistanceSqrd(p, c.p[0]) <= limit) {
      t = 0;
    } else if (DistanceSqrd(p, c.p[3]) <= limit) {
      t = 1;
    }
    return t == 0 || t == 1;
  };
  const bool aEnd = atEnd(a, ta), bEnd = atEnd(b, tb);
  const DPoint pa = Evaluate(a, ta), pb = Evaluate(b, tb);
  out_->push_back({ta, tb, aEnd ? pa : bEnd ? pb : TavMath::Midpoint(pa, pb)});
}

bool PairCrossing::FindIdentical(const Curve& a, const Curve& b) {
  if (a.line != b.line) return false;
  const bool same = a.p[0] == b.p[0] && a.p[3] == b.p[3], reversed = a.p[0] == b.p[3] && a.p[3] == b.p[0];
  if (!same && !reversed) return false;
  if (!a.line) {
    const DPoint &b1 = b.p[same ? 1 : 2], &b2 = b.p[same ? 2 : 1];
    const double limit = 0.25 * contact_ * contact_;
    if (DistanceSqrd(a.p[1], b1) > limit || DistanceSqrd(a.p[2], b2) > limit) return false;
  }
  out_->push_back({0, same ? 0.0 : 1.0, a.p[0]});
  out_->push_back({1, same ? 1.0 : 0.0, a.p[3]});
  return true;
}

/// The end or point ta of a against b.
void PairCrossing::Touching(const Curve& a, const Curve& b, double ta) {
  const DPoint p = Evaluate(a, ta);
  const double tb = Project(b, p);
  if (DistanceSqrd(p, Evaluate(b, tb)) <= contact_ * contact_) Add(a, b, ta, tb);
}
void PairCrossing::TouchingOn(const Curve& a, const Curve& b, double tb) {
  const DPoint p = Evaluate(b, tb);
  const double ta = Project(a, p);
  if (DistanceSqrd(p, Evaluate(a, ta)) <= contact_ * contact_) Add(a, b, ta, tb);
}

void PairCrossing::FindLines(const Arc& a, const Arc& b) {
  const DPoint *p = a.curve.p, *q = b.curve.p;
  const DVector u = p[3] - p[0], v = q[3] - q[0], w = q[0] - p[0];
  const double cross = Cross(u, v), uu = LengthSqrd(u), vv = LengthSqrd(v);
  if (!(uu > 0 && vv > 0)) return;
  // Distances of the ends from the other line, times that line's length.
  const double limitA = contact_ * contact_ * vv, limitB = contact_ * contact_ * uu;
  const auto square = [](double x) { return x * x; };
  const std::size_t before = out_->size();
  if (square(Cross(v, w)) <= limitA) Touching(a.curve, b.curve, 0);
  if (square(Cross(v, q[3] - p[3])) <= limitA) Touching(a.curve, b.curve, 1);
  if (square(Cross(u, w)) <= limitB) TouchingOn(a.curve, b.curve, 0);
  if (square(Cross(u, q[3] - p[0])) <= limitB) TouchingOn(a.curve, b.curve, 1);
  // Lines with a common end, or touching at an end, cross nowhere else.
  if (out_->size() > before) {
    if (out_->size() > before + 1) {
      for (std::size_t k = before; k < out_->size(); ++k) Mark((*out_)[k].a, (*out_)[k].b);
    }
    return;
  }
  if (cross == 0) return;
  const double s = Cross(w, v) / cross, t = Cross(w, u) / cross;
  if (!(s > 0 && s < 1 && t > 0 && t < 1)) return;
  const DPoint meeting = TavMath::Lerp(p[0], p[3], s);
  Add(a.curve, b.curve, a.curve.line ? s : Project(a.curve, meeting),
      b.curve.line ? t : Project(b.curve, meeting));
}

void PairCrossing::FindCurves(const Arc& a, const Arc& b) {
  if (HullsApart(a.curve, b.curve, contact_) || HullsApart(b.curve, a.curve, contact_)) return;
  if (a.curve.line && b.side != 0 && FindLineAndArc(a, b, true)) return;
  if (b.curve.line && a.side != 0 && FindLineAndArc(b, a, false)) return;
  // Depth first: every step takes one pair and leaves at most two, and each side is halved some fifty times
  // at most.
  Task* top = stack_.data();
  *top++ = {{0, 1, a.curve.p[0], a.curve.p[3]}, {0, 1, b.curve.p[0], b.curve.p[3]}};
  for (int steps = 0; top != stack_.data(); ++steps) {
    const Task task = *--top;
    if (steps == kStepsBeforeOverlap) {
      if (FindOverlap(a.curve, b.curve) || FindSideBySide(a.curve, b.curve)) return;
    }
    Verdict verdict = Examine(a, b, task);
    if (verdict != Verdict::split) continue;
    const double wa = task.a.t1 - task.a.t0, wb = task.b.t1 - task.b.t0;
    const double fatA = a.bend * wa * wa, fatB = b.bend * wb * wb, la = DistanceSqrd(task.a.p0, task.a.p1),
                 lb = DistanceSqrd(task.b.p0, task.b.p1);
    const double small = 0.25 * contact_;
    const bool aFat = fatA > small, bFat = fatB > small;
    const bool leaf = (!aFat && !bFat) || (la <= contact_ * contact_ && lb <= contact_ * contact_);
    if (leaf || steps > kStepLimit || wa < 0x1p-50 || wb < 0x1p-50) {
      AddLeaf(a.curve, b.curve, task);
      continue;
    }
    Task first = task, second = task;
    if (fatA > fatB) {
      const double t = 0.5 * (task.a.t0 + task.a.t1);
      first.a.t1 = second.a.t0 = t;
      first.a.p1 = second.a.p0 = Evaluate(a.curve, t);
    } else {
      const double t = 0.5 * (task.b.t0 + task.b.t1);
      first.b.t1 = second.b.t0 = t;
      first.b.p1 = second.b.p0 = Evaluate(b.curve, t);
    }
    *top++ = second;
    *top++ = first;
  }
}

/// Compares two sub-arcs by their chords, each thickened by what bounds the arc's distance from it.
PairCrossing::Verdict PairCrossing::Examine(const Arc& a, const Arc& b, const Task& task) {
  const Span &sa = task.a, &sb = task.b;
  if (BoxesApart(sa.p0, sa.p1, sb.p0, sb.p1, contact_)) return Verdict::apart;
  const DVector u = sa.p1 - sa.p0, v = sb.p1 - sb.p0, w = sb.p0 - sa.p0;
  const double uu = LengthSqrd(u), vv = LengthSqrd(v);
  const double wa = sa.t1 - sa.t0, wb = sb.t1 - sb.t0;
  const double fatA = a.bend * wa * wa, fatB = b.bend * wb * wb;
  // Both ends of one chord on the same side of the other chord, and farther from it than the arcs can reach:
  // an arc that bulges to one side of its chord reaches no farther than the chord on the other.
  const bool sameWay = Dot(u, v) >= 0;
  const double leftA = a.side < 0 ? 0 : fatA, rightA = a.side > 0 ? 0 : fatA;
  const double leftB = b.side < 0 ? 0 : fatB, rightB = b.side > 0 ? 0 : fatB;
  const auto beyond = [](double d0, double d1, double sqrd, double ifLeft, double ifRight) {
    const double low = (std::min)(d0, d1), high = (std::max)(d0, d1);
    return (low > 0 && low * low > ifLeft * ifLeft * sqrd) ||
           (high < 0 && high * high > ifRight * ifRight * sqrd);
  };
  // b on the left of a: a reaches to its left, b to its right as a sees it.
  const double bRight = sameWay ? rightB : leftB, bLeft = sameWay ? leftB : rightB;
  if (beyond(Cross(u, w), Cross(u, sb.p1 - sa.p0), uu, leftA + bRight + contact_, rightA + bLeft + contact_))
    return Verdict::apart;
  const double aRight = sameWay ? rightA : leftA, aLeft = sameWay ? leftA : rightA;
  if (beyond(Cross(w, v), Cross(v, sa.p1 - sb.p0), vv, leftB + aRight + contact_, rightB + aLeft + contact_))
    return Verdict::apart;

  // The direction along a sub-arc stays within 4 fat / length of its chord's: when the chords' angle is
  // larger than what both can turn, the arcs cross at most once and Newton finds it.
  const double cross = Cross(u, v), shortest = contact_ * contact_;
  if (uu <= shortest || vv <= shortest) return Verdict::split;
  const double lu = std::sqrt(uu), lv = std::sqrt(vv);
  const double turn = 4 * (fatA * lv + fatB * lu) + 0x1p-40 * lu * lv;
  if (std::fabs(cross) <= 1.2 * turn) return Verdict::split;
  return Polish(a.curve, b.curve, task, Cross(w, v) / cross, Cross(w, u) / cross) ? Verdict::resolved
                                                                                  : Verdict::split;
}

/// Newton from the chords' crossing (s, u: fractions of the spans). False when it does not settle.
bool PairCrossing::Polish(const Curve& a, const Curve& b, const Task& task, double s, double u) {
  const double wa = task.a.t1 - task.a.t0, wb = task.b.t1 - task.b.t0;
  const DVector chordA = task.a.p1 - task.a.p0, chordB = task.b.p1 - task.b.p0;
  const double lu = std::sqrt(LengthSqrd(chordA)), lv = std::sqrt(LengthSqrd(chordB));
  // Parameter widths of the contact distance.
  const double contactA = contact_ * wa / lu, contactB = contact_ * wb / lv;
  double ta = task.a.t0 + std::clamp(s, -0.5, 1.5) * wa, tb = task.b.t0 + std::clamp(u, -0.5, 1.5) * wb;
  bool settled = false;
  for (int k = 0; k < 12 && !settled; ++k) {
    const DPoint pa = a.line ? TavMath::Lerp(a.p[0], a.p[3], ta) : Evaluate(a.p, ta),
                 pb = b.line ? TavMath::Lerp(b.p[0], b.p[3], tb) : Evaluate(b.p, tb);
    const DVector da = Derivative(a, ta), db = Derivative(b, tb), gap = pb - pa;
    const double det = Cross(da, db);
    if (det == 0) return false;
    const double stepA = Cross(gap, db) / det, stepB = Cross(gap, da) / det;
    ta += stepA;
    tb += stepB;
    if (!(std::fabs(ta - task.a.t0) < 4 * wa && std::fabs(tb - task.b.t0) < 4 * wb)) return false;
    // Steps converge quadratically: after one this short the next is below rounding.
    settled = std::fabs(stepA) < 0.125 * contactA && std::fabs(stepB) < 0.125 * contactB;
  }
  if (!settled) return false;
  // A solution outside this pair of spans is left to a neighbouring pair.
  const auto inside = [](double t, const Span& span, double slack) {
    return t > span.t0 - slack && t < span.t1 + slack;
  };
  if (inside(ta, task.a, contactA) && inside(tb, task.b, contactB)) {
    const double a0 = std::clamp(ta, 0.0, 1.0), b0 = std::clamp(tb, 0.0, 1.0);
    // Where an arc starts slowly a parameter says little: the places themselves must meet.
    if (DistanceSqrd(Evaluate(a, a0), Evaluate(b, b0)) <= contact_ * contact_) {
      Add(a, b, a0, b0);
      return true;
    }
    if (a0 == ta && b0 == tb) return false;
  }
  // Beyond an arc's end it still may be a contact of that end. The arcs part at no less than a sixth of the
  // chords' angle (see Examine), which tells how near the end must be for that.
  const double reach = 6.5 * contact_ * lu * lv / std::fabs(Cross(chordA, chordB)), limit = reach * reach;
  const DPoint meeting = a.line ? TavMath::Lerp(a.p[0], a.p[3], ta) : Evaluate(a.p, ta);
  if (task.a.t0 == 0 && DistanceSqrd(a.p[0], meeting) <= limit) Touching(a, b, 0);
  if (task.a.t1 == 1 && DistanceSqrd(a.p[3], meeting) <= limit) Touching(a, b, 1);
  if (task.b.t0 == 0 && DistanceSqrd(b.p[0], meeting) <= limit) TouchingOn(a, b, 0);
  if (task.b.t1 == 1 && DistanceSqrd(b.p[3], meeting) <= limit) TouchingOn(a, b, 1);
  return true;
}

/// Sub-arcs as straight as the contact distance and nearly parallel: the ends of the stretch that they share.
void PairCrossing::AddLeaf(const Curve& a, const Curve& b, const Task& task) {
  const auto nearest = [](const Curve& c, const Span& s, const DPoint& q, double& t) {
    const DVector d = s.p1 - s.p0;
    const double sqrd = LengthSqrd(d);
    const double f = sqrd > 0 ? std::clamp(Dot(q - s.p0, d) / sqrd, 0.0, 1.0) : 0;
    t = f == 1 ? s.t1 : s.t0 + f * (s.t1 - s.t0);
    return DistanceSqrd(q, Evaluate(c, t));
  };
  const double limit = 4 * contact_ * contact_;
  bool any = false;
  double lowA = 0, lowB = 0, highA = 0, highB = 0;
  const auto take = [&](double ta, double tb, double sqrd) {
    if (sqrd > limit) return;
    if (!any || ta < lowA) lowA = ta, lowB = tb;
    if (!any || ta > highA) highA = ta, highB = tb;
    any = true;
  };
  double t = 0;
  double sqrd = nearest(b, task.b, task.a.p0, t);
  take(task.a.t0, t, sqrd);
  sqrd = nearest(b, task.b, task.a.p1, t);
  take(task.a.t1, t, sqrd);
  sqrd = nearest(a, task.a, task.b.p0, t);
  take(t, task.b.t0, sqrd);
  sqrd = nearest(a, task.a, task.b.p1, t);
  take(t, task.b.t1, sqrd);
  if (any) stretches_.push_back({lowA, lowB, highA, highB});
}

/// Stretches that continue one another are one; each gives contacts at its two ends.
void PairCrossing::AddStretches(const Curve& a, const Curve& b) {
  std::sort(stretches_.begin(), stretches_.end(),
            [](const Stretch& s, const Stretch& t) { return s.lowA < t.lowA; });
  for (std::size_t i = 0; i < stretches_.size();) {
    Stretch s = stretches_[i++];
    const auto continues = [&](const Stretch& t) {
      return t.lowA <= s.highA ||
             DistanceSqrd(Evaluate(a, s.highA), Evaluate(a, t.lowA)) <= 4 * contact_ * contact_;
    };
    for (; i < stretches_.size() && continues(stretches_[i]); ++i) {
      if (stretches_[i].highA > s.highA) s.highA = stretches_[i].highA, s.highB = stretches_[i].highB;
    }
    Mark(s.lowA, s.lowB);
    Mark(s.highA, s.highB);
    Add(a, b, s.lowA, s.lowB);
    if (s.highA > s.lowA) Add(a, b, s.highA, s.highB);
  }
}

/// Whether the arcs run on top of one another between ends of theirs; if so, those ends are the contacts.
bool PairCrossing::FindOverlap(const Curve& a, const Curve& b) {
  std::vector<Contact>& out = *out_;
  const std::size_t before = out.size();
  Touching(a, b, 0);
  Touching(a, b, 1);
  TouchingOn(a, b, 0);
  TouchingOn(a, b, 1);
  std::size_t low = before, high = before;
  for (std::size_t k = before; k < out.size(); ++k) {
    if (out[k].a < out[low].a) low = k;
    if (out[k].a > out[high].a) high = k;
  }
  constexpr int kSamples = 9;  // two cubics that agree at ten places are one curve (Bezout)
  bool overlap =
      out.size() >= before + 2 && DistanceSqrd(out[low].point, out[high].point) > contact_ * contact_;
  for (int k = 1; overlap && k <= kSamples; ++k) {
    const DPoint p = Evaluate(a, out[low].a + (out[high].a - out[low].a) * k / (kSamples + 1));
    overlap = DistanceSqrd(p, Evaluate(b, Project(b, p))) <= 4 * contact_ * contact_;
  }
  if (!overlap) {
    out.resize(before);
    return false;
  }
  for (std::size_t k = before; k < out.size(); ++k) Mark(out[k].a, out[k].b);
  return true;
}

/// Arcs that run side by side, too near for thick chords to tell them apart: parts of a are compared with the
/// parts of b opposite to them, control point by control point. False, and nothing found, when the arcs are
/// not of that kind.
bool PairCrossing::FindSideBySide(const Curve& a, const Curve& b) {
  const double p0 = Project(a, b.p[0]), p1 = Project(a, b.p[3]), low = (std::min)(p0, p1),
               high = (std::max)(p0, p1);
  if (!(high - low > kExtremumParameter)) return false;
  const DPoint begin = Evaluate(a, low), end = Evaluate(a, high);
  const double closeEnough = kSideBySide * kSideBySide * DistanceSqrd(begin, end);
  for (const double t : {low, 0.5 * (low + high), high}) {
    const DPoint p = Evaluate(a, t);
    if (DistanceSqrd(p, Evaluate(b, Project(b, p))) > closeEnough) return false;
  }
  const std::size_t contactsBefore = out_->size(), stretchesBefore = stretches_.size();
  std::vector<Match> stack{{low, high, Project(b, begin), Project(b, end)}};
  int steps = 0;
  for (; !stack.empty() && steps < kMatchLimit; ++steps) {
    const Match m = stack.back();
    stack.pop_back();
    if (ExamineMatch(a, b, m) != Verdict::split) continue;
    const double t = 0.5 * (m.t0 + m.t1), u = Project(b, Evaluate(a, t));
    stack.push_back({t, m.t1, u, m.u1});
    stack.push_back({m.t0, t, m.u0, u});
  }
  if (!stack.empty()) {
    out_->resize(contactsBefore);
    stretches_.resize(stretchesBefore);
    return false;
  }
  Touching(a, b, 0);
  Touching(a, b, 1);
  TouchingOn(a, b, 0);
  TouchingOn(a, b, 1);
  return true;
}

PairCrossing::Verdict PairCrossing::ExamineMatch(const Curve& a, const Curve& b, const Match& m) {
  const Curve ca = Part(a, m.t0, m.t1), cb = Part(b, m.u0, m.u1);
  const DVector chord = ca.p[3] - ca.p[0];
  const double length = std::sqrt(LengthSqrd(chord));
  const bool tiny = length <= contact_ || m.t1 - m.t0 < 0x1p-44;
  double low = 0, high = 0, slip = 0, farthest = 0, slope = 0;
  bool forward = !tiny;
  for (int k = 0; k < 4; ++k) {
    const DVector d = cb.p[k] - ca.p[k];
    farthest = (std::max)(farthest, LengthSqrd(d));
    if (tiny) continue;
    const double gap = Cross(chord, d) / length;
    low = k == 0 ? gap : (std::min)(low, gap);
    high = k == 0 ? gap : (std::max)(high, gap);
    slip = (std::max)(slip, std::fabs(Dot(chord, d)) / length);
    for (const Curve* c : {&ca, &cb}) {
      if (k == 3) continue;
      const DVector v = c->p[k + 1] - c->p[k];
      const double along = Dot(chord, v), across = std::fabs(Cross(chord, v));
      if (along > 0) slope = (std::max)(slope, across / along);
      forward &= along > 0 || across == 0;
    }
  }
  // A little more than what counts as apart below, so that every part settles before rounding blurs the gap.
  if (farthest <= 1.5 * contact_ * contact_) {
    stretches_.push_back({m.t0, m.u0, m.t1, m.u1});
    return Verdict::resolved;
  }
  if (tiny) return Verdict::apart;
  // Points that are matched may be off along the chord by the slip; the curves rise or fall by no more than
  // slope times that on the way to the point that lies exactly opposite.
  const double margin = 1.01 * slope * slip + contact_;
  if (forward && (low > margin || high < -margin)) return Verdict::apart;
  const double gap0 = Cross(chord, cb.p[0] - ca.p[0]), gap1 = Cross(chord, cb.p[3] - ca.p[3]);
  if (!forward || (gap0 > 0) == (gap1 > 0)) return Verdict::split;
  // The sides change: one crossing, if the gap only grows or only shrinks.
  for (int k = 0; k < 3; ++k) {
    const double change = Cross(chord, (cb.p[k + 1] - ca.p[k + 1]) - (cb.p[k] - ca.p[k]));
    if ((change > 0) != (gap1 > gap0)) return Verdict::split;
  }
  const bool turned = m.u0 > m.u1;
  const Span sa{m.t0, m.t1, ca.p[0], ca.p[3]},
      sb{turned ? m.u1 : m.u0, turned ? m.u0 : m.u1, cb.p[turned ? 3 : 0], cb.p[turned ? 0 : 3]};
  const double f = gap0 / (gap0 - gap1);
  const std::size_t before = out_->size();
  const bool found = m.u0 != m.u1 && Polish(a, b, {sa, sb}, f, turned ? 1 - f : f) && out_->size() > before;
  return found ? Verdict::resolved : Verdict::split;
}

}  // namespace Lumo::Planar
