#pragma once
#include "lumo/polycurve.h"

namespace Lumo {

/// A path of straight lines through n points. Closed (only for n >= 2): the last point closes it when it
/// equals the first one exactly, else the first point is appended once more.
template <class T>
class LUMO_TEMPLATE_API PolylineT : public PolycurveT<T> {
 public:
  /// Copies the points.
  PolylineT(const T* points, std::size_t n, bool closed) noexcept;
  PolylineT(const PolylineT&) noexcept = default;
  PolylineT(PolylineT&&) noexcept = default;
  PolylineT& operator=(const PolylineT&) noexcept = default;
  PolylineT& operator=(PolylineT&&) noexcept = default;
  ~PolylineT() override;
};

LUMO_EXTERN_CLASS(PolylineT<tagPOINT>);
LUMO_EXTERN_CLASS(PolylineT<TavMath::DPoint>);

}  // namespace Lumo
