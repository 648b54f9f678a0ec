#include "offset/open_path.h"

#include <algorithm>
#include <cmath>

#include "offset/raw_path.h"
#include "offset/reach.h"
#include "offset/tolerances.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo::Offset {

using namespace TavMath;
using namespace TavMath::CubicBezier;

namespace {

/// The parameters at which each part is crossed by another.
class SelfCrossings {
 public:
  explicit SelfCrossings(const std::vector<Part>& parts) : parts_(parts), cuts_(parts.size()) {
    std::vector<BoundsT<double>> boxes;
    for (const Part& part : parts) boxes.push_back(BoxOf(part));
    std::vector<std::size_t> order(parts.size());
    for (std::size_t k = 0; k < order.size(); ++k) order[k] = k;
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return boxes[a].minx < boxes[b].minx; });
    for (std::size_t a = 0; a < order.size(); ++a)
      for (std::size_t b = a + 1; b < order.size() && boxes[order[b]].minx <= boxes[order[a]].maxx; ++b)
        if (boxes[order[a]].Overlaps(boxes[order[b]])) Cross(order[a], order[b]);
    for (std::vector<double>& cuts : cuts_) std::sort(cuts.begin(), cuts.end());
  }

  const std::vector<double>& Of(std::size_t part) const { return cuts_[part]; }

 private:
  void Cross(std::size_t a, std::size_t b) {
    const Part &f = parts_[a], &g = parts_[b];
    // A line is a cubic with its controls at its ends; crossings are found by the same routine.
    const Crossings crossings = IntersectBeziers(f.curve.data(), g.curve.data());
    for (int k = 0; k < crossings.count; ++k) {
      const Crossing& c = crossings.at[static_cast<std::size_t>(k)];
      if (c.ta > 0 && c.ta < 1) cuts_[a].push_back(c.ta);
      if (c.tb > 0 && c.tb < 1) cuts_[b].push_back(c.tb);
    }
  }

  const std::vector<Part>& parts_;
  std::vector<std::vector<double>> cuts_;
};

/// A place at which a part is divided: where another one crosses it, or where it comes too near to the source
/// or leaves it.
struct Cut {
  double t;
  bool crossing;
};

/// The pieces of a raw parallel that keep their distance from the source.
class Sieve {
 public:
  Sieve(const OwnedPath& subpath, double distance, const OffsetSettings& settings)
      : source_(subpath.points.data(), subpath.nodes.data(), subpath.Count()),
        error_((std::min)(settings.MaxOffsetError(), 0.5 * distance)),
        limit_(distance - error_) {}

  /// The cuts of a part in order, its end the last. A parallel comes near the end of an open path without
  /// crossing itself there, so crossings alone do not tell.
  std::vector<Cut> CutsOf(const Part& part, const std::vector<double>& crossings) const {
    std::vector<Cut> cuts;
    for (const double t : crossings) cuts.push_back({t, true});
    const auto isNear = [&](double t) { return source_.Holds(Evaluate(part.curve.data(), t), limit_); };
    double before = 0;
    bool wasNear = isNear(0);
    for (int k = 1; k <= kReachLooks; ++k) {
      const double at = static_cast<double>(k) / kReachLooks;
      if (isNear(at) != wasNear) {
        double low = before, high = at;
        for (int step = 0; step < kReachHalvings; ++step) {
          const double middle = 0.5 * (low + high);
          (isNear(middle) == wasNear ? low : high) = middle;
        }
        cuts.push_back({high, false});
        wasNear = !wasNear;
      }
      before = at;
    }
    std::sort(cuts.begin(), cuts.end(), [](const Cut& a, const Cut& b) { return a.t < b.t; });
    cuts.push_back({1, false});
    return cuts;
  }

  /// Whether the piece between two neighbouring cuts goes. So does what is left between a crossing and a
  /// stretch that is too near for no reason but that pieces may err.
  bool Drops(const Part& piece, const Cut& from, const Cut& to) const {
    if (source_.Holds(Evaluate(piece.curve.data(), 0.5), limit_)) return true;
    const bool toNear = from.crossing && !to.crossing && to.t < 1,
               fromNear = to.crossing && !from.crossing && from.t > 0;
    return (toNear || fromNear) && Distance(piece.Start(), piece.End()) < kOvershoot * error_;
  }

 private:
  Reach source_;
  double error_;  // what a piece may err, so that stretches at the distance are never taken out
  double limit_;
};

Part PieceOf(const Part& part, double from, double to) {
  Part piece = part;
  if (part.line) {
    // By the parameter of its cubic form, whose speed is not even.
    const DPoint a = Evaluate(part.curve.data(), from), b = Evaluate(part.curve.data(), to);
    piece.curve = {a, a, b, b};
  } else {
    Subsection(from, to, part.curve.data(), piece.curve.data());
  }
  return piece;
}

}  // namespace

void OffsetOpenPath(const OwnedPath& subpath, double distance, const OffsetSettings& settings,
                    OwnedPath& result) {
  OwnedPath raw;
  AppendRawOffset(SourceOf(subpath, {0, subpath.Count()}), distance, settings, raw.Out());
  const std::vector<Part> parts = PartsOf(raw.points.data(), raw.nodes.data(), raw.Count());
  const SelfCrossings crossings(parts);
  const Sieve sieve(subpath, distance, settings);
  bool broken = true;
  for (std::size_t k = 0; k < parts.size(); ++k) {
    Cut from{0, false};
    for (const Cut& to : sieve.CutsOf(parts[k], crossings.Of(k))) {
      if (!(to.t > from.t)) continue;
      const Part piece = PieceOf(parts[k], from.t, to.t);
      const bool drops = sieve.Drops(piece, from, to);
      from = to;
      if (drops) {
        broken = true;
        continue;
      }
      // After a gap the curve goes on where it left itself, or begins anew.
      const Output out = result.Out();
      const bool anew =
          out.points.empty() || (broken && !Continues(out, piece.Start(), settings.MaxConnectErrorSqrd()));
      if (piece.line)
        AppendOffsetLine(out, piece.Start(), piece.End(), settings.MaxConnectErrorSqrd(), anew, false);
      else
        AppendOffsetCubic(out, piece.curve.data(), settings.MaxConnectErrorSqrd(), anew);
      broken = false;
    }
  }
}

}  // namespace Lumo::Offset
