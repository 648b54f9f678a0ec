// Shapes, Boolean operations and offsets: shapes.h, boolean.h, offset.h, offset_corners.h.

#include <numbers>
#include <vector>

#include "lumo/boolean.h"
#include "lumo/offset.h"
#include "lumo/offset_corners.h"
#include "lumo/shapes.h"
#include "picture.h"

namespace pictures {

namespace {

using Lumo::RectangleCorner;
using Lumo::Offset::OffsetSettings;

constexpr double kDegree = std::numbers::pi / 180;

void Line(Picture& p) { p.Panel("a line").Show(Path::CreateLine(At(15, 15), At(85, 65))); }
void Ellipse(Picture& p) {
  p.Panel("a full ellipse").Show(Path::CreateEllipse(At(50, 40), 40000, 28000));
  p.Panel("an arc, 30 to 250 degrees")
      .Show(Path::CreateEllipse(At(50, 40), 40000, 28000, 30 * kDegree, 250 * kDegree));
  p.Panel("a pie wedge")
      .Show(Path::CreateEllipse(At(50, 40), 40000, 28000, 30 * kDegree, 250 * kDegree, true));
}
void Circle(Picture& p) { p.Panel("a circle").Show(Path::CreateCircle(At(50, 40), 33000)); }
void Rectangle(Picture& p) {
  const auto corner = [](RectangleCorner kind) {
    Path path = Path::CreateRectangle(70000, 50000, 15000, kind, false);
    path.TranslatePoints(DVector{15000, 15000});
    return path;
  };
  p.Panel("plain").Show(Path::CreateRectangle({15000, 15000, 85000, 65000}));
  p.Panel("round").Show(corner(RectangleCorner::round));
  p.Panel("scallop").Show(corner(RectangleCorner::scallop));
  p.Panel("chamfer").Show(corner(RectangleCorner::chamfer));
}
Path Arc(std::size_t count, const DPoint* points, const NODETYPE* types) {
  return Path(points, types, count);
}
void CircularArc(Picture& p) {
  DPoint points[Lumo::kMaxArcNodes];
  NODETYPE types[Lumo::kMaxArcNodes];
  p.Panel("about a centre").Dot(At(50, 35));
  p.Show(Arc(Lumo::BuildCircularArc(points, types, At(50, 35), 32000, 0, 200 * kDegree), points, types));
  p.Panel("from a tangent").Arrow(At(15, 20), DVector{0, 25000});
  p.Show(Arc(Lumo::BuildCircularArc(points, types, At(15, 20), At(85, 50), DVector{0, 1}), points, types));
}
void ThreePointArc(Picture& p) {
  DPoint points[Lumo::kMaxArcNodes];
  NODETYPE types[Lumo::kMaxArcNodes];
  p.Panel("through three points");
  p.Show(Arc(Lumo::Build3PointCircularArc(points, types, At(15, 20), At(40, 65), At(85, 30)), points, types));
  p.Dot(At(15, 20)).Dot(At(40, 65)).Dot(At(85, 30));
}

Path Leaf() { return Parse("M 10 40 C 15 75 60 85 70 45 C 60 5 15 5 10 40 Z"); }
Path Block() { return Parse("M 40 20 L 92 20 L 92 70 C 70 60 60 60 40 70 Z"); }
void Boolean(Picture& p, const Path& result) {
  p.Panel("operands").Fill(Leaf()).Fill(Block(), "#e8b4ae").Line(Leaf()).Line(Block(), kNew);
  p.Panel("result").Show(result);
}
void Union(Picture& p) { Boolean(p, Lumo::Union(Leaf(), Block())); }
void Intersect(Picture& p) { Boolean(p, Lumo::Intersect(Leaf(), Block())); }
void Subtract(Picture& p) { Boolean(p, Lumo::Subtract(Leaf(), Block())); }
void Xor(Picture& p) { Boolean(p, Lumo::Xor(Leaf(), Block())); }
void Clip(Picture& p) {
  Path hatch;
  for (int i = 0; i <= 100; i += 8) hatch.CreateLineSubpath(At(i, 5), At(i - 10, 78));
  p.Panel("open lines and a shape").Line(hatch, kOld).Line(Leaf());
  p.Panel("inside").Line(Leaf(), kOld).Line(Lumo::ClipToShape(hatch, Leaf()), kNew);
  p.Panel("outside").Line(Leaf(), kOld).Line(Lumo::ClipToShape(hatch, Leaf(), false), kNew);
}
void Simplify(Picture& p) {
  const Path star = Parse("M 20 5 L 50 78 L 80 5 L 5 52 L 95 52 Z");
  p.Panel("before").Fill(star).Line(star).Nodes(star);
  p.Panel("non-zero").Show(Lumo::Simplify(star));
  p.Panel("even-odd").Show(Lumo::Simplify(star, Lumo::FillRule::evenOdd));
}

/// The settings own the joins they are given.
Path Offset(Path path, Lumo::OffsetCorner* join, Lumo::OffsetCorner* cap, double distance,
            bool inwards = false) {
  path.OffsetCurve(OffsetSettings(join, cap, distance, inwards));
  return path;
}
Path Glyph() { return Parse("M 25 20 L 75 20 L 75 35 C 75 65 50 65 50 45 L 25 60 Z"); }
void OffsetCurve(Picture& p) {
  p.Panel("outwards, round joins").Fill(Glyph()).Line(Glyph());
  for (int k = 1; k <= 3; ++k) p.Line(Offset(Glyph(), new Lumo::Round, nullptr, k * 5000), kNew, 1);
  p.Panel("inwards").Fill(Glyph()).Line(Glyph());
  for (int k = 1; k <= 4; ++k) p.Line(Offset(Glyph(), new Lumo::Round, nullptr, k * -3000), kNew, 1);
  const Path stroke = Parse("M 15 20 C 20 80 50 80 55 45 L 85 60");
  p.Panel("an open path").Line(Offset(stroke, new Lumo::Round, new Lumo::Round, 8000), kNew, 1).Line(stroke);
}
void CreateOffset(Picture& p) {
  std::vector<DPoint> points;
  std::vector<NODETYPE> types;
  const Path frame = Parse("M 15 12 L 85 12 L 85 68 L 15 68 Z M 30 25 L 30 55 L 70 55 L 70 25 Z");
  for (const bool inwards : {false, true}) {
    points.clear();
    types.clear();
    Lumo::CreateOffsetCurve(frame.GetPoints(), frame.GetNodeTypes(), static_cast<int>(frame.GetPointCount()),
                            points, types, OffsetSettings(new Lumo::Round, nullptr, 6000, inwards));
    p.Panel(inwards ? "only what lies directly inside" : "outer outlines").Fill(frame).Line(frame);
    p.Line(Path(points.data(), types.data(), points.size()), kNew);
  }
}
void ParallelCurve(Picture& p) {
  const Path stroke = Parse("M 12 30 C 20 85 45 85 50 45 C 55 20 75 20 88 45");
  p.Panel("to the left").Line(stroke).Line(stroke.CreateParallelCurve(8000), kNew);
  p.Panel("to the right").Line(stroke).Line(stroke.CreateParallelCurve(-8000), kNew);
}
void ParallelCurves(Picture& p) {
  const Path stroke = Parse("M 12 20 C 20 70 45 70 50 35 C 55 10 75 10 88 35");
  p.Panel("a family of six").Line(stroke).Line(stroke.CreateParallelCurves(5000, 6), kNew, 1);
}
void CloseOffset(Picture& p) {
  using Side = Lumo::Offset::EOpenCurveOffsetSide;
  const Path stroke = Parse("M 12 30 C 20 85 45 85 50 45 C 55 20 75 20 88 45");
  const OffsetSettings settings(new Lumo::Round, new Lumo::Round, 8000, false);
  for (const Side side : {Side::left, Side::right, Side::both}) {
    std::vector<DPoint> points;
    std::vector<NODETYPE> types;
    Lumo::CloseOffsetCurves(stroke.GetPoints(), stroke.GetNodeTypes(),
                            static_cast<int>(stroke.GetPointCount()), points, types, side, settings);
    const Path outline(points.data(), types.data(), points.size());
    p.Panel(side == Side::left    ? "left"
            : side == Side::right ? "right"
                                  : "both")
        .Fill(outline)
        .Line(outline, kNew)
        .Line(stroke);
  }
}
void Combine(Picture& p) {
  Path both = Leaf();
  const int split = static_cast<int>(both.GetPointCount());
  both.PushBack(Block());
  std::vector<DPoint> points;
  std::vector<NODETYPE> types;
  Lumo::CombineClosedOffsetCurves(both.GetPoints(), both.GetNodeTypes(),
                                  static_cast<int>(both.GetPointCount()), points, types, 0, split);
  p.Panel("two groups")
      .Line(Leaf())
      .Line(Block(), kNew)
      .Panel("united")
      .Show(Path(points.data(), types.data(), points.size()));
}

/// A join at the corners of a closed shape, and the same object as a cap.
void Join(Picture& p, Lumo::OffsetCorner* join, Lumo::OffsetCorner* cap) {
  const Path shape = Parse("M 15 15 L 35 55 L 80 50 L 65 15 Z");
  p.Panel("as a join").Fill(shape).Line(shape).Line(Offset(shape, join, nullptr, 10000), kNew);
  if (cap == nullptr) return;
  const Path stroke = Parse("M 25 25 C 40 60 60 60 75 50");
  p.Panel("as a cap").Line(Offset(stroke, new Lumo::Round, cap, 10000), kNew).Line(stroke);
}
void Round(Picture& p) { Join(p, new Lumo::Round, new Lumo::Round); }
void Bevel(Picture& p) { Join(p, new Lumo::Bevel, new Lumo::Bevel); }
void Square(Picture& p) { Join(p, new Lumo::OffsetBevel, new Lumo::OffsetBevel); }
void Ray(Picture& p) { Join(p, new Lumo::Ray, nullptr); }
void Mitered(Picture& p) {
  const Path zigzag = Parse("M 8 15 L 30 55 L 50 28 L 60 65 L 70 28 L 92 28 L 92 15 Z");
  p.Panel("miters down to 40 degrees").Fill(zigzag).Line(zigzag);
  p.Line(Offset(zigzag, new Lumo::MiteredCorner(40, new Lumo::Bevel), nullptr, 5000), kNew);
}

constexpr Entry kEntries[] = {{"BuildLine", Line},
                              {"BuildEllipse", Ellipse},
                              {"BuildCircle", Circle},
                              {"BuildRectangle", Rectangle},
                              {"BuildCircularArc", CircularArc},
                              {"Build3PointCircularArc", ThreePointArc},
                              {"Union", Union},
                              {"Intersect", Intersect},
                              {"Subtract", Subtract},
                              {"Xor", Xor},
                              {"ClipToShape", Clip},
                              {"Simplify", Simplify},
                              {"OffsetCurve", OffsetCurve},
                              {"CreateOffsetCurve", CreateOffset},
                              {"CreateParallelCurve", ParallelCurve},
                              {"CreateParallelCurves", ParallelCurves},
                              {"CloseOffsetCurves", CloseOffset},
                              {"CombineClosedOffsetCurves", Combine},
                              {"Round", Round},
                              {"Bevel", Bevel},
                              {"OffsetBevel", Square},
                              {"Ray", Ray},
                              {"MiteredCorner", Mitered}};

}  // namespace

std::span<const Entry> ShapePictures() { return kEntries; }

}  // namespace pictures
