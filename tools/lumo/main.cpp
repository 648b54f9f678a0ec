// lumo: what the library does, on SVG files.

#include <exception>
#include <iostream>
#include <new>

#include "commands.h"
#include "input_error.h"
#include "lumo/export.h"

int main(int argc, char** argv) {
  CLI::App program("Measure and edit the curves of SVG drawings", "lumo");
  program.require_subcommand(1);
  program.set_version_flag("--version", std::to_string(LUMO_VERSION_MAJOR) + "." +
                                            std::to_string(LUMO_VERSION_MINOR) + "." +
                                            std::to_string(LUMO_VERSION_PATCH));
  program.footer(
      "DRAWING.svg may be - for standard input. Figures are in the drawing's own units.\n"
      "Exit code: 0 done, 1 nothing found or nothing done, 2 bad input (one line on standard error says "
      "which).");
  int exit = tool::kDone;
  for (const auto add :
       {tool::AddInfo, tool::AddClosest, tool::AddHit, tool::AddHierarchy, tool::AddIntersect,
        tool::AddBoolean, tool::AddOffset, tool::AddOutline, tool::AddEdit, tool::AddShape, tool::AddPoints,
        tool::AddFit, tool::AddFlatten, tool::AddRepair})
    add(program, exit);
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
