#pragma once
// Random cubics for property tests and sweeps: log-uniform sizes, a fixed share of degenerate shapes, the
// same numbers on every platform (only raw engine bits are used; the standard distributions differ between
// libraries).

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>

#include "tav/math/cubic_bezier.h"

namespace LumoTest {

using TavMath::Cubic;
using TavMath::DPoint;
using TavMath::DVector;

/// A source of portable random numbers.
class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  std::uint64_t Bits() { return engine_(); }
  /// Uniform in [0, 1).
  double Unit() { return static_cast<double>(engine_() >> 11) * 0x1p-53; }
  double Uniform(double low, double high) { return low + (high - low) * Unit(); }
  /// Uniform in the logarithm; low and high positive.
  double LogUniform(double low, double high) {
    return low * std::exp2(Unit() * (std::log2(high) - std::log2(low)));
  }
  /// 0 .. n - 1.
  int Below(int n) { return static_cast<int>((engine_() >> 33) % static_cast<std::uint64_t>(n)); }
  DPoint Point(double size) {
    const double x = Uniform(-size, size);
    return {x, Uniform(-size, size)};
  }

 private:
  std::mt19937_64 engine_;
};

/// The shapes of RandomCubic. Half of all cubics are `general`; the rest is spread evenly.
enum class CubicShape {
  general,
  allCoincident,
  collinear,  ///< controls on one line, in any order: may turn back on itself
  evenLine,   ///< controls at thirds of a segment
  zeroStart,  ///< first handle of length zero
  zeroEnd,    ///< last handle of length zero
  zeroBoth,   ///< both
  closed,     ///< P3 = P0
  cusp,       ///< the derivative vanishes inside
  nearCusp,   ///< misses a cusp by 1e-1 to 1e-15 of the size
  loop,
  inflected,    ///< S-shaped
  arc,          ///< close to a circular arc of at most a half turn
  tripleStart,  ///< P0 = P1 = P2, or nearly
  nearlyCollinear,
  raisedQuadratic,  ///< leading coefficient zero up to rounding
  count
};

inline const char* NameOf(CubicShape shape) {
  static constexpr const char* kNames[] = {
      "general",         "allCoincident",  "collinear", "evenLine", "zeroStart", "zeroEnd", "zeroBoth",
      "closed",          "cusp",           "nearCusp",  "loop",     "inflected", "arc",     "tripleStart",
      "nearlyCollinear", "raisedQuadratic"};
  return kNames[static_cast<int>(shape)];
}

/// A cubic of the given shape with a size around 1, unmoved.
inline Cubic UnitCubic(Random& random, CubicShape shape) {
  Cubic c{random.Point(1), random.Point(1), random.Point(1), random.Point(1)};
  const double small = random.LogUniform(1e-15, 1e-1);
  switch (shape) {
    case CubicShape::general:
    case CubicShape::count:
      break;
    case CubicShape::allCoincident:
      c[1] = c[2] = c[3] = c[0];
      break;
    case CubicShape::collinear:
    case CubicShape::nearlyCollinear: {
      const DVector along = c[3] - c[0];
      for (int k = 1; k < 3; ++k) c[static_cast<std::size_t>(k)] = c[0] + random.Uniform(-1, 2) * along;
      if (shape == CubicShape::nearlyCollinear) c[1] = c[1] + small * DVector{-along.y, along.x};
      break;
    }
    case CubicShape::evenLine: {
      const DVector along = c[3] - c[0];
      c[1] = c[0] + (1.0 / 3) * along;
      c[2] = c[0] + (2.0 / 3) * along;
      break;
    }
    case CubicShape::zeroStart:
      c[1] = c[0];
      break;
    case CubicShape::zeroEnd:
      c[2] = c[3];
      break;
    case CubicShape::zeroBoth:
      c[1] = c[0], c[2] = c[3];
      break;
    case CubicShape::closed:
      c[3] = c[0];
      break;
    case CubicShape::cusp:
    case CubicShape::nearCusp: {
      // B'(t) = 0 solved for P3: the last leg cancels the others.
      const double t = random.Uniform(0.05, 0.95), s = 1 - t;
      const DVector d0 = c[1] - c[0], d1 = c[2] - c[1];
      c[3] = c[2] - (1 / (t * t)) * (s * s * d0 + 2 * s * t * d1);
      if (shape == CubicShape::nearCusp) c[3] = c[3] + small * (random.Point(1) - DPoint{0, 0});
      break;
    }
    case CubicShape::loop:
      c = {DPoint{0, 0}, DPoint{random.Uniform(1, 3), random.Uniform(0.5, 2)},
           DPoint{random.Uniform(-2, 0), random.Uniform(0.5, 2)}, DPoint{1, random.Uniform(-0.2, 0.2)}};
      break;
    case CubicShape::inflected:
      c = {DPoint{0, 0}, DPoint{random.Uniform(0, 1), random.Uniform(0.1, 1)},
           DPoint{random.Uniform(0, 1), random.Uniform(-1, -0.1)}, DPoint{1, 0}};
      break;
    case CubicShape::arc: {
      const double a = random.Uniform(0, 6.28), sweep = random.Uniform(0.05, 3.1);
      const double f = 4.0 / 3 * std::tan(sweep / 4);
      const DPoint p{std::cos(a), std::sin(a)}, q{std::cos(a + sweep), std::sin(a + sweep)};
      c = {p, DPoint{p.x - f * p.y, p.y + f * p.x}, DPoint{q.x + f * q.y, q.y - f * q.x}, q};
      break;
    }
    case CubicShape::tripleStart:
      c[1] = c[0] + (random.Below(2) * small) * (c[1] - c[0]);
      c[2] = c[0] + (random.Below(2) * small) * (c[2] - c[0]);
      break;
    case CubicShape::raisedQuadratic: {
      const DPoint q = c[1];
      c[1] = c[0] + (2.0 / 3) * (q - c[0]);
      c[2] = c[3] + (2.0 / 3) * (q - c[3]);
      break;
    }
  }
  return c;
}

inline CubicShape RandomShape(Random& random) {
  if (random.Below(2) == 0) return CubicShape::general;
  return static_cast<CubicShape>(1 + random.Below(static_cast<int>(CubicShape::count) - 1));
}

/// A cubic of a random shape, size 1e-9 to 1e9, moved by up to a thousand times its size.
inline Cubic RandomCubic(Random& random, CubicShape* shapeOut = nullptr) {
  const CubicShape shape = RandomShape(random);
  if (shapeOut != nullptr) *shapeOut = shape;
  Cubic c = UnitCubic(random, shape);
  // Half of them at a size that drawings have.
  const double size = random.Below(2) == 0 ? random.LogUniform(1, 1e6) : random.LogUniform(1e-9, 1e9);
  const DVector move =
      random.Below(2) == 0 ? DVector{0, 0} : random.LogUniform(1e-3, 1e3) * (random.Point(1) - DPoint{0, 0});
  for (DPoint& p : c) p = DPoint{size * (p.x + move.x), size * (p.y + move.y)};
  return c;
}

/// The greatest extent of the control polygon.
inline double SizeOf(const Cubic& c) {
  const auto box = [&] {
    TavMath::BoundsT<double> b;
    for (const DPoint& p : c) b.Add(p.x, p.y);
    return b;
  }();
  return (std::fmax)(box.Width(), box.Height());
}

/// The cubic as an SVG path with all digits, for failure messages.
inline std::string ToSvg(const Cubic& c) {
  char text[256];
  std::snprintf(text, sizeof text, "M %.17g %.17g C %.17g %.17g %.17g %.17g %.17g %.17g", c[0].x, c[0].y,
                c[1].x, c[1].y, c[2].x, c[2].y, c[3].x, c[3].y);
  return text;
}

// --- slow, obvious references in extended precision
// ---------------------------------------------------------

struct LPoint {
  long double x, y;
};

inline LPoint EvaluateLong(const Cubic& c, long double t) {
  const long double s = 1 - t;
  const long double w[4] = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
  LPoint p{0, 0};
  for (std::size_t k = 0; k < 4; ++k) {
    p.x += w[k] * c[k].x;
    p.y += w[k] * c[k].y;
  }
  return p;
}

/// B'(t).
inline LPoint DerivativeLong(const Cubic& c, long double t) {
  const long double s = 1 - t;
  const long double w[3] = {3 * s * s, 6 * s * t, 3 * t * t};
  LPoint p{0, 0};
  for (std::size_t k = 0; k < 3; ++k) {
    p.x += w[k] * (static_cast<long double>(c[k + 1].x) - c[k].x);
    p.y += w[k] * (static_cast<long double>(c[k + 1].y) - c[k].y);
  }
  return p;
}

}  // namespace LumoTest
