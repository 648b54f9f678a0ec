// Offsetting of one cubic: the result is measured against the true parallel curve, not against the fit's own
// samples.
#include <gtest/gtest.h>

#include <limits>

#include "support/cubics.h"
#include "support/offset_oracle.h"

namespace {

using namespace LumoTest;
using namespace TavMath;

double UnitCross(const DVector& u, const DVector& v) { return Cross(u, v) / (Length(u) * Length(v)); }

double ShortestHandle(const Cubic& c) {
  double shortest = Distance(c[0], c[3]);
  for (const double d : {Distance(c[0], c[1]), Distance(c[2], c[3])})
    if (d > 0) shortest = std::fmin(shortest, d);
  return shortest;
}

/// How far the rounding of its coordinates, of size `ulp`, may move the parallel curve of a piece: they carry
/// the direction of its handles.
double TurnedByRounding(const Cubic& piece, double offset, double ulp) {
  return std::abs(offset) * 16 * ulp / ShortestHandle(piece);
}

TEST(OffsetOne, StaysWithinTheToleranceEverywhere) {
  Random random(11);
  long pieces = 0, unmeasurable = 0;
  for (int k = 0; k < 800; ++k) {
    const Cubic c = RandomCubic(random);
    const double size = SizeOf(c), offset = (random.Below(2) ? 1 : -1) * size * random.LogUniform(1e-4, 3);
    const double tolerance = (size + std::abs(offset)) * random.LogUniform(1e-7, 1e-2);
    if (!(size > 0)) continue;
    const OffsetPieces result = OffsetPieces::Of(c, offset, tolerance);
    EXPECT_TRUE(result.complete) << ToSvg(c) << " at " << offset << " to " << tolerance;
    for (const OffsetPiece& piece : result.pieces) {
      // Coordinates carry the rounding of their size, and so does the direction of a short piece.
      const double ulp = 4e-16 * (std::abs(c[0].x) + std::abs(c[0].y) + size);
      const double turned = TurnedByRounding(piece.source, offset, ulp);
      if (turned > 0.2 * tolerance) {
        ++unmeasurable;
        continue;
      }
      const double rounding = 256 * ulp + turned;
      ASSERT_LE(Deviation(piece, offset, 24), tolerance + rounding)
          << ToSvg(c) << " at " << offset << " to " << tolerance << "\npiece " << ToSvg(piece.source)
          << "\ngives " << ToSvg(piece.result);
    }
    pieces += static_cast<long>(result.pieces.size());
  }
  EXPECT_GT(pieces, 1000);
  EXPECT_LT(unmeasurable * 10, pieces);
}

TEST(OffsetOne, StaysWithinTheToleranceAtTheSizesOfDrawings) {
  Random random(21);
  long pieces = 0, unmeasurable = 0;
  for (int k = 0; k < 800; ++k) {
    Cubic c = UnitCubic(random, RandomShape(random));
    for (DPoint& p : c) p = {1e5 * p.x, 1e5 * p.y};
    const double offset = (random.Below(2) ? 1 : -1) * random.LogUniform(1e2, 2e5);
    const double tolerance = random.LogUniform(1, 1000);
    const OffsetPieces result = OffsetPieces::Of(c, offset, tolerance);
    EXPECT_TRUE(result.complete) << ToSvg(c) << " at " << offset << " to " << tolerance;
    EXPECT_LE(result.pieces.size(), 48u) << ToSvg(c) << " at " << offset << " to " << tolerance;
    for (const OffsetPiece& piece : result.pieces) {
      ++pieces;
      // A sliver of a tip has no direction left to measure.
      if (TurnedByRounding(piece.source, offset, 4e-16 * SizeOf(c)) > 0.2 * tolerance) {
        ++unmeasurable;
        continue;
      }
      ASSERT_LE(Deviation(piece, offset, 24), tolerance)
          << ToSvg(c) << " at " << offset << " to " << tolerance << "\npiece " << ToSvg(piece.source)
          << "\ngives " << ToSvg(piece.result);
    }
  }
  EXPECT_LT(unmeasurable * 50, pieces);
}

TEST(OffsetOne, ABendTighterThanTheSamplesLeavesNoWiggle) {
  // The handles turn within a fiftieth of the length; a fit that does not see it swings back and forth there.
  const Cubic bends[] = {
      {DPoint{315796, 321476}, DPoint{320296, 322306}, DPoint{446999, 322088}, DPoint{449490, 321345}},
      {DPoint{131159, 657195}, DPoint{137014, 657894}, DPoint{446868, 657632}, DPoint{449490, 656933}},
      {DPoint{647096, 208022}, DPoint{647096, 208284}, DPoint{629182, 235722}, DPoint{607424, 268971}}};
  for (const Cubic& c : bends)
    for (const double offset : {-53162.8032, -50541.3632, -45000.0, -10632.0, -3000.0, 10632.0, 53162.8032}) {
      const double tolerance = std::fmax(100.0, std::abs(offset) / 100);
      const OffsetPieces result = OffsetPieces::Of(c, offset, tolerance);
      EXPECT_TRUE(result.complete);
      EXPECT_LE(result.pieces.size(), 5u) << ToSvg(c) << " at " << offset;
      for (const OffsetPiece& piece : result.pieces)
        EXPECT_LE(Deviation(piece, offset, 96), tolerance)
            << ToSvg(piece.source) << " at " << offset << "\ngives " << ToSvg(piece.result);
    }
}

TEST(OffsetOne, EndsAndEndTangentsAreThoseOfTheParallelCurve) {
  Random random(12);
  int checked = 0;
  for (int k = 0; k < 400; ++k) {
    const Cubic c = UnitCubic(random, k % 2 ? CubicShape::general : CubicShape::arc);
    const double offset = random.Uniform(-0.5, 0.5);
    for (const OffsetPiece& piece : OffsetPieces::Of(c, offset, 1e-3).pieces) {
      EXPECT_LT(Distance(piece.result[0], ParallelPoint(piece.source, offset, 0)), 1e-12);
      EXPECT_LT(Distance(piece.result[3], ParallelPoint(piece.source, offset, 1)), 1e-12);
      for (const double t : {0.0, 1.0}) {
        const DVector source = CubicBezier::SafeBezierTangent(t, piece.source.data());
        const DVector result = CubicBezier::SafeBezierTangent(t, piece.result.data());
        EXPECT_LT(std::abs(UnitCross(source, result)), 1e-6) << ToSvg(c) << " at " << offset;
        ++checked;
      }
    }
  }
  EXPECT_GT(checked, 800);
}

TEST(OffsetOne, ErrorFallsWithTheSixthPowerOfTheLength) {
  const Cubic curves[] = {{DPoint{0, 0}, DPoint{30, 60}, DPoint{90, 80}, DPoint{140, 40}},
                          {DPoint{0, 0}, DPoint{50, 10}, DPoint{90, 40}, DPoint{100, 90}},
                          {DPoint{0, 0}, DPoint{0, 80}, DPoint{60, 90}, DPoint{90, 30}}};
  for (const Cubic& c : curves) {
    // Three halvings at once: a single one may meet a piece whose leading error happens to vanish.
    double errors[2];
    for (const int k : {0, 1}) {
      OffsetPiece piece;
      CubicBezier::Subsection(0.3, 0.3 + (k == 0 ? 0.25 : 0.03125), c.data(), piece.source.data());
      double split;
      ASSERT_TRUE(FindBezierOffsetCurve(piece.source.data(), piece.result.data(), 12.0, 1e9, split));
      errors[k] = Deviation(piece, 12.0, 200);
    }
    EXPECT_GT(errors[0] / errors[1], 50.0 * 50 * 50) << ToSvg(c) << ": " << errors[0] << " to " << errors[1];
  }
}

TEST(OffsetOne, CircularArcStaysOnItsCircle) {
  const double f = 4.0 / 3 * std::tan(std::acos(-1.0) / 8);
  const Cubic quarter{DPoint{1000, 0}, DPoint{1000, 1000 * f}, DPoint{1000 * f, 1000}, DPoint{0, 1000}};
  for (const double offset : {-500.0, 300.0, 900.0}) {
    const OffsetPieces result = OffsetPieces::Of(quarter, offset, 1.0);
    ASSERT_EQ(result.pieces.size(), 1u) << offset;
    for (double t = 0; t <= 1; t += 0.01) {
      const DPoint p = CubicBezier::Evaluate(result.pieces[0].result.data(), t);
      EXPECT_NEAR(std::hypot(p.x, p.y), 1000 - offset, 0.6);
    }
  }
}

TEST(OffsetOne, CuspsSplitThePieces) {
  // A parabola: its curvature is greatest at the vertex, so an inner offset beyond that radius has two cusps.
  const Cubic c{DPoint{-100, 100}, DPoint{-100.0 / 3, -100.0 / 3}, DPoint{100.0 / 3, -100.0 / 3},
                DPoint{100, 100}};
  std::vector<Cubic> pieces;
  GetSegmentsToOffset(c.data(), pieces, 80);
  ASSERT_EQ(pieces.size(), 3u);
  for (int k = 0; k < 2; ++k) {
    const double radius = CubicBezier::GetCurvatureRadiusAt(1, pieces[static_cast<std::size_t>(k)].data());
    EXPECT_NEAR(radius, 80, 1e-6);
  }
  EXPECT_FALSE(IsBezierValidForOffset(c.data(), 80));
  EXPECT_FALSE(IsBezierValidForOffset(pieces[1].data(), 80)) << "the part between the cusps runs backwards";
  EXPECT_FALSE(IsBezierValidForOffset(c.data(), -80)) << "it turns by more than a right angle";
  GetSegmentsToOffset(c.data(), pieces, -80);
  EXPECT_EQ(pieces.size(), 1u);
  DPoint out[4];
  double split;
  EXPECT_FALSE(FindBezierOffsetCurve(c.data(), out, 80, 1, split));
  EXPECT_GT(split, 0);
  EXPECT_LT(split, 1);
}

TEST(OffsetOne, CuspOfTheSourceSplitsWhereItTurnsBack) {
  const Cubic back{DPoint{0, 0}, DPoint{300, 0}, DPoint{-200, 0}, DPoint{100, 0}};
  std::vector<Cubic> pieces;
  GetSegmentsToOffset(back.data(), pieces, 10);
  ASSERT_EQ(pieces.size(), 3u);
  EXPECT_LT(Distance(ParallelPoint(pieces[0], 10, 1), pieces[0][3] + DVector{0, 10}), 1e-9);
  EXPECT_LT(Distance(ParallelPoint(pieces[1], 10, 0), pieces[1][0] + DVector{0, -10}), 1e-9);
}

TEST(OffsetOne, ZeroHandleCurveThatMakesSubdivisionLoopElsewhere) {
  const Cubic c{DPoint{51, 0}, DPoint{-0.0859375, 161.640625}, DPoint{0, 164}, DPoint{0, 164}};
  for (const double tolerance : {1.0, 1e-2, 1e-4}) {
    const OffsetPieces result = OffsetPieces::Of(c, -8, tolerance);
    EXPECT_TRUE(result.complete);
    EXPECT_LE(result.pieces.size(), 24u);
    for (const OffsetPiece& piece : result.pieces) EXPECT_LE(Deviation(piece, -8), tolerance);
  }
}

TEST(OffsetOne, PiecesAreNearlyAsFewAsAnyDivisionNeeds) {
  // The fewest: the longest stretch that one cubic covers, again and again, found by bisection.
  const auto fits = [](const Cubic& c, double a, double b, double offset, double tolerance) {
    Cubic part, out;
    double split;
    CubicBezier::Subsection(a, b, c.data(), part.data());
    return FindBezierOffsetCurve(part.data(), out.data(), offset, tolerance, split);
  };
  Random random(13);
  long used = 0, fewest = 0;
  for (int k = 0; k < 60; ++k) {
    const Cubic c = UnitCubic(random, CubicShape::general);
    const double offset = random.Uniform(-0.3, 0.3), tolerance = random.LogUniform(1e-6, 1e-3);
    used += static_cast<long>(OffsetPieces::Of(c, offset, tolerance).pieces.size());
    std::vector<Cubic> parts;
    GetSegmentsToOffset(c.data(), parts, offset);
    for (const Cubic& part : parts)
      for (double from = 0; from < 1; ++fewest) {
        if (fits(part, from, 1, offset, tolerance)) {
          ++fewest;
          break;
        }
        double low = from, high = 1;
        for (int step = 0; step < 24; ++step) {
          const double mid = 0.5 * (low + high);
          (fits(part, from, mid, offset, tolerance) ? low : high) = mid;
        }
        ASSERT_GT(low, from);
        from = low;
      }
  }
  EXPECT_GT(fewest, 60);
  EXPECT_LE(static_cast<double>(used), 1.1 * static_cast<double>(fewest)) << used << " against " << fewest;
}

TEST(OffsetOne, UnusableInputGivesNothing) {
  const double nan = std::numeric_limits<double>::quiet_NaN(),
               infinite = std::numeric_limits<double>::infinity();
  const Cubic good{DPoint{0, 0}, DPoint{1, 1}, DPoint{2, 1}, DPoint{3, 0}};
  Cubic bad = good;
  bad[2].y = nan;
  const Cubic point{DPoint{5, 5}, DPoint{5, 5}, DPoint{5, 5}, DPoint{5, 5}};
  struct Case {
    Cubic cubic;
    double offset, tolerance;
  };
  for (const Case& k : {Case{bad, 1, 1}, Case{point, 1, 1}, Case{good, nan, 1}, Case{good, infinite, 1},
                        Case{good, 1, nan}, Case{good, 1, -1}}) {
    DPoint out[4];
    double split = 0.5;
    EXPECT_FALSE(FindBezierOffsetCurve(k.cubic.data(), out, k.offset, k.tolerance, split));
    EXPECT_EQ(split, -1.0);
  }
  std::vector<Cubic> pieces(3);
  GetSegmentsToOffset(bad.data(), pieces, 1);
  EXPECT_TRUE(pieces.empty());
  EXPECT_FALSE(IsBezierValidForOffset(bad.data(), 1));
}

}  // namespace
