// Lines into curves.

#include <cmath>

#include "core/room.h"
#include "edit/interpolate.h"
#include "edit/segment.h"
#include "lumo/crv_convert.h"
#include "lumo/path_array.h"

using namespace Lumo;

namespace {

bool IsEnabledLine(const NODETYPE* types, int i) {
  return types[i].IsEnabled() && types[i].IsLine() && SegmentNodes(types, i) == 1;
}

/// Makes the line node at index, which starts at `from` and has two free slots before it, a curve node.
template <class T>
void MakeCurve(T* points, NODETYPE* types, int index, T from) {
  points[index - 2] = Interpolate(from, points[index], 1.0 / 3.0);
  points[index - 1] = Interpolate(from, points[index], 2.0 / 3.0);
  types[index - 2] = types[index - 1] = NODETYPE::kControl;
  types[index].SetKind(NODETYPE::kCurve);
}

}  // namespace

template <class T>
int CRV_ToCurveNode(T* points, NODETYPE* types, int count, int index) noexcept {
  if (!HasNodes(points, types, count) || !HasNode(count, index)) return count;
  if (!types[index].IsLine() || SegmentNodes(types, index) == 0) return count;
  PathInsNext(types, points, index, 2, count);
  MakeCurve(points, types, index + 2, T(points[index - 1]));
  return count + 2;
}

template <class T>
int CRV_ToCurveEnabled(T* points, NODETYPE* types, int count) noexcept {
  if (!HasNodes(points, types, count)) return count;
  int lines = 0;
  for (int i = 0; i < count; ++i) lines += IsEnabledLine(types, i);
  const int newCount = count + 2 * lines;
  AssertRoom(points, types, count, newCount);
  // From the back, each stretch between two lines moves once; the start of a line is still in its old place.
  int end = count;  // nodes from here on have been placed
  for (int i = count - 1; lines > 0; --i) {
    if (!IsEnabledLine(types, i)) continue;
    const int shift = 2 * lines--;
    MovePath(points, types, i + shift, i, end - i);
    MakeCurve(points, types, i + shift, T(points[i - 1]));
    end = i;
  }
  return newCount;
}

LUMO_CRV_TO_CURVE(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_TO_CURVE(LUMO_INSTANTIATE, TavMath::DPoint)
