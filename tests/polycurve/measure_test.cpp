#include "lumo/measure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "support/curves.h"
#include "support/oracles.h"
#include "support/point_types.h"
#include "tav/math/rect.h"

namespace {

using Lumo::ClosestPoint;
using Lumo::CurvePosition;
using TavMath::DPoint;
using test::AsDouble;

LUMO_TYPED_SUITE(Measure);

template <class T>
test::Path<T> RandomPath(std::uint64_t seed, test::PathOptions options = {}) {
  test::Bits bits(seed);
  return test::RandomPath<T>(bits, options);
}

TavMath::BoundsT<double> Bounds(const tagRECT& r) {
  return {static_cast<double>(r.left), static_cast<double>(r.top), static_cast<double>(r.right),
          static_cast<double>(r.bottom)};
}
TavMath::BoundsT<double> Bounds(const TavMath::BoundsT<double>& box) { return box; }

LUMO_TYPED_TEST(Measure, AreaOfClosedSubpathsIsPositiveClockwise) {
  const std::vector<T> square{{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}};
  const std::vector<NODETYPE> closed{0x0C, 0x44, 0x44, 0x44, 0x48}, open{0x04, 0x44, 0x44, 0x44, 0x44};
  EXPECT_EQ(Lumo::GetArea(square.data(), closed.data(), 5), -100);
  EXPECT_EQ(Lumo::GetArea(square.data(), open.data(), 5), 0) << "open subpaths enclose nothing";
  Lumo::PolycurveT<T> path(square.data(), closed.data(), 5);
  EXPECT_FALSE(path.IsClockwise());
  path.Reverse();
  EXPECT_EQ(path.GetArea(), 100);
  EXPECT_TRUE(path.IsClockwise());
  // No closing edge: from (0,10) round to (0,0) the edge that is missing is not a vertical one's zero.
  const std::vector<T> corners{{0, 10}, {0, 0}, {10, 0}, {10, 10}};
  EXPECT_EQ(Lumo::GetPolygonArea(corners.data(), 4), 0);
  EXPECT_EQ(Lumo::GetPolygonArea(corners.data(), 1), 0);
}

TEST(MeasureInteger, AreaWrapsSumsAndDifferencesAt32Bits) {
  const std::vector<tagPOINT> points{{0, 2000000000}, {10, 2000000000}};
  EXPECT_EQ(Lumo::GetPolygonArea(points.data(), 2),
            10 * 0.5 * static_cast<double>(4000000000LL - 4294967296LL));
}

LUMO_TYPED_TEST(Measure, AreaAndLengthAgreeWithADenselyFlattenedPath) {
  for (std::uint64_t seed = 0; seed < 60; ++seed) {
    const auto path = RandomPath<T>(seed);
    const auto lines = test::Flatten(path, 2000);
    double area = 0, length = 0;
    for (const auto& line : lines) {
      for (std::size_t k = 1; k < line.points.size(); ++k) {
        const DPoint a = line.points[k - 1], b = line.points[k];
        length += std::hypot(b.x - a.x, b.y - a.y);
        if (line.closed) area += (b.y + a.y) * (b.x - a.x) * 0.5;
      }
    }
    EXPECT_NEAR(Lumo::GetArea(LUMO_ARRAYS(path)), area, 5) << testing::PrintToString(path);
    EXPECT_NEAR(Lumo::GetLength(LUMO_ARRAYS(path)), length, 1e-5 * (1 + length))
        << testing::PrintToString(path);
  }
  const std::vector<T> zigzag{{0, 0}, {3, 4}, {3, 10}};
  EXPECT_EQ(Lumo::GetLength(zigzag.data(), 3), 11);
  EXPECT_EQ(Lumo::GetLength(zigzag.data(), 1), 0);
}

LUMO_TYPED_TEST(Measure, TightBoxIsTheBoxOfTheFlattenedPath) {
  const double slack = std::is_same_v<T, tagPOINT> ? 0.51 : 0.01;
  for (std::uint64_t seed = 0; seed < 60; ++seed) {
    // Beyond one step of the scan too.
    const test::PathOptions options{.maxSubpaths = seed % 3 == 0 ? 200 : 4};
    const auto path = RandomPath<T>(seed, options);
    TavMath::BoundsT<double> expected;
    for (const auto& line : test::Flatten(path, 400))
      for (const DPoint& p : line.points) expected.Add(p.x, p.y);
    const auto box = Bounds(Lumo::GetTightBBox(LUMO_ARRAYS(path)));
    EXPECT_NEAR(box.minx, expected.minx, slack) << testing::PrintToString(path);
    EXPECT_NEAR(box.miny, expected.miny, slack) << testing::PrintToString(path);
    EXPECT_NEAR(box.maxx, expected.maxx, slack) << testing::PrintToString(path);
    EXPECT_NEAR(box.maxy, expected.maxy, slack) << testing::PrintToString(path);
    EXPECT_TRUE(Bounds(Lumo::GetLooseBBox(path.points.data(), path.count())).Contains(box));
  }
}

LUMO_TYPED_TEST(Measure, BoxesOfNothingAreEmptyAndOutputsStayUntouched) {
  const std::vector<T> points{{1, 2}, {3, 4}};
  const std::vector<NODETYPE> types{0x04, 0x44};
  Lumo::BoxT<T> box = Lumo::GetLooseBBox(points.data(), 2);
  const auto before = box;
  EXPECT_FALSE(Lumo::GetTightBBox<T>(nullptr, types.data(), 2, box));
  EXPECT_FALSE(Lumo::GetTightBBox<T>(points.data(), nullptr, 2, box));
  EXPECT_FALSE(Lumo::GetTightBBox<T>(points.data(), types.data(), 0, box));
  EXPECT_FALSE(Lumo::GetTightEnabledBBox<T>(points.data(), types.data(), 2, box));
  EXPECT_EQ(Bounds(box), Bounds(before));
  EXPECT_EQ(Bounds(Lumo::GetTightBBox<T>(nullptr, types.data(), 2)),
            Bounds(TavMath::GetPointsBBox(points.data(), 0)));
}

LUMO_TYPED_TEST(Measure, EnabledBoxTakesSelectedNodesAndTheCurvesBetweenThem) {
  const std::vector<T> points{{0, 0}, {0, 40}, {40, 40}, {40, 0}, {100, 0}};
  std::vector<NODETYPE> types{0x05, 0xC0, 0xC0, 0x85, 0x44};
  Lumo::BoxT<T> box{};
  ASSERT_TRUE(Lumo::GetTightEnabledBBox(points.data(), types.data(), 5, box));
  const MATRIX quarterTurn{0, 1, -1, 0, 0, 0};
  const auto turned = Lumo::GetTightTransformedBBox(points.data(), types.data(), 5, quarterTurn);
  EXPECT_EQ(turned, (TavMath::BoundsT<double>{-30, 0, 0, 100}));
  EXPECT_EQ(Bounds(box), (TavMath::BoundsT<double>{0, 0, 40, 30})) << "the bulge counts";
  types[0] = 0x04;
  ASSERT_TRUE(Lumo::GetTightEnabledBBox(points.data(), types.data(), 5, box));
  EXPECT_EQ(Bounds(box), (TavMath::BoundsT<double>{40, 0, 40, 0}))
      << "a curve counts only with both of its ends";
  Lumo::PolycurveT<T> path(points.data(), types.data(), points.size());
  Lumo::BoxT<T> same{};
  ASSERT_TRUE(path.GetTightEnabledBBox(same));
  EXPECT_EQ(Bounds(same), Bounds(box));
  path.DisableAllNodes();
  EXPECT_FALSE(path.GetTightEnabledBBox(same));
  EXPECT_EQ(Bounds(same), Bounds(box)) << "nothing selected: left as it was";
}

LUMO_TYPED_TEST(Measure, PolygonTestCountsVerticesEdgesAndBothSides) {
  const std::vector<T> square{{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  const auto in = [&](double x, double y, bool surrounded, bool hit, bool* on = nullptr) {
    return Lumo::IsPointInPolygon(square.data(), 4, test::MakePoint<T>(x, y), surrounded, hit, on);
  };
  bool onVertex = true;
  EXPECT_TRUE(in(5, 5, false, false, &onVertex));
  EXPECT_FALSE(onVertex);
  EXPECT_TRUE(in(-1, 0, false, true, &onVertex)) << "outside, but a unit from a vertex";
  EXPECT_TRUE(onVertex);
  EXPECT_TRUE(in(11, 11, false, true)) << "a squared distance of exactly 2";
  EXPECT_FALSE(in(-2, 0, false, true));
  EXPECT_FALSE(in(5, 0, false, false)) << "level with the lower edge, which is not counted";
  EXPECT_TRUE(in(5, 10, false, false));
  // Both arms of a U: the gap between them is surrounded, but not inside.
  const std::vector<T> u{{0, 0}, {30, 0}, {30, 20}, {20, 20}, {20, 10}, {10, 10}, {10, 20}, {0, 20}};
  EXPECT_FALSE(Lumo::IsPointInPolygon(u.data(), 8, T{15, 15}, false, false, nullptr));
  EXPECT_TRUE(Lumo::IsPointInPolygon(u.data(), 8, T{15, 15}, true, false, nullptr));
  EXPECT_FALSE(Lumo::IsPointInPolygon(u.data(), 0, T{15, 15}, true, false, nullptr));
}

TEST(MeasureInteger, PolygonTestIsExactAtTheEndsOfTheRange) {
  constexpr int kMost = 2147483647, kLeast = -kMost - 1;
  const std::vector<tagPOINT> corner{{kLeast, kLeast}, {kMost, kMost}, {kLeast, kMost}};
  for (const int at : {kLeast + 1, -7, 0, kMost - 1}) {
    const auto in = [&](int x, int y) {
      return Lumo::IsPointInPolygon(corner.data(), 3, tagPOINT{x, y}, false, false, nullptr);
    };
    EXPECT_TRUE(in(at - 1, at));
    EXPECT_FALSE(in(at + 1, at));
  }
}

/// Compares the shape test, for the path and queries moved by (dx, dy), with the parity of the flattened path
/// where it stood; queries nearer to the outline than `margin` are left out. Counts what is outside and
/// inside.
template <class T>
void CompareShapeTest(test::Path<T> path, const test::PathOptions& options, std::uint64_t seed,
                      int levelWithNode, double dx, double dy, double margin, int counts[2]) {
  const auto lines = test::Flatten(path, 300);
  const auto moved = [dx, dy](const T& p) { return test::MakePoint<T>(p.x + dx, p.y + dy); };
  const std::vector<T> before = path.points;
  for (T& p : path.points) p = moved(p);
  test::Bits bits(seed);
  for (int k = 0; k < 50; ++k) {
    T query = test::RandomPoint<T>(bits, options);
    if (k % levelWithNode == 0) query.y = before[static_cast<std::size_t>(bits.Below(path.count()))].y;
    const DPoint q = AsDouble(query);
    if (test::DistanceTo(lines, q, true) < margin) continue;
    int crossings = 0;
    for (const auto& line : lines) crossings += test::WindingNumber({line}, q);
    const bool expected = crossings % 2 != 0;
    ++counts[expected];
    EXPECT_EQ(Lumo::IsPointInShape(LUMO_ARRAYS(path), moved(query)), expected)
        << testing::PrintToString(path) << " seed " << seed << " at " << q.x << ", " << q.y;
  }
}

LUMO_TYPED_TEST(Measure, ShapeTestAgreesWithTheParityOfTheFlattenedPath) {
  int counts[2] = {};
  for (std::uint64_t seed = 0; seed < 120; ++seed) {
    const test::PathOptions options{.maxSubpaths = seed % 4 == 0 ? 60 : 4};
    CompareShapeTest(RandomPath<T>(seed, options), options, seed + 1000, 5, 0, 0, 0.5, counts);
  }
  EXPECT_GT(counts[1], 500);
}

// Moved to a corner of the 32-bit plane a path keeps its shape to the bit, so the answers must be those of
// the path about the origin. Long paths, so that subpaths and curves lie across the steps of the scan.
LUMO_TYPED_TEST(Measure, ShapeTestAtTheEndsOfThePlaneIsThatOfTheSamePathAtTheOrigin) {
  test::PathOptions options{.range = 500, .whole = true};
  int counts[2] = {};
  for (std::uint64_t seed = 0; seed < 60; ++seed) {
    options.maxSubpaths = seed % 2 == 0 ? 3 : 40;
    const double corner = 2147483647.0 - 3 * options.range;  // a handle may lie three ranges out
    CompareShapeTest(RandomPath<T>(seed, options), options, seed + 2000, 2, seed % 4 < 2 ? corner : -corner,
                     seed % 3 < 2 ? corner : -corner, 0.05, counts);
  }
  EXPECT_GT(std::min(counts[0], counts[1]), 500);
}

LUMO_TYPED_TEST(Measure, APointOnTheOutlineIsInTheShape) {
  const auto path = test::ParsePath<T>("M0 0 L40 0 C40 40 0 40 0 0 Z");
  const auto in = [&](double x, double y, bool surrounded = false, bool hit = false) {
    return Lumo::IsPointInShape(LUMO_ARRAYS(path), test::MakePoint<T>(x, y), surrounded, hit);
  };
  for (const DPoint on : {DPoint{0, 0}, {40, 0}, {17, 0}, {20, 30}}) EXPECT_TRUE(in(on.x, on.y)) << on.x;
  EXPECT_FALSE(in(20, 31));
  EXPECT_FALSE(in(-1, 0));
  EXPECT_TRUE(in(-1, 0, false, true)) << "near a vertex";
  EXPECT_FALSE(in(20, 31, true, true));
}

LUMO_TYPED_TEST(Measure, ShapeTestWithSurroundedLooksAtBothSides) {
  const auto path = test::ParsePath<T>("M0 0 L10 0 L10 50 L0 50 Z M30 0 C60 20 60 30 30 50 Z");
  const auto in = [&](double x, double y, bool surrounded) {
    return Lumo::IsPointInShape(LUMO_ARRAYS(path), test::MakePoint<T>(x, y), surrounded);
  };
  EXPECT_FALSE(in(20, 25, false));
  EXPECT_TRUE(in(20, 25, true));
  EXPECT_FALSE(in(-5, 25, true));
  EXPECT_FALSE(in(90, 25, true));
}

LUMO_TYPED_TEST(Measure, NearestPointIsTheNearestOfTheFlattenedPath) {
  int found = 0;
  for (std::uint64_t seed = 0; seed < 120; ++seed) {
    const test::PathOptions options{.maxSubpaths = seed % 4 == 0 ? 100 : 4, .loneMoves = false};
    const auto path = RandomPath<T>(seed, options);
    const auto lines = test::Flatten(path, 500);
    test::Bits bits(seed + 1000);
    for (int k = 0; k < 10; ++k) {
      const T query = test::RandomPoint<T>(bits, options);
      ClosestPoint<T, CurvePosition> result;
      if (!Lumo::FindClosestPoint(LUMO_ARRAYS(path), query, result)) continue;
      ++found;
      EXPECT_NEAR(std::sqrt(result.distanceSqrd), test::DistanceTo(lines, AsDouble(query)), 0.02)
          << testing::PrintToString(path);
      const CurvePosition at = result.position;
      ASSERT_TRUE(at.lastNode - at.firstNode == 1 || at.lastNode - at.firstNode == 3);
      T point{};
      ASSERT_TRUE(test::ToCurve(path).GetPointAt(at, point));
      EXPECT_NEAR(point.x, result.point.x, 1e-6);
      EXPECT_NEAR(point.y, result.point.y, 1e-6);
    }
  }
  EXPECT_GT(found, 900);
}

LUMO_TYPED_TEST(Measure, OfEquallyNearPointsTheFirstInPathOrderWins) {
  const auto path = test::ParsePath<T>("M0 0 L0 10 M20 10 L20 0 M0 0 L0 10");
  ClosestPoint<T, CurvePosition> result;
  ASSERT_TRUE(Lumo::FindClosestPoint(LUMO_ARRAYS(path), T{10, 5}, result));
  EXPECT_EQ(result.position.firstNode, 0);
  EXPECT_EQ(result.distanceSqrd, 100);
  EXPECT_FALSE(Lumo::FindClosestPoint(path.points.data(), path.types.data(), 1, T{10, 5}, result));
  EXPECT_EQ(result.position.lastNode, -1);
}

}  // namespace
