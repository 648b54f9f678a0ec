// Memory runs out at the first, second, third ... allocation of every operation that allocates: the stated
// failure result comes back, no exception leaves a path's member, and the caller's path is as it was. The
// leak check of the address sanitizer watches what is left behind.

#if !defined(_WIN32)  // a program there cannot replace the library's operator new

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "lumo/lumo.h"
#include "polycurve/mutators.h"
#include "support/failing_new.h"
#include "support/point_types.h"

namespace {

using Lumo::PolycurveT;
using TavMath::DPoint;
using test::FailingNew;

template <class T>
PolycurveT<T> Drawing() {
  return test::ParseCurve<T>(
      "M0,0 L9000,0 e C12000,3000 12000,6000 9000,9000 e L0,9000 Z "
      "M2000,2000 L2000,7000 e L7000,7000 L7000,2000 Z "
      "M20000,0 e C25000,9000 30000,-9000 35000,0 L40000,5000 e "
      "M3000,3000 L8000,6000 M15000,15000 L18000,15000");
}

/// One operation; returns whether it says that it succeeded (or gives a result that is not empty).
template <class T>
struct Operation {
  std::string name;
  std::function<bool(PolycurveT<T>&)> run;
  bool edits = true;
};

/// Every member that writes, with its arguments drawn from one seed.
template <class T>
void AddMutators(std::vector<Operation<T>>& list, std::uint64_t seed) {
  for (const auto& mutator : test::MutatorList<T>::All()) {
    list.push_back({mutator.name, [run = mutator.run, seed](PolycurveT<T>& p) {
                      test::Bits bits(seed);
                      return run(p, bits);
                    }});
  }
}

template <class T>
std::vector<Operation<T>> Operations() {
  using P = PolycurveT<T>;
  static const P other = Drawing<T>();
  static const T corner = other.GetPoint(2);
  std::vector<Operation<T>> list;
  AddMutators(list, 1);
  AddMutators(list, 6);
  list.insert(
      list.end(),
      {{"PushBack itself", [](P& p) { return p.PushBack(p); }},
       {"ReplacePoints", [](P& p) { return p.ReplacePoints(1, 2, other, 0, 9); }},
       {"BreakAtIntersections itself", [](P& p) { return p.BreakAtIntersections(p); }},
       {"OffsetCurve",
        [](P& p) {
          auto bevel = std::make_unique<Lumo::Bevel>();
          auto join = std::make_unique<Lumo::MiteredCorner>(1500, bevel.get());
          bevel.release();  // the join owns it now
          auto cap = std::make_unique<Lumo::Round>();
          return p.OffsetCurve({join.release(), cap.release(), 1500, false});
        }},
       {"CreateParallelCurve", [](P& p) { return !p.CreateParallelCurve(1500).IsEmpty(); }, false},
       {"CreateParallelCurves", [](P& p) { return !p.CreateParallelCurves(1500, 2).IsEmpty(); }, false},
       {"Simplify", [](P& p) { return !p.Simplify().IsEmpty(); }, false},
       {"Union", [](P& p) { return !p.Union(other).IsEmpty(); }, false},
       {"Union of many", [](P& p) { return !Lumo::Union(std::vector<P>{p, other}).IsEmpty(); }, false},
       {"Subtract of many", [](P& p) { return !Lumo::Subtract(std::vector<P>{p, other, p}).IsEmpty(); },
        false},
       {"ClipToShape", [](P& p) { return !p.ClipToShape(other, true).IsEmpty(); }, false},
       {"SubpathHierarchy",
        [](P& p) {
          Lumo::SubpathHierarchy tree(std::vector<P>{p});
          tree.EliminateCutOffs(true);
          P back;
          tree.AppendToPolycurve(back);
          return tree.GetNumberOfChildren() > 0;
        },
        false},
       {"intersection table",
        [](P& path) {
          Lumo::SegmentIntersectionTable table;
          const PolycurveT<DPoint> p(path);
          const int count = static_cast<int>(p.GetPointCount());
          return table.AddCurve(p.GetPoints(), p.GetNodeTypes(), count, true, true) >= 0 &&
                 Lumo::FindAllIntersections(table, {});
        },
        false},
       {"segment lists",
        [](P& p) {
          const int count = static_cast<int>(p.GetPointCount());
          const Lumo::CSegmentList a(p.GetPoints(), p.GetNodeTypes(), count);
          return !Lumo::CPolyCurveIntersector::Instance().Intersect(a, a).empty();
        },
        false},
       {"caller arrays",
        [](P& p) {
          const auto room = p.GetBuffer(4 * p.GetPointCount());
          if (room.count == 0) return false;
          CRV_ReduceEnabled(room.points, room.types, static_cast<int>(room.count), 5.0);
          CRV_TransferAllThinSubpathsToRegular(room.points, room.types, static_cast<int>(room.count), 4);
          CRV_DeleteEnabled(room.points, room.types, static_cast<int>(room.count));
          return true;
        },
        false},
       {"GetSubpath", [](P& p) { return !p.GetSubpath(1).IsEmpty(); }, false},
       {"GetSubpaths", [](P& p) { return !p.GetSubpaths().empty(); }, false},
       {"GetSubpathIndices", [](P& p) { return !p.GetSubpathIndices().empty(); }, false},
       {"GetLetterCurves", [](P& p) { return !p.GetLetterCurves().empty(); }, false},
       {"GetPolyline", [](P& p) { return !p.GetPolyline(10).IsEmpty(); }, false},
       {"GetEvenlySpacedPoints", [](P& p) { return !p.GetEvenlySpacedPoints(5).empty(); }, false},
       {"FindClosestPoints", [](P& p) { return !p.FindClosestPoints(corner).empty(); }, false}});
  return list;
}

LUMO_TYPED_SUITE(AllocationFailure);

LUMO_TYPED_TEST(AllocationFailure, LeavesThePathAsItWasAndSaysSo) {
  long injected = 0;
  for (const Operation<T>& operation : Operations<T>()) {
    SCOPED_TRACE(operation.name);
    const PolycurveT<T> before = Drawing<T>();
    const PolycurveT<T> kept(before.GetPoints(), before.GetNodeTypes(), before.GetPointCount());
    constexpr long kMostAllocations = 50000;  // far more than any of these needs
    constexpr long kEach = 200;               // beyond so many, every sixteenth part is enough
    long nth = 0;
    for (; nth < kMostAllocations; nth += 1 + std::max(0L, nth - kEach) / 16) {
      PolycurveT<T> path(before);  // shared: the first write has to copy
      bool succeeded = false;
      FailingNew::FailFrom(nth);
      try {
        succeeded = operation.run(path);
      } catch (const std::bad_alloc&) {  // from the arguments, or from the trees and tables that throw
      }
      FailingNew::Never();
      ASSERT_TRUE(before == kept) << "a write went through shared storage at allocation " << nth;
      injected += FailingNew::Failures();
      if (FailingNew::Failures() == 0) break;
      if (!succeeded && operation.edits) {
        ASSERT_TRUE(path == before) << "allocation " << nth;
      }
    }
    EXPECT_LT(nth, kMostAllocations) << "never got through";
  }
  EXPECT_GT(injected, 1000) << "the program's operator new must reach the library";
}

}  // namespace

#endif
