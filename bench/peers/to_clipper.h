#pragma once

#include <cmath>
#include <polyclipping/clipper.hpp>
#include <vector>

#include "lumo/polycurve.h"
#include "tav/math/cubic_bezier.h"

/// The path as Clipper takes it: flattened to `tolerance`, in integers of which `units` make a unit of the
/// path.
inline ClipperLib::Paths ToClipper(const Lumo::PolycurveT<TavMath::DPoint>& path, double tolerance,
                                   double units = 1) {
  constexpr int kMost = 300;  // chords of one curve
  ClipperLib::Paths out;
  const auto add = [&](const TavMath::DPoint& p) {
    out.back().emplace_back(std::llround(p.x * units), std::llround(p.y * units));
  };
  std::vector<TavMath::DPoint> points(kMost);
  for (std::size_t k = 0; k < path.GetPointCount(); ++k) {
    const NODETYPE type = path.GetNodeType(k);
    if (type.IsMove()) out.emplace_back();
    if (type.IsControl()) continue;
    if (!type.IsCurve()) {
      add(path.GetPoint(k));
      continue;
    }
    const int n =
        TavMath::AdaptiveBezierToLines(path.GetPoints() + k - 3, points.data(), tolerance * tolerance, kMost);
    for (int i = 1; i <= n; ++i) add(points[static_cast<std::size_t>(i)]);
  }
  return out;
}
