#pragma once
// The Boolean engine: one run from paths to outlines. See docs/boolean.md.

#include <vector>

#include "boolean/outlines.h"

namespace Lumo::Planar {

/// Which way the result's outer outlines run; holes run the other way.
enum class Direction {
  fromSources,  ///< As most of the pieces that make up the result were drawn; clockwise (y up) when that is a
                ///< draw.
  clockwise,    ///< Positive area.
};

/// What becomes of the pieces of subpaths that stay open (PathView::open).
enum class OpenParts { keepAll, keepInsideB, keepOutsideB };

struct Request {
  std::vector<PathView> paths;  ///< Operands 0 and 1.
  Region region;
  Direction direction = Direction::fromSources;
  OpenParts openParts = OpenParts::keepAll;
};

struct Outcome {
  std::vector<DPoint> points;
  std::vector<NODETYPE> types;
  bool computed = false;  ///< Some node of the result is not a node of the input.
  int attempts = 0;       ///< How many times the tolerances had to grow, plus one.
  bool plane = true;      ///< False when even the last attempt was not a plane map; the result is then closed
                          ///< outlines still, but may deviate.
};

/// The outlines of the region. Every outline is closed, passes no vertex twice and crosses no other.
Outcome Run(const Request& request);

}  // namespace Lumo::Planar
