#include "boolean/engine.h"

#include "boolean/emit.h"
#include "boolean/tolerances.h"

namespace Lumo::Planar {
namespace {

/// Attempts at one drawing, one after the other, until one gives a plane map: at every contact distance the
/// plain one, then one with the edges of the last crossed again (where they are few), then one in which every
/// vertex is looked for on all arcs near it.
class Attempts {
 public:
  explicit Attempts(const Collection& collection)
      : collection_(collection), contact_((std::max)(kContact, 16 * collection.frame.noise)) {}

  const EdgeSet& edges() const { return edges_; }
  const PlanarMap& map() const { return map_; }
  int count() const { return count_; }

  void Run() {
    for (int level = 0; level < kContactLevels; ++level, contact_ *= kRetryFactor) {
      if (Take(MakeEdges(collection_, contact_, false))) return;
      for (int k = 0; k < kCrossings && edges_.edges.size() <= kCrossedAgain; ++k) {
        if (Take(CrossAgain(collection_, edges_, contact_))) return;
      }
      if (level == 0 && Take(MakeEdges(collection_, contact_, true))) return;
    }
  }

 private:
  bool Take(EdgeSet edges) {
    ++count_;
    edges_ = std::move(edges);
    OrderRoundVertices(edges_, contact_);
    map_ = MakePlanarMap(collection_, edges_, contact_);
    return map_.plane;
  }

  const Collection& collection_;
  double contact_;
  EdgeSet edges_;
  PlanarMap map_;
  int count_ = 0;
};

}  // namespace

Outcome Run(const Request& request) {
  Outcome outcome;
  const Collection collection = Collect(request.paths);
  if (collection.arcs.empty()) return outcome;
  Attempts attempts(collection);
  attempts.Run();
  outcome.attempts = attempts.count();
  const Outlines outlines = TraceOutlines(attempts.edges(), attempts.map(), request.region);
  outcome.plane = attempts.map().plane && outlines.complete;
  EmitOutlines(collection, attempts.edges(), outlines, request.direction, outcome);
  const bool hasOpen = std::any_of(collection.subpaths.begin(), collection.subpaths.end(),
                                   [](const Subpath& s) { return !s.encloses; });
  if (hasOpen) EmitOpenParts(collection, attempts.edges(), attempts.map(), request, outcome);
  return outcome;
}

}  // namespace Lumo::Planar
