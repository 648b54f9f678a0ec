// One cubic: tav/math/cubic_bezier.h.

#include <cmath>
#include <string>

#include "picture.h"
#include "tav/math/cubic_bezier.h"

namespace pictures {

namespace {

namespace CubicBezier = TavMath::CubicBezier;
using TavMath::Cubic;

Path PathOf(const Cubic& c) {
  Path path;
  path.MoveTo(c[0]);
  path.CubicTo(c[1], c[2], c[3]);
  return path;
}
Path PathOf(const DPoint* points, int lines) {
  Path path;
  path.MoveTo(points[0]);
  for (int i = 1; i <= lines; ++i) path.LineTo(points[i]);
  return path;
}
Path Segment(const DPoint& a, const DPoint& b) { return Path::CreateLine(a, b); }

const Cubic kArch{At(12, 15), At(10, 80), At(75, 85), At(88, 20)};
const Cubic kS{At(10, 20), At(45, 100), At(45, -30), At(90, 60)};
const Cubic kLoop{At(20, 10), At(120, 75), At(-20, 75), At(80, 10)};
const DPoint kQuery = At(60, 25);

void Split(Picture& p) {
  DPoint left[4], right[4];
  CubicBezier::Split(0.4, kArch.data(), left, right);
  p.Panel("cubic").Show(PathOf(kArch)).Panel("left and right of t = 0.4");
  p.Line(PathOf({left[0], left[1], left[2], left[3]}), kNew)
      .Nodes(PathOf({left[0], left[1], left[2], left[3]}));
  p.Line(PathOf({right[0], right[1], right[2], right[3]}), kThird);
  p.Nodes(PathOf({right[0], right[1], right[2], right[3]}));
}

void Subsection(Picture& p) {
  Cubic part;
  CubicBezier::Subsection(0.25, 0.8, kArch.data(), part.data());
  p.Panel("from t = 0.25 to 0.8").Line(PathOf(kArch), kOld).Line(PathOf(part), kNew, 2).Nodes(PathOf(part));
}

void Evaluate(Picture& p) {
  p.Panel("t = 0, 0.1, 0.2 ... 1").Line(PathOf(kArch)).Nodes(PathOf(kArch));
  for (int i = 0; i <= 10; ++i) p.Dot(CubicBezier::Evaluate(kArch.data(), i / 10.0), kNew, 2.5);
}

void RelativeLength(Picture& p) {
  p.Panel("equal steps of t").Line(PathOf(kS));
  for (int i = 0; i <= 8; ++i) p.Dot(CubicBezier::Evaluate(kS.data(), i / 8.0));
  p.Panel("equal fractions of the length").Line(PathOf(kS));
  for (int i = 0; i <= 8; ++i) {
    p.Dot(CubicBezier::Evaluate(kS.data(), CubicBezier::GetCurveRelativeLengthParameter(kS.data(), i / 8.0)));
  }
}

void Closest(Picture& p) {
  double t = 0, distanceSqrd = 0;
  DPoint nearest;
  CubicBezier::FindClosestPointOnBezier(kArch.data(), kQuery, t, nearest, distanceSqrd);
  p.Panel("the nearest point").Line(PathOf(kArch)).Line(Segment(kQuery, nearest), kNew, 1, true);
  p.Dot(kQuery, kThird).Dot(nearest);
}

void AllClosest(Picture& p) {
  const Cubic arch{At(10, 15), At(30, 75), At(70, 75), At(90, 15)};
  const auto found = CubicBezier::FindClosestPointsOnBezier(arch.data(), At(50, 2));
  p.Panel("all nearest points").Line(PathOf(arch)).Dot(At(50, 2), kThird);
  for (int i = 0; i < found.count; ++i) {
    p.Line(Segment(At(50, 2), found.point[i]), kNew, 1, true).Dot(found.point[i]);
  }
}

void Intersect(Picture& p) {
  const auto found = CubicBezier::IntersectBeziers(kArch.data(), kS.data());
  p.Panel("crossings of two cubics").Line(PathOf(kArch)).Line(PathOf(kS), kThird);
  for (int i = 0; i < found.count; ++i) p.Dot(found.at[static_cast<std::size_t>(i)].point);
}

void IntersectLine(Picture& p) {
  const DPoint a = At(5, 30), b = At(40, 38);
  for (const bool infinite : {false, true}) {
    p.Panel(infinite ? "an infinite line" : "a segment").Line(PathOf(kS));
    if (infinite) p.Line(Segment(At(5, 30), At(95, 30 + 8 / 35.0 * 90)), kThird, 1, true);
    p.Line(Segment(a, b), kThird);
    const auto found = CubicBezier::IntersectBezierLine(kS.data(), a, b, infinite);
    for (int i = 0; i < found.count; ++i) p.Dot(found.at[static_cast<std::size_t>(i)].point);
  }
}

void SelfIntersection(Picture& p) {
  double t0 = 0, t1 = 0;
  DPoint point;
  p.Panel("the double point of a loop").Line(PathOf(kLoop)).Nodes(PathOf(kLoop));
  if (CubicBezier::FindBezierSelfIntersection(kLoop.data(), t0, t1, point)) p.Dot(point);
}

void Tangent(Picture& p) {
  p.Panel("tangents").Line(PathOf(kArch));
  for (int i = 0; i <= 4; ++i) {
    const double t = i / 4.0;
    const DVector d = TavMath::Normalized(CubicBezier::SafeBezierTangent(t, kArch.data()));
    p.Arrow(CubicBezier::Evaluate(kArch.data(), t), 14 * kUnit * d);
  }
}

void Curvature(Picture& p) {
  p.Panel("circle of curvature at t = 0.3").Line(PathOf(kArch));
  const double radius = CubicBezier::GetCurvatureRadiusAt(0.3, kArch.data());
  const DPoint at = CubicBezier::Evaluate(kArch.data(), 0.3);
  const DVector normal = TavMath::LeftNormal(TavMath::Normalized(CubicBezier::Derivative(kArch.data(), 0.3)));
  p.Line(Path::CreateCircle(at + radius * normal, std::fabs(radius)), kThird, 1, true).Dot(at);
}

void CurvatureMinMax(Picture& p) {
  double t[6];
  const int n = CubicBezier::FindCurvatureMinMax(kS.data(), t);
  p.Panel("extrema of the curvature").Line(PathOf(kS));
  for (int i = 0; i < n; ++i) p.Dot(CubicBezier::Evaluate(kS.data(), t[i]));
}

void Side(Picture& p) {
  p.Panel("left green, right red").Line(PathOf(kS));
  for (int x = 10; x < 95; x += 10) {
    for (int y = 8; y < 78; y += 10) {
      const auto side = CubicBezier::GetSide(kS.data(), At(x, y));
      p.Dot(At(x, y), side == TavMath::Side::left ? kThird : kNew, 2);
    }
  }
}

void HorizontalTangents(Picture& p) {
  double t[2];
  p.Panel("horizontal tangents").Line(PathOf(kS));
  for (int i = 0, n = CubicBezier::GetHorizontalTangents(kS.data(), t); i < n; ++i) {
    const DPoint at = CubicBezier::Evaluate(kS.data(), t[i]);
    p.Line(Segment(at - DVector{9 * kUnit, 0}, at + DVector{9 * kUnit, 0}), kThird).Dot(at);
  }
}

void VerticalTangents(Picture& p) {
  double t[2];
  p.Panel("vertical tangents").Line(PathOf(kLoop));
  for (int i = 0, n = CubicBezier::GetVerticalTangents(kLoop.data(), t); i < n; ++i) {
    const DPoint at = CubicBezier::Evaluate(kLoop.data(), t[i]);
    p.Line(Segment(at - DVector{0, 9 * kUnit}, at + DVector{0, 9 * kUnit}), kThird).Dot(at);
  }
}

void TightBox(Picture& p) {
  p.Panel("the box of the curve").Line(PathOf(kArch)).Nodes(PathOf(kArch));
  p.Box(CubicBezier::GetTightBox(kArch.data()));
}

void AreaUnder(Picture& p) {
  Path ground = PathOf(kArch);
  ground.LineTo(At(88, 0));
  ground.LineTo(At(12, 0));
  ground.CloseLastSubpathWithOptionalLine();
  p.Panel("the area under a cubic").Fill(ground).Line(PathOf(kArch), kNew);
}

void OffsetCurve(Picture& p) {
  const Cubic bend{At(10, 15), At(15, 55), At(40, 70), At(80, 65)};
  Cubic offset;
  double split = 0;
  p.Panel("one cubic beside another").Line(PathOf(bend)).Nodes(PathOf(bend));
  if (TavMath::FindBezierOffsetCurve(bend.data(), offset.data(), -12 * kUnit, 500, split)) {
    p.Line(PathOf(offset), kNew).Nodes(PathOf(offset));
  }
}

void SegmentsToOffset(Picture& p) {
  std::vector<Cubic> pieces;
  const Cubic bend{At(20, 10), At(10, 105), At(85, 105), At(80, 10)};
  TavMath::GetSegmentsToOffset(bend.data(), pieces, -30 * kUnit);
  p.Panel("pieces for an offset to the right").Line(PathOf(bend));
  for (const Cubic& piece : pieces) p.Dot(piece[0]).Dot(piece[3]);
}

void UniformLines(Picture& p) {
  DPoint points[9];
  const int n = TavMath::BezierToLines(kS.data(), points, 8);
  p.Panel("8 lines").Line(PathOf(kS), kOld, 3).Line(PathOf(points, n), kNew, 1);
  for (int i = 0; i <= n; ++i) p.Dot(points[i], kNew, 2);
}

void AdaptiveLines(Picture& p) {
  for (const double tolerance : {2.0, 0.5}) {
    DPoint points[64];
    const double limit = tolerance * kUnit;
    const int n = TavMath::AdaptiveBezierToLines(kS.data(), points, limit * limit, 64);
    p.Panel("tolerance " + std::to_string(static_cast<int>(limit)) + " units: " + std::to_string(n) +
            " lines");
    p.Line(PathOf(kS), kOld, 3).Line(PathOf(points, n), kNew, 1);
    for (int i = 0; i <= n; ++i) p.Dot(points[i], kNew, 2);
  }
}

constexpr Entry kEntries[] = {{"Evaluate", Evaluate},
                              {"Split", Split},
                              {"Subsection", Subsection},
                              {"GetCurveRelativeLengthParameter", RelativeLength},
                              {"FindClosestPointOnBezier", Closest},
                              {"FindClosestPointsOnBezier", AllClosest},
                              {"IntersectBeziers", Intersect},
                              {"IntersectBezierLine", IntersectLine},
                              {"FindBezierSelfIntersection", SelfIntersection},
                              {"SafeBezierTangent", Tangent},
                              {"GetCurvatureRadiusAt", Curvature},
                              {"FindCurvatureMinMax", CurvatureMinMax},
                              {"GetSide", Side},
                              {"GetHorizontalTangents", HorizontalTangents},
                              {"GetVerticalTangents", VerticalTangents},
                              {"GetTightBox", TightBox},
                              {"GetAreaUnderBezier", AreaUnder},
                              {"FindBezierOffsetCurve", OffsetCurve},
                              {"GetSegmentsToOffset", SegmentsToOffset},
                              {"BezierToLines", UniformLines},
                              {"AdaptiveBezierToLines", AdaptiveLines}};

}  // namespace

std::span<const Entry> CubicPictures() { return kEntries; }

}  // namespace pictures
