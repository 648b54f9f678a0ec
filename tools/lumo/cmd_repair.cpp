// lumo repair: mends what exports and careless edits leave behind.

#include <algorithm>

#include "drawing_io.h"
#include "input_error.h"
#include "lumo/repair.h"
#include "svg_write.h"

namespace tool {

namespace {

struct Options : DrawingOptions {
  bool report = false;
};

/// What was done to one element.
struct Mended {
  std::string id;
  bool wasValid, isValid;
  /// Nodes before, after starts without a path were taken out, and at the end.
  std::size_t before, withoutStrays, after;
  bool changed;
};

bool IsValid(const Path& path) { return Lumo::IsValidCurve(path.GetNodeTypes(), path.GetPointCount()); }

Mended Mend(Element& element) {
  Path& path = element.path;
  const Path source = path;
  Mended mended{element.id, IsValid(path), false, path.GetPointCount(), 0, 0, false};
  path.ScrubDanglingMoves(true);
  mended.withoutStrays = path.GetPointCount();
  path.RepairNodeTypes();
  path.RepairCurves(Lumo::CurveRepairSettings());
  mended.after = path.GetPointCount();
  mended.isValid = IsValid(path);
  mended.changed = path != source;
  return mended;
}

void PrintAsTable(const std::vector<Mended>& list) {
  Table table(
      {"id", "nodes", "strays removed", "segments' nodes removed", "valid before", "valid after", "changed"});
  const auto yes = [](bool is) { return is ? "yes" : "no"; };
  for (const Mended& m : list) {
    table.Add(
        {m.id, Figure(m.before), Figure(m.before - m.withoutStrays),
         std::to_string(static_cast<std::ptrdiff_t>(m.withoutStrays) - static_cast<std::ptrdiff_t>(m.after)),
         yes(m.wasValid), yes(m.isValid), yes(m.changed)});
  }
  table.Print();
}

void PrintAsJson(const Document& document, const std::vector<Mended>& list) {
  Json elements = Json::array();
  for (const Mended& m : list) {
    elements.push_back({{"id", m.id},
                        {"nodesBefore", m.before},
                        {"straysRemoved", m.before - m.withoutStrays},
                        {"nodesAfter", m.after},
                        {"validBefore", m.wasValid},
                        {"validAfter", m.isValid},
                        {"changed", m.changed}});
  }
  PrintJson({{"file", document.file}, {"elements", std::move(elements)}});
}

int Run(const Options& options) {
  if (options.report && options.output == "-")
    throw InputError("--report and the drawing both want standard output; give -o a file");
  Document document = Read(options, options.file);
  std::vector<Mended> list;
  {
    Stage stage(options, "repair", document.elements.size());
    for (Element& element : document.elements) {
      list.push_back(Mend(element));
      stage.Step();
    }
  }
  std::erase_if(document.elements, [](const Element& element) { return element.path.IsEmpty(); });
  if (!options.output.empty()) SaveDocument(document, options.output);
  if (options.json) PrintAsJson(document, list);
  if (options.report && !options.json) PrintAsTable(list);
  return std::ranges::any_of(list, &Mended::changed) ? kDone : kNothing;
}

}  // namespace

void AddRepair(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("repair", "Mends what exports and careless edits leave behind");
  const auto options = std::make_shared<Options>();
  AddDrawing(*command, *options, Product::drawing, "The mended drawing");
  command->add_flag("--report", options->report, "Print what was mended, element by element");
  command->footer(
      "Takes out starts without a path and segments shorter than a hundred-thousandth of the drawing, sets "
      "handles that lie on their node, and marks smooth nodes. Sound elements stay as they are. Exit code 1, "
      "and "
      "the same drawing, when there is nothing to mend.\n"
      "Example: lumo repair drawing.svg --report -o mended.svg");
  // A report is a figure like any other: it keeps the drawing from standard output.
  command->parse_complete_callback([options] {
    if (options->report) options->product = Product::figures;
  });
  OnRun(*command, options, exit, Run);
}

}  // namespace tool
