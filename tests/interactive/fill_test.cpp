#include <gtest/gtest.h>

#include <cmath>

#include "lumo/crv_hit.h"
#include "support/generators.h"
#include "support/oracles.h"

namespace {

using test::IntPath;

constexpr int kOnPath = -1;

/// 1 inside, 0 outside, kOnPath.
int Fill(const IntPath& path, tagPOINT p) {
  int inside = kOnPath;
  const int off = UTLIsPointInFill(LUMO_ARRAYS(path), p, &inside);
  EXPECT_EQ(off == 0, inside == kOnPath) << "inside is written exactly when the point is off the path";
  return inside;
}

TEST(Fill, OfEdgesOnTheRay) {
  const auto steps = test::ParsePath<tagPOINT>("M0,0 L30,0 L30,20 L20,20 L20,10 L10,10 L10,20 L0,20 Z");
  EXPECT_EQ(Fill(steps, {5, 10}), 1);
  EXPECT_EQ(Fill(steps, {15, 10}), kOnPath);
  EXPECT_EQ(Fill(steps, {-5, 10}), 0);
  EXPECT_EQ(Fill(steps, {-5, 20}), 0);
  EXPECT_EQ(Fill(steps, {15, 20}), 0) << "in the gap, between two horizontal edges on the ray";
  EXPECT_EQ(Fill(steps, {5, 20}), kOnPath);
  EXPECT_EQ(Fill(steps, {-5, 0}), 0);
}

TEST(Fill, IsEvenOddAndClosesOpenSubpaths) {
  const auto squares = test::ParsePath<tagPOINT>("M0,0 L30,0 L30,30 L0,30 M10,10 L20,10 L20,20 L10,20");
  EXPECT_EQ(Fill(squares, {15, 15}), 0);
  EXPECT_EQ(Fill(squares, {5, 15}), 1);
  EXPECT_EQ(Fill(squares, {0, 15}), kOnPath) << "the line that closes the subpath is part of it";
  EXPECT_EQ(Fill(test::ParsePath<tagPOINT>("M5,5 M1,1 L9,1"), {5, 5}), 0) << "a lone node fills nothing";
  int inside = 7;
  EXPECT_EQ(UTLIsPointInFill(nullptr, nullptr, 0, {0, 0}, &inside), 1);
  EXPECT_EQ(inside, 0);
  EXPECT_EQ(UTLIsPointInFill(squares.points.data(), squares.types.data(), 8, {5, 5}, nullptr), 1);
}

TEST(Fill, WithCurvesAgreesWithWindingOfDensePolylines) {
  test::Bits bits(81);
  // Second differences up to 640: chords within half a unit of the curve.
  const test::PathOptions options{.range = 160};
  int inside = 0, checked = 0;
  for (int round = 0; round < 400; ++round) {
    const IntPath path = test::RandomPath<tagPOINT>(bits, options);
    const auto lines = test::Flatten(path, 600);
    for (int k = 0; k < 25; ++k) {
      // Half of the points on the height of some node, where touches have to be told from crossings.
      tagPOINT p = test::RandomPoint<tagPOINT>(bits, options);
      if (k % 2 == 0) p.y = path.points[static_cast<std::size_t>(bits.Below(path.count()))].y;
      const TavMath::DPoint q = test::AsDouble(p);
      if (test::DistanceTo(lines, q, true) < 1.01) continue;
      const int expected = test::WindingNumber(lines, q) & 1;
      EXPECT_EQ(Fill(path, p), expected) << test::ToSvg(path) << " at " << p.x << "," << p.y;
      inside += expected;
      ++checked;
    }
  }
  EXPECT_GT(inside, 1000);
  EXPECT_GT(checked - inside, 1000);
}

/// The crossings of a ray towards +x, exactly.
bool ExactInside(const std::vector<tagPOINT>& ring, const tagPOINT& p) {
  __extension__ using Wide = __int128;
  bool inside = false;
  for (std::size_t k = 0; k < ring.size(); ++k) {
    const tagPOINT a = ring[k], b = ring[(k + 1) % ring.size()];
    if ((a.y > p.y) == (b.y > p.y)) continue;
    const Wide cross = (Wide{b.x} - a.x) * (Wide{p.y} - a.y) - (Wide{b.y} - a.y) * (Wide{p.x} - a.x);
    inside ^= (cross < 0) == (b.y < a.y);
  }
  return inside;
}

TEST(Fill, OfStraightOutlinesIsExactToOneUnitAnywhere) {
  test::Bits bits(82);
  int checked = 0;
  for (int round = 0; round < 400; ++round) {
    std::vector<tagPOINT> ring;
    for (int k = 3 + bits.Below(5); k > 0; --k)
      ring.push_back({static_cast<int>(static_cast<std::uint32_t>(bits())),
                      static_cast<int>(static_cast<std::uint32_t>(bits()))});
    IntPath path{ring, std::vector<NODETYPE>(ring.size(), NODETYPE(0x44))};
    path.types[0] = 0x04;
    for (int k = 0; k < 40; ++k) {
      // A few units beside a point of an edge.
      const auto edge = static_cast<std::size_t>(bits.Below(path.count()));
      const tagPOINT a = ring[edge], b = ring[(edge + 1) % ring.size()];
      const double t = bits.Unit();
      const double x = a.x + t * (static_cast<double>(b.x) - a.x) + bits.Between(-3, 3);
      const double y = a.y + t * (static_cast<double>(b.y) - a.y) + bits.Between(-3, 3);
      if (!(std::fabs(x) < 2147483647 && std::fabs(y) < 2147483647)) continue;
      const tagPOINT p{static_cast<int>(x), static_cast<int>(y)};
      if (test::DistanceTo(test::Flatten(path, 1), test::AsDouble(p), true) < 1) continue;
      ++checked;
      EXPECT_EQ(Fill(path, p), ExactInside(ring, p)) << test::ToSvg(path) << " at " << p.x << "," << p.y;
    }
  }
  EXPECT_GT(checked, 8000);
}

TEST(Fill, OfALongOutlineWithNodesOnBlockEdges) {
  // A comb of 500 teeth: the ray passes all of them.
  IntPath comb;
  comb.Add(0x04, {0, 0});
  for (int k = 0; k < 500; ++k) comb.Add(0x44, {10 * k + 5, 100}), comb.Add(0x44, {10 * k + 10, 0});
  comb.Add(0x44, {5000, -10});
  comb.Add(0x44, {0, -10});
  for (int k = 0; k < 500; k += 7) {
    EXPECT_EQ(Fill(comb, {10 * k + 5, 50}), 1);
    EXPECT_EQ(Fill(comb, {10 * k, 50}), 0);
    EXPECT_EQ(Fill(comb, {10 * k + 5, 100}), kOnPath);
  }
  EXPECT_EQ(Fill(comb, {-50, 0}), 0) << "501 vertices on the ray";
}

int Hole(const IntPath& path, int first, int offset = 0) {
  return UTLIsSubpathHole_Ex(LUMO_ARRAYS(path), first, offset);
}

TEST(SubpathHole, ByTheNumberOfEnclosingSubpaths) {
  const auto path = test::ParsePath<tagPOINT>(
      "M0,0 L30,0 L30,30 L0,30 Z M5,5 L25,5 L25,25 L5,25 Z M10,10 L20,10 L20,20 L10,20 Z M50,50 L60,60 "
      "L50,60 Z");
  EXPECT_EQ(Hole(path, 0), 0);
  EXPECT_EQ(Hole(path, 5), 1);
  EXPECT_EQ(Hole(path, 10), 0) << "inside two";
  EXPECT_EQ(Hole(path, 15), 0);
  EXPECT_EQ(UTLIsSubpathHole(LUMO_ARRAYS(path), 5), 1);
  for (const int bad : {-1, 19, 1000}) EXPECT_EQ(Hole(path, bad), 0);
  EXPECT_EQ(Hole(path, 5, 1000), 0);
  EXPECT_EQ(Hole(path, 5, 2147483647), 0);
}

TEST(SubpathHole, LooksAtClosedSubpathsWhoseBoxContainsItsBox) {
  EXPECT_EQ(Hole(test::ParsePath<tagPOINT>("M0,0 L30,0 L30,30 L0,30 M5,5 L9,5 L9,9 Z"), 4), 0)
      << "an open outline encloses nothing";
  const auto crossing = test::ParsePath<tagPOINT>("M0,0 L30,0 L30,30 L0,30 Z M5,5 L40,5 L9,9 Z");
  EXPECT_EQ(Hole(crossing, 5), 0) << "it sticks out";
  const auto touching = test::ParsePath<tagPOINT>("M0,0 L30,0 L30,30 L0,30 Z M0,5 L9,5 L9,9 Z");
  EXPECT_EQ(Hole(touching, 5), 0) << "the test point lies on the other outline";
  EXPECT_EQ(Hole(touching, 5, 1), 1) << "another node of it does not";
}

TEST(FacePoint, LiesStrictlyInside) {
  test::Bits bits(83);
  test::PathOptions options{.maxSubpaths = 2};
  int found = 0;
  for (int round = 0; round < 300; ++round) {
    options.range = round % 3 == 0 ? 20 : 160;
    const IntPath path = test::RandomPath<tagPOINT>(bits, options);
    tagPOINT p{12345, 12345};
    if (UTLGetFacePoint(LUMO_ARRAYS(path), &p) == 0) {
      EXPECT_EQ(p, (tagPOINT{12345, 12345}));
      for (int k = 0; k < 2000; ++k)  // a path with room inside must not come out empty-handed
        ASSERT_NE(Fill(path, test::RandomPoint<tagPOINT>(bits, options)), 1) << path;
      continue;
    }
    ++found;
    const auto lines = test::Flatten(path, 600);
    const TavMath::DPoint q = test::AsDouble(p);
    EXPECT_EQ(test::WindingNumber(lines, q) & 1, 1) << path;
    EXPECT_GT(test::DistanceTo(lines, q, true), 0) << path;
  }
  EXPECT_GT(found, 150);
}

TEST(FacePoint, OfShapesOfAFewUnits) {
  tagPOINT p{};
  const auto find = [&p](const char* text) {
    const auto path = test::ParsePath<tagPOINT>(text);
    return UTLGetFacePoint(LUMO_ARRAYS(path), &p);
  };
  EXPECT_EQ(find("M0,0 L2,0 L2,2 L0,2 Z"), 1);
  EXPECT_EQ(p, (tagPOINT{1, 1}));
  EXPECT_EQ(find("M0,0 L1,0 L1,1 L0,1 Z"), 0) << "no grid point inside";
  EXPECT_EQ(find("M0,1 L10,2 L20,1 L10,0 Z"), 1) << "corners on the one row there is";
  EXPECT_EQ(p, (tagPOINT{10, 1}));
  EXPECT_EQ(find("M0,1 L10,1 L10,2 L20,2 L20,0 L0,0 Z"), 1) << "and a side along it";
  EXPECT_EQ(p, (tagPOINT{15, 1}));
  EXPECT_EQ(find("M0,0 L40,0 L40,2 L22,2 L20,1 L18,2 L0,2 Z"), 1) << "and a notch down to it in the middle";
  EXPECT_TRUE(p.y == 1 && (p.x == 10 || p.x == 30)) << p.x;
  EXPECT_EQ(find("M0,0 L9,9"), 0);
  EXPECT_EQ(find("M0,0"), 0);
  EXPECT_EQ(find("M-2147483648,-2147483648 L2147483647,-2147483648 L2147483647,2147483647 Z"), 1);
  EXPECT_EQ(UTLGetFacePoint(nullptr, nullptr, 5, &p), 0);
}

}  // namespace
