// Breaking, deleting, converting and turning round: the node edits that take segments apart or put them in
// another order.

#include <algorithm>
#include <cmath>

#include "lumo/crv_convert.h"
#include "lumo/crv_edit.h"
#include "lumo/crv_navigation.h"
#include "lumo/path_array.h"
#include "lumo/polycurve.h"
#include "polycurve/edit_in_place.h"
#include "polycurve/keep_segments.h"
#include "polycurve/path_segment.h"
#include "polycurve/subpath_walk.h"

namespace Lumo {
namespace {

int Index(std::size_t i) { return static_cast<int>(i); }

template <class Test>
std::size_t CountNodes(const NODETYPE* types, std::size_t count, Test test) {
  return static_cast<std::size_t>(types ? std::count_if(types, types + count, test) : 0);
}

/// Whether the user sees node i as selected: of two closed ends the move node tells for both.
bool IsNodeSelected(const NODETYPE* types, int count, int i) {
  if (types[i].IsSelected()) return true;
  const int twin = OtherClosedEnd(types, i, count);
  return twin >= 0 && types[twin].IsSelected();
}

/// Rotates the nodes of a closed subpath so that node `start`, an inner one, becomes its two closed ends.
template <class T>
void RotateClosed(T* points, NODETYPE* types, int first, int start, int last) {
  const bool letter = types[first].IsLetter();
  // The old last node repeats the old move node. It takes its place as an inner node, and the new start
  // repeats itself at the end.
  std::rotate(points + first, points + start, points + last + 1);
  std::rotate(types + first, types + start, types + last + 1);
  const int seam = first + last - start;  // where the old last node stands now; the old move node follows
  std::copy(points + seam + 2, points + last + 1, points + seam + 1);
  std::copy(types + seam + 2, types + last + 1, types + seam + 1);
  NODETYPE& joint = types[seam];
  joint.Set(NODETYPE::kClosed, false);
  joint |= NODETYPE::kUser;
  points[last] = points[first];
  types[last] = types[first];
  types[last] |= NODETYPE::kClosed;
  types[last].Set(NODETYPE::kUser | NODETYPE::kLetter, false);
  types[first].SetKind(NODETYPE::kMove);
  types[first] |= NODETYPE::kClosed | NODETYPE::kUser;
  types[first].Set(NODETYPE::kLetter, letter);
}

}  // namespace

// ---- Breaking ----

template <class T>
bool PolycurveT<T>::BreakAt(const CurvePosition& position) noexcept {
  if (!IsPosition(GetNodeTypes(), IntCount(), position)) return false;
  return EditInPlace(*this, 4, [&](T* points, NODETYPE* types, int count) {
    return CRV_BreakAtLocation(points, types, count, position.lastNode, position.t);
  });
}

template <class T>
bool PolycurveT<T>::BreakAtLength(double length) noexcept {
  const std::optional<CurvePosition> position = GetPositionAtLength(length);
  return position && BreakAt(*position);
}

template <class T>
bool PolycurveT<T>::BreakEnabled(bool keepEnabled) noexcept {
  const std::size_t room =
      CountNodes(GetNodeTypes(), GetPointCount(), [](NODETYPE type) { return type.IsEnabled(); });
  return EditInPlace(*this, room, [&](T* points, NODETYPE* types, int count) {
    return CRV_BreakEnabled(points, types, count, keepEnabled);
  });
}

// ---- Deleting ----

template <class T>
bool PolycurveT<T>::DeleteNode(std::size_t i) noexcept {
  if (i >= GetPointCount() || GetNodeType(i).IsControl()) return false;
  // A closed end without the other one cannot be deleted: known before the selection is given up.
  if (GetNodeType(i).IsClosed() && OtherClosedEnd(GetNodeTypes(), Index(i), IntCount()) < 0) {
    return false;
  }
  return EditInPlace(*this, 0, [&](T* points, NODETYPE* types, int count) {
    CRV_DisableAllNodes(types, count);
    CRV_SetEnabled(types, count, Index(i), 1);
    return CRV_DeleteEnabled(points, types, count);
  });
}

template <class T>
bool PolycurveT<T>::DeleteEnabled() noexcept {
  return EditInPlace(*this, 0, CRV_DeleteEnabled<T>);
}

template <class T>
bool PolycurveT<T>::DeleteSegment(std::size_t i) noexcept {
  if (i >= GetPointCount() || GetNodeType(i).IsMove()) return false;
  std::vector<T> points;
  std::vector<NODETYPE> types;
  const int node = Index(i);
  const auto keep = [&](int first, int last) { return !(first < node && node <= last); };
  return KeepSegments(GetPoints(), GetNodeTypes(), IntCount(), keep, points, types) &&
         MoveData(std::move(points), std::move(types));
}

template <class T>
bool PolycurveT<T>::DeleteSubpath(std::size_t k) noexcept {
  const std::optional<SubcurveRange> range = GetSubpathRange(k);
  return range && DeletePoints(range->first, range->end - range->first);
}

template <class T>
bool PolycurveT<T>::KeepChords(bool selected) noexcept {
  std::vector<T> points;
  std::vector<NODETYPE> types;
  const auto keep = [&](int first, int last) {
    const NODETYPE* all = GetNodeTypes();
    return selected == (IsNodeSelected(all, IntCount(), first) && IsNodeSelected(all, IntCount(), last));
  };
  return KeepSegments(GetPoints(), GetNodeTypes(), IntCount(), keep, points, types) &&
         MoveData(std::move(points), std::move(types));
}

template <class T>
bool PolycurveT<T>::DeleteSelectedChords() noexcept {
  return KeepChords(false);
}

template <class T>
bool PolycurveT<T>::DeleteUnselectedChords() noexcept {
  return KeepChords(true);
}

// ---- Converting ----

template <class T>
bool PolycurveT<T>::ConvertToLine(std::size_t i) noexcept {
  return i < GetPointCount() && EditInPlace(
                                    *this, 0,
                                    [&](T* points, NODETYPE* types, int count) {
                                      return CRV_ToLineNode(points, types, count, Index(i));
                                    });
}

template <class T>
bool PolycurveT<T>::ConvertToLine() noexcept {
  return EditInPlace(*this, 0, CRV_ToLineEnabled<T>);
}

template <class T>
bool PolycurveT<T>::ConvertToCurve(std::size_t i) noexcept {
  return i < GetPointCount() && EditInPlace(
                                    *this, 2,
                                    [&](T* points, NODETYPE* types, int count) {
                                      return CRV_ToCurveNode(points, types, count, Index(i));
                                    });
}

template <class T>
bool PolycurveT<T>::ConvertToCurve() noexcept {
  const std::size_t lines = CountNodes(GetNodeTypes(), GetPointCount(),
                                       [](NODETYPE type) { return type.IsLine() && type.IsEnabled(); });
  return EditInPlace(*this, 2 * lines, CRV_ToCurveEnabled<T>);
}

// ---- Turning round ----

template <class T>
bool PolycurveT<T>::ReverseEnabledSubpaths() noexcept {
  return WriteInPlace(*this, [](T* points, NODETYPE* types, int count) {
    WalkSubpaths(types, static_cast<std::size_t>(count), [&](std::size_t first, std::size_t end) {
      if (std::any_of(types + first, types + end, [](NODETYPE type) { return type.IsSelected(); })) {
        Lumo::Reverse(points, types, Index(first), Index(end) - 1);
      }
      return true;
    });
  });
}

template <class T>
bool PolycurveT<T>::SpinSubpath(std::size_t i) noexcept {
  const int count = IntCount(), start = Index(i);
  if (i >= GetPointCount() || GetNodeTypes()[i].IsControl()) return false;
  const int first = CRV_FirstNodeOfThisSubpath(GetNodeTypes(), count, start);
  const int last = CRV_LastNodeOfThisSubpath(GetNodeTypes(), count, start);
  if (first < 0 || last <= first || !GetNodeTypes()[first].IsClosed() || !GetNodeTypes()[last].IsClosed())
    return false;
  return WriteInPlace(*this, [&](T* points, NODETYPE* types, int) {
    if (start != first && start != last) RotateClosed(points, types, first, start, last);
  });
}

template <class T>
bool PolycurveT<T>::SetPathStartAt(std::size_t i) noexcept {
  return SpinSubpath(i);
}

#define LUMO_BREAKING_MEMBERS(T)                                               \
  LUMO_INSTANTIATE bool PolycurveT<T>::BreakAt(const CurvePosition&) noexcept; \
  LUMO_INSTANTIATE bool PolycurveT<T>::BreakAtLength(double) noexcept;         \
  LUMO_INSTANTIATE bool PolycurveT<T>::BreakEnabled(bool) noexcept;            \
  LUMO_INSTANTIATE bool PolycurveT<T>::DeleteNode(std::size_t) noexcept;       \
  LUMO_INSTANTIATE bool PolycurveT<T>::DeleteEnabled() noexcept;               \
  LUMO_INSTANTIATE bool PolycurveT<T>::DeleteSegment(std::size_t) noexcept;    \
  LUMO_INSTANTIATE bool PolycurveT<T>::DeleteSubpath(std::size_t) noexcept;    \
  LUMO_INSTANTIATE bool PolycurveT<T>::KeepChords(bool) noexcept;              \
  LUMO_INSTANTIATE bool PolycurveT<T>::DeleteSelectedChords() noexcept;        \
  LUMO_INSTANTIATE bool PolycurveT<T>::DeleteUnselectedChords() noexcept;      \
  LUMO_INSTANTIATE bool PolycurveT<T>::ConvertToLine(std::size_t) noexcept;    \
  LUMO_INSTANTIATE bool PolycurveT<T>::ConvertToLine() noexcept;               \
  LUMO_INSTANTIATE bool PolycurveT<T>::ConvertToCurve(std::size_t) noexcept;   \
  LUMO_INSTANTIATE bool PolycurveT<T>::ConvertToCurve() noexcept;              \
  LUMO_INSTANTIATE bool PolycurveT<T>::ReverseEnabledSubpaths() noexcept;      \
  LUMO_INSTANTIATE bool PolycurveT<T>::SpinSubpath(std::size_t) noexcept;      \
  LUMO_INSTANTIATE bool PolycurveT<T>::SetPathStartAt(std::size_t) noexcept;
LUMO_BREAKING_MEMBERS(tagPOINT)
LUMO_BREAKING_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
