// lumo: what the library does, on SVG files.

#include <exception>
#include <iostream>
#include <new>

#include "commands.h"
#include "files.h"
#include "lumo/export.h"
#include "manual.h"

namespace {

/// One line, and in it the word that the user has to look at.
std::string Complaint(const CLI::App* program, const CLI::Error& error) {
  std::string what = error.what();
  const std::vector<std::string> words = program->remaining(true);
  // The parser only says that a subcommand is missing when it does not know the one that it was given.
  if (error.get_name() == "RequiredError" && what.starts_with("A subcommand") && !words.empty())
    what = "there is no subcommand or option '" + words.front() + "'";
  return "lumo: " + what + " (lumo --help says more)\n";
}

/// A wish for help or the version ends here too, once it is printed.
void Parse(CLI::App& program, int argc, char** argv) {
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& success) {
    program.exit(success);
  }
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App program("Measure and edit the curves of SVG drawings", "lumo");
  program.require_subcommand(1);
  program.set_version_flag("--version", std::to_string(LUMO_VERSION_MAJOR) + "." +
                                            std::to_string(LUMO_VERSION_MINOR) + "." +
                                            std::to_string(LUMO_VERSION_PATCH));
  program.footer(tool::Conventions());
  program.formatter(tool::HelpFormatter());
  program.failure_message(Complaint);
  int exit = tool::kDone;
  for (const auto add :
       {tool::AddInfo, tool::AddClosest, tool::AddHit, tool::AddHierarchy, tool::AddIntersect,
        tool::AddBoolean, tool::AddOffset, tool::AddOutline, tool::AddEdit, tool::AddShape, tool::AddPoints,
        tool::AddFit, tool::AddFlatten, tool::AddRepair, tool::AddReduce, tool::AddCompletion})
    add(program, exit);
  tool::AddManual(program);
  try {
    Parse(program, argc, argv);
    tool::FlushOutput();
  } catch (const CLI::ParseError& error) {
    program.exit(error);
    return tool::kBadInput;
  } catch (const std::bad_alloc&) {
    std::cerr << "lumo: out of memory\n";
    return tool::kBadInput;
  } catch (const std::exception& error) {
    std::cerr << "lumo: " << error.what() << '\n';
    return tool::kBadInput;
  }
  return exit;
}
