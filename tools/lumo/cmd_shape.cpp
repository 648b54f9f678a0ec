// lumo shape: a drawing of one basic shape.

#include <cmath>
#include <numbers>

#include "drawing_io.h"
#include "input_error.h"
#include "length.h"
#include "lumo/shapes.h"

namespace tool {

namespace {

struct Options : CommonOptions {
  double x = 0, y = 0, rx = 0, ry = 0, from = 0, to = 0, radius = 0;
  Lumo::RectangleCorner corner = Lumo::RectangleCorner::round;
};

/// A document in whose units a drawing of this size is as fine as any other.
Document DocumentOfSize(double side) {
  Document document;
  document.unitsPerUser = UnitsPerUser(side);
  return document;
}

int Save(const Options& options, Document document, Path path) {
  if (path.IsEmpty()) throw InputError("the shape has no extent, or a number is not finite");
  const auto box = path.GetTightBBox();
  document.viewBox[0] = document.ToUser(box.minx);
  document.viewBox[1] = document.ToUser(box.miny);
  document.viewBox[2] = document.ToUser(box.Width());
  document.viewBox[3] = document.ToUser(box.Height());
  Element element;
  element.path = std::move(path);
  document.elements.push_back(std::move(element));
  Deliver(options, document);
  return kDone;
}

int Ellipse(const Options& o, bool pie) {
  const Document document = DocumentOfSize(2 * std::max(o.rx, o.ry));
  const double radians = std::numbers::pi / 180;
  return Save(o, document,
              Path::CreateEllipse(document.ToUnits(DPoint{o.x, o.y}), document.ToUnits(o.rx),
                                  document.ToUnits(o.ry), o.from * radians, o.to * radians, pie));
}

int RunCircle(const Options& options) {
  Options ellipse = options;
  ellipse.ry = options.rx;
  return Ellipse(ellipse, false);
}
int RunEllipse(const Options& options) { return Ellipse(options, false); }
int RunPie(const Options& options) { return Ellipse(options, true); }

int RunRectangle(const Options& o) {
  const Document document = DocumentOfSize(std::max(o.rx, o.ry));
  const double width = document.ToUnits(o.rx), height = document.ToUnits(o.ry);
  Path path = o.radius > 0 ? Path::CreateRectangle(width, height, document.ToUnits(o.radius), o.corner, false)
                           : Path::CreateRectangle(width, height);
  const DPoint corner = document.ToUnits(DPoint{o.x, o.y});
  const auto nodes = path.GetBuffer();
  for (std::size_t i = 0; i < nodes.count; ++i) nodes.points[i] += corner - DPoint{0, 0};
  path.ReleaseBuffer();
  return Save(o, document, std::move(path));
}

CLI::App* AddShapeCommand(CLI::App& shape, const char* name, const char* what, Options& options) {
  auto* command = shape.add_subcommand(name, what);
  AddCommon(*command, options, Product::drawing, "The drawing of the shape");
  return command;
}

void Position(CLI::App& command, Options& options, const std::string& x, const std::string& y,
              const std::string& of) {
  AddNumber(command, x, options.x, "Horizontal position of " + of)->required();
  AddNumber(command, y, options.y, "Vertical position of " + of + ", downwards")->required();
}

}  // namespace

void AddShape(CLI::App& program, int& exit) {
  auto* shape = program.add_subcommand("shape", "Draws a circle, an ellipse, an arc, a pie or a rectangle");
  shape->require_subcommand(1);
  shape->footer("Example: lumo shape pie 50 50 40 40 -30 60 -o pie.svg");
  const auto options = std::make_shared<Options>();
  Options& o = *options;

  auto* circle = AddShapeCommand(*shape, "circle", "A circle about CX CY", o);
  Position(*circle, o, "CX", "CY", "the centre");
  AddNumber(*circle, "R", o.rx, "Radius", Sign::positive)->required();
  circle->footer("Example: lumo shape circle 50 50 20 -o circle.svg");
  OnRun(*circle, options, exit, RunCircle);

  auto* ellipse = AddShapeCommand(*shape, "ellipse", "An ellipse about CX CY", o);
  ellipse->footer("Example: lumo shape ellipse 50 50 40 20 -o ellipse.svg");
  OnRun(*ellipse, options, exit, RunEllipse);
  auto* arc = AddShapeCommand(*shape, "arc", "An open arc of an ellipse", o);
  arc->footer(
      "Angles in degrees, clockwise on screen from the right.\nExample: lumo shape arc 50 50 40 20 0 90 -o "
      "arc.svg");
  OnRun(*arc, options, exit, RunEllipse);
  auto* pie = AddShapeCommand(*shape, "pie", "A wedge of an ellipse", o);
  pie->footer(
      "Angles in degrees, clockwise on screen from the right.\nExample: lumo shape pie 50 50 40 40 -30 60 -o "
      "pie.svg");
  OnRun(*pie, options, exit, RunPie);
  for (auto* command : {ellipse, arc, pie}) {
    Position(*command, o, "CX", "CY", "the centre");
    AddNumber(*command, "RX", o.rx, "Horizontal radius", Sign::positive)->required();
    AddNumber(*command, "RY", o.ry, "Vertical radius", Sign::positive)->required();
    if (command == ellipse) continue;
    AddNumber(*command, "FROM", o.from, "Angle at which it begins")->required();
    AddNumber(*command, "TO", o.to, "Angle at which it ends")->required();
  }

  auto* rectangle = AddShapeCommand(*shape, "rect", "A rectangle with its upper left corner at X Y", o);
  Position(*rectangle, o, "X", "Y", "the upper left corner");
  AddNumber(*rectangle, "WIDTH", o.rx, "Horizontal size", Sign::positive)->required();
  AddNumber(*rectangle, "HEIGHT", o.ry, "Vertical size", Sign::positive)->required();
  AddNumber(*rectangle, "--radius", o.radius, "Size of the corners", Sign::notNegative);
  const std::map<std::string, Lumo::RectangleCorner> corners = {{"round", Lumo::RectangleCorner::round},
                                                                {"scallop", Lumo::RectangleCorner::scallop},
                                                                {"chamfer", Lumo::RectangleCorner::chamfer}};
  rectangle->add_option("--corner", o.corner, "What --radius makes of the corners")
      ->transform(CLI::CheckedTransformer(corners, CLI::ignore_case).description(""))
      ->type_name("round|scallop|chamfer");
  rectangle->footer("Example: lumo shape rect 10 10 80 50 --radius 8 --corner chamfer -o card.svg");
  OnRun(*rectangle, options, exit, RunRectangle);
}

}  // namespace tool
