#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "lumo/polycurve.h"
#include "math/point_traits.h"
#include "polycurve/edit_in_place.h"

namespace Lumo {
namespace {

/// The nodes first .. last of a path of count nodes, in either order, cut to the path.
SubcurveRange CutRange(std::size_t first, std::size_t last, std::size_t count) {
  if (first > last) std::swap(first, last);
  if (first >= count) return {count, count};
  return {first, std::min(last, count - 1) + 1};
}

SubcurveRange WholeRange(std::size_t count) { return {0, count}; }

std::int32_t SaturatedSum(std::int32_t a, std::int32_t b) {
  std::int32_t sum = 0;
  if (!__builtin_add_overflow(a, b, &sum)) return sum;
  return b < 0 ? std::numeric_limits<std::int32_t>::min() : std::numeric_limits<std::int32_t>::max();
}

void Translate(DPoint* points, std::size_t n, const DVector& offset) {
  for (std::size_t i = 0; i < n; ++i) points[i] += offset;
}

/// Adds in 32-bit arithmetic that wraps around; whether some sum left the range.
bool AddWrapping(tagPOINT* points, std::size_t n, std::uint32_t x, std::uint32_t y) {
  std::uint32_t overflow = 0;  // the top bit: a sum whose sign is that of neither term
  for (std::size_t i = 0; i < n; ++i) {
    const auto fromX = static_cast<std::uint32_t>(points[i].x),
               fromY = static_cast<std::uint32_t>(points[i].y);
    const std::uint32_t toX = fromX + x, toY = fromY + y;
    overflow |= ((fromX ^ toX) & (x ^ toX)) | ((fromY ^ toY) & (y ^ toY));
    points[i] = {static_cast<std::int32_t>(toX), static_cast<std::int32_t>(toY)};
  }
  return (overflow >> 31) != 0;
}

void Translate(tagPOINT* points, std::size_t n, const tagPOINT& offset) {
  // A block at a time is moved with plain additions; only one that leaves the range, and that is hardly ever
  // the case, is put back and moved again with care.
  constexpr std::size_t kBlock = 1024;
  const auto x = static_cast<std::uint32_t>(offset.x), y = static_cast<std::uint32_t>(offset.y);
  while (n > 0) {
    const std::size_t block = std::min(n, kBlock);
    if (AddWrapping(points, block, x, y)) {
      AddWrapping(points, block, 0 - x, 0 - y);
      for (std::size_t i = 0; i < block; ++i) {
        points[i] = {SaturatedSum(points[i].x, offset.x), SaturatedSum(points[i].y, offset.y)};
      }
    }
    points += block;
    n -= block;
  }
}

template <class T, class Map>
bool MapPoints(PolycurveT<T>& path, const SubcurveRange& range, Map map) {
  return WriteInPlace(path,
                      [&](T* points, NODETYPE*, int) { map(points + range.first, range.end - range.first); });
}

/// The map of one extent onto another; an extent of zero is only moved.
void FitExtent(double from, double size, double to, double wanted, double& scale, double& shift) {
  scale = size > 0 ? wanted / size : 1;
  shift = to - from * scale;
}

TavMath::BoundsT<double> Ordered(const tagRECT& r) {
  const auto [left, right] = std::minmax(r.left, r.right);
  const auto [top, bottom] = std::minmax(r.top, r.bottom);
  return {static_cast<double>(left), static_cast<double>(top), static_cast<double>(right),
          static_cast<double>(bottom)};
}
TavMath::BoundsT<double> Ordered(const TavMath::BoundsT<double>& b) {
  return {std::min(b.minx, b.maxx), std::min(b.miny, b.maxy), std::max(b.minx, b.maxx),
          std::max(b.miny, b.maxy)};
}

}  // namespace

template <class T>
bool PolycurveT<T>::TransformPoints(const MATRIX& matrix) noexcept {
  const MATRIX map = matrix;
  return MapPoints(*this, WholeRange(GetPointCount()),
                   [&](T* points, std::size_t n) { map.TransformPoints(points, n); });
}

template <class T>
bool PolycurveT<T>::TransformPoints(const MATRIX& matrix, std::size_t first, std::size_t last) noexcept {
  return MapPoints(*this, CutRange(first, last, GetPointCount()),
                   [&](T* points, std::size_t n) { matrix.TransformPoints(points, n); });
}

template <class T>
bool PolycurveT<T>::UnTransformPoints(const MATRIX& matrix) noexcept {
  MATRIX inverse = matrix;
  return inverse.Invert() && TransformPoints(inverse);
}

template <class T>
bool PolycurveT<T>::UnTransformPoints(const MATRIX& matrix, std::size_t first, std::size_t last) noexcept {
  MATRIX inverse = matrix;
  return inverse.Invert() && TransformPoints(inverse, first, last);
}

template <class T>
bool PolycurveT<T>::TranslatePoints(const Translation& offset) noexcept {
  const Translation by = offset;  // it may be one of the points that move
  return MapPoints(*this, WholeRange(GetPointCount()),
                   [&](T* points, std::size_t n) { Translate(points, n, by); });
}

template <class T>
bool PolycurveT<T>::TranslatePoints(const Translation& offset, std::size_t first, std::size_t last) noexcept {
  const Translation by = offset;
  return MapPoints(*this, CutRange(first, last, GetPointCount()),
                   [&](T* points, std::size_t n) { Translate(points, n, by); });
}

template <class T>
bool PolycurveT<T>::TransformToFit(const Box& rect) noexcept {
  if (IsEmpty()) return false;
  const TavMath::BoundsT<double> from = Ordered(GetTightBBox()), to = Ordered(rect);
  MATRIX fit;
  FitExtent(from.minx, from.Width(), to.minx, to.Width(), fit.a, fit.e);
  FitExtent(from.miny, from.Height(), to.miny, to.Height(), fit.d, fit.f);
  if (!std::isfinite(fit.a + fit.d + fit.e + fit.f)) return false;
  return TransformPoints(fit);
}

template <class T>
PolycurveT<T>& PolycurveT<T>::operator*=(const MATRIX& matrix) noexcept {
  TransformPoints(matrix);
  return *this;
}

template <class T>
PolycurveT<T>& PolycurveT<T>::operator/=(const MATRIX& matrix) noexcept {
  UnTransformPoints(matrix);
  return *this;
}

template <class T>
PolycurveT<T>& PolycurveT<T>::operator+=(const Translation& offset) noexcept {
  TranslatePoints(offset);
  return *this;
}

#define LUMO_TRANSFORM_MEMBERS(T)                                                                           \
  LUMO_INSTANTIATE bool PolycurveT<T>::TransformPoints(const MATRIX&) noexcept;                             \
  LUMO_INSTANTIATE bool PolycurveT<T>::TransformPoints(const MATRIX&, std::size_t, std::size_t) noexcept;   \
  LUMO_INSTANTIATE bool PolycurveT<T>::UnTransformPoints(const MATRIX&) noexcept;                           \
  LUMO_INSTANTIATE bool PolycurveT<T>::UnTransformPoints(const MATRIX&, std::size_t, std::size_t) noexcept; \
  LUMO_INSTANTIATE bool PolycurveT<T>::TranslatePoints(const PolycurveT<T>::Translation&) noexcept;         \
  LUMO_INSTANTIATE bool PolycurveT<T>::TranslatePoints(const PolycurveT<T>::Translation&, std::size_t,      \
                                                       std::size_t) noexcept;                               \
  LUMO_INSTANTIATE bool PolycurveT<T>::TransformToFit(const BoxT<T>&) noexcept;                             \
  LUMO_INSTANTIATE PolycurveT<T>& PolycurveT<T>::operator*=(const MATRIX&) noexcept;                        \
  LUMO_INSTANTIATE PolycurveT<T>& PolycurveT<T>::operator/=(const MATRIX&) noexcept;                        \
  LUMO_INSTANTIATE PolycurveT<T>& PolycurveT<T>::operator+=(const PolycurveT<T>::Translation&) noexcept;
LUMO_TRANSFORM_MEMBERS(tagPOINT)
LUMO_TRANSFORM_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
