#pragma once
// What check_offset asks of a drawing before it checks: the outlines that an offset treats alike with the
// ground that they cover, offsets of them, and drawings of both.

#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "distance_field.h"
#include "lumo/measure.h"
#include "lumo/offset.h"
#include "lumo/offset_corners.h"
#include "lumo/repair.h"
#include "lumo/subpath_hierarchy.h"
#include "to_clipper.h"

namespace check {

using Lumo::Offset::OffsetSettings;

/// Every element is scaled to this size, units.
inline constexpr double kSize = 1 << 20;
/// How far chords may stray from curves; a twentieth of the least offset error.
inline constexpr double kFlat = 5;
/// Clipper's integers for each unit.
inline constexpr double kFine = 8;
/// What meeting half-way (half of MaxConnectError), repair (segments below 10) and whole units may add.
inline constexpr double kConnect = 50, kRepair = 10, kGrid = 1;

inline double Area(const Path& path) {
  return path.IsEmpty()
             ? 0
             : Lumo::GetArea(path.GetPoints(), path.GetNodeTypes(), static_cast<int>(path.GetPointCount()));
}

// --- paths from segments

inline std::vector<std::vector<Segment>> SubpathsOf(const Path& path) {
  std::vector<std::vector<Segment>> out;
  for (const Segment& s : SegmentsOf(path)) {
    if (s.startsSubpath) out.emplace_back();
    out.back().push_back(s);
  }
  return out;
}

/// A closed subpath whose start is its k-th node.
inline Path StartingAt(const std::vector<Segment>& subpath, std::size_t k) {
  Path path;
  std::vector<DPoint> points{subpath[k].p[0]};
  const std::size_t n = subpath.size();
  NODETYPE before = subpath[(k + n - 1) % n].end;
  NODETYPE head(NODETYPE::kUser | NODETYPE::kClosed);
  head.SetContinuity(before.Continuity());
  std::vector<NODETYPE> types{head};
  for (std::size_t i = 0; i < n; ++i) {
    const Segment& s = subpath[(k + i) % n];
    NODETYPE end(s.line ? NODETYPE::kLine : NODETYPE::kCurve);
    end.SetContinuity(s.end.Continuity());
    end |= i + 1 == n ? NODETYPE::kClosed : NODETYPE::kUser;
    if (!s.line) {
      points.insert(points.end(), {s.p[1], s.p[2]});
      types.insert(types.end(), {NODETYPE::kControl, NODETYPE::kControl});
    }
    points.push_back(s.p[3]);
    types.push_back(end);
  }
  points.back() = points.front();
  return Path(points.data(), types.data(), points.size());
}

/// What an offset treats alike: the closed subpaths of one nesting depth that are offset, as one path.
inline void CollectLevels(const Lumo::SubpathTreeNode& node, std::size_t depth, std::vector<Path>& levels) {
  if (node.GetNodes() == nullptr || !node.GetNodes()[0].IsClosed()) return;
  if (levels.size() <= depth) levels.resize(depth + 1);
  levels[depth].PushBack(
      Path(node.GetPoints(), node.GetNodes(), static_cast<std::size_t>(node.GetNumberOfPoints())));
  for (std::size_t k = 0; k < node.GetNumberOfChildren(); ++k)
    for (std::size_t i = 0; i < node.GetChild(k).GetNumberOfChildren(); ++i)
      CollectLevels(node.GetChild(k).GetChild(i), depth + 1, levels);
}
inline std::vector<Path> LevelsOf(const Path& path) {
  std::vector<Path> levels;
  const Lumo::SubpathHierarchy tree(path.GetPoints(), path.GetNodeTypes(),
                                    static_cast<int>(path.GetPointCount()), true);
  for (std::size_t k = 0; k < tree.GetNumberOfChildren(); ++k) CollectLevels(tree.GetChild(k), 0, levels);
  return levels;
}

// --- the ground

inline ClipperLib::Path Integers(const std::vector<Segment>& subpath, double flat) {
  ClipperLib::Path out;
  for (const Chord& c : Flatten(subpath, flat))
    out.emplace_back(std::llround(c.b.x * kFine), std::llround(c.b.y * kFine));
  return out;
}
inline ClipperLib::Paths Integers(const Path& path, double flat) {
  ClipperLib::Paths out;
  for (const auto& subpath : SubpathsOf(path)) out.push_back(Integers(subpath, flat));
  return out;
}

inline ClipperLib::Paths Union(const ClipperLib::Paths& paths, ClipperLib::PolyFillType rule) {
  ClipperLib::Clipper clipper;
  clipper.StrictlySimple(true);
  clipper.AddPaths(paths, ClipperLib::ptSubject, true);
  ClipperLib::Paths out;
  clipper.Execute(ClipperLib::ctUnion, out, rule, rule);
  return out;
}

inline std::vector<Chord> ChordsOf(const ClipperLib::Paths& paths) {
  std::vector<Chord> out;
  for (const ClipperLib::Path& path : paths)
    for (std::size_t k = 0; k < path.size(); ++k) {
      const auto &a = path[k], &b = path[(k + 1) % path.size()];
      out.push_back({{static_cast<double>(a.X) / kFine, static_cast<double>(a.Y) / kFine},
                     {static_cast<double>(b.X) / kFine, static_cast<double>(b.Y) / kFine}});
    }
  return out;
}

/// The ground of one outline; Clipper's outer outlines run counter-clockwise (y up).
struct Ground {
  ClipperLib::Paths polygons;
  ChordTree edge;

  Ground(const std::vector<Segment>& subpath, double flat)
      : polygons(Union({Integers(subpath, flat)}, ClipperLib::pftNonZero)), edge(ChordsOf(polygons)) {}

  /// Negative inside; at most `most`.
  double Signed(const DPoint& p, double most) const {
    const double d = edge.Distance(p, most);
    return edge.Winding(p) != 0 ? -d : d;
  }
};

/// One level of an element.
struct Level {
  std::string name;
  Path path;
  std::vector<Ground> grounds;

  Level(std::string n, const Path& p, double flat = kFlat) : name(std::move(n)), path(p) {
    for (const auto& subpath : SubpathsOf(p)) {
      Ground ground(subpath, flat);
      if (!ground.edge.IsEmpty()) grounds.push_back(std::move(ground));
    }
  }

  /// Chords may part what the curves join, far along where they run side by side: what fails is measured
  /// again from this.
  Level Finer() const { return Level(name, path, kFlat / 100); }

  /// Negative inside the true offset, positive outside.
  double Depth(const DPoint& p, double offset) const {
    double best = 1e300;
    for (const Ground& ground : grounds) {
      if (offset > 0 && ground.edge.BoxDistance(p) > best) continue;
      best = (std::min)(best, ground.Signed(p, 1e300));
    }
    return best - offset;
  }
};

// --- results

inline Path OffsetOf(const Path& path, double offset, double error,
                     std::unique_ptr<Lumo::OffsetCorner> join) {
  OffsetSettings settings(join.release(), nullptr, offset, false);
  if (error > 0) settings.SetMaxOffsetError(error);
  Path result = path;
  result.OffsetCurve(settings);
  return result;
}
inline Path OffsetOf(const Path& path, double offset, double error) {
  return OffsetOf(path, offset, error, std::make_unique<Lumo::Round>());
}

inline double MaxError(double offset, double error) {
  return error > 0 ? error : (std::min)(1000.0, (std::max)(100.0, offset / 100));
}

/// A result with what the checks need of it.
struct Result {
  double offset;
  Path path;
  std::vector<Segment> segments;
  ChordTree chords;

  Result(double o, Path p)
      : offset(o), path(std::move(p)), segments(SegmentsOf(path)), chords(Flatten(segments, kFlat)) {}
};

inline void WriteData(std::FILE* file, const Path& path) {
  for (const Segment& s : SegmentsOf(path)) {
    if (s.startsSubpath) std::fprintf(file, "M%.17g %.17g", s.p[0].x, s.p[0].y);
    if (s.line)
      std::fprintf(file, "L%.17g %.17g", s.p[3].x, s.p[3].y);
    else
      std::fprintf(file, "C%.17g %.17g %.17g %.17g %.17g %.17g", s.p[1].x, s.p[1].y, s.p[2].x, s.p[2].y,
                   s.p[3].x, s.p[3].y);
    if (s.end.IsClosed()) std::fprintf(file, "Z");
  }
}

/// Source and result as a drawing, to be looked at.
inline void Draw(const std::string& file, const Path& source, const Path& result, const DPoint* place) {
  std::FILE* out = std::fopen(file.c_str(), "w");
  if (out == nullptr) return;
  auto box = source.GetTightBBox();
  if (!result.IsEmpty()) box.Add(result.GetTightBBox());
  std::fprintf(out,
               "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"%g %g %g %g\">\n<path fill=\"#ccc\" d=\"",
               box.minx, box.miny, box.Width(), box.Height());
  WriteData(out, source);
  std::fprintf(out, "\"/>\n<path fill=\"none\" stroke=\"#c0392b\" stroke-width=\"0.2%%\" d=\"");
  WriteData(out, result);
  std::fprintf(out, "\"/>\n");
  if (place != nullptr)
    std::fprintf(out,
                 "<circle cx=\"%.17g\" cy=\"%.17g\" r=\"%g\" fill=\"none\" stroke=\"#2980b9\" "
                 "stroke-width=\"0.2%%\"/>\n",
                 place->x, place->y, 0.03 * box.Width());
  std::fprintf(out, "</svg>\n");
  std::fclose(out);
}

}  // namespace check
