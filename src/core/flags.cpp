#include "lumo/crv_navigation.h"

#include "core/node_words.h"

namespace {

bool InPath(const NODETYPE* types, int count, int i) { return types != nullptr && i >= 0 && i < count; }

void HideAllControls(NODETYPE* types, int count) {
  for (int k = 0; k < count; ++k) {
    const unsigned char flags = types[k].IsControl() ? NODETYPE::kSelected : 0;
    types[k] &= static_cast<unsigned char>(~flags);
  }
}

void ShowEnabledControls(NODETYPE* types, int count) {
  for (int k = 0; k < count; ++k)
    if (types[k].IsControl() && types[k].IsEnabled()) types[k].Set(NODETYPE::kUser, true);
}

/// Writes the enabled flag of a pair of neighbouring control points; nothing when the two are not that.
void EnablePair(NODETYPE* types, int count, int first, bool on) {
  if (first < 0 || first >= count - 1 || !types[first].IsControl() || !types[first + 1].IsControl()) return;
  types[first].Set(NODETYPE::kEnabled, on);
  types[first + 1].Set(NODETYPE::kEnabled, on);
}

/// The node at which the segment before a node ends: the move node of a closed subpath gives way to its twin,
/// the last node. -1 when nothing ends here (an open start).
int EndOfSegmentBefore(const NODETYPE* types, int count, int i) {
  if (!types[i].IsMove()) return i;
  const int other = OtherClosedEnd(types, i, count);
  return other == i ? -1 : other;
}

/// Towards the start: the curve that ends here, or the one beyond a line whose far node is no cusp.
void EnableControlsBefore(NODETYPE* types, int count, int i, bool on) {
  int end = EndOfSegmentBefore(types, count, i);
  if (end < 1) return;
  if (types[end].IsLine()) {
    const int beyond = end - 1;
    if (types[beyond].IsCusp()) return;
    end = EndOfSegmentBefore(types, count, beyond);
    if (end < 1) return;
  }
  if (types[end].IsCurve()) EnablePair(types, count, end - 2, on);
}

/// Towards the end: the curve that starts here, or the one beyond a line whose far node is no cusp.
void EnableControlsAfter(NODETYPE* types, int count, int i, bool on) {
  int next = NN(types, i, count);
  if (next == i) return;
  if (types[next].IsLine()) {
    if (types[next].IsCusp()) return;
    const int beyond = next;
    next = NN(types, beyond, count);
    if (next == beyond) return;
  }
  EnablePair(types, count, next, on);
}

/// Copies the enabled flag of an on-curve node to the control points that move with it. Four fixed steps at
/// most, so that a damaged array cannot make it long.
void EnableControlsOf(NODETYPE* types, int count, int i) {
  const bool on = types[i].IsEnabled();
  EnableControlsBefore(types, count, i, on);
  EnableControlsAfter(types, count, i, on);
}

template <class Write>
void WriteBothEnds(NODETYPE* types, int count, int i, Write write) {
  const int other = OtherClosedEnd(types, i, count);  // before the write: it looks at the closed flag
  write(types[i]);
  if (other >= 0) write(types[other]);
}

}  // namespace

int CRV_SetEnabled(NODETYPE* types, int count, int i, int enable) noexcept {
  if (InPath(types, count, i))
    WriteBothEnds(types, count, i, [enable](NODETYPE& type) { type.Set(NODETYPE::kEnabled, enable & 1); });
  return count;
}

int CRV_SetCont(NODETYPE* types, int count, int i, ContinuityType continuity) noexcept {
  if (InPath(types, count, i))
    WriteBothEnds(types, count, i, [continuity](NODETYPE& type) { type.SetContinuity(continuity); });
  return count;
}

int CRV_DisableAllNodes(NODETYPE* types, int count) noexcept {
  if (types == nullptr) return count;
  for (int k = 0; k < count; ++k) {
    const unsigned char flags = types[k].IsControl() ? NODETYPE::kSelected : NODETYPE::kEnabled;
    types[k] &= static_cast<unsigned char>(~flags);
  }
  return count;
}

int CRV_EnableAllControls(NODETYPE* types, int count) noexcept {
  if (types == nullptr) return 0;
  HideAllControls(types, count);
  int selected = 0;
  Lumo::ForPickedNodes(types, count, Lumo::SelectedOf, [&](int k) {
    ++selected;
    EnableControlsOf(types, count, k);  // writes control points only
  });
  if (selected == 1) ShowEnabledControls(types, count);
  return selected;
}

int CRV_EnableAllNodes(NODETYPE* types, int count) noexcept {
  if (types == nullptr) return count;
  for (int k = 0; k < count; ++k) types[k] |= NODETYPE::kEnabled;
  CRV_EnableAllControls(types, count);
  return count;
}

int CRV_EnableOneControl(NODETYPE* types, int count, int i) noexcept {
  if (!InPath(types, count, i)) return count;
  HideAllControls(types, count);
  if (types[i].IsOnCurve()) EnableControlsOf(types, count, i);
  ShowEnabledControls(types, count);
  return count;
}

int CRV_EnableSubpath(NODETYPE* types, int count, int i, int enable) noexcept {
  if (!InPath(types, count, i)) return count;
  while (i > 0 && !types[i].IsMove()) --i;
  do types[i].Set(NODETYPE::kEnabled, enable & 1);
  while (++i < count && !types[i].IsMove());
  CRV_EnableAllControls(types, count);
  return count;
}
