
#include "lumo/polycurve.h"
#include "math/point_traits.h"
#include "polycurve/curve_fit.h"

namespace Lumo {

template <class T>
bool PolycurveT<T>::AppendFittedCurve(const T* points, std::size_t n, double tolerance) noexcept {
  if (!points || n == 0 || !(tolerance >= 0)) return false;
  try {
    std::vector<DPoint> row;
    row.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
      const DPoint p = ToDouble(points[i]);
      if (std::isfinite(p.x) && std::isfinite(p.y) && (row.empty() || row.back() != p)) row.push_back(p);
    }
    if (row.empty()) return false;
    const std::vector<FittedPiece> pieces = FitCurve(row, tolerance, std::is_same_v<T, tagPOINT>);
    if (!Reserve(GetPointCount() + 1 + 3 * pieces.size())) return false;
    PushBackStart(FromDouble<T>(row.front()), NODETYPE::kUser);
    for (const FittedPiece& piece : pieces) {
      const T end = FromDouble<T>(row[static_cast<std::size_t>(piece.end)]);
      if (piece.line) {
        LineTo(end);
      } else {
        CubicTo(FromDouble<T>(piece.control1), FromDouble<T>(piece.control2), end);
        if (piece.smoothEnd)
          SetNodeType(GetPointCount() - 1, NODETYPE::kCurve | NODETYPE::kSmooth | NODETYPE::kUser);
      }
    }
    return true;
  } catch (...) {
    return false;
  }
}

template <class T>
bool PolycurveT<T>::AppendFittedCurve(const std::vector<T>& points, double tolerance) noexcept {
  return AppendFittedCurve(points.data(), points.size(), tolerance);
}

#define LUMO_FITTED_CURVE(T)                                                                      \
  LUMO_INSTANTIATE bool PolycurveT<T>::AppendFittedCurve(const T*, std::size_t, double) noexcept; \
  LUMO_INSTANTIATE bool PolycurveT<T>::AppendFittedCurve(const std::vector<T>&, double) noexcept;
LUMO_FITTED_CURVE(tagPOINT)
LUMO_FITTED_CURVE(TavMath::DPoint)

}  // namespace Lumo
