// Adding and removing records, which only the library does.
#include "intersect/record.h"

#include <gtest/gtest.h>

namespace {

using namespace Lumo;

struct TwoSegments {
  const DPoint points[2] = {{0, 0}, {10, 0}};
  const NODETYPE types[2] = {NODETYPE(0x04), NODETYPE(0x44)};
  SegmentIntersectionTable table;
  TwoSegments() {
    table.AddCurve(points, types, 2);
    table.AddCurve(points, types, 2);
  }
  Intersection* Add(double ta, double tb) {
    return IntersectionRecorder::AddPair({ta, 0, {3, 4}, 0.5, tb, 1, {0, 2}, -0.5, {1, 2}}, table, true,
                                         true);
  }
};

TEST(IntersectionRecorder, AddsOneRecordToEachListAndLinksThem) {
  TwoSegments two;
  const Intersection* a = two.Add(0.25, 0.75);
  ASSERT_NE(a, nullptr);
  const Intersection* b = two.table.Segments()[1][0];
  EXPECT_EQ(a, two.table.Segments()[0][0]);
  EXPECT_EQ(a->GetPartner(), b);
  EXPECT_EQ(b->GetPartner(), a);
  EXPECT_EQ(static_cast<const DVector&>(*a), (DVector{3.0 * (1.0 / 5), 4.0 * (1.0 / 5)}));
  EXPECT_EQ(b->GetCurvature(), -0.5);
  EXPECT_TRUE(a->IsTouch() && b->IsTouch());
  EXPECT_TRUE(two.table.FoundAnything());
}

TEST(IntersectionRecorder, KillingAStrangerChangesNothing) {
  TwoSegments two;
  two.Add(0.25, 0.75);
  Intersection stranger(0.25, 0, {1, 2}, {3, 4}, 0);
  IntersectionRecorder::Kill(two.table.Segments()[0], &stranger);
  EXPECT_EQ(two.table.Segments()[0].size(), 1u);
  IntersectionRecorder::Kill(two.table.Segments()[0], nullptr);
  EXPECT_EQ(two.table.Segments()[0].size(), 1u);
}

TEST(IntersectionRecorder, RemovalUnlinksWhatIsLeft) {
  TwoSegments two;
  Intersection* first = two.Add(0.25, 0.75);
  Intersection* second = two.Add(0.5, 0.5);
  Intersection* third = two.Add(0.75, 0.25);
  first->SetOverlapPartner(second);
  second->SetOverlapPartner(first);
  IntersectionRecorder::RemovePair(second, two.table);
  EXPECT_EQ(first->GetOverlapPartner(), nullptr);
  EXPECT_EQ(first->GetPartner()->GetOverlapPartner(), nullptr);
  ASSERT_EQ(two.table.Segments()[0].size(), 2u);
  ASSERT_EQ(two.table.Segments()[1].size(), 2u);
  EXPECT_EQ(two.table.Segments()[0][1], third) << "the others keep their order";
}

TEST(SegmentLists, MoveTheirRecordsAndSurviveBeingMovedToThemselves) {
  TwoSegments two;
  const Intersection* record = two.Add(0.25, 0.75);
  auto& segments = two.table.Segments();
  SegmentIntersections& own = segments[0];
  segments[0] = std::move(own);
  ASSERT_EQ(segments[0].size(), 1u) << "moved to itself";
  EXPECT_EQ(segments[0][0], record);
  SegmentIntersections other(std::move(segments[0]));
  EXPECT_TRUE(segments[0].empty());
  EXPECT_EQ(other[0], record);
  two.Add(0.5, 0.5);
  segments[0] = std::move(other);
  ASSERT_EQ(segments[0].size(), 1u) << "the records that were there are gone";
  EXPECT_EQ(segments[0][0], record);
}

TEST(IntersectionRecorder, KeepsToTheTableWhenAHostHasChangedIds) {
  for (const int id : {-1, 2, 1000000}) {
    TwoSegments two;
    two.table.Segments()[0].SetCurveID(id);
    EXPECT_EQ(two.table.SegmentPoints(two.table.Segments()[0]), nullptr);
    Intersection* record = two.Add(0.25, 0.75);
    ASSERT_NE(record, nullptr);
    EXPECT_TRUE(two.table.Curves()[0].crossedCurves.empty());
    EXPECT_EQ(two.table.Curves()[1].crossedCurves, (std::vector<int>{id}));
    IntersectionRecorder::RemovePair(record, two.table);
    EXPECT_TRUE(two.table.Segments()[0].empty() && two.table.Segments()[1].empty());
  }
}

}  // namespace
