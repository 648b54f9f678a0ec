#pragma once
// The elements of SVG that draw something, as paths.

#include <functional>
#include <string_view>

#include "attributes.h"
#include "path_builder.h"

namespace tool {

/// Whether an element of this name draws an outline: path, rect, circle, ellipse, line, polyline, polygon.
bool IsShape(std::string_view name);

/// Attributes by name; empty when missing.
using AttributeGetter = std::function<std::string_view(const char*)>;

/// Appends the outline of a shape. A shape of no extent (a radius of 0, no points) appends nothing. An
/// InputError names the attribute and the place in it.
void BuildShape(std::string_view name, const AttributeGetter& attribute, const Viewport& viewport,
                PathBuilder& path);

}  // namespace tool
