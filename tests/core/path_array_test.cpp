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

}  // namespace
