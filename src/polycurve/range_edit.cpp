#include <algorithm>
#include <limits>
#include <utility>

#include "lumo/path_array.h"
#include "lumo/polycurve.h"
#include "polycurve/storage.h"

namespace Lumo {
namespace {

/// Puts n given elements in the place of the `removed` ones at start. There is room, so nothing throws.
template <class U>
void Splice(std::vector<U>& array, std::size_t start, std::size_t removed, const U* source, std::size_t n) {
  const auto at = array.begin() + static_cast<std::ptrdiff_t>(start);
  const std::size_t overwritten = std::min(n, removed);
  std::copy(source, source + overwritten, at);
  const auto rest = at + static_cast<std::ptrdiff_t>(overwritten);
  if (n > removed) {
    array.insert(rest, source + overwritten, source + n);
  } else {
    array.erase(rest, at + static_cast<std::ptrdiff_t>(removed));
  }
}

}  // namespace

template <class T>
bool PolycurveT<T>::ReplacePoints(std::size_t start, std::size_t removeCount, const T* points,
                                  const NODETYPE* types, std::size_t n) noexcept {
  const std::size_t count = GetPointCount();
  if (!points || !types) n = 0;
  if (n > 0 && (IsInside(points, GetPoints(), count) || IsInside(types, GetNodeTypes(), count))) {
    const PolycurveT source(points, types, n);
    if (source.GetPointCount() != n) return false;
    return ReplacePoints(start, removeCount, source.GetPoints(), source.GetNodeTypes(), n);
  }
  start = std::min(start, count);
  removeCount = std::min(removeCount, count - start);
  const std::size_t kept = count - removeCount;
  if (n > std::numeric_limits<std::size_t>::max() - kept) return false;
  CurveData<T>* data = GetCurveData();
  if (!data || !EnsureRoom(*data, kept + n)) return false;
  Splice(data->points, start, removeCount, points, n);
  Splice(data->types, start, removeCount, types, n);
  return true;
}

template <class T>
bool PolycurveT<T>::ReplacePoints(std::size_t start, std::size_t removeCount,
                                  const PolycurveT& other) noexcept {
  return ReplacePoints(start, removeCount, other, 0, other.GetPointCount());
}

template <class T>
bool PolycurveT<T>::ReplacePoints(std::size_t start, std::size_t removeCount, const PolycurveT& other,
                                  std::size_t otherStart, std::size_t n) noexcept {
  otherStart = std::min(otherStart, other.GetPointCount());
  n = std::min(n, other.GetPointCount() - otherStart);
  if (n == 0) return ReplacePoints(start, removeCount, nullptr, nullptr, 0);
  return ReplacePoints(start, removeCount, other.GetPoints() + otherStart, other.GetNodeTypes() + otherStart,
                       n);
}

template <class T>
bool PolycurveT<T>::InsertPoints(std::size_t at, const T* points, const NODETYPE* types,
                                 std::size_t n) noexcept {
  return ReplacePoints(at, 0, points, types, n);
}

template <class T>
bool PolycurveT<T>::InsertPoints(std::size_t at, const PolycurveT& other) noexcept {
  return ReplacePoints(at, 0, other);
}

template <class T>
bool PolycurveT<T>::InsertPoints(std::size_t at, const PolycurveT& other, std::size_t otherStart,
                                 std::size_t n) noexcept {
  return ReplacePoints(at, 0, other, otherStart, n);
}

template <class T>
bool PolycurveT<T>::DeletePoints(std::size_t start, std::size_t n) noexcept {
  return ReplacePoints(start, n, nullptr, nullptr, 0);
}

template <class T>
bool PolycurveT<T>::Truncate(std::size_t n) noexcept {
  return n >= GetPointCount() ? GetCurveData() != nullptr : ReleaseBuffer(n);
}

template <class T>
bool PolycurveT<T>::Reverse() noexcept {
  const DrawCurveT<T> buffer = GetBuffer();
  if (buffer.count > 0) Lumo::Reverse(buffer.points, buffer.types, 0, static_cast<int>(buffer.count) - 1);
  return buffer.count == GetPointCount();
}

#define LUMO_RANGE_EDIT(T)                                                                                  \
  LUMO_INSTANTIATE bool PolycurveT<T>::ReplacePoints(std::size_t, std::size_t, const T*, const NODETYPE*,   \
                                                     std::size_t) noexcept;                                 \
  LUMO_INSTANTIATE bool PolycurveT<T>::ReplacePoints(std::size_t, std::size_t, const PolycurveT&) noexcept; \
  LUMO_INSTANTIATE bool PolycurveT<T>::ReplacePoints(std::size_t, std::size_t, const PolycurveT&,           \
                                                     std::size_t, std::size_t) noexcept;                    \
  LUMO_INSTANTIATE bool PolycurveT<T>::InsertPoints(std::size_t, const T*, const NODETYPE*,                 \
                                                    std::size_t) noexcept;                                  \
  LUMO_INSTANTIATE bool PolycurveT<T>::InsertPoints(std::size_t, const PolycurveT&) noexcept;               \
  LUMO_INSTANTIATE bool PolycurveT<T>::InsertPoints(std::size_t, const PolycurveT&, std::size_t,            \
                                                    std::size_t) noexcept;                                  \
  LUMO_INSTANTIATE bool PolycurveT<T>::DeletePoints(std::size_t, std::size_t) noexcept;                     \
  LUMO_INSTANTIATE bool PolycurveT<T>::Truncate(std::size_t) noexcept;                                      \
  LUMO_INSTANTIATE bool PolycurveT<T>::Reverse() noexcept;
LUMO_RANGE_EDIT(tagPOINT)
LUMO_RANGE_EDIT(TavMath::DPoint)

}  // namespace Lumo
