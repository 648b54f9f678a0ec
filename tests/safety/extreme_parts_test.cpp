// What extreme_class_test.cpp does for the path class, for what stands beside it: intersections, repair, the
// parts of an offset, and the mathematics of lines, cubics, rectangles and angles.

#include <gtest/gtest.h>

#include <numeric>

#include "safety/extremes.h"
#include "tav/math/angle.h"
#include "tav/math/rect.h"

namespace {

using Lumo::PolycurveT;
using TavMath::DPoint;
using TavMath::DVector;

TEST(ExtremeEngine, IntersectionsAndOffsetPartsTakeAnyPath) {
  using P = PolycurveT<DPoint>;
  using X = test::Extremes<DPoint>;
  X::Each([](P a, P b, double endpoint, double touch, double gap, bool on) {
    Lumo::SegmentIntersectionSettings settings(endpoint, touch);
    settings.SetGapTolerance(gap);
    settings.SetCoverGaps(on);
    settings.SetNormalizeDirVectors(on);
    Lumo::SegmentIntersectionTable table, other;
    EXPECT_EQ(table.AddCurve(nullptr, nullptr, INT_MAX), -1);
    for (const P& p : {a, b}) {
      table.AddCurve(p.GetPoints(), p.GetNodeTypes(), static_cast<int>(p.GetPointCount()), on, on);
      other.AddCurve(p.GetPoints(), p.GetNodeTypes(), static_cast<int>(p.GetPointCount()), on, on);
    }
    EXPECT_TRUE(Lumo::FindAllIntersections(table, settings));
    EXPECT_FALSE(Lumo::FindSegmentIntersections(INT_MIN, other, settings));
    EXPECT_FALSE(Lumo::FindSegmentIntersections(INT_MAX, other, settings));
    for (auto& segment : table.Segments()) {
      table.SegmentPoints(segment);
      segment.Sort();
      EXPECT_EQ(segment.GetIndex(nullptr), -1);
      segment.AddIntersection(
          Lumo::Intersection(endpoint, 0, DPoint{touch, gap}, DVector{gap, touch}, endpoint));
    }
    for (const auto& curve : table.Curves()) curve.Crosses(INT_MIN);
    const Lumo::CSegmentList listA(a.GetPoints(), a.GetNodeTypes(), static_cast<int>(a.GetPointCount()));
    Lumo::CSegmentList listB(b.GetPoints(), b.GetNodeTypes(), static_cast<int>(b.GetPointCount()));
    EXPECT_EQ(Lumo::CPolyCurveIntersector::Instance().Intersect(listA, listB).size(), listA.size());
    for (const Lumo::CSegment& segment : listA.Segments()) {
      segment.PointAt(gap);
      segment.TangentAt(gap);
      segment.Length();
      segment.ControlBox();
      listB.Append(segment);
    }
    const DPoint cubic[4] = {{touch, 0}, {0, touch}, {gap, 1}, {1, gap}};
    Lumo::CBezierSegment bezier(cubic);
    bezier.SetControl(INT_MAX, cubic[0]);
    Lumo::CLineSegment line(cubic[0], cubic[1]);
    line.SetControl(1, cubic[0]);
    listB.Append(bezier);
    listB.AppendMove(cubic[3], NODETYPE(0xFF));
    std::vector<DPoint> points;
    std::vector<NODETYPE> types;
    listB.AppendTo(points, types);
    EXPECT_EQ(points.size(), types.size());
  });
  X::Each([](P p, double offset, int first, int split) {
    std::vector<DPoint> points;
    std::vector<NODETYPE> nodes;
    const Lumo::Offset::OffsetSettings settings(new Lumo::Ray, new Lumo::OffsetBevel, offset, false);
    const int count = static_cast<int>(p.GetPointCount());
    for (const int n : {INT_MIN, 0, count}) {
      Lumo::CreateOffsetCurve(p.GetPoints(), p.GetNodeTypes(), n, points, nodes, settings);
      Lumo::CloseOffsetCurves(p.GetPoints(), p.GetNodeTypes(), n, points, nodes,
                              Lumo::Offset::EOpenCurveOffsetSide::both, settings);
      Lumo::CombineClosedOffsetCurves(p.GetPoints(), p.GetNodeTypes(), n, points, nodes, first, split);
    }
    EXPECT_EQ(points.size(), nodes.size());
  });
}

TEST(ExtremeMath, PrimitivesTakeAnyNumbers) {
  using X = test::Extremes<DPoint>;
  namespace CB = TavMath::CubicBezier;
  X::Each([](TavMath::Cubic a, TavMath::Cubic b, double t, double u, DPoint q) {
    DPoint out[8], point;
    double x = 0, y = 0, tt[6];
    std::vector<double> ta, tb;
    std::vector<DPoint> points;
    CB::Evaluate(a.data(), t);
    CB::Derivative(a.data(), t);
    CB::SecondDerivative(a.data(), t);
    CB::Split(t, a.data(), out, out + 4);
    CB::Subsection(t, u, a.data(), out);
    CB::LeftOf(t, a.data(), out);
    CB::RightOf(t, a.data(), out);
    CB::Length(a.data());
    CB::LengthTo(a.data(), t);
    CB::LengthFrom(a.data(), t);
    EXPECT_FALSE(CB::GetCurveRelativeLengthParameter(a.data(), t) < 0);
    CB::FindClosestPointOnBezier(a.data(), q, x, point, y);
    EXPECT_LE(CB::FindClosestPointsOnBezier(a.data(), q).count, 6);
    EXPECT_LE(CB::IntersectBeziers(a.data(), b.data()).count, 12);
    CB::IntersectBezierLine(a.data(), q, b[1], t > 0);
    CB::FindBezierIntersections(a.data(), b.data(), ta, tb, points);
    EXPECT_EQ(ta.size(), points.size());
    CB::FindBezierLineIntersection(a.data(), q, b[2], t > 0, ta, tb);
    CB::FindBezierSelfIntersection(a.data(), x, y, point);
    CB::DoBeziersIntersect(a.data(), b.data());
    CB::DoesBezierIntersectLineSegment(a.data(), q, b[3]);
    CB::SafeBezierTangent(t, a.data());
    CB::SafeBezierCurvature(t, a.data());
    CB::GetCurvatureRadiusAt(t, a.data());
    EXPECT_LE(CB::FindCurvatureMinMax(a.data(), tt), 6);
    CB::GetSide(a.data(), q);
    EXPECT_LE(CB::GetHorizontalTangents(a.data(), tt), 2);
    EXPECT_LE(CB::GetVerticalTangents(a.data(), tt), 2);
    CB::GetTightBox(a.data());
    CB::GetAreaUnderBezier(a.data());
  });
  X::Each([](TavMath::Cubic a, double offset, double tolerance, int n) {
    DPoint out[9];
    double split = 0;
    std::vector<TavMath::Cubic> pieces;
    TavMath::IsBezierValidForOffset(a.data(), offset);
    TavMath::FindBezierOffsetCurve(a.data(), out, offset, tolerance, split);
    TavMath::GetSegmentsToOffset(a.data(), pieces, offset);
    EXPECT_LT(pieces.size(), 100u);
    EXPECT_GE(TavMath::BezierToLines(a.data(), out, std::min(n, 8)), 1);
    EXPECT_LE(TavMath::AdaptiveBezierToLines(a.data(), out, tolerance, std::min(n, 9)), 8);
    const int lines = TavMath::CalculateNumBezierLines(a.data(), n);
    EXPECT_TRUE(lines >= 1 && lines <= std::max(n, 1));
    TavMath::AreCollinear(a[0], a[1], a[2], tolerance);
  });
  X::Each([](tagRECT a, tagRECT b, tagPOINT p, int dx, int n) {
    TavMath::IntersectRect(a, b);
    TavMath::UnionRect(a, b);
    TavMath::IsPointInRect(a, p);
    TavMath::InflateRect(a, dx, n);
    const int lines = TavMath::CalculateNumBezierLines(b, n);
    EXPECT_TRUE(lines >= 1 && lines <= std::max(n, 1));
  });
  X::Each([](MATRIX m, MATRIX n, DVector u, DVector v, DPoint p, double x) {
    DPoint points[1] = {p};
    tagPOINT whole[1] = {{1, 2}};
    m.TransformPoints(points, 1);
    m.TransformPoints(whole, 1);
    TavMath::Concatenate(m, n).Invert();
    TavMath::ConstructMatrix(u, v, p);
    TavMath::Radians::AngleToVector(x);
    TavMath::Radians::VectorToAngle(u);
    const double angle = TavMath::Radians::NormalizeAngle(x);
    EXPECT_FALSE(angle < 0 || angle >= 6.2831853071795865);
    EXPECT_FALSE(TavMath::Degrees::GetFineAngle(u, v) > 180);
    TavMath::RoundToInt(x);
    TavMath::TruncateToInt(x);
  });
}

}  // namespace
