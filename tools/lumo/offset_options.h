#pragma once
// What `lumo offset` and `lumo outline` have in common: joins, caps and the settings made of them.

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "commands.h"
#include "document.h"
#include "length.h"
#include "lumo/offset_settings.h"

namespace tool {

struct OffsetOptions : DrawingOptions {
  std::string join = "round";
  std::string cap = "round";
  double miterLimit = 15;
  /// 0 leaves the library's choice.
  Length error;
  bool combine = true;
  bool picture = false;
};

/// The options that both have.
void AddOffsetOptions(CLI::App& command, OffsetOptions& options);

/// Settings for a distance in document units.
std::unique_ptr<Lumo::Offset::OffsetSettings> MakeSettings(const OffsetOptions& options,
                                                           const Document& document, double distance,
                                                           bool inwards);

/// The figures of a result.
struct OffsetResult {
  const Element* source;
  double distance;
  Path path;
};

/// Writes the drawing and prints the figures, as the options say. Exit code 1 when every result is empty.
int FinishOffset(const OffsetOptions& options, const Document& document,
                 const std::vector<OffsetResult>& results);

}  // namespace tool
