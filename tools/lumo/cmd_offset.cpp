// lumo offset: parallel curves and grown or shrunk outlines.

#include "cli_model.h"
#include "drawing_io.h"
#include "offset_options.h"

namespace tool {

namespace {

using Lumo::Offset::EOpenCurveOffsetSide;

struct Options : OffsetOptions {
  Length distance;
  std::string side = "both";
  bool inwards = false;
  bool close = true;
  std::size_t count = 1;
};

/// The sides of a path are named as they are seen on screen, where y runs down; the library counts y upwards.
EOpenCurveOffsetSide SideOf(const std::string& name) {
  if (name == "left") return EOpenCurveOffsetSide::right;
  if (name == "right") return EOpenCurveOffsetSide::left;
  return EOpenCurveOffsetSide::both;
}

int Run(const Options& options) {
  const Document document = Read(options, options.file);
  std::vector<OffsetResult> results;
  Stage stage(options, "offset", document.elements.size() * options.count);
  for (const Element& element : document.elements) {
    for (std::size_t k = 1; k <= options.count; ++k) {
      const double distance = options.distance.ToUnits(document) * static_cast<double>(k);
      const auto settings = MakeSettings(options, document, distance, options.inwards);
      settings->SetCloseShape(options.close);
      settings->SetOpenCurveOffsetSide(SideOf(options.side));
      Path path = element.path;
      path.OffsetCurve(*settings);
      results.push_back({&element, distance, std::move(path)});
      stage.Step();
    }
  }
  return FinishOffset(options, document, results);
}

}  // namespace

void AddOffset(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("offset", "Moves outlines sideways by a distance");
  const auto options = std::make_shared<Options>();
  AddOffsetOptions(*command, *options);
  AddLength(*command, "--distance", options->distance, "How far; negative shrinks closed outlines", Sign::any)
      ->required();
  AddChoice(*command, "--side", options->side, {"left", "right", "both"}, "Of open paths, as seen on screen")
      ->capture_default_str();
  command->add_flag("--inwards", options->inwards, "Only the outlines directly inside the outer ones");
  command->add_flag("!--no-close", options->close, "Leave offsets of open paths open");
  command->add_option("--count", options->count, "A family of this many: at 1, 2, 3 ... times the distance")
      ->check(CLI::Range(std::size_t{1}, std::size_t{1000}).description(""))
      ->type_name("N")
      ->capture_default_str();
  command->footer(
      "Each element is offset on its own. Exit code 1 when nothing is left.\n"
      "Example: lumo offset drawing.svg --distance 2 --join miter --count 5 --picture -o offsets.svg");
  OnRun(*command, options, exit, Run);
}

}  // namespace tool
