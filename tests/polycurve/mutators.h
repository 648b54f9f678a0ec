#pragma once
// Every member of the path class that writes, with arguments drawn at random: the one list that the tests of
// sharing and of well-formedness run over.

#include <functional>
#include <string>
#include <vector>

#include "lumo/polycurve.h"
#include "lumo/repair.h"
#include "lumo/shapes.h"
#include "support/generators.h"

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
  static Path Other(Bits& bits) {
    const auto path = RandomPath<T>(bits);
    return {path.points.data(), path.types.data(), path.points.size()};
  }
  static double Size(Bits& bits) {
    return bits.OneIn(4) ? 0 : std::ldexp(1 + bits.Unit(), bits.Below(10) - 1);
  }
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
    list.push_back({"SetPoint", false, [](Path& p, Bits& b) { return p.SetPoint(Index(p, b), Point(b)); }});
    list.push_back({"SetNodeType", false, [](Path& p, Bits& b) {
                      return p.SetNodeType(Index(p, b), static_cast<unsigned char>(b()));
                    }});
    list.push_back({"SetPoints", true, [](Path& p, Bits& b) { return p.SetPoints(Other(b)); }});
    list.push_back(
        {"SetNodeClosed", false, [](Path& p, Bits& b) { return p.SetNodeClosed(Index(p, b), b.OneIn(2)); }});
    list.push_back(
        {"SetUserNode", false, [](Path& p, Bits& b) { return p.SetUserNode(Index(p, b), b.OneIn(2)); }});
    list.push_back({"Clear", true, [](Path& p, Bits&) { return p.Clear(); }});
    list.push_back({"Reserve", true, [](Path& p, Bits&) { return p.Reserve(100); }});
    list.push_back({"GetBuffer", false, [](Path& p, Bits& b) { return p.GetBuffer(Index(p, b)).count > 0; }});
    list.push_back({"GetBufferSetCount", false,
                    [](Path& p, Bits& b) { return p.GetBufferSetCount(Index(p, b)).count > 0; }});
    list.push_back({"ReleaseBuffer", false, [](Path& p, Bits& b) { return p.ReleaseBuffer(Index(p, b)); }});
    list.push_back(
        {"PushBack", false, [](Path& p, Bits& b) { return p.PushBack(Point(b), NODETYPE(0x44)); }});
    list.push_back({"ReplacePoints", false,
                    [](Path& p, Bits& b) { return p.ReplacePoints(Index(p, b), Index(p, b), Other(b)); }});
    list.push_back(
        {"InsertPoints", false, [](Path& p, Bits& b) { return p.InsertPoints(Index(p, b), p, 0, 2); }});
    list.push_back({"DeletePoints", false, [](Path& p, Bits& b) { return p.DeletePoints(Index(p, b), 2); }});
    list.push_back({"Truncate", false, [](Path& p, Bits& b) { return p.Truncate(Index(p, b)); }});
    list.push_back(
        {"EnsureDataOwnership", true, [](Path& p, Bits&) { return p.EnsureDataOwnership(), true; }});
    list.push_back({"Swap", true, [](Path& p, Bits& b) {
                      Path other = Other(b);
                      return p.Swap(other), true;
                    }});
    list.push_back({"operator=", true, [](Path& p, Bits& b) { return p = Other(b), true; }});
  }

  static void AddFlagSetters(List& list) {
    list.push_back({"SetLetter", true, [](Path& p, Bits& b) { return p.SetLetter(0, b.OneIn(2)); }});
    list.push_back({"ClearLetterFlags", true, [](Path& p, Bits&) { return p.ClearLetterFlags(); }});
    list.push_back({"ClearUserFlagOnArcs", true, [](Path& p, Bits&) { return p.ClearUserFlagOnArcs(); }});
    list.push_back(
        {"SetEnabled", true, [](Path& p, Bits& b) { return p.SetEnabled(Index(p, b), b.OneIn(2)); }});
    list.push_back({"SetCont", true, [](Path& p, Bits& b) {
                      const std::size_t i = Index(p, b);
                      return !p.GetNodeType(i).IsControl() &&
                             p.SetCont(i, static_cast<ContinuityType>(b.Below(3)));
                    }});
    list.push_back({"EnableAllNodes", true, [](Path& p, Bits&) { return p.EnableAllNodes(); }});
    list.push_back({"DisableAllNodes", true, [](Path& p, Bits&) { return p.DisableAllNodes(); }});
    list.push_back({"EnableAllControls", true, [](Path& p, Bits&) { return p.EnableAllControls(); }});
    list.push_back(
        {"EnableOneControl", true, [](Path& p, Bits& b) { return p.EnableOneControl(Index(p, b)); }});
    list.push_back(
        {"EnableSubpath", true, [](Path& p, Bits& b) { return p.EnableSubpath(Index(p, b), b.OneIn(2)); }});
    list.push_back({"EnableFirstAndLastInClosedSubpaths", true,
                    [](Path& p, Bits&) { return p.EnableFirstAndLastInClosedSubpaths(); }});
  }

  static void AddAppenders(List& list) {
    list.push_back({"MoveTo", true, [](Path& p, Bits& b) { return p.MoveTo(Point(b)); }});
    // A line needs an open subpath to run on in.
    list.push_back({"LineTo", true, [](Path& p, Bits& b) {
                      return !p.IsEmpty() && !p.IsLastSubpathClosed() && p.LineTo(Point(b), b.OneIn(2));
                    }});
    list.push_back({"CubicTo", true, [](Path& p, Bits& b) {
                      return !p.IsEmpty() && !p.IsLastSubpathClosed() &&
                             p.CubicTo(Point(b), Point(b), Point(b));
                    }});
    list.push_back({"CircularArcTo", true, [](Path& p, Bits& b) {
                      if (p.IsLastSubpathClosed()) return false;
                      return b.OneIn(2) ? p.CircularArcTo(Point(b), Point(b))
                                        : p.CircularArcTo(Point(b), 8 * b.Unit());
                    }});
    list.push_back({"AppendLineWithJoin", true, [](Path& p, Bits& b) {
                      const T start = b.OneIn(2) ? p.GetPoint(p.GetPointCount() - 1) : Point(b);
                      return p.AppendLineWithJoin(start, Point(b));
                    }});
    list.push_back({"AppendBezierWithJoin", true, [](Path& p, Bits& b) {
                      const T start = b.OneIn(2) ? p.GetPoint(p.GetPointCount() - 1) : Point(b);
                      return p.AppendBezierWithJoin(start, Point(b), Point(b), Point(b));
                    }});
    list.push_back({"AppendWithJoin", true, [](Path& p, Bits& b) { return p.AppendWithJoin(Other(b)); }});
    list.push_back({"AppendFittedCurve", true, [](Path& p, Bits& b) {
                      std::vector<T> row;
                      for (int k = b.Below(20); k >= 0; --k) row.push_back(Point(b));
                      return p.AppendFittedCurve(row, Size(b));
                    }});
    list.push_back({"operator+=", true,
                    [](Path& p, Bits& b) { return b.OneIn(2) ? (p += Other(b), true) : (p += p, true); }});
  }

  static void AddTransforms(List& list) {
    list.push_back({"Reverse", true, [](Path& p, Bits&) { return p.Reverse(); }});
    list.push_back({"TransformPoints", true, [](Path& p, Bits& b) { return p.TransformPoints(Map(b)); }});
    list.push_back({"UnTransformPoints", true, [](Path& p, Bits& b) { return p.UnTransformPoints(Map(b)); }});
    list.push_back({"TranslatePoints", true, [](Path& p, Bits& b) { return p.TranslatePoints(Offset(b)); }});
    list.push_back({"TransformToFit", true, [](Path& p, Bits& b) { return p.TransformToFit(Box(b)); }});
    list.push_back({"operator*=", true, [](Path& p, Bits& b) { return p *= Map(b), true; }});
    list.push_back({"operator/=", true, [](Path& p, Bits& b) { return p /= Map(b), true; }});
    list.push_back({"AlignEnabledNodes", true, [](Path& p, Bits& b) {
                      return p.AlignEnabledNodes(static_cast<Lumo::NodeEdge>(b.Below(6)));
                    }});
    list.push_back({"AlignEnabledNodesToPosition", true, [](Path& p, Bits& b) {
                      return p.AlignEnabledNodesToPosition(Point(b), b.OneIn(2), b.OneIn(2));
                    }});
    list.push_back({"AlignSingleNodeToPosition", true,
                    [](Path& p, Bits& b) { return p.AlignSingleNodeToPosition(Index(p, b), Point(b)); }});
    list.push_back({"AlignSingleNodeToPixel", true,
                    [](Path& p, Bits& b) { return p.AlignSingleNodeToPixel(Index(p, b), Size(b)); }});
    list.push_back({"AlignFirstNodeToPixelEdge", true,
                    [](Path& p, Bits& b) { return p.AlignFirstNodeToPixelEdge(Size(b)); }});
    list.push_back({"AlignLastNodeToPixelEdge", true,
                    [](Path& p, Bits& b) { return p.AlignLastNodeToPixelEdge(Size(b)); }});
  }

  static void AddJoins(List& list) {
    list.push_back({"Join", true, [](Path& p, Bits& b) { return p.Join(Index(p, b), Index(p, b)); }});
    list.push_back({"JoinEnabled", true, [](Path& p, Bits&) { return p.JoinEnabled(); }});
    list.push_back({"JoinEnabledAddingLineSegments", true,
                    [](Path& p, Bits&) { return p.JoinEnabledAddingLineSegments(); }});
    list.push_back(
        {"JoinEnabledAddingCurves", true, [](Path& p, Bits&) { return p.JoinEnabledAddingCurves(); }});
    list.push_back(
        {"JoinTouchingSubpaths", true, [](Path& p, Bits& b) { return p.JoinTouchingSubpaths(Size(b)); }});
    list.push_back({"JoinEndpoints", true, [](Path& p, Bits&) { return p.JoinEndpoints(); }});
    list.push_back({"JoinClosestPairsAddingLineSegments", true,
                    [](Path& p, Bits&) { return p.JoinClosestPairsAddingLineSegments(); }});
    list.push_back({"CloseSubpath", true, [](Path& p, Bits& b) { return p.CloseSubpath(Index(p, b)); }});
    list.push_back(
        {"CloseLastSubpath", true, [](Path& p, Bits& b) { return p.CloseLastSubpath(Size(b), b.OneIn(2)); }});
    list.push_back({"CloseLastSubpathWithOptionalLine", true,
                    [](Path& p, Bits&) { return p.CloseLastSubpathWithOptionalLine(); }});
    list.push_back({"CloseOpenSubpaths", true, [](Path& p, Bits&) { return p.CloseOpenSubpaths(); }});
  }

  static void AddBreaks(List& list) {
    list.push_back({"BreakAt", true, [](Path& p, Bits& b) {
                      const auto at = p.GetPositionAtRelativeLength(b.Unit());
                      return at && p.BreakAt(*at);
                    }});
    list.push_back(
        {"BreakAtLength", true, [](Path& p, Bits& b) { return p.BreakAtLength(3000 * b.Unit()); }});
    list.push_back({"BreakEnabled", true, [](Path& p, Bits& b) { return p.BreakEnabled(b.OneIn(2)); }});
    list.push_back(
        {"BreakAtIntersections", true, [](Path& p, Bits& b) { return p.BreakAtIntersections(Other(b)); }});
    list.push_back(
        {"BreakAtSelfIntersections", true, [](Path& p, Bits&) { return p.BreakAtSelfIntersections(); }});
    list.push_back({"DeleteNode", true, [](Path& p, Bits& b) { return p.DeleteNode(Index(p, b)); }});
    list.push_back({"DeleteSegment", true, [](Path& p, Bits& b) { return p.DeleteSegment(Index(p, b)); }});
    list.push_back({"DeleteSubpath", true,
                    [](Path& p, Bits& b) { return p.DeleteSubpath(static_cast<std::size_t>(b.Below(5))); }});
    list.push_back({"DeleteEnabled", true, [](Path& p, Bits&) { return p.DeleteEnabled(); }});
    list.push_back({"DeleteSelectedChords", true, [](Path& p, Bits&) { return p.DeleteSelectedChords(); }});
    list.push_back(
        {"DeleteUnselectedChords", true, [](Path& p, Bits&) { return p.DeleteUnselectedChords(); }});
    list.push_back({"ConvertToLine", true, [](Path& p, Bits& b) {
                      return b.OneIn(2) ? p.ConvertToLine() : p.ConvertToLine(Index(p, b));
                    }});
    list.push_back({"ConvertToCurve", true, [](Path& p, Bits& b) {
                      return b.OneIn(2) ? p.ConvertToCurve() : p.ConvertToCurve(Index(p, b));
                    }});
    list.push_back(
        {"ReverseEnabledSubpaths", true, [](Path& p, Bits&) { return p.ReverseEnabledSubpaths(); }});
    list.push_back({"SpinSubpath", true, [](Path& p, Bits& b) { return p.SpinSubpath(Index(p, b)); }});
    list.push_back({"SetPathStartAt", true, [](Path& p, Bits& b) { return p.SetPathStartAt(Index(p, b)); }});
    list.push_back({"Extend", true, [](Path& p, Bits& b) { return p.Extend(Size(b)); }});
    list.push_back({"ExtendForward", true, [](Path& p, Bits& b) { return p.ExtendForward(Size(b)); }});
    list.push_back({"ExtendBackward", true, [](Path& p, Bits& b) { return p.ExtendBackward(Size(b)); }});
    list.push_back({"MergeLines", true, [](Path& p, Bits& b) { return p.MergeLines(Size(b)); }});
    list.push_back({"DivideEqually", true,
                    [](Path& p, Bits& b) { return p.DivideEqually(static_cast<std::size_t>(b.Below(12))); }});
    list.push_back({"RepairNodeTypes", true, [](Path& p, Bits&) { return p.RepairNodeTypes(); }});
    list.push_back(
        {"ScrubDanglingMoves", true, [](Path& p, Bits& b) { return p.ScrubDanglingMoves(b.OneIn(2)); }});
    list.push_back(
        {"RemoveSmallSubpaths", true, [](Path& p, Bits& b) { return p.RemoveSmallSubpaths(Size(b)); }});
    list.push_back({"RepairCurves", true, [](Path& p, Bits&) { return p.RepairCurves({}); }});
    list.push_back({"RepairContinuity", true, [](Path& p, Bits&) { return p.RepairContinuity({}); }});
    list.push_back(
        {"RemoveZeroLengthSegments", true, [](Path& p, Bits&) { return p.RemoveZeroLengthSegments(); }});
    list.push_back(
        {"RemoveShortSegments", true, [](Path& p, Bits& b) { return p.RemoveShortSegments(Size(b)); }});
  }

  static void AddShapes(List& list) {
    list.push_back({"CreateLineSubpath", true,
                    [](Path& p, Bits& b) { return p.CreateLineSubpath(Point(b), Point(b)); }});
    list.push_back({"CreateEllipseSubpath", true, [](Path& p, Bits& b) {
                      return p.CreateEllipseSubpath(Point(b), 100 * b.Unit(), 100, 6 * b.Unit(), 6 * b.Unit(),
                                                    b.OneIn(2));
                    }});
    list.push_back(
        {"CreateCircleSubpath", true, [](Path& p, Bits& b) { return p.CreateCircleSubpath(Point(b), 50); }});
    list.push_back({"CreateRectangleSubpath", true, [](Path& p, Bits& b) {
                      if (b.OneIn(2)) return p.CreateRectangleSubpath(Box(b));
                      return p.CreateRectangleSubpath(100, 50, 10,
                                                      static_cast<Lumo::RectangleCorner>(b.Below(3)), false);
                    }});
  }
};

}  // namespace test
