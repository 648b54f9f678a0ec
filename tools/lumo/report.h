#pragma once
// Figures on standard output: a table for people, JSON for programs.

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "document.h"

namespace tool {

using Json = nlohmann::ordered_json;

/// Columns as wide as their widest cell. The first is set to the left, the others, being numbers, to the
/// right.
class Table {
 public:
  explicit Table(std::vector<std::string> heads) : rows_{std::move(heads)} {}
  void Add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
  void Print() const;

 private:
  std::vector<std::vector<std::string>> rows_;
};

/// A figure for people: at most six decimals.
std::string Figure(double value);
std::string Figure(std::size_t value);

/// Prints an object on one line for each of its top-level values; strings that are not UTF-8 are mended.
void PrintJson(const Json& json);

/// A point as [x, y] in user units.
Json JsonPoint(const Document& document, DPoint p);

}  // namespace tool
