// Offsets of real drawings beside Clipper 6: every element at 1% and 5% of its size, outwards and inwards,
// with round and with mitred joins. Clipper gets the same paths flattened to 1/2400 of their size; its
// flattening is timed apart. Before a time counts, areas are compared: the two may differ by the tolerance
// times the length of the outline. Elements whose ground differs already (they cross themselves, or have
// holes, which an offset leaves as they are) are cut down to their outer outlines first, the same for both.
//
//   peers_offset [--most N] [--list] [--only K] FILE.svg ...    script/corpus fetches icons into build/corpus

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "input_error.h"
#include "lumo/boolean.h"
#include "lumo/measure.h"
#include "lumo/offset.h"
#include "lumo/offset_corners.h"
#include "lumo/subpath_hierarchy.h"
#include "processor_time.h"
#include "svg_read.h"
#include "to_clipper.h"

namespace {

using TavMath::DPoint;
using Path = Lumo::PolycurveT<DPoint>;
using Lumo::Offset::OffsetSettings;

/// Every path is scaled to this size, so that the least tolerance of an offset (100 units) is 1/2400 of it.
constexpr double kSize = 240000;
constexpr double kTolerance = kSize / 2400;

double Area(const Path& path) {
  return Lumo::GetArea(path.GetPoints(), path.GetNodeTypes(), static_cast<int>(path.GetPointCount()));
}

/// The outer outlines of the ground that a closed path covers, scaled and moved to the origin.
Path OuterOutlines(Path path) {
  const auto box = path.GetTightBBox();
  const double size = std::fmax(box.maxx - box.minx, box.maxy - box.miny);
  if (!(size > 0)) return {};
  const double f = kSize / size;
  path.TransformPoints({f, 0, 0, f, -box.minx * f, -box.miny * f});
  const Path ground = Lumo::Simplify(path, Lumo::FillRule::nonZero);
  Path outer;
  for (std::size_t first = 0; first < ground.GetPointCount();) {
    std::size_t end = first + 1;
    while (end < ground.GetPointCount() && !ground.GetNodeType(end).IsMove()) ++end;
    Path one(ground.GetPoints() + first, ground.GetNodeTypes() + first, end - first);
    first = end;
    outer.PushBack(one);
  }
  // Holes are what the even-odd rule takes away: keep the outlines that lie in no other one.
  const Lumo::SubpathHierarchy tree(outer.GetPoints(), outer.GetNodeTypes(),
                                    static_cast<int>(outer.GetPointCount()), false);
  Path kept;
  for (std::size_t k = 0; k < tree.GetNumberOfChildren(); ++k) {
    const auto& node = tree.GetChild(k);
    kept.PushBack(
        Path(node.GetPoints(), node.GetNodes(), static_cast<std::size_t>(node.GetNumberOfPoints())));
  }
  return kept;
}

struct Configuration {
  const char* name;
  double share;  // of the size; negative shrinks
  bool round;
};
constexpr Configuration kConfigurations[] = {{"1% out, round", 0.01, true},  {"1% in, round", -0.01, true},
                                             {"5% out, round", 0.05, true},  {"5% in, round", -0.05, true},
                                             {"1% out, miter", 0.01, false}, {"1% in, miter", -0.01, false},
                                             {"5% out, miter", 0.05, false}, {"5% in, miter", -0.05, false}};

Path OurOffset(const Path& path, const Configuration& c) {
  Lumo::OffsetCorner* join = nullptr;
  if (c.round) {
    join = new Lumo::Round;
  } else {
    join = new Lumo::MiteredCorner(60.0, nullptr);
  }
  const OffsetSettings settings(join, nullptr, c.share * kSize, false);
  Path result = path;
  result.OffsetCurve(settings);
  return result;
}

ClipperLib::Paths PeerOffset(const ClipperLib::Paths& flat, const Configuration& c) {
  // The miter limit of 2 is that of a corner of 60 degrees.
  ClipperLib::ClipperOffset offset(2.0, kTolerance);
  offset.AddPaths(flat, c.round ? ClipperLib::jtRound : ClipperLib::jtMiter, ClipperLib::etClosedPolygon);
  ClipperLib::Paths result;
  offset.Execute(result, c.share * kSize);
  return result;
}

void Race(const std::vector<Path>& paths, const std::vector<ClipperLib::Paths>& flat, const Configuration& c,
          bool list) {
  double ours = 0, theirs = 0;
  std::size_t nodes = 0, peerNodes = 0, sourceNodes = 0, differ = 0;
  for (std::size_t k = 0; k < paths.size(); ++k) {
    double start = ProcessorTime();
    const Path result = OurOffset(paths[k], c);
    ours += (ProcessorTime() - start) / 1e3;
    start = ProcessorTime();
    const ClipperLib::Paths peer = PeerOffset(flat[k], c);
    theirs += (ProcessorTime() - start) / 1e3;
    double area = 0;
    for (const auto& outline : peer) {
      area += ClipperLib::Area(outline);
      peerNodes += outline.size();
    }
    nodes += result.GetPointCount();
    sourceNodes += paths[k].GetPointCount();
    // Both may be off by their tolerance all along the outline, and ends nearer than 100 units meet half-way.
    const double slack = 3 * kTolerance * (paths[k].GetLength() + 8 * std::fabs(c.share) * kSize) + 1e6;
    if (c.round && !(std::fabs(std::fabs(Area(result)) - std::fabs(area)) <= slack)) {
      ++differ;
      if (list)
        std::printf("%s: path %zu: area %.0f, Clipper %.0f, slack %.0f\n", c.name, k, Area(result), area,
                    slack);
    }
  }
  std::printf(
      "%-14s Lumo %8.1f ms  Clipper %8.1f ms  %5.2f times; nodes %zu (source %zu) and %zu; differ %zu\n",
      c.name, ours, theirs, theirs / ours, nodes, sourceNodes, peerNodes, differ);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<Path> paths;
  std::size_t most = 1000000;
  bool list = false;
  int only = -1;
  for (int k = 1; k < argc; ++k) {
    if (std::strcmp(argv[k], "--most") == 0 && k + 1 < argc) {
      most = static_cast<std::size_t>(std::atol(argv[++k]));
      continue;
    }
    if (std::strcmp(argv[k], "--list") == 0) {
      list = true;
      continue;
    }
    if (std::strcmp(argv[k], "--only") == 0 && k + 1 < argc) {
      only = std::atoi(argv[++k]);
      continue;
    }
    if (paths.size() >= most) break;
    try {
      for (const tool::Element& element : tool::ReadSvg(argv[k]).elements) {
        Path outer = OuterOutlines(element.path);
        if (!outer.IsEmpty()) paths.push_back(std::move(outer));
      }
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s\n", error.what());
    }
  }
  if (paths.empty())
    return std::fprintf(stderr, "usage: peers_offset [--most N] [--list] [--only K] FILE.svg ...\n"), 1;
  std::vector<ClipperLib::Paths> flat;
  const double start = ProcessorTime();
  for (const Path& path : paths) flat.push_back(ToClipper(path, kTolerance));
  std::printf("%zu paths; flattening for Clipper took %.1f ms\n", paths.size(),
              (ProcessorTime() - start) / 1e3);
  for (int k = 0; k < static_cast<int>(std::size(kConfigurations)); ++k) {
    if (only < 0 || only == k) Race(paths, flat, kConfigurations[k], list);
  }
  return 0;
}
