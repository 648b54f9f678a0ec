// Offsetting of one cubic: every answer must come in bounded time, and a result must be made of numbers.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "tav/math/cubic_bezier.h"

using namespace TavMath;

namespace {

void Require(bool truth) {
  if (!truth) std::abort();
}

/// Offsets the piece and, where it has to be split, its parts: so many calls in all, for below rounding no
/// tolerance is ever reached.
void Offset(Cubic piece, double offset, double tolerance, int depth, int& calls) {
  for (int k = 0; k < 64 && calls > 0; ++k, --calls) {
    DPoint out[4];
    double split;
    if (FindBezierOffsetCurve(piece.data(), out, offset, tolerance, split)) {
      for (const DPoint& p : out) Require(std::isfinite(p.x) && std::isfinite(p.y));
      return;
    }
    Require(split == -1.0 || (split > 0 && split < 1));
    if (split == -1.0 || depth == 0) return;
    Cubic left, right;
    CubicBezier::Split(split, piece.data(), left.data(), right.data());
    Offset(left, offset, tolerance, depth - 1, calls);
    piece = right;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  double v[10] = {};
  if (size < sizeof v) return 0;
  std::memcpy(v, data, sizeof v);
  // Half of the inputs as they are, NaN and huge values included; the others folded to the size of drawings.
  if (size > sizeof v && data[sizeof v] % 2 == 0)
    for (double& x : v) x = std::isfinite(x) ? std::fmod(x, 1e6) : 0;
  const Cubic cubic{DPoint{v[0], v[1]}, DPoint{v[2], v[3]}, DPoint{v[4], v[5]}, DPoint{v[6], v[7]}};
  std::vector<Cubic> pieces;
  GetSegmentsToOffset(cubic.data(), pieces, v[8]);
  Require(pieces.size() <= 64);
  int calls = 2000;
  for (const Cubic& piece : pieces) {
    IsBezierValidForOffset(piece.data(), v[8]);
    Offset(piece, v[8], std::abs(v[9]), 4, calls);
  }
  return 0;
}
