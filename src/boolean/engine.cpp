#include "boolean/engine.h"

#include "boolean/emit.h"
#include "boolean/tolerances.h"

namespace Lumo::Planar {

Outcome Run(const Request& request) {
  Outcome outcome;
  const Collection collection = Collect(request.paths);
  if (collection.arcs.empty()) return outcome;
  const bool hasOpen = std::any_of(collection.subpaths.begin(), collection.subpaths.end(),
                                   [](const Subpath& s) { return !s.encloses; });
  double contact = (std::max)(kContact, 16 * collection.frame.noise);
  for (outcome.attempts = 1;; ++outcome.attempts) {
    if (outcome.attempts > 2) contact *= kRetryFactor;
    EdgeSet edges = MakeEdges(collection, contact, outcome.attempts > 1);
    OrderRoundVertices(edges, contact);
    const PlanarMap map = MakePlanarMap(collection, edges, contact);
    if (!map.plane && outcome.attempts < kAttempts) continue;
    const Outlines outlines = TraceOutlines(edges, map, request.region);
    outcome.plane = map.plane && outlines.complete;
    EmitOutlines(collection, edges, outlines, request.direction, outcome);
    if (hasOpen) EmitOpenParts(collection, edges, map, request, outcome);
    return outcome;
  }
}

}  // namespace Lumo::Planar
