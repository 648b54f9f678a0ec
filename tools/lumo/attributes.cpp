#include "attributes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>

#include "input_error.h"
#include "scanner.h"

namespace tool {

namespace {

using TavMath::MATRIX;

constexpr double kUnitsPerInch = 96;
/// The size of letters where no style says otherwise.
constexpr double kFontSize = 16;

struct Unit {
  std::string_view name;
  double size;
};
constexpr Unit kUnits[] = {{"", 1},
                           {"px", 1},
                           {"pt", kUnitsPerInch / 72},
                           {"pc", kUnitsPerInch / 6},
                           {"mm", kUnitsPerInch / 25.4},
                           {"cm", kUnitsPerInch / 2.54},
                           {"in", kUnitsPerInch},
                           {"q", kUnitsPerInch / 101.6},
                           {"em", kFontSize},
                           {"rem", kFontSize},
                           {"ex", kFontSize / 2},
                           {"ch", kFontSize / 2}};

double Radians(double degrees) { return degrees * (std::numbers::pi / 180); }

/// A turn by degrees. Multiples of a right angle are exact, so that turned squares stay squares.
MATRIX Rotation(double degrees) {
  const double turns = std::fmod(degrees, 360.0);
  double s = std::sin(Radians(turns)), c = std::cos(Radians(turns));
  if (std::fmod(turns, 90.0) == 0) {
    s = std::round(s);
    c = std::round(c);
  }
  return {c, s, -s, c, 0, 0};
}

/// The numbers between the parentheses of a transform function; returns how many.
int Arguments(Scanner& scanner, std::array<double, 6>& values) {
  std::size_t count = 0;
  scanner.SkipSpace();
  scanner.Expect('(');
  scanner.SkipSpace();
  while (scanner.Peek() != ')') {
    if (count == values.size()) scanner.Fail("')'");
    values[count++] = scanner.Number();
    scanner.SkipSeparator();
  }
  scanner.Skip();
  return static_cast<int>(count);
}

MATRIX Function(Scanner& scanner) {
  const std::size_t begin = scanner.Offset();
  const std::string name(scanner.Name());
  std::array<double, 6> v{};
  const int n = Arguments(scanner, v);
  if (name == "matrix" && n == 6) return {v[0], v[1], v[2], v[3], v[4], v[5]};
  if (name == "translate" && (n == 1 || n == 2)) return {1, 0, 0, 1, v[0], v[1]};
  if (name == "scale" && (n == 1 || n == 2)) return {v[0], 0, 0, n == 1 ? v[0] : v[1], 0, 0};
  if (name == "rotate" && n == 1) return Rotation(v[0]);
  if (name == "rotate" && n == 3) {
    const MATRIX about = Concatenate(MATRIX{1, 0, 0, 1, -v[1], -v[2]}, Rotation(v[0]));
    return Concatenate(about, MATRIX{1, 0, 0, 1, v[1], v[2]});
  }
  if (name == "skewX" && n == 1) return {1, 0, std::tan(Radians(v[0])), 1, 0, 0};
  if (name == "skewY" && n == 1) return {1, std::tan(Radians(v[0])), 0, 1, 0, 0};
  throw InputError("no transform is called " + name + " and has " + std::to_string(n) + " numbers", begin);
}

std::string Lowered(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return result;
}

}  // namespace

double Viewport::Of(Extent extent) const {
  switch (extent) {
    case Extent::width:
      return width;
    case Extent::height:
      return height;
    case Extent::diagonal:
      return std::hypot(width, height) / std::numbers::sqrt2;
  }
  return 0;
}

std::string UnitOf(std::string_view length) {
  const auto last = length.find_last_of("0123456789.");
  if (last == std::string_view::npos) return {};
  const std::string_view rest = length.substr(last + 1);
  return Lowered(rest.substr(0, rest.find(' ')));
}

double ParseLength(std::string_view text, const Viewport& viewport, Extent extent) {
  Scanner scanner(text);
  scanner.SkipSpace();
  const double value = scanner.Number();
  const std::size_t place = scanner.Offset();
  std::string unit = Lowered(scanner.Name());
  if (unit.empty() && scanner.Peek() == '%') {
    scanner.Skip();
    unit.push_back('%');
  }
  scanner.SkipSpace();
  if (!scanner.AtEnd()) scanner.Fail("the end of a length");
  for (const Unit& known : kUnits) {
    if (unit == known.name) return value * known.size;
  }
  if (unit == "%") return value / 100 * viewport.Of(extent);
  if (unit == "vw") return value / 100 * viewport.width;
  if (unit == "vh") return value / 100 * viewport.height;
  throw InputError("not a unit: " + unit, place);
}

MATRIX ParseTransform(std::string_view text) {
  MATRIX result;
  Scanner scanner(text);
  scanner.SkipSpace();
  if (scanner.Rest() == "none") return result;
  while (!scanner.AtEnd()) {
    result = Concatenate(Function(scanner), result);
    scanner.SkipSeparator();
  }
  return result;
}

MATRIX ViewBoxTransform(const double viewBox[4], double x, double y, double width, double height,
                        std::string_view preserveAspectRatio) {
  double sx = width / viewBox[2];
  double sy = height / viewBox[3];
  const auto has = [&](std::string_view word) {
    return preserveAspectRatio.find(word) != std::string_view::npos;
  };
  double alignX = 0, alignY = 0;
  if (!has("none")) {
    sx = sy = has("slice") ? std::max(sx, sy) : std::min(sx, sy);
    alignX = has("xMin") ? 0 : has("xMax") ? 1 : 0.5;
    alignY = has("YMin") ? 0 : has("YMax") ? 1 : 0.5;
  }
  return {sx,
          0,
          0,
          sy,
          x - viewBox[0] * sx + alignX * (width - viewBox[2] * sx),
          y - viewBox[1] * sy + alignY * (height - viewBox[3] * sy)};
}

}  // namespace tool
