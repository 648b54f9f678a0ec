// Affine maps, rectangles, angles and the collinearity test.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "support/cubics.h"
#include "tav/math/angle.h"
#include "tav/math/matrix.h"
#include "tav/math/rect.h"

namespace {

using namespace LumoTest;
using namespace TavMath;

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

/// Left, top, right, bottom.
using Sides = std::array<std::int32_t, 4>;
Sides SidesOf(const tagRECT& r) { return {r.left, r.top, r.right, r.bottom}; }

TEST(Matrix, InverseUndoesTheMap) {
  Random random(41);
  for (int k = 0; k < 2000; ++k) {
    MATRIX m{random.Uniform(-3, 3), random.Uniform(-3, 3), random.Uniform(-3, 3),
             random.Uniform(-3, 3), random.Uniform(-9, 9), random.Uniform(-9, 9)};
    if (std::abs(m.Determinant()) < 1e-3) continue;
    MATRIX inverse = m;
    ASSERT_TRUE(inverse.Invert());
    const DPoint p = random.Point(100);
    const DPoint q = inverse.Transform(m.Transform(p));
    EXPECT_NEAR(q.x, p.x, 1e-8);
    EXPECT_NEAR(q.y, p.y, 1e-8);
    const DPoint r = Concatenate(m, inverse).Transform(p);
    EXPECT_NEAR(r.x, p.x, 1e-8);
    DPoint many[3] = {p, p, p};
    m.TransformPoints(many, 2);
    EXPECT_EQ(many[1], m.Transform(p));
    EXPECT_EQ(many[2], p);
  }
}

TEST(Matrix, RefusesToInvertWhatHasNoInverse) {
  for (MATRIX m : {MATRIX{1, 2, 2, 4, 0, 0}, MATRIX{0, 0, 0, 0, 1, 1}, MATRIX{std::nan(""), 0, 0, 1, 0, 0},
                   MATRIX{1, 0, 0, 1, HUGE_VAL, 0}}) {
    const MATRIX before = m;
    EXPECT_FALSE(m.Invert());
    EXPECT_EQ(m.b, before.b);
    EXPECT_EQ(m.d, before.d);
  }
  MATRIX tiny{1e-200, 0, 0, 1e-200, 0, 0};
  EXPECT_TRUE(tiny.Invert()) << "small is not singular";
  EXPECT_EQ(tiny.a, 1e200);
}

TEST(Matrix, RoundsIntegerPointsHalfAwayFromZeroAndSaturates) {
  tagPOINT p[] = {{1, -1}, {3, -3}, {kMost, kLeast}};
  const MATRIX half{0.5, 0, 0, 0.5, 0, 0};
  half.TransformPoints(p, 2);
  EXPECT_EQ(p[0], (tagPOINT{1, -1}));
  EXPECT_EQ(p[1], (tagPOINT{2, -2}));
  const MATRIX twice{2, 0, 0, 2, 0, 0};
  twice.TransformPoints(p + 2, 1);
  EXPECT_EQ(p[2], (tagPOINT{kMost, kLeast}));
  const MATRIX nothing{std::nan(""), 0, 0, 1, 0, 0};
  nothing.TransformPoints(p, 1);
  EXPECT_EQ(p[0], (tagPOINT{0, -1}));
  half.TransformPoints(static_cast<tagPOINT*>(nullptr), 5);

  // Every way through the vector code: all values around the halves, in arrays of any length.
  Random random(42);
  for (std::size_t count = 0; count < 20; ++count) {
    std::vector<tagPOINT> points(count);
    for (tagPOINT& q : points)
      q = {static_cast<std::int32_t>(random.Bits()), static_cast<std::int32_t>(random.Bits())};
    const MATRIX m{random.Below(5) * 0.5 - 1, 0.25, -0.5, random.Below(3) * 0.5, 0.5, random.Below(9) * 0.25};
    std::vector<tagPOINT> expected = points;
    for (tagPOINT& q : expected) {
      q = RoundPoint(m.Transform(DPoint{static_cast<double>(q.x), static_cast<double>(q.y)}));
    }
    m.TransformPoints(points.data(), count);
    for (std::size_t k = 0; k < count; ++k) EXPECT_EQ(points[k], expected[k]);
  }
}

TEST(Rect, BoxesOfPoints) {
  const tagPOINT p[] = {{3, -2}, {-1, 7}, {5, 0}};
  EXPECT_EQ(SidesOf(GetPointsBBox(p, 3)), (Sides{-1, -2, 5, 7}));
  EXPECT_EQ(GetPointsBBox(static_cast<const tagPOINT*>(nullptr), 3).right, 0);
  EXPECT_TRUE(GetPointsBBox(static_cast<const DPoint*>(nullptr), 3).IsEmpty());
  Random random(43);
  for (std::size_t count = 1; count < 40; ++count) {
    std::vector<DPoint> points;
    BoundsT<double> expected;
    for (std::size_t k = 0; k < count; ++k) {
      points.push_back(random.Point(10));
      expected.Add(points.back().x, points.back().y);
    }
    EXPECT_EQ(GetPointsBBox(points.data(), count), expected);
    points[count / 2].x = std::nan("");
    EXPECT_FALSE(std::isnan(GetPointsBBox(points.data(), count).maxx));
  }
}

// Runs of points that lie in the box so far are passed over: over the whole 32-bit plane, with extremes at
// any place of a run.
TEST(Rect, BoxOfManyPointsIsThatOfEachInTurn) {
  Random random(47);
  for (const double size : {5.0, 1e6, 2147483647.0}) {
    for (std::size_t count = 1; count < 400; count += 7) {
      std::vector<tagPOINT> points;
      for (std::size_t k = 0; k < count; ++k) {
        const DPoint p = random.Point(1);
        points.push_back(RoundPoint({p.x * size, p.y * size}));
      }
      if (size > 1e9) {
        points[count / 3] = {kLeast, kMost};
        points[count - 1] = {kMost, kLeast};
      }
      tagRECT expected{points[0].x, points[0].y, points[0].x, points[0].y};
      for (const tagPOINT& p : points) expected = UnionRect(expected, {p.x, p.y, p.x, p.y});
      EXPECT_EQ(SidesOf(GetPointsBBox(points.data(), count)), SidesOf(expected));
    }
  }
}

TEST(Rect, Arithmetic) {
  tagRECT r{kLeast + 1, 0, kMost - 1, 10};
  InflateRect(r, 5, 2);
  EXPECT_EQ(SidesOf(r), (Sides{kLeast, -2, kMost, 12}));
  InflateRect(r, kLeast, 0);
  EXPECT_EQ(r.left, 0) << "minus the least integer does not wrap";
  const tagRECT a{0, 0, 10, 10}, b{5, -5, 20, 5};
  EXPECT_EQ(SidesOf(IntersectRect(a, b)), (Sides{5, 0, 10, 5}));
  EXPECT_EQ(SidesOf(UnionRect(a, b)), (Sides{0, -5, 20, 10}));
  const tagRECT yUp{0, 10, 10, 0};
  EXPECT_TRUE(IsPointInRect(yUp, {10, 10}));
  EXPECT_TRUE(IsPointInRect(a, {0, 0}));
  EXPECT_FALSE(IsPointInRect(yUp, {5, 11}));
  EXPECT_TRUE(IsPointInRect(BoundsT<double>{0, 0, 1, 1}, {1, 0}));
}

TEST(Rounding, IsHalfAwayFromZeroWithinTheIntegers) {
  EXPECT_EQ(RoundToInt(2.5), 3);
  EXPECT_EQ(RoundToInt(-2.5), -3);
  EXPECT_EQ(RoundToInt(2.4999999), 2);
  EXPECT_EQ(RoundToInt(1e300), kMost);
  EXPECT_EQ(RoundToInt(-1e300), kLeast);
  EXPECT_EQ(RoundToInt(std::nan("")), 0);
  EXPECT_EQ(TruncateToInt(-2.9), -2);
}

TEST(Vector, LengthsAreRightAtAnySize) {
  for (const int exponent : {-1070, -600, -451, -449, 0, 449, 451, 600, 1020}) {
    const double unit = std::ldexp(1.0, exponent);
    EXPECT_EQ(Length({3 * unit, -4 * unit}), 5 * unit) << exponent;
    EXPECT_EQ(Length({0, unit}), unit) << exponent;
  }
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Length({infinity, 1}), infinity);
  EXPECT_TRUE(std::isnan(Length({std::numeric_limits<double>::quiet_NaN(), 1})));
}

TEST(Angle, StaysInItsRange) {
  constexpr double kTurn = 2 * std::numbers::pi;
  Random random(44);
  for (int k = 0; k < 2000; ++k) {
    const double a = random.Uniform(-100, 100), n = Radians::NormalizeAngle(a);
    EXPECT_TRUE(n >= 0 && n < kTurn);
    EXPECT_NEAR(std::cos(n), std::cos(a), 1e-12);
    EXPECT_NEAR(std::sin(n), std::sin(a), 1e-12);
  }
  for (const double a : {-1e-300, -1e-17, kTurn, -kTurn, 4 * kTurn}) {
    EXPECT_TRUE(Radians::NormalizeAngle(a) >= 0 && Radians::NormalizeAngle(a) < kTurn) << a;
  }
  EXPECT_TRUE(std::isnan(Radians::NormalizeAngle(HUGE_VAL)));
  EXPECT_EQ(Radians::VectorToAngle({0, 0}), 0);
  EXPECT_EQ(Radians::VectorToAngle({-1, -0.0}), std::numbers::pi);
}

TEST(Angle, FineAngleIsFineAtBothEndsAndAtAnyLength) {
  EXPECT_EQ(Degrees::GetFineAngle({0, 0}, {1, 0}), 0);
  EXPECT_DOUBLE_EQ(Degrees::GetFineAngle({1, 0}, {0, -7}), 90);
  EXPECT_DOUBLE_EQ(Degrees::GetFineAngle({1, 0}, {-1, 0}), 180);
  EXPECT_NEAR(Degrees::GetFineAngle({1, 0}, {1, 1e-12}), 1e-12 * 180 / std::numbers::pi, 1e-20);
  EXPECT_DOUBLE_EQ(Degrees::GetFineAngle({1e200, 0}, {1e-200, 1e-200}), 45);
}

TEST(Collinear, MeasuresSquaredHeightsOverTheLongestSide) {
  EXPECT_TRUE(AreCollinear({0, 0}, {50, 3.1}, {100, 0}, 10));  // 3.16 units away
  EXPECT_FALSE(AreCollinear({0, 0}, {50, 3.2}, {100, 0}, 10));
  EXPECT_TRUE(AreCollinear({50, 3.1}, {0, 0}, {100, 0}, 10)) << "the order does not matter";
  EXPECT_TRUE(AreCollinear({0, 0}, {3, 0}, {3, 1000}, 10)) << "a short side passes";
  EXPECT_TRUE(AreCollinear({0, 0}, {100, 0}, {50, 0}, 10)) << "so does a line that turns back";
  EXPECT_FALSE(AreCollinear({5, 5}, {5, 5}, {5, 5}, 0)) << "no base to project on";
}

}  // namespace
