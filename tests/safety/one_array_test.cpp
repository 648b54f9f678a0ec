// One array of a path's two is missing: that is no path. Queries answer as for no path at all, edits leave
// the array that is there alone, builders write nothing.

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "lumo/lumo.h"
#include "support/path_builder.h"
#include "support/point_types.h"

namespace {

using Lumo::PolycurveT;
using TavMath::DPoint;
using test::Path;

LUMO_TYPED_SUITE(OneArray);

template <class T>
Path<T> Drawing() {
  return test::ParsePath<T>(
      "M0,0 e L9000,0 e L9000,0 C12000,3000 12000,6000 9000,9000 e L0,9000 Z M5,5 L7,7 e");
}

template <class T>
struct Query {
  const char* name;
  std::function<double(const T*, const NODETYPE*, int)> ask;
};

std::size_t Size(int n) { return static_cast<std::size_t>(n); }

/// What a call puts into something empty.
template <class Target>
Target Filled(const auto& fill) {
  Target target;
  fill(target);
  return target;
}

/// A query of the points `p`, the types `t` and the count `n`.
#define LUMO_QUERY(name, ...) \
  queries.push_back({name, [](const T* p, const NODETYPE* t, [[maybe_unused]] int n) { return __VA_ARGS__; }})

template <class T>
std::vector<Query<T>> Queries() {
  using Curve = PolycurveT<T>;
  using Lumo::GetTightBBox, Lumo::GetTightEnabledBBox, Lumo::SubpathHierarchy,
      Lumo::Offset::EOpenCurveOffsetSide;
  static Lumo::BoxT<T> box{};
  static typename Curve::Closest closest;
  static T point{};
  static const Lumo::Offset::OffsetSettings settings(new Lumo::Round, new Lumo::Round, 500, false);
  std::vector<Query<T>> queries;
  LUMO_QUERY("GetArea", Lumo::GetArea(p, t, n));
  LUMO_QUERY("GetLength", Lumo::GetLength(p, t, n));
  LUMO_QUERY("IsPointInShape", Lumo::IsPointInShape(p, t, n, test::MakePoint<T>(99, 99)));
  LUMO_QUERY("GetTightBBox", GetTightBBox(p, t, n, box));
  LUMO_QUERY("GetTightEnabledBBox", GetTightEnabledBBox(p, t, n, box));
  LUMO_QUERY("FindClosestPoint", Lumo::FindClosestPoint(p, t, n, test::MakePoint<T>(1, 2), closest));
  LUMO_QUERY("CRV_GetPointOnCurve", CRV_GetPointOnCurve(&point, p, t, 1, 0.5));
  LUMO_QUERY("CSegmentList", Lumo::CSegmentList(p, t, n).size());
  LUMO_QUERY("PolycurveT", Curve(p, t, Size(n)).GetPointCount());
  LUMO_QUERY("PolycurveRefT", Curve(Lumo::PolycurveRefT<T>(p, t, Size(n))).GetPointCount());
  LUMO_QUERY("PushBack", Filled<Curve>([&](auto& to) { to.PushBack(p, t, Size(n)); }).GetPointCount());
  LUMO_QUERY("InsertPoints",
             Filled<Curve>([&](auto& to) { to.InsertPoints(0, p, t, Size(n)); }).GetPointCount());
  queries.push_back({"SubpathTreeNode", [](auto p, auto t, int n) {
                       const Lumo::SubpathTreeNode node(p, t, n, 3);
                       const auto nodes =
                           Filled<test::DoublePath>([&](auto& to) { node.AppendNodes(to.points, to.types); });
                       return node.GetTotalNumberOfPoints() + node.GetArea() + nodes.count();
                     }});
  LUMO_QUERY("SubpathHierarchy", SubpathHierarchy(p, t, n, false).GetNumberOfChildren());
  LUMO_QUERY("SubpathHierarchy of views",
             SubpathHierarchy(std::vector<Lumo::ConstDrawCurveT<T>>{{p, t, Size(n)}}).GetNumberOfChildren());
  LUMO_QUERY("CreateOffsetCurve", Filled<Path<T>>([&](auto& to) {
                                    Lumo::CreateOffsetCurve(p, t, n, to.points, to.types, settings);
                                  }).count());
  if constexpr (std::is_same_v<T, DPoint>) {
    LUMO_QUERY("AddCurve",
               Filled<Lumo::SegmentIntersectionTable>([&](auto& table) { table.AddCurve(p, t, n); })
                   .Segments()
                   .size());
    LUMO_QUERY("CloseOffsetCurves", Filled<Path<T>>([&](auto& to) {
                                      Lumo::CloseOffsetCurves(p, t, n, to.points, to.types,
                                                              EOpenCurveOffsetSide::both, settings);
                                    }).count());
    LUMO_QUERY("CombineClosedOffsetCurves", Filled<Path<T>>([&](auto& to) {
                                              Lumo::CombineClosedOffsetCurves(p, t, n, to.points, to.types, 0,
                                                                              n);
                                            }).count());
  }
  return queries;
}

LUMO_TYPED_TEST(OneArray, IsNoPathToAQuery) {
  const Path<T> path = Drawing<T>();
  for (const Query<T>& query : Queries<T>()) {
    SCOPED_TRACE(query.name);
    const int n = path.count();
    const double none = query.ask(nullptr, nullptr, n);
    EXPECT_EQ(query.ask(path.points.data(), nullptr, n), none);
    EXPECT_EQ(query.ask(nullptr, path.types.data(), n), none);
    EXPECT_NE(query.ask(path.points.data(), path.types.data(), n), none) << "nothing to tell apart";
  }
}

template <class T>
struct Edit {
  const char* name;
  std::function<int(T*, NODETYPE*, int)> run;
};

template <class T>
std::vector<Edit<T>> Edits() {
  static const Path<T> from = Drawing<T>();
  return {
      {"RemoveZeroLengthSegments",
       [](auto p, auto t, int n) { return Lumo::RemoveZeroLengthSegments(p, t, Size(n)); }},
      {"RemoveShortSegments",
       [](auto p, auto t, int n) { return Lumo::RemoveShortSegments(p, t, n, 10, 10); }},
      {"RemoveSmallSubpaths", [](auto p, auto t, int n) { return Lumo::RemoveSmallSubpaths(p, t, n, 10); }},
      {"ScrubDanglingMoves", [](auto p, auto t, int n) { return Lumo::ScrubDanglingMoves(p, t, n, false); }},
      {"RepairContinuity", [](auto p, auto t, int n) { return Lumo::RepairContinuity(p, t, n, {}); }},
      {"Reverse", [](auto p, auto t, int n) { return Lumo::Reverse(p, t, n), n; }},
      {"Reverse a range", [](auto p, auto t, int n) { return Lumo::Reverse(p, t, 1, n - 1), n; }},
      {"MovePath", [](auto p, auto t, int n) { return Lumo::MovePath(p, t, 0, 1, 3), n; }},
      {"PathInsNext", [](auto p, auto t, int n) { return PathInsNext(t, p, 1, 2, n - 2), n; }},
      {"PathDelNext", [](auto p, auto t, int n) { return PathDelNext(t, p, 1, 2, n), n; }},
      {"CopyPath to it",
       [](auto p, auto t, int n) {
         return Lumo::CopyPath(p, t, 0, from.points.data(), from.types.data(), 3, 2), n;
       }},
  };
}

LUMO_TYPED_TEST(OneArray, IsLeftAloneByAnEdit) {
  const Path<T> before = Drawing<T>();
  const int n = before.count();
  for (const Edit<T>& edit : Edits<T>()) {
    SCOPED_TRACE(edit.name);
    Path<T> path = before;
    const int none = edit.run(nullptr, nullptr, n);
    EXPECT_EQ(edit.run(path.points.data(), nullptr, n), none);
    EXPECT_EQ(edit.run(nullptr, path.types.data(), n), none);
    EXPECT_TRUE(path == before);
  }
  Path<T> to = before;
  Lumo::CopyPath(to.points.data(), to.types.data(), 0, static_cast<const T*>(nullptr), before.types.data(), 3,
                 2);
  Lumo::CopyPath(to.points.data(), to.types.data(), 0, before.points.data(), nullptr, 3, 2);
  EXPECT_TRUE(to == before) << "copied from one array";
}

LUMO_TYPED_TEST(OneArray, IsNoPlaceToBuildAShape) {
  const T zero = test::MakePoint<T>(0, 0);
  const DPoint a{1, 2}, b{30, 50};
  const std::function<std::size_t(T*, NODETYPE*)> builders[] = {
      [=](T* p, NODETYPE* t) { return Lumo::BuildLine(p, t, a, b); },
      [=](T* p, NODETYPE* t) { return Lumo::BuildEllipse(p, t, a, 30, 40, 0, 0, false, false); },
      [=](T* p, NODETYPE* t) { return Lumo::BuildRectangle(p, t, 30, 40); },
      [=](T* p, NODETYPE* t) {
        return Lumo::BuildRectangle(p, t, 30, 40, 5, Lumo::RectangleCorner::round, false);
      },
      [=](T* p, NODETYPE* t) { return Lumo::BuildCircularArc(p, t, a, 30, 0, 1); },
      [=](T* p, NODETYPE* t) { return Lumo::BuildCircularArc(p, t, a, b, DPoint{60, 0}); },
      [=](T* p, NODETYPE* t) { return Lumo::BuildCircularArc(p, t, a, b, TavMath::DVector{1, 0}); },
  };
  for (const auto& build : builders) {
    std::vector<T> points(20, zero);
    std::vector<NODETYPE> types(20);
    EXPECT_EQ(build(points.data(), nullptr), 0u);
    EXPECT_EQ(build(nullptr, types.data()), 0u);
    EXPECT_EQ(points, std::vector<T>(20, zero));
    for (const NODETYPE type : types) EXPECT_EQ(type.value, 0);
    EXPECT_GE(build(points.data(), types.data()), 2u);
  }
}

TEST(OneArrayOfACorner, GetsNoJoin) {
  const DPoint points[] = {{0, 0}, {100, 0}, {100, -100}};
  const NODETYPE types[] = {NODETYPE(0x04), NODETYPE(0x44), NODETYPE(0x44)};
  const Lumo::Round round;
  const Lumo::MiteredCorner miter(30, nullptr);
  for (const Lumo::OffsetCorner* join :
       {static_cast<const Lumo::OffsetCorner*>(&round), static_cast<const Lumo::OffsetCorner*>(&miter)}) {
    std::vector<DPoint> out;
    std::vector<NODETYPE> outTypes;
    join->CreateCorner(out, outTypes, 0, 1, points, nullptr, 10, 0.1);
    join->CreateCorner(out, outTypes, 0, 1, nullptr, types, 10, 0.1);
    EXPECT_TRUE(out.empty() && outTypes.empty());
    EXPECT_FALSE(join->IsPointWithinCorner({103, 3}, 0, 1, points, nullptr, 10));
    EXPECT_FALSE(join->IsPointWithinCorner({103, 3}, 0, 1, nullptr, types, 10));
    EXPECT_TRUE(join->IsPointWithinCorner({103, 3}, 0, 1, points, types, 10));
  }
}

}  // namespace
