#include "math/cubic/cubic_pair.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace TavMath {
namespace {

bool AllFinite(const DPoint a[4], const DPoint b[4]) {
  double sum = 0;
  for (int k = 0; k < 4; ++k)
    sum += (a[k].x - a[k].x) + (a[k].y - a[k].y) + (b[k].x - b[k].x) + (b[k].y - b[k].y);
  return sum == 0;
}

BoundsT<double> BoxOf(const DPoint p[4]) {
  BoundsT<double> box;
  for (int k = 0; k < 4; ++k) box.Add(p[k].x, p[k].y);
  return box;
}

/// The power of two that brings twice the length to between a half and one, as far as exponents reach; 1 for
/// no length.
double ScaleFor(double half) {
  if (!(half > 0)) return 1;
  const int biased = static_cast<int>(std::bit_cast<std::uint64_t>(half) >> 52);  // 0 when subnormal
  const int scale = std::clamp(2044 - biased, 1, 2045);
  return std::bit_cast<double>(static_cast<std::uint64_t>(scale) << 52);
}

}  // namespace

bool MakeCubicPair(const DPoint a[4], const DPoint b[4], CubicPair& pair, BoxRule rule) noexcept {
  const BoundsT<double> boxA = BoxOf(a), boxB = BoxOf(b);
  if (rule == BoxRule::mustOverlap && !boxA.Overlaps(boxB)) return false;
  if (!AllFinite(a, b)) return false;
  const double left = std::max(boxA.minx, boxB.minx), right = std::min(boxA.maxx, boxB.maxx);
  const double low = std::max(boxA.miny, boxB.miny), high = std::min(boxA.maxy, boxB.maxy);
  pair.documentA = a;
  pair.documentB = b;
  pair.origin = {0.5 * left + 0.5 * right, 0.5 * low + 0.5 * high};
  // Halves, so that the extent of the largest finite coordinates does not overflow.
  const double width = 0.5 * std::max(boxA.maxx, boxB.maxx) - 0.5 * std::min(boxA.minx, boxB.minx);
  const double height = 0.5 * std::max(boxA.maxy, boxB.maxy) - 0.5 * std::min(boxA.miny, boxB.miny);
  const double half = std::max(width, height);
  pair.scale = ScaleFor(half);
  for (int k = 0; k < 4; ++k) {
    // Scaled before the difference, which is exact either way and cannot overflow.
    pair.a[k] = {a[k].x * pair.scale - pair.origin.x * pair.scale,
                 a[k].y * pair.scale - pair.origin.y * pair.scale};
    pair.b[k] = {b[k].x * pair.scale - pair.origin.x * pair.scale,
                 b[k].y * pair.scale - pair.origin.y * pair.scale};
  }
  return true;
}

DPoint ContactPoint(const CubicPair& pair, double ta, double tb) noexcept {
  if (ta == 0) return pair.documentA[0];
  if (ta == 1) return pair.documentA[3];
  if (tb == 0) return pair.documentB[0];
  if (tb == 1) return pair.documentB[3];
  DVector unused;
  return pair.ToDocument(EvaluateBoth(pair.a, ta, unused));
}

}  // namespace TavMath
