#include "lumo/polycurve.h"

#include <gtest/gtest.h>

#include <vector>

#include "lumo/polyline.h"
#include "support/point_types.h"

namespace {

using Lumo::PolycurveRefT;
using Lumo::PolycurveT;
using Lumo::PolylineT;

LUMO_TYPED_SUITE(Polycurve);

template <class T>
std::vector<int> Bytes(const PolycurveT<T>& path) {
  return {path.GetNodeTypes(), path.GetNodeTypes() + path.GetPointCount()};
}

template <class T>
PolycurveT<T> Bent() {
  PolycurveT<T> path;
  path.MoveTo(0, 0);
  path.LineTo(10, 0);
  path.CubicTo(T{20, 0}, T{30, 10}, T{30, 20});
  return path;
}

LUMO_TYPED_TEST(Polycurve, AppendsNodesWithTheUserFlagOnThoseThatTheUserSees) {
  EXPECT_EQ(Bytes(Bent<T>()), (std::vector<int>{0x04, 0x44, 0xC0, 0xC0, 0x84}));
}

LUMO_TYPED_TEST(Polycurve, SharesUntilTheFirstWriteAndThenLeavesTheOtherHoldersAlone) {
  const PolycurveT<T> original = Bent<T>();
  PolycurveT<T> copy = original;
  EXPECT_TRUE(copy.IsSameData(original));
  EXPECT_EQ(copy.GetPoints(), original.GetPoints());
  EXPECT_TRUE(copy.SetPoint(1, T{5, 5}));
  EXPECT_FALSE(copy.IsSameData(original));
  EXPECT_EQ(original.GetPoint(1), (T{10, 0}));
  EXPECT_EQ(copy.GetPoint(1), (T{5, 5}));
  const T* before = copy.GetPoints();
  EXPECT_TRUE(copy.SetPoint(2, T{1, 1}));
  EXPECT_EQ(copy.GetPoints(), before) << "a second write needs no copy";
}

LUMO_TYPED_TEST(Polycurve, OverACallersArraysNeverWritesThem) {
  const std::vector<T> points{{0, 0}, {1, 2}};
  const std::vector<NODETYPE> types{0x04, 0x44};
  PolycurveRefT<T> path(points.data(), types.data(), 2);
  EXPECT_EQ(path.GetPoints(), points.data());
  const PolycurveT<T> copy = path;
  EXPECT_NE(copy.GetPoints(), points.data()) << "a copy owns its nodes";
  EXPECT_TRUE(path.SetPoint(1, T{7, 7}));
  EXPECT_EQ(points[1], (T{1, 2}));
  EXPECT_EQ(path.GetPoint(1), (T{7, 7}));
  EXPECT_EQ((PolycurveRefT<T>(nullptr, types.data(), 2).GetPointCount()), 0u);

  std::vector<PolycurveRefT<T>> many;
  for (int i = 0; i < 20; ++i) many.emplace_back(points.data(), types.data(), 2u);
  for (const auto& ref : many)
    EXPECT_EQ(ref.GetPoints(), points.data()) << "a growing vector must not copy nodes";
}

LUMO_TYPED_TEST(Polycurve, ClosesAPolylineWithAnExtraNodeOnlyWhenItsEndsDiffer) {
  const std::vector<T> corner{{0, 0}, {10, 0}, {10, 10}};
  EXPECT_EQ(Bytes<T>(PolylineT<T>(corner.data(), 3, true)), (std::vector<int>{0x0C, 0x44, 0x44, 0x48}));
  EXPECT_EQ(Bytes<T>(PolylineT<T>(corner.data(), 3, false)), (std::vector<int>{0x04, 0x44, 0x44}));
  const std::vector<T> equal{{3, 3}, {3, 3}};
  EXPECT_EQ(Bytes<T>(PolylineT<T>(equal.data(), 2, true)), (std::vector<int>{0x0C, 0x48}));
  EXPECT_EQ(Bytes<T>(PolylineT<T>(equal.data(), 1, true)), (std::vector<int>{0x04}));
  EXPECT_TRUE((PolylineT<T>(nullptr, 3, true).IsEmpty()));
}

LUMO_TYPED_TEST(Polycurve, GrowsABufferButNeverShrinksItAndRefusesToReleaseMoreThanItHolds) {
  PolycurveT<T> path = Bent<T>();
  EXPECT_EQ(path.GetBuffer(2).count, 5u);
  EXPECT_EQ(path.GetBuffer(8).count, 8u);
  EXPECT_EQ(path.GetNodeType(7), 0);
  EXPECT_FALSE(path.ReleaseBuffer(9));
  EXPECT_EQ(path.GetPointCount(), 8u);
  EXPECT_TRUE(path.ReleaseBuffer(3));
  EXPECT_EQ(path.GetBufferSetCount(2).count, 2u);
  EXPECT_EQ(path.GetBufferSetCount(static_cast<std::size_t>(-1) / 2).count, 0u) << "no room: an empty buffer";
  EXPECT_EQ(path.GetPointCount(), 2u);

  // Classes of the host hand on what an in-place function returned: a negative count is its failure.
  struct Derived : PolycurveT<T> {
    using PolycurveT<T>::ReleaseBufferInternal;
  } own;
  own.GetBuffer(4);
  for (const int n : {-1, -2147483647 - 1, 5}) EXPECT_FALSE(own.ReleaseBufferInternal(n)) << n;
  EXPECT_EQ(own.GetPointCount(), 4u);
  EXPECT_TRUE(own.ReleaseBufferInternal(3));
  EXPECT_EQ(own.GetPointCount(), 3u);
}

LUMO_TYPED_TEST(Polycurve, AMovedFromPathIsEmptyAndUsable) {
  PolycurveT<T> path = Bent<T>();
  const PolycurveT<T> taken = std::move(path);
  EXPECT_EQ(taken.GetPointCount(), 5u);
  EXPECT_TRUE(path.IsEmpty());
  EXPECT_EQ(path.GetPoints(), nullptr);
  EXPECT_EQ((PolycurveT<T>(path).GetPointCount()), 0u);
  EXPECT_TRUE(path.MoveTo(1, 1));
  EXPECT_EQ(path.GetPointCount(), 1u);
}

LUMO_TYPED_TEST(Polycurve, RefusesIndicesOutsideThePath) {
  PolycurveT<T> path = Bent<T>();
  const PolycurveT<T> before = path;
  EXPECT_FALSE(path.SetPoint(5, T{}));
  EXPECT_FALSE(path.SetNodeType(5, 0));
  EXPECT_FALSE(path.SetNodeClosed(5, true));
  EXPECT_FALSE(path.IsLetter(5));
  EXPECT_TRUE(path.IsSameData(before));
  EXPECT_EQ(path.GetPoint(99), (T{0, 0}));
}

LUMO_TYPED_TEST(Polycurve, ReplacesRangesThatAreCutToThePath) {
  const std::vector<T> one{{99, 99}};
  const std::vector<NODETYPE> line{0x44};
  PolycurveT<T> path = Bent<T>();
  EXPECT_TRUE(path.DeletePoints(2, 100));
  EXPECT_EQ(Bytes(path), (std::vector<int>{0x04, 0x44}));
  EXPECT_TRUE(path.InsertPoints(1000, one.data(), line.data(), 1));
  EXPECT_EQ(path.GetPoint(2), (T{99, 99}));
  EXPECT_TRUE(path.Truncate(10));
  EXPECT_EQ(path.GetPointCount(), 3u);
  EXPECT_TRUE(path.ReplacePoints(0, 2, path));
  EXPECT_EQ(Bytes(path), (std::vector<int>{0x04, 0x44, 0x44, 0x44})) << "its own nodes as the source";
  path += path;
  EXPECT_EQ(path.GetPointCount(), 8u);
  EXPECT_EQ(path.GetPoint(4), path.GetPoint(0));
}

LUMO_TYPED_TEST(Polycurve, ComparesCountsFirstAndThenBytes) {
  const PolycurveT<T> path = Bent<T>();
  PolycurveT<T> other = path;
  EXPECT_TRUE(path == other);
  other.SetNodeType(1, 0x45);
  EXPECT_EQ(path.Compare(other), -1);
  EXPECT_TRUE(path < other);
  other.SetPoint(0, T{9, 9});
  other.Truncate(4);
  EXPECT_EQ(path.Compare(other), 1) << "whatever the points";
}

LUMO_TYPED_TEST(Polycurve, LengthensALineInsteadOfAddingACollinearOne) {
  PolycurveT<T> path;
  EXPECT_FALSE(path.LineTo(T{1, 1}, false)) << "never starts a path, whatever the flag";
  path.MoveTo(0, 0);
  path.LineTo(T{100, 0}, true);
  path.LineTo(T{200, 3}, true);
  EXPECT_EQ(path.GetPointCount(), 2u);
  EXPECT_EQ(path.GetPoint(1), (T{200, 3}));
  path.LineTo(T{50, 0}, true);
  EXPECT_EQ(path.GetPointCount(), 2u) << "a line that folds back is shortened";
  path.LineTo(T{100, 50}, true);
  path.LineTo(T{150, 100}, false);
  EXPECT_EQ(path.GetPointCount(), 4u);
}

LUMO_TYPED_TEST(Polycurve, TakesArraysThatAgreeOnlyAsFarAsBothGo) {
  const std::vector<T> points{{0, 0}, {1, 2}, {3, 4}};
  const std::vector<NODETYPE> types{0x04, 0x44};
  PolycurveT<T> path;
  EXPECT_TRUE(path.SetPoints(points, types));
  EXPECT_EQ(Bytes(path), (std::vector<int>{0x04, 0x44}));
  EXPECT_TRUE(path.PushBack(points, types));
  EXPECT_EQ(Bytes(path), (std::vector<int>{0x04, 0x44, 0x04, 0x44}));
  EXPECT_EQ(path.GetPoint(3), (T{1, 2}));
  const PolycurveT<T> copy = path;
  EXPECT_TRUE(path.SetPoints(path)) << "its own nodes";
  EXPECT_TRUE(path.SetPoints(copy)) << "nodes that it shares";
  EXPECT_EQ(path, copy);
  path += std::vector<PolycurveT<T>>{copy, PolycurveT<T>(), copy};
  EXPECT_EQ(path.GetPointCount(), 12u);
  EXPECT_EQ(copy.GetPointCount(), 4u);
}

}  // namespace
