#pragma once
// The subcommands and what they have in common. Each file cmd_<name>.cpp adds one to the program; its
// callback sets the exit code.
//
// One set of conventions holds for all of them: figures go to standard output, as a table or with --json as
// one object; -o names the drawing to write; "-" is standard input or output; times (--verbose), the progress
// bar and complaints go to standard error.

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "stage.h"

namespace tool {

/// What the program gives back to the shell.
enum ExitCode : int {
  kDone = 0,
  /// Nothing found, nothing to do, or the answer is no.
  kNothing = 1,
  /// The input or the command line is wrong; standard error has one line about it.
  kBadInput = 2,
};

/// What a subcommand prints when the command line does not say: a drawing goes to standard output unless -o
/// or
/// --json is given.
enum class Product { figures, drawing };

/// What every subcommand takes.
struct CommonOptions {
  Product product = Product::figures;
  bool json = false;
  bool verbose = false;
  /// The drawing to write, "-" for standard output; nothing when none is wanted.
  std::string output;

  bool PrintsTable() const { return !json && output != "-"; }
};

/// The options of CommonOptions; `drawn` says what -o gets.
void AddCommon(CLI::App& command, CommonOptions& options, Product product, const std::string& drawn);

/// Those and the drawing that most subcommands read.
struct DrawingOptions : CommonOptions {
  std::string file;
};
void AddDrawing(CLI::App& command, DrawingOptions& options, Product product, const std::string& drawn);

/// One or two drawings.
struct DrawingsOptions : CommonOptions {
  std::string first, second;
};
void AddDrawings(CLI::App& command, DrawingsOptions& options, Product product, const std::string& drawn,
                 const std::string& withoutSecond);

/// Fills in what the command line left open. An InputError when two things want standard input or output.
void Settle(CommonOptions& options);
void Settle(DrawingsOptions& options);

/// What the subcommand does once its options are read.
template <class Options>
void OnRun(CLI::App& command, std::shared_ptr<Options> options, int& exit, int (*run)(const Options&)) {
  command.callback([options = std::move(options), &exit, run] {
    Settle(*options);
    const Stage total(*options, "total", 0, Stage::Bar::hidden);
    exit = run(*options);
  });
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
void AddReduce(CLI::App& program, int& exit);
/// Prints the completion of one shell for the whole program, and the option that prints the manual page.
void AddCompletion(CLI::App& program, int& exit);
void AddManual(CLI::App& program);

}  // namespace tool
