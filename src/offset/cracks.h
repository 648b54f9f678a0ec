#pragma once
// What the errors of the raw offset's pieces leave in a result, and what does not belong there.

#include "lumo/offset_settings.h"
#include "offset/source.h"

namespace Lumo::Offset {

/// Takes out the outlines of a result that are only cracks between two pieces of the raw offset, each of
/// which may be off by the errors that the settings allow. `source`: the outlines that were offset.
void RemoveCracks(OwnedPath& path, const OwnedPath& source, const OffsetSettings& settings);

}  // namespace Lumo::Offset
