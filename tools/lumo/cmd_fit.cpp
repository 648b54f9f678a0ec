// lumo fit: a stroke of many points becomes a smooth path.

#include <algorithm>
#include <sstream>

#include "drawing_io.h"
#include "files.h"
#include "input_error.h"
#include "length.h"
#include "scanner.h"

namespace tool {

namespace {

struct Options : CommonOptions {
  std::string file;
  Length tolerance;
};

/// One point per line: two numbers with a comma, a semicolon or space between them. Empty lines, and one line
/// of words at the top, are passed over; what follows the second number is not looked at.
std::vector<DPoint> ReadPoints(const std::string& file) {
  std::istringstream in(ReadText(file));
  const std::string name = file == "-" ? "standard input" : file;
  std::vector<DPoint> points;
  std::string line;
  for (std::size_t number = 1; std::getline(in, line); ++number) {
    std::ranges::replace(line, ';', ',');
    Scanner scanner(line);
    scanner.SkipSpace();
    if (scanner.AtEnd() || (number == 1 && !scanner.AtNumber())) continue;
    try {
      const double x = scanner.Number();
      scanner.SkipSeparator();
      points.push_back({x, scanner.Number()});
    } catch (const InputError& error) {
      throw InputError(name + ":" + std::to_string(number) + ": " + error.what());
    }
  }
  return points;
}

int Run(const Options& options) {
  std::vector<DPoint> points = ReadPoints(options.file);
  TavMath::BoundsT<double> box;
  for (const DPoint p : points) box.Add(p.x, p.y);
  Document document;
  document.file = options.file;
  if (!box.IsEmpty()) {
    document.viewBox[0] = box.minx;
    document.viewBox[1] = box.miny;
    document.viewBox[2] = box.Width();
    document.viewBox[3] = box.Height();
    document.unitsPerUser = UnitsPerUser(std::max(box.Width(), box.Height()));
  }
  for (DPoint& p : points) p = document.ToUnits(p);
  Element element;
  element.id = "stroke";
  element.presentation = {{"fill", "none"}, {"stroke", "black"}};
  bool fitted = false;
  {
    const Stage stage(options, "fit");
    fitted = element.path.AppendFittedCurve(points, options.tolerance.ToUnits(document));
  }
  if (fitted) document.elements.push_back(std::move(element));
  Deliver(options, document, true);
  return fitted ? kDone : kNothing;
}

}  // namespace

void AddFit(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("fit", "A stroke of many points becomes a smooth path");
  const auto options = std::make_shared<Options>();
  command->add_option("POINTS.csv", options->file, "One point x,y per line; - for standard input")
      ->required()
      ->type_name("FILE");
  AddLength(*command, "--tolerance", options->tolerance, "How far from the path a point may lie",
            Sign::positive)
      ->required();
  AddCommon(*command, *options, Product::drawing, "The drawing of the stroke");
  command->footer(
      "Corners that the tolerance cannot round stay corners. Exit code 1 when there are fewer than two "
      "points.\n"
      "Example: lumo fit stroke.csv --tolerance 0.5 -o stroke.svg");
  OnRun(*command, options, exit, Run);
}

}  // namespace tool
