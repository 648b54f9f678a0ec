#include "math/roots.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "math/tolerances.h"

namespace TavMath::Roots {
namespace {

/// The largest magnitude; NaN or infinity when a coefficient is not finite.
double Magnitude(const double* c, int degree) {
  double sum = 0, largest = 0;
  for (int k = 0; k <= degree; ++k) {
    sum += std::abs(c[k]);
    largest = std::max(largest, std::abs(c[k]));
  }
  return std::isfinite(sum) ? largest : sum;
}

/// x y - z w without cancellation in the products: Dekker's exact product (T. J. Dekker, "A floating-point
/// technique for extending the available precision", Numerische Mathematik 18, 1971), so that two nearly
/// equal roots keep the digits that the coefficients determine.
double DifferenceOfProducts(double x, double y, double z, double w) {
  const double p = x * y, q = z * w, difference = p - q;
  if (std::abs(difference) * 3 >= std::abs(p) + std::abs(q)) return difference;
  const auto tail = [](double a, double b, double product) {
    constexpr double kSplitter = 134217729;  // 2^27 + 1
    const double as = a * kSplitter, bs = b * kSplitter;
    const double ah = as - (as - a), bh = bs - (bs - b), al = a - ah, bl = b - bh;
    return ((ah * bh - product) + ah * bl + al * bh) + al * bl;
  };
  return difference + (tail(x, y, p) - tail(z, w, q));
}

/// Roots collected in rising order; a root that equals the last one is not added again.
struct Sink {
  double* t;
  int count = 0;
  void Add(double root) {
    if (count == 0 || root > t[count - 1]) t[count++] = root;
  }
};

/// De Casteljau's rows as values: for the degrees that matter they live in registers, where the rows in
/// memory of the general loops wait for each other's stores.
template <std::size_t N>
std::array<double, N> LoadRow(const double* c) {
  std::array<double, N> row;
  std::copy(c, c + N, row.begin());
  return row;
}

template <std::size_t N, std::size_t... K>
std::array<double, N - 1> Sums(const std::array<double, N>& r, std::index_sequence<K...>) {
  return {(r[K] + r[K + 1])...};
}

template <std::size_t N, std::size_t... K>
std::array<double, N - 1> Blend(const std::array<double, N>& r, double t, std::index_sequence<K...>) {
  return {(r[K] + t * (r[K + 1] - r[K]))...};
}

/// Writes the ends of this row, times the power of 1/2 that its sums stand for, and goes on to the next.
template <std::size_t N>
void HalveRow(const std::array<double, N>& row, double* left, double* right, double factor) {
  *left = row[0] * factor;
  *right = row[N - 1] * factor;
  if constexpr (N > 1)
    HalveRow(Sums(row, std::make_index_sequence<N - 1>{}), left + 1, right - 1, 0.5 * factor);
}

template <std::size_t N>
double EvaluateRow(const std::array<double, N>& row, int degree, double t, double& derivative) {
  if constexpr (N > 2) {
    return EvaluateRow(Blend(row, t, std::make_index_sequence<N - 1>{}), degree, t, derivative);
  } else {
    derivative = degree * (row[1] - row[0]);
    return t <= 0.5 ? row[0] + t * (row[1] - row[0]) : row[1] - (1 - t) * (row[1] - row[0]);
  }
}

}  // namespace

int SignChanges(const double* c, int degree) noexcept {
  int changes = 0;
  double last = 0;
  for (int k = 0; k <= degree; ++k) {
    if (c[k] == 0) continue;
    changes += (last < 0 && c[k] > 0) || (last > 0 && c[k] < 0);
    last = c[k];
  }
  return changes;
}

void Halve(const double* c, int degree, double* left, double* right) noexcept {
  if (degree == 3) return HalveRow(LoadRow<4>(c), left, right + 3, 1.0);
  if (degree == 5) return HalveRow(LoadRow<6>(c), left, right + 5, 1.0);
  double row[kMaxDegree + 1];
  for (int k = 0; k <= degree; ++k) row[k] = c[k];
  for (int level = 0; level <= degree; ++level) {
    left[level] = row[0];
    right[degree - level] = row[degree - level];
    for (int k = 0; k < degree - level; ++k) row[k] = 0.5 * (row[k] + row[k + 1]);
  }
}

double Evaluate(const double* c, int degree, double t, double& derivative) noexcept {
  if (degree == 0) return derivative = 0, c[0];
  if (degree == 3) return EvaluateRow(LoadRow<4>(c), degree, t, derivative);
  if (degree == 5) return EvaluateRow(LoadRow<6>(c), degree, t, derivative);
  double row[kMaxDegree + 1];
  for (int k = 0; k <= degree; ++k) row[k] = c[k];
  for (int n = degree; n > 1; --n) {
    for (int k = 0; k < n; ++k) row[k] += t * (row[k + 1] - row[k]);
  }
  return EvaluateRow(std::array{row[0], row[1]}, degree, t, derivative);
}

double SolveBracketed(const double* c, int degree) noexcept {
  int first = 0;
  while (first <= degree && c[first] == 0) ++first;
  const bool rising = first <= degree && c[first] < 0;
  double low = 0, high = 1;
  double t = 0.5;
  if ((c[0] < 0) != (c[degree] < 0)) {
    t = c[0] / (c[0] - c[degree]);
    if (!(t > 0 && t < 1)) t = 0.5;
  }
  for (int step = 0; step < Tolerances::kMaxRootSteps; ++step) {
    double slope;
    const double value = Evaluate(c, degree, t, slope);
    if (value == 0) return t;
    ((value < 0) == rising ? low : high) = t;
    double next = t - value / slope;
    if (!(next > low && next < high)) {
      // A last step that rounds to a bracket end has converged there; a long one may land on it by chance.
      if ((next == low || next == high) && std::abs(next - t) <= Tolerances::kEpsilon) return next;
      next = 0.5 * (low + high);
      if (next <= low || next >= high) return t;
    }
    if (std::abs(next - t) <= 0.5 * Tolerances::kEpsilon * next) return next;
    // Newton may creep from one side: now and then half of what is left is cut off.
    if (step % 8 == 7) next = 0.5 * (low + high);
    t = next;
  }
  return t;
}

int SolveQuadratic(const double c[3], double t[2]) noexcept {
  const double scale = Magnitude(c, 2);
  if (!(scale > 0) || !std::isfinite(scale)) return 0;
  const double c0 = c[0] / scale, c1 = c[1] / scale, c2 = c[2] / scale;
  double discriminant = DifferenceOfProducts(c1, c1, c0, c2);
  if (discriminant < 0) {
    if (discriminant < -Tolerances::kRootNoise * Tolerances::kEpsilon) return 0;
    discriminant = 0;  // touches zero within rounding
  }
  // (c0 - 2 c1 + c2) t^2 + 2 (c1 - c0) t + c0 = 0, the root of greater magnitude first, the other from the
  // product of the roots: no cancellation, and no root lost when the quadratic term vanishes.
  const double half = c0 - c1, root = std::sqrt(discriminant);
  const double q = half < 0 ? half - root : half + root;
  const double a = (c0 - c1) + (c2 - c1);
  double r0 = a != 0 ? q / a : -1, r1 = q != 0 ? c0 / q : (c0 == 0 ? 0.0 : -1);
  if (r1 < r0) std::swap(r0, r1);
  Sink sink{t};
  for (const double r : {r0, r1}) {
    if (r >= 0 && r <= 1) sink.Add(r);
  }
  return sink.count;
}

int SolveCubic(const double c[4], double t[3]) noexcept {
  const double scale = Magnitude(c, 3);
  if (!(scale > 0) || !std::isfinite(scale)) return 0;
  const int changes = SignChanges(c, 3);
  Sink sink{t};
  if (changes == 0) {
    if (c[0] == 0) sink.Add(0);
    if (c[3] == 0) sink.Add(1);
    if (sink.count != 0) return sink.count;
  }
  return Solve(c, 3, t);
}

namespace {

struct Piece {
  double c[kMaxDegree + 1];
  double start, width;
  int depth;
};

}  // namespace

int Solve(const double* c, int degree, double* t) noexcept {
  if (degree < 1 || degree > kMaxDegree) return 0;
  const double scale = Magnitude(c, degree);
  if (!(scale > 0) || !std::isfinite(scale)) return 0;
  Sink sink{t};
  double clusterEnd = -1;
  // Depth first, left before right: at most one waiting right half for each depth.
  Piece stack[Tolerances::kMaxRootDepth + 2];
  int top = 0;
  // Brought to size 1, so that nothing below vanishes into denormal numbers.
  const double unit = std::ldexp(1.0, -std::clamp(std::ilogb(scale), -1000, 1000));
  for (int k = 0; k <= degree; ++k) stack[0].c[k] = c[k] * unit;
  stack[0].start = 0;
  stack[0].width = 1;
  stack[0].depth = 0;
  while (top >= 0) {
    const Piece piece = stack[top--];
    if (sink.count >= degree) break;
    if (piece.c[0] == 0 && piece.start != clusterEnd) sink.Add(piece.start);
    const int changes = SignChanges(piece.c, degree);
    const bool noise = Magnitude(piece.c, degree) <= Tolerances::kRootNoise * (scale * unit);
    if (noise || (changes > 1 && piece.depth >= Tolerances::kMaxRootDepth)) {
      if (piece.start != clusterEnd) sink.Add(piece.start + 0.5 * piece.width);
      clusterEnd = piece.start + piece.width;
      continue;
    }
    if (changes == 1) sink.Add(piece.start + piece.width * SolveBracketed(piece.c, degree));
    if (changes > 1) {
      const double half = 0.5 * piece.width;
      Piece& right = stack[top + 1];
      Piece& left = stack[top + 2];
      top += 2;
      Halve(piece.c, degree, left.c, right.c);
      left.start = piece.start;
      right.start = piece.start + half;
      left.width = right.width = half;
      left.depth = right.depth = piece.depth + 1;
      continue;
    }
    if (piece.c[degree] == 0 && piece.start + piece.width == 1) sink.Add(1);
  }
  return sink.count;
}

}  // namespace TavMath::Roots
