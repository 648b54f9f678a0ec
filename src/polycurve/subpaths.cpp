#include <utility>

#include "lumo/crv_navigation.h"
#include "lumo/polycurve.h"
#include "polycurve/subpath_walk.h"

namespace Lumo {
namespace {

/// A list made by `fill`, or an empty one when memory runs out.
template <class Item, class Fill>
std::vector<Item> MakeList(Fill fill) noexcept {
  std::vector<Item> list;
  try {
    fill(list);
  } catch (...) {
    list.clear();
  }
  return list;
}

}  // namespace

template <class T>
std::size_t PolycurveT<T>::GetSubpathCount() const noexcept {
  return static_cast<std::size_t>(CRV_NumSubpaths(GetNodeTypes(), IntCount()));
}

template <class T>
std::optional<SubcurveRange> PolycurveT<T>::GetSubpathRange(std::size_t k) const noexcept {
  std::optional<SubcurveRange> found;
  WalkSubpaths(GetNodeTypes(), GetPointCount(), [&](std::size_t first, std::size_t end) {
    if (k-- != 0) return true;
    found = SubcurveRange{first, end};
    return false;
  });
  return found;
}

template <class T>
bool PolycurveT<T>::GetSubpathRange(std::size_t k, std::size_t& first, std::size_t& end) const noexcept {
  const std::optional<SubcurveRange> range = GetSubpathRange(k);
  if (!range) return false;
  first = range->first;
  end = range->end;
  return true;
}

template <class T>
PolycurveT<T> PolycurveT<T>::GetSubpath(std::size_t k) const noexcept {
  const std::optional<SubcurveRange> range = GetSubpathRange(k);
  if (!range) return PolycurveT();
  return PolycurveT(GetPoints() + range->first, GetNodeTypes() + range->first, range->end - range->first);
}

template <class T>
std::vector<PolycurveT<T>> PolycurveT<T>::GetSubpaths() const {
  return MakeList<PolycurveT>([&](auto& list) {
    WalkSubpaths(GetNodeTypes(), GetPointCount(), [&](std::size_t first, std::size_t end) {
      list.emplace_back(GetPoints() + first, GetNodeTypes() + first, end - first);
      return true;
    });
  });
}

template <class T>
std::vector<PolycurveRefT<T>> PolycurveT<T>::GetSubpathRefs() const {
  return MakeList<PolycurveRefT<T>>([&](auto& list) {
    WalkSubpaths(GetNodeTypes(), GetPointCount(), [&](std::size_t first, std::size_t end) {
      list.emplace_back(GetPoints() + first, GetNodeTypes() + first, end - first);
      return true;
    });
  });
}

template <class T>
std::vector<SubcurveRange> PolycurveT<T>::GetSubpathIndices() const {
  return MakeList<SubcurveRange>([&](auto& list) {
    WalkSubpaths(GetNodeTypes(), GetPointCount(), [&](std::size_t first, std::size_t end) {
      list.push_back({first, end});
      return true;
    });
  });
}

template <class T>
std::vector<ConstDrawCurveT<T>> PolycurveT<T>::GetSubpathCurves() const {
  return MakeList<ConstDrawCurveT<T>>([&](auto& list) {
    WalkSubpaths(GetNodeTypes(), GetPointCount(), [&](std::size_t first, std::size_t end) {
      list.push_back({GetPoints() + first, GetNodeTypes() + first, end - first});
      return true;
    });
  });
}

template <class T>
std::vector<ConstDrawCurveT<T>> PolycurveT<T>::GetEnabledSubpathCurves() const {
  return MakeList<ConstDrawCurveT<T>>([&](auto& list) {
    const NODETYPE* types = GetNodeTypes();
    WalkSubpaths(types, GetPointCount(), [&](std::size_t first, std::size_t end) {
      for (std::size_t i = first; i < end; ++i) {
        if (!types[i].IsSelected()) continue;
        list.push_back({GetPoints() + first, types + first, end - first});
        break;
      }
      return true;
    });
  });
}

template <class T>
std::vector<PolycurveT<T>> PolycurveT<T>::GetLetterCurves() const {
  return MakeList<PolycurveT>([&](auto& list) {
    const NODETYPE* types = GetNodeTypes();
    std::size_t letterStart = 0;
    const auto add = [&](std::size_t end) {
      list.emplace_back(GetPoints() + letterStart, types + letterStart, end - letterStart);
      letterStart = end;
    };
    WalkSubpaths(types, GetPointCount(), [&](std::size_t first, std::size_t) {
      if (types[first].IsLetter() && first > letterStart) add(first);
      return true;
    });
    if (!IsEmpty()) add(GetPointCount());
  });
}

template <class T>
bool PolycurveT<T>::IsClosed(std::size_t k) const noexcept {
  const std::optional<SubcurveRange> range = GetSubpathRange(k);
  return range && GetNodeType(range->first).IsClosed();
}

template <class T>
bool PolycurveT<T>::IsLastSubpathClosed() const noexcept {
  const int count = IntCount();
  return count > 0 && CRV_IsThisSubpathClosed(GetNodeTypes(), count, count - 1) != 0;
}

template <class T>
bool PolycurveT<T>::ContainsClosedSubpaths() const noexcept {
  return CRV_ContainsClosedSubpath(GetNodeTypes(), IntCount()) != 0;
}

template <class T>
bool PolycurveT<T>::ContainsOpenSubpaths(bool onlyRealSubpaths) const noexcept {
  return CRV_ContainsOpenSubpath(GetNodeTypes(), IntCount(), onlyRealSubpaths) != 0;
}

#define LUMO_SUBPATH_MEMBERS(T)                                                                             \
  LUMO_INSTANTIATE std::size_t PolycurveT<T>::GetSubpathCount() const noexcept;                             \
  LUMO_INSTANTIATE std::optional<SubcurveRange> PolycurveT<T>::GetSubpathRange(std::size_t) const noexcept; \
  LUMO_INSTANTIATE bool PolycurveT<T>::GetSubpathRange(std::size_t, std::size_t&, std::size_t&)             \
      const noexcept;                                                                                       \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::GetSubpath(std::size_t) const noexcept;                     \
  LUMO_INSTANTIATE std::vector<PolycurveT<T>> PolycurveT<T>::GetSubpaths() const;                           \
  LUMO_INSTANTIATE std::vector<PolycurveRefT<T>> PolycurveT<T>::GetSubpathRefs() const;                     \
  LUMO_INSTANTIATE std::vector<SubcurveRange> PolycurveT<T>::GetSubpathIndices() const;                     \
  LUMO_INSTANTIATE std::vector<ConstDrawCurveT<T>> PolycurveT<T>::GetSubpathCurves() const;                 \
  LUMO_INSTANTIATE std::vector<ConstDrawCurveT<T>> PolycurveT<T>::GetEnabledSubpathCurves() const;          \
  LUMO_INSTANTIATE std::vector<PolycurveT<T>> PolycurveT<T>::GetLetterCurves() const;                       \
  LUMO_INSTANTIATE bool PolycurveT<T>::IsClosed(std::size_t) const noexcept;                                \
  LUMO_INSTANTIATE bool PolycurveT<T>::IsLastSubpathClosed() const noexcept;                                \
  LUMO_INSTANTIATE bool PolycurveT<T>::ContainsClosedSubpaths() const noexcept;                             \
  LUMO_INSTANTIATE bool PolycurveT<T>::ContainsOpenSubpaths(bool) const noexcept;
LUMO_SUBPATH_MEMBERS(tagPOINT)
LUMO_SUBPATH_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
