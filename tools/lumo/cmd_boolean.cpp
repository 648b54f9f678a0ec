// lumo boolean: union, intersection, difference of filled drawings.

#include <memory>

#include "commands.h"
#include "input_error.h"
#include "lumo/boolean.h"
#include "svg_read.h"
#include "svg_write.h"

namespace tool {

namespace {

using Lumo::FillRule;

struct Options {
  std::string first, second;
  std::string rule;
  std::string output;
};

FillRule RuleOf(const Options& options, const Element& element) {
  const std::string name =
      options.rule.empty() ? Attribute(element.presentation, "fill-rule", "nonzero") : options.rule;
  return name == "evenodd" ? FillRule::evenOdd : name == "positive" ? FillRule::positive : FillRule::nonZero;
}

/// What each element fills, in the units of the first drawing.
std::vector<Path> Shapes(const Options& options, const Document& document, double unitsPerUser) {
  std::vector<Path> shapes;
  const double scale = unitsPerUser / document.unitsPerUser;
  for (const Element& element : document.elements) {
    Path shape = element.path;
    const auto nodes = shape.GetBuffer();
    for (std::size_t i = 0; i < nodes.count; ++i) nodes.points[i] *= scale;
    shape.ReleaseBuffer();
    shapes.push_back(Lumo::Simplify(shape, RuleOf(options, element)));
  }
  return shapes;
}

using Operation = Path (*)(const std::vector<Path>&);

/// Two drawings: each is the union of its elements. One drawing: the operation among its elements.
int Combine(const Options& options, Operation operation) {
  const Document first = ReadSvg(options.first);
  std::vector<Path> operands = Shapes(options, first, first.unitsPerUser);
  if (!options.second.empty()) {
    const Document second = ReadSvg(options.second);
    operands = {Lumo::Union(operands), Lumo::Union(Shapes(options, second, first.unitsPerUser))};
  }
  const Path result = operation(operands);
  SvgWriter writer(first);
  writer.ShowAll();
  if (!result.IsEmpty()) {
    const std::string fill =
        first.elements.empty() ? "black" : Attribute(first.elements[0].presentation, "fill", "black");
    writer.AddPath(result, {{"fill", fill == "none" ? "black" : fill}}, "result");
  }
  writer.Save(options.output);
  return result.IsEmpty() ? kNothing : kDone;
}

int SimplifyEach(const Options& options) {
  Document document = ReadSvg(options.first);
  bool any = false;
  for (Element& element : document.elements) {
    element.path = Lumo::Simplify(element.path, RuleOf(options, element));
    any = any || !element.path.IsEmpty();
  }
  std::erase_if(document.elements, [](const Element& element) { return element.path.IsEmpty(); });
  SaveDocument(document, options.output);
  return any ? kDone : kNothing;
}

void AddOperation(CLI::App& boolean, const std::string& name, const char* what, Operation operation,
                  int& exit) {
  auto* command = boolean.add_subcommand(name, what);
  const auto options = std::make_shared<Options>();
  command->add_option("A.svg", options->first, "The drawing; - for standard input")->required();
  if (operation)
    command->add_option("B.svg", options->second,
                        "The other drawing; without it, the elements of A are combined");
  command
      ->add_option("--rule", options->rule,
                   "Fill rule of all elements, instead of their own: nonzero, evenodd or positive")
      ->check(CLI::IsMember({"nonzero", "evenodd", "positive"}));
  AddOutput(*command, options->output);
  command->footer("Exit code 1 when nothing is left.\nExample: lumo boolean " + name +
                  (operation ? " a.svg b.svg -o result.svg" : " drawing.svg --rule evenodd -o result.svg"));
  command->callback([options, operation, &exit] {
    exit = operation ? Combine(*options, operation) : SimplifyEach(*options);
  });
}

}  // namespace

void AddBoolean(CLI::App& program, int& exit) {
  auto* boolean =
      program.add_subcommand("boolean", "Unites, intersects, subtracts filled drawings; curves stay curves");
  boolean->require_subcommand(1);
  boolean->footer("Example: lumo boolean subtract plate.svg holes.svg -o result.svg");
  AddOperation(
      *boolean, "union", "What either fills", [](const std::vector<Path>& p) { return Lumo::Union(p); },
      exit);
  AddOperation(
      *boolean, "intersect", "What both fill", [](const std::vector<Path>& p) { return Lumo::Intersect(p); },
      exit);
  AddOperation(
      *boolean, "subtract", "What A fills but B does not",
      [](const std::vector<Path>& p) { return Lumo::Subtract(p); }, exit);
  AddOperation(
      *boolean, "xor", "What one fills but not both", [](const std::vector<Path>& p) { return Lumo::Xor(p); },
      exit);
  AddOperation(*boolean, "simplify", "Outlines that do not cross themselves, element by element", nullptr,
               exit);
}

}  // namespace tool
