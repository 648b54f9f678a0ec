// Offsets of closed outlines against their definition: the points at the distance from the ground.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/offset_paths.h"

namespace {

using namespace LumoTest;
using namespace TavMath;

/// The offset error, what moving ends together may add, rounding to whole units, flattening of the check.
constexpr double kAllowed = 100 + 50 + 20;

void ExpectTrueOffset(const DoublePath& source, double offset) {
  const DoublePath result = OffsetOf(source, offset);
  EXPECT_TRUE(test::IsWellFormed(result));
  const double allowed = kAllowed + std::fmax(0.0, offset / 100 - 100);
  EXPECT_LE(DistanceError(source, offset, result), allowed) << offset << " of\n"
                                                            << test::ToSvg(source) << "\ngives\n"
                                                            << test::ToSvg(result);
  const std::vector<DPoint> wrong = WronglySided(source, offset, result, allowed);
  EXPECT_TRUE(wrong.empty()) << wrong.size() << " points, first " << wrong[0].x << " " << wrong[0].y << ", "
                             << offset << " of\n"
                             << test::ToSvg(source) << "\ngives\n"
                             << test::ToSvg(result);
}

TEST(OffsetDistance, RandomPolygons) {
  Random random(31);
  for (int k = 0; k < 12; ++k) {
    const DoublePath path = RandomBlob(random, 3 + random.Below(30), 50000, false, 0.8);
    ExpectTrueOffset(path, (k % 2 ? 1 : -1) * random.LogUniform(300, 40000));
  }
}

TEST(OffsetDistance, RandomCurves) {
  Random random(32);
  for (int k = 0; k < 12; ++k) {
    const DoublePath path = RandomBlob(random, 3 + random.Below(10), 50000, true, 0.5);
    ExpectTrueOffset(path, (k % 2 ? 1 : -1) * random.LogUniform(300, 40000));
  }
}

TEST(OffsetDistance, OutlinesThatCrossThemselvesAreTheGroundTheyCover) {
  Random random(33);
  for (int k = 0; k < 12; ++k) {
    std::vector<DPoint> points;
    for (int n = 0; n < 8; ++n) points.push_back(random.Point(50000));
    ExpectTrueOffset(ClosedPolygon(points), (k % 2 ? 1 : -1) * random.LogUniform(300, 20000));
  }
}

TEST(OffsetDistance, OneOutlineThatOverlapsItselfRoundAHole) {
  // A band laid round a hole, its two ends on top of each other: the hole belongs to the one outline.
  std::vector<DPoint> band{{30000, 0},     {0, 0},         {0, 60000},     {60000, 60000},
                           {60000, 0},     {20000, 0},     {20000, 15000}, {45000, 15000},
                           {45000, 45000}, {15000, 45000}, {15000, 15000}, {30000, 15000}};
  for (const bool reversed : {false, true}) {
    for (const double offset : {4000.0, -4000.0, 12000.0, 16000.0, -8000.0})
      ExpectTrueOffset(ClosedPolygon(band), offset);
    std::reverse(band.begin(), band.end());
    EXPECT_EQ(test::Flatten(OffsetOf(ClosedPolygon(band), 4000), 1).size(), 2u) << reversed;
  }
}

TEST(OffsetDistance, IslandsInHolesOfOneOutline) {
  // Outline, hole and island in one stroke, linked by lines that are drawn there and back.
  std::vector<DPoint> rings;
  const auto ring = [&](double size, double turn) {
    const DPoint link{size, 0};
    rings.push_back(link);
    for (const DVector side : {DVector{1, turn}, DVector{-1, turn}, DVector{-1, -turn}, DVector{1, -turn}})
      rings.push_back(DPoint{0, 0} + size * side);
    rings.push_back(link);
  };
  ring(100000, 1);
  ring(60000, -1);
  ring(30000, 1);
  ring(16000, -1);
  ring(8000, 1);
  for (const double size : {16000, 30000, 60000}) rings.push_back({size, 0});
  const DoublePath path = ClosedPolygon(rings);
  EXPECT_EQ(test::Flatten(OffsetOf(path, 2000), 1).size(), 5u);
  for (const double offset : {2000.0, -2000.0, 10000.0, -5000.0, 16000.0, -17000.0})
    ExpectTrueOffset(path, offset);
}

TEST(OffsetDistance, DenseOutlines) {
  // So many segments within the distance that they are offset stretch by stretch.
  Random random(35);
  for (const double offset : {30000.0, -30000.0})
    for (const bool curves : {false, true}) {
      const DoublePath path = RandomBlob(random, 160, 50000, curves, 0.04);
      const DoublePath result = OffsetOf(path, offset);
      EXPECT_EQ(test::Flatten(result, 1).size(), 1u) << offset << " " << curves;
      EXPECT_TRUE(WronglySided(path, offset, result, 470, 12).empty()) << offset << " " << curves;
    }
}

TEST(OffsetDistance, FarOutNothingIsLeftBetweenPiecesThatAreOffToOppositeSides) {
  // Pieces of the raw offset that run close together, each off by what it may, cross and part again; what
  // lies between them is within reach of the source.
  const DPoint p[] = {{713278.053, 471698.813}, {869313.319, 557953.999}, {711762.371, 840547.007},
                      {701177.167, 1048576},    {573056.194, 813752.484}, {283472.961, 937670.637},
                      {195826.539, 702675.304}, {231994.875, 510086.508}, {220347.515, 283894.704},
                      {0, 98446.012},           {667002.641, 0},          {649147.695, 183886.38},
                      {665156.351, 460020.664}, {713278.053, 471698.813}};
  const int types[] = {0x0C, 0xC0, 0xC0, 0x84, 0xC0, 0xC0, 0x84, 0xC0, 0xC0, 0x84, 0x44, 0xC0, 0xC0, 0x88};
  DoublePath path;
  for (int k = 0; k < 14; ++k) path.Add(NODETYPE(static_cast<unsigned char>(types[k])), p[k]);
  for (const double offset : {2.5e6, 3145728.0, 4e6})
    EXPECT_EQ(test::Flatten(OffsetOf(path, offset), 1).size(), 1u) << offset;
}

TEST(OffsetDistance, CurvesKeepTheirShapeWhereTheirHandlesSayNothing) {
  // Moving the handle off its node by a fraction of the chord would bend the long curve by more than the
  // error.
  const Cubic curve{{{0, 0}, {0, 0}, {300000, 700000}, {1000000, 0}}};
  DoublePath path;
  path.Add(NODETYPE(0x0C), curve[0]);
  path.Add(NODETYPE(0xC0), curve[1]);
  path.Add(NODETYPE(0xC0), curve[2]);
  path.Add(NODETYPE(0x84), curve[3]);
  path.Add(NODETYPE(0x48), curve[0]);
  for (const double offset : {3000.0, -3000.0}) {
    double worst = 0;
    for (const test::Polyline& line : test::Flatten(OffsetOf(path, offset), 64))
      for (const DPoint& p : line.points) {
        double t, distanceSqrd;
        DPoint nearest;
        ASSERT_TRUE(CubicBezier::FindClosestPointOnBezier(curve.data(), p, t, nearest, distanceSqrd));
        const double toLine = Distance(p, {std::clamp(p.x, 0.0, 1e6), 0});
        const double least = std::fmin(std::sqrt(distanceSqrd), toLine);
        worst = std::fmax(worst, std::abs(least - std::abs(offset)));
      }
    EXPECT_LE(worst, 151) << offset;
  }
}

TEST(OffsetDistance, HandlesThatRoundingLeftMakeNoCorner) {
  // Handles that lie on their nodes but for a few roundings, as scaling leaves them, point anywhere.
  const DPoint tip{619197.25, 411985.5};
  for (const double noise : {0x1p-33, 0x1p-31, 0x1p-24})
    for (const DVector& way : {DVector{1, -2}, DVector{-1, 2}, DVector{2, 1}, DVector{-2, -1}}) {
      DoublePath path;
      path.Add(NODETYPE(0x0C), tip);
      path.Add(NODETYPE(0xC0), {622745, 413632});
      path.Add(NODETYPE(0xC0), {628534, 415485});
      path.Add(NODETYPE(0x84), {631134, 418548});
      path.Add(NODETYPE(0x44), {700000, 500000});
      path.Add(NODETYPE(0x44), {636450, 492608});
      path.Add(NODETYPE(0xC0), {631112, 464104});
      path.Add(NODETYPE(0xC0), tip + noise * way);
      path.Add(NODETYPE(0x88), tip);
      for (const double offset : {3300.0, 22000.0, -1500.0}) ExpectTrueOffset(path, offset);
    }
}

TEST(OffsetDistance, ParallelsOfOpenPathsKeepTheirDistanceAndLoseNothing) {
  Random random(36);
  int reached = 0;
  for (int k = 0; k < 40; ++k) {
    // A blob without its last segment: bent, and with its ends near each other.
    DoublePath path = RandomBlob(random, 3 + random.Below(6), 50000, k % 2 == 0, 0.6);
    const std::size_t dropped = path.types.back().IsCurve() ? 3 : 1;
    path.points.resize(path.points.size() - dropped);
    path.types.resize(path.types.size() - dropped);
    path.types.front().Set(NODETYPE::kClosed, false);
    const double distance = (k % 4 < 2 ? 1 : -1) * random.LogUniform(500, 30000), least = std::abs(distance);
    const Lumo::PolycurveT<DPoint> curve(path.points.data(), path.types.data(), path.points.size());
    const auto parallel = curve.CreateParallelCurve(distance);
    DoublePath result;
    for (std::size_t i = 0; i < parallel.GetPointCount(); ++i)
      result.Add(parallel.GetNodeType(i), parallel.GetPoint(i));
    EXPECT_TRUE(test::IsWellFormed(result));
    const auto source = test::Flatten(path, 256), lines = test::Flatten(result, 32);
    const double error = std::fmax(100, distance / 100);
    for (const test::Polyline& line : lines)
      for (const DPoint& p : line.points)
        ASSERT_GE(test::DistanceTo(source, p), least - 1.2 * error - 10) << distance << " of\n"
                                                                         << test::ToSvg(path) << "\ngives\n"
                                                                         << test::ToSvg(result);
    for (const test::Polyline& line : source)
      for (std::size_t i = 1; i < line.points.size(); ++i) {
        const DVector along = line.points[i] - line.points[i - 1];
        if (!(LengthSqrd(along) > 0)) continue;
        const DPoint p = Midpoint(line.points[i - 1], line.points[i]) +
                         DVector{-along.y, along.x} * (distance / Length(along));
        if (test::DistanceTo(source, p) < least - 1) continue;
        ++reached;
        ASSERT_LE(test::DistanceTo(lines, p), 5 * error) << p.x << "," << p.y << ", " << distance << " of\n"
                                                         << test::ToSvg(path) << "\ngives\n"
                                                         << test::ToSvg(result);
      }
  }
  EXPECT_GT(reached, 5000);
}

TEST(OffsetDistance, InsetPastTheInradiusIsEmpty) {
  const DoublePath square = ClosedPolygon({{0, 0}, {0, 20000}, {20000, 20000}, {20000, 0}});
  EXPECT_FALSE(OffsetOf(square, -9900).empty());
  for (const double distance : {10000.0, 10001.0, 12000.0, 14000.0, 14200.0, 50000.0, 1e9})
    EXPECT_TRUE(OffsetOf(square, -distance).empty()) << distance;
  Random random(34);
  for (int k = 0; k < 20; ++k)
    EXPECT_TRUE(OffsetOf(RandomBlob(random, 12, 20000, k % 2, 0.4), -21000).empty());
}

}  // namespace
