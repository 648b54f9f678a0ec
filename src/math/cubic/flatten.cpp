#include <algorithm>
#include <cmath>

#include "tav/math/cubic_bezier.h"

namespace TavMath {
namespace {

using CubicBezier::Evaluate;

int PiecesFor(double largestSecondDifference, double factor, int maximum) {
  const double pieces = std::ceil(std::sqrt(factor * largestSecondDifference));
  if (!(pieces > 1)) return 1;
  return pieces < maximum ? static_cast<int>(pieces) : std::max(maximum, 1);
}

}  // namespace

int BezierToLines(const DPoint p[4], DPoint* buffer, int pieces) noexcept {
  if (buffer == nullptr) return 0;
  pieces = std::max(pieces, 1);
  const DPoint source[4] = {p[0], p[1], p[2], p[3]};
  for (int k = 0; k <= pieces; ++k) buffer[k] = Evaluate(source, static_cast<double>(k) / pieces);
  return pieces;
}

int CalculateNumBezierLines(const DPoint p[4], int maximum) noexcept {
  const DVector a = (p[0] - p[1]) + (p[2] - p[1]), b = (p[1] - p[2]) + (p[3] - p[2]);
  return PiecesFor(std::max(Length(a), Length(b)), 1.5, maximum);
}

int CalculateNumBezierLines(const tagRECT& box, int maximum) noexcept {
  // A second difference of points in a box is at most twice its diagonal.
  const double width = static_cast<double>(box.right) - box.left;
  const double height = static_cast<double>(box.bottom) - box.top;
  return PiecesFor(std::hypot(width, height), 3, maximum);
}

}  // namespace TavMath
