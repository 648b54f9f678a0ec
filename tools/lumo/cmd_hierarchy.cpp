// lumo hierarchy: which outline lies in which.

#include <array>

#include "drawing_io.h"
#include "lumo/subpath_hierarchy.h"
#include "svg_write.h"

namespace tool {

namespace {

/// One subpath of the drawing, in the order of a walk from the outside in.
struct Entry {
  const Lumo::SubpathTreeNode* node;
  int depth;
  int parent;
};

/// The tree as a list: nests can be deeper than a call stack.
std::vector<Entry> Walk(const Lumo::SubpathHierarchy& tree) {
  std::vector<Entry> list;
  std::vector<Entry> pending;
  const auto push = [&](const Lumo::SubpathTreeNode& node, int depth, int parent) {
    for (std::size_t k = node.GetNumberOfChildren(); k-- > 0;)
      pending.push_back({&node.GetChild(k), depth, parent});
  };
  push(tree, 0, -1);
  while (!pending.empty()) {
    const Entry entry = pending.back();
    pending.pop_back();
    push(*entry.node, entry.depth + 1, static_cast<int>(list.size()));
    list.push_back(entry);
  }
  return list;
}

/// What the entry is a part of.
const Element& ElementOf(const Document& document, const Entry& entry) {
  return document.elements.at(static_cast<std::size_t>(entry.node->GetCurveID()));
}
std::ptrdiff_t FirstNode(const Document& document, const Entry& entry) {
  return entry.node->GetPoints() - ElementOf(document, entry).path.GetPoints();
}
double UserArea(const Document& document, double area) {
  return area / document.unitsPerUser / document.unitsPerUser;
}

void PrintAsJson(const Document& document, const std::vector<Entry>& list) {
  Json subpaths = Json::array();
  for (const Entry& entry : list) {
    subpaths.push_back({{"id", ElementOf(document, entry).id},
                        {"firstNode", FirstNode(document, entry)},
                        {"nodes", entry.node->GetNumberOfPoints()},
                        {"closed", entry.node->GetNodes()[0].IsClosed()},
                        {"depth", entry.depth},
                        {"parent", entry.parent < 0 ? Json(nullptr) : Json(entry.parent)},
                        {"area", UserArea(document, entry.node->GetArea())},
                        {"netArea", UserArea(document, entry.node->GetAreaWithChildren())}});
  }
  PrintJson({{"file", document.file}, {"subpaths", std::move(subpaths)}});
}

void PrintAsTable(const Document& document, const std::vector<Entry>& list) {
  // A deep nest is not drawn any further to the right.
  constexpr int kWidestIndent = 40;
  Table table({"subpath", "first node", "nodes", "closed", "area", "net area"});
  for (const Entry& entry : list) {
    table.Add({std::string(static_cast<std::size_t>(2 * std::min(entry.depth, kWidestIndent)), ' ') +
                   ElementOf(document, entry).id,
               std::to_string(FirstNode(document, entry)), std::to_string(entry.node->GetNumberOfPoints()),
               entry.node->GetNodes()[0].IsClosed() ? "yes" : "no",
               Figure(UserArea(document, entry.node->GetArea())),
               Figure(UserArea(document, entry.node->GetAreaWithChildren()))});
  }
  table.Print();
}

/// Each subpath in the colour of its depth, the inner ones on top.
void Draw(const Document& document, const std::vector<Entry>& list, const std::string& output) {
  constexpr std::array kColours = {"#264653", "#2a9d8f", "#e9c46a", "#f4a261", "#e76f51", "#9d4edd"};
  SvgWriter writer(document);
  writer.OpenGroup({{"stroke", "#222"}, {"stroke-width", "0.2%"}});
  for (const Entry& entry : list) {
    const Path outline(entry.node->GetPoints(), entry.node->GetNodes(),
                       static_cast<std::size_t>(entry.node->GetNumberOfPoints()));
    const bool closed = entry.node->GetNodes()[0].IsClosed();
    writer.AddPath(
        outline,
        {{"fill", closed ? kColours[static_cast<std::size_t>(entry.depth) % kColours.size()] : "none"}});
  }
  writer.CloseGroup();
  writer.Save(output);
}

int Run(const DrawingOptions& options) {
  const Document document = Read(options, options.file);
  std::vector<Lumo::ConstDrawCurveT<DPoint>> curves;
  for (const Element& element : document.elements) {
    curves.push_back({element.path.GetPoints(), element.path.GetNodeTypes(), element.path.GetPointCount()});
  }
  Lumo::SubpathHierarchy tree;
  {
    const Stage stage(options, "sort");
    tree.BuildSubpathHierarchy(curves, false, false);
  }
  const std::vector<Entry> list = Walk(tree);
  if (!options.output.empty()) Draw(document, list, options.output);
  if (options.json) PrintAsJson(document, list);
  if (options.PrintsTable()) PrintAsTable(document, list);
  return list.empty() ? kNothing : kDone;
}

}  // namespace

void AddHierarchy(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("hierarchy", "Which outline lies in which");
  const auto options = std::make_shared<DrawingOptions>();
  AddDrawing(*command, *options, Product::figures, "A drawing coloured by depth");
  command->footer(
      "The outlines of all elements are sorted into one tree. Areas are signed as by lumo info; the net area "
      "adds those of everything inside. Exit code 1 when the drawing has no outline.\n"
      "Example: lumo hierarchy drawing.svg -o coloured.svg");
  OnRun(*command, options, exit, Run);
}

}  // namespace tool
