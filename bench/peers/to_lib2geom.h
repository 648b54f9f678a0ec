#pragma once

#include <2geom/path.h>
#include <2geom/pathvector.h>

#include "lumo/polycurve.h"

inline Geom::Point ToLib2geom(const TavMath::DPoint& p) { return {p.x, p.y}; }

inline Geom::PathVector ToLib2geom(const Lumo::PolycurveT<TavMath::DPoint>& path) {
  Geom::PathVector out;
  const TavMath::DPoint* p = path.GetPoints();
  for (std::size_t k = 0; k < path.GetPointCount(); ++k) {
    const NODETYPE type = path.GetNodeType(k);
    if (type.IsMove()) {
      out.push_back(Geom::Path(ToLib2geom(p[k])));
    } else if (type.IsLine()) {
      out.back().appendNew<Geom::LineSegment>(ToLib2geom(p[k]));
    } else if (type.IsCurve()) {
      out.back().appendNew<Geom::CubicBezier>(ToLib2geom(p[k - 2]), ToLib2geom(p[k - 1]), ToLib2geom(p[k]));
    }
    if (type.IsClosed() && !type.IsMove()) out.back().close();
  }
  return out;
}
