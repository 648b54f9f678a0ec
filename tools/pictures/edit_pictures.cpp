// Editing in the caller's arrays: path_array.h, crv_edit.h, crv_convert.h.

#include "lumo/crv_convert.h"
#include "lumo/crv_edit.h"
#include "lumo/crv_navigation.h"
#include "lumo/path_array.h"
#include "picture.h"

namespace pictures {

namespace {

Path Bridge() { return Parse("M 10 10 L 10 40 C 10 75 60 75 60 40 L 90 40 L 90 10"); }
Path Ring() { return Parse("M 15 15 L 85 15 C 85 45 75 70 50 70 C 25 70 15 45 15 15 Z"); }
/// Two strokes whose ends 3 and 4 lie apart.
Path Strokes() { return Parse("M 8 20 C 8 50 20 65 40 60 M 60 55 L 92 55 L 80 15"); }

void Add(Picture& p) {
  p.BeforeAfter(Bridge(), Edited(Bridge(), 3, [](DPoint* points, NODETYPE* types, int n) {
                  return n + CRV_Add(points, types, n, 4, 0.5, 1);
                }));
}
void AddEnabled(Picture& p) {
  const Path path = Select(Bridge(), {1, 4, 5});
  p.BeforeAfter(path, Edited(path, 9, [](DPoint* points, NODETYPE* types, int n) {
                  return CRV_AddEnabled(points, types, n, 0, 1);
                }));
}
void AppendLine(Picture& p) {
  p.BeforeAfter(Bridge(), Edited(Bridge(), 1, [](DPoint* points, NODETYPE* types, int n) {
                  return CRV_AppendLine(points, types, n, 4, At(75, 70));
                }));
}
void AppendMove(Picture& p) {
  p.BeforeAfter(Bridge(), Edited(Bridge(), 1, [](DPoint* points, NODETYPE* types, int n) {
                  return CRV_AppendMove(points, types, n, 4, At(60, 60));
                }));
}
void Append(Picture& p) {
  const Path other = Parse("M 30 15 L 45 30 L 60 15");
  p.BeforeAfter(Bridge(), Edited(Bridge(), 3, [&](DPoint* points, NODETYPE* types, int n) {
                  return CRV_Append(points, types, n, n - 1, other.GetPoints(), other.GetNodeTypes(), 3, 0);
                }));
}
void Remove(Picture& p) {
  p.BeforeAfter(Bridge(), Edited(Bridge(), 0, [](DPoint* points, NODETYPE* types, int n) {
                  return CRV_Remove(points, types, n, 5, 1);
                }));
}
void RemoveOpen(Picture& p) {
  Path path = Strokes();
  path.PushBack(Parse("M 40 10 L 60 10 L 50 30 Z"));
  p.BeforeAfter(path, Edited(path, 0, [](DPoint* points, NODETYPE* types, int n) {
                  return CRV_RemoveOpenSubpaths(points, types, n);
                }));
}
/// A path with its direction and the order of its nodes.
void Directed(Picture& p, const Path& path) {
  p.Show(path);
  for (std::size_t i = 0; i < path.GetPointCount(); ++i) {
    if (path.GetNodeType(i).IsOnCurve())
      p.Text(path.GetPoint(i) + DVector{2 * kUnit, 2 * kUnit}, std::to_string(i));
  }
}
void ReverseSubpath(Picture& p) {
  Path path = Strokes();
  Directed(p.Panel("before"), path);
  Directed(p.Panel("the subpath of node 5 reversed"),
           Edited(path, 0, [](DPoint* points, NODETYPE* types, int n) {
             CRV_ReverseThisSubpath(points, types, n, 5);
             return n;
           }));
}
void ReversePath(Picture& p) {
  Path path = Strokes();
  Directed(p.Panel("before"), path);
  path.Reverse();
  Directed(p.Panel("after"), path);
}
/// The pieces of a broken path, each moved aside a little so that one can tell them.
Path Apart(Path path) {
  const auto ranges = path.GetSubpathIndices();
  for (std::size_t k = 1; k < ranges.size(); ++k) {
    const double d = static_cast<double>(k) * 3 * kUnit;
    path.TranslatePoints(DVector{d, -d}, ranges[k].first, ranges[k].end - 1);
  }
  return path;
}
void BreakEnabled(Picture& p) {
  const Path path = Select(Bridge(), {1, 4});
  const Path after = Edited(
      path, 2, [](DPoint* points, NODETYPE* types, int n) { return CRV_BreakEnabled(points, types, n, 0); });
  p.Panel("before").Show(path).Panel("three pieces, drawn apart").Show(Apart(after));
}
void BreakAt(Picture& p) {
  const Path after = Edited(Ring(), 4, [](DPoint* points, NODETYPE* types, int n) {
    return CRV_BreakAtLocation(points, types, n, 4, 0.5);
  });
  Path end = after;
  end.AlignSingleNodeToPosition(end.GetPointCount() - 1,
                                end.GetPoint(end.GetPointCount() - 1) + DVector{-4000, 4000});
  p.Panel("before").Show(Ring()).Panel("open at t = 0.5, ends drawn apart").Show(end);
}
void JoinTwo(Picture& p) {
  p.BeforeAfter(Strokes(), Edited(Strokes(), 0, [](DPoint* points, NODETYPE* types, int n) {
                  return CRV_JoinTwoNodes(points, types, n, 3, 4);
                }));
}
void JoinBridge(Picture& p) {
  const Path path = Parse("M 10 10 L 15 55 M 85 55 L 90 10 M 22 62 C 35 75 65 75 78 62");
  p.BeforeAfter(path, Edited(path, 0, [](DPoint* points, NODETYPE* types, int n) {
                  return CRV_JoinTwoNodesWithOpenSubpath(points, types, n, 1, 2, 4, 7);
                }));
}
void JoinEnabled(Picture& p) {
  const Path path = Select(Strokes(), {3, 4});
  p.BeforeAfter(path, Edited(path, 0, [](DPoint* points, NODETYPE* types, int n) {
                  return CRV_JoinEnabled(points, types, n);
                }));
}
void JoinLines(Picture& p) {
  const Path path = Select(Strokes(), {3, 4});
  p.BeforeAfter(path, Edited(path, 1, [](DPoint* points, NODETYPE* types, int n) {
                  return CRV_JoinEnabledAddingLineSegments(points, types, n);
                }));
}
void DeleteEnabled(Picture& p) {
  const Path path =
      Select(Smooth(Parse("M 8 15 C 8 50 20 72 35 66 C 50 60 50 28 63 26 C 76 24 90 45 92 70"), {3, 6}), {3});
  const Path after = Edited(
      path, 0, [](DPoint* points, NODETYPE* types, int n) { return CRV_DeleteEnabled(points, types, n); });
  p.Panel("before").Show(path).Panel("one curve fitted to two").Line(path, kOld, 3).Show(after);
}
void ToCurve(Picture& p) {
  const Path path = Parse("M 10 15 L 40 65 L 90 25");
  p.BeforeAfter(path, Edited(path, 2, [](DPoint* points, NODETYPE* types, int n) {
                  return CRV_ToCurveNode(points, types, n, 2);
                }));
}
void ToLine(Picture& p) {
  p.BeforeAfter(Bridge(), Edited(Bridge(), 0, [](DPoint* points, NODETYPE* types, int n) {
                  return CRV_ToLineNode(points, types, n, 4);
                }));
}
Path Corner() { return Parse("M 8 20 C 15 55 25 70 45 60 C 55 30 75 20 92 55"); }
void SetCont(Picture& p) {
  const Path path = Select(Corner(), {3});
  p.Panel("cusp").Show(path);
  for (const auto continuity : {ContinuityType::smooth, ContinuityType::symmetric}) {
    p.Panel(continuity == ContinuityType::smooth ? "smooth" : "symmetric");
    p.Show(Edited(path, 0, [continuity](DPoint* points, NODETYPE* types, int n) {
      return CRV_SetContEnabled(points, types, n, continuity);
    }));
  }
}
void SmoothOne(Picture& p) {
  const Path path = Smooth(Corner(), {3});
  p.BeforeAfter(path, Edited(path, 0, [](DPoint* points, NODETYPE* types, int n) {
                  SmoothNode(points, types, n, 3);
                  return n;
                }));
}
void Transform(Picture& p) {
  Path path = Select(Smooth(Corner(), {3}), {3});
  path.EnableAllControls();
  const MATRIX up{1, 0, 0, 1, 5 * kUnit, -25 * kUnit};
  p.BeforeAfter(path, Edited(path, 0, [&up](DPoint* points, NODETYPE* types, int n) {
                  return CRV_TransformEnabled(points, types, n, &up, 1);
                }));
}
void EnabledBox(Picture& p) {
  const Path path = Select(Bridge(), {1, 4, 6});
  tagRECT box{};
  CRV_GetEnabledBoundingBox(path.GetPoints(), path.GetNodeTypes(), static_cast<int>(path.GetPointCount()),
                            &box);
  p.Panel("the box of the selected nodes").Show(path);
  p.Box({1.0 * box.left, 1.0 * box.bottom, 1.0 * box.right, 1.0 * box.top});
}
void Reduce(Picture& p) {
  Path path = Parse("M 8 40 C 30 90 50 90 50 40 C 50 -10 75 0 92 40");
  path.DivideEqually(12);
  path.EnableAllNodes();
  p.Panel("before")
      .Show(path)
      .Panel("within 1000 units")
      .Line(path, kOld, 3)
      .Show(Edited(path, 0, [](DPoint* points, NODETYPE* types, int n) {
        return CRV_ReduceEnabled(points, types, n, 1000);
      }));
}
void Thin(Picture& p) {
  const Path path = Parse("M 10 20 C 20 60 50 70 90 60 C 50 69 20 59 10 20 Z");
  p.BeforeAfter(path, Edited(path, 0, [](DPoint* points, NODETYPE* types, int n) {
                  return CRV_TransferAllThinSubpathsToRegular(points, types, n, 3000);
                }));
}
void Controls(Picture& p) {
  Path path = Select(Corner(), {3});
  path.EnableAllControls();
  p.Panel("enabled: red, also the handles").Show(path);
  for (std::size_t i = 0; i < path.GetPointCount(); ++i) {
    if (path.GetNodeType(i).IsControl() && path.GetNodeType(i).IsEnabled())
      p.Dot(path.GetPoint(i), kNew, 2.5);
  }
}
void SubpathSelection(Picture& p) {
  Path path = Strokes();
  p.Panel("before").Show(path);
  path.EnableSubpath(5, true);
  p.Panel("the subpath of node 5").Show(path);
}

constexpr Entry kEntries[] = {{"CRV_Add", Add},
                              {"CRV_AddEnabled", AddEnabled},
                              {"CRV_AppendLine", AppendLine},
                              {"CRV_AppendMove", AppendMove},
                              {"CRV_Append", Append},
                              {"CRV_Remove", Remove},
                              {"CRV_RemoveOpenSubpaths", RemoveOpen},
                              {"CRV_ReverseThisSubpath", ReverseSubpath},
                              {"Reverse", ReversePath},
                              {"CRV_BreakEnabled", BreakEnabled},
                              {"CRV_BreakAtLocation", BreakAt},
                              {"CRV_JoinTwoNodes", JoinTwo},
                              {"CRV_JoinTwoNodesWithOpenSubpath", JoinBridge},
                              {"CRV_JoinEnabled", JoinEnabled},
                              {"CRV_JoinEnabledAddingLineSegments", JoinLines},
                              {"CRV_DeleteEnabled", DeleteEnabled},
                              {"CRV_ToCurveNode", ToCurve},
                              {"CRV_ToLineNode", ToLine},
                              {"CRV_SetContEnabled", SetCont},
                              {"SmoothNode", SmoothOne},
                              {"CRV_TransformEnabled", Transform},
                              {"CRV_GetEnabledBoundingBox", EnabledBox},
                              {"CRV_ReduceEnabled", Reduce},
                              {"CRV_TransferAllThinSubpathsToRegular", Thin},
                              {"CRV_EnableAllControls", Controls},
                              {"CRV_EnableSubpath", SubpathSelection}};

}  // namespace

std::span<const Entry> EditPictures() { return kEntries; }

}  // namespace pictures
