// What several threads may do with data that none of them writes: one path object, one pair of arrays, one
// tree, one list and one table are asked by many threads at once, and each gets the answers that one thread
// gets. Run under the thread sanitizer, which sees caches filled behind a const.

#include <gtest/gtest.h>

#include <functional>
#include <latch>
#include <thread>
#include <vector>

#include "lumo/lumo.h"
#include "support/generators.h"

namespace {

using Lumo::PolycurveT;
using TavMath::DPoint;
using Answers = std::vector<double>;

/// Asks on this thread, then on several that start at once; every answer must be the same to the last bit.
void AskOnManyThreads(const std::function<Answers()>& ask) {
  constexpr std::size_t kThreads = 4;
  const Answers expected = ask();
  EXPECT_FALSE(expected.empty());
  std::vector<Answers> answers(kThreads);
  std::latch start(kThreads);
  std::vector<std::thread> threads;
  for (Answers& answer : answers) {
    threads.emplace_back([&ask, &start, &answer] {
      start.arrive_and_wait();
      answer = ask();
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const Answers& answer : answers) EXPECT_EQ(answer, expected);
}

template <class T>
test::Path<T> Drawing() {
  test::Bits bits(7);
  test::PathOptions options;
  options.minSubpaths = 20;
  options.maxSubpaths = 20;
  return test::RandomPath<T>(bits, options);
}

template <class Point>
void AddPoint(Answers& answers, const Point& p) {
  answers.push_back(static_cast<double>(p.x));
  answers.push_back(static_cast<double>(p.y));
}
void AddBox(Answers& answers, const tagRECT& box) {
  for (const auto side : {box.left, box.top, box.right, box.bottom})
    answers.push_back(static_cast<double>(side));
}
void AddBox(Answers& answers, const TavMath::BoundsT<double>& box) {
  for (const double side : {box.minx, box.miny, box.maxx, box.maxy}) answers.push_back(side);
}
template <class T>
void AddPath(Answers& answers, const PolycurveT<T>& path) {
  for (std::size_t i = 0; i < path.GetPointCount(); ++i) {
    AddPoint(answers, path.GetPoint(i));
    answers.push_back(path.GetNodeType(i));
  }
}

template <class T>
class ConcurrentQueries : public testing::Test {};
using PointTypes = testing::Types<tagPOINT, DPoint>;
TYPED_TEST_SUITE(ConcurrentQueries, PointTypes);

TYPED_TEST(ConcurrentQueries, OfOnePathObject) {
  using T = TypeParam;
  const auto nodes = Drawing<T>();
  const PolycurveT<T> path(nodes.points.data(), nodes.types.data(), nodes.points.size());
  AskOnManyThreads([&] {
    Answers answers{path.GetArea(), path.GetLength()};
    answers.push_back(static_cast<double>(path.GetSubpathCount()));
    answers.push_back(static_cast<double>(path.GetSide(nodes.points[3])));
    answers.push_back(path.IsValidCurve());
    AddBox(answers, path.GetTightBBox());
    AddBox(answers, path.GetLooseBBox());
    typename PolycurveT<T>::Closest closest;
    for (const T& point : nodes.points) {
      path.FindClosestPoint(point, closest);
      AddPoint(answers, closest.point);
      answers.push_back(path.IsPointInShape(point, true));
      path.FindFarthestPoint(point, closest);
      AddPoint(answers, closest.point);
    }
    for (const T& point : path.GetEvenlySpacedPoints(50)) AddPoint(answers, point);
    AddPath(answers, path.GetPolyline(1));
    for (const auto& subpath : path.GetSubpaths()) answers.push_back(subpath.GetArea());
    const PolycurveT<T> copy = path;
    answers.push_back(copy.IsSameData(path));
    AddPath(answers, path.Simplify());
    return answers;
  });
}

TYPED_TEST(ConcurrentQueries, OfOnePairOfArraysByTheOffsetAndTheTree) {
  using T = TypeParam;
  const auto nodes = Drawing<T>();
  AskOnManyThreads([&] {
    // A join keeps scratch state during a call: each thread has settings of its own.
    const Lumo::Offset::OffsetSettings settings(new Lumo::Round, new Lumo::Round, 20, false);
    std::vector<T> points;
    std::vector<NODETYPE> types;
    Lumo::CreateOffsetCurve(nodes.points.data(), nodes.types.data(), nodes.count(), points, types, settings);
    Answers answers;
    for (const T& point : points) AddPoint(answers, point);
    const Lumo::SubpathHierarchy tree(nodes.points.data(), nodes.types.data(), nodes.count(), true);
    answers.push_back(static_cast<double>(tree.GetNumberOfChildren()));
    answers.push_back(tree.GetAreaWithChildren());
    return answers;
  });
}

TEST(ConcurrentArrayQueries, OfThePointerAndTheNavigation) {
  const auto nodes = Drawing<tagPOINT>();
  const tagPOINT* points = nodes.points.data();
  const NODETYPE* types = nodes.types.data();
  const int count = nodes.count();
  AskOnManyThreads([&] {
    Answers answers{double(CRV_NumSubpaths(types, count)), double(CRV_HowManyEnabled(types, count))};
    std::vector<double> lengths(nodes.points.size());
    UTLGenerateNodeLengthArray(points, types, count, lengths.data());
    answers.insert(answers.end(), lengths.begin(), lengths.end());
    for (int i = 0; i < count; ++i) {
      const tagPOINT at = points[i];
      const tagRECT rect{at.x - 40, at.y + 40, at.x + 40, at.y - 40};
      int inside = 0, node = 0;
      double t = 0;
      tagPOINT out{};
      answers.push_back(CRV_PathHit(&rect, &at, &t, points, types, count, 0));
      answers.push_back(t);
      answers.push_back(UTLIsPointInFill(points, types, count, at, &inside));
      answers.push_back(inside);
      answers.push_back(UTLGetClosestPointOnPath(points, types, count, at, &out, &node, &t));
      AddPoint(answers, out);
      answers.push_back(NNControl(types, i, count));
      answers.push_back(CRV_LastNodeOfThisSubpath(types, count, i));
    }
    return answers;
  });
}

TEST(ConcurrentArrayQueries, OfOneTreeWhoseAreasAreKnown) {
  const auto nodes = Drawing<DPoint>();
  const Lumo::SubpathHierarchy tree(nodes.points.data(), nodes.types.data(), nodes.count(), true);
  const std::function<void(const Lumo::SubpathTreeNode&, Answers&)> walk = [&](const auto& node,
                                                                               Answers& answers) {
    answers.push_back(node.GetArea());
    answers.push_back(node.GetAreaWithChildren());
    AddPoint(answers, node.GetSamplePoint());
    for (std::size_t k = 0; k < node.GetNumberOfChildren(); ++k) {
      answers.push_back(node.GetChild(k).IsInsideOf(node));
      walk(node.GetChild(k), answers);
    }
  };
  // The first question is asked by one thread (see GetArea); from then on nothing is written.
  AskOnManyThreads([&] {
    Answers answers;
    walk(tree, answers);
    return answers;
  });
}

TEST(ConcurrentArrayQueries, OfOneSegmentListByTheIntersector) {
  const auto nodes = Drawing<DPoint>();
  const Lumo::CSegmentList list(nodes.points.data(), nodes.types.data(), nodes.count());
  AskOnManyThreads([&] {
    Answers answers;
    for (const auto& perSegment : Lumo::CPolyCurveIntersector::Instance().Intersect(list, list)) {
      for (const auto& hit : perSegment) answers.push_back(hit.timeA), answers.push_back(hit.timeB);
    }
    return answers;
  });
}

TEST(ConcurrentArrayQueries, OfOnePairOfArraysByTablesOfTheirOwn) {
  const auto nodes = Drawing<DPoint>();
  AskOnManyThreads([&] {
    Lumo::SegmentIntersectionTable table;
    table.AddCurve(nodes.points.data(), nodes.types.data(), nodes.count());
    Answers answers{double(FindAllIntersections(table, Lumo::SegmentIntersectionSettings()))};
    for (const auto& segment : table.Segments()) answers.push_back(static_cast<double>(segment.size()));
    return answers;
  });
}

}  // namespace
