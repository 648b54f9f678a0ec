// lumo: what the library does, on SVG files.

#include <exception>
#include <iostream>
#include <new>

#include "commands.h"
#include "lumo/export.h"
#include "manual.h"

int main(int argc, char** argv) {
  CLI::App program("Measure and edit the curves of SVG drawings", "lumo");
  program.require_subcommand(1);
  program.set_version_flag("--version", std::to_string(LUMO_VERSION_MAJOR) + "." +
                                            std::to_string(LUMO_VERSION_MINOR) + "." +
                                            std::to_string(LUMO_VERSION_PATCH));
  program.footer(tool::Conventions());
  program.formatter(tool::HelpFormatter());
  program.failure_message([](const CLI::App*, const CLI::Error& error) {
    return "lumo: " + std::string(error.what()) + " (lumo --help says more)\n";
  });
  int exit = tool::kDone;
  for (const auto add :
       {tool::AddInfo, tool::AddClosest, tool::AddHit, tool::AddHierarchy, tool::AddIntersect,
        tool::AddBoolean, tool::AddOffset, tool::AddOutline, tool::AddEdit, tool::AddShape, tool::AddPoints,
        tool::AddFit, tool::AddFlatten, tool::AddRepair, tool::AddReduce, tool::AddCompletion})
    add(program, exit);
  tool::AddManual(program);
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& success) {
    return program.exit(success);
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
