// Millions of random cubics, the degenerate shapes among them, against slow references: what the tests check
// on thousands. Prints every curve that fails as a line for tests/corpus/cubics.txt, then the worst errors.
//
//   sweep_cubic length|closest|flatten [count] [first seed]

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "support/cubic_oracles.h"

namespace {

using namespace LumoTest;
using namespace TavMath;
using namespace TavMath::CubicBezier;

constexpr int kShapes = static_cast<int>(CubicShape::count);

/// The worst error of each shape, and the curves that fail.
class Record {
 public:
  explicit Record(double promised) : promised_(promised) {}

  void Add(CubicShape shape, const char* what, double error, const Cubic& c, double argument) {
    double& worst = worst_[static_cast<std::size_t>(shape)];
    if (!(error <= worst)) worst = error;
    if (error <= promised_) return;
    ++failures_;
    std::printf("%s %s, error %.3g at %.17g:", NameOf(shape), what, error, argument);
    for (const DPoint& p : c) std::printf(" %.17g %.17g", p.x, p.y);
    std::printf("\n");
    std::fflush(stdout);
  }

  int Print() const {
    for (int k = 0; k < kShapes; ++k)
      std::printf("  %-16s worst %.3g\n", NameOf(static_cast<CubicShape>(k)),
                  worst_[static_cast<std::size_t>(k)]);
    std::printf("  %ld failures\n", failures_);
    return failures_ > 0 ? 1 : 0;
  }

 private:
  double promised_;
  std::array<double, kShapes> worst_{};
  long failures_ = 0;
};

/// Arc length in extended precision, cheap enough for millions: 16 nodes on each piece of a partition that
/// shrinks by quarters towards the real part of each root of the speed, down to a quarter of its imaginary
/// part. An ellipse three times as wide as each piece holds no root, so each errs by about 1e-15.
class GradedLength {
 public:
  explicit GradedLength(const Cubic& c) {
    for (std::size_t k = 0; k < 3; ++k) {
      d_[k] = {static_cast<long double>(c[k + 1].x) - c[k].x, static_cast<long double>(c[k + 1].y) - c[k].y};
      d_[k] *= 3.0L;
    }
    a_ = d_[0] - 2.0L * d_[1] + d_[2];
    b_ = 2.0L * (d_[1] - d_[0]);
    Complex root = std::sqrt(b_ * b_ - 4.0L * a_ * d_[0]);
    if (std::real(std::conj(b_) * root) < 0) root = -root;
    const Complex q = -0.5L * (b_ + root);
    for (const Complex z : {q / a_, d_[0] / q}) {
      if (!std::isfinite(z.real()) || !std::isfinite(z.imag())) continue;
      cuts_.push_back(z.real());
      for (long double step = 64; step > 1e-16L && step > 0.2L * std::abs(z.imag()); step *= 0.25L) {
        cuts_.push_back(z.real() - step);
        cuts_.push_back(z.real() + step);
      }
    }
    std::sort(cuts_.begin(), cuts_.end());
  }

  long double Over(long double t0, long double t1) const {
    long double sum = 0, from = t0;
    for (const long double t : cuts_) {
      if (!(t > from)) continue;
      if (t >= t1) break;
      sum += Gauss(from, t);
      from = t;
    }
    return sum + Gauss(from, t1);
  }

 private:
  using Complex = std::complex<long double>;

  long double Gauss(long double t0, long double t1) const {
    const long double middle = 0.5L * (t0 + t1), half = 0.5L * (t1 - t0);
    const auto speed = [&](long double t) {
      const long double x = d_[0].real() + t * (b_.real() + t * a_.real());
      const long double y = d_[0].imag() + t * (b_.imag() + t * a_.imag());
      return std::sqrt(x * x + y * y);
    };
    long double sum = 0;
    for (int k = 0; k < 8; ++k)
      sum +=
          kGaussWeights[k] * (speed(middle - half * kGaussNodes[k]) + speed(middle + half * kGaussNodes[k]));
    return half * sum;
  }

  Complex d_[3], a_, b_;
  std::vector<long double> cuts_;
};

void SweepLength(Random& random, Record& record) {
  CubicShape shape;
  const Cubic c = RandomCubic(random, &shape);
  const GradedLength graded(c);
  const double f = random.Below(4) == 0 ? random.LogUniform(1e-9, 1e-2) : random.Unit();
  const double length = Length(c.data()), t = GetCurveRelativeLengthParameter(c.data(), f);
  long double whole = graded.Over(0, 1);
  if (!(whole > 0)) return;
  double error = static_cast<double>(std::abs(length - whole) / whole);
  double inverse = static_cast<double>(std::abs(graded.Over(0, t) / whole - f));
  if (!(error <= 5e-10 && inverse <= 5e-10)) {  // by the slower reference
    const LengthOracle oracle(c);
    whole = oracle.Over(0, 1);
    error = static_cast<double>(std::abs(length - whole) / whole);
    inverse = static_cast<double>(std::abs(oracle.Over(0, t) / whole - f));
  }
  record.Add(shape, "length", error, c, f);
  record.Add(shape, "inverse length", inverse, c, f);
}

/// The least distance at 32,768 parameters, by branch and bound: a cell is dropped when its middle is farther
/// than the best by more than the curve can travel in half of it.
double LeastDistance(const Cubic& c, const DPoint& q) {
  double speed = 0, best = HUGE_VAL;
  for (std::size_t k = 0; k < 3; ++k) speed = std::max(speed, 3 * Distance(c[k], c[k + 1]));
  const auto cells = [&](auto&& self, double from, double to, int count, int depth) -> void {
    double at[64];
    const double width = (to - from) / count;
    for (int k = 0; k < count; ++k) {
      at[k] = Distance(Evaluate(c.data(), from + (k + 0.5) * width), q);
      best = std::min(best, at[k]);
    }
    for (int k = 0; k < count; ++k) {
      const double radius = 0.5 * speed * width;
      if (depth > 0 && at[k] - radius < best)
        self(self, from + k * width, from + (k + 1) * width, 8, depth - 1);
    }
  };
  best = std::min(Distance(c[0], q), Distance(c[3], q));
  cells(cells, 0, 1, 64, 3);
  return best;
}

DPoint RandomQuery(Random& random, const Cubic& c, double size) {
  const double t = random.Unit();
  const DPoint at = Evaluate(c.data(), t);
  switch (random.Below(5)) {
    case 0:
      return at;
    case 1:
      return at + size * random.LogUniform(1e-9, 1) * (random.Point(1) - DPoint{0, 0});
    case 2: {  // the centre of curvature: a minimum of higher order
      const DVector d = SafeBezierTangent(t, c.data());
      const double radius = GetCurvatureRadiusAt(t, c.data()), l = TavMath::Length(d);
      if (l > 0 && std::abs(radius) < 100 * size) return at + (radius / l) * DVector{-d.y, d.x};
      return at;
    }
    case 3:
      return at + size * random.LogUniform(1, 1e6) * (random.Point(1) - DPoint{0, 0});
    default:
      return at + 2 * size * (random.Point(1) - DPoint{0, 0});
  }
}

void SweepClosest(Random& random, Record& record) {
  CubicShape shape;
  const Cubic c = RandomCubic(random, &shape);
  const double size = SizeOf(c);
  const DPoint query = RandomQuery(random, c, size);
  double t = -1, distanceSqrd = -1;
  DPoint foot{};
  FindClosestPointOnBezier(c.data(), query, t, foot, distanceSqrd);
  if (!(size > 0)) return;
  const double best = LeastDistance(c, query);
  // Far from the curve and from the origin, distances themselves round.
  double ulp = 0;
  for (const DPoint& p : c) ulp = std::max({ulp, std::abs(p.x), std::abs(p.y)});
  ulp = 8 * 2.2e-16 * std::max({ulp, best, std::abs(query.x), std::abs(query.y)});
  record.Add(shape, "closest point", std::max(0.0, std::sqrt(distanceSqrd) - best - ulp) / size, c, query.x);
  record.Add(shape, "foot", std::max(0.0, Distance(Evaluate(c.data(), t), query) - best - ulp) / size, c,
             query.y);
}

void SweepFlatten(Random& random, Record& record) {
  static DPoint lines[2048];
  CubicShape shape;
  const Cubic c = RandomCubic(random, &shape);
  const double size = SizeOf(c), tolerance = size * random.LogUniform(1e-5, 0.3);
  const int pieces = AdaptiveBezierToLines(c.data(), lines, tolerance * tolerance, 2048);
  if (!(size > 0)) return;
  double ulp = 0;
  for (const DPoint& p : c) ulp = std::max({ulp, std::abs(p.x), std::abs(p.y)});
  // Each sample against the few chords about the one that the last sample was nearest to.
  const auto distance = [&](const DPoint& p, int j) {
    const DVector e = lines[j + 1] - lines[j];
    const double l = LengthSqrd(e);
    const double s = l > 0 ? std::clamp(Dot(p - lines[j], e) / l, 0.0, 1.0) : 0;
    return Distance(p, lines[j] + s * e);
  };
  const int samples = std::min(400, 40 + 12 * pieces);
  const double allowed = tolerance * (1 + 1e-9) + 8 * 2.2e-16 * ulp;
  double worst = 0;
  for (int k = 1, near = 0; k < samples; ++k) {
    const DPoint p = Evaluate(c.data(), static_cast<double>(k) / samples);
    double best = distance(p, near);
    for (int j = near + 1; j < std::min(near + 4, pieces); ++j) {
      const double d = distance(p, j);
      if (d < best) best = d, near = j;
    }
    if (best > allowed) {
      for (int j = 0; j < pieces; ++j) best = std::min(best, distance(p, j));
    }
    worst = std::max(worst, best);
  }
  record.Add(shape, "flattening", worst / allowed, c, tolerance);
}

}  // namespace

int main(int argc, char** argv) {
  const char* kind = argc > 1 ? argv[1] : "";
  const long count = argc > 2 ? std::atol(argv[2]) : 1000000;
  const long seed = argc > 3 ? std::atol(argv[3]) : 1;
  void (*check)(Random&, Record&) = nullptr;
  double promised = 1e-9;
  if (std::strcmp(kind, "length") == 0) check = SweepLength;
  if (std::strcmp(kind, "closest") == 0) check = SweepClosest;
  if (std::strcmp(kind, "flatten") == 0) check = SweepFlatten, promised = 1;
  if (check == nullptr || count < 1) {
    std::fprintf(stderr, "usage: sweep_cubic length|closest|flatten [count] [first seed]\n");
    return 2;
  }
  Record record(promised);
  Random random(static_cast<std::uint64_t>(seed));
  for (long k = 0; k < count; ++k) check(random, record);
  std::printf("%s, %ld random cubics, seed %ld\n", kind, count, seed);
  return record.Print();
}
