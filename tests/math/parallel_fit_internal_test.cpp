// The first look at a surely smooth stretch, at few samples.
#include "math/cubic/parallel_fit.h"

#include <gtest/gtest.h>

#include "math/tolerances.h"
#include "support/cubics.h"
#include "support/offset_oracle.h"

namespace {

using namespace LumoTest;
using namespace TavMath;

/// A cubic of some 100,000 units, most of them with their controls over the chord, as drawings have them.
Cubic SomeCubic(Random& random, int k) {
  Cubic c = UnitCubic(random, CubicShape::general);
  if (k % 8 != 0) {
    const DVector chord = c[3] - c[0];
    c[1] = c[0] + random.LogUniform(0.01, 0.6) * chord + random.LogUniform(0.01, 0.5) * LeftNormal(chord);
    c[2] = c[3] - random.LogUniform(0.01, 0.6) * chord + random.LogUniform(0.01, 0.5) * LeftNormal(chord);
  }
  for (DPoint& p : c) p = {1e5 * p.x, 1e5 * p.y};
  return c;
}

TEST(ParallelFit, ThatNeedsOneLookErrsByLittleMoreThanTheSparseSamplesSay) {
  Random random(4);
  ParallelSamples samples;
  int looked = 0;
  for (int k = 0; k < 10000; ++k) {
    const Cubic cubic = SomeCubic(random, k);
    const double offset = (k % 4 < 2 ? 1 : -1) * random.LogUniform(1e2, 3e4);
    const ParallelCurve curve(cubic.data(), offset);
    ParallelFit fit;
    if (!curve.IsUsable() || curve.IsStraight() || !FitPlain(curve, 0, 1, 2e4, samples, fit)) continue;
    ++looked;
    // Accepted below a fifth of the tolerance, an error of twice as much would be harmless still.
    ASSERT_LE(Deviation({cubic, fit.cubic}, offset, 24), 2 * fit.error + 1e-4)
        << ToSvg(cubic) << " " << offset;
  }
  EXPECT_GT(looked, 1000);
}

TEST(ParallelFit, IsTheSameAfterAFirstLookAsAfterTheWholeOne) {
  Random random(5);
  ParallelSamples samples;
  int looked = 0;
  for (int k = 0; k < 40000; ++k) {
    const Cubic cubic = SomeCubic(random, k);
    const ParallelCurve curve(cubic.data(), (k % 4 < 2 ? 1 : -1) * random.LogUniform(1e2, 1e4));
    const double target = random.LogUniform(10, 1e4);
    ParallelFit plain;
    if (!curve.IsUsable() || curve.IsStraight()) continue;
    if (!FitPlain(curve, 0, 1, Tolerances::kFitPlain * target, samples, plain)) continue;
    ++looked;
    const ParallelFit whole = FitParallel(curve, 0, 1, target, samples, Tolerances::kFitEnough * target);
    EXPECT_EQ(plain.cubic, whole.cubic) << ToSvg(cubic);
  }
  EXPECT_GT(looked, 2000);
}

TEST(ParallelFit, MeasuresWhatABendBetweenItsSamplesHides) {
  // Curves whose handles turn within a small share of their length, on either side.
  Random random(6);
  ParallelSamples samples;
  int fitted = 0;
  for (int k = 0; k < 3000; ++k) {
    const double length = 1e5, bend = random.LogUniform(0.005, 0.05) * length,
                 turn = random.LogUniform(0.03, 0.25);
    const DVector way = bend * DVector{std::cos(turn), std::sin(turn)};
    const Cubic cubic{DPoint{0, 0}, DPoint{way.x, way.y},
                      DPoint{length - bend, way.y * random.Uniform(0.7, 1)}, DPoint{length, 0}};
    const double offset = (k % 2 ? 1 : -1) * random.LogUniform(3e3, 6e4);
    const ParallelCurve curve(cubic.data(), offset);
    if (curve.Cusps().count > 0) continue;
    const double from = k % 3 == 1 ? random.Uniform(0, 0.5) : 0, to = k % 3 == 2 ? random.Uniform(0.5, 1) : 1;
    const ParallelFit fit = FitParallel(curve, from, to, 1000, samples, 200);
    if (!(fit.error <= 1000)) continue;
    ++fitted;
    Cubic part;
    CubicBezier::Subsection(from, to, cubic.data(), part.data());
    EXPECT_LE(Deviation({part, fit.cubic}, offset, 200), 1.15 * fit.error + 1)
        << ToSvg(cubic) << " at " << offset << " gives " << ToSvg(fit.cubic);
  }
  EXPECT_GT(fitted, 100);
}

TEST(ParallelFit, LooksNoFurtherWhereTheSpeedMayChangeItsSign) {
  const Cubic arc = {DPoint{0, 0}, {0, 55}, {45, 100}, {100, 100}};
  ParallelSamples samples;
  ParallelFit fit;
  EXPECT_TRUE(FitPlain(ParallelCurve(arc.data(), 10), 0, 1, 1, samples, fit));
  EXPECT_FALSE(FitPlain(ParallelCurve(arc.data(), -150), 0, 1, 1e9, samples, fit));
}

}  // namespace
