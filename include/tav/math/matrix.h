#pragma once
#include <cstddef>

#include "lumo/point_types.h"

namespace TavMath {

/// An affine map: x' = a x + c y + e, y' = b x + d y + f. Default: the identity.
struct LUMO_API MATRIX {
  /// The six coefficients.
  double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

  /// Maps count points in place; integer points are rounded half away from zero. A null array or a count of 0
  /// does nothing.
  void TransformPoints(DPoint* points, std::size_t count) const noexcept;
  void TransformPoints(tagPOINT* points, std::size_t count) const noexcept;
  /// The image of one point.
  DPoint Transform(const DPoint& p) const noexcept { return {a * p.x + c * p.y + e, b * p.x + d * p.y + f}; }
  /// The image of a direction: the translation does not apply.
  DVector Transform(const DVector& v) const noexcept { return {a * v.x + c * v.y, b * v.x + d * v.y}; }
  /// Replaces this map by its inverse. False, and unchanged, when it is singular or not finite.
  bool Invert() noexcept;
  /// a d - b c: the factor for areas, negative for a mirror image.
  double Determinant() const noexcept { return a * d - b * c; }
};

/// First `first`, then `second`.
LUMO_API MATRIX Concatenate(const MATRIX& first, const MATRIX& second) noexcept;
/// The map that takes (1,0) to xAxis, (0,1) to yAxis and (0,0) to origin.
LUMO_API MATRIX ConstructMatrix(const DVector& xAxis, const DVector& yAxis, const DPoint& origin) noexcept;

}  // namespace TavMath

using TavMath::MATRIX;
