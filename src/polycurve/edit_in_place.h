#pragma once
// How a member runs an in-place function of the C-style layer: room first, then the function, and only a
// result that is a count ends the use of the buffer.

#include <algorithm>
#include <limits>

#include "lumo/polycurve.h"

namespace Lumo {

/// Runs edit(points, types, count), which may use `room` more nodes and returns the new count or a negative
/// refusal. False, with the path's nodes as they were, on a refusal and when there is no room.
template <class T, class Edit>
bool EditInPlace(PolycurveT<T>& path, std::size_t room, Edit edit) noexcept {
  constexpr std::size_t kMost = (std::numeric_limits<int>::max)();
  const std::size_t count = path.GetPointCount();
  if (count > kMost || room > kMost - count) return false;
  const DrawCurveT<T> buffer = path.GetBuffer(count + room);
  if (buffer.count != count + room) return false;
  const int result = buffer.count == 0 ? 0 : edit(buffer.points, buffer.types, static_cast<int>(count));
  path.ReleaseBuffer(result < 0 ? count : std::min(static_cast<std::size_t>(result), buffer.count));
  return result >= 0;
}

/// Calls visit with the writable arrays; the count stays. (An empty path has nothing to write.)
template <class T, class Visit>
bool WriteInPlace(PolycurveT<T>& path, Visit visit) noexcept {
  const DrawCurveT<T> buffer = path.GetBuffer();
  if (buffer.count != path.GetPointCount()) return false;
  if (buffer.count > 0) visit(buffer.points, buffer.types, static_cast<int>(buffer.count));
  return true;
}

}  // namespace Lumo
