#include "figures.h"

#include "lumo/repair.h"

namespace tool {

Figures Measure(const Document& document, const Path& path) {
  Figures figures;
  figures.nodes = path.GetPointCount();
  figures.subpaths = path.GetSubpathCount();
  for (const auto& subpath : path.GetSubpathIndices())
    ++(path.GetNodeType(subpath.first).IsClosed() ? figures.closed : figures.open);
  for (std::size_t i = 0; i < figures.nodes; ++i) {
    figures.lines += path.GetNodeType(i).IsLine();
    figures.curves += path.GetNodeType(i).IsCurve();
  }
  const double scale = document.unitsPerUser;
  figures.length = path.GetLength() / scale;
  figures.area = path.GetArea() / scale / scale;
  const auto box = path.GetTightBBox();
  figures.box = {box.minx / scale, box.miny / scale, box.maxx / scale, box.maxy / scale};
  figures.valid = Lumo::IsValidCurve(path.GetNodeTypes(), path.GetPointCount());
  return figures;
}

Json JsonFigures(const std::string& id, const Figures& f) {
  return {{"id", id},           {"subpaths", f.subpaths},
          {"open", f.open},     {"closed", f.closed},
          {"nodes", f.nodes},   {"lines", f.lines},
          {"curves", f.curves}, {"length", f.length},
          {"area", f.area},     {"bbox", {f.box.minx, f.box.miny, f.box.maxx, f.box.maxy}},
          {"valid", f.valid}};
}

}  // namespace tool
