// lumo repair: mends what exports and careless edits leave behind.

#include <memory>

#include "commands.h"
#include "lumo/repair.h"
#include "report.h"
#include "svg_read.h"
#include "svg_write.h"

namespace tool {

namespace {

struct Options : DrawingOptions {
  bool report = false;
  std::string output;
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
  Document document = ReadSvg(options.file);
  std::vector<Mended> list;
  for (Element& element : document.elements) list.push_back(Mend(element));
  std::erase_if(document.elements, [](const Element& element) { return element.path.IsEmpty(); });
  SaveDocument(document, options.output);
  if (options.json) {
    PrintAsJson(document, list);
  } else if (options.report) {
    PrintAsTable(list);
  }
  return list.empty() ? kNothing : kDone;
}

}  // namespace

void AddRepair(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("repair", "Mends what exports and careless edits leave behind");
  const auto options = std::make_shared<Options>();
  AddDrawing(*command, *options);
  command->add_flag("--report", options->report, "Print what was mended, element by element");
  AddOutput(*command, options->output);
  command->footer(
      "Takes out starts without a path and segments shorter than a hundred-thousandth of the drawing, sets "
      "handles that\n"
      "lie on their node, and marks smooth nodes. Sound elements stay as they are.\n"
      "Example: lumo repair drawing.svg --report -o mended.svg");
  command->callback([options, &exit] { exit = Run(*options); });
}

}  // namespace tool
