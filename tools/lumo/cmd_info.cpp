// lumo info: what is in a drawing.

#include <iostream>
#include <memory>

#include "commands.h"
#include "lumo/repair.h"
#include "report.h"
#include "svg_read.h"

namespace tool {

namespace {

/// The figures of one element, in user units.
struct Facts {
  std::size_t subpaths = 0, open = 0, closed = 0, nodes = 0, lines = 0, curves = 0;
  double length = 0, area = 0;
  TavMath::BoundsT<double> box;
  bool valid = false;
};

Facts Measure(const Document& document, const Path& path) {
  Facts facts;
  facts.nodes = path.GetPointCount();
  facts.subpaths = path.GetSubpathCount();
  for (std::size_t k = 0; k < facts.subpaths; ++k) ++(path.IsClosed(k) ? facts.closed : facts.open);
  for (std::size_t i = 0; i < facts.nodes; ++i) {
    facts.lines += path.GetNodeType(i).IsLine();
    facts.curves += path.GetNodeType(i).IsCurve();
  }
  const double scale = document.unitsPerUser;
  facts.length = path.GetLength() / scale;
  facts.area = path.GetArea() / scale / scale;
  const auto box = path.GetTightBBox();
  facts.box = {box.minx / scale, box.miny / scale, box.maxx / scale, box.maxy / scale};
  facts.valid = Lumo::IsValidCurve(path.GetNodeTypes(), path.GetPointCount());
  return facts;
}

void PrintAsTable(const Document& document) {
  Table table({"id", "subpaths", "open", "closed", "nodes", "lines", "curves", "length", "area", "left",
               "top", "right", "bottom", "valid"});
  for (const Element& element : document.elements) {
    const Facts f = Measure(document, element.path);
    table.Add({element.id, Figure(f.subpaths), Figure(f.open), Figure(f.closed), Figure(f.nodes),
               Figure(f.lines), Figure(f.curves), Figure(f.length), Figure(f.area), Figure(f.box.minx),
               Figure(f.box.miny), Figure(f.box.maxx), Figure(f.box.maxy), f.valid ? "yes" : "no"});
  }
  table.Print();
}

void PrintAsJson(const Document& document) {
  Json paths = Json::array();
  for (const Element& element : document.elements) {
    const Facts f = Measure(document, element.path);
    paths.push_back({{"id", element.id},
                     {"subpaths", f.subpaths},
                     {"open", f.open},
                     {"closed", f.closed},
                     {"nodes", f.nodes},
                     {"lines", f.lines},
                     {"curves", f.curves},
                     {"length", f.length},
                     {"area", f.area},
                     {"bbox", {f.box.minx, f.box.miny, f.box.maxx, f.box.maxy}},
                     {"valid", f.valid}});
  }
  PrintJson({{"file", document.file}, {"paths", paths}});
}

}  // namespace

void AddInfo(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("info", "Counts and measures of every drawn element");
  const auto options = std::make_shared<DrawingOptions>();
  AddDrawing(*command, *options);
  command->footer(
      "Area is signed: negative when the outline runs clockwise on screen; open subpaths enclose none.\n"
      "Example: lumo info drawing.svg --json");
  command->callback([options, &exit] {
    const Document document = ReadSvg(options->file);
    options->json ? PrintAsJson(document) : PrintAsTable(document);
    exit = kDone;
  });
}

}  // namespace tool
