#pragma once
// The raw offset of one subpath: its pieces trimmed, joined and connected into one path that may still cross
// itself.

#include "lumo/offset_settings.h"
#include "offset/piece.h"

namespace Lumo::Offset {

/// Appends the raw offset to the left by a distance above 0. A closed source gives one closed subpath; an
/// open one gives one open subpath. On the inner side of a turn that trimming does not settle, the path leads
/// through the source node, which keeps the winding numbers of a closed result right.
void AppendRawOffset(const Source& source, double distance, const OffsetSettings& settings,
                     const Output& out);

/// The same for a stretch of a longer path. The last segment of the open source only lends its start: the
/// result ends there, after the join, exactly where the next stretch's result begins.
void AppendRawStretch(const Source& source, double distance, const OffsetSettings& settings,
                      const Output& out);

/// Appends the pieces as they are: not trimmed, joined or connected. Successive pieces whose ends meet make
/// one subpath.
void AppendPureOffset(const Source& source, double distance, const OffsetSettings& settings,
                      const Output& out);

}  // namespace Lumo::Offset
