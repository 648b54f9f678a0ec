// lumo outline: strokes become shapes.

#include "attributes.h"
#include "drawing_io.h"
#include "input_error.h"
#include "lumo/boolean.h"
#include "offset_options.h"

namespace tool {

namespace {

struct Options : OffsetOptions {
  Length width;
  bool widthGiven = false, joinGiven = false, capGiven = false;
};

/// The width of an element's stroke in user units: the option, else the element's own, else 1.
double WidthOf(const Options& options, const Document& document, const Element& element) {
  if (options.widthGiven) return options.width.ToUser(document);
  const std::string text = Attribute(element.presentation, "stroke-width", "1");
  try {
    return ParseLength(text, {document.viewBox[2], document.viewBox[3]}, Extent::diagonal);
  } catch (const InputError& error) {
    throw InputError(document.file + ": stroke-width of " + element.id + ", " + error.what());
  }
}

Path Offset(const OffsetOptions& options, const Document& document, Path path, double distance) {
  path.OffsetCurve(*MakeSettings(options, document, distance, false));
  return path;
}

/// The ground that a stroke covers: of a closed subpath the ring between its two offsets, of an open one its
/// outline.
Path OutlineOf(const OffsetOptions& options, const Document& document, const Path& path, double half) {
  std::vector<Path> parts;
  for (const Path& subpath : path.GetSubpaths()) {
    Path grown = Offset(options, document, subpath, half);
    if (subpath.IsClosed(0)) grown = grown.Subtract(Offset(options, document, subpath, -half));
    if (!grown.IsEmpty()) parts.push_back(std::move(grown));
  }
  return parts.empty() ? Path() : Lumo::Union(parts);
}

/// Joins and caps as the element wants them, where the command line does not say.
OffsetOptions OptionsFor(const Options& options, const Element& element) {
  OffsetOptions result = options;
  if (!options.joinGiven) {
    const std::string join = Attribute(element.presentation, "stroke-linejoin", "miter");
    result.join = join == "round" || join == "bevel" ? join : "miter";
  }
  if (!options.capGiven) {
    const std::string cap = Attribute(element.presentation, "stroke-linecap", "butt");
    result.cap = cap == "round" || cap == "square" ? cap : "butt";
  }
  return result;
}

/// What was the colour of the stroke is now that of the shape.
Presentation Filled(const Presentation& presentation) {
  const std::string stroke = Attribute(presentation, "stroke", "none");
  return {{"fill", stroke == "none" ? Attribute(presentation, "fill", "black") : stroke}};
}

int Run(const Options& options) {
  Document document = Read(options, options.file);
  std::vector<OffsetResult> results;
  Stage stage(options, "outline", document.elements.size());
  for (Element& element : document.elements) {
    const double half = document.ToUnits(WidthOf(options, document, element) / 2);
    if (half > 0) {
      results.push_back(
          {&element, half, OutlineOf(OptionsFor(options, element), document, element.path, half)});
    }
    stage.Step();
  }
  if (!options.picture) {
    for (Element& element : document.elements) element.presentation = Filled(element.presentation);
  }
  return FinishOffset(options, document, results);
}

}  // namespace

void AddOutline(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("outline", "Turns strokes into shapes");
  const auto options = std::make_shared<Options>();
  AddOffsetOptions(*command, *options);
  auto* width = AddLength(*command, "--width", options->width, "Width of all strokes, instead of their own",
                          Sign::positive);
  command->footer(
      "Widths, joins and caps are those of the drawing's attributes unless an option says otherwise.\n"
      "Example: lumo outline drawing.svg --width 3 --cap square -o shapes.svg");
  command->parse_complete_callback([options, command, width] {
    options->widthGiven = width->count() > 0;
    options->joinGiven = command->get_option("--join")->count() > 0;
    options->capGiven = command->get_option("--cap")->count() > 0;
  });
  OnRun(*command, options, exit, Run);
}

}  // namespace tool
