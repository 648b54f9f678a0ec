#include "lumo/crv_freehand.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <vector>

#include "support/generators.h"

namespace {

struct Free {
  void operator()(CRV_FREEHANDINFO* record) const { CRV_FreehandInfoDestruct(record); }
};
using Record = std::unique_ptr<CRV_FREEHANDINFO, Free>;

Record Make(int capacity, int growth) { return Record(CRV_FreehandInfoConstruct(capacity, growth)); }

std::vector<tagPOINT> Points(const Record& r) { return {r->points, r->points + r->count}; }
std::vector<int> Corners(const Record& r) { return {r->corners, r->corners + r->count}; }

TEST(Freehand, DropsRepeatedPointsWhenThereIsRoom) {
  const Record r = Make(2, 0);
  EXPECT_EQ(CRV_FreehandInfoAppendPoint(r.get(), {1, 1}), 1);
  EXPECT_EQ(CRV_FreehandInfoAppendPoint(r.get(), {1, 1}), 1);
  EXPECT_EQ(r->count, 1);
  EXPECT_EQ(CRV_FreehandInfoAppendPoint(r.get(), {2, 1}), 1);
  EXPECT_EQ(CRV_FreehandInfoAppendPoint(r.get(), {2, 1}), 0) << "room comes before the comparison";
  EXPECT_EQ(CRV_FreehandInfoAppendPoint(r.get(), {3, 1}), 0);
  EXPECT_EQ(r->count, 2);
}

TEST(Freehand, GrowsByTheStepAndKeepsEverything) {
  const Record r = Make(0, 3);
  for (int k = 0; k < 50; ++k) {
    const auto append = k % 4 == 0 ? CRV_FreehandInfoAppendPointForLine : CRV_FreehandInfoAppendPoint;
    ASSERT_EQ(append(r.get(), {k, k * k}), 1);
  }
  EXPECT_EQ(r->count, 50);
  EXPECT_EQ(r->capacity, 51);
  for (int k = 0; k < 50; ++k) {
    EXPECT_EQ(r->points[k], (tagPOINT{k, k * k}));
    EXPECT_EQ(r->lineMarks[k], k % 4 == 0);
    EXPECT_EQ(r->corners[k], k < 48 ? CRV_FreehandCalcCorner(k, r->points) : 0) << "known two points later";
  }
  EXPECT_GT(r->corners[2], 0);
  tagPOINT last{};
  EXPECT_EQ(CRV_FreehandInfoGetLastPoint(r.get(), &last), 1);
  EXPECT_EQ(last, (tagPOINT{49, 49 * 49}));
}

TEST(Freehand, ALineVertexDroppedAsARepetitionMarksTheLastPoint) {
  const Record r = Make(4, 0);
  CRV_FreehandInfoAppendPoint(r.get(), {1, 1});
  EXPECT_EQ(CRV_FreehandInfoAppendPointForLine(r.get(), {1, 1}), 1);
  EXPECT_EQ(r->count, 1);
  EXPECT_EQ(r->lineMarks[0], 1);
}

TEST(Freehand, FillsGapsAtEqualStepsTruncatedTowardsZero) {
  const Record r = Make(10, 0);
  const int spacing = 3;
  CRV_FreehandInfoAppendPointExt(r.get(), {0, 0}, &spacing);
  EXPECT_EQ(CRV_FreehandInfoAppendPointExt(r.get(), {10, 0}, &spacing), 1);
  EXPECT_EQ(Points(r), (std::vector<tagPOINT>{{0, 0}, {2, 0}, {5, 0}, {7, 0}, {10, 0}}));
  const Record back = Make(10, 0);
  CRV_FreehandInfoAppendPointExt(back.get(), {0, 0}, &spacing);
  CRV_FreehandInfoAppendPointExt(back.get(), {-10, -1}, &spacing);
  EXPECT_EQ(Points(back), (std::vector<tagPOINT>{{0, 0}, {-2, 0}, {-5, 0}, {-7, 0}, {-10, -1}}));
}

TEST(Freehand, KeepsTheCornerInFrontOfAGapOnly) {
  const int spacing = 10;
  const Record r = Make(100, 0);
  for (int k = 0; k <= 5; ++k) CRV_FreehandInfoAppendPoint(r.get(), {10 * k, 0});
  CRV_FreehandInfoAppendPointExt(r.get(), {50, 60}, &spacing);
  // Five straight points, the corner at index 5, then six fillers and the end.
  const Record plain = Make(100, 0);
  for (int k = 0; k < r->count; ++k) CRV_FreehandInfoAppendPoint(plain.get(), r->points[k]);
  ASSERT_EQ(Points(r), Points(plain));
  EXPECT_GT(plain->corners[5], 0);
  EXPECT_EQ(r->corners[5], plain->corners[5]) << "settled by the second filler and kept";
  EXPECT_EQ(r->corners[4], 0);
  EXPECT_GT(plain->corners[4], 0) << "settled by the first filler and reset";
  for (int k = 6; k < r->count - 3; ++k) EXPECT_EQ(r->corners[k], 0);
}

TEST(Freehand, WithoutUsableSpacingFillsNothing) {
  for (const int spacing : {0, -4}) {
    const Record r = Make(10, 0);
    CRV_FreehandInfoAppendPointExt(r.get(), {0, 0}, &spacing);
    CRV_FreehandInfoAppendPointExt(r.get(), {100, 0}, &spacing);
    CRV_FreehandInfoAppendPointExt(r.get(), {200, 0}, nullptr);
    EXPECT_EQ(r->count, 3);
  }
}

TEST(Freehand, AFillingAppendThatRunsOutOfRoomKeepsItsFillers) {
  const int spacing = 1;
  const Record r = Make(5, 0);
  CRV_FreehandInfoAppendPointExt(r.get(), {0, 0}, &spacing);
  EXPECT_EQ(CRV_FreehandInfoAppendPointExt(r.get(), {100, 0}, &spacing), 0);
  EXPECT_EQ(r->count, 5);
  const Record huge = Make(1, 1);
  CRV_FreehandInfoAppendPoint(huge.get(), {INT_MIN, INT_MIN});
  EXPECT_EQ(CRV_FreehandInfoAppendPointExt(huge.get(), {INT_MAX, INT_MAX}, &spacing), 0)
      << "more fillers than any record can hold: refused at once";
}

TEST(FreehandFromPoints, ReservesExactlyWhatTheFillingNeeds) {
  test::Bits bits(101);
  for (int round = 0; round < 200; ++round) {
    std::vector<tagPOINT> points;
    for (int k = bits.Below(12); k >= 0; --k) points.push_back(test::RandomPoint<tagPOINT>(bits, {}));
    const int n = static_cast<int>(points.size()), spacing = 1 + bits.Below(50), extra = bits.Below(5);
    const Record line(CRV_FreehandInfoConstructFromPolylineExt(points.data(), n, &spacing, 0, extra + 1));
    ASSERT_NE(line, nullptr) << "growth step 0: the capacity was enough";
    const Record appended = Make(1, 100);
    for (const tagPOINT& p : points) CRV_FreehandInfoAppendPointExt(appended.get(), p, &spacing);
    EXPECT_EQ(Points(line), Points(appended));
    EXPECT_EQ(Corners(line), Corners(appended));
    EXPECT_GE(line->capacity - line->count, extra);

    const Record ring(CRV_FreehandInfoConstructFromPolygonExt(points.data(), n, &spacing, 0, extra + 1));
    CRV_FreehandInfoClose(appended.get(), 1, &spacing);
    if (ring == nullptr) {
      EXPECT_LT(appended->count, 4);
      continue;
    }
    EXPECT_EQ(Points(ring), Points(appended));
    EXPECT_EQ(Corners(ring), Corners(appended));
    EXPECT_EQ(Points(ring).front(), Points(ring).back());
  }
}

TEST(FreehandFromPoints, RefusesBadInput) {
  const tagPOINT points[] = {{0, 0}, {9, 9}};
  const int spacing = 1;
  EXPECT_EQ(Record(CRV_FreehandInfoConstruct(-1, 5)), nullptr);
  EXPECT_EQ(Record(CRV_FreehandInfoConstructFromPolylineExt(nullptr, 2, &spacing, 5, 5)), nullptr);
  EXPECT_EQ(Record(CRV_FreehandInfoConstructFromPolylineExt(points, -1, &spacing, 5, 5)), nullptr);
  EXPECT_EQ(Record(CRV_FreehandInfoConstructFromPolylineExt(points, 2, &spacing, 5, INT_MAX)), nullptr);
  EXPECT_EQ(Record(CRV_FreehandInfoConstructFromPolygonExt(points, 2, nullptr, 5, 5)), nullptr)
      << "two points and back are too few to close";
  const tagPOINT ends[] = {{INT_MIN, 0}, {INT_MAX, 0}, {INT_MIN, 0}};
  EXPECT_EQ(Record(CRV_FreehandInfoConstructFromPolylineExt(ends, 3, &spacing, 0, 0)), nullptr);
  EXPECT_EQ(Record(CRV_FreehandInfoConstructFromPolylineExt(nullptr, 0, nullptr, 0, 3))->count, 0);
  EXPECT_EQ(CRV_FreehandInfoAppendPoint(nullptr, {0, 0}), 0);
  EXPECT_EQ(CRV_FreehandInfoAppendPointForLine(nullptr, {0, 0}), 0);
  EXPECT_EQ(CRV_FreehandInfoAppendPointExt(nullptr, {0, 0}, &spacing), 0);
  EXPECT_EQ(CRV_FreehandInfoClose(nullptr, 1, nullptr), 0);
  tagPOINT out{};
  EXPECT_EQ(CRV_FreehandInfoGetLastPoint(nullptr, &out), 0);
  const Record empty = Make(1, 0);
  EXPECT_EQ(CRV_FreehandInfoGetLastPoint(empty.get(), &out), 0);
  EXPECT_EQ(CRV_FreehandInfoGetLastPoint(empty.get(), nullptr), 0);
  CRV_FreehandInfoDestruct(nullptr);
}

TEST(FreehandCorner, OfStraightAndBentRuns) {
  const tagPOINT straight[] = {{0, 0}, {3, 1}, {6, 2}, {9, 3}, {12, 4}};
  EXPECT_EQ(CRV_FreehandCalcCorner(2, straight), 0);
  const tagPOINT right[] = {{0, 0}, {10, 0}, {20, 0}, {20, 10}, {20, 20}};
  // B = (60, 60) and D = (-40, 40): 256 * 4800 / 7200, truncated.
  EXPECT_EQ(CRV_FreehandCalcCorner(2, right), 170);
  const tagPOINT doubled[] = {{0, 0}, {20, 0}, {40, 0}, {40, 20}, {40, 40}};
  EXPECT_EQ(CRV_FreehandCalcCorner(2, doubled), 170) << "a curvature would be half as large";
  const tagPOINT back[] = {{0, 0}, {5, 0}, {10, 0}, {5, 0}, {0, 0}};
  EXPECT_EQ(CRV_FreehandCalcCorner(2, back), 0) << "no first difference, nothing to divide by";
  for (const int index : {-1, 0, 1}) EXPECT_EQ(CRV_FreehandCalcCorner(index, right), 0);
  const tagPOINT wide[] = {
      {INT_MIN, INT_MIN}, {INT_MAX, INT_MIN}, {0, INT_MAX}, {INT_MIN + 1, INT_MIN}, {INT_MAX, INT_MIN + 1}};
  EXPECT_GE(CRV_FreehandCalcCorner(2, wide), 0);
  const tagPOINT steep[] = {{INT_MAX, INT_MAX}, {0, 0}, {INT_MIN, 0}, {0, 1}, {INT_MAX, INT_MAX}};
  EXPECT_EQ(CRV_FreehandCalcCorner(2, steep), INT_MAX) << "clamped";
}

TEST(FreehandClose, JoinsTheEndsInTheMiddle) {
  const Record r = Make(10, 0);
  for (const tagPOINT p : {tagPOINT{0, 0}, {10, 0}, {10, 10}, {0, 10}, {-3, 1}})
    CRV_FreehandInfoAppendPoint(r.get(), p);
  EXPECT_EQ(CRV_FreehandInfoClose(r.get(), 0, nullptr), 1);
  EXPECT_EQ(r->count, 5);
  EXPECT_EQ(r->points[0], (tagPOINT{-1, 0})) << "truncated towards zero";
  EXPECT_EQ(r->points[4], (tagPOINT{-1, 0}));
  EXPECT_EQ(r->corners[0], r->corners[4]);
  const tagPOINT* const p = r->points;
  const tagPOINT seam[] = {p[2], p[3], p[0], p[1], p[2]}, second[] = {p[3], p[0], p[1], p[2], p[3]},
                 last[] = {p[1], p[2], p[3], p[4], p[1]};
  EXPECT_EQ(r->corners[0], CRV_FreehandCalcCorner(2, seam));
  EXPECT_EQ(r->corners[1], CRV_FreehandCalcCorner(2, second));
  EXPECT_EQ(r->corners[3], CRV_FreehandCalcCorner(2, last));
}

TEST(FreehandClose, OfFewPoints) {
  const auto close = [](std::vector<tagPOINT> points, int append, int& count) {
    const Record r = Make(10, 0);
    for (const tagPOINT& p : points) CRV_FreehandInfoAppendPoint(r.get(), p);
    const int result = CRV_FreehandInfoClose(r.get(), append, nullptr);
    count = r->count;
    return result == 0 ? std::vector<int>{} : Corners(r);
  };
  const std::vector<int> triangle(4, 250);
  int count = 0;
  EXPECT_EQ(close({{0, 0}, {9, 0}}, 1, count), std::vector<int>{});
  EXPECT_EQ(close({{0, 0}, {9, 0}, {9, 9}}, 0, count), std::vector<int>{});
  EXPECT_EQ(close({{0, 0}, {9, 0}, {9, 9}}, 1, count), triangle);
  EXPECT_EQ(count, 4);
  EXPECT_EQ(close({{0, 0}, {9, 0}, {9, 9}, {0, 9}}, 0, count), triangle);
  EXPECT_EQ(close({{0, 0}, {9, 0}, {0, 0}}, 1, count), std::vector<int>{})
      << "the ends meet, nothing is appended";
  EXPECT_EQ(count, 3);
}

TEST(FreehandClose, FailsWhereTheFirstPointDoesNotFit) {
  const Record r = Make(3, 0);
  for (const tagPOINT p : {tagPOINT{0, 0}, {10, 0}, {10, 10}}) CRV_FreehandInfoAppendPoint(r.get(), p);
  EXPECT_EQ(CRV_FreehandInfoClose(r.get(), 1, nullptr), 0);
  EXPECT_EQ(r->count, 3);
}

}  // namespace
