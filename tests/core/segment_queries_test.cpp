#include <gtest/gtest.h>

#include <climits>

#include "lumo/crv_navigation.h"
#include "support/generators.h"
#include "support/guarded_array.h"
#include "support/oracles.h"

namespace {

using TavMath::DPoint;

TEST(PointOnCurve, OfAnIntegerLineRoundsTheDeltaNotTheSum) {
  const tagPOINT points[] = {{-1, 0}, {0, -1}};
  const NODETYPE types[] = {0x04, 0x44};
  tagPOINT out{};
  ASSERT_EQ(CRV_GetPointOnCurve(&out, points, types, 1, 0.5), 1);
  EXPECT_EQ(out, (tagPOINT{0, -1})) << "-1 + round(0.5), not round(-0.5)";
  const tagPOINT wide[] = {{INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}};
  CRV_GetPointOnCurve(&out, wide, types, 1, 1.0);
  EXPECT_EQ(out, wide[1]);
  CRV_GetPointOnCurve(&out, wide, types, 1, 9.0);
  EXPECT_EQ(out, wide[1]) << "saturates";
}

TEST(PointOnCurve, FollowsTheCubicOfBothPointTypes) {
  test::Bits bits(41);
  const NODETYPE types[] = {0x04, 0xC0, 0xC0, 0x84};
  for (int round = 0; round < 300; ++round) {
    DPoint cubic[4];
    tagPOINT whole[4];
    for (int k = 0; k < 4; ++k) {
      whole[k] = test::RandomPoint<tagPOINT>(bits, {});
      cubic[k] = test::MakePoint<DPoint>(whole[k].x, whole[k].y);
    }
    const double t = bits.Unit();
    const DPoint expected = test::BezierAt(cubic, t);
    DPoint exact{};
    tagPOINT rounded{};
    ASSERT_EQ(CRV_GetPointOnCurve(&exact, cubic, types, 3, t), 1);
    ASSERT_EQ(CRV_GetPointOnCurve(&rounded, whole, types, 3, t), 1);
    EXPECT_NEAR(exact.x, expected.x, 1e-9);
    EXPECT_NEAR(exact.y, expected.y, 1e-9);
    EXPECT_NEAR(rounded.x, expected.x, 0.5 + 1e-9);
    EXPECT_NEAR(rounded.y, expected.y, 0.5 + 1e-9);
  }
}

TEST(PointOnCurve, LeavesTheOutputAloneElsewhere) {
  const tagPOINT points[] = {{1, 1}, {2, 2}, {3, 3}};
  for (const NODETYPE byte : {NODETYPE(0x00), NODETYPE(0x40), NODETYPE(0x80), NODETYPE(0xC0)}) {
    const NODETYPE types[] = {byte, 0xC0, 0x84};
    for (const int i : {-1, 0, 1, 2}) {
      tagPOINT out{7, 7};
      EXPECT_EQ(CRV_GetPointOnCurve(&out, points, types, i, 0.5), 0);
      EXPECT_EQ(out, (tagPOINT{7, 7}));
    }
  }
  const NODETYPE line[] = {0x04, 0x44};
  EXPECT_EQ(CRV_GetPointOnCurve(nullptr, points, line, 1, 0.5), 0);
}

TEST(ShortSegments, AreThoseWithEveryPointWithinTheTolerance) {
  const auto path = test::ParsePath<tagPOINT>("M0,0 L3,4 C3,4 6,8 3,4 L3,4");
  const auto isShort = [&](int i, int tolerance) {
    return CRV_SegmentIsShort(LUMO_ARRAYS(path), i, tolerance);
  };
  EXPECT_EQ(isShort(1, 5), 1) << "the limit itself passes";
  EXPECT_EQ(isShort(1, 4), 0);
  EXPECT_EQ(isShort(4, 5), 1);
  EXPECT_EQ(isShort(4, 4), 0) << "one control point away is enough";
  EXPECT_EQ(isShort(5, 0), 1) << "tolerance 0: all points coincide";
  EXPECT_EQ(isShort(1, 65536), 0) << "the square wraps to 0 in 32 bits";
  EXPECT_EQ(isShort(5, 46341), 0) << "the square wraps to a negative limit";
  for (const int i : {-1, 0, 2, 3, 6}) EXPECT_EQ(isShort(i, 100), 0);
}

TEST(CloseSegments, ByDirection) {
  const auto path = test::ParsePath<DPoint>(
      "M0,0 L10,0 M0,1 L10,1 M10,1 L0,1 M0,0 C1,5 9,5 10,0 M10,1 C9,6 1,6 0,1 M0,0 C1,5 9,5 10,0");
  const auto close = [&](int a, int b, int direction) {
    return CRV_SegmentsAreClose(LUMO_ARRAYS(path), a, b, 1, direction);
  };
  const struct {
    int a, b, same, opposite;
  } cases[] = {{1, 3, 1, 0}, {1, 5, 0, 1}, {9, 13, 0, 1}, {9, 17, 1, 0}, {1, 9, 0, 0}, {9, 9, 1, 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(close(c.a, c.b, 1), c.same);
    EXPECT_EQ(close(c.a, c.b, -1), c.opposite);
    EXPECT_EQ(close(c.a, c.b, 0), c.same || c.opposite);
    EXPECT_EQ(close(c.a, c.b, 2), 0) << "no such direction";
  }
  for (const int i : {-1, 0, 7, 18}) EXPECT_EQ(close(i, i, 0), 0) << "ends no segment";
}

TEST(SegmentQueries, StayInsideMalformedArrays) {
  test::Bits bits(42);
  for (int round = 0; round < 500; ++round) {
    const test::GuardedPath<tagPOINT> path(test::RandomMalformedPath<tagPOINT>(bits, 8));
    for (int i = -1; i <= path.count; ++i) {
      tagPOINT out{};
      if (i < path.count) CRV_GetPointOnCurve(&out, path.points.data(), path.types.data(), i, bits.Unit());
      CRV_SegmentIsShort(path.points.data(), path.types.data(), path.count, i, bits.Below(1 << 30));
      CRV_SegmentsAreClose(path.points.data(), path.types.data(), path.count, i, path.count - 1, 50, 0);
    }
  }
}

}  // namespace
