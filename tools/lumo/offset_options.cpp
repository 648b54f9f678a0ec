#include "offset_options.h"

#include <algorithm>

#include "cli_model.h"
#include "figures.h"
#include "length.h"
#include "lumo/offset_corners.h"
#include "svg_write.h"

namespace tool {

namespace {

std::unique_ptr<Lumo::OffsetCorner> MakeJoin(const std::string& name, double miterLimit) {
  if (name == "round") return std::make_unique<Lumo::Round>();
  if (name == "miter") return std::make_unique<Lumo::MiteredCorner>(miterLimit, nullptr);
  if (name == "bevel" || name == "butt") return std::make_unique<Lumo::Bevel>();
  if (name == "square") return std::make_unique<Lumo::OffsetBevel>();
  return std::make_unique<Lumo::NoCorner>();
}

/// Sources as grey ground, results as thin lines over it: so that families can be looked at.
void DrawPicture(const Document& document, const std::vector<OffsetResult>& results, SvgWriter& writer) {
  for (const Element& element : document.elements) {
    const bool stroke = Attribute(element.presentation, "fill", "black") == "none";
    writer.AddPath(element.path,
                   stroke ? Presentation{{"fill", "none"}, {"stroke", "#999"}, {"stroke-width", "0.5%"}}
                          : Presentation{{"fill", "#ccc"}, {"fill-rule", "evenodd"}});
  }
  writer.OpenGroup({{"fill", "none"}, {"stroke", "#c0392b"}, {"stroke-width", "0.2%"}});
  for (const OffsetResult& result : results) writer.AddPath(result.path, {});
  writer.CloseGroup();
}

}  // namespace

void AddOffsetOptions(CLI::App& command, OffsetOptions& options) {
  AddDrawing(command, options, Product::drawing, "The drawing of the results");
  AddChoice(command, "--join", options.join, {"round", "miter", "bevel", "square", "none"}, "Corners")
      ->capture_default_str();
  AddNumber(command, "--miter-limit", options.miterLimit, "Corners sharper than this many degrees are cut")
      ->check(CLI::Range(0.0, 180.0).description(""))
      ->type_name("DEG")
      ->capture_default_str();
  AddChoice(command, "--cap", options.cap, {"butt", "square", "round"}, "Ends of open paths")
      ->capture_default_str();
  AddLength(command, "--error", options.error, "Largest deviation", Sign::positive);
  command.add_flag("!--no-combine", options.combine, "Leave results that overlap as they are");
  command.add_flag("--picture", options.picture, "Draw the sources grey and the results as lines over them");
}

std::unique_ptr<Lumo::Offset::OffsetSettings> MakeSettings(const OffsetOptions& options,
                                                           const Document& document, double distance,
                                                           bool inwards) {
  auto settings = std::make_unique<Lumo::Offset::OffsetSettings>(
      MakeJoin(options.join, options.miterLimit).release(),
      MakeJoin(options.cap, options.miterLimit).release(), distance, inwards);
  settings->SetCombineShape(options.combine);
  const double error = options.error.ToUnits(document);
  if (error > 0) settings->SetMaxOffsetError(error);
  return settings;
}

namespace {

void Save(const OffsetOptions& options, const Document& document, const std::vector<OffsetResult>& results) {
  const Stage stage(options, "write");
  SvgWriter writer(document);
  writer.ShowAll();
  if (options.picture) {
    DrawPicture(document, results, writer);
  } else {
    for (const OffsetResult& result : results) {
      if (!result.path.IsEmpty()) writer.AddPath(result.path, result.source->presentation, result.source->id);
    }
  }
  writer.Save(options.output);
}

void PrintAsJson(const Document& document, const std::vector<OffsetResult>& results) {
  Json list = Json::array();
  for (const OffsetResult& result : results) {
    Json entry = JsonFigures(result.source->id, Measure(document, result.path));
    entry["distance"] = document.ToUser(result.distance);
    list.push_back(std::move(entry));
  }
  PrintJson({{"file", document.file}, {"results", std::move(list)}});
}

}  // namespace

int FinishOffset(const OffsetOptions& options, const Document& document,
                 const std::vector<OffsetResult>& results) {
  if (!options.output.empty()) Save(options, document, results);
  if (options.json) PrintAsJson(document, results);
  const bool any =
      std::ranges::any_of(results, [](const OffsetResult& result) { return !result.path.IsEmpty(); });
  return any ? kDone : kNothing;
}

}  // namespace tool
