#include <gtest/gtest.h>

#include <array>

#include "edit/slow_edit.h"

namespace {

using test::After;
using test::DPoint;
using test::ParsePath;
using test::Path;

LUMO_TYPED_SUITE(Join);

LUMO_TYPED_TEST(Join, TwoEndsMergeTheirSubpathsOrCloseOne) {
  const struct {
    const char* svg;
    int a, b;
    const char* joined;
    int index;
  } cases[] = {
      {"M0,0 L4,0 M3,-3 L9,9", 1, 2, "M0,0 L3,-1 L9,9", 1},            // 3.5 and -1.5 towards zero
      {"M0,0 L4,0 M3,-3 L9,9", 2, 1, "M0,0 L3,-1 L9,9", 1},            // a start meets an end: a's direction
      {"M9,9 L3,-3 M0,0 L4,0 M5,5", 2, 1, "M9,9 L1,-1 L4,0 M5,5", 1},  // b's subpath lies before a's
      {"M9,9 L3,-3 M0,0 L4,0 M5,5", 2, 0, "M4,0 L4,4 L3,-3 M5,5", 1},  // start and start: a is reversed
      {"M9,9 L3,-3 M0,0 L4,0 M5,5", 3, 1, "M0,0 L3,-1 L9,9 M5,5", 1},
      {"M0,0 C1,0 2,0 4,0 M5,5 L6,6 M4,2 C7,0 8,0 9,0", 3, 6, "M0,0 C1,0 2,0 4,1 C7,0 8,0 9,0 M5,5 L6,6", 3},
      {"M0,0 L4,0 M6,2", 1, 2, "M0,0 L5,1", 1},  // a lone move is an end, too
      {"M6,2 M0,0 L4,0", 0, 2, "M0,0 L5,1", 1},
      {"M0,0 L4,0 L3,-3", 0, 2, "M1,-1 L4,0 Z", 0},  // one subpath: closed
      {"M0,0 L4,0 L3,-3", 2, 0, "M1,-1 L4,0 Z", 0},
      {"M5,5 M6,6 M0,0 L4,0 L0,0 M7,7 L8,8", 2, 4, "M0,0 L4,0 Z M7,7 L8,8", 0},  // runs of moves go
  };
  for (const auto& c : cases) {
    int index = -7;
    const auto joined = After(ParsePath<T>(c.svg), 0, CRV_JoinTwoNodesExt<T>, c.a, c.b, &index);
    EXPECT_EQ(joined, ParsePath<T>(c.joined)) << c.svg << " " << c.a << "+" << c.b;
    EXPECT_EQ(index, c.index) << c.svg << " " << c.a << "+" << c.b;
  }
}

TEST(JoinDouble, LandsOnWholeUnits) {
  auto path = ParsePath<DPoint>("M0,0 L1.75,-1.75 M1.5,-1.5 L9,9");
  CRV_JoinTwoNodes(path.points.data(), path.types.data(), 4, 1, 2);
  EXPECT_EQ(path.points[1], (DPoint{1, -1}));
}

TEST(JoinInteger, MeansOfTheWholeRangeDoNotOverflow) {
  auto path = ParsePath<tagPOINT>("M0,0 L2147483647,2147483647 M2147483645,-2147483648 L9,9");
  CRV_JoinTwoNodes(path.points.data(), path.types.data(), 4, 1, 2);
  EXPECT_EQ(path.points[1], (tagPOINT{2147483646, 0}));
}

LUMO_TYPED_TEST(Join, RefusesWhatIsNoOpenEnd) {
  const auto path = ParsePath<T>("M0,0 L4,0 L5,0 M3,-3 L9,9 L9,0Z");
  for (const auto& [a, b] : {std::pair{0, 1}, {1, 0}, {0, 0}, {0, 3}, {6, 2}, {-1, 0}, {0, 7}}) {
    auto copy = path;
    int index = -7;
    EXPECT_EQ(CRV_JoinTwoNodesExt(LUMO_ARRAYS(copy), a, b, &index), -2);
    EXPECT_EQ(copy, path);
    EXPECT_EQ(index, -7);
  }
}

LUMO_TYPED_TEST(Join, WithABridge) {
  const struct {
    const char* svg;
    std::array<int, 4> p;
    const char* joined;
    std::array<int, 4> at;
  } cases[] = {
      {"M0,0 L2,0 M4,0 L6,0 M8,0 L10,0", {1, 4, 2, 3}, "M0,0 L3,0 L7,0 L10,0", {1, 2, 1, 2}},
      {"M0,0 L2,0 M4,0 L6,0 M8,0 L10,0", {5, 0, 3, 2}, "M8,0 L8,0 L2,0 L2,0", {1, 2, 1, 2}},
      {"M0,0 L2,0 M4,0 L6,0 M8,0 L10,0", {0, 5, 2, 3}, "M2,0 L2,0 L8,0 L8,0", {1, 2, 1, 2}},
      // Both ends of one subpath: the bridge closes it.
      {"M0,0 L8,0 L0,8 M2,8 L2,0", {2, 0, 3, 4}, "M1,0 L8,0 L1,8 Z", {2, 0, 2, 0}},
      {"M0,0 L8,0 L0,8 M2,8 L2,0", {0, 2, 4, 3}, "M1,8 L8,0 L1,0 Z", {2, 0, 2, 0}},
      // A bridge of one node.
      {"M0,0 L2,0 M4,0 M6,0 L10,0", {1, 3, 2, 2}, "M0,0 L4,0 L10,0", {1, 1, 1, 1}},
  };
  for (const auto& c : cases) {
    std::array p = c.p;
    const auto joined =
        After(ParsePath<T>(c.svg), 0, CRV_JoinTwoNodesWithOpenSubpathExt<T>, &p[0], &p[1], &p[2], &p[3]);
    EXPECT_EQ(p, c.at) << c.svg;
    EXPECT_EQ(joined, ParsePath<T>(c.joined)) << c.svg;
  }
  const auto path = ParsePath<T>("M0,0 L2,0 L3,0 M4,0 L6,0 M8,0 L10,0");
  const std::array<int, 4> refused[] = {{1, 5, 3, 4}, {2, 5, 3, 6}, {2, 4, 3, 3}, {2, 5, 3, 3},
                                        {3, 5, 3, 4}, {2, 2, 3, 4}, {2, 7, 3, 4}};
  for (const auto& p : refused) {
    auto copy = path;
    std::array q = p;
    EXPECT_EQ(CRV_JoinTwoNodesWithOpenSubpathExt(LUMO_ARRAYS(copy), &q[0], &q[1], &q[2], &q[3]), -1);
    EXPECT_EQ(copy, path);
    EXPECT_EQ(q, p);
  }
  // Half a bridge: only the end that is there is joined.
  const auto half = [&](int p1, int p2, int p3, int p4) {
    auto copy = path;
    const int n = CRV_JoinTwoNodesWithOpenSubpath(copy.points.data(), copy.types.data(), 7, p1, p2, p3, p4);
    return n < 0 ? std::to_string(n) : test::ToSvg(slow::Cut(copy, n));
  };
  EXPECT_EQ(half(2, -1, 3, -1), "M0,0 L2,0 L3,0 L6,0 M8,0 L10,0 ");
  EXPECT_EQ(half(-1, 5, -1, 4), "M0,0 L2,0 L3,0 M4,0 L7,0 L10,0 ");
  EXPECT_EQ(half(2, -1, -1, 4), "-1");
  EXPECT_EQ(half(-1, 5, 3, -1), "-1");
}

LUMO_TYPED_TEST(Join, EnabledEnds) {
  const struct {
    const char *svg, *joined, *withLines;
  } cases[] = {
      {"M0,0 L4,0e M4,4e L9,9", "M0,0 L4,2e L9,9", "M0,0 L4,0e L4,4e L9,9"},
      {"M0,0e L4,0 M4,4e L9,9", "M4,0 L2,2e L9,9", "M4,0 L0,0e L4,4e L9,9"},
      {"M0,0e L4,0 M4,4 L9,9e", "M4,4 L4,4e L4,0", "M4,4 L9,9e L0,0e L4,0"},
      {"M0,0 L4,0e M4,0e L9,9", "M0,0 L4,0e L9,9", "M0,0 L4,0e L9,9"},  // ends that touch: no line
      {"M0,0e L4,0 L4,4e", "M2,2e L4,0 L2,2eZ", "M4,4e L0,0e L4,0 L4,4eZ"},
      {"M0,0e L4,0e", "M0,0e L4,0e", "M0,0e L4,0e"},  // a line cannot be closed
      {"M0,0e C4,0 6,0 8,4e", "M0,0e C4,0 6,0 8,4e", "M8,4e L0,0e C4,0 6,0 8,4eZ"},
      // More than two: only subpaths with both ends enabled, nothing across.
      {"M0,0e L4,0 L4,4e M9,9e L8,8", "M2,2e L4,0 L2,2eZ M9,9e L8,8", "M4,4e L0,0e L4,0 L4,4eZ M9,9e L8,8"},
      {"M0,0e L4,0e M9,9e L8,8", "M0,0e L4,0e M9,9e L8,8", "M0,0e L4,0e M9,9e L8,8"},
  };
  for (const auto& c : cases) {
    const auto path = ParsePath<T>(c.svg);
    EXPECT_EQ(test::ToSvg(After(path, 0, CRV_JoinEnabled<T>)), test::ToSvg(ParsePath<T>(c.joined))) << c.svg;
    const int room = 2;
    const auto lines = After(path, room, CRV_JoinEnabledAddingLineSegments<T>);
    EXPECT_EQ(test::ToSvg(lines), test::ToSvg(ParsePath<T>(c.withLines))) << c.svg;
    EXPECT_TRUE(test::IsWellFormed(lines));
  }
  // One closed subpath of one segment only: the byte of the bridge carries the selection of its end.
  const auto bridge = After(ParsePath<T>("M0,0ne C4,0 6,0 8,4e"), 1, CRV_JoinEnabledAddingLineSegments<T>);
  EXPECT_EQ(bridge.Bytes(), (std::vector<int>{0x09, 0x41, 0xC0, 0xC0, 0x89}));
  for (const char* svg : {"M0,0 L4,0e", "M0,0e L4,0 L0,0eZ"}) {
    auto copy = ParsePath<T>(svg);
    EXPECT_EQ(CRV_JoinEnabled(LUMO_ARRAYS(copy)), -2);
    EXPECT_EQ(CRV_NodeEditJoinEnabled(LUMO_ARRAYS(copy)), -2);
    EXPECT_EQ(copy, ParsePath<T>(svg));
  }
  EXPECT_EQ(CRV_JoinEnabled<T>(nullptr, nullptr, 3), -2);
}

LUMO_TYPED_TEST(Join, ClosingAllInOnePassEqualsOneByOne) {
  test::Bits bits(61);
  int closed = 0;
  for (int k = 0; k < 4000; ++k) {
    auto path = test::RandomPath<T>(bits);
    for (auto& type : path.types) {
      if (type.IsMove() && bits.OneIn(2)) type.Set(NODETYPE::kLetter, false);
      if (type.IsOnCurve() && !type.IsClosed() && bits.OneIn(2)) type |= 1;
    }
    int ends = 0, open = 0;
    for (int i = 0; i < path.count(); ++i) {
      const bool isEnd = CRV_IsFirstOrLastOpenSubpathNode(path.types.data(), path.count(), i);
      ends += isEnd && path.type(i).IsEnabled();
      open += isEnd && path.type(i).IsMove();
    }
    if (ends < 3) continue;
    for (const bool addLines : {false, true}) {
      const auto fast = After(path, addLines ? open : 0,
                              addLines ? CRV_JoinEnabledAddingLineSegments<T> : CRV_JoinEnabled<T>);
      ASSERT_EQ(fast, slow::CloseEnabled(path, addLines)) << path;
      ASSERT_TRUE(test::IsWellFormed(fast)) << path;
      closed += fast.Bytes() != path.Bytes();
    }
  }
  EXPECT_GT(closed, 1000);
}

}  // namespace
