#pragma once
// What SVG puts into attributes besides path data: lengths with units, transforms, viewports.

#include <optional>
#include <string_view>

#include "tav/math/matrix.h"

namespace tool {

/// What a length is measured against.
enum class Extent { width, height, diagonal };

/// The viewport that lengths in percent refer to, in user units.
struct Viewport {
  double width = 0;
  double height = 0;
  double Of(Extent extent) const;
};

/// A length in user units: a number alone or with px, pt, pc, mm, cm, in, q, em, ex, rem, ch, vw, vh or %.
/// One inch is 96 user units; as styles are not read, an em is 16. An InputError for anything else.
double ParseLength(std::string_view text, const Viewport& viewport, Extent extent);

/// The unit of a length in lower case; nothing for a bare number, or for what is not a length.
std::string UnitOf(std::string_view length);

/// The value of a transform attribute: its functions are applied from right to left. An InputError with the
/// place when it is not well formed.
TavMath::MATRIX ParseTransform(std::string_view text);

/// The map from a viewBox to the rectangle that shows it, as preserveAspectRatio says ("xMidYMid meet" when
/// empty).
TavMath::MATRIX ViewBoxTransform(const double viewBox[4], double x, double y, double width, double height,
                                 std::string_view preserveAspectRatio);

}  // namespace tool
