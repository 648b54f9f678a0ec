#include <cmath>

#include "offset/piece.h"

namespace Lumo::Offset {

using namespace TavMath;
using namespace TavMath::CubicBezier;

namespace {

/// The crossing of two parts that lies nearest to the end of the first and the start of the second.
bool FindCrossing(const Part& f, const Part& g, double& tf, double& tg, DPoint& at) {
  if (f.line && g.line) {
    const DVector u = f.End() - f.Start(), v = g.End() - g.Start(), w = g.Start() - f.Start();
    const double denominator = Cross(u, v);
    if (denominator == 0) return false;
    tf = Cross(w, v) / denominator;
    tg = Cross(w, u) / denominator;
    at = f.Start() + tf * u;
    return tf >= 0 && tf <= 1 && tg >= 0 && tg <= 1;
  }
  const Crossings crossings = f.line   ? IntersectBezierLine(g.curve.data(), f.Start(), f.End(), false)
                              : g.line ? IntersectBezierLine(f.curve.data(), g.Start(), g.End(), false)
                                       : IntersectBeziers(f.curve.data(), g.curve.data());
  if (crossings.overlap) return false;
  double best = -2;
  for (int k = 0; k < crossings.count; ++k) {
    const Crossing& c = crossings.at[static_cast<std::size_t>(k)];
    const double onF = f.line ? c.tb : c.ta, onG = f.line ? c.ta : c.tb;
    if (onF - onG <= best) continue;
    best = onF - onG;
    tf = onF;
    tg = onG;
    at = c.point;
  }
  return best > -2;
}

void CutAfter(Part& part, double t, const DPoint& at) {
  if (part.line)
    part.curve[2] = at;
  else
    LeftOf(t, part.curve.data(), part.curve.data());
  part.curve[3] = at;
}

void CutBefore(Part& part, double t, const DPoint& at) {
  if (part.line)
    part.curve[1] = at;
  else
    RightOf(t, part.curve.data(), part.curve.data());
  part.curve[0] = at;
}

}  // namespace

bool TrimPieces(Piece& earlier, Piece& later, double leastGapSqrd) {
  if (!earlier.IsUsable() || !later.IsUsable()) return false;
  if (!(Cross(earlier.endTangent, later.startTangent) > 0)) return false;
  Part& f = earlier.parts.back();
  Part& g = later.parts.front();
  const double gapSqrd = DistanceSqrd(f.End(), g.Start());
  if (!(gapSqrd > leastGapSqrd)) return false;
  // What is cut off runs back over ground that both pieces must cover; a segment shorter than the gap need
  // not.
  const double gap = std::sqrt(gapSqrd);
  if (earlier.sourceLength < gap || later.sourceLength < gap) return false;
  double tf = 1, tg = 0;
  DPoint at;
  if (!FindCrossing(f, g, tf, tg, at)) return false;
  CutAfter(f, tf, at);
  CutBefore(g, tg, at);
  return true;
}

}  // namespace Lumo::Offset
