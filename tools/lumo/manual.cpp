#include "manual.h"

#include <algorithm>
#include <iostream>
#include <sstream>

#include "commands.h"
#include "lumo/export.h"

namespace tool {

namespace {

/// Plain text for roff: backslashes, hyphens that are meant as typed, and dots or quotes that begin a line.
std::string Roff(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '\\') {
      result += "\\e";
    } else if (c == '-') {
      result += "\\-";
    } else {
      const bool begins = result.empty() || result.back() == '\n';
      if (begins && (c == '.' || c == '\'')) result += "\\&";
      result += c;
    }
  }
  return result;
}

std::string Upper(std::string text) {
  std::ranges::transform(text, text.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return text;
}

class Page {
 public:
  std::string Text() const { return text_.str(); }

  void Head(const std::string& version) {
    text_ << ".\\\" Written by lumo itself from its command line.\n.TH LUMO 1 \"\" \"lumo " << Roff(version)
          << "\" \"User Commands\"\n";
  }
  void Section(const std::string& name) { text_ << ".SH " << Upper(name) << '\n'; }
  void Line(const std::string& roff) { text_ << roff << '\n'; }

  /// Remarks: a paragraph for each line; lines that are set in, and examples, stay as they are.
  void Remarks(const std::string& footer) {
    std::istringstream lines(footer);
    bool verbatim = false;
    for (std::string line; std::getline(lines, line);) {
      const bool example = line.starts_with(kExample);
      const bool setIn = line.starts_with("  ");
      if (verbatim && !setIn) text_ << ".EE\n";
      if (example) {
        text_ << ".PP\n.EX\n" << Roff("  " + line.substr(kExample.size())) << "\n.EE\n";
      } else if (!setIn && !line.empty()) {
        text_ << ".PP\n" << Roff(line) << '\n';
      } else if (setIn) {
        text_ << (verbatim ? "" : ".PP\n.EX\n") << Roff(line) << '\n';
      }
      verbatim = setIn;
    }
    if (verbatim) text_ << ".EE\n";
  }

  void Option(const CliOption& option) {
    text_ << ".TP\n";
    if (option.positional) {
      text_ << "\\fI" << Roff(option.value) << "\\fR\n";
    } else {
      for (std::size_t k = 0; k < option.names.size(); ++k)
        text_ << (k > 0 ? ", " : "") << "\\fB" << Roff(option.names[k]) << "\\fR";
      if (!option.value.empty()) text_ << " \\fI" << Roff(option.value) << "\\fR";
      text_ << '\n';
    }
    text_ << Roff(option.description) << ".";
    if (!option.defaultValue.empty()) text_ << " Default: " << Roff(option.defaultValue) << '.';
    if (option.required && !option.positional) text_ << " Must be given.";
    if (option.many) text_ << " May be repeated.";
    text_ << '\n';
  }

  void Command(const CliCommand& command) {
    text_ << ".SS " << Synopsis(command) << '\n' << Roff(command.description) << ".\n";
    for (const CliOption& option : command.options) {
      if (option.names.empty() || option.names.back() != "--help") Option(option);
    }
    Remarks(command.footer);
  }

 private:
  static std::string Synopsis(const CliCommand& command) {
    std::string text = "\\fB" + Roff(command.path) + "\\fR";
    for (const CliOption& option : command.options) {
      if (option.positional)
        text +=
            option.required ? " \\fI" + Roff(option.value) + "\\fR" : " [\\fI" + Roff(option.value) + "\\fR]";
    }
    if (!command.subcommands.empty()) text += " \\fISUBCOMMAND\\fR";
    return text + " [\\fIOPTIONS\\fR]";
  }

  std::ostringstream text_;
};

/// Lines of at most this many columns. What is set in, and examples, are left as they are.
std::string Wrapped(const std::string& text) {
  constexpr std::size_t kColumns = 100;
  std::string result;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const bool asItIs = line.starts_with("  ") || line.starts_with(kExample);
    while (!asItIs && line.size() > kColumns) {
      const auto space = line.rfind(' ', kColumns);
      if (space == std::string::npos || space == 0) break;
      result += line.substr(0, space) + "\n";
      line.erase(0, space + 1);
    }
    result += line + "\n";
  }
  return result;
}

class HelpLayout : public CLI::Formatter {
 public:
  HelpLayout() { column_width(34); }
  std::string make_footer(const CLI::App* app) const override {
    const std::string footer = app->get_footer();
    return footer.empty() ? footer : "\n" + Wrapped(footer);
  }
  std::string make_option_name(const CLI::Option* option, bool positional) const override {
    std::string name = CLI::Formatter::make_option_name(option, positional);
    // A flag that switches something off says so in its name.
    const std::string off = "{false}";
    if (const auto place = name.find(off); place != std::string::npos) name.erase(place, off.size());
    return name;
  }
};

std::string Version() {
  return std::to_string(LUMO_VERSION_MAJOR) + "." + std::to_string(LUMO_VERSION_MINOR) + "." +
         std::to_string(LUMO_VERSION_PATCH);
}

}  // namespace

std::shared_ptr<CLI::FormatterBase> HelpFormatter() { return std::make_shared<HelpLayout>(); }

std::string Conventions() {
  return "Any SVG serves: groups, transforms, units, basic shapes, arcs and use are resolved.\n"
         "DRAWING.svg may be - for standard input. -o names the drawing to write, - standard output. Figures "
         "go "
         "to standard output, as a table or with --json as one object; the table gives way to a drawing "
         "there.\n"
         "Figures and positions are in the user units of the drawing (the first, of two). A LENGTH is a "
         "number "
         "of them, or has a unit (px, pt, pc, mm, cm, in, q: as large as the drawing states its size; %: of "
         "its diagonal over the square root of two). Angles are in degrees.\n"
         "Long work shows a bar on standard error when that is a terminal; --verbose tells there how long "
         "each "
         "stage took.\n"
         "Exit code: 0 done; 1 nothing found, nothing to do, or the answer is no; 2 bad input or a wrong "
         "command "
         "line, with one line on standard error that says which.";
}

std::string ManualPage(const CliCommand& program, const std::string& version) {
  Page page;
  page.Head(version);
  page.Section("Name");
  page.Line("lumo \\- " + Roff("measure and edit the curves of SVG drawings"));
  page.Section("Synopsis");
  page.Line(".B lumo\n\\fISUBCOMMAND\\fR [\\fIARGUMENTS\\fR] [\\fIOPTIONS\\fR]");
  page.Section("Description");
  page.Remarks(program.footer);
  page.Section("Options");
  for (const CliOption& option : program.options) page.Option(option);
  page.Section("Subcommands");
  for (const CliCommand* command : Flattened(program)) {
    if (command != &program) page.Command(*command);
  }
  return page.Text();
}

void AddManual(CLI::App& program) {
  program
      .add_flag_callback("--man",
                         [&program] {
                           std::cout << ManualPage(Describe(program), Version());
                           throw CLI::Success();
                         })
      ->group("");
}

}  // namespace tool
