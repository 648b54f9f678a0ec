// A batch cleaner: paths as they come from files and tools are mended, welded where their ends lie together,
// thinned out and freed of what is too small to see, and each step says what it did. Works on integer paths,
// as many hosts keep them.

#include <lumo/lumo.h>

#include <cstdio>
#include <vector>

namespace {

using Path = Lumo::PolycurveT<tagPOINT>;

struct Limits {
  double weld = 50;      ///< ends nearer than this are one point
  double shortest = 20;  ///< segments shorter than this go
  double speck = 300;    ///< subpaths smaller than this, both ways, go
  double drift = 30;     ///< how far a path may move when superfluous nodes go
};

struct Outcome {
  Lumo::CurveRepairReport repaired;
  std::size_t nodesBefore = 0, nodesAfter = 0, openBefore = 0, openAfter = 0;
};

std::size_t OpenSubpaths(const Path& path) {
  return static_cast<std::size_t>(
      CRV_HowManyOpenSubpaths(path.GetNodeTypes(), static_cast<int>(path.GetPointCount())));
}

Outcome Clean(Path& path, const Limits& limits) {
  Outcome outcome{{}, path.GetPointCount(), 0, OpenSubpaths(path), 0};
  // From any bytes at all a valid path.
  std::vector<tagPOINT> points(path.GetPoints(), path.GetPoints() + path.GetPointCount());
  std::vector<NODETYPE> types(path.GetNodeTypes(), path.GetNodeTypes() + path.GetPointCount());
  Lumo::CurveRepairSettings settings;
  settings.SetMinLineLength(limits.shortest);
  settings.SetMinBezierLength(limits.shortest);
  Lumo::RepairCurves(points, types, settings, &outcome.repaired);
  path.SetPoints(std::move(points), std::move(types));

  path.JoinTouchingSubpaths(limits.weld);
  path.RemoveSmallSubpaths(limits.speck);
  path.MergeLines(limits.drift);
  // Reduction looks at the selected nodes: all of them.
  path.EnableAllNodes();
  const auto arrays = path.GetBuffer();
  const int kept =
      CRV_ReduceEnabled(arrays.points, arrays.types, static_cast<int>(arrays.count), limits.drift);
  path.ReleaseBuffer(static_cast<std::size_t>(kept));
  path.DisableAllNodes();
  outcome.nodesAfter = path.GetPointCount();
  outcome.openAfter = OpenSubpaths(path);
  return outcome;
}

/// A square drawn as four strokes that nearly meet, with a side cut into twenty; a speck; a start without a
/// path.
Path Damaged() {
  Path path;
  path.MoveTo({0, 0});
  for (int i = 1; i <= 20; ++i) path.LineTo({i * 500, i % 2});
  path.MoveTo({10004, 3});
  path.LineTo({10000, 10000});
  path.MoveTo({9990, 10007});
  path.LineTo({0, 10000});
  path.LineTo({0, 10000});  // drawn twice
  path.MoveTo({-6, 9995});
  path.LineTo({2, 4});
  path.MoveTo({50000, 50000});
  path.LineTo({50100, 50000});
  path.LineTo({50100, 50100});
  path.MoveTo({70000, 0});
  return path;
}

}  // namespace

int main() {
  Path path = Damaged();
  const Outcome outcome = Clean(path, Limits());
  std::printf("%zu nodes -> %zu, %zu open subpaths -> %zu\n", outcome.nodesBefore, outcome.nodesAfter,
              outcome.openBefore, outcome.openAfter);
  std::printf("dangling moves %d, zero-length segments %d, short segments %d\n",
              outcome.repaired.danglingMoves, outcome.repaired.zeroLengthSegments,
              outcome.repaired.shortSegments);
  // One closed square of four sides: five nodes, the first and the last in one place.
  return path.IsValidCurve() && path.GetPointCount() == 5 && path.IsClosed(0) && path.GetSubpathCount() == 1
             ? 0
             : 1;
}
