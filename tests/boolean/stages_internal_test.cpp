// Invariants of the stages between collecting and writing, over random and degenerate shapes.
#include <gtest/gtest.h>

#include <sstream>

#include "boolean/box_tree.h"
#include "boolean/outlines.h"
#include "boolean/shapes.h"
#include "boolean/tolerances.h"

namespace {

using namespace Lumo::Planar;
using test::Bits;

struct Stages {
  Collection collection;
  EdgeSet edges;
  PlanarMap map;
};

Stages RunStages(const test::DoublePath& path) {
  Stages s;
  s.collection = Collect({{path.points.data(), path.types.data(), path.count(), 0}});
  s.edges = MakeEdges(s.collection, kContact, false);
  OrderRoundVertices(s.edges, kContact);
  s.map = MakePlanarMap(s.collection, s.edges, kContact);
  return s;
}

TEST(BoxTree, FindsAllOverlappingPairsOnce) {
  Bits bits(1);
  for (const int n : {0, 1, 5, 40, 500}) {
    std::vector<Box> boxes;
    for (int i = 0; i < n; ++i) {
      const double x = bits.Unit(), y = bits.Unit(), w = 0.2 * bits.Unit() * bits.Unit(),
                   h = 0.2 * bits.Unit();
      boxes.push_back({x, y, x + w, y + h});
    }
    std::vector<std::pair<int, int>> found, expected;
    const BoxTree tree(boxes);
    tree.ForEachPair([&](int i, int j) { found.emplace_back((std::min)(i, j), (std::max)(i, j)); });
    for (int i = 0; i < n; ++i) {
      for (int j = i + 1; j < n; ++j) {
        if (boxes[static_cast<std::size_t>(i)].Overlaps(boxes[static_cast<std::size_t>(j)]))
          expected.emplace_back(i, j);
      }
    }
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, expected);
    int below = 0, above = 0;
    tree.ForEachBelow(0.5, 0.5, [&](int) { ++below; });
    for (const Box& b : boxes) above += b.minx <= 0.5 && b.maxx >= 0.5 && b.miny <= 0.5;
    EXPECT_EQ(below, above);
  }
}

TEST(Collect, SplitsIntoMonotoneArcsThatChain) {
  Bits bits(2);
  for (int k = 0; k < 200; ++k) {
    const auto path = test::RandomLoop(bits, 5, 1000, k % 2 ? 250 : 0);
    const Collection c = Collect({{path.points.data(), path.types.data(), path.count(), 0}});
    for (std::size_t i = 0; i < c.arcs.size(); ++i) {
      const Arc& arc = c.arcs[i];
      const Box box = EndBox(arc.curve.p[0], arc.curve.p[3]);
      for (int s = 1; s < 20; ++s) {
        const DPoint p = Evaluate(arc.curve, s / 20.0);
        EXPECT_TRUE(p.x >= box.minx - 1e-10 && p.x <= box.maxx + 1e-10);
        EXPECT_TRUE(p.y >= box.miny - 1e-10 && p.y <= box.maxy + 1e-10);
      }
      EXPECT_EQ(arc.v1, c.arcs[(i + 1) % c.arcs.size()].v0);
    }
  }
}

TEST(Stages, KeepTheirInvariants) {
  int plane = 0;
  for (int k = 0; k < 300; ++k) {
    Bits bits(static_cast<std::uint64_t>(k) + 1);
    const double grids[] = {0, 50, 100, 250};
    const auto path = test::RandomLoop(bits, 7, 1000, grids[k % 4]);
    const Stages s = RunStages(path);
    // Steps round a vertex cancel; no edge is a point; none is without effect.
    std::vector<int> balance(s.edges.vertices.size(), 0);
    for (const Edge& e : s.edges.edges) {
      EXPECT_NE(e.v0, e.v1);
      EXPECT_NE(e.step.a, 0);
      EXPECT_EQ(e.curve.p[0], s.edges.vertices[static_cast<std::size_t>(e.v0)].p);
      EXPECT_EQ(e.curve.p[3], s.edges.vertices[static_cast<std::size_t>(e.v1)].p);
      balance[static_cast<std::size_t>(e.v0)] -= e.step.a;
      balance[static_cast<std::size_t>(e.v1)] += e.step.a;
    }
    EXPECT_EQ(balance, std::vector<int>(balance.size(), 0));
    plane += s.map.plane;
    if (!s.map.plane) continue;
    for (std::size_t e = 0; e < s.edges.edges.size(); ++e) {
      const auto left = s.map.winding[static_cast<std::size_t>(s.map.face[2 * e])],
                 right = s.map.winding[static_cast<std::size_t>(s.map.face[2 * e + 1])];
      EXPECT_EQ(left.a - right.a, s.edges.edges[e].step.a);
    }
    // Outlines close, and pass a vertex once.
    const Outlines outlines = TraceOutlines(s.edges, s.map, {});
    EXPECT_TRUE(outlines.complete);
    for (std::size_t i = 0; i + 1 < outlines.first.size(); ++i) {
      std::vector<int> passed;
      const int begin = outlines.first[i], end = outlines.first[i + 1];
      for (int h = begin; h < end; ++h) {
        const int half = outlines.halves[static_cast<std::size_t>(h)];
        const int next = outlines.halves[static_cast<std::size_t>(h + 1 < end ? h + 1 : begin)];
        EXPECT_EQ(s.edges.To(half), s.edges.From(next));
        passed.push_back(s.edges.From(half));
      }
      std::sort(passed.begin(), passed.end());
      EXPECT_EQ(std::adjacent_find(passed.begin(), passed.end()), passed.end());
    }
  }
  EXPECT_GE(plane, 295);  // the rest is for further attempts
}

TEST(PlanarMap, KnowsWhichLoopsLieInsideOthers) {
  // Three rings inside one another, the middle one turned the other way, and one beside them.
  const auto path = test::ParsePath<DPoint>(
      "M0 0 L90 0 L90 90 L0 90 Z M10 10 L10 80 L80 80 L80 10 Z M20 20 L70 20 L70 70 L20 70 Z M100 0 L110 0 "
      "L110 10 Z");
  const Stages s = RunStages(path);
  ASSERT_TRUE(s.map.plane);
  EXPECT_TRUE(s.edges.edges.empty());
  std::vector<std::pair<int, int>> sides;
  for (const Loop& loop : s.map.loops) sides.emplace_back(loop.left.a, loop.right.a);
  EXPECT_EQ(sides, (std::vector<std::pair<int, int>>{{1, 0}, {1, 0}, {1, 0}, {1, 0}}));
}

TEST(PlanarMap, PlacesLoopsAndPartsInsideEachOther) {
  // A ring round a bow tie whose left wing holds a triangle and whose right wing, wound the other way, holds
  // another; n copies side by side are placed by the few and by the many.
  for (const int n : {1, 30}) {
    std::ostringstream text;
    for (int k = 0; k < n; ++k) {
      const auto add = [&](std::initializer_list<std::pair<int, int>> corners) {
        char letter = 'M';
        for (const auto& [x, y] : corners) {
          text << letter << x + 200 * k << ' ' << y;
          letter = 'L';
        }
        text << 'Z';
      };
      add({{0, 0}, {100, 0}, {100, 60}, {0, 60}});
      add({{10, 10}, {90, 50}, {90, 10}, {10, 50}});
      add({{14, 28}, {20, 28}, {20, 32}});
      add({{80, 28}, {86, 28}, {86, 32}});
    }
    const Stages s = RunStages(test::ParsePath<DPoint>(text.str()));
    ASSERT_TRUE(s.map.plane);
    ASSERT_EQ(s.map.loops.size(), static_cast<std::size_t>(3 * n));
    for (int k = 0; k < n; ++k) {
      const auto loop = [&](int i) { return s.map.loops[static_cast<std::size_t>(3 * k + i)]; };
      EXPECT_EQ(loop(0).left.a, 1);
      EXPECT_EQ(loop(0).right.a, 0);
      // One wing adds one to the ring's winding, the other takes one away.
      EXPECT_EQ(loop(1).right.a + loop(2).right.a, 2);
      EXPECT_EQ(std::abs(loop(1).right.a - loop(2).right.a), 2);
      EXPECT_EQ(loop(1).left.a, loop(1).right.a + 1);
    }
    std::vector<int> faces;
    for (const Winding& w : s.map.winding) faces.push_back(w.a);
    std::sort(faces.begin(), faces.end());
    EXPECT_EQ(faces.front(), 0);
    EXPECT_EQ(faces.back(), 2);
  }
}

}  // namespace
