// Nearest points of one cubic from bytes: never farther than a sample.
#include "cubic_bytes.h"
#include "tav/math/cubic_bezier.h"

using namespace TavMath;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  double v[10];
  fuzz::Numbers(data, size, v, 10);
  const DPoint p[4] = {{v[0], v[1]}, {v[2], v[3]}, {v[4], v[5]}, {v[6], v[7]}}, query{v[8], v[9]};
  double t = -1, distanceSqrd = -1;
  DPoint foot{0, 0};
  const bool found = CubicBezier::FindClosestPointOnBezier(p, query, t, foot, distanceSqrd);
  const auto all = CubicBezier::FindClosestPointsOnBezier(p, query);
  CubicBezier::GetSide(p, query);
  bool finite = true;
  double reach = 0;
  for (const double x : v) {
    finite = finite && std::isfinite(x);
    reach = std::fmax(reach, std::abs(x));
  }
  fuzz::Require(found == finite && (all.count > 0) == finite);
  if (!found || !fuzz::IsDrawingSized(v, 10)) return 0;
  fuzz::Require(t >= 0 && t <= 1 && all.count <= 6);
  const double rounding = 1e-11 * reach + 1e-318;  // of the size; denormal numbers round by their own step
  for (int k = 0; k <= 64; ++k) {
    const double distance = Distance(CubicBezier::Evaluate(p, k / 64.0), query);
    fuzz::Require(Distance(foot, query) <= distance * (1 + 1e-9) + rounding);
  }
  return 0;
}
