// What holds for every subcommand: streams, figures, exit codes, units, timing.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "commands.h"
#include "run.h"

namespace {

using test::Lumo;
using test::LumoJson;
using test::Svg;
using testing::HasSubstr;
using testing::StartsWith;

const std::string kDrawing =
    Svg("<circle id='ring' cx='50' cy='50' r='20'/><path id='line' d='M20 50H80'/><path d='M5 5H5H20V20'/>");

/// Each subcommand with arguments that it can serve on kDrawing; `draws` when a drawing is its product.
const struct {
  std::string arguments;
  bool draws;
} kCommands[] = {
    {"info -", false},
    {"closest - 10 10", false},
    {"hit - 30 50 --radius 2", false},
    {"points - --count 4", false},
    {"hierarchy -", false},
    {"intersect -", false},
    {"boolean union -", true},
    {"boolean simplify -", true},
    {"offset - --distance 2", true},
    {"outline -", true},
    {"edit - --op reverse", true},
    {"flatten - --tolerance 0.1", true},
    {"repair -", true},
    {"reduce - --command '! grep -q ring'", true},
    {"shape circle 50 50 20", true},
};

TEST(Conventions, FiguresAndDrawingsKeepToTheirStreams) {
  const std::string file = test::Scratch().Name("drawing.svg");
  for (const auto& command : kCommands) {
    SCOPED_TRACE(command.arguments);
    const auto plain = Lumo(command.arguments, kDrawing);
    EXPECT_EQ(plain.exit, 0) << plain.error;
    EXPECT_EQ(plain.out.starts_with("<svg"), command.draws) << plain.out;
    EXPECT_EQ(plain.error, "");

    const auto json = Lumo(command.arguments + " --json", kDrawing);
    EXPECT_EQ(json.exit, 0);
    EXPECT_TRUE(nlohmann::json::parse(json.out, nullptr, false).is_object()) << json.out;

    const auto streamed = Lumo(command.arguments + " -o -", kDrawing);
    EXPECT_EQ(streamed.exit, 0);
    EXPECT_THAT(streamed.out, StartsWith("<svg"));
    const auto both = Lumo(command.arguments + " --json -o " + file, kDrawing);
    EXPECT_EQ(both.out, json.out);
    EXPECT_EQ(test::Contents(file), streamed.out);
    std::filesystem::remove(file);
    EXPECT_EQ(LumoJson("info - --json", streamed.out).at("file"), "standard input") << "drawings can be read";

    const auto clash = Lumo(command.arguments + " --json -o -", kDrawing);
    EXPECT_EQ(clash.exit, 2);
    EXPECT_EQ(clash.out, "");
    EXPECT_THAT(clash.error, HasSubstr("standard output"));

    const auto timed = Lumo(command.arguments + " --verbose", kDrawing);
    EXPECT_EQ(timed.out, plain.out);
    EXPECT_THAT(timed.error, HasSubstr(" ms  total\n"));
  }
}

TEST(Conventions, ExitCodesTellDoneFromNothingFromWrong) {
  const std::string lines = Svg("<path d='M0 0L10 0L10 10'/>");
  const struct {
    const char* arguments;
    int exit;
  } cases[] = {
      {"info -", 0},
      {"flatten - --tolerance 1", 1},
      {"repair -", 1},
      {"intersect -", 1},
      {"hit - 50 50 --radius 1", 1},
      {"edit - --op join:1,2", 1},
      {"boolean intersect - no/such.svg", 2},
      {"boolean union - -", 2},
      {"flatten - --tolerance 0", 2},
      {"flatten - --tolerance 1kg", 2},
      {"info - --colour", 2},
      {"info - -o no/such/folder.svg", 2},
      {"completion tcsh", 2},
      {"info", 2},
      {"", 2},
      {"no-such-command", 2},
  };
  for (const auto& c : cases) {
    const auto run = Lumo(c.arguments, lines);
    EXPECT_EQ(run.exit, c.exit) << c.arguments << "\n" << run.error;
    if (c.exit == 2) {
      EXPECT_THAT(run.error, StartsWith("lumo: ")) << c.arguments;
      EXPECT_EQ(std::ranges::count(run.error, '\n'), 1) << "one line: " << run.error;
    }
  }
}

TEST(Conventions, MessagesNameTheFileThePlaceAndTheCause) {
  const std::string broken = test::Scratch().Write("broken.svg", "<svg>\n<path d='M0 0L'/></svg>");
  const std::pair<std::string, std::string> cases[] = {
      {"info " + broken, broken + ":2: <path>: d, character 6: expected a number, found the end"},
      {"info no/such.svg --json", "no/such.svg: cannot be opened (No such file or directory)"},
      {"info -", "standard input: the file is empty"},
  };
  for (const auto& [arguments, message] : cases) {
    const auto run = Lumo(arguments);
    EXPECT_EQ(run.exit, 2);
    EXPECT_EQ(run.error, "lumo: " + message + "\n");
    EXPECT_EQ(run.out, "");
  }
}

// A drawing of 100 mm whose user unit is half a millimetre.
TEST(Conventions, LengthsHaveUnitsAndDrawingsKeepTheirSize) {
  const std::string sheet =
      "<svg xmlns='http://www.w3.org/2000/svg' width='100mm' height='100mm' viewBox='0 0 200 200'>"
      "<rect x='20' y='20' width='80' height='80'/></svg>";
  const struct {
    const char* length;
    double user;
  } cases[] = {{"3", 3},       {"3mm", 6},     {"0.3cm", 6}, {"0.5in", 25.4},
               {"72pt", 50.8}, {"96px", 50.8}, {"10%", 20}};
  for (const auto& c : cases) {
    const auto result =
        LumoJson("offset - --join miter --json --distance " + std::string(c.length), sheet).at("results")[0];
    EXPECT_NEAR(result.at("distance"), c.user, 1e-9) << c.length;
    EXPECT_NEAR(result.at("bbox")[0], 20 - c.user, 1e-3) << c.length;
  }
  EXPECT_THAT(Lumo("edit - --op reverse", sheet).out,
              HasSubstr("width=\"100mm\" height=\"100mm\" viewBox=\"0 0 200 200\""));
  // Where the result needs more room the sheet grows with it: a millimetre stays one.
  EXPECT_THAT(Lumo("offset - --join miter --distance 60", sheet).out,
              HasSubstr("width=\"120mm\" height=\"120mm\" viewBox=\"-40 -40 240 240\""));
}

TEST(Conventions, LongWorkShowsNoBarInAFile) {
  // Work that takes a second without the processor: a command that sleeps.
  const std::string command = "reduce " + test::Scratch().Write("drawing.svg", kDrawing) +
                              " --tries 3 --command 'sleep 0.4; ! grep -q ring' -o /dev/null";
  EXPECT_EQ(Lumo(command).error, "");
}

TEST(Conventions, LongWorkShowsABarToWhoeverWatches) {
  testing::internal::CaptureStderr();
  {
    tool::Stage stage({}, "reduce", 3, tool::Stage::Bar::forced);
    stage.Step();
    std::this_thread::sleep_for(std::chrono::milliseconds(800));
  }
  const std::string screen = testing::internal::GetCapturedStderr();
  EXPECT_THAT(screen, HasSubstr("reduce [#############   "));
  EXPECT_THAT(screen, HasSubstr("] 1 of 3, "));
  EXPECT_TRUE(screen.ends_with("\r\033[K")) << "the bar is wiped away";
}

}  // namespace
