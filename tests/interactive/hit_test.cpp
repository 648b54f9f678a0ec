#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "lumo/crv_hit.h"
#include "support/generators.h"
#include "support/guarded_array.h"
#include "support/oracles.h"

namespace {

using test::IntPath;

// Rectangles are y-up: {left, top, right, bottom} with top the greater y.
tagRECT RandomRect(test::Bits& bits, int range, int size) {
  const int x = bits.Between(-range, range), y = bits.Between(-range, range);
  return {x, y + bits.Below(size), x + bits.Below(size), y};
}

/// Whether a polyline piece touches a rectangle, by clipping its parameter range (Liang, Barsky, 1984).
bool PieceTouches(const TavMath::DPoint& a, const TavMath::DPoint& b, const tagRECT& r, double margin) {
  double t0 = 0, t1 = 1;
  const double dx = b.x - a.x, dy = b.y - a.y;
  const double p[] = {-dx, dx, -dy, dy};
  const double q[] = {a.x - (r.left - margin), r.right + margin - a.x, a.y - (r.bottom - margin),
                      r.top + margin - a.y};
  for (int k = 0; k < 4; ++k) {
    if (p[k] == 0) {
      if (q[k] < 0) return false;
    } else if (p[k] < 0) {
      t0 = std::max(t0, q[k] / p[k]);
    } else {
      t1 = std::min(t1, q[k] / p[k]);
    }
  }
  return t0 <= t1;
}

/// The end nodes of segments that touch the rectangle grown by a margin.
std::vector<int> Touching(const IntPath& path, const tagRECT& rect, double margin) {
  std::vector<int> out;
  for (int k = 1; k < path.count(); ++k) {
    const NODETYPE type = path.type(k);
    if (!type.IsLine() && !type.IsCurve()) continue;
    const int pieces = type.IsLine() ? 1 : 400;
    for (int j = 0; j < pieces; ++j) {
      const auto from = test::SegmentAt(path, k, 1.0 * j / pieces),
                 to = test::SegmentAt(path, k, (j + 1.0) / pieces);
      if (!PieceTouches(from, to, rect, margin)) continue;
      out.push_back(k);
      break;
    }
  }
  return out;
}

int PathHit(const IntPath& path, const tagRECT& rect) {
  return CRV_PathHit(&rect, nullptr, nullptr, LUMO_ARRAYS(path), 0);
}

TEST(PathHit, FindsTheFirstSegmentThatABruteForceSearchFinds) {
  test::Bits bits(71);
  test::PathOptions options{.range = 100};
  int hits = 0;
  for (int round = 0; round < 600; ++round) {
    options.curves = round % 2 == 0;
    const IntPath path = test::RandomPath<tagPOINT>(bits, options);
    const tagRECT rect = RandomRect(bits, 120, 40);
    const int hit = PathHit(path, rect);
    hits += hit >= 0;
    const int onPath = UTLIsRectOnPath(LUMO_ARRAYS(path), &rect);
    if (!options.curves) {
      const auto exact = Touching(path, rect, 1e-9);
      EXPECT_EQ(hit, exact.empty() ? -1 : exact.front()) << path;
      EXPECT_EQ(onPath, !exact.empty());
      continue;
    }
    // Flattening for a pick strays by up to 2 units, for the truth by up to half a unit.
    const auto surely = Touching(path, rect, -2.01), possibly = Touching(path, rect, 2.01);
    if (hit >= 0) {
      EXPECT_TRUE(std::binary_search(possibly.begin(), possibly.end(), hit)) << path;
    } else if (rect.right - rect.left > 5 && rect.top - rect.bottom > 5) {
      EXPECT_TRUE(surely.empty()) << path;
    }
    if (onPath != 0) {
      EXPECT_FALSE(Touching(path, rect, 0.51).empty()) << path;
    } else if (rect.right - rect.left > 2 && rect.top - rect.bottom > 2) {
      EXPECT_TRUE(Touching(path, rect, -0.51).empty()) << path;
    }
  }
  EXPECT_GT(hits, 60);
  EXPECT_LT(hits, 550);
}

TEST(PathHit, GivesTheParameterOfTheCursor) {
  const auto path = test::ParsePath<tagPOINT>("M0,0 L10,0 L10,10 M20,0 C20,10 30,10 30,0");
  const auto hit = [&](tagRECT rect, tagPOINT cursor, int clamp, double& t) {
    return CRV_PathHit(&rect, &cursor, &t, LUMO_ARRAYS(path), clamp);
  };
  double t = -7;
  EXPECT_EQ(hit({2, 1, 4, -1}, {3, 1}, 1, t), 1);
  EXPECT_DOUBLE_EQ(t, 0.3);
  EXPECT_EQ(hit({9, 1, 11, -1}, {12, 1}, 0, t), 1) << "without clamp the foot may lie beyond the end";
  EXPECT_DOUBLE_EQ(t, 1.2);
  EXPECT_EQ(hit({9, 1, 11, -1}, {12, 1}, 1, t), 2) << "with clamp the search goes on";
  EXPECT_DOUBLE_EQ(t, 0.1);
  EXPECT_EQ(hit({-1, 1, 1, -1}, {-5, -5}, 1, t), -1);
  EXPECT_DOUBLE_EQ(t, -0.5) << "a segment that is passed over has left its parameter behind";
  EXPECT_EQ(hit({24, 8, 26, 7}, {25, 100}, 1, t), 6);
  EXPECT_NEAR(t, 0.5, 1e-9);
  EXPECT_EQ(hit({19, 1, 21, -1}, {0, -50}, 1, t), 6) << "the clamp does not apply to curves";
  EXPECT_EQ(t, 0);
}

TEST(PathHit, OfALineWithoutLength) {
  const IntPath path{{{5, 5}, {5, 5}}, {0x04, 0x44}};
  const tagRECT rect{0, 9, 9, 0};
  const tagPOINT cursor{5, 5};
  double t = 0;
  EXPECT_EQ(CRV_PathHit(&rect, &cursor, &t, path.points.data(), path.types.data(), 2, 0), 1);
  EXPECT_EQ(t, 1.7976931348623157e308);
  EXPECT_EQ(CRV_PathHit(&rect, &cursor, &t, path.points.data(), path.types.data(), 2, 1), -1);
}

TEST(PathHit, TouchesCornersExactlyAnywhere) {
  const auto path = test::ParsePath<tagPOINT>("M0,0 L10,10");
  EXPECT_EQ(PathHit(path, {5, 5, 8, 2}), 1) << "a corner exactly on the line";
  EXPECT_EQ(PathHit(path, {6, 5, 8, 2}), -1) << "inside the box, beside the line";
  // The line passes half a unit below (x, x); doubles cannot tell these two rectangles apart.
  const IntPath plane{{{-2147483647 - 1, -2147483647 - 1}, {2147483647, 2147483646}}, {0x04, 0x44}};
  EXPECT_EQ(PathHit(plane, {999, 999, 2000, 998}), 1);
  EXPECT_EQ(PathHit(plane, {1000, 999, 2000, 998}), -1);
  EXPECT_EQ(PathHit(plane, {1073741823, 1073741823, 1073741823, 1073741823}), -1);
}

TEST(PathHit, FindsOneSegmentAnywhereInALongPath) {
  const tagRECT rect{-1, 1, 1, -1};
  for (const bool curves : {false, true}) {
    IntPath path;
    path.Add(0x04, {1000, 1000});
    for (int k = 0; k < 150; ++k) {
      if (curves) path.Add(0xC0, {1000, 1000}), path.Add(0xC0, {2000, 1000});
      path.Add(curves ? 0x84 : 0x44, {1000 + k, 1000});
    }
    EXPECT_EQ(PathHit(path, rect), -1);
    for (std::size_t k = curves ? 3 : 1; k < path.points.size(); k += curves ? 3 : 1) {
      IntPath bent = path;
      bent.points[k] = {0, 0};
      EXPECT_EQ(PathHit(bent, rect), static_cast<int>(k));
      EXPECT_EQ(UTLIsRectOnPath(LUMO_ARRAYS(bent), &rect), 1);
    }
  }
}

TEST(BezierIntersectsRect, ByTheCurveNotItsHull) {
  const tagPOINT arch[] = {{0, 0}, {0, 100}, {100, 100}, {100, 0}};
  const tagRECT under{45, 70, 55, 60}, on{45, 80, 55, 70}, above{45, 99, 55, 90}, outside{200, 9, 210, 0};
  EXPECT_EQ(CRV_BezierIntersectsRect(arch, &under, 0.1), 0);
  EXPECT_EQ(CRV_BezierIntersectsRect(arch, &on, 0.1), 1);
  EXPECT_EQ(CRV_BezierIntersectsRect(arch, &above, 0.1), 0);
  EXPECT_EQ(CRV_BezierIntersectsRect(arch, &outside, 0.1), 0);
  EXPECT_EQ(CRV_BezierIntersectsRect(nullptr, &on, 0.1), 0);
  EXPECT_EQ(CRV_BezierIntersectsRect(arch, nullptr, 0.1), 0);
}

TEST(NodeHit, PrefersOnCurveNodesThenTheLowestIndexOfThoseThatTheUserSees) {
  test::Bits bits(72);
  const test::PathOptions options{.maxSubpaths = 60, .range = 60};
  for (int round = 0; round < 200; ++round) {
    const IntPath path = test::RandomPath<tagPOINT>(bits, options);
    tagRECT rect = RandomRect(bits, 60, 30);
    if (bits.OneIn(4)) std::swap(rect.top, rect.bottom);  // either orientation, when points are tested
    std::vector<int> all;
    for (int k = 0; k < path.count(); ++k) {
      const tagPOINT p = path.point(k);
      const bool inside = rect.left <= p.x && p.x <= rect.right && std::min(rect.top, rect.bottom) <= p.y &&
                          p.y <= std::max(rect.top, rect.bottom);
      if (inside && path.type(k).IsUser()) all.push_back(k);
    }
    const auto onCurve =
        std::find_if(all.begin(), all.end(), [&](int k) { return path.type(k).IsOnCurve(); });
    EXPECT_EQ(CRV_NodeHitAll(&rect, LUMO_ARRAYS(path)), all);
    EXPECT_EQ(CRV_NodeHit(&rect, LUMO_ARRAYS(path)), onCurve != all.end() ? *onCurve
                                                     : all.empty()        ? -1
                                                                          : all.front());
  }
  const IntPath corners{{{-2147483647 - 1, 2147483647}}, {0x04}};
  const tagRECT plane{-2147483647 - 1, 2147483647, 2147483647, -2147483647 - 1};
  EXPECT_EQ(CRV_NodeHit(&plane, corners.points.data(), corners.types.data(), 1), 0);
}

TEST(HitQueries, OfNothing) {
  const tagPOINT point{0, 0};
  const NODETYPE type = 0x04;
  const tagRECT rect{-1, 1, 1, -1};
  for (const int count : {0, -1}) {
    EXPECT_EQ(CRV_PathHit(&rect, nullptr, nullptr, &point, &type, count, 0), -1);
    EXPECT_EQ(CRV_NodeHit(&rect, &point, &type, count), -1);
    EXPECT_TRUE(CRV_NodeHitAll(&rect, &point, &type, count).empty());
    EXPECT_EQ(UTLIsRectOnPath(&point, &type, count, &rect), 0);
  }
  EXPECT_EQ(CRV_PathHit(nullptr, nullptr, nullptr, &point, &type, 1, 0), -1);
  EXPECT_EQ(CRV_NodeHit(nullptr, &point, &type, 1), -1);
  EXPECT_EQ(CRV_NodeHit(&rect, nullptr, &type, 1), -1);
  EXPECT_EQ(UTLIsRectOnPath(nullptr, nullptr, 1, &rect), 0);
}

TEST(HitQueries, StayInsideMalformedArrays) {
  test::Bits bits(73);
  const test::PathOptions options{.range = 20};
  for (int round = 0; round < 2000; ++round) {
    const test::GuardedPath<tagPOINT> path(
        test::RandomMalformedPath<tagPOINT>(bits, round % 10 == 0 ? 400 : 10, options));
    const tagPOINT* const p = path.points.data();
    const NODETYPE* const t = path.types.data();
    const int count = path.count;
    const tagRECT rect = RandomRect(bits, 20, 10);
    const tagPOINT cursor{bits.Between(-20, 20), bits.Between(-20, 20)};
    test::GuardedArray<double> lengths(static_cast<std::size_t>(count));
    tagPOINT out{};
    int node = 0;
    double at = 0;
    CRV_PathHit(&rect, &cursor, &at, p, t, count, 1);
    CRV_NodeHitAll(&rect, p, t, count);
    UTLIsRectOnPath(p, t, count, &rect);
    UTLIsPointInFill(p, t, count, cursor, &node);
    for (int k = -2; k <= count; k += 1 + count / 10) UTLIsSubpathHole_Ex(p, t, count, k, 3);
    UTLGenerateNodeLengthArray(p, t, count, lengths.data());
    UTLFastGotoPathLength(p, t, count, lengths.data(), bits.Below(200), &out, &node, &at);
    if (UTLGetClosestPointOnPath(p, t, count, cursor, &out, &node, &at)) {
      EXPECT_TRUE(node > 0 && node < count);
    }
    UTLGetFacePoint(p, t, count, &out);
  }
}

}  // namespace
