#include <gtest/gtest.h>

#include <cmath>

#include "run.h"

namespace {

using test::Lumo;
using test::LumoJson;
using test::Svg;

const std::string kTwo = Svg("<path id='line' d='M0 0H100'/><circle id='ring' cx='50' cy='50' r='20'/>");

TEST(Closest, FindsTheNearestElementAndWhereOnIt) {
  const auto onLine = LumoJson("closest - 25 10 --json", kTwo).at("closest");
  EXPECT_EQ(onLine.at("id"), "line");
  EXPECT_EQ(onLine.at("point"), (nlohmann::json{25, 0}));
  EXPECT_EQ(onLine.at("distance"), 10);
  EXPECT_EQ(onLine.at("firstNode"), 0);
  EXPECT_EQ(onLine.at("lastNode"), 1);
  EXPECT_EQ(onLine.at("t"), 0.25);
  const auto onRing = LumoJson("closest - 50 60 --json", kTwo).at("closest");
  EXPECT_EQ(onRing.at("id"), "ring");
  EXPECT_NEAR(onRing.at("distance"), 10, 1e-4);
  EXPECT_EQ(Lumo("closest - 0 0 --json", Svg("")).exit, 1);
  EXPECT_EQ(Lumo("closest - -3 -4", kTwo).exit, 0);
}

TEST(Hit, PrefersTheUpperElementAndItsNodes) {
  const std::string overlap = Svg("<path id='below' d='M0 0H100'/><path id='above' d='M50 0V100'/>");
  const auto above = LumoJson("hit - 50 1 --radius 2 --json", overlap).at("hit");
  EXPECT_EQ(above.at("id"), "above");
  EXPECT_EQ(above.at("kind"), "node");
  EXPECT_EQ(above.at("node"), 0);
  EXPECT_EQ(above.at("distance"), 1);
  const auto segment = LumoJson("hit - 51 40 --radius 2 --json", overlap).at("hit");
  EXPECT_EQ(segment.at("kind"), "segment");
  EXPECT_EQ(segment.at("t"), 0.4);
  EXPECT_EQ(LumoJson("hit - 20 1 --radius 2 --json", overlap).at("hit").at("id"), "below");
  const auto miss = Lumo("hit - 20 30 --radius 2 --json", overlap);
  EXPECT_EQ(miss.exit, 1);
  EXPECT_TRUE(nlohmann::json::parse(miss.out).at("hit").is_null());
  EXPECT_EQ(Lumo("hit - 20 30 --radius -1", overlap).exit, 2);
}

TEST(Points, AreEvenlySpaced) {
  const std::string paths = Svg("<path id='l' d='M0 0H10'/><circle id='c' cx='50' cy='50' r='10'/>");
  const auto every = LumoJson("points - --every 2.5 --json", paths).at("paths");
  EXPECT_EQ(every[0].at("points"),
            (nlohmann::json{{0.0, 0.0}, {2.5, 0.0}, {5.0, 0.0}, {7.5, 0.0}, {10.0, 0.0}}));
  // 20 pi in steps of 2.5: each chord spans an angle of 0.25.
  const auto& ring = every[1].at("points");
  ASSERT_EQ(ring.size(), 26u);
  for (std::size_t k = 1; k < ring.size(); ++k) {
    const double chord = std::hypot(ring[k][0].get<double>() - ring[k - 1][0].get<double>(),
                                    ring[k][1].get<double>() - ring[k - 1][1].get<double>());
    EXPECT_NEAR(chord, 2 * 10 * std::sin(0.125), 1e-4);
  }
  const auto count = LumoJson("points - --count 3 --json", paths).at("paths");
  EXPECT_EQ(count[0].at("points"), (nlohmann::json{{0.0, 0.0}, {5.0, 0.0}, {10.0, 0.0}}));
  EXPECT_EQ(Lumo("points -", paths).exit, 2);
  EXPECT_EQ(Lumo("points - --every 1e-9", paths).exit, 2);
}

TEST(Flatten, LeavesLinesWithinTheTolerance) {
  const auto flat = Lumo("flatten - --tolerance 0.01 -o -", Svg("<circle cx='50' cy='50' r='10'/>"));
  const auto path = LumoJson("info - --json", flat.out).at("paths")[0];
  EXPECT_EQ(path.at("curves"), 0);
  EXPECT_NEAR(path.at("length"), 20 * 3.14159265, 0.1);
  EXPECT_EQ(path.at("closed"), 1);
}

TEST(Fit, MakesASmoothPathOfAStroke) {
  std::string points = "x,y\n";
  for (int k = 0; k <= 100; ++k) {
    points += std::to_string(k) + "," + std::to_string(20 * std::sin(k * 0.0628)) + "\n";
  }
  const auto fit = Lumo("fit - --tolerance 0.05 -o -", points);
  EXPECT_EQ(fit.exit, 0) << fit.error;
  const auto path = LumoJson("info - --json", fit.out).at("paths")[0];
  EXPECT_EQ(path.at("lines"), 0);
  EXPECT_LE(path.at("curves"), 8);
  for (int k = 0; k <= 100; k += 7) {
    const std::string place = std::to_string(k) + " " + std::to_string(20 * std::sin(k * 0.0628));
    EXPECT_LE(LumoJson("closest - --json " + place, fit.out).at("closest").at("distance"), 0.0501);
  }
  EXPECT_EQ(Lumo("fit - --tolerance 1 -o -", "1,2\n3,x\n").error,
            "lumo: standard input:2: character 3: expected a number, found 'x'\n");
  EXPECT_EQ(Lumo("fit - --tolerance 1 -o -", "").exit, 1);
}

TEST(Hierarchy, SortsOutlinesOfAllElementsIntoOneTree) {
  const std::string nest =
      Svg("<rect id='inner' x='40' y='40' width='20' height='20'/><path id='stroke' d='M1 1L2 2'/>"
          "<rect id='outer' x='10' y='10' width='80' height='80'/><rect id='apart' x='92' y='92' width='5' "
          "height='5'/>");
  const auto list = LumoJson("hierarchy - --json", nest).at("subpaths");
  ASSERT_EQ(list.size(), 4u);
  for (const auto& entry : list) {
    const bool inner = entry.at("id") == "inner";
    EXPECT_EQ(entry.at("depth"), inner ? 1 : 0);
    EXPECT_EQ(entry.at("closed"), entry.at("id") != "stroke");
    if (inner) {
      EXPECT_EQ(list[entry.at("parent").get<std::size_t>()].at("id"), "outer");
    }
    if (entry.at("id") == "outer") {
      EXPECT_EQ(entry.at("netArea"), -6400 - 400);
    }
  }
  const auto drawing = Lumo("hierarchy - -o -", nest);
  EXPECT_EQ(drawing.exit, 0);
  EXPECT_EQ(LumoJson("info - --json", drawing.out).at("paths").size(), 4u);
}

}  // namespace
