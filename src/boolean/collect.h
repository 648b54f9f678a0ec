#pragma once
// Stage 1: paths to segments, segments to monotone arcs, all in one frame.

#include <vector>

#include "boolean/arc.h"
#include "lumo/node_type.h"

namespace Lumo::Planar {

/// One operand's path. The arrays must outlive the engine's run.
struct PathView {
  const DPoint* points;
  const NODETYPE* types;
  int count;
  int operand;        ///< 0 or 1.
  bool open = false;  ///< Open subpaths stay open and enclose nothing; otherwise they are closed by a line.
};

struct Subpath {
  int path;
  int first, last;                ///< Node range, both included.
  int firstSegment, lastSegment;  ///< Segment range, one past the end.
  int firstArc, lastArc;          ///< Arc range, one past the end.
  bool closed;                    ///< Carries the closed flag and ends where it begins.
  bool encloses;                  ///< Contributes to winding.
};

/// A segment that is not a point. `endNode` is -1 for a line that was added to close a subpath.
struct Segment {
  Curve curve;
  int subpath;
  int startNode, endNode;
};

/// Frame: internal = (outer - origin) * scale; scale is a power of two, origin zero unless the drawing lies
/// far from it compared with its size.
struct Frame {
  DPoint origin{0, 0};
  double scale = 1;
  /// Rounding of the outer coordinates, in the frame; tolerances must exceed it.
  double noise = 0;

  DPoint In(const DPoint& p) const { return {(p.x - origin.x) * scale, (p.y - origin.y) * scale}; }
  DPoint Out(const DPoint& p) const { return {p.x / scale + origin.x, p.y / scale + origin.y}; }
};

/// An original node (path and index) or, with node -1, a computed point.
struct Vertex {
  DPoint p;
  int path = -1, node = -1;
};

struct Collection {
  std::vector<PathView> paths;
  Frame frame;
  std::vector<Subpath> subpaths;
  std::vector<Segment> segments;
  std::vector<Vertex> vertices;
  std::vector<Arc> arcs;
};

/// Reads well-formed and malformed arrays alike. Subpaths with a coordinate that is not finite, and subpaths
/// without extent, contribute nothing.
Collection Collect(std::vector<PathView> paths);

}  // namespace Lumo::Planar
