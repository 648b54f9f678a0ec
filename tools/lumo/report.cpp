#include "report.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iostream>

namespace tool {

void Table::Print() const {
  std::vector<std::size_t> widths(rows_.front().size());
  for (const auto& row : rows_) {
    for (std::size_t k = 0; k < row.size() && k < widths.size(); ++k)
      widths[k] = std::max(widths[k], row[k].size());
  }
  for (const auto& row : rows_) {
    std::string line;
    for (std::size_t k = 0; k < row.size() && k < widths.size(); ++k) {
      const std::string space(widths[k] - row[k].size(), ' ');
      if (k > 0) line += "  ";
      line += k == 0 ? row[k] + space : space + row[k];
    }
    line.erase(line.find_last_not_of(' ') + 1);
    std::cout << line << '\n';
  }
}

std::string Figure(double value) {
  // Six decimals are enough for people; very large and very small figures read better with an exponent.
  constexpr int kDecimals = 6;
  constexpr double kLargest = 1e12;
  std::array<char, 64> text;
  const bool fixed = value > -kLargest && value < kLargest;
  const auto [end, error] = fixed ? std::to_chars(text.data(), text.data() + text.size(), value,
                                                  std::chars_format::fixed, kDecimals)
                                  : std::to_chars(text.data(), text.data() + text.size(), value,
                                                  std::chars_format::general, kDecimals);
  std::string result(text.data(), error == std::errc{} ? end : text.data());
  if (fixed) {
    result.erase(result.find_last_not_of('0') + 1);
    if (result.back() == '.') result.pop_back();
  }
  return result == "-0" ? "0" : result;
}

std::string Figure(std::size_t value) { return std::to_string(value); }

void PrintJson(const Json& json) {
  std::cout << json.dump(1, ' ', false, Json::error_handler_t::replace) << '\n';
}

Json JsonPoint(const Document& document, DPoint p) {
  const DPoint user = document.ToUser(p);
  return Json::array({user.x, user.y});
}

}  // namespace tool
