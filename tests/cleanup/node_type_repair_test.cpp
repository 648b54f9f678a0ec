#include <gtest/gtest.h>

#include <set>

#include "lumo/repair.h"
#include "support/generators.h"
#include "support/guarded_array.h"
#include "support/oracles.h"
#include "support/point_types.h"

namespace {

using Bytes = std::vector<NODETYPE>;
using test::DPoint;

std::vector<int> Ints(const Bytes& types) { return {types.begin(), types.end()}; }
bool Valid(const Bytes& types) { return Lumo::IsValidCurve(types.data(), types.size()); }
Bytes Fixed(Bytes types) {
  Lumo::FixNodeTypes(types.data(), types.size());
  return types;
}

TEST(IsValidCurve, JudgesKindsAndFlags) {
  const struct {
    const char* what;
    Bytes types;
    bool valid;
  } cases[] = {
      {"empty", {}, true},
      {"lone move", {0x04}, true},
      {"lone closed move", {0x0C}, true},
      {"open line", {0x04, 0x44}, true},
      {"open curve, handle shown", {0x04, 0xC5, 0xC1, 0x84}, true},
      {"closed", {0x0C, 0x44, 0x48}, true},
      {"line first", {0x44}, false},
      {"curve first", {0xC0, 0xC0, 0x84}, false},
      {"one control", {0x04, 0x44, 0xC0, 0x84}, false},
      {"three controls", {0x04, 0xC0, 0xC0, 0xC0, 0x84}, false},
      {"control then move", {0x04, 0xC0, 0x04}, false},
      {"control last", {0x04, 0xC0, 0xC0}, false},
      {"line after a control", {0x04, 0xC0, 0x44}, false},
      {"closed control", {0x04, 0xC8, 0xC0, 0x84}, false},
      {"smooth control", {0x04, 0xC0, 0xD0, 0x84}, false},
      {"handle shown but not enabled", {0x04, 0xC4, 0xC0, 0x84}, false},
      {"closed at the start only", {0x0C, 0x44, 0x44}, false},
      {"closed at the end only", {0x04, 0x44, 0x48}, false},
      {"both closed ends user nodes", {0x0C, 0x44, 0x4C}, false},
      {"second subpath bad", {0x04, 0x44, 0x0C, 0x44}, false},
      {"an inner closed flag is not looked at", {0x04, 0x4C, 0x44}, true},
  };
  for (const auto& c : cases) EXPECT_EQ(Valid(c.types), c.valid) << c.what;
  EXPECT_TRUE(Lumo::IsValidCurve(nullptr, 0));
  EXPECT_FALSE(Lumo::IsValidCurve(nullptr, 3));
}

TEST(FixNodeTypes, BringsFlagsAndTheEndOfASubpathInOrder) {
  EXPECT_EQ(Ints(Fixed({0x04, 0xC0, 0xF1})), (std::vector<int>{0x04, 0xC0, 0x75}));
  EXPECT_EQ(Ints(Fixed({0x0C, 0x44, 0x4C})), (std::vector<int>{0x0C, 0x44, 0x48}));
  EXPECT_EQ(Ints(Fixed({0x08, 0x48, 0xC8, 0xC4, 0x80})), (std::vector<int>{0x0C, 0x44, 0xC0, 0xC4, 0x88}));
  // A lone closed move keeps its closed flag: it is a start, not the end of something.
  EXPECT_EQ(Ints(Fixed({0x08, 0x00, 0x48})), (std::vector<int>{0x0C, 0x04, 0x44}));
  // Without a start the subpath counts as open.
  EXPECT_EQ(Ints(Fixed({0x48, 0x48})), (std::vector<int>{0x44, 0x44}));
  // A curve end without handles is not mended, so the result is not valid.
  EXPECT_EQ(Ints(Fixed({0x04, 0xC0, 0xC0})), (std::vector<int>{0x04, 0xC0, 0x44}));
  EXPECT_FALSE(Valid(Fixed({0x04, 0xC0, 0xC0})));
}

TEST(FixNodeTypes, ReportsExactlyWhetherAByteChangedAndSettles) {
  test::Bits bits(2);
  int changes = 0;
  for (int k = 0; k < 2000; ++k) {
    Bytes types = test::RandomMalformedTypes(bits, 12);
    const Bytes before = types;
    const bool changed = Lumo::FixNodeTypes(types.data(), types.size());
    ASSERT_EQ(changed, Ints(before) != Ints(types));
    changes += changed;
    ASSERT_FALSE(Lumo::FixNodeTypes(types.data(), types.size()));
  }
  EXPECT_GT(changes, 100);
  EXPECT_FALSE(Lumo::FixNodeTypes(nullptr, 3));
}

LUMO_TYPED_SUITE(Repair);

LUMO_TYPED_TEST(Repair, ScrubRemovesMovesThatStartNothing) {
  test::Path<T> path{{{0, 0}, {1, 0}, {2, 0}, {3, 0}}, {0x00, 0x00, 0x40, 0x00}};
  EXPECT_EQ(test::After(path, 0, Lumo::ScrubDanglingMoves<T>, true),
            (test::Path<T>{{{1, 0}, {2, 0}}, {0x04, 0x44}}));
  EXPECT_EQ(Lumo::ScrubDanglingMoves<T>(nullptr, nullptr, 4, true), 0);
  EXPECT_EQ(Lumo::ScrubDanglingMoves(path.points.data(), path.types.data(), 0, true), 0);
}

LUMO_TYPED_TEST(Repair, ScrubHandsTheLetterOnOrClearsItEverywhere) {
  for (const bool keep : {true, false}) {
    test::Path<T> path{{{0, 0}, {1, 0}, {2, 0}, {3, 0}, {3, 0}}, {0x02, 0x00, 0x00, 0xC6, 0x4A}};
    Lumo::ScrubDanglingMoves(path.points.data(), path.types.data(), 5, keep);
    EXPECT_EQ(path.types[0], keep ? 0x06 : 0x04);
    EXPECT_EQ(path.types[1], keep ? 0xC2 : 0xC0);  // handles are hidden
    EXPECT_EQ(path.types[2], keep ? 0x4A : 0x48);
  }
}

LUMO_TYPED_TEST(Repair, ZeroLengthStepsOfAPolylineAreRemovedExactly) {
  std::vector<T> points{{0, 0}, {0, 0}, {1, 0}, {1, 0}, {1, 0}, {0, 0}};
  EXPECT_EQ(Lumo::RemoveZeroLengthSegments(points.data(), 5), 2u);
  EXPECT_EQ(points[1], (T{1, 0}));
  EXPECT_EQ(Lumo::RemoveZeroLengthSegments(points.data(), 0), 0u);
  EXPECT_EQ(Lumo::RemoveZeroLengthSegments(points.data(), 1), 1u);
  EXPECT_EQ(Lumo::RemoveZeroLengthSegments<T>(nullptr, 3), 0u);
  std::vector<DPoint> close{{0, 0}, {1e-300, 0}};
  EXPECT_EQ(Lumo::RemoveZeroLengthSegments(close.data(), 2), 2u) << "no tolerance";
}

TEST(CurveRepairSettings, DefaultsAndAccessors) {
  Lumo::CurveRepairSettings s;
  EXPECT_EQ(s.GetSmoothNodeAngleLimit(), 1.0);
  EXPECT_EQ(s.GetMinLineLength(), 10.0);
  EXPECT_EQ(s.GetMinBezierLength(), 10.0);
  EXPECT_TRUE(s.FixOverlappingHandles());
  EXPECT_EQ(s.GetOverlappingHandleOffset(), 0.004);
  EXPECT_FALSE(s.FixTightEndpointRadius());
  EXPECT_EQ(s.GetTightEndpointRadiusLimit(), 1.0);
  EXPECT_FALSE(s.SplitOverlappingBeziers());
  s.SetSmoothNodeAngleLimit(1), s.SetMinLineLength(2), s.SetMinBezierLength(3);
  s.SetFixOverlappingHandles(false), s.SetOverlappingHandleOffset(4), s.SetFixTightEndpointRadius(true);
  s.SetTightEndpointRadiusLimit(5), s.SetSplitOverlappingBeziers(true);
  Lumo::CurveRepairSettings t;
  t = s;
  EXPECT_EQ(std::set<double>({t.GetSmoothNodeAngleLimit(), t.GetMinLineLength(), t.GetMinBezierLength(),
                              t.GetOverlappingHandleOffset(), t.GetTightEndpointRadiusLimit()})
                .size(),
            5u);
  EXPECT_TRUE(!t.FixOverlappingHandles() && t.FixTightEndpointRadius() && t.SplitOverlappingBeziers());
}

}  // namespace
