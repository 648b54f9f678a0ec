// Text as paths: outlines from a font by FreeType, one subpath per contour, with the letter flag on the first
// subpath of every letter, then the whole word grown. Usage: text_outlines FONT [TEXT] writes SVG to standard
// output.

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <lumo/lumo.h>

#include <cstdio>

namespace {

using TavMath::DPoint;
using Path = Lumo::PolycurveT<DPoint>;

/// What FreeType's callbacks need: the path under construction and where on it the letter stands.
struct Pen {
  Path path;
  DPoint origin{0, 0};
  double scale = 1;  ///< document units to a font unit

  DPoint At(const FT_Vector* v) const {
    return {origin.x + scale * static_cast<double>(v->x), origin.y + scale * static_cast<double>(v->y)};
  }
  /// A contour is closed although fonts do not say so.
  void CloseContour() {
    if (!path.IsEmpty() && !path.IsLastSubpathClosed()) path.CloseLastSubpathWithOptionalLine();
  }
};

int Move(const FT_Vector* to, void* user) {
  Pen& pen = *static_cast<Pen*>(user);
  pen.CloseContour();
  return pen.path.MoveTo(pen.At(to)) ? 0 : 1;
}
int Line(const FT_Vector* to, void* user) {
  Pen& pen = *static_cast<Pen*>(user);
  return pen.path.LineTo(pen.At(to)) ? 0 : 1;
}
/// TrueType curves are parabolas: a cubic with its handles two thirds of the way to the control point is the
/// same curve.
int Conic(const FT_Vector* control, const FT_Vector* to, void* user) {
  Pen& pen = *static_cast<Pen*>(user);
  const DPoint a = pen.path.GetPoint(pen.path.GetPointCount() - 1), c = pen.At(control), b = pen.At(to);
  return pen.path.CubicTo(TavMath::Lerp(a, c, 2.0 / 3), TavMath::Lerp(b, c, 2.0 / 3), b) ? 0 : 1;
}
int Cubic(const FT_Vector* control1, const FT_Vector* control2, const FT_Vector* to, void* user) {
  Pen& pen = *static_cast<Pen*>(user);
  return pen.path.CubicTo(pen.At(control1), pen.At(control2), pen.At(to)) ? 0 : 1;
}

Path TextOutlines(FT_Face face, const char* text, double unitsPerEm) {
  Pen pen;
  pen.scale = unitsPerEm / face->units_per_EM;
  const FT_Outline_Funcs callbacks{Move, Line, Conic, Cubic, 0, 0};
  for (; *text != '\0'; ++text) {
    if (FT_Load_Char(face, static_cast<unsigned char>(*text), FT_LOAD_NO_SCALE) != 0) continue;
    const std::size_t first = pen.path.GetPointCount();
    FT_Outline_Decompose(&face->glyph->outline, &callbacks, &pen);
    pen.CloseContour();
    if (pen.path.GetPointCount() > first) pen.path.SetLetter(first, true);
    pen.origin.x += pen.scale * static_cast<double>(face->glyph->metrics.horiAdvance);
  }
  // Contours begin with a straight or curved node as the font has it; continuity is read off the handles.
  pen.path.RepairContinuity(Lumo::CurveRepairSettings());
  return pen.path;
}

std::size_t Letters(const Path& path) {
  std::size_t letters = 0;
  for (std::size_t i = 0; i < path.GetPointCount(); ++i)
    letters += path.GetNodeType(i).IsMove() && path.IsLetter(i);
  return letters;
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
                path.GetPoint(i).x, -path.GetPoint(i).y);
  }
  std::printf("'/>\n");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return std::fputs("usage: text_outlines FONT [TEXT]\n", stderr), 2;
  FT_Library library = nullptr;
  FT_Face face = nullptr;
  if (FT_Init_FreeType(&library) != 0 || FT_New_Face(library, argv[1], 0, &face) != 0) {
    return std::fprintf(stderr, "%s: not a font that can be read\n", argv[1]), 2;
  }
  const char* const text = argc > 2 ? argv[2] : "Bagpipe";
  const Path outlines = TextOutlines(face, text, 1000000);
  // Offsets are taken of outer outlines, or of the holes directly inside them; counters shrink as letters
  // grow.
  Path grown = outlines, counters = outlines;
  grown.OffsetCurve({new Lumo::Round, nullptr, 20000, false});
  counters.OffsetCurve({new Lumo::Round, nullptr, -20000, true});
  grown = grown.Subtract(counters);
  const auto box = grown.GetTightBBox();
  std::printf("<svg xmlns='http://www.w3.org/2000/svg' viewBox='%.0f %.0f %.0f %.0f'>\n", box.minx, -box.maxy,
              box.Width(), box.Height());
  Print(grown, "fill='#dbe7ee'");
  Print(outlines, "fill='#1b3a4b'");
  std::printf("</svg>\n");
  const std::size_t letters = Letters(outlines);
  std::fprintf(stderr, "%zu letters, %zu outlines, %zu nodes\n", letters, outlines.GetSubpathCount(),
               outlines.GetPointCount());
  FT_Done_Face(face);
  FT_Done_FreeType(library);
  return outlines.IsValidCurve() && letters > 0 && grown.GetTightBBox().Contains(outlines.GetTightBBox()) ? 0
                                                                                                          : 1;
}
