// What the offset of a path is made of: which outlines are offset, how results are united, open subpaths and
// caps, the path class's members.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "lumo/repair.h"
#include "support/offset_paths.h"
#include "tav/pref.h"

namespace {

using namespace LumoTest;
using namespace TavMath;
using Lumo::PolycurveT;
using Lumo::Offset::EOpenCurveOffsetSide;

DoublePath Square(double x, double y, double size, bool clockwise = true) {
  std::vector<DPoint> points{{x, y}, {x, y + size}, {x + size, y + size}, {x + size, y}};
  if (!clockwise) std::reverse(points.begin(), points.end());
  return ClosedPolygon(points);
}

DoublePath OpenLines(const std::vector<DPoint>& points) {
  DoublePath path;
  path.Add(NODETYPE(0x04), points[0]);
  for (std::size_t k = 1; k < points.size(); ++k) path.Add(NODETYPE(0x44), points[k]);
  return path;
}

DoublePath Together(std::initializer_list<DoublePath> paths) {
  DoublePath all;
  for (const DoublePath& path : paths) all.Add(path);
  return all;
}

double AreaOf(const DoublePath& path) {
  return Lumo::GetArea(path.points.data(), path.types.data(), path.count());
}

std::size_t CountSubpaths(const DoublePath& path) {
  return static_cast<std::size_t>(
      std::count_if(path.types.begin(), path.types.end(), [](NODETYPE t) { return t.IsMove(); }));
}

BoundsT<double> BoxOf(const DoublePath& path) {
  return Lumo::GetTightBBox(path.points.data(), path.types.data(), path.count());
}

void ExpectBox(const DoublePath& path, double minx, double miny, double maxx, double maxy,
               double tolerance = 2) {
  const BoundsT<double> box = BoxOf(path);
  EXPECT_NEAR(box.minx, minx, tolerance);
  EXPECT_NEAR(box.miny, miny, tolerance);
  EXPECT_NEAR(box.maxx, maxx, tolerance);
  EXPECT_NEAR(box.maxy, maxy, tolerance);
}

OffsetOptions With(Lumo::OffsetCorner* corner, Lumo::OffsetCorner* cap = new Lumo::Round) {
  return {corner, cap};
}

TEST(OffsetDriver, SquareOfEachJoin) {
  const DoublePath square = Square(0, 0, 20000);
  const double side = 20000, d = 3000;
  const double miter = (side + 2 * d) * (side + 2 * d);
  const double t = d * std::tan(std::acos(-1.0) / 8);
  EXPECT_NEAR(AreaOf(OffsetOf(square, d, With(new Lumo::Ray))), miter, 1);
  EXPECT_NEAR(AreaOf(OffsetOf(square, d, With(new Lumo::Bevel))), miter - 4 * d * d / 2, 1);
  EXPECT_NEAR(AreaOf(OffsetOf(square, d, With(new Lumo::OffsetBevel))), miter - 2 * (d - t) * (d - t), 2e5);
  EXPECT_NEAR(AreaOf(OffsetOf(square, d)), side * side + 4 * side * d + std::acos(-1.0) * d * d, 1e5);
  EXPECT_EQ(OffsetOf(square, d, With(new Lumo::Ray)).count(), 5) << "no nodes along the sides";
  const DoublePath inset = OffsetOf(square, -d);
  EXPECT_EQ(inset.count(), 5);
  EXPECT_NEAR(AreaOf(inset), (side - 2 * d) * (side - 2 * d), 1);
  EXPECT_EQ(OffsetOf(square, d).count(), 17) << "four lines and four arcs";
}

TEST(OffsetDriver, DirectionAndStartNodeDoNotMatter) {
  Random random(41);
  for (int k = 0; k < 6; ++k) {
    std::vector<DPoint> points;
    for (int n = 0; n < 9; ++n) {
      const double a = n * 0.7, r = random.Uniform(20000, 50000);
      points.push_back({r * std::cos(a), r * std::sin(a)});
    }
    const double offset = k % 2 ? 4000 : -4000;
    const double area = AreaOf(OffsetOf(ClosedPolygon(points), offset));
    EXPECT_GT(area, 0);
    for (int turn = 0; turn < 4; ++turn) {
      std::rotate(points.begin(), points.begin() + 2, points.end());
      std::reverse(points.begin(), points.end());
      EXPECT_NEAR(AreaOf(OffsetOf(ClosedPolygon(points), offset)), area, 1e-4 * area);
    }
  }
}

TEST(OffsetDriver, LargerDistancesCoverMoreAndJoinsContainOneAnother) {
  Random random(42);
  for (int k = 0; k < 6; ++k) {
    const DoublePath path = RandomBlob(random, 12, 60000, k % 2, 0.6);
    double area = 0;
    int some = 0;
    for (const double offset : {-20000.0, -5000.0, -500.0, 0.0, 500.0, 5000.0, 20000.0, 60000.0}) {
      const double grown = AreaOf(OffsetOf(path, offset));
      EXPECT_GE(grown, area) << offset << " of " << path;
      area = grown;
      some += area > 0;
    }
    EXPECT_GE(some, 5);
    const double slack = 1e-3 * area;
    const double miter = AreaOf(OffsetOf(path, 9000, With(new Lumo::MiteredCorner(15, new Lumo::Round))));
    const double round = AreaOf(OffsetOf(path, 9000)),
                 bevel = AreaOf(OffsetOf(path, 9000, With(new Lumo::Bevel)));
    EXPECT_GE(miter + slack, round);
    EXPECT_GE(round + slack, bevel);
  }
}

TEST(OffsetDriver, HolesStayAndIslandsAreOffset) {
  const DoublePath ring = Together({Square(0, 0, 90000), Square(20000, 20000, 50000, false)});
  EXPECT_EQ(CountSubpaths(OffsetOf(ring, 2000)), 1u) << "the hole is not offset";
  const DoublePath island = Together({ring, Square(35000, 35000, 20000)});
  const DoublePath grown = OffsetOf(island, 2000);
  EXPECT_EQ(CountSubpaths(grown), 2u) << "uniting does not swallow the island";
  EXPECT_NEAR(AreaOf(grown),
              AreaOf(OffsetOf(Square(0, 0, 90000), 2000)) + AreaOf(OffsetOf(Square(0, 0, 20000), 2000)), 1e4);
  Lumo::Offset::OffsetSettings inwards(new Lumo::Ray, nullptr, 2000, true);
  DoublePath holes;
  Lumo::CreateOffsetCurve(island.points.data(), island.types.data(), island.count(), holes.points,
                          holes.types, inwards);
  ExpectBox(holes, 18000, 18000, 72000, 72000);
  DoublePath none;
  const DoublePath plain = Together({Square(0, 0, 90000), OpenLines({{200000, 0}, {300000, 0}})});
  Lumo::CreateOffsetCurve(plain.points.data(), plain.types.data(), plain.count(), none.points, none.types,
                          inwards);
  EXPECT_TRUE(none.empty()) << "inwards, outer and open subpaths give nothing";
}

TEST(OffsetDriver, NeighboursUniteWhereTheirOffsetsMeet) {
  const DoublePath pair = Together({Square(0, 0, 20000), Square(24000, 0, 20000)});
  EXPECT_EQ(CountSubpaths(OffsetOf(pair, 1999)), 2u);
  EXPECT_EQ(CountSubpaths(OffsetOf(pair, 2001)), 1u);
  EXPECT_EQ(CountSubpaths(OffsetOf(pair, 2001, {new Lumo::Round, new Lumo::Round, true, false})), 2u);
  EXPECT_EQ(CountSubpaths(OffsetOf(Together({Square(0, 0, 20000), Square(0, 0, 20000)}), 2000)), 1u)
      << "a duplicate is an island of nothing";
}

TEST(OffsetDriver, ShapesThatTouchUniteWithoutSegmentsOfRoundingSize) {
  // A bar between its round end: the grown end runs into the bar's edge along the tangent.
  const DPoint p[] = {{37449.14, 0},        {27517.55, 0},        {17991.30, 3945.90},  {10968.60, 10968.60},
                      {3945.90, 17991.30},  {0, 27517.55},        {0, 37449.14},        {0, 47380.74},
                      {3945.90, 56906.99},  {10968.60, 63929.69}, {17991.30, 70952.38}, {27517.55, 74898.29},
                      {37449.14, 74898.29}, {37449.14, 0}};
  DoublePath path;
  path.Add(NODETYPE(0x0C), p[0]);
  for (int k = 1; k < 13; ++k) path.Add(NODETYPE(k % 3 == 0 ? 0x84 : 0xC0), p[k]);
  path.Add(NODETYPE(0x48), p[13]);
  path.Add(ClosedPolygon({{37449.14, 74898.29}, {1011126.86, 74898.29}, {1011126.86, 0}, {37449.14, 0}}));
  for (const double offset : {122.0542464, 1000.0, 3661.627392}) {
    const DoublePath result = OffsetOf(path, offset);
    EXPECT_EQ(CountSubpaths(result), 1u);
    std::size_t from = 0;
    for (std::size_t k = 1; k < result.points.size(); ++k) {
      if (result.types[k].IsControl()) continue;
      EXPECT_GE(Distance(result.points[from], result.points[k]), 2) << offset << ", node " << k;
      from = k;
    }
  }
}

TEST(OffsetDriver, FarOutShapesBesideOneAnotherLeaveNoGap) {
  // Each result errs by what it may; where the two run side by side they cross and part again.
  const DoublePath path = test::ParsePath<DPoint>(
      "M608922,99 C375787,540251 462950,539421 522807,532431 C1007647,333855 1033599,322233 1044522,298159 Z "
      "M1004894,84947 C993124,88676 991068,90538 989471,92768 C988772,93947 987942,95040 987593,96350 Z");
  for (const double offset : {2776654.995614, 2796149.987618, 2835551.557697, 2861173.840116, 3145728.0})
    EXPECT_EQ(CountSubpaths(OffsetOf(path, offset)), 1u) << offset;
}

TEST(OffsetDriver, ThornsThatAreThinAllAlongAreTakenOut) {
  // A room with a passage that narrows from a bit more than twice the distance to a bit less: its middle line
  // would stick out of the inset room as a hair.
  const auto rightmost = [](double spare, bool combine) {
    const double wide = 3000 + spare, narrow = 3000 - spare;
    const DoublePath room = ClosedPolygon({{0, 0},
                                           {100000, 0},
                                           {100000, 50000 - wide},
                                           {300000, 50000 - narrow},
                                           {300000, 50000 + narrow},
                                           {100000, 50000 + wide},
                                           {100000, 100000},
                                           {0, 100000}});
    const DoublePath inset = OffsetOf(room, -3000, {new Lumo::Round, new Lumo::Round, true, combine});
    EXPECT_EQ(CountSubpaths(inset), 1u);
    EXPECT_TRUE(test::IsWellFormed(inset));
    EXPECT_TRUE(WronglySided(room, -3000, inset, 150).empty());
    double x = 0;
    for (const DPoint& p : inset.points) x = std::fmax(x, p.x);
    return x;
  };
  for (const bool combine : {true, false}) {
    EXPECT_LT(rightmost(4, combine), 101000);
    EXPECT_GT(rightmost(40, combine), 190000) << "wide enough to be seen";
  }
}

TEST(OffsetDriver, ShapesApartAreOffsetInTheirOrderEachForItself) {
  const std::vector<DoublePath> apart{Square(50000, 0, 20000), Square(0, 0, 20000, false),
                                      Square(0, 60000, 9000)};
  DoublePath together, each;
  for (const DoublePath& path : apart) {
    together.Add(path);
    each.Add(OffsetOf(path, 3000));
  }
  const DoublePath result = OffsetOf(together, 3000);
  EXPECT_EQ(result.points, each.points);
  EXPECT_EQ(CountSubpaths(OffsetOf(together, -3000)), 3u);
}

TEST(OffsetDriver, CombinedResultsLieOnWholeUnitsAlsoInDoubles) {
  const DoublePath pair = Together({Square(0.25, 0.25, 20000), Square(21000.3, 0.7, 20000)});
  for (const DPoint& p : OffsetOf(Square(0.25, 0.25, 20000), 2000.4).points) {
    EXPECT_EQ(p.x, std::round(p.x));
    EXPECT_EQ(p.y, std::round(p.y));
  }
  bool fraction = false;
  for (const DPoint& p : OffsetOf(pair, 2000.4, {new Lumo::Round, new Lumo::Round, true, false}).points)
    fraction = fraction || p.x != std::round(p.x);
  EXPECT_TRUE(fraction) << "uncombined results are not rounded";
}

TEST(OffsetDriver, IntegerOverloadRoundsHalfAwayFromZero) {
  const std::vector<tagPOINT> points{
      {-20001, -20001}, {-20001, 20000}, {20000, 20000}, {20000, -20001}, {-20001, -20001}};
  const std::vector<NODETYPE> nodes{NODETYPE(0x0C), NODETYPE(0x44), NODETYPE(0x44), NODETYPE(0x44),
                                    NODETYPE(0x48)};
  Lumo::Offset::OffsetSettings settings(new Lumo::Ray, nullptr, -1000.5, false);
  settings.SetCombineShape(false);
  std::vector<tagPOINT> out;
  std::vector<NODETYPE> outNodes;
  Lumo::CreateOffsetCurve(points.data(), nodes.data(), 5, out, outNodes, settings);
  ASSERT_EQ(out.size(), 5u);
  for (const tagPOINT& p : out) {
    EXPECT_TRUE(p.x == -19001 || p.x == 19000) << p.x << ": -19000.5 rounds to -19001, 18999.5 to 19000";
    EXPECT_TRUE(p.y == -19001 || p.y == 19000) << p.y;
  }
}

TEST(OffsetDriver, LettersAreOutlinesLikeAnyOther) {
  DoublePath text = Together({Square(0, 0, 20000), Square(50000, 0, 20000), Square(100000, 0, 20000)});
  for (std::size_t k = 0; k < text.types.size(); ++k)
    if (text.types[k].IsMove()) text.types[k] |= NODETYPE::kLetter;
  EXPECT_EQ(CountSubpaths(OffsetOf(text, 1000)), 3u);
}

TEST(OffsetDriver, WhatTheVectorsHeldStays) {
  DoublePath out = Square(0.5, 0.5, 20000.25);
  const DoublePath before = out, source = Square(10000, 10000, 20000);
  Lumo::Offset::OffsetSettings settings(new Lumo::Round, nullptr, 1000, false);
  Lumo::CreateOffsetCurve(source.points.data(), source.types.data(), source.count(), out.points, out.types,
                          settings);
  ASSERT_GT(out.count(), before.count());
  for (int k = 0; k < before.count(); ++k) {
    EXPECT_EQ(out.points[static_cast<std::size_t>(k)], before.points[static_cast<std::size_t>(k)]);
    EXPECT_EQ(out.types[static_cast<std::size_t>(k)].value, before.types[static_cast<std::size_t>(k)].value);
  }
  const DoublePath full = out;
  Lumo::CreateOffsetCurve(static_cast<const DPoint*>(nullptr), source.types.data(), 5, out.points, out.types,
                          settings);
  Lumo::CreateOffsetCurve(source.points.data(), nullptr, 5, out.points, out.types, settings);
  Lumo::CreateOffsetCurve(source.points.data(), source.types.data(), 0, out.points, out.types, settings);
  EXPECT_EQ(out, full);
}

TEST(OffsetDriver, StrokesWithEachCap) {
  const DoublePath line = OpenLines({{0, 0}, {50000, 0}});
  const DoublePath butt = OffsetOf(line, 2000, With(new Lumo::Round, new Lumo::Bevel));
  EXPECT_EQ(butt.count(), 5);
  ExpectBox(butt, 0, -2000, 50000, 2000);
  EXPECT_EQ(OffsetOf(line, 2000, With(new Lumo::Round, new Lumo::NoCorner)).count(), 5)
      << "closed by straight lines";
  ExpectBox(OffsetOf(line, 2000, With(new Lumo::Round, new Lumo::OffsetBevel)), -2000, -2000, 52000, 2000);
  const DoublePath round = OffsetOf(line, 2000);
  ExpectBox(round, -2000, -2000, 52000, 2000);
  EXPECT_NEAR(AreaOf(round), 4000.0 * 50000 + std::acos(-1.0) * 4e6, 2e4);
  // A cap of its own at each end: the start square, the end butt.
  Lumo::Offset::OffsetSettings settings(new Lumo::Round, new Lumo::OffsetBevel, new Lumo::Bevel, 2000, false);
  DoublePath mixed;
  Lumo::CreateOffsetCurve(line.points.data(), line.types.data(), line.count(), mixed.points, mixed.types,
                          settings);
  ExpectBox(mixed, -2000, -2000, 50000, 2000);
}

TEST(OffsetDriver, StrokesThatCrossThemselvesAreClean) {
  const DoublePath cross = OpenLines({{0, 0}, {60000, 40000}, {60000, 0}, {0, 40000}});
  const DoublePath outline = OffsetOf(cross, 3000);
  EXPECT_TRUE(test::IsWellFormed(outline));
  EXPECT_EQ(CountSubpaths(outline), 2u) << "the outer outline and the enclosed triangle";
  const std::vector<test::Polyline> source = test::Flatten(cross, 1), to = test::Flatten(outline, 40);
  for (double x = -4000; x < 66000; x += 1700)
    for (double y = -4000; y < 46000; y += 1700) {
      const double distance = test::DistanceTo(source, {x, y});
      if (std::abs(distance - 3000) < 60) continue;
      EXPECT_EQ(test::WindingNumber(to, {x, y}) != 0, distance < 3000) << x << " " << y;
    }
}

TEST(OffsetDriver, OneSideOfAnOpenSubpath) {
  const DoublePath line = OpenLines({{0, 0}, {50000, 0}});
  OffsetOptions options;
  options.side = EOpenCurveOffsetSide::left;
  ExpectBox(OffsetOf(line, 2000, options), 0, 0, 50000, 2000);
  options = {};
  options.side = EOpenCurveOffsetSide::right;
  ExpectBox(OffsetOf(line, 2000, options), 0, -2000, 50000, 0);
  options = {};
  options.side = EOpenCurveOffsetSide::left;
  ExpectBox(OffsetOf(line, -2000, options), 0, -2000, 50000, 0);
  // Not closed: open curves, and both sides are two of them.
  options = {};
  options.close = false;
  const DoublePath open = OffsetOf(line, 2000, options);
  EXPECT_EQ(CountSubpaths(open), 2u);
  EXPECT_FALSE(open.types[0].IsClosed());
  ExpectBox(open, 0, -2000, 50000, 2000);
}

TEST(OffsetDriver, SliversOfOpenSubpathsAreDroppedWhateverTheDistance) {
  EXPECT_TRUE(OffsetOf(OpenLines({{0, 0}, {900, 0}}), 500, With(new Lumo::Round, new Lumo::Bevel)).empty());
  EXPECT_EQ(OffsetOf(OpenLines({{0, 0}, {1100, 0}}), 500, With(new Lumo::Round, new Lumo::Bevel)).count(), 5);
  EXPECT_EQ(OffsetOf(Square(0, 0, 2900), -1000).count(), 5) << "a closed inset may be as small";
}

TEST(OffsetDriver, OpenOffsetLosesTheLoopsOfTightBends) {
  const DoublePath zigzag = OpenLines({{0, 0}, {20000, 0}, {20000, 3000}, {0, 3000}, {0, 20000}});
  OffsetOptions options = With(new Lumo::Ray);
  options.close = false;
  options.side = EOpenCurveOffsetSide::left;
  const DoublePath result = OffsetOf(zigzag, 5000, options);
  ASSERT_FALSE(result.empty());
  const std::vector<test::Polyline> source = test::Flatten(zigzag, 1);
  for (const test::Polyline& line : test::Flatten(result, 10))
    for (std::size_t k = 0; k + 1 < line.points.size(); ++k)
      EXPECT_GT(test::DistanceTo(source, Midpoint(line.points[k], line.points[k + 1])), 4800);
}

TEST(OffsetDriver, CurvesThatLeaveTheirStartSlowlyHaveFewPieces) {
  // The parallel has a cusp so near the start that the part before it is a point.
  DoublePath path;
  path.Add(NODETYPE(0x04), {102800, 102800});
  path.Add(NODETYPE(0xC0), {102800, 102800});
  path.Add(NODETYPE(0xC0), {-10, -10});
  path.Add(NODETYPE(0x84), {2550, -10});
  for (const double distance : {0.2, -0.2}) {
    OffsetOptions options;
    options.close = false;
    options.error = 1;
    const DoublePath result = OffsetOf(path, distance, options);
    ASSERT_FALSE(result.empty());
    EXPECT_LT(result.count(), 50);
  }
}

TEST(OffsetDriver, CombiningTwoGroups) {
  const DoublePath both = Together({Square(0, 0, 20000), Square(10000, 0, 20000)});
  DoublePath united;
  Lumo::CombineClosedOffsetCurves(both.points.data(), both.types.data(), both.count(), united.points,
                                  united.types, 0, 5);
  EXPECT_EQ(CountSubpaths(united), 1u);
  EXPECT_NEAR(AreaOf(united), 30000.0 * 20000, 1);
  DoublePath odd;
  Lumo::CombineClosedOffsetCurves(both.points.data(), both.types.data(), both.count(), odd.points, odd.types,
                                  -7, 99);
  EXPECT_NEAR(AreaOf(odd), 30000.0 * 20000, 1) << "indices are cut to the path";
}

TEST(OffsetDriver, GapsThatNobodySeesAreClosedWithoutANode) {
  // Without a join the offset segments end apart, here by less than half a thousandth of the drawing.
  const DoublePath half = test::ParsePath<DPoint>(
      "M0,0 C0,500000 300000,900000 900000,900000 C1500000,900000 1800000,500000 1800000,0 L900000,-200000 "
      "Z");
  for (const DoublePath& path : {Square(0, 0, 2000000), half}) {
    const DoublePath grown = OffsetOf(path, 200, With(new Lumo::NoCorner));
    ASSERT_EQ(grown.count(), path.count()) << test::ToSvg(grown);
    for (std::size_t k = 0; k < path.points.size(); ++k)
      EXPECT_EQ(grown.types[k].Kind(), path.types[k].Kind()) << k;
    EXPECT_GT(AreaOf(grown), AreaOf(path));
  }
  EXPECT_GT(OffsetOf(Square(0, 0, 2000000), 20000, With(new Lumo::NoCorner)).count(), 5)
      << "a gap that shows";
}

TEST(OffsetDriver, NodesInTheMiddleOfAStraightSideLeaveNoTrace) {
  const DoublePath marked =
      ClosedPolygon({{0, 10000}, {0, 20000}, {7000, 20000}, {20000, 20000}, {20000, 0}, {9000, 0}, {0, 0}});
  for (const double offset : {2000.0, -2000.0}) {
    const DoublePath result = OffsetOf(marked, offset, With(new Lumo::Ray));
    EXPECT_TRUE(Lumo::IsValidCurve(result.types.data(), result.types.size()));
    EXPECT_EQ(result.count(), 5) << test::ToSvg(result);
    EXPECT_NEAR(AreaOf(result), (20000 + 2 * offset) * (20000 + 2 * offset), 1);
  }
}

TEST(OffsetDriver, NodesOnStraightSidesThatUnitingMakesGo) {
  const DoublePath cases[] = {
      // A start in the middle of a side.
      ClosedPolygon({{50000, 0}, {100000, 0}, {100000, 100000}, {0, 100000}, {0, 0}}),
      // A notch whose tip touches the side.
      ClosedPolygon({{50000, 0},
                     {100000, 0},
                     {100000, 100000},
                     {0, 100000},
                     {0, 0},
                     {50000, 0},
                     {40000, 30000},
                     {60000, 30000}}),
      // Starts inside what is united.
      Together(
          {ClosedPolygon({{50000, 30000}, {30000, 30000}, {30000, 60000}, {70000, 60000}, {70000, 30000}}),
           ClosedPolygon({{50000, 10000}, {30000, 10000}, {30000, 40000}, {70000, 40000}, {70000, 10000}})}),
      // Sides that lie flush.
      Together({Square(0, 0, 50000), Square(40000, 0, 50000), Square(85000, 0, 50000)})};
  for (const DoublePath& path : cases)
    for (const double offset : {1000.0, -1000.0})
      for (const test::Polyline& line : test::Flatten(OffsetOf(path, offset), 1)) {
        const std::size_t n = line.points.size() - 1;  // the last is the first again
        for (std::size_t k = 0; k < n; ++k) {
          const DVector u = line.points[k + 1] - line.points[k],
                        v = line.points[(k + 2) % n] - line.points[k + 1];
          EXPECT_FALSE(Dot(u, v) > 0 && std::abs(Cross(u, v)) < 0.1 * Length(u))
              << line.points[k + 1].x << " " << line.points[k + 1].y << " of\n"
              << test::ToSvg(path);
        }
        for (Lumo::OffsetCorner* corner : {static_cast<Lumo::OffsetCorner*>(new Lumo::Round),
                                           static_cast<Lumo::OffsetCorner*>(new Lumo::Ray)}) {
          const DoublePath result = OffsetOf(path, offset, With(corner));
          EXPECT_TRUE(Lumo::IsValidCurve(result.types.data(), result.types.size()));
        }
      }
}

TEST(OffsetDriver, ZeroDistanceGivesTheGround) {
  EXPECT_NEAR(AreaOf(OffsetOf(Square(0, 0, 20000, false), 0)), 4e8, 1);
}

TEST(OffsetDriver, UnusableInputGivesNothing) {
  DoublePath bad = Square(0, 0, 20000);
  bad.points[2].y = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(OffsetOf(bad, 1000).empty());
  EXPECT_TRUE(OffsetOf(Square(0, 0, 20000), std::numeric_limits<double>::infinity()).empty());
  EXPECT_TRUE(OffsetOf(Square(0, 0, 20000), std::numeric_limits<double>::quiet_NaN()).empty());
  DoublePath lone;
  lone.Add(NODETYPE(0x04), {5, 5});
  EXPECT_TRUE(OffsetOf(lone, 1000).empty());
}

TEST(OffsetMembers, OffsetCurveReplacesThePath) {
  const DoublePath square = Square(0, 0, 20000);
  PolycurveT<DPoint> path(square.points.data(), square.types.data(), square.points.size());
  const PolycurveT<DPoint> copy = path;
  const Lumo::Offset::OffsetSettings grow(new Lumo::Ray, nullptr, 1000, false);
  EXPECT_TRUE(path.OffsetCurve(grow));
  EXPECT_NEAR(path.GetArea(), 22000.0 * 22000, 1);
  EXPECT_NEAR(copy.GetArea(), 4e8, 1e-6) << "copies keep what they had";
  const Lumo::Offset::OffsetSettings vanish(new Lumo::Ray, nullptr, -50000, false);
  EXPECT_FALSE(path.OffsetCurve(vanish));
  EXPECT_TRUE(path.IsEmpty());
}

TEST(OffsetMembers, ParallelCurvesAreMultiplesNearestFirst) {
  const DoublePath line = OpenLines({{0, 0}, {50000, 0}, {50000, -50000}});
  const PolycurveT<DPoint> path(line.points.data(), line.types.data(), line.points.size());
  const PolycurveT<DPoint> all = path.CreateParallelCurves(1000, 3);
  ASSERT_EQ(all.GetSubpathCount(), 3u);
  for (std::size_t k = 0; k < 3; ++k)
    EXPECT_NEAR(all.GetSubpath(k).GetPoint(0).y, 1000.0 * static_cast<double>(k + 1), 1e-6);
  EXPECT_NEAR(path.CreateParallelCurve(-1000).GetPoint(0).y, -1000, 1e-6) << "the sign picks the side";
  EXPECT_NEAR(path.CreateParallelCurve(-1000).GetPoint(0).x, 0, 1e-6) << "in the source's direction";
  const PolycurveT<tagPOINT> integer(path);
  EXPECT_EQ(integer.CreateParallelCurve(1000).GetPoint(0).y, 1000);
}

TEST(OffsetMembers, PureCurveNeedsRequestAndPreference) {
  const DoublePath corner = OpenLines({{0, 0}, {50000, 0}, {50000, 50000}});
  const PolycurveT<DPoint> path(corner.points.data(), corner.types.data(), corner.points.size());
  const PolycurveT<DPoint> trimmed = path.CreateParallelCurve(5000);
  EXPECT_EQ(trimmed.GetPointCount(), 3u);
  EXPECT_EQ(path.CreateParallelCurve(5000, std::nullopt, true).GetPointCount(), 3u) << "not allowed";
  TavPref::AllowPureOffsetCurve().SetValue(true);
  const PolycurveT<DPoint> pure = path.CreateParallelCurve(5000, std::nullopt, true);
  EXPECT_EQ(pure.GetSubpathCount(), 2u) << "two loose lines";
  EXPECT_EQ(path.CreateParallelCurve(5000).GetPointCount(), 3u) << "not requested";

  const DoublePath hook = test::ParsePath<DPoint>("M0,0 L50000,0 C70000,0 90000,20000 90000,50000");
  PolycurveT<DPoint> bent(hook.points.data(), hook.types.data(), hook.points.size());
  for (const double distance : {5000.0, -5000.0}) {
    const PolycurveT<DPoint> side = bent.CreateParallelCurve(distance, std::nullopt, true);
    ASSERT_GE(side.GetPointCount(), 5u) << "the line and the curve";
    EXPECT_EQ(side.GetSubpathCount(), 1u) << "they meet where the source is smooth";
    EXPECT_NEAR(side.GetPoint(0).y, distance, 1e-6)
        << "in the source's direction, on the left for a positive distance";
    EXPECT_NEAR(side.GetPoint(side.GetPointCount() - 1).x, 90000 - distance, 1e-6);
    EXPECT_TRUE(side.IsValidCurve());
  }
  const DoublePath waves =
      test::ParsePath<DPoint>("M0,0 C20000,20000 40000,20000 60000,0 C80000,20000 99000,20000 120000,0");
  const PolycurveT<DPoint> cusp(waves.points.data(), waves.types.data(), waves.points.size());
  EXPECT_EQ(cusp.CreateParallelCurve(5000, std::nullopt, true).GetSubpathCount(), 2u) << "two loose curves";
  bent.SetPoint(2, {std::numeric_limits<double>::quiet_NaN(), 0});
  EXPECT_TRUE(bent.CreateParallelCurve(5000, std::nullopt, true).IsEmpty());
  TavPref::AllowPureOffsetCurve().SetValue(false);
}

}  // namespace
