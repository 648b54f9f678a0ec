// Nodes that move together with their handles, and straight continuations of open ends.

#include <cmath>

#include "lumo/crv_navigation.h"
#include "lumo/polycurve.h"
#include "math/point_traits.h"
#include "polycurve/edit_in_place.h"
#include "polycurve/path_segment.h"
#include "polycurve/subpath_walk.h"

namespace Lumo {
namespace {

/// Moves an on-curve node, its closed twin and the handles on both its sides by the same amount.
template <class T>
void MoveNode(T* points, const NODETYPE* types, int count, int i, const T& to) {
  const DVector by = ToDouble(to) - ToDouble(points[i]);
  for (const int handle : {CRV_GetArcBefore(types, count, i), CRV_GetArcAfter(types, count, i)}) {
    if (handle >= 0) points[handle] = FromDouble<T>(ToDouble(points[handle]) + by);
  }
  const int twin = OtherClosedEnd(types, i, count);
  points[i] = to;
  if (twin >= 0) points[twin] = to;
}

bool IsMovable(NODETYPE type) { return type.IsOnCurve() && type.IsEnabled(); }

template <class T>
TavMath::BoundsT<double> BoxOfEnabled(const T* points, const NODETYPE* types, std::size_t count) {
  TavMath::BoundsT<double> box;
  for (std::size_t i = 0; i < count; ++i) {
    const DPoint p = ToDouble(points[i]);
    if (IsMovable(types[i])) box.Add(p.x, p.y);
  }
  return box;
}

/// Moves every selected on-curve node. A target stands still when it is asked again, so a closed node may
/// come up twice.
template <class T, class Target>
bool MoveEnabled(PolycurveT<T>& path, Target target) {
  return WriteInPlace(path, [&](T* points, NODETYPE* types, int count) {
    for (int i = 0; i < count; ++i) {
      if (IsMovable(types[i])) MoveNode(points, types, count, i, FromDouble<T>(target(points[i])));
    }
  });
}

double PixelCentre(double value, double size) { return (std::floor(value / size) + 0.5) * size; }
double PixelEdge(double value, double size) { return std::round(value / size) * size; }

/// A grid position of a node's coordinates; false for a grid that has none.
template <class T, class Snap>
bool SnapPoint(const T& point, double size, Snap snap, T& out) {
  const DPoint p = ToDouble(point), snapped{snap(p.x, size), snap(p.y, size)};
  if (!(size > 0) || !std::isfinite(snapped.x + snapped.y)) return false;
  out = FromDouble<T>(snapped);
  return true;
}

}  // namespace

template <class T>
bool PolycurveT<T>::AlignEnabledNodes(NodeEdge edge) noexcept {
  const TavMath::BoundsT<double> box = BoxOfEnabled(GetPoints(), GetNodeTypes(), GetPointCount());
  if (box.IsEmpty()) return false;
  return MoveEnabled(*this, [&](const T& point) {
    DPoint p = ToDouble(point);
    switch (edge) {
      case NodeEdge::left:
        p.x = box.minx;
        break;
      case NodeEdge::right:
        p.x = box.maxx;
        break;
      case NodeEdge::top:
        p.y = box.miny;
        break;
      case NodeEdge::bottom:
        p.y = box.maxy;
        break;
      case NodeEdge::middleX:
        p.x = 0.5 * box.minx + 0.5 * box.maxx;
        break;
      case NodeEdge::middleY:
        p.y = 0.5 * box.miny + 0.5 * box.maxy;
        break;
    }
    return p;
  });
}

template <class T>
bool PolycurveT<T>::AlignEnabledNodesToPosition(const T& position, bool alignX, bool alignY) noexcept {
  const DPoint to = ToDouble(position);
  if (BoxOfEnabled(GetPoints(), GetNodeTypes(), GetPointCount()).IsEmpty()) return false;
  return MoveEnabled(*this, [&](const T& point) {
    const DPoint p = ToDouble(point);
    return DPoint{alignX ? to.x : p.x, alignY ? to.y : p.y};
  });
}

template <class T>
bool PolycurveT<T>::AlignSingleNodeToPosition(std::size_t i, const T& position) noexcept {
  const T to = position;
  if (i >= GetPointCount() || GetNodeType(i).IsControl()) return false;
  return WriteInPlace(*this, [&](T* points, NODETYPE* types, int count) {
    MoveNode(points, types, count, static_cast<int>(i), to);
  });
}

template <class T>
bool PolycurveT<T>::AlignSingleNodeToPixel(std::size_t i, double pixelSize) noexcept {
  T to;
  return i < GetPointCount() && SnapPoint(GetPoint(i), pixelSize, PixelCentre, to) &&
         AlignSingleNodeToPosition(i, to);
}

template <class T>
bool PolycurveT<T>::AlignFirstNodeToPixelEdge(double pixelSize) noexcept {
  T to;
  return !IsEmpty() && SnapPoint(GetPoint(0), pixelSize, PixelEdge, to) && AlignSingleNodeToPosition(0, to);
}

template <class T>
bool PolycurveT<T>::AlignLastNodeToPixelEdge(double pixelSize) noexcept {
  T to;
  const std::size_t last = GetPointCount() - 1;
  return !IsEmpty() && SnapPoint(GetPoint(last), pixelSize, PixelEdge, to) &&
         AlignSingleNodeToPosition(last, to);
}

#define LUMO_ALIGNMENT_MEMBERS(T)                                                                  \
  LUMO_INSTANTIATE bool PolycurveT<T>::AlignEnabledNodes(NodeEdge) noexcept;                       \
  LUMO_INSTANTIATE bool PolycurveT<T>::AlignEnabledNodesToPosition(const T&, bool, bool) noexcept; \
  LUMO_INSTANTIATE bool PolycurveT<T>::AlignSingleNodeToPosition(std::size_t, const T&) noexcept;  \
  LUMO_INSTANTIATE bool PolycurveT<T>::AlignSingleNodeToPixel(std::size_t, double) noexcept;       \
  LUMO_INSTANTIATE bool PolycurveT<T>::AlignFirstNodeToPixelEdge(double) noexcept;                 \
  LUMO_INSTANTIATE bool PolycurveT<T>::AlignLastNodeToPixelEdge(double) noexcept;
LUMO_ALIGNMENT_MEMBERS(tagPOINT)
LUMO_ALIGNMENT_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
