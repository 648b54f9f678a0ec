#pragma once
// Between the paths of tests and the path class.

#include <string_view>

#include "lumo/polycurve.h"
#include "support/generators.h"

namespace test {

template <class T>
Lumo::PolycurveT<T> ToCurve(const Path<T>& path) {
  return {path.points.data(), path.types.data(), path.points.size()};
}
template <class T>
Path<T> ToPath(const Lumo::PolycurveT<T>& curve) {
  const std::size_t n = curve.GetPointCount();
  return {{curve.GetPoints(), curve.GetPoints() + n}, {curve.GetNodeTypes(), curve.GetNodeTypes() + n}};
}
template <class T>
Lumo::PolycurveT<T> ParseCurve(std::string_view svg) {
  return ToCurve(ParsePath<T>(svg));
}

}  // namespace test
