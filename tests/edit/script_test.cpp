// Long random scripts of edits: the path stays a path, and both variants decide alike.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "edit/slow_edit.h"
#include "lumo/repair.h"

namespace {

using test::DPoint;
using test::GuardedPath;
using test::Path;

/// One edit with its arguments; the same edit may be applied to paths of either point type.
struct Edit {
  int verb;
  int a, b;  ///< raw numbers, reduced to indices of the path at hand
  double t;
};
constexpr int kVerbs = 22;

Edit RandomEdit(test::Bits& bits) {
  const int a = bits.Below(1 << 30), b = bits.Below(1 << 30);
  const double t = bits.OneIn(4) ? bits.Below(2) : bits.Unit();
  return {bits.Below(kVerbs), a, b, t};
}

/// The extra slots that the interface says the edit may use.
int Room(const Edit& edit, const NODETYPE* types, int count) {
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
void Select(NODETYPE* types, int count, const Edit& edit) {
  test::Bits bits(static_cast<std::uint64_t>(edit.b));
  const int odds = 1 + bits.Below(6);
  for (int i = 0; i < count; ++i) CRV_SetEnabled(types, count, i, bits.OneIn(odds));
  CRV_EnableAllControls(types, count);
}

/// The next open end from node a on, or a when there is none.
int EndNear(const NODETYPE* types, int count, int a) {
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

/// Applies an edit in arrays of exactly the stated room. An edit that fails must leave everything as it was.
template <class T>
int ApplyGuarded(const Edit& edit, Path<T>& path) {
  const int room = Room(edit, path.types.data(), path.count());
  GuardedPath<T> g(path, static_cast<std::size_t>(room));
  const int result = Apply(edit, g.points.data(), g.types.data(), g.count);
  if (result < 0) {
    EXPECT_EQ(g.Copy(), path) << "failed edit " << edit.verb;
  } else {
    path = g.Copy(result);
  }
  return result;
}

TEST(EditScript, KeepsPathsWellFormedAndBothVariantsInStep) {
  int edits = 0, changes = 0, failures = 0;
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    test::Bits bits(seed);
    const test::PathOptions options{.degenerate = seed % 2 == 0, .whole = true};
    auto ints = test::RandomPath<tagPOINT>(bits, options);
    for (std::size_t k = 0; k < ints.types.size(); ++k)  // handles shown only where the editor shows them
      if (ints.types[k].IsControl()) ints.types[k] = 0xC0;
    for (int step = 0; step < 150; ++step, ++edits) {
      if (ints.count() > 400 || ints.empty()) ints = test::RandomPath<tagPOINT>(bits, options);
      // From the same path, so that rounding does not pile up: the variants must decide alike.
      auto doubles = test::ConvertPath<DPoint>(ints);
      const Edit edit = RandomEdit(bits);
      const Path<tagPOINT> before = ints;
      const int result = ApplyGuarded(edit, ints);
      const int other = ApplyGuarded(edit, doubles);
      ASSERT_TRUE(test::IsWellFormed(ints)) << "verb " << edit.verb << " seed " << seed << "\n" << before;
      ASSERT_TRUE(test::IsWellFormed(doubles)) << "verb " << edit.verb << " seed " << seed << "\n" << before;
      ASSERT_TRUE(Lumo::IsValidCurve(ints.types.data(), ints.types.size())) << "verb " << edit.verb << "\n"
                                                                            << before;
      changes += !(before == ints);
      failures += result < 0;
      // Which curve counts as near enough hangs on rounded handles; everything else on the bytes alone.
      if (edit.verb == 17 || edit.verb == 16) continue;
      ASSERT_EQ(result, other) << "verb " << edit.verb << " seed " << seed << "\n" << before;
      ASSERT_EQ(ints.Bytes(), doubles.Bytes()) << "verb " << edit.verb << " seed " << seed << "\n" << before;
    }
  }
  EXPECT_GT(changes, edits / 4);
  EXPECT_GT(failures, 50);
}

/// The angle between the incoming handle and the extension of the outgoing one at smooth nodes between two
/// curves, at its worst (radians); short handles, whose direction rounding decides, are left out. -1 when
/// handles coincide: a fold has no chord to be aligned with.
template <class T>
double WorstBend(const Path<T>& path) {
  double worst = 0;
  for (int i = 0; i < path.count(); ++i) {
    const NODETYPE type = path.type(i);
    if (type.IsControl() || type.IsCusp()) continue;
    const int before = CRV_GetArcBefore(path.types.data(), path.count(), i);
    const int after = CRV_GetArcAfter(path.types.data(), path.count(), i);
    if (before < 0 || after < 0) continue;
    const auto at = [&](int k) { return test::AsDouble(path.point(k)); };
    const auto in = at(i) - at(before), out = at(after) - at(i);
    if (Length(in) < 2000 || Length(out) < 2000) continue;
    if (Length(in + out) < 2000) return -1;
    worst = std::max(worst, std::atan2(std::fabs(Cross(in, out)), Dot(in, out)));
  }
  return worst;
}

LUMO_TYPED_SUITE(Smoothness);

LUMO_TYPED_TEST(Smoothness, OutlivesEveryEdit) {
  test::Bits bits(81);
  const test::PathOptions options{.range = 1000000, .loneMoves = false, .degenerate = false};
  double worst = 0;
  int measured = 0;
  for (int k = 0; k < 250; ++k) {
    auto path = test::RandomPath<T>(bits, options);
    for (auto& type : path.types) type.Set(NODETYPE::kEnabled, true);
    for (const auto continuity : {ContinuityType::cusp, ContinuityType::smooth, ContinuityType::symmetric})
      CRV_SetContEnabled(LUMO_ARRAYS(path), continuity);
    SmoothNodes(LUMO_ARRAYS(path));
    SmoothNodes(LUMO_ARRAYS(path));
    for (int step = 0; step < 12; ++step) {
      Edit edit = RandomEdit(bits);
      // A single conversion to a line leaves some corners between lines marked smooth (see crv_convert.h), a
      // thin subpath loses pieces.
      if (edit.verb == 9 || edit.verb == 16 || path.empty()) continue;
      edit.t = 0.2 + 0.6 * edit.t;
      edit.b |= 1;  // added nodes are smoothed
      ApplyGuarded(edit, path);
      // A joint may bring together two handles: smooth until it is smoothed is what the user asked for.
      if (edit.verb == 4 || edit.verb == 5 || edit.verb == 13 || edit.verb == 14 || edit.verb == 18)
        SmoothNodes(LUMO_ARRAYS(path));
      const double bend = WorstBend(path);
      if (bend < 0) break;
      ASSERT_LE(bend, 2e-3) << "verb " << edit.verb << "\n" << path;
      worst = std::max(worst, bend);
      ++measured;
    }
  }
  EXPECT_GT(measured, 1000);
  std::printf("smooth nodes of drawings of size 1e6: bent by at most %.3g rad\n", worst);
}

}  // namespace
