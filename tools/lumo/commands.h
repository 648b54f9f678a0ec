#pragma once
// The subcommands: each file cmd_<name>.cpp adds one or a few to the program, whose callbacks set the exit
// code.

#include <CLI/CLI.hpp>
#include <string>

namespace tool {

/// What the program gives back to the shell.
enum ExitCode : int {
  kDone = 0,
  /// Nothing found, nothing to do, or the answer is no.
  kNothing = 1,
  /// The input or the command line is wrong; standard error has one line about it.
  kBadInput = 2,
};

/// Options that most subcommands share.
struct DrawingOptions {
  std::string file;
  bool json = false;
};
inline void AddDrawing(CLI::App& command, DrawingOptions& options, bool withJson = true) {
  command.add_option("DRAWING.svg", options.file, "The drawing; - for standard input")->required();
  if (withJson) command.add_flag("--json", options.json, "Print the figures as one JSON object");
}
inline void AddOutput(CLI::App& command, std::string& output) {
  command.add_option("-o,--output", output, "The drawing to write; - for standard output")->required();
}

void AddInfo(CLI::App& program, int& exit);
void AddClosest(CLI::App& program, int& exit);
void AddHit(CLI::App& program, int& exit);
void AddHierarchy(CLI::App& program, int& exit);
void AddEdit(CLI::App& program, int& exit);
void AddShape(CLI::App& program, int& exit);
void AddIntersect(CLI::App& program, int& exit);
void AddBoolean(CLI::App& program, int& exit);
void AddOffset(CLI::App& program, int& exit);
void AddOutline(CLI::App& program, int& exit);
void AddPoints(CLI::App& program, int& exit);
void AddFit(CLI::App& program, int& exit);
void AddFlatten(CLI::App& program, int& exit);
void AddRepair(CLI::App& program, int& exit);

}  // namespace tool
