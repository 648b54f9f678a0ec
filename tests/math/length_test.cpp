// Arc length and its inverse against quadrature in extended precision.
#include <gtest/gtest.h>

#include "support/cubic_corpus.h"
#include "support/cubic_oracles.h"

namespace {

using namespace LumoTest;
using namespace TavMath;
using namespace TavMath::CubicBezier;

constexpr double kPromised = 1e-9;

TEST(Length, IsWithinOneBillionthOnEveryShape) {
  ForEachCubic(101, 6000, [](const Cubic& c) {
    const double expected = static_cast<double>(LengthOracle(c).Over(0, 1));
    EXPECT_NEAR(CubicBezier::Length(c.data()), expected, kPromised * expected);
  });
}

TEST(Length, ClosedForms) {
  const DPoint parabola[4] = {{0, 0}, {1.0 / 3, 0}, {2.0 / 3, 1.0 / 3}, {1, 1}};  // y = x^2
  const double expected = 0.5 * std::sqrt(5.0) + 0.25 * std::asinh(2.0);
  EXPECT_NEAR(CubicBezier::Length(parabola), expected, 1e-10);
  const DPoint cusp[4] = {{0, 0}, {0, 0}, {0, 0}, {3, 4}};  // along a line, at speed 3 t^2
  EXPECT_NEAR(CubicBezier::Length(cusp), 5, 1e-12);
  const DPoint point[4] = {{2, 3}, {2, 3}, {2, 3}, {2, 3}};
  EXPECT_EQ(CubicBezier::Length(point), 0);
}

TEST(Length, TheThreeFormsAgree) {
  ForEachCubic(102, 3000, [](const Cubic& c) {
    const double length = CubicBezier::Length(c.data());
    // Forming the power form of a far curve rounds its coefficients; that is not the length's doing.
    const double margin = 1e-12 * length + 64 * UlpOf(c);
    const PowerForm k = ToPowerForm(c.data());
    EXPECT_NEAR(CubicBezier::Length(k.k3, k.k2, k.k1), length, margin);
    const DVector d[3] = {3.0 * (c[1] - c[0]), 3.0 * (c[2] - c[1]), 3.0 * (c[3] - c[2])};
    EXPECT_NEAR(CubicBezier::Length(d), length, margin);
    EXPECT_EQ(CubicBezier::Length(c.data(), LengthAccuracy(1)), length)
        << "the accuracy argument may not cost digits";
  });
}

TEST(Length, PartsAddUp) {
  Random random(7);
  ForEachCubic(103, 3000, [&](const Cubic& c) {
    const double whole = CubicBezier::Length(c.data()), t = random.Unit();
    EXPECT_NEAR(LengthTo(c.data(), t) + LengthFrom(c.data(), t), whole, kPromised * whole);
    EXPECT_EQ(LengthTo(c.data(), 0), 0);
    EXPECT_EQ(LengthFrom(c.data(), 1), 0);
    EXPECT_EQ(LengthTo(c.data(), 1), whole);
    EXPECT_EQ(LengthTo(c.data(), 7), whole) << "parameters are clamped";
  });
}

TEST(Length, ScalesByPowersOfTwoExactly) {
  Random random(8);
  for (int k = 0; k < 500; ++k) {
    const Cubic c = UnitCubic(random, RandomShape(random));
    for (const int exponent : {-300, -150, 40, 200}) {
      Cubic scaled;
      for (std::size_t n = 0; n < 4; ++n) {
        scaled[n] = {std::ldexp(c[n].x, exponent), std::ldexp(c[n].y, exponent)};
      }
      EXPECT_EQ(CubicBezier::Length(scaled.data()), std::ldexp(CubicBezier::Length(c.data()), exponent))
          << ToSvg(c);
    }
  }
}

TEST(InverseLength, ReachesTheAskedFraction) {
  Random random(9);
  ForEachCubic(104, 3000, [&](const Cubic& c) {
    const LengthOracle oracle(c);
    const long double whole = oracle.Over(0, 1);
    if (!(whole > 0)) return;
    for (const double fraction : {0.5, 0.60791531875246241, random.Unit(), random.LogUniform(1e-9, 1e-2)}) {
      const double t = GetCurveRelativeLengthParameter(c.data(), fraction);
      ASSERT_TRUE(t >= 0 && t <= 1);
      EXPECT_NEAR(static_cast<double>(oracle.Over(0, t) / whole), fraction, kPromised);
    }
    const PowerForm k = ToPowerForm(c.data());
    const double half = GetCurveRelativeLengthParameter(k.k3, k.k2, k.k1, 0.5);
    EXPECT_NEAR(static_cast<double>(oracle.Over(0, half) / whole), 0.5, kPromised) << ToSvg(c);
  });
}

TEST(InverseLength, EndsAndDegenerateInput) {
  const DPoint arc[4] = {{0, 0}, {0, 1}, {1, 2}, {2, 2}};
  EXPECT_EQ(GetCurveRelativeLengthParameter(arc, 0), 0);
  EXPECT_EQ(GetCurveRelativeLengthParameter(arc, 1), 1);
  EXPECT_EQ(GetCurveRelativeLengthParameter(arc, -3), 0);
  EXPECT_EQ(GetCurveRelativeLengthParameter(arc, 3), 1);
  const DPoint point[4] = {{2, 3}, {2, 3}, {2, 3}, {2, 3}};
  EXPECT_EQ(GetCurveRelativeLengthParameter(point, 0.25), 0.25);
  const double nan = std::nan(""), infinity = HUGE_VAL;
  EXPECT_TRUE(std::isnan(GetCurveRelativeLengthParameter(arc, nan)));
  const DPoint bad[4] = {{0, 0}, {nan, 1}, {1, infinity}, {2, 2}};
  EXPECT_TRUE(std::isnan(CubicBezier::Length(bad)));
  EXPECT_TRUE(std::isnan(GetCurveRelativeLengthParameter(bad, 0.5)));
}

}  // namespace
