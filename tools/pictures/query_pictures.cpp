// Questions: crv_hit.h, crv_connect.h, crv_freehand.h, measure.h, intersections.h, subpath_hierarchy.h.

#include <cmath>
#include <string>

#include "lumo/crv_connect.h"
#include "lumo/crv_freehand.h"
#include "lumo/crv_hit.h"
#include "lumo/curve_segment.h"
#include "lumo/intersections.h"
#include "lumo/measure.h"
#include "lumo/subpath_hierarchy.h"
#include "picture.h"

namespace pictures {

namespace {

/// A path in the integer arrays that the pointer questions take.
struct Arrays {
  explicit Arrays(const Path& source) : path(source) {}
  IntPath path;
  const tagPOINT* Points() const { return path.GetPoints(); }
  const NODETYPE* Types() const { return path.GetNodeTypes(); }
  int Count() const { return static_cast<int>(path.GetPointCount()); }
};
tagPOINT Int(const DPoint& p) { return {static_cast<int>(p.x), static_cast<int>(p.y)}; }
DPoint Double(const tagPOINT& p) { return {1.0 * p.x, 1.0 * p.y}; }
tagRECT Square(tagPOINT at, int half) { return {at.x - half, at.y + half, at.x + half, at.y - half}; }
TavMath::BoundsT<double> Bounds(const tagRECT& r) {
  return {1.0 * r.left, 1.0 * r.bottom, 1.0 * r.right, 1.0 * r.top};
}

Path Leaf() { return Parse("M 10 40 C 20 75 60 80 90 40 C 60 0 20 5 10 40 Z"); }
Path Wave() { return Smooth(Parse("M 8 20 C 20 80 35 80 45 40 C 55 0 75 0 92 60"), {3}); }
Path Nested() {
  return Parse(
      "M 10 5 L 90 5 L 90 75 L 10 75 Z M 20 15 L 20 65 L 80 65 L 80 15 Z M 32 25 L 68 25 L 68 55 L 32 55 Z");
}

void PathHit(Picture& p) {
  const Arrays wave(Wave());
  const tagPOINT cursor{52000, 21000};
  const tagRECT rect = Square(cursor, 3000);
  double t = 0;
  const int node = CRV_PathHit(&rect, &cursor, &t, wave.Points(), wave.Types(), wave.Count(), 0);
  p.Panel("segment of node " + std::to_string(node) + ", t = " + std::to_string(t).substr(0, 4));
  p.Show(Wave()).Box(Bounds(rect)).Dot(Double(cursor), kNew, 2);
}
void RectOnPath(Picture& p) {
  const Arrays wave(Wave());
  p.Panel("on the path: red").Line(Wave());
  for (const tagPOINT at :
       {tagPOINT{20000, 60000}, {60000, 60000}, {70000, 17000}, {85000, 20000}, {30000, 25000}}) {
    const tagRECT rect = Square(at, 6000);
    p.Box(Bounds(rect), UTLIsRectOnPath(wave.Points(), wave.Types(), wave.Count(), &rect) ? kNew : "#888");
  }
}
void BezierInRect(Picture& p) {
  const tagPOINT bezier[4] = {{8000, 20000}, {20000, 95000}, {80000, 95000}, {92000, 20000}};
  p.Panel("touched by the cubic: red").Line(Parse("M 8 20 C 20 95 80 95 92 20"));
  for (const tagPOINT at : {tagPOINT{20000, 60000}, {50000, 40000}, {80000, 65000}, {50000, 75000}}) {
    const tagRECT rect = Square(at, 7000);
    p.Box(Bounds(rect), CRV_BezierIntersectsRect(bezier, &rect, 100) ? kNew : "#888");
  }
}
void NodeHits(Picture& p, bool all) {
  Path path = Select(Wave(), {3});
  path.EnableAllControls();
  path.SetUserNode(2, true);
  path.SetUserNode(4, true);
  const Arrays wave(path);
  const tagRECT rect{25000, 75000, 60000, 5000};
  p.Show(path).Box(Bounds(rect));
  if (all) {
    for (const int i : CRV_NodeHitAll(&rect, wave.Points(), wave.Types(), wave.Count())) {
      p.Dot(path.GetPoint(static_cast<std::size_t>(i)));
    }
  } else {
    const int i = CRV_NodeHit(&rect, wave.Points(), wave.Types(), wave.Count());
    if (i >= 0) p.Dot(path.GetPoint(static_cast<std::size_t>(i)));
  }
}
void NodeHit(Picture& p) { NodeHits(p.Panel("the node in the rectangle"), false); }
void NodeHitAll(Picture& p) { NodeHits(p.Panel("nodes and shown handles"), true); }

/// A grid of points, coloured by an answer.
template <class Inside>
void Grid(Picture& p, const Inside& inside) {
  for (int x = 4; x < 98; x += 6) {
    for (int y = 3; y < 79; y += 6)
      p.Dot(At(x, y), inside(At(x, y)) ? kNew : "#888", inside(At(x, y)) ? 2 : 1);
  }
}
void InFill(Picture& p) {
  const Arrays nested(Nested());
  Grid(p.Panel("inside by the even-odd rule").Fill(Nested()).Line(Nested()), [&nested](const DPoint& at) {
    int inside = 0;
    return UTLIsPointInFill(nested.Points(), nested.Types(), nested.Count(), Int(at), &inside) != 0 &&
           inside != 0;
  });
}
void InShape(Picture& p) {
  const Path path = Parse("M 10 20 C 40 95 60 95 90 20 L 10 60 L 90 60 Z");
  Grid(p.Panel("inside by the even-odd rule").Fill(path).Line(path),
       [&path](const DPoint& at) { return path.IsPointInShape(at); });
}
void InPolygon(Picture& p) {
  const Path star = Parse("M 20 5 L 50 78 L 80 5 L 5 52 L 95 52 Z");
  Grid(p.Panel("inside a polygon").Fill(star).Line(star), [&star](const DPoint& at) {
    return Lumo::IsPointInPolygon(star.GetPoints(), static_cast<int>(star.GetPointCount()), at, false, false,
                                  nullptr);
  });
}
void Hole(Picture& p) {
  const Arrays nested(Nested());
  p.Panel("holes: red").Fill(Nested());
  for (const auto& range : Nested().GetSubpathIndices()) {
    const int first = static_cast<int>(range.first);
    const bool hole = UTLIsSubpathHole(nested.Points(), nested.Types(), nested.Count(), first) != 0;
    const auto refs = Nested();
    Path one(refs.GetPoints() + range.first, refs.GetNodeTypes() + range.first, range.end - range.first);
    p.Line(one, hole ? kNew : kInk, 2);
  }
}
void FacePoint(Picture& p) {
  const Arrays nested(Nested());
  tagPOINT inside{};
  p.Panel("a point inside").Fill(Nested()).Line(Nested());
  if (UTLGetFacePoint(nested.Points(), nested.Types(), nested.Count(), &inside)) p.Dot(Double(inside));
}
void PathLength(Picture& p) {
  const Arrays wave(Wave());
  std::vector<double> lengths(static_cast<std::size_t>(wave.Count()));
  UTLGenerateNodeLengthArray(wave.Points(), wave.Types(), wave.Count(), lengths.data());
  p.Panel("every 15,000 units along the path").Line(Wave());
  for (double length = 0; length <= lengths.back(); length += 15000) {
    tagPOINT at{};
    UTLFastGotoPathLength(wave.Points(), wave.Types(), wave.Count(), lengths.data(), length, &at, nullptr,
                          nullptr);
    p.Dot(Double(at));
  }
}
void Closest(Picture& p, bool members) {
  p.Line(Wave());
  for (const DPoint& query : {At(60, 60), At(20, 20), At(88, 8)}) {
    DPoint nearest{};
    if (members) {
      Path::Closest result;
      if (Wave().FindClosestPoint(query, result)) nearest = result.point;
    } else {
      const Arrays wave(Wave());
      tagPOINT out{};
      if (UTLGetClosestPointOnPath(wave.Points(), wave.Types(), wave.Count(), Int(query), &out, nullptr,
                                   nullptr)) {
        nearest = Double(out);
      }
    }
    p.Line(Path::CreateLine(query, nearest), kThird, 1, true).Dot(query, kThird).Dot(nearest);
  }
}
void ClosestOnPath(Picture& p) { Closest(p.Panel("nearest points"), false); }
void FindClosest(Picture& p) { Closest(p.Panel("nearest points"), true); }
void AllClosest(Picture& p) {
  const Path box = Parse("M 20 10 L 80 10 L 80 70 L 20 70 Z");
  p.Panel("all equally near points").Line(box).Dot(At(50, 40), kThird);
  for (const auto& found : box.FindClosestPoints(At(50, 40))) {
    p.Line(Path::CreateLine(At(50, 40), found.point), kThird, 1, true).Dot(found.point);
  }
}
void Farthest(Picture& p) {
  Path::Closest result;
  p.Panel("the farthest point").Line(Leaf()).Dot(At(25, 30), kThird);
  if (Leaf().FindFarthestPoint(At(25, 30), result)) {
    p.Line(Path::CreateLine(At(25, 30), result.point), kThird, 1, true).Dot(result.point);
  }
}
void ConnectInfo(Picture& p) {
  const Path strokes = Parse("M 8 20 C 8 50 20 65 40 60 M 60 55 L 92 55 L 80 15");
  const Arrays arrays(strokes);
  CRV_CONNECTINFO* info = CRV_ConnectInfoConstruct(arrays.Points(), arrays.Types(), arrays.Count());
  p.Panel("open ends").Line(strokes);
  for (int i = 0; info != nullptr && i < info->candidateCount; ++i) p.Dot(Double(info->points[i]));
  CRV_ConnectInfoDestruct(info);
}
void Freehand(Picture& p) {
  CRV_FREEHANDINFO* stroke = CRV_FreehandInfoConstruct(64, 64);
  const int spacing = 5000;
  for (const tagPOINT at :
       {tagPOINT{8000, 15000}, {30000, 65000}, {50000, 68000}, {72000, 20000}, {92000, 60000}}) {
    CRV_FreehandInfoAppendPointExt(stroke, at, &spacing);
  }
  p.Panel("gaps filled; corners red");
  for (int i = 0; stroke != nullptr && i < stroke->count; ++i) {
    const bool corner = stroke->corners[i] > 0;
    p.Dot(Double(stroke->points[i]), corner ? kNew : kInk, corner ? 3 : 2);
  }
  CRV_FreehandInfoDestruct(stroke);
}
void LooseBox(Picture& p) {
  p.Panel("box of all points").Line(Wave()).Nodes(Wave()).Box(Wave().GetLooseBBox());
}
void TightBox(Picture& p) {
  p.Panel("box of the path").Line(Wave()).Nodes(Wave()).Box(Wave().GetTightBBox());
}
void TransformedBox(Picture& p) {
  const double c = std::cos(0.6), s = std::sin(0.6);
  const MATRIX turn{0.7 * c, 0.7 * s, -0.7 * s, 0.7 * c, 35 * kUnit, -12 * kUnit};
  Path turned = Wave();
  turned.TransformPoints(turn);
  p.Panel("box of the turned path").Line(Wave(), kOld).Line(turned).Box(Wave().GetTightTransformedBBox(turn));
}
void EnabledBox(Picture& p) {
  const Path path = Select(Wave(), {0, 3});
  p.Panel("box of the selected part").Show(path).Box(path.GetTightEnabledBBox());
}
void Area(Picture& p) {
  Path shape = Leaf();
  const auto text = [](const Path& path) {
    return std::to_string(std::llround(path.GetArea() / 1e6)) + " million";
  };
  p.Panel("clockwise: " + text(shape)).Fill(shape).Line(shape).Arrow(At(45, 71), DVector{12 * kUnit, 0});
  shape.Reverse();
  p.Panel("counter-clockwise: " + text(shape))
      .Fill(shape)
      .Line(shape)
      .Arrow(At(57, 71), DVector{-12 * kUnit, 0});
}
void PositionAtLength(Picture& p) {
  p.Panel("half-way along the path").Line(Wave());
  DPoint at{};
  const auto position = Wave().GetPositionAtRelativeLength(0.5);
  if (position && Wave().GetPointAt(*position, at)) p.Dot(at);
}
void Tangent(Picture& p) {
  p.Panel("tangents at equal lengths").Line(Wave());
  for (int i = 0; i <= 5; ++i) {
    DPoint at{};
    const auto position = Wave().GetPositionAtRelativeLength(i / 5.0);
    if (position && Wave().GetPointAt(*position, at))
      p.Arrow(at, 12 * kUnit * Wave().GetTangentAt(*position));
  }
}
void Spaced(Picture& p) {
  p.Panel("12 points at equal distances").Line(Wave());
  for (const DPoint& at : Wave().GetEvenlySpacedPoints(12)) p.Dot(at);
}
void Intersections(Picture& p) {
  const Path a = Parse("M 5 20 L 60 20 C 80 20 95 35 95 50 C 95 80 40 80 40 50 L 40 5");
  const Path b = Parse("M 20 20 L 50 20 L 90 70 M 70 5 L 70 22");
  Lumo::SegmentIntersectionTable table;
  table.AddCurve(a.GetPoints(), a.GetNodeTypes(), static_cast<int>(a.GetPointCount()));
  table.AddCurve(b.GetPoints(), b.GetNodeTypes(), static_cast<int>(b.GetPointCount()));
  Lumo::FindAllIntersections(table, Lumo::SegmentIntersectionSettings());
  p.Panel("crossings red, touches green,")
      .Text(At(2, 2), "shared stretches violet")
      .Line(a)
      .Line(b, "#7a7a00");
  for (const Lumo::SegmentIntersections& segment : table.Segments()) {
    for (const Lumo::Intersection* record : segment.Intersections()) {
      const char* colour = record->GetOverlapPartner() != nullptr ? "#8e44ad"
                           : record->IsTouch()                    ? kThird
                                                                  : kNew;
      p.Dot(record->GetIntersection(), colour, record->GetOverlapPartner() != nullptr ? 5 : 3);
    }
  }
}
void ShowTree(Picture& p, const Lumo::SubpathTreeNode& node, int depth) {
  for (std::size_t i = 0; i < node.GetNumberOfChildren(); ++i) {
    const Lumo::SubpathTreeNode& child = node.GetChild(i);
    const char* colours[] = {kGround, "#f5d5d0", "#cfe8cf", "#ffe9b0"};
    if (child.GetPoints() == nullptr) continue;
    const Path path(child.GetPoints(), child.GetNodes(), static_cast<std::size_t>(child.GetNumberOfPoints()));
    p.Fill(path, colours[depth % 4]).Line(path).Dot(child.GetSamplePoint(), kInk, 2);
    ShowTree(p, child, depth + 1);
  }
}
void Hierarchy(Picture& p) {
  const Path path = Parse(
      "M 5 5 L 60 5 L 60 75 L 5 75 Z M 12 12 L 12 68 L 53 68 L 53 12 Z M 20 20 L 45 20 L 45 40 L 20 40 Z "
      "M 20 46 L 45 46 L 45 62 L 20 62 Z M 68 20 L 95 20 L 95 60 L 68 60 Z M 75 28 L 75 52 L 88 52 L 88 28 "
      "Z");
  const Lumo::SubpathHierarchy tree(path.GetPoints(), path.GetNodeTypes(),
                                    static_cast<int>(path.GetPointCount()), false);
  ShowTree(p.Panel("depth by colour, sample points"), tree, 0);
}
void Segments(Picture& p) {
  const Path path = Parse("M 10 10 L 10 40 C 10 75 60 75 60 40 L 90 40 M 70 15 L 90 15");
  p.Panel("segment numbers").Show(path);
  for (const auto& segment : Lumo::details::GetCurveSegments_Base(path)) {
    if (segment)
      p.Text(segment->points()[segment->points().size() / 2] + DVector{2 * kUnit, 3 * kUnit},
             std::to_string(segment->number()), kNew);
  }
}

constexpr Entry kEntries[] = {{"CRV_PathHit", PathHit},
                              {"UTLIsRectOnPath", RectOnPath},
                              {"CRV_BezierIntersectsRect", BezierInRect},
                              {"CRV_NodeHit", NodeHit},
                              {"CRV_NodeHitAll", NodeHitAll},
                              {"UTLIsPointInFill", InFill},
                              {"IsPointInShape", InShape},
                              {"IsPointInPolygon", InPolygon},
                              {"UTLIsSubpathHole", Hole},
                              {"UTLGetFacePoint", FacePoint},
                              {"UTLFastGotoPathLength", PathLength},
                              {"UTLGetClosestPointOnPath", ClosestOnPath},
                              {"FindClosestPoint", FindClosest},
                              {"FindClosestPoints", AllClosest},
                              {"FindFarthestPoint", Farthest},
                              {"CRV_ConnectInfoConstruct", ConnectInfo},
                              {"CRV_FreehandInfoAppendPointExt", Freehand},
                              {"GetLooseBBox", LooseBox},
                              {"GetTightBBox", TightBox},
                              {"GetTightTransformedBBox", TransformedBox},
                              {"GetTightEnabledBBox", EnabledBox},
                              {"GetArea", Area},
                              {"GetPositionAtRelativeLength", PositionAtLength},
                              {"GetTangentAt", Tangent},
                              {"GetEvenlySpacedPoints", Spaced},
                              {"FindAllIntersections", Intersections},
                              {"SubpathHierarchy", Hierarchy},
                              {"CurveSegmentT", Segments}};

}  // namespace

std::span<const Entry> QueryPictures() { return kEntries; }

}  // namespace pictures
