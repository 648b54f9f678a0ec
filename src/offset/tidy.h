#pragma once
// What uniting leaves in a result on whole units, and nobody would have drawn.

#include "offset/source.h"

namespace Lumo::Offset {

/// Takes out nodes between two lines that run on straight: where outlines touched or ended on a line, and a
/// start in the middle of a straight side.
void DropStraightNodes(OwnedPath& closed);

/// Takes out segments shorter than their rounding: where outlines touch or cross at a grazing angle.
void DropShortSegments(OwnedPath& path);

}  // namespace Lumo::Offset
