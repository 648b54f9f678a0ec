#pragma once
// Thorns of a result: where its outline goes out and comes back along itself.

#include "lumo/offset_settings.h"
#include "offset/source.h"

namespace Lumo::Offset {

/// Takes out thorns, whose two sides keep within a small share of the offset error of one another all along:
/// what is left where two pieces, each off by what it may, run side by side. A stroke along the outline would
/// show them as spikes.
void RemoveThorns(OwnedPath& path, const OffsetSettings& settings);

}  // namespace Lumo::Offset
