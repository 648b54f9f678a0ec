// Reducing: fewer nodes, the same outline within the tolerance.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "edit/slow_edit.h"

namespace {

using test::DPoint;
using test::GuardedPath;
using test::ParsePath;
using test::Path;

LUMO_TYPED_SUITE(Reduce);

template <class T>
Path<T> Reduced(const Path<T>& path, double tolerance) {
  GuardedPath<T> g(path);
  return g.Copy(CRV_ReduceEnabled(g.points.data(), g.types.data(), g.count, tolerance));
}

/// How far the outlines stray from each other, by their dense polylines.
template <class T>
double Apart(const Path<T>& a, const Path<T>& b) {
  const auto one = test::Flatten(a, 32), other = test::Flatten(b, 32);
  double worst = 0;
  for (const auto* from : {&one, &other}) {
    for (const auto& line : *from)
      for (const DPoint& p : line.points)
        worst = std::max(worst, test::DistanceTo(from == &one ? other : one, p));
  }
  return worst;
}

LUMO_TYPED_TEST(Reduce, TakesBackWhatASplitAdded) {
  for (const char* svg : {"M0,0 L8192,0 L8192,4096", "M0,0 C0,8192 4096,16384 16384,16384",
                          "M0,0 L8192,0 C8192,4096 4096,8192 0,8192 Z"}) {
    Path<T> path = ParsePath<T>(svg);
    for (auto& type : path.types) type.Set(NODETYPE::kEnabled, !type.IsMove());
    GuardedPath<T> g(path, 3 * path.points.size());
    int count = CRV_AddEnabled(g.points.data(), g.types.data(), g.count, 0, 1);
    const Path<T> split = g.Copy(count);
    ASSERT_GT(count, path.count());
    const Path<T> back = Reduced(split, 2);
    EXPECT_EQ(back.count(), path.count()) << svg;
    EXPECT_LT(Apart(back, path), 3) << svg;
  }
}

LUMO_TYPED_TEST(Reduce, StaysWithinTheToleranceAndKeepsWhatIsNotEnabled) {
  test::Bits bits(11);
  int removed = 0;
  for (int k = 0; k < 150; ++k) {
    const test::PathOptions options{.maxSegments = 12, .range = 3000, .degenerate = k % 2 == 0};
    const auto path = test::RandomPath<T>(bits, options);
    for (const double tolerance : {0.0, 10.0, 400.0}) {
      const auto after = Reduced(path, tolerance);
      ASSERT_TRUE(test::IsWellFormed(after)) << path;
      // Chords of 1/32 of a segment stray from it by a share of its size.
      ASSERT_LE(Apart(path, after), tolerance + 30) << "tolerance " << tolerance << "\n" << path;
      removed += path.count() - after.count();
      const auto kept = [](const Path<T>& p) {
        int n = 0;
        for (const NODETYPE type : p.types) n += type.IsOnCurve() && !type.IsEnabled();
        return n;
      };
      ASSERT_EQ(kept(path), kept(after)) << path;
    }
  }
  EXPECT_GT(removed, 100);
  EXPECT_EQ(Reduced(ParsePath<T>("M0,0 e L5,0 e L10,0 e"), std::nan("")).count(), 3);
  EXPECT_EQ(Reduced(ParsePath<T>("M0,0 e L5,0 e L10,0 e"), -1).count(), 3);
}

LUMO_TYPED_TEST(Reduce, ASecondArrayLosesTheSameNodesAndFitsItsOwnCurves) {
  test::Bits bits(13);
  int removed = 0;
  for (int k = 0; k < 150; ++k) {
    const test::PathOptions options{.maxSegments = 10, .whole = true};
    const auto path = test::RandomPath<T>(bits, options);
    const auto doubles = test::ConvertPath<DPoint>(path);
    GuardedPath<T> g(path);
    test::GuardedArray<DPoint> second(doubles.points, doubles.points.size());
    const int count = CRV_ReduceEnabledDouble(g.points.data(), g.types.data(), g.count, 300, second.data());
    const auto after = g.Copy(count);
    ASSERT_EQ(after, Reduced(path, 300)) << "the second array decides nothing";
    removed += path.count() - count;
    for (std::size_t i = 0; i < after.points.size(); ++i) {
      // The same curve, but for the rounding of the first array's handles.
      ASSERT_NEAR(static_cast<double>(after.points[i].x), second[i].x, 0.5 + 1e-6) << path;
      ASSERT_NEAR(static_cast<double>(after.points[i].y), second[i].y, 0.5 + 1e-6) << path;
    }
  }
  EXPECT_GT(removed, 100);
}

}  // namespace
