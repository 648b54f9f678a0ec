#include <gtest/gtest.h>

#include <cmath>

#include "lumo/repair.h"
#include "support/generators.h"
#include "support/guarded_array.h"
#include "support/oracles.h"
#include "support/point_types.h"
#include "tav/math/cubic_bezier.h"

namespace {

using Lumo::CurveRepairReport;
using Lumo::CurveRepairSettings;
using test::DPoint;
using test::ParsePath;
using test::Path;

template <class T>
Path<T> Repaired(Path<T> path, const CurveRepairSettings& settings = {},
                 CurveRepairReport* report = nullptr) {
  EXPECT_TRUE(Lumo::RepairCurves(path.points, path.types, settings, report));
  return path;
}

CurveRepairSettings AllOn() {
  CurveRepairSettings settings;
  settings.SetFixTightEndpointRadius(true);
  settings.SetSplitOverlappingBeziers(true);
  return settings;
}

LUMO_TYPED_SUITE(CurveRepair);

LUMO_TYPED_TEST(CurveRepair, MendsStructure) {
  const struct {
    const char* what;
    Path<T> broken;
    const char* mended;
  } cases[] = {
      {"dangling moves, a letter handed on",
       {{{0, 0}, {5, 5}, {50, 0}, {7, 7}}, {0x06, 0x04, 0x44, 0x04}},
       "M5,5l L50,0"},
      {"no move node", {{{0, 0}, {50, 0}, {50, 50}}, {0x44, 0x44, 0x40}}, "M0,0 L50,0 L50,50"},
      {"a stray control point", {{{0, 0}, {1, 1}, {50, 0}}, {0x04, 0xC0, 0x44}}, "M0,0 L50,0"},
      {"a curve without handles", {{{0, 0}, {50, 0}, {90, 0}}, {0x04, 0x84, 0x44}}, "M0,0 L90,0"},
      {"closed at the start only, nearly closed",
       {{{0, 0}, {50, 0}, {50, 50}, {1, 1}}, {0x0C, 0x44, 0x44, 0x44}},
       "M0,0 L50,0 L50,50 Z"},
      {"closed with a gap", {{{0, 0}, {50, 0}, {50, 50}}, {0x0C, 0x44, 0x48}}, "M0,0 L50,0 L50,50 Z"},
      {"closed with a gap after a curve",
       {{{0, 0}, {50, 0}, {90, 40}, {90, 90}}, {0x0C, 0xC0, 0xC0, 0x88}},
       "M0,0 C50,0 90,40 90,90 Z"},
      {"two closed ends with the user flag, an inner closed flag",
       {{{0, 0}, {50, 0}, {50, 50}, {0, 0}}, {0x0C, 0x4C, 0x40, 0x4C}},
       "M0,0 L50,0 L50,50 Z"},
      {"marks on control points",
       {{{0, 0}, {50, 0}, {90, 40}, {90, 90}}, {0x04, 0xDC, 0xC8, 0x84}},
       "M0,0 C50,0 90,40 90,90"},
  };
  for (const auto& c : cases) {
    CurveRepairReport report;
    EXPECT_EQ(Repaired(c.broken, {}, &report), ParsePath<T>(c.mended)) << c.what;
    EXPECT_TRUE(report.Any()) << c.what;
  }
}

TEST(CurveRepairDouble, PointsThatAreNotFiniteGo) {
  const double nan = std::nan(""), inf = HUGE_VAL;
  EXPECT_EQ(Repaired(Path<DPoint>{{{0, 0}, {nan, 0}, {50, 0}}, {0x04, 0x44, 0x44}}),
            ParsePath<DPoint>("M0,0 L50,0"));
  EXPECT_EQ(Repaired(Path<DPoint>{{{nan, 0}, {50, 0}, {90, 0}}, {0x04, 0x44, 0x44}}),
            ParsePath<DPoint>("M50,0 L90,0"));
  EXPECT_EQ(Repaired(Path<DPoint>{{{0, 0}, {inf, 0}, {40, 0}, {90, 0}}, {0x04, 0xC0, 0xC0, 0x84}}),
            ParsePath<DPoint>("M0,0 L90,0"));
  EXPECT_TRUE(Repaired(Path<DPoint>{{{0, nan}, {inf, 0}}, {0x04, 0x44}}).empty());
}

LUMO_TYPED_TEST(CurveRepair, DropsShortSegmentsButNeverEndsOrWholeSubpaths) {
  const struct {
    const char *svg, *left;
  } cases[] = {
      {"M0,0 L100,0 L100,5 L200,5", "M0,0 L100,0 L200,5"},
      {"M0,0 L100,0 L109,0 L118,0 L200,0", "M0,0 L100,0 L118,0 L200,0"},  // each judged from what is kept
      {"M0,0 L5,0 L100,0", "M0,0 L100,0"},
      {"M0,0 L100,0 L105,0", "M0,0 L105,0"},  // the open end stays
      {"M0,0 L95,0 C100,0 100,0 100,5", "M0,0 L100,5"},
      {"M0,0 C50,0 90,0 100,0 L105,0 C150,0 190,9 200,50", "M0,0 C50,0 90,0 100,0 C145,0 190,9 200,50"},
      {"M0,0 L100,0 L100,100 L0,3 Z", "M0,0 L100,0 L100,100 Z"},
      {"M0,0 L5,0 L5,5 Z", "M0,0 L5,0 L5,5 Z"},  // as small as the limit
      {"M0,0 L5,0", "M0,0 L5,0"},
      {"M0,0 L100,0 L50,4 Z", "M0,0 L100,0 L50,4 Z"},  // three lines of a closed subpath
  };
  for (const auto& c : cases) {
    EXPECT_EQ(test::After(ParsePath<T>(c.svg), 0, Lumo::RemoveShortSegments<T>, 10, 10), ParsePath<T>(c.left))
        << c.svg;
  }
  auto path = ParsePath<T>("M0,0 L100,0 L105,0 L200,0");
  EXPECT_EQ(Lumo::RemoveShortSegments(path.points.data(), path.types.data(), 4, 4, 100), 4)
      << "lines have a limit of their own";
}

LUMO_TYPED_TEST(CurveRepair, DropsSegmentsWithoutLength) {
  const struct {
    const char *svg, *left;
  } cases[] = {
      {"M0,0 L0,0 L9,0 C9,0 9,0 9,0 L9,9 L9,9", "M0,0 L9,0 L9,9"},
      {"M0,0 L9,0 L9,9 L0,0 L0,0Z", "M0,0 L9,0 L9,9 Z"},
      {"M0,0 C0,0 0,0 0,0", "M0,0 C0,0 0,0 0,0"},  // a dot stays a dot
      {"M0,0 L0,0 L0,0 L0,0", "M0,0 L0,0"},
      {"M0,0 C0,5 0,5 0,0 L9,0", "M0,0 C0,5 0,5 0,0 L9,0"},
  };
  for (const auto& c : cases) {
    test::GuardedPath<T> g(ParsePath<T>(c.svg));
    const auto n =
        Lumo::RemoveZeroLengthSegments(g.points.data(), g.types.data(), static_cast<std::size_t>(g.count));
    EXPECT_EQ(g.Copy(static_cast<int>(n)), ParsePath<T>(c.left)) << c.svg;
  }
}

LUMO_TYPED_TEST(CurveRepair, DropsSmallSubpathsByTheirBox) {
  const auto path = ParsePath<T>("M0,0 L9,9 M0,0 L10,0 M5,5 M0,0 L0,100 M0,0 C40,0 40,9 0,9 L0,0Z");
  EXPECT_EQ(test::After(path, 0, Lumo::RemoveSmallSubpaths<T>, 10),
            ParsePath<T>("M0,0 L10,0 M0,0 L0,100 M0,0 C40,0 40,9 0,9 L0,0Z"));
}

LUMO_TYPED_TEST(CurveRepair, MovesHandlesOffTheirNode) {
  CurveRepairSettings settings;
  const auto handles = [&](const char* svg) {
    const auto path = Repaired(ParsePath<T>(svg), settings);
    return std::vector<T>{path.points[1], path.points[2]};
  };
  using V = std::vector<T>;
  EXPECT_EQ(handles("M0,0 C0,0 6000,8000 10000,0"), (V{{24, 32}, {6000, 8000}}));
  EXPECT_EQ(handles("M0,0 C0,0 10000,0 10000,0"), (V{{40, 0}, {9960, 0}}));
  EXPECT_EQ(handles("M0,0 C-20,0 9000,0 10000,0"), (V{{40, 0}, {9000, 0}})) << "behind its node";
  EXPECT_EQ(handles("M0,0 C-2000,0 9000,900 10000,0"), (V{{-2000, 0}, {9000, 900}})) << "a real loop back";
  EXPECT_EQ(handles("M0,0 C8,8 9000,900 10000,0"), (V{{8, 8}, {9000, 900}})) << "short but ahead";
  settings.SetOverlappingHandleOffset(0.1);
  EXPECT_EQ(handles("M0,0 C0,0 6000,8000 10000,0"), (V{{600, 800}, {6000, 8000}}));
  settings.SetFixOverlappingHandles(false);
  EXPECT_EQ(handles("M0,0 C0,0 6000,8000 10000,0"), (V{{0, 0}, {6000, 8000}}));
}

/// The radius of curvature at the start, from the control points.
template <class T>
double StartRadius(const Path<T>& path) {
  const auto at = [&](int k) { return test::AsDouble(path.point(k)); };
  const auto h = at(1) - at(0);
  return 1.5 * std::pow(Length(h), 3) / std::fabs(Cross(h, at(2) - at(1)));
}

LUMO_TYPED_TEST(CurveRepair, EasesTightEnds) {
  const auto path = ParsePath<T>("M0,0 C30,40 9000,-9000 10000,0");
  EXPECT_EQ(Repaired(path), path) << "only when asked for";
  CurveRepairSettings settings;
  settings.SetFixTightEndpointRadius(true);
  settings.SetTightEndpointRadiusLimit(100);
  ASSERT_LT(StartRadius(path), 100);
  const auto eased = Repaired(path, settings);
  EXPECT_GE(StartRadius(eased), 100);
  EXPECT_LE(StartRadius(eased), 105);
  EXPECT_NEAR(static_cast<double>(eased.points[1].x) * 4, static_cast<double>(eased.points[1].y) * 3, 4)
      << "the tangent stays";
  EXPECT_EQ(eased.points[2], path.points[2]);
  settings.SetTightEndpointRadiusLimit(0.1);
  EXPECT_EQ(Repaired(path, settings), path);
}

LUMO_TYPED_TEST(CurveRepair, EasingAHandleMakesNoLoop) {
  // A loop would be split by the next repair, its halves have tight ends of their own, and so on.
  CurveRepairSettings settings;
  settings.SetFixTightEndpointRadius(true);
  settings.SetTightEndpointRadiusLimit(20000);
  settings.SetMinBezierLength(0);
  const auto loops = [](const Path<T>& path) {
    DPoint p[4], at;
    double t0, t1;
    for (int k = 0; k < 4; ++k) p[k] = test::AsDouble(path.point(k));
    return TavMath::CubicBezier::FindBezierSelfIntersection(p, t0, t1, at);
  };
  test::Bits bits(94);
  const test::PathOptions options{.range = 10000};
  int eased = 0;
  for (int k = 0; k < 4000; ++k) {
    Path<T> path;
    for (const int type : {0x04, 0xC0, 0xC0, 0x84})
      path.Add(NODETYPE(static_cast<unsigned char>(type)), test::RandomPoint<T>(bits, options));
    if (loops(path)) continue;
    const Path<T> after = Repaired(path, settings);
    eased += !(after.points == path.points);
    ASSERT_FALSE(loops(after)) << path << " becomes " << after;
  }
  EXPECT_GT(eased, 1000);
}

LUMO_TYPED_TEST(CurveRepair, SplitsBeziersThatOverlapThemselves) {
  CurveRepairSettings settings;
  const auto loop = ParsePath<T>("M0,0 C30000,20000 -20000,20000 10000,0");
  const auto fold = ParsePath<T>("M0,0 C40000,0 -10000,0 20000,0");
  EXPECT_EQ(Repaired(loop, settings), loop);
  settings.SetSplitOverlappingBeziers(true);
  EXPECT_EQ(Repaired(loop, settings).count(), 7);
  const auto unfolded = Repaired(fold, settings);
  EXPECT_EQ(unfolded.count(), 10) << unfolded;
  for (const auto& path : {loop, fold}) {
    const auto before = test::Flatten(path, 64), after = test::Flatten(Repaired(path, settings), 64);
    for (const DPoint& p : before[0].points) EXPECT_LE(test::DistanceTo(after, p), 60) << path;
  }
  const auto arch = ParsePath<T>("M0,0 C0,10000 10000,10000 10000,0");
  EXPECT_EQ(Repaired(arch, settings), arch);
  const auto drop = ParsePath<T>("M0,0 C10000,10000 -10000,10000 0,0Z");
  EXPECT_EQ(Repaired(drop, settings).count(), 4) << "a drop meets itself only in its node";
}

LUMO_TYPED_TEST(CurveRepair, ContinuityFollowsTheHandles) {
  const struct {
    const char *svg, *mended;
    double limit;
  } cases[] = {
      {"M0,0 C0,100 500,900 1000,900 C1500,900 2000,100 2000,0",
       "M0,0 C0,100 500,900 1000,900s C1500,900 2000,100 2000,0", 1},
      {"M0,0 C0,100 500,900 1000,900s C1500,1200 2000,100 2000,0",
       "M0,0 C0,100 500,900 1000,900 C1500,1200 2000,100 2000,0", 1},
      {"M0,0 C0,100 500,900 1000,900s C1500,1200 2000,100 2000,0",
       "M0,0 C0,100 500,900 1000,900s C1500,1200 2000,100 2000,0", 40},
      {"M0,0 C0,100 500,900 1000,900y C1500,900 2000,100 2000,0",
       "M0,0 C0,100 500,900 1000,900y C1500,900 2000,100 2000,0", 1},
      {"M0,0 C0,100 500,900 1000,900y C1700,900 2000,100 2000,0",
       "M0,0 C0,100 500,900 1000,900s C1700,900 2000,100 2000,0", 1},
      {"M0,0s L500,0s L1000,0s", "M0,0 L500,0 L1000,0", 1},  // lines and open ends are cusps
      {"M0,0 L500,0 C900,0 1000,100 1000,500", "M0,0 L500,0s C900,0 1000,100 1000,500", 1},
      {"M0,0 C500,0 500,500 0,500 C-500,500 -500,0 0,0Z",
       "M0,0s C500,0 500,500 0,500s C-500,500 -500,0 0,0sZ", 1},
  };
  for (const auto& c : cases) {
    CurveRepairSettings settings;
    settings.SetSmoothNodeAngleLimit(c.limit);
    auto path = ParsePath<T>(c.svg);
    Lumo::RepairContinuity(LUMO_ARRAYS(path), settings);
    EXPECT_EQ(path, ParsePath<T>(c.mended)) << c.svg;
    EXPECT_EQ(Lumo::RepairContinuity(LUMO_ARRAYS(path), settings), 0);
  }
}

/// Distance from every point of a to the nearest of b.
double Apart(const std::vector<test::Polyline>& a, const std::vector<test::Polyline>& b) {
  double worst = 0;
  for (const auto& line : a)
    for (const DPoint& p : line.points) worst = std::max(worst, test::DistanceTo(b, p));
  return worst;
}

LUMO_TYPED_TEST(CurveRepair, FromAnyBytesGivesAPathAndSettles) {
  test::Bits bits(91);
  test::PathOptions options;
  int changed = 0;
  for (int k = 0; k < 3500; ++k) {
    options.range = k < 3000 ? 2000 : 1000000;
    const auto path =
        bits.OneIn(2) ? test::RandomMalformedPath<T>(bits, 24, options) : test::RandomPath<T>(bits, options);
    auto scrubbed = test::After(path, 0, Lumo::ScrubDanglingMoves<T>, true);
    Lumo::FixNodeTypes(scrubbed.types.data(), scrubbed.types.size());
    for (const auto& settings : {CurveRepairSettings(), AllOn()}) {
      for (const auto& source : {path, scrubbed}) {
        const auto mended = Repaired(source, settings);
        ASSERT_TRUE(test::IsWellFormed(mended)) << source << "\n" << mended;
        ASSERT_TRUE(Lumo::IsValidCurve(mended.types.data(), mended.types.size())) << source << "\n" << mended;
        // What has no defects comes back bit for bit.
        CurveRepairReport again;
        ASSERT_EQ(Repaired(mended, settings, &again), mended) << "from " << source;
        ASSERT_FALSE(again.Any()) << "from " << source;
        changed += !(mended == source);
      }
    }
  }
  EXPECT_GT(changed, 2000);
}

LUMO_TYPED_TEST(CurveRepair, MovesTheOutlineByNoMoreThanTheSettingsAllow) {
  test::Bits bits(93);
  test::PathOptions options{.maxSegments = 12, .range = 60, .loneMoves = false};
  CurveRepairSettings settings;
  settings.SetFixOverlappingHandles(false);
  double worst = 0;
  for (int k = 0; k < 150; ++k) {
    const auto path = test::RandomPath<T>(bits, options);
    const auto before = test::Flatten(path, 24), after = test::Flatten(Repaired(path, settings), 24);
    worst = std::max({worst, Apart(before, after), Apart(after, before)});
    // A short segment moves to the node kept before it, and was as far from where it had been as it is long.
    ASSERT_LE(worst, 20) << path;
  }
  // Handles alone: by less than half of the offset times the chord (their weight is at most 4/9).
  options.range = 100000;
  double share = 0;
  for (int k = 0; k < 60; ++k) {
    const auto path = test::RandomPath<T>(bits, options);
    const auto before = test::Flatten(path, 16), after = test::Flatten(Repaired(path), 64);
    share = std::max(share, Apart(before, after) / 282843.0);
  }
  EXPECT_LE(share, 0.004);
  std::printf("outline moved by at most %.3g units (twice the limit: 20), %.3g of the chord (offset 0.004)\n",
              worst, share);
}

TEST(CurveRepairList, WorksOnSegmentLists) {
  const auto path = ParsePath<DPoint>("M0,0 L100,0 L100,5 L200,5 M9,9");
  Lumo::CSegmentList list(LUMO_ARRAYS(path));
  CurveRepairReport report;
  ASSERT_TRUE(Lumo::RepairCurves(list, {}, &report));
  EXPECT_EQ(report.shortSegments, 1);
  EXPECT_EQ(report.danglingMoves, 1);
  Path<DPoint> left;
  list.AppendTo(left.points, left.types);
  EXPECT_EQ(left, ParsePath<DPoint>("M0,0 L100,0 L200,5"));
}

}  // namespace
