// Continuity of nodes, and the handles that follow from it.

#include "edit/segment.h"
#include "edit/smoothing.h"
#include "lumo/crv_convert.h"
#include "lumo/crv_navigation.h"

using namespace Lumo;

namespace {

template <class T>
void SmoothStep(T* points, const NODETYPE* types, int count, int i) {
  if (!smoothing::IsSmoothed(types[i])) return;
  int end = i;
  if (types[i].IsMove()) {
    end = PN(types, i, count);  // the closed twin; an open move node has none
    if (end == i) return;
  }
  const int after = NN(types, i, count);
  if (after != i) smoothing::Step(points, types, i, end, after);
}

bool IsNearEnabled(const NODETYPE* types, int count, int i) {
  return types[i].IsEnabled() || types[PN(types, i, count)].IsEnabled() ||
         types[NN(types, i, count)].IsEnabled();
}

void Demote(NODETYPE* types, int i, int count) {
  if (types[i].Continuity() != ContinuityType::symmetric || !IsNodeSmoothable(types, i, count)) return;
  types[i].SetContinuity(ContinuityType::smooth);
  const int other = OtherClosedEnd(types, i, count);
  if (other >= 0) types[other].SetContinuity(ContinuityType::smooth);
}

void SetContinuity(NODETYPE* types, int count, int i, ContinuityType continuity) {
  const bool allowed = continuity == ContinuityType::cusp ||
                       (continuity == ContinuityType::smooth && IsNodeSmoothable(types, i, count)) ||
                       (continuity == ContinuityType::symmetric && IsNodeSymmetable(types, i, count));
  if (allowed) types[i].SetContinuity(continuity);
}

}  // namespace

int IsNodeSmoothable(const NODETYPE* types, int index, int count) noexcept {
  if (types == nullptr || !HasNode(count, index)) return 0;
  const NODETYPE type = types[index];
  if (type.IsControl() || (type.IsMove() && !type.IsClosed())) return 0;
  const int next = NN(types, index, count);
  const bool curvedOut = next != index && types[next].IsControl();
  if (type.IsMove()) return curvedOut || types[PN(types, index, count)].IsCurve();
  return type.IsLine() ? curvedOut : next != index;
}

int IsNodeSymmetable(const NODETYPE* types, int index, int count) noexcept {
  if (types == nullptr || !HasNode(count, index)) return 0;
  const NODETYPE type = types[index];
  const bool curvedIn =
      type.IsCurve() || (type.IsMove() && type.IsClosed() && types[PN(types, index, count)].IsCurve());
  return curvedIn && types[NN(types, index, count)].IsControl();
}

void SmoothEndNodes(NODETYPE* types, int first, int last, int count) noexcept {
  if (types == nullptr) return;
  if (HasNode(count, first)) Demote(types, first, count);
  if (HasNode(count, last)) Demote(types, last, count);
}

template <class T>
void SmoothNode(T* points, const NODETYPE* types, int count, int index) noexcept {
  if (HasNodes(points, types, count) && HasNode(count, index)) SmoothStep(points, types, count, index);
}

template <class T>
int SmoothEnabledNodes(T* points, const NODETYPE* types, int count) noexcept {
  if (!HasNodes(points, types, count)) return count;
  for (int i = 0; i < count; ++i) {
    if (smoothing::IsSmoothed(types[i]) && IsNearEnabled(types, count, i))
      SmoothStep(points, types, count, i);
  }
  return count;
}

template <class T>
int SmoothNodes(T* points, const NODETYPE* types, int count) noexcept {
  if (!HasNodes(points, types, count)) return count;
  for (int i = 0; i < count; ++i) SmoothStep(points, types, count, i);
  return count;
}

template <class T>
int CRV_SetContEnabled(T* points, NODETYPE* types, int count, ContinuityType continuity) noexcept {
  if (!HasNodes(points, types, count)) return count;
  for (int i = 0; i < count; ++i) {
    if (types[i].IsEnabled()) SetContinuity(types, count, i, continuity);
  }
  return continuity == ContinuityType::cusp ? count : SmoothEnabledNodes(points, types, count);
}

LUMO_CRV_SMOOTH(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_SMOOTH(LUMO_INSTANTIATE, TavMath::DPoint)
