#include "polycurve/end_index.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <queue>

namespace Lumo {

using TavMath::DPoint;

EndIndex::EndIndex(const std::vector<DPoint>& points)
    : points_(points), order_(points.size()), alive_(points.size()), removed_(points.size()) {
  std::iota(order_.begin(), order_.end(), 0);
  Build(0, static_cast<int>(points.size()), true);
}

void EndIndex::Build(int first, int count, bool byX) {
  if (count == 0) return;
  const auto begin = order_.begin() + first;
  std::nth_element(begin, begin + count / 2, begin + count, [&](int a, int b) {
    const DPoint &p = points_[static_cast<std::size_t>(a)], &q = points_[static_cast<std::size_t>(b)];
    // Equal coordinates in the order of the ends, so that the tree can be walked to one of them.
    const double u = byX ? p.x : p.y, v = byX ? q.x : q.y;
    return u != v ? u < v : a < b;
  });
  alive_[static_cast<std::size_t>(first + count / 2)] = count;
  Build(first, count / 2, !byX);
  Build(first + count / 2 + 1, count - count / 2 - 1, !byX);
}

void EndIndex::Remove(int end) noexcept {
  removed_[static_cast<std::size_t>(end)] = true;
  const DPoint& p = points_[static_cast<std::size_t>(end)];
  int first = 0, count = static_cast<int>(order_.size());
  for (bool byX = true; count > 0; byX = !byX) {
    const int middle = first + count / 2;
    --alive_[static_cast<std::size_t>(middle)];
    const int other = order_[static_cast<std::size_t>(middle)];
    if (other == end) return;
    const DPoint& q = points_[static_cast<std::size_t>(other)];
    const double u = byX ? p.x : p.y, v = byX ? q.x : q.y;
    if (u != v ? u < v : end < other) {
      count = count / 2;
    } else {
      first = middle + 1;
      count = count - count / 2 - 1;
    }
  }
}

void EndIndex::Search(int first, int count, bool byX, int end, int excluded, Neighbour& best) const noexcept {
  if (count == 0 || alive_[static_cast<std::size_t>(first + count / 2)] == 0) return;
  const int middle = first + count / 2, other = order_[static_cast<std::size_t>(middle)];
  const DPoint &p = points_[static_cast<std::size_t>(end)], &q = points_[static_cast<std::size_t>(other)];
  if (other != end && other != excluded && !removed_[static_cast<std::size_t>(other)]) {
    const double sqrd = TavMath::DistanceSqrd(p, q);
    if (best.end < 0 || sqrd < best.distanceSqrd || (sqrd == best.distanceSqrd && other < best.end))
      best = {other, sqrd};
  }
  const double across = byX ? p.x - q.x : p.y - q.y;
  const auto side = [&](bool low) {
    if (low) return Search(first, count / 2, !byX, end, excluded, best);
    Search(middle + 1, count - count / 2 - 1, !byX, end, excluded, best);
  };
  side(across < 0);
  if (best.end < 0 || across * across <= best.distanceSqrd) side(!(across < 0));
}

EndIndex::Neighbour EndIndex::FindNearest(int end, int excluded) const noexcept {
  Neighbour best;
  Search(0, static_cast<int>(order_.size()), true, end, excluded, best);
  return best;
}

void PairNearestEnds(const std::vector<DPoint>& ends, const std::vector<int>& forbidden, double limit,
                     std::vector<int>& partner) {
  struct Candidate {
    double distanceSqrd;
    int end, other;
    bool operator>(const Candidate& c) const {
      return distanceSqrd != c.distanceSqrd ? distanceSqrd > c.distanceSqrd : end > c.end;
    }
  };
  partner.assign(ends.size(), -1);
  EndIndex index(ends);
  std::priority_queue<Candidate, std::vector<Candidate>, std::greater<>> queue;
  const auto propose = [&](int end) {
    const EndIndex::Neighbour nearest = index.FindNearest(end, forbidden[static_cast<std::size_t>(end)]);
    if (nearest.end >= 0 && nearest.distanceSqrd <= limit * limit)
      queue.push({nearest.distanceSqrd, end, nearest.end});
  };
  for (std::size_t k = 0; k < ends.size(); ++k) propose(static_cast<int>(k));
  while (!queue.empty()) {
    const Candidate next = queue.top();
    queue.pop();
    if (index.IsRemoved(next.end)) continue;
    if (index.IsRemoved(next.other)) {
      propose(next.end);
      continue;
    }
    partner[static_cast<std::size_t>(next.end)] = next.other;
    partner[static_cast<std::size_t>(next.other)] = next.end;
    index.Remove(next.end);
    index.Remove(next.other);
  }
}

}  // namespace Lumo
