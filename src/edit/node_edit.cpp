// The forms for the node editing tool: the plain operation, then the handles of the selection are shown.

#include "edit/segment.h"
#include "lumo/crv_convert.h"
#include "lumo/crv_edit.h"
#include "lumo/crv_navigation.h"

using namespace Lumo;

namespace {

int ShowHandles(NODETYPE* types, int result) {
  if (result > 0) CRV_EnableAllControls(types, result);
  return result;
}

/// Enables or disables a node; a closing node with its twin.
void Enable(NODETYPE* types, int count, int node, bool on) {
  types[node].Set(NODETYPE::kEnabled, on);
  const int other = OtherClosedEnd(types, node, count);
  if (other >= 0) types[other].Set(NODETYPE::kEnabled, on);
}

}  // namespace

template <class T>
int CRV_NodeEditAddEnabled(T* points, NODETYPE* types, int count) noexcept {
  return ShowHandles(types, CRV_AddEnabled(points, types, count, 1, 1));
}

template <class T>
int CRV_NodeEditAddHere(T* points, NODETYPE* types, int count, int index, double t) noexcept {
  const int inserted = CRV_Add(points, types, count, index, t, 1);
  if (inserted == 0) return -1;
  count += inserted;
  Enable(types, count, index, true);
  Enable(types, count, index + inserted, false);
  return ShowHandles(types, count);
}

template <class T>
int CRV_NodeEditBreakEnabled(T* points, NODETYPE* types, int count) noexcept {
  return ShowHandles(types, CRV_BreakEnabled(points, types, count, 0));
}

template <class T>
int CRV_NodeEditJoinEnabled(T* points, NODETYPE* types, int count) noexcept {
  return ShowHandles(types, CRV_JoinEnabled(points, types, count));
}

template <class T>
int CRV_NodeEditJoinEnabledAddingLineSegments(T* points, NODETYPE* types, int count) noexcept {
  return ShowHandles(types, CRV_JoinEnabledAddingLineSegments(points, types, count));
}

template <class T>
int CRV_NodeEditDeleteEnabled(T* points, NODETYPE* types, int count) noexcept {
  return ShowHandles(types, CRV_DeleteEnabled(points, types, count));
}

template <class T>
int CRV_NodeEditDeleteEnabledEx(T* points, NODETYPE* types, int count, WDeleteRunInfo** runs,
                                int* runCount) noexcept {
  return ShowHandles(types, CRV_DeleteEnabledEx(points, types, count, runs, runCount));
}

template <class T>
int CRV_NodeEditToLineEnabled(T* points, NODETYPE* types, int count) noexcept {
  return ShowHandles(types, CRV_ToLineEnabled(points, types, count));
}

template <class T>
int CRV_NodeEditToCurveEnabled(T* points, NODETYPE* types, int count) noexcept {
  return ShowHandles(types, CRV_ToCurveEnabled(points, types, count));
}

template <class T>
int CRV_NodeEditSetContEnabled(T* points, NODETYPE* types, int count, ContinuityType continuity) noexcept {
  return ShowHandles(types, CRV_SetContEnabled(points, types, count, continuity));
}

template <class T>
int CRV_NodeEditReduceEnabled(T* points, NODETYPE* types, int count, double tolerance) noexcept {
  return CRV_NodeEditReduceEnabledDouble(points, types, count, tolerance, nullptr);
}

template <class T>
int CRV_NodeEditReduceEnabledDouble(T* points, NODETYPE* types, int count, double tolerance,
                                    TavMath::DPoint* second) noexcept {
  return ShowHandles(types, CRV_ReduceEnabledDouble(points, types, count, tolerance, second));
}

LUMO_CRV_NODE_EDIT(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_NODE_EDIT(LUMO_INSTANTIATE, TavMath::DPoint)
