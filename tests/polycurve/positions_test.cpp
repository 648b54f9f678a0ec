#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

#include "support/cubic_oracles.h"
#include "support/curves.h"
#include "support/oracles.h"
#include "support/point_types.h"

namespace {

using Lumo::CurvePosition;
using Lumo::PolycurveT;
using TavMath::DPoint;
using TavMath::Side;
using test::ParseCurve;

LUMO_TYPED_SUITE(Positions);

template <class T>
PolycurveT<T> Random(std::uint64_t seed) {
  test::Bits bits(seed);
  return test::ToCurve(test::RandomPath<T>(bits));
}

// What a search finds and what a position may name are the same segments, also where nodes are out of place.
LUMO_TYPED_TEST(Positions, EveryPlaceFoundOnAnyArraysIsAPositionOfThem) {
  int found = 0, none = 0;
  for (std::uint64_t seed = 0; seed < 4000; ++seed) {
    test::Bits bits(seed);
    const auto nodes = test::RandomMalformedPath<T>(bits, seed % 50 == 0 ? 300 : 12);
    const PolycurveT<T> path = test::ToCurve(nodes);
    const T query = test::RandomPoint<T>(bits, {});
    typename PolycurveT<T>::Closest nearest, farthest;
    const bool any = path.FindClosestPoint(query, nearest);
    const auto all = path.FindClosestPoints(query);
    ASSERT_EQ(any, !all.empty()) << testing::PrintToString(nodes);
    ASSERT_EQ(any, path.FindFarthestPoint(query, farthest));
    ++(any ? found : none);
    if (!any) continue;
    T at;
    ASSERT_TRUE(path.GetPointAt(nearest.position, at)) << testing::PrintToString(nodes);
    EXPECT_EQ(at, nearest.point) << testing::PrintToString(nodes);
    EXPECT_TRUE(path.GetPointAt(farthest.position, at)) << testing::PrintToString(nodes);
    for (const auto& place : all) EXPECT_TRUE(path.GetPointAt(place.position, at));
    const auto middle = path.GetPositionAtRelativeLength(0.5);
    ASSERT_TRUE(middle) << testing::PrintToString(nodes);
    EXPECT_TRUE(path.GetPointAt(*middle, at)) << testing::PrintToString(nodes);
  }
  EXPECT_GT(found, 500);
  EXPECT_GT(none, 50);
}

/// The length up to a position, and of the whole path without one, in long doubles.
template <class T>
long double LengthTo(const PolycurveT<T>& path, const CurvePosition* position) {
  long double sum = 0;
  for (std::size_t k = 1; k < path.GetPointCount(); ++k) {
    const NODETYPE type = path.GetNodeType(k);
    if (type.IsMove() || type.IsControl()) continue;
    const std::size_t first = type.IsLine() ? k - 1 : k - 3;
    const bool last = position && position->firstNode == static_cast<int>(first);
    const long double t = last ? position->t : 1;
    TavMath::Cubic c;
    for (std::size_t j = 0; j < 4; ++j) {
      c[j] = test::AsDouble(path.GetPoint(type.IsLine() ? (j < 2 ? first : k) : first + j));
    }
    const auto dx = static_cast<long double>(c[3].x) - c[0].x, dy = static_cast<long double>(c[3].y) - c[0].y;
    sum += type.IsLine() ? t * std::hypot(dx, dy) : t > 0 ? LumoTest::LengthOracle(c).Over(0, t) : 0;
    if (last) break;
  }
  return sum;
}

LUMO_TYPED_TEST(Positions, AtALengthAndBackAgreeWithExtendedPrecision) {
  int checked = 0;
  for (std::uint64_t seed = 0; seed < 100; ++seed) {
    const auto path = Random<T>(seed);
    const double total = path.GetLength();
    if (!(total > 0)) continue;
    EXPECT_NEAR(total, static_cast<double>(LengthTo(path, nullptr)), 1e-9 * total) << seed;
    for (int k = 0; k <= 10; ++k) {
      const auto position = path.GetPositionAtLength(total * k / 10);
      ASSERT_TRUE(position);
      EXPECT_NEAR(static_cast<double>(LengthTo(path, &*position)), total * k / 10, 1e-9 * total) << seed;
      EXPECT_NEAR(path.GetLengthAlongCurveTo(*position), total * k / 10, 1e-9 * total);
      EXPECT_NEAR(path.GetLengthFrom(*position), total - total * k / 10, 1e-9 * total);
      ++checked;
    }
  }
  EXPECT_GT(checked, 500);
  const auto line = ParseCurve<T>("M0,0 L10,0 L10,10");
  EXPECT_EQ(line.GetPositionAtLength(1e9)->lastNode, 2);
  EXPECT_EQ(line.GetPositionAtLength(1e9)->t, 1);
  EXPECT_EQ(line.GetPositionAtLength(-5)->firstNode, 0);
  EXPECT_EQ(line.GetPositionAtLength(-5)->t, 0);
  EXPECT_EQ(line.GetPositionAtRelativeLength(0.75)->t, 0.5);
  EXPECT_FALSE(line.GetPositionAtLength(std::nan("")));
  EXPECT_FALSE(PolycurveT<T>().GetPositionAtLength(0));
  EXPECT_EQ(line.GetLengthFrom({0, 2, 0.5}), 0) << "no position of the path";
}

LUMO_TYPED_TEST(Positions, EvenlySpacedPointsLieAtEqualLengths) {
  for (std::uint64_t seed = 0; seed < 60; ++seed) {
    test::Bits bits(seed);
    const test::PathOptions options{.maxSubpaths = 1, .loneMoves = false};
    const auto nodes = test::RandomPath<T>(bits, options);
    const PolycurveT<T> path = test::ToCurve(nodes);
    const std::size_t n = 2 + static_cast<std::size_t>(bits.Below(20));
    const auto points = path.GetEvenlySpacedPoints(n);
    ASSERT_EQ(points.size(), n);
    const double total = path.GetLength(), gaps = static_cast<double>(path.IsClosed(0) ? n : n - 1);
    for (std::size_t k = 0; k < n; ++k) {
      T expected{};
      ASSERT_TRUE(
          path.GetPointAt(*path.GetPositionAtLength(total * static_cast<double>(k) / gaps), expected));
      EXPECT_NEAR(points[k].x, expected.x, 1e-9 * total + (std::is_same_v<T, tagPOINT> ? 1 : 0));
      EXPECT_NEAR(points[k].y, expected.y, 1e-9 * total + (std::is_same_v<T, tagPOINT> ? 1 : 0));
    }
    EXPECT_EQ(points.front(), path.GetPoint(0));
    if (!path.IsClosed(0)) {
      EXPECT_EQ(points.back(), path.GetPoint(path.GetPointCount() - 1));
    }
  }
  EXPECT_EQ(ParseCurve<T>("M0,0 L10,0").GetEvenlySpacedPoints(1).size(), 1u);
  EXPECT_TRUE(ParseCurve<T>("M0,0").GetEvenlySpacedPoints(5).empty());
  EXPECT_TRUE(ParseCurve<T>("M0,0 L10,0").GetEvenlySpacedPoints(SIZE_MAX).empty());
}

LUMO_TYPED_TEST(Positions, DividingEquallyAddsNodesAndKeepsTheShape) {
  for (std::uint64_t seed = 0; seed < 40; ++seed) {
    auto path = Random<T>(seed);
    const double total = path.GetLength();
    if (!(total > 100)) continue;
    const auto before = path;
    ASSERT_TRUE(path.DivideEqually(7));
    EXPECT_TRUE(test::IsWellFormed(test::ToPath(path)));
    const double slack = std::is_same_v<T, tagPOINT> ? 40.0 : 1e-6 * total;
    EXPECT_NEAR(path.GetLength(), total, slack);
    for (int k = 1; k < 7; ++k) {
      T expected{};
      ASSERT_TRUE(before.GetPointAt(*before.GetPositionAtLength(total * k / 7), expected));
      double nearest = 1e300;
      for (std::size_t i = 0; i < path.GetPointCount(); ++i) {
        if (path.GetNodeType(i).IsControl()) continue;
        nearest = std::min(nearest, std::hypot(1.0 * path.GetPoint(i).x - expected.x,
                                               1.0 * path.GetPoint(i).y - expected.y));
      }
      EXPECT_LE(nearest, 1e-6 * total + (std::is_same_v<T, tagPOINT> ? 1.5 : 0));
    }
    if constexpr (std::is_same_v<T, DPoint>) {
      const std::size_t nodes = path.GetPointCount();
      ASSERT_TRUE(path.DivideEqually(7));
      EXPECT_EQ(path.GetPointCount(), nodes) << "it is divided already";
    }
  }
  EXPECT_FALSE(ParseCurve<T>("M0,0 L10,0").DivideEqually(SIZE_MAX));
}

LUMO_TYPED_TEST(Positions, TangentsAreUnitVectorsAlongThePath) {
  const auto path = ParseCurve<T>("M0,0 L30,40 C30,40 60,40 60,80");
  const auto along = path.GetTangentAt({0, 1, 0.5});
  EXPECT_DOUBLE_EQ(along.x, 0.6);
  EXPECT_DOUBLE_EQ(path.GetTangentAt({0, 1, 0.5}, true).y, -0.8);
  EXPECT_DOUBLE_EQ(path.GetTangentAt({1, 4, 0}).x, 1) << "the first handle lies on its node";
  EXPECT_EQ(path.GetTangentAt({1, 2, 0}), (TavMath::DVector{0, 0}));
}

LUMO_TYPED_TEST(Positions, SidesFollowTheDirectionAlsoAtCorners) {
  const auto path = ParseCurve<T>("M0,0 L100,0 L100,100");
  EXPECT_EQ(path.GetSide(T{50, 10}), Side::left);
  EXPECT_EQ(path.OnLeftOrRight(T{50, -10}), Side::right);
  EXPECT_EQ(path.GetSide(T{130, -30}), Side::right) << "outside the corner";
  EXPECT_EQ(path.GetSide(T{101, -30}), Side::right);
  EXPECT_EQ(path.GetSide(T{130, -1}), Side::right);
  EXPECT_EQ(path.GetSide(T{50, 0}), Side::none);
  const auto ring = ParseCurve<T>("M0,0 L100,0 L100,100 L0,100 Z");
  EXPECT_EQ(ring.GetSide(T{-10, -20}), Side::right) << "at the corner where the ring closes";
  EXPECT_EQ(ring.GetSide(T{10, 20}), Side::left);
}

LUMO_TYPED_TEST(Positions, AllEquallyNearPointsAreFoundOnceEach) {
  const auto ring = ParseCurve<T>("M0,0 L100,0 L100,100 L0,100 Z");
  EXPECT_EQ(ring.FindClosestPoints(T{50, 50}).size(), 4u);
  const auto corner = ring.FindClosestPoints(T{-30, -40});
  ASSERT_EQ(corner.size(), 1u) << "both closed ends are one place";
  EXPECT_EQ(corner[0].distanceSqrd, 2500);
  EXPECT_EQ(ring.FindClosestPoints(T{130, 140}).size(), 1u);
  const auto circle = PolycurveT<T>::CreateCircle(T{0, 0}, 1000);
  EXPECT_GE(circle.FindClosestPoints(T{0, 0}).size(), 4u);
  EXPECT_TRUE(PolycurveT<T>().FindClosestPoints(T{0, 0}).empty());
}

LUMO_TYPED_TEST(Positions, TheFarthestPointIsThatOfTheFlattenedPath) {
  for (std::uint64_t seed = 0; seed < 60; ++seed) {
    test::Bits bits(seed);
    const test::PathOptions options{.loneMoves = false};
    const auto nodes = test::RandomPath<T>(bits, options);
    const PolycurveT<T> path = test::ToCurve(nodes);
    const auto query = test::RandomPoint<T>(bits, options);
    double expected = 0;
    for (const auto& line : test::Flatten(nodes, 500)) {
      for (const DPoint& p : line.points)
        expected = std::max(expected, std::hypot(p.x - query.x, p.y - query.y));
    }
    typename PolycurveT<T>::Closest farthest;
    ASSERT_TRUE(path.FindFarthestPoint(query, farthest));
    EXPECT_NEAR(std::sqrt(farthest.distanceSqrd), expected, 0.05) << testing::PrintToString(nodes);
  }
}

}  // namespace
