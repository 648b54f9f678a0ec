#pragma once
// Pockets of a dense outline that are too narrow to be felt at the distance are filled before it is offset.

#include "lumo/offset_settings.h"
#include "offset/source.h"

namespace Lumo::Offset {

/// Whether the result is the points within the distance of the ground, so that ground may be added wherever
/// it lies within reach already. Other joins than arcs depend on every corner as it stands.
bool MayFillPockets(const OffsetSettings& settings);

/// The longest chord that may close a pocket.
double WidestPocket(double distance, double error);

/// A closed outline, ground on its right, with chords in place of stretches of lines that turn left: no chord
/// is longer than `widest`, and all nodes left are nodes of the outline. Cubics stay. The ground only grows;
/// it may overlap itself, and a hole may close up. Linear.
OwnedPath FillPockets(const Source& outline, double widest);

}  // namespace Lumo::Offset
