#include <cmath>
#include <cstdint>

#include "core/segment_walk.h"
#include "lumo/measure.h"
#include "lumo/polycurve.h"
#include "math/point_traits.h"
#include "polycurve/tolerances.h"

namespace Lumo {
namespace {

double TwiceMeanHeight(const DPoint& a, const DPoint& b) { return b.y + a.y; }
double Advance(const DPoint& a, const DPoint& b) { return b.x - a.x; }

// 32-bit sums and differences that wrap around as two's complement does: hosts rely on the area of far-off
// coordinates being what 32-bit arithmetic gives.
double Wrapped(std::uint32_t value) { return static_cast<double>(static_cast<std::int32_t>(value)); }
std::uint32_t Unsigned(std::int32_t value) { return static_cast<std::uint32_t>(value); }
double TwiceMeanHeight(const tagPOINT& a, const tagPOINT& b) {
  return Wrapped(Unsigned(b.y) + Unsigned(a.y));
}
double Advance(const tagPOINT& a, const tagPOINT& b) { return Wrapped(Unsigned(b.x) - Unsigned(a.x)); }

template <class T>
double AreaUnderLine(const T& a, const T& b) {
  return TwiceMeanHeight(a, b) * Advance(a, b) * 0.5;
}

template <class T>
double DistanceBetween(const T& a, const T& b) {
  const DVector d = ToDouble(b) - ToDouble(a);
  const double sqrd = TavMath::LengthSqrd(d);
  return sqrd > kPlainRootMin && sqrd < kPlainRootMax ? std::sqrt(sqrd) : TavMath::Length(d);
}

}  // namespace

template <class T>
double GetArea(const T* points, const NODETYPE* types, int count) noexcept {
  if (!points || !types) return 0;
  double area = 0;
  bool closed = false;
  for (int i = 0; i < count; ++i) {
    if (types[i].IsMove()) {
      closed = types[i].IsClosed();
    } else if (types[i].IsLine()) {
      if (closed && i > 0) area += AreaUnderLine(points[i - 1], points[i]);
    } else if (types[i].IsControl() && count - i > 2) {
      if (closed && i > 0) {
        DPoint bezier[4];
        LoadCubic(points + i - 1, bezier);
        area += TavMath::CubicBezier::GetAreaUnderBezier(bezier);
      }
      i += 2;
    }
  }
  return area;
}

template <class T>
double GetPolygonArea(const T* points, int count) noexcept {
  double area = 0;
  for (int i = 1; points && i < count; ++i) area += AreaUnderLine(points[i - 1], points[i]);
  return area;
}

template <class T>
double GetLength(const T* points, int count) noexcept {
  double length = 0;
  for (int i = 1; points && i < count; ++i) length += DistanceBetween(points[i - 1], points[i]);
  return length;
}

template <class T>
double GetLength(const T* points, const NODETYPE* types, int count) noexcept {
  return GetLength(points, types, count, TavMath::LengthAccuracy());
}

template <class T>
double GetLength(const T* points, const NODETYPE* types, int count,
                 TavMath::LengthAccuracy accuracy) noexcept {
  if (!points || !types) return 0;
  double length = 0;
  WalkSegments(types, count, [&](int first, int last) {
    if (last - first == 1) {
      length += DistanceBetween(points[first], points[last]);
    } else {
      DPoint bezier[4];
      LoadCubic(points + first, bezier);
      length += TavMath::CubicBezier::Length(bezier, accuracy);
    }
  });
  return length;
}

// ---- The members ----

template <class T>
double PolycurveT<T>::GetArea() const noexcept {
  return Lumo::GetArea(GetPoints(), GetNodeTypes(), IntCount());
}

template <class T>
bool PolycurveT<T>::IsClockwise() const noexcept {
  return GetArea() > 0;
}

template <class T>
double PolycurveT<T>::GetLength() const noexcept {
  return Lumo::GetLength(GetPoints(), GetNodeTypes(), IntCount());
}

template <class T>
double PolycurveT<T>::GetLength(TavMath::LengthAccuracy accuracy) const noexcept {
  return Lumo::GetLength(GetPoints(), GetNodeTypes(), IntCount(), accuracy);
}

LUMO_AREA_AND_LENGTH(LUMO_INSTANTIATE, tagPOINT)
LUMO_AREA_AND_LENGTH(LUMO_INSTANTIATE, TavMath::DPoint)

#define LUMO_AREA_AND_LENGTH_MEMBERS(T)                              \
  LUMO_INSTANTIATE double PolycurveT<T>::GetArea() const noexcept;   \
  LUMO_INSTANTIATE bool PolycurveT<T>::IsClockwise() const noexcept; \
  LUMO_INSTANTIATE double PolycurveT<T>::GetLength() const noexcept; \
  LUMO_INSTANTIATE double PolycurveT<T>::GetLength(TavMath::LengthAccuracy) const noexcept;
LUMO_AREA_AND_LENGTH_MEMBERS(tagPOINT)
LUMO_AREA_AND_LENGTH_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
