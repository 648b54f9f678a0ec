#pragma once
// Random edits of the whole family, for scripts that run both point types side by side.

#include <cstdlib>

#include "edit/slow_edit.h"
#include "lumo/repair.h"

namespace script {

using test::Path;

/// One edit with its arguments; the same edit may be applied to paths of either point type.
struct Edit {
  int verb;
  int a, b;  ///< raw numbers, reduced to indices of the path at hand
  double t;
};
inline constexpr int kVerbs = 22;

inline Edit RandomEdit(test::Bits& bits) {
  const int a = bits.Below(1 << 30), b = bits.Below(1 << 30);
  const double t = bits.OneIn(4) ? bits.Below(2) : bits.Unit();
  return {bits.Below(kVerbs), a, b, t};
}

/// The extra slots that the interface says the edit may use.
inline int Room(const Edit& edit, const NODETYPE* types, int count) {
  const int lines = CRV_HowManyEnabledLines(types, count), curves = CRV_HowManyEnabledCurves(types, count);
  switch (edit.verb) {
    case 0:
      return count > 0 && types[edit.a % count].IsCurve() ? 3 : 1;
    case 1:
      return lines + 3 * curves;
    case 2:
      return lines + curves;
    case 3:
      return 4;
    case 5:
      return CRV_HowManyOpenSubpaths(types, count) + 1;
    case 7:
      return 2 * lines;
    case 8:
      return 2;
    default:
      return 0;
  }
}

/// A selection that treats closed ends as one node, as the interface's own setters do.
inline void Select(NODETYPE* types, int count, const Edit& edit) {
  test::Bits bits(static_cast<std::uint64_t>(edit.b));
  const int odds = 1 + bits.Below(6);
  for (int i = 0; i < count; ++i) CRV_SetEnabled(types, count, i, bits.OneIn(odds));
  CRV_EnableAllControls(types, count);
}

/// The next open end from node a on, or a when there is none.
inline int EndNear(const NODETYPE* types, int count, int a) {
  for (int k = 0; k < count; ++k)
    if (CRV_IsFirstOrLastOpenSubpathNode(types, count, (a + k) % count)) return (a + k) % count;
  return a % count;
}

/// Applies the edit and returns the interface's result.
template <class T>
int Apply(const Edit& edit, T* points, NODETYPE* types, int count) {
  if (count < 1) return count;
  const int a = edit.a % count, b = edit.b % count;
  const auto continuity = static_cast<ContinuityType>(edit.a % 3);
  switch (edit.verb) {
    case 0:
      return count + CRV_Add(points, types, count, a, edit.t, edit.b & 1);
    case 1:
      return CRV_AddEnabled(points, types, count, edit.a & 1, edit.b & 1);
    case 2:
      return CRV_BreakEnabled(points, types, count, edit.a & 1);
    case 3:
      return CRV_BreakAtLocation(points, types, count, a, edit.t);
    case 4:
      return CRV_JoinEnabled(points, types, count);
    case 5:
      return CRV_JoinEnabledAddingLineSegments(points, types, count);
    case 6:
      return CRV_DeleteEnabled(points, types, count);
    case 7:
      return CRV_NodeEditToCurveEnabled(points, types, count);
    case 8:
      return CRV_ToCurveNode(points, types, count, a);
    case 9:
      return CRV_ToLineNode(points, types, count, a);
    case 10:
      return CRV_NodeEditToLineEnabled(points, types, count);
    case 11:
      return CRV_SetContEnabled(points, types, count, continuity);
    case 12:
      return SmoothNodes(points, types, count);
    case 13:
    case 14: {
      const int end = EndNear(types, count, a);
      return CRV_JoinTwoNodes(points, types, count, end, EndNear(types, count, end + 1 + b));
    }
    case 15:
      CRV_ReverseThisSubpath(points, types, count, a);
      return count;
    case 16:
      return CRV_TransferAllThinSubpathsToRegular(points, types, count, edit.a % 50);
    case 17:
      return CRV_ReduceEnabled(points, types, count, edit.a % 20);
    case 18: {
      int p[4] = {EndNear(types, count, a), EndNear(types, count, b), EndNear(types, count, a + b % 7), 0};
      p[3] = types[p[2]].IsMove() ? CRV_LastNodeOfThisSubpath(types, count, p[2])
                                  : CRV_FirstNodeOfThisSubpath(types, count, p[2]);
      return CRV_JoinTwoNodesWithOpenSubpathExt(points, types, count, &p[0], &p[1], &p[2], &p[3]);
    }
    case 19: {
      WDeleteRunInfo* runs = nullptr;
      int n = 0;
      const int result = CRV_NodeEditDeleteEnabledEx(points, types, count, &runs, &n);
      std::free(runs);
      return result;
    }
    default:
      Select(types, count, edit);
      return count;
  }
}

}  // namespace script
