// The list intersector: extents, its two deliberate rules, one instance for all threads.
#include <gtest/gtest.h>

#include <latch>
#include <thread>
#include <vector>

#include "lumo/polycurve_intersector.h"

namespace {

using namespace Lumo;
using TavMath::DPoint;

CSegmentList Chain(const std::vector<DPoint>& points) {
  CSegmentList list;
  for (std::size_t k = 0; k + 1 < points.size(); ++k) list.Append(CLineSegment(points[k], points[k + 1]));
  return list;
}
CSegmentList One(const CSegment& segment) {
  CSegmentList list;
  list.Append(segment);
  return list;
}
std::size_t Hits(const CSegmentList& a, const CSegmentList& b) {
  std::size_t hits = 0;
  for (const auto& entry : CPolyCurveIntersector::Instance().Intersect(a, b)) hits += entry.size();
  return hits;
}

TEST(ListIntersector, ReportsParametersMeasureAndSegment) {
  // The hit lies on the second segment of a and the first of b.
  const auto result = CPolyCurveIntersector::Instance().Intersect(Chain({{0, 0}, {10, 0}, {10, 10}}),
                                                                  Chain({{0, 4}, {20, 4}}));
  ASSERT_EQ(result.size(), 2u);
  EXPECT_TRUE(result[0].empty());
  ASSERT_EQ(result[1].size(), 1u);
  EXPECT_DOUBLE_EQ(result[1][0].timeA, 0.4);
  EXPECT_DOUBLE_EQ(result[1][0].timeB, 0.5);
  EXPECT_DOUBLE_EQ(result[1][0].distance, 0.4);
  EXPECT_EQ(result[1][0].segmentB, 0u);
}

/// A list that turns back over its own start would otherwise meet the other list at once.
TEST(ListIntersector, FirstPairCountsOnlyNearTheFirstEnd) {
  EXPECT_EQ(Hits(Chain({{0, 0}, {10, 0}}), Chain({{1.9, -5}, {1.9, 5}})), 0u);
  EXPECT_EQ(Hits(Chain({{0, 0}, {10, 0}}), Chain({{2.1, -5}, {2.1, 5}})), 1u);
  // Another segment of b is no first pair.
  EXPECT_EQ(Hits(Chain({{0, 0}, {10, 0}}), Chain({{50, 50}, {1, 50}, {1, -5}})), 1u);
}

/// A hit of segment i >= 1 ends the search before segment i + 1; one of segment 0 does not. The result has an
/// entry for every segment all the same.
TEST(ListIntersector, StopsAfterTheFirstSegmentWithAHit) {
  const CSegmentList zigzag = Chain({{0, 0}, {10, 10}, {20, 0}, {30, 10}, {40, 0}});
  const auto result = CPolyCurveIntersector::Instance().Intersect(zigzag, Chain({{-5, 5}, {45, 5}}));
  ASSERT_EQ(result.size(), 4u);
  EXPECT_EQ(result[0].size(), 1u);
  EXPECT_EQ(result[1].size(), 1u);
  EXPECT_TRUE(result[2].empty());
  EXPECT_TRUE(result[3].empty());
}

TEST(ListIntersector, LinesReachAsFarAsTheirExtent) {
  const DPoint arch[4] = {{0, 0}, {0, 4}, {4, 4}, {4, 0}};
  const auto hits = [&](LineExtent extent, const DPoint& from, const DPoint& to) {
    return Hits(One(CBezierSegment(arch)), One(CLineSegment(from, to, extent)));
  };
  const DPoint left{-2, 1}, right{2, 1};  // the arch is crossed once between them and once beyond the second
  EXPECT_EQ(hits(LineExtent::segment, left, right), 0u)
      << "dropped: too far from the end of the first segment";
  EXPECT_EQ(hits(LineExtent::segment, {2, 1}, {6, 1}), 1u);
  EXPECT_EQ(hits(LineExtent::openEnd, left, right), 1u);
  EXPECT_EQ(hits(LineExtent::openStart, {5, 1}, {6, 1}), 1u);
  EXPECT_EQ(hits(LineExtent::openEnd, {5, 1}, {6, 1}), 0u);
  // The dropped hit needs both parameters at most 1; beyond the line's end it stays.
  EXPECT_EQ(hits(LineExtent::infinite, {-5, 1}, {-4, 1}), 2u);
  // Line against line, either way round.
  EXPECT_EQ(Hits(One(CLineSegment({0, 0}, {1, 0}, LineExtent::openEnd)), One(CLineSegment({5, -1}, {5, 1}))),
            1u);
  EXPECT_EQ(Hits(One(CLineSegment({5, -1}, {5, 1})), One(CLineSegment({0, 0}, {1, 0}))), 0u);
  EXPECT_EQ(Hits(One(CLineSegment({0, 0}, {1, 0}, LineExtent::infinite)),
                 One(CLineSegment({0, 5}, {1, 5}, LineExtent::infinite))),
            0u);
}

TEST(ListIntersector, CurveAgainstLineEqualsLineAgainstCurve) {
  const DPoint arch[4] = {{0, 0}, {0, 4}, {4, 4}, {4, 0}};
  const auto& one = CPolyCurveIntersector::Instance();
  const auto ab = one.Intersect(One(CBezierSegment(arch)), Chain({{3.5, -1}, {3.5, 5}}));
  const auto ba = one.Intersect(Chain({{3.5, -1}, {3.5, 5}}), One(CBezierSegment(arch)));
  ASSERT_EQ(ab[0].size(), 1u);
  ASSERT_EQ(ba[0].size(), 1u);
  EXPECT_EQ(ab[0][0].timeA, ba[0][0].timeB);
  EXPECT_EQ(ab[0][0].timeB, ba[0][0].timeA);
}

TEST(ListIntersector, ConcurrentFirstUseMakesOneInstanceForAllThreads) {
  std::vector<const CPolyCurveIntersector*> seen(8);
  std::vector<std::thread> threads;
  // They ask at once: the first use, which makes the instance, is a race between all of them.
  std::latch start(static_cast<std::ptrdiff_t>(seen.size()));
  for (std::size_t k = 0; k < seen.size(); ++k) {
    threads.emplace_back([&, k] {
      start.arrive_and_wait();
      seen[k] = &CPolyCurveIntersector::Instance();
      EXPECT_EQ(seen[k]->Intersect(Chain({{0, 0}, {10, 0}}), Chain({{9, -5}, {9, 5}}))[0].size(), 1u);
    });
  }
  for (std::thread& t : threads) t.join();
  for (const auto* instance : seen) EXPECT_EQ(instance, seen[0]);
}

}  // namespace
