// Offsets of outlines whose segments are far shorter than the distance: pockets that cannot be felt are
// filled first, what is left is offset stretch by stretch.
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "lumo/path_array.h"
#include "support/offset_paths.h"

namespace {

using namespace LumoTest;
using namespace TavMath;

constexpr double kD = 100000;
constexpr double kError = 1000;
/// The offset error, what moving ends together may add, rounding to whole units, flattening of the check.
constexpr double kAllowed = kError + 50 + 20;
/// What the chord of a pocket may be at this distance and error.
constexpr double kWidest = 20000;

const double kPi = std::acos(-1.0);

using Outline = std::vector<DPoint>;

DPoint At(double radius, double angle) { return {radius * std::cos(angle), radius * std::sin(angle)}; }

Outline NoisyRing(int n, double radius, double noise, std::uint64_t seed) {
  Random random(seed);
  Outline ring;
  for (int k = 0; k < n; ++k) ring.push_back(At(radius + random.Uniform(-noise, noise), -2 * kPi * k / n));
  return ring;
}

/// Appends the way to a point in steps of at most `step`, without its start.
void WalkTo(Outline& outline, const DPoint& to, double step) {
  const DPoint from = outline.back();
  const int steps = 1 + static_cast<int>(Distance(from, to) / step);
  for (int k = 1; k <= steps; ++k) outline.push_back(Lerp(from, to, 1.0 * k / steps));
}

/// A block with a round pocket behind a neck; no two edges in line, so that no node is one too many.
Outline Bottle(double neck, double radius) {
  Random random(4);
  const double half = std::asin(neck / 2 / radius);
  Outline outline{{-neck / 2, 300000}};
  WalkTo(outline, At(radius, kPi / 2 + half), 5000);
  for (int k = 1; k <= 200; ++k) outline.push_back(At(radius, kPi / 2 + half + 2 * (kPi - half) * k / 200));
  for (const DPoint& to : {DPoint{neck / 2, 300000}, DPoint{300000, 300000}, DPoint{300000, -300000},
                           DPoint{-300000, -300000}, DPoint{-300000, 300000}})
    WalkTo(outline, to, 5000);
  WalkTo(outline, outline.front(), 5000);
  outline.pop_back();
  for (DPoint& p : outline) p += {random.Uniform(-300, 300), random.Uniform(-300, 300)};
  return outline;
}

/// A square round a round hole, as one outline: its way into the hole and out is the same, and bounds
/// nothing.
struct Frame {
  Frame(double half, double radius) {
    Outline square{{0, half}, {half, half}, {half, -half}, {-half, -half}, {-half, half}, {0, half}}, hole;
    for (int k = 0; k <= 400; ++k) hole.push_back(At(radius, kPi / 2 + 2 * kPi * k / 400));
    ground = ClosedPolygon(square);
    const DoublePath inner = ClosedPolygon(hole);
    for (std::size_t k = 0; k < inner.points.size(); ++k) ground.Add(inner.types[k], inner.points[k]);
    square.insert(square.end(), hole.begin(), hole.end());
    path = ClosedPolygon(square);
  }
  DoublePath path, ground;
};

DoublePath PathOf(Outline outline, std::size_t start, bool reversed, bool curves = false) {
  std::rotate(outline.begin(), outline.begin() + static_cast<std::ptrdiff_t>(start), outline.end());
  DoublePath path = ClosedPolygon(outline);
  if (curves) {
    // Long segments and every ninth bulge by a tenth of their length.
    const DoublePath lines = path;
    path = {};
    path.Add(lines.types[0], lines.points[0]);
    for (std::size_t k = 1; k < lines.points.size(); ++k) {
      const DPoint &from = lines.points[k - 1], &to = lines.points[k];
      const bool last = k + 1 == lines.points.size();
      const bool curve = k % 9 == 0 || Distance(from, to) > 12000;
      if (curve)
        for (const double t : {1.0 / 3, 2.0 / 3})
          path.Add(NODETYPE(0xC0), Lerp(from, to, t) + 0.1 * LeftNormal(to - from));
      path.Add(NODETYPE(static_cast<unsigned char>(curve ? (last ? 0x88 : 0x84) : (last ? 0x48 : 0x44))), to);
    }
  }
  if (reversed) Lumo::Reverse(path.points.data(), path.types.data(), path.count());
  return path;
}

OffsetOptions WithError(double error) {
  OffsetOptions options;
  options.error = error;
  return options;
}

struct Truth {
  explicit Truth(const DoublePath& path) : lines(test::Flatten(path, 16)) {}
  /// The distance from the ground, negative inside.
  double Depth(const DPoint& p) const {
    const double distance = test::DistanceTo(lines, p);
    return test::WindingNumber(lines, p) != 0 ? -distance : distance;
  }
  std::vector<test::Polyline> lines;
};

/// Nodes of a path and points inside its segments.
Outline PointsAlong(const DoublePath& path) {
  Outline along;
  for (std::size_t k = 0; k < path.points.size(); ++k) {
    if (path.types[k].IsControl()) continue;
    along.push_back(path.points[k]);
    if (path.types[k].IsLine()) along.push_back(Midpoint(path.points[k - 1], path.points[k]));
    if (path.types[k].IsCurve())
      for (const double t : {0.25, 0.5, 0.75}) along.push_back(test::BezierAt(&path.points[k - 3], t));
  }
  return along;
}

/// No point of the result is off by more than the error, and neither side of the true offset along the whole
/// ground is on the wrong side of the result.
void ExpectTrueOffset(const DoublePath& path, double offset, const DoublePath& ground) {
  const DoublePath result = OffsetOf(path, offset, WithError(kError));
  ASSERT_TRUE(test::IsWellFormed(result));
  const Truth truth(ground);
  const std::vector<test::Polyline> lines = test::Flatten(result, 24);
  double worst = 0;
  for (const DPoint& p : PointsAlong(result)) worst = std::fmax(worst, std::abs(truth.Depth(p) - offset));
  EXPECT_LE(worst, kAllowed) << offset << ", start " << path.points[0].x << " " << path.points[0].y;
  int wrong = 0, asked = 0;
  for (const test::Polyline& line : truth.lines)
    for (std::size_t k = 1; k < line.points.size(); ++k) {
      const DVector along = line.points[k] - line.points[k - 1];
      if (!(LengthSqrd(along) > 1)) continue;
      for (const double by : {-offset - 1.1 * kAllowed, -offset + 1.1 * kAllowed, offset - 1.1 * kAllowed,
                              offset + 1.1 * kAllowed}) {
        const DPoint p = Midpoint(line.points[k - 1], line.points[k]) + by * LeftNormal(Normalized(along));
        const double beyond = truth.Depth(p) - offset;
        if (std::abs(beyond) <= kAllowed) continue;
        ++asked;
        wrong += (test::WindingNumber(lines, p) != 0) != (beyond < 0);
      }
    }
  EXPECT_EQ(wrong, 0) << offset << ", start " << path.points[0].x << " " << path.points[0].y;
  EXPECT_GT(asked, 500);
}

void ExpectTrueOffset(const DoublePath& path, double offset) { ExpectTrueOffset(path, offset, path); }

/// Grown and shrunk, from several starts, in both directions.
void ExpectTrueOffsets(const Outline& outline, bool curves = false) {
  for (const std::size_t start : {std::size_t{0}, outline.size() / 3, outline.size() - 1})
    for (const double offset : {kD, -kD})
      ExpectTrueOffset(PathOf(outline, start, start % 2 == 1, curves), offset);
  ExpectTrueOffset(PathOf(outline, 0, true, curves), kD);
}

std::size_t CountOutlines(const DoublePath& path, double offset, double error = kError) {
  return test::Flatten(OffsetOf(path, offset, WithError(error)), 1).size();
}

TEST(OffsetDense, NoisyRings) { ExpectTrueOffsets(NoisyRing(600, 400000, 8000, 1)); }

TEST(OffsetDense, LinesAndCurves) {
  Outline ring = NoisyRing(600, 400000, 8000, 2), thinned;
  for (std::size_t k = 0; k < ring.size(); ++k)
    if (k % 30 < 23) thinned.push_back(ring[k]);
  ExpectTrueOffsets(thinned, true);
}

TEST(OffsetDense, ACurveOutOfAPocketKeepsItsStart) {
  Outline ring = NoisyRing(600, 400000, 1000, 7);
  const double turn = -1.0 / 400000;
  ring[0] = At(400000, 0);
  ring[1] = At(376000, 4000 * turn);
  ring.erase(ring.begin() + 2, ring.begin() + 22);
  DoublePath path = ClosedPolygon(ring);
  path.points.insert(path.points.begin() + 2, {At(402000, 14000 * turn), At(405000, 64000 * turn)});
  path.types.insert(path.types.begin() + 2, {NODETYPE(0xC0), NODETYPE(0xC0)});
  path.types[4] = NODETYPE(0x84);
  ExpectTrueOffset(path, kD);
}

TEST(OffsetDense, NarrowPocketsDeeperThanTheDistance) {
  Outline ring = NoisyRing(600, 400000, 2000, 3);
  for (std::size_t k = 50; k < 600; k += 100) {
    ring[k] = At(k % 200 == 50 ? 200000 : 270000, -2 * kPi * static_cast<double>(k) / 600);
    // Spikes of the ground too, one of them inside a pocket of its own.
    ring[k + 40] = At(520000, -2 * kPi * static_cast<double>(k + 40) / 600);
  }
  ExpectTrueOffsets(ring);
}

TEST(OffsetDense, ValleysTooWideToFill) {
  // Teeth farther apart than a chord may be: what lies between them is felt.
  Outline comb{{-400000, 0}};
  for (double x = -350000; x < 400000; x += 2.5 * kWidest)
    for (const DPoint& to : {DPoint{x, 0}, DPoint{x + 2000, 70000}, DPoint{x + 4000, 0}})
      WalkTo(comb, to, 5000);
  for (const DPoint& to :
       {DPoint{400000, 0}, DPoint{400000, -100000}, DPoint{-400000, -100000}, comb.front()})
    WalkTo(comb, to, 5000);
  comb.pop_back();
  Random random(5);
  for (DPoint& p : comb) p += {random.Uniform(-300, 300), random.Uniform(-300, 300)};
  ExpectTrueOffsets(comb);
}

TEST(OffsetDense, ABottleKeepsTheHoleInside) {
  for (const double neck : {0.3 * kWidest, 1.5 * kWidest}) {
    const Outline bottle = Bottle(neck, 1.5 * kD);
    EXPECT_EQ(CountOutlines(PathOf(bottle, 0, false), kD), 2u) << neck;
    ExpectTrueOffsets(bottle);
  }
}

TEST(OffsetDense, RoundHoles) {
  for (const double radius : {1.5 * kD, 1.03 * kD}) {
    const Frame frame(400000, radius);
    ExpectTrueOffset(frame.path, kD, frame.ground);
    ExpectTrueOffset(frame.path, -kD, frame.ground);
    EXPECT_EQ(CountOutlines(frame.path, kD), 2u) << radius;
  }
  EXPECT_EQ(CountOutlines(Frame(400000, 0.97 * kD).path, kD), 1u);
  // However coarse the result may be, no hole of it is filled.
  EXPECT_EQ(CountOutlines(Frame(400000, 1.5 * kD).path, kD, kD), 2u);
}

TEST(OffsetDense, DiscsShrunkAboutTheirRadius) {
  Outline disc;
  for (int k = 0; k < 500; ++k) disc.push_back(At(kD, -2 * kPi * k / 500));
  for (const std::size_t start : {0u, 123u}) {
    ExpectTrueOffset(PathOf(disc, start, false), kD);
    ExpectTrueOffset(PathOf(disc, start, true), -0.9 * kD);
    for (const double distance : {1.02, 1.1, 1.5, 10.0})
      EXPECT_EQ(CountOutlines(PathOf(disc, start, start > 0), -distance * kD), 0u) << distance;
  }
}

/// A pocket at an inner corner of the ground with a slot beside it: the chord across its mouth, which is
/// narrow, crosses the ground between the two. `forward`: the way of the outline towards the corner.
void AddHook(Outline& outline, const DPoint& corner, const DVector& forward) {
  const DVector right{forward.y, -forward.x};
  WalkTo(outline, corner - 0.1 * kD * forward, 2000);
  for (const DVector& v : {DVector{0.6, 0.015}, DVector{0, 0.05}, DVector{1, 0.045}, DVector{0, -0.05}})
    outline.push_back(corner + kD * v.x * forward + kD * v.y * right);
}

/// The outline of which this is a quarter, each a quarter turn further, its nodes shaken.
Outline FourTimes(const Outline& quarter, bool clockwise) {
  Random random(6);
  Outline outline;
  for (int turn = 0; turn < 4; ++turn)
    for (DPoint p : quarter) {
      for (int k = 0; k < turn; ++k) p = clockwise ? DPoint{p.y, -p.x} : DPoint{-p.y, p.x};
      outline.push_back(p + DVector{random.Uniform(-100, 100), random.Uniform(-100, 100)});
    }
  return outline;
}

TEST(OffsetDense, GroundInPocketsIsOverlapped) {
  Outline step{{-250000, 400000}};
  WalkTo(step, {250000, 400000}, 4000);
  AddHook(step, {250000, 250000}, {0, -1});
  WalkTo(step, {400000, 250000}, 4000);
  step.pop_back();
  ExpectTrueOffsets(FourTimes(step, true));
  // A room narrower than twice the distance, though its hooks are not: nothing is left of it.
  Outline wall{{0.6 * kD, -0.53 * kD}};
  AddHook(wall, {0.6 * kD, 0.6 * kD}, {0, 1});
  for (const std::size_t start : {0u, 50u, 150u})
    EXPECT_EQ(CountOutlines(PathOf(FourTimes(wall, false), start, false), -kD), 0u) << start;
}

TEST(OffsetDense, NodesAreSmoothOnlyWhereTheResultIs) {
  // Curves that run smoothly into a line; the chord across the valley behind it leaves them at three degrees.
  DoublePath path;
  const double step = -2 * kPi / 540;
  const auto ring = [&](int k, double r) { return At(4000 + r, step * k); };
  path.Add(NODETYPE(0x1C), ring(0, 0));
  for (int k = 0; k < 540; k += 3) {
    const DPoint peak = ring(k + 3, 0), valley = ring(k + 4, -2);
    path.Add(NODETYPE(0x44), ring(k + 1, -2));
    path.Add(NODETYPE(0x44), ring(k + 2, 0));
    path.Add(NODETYPE(0xC0), Lerp(ring(k + 2, 0), peak, 1.0 / 3));
    path.Add(NODETYPE(0xC0), peak - 0.3 * (valley - peak));
    path.Add(NODETYPE(k + 3 == 540 ? 0x98 : 0x94), peak);
  }
  path.points.back() = path.points.front();
  for (const double offset : {1000.0, -1000.0}) {
    OffsetOptions options = WithError(100);
    options.combine = false;  // not rounded
    const DoublePath result = OffsetOf(path, offset, options);
    EXPECT_FALSE(result.empty());
    for (std::size_t k = 1; k + 1 < result.points.size(); ++k) {
      if (result.types[k].IsControl() || result.types[k].IsCusp()) continue;
      const DVector in = result.points[k] - result.points[k - 1],
                    out = result.points[k + 1] - result.points[k];
      EXPECT_LT(std::abs(Cross(Normalized(in), Normalized(out))), 0.03) << k << " " << offset;
    }
    EXPECT_TRUE(result.types.front().IsCusp() && result.types.back().IsCusp()) << offset;
  }
}

TEST(OffsetDense, OtherJoinsAreMadeAtEveryCorner) {
  // Filling what lies between them would blunt the tips of a ring's teeth, and their miters with them.
  const DoublePath path = PathOf(NoisyRing(600, 400000, 8000, 1), 0, false);
  OffsetOptions options = WithError(kError);
  delete std::exchange(options.corner, new Lumo::Ray);
  const auto result = test::Flatten(OffsetOf(path, kD, options), 8);
  int tips = 0;
  for (std::size_t k = 1; k + 1 < path.points.size(); ++k) {
    const DVector u = Normalized(path.points[k] - path.points[k - 1]),
                  v = Normalized(path.points[k + 1] - path.points[k]);
    if (!(Cross(u, v) < -0.5)) continue;
    ++tips;
    const DVector miter = LeftNormal(u) + LeftNormal(v);
    const DPoint tip = path.points[k] + 0.99 * kD * 2 / LengthSqrd(miter) * miter;
    EXPECT_NE(test::WindingNumber(result, tip), 0) << k;
  }
  EXPECT_GT(tips, 50);
}

TEST(OffsetDense, WhatCannotBeOffsetGivesNothing) {
  Outline ring = NoisyRing(600, 400000, 8000, 1);
  for (const double error : {0.0, -1.0, std::nan(""), HUGE_VAL}) {
    Lumo::Offset::OffsetSettings settings(new Lumo::Round, new Lumo::Round, kD, false);
    settings.SetMaxOffsetError(error);
    const DoublePath path = PathOf(ring, 0, false);
    DoublePath result;
    Lumo::CreateOffsetCurve(path.points.data(), path.types.data(), path.count(), result.points, result.types,
                            settings);
    EXPECT_TRUE(test::IsWellFormed(result)) << error;
  }
  ring[100].x = std::nan("");
  EXPECT_TRUE(OffsetOf(PathOf(ring, 0, false), kD).empty());
}

}  // namespace
