#include "reduction.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "run.h"
#include "svg_read.h"

namespace {

using test::Lumo;
using test::LumoJson;
using test::Svg;
using testing::HasSubstr;

/// Sixty elements of waves; in the middle of them a path that has what the tests look for.
std::string Haystack(const std::string& needle) {
  std::string content;
  for (int k = 0; k < 60; ++k) {
    content += "<path fill='#123456' stroke-width='2' d='M" + std::to_string(k) +
               ".125 3.375c1 2 3 4 5 6l7 8l9 1zM1 1l2.75 2l3 3'/>";
    if (k == 30) content += needle;
  }
  return Svg(content);
}

TEST(Reduction, LeavesOnlyWhatTheFailureNeeds) {
  const tool::Document document = tool::ReadSvgText(
      Haystack("<path id='x' d='M3.123 4.456L5 6L99.987 8.111C1 2 3 4 5 60.4321Z'/>"), "test");
  // A node to the right of 90: one segment that reaches there, without handles, in round numbers.
  tool::Reduction reduction;
  reduction.holds = [](const std::string& svg) {
    for (const tool::Element& element : tool::ReadSvgText(svg, "test").elements) {
      for (std::size_t i = 0; i < element.path.GetPointCount(); ++i) {
        if (element.path.GetPoint(i).x > 90 * tool::UnitsPerUser(100)) return true;
      }
    }
    return false;
  };
  const tool::Document small = reduction.Run(document);
  ASSERT_EQ(small.elements.size(), 1u);
  EXPECT_EQ(tool::SvgText(small),
            "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 100 100\">\n"
            "<path id=\"x\" d=\"M0 0L100 0\"/>\n</svg>\n");
  EXPECT_LT(reduction.tries, 200u);
}

TEST(Reduction, EndsAtItsBoundWithWhatItHas) {
  const tool::Document document = tool::ReadSvgText(Haystack(""), "test");
  std::size_t asked = 0;
  tool::Reduction reduction;
  reduction.holds = [&](const std::string& svg) {
    ++asked;
    return svg.find("M30.125 3.375") != std::string::npos;
  };
  reduction.goOn = [&] { return asked < 10; };
  const tool::Document small = reduction.Run(document);
  EXPECT_EQ(asked, 10u);
  EXPECT_EQ(reduction.tries, 10u);
  EXPECT_LT(tool::SvgText(small).size(), tool::SvgText(document).size());
}

TEST(Reduce, ShrinksWhileTheCommandFailsInTheSameWay) {
  const std::string file =
      test::Scratch().Write("hay.svg", Haystack("<circle id='needle' cx='9' cy='9' r='5'/>"));
  // Fails with 3 on the needle and with 4 on drawings without any path: the second is another failure.
  const std::string checker = test::Scratch().Write(
      "check.sh", "grep -q needle \"$1\" && exit 3\ngrep -q '<path' \"$1\" || exit 4\nexit 0\n");
  const std::string command = " --command 'sh " + checker + " {}'";
  const auto small = Lumo("reduce " + file + command);
  EXPECT_EQ(small.exit, 0) << small.error;
  EXPECT_THAT(small.out, HasSubstr("id=\"needle\""));
  EXPECT_LT(small.out.size(), 160u) << small.out;
  const auto figures = LumoJson("reduce " + file + command + " --json");
  EXPECT_EQ(figures.at("ending"), "exit code 3");
  EXPECT_EQ(figures.at("before").at("elements"), 61);
  EXPECT_EQ(figures.at("after").at("elements"), 1);
  EXPECT_EQ(figures.at("paths")[0].at("id"), "needle");
  // On standard input too, and any failure: nothing is left then.
  const auto any =
      Lumo("reduce - --any-failure --command 'sh " + checker + " /dev/stdin'", test::Contents(file));
  EXPECT_EQ(any.exit, 0) << any.error;
  EXPECT_EQ(any.out.find("<path"), std::string::npos);
}

TEST(Reduce, KeepsToItsBounds) {
  const std::string file = test::Scratch().Write("hay.svg", Haystack(""));
  const auto few = LumoJson("reduce " + file + " --command '! grep -q M30.125' --tries 3 --json");
  EXPECT_EQ(few.at("tries"), 3);
  // A command that hangs is a failure of its own kind, and its children end with it.
  const auto hang =
      LumoJson("reduce " + file + " --command 'sleep 60; true' --seconds 0.05 --tries 4 --json");
  EXPECT_EQ(hang.at("ending"), "the time limit");
  const auto fine = Lumo("reduce " + file + " --command true");
  EXPECT_EQ(fine.exit, 1);
  EXPECT_EQ(fine.error, "lumo: the command does not fail on " + file + "\n");
  EXPECT_EQ(fine.out, "");
  EXPECT_EQ(Lumo("reduce " + file).exit, 2);
}

}  // namespace
