// lumo closest: the point of a drawing nearest to a point.

#include <cmath>
#include <iostream>
#include <memory>
#include <optional>

#include "commands.h"
#include "report.h"
#include "svg_read.h"

namespace tool {

namespace {

struct Options : DrawingOptions {
  double x = 0, y = 0;
};

int Run(const Options& options) {
  const Document document = ReadSvg(options.file);
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
  } else if (nearest) {
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
  AddDrawing(*command, *options);
  command->add_option("X", options->x, "Horizontal position")->required();
  command->add_option("Y", options->y, "Vertical position")->required();
  command->footer(
      "Exit code 1 when the drawing has no segment.\nExample: lumo closest drawing.svg 12.5 40 --json");
  command->callback([options, &exit] { exit = Run(*options); });
}

}  // namespace tool
