#pragma once
// The two point types that every path operation exists for, and the integer rectangle.

#include <type_traits>

#include "tav/math/bounds.h"
#include "tav/math/vector2d.h"

#if defined(_WIN32)
#include <windef.h>
#else
#include <cstdint>
/// A point of two signed 32-bit integers in document units.
struct LUMO_TYPE tagPOINT {
  std::int32_t x;
  std::int32_t y;
};
/// Four signed 32-bit integers. Which of top and bottom is the greater y is stated by each function that
/// takes or gives a rectangle.
struct LUMO_TYPE tagRECT {
  std::int32_t left;
  std::int32_t top;
  std::int32_t right;
  std::int32_t bottom;
};
#endif

/// Exactly the same coordinates; not.
inline constexpr bool operator==(const tagPOINT& a, const tagPOINT& b) { return a.x == b.x && a.y == b.y; }
inline constexpr bool operator!=(const tagPOINT& a, const tagPOINT& b) { return !(a == b); }

namespace Lumo {

/// T itself, where the type of a template is not to be deduced from: a null literal may then stand there.
template <class T>
using NotDeduced = std::common_type_t<T>;

/// Exists where the two types are one: a template with it takes that type as it is, without conversions.
template <class A, class B>
using Only = std::enable_if_t<std::is_same_v<A, B>, int>;

}  // namespace Lumo
