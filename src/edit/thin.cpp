// Thin subpaths: what a weld leaves of a shape without area, a subpath that runs out and back along itself.

#include <cstdint>
#include <memory>
#include <new>

#include "edit/segment.h"
#include "lumo/crv_convert.h"
#include "lumo/crv_edit.h"
#include "lumo/crv_navigation.h"
#include "lumo/path_array.h"
#include "math/point_traits.h"

using namespace Lumo;

namespace {

constexpr int kTowardsEachOther = -1;  // direction argument of CRV_SegmentsAreClose

/// The limit of a squared distance: the tolerance squared in wrapping 32-bit arithmetic, as in the short and
/// close tests of navigation, so that the tests of one tolerance agree.
double LimitSqrd(int tolerance) {
  const auto side = static_cast<std::uint32_t>(tolerance);
  return static_cast<std::int32_t>(side * side);
}

/// The nodes of one subpath, index 0 its move node.
template <class T>
struct Subpath {
  T* points;
  NODETYPE* types;
  int count;

  /// The number of nodes of the segment that ends at i; never 0, so that walks end on malformed input.
  int Step(int i) const { return types[i].IsCurve() && i >= 3 ? 3 : 1; }
  /// The node at which the segment after node i ends.
  int NextEnd(int i) const {
    ++i;
    while (i < count && types[i].IsControl()) ++i;
    return i;
  }
};

/// Looks for the fold: one cursor walks forward from the start, one backward from the end, while their
/// segments run along each other. Marks the short segments passed in front. Returns the node at which the
/// outgoing half ends, or -1 when the subpath is not thin.
template <class T>
int FindFold(const Subpath<T>& path, int tolerance, bool* isShort) {
  int front = path.NextEnd(0), back = path.count - 1;
  while (front < back) {
    if (CRV_SegmentsAreClose(path.points, path.types, path.count, front, back, tolerance,
                             kTowardsEachOther)) {
      front = path.NextEnd(front);
      back -= path.Step(back);
    } else if (CRV_SegmentIsShort(path.points, path.types, path.count, front, tolerance)) {
      isShort[front] = true;
      front = path.NextEnd(front);
    } else if (CRV_SegmentIsShort(path.points, path.types, path.count, back, tolerance)) {
      back -= path.Step(back);
    } else {
      return -1;
    }
  }
  // A curve that both cursors reach is its own way back only when it goes nowhere: a closed drop made of one
  // curve has an area.
  const bool isOneCurve = front == back && path.types[back].IsCurve();
  if (isOneCurve && !CRV_SegmentIsShort(path.points, path.types, path.count, back, tolerance)) return -1;
  return back;
}

/// Returns the new node count of the subpath.
template <class T>
int MakeRegular(const Subpath<T>& path, int tolerance) {
  NODETYPE& start = path.types[0];
  NODETYPE& end = path.types[path.count - 1];
  const double gapSqrd = DistanceSqrd(ToDouble(path.points[0]), ToDouble(path.points[path.count - 1]));
  if (!start.IsClosed() && !(gapSqrd <= LimitSqrd(tolerance))) return path.count;
  if (path.count < 3) return 0;
  const auto nodes = static_cast<std::size_t>(path.count);
  const std::unique_ptr<bool[]> isShort(new (std::nothrow) bool[nodes]());
  if (!isShort) return path.count;
  const int fold = FindFold(path, tolerance, isShort.get());
  if (fold < 0) return path.count;
  start.Set(NODETYPE::kClosed, false);
  end.Set(NODETYPE::kClosed, false);
  end |= NODETYPE::kUser;
  int kept = 1, from = 0;
  for (int i = path.NextEnd(0); i <= fold; i = path.NextEnd(i)) {
    const int n = i - from;
    if (!isShort[static_cast<std::size_t>(i)]) {
      if (kept <= from) MovePath(path.points, path.types, kept, from + 1, n);
      kept += n;
    }
    from = i;
  }
  return kept;
}

}  // namespace

template <class T>
int CRV_TransferThisThinSubpathToRegular(T* points, NODETYPE* types, int count, int index,
                                         int tolerance) noexcept {
  if (!HasNodes(points, types, count) || tolerance < 0) return count;
  const int first = CRV_FirstNodeOfThisSubpath(types, count, index);
  if (first < 0) return count;
  const int end = SubpathEnd(types, count, index);
  const int kept = MakeRegular<T>({points + first, types + first, end - first}, tolerance);
  return CRV_Remove(points, types, count, first + kept, end - first - kept);
}

template <class T>
int CRV_TransferAllThinSubpathsToRegular(T* points, NODETYPE* types, int count, int tolerance) noexcept {
  if (!HasNodes(points, types, count) || tolerance < 0) return count;
  int kept = 0;
  for (int first = 0; first < count;) {
    const int end = SubpathEnd(types, count, first);
    int n = end - first;
    if (types[first].IsMove()) n = MakeRegular<T>({points + first, types + first, n}, tolerance);
    if (kept != first) MovePath(points, types, kept, first, n);
    kept += n;
    first = end;
  }
  return kept;
}

template <class T>
int CRV_RepairClosedCurveAfterWeld(T* points, NODETYPE* types, int count, int tolerance) noexcept {
  if (!HasNodes(points, types, count)) return count;
  return CRV_RemoveOpenSubpaths(points, types,
                                CRV_TransferAllThinSubpathsToRegular(points, types, count, tolerance));
}

// Hosts call it after a weld and ignore what it says; a count here would be taken for the truth.
template <class T>
int CRV_RepairBadClosedSubpaths(T*, NODETYPE*, int) noexcept {
  return 0;
}

LUMO_CRV_THIN(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_THIN(LUMO_INSTANTIATE, TavMath::DPoint)
