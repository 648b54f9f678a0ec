// Long random scripts of edits: the path stays a path, and both variants decide alike.

#include <gtest/gtest.h>

#include <cmath>

#include "edit/edit_script.h"

namespace {

using test::DPoint;
using test::GuardedPath;
using test::Path;

/// Applies an edit in arrays of exactly the stated room. An edit that fails must leave everything as it was.
template <class T>
int ApplyGuarded(const script::Edit& edit, Path<T>& path) {
  const int room = script::Room(edit, path.types.data(), path.count());
  GuardedPath<T> g(path, static_cast<std::size_t>(room));
  const int result = script::Apply(edit, g.points.data(), g.types.data(), g.count);
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
    test::PathOptions options;
    options.whole = true;
    options.degenerate = seed % 2 == 0;
    auto ints = test::RandomPath<tagPOINT>(bits, options);
    for (std::size_t k = 0; k < ints.types.size(); ++k)  // handles shown only where the editor shows them
      if (ints.types[k].IsControl()) ints.types[k] = 0xC0;
    for (int step = 0; step < 150; ++step, ++edits) {
      if (ints.count() > 400 || ints.empty()) ints = test::RandomPath<tagPOINT>(bits, options);
      // From the same path, so that rounding does not pile up: the variants must decide alike.
      auto doubles = test::ConvertPath<DPoint>(ints);
      const script::Edit edit = script::RandomEdit(bits);
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

TYPED_TEST(Smoothness, OutlivesEveryEdit) {
  using T = TypeParam;
  test::Bits bits(81);
  test::PathOptions options;
  options.range = 1000000;
  options.degenerate = options.loneMoves = false;
  double worst = 0;
  int measured = 0;
  for (int k = 0; k < 250; ++k) {
    auto path = test::RandomPath<T>(bits, options);
    for (auto& type : path.types) type.Set(NODETYPE::kEnabled, true);
    for (const auto continuity : {ContinuityType::cusp, ContinuityType::smooth, ContinuityType::symmetric})
      CRV_SetContEnabled(path.points.data(), path.types.data(), path.count(), continuity);
    SmoothNodes(path.points.data(), path.types.data(), path.count());
    SmoothNodes(path.points.data(), path.types.data(), path.count());
    for (int step = 0; step < 12; ++step) {
      script::Edit edit = script::RandomEdit(bits);
      // A single conversion to a line leaves some corners between lines marked smooth (see crv_convert.h), a
      // thin subpath loses pieces.
      if (edit.verb == 9 || edit.verb == 16 || path.empty()) continue;
      edit.t = 0.2 + 0.6 * edit.t;
      edit.b |= 1;  // added nodes are smoothed
      ApplyGuarded(edit, path);
      // A joint may bring together two handles: smooth until it is smoothed is what the user asked for.
      if (edit.verb == 4 || edit.verb == 5 || edit.verb == 13 || edit.verb == 14 || edit.verb == 18)
        SmoothNodes(path.points.data(), path.types.data(), path.count());
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
