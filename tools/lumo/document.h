#pragma once
// A drawing as the subcommands see it: drawn elements in document order, each one path.

#include <string>
#include <utility>
#include <vector>

#include "lumo/polycurve.h"

namespace tool {

using TavMath::DPoint;
using Path = Lumo::PolycurveT<DPoint>;

/// Presentation attributes by name, as the drawing gives them, inherited ones included.
using Presentation = std::vector<std::pair<std::string, std::string>>;

struct Element {
  /// The element's id, or its kind and its number among the drawn elements ("path3").
  std::string id;
  /// In document units.
  Path path;
  Presentation presentation;
};

/// The engine's tolerances suit fine units, some millions over a drawing. SVG's user units are of any size,
/// from a fraction of a drawing to a fraction of a millimetre, so each drawing is scaled until its larger
/// side measures between 2^20 and 2^21 document units. The scale is a power of two: going there and back
/// changes no bit.
struct Document {
  std::string file;
  std::vector<Element> elements;
  /// Left, top, width and height of what the drawing shows, in user units.
  double viewBox[4] = {0, 0, 0, 0};
  double unitsPerUser = 1;
  /// User units of one CSS pixel, 1/96 inch: what lengths with a unit on the command line are measured by.
  double userPerPixel = 1;
  /// The unit in which the drawing states its width or height ("mm", or nothing for pixels) and the user
  /// units of one; 0 when it states neither.
  std::string sizeUnit;
  double userPerSizeUnit = 0;

  double ToUser(double length) const { return length / unitsPerUser; }
  double ToUnits(double length) const { return length * unitsPerUser; }
  DPoint ToUser(DPoint p) const { return {p.x / unitsPerUser, p.y / unitsPerUser}; }
  DPoint ToUnits(DPoint p) const { return {p.x * unitsPerUser, p.y * unitsPerUser}; }
};

/// A presentation attribute of an element; `missing` when it has none.
std::string Attribute(const Presentation& presentation, const std::string& name, const std::string& missing);

/// The power of two by which a drawing with this larger side is scaled.
double UnitsPerUser(double side);

}  // namespace tool
