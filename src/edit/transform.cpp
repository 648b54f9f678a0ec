// Moving the selection, and its box.

#include "edit/segment.h"
#include "lumo/crv_convert.h"
#include "math/point_traits.h"

using namespace Lumo;

template <class T>
int CRV_TransformEnabled(T* points, const NODETYPE* types, int count, const TavMath::MATRIX* matrix,
                         int smooth) noexcept {
  if (matrix == nullptr) return -1;
  if (!HasNodes(points, types, count)) return count;
  for (int i = 0; i < count; ++i) {
    if (types[i].IsEnabled()) matrix->TransformPoints(points + i, 1);
  }
  return smooth != 0 ? SmoothEnabledNodes(points, types, count) : count;
}

template <class T>
int CRV_GetEnabledBoundingBox(const T* points, const NODETYPE* types, int count, tagRECT* box) noexcept {
  if (!HasNodes(points, types, count) || box == nullptr) return 0;
  bool any = false;
  TavMath::BoundsT<double> bounds;
  for (int i = 0; i < count; ++i) {
    if (!types[i].IsEnabled()) continue;
    any = true;
    const DPoint p = ToDouble(points[i]);
    bounds.Add(p.x, p.y);
  }
  if (!any) return 0;
  if (bounds.IsEmpty()) bounds = {0, 0, 0, 0};  // every enabled coordinate was NaN
  box->left = TavMath::RoundToInt(bounds.minx);
  box->right = TavMath::RoundToInt(bounds.maxx);
  box->top = TavMath::RoundToInt(bounds.maxy);
  box->bottom = TavMath::RoundToInt(bounds.miny);
  return 1;
}

LUMO_CRV_TRANSFORM(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_TRANSFORM(LUMO_INSTANTIATE, TavMath::DPoint)
