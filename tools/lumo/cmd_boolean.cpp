// lumo boolean: union, intersection, difference of filled drawings.

#include "cli_model.h"
#include "drawing_io.h"
#include "lumo/boolean.h"

namespace tool {

namespace {

using Lumo::FillRule;

using Operation = Path (*)(const std::vector<Path>&);

struct Options : DrawingsOptions {
  std::string rule;
  /// Null for simplify.
  Operation operation = nullptr;
};

FillRule RuleOf(const Options& options, const Element& element) {
  const std::string name =
      options.rule.empty() ? Attribute(element.presentation, "fill-rule", "nonzero") : options.rule;
  return name == "evenodd" ? FillRule::evenOdd : name == "positive" ? FillRule::positive : FillRule::nonZero;
}

/// What each element fills, in the units of the first drawing.
std::vector<Path> Shapes(const Options& options, const Document& document, double unitsPerUser) {
  std::vector<Path> shapes;
  Stage stage(options, "simplify " + document.file, document.elements.size());
  const double scale = unitsPerUser / document.unitsPerUser;
  for (const Element& element : document.elements) {
    Path shape = element.path;
    const auto nodes = shape.GetBuffer();
    for (std::size_t i = 0; i < nodes.count; ++i) nodes.points[i] *= scale;
    shape.ReleaseBuffer();
    shapes.push_back(Lumo::Simplify(shape, RuleOf(options, element)));
    stage.Step();
  }
  return shapes;
}

/// Two drawings: each is the union of its elements. One drawing: the operation among its elements.
int Combine(const Options& options) {
  Document first = Read(options, options.first);
  std::vector<Path> operands = Shapes(options, first, first.unitsPerUser);
  if (!options.second.empty()) {
    const Document second = Read(options, options.second);
    operands = {Lumo::Union(operands), Lumo::Union(Shapes(options, second, first.unitsPerUser))};
  }
  Element result;
  result.id = "result";
  {
    const Stage stage(options, "combine");
    result.path = options.operation(operands);
  }
  const std::string fill =
      first.elements.empty() ? "black" : Attribute(first.elements[0].presentation, "fill", "black");
  result.presentation = {{"fill", fill == "none" ? "black" : fill}};
  first.elements.clear();
  const bool any = !result.path.IsEmpty();
  if (any) first.elements.push_back(std::move(result));
  Deliver(options, first, true);
  return any ? kDone : kNothing;
}

int SimplifyEach(const Options& options) {
  Document document = Read(options, options.first);
  const std::vector<Path> shapes = Shapes(options, document, document.unitsPerUser);
  for (std::size_t k = 0; k < shapes.size(); ++k) document.elements[k].path = shapes[k];
  std::erase_if(document.elements, [](const Element& element) { return element.path.IsEmpty(); });
  Deliver(options, document);
  return document.elements.empty() ? kNothing : kDone;
}

void AddOperation(CLI::App& boolean, const std::string& name, const char* what, Operation operation,
                  int& exit) {
  auto* command = boolean.add_subcommand(name, what);
  const auto options = std::make_shared<Options>();
  options->operation = operation;
  AddDrawings(*command, *options, Product::drawing, "The drawing of what is left",
              operation ? "without it, the elements of A are combined" : "");
  AddChoice(*command, "--rule", options->rule, {"nonzero", "evenodd", "positive"},
            "Fill rule of all elements, instead of their own");
  command->footer("Exit code 1 when nothing is left.\nExample: lumo boolean " + name +
                  (operation ? " a.svg b.svg -o result.svg" : " drawing.svg --rule evenodd -o result.svg"));
  OnRun(*command, options, exit, operation ? Combine : SimplifyEach);
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
