#include "tav/math/matrix.h"

#include <cmath>

#include "math/simd.h"
#include "math/tolerances.h"
#include "tav/math/rect.h"

namespace TavMath {

namespace {

/// Both coordinates as RoundToInt rounds them: half away from zero, saturating, NaN to 0.
void RoundPair(TwoDoubles v, tagPOINT& out) {
#if defined(__SSE2__)
  const __m128d value = _mm_and_pd(v, _mm_cmpord_pd(v, v));
  const __m128d away = _mm_or_pd(_mm_and_pd(value, _mm_set1_pd(-0.0)), _mm_set1_pd(0.5));
  const __m128d held =
      _mm_max_pd(_mm_min_pd(_mm_add_pd(value, away), _mm_set1_pd(2147483647.0)), _mm_set1_pd(-2147483648.0));
  const __m128i whole = _mm_cvttpd_epi32(held);
  static_assert(sizeof(tagPOINT) == 8);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(&out), whole);
#else
  out.x = RoundToInt(v[0]);
  out.y = RoundToInt(v[1]);
#endif
}

/// The image of (x, y), both coordinates side by side.
struct Map {
  explicit Map(const MATRIX& m) : x{m.a, m.b}, y{m.c, m.d}, origin{m.e, m.f} {}
  TwoDoubles operator()(double px, double py) const { return (Both(px) * x + Both(py) * y) + origin; }
  TwoDoubles x, y, origin;
};

}  // namespace

void MATRIX::TransformPoints(DPoint* points, std::size_t count) const noexcept {
  if (points == nullptr) return;
  // A local copy stays in registers: the points could alias this object.
  const Map map(*this);
  for (std::size_t k = 0; k < count; ++k) {
    const TwoDoubles q = map(points[k].x, points[k].y);
    points[k] = {q[0], q[1]};
  }
}

void MATRIX::TransformPoints(tagPOINT* points, std::size_t count) const noexcept {
  if (points == nullptr) return;
  const Map map(*this);
  for (std::size_t k = 0; k < count; ++k) {
    const TwoDoubles q = map(static_cast<double>(points[k].x), static_cast<double>(points[k].y));
    RoundPair(q, points[k]);
  }
}

bool MATRIX::Invert() noexcept {
  // Brought near size 1 by a power of two, so that small maps are not taken for singular ones.
  const double largest = std::fmax(std::fmax(std::abs(a), std::abs(b)), std::fmax(std::abs(c), std::abs(d)));
  if (!(largest > 0) || !std::isfinite(largest)) return false;
  int exponent;
  std::frexp(largest, &exponent);
  const auto down = [exponent](double v) { return std::ldexp(v, -exponent); };
  const double sa = down(a), sb = down(b), sc = down(c), sd = down(d);
  const double determinant = sa * sd - sb * sc;
  // What remains of two equal products is rounding.
  if (!(std::abs(determinant) > Tolerances::kEpsilon * (std::abs(sa * sd) + std::abs(sb * sc)))) return false;
  MATRIX m;
  m.a = down(sd / determinant);
  m.b = down(-sb / determinant);
  m.c = down(-sc / determinant);
  m.d = down(sa / determinant);
  m.e = -(m.a * e + m.c * f);
  m.f = -(m.b * e + m.d * f);
  if (!std::isfinite(m.a + m.b + m.c + m.d + m.e + m.f)) return false;
  *this = m;
  return true;
}

MATRIX Concatenate(const MATRIX& first, const MATRIX& second) noexcept {
  const DVector x = second.Transform(DVector{first.a, first.b});
  const DVector y = second.Transform(DVector{first.c, first.d});
  return ConstructMatrix(x, y, second.Transform(DPoint{first.e, first.f}));
}

MATRIX ConstructMatrix(const DVector& xAxis, const DVector& yAxis, const DPoint& origin) noexcept {
  return {xAxis.x, xAxis.y, yAxis.x, yAxis.y, origin.x, origin.y};
}

}  // namespace TavMath
