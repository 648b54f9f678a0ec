// lumo info: what is in a drawing.

#include "drawing_io.h"
#include "figures.h"
#include "svg_write.h"

namespace tool {

namespace {

std::vector<Figures> MeasureAll(const DrawingOptions& options, const Document& document) {
  Stage stage(options, "measure", document.elements.size());
  std::vector<Figures> list;
  for (const Element& element : document.elements) {
    list.push_back(Measure(document, element.path));
    stage.Step();
  }
  return list;
}

void PrintAsTable(const Document& document, const std::vector<Figures>& list) {
  Table table({"id", "subpaths", "open", "closed", "nodes", "lines", "curves", "length", "area", "left",
               "top", "right", "bottom", "valid"});
  for (std::size_t k = 0; k < list.size(); ++k) {
    const Figures& f = list[k];
    table.Add({document.elements[k].id, Figure(f.subpaths), Figure(f.open), Figure(f.closed), Figure(f.nodes),
               Figure(f.lines), Figure(f.curves), Figure(f.length), Figure(f.area), Figure(f.box.minx),
               Figure(f.box.miny), Figure(f.box.maxx), Figure(f.box.maxy), f.valid ? "yes" : "no"});
  }
  table.Print();
}

void PrintAsJson(const Document& document, const std::vector<Figures>& list) {
  Json paths = Json::array();
  for (std::size_t k = 0; k < list.size(); ++k)
    paths.push_back(JsonFigures(document.elements[k].id, list[k]));
  PrintJson({{"file", document.file}, {"paths", std::move(paths)}});
}

/// The outlines as a node tool shows them: nodes as dots, handles as lines with smaller dots at their ends.
void DrawNodes(const Document& document, const std::string& output) {
  constexpr double kNode = 0.004, kHandle = 0.0025;
  SvgWriter writer(document);
  writer.OpenGroup({{"fill", "none"}, {"stroke", "#777"}, {"stroke-width", "0.3%"}});
  for (const Element& element : document.elements) writer.AddPath(element.path, {}, element.id);
  writer.CloseGroup();
  for (const Element& element : document.elements) {
    const Path& path = element.path;
    Path handles;
    for (std::size_t i = 3; i < path.GetPointCount(); ++i) {
      if (!path.GetNodeType(i).IsCurve()) continue;
      for (const std::size_t node : {i - 3, i}) {
        handles.MoveTo(path.GetPoint(node));
        handles.LineTo(path.GetPoint(node == i ? i - 1 : i - 2));
      }
    }
    writer.AddPath(handles, {{"fill", "none"}, {"stroke", "#2471a3"}, {"stroke-width", "0.15%"}});
    for (std::size_t i = 0; i < path.GetPointCount(); ++i) {
      const bool node = path.GetNodeType(i).IsOnCurve();
      writer.AddDot(path.GetPoint(i), node ? kNode : kHandle, {{"fill", node ? "#c0392b" : "#2471a3"}});
    }
  }
  writer.Save(output);
}

int Run(const DrawingOptions& options) {
  const Document document = Read(options, options.file);
  const std::vector<Figures> list = MeasureAll(options, document);
  if (!options.output.empty()) DrawNodes(document, options.output);
  if (options.json) PrintAsJson(document, list);
  if (options.PrintsTable()) PrintAsTable(document, list);
  return kDone;
}

}  // namespace

void AddInfo(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("info", "Counts and measures of every drawn element");
  const auto options = std::make_shared<DrawingOptions>();
  AddDrawing(*command, *options, Product::figures, "A drawing of the outlines with their nodes and handles");
  command->footer(
      "Area is signed: negative when the outline runs clockwise on screen; open subpaths enclose none.\n"
      "Example: lumo info drawing.svg --json");
  OnRun(*command, options, exit, Run);
}

}  // namespace tool
