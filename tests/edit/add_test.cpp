#include <gtest/gtest.h>

#include <limits>

#include "edit/slow_edit.h"
#include "lumo/repair.h"

namespace {

using test::After;
using test::DPoint;
using test::GuardedPath;
using test::ParsePath;
using test::Path;

LUMO_TYPED_SUITE(Add);

/// The path with one segment split, in arrays of so much room.
template <class T>
Path<T> Split(const Path<T>& path, int room, int index, double t, int smooth) {
  return After(path, room,
               [&](T* p, NODETYPE* types, int n) { return n + CRV_Add(p, types, n, index, t, smooth); });
}

TEST(AddRoom, NumbersAMoveNodeAsALine) {
  EXPECT_EQ(CRV_NeedGrowForAddNodeOfType(0), 1) << "although nothing is inserted there";
  EXPECT_EQ(CRV_NeedGrowForAddNodeOfType(1), 1);
  EXPECT_EQ(CRV_NeedGrowForAddNodeOfType(2), 3);
  for (const int kind : {3, 4, -1, 0x40, 0x80}) EXPECT_EQ(CRV_NeedGrowForAddNodeOfType(kind), 0);
}

LUMO_TYPED_TEST(Add, SplitsALine) {
  const bool isInt = std::is_same_v<T, tagPOINT>;
  const char* split = isInt ? "M0,0 L2,1es L3,1es" : "M0,0 L1.5,0.5es L3,1es";
  EXPECT_EQ(Split(ParsePath<T>("M0,0 L3,1es"), 1, 1, 0.5, 1), ParsePath<T>(split))
      << "halves away from zero, continuity and flags copied";
  EXPECT_EQ(Split(ParsePath<T>("M0,0 L-4,-2n"), 1, 1, 0.5, 1), ParsePath<T>("M0,0 L-2,-1 L-4,-2n"));
  EXPECT_EQ(Split(ParsePath<T>("M4,0 L0,0 Z"), 1, 2, 0.5, 1), ParsePath<T>("M4,0 L0,0 L2,0 Z"))
      << "a user node, not a closing one";
}

LUMO_TYPED_TEST(Add, SplitsACurveAndDemotesItsEnds) {
  auto path = ParsePath<T>("M0,0 L8,0y C16,0 24,8 24,16yn C24,32 8,32 8,24");
  path.types[2] |= 5;
  path.types[3] |= 1;
  const auto split = Split(path, 3, 4, 0.5, 0);
  EXPECT_EQ(split.points,
            ParsePath<T>("M0,0 L8,0 C12,0 16,2 19,5 C22,8 24,12 24,16 C24,32 8,32 8,24").points);
  EXPECT_EQ(split.Bytes(),
            (std::vector<int>{0x04, 0x54, 0xC5, 0xC1, 0x94, 0xC5, 0xC1, 0x90, 0xC0, 0xC0, 0x84}));
  const auto closed = Split(ParsePath<T>("M0,0y C0,8 8,8 8,0y C8,-8 0,-8 0,0yZ"), 3, 6, 0.5, 1);
  EXPECT_EQ(closed.Bytes(), (std::vector<int>{0x1C, 0xC0, 0xC0, 0x94, 0xC0, 0xC0, 0x94, 0xC0, 0xC0, 0x98}));
}

LUMO_TYPED_TEST(Add, RefusesWhatHasNoSegment) {
  const auto path = ParsePath<T>("M0,0 L9,0 C9,3 9,6 9,9");
  const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
  for (const auto& [index, t] :
       {std::pair{0, 0.5}, {2, 0.5}, {3, 0.5}, {-1, 0.5}, {5, 0.5}, {1, nan}, {4, inf}}) {
    auto copy = path;
    EXPECT_EQ(CRV_Add(LUMO_ARRAYS(copy), index, t, 1), 0);
    EXPECT_EQ(copy, path);
    EXPECT_EQ(CRV_NodeEditAddHere(LUMO_ARRAYS(copy), index, t), -1);
    EXPECT_EQ(copy, path);
  }
  EXPECT_EQ(CRV_Add<T>(nullptr, nullptr, 5, 1, 0.5, 1), 0);
}

LUMO_TYPED_TEST(Add, ChangesNoPointOfTheCurve) {
  test::Bits bits(41);
  const test::PathOptions options{.flags = false};
  const bool isInt = std::is_same_v<T, tagPOINT>;
  for (int k = 0; k < 300; ++k) {
    const auto path = test::RandomPath<T>(bits, options);
    const int index = bits.Below(path.count());
    const double t = bits.Unit();
    const auto split = Split(path, 3, index, t, 0);
    ASSERT_TRUE(test::IsWellFormed(split));
    // Every point of the new pieces at u is the old curve's at t u or t + (1 - t) u.
    if (split.count() != path.count() + 3) continue;
    for (int step = 0; step <= 16; ++step) {
      const double u = step / 16.0, tolerance = isInt ? 0.72 : 1e-9 * 1000;
      const DPoint left = test::SegmentAt(split, index, u), right = test::SegmentAt(split, index + 3, u);
      ASSERT_LE(Distance(test::SegmentAt(path, index, t * u), left), tolerance) << path;
      ASSERT_LE(Distance(test::SegmentAt(path, index, t + (1 - t) * u), right), tolerance) << path;
    }
  }
}

LUMO_TYPED_TEST(Add, EnabledInOnePassEqualsNodeByNode) {
  test::Bits bits(42);
  for (int k = 0; k < 3000; ++k) {
    const auto path = test::RandomPath<T>(bits);
    const int room = CRV_HowManyEnabledLines(path.types.data(), path.count()) +
                     3 * CRV_HowManyEnabledCurves(path.types.data(), path.count());
    const int enableOld = bits.Below(4), enableNew = bits.Below(4);
    const auto fast = After(path, room, CRV_AddEnabled<T>, enableOld, enableNew);
    ASSERT_EQ(fast, slow::AddEnabled(path, enableOld, enableNew)) << path;
    ASSERT_EQ(fast.count(), path.count() + room);
    ASSERT_TRUE(test::IsWellFormed(fast)) << path;
  }
}

LUMO_TYPED_TEST(Add, NodeEditorSelectsTheNewNode) {
  // The closing line is split: the new node is selected, the closed ends (both) are not.
  const auto here = After(ParsePath<T>("M0,0e L8,0 L8,8 L0,0eZ"), 1, CRV_NodeEditAddHere<T>, 3, 0.5);
  EXPECT_EQ(here, ParsePath<T>("M0,0 L8,0 L8,8 L4,4e L0,0Z"));
  const auto all = After(ParsePath<T>("M0,0 C0,4 4,8 8,8e"), 3, CRV_NodeEditAddEnabled<T>);
  EXPECT_EQ(all.Bytes(), (std::vector<int>{0x04, 0xC1, 0xC1, 0x95, 0xC1, 0xC1, 0x85}))
      << "both new ends of the split selected, their handles enabled";
}

LUMO_TYPED_TEST(Add, AppendInsertsBehindANode) {
  const auto path = ParsePath<T>("M0,0 L1,0 L2,0");
  const T nine{9, 9};
  EXPECT_EQ(After(path, 1, CRV_AppendLine<T>, 0, nine), ParsePath<T>("M0,0 L9,9 L1,0 L2,0"));
  EXPECT_EQ(After(path, 1, CRV_AppendLine<T>, 2, nine), ParsePath<T>("M0,0 L1,0 L2,0 L9,9"));
  EXPECT_EQ(After(path, 1, CRV_AppendMove<T>, 1, nine), ParsePath<T>("M0,0 L1,0 M9,9 L2,0"));
  // Behind the end: slot count stays as it is, the node goes to the one after.
  GuardedPath<T> g(path, 2);
  g.types[3] = 0x77;
  EXPECT_EQ(CRV_AppendLine(g.points.data(), g.types.data(), 3, 3, nine), 4);
  EXPECT_EQ(g.types[3], 0x77);
  EXPECT_EQ(g.types[4], 0x44);
  EXPECT_EQ(g.points[4], nine);
  for (const int index : {-1, 4})
    EXPECT_EQ(CRV_AppendLine(g.points.data(), g.types.data(), 3, index, nine), -1);
}

LUMO_TYPED_TEST(Add, AppendOfASourceOverwritesPastItsGap) {
  const auto path = ParsePath<T>("M0,0 L1,0 L2,0 L3,0");
  const auto source = ParsePath<T>("M10,0 L11,0 L12,0 L13,0");
  const auto append = [&](int index, int n, int first) {
    return After(path, std::max(n - first, 0), CRV_Append<T>, index, source.points.data(),
                 source.types.data(), n, first);
  };
  EXPECT_EQ(append(1, 2, 0), ParsePath<T>("M0,0 L1,0 M10,0 L11,0 L2,0 L3,0"));
  EXPECT_EQ(append(3, 4, 0), ParsePath<T>("M0,0 L1,0 L2,0 L3,0 M10,0 L11,0 L12,0 L13,0"));
  EXPECT_EQ(append(1, 3, 1), ParsePath<T>("M0,0 L1,0 L11,0 L12,0 L13,0 L3,0")) << "L2,0 is overwritten";
  EXPECT_EQ(append(3, 3, 1), ParsePath<T>("M0,0 L1,0 L2,0 L3,0 L11,0 L12,0")) << "but nothing past the end";
  for (const auto& [n, first] : {std::pair{0, 0}, {2, 3}, {2, -1}}) EXPECT_EQ(append(1, n, first), path);
  auto copy = path;
  EXPECT_EQ(CRV_Append(copy.points.data(), copy.types.data(), 4, 5, source.points.data(), source.types.data(),
                       1, 0),
            -1);
}

LUMO_TYPED_TEST(Add, RemoveCutsRangesAndTails) {
  const auto path = ParsePath<T>("M0,0 L1,0 L2,0 L3,0");
  const auto remove = [&](int first, int n) { return After(path, 0, CRV_Remove<T>, first, n); };
  EXPECT_EQ(remove(1, 2), ParsePath<T>("M0,0 L3,0"));
  EXPECT_EQ(remove(2, 2), ParsePath<T>("M0,0 L1,0"));
  EXPECT_EQ(remove(2, std::numeric_limits<int>::max()), ParsePath<T>("M0,0 L1,0"));
  for (const auto& [first, n] : {std::pair{1, 0}, {1, -1}, {-1, 1}, {4, 1}})
    EXPECT_EQ(remove(first, n), path);
}

LUMO_TYPED_TEST(Add, OpenSubpathsAreRemovedAndSubpathsReversed) {
  const auto path = ParsePath<T>("M0,0 L1,0 M5,5 L6,5 L6,6Z M9,9 M7,7 C8,8 9,9 7,7Z M2,2 L3,3");
  EXPECT_EQ(After(path, 0, CRV_RemoveOpenSubpaths<T>), ParsePath<T>("M5,5 L6,5 L6,6Z M7,7 C8,8 9,9 7,7Z"));
  GuardedPath<T> g(ParsePath<T>("M0,0 L1,0 M5,5 C6,5 6,6 7,7 L8,8e M1,1"));
  EXPECT_EQ(CRV_ReverseThisSubpath(g.points.data(), g.types.data(), g.count, 6), 2);
  EXPECT_EQ(g.Copy(), ParsePath<T>("M0,0 L1,0 M8,8e L7,7 C6,6 6,5 5,5 M1,1"));
  EXPECT_EQ(CRV_ReverseThisSubpath(g.points.data(), g.types.data(), g.count, 8), -1);
}

}  // namespace
