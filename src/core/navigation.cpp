#include "lumo/crv_navigation.h"

#include <algorithm>

namespace {

bool InPath(const NODETYPE* types, int count, int i) { return types != nullptr && i >= 0 && i < count; }

// Preconditions of the walks below: InPath.

bool IsLast(const NODETYPE* types, int count, int i) { return i + 1 == count || types[i + 1].IsMove(); }

/// The move node at or before i, or 0 when there is none.
int WalkBackToMove(const NODETYPE* types, int i) {
  while (i > 0 && !types[i].IsMove()) --i;
  return i;
}

/// The first node from i on that carries the closed flag, or the path's last node.
int WalkForwardToClosed(const NODETYPE* types, int count, int i) {
  while (i < count - 1 && !types[i].IsClosed()) ++i;
  return i;
}

}  // namespace

int NN(const NODETYPE* types, int i, int count) noexcept {
  if (!InPath(types, count, i)) return i;
  if (!IsLast(types, count, i)) return i + 1;
  if (!types[i].IsClosed() || types[i].IsMove()) return i;
  const int next = WalkBackToMove(types, i) + 1;
  return next < count ? next : i;  // an array that is one closed node without a move node has no other
}

int PN(const NODETYPE* types, int i, int count) noexcept {
  if (!InPath(types, count, i)) return i;
  if (!types[i].IsMove()) {
    if (i >= 1 && types[i - 1].IsMove() && types[i - 1].IsClosed())
      return WalkForwardToClosed(types, count, i);
    return std::max(i - 1, 0);
  }
  if (!types[i].IsClosed() || IsLast(types, count, i)) return i;
  return WalkForwardToClosed(types, count, i + 1);
}

// The two walks over control points are bounded by count steps: a closed subpath that holds nothing but
// control points after its move node would otherwise cycle for ever.

int NNControl(const NODETYPE* types, int i, int count) noexcept {
  int at = i;
  for (int steps = 0; steps < count; ++steps) {
    const int next = NN(types, at, count);
    if (next == at) return i;
    at = next;
    if (types[at].IsOnCurve()) return at;
  }
  return i;
}

int PNControl(const NODETYPE* types, int i, int count) noexcept {
  int at = i;
  for (int steps = 0; steps < count; ++steps) {
    const int previous = PN(types, at, count);
    if (previous == at) return at;
    at = previous;
    if (types[at].IsOnCurve()) return at;
  }
  return i;
}

int OtherClosedEnd(const NODETYPE* types, int i, int count) noexcept {
  if (!InPath(types, count, i) || !types[i].IsClosed()) return -1;
  if (!types[i].IsMove()) {
    int k = std::max(i - 1, 0);
    while (k > 0 && !types[k].IsClosed()) --k;
    return k;
  }
  int k = i + 1;
  // A move node ends the walk before its closed flag is looked at: the next subpath may be closed too.
  while (k < count && !types[k].IsMove() && !types[k].IsClosed()) ++k;
  if (k == count) return -1;
  return types[k].IsMove() ? k - 1 : k;
}

int CRV_IsFirstSubpathNode(const NODETYPE* types, int count, int i) noexcept {
  return InPath(types, count, i) && types[i].IsMove();
}
int CRV_IsLastSubpathNode(const NODETYPE* types, int count, int i) noexcept {
  return InPath(types, count, i) && IsLast(types, count, i);
}
int CRV_IsFirstOrLastSubpathNode(const NODETYPE* types, int count, int i) noexcept {
  return InPath(types, count, i) && (types[i].IsMove() || IsLast(types, count, i));
}
int CRV_IsFirstOpenSubpathNode(const NODETYPE* types, int count, int i) noexcept {
  return CRV_IsFirstSubpathNode(types, count, i) && !types[i].IsClosed();
}
int CRV_IsLastOpenSubpathNode(const NODETYPE* types, int count, int i) noexcept {
  return CRV_IsLastSubpathNode(types, count, i) && !types[i].IsClosed();
}
int CRV_IsFirstOrLastOpenSubpathNode(const NODETYPE* types, int count, int i) noexcept {
  return CRV_IsFirstOrLastSubpathNode(types, count, i) && !types[i].IsClosed();
}
int CRV_IsFirstClosedSubpathNode(const NODETYPE* types, int count, int i) noexcept {
  return CRV_IsFirstSubpathNode(types, count, i) && types[i].IsClosed();
}
int CRV_IsLastClosedSubpathNode(const NODETYPE* types, int count, int i) noexcept {
  return CRV_IsLastSubpathNode(types, count, i) && types[i].IsClosed();
}
int CRV_IsFirstOrLastClosedSubpathNode(const NODETYPE* types, int count, int i) noexcept {
  return CRV_IsFirstOrLastSubpathNode(types, count, i) && types[i].IsClosed();
}

int CRV_FirstNodeOfThisSubpath(const NODETYPE* types, int count, int i) noexcept {
  if (!InPath(types, count, i)) return -1;
  const int first = WalkBackToMove(types, i);
  return types[first].IsMove() ? first : -1;
}

int CRV_LastNodeOfThisSubpath(const NODETYPE* types, int count, int i) noexcept {
  if (!InPath(types, count, i)) return -1;
  while (!IsLast(types, count, i)) ++i;
  return i;
}

int CRV_IsThisSubpathClosed(const NODETYPE* types, int count, int i) noexcept {
  const int first = CRV_FirstNodeOfThisSubpath(types, count, i);
  return first >= 0 && types[first].IsClosed();
}

int CRV_TwoNodesInSameSubpath(const NODETYPE* types, int count, int a, int b) noexcept {
  if (!InPath(types, count, a) || !InPath(types, count, b)) return 0;
  const NODETYPE* const low = types + std::min(a, b);
  const NODETYPE* const high = types + std::max(a, b);
  return std::none_of(low + 1, high + 1, [](NODETYPE type) { return type.IsMove(); }) || a == b;
}

int CRV_CountNodesInSubpath(const NODETYPE* types, int first, int count) noexcept {
  if (types == nullptr || first < 0 || first >= count) return 1;
  int nodes = 1;
  while (nodes < count - first && !types[nodes].IsMove()) ++nodes;
  return nodes;
}

int CRV_GetArcBefore(const NODETYPE* types, int count, int i) noexcept {
  if (!InPath(types, count, i)) return -1;
  int node = i;
  if (types[i].IsMove()) {
    if (!types[i].IsClosed()) return -1;
    node = OtherClosedEnd(types, i, count);
    if (node < 0) return -1;
  }
  const int before = PN(types, node, count);
  return types[before].IsControl() ? before : -1;
}

int CRV_GetArcAfter(const NODETYPE* types, int count, int i) noexcept {
  if (!InPath(types, count, i)) return -1;
  const int after = NN(types, i, count);
  return after != i && types[after].IsControl() ? after : -1;
}

int CRV_GetUserNode(const NODETYPE* types, int count, int i) noexcept {
  if (!InPath(types, count, i)) return -1;
  if (types[i].IsUser()) return i;
  const int other = OtherClosedEnd(types, i, count);
  return other >= 0 && types[other].IsUser() ? other : -1;
}

int crvProblem() noexcept { return 0; }
