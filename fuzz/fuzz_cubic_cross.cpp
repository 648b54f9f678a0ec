// Two cubics from bytes: crossings with each other, with lines and with themselves. Whatever the numbers,
// results stay in range and order, and (for numbers of drawing size) every contact reported is one.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "tav/math/cubic_bezier.h"

namespace {

using namespace TavMath;
using CubicBezier::Crossings;

void Require(bool condition) {
  if (!condition) std::abort();
}

bool IsDrawingSized(const DPoint* p, int n) {
  for (int k = 0; k < n; ++k) {
    if (!(std::abs(p[k].x) < 1e12 && std::abs(p[k].y) < 1e12)) return false;
  }
  return true;
}

void Check(const DPoint a[4], const DPoint b[4], const Crossings& found) {
  Require(found.count >= 0 && found.count <= static_cast<int>(found.at.size()));
  double size = 0;
  for (int k = 0; k < 4; ++k) {
    for (const DPoint* p : {&a[k], &b[k]}) {
      size = std::fmax(size, std::fmax(std::abs(p->x - a[0].x), std::abs(p->y - a[0].y)));
    }
  }
  const double reach = std::fmax(std::abs(a[0].x), std::abs(a[0].y)) * 1e-14;
  for (std::size_t k = 0; k < static_cast<std::size_t>(found.count); ++k) {
    const auto& c = found.at[k];
    Require(c.ta >= 0 && c.ta <= 1 && c.tb >= 0 && c.tb <= 1);
    Require(k == 0 || found.at[k - 1].ta <= c.ta);
    if (!IsDrawingSized(a, 4) || !IsDrawingSized(b, 4)) continue;
    const double gap = Distance(CubicBezier::Evaluate(a, c.ta), CubicBezier::Evaluate(b, c.tb));
    Require(gap <= (found.overlap ? 1e-5 : 1e-12) * size + reach + 1e-300);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  DPoint p[8]{};
  if (size == 0) return 0;
  const bool small = (data[0] & 1) != 0;  // small integers hit coincidences that doubles never do
  ++data, --size;
  if (small) {
    for (std::size_t k = 0; k < 16 && k < size; ++k) {
      (k % 2 == 0 ? p[k / 2].x : p[k / 2].y) = static_cast<std::int8_t>(data[k]) / 8;
    }
  } else {
    std::memcpy(p, data, size < sizeof p ? size : sizeof p);
  }
  const DPoint *a = p, *b = p + 4;
  const Crossings found = CubicBezier::IntersectBeziers(a, b);
  Check(a, b, found);
  const Crossings swapped = CubicBezier::IntersectBeziers(b, a);
  Require(swapped.count == found.count);
  Require(CubicBezier::DoBeziersIntersect(a, b) == (found.count > 0));
  for (const bool infinite : {false, true}) {
    const Crossings line = CubicBezier::IntersectBezierLine(a, b[0], b[3], infinite);
    Require(line.count >= 0 && line.count <= 9);
    for (std::size_t k = 0; k < static_cast<std::size_t>(line.count); ++k) {
      Require(line.at[k].ta >= 0 && line.at[k].ta <= 1);
      Require(infinite || (line.at[k].tb >= 0 && line.at[k].tb <= 1));
    }
  }
  double t0 = 0, t1 = 0;
  DPoint point{};
  if (CubicBezier::FindBezierSelfIntersection(a, t0, t1, point)) Require(t0 >= 0 && t0 < t1 && t1 <= 1);
  return 0;
}
