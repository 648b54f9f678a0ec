#pragma once
// Lengths, and other numbers, on the command line.

#include <CLI/CLI.hpp>
#include <string>

#include "document.h"

namespace tool {

/// A number in the drawing's user units, or with one of px, pt, pc, mm, cm, in, q: then as large as that is
/// where the drawing states its size (a user unit is a pixel, 1/96 inch, where it does not); or with %: of
/// the drawing's diagonal over the square root of two, as SVG measures percentages that have no direction.
struct Length {
  std::string text = "0";
  double ToUser(const Document& document) const;
  double ToUnits(const Document& document) const { return document.ToUnits(ToUser(document)); }
};

/// How CLI11 reads one.
bool lexical_cast(const std::string& text, Length& length);

enum class Sign { any, positive, notNegative };
CLI::Option* AddLength(CLI::App& command, const std::string& name, Length& length, const std::string& what,
                       Sign sign);
/// A number that is no length: a position, an angle, a size in user units. Infinity and NaN are refused.
CLI::Option* AddNumber(CLI::App& command, const std::string& name, double& number, const std::string& what,
                       Sign sign = Sign::any);

}  // namespace tool
