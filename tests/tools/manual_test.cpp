// The manual page and the shells' completions agree with what the program accepts.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "run.h"

namespace {

using test::Lumo;
using testing::HasSubstr;

const std::string kCommands[] = {"info",    "closest",      "hit",        "hierarchy",        "intersect",
                                 "offset",  "outline",      "edit",       "points",           "fit",
                                 "flatten", "repair",       "reduce",     "completion",       "boolean union",
                                 "boolean", "shape circle", "shape rect", "boolean simplify", "shape"};

/// The names of a subcommand's options, as its help shows them, which ends with an example.
std::vector<std::string> OptionsOf(const std::string& command) {
  const std::string help = Lumo(command + " --help").out;
  EXPECT_THAT(help, HasSubstr("Example: lumo " + command));
  const std::regex name("(?:^|\n) +(?:-\\w,)?(--[a-z-]+)");
  std::vector<std::string> names;
  for (std::sregex_iterator i(help.begin(), help.end(), name), end; i != end; ++i) names.push_back((*i)[1]);
  return names;
}

std::string WithoutBackslashes(std::string text) {
  std::erase(text, '\\');
  return text;
}

TEST(Manual, HasEverySubcommandAndOption) {
  const auto help = Lumo("--help");
  EXPECT_EQ(help.exit, 0);
  EXPECT_THAT(help.out, HasSubstr("info"));
  const std::string page = WithoutBackslashes(Lumo("--man").out);
  EXPECT_EQ(page.find(".TH LUMO 1"), page.find('\n') + 1);
  for (const std::string& command : kCommands) {
    const auto begin = page.find(".SS fBlumo " + command + "fR");
    ASSERT_NE(begin, std::string::npos) << command;
    const std::string section = page.substr(begin, page.find(".SS", begin + 1) - begin);
    const auto options = OptionsOf(command);
    ASSERT_FALSE(options.empty()) << command;
    for (const std::string& option : options) {
      if (option == "--help") continue;
      EXPECT_THAT(section, HasSubstr("fB" + option + "fR")) << command;
    }
    EXPECT_THAT(section, HasSubstr("lumo " + command)) << "an example";
  }
}

TEST(Completion, OfZshAndFishKnowsEverySubcommandAndOption) {
  const std::string zsh = Lumo("completion zsh").out, fish = Lumo("completion fish").out;
  for (const std::string& command : kCommands) {
    std::string function = "\n_lumo_" + command + "() {";
    std::ranges::replace(function, ' ', '_');
    function[function.size() - 2] = ' ';
    const auto begin = zsh.find(function);
    ASSERT_NE(begin, std::string::npos) << command;
    const std::string body = zsh.substr(begin, zsh.find("\n}", begin) - begin);
    for (const std::string& option : OptionsOf(command)) {
      EXPECT_THAT(body, HasSubstr(option)) << command;
      const std::regex line("-n '__lumo_at lumo " + command + "'.* -l " + option.substr(2) + " ");
      EXPECT_TRUE(std::regex_search(fish, line)) << command << " " << option;
    }
  }
}

/// What bash offers for a line: the last word is the one being typed.
std::string Completed(const std::string& line) {
  const std::string script = test::Scratch().Write(
      "complete.bash", "source <(" + std::string(LUMO_TOOL) + " completion bash)\n" + "COMP_WORDS=(" + line +
                           ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_lumo\n" +
                           "echo \"${COMPREPLY[*]}\"\n");
  const std::string out = test::Scratch().Name("offered");
  EXPECT_EQ(std::system(("bash " + script + " >" + out).c_str()), 0) << line;
  const std::string offered = test::Contents(out);
  return offered.substr(0, offered.find('\n'));
}

TEST(Completion, OfBashOffersWhatFits) {
  const struct {
    const char* line;
    const char* offered;
  } cases[] = {
      {"lumo of", "offset"},
      {"lumo boolean ''", "union intersect subtract xor simplify"},
      {"lumo boolean si", "simplify"},
      {"lumo offset a.svg --join ''", "round miter bevel square none"},
      {"lumo offset a.svg --join b", "bevel"},
      {"lumo offset a.svg --mi", "--miter-limit"},
      {"lumo shape rect 0 0 9 9 --corner s", "scallop"},
      {"lumo completion ''", "bash zsh fish"},
      {"lumo offset a.svg --distance ''", ""},
      {"lumo info a.svg --v", "--verbose"},
      {"lumo --", "--help --version"},
  };
  for (const auto& c : cases) EXPECT_EQ(Completed(c.line), c.offered) << c.line;
}

}  // namespace
