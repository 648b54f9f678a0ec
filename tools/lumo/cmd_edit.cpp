// lumo edit: a script of operations on the paths of a drawing.

#include <iostream>

#include "drawing_io.h"
#include "edit_script.h"

namespace tool {

namespace {

struct Options : DrawingOptions {
  std::vector<std::string> operations;
};

int Run(const Options& options) {
  Document document = Read(options, options.file);
  Stage stage(options, "edit", options.operations.size());
  for (const std::string& operation : options.operations) {
    stage.Step();
    if (ApplyOperation(document, operation)) continue;
    std::cerr << "lumo: --op " << operation << ": does not apply there; nothing is written\n";
    return kNothing;
  }
  Deliver(options, document);
  return kDone;
}

}  // namespace

void AddEdit(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("edit", "Applies a script of operations to the paths of a drawing");
  const auto options = std::make_shared<Options>();
  AddDrawing(*command, *options, Product::drawing, "The edited drawing");
  command
      ->add_option("--op", options->operations, "An operation; give as many as you like, they run in order")
      ->required()
      ->take_all()
      ->type_name("[ID/]VERB[:ARGUMENTS]");
  command->footer(
      "Operations on the element with this id, else on the first; nodes are counted from 0, handles "
      "included:\n" +
      OperationHelp() +
      "Exit code 1, and no drawing, when one of them does not apply.\n"
      "Example: lumo edit drawing.svg --op add:3@0.5 --op B/break:7@1 -o edited.svg");
  OnRun(*command, options, exit, Run);
}

}  // namespace tool
