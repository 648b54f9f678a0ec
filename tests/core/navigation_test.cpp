#include "lumo/crv_navigation.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "support/generators.h"
#include "support/guarded_array.h"
#include "support/oracles.h"

namespace {

using test::IntPath;

struct Subpath {
  int first, last;
  bool closed;
};

std::vector<Subpath> SubpathsOf(const IntPath& path) {
  std::vector<Subpath> out;
  for (int k = 0; k < path.count(); ++k) {
    const NODETYPE type = path.type(k);
    if (type.IsMove()) out.push_back({k, k, type.IsClosed()});
    out.back().last = k;
  }
  return out;
}

TEST(Navigation, AgreesWithTheSubpathsOfRandomPaths) {
  test::Bits bits(11);
  for (int round = 0; round < 300; ++round) {
    const IntPath path = test::RandomPath<tagPOINT>(bits);
    const NODETYPE* const types = path.types.data();
    const int count = path.count();
    SCOPED_TRACE(testing::PrintToString(path));
    for (const Subpath& s : SubpathsOf(path)) {
      for (int i = s.first; i <= s.last; ++i) {
        const bool wraps = s.closed && s.last > s.first;
        EXPECT_EQ(NN(types, i, count), i < s.last ? i + 1 : wraps ? s.first + 1 : i);
        EXPECT_EQ(PN(types, i, count), i > s.first + 1 ? i - 1 : s.closed ? s.last : s.first);
        const bool end = i == s.first || i == s.last;
        EXPECT_EQ(OtherClosedEnd(types, i, count), end && s.closed ? s.first + s.last - i : -1);
        EXPECT_EQ(CRV_FirstNodeOfThisSubpath(types, count, i), s.first);
        EXPECT_EQ(CRV_LastNodeOfThisSubpath(types, count, i), s.last);
        EXPECT_EQ(CRV_IsThisSubpathClosed(types, count, i), s.closed);
        EXPECT_EQ(CRV_IsFirstSubpathNode(types, count, i), i == s.first);
        EXPECT_EQ(CRV_IsLastSubpathNode(types, count, i), i == s.last);
        EXPECT_EQ(CRV_IsFirstOrLastSubpathNode(types, count, i), end);
        EXPECT_EQ(CRV_IsFirstOpenSubpathNode(types, count, i), !s.closed && i == s.first);
        EXPECT_EQ(CRV_IsLastOpenSubpathNode(types, count, i), !s.closed && i == s.last);
        EXPECT_EQ(CRV_IsFirstOrLastOpenSubpathNode(types, count, i), !s.closed && end);
        EXPECT_EQ(CRV_IsFirstClosedSubpathNode(types, count, i), s.closed && i == s.first);
        EXPECT_EQ(CRV_IsLastClosedSubpathNode(types, count, i), s.closed && i == s.last);
        EXPECT_EQ(CRV_IsFirstOrLastClosedSubpathNode(types, count, i), s.closed && end);
        EXPECT_EQ(CRV_TwoNodesInSameSubpath(types, count, i, s.first), 1);
        EXPECT_EQ(CRV_TwoNodesInSameSubpath(types, count, i, s.last + 1), 0);
        const NODETYPE type = types[i];
        EXPECT_EQ(CRV_GetUserNode(types, count, i), type.IsUser() ? i : end && s.closed ? s.first : -1);
      }
      EXPECT_EQ(CRV_CountNodesInSubpath(types + s.first, s.first, count), s.last - s.first + 1)
          << "the array is passed from the subpath's start on, the index is that of the whole path";
    }
  }
}

TEST(Navigation, OnCurveStepsVisitEveryOnCurveNode) {
  test::Bits bits(12);
  for (int round = 0; round < 200; ++round) {
    const IntPath path = test::RandomPath<tagPOINT>(bits);
    const NODETYPE* const types = path.types.data();
    for (const Subpath& s : SubpathsOf(path)) {
      std::vector<int> nodes;
      for (int i = s.first; i <= s.last; ++i)
        if (types[i].IsOnCurve()) nodes.push_back(i);
      int at = s.first;
      for (std::size_t k = 1; k < nodes.size(); ++k) {
        at = NNControl(types, at, path.count());
        EXPECT_EQ(at, nodes[k]) << path;
      }
      EXPECT_EQ(NNControl(types, at, path.count()), s.closed && nodes.size() > 1 ? nodes[1] : at) << path;
      for (std::size_t k = nodes.size(); k-- > 2;) {
        at = PNControl(types, at, path.count());
        EXPECT_EQ(at, nodes[k - 1]) << path;
      }
    }
  }
}

TEST(Navigation, FindsTheHandlesOfANode) {
  const auto closed = test::ParsePath<tagPOINT>("M0,0 C1,0 2,0 3,0 L4,0 C5,0 6,0 0,0 Z");
  const NODETYPE* types = closed.types.data();
  EXPECT_EQ(CRV_GetArcBefore(types, 8, 0), 6) << "across the seam";
  EXPECT_EQ(CRV_GetArcAfter(types, 8, 0), 1);
  EXPECT_EQ(CRV_GetArcAfter(types, 8, 7), 1) << "across the seam";
  EXPECT_EQ(CRV_GetArcBefore(types, 8, 3), 2);
  EXPECT_EQ(CRV_GetArcAfter(types, 8, 3), -1) << "a line";
  EXPECT_EQ(CRV_GetArcBefore(types, 8, 4), -1);
  const auto open = test::ParsePath<tagPOINT>("M0,0 C1,0 2,0 3,0 M9,9");
  EXPECT_EQ(CRV_GetArcBefore(open.types.data(), 5, 0), -1);
  EXPECT_EQ(CRV_GetArcAfter(open.types.data(), 5, 3), -1);
}

TEST(Navigation, OfALoneClosedMoveStaysInPlace) {
  const NODETYPE types[] = {0x0C, 0x04, 0x0C};
  for (const int i : {0, 2}) {
    EXPECT_EQ(NN(types, i, 3), i);
    EXPECT_EQ(PN(types, i, 3), i);
    EXPECT_EQ(CRV_GetArcAfter(types, 3, i), -1);
  }
}

// Every query at every index of arrays that break the rules: the guards stop a read outside, the bound on the
// on-curve walks stops a cycle.
TEST(Navigation, StaysInsideMalformedArrays) {
  test::Bits bits(13);
  for (int round = 0; round < 1500; ++round) {
    const std::vector<NODETYPE> bytes = test::RandomMalformedTypes(bits, 12);
    const test::GuardedArray<NODETYPE> guarded(bytes, bytes.size());
    const NODETYPE* const types = guarded.data();
    const int count = static_cast<int>(bytes.size());
    for (int i = -2; i < count + 2; ++i) {
      const bool inside = i >= 0 && i < count;
      for (const auto step : {NN, PN, NNControl, PNControl}) {
        const int next = step(types, i, count);
        EXPECT_TRUE(inside ? next >= 0 && next < count : next == i);
      }
      for (const auto index : {CRV_FirstNodeOfThisSubpath, CRV_LastNodeOfThisSubpath, CRV_GetArcBefore,
                               CRV_GetArcAfter, CRV_GetUserNode}) {
        const int found = index(types, count, i);
        EXPECT_TRUE(found >= -1 && found < count);
        EXPECT_TRUE(inside || found == -1);
      }
      const int other = OtherClosedEnd(types, i, count);
      EXPECT_TRUE(other >= -1 && other < count);
      CRV_IsThisSubpathClosed(types, count, i);
      CRV_TwoNodesInSameSubpath(types, count, i, count / 2);
      CRV_IsFirstOrLastSubpathNode(types, count, i);
    }
  }
  const NODETYPE handlesOnly[] = {0x0C, 0xC0, 0xC0};
  EXPECT_EQ(NNControl(handlesOnly, 1, 3), 1);
  EXPECT_EQ(PNControl(handlesOnly, 1, 3), 1);
  // A closed end whose move node is missing wraps to the node after the array's first, while there is one.
  const NODETYPE noMove[] = {0x48, 0x04, 0x44};
  EXPECT_EQ(NN(noMove, 0, 3), 1);
  EXPECT_EQ(NN(noMove, 0, 1), 0);
  EXPECT_EQ(CRV_CountNodesInSubpath(noMove, 5, 3), 1);
  EXPECT_EQ(CRV_CountNodesInSubpath(noMove, INT_MAX, 3), 1);
  EXPECT_EQ(NN(nullptr, 3, 5), 3);
  EXPECT_EQ(crvProblem(), 0);
}

}  // namespace
