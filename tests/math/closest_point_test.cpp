// Nearest points against dense sampling, with queries where the answer is hard: on the curve, at its
// controls, at centres of curvature, far away.
#include <gtest/gtest.h>

#include "support/cubic_corpus.h"

namespace {

using namespace LumoTest;
using namespace TavMath;
using namespace TavMath::CubicBezier;

DPoint RandomQuery(Random& random, const Cubic& c) {
  const double size = SizeOf(c);
  switch (random.Below(6)) {
    case 0:
      return Evaluate(c.data(), random.Unit());
    case 1:
      return c[static_cast<std::size_t>(random.Below(4))];
    case 2:
      return c[0] + random.LogUniform(1, 1e6) * size * (random.Point(1) - DPoint{0, 0});
    case 3: {
      const double t = random.Unit(), radius = GetCurvatureRadiusAt(t, c.data());
      const DVector d = Derivative(c.data(), t);
      const double length = Length(d);
      const DPoint b = Evaluate(c.data(), t);
      if (!(std::abs(radius) < 1e6 * size) || !(length > 0)) return b;
      return b + (radius / length) * LeftNormal(d);
    }
    default:
      return c[0] + 1.5 * size * (random.Point(1) - DPoint{0, 0});
  }
}

/// The least distance over samples, in extended precision.
long double SampledDistance(const Cubic& c, const DPoint& q, int samples) {
  long double best = HUGE_VALL;
  for (int k = 0; k <= samples; ++k) {
    const LPoint p = EvaluateLong(c, static_cast<long double>(k) / samples);
    best = std::min(best, std::hypot(p.x - q.x, p.y - q.y));
  }
  return best;
}

TEST(ClosestPoint, IsNeverFartherThanAnySample) {
  Random random(11);
  ForEachCubic(201, 4000, [&](const Cubic& c) {
    const DPoint q = RandomQuery(random, c);
    double t = -1, distanceSqrd = -1;
    DPoint foot{};
    ASSERT_TRUE(FindClosestPointOnBezier(c.data(), q, t, foot, distanceSqrd));
    ASSERT_TRUE(t >= 0 && t <= 1);
    EXPECT_EQ(foot, Evaluate(c.data(), t));
    EXPECT_EQ(distanceSqrd, DistanceSqrd(foot, q));
    const LPoint exact = EvaluateLong(c, t);
    const long double distance = std::hypot(exact.x - q.x, exact.y - q.y);
    EXPECT_LE(static_cast<double>(distance - SampledDistance(c, q, 500)), 1e-9 * SizeOf(c))
        << q.x << "," << q.y;
  });
}

TEST(ClosestPoint, OfAPointOnTheCurveIsThatPoint) {
  Random random(12);
  ForEachCubic(202, 4000, [&](const Cubic& c) {
    const DPoint q = Evaluate(c.data(), random.Unit());
    double t, distanceSqrd;
    DPoint foot;
    ASSERT_TRUE(FindClosestPointOnBezier(c.data(), q, t, foot, distanceSqrd));
    EXPECT_LE(std::sqrt(distanceSqrd), 1e-9 * SizeOf(c) + 8 * UlpOf(c));
  });
}

/// At the tip of a cusp the slope of the distance has a triple root, which its coefficients alone place
/// badly.
TEST(ClosestPoint, OfTheTipOfACuspIsTheTip) {
  for (const double size : {1e-6, 1.0, 10.0, 3e5}) {
    for (const double turn : {0.0, 0.3, 2.0}) {
      const double c = size * std::cos(turn), s = size * std::sin(turn);
      const auto at = [&](double x, double y) { return DPoint{c * x - s * y, s * x + c * y}; };
      const DPoint p[4] = {at(0, 0), at(1, 1), at(0, 1), at(1, 0)};
      double t = -1, distanceSqrd = -1;
      DPoint foot{0, 0};
      ASSERT_TRUE(CubicBezier::FindClosestPointOnBezier(p, at(0.5, 0.75), t, foot, distanceSqrd));
      EXPECT_NEAR(t, 0.5, 1e-6);
      EXPECT_LE(std::sqrt(distanceSqrd), 1e-12 * size) << size << " turned by " << turn;
      // Straight on through a point where the curve stops: a fivefold root.
      const DPoint stop[4] = {at(5, 0), at(5.0000000000001066, 7), at(5, 0), at(5, 7)};
      ASSERT_TRUE(CubicBezier::FindClosestPointOnBezier(stop, at(5, 3.5), t, foot, distanceSqrd));
      EXPECT_LE(std::sqrt(distanceSqrd), 1e-13 * 7 * size) << size << " turned by " << turn;
    }
  }
}

/// Queries at the place where a curve stops: rounding hides the root of the slope, and a search that stopped
/// there would be off by a hundred thousand times as much as one that looks at the curve again.
TEST(ClosestPoint, OfAPointOfNoSpeedIsThatPoint) {
  Random random(17);
  int exact = 0;
  constexpr int kTried = 20000;
  for (int k = 0; k < kTried; ++k) {
    const double stop = random.Uniform(0.02, 0.98), size = random.LogUniform(1e-6, 1e6);
    // One coordinate whose derivative is (t - stop) (u + v t), from its Bernstein coefficients.
    const auto coordinate = [&](double out[4]) {
      const double u = random.Uniform(-1, 1), v = random.Uniform(-1, 1);
      const double d0 = -stop * u, d1 = d0 + (u - stop * v) / 2, d2 = d0 + (u - stop * v) + v;
      out[0] = 0, out[1] = size * d0 / 3, out[2] = out[1] + size * d1 / 3, out[3] = out[2] + size * d2 / 3;
    };
    double x[4], y[4];
    coordinate(x);
    coordinate(y);
    const DPoint p[4] = {{x[0], y[0]}, {x[1], y[1]}, {x[2], y[2]}, {x[3], y[3]}};
    double t, distanceSqrd;
    DPoint foot;
    ASSERT_TRUE(FindClosestPointOnBezier(p, Evaluate(p, stop), t, foot, distanceSqrd));
    ASSERT_LE(std::sqrt(distanceSqrd), 1e-9 * size) << k;
    exact += std::sqrt(distanceSqrd) <= 1e-15 * size;
  }
  EXPECT_GT(exact, kTried * 3 / 4);
}

TEST(ClosestPoint, RefusesWhatIsNotFinite) {
  DPoint p[4] = {{0, 0}, {0, 1}, {1, 2}, {2, 2}};
  double t = 7, distanceSqrd = 8;
  DPoint foot{9, 9};
  EXPECT_FALSE(FindClosestPointOnBezier(p, {std::nan(""), 0}, t, foot, distanceSqrd));
  p[2].y = HUGE_VAL;
  EXPECT_FALSE(FindClosestPointOnBezier(p, {0, 0}, t, foot, distanceSqrd));
  EXPECT_EQ(t, 7);
  EXPECT_EQ(distanceSqrd, 8);
  EXPECT_EQ(FindClosestPointsOnBezier(p, {0, 0}).count, 0);
}

TEST(ClosestPoints, FindsEveryTieOnce) {
  const DPoint arch[4] = {{0, 0}, {0, 4}, {4, 4}, {4, 0}};
  const auto two = FindClosestPointsOnBezier(arch, {2, 0});
  ASSERT_EQ(two.count, 2);
  EXPECT_NEAR(two.t[0] + two.t[1], 1, 1e-12);
  EXPECT_EQ(FindClosestPointsOnBezier(arch, {2, 10}).count, 1);
  EXPECT_NEAR(FindClosestPointsOnBezier(arch, {2, 10}).t[0], 0.5, 1e-12);

  const DPoint teardrop[4] = {{0, 0}, {10, 10}, {-10, 10}, {0, 0}};
  const auto ends = FindClosestPointsOnBezier(teardrop, {0, -1});
  ASSERT_EQ(ends.count, 2) << "both ends of a closed cubic";
  EXPECT_EQ(ends.t[0], 0);
  EXPECT_EQ(ends.t[1], 1);

  const DPoint loop[4] = {{0, 0}, {120, 100}, {-20, 100}, {100, 0}};
  double t0, t1;
  DPoint crossing;
  ASSERT_TRUE(FindBezierSelfIntersection(loop, t0, t1, crossing));
  const auto both = FindClosestPointsOnBezier(loop, crossing);
  ASSERT_EQ(both.count, 2) << "both branches at the double point";
  EXPECT_NEAR(both.t[0], t0, 1e-9);
  EXPECT_NEAR(both.t[1], t1, 1e-9);

  const DPoint point[4] = {{2, 3}, {2, 3}, {2, 3}, {2, 3}};
  EXPECT_EQ(FindClosestPointsOnBezier(point, {0, 0}).count, 1);
}

TEST(ClosestPoints, AgreesWithTheSingleForm) {
  Random random(13);
  ForEachCubic(203, 4000, [&](const Cubic& c) {
    const DPoint q = RandomQuery(random, c);
    double t, distanceSqrd;
    DPoint foot;
    ASSERT_TRUE(FindClosestPointOnBezier(c.data(), q, t, foot, distanceSqrd));
    const auto all = FindClosestPointsOnBezier(c.data(), q);
    ASSERT_GE(all.count, 1);
    EXPECT_NEAR(std::sqrt(all.distanceSqrd), std::sqrt(distanceSqrd), 1e-9 * SizeOf(c));
    for (int k = 1; k < all.count; ++k) EXPECT_LT(all.t[k - 1], all.t[k]);
  });
}

TEST(GetSide, FollowsTheDirectionOfTravel) {
  const DPoint arch[4] = {{0, 0}, {0, 4}, {4, 4}, {4, 0}};
  EXPECT_EQ(GetSide(arch, {2, 10}), Side::left);
  EXPECT_EQ(GetSide(arch, {2, 1}), Side::right);
  EXPECT_EQ(GetSide(arch, arch[0]), Side::none);
  EXPECT_EQ(GetSide(arch, {std::nan(""), 0}), Side::none);
}

}  // namespace
