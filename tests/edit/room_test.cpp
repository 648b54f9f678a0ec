// The room that the in-place functions state: each gets along with exactly that much and uses its last slot;
// with one slot less a build that knows where arrays end stops it before it writes past the end.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "lumo/lumo.h"
#include "support/generators.h"
#include "support/guarded_array.h"
#include "support/path_builder.h"

namespace {

using TavMath::DPoint;
using test::GuardedPath;

/// One call of an in-place function that needs `room` more slots than the path has nodes.
template <class T>
struct Grower {
  const char* name;
  const char* svg;
  std::size_t room;
  std::function<int(T*, NODETYPE*, int)> call;
};

template <class T>
const T* Source() {
  static const T points[] = {test::MakePoint<T>(1, 2), test::MakePoint<T>(3, 4), test::MakePoint<T>(5, 6),
                             test::MakePoint<T>(7, 8)};
  return points;
}
const NODETYPE kSourceTypes[] = {NODETYPE(0x44), NODETYPE(0x44), NODETYPE(0x44), NODETYPE(0x44)};

constexpr const char* kLine = "M0,0 L10,0 L20,5";
constexpr const char* kLineOnly = "M0,0 e L10,0 e";
constexpr const char* kCurve = "M0,0 C0,5 5,10 10,10 L20,10";
constexpr const char* kEnabled = "M0,0 e L90,0 e C120,30 120,60 90,90 e L0,90 e L5,5 M9,9 L20,20 e";
constexpr const char* kApart = "M0,0 e L9,0 L9,9 e";
constexpr const char* kTwoApart = "M0,0 L9,0 e M20,0 e L30,0";
constexpr const char* kManyApart = "M0,0 e L9,0 L9,9 e M20,0 e L30,0 L30,9 e M1,1 L2,2";

/// Every in-place function that adds nodes, where it needs as much room as it states.
template <class T>
std::vector<Grower<T>> Growers() {
  const T point = test::MakePoint<T>(4, 4);
  const T* more = Source<T>();
  return {
      {"CRV_Add", kLine, 1, [](T* p, NODETYPE* t, int n) { return n + CRV_Add(p, t, n, 1, 0.5, 1); }},
      {"CRV_Add", kCurve, 3, [](T* p, NODETYPE* t, int n) { return n + CRV_Add(p, t, n, 3, 0.5, 1); }},
      {"CRV_AddEnabled", kEnabled, 6, [](T* p, NODETYPE* t, int n) { return CRV_AddEnabled(p, t, n, 1, 1); }},
      {"CRV_NodeEditAddEnabled", kEnabled, 6,
       [](T* p, NODETYPE* t, int n) { return CRV_NodeEditAddEnabled(p, t, n); }},
      {"CRV_NodeEditAddHere", kCurve, 3,
       [](T* p, NODETYPE* t, int n) { return CRV_NodeEditAddHere(p, t, n, 3, 0.5); }},
      {"CRV_AppendLine", kLine, 1,
       [=](T* p, NODETYPE* t, int n) { return CRV_AppendLine(p, t, n, 0, point); }},
      {"CRV_AppendLine", kLine, 1,
       [=](T* p, NODETYPE* t, int n) { return CRV_AppendLine(p, t, n, n - 1, point); }},
      {"CRV_AppendLine", kLine, 2,
       [=](T* p, NODETYPE* t, int n) { return CRV_AppendLine(p, t, n, n, point) + 1; }},
      {"CRV_AppendMove", kLine, 1,
       [=](T* p, NODETYPE* t, int n) { return CRV_AppendMove(p, t, n, 0, point); }},
      {"CRV_AppendMove", kLine, 1,
       [=](T* p, NODETYPE* t, int n) { return CRV_AppendMove(p, t, n, n - 1, point); }},
      {"CRV_AppendMove", kLine, 2,
       [=](T* p, NODETYPE* t, int n) { return CRV_AppendMove(p, t, n, n, point) + 1; }},
      {"CRV_Append", kLine, 3,
       [=](T* p, NODETYPE* t, int n) { return CRV_Append(p, t, n, 0, more, kSourceTypes, 3, 0); }},
      {"CRV_Append", kLine, 3,
       [=](T* p, NODETYPE* t, int n) { return CRV_Append(p, t, n, n - 1, more, kSourceTypes, 3, 0); }},
      {"CRV_Append", kLine, 1,
       [=](T* p, NODETYPE* t, int n) { return CRV_Append(p, t, n, 0, more, kSourceTypes, 2, 1); }},
      {"CRV_BreakEnabled", kEnabled, 3,
       [](T* p, NODETYPE* t, int n) { return CRV_BreakEnabled(p, t, n, 1); }},
      {"CRV_NodeEditBreakEnabled", kEnabled, 3,
       [](T* p, NODETYPE* t, int n) { return CRV_NodeEditBreakEnabled(p, t, n); }},
      {"CRV_BreakAtLocation", kLine, 1,
       [](T* p, NODETYPE* t, int n) { return CRV_BreakAtLocation(p, t, n, 1, 1); }},
      {"CRV_BreakAtLocation", kLine, 2,
       [](T* p, NODETYPE* t, int n) { return CRV_BreakAtLocation(p, t, n, 1, 0.5); }},
      {"CRV_BreakAtLocation", kCurve, 4,
       [](T* p, NODETYPE* t, int n) { return CRV_BreakAtLocation(p, t, n, 3, 0.5); }},
      {"CRV_JoinEnabledAddingLineSegments", kApart, 1,
       [](T* p, NODETYPE* t, int n) { return CRV_JoinEnabledAddingLineSegments(p, t, n); }},
      {"CRV_JoinEnabledAddingLineSegments", kTwoApart, 1,
       [](T* p, NODETYPE* t, int n) { return CRV_JoinEnabledAddingLineSegments(p, t, n) + 1; }},
      {"CRV_JoinEnabledAddingLineSegments", kManyApart, 2,
       [](T* p, NODETYPE* t, int n) { return CRV_JoinEnabledAddingLineSegments(p, t, n); }},
      {"CRV_NodeEditJoinEnabledAddingLineSegments", kManyApart, 2,
       [](T* p, NODETYPE* t, int n) { return CRV_NodeEditJoinEnabledAddingLineSegments(p, t, n); }},
      {"CRV_ToCurveNode", kLineOnly, 2, [](T* p, NODETYPE* t, int n) { return CRV_ToCurveNode(p, t, n, 1); }},
      {"CRV_ToCurveEnabled", kEnabled, 6,
       [](T* p, NODETYPE* t, int n) { return CRV_ToCurveEnabled(p, t, n); }},
      {"CRV_NodeEditToCurveEnabled", kEnabled, 6,
       [](T* p, NODETYPE* t, int n) { return CRV_NodeEditToCurveEnabled(p, t, n); }},
      {"PathInsNext", kLine, 2,
       [](T* p, NODETYPE* t, int n) {
         PathInsNext(t, p, 1, 2, n);
         return n + 2;
       }},
      {"CopyPath", kLine, 2,
       [=](T* p, NODETYPE* t, int n) {
         Lumo::CopyPath(p, t, n - 1, more, kSourceTypes, 0, 3);
         return n + 2;
       }},
      {"MovePath", kLine, 2,
       [](T* p, NODETYPE* t, int n) {
         Lumo::MovePath(p, t, 2, 0, n);
         return n + 2;
       }},
  };
}

/// Every in-place function that needs no room, with arguments that suit a path of at least one node.
template <class T>
std::vector<Grower<T>> Keepers() {
  static const TavMath::MATRIX matrix{2, 1, -1, 2, 5, -5};
  static const Lumo::CurveRepairSettings settings{};
#define LUMO_KEEPER(name, ...) {#name, "", 0, [](T* p, NODETYPE* t, int n) -> int { __VA_ARGS__; }}
  return {
    LUMO_KEEPER(CRV_Remove, return CRV_Remove(p, t, n, n / 2, 2)),
        LUMO_KEEPER(CRV_RemoveOpenSubpaths, return CRV_RemoveOpenSubpaths(p, t, n)),
        LUMO_KEEPER(CRV_ReverseThisSubpath, CRV_ReverseThisSubpath(p, t, n, n / 2); return n),
        LUMO_KEEPER(CRV_JoinTwoNodesExt, int at = 0; return CRV_JoinTwoNodesExt(p, t, n, 0, n - 1, &at)),
        LUMO_KEEPER(CRV_JoinTwoNodes, return CRV_JoinTwoNodes(p, t, n, 0, n - 1)),
        LUMO_KEEPER(CRV_JoinTwoNodesWithOpenSubpathExt, int a = n - 1; int b = -1; int c = 0;
                    int d = CRV_LastNodeOfThisSubpath(t, n, 0);
                    return CRV_JoinTwoNodesWithOpenSubpathExt(p, t, n, &a, &b, &c, &d)),
        LUMO_KEEPER(CRV_JoinTwoNodesWithOpenSubpath,
                    return CRV_JoinTwoNodesWithOpenSubpath(p, t, n, n - 1, -1, 0,
                                                           CRV_LastNodeOfThisSubpath(t, n, 0))),
        LUMO_KEEPER(CRV_JoinEnabled, return CRV_JoinEnabled(p, t, n)),
        LUMO_KEEPER(CRV_NodeEditJoinEnabled, return CRV_NodeEditJoinEnabled(p, t, n)),
        LUMO_KEEPER(CRV_DeleteEnabled, return CRV_DeleteEnabled(p, t, n)),
        LUMO_KEEPER(CRV_NodeEditDeleteEnabled, return CRV_NodeEditDeleteEnabled(p, t, n)),
        LUMO_KEEPER(CRV_DeleteEnabledEx, WDeleteRunInfo* runs = nullptr; int k = 0;
                    const int result = CRV_DeleteEnabledEx(p, t, n, &runs, &k); std::free(runs);
                    return result),
        LUMO_KEEPER(CRV_NodeEditDeleteEnabledEx, WDeleteRunInfo* runs = nullptr; int k = 0;
                    const int result = CRV_NodeEditDeleteEnabledEx(p, t, n, &runs, &k); std::free(runs);
                    return result),
        LUMO_KEEPER(CRV_NodeEditToLineEnabled, return CRV_NodeEditToLineEnabled(p, t, n)),
        LUMO_KEEPER(CRV_NodeEditSetContEnabled,
                    return CRV_NodeEditSetContEnabled(p, t, n, ContinuityType::symmetric)),
        LUMO_KEEPER(CRV_NodeEditReduceEnabled, return CRV_NodeEditReduceEnabled(p, t, n, 50)),
        LUMO_KEEPER(CRV_NodeEditReduceEnabledDouble,
                    test::GuardedArray<DPoint> second(static_cast<std::size_t>(n));
                    return CRV_NodeEditReduceEnabledDouble(p, t, n, 50, second.data())),
        LUMO_KEEPER(CRV_ToLineNode, return CRV_ToLineNode(p, t, n, n - 1)),
        LUMO_KEEPER(CRV_ToLineEnabled, return CRV_ToLineEnabled(p, t, n)),
        LUMO_KEEPER(CRV_SetContEnabled, return CRV_SetContEnabled(p, t, n, ContinuityType::smooth)),
        LUMO_KEEPER(CRV_ReduceEnabled, return CRV_ReduceEnabled(p, t, n, 50)),
        LUMO_KEEPER(CRV_ReduceEnabledDouble, test::GuardedArray<DPoint> second(static_cast<std::size_t>(n));
                    return CRV_ReduceEnabledDouble(p, t, n, 50, second.data())),
        LUMO_KEEPER(CRV_TransferThisThinSubpathToRegular,
                    return CRV_TransferThisThinSubpathToRegular(p, t, n, n / 2, 500)),
        LUMO_KEEPER(CRV_TransferAllThinSubpathsToRegular,
                    return CRV_TransferAllThinSubpathsToRegular(p, t, n, 500)),
        LUMO_KEEPER(CRV_RepairClosedCurveAfterWeld, return CRV_RepairClosedCurveAfterWeld(p, t, n, 500)),
        LUMO_KEEPER(CRV_RepairBadClosedSubpaths, CRV_RepairBadClosedSubpaths(p, t, n); return n),
        LUMO_KEEPER(SmoothNode, SmoothNode(p, t, n, n / 2); return n),
        LUMO_KEEPER(SmoothEnabledNodes, return SmoothEnabledNodes(p, t, n)),
        LUMO_KEEPER(SmoothNodes, return SmoothNodes(p, t, n)),
        LUMO_KEEPER(CRV_TransformEnabled, return CRV_TransformEnabled(p, t, n, &matrix, 1)),
        LUMO_KEEPER(PathDelNext, PathDelNext(t, p, n / 2, 1, n); return n - 1),
        LUMO_KEEPER(Reverse, Lumo::Reverse(p, t, n); Lumo::Reverse(p, t, n / 2, n - 1); return n),
        LUMO_KEEPER(ScrubDanglingMoves, return Lumo::ScrubDanglingMoves(p, t, n, true)),
        LUMO_KEEPER(RemoveZeroLengthSegments, return static_cast<int>(Lumo::RemoveZeroLengthSegments(
                                                  p, t, static_cast<std::size_t>(n)))),
        LUMO_KEEPER(RemoveShortSegments, return Lumo::RemoveShortSegments(p, t, n, 300, 300)),
        LUMO_KEEPER(RemoveSmallSubpaths, return Lumo::RemoveSmallSubpaths(p, t, n, 300)),
        LUMO_KEEPER(RepairContinuity, Lumo::RepairContinuity(p, t, n, settings); return n),
  };
#undef LUMO_KEEPER
}

/// The functions over arrays that may be written, read from a public header.
std::set<std::string> WritersOf(const std::string& header) {
  std::ifstream file(LUMO_CORPUS_DIR "/../../include/lumo/" + header);
  std::stringstream text;
  text << file.rdbuf();
  const std::string code = text.str();
  std::set<std::string> names;
  const std::regex function(R"(_API (?:int|void|bool|std::size_t) (\w+)\(([^)]*)\))");
  for (std::sregex_iterator it(code.begin(), code.end(), function), end; it != end; ++it) {
    const std::string parameters = (*it)[2];
    static const std::regex writable(R"((^|[^\w] ?)(T\* (toPoints|points)|NODETYPE\* (toTypes|types)))");
    std::string bare = std::regex_replace(parameters, std::regex(R"(const (T|NODETYPE)\*)"), "read");
    if (std::regex_search(parameters, std::regex("points", std::regex::icase)) &&
        std::regex_search(bare, writable))
      names.insert((*it)[1]);
  }
  return names;
}

template <class T>
class Room : public testing::Test {};
using PointTypes = testing::Types<tagPOINT, DPoint>;
TYPED_TEST_SUITE(Room, PointTypes);

TEST(RoomTable, NamesEveryInPlaceFunction) {
  std::set<std::string> missing;
  for (const char* header : {"crv_edit.h", "crv_convert.h", "path_array.h", "repair.h"})
    missing.merge(WritersOf(header));
  EXPECT_GT(missing.size(), 45u) << "the headers were not understood";
  for (const auto& grower : Growers<tagPOINT>()) missing.erase(grower.name);
  for (const auto& keeper : Keepers<tagPOINT>()) missing.erase(keeper.name);
  EXPECT_EQ(missing, std::set<std::string>());
}

TYPED_TEST(Room, TheStatedSlotsSufficeAndTheLastIsUsed) {
  using T = TypeParam;
  for (const auto& grower : Growers<T>()) {
    SCOPED_TRACE(grower.name);
    const auto path = test::ParsePath<T>(grower.svg);
    GuardedPath<T> g(path, grower.room);
    const int result = grower.call(g.points.data(), g.types.data(), g.count);
    EXPECT_EQ(result, static_cast<int>(path.points.size() + grower.room));
    EXPECT_NE(g.types[g.types.size() - 1], NODETYPE(0xA5)) << "it states more room than it needs";
  }
}

TYPED_TEST(Room, WhatNeedsNoneStaysInTheArrays) {
  using T = TypeParam;
  test::Bits bits(5);
  for (const auto& keeper : Keepers<T>()) {
    SCOPED_TRACE(keeper.name);
    for (int k = 0; k < 150; ++k) {
      const auto path =
          k % 3 == 0 ? test::RandomMalformedPath<T>(bits, 1 + k / 5) : test::RandomPath<T>(bits);
      if (path.empty()) continue;
      GuardedPath<T> g(path);
      const int result = keeper.call(g.points.data(), g.types.data(), g.count);
      ASSERT_LE(result, path.count()) << path;
      ASSERT_TRUE(g.points.Intact() && g.types.Intact()) << path;
    }
  }
}

#if defined(LUMO_TEST_ASAN)
TYPED_TEST(Room, OneSlotLessIsNoticedBeforeItIsWritten) {
  using T = TypeParam;
  GTEST_FLAG_SET(death_test_style, "fast");
  for (const auto& grower : Growers<T>()) {
    SCOPED_TRACE(grower.name);
    const auto path = test::ParsePath<T>(grower.svg);
    // One array at a time: each is looked after by itself.
    test::GuardedArray<T> points(path.points, path.points.size() + grower.room),
        fewPoints(path.points, path.points.size() + grower.room - 1);
    test::GuardedArray<NODETYPE> types(path.types, path.types.size() + grower.room),
        fewTypes(path.types, path.types.size() + grower.room - 1);
    EXPECT_DEATH(grower.call(fewPoints.data(), types.data(), path.count()), "no room for");
    EXPECT_DEATH(grower.call(points.data(), fewTypes.data(), path.count()), "no room for");
  }
}
#endif

}  // namespace
