#include <gtest/gtest.h>

#include <limits>

#include "edit/slow_edit.h"

namespace {

using test::After;
using test::DPoint;
using test::ParsePath;
using test::Path;

LUMO_TYPED_SUITE(Break);

LUMO_TYPED_TEST(Break, EnabledNodesBecomeEndsAndStarts) {
  const struct {
    const char *svg, *broken;
    int room;
  } cases[] = {
      {"M0,0e L1,0 L2,0e", "M0,0e L1,0 L2,0e", 0},  // open ends stay
      {"M0,0 L1,0es L2,0", "M0,0 L1,0 M1,0e L2,0", 1},
      {"M0,0 C1,0 2,0 3,0ey C4,0 5,0 6,0", "M0,0 C1,0 2,0 3,0 M3,0e C4,0 5,0 6,0", 1},
      {"M0,0e L1,0 L1,1 L0,0eZ", "M0,0e L1,0 L1,1 L0,0", 0},       // opened at its ends
      {"M0,0 L1,0 L1,1 L0,0eZ", "M0,0e L1,0 L1,1 L0,0", 0},        // either end stands for both
      {"M0,0 L1,0e L1,1 L0,1 Z", "M1,0e L1,1 L0,1 L0,0 L1,0", 1},  // turned to the break
      {"M0,0 L1,0e L1,1 L0,1e Z", "M1,0e L1,1 L0,1 M0,1e L0,0 L1,0", 2},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(After(ParsePath<T>(c.svg), c.room, CRV_BreakEnabled<T>, 0), ParsePath<T>(c.broken)) << c.svg;
  }
  EXPECT_EQ(After(ParsePath<T>("M0,0 L1,0e L2,0"), 1, CRV_BreakEnabled<T>, 1),
            ParsePath<T>("M0,0 L1,0e M1,0e L2,0"));
  // A closed end without partner: nothing is broken, not even elsewhere.
  const Path<T> lone{{{0, 0}, {1, 0}, {2, 0}, {5, 5}}, {0x04, 0x45, 0x44, 0x0D}};
  auto copy = lone;
  EXPECT_EQ(CRV_BreakEnabled(copy.points.data(), copy.types.data(), 4, 0), -1);
  EXPECT_EQ(copy, lone);
}

LUMO_TYPED_TEST(Break, EnabledInOnePassEqualsNodeByNode) {
  test::Bits bits(51);
  int broken = 0;
  for (int k = 0; k < 5000; ++k) {
    auto path = test::RandomPath<T>(bits);
    if (bits.OneIn(2)) path.types[0].Set(NODETYPE::kLetter, false);
    int room = 0;
    for (int i = 0; i < path.count(); ++i) {
      room += path.type(i).IsEnabled() && path.type(i).IsOnCurve() &&
              !CRV_IsFirstOrLastSubpathNode(path.types.data(), path.count(), i);
    }
    const int keep = bits.Below(2);
    const auto fast = After(path, room, CRV_BreakEnabled<T>, keep);
    ASSERT_EQ(fast, slow::BreakEnabled(path, keep)) << path;
    ASSERT_TRUE(test::IsWellFormed(fast)) << path;
    broken += room > 0;
  }
  EXPECT_GT(broken, 1000);
}

LUMO_TYPED_TEST(Break, AtALocation) {
  const struct {
    const char* svg;
    int index;
    double t;
    const char* broken;
  } cases[] = {
      {"M0,0 L4,0e L8,0", 1, 0.5, "M0,0 L2,0 M2,0 L4,0e L8,0"},
      {"M0,0 L4,0e L8,0", 1, 1.0, "M0,0 L4,0e M4,0 L8,0"},
      {"M0,0 L4,0e L8,0", 2, 0.0, "M0,0 L4,0e M4,0 L8,0"},
      {"M0,0 L4,0 L4,4 Z", 3, 1.0, "M0,0 L4,0 L4,4 L0,0"},
      {"M0,0 L4,0 L4,4 Z", 0, 1.0, "M0,0 L4,0 L4,4 L0,0"},
      {"M0,0 L4,0 L4,4 Z", 1, 0.0, "M0,0 L4,0 L4,4 L0,0"},
      {"M0,0 L4,0 L4,4 Z", 0, 0.5, "M2,2 L0,0 L4,0 L4,4 L2,2"},  // the start stands for the closing segment
      {"M0,0 L4,0 L4,4 Z", 2, 0.5, "M4,2 L4,4 L0,0 L4,0 L4,2"},
      {"M0,0s L4,0 C8,0 8,8 0,0sZ", 1, 0.5, "M2,0 L4,0 C8,0 8,8 0,0s L2,0"},
  };
  for (const auto& c : cases) {
    const auto broken = After(ParsePath<T>(c.svg), 4, CRV_BreakAtLocation<T>, c.index, c.t);
    EXPECT_EQ(broken, ParsePath<T>(c.broken)) << c.svg << " at " << c.index << ", " << c.t;
  }
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const auto path = ParsePath<T>("M0,0 L4,0 C5,0 6,0 7,0");
  const std::pair<int, double> nowhere[] = {{0, 0.5}, {0, 0},    {0, 1},   {4, 1},   {1, 0},    {2, 1},
                                            {2, 0.5}, {1, -0.1}, {1, 1.1}, {1, nan}, {-1, 0.5}, {5, 0.5}};
  for (const auto& [index, t] : nowhere) {
    auto copy = path;
    EXPECT_EQ(CRV_BreakAtLocation(copy.points.data(), copy.types.data(), 5, index, t), -1)
        << index << " " << t;
    EXPECT_EQ(copy, path);
  }
  Path<T> lone{{{0, 0}}, {0x0C}};
  EXPECT_EQ(CRV_BreakAtLocation(lone.points.data(), lone.types.data(), 1, 0, 1.0), -1);
}

}  // namespace
