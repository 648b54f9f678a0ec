// Breaking a path at nodes and along segments.

#include "core/room.h"
#include "edit/segment.h"
#include "edit/tidy.h"
#include "lumo/crv_edit.h"
#include "lumo/crv_navigation.h"
#include "lumo/path_array.h"

using namespace Lumo;

namespace {

void MakeCusp(NODETYPE& type) { type.SetContinuity(ContinuityType::cusp); }

/// The byte of a node at which a subpath now ends.
void MakeEnd(NODETYPE& type, int keepEnabled) {
  type |= NODETYPE::kUser;
  type.Set(NODETYPE::kEnabled, keepEnabled != 0);
  MakeCusp(type);
}

/// Whether one of the closed ends of the subpath that starts at `first` is enabled: they are one node to the
/// user, so either stands for both.
bool IsEnabledAtClosedEnds(const NODETYPE* types, int first, int other) {
  return types[first].IsEnabled() || (other >= 0 && types[other].IsEnabled());
}

/// False when an enabled closed end has no partner.
bool HaveClosedEndsPartners(const NODETYPE* types, int count) {
  for (int i = 0; i < count; ++i) {
    if (types[i].IsMove() && types[i].IsClosed() && types[i].IsEnabled() &&
        OtherClosedEnd(types, i, count) < 0)
      return false;
  }
  return true;
}

/// Opens the closed subpaths whose ends are enabled; no node is added.
void OpenEnabledSubpaths(NODETYPE* types, int count, int keepEnabled) {
  for (int i = 0; i < count; ++i) {
    if (!types[i].IsMove() || !types[i].IsClosed()) continue;
    const int other = OtherClosedEnd(types, i, count);
    if (!IsEnabledAtClosedEnds(types, i, other)) continue;
    types[i].Set(NODETYPE::kClosed, false);
    types[other].Set(NODETYPE::kClosed, false);
    MakeEnd(types[other], keepEnabled);
    types[i] |= NODETYPE::kEnabled;
    MakeCusp(types[i]);
  }
}

bool IsInnerBreak(const NODETYPE* types, int count, int i) {
  return types[i].IsEnabled() && types[i].IsOnCurve() && !types[i].IsMove() &&
         !IsLastOfSubpath(types, count, i);
}

/// The move node that starts the new subpath behind a broken node: it keeps the enabled flag.
NODETYPE StartByte(NODETYPE broken) {
  broken.SetKind(NODETYPE::kMove);
  broken.Set(NODETYPE::kClosed, false);
  MakeCusp(broken);
  return broken;
}

/// Doubles every inner node that is enabled: the first copy ends a subpath, the second starts one.
template <class T>
int InsertStarts(T* points, NODETYPE* types, int count, int keepEnabled) {
  int breaks = 0;
  for (int i = 0; i < count; ++i) breaks += IsInnerBreak(types, count, i);
  if (breaks == 0) return count;
  const int end = count + breaks;
  AssertRoom(points, types, count, end);
  MovePath(points, types, breaks, 0, count);
  int done = 0;
  for (int rest = breaks; rest < end; ++rest) {
    const bool isBreak = IsInnerBreak(types, end, rest);
    points[done] = points[rest];
    types[done] = types[rest];
    if (isBreak) {
      points[done + 1] = points[done];
      types[done + 1] = StartByte(types[done]);
      MakeEnd(types[done++], keepEnabled);
    }
    ++done;
  }
  return done;
}

template <class T>
int BreakAtNode(T* points, NODETYPE* types, int count, int index) {
  if (types[index].IsControl() || CRV_IsFirstOrLastOpenSubpathNode(types, count, index)) return -1;
  if (!CRV_IsLastClosedSubpathNode(types, count, index)) {
    if (types[index].IsMove()) return -1;
    count = CRV_AppendMove(points, types, count, index, T(points[index]));
    return TidyUp(points, types, count);
  }
  const int other = OtherClosedEnd(types, index, count);
  if (other < 0) return -1;
  types[index].Set(NODETYPE::kUser, types[other].IsUser());
  for (const int node : {index, other}) {
    MakeCusp(types[node]);
    types[node].Set(NODETYPE::kClosed, false);
  }
  return TidyUp(points, types, count);
}

}  // namespace

template <class T>
int CRV_BreakEnabled(T* points, NODETYPE* types, int count, int keepEnabled) noexcept {
  if (!HasNodes(points, types, count)) return count;
  if (!HaveClosedEndsPartners(types, count)) return -1;
  OpenEnabledSubpaths(types, count, keepEnabled);
  count = InsertStarts(points, types, count, keepEnabled);
  return TidyUp(points, types, count);
}

template <class T>
int CRV_BreakAtLocation(T* points, NODETYPE* types, int count, int index, double t) noexcept {
  if (!HasNodes(points, types, count) || !HasNode(count, index) || !(t >= 0 && t <= 1)) return -1;
  if (CRV_IsFirstClosedSubpathNode(types, count, index)) {
    index = OtherClosedEnd(types, index, count);
    if (index < 0) return -1;
  }
  if (t == 0) index = PNControl(types, index, count);
  if (t == 0 || t == 1) return BreakAtNode(points, types, count, index);
  const int inserted = SegmentNodes(types, index);
  if (inserted == 0) return -1;
  AssertRoom(points, types, count, count + inserted + 1);
  CRV_Add(points, types, count, index, t, 1);
  count = CRV_AppendMove(points, types, count + inserted, index, T(points[index]));
  types[index].Set(NODETYPE::kEnabled, false);
  types[index + 1].Set(NODETYPE::kEnabled, false);
  return TidyUp(points, types, count);
}

LUMO_CRV_BREAK(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_BREAK(LUMO_INSTANTIATE, TavMath::DPoint)
