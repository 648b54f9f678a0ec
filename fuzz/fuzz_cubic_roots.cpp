// What rests on the root finder: extrema, box, tangents, curvature and its extrema of one cubic from bytes.
#include "cubic_bytes.h"
#include "tav/math/cubic_bezier.h"

using namespace TavMath;

namespace {

void RequireSortedInside(const double* t, int count, int most) {
  fuzz::Require(count >= 0 && count <= most);
  for (int k = 0; k < count; ++k) fuzz::Require(t[k] > 0 && t[k] < 1 && (k == 0 || t[k - 1] < t[k]));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  double v[9];
  fuzz::Numbers(data, size, v, 9);
  const DPoint p[4] = {{v[0], v[1]}, {v[2], v[3]}, {v[4], v[5]}, {v[6], v[7]}};
  double t[6];
  RequireSortedInside(t, CubicBezier::GetHorizontalTangents(p, t), 2);
  RequireSortedInside(t, CubicBezier::GetVerticalTangents(p, t), 2);
  RequireSortedInside(t, CubicBezier::FindCurvatureMinMax(p, t), 6);
  const double at = std::abs(std::fmod(v[8], 1));
  CubicBezier::SafeBezierCurvature(at, p);
  CubicBezier::GetCurvatureRadiusAt(at, p);
  CubicBezier::GetAreaUnderBezier(p);
  const DVector tangent = CubicBezier::SafeBezierTangent(at, p);
  const BoundsT<double> box = CubicBezier::GetTightBox(p);
  if (!fuzz::IsDrawingSized(v, 8)) return 0;
  const bool isPoint = p[0] == p[1] && p[1] == p[2] && p[2] == p[3];
  if (at >= 0 && at <= 1)
    fuzz::Require((tangent.x != 0 || tangent.y != 0) || isPoint || Distance(p[0], p[3]) < 1e-290);
  double reach = 0;
  for (int k = 0; k < 8; ++k) reach = std::fmax(reach, std::abs(v[k]));
  for (int k = 0; k <= 64; ++k) {
    const DPoint q = CubicBezier::Evaluate(p, k / 64.0);
    const double few = 4e-15 * reach + 1e-320;  // denormal numbers round by their own step
    fuzz::Require(q.x >= box.minx - few && q.x <= box.maxx + few && q.y >= box.miny - few &&
                  q.y <= box.maxy + few);
  }
  return 0;
}
