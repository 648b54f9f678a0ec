#include "boolean/winding_filter.h"

#include <gtest/gtest.h>

#include "support/path_builder.h"

namespace {

using Lumo::Planar::KeepByWinding;
using Lumo::Planar::WindingRule;
using TavMath::DPoint;

struct Filtered {
  std::vector<DPoint> points;
  std::vector<NODETYPE> types;
};

Filtered Filter(const test::Path<DPoint>& path, WindingRule rule) {
  Filtered out;
  EXPECT_TRUE(
      KeepByWinding({path.points.data(), path.types.data(), path.count()}, rule, out.points, out.types));
  return out;
}

TEST(KeepByWinding, DropsTheLoopThatRunsTheOtherWay) {
  // A bow tie: the left half clockwise, the right half counter-clockwise.
  const auto bow = test::ParsePath<DPoint>("M0 0 L0 20 L40 0 L40 20 Z");
  const Filtered positive = Filter(bow, WindingRule::positive);
  EXPECT_EQ(positive.points, (std::vector<DPoint>{{0, 0}, {0, 20}, {20, 10}, {0, 0}}));
  const Filtered negative = Filter(bow, WindingRule::negative);
  ASSERT_EQ(negative.points.size(), 4u);
  EXPECT_EQ(Filter(bow, WindingRule::nonZero).points.size(), 8u);
}

TEST(KeepByWinding, KeepsACleanOutlineBitForBit) {
  const auto path = test::ParsePath<DPoint>("M0 0 C0 10 10 20 20 20 L20 0 Z");
  const Filtered out = Filter(path, WindingRule::positive);
  EXPECT_EQ(out.points, path.points);
  EXPECT_EQ(out.types, path.types);
}

}  // namespace
