#pragma once

#include <cmath>
#include <cstdio>
#include <vector>

#include "input_error.h"
#include "lumo/polycurve.h"
#include "support/generators.h"
#include "support/path_builder.h"
#include "svg_read.h"

using Path = Lumo::PolycurveT<TavMath::DPoint>;

inline double SizeOf(const Path& path) {
  const auto box = path.GetLooseBBox();
  return std::fmax(box.maxx - box.minx, box.maxy - box.miny);
}

/// The elements of drawings that have a size; without a drawing, random loops that cross themselves.
inline std::vector<Path> LoadShapes(int files, char** names) {
  std::vector<Path> paths;
  for (int k = 0; k < files; ++k) {
    try {
      for (const tool::Element& element : tool::ReadSvg(names[k]).elements) {
        if (SizeOf(element.path) > 0) paths.push_back(element.path);
      }
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s\n", error.what());
    }
  }
  if (files > 0) return paths;
  test::Bits bits(1);
  test::PathOptions options;
  options.open = options.loneMoves = options.degenerate = options.flags = false;
  for (int k = 0; k < 2000; ++k) {
    const auto p = test::RandomPath<TavMath::DPoint>(bits, options);
    paths.emplace_back(p.points.data(), p.types.data(), p.points.size());
  }
  return paths;
}
