#pragma once
// Offsetting of whole paths: every outline moved sideways by a signed distance, with joins at its corners and
// caps at open ends.
//
// For closed outlines a positive distance lies outside, whichever way they run; of the outlines that lie in
// one another only the outer ones, and the islands inside their holes, are offset (or, with OffsetInwards,
// only the closed subpaths directly inside the outer ones). An outline that crosses itself is taken as the
// ground that it covers under the non-zero rule. With round joins the result is the true offset: every point
// of it lies at the distance from the source, to within the settings' MaxOffsetError (and MaxConnectError
// where two ends were moved together); the result crosses itself nowhere, and an inset past the largest
// circle that fits is empty.
//
// Method: the raw offset of each outline, corners on the inner side of a turn led through the source node, is
// the boundary of a chain whose winding number at a point counts the pieces of ground and disc that meet
// there; the result is where that number is positive, found on the planar arrangement of the Boolean engine.
// Time grows with the segments of the raw offset plus their crossings. See docs/offset.md.

#include <vector>

#include "lumo/export.h"
#include "lumo/node_type.h"
#include "lumo/offset_settings.h"
#include "lumo/point_types.h"

namespace Lumo {

/// Appends the offset of a path to the output vectors. Nothing happens for null arrays or a count below 1, or
/// when memory runs out (the vectors are then as they were). What the vectors held before is never changed.
/// The vectors must not alias the input. The integer overload rounds its results half away from zero.
LUMO_API void CreateOffsetCurve(const TavMath::DPoint* points, const NODETYPE* nodes, int count,
                                std::vector<TavMath::DPoint>& outPoints, std::vector<NODETYPE>& outNodes,
                                const Offset::OffsetSettings& settings) noexcept;
LUMO_API void CreateOffsetCurve(const tagPOINT* points, const NODETYPE* nodes, int count,
                                std::vector<tagPOINT>& outPoints, std::vector<NODETYPE>& outNodes,
                                const Offset::OffsetSettings& settings) noexcept;

/// Appends the outlines that the two sides of one open subpath form with the settings' caps, at the absolute
/// distance. Outlines of less than 1,000,000 square units are slivers and left out, whatever the distance.
/// `side` picks one side (that outline then runs back along the source) or both.
LUMO_API void CloseOffsetCurves(const TavMath::DPoint* points, const NODETYPE* nodes, int count,
                                std::vector<TavMath::DPoint>& outPoints, std::vector<NODETYPE>& outNodes,
                                Offset::EOpenCurveOffsetSide side,
                                const Offset::OffsetSettings& settings) noexcept;

/// Appends the union (non-zero rule) of two groups of closed outlines: the nodes first .. split-1 and split
/// .. count-1 of the path. Indices are cut to the path.
LUMO_API void CombineClosedOffsetCurves(const TavMath::DPoint* points, const NODETYPE* nodes, int count,
                                        std::vector<TavMath::DPoint>& outPoints,
                                        std::vector<NODETYPE>& outNodes, int first, int split) noexcept;

}  // namespace Lumo
