#include <gtest/gtest.h>

#include <algorithm>

#include "lumo/crv_navigation.h"
#include "support/generators.h"
#include "support/guarded_array.h"
#include "support/path_builder.h"

namespace {

using test::IntPath;

/// Indices of the nodes that carry a flag.
std::vector<int> With(const std::vector<NODETYPE>& types, unsigned char flag, bool controls) {
  std::vector<int> out;
  for (std::size_t k = 0; k < types.size(); ++k)
    if (types[k].IsControl() == controls && (types[k].value & flag) != 0) out.push_back(static_cast<int>(k));
  return out;
}

using Indices = std::vector<int>;

TEST(Setters, WriteBothClosedEnds) {
  auto closed = test::ParsePath<tagPOINT>("M0,0 L9,0 L9,9 Z").types;
  EXPECT_EQ(CRV_SetEnabled(closed.data(), 4, 0, 3), 4) << "only bit 0 of the value counts";
  EXPECT_EQ(With(closed, NODETYPE::kEnabled, false), (Indices{0, 3}));
  CRV_SetEnabled(closed.data(), 4, 3, 2);
  EXPECT_EQ(With(closed, NODETYPE::kEnabled, false), Indices{});
  CRV_SetCont(closed.data(), 4, 3, ContinuityType::symmetric);
  EXPECT_EQ(With(closed, NODETYPE::kSymmetric, false), (Indices{0, 3}));
  CRV_SetCont(closed.data(), 4, 1, static_cast<ContinuityType>(7));
  EXPECT_EQ(closed[1].value & NODETYPE::kContinuityMask, 0x30) << "the value is masked with 3";

  auto open = test::ParsePath<tagPOINT>("M0,0 L9,0 L9,9").types;
  CRV_SetEnabled(open.data(), 3, 0, 1);
  EXPECT_EQ(With(open, NODETYPE::kEnabled, false), (Indices{0}));
  EXPECT_EQ(CRV_SetEnabled(open.data(), 3, 3, 1), 3);
  EXPECT_EQ(CRV_SetCont(nullptr, 3, 0, ContinuityType::smooth), 3);
}

struct HandleCase {
  const char* why;
  const char* path;  ///< e marks the enabled node
  Indices enabled;   ///< control points that get its flag
};
const HandleCase kHandleCases[] = {
    {"both sides of an inner node", "M0,0 C1,0 2,0 3,0e C4,0 5,0 6,0", {1, 2, 4, 5}},
    {"across the seam of a closed path", "M0,0e C1,0 2,0 3,0 C4,0 5,0 0,0 Z", {1, 2, 4, 5}},
    {"not beyond a line with a cusp", "M0,0 C1,0 2,0 3,0 L4,0e L5,0 C6,0 7,0 8,0", {}},
    {"beyond a line with a smooth far node", "M0,0 C1,0 2,0 3,0s L4,0e L5,0s C6,0 7,0 8,0", {1, 2, 6, 7}},
    {"beyond a closing line", "M0,0e C1,0 2,0 3,0 C4,0 5,0 6,0s L0,0 Z", {1, 2, 4, 5}},
    {"beyond a first line of a closed path", "M0,0s L1,0e C2,0 3,0 4,0 C5,0 6,0 0,0 Z", {2, 3, 5, 6}},
    {"never past an open end", "M0,0s L1,0e L2,0s", {}},
    {"a single closed curve", "M0,0e C1,0 2,0 0,0 Z", {1, 2}},
    {"a single closed line", "M0,0e L0,0 Z", {}},
};

TEST(Handles, OfASelectedNodeAreEnabledAndShown) {
  for (const HandleCase& test_case : kHandleCases) {
    SCOPED_TRACE(test_case.why);
    IntPath path = test::ParsePath<tagPOINT>(test_case.path);
    EXPECT_EQ(CRV_EnableAllControls(path.types.data(), path.count()), 1);
    EXPECT_EQ(With(path.types, NODETYPE::kEnabled, true), test_case.enabled);
    EXPECT_EQ(With(path.types, NODETYPE::kUser, true), test_case.enabled) << "shown: the only selected node";

    const int node = With(path.types, NODETYPE::kEnabled, false).front();
    CRV_SetEnabled(path.types.data(), path.count(), node, 1);
    CRV_EnableOneControl(path.types.data(), path.count(), node);
    EXPECT_EQ(With(path.types, NODETYPE::kUser, true), test_case.enabled);
    CRV_SetEnabled(path.types.data(), path.count(), node, 0);
    CRV_EnableOneControl(path.types.data(), path.count(), node);
    EXPECT_EQ(With(path.types, NODETYPE::kSelected, true), Indices{}) << "the flag is copied, not set";
  }
}

TEST(Handles, OfSeveralSelectedNodesStayHidden) {
  IntPath path = test::ParsePath<tagPOINT>("M0,0e C1,0 2,0 3,0e L4,0 M0,0 C1,1 2,2 3,3");
  EXPECT_EQ(CRV_EnableAllControls(path.types.data(), path.count()), 2);
  EXPECT_EQ(With(path.types, NODETYPE::kEnabled, true), (Indices{1, 2}));
  EXPECT_EQ(With(path.types, NODETYPE::kUser, true), Indices{});
}

TEST(Selection, OfEverythingAndOfOneSubpath) {
  IntPath path = test::ParsePath<tagPOINT>("M0,0 C1,0 2,0 3,0 L4,0 M5,5 C1,1 2,2 3,3 L5,5 Z");
  EXPECT_EQ(CRV_EnableAllNodes(path.types.data(), path.count()), path.count());
  EXPECT_EQ(With(path.types, NODETYPE::kEnabled, false), (Indices{0, 3, 4, 5, 8, 9}));
  EXPECT_EQ(With(path.types, NODETYPE::kEnabled, true), (Indices{1, 2, 6, 7}));
  CRV_EnableSubpath(path.types.data(), path.count(), 3, 0);
  EXPECT_EQ(With(path.types, NODETYPE::kEnabled, false), (Indices{5, 8, 9}));
  EXPECT_EQ(With(path.types, NODETYPE::kEnabled, true), (Indices{6, 7}));
  path.types[6] |= NODETYPE::kUser;
  CRV_DisableAllNodes(path.types.data(), path.count());
  EXPECT_EQ(With(path.types, NODETYPE::kEnabled, false), Indices{});
  EXPECT_EQ(With(path.types, NODETYPE::kSelected, true), Indices{});
  EXPECT_EQ(With(path.types, NODETYPE::kUser, false), (Indices{0, 3, 4, 5, 8})) << "user nodes stay";
}

// Setters on malformed arrays write flags only, inside the array only.
TEST(Setters, KeepKindsOnMalformedArrays) {
  test::Bits bits(31);
  for (int round = 0; round < 1000; ++round) {
    const auto bytes = test::RandomMalformedTypes(bits, 12);
    const int count = static_cast<int>(bytes.size());
    test::GuardedArray<NODETYPE> types(bytes, bytes.size());
    for (int i = -1; i <= count; ++i) {
      CRV_SetEnabled(types.data(), count, i, 1);
      CRV_SetCont(types.data(), count, i, ContinuityType::smooth);
      CRV_EnableOneControl(types.data(), count, i);
      CRV_EnableSubpath(types.data(), count, i, i & 1);
    }
    CRV_EnableAllNodes(types.data(), count);
    CRV_EnableAllControls(types.data(), count);
    CRV_DisableAllNodes(types.data(), count);
    for (std::size_t k = 0; k < bytes.size(); ++k) {
      EXPECT_EQ(types[k].Kind(), bytes[k].Kind());
      EXPECT_EQ(types[k].IsClosed(), bytes[k].IsClosed());
    }
  }
}

CRV_ENABLINGINFO InfoOf(const char* text, int currentNode = -1, int* nodes = nullptr) {
  const IntPath path = test::ParsePath<tagPOINT>(text);
  CRV_ENABLINGINFO info{~0u, -5, -5};
  const int result = CRV_GetEnablingInfo(path.types.data(), path.count(), 12345, currentNode, &info);
  if (nodes != nullptr) *nodes = result;
  return info;
}

TEST(EnablingInfo, FlagsBySituation) {
  const struct {
    const char* path;
    unsigned flags;
    int nodes, single, ends;
  } cases[] = {
      {"M0,0 L1,0", 0x10000, 0, 0, 0},
      {"M0,0 L1,0 M2,2", 0x18000, 0, 0, 0},
      {"M0,0e L1,0", 0x10000 | 0x80 | 0x800 | 0x2000, 1, 0, 0},
      {"M0,0 L1,0e L2,0", 0x10000 | 0x1 | 0x8 | 0x80 | 0x400 | 0x800 | 0x2000, 1, 0, 0},
      {"M0,0 L1,0e C2,0 3,0 4,0", 0x10000 | 0x1 | 0x8 | 0x20 | 0x80 | 0x400 | 0x800 | 0x2000, 1, 0, 0},
      {"M0,0 L1,0es C2,0 3,0 4,0", 0x10000 | 0x1 | 0x8 | 0x10 | 0x100 | 0x400 | 0x800 | 0x2000, 1, 0, 0},
      {"M0,0 C1,0 2,0 3,0ey L4,0", 0x10000 | 0x2 | 0x8 | 0x10 | 0x20 | 0x200 | 0x400 | 0x800 | 0x2000, 1, 0,
       0},
      {"M0,0 C1,0 2,0 3,0e C4,0 5,0 6,0", 0x10000 | 0x2 | 0x8 | 0x20 | 0x40 | 0x80 | 0x400 | 0x800 | 0x2000,
       1, 0, 0},
      // Both ends of an open subpath: of two lines, of one line, of one curve.
      {"M0,0e L1,0 L2,0e", 0x10000 | 0x1 | 0x4 | 0x80 | 0x400 | 0x800 | 0x7000, 2, 0, 1},
      {"M0,0e L1,0e", 0x10000 | 0x1 | 0x80 | 0x400 | 0x800 | 0x7000, 2, 0, 0},
      {"M0,0e C1,0 2,0 3,0e", 0x10000 | 0x2 | 0x80 | 0x400 | 0x800 | 0x7000, 2, 0, 1},
      // Two open ends of different subpaths; a lone move is one end; three ends are one too many.
      {"M0,0 L1,0e M5,5e L6,6", 0x18000 | 0x1 | 0x4 | 0x80 | 0x400 | 0x800 | 0x7000, 2, 0, 1},
      {"M0,0 L1,0e M5,5e", 0x18000 | 0x1 | 0x4 | 0x80 | 0x400 | 0x800 | 0x7000, 2, 0, 1},
      {"M0,0e L1,0 M5,5e L6,6 M7,7e", 0x18000 | 0x80 | 0x800 | 0x7000, 3, 0, 0},
      {"M0,0 L1,0 L2,0e M5,5", 0x18000 | 0x1 | 0x80 | 0x400 | 0x800 | 0x2000, 1, 1, 0},
  };
  for (const auto& test_case : cases) {
    SCOPED_TRACE(test_case.path);
    int nodes = -1;
    const CRV_ENABLINGINFO info = InfoOf(test_case.path, -1, &nodes);
    EXPECT_EQ(info.flags, test_case.flags) << std::hex << info.flags << " not " << test_case.flags;
    EXPECT_EQ(nodes, test_case.nodes);
    EXPECT_EQ(info.singleSubpath, test_case.single);
    EXPECT_EQ(info.endFlags, test_case.ends);
  }
}

TEST(EnablingInfo, AClosedNodeCountsOnceThoughItsTwoEndsAreEnabled) {
  auto path = test::ParsePath<tagPOINT>("M0,0es C1,0 2,0 3,0 L0,0 Z");
  CRV_SetEnabled(path.types.data(), path.count(), 0, 1);
  path.types[4].SetContinuity(ContinuityType::smooth);
  CRV_ENABLINGINFO info;
  EXPECT_EQ(CRV_GetEnablingInfo(path.types.data(), path.count(), 0, -1, &info), 1);
  EXPECT_EQ(info.flags, 0x10000u | 0x1 | 0x8 | 0x10 | 0x100 | 0x400 | 0x800 | 0x2000);
  path.types[4].SetContinuity(ContinuityType::cusp);
  CRV_GetEnablingInfo(path.types.data(), path.count(), 0, -1, &info);
  EXPECT_TRUE(info.flags & CRV_ENABLINGINFO::kCanBeSmooth) << "the closing line meets the first curve";
}

TEST(EnablingInfo, TheCurrentNodeTakesPart) {
  const char* const path = "M0,0 L1,0s C2,0 3,0 4,0y";
  EXPECT_EQ(InfoOf(path, 1).flags, 0x10000u | 0xC08 | 0x1 | 0x10 | 0x40);
  EXPECT_EQ(InfoOf(path, 4).flags, 0x10000u | 0xC08 | 0x2 | 0x10 | 0x20);
  EXPECT_EQ(InfoOf(path, 0).flags, 0x10000u | 0xC08 | 0x1 | 0x20 | 0x40);
  EXPECT_EQ(InfoOf(path, 99).flags, 0x10000u | 0xC08) << "a node that does not exist has no byte to look at";
}

TEST(EnablingInfo, OfNothing) {
  CRV_ENABLINGINFO info{1, 1, 1};
  EXPECT_EQ(CRV_GetEnablingInfo(nullptr, 5, 0, 3, &info), 0);
  EXPECT_EQ(info.flags, 0x10000u);
  EXPECT_EQ(info.singleSubpath, 0);
  EXPECT_EQ(info.endFlags, 0);
  const NODETYPE type = 0x05;
  EXPECT_EQ(CRV_GetEnablingInfo(&type, 1, 0, -1, nullptr), 1);
}

// Scans look at eight bytes at a time: where a path stands in them must not matter. Unselected lone moves in
// front move it along and are no more than two further subpaths, however many there are.
TEST(Scans, DoNotDependOnWhereAPathStandsInAWord) {
  test::Bits bits(77);
  long enabled = 0;
  for (int round = 0; round < 1500; ++round) {
    std::vector<NODETYPE> bytes{0x04};
    for (const NODETYPE type : test::RandomMalformedTypes(bits, 70)) bytes.push_back(type);
    const std::size_t own = bytes.size();
    CRV_ENABLINGINFO first{};
    int nodes = 0, selected = 0;
    std::vector<NODETYPE> controls;
    for (std::size_t before = 2; before < 12; ++before) {
      std::vector<NODETYPE> moved(before, NODETYPE(0x04));
      moved.insert(moved.end(), bytes.begin(), bytes.end());
      test::GuardedArray<NODETYPE> types(moved, moved.size());
      const int count = static_cast<int>(moved.size());
      CRV_ENABLINGINFO info;
      const int found = CRV_GetEnablingInfo(types.data(), count, 0, -1, &info);
      const int chosen = CRV_EnableAllControls(types.data(), count);
      const NODETYPE* const tail = types.data() + before;
      if (before == 2) {
        first = info, nodes = found, selected = chosen;
        controls.assign(tail, tail + own);
        enabled += found + chosen;
      }
      ASSERT_EQ(info.flags, first.flags);
      ASSERT_EQ(info.singleSubpath, first.singleSubpath);
      ASSERT_EQ(info.endFlags, first.endFlags);
      ASSERT_EQ(found, nodes);
      ASSERT_EQ(chosen, selected);
      ASSERT_TRUE(std::equal(controls.begin(), controls.end(), tail));
    }
  }
  EXPECT_GT(enabled, 1000);
}

}  // namespace
