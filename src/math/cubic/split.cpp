#include "math/cubic/blossom.h"
#include "tav/math/cubic_bezier.h"

namespace TavMath::CubicBezier {

void Split(double t, const DPoint source[4], DPoint* left, DPoint* right) noexcept {
  const Weight w(t);
  const DPoint p0 = source[0], p3 = source[3];
  const DPoint a = w(p0, source[1]), b = w(source[1], source[2]), c = w(source[2], p3);
  const DPoint ab = w(a, b), bc = w(b, c), middle = w(ab, bc);
  if (left != nullptr) {
    left[0] = p0;
    left[1] = a;
    left[2] = ab;
    left[3] = middle;
  }
  if (right != nullptr) {
    right[0] = middle;
    right[1] = bc;
    right[2] = c;
    right[3] = p3;
  }
}

void Subsection(double t0, double t1, const DPoint p[4], DPoint out[4]) noexcept {
  const Weight u(t0), v(t1);
  const DPoint q0 = Blossom(p, u, u, u), q1 = Blossom(p, u, u, v);
  const DPoint q2 = Blossom(p, u, v, v), q3 = Blossom(p, v, v, v);
  out[0] = q0;
  out[1] = q1;
  out[2] = q2;
  out[3] = q3;
}

void LeftOf(double t, const DPoint bezier[4], DPoint out[4]) noexcept { Split(t, bezier, out, nullptr); }

void RightOf(double t, const DPoint bezier[4], DPoint out[4]) noexcept { Split(t, bezier, nullptr, out); }

}  // namespace TavMath::CubicBezier
