// Memory runs out in the functions over the host's own arrays and records: they give the stated result and
// leave everything as it was.

#if !defined(_WIN32)  // a program there cannot replace the library's allocators

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "lumo/lumo.h"
#include "support/failing_new.h"
#include "support/generators.h"
#include "support/point_types.h"

namespace {

using TavMath::DPoint;
using test::FailingMalloc;
using test::FailingNew;
using test::Path;

LUMO_TYPED_SUITE(ArrayAllocation);

template <class T>
Path<T> Drawing() {
  return test::ParsePath<T>(
      "M0,0 L9000,0 e L9000,1 e L9000,1 C12000,3000 12000,6000 9000,9000 e L0,9000 Z "
      "M2000,2000 L2000,7000 e L7000,7000 L7000,2000 Z M100,100 e L900,100 e L100,100 Z "
      "M20000,0 e C25000,9000 30000,-9000 35000,0 e L40000,5000 e L41000,5001");
}

/// An edit in the path's arrays; the result is what the interface says when memory runs out.
template <class T>
struct Edit {
  const char* name;
  int failure;
  std::function<int(Path<T>&)> run;
};

/// An edit of the points `p` and the types `t`, which are `n`, of `path`.
#define LUMO_EDIT(name, failure, ...)                                  \
  edits.push_back({#name, failure, [=](Path<T>& path) {                \
                     [[maybe_unused]] T* p = path.points.data();       \
                     [[maybe_unused]] NODETYPE* t = path.types.data(); \
                     [[maybe_unused]] const int n = path.count();      \
                     return static_cast<int>(__VA_ARGS__);             \
                   }})

template <class T>
std::vector<Edit<T>> Edits() {
  const int count = Drawing<T>().count();
  static std::vector<DPoint> second(static_cast<std::size_t>(count));
  std::vector<Edit<T>> edits;
  LUMO_EDIT(CRV_ReduceEnabled, count, CRV_ReduceEnabled(p, t, n, 500));
  LUMO_EDIT(CRV_ReduceEnabledDouble, count, CRV_ReduceEnabledDouble(p, t, n, 500, second.data()));
  LUMO_EDIT(CRV_TransferThisThinSubpathToRegular, count,
            CRV_TransferThisThinSubpathToRegular(p, t, n, 14, 50));
  LUMO_EDIT(CRV_TransferAllThinSubpathsToRegular, count, CRV_TransferAllThinSubpathsToRegular(p, t, n, 50));
  LUMO_EDIT(RemoveZeroLengthSegments, count, Lumo::RemoveZeroLengthSegments(p, t, path.points.size()));
  LUMO_EDIT(RemoveShortSegments, count, Lumo::RemoveShortSegments(p, t, n, 5, 5));
  // The vectors are the host's; an exact copy of them is what the call is given.
  LUMO_EDIT(RepairCurves, 0, Lumo::RepairCurves(path.points, path.types, {}));
  return edits;
}

LUMO_TYPED_TEST(ArrayAllocation, OfAnEditLeavesTheArraysAndGivesTheStatedResult) {
  const Path<T> before = Drawing<T>();
  for (const Edit<T>& edit : Edits<T>()) {
    SCOPED_TRACE(edit.name);
    long nth = 0, refused = 0;
    for (; nth < 5000; ++nth) {
      Path<T> path = before;
      FailingNew::FailFrom(nth);
      const int result = edit.run(path);
      FailingNew::Never();
      if (FailingNew::Failures() == 0) {
        EXPECT_FALSE(path == before) << "the edit has nothing to do: it proves nothing";
        break;
      }
      ++refused;
      ASSERT_EQ(result, edit.failure) << "allocation " << nth;
      ASSERT_TRUE(path == before) << "allocation " << nth;
    }
    EXPECT_GT(refused, 0);
    EXPECT_LT(nth, 5000);
  }
}

/// The offset of whole paths, called as hosts do: what was in the output stays, and nothing is half there.
LUMO_TYPED_TEST(ArrayAllocation, OfAnOffsetLeavesTheOutputAsItWas) {
  using Lumo::Offset::EOpenCurveOffsetSide;
  const Path<T> path = Drawing<T>();
  long refused = 0;
  const auto sweep = [&](const std::string& name, const std::function<void(Path<T>&)>& run) {
    SCOPED_TRACE(name);
    Path<T> whole;
    run(whole);
    EXPECT_FALSE(whole.empty());
    // A few in a row at the start, then spread over the rest of the work.
    for (long nth = 0; nth < 100000; nth += 1 + nth / 24) {
      Path<T> out;
      FailingNew::FailFrom(nth);
      try {
        run(out);
      } catch (const std::bad_alloc&) {  // from the arguments
      }
      FailingNew::Never();
      if (FailingNew::Failures() == 0) break;
      ++refused;
      ASSERT_TRUE(out.empty() || out == whole) << "half an outline, allocation " << nth;
    }
  };
  const auto closed = [&](double distance) {
    const auto settings = std::make_shared<Lumo::Offset::OffsetSettings>(new Lumo::Round, new Lumo::Round,
                                                                         distance, distance < 0);
    return [&path, settings](Path<T>& out) {
      Lumo::CreateOffsetCurve(LUMO_ARRAYS(path), out.points, out.types, *settings);
    };
  };
  sweep("grown", closed(300));
  sweep("shrunk", closed(-300));
  if constexpr (std::is_same_v<T, DPoint>) {
    const Path<T> open = test::ParsePath<T>("M0,0 L9000,0 C12000,3000 12000,6000 9000,9000 L-500,9000");
    const Lumo::Offset::OffsetSettings settings(new Lumo::Round, new Lumo::Round, 300, false);
    sweep("closed", [&](Path<T>& out) {
      Lumo::CloseOffsetCurves(LUMO_ARRAYS(open), out.points, out.types, EOpenCurveOffsetSide::both, settings);
    });
    sweep("combined", [&](Path<T>& out) {
      Lumo::CombineClosedOffsetCurves(LUMO_ARRAYS(path), out.points, out.types, 0, 9);
    });
  }
  EXPECT_GT(refused, 100);
}

/// A search that runs out of memory says so; the records it has made by then are whole pairs, which the table
/// frees.
TEST(TableAllocation, OfASearchLeavesNoHalfOfAPair) {
  const Path<DPoint> path = test::ParsePath<DPoint>(
      "M0,0 L9000,9000 M0,9000 L9000,0 M0,4000 C3000,9000 6000,-1000 9000,4000 M0,3000 L9000,3000 "
      "M3000,3000 L20000,3000");
  const auto search = [](Lumo::SegmentIntersectionTable& table, bool quick) {
    if (quick) return Lumo::FindAllIntersections(table, {});
    bool all = true;
    for (std::size_t k = 0; k < table.Segments().size(); ++k)
      all = Lumo::FindSegmentIntersections(static_cast<int>(k), table, {}) && all;
    return all;
  };
  for (const bool quick : {false, true}) {
    std::size_t records = 0;
    long refused = 0;
    for (long nth = 0; nth < 1000; ++nth) {
      Lumo::SegmentIntersectionTable table;
      ASSERT_GE(table.AddCurve(LUMO_ARRAYS(path)), 0);
      FailingNew::FailFrom(nth);
      const bool found = search(table, quick);
      FailingNew::Never();
      ASSERT_EQ(found, FailingNew::Failures() == 0) << "allocation " << nth;
      records = 0;
      for (const Lumo::SegmentIntersections& segment : table.Segments()) {
        for (const Lumo::Intersection* record : segment.Intersections()) {
          ++records;
          ASSERT_NE(record->GetPartner(), nullptr) << "allocation " << nth;
          ASSERT_EQ(record->GetPartner()->GetPartner(), record);
          const auto other = static_cast<std::size_t>(record->GetPartner()->SegmentID());
          ASSERT_GE(table.Segments()[other].GetIndex(record->GetPartner()), 0);
        }
      }
      if (found) break;
      ++refused;
    }
    EXPECT_GT(records, 12u);
    EXPECT_GT(refused, 12);
  }
}

TEST(ListAllocation, OfQueriesAndOfAListGivesTheStatedResult) {
  const Path<tagPOINT> path = Drawing<tagPOINT>();
  const tagRECT all{-50000, 50000, 50000, -50000};
  FailingNew::FailFrom(0);
  const bool none = CRV_NodeHitAll(&all, LUMO_ARRAYS(path)).empty();
  FailingNew::Never();
  EXPECT_TRUE(none);
  EXPECT_FALSE(CRV_NodeHitAll(&all, LUMO_ARRAYS(path)).empty());

  const Path<DPoint> damaged = Drawing<DPoint>();
  const Lumo::CSegmentList before(LUMO_ARRAYS(damaged));
  Lumo::CSegmentList list = before;
  long refused = 0;
  for (long nth = 0; nth < 1000; ++nth) {
    Lumo::CurveRepairReport report;
    FailingNew::FailFrom(nth);
    const bool repaired = Lumo::RepairCurves(list, {}, &report);
    FailingNew::Never();
    ASSERT_EQ(repaired, FailingNew::Failures() == 0);
    if (repaired) break;
    ++refused;
    ASSERT_EQ(list.size(), before.size()) << "allocation " << nth;
    EXPECT_FALSE(report.Any());
  }
  EXPECT_GT(refused, 0);
  EXPECT_LT(list.size(), before.size()) << "the repair has nothing to do: it proves nothing";
}

#if defined(LUMO_TEST_FAILS_MALLOC)

/// Bytes that the program holds, to notice what a failing call leaves behind.
std::size_t BytesInUse() { return mallinfo2().uordblks; }

/// Calls run with the first, second ... allocation failing until it gets through; says how often it failed.
/// failed(result) tells whether the stated failure came back.
template <class Run>
long SweepMalloc(const Run& run) {
  long refused = 0;
  for (long nth = 0; nth < 1000; ++nth) {
    std::size_t bytes = 0;
    for (int again = 0; again < 16; ++again) {  // the first calls fill the allocator's own stores
      const std::size_t before = BytesInUse();
      run(nth);
      bytes = BytesInUse() - before;
    }
    if (FailingMalloc::Failures() == 0) return refused;
    ++refused;
    EXPECT_EQ(bytes, 0u) << "allocation " << nth << " leaves memory behind";
  }
  ADD_FAILURE() << "never got through";
  return refused;
}

TEST(RecordAllocation, OfStrokesAndOpenEndsFailsAsStated) {
  const tagPOINT points[] = {{0, 0}, {100, 0}, {100, 100}, {0, 100}};
  const int spacing = 7;
  const auto armed = [](long nth, const auto& call) {
    FailingMalloc::FailFrom(nth);
    const auto result = call();
    FailingMalloc::Never();
    return result;
  };
  const auto constructed = [&](const auto& call) {
    return SweepMalloc([&](long nth) {
      CRV_FREEHANDINFO* const record = armed(nth, call);
      EXPECT_EQ(record == nullptr, FailingMalloc::Failures() > 0);
      CRV_FreehandInfoDestruct(record);
    });
  };
  EXPECT_EQ(constructed([] { return CRV_FreehandInfoConstruct(10, 4); }), 4);
  for (const auto from : {CRV_FreehandInfoConstructFromPolylineExt, CRV_FreehandInfoConstructFromPolygonExt})
    EXPECT_GE(constructed([&] { return from(points, 4, &spacing, 1, 0); }), 4);

  const long grown = SweepMalloc([&](long nth) {
    CRV_FREEHANDINFO* const record = CRV_FreehandInfoConstruct(1, 1);
    EXPECT_EQ(CRV_FreehandInfoAppendPoint(record, points[0]), 1);
    const int appended = armed(nth, [&] { return CRV_FreehandInfoAppendPoint(record, points[1]); });
    EXPECT_EQ(appended, FailingMalloc::Failures() == 0);
    tagPOINT last{};
    EXPECT_EQ(CRV_FreehandInfoGetLastPoint(record, &last), 1);
    EXPECT_EQ(last, points[FailingMalloc::Failures() == 0 ? 1 : 0])
        << "a point that was refused is not there";
    CRV_FreehandInfoDestruct(record);
  });
  EXPECT_EQ(grown, 3);

  const auto path = test::ParsePath<tagPOINT>("M0,0 L10,0 M20,0 L30,0");
  const long ends = SweepMalloc([&](long nth) {
    CRV_CONNECTINFO* const record = armed(nth, [&] { return CRV_ConnectInfoConstruct(LUMO_ARRAYS(path)); });
    EXPECT_EQ(record == nullptr, FailingMalloc::Failures() > 0);
    CRV_ConnectInfoDestruct(record);
  });
  EXPECT_EQ(ends, 3);

  const auto drawing = Drawing<tagPOINT>();
  const long runs = SweepMalloc([&](long nth) {
    auto p = drawing;
    WDeleteRunInfo* records = nullptr;
    int count = -7;
    const int result = armed(nth, [&] { return CRV_DeleteEnabledEx(LUMO_ARRAYS(p), &records, &count); });
    if (FailingMalloc::Failures() > 0) {
      EXPECT_EQ(result, -1);
      EXPECT_TRUE(p == drawing) << "a deletion that failed";
    } else {
      EXPECT_LT(result, drawing.count());
    }
    std::free(records);
  });
  EXPECT_EQ(runs, 1);
}

#endif

}  // namespace

#endif
