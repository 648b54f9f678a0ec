#include "boolean/collect.h"

#include <limits>

#include "boolean/tolerances.h"

namespace Lumo::Planar {
namespace {

bool IsFinite(const DPoint& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

/// Drawings farther from the origin than this many times their size are moved there first.
constexpr double kFarSizes = 16;

Frame FrameOf(const std::vector<PathView>& paths) {
  Box box;
  for (const PathView& path : paths) {
    for (int i = 0; i < path.count; ++i) {
      if (IsFinite(path.points[i])) box.Add(path.points[i].x, path.points[i].y);
    }
  }
  Frame frame;
  if (box.IsEmpty()) return frame;
  const double size = (std::max)(box.maxx / 2 - box.minx / 2, box.maxy / 2 - box.miny / 2) * 2;
  double reach = (std::max)({-box.minx, box.maxx, -box.miny, box.maxy});
  const double eps = reach * std::numeric_limits<double>::epsilon();
  if (reach > kFarSizes * size) {
    frame.origin = {0.5 * box.minx + 0.5 * box.maxx, 0.5 * box.miny + 0.5 * box.maxy};
    reach = size;
  }
  if (!(reach > 0)) return frame;
  int exponent = 0;
  std::frexp(reach, &exponent);
  // The largest double has the exponent 1024, and 2^-1024 is still exact.
  frame.scale = std::ldexp(1.0, (std::min)(1000, -exponent));
  frame.noise = eps * frame.scale;
  return frame;
}

class Collector {
 public:
  explicit Collector(Collection& out) : out_(out) {}

  void AddPath(int path) {
    const PathView& view = out_.paths[static_cast<std::size_t>(path)];
    for (int first = 0; first < view.count;) {
      int last = first;
      bool finite = IsFinite(view.points[first]);
      while (last + 1 < view.count && !view.types[last + 1].IsMove()) finite &= IsFinite(view.points[++last]);
      if (finite) AddSubpath(path, first, last);
      first = last + 1;
    }
  }

 private:
  void AddSubpath(int path, int first, int last) {
    const PathView& view = out_.paths[static_cast<std::size_t>(path)];
    const bool flagged = view.types[first].IsClosed() && view.types[last].IsClosed();
    Subpath sub{path,
                first,
                last,
                static_cast<int>(out_.segments.size()),
                0,
                static_cast<int>(out_.arcs.size()),
                0,
                flagged && view.points[first] == view.points[last],
                !view.open || flagged};
    open_ = !sub.encloses;
    step_ = open_ ? Winding{} : view.operand == 0 ? Winding{1, 0} : Winding{0, 1};
    const int start = AddVertex(view.points[first], path, first);
    current_ = start;
    node_ = first;
    for (int i = first + 1; i <= last;) {
      // A control point that is not followed by another one and a curve node is no segment of a well-formed
      // path: the nodes it has are taken as line ends.
      const bool curve = view.types[i].IsControl() && i + 2 <= last && view.types[i + 1].IsControl();
      const int end = curve ? i + 2 : i;
      AddSegment(view, path, i, end, curve, end == last && sub.closed ? start : -1);
      i = end + 1;
    }
    if (sub.encloses && current_ != start) AddClosingLine(start);
    sub.lastSegment = static_cast<int>(out_.segments.size());
    sub.lastArc = static_cast<int>(out_.arcs.size());
    if (sub.lastSegment > sub.firstSegment) out_.subpaths.push_back(sub);
  }

  int AddVertex(const DPoint& p, int path, int node) {
    out_.vertices.push_back({out_.frame.In(p), path, node});
    return static_cast<int>(out_.vertices.size()) - 1;
  }

  void AddSegment(const PathView& view, int path, int i, int end, bool curve, int endVertex) {
    const DPoint from = out_.vertices[static_cast<std::size_t>(current_)].p,
                 to = out_.frame.In(view.points[end]);
    const Curve c =
        curve ? Curve{{from, out_.frame.In(view.points[i]), out_.frame.In(view.points[i + 1]), to}, false}
              : Curve::Line(from, to);
    const bool point = from == to && (!curve || (c.p[1] == from && c.p[2] == from));
    if (point) {
      // The next segment starts at this node instead; at the end of a closed subpath the vertices are the
      // same place.
      if (endVertex < 0) node_ = end;
      if (endVertex >= 0 && current_ != endVertex) Rejoin(endVertex);
      return;
    }
    if (endVertex < 0) endVertex = AddVertex(view.points[end], path, end);
    out_.segments.push_back({c, static_cast<int>(out_.subpaths.size()), node_, end});
    AddArcs(static_cast<int>(out_.segments.size()) - 1, endVertex);
    current_ = endVertex;
    node_ = end;
  }

  void AddClosingLine(int start) {
    const DPoint from = out_.vertices[static_cast<std::size_t>(current_)].p,
                 to = out_.vertices[static_cast<std::size_t>(start)].p;
    if (from == to) {
      Rejoin(start);
      return;
    }
    out_.segments.push_back({Curve::Line(from, to), static_cast<int>(out_.subpaths.size()), node_, -1});
    AddArcs(static_cast<int>(out_.segments.size()) - 1, start);
    current_ = start;
  }

  /// The current place is that of the start vertex: the last arc ends there.
  void Rejoin(int start) {
    if (!out_.arcs.empty() && out_.arcs.back().v1 == current_) out_.arcs.back().v1 = start;
    current_ = start;
  }

  /// The parameters at which the segment turns back in x or in y, sorted, apart, and off the ends.
  static int Extrema(const Curve& c, double t[4]) {
    if (c.line) return 0;
    const DVector d0 = c.p[1] - c.p[0], d1 = c.p[2] - c.p[1], d2 = c.p[3] - c.p[2];
    int n = Roots(d0.x, d1.x, d2.x, t, 0);
    n = Roots(d0.y, d1.y, d2.y, t, n);
    for (int k = 1; k < n; ++k) {
      for (int i = k; i > 0 && t[i] < t[i - 1]; --i) std::swap(t[i], t[i - 1]);
    }
    int kept = 0;
    for (int k = 0; k < n; ++k) {
      if (t[k] < kExtremumParameter || t[k] > 1 - kExtremumParameter) continue;
      if (kept > 0 && t[k] - t[kept - 1] < kExtremumParameter) continue;
      t[kept++] = t[k];
    }
    return kept;
  }

  /// Zeros of the quadratic Bezier (a, b, c) inside (0, 1).
  static int Roots(double a, double b, double c, double* t, int n) {
    const double A = a - 2 * b + c, B = b - a;  // A t^2 + 2 B t + a
    const auto add = [&](double r) {
      if (r > 0 && r < 1) t[n++] = r;
    };
    if ((a > 0 && b > 0 && c > 0) || (a < 0 && b < 0 && c < 0)) return n;
    const double D = B * B - A * a;
    if (D < 0) return n;
    const double q = -(B + std::copysign(std::sqrt(D), B));
    if (A != 0) add(q / A);
    if (q != 0) add(a / q);
    return n;
  }

  void AddArcs(int segment, int endVertex) {
    const Curve& c = out_.segments[static_cast<std::size_t>(segment)].curve;
    if (c.line) {
      out_.arcs.push_back({c, segment, 0, 1, current_, endVertex, 0, true, open_, step_});
      return;
    }
    double t[6] = {0};
    const int cuts = Extrema(c, t + 1);
    t[cuts + 1] = 1;
    int from = current_;
    DPoint fromPoint = c.p[0];
    for (int k = 0; k <= cuts; ++k) {
      int to = endVertex;
      Arc& arc = out_.arcs.emplace_back(
          Arc{Part(c, t[k], t[k + 1]), segment, t[k], t[k + 1], from, to, 0, false, open_, step_});
      if (k < cuts) {
        to = arc.v1 = static_cast<int>(out_.vertices.size());
        out_.vertices.push_back({arc.curve.p[3]});
      }
      arc.curve.p[0] = fromPoint;
      fromPoint = arc.curve.p[3];
      arc.bend = Bend(arc.curve);
      arc.side = BulgeSide(arc.curve);
      arc.straight = IsStraight(arc.curve, kStraight);
      from = to;
    }
  }

  Collection& out_;
  int current_ = 0;    // vertex reached so far
  int node_ = 0;       // its node
  bool open_ = false;  // of the subpath that is read
  Winding step_;
};

}  // namespace

Collection Collect(std::vector<PathView> paths) {
  Collection out;
  out.paths = std::move(paths);
  out.frame = FrameOf(out.paths);
  int nodes = 0;
  for (const PathView& path : out.paths) nodes += path.count;
  const auto room = static_cast<std::size_t>(nodes);
  out.segments.reserve(room);
  out.vertices.reserve(room * 2);
  out.arcs.reserve(room * 2);
  Collector collector(out);
  for (int i = 0; i < static_cast<int>(out.paths.size()); ++i) collector.AddPath(i);
  return out;
}

}  // namespace Lumo::Planar
