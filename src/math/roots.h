#pragma once
// Roots in [0, 1] of polynomials in Bernstein form, on the stack.
//
// A Bernstein polynomial of degree n is given by n + 1 coefficients: f(t) = sum c[k] C(n,k) t^k (1-t)^(n-k).
// Nothing here divides by a leading coefficient, so a cubic that is nearly a quadratic loses no root: the
// far root simply leaves the interval.
//
// Results are sorted and distinct; a multiple root is given once. A polynomial that is zero everywhere, or
// that has a coefficient which is not finite, gives none.

namespace TavMath::Roots {

inline constexpr int kMaxDegree = 12;

/// Roots of a quadratic; closed form. Returns their number, 0 to 2.
int SolveQuadratic(const double c[3], double t[2]) noexcept;
/// Roots of a cubic: one bracketed search between each two neighbouring extrema. 0 to 3.
int SolveCubic(const double c[4], double t[3]) noexcept;
/// Roots of any degree from 1 to kMaxDegree, isolated by the sign changes of the coefficients (Descartes'
/// rule in Bernstein form: J. M. Lane and R. F. Riesenfeld, "Bounds on a polynomial", BIT 21, 1981) under
/// halving.
int Solve(const double* c, int degree, double* t) noexcept;

/// The number of sign changes in the coefficients, zeros left out: an upper bound on the roots in (0, 1),
/// equal to their number when it is 0 or 1.
int SignChanges(const double* c, int degree) noexcept;
/// The one root in [0, 1] of a polynomial with exactly one sign change: Newton steps kept inside a shrinking
/// bracket, halving when a step leaves it.
double SolveBracketed(const double* c, int degree) noexcept;
/// Splits at 1/2; left and right may not overlap c.
void Halve(const double* c, int degree, double* left, double* right) noexcept;
/// The value at t and, in derivative, the slope.
double Evaluate(const double* c, int degree, double t, double& derivative) noexcept;

}  // namespace TavMath::Roots
