#pragma once
// The offset of closed outlines, by winding number.

#include "lumo/offset_settings.h"
#include "offset/source.h"

namespace Lumo::Offset {

/// The ground that one prepared closed subpath covers under the non-zero rule, grown (offset above 0) or
/// shrunk: closed outlines, outer ones clockwise (y up), holes the other way. False when memory runs out.
bool OffsetGround(const OwnedPath& subpath, const OffsetSettings& settings, OwnedPath& result);

}  // namespace Lumo::Offset
