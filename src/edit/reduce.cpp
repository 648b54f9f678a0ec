// Node reduction: greedy removal of the enabled node that is missed least, measured against the path as it
// was. Candidates wait in a priority queue; removing one only changes what its two neighbours are worth.

#include <cstddef>
#include <new>
#include <queue>
#include <tuple>
#include <vector>

#include "edit/fit.h"
#include "edit/segment.h"
#include "lumo/crv_convert.h"

using namespace Lumo;

namespace {

/// One on-curve node and the segment that ends at it in the reduced path.
struct Node {
  int index;     ///< in the arrays
  int subpath;   ///< ordinal of the subpath
  int previous;  ///< neighbours in the node list, -1 beyond the ends of the subpath
  int next;
  bool isLine;       ///< the segment that ends here is a line
  bool isMerged;     ///< it stands for several original segments
  bool isCandidate;  ///< enabled, and neither an end nor a closing node
  bool isRemoved;
  int version;  ///< of its neighbourhood: older queue entries are void
};

struct Entry {
  double deviationSqrd;
  int span;  ///< equal deviations: short stretches first, so that long ones are measured seldom
  int node;
  int version;
  bool operator<(const Entry& other) const {
    return std::tie(deviationSqrd, span, node) > std::tie(other.deviationSqrd, other.span, other.node);
  }
};

template <class T>
class Reduction {
 public:
  Reduction(T* points, NODETYPE* types, int count, double toleranceSqrd)
      : points_(points), types_(types), toleranceSqrd_(toleranceSqrd) {
    for (int first = 0; first < count;) first = AddSubpath(first, SubpathEnd(types, count, first));
  }

  void Run() {
    for (int k = 0; k < static_cast<int>(nodes_.size()); ++k) Enqueue(k);
    while (!queue_.empty()) {
      const Entry entry = queue_.top();
      queue_.pop();
      const Node& node = At(entry.node);
      if (!node.isRemoved && node.version == entry.version) Remove(entry.node);
    }
  }

  /// Writes the reduced path in place; the second array, if any, follows with its own curves.
  int Write(DPoint* second) {
    int kept = 0;
    for (const Node& node : nodes_) {
      if (node.isRemoved) continue;
      const int from = node.previous < 0 ? node.index - 1 : At(node.previous).index;
      if (node.isMerged && !node.isLine) {
        kept = WriteCurve(from, node.index, kept, second);
        continue;
      }
      const int first = node.isMerged ? node.index : from + 1;
      for (int k = first; k <= node.index; ++k, ++kept) {
        points_[kept] = points_[k];
        types_[kept] = types_[k];
        if (second != nullptr) second[kept] = second[k];
      }
    }
    return kept;
  }

 private:
  Node& At(int k) { return nodes_[static_cast<std::size_t>(k)]; }

  /// Lists the on-curve nodes first..end-1; returns end.
  int AddSubpath(int first, int end) {
    const int subpath = static_cast<int>(innerNodes_.size());
    int previous = -1, inner = 0;
    for (int i = first; i < end; ++i) {
      const bool isEnd = i == first || i == end - 1;
      if (types_[i].IsControl() && !isEnd) continue;
      const int k = static_cast<int>(nodes_.size());
      nodes_.push_back(
          {i, subpath, previous, -1, types_[i].IsLine(), false, !isEnd && types_[i].IsEnabled(), false, 0});
      if (previous >= 0) At(previous).next = k;
      inner += !isEnd;
      previous = k;
    }
    // A closed subpath keeps one node besides its closing ones; an open one has its two ends anyway.
    innerNodes_.push_back(types_[first].IsClosed() ? inner - 1 : inner);
    return end;
  }

  bool WouldBeLine(const Node& node) { return node.isLine && At(node.next).isLine; }

  void Enqueue(int k) {
    Node& node = At(k);
    if (!node.isCandidate || node.isRemoved) return;
    const int k0 = At(node.previous).index, k1 = At(node.next).index;
    const bool isLine = WouldBeLine(node);
    if (!isLine && k1 - k0 < 3) return;  // malformed: no room for the handles of a curve
    DPoint cubic[4];
    const double deviationSqrd =
        isLine ? DeviationFromLineSqrd(points_, types_, k0, k1) : FitCubic(points_, types_, k0, k1, cubic);
    if (deviationSqrd <= toleranceSqrd_) queue_.push({deviationSqrd, k1 - k0, k, node.version});
  }

  void Remove(int k) {
    Node& node = At(k);
    int& inner = innerNodes_[static_cast<std::size_t>(node.subpath)];
    if (inner < 1) return;
    --inner;
    Node& next = At(node.next);
    next.isLine = WouldBeLine(node);
    next.isMerged = true;
    node.isRemoved = true;
    next.previous = node.previous;
    At(node.previous).next = node.next;
    for (const int neighbour : {node.previous, node.next}) {
      ++At(neighbour).version;
      Enqueue(neighbour);
    }
  }

  int WriteCurve(int k0, int k1, int kept, DPoint* second) {
    DPoint cubic[4], secondCubic[4];
    FitCubic(points_, types_, k0, k1, cubic);
    if (second != nullptr) FitCubic(second, types_, k0, k1, secondCubic);
    const T end = points_[k1];
    NODETYPE type = types_[k1];
    type.SetKind(NODETYPE::kCurve);
    for (int k = 1; k < 3; ++k, ++kept) {
      points_[kept] = FromDouble<T>(cubic[k]);
      types_[kept] = NODETYPE::kControl;
      if (second != nullptr) second[kept] = secondCubic[k];
    }
    points_[kept] = end;
    types_[kept] = type;
    if (second != nullptr) second[kept] = second[k1];
    return kept + 1;
  }

  T* points_;
  NODETYPE* types_;
  double toleranceSqrd_;
  std::vector<Node> nodes_;
  std::vector<int> innerNodes_;  ///< of each subpath: how many may still go
  std::priority_queue<Entry> queue_;
};

}  // namespace

template <class T>
int CRV_ReduceEnabled(T* points, NODETYPE* types, int count, double tolerance) noexcept {
  return CRV_ReduceEnabledDouble(points, types, count, tolerance, nullptr);
}

template <class T>
int CRV_ReduceEnabledDouble(T* points, NODETYPE* types, int count, double tolerance,
                            TavMath::DPoint* second) noexcept {
  if (!HasNodes(points, types, count) || !(tolerance >= 0)) return count;
  try {
    Reduction<T> reduction(points, types, count, tolerance * tolerance);
    reduction.Run();
    return reduction.Write(second);
  } catch (const std::bad_alloc&) {
    return count;  // thrown before anything was written
  }
}

LUMO_CRV_REDUCE(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_REDUCE(LUMO_INSTANTIATE, TavMath::DPoint)
