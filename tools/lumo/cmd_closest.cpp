// lumo closest: the point of a drawing nearest to a point.

#include <cmath>

#include "drawing_io.h"
#include "length.h"
#include "svg_write.h"

namespace tool {

namespace {

struct Options : DrawingOptions {
  double x = 0, y = 0;
};

/// The drawing in grey, the way from the point to its answer in red.
void Draw(const Document& document, DPoint query, DPoint answer, const std::string& output) {
  constexpr double kDot = 0.006;
  SvgWriter writer(document);
  writer.ShowAll();
  writer.OpenGroup({{"fill", "none"}, {"stroke", "#777"}, {"stroke-width", "0.3%"}});
  for (const Element& element : document.elements) writer.AddPath(element.path, {}, element.id);
  writer.CloseGroup();
  Path way;
  way.MoveTo(query);
  way.LineTo(answer);
  writer.AddPath(way, {{"fill", "none"}, {"stroke", "#c0392b"}, {"stroke-width", "0.2%"}});
  writer.AddDot(answer, kDot, {{"fill", "#c0392b"}});
  writer.Save(output);
}

int Run(const Options& options) {
  const Document document = Read(options, options.file);
  const DPoint query = document.ToUnits(DPoint{options.x, options.y});
  const Element* nearest = nullptr;
  Path::Closest best;
  for (const Element& element : document.elements) {
    Path::Closest found;
    if (!element.path.FindClosestPoint(query, found)) continue;
    if (nearest && !(found.distanceSqrd < best.distanceSqrd)) continue;
    nearest = &element;
    best = found;
  }
  const double distance = document.ToUser(std::sqrt(best.distanceSqrd));
  if (!options.output.empty()) Draw(document, query, nearest ? best.point : query, options.output);
  if (options.json) {
    Json json = {{"file", document.file}, {"query", {options.x, options.y}}, {"closest", nullptr}};
    if (nearest) {
      json["closest"] = {{"id", nearest->id},
                         {"point", JsonPoint(document, best.point)},
                         {"distance", distance},
                         {"firstNode", best.position.firstNode},
                         {"lastNode", best.position.lastNode},
                         {"t", best.position.t}};
    }
    PrintJson(json);
  } else if (nearest && options.PrintsTable()) {
    const DPoint p = document.ToUser(best.point);
    Table table({"id", "x", "y", "distance", "first node", "last node", "t"});
    table.Add({nearest->id, Figure(p.x), Figure(p.y), Figure(distance),
               std::to_string(best.position.firstNode), std::to_string(best.position.lastNode),
               Figure(best.position.t)});
    table.Print();
  }
  return nearest ? kDone : kNothing;
}

}  // namespace

void AddClosest(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("closest", "The point of the drawing nearest to X Y");
  const auto options = std::make_shared<Options>();
  AddDrawing(*command, *options, Product::figures, "The drawing with the way from X Y to its nearest point");
  AddNumber(*command, "X", options->x, "Horizontal position")->required();
  AddNumber(*command, "Y", options->y, "Vertical position, downwards")->required();
  command->footer(
      "Exit code 1 when the drawing has no segment.\nExample: lumo closest drawing.svg 12.5 40 --json");
  OnRun(*command, options, exit, Run);
}

}  // namespace tool
