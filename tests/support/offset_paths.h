#pragma once
// Closed outlines at the size of drawings for the offset tests, and the plainest check of an offset: whether
// sample points lie on the side that their distance from the source's ground demands.

#include <cmath>
#include <vector>

#include "lumo/measure.h"
#include "lumo/offset.h"
#include "lumo/offset_corners.h"
#include "lumo/polycurve.h"
#include "support/cubics.h"
#include "support/oracles.h"
#include "support/path_builder.h"

namespace LumoTest {

using test::DoublePath;

/// A closed subpath of lines through the points.
inline DoublePath ClosedPolygon(const std::vector<DPoint>& points) {
  DoublePath path;
  path.Add(NODETYPE(0x0C), points[0]);
  for (std::size_t k = 1; k < points.size(); ++k) path.Add(NODETYPE(0x44), points[k]);
  path.Add(NODETYPE(0x48), points[0]);
  return path;
}

/// A round outline of `n` nodes about the origin whose radius wanders; curves bulge by random handles.
inline DoublePath RandomBlob(Random& random, int n, double size, bool curves, double roughness) {
  std::vector<DPoint> nodes;
  const double turn = (random.Below(2) ? 1 : -1) * 2 * std::acos(-1.0) / n;
  for (int k = 0; k < n; ++k) {
    const double r = size * (1 - roughness * random.Unit()), a = turn * k;
    nodes.push_back({r * std::cos(a), r * std::sin(a)});
  }
  if (!curves) return ClosedPolygon(nodes);
  DoublePath path;
  path.Add(NODETYPE(0x0C), nodes[0]);
  const double handle = size * 4 / n;
  for (int k = 1; k <= n; ++k) {
    const DPoint& from = nodes[static_cast<std::size_t>(k - 1)];
    const DPoint& to = nodes[static_cast<std::size_t>(k % n)];
    if (random.Below(3) == 0) {
      path.Add(NODETYPE(k == n ? 0x48 : 0x44), to);
      continue;
    }
    const DVector u = random.Point(handle) - DPoint{0, 0}, v = random.Point(handle) - DPoint{0, 0};
    path.Add(NODETYPE(0xC0), from + (1.0 / 3) * (to - from) + u);
    path.Add(NODETYPE(0xC0), from + (2.0 / 3) * (to - from) + v);
    path.Add(NODETYPE(k == n ? 0x88 : 0x84), to);
  }
  return path;
}

struct OffsetOptions {
  Lumo::OffsetCorner* corner = new Lumo::Round;
  Lumo::OffsetCorner* cap = new Lumo::Round;
  bool close = true;
  bool combine = true;
  Lumo::Offset::EOpenCurveOffsetSide side = Lumo::Offset::EOpenCurveOffsetSide::both;
  double error = 0;  ///< 0: the automatic one
};

inline DoublePath OffsetOf(const DoublePath& path, double offset, const OffsetOptions& options = {}) {
  Lumo::Offset::OffsetSettings settings(options.corner, options.cap, offset, false);
  settings.SetCloseShape(options.close);
  settings.SetCombineShape(options.combine);
  settings.SetOpenCurveOffsetSide(options.side);
  if (options.error > 0) settings.SetMaxOffsetError(options.error);
  DoublePath result;
  Lumo::CreateOffsetCurve(path.points.data(), path.types.data(), path.count(), result.points, result.types,
                          settings);
  return result;
}

/// The boundary of the ground that a closed path covers (non-zero rule) as short pieces: those of its
/// flattened outline that have ground on one side only.
inline std::vector<test::Polyline> GroundBoundary(const DoublePath& source) {
  const std::vector<test::Polyline> outline = test::Flatten(source, 64);
  std::vector<test::Polyline> boundary;
  for (const test::Polyline& line : outline)
    for (std::size_t k = 0; k + 1 < line.points.size(); ++k) {
      const int pieces = 1 + static_cast<int>(TavMath::Distance(line.points[k], line.points[k + 1]) / 200);
      for (int n = 0; n < pieces; ++n) {
        const DPoint a = TavMath::Lerp(line.points[k], line.points[k + 1], 1.0 * n / pieces);
        const DPoint b = TavMath::Lerp(line.points[k], line.points[k + 1], (n + 1.0) / pieces);
        const DVector normal = TavMath::LeftNormal(TavMath::Normalized(b - a));
        const DPoint mid = TavMath::Midpoint(a, b);
        if ((test::WindingNumber(outline, mid + normal) == 0) !=
            (test::WindingNumber(outline, mid - normal) == 0))
          boundary.push_back({{a, b}, false});
      }
    }
  return boundary;
}

/// Grid points whose side of the offset is wrong: farther than `tolerance` from the true boundary and yet in
/// the result when they should not be, or the other way round. For closed sources and round joins.
inline std::vector<DPoint> WronglySided(const DoublePath& source, double offset, const DoublePath& result,
                                        double tolerance, int grid = 20) {
  const std::vector<test::Polyline> ground = test::Flatten(source, 48), to = test::Flatten(result, 48);
  const std::vector<test::Polyline> from = GroundBoundary(source);
  TavMath::BoundsT<double> box;
  for (const DPoint& p : source.points) box.Add(p.x, p.y);
  const double margin = std::fmax(offset, 0) * 1.1 + 4 * tolerance;
  box.Inflate(margin, margin);
  std::vector<DPoint> wrong;
  for (int i = 0; i <= grid; ++i)
    for (int j = 0; j <= grid; ++j) {
      const DPoint p{box.minx + box.Width() * i / grid, box.miny + box.Height() * j / grid};
      const double distance = test::DistanceTo(from, p);
      const double depth = (test::WindingNumber(ground, p) != 0 ? -distance : distance) - offset;
      if (std::abs(depth) <= tolerance) continue;
      if ((test::WindingNumber(to, p) != 0) != (depth < 0)) wrong.push_back(p);
    }
  return wrong;
}

/// The greatest error of the distances of points along the result from the source; 0 for an empty result.
inline double DistanceError(const DoublePath& source, double offset, const DoublePath& result) {
  const std::vector<test::Polyline> from = GroundBoundary(source);
  double worst = 0;
  for (const test::Polyline& line : test::Flatten(result, 24))
    for (std::size_t k = 0; k + 1 < line.points.size(); ++k)
      for (const double f : {0.0, 0.5}) {
        const DPoint p = TavMath::Lerp(line.points[k], line.points[k + 1], f);
        worst = std::fmax(worst, std::abs(test::DistanceTo(from, p) - std::abs(offset)));
      }
  return worst;
}

}  // namespace LumoTest
