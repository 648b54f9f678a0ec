#include <algorithm>

#include "core/segment_walk.h"
#include "lumo/measure.h"
#include "lumo/polycurve.h"
#include "math/box_holds.h"
#include "math/point_traits.h"
#include "tav/math/rect.h"

namespace Lumo {
namespace {

using Bounds = TavMath::BoundsT<double>;

/// Nodes per step of the tight box, and per part of a step that reaches out of the box so far: what lies in
/// the box is done without a look at its types.
constexpr int kBoxStep = 512;
constexpr int kBoxPart = 32;

bool Contains(const tagRECT& box, const tagRECT& part) {
  return box.left <= part.left && part.right <= box.right && box.top <= part.top && part.bottom <= box.bottom;
}
bool Contains(const Bounds& box, const Bounds& part) { return box.Contains(part); }

void Add(tagRECT& box, const tagPOINT& p) {
  box = {std::min(box.left, p.x), std::min(box.top, p.y), std::max(box.right, p.x),
         std::max(box.bottom, p.y)};
}
void Add(Bounds& box, const DPoint& p) { box.Add(p.x, p.y); }

/// Rounding keeps order, so the rounded box of a cubic is the box of its rounded points.
void Add(tagRECT& box, const Bounds& curve) {
  Add(box, TavMath::RoundPoint({curve.minx, curve.miny}));
  Add(box, TavMath::RoundPoint({curve.maxx, curve.maxy}));
}
void Add(Bounds& box, const Bounds& curve) { box.Add(curve); }

/// The cubic at p[0] .. p[3] whose start point is in the box already. Only a control point outside the box
/// can make the curve leave it.
template <class T>
void AddCubic(BoxT<T>& box, const T* p) {
  Add(box, p[3]);
  if (Contains(box, TavMath::GetPointsBBox(p + 1, 2))) return;
  DPoint bezier[4];
  LoadCubic(p, bezier);
  const Bounds curve = TavMath::CubicBezier::GetTightBox(bezier);
  if (!curve.IsEmpty()) Add(box, curve);
}

template <class T>
BoxT<T> BoxOfPoint(const T& p) {
  return TavMath::GetPointsBBox(&p, 1);
}

/// Extends the box by the nodes first .. end-1 and by the curves that reach into them.
template <class T>
void AddNodes(BoxT<T>& box, const T* points, const NODETYPE* types, int first, int end, int count) {
  // A cubic that began before this step reaches into it with at most its last two nodes.
  int i = first;
  while (i > 1 && i > first - 2 && types[i - 1].IsControl()) --i;
  for (; i < end; ++i) {
    if (!types[i].IsControl()) {
      Add(box, points[i]);
    } else if (count - i > 2) {
      AddCubic(box, points + i - 1);
      i += 2;
    }
  }
}

}  // namespace

template <class T>
bool GetLooseBBox(const T* points, int count, BoxT<T>& box) noexcept {
  if (!points || count < 1) return false;
  box = TavMath::GetPointsBBox(points, static_cast<std::size_t>(count));
  return true;
}

template <class T>
bool GetTightBBox(const T* points, const NODETYPE* types, int count, BoxT<T>& box) noexcept {
  if (!points || !types || count < 1) return false;
  BoxT<T> tight = BoxOfPoint(points[0]);
  const auto holds = [&](int first, int n) {
    return TavMath::Holds(tight, points + first, static_cast<std::size_t>(n));
  };
  for (int first = 1; first < count;) {
    const int step = std::min(kBoxStep, count - first);
    for (int done = holds(first, step) ? step : 0; done < step; done += kBoxPart) {
      const int part = std::min(kBoxPart, step - done);
      if (!holds(first + done, part))
        AddNodes(tight, points, types, first + done, first + done + part, count);
    }
    first += step;
  }
  box = tight;
  return true;
}

template <class T>
Bounds GetTightTransformedBBox(const T* points, const NODETYPE* types, int count,
                               const MATRIX& matrix) noexcept {
  Bounds box;
  if (!points || !types || count < 1) return box;
  const auto mapped = [&](int i) { return matrix.Transform(ToDouble(points[i])); };
  Add(box, mapped(0));
  for (int i = 1; i < count; ++i) {
    if (!types[i].IsControl()) {
      Add(box, mapped(i));
    } else if (count - i > 2) {
      const DPoint bezier[] = {mapped(i - 1), mapped(i), mapped(i + 1), mapped(i + 2)};
      AddCubic(box, bezier);
      i += 2;
    }
  }
  return box;
}

template <class T>
bool GetTightEnabledBBox(const T* points, const NODETYPE* types, int count, BoxT<T>& box) noexcept {
  if (!points || !types || count < 1) return false;
  BoxT<T> enabled{};
  bool any = false;
  for (int i = 0; i < count; ++i) {
    if (types[i].IsControl() || !types[i].IsEnabled()) continue;
    if (!any) enabled = BoxOfPoint(points[i]);
    any = true;
    Add(enabled, points[i]);
  }
  if (!any) return false;
  WalkSegments(types, count, [&](int first, int last) {
    if (last - first == 3 && types[first].IsEnabled() && types[last].IsEnabled())
      AddCubic(enabled, points + first);
  });
  box = enabled;
  return true;
}

namespace {

/// What there is nothing to measure of: all-zero for integer points, empty for doubles.
template <class T>
BoxT<T> NoBox() {
  return TavMath::GetPointsBBox(static_cast<const T*>(nullptr), 0);
}

}  // namespace

template <class T>
BoxT<T> GetLooseBBox(const T* points, int count) noexcept {
  BoxT<T> box = NoBox<T>();
  GetLooseBBox(points, count, box);
  return box;
}

template <class T>
BoxT<T> GetTightBBox(const T* points, const NODETYPE* types, int count) noexcept {
  BoxT<T> box = NoBox<T>();
  GetTightBBox(points, types, count, box);
  return box;
}

template <class T>
BoxT<T> GetTightEnabledBBox(const T* points, const NODETYPE* types, int count) noexcept {
  BoxT<T> box = NoBox<T>();
  GetTightEnabledBBox(points, types, count, box);
  return box;
}

// ---- The members ----

template <class T>
BoxT<T> PolycurveT<T>::GetLooseBBox() const noexcept {
  return TavMath::GetPointsBBox(GetPoints(), GetPointCount());
}

template <class T>
BoxT<T> PolycurveT<T>::GetTightBBox() const noexcept {
  return Lumo::GetTightBBox(GetPoints(), GetNodeTypes(), IntCount());
}

template <class T>
Bounds PolycurveT<T>::GetTightTransformedBBox(const MATRIX& matrix) const noexcept {
  return Lumo::GetTightTransformedBBox(GetPoints(), GetNodeTypes(), IntCount(), matrix);
}

template <class T>
BoxT<T> PolycurveT<T>::GetTightEnabledBBox() const noexcept {
  return Lumo::GetTightEnabledBBox(GetPoints(), GetNodeTypes(), IntCount());
}

template <class T>
bool PolycurveT<T>::GetTightEnabledBBox(Box& box) const noexcept {
  return Lumo::GetTightEnabledBBox(GetPoints(), GetNodeTypes(), IntCount(), box);
}

LUMO_BOXES(LUMO_INSTANTIATE, tagPOINT)
LUMO_BOXES(LUMO_INSTANTIATE, TavMath::DPoint)

#define LUMO_BOX_MEMBERS(T)                                                                     \
  LUMO_INSTANTIATE BoxT<T> PolycurveT<T>::GetLooseBBox() const noexcept;                        \
  LUMO_INSTANTIATE BoxT<T> PolycurveT<T>::GetTightBBox() const noexcept;                        \
  LUMO_INSTANTIATE Bounds PolycurveT<T>::GetTightTransformedBBox(const MATRIX&) const noexcept; \
  LUMO_INSTANTIATE BoxT<T> PolycurveT<T>::GetTightEnabledBBox() const noexcept;                 \
  LUMO_INSTANTIATE bool PolycurveT<T>::GetTightEnabledBBox(BoxT<T>&) const noexcept;
LUMO_BOX_MEMBERS(tagPOINT)
LUMO_BOX_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
