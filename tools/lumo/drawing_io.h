#pragma once
// Drawings in and out, as the common options say.

#include "commands.h"
#include "report.h"

namespace tool {

/// Reads a drawing, or standard input for "-". An InputError names the file, the place and the cause.
Document Read(const CommonOptions& options, const std::string& file);

/// The end of a subcommand that makes a drawing: writes its elements where -o says, prints their figures with
/// --json. Without `showAll` the drawing shows the part of the plane that it showed before.
void Deliver(const CommonOptions& options, const Document& document, bool showAll = false);
/// Only the figures; `extra` stands before them in the object.
void DeliverFigures(const CommonOptions& options, const Document& document, Json extra = Json::object());

}  // namespace tool
