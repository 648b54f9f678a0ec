#pragma once
// Every member of the path class that writes, with arguments drawn at random: the one list that the tests of
// sharing and of well-formedness run over.

#include <functional>
#include <string>
#include <vector>

#include "lumo/polycurve.h"
#include "lumo/repair.h"
#include "lumo/shapes.h"
#include "support/curves.h"

/// A member by its name, and a call of it on the path `p` with arguments from `b`.
#define LUMO_MUTATOR(keepsForm, name, ...) \
  list.push_back(                          \
      {#name, keepsForm, [](Path& p, [[maybe_unused]] Bits& b) { return static_cast<bool>(__VA_ARGS__); }})
#define LUMO_WRITER(name, ...) LUMO_MUTATOR(false, name, __VA_ARGS__)
#define LUMO_EDITOR(name, ...) LUMO_MUTATOR(true, name, __VA_ARGS__)

namespace test {

template <class T>
struct Mutator {
  std::string name;
  /// Whether a well-formed path stays one. The plain writers leave that to their caller.
  bool keepsForm;
  std::function<bool(Lumo::PolycurveT<T>&, Bits&)> run;
};

template <class T>
class MutatorList {
 public:
  using Path = Lumo::PolycurveT<T>;

  static std::vector<Mutator<T>> All() {
    std::vector<Mutator<T>> list;
    AddWriters(list);
    AddFlagSetters(list);
    AddAppenders(list);
    AddTransforms(list);
    AddJoins(list);
    AddBreaks(list);
    AddShapes(list);
    return list;
  }

 private:
  using List = std::vector<Mutator<T>>;

  static T Point(Bits& bits) { return RandomPoint<T>(bits, PathOptions{}); }
  /// An index of the path, or one beyond it.
  static std::size_t Index(const Path& p, Bits& bits) {
    return static_cast<std::size_t>(bits.Below(static_cast<int>(p.GetPointCount()) + 2));
  }
  static Path Other(Bits& bits) { return ToCurve(RandomPath<T>(bits)); }
  static double Size(Bits& bits) {
    return bits.OneIn(4) ? 0 : std::ldexp(1 + bits.Unit(), bits.Below(10) - 1);
  }
  /// Where a segment may begin: at the end of the path, or anywhere.
  static T Start(const Path& p, Bits& bits) {
    return bits.OneIn(2) ? p.GetPoint(p.GetPointCount() - 1) : Point(bits);
  }
  static std::vector<T> Row(Bits& bits) {
    std::vector<T> row;
    for (int k = bits.Below(20); k >= 0; --k) row.push_back(Point(bits));
    return row;
  }
  /// Whether a line has an open subpath to run on in.
  static bool IsOpen(const Path& p) { return !p.IsEmpty() && !p.IsLastSubpathClosed(); }
  static MATRIX Map(Bits& bits) {
    return {bits.Unit() * 2 - 1, bits.Unit(),      -bits.Unit(),
            bits.Unit() * 2 - 1, bits.Unit() * 10, bits.Unit() * 10};
  }
  static auto Offset(Bits& bits) {
    const T p = Point(bits);
    return typename Path::Translation{p.x, p.y};
  }
  static Lumo::BoxT<T> Box(Bits& bits) {
    const T a = Point(bits), b = Point(bits);
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
  }

  static void AddWriters(List& list) {
    LUMO_WRITER(SetPoint, p.SetPoint(Index(p, b), Point(b)));
    LUMO_WRITER(SetNodeType, p.SetNodeType(Index(p, b), static_cast<unsigned char>(b())));
    LUMO_EDITOR(SetPoints, p.SetPoints(Other(b)));
    LUMO_WRITER(SetNodeClosed, p.SetNodeClosed(Index(p, b), b.OneIn(2)));
    LUMO_WRITER(SetUserNode, p.SetUserNode(Index(p, b), b.OneIn(2)));
    LUMO_EDITOR(Clear, p.Clear());
    LUMO_EDITOR(Reserve, p.Reserve(100));
    LUMO_WRITER(GetBuffer, p.GetBuffer(Index(p, b)).count > 0);
    LUMO_WRITER(GetBufferSetCount, p.GetBufferSetCount(Index(p, b)).count > 0);
    LUMO_WRITER(ReleaseBuffer, p.ReleaseBuffer(Index(p, b)));
    LUMO_WRITER(PushBack, p.PushBack(Point(b), NODETYPE(0x44)));
    LUMO_WRITER(ReplacePoints, p.ReplacePoints(Index(p, b), Index(p, b), Other(b)));
    LUMO_WRITER(InsertPoints, p.InsertPoints(Index(p, b), p, 0, 2));
    LUMO_WRITER(DeletePoints, p.DeletePoints(Index(p, b), 2));
    LUMO_WRITER(Truncate, p.Truncate(Index(p, b)));
    LUMO_EDITOR(EnsureDataOwnership, (p.EnsureDataOwnership(), true));
    list.push_back({"Swap", true, [](Path& p, Bits& b) {
                      Path other = Other(b);
                      return p.Swap(other), true;
                    }});
    LUMO_EDITOR(operator=, (p = Other(b), true));
  }

  static void AddFlagSetters(List& list) {
    LUMO_EDITOR(SetLetter, p.SetLetter(0, b.OneIn(2)));
    LUMO_EDITOR(ClearLetterFlags, p.ClearLetterFlags());
    LUMO_EDITOR(ClearUserFlagOnArcs, p.ClearUserFlagOnArcs());
    LUMO_EDITOR(SetEnabled, p.SetEnabled(Index(p, b), b.OneIn(2)));
    list.push_back({"SetCont", true, [](Path& p, Bits& b) {
                      const std::size_t i = Index(p, b);
                      return !p.GetNodeType(i).IsControl() &&
                             p.SetCont(i, static_cast<ContinuityType>(b.Below(3)));
                    }});
    LUMO_EDITOR(EnableAllNodes, p.EnableAllNodes());
    LUMO_EDITOR(DisableAllNodes, p.DisableAllNodes());
    LUMO_EDITOR(EnableAllControls, p.EnableAllControls());
    LUMO_EDITOR(EnableOneControl, p.EnableOneControl(Index(p, b)));
    LUMO_EDITOR(EnableSubpath, p.EnableSubpath(Index(p, b), b.OneIn(2)));
    LUMO_EDITOR(EnableFirstAndLastInClosedSubpaths, p.EnableFirstAndLastInClosedSubpaths());
  }

  static void AddAppenders(List& list) {
    LUMO_EDITOR(MoveTo, p.MoveTo(Point(b)));
    LUMO_EDITOR(LineTo, IsOpen(p) && p.LineTo(Point(b), b.OneIn(2)));
    LUMO_EDITOR(CubicTo, IsOpen(p) && p.CubicTo(Point(b), Point(b), Point(b)));
    LUMO_EDITOR(CircularArcTo,
                !p.IsLastSubpathClosed() && (b.OneIn(2) ? p.CircularArcTo(Point(b), Point(b))
                                                        : p.CircularArcTo(Point(b), 8 * b.Unit())));
    LUMO_EDITOR(AppendLineWithJoin, p.AppendLineWithJoin(Start(p, b), Point(b)));
    LUMO_EDITOR(AppendBezierWithJoin, p.AppendBezierWithJoin(Start(p, b), Point(b), Point(b), Point(b)));
    LUMO_EDITOR(AppendWithJoin, p.AppendWithJoin(Other(b)));
    LUMO_EDITOR(AppendFittedCurve, p.AppendFittedCurve(Row(b), Size(b)));
    LUMO_EDITOR(operator+=, (b.OneIn(2) ? p += Other(b) : p += p, true));
  }

  static void AddTransforms(List& list) {
    LUMO_EDITOR(Reverse, p.Reverse());
    LUMO_EDITOR(TransformPoints, p.TransformPoints(Map(b)));
    LUMO_EDITOR(UnTransformPoints, p.UnTransformPoints(Map(b)));
    LUMO_EDITOR(TranslatePoints, p.TranslatePoints(Offset(b)));
    LUMO_EDITOR(TransformToFit, p.TransformToFit(Box(b)));
    LUMO_EDITOR(operator*=, (p *= Map(b), true));
    LUMO_EDITOR(operator/=, (p /= Map(b), true));
    LUMO_EDITOR(AlignEnabledNodes, p.AlignEnabledNodes(static_cast<Lumo::NodeEdge>(b.Below(6))));
    LUMO_EDITOR(AlignEnabledNodesToPosition, p.AlignEnabledNodesToPosition(Point(b), b.OneIn(2), b.OneIn(2)));
    LUMO_EDITOR(AlignSingleNodeToPosition, p.AlignSingleNodeToPosition(Index(p, b), Point(b)));
    LUMO_EDITOR(AlignSingleNodeToPixel, p.AlignSingleNodeToPixel(Index(p, b), Size(b)));
    LUMO_EDITOR(AlignFirstNodeToPixelEdge, p.AlignFirstNodeToPixelEdge(Size(b)));
    LUMO_EDITOR(AlignLastNodeToPixelEdge, p.AlignLastNodeToPixelEdge(Size(b)));
  }

  static void AddJoins(List& list) {
    LUMO_EDITOR(Join, p.Join(Index(p, b), Index(p, b)));
    LUMO_EDITOR(JoinEnabled, p.JoinEnabled());
    LUMO_EDITOR(JoinEnabledAddingLineSegments, p.JoinEnabledAddingLineSegments());
    LUMO_EDITOR(JoinEnabledAddingCurves, p.JoinEnabledAddingCurves());
    LUMO_EDITOR(JoinTouchingSubpaths, p.JoinTouchingSubpaths(Size(b)));
    LUMO_EDITOR(JoinEndpoints, p.JoinEndpoints());
    LUMO_EDITOR(JoinClosestPairsAddingLineSegments, p.JoinClosestPairsAddingLineSegments());
    LUMO_EDITOR(CloseSubpath, p.CloseSubpath(Index(p, b)));
    LUMO_EDITOR(CloseLastSubpath, p.CloseLastSubpath(Size(b), b.OneIn(2)));
    LUMO_EDITOR(CloseLastSubpathWithOptionalLine, p.CloseLastSubpathWithOptionalLine());
    LUMO_EDITOR(CloseOpenSubpaths, p.CloseOpenSubpaths());
  }

  static void AddBreaks(List& list) {
    list.push_back({"BreakAt", true, [](Path& p, Bits& b) {
                      const auto at = p.GetPositionAtRelativeLength(b.Unit());
                      return at && p.BreakAt(*at);
                    }});
    LUMO_EDITOR(BreakAtLength, p.BreakAtLength(3000 * b.Unit()));
    LUMO_EDITOR(BreakEnabled, p.BreakEnabled(b.OneIn(2)));
    LUMO_EDITOR(BreakAtIntersections, p.BreakAtIntersections(Other(b)));
    LUMO_EDITOR(BreakAtSelfIntersections, p.BreakAtSelfIntersections());
    LUMO_EDITOR(DeleteNode, p.DeleteNode(Index(p, b)));
    LUMO_EDITOR(DeleteSegment, p.DeleteSegment(Index(p, b)));
    LUMO_EDITOR(DeleteSubpath, p.DeleteSubpath(static_cast<std::size_t>(b.Below(5))));
    LUMO_EDITOR(DeleteEnabled, p.DeleteEnabled());
    LUMO_EDITOR(DeleteSelectedChords, p.DeleteSelectedChords());
    LUMO_EDITOR(DeleteUnselectedChords, p.DeleteUnselectedChords());
    LUMO_EDITOR(ConvertToLine, b.OneIn(2) ? p.ConvertToLine() : p.ConvertToLine(Index(p, b)));
    LUMO_EDITOR(ConvertToCurve, b.OneIn(2) ? p.ConvertToCurve() : p.ConvertToCurve(Index(p, b)));
    LUMO_EDITOR(ReverseEnabledSubpaths, p.ReverseEnabledSubpaths());
    LUMO_EDITOR(SpinSubpath, p.SpinSubpath(Index(p, b)));
    LUMO_EDITOR(SetPathStartAt, p.SetPathStartAt(Index(p, b)));
    LUMO_EDITOR(Extend, p.Extend(Size(b)));
    LUMO_EDITOR(ExtendForward, p.ExtendForward(Size(b)));
    LUMO_EDITOR(ExtendBackward, p.ExtendBackward(Size(b)));
    LUMO_EDITOR(MergeLines, p.MergeLines(Size(b)));
    LUMO_EDITOR(DivideEqually, p.DivideEqually(static_cast<std::size_t>(b.Below(12))));
    LUMO_EDITOR(RepairNodeTypes, p.RepairNodeTypes());
    LUMO_EDITOR(ScrubDanglingMoves, p.ScrubDanglingMoves(b.OneIn(2)));
    LUMO_EDITOR(RemoveSmallSubpaths, p.RemoveSmallSubpaths(Size(b)));
    LUMO_EDITOR(RepairCurves, p.RepairCurves({}));
    LUMO_EDITOR(RepairContinuity, p.RepairContinuity({}));
    LUMO_EDITOR(RemoveZeroLengthSegments, p.RemoveZeroLengthSegments());
    LUMO_EDITOR(RemoveShortSegments, p.RemoveShortSegments(Size(b)));
  }

  static void AddShapes(List& list) {
    LUMO_EDITOR(CreateLineSubpath, p.CreateLineSubpath(Point(b), Point(b)));
    LUMO_EDITOR(CreateEllipseSubpath, p.CreateEllipseSubpath(Point(b), 100 * b.Unit(), 100, 6 * b.Unit(),
                                                             6 * b.Unit(), b.OneIn(2)));
    LUMO_EDITOR(CreateCircleSubpath, p.CreateCircleSubpath(Point(b), 50));
    LUMO_EDITOR(CreateRectangleSubpath,
                b.OneIn(2) ? p.CreateRectangleSubpath(Box(b))
                           : p.CreateRectangleSubpath(100, 50, 10,
                                                      static_cast<Lumo::RectangleCorner>(b.Below(3)), false));
  }
};

}  // namespace test

#undef LUMO_MUTATOR
#undef LUMO_WRITER
#undef LUMO_EDITOR
