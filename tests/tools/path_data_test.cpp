#include "path_data.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>

#include "document.h"
#include "input_error.h"
#include "svg_write.h"

namespace {

using tool::DPoint;
using tool::Path;
using tool::PathBuilder;

Path Read(std::string_view d) {
  PathBuilder builder;
  tool::ParsePathData(d, builder);
  return Path(builder.Points().data(), builder.Types().data(), builder.Points().size());
}

std::string Normal(std::string_view d) { return tool::PathData(Read(d), 1, 6); }

TEST(PathData, ReadsEveryCommandAndShorthand) {
  const struct {
    const char* d;
    const char* absolute;
  } cases[] = {
      {"", ""},
      {"none", ""},
      {"M1 2 3 4 5 6", "M1 2L3 4L5 6"},
      {"m1 2 3 4-5-6", "M1 2L4 6L-1 0"},
      {"M.5.25-.5-.25", "M0.5 0.25L-0.5 -0.25"},
      {"M1e1,2E+1 3e-1 1.5e2", "M10 20L0.3 150"},
      {"M0 0h5H3v2V1", "M0 0L5 0L3 0L3 2L3 1"},
      {"M1 1c1 0 2 1 3 1s2-1 3 0", "M1 1C2 1 3 2 4 2C5 2 6 1 7 2"},
      {"M0 0S1 1 2 0", "M0 0C0 0 1 1 2 0"},
      {"M0 0q3 3 6 0t6 0", "M0 0C2 2 4 2 6 0C8 -2 10 -2 12 0"},
      {"M0 0T6 0", "M0 0C0 0 2 0 6 0"},
      {"M0 0L4 0 4 4z", "M0 0L4 0L4 4Z"},
      {"M0 0L4 0 4 4 0 0z", "M0 0L4 0L4 4Z"},
      {"M1 1L4 0zl2 2z", "M1 1L4 0ZM1 1L3 3Z"},
      {"M1 1zzM5 5", "M1 1Z"},
      {"M0 0M5 5L6 6M7 7", "M5 5L6 6"},
      {"M0 0a0 5 0 0 1 3 3", "M0 0L3 3"},
      {"M0 0a5 5 0 0 1 0 0L1 1", "M0 0L1 1"},
      {" \n M\t1 , 2 \r L 3,4 ", "M1 2L3 4"},
  };
  for (const auto& c : cases) EXPECT_EQ(Normal(c.d), c.absolute) << c.d;
}

TEST(PathData, NamesTheCharacterAtWhichItStopsBeingPathData) {
  const struct {
    const char* d;
    const char* message;
  } cases[] = {
      {"L1 2", "character 1: expected a path to begin with M or m, found 'L'"},
      {"M1 2 X", "character 6: expected a path command, found 'X'"},
      {"M1", "character 3: expected a number, found the end"},
      {"M1 2 3,", "character 8: expected a number, found the end"},
      {"M1 2L3 4,,5 6", "character 10: expected a number, found ','"},
      {"M0 0a1 1 0 2 1 3 3", "character 12: expected a flag (0 or 1), found '2'"},
      {"M1e999 0", "character 2: expected a number that doubles can hold, found '1'"},
      {"Minf 0", "character 2: expected a number, found 'i'"},
      {"M- 1", "character 2: expected a number, found '-'"},
      {"M1 2\xff", "character 5: expected a path command, found byte 255"},
  };
  for (const auto& c : cases) {
    try {
      Read(c.d);
      ADD_FAILURE() << c.d << " was read";
    } catch (const tool::InputError& error) {
      EXPECT_STREQ(error.what(), c.message);
    }
  }
}

// Flags may stand without separators, as optimisers write them.
TEST(PathData, ReadsArcFlagsThatTouchTheirNeighbours) {
  EXPECT_EQ(Normal("M0 0a2 2 0 012 2"), Normal("M0 0 A2 2 0 0 1 2 2"));
  EXPECT_EQ(Normal("M0 0a2 2 0 10.5.5"), Normal("M0 0 A2 2 0 1 0 .5 .5"));
}

// Every point of the cubics against the implicit equation of the ellipse, and the sector areas, over arcs of
// all kinds.
TEST(PathData, ArcsKeepToTheirEllipseAndEncloseItsArea) {
  const double radii[][2] = {{5, 5}, {5, 2}, {1, 8}};
  int checked = 0;
  for (const auto& r : radii) {
    for (const double turn : {0.0, 30.0, -75.0}) {
      for (const int flags : {0, 1, 2, 3}) {
        const double phi = turn * std::numbers::pi / 180;
        const DPoint end{0.7, 0.4};
        PathBuilder builder;
        builder.MoveTo({0, 0});
        builder.ArcTo(r[0], r[1], turn, (flags & 1) != 0, (flags & 2) != 0, end);
        const auto& p = builder.Points();
        ASSERT_EQ(p.back(), end);
        // The centre, from the perpendicular in the unit circle's plane.
        const auto unit = [&](DPoint q) {
          return DPoint{(std::cos(phi) * q.x + std::sin(phi) * q.y) / r[0],
                        (std::cos(phi) * q.y - std::sin(phi) * q.x) / r[1]};
        };
        const DPoint a = unit({0, 0}), b = unit(end);
        const double half = TavMath::Distance(a, b) / 2;
        const double side = ((flags & 1) != 0) == ((flags & 2) != 0) ? -1 : 1;
        const TavMath::DVector chord = TavMath::Normalized(b - a);
        const DPoint center = TavMath::Midpoint(a, b) +
                              -side * std::sqrt(1 - half * half) * TavMath::DVector{chord.y, -chord.x};
        double area = 0;
        for (std::size_t i = 1; i + 2 < p.size(); i += 3) {
          DPoint q[4];
          for (std::size_t k = 0; k < 4; ++k) q[k] = unit(p[i - 1 + k]);
          for (double t = 0; t <= 1; t += 0.125) {
            EXPECT_NEAR(TavMath::Distance(TavMath::CubicBezier::Evaluate(q, t), center), 1, 5e-6);
            ++checked;
          }
          // Twice the sector seen from the centre, by Simpson's rule: the integrand has degree five.
          for (int k = 0; k < 64; ++k) {
            const auto f = [&](double t) {
              return TavMath::Cross(TavMath::CubicBezier::Evaluate(q, t) - center,
                                    TavMath::CubicBezier::Derivative(q, t));
            };
            const double t = k / 64.0, step = 1 / 64.0;
            area += step / 6 * (f(t) + 4 * f(t + step / 2) + f(t + step));
          }
        }
        const double small = 2 * std::asin(half);
        const double angle = (flags & 1) != 0 ? 2 * std::numbers::pi - small : small;
        EXPECT_NEAR(area, (flags & 2) != 0 ? angle : -angle, 1e-8);
      }
    }
  }
  EXPECT_GT(checked, 500);
}

TEST(PathData, RadiiThatCannotReachAreScaledUp) {
  const Path path = Read("M0 0A1 1 0 0 1 10 0");
  EXPECT_NEAR(path.GetTightBBox().miny, -5, 1e-5);
}

TEST(PathData, IsWrittenAsItWasRead) {
  for (const char* d :
       {"M0 0L10 0L10 10Z", "M0 0C1 1 2 1 3 0Z", "M1.5 2.25L3 4M5 6C7 8 9 10 11 12", "M1 1Z"}) {
    EXPECT_EQ(Normal(d), d);
    EXPECT_EQ(Read(Normal(d)), Read(d)) << d;
  }
}

}  // namespace
