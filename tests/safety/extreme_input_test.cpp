// Every function over caller arrays is called with every combination of extreme arguments: null arrays,
// counts below 1, indices outside the path, INT_MIN and INT_MAX, NaN, infinities and denormals, coordinates
// at the ends of their range, well-formed and arbitrary node bytes. Nothing may be written outside the stated
// room; the sanitizer builds see reads. script/check-exports fails when an exported CRV_ or UTL function is
// not named here.
//
// Named but not swept: CRV_GetPointOnCurve, CRV_FreehandCalcCorner and CRV_BezierIntersectsRect take no
// count, so their caller vouches for the points; CRV_Append reads as many nodes of the source as it is told;
// CRV_DeleteEnabledEx and CRV_NodeEditDeleteEnabledEx are CRV_DeleteEnabled with a record to free;
// CRV_ReduceEnabledDouble and CRV_NodeEditReduceEnabledDouble are CRV_ReduceEnabled with a second array;
// CRV_GetNumberOfUserNodes, CRV_NeedGrowForAddNodeOfType,
// CRV_NodeHitAll, CRV_FreehandInfo... and CRV_ConnectInfo... have tests of their
// own for bad input.

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "lumo/lumo.h"
#include "support/path_builder.h"
#include "support/point_types.h"

namespace {

using TavMath::DPoint;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kDoubles[] = {0.0, 0.5, 1.0, -1.0, 2.0, kNaN, kInf, -kInf, 5e-324, 1.7976931348623157e308};

/// The arrays a call works on: a drawing, room for what the widest edit may add, and a guard behind it.
template <class T>
struct Arena {
  static constexpr std::size_t kNodes = 16;
  static constexpr std::size_t kRoom = 4 * kNodes + 8;
  static constexpr std::size_t kGuard = 64;

  std::vector<T> points = std::vector<T>(kRoom + kGuard);
  std::vector<NODETYPE> types = std::vector<NODETYPE>(kRoom + kGuard);
  std::vector<T> otherPoints = std::vector<T>(kRoom);
  std::vector<DPoint> second = std::vector<DPoint>(kRoom);
  std::vector<double> lengths = std::vector<double>(kRoom);
  tagRECT rect{-5, 5, 5, -5};
  TavMath::MATRIX matrix{2, 1, -1, 2, 1e300, -5};
  int outInt[4] = {};
  double outDouble = 0;
  CRV_ENABLINGINFO info{};
  int count = 0;
  int form = 0;

  static constexpr int kForms = 5;

  void Reset() {
    static const auto drawing = test::ParsePath<T>(
        "M0,0 e L90,0 e s C120,30 120,60 90,90 y e L0,90 Z M20,20 e L20,70 e C1,2 3,4 5,6 e M7,7 e");
    std::mt19937 random(static_cast<unsigned>(form) * 977u);
    using Coordinate = decltype(T::x);
    const bool integer = std::is_integral_v<Coordinate>;
    const double wild[] = {integer ? double{INT_MIN} : -kInf, integer ? double{INT_MAX} : kNaN,
                           integer ? double{INT_MAX} : 1e308, integer ? -1.0 : -1e308, 0.0};
    for (std::size_t k = 0; k < kRoom; ++k) {
      const bool inPath = k < drawing.points.size();
      types[k] = form % 2 == 0 ? (inPath ? drawing.types[k] : NODETYPE(0x44))
                               : NODETYPE(static_cast<unsigned char>(random() & 0xFF));
      points[k] = inPath && form < 2 ? drawing.points[k]
                                     : T{static_cast<Coordinate>(wild[random() % 5]),
                                         static_cast<Coordinate>(wild[random() % 5])};
      otherPoints[k] = points[k];
    }
    count = form == 4 ? 1 : static_cast<int>(drawing.points.size());
    for (std::size_t k = kRoom; k < kRoom + kGuard; ++k) {
      types[k] = NODETYPE(0xAB);
      points[k] = T{static_cast<Coordinate>(1234567), static_cast<Coordinate>(7654321)};
    }
  }

  bool GuardIntact() const {
    for (std::size_t k = kRoom; k < kRoom + kGuard; ++k) {
      if (types[k] != 0xAB || points[k].x != 1234567 || points[k].y != 7654321) return false;
    }
    return true;
  }
};

/// Where the count stands among the int parameters of a function.
enum class CountAt { first, second, third };

template <class T>
class Sweeper {
 public:
  template <class... Args, class Result>
  void Sweep(const char* name, Result (*function)(Args...) noexcept, CountAt countAt) {
    countAt_ = static_cast<int>(countAt);
    for (arena_.form = 0; arena_.form < Arena<T>::kForms; ++arena_.form) {
      arena_.Reset();
      Fill<std::tuple<Args...>, 0>(name, function, std::tuple<std::remove_cv_t<Args>...>{}, 0, 0);
    }
  }

  long calls = 0;

 private:
  /// Chooses argument number At in every way and goes on to the next; ints and points count the parameters of
  /// their kind met so far.
  template <class Tuple, std::size_t At, class Function, class Chosen>
  void Fill(const char* name, Function function, Chosen chosen, int ints, int pointers) {
    if constexpr (At == std::tuple_size_v<Tuple>) {
      arena_.Reset();
      ++calls;
      std::apply(function, chosen);
      if (!arena_.GuardIntact()) {
        ADD_FAILURE() << name << " wrote outside the room, form " << arena_.form;
        arena_.Reset();
      }
    } else {
      using Arg = std::tuple_element_t<At, Tuple>;
      const auto next = [&](Arg value, int moreInts, int morePointers) {
        std::get<At>(chosen) = value;
        Fill<Tuple, At + 1>(name, function, chosen, ints + moreInts, pointers + morePointers);
      };
      if constexpr (std::is_same_v<Arg, int>) {
        if (ints == countAt_) {
          for (const int value : {INT_MIN, -1, 0, 1, arena_.count}) next(value, 1, 0);
        } else {
          for (const int value : {INT_MIN, -1, 0, 1, 4, arena_.count - 1, arena_.count, INT_MAX})
            next(value, 1, 0);
        }
      } else if constexpr (std::is_same_v<Arg, double>) {
        for (const double value : kDoubles) next(value, 0, 0);
      } else if constexpr (std::is_same_v<Arg, bool>) {
        for (const bool value : {false, true}) next(value, 0, 0);
      } else if constexpr (std::is_same_v<Arg, ContinuityType>) {
        for (const int value : {0, 1, 2, 3, INT_MAX, INT_MIN}) next(static_cast<ContinuityType>(value), 0, 0);
      } else if constexpr (std::is_same_v<Arg, T>) {
        for (const std::size_t k : {std::size_t{0}, std::size_t{5}}) next(arena_.otherPoints[k], 0, 0);
      } else {
        next(nullptr, 0, 1);
        next(Valid(static_cast<std::remove_cv_t<std::remove_pointer_t<Arg>>*>(nullptr), pointers), 0, 1);
      }
    }
  }

  T* Valid(T*, int pointers) { return pointers == 0 ? arena_.points.data() : arena_.otherPoints.data(); }
  template <class U>
    requires(std::is_same_v<U, DPoint> && !std::is_same_v<T, DPoint>)
  U* Valid(U*, int) {
    return arena_.second.data();
  }
  NODETYPE* Valid(NODETYPE*, int) { return arena_.types.data(); }
  int* Valid(int*, int pointers) { return &arena_.outInt[pointers % 4]; }
  double* Valid(double*, int) { return arena_.lengths.data(); }
  tagRECT* Valid(tagRECT*, int) { return &arena_.rect; }
  TavMath::MATRIX* Valid(TavMath::MATRIX*, int) { return &arena_.matrix; }
  CRV_ENABLINGINFO* Valid(CRV_ENABLINGINFO*, int) { return &arena_.info; }

  Arena<T> arena_;
  int countAt_ = 0;
};

#define SWEEP(name) sweeper.Sweep(#name, &name, CountAt::first)
#define SWEEP_T(name) sweeper.Sweep(#name, &name<T>, CountAt::first)

TEST(ExtremeInput, NavigationStaysInThePath) {
  Sweeper<tagPOINT> sweeper;
  for (const auto& [name, function] : {std::pair{"NN", &NN},
                                       {"PN", &PN},
                                       {"NNControl", &NNControl},
                                       {"PNControl", &PNControl},
                                       {"OtherClosedEnd", &OtherClosedEnd}}) {
    sweeper.Sweep(name, function, CountAt::second);
  }
  sweeper.Sweep("IsNodeSmoothable", &IsNodeSmoothable, CountAt::second);
  sweeper.Sweep("IsNodeSymmetable", &IsNodeSymmetable, CountAt::second);
  sweeper.Sweep("SmoothEndNodes", &SmoothEndNodes, CountAt::third);
  sweeper.Sweep(
      "CRV_CountNodesInSubpath",
      +[](const NODETYPE* types, int, int count) noexcept {
        return CRV_CountNodesInSubpath(
            types, 0, count);  // a start elsewhere would need an array that is shifted with it
      },
      CountAt::second);
  SWEEP(CRV_IsFirstSubpathNode);
  SWEEP(CRV_IsLastSubpathNode);
  SWEEP(CRV_IsFirstOrLastSubpathNode);
  SWEEP(CRV_IsFirstOpenSubpathNode);
  SWEEP(CRV_IsLastOpenSubpathNode);
  SWEEP(CRV_IsFirstOrLastOpenSubpathNode);
  SWEEP(CRV_IsFirstClosedSubpathNode);
  SWEEP(CRV_IsLastClosedSubpathNode);
  SWEEP(CRV_IsFirstOrLastClosedSubpathNode);
  SWEEP(CRV_FirstNodeOfThisSubpath);
  SWEEP(CRV_LastNodeOfThisSubpath);
  SWEEP(CRV_IsThisSubpathClosed);
  SWEEP(CRV_TwoNodesInSameSubpath);
  SWEEP(CRV_NumSubpaths);
  SWEEP(CRV_ContainsClosedSubpath);
  SWEEP(CRV_ContainsOpenSubpath);
  SWEEP(CRV_HowManyEnabled);
  SWEEP(CRV_HowManyEnabledNotClosed);
  SWEEP(CRV_HowManyEnabledNotFirstOrLastInSubpath);
  SWEEP(CRV_HowManyEnabledNotFirstOrLastInOpenSubpath);
  SWEEP(CRV_HowManyEnabledLines);
  SWEEP(CRV_HowManyEnabledCurves);
  SWEEP(CRV_HowManyLines);
  SWEEP(CRV_HowManyCurves);
  SWEEP(CRV_HowManyOpenSubpaths);
  SWEEP(CRV_HowManyEnabledSubpaths);
  SWEEP(CRV_GetArcBefore);
  SWEEP(CRV_GetArcAfter);
  SWEEP(CRV_GetUserNode);
  SWEEP(CRV_SetEnabled);
  SWEEP(CRV_SetCont);
  SWEEP(CRV_EnableAllNodes);
  SWEEP(CRV_DisableAllNodes);
  SWEEP(CRV_EnableAllControls);
  SWEEP(CRV_EnableOneControl);
  SWEEP(CRV_EnableSubpath);
  SWEEP(CRV_GetEnablingInfo);
  using Lumo::FirstNodeToSegmentIndex, Lumo::LastNodeToSegmentIndex, Lumo::SegmentToFirstNodeIndex,
      Lumo::SegmentToLastNodeIndex, Lumo::GetSegmentCount;
  SWEEP(GetSegmentCount);
  SWEEP(FirstNodeToSegmentIndex);
  SWEEP(LastNodeToSegmentIndex);
  SWEEP(SegmentToFirstNodeIndex);
  SWEEP(SegmentToLastNodeIndex);
  EXPECT_GT(sweeper.calls, 10000);
}

TEST(ExtremeInput, QueriesOfIntegerPathsStayInThePath) {
  Sweeper<tagPOINT> sweeper;
  SWEEP(CRV_PathHit);
  SWEEP(CRV_NodeHit);
  SWEEP(UTLIsRectOnPath);
  SWEEP(UTLIsPointInFill);
  SWEEP(UTLIsSubpathHole);
  SWEEP(UTLIsSubpathHole_Ex);
  SWEEP(UTLGenerateNodeLengthArray);
  SWEEP(UTLFastGotoPathLength);
  SWEEP(UTLGetClosestPointOnPath);
  SWEEP(UTLGetFacePoint);
  EXPECT_GT(sweeper.calls, 1000);
}

LUMO_TYPED_SUITE(ExtremeEdit);

LUMO_TYPED_TEST(ExtremeEdit, EditsStayInTheStatedRoom) {
  Sweeper<T> sweeper;
  SWEEP_T(CRV_SegmentIsShort);
  SWEEP_T(CRV_SegmentsAreClose);
  SWEEP_T(CRV_Add);
  SWEEP_T(CRV_AddEnabled);
  SWEEP_T(CRV_NodeEditAddEnabled);
  SWEEP_T(CRV_NodeEditAddHere);
  SWEEP_T(CRV_AppendLine);
  SWEEP_T(CRV_AppendMove);
  SWEEP_T(CRV_Remove);
  SWEEP_T(CRV_RemoveOpenSubpaths);
  SWEEP_T(CRV_ReverseThisSubpath);
  SWEEP_T(CRV_BreakEnabled);
  SWEEP_T(CRV_NodeEditBreakEnabled);
  SWEEP_T(CRV_BreakAtLocation);
  SWEEP_T(CRV_JoinTwoNodes);
  SWEEP_T(CRV_JoinTwoNodesExt);
  SWEEP_T(CRV_JoinTwoNodesWithOpenSubpath);
  SWEEP_T(CRV_JoinTwoNodesWithOpenSubpathExt);
  SWEEP_T(CRV_JoinEnabled);
  SWEEP_T(CRV_JoinEnabledAddingLineSegments);
  SWEEP_T(CRV_NodeEditJoinEnabled);
  SWEEP_T(CRV_NodeEditJoinEnabledAddingLineSegments);
  SWEEP_T(CRV_DeleteEnabled);
  SWEEP_T(CRV_NodeEditDeleteEnabled);
  SWEEP_T(CRV_NodeEditToLineEnabled);
  SWEEP_T(CRV_NodeEditToCurveEnabled);
  SWEEP_T(CRV_NodeEditSetContEnabled);
  SWEEP_T(CRV_NodeEditReduceEnabled);
  SWEEP_T(CRV_ToCurveNode);
  SWEEP_T(CRV_ToCurveEnabled);
  SWEEP_T(CRV_ToLineNode);
  SWEEP_T(CRV_ToLineEnabled);
  SWEEP_T(CRV_SetContEnabled);
  SWEEP_T(SmoothNode);
  SWEEP_T(SmoothEnabledNodes);
  SWEEP_T(SmoothNodes);
  SWEEP_T(CRV_TransformEnabled);
  SWEEP_T(CRV_GetEnabledBoundingBox);
  SWEEP_T(CRV_ReduceEnabled);
  SWEEP_T(CRV_TransferThisThinSubpathToRegular);
  SWEEP_T(CRV_TransferAllThinSubpathsToRegular);
  SWEEP_T(CRV_RepairClosedCurveAfterWeld);
  SWEEP_T(CRV_RepairBadClosedSubpaths);
  EXPECT_GT(sweeper.calls, 50000);
}

}  // namespace
