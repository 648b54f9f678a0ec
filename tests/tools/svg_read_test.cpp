#include "svg_read.h"

#include <gtest/gtest.h>

#include <string>

#include "input_error.h"
#include "svg_write.h"

namespace {

using tool::Document;

/// The drawn elements of a drawing with a viewBox of 100 by 100, one per line: id, then path data in user
/// units.
std::string Drawn(const std::string& content, const std::string& attributes = "viewBox=\"0 0 100 100\"") {
  const Document document = tool::ReadSvgText(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" " + attributes +
          ">" + content + "</svg>",
      "test");
  std::string text;
  for (const auto& element : document.elements) {
    text += element.id + " " + tool::PathData(element.path, document.unitsPerUser, 4) + "\n";
  }
  return text;
}

std::string Message(const std::string& svg) {
  try {
    tool::ReadSvgText(svg, "a.svg");
  } catch (const tool::InputError& error) {
    return error.what();
  }
  return "(read)";
}

TEST(SvgRead, DrawsEveryShape) {
  EXPECT_EQ(Drawn("<path id='p' d='M1 2L3 4'/>"), "p M1 2L3 4\n");
  EXPECT_EQ(Drawn("<rect x='1' y='2' width='3' height='4'/>"), "rect1 M1 2L4 2L4 6L1 6Z\n");
  EXPECT_EQ(Drawn("<line x1='1' y1='2' x2='3' y2='4'/>"), "line1 M1 2L3 4\n");
  EXPECT_EQ(Drawn("<polyline points='1,2 3,4 5,6'/>"), "polyline1 M1 2L3 4L5 6\n");
  EXPECT_EQ(Drawn("<polygon points='1 2 3 4,5 6'/>"), "polygon1 M1 2L3 4L5 6Z\n");
  const Document round = tool::ReadSvgText(
      "<svg viewBox='0 0 100 100'><circle cx='50' cy='40' r='30'/><ellipse cx='50' cy='40' rx='30' ry='10'/>"
      "<rect width='60' height='40' rx='50' ry='5'/></svg>",
      "test");
  ASSERT_EQ(round.elements.size(), 3u);
  const auto box = [&](int k) {
    const auto b = round.elements[static_cast<std::size_t>(k)].path.GetTightBBox();
    return std::vector<double>{round.ToUser(b.minx), round.ToUser(b.miny), round.ToUser(b.maxx),
                               round.ToUser(b.maxy)};
  };
  EXPECT_EQ(box(0), (std::vector<double>{20, 10, 80, 70}));
  EXPECT_EQ(box(1), (std::vector<double>{20, 30, 80, 50}));
  EXPECT_EQ(box(2), (std::vector<double>{0, 0, 60, 40}));
}

TEST(SvgRead, ShapesWithoutExtentDrawNothing) {
  EXPECT_EQ(
      Drawn(
          "<rect width='0' height='4'/><circle r='0'/><circle/><ellipse rx='3' ry='0'/><polygon points=' '/>"
          "<path d=''/><path/><path d='M3 3'/>"),
      "");
}

TEST(SvgRead, AppliesNestedTransformsFromTheInsideOut) {
  const struct {
    const char* outer;
    const char* inner;
    const char* drawn;
  } cases[] = {
      {"translate(10 20)", "scale(2)", "M12 24L16 28\n"},
      {"scale(2)", "translate(10,20)", "M22 44L26 48\n"},
      {"rotate(90)", "", "M-2 1L-4 3\n"},
      {"rotate(180 10 10)", "", "M19 18L17 16\n"},
      {"matrix(0 1 -1 0 5 6)", "translate(1)", "M3 8L1 10\n"},
      {"skewX(45)", "", "M3 2L7 4\n"},
      {"skewY(45)", "", "M1 3L3 7\n"},
      {"translate(1 1) translate(2 2) scale(2, 3)", "", "M5 9L9 15\n"},
      {" ", "none", "M1 2L3 4\n"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Drawn("<g transform='" + std::string(c.outer) + "'><path id='p' transform='" + c.inner +
                    "' d='M1 2L3 4'/></g>"),
              "p " + std::string(c.drawn))
        << c.outer << " " << c.inner;
  }
}

TEST(SvgRead, ConvertsUnits) {
  const struct {
    const char* length;
    double units;
  } cases[] = {{"48", 48},    {"48px", 48},  {"36pt", 48}, {"3pc", 48},     {"12.7mm", 48}, {"1.27cm", 48},
               {"0.5in", 48}, {"50.8Q", 48}, {"3em", 48},  {"6ex", 48},     {"3rem", 48},   {"24%", 48},
               {"24vw", 48},  {"4.8e1", 48}, {" 48 ", 48}, {"4.8e1px", 48}, {"48PX", 48}};
  for (const auto& c : cases) {
    const Document document = tool::ReadSvgText(
        "<svg viewBox='0 0 200 100'><line x2='" + std::string(c.length) + "'/></svg>", "test");
    EXPECT_NEAR(document.ToUser(document.elements.at(0).path.GetPoint(1).x), c.units, 1e-9) << c.length;
  }
  // Percent of a height, and of the diagonal.
  EXPECT_EQ(Drawn("<line y2='50%'/>", "viewBox='0 0 200 100'"), "line1 M0 0L0 50\n");
  const Document circle = tool::ReadSvgText("<svg viewBox='0 0 100 100'><circle r='10%'/></svg>", "test");
  EXPECT_NEAR(circle.ToUser(circle.elements.at(0).path.GetPoint(0).x), 10, 1e-9);
}

TEST(SvgRead, DrawsWhatIsDefinedOnlyWhereItIsUsed) {
  EXPECT_EQ(Drawn("<defs><path id='p' d='M1 2L3 4'/></defs><clipPath><rect width='5' height='5'/></clipPath>"
                  "<symbol id='s'><path d='M0 0L1 1'/></symbol><mask><circle r='4'/></mask>"),
            "");
  const std::string defs = "<defs><g id='g'><path id='p' d='M1 2L3 4'/></g></defs>";
  EXPECT_EQ(Drawn(defs + "<use href='#g'/>"), "p M1 2L3 4\n");
  EXPECT_EQ(Drawn(defs + "<use xlink:href='#p' x='10' y='20' transform='scale(2)'/>"), "p M22 44L26 48\n");
  EXPECT_EQ(Drawn(defs + "<use href='#p' transform='translate(1)'/><use href='#g'/>"),
            "p M2 2L4 4\np M1 2L3 4\n");
  EXPECT_EQ(Drawn("<defs><path class='x' d='M0 0L1 1' /></defs><use href='#none'/><use href='other.svg#p'/>"),
            "");
  // A use of a use, and a symbol shown at another size.
  EXPECT_EQ(Drawn(defs + "<g><use id='u' href='#p' x='1'/></g><use href='#u' y='1'/>"),
            "u M2 2L4 4\nu M2 3L4 5\n");
  EXPECT_EQ(Drawn("<symbol id='s' viewBox='0 0 10 10'><path id='q' d='M0 0L10 10'/></symbol>"
                  "<use href='#s' x='5' y='5' width='40' height='20'/>"),
            "q M15 5L35 25\n");
}

TEST(SvgRead, ShowsNestedDrawingsThroughTheirViewBox) {
  const std::string line = "<path id='p' d='M0 0L10 10'/></svg>";
  EXPECT_EQ(Drawn("<svg x='10' y='10' width='40' height='40' viewBox='0 0 10 10'>" + line),
            "p M10 10L50 50\n");
  EXPECT_EQ(Drawn("<svg x='10' y='10'>" + line), "p M10 10L20 20\n");
  EXPECT_EQ(Drawn("<svg width='40' height='20' viewBox='0 0 10 10' preserveAspectRatio='none'>" + line),
            "p M0 0L40 20\n");
  EXPECT_EQ(Drawn("<svg width='40' height='20' viewBox='0 0 10 10' preserveAspectRatio='xMaxYMin'>" + line),
            "p M20 0L40 20\n");
  EXPECT_EQ(
      Drawn("<svg width='40' height='20' viewBox='0 0 10 10' preserveAspectRatio='xMidYMid slice'>" + line),
      "p M0 -10L40 30\n");
}

TEST(SvgRead, LeavesOutWhatIsNotAnOutline) {
  EXPECT_EQ(
      Drawn("<text>M0 0</text><image width='5' height='5'/><foreignObject><svg><path d='M0 0L1 1'/></svg>"
            "</foreignObject><x:path xmlns:x='urn:other' d='M0 0L1 1'/><metadata><path d='M0 0L1 "
            "1'/></metadata>"
            "<g display='none'><path d='M0 0L1 1'/></g><unknown><path d='M0 0L1 1'/></unknown>"),
      "");
  EXPECT_EQ(Drawn("<s:g xmlns:s='http://www.w3.org/2000/svg'><s:path id='p' d='M0 0L1 1'/></s:g>"),
            "p M0 0L1 1\n");
  EXPECT_EQ(Drawn("<a><switch><path id='p' style='display:none' class='c' d='M0 0L1 1'/></switch></a>"),
            "p M0 0L1 1\n");
}

TEST(SvgRead, ScalesByAPowerOfTwoSoThatNothingIsLost) {
  for (const char* box : {"0 0 24 24", "0 0 1 1", "0 0 1e-5 2e-5", "0 0 1e6 3"}) {
    const Document document = tool::ReadSvgText(
        "<svg viewBox='" + std::string(box) + "'><path d='M0.1 0.2L0.30000000000000004 1e-7'/></svg>",
        "test");
    const double side = std::max(document.viewBox[2], document.viewBox[3]) * document.unitsPerUser;
    EXPECT_GE(side, 1 << 20);
    EXPECT_LT(side, 1 << 21);
    EXPECT_EQ(document.ToUser(document.elements[0].path.GetPoint(1)),
              (tool::DPoint{0.30000000000000004, 1e-7}));
  }
  // Without a viewBox the size counts, without a size what is drawn.
  EXPECT_EQ(tool::ReadSvgText("<svg width='1in'/>", "test").unitsPerUser, 16384);
  EXPECT_EQ(tool::ReadSvgText("<svg><path d='M5 5L105 5'/></svg>", "test").unitsPerUser, 16384);
  EXPECT_EQ(tool::ReadSvgText("<svg/>", "test").unitsPerUser, 1);
}

TEST(SvgRead, NamesFilePlaceAndCause) {
  const struct {
    const char *svg, *message;
  } cases[] = {
      {"", ": the file is empty"},
      {"<svg>\n<path d='M0 0'>\n</svg>", ":3: not well-formed XML (Start-end tags mismatch)"},
      {"<html/>", ":1: there is no svg element"},
      {"<svg>\n\n<path d='M0 0 L1'/></svg>", ":3: <path>: d, character 8: expected a number, found the end"},
      {"<svg><g transform='rotate(a)'/></svg>",
       ":1: <g>: transform, character 8: expected a number, found 'a'"},
      {"<svg><g transform='turn(1)'/></svg>",
       ":1: <g>: transform, character 1: no transform is called turn and has 1 numbers"},
      {"<svg><circle r='-1'/></svg>", ":1: <circle>: r is negative"},
      {"<svg><circle r='1furlong'/></svg>", ":1: <circle>: r, character 2: not a unit: furlong"},
      {"<svg><polygon points='1 2 3'/></svg>",
       ":1: <polygon>: points, character 6: expected a number, found the end"},
      {"<svg><path d='M0 0L1e300 1' transform='scale(1e300)'/></svg>",
       ":1: <path>: a coordinate is beyond the range of doubles"},
  };
  for (const auto& c : cases) EXPECT_EQ(Message(c.svg), "a.svg" + std::string(c.message));
  EXPECT_THROW(tool::ReadSvg("no/such/file.svg"), tool::InputError);
  EXPECT_THROW(tool::ReadSvg("."), tool::InputError);
}

// A few lines can ask for an endless or an enormous drawing.
TEST(SvgRead, RefusesCirclesAndBombs) {
  EXPECT_EQ(Message("<svg><g id='a'><use href='#a'/></g></svg>"), "a.svg:1: <use>: draws itself");
  EXPECT_NE(
      Message("<svg><g id='a'><use href='#b'/></g><g id='b'><use href='#a'/></g></svg>").find("in a circle"),
      std::string::npos);
  std::string bomb = "<svg><path id='a0' d='M0 0L1 1'/>";
  for (int k = 1; k < 40; ++k) {
    const std::string below = "<use href='#a" + std::to_string(k - 1) + "'/>";
    bomb += "<g id='a" + std::to_string(k) + "'>" + below + below + below + "</g>";
  }
  EXPECT_NE(Message(bomb + "</svg>").find("250000 copies"), std::string::npos);
  std::string deep = "<svg>";
  for (int k = 0; k < 100000; ++k) deep += "<g>";
  EXPECT_NE(Message(deep + "<path d='M0 0L1 1'/>").find("a.svg"), std::string::npos);
}

}  // namespace
