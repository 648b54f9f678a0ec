#include "boolean/pair_crossing.h"

#include <gtest/gtest.h>

#include "boolean/collect.h"
#include "boolean/tolerances.h"
#include "support/generators.h"
#include "support/path_builder.h"
#include "tav/math/cubic_bezier.h"

namespace {

using namespace Lumo::Planar;

Arc MakeArc(const Curve& c) {
  return {c, 0, 0, 1, 0, 1, Bend(c), IsStraight(c, kStraight), false, {}, BulgeSide(c)};
}
Arc Line(DPoint a, DPoint b) { return MakeArc(Curve::Line(a, b)); }
Arc Cubic(DPoint a, DPoint b, DPoint c, DPoint d) { return MakeArc({{a, b, c, d}, false}); }
Arc Reversed(Arc a) {
  std::swap(a.curve.p[0], a.curve.p[3]);
  std::swap(a.curve.p[1], a.curve.p[2]);
  return a;
}

/// The part of the first arc that runs alongside the second.
struct Interval {
  double low = 0, high = 0;
  double Length() const { return high - low; }
};

std::vector<Contact> Find(const Arc& a, const Arc& b, Interval* alongside = nullptr) {
  PairCrossing pair(kContact);
  std::vector<Contact> contacts;
  if (pair.Find(a, b, contacts) && alongside) *alongside = {pair.alongside().lowA, pair.alongside().highA};
  return contacts;
}

TEST(PairCrossing, OfLines) {
  EXPECT_TRUE(Find(Line({0, 0}, {1, 1}), Line({0, 0.5}, {0.4, 0.9})).empty());
  const auto cross = Find(Line({0, 0}, {1, 1}), Line({0, 1}, {1, 0}));
  ASSERT_EQ(cross.size(), 1u);
  EXPECT_EQ(cross[0].point, (DPoint{0.5, 0.5}));
  // An end on the other line, and an end short of it by less than the contact distance.
  for (const double y : {0.0, 0.5 * kContact}) {
    const auto touch = Find(Line({0, 0}, {1, 0}), Line({0.25, y}, {0.25, 1}));
    ASSERT_EQ(touch.size(), 1u);
    EXPECT_EQ(touch[0].b, 0);
    EXPECT_EQ(touch[0].point, (DPoint{0.25, y}));
  }
  // A shared stretch: its two ends, in either direction.
  for (const bool turned : {false, true}) {
    const Arc b = Line({0.5, 0}, {2, 0});
    const auto shared = Find(Line({0, 0}, {1, 0}), turned ? Reversed(b) : b);
    ASSERT_EQ(shared.size(), 2u);
    EXPECT_EQ(shared[0].a + shared[1].a, 1.5);
  }
}

TEST(PairCrossing, OfALineThatAnArcPassesByALittle) {
  // Beyond the crossing the arc only just clears the line, where its height says next to nothing of the
  // place.
  for (int k = 8; k <= 40; ++k) {
    const double x = 0.875 + std::ldexp(1, -k);
    const Arc line = Line({0.875, 0.3125}, {0.875, 0.50269531249999999}),
              arc = Cubic({0.79549392056940316, 0.26909531112983409},
                          {0.84701216677323066, 0.33502970640135166}, {x, 0.41630684053560307},
                          {x, 0.49998129528802288});
    for (const bool turned : {false, true})
      for (const bool lineFirst : {false, true}) {
        const Arc other = turned ? Reversed(arc) : arc;
        const auto contacts = lineFirst ? Find(line, other) : Find(other, line);
        ASSERT_FALSE(contacts.empty()) << k;
        for (const Contact& c : contacts) {
          const DPoint onLine = Evaluate(line.curve, lineFirst ? c.a : c.b),
                       onArc = Evaluate(other.curve, lineFirst ? c.b : c.a);
          EXPECT_LE(TavMath::Distance(onLine, onArc), 2 * kContact) << k << " turned " << turned;
        }
      }
  }
}

TEST(PairCrossing, AgreesWithTheGeneralCurveCrossing) {
  test::Bits bits(3);
  int crossings = 0;
  for (int k = 0; k < 3000; ++k) {
    // Monotone arcs: both coordinates sorted.
    const auto arc = [&] {
      double x[4], y[4];
      for (int i = 0; i < 4; ++i) x[i] = bits.Unit(), y[i] = bits.Unit();
      std::sort(x, x + 4);
      std::sort(y, y + 4);
      if (bits.OneIn(2)) std::reverse(y, y + 4);
      return Cubic({x[0], y[0]}, {x[1], y[1]}, {x[2], y[2]}, {x[3], y[3]});
    };
    const Arc a = arc(), b = arc();
    auto found = Find(a, b);
    const auto expected = TavMath::CubicBezier::IntersectBeziers(a.curve.p, b.curve.p);
    if (expected.overlap) continue;
    std::sort(found.begin(), found.end(), [](const Contact& p, const Contact& q) { return p.a < q.a; });
    found.erase(std::unique(found.begin(), found.end(),
                            [](const Contact& p, const Contact& q) { return std::fabs(p.a - q.a) < 1e-6; }),
                found.end());
    ASSERT_EQ(static_cast<int>(found.size()), expected.count) << k;
    for (std::size_t i = 0; i < found.size(); ++i) EXPECT_NEAR(found[i].a, expected.at[i].ta, 1e-9) << k;
    crossings += expected.count;
  }
  EXPECT_GT(crossings, 500);
}

/// An arc that bulges to one side, a random one or (now and then) a quarter round.
Arc RandomBulge(test::Bits& bits) {
  const double w = 0.1 + 0.8 * bits.Unit(), h = 0.1 + 0.8 * bits.Unit();
  double f = 0.1 + 0.8 * bits.Unit(), g = 0.1 + 0.8 * bits.Unit();
  if (bits.OneIn(3)) f = g = 0.5522847498307936;
  Arc arc = Cubic({0, 0}, {0, f * h}, {w - g * w, h}, {w, h});
  if (bits.OneIn(2)) arc = Reversed(arc);
  if (bits.OneIn(2))
    for (DPoint& p : arc.curve.p) std::swap(p.x, p.y);
  return MakeArc(arc.curve);
}

/// A line that may matter to the arc: across it, through one of its ends, tangent at one, on either side of
/// it.
Arc RandomLine(test::Bits& bits, const Arc& arc) {
  const auto spread = [&] { return 2 * bits.Unit() - 1; };
  const bool atEnd = bits.OneIn(2), backwards = bits.OneIn(2);
  DPoint through = Evaluate(arc.curve, bits.Unit());
  DVector along{spread(), spread()};
  if (atEnd) {
    through = arc.curve.p[backwards ? 3 : 0];
    if (bits.OneIn(2)) along = LeavingDirection(arc.curve, backwards, 0);
  }
  const double from = spread(), to = bits.OneIn(4) ? 0 : (bits.OneIn(4) ? 1e-5 : 1) * spread();
  return Line(through + from * along, through + to * along);
}

TEST(PairCrossing, OfALineAndAnArcAgreesWithTheWayOfAllArcs) {
  test::Bits bits(5);
  int found = 0, stretches = 0;
  for (int k = 0; k < 20000; ++k) {
    const Arc arc = RandomBulge(bits), line = RandomLine(bits, arc);
    if (TavMath::Distance(line.curve.p[0], line.curve.p[3]) < 1e-3) continue;
    ASSERT_NE(arc.side, 0);
    Arc plain = arc;
    plain.side = 0;  // of unknown shape: halved until it is settled
    const bool lineFirst = bits.OneIn(2);
    Interval along, alongPlain;
    const auto special = lineFirst ? Find(line, arc, &along) : Find(arc, line, &along);
    const auto general = lineFirst ? Find(line, plain, &alongPlain) : Find(plain, line, &alongPlain);
    // Shared stretches end where the arc is a contact distance from the line, give or take another one.
    const auto holds = [](const std::vector<Contact>& contacts, const Contact& c) {
      return std::any_of(contacts.begin(), contacts.end(), [&](const Contact& other) {
        return TavMath::Distance(c.point, other.point) < 1e-4 && std::fabs(c.a - other.a) < 2e-3 &&
               std::fabs(c.b - other.b) < 2e-3;
      });
    };
    for (const Contact& c : general)
      ASSERT_TRUE(holds(special, c)) << k << ", lost at " << c.a << ", " << c.b;
    for (const Contact& c : special) ASSERT_TRUE(holds(general, c)) << k << ", new at " << c.a << ", " << c.b;
    // Both tell of a shared stretch where there is one: halving finds its end to a factor of two or three,
    // and may take a shallow meeting for a crossing.
    constexpr double kShallow = 2e-6;
    ASSERT_LE(along.Length(), 3 * alongPlain.Length() + kShallow) << k;
    ASSERT_LE(alongPlain.Length(), 3 * along.Length() + kShallow) << k;
    found += static_cast<int>(special.size());
    stretches += special.size() > 1;
  }
  EXPECT_GT(found, 5000);
  EXPECT_GT(stretches, 500);
}

TEST(PairCrossing, OfACurveThatEndsJustShort) {
  const Arc ground = Line({0, 0}, {1, 0}), hill = Cubic({0, 0}, {0.1, -0.3}, {0.4, -0.5}, {0.5, 0});
  for (const double y : {0.0, 0.5 * kContact, 3 * kContact}) {
    const auto onLine = Find(ground, Cubic({0.25, y}, {0.25, 0.3}, {0.3, 0.6}, {0.35, 1}));
    const auto onEnd = Find(hill, Cubic({0.5, y}, {0.5, 0.3}, {0.6, 0.6}, {0.7, 1}));
    for (const auto& found : {onLine, onEnd}) {
      ASSERT_EQ(found.size(), y > kContact ? 0u : 1u) << y;
      for (const Contact& contact : found) EXPECT_EQ(contact.b, 0);
    }
  }
}

TEST(PairCrossing, OfCurvesOnTopOfOneAnotherGivesTheEndsOfTheSharedStretch) {
  const Curve whole = Cubic({0, 0}, {0.2, 0.6}, {0.5, 0.9}, {1, 1}).curve;
  const Arc a = MakeArc(Part(whole, 0, 0.7)), b = MakeArc(Part(whole, 0.3, 1));
  for (const Arc& other : {b, Reversed(b)}) {
    const auto contacts = Find(a, other);
    const auto has = [&](const DPoint& p) {
      return std::any_of(contacts.begin(), contacts.end(),
                         [&](const Contact& c) { return TavMath::Distance(c.point, p) < 2 * kContact; });
    };
    EXPECT_TRUE(has(Evaluate(whole, 0.3)));
    EXPECT_TRUE(has(Evaluate(whole, 0.7)));
    EXPECT_LT(contacts.size(), 8u);
  }
}

TEST(PairCrossing, OfTangentArcsIsNearTheTangency) {
  const double k = 0.5522847498307936;
  const Arc a = Cubic({1, 0}, {1, k}, {k, 1}, {0, 1});                      // a quarter round (0, 0)
  const Arc b = Cubic({0.5, 0}, {0.5, 0.5 * k}, {0.5 * k, 0.5}, {0, 0.5});  // half as large,
  Arc c = b;
  for (DPoint& p : c.curve.p) p.y += 0.5;  // touching it at (0, 1)
  const auto contacts = Find(a, c);
  ASSERT_FALSE(contacts.empty());
  for (const Contact& contact : contacts) EXPECT_LT(TavMath::Distance(contact.point, {0, 1}), 1e-4);
  EXPECT_TRUE(Find(a, b).empty());
}

}  // namespace
