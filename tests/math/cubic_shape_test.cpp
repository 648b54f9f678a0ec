// Evaluation, subdivision, extrema, tangents, curvature and area of one cubic.
#include <gtest/gtest.h>

#include <cstring>

#include "support/cubic_corpus.h"

namespace {

using namespace LumoTest;
using namespace TavMath;
using namespace TavMath::CubicBezier;

bool SameBits(const DPoint& a, const DPoint& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

TEST(Evaluate, IsWithinAFewRoundingsAndExactAtTheEnds) {
  Random random(21);
  ForEachCubic(301, 4000, [&](const Cubic& c) {
    const double t = random.Unit();
    const DPoint p = Evaluate(c.data(), t);
    const LPoint exact = EvaluateLong(c, t);
    EXPECT_NEAR(p.x, static_cast<double>(exact.x), 3 * UlpOf(c));
    EXPECT_NEAR(p.y, static_cast<double>(exact.y), 3 * UlpOf(c));
    EXPECT_EQ(Evaluate(c.data(), 0), c[0]);
    EXPECT_EQ(Evaluate(c.data(), 1), c[3]);
  });
  const DPoint point[4] = {{0.1, 0.3}, {0.1, 0.3}, {0.1, 0.3}, {0.1, 0.3}};
  EXPECT_EQ(Evaluate(point, 0.7), point[0]);
}

TEST(Split, MeetsEvaluationBitForBitAndMayOverlapItsSource) {
  Random random(22);
  ForEachCubic(302, 2000, [&](const Cubic& c) {
    const double t = random.Unit();
    DPoint left[4], right[4];
    Split(t, c.data(), left, right);
    EXPECT_TRUE(SameBits(left[3], Evaluate(c.data(), t)));
    EXPECT_TRUE(SameBits(right[0], left[3]));
    EXPECT_EQ(left[0], c[0]);
    EXPECT_EQ(right[3], c[3]);

    DPoint joined[7];  // the source in front, both halves over it
    std::copy(c.begin(), c.end(), joined);
    Split(t, joined, joined, joined + 3);
    for (int k = 0; k < 4; ++k) {
      EXPECT_TRUE(SameBits(joined[k], left[k]));
      EXPECT_TRUE(SameBits(joined[3 + k], right[k]));
    }
    DPoint behind[7];  // the source behind
    std::copy(c.begin(), c.end(), behind + 3);
    Split(t, behind + 3, behind, behind + 3);
    for (int k = 0; k < 4; ++k) EXPECT_TRUE(SameBits(behind[k], left[k]));

    DPoint half[4];
    LeftOf(t, c.data(), half);
    EXPECT_TRUE(SameBits(half[2], left[2]));
    RightOf(t, c.data(), half);
    EXPECT_TRUE(SameBits(half[1], right[1]));
  });
}

TEST(Subsection, TracesThePartBetweenItsParameters) {
  Random random(23);
  ForEachCubic(303, 2000, [&](const Cubic& c) {
    const double t0 = random.Unit(), t1 = random.Unit();  // reversed half of the time
    DPoint part[4];
    Subsection(t0, t1, c.data(), part);
    EXPECT_TRUE(SameBits(part[0], Evaluate(c.data(), t0)));
    EXPECT_TRUE(SameBits(part[3], Evaluate(c.data(), t1)));
    for (const double u : {0.2, 0.5, 0.9}) {
      const DPoint p = Evaluate(part, u);
      const LPoint exact = EvaluateLong(c, t0 + u * (static_cast<long double>(t1) - t0));
      EXPECT_NEAR(p.x, static_cast<double>(exact.x), 6 * UlpOf(c));
      EXPECT_NEAR(p.y, static_cast<double>(exact.y), 6 * UlpOf(c));
    }
  });
}

TEST(Box, IsTheExactRangeOfEachCoordinate) {
  ForEachCubic(304, 2000, [](const Cubic& c) {
    const BoundsT<double> box = GetTightBox(c.data());
    double across[2], along[2];
    const int acrossCount = GetVerticalTangents(c.data(), across),
              alongCount = GetHorizontalTangents(c.data(), along);
    // Reached: by an end or at a stationary parameter. Never passed: by any sample.
    BoundsT<double> reached;
    reached.Add(c[0].x, c[0].y);
    reached.Add(c[3].x, c[3].y);
    const auto add = [&](double t) {
      const LPoint p = EvaluateLong(c, t);
      reached.Add(static_cast<double>(p.x), static_cast<double>(p.y));
    };
    for (int k = 0; k < acrossCount; ++k) add(across[k]);
    for (int k = 0; k < alongCount; ++k) add(along[k]);
    const double few = 4 * UlpOf(c);
    EXPECT_NEAR(box.minx, reached.minx, few);
    EXPECT_NEAR(box.maxx, reached.maxx, few);
    EXPECT_NEAR(box.miny, reached.miny, few);
    EXPECT_NEAR(box.maxy, reached.maxy, few);
    for (int k = 0; k <= 100; ++k) {
      const LPoint p = EvaluateLong(c, k / 100.0L);
      EXPECT_TRUE(p.x >= box.minx - few && p.x <= box.maxx + few && p.y >= box.miny - few &&
                  p.y <= box.maxy + few);
    }
  });
}

TEST(Box, SurvivesExtremeScalesAndBadInput) {
  for (const double scale : {1e-200, 1e-80, 1e80, 1e150}) {
    const DPoint p[4] = {{0, 0}, {5 * scale, scale}, {-4 * scale, scale}, {scale, 0}};
    const BoundsT<double> box = GetTightBox(p);
    EXPECT_NEAR(box.maxy, 0.75 * scale, 1e-15 * scale);
    EXPECT_LT(box.minx, 0);
    EXPECT_GT(box.maxx, scale);
  }
  const DPoint bad[4] = {{0, 0}, {std::nan(""), 1}, {1, 1}, {2, 2}};
  EXPECT_TRUE(GetTightBox(bad).IsEmpty());
}

TEST(Tangents, AreSortedInsideAndLoseNoRootToAVanishingLeadingCoefficient) {
  ForEachCubic(305, 2000, [](const Cubic& c) {
    double t[2];
    for (const bool horizontal : {false, true}) {
      const int count = horizontal ? GetHorizontalTangents(c.data(), t) : GetVerticalTangents(c.data(), t);
      for (int k = 0; k < count; ++k) {
        EXPECT_TRUE(t[k] > 0 && t[k] < 1);
        const LPoint d = DerivativeLong(c, t[k]);
        EXPECT_LE(std::abs(static_cast<double>(horizontal ? d.y : d.x)), 1e-7 * SizeOf(c));
      }
      if (count == 2) {
        EXPECT_LT(t[0], t[1]);
      }
      // Every change of direction between samples is found.
      const auto slope = [&](int k) {
        const LPoint d = DerivativeLong(c, k / 64.0L);
        return horizontal ? d.y : d.x;
      };
      for (int k = 0; k < 64; ++k) {
        const long double a = slope(k), b = slope(k + 1), noise = 1e-12L * SizeOf(c);
        if (!((a > noise && b < -noise) || (a < -noise && b > noise))) continue;
        bool found = false;
        for (int n = 0; n < count; ++n) found = found || (t[n] >= k / 64.0 && t[n] <= (k + 1) / 64.0);
        EXPECT_TRUE(found) << "a change of direction between " << k << "/64 and the next sample";
      }
    }
  });
  // y' = 0 near 1/2, with a t^3 coefficient that falls to nothing.
  for (double leading = 0.5; leading > 1e-20; leading *= 0.1) {
    const DPoint p[4] = {{0, 0}, {1, 1}, {2, 1}, {3, leading}};
    double t[2];
    ASSERT_GE(GetHorizontalTangents(p, t), 1);
    EXPECT_NEAR(t[0], leading < 1e-9 ? 0.5 : t[0], 1e-8);
  }
}

TEST(Tangents, AreFoundAllAroundATurnedCircle) {
  // A quarter circle turned to any angle has exactly one horizontal or vertical tangent inside, except where
  // one falls on an end. The t^3 coefficient of one coordinate passes through zero on the way.
  constexpr double kHandle = 0.55228474983079339;
  const int steps = 20000;
  int counted = 0;
  for (int k = 1; k < steps; ++k) {
    const double a = k * (std::acos(-1.0) / 2) / steps, s = std::sin(a), co = std::cos(a);
    const auto turned = [&](double x, double y) { return DPoint{co * x - s * y, s * x + co * y}; };
    const DPoint p[4] = {turned(1, 0), turned(1, kHandle), turned(kHandle, 1), turned(0, 1)};
    double t[2];
    const int vertical = GetVerticalTangents(p, t), horizontal = GetHorizontalTangents(p, t);
    EXPECT_EQ(vertical, 0) << a;
    EXPECT_EQ(horizontal, 1) << a;
    counted += horizontal;
  }
  EXPECT_EQ(counted, steps - 1);
}

TEST(SafeTangent, IsDefinedWhereTheDerivativeVanishes) {
  const DPoint start[4] = {{0, 0}, {0, 0}, {3, 4}, {9, 0}};
  EXPECT_GT(Dot(SafeBezierTangent(0, start), DVector{3, 4}), 0);
  EXPECT_EQ(Cross(SafeBezierTangent(0, start), DVector{3, 4}), 0);
  const DPoint end[4] = {{0, 0}, {3, 4}, {9, 0}, {9, 0}};
  EXPECT_EQ(Cross(SafeBezierTangent(1, end), DVector{6, -4}), 0);
  EXPECT_GT(Dot(SafeBezierTangent(1, end), DVector{6, -4}), 0);
  const DPoint three[4] = {{0, 0}, {0, 0}, {0, 0}, {1, 2}};
  EXPECT_EQ(Cross(SafeBezierTangent(0, three), DVector{1, 2}), 0);
  EXPECT_GT(SafeBezierTangent(0, three).x, 0);
  const DPoint point[4] = {{2, 3}, {2, 3}, {2, 3}, {2, 3}};
  EXPECT_EQ(SafeBezierTangent(0.5, point), (DVector{0, 0}));
  // Within rounding of an end without a handle the part beyond is a point.
  const DPoint late[4] = {{0, 0}, {5 + 0x1p-27, 7}, {5, 7}, {5, 7}};
  EXPECT_LT(SafeBezierTangent(1 - 0x1p-47, late).x, 0);
  const DPoint cusp[4] = {{0, 0}, {100, 100}, {0, 100}, {100, 0}};
  const DVector out = SafeBezierTangent(0.5, cusp);
  EXPECT_LT(out.y, 0) << "the direction in which the curve leaves the cusp";
  EXPECT_NEAR(out.x, 0, 1e-9 * std::abs(out.y));

  ForEachCubic(306, 1000, [](const Cubic& c) {
    const bool isPoint = c[0] == c[1] && c[1] == c[2] && c[2] == c[3];
    for (const double t : {0.0, 0.25, 1.0}) {
      EXPECT_EQ(LengthSqrd(SafeBezierTangent(t, c.data())) > 0, !isPoint || SizeOf(c) == 0 ? !isPoint : true)
          << t;
      const PowerForm k = ToPowerForm(c.data());
      const DVector a = SafeBezierTangent(t, c.data()), b = SafeBezierTangent(t, k.k3, k.k2, k.k1, k.k0);
      EXPECT_NEAR(a.x, b.x, 1e-11 * SizeOf(c) + 64 * UlpOf(c));
      EXPECT_NEAR(a.y, b.y, 1e-11 * SizeOf(c) + 64 * UlpOf(c));
    }
  });
}

TEST(Curvature, HasTheSignOfTheTurnAndTheRadiusOfTheCircle) {
  const double h = 4.0 / 3 * std::tan(std::acos(-1.0) / 32) * 100;  // an eighth of a quarter turn: radius 100
  const double a = std::acos(-1.0) / 8, c = std::cos(a), s = std::sin(a);
  const DPoint arc[4] = {{100, 0}, {100, h}, {100 * c + h * s, 100 * s - h * c}, {100 * c, 100 * s}};
  EXPECT_NEAR(SafeBezierCurvature(0.5, arc), 0.01, 1e-6);
  EXPECT_NEAR(GetCurvatureRadiusAt(0.5, arc), 100, 1e-2);
  const DPoint reversed[4] = {arc[3], arc[2], arc[1], arc[0]};
  EXPECT_NEAR(GetCurvatureRadiusAt(0.5, reversed), -100, 1e-2);
  const DPoint line[4] = {{0, 0}, {1, 1}, {2, 2}, {3, 3}};
  EXPECT_EQ(SafeBezierCurvature(0.5, line), 0);
  EXPECT_EQ(GetCurvatureRadiusAt(0.5, line), std::numeric_limits<double>::max());
  const DPoint point[4] = {{2, 3}, {2, 3}, {2, 3}, {2, 3}};
  EXPECT_EQ(SafeBezierCurvature(0.5, point), 0);
}

TEST(Curvature, ExtremaAreWhereItsDerivativeChangesSign) {
  long changes = 0;
  ForEachCubic(307, 1500, [&](const Cubic& c) {
    double t[6];
    const int count = FindCurvatureMinMax(c.data(), t);
    ASSERT_LE(count, 5);
    for (int k = 1; k < count; ++k) EXPECT_LT(t[k - 1], t[k]);
    // cross(B', B''') |B'|^2 - 3 cross(B', B'') B' . B'' in extended precision.
    const auto second = [&](std::size_t k) {
      return LPoint{static_cast<long double>(c[k].x) - 2.0L * c[k + 1].x + c[k + 2].x,
                    static_cast<long double>(c[k].y) - 2.0L * c[k + 1].y + c[k + 2].y};
    };
    const LPoint e0 = second(0), e1 = second(1), f{e1.x - e0.x, e1.y - e0.y};
    const auto slope = [&](long double u) {
      const LPoint d = DerivativeLong(c, u), e{6 * (e0.x + u * f.x), 6 * (e0.y + u * f.y)};
      return (d.x * 6 * f.y - d.y * 6 * f.x) * (d.x * d.x + d.y * d.y) -
             3 * (d.x * e.y - d.y * e.x) * (d.x * e.x + d.y * e.y);
    };
    const long double size = SizeOf(c), noise = 1e-9L * size * size * size * size;
    constexpr int kSamples = 128;
    for (int k = 0; k < kSamples; ++k) {
      const long double a = slope(static_cast<long double>(k) / kSamples), b = slope((k + 1.0L) / kSamples);
      if (!((a > noise && b < -noise) || (a < -noise && b > noise))) continue;
      ++changes;
      bool found = false;
      for (int n = 0; n < count; ++n) found = found || (t[n] * kSamples >= k && t[n] * kSamples <= k + 1);
      EXPECT_TRUE(found) << "between " << k << " and " << k + 1 << " of " << kSamples;
    }
  });
  EXPECT_GT(changes, 1000);
  const DPoint line[4] = {{0, 0}, {5, 5}, {-2, -2}, {3, 3}};
  double t[6];
  EXPECT_EQ(FindCurvatureMinMax(line, t), 0) << "a straight cubic has no curvature to be extreme";
}

TEST(Area, MatchesTheTrapezoidRuleOfItsChords) {
  ForEachCubic(308, 1000, [](const Cubic& c) {
    const double area = GetAreaUnderBezier(c.data());
    // Chords inside converge with the square of their number: extrapolate once.
    const auto chords = [&](int pieces) {
      long double sum = 0;
      LPoint last = EvaluateLong(c, 0);
      for (int k = 1; k <= pieces; ++k) {
        const LPoint p = EvaluateLong(c, static_cast<long double>(k) / pieces);
        sum += (p.x - last.x) * (p.y + last.y) / 2;
        last = p;
      }
      return sum;
    };
    const long double expected =
        (16 * ((4 * chords(128) - chords(64)) / 3) - (4 * chords(64) - chords(32)) / 3) / 15;
    const double scale = SizeOf(c) * (SizeOf(c) + UlpOf(c) / 2.2e-16);
    EXPECT_NEAR(area, static_cast<double>(expected), 1e-14 * scale + 100 * UlpOf(c) * UlpOf(c));
    const PowerForm k = ToPowerForm(c.data());
    EXPECT_NEAR(GetAreaUnderBezier(k.k3, k.k2, k.k1, k.k0), area, 1e-13 * scale);
  });
  const DPoint line[4] = {{0, 1}, {1, 2}, {2, 3}, {3, 4}};
  EXPECT_EQ(GetAreaUnderBezier(line), 7.5);
}

}  // namespace
