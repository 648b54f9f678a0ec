// Root finding in Bernstein form.
#include "math/roots.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "support/cubics.h"

namespace {

using namespace LumoTest;
namespace Roots = TavMath::Roots;

/// The Bernstein coefficients of the product of (t - r), in extended precision, scaled to size 1.
std::vector<double> FromRoots(const std::vector<double>& roots) {
  std::vector<long double> c{1};
  for (const double r : roots) {
    const std::size_t n = c.size();  // degree n - 1 becomes n
    std::vector<long double> product(n + 1);
    for (std::size_t k = 0; k <= n; ++k) {
      const long double share = static_cast<long double>(k) / static_cast<long double>(n);
      if (k < n) product[k] += (1 - share) * c[k] * -r;
      if (k > 0) product[k] += share * c[k - 1] * (1 - static_cast<long double>(r));
    }
    c = product;
  }
  long double largest = 0;
  for (const long double v : c) largest = std::max(largest, std::abs(v));
  std::vector<double> scaled;
  for (const long double v : c) scaled.push_back(static_cast<double>(v / largest));
  return scaled;
}

TEST(Roots, WellSeparatedRootsOfAnyDegreeAreAllFound) {
  Random random(51);
  for (int round = 0; round < 4000; ++round) {
    const int degree = 1 + random.Below(8);
    std::vector<double> roots, inside;
    while (static_cast<int>(roots.size()) < degree) {
      const double r = random.Below(3) == 0 ? random.Uniform(-5, 6) : random.Uniform(0.01, 0.99);
      if (std::any_of(roots.begin(), roots.end(), [&](double s) { return std::abs(r - s) < 0.04; })) continue;
      if (std::abs(r) < 0.005 || std::abs(r - 1) < 0.005) continue;
      roots.push_back(r);
      if (r > 0 && r < 1) inside.push_back(r);
    }
    std::sort(inside.begin(), inside.end());
    const std::vector<double> c = FromRoots(roots);
    double t[Roots::kMaxDegree];
    const int count = Roots::Solve(c.data(), degree, t);
    ASSERT_EQ(count, static_cast<int>(inside.size()));
    for (int k = 0; k < count; ++k) EXPECT_NEAR(t[k], inside[static_cast<std::size_t>(k)], 1e-6);
    if (degree == 2) {
      EXPECT_EQ(Roots::SolveQuadratic(c.data(), t), count);
    } else if (degree == 3) {
      EXPECT_EQ(Roots::SolveCubic(c.data(), t), count);
      for (int k = 0; k < count; ++k) EXPECT_NEAR(t[k], inside[static_cast<std::size_t>(k)], 1e-12);
    }
  }
}

TEST(Roots, ALeadingCoefficientThatVanishesLosesNone) {
  // 3 t - 1 raised to higher degrees, with a t^n coefficient from 1 down to the rounding and beyond.
  for (double leading = 1; leading > 1e-20; leading *= 0.3) {
    const double quadratic[3] = {-1, 0.5, 2 + leading};
    double t[3];
    ASSERT_EQ(Roots::SolveQuadratic(quadratic, t), 1) << leading;
    EXPECT_NEAR(quadratic[0] + t[0] * 3 + leading * t[0] * t[0], 0, 1e-15);
    const double cubic[4] = {-1, 0, 1, 2 + leading};
    ASSERT_EQ(Roots::SolveCubic(cubic, t), 1) << leading;
    EXPECT_NEAR(-1 + 3 * t[0] + leading * t[0] * t[0] * t[0], 0, 1e-15);
  }
}

TEST(Roots, EndsAndMultipleRootsCountOnce) {
  double t[Roots::kMaxDegree];
  const double ends[4] = {0, 1, -1, 0};  // roots 0, 1/2, 1
  ASSERT_EQ(Roots::SolveCubic(ends, t), 3);
  EXPECT_EQ(t[0], 0);
  EXPECT_EQ(t[1], 0.5);
  EXPECT_EQ(t[2], 1);
  const double touch[3] = {1, -1, 1};  // (1 - 2t)^2
  ASSERT_EQ(Roots::SolveQuadratic(touch, t), 1);
  EXPECT_EQ(t[0], 0.5);
  const std::vector<double> twice = FromRoots({0.3, 0.3, 0.8});
  ASSERT_EQ(Roots::SolveCubic(twice.data(), t), 2);
  EXPECT_NEAR(t[0], 0.3, 1e-7);
  EXPECT_NEAR(t[1], 0.8, 1e-14);
  const std::vector<double> five = FromRoots({0.6, 0.6, 0.6, 0.6, 0.6});
  ASSERT_EQ(Roots::Solve(five.data(), 5, t), 1);
  EXPECT_NEAR(t[0], 0.6, 1e-3);
}

TEST(Roots, NothingComesOfNothing) {
  double t[Roots::kMaxDegree];
  const double zero[4] = {0, 0, 0, 0}, bad[4] = {1, std::nan(""), -1, 2}, infinite[4] = {1, HUGE_VAL, -1, 2};
  EXPECT_EQ(Roots::SolveCubic(zero, t), 0);
  EXPECT_EQ(Roots::SolveQuadratic(zero, t), 0);
  EXPECT_EQ(Roots::Solve(bad, 3, t), 0);
  EXPECT_EQ(Roots::Solve(infinite, 3, t), 0);
  EXPECT_EQ(Roots::Solve(zero, 0, t), 0);
  EXPECT_EQ(Roots::Solve(zero, Roots::kMaxDegree + 1, t), 0);
  const double huge[3] = {-1e300, 1e300, 1.5e300}, tiny[3] = {-1e-300, 1e-300, 1.5e-300};
  EXPECT_EQ(Roots::SolveQuadratic(huge, t), 1);
  EXPECT_EQ(Roots::SolveQuadratic(tiny, t), 1);
}

}  // namespace
