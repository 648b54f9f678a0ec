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
#include "support/point_types.h"

namespace {

using TavMath::DPoint;
using test::GuardedPath;

/// One call of an in-place function that needs `room` more slots than the path has nodes.
template <class T>
struct Call {
  const char* name;
  const char* svg;
  std::size_t room;
  std::function<int(T*, NODETYPE*, int)> run;
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

/// A call by the name of its function, with the points `p`, the types `t` and the count `n`.
#define LUMO_CALL(svg, room, name, ...) \
  calls.push_back({#name, svg, room, [=](T* p, NODETYPE* t, int n) -> int { __VA_ARGS__; }})
#define LUMO_GROWS(svg, room, name, ...) LUMO_CALL(svg, room, name, return __VA_ARGS__)
#define LUMO_KEEPS(name, ...) LUMO_CALL("", 0, name, return static_cast<int>(__VA_ARGS__))

/// Every in-place function that adds nodes, where it needs as much room as it states.
template <class T>
std::vector<Call<T>> Growers() {
  const T point = test::MakePoint<T>(4, 4);
  const T* more = Source<T>();
  std::vector<Call<T>> calls;
  LUMO_GROWS(kLine, 1, CRV_Add, n + CRV_Add(p, t, n, 1, 0.5, 1));
  LUMO_GROWS(kCurve, 3, CRV_Add, n + CRV_Add(p, t, n, 3, 0.5, 1));
  LUMO_GROWS(kEnabled, 6, CRV_AddEnabled, CRV_AddEnabled(p, t, n, 1, 1));
  LUMO_GROWS(kEnabled, 6, CRV_NodeEditAddEnabled, CRV_NodeEditAddEnabled(p, t, n));
  LUMO_GROWS(kCurve, 3, CRV_NodeEditAddHere, CRV_NodeEditAddHere(p, t, n, 3, 0.5));
  LUMO_GROWS(kLine, 1, CRV_AppendLine, CRV_AppendLine(p, t, n, 0, point));
  LUMO_GROWS(kLine, 1, CRV_AppendLine, CRV_AppendLine(p, t, n, n - 1, point));
  LUMO_GROWS(kLine, 2, CRV_AppendLine, CRV_AppendLine(p, t, n, n, point) + 1);
  LUMO_GROWS(kLine, 1, CRV_AppendMove, CRV_AppendMove(p, t, n, 0, point));
  LUMO_GROWS(kLine, 1, CRV_AppendMove, CRV_AppendMove(p, t, n, n - 1, point));
  LUMO_GROWS(kLine, 2, CRV_AppendMove, CRV_AppendMove(p, t, n, n, point) + 1);
  LUMO_GROWS(kLine, 3, CRV_Append, CRV_Append(p, t, n, 0, more, kSourceTypes, 3, 0));
  LUMO_GROWS(kLine, 3, CRV_Append, CRV_Append(p, t, n, n - 1, more, kSourceTypes, 3, 0));
  LUMO_GROWS(kLine, 1, CRV_Append, CRV_Append(p, t, n, 0, more, kSourceTypes, 2, 1));
  LUMO_GROWS(kEnabled, 3, CRV_BreakEnabled, CRV_BreakEnabled(p, t, n, 1));
  LUMO_GROWS(kEnabled, 3, CRV_NodeEditBreakEnabled, CRV_NodeEditBreakEnabled(p, t, n));
  LUMO_GROWS(kLine, 1, CRV_BreakAtLocation, CRV_BreakAtLocation(p, t, n, 1, 1));
  LUMO_GROWS(kLine, 2, CRV_BreakAtLocation, CRV_BreakAtLocation(p, t, n, 1, 0.5));
  LUMO_GROWS(kCurve, 4, CRV_BreakAtLocation, CRV_BreakAtLocation(p, t, n, 3, 0.5));
  LUMO_GROWS(kApart, 1, CRV_JoinEnabledAddingLineSegments, CRV_JoinEnabledAddingLineSegments(p, t, n));
  LUMO_GROWS(kTwoApart, 1, CRV_JoinEnabledAddingLineSegments, CRV_JoinEnabledAddingLineSegments(p, t, n) + 1);
  LUMO_GROWS(kManyApart, 2, CRV_JoinEnabledAddingLineSegments, CRV_JoinEnabledAddingLineSegments(p, t, n));
  LUMO_GROWS(kManyApart, 2, CRV_NodeEditJoinEnabledAddingLineSegments,
             CRV_NodeEditJoinEnabledAddingLineSegments(p, t, n));
  LUMO_GROWS(kLineOnly, 2, CRV_ToCurveNode, CRV_ToCurveNode(p, t, n, 1));
  LUMO_GROWS(kEnabled, 6, CRV_ToCurveEnabled, CRV_ToCurveEnabled(p, t, n));
  LUMO_GROWS(kEnabled, 6, CRV_NodeEditToCurveEnabled, CRV_NodeEditToCurveEnabled(p, t, n));
  LUMO_GROWS(kLine, 2, PathInsNext, (PathInsNext(t, p, 1, 2, n), n + 2));
  LUMO_GROWS(kLine, 2, CopyPath, (Lumo::CopyPath(p, t, n - 1, more, kSourceTypes, 0, 3), n + 2));
  LUMO_GROWS(kLine, 2, MovePath, (Lumo::MovePath(p, t, 2, 0, n), n + 2));
  return calls;
}

/// Every in-place function that needs no room, with arguments that suit a path of at least one node.
template <class T>
std::vector<Call<T>> Keepers() {
  static const TavMath::MATRIX matrix{2, 1, -1, 2, 5, -5};
  static const Lumo::CurveRepairSettings settings{};
  std::vector<Call<T>> calls;
  LUMO_KEEPS(CRV_Remove, CRV_Remove(p, t, n, n / 2, 2));
  LUMO_KEEPS(CRV_RemoveOpenSubpaths, CRV_RemoveOpenSubpaths(p, t, n));
  LUMO_KEEPS(CRV_ReverseThisSubpath, (CRV_ReverseThisSubpath(p, t, n, n / 2), n));
  LUMO_CALL("", 0, CRV_JoinTwoNodesExt, int at = 0; return CRV_JoinTwoNodesExt(p, t, n, 0, n - 1, &at));
  LUMO_KEEPS(CRV_JoinTwoNodes, CRV_JoinTwoNodes(p, t, n, 0, n - 1));
  LUMO_CALL("", 0, CRV_JoinTwoNodesWithOpenSubpathExt, int a = n - 1; int b = -1; int c = 0;
            int d = CRV_LastNodeOfThisSubpath(t, n, 0);
            return CRV_JoinTwoNodesWithOpenSubpathExt(p, t, n, &a, &b, &c, &d));
  LUMO_KEEPS(CRV_JoinTwoNodesWithOpenSubpath,
             CRV_JoinTwoNodesWithOpenSubpath(p, t, n, n - 1, -1, 0, CRV_LastNodeOfThisSubpath(t, n, 0)));
  LUMO_KEEPS(CRV_JoinEnabled, CRV_JoinEnabled(p, t, n));
  LUMO_KEEPS(CRV_NodeEditJoinEnabled, CRV_NodeEditJoinEnabled(p, t, n));
  LUMO_KEEPS(CRV_DeleteEnabled, CRV_DeleteEnabled(p, t, n));
  LUMO_KEEPS(CRV_NodeEditDeleteEnabled, CRV_NodeEditDeleteEnabled(p, t, n));
  LUMO_CALL("", 0, CRV_DeleteEnabledEx, WDeleteRunInfo* runs = nullptr; int k = 0;
            const int result = CRV_DeleteEnabledEx(p, t, n, &runs, &k); std::free(runs); return result);
  LUMO_CALL("", 0, CRV_NodeEditDeleteEnabledEx, WDeleteRunInfo* runs = nullptr; int k = 0;
            const int result = CRV_NodeEditDeleteEnabledEx(p, t, n, &runs, &k); std::free(runs);
            return result);
  LUMO_KEEPS(CRV_NodeEditToLineEnabled, CRV_NodeEditToLineEnabled(p, t, n));
  LUMO_KEEPS(CRV_NodeEditSetContEnabled, CRV_NodeEditSetContEnabled(p, t, n, ContinuityType::symmetric));
  LUMO_KEEPS(CRV_NodeEditReduceEnabled, CRV_NodeEditReduceEnabled(p, t, n, 50));
  LUMO_CALL("", 0, CRV_NodeEditReduceEnabledDouble,
            test::GuardedArray<DPoint> second(static_cast<std::size_t>(n));
            return CRV_NodeEditReduceEnabledDouble(p, t, n, 50, second.data()));
  LUMO_KEEPS(CRV_ToLineNode, CRV_ToLineNode(p, t, n, n - 1));
  LUMO_KEEPS(CRV_ToLineEnabled, CRV_ToLineEnabled(p, t, n));
  LUMO_KEEPS(CRV_SetContEnabled, CRV_SetContEnabled(p, t, n, ContinuityType::smooth));
  LUMO_KEEPS(CRV_ReduceEnabled, CRV_ReduceEnabled(p, t, n, 50));
  LUMO_CALL("", 0, CRV_ReduceEnabledDouble, test::GuardedArray<DPoint> second(static_cast<std::size_t>(n));
            return CRV_ReduceEnabledDouble(p, t, n, 50, second.data()));
  LUMO_KEEPS(CRV_TransferThisThinSubpathToRegular, CRV_TransferThisThinSubpathToRegular(p, t, n, n / 2, 500));
  LUMO_KEEPS(CRV_TransferAllThinSubpathsToRegular, CRV_TransferAllThinSubpathsToRegular(p, t, n, 500));
  LUMO_KEEPS(CRV_RepairClosedCurveAfterWeld, CRV_RepairClosedCurveAfterWeld(p, t, n, 500));
  LUMO_KEEPS(CRV_RepairBadClosedSubpaths, (CRV_RepairBadClosedSubpaths(p, t, n), n));
  LUMO_KEEPS(SmoothNode, (SmoothNode(p, t, n, n / 2), n));
  LUMO_KEEPS(SmoothEnabledNodes, SmoothEnabledNodes(p, t, n));
  LUMO_KEEPS(SmoothNodes, SmoothNodes(p, t, n));
  LUMO_KEEPS(CRV_TransformEnabled, CRV_TransformEnabled(p, t, n, &matrix, 1));
  LUMO_KEEPS(PathDelNext, (PathDelNext(t, p, n / 2, 1, n), n - 1));
  LUMO_KEEPS(Reverse, (Lumo::Reverse(p, t, n), Lumo::Reverse(p, t, n / 2, n - 1), n));
  LUMO_KEEPS(ScrubDanglingMoves, Lumo::ScrubDanglingMoves(p, t, n, true));
  LUMO_KEEPS(RemoveZeroLengthSegments, Lumo::RemoveZeroLengthSegments(p, t, static_cast<std::size_t>(n)));
  LUMO_KEEPS(RemoveShortSegments, Lumo::RemoveShortSegments(p, t, n, 300, 300));
  LUMO_KEEPS(RemoveSmallSubpaths, Lumo::RemoveSmallSubpaths(p, t, n, 300));
  LUMO_KEEPS(RepairContinuity, (Lumo::RepairContinuity(p, t, n, settings), n));
  return calls;
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

LUMO_TYPED_SUITE(Room);

TEST(RoomTable, NamesEveryInPlaceFunction) {
  std::set<std::string> missing;
  for (const char* header : {"crv_edit.h", "crv_convert.h", "path_array.h", "repair.h"})
    missing.merge(WritersOf(header));
  EXPECT_GT(missing.size(), 45u) << "the headers were not understood";
  for (const auto& grower : Growers<tagPOINT>()) missing.erase(grower.name);
  for (const auto& keeper : Keepers<tagPOINT>()) missing.erase(keeper.name);
  EXPECT_EQ(missing, std::set<std::string>());
}

LUMO_TYPED_TEST(Room, TheStatedSlotsSufficeAndTheLastIsUsed) {
  for (const auto& grower : Growers<T>()) {
    SCOPED_TRACE(grower.name);
    const auto path = test::ParsePath<T>(grower.svg);
    GuardedPath<T> g(path, grower.room);
    const int result = grower.run(g.points.data(), g.types.data(), g.count);
    EXPECT_EQ(result, static_cast<int>(path.points.size() + grower.room));
    EXPECT_NE(g.types[g.types.size() - 1], NODETYPE(0xA5)) << "it states more room than it needs";
  }
}

LUMO_TYPED_TEST(Room, WhatNeedsNoneStaysInTheArrays) {
  test::Bits bits(5);
  for (const auto& keeper : Keepers<T>()) {
    SCOPED_TRACE(keeper.name);
    for (int k = 0; k < 150; ++k) {
      const auto path =
          k % 3 == 0 ? test::RandomMalformedPath<T>(bits, 1 + k / 5) : test::RandomPath<T>(bits);
      if (path.empty()) continue;
      GuardedPath<T> g(path);
      const int result = keeper.run(g.points.data(), g.types.data(), g.count);
      ASSERT_LE(result, path.count()) << path;
      ASSERT_TRUE(g.points.Intact() && g.types.Intact()) << path;
    }
  }
}

#if defined(LUMO_TEST_ASAN)
LUMO_TYPED_TEST(Room, OneSlotLessIsNoticedBeforeItIsWritten) {
  GTEST_FLAG_SET(death_test_style, "fast");
  for (const auto& grower : Growers<T>()) {
    SCOPED_TRACE(grower.name);
    const auto path = test::ParsePath<T>(grower.svg);
    // One array at a time: each is looked after by itself.
    test::GuardedArray<T> points(path.points, path.points.size() + grower.room),
        fewPoints(path.points, path.points.size() + grower.room - 1);
    test::GuardedArray<NODETYPE> types(path.types, path.types.size() + grower.room),
        fewTypes(path.types, path.types.size() + grower.room - 1);
    EXPECT_DEATH(grower.run(fewPoints.data(), types.data(), path.count()), "no room for");
    EXPECT_DEATH(grower.run(points.data(), fewTypes.data(), path.count()), "no room for");
  }
}
#endif

}  // namespace
