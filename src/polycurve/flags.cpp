#include "lumo/crv_navigation.h"
#include "lumo/polycurve.h"
#include "polycurve/edit_in_place.h"
#include "polycurve/subpath_walk.h"

namespace Lumo {
template <class T>
bool PolycurveT<T>::ClearLetterFlags() noexcept {
  bool any = false;
  for (std::size_t i = 0; i < GetPointCount() && !any; ++i) any = GetNodeTypes()[i].IsLetter();
  return any && WriteInPlace(*this, [](T*, NODETYPE* types, int count) {
           for (int i = 0; i < count; ++i) types[i].Set(NODETYPE::kLetter, false);
         });
}

template <class T>
bool PolycurveT<T>::ClearUserFlagOnArcs() noexcept {
  return WriteInPlace(*this, [](T*, NODETYPE* types, int count) {
    for (int i = 0; i < count; ++i) {
      if (types[i].IsControl()) types[i].Set(NODETYPE::kUser, false);
    }
  });
}

template <class T>
bool PolycurveT<T>::IsEnabled(std::size_t i) const noexcept {
  return GetNodeType(i).IsEnabled();
}

template <class T>
bool PolycurveT<T>::SetEnabled(std::size_t i, bool enable) noexcept {
  return i < GetPointCount() &&
         WriteInPlace(
             *this, [&](T*, NODETYPE* types,
                        int count) { CRV_SetEnabled(types, count, static_cast<int>(i), enable); });
}

template <class T>
bool PolycurveT<T>::SetCont(std::size_t i, ContinuityType continuity) noexcept {
  return i < GetPointCount() &&
         WriteInPlace(
             *this, [&](T*, NODETYPE* types,
                        int count) { CRV_SetCont(types, count, static_cast<int>(i), continuity); });
}

template <class T>
bool PolycurveT<T>::EnableAllNodes() noexcept {
  return WriteInPlace(*this, [](T*, NODETYPE* types, int count) { CRV_EnableAllNodes(types, count); });
}

template <class T>
bool PolycurveT<T>::DisableAllNodes() noexcept {
  return WriteInPlace(*this, [](T*, NODETYPE* types, int count) { CRV_DisableAllNodes(types, count); });
}

template <class T>
bool PolycurveT<T>::EnableAllControls() noexcept {
  return WriteInPlace(*this, [](T*, NODETYPE* types, int count) { CRV_EnableAllControls(types, count); });
}

template <class T>
bool PolycurveT<T>::EnableOneControl(std::size_t i) noexcept {
  return i < GetPointCount() &&
         WriteInPlace(
             *this, [&](T*, NODETYPE* types,
                        int count) { CRV_EnableOneControl(types, count, static_cast<int>(i)); });
}

template <class T>
bool PolycurveT<T>::EnableSubpath(std::size_t i, bool enable) noexcept {
  return i < GetPointCount() &&
         WriteInPlace(
             *this, [&](T*, NODETYPE* types,
                        int count) { CRV_EnableSubpath(types, count, static_cast<int>(i), enable); });
}

template <class T>
bool PolycurveT<T>::EnableFirstAndLastInClosedSubpaths() noexcept {
  return WriteInPlace(*this, [](T*, NODETYPE* types, int count) {
    WalkSubpaths(types, static_cast<std::size_t>(count), [&](std::size_t first, std::size_t end) {
      NODETYPE& start = types[first];
      NODETYPE& last = types[end - 1];
      if (start.IsClosed() && last.IsClosed() && (start.IsEnabled() || last.IsEnabled())) {
        start |= NODETYPE::kEnabled;
        last |= NODETYPE::kEnabled;
      }
      return true;
    });
  });
}

#define LUMO_FLAG_MEMBERS(T)                                                          \
  LUMO_INSTANTIATE bool PolycurveT<T>::ClearLetterFlags() noexcept;                   \
  LUMO_INSTANTIATE bool PolycurveT<T>::ClearUserFlagOnArcs() noexcept;                \
  LUMO_INSTANTIATE bool PolycurveT<T>::IsEnabled(std::size_t) const noexcept;         \
  LUMO_INSTANTIATE bool PolycurveT<T>::SetEnabled(std::size_t, bool) noexcept;        \
  LUMO_INSTANTIATE bool PolycurveT<T>::SetCont(std::size_t, ContinuityType) noexcept; \
  LUMO_INSTANTIATE bool PolycurveT<T>::EnableAllNodes() noexcept;                     \
  LUMO_INSTANTIATE bool PolycurveT<T>::DisableAllNodes() noexcept;                    \
  LUMO_INSTANTIATE bool PolycurveT<T>::EnableAllControls() noexcept;                  \
  LUMO_INSTANTIATE bool PolycurveT<T>::EnableOneControl(std::size_t) noexcept;        \
  LUMO_INSTANTIATE bool PolycurveT<T>::EnableSubpath(std::size_t, bool) noexcept;     \
  LUMO_INSTANTIATE bool PolycurveT<T>::EnableFirstAndLastInClosedSubpaths() noexcept;
LUMO_FLAG_MEMBERS(tagPOINT)
LUMO_FLAG_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
