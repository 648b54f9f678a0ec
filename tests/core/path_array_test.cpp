#include "lumo/path_array.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<int> Bytes(const std::vector<NODETYPE>& types) { return {types.begin(), types.end()}; }

TEST(Reverse, MovesTheUserFlagOfAClosedSubpathBackToItsStart) {
  std::vector<tagPOINT> points{{0, 0}, {10, 0}, {10, 10}, {0, 0}};
  std::vector<NODETYPE> types{0x0C, 0x44, 0x44, 0x48};
  Lumo::Reverse(points.data(), types.data(), 4);
  EXPECT_EQ(Bytes(types), (std::vector<int>{0x0C, 0x44, 0x44, 0x48}));
  EXPECT_EQ(points[1], (tagPOINT{10, 10}));
}

TEST(Reverse, RederivesKindsFromTheSegmentThatNowEndsAtANode) {
  std::vector<TavMath::DPoint> points{{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}};
  std::vector<NODETYPE> types{0x04, 0xC0, 0xC0, 0x84, 0x44};
  Lumo::Reverse(points.data(), types.data(), 4, 0);  // the two indices in either order
  EXPECT_EQ(Bytes(types), (std::vector<int>{0x04, 0x44, 0xC0, 0xC0, 0x84}));
  EXPECT_EQ(points[0], (TavMath::DPoint{4, 0}));
  Lumo::Reverse(points.data(), types.data(), 5);
  EXPECT_EQ(Bytes(types), (std::vector<int>{0x04, 0xC0, 0xC0, 0x84, 0x44}));
}

TEST(PathArray, OpensAndClosesGapsOverItself) {
  const std::vector<int> before{0x04, 0xC0, 0xC1, 0x84, 0x44, 0x45, 0x46};
  std::vector<NODETYPE> types(before.begin(), before.end());
  std::vector<tagPOINT> points;
  for (int k = 0; k < 7; ++k) points.push_back({k, -k});
  PathInsNext(types.data(), points.data(), 1, 2, 5);
  EXPECT_EQ(Bytes(types), (std::vector<int>{0x04, 0xC0, 0xC1, 0xC0, 0xC1, 0x84, 0x44}));
  EXPECT_EQ(points[6], (tagPOINT{4, -4}));
  PathDelNext(types.data(), points.data(), 1, 2, 7);
  EXPECT_EQ(Bytes(types), (std::vector<int>{0x04, 0xC0, 0xC1, 0x84, 0x44, 0x84, 0x44}));
  Lumo::MovePath(points.data(), types.data(), 1, 0, 4);
  EXPECT_EQ(Bytes(types), (std::vector<int>{0x04, 0x04, 0xC0, 0xC1, 0x84, 0x84, 0x44}));
  EXPECT_EQ(points[4], (tagPOINT{3, -3}));
  Lumo::MovePath(points.data(), types.data(), 0, 1, 4);
  EXPECT_EQ(Bytes(types), (std::vector<int>{0x04, 0xC0, 0xC1, 0x84, 0x84, 0x84, 0x44}));
  // No source: a null literal needs no cast to say so.
  Lumo::CopyPath(points.data(), types.data(), 0, nullptr, nullptr, 0, 3);
  EXPECT_EQ(points[1], (tagPOINT{1, -1}));
}

}  // namespace
