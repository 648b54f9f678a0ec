// What a host reads from a table of segment intersections.
#include "lumo/intersections.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "intersect/drawing.h"
#include "lumo/curve_segment.h"
#include "support/cubics.h"

namespace {

using namespace LumoTest;
using namespace Lumo;
using TavMath::Lerp;
using Settings = SegmentIntersectionSettings;

/// The intersections of a path with itself; the path must stay where it is.
SegmentIntersectionTable TableOf(const Drawing& path, bool selfIntersections = true) {
  SegmentIntersectionTable table;
  table.AddCurve(path.points.data(), path.types.data(), path.count(), true, selfIntersections);
  EXPECT_TRUE(FindAllIntersections(table, Settings()));
  return table;
}

TEST(Intersections, TwoLinesCross) {
  const Met met(LinePath({0, 0}, {1000, 1000}), LinePath({0, 800}, {800, 0}));
  ASSERT_EQ(met.on().size(), 1u);
  const Intersection& x = *met.on()[0];
  EXPECT_DOUBLE_EQ(x.GetIntersectionTime(), 0.4);
  EXPECT_EQ(x.GetIntersection(), (DPoint{400, 400}));
  EXPECT_FALSE(x.IsTouch());
  EXPECT_EQ(x.GetCurvature(), 0);
  EXPECT_EQ(static_cast<const DVector&>(x), (DVector{1000, 1000}));
  EXPECT_EQ(x.GetPartner()->GetPartner(), &x);
  EXPECT_EQ(x.SegmentID(), 0);
  EXPECT_EQ(x.GetPartner()->SegmentID(), 1);
  EXPECT_LT(x.DirectionCross(), 0);
  EXPECT_TRUE(met.table.FoundAnything());
  EXPECT_TRUE(met.table.Curves()[0].Crosses(1));
  EXPECT_TRUE(met.table.Curves()[1].Crosses(0));
  EXPECT_FALSE(met.table.Curves()[0].Crosses(0));
}

TEST(Intersections, PathsThatMeetOftenAreNotedOnce) {
  const Met met(LinePath({0, 0}, {1000, 0}),
                Drawing().Move({100, 500}).Line({300, -500}).Line({500, 500}).Line({700, -500}));
  EXPECT_EQ(met.on().size(), 3u);
  EXPECT_EQ(met.table.Curves()[0].crossedCurves, std::vector<int>{1});
  EXPECT_EQ(met.table.Curves()[1].crossedCurves, std::vector<int>{0});
}

TEST(Intersections, EndsCloserThanTheEndpointToleranceAreOne) {
  const auto meet = [](double gap) {
    return Met(LinePath({0, 0}, {1000, 0}), LinePath({1000 + gap, 0}, {1000 + gap, 500}));
  };
  const Met met = meet(0.009);
  ASSERT_EQ(met.on().size(), 1u);
  EXPECT_TRUE(met.on()[0]->IsTouch());
  EXPECT_EQ(met.ta(0), 1);
  EXPECT_EQ(met.tb(0), 0);
  // Beyond it only the projection counts: the end of the first lies beside the start of the second, the foot
  // is its start.
  const Met apart = meet(0.011);
  ASSERT_EQ(apart.on().size(), 1u);
  EXPECT_EQ(apart.ta(0), 1);
  EXPECT_EQ(apart.tb(0), 0);
  EXPECT_EQ(apart.on()[0]->GetIntersection().x, 1000.011);
}

TEST(Intersections, AnEndBesideTheOtherIsATouchAtTheFoot) {
  const auto meet = [](double height) {
    return Met(LinePath({0, 0}, {1000, 0}), LinePath({400, height}, {400, 900}));
  };
  const Met met = meet(9.5);
  ASSERT_EQ(met.on().size(), 1u);
  EXPECT_TRUE(met.on()[0]->IsTouch());
  EXPECT_DOUBLE_EQ(met.ta(0), 0.4);
  EXPECT_EQ(met.tb(0), 0);
  EXPECT_EQ(met.on()[0]->GetIntersection(), (DPoint{400, 0}));
  EXPECT_EQ(meet(10).on().size(), 0u);
  // Reaching over by more than the duplicate time: the touch and the crossing.
  EXPECT_EQ(meet(-5).on().size(), 2u);
  EXPECT_EQ(meet(-0.01).on().size(), 1u);
}

TEST(Intersections, ParallelLinesDoNotCross) {
  EXPECT_EQ(Met(LinePath({0, 0}, {1000, 0}), LinePath({0, 50}, {1000, 50})).on().size(), 0u);
  EXPECT_EQ(Met(LinePath({0, 0}, {1000, 0}), LinePath({2000, 0}, {3000, 0})).on().size(), 0u);
}

TEST(Intersections, NeighboursDoNotMeetAtTheirJoint) {
  Drawing open = Drawing().Move({0, 0}).Line({1000, 0}).Line({1000, 1000});
  const SegmentIntersectionTable table = TableOf(open);
  EXPECT_TRUE(table.Segments()[0].empty());
  EXPECT_FALSE(table.FoundAnything());
  // The same two lines without being neighbours touch there.
  const Met strangers(LinePath({0, 0}, {1000, 0}), LinePath({1000, 0}, {1000, 1000}));
  ASSERT_EQ(strangers.on().size(), 1u);
  EXPECT_EQ(strangers.ta(0), 1);
  EXPECT_EQ(strangers.tb(0), 0);
}

/// Neither of two segments that close a subpath is only the one before the other: both joints are recorded.
TEST(Intersections, TwoSegmentsThatCloseASubpathMeetAtBothJoints) {
  const Cubic arch{DPoint{0, 0}, DPoint{0, 1000}, DPoint{1000, 1000}, DPoint{1000, 0}};
  Drawing closed = Drawing().Move({0, 0}).Curve(arch).Line({0, 0}).Close();
  const SegmentIntersectionTable table = TableOf(closed);
  EXPECT_EQ(table.Segments()[0].NextSegment(), 1);
  EXPECT_EQ(table.Segments()[0].PrevSegment(), 1);
  EXPECT_EQ(table.Segments()[0].size(), 2u);
  EXPECT_EQ(table.Segments()[1].size(), 2u);
}

TEST(Intersections, NeighboursThatFoldBackShareAStretch) {
  Drawing fold = Drawing().Move({0, 0}).Line({1000, 0}).Line({400, 0});
  const SegmentIntersectionTable table = TableOf(fold);
  ASSERT_EQ(table.Segments()[0].size(), 2u);
  const Intersection *end = table.Segments()[0][0], *joint = table.Segments()[0][1];
  EXPECT_DOUBLE_EQ(end->GetIntersectionTime(), 0.4);
  EXPECT_EQ(joint->GetIntersectionTime(), 1);
  EXPECT_FALSE(joint->IsTouch());
  EXPECT_EQ(end->GetOverlapPartner(), joint);
  EXPECT_EQ(joint->GetOverlapPartner(), end);
  EXPECT_EQ(end->GetPartner()->GetOverlapPartner(), joint->GetPartner());
}

/// The joint was only tried as the second end of a stretch: when there is none it leaves no record.
TEST(Intersections, NeighbourThatComesBackInAnArchTouchesOnce) {
  Drawing arch = Drawing().Move({0, 0}).Line({1000, 0}).Curve(
      {DPoint{1000, 0}, DPoint{1000, 800}, DPoint{400, 800}, DPoint{400, 3}});
  const SegmentIntersectionTable table = TableOf(arch);
  ASSERT_EQ(table.Segments()[0].size(), 1u);
  EXPECT_DOUBLE_EQ(table.Segments()[0][0]->GetIntersectionTime(), 0.4);
  EXPECT_EQ(table.Segments()[0][0]->GetOverlapPartner(), nullptr);
  EXPECT_EQ(table.Segments()[1].size(), 1u);
}

TEST(Intersections, LinesThatShareAStretchAreLinkedOnBoth) {
  const Met met(LinePath({0, 0}, {1000, 0}), LinePath({300, 2}, {1500, 2}));
  ASSERT_EQ(met.on().size(), 2u);
  EXPECT_EQ(met.on()[0]->GetOverlapPartner(), met.on()[1]);
  Intersection* first = met.on()[0];
  Intersection* partner = first->GetPartner();
  EXPECT_TRUE(first->BreakOverlapLink());
  EXPECT_FALSE(first->BreakOverlapLink());
  EXPECT_NE(partner->GetOverlapPartner(), nullptr) << "the links of the partners stay";
}

Cubic Moved(Cubic c, double size) {
  for (DPoint& p : c) p = {p.x * size, p.y * size};
  return c;
}

/// However the second curve is given, one stretch with its two ends.
TEST(Intersections, CurvesThatShareAStretch) {
  const Cubic whole = Moved({DPoint{0, 0}, DPoint{0.3, 1}, DPoint{0.9, 0.8}, DPoint{1, -0.2}}, 10000);
  const auto part = [&](double from, double to) {
    Cubic c;
    TavMath::CubicBezier::Subsection(from, to, whole.data(), c.data());
    return c;
  };
  const auto noisy = [](Cubic c, double by = 1) {
    c[0].x += 4 * by, c[1].y += 5 * by, c[2].x -= 6 * by, c[3].y -= 4 * by;
    return c;
  };
  const Cubic raised{DPoint{0, 0}, Lerp({0, 0}, {9000, 3000}, 1.0 / 3), Lerp({0, 0}, {9000, 3000}, 2.0 / 3),
                     DPoint{9000, 3000}};
  struct Case {
    Drawing a, b;
    Settings settings = {};
  };
  const std::vector<Case> cases = {
      {CurvePath(whole), CurvePath(part(0.2, 0.7))},
      {CurvePath(part(0, 0.6)), CurvePath(part(0.3, 1))},
      {CurvePath(part(0, 0.6)), CurvePath(part(1, 0.3))},
      {CurvePath(whole), CurvePath(whole)},
      {CurvePath(whole), CurvePath(noisy(whole))},
      {CurvePath(whole), CurvePath(noisy(part(0.2, 0.7)))},
      {CurvePath(raised), LinePath({3000, 1000}, {12000, 4000})},
      {LinePath({3000, 1000}, {6000, 2000}), CurvePath(raised)},
      // With tolerances below the noise the stretch is still one stretch, not a crowd of crossings.
      {CurvePath(whole), CurvePath(noisy(whole, 0.001)), Settings(1e-6, 1e-6)},
  };
  for (std::size_t n = 0; n < cases.size(); ++n) {
    const Met met(cases[n].a, cases[n].b, cases[n].settings);
    ASSERT_EQ(met.on().size(), 2u) << n;
    EXPECT_EQ(met.on()[0]->GetOverlapPartner(), met.on()[1]) << n;
    EXPECT_EQ(met.on()[1]->GetOverlapPartner(), met.on()[0]) << n;
    EXPECT_EQ(met.table.Segments()[1].size(), 2u) << n;
  }
}

TEST(Intersections, TangencyIsATouchOnce) {
  const Cubic low{DPoint{0, 0}, DPoint{0, 4000}, DPoint{4000, 4000}, DPoint{4000, 0}};
  const Cubic high{DPoint{0, 6000}, DPoint{0, 2000}, DPoint{4000, 2000}, DPoint{4000, 6000}};
  const Met arches(CurvePath(low), CurvePath(high));
  ASSERT_EQ(arches.on().size(), 1u);
  EXPECT_TRUE(arches.on()[0]->IsTouch());
  EXPECT_NEAR(arches.ta(0), 0.5, 1e-9);
  const Met roof(CurvePath(low), LinePath({-5000, 3000}, {9000, 3000}));
  ASSERT_EQ(roof.on().size(), 1u);
  EXPECT_TRUE(roof.on()[0]->IsTouch());
  // Tangent, but changing sides: an inflection on a line.
  const Met wave(
      CurvePath({DPoint{-3000, -1000}, DPoint{-1000, 3000}, DPoint{1000, -3000}, DPoint{3000, 1000}}),
      LinePath({-5000, 0}, {5000, 0}));
  EXPECT_EQ(wave.on().size(), 3u);
  const Drawing through =
      CurvePath({DPoint{-3000, -1000}, DPoint{-1000, 1000}, DPoint{1000, -1000}, DPoint{3000, 1000}});
  const Drawing level = LinePath({-5000, 0}, {5000, 0});
  const Drawing back =
      CurvePath({DPoint{3000, -1000}, DPoint{1000, 1000}, DPoint{-1000, -1000}, DPoint{-3000, 1000}});
  const std::pair<const Drawing*, const Drawing*> pairs[] = {
      {&through, &level}, {&level, &through}, {&through, &back}};
  for (const auto& [first, second] : pairs) {
    const Met cubic(*first, *second);
    ASSERT_EQ(cubic.on().size(), 1u);
    EXPECT_NEAR(cubic.ta(0), 0.5, 1e-3) << "a contact of order three";
    EXPECT_FALSE(cubic.on()[0]->IsTouch()) << "it comes out on the other side";
  }
}

TEST(Intersections, LoopOfOneCubicIsRecordedTwiceOnIt) {
  const Cubic loop = Moved({DPoint{0, 0}, DPoint{2, 1.5}, DPoint{-1, 1.5}, DPoint{1, 0}}, 10000);
  Drawing d = CurvePath(loop);
  for (const bool wanted : {true, false}) {
    const SegmentIntersectionTable table = TableOf(d, wanted);
    ASSERT_EQ(table.Segments()[0].size(), wanted ? 2u : 0u);
    if (!wanted) continue;
    EXPECT_EQ(table.Segments()[0][0]->GetPartner(), table.Segments()[0][1]);
    EXPECT_FALSE(table.Segments()[0][0]->IsTouch());
    EXPECT_NEAR(table.Segments()[0][0]->GetIntersectionTime() + table.Segments()[0][1]->GetIntersectionTime(),
                1, 1e-12);
  }
  Drawing drop = CurvePath(Moved({DPoint{0, 0}, DPoint{3, 3}, DPoint{-3, 3}, DPoint{0, 0}}, 1000));
  drop.Close();
  const SegmentIntersectionTable table = TableOf(drop);
  EXPECT_TRUE(table.Segments()[0].empty()) << "a curve that only closes on its own node";
}

TEST(Intersections, GapsAreCoveredBetweenNearestEnds) {
  Settings settings;
  settings.SetGapTolerance(100);
  EXPECT_EQ(Met(LinePath({0, 0}, {1000, 0}), LinePath({1050, 0}, {2000, 0}), settings).on().size(), 0u);
  settings.SetCoverGaps(true);
  EXPECT_EQ(Met(LinePath({0, 0}, {1000, 0}), LinePath({960, -60}, {960, 900}), settings).on().size(), 1u)
      << "what crosses has no gap, however near the ends";
  const Met met(LinePath({0, 0}, {1000, 0}), LinePath({1050, 0}, {2000, 0}), settings);
  ASSERT_EQ(met.on().size(), 1u);
  EXPECT_EQ(met.ta(0), 1);
  EXPECT_EQ(met.tb(0), 0);
  EXPECT_EQ(met.on()[0]->GetIntersection(), (DPoint{1025, 0}));
  EXPECT_EQ(Met(LinePath({0, 0}, {1000, 0}), LinePath({1100, 0}, {2000, 0}), settings).on().size(), 0u);
}

TEST(Intersections, ShortDirectionsStayAsTheyAre) {
  Settings settings(1e-12, 1e-12);
  settings.SetNormalizeDirVectors(true);
  const Met met(LinePath({-1, 0}, {1, 0}), LinePath({0, -1e-9}, {0, 1e-9}), settings);
  ASSERT_EQ(met.on().size(), 1u);
  EXPECT_EQ(static_cast<const DVector&>(*met.on()[0]), (DVector{1, 0}));
  EXPECT_EQ(static_cast<const DVector&>(*met.on()[0]->GetPartner()), (DVector{0, 2e-9}));
}

TEST(Intersections, PairOnceAndSelfIntersectionsWanted) {
  Drawing a = LinePath({0, 0}, {1000, 1000}), b = LinePath({0, 1000}, {1000, 0});
  for (const bool once : {true, false}) {
    SegmentIntersectionTable table;
    table.AddCurve(a.points.data(), a.types.data(), a.count(), once);
    table.AddCurve(b.points.data(), b.types.data(), b.count(), once);
    ASSERT_TRUE(FindAllIntersections(table, Settings()));
    EXPECT_EQ(table.Segments()[0].size(), once ? 1u : 2u) << "examined from both sides";
  }
  Drawing bow = Drawing().Move({0, 0}).Line({1000, 1000}).Line({1000, 0}).Line({0, 1000});
  for (const bool wanted : {true, false}) {
    EXPECT_EQ(TableOf(bow, wanted).FoundAnything(), wanted);
  }
}

TEST(Intersections, RecordsStayWhereTheyAreWhenTheTableMoves) {
  Met met(LinePath({0, 0}, {1000, 1000}), LinePath({0, 800}, {800, 0}));
  Intersection* record = met.on()[0];
  Intersection* partner = record->GetPartner();
  std::vector<SegmentIntersections>& segments = met.table.Segments();
  for (int k = 0; k < 100; ++k)
    segments.emplace_back(0, 0, -1, k, -1, true, SegmentIntersections::Type::line);
  const SegmentIntersectionTable moved = std::move(met.table);
  EXPECT_EQ(moved.Segments()[0][0], record);
  EXPECT_EQ(moved.Segments()[0][0]->GetPartner(), partner);
  EXPECT_EQ(partner->GetPartner(), record);
}

TEST(Intersections, SegmentListKeepsOrderAndFindsByAddress) {
  SegmentIntersections segment(4, 0, 2, 1, -1, false, SegmentIntersections::Type::curve);
  EXPECT_EQ(segment.SegmentEnd(), 7);
  Intersection* late = segment.AddIntersection(Intersection(0.75, 1, {1, 1}, {1, 0}, 0));
  Intersection* early = segment.AddIntersection(Intersection(0.25, 1, {0, 1}, {1, 0}, 0));
  EXPECT_EQ(segment.GetIndex(early), 1);
  Intersection stranger(0.25, 1, {0, 1}, {1, 0}, 0);
  EXPECT_EQ(segment.GetIndex(&stranger), -1);
  EXPECT_TRUE(stranger == *early);
  EXPECT_FALSE(stranger == *late);
  segment.Sort();
  EXPECT_EQ(segment.front(), early);
  EXPECT_EQ(segment.back(), late);
  EXPECT_TRUE(*early < *late);
  EXPECT_EQ(early->DirectionCross(), 0) << "no partner";
  const SegmentIntersections taken = std::move(segment);
  EXPECT_TRUE(segment.empty());
  EXPECT_EQ(taken.size(), 2u);
}

TEST(Intersections, SettingsHoldTheirDefaults) {
  const Settings s;
  EXPECT_EQ(s.GetEndpointTolerance(), 0.01);
  EXPECT_EQ(s.GetTouchTolerance(), 10.0);
  EXPECT_EQ(s.GetDuplicateEndpointTimeTolerance(), 0.0001);
  EXPECT_EQ(s.GetEndpointToleranceSqrd(), 0.0001);
  EXPECT_EQ(s.GetTouchToleranceSqrd(), 100.0);
  EXPECT_EQ(s.GetGapTolerance(), 0);
  EXPECT_FALSE(s.GetNormalizeDirVectors() || s.GetIncludeNonCrossingTouches() || s.GetPreferTouches() ||
               s.GetCoverGaps());
  EXPECT_TRUE(s.GetIncludeFullOverlaps() && s.GetIncludeOverlaps() &&
              s.GetIncludeAdjacentSegmentIntersections());
}

TEST(CurveSegmentMeeting, CrossingsAlwaysTouchesOnDemand) {
  const auto meets = [](const auto& a, const auto& b, bool touches) {
    using T = std::remove_cvref_t<decltype(a.front())>;
    const NODETYPE types[4] = {NODETYPE(kMove), a.size() == 2 ? NODETYPE(kLine) : NODETYPE(kControl),
                               NODETYPE(kControl), NODETYPE(kCurve)};
    const NODETYPE others[4] = {NODETYPE(kMove), b.size() == 2 ? NODETYPE(kLine) : NODETYPE(kControl),
                                NODETYPE(kControl), NODETYPE(kCurve)};
    const CurveSegmentT<T> u(types, a.data(), 1, a.size()), v(others, b.data(), 1, b.size());
    return u.DoesIntersectWith(v, touches);
  };
  using Ints = std::vector<tagPOINT>;
  EXPECT_TRUE(meets(Ints{{0, 0}, {10, 10}}, Ints{{0, 10}, {10, 0}}, false));
  EXPECT_FALSE(meets(Ints{{0, 0}, {10, 10}}, Ints{{10, 10}, {20, 0}}, false));
  EXPECT_TRUE(meets(Ints{{0, 0}, {10, 10}}, Ints{{10, 10}, {20, 0}}, true));
  EXPECT_FALSE(meets(Ints{{0, 0}, {10, 10}}, Ints{{11, 10}, {20, 0}}, true));
  const Ints arch{{0, 0}, {0, 40}, {40, 40}, {40, 0}};
  EXPECT_TRUE(meets(arch, Ints{{-10, 20}, {50, 20}}, false));
  EXPECT_FALSE(meets(arch, Ints{{-10, 30}, {50, 30}}, false)) << "touches the top";
  EXPECT_TRUE(meets(arch, Ints{{-10, 30}, {50, 30}}, true));
  EXPECT_TRUE(meets(Ints{{-10, 20}, {50, 20}}, arch, false));
  using Points = std::vector<DPoint>;
  EXPECT_TRUE(
      meets(Points{{0, 0}, {0, 40}, {40, 40}, {40, 0}}, Points{{0, 40}, {0, 0}, {40, 0}, {40, 40}}, false));
}

}  // namespace
