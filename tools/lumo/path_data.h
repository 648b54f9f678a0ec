#pragma once
// The grammar of the d attribute.
//
// Written here although Debian has a library for it (SVG++ 1.3): that one says only that a value is wrong,
// not where; it cannot read through pugixml, which we use for the document; and its grammar alone takes
// twelve seconds to compile and all of Boost. The arcs that it would approximate for us would keep to its
// tolerance instead of ours.

#include <string_view>

#include "path_builder.h"

namespace tool {

/// Appends what a d attribute describes. The last line of a drawing program may be cut off anywhere, so an
/// InputError names the character at which the text stops being path data.
void ParsePathData(std::string_view d, PathBuilder& path);

}  // namespace tool
