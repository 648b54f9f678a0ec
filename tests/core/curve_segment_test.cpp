#include "lumo/curve_segment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <limits>

#include "support/generators.h"
#include "support/guarded_array.h"
#include "support/oracles.h"

namespace {

using Lumo::CurveSegmentT;
using Lumo::CurveSegmentType;
using TavMath::DPoint;
using test::IntPath;

template <class T>
CurveSegmentT<T> SegmentOf(const test::Path<T>& path, std::size_t number) {
  return {path.types.data(), path.points.data(), number, path.points.size()};
}

template <class T>
std::vector<std::size_t> Numbers(const test::Path<T>& path, std::size_t first, std::size_t end) {
  std::vector<std::size_t> out;
  for (const auto& segment : Lumo::details::GetCurveSegments_Raw(path.types.data(), path.points.data(),
                                                                 TavUtils::IndexRange(first, end)))
    if (segment) out.push_back(segment->number());
  return out;
}

TEST(CurveSegment, NumbersAndNeighbours) {
  const auto path = test::ParsePath<tagPOINT>("M0,0 L1,0 C2,0 3,0 4,0 L5,0");
  EXPECT_EQ(Numbers(path, 0, 6), (std::vector<std::size_t>{0, 1, 2, 5}));
  const auto curve = SegmentOf(path, 2);
  EXPECT_EQ(curve.type(), CurveSegmentType::curve);
  EXPECT_EQ(curve.next_number(), 5u);
  EXPECT_EQ(curve.startIndex(), 1u);
  EXPECT_EQ(curve.endIndex(), 4u);
  EXPECT_EQ(curve.arc_points().size(), 2u);
  EXPECT_EQ(curve.arc_nodes()[0], 0xC0);
  EXPECT_EQ(curve.startpoint(), (tagPOINT{1, 0}));
  EXPECT_EQ(curve.endpoint(), (tagPOINT{4, 0}));
  EXPECT_EQ(curve.node(), 0x84);
  const auto line = curve.next();
  EXPECT_EQ(line.type(), CurveSegmentType::line);
  EXPECT_EQ(line.prev_number(), 2u);
  EXPECT_TRUE(line.arc_points().empty());
  EXPECT_FALSE(line.next()) << "the count it was built with ends the walk";
  const auto move = SegmentOf(path, 0);
  EXPECT_EQ(move.type(), CurveSegmentType::move);
  EXPECT_EQ(move.startIndex(), 0u);
  EXPECT_FALSE(move.prev());
  EXPECT_EQ(line.prev().prev().prev().number(), 0u);
}

TEST(CurveSegment, IsEmptyWhereTheArraysHoldNone) {
  const auto path = test::ParsePath<tagPOINT>("M0,0 L1,0 C2,0 3,0 4,0 L5,0");
  EXPECT_FALSE(SegmentOf(path, 4)) << "a curve node is no segment's number";
  EXPECT_FALSE(SegmentOf(path, 3)) << "a second control point";
  EXPECT_FALSE(SegmentOf(path, 6));
  EXPECT_FALSE((CurveSegmentT<tagPOINT>(path.types.data(), path.points.data(), 2, 4)))
      << "reaches past the count";
  EXPECT_TRUE((CurveSegmentT<tagPOINT>(path.types.data(), path.points.data(), 2)));
  EXPECT_FALSE((CurveSegmentT<tagPOINT>(nullptr, nullptr, 0, 1)));
  const NODETYPE line = 0x44;
  const tagPOINT point{};
  EXPECT_FALSE((CurveSegmentT<tagPOINT>(&line, &point, 0, 1))) << "a line without a start";
  const CurveSegmentT<tagPOINT> none;
  EXPECT_EQ(none.type(), CurveSegmentType::none);
  EXPECT_EQ(none.node(), 0);
  EXPECT_EQ(none.endIndex(), 0u);
  EXPECT_FALSE(none.next());
  Lumo::ClosestPoint<tagPOINT, Lumo::SegmentPosition> result;
  EXPECT_FALSE(none.FindClosestPoint({0, 0}, result));
}

TEST(CurveSegment, StepFromACurveNodeGoesBackToTheFront) {
  const NODETYPE types[] = {0x04, 0x84, 0x44};
  EXPECT_EQ(Lumo::NextCurveSegment(types)(1), 1u);
  EXPECT_FALSE(Lumo::ValidSegments(types, 3));
}

TEST(SegmentRanges, EndAtTheirEnd) {
  const auto path = test::ParsePath<tagPOINT>("M0,0 L1,0 C2,0 3,0 4,0 L5,0 M6,0 L7,0");
  EXPECT_EQ(Numbers(path, 1, 7), (std::vector<std::size_t>{1, 2, 5, 6}));
  EXPECT_EQ(Numbers(path, 1, 4), (std::vector<std::size_t>{1})) << "the curve runs past the end";
  EXPECT_TRUE(Numbers(path, 4, 4).empty());
  EXPECT_TRUE(Numbers(path, 5, 2).empty());
}

TEST(SegmentRanges, VisitEverySegmentAndEndOnMalformedArrays) {
  test::Bits bits(51);
  for (int round = 0; round < 500; ++round) {
    const auto path = test::RandomPath<DPoint>(bits);
    const NODETYPE* const types = path.types.data();
    std::size_t expected = 0;
    for (const NODETYPE type : path.types) expected += !type.IsControl();
    EXPECT_EQ(Numbers(path, 0, path.points.size()).size(), expected) << path;
    EXPECT_TRUE(Lumo::ValidSegments(types, path.types.size()));

    const test::GuardedPath<DPoint> bad(test::RandomMalformedPath<DPoint>(bits, 12));
    const auto count = static_cast<std::size_t>(bad.count);
    std::size_t steps = 0;
    for (const auto& segment : Lumo::details::GetCurveSegments_Raw(bad.types.data(), bad.points.data(),
                                                                   TavUtils::IndexRange(0, count))) {
      ASSERT_LE(++steps, count);
      if (!segment) continue;
      EXPECT_LT(segment->endIndex(), count);
      segment->next();
      segment->prev();
    }
    Lumo::ValidSegments(bad.types.data(), count);
  }
}

// Against the walk from segment to segment, on paths long enough for whole blocks with one byte changed.
TEST(ValidSegments, IsThatTheWalkArrivesAtTheEnd) {
  test::Bits bits(78);
  int valid = 0, invalid = 0;
  for (int round = 0; round < 3000; ++round) {
    std::vector<NODETYPE> types;
    const int longest = bits.OneIn(100) ? 9000 : 150;
    for (int left = bits.Below(longest); left > 0; --left) {
      const unsigned char kinds[] = {NODETYPE::kLine, NODETYPE::kControl, NODETYPE::kMove};
      const unsigned char kind = types.empty() ? NODETYPE::kMove : kinds[bits.Below(3)];
      types.emplace_back(kind);
      if (kind != NODETYPE::kControl) continue;
      types.emplace_back(NODETYPE::kControl);
      types.emplace_back(NODETYPE::kCurve);
    }
    if (!types.empty() && !bits.OneIn(3)) {
      const int at = bits.OneIn(3) ? bits.Below(2) * static_cast<int>(types.size() - 1)
                                   : bits.Below(static_cast<int>(types.size()));
      types[static_cast<std::size_t>(at)] = static_cast<unsigned char>(bits());
    }
    if (!types.empty() && bits.OneIn(6)) types.pop_back();
    std::size_t number = 0;
    const std::vector<tagPOINT> points(types.size());
    while (number < types.size()) {
      const Lumo::CurveSegmentT<tagPOINT> segment(types.data(), points.data(), number, types.size());
      if (segment.nodes().empty()) break;
      number = segment.next_number();
    }
    const bool whole = number == types.size();
    ++(whole ? valid : invalid);
    ASSERT_EQ(Lumo::ValidSegments(types.data(), types.size()), whole) << types.size() << " nodes, " << number;
  }
  EXPECT_GT(std::min(valid, invalid), 500);
  EXPECT_TRUE(Lumo::ValidSegments(nullptr, 0));
  EXPECT_FALSE(Lumo::ValidSegments(nullptr, 1));
}

TEST(SegmentIndex, ConvertsBothWays) {
  test::Bits bits(52);
  for (int round = 0; round < 300; ++round) {
    const IntPath path = test::RandomPath<tagPOINT>(bits);
    const NODETYPE* const types = path.types.data();
    const int count = path.count();
    int segment = 0;
    for (int k = 0; k < count; ++k) {
      if (types[k].IsLine() || types[k].IsCurve()) {
        const int start = types[k].IsLine() ? k - 1 : k - 3;
        EXPECT_EQ(Lumo::SegmentToLastNodeIndex(types, count, segment), k);
        EXPECT_EQ(Lumo::SegmentToFirstNodeIndex(types, count, segment), start);
        EXPECT_EQ(Lumo::FirstNodeToSegmentIndex(types, count, start), segment);
        ++segment;
      }
      EXPECT_EQ(Lumo::LastNodeToSegmentIndex(types, count, k), segment - 1);
    }
    EXPECT_EQ(Lumo::GetSegmentCount(types, count), segment);
    EXPECT_EQ(Lumo::SegmentToLastNodeIndex(types, count, segment), -1);
  }
}

TEST(SegmentIndex, RefusesWhatIsNotThere) {
  const NODETYPE moves[] = {0x04, 0x04};
  EXPECT_EQ(Lumo::GetSegmentCount(moves, 2), 0);
  EXPECT_EQ(Lumo::GetSegmentCount(moves, -1), 0);
  EXPECT_EQ(Lumo::LastNodeToSegmentIndex(moves, 2, 0), -1);
  for (const int node : {-1, 1, 2, INT_MAX}) EXPECT_EQ(Lumo::FirstNodeToSegmentIndex(moves, 2, node), -1);
  EXPECT_EQ(Lumo::SegmentToLastNodeIndex(moves, 2, -1), -1);
  EXPECT_EQ(Lumo::SegmentToFirstNodeIndex(moves, 2, 0), -1);
  // One segment in each of many blocks, so that whole blocks are skipped.
  std::vector<NODETYPE> sparse(50000, NODETYPE(0x04));
  for (std::size_t k = 0; k < sparse.size(); k += 5000) sparse[k] = 0x44;
  EXPECT_EQ(Lumo::SegmentToLastNodeIndex(sparse.data(), 50000, 7), 35000);
}

TEST(ClosestOnSegment, KeepsTheExactDistanceAndRoundsThePointOnly) {
  const auto path = test::ParsePath<tagPOINT>("M0,0 L10,3");
  const auto line = SegmentOf(path, 1);
  Lumo::ClosestPoint<tagPOINT, Lumo::SegmentPosition> result;
  ASSERT_TRUE(line.FindClosestPoint({5, 1}, result));
  EXPECT_EQ(result.point, (tagPOINT{5, 1})) << "rounded";
  EXPECT_NEAR(result.distanceSqrd, 25.0 / 109.0, 1e-15);
  EXPECT_NEAR(result.position.t, 53.0 / 109.0, 1e-15);
  EXPECT_FALSE(line.IsPointOnCurve({5, 1}, 0));
  EXPECT_TRUE(line.IsPointOnCurve({5, 1}, 0.48));
  EXPECT_TRUE(line.IsPointOnCurve({10, 3}, 0));
  EXPECT_TRUE(line.IsPointOnCurve({12, 3}, 2)) << "the tolerance itself passes";
}

TEST(ClosestOnSegment, ToleranceZeroIsExactAtTheFarEndsOfThePlane) {
  const IntPath path{{{INT_MIN, INT_MIN}, {INT_MAX, INT_MAX - 1}}, {0x04, 0x44}};
  const auto line = SegmentOf(path, 1);
  EXPECT_TRUE(line.IsPointOnCurve(path.points[0], 0));
  EXPECT_FALSE(line.IsPointOnCurve({0, 0}, 0)) << "beside the line by less than a unit";
  const IntPath thirds{{{0, 0}, {2147483646, 3}}, {0x04, 0x44}};
  EXPECT_TRUE(SegmentOf(thirds, 1).IsPointOnCurve({715827882, 1}, 0));
  EXPECT_FALSE(SegmentOf(thirds, 1).IsPointOnCurve({715827883, 1}, 0));
}

TEST(ClosestOnSegment, AgreesWithDenseSampling) {
  test::Bits bits(53);
  for (int round = 0; round < 200; ++round) {
    const test::PathOptions options{.maxSubpaths = 1};
    const auto path = test::RandomPath<DPoint>(bits, options);
    const auto lines = test::Flatten(path, 512);
    const DPoint query = test::RandomPoint<DPoint>(bits, options);
    double best = std::numeric_limits<double>::max();
    for (const auto& segment : Lumo::details::GetCurveSegments_Raw(
             path.types.data(), path.points.data(), TavUtils::IndexRange(0, path.points.size()))) {
      Lumo::ClosestPoint<DPoint, Lumo::SegmentPosition> result;
      ASSERT_TRUE(segment && segment->FindClosestPoint(query, result));
      EXPECT_NEAR(std::sqrt(result.distanceSqrd), TavMath::Distance(result.point, query), 1e-6);
      if (segment->type() != CurveSegmentType::move || path.count() == 1)
        best = std::min(best, result.distanceSqrd);
    }
    EXPECT_NEAR(std::sqrt(best), test::DistanceTo(lines, query), 0.05) << path;
  }
}

TEST(ClosestOnSegment, OfCoordinatesThatAreNoNumbersFindsNothing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const auto path = test::ParsePath<DPoint>("M0,0 L1,0 C2,0 3,0 4,0");
  Lumo::ClosestPoint<DPoint, Lumo::SegmentPosition> result;
  for (const std::size_t number : {1u, 2u}) {
    EXPECT_FALSE(SegmentOf(path, number).FindClosestPoint({nan, 0}, result));
    EXPECT_FALSE(SegmentOf(path, number).IsPointOnCurve({nan, 0}, 1e9));
  }
  EXPECT_EQ(result.position.t, -1);
}

TEST(SegmentBox, HoldsTheControlPoints) {
  const auto whole = test::ParsePath<tagPOINT>("M0,0 C-5,9 3,2 4,1");
  const tagRECT rect = SegmentOf(whole, 1).GetPointsBBox();
  EXPECT_EQ(rect.left, -5);
  EXPECT_EQ(rect.top, 0) << "the lesser y";
  EXPECT_EQ(rect.right, 4);
  EXPECT_EQ(rect.bottom, 9);
  const auto exact = test::ParsePath<DPoint>("M0,0 L0.5,-0.25");
  EXPECT_EQ(SegmentOf(exact, 1).GetPointsBBox(), (TavMath::BoundsT<double>{0, -0.25, 0.5, 0}));
}

}  // namespace
