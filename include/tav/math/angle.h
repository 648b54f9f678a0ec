#pragma once
#include "lumo/export.h"
#include "tav/math/vector2d.h"

namespace TavMath {
namespace Radians {
/// The equal angle in [0, 2 pi); 2 pi itself is never returned. NaN for a non-finite angle.
LUMO_API double NormalizeAngle(double angle) noexcept;
/// (cos a, sin a).
LUMO_API DVector AngleToVector(double angle) noexcept;
/// The angle of a direction in (-pi, pi]; 0 for the zero vector.
LUMO_API double VectorToAngle(const DVector& v) noexcept;
}  // namespace Radians

namespace Degrees {
/// The unsigned angle between two directions, 0 to 180 degrees, accurate near both ends. 0 when either is
/// zero.
LUMO_API double GetFineAngle(const DVector& u, const DVector& v) noexcept;
}  // namespace Degrees
}  // namespace TavMath
