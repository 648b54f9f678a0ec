// Length, its parts and its inverse, and flattening, of one cubic from bytes.
#include "cubic_bytes.h"
#include "tav/math/cubic_bezier.h"

using namespace TavMath;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  double v[9];
  fuzz::Numbers(data, size, v, 9);
  const DPoint p[4] = {{v[0], v[1]}, {v[2], v[3]}, {v[4], v[5]}, {v[6], v[7]}};
  const double length = CubicBezier::Length(p), t = std::abs(std::fmod(v[8], 1));
  const double inverse = CubicBezier::GetCurveRelativeLengthParameter(p, t);
  DPoint lines[64];
  const int pieces = AdaptiveBezierToLines(p, lines, v[8], 63);
  fuzz::Require(pieces >= 1 && pieces <= 62);
  BezierToLines(p, lines, CalculateNumBezierLines(p, 60));
  if (!fuzz::IsDrawingSized(v, 8)) return 0;

  double chord = Distance(p[0], p[3]), polygon = 0;
  for (int k = 0; k < 3; ++k) polygon += Distance(p[k], p[k + 1]);
  // Subnormal coordinates have fewer digits than the comparisons below need.
  if (polygon <= 1e-280) return 0;
  fuzz::Require(length >= chord * (1 - 1e-9) && length <= polygon * (1 + 1e-9));
  if (!(t >= 0 && t <= 1)) return 0;
  fuzz::Require(inverse >= 0 && inverse <= 1);
  const double to = CubicBezier::LengthTo(p, t), from = CubicBezier::LengthFrom(p, t);
  fuzz::Require(std::abs(to + from - length) <= 1e-9 * length);
  fuzz::Require(std::abs(CubicBezier::LengthTo(p, inverse) - t * length) <= 2e-9 * length);
  return 0;
}
