// lumo flatten: curves become lines.

#include <memory>

#include "commands.h"
#include "svg_read.h"
#include "svg_write.h"

namespace tool {

namespace {

struct Options : DrawingOptions {
  double tolerance = 0;
  std::string output;
};

int Run(const Options& options) {
  Document document = ReadSvg(options.file);
  for (Element& element : document.elements) {
    element.path = element.path.GetPolyline(document.ToUnits(options.tolerance));
  }
  SaveDocument(document, options.output);
  return document.elements.empty() ? kNothing : kDone;
}

}  // namespace

void AddFlatten(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("flatten", "Curves become lines");
  const auto options = std::make_shared<Options>();
  AddDrawing(*command, *options, false);
  command->add_option("--tolerance", options->tolerance, "How far a line may stray from its curve")
      ->required()
      ->check(CLI::PositiveNumber);
  AddOutput(*command, options->output);
  command->footer("Example: lumo flatten drawing.svg --tolerance 0.1 -o lines.svg");
  command->callback([options, &exit] { exit = Run(*options); });
}

}  // namespace tool
