#pragma once
// What is told of a path, by `lumo info` and by every subcommand that makes one.

#include "report.h"

namespace tool {

/// Counts and measures in user units.
struct Figures {
  std::size_t subpaths = 0, open = 0, closed = 0, nodes = 0, lines = 0, curves = 0;
  double length = 0, area = 0;
  TavMath::BoundsT<double> box;
  bool valid = false;
};

Figures Measure(const Document& document, const Path& path);
Json JsonFigures(const std::string& id, const Figures& figures);

}  // namespace tool
