// Contours: a family of parallel outlines around a shape and inside of it, as SVG on standard output. The
// insets go on until nothing is left, which is how deep the shape is.

#include <lumo/lumo.h>

#include <cstdio>

namespace {

using TavMath::DPoint;
using Path = Lumo::PolycurveT<DPoint>;

/// A leaf with a hole; 10,000 units are a millimetre.
Path Shape() {
  Path path;
  path.MoveTo({0, 200000});
  path.CubicTo({50000, 420000}, {350000, 420000}, {500000, 200000});
  path.CubicTo({350000, -20000}, {50000, -20000}, {0, 200000});
  path.CloseLastSubpath(0, false);
  Path hole = Path::CreateCircle({200000, 200000}, 60000);
  hole.Reverse();
  path.PushBack(hole);
  return path;
}

/// The outline at a signed distance: of the outer outline and, the other way, of the hole.
Path Contour(const Path& shape, double distance) {
  Path outer = shape;
  // The settings own the join. Corners get arcs, so that every point lies at the distance.
  outer.OffsetCurve({new Lumo::Round, nullptr, distance, false});
  Path holes = shape;
  holes.OffsetCurve({new Lumo::Round, nullptr, -distance, true});
  return outer.Subtract(holes);
}

void Print(const Path& path, const char* paint) {
  std::printf("<path %s d='", paint);
  for (std::size_t i = 0; i < path.GetPointCount(); ++i) {
    const NODETYPE type = path.GetNodeType(i);
    const bool starts = type.IsControl() && !path.GetNodeType(i - 1).IsControl();
    std::printf("%s%.0f %.0f",
                type.IsMove()   ? "M"
                : type.IsLine() ? "L"
                : starts        ? "C"
                                : " ",
                path.GetPoint(i).x, path.GetPoint(i).y);
  }
  std::printf("'/>\n");
}

}  // namespace

int main() {
  const Path shape = Shape();
  constexpr double kStep = 15000;
  std::printf("<svg xmlns='http://www.w3.org/2000/svg' viewBox='-60000 -30000 620000 460000'>\n");
  Print(shape, "fill='#dbe7ee' fill-rule='evenodd'");
  double area = shape.GetArea();
  bool nested = true;
  for (int k = 1; k <= 3; ++k) {
    const Path contour = Contour(shape, k * kStep);
    Print(contour, "fill='none' stroke='#c0392b' stroke-width='1500'");
    nested = nested && contour.GetArea() > area;
    area = contour.GetArea();
  }
  int insets = 0;
  area = shape.GetArea();
  for (; insets < 100; ++insets) {
    const Path contour = Contour(shape, -(insets + 1) * kStep);
    if (contour.IsEmpty()) break;
    Print(contour, "fill='none' stroke='#1b6a8b' stroke-width='1500'");
    nested = nested && contour.GetArea() < area;
    area = contour.GetArea();
  }
  std::printf("</svg>\n");
  std::fprintf(stderr, "%d insets before nothing is left\n", insets);
  // Every contour encloses more than the one inside of it.
  return nested && insets > 2 && insets < 100 ? 0 : 1;
}
