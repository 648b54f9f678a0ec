// What extreme_input_test.cpp does for functions over caller arrays, for everything else that is exported:
// the path class, measures, shapes, segments, intersections, repair, hierarchy, Boolean operations, offsets
// and the mathematics. Nothing may crash, hang, or make a well-formed path anything else.
// script/check-exports fails when an exported name is missing here, there and in the list of writing members.
//
// Named but not swept: the corner joins (BuildCorner, IsPointInCorner, IsPointWithinCorner, IsTooSharp,
// GetCornerPoint, GetBevelLine, GetLeftBezier, GetRightBezier, IsLeftABezier, IsRightABezier, of CornerBase,
// CreateCorner, NoCorner, DeleteJoins, OffsetCorner) see arrays without a count, which the offset driver
// makes; AdjustOffsetErrorTolerance and AllowPureOffsetCurve are settings of it. CurveData, CurveDataBase,
// CurveDataRef, GetCurveData, GetWritable, AddReference, Release, ReferenceCount, IsShared, Share, Copy,
// MoveData, MoveIn, ReleaseBufferInternal, IntCount, PushBackStart, PushBackWithJoinCheck, JoinNearestEnds,
// ExtendEnds, KeepChords, MoveChildrenTo, DeleteRecords, SegmentIntersections, KillIntersection, Build,
// LineLine, LineCurve and CurveCurve stand behind members that are. The preferences (IAppPrefObject,
// CAppPrefObject, CSecretAppPrefObject, GetInstance, Register, Unregister, Find, FindBool, GetValue,
// SetValue, GetCount, Read), Version and crvProblem take no geometry.

#include <gtest/gtest.h>

#include <numeric>

#include "polycurve/mutators.h"
#include "safety/extremes.h"
#include "support/point_types.h"

namespace {

using Lumo::PolycurveT;
using TavMath::DPoint;
using TavMath::DVector;

LUMO_TYPED_SUITE(ExtremeClass);

/// For what splits or searches as deep as hostile input can drive it.
constexpr std::size_t kFewCalls = 90;

/// The pointer pair of a path is null together, and lists stay as long as the path says.
template <class T>
void ExpectSound(const PolycurveT<T>& path) {
  EXPECT_EQ(path.GetPoints() == nullptr, path.IsEmpty());
  EXPECT_EQ(path.GetNodeTypes() == nullptr, path.IsEmpty());
}

/// Extremes::Each for an edit of a path: one that was well formed stays so.
template <class T>
struct Edits {
  using P = PolycurveT<T>;

  template <class Run>
  static void Each(const Run& run) {
    EachOf(run, &Run::operator());
  }

 private:
  template <class Run, class... Args>
  static void EachOf(const Run& run, void (Run::*)(P&, Args...) const) {
    test::Extremes<T>::Each([&run](P p, Args... args) {
      const bool wasValid = p.IsValidCurve();
      run(p, args...);
      ExpectSound(p);
      if (wasValid) {
        EXPECT_TRUE(p.IsValidCurve());
      }
    });
  }
};

LUMO_TYPED_TEST(ExtremeClass, WritingMembersKeepPathsWellFormed) {
  for (const auto& mutator : test::MutatorList<T>::All()) {
    SCOPED_TRACE(mutator.name);
    for (const auto& start : test::Extremes<T>::Paths()) {
      const bool wasValid = start.IsValidCurve();
      for (std::uint64_t seed = 0; seed < 12; ++seed) {
        test::Bits bits(seed);
        PolycurveT<T> path = start;
        mutator.run(path, bits);
        ExpectSound(path);
        if (wasValid && mutator.keepsForm) {
          EXPECT_TRUE(path.IsValidCurve()) << "seed " << seed;
        }
      }
    }
  }
}

LUMO_TYPED_TEST(ExtremeClass, WritingMembersTakeAnyArgument) {
  using P = PolycurveT<T>;
  using X = test::Extremes<T>;
  using Box = Lumo::BoxT<T>;
  using Size = std::size_t;
  X::Each([](P p, Size n) {
    p.Reserve(n);
    p.Truncate(n);
    ExpectSound(p);
    EXPECT_FALSE(P(n).GetPointCount());
  });
  X::Each([](P p, Size n) { EXPECT_LE(p.GetPointCount(), n < 4000 ? p.GetBuffer(n).count : SIZE_MAX); });
  X::Each([](P p, Size n) {
    if (n < 4000 || n > SIZE_MAX / 4) ExpectSound((p.GetBufferSetCount(n), p));
  });
  X::Each(
      [](P p, Size n) { EXPECT_EQ(p.ReleaseBuffer(n), n <= p.GetPointCount() || p.GetPointCount() == n); });
  X::Each([](P p, Size i, T q, bool on) {
    const bool inside = i < p.GetPointCount();
    EXPECT_EQ(p.SetPoint(i, q), inside);
    EXPECT_EQ(p.SetNodeType(i, NODETYPE(0x44)), inside);
    EXPECT_EQ(p.SetNodeClosed(i, on), inside);
    EXPECT_EQ(p.SetUserNode(i, on), inside);
    EXPECT_EQ(p.SetLetter(i, on), inside);
    EXPECT_EQ(p.IsLetter(i), inside && on);
    EXPECT_EQ(p.IsUser(i), inside && on);
    p.SetEnabled(i, on);
    EXPECT_FALSE(p.IsEnabled(i) && !inside);
    p.EnableOneControl(i);
    p.EnableSubpath(i, on);
    p.GetPoint(i);
    p.GetNodeType(i);
  });
  X::Each([&](P p, Size i, ContinuityType c) { p.SetCont(i, c), ExpectSound(p); });
  X::Each([](P p, Size at, Size n, P other) {
    p.ReplacePoints(at, n, other);
    p.InsertPoints(at, other, n, at);
    p.InsertPoints(at, p);
    p.DeletePoints(at, n);
    ExpectSound(p);
  });
  X::Each([](P p) {
    p.SetPoints(nullptr, nullptr, SIZE_MAX);
    EXPECT_TRUE(p.IsEmpty());
    p.PushBack(nullptr, nullptr, SIZE_MAX);
    p.ReplacePoints(0, SIZE_MAX, nullptr, nullptr, SIZE_MAX);
    EXPECT_TRUE(Lumo::PolycurveRefT<T>(nullptr, nullptr, SIZE_MAX).IsEmpty());
    EXPECT_TRUE(Lumo::PolylineT<T>(nullptr, SIZE_MAX, true).IsEmpty());
  });
  X::Each([](P p, T a, T b, T c) {
    p.MoveTo(a);
    p.LineTo(b);
    p.LineTo(b, true);
    p.CubicTo(a, b, c);
    p.PushBack(a, NODETYPE(0x44));
    ExpectSound(p);
  });
  Edits<T>::Each([](P& p, T a, T b, T c) {
    p.AppendBezierWithJoin(a, b, c, a);
    p.AppendLineWithJoin(a, b);
    p.CreateLineSubpath(a, b);
  });
  X::Each([](P p, T a, T b, double sweep) {
    p.CircularArcTo(a, b);
    p.CircularArcTo(a, sweep);
    ExpectSound(p);
  });
  Edits<T>::Each([](P& p, T a, T b, double tolerance) {
    p.AppendFittedCurve({a, b, a, b, b}, tolerance);
    p.AppendFittedCurve(nullptr, 9, tolerance);
  });
  Edits<T>::Each([](P& p, P other) {
    if (!other.IsValidCurve()) return;
    p.AppendWithJoin(other);
    p += other;
    p.PushBack(PolycurveT<typename P::OtherPoint>(other));
    p.BreakAtIntersections(other);
  });
  Edits<T>::Each([](P& p, MATRIX m, Size i, Size j) {
    p.TransformPoints(m, i, j);
    p.UnTransformPoints(m, i, j);
    p *= m;
    p /= m;
  });
  X::Each([=](P p, T by, Size i, Size j) {
    p.TranslatePoints({by.x, by.y}, i, j);
    p += DPoint{1.0 * by.x, 1.0 * by.y};
    ExpectSound(p);
  });
  X::Each([=](P p, Box box) { ExpectSound((p.TransformToFit(box), p)); });
  Edits<T>::Each([](P& p, Size i, Size j) {
    p.Join(i, j);
    p.CloseSubpath(i);
    p.DeleteNode(i);
    p.DeleteSegment(i);
    p.ConvertToLine(i);
    p.ConvertToCurve(j);
    p.SpinSubpath(i);
    p.SetPathStartAt(j);
    p.DeleteSubpath(i);
  });
  Edits<T>::Each([](P& p, double tolerance, bool addLine) {
    p.JoinTouchingSubpaths(tolerance);
    p.CloseLastSubpath(tolerance, addLine);
  });
  Edits<T>::Each([](P& p, Lumo::CurvePosition at, double length) {
    p.BreakAt(at);
    p.BreakAtLength(length);
  });
  Edits<T>::Each([](P& p, double length) {
    p.ExtendForward(length);
    p.ExtendBackward(length);
    p.Extend(length);
    p.MergeLines(length);
    p.RemoveShortSegments(length);
    p.RemoveSmallSubpaths(length);
  });
  Edits<T>::Each([](P& p, Lumo::NodeEdge edge, T to, Size i, double pixel) {
    p.AlignEnabledNodes(edge);
    p.AlignEnabledNodesToPosition(to);
    p.AlignSingleNodeToPosition(i, to);
    p.AlignSingleNodeToPixel(i, pixel);
    p.AlignFirstNodeToPixelEdge(pixel);
    p.AlignLastNodeToPixelEdge(pixel);
  });
  Edits<T>::Each([](P& p, Size n) { p.DivideEqually(n); });
  Edits<T>::Each([](P& p, T c, double rx, double ry, double from, double to, bool pie) {
    p.CreateEllipseSubpath(c, rx, ry, from, to, pie);
    p.CreateCircleSubpath(c, rx);
  });
  Edits<T>::Each([](P& p, double w, double h, double r, Lumo::RectangleCorner corner, Box box) {
    p.CreateRectangleSubpath(w, h, r, corner, true);
    p.CreateRectangleSubpath(w, h);
    p.CreateRectangleSubpath(box);
  });
  X::Each([](T a, T b, double r, double w, Lumo::RectangleCorner corner, Box box) {
    for (const P& p :
         {P::CreateLine(a, b), P::CreateCircle(a, r), P::CreateEllipse(a, r, w, r, w, true),
          P::CreateRectangle(box), P::CreateRectangle(r, w), P::CreateRectangle(r, w, w, corner, false)}) {
      EXPECT_TRUE(p.IsValidCurve());
    }
  });
}

LUMO_TYPED_TEST(ExtremeClass, QueriesTakeAnyArgument) {
  using P = PolycurveT<T>;
  using X = test::Extremes<T>;
  using Size = std::size_t;
  X::Each([](P p, P other) {
    EXPECT_EQ(p.Compare(other), -other.Compare(p));
    EXPECT_EQ(p == other, p.Compare(other) == 0);
    EXPECT_FALSE(p < other && other < p);
    p.IsSameData(other);
  });
  X::Each([](P p, Size k) {
    Size first = 0, end = 0;
    EXPECT_EQ(p.GetSubpathRange(k, first, end), k < p.GetSubpathCount());
    EXPECT_EQ(p.GetSubpath(k).IsEmpty(), k >= p.GetSubpathCount());
    p.IsClosed(k);
    p.IsLastSubpathClosed();
    p.ContainsClosedSubpaths();
    p.ContainsOpenSubpaths(k == 0);
    for (const auto& list : {p.GetSubpathCurves(), p.GetEnabledSubpathCurves()})
      EXPECT_LE(list.size(), p.GetPointCount());
    EXPECT_EQ(p.GetSubpaths().size(), p.GetSubpathCount());
    EXPECT_EQ(p.GetSubpathRefs().size(), p.GetSubpathCount());
    EXPECT_EQ(p.GetSubpathIndices().size(), p.GetSubpathCount());
    p.GetLetterCurves();
    if (k < 4000 || k > SIZE_MAX / 4) {
      EXPECT_LE(p.GetEvenlySpacedPoints(k).size(), k);
    }
  });
  X::Each([](P p, MATRIX m, TavMath::LengthAccuracy accuracy) {
    p.GetLooseBBox();
    p.GetTightBBox();
    p.GetTightTransformedBBox(m);
    p.GetTightEnabledBBox();
    p.GetArea();
    p.IsClockwise();
    p.GetLength();
    p.GetLength(accuracy);
  });
  X::Each([](P p, Lumo::CurvePosition at, double length, bool reverse) {
    T out{};
    p.GetLengthFrom(at);
    p.GetLengthAlongCurveTo(at);
    p.GetPositionAtRelativeLength(length);
    const auto found = p.GetPositionAtLength(length);
    EXPECT_TRUE(!found || !p.IsValidCurve() || p.GetPointAt(*found, out));
    p.GetPointAt(at, out);
    p.GetTangentAt(at, reverse);
  });
  X::Each([](P p, T q, bool surrounded, bool vertices, double tolerance) {
    typename P::Closest closest;
    p.GetSide(q);
    p.OnLeftOrRight(q);
    p.FindClosestPoint(q, closest);
    p.FindClosestPoints(q);
    p.FindFarthestPoint(q, closest);
    p.IsPointInShape(q, surrounded, vertices);
    p.HasNodeCloseToCurve(q, tolerance);
    bool onVertex = false;
    Lumo::IsPointInPolygon(p.GetPoints(), static_cast<int>(p.GetPointCount()), q, surrounded, vertices,
                           &onVertex);
    ExpectSound(p.GetPolyline(tolerance));
  });
  X::Each([](P p, int count, T q) {
    // The functions of measure.h, with counts below the arrays' own.
    const int n = std::min(count, static_cast<int>(p.GetPointCount()));
    const T* points = n == 2 ? nullptr : p.GetPoints();
    const NODETYPE* types = n == 1 ? nullptr : p.GetNodeTypes();
    Lumo::BoxT<T> box{};
    Lumo::GetLooseBBox(points, n);
    Lumo::GetLooseBBox(points, n, box);
    Lumo::GetTightBBox(points, types, n);
    Lumo::GetTightBBox(points, types, n, box);
    Lumo::GetTightTransformedBBox(points, types, n, MATRIX{});
    Lumo::GetTightEnabledBBox(points, types, n);
    Lumo::GetTightEnabledBBox(points, types, n, box);
    Lumo::GetArea(points, types, n);
    Lumo::GetPolygonArea(points, n);
    Lumo::GetLength(points, n);
    Lumo::GetLength(points, types, n);
    Lumo::IsPointInShape(points, types, n, q);
    Lumo::IsPointInPolygon(points, n, q, false, false, nullptr);
    typename P::Closest closest;
    Lumo::FindClosestPoint(points, types, n, q, closest);
    TavMath::GetPointsBBox(points, points && n > 0 ? static_cast<Size>(n) : 0);
  });
  X::Each([](P p, Size number, T q, double tolerance, bool on) {
    using Segment = Lumo::CurveSegmentT<T>;
    Lumo::ClosestPoint<T, Lumo::SegmentPosition> closest;
    for (const auto& found :
         {Segment::FromNumber(p, number), Segment::FromEndIdx(p, number), Segment::FromStartIdx(p, number)}) {
      const Segment s = found.value_or(Segment());
      s.prev_number();
      s.next();
      s.prev();
      s.GetPointsBBox();
      s.FindClosestPoint(q, closest);
      s.IsPointOnCurve(q, tolerance);
      s.DoesIntersectWith(s.next(), on);
      P target = p;
      s.AppendTo(target, on);
    }
    Lumo::ValidSegments(p);
    EXPECT_FALSE(Lumo::ValidSegments(nullptr, number) && number > 0);
  });
}

LUMO_TYPED_TEST(ExtremeClass, EnginesTakeAnyPath) {
  using P = PolycurveT<T>;
  using X = test::Extremes<T>;
  X::Each([](P a, P b, Lumo::FillRule rule, bool inside) {
    for (const P& result : {a.Union(b, rule), a.Intersect(b, rule), a.Subtract(b, rule), a.Xor(b, rule),
                            a.ClipToShape(b, inside, rule), a.Simplify(rule)}) {
      EXPECT_TRUE(result.IsValidCurve());
    }
    const std::vector<P> both{a, b};
    Lumo::Union(both, rule);
    Lumo::Intersect(both, rule);
    Lumo::Subtract(both, rule);
    Lumo::Xor(both, rule);
    Lumo::ClipToShape(a, b, inside, rule, rule);
    Lumo::Simplify(a, rule);
  });
  X::Each(
      [](P p, double offset, bool inwards, bool close, bool combine, int side) {
        Lumo::Offset::OffsetSettings settings(new Lumo::MiteredCorner(offset, new Lumo::Bevel),
                                              new Lumo::Round, offset, inwards);
        settings.SetCloseShape(close);
        settings.SetCombineShape(combine);
        settings.SetOpenCurveOffsetSide(static_cast<Lumo::Offset::EOpenCurveOffsetSide>(side));
        settings.SetMaxOffsetError(combine ? offset : 100);
        p.OffsetCurve(settings);
        ExpectSound(p);
      },
      kFewCalls);
  X::Each(
      [](P p, double offset, double error, bool pure) {
        ExpectSound(p.CreateParallelCurve(offset, error, pure));
        ExpectSound(p.CreateParallelCurves(offset, 3, error, pure));
      },
      kFewCalls);
  X::Each(
      [](P p, P other, bool group, bool whole, bool positive, int count) {
        using Lumo::SubpathHierarchy, Lumo::SubpathTreeNode;
        SubpathHierarchy tree(std::vector<P>{p, other});
        tree.BuildSubpathHierarchy({{p.GetPoints(), p.GetNodeTypes(), p.GetPointCount()}}, group, whole);
        tree.AddNode(SubpathTreeNode(p.GetPoints(), p.GetNodeTypes(),
                                     std::min(count, static_cast<int>(p.GetPointCount())), INT_MIN));
        tree.AddNodes(
            {SubpathTreeNode(), SubpathTreeNode(static_cast<const T*>(nullptr), nullptr, INT_MAX, 0)});
        SubpathTreeNode loose;
        tree.AddSubpathToTree(tree, loose);
        tree.GetArea();
        tree.GetAreaWithChildren();
        tree.GetTotalNumberOfPoints();
        EXPECT_FALSE(tree.IsInsideOf(loose));
        P back;
        tree.AppendToPolycurve(back);
        tree.EliminateCutOffs(positive);
        std::vector<DPoint> points;
        std::vector<NODETYPE> nodes;
        tree.AppendNodes(points, nodes);
        EXPECT_EQ(points.size(), nodes.size());
        EXPECT_EQ(
            SubpathHierarchy(static_cast<const T*>(nullptr), nullptr, INT_MAX, group).GetNumberOfChildren(),
            0u);
      },
      kFewCalls);
  X::Each([](P p, double limit, double length, bool fix) {
    Lumo::CurveRepairSettings settings;
    settings.SetSmoothNodeAngleLimit(limit);
    settings.SetMinLineLength(length);
    settings.SetMinBezierLength(length);
    settings.SetOverlappingHandleOffset(limit);
    settings.SetFixTightEndpointRadius(fix);
    settings.SetTightEndpointRadiusLimit(length);
    settings.SetSplitOverlappingBeziers(fix);
    p.RepairContinuity(settings);
    EXPECT_TRUE(p.RepairCurves(settings));
    EXPECT_TRUE(p.IsValidCurve());
    p.RepairNodeTypes();
    p.RemoveZeroLengthSegments();
    p.ScrubDanglingMoves(fix);
    std::vector<T> points(p.GetPoints(), p.GetPoints() + p.GetPointCount());
    std::vector<NODETYPE> types(p.GetNodeTypes(), p.GetNodeTypes() + p.GetPointCount());
    for (const int count : {INT_MIN, -1, 0}) {
      EXPECT_EQ(Lumo::RemoveShortSegments(points.data(), types.data(), count, length, length), count);
      EXPECT_EQ(Lumo::RemoveSmallSubpaths(points.data(), types.data(), count, length), count);
      EXPECT_EQ(Lumo::ScrubDanglingMoves(points.data(), types.data(), count, fix), 0);
      EXPECT_EQ(Lumo::RepairContinuity(points.data(), types.data(), count, settings), 0);
    }
    EXPECT_EQ(Lumo::RemoveZeroLengthSegments(static_cast<T*>(nullptr), 9), 0u);
    EXPECT_EQ(Lumo::RemoveZeroLengthSegments(static_cast<T*>(nullptr), nullptr, 9), 9u);
    EXPECT_FALSE(Lumo::FixNodeTypes(nullptr, 9));
    EXPECT_FALSE(Lumo::IsValidCurve(nullptr, 9));
  });
  X::Each([](T a, T b, double x, double y, double z, bool on, Lumo::RectangleCorner corner) {
    T points[Lumo::kMaxPieNodes];
    NODETYPE types[Lumo::kMaxPieNodes];
    const DPoint p{1.0 * a.x, 1.0 * a.y}, q{x, y};
    EXPECT_LE(Lumo::BuildLine(points, types, p, q), Lumo::kMaxLineNodes);
    EXPECT_LE(Lumo::BuildEllipse(points, types, p, x, y, z, x, on, on), Lumo::kMaxPieNodes);
    Lumo::BuildCircle(points, types, p, x);
    EXPECT_LE(Lumo::BuildRectangle(points, types, x, y), Lumo::kMaxRectangleNodes);
    EXPECT_LE(Lumo::BuildRectangle(points, types, x, y, z, corner, on), Lumo::kMaxRectangleNodes);
    EXPECT_LE(Lumo::BuildCircularArc(points, types, p, x, y, z), Lumo::kMaxArcNodes);
    EXPECT_LE(Lumo::BuildCircularArc(points, types, p, q, DVector{z, x}), Lumo::kMaxArcNodes);
    EXPECT_LE(Lumo::Build3PointCircularArc(points, types, p, q, DPoint{1.0 * b.x, 1.0 * b.y}),
              Lumo::kMaxArcNodes);
    EXPECT_EQ(Lumo::BuildLine(static_cast<T*>(nullptr), types, p, q), 0u);
    DPoint handles[2];
    Lumo::GetArcSegmentHandles(handles, p, q, DPoint{z, y});
  });
}

LUMO_TYPED_TEST(ExtremeClass, ArrayPrimitivesTouchNothingForBadRanges) {
  test::Extremes<T>::Each([](Lumo::PolycurveT<T> p, int index, int other, int n) {
    // Indices in the path are the caller's promise; negative ones and empty ranges are not.
    const int count = static_cast<int>(p.GetPointCount());
    if (count == 0 || (index >= 0 && other >= 0 && n > 0)) return;
    const auto room = p.GetBuffer();
    const Lumo::PolycurveT<T> before(room.points, room.types, room.count);
    Lumo::MovePath(room.points, room.types, index, other, n);
    Lumo::CopyPath(room.points, room.types, index, room.points, room.types, other, n);
    Lumo::Reverse(room.points, room.types, std::min(index, -1), other);
    PathInsNext(room.types, room.points, std::min(index, -1), n, count);
    PathInsNext(room.types, room.points, 0, std::min(n, 0), count);
    PathDelNext(room.types, room.points, std::min(index, -1), n, count);
    PathDelNext(room.types, room.points, 0, std::min(n, 0), count);
    Lumo::Reverse<T>(nullptr, nullptr, count);
    EXPECT_TRUE(p == before);
  });
}

}  // namespace
