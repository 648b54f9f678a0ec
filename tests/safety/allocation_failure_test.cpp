// Memory runs out at the first, second, third ... allocation of every operation that allocates: the stated
// failure result comes back, nothing escapes as an exception, and the caller's path is as it was.

#if !defined(_WIN32)  // a program there cannot replace the library's operator new

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "lumo/lumo.h"
#include "support/failing_new.h"
#include "support/path_builder.h"

namespace {

using Lumo::PolycurveT;
using TavMath::DPoint;
using test::FailingNew;

template <class T>
PolycurveT<T> Drawing() {
  const auto path = test::ParsePath<T>(
      "M0,0 L9000,0 e C12000,3000 12000,6000 9000,9000 e L0,9000 Z "
      "M2000,2000 L2000,7000 e L7000,7000 L7000,2000 Z "
      "M20000,0 e C25000,9000 30000,-9000 35000,0 L40000,5000 e "
      "M3000,3000 L6000,6000 M15000,15000 L18000,15000");
  return PolycurveT<T>(path.points.data(), path.types.data(), path.points.size());
}

/// One operation; returns whether it says that it succeeded (or gives a result that is not empty).
template <class T>
struct Operation {
  std::string name;
  std::function<bool(PolycurveT<T>&)> run;
  bool edits = true;
};

template <class T>
std::vector<Operation<T>> Operations() {
  using P = PolycurveT<T>;
  static const P other = Drawing<T>();
  static const T corner = other.GetPoint(2);
  static const MATRIX turn{0, 1, -1, 0, 100, 100};
  return {
      {"SetPoint", [](P& p) { return p.SetPoint(1, corner); }},
      {"SetNodeClosed", [](P& p) { return p.SetNodeClosed(1, true); }},
      {"SetEnabled", [](P& p) { return p.SetEnabled(0, true); }},
      {"EnableAllControls", [](P& p) { return p.EnableAllControls(); }},
      {"Reserve", [](P& p) { return p.Reserve(100000); }},
      {"GetBuffer", [](P& p) { return p.GetBuffer(200).count != 0; }, false},
      {"MoveTo", [](P& p) { return p.MoveTo(corner); }},
      {"CubicTo", [](P& p) { return p.CubicTo(corner, corner, corner); }},
      {"PushBack itself", [](P& p) { return p.PushBack(p); }},
      {"InsertPoints", [](P& p) { return p.InsertPoints(3, other); }},
      {"ReplacePoints", [](P& p) { return p.ReplacePoints(1, 2, other, 0, 9); }},
      {"DeletePoints", [](P& p) { return p.DeletePoints(1, 2); }},
      {"Truncate", [](P& p) { return p.Truncate(4); }},
      {"Reverse", [](P& p) { return p.Reverse(); }},
      {"TransformPoints", [](P& p) { return p.TransformPoints(turn); }},
      {"CloseSubpath", [](P& p) { return p.CloseSubpath(p.GetPointCount() - 1); }},
      {"CloseOpenSubpaths", [](P& p) { return p.CloseOpenSubpaths(); }},
      {"JoinEnabledAddingLineSegments", [](P& p) { return p.JoinEnabledAddingLineSegments(); }},
      {"JoinEnabledAddingCurves", [](P& p) { return p.JoinEnabledAddingCurves(); }},
      {"JoinClosestPairs", [](P& p) { return p.JoinClosestPairsAddingLineSegments(); }},
      {"BreakAtLength", [](P& p) { return p.BreakAtLength(5000); }},
      {"BreakEnabled", [](P& p) { return p.BreakEnabled(); }},
      {"DeleteEnabled", [](P& p) { return p.DeleteEnabled(); }},
      {"DeleteSelectedChords", [](P& p) { return p.DeleteSelectedChords(); }},
      {"ConvertToCurve", [](P& p) { return p.ConvertToCurve(); }},
      {"DivideEqually", [](P& p) { return p.DivideEqually(7); }},
      {"AppendFittedCurve", [](P& p) { return p.AppendFittedCurve(other.GetPoints(), 9, 10); }},
      {"CreateCircleSubpath", [](P& p) { return p.CreateCircleSubpath(corner, 500); }},
      {"Simplify", [](P& p) { return !p.Simplify().IsEmpty(); }, false},
      {"Union", [](P& p) { return !p.Union(other).IsEmpty(); }, false},
      {"GetSubpath", [](P& p) { return !p.GetSubpath(1).IsEmpty(); }, false},
      {"GetSubpaths", [](P& p) { return !p.GetSubpaths().empty(); }, false},
      {"GetSubpathIndices", [](P& p) { return !p.GetSubpathIndices().empty(); }, false},
      {"GetLetterCurves", [](P& p) { return !p.GetLetterCurves().empty(); }, false},
      {"GetPolyline", [](P& p) { return !p.GetPolyline(10).IsEmpty(); }, false},
      {"GetEvenlySpacedPoints", [](P& p) { return !p.GetEvenlySpacedPoints(5).empty(); }, false},
      {"FindClosestPoints", [](P& p) { return !p.FindClosestPoints(corner).empty(); }, false},
  };
}

template <class T>
class AllocationFailure : public testing::Test {};
using PointTypes = testing::Types<tagPOINT, DPoint>;
TYPED_TEST_SUITE(AllocationFailure, PointTypes);

TYPED_TEST(AllocationFailure, LeavesThePathAsItWasAndSaysSo) {
  using T = TypeParam;
  long injected = 0;
  for (const Operation<T>& operation : Operations<T>()) {
    SCOPED_TRACE(operation.name);
    const PolycurveT<T> before = Drawing<T>();
    const PolycurveT<T> kept(before.GetPoints(), before.GetNodeTypes(), before.GetPointCount());
    constexpr long kMostAllocations = 2000;  // far more than any of these needs
    long nth = 0;
    for (; nth < kMostAllocations; ++nth) {
      PolycurveT<T> path(before);  // shared: the first write has to copy
      bool succeeded = false, threw = false;
      FailingNew::FailFrom(nth);
      try {
        succeeded = operation.run(path);
      } catch (...) {
        threw = true;
      }
      FailingNew::Never();
      ASSERT_FALSE(threw) << "allocation " << nth;
      ASSERT_TRUE(before == kept) << "a write went through shared storage at allocation " << nth;
      injected += FailingNew::Failures();
      if (FailingNew::Failures() == 0) break;
      if (!succeeded && operation.edits) {
        ASSERT_TRUE(path == before) << "allocation " << nth;
      }
    }
    EXPECT_LT(nth, kMostAllocations) << "never got through";
  }
  EXPECT_GT(injected, 50) << "the program's operator new must reach the library";
}

}  // namespace

#endif
