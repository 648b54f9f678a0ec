// Whole tables of segment intersections: the broad phase, links between records, references.
#include "lumo/intersections.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "intersect/drawing.h"
#include "lumo/curve_segment.h"
#include "support/crossing_oracle.h"
#include "support/cubics.h"

namespace {

using namespace LumoTest;
using namespace Lumo;
using TavMath::Lerp;
using Settings = SegmentIntersectionSettings;
/// Paths of every kind of segment, with shared nodes, repeated segments and segments without extent.
std::vector<Drawing> RandomDrawings(Random& random, int paths, int segments, double size) {
  std::vector<Drawing> drawings;
  std::vector<DPoint> nodes;
  for (int n = 0; n < paths; ++n) {
    Drawing d;
    DPoint at = random.Point(size);
    d.Move(at);
    for (int k = 0; k < segments; ++k) {
      DPoint next = at + 0.3 * (random.Point(size) - DPoint{0, 0});
      if (!nodes.empty() && random.Below(6) == 0)
        next = nodes[static_cast<std::size_t>(random.Below(static_cast<int>(nodes.size())))];
      if (random.Below(20) == 0) next = at;
      nodes.push_back(next);
      if (random.Below(2) == 0) {
        d.Line(next);
      } else {
        const double reach = 0.3 * size;
        d.Curve({at, at + 0.5 * (random.Point(reach) - DPoint{0, 0}),
                 next + 0.5 * (random.Point(reach) - DPoint{0, 0}), next});
      }
      at = next;
    }
    if (random.Below(2) == 0) d.Line(d.points[0]).Close();
    drawings.push_back(d);
    if (random.Below(4) == 0) drawings.push_back(d);  // the same path once more
  }
  return drawings;
}

void Fill(SegmentIntersectionTable& table, const std::vector<Drawing>& drawings, Random& random) {
  for (const Drawing& d : drawings) {
    table.AddCurve(d.points.data(), d.types.data(), d.count(), random.Below(3) != 0, random.Below(4) != 0);
  }
}

TEST(IntersectionTables, BroadPhaseGivesTheRecordsOfTheDoubleLoopInItsOrder) {
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    Random random(seed);
    const std::vector<Drawing> drawings = RandomDrawings(random, 4, 12, 10000);
    SegmentIntersectionTable plain, quick;
    Random flagsA(seed), flagsB(seed);
    Fill(plain, drawings, flagsA);
    Fill(quick, drawings, flagsB);
    Settings settings;
    if (seed % 3 == 0) settings.SetCoverGaps(true), settings.SetGapTolerance(300);
    for (std::size_t i = 0; i < plain.Segments().size(); ++i) {
      ASSERT_TRUE(FindSegmentIntersections(static_cast<int>(i), plain, settings));
    }
    ASSERT_TRUE(FindAllIntersections(quick, settings));
    std::size_t records = 0;
    for (std::size_t i = 0; i < plain.Segments().size(); ++i) {
      const SegmentIntersections &p = plain.Segments()[i], &q = quick.Segments()[i];
      ASSERT_EQ(p.size(), q.size()) << seed << " segment " << i;
      records += p.size();
      for (std::size_t k = 0; k < p.size(); ++k) {
        EXPECT_EQ(p[k]->GetIntersectionTime(), q[k]->GetIntersectionTime());
        EXPECT_EQ(p[k]->GetIntersection(), q[k]->GetIntersection());
        EXPECT_EQ(p[k]->IsTouch(), q[k]->IsTouch());
        EXPECT_EQ(p[k]->GetPartner()->SegmentID(), q[k]->GetPartner()->SegmentID());
        EXPECT_EQ(p[k]->GetOverlapPartner() != nullptr, q[k]->GetOverlapPartner() != nullptr);
      }
    }
    EXPECT_GT(records, 20u);
    for (std::size_t c = 0; c < plain.Curves().size(); ++c) {
      EXPECT_EQ(plain.Curves()[c].crossedCurves, quick.Curves()[c].crossedCurves);
    }
  }
}

/// Every record links to one that links back, on another list, at the same place.
TEST(IntersectionTables, RecordsAreLinkedBothWays) {
  Random random(5);
  const std::vector<Drawing> drawings = RandomDrawings(random, 8, 15, 10000);
  SegmentIntersectionTable table;
  for (const Drawing& d : drawings) table.AddCurve(d.points.data(), d.types.data(), d.count());
  ASSERT_TRUE(FindAllIntersections(table, Settings()));
  int overlaps = 0, touches = 0, crossings = 0;
  for (const SegmentIntersections& s : table.Segments()) {
    for (const Intersection* x : s.Intersections()) {
      ASSERT_EQ(x->SegmentID(), s.ThisSegment());
      ASSERT_NE(x->GetPartner(), nullptr);
      EXPECT_EQ(x->GetPartner()->GetPartner(), x);
      EXPECT_EQ(x->GetPartner()->GetIntersection(), x->GetIntersection());
      EXPECT_EQ(x->GetPartner()->IsTouch(), x->IsTouch());
      EXPECT_GE(
          table.Segments()[static_cast<std::size_t>(x->GetPartner()->SegmentID())].GetIndex(x->GetPartner()),
          0);
      if (const Intersection* other = x->GetOverlapPartner()) {
        ++overlaps;
        EXPECT_EQ(other->GetOverlapPartner(), x);
        EXPECT_EQ(other->SegmentID(), x->SegmentID());
        EXPECT_EQ(other->GetPartner(), x->GetPartner()->GetOverlapPartner());
      }
      (x->IsTouch() ? touches : crossings) += 1;
    }
  }
  EXPECT_GT(overlaps, 10);
  EXPECT_GT(touches, 10);
  EXPECT_GT(crossings, 10);
}

Cubic RandomSegmentCubic(Random& random, bool line) {
  Cubic c = UnitCubic(random, line ? CubicShape::evenLine : RandomShape(random));
  for (DPoint& p : c) p = {p.x * 10000, p.y * 10000};
  return c;
}
Drawing AsPath(const Cubic& c, bool line) { return line ? LinePath(c[0], c[3]) : CurvePath(c); }

/// Against subdivision in long double: nothing missed away from the ends, and every record lies on both
/// segments.
TEST(IntersectionTables, PairsAgreeWithTheReference) {
  Random random(31);
  int clear = 0;
  for (int n = 0; n < 6000 && !HasFailure(); ++n) {
    const bool lineA = n % 3 == 0, lineB = n % 5 == 0;
    const Cubic a = RandomSegmentCubic(random, lineA), b = RandomSegmentCubic(random, lineB);
    // Tolerances far below the size: here only what truly meets counts.
    const Met met(AsPath(a, lineA), AsPath(b, lineB), Settings(1e-6, 1e-6));
    bool overlap = false;
    for (std::size_t k = 0; k < met.on().size(); ++k) {
      if (met.on()[k]->GetPartner()->SegmentID() == 0) continue;  // the loop of a itself
      overlap = overlap || met.on()[k]->GetOverlapPartner();
      const DPoint p = TavMath::CubicBezier::Evaluate(a.data(), met.ta(k)),
                   q = TavMath::CubicBezier::Evaluate(b.data(), met.tb(k));
      EXPECT_LE(TavMath::Distance(p, q), overlap ? 0.1 : 1e-6) << ToSvg(a) << "\n" << ToSvg(b);
    }
    if (overlap) continue;
    for (const ClearCrossing& c : FindClearCrossings(a, b, 7)) {
      if (c.ta < 1e-3 || c.ta > 0.999 || c.tb < 1e-3 || c.tb > 0.999) continue;
      const double speed = std::fmin(TavMath::Length(TavMath::CubicBezier::Derivative(a.data(), c.ta)),
                                     TavMath::Length(TavMath::CubicBezier::Derivative(b.data(), c.tb)));
      if (speed < 1) continue;  // beside a cusp a parameter is not determined this well
      ++clear;
      bool found = false;
      for (std::size_t k = 0; k < met.on().size(); ++k) {
        found = found || (std::abs(met.ta(k) - c.ta) < 1e-9 && std::abs(met.tb(k) - c.tb) < 1e-9 &&
                          !met.on()[k]->IsTouch());
      }
      EXPECT_TRUE(found) << c.ta << " " << c.tb << "\n" << ToSvg(a) << "\n" << ToSvg(b);
    }
  }
  EXPECT_GT(clear, 1000);
}

std::size_t CountRecords(const std::vector<Drawing>& drawings, double scale, bool turned, bool backwards) {
  std::vector<Drawing> copies = drawings;
  for (Drawing& d : copies) {
    for (DPoint& p : d.points)
      p = turned ? DPoint{-p.y * scale, p.x * scale} : DPoint{p.x * scale, -p.y * scale};
    if (!backwards) continue;
    std::reverse(d.points.begin(), d.points.end());
    // One open subpath: the kinds follow their segments.
    std::vector<NODETYPE> types(d.types.size());
    for (std::size_t k = 0; k < types.size(); ++k) {
      const std::size_t from = types.size() - k;  // the node that ends this segment when read backwards
      types[k] = k == 0 ? NODETYPE(kMove)
                 : d.types[types.size() - 1 - k].IsControl()
                     ? NODETYPE(kControl)
                     : NODETYPE(d.types[from].IsControl() ? kCurve : kLine);
    }
    d.types = types;
  }
  SegmentIntersectionTable table;
  for (const Drawing& d : copies) table.AddCurve(d.points.data(), d.types.data(), d.count());
  EXPECT_TRUE(FindAllIntersections(table, Settings(0.01 * scale, 10 * scale)));
  std::size_t count = 0;
  for (const SegmentIntersections& s : table.Segments()) count += s.size();
  return count;
}

/// The same contacts in a drawing that is turned by a quarter, mirrored, scaled by a power of two or run
/// backwards.
TEST(IntersectionTables, DoNotDependOnPositionScaleOrDirection) {
  for (std::uint64_t seed = 50; seed < 70; ++seed) {
    Random random(seed);
    std::vector<Drawing> drawings;
    for (int n = 0; n < 6; ++n) {
      Drawing d;
      DPoint at = random.Point(10000);
      d.Move(at);
      for (int k = 0; k < 10; ++k) {
        const DPoint next = random.Point(10000);
        if (random.Below(2) == 0) {
          d.Line(next);
        } else {
          d.Curve({at, random.Point(10000), random.Point(10000), next});
        }
        at = next;
      }
      drawings.push_back(d);
    }
    const std::size_t plain = CountRecords(drawings, 1, false, false);
    EXPECT_GT(plain, 100u);
    EXPECT_EQ(plain, CountRecords(drawings, 1, true, false)) << seed;
    EXPECT_EQ(plain, CountRecords(drawings, 0x1p-20, false, false)) << seed;
    EXPECT_EQ(plain, CountRecords(drawings, 0x1p30, true, false)) << seed;
    EXPECT_EQ(plain, CountRecords(drawings, 1, false, true)) << seed;
  }
}

TEST(IntersectionTables, BadInputIsAnsweredNotFollowed) {
  SegmentIntersectionTable table;
  EXPECT_EQ(table.AddCurve(nullptr, nullptr, 3), -1);
  EXPECT_FALSE(FindSegmentIntersections(0, table, Settings()));
  EXPECT_TRUE(FindAllIntersections(table, Settings()));
  Drawing a = LinePath({0, 0}, {1000, 1000}), b = LinePath({0, 1000}, {1000, 0});
  table.AddCurve(a.points.data(), a.types.data(), a.count());
  table.AddCurve(b.points.data(), b.types.data(), b.count());
  EXPECT_FALSE(FindSegmentIntersections(-1, table, Settings()));
  EXPECT_FALSE(FindSegmentIntersections(2, table, Settings()));
  table.Segments()[1].SetCurveID(7);
  EXPECT_TRUE(FindAllIntersections(table, Settings()));
  EXPECT_FALSE(table.FoundAnything());
  table.Segments()[1].SetCurveID(1);
  table.Segments()[1].SetSegmentStart(5);
  EXPECT_TRUE(FindSegmentIntersections(0, table, Settings()));
  EXPECT_FALSE(table.FoundAnything());
  const double nan = std::numeric_limits<double>::quiet_NaN();
  Drawing bad = LinePath({nan, 0}, {1000, 1000});
  bad.Line({nan, nan}).Line({1, nan});
  const Met met(bad, LinePath({0, 1000}, {1000, 0}));
  EXPECT_TRUE(met.on().empty());
}

}  // namespace
