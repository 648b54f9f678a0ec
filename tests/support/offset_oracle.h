#pragma once
// Offsetting one cubic the way a host does it with the public primitives, and an independent dense measure of
// the result: nearest distances both ways between the result and the true parallel curve.

#include <algorithm>
#include <cmath>
#include <vector>

#include "tav/math/cubic_bezier.h"

namespace LumoTest {

struct OffsetPiece {
  TavMath::Cubic source;
  TavMath::Cubic result;
};

/// Pieces of the offset of a cubic; `complete` turns false when some stretch found no result, unless it is so
/// short that the rounding of its coordinates leaves it without a direction.
struct OffsetPieces {
  std::vector<OffsetPiece> pieces;
  bool complete = true;

  void Add(TavMath::Cubic piece, double offset, double tolerance, int depth = 0) {
    for (int guard = 0; guard < 256; ++guard) {
      TavMath::Cubic result;
      double split = -1;
      if (TavMath::FindBezierOffsetCurve(piece.data(), result.data(), offset, tolerance, split)) {
        pieces.push_back({piece, result});
        return;
      }
      if (!(split > 0 && split < 1) || depth > 24) break;
      TavMath::Cubic left, right;
      TavMath::CubicBezier::Split(split, piece.data(), left.data(), right.data());
      Add(left, offset, tolerance, depth + 1);
      piece = right;
    }
    const double coordinates = std::abs(piece[0].x) + std::abs(piece[0].y);
    if (TavMath::Distance(piece[0], piece[3]) > 1e-8 * coordinates) complete = false;
  }

  static OffsetPieces Of(const TavMath::Cubic& cubic, double offset, double tolerance) {
    OffsetPieces out;
    std::vector<TavMath::Cubic> parts;
    TavMath::GetSegmentsToOffset(cubic.data(), parts, offset);
    for (const TavMath::Cubic& part : parts) out.Add(part, offset, tolerance);
    return out;
  }
};

/// The point of the true parallel curve.
inline TavMath::DPoint ParallelPoint(const TavMath::Cubic& c, double offset, double t) {
  const TavMath::DVector tangent = TavMath::CubicBezier::SafeBezierTangent(t, c.data());
  const double length = TavMath::Length(tangent);
  const TavMath::DPoint p = TavMath::CubicBezier::Evaluate(c.data(), t);
  if (!(length > 0)) return p;
  return p + TavMath::DVector{-tangent.y * (offset / length), tangent.x * (offset / length)};
}

/// The greatest distance from `samples` points of curve f to curve g, both on [0, 1]; nearest points by dense
/// samples and a golden search around the best of them.
template <class F, class G>
double FarthestFrom(const F& f, const G& g, int samples, int dense) {
  std::vector<TavMath::DPoint> points;
  for (int k = 0; k <= dense; ++k) points.push_back(g(static_cast<double>(k) / dense));
  double worst = 0;
  for (int i = 0; i <= samples; ++i) {
    const TavMath::DPoint p = f(static_cast<double>(i) / samples);
    int best = 0;
    for (int k = 0; k <= dense; ++k)
      if (TavMath::DistanceSqrd(p, points[static_cast<std::size_t>(k)]) <
          TavMath::DistanceSqrd(p, points[static_cast<std::size_t>(best)]))
        best = k;
    double a = (std::max)(0, best - 1) / static_cast<double>(dense);
    double b = (std::min)(dense, best + 1) / static_cast<double>(dense);
    for (int step = 0; step < 50; ++step) {
      const double x = a + 0.382 * (b - a), y = a + 0.618 * (b - a);
      (TavMath::DistanceSqrd(p, g(x)) < TavMath::DistanceSqrd(p, g(y)) ? b : a) =
          TavMath::DistanceSqrd(p, g(x)) < TavMath::DistanceSqrd(p, g(y)) ? y : x;
    }
    const double refined = TavMath::DistanceSqrd(p, g(0.5 * (a + b)));
    worst = (std::max)(worst,
                       (std::min)(refined, TavMath::DistanceSqrd(p, points[static_cast<std::size_t>(best)])));
  }
  return std::sqrt(worst);
}

/// How far one piece and the true parallel curve of its source part at most.
inline double Deviation(const OffsetPiece& piece, double offset, int samples = 48) {
  const auto result = [&](double u) { return TavMath::CubicBezier::Evaluate(piece.result.data(), u); };
  const auto truth = [&](double t) { return ParallelPoint(piece.source, offset, t); };
  return (std::max)(FarthestFrom(result, truth, samples, 1200), FarthestFrom(truth, result, samples, 400));
}

}  // namespace LumoTest
