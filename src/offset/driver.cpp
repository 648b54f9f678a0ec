// The road of one offset: the containment tree says which outlines are offset, each is offset by itself, and
// closed results of the same standing are united.

#include <algorithm>
#include <cmath>
#include <new>

#include "hierarchy/builder.h"
#include "lumo/offset.h"
#include "offset/closed.h"
#include "offset/combine.h"
#include "offset/cracks.h"
#include "offset/open_path.h"
#include "offset/thorns.h"
#include "offset/tidy.h"
#include "offset/tolerances.h"
#include "tav/math/rect.h"

namespace Lumo::Offset {

namespace {

/// Outlines of one nesting level, and open curves beside them. Levels are kept apart, because uniting an
/// island with the outline around it would make it disappear.
struct Level {
  OwnedPath closed;
  OwnedPath open;
  std::vector<TavMath::BoundsT<double>> bodies;  ///< boxes of the results in `closed`, each clean in itself
  std::vector<OwnedPath> grounds;                ///< the closed outlines that were offset
  bool strokes = false;                          ///< some of `closed` comes from open curves
};

TavMath::BoundsT<double> BoxOf(const DPoint* points, int count) {
  return TavMath::GetPointsBBox(points, static_cast<std::size_t>(count));
}

/// Whether no two of a few boxes have a point in common; false for many.
bool AreApart(const std::vector<TavMath::BoundsT<double>>& boxes) {
  if (boxes.size() > kMostBoxesCompared) return false;
  for (std::size_t k = 1; k < boxes.size(); ++k)
    for (std::size_t i = 0; i < k; ++i)
      if (boxes[i].Overlaps(boxes[k])) return false;
  return true;
}

OwnedPath Together(const std::vector<OwnedPath>& paths) {
  OwnedPath all;
  for (const OwnedPath& path : paths) all.Append(path);
  return all;
}

class Driver {
 public:
  explicit Driver(const OffsetSettings& settings) : settings_(settings) {}

  /// Subpaths that need no tree: outer outlines, or one open subpath.
  bool RunOuter(const DPoint* points, const NODETYPE* nodes, int count) {
    if (settings_.OffsetInwards()) return true;
    for (const Range& range : Subpaths(nodes, count))
      if (!RunInto(points + range.first, nodes + range.first, range.end - range.first, 0)) return false;
    return Finish();
  }

  bool Run(const SubpathTreeNode& root) {
    for (std::size_t k = 0; k < root.GetNumberOfChildren(); ++k) {
      const SubpathTreeNode& node = root.GetChild(k);
      if (!(settings_.OffsetInwards() ? RunHoles(node) : RunNested(node, 0))) return false;
    }
    return Finish();
  }

  /// Hands out the results.
  void MoveTo(std::vector<DPoint>& points, std::vector<NODETYPE>& nodes) {
    for (Level& level : levels_)
      for (OwnedPath* path : {&level.closed, &level.open}) {
        if (points.empty() && nodes.empty()) {
          points.swap(path->points);
          nodes.swap(path->nodes);
          continue;
        }
        points.insert(points.end(), path->points.begin(), path->points.end());
        nodes.insert(nodes.end(), path->nodes.begin(), path->nodes.end());
      }
  }

 private:
  bool IsCombining() const { return settings_.CombineShape() && settings_.CloseShape(); }

  Level& At(std::size_t depth) {
    if (levels_.size() <= depth) levels_.resize(depth + 1);
    return levels_[depth];
  }

  /// The node itself, and the islands in its holes; the holes stay as they are.
  bool RunNested(const SubpathTreeNode& node, std::size_t depth) {
    if (!RunNode(node, depth)) return false;
    if (node.GetNodes() == nullptr) return true;
    for (std::size_t k = 0; k < node.GetNumberOfChildren(); ++k) {
      const SubpathTreeNode& hole = node.GetChild(k);
      for (std::size_t i = 0; i < hole.GetNumberOfChildren(); ++i)
        if (!RunNested(hole.GetChild(i), depth + 1)) return false;
    }
    return true;
  }

  bool RunHoles(const SubpathTreeNode& node) {
    for (std::size_t k = 0; k < node.GetNumberOfChildren(); ++k) {
      const SubpathTreeNode& child = node.GetChild(k);
      if (child.GetNodes() != nullptr && child.GetNodes()[0].IsClosed() && !RunNode(child, 0)) return false;
    }
    return true;
  }

  bool RunInto(const DPoint* points, const NODETYPE* nodes, int count, std::size_t depth) {
    Level one;
    if (!RunSubpath(points, nodes, count, one)) return false;
    Level& level = At(depth);
    level.open.Append(one.open);
    for (OwnedPath& ground : one.grounds) level.grounds.push_back(std::move(ground));
    level.strokes |= one.strokes;
    Merge(level, std::move(one.closed));
    return true;
  }

  /// All subpaths of one node: its own, or the open ones of a group.
  bool RunNode(const SubpathTreeNode& node, std::size_t depth) {
    const auto run = [&](const SubpathTreeNode& subpath) {
      return RunInto(subpath.GetPoints(), subpath.GetNodes(), subpath.GetNumberOfPoints(), depth);
    };
    if (node.GetNodes() != nullptr) return run(node);
    for (std::size_t k = 0; k < node.GetNumberOfChildren(); ++k)
      if (!run(node.GetChild(k))) return false;
    return true;
  }

  /// Adds closed outlines to others of the same standing. When the settings ask for it they will be united:
  /// on whole units, so that shapes that touch do so exactly.
  void Merge(Level& level, OwnedPath added) const {
    if (added.IsEmpty()) return;
    if (IsCombining()) RoundToWholeUnits(added);
    level.bodies.push_back(BoxOf(added.points.data(), added.Count()));
    if (level.closed.IsEmpty())
      level.closed = std::move(added);
    else
      level.closed.Append(added);
  }

  /// One union for all bodies of a level.
  bool Finish() {
    for (Level& level : levels_) {
      if (IsCombining() && !Combine(level)) return false;
      RemoveThorns(level.closed, settings_);
      if (!IsCombining()) continue;
      DropShortSegments(level.closed);
      DropStraightNodes(level.closed);
    }
    return true;
  }

  /// A single body is clean as it is, and so are bodies that are apart.
  bool Combine(Level& level) const {
    if (AreApart(level.bodies)) return true;
    if (!Unite(level.closed)) return false;
    // Bodies err by their tolerances too, and may leave gaps between them where their sources leave none.
    if (!level.strokes) RemoveCracks(level.closed, Together(level.grounds), settings_);
    return true;
  }

  bool RunSubpath(const DPoint* points, const NODETYPE* nodes, int count, Level& out) {
    OwnedPath subpath = PrepareSubpath(points, nodes, count, settings_);
    if (subpath.IsEmpty()) return true;
    if (!subpath.nodes.front().IsClosed()) return RunOpen(subpath, out);
    if (!OffsetGround(subpath, settings_, out.closed)) return false;
    if (IsCombining()) out.grounds.push_back(std::move(subpath));
    return true;
  }

  /// A negative distance offsets the other side.
  bool RunOpen(OwnedPath subpath, Level& out) {
    const double distance = std::abs(settings_.Offset());
    if (!(distance > 0)) return true;
    if (settings_.Offset() < 0) subpath.Reverse();
    const EOpenCurveOffsetSide side = settings_.OpenCurveOffsetSide();
    out.strokes = true;
    if (settings_.CloseShape()) return CloseOpenPath(subpath, side, distance, settings_, out.closed);
    if (side != EOpenCurveOffsetSide::right) AppendOpen(subpath, distance, out);
    if (side != EOpenCurveOffsetSide::left) {
      subpath.Reverse();
      AppendOpen(subpath, distance, out);
    }
    return true;
  }

  void AppendOpen(const OwnedPath& subpath, double distance, Level& out) {
    OwnedPath curve;
    OffsetOpenPath(subpath, distance, settings_, curve);
    // Built on the reversed path; given back in the source's direction.
    if (settings_.Offset() < 0) curve.Reverse();
    out.open.Append(curve);
  }

  const OffsetSettings& settings_;
  std::vector<Level> levels_;
};

/// Whether no subpath can lie in another: then they need no tree.
bool AreAllOuter(const DPoint* points, const NODETYPE* nodes, int count) {
  const std::vector<Range> subpaths = Subpaths(nodes, count);
  std::vector<TavMath::BoundsT<double>> boxes;
  for (const Range& range : subpaths) {
    if (subpaths.size() > 1 && !nodes[range.first].IsClosed()) return false;
    boxes.push_back(BoxOf(points + range.first, range.end - range.first));
  }
  return AreApart(boxes);
}

bool OffsetPath(const DPoint* points, const NODETYPE* nodes, int count, const OffsetSettings& settings,
                std::vector<DPoint>& outPoints, std::vector<NODETYPE>& outNodes) {
  if (!std::isfinite(settings.Offset())) return true;
  // The letter flag would make its subpath a mere separator of the tree; here it is an outline like any
  // other.
  std::vector<NODETYPE> types(nodes, nodes + count);
  for (NODETYPE& type : types) type.Set(NODETYPE::kLetter, false);
  Driver driver(settings);
  const bool done = AreAllOuter(points, types.data(), count)
                        ? driver.RunOuter(points, types.data(), count)
                        : driver.Run(HierarchyBuilder::Nesting(points, types.data(), count));
  if (!done) return false;
  driver.MoveTo(outPoints, outNodes);
  return true;
}

}  // namespace

}  // namespace Lumo::Offset

namespace Lumo {

using TavMath::DPoint;

void CreateOffsetCurve(const DPoint* points, const NODETYPE* nodes, int count, std::vector<DPoint>& outPoints,
                       std::vector<NODETYPE>& outNodes, const Offset::OffsetSettings& settings) noexcept {
  if (points == nullptr || nodes == nullptr || count < 1) return;
  const std::size_t before = outPoints.size(), nodesBefore = outNodes.size();
  try {
    Offset::OffsetPath(points, nodes, count, settings, outPoints, outNodes);
  } catch (const std::bad_alloc&) {
    outPoints.resize(before);
    outNodes.resize(nodesBefore);
  }
}

void CreateOffsetCurve(const tagPOINT* points, const NODETYPE* nodes, int count,
                       std::vector<tagPOINT>& outPoints, std::vector<NODETYPE>& outNodes,
                       const Offset::OffsetSettings& settings) noexcept {
  if (points == nullptr || nodes == nullptr || count < 1) return;
  const std::size_t before = outPoints.size(), nodesBefore = outNodes.size();
  try {
    std::vector<DPoint> source, result;
    std::vector<NODETYPE> resultNodes;
    source.reserve(static_cast<std::size_t>(count));
    for (int k = 0; k < count; ++k)
      source.push_back({static_cast<double>(points[k].x), static_cast<double>(points[k].y)});
    Offset::OffsetPath(source.data(), nodes, count, settings, result, resultNodes);
    outPoints.reserve(before + result.size());
    for (const DPoint& p : result) outPoints.push_back(TavMath::RoundPoint(p));
    outNodes.insert(outNodes.end(), resultNodes.begin(), resultNodes.end());
  } catch (const std::bad_alloc&) {
    outPoints.resize(before);
    outNodes.resize(nodesBefore);
  }
}

}  // namespace Lumo
