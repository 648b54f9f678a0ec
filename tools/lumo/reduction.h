#pragma once
// Makes a drawing as small as it can be while something about it stays as it is.

#include <cstddef>
#include <functional>

#include "document.h"

namespace tool {

/// What is taken away, in this order and again until a whole round takes nothing more: elements, subpaths,
/// segments, handles (a cubic becomes a line), closing, attributes, and digits of coordinates. Each is tried
/// in halves of what is left, then quarters, down to single ones: Zeller and Hildebrandt, "Simplifying and
/// Isolating Failure-Inducing Input", IEEE Transactions on Software Engineering 28(2), 2002, with the subsets
/// that the complement steps of that algorithm test.
struct Reduction {
  /// Whether what is looked for is still there in this SVG.
  std::function<bool(const std::string& svg)> holds;
  /// Asked before each try.
  std::function<bool()> goOn = [] { return true; };

  /// How often `holds` was asked.
  std::size_t tries = 0;

  /// The drawing must hold as it is. Ends at the latest when goOn() says so; what is there then is given
  /// back.
  Document Run(const Document& document);
};

/// A drawing as text, as Reduction hands it to `holds`.
std::string SvgText(const Document& document);

}  // namespace tool
