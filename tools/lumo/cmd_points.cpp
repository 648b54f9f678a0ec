// lumo points: points at equal distances along every path.

#include <cmath>

#include "drawing_io.h"
#include "input_error.h"
#include "length.h"
#include "svg_write.h"
#include "tav/math/cubic_bezier.h"

namespace tool {

namespace {

/// More points than this in one drawing are a slip of the decimal point.
constexpr double kMostPoints = 1e7;

struct Options : DrawingOptions {
  Length every;
  std::size_t count = 0;
};

/// Points at the lengths 0, step, 2 step ... from the start of a path, in one walk over its segments.
std::vector<DPoint> PointsEvery(const Path& path, double step) {
  std::vector<DPoint> result;
  const DPoint* const p = path.GetPoints();
  double passed = 0;
  std::size_t next = 0;
  for (std::size_t i = 1; i < path.GetPointCount(); ++i) {
    const NODETYPE type = path.GetNodeType(i);
    if (!type.IsLine() && !(type.IsCurve() && i >= 3)) continue;
    const DPoint* const bezier = p + i - (type.IsLine() ? 1 : 3);
    const double length =
        type.IsLine() ? TavMath::Distance(bezier[0], bezier[1]) : TavMath::CubicBezier::Length(bezier);
    for (; static_cast<double>(next) * step <= passed + length; ++next) {
      const double share = length > 0 ? (static_cast<double>(next) * step - passed) / length : 0;
      result.push_back(
          type.IsLine() ? TavMath::Lerp(bezier[0], bezier[1], share)
                        : TavMath::CubicBezier::Evaluate(
                              bezier, TavMath::CubicBezier::GetCurveRelativeLengthParameter(bezier, share)));
    }
    passed += length;
  }
  return result;
}

void CheckNumber(const Document& document, double every) {
  double length = 0;
  for (const Element& element : document.elements) length += element.path.GetLength();
  if (length / every > kMostPoints)
    throw InputError("--every is too small: it asks for more than ten million points");
}

/// The paths in grey and their points.
class Picture {
 public:
  explicit Picture(const Document& document) : writer_(document) {
    writer_.OpenGroup({{"fill", "none"}, {"stroke", "#777"}, {"stroke-width", "0.3%"}});
    for (const Element& element : document.elements) writer_.AddPath(element.path, {}, element.id);
    writer_.CloseGroup();
  }
  void Add(DPoint p) {
    constexpr double kDot = 0.004;
    writer_.AddDot(p, kDot, {{"fill", "#c0392b"}});
  }
  void Save(const std::string& output) const { writer_.Save(output); }

 private:
  SvgWriter writer_;
};

int Run(const Options& options) {
  const Document document = Read(options, options.file);
  const double every = options.every.ToUnits(document);
  if (options.count == 0) CheckNumber(document, every);
  Json paths = Json::array();
  Table table({"id", "x", "y"});
  Picture picture(document);
  bool any = false;
  Stage stage(options, "walk along the paths", document.elements.size());
  for (const Element& element : document.elements) {
    const std::vector<DPoint> points = options.count > 0 ? element.path.GetEvenlySpacedPoints(options.count)
                                                         : PointsEvery(element.path, every);
    any = any || !points.empty();
    Json list = Json::array();
    for (const DPoint p : points) {
      if (!options.output.empty()) picture.Add(p);
      if (options.json) {
        list.push_back(JsonPoint(document, p));
      } else {
        table.Add({element.id, Figure(document.ToUser(p).x), Figure(document.ToUser(p).y)});
      }
    }
    if (options.json) paths.push_back({{"id", element.id}, {"points", std::move(list)}});
    stage.Step();
  }
  if (!options.output.empty()) picture.Save(options.output);
  if (options.json) PrintJson({{"file", document.file}, {"paths", std::move(paths)}});
  if (options.PrintsTable()) table.Print();
  return any ? kDone : kNothing;
}

}  // namespace

void AddPoints(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("points", "Points at equal distances along every path");
  const auto options = std::make_shared<Options>();
  AddDrawing(*command, *options, Product::figures, "The drawing with the points marked");
  auto* every = AddLength(*command, "--every", options->every,
                          "Distance between points, from the start of each path", Sign::positive);
  auto* count = command->add_option("--count", options->count, "Number of points on each path");
  every->excludes(count);
  count->check(CLI::Range(std::size_t{1}, static_cast<std::size_t>(kMostPoints)).description(""))
      ->type_name("N")
      ->excludes(every);
  command->footer(
      "Distances are measured along the curves; gaps between subpaths do not count.\n"
      "Example: lumo points drawing.svg --every 5 --json");
  command->parse_complete_callback([every, count] {
    if (!*every && !*count) throw InputError("points needs --every or --count");
  });
  OnRun(*command, options, exit, Run);
}

}  // namespace tool
