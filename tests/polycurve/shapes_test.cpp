#include "lumo/shapes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "support/curves.h"
#include "support/guarded_array.h"
#include "support/oracles.h"
#include "support/point_types.h"

namespace {

using Lumo::PolycurveT;
using Lumo::RectangleCorner;
using TavMath::DPoint;
constexpr double kPi = std::numbers::pi;

LUMO_TYPED_SUITE(Shapes);

/// What a builder wrote into an array of exactly `room` nodes between guard zones.
template <class T, class Build>
test::Path<T> Built(std::size_t room, Build build) {
  test::GuardedArray<T> points(room);
  test::GuardedArray<NODETYPE> types(room);
  const std::size_t n = build(points.data(), types.data());
  EXPECT_LE(n, room);
  test::Path<T> path;
  for (std::size_t k = 0; k < n && k < room; ++k) path.Add(types[k], points[k]);
  return path;
}

template <class T>
test::Path<T> Ellipse(double rx, double ry, double start, double end, bool pie = false,
                      bool userOnEnd = false) {
  return Built<T>(pie ? 18 : 16, [&](T* points, NODETYPE* types) {
    return Lumo::BuildEllipse(points, types, DPoint{0, 0}, rx, ry, start, end, pie, userOnEnd);
  });
}

template <class T>
test::Path<T> Circle(const auto& center, double radius) {
  return Built<T>(13, [&](T* points, NODETYPE* types) {
    return Lumo::BuildCircle(points, types, center, radius), std::size_t{13};
  });
}

/// The greatest deviation of the curves from the circle, as a share of the radius.
template <class T>
double RadiusError(const test::Path<T>& path, const DPoint& center, double radius, int from = 0) {
  double worst = 0;
  for (int k = from + 3; k < path.count(); ++k) {
    if (!path.type(k).IsCurve()) continue;
    for (int step = 0; step <= 64; ++step) {
      const DPoint p = test::SegmentAt(path, k, step / 64.0);
      worst = std::max(worst, std::abs(std::hypot(p.x - center.x, p.y - center.y) - radius));
    }
  }
  return worst / radius;
}

LUMO_TYPED_TEST(Shapes, NodeTypesOfEllipsesArcsAndWedges) {
  const struct {
    double start, end;
    bool pie, userOnEnd;
    std::vector<int> bytes;
  } cases[] = {
      {0, 0, false, false, {0x2C, 0xC0, 0xC0, 0xA4, 0xC0, 0xC0, 0xA4, 0xC0, 0xC0, 0xA4, 0xC0, 0xC0, 0xA8}},
      {1,
       1,
       false,
       false,
       {0x1C, 0xC0, 0xC0, 0x94, 0xC0, 0xC0, 0xA4, 0xC0, 0xC0, 0xA4, 0xC0, 0xC0, 0x94, 0xC0, 0xC0, 0x98}},
      {0, kPi / 2, false, false, {0x04, 0xC0, 0xC0, 0x84}},
      {0.1, 0.2, false, false, {0x04, 0xC0, 0xC0, 0x84}},
      {0, kPi, false, true, {0x04, 0xC0, 0xC0, 0xA0, 0xC0, 0xC0, 0x84}},
      {0, kPi / 2, true, false, {0x0C, 0x44, 0xC0, 0xC0, 0x84, 0x48}},
      {0, kPi / 2, true, true, {0x08, 0x44, 0xC0, 0xC0, 0x84, 0x48}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Ellipse<T>(1000, 1000, c.start, c.end, c.pie, c.userOnEnd).Bytes(), c.bytes)
        << c.start << " " << c.end;
  }
  EXPECT_EQ(Ellipse<T>(1000, 1000, 1.5 * kPi, kPi / 2).points.size(), 7u) << "an end before the start wraps";
}

LUMO_TYPED_TEST(Shapes, CirclePassesThroughItsFourExtremes) {
  const auto circle = Circle<T>(T{0, 0}, 1);
  const T extremes[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {1, 0}};
  for (std::size_t k = 0; k < 5; ++k) EXPECT_EQ(circle.points[3 * k], extremes[k]);
}

LUMO_TYPED_TEST(Shapes, MembersMakeTheNodesOfTheBuildersForPointsOfBothKinds) {
  using Path = PolycurveT<T>;
  const auto check = [](const char* what, const test::Path<T>& built, const Path& made,
                        const Path& appended) {
    EXPECT_TRUE(test::ToCurve(built) == made) << what;
    EXPECT_TRUE(made == appended) << what;
  };
  Path circle, wedge, line;
  const auto checkAll = [&](const auto& a, const auto& b) {
    EXPECT_TRUE(circle.CreateCircleSubpath(a, 1.25) && line.CreateLineSubpath(a, b));
    EXPECT_TRUE(wedge.CreateEllipseSubpath(a, 30, 20, 1, 2, true, true));
    check("circle", Circle<T>(a, 1.25), Path::CreateCircle(a, 1.25), circle);
    check("wedge",
          Built<T>(18,
                   [&](T* p, NODETYPE* t) { return Lumo::BuildEllipse(p, t, a, 30, 20, 1, 2, true, true); }),
          Path::CreateEllipse(a, 30, 20, 1, 2, true, true), wedge);
    check("line", Built<T>(2, [&](T* p, NODETYPE* t) { return Lumo::BuildLine(p, t, a, b); }),
          Path::CreateLine(a, b), line);
  };
  checkAll(DPoint{0.5, -0.25}, DPoint{10.5, 0.5});
  circle.Clear(), wedge.Clear(), line.Clear();
  checkAll(tagPOINT{3, 4}, tagPOINT{-5, 6});
}

LUMO_TYPED_TEST(Shapes, AnyAnglesStayWithinTheStatedRoomAndNearTheCircle) {
  test::Bits bits(7);
  constexpr double kRadius = 1e6;
  for (int n = 0; n < 4000; ++n) {
    double start = (bits.Unit() - 0.5) * (n % 3 ? 20 : 1e6), end = (bits.Unit() - 0.5) * 40;
    if (n % 8 == 0) end = start;
    if (n % 8 == 1) end = start + 2 * kPi;
    if (n % 8 == 2) end = start - 2 * kPi * bits.Between(1, 5);
    if (n % 8 == 3) end = start + std::ldexp(bits.Unit(), -bits.Below(60));
    if (n % 8 == 4) start = bits.Between(-8, 8) * kPi / 2, end = start + 4 * kPi + 1e-13;
    if (n % 8 == 5) start = bits.Between(-8, 8) * kPi / 2 - 1e-15, end = start + 2 * kPi + 1e-13;
    const bool pie = bits.OneIn(3);
    const auto path = Ellipse<T>(kRadius, kRadius, start, end, pie, bits.OneIn(2));
    ASSERT_GE(path.points.size(), 4u) << start << " " << end;
    EXPECT_LE(RadiusError(path, {0, 0}, kRadius, pie), 2.8e-4) << start << " " << end;
    const T& first = path.points[pie];
    EXPECT_NEAR(first.x, kRadius * std::cos(start), 1e-3 * kRadius * (std::abs(start) > 1e4 ? 1 : 1e-2) + 1);
    if (!pie || !(path.types[0] & NODETYPE::kUser)) continue;
    EXPECT_TRUE(test::IsWellFormed(path));
  }
  const double badStart = 4.094079392473133;  // its sum with two pi exceeds a turn by a rounding
  EXPECT_EQ(Ellipse<T>(10, 10, badStart, badStart).points.size(), 16u);
  EXPECT_EQ(Ellipse<T>(10, 10, 0, 4 * kPi).points.size(), 13u);
  for (const double bad : {std::nan(""), HUGE_VAL}) {
    EXPECT_EQ(Ellipse<T>(10, 10, bad, 1).points.size(), 0u);
    EXPECT_EQ(Ellipse<T>(bad, 10, 0, 1).points.size(), 0u);
  }
}

LUMO_TYPED_TEST(Shapes, ArcsPassThroughTheirPointsOnOneCircle) {
  test::Bits bits(11);
  int arcs = 0;
  for (int n = 0; n < 2000; ++n) {
    const DPoint center{bits.Unit() * 1e6, bits.Unit() * 1e6};
    const double radius = 1e5 * (1 + 9 * bits.Unit()), a = bits.Unit() * 6,
                 turn = (bits.Unit() - 0.5) * 4 * kPi;
    const auto at = [&](double share) {
      return DPoint{std::round(center.x + radius * std::cos(a + share * turn)),
                    std::round(center.y + radius * std::sin(a + share * turn))};
    };
    const DPoint p1 = at(0), p2 = at(0.1 + 0.8 * bits.Unit()), p3 = at(1);
    const auto path = Built<T>(16, [&](T* points, NODETYPE* types) {
      return Lumo::Build3PointCircularArc(points, types, p1, p2, p3);
    });
    if (std::abs(turn) < 0.1 || std::abs(turn) > 6.2) continue;
    ++arcs;
    const auto is = [](const T& p, const DPoint& q) { return p.x == q.x && p.y == q.y; };
    EXPECT_TRUE(is(path.points.front(), p1));
    EXPECT_TRUE(is(path.points.back(), p3));
    EXPECT_TRUE(std::any_of(path.points.begin(), path.points.end(), [&](const T& p) { return is(p, p2); }));
    EXPECT_LE(RadiusError(path, center, radius), 1e-3) << "the points were rounded to whole units";

    const DPoint tangentOfP1{-std::sin(a), std::cos(a)};
    const TavMath::DVector tangent =
        turn > 0 ? TavMath::AsVector(tangentOfP1) : -TavMath::AsVector(tangentOfP1);
    const auto tangential = Built<T>(16, [&](T* points, NODETYPE* types) {
      return Lumo::BuildCircularArc(points, types, p1, p3, tangent);
    });
    EXPECT_TRUE(is(tangential.points.back(), p3));
    EXPECT_LE(RadiusError(tangential, center, radius), 0.02);
  }
  EXPECT_GT(arcs, 1000);
  const auto line = Built<T>(16, [](T* points, NODETYPE* types) {
    return Lumo::Build3PointCircularArc(points, types, T{0, 0}, T{5, 5}, T{10, 10});
  });
  EXPECT_EQ(line.Bytes(), (std::vector<int>{0x04, 0x44})) << "collinear points";
}

TEST(ArcHandles, TakeTheShorterWayAndRefuseWhatHasNone) {
  const DPoint center{10, 20};
  DPoint handles[2];
  ASSERT_TRUE(Lumo::GetArcSegmentHandles(handles, center, {20, 20}, {10, 30}));
  const double k = 4.0 / 3 * std::tan(kPi / 8) * 10;
  EXPECT_NEAR(handles[0].y, 20 + k, 1e-12);
  EXPECT_NEAR(handles[1].x, 10 + k, 1e-12);
  ASSERT_TRUE(Lumo::GetArcSegmentHandles(handles, center, {20, 20}, {10, 10})) << "clockwise is shorter here";
  EXPECT_NEAR(handles[0].y, 20 - k, 1e-12);
  EXPECT_FALSE(Lumo::GetArcSegmentHandles(handles, center, {20, 20}, {0, 20})) << "opposite";
  EXPECT_FALSE(Lumo::GetArcSegmentHandles(handles, center, {20, 20}, {20, 20}));
  EXPECT_FALSE(Lumo::GetArcSegmentHandles(handles, center, center, {20, 20}));
}

LUMO_TYPED_TEST(Shapes, PlainRectangles) {
  const std::vector<int> bytes{0x0C, 0x44, 0x44, 0x44, 0x48};
  const auto sized =
      Built<T>(5, [](T* points, NODETYPE* types) { return Lumo::BuildRectangle(points, types, 10, 20); });
  EXPECT_EQ(sized.Bytes(), bytes);
  EXPECT_EQ(sized.points, (std::vector<T>{{0, 0}, {10, 0}, {10, 20}, {0, 20}, {0, 0}}));
  const Lumo::BoxT<T> rect{1, 2, 3, 4};
  const auto placed =
      Built<T>(5, [&](T* points, NODETYPE* types) { return Lumo::BuildRectangle(points, types, rect); });
  EXPECT_EQ(placed.Bytes(), bytes);
  EXPECT_EQ(placed.points, (std::vector<T>{{1, 2}, {3, 2}, {3, 4}, {1, 4}, {1, 2}}));
  T points[5];
  EXPECT_EQ(Lumo::BuildRectangle(points, rect), 5u);
  EXPECT_EQ(points[2], (T{3, 4}));
  EXPECT_EQ(PolycurveT<T>::CreateRectangle(rect).GetPoint(2), (T{3, 4}));
  const auto otherKinds = [&](const auto& other, const T& corner) {
    EXPECT_EQ(Lumo::BuildRectangle(points, nullptr, other) + Lumo::BuildRectangle(points, other), 10u);
    EXPECT_EQ(points[2], corner);
    PolycurveT<T> path;
    EXPECT_TRUE(path.CreateRectangleSubpath(other) && path == PolycurveT<T>::CreateRectangle(other));
    EXPECT_EQ(path.GetPoint(2), corner);
  };
  otherKinds(tagRECT{-1, -2, 30, 40}, {30, 40});
  const double exact = std::is_same_v<T, DPoint> ? 0.5 : 1;
  otherKinds(TavMath::BoundsT<double>{0.25, 0.25, 6.5, 7.5},
             {static_cast<decltype(T::x)>(6 + exact), static_cast<decltype(T::x)>(7 + exact)});
}

LUMO_TYPED_TEST(Shapes, ShapedCornersKeepToTheRectangleAndItsRoom) {
  test::Bits bits(3);
  for (int n = 0; n < 500; ++n) {
    const double w = bits.Between(1, 100000), h = bits.Between(1, 100000);
    double radius[4];
    RectangleCorner kind[4];
    for (int k = 0; k < 4; ++k) {
      radius[k] = bits.OneIn(3) ? 0 : bits.Below(80000);
      kind[k] = static_cast<RectangleCorner>(bits.Below(3));
    }
    const double sx = bits.OneIn(2) ? 1 : 2 * bits.Unit(), sy = bits.OneIn(2) ? 1 : 2 * bits.Unit();
    const auto path = Built<T>(17, [&](T* points, NODETYPE* types) {
      return Lumo::BuildRectangle(points, types, w, h, radius[0], kind[0], radius[1], kind[1], radius[2],
                                  kind[2], radius[3], kind[3], sx, sy, false);
    });
    EXPECT_TRUE(test::IsWellFormed(path));
    for (const T& p : path.points) EXPECT_TRUE(p.x >= 0 && p.x <= w && p.y >= 0 && p.y <= h);
  }
  const auto bytes = [](RectangleCorner corner) {
    return Built<T>(17,
                    [&](T* points, NODETYPE* types) {
                      return Lumo::BuildRectangle(points, types, 100, 100, 10, corner, false);
                    })
        .Bytes();
  };
  EXPECT_EQ(bytes(RectangleCorner::round),
            (std::vector<int>{0x1C, 0x54, 0xC0, 0xC0, 0x94, 0x54, 0xC0, 0xC0, 0x94, 0x54, 0xC0, 0xC0, 0x94,
                              0x54, 0xC0, 0xC0, 0x98}));
  EXPECT_EQ(bytes(RectangleCorner::chamfer),
            (std::vector<int>{0x0C, 0x44, 0x44, 0x44, 0x44, 0x44, 0x44, 0x44, 0x48}));
  const auto plain = PolycurveT<T>::CreateRectangle(100, 100, 0, RectangleCorner::round, false);
  EXPECT_TRUE(plain == PolycurveT<T>::CreateRectangle(100, 100));
  const auto circle = PolycurveT<T>::CreateRectangle(100, 100, 500, RectangleCorner::round, false);
  EXPECT_EQ(circle.GetPointCount(), 13u) << "sides of no length are left out";
  const double area =
      std::abs(PolycurveT<T>::CreateRectangle(100, 100, 10, RectangleCorner::scallop, false).GetArea());
  EXPECT_NEAR(area, 10000 - kPi * 100, 10);
}

LUMO_TYPED_TEST(Shapes, ArcsContinueAPathFromItsLastPoint) {
  PolycurveT<T> path;
  EXPECT_FALSE(path.CircularArcTo(T{1, 1}, T{2, 0}));
  path.MoveTo(1000, 0);
  EXPECT_TRUE(path.CircularArcTo(T{0, 1000}, T{-1000, 0}));
  EXPECT_TRUE(path.CircularArcTo(T{0, 0}, kPi / 2));
  EXPECT_EQ(path.GetPoint(path.GetPointCount() - 1).y, -1000);
  EXPECT_EQ(path.GetPointCount(), 10u);
  const double length = path.GetLength();
  EXPECT_NEAR(length, 1.5 * kPi * 1000, 2);
}

}  // namespace
