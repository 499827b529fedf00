// Complex linear prediction of a FID: forward past the measured end ("LP
// Fill") and backward over damaged first points ("LP Back"), with the values
// of the "Linear Prediction パラメータ" window (NMR1D_Form13).
//
// The p coefficients solve the covariance equations of m rows in the least
// squares sense (normal equations, Gauss-Jordan). Forward, and backward when
// LP_Stability is set, the characteristic polynomial is factored and every
// root outside the unit circle is reflected inside (same angle, modulus
// 1/|r|), so that the extrapolation cannot grow.
#pragma once

#include <complex>
#include <cstdint>
#include <vector>

namespace tevo {
struct Session;
}

namespace tevo::signal {

struct Ft_Form_State;

using Cfloat = std::complex<float>;

// Product of an r x k and a k x c complex matrix, row-major; with
// conjugate_a the first factor is taken as the conjugate transpose of a
// k x r matrix. Sums are formed in double and stored as float.
std::vector<Cfloat> Mat_Multiply(const std::vector<Cfloat>& a, const std::vector<Cfloat>& b,
                                 int32_t r, int32_t k, int32_t c, bool conjugate_a);

// Inverts the n x n complex matrix in place (row-major) by Gauss-Jordan with
// partial pivoting on the largest modulus. Returns false (matrix undefined)
// for n < 1 or a pivot of modulus below 1e-15.
bool Mat_Invert(std::vector<Cfloat>& a, int32_t n);

// Newton's method on the polynomial c[0] z^(n-1) + ... + c[n-1], from
// (x, y), at most `iterations` steps. A step that does not lower |f|^2
// (unless already below 1e-7) is halved; a zero derivative nudges the point
// by 0.001 + 0.001i. On convergence (a step of at most 1e-5 in both parts)
// the root is left in (x, y), c is divided by (z - root) into its first n - 1
// entries, and the number of steps (at least 1) is returned; 0 on failure.
int Find_Root(std::vector<Cfloat>& c, double& x, double& y, int32_t n, int32_t iterations);

// Moves roots outside the unit circle to r / |r|^2; roots on or inside stay.
void Reflect_Roots(std::vector<Cfloat>& roots);

// Forward prediction on row 0: points from - 1 .. to - 1 are predicted from
// the p before each (the first replaces the last measured point), using
// LP_Order, LP_Points and LP_Start. Returns 0, or 1 after "計算出来ません"
// when eleven attempts (each moving the equations one point on) failed.
int LP_Forward(Session& s, int32_t from, int32_t to);

// Backward prediction on row 0: points LP_Back_Points - 1 down to 0 are
// rebuilt from the p after each. Returns 0 or 1 as LP_Forward.
int LP_Backward(Session& s);

// ---- the parameter window: each returns whether the value was taken ----
bool Set_LP_Order(Session& s, int32_t p);  // 20 <= p < 101
bool Set_LP_Points(Session& s, int32_t m);  // m >= LP_Order
bool Set_LP_Start(Session& s, int32_t start);  // 1 .. Base_Point_Count + 1 - p - m
bool Set_LP_Back_Points(Session& s, int32_t b);  // 1 <= b < 31

// ---- the processing window's commands ----

// "LP Fill": doubles N from the work file and predicts the new tail, then
// rebuilds the window and previews; zero fill is disabled afterwards. Does
// nothing beyond 524288 points or without a work file; refuses bad
// parameters with "不正なLP パラメータです". Returns 0 done, 1 refused or
// failed after a message, 2 nothing done.
int LP_Fill(Session& s, Ft_Form_State& st);

// "LP Back": rebuilds the first points in place and previews; N stays.
int LP_Back(Session& s, Ft_Form_State& st);

}  // namespace tevo::signal
