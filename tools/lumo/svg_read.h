#pragma once
// Any SVG becomes a Document.
//
// Drawn are path, rect, circle, ellipse, line, polyline and polygon, in groups, links, switches, nested
// drawings and through use; what stands in defs, symbol, clipPath, mask, marker or pattern is drawn only
// where it is used. Transforms, viewports and units are resolved: all coordinates end in the user space of
// the outermost svg element. The attributes style and class, text, images and filters are not looked at.

#include <string>
#include <string_view>

#include "document.h"

namespace tool {

/// Reads a file, or standard input when the name is "-". An InputError names the file, the line and the
/// cause.
Document ReadSvg(const std::string& file);

/// From memory; `name` stands for the file in messages.
Document ReadSvgText(std::string_view text, const std::string& name);

}  // namespace tool
