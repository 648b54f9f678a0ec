// Members of the path class that change a path: polycurve.h, repair.h.

#include "lumo/repair.h"
#include "picture.h"

namespace pictures {

namespace {

Path Bridge() { return Parse("M 10 10 L 10 40 C 10 75 60 75 60 40 L 90 40 L 90 10"); }
Path Ring() { return Parse("M 15 15 L 85 15 C 85 45 75 70 50 70 C 25 70 15 45 15 15 Z"); }
Path Wave() { return Smooth(Parse("M 8 20 C 20 80 35 80 45 40 C 55 0 75 0 92 60"), {3}); }
Path Strokes() { return Parse("M 8 20 C 8 50 20 65 40 60 M 60 55 L 92 55 L 80 15"); }
Path Scattered() {
  return Parse(
      "M 10 12 L 40 14 M 48 10 L 80 12 M 88 20 L 86 50 M 85 60 L 55 70 M 45 68 L 12 60 M 8 52 L 8 22");
}

/// Before and after one call.
template <class Edit>
void Change(Picture& p, const Path& before, const Edit& edit) {
  Path after = before;
  edit(after);
  p.BeforeAfter(before, after);
}
/// Pieces one beside another.
Path Apart(Path path) {
  const auto ranges = path.GetSubpathIndices();
  for (std::size_t k = 1; k < ranges.size(); ++k) {
    const double d = static_cast<double>(k) * 2.5 * kUnit;
    path.TranslatePoints(DVector{d, -d}, ranges[k].first, ranges[k].end - 1);
  }
  return path;
}

void CubicTo(Picture& p) {
  Path path;
  path.MoveTo(At(10, 20));
  path.LineTo(At(30, 60));
  p.Panel("before").Show(path);
  path.CubicTo(At(40, 80), At(80, 80), At(90, 20));
  p.Panel("after").Show(path);
}
void ArcTo(Picture& p) {
  Path path = Parse("M 10 15 L 30 15");
  p.Panel("before").Show(path).Dot(At(55, 55)).Dot(At(85, 30));
  path.CircularArcTo(At(55, 55), At(85, 30));
  p.Panel("an arc through two points").Show(path).Dot(At(55, 55)).Dot(At(85, 30));
}
void WithJoin(Picture& p) {
  Change(p, Parse("M 10 15 L 40 60"), [](Path& path) {
    path.AppendLineWithJoin(At(40, 60), At(60, 20));
    path.AppendLineWithJoin(At(70, 20), At(90, 60));
  });
}
void Fitted(Picture& p) {
  std::vector<DPoint> points;
  for (const DPoint& at : Wave().GetEvenlySpacedPoints(40)) {
    const double noise = static_cast<double>((points.size() * 7919) % 13) - 6;
    points.push_back(at + DVector{100 * noise, 70 * noise});
  }
  points.push_back(At(95, 20));
  Path path;
  path.AppendFittedCurve(points, 1500);
  p.Panel("points of a stroke");
  for (const DPoint& at : points) p.Dot(at, kInk, 1.5);
  p.Panel("within 1500 units").Show(path);
}
void DivideEqually(Picture& p) {
  Change(p, Wave(), [](Path& path) { path.DivideEqually(6); });
}
void Polyline(Picture& p) {
  p.Panel("before")
      .Show(Wave())
      .Panel("lines within 1000 units")
      .Line(Wave(), kOld, 3)
      .Show(Wave().GetPolyline(1000));
}
void TransformPoints(Picture& p) {
  Change(p, Bridge(), [](Path& path) { path.TransformPoints(MATRIX{0.7, 0.2, -0.4, 0.7, 30 * kUnit, 0}); });
}
void Translate(Picture& p) {
  Change(p, Parse("M 10 10 L 10 40 C 10 60 40 60 40 40 L 60 40"),
         [](Path& path) { path.TranslatePoints(DVector{30 * kUnit, 20 * kUnit}); });
}
void ToFit(Picture& p) {
  Path path = Wave();
  const Path::Box box{20 * kUnit, 25 * kUnit, 95 * kUnit, 60 * kUnit};
  p.Panel("before").Line(path).Box(box);
  path.TransformToFit(box);
  p.Panel("after").Line(path).Box(box);
}
void Replace(Picture& p) {
  Change(p, Bridge(), [](Path& path) {
    const Path hook = Parse("M 0 0 L 30 70 L 50 30");
    path.ReplacePoints(2, 3, hook.GetPoints() + 1, hook.GetNodeTypes() + 1, 2);
  });
}
void JoinTouching(Picture& p) {
  Change(p, Scattered(), [](Path& path) { path.JoinTouchingSubpaths(12000); });
}
void JoinClosest(Picture& p) {
  Change(p, Scattered(), [](Path& path) { path.JoinClosestPairsAddingLineSegments(); });
}
void JoinCurves(Picture& p) {
  Change(p, Select(Strokes(), {3, 4}), [](Path& path) { path.JoinEnabledAddingCurves(); });
}
void JoinMember(Picture& p) {
  Change(p, Strokes(), [](Path& path) { path.Join(3, 4); });
}
void JoinEnds(Picture& p) {
  Change(p, Bridge(), [](Path& path) { path.JoinEndpoints(); });
}
void CloseOne(Picture& p) {
  Change(p, Strokes(), [](Path& path) { path.CloseSubpath(5); });
}
void CloseLast(Picture& p) {
  Change(p, Strokes(), [](Path& path) { path.CloseLastSubpath(1000, true); });
}
void CloseAll(Picture& p) {
  Change(p, Strokes(), [](Path& path) { path.CloseOpenSubpaths(); });
}
void BreakLength(Picture& p) {
  Path path = Wave();
  path.BreakAtLength(path.GetLength() / 3);
  p.Panel("before").Show(Wave()).Panel("at a third, drawn apart").Show(Apart(path));
}
void DeleteNode(Picture& p) {
  Change(p, Bridge(), [](Path& path) { path.DeleteNode(4); });
}
void DeleteSegment(Picture& p) {
  Change(p, Bridge(), [](Path& path) { path.DeleteSegment(4); });
}
void DeleteSubpath(Picture& p) {
  Change(p, Strokes(), [](Path& path) { path.DeleteSubpath(0); });
}
void SelectedChords(Picture& p) {
  Change(p, Select(Bridge(), {1, 4, 5}), [](Path& path) { path.DeleteSelectedChords(); });
}
void UnselectedChords(Picture& p) {
  Change(p, Select(Bridge(), {1, 4, 5}), [](Path& path) { path.DeleteUnselectedChords(); });
}
void ToLine(Picture& p) {
  Change(p, Ring(), [](Path& path) { path.ConvertToLine(4); });
}
void ToCurve(Picture& p) {
  Change(p, Ring(), [](Path& path) { path.ConvertToCurve(1); });
}
void Spin(Picture& p) {
  const auto numbers = [&p](const Path& path) {
    for (std::size_t i = 0; i < path.GetPointCount(); ++i) {
      if (path.GetNodeType(i).IsUser())
        p.Text(path.GetPoint(i) + DVector{2 * kUnit, 2 * kUnit}, std::to_string(i), kNew);
    }
  };
  Path path = Ring();
  numbers((p.Panel("before").Show(path), path));
  path.SpinSubpath(4);
  numbers((p.Panel("starting at node 4").Show(path), path));
}
void Extend(Picture& p) {
  const Path path = Parse("M 25 25 L 40 40 C 50 50 60 55 70 45");
  Path longer = path;
  longer.Extend(18000);
  p.BeforeAfter(path, longer);
}
void Merge(Picture& p) {
  Change(p, Parse("M 5 20 L 15 31 L 25 39 L 35 50 L 45 60 L 55 59 L 66 61 L 75 60 L 92 20"),
         [](Path& path) { path.MergeLines(2000); });
}
void AlignEdge(Picture& p) {
  Change(p, Select(Bridge(), {1, 4, 6}), [](Path& path) { path.AlignEnabledNodes(Lumo::NodeEdge::left); });
}
void AlignPosition(Picture& p) {
  Change(p, Select(Bridge(), {1, 4}),
         [](Path& path) { path.AlignEnabledNodesToPosition(At(0, 25), false, true); });
}
void AlignPixel(Picture& p) {
  Path path = Parse("M 13 17 L 57 62 L 88 33");
  const auto grid = [&p] {
    for (int i = 0; i <= 100; i += 20) p.Line(Path::CreateLine(At(i, 0), At(i, 80)), "#ddd", 0.7);
    for (int i = 0; i <= 80; i += 20) p.Line(Path::CreateLine(At(0, i), At(100, i)), "#ddd", 0.7);
  };
  p.Panel("before");
  grid();
  p.Show(path).Panel("node 1 to the middle of its pixel");
  path.AlignSingleNodeToPixel(1, 20 * kUnit);
  grid();
  p.Show(path);
}
void BreakAtOther(Picture& p) {
  const Path other = Parse("M 5 55 L 95 25");
  Path path = Wave();
  path.BreakAtIntersections(other);
  p.Panel("before")
      .Show(Wave())
      .Line(other, kThird)
      .Panel("pieces, drawn apart")
      .Show(Apart(path))
      .Line(other, kThird);
}
void BreakAtSelf(Picture& p) {
  const Path loop = Parse("M 10 10 C 130 75 -30 75 90 10");
  Path path = loop;
  path.BreakAtSelfIntersections();
  p.Panel("before").Show(loop).Panel("pieces, drawn apart").Show(Apart(path));
}
void Repair(Picture& p) {
  Path path = Parse("M 15 15 L 60 15 L 60 15 L 85 15 C 85 15 85 70 50 70 C 25 70 15 45 15 17");
  path.SetNodeClosed(0, true);
  path.SetNodeClosed(path.GetPointCount() - 1, true);
  path.PushBack(Parse("M 50 40"));
  Lumo::CurveRepairSettings settings;
  Change(p, path, [&settings](Path& mended) { mended.RepairCurves(settings); });
}
void ShortSegments(Picture& p) {
  Change(p, Parse("M 10 15 L 12 17 L 40 60 L 42 62 L 44 62 L 85 50 L 87 48 L 90 15"),
         [](Path& path) { path.RemoveShortSegments(5000); });
}
void SmallSubpaths(Picture& p) {
  Change(p, Parse("M 15 15 L 60 15 L 40 60 Z M 75 60 L 78 60 L 76 63 Z M 80 20 L 82 22 L 80 24 Z"),
         [](Path& path) { path.RemoveSmallSubpaths(6000); });
}
void Continuity(Picture& p) {
  Lumo::CurveRepairSettings settings;
  Change(p, Parse("M 8 20 C 20 80 35 80 45 40 C 55 0 65 0 70 30 C 75 45 85 60 92 60"),
         [&settings](Path& path) { path.RepairContinuity(settings); });
}

constexpr Entry kEntries[] = {{"CubicTo", CubicTo},
                              {"CircularArcTo", ArcTo},
                              {"AppendLineWithJoin", WithJoin},
                              {"AppendFittedCurve", Fitted},
                              {"DivideEqually", DivideEqually},
                              {"GetPolyline", Polyline},
                              {"TransformPoints", TransformPoints},
                              {"TranslatePoints", Translate},
                              {"TransformToFit", ToFit},
                              {"ReplacePoints", Replace},
                              {"JoinTouchingSubpaths", JoinTouching},
                              {"JoinClosestPairsAddingLineSegments", JoinClosest},
                              {"JoinEnabledAddingCurves", JoinCurves},
                              {"Join", JoinMember},
                              {"JoinEndpoints", JoinEnds},
                              {"CloseSubpath", CloseOne},
                              {"CloseLastSubpath", CloseLast},
                              {"CloseOpenSubpaths", CloseAll},
                              {"BreakAtLength", BreakLength},
                              {"DeleteNode", DeleteNode},
                              {"DeleteSegment", DeleteSegment},
                              {"DeleteSubpath", DeleteSubpath},
                              {"DeleteSelectedChords", SelectedChords},
                              {"DeleteUnselectedChords", UnselectedChords},
                              {"ConvertToLine", ToLine},
                              {"ConvertToCurve", ToCurve},
                              {"SpinSubpath", Spin},
                              {"Extend", Extend},
                              {"MergeLines", Merge},
                              {"AlignEnabledNodes", AlignEdge},
                              {"AlignEnabledNodesToPosition", AlignPosition},
                              {"AlignSingleNodeToPixel", AlignPixel},
                              {"BreakAtIntersections", BreakAtOther},
                              {"BreakAtSelfIntersections", BreakAtSelf},
                              {"RepairCurves", Repair},
                              {"RemoveShortSegments", ShortSegments},
                              {"RemoveSmallSubpaths", SmallSubpaths},
                              {"RepairContinuity", Continuity}};

}  // namespace

std::span<const Entry> PathPictures() { return kEntries; }

}  // namespace pictures
