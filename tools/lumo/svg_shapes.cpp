#include "svg_shapes.h"

#include <algorithm>
#include <optional>
#include <string>

#include "input_error.h"
#include "path_data.h"
#include "scanner.h"

namespace tool {

namespace {

/// The attributes of one element, as lengths.
class Lengths {
 public:
  Lengths(const AttributeGetter& attribute, const Viewport& viewport)
      : attribute_(attribute), viewport_(viewport) {}

  /// Nothing when the attribute is missing or "auto".
  std::optional<double> Optional(const char* name, Extent extent) const {
    const std::string_view value = attribute_(name);
    if (value.empty() || value == "auto") return std::nullopt;
    try {
      return ParseLength(value, viewport_, extent);
    } catch (const InputError& error) {
      throw InputError(std::string(name) + ", " + error.what());
    }
  }
  double operator()(const char* name, Extent extent) const { return Optional(name, extent).value_or(0); }
  /// A length that must not be negative.
  std::optional<double> Size(const char* name, Extent extent) const {
    const auto value = Optional(name, extent);
    if (value && *value < 0) throw InputError(std::string(name) + " is negative");
    return value;
  }

 private:
  const AttributeGetter& attribute_;
  const Viewport& viewport_;
};

void BuildRect(const Lengths& length, PathBuilder& path) {
  const double x = length("x", Extent::width), y = length("y", Extent::height);
  const double width = length.Size("width", Extent::width).value_or(0);
  const double height = length.Size("height", Extent::height).value_or(0);
  if (width == 0 || height == 0) return;
  const auto givenX = length.Size("rx", Extent::width), givenY = length.Size("ry", Extent::height);
  const double rx = std::min(givenX.value_or(givenY.value_or(0)), width / 2);
  const double ry = std::min(givenY.value_or(givenX.value_or(0)), height / 2);
  const double right = x + width, bottom = y + height;
  if (rx == 0 || ry == 0) {
    path.MoveTo({x, y});
    path.LineTo({right, y});
    path.LineTo({right, bottom});
    path.LineTo({x, bottom});
    return path.Close();
  }
  // Straight sides that the corners leave nothing of are left out.
  const auto side = [&](DPoint to) {
    if (path.Current() != to) path.LineTo(to);
  };
  path.MoveTo({x + rx, y});
  side({right - rx, y});
  path.ArcTo(rx, ry, 0, false, true, {right, y + ry});
  side({right, bottom - ry});
  path.ArcTo(rx, ry, 0, false, true, {right - rx, bottom});
  side({x + rx, bottom});
  path.ArcTo(rx, ry, 0, false, true, {x, bottom - ry});
  side({x, y + ry});
  path.ArcTo(rx, ry, 0, false, true, {x + rx, y});
  path.Close();
}

void BuildEllipse(const Lengths& length, bool circle, PathBuilder& path) {
  const DPoint center{length("cx", Extent::width), length("cy", Extent::height)};
  double rx = 0, ry = 0;
  if (circle) {
    rx = ry = length.Size("r", Extent::diagonal).value_or(0);
  } else {
    const auto givenX = length.Size("rx", Extent::width), givenY = length.Size("ry", Extent::height);
    rx = givenX.value_or(givenY.value_or(0));
    ry = givenY.value_or(givenX.value_or(0));
  }
  if (rx > 0 && ry > 0) path.Ellipse(center, rx, ry);
}

void BuildPolyline(std::string_view points, bool closed, PathBuilder& path) {
  Scanner scanner(points);
  scanner.SkipSpace();
  if (scanner.AtEnd()) return;
  bool first = true;
  do {
    const double x = scanner.Number();
    scanner.SkipSeparator();
    const DPoint p{x, scanner.Number()};
    first ? path.MoveTo(p) : path.LineTo(p);
    first = false;
    scanner.SkipSeparator();
  } while (!scanner.AtEnd());
  if (closed) path.Close();
}

}  // namespace

bool IsShape(std::string_view name) {
  return name == "path" || name == "rect" || name == "circle" || name == "ellipse" || name == "line" ||
         name == "polyline" || name == "polygon";
}

void BuildShape(std::string_view name, const AttributeGetter& attribute, const Viewport& viewport,
                PathBuilder& path) {
  const Lengths length(attribute, viewport);
  if (name == "rect") return BuildRect(length, path);
  if (name == "circle" || name == "ellipse") return BuildEllipse(length, name == "circle", path);
  if (name == "line") {
    path.MoveTo({length("x1", Extent::width), length("y1", Extent::height)});
    return path.LineTo({length("x2", Extent::width), length("y2", Extent::height)});
  }
  const char* const source = name == "path" ? "d" : "points";
  try {
    if (name == "path") return ParsePathData(attribute(source), path);
    BuildPolyline(attribute(source), name == "polygon", path);
  } catch (const InputError& error) {
    throw InputError(std::string(source) + ", " + error.what());
  }
}

}  // namespace tool
