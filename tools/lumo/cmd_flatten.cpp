// lumo flatten: curves become lines.

#include "drawing_io.h"
#include "length.h"

namespace tool {

namespace {

struct Options : DrawingOptions {
  Length tolerance;
};

bool HasCurve(const Path& path) {
  for (std::size_t i = 0; i < path.GetPointCount(); ++i) {
    if (path.GetNodeType(i).IsCurve()) return true;
  }
  return false;
}

int Run(const Options& options) {
  Document document = Read(options, options.file);
  const double tolerance = options.tolerance.ToUnits(document);
  bool any = false;
  {
    Stage stage(options, "flatten", document.elements.size());
    for (Element& element : document.elements) {
      any = any || HasCurve(element.path);
      element.path = element.path.GetPolyline(tolerance);
      stage.Step();
    }
  }
  Deliver(options, document);
  return any ? kDone : kNothing;
}

}  // namespace

void AddFlatten(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("flatten", "Curves become lines");
  const auto options = std::make_shared<Options>();
  AddDrawing(*command, *options, Product::drawing, "The drawing of lines");
  AddLength(*command, "--tolerance", options->tolerance, "How far a line may stray from its curve",
            Sign::positive)
      ->required();
  command->footer(
      "Exit code 1 when there is no curve.\nExample: lumo flatten drawing.svg --tolerance 0.1 -o lines.svg");
  OnRun(*command, options, exit, Run);
}

}  // namespace tool
