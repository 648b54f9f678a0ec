#include "lumo/segment_list.h"

#include <gtest/gtest.h>

#include "support/path_builder.h"

namespace {

TEST(SegmentList, GivesBackTheNodesItWasMadeFrom) {
  const auto path =
      test::ParsePath<TavMath::DPoint>("M0,0 L10,0 e C10,5 5,10 0,10 s L0,0 Z M20,20 M30,0 C1,2 3,4 5,6");
  const Lumo::CSegmentList list(LUMO_ARRAYS(path));
  EXPECT_EQ(list.SubpathCount(), 3u);
  EXPECT_EQ(list.size(), 4u);
  EXPECT_EQ(list.SubpathEnd(1), list.GetSubpath(1).firstSegment) << "a lone move holds no segment";
  EXPECT_EQ(list[1].Kind(), Lumo::CSegment::kCurve);
  EXPECT_EQ(list[1].StartPoint(), list[0].EndPoint());
  test::DoublePath back;
  list.AppendTo(back.points, back.types);
  EXPECT_EQ(back, path);
}

TEST(SegmentList, LeavesOutWhatIsNoSegment) {
  const tagPOINT points[] = {{9, 9}, {0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}};
  // A line before any move; a curve with one control point only; a control point at the end.
  const NODETYPE types[] = {0x44, 0x04, 0xC0, 0x84, 0x44, 0xC0};
  const Lumo::CSegmentList list(points, types, 6);
  ASSERT_EQ(list.size(), 1u);
  EXPECT_EQ(list[0].StartPoint(), (TavMath::DPoint{0, 0}));
  EXPECT_EQ(list[0].EndPoint(), (TavMath::DPoint{3, 3}));
}

}  // namespace
