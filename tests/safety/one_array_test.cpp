// One array of a path's two is missing: that is no path. Queries answer as for no path at all, edits leave
// the array that is there alone, builders write nothing.

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "lumo/lumo.h"
#include "support/path_builder.h"

namespace {

using Lumo::PolycurveT;
using TavMath::DPoint;
using test::Path;

template <class T>
class OneArray : public testing::Test {};
using PointTypes = testing::Types<tagPOINT, DPoint>;
TYPED_TEST_SUITE(OneArray, PointTypes);

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

template <class T>
std::vector<Query<T>> Queries() {
  const auto size = [](int n) { return static_cast<std::size_t>(n); };
  std::vector<Query<T>> list{
      {"GetArea", [](auto p, auto t, int n) { return Lumo::GetArea(p, t, n); }},
      {"GetLength", [](auto p, auto t, int n) { return Lumo::GetLength(p, t, n); }},
      {"IsPointInShape",
       [](auto p, auto t, int n) { return Lumo::IsPointInShape(p, t, n, test::MakePoint<T>(99, 99)); }},
      {"GetTightBBox",
       [](auto p, auto t, int n) {
         Lumo::BoxT<T> box{};
         return Lumo::GetTightBBox(p, t, n, box);
       }},
      {"GetTightEnabledBBox",
       [](auto p, auto t, int n) {
         Lumo::BoxT<T> box{};
         return Lumo::GetTightEnabledBBox(p, t, n, box);
       }},
      {"FindClosestPoint",
       [](auto p, auto t, int n) {
         Lumo::ClosestPoint<T, Lumo::CurvePosition> closest;
         return Lumo::FindClosestPoint(p, t, n, test::MakePoint<T>(1, 2), closest);
       }},
      {"CRV_GetPointOnCurve",
       [](auto p, auto t, int) {
         T out{};
         return CRV_GetPointOnCurve(&out, p, t, 1, 0.5);
       }},
      {"CSegmentList", [](auto p, auto t, int n) { return Lumo::CSegmentList(p, t, n).size(); }},
      {"PolycurveT", [=](auto p, auto t, int n) { return PolycurveT<T>(p, t, size(n)).GetPointCount(); }},
      {"PolycurveRefT",
       [=](auto p, auto t, int n) {
         return PolycurveT<T>(Lumo::PolycurveRefT<T>(p, t, size(n))).GetPointCount();
       }},
      {"PushBack",
       [=](auto p, auto t, int n) {
         PolycurveT<T> path;
         path.PushBack(p, t, size(n));
         return path.GetPointCount();
       }},
      {"InsertPoints",
       [=](auto p, auto t, int n) {
         PolycurveT<T> path;
         path.InsertPoints(0, p, t, size(n));
         return path.GetPointCount();
       }},
      {"SubpathTreeNode",
       [](auto p, auto t, int n) {
         const Lumo::SubpathTreeNode node(p, t, n, 3);
         std::vector<DPoint> points;
         std::vector<NODETYPE> types;
         node.AppendNodes(points, types);
         return node.GetTotalNumberOfPoints() + node.GetArea() + static_cast<double>(points.size());
       }},
      {"SubpathHierarchy",
       [](auto p, auto t, int n) { return Lumo::SubpathHierarchy(p, t, n, false).GetNumberOfChildren(); }},
      {"SubpathHierarchy of views",
       [=](auto p, auto t, int n) {
         const std::vector<Lumo::ConstDrawCurveT<T>> views{{p, t, size(n)}};
         return Lumo::SubpathHierarchy(views).GetNumberOfChildren();
       }},
      {"CreateOffsetCurve", [](auto p, auto t, int n) {
         Path<T> out;
         const Lumo::Offset::OffsetSettings settings(new Lumo::Round, new Lumo::Round, 500, false);
         Lumo::CreateOffsetCurve(p, t, n, out.points, out.types, settings);
         return out.points.size();
       }}};
  if constexpr (std::is_same_v<T, DPoint>) {
    list.push_back({"AddCurve", [](auto p, auto t, int n) {
                      Lumo::SegmentIntersectionTable table;
                      table.AddCurve(p, t, n);
                      return table.Segments().size();
                    }});
    list.push_back({"CloseOffsetCurves", [](auto p, auto t, int n) {
                      Path<T> out;
                      const Lumo::Offset::OffsetSettings settings(new Lumo::Round, new Lumo::Round, 500,
                                                                  false);
                      Lumo::CloseOffsetCurves(p, t, n, out.points, out.types,
                                              Lumo::Offset::EOpenCurveOffsetSide::both, settings);
                      return out.points.size();
                    }});
    list.push_back({"CombineClosedOffsetCurves", [](auto p, auto t, int n) {
                      Path<T> out;
                      Lumo::CombineClosedOffsetCurves(p, t, n, out.points, out.types, 0, n);
                      return out.points.size();
                    }});
  }
  return list;
}

TYPED_TEST(OneArray, IsNoPathToAQuery) {
  using T = TypeParam;
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
  return {
      {"RemoveZeroLengthSegments",
       [](T* p, NODETYPE* t, int n) {
         return static_cast<int>(Lumo::RemoveZeroLengthSegments(p, t, static_cast<std::size_t>(n)));
       }},
      {"RemoveShortSegments",
       [](T* p, NODETYPE* t, int n) { return Lumo::RemoveShortSegments(p, t, n, 10, 10); }},
      {"RemoveSmallSubpaths",
       [](T* p, NODETYPE* t, int n) { return Lumo::RemoveSmallSubpaths(p, t, n, 10); }},
      {"ScrubDanglingMoves",
       [](T* p, NODETYPE* t, int n) { return Lumo::ScrubDanglingMoves(p, t, n, false); }},
      {"RepairContinuity", [](T* p, NODETYPE* t, int n) { return Lumo::RepairContinuity(p, t, n, {}); }},
      {"Reverse", [](T* p, NODETYPE* t, int n) { return Lumo::Reverse(p, t, n), n; }},
      {"Reverse a range", [](T* p, NODETYPE* t, int n) { return Lumo::Reverse(p, t, 1, n - 1), n; }},
      {"MovePath", [](T* p, NODETYPE* t, int n) { return Lumo::MovePath(p, t, 0, 1, 3), n; }},
      {"PathInsNext", [](T* p, NODETYPE* t, int n) { return PathInsNext(t, p, 1, 2, n - 2), n; }},
      {"PathDelNext", [](T* p, NODETYPE* t, int n) { return PathDelNext(t, p, 1, 2, n), n; }},
      {"CopyPath to it",
       [from = Drawing<T>()](T* p, NODETYPE* t, int n) {
         return Lumo::CopyPath(p, t, 0, from.points.data(), from.types.data(), 3, 2), n;
       }},
  };
}

TYPED_TEST(OneArray, IsLeftAloneByAnEdit) {
  using T = TypeParam;
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

TYPED_TEST(OneArray, IsNoPlaceToBuildAShape) {
  using T = TypeParam;
  const T zero = test::MakePoint<T>(0, 0);
  const std::function<std::size_t(T*, NODETYPE*)> builders[] = {
      [](T* p, NODETYPE* t) { return Lumo::BuildLine(p, t, DPoint{1, 2}, DPoint{30, 40}); },
      [](T* p, NODETYPE* t) { return Lumo::BuildEllipse(p, t, DPoint{1, 2}, 30, 40, 0, 0, false, false); },
      [](T* p, NODETYPE* t) { return Lumo::BuildRectangle(p, t, 30, 40); },
      [](T* p, NODETYPE* t) {
        return Lumo::BuildRectangle(p, t, 30, 40, 5, Lumo::RectangleCorner::round, false);
      },
      [](T* p, NODETYPE* t) { return Lumo::BuildCircularArc(p, t, DPoint{1, 2}, 30, 0, 1); },
      [](T* p, NODETYPE* t) {
        return Lumo::BuildCircularArc(p, t, DPoint{1, 2}, DPoint{30, 50}, DPoint{60, 0});
      },
      [](T* p, NODETYPE* t) {
        return Lumo::BuildCircularArc(p, t, DPoint{1, 2}, DPoint{30, 50}, TavMath::DVector{1, 0});
      },
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
