#pragma once
// Slow, obvious references for one cubic in extended precision.

#include <algorithm>
#include <cmath>
#include <complex>
#include <vector>

#include "cubics.h"

namespace LumoTest {

/// The positive nodes of the Gauss-Legendre rule of 16 points, and their weights.
inline constexpr long double kGaussNodes[8] = {
    0.095012509837637440185L, 0.281603550779258913230L, 0.458016777657227386342L, 0.617876244402643748447L,
    0.755404408355003033895L, 0.865631202387831743880L, 0.944575023073232576078L, 0.989400934991649932596L};
inline constexpr long double kGaussWeights[8] = {
    0.189450610455068496285L, 0.182603415044923588867L, 0.169156519395002538189L, 0.149595988816576732082L,
    0.124628971255533872052L, 0.095158511682492784810L, 0.062253523938647892863L, 0.027152459411754094852L};

/// The arc length over [t0, t1], to about 1e-14: 16-point Gauss-Legendre under halving, after cutting at and
/// geometrically around every place where the speed nearly vanishes. (Halving alone is not a reference: a
/// cusp just beside a dyadic parameter lies in the gap between the last node and the end of every piece, and
/// all rules then agree on the wrong value.)
class LengthOracle {
 public:
  explicit LengthOracle(const Cubic& c) {
    for (std::size_t k = 0; k < 3; ++k) {
      d_[k] = Complex(static_cast<long double>(c[k + 1].x) - c[k].x,
                      static_cast<long double>(c[k + 1].y) - c[k].y) *
              3.0L;
    }
    a_ = d_[0] - 2.0L * d_[1] + d_[2];
    b_ = 2.0L * (d_[1] - d_[0]);
  }

  long double Over(long double t0, long double t1) const {
    std::vector<long double> cuts{t0, t1};
    const auto cut = [&](long double t) {
      if (t > t0 && t < t1) cuts.push_back(t);
    };
    Complex root = std::sqrt(b_ * b_ - 4.0L * a_ * d_[0]);
    if (std::real(std::conj(b_) * root) < 0) root = -root;
    const Complex q = -0.5L * (b_ + root);
    for (const Complex z : {q / a_, d_[0] / q}) {
      cut(z.real());
      long double step = 0.5L;
      for (int k = 0; k < 22; ++k, step *= 0.25L) cut(z.real() - step), cut(z.real() + step);
    }
    std::sort(cuts.begin(), cuts.end());
    const long double tolerance = Gauss(t0, t1) * 1e-15L;
    long double sum = 0;
    for (std::size_t k = 1; k < cuts.size(); ++k) {
      sum += Halve(cuts[k - 1], cuts[k], Gauss(cuts[k - 1], cuts[k]), tolerance, 30);
    }
    return sum;
  }

 private:
  using Complex = std::complex<long double>;

  long double Gauss(long double t0, long double t1) const {
    const long double middle = 0.5L * (t0 + t1), half = 0.5L * (t1 - t0);
    long double sum = 0;
    for (int k = 0; k < 8; ++k)
      sum +=
          kGaussWeights[k] * (Speed(middle - half * kGaussNodes[k]) + Speed(middle + half * kGaussNodes[k]));
    return half * sum;
  }
  long double Speed(long double t) const {
    const long double x = d_[0].real() + t * (b_.real() + t * a_.real());
    const long double y = d_[0].imag() + t * (b_.imag() + t * a_.imag());
    return std::sqrt(x * x + y * y);
  }
  long double Halve(long double t0, long double t1, long double whole, long double tolerance,
                    int depth) const {
    const long double middle = 0.5L * (t0 + t1), left = Gauss(t0, middle), right = Gauss(middle, t1);
    if (depth == 0 || std::abs(left + right - whole) <= tolerance) return left + right;
    return Halve(t0, middle, left, tolerance, depth - 1) + Halve(middle, t1, right, tolerance, depth - 1);
  }

  Complex d_[3], a_, b_;
};

}  // namespace LumoTest
