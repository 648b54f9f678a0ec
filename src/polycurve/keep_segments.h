#pragma once
// Taking segments out of a path, and breaking it at nodes: what is left of each subpath becomes open
// subpaths, in order.

#include <vector>

#include "core/segment_walk.h"
#include "polycurve/subpath_walk.h"

namespace Lumo {

/// Collects the stretches of one subpath that are kept.
template <class T>
class StretchWriter {
 public:
  StretchWriter(const T* fromPoints, const NODETYPE* fromTypes, std::vector<T>& points,
                std::vector<NODETYPE>& types)
      : fromPoints_(fromPoints), fromTypes_(fromTypes), points_(points), types_(types) {}

  /// A segment that is kept; `continues` when it runs on from the one before.
  void Add(int first, int last, bool continues) {
    if (!continues) {
      NODETYPE start = fromTypes_[first];
      start.SetKind(NODETYPE::kMove);
      start.Set(NODETYPE::kClosed, false);
      start.SetContinuity(ContinuityType::cusp);
      start |= NODETYPE::kUser;
      EndStretch();
      points_.push_back(fromPoints_[first]);
      types_.push_back(start);
    }
    for (int i = first + 1; i <= last; ++i) {
      points_.push_back(fromPoints_[i]);
      types_.push_back(fromTypes_[i]);
    }
    // An end that is closed no more is seen by the user like any other.
    if (types_.back().IsClosed()) types_.back() |= NODETYPE::kUser;
    types_.back().Set(NODETYPE::kClosed, false);
    open_ = true;
  }
  /// The last node so far is an open end: a cusp.
  void EndStretch() {
    if (open_) types_.back().SetContinuity(ContinuityType::cusp);
    open_ = false;
  }

 private:
  const T* fromPoints_;
  const NODETYPE* fromTypes_;
  std::vector<T>& points_;
  std::vector<NODETYPE>& types_;
  bool open_ = false;
};

/// Fills points and types with the segments that keep(first, last) asks for, in stretches that end where
/// breaksAt(node) says so (asked of the node that a segment begins at). A subpath that keeps all its segments
/// in one stretch stays as it is, also a lone move node; a closed one is opened at its gaps, so that what
/// remains across its start stays in one piece. A stretch at the start of a subpath keeps the letter flag.
/// False when memory runs out.
template <class T, class Keep, class Breaks>
bool CutSegments(const T* fromPoints, const NODETYPE* fromTypes, int count, Keep keep, Breaks breaksAt,
                 std::vector<T>& points, std::vector<NODETYPE>& types) noexcept {
  try {
    points.reserve(static_cast<std::size_t>(count));
    types.reserve(static_cast<std::size_t>(count));
    WalkSubpaths(fromTypes, static_cast<std::size_t>(count), [&](std::size_t start, std::size_t end) {
      const int from = static_cast<int>(start) + 1, to = static_cast<int>(end);
      const bool closed = fromTypes[start].IsClosed();
      int gap = -1;  // the first node behind which a stretch may begin
      WalkSegments(fromTypes, from, to, to, [&](int first, int last) {
        if (gap >= 0) return;
        if (first >= from && breaksAt(first)) {
          gap = first;
        } else if (!keep(first, last)) {
          gap = last;
        }
      });
      if (closed && gap < 0 && breaksAt(from - 1)) gap = to - 1;
      if (gap < 0) {
        points.insert(points.end(), fromPoints + start, fromPoints + end);
        types.insert(types.end(), fromTypes + start, fromTypes + end);
        return true;
      }
      StretchWriter<T> stretches(fromPoints, fromTypes, points, types);
      bool runsOn = false;
      const auto visit = [&](int first, int last) {
        const bool kept = keep(first, last);
        if (kept) stretches.Add(first, last, runsOn && !breaksAt(first));
        runsOn = kept;
      };
      // A closed subpath once round, from behind its first gap on.
      if (closed) WalkSegments(fromTypes, gap + 1, to, to, visit);
      WalkSegments(fromTypes, from, closed ? gap + 1 : to, to, visit);
      stretches.EndStretch();
      return true;
    });
    return true;
  } catch (...) {
    return false;
  }
}

/// The segments that keep(first, last) asks for.
template <class T, class Keep>
bool KeepSegments(const T* fromPoints, const NODETYPE* fromTypes, int count, Keep keep,
                  std::vector<T>& points, std::vector<NODETYPE>& types) noexcept {
  return CutSegments(fromPoints, fromTypes, count, keep, [](int) { return false; }, points, types);
}

}  // namespace Lumo
