#include "offset/source.h"

#include <cmath>

#include "lumo/path_array.h"
#include "math/cubic/parallel_curve.h"
#include "offset/tolerances.h"

namespace Lumo::Offset {

using namespace TavMath;

void OwnedPath::Clear() {
  points.clear();
  nodes.clear();
}

void OwnedPath::Append(const DPoint* fromPoints, const NODETYPE* fromNodes, int count) {
  if (count <= 0) return;
  points.insert(points.end(), fromPoints, fromPoints + count);
  nodes.insert(nodes.end(), fromNodes, fromNodes + count);
}

void OwnedPath::Reverse() { Lumo::Reverse(points.data(), nodes.data(), Count()); }

std::vector<Range> Subpaths(const NODETYPE* nodes, int count) {
  std::vector<Range> ranges;
  for (int first = 0; first < count;) {
    int end = first + 1;
    while (end < count && !nodes[end].IsMove()) ++end;
    ranges.push_back({first, end});
    first = end;
  }
  return ranges;
}

Source SourceOf(const OwnedPath& path, const Range& range) {
  return {path.points.data() + range.first, path.nodes.data() + range.first, range.end - range.first,
          path.nodes[static_cast<std::size_t>(range.first)].IsClosed()};
}

namespace {

bool IsFinite(const DPoint* points, int count) {
  for (int k = 0; k < count; ++k)
    if (!std::isfinite(points[k].x) || !std::isfinite(points[k].y)) return false;
  return true;
}

/// Builds the cleaned copy segment by segment.
class Cleaner {
 public:
  explicit Cleaner(OwnedPath& out) : out_(out) {}

  void Start(const DPoint& point, NODETYPE node) { Put(point, node); }

  void Line(const DPoint& to, NODETYPE node) {
    if (to == out_.points.back()) return KeepContinuity(node);
    const std::size_t n = out_.points.size();
    if (n >= 2 && out_.nodes.back().IsLine() && RunsStraight(out_.points[n - 2], out_.points[n - 1], to)) {
      out_.points.back() = to;
      out_.nodes.back() = node;
      return;
    }
    Put(to, node);
  }

  void Curve(const DPoint control[3], const NODETYPE nodes[3]) {
    Cubic cubic{out_.points.back(), control[0], control[1], control[2]};
    if (cubic[1] == cubic[0] && cubic[2] == cubic[0] && cubic[3] == cubic[0]) return KeepContinuity(nodes[2]);
    // A corner at such a handle would be joined in a direction that its piece does not have.
    DropShortHandles(cubic.data(),
                     Length(cubic[1] - cubic[0]) + Length(cubic[2] - cubic[1]) + Length(cubic[3] - cubic[2]));
    if (LeavesNoWayBack(cubic)) return PutAll(cubic, nodes);
    // Where the curve itself turns back its parallel curves jump: a node there gets the corner's join.
    const CuspList cusps = ParallelCurve(cubic.data(), 0).SourceCusps();
    if (cusps.count == 0) return PutAll(cubic, nodes);
    double from = 0;
    for (int k = 0; k <= cusps.count; ++k) {
      const double to = k < cusps.count ? cusps.t[static_cast<std::size_t>(k)] : 1.0;
      Cubic part;
      CubicBezier::Subsection(from, to, cubic.data(), part.data());
      if (k > 0) part[1] = part[0];
      if (k < cusps.count) part[2] = part[3];
      Put(part[1], nodes[0]);
      Put(part[2], nodes[1]);
      if (k < cusps.count)
        Put(part[3], NODETYPE::kCurve | NODETYPE::kUser);
      else
        Put(cubic[3], nodes[2]);
      from = to;
    }
  }

 private:
  /// All three legs of the control polygon go forward along the chord: the derivative vanishes nowhere
  /// inside.
  static bool LeavesNoWayBack(const Cubic& c) {
    const DVector chord = c[3] - c[0];
    return Dot(c[1] - c[0], chord) >= 0 && Dot(c[2] - c[1], chord) > 0 && Dot(c[3] - c[2], chord) >= 0;
  }

  void PutAll(const Cubic& cubic, const NODETYPE nodes[3]) {
    for (std::size_t k = 0; k < 3; ++k) Put(cubic[k + 1], nodes[k]);
  }

  void Put(const DPoint& point, NODETYPE node) {
    node.Set(NODETYPE::kEnabled | NODETYPE::kLetter, false);
    if (node.IsControl()) node.Set(NODETYPE::kUser, false);
    out_.points.push_back(point);
    out_.nodes.push_back(node);
  }

  /// A segment that is left out leaves its closed flag to the node that now ends the subpath.
  void KeepContinuity(NODETYPE node) {
    if (out_.nodes.size() > 1) out_.nodes.back().Set(NODETYPE::kClosed, node.IsClosed());
  }

  static bool RunsStraight(const DPoint& a, const DPoint& b, const DPoint& c) {
    return Dot(b - a, c - b) > 0 && AreCollinear(a, b, c, kSourceCollinearSqrd);
  }

  OwnedPath& out_;
};

/// Whether no curve of one path can be farther from the same curve of the other, whose nodes are the same
/// but whose handles may have moved.
bool IsMovedAtMost(const OwnedPath& path, const OwnedPath& moved, double most) {
  if (path.points.size() != moved.points.size()) return false;
  for (std::size_t k = 0; k + 1 < path.points.size(); ++k) {
    if (!path.nodes[k].IsControl()) continue;
    // Neither control of a cubic weighs more than 4/9.
    const double move =
        4.0 / 9 *
        (Distance(path.points[k], moved.points[k]) + Distance(path.points[k + 1], moved.points[k + 1]));
    if (!(move <= most)) return false;
    ++k;
  }
  return true;
}

/// A copy of a subpath, repaired. Handles that the repair moves take their curve along; when that could be
/// felt, by more than `mostMove`, the subpath keeps its handles.
OwnedPath Repaired(const DPoint* points, const NODETYPE* nodes, int count, CurveRepairSettings repair,
                   double mostMove) {
  const auto copy = [&] {
    OwnedPath path;
    path.Append(points, nodes, count);
    path.nodes[0].Set(NODETYPE::kLetter, false);
    return path;
  };
  OwnedPath repaired = copy();
  CurveRepairReport report;
  RepairCurves(repaired.points, repaired.nodes, repair, &report);
  if (report.overlappingHandles + report.tightEndpoints == 0) return repaired;
  repair.SetFixOverlappingHandles(false);
  repair.SetFixTightEndpointRadius(false);
  OwnedPath kept = copy();
  RepairCurves(kept.points, kept.nodes, repair);
  if (!IsMovedAtMost(kept, repaired, mostMove)) return kept;
  return repaired;
}

}  // namespace

OwnedPath PrepareSubpath(const DPoint* points, const NODETYPE* nodes, int count,
                         const OffsetSettings& settings) {
  OwnedPath result;
  if (count < 2 || !IsFinite(points, count)) return result;
  const OwnedPath source =
      Repaired(points, nodes, count, settings.RepairSettings(), kRepairShare * settings.MaxOffsetError());
  if (source.Count() < 2) return result;
  const bool closed = source.nodes[0].IsClosed();
  result.points.reserve(source.points.size());
  result.nodes.reserve(source.nodes.size());
  Cleaner cleaner(result);
  cleaner.Start(source.points[0], source.nodes[0]);
  for (std::size_t k = 1; k < source.points.size();) {
    if (source.nodes[k].IsControl() && k + 2 < source.points.size()) {
      cleaner.Curve(&source.points[k], &source.nodes[k]);
      k += 3;
    } else {
      NODETYPE node = source.nodes[k];
      if (!node.IsLine()) node.SetKind(NODETYPE::kLine);
      cleaner.Line(source.points[k], node);
      ++k;
    }
  }
  if (closed && result.points.back() != result.points.front())
    cleaner.Line(result.points.front(), NODETYPE::kLine | NODETYPE::kClosed);
  if (result.Count() < 2) {
    result.Clear();
    return result;
  }
  result.nodes.front().Set(NODETYPE::kClosed, closed);
  result.nodes.back().Set(NODETYPE::kClosed, closed);
  return result;
}

}  // namespace Lumo::Offset
