#pragma once
// Growing and checking the arrays behind a path. Private to src/polycurve.

#include <algorithm>
#include <functional>

#include "lumo/curve_data.h"

namespace Lumo {

/// Room for n nodes in both arrays, so that nothing that follows can fail. Grows by halves again at least, so
/// that appending node by node is linear in all.
template <class T>
bool EnsureRoom(CurveData<T>& data, std::size_t n) noexcept {
  try {
    const std::size_t capacity = std::min(data.points.capacity(), data.types.capacity());
    if (n <= capacity) return true;
    const std::size_t room = std::max(n, capacity + capacity / 2);
    data.points.reserve(room);
    data.types.reserve(room);
    return true;
  } catch (...) {
    return false;
  }
}

/// Whether source begins inside array, so that writing the array would change or move the source.
template <class U>
bool IsInside(const U* source, const U* array, std::size_t count) noexcept {
  // std::less orders pointers into different arrays too.
  return source && array && !std::less<>{}(source, array) && std::less<>{}(source, array + count);
}

}  // namespace Lumo
