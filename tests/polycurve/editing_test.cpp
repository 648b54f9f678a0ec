// The editing members, each by what a user sees of it.

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "lumo/polyline.h"
#include "lumo/repair.h"
#include "support/curves.h"
#include "support/oracles.h"
#include "support/point_types.h"

namespace {

using Lumo::CurvePosition;
using Lumo::NodeEdge;
using Lumo::PolycurveT;
using TavMath::DPoint;
using test::ParseCurve;
using test::ToPath;

LUMO_TYPED_SUITE(Editing);

/// Same points and kinds, and closed flags; selection, continuity and the like aside.
template <class T>
void ExpectShape(const PolycurveT<T>& path, const char* svg) {
  const test::Path<T> actual = ToPath(path);
  const auto expected = test::ParsePath<T>(svg);
  EXPECT_TRUE(test::IsWellFormed(actual));
  EXPECT_EQ(actual.points, expected.points) << testing::PrintToString(actual);
  ASSERT_EQ(actual.count(), expected.count());
  for (std::size_t i = 0; i < actual.types.size(); ++i) {
    EXPECT_EQ(actual.types[i] & 0xC8, expected.types[i] & 0xC8)
        << "node " << i << " of " << testing::PrintToString(actual);
  }
}

LUMO_TYPED_TEST(Editing, ReverseTurnsTheOrderOfSubpathsToo) {
  auto path = ParseCurve<T>("M0,0 L10,0 M20,0 C30,0 40,10 40,20");
  EXPECT_TRUE(path.Reverse());
  ExpectShape(path, "M40,20 C40,10 30,0 20,0 M10,0 L0,0");
}

LUMO_TYPED_TEST(Editing, SetNodeClosedWritesOneEndOnly) {
  auto path = ParseCurve<T>("M0,0 L10,0 L10,10");
  EXPECT_TRUE(path.SetNodeClosed(0, true));
  EXPECT_TRUE(path.GetNodeType(0).IsClosed());
  EXPECT_FALSE(path.GetNodeType(2).IsClosed());
}

LUMO_TYPED_TEST(Editing, TransformsMapRangesThatIncludeTheirLastNode) {
  const auto original = ParseCurve<T>("M0,0 L10,0 L10,10 L0,10");
  auto path = original;
  const MATRIX turn{0, 2, -2, 0, 5, 7};
  EXPECT_TRUE(path.TransformPoints(turn, 2, 1));
  EXPECT_EQ(path.GetPoint(0), (T{0, 0}));
  EXPECT_EQ(path.GetPoint(1), (T{5, 27}));
  EXPECT_EQ(path.GetPoint(2), (T{-15, 27}));
  EXPECT_EQ(path.GetPoint(3), (T{0, 10}));
  EXPECT_TRUE(path.UnTransformPoints(turn, 1, 2));
  EXPECT_TRUE(path == original);
  EXPECT_TRUE(path.TransformPoints(turn, 4, 9)) << "beyond the path: nothing to do";
  EXPECT_TRUE(path == original);
  path.TransformPoints(turn, 3, 900);
  EXPECT_EQ(path.GetPoint(3), (T{-15, 7}));
  path = original;
  EXPECT_FALSE(path.UnTransformPoints(MATRIX{1, 2, 2, 4, 0, 0})) << "no inverse";
  EXPECT_TRUE(path == original);
  path *= turn;
  path /= turn;
  EXPECT_TRUE(path == original);
  path.TranslatePoints({3, 4});
  path += typename PolycurveT<T>::Translation{1, 1};
  EXPECT_EQ(path.GetPoint(0), (T{4, 5}));
  path.TranslatePoints({1, 0}, 0, 0);
  EXPECT_EQ(path.GetPoint(0), (T{5, 5}));
  EXPECT_EQ(path.GetPoint(1), (T{14, 5}));
  path.TranslatePoints(TavMath::vector2dT<double, 0>{2.5, -1}, 1, 0);
  path.TranslatePoints(TavMath::vector2dT<double, 1>{0.5, 0}, 1, 1);
  const double rounded = std::is_same_v<T, tagPOINT> ? 1 : 0;
  EXPECT_EQ(path.GetPoint(0).x, 7.5 + 0.5 * rounded) << "any kind of vector, rounded for integer points";
  EXPECT_EQ(path.GetPoint(1).x, 17 + rounded);
  path += tagPOINT{-10, 2};  // whole units move a double path too
  EXPECT_EQ(path.GetPoint(1).x, 7 + rounded);
}

TEST(EditingInteger, TranslationSaturates) {
  auto path = ParseCurve<tagPOINT>("M2147483000,0 L5,-2147483000");
  path.TranslatePoints({1000, -1000});
  EXPECT_EQ(path.GetPoint(0), (tagPOINT{2147483647, -1000}));
  EXPECT_EQ(path.GetPoint(1), (tagPOINT{1005, -2147483647 - 1}));
}

LUMO_TYPED_TEST(Editing, CloseSubpathAddsALineAndLosesTheSelection) {
  auto path = ParseCurve<T>("M0,0 L10,0e L10,10 M50,50 L60,50");
  EXPECT_TRUE(path.CloseSubpath(1));
  EXPECT_TRUE(test::IsWellFormed(ToPath(path)));
  EXPECT_TRUE(path.IsClosed(0));
  EXPECT_FALSE(path.IsClosed(1));
  EXPECT_EQ(path.GetPointCount(), 6u);
  EXPECT_EQ(path.GetPoint(0), (T{10, 10})) << "the closing line comes first, so the start moves";
  EXPECT_EQ(path.GetPoint(1), (T{0, 0}));
  const auto closed = path;
  EXPECT_TRUE(path.CloseSubpath(0)) << "nothing left to close is no failure";
  EXPECT_EQ(ToPath(path).points, ToPath(closed).points);
  auto lone = ParseCurve<T>("M0,0 M5,5 L6,6");
  EXPECT_FALSE(lone.CloseSubpath(0));
  EXPECT_FALSE(lone.CloseSubpath(99));
}

LUMO_TYPED_TEST(Editing, CloseLastSubpathSnapsEndsOrAddsALine) {
  auto path = ParseCurve<T>("M0,0 L100,0 L100,100 L3,4");
  EXPECT_FALSE(path.CloseLastSubpath(4.9, false));
  auto snapped = path;
  EXPECT_TRUE(snapped.CloseLastSubpath(5, true));
  ExpectShape(snapped, "M0,0 L100,0 L100,100 L0,0 Z");
  EXPECT_TRUE(path.CloseLastSubpath(4.9, true));
  ExpectShape(path, "M0,0 L100,0 L100,100 L3,4 L0,0 Z");
  auto several = ParseCurve<T>("M0,0 L10,0 L10,10 M7,7 M20,20 C30,20 30,30 20,20 M0,0 L5,0 L5,5 Z");
  EXPECT_TRUE(several.CloseOpenSubpaths());
  ExpectShape(several, "M0,0 L10,0 L10,10 L0,0 Z M7,7 M20,20 C30,20 30,30 20,20 Z M0,0 L5,0 L5,5 L0,0 Z");
}

LUMO_TYPED_TEST(Editing, JoinsMergeOrCloseAndRefuseWhatHasNoOpenEnd) {
  auto path = ParseCurve<T>("M0,0 L10,0 M10,0 L10,10");
  EXPECT_FALSE(path.Join(0, 99));
  EXPECT_TRUE(path.Join(1, 2));
  ExpectShape(path, "M0,0 L10,0 L10,10");
  auto ring = ParseCurve<T>("M0,0 L10,0 L10,10 L0,0");
  EXPECT_TRUE(ring.JoinEndpoints());
  ExpectShape(ring, "M0,0 L10,0 L10,10 L0,0 Z");
  EXPECT_FALSE(ring.JoinEndpoints());
  EXPECT_FALSE(ring.JoinEnabled()) << "nothing selected";
  EXPECT_FALSE(ring.JoinEnabledAddingLineSegments());
}

LUMO_TYPED_TEST(Editing, JoiningWithCurvesKeepsTheTangentsOfBothEnds) {
  auto path = ParseCurve<T>("M0,0 L300,0e M600,300e L600,600");
  EXPECT_TRUE(path.JoinEnabledAddingCurves());
  ASSERT_EQ(path.GetPointCount(), 6u);
  EXPECT_TRUE(test::IsWellFormed(ToPath(path)));
  EXPECT_EQ(path.GetPoint(2).y, 0) << "the bridge leaves along the first line";
  EXPECT_EQ(path.GetPoint(3).x, 600) << "and arrives along the second";
  EXPECT_EQ(path.GetNodeType(1).Continuity(), ContinuityType::smooth);
  auto two = ParseCurve<T>("M0,0e C0,100 100,100 100,0e M0,500e L50,550 L100,500e");
  EXPECT_TRUE(two.JoinEnabledAddingCurves()) << "more than two ends: every subpath is closed on itself";
  EXPECT_TRUE(two.IsClosed(0) && two.IsClosed(1));
  ASSERT_EQ(two.GetPointCount(), 13u);
  EXPECT_LT(two.GetPoint(10).x, -10) << "the bridge leaves the start backwards";
  EXPECT_GT(two.GetPoint(11).x, 110) << "and runs on from the end";
  EXPECT_TRUE(test::IsWellFormed(ToPath(two)));
}

LUMO_TYPED_TEST(Editing, TouchingSubpathsBecomeOneInTheDirectionOfTheFirst) {
  auto path = ParseCurve<T>("M0,0 L100,0 M300,0 L200,0 M200,1 C200,50 100,50 100,2 M900,900 L800,800");
  EXPECT_FALSE(path.JoinTouchingSubpaths(0.5));
  EXPECT_TRUE(path.JoinTouchingSubpaths(2));
  EXPECT_EQ(path.GetSubpathCount(), 2u);
  EXPECT_TRUE(test::IsWellFormed(ToPath(path)));
  EXPECT_EQ(path.GetPoint(0).x, 0);
  EXPECT_EQ(path.GetPoint(5).x, 300);
  auto ring = ParseCurve<T>("M0,0 L100,0 M0,100 L0,0 M100,0 L100,100 M0,100 L100,100");
  EXPECT_TRUE(ring.JoinTouchingSubpaths(0));
  ExpectShape(ring, "M0,0 L100,0 L100,100 L0,100 L0,0 Z");
}

LUMO_TYPED_TEST(Editing, ClosestPairsAreJoinedByLinesUntilNoEndIsLeft) {
  auto path = ParseCurve<T>("M0,0 L100,0 M110,0 L200,0 M200,30 L0,40");
  EXPECT_TRUE(path.JoinClosestPairsAddingLineSegments());
  ExpectShape(path, "M0,0 L100,0 L110,0 L200,0 L200,30 L0,40 L0,0 Z");
  EXPECT_FALSE(path.JoinClosestPairsAddingLineSegments());
  test::Bits bits(5);
  const test::PathOptions options{.maxSubpaths = 300};
  auto many = test::ToCurve(test::RandomPath<T>(bits, options));
  EXPECT_TRUE(many.JoinClosestPairsAddingLineSegments());
  EXPECT_TRUE(test::IsWellFormed(ToPath(many)));
  int open = 0;
  for (const auto& subpath : many.GetSubpathCurves())
    open += subpath.count > 1 && !subpath.types[0].IsClosed();
  EXPECT_LE(open, 1) << "at most a single line stays open";
}

LUMO_TYPED_TEST(Editing, BreaksOpenOrSplit) {
  auto path = ParseCurve<T>("M0,0 L100,0 L200,0");
  EXPECT_TRUE(path.BreakAtLength(50));
  ExpectShape(path, "M0,0 L50,0 M50,0 L100,0 L200,0");
  EXPECT_FALSE(path.BreakAtLength(-1)) << "an open end";
  EXPECT_FALSE(path.BreakAt({0, 2, 0.5})) << "no position of this path";
  auto ring = ParseCurve<T>("M0,0 L100,0 L100,100 Z");
  EXPECT_TRUE(ring.BreakAt({0, 1, 1}));
  ExpectShape(ring, "M100,0 L100,100 L0,0 L100,0");
}

LUMO_TYPED_TEST(Editing, DeletedSegmentsOpenOrSplitTheirSubpath) {
  const char* ring = "M0,0 L100,0 C120,20 120,80 100,100 L0,100 Z";
  auto path = ParseCurve<T>(ring);
  EXPECT_TRUE(path.DeleteSegment(3)) << "by one of its control points";
  ExpectShape(path, "M100,100 L0,100 L0,0 L100,0");
  EXPECT_TRUE(path.DeleteSegment(2));
  ExpectShape(path, "M100,100 L0,100 M0,0 L100,0");
  EXPECT_TRUE(path.DeleteSegment(1)) << "its only segment takes the subpath along";
  ExpectShape(path, "M0,0 L100,0");
  EXPECT_FALSE(path.DeleteSegment(0));
  EXPECT_TRUE(path.DeleteSubpath(0));
  EXPECT_TRUE(path.IsEmpty());
  EXPECT_FALSE(path.DeleteSubpath(0));

  path = ParseCurve<T>(ring);
  EXPECT_TRUE(path.DeleteNode(5));
  EXPECT_EQ(path.GetPointCount(), 6u);
  EXPECT_TRUE(test::IsWellFormed(ToPath(path)));
  EXPECT_FALSE(path.DeleteNode(2)) << "a handle is no node";
}

LUMO_TYPED_TEST(Editing, ChordsGoBySelectionOfBothTheirEnds) {
  const char* svg = "M0,0e L100,0e L100,100 L0,100e Z";
  auto path = ParseCurve<T>(svg);
  EXPECT_TRUE(path.DeleteSelectedChords());
  ExpectShape(path, "M100,0 L100,100 L0,100");
  path = ParseCurve<T>(svg);
  EXPECT_TRUE(path.DeleteUnselectedChords());
  ExpectShape(path, "M0,100 L0,0 L100,0");
}

LUMO_TYPED_TEST(Editing, SpinningMovesTheStartOfAClosedSubpath) {
  auto path = ParseCurve<T>("M5,5 L6,6 M0,0 L100,0 C120,20 120,80 100,100 L0,100 Z");
  const double area = path.GetArea();
  EXPECT_TRUE(path.SpinSubpath(6));
  ExpectShape(path, "M5,5 L6,6 M100,100 L0,100 L0,0 L100,0 C120,20 120,80 100,100 Z");
  EXPECT_DOUBLE_EQ(path.GetArea(), area);
  EXPECT_TRUE(path.SetPathStartAt(4));
  ExpectShape(path, "M5,5 L6,6 M0,0 L100,0 C120,20 120,80 100,100 L0,100 L0,0 Z");
  EXPECT_FALSE(path.SpinSubpath(1)) << "open";
}

LUMO_TYPED_TEST(Editing, ExtensionsRunOnAlongTheTangents) {
  auto path = ParseCurve<T>("M0,0 L100,0 M0,200 C0,300 0,300 100,300 M0,0 L5,0 L5,5 Z");
  EXPECT_TRUE(path.Extend(10));
  ExpectShape(path, "M-10,0 L110,0 M0,190 L0,200 C0,300 0,300 100,300 L110,300 M0,0 L5,0 L5,5 L0,0 Z");
  EXPECT_FALSE(path.ExtendForward(-1));
}

LUMO_TYPED_TEST(Editing, LinesMergeWithinTheToleranceOnly) {
  auto path =
      ParseCurve<T>("M0,0 L50,1 L100,0 L150,-1 L200,0 L200,100 L200,50 C210,60 220,70 300,50 L350,50");
  EXPECT_TRUE(path.MergeLines(2));
  ExpectShape(path, "M0,0 L200,0 L200,100 L200,50 C210,60 220,70 300,50 L350,50");
  // A circle of many lines stays within the tolerance, and needs far fewer.
  PolycurveT<T> circle;
  for (int k = 0; k < 10000; ++k) {
    const double a = 2 * std::numbers::pi * k / 10000;
    const auto p = test::MakePoint<T>(std::round(1e6 * std::cos(a)), std::round(1e6 * std::sin(a)));
    k == 0 ? circle.MoveTo(p) : circle.LineTo(p);
  }
  const auto before = ToPath(circle);
  EXPECT_TRUE(circle.MergeLines(100));
  EXPECT_LT(circle.GetPointCount(), 400u);
  const auto lines = test::Flatten(ToPath(circle), 1);
  for (std::size_t k = 0; k < before.points.size(); k += 7) {
    EXPECT_LE(test::DistanceTo(lines, test::AsDouble(before.points[k])), 100.001);
  }
}

LUMO_TYPED_TEST(Editing, AlignmentTakesTheHandlesAlong) {
  auto path = ParseCurve<T>("M0,0e C10,10 20,20 50,30e L80,90 Z");
  EXPECT_TRUE(path.AlignEnabledNodes(NodeEdge::right));
  EXPECT_EQ(path.GetPoint(0), (T{50, 0}));
  EXPECT_EQ(path.GetPoint(1), (T{60, 10})) << "the handle of the moved node";
  EXPECT_EQ(path.GetPoint(2), (T{20, 20}));
  EXPECT_EQ(path.GetPoint(5), (T{50, 0})) << "and its closed twin";
  EXPECT_TRUE(path.AlignEnabledNodesToPosition(T{7, 9}, false, true));
  EXPECT_EQ(path.GetPoint(3), (T{50, 9}));
  EXPECT_TRUE(path.AlignSingleNodeToPosition(4, T{1, 2}));
  EXPECT_EQ(path.GetPoint(4), (T{1, 2}));
  EXPECT_TRUE(path.AlignSingleNodeToPixel(4, 100));
  EXPECT_EQ(path.GetPoint(4), (T{50, 50}));
  EXPECT_TRUE(path.AlignFirstNodeToPixelEdge(20));
  EXPECT_EQ(path.GetPoint(0), (T{60, 0}));
  EXPECT_FALSE(path.AlignSingleNodeToPixel(4, 0));
  path.DisableAllNodes();
  EXPECT_FALSE(path.AlignEnabledNodes(NodeEdge::left));
  EXPECT_TRUE(test::IsWellFormed(ToPath(path)));
}

LUMO_TYPED_TEST(Editing, FitsItsBoxToARectangle) {
  auto path = ParseCurve<T>("M0,0 C0,100 200,100 200,0 L100,-25");
  EXPECT_TRUE(path.TransformToFit({1000, 2000, 3000, 4000}));
  EXPECT_TRUE(path.TransformToFit({1000, 2000, 3000, 4000}));
  const auto box = path.GetTightBBox();
  const auto expected = Lumo::BoxT<T>{1000, 2000, 3000, 4000};
  double error = 0;
  if constexpr (std::is_same_v<T, tagPOINT>) {
    error = std::abs(box.left - expected.left) + std::abs(box.top - expected.top) +
            std::abs(box.right - expected.right) + std::abs(box.bottom - expected.bottom);
  } else {
    error = std::abs(box.minx - expected.minx) + std::abs(box.miny - expected.miny) +
            std::abs(box.maxx - expected.maxx) + std::abs(box.maxy - expected.maxy);
  }
  EXPECT_LE(error, (std::is_same_v<T, tagPOINT> ? 4 : 1e-9));
  auto level = ParseCurve<T>("M0,5 L10,5");
  EXPECT_TRUE(level.TransformToFit({0, 0, 100, 100}));
  EXPECT_EQ(level.GetPoint(1), (T{100, 0}));
}

LUMO_TYPED_TEST(Editing, AppendingContinuesTheLastSubpathWhereItEnds) {
  PolycurveT<T> path;
  EXPECT_TRUE(path.AppendLineWithJoin(T{0, 0}, T{10, 0}));
  EXPECT_TRUE(path.AppendLineWithJoin(T{10, 0}, T{10, 10}));
  EXPECT_TRUE(path.AppendBezierWithJoin(T{10, 10}, T{20, 10}, T{30, 20}, T{30, 30}));
  EXPECT_TRUE(path.AppendBezierWithJoin(T{5, 5}, T{6, 6}, T{7, 7}, T{8, 8}));
  ExpectShape(path, "M0,0 L10,0 L10,10 C20,10 30,20 30,30 M5,5 C6,6 7,7 8,8");
  EXPECT_TRUE(path.AppendWithJoin(ParseCurve<T>("M8,8 L9,9 M1,1 L2,2")));
  EXPECT_TRUE(path.AppendWithJoin(path)) << "itself";
  EXPECT_TRUE(test::IsWellFormed(ToPath(path)));
  EXPECT_EQ(path.GetSubpathCount(), 6u);
  auto ring = ParseCurve<T>("M0,0 L10,0 L10,10 Z");
  EXPECT_TRUE(ring.AppendLineWithJoin(T{0, 0}, T{5, 5})) << "a closed subpath is not continued";
  ExpectShape(ring, "M0,0 L10,0 L10,10 L0,0 Z M0,0 L5,5");
}

LUMO_TYPED_TEST(Editing, PolylineStaysWithinItsToleranceAndKeepsTheFlags) {
  for (std::uint64_t seed = 0; seed < 40; ++seed) {
    test::Bits bits(seed);
    const auto path = test::RandomPath<T>(bits);
    const double tolerance = 0.05 * (1 + bits.Below(100));
    const auto lines = test::ToPath<T>(test::ToCurve(path).GetPolyline(tolerance));
    EXPECT_TRUE(test::IsWellFormed(lines));
    const auto flat = test::Flatten(lines, 1);
    const double slack = std::is_same_v<T, tagPOINT> ? 0.71 : 1e-6;
    for (const auto& line : test::Flatten(path, 50)) {
      for (const DPoint& p : line.points) EXPECT_LE(test::DistanceTo(flat, p), tolerance + slack);
    }
    EXPECT_EQ(lines.points.back(), path.points.back());
    EXPECT_EQ(lines.types.back() & 0x0F, path.types.back() & 0x0F);
  }
}

/// How far the points lie from the fitted path.
template <class T>
double FitError(const PolycurveT<T>& path, const std::vector<T>& points) {
  double worst = 0;
  for (const T& p : points) {
    typename PolycurveT<T>::Closest nearest;
    EXPECT_TRUE(path.FindClosestPoint(p, nearest));
    worst = std::max(worst, std::sqrt(nearest.distanceSqrd));
  }
  return worst;
}

LUMO_TYPED_TEST(Editing, FittedCurvesKeepToTheirPointsAndTheirCorners) {
  std::vector<T> circle, square, noisy;
  test::Bits bits(1);
  for (int k = 0; k <= 1000; ++k) {
    const double a = 2 * std::numbers::pi * k / 1000;
    circle.push_back(test::MakePoint<T>(std::round(1e5 * std::cos(a)), std::round(1e5 * std::sin(a))));
    noisy.push_back(test::MakePoint<T>(k * 100 + bits.Between(-40, 40),
                                       std::round(3e4 * std::sin(a)) + bits.Between(-40, 40)));
    const int side = std::min(k / 250, 3), along = (k - 250 * side) * 40;
    const int x[] = {along, 10000, 10000 - along, 0}, y[] = {0, along, 10000, 10000 - along};
    square.push_back(test::MakePoint<T>(x[side], y[side]));
  }
  const struct {
    const std::vector<T>& points;
    double tolerance;
    std::size_t mostNodes;
  } cases[] = {{circle, 50, 1 + 3 * 8}, {circle, 2, 1 + 3 * 20}, {noisy, 150, 1 + 3 * 10}, {square, 5, 5}};
  for (const auto& c : cases) {
    PolycurveT<T> path;
    ASSERT_TRUE(path.AppendFittedCurve(c.points, c.tolerance));
    EXPECT_TRUE(test::IsWellFormed(ToPath(path)));
    EXPECT_LE(path.GetPointCount(), c.mostNodes) << "tolerance " << c.tolerance;
    EXPECT_LE(FitError(path, c.points), c.tolerance + 1e-6);
    EXPECT_EQ(path.GetPoint(0), c.points.front());
    EXPECT_EQ(path.GetPoint(path.GetPointCount() - 1), c.points.back());
  }
  PolycurveT<T> corners;
  corners.AppendFittedCurve(square, 5);
  EXPECT_TRUE(corners.AppendFittedCurve(std::vector<T>{{0, 0}, {-500, 0}, {-1000, 10}}, 1));
  EXPECT_EQ(corners.GetSubpathCount(), 1u) << "it continues where the path ends";
  ExpectShape(corners.GetSubpath(0).GetPolyline(1e9), "M0,0 L10000,0 L10000,10000 L0,10000 L0,0 L-1000,10");
}

LUMO_TYPED_TEST(Editing, FittingRandomStrokesAlwaysKeepsTheTolerance) {
  for (std::uint64_t seed = 0; seed < 60; ++seed) {
    test::Bits bits(seed);
    std::vector<T> stroke;
    double x = 0, y = 0, direction = 0;
    const double speed = 1 + bits.Below(60);
    for (int k = 0; k < 300; ++k) {
      direction += (bits.Unit() - 0.5) * (bits.OneIn(40) ? 6 : 0.6);
      x += speed * std::cos(direction), y += speed * std::sin(direction);
      stroke.push_back(test::MakePoint<T>(x, y));
    }
    const double tolerance = bits.OneIn(5) ? 0 : std::ldexp(1 + bits.Unit(), bits.Below(6) - 1);
    PolycurveT<T> path;
    ASSERT_TRUE(path.AppendFittedCurve(stroke, tolerance));
    EXPECT_TRUE(test::IsWellFormed(ToPath(path)));
    EXPECT_LE(FitError(path, stroke), tolerance + 1e-6) << seed;
  }
}

/// A path broken at its crossings with another one, or without one at those with itself; without a result it
/// stays as it is to the bit.
struct Break {
  const char *path, *other, *broken;
};
template <class T>
void ExpectBroken(const Break& c) {
  SCOPED_TRACE(c.path);
  auto path = ParseCurve<T>(c.path);
  const auto before = path;
  EXPECT_TRUE(c.other ? path.BreakAtIntersections(ParseCurve<T>(c.other)) : path.BreakAtSelfIntersections());
  if (c.broken) {
    ExpectShape(path, c.broken);
  } else {
    EXPECT_TRUE(path == before);
  }
}

LUMO_TYPED_TEST(Editing, CrossingsBreakThePathAndKeepItsShape) {
  const Break cases[] = {
      {"M0,50 L100,50 M-10,-10 L-20,-20", "M20,0 L20,100 M60,0 L60,100 L100,0 L100,100",
       "M0,50 L20,50 M20,50 L60,50 M60,50 L80,50 M80,50 L100,50 M-10,-10 L-20,-20"},
      {"M0,0 L100,0 L100,100 L0,100 Z", "M50,-50 L50,150",
       "M50,0 L100,0 L100,100 L50,100 M50,100 L0,100 L0,0 L50,0"},
      {"M0,0 L100,100 L100,0 L0,100 Z", nullptr, "M50,50 L100,100 L100,0 L50,50 M50,50 L0,100 L0,0 L50,50"},
      // Joints of neighbours are no crossings.
      {"M0,0 L100,0 L100,100 Z M500,0 C500,50 600,50 600,0", nullptr, nullptr},
      // Shared stretches break at their ends.
      {"M0,0 L128,0", "M64,0 L32,0", "M0,0 L32,0 M32,0 L64,0 M64,0 L128,0"},
      {"M0,0 L300,100", "M150,50 L600,200 M0,1 L300,101", "M0,0 L150,50 M150,50 L300,100"},
      {"M0,0 L128,0 M32,0 L160,0", nullptr, "M0,0 L32,0 M32,0 L128,0 M32,0 L128,0 M128,0 L160,0"},
      // A straight joint shares no stretch.
      {"M0,0 L50,0 L100,0", nullptr, nullptr},
  };
  for (const Break& c : cases) ExpectBroken<T>(c);
  auto loop = ParseCurve<T>("M0,0 C300,200 -200,200 100,0");
  const double length = loop.GetLength();
  EXPECT_TRUE(loop.BreakAtSelfIntersections());
  EXPECT_EQ(loop.GetSubpathCount(), 3u);
  EXPECT_NEAR(loop.GetLength(), length, (std::is_same_v<T, tagPOINT> ? 3 : 1e-6));
}

TEST(EditingInteger, BreaksAllowForTheRoundingOfNodes) {
  const Break cases[] = {
      // A node put on the line, to the nearest grid point above or below it.
      {"M0,0 L1000,333", "M500,167 L800,900", "M0,0 L500,167 M500,167 L1000,333"},
      {"M0,0 L1000,333", "M500,166 L800,900", "M0,0 L500,166 M500,166 L1000,333"},
      // The two run together from there on, however their last bits cross.
      {"M0,0 L1000,333", "M500,167 L1500,500", "M0,0 L500,167 M500,167 L1000,333"},
      // A crossing that rounds to the start of the line leaves no piece without length.
      {"M0,0 L1000,0", "M0,-3 L1,4", "M0,0 L1000,0"},
      // Beside the line is not on it.
      {"M0,0 L1000,0", "M500,1 L800,900", "M0,0 L1000,0"},
  };
  for (const Break& c : cases) ExpectBroken<tagPOINT>(c);
}

LUMO_TYPED_TEST(Editing, RepairsAreForwardedAndLeaveCopiesAlone) {
  auto path = ParseCurve<T>("M0,0 L100,0 L100,5 L200,5 M9,9");
  const auto copy = path;
  EXPECT_TRUE(path.RepairCurves({}));
  ExpectShape(path, "M0,0 L100,0 L200,5");
  EXPECT_EQ(copy.GetPointCount(), 5u);
  path = ParseCurve<T>("M0,0 L100,0 L100,5 L200,5 L200,5");
  EXPECT_TRUE(path.RemoveZeroLengthSegments());
  ExpectShape(path, "M0,0 L100,0 L100,5 L200,5");
  EXPECT_TRUE(path.RemoveShortSegments(6));
  ExpectShape(path, "M0,0 L100,0 L200,5");
  path = ParseCurve<T>("M0,0 C0,100 500,900 1000,900 C1500,900 2000,100 2000,0");
  EXPECT_TRUE(path.RepairContinuity({}));
  EXPECT_EQ(path.GetNodeType(3).Continuity(), ContinuityType::smooth);
  PolycurveT<T> empty;
  EXPECT_TRUE(empty.RepairCurves({}) && empty.RepairContinuity({}) && empty.RemoveZeroLengthSegments() &&
              empty.RemoveShortSegments(5));
}

LUMO_TYPED_TEST(Editing, SmallSubpathsGo) {
  auto path = ParseCurve<T>("M0,0 L9,9 M0,0 L10,0 M5,5 M0,0 L0,100");
  EXPECT_TRUE(path.RemoveSmallSubpaths(10));
  ExpectShape(path, "M0,0 L10,0 M0,0 L0,100");
  EXPECT_TRUE(path.HasNodeCloseToCurve(T{3, 104}, 5));
  EXPECT_FALSE(path.HasNodeCloseToCurve(T{3, 50}, 5)) << "nodes only";
}

}  // namespace
