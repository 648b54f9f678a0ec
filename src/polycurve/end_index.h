#pragma once
// The ends of open subpaths in a k-d tree, to pair them by distance.

#include <vector>

#include "tav/math/vector2d.h"

namespace Lumo {

class EndIndex {
 public:
  /// Throws bad_alloc.
  explicit EndIndex(const std::vector<TavMath::DPoint>& points);

  /// Takes an end out of all later answers.
  void Remove(int end) noexcept;
  bool IsRemoved(int end) const noexcept { return removed_[static_cast<std::size_t>(end)]; }

  struct Neighbour {
    int end = -1;
    double distanceSqrd = 0;
  };
  /// The nearest end to this one that is not removed, nor this one or `excluded`; end -1 when there is none.
  Neighbour FindNearest(int end, int excluded) const noexcept;

 private:
  void Build(int first, int count, bool byX);
  void Search(int first, int count, bool byX, int end, int excluded, Neighbour& best) const noexcept;

  const std::vector<TavMath::DPoint>& points_;
  std::vector<int> order_;  ///< the tree: the middle of a range splits it
  std::vector<int> alive_;  ///< by place in order_: how many ends of its range are left
  std::vector<bool> removed_;
};

/// The pairs that come out when the two nearest ends are taken again and again, as long as they are no
/// farther apart than the limit. An end is never paired with the one that `forbidden` names for it (-1 for
/// none). `partner` receives for every end the other one or -1. Throws bad_alloc. O(n log n) on ends that are
/// spread out.
void PairNearestEnds(const std::vector<TavMath::DPoint>& ends, const std::vector<int>& forbidden,
                     double limit, std::vector<int>& partner);

}  // namespace Lumo
