#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "run.h"

namespace {

using test::Lumo;
using test::LumoJson;
using test::Svg;

constexpr double kPi = std::numbers::pi;

// Lengths and areas by the formulas of plane geometry.
TEST(Info, MeasuresInUserUnits) {
  const auto json = LumoJson("info - --json", Svg("<rect id='r' x='10' y='20' width='30' height='40'/>"
                                                  "<circle id='c' cx='50' cy='50' r='10'/>"
                                                  "<path id='open' d='M0 0L3 4M10 10h5'/>"
                                                  "<path id='q' d='M0 0Q2 4 4 0Z'/>"
                                                  "<g transform='scale(2)'><circle id='big' r='5'/></g>"));
  const auto& paths = json.at("paths");
  ASSERT_EQ(paths.size(), 5u);
  const struct {
    const char* id;
    int open, closed, lines, curves;
    double length, area;
  } expected[] = {
      {"r", 0, 1, 4, 0, 140, -1200},
      {"c", 0, 1, 0, 8, 20 * kPi, -100 * kPi},
      {"open", 2, 0, 2, 0, 10, 0},
      // A parabola of chord 4 and height 2: the arc length in closed form, plus the chord.
      {"q", 0, 1, 1, 1, 2 * std::sqrt(5.0) + std::asinh(2.0) + 4, 2.0 / 3 * 4 * 2},
      {"big", 0, 1, 0, 8, 20 * kPi, -100 * kPi},
  };
  for (std::size_t k = 0; k < paths.size(); ++k) {
    const auto& p = paths[k];
    SCOPED_TRACE(expected[k].id);
    EXPECT_EQ(p.at("id"), expected[k].id);
    EXPECT_EQ(p.at("subpaths"), expected[k].open + expected[k].closed);
    EXPECT_EQ(p.at("open"), expected[k].open);
    EXPECT_EQ(p.at("closed"), expected[k].closed);
    EXPECT_EQ(p.at("lines"), expected[k].lines);
    EXPECT_EQ(p.at("curves"), expected[k].curves);
    EXPECT_NEAR(p.at("length"), expected[k].length, 1e-7 * expected[k].length);
    EXPECT_NEAR(p.at("area"), expected[k].area, 1e-9 * std::abs(expected[k].area));
    EXPECT_EQ(p.at("valid"), true);
  }
  EXPECT_EQ(paths[0].at("bbox"), (nlohmann::json{10, 20, 40, 60}));
  EXPECT_EQ(paths[1].at("bbox"), (nlohmann::json{40, 40, 60, 60}));
}

TEST(Info, PrintsATableForPeople) {
  const auto run = Lumo("info -", Svg("<path id='p' d='M0 0L3 4'/>"));
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.error, "");
  EXPECT_EQ(
      run.out,
      "id  subpaths  open  closed  nodes  lines  curves  length  area  left  top  right  bottom  valid\n"
      "p          1     1       0      2      1       0       5     0     0    0      3       4    yes\n");
}

TEST(Info, ReadsEverySample) {
  int samples = 0;
  for (const auto& entry : std::filesystem::directory_iterator(LUMO_SAMPLES)) {
    const auto json = LumoJson("info --json " + entry.path().string());
    ASSERT_TRUE(json.is_object()) << entry.path();
    EXPECT_FALSE(json.at("paths").empty()) << entry.path();
    ++samples;
  }
  EXPECT_GE(samples, 5);
}

}  // namespace
