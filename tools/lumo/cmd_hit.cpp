// lumo hit: what a click meets.

#include <cmath>
#include <ranges>

#include "drawing_io.h"
#include "length.h"
#include "svg_write.h"

namespace tool {

namespace {

struct Options : DrawingOptions {
  double x = 0, y = 0;
  Length radius;
};

struct Hit {
  const Element* element = nullptr;
  /// The node, or -1 for a hit on a segment.
  int node = -1;
  Lumo::CurvePosition position;
  DPoint point{0, 0};
  double distance = 0;
};

/// The on-curve node nearest to the query within the radius; of equally near ones the first.
bool HitNode(const Path& path, DPoint query, double radius, Hit& hit) {
  double nearest = radius;
  for (std::size_t i = 0; i < path.GetPointCount(); ++i) {
    if (!path.GetNodeType(i).IsOnCurve()) continue;
    const double distance = TavMath::Distance(path.GetPoint(i), query);
    if (!(distance <= nearest) || (hit.node >= 0 && distance == nearest)) continue;
    nearest = distance;
    hit.node = static_cast<int>(i);
    hit.point = path.GetPoint(i);
    hit.distance = distance;
  }
  return hit.node >= 0;
}

bool HitSegment(const Path& path, DPoint query, double radius, Hit& hit) {
  Path::Closest closest;
  if (!path.FindClosestPoint(query, closest)) return false;
  hit.position = closest.position;
  hit.point = closest.point;
  hit.distance = std::sqrt(closest.distanceSqrd);
  return hit.distance <= radius;
}

/// Elements drawn later lie above. In one element a node is preferred to the segments that end there.
Hit Find(const Document& document, DPoint query, double radius) {
  for (const Element& element : document.elements | std::views::reverse) {
    Hit hit;
    if (HitNode(element.path, query, radius, hit) || HitSegment(element.path, query, radius, hit)) {
      hit.element = &element;
      return hit;
    }
  }
  return {};
}

/// The drawing in grey, what was hit in red, and where.
void Draw(const Document& document, const Hit& hit, const std::string& output) {
  constexpr double kDot = 0.006;
  SvgWriter writer(document);
  writer.OpenGroup({{"fill", "none"}, {"stroke", "#777"}, {"stroke-width", "0.3%"}});
  for (const Element& element : document.elements)
    writer.AddPath(element.path,
                   &element == hit.element ? Presentation{{"stroke", "#c0392b"}} : Presentation{},
                   element.id);
  writer.CloseGroup();
  if (hit.element) writer.AddDot(hit.point, kDot, {{"fill", "#c0392b"}});
  writer.Save(output);
}

int Run(const Options& options) {
  const Document document = Read(options, options.file);
  const DPoint query = document.ToUnits(DPoint{options.x, options.y});
  const Hit hit = Find(document, query, options.radius.ToUnits(document));
  const bool onNode = hit.node >= 0;
  const double distance = document.ToUser(hit.distance);
  if (!options.output.empty()) Draw(document, hit, options.output);
  if (options.json) {
    Json json = {{"file", document.file}, {"query", {options.x, options.y}}, {"hit", nullptr}};
    if (hit.element) {
      Json& entry = json["hit"] = {{"id", hit.element->id}, {"kind", onNode ? "node" : "segment"}};
      if (onNode) {
        entry["node"] = hit.node;
      } else {
        entry["firstNode"] = hit.position.firstNode;
        entry["lastNode"] = hit.position.lastNode;
        entry["t"] = hit.position.t;
      }
      entry["point"] = JsonPoint(document, hit.point);
      entry["distance"] = distance;
    }
    PrintJson(json);
  } else if (hit.element && options.PrintsTable()) {
    const DPoint p = document.ToUser(hit.point);
    Table table({"id", "hit", "node", "t", "x", "y", "distance"});
    table.Add({hit.element->id, onNode ? "node" : "segment",
               onNode ? std::to_string(hit.node)
                      : std::to_string(hit.position.firstNode) + "-" + std::to_string(hit.position.lastNode),
               onNode ? "" : Figure(hit.position.t), Figure(p.x), Figure(p.y), Figure(distance)});
    table.Print();
  }
  return hit.element ? kDone : kNothing;
}

}  // namespace

void AddHit(CLI::App& program, int& exit) {
  auto* command =
      program.add_subcommand("hit", "What lies at X Y: the topmost element, its node or segment there");
  const auto options = std::make_shared<Options>();
  AddDrawing(*command, *options, Product::figures, "The drawing with what was hit in red");
  AddNumber(*command, "X", options->x, "Horizontal position")->required();
  AddNumber(*command, "Y", options->y, "Vertical position, downwards")->required();
  AddLength(*command, "--radius", options->radius, "How far away still counts", Sign::notNegative)
      ->required();
  command->footer("Exit code 1 when nothing is hit.\nExample: lumo hit drawing.svg 12.5 40 --radius 2");
  OnRun(*command, options, exit, Run);
}

}  // namespace tool
