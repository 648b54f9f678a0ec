#pragma once
// Dense outlines: segments far shorter than the distance. Nearly all of their raw offset lies deep inside the
// result, and each piece of it crosses every other within reach; one arrangement of it all would grow with
// the square of the density. So the outline is cut into short stretches, the ground between each stretch and
// its offset is cleaned by itself, and the clean pieces are united pair by pair: what is covered is gone
// before it meets the rest.

#include "lumo/offset_settings.h"
#include "offset/source.h"

namespace Lumo::Offset {

/// Whether a closed outline is so dense for the distance that bands are quicker.
bool IsDense(const Source& outline, double distance);

/// The ground within the distance on the left of a closed outline: clean outlines, outer ones clockwise.
/// False when memory runs out.
bool UniteBands(const Source& outline, double distance, const OffsetSettings& settings, OwnedPath& body);

}  // namespace Lumo::Offset
