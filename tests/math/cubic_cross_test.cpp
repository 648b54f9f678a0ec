// Crossings of two cubics, of a cubic and a line, of a cubic with itself.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <span>
#include <sstream>
#include <utility>
#include <vector>

#include "support/crossing_oracle.h"
#include "support/cubics.h"

namespace {

using namespace LumoTest;
using namespace TavMath;
using CubicBezier::Crossing;
using CubicBezier::Crossings;

Cubic Reversed(const Cubic& c) { return {c[3], c[2], c[1], c[0]}; }
Cubic Part(const Cubic& c, double from, double to) {
  Cubic out;
  CubicBezier::Subsection(from, to, c.data(), out.data());
  return out;
}
Cubic Line(const DPoint& p, const DPoint& q) { return {p, Lerp(p, q, 1.0 / 3), Lerp(p, q, 2.0 / 3), q}; }

std::span<const Crossing> All(const Crossings& found) {
  return {found.at.data(), static_cast<std::size_t>(found.count)};
}

std::string Show(const Cubic& a, const Cubic& b, const Crossings& found) {
  std::string text("\n");
  text.append(ToSvg(a)).append("\n").append(ToSvg(b)).append("\n");
  for (const Crossing& c : All(found)) {
    char row[96];
    std::snprintf(row, sizeof row, "  %.17g %.17g\n", c.ta, c.tb);
    text.append(row);
  }
  if (found.overlap) text.append("  (overlap)");
  return text;
}

bool Holds(const Crossings& found, double ta, double tb, double tolerance) {
  return std::ranges::any_of(All(found), [&](const Crossing& c) {
    return std::abs(c.ta - ta) <= tolerance && std::abs(c.tb - tb) <= tolerance;
  });
}

double PairSize(const Cubic& a, const Cubic& b) {
  BoundsT<double> box;
  for (const DPoint& p : a) box.Add(p.x, p.y);
  for (const DPoint& p : b) box.Add(p.x, p.y);
  return std::fmax(box.Width(), box.Height());
}

/// Every clear crossing of the reference is there, and everything that is there is a contact.
void ExpectAgrees(const Cubic& a, const Cubic& b) {
  const Crossings found = CubicBezier::IntersectBeziers(a.data(), b.data());
  const double size = PairSize(a, b);
  for (const Crossing& c : All(found)) {
    const double gap = Distance(CubicBezier::Evaluate(a.data(), c.ta), CubicBezier::Evaluate(b.data(), c.tb));
    EXPECT_LE(gap, (found.overlap ? 3e-6 : 1e-12) * size) << Show(a, b, found);
  }
  if (found.overlap) return;
  int clear = 0;
  for (const ClearCrossing& c : FindClearCrossings(a, b)) {
    ++clear;
    EXPECT_TRUE(Holds(found, c.ta, c.tb, 1e-9)) << "missed " << c.ta << " " << c.tb << Show(a, b, found);
  }
  EXPECT_LE(clear, 9);
}

TEST(CubicCrossings, AgreeWithLongDoubleSubdivision) {
  Random random(11);
  int crossings = 0;
  for (int n = 0; n < 20000; ++n) {
    const Cubic a = UnitCubic(random, RandomShape(random)), b = UnitCubic(random, RandomShape(random));
    ExpectAgrees(a, b);
    crossings += CubicBezier::IntersectBeziers(a.data(), b.data()).count;
    if (HasFailure()) break;
  }
  EXPECT_GT(crossings, 10000);
}

/// The same contacts when the curves trade places or run backwards.
TEST(CubicCrossings, DoNotDependOnOrderOrDirection) {
  Random random(12);
  for (int n = 0; n < 5000 && !HasFailure(); ++n) {
    const Cubic a = UnitCubic(random, RandomShape(random)), b = UnitCubic(random, RandomShape(random));
    const Crossings plain = CubicBezier::IntersectBeziers(a.data(), b.data());
    const Crossings swapped = CubicBezier::IntersectBeziers(b.data(), a.data());
    const Crossings turned = CubicBezier::IntersectBeziers(Reversed(a).data(), b.data());
    EXPECT_EQ(plain.count, swapped.count) << Show(a, b, plain) << Show(b, a, swapped);
    EXPECT_EQ(plain.count, turned.count) << Show(a, b, plain) << Show(Reversed(a), b, turned);
    if (HasFailure() || plain.overlap) continue;
    for (const Crossing& c : All(plain)) {
      EXPECT_TRUE(Holds(swapped, c.tb, c.ta, 1e-6)) << Show(a, b, plain) << Show(b, a, swapped);
      EXPECT_TRUE(Holds(turned, 1 - c.ta, c.tb, 1e-6)) << Show(a, b, plain) << Show(Reversed(a), b, turned);
    }
  }
}

/// The same bits for a drawing scaled by a power of two.
TEST(CubicCrossings, DoNotDependOnScale) {
  Random random(13);
  for (int n = 0; n < 2000; ++n) {
    const Cubic a = UnitCubic(random, RandomShape(random)), b = UnitCubic(random, RandomShape(random));
    const Crossings plain = CubicBezier::IntersectBeziers(a.data(), b.data());
    for (const double scale : {0x1p-200, 0x1p-30, 0x1p40, 0x1p300}) {
      Cubic u = a, v = b;
      for (auto* c : {&u, &v}) {
        for (DPoint& p : *c) p = {p.x * scale, p.y * scale};
      }
      const Crossings scaled = CubicBezier::IntersectBeziers(u.data(), v.data());
      ASSERT_EQ(plain.count, scaled.count) << scale << Show(a, b, plain);
      for (std::size_t k = 0; k < static_cast<std::size_t>(plain.count); ++k) {
        EXPECT_EQ(plain.at[k].ta, scaled.at[k].ta);
        EXPECT_EQ(plain.at[k].tb, scaled.at[k].tb);
      }
    }
  }
}

TEST(CubicCrossings, CommonEndsCountOnceAndExactly) {
  Random random(14);
  for (int n = 0; n < 4000 && !HasFailure(); ++n) {
    const Cubic a = UnitCubic(random, CubicShape::general);
    Cubic b = UnitCubic(random, CubicShape::general);
    b[0] = a[3];
    const int kind = n % 3;
    // Corner, smooth joint, and a joint that turns back.
    if (kind == 1) b[1] = b[0] + random.Uniform(0.1, 1) * (a[3] - a[2]);
    if (kind == 2) b[1] = b[0] - random.Uniform(0.1, 1) * (a[3] - a[2]);
    const Crossings found = CubicBezier::IntersectBeziers(a.data(), b.data());
    const auto atJoint = [&](const Crossing& c) { return Distance(c.point, a[3]) < 1e-9; };
    EXPECT_EQ(std::ranges::count_if(All(found), atJoint), 1) << kind << Show(a, b, found);
    EXPECT_TRUE(Holds(found, 1, 0, 0)) << kind << Show(a, b, found);
  }
}

/// One curve ends on the other.
TEST(CubicCrossings, EndOnTheOtherCurveCountsOnce) {
  Random random(15);
  for (int n = 0; n < 4000 && !HasFailure(); ++n) {
    const Cubic a = UnitCubic(random, CubicShape::general);
    Cubic b = UnitCubic(random, CubicShape::general);
    const double t = random.Uniform(0.01, 0.99);
    b[0] = CubicBezier::Evaluate(a.data(), t);
    const Crossings found = CubicBezier::IntersectBeziers(a.data(), b.data());
    const auto there = [&](const Crossing& c) { return c.tb == 0 && std::abs(c.ta - t) < 1e-6; };
    EXPECT_EQ(std::ranges::count_if(All(found), there), 1) << t << Show(a, b, found);
  }
}

/// Two curves made to touch inside, bending apart by different amounts.
TEST(CubicCrossings, TangencyCountsOnce) {
  Random random(16);
  int tested = 0;
  for (int n = 0; n < 4000 && !HasFailure(); ++n) {
    const Cubic a = UnitCubic(random, CubicShape::general);
    Cubic b = UnitCubic(random, CubicShape::general);
    const double t = random.Uniform(0.1, 0.9), u = random.Uniform(0.1, 0.9);
    const DVector da = CubicBezier::Derivative(a.data(), t), db = CubicBezier::Derivative(b.data(), u);
    if (LengthSqrd(da) < 0.01 || LengthSqrd(db) < 0.01) continue;
    // Turn b so that its tangent at u is that of a at t, then move it there.
    const double cosine = Dot(da, db) / std::sqrt(LengthSqrd(da) * LengthSqrd(db));
    const double sine = -Cross(da, db) / std::sqrt(LengthSqrd(da) * LengthSqrd(db));
    for (DPoint& p : b) p = {cosine * p.x - sine * p.y, sine * p.x + cosine * p.y};
    const DVector move = CubicBezier::Evaluate(a.data(), t) - CubicBezier::Evaluate(b.data(), u);
    for (DPoint& p : b) p += move;
    const double bendA = CubicBezier::SafeBezierCurvature(t, a.data());
    const double bendB = CubicBezier::SafeBezierCurvature(u, b.data());
    if (std::abs(bendA - bendB) < 0.1) continue;
    ++tested;
    const Crossings found = CubicBezier::IntersectBeziers(a.data(), b.data());
    const auto there = [&](const Crossing& c) {
      return std::abs(c.ta - t) < 1e-5 && std::abs(c.tb - u) < 1e-5;
    };
    EXPECT_EQ(std::ranges::count_if(All(found), there), 1) << t << " " << u << Show(a, b, found);
  }
  EXPECT_GT(tested, 1000);
}

/// One stretch with its two ends, however the second curve is given.
TEST(CubicCrossings, SharedStretchHasTwoEnds) {
  Random random(17);
  for (int n = 0; n < 3000 && !HasFailure(); ++n) {
    const Cubic whole = UnitCubic(random, n % 4 == 3 ? CubicShape::evenLine : CubicShape::general);
    if (SizeOf(whole) < 0.3) continue;
    const double from = random.Uniform(0.05, 0.3), to = random.Uniform(0.7, 0.95);
    Cubic a, b;
    double a0, a1, b0, b1;  // the ends of the stretch on each
    if (n % 2 == 0) {
      a = whole, b = Part(whole, from, to);
      a0 = from, a1 = to, b0 = 0, b1 = 1;
    } else {
      a = Part(whole, 0, to), b = Part(whole, from, 1);
      a0 = from / to, a1 = 1, b0 = 0, b1 = (to - from) / (1 - from);
    }
    if (n % 3 == 1) b = Reversed(b), b0 = 1 - b0, b1 = 1 - b1;
    double t0, t1;
    DPoint point;
    if (CubicBezier::FindBezierSelfIntersection(whole.data(), t0, t1, point)) continue;
    const double noise = n % 5 == 4 ? 1e-6 * SizeOf(b) : 0;
    for (DPoint& p : b) p = p + 0.5 * noise * (random.Point(1) - DPoint{0, 0});
    const Crossings found = CubicBezier::IntersectBeziers(a.data(), b.data());
    const double tolerance = noise > 0 ? 1e-2 : 1e-6;
    ASSERT_TRUE(found.overlap) << n << Show(a, b, found);
    ASSERT_EQ(found.count, 2) << n << Show(a, b, found);
    EXPECT_TRUE(Holds(found, a0, b0, tolerance)) << n << " " << a0 << " " << b0 << Show(a, b, found);
    EXPECT_TRUE(Holds(found, a1, b1, tolerance)) << n << " " << a1 << " " << b1 << Show(a, b, found);
  }
}

TEST(CubicCrossings, NothingForInputThatIsNotFinite) {
  const double nan = std::numeric_limits<double>::quiet_NaN(),
               infinity = std::numeric_limits<double>::infinity();
  for (const double bad : {nan, infinity, -infinity}) {
    for (std::size_t k = 0; k < 8; ++k) {
      Cubic a = {DPoint{0, 0}, DPoint{1, 1}, DPoint{2, -1}, DPoint{3, 0}}, b = Line({1, -5}, {2, 5});
      DPoint& p = a[k / 2];
      (k % 2 == 0 ? p.x : p.y) = bad;
      EXPECT_EQ(CubicBezier::IntersectBeziers(a.data(), b.data()).count, 0);
      EXPECT_EQ(CubicBezier::IntersectBeziers(b.data(), a.data()).count, 0);
      EXPECT_EQ(CubicBezier::IntersectBezierLine(a.data(), b[0], b[3], true).count, 0);
      EXPECT_EQ(CubicBezier::IntersectBezierLine(a.data(), b[0], b[3], false).count, 0);
      double t0, t1;
      DPoint point;
      EXPECT_FALSE(CubicBezier::FindBezierSelfIntersection(a.data(), t0, t1, point));
    }
  }
}

/// Nearly equal curves: bounded, and nothing invented.
TEST(CubicCrossings, NearlyEqualCurves) {
  Random random(18);
  for (int n = 0; n < 2000 && !HasFailure(); ++n) {
    const Cubic a = UnitCubic(random, RandomShape(random));
    Cubic b = n % 2 == 0 ? a : Part(a, 0.1, 0.9);
    const double noise = random.LogUniform(1e-12, 1e-3);
    for (DPoint& p : b) p += noise * (random.Point(1) - DPoint{0, 0});
    ExpectAgrees(a, b);
  }
}

/// A curve of a millionth of the other's size, and one passing through the other's double point or cusp.
TEST(CubicCrossings, SmallOnLargeAndSpecialPoints) {
  Random random(19);
  for (int n = 0; n < 2000 && !HasFailure(); ++n) {
    const Cubic a = UnitCubic(random, n % 2 == 0 ? CubicShape::loop : CubicShape::general);
    Cubic b = UnitCubic(random, CubicShape::general);
    double t0 = 0.3, t1 = 0.3;
    DPoint target = CubicBezier::Evaluate(a.data(), t0);
    const bool loop = CubicBezier::FindBezierSelfIntersection(a.data(), t0, t1, target);
    const double scale = random.LogUniform(1e-6, 1);
    const DVector move = target - CubicBezier::Evaluate(b.data(), 0.4);
    for (DPoint& p : b) p += move;
    for (DPoint& p : b) p = target + scale * (p - target);
    const Crossings found = CubicBezier::IntersectBeziers(a.data(), b.data());
    EXPECT_TRUE(Holds(found, t0, 0.4, 1e-6)) << t0 << Show(a, b, found);
    if (!loop) continue;
    EXPECT_TRUE(Holds(found, t1, 0.4, 1e-6)) << t1 << Show(a, b, found);
  }
}

/// Folded on one line, unevenly parametrised, one inside the other: the two ends of what both cover.
TEST(CubicCrossings, CurvesOnOneLine) {
  Random random(20);
  for (int n = 0; n < 2000 && !HasFailure(); ++n) {
    const Cubic a = UnitCubic(random, CubicShape::collinear);
    const DVector along = a[3] - a[0];
    Cubic b;
    for (DPoint& p : b) p = a[0] + random.Uniform(-1, 2) * along;
    const Crossings found = CubicBezier::IntersectBeziers(a.data(), b.data());
    const auto range = [&](const Cubic& c) {
      double low = 1e300, high = -1e300;
      for (int k = 0; k <= 2000; ++k) {
        const double x = Dot(CubicBezier::Evaluate(c.data(), k / 2000.0) - a[0], along);
        low = std::fmin(low, x), high = std::fmax(high, x);
      }
      return std::pair(low, high);
    };
    const auto [aLow, aHigh] = range(a);
    const auto [bLow, bHigh] = range(b);
    const double low = std::fmax(aLow, bLow), high = std::fmin(aHigh, bHigh);
    if (std::abs(high - low) < 1e-4 * LengthSqrd(along)) continue;
    ASSERT_EQ(found.count, high > low ? 2 : 0) << Show(a, b, found);
    if (found.count == 0) continue;
    EXPECT_TRUE(found.overlap);
    double x0 = Dot(found.at[0].point - a[0], along), x1 = Dot(found.at[1].point - a[0], along);
    if (x0 > x1) std::swap(x0, x1);
    EXPECT_NEAR(x0, low, 1e-4 * LengthSqrd(along)) << Show(a, b, found);
    EXPECT_NEAR(x1, high, 1e-4 * LengthSqrd(along)) << Show(a, b, found);
  }
}

TEST(CubicLineCrossings, AgreeWithLongDoubleSubdivision) {
  Random random(21);
  int crossings = 0;
  for (int n = 0; n < 10000 && !HasFailure(); ++n) {
    const Cubic a = UnitCubic(random, RandomShape(random));
    const DPoint p = random.Point(1.5), q = random.Point(1.5);
    const Crossings found = CubicBezier::IntersectBezierLine(a.data(), p, q, false);
    const Cubic line = Line(p, q);
    for (const Crossing& c : All(found))
      EXPECT_LE(Distance(CubicBezier::Evaluate(a.data(), c.ta), Lerp(p, q, c.tb)), 1e-14);
    for (const ClearCrossing& c : FindClearCrossings(a, line)) {
      ++crossings;
      EXPECT_TRUE(Holds(found, c.ta, c.tb, 1e-9)) << Show(a, line, found);
    }
    // The endless line through two points far outside meets the curve at the same places.
    const DPoint p2 = Lerp(p, q, -1), q2 = Lerp(p, q, 3);
    const Crossings endless = CubicBezier::IntersectBezierLine(a.data(), p2, q2, true);
    if (found.overlap) continue;
    for (const Crossing& c : All(found))
      EXPECT_TRUE(Holds(endless, c.ta, (c.tb + 1) / 4, 1e-6)) << Show(a, line, endless);
  }
  EXPECT_GT(crossings, 3000);
}

TEST(CubicLineCrossings, TangencyOnceEndsExactlyParametersOutside) {
  const DPoint arch[4] = {{0, 0}, {0, 4}, {4, 4}, {4, 0}};  // top at (2, 3)
  const Crossings touch = CubicBezier::IntersectBezierLine(arch, {-1, 3}, {5, 3}, false);
  ASSERT_EQ(touch.count, 1);
  EXPECT_NEAR(touch.at[0].ta, 0.5, 1e-12);
  EXPECT_NEAR(touch.at[0].tb, 0.5, 1e-12);
  EXPECT_EQ(CubicBezier::IntersectBezierLine(arch, {-1, 3.0000001}, {5, 3.0000001}, false).count, 0);
  EXPECT_EQ(CubicBezier::IntersectBezierLine(arch, {-1, 2.9999999}, {5, 2.9999999}, false).count, 2);
  const Crossings corner = CubicBezier::IntersectBezierLine(arch, {4, 0}, {8, -3}, false);
  ASSERT_EQ(corner.count, 1);
  EXPECT_EQ(corner.at[0].ta, 1);
  EXPECT_EQ(corner.at[0].tb, 0);
  // The tangent continued beyond the end: smooth joint of a curve and a line.
  const Crossings smooth = CubicBezier::IntersectBezierLine(arch, {4, 0}, {4, -3}, false);
  ASSERT_EQ(smooth.count, 1);
  EXPECT_EQ(smooth.at[0].ta, 1);
  EXPECT_EQ(smooth.at[0].tb, 0);
  EXPECT_EQ(CubicBezier::IntersectBezierLine(arch, {10, 1}, {11, 1}, false).count, 0);
  std::vector<double> t, u;
  ASSERT_TRUE(CubicBezier::FindBezierLineIntersection(arch, {10, 1}, {11, 1}, true, t, u));
  ASSERT_EQ(t.size(), 2u);
  EXPECT_LT(t[0], t[1]);
  EXPECT_LT(u[0], u[1]);
  EXPECT_LT(u[1], -5);
}

TEST(CubicSelfCrossing, DoublePointOfEveryLoopAndOfNothingElse) {
  Random random(22);
  int loops = 0;
  for (int n = 0; n < 4000; ++n) {
    const CubicShape shape = n % 2 == 0 ? CubicShape::loop : RandomShape(random);
    const Cubic c = UnitCubic(random, shape);
    double t0 = -1, t1 = -1;
    DPoint point;
    const bool found = CubicBezier::FindBezierSelfIntersection(c.data(), t0, t1, point);
    if (found) {
      ++loops;
      ASSERT_TRUE(t0 >= 0 && t0 < t1 && t1 <= 1) << ToSvg(c);
      // Distance of the two points relative to how fast the curve moves there.
      const double size = SizeOf(c);
      EXPECT_LE(Distance(CubicBezier::Evaluate(c.data(), t0), CubicBezier::Evaluate(c.data(), t1)),
                1e-13 * size)
          << ToSvg(c);
    }
    // The reference: the two halves of the curve, cut where a loop must be cut, cross inside.
    bool clear = false;
    for (const double cut : {0.3, 0.5, 0.7}) {
      const Cubic left = Part(c, 0, cut), right = Part(c, cut, 1);
      for (const ClearCrossing& x : FindClearCrossings(left, right, 6))
        clear = clear || (x.ta < 0.999 || x.tb > 0.001);
    }
    EXPECT_TRUE(found || !clear) << ToSvg(c);
  }
  EXPECT_GT(loops, 1000);
}

TEST(CubicSelfCrossing, ClosedCurveMeetsAtItsEnds) {
  const DPoint drop[4] = {{0, 0}, {3, 3}, {-3, 3}, {0, 0}};
  double t0, t1;
  DPoint point;
  ASSERT_TRUE(CubicBezier::FindBezierSelfIntersection(drop, t0, t1, point));
  EXPECT_EQ(t0, 0);
  EXPECT_EQ(t1, 1);
}

/// A Newton step that lands on the end of the interval by chance is not a root there.
TEST(CubicLineCrossings, RootWhoseFirstStepHitsTheEnd) {
  const DPoint c[4] = {{0, -1.5}, {1, -1.5}, {2, -1.5}, {3, 1.5}};  // y = 3 t^3 - 1.5
  const Crossings found = CubicBezier::IntersectBezierLine(c, {-1, 0}, {4, 0}, false);
  ASSERT_EQ(found.count, 1);
  EXPECT_NEAR(found.at[0].ta, std::cbrt(0.5), 1e-15);
}

/// Pairs that once went wrong, and pairs known from the literature to be hard, by name. One pair a line:
/// name | number of contacts, "overlap" after it when they share a stretch | 8 coordinates | 8 coordinates
TEST(CubicCrossings, NamedPairs) {
  int pairs = 0;
  std::ifstream file(LUMO_CORPUS_DIR "/cubic_pairs.txt");
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    ++pairs;
    SCOPED_TRACE(line);
    std::string text = line.substr(line.find('|'));
    const std::size_t mark = text.find("overlap");
    const bool overlap = mark != std::string::npos;
    if (overlap) text.erase(mark, 7);
    std::ranges::replace(text, '|', ' ');
    std::istringstream numbers(text);
    int count = 0;
    Cubic first, second;
    numbers >> count;
    for (Cubic* cubic : {&first, &second})
      for (DPoint& p : *cubic) numbers >> p.x >> p.y;
    ASSERT_TRUE(numbers);
    for (const bool swap : {false, true}) {
      for (const bool turn : {false, true}) {
        const Cubic& b = swap ? first : second;
        const Cubic a = turn ? Reversed(swap ? second : first) : swap ? second : first;
        const Crossings found = CubicBezier::IntersectBeziers(a.data(), b.data());
        EXPECT_EQ(found.count, count) << Show(a, b, found);
        EXPECT_EQ(found.overlap, overlap) << Show(a, b, found);
        ExpectAgrees(a, b);
      }
    }
  }
  EXPECT_GE(pairs, 10);
}

}  // namespace
