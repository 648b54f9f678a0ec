#include <gtest/gtest.h>

#include <cstdlib>

#include "edit/fit.h"
#include "edit/slow_edit.h"
#include "tav/math/cubic_bezier.h"

namespace {

using test::AsDouble;
using test::DPoint;
using test::GuardedPath;
using test::ParsePath;
using test::Path;

LUMO_TYPED_SUITE(Delete);

template <class T>
Path<T> Deleted(const Path<T>& path) {
  GuardedPath<T> g(path);
  const int count = CRV_DeleteEnabled(g.points.data(), g.types.data(), g.count);
  EXPECT_GE(count, 0) << path;
  return g.Copy(count);
}

/// The deletion as a user with patience would do it, one piece at a time.
template <class T>
Path<T> SlowDelete(Path<T> path) {
  const auto type = [&](int i) -> NODETYPE& { return path.type(i); };
  const auto isOn = [&](int i) { return type(i).IsEnabled() && type(i).IsOnCurve(); };
  const auto last = [&](int i) { return CRV_LastNodeOfThisSubpath(path.types.data(), path.count(), i); };
  for (int i = 0; i < path.count(); ++i) {  // ends
    if (!type(i).IsMove() && !(i == last(i) && !type(i).IsClosed())) continue;
    if (type(i).IsMove() && type(i).IsClosed()) {
      const int e = last(i);
      if (!isOn(i) && !isOn(e)) continue;
      int f = i + 1;
      while (f < e && (type(f).IsControl() || isOn(f))) ++f;
      if (f == e) {
        slow::Erase(path, i, e - i + 1);
        --i;
        continue;
      }
      Path<T> turned;
      const auto take = [&](int k, int bits, int kind) {
        turned.Add(static_cast<unsigned char>(kind | bits), path.point(k));
      };
      take(f, (type(f) & 0x31) | 0x0C | (type(i) & 0x02), 0);
      for (int k = f + 1; k < e; ++k) turned.Add(type(k), path.point(k));
      take(e, (type(i) & 0x35) | 1, type(e).Kind());
      for (int k = i + 1; k < f; ++k) turned.Add(type(k), path.point(k));
      take(f, (type(f) & 0x33) | 0x08, type(f).Kind());
      for (int k = i; k <= e; ++k) {
        path.point(k) = turned.point(k - i);
        type(k) = turned.type(k - i);
      }
    } else if (isOn(i) && type(i).IsMove()) {
      const bool isCurve = i + 1 < path.count() && type(i + 1).IsControl();
      slow::Erase(path, i, isCurve ? 3 : 1);
      if (i < path.count() && !type(i).IsMove()) type(i) &= 0x0F;
      --i;
    } else if (isOn(i)) {
      const int n = type(i).IsCurve() ? 3 : 1;
      slow::Erase(path, i + 1 - n, n);
      i -= n;
    }
  }
  const bool doesInner = path.count() > 2;
  for (int k0 = 0; k0 < path.count() && doesInner; ++k0) {  // inner runs
    if (type(k0).IsControl() || isOn(k0) || k0 == last(k0)) continue;
    const int e = last(k0);
    int k1 = k0 + 1, run = 0;
    while (k1 <= e && (type(k1).IsControl() || isOn(k1))) run += isOn(k1++);
    if (run == 0) continue;
    if (k1 > e) {
      slow::Erase(path, k0 + 1, e - k0);
    } else if (k1 - k0 > 2) {
      DPoint cubic[4];
      Lumo::FitCubic(path.points.data(), path.types.data(), k0, k1, cubic);
      slow::Erase(path, k0 + 3, k1 - k0 - 3);
      for (int c = 1; c < 3; ++c) {
        type(k0 + c) = 0xC0;
        path.point(k0 + c) = Lumo::FromDouble<T>(cubic[c]);
      }
      type(k0 + 3).SetKind(NODETYPE::kCurve);
    } else if (type(k0).IsClosed() && type(k1).IsClosed()) {
      slow::Erase(path, k0, 3);
      --k0;
    } else {
      slow::Erase(path, k0 + 1, 1);
    }
  }
  slow::TidyUp(path);
  return path;
}

LUMO_TYPED_TEST(Delete, InOnePassEqualsPieceByPiece) {
  test::Bits bits(71);
  int vanished = 0, shrunk = 0;
  for (int k = 0; k < 6000; ++k) {
    test::PathOptions options;
    if (bits.OneIn(4)) options.maxSubpaths = 1;
    auto path = test::RandomPath<T>(bits, options);
    if (bits.OneIn(2)) path.types[0].Set(NODETYPE::kLetter, false);
    if (bits.OneIn(3))
      for (auto& type : path.types) type.Set(NODETYPE::kEnabled, bits.OneIn(3) || type.IsEnabled());
    const auto fast = Deleted(path);
    ASSERT_EQ(fast, SlowDelete(path)) << path;
    ASSERT_TRUE(test::IsWellFormed(fast)) << path;
    vanished += fast.empty();
    shrunk += fast.count() < path.count();
  }
  EXPECT_GT(vanished, 10);
  EXPECT_GT(shrunk, 3000);
}

LUMO_TYPED_TEST(Delete, Cases) {
  const struct {
    const char *svg, *left;
  } cases[] = {
      {"M0,0 L4,0e L8,0", "M0,0 L8,0"},
      {"M0,0e L4,0s L8,0", "M4,0 L8,0"},
      {"M0,0e C1,0 2,0 4,0s L8,0", "M4,0 L8,0"},  // the first segment goes with its start
      {"M0,0 L4,0 L8,0e", "M0,0 L4,0"},
      {"M0,0 L4,0 C5,0 6,0 8,0e", "M0,0 L4,0"},
      {"M0,0e L4,0e L8,0e", ""},
      {"M0,0 L4,0e L8,0e", "M0,0 L4,0e"},                // two nodes left: inner runs stay
      {"M9,9 L8,8 M0,0 L4,0e L8,0e", "M9,9 L8,8 M0,0"},  // else a run to the end goes, too
      {"M0,0e L4,0 L4,4 L0,0eZ", "M4,0 L4,4 L4,0Z"},     // turned past the deleted corner
      {"M0,0 L4,0 L4,4 L0,0eZ", "M4,0 L4,4 L4,0Z"},      // either closed end stands for both
      {"M0,0e L4,0e L4,4e Z M1,1 L2,2", "M1,1 L2,2"},
      {"M0,0 L4,0e L0,0Z M1,1 L2,2", "M1,1 L2,2"},     // nothing between the closed ends
      {"M0,0 L3,0e L6,0e L9,0", "M0,0 C3,0 6,0 9,0"},  // two in a row: one curve, even of lines
  };
  for (const auto& c : cases) {
    const auto left = Deleted(ParsePath<T>(c.svg));
    if (*c.left == '\0') {
      EXPECT_TRUE(left.empty()) << left;
    } else {
      const auto expected = ParsePath<T>(c.left);
      ASSERT_EQ(left.Bytes(), expected.Bytes()) << c.svg;
      for (std::size_t k = 0; k < left.points.size(); ++k)
        EXPECT_LE(Distance(AsDouble(left.points[k]), AsDouble(expected.points[k])), 1e-12) << c.svg;
    }
  }
  // A closed move node at the end of the path without its other end.
  const Path<T> lone{{{0, 0}, {1, 0}, {2, 0}, {5, 5}}, {0x04, 0x45, 0x44, 0x0D}};
  auto copy = lone;
  WDeleteRunInfo* runs = nullptr;
  int n = -5;
  EXPECT_EQ(CRV_DeleteEnabledEx(copy.points.data(), copy.types.data(), 4, &runs, &n), -1);
  EXPECT_EQ(copy, lone);
  EXPECT_EQ(runs, nullptr);
  EXPECT_EQ(n, 0);
}

LUMO_TYPED_TEST(Delete, TellsWhatItTookOut) {
  const struct {
    const char* svg;
    std::vector<std::vector<int>> runs;  // first, count, before, after, fitted
  } cases[] = {
      {"M0,0 L4,0 L8,0", {}},
      {"M0,0 L4,0e L8,0", {{1, 1, 0, 2, 0}}},
      {"M0,0e C1,0 2,0 4,0 L8,0 L9,0e", {{0, 3, -1, 3, 0}, {5, 1, 4, -1, 0}}},
      {"M0,0 L1,0e L2,0e M0,0 C1,1 2,2 3,3e C4,4 5,5 6,6 L9,9e",
       {{1, 2, 0, -1, 0}, {4, 5, 3, 9, 1}, {10, 1, 9, -1, 0}}},
      {"M0,0e L4,0e L4,4e Z M1,1 L2,2e L3,3", {{0, 4, -1, -1, 0}, {5, 1, 4, 6, 0}}},
      {"M0,0e L4,0 L4,4 L0,4e Z", {{3, 2, 2, 1, 1}}},  // across the closed ends, which count once
  };
  for (const auto& c : cases) {
    auto path = ParsePath<T>(c.svg);
    WDeleteRunInfo* runs = nullptr;
    int n = -1;
    CRV_DeleteEnabledEx(LUMO_ARRAYS(path), &runs, &n);
    std::vector<std::vector<int>> told;
    for (int k = 0; k < n; ++k)
      told.push_back({runs[k].first, runs[k].count, runs[k].before, runs[k].after, runs[k].fitted});
    EXPECT_EQ(told, c.runs) << c.svg;
    EXPECT_EQ(runs == nullptr, c.runs.empty());
    std::free(runs);
    path = ParsePath<T>(c.svg);
    EXPECT_GE(CRV_DeleteEnabledEx<T>(LUMO_ARRAYS(path), nullptr, nullptr), 0);
  }
}

LUMO_TYPED_TEST(Delete, AfterAddGivesTheFormerCubicBack) {
  test::Bits bits(72);
  const bool isInt = std::is_same_v<T, tagPOINT>;
  test::PathOptions options{.maxSubpaths = 1, .maxSegments = 1, .range = 100000};
  options.lines = options.loneMoves = options.closed = options.flags = false;
  double worst = 0;
  int tried = 0;
  for (int k = 0; k < 500; ++k) {
    const auto path = test::RandomPath<T>(bits, options);
    Path<T> more = slow::WithRoom(path, 30);
    int count = path.count();
    const int adds = 1 + bits.Below(4);
    for (int a = 0; a < adds; ++a) {
      const int index = 3 * (1 + bits.Below(count / 3));
      count += CRV_Add(more.points.data(), more.types.data(), count, index, 0.1 + 0.8 * bits.Unit(), 1);
    }
    for (int i = 1; i + 1 < count; ++i) more.type(i) |= 1;
    count = CRV_DeleteEnabled(more.points.data(), more.types.data(), count);
    ASSERT_EQ(count, 4) << path;
    ++tried;
    // Rounded pieces do not tell the handles of a straight cubic, so integer paths are compared as curves.
    const auto left = slow::Cut(more, 4);
    if (isInt) {
      const auto before = test::Flatten(path, 64), after = test::Flatten(left, 512);
      for (const DPoint& p : before[0].points) worst = std::max(worst, test::DistanceTo(after, p));
      ASSERT_LE(worst, 30) << path << " " << left;
    } else {
      for (std::size_t c = 0; c < 4; ++c)
        worst = std::max(worst, Distance(AsDouble(path.points[c]), AsDouble(left.points[c])));
      ASSERT_LE(worst, 1e-6) << path << " " << left;
    }
  }
  std::printf("add and delete: %d cubics of size 1e5, off by at most %.3g\n", tried, worst);
}

TEST(DeleteDouble, GivesBackACubicThatWasSplitThousandsOfTimes) {
  // More pieces than the fit takes samples.
  const DPoint cubic[4] = {{0, 0}, {30000, 90000}, {80000, -20000}, {100000, 10000}};
  constexpr int kPieces = 3000;
  Path<DPoint> path;
  path.Add(NODETYPE(0x04), cubic[0]);
  for (int k = 0; k < kPieces; ++k) {
    DPoint piece[4];
    TavMath::CubicBezier::Subsection(1.0 * k / kPieces, (k + 1.0) / kPieces, cubic, piece);
    for (int c = 1; c < 4; ++c) path.Add(NODETYPE(c < 3 ? 0xC0 : k + 1 < kPieces ? 0x85 : 0x84), piece[c]);
  }
  const Path<DPoint> left = Deleted(path);
  ASSERT_EQ(left.count(), 4);
  for (std::size_t c = 0; c < 4; ++c) EXPECT_LT(Distance(left.points[c], cubic[c]), 1e-3) << c;
}

LUMO_TYPED_TEST(Delete, KeepsTangentsAtTheKeptNodes) {
  test::Bits bits(73);
  test::PathOptions options{.maxSubpaths = 1, .range = 1000000};
  options.lines = options.loneMoves = options.closed = options.degenerate = options.flags = false;
  int tried = 0;
  for (int k = 0; k < 300; ++k) {
    const auto path = test::RandomPath<T>(bits, options);
    if (path.count() < 7) continue;
    auto copy = path;
    for (int i = 3; i + 1 < copy.count(); i += 3) copy.type(i) |= 1;
    ASSERT_EQ(CRV_DeleteEnabled(LUMO_ARRAYS(copy)), 4);
    // Between the handle of an end before, and after.
    const auto angle = [&](int end, int before, std::size_t after) {
      const DPoint o = AsDouble(path.point(end));
      const auto u = AsDouble(path.point(before)) - o, v = AsDouble(copy.points[after]) - o;
      return Length(v) < 1e3 ? 0.0 : std::atan2(std::fabs(Cross(u, v)), Dot(u, v));
    };
    ASSERT_LE(angle(0, 1, 1), 2e-3) << path;
    ASSERT_LE(angle(path.count() - 1, path.count() - 2, 2), 2e-3) << path;
    ++tried;
  }
  EXPECT_GT(tried, 100);
}

/// A smooth stretch: an arc-like spiral of cubics whose middle nodes are deleted one at a time.
TEST(DeleteFit, OfAGentleStretchMissesByLittle) {
  test::Bits bits(74);
  double worst = 0;
  for (int k = 0; k < 400; ++k) {
    // Hermite segments of a curve whose direction turns by up to 45 degrees a segment.
    Path<DPoint> path;
    DPoint at{0, 0};
    double angle = 6.28 * bits.Unit(), length = 0;
    const double bend = (bits.Unit() - 0.5) * 1.5;
    path.Add(0x04, at);
    for (int s = 0; s < 2; ++s) {
      const double step = 1000 * (0.5 + bits.Unit()), turn = bend * (0.5 + bits.Unit());
      const auto dir = [](double a) { return test::DVector{std::cos(a), std::sin(a)}; };
      const DPoint c1 = at + step / 3 * dir(angle), to = at + step * dir(angle + turn / 2);
      path.Add(0xC0, c1);
      path.Add(0xC0, to - step / 3 * dir(angle + turn));
      path.Add(0x94, to);
      at = to;
      angle += turn;
      length += step;
    }
    path.types[3] |= 1;
    const auto left = Deleted(path);
    const auto before = test::Flatten(path, 32), after = test::Flatten(left, 64);
    for (const auto& line : before)
      for (const DPoint& p : line.points) worst = std::max(worst, test::DistanceTo(after, p) / length);
  }
  EXPECT_LE(worst, 0.02);
  std::printf("one node of a stretch that turns by at most 90 degrees: off by at most %.3g of its length\n",
              worst);
}

LUMO_TYPED_TEST(Delete, FitNeverMissesByMoreThanThePlainCurve) {
  test::Bits bits(75);
  const test::PathOptions options{.maxSubpaths = 1, .closed = false, .loneMoves = false, .flags = false};
  for (int k = 0; k < 300; ++k) {
    const auto path = test::RandomPath<T>(bits, options);
    DPoint fit[4];
    const double missed = Lumo::FitCubic(path.points.data(), path.types.data(), 0, path.count() - 1, fit);
    double length = 0;
    for (const auto& line : test::Flatten(path, 16))
      for (std::size_t i = 1; i < line.points.size(); ++i)
        length += Distance(line.points[i - 1], line.points[i]);
    ASSERT_LE(Distance(fit[0], fit[1]), 2.5 * length + 1e-9) << path;
    ASSERT_LE(Distance(fit[2], fit[3]), 2.5 * length + 1e-9) << path;
    ASSERT_TRUE(std::isfinite(missed)) << path;
    ASSERT_LE(std::sqrt(missed), length) << path;
  }
}

}  // namespace
