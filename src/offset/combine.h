#pragma once
#include "offset/source.h"

namespace Lumo::Offset {

/// Rounds every coordinate to a whole number, half away from zero, through a 32-bit integer.
void RoundToWholeUnits(OwnedPath& path);

/// Replaces `path` by the union of itself and `added` (closed outlines, non-zero rule). False when memory
/// runs out.
bool Unite(OwnedPath& path, const OwnedPath& added);

}  // namespace Lumo::Offset
