#pragma once
// The offset of open subpaths: outlines with caps, or open curves.

#include "lumo/offset_settings.h"
#include "offset/source.h"

namespace Lumo::Offset {

/// The outlines of one prepared open subpath's offset, on one side (run back along the source) or both;
/// slivers left out. False when memory runs out.
bool CloseOpenPath(const OwnedPath& subpath, EOpenCurveOffsetSide side, double distance,
                   const OffsetSettings& settings, OwnedPath& result);

/// The open offset curve on the left of a prepared open subpath, without the stretches that come nearer to
/// the source than the distance.
void OffsetOpenPath(const OwnedPath& subpath, double distance, const OffsetSettings& settings,
                    OwnedPath& result);

}  // namespace Lumo::Offset
