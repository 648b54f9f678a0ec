#include "length.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "attributes.h"
#include "input_error.h"

namespace tool {

namespace {

/// Units that a command line may use: those that need no style sheet and no window.
constexpr std::string_view kAllowed[] = {"", "%", "px", "pt", "pc", "mm", "cm", "in", "q"};

/// What is wrong with a value; nothing when it is right.
std::string Fault(const std::string& text, double value, Sign sign, const std::string& kind) {
  if (!std::isfinite(value)) return text + " is not finite";
  if (sign == Sign::positive && !(value > 0)) return text + " is not a positive " + kind;
  if (sign == Sign::notNegative && value < 0) return text + " is a negative " + kind;
  return {};
}

std::string LengthFault(const std::string& text, Sign sign) {
  const std::string wanted = "a length such as 2, 0.5mm or 1%";
  if (std::ranges::find(kAllowed, UnitOf(text)) == std::end(kAllowed))
    return text + " is not " + wanted + " (units: px, pt, pc, mm, cm, in, q, %)";
  double value = 0;
  try {
    value = ParseLength(text, {100, 100}, Extent::diagonal);
  } catch (const InputError&) {
    return text + " is not " + wanted;
  }
  return Fault(text, value, sign, "length");
}

std::string NumberFault(const std::string& text, Sign sign) {
  double value = 0;
  if (!CLI::detail::lexical_cast(text, value)) return text + " is not a number";
  return Fault(text, value, sign, "number");
}

}  // namespace

double Length::ToUser(const Document& document) const {
  const double length = ParseLength(text, {document.viewBox[2], document.viewBox[3]}, Extent::diagonal);
  const std::string unit = UnitOf(text);
  return unit.empty() || unit == "%" ? length : length * document.userPerPixel;
}

bool lexical_cast(const std::string& text, Length& length) {
  length.text = text;
  return true;
}

CLI::Option* AddLength(CLI::App& command, const std::string& name, Length& length, const std::string& what,
                       Sign sign) {
  return command.add_option(name, length, what)->type_name("LENGTH")->check([sign](const std::string& text) {
    return LengthFault(text, sign);
  });
}

CLI::Option* AddNumber(CLI::App& command, const std::string& name, double& number, const std::string& what,
                       Sign sign) {
  return command.add_option(name, number, what)->type_name("NUMBER")->check([sign](const std::string& text) {
    return NumberFault(text, sign);
  });
}

}  // namespace tool
