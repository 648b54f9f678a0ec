#pragma once
// Stage 9: loops of edges back to path arrays.

#include "boolean/engine.h"

namespace Lumo::Planar {

/// Appends the loops to the outcome as closed subpaths, in the order of their first source segment.
///
///  1. Pieces of one segment that follow one another are one piece again where nothing else of the result
///  meets them.
///  2. A subpath all of whose segments came through whole is copied node for node, reversed when it runs the
///  other way.
///  3. Otherwise a loop starts at the start of a source subpath when it contains one, else at its first
///  original node.
///  4. A node between two segments that were neighbours keeps its flags and continuity; other nodes are cusps
///  with the
///     user flag.
///  5. The first outline that comes from a letter carries that letter's flag.
void EmitOutlines(const Collection& collection, const EdgeSet& edges, const Outlines& outlines,
                  Direction direction, Outcome& outcome);

/// Appends the wanted pieces of open subpaths, in path order. Pieces that follow one another are joined
/// again, and a subpath that is wanted as a whole is copied node for node.
void EmitOpenParts(const Collection& collection, const EdgeSet& edges, const PlanarMap& map,
                   const Request& request, Outcome& outcome);

}  // namespace Lumo::Planar
