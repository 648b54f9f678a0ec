#include "boolean/outlines.h"

namespace Lumo::Planar {
namespace {

std::size_t At(int i) { return static_cast<std::size_t>(i); }

class Tracer {
 public:
  Tracer(const EdgeSet& edges, const PlanarMap& map) : set_(edges), map_(map) {}

  Outlines Run(const Region& region) {
    for (const Loop& loop : map_.loops) {
      const bool left = region(loop.left);
      if (left != region(loop.right)) out_.wholes.push_back({loop.subpath, left});
    }
    if (set_.edges.empty()) return std::move(out_);
    Select(region);
    onPath_.assign(set_.vertices.size(), -1);
    out_.first.push_back(0);
    for (int h = 0; h < static_cast<int>(selected_.size()); ++h) {
      if (selected_[At(h)]) Walk(h);
    }
    return std::move(out_);
  }

 private:
  void Select(const Region& region) {
    std::vector<char> inside(map_.winding.size());
    for (std::size_t f = 0; f < inside.size(); ++f) inside[f] = region(map_.winding[f]);
    selected_.assign(map_.face.size(), false);
    out_.degree.assign(set_.vertices.size(), 0);
    for (int h = 0; h < static_cast<int>(selected_.size()); ++h) {
      if (!inside[At(map_.face[At(h)])] || inside[At(map_.face[At(h ^ 1)])]) continue;
      selected_[At(h)] = true;
      ++out_.degree[At(set_.From(h))];
      ++out_.degree[At(set_.To(h))];
    }
  }

  /// The selected half-edge that follows h: the first one clockwise from h's twin, which keeps to the same
  /// piece of the region. -1 when there is none.
  int Next(int h) const {
    const int first = map_.next[At(h)];
    int g = first;
    while (!selected_[At(g)]) {
      g = map_.next[At(g ^ 1)];
      if (g == first) return -1;
    }
    return g;
  }

  /// Walks from h until its outline closes; whenever the walk comes back to a vertex it has passed, what lies
  /// between is cut off as a loop of its own.
  void Walk(int h) {
    path_.clear();
    while (h >= 0) {
      onPath_[At(set_.From(h))] = static_cast<int>(path_.size());
      path_.push_back(h);
      selected_[At(h)] = false;
      const int v = set_.To(h);
      if (onPath_[At(v)] >= 0) CutLoop(onPath_[At(v)]);
      if (path_.empty()) return;
      h = Next(h);
    }
    for (const int g : path_) onPath_[At(set_.From(g))] = -1;
    out_.complete = false;
  }

  void CutLoop(int begin) {
    for (std::size_t k = At(begin); k < path_.size(); ++k) {
      out_.halves.push_back(path_[k]);
      onPath_[At(set_.From(path_[k]))] = -1;
    }
    out_.first.push_back(static_cast<int>(out_.halves.size()));
    path_.resize(At(begin));
  }

  const EdgeSet& set_;
  const PlanarMap& map_;
  Outlines out_;
  std::vector<char> selected_;
  std::vector<int> onPath_, path_;
};

}  // namespace

Outlines TraceOutlines(const EdgeSet& edges, const PlanarMap& map, const Region& region) {
  return Tracer(edges, map).Run(region);
}

}  // namespace Lumo::Planar
