// Flattening: the tolerance holds everywhere and the pieces are few.
#include <gtest/gtest.h>

#include "support/cubic_corpus.h"

namespace {

using namespace LumoTest;
using namespace TavMath;
using CubicBezier::Evaluate;

double DistanceToLines(const DPoint& p, const DPoint* lines, int pieces) {
  double best = HUGE_VAL;
  for (int j = 0; j < pieces; ++j) {
    const DVector e = lines[j + 1] - lines[j];
    const double l = LengthSqrd(e), s = l > 0 ? std::clamp(Dot(p - lines[j], e) / l, 0.0, 1.0) : 0;
    best = std::min(best, DistanceSqrd(p, lines[j] + s * e));
  }
  return std::sqrt(best);
}

double FarthestFromLines(const Cubic& c, const DPoint* lines, int pieces) {
  double farthest = 0;
  for (int k = 0; k <= 400; ++k)
    farthest = std::max(farthest, DistanceToLines(Evaluate(c.data(), k / 400.0), lines, pieces));
  return farthest;
}

/// The fewest chords with corners on the curve, by the longest stretch that dense samples allow, again and
/// again.
int FewestPieces(const Cubic& c, double tolerance) {
  constexpr int kSamples = 1500;
  std::vector<DPoint> at;
  for (int k = 0; k <= kSamples; ++k) at.push_back(Evaluate(c.data(), static_cast<double>(k) / kSamples));
  const auto fits = [&](std::size_t from, std::size_t to) {
    const DPoint chord[2] = {at[from], at[to]};
    for (std::size_t k = from + 1; k < to; ++k) {
      if (DistanceToLines(at[k], chord, 1) > tolerance) return false;
    }
    return true;
  };
  int pieces = 0;
  for (std::size_t from = 0; from < kSamples; ++pieces) {
    std::size_t low = from + 1, high = kSamples;
    if (fits(from, high)) low = high;
    while (high - low > 1) {
      const std::size_t middle = (low + high) / 2;
      (fits(from, middle) ? low : high) = middle;
    }
    from = low;
  }
  return pieces;
}

TEST(AdaptiveLines, StayWithinTheToleranceOnEveryShape) {
  Random random(31);
  ForEachCubic(401, 3000, [&](const Cubic& c) {
    const double tolerance = SizeOf(c) * random.LogUniform(1e-4, 0.2);
    DPoint lines[512];
    const int pieces = AdaptiveBezierToLines(c.data(), lines, tolerance * tolerance, 512);
    ASSERT_TRUE(pieces >= 1 && pieces < 512);
    EXPECT_EQ(lines[0], c[0]);
    EXPECT_EQ(lines[pieces], c[3]);
    EXPECT_LE(FarthestFromLines(c, lines, pieces), tolerance * (1 + 1e-9) + 8 * UlpOf(c)) << tolerance;
  });
}

TEST(AdaptiveLines, KeepAClosedCurveWhoseChordIsARounding) {
  // The chord from end to end is a rounding with a direction, along which the curve may seem to advance.
  const Cubic tiny{DPoint{-1.1172844935392275e-05, -7.1879501850765528e-05},
                   DPoint{-8.8036730035261232e-06, -7.0033315002279766e-05},
                   DPoint{-4.855697409146121e-06, -6.6486441553329734e-05},
                   DPoint{-1.1172844935392275e-05, -7.1879501850765528e-05}};
  const Cubic large{
      DPoint{38.699698789780619, -1170.205378596876}, DPoint{-2616.725111099322, -114.92281031558745},
      DPoint{-2288.1726319653576, -761.16142382338376}, DPoint{38.699698789780619, -1170.205378596876}};
  for (const auto& [c, tolerance] : {std::pair{tiny, 9.21783e-08}, std::pair{large, 901.002}}) {
    DPoint lines[512];
    const int pieces = AdaptiveBezierToLines(c.data(), lines, tolerance * tolerance, 512);
    EXPECT_LE(FarthestFromLines(c, lines, pieces), tolerance);
  }
}

TEST(AdaptiveLines, AreAtMostATenthMoreThanTheFewest) {
  Random random(32);
  int ours = 0, fewest = 0;
  for (int k = 0; k < 150; ++k) {
    const Cubic c = UnitCubic(random, k % 2 == 0 ? CubicShape::general : CubicShape::arc);
    const double tolerance = SizeOf(c) * random.LogUniform(1e-4, 1e-2);
    DPoint lines[512];
    const int pieces = AdaptiveBezierToLines(c.data(), lines, tolerance * tolerance, 512);
    const int least = FewestPieces(c, tolerance);
    EXPECT_LE(pieces, std::max(least + 1, static_cast<int>(1.1 * least))) << ToSvg(c) << " " << tolerance;
    ours += pieces;
    fewest += least;
  }
  EXPECT_GT(fewest, 1000);
  EXPECT_LE(ours, 1.05 * fewest);
}

TEST(AdaptiveLines, SpreadWhenTheRoomRunsOut) {
  ForEachCubic(402, 500, [](const Cubic& c) {
    for (const int room : {2, 3, 20}) {
      std::vector<DPoint> lines(static_cast<std::size_t>(room) + 1, DPoint{-1.5, 77});
      const int pieces = AdaptiveBezierToLines(c.data(), lines.data(), 0, room);
      ASSERT_TRUE(pieces >= 1 && pieces < room);
      EXPECT_EQ(lines[static_cast<std::size_t>(room)], (DPoint{-1.5, 77})) << "wrote past its room";
      EXPECT_EQ(lines[static_cast<std::size_t>(pieces)], c[3]);
    }
  });
  // No part of the curve is given up: with 9 chords the error is near that of 9 chords everywhere.
  const Cubic arc{DPoint{1, 0}, DPoint{1, 0.55}, DPoint{0.55, 1}, DPoint{0, 1}};
  DPoint lines[10];
  const int pieces = AdaptiveBezierToLines(arc.data(), lines, 1e-12, 10);
  EXPECT_GE(pieces, 8);
  EXPECT_LE(FarthestFromLines(arc, lines, pieces), 0.006);
}

TEST(AdaptiveLines, BadInputIsBounded) {
  DPoint lines[4];
  const DPoint p[4] = {{0, 0}, {0, 1}, {1, 2}, {2, 2}};
  EXPECT_EQ(AdaptiveBezierToLines(p, lines, 1, 1), 0);
  EXPECT_EQ(AdaptiveBezierToLines(p, nullptr, 1, 4), 0);
  EXPECT_EQ(AdaptiveBezierToLines(p, lines, 100, 4), 1);
  const double nan = std::nan("");
  EXPECT_LE(AdaptiveBezierToLines(p, lines, nan, 4), 3);
  EXPECT_LE(AdaptiveBezierToLines(p, lines, -1, 4), 3);
  const DPoint bad[4] = {{0, 0}, {nan, 1}, {1, HUGE_VAL}, {2, 2}};
  EXPECT_LE(AdaptiveBezierToLines(bad, lines, 1, 4), 3);
  const DPoint point[4] = {{2, 3}, {2, 3}, {2, 3}, {2, 3}};
  EXPECT_EQ(AdaptiveBezierToLines(point, lines, 0, 4), 1);
}

TEST(UniformLines, EndExactlyAndKeepHalfAUnit) {
  Random random(33);
  for (int k = 0; k < 1000; ++k) {
    Cubic c = UnitCubic(random, RandomShape(random));
    const double size = random.LogUniform(1, 1000);
    for (DPoint& p : c) p = {p.x * size, p.y * size};
    const int pieces = CalculateNumBezierLines(c.data(), 10000);
    std::vector<DPoint> lines(static_cast<std::size_t>(pieces) + 1);
    EXPECT_EQ(BezierToLines(c.data(), lines.data(), pieces), pieces);
    EXPECT_EQ(lines.front(), c[0]);
    EXPECT_EQ(lines.back(), c[3]);
    EXPECT_LE(FarthestFromLines(c, lines.data(), pieces), 0.5 + 1e-9) << ToSvg(c);
  }
}

TEST(UniformLines, Counts) {
  const DPoint line[4] = {{0, 0}, {10, 0}, {20, 0}, {30, 0}};
  EXPECT_EQ(CalculateNumBezierLines(line, 32), 1);
  const DPoint arch[4] = {{0, 0}, {0, 100}, {100, 100}, {100, 0}};  // second differences of 141.4
  EXPECT_EQ(CalculateNumBezierLines(arch, 32), 15);
  EXPECT_EQ(CalculateNumBezierLines(arch, 10), 10);
  EXPECT_EQ(CalculateNumBezierLines(arch, 0), 1);
  EXPECT_EQ(CalculateNumBezierLines(tagRECT{0, 0, 30, 40}, 32), 13);  // ceil(sqrt(3 * 50))
  EXPECT_EQ(CalculateNumBezierLines(tagRECT{-2147483647, -2147483647, 2147483647, 2147483647}, 32), 32);
  DPoint lines[3];
  EXPECT_EQ(BezierToLines(arch, lines, 0), 1) << "at least one piece";
  EXPECT_EQ(BezierToLines(arch, nullptr, 4), 0);
}

}  // namespace
