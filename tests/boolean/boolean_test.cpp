#include "lumo/boolean.h"

#include <gtest/gtest.h>

#include <limits>

#include "boolean/shapes.h"

namespace {

using namespace test;

TEST(Boolean, CombinesTwoSquaresAsTheWordsSay) {
  const auto a = ParseCurve<DPoint>("M0 0 L0 10 L10 10 L10 0 Z"),
             b = ParseCurve<DPoint>("M5 5 L5 15 L15 15 L15 5 Z");
  EXPECT_EQ(Covered(Lumo::Union(a, b)), 175);
  EXPECT_EQ(Covered(Lumo::Intersect(a, b)), 25);
  EXPECT_EQ(Covered(Lumo::Subtract(a, b)), 75);
  EXPECT_EQ(Covered(Lumo::Xor(a, b)), 150);
  EXPECT_EQ(Lumo::Intersect(a, b).GetPointCount(), 5u);
  EXPECT_EQ(Covered(a.Union(b)), 175);
  EXPECT_EQ(Covered(a.Subtract(b)), 75);
}

template <class T>
void ExpectUntouchedCopy() {
  // The far triangle has handles shown, a smooth node, selected nodes and starts in the middle of nowhere
  // special.
  const auto path = ParsePath<T>("M100 0e C100 40 140 40 140 0s L120 -30 Z M0 0 L0 10 L10 10 L10 0 Z");
  const auto a = ToCurve(path), b = ParseCurve<T>("M5 5 L5 15 L15 15 L15 5 Z");
  const Path<T> result = ToPath(Lumo::Union(a, b));
  const std::size_t n = 6;
  ASSERT_GT(result.points.size(), n);
  for (std::size_t k = 0; k < n; ++k) {
    EXPECT_EQ(result.points[k], path.points[k]);
    EXPECT_EQ(result.types[k].value, path.types[k].value) << k;
  }
  EXPECT_TRUE(IsWellFormed(result));
}

TEST(Boolean, CopiesAnUntouchedSubpathNodeForNode) {
  ExpectUntouchedCopy<DPoint>();
  ExpectUntouchedCopy<tagPOINT>();
}

TEST(Boolean, OfAPathWithItselfIsThePathOrNothing) {
  const auto path = ParsePath<DPoint>("M0.1 0.7 C0 10 10 20 20 20s C30 20 30 0 20 0 Z M5 8 L8 5 L8 8 Z");
  const auto a = ToCurve(path);
  EXPECT_EQ(ToPath(Lumo::Union(a, a)), path);
  EXPECT_EQ(ToPath(Lumo::Intersect(a, a)), path);
  EXPECT_TRUE(Lumo::Subtract(a, a).IsEmpty());
  EXPECT_TRUE(Lumo::Xor(a, a).IsEmpty());
  Path<DPoint> reversed = path;
  Lumo::Reverse(reversed.points.data(), reversed.types.data(), reversed.count());
  EXPECT_EQ(ToPath(Lumo::Union(a, ToCurve(reversed))), path);
}

TEST(Boolean, KeepsCurvesAndWhatIsKnownOfTheirNodes) {
  const auto result = ToPath(Lumo::Union(Circle({0, 0}, 10), Circle({12, 0}, 10)));
  EXPECT_TRUE(IsWellFormed(result));
  ASSERT_EQ(result.points.size(), 1u + 8 * 3);  // five uncut quarters, and three pieces
  for (std::size_t k = 1; k < result.types.size(); ++k) EXPECT_FALSE(result.types[k].IsLine());
  int cusps = 0;
  for (std::size_t k = 0; k + 1 < result.types.size(); ++k) {
    if (!result.types[k].IsControl() && result.types[k].IsCusp()) ++cusps;
  }
  EXPECT_EQ(cusps, 2);  // where the circles cross; all other nodes stay smooth
}

TEST(Boolean, ShowsTheHandlesOfUncutCurvesThatWereShown) {
  // Of the curve from (0,0) to (100,0) the handle at (20,50) is shown and selected; a square cuts the line.
  Path<DPoint> arch = ParsePath<DPoint>("M0 0 C20 50 80 60 100 0 Z");
  arch.types[1] |= NODETYPE::kUser | NODETYPE::kEnabled;
  const auto square = ParseCurve<DPoint>("M40 -20 L40 10 L60 10 L60 -20 Z");
  for (const bool reversed : {false, true}) {
    if (reversed) Lumo::Reverse(arch.points.data(), arch.types.data(), arch.count());
    const Path<DPoint> result = ToPath(Lumo::Union(ToCurve(arch), square));
    int handles = 0;
    for (std::size_t k = 0; k < result.points.size(); ++k) {
      if (!result.types[k].IsControl()) continue;
      ++handles;
      EXPECT_EQ(result.types[k].IsUser() && result.types[k].IsEnabled(), result.points[k] == (DPoint{20, 50}))
          << result;
    }
    EXPECT_EQ(handles, 2) << result;
  }
}

TEST(Boolean, JoinsThePiecesOfASegmentThatWasCutForNothing) {
  // The bar's ends lie inside the square, whose lower side is cut and must be whole again: one line.
  const auto square = ParseCurve<DPoint>("M0 0 L0 10 L10 10 L10 0 Z"),
             bar = ParseCurve<DPoint>("M4 -5 L4 5 L6 5 L6 -5 Z");
  EXPECT_EQ(ToPath(Lumo::Union(square, Lumo::Intersect(square, bar))), ToPath(square));
  EXPECT_EQ(Lumo::Union(square, bar).GetPointCount(), 9u);
}

TEST(Boolean, HonoursTheFillRuleOfEachOperand) {
  const auto rings = ParseCurve<DPoint>("M0 0 L0 30 L30 30 L30 0 Z M10 10 L10 20 L20 20 L20 10 Z");
  EXPECT_EQ(Covered(Lumo::Simplify(rings, FillRule::nonZero)), 900);
  EXPECT_EQ(Covered(Lumo::Simplify(rings, FillRule::evenOdd)), 800);
  const auto turned = ParseCurve<DPoint>("M0 0 L30 0 L30 30 L0 30 Z");
  EXPECT_EQ(Covered(Lumo::Simplify(turned, FillRule::nonZero)), 900);
  EXPECT_TRUE(Lumo::Simplify(turned, FillRule::positive).IsEmpty());  // its area is negative
  EXPECT_EQ(Covered(Lumo::Simplify(rings, FillRule::positive)), 900);
  EXPECT_EQ(Covered(Lumo::Intersect(rings, turned, FillRule::evenOdd, FillRule::nonZero)), 800);
  EXPECT_EQ(Covered(Lumo::Intersect(rings, turned, FillRule::evenOdd, FillRule::positive)), 0);
}

TEST(Boolean, RunsHolesAgainstTheirOutlines) {
  const auto both = ParseCurve<DPoint>("M0 0 L0 30 L30 30 L30 0 Z M10 10 L10 20 L20 20 L20 10 Z");
  const auto result = Lumo::Simplify(both, FillRule::evenOdd);
  ASSERT_EQ(result.GetPointCount(), 10u);
  const double outer = Lumo::GetArea(result.GetPoints(), result.GetNodeTypes(), 5);
  const double hole = Lumo::GetArea(result.GetPoints() + 5, result.GetNodeTypes() + 5, 5);
  EXPECT_EQ(outer, 900);
  EXPECT_EQ(hole, -100);
}

TEST(Boolean, SplitsOutlinesWhereTheyTouchThemselves) {
  // Two squares that meet at a corner: two outlines, not one that passes the corner twice.
  const auto a = ParseCurve<DPoint>("M0 0 L0 10 L10 10 L10 0 Z"),
             b = ParseCurve<DPoint>("M10 10 L10 20 L20 20 L20 10 Z");
  EXPECT_EQ(ToPath(Lumo::Union(a, b)).points.size(), 10u);
  // A hole that touches its outline stays a hole.
  const auto hole = ParseCurve<DPoint>("M0 5 L5 8 L5 2 Z");
  const auto result = Lumo::Subtract(a, hole);
  EXPECT_EQ(Covered(result), 85);
}

TEST(Boolean, FillsOpenSubpathsAsIfClosed) {
  const auto open = ParseCurve<DPoint>("M0 0 L0 10 L10 10"), away = ParseCurve<DPoint>("M50 0 L50 1 L51 0 Z");
  EXPECT_EQ(Covered(Lumo::Simplify(open)), 50);
  EXPECT_EQ(Covered(Lumo::Union(open, away)), 50.5);
  EXPECT_TRUE(Lumo::Simplify(ParseCurve<DPoint>("M0 0 L10 10")).IsEmpty());
  EXPECT_TRUE(Lumo::Simplify(ParseCurve<DPoint>("M3 3")).IsEmpty());
}

TEST(Boolean, CombinesLists) {
  std::vector<PolycurveT<DPoint>> list;
  EXPECT_TRUE(Lumo::Union(list).IsEmpty());
  for (int i = 0; i < 5; ++i) {
    DoublePath square;
    const double x = 4.0 * i;
    for (const DPoint p : {DPoint{x, 0}, DPoint{x, 20}, DPoint{x + 20, 20}, DPoint{x + 20, 0}}) {
      square.Add(square.empty() ? 0x0C : 0x44, p);
    }
    square.Add(0x48, square.points[0]);
    list.push_back(ToCurve(square));
  }
  EXPECT_EQ(Covered(Lumo::Union(list)), 36 * 20);
  EXPECT_EQ(Covered(Lumo::Intersect(list)), 4 * 20);
  EXPECT_EQ(Covered(Lumo::Subtract(list)), 4 * 20);
  EXPECT_EQ(Covered(Lumo::Xor(list)), (4 + 4 + 4 + 4 + 4) * 20);  // covered 1, 3, 5, 3 and 1 times
  list.resize(1);
  EXPECT_EQ(ToPath(Lumo::Intersect(list)), ToPath(list[0]));
}

TEST(ClipToShape, CutsOpenPathsAndKeepsThemOpen) {
  const auto shape = ParseCurve<DPoint>("M0 0 L0 10 L10 10 L10 0 Z");
  const auto line = ParseCurve<DPoint>("M-5 5 L15 5 L15 8 L5 8");
  const Path<DPoint> inside = ToPath(Lumo::ClipToShape(line, shape));
  EXPECT_EQ(inside.points, (std::vector<DPoint>{{0, 5}, {10, 5}, {10, 8}, {5, 8}}));
  EXPECT_EQ(inside.Bytes(), (std::vector<int>{0x04, 0x44, 0x04, 0x44}));
  const Path<DPoint> outside = ToPath(Lumo::ClipToShape(line, shape, false));
  EXPECT_EQ(outside.points, (std::vector<DPoint>{{-5, 5}, {0, 5}, {10, 5}, {15, 5}, {15, 8}, {10, 8}}));
  // Wholly inside, crossing itself: node for node. Wholly outside: nothing.
  const auto loop = ParsePath<DPoint>("M1 1 C9 9 1 9 9 1e L2 2");
  EXPECT_EQ(ToPath(Lumo::ClipToShape(ToCurve(loop), shape)), loop);
  EXPECT_TRUE(Lumo::ClipToShape(ToCurve(loop), shape, false).IsEmpty());
}

TEST(ClipToShape, CountsAStretchAlongTheOutlineAsInside) {
  const auto shape = ParseCurve<DPoint>("M0 0 L0 10 L10 10 L10 0 Z"),
             along = ParseCurve<DPoint>("M-5 0 L5 0 L5 -5");
  EXPECT_EQ(ToPath(Lumo::ClipToShape(along, shape)).points, (std::vector<DPoint>{{0, 0}, {5, 0}}));
  EXPECT_EQ(ToPath(Lumo::ClipToShape(along, shape, false)).points,
            (std::vector<DPoint>{{-5, 0}, {0, 0}, {5, 0}, {5, -5}}));
  const auto twice = ParseCurve<DPoint>("M2 0 L8 0 L2 0");
  EXPECT_EQ(ToPath(Lumo::ClipToShape(twice, shape)), ToPath(twice));
}

TEST(ClipToShape, FillsClosedSubpathsAndCutsOpenOnesOfOnePath) {
  const auto shape = ParseCurve<DPoint>("M0 0 L0 10 L10 10 L10 0 Z");
  const auto mixed = ParseCurve<DPoint>("M5 5 L15 5 M5 -5 L5 5 L15 5 L15 -5 Z");
  const Path<DPoint> inside = ToPath(Lumo::ClipToShape(mixed, shape));
  EXPECT_EQ(Covered(ToCurve(inside)), 25);
  EXPECT_EQ(inside.points.size(), 5u + 2);
  EXPECT_EQ(inside.points[6], (DPoint{10, 5}));
}

TEST(Boolean, KeepsOneLetterFlagForEachLetter) {
  auto path =
      ParsePath<DPoint>("M0 0l L0 10 L10 10 L10 0 Z M20 0l L20 10 L30 10 L30 0 Z M22 2 L28 2 L28 8 L22 8 Z");
  const auto b = ParseCurve<DPoint>("M5 5 L5 15 L25 15 L25 5 Z");
  const Path<DPoint> result = ToPath(Lumo::Subtract(ToCurve(path), b));
  std::vector<bool> letters;
  for (std::size_t k = 0; k < result.types.size(); ++k) {
    if (result.types[k].IsMove()) letters.push_back(result.types[k].IsLetter());
  }
  EXPECT_EQ(letters, (std::vector<bool>{true, true}));
}

TEST(Boolean, LeavesOutWhatIsNotFinite) {
  const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
  const auto good = ParseCurve<DPoint>("M0 0 L0 10 L10 10 L10 0 Z");
  for (const double bad : {nan, inf, -inf}) {
    auto path = ParsePath<DPoint>("M0 0 L0 5 L5 0 Z M0 0 L0 10 L10 10 L10 0 Z");
    path.points[1].x = bad;
    EXPECT_EQ(ToPath(Lumo::Simplify(ToCurve(path))), ToPath(good));
  }
}

TEST(Boolean, StandsCoordinatesOfAnySize) {
  for (const double size : {1e-300, 1e-12, 1.0, 1e9, 1e150}) {
    DoublePath a = ParsePath<DPoint>("M0 0 L0 10 L10 10 L10 0 Z"),
               b = ParsePath<DPoint>("M5 5 L5 15 L15 15 L15 5 Z");
    for (auto* path : {&a, &b}) {
      for (DPoint& p : path->points) p.x *= size, p.y *= size;
    }
    const auto result = ToPath(Lumo::Intersect(ToCurve(a), ToCurve(b)));
    ASSERT_EQ(result.points.size(), 5u) << size;
    EXPECT_TRUE(IsWellFormed(result));
  }
  // Far from the origin compared with its size, where doubles are coarse.
  const auto a = ParseCurve<DPoint>("M1000000000 0 L1000000000 1 L1000000001 1 L1000000001 0 Z"),
             b = ParseCurve<DPoint>("M1000000000.5 0.5 L1000000000.5 2 L1000000002 2 L1000000002 0.5 Z");
  EXPECT_NEAR(Covered(Lumo::Intersect(a, b)), 0.25, 1e-6);
}

TEST(Boolean, RoundsIntegerPathsWithoutMakingThemCross) {
  Bits bits(5);
  for (int round = 0; round < 200; ++round) {
    Path<tagPOINT> a, b;
    for (auto* path : {&a, &b}) {
      const DoublePath loop = RandomLoop(bits, 4, 60);
      for (std::size_t k = 0; k < loop.points.size(); ++k) {
        path->Add(loop.types[k], {static_cast<int>(loop.points[k].x), static_cast<int>(loop.points[k].y)});
      }
    }
    const auto result = Lumo::Union(ToCurve(a), ToCurve(b));
    ASSERT_TRUE(IsWellFormed(ToPath(result)));
    // Clean: nothing is left to simplify but what rounds to the same units.
    const auto again = Lumo::Simplify(result);
    EXPECT_NEAR(Covered(again), Covered(result), 1.0);
  }
}

}  // namespace
