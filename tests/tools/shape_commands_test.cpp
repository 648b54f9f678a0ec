#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "run.h"

namespace {

using test::Lumo;
using test::LumoJson;
using test::Svg;
using testing::HasSubstr;

constexpr double kPi = std::numbers::pi;

/// The area that the drawing of a command fills: the sum over its elements, whose holes run the other way.
double AreaOf(const std::string& arguments, const std::string& input = {}) {
  const auto run = Lumo(arguments + " -o -", input);
  EXPECT_EQ(run.exit, 0) << arguments << "\n" << run.error;
  double sum = 0;
  const auto json = LumoJson("info - --json", run.out);
  for (const auto& path : json.at("paths")) sum += path.at("area").get<double>();
  return std::abs(sum);
}

const std::string kSquare = "<rect x='20' y='20' width='40' height='40'/>";

TEST(Offset, GrowsAndShrinksBySteiner) {
  const struct {
    const char* options;
    double area;
  } cases[] = {
      {"--distance 5", 1600 + 4 * 40 * 5 + kPi * 25},
      {"--distance 5 --join miter", 50 * 50},
      {"--distance 5 --join bevel", 1600 + 4 * 40 * 5 + 4 * 12.5},
      {"--distance -5", 30 * 30},
      {"--distance -5 --join miter", 30 * 30},
  };
  for (const auto& c : cases)
    EXPECT_NEAR(AreaOf("offset - " + std::string(c.options), Svg(kSquare)), c.area, 0.002 * c.area)
        << c.options;
  EXPECT_EQ(Lumo("offset - -o - --distance -21", Svg(kSquare)).exit, 1) << "nothing is left of it";
}

TEST(Offset, GivesFamiliesAndTheirFigures) {
  const std::string out = test::Scratch().Name("family.svg");
  const auto results =
      LumoJson("offset - --distance 2 --count 3 --json -o " + out, Svg(kSquare)).at("results");
  ASSERT_EQ(results.size(), 3u);
  for (std::size_t k = 0; k < 3; ++k) {
    const double d = 2.0 * static_cast<double>(k + 1);
    EXPECT_DOUBLE_EQ(results[k].at("distance"), d);
    EXPECT_NEAR(results[k].at("length"), 160 + 2 * kPi * d, 0.1);
  }
  EXPECT_EQ(LumoJson("info --json " + out).at("paths").size(), 3u);
}

// Travelling to the right on a screen whose y runs down, left is up.
TEST(Offset, NamesSidesAsTheyAreSeen) {
  const std::string line = Svg("<path d='M20 50H80'/>");
  const auto left = Lumo("offset - --distance 5 --side left --no-close -o -", line);
  const auto box = LumoJson("info - --json", left.out).at("paths")[0].at("bbox");
  EXPECT_NEAR(box[1], 45, 0.01);
  EXPECT_NEAR(box[3], 45, 0.01);
}

TEST(Outline, TurnsStrokesIntoShapes) {
  const std::string line =
      Svg("<path d='M20 50H80' stroke-width='10' stroke-linecap='butt' fill='none' stroke='red'/>");
  EXPECT_NEAR(AreaOf("outline -", line), 600, 1);
  EXPECT_NE(Lumo("outline - -o -", line).out.find("fill=\"red\""), std::string::npos);
  EXPECT_NEAR(AreaOf("outline - --width 4 --cap round", line), 240 + kPi * 4, 1);
  EXPECT_NEAR(AreaOf("outline - --width 4 --cap square", line), 240 + 16, 1);
  // A closed stroke is a ring.
  EXPECT_NEAR(AreaOf("outline - --width 2", Svg("<circle cx='50' cy='50' r='20'/>")),
              kPi * (21 * 21 - 19 * 19), 0.5);
}

TEST(Boolean, CombinesDrawingsAndElements) {
  const std::string a = test::Scratch().Write("a.svg", Svg(kSquare));
  const std::string b = test::Scratch().Write("b.svg", Svg("<rect x='40' y='40' width='40' height='40'/>"));
  const struct {
    const char* operation;
    double area;
  } cases[] = {{"union", 2800}, {"intersect", 400}, {"subtract", 1200}, {"xor", 2400}};
  for (const auto& c : cases)
    EXPECT_NEAR(AreaOf("boolean " + std::string(c.operation) + " " + a + " " + b), c.area, 1e-6)
        << c.operation;
  const std::string apart =
      test::Scratch().Write("apart.svg", Svg("<rect x='90' y='90' width='5' height='5'/>"));
  EXPECT_EQ(Lumo("boolean intersect " + a + " " + apart + " -o -").exit, 1);
  // Without a second drawing the elements are the operands.
  EXPECT_NEAR(AreaOf("boolean union -", Svg(kSquare + kSquare)), 1600, 1e-6);
  // A second drawing of another size is brought to the units of the first.
  const std::string large = test::Scratch().Write("large.svg",
                                                  "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9000 "
                                                  "9000'><rect x='40' width='9000' height='9000'/></svg>");
  EXPECT_NEAR(AreaOf("boolean subtract " + a + " " + large), 800, 1e-6);
}

TEST(Boolean, SimplifiesUnderTheFillRule) {
  const std::string bow = "<path d='M20 20H60V60H20ZM30 30H50V50H30Z' ";
  EXPECT_NEAR(AreaOf("boolean simplify -", Svg(bow + "fill-rule='evenodd'/>")), 1200, 1e-6);
  EXPECT_NEAR(AreaOf("boolean simplify -", Svg(bow + "/>")), 1600, 1e-6);
  EXPECT_NEAR(AreaOf("boolean simplify - --rule evenodd", Svg(bow + "/>")), 1200, 1e-6);
}

TEST(Intersect, ReportsEachMeetingOnce) {
  const std::string cross =
      Svg("<path id='a' d='M10 50H90'/><path id='b' d='M50 10V90'/><path id='c' d='M20 60L20 50'/>");
  const auto list = LumoJson("intersect - --json", cross).at("intersections");
  ASSERT_EQ(list.size(), 2u);
  const std::size_t crossing = list[0].at("kind") == "crossing" ? 0 : 1;
  EXPECT_EQ(list[crossing].at("kind"), "crossing");
  EXPECT_EQ(list[crossing].at("point"), (nlohmann::json{50, 50}));
  EXPECT_EQ(list[crossing].at("a").at("t"), 0.5);
  EXPECT_EQ(list[1 - crossing].at("kind"), "touch");
  const std::string knot = Svg("<path d='M10 50H90V10H50V90'/>");
  EXPECT_EQ(Lumo("intersect - --json", knot).exit, 1);
  EXPECT_EQ(LumoJson("intersect - --self --json", knot).at("intersections").size(), 1u);
  const std::string a = test::Scratch().Write("a.svg", cross);
  const std::string b = test::Scratch().Write("b.svg", Svg("<path id='d' d='M70 10V90'/>"));
  const auto between = LumoJson("intersect " + a + " " + b + " --json").at("intersections");
  ASSERT_EQ(between.size(), 1u);
  EXPECT_EQ(between[0].at("a").at("id"), "a");
  EXPECT_EQ(between[0].at("b").at("id"), "d");
}

TEST(Shape, DrawsWhatItSays) {
  const struct {
    const char* arguments;
    double area;
    int open;
  } cases[] = {
      {"circle 50 50 20", kPi * 400, 0},
      {"ellipse 50 50 40 20", kPi * 800, 0},
      {"arc 50 50 20 20 0 90", 0, 1},
      {"pie 50 50 20 20 0 90", kPi * 100, 0},
      {"rect 10 10 80 50", 4000, 0},
      {"rect 0 0 80 50 --radius 10 --corner chamfer", 3800, 0},
      {"rect 0 0 80 50 --radius 10 --corner scallop", 4000 - 100 * kPi, 0},
  };
  for (const auto& c : cases) {
    const std::string command = "shape " + std::string(c.arguments);
    EXPECT_NEAR(AreaOf(command), c.area, 0.001 * c.area) << c.arguments;
    EXPECT_EQ(LumoJson("info - --json", Lumo(command + " -o -").out).at("paths")[0].at("open"), c.open);
  }
  EXPECT_EQ(Lumo("shape circle 50 50 -1 -o -").exit, 2);
  EXPECT_EQ(Lumo("shape rect 0 0 5 5 --corner square -o -").exit, 2);
}

TEST(Repair, MendsDamagedElementsAndReportsThem) {
  const std::string out = test::Scratch().Name("mended.svg");
  const auto report =
      LumoJson("repair --json -o " + out + " " + LUMO_SAMPLES + "/damaged.svg").at("elements");
  ASSERT_EQ(report.size(), 6u);
  for (const auto& element : report) {
    EXPECT_EQ(element.at("validAfter"), true) << element;
    if (element.at("id") == "doubled") {
      EXPECT_LT(element.at("nodesAfter"), element.at("nodesBefore"));
    }
  }
  const std::string sound = Svg("<path id='a' d='M10 10L50 10L50 60Z'/>");
  EXPECT_EQ(LumoJson("repair - --json -o " + out, sound).at("elements")[0].at("changed"), false);
  EXPECT_NE(Lumo("repair - --report -o " + out, sound).out.find("changed"), std::string::npos);
}

TEST(Edit, AppliesOperationsInOrder) {
  const std::string drawing = Svg("<path id='a' d='M0 0H10V10'/><path id='b' d='M0 50C0 60 10 60 10 50'/>");
  const struct {
    const char* operations;
    const char* first;
    const char* second;
  } cases[] = {
      {"--op add:1@0.25", "M0 0L2.5 0L10 0L10 10", "M0 50C0 60 10 60 10 50"},
      {"--op add:1@0.25 --op delete:1", "M0 0L10 0L10 10", "M0 50C0 60 10 60 10 50"},
      {"--op reverse", "M10 10L10 0L0 0", "M0 50C0 60 10 60 10 50"},
      {"--op b/move:3,10,70", "M0 0L10 0L10 10", "M0 50C0 60 10 80 10 70"},
      {"--op break:1@1", "M0 0L10 0M10 0L10 10", "M0 50C0 60 10 60 10 50"},
      {"--op b/line:3 --op a/curve:1", "M0 0C3.33333333 0 6.66666667 0 10 0L10 10", "M0 50L10 50"},
  };
  for (const auto& c : cases) {
    const auto run = Lumo("edit - -o - " + std::string(c.operations), drawing);
    EXPECT_EQ(run.exit, 0) << run.error;
    EXPECT_THAT(run.out, HasSubstr("id=\"a\" d=\"" + std::string(c.first) + "\"")) << c.operations;
    EXPECT_THAT(run.out, HasSubstr("id=\"b\" d=\"" + std::string(c.second) + "\"")) << c.operations;
  }
}

TEST(Edit, WritesNothingWhenAnOperationFails) {
  const std::string drawing = Svg("<path id='a' d='M0 0H10V10'/>");
  const std::string out = test::Scratch().Name("none.svg");
  const struct {
    const char* operation;
    int exit;
    const char* message;
  } cases[] = {
      {"join:1,2", 1, "does not apply"},
      {"add:9", 2, "there is no such node; the path has nodes 0 to 2"},
      {"turn:1", 2, "no operation has this name"},
      {"x/reverse", 2, "no element has the id x"},
      {"add:one", 2, "expected a number"},
      {"join:1", 2, "wrong number of arguments"},
  };
  for (const auto& c : cases) {
    const auto run = Lumo("edit - --op reverse --op " + std::string(c.operation) + " -o " + out, drawing);
    EXPECT_EQ(run.exit, c.exit) << c.operation;
    EXPECT_THAT(run.error, HasSubstr(c.message));
    EXPECT_FALSE(std::filesystem::exists(out));
  }
}

}  // namespace
