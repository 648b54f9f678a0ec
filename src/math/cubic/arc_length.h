#pragma once
// The arc length of one cubic as an object: what length and inverse length share.
//
// The derivative of a plane cubic, read as a complex quadratic z(t) = c2 (t - r1)(t - r2), has two complex
// roots. The speed |z(t)| is analytic except at r1, r2 and their conjugates, so an n-point Gauss-Legendre
// rule over a piece errs by O(rho^-2n), where rho is the sum of the half axes of the largest ellipse around
// the piece (foci at its ends) that holds no root (L. N. Trefethen, "Is Gauss quadrature better than
// Clenshaw-Curtis?", SIAM Review 50, 2008, theorem 4.5). The roots come from the quadratic formula, so the
// number of nodes is known before the first one is evaluated: no estimate, no second rule to compare with. A
// root on or close to the piece is a cusp or near-cusp; there the piece is split beside the root and graded
// towards it, each part a sixteenth of the last.

#include "math/simd.h"
#include "math/tolerances.h"
#include "tav/math/vector2d.h"

namespace TavMath {

class ArcLength {
 public:
  /// From the derivative c0 + c1 t + c2 t^2.
  ArcLength(const DVector& c0, const DVector& c1, const DVector& c2) noexcept;

  /// A stretch over which one rule was enough, and its length.
  struct Piece {
    double t0, t1, length;
    int rule;  ///< good for any part of the piece too: a shorter stretch has its roots relatively farther
               ///< away
  };
  /// What a whole length was made of, in parameter order.
  struct Pieces {
    static constexpr int kCapacity = Tolerances::kLengthSplits + 1;
    Piece at[kCapacity];
    int count = 0;
  };

  /// The length over [t0, t1], negative when t0 > t1, in units of scale(). With `pieces`, appends what it was
  /// made of.
  double Over(double t0, double t1, Pieces* pieces = nullptr) const noexcept;
  /// The parameter at which the given fraction (strictly between 0 and 1) of the length over [0, 1] is
  /// reached.
  double ParameterAt(double fraction) const noexcept;
  /// The unit of Over, a power of two that keeps squares in range.
  double scale() const { return scale_; }

 private:
  struct Root {
    double x, y;  ///< y >= 0: a root and its conjugate are the same distance away
  };

  void FindRoots();
  /// For each root the half axis, in half widths of the stretch, of the ellipse through it.
  TwoDoubles ReachOf(double t0, double t1) const;
  double OverPiece(double t0, double t1, int& splits, Pieces* pieces) const;
  double SplitPoint(const Root& root, double t0, double t1) const;
  double Gauss(double t0, double t1, int rule) const;
  double NearestRootSqrd(double t) const;
  double Invert(const Piece& piece, double wanted, double tolerance) const;
  double GuessIn(const Piece& piece, double wanted) const;

  DVector c0_, c1_, c2_;
  double scale_ = 1;
  Root root_[2];
};

}  // namespace TavMath
