// Splitting segments.

#include <cmath>

#include "core/room.h"
#include "edit/interpolate.h"
#include "edit/segment.h"
#include "edit/smoothing.h"
#include "lumo/crv_convert.h"
#include "lumo/crv_edit.h"
#include "lumo/path_array.h"
#include "math/point_traits.h"
#include "tav/math/cubic_bezier.h"

using namespace Lumo;

namespace {

NODETYPE InsertedLineByte(NODETYPE old) {
  old |= NODETYPE::kUser;
  old.Set(NODETYPE::kClosed, false);
  return old;
}

/// Smooth, a user node, never a closing one; the kind and the other flags of the old end.
NODETYPE InsertedCurveByte(NODETYPE old) {
  old.Set(NODETYPE::kClosed | NODETYPE::kSymmetric, false);
  old |= NODETYPE::kSmooth | NODETYPE::kUser;
  return old;
}

/// Splits the cubic into the seven nodes at start..start+6, whose last is in place already: the two halves
/// share the split point at start + 3. The bytes of the control points are repeated.
template <class T>
void SplitCurve(T* points, NODETYPE* types, int start, const DPoint cubic[4], double t) {
  DPoint halves[7];
  TavMath::CubicBezier::Split(t, cubic, halves, halves + 3);
  for (int k = 1; k < 6; ++k) points[start + k] = FromDouble<T>(halves[k]);
  types[start + 4] = types[start + 1];
  types[start + 5] = types[start + 2];
  types[start + 3] = InsertedCurveByte(types[start + 6]);
}

/// The path while nodes are being inserted from front to back: what is done stands at 0..done, what is still
/// to come at rest.., and the room for what will be inserted lies between.
template <class T>
struct Expansion {
  T* points;
  NODETYPE* types;
  int rest;       ///< index of the node that comes next
  int end;        ///< one past the last node
  int done = 0;   ///< index that the next node goes to
  int first = 0;  ///< move node of the current subpath

  bool RestGoesOn() const { return rest < end && !types[rest].IsMove(); }

  /// The index of the node that follows node `done`, which is the one before `rest`; -1 at an open end.
  int After(int node) const {
    if (RestGoesOn()) return rest;
    return types[node].IsClosed() && first + 1 <= node ? first + 1 : -1;
  }

  /// The closed twin of the current subpath's move node, where the last node placed is `node`.
  int ClosingNode(int node) const {
    if (types[node].IsClosed()) return node;
    int k = rest;
    while (k < end && !types[k].IsMove() && !types[k].IsClosed()) ++k;
    return k < end && types[k].IsClosed() && !types[k].IsMove() ? k : -1;
  }

  void Demote(int node, int twin) {
    if (types[node].Continuity() != ContinuityType::symmetric) return;
    types[node].SetContinuity(ContinuityType::smooth);
    if (twin >= 0) types[twin].SetContinuity(ContinuityType::smooth);
  }

  /// The split of the curve that ends at node `done`, in its middle and with smoothing.
  void InsertIntoCurve() {
    const int start = done - 3, middle = done, old = done + 3;
    DPoint cubic[4];
    LoadCubic(points + start, cubic);
    points[old] = points[done];
    types[old] = types[done];
    SplitCurve(points, types, start, cubic, 0.5);
    const bool isOpenStart = types[start].IsMove() && !types[start].IsClosed();
    if (!isOpenStart) Demote(start, types[start].IsClosed() ? ClosingNode(old) : -1);
    const int after = After(old);
    if (after >= 0) Demote(old, types[old].IsClosed() ? first : -1);
    smoothing::Step(points, types, middle, middle, middle + 1);
    if (after >= 0 && smoothing::IsSmoothed(types[old])) smoothing::Step(points, types, old, old, after);
  }

  void InsertIntoLine() {
    points[done + 1] = points[done];
    types[done + 1] = types[done];
    points[done] = Interpolate(points[done - 1], points[done + 1], 0.5);
    types[done] = InsertedLineByte(types[done + 1]);
  }
};

/// A handle that is not enabled cannot be shown.
void HideDisabledHandle(NODETYPE& type) {
  if (type.IsControl() && !type.IsEnabled()) type.Set(NODETYPE::kUser, false);
}

/// How many nodes a split at node i inserts.
int InsertedAt(const NODETYPE* types, int i) { return types[i].IsEnabled() ? SegmentNodes(types, i) : 0; }

}  // namespace

int CRV_NeedGrowForAddNodeOfType(int kind) noexcept {
  switch (kind) {
    case 0:  // a move node: nothing is inserted, hosts that ask get one slot all the same
    case 1:
      return 1;
    case 2:
      return 3;
    default:
      return 0;
  }
}

template <class T>
int CRV_Add(T* points, NODETYPE* types, int count, int index, double t, int smooth) noexcept {
  if (!HasNodes(points, types, count) || !HasNode(count, index) || !std::isfinite(t)) return 0;
  const int n = SegmentNodes(types, index);
  if (n == 1) {
    PathInsNext(types, points, index, 1, count);
    points[index] = Interpolate(points[index - 1], points[index + 1], t);
    types[index] = InsertedLineByte(types[index + 1]);
  } else if (n == 3) {
    DPoint cubic[4];
    LoadCubic(points + index - 3, cubic);
    PathInsNext(types, points, index - 2, 3, count);
    SplitCurve(points, types, index - 3, cubic, t);
    SmoothEndNodes(types, index - 3, index + 3, count + 3);
    if (smooth != 0) {
      SmoothNode(points, types, count + 3, index);
      SmoothNode(points, types, count + 3, index + 3);
    }
  }
  return n;
}

template <class T>
int CRV_AddEnabled(T* points, NODETYPE* types, int count, int enableOld, int enableNew) noexcept {
  if (!HasNodes(points, types, count)) return count;
  int inserted = 0;
  for (int i = 0; i < count; ++i) inserted += InsertedAt(types, i);
  AssertRoom(points, types, count, count + inserted);
  if (inserted > 0) MovePath(points, types, inserted, 0, count);
  Expansion<T> path{points, types, inserted, inserted + count};
  while (path.rest < path.end) {
    points[path.done] = points[path.rest];
    types[path.done] = types[path.rest++];
    if (types[path.done].IsMove()) path.first = path.done;
    const int n = InsertedAt(types, path.done);
    if (n == 3) path.InsertIntoCurve();
    if (n == 1) path.InsertIntoLine();
    if (types[path.done + n].IsEnabled()) {
      types[path.done].Set(NODETYPE::kEnabled, (enableNew & 1) != 0);
      types[path.done + n].Set(NODETYPE::kEnabled, (enableOld & 1) != 0);
      HideDisabledHandle(types[path.done]);
    }
    path.done += n + 1;
  }
  return path.done;
}

LUMO_CRV_ADD(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_ADD(LUMO_INSTANTIATE, TavMath::DPoint)
