#include "lumo/crv_convert.h"

#include <gtest/gtest.h>

#include "edit/slow_edit.h"
#include "lumo/repair.h"

namespace {

using test::After;
using test::DPoint;
using test::ParsePath;
using test::Path;

LUMO_TYPED_SUITE(Convert);

LUMO_TYPED_TEST(Convert, LineToCurveTracesTheLine) {
  const auto convert = [](const char* svg, int room, int index) {
    return After(ParsePath<T>(svg), room, CRV_ToCurveNode<T>, index);
  };
  EXPECT_EQ(convert("M0,0 L3,3es", 2, 1), ParsePath<T>("M0,0 C1,1 2,2 3,3es"));
  EXPECT_EQ(convert("M0,0 L-3,-3 L1,1", 2, 1), ParsePath<T>("M0,0 C-1,-1 -2,-2 -3,-3 L1,1"));
  // Nothing to convert, or no such node.
  for (const char* svg : {"M0,0 C1,1 2,2 3,3", "M0,0"}) EXPECT_EQ(convert(svg, 0, 1), ParsePath<T>(svg));
  for (const int index : {-1, 0, 2}) EXPECT_EQ(convert("M0,0 L3,3", 0, index), ParsePath<T>("M0,0 L3,3"));
}

TEST(ConvertInteger, HandlesOfALineAreRoundedHalfAwayFromZero) {
  auto path = slow::WithRoom(ParsePath<tagPOINT>("M10,10 L12,5"), 2);  // offsets 2/3, 4/3 and -5/3, -10/3
  CRV_ToCurveNode(path.points.data(), path.types.data(), 2, 1);
  EXPECT_EQ(path, ParsePath<tagPOINT>("M10,10 C11,8 11,7 12,5"));
  // Across the whole range the offset does not fit 32 bits, the handles do.
  path = slow::WithRoom(ParsePath<tagPOINT>("M-2147483648,0 L2147483647,0"), 2);
  CRV_ToCurveNode(path.points.data(), path.types.data(), 2, 1);
  EXPECT_EQ(path.points[2].x, 715827882);
}

LUMO_TYPED_TEST(Convert, EnabledLinesToCurvesInOnePassEqualNodeByNode) {
  test::Bits bits(31);
  for (int k = 0; k < 1000; ++k) {
    const auto path = test::RandomPath<T>(bits);
    const int room = 2 * CRV_HowManyEnabledLines(path.types.data(), path.count());
    const auto fast = After(path, room, CRV_ToCurveEnabled<T>);
    ASSERT_EQ(fast, slow::ToCurveEnabled(path)) << path;
    ASSERT_EQ(fast.count(), path.count() + room);
  }
}

LUMO_TYPED_TEST(Convert, EnabledCurvesToLinesInOnePassEqualNodeByNode) {
  test::Bits bits(32);
  for (int k = 0; k < 3000; ++k) {
    const auto path = test::RandomPath<T>(bits);
    const auto fast = After(path, 0, CRV_ToLineEnabled<T>);
    ASSERT_EQ(fast, slow::ToLineEnabled(path)) << path;
    ASSERT_TRUE(test::IsWellFormed(fast)) << path;
  }
}

LUMO_TYPED_TEST(Convert, CurveToLineKeepsFlagsAndDropsContinuityBetweenLines) {
  EXPECT_EQ(After(ParsePath<T>("M0,0 L9,0s C9,3 9,6 9,9eys L0,9"), 0, CRV_ToLineEnabled<T>),
            ParsePath<T>("M0,0 L9,0 L9,9e L0,9"));
  // A closing node stays no user node; both closed ends become cusps when lines meet there.
  EXPECT_EQ(After(ParsePath<T>("M0,0s L9,0 C9,3 6,6 0,0esZ"), 0, CRV_ToLineEnabled<T>),
            ParsePath<T>("M0,0 L9,0 L0,0eZ"));
  EXPECT_EQ(After(ParsePath<T>("M0,0s C1,0 2,0 9,0e C9,3 6,6 0,0sZ"), 0, CRV_ToLineEnabled<T>).Bytes(),
            (std::vector<int>{0x1C, 0x45, 0xC0, 0xC0, 0x98}))
      << "a curve comes in at the closed end, so it stays smooth";
}

LUMO_TYPED_TEST(Convert, SingleCurveToLineRepairsContinuityItsOwnWay) {
  const auto at = [](const char* svg, int index) {
    return After(ParsePath<T>(svg), 0, CRV_ToLineNode<T>, index);
  };
  EXPECT_EQ(at("M0,0 L9,0s C9,3 9,6 9,9y", 4), ParsePath<T>("M0,0 L9,0 L9,9s"))
      << "a line node before it becomes a cusp, symmetric becomes smooth";
  EXPECT_EQ(at("M0,0 C1,0 2,0 3,0s C4,0 5,0 6,0s C9,3 9,6 9,9", 6),
            ParsePath<T>("M0,0 C1,0 2,0 3,0s L6,0s C9,3 9,6 9,9"))
      << "a curve before and after: both stay smooth";
  EXPECT_EQ(at("M0,0 C1,0 2,0 3,0s C4,0 5,0 6,0s L9,9 L8,8 L7,7", 6),
            ParsePath<T>("M0,0 C1,0 2,0 3,0 L6,0s L9,9 L8,8 L7,7"))
      << "no curve after it: the node BEFORE it becomes a cusp, it does not";
  EXPECT_EQ(at("M0,0 C1,0 2,0 3,0s C4,0 5,0 6,0s L9,9", 6), ParsePath<T>("M0,0 C1,0 2,0 3,0s L6,0s L9,9"))
      << "so near to the end of the path that the node after it is not looked at";
  EXPECT_EQ(at("M0,0 L3,0es C3,30 6,30 9,9 L10,10", 1).points[2], (T{33, 0}))
      << "smoothing runs although nothing was converted";
}

LUMO_TYPED_TEST(Convert, ContinuityIsWrittenOnlyWhereItCanHold) {
  struct Case {
    const char* svg;
    ContinuityType continuity;
    std::vector<int> bytes;
  };
  const auto smooth = ContinuityType::smooth, symmetric = ContinuityType::symmetric,
             cusp = ContinuityType::cusp;
  const Case cases[] = {
      {"M0,0e L9,0e L9,9e", smooth, {0x05, 0x45, 0x45}},                        // lines and open ends
      {"M0,0e L9,0e C9,3 9,6 9,9e", smooth, {0x05, 0x55, 0xC0, 0xC0, 0x85}},    // line into curve
      {"M0,0 C9,3 9,6 9,9e L0,9", smooth, {0x04, 0xC0, 0xC0, 0x95, 0x44}},      // curve into line
      {"M0,0 C9,3 9,6 9,9ey L0,9", symmetric, {0x04, 0xC0, 0xC0, 0xA5, 0x44}},  // refused, kept
      {"M0,0 C9,3 9,6 9,9e C0,9 0,8 0,7", symmetric, {0x04, 0xC0, 0xC0, 0xA5, 0xC0, 0xC0, 0x84}},
      {"M0,0e C9,3 9,6 0,0eZ", symmetric, {0x2D, 0xC0, 0xC0, 0xA9}},
      {"M0,0e C9,3 9,6 0,0Z", symmetric, {0x2D, 0xC0, 0xC0, 0x88}},  // the twin is not written
      {"M0,0es L9,0es C9,3 9,6 9,9ey", cusp, {0x05, 0x45, 0xC0, 0xC0, 0x85}},
      {"M0,0 C9,3 9,6 9,9es C0,9 0,8 0,7",
       static_cast<ContinuityType>(3),
       {0x04, 0xC0, 0xC0, 0x95, 0xC0, 0xC0, 0x84}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(After(ParsePath<T>(c.svg), 0, CRV_SetContEnabled<T>, c.continuity).Bytes(), c.bytes) << c.svg;
  }
  // Refused as symmetric, but smoothing runs: the handle turns onto the line.
  auto path = ParsePath<T>("M0,0 C0,9 10,30 10,10es L40,10");
  CRV_SetContEnabled(LUMO_ARRAYS(path), symmetric);
  EXPECT_EQ(path.points[2], (T{-10, 10}));
}

/// The points of a path after a node of it was smoothed.
template <class T>
std::vector<T> Smoothed(const char* svg, int node) {
  auto path = ParsePath<T>(svg);
  SmoothNode(LUMO_ARRAYS(path), node);
  return path.points;
}

LUMO_TYPED_TEST(Convert, SmoothingKeepsLengthsAndSharesThemWhenSymmetric) {
  auto points = Smoothed<T>("M-100,0 C-50,0 -10,0 0,0y C30,0 60,60 90,90", 3);
  EXPECT_EQ(points[2], (T{-20, 0}));
  EXPECT_EQ(points[4], (T{20, 0}));
  // Parallel to the chord of the old handles, not to a bisector: handles (-30,0) and (0,40), chord (30,40).
  points = Smoothed<T>("M-100,0 C-50,0 -30,0 0,0s C0,40 60,60 90,90", 3);
  EXPECT_EQ(points[2], (T{-18, -24}));
  EXPECT_EQ(points[4], (T{24, 32}));
  points = Smoothed<T>("M5,5 L5,5s C30,0 60,60 90,90", 1);
  EXPECT_EQ(points[2], (T{30, 0})) << "a zero-length line in gives no direction";
  // Neither cusps nor hidden inner nodes are touched.
  for (const char* svg : {"M0,0 L9,0 C9,3 9,6 9,9", "M0,0 L9,0sn C9,3 9,6 9,9"}) {
    auto path = ParsePath<T>(svg);
    SmoothNodes(LUMO_ARRAYS(path));
    EXPECT_EQ(path, ParsePath<T>(svg));
  }
}

TEST(ConvertInteger, SmoothingTruncatesAndAHandleBesideALineIsBiased) {
  // Line along (-3,-4): the offset of the handle is exactly (-6,-8), biased and truncated (-5,-7).
  EXPECT_EQ(Smoothed<tagPOINT>("M3,4 L0,0s C0,10 60,60 90,90", 1)[2], (tagPOINT{-5, -7}));
  // Towards a line: the offset (6,8) is exact and taken away from the node.
  EXPECT_EQ(Smoothed<tagPOINT>("M90,0 C0,20 0,10 0,0s L3,4", 3)[2], (tagPOINT{-6, -8}));
  // Between curves no bias: lengths 10 and 10 along a chord of (20,2) give 9.95 and 0.995.
  const auto points = Smoothed<tagPOINT>("M90,0 C0,20 -10,0 0,0s C10,2 20,20 30,30", 3);
  EXPECT_EQ(points[2], (tagPOINT{-9, 0}));
  EXPECT_EQ(points[4], (tagPOINT{10, 1}));
}

LUMO_TYPED_TEST(Convert, SplitEndsAreDemotedWithTheirTwins) {
  auto path = ParsePath<T>("M0,0y C9,0 9,9 5,5y C9,3 6,6 0,0yZ");
  SmoothEndNodes(path.types.data(), 0, 3, path.count());
  EXPECT_EQ(path.Bytes(), (std::vector<int>{0x1C, 0xC0, 0xC0, 0x94, 0xC0, 0xC0, 0x98}));
  path = ParsePath<T>("M0,0y C9,0 9,9 5,5y");  // open ends are not smoothable
  SmoothEndNodes(path.types.data(), -1, 9, path.count());
  SmoothEndNodes(path.types.data(), 0, 3, path.count());
  EXPECT_EQ(path, ParsePath<T>("M0,0y C9,0 9,9 5,5y"));
}

LUMO_TYPED_TEST(Convert, TransformMovesEnabledPointsOnly) {
  const TavMath::MATRIX shift{1, 0, 0, 1, 10, 0};
  auto path = ParsePath<T>("M0,0e C1,1 2,2 3,3 L4,4e");
  path.types[2] |= 1;
  EXPECT_EQ(CRV_TransformEnabled(path.points.data(), path.types.data(), 5, &shift, 0), 5);
  EXPECT_EQ(path.points, (std::vector<T>{{10, 0}, {1, 1}, {12, 2}, {3, 3}, {14, 4}}));
  EXPECT_EQ(CRV_TransformEnabled(path.points.data(), path.types.data(), 5, nullptr, 0), -1);
  path = ParsePath<T>("M0,0 L10,0s C20,0 30,30 40,40");
  path.types[0] |= 1;
  const TavMath::MATRIX up{1, 0, 0, 1, 10, 40};  // the line now comes straight down
  CRV_TransformEnabled(path.points.data(), path.types.data(), 5, &up, 1);
  EXPECT_NEAR(path.points[2].y, -10, 1);
}

LUMO_TYPED_TEST(Convert, EnabledBoxIsYUp) {
  auto path = ParsePath<T>("M0,0e L50,50 L5,10e");
  tagRECT box{1, 2, 3, 4};
  EXPECT_EQ(CRV_GetEnabledBoundingBox(path.points.data(), path.types.data(), 3, &box), 1);
  EXPECT_EQ((std::vector<int>{box.left, box.top, box.right, box.bottom}), (std::vector<int>{0, 10, 5, 0}));
  path = ParsePath<T>("M0,0 L50,50");
  EXPECT_EQ(CRV_GetEnabledBoundingBox(path.points.data(), path.types.data(), 2, &box), 0);
  EXPECT_EQ(box.top, 10) << "unwritten";
  EXPECT_EQ(CRV_GetEnabledBoundingBox<T>(path.points.data(), path.types.data(), 2, nullptr), 0);
}

LUMO_TYPED_TEST(Convert, ThinSubpathsRunOneWay) {
  const struct {
    const char *svg, *thin;
  } cases[] = {
      {"M0,0 L100,0 L0,0Z", "M0,0 L100,0"},
      {"M0,0 L100,0 L200,50 L100,1 L0,1", "M0,0 L100,0 L200,50"},  // open, ends near
      {"M0,0 C10,50 50,90 100,90 C51,90 10,51 0,0Z", "M0,0 C10,50 50,90 100,90"},
      {"M0,0 L100,0 L101,1 L100,1 L0,0Z", "M0,0 L100,0 L101,1"},  // a short cap at the far end folds, too
      {"M0,0 L1,0 L100,0 L0,0Z", "M0,0 L100,0"},                  // a short stub without partner is dropped
      {"M0,0 L100,0 L100,100 L0,0Z", nullptr},                    // has an area
      {"M0,0 C100,0 0,100 0,0Z", nullptr},                        // a drop made of one curve has one, too
      {"M0,0 L100,0 L0,50", nullptr},                             // open with ends apart
      {"M0,0 L100,0", nullptr},
      {"M0,0 L1,0", ""},  // fewer than three nodes
      {"M0,0 C0,0 1,1 0,0Z", "M0,0 C0,0 1,1 0,0"},
  };
  for (const auto& c : cases) {
    const auto path = ParsePath<T>(c.svg);
    const auto thin = After(path, 0, CRV_TransferThisThinSubpathToRegular<T>, path.count() - 1, 2);
    EXPECT_EQ(thin, c.thin ? ParsePath<T>(c.thin) : path) << c.svg;
  }
  auto path = ParsePath<T>("M0,0 L100,0 L0,0Z");
  EXPECT_EQ(CRV_TransferThisThinSubpathToRegular(path.points.data(), path.types.data(), 3, 3, 2), 3);
  EXPECT_EQ(CRV_TransferThisThinSubpathToRegular(path.points.data(), path.types.data(), 3, 0, -1), 3);
}

LUMO_TYPED_TEST(Convert, AfterAWeldOnlyClosedSubpathsWithAnAreaStay) {
  const auto path = ParsePath<T>("M0,0 L9,0 L0,0Z M0,0 L90,0 L90,90Z M5,5 L6,60 M0,0 L9,0 L0,0Z");
  EXPECT_EQ(After(path, 0, CRV_TransferAllThinSubpathsToRegular<T>, 1),
            ParsePath<T>("M0,0 L9,0 M0,0 L90,0 L90,90Z M5,5 L6,60 M0,0 L9,0"));
  EXPECT_EQ(After(path, 0, CRV_RepairClosedCurveAfterWeld<T>, 1), ParsePath<T>("M0,0 L90,0 L90,90Z"));
  auto copy = path;
  EXPECT_EQ(CRV_RepairBadClosedSubpaths(LUMO_ARRAYS(copy)), 0);
  EXPECT_EQ(copy, path);
}

}  // namespace
