#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

#include "lumo/crv_hit.h"
#include "support/generators.h"
#include "support/oracles.h"
#include "tav/math/cubic_bezier.h"

namespace {

using TavMath::DPoint;
using test::IntPath;

std::vector<double> Lengths(const IntPath& path) {
  std::vector<double> lengths(path.points.size(), -1);
  UTLGenerateNodeLengthArray(LUMO_ARRAYS(path), lengths.data());
  return lengths;
}

TEST(NodeLengths, RunOnOverMoveNodesAndSplitACurveAtItsFirstControlPoint) {
  const auto path = test::ParsePath<tagPOINT>("M0,0 L3,4 C4,4 7,4 8,4 M100,100 L100,110");
  const auto lengths = Lengths(path);
  const double expected[] = {0, 5, 5, 10, 10, 10, 20};
  for (std::size_t k = 0; k < lengths.size(); ++k) EXPECT_NEAR(lengths[k], expected[k], 1e-9) << k;
  UTLGenerateNodeLengthArray(LUMO_ARRAYS(path), nullptr);
}

TEST(NodeLengths, AgreeWithDensePolylines) {
  test::Bits bits(91);
  for (int round = 0; round < 100; ++round) {
    const IntPath path = test::RandomPath<tagPOINT>(bits);
    double expected = 0;
    for (const auto& line : test::Flatten(path, 2000))
      for (std::size_t k = 0; k + 1 < line.points.size(); ++k)
        expected += TavMath::Distance(line.points[k], line.points[k + 1]);
    EXPECT_NEAR(Lengths(path).back(), expected, 1e-4 * expected + 1e-9) << path;
  }
}

TEST(GotoLength, ComesBackToTheLength) {
  test::Bits bits(92);
  for (int round = 0; round < 150; ++round) {
    const IntPath path = test::RandomPath<tagPOINT>(bits);
    const auto lengths = Lengths(path);
    for (int k = 0; k < 10; ++k) {
      const double length = k == 0 ? 0 : k == 1 ? lengths.back() : bits.Unit() * lengths.back();
      tagPOINT out{};
      int end = -1;
      double t = -1;
      if (UTLFastGotoPathLength(LUMO_ARRAYS(path), lengths.data(), length, &out, &end, &t) == 0) {
        EXPECT_EQ(lengths.back(), 0);
        continue;
      }
      const bool line = path.type(end).IsLine();
      ASSERT_TRUE(line || path.type(end).IsCurve());
      ASSERT_TRUE(t >= 0 && t <= 1);
      const int start = end - (line ? 1 : 3);
      const DPoint exact = test::SegmentAt(path, end, t);
      DPoint p[4];
      for (int j = start; j <= end; ++j) p[j - start] = test::AsDouble(path.point(j));
      const double along = line ? TavMath::Distance(p[0], exact) : TavMath::CubicBezier::LengthTo(p, t);
      EXPECT_NEAR(lengths[static_cast<std::size_t>(start)] + along, length, 1e-8 * lengths.back() + 1e-9)
          << path;
      EXPECT_NEAR(out.x, exact.x, 0.5 + 1e-6);
      EXPECT_NEAR(out.y, exact.y, 0.5 + 1e-6);
    }
  }
}

TEST(GotoLength, ClampsAndSkipsWhatHasNoSegment) {
  const auto path = test::ParsePath<tagPOINT>("M9,9 M0,0 L10,0 M50,50 L50,60 M7,7");
  const auto lengths = Lengths(path);
  tagPOINT out{};
  int end = 0;
  double t = 0;
  const auto at = [&](double length) {
    return UTLFastGotoPathLength(LUMO_ARRAYS(path), lengths.data(), length, &out, &end, &t);
  };
  EXPECT_EQ(at(-5), 1);
  EXPECT_EQ(end, 2);
  EXPECT_EQ(out, (tagPOINT{0, 0}));
  EXPECT_EQ(at(13), 1);
  EXPECT_EQ(end, 4);
  EXPECT_EQ(out, (tagPOINT{50, 53}));
  EXPECT_EQ(at(1e300), 1);
  EXPECT_EQ(end, 4);
  EXPECT_EQ(t, 1);
  EXPECT_EQ(at(std::numeric_limits<double>::quiet_NaN()), 0);
  EXPECT_EQ(
      UTLFastGotoPathLength(path.points.data(), path.types.data(), 2, lengths.data(), 0, &out, &end, &t), 0)
      << "two lone moves";
  const std::vector<double> garbage(6, std::numeric_limits<double>::quiet_NaN());
  UTLFastGotoPathLength(path.points.data(), path.types.data(), 6, garbage.data(), 3, &out, nullptr, nullptr);
}

TEST(ClosestOnPath, AgreesWithDenseSampling) {
  test::Bits bits(93);
  for (int round = 0; round < 400; ++round) {
    const IntPath path = test::RandomPath<tagPOINT>(bits);
    const tagPOINT query = test::RandomPoint<tagPOINT>(bits, {});
    auto lines = test::Flatten(path, 500);
    std::erase_if(lines, [](const test::Polyline& line) { return line.points.size() < 2; });
    tagPOINT out{};
    int end = -1;
    double t = -1;
    const int found = UTLGetClosestPointOnPath(LUMO_ARRAYS(path), query, &out, &end, &t);
    ASSERT_EQ(found, !lines.empty()) << path;
    if (found == 0) continue;
    const DPoint q = test::AsDouble(query), exact = test::SegmentAt(path, end, t);
    EXPECT_NEAR(TavMath::Distance(exact, q), test::DistanceTo(lines, q), 0.05) << path;
    EXPECT_NEAR(out.x, exact.x, 0.5 + 1e-6);
    EXPECT_NEAR(out.y, exact.y, 0.5 + 1e-6);
  }
}

TEST(ClosestOnPath, TakesTheFirstOfEquallyNearOnesAndIgnoresLoneNodes) {
  const auto square = test::ParsePath<tagPOINT>("M5,5 M0,0 L10,0 L10,10 L0,10 Z M5,4");
  int end = -1;
  double t = -1;
  tagPOINT out{};
  ASSERT_EQ(UTLGetClosestPointOnPath(LUMO_ARRAYS(square), {5, 5}, &out, &end, &t), 1);
  EXPECT_EQ(end, 2);
  EXPECT_EQ(out, (tagPOINT{5, 0}));
  EXPECT_DOUBLE_EQ(t, 0.5);
  EXPECT_EQ(UTLGetClosestPointOnPath(square.points.data(), square.types.data(), 1, {5, 5}, &out, &end, &t),
            0);
  EXPECT_EQ(UTLGetClosestPointOnPath(nullptr, square.types.data(), 5, {5, 5}, &out, &end, &t), 0);
}

TEST(ClosestOnPath, AtTheFarEndsOfThePlane) {
  constexpr int low = -2147483647 - 1, high = 2147483647;
  const IntPath path{{{low, low}, {low, high}}, {0x04, 0x44}};
  tagPOINT out{};
  ASSERT_EQ(
      UTLGetClosestPointOnPath(path.points.data(), path.types.data(), 2, {high, 17}, &out, nullptr, nullptr),
      1);
  EXPECT_EQ(out, (tagPOINT{low, 17}));
}

}  // namespace
