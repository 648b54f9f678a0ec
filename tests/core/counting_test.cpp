#include <gtest/gtest.h>

#include <set>

#include "lumo/crv_navigation.h"
#include "support/generators.h"
#include "support/guarded_array.h"

namespace {

/// Counts by the wording of each count, one node at a time.
struct Counts {
  int selected = 0, enabledNotClosed = 0, notEnds = 0, notOpenEnds = 0, enabledLines = 0, enabledCurves = 0;
  int lines = 0, curves = 0, openSubpaths = 0, subpaths = 0, userNodes = 0, enabledUserNodes = 0;
  bool closedFlag = false, open = false, realOpen = false;
  std::set<int> enabledSubpaths;
};

Counts Count(const std::vector<NODETYPE>& types) {
  Counts c;
  for (std::size_t k = 0; k < types.size(); ++k) {
    const NODETYPE type = types[k];
    const bool last = k + 1 == types.size(), control = type.IsControl();
    const bool next = !last && !types[k + 1].IsMove();
    c.subpaths += type.IsMove();
    c.lines += type.IsLine();
    c.curves += type.IsCurve();
    c.closedFlag |= type.IsClosed();
    if (type.IsMove() && !type.IsClosed()) {
      ++c.openSubpaths;
      c.open = true;
      c.realOpen |= next;
    }
    c.userNodes += !control && type.IsUser();
    if (!type.IsEnabled()) continue;
    c.enabledLines += type.IsLine();
    c.enabledCurves += type.IsCurve();
    c.enabledUserNodes += !control && type.IsUser();
    c.selected += !control && type.IsUser();
    c.enabledNotClosed += !control && !type.IsClosed();
    c.notEnds += !last && !control && !type.IsMove() && next;
    c.notOpenEnds += !last && !control && type.IsUser() && (type.IsClosed() || (!type.IsMove() && next));
    if (type.IsSelected()) c.enabledSubpaths.insert(c.subpaths);
  }
  return c;
}

void Compare(const std::vector<NODETYPE>& bytes) {
  const test::GuardedArray<NODETYPE> guarded(bytes, bytes.size());
  const NODETYPE* const types = guarded.data();
  const int n = static_cast<int>(bytes.size());
  const Counts c = Count(bytes);
  EXPECT_EQ(CRV_HowManyEnabled(types, n), c.selected);
  EXPECT_EQ(CRV_HowManyEnabledNotClosed(types, n), c.enabledNotClosed);
  EXPECT_EQ(CRV_HowManyEnabledNotFirstOrLastInSubpath(types, n), c.notEnds);
  EXPECT_EQ(CRV_HowManyEnabledNotFirstOrLastInOpenSubpath(types, n), c.notOpenEnds);
  EXPECT_EQ(CRV_HowManyEnabledLines(types, n), c.enabledLines);
  EXPECT_EQ(CRV_HowManyEnabledCurves(types, n), c.enabledCurves);
  EXPECT_EQ(CRV_HowManyLines(types, n), c.lines);
  EXPECT_EQ(CRV_HowManyCurves(types, n), c.curves);
  EXPECT_EQ(CRV_HowManyOpenSubpaths(types, n), c.openSubpaths);
  EXPECT_EQ(CRV_HowManyEnabledSubpaths(types, n), static_cast<int>(c.enabledSubpaths.size()));
  EXPECT_EQ(CRV_GetNumberOfUserNodes(types, static_cast<unsigned>(n), false), c.userNodes);
  EXPECT_EQ(CRV_GetNumberOfUserNodes(types, static_cast<unsigned>(n), true), c.enabledUserNodes);
  EXPECT_EQ(CRV_NumSubpaths(types, n), c.subpaths);
  EXPECT_EQ(CRV_ContainsClosedSubpath(types, n), c.closedFlag);
  EXPECT_EQ(CRV_ContainsOpenSubpath(types, n, false), c.open);
  EXPECT_EQ(CRV_ContainsOpenSubpath(types, n, true), c.realOpen);
}

TEST(Counting, AgreesWithOneNodeAtATime) {
  test::Bits bits(21);
  for (int round = 0; round < 500; ++round) Compare(test::RandomPath<tagPOINT>(bits).types);
  for (int round = 0; round < 500; ++round) Compare(test::RandomMalformedTypes(bits, 300));
  // Long enough for byte-wide counters to overflow if they were not emptied in time, and to cross blocks.
  for (const char* byte = "\x04\x05\x45\x85\xC5"; *byte != 0; ++byte)
    for (const std::size_t n : {255u, 64u * 255u, 64u * 256u + 1u, 100000u})
      Compare(std::vector<NODETYPE>(n, NODETYPE(static_cast<unsigned char>(*byte))));
  std::vector<NODETYPE> late(20000, NODETYPE(0x0C));
  for (const std::size_t at : {4095u, 4096u, 19998u}) {
    auto types = late;
    types[at] = 0x04;
    types[at + 1] = 0x44;
    Compare(types);
  }
}

TEST(Counting, OfNothingIsZero) {
  const NODETYPE type = 0x05;
  for (const int count : {0, -1, -2147483647 - 1}) {
    EXPECT_EQ(CRV_HowManyEnabled(&type, count), 0);
    EXPECT_EQ(CRV_HowManyEnabledSubpaths(&type, count), 0);
    EXPECT_EQ(CRV_HowManyEnabledNotFirstOrLastInSubpath(&type, count), 0);
    EXPECT_EQ(CRV_ContainsOpenSubpath(&type, count, true), 0);
    EXPECT_EQ(CRV_ContainsClosedSubpath(&type, count), 0);
  }
  EXPECT_EQ(CRV_NumSubpaths(nullptr, 5), 0);
  EXPECT_EQ(CRV_GetNumberOfUserNodes(nullptr, 5, true), 0);
}

}  // namespace
