// What must hold between results, whatever the operands: over random shapes from generic to wholly
// degenerate.
#include <gtest/gtest.h>

#include "boolean/shapes.h"

namespace {

using namespace test;

struct Case {
  const char* name;
  double grid;
  int segments;
  int pairs;
};

class Identities : public testing::TestWithParam<Case> {
 protected:
  static DPoint Turned(DPoint p, int quarters) {
    for (; quarters > 0; --quarters) p = {-p.y, p.x};
    return p;
  }
};

TEST_P(Identities, HoldForRandomPairs) {
  const Case c = GetParam();
  for (int k = 0; k < c.pairs; ++k) {
    Bits bits(static_cast<std::uint64_t>(k) + 1);
    const DoublePath a = RandomLoop(bits, c.segments, 1000, c.grid);
    DoublePath b = RandomLoop(bits, c.segments, 1000, c.grid);
    const FillRule rule = k % 2 ? FillRule::evenOdd : FillRule::nonZero;
    const auto pa = ToCurve(a), pb = ToCurve(b);
    const auto both = Lumo::Union(pa, pb, rule, rule), common = Lumo::Intersect(pa, pb, rule, rule),
               aOnly = Lumo::Subtract(pa, pb, rule, rule), bOnly = Lumo::Subtract(pb, pa, rule, rule),
               one = Lumo::Xor(pa, pb, rule, rule);
    const double areaA = Covered(Lumo::Simplify(pa, rule)), areaB = Covered(Lumo::Simplify(pb, rule)),
                 tolerance = 1e-6 * (areaA + areaB) + 1e-3;
    SCOPED_TRACE(std::string(c.name) + " " + std::to_string(k) + " " + testing::PrintToString(a) + " and " +
                 testing::PrintToString(b));
    EXPECT_NEAR(Covered(both) + Covered(common), areaA + areaB, tolerance);
    EXPECT_NEAR(Covered(aOnly) + Covered(common), areaA, tolerance);
    EXPECT_NEAR(Covered(aOnly) + Covered(bOnly), Covered(one), tolerance);
    EXPECT_NEAR(Covered(Lumo::Union(pb, pa, rule, rule)), Covered(both), tolerance);
    for (const auto* result : {&both, &common, &aOnly, &bOnly, &one}) {
      EXPECT_TRUE(IsWellFormed(ToPath(*result)));
      EXPECT_NEAR(Covered(Lumo::Simplify(*result)), Covered(*result), tolerance);
    }
    const DPoint low{-50, -50}, high{1050, 1050};
    const auto in = [rule](int winding) { return Fills(rule, winding); };
    EXPECT_TRUE(FillsWhere(both, a, b, bits, low, high, 1, [&](int u, int v) { return in(u) || in(v); }));
    EXPECT_TRUE(FillsWhere(common, a, b, bits, low, high, 1, [&](int u, int v) { return in(u) && in(v); }));
    EXPECT_TRUE(FillsWhere(aOnly, a, b, bits, low, high, 1, [&](int u, int v) { return in(u) && !in(v); }));
    EXPECT_TRUE(FillsWhere(one, a, b, bits, low, high, 1, [&](int u, int v) { return in(u) != in(v); }));
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Random, Identities,
                         testing::Values(Case{"generic", 0, 6, 300}, Case{"coarse", 50, 6, 150},
                                         Case{"coarser", 100, 6, 150}, Case{"coincident", 250, 6, 150},
                                         Case{"long", 0, 30, 6}),
                         [](const auto& named) { return named.param.name; });

TEST(Results, DoNotDependOnDirectionStartOrPlacement) {
  for (int k = 0; k < 60; ++k) {
    Bits bits(static_cast<std::uint64_t>(k) + 77);
    const double grid = k % 2 ? 0 : 100;
    const DoublePath a = RandomLoop(bits, 5, 1000, grid), b = RandomLoop(bits, 5, 1000, grid);
    const double area = Covered(Lumo::Union(ToCurve(a), ToCurve(b)));
    DoublePath reversed = a;
    Lumo::Reverse(reversed.points.data(), reversed.types.data(), reversed.count());
    EXPECT_NEAR(Covered(Lumo::Union(ToCurve(reversed), ToCurve(b))), area, 1e-6 * area);
    for (const double scale : {0x1p-40, 0x1p20}) {
      DoublePath sa = a, sb = b;
      for (auto* path : {&sa, &sb}) {
        for (DPoint& p : path->points) p = {-p.y * scale, p.x * scale};  // and a quarter turn
      }
      const auto result = Lumo::Union(ToCurve(sa), ToCurve(sb));
      EXPECT_NEAR(Covered(result) / (scale * scale), area, 1e-6 * area);
    }
    // A power of two alone changes nothing at all.
    DoublePath sa = a, sb = b;
    for (auto* path : {&sa, &sb}) {
      for (DPoint& p : path->points) p = {p.x * 0x1p-7, p.y * 0x1p-7};
    }
    DoublePath plain = ToPath(Lumo::Union(ToCurve(a), ToCurve(b)));
    for (DPoint& p : plain.points) p = {p.x * 0x1p-7, p.y * 0x1p-7};
    EXPECT_EQ(ToPath(Lumo::Union(ToCurve(sa), ToCurve(sb))), plain);
  }
}

TEST(HardCases, NearlyEqualCircles) {
  const auto a = Circle({0, 0}, 10);
  const double area = Covered(a);
  for (const double d : {1e-12, 1e-10, 1e-9, 1e-8, 1e-7, 1e-6, 1e-5, 1e-3}) {
    for (const bool tangent : {false, true}) {
      const auto b = Circle({d, 0}, tangent ? 10 + d : 10);
      const double sum = Covered(Lumo::Union(a, b)) + Covered(Lumo::Intersect(a, b));
      EXPECT_NEAR(sum, area + Covered(b), 1e-6 * area) << d << tangent;
      const double crescent = Covered(Lumo::Xor(a, b)), expected = tangent ? Covered(b) - area : 40 * d;
      EXPECT_NEAR(crescent, expected, 1e-6 * area + 0.01 * expected) << d << tangent;
    }
  }
}

TEST(HardCases, ACircleThatPassesASideByALittle) {
  const auto circle = Circle({0, 0}, 10);
  for (int k = 3; k <= 42; ++k) {
    const double x = 10 - std::ldexp(10, -k);
    DoublePath box;
    box.Add(NODETYPE(0x0C), {-x, -20});
    for (const DPoint p : {DPoint{-x, 7}, DPoint{x, 7}, DPoint{x, -20}}) box.Add(NODETYPE(0x44), p);
    box.Add(NODETYPE(0x48), {-x, -20});
    const auto other = ToCurve(box);
    const double area = Covered(circle), sum = area + Covered(other),
                 common = Covered(Lumo::Intersect(circle, other));
    EXPECT_NEAR(Covered(Lumo::Union(circle, other)) + common, sum, 1e-8 * sum) << k;
    EXPECT_NEAR(Covered(Lumo::Subtract(circle, other)) + common, area, 1e-8 * sum) << k;
  }
}

TEST(HardCases, AnOperandSlidesAlongTheOther) {
  const auto base = ParseCurve<DPoint>("M0 0 L0 10 C5 14 15 14 20 10 L20 0 Z");
  const double area = Covered(base);
  for (int k = -41; k <= 41; ++k) {
    DoublePath moved = ToPath(base);
    for (DPoint& p : moved.points) p.x += 0.5 * k;
    const auto b = ToCurve(moved);
    EXPECT_NEAR(Covered(Lumo::Union(base, b)) + Covered(Lumo::Intersect(base, b)), 2 * area, 1e-6 * area)
        << k;
    // Stacked: the whole lower side is shared.
    DoublePath mirrored = moved;
    for (DPoint& p : mirrored.points) p.y = -p.y;
    EXPECT_NEAR(Covered(Lumo::Union(base, ToCurve(mirrored))), 2 * area, 1e-6 * area) << k;
  }
}

TEST(HardCases, ThousandsOfCopies) {
  DoublePath many;
  for (int k = 0; k < 2000; ++k) AddCircle(many, {0, 0}, 10);
  const DoublePath once = ToPath(Circle({0, 0}, 10));
  EXPECT_EQ(ToPath(Lumo::Simplify(ToCurve(many))), once);
  EXPECT_TRUE(Lumo::Simplify(ToCurve(many), FillRule::evenOdd).IsEmpty());
  std::vector<PolycurveT<DPoint>> list(500, ToCurve(once));
  EXPECT_EQ(ToPath(Lumo::Union(list)), once);
}

}  // namespace
