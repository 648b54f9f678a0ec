#pragma once
// A path with new nodes on some of its segments.

#include <utility>
#include <vector>

#include "lumo/crv_convert.h"
#include "lumo/polycurve.h"
#include "polycurve/path_segment.h"

namespace Lumo {

/// Feed the segments to split in path order. Throws bad_alloc.
template <class T>
class SplitWriter {
 public:
  explicit SplitWriter(const PolycurveT<T>& path) : path_(path) {}

  /// The segment with new nodes at the parameters, which ascend inside (0, 1). The first of them is returned;
  /// the others follow, one or (on a curve) three nodes apart.
  int Split(const PathSegment& segment, const std::vector<double>& at) {
    CopyUpTo(segment.first + 1);
    const NODETYPE end = path_.GetNodeTypes()[segment.last];
    NODETYPE inserted = end;
    inserted.Set(NODETYPE::kClosed, false);
    inserted |= NODETYPE::kUser;
    if (!segment.IsLine()) inserted.SetContinuity(ContinuityType::smooth);
    const int first = static_cast<int>(points.size()) - 1;
    double from = 0;
    for (const double t : at) {
      AddPart(segment, from, t, FromDouble<T>(segment.PointAt(t)), inserted);
      from = t;
    }
    AddPart(segment, from, 1, path_.GetPoints()[segment.last], end);
    copied_ = segment.last + 1;
    if (!segment.IsLine()) split_.push_back({first, static_cast<int>(points.size()) - 1});
    return first + segment.last - segment.first;
  }

  /// The nodes after the last split; a node whose curve was split is symmetric no more.
  void Finish() {
    CopyUpTo(static_cast<int>(path_.GetPointCount()));
    for (const auto& [first, last] : split_)
      SmoothEndNodes(types.data(), first, last, static_cast<int>(types.size()));
  }

  /// Where a node of the path that is already written stands now, when `node` is the last one written of it.
  int LastIndex() const { return static_cast<int>(points.size()) - 1; }

  /// Writes the nodes before `end` that are not written yet.
  void CopyUpTo(int end) {
    if (end <= copied_) return;
    const auto from = static_cast<std::size_t>(copied_), to = static_cast<std::size_t>(end);
    points.insert(points.end(), path_.GetPoints() + from, path_.GetPoints() + to);
    types.insert(types.end(), path_.GetNodeTypes() + from, path_.GetNodeTypes() + to);
    copied_ = end;
  }

  std::vector<T> points;
  std::vector<NODETYPE> types;

 private:
  void AddPart(const PathSegment& segment, double t0, double t1, const T& end, NODETYPE type) {
    if (!segment.IsLine()) {
      DPoint part[4];
      TavMath::CubicBezier::Subsection(t0, t1, segment.p, part);
      for (int k = 1; k <= 2; ++k) {
        points.push_back(FromDouble<T>(part[k]));
        types.push_back(path_.GetNodeTypes()[segment.first + k]);
      }
    }
    points.push_back(end);
    types.push_back(type);
  }

  const PolycurveT<T>& path_;
  int copied_ = 0;
  std::vector<std::pair<int, int>> split_;
};

}  // namespace Lumo
