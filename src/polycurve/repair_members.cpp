// Validity and repair as members.

#include <new>
#include <vector>

#include "lumo/polycurve.h"
#include "lumo/repair.h"
#include "math/point_traits.h"
#include "polycurve/edit_in_place.h"
#include "polycurve/subpath_walk.h"
#include "tav/math/rect.h"

namespace Lumo {
namespace {

bool IsSmaller(const tagRECT& box, double size) {
  return static_cast<double>(box.right) - box.left < size && static_cast<double>(box.bottom) - box.top < size;
}
bool IsSmaller(const TavMath::BoundsT<double>& box, double size) {
  return box.Width() < size && box.Height() < size;
}

}  // namespace

template <class T>
bool PolycurveT<T>::IsValidCurve() const noexcept {
  return Lumo::IsValidCurve(GetNodeTypes(), GetPointCount());
}

template <class T>
bool PolycurveT<T>::RepairNodeTypes() noexcept {
  bool changed = false;
  WriteInPlace(*this, [&](T*, NODETYPE* types, int count) {
    changed = FixNodeTypes(types, static_cast<std::size_t>(count));
  });
  return changed;
}

template <class T>
bool PolycurveT<T>::ScrubDanglingMoves(bool keepLetterFlags) noexcept {
  return EditInPlace(*this, 0, [&](T* points, NODETYPE* types, int count) {
    return Lumo::ScrubDanglingMoves(points, types, count, keepLetterFlags);
  });
}

template <class T>
bool PolycurveT<T>::RepairCurves(const CurveRepairSettings& settings) noexcept {
  try {
    std::vector<T> points(GetPoints(), GetPoints() + GetPointCount());
    std::vector<NODETYPE> types(GetNodeTypes(), GetNodeTypes() + GetPointCount());
    CurveRepairReport report;
    if (!Lumo::RepairCurves(points, types, settings, &report)) return false;
    return !report.Any() || SetPoints(points.data(), types.data(), points.size());
  } catch (...) {
    return false;
  }
}

template <class T>
bool PolycurveT<T>::RepairContinuity(const CurveRepairSettings& settings) noexcept {
  return WriteInPlace(*this, [&](T* points, NODETYPE* types, int count) {
    Lumo::RepairContinuity(points, types, count, settings);
  });
}

template <class T>
bool PolycurveT<T>::RemoveZeroLengthSegments() noexcept {
  return EditInPlace(*this, 0, [](T* points, NODETYPE* types, int count) {
    return static_cast<int>(Lumo::RemoveZeroLengthSegments(points, types, static_cast<std::size_t>(count)));
  });
}

template <class T>
bool PolycurveT<T>::RemoveShortSegments(double length) noexcept {
  return EditInPlace(*this, 0, [length](T* points, NODETYPE* types, int count) {
    return Lumo::RemoveShortSegments(points, types, count, length, length);
  });
}

template <class T>
bool PolycurveT<T>::RemoveSmallSubpaths(double size) noexcept {
  PolycurveT kept;
  if (!kept.Reserve(GetPointCount())) return false;
  WalkSubpaths(GetNodeTypes(), GetPointCount(), [&](std::size_t first, std::size_t end) {
    const PolycurveRefT<T> subpath(GetPoints() + first, GetNodeTypes() + first, end - first);
    if (!IsSmaller(subpath.GetTightBBox(), size)) kept.PushBack(subpath);
    return true;
  });
  Swap(kept);
  return true;
}

template <class T>
bool PolycurveT<T>::HasNodeCloseToCurve(const T& point, double tolerance) const noexcept {
  if (!(tolerance >= 0)) return false;
  const DPoint query = ToDouble(point);
  for (std::size_t i = 0; i < GetPointCount(); ++i) {
    if (GetNodeTypes()[i].IsOnCurve() &&
        TavMath::DistanceSqrd(ToDouble(GetPoints()[i]), query) <= tolerance * tolerance) {
      return true;
    }
  }
  return false;
}

#define LUMO_REPAIR_MEMBERS(T)                                                                \
  LUMO_INSTANTIATE bool PolycurveT<T>::IsValidCurve() const noexcept;                         \
  LUMO_INSTANTIATE bool PolycurveT<T>::RepairNodeTypes() noexcept;                            \
  LUMO_INSTANTIATE bool PolycurveT<T>::ScrubDanglingMoves(bool) noexcept;                     \
  LUMO_INSTANTIATE bool PolycurveT<T>::RepairCurves(const CurveRepairSettings&) noexcept;     \
  LUMO_INSTANTIATE bool PolycurveT<T>::RepairContinuity(const CurveRepairSettings&) noexcept; \
  LUMO_INSTANTIATE bool PolycurveT<T>::RemoveZeroLengthSegments() noexcept;                   \
  LUMO_INSTANTIATE bool PolycurveT<T>::RemoveShortSegments(double) noexcept;                  \
  LUMO_INSTANTIATE bool PolycurveT<T>::RemoveSmallSubpaths(double) noexcept;                  \
  LUMO_INSTANTIATE bool PolycurveT<T>::HasNodeCloseToCurve(const T&, double) const noexcept;
LUMO_REPAIR_MEMBERS(tagPOINT)
LUMO_REPAIR_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
