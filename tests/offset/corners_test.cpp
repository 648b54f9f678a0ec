// Settings, joins and caps as a host calls them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "lumo/offset_corners.h"
#include "lumo/offset_settings.h"
#include "tav/math/cubic_bezier.h"
#include "tav/pref.h"

namespace {

using namespace Lumo;
using namespace TavMath;

const double kPi = std::acos(-1.0);

/// A path of two lines from a over the corner (node 1) to b.
struct TwoLines {
  std::vector<DPoint> points;
  std::vector<NODETYPE> nodes{NODETYPE(0x04), NODETYPE(0x44), NODETYPE(0x44)};
  TwoLines(DPoint a, DPoint corner, DPoint b) : points{a, corner, b} {}
};

/// What a join appends after the offset line of the first segment.
struct Joined {
  std::vector<DPoint> points;
  std::vector<NODETYPE> nodes;
  Joined(const OffsetCorner& corner, const TwoLines& path, double offset, double tolerance = 100) {
    const DVector normal = offset * LeftNormal(Normalized(path.points[1] - path.points[0]));
    points = {path.points[0] + normal, path.points[1] + normal};
    nodes = {NODETYPE(0x04), NODETYPE(0x44)};
    corner.CreateCorner(points, nodes, 0, 1, path.points.data(), path.nodes.data(), offset, tolerance);
  }
};

bool Within(const OffsetCorner& corner, const TwoLines& path, double offset, DPoint q) {
  return corner.IsPointWithinCorner(q, 0, 1, path.points.data(), path.nodes.data(), offset);
}

void ExpectNear(const DPoint& a, const DPoint& b, double tolerance = 1e-6) {
  EXPECT_NEAR(a.x, b.x, tolerance);
  EXPECT_NEAR(a.y, b.y, tolerance);
}

/// East, then a right turn by the angle (degrees): the left side is the outer one.
TwoLines RightTurn(double degrees) {
  const double a = -degrees * kPi / 180;
  return {{0, 0}, {10000, 0}, {10000 + 10000 * std::cos(a), 10000 * std::sin(a)}};
}

TEST(OffsetSettings, AutomaticErrorFollowsTheSignedOffset) {
  const std::pair<double, double> cases[] = {{50000, 500},   {5, 100},    {-5000, 100},
                                             {200000, 1000}, {-1e9, 100}, {12345, 123.45}};
  for (const auto& [offset, error] : cases) {
    const Offset::OffsetSettings s(nullptr, nullptr, offset, false);
    EXPECT_DOUBLE_EQ(s.MaxOffsetError(), error) << offset;
    EXPECT_DOUBLE_EQ(s.MaxOffsetErrorSqrd(), error * error);
  }
  Offset::OffsetSettings s(nullptr, nullptr, 1000, false);
  s.SetMaxOffsetError(5000);
  EXPECT_EQ(s.MaxOffsetError(), 5000);
  EXPECT_EQ(s.MaxOffsetErrorSqrd(), 25e6);
}

TEST(OffsetSettings, DefaultsAndRepair) {
  Offset::OffsetSettings s(nullptr, nullptr, 1000, true);
  EXPECT_TRUE(s.CloseShape() && s.CombineShape() && s.OffsetInwards());
  EXPECT_EQ(s.OpenCurveOffsetSide(), Offset::EOpenCurveOffsetSide::both);
  EXPECT_EQ(s.MaxConnectError(), 100);
  EXPECT_EQ(s.MaxConnectErrorSqrd(), 10000);
  EXPECT_TRUE(s.RepairSettings().FixTightEndpointRadius()) << "unlike a repair of its own";
  EXPECT_FALSE(CurveRepairSettings().FixTightEndpointRadius());
  EXPECT_EQ(s.RepairSettings().GetMinLineLength(), 10);
}

/// Counts its deletions.
struct Counted : NoCorner {
  int& deleted;
  explicit Counted(int& count) : deleted(count) {}
  ~Counted() override { ++deleted; }
};

TEST(OffsetSettings, OwnsEachJoinOnce) {
  int deleted = 0;
  {
    Counted* cap = new Counted(deleted);
    const Offset::OffsetSettings s(new Counted(deleted), cap, 1, false);
    EXPECT_EQ(s.EndCap(), cap) << "one cap serves both ends";
  }
  EXPECT_EQ(deleted, 2);
  {
    Counted* all = new Counted(deleted);
    const Offset::OffsetSettings s(all, all, all, 1, false);
  }
  EXPECT_EQ(deleted, 3);
  {
    const Offset::OffsetSettings s(new MiteredCorner(30, new Counted(deleted)), nullptr, 1, false);
  }
  EXPECT_EQ(deleted, 4) << "a miter owns its fallback";
  {
    // Assignment shares the joins: only one of the two may be destroyed.
    const Offset::OffsetSettings source(new Counted(deleted), nullptr, 7, true);
    auto* target = new Offset::OffsetSettings(nullptr, nullptr, 1, false);
    *target = source;
    EXPECT_EQ(target->CornerType(), source.CornerType());
    EXPECT_EQ(target->Offset(), 7);
    ::operator delete(target);
  }
  EXPECT_EQ(deleted, 5);
}

TEST(MiteredCorner, CosineIsThatOfTheArgumentNotOfTheStoredAngle) {
  EXPECT_EQ(MiteredCorner(0, nullptr).MiterLimit(), 1.0);
  EXPECT_EQ(MiteredCorner(0, nullptr).MiterLimitCosine(), 1.0);
  EXPECT_EQ(MiteredCorner(200, nullptr).MiterLimit(), 179.0);
  EXPECT_EQ(MiteredCorner(200, nullptr).MiterLimitCosine(), std::cos(200 * 0.01745329251));
  // Limit 0: even a turn that leaves an interior angle of a tenth of a degree is mitered.
  const Joined sharp(MiteredCorner(0, new NoCorner), RightTurn(179.9), 1000);
  EXPECT_EQ(sharp.points.size(), 3u);
  EXPECT_GT(sharp.points[1].x, 1e6);
}

TEST(MiteredCorner, FallsBackWhereTheCornerIsSharperThanTheLimit) {
  const MiteredCorner corner(60, new NoCorner);
  EXPECT_EQ(Joined(corner, RightTurn(119), 1000).points.size(), 3u) << "interior angle 61 degrees";
  EXPECT_EQ(Joined(corner, RightTurn(121), 1000).points.size(), 2u) << "interior angle 59 degrees";
}

TEST(Corners, RightAngleShapes) {
  const TwoLines path = RightTurn(90);
  const DPoint A{10000, 1000}, B{11000, 0};
  const Joined ray(Ray{}, path, 1000);
  ASSERT_EQ(ray.points.size(), 3u) << "the offset line itself is lengthened";
  ExpectNear(ray.points[1], {11000, 1000});
  ExpectNear(ray.points[2], B);
  const Joined bevel(Bevel{}, path, 1000);
  ASSERT_EQ(bevel.points.size(), 3u);
  ExpectNear(bevel.points[1], A);
  ExpectNear(bevel.points[2], B);
  const Joined cut(OffsetBevel{}, path, 1000);
  ASSERT_EQ(cut.points.size(), 4u);
  const double t = 1000 * std::tan(kPi / 8);
  ExpectNear(cut.points[1], {10000 + t, 1000});
  ExpectNear(cut.points[2], {11000, t});
  EXPECT_EQ(Joined(NoCorner{}, path, 1000).points.size(), 2u);
}

TEST(Corners, RoundIsOneArcUpToARightAngleAndTwoBeyond) {
  const Joined one(Round{}, RightTurn(90), 1000);
  ASSERT_EQ(one.points.size(), 5u);
  for (int k = 0; k <= 16; ++k)
    EXPECT_NEAR(Distance(CubicBezier::Evaluate(&one.points[1], k / 16.0), DPoint{10000, 0}), 1000, 0.3);
  const Joined two(Round{}, RightTurn(120), 1000);
  ASSERT_EQ(two.points.size(), 8u);
  ExpectNear(two.points[4], {10000 + 1000 * std::cos(kPi / 6), 1000 * std::sin(kPi / 6)});
  EXPECT_TRUE(two.nodes[4].IsCurve() && two.nodes[7].IsCurve());
}

TEST(Corners, InnerSideAndStraightRunsGetNoJoin) {
  for (const OffsetCorner* corner : std::initializer_list<const OffsetCorner*>{
           new Round, new Bevel, new OffsetBevel, new Ray, new MiteredCorner(15, nullptr), new NoCorner}) {
    EXPECT_EQ(Joined(*corner, {{0, 0}, {10000, 0}, {10000, 10000}}, 1000).points.size(), 2u) << "left turn";
    const Joined straight(*corner, {{0, 0}, {10000, 0}, {20000, 0}}, 1000);
    ASSERT_EQ(straight.points.size(), 2u);
    ExpectNear(straight.points[1], {10000, 1000});
    delete corner;
  }
  // A small turn: the ends of the two offsets meet half-way.
  const Joined slight(Round{}, RightTurn(2), 1000);
  ASSERT_EQ(slight.points.size(), 2u);
  const double a = -2 * kPi / 180;
  ExpectNear(slight.points[1], Midpoint({10000, 1000}, {10000 - 1000 * std::sin(a), 1000 * std::cos(a)}));
}

TEST(Corners, CapsAtAReversal) {
  // A line out and back: node 1 is the turning point.
  const TwoLines path({0, 0}, {10000, 0}, {0, 0});
  const Joined butt(Bevel{}, path, 1000);
  ASSERT_EQ(butt.points.size(), 3u);
  ExpectNear(butt.points[2], {10000, -1000});
  const Joined square(OffsetBevel{}, path, 1000);
  ASSERT_EQ(square.points.size(), 4u);
  ExpectNear(square.points[1], {11000, 1000});
  ExpectNear(square.points[2], {11000, -1000});
  const Joined semicircle(Round{}, path, 1000);
  ASSERT_EQ(semicircle.points.size(), 8u);
  ExpectNear(semicircle.points[4], {11000, 0});
  EXPECT_EQ(Joined(Ray{}, path, 1000).points.size(), 2u) << "parallel lines do not meet";
  EXPECT_FALSE(Within(Round{}, path, 1000, {10500, 0})) << "a cap counts as having no region";
}

TEST(Corners, NearlyExactReversalMakesNoMiter) {
  const Joined ray(Ray{}, {{0, 0}, {10000, 0}, {0, -1.5}}, 1000);
  EXPECT_EQ(ray.points.size(), 2u);
}

TEST(Corners, RegionsAreStrict) {
  const TwoLines path = RightTurn(90);
  struct Case {
    const OffsetCorner& corner;
    DPoint inside, edge, outside;
  };
  const Round round;
  const Bevel bevel;
  const OffsetBevel cut;
  const Ray ray;
  const MiteredCorner miter(15, nullptr), blunt(120, nullptr);
  for (const Case& k : {Case{round, {10600, 600}, {10600, 800}, {10800, 700}},
                        Case{bevel, {10400, 400}, {10500, 500}, {10600, 600}},
                        Case{cut, {10700, 700}, {10000, 500}, {10990, 990}},
                        Case{ray, {10990, 990}, {11000, 500}, {11010, 500}},
                        Case{miter, {10990, 990}, {10500, 1000}, {9990, 500}},
                        Case{blunt, {10400, 400}, {10500, 500}, {10600, 600}}}) {
    EXPECT_TRUE(Within(k.corner, path, 1000, k.inside));
    EXPECT_FALSE(Within(k.corner, path, 1000, k.edge));
    EXPECT_FALSE(Within(k.corner, path, 1000, k.outside));
  }
  EXPECT_FALSE(Within(NoCorner{}, path, 1000, {10400, 400}));
}

TEST(Corners, BezierSegmentsGiveTheirTangents) {
  // A quarter circle that arrives heading south, then a line west: a right turn of 90 degrees at (10000, 0).
  const double f = 4.0 / 3 * std::tan(kPi / 8) * 10000;
  const std::vector<DPoint> points{{0, 10000}, {f, 10000}, {10000, f}, {10000, 0}, {0, 0}};
  const std::vector<NODETYPE> nodes{NODETYPE(0x04), NODETYPE(0xC0), NODETYPE(0xC0), NODETYPE(0x84),
                                    NODETYPE(0x44)};
  std::vector<DPoint> out{{0, 11000}, {11000, 0}};
  std::vector<NODETYPE> outNodes{NODETYPE(0x04), NODETYPE(0x44)};
  Bevel().CreateCorner(out, outNodes, 2, 3, points.data(), nodes.data(), 1000, 100);
  ASSERT_EQ(out.size(), 3u);
  ExpectNear(out[2], {10000, -1000});
}

TEST(Pref, PureOffsetPreferenceIsFoundByItsKey) {
  TavPref::CSecretAppPrefObject<bool>* found =
      TavPref::CAppPrefManager::GetInstance().FindBool("Lumo/AllowShiftToAccessPureOffsetCurve");
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found, &TavPref::AllowPureOffsetCurve());
  EXPECT_FALSE(found->GetValue());
  found->SetValue(true);
  EXPECT_TRUE(TavPref::AllowPureOffsetCurve().GetValue());
  found->SetValue(false);
  EXPECT_EQ(TavPref::CAppPrefManager::GetInstance().FindBool("Lumo/Other"), nullptr);
}

TEST(Pref, WhatFindsNoPlaceIsNotFoundAndPlacesComeBack) {
  auto& manager = TavPref::CAppPrefManager::GetInstance();
  using Object = TavPref::CSecretAppPrefObject<bool>;
  const auto fill = [&] {
    std::vector<std::string> keys;
    for (int k = 0; k < 40; ++k) keys.push_back("Test/" + std::to_string(k));
    std::vector<std::unique_ptr<Object>> objects;
    std::size_t found = 0;
    for (const std::string& key : keys) {
      objects.push_back(std::make_unique<Object>(key, true));
      found += manager.FindBool(key) == objects.back().get();
    }
    EXPECT_TRUE(objects.back()->GetValue()) << "one without a place works for who has it";
    return found;
  };
  const std::size_t places = fill();
  EXPECT_GT(places, 0u);
  EXPECT_LT(places, 40u);
  EXPECT_EQ(fill(), places) << "objects that are gone give their places back";
  EXPECT_EQ(manager.FindBool("Test/0"), nullptr);
  EXPECT_EQ(manager.FindBool("Lumo/AllowShiftToAccessPureOffsetCurve"), &TavPref::AllowPureOffsetCurve());
}

/// A polygon's winding around q.
int Winding(const std::vector<DPoint>& polygon, const DPoint& q) {
  int winding = 0;
  for (std::size_t k = 0; k < polygon.size(); ++k) {
    const DPoint &a = polygon[k], &b = polygon[(k + 1) % polygon.size()];
    if ((a.y <= q.y) == (b.y <= q.y)) continue;
    const bool left = Cross(b - a, q - a) > 0;
    if (b.y > a.y && left) ++winding;
    if (b.y <= a.y && !left) --winding;
  }
  return winding;
}

/// What a join says is its region, against the polygon that its nodes enclose with the corner. (That of a
/// round one is the whole disc about the corner.)
TEST(Corners, TheRegionIsTheGroundThatTheJoinAdds) {
  const Bevel bevel;
  const Ray ray;
  const OffsetBevel offsetBevel;
  const MiteredCorner blunt(20, new Bevel), sharp(150, new OffsetBevel);
  const OffsetCorner* joins[] = {&bevel, &ray, &offsetBevel, &blunt, &sharp};
  int inside = 0, outside = 0;
  for (const OffsetCorner* join : joins) {
    for (const double degrees : {5.0, 30.0, 60.0, 89.0, 90.0, 91.0, 120.0, 150.0, 170.0}) {
      const TwoLines path = RightTurn(degrees);
      const double offset = 1000;
      const Joined joined(*join, path, offset, 0.001);
      // The corner, then from where the first offset line ends (a ray lengthens it) to the end of the join.
      std::vector<DPoint> polygon{path.points[1], path.points[1] + DVector{0, offset}};
      polygon.insert(polygon.end(), joined.points.begin() + 1, joined.points.end());
      for (int k = 0; k < 400; ++k) {
        const double angle = 0.61803398875 * k * 2 * kPi, r = 3.0 * offset * (k + 1) / 400;
        const DPoint q = path.points[1] + DVector{r * std::cos(angle), r * std::sin(angle)};
        double clearance = 1e9;
        for (std::size_t j = 0; j < polygon.size(); ++j) {
          const DPoint &a = polygon[j], &b = polygon[(j + 1) % polygon.size()];
          const double t = std::clamp(Dot(q - a, b - a) / std::max(LengthSqrd(b - a), 1e-30), 0.0, 1.0);
          clearance = std::min(clearance, Distance(q, a + t * (b - a)));
        }
        if (clearance < 5) continue;  // the arc is a polygon here, and strictness has a test of its own
        const bool expected = Winding(polygon, q) != 0;
        EXPECT_EQ(Within(*join, path, offset, q), expected) << degrees << " degrees, " << q.x << "," << q.y;
        ++(expected ? inside : outside);
      }
    }
  }
  EXPECT_GT(inside, 100);
  EXPECT_GT(outside, 10000);
}

TEST(Corners, DegenerateCornersStayFiniteAndKeepTheirEnd) {
  const Round round;
  const Bevel bevel;
  const Ray ray;
  const OffsetBevel offsetBevel;
  const MiteredCorner mitered(30, new Bevel);
  const OffsetCorner* joins[] = {&round, &bevel, &ray, &offsetBevel, &mitered};
  const TwoLines paths[] = {
      {{0, 0}, {10000, 0}, {20000, 0}},   // runs on
      {{0, 0}, {10000, 0}, {0, 0}},       // turns back
      {{0, 0}, {0, 0}, {10000, 0}},       // nothing before
      {{0, 0}, {10000, 0}, {10000, 0}},   // nothing behind
      {{0, 0}, {0, 0}, {0, 0}},           // nothing at all
      {{0, 0}, {1e-200, 0}, {0, 1e-200}}  // as good as nothing
  };
  for (const OffsetCorner* join : joins) {
    for (const TwoLines& path : paths) {
      for (const double tolerance : {0.0, 100.0}) {
        std::vector<DPoint> points{{0, 0}, {10000, 1000}};
        std::vector<NODETYPE> nodes{NODETYPE(0x04), NODETYPE(0x44)};
        join->CreateCorner(points, nodes, 0, 1, path.points.data(), path.nodes.data(), 1000, tolerance);
        ASSERT_EQ(points.size(), nodes.size());
        ASSERT_GE(points.size(), 2u) << "a join never takes nodes away";
        for (const DPoint& p : points) {
          ASSERT_TRUE(std::isfinite(p.x) && std::isfinite(p.y));
          EXPECT_LT(std::abs(p.x) + std::abs(p.y), 40000) << "a spike";
        }
        EXPECT_FALSE(Within(*join, path, 1000, {5000, -5000}));
      }
    }
    // Without arrays nothing is written.
    std::vector<DPoint> points{{1, 2}};
    std::vector<NODETYPE> nodes{NODETYPE(0x04)};
    join->CreateCorner(points, nodes, 0, 1, nullptr, nullptr, 1000, 100);
    EXPECT_EQ(points, (std::vector<DPoint>{{1, 2}}));
    EXPECT_FALSE(join->IsPointWithinCorner({0, 0}, 0, 1, nullptr, nullptr, 1000));
  }
}

}  // namespace
