// Curves into lines. The single and the selection form repair continuity by different rules: hosts rely on
// both, see crv_convert.h.

#include "edit/segment.h"
#include "lumo/crv_convert.h"
#include "lumo/crv_edit.h"
#include "lumo/path_array.h"

using namespace Lumo;

namespace {

/// Enabled, letter and closed flag and continuity stay. Of two closed ends the first carries the user flag.
NODETYPE LineByte(NODETYPE curve) {
  curve.SetKind(NODETYPE::kLine);
  curve.Set(NODETYPE::kUser, !curve.IsClosed());
  return curve;
}

/// Whether node i is a curve node that the call turns into a line node.
bool IsConverted(const NODETYPE* types, int i) {
  return types[i].IsEnabled() && types[i].IsCurve() && SegmentNodes(types, i) == 3;
}

bool WillBeLine(const NODETYPE* types, int i) { return types[i].IsLine() || IsConverted(types, i); }

/// Whether a line will leave node i of a subpath that ends at node last.
bool WillLeaveByLine(const NODETYPE* types, int i, int last) {
  if (i + 1 > last) return false;
  return types[i + 1].IsLine() || (types[i + 1].IsControl() && i + 3 <= last && IsConverted(types, i + 3));
}

void MakeCusp(NODETYPE& type) { type.SetContinuity(ContinuityType::cusp); }

/// Makes nodes between two straight segments cusps, around the nodes of the subpath first..last that are
/// about to be converted.
void RepairContinuity(NODETYPE* types, int first, int last) {
  bool meetsLineAtTheEnds = false;
  for (int i = first + 3; i <= last; ++i) {
    if (!IsConverted(types, i)) continue;
    const bool isFirstSegment = i - 3 == first;
    if (!isFirstSegment && WillBeLine(types, i - 3)) MakeCusp(types[i - 3]);
    if (WillLeaveByLine(types, i, last)) MakeCusp(types[i]);
    meetsLineAtTheEnds |= isFirstSegment && WillBeLine(types, last);
    meetsLineAtTheEnds |= i == last && WillLeaveByLine(types, first, last);
  }
  if (!meetsLineAtTheEnds) return;
  MakeCusp(types[first]);
  MakeCusp(types[last]);
}

/// Drops the control points of every converted node and makes it a line node.
template <class T>
int DropControlPoints(T* points, NODETYPE* types, int count) {
  int kept = 0;
  for (int i = 0; i < count; ++i) {
    const bool convert = IsConverted(types, i);
    if (convert) kept -= 2;
    const NODETYPE byte = convert ? LineByte(types[i]) : types[i];
    if (kept != i) points[kept] = points[i];
    types[kept++] = byte;
  }
  return kept;
}

}  // namespace

template <class T>
int CRV_ToLineNode(T* points, NODETYPE* types, int count, int index) noexcept {
  if (!HasNodes(points, types, count) || !HasNode(count, index)) return count;
  if (!types[index].IsCurve() || SegmentNodes(types, index) == 0)
    return SmoothEnabledNodes(points, types, count);
  NODETYPE byte = LineByte(types[index]);
  if (byte.Continuity() == ContinuityType::symmetric) byte.SetContinuity(ContinuityType::smooth);
  const int line = index - 2;
  const int newCount = CRV_Remove(points, types, count, line, 2);
  types[line] = byte;
  NODETYPE& before = types[line - 1];
  const bool followsOpenCorner = !before.IsCurve() && !before.IsClosed();
  const bool precedesStraight = line < count - 4 && !types[line + 1].IsControl() && !byte.IsClosed();
  if (followsOpenCorner || precedesStraight) MakeCusp(before);
  return SmoothEnabledNodes(points, types, newCount);
}

template <class T>
int CRV_ToLineEnabled(T* points, NODETYPE* types, int count) noexcept {
  if (!HasNodes(points, types, count)) return count;
  for (int first = 0; first < count;) {
    const int end = SubpathEnd(types, count, first);
    RepairContinuity(types, first, end - 1);
    first = end;
  }
  return SmoothEnabledNodes(points, types, DropControlPoints(points, types, count));
}

LUMO_CRV_TO_LINE(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_TO_LINE(LUMO_INSTANTIATE, TavMath::DPoint)
