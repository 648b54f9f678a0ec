#pragma once
#include "offset/source.h"

namespace Lumo::Offset {

/// Rounds every coordinate to a whole number, half away from zero, through a 32-bit integer.
void RoundToWholeUnits(OwnedPath& path);

/// Replaces outlines of several bodies, each clean in itself with clockwise (y up) outer outlines, by the
/// union of the bodies. Bodies that touch no other stay as they are. False when memory runs out.
bool Unite(OwnedPath& bodies);

}  // namespace Lumo::Offset
