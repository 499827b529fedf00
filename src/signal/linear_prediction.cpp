#include "signal/linear_prediction.h"

#include <algorithm>
#include <cmath>

#include "platform/ui.h"
#include "session/messages.h"
#include "session/session.h"
#include "signal/fid_processing.h"
#include "signal/fft.h"
#include "signal/window.h"

namespace tevo::signal {

namespace {

using Cdouble = std::complex<double>;

Cdouble Wide(Cfloat v) { return {v.real(), v.imag()}; }
Cfloat Narrow(Cdouble v) { return {static_cast<float>(v.real()), static_cast<float>(v.imag())}; }

// Row 0 of the FID as complex samples, read and written in place.
struct Fid_Row {
  float* re;
  float* im;
  Cfloat at(int32_t i) const { return {re[i], im[i]}; }
  void set(int32_t i, Cdouble v) {
    re[i] = static_cast<float>(v.real());
    im[i] = static_cast<float>(v.imag());
  }
};

Fid_Row Row_Zero(Session& s) { return {s.Fid_Re.Row(0).data(), s.Fid_Im.Row(0).data()}; }

// How one attempt ended.
enum class Attempt { Done, Singular, No_Root };

// Least-squares coefficients a[0 .. p-1] of the m equations
// rhs[i] = sum_j A[i][j] a[j], through the normal equations.
bool Solve_Coefficients(const std::vector<Cfloat>& A, const std::vector<Cfloat>& rhs, int32_t m,
                        int32_t p, std::vector<Cfloat>& a) {
  std::vector<Cfloat> normal = Mat_Multiply(A, A, p, m, p, true);
  if (!Mat_Invert(normal, p)) return false;
  const std::vector<Cfloat> c = Mat_Multiply(A, rhs, p, m, 1, true);
  a = Mat_Multiply(normal, c, p, p, 1, false);
  return true;
}

// Factors the monic polynomial z^p + poly[1] z^(p-1) + ... + poly[p],
// reflects its roots into the unit circle and multiplies it out again.
// Returns false when a root cannot be found.
bool Stabilise(std::vector<Cfloat>& poly, int32_t p) {
  std::vector<Cfloat> roots(static_cast<std::size_t>(p));
  for (int32_t n = p + 1; n >= 2; --n) {
    double x = 0.5, y = 0.5;
    if (Find_Root(poly, x, y, n, 100) == 0) return false;
    // Kept with the opposite sign: the product below multiplies by (z + r).
    roots[static_cast<std::size_t>(n - 2)] = Cfloat(static_cast<float>(-x), static_cast<float>(-y));
  }
  Reflect_Roots(roots);
  poly.assign(static_cast<std::size_t>(p) + 1, Cfloat{});
  poly[0] = 1;
  for (int32_t j = 1; j <= p; ++j)
    for (int32_t i = j; i >= 1; --i)
      poly[static_cast<std::size_t>(i)] =
          Narrow(Wide(poly[static_cast<std::size_t>(i)]) +
                 Wide(poly[static_cast<std::size_t>(i) - 1]) * Wide(roots[static_cast<std::size_t>(j) - 1]));
  return true;
}

// One attempt with the equations starting at offset q. Forward: point t is
// sum_i a'[i] x[t - i]; backward: point k is sum_i a'[i] x[k + i]. On success
// `coef` holds a'[1..p] in coef[0..p-1].
Attempt Attempt_Coefficients(const Fid_Row& x, int32_t p, int32_t m, int32_t q, bool forward,
                             bool stabilise, std::vector<Cfloat>& coef) {
  std::vector<Cfloat> A(static_cast<std::size_t>(m) * p), rhs(static_cast<std::size_t>(m));
  for (int32_t i = 1; i <= m; ++i) {
    for (int32_t j = 1; j <= p; ++j)
      A[static_cast<std::size_t>(i - 1) * p + (j - 1)] = x.at(forward ? i + j + q - 2 : i + j + q - 1);
    rhs[static_cast<std::size_t>(i - 1)] = x.at(forward ? p + q + i - 1 : q + i - 1);
  }
  std::vector<Cfloat> a;
  if (!Solve_Coefficients(A, rhs, m, p, a)) return Attempt::Singular;
  // Forward the equations run oldest first (a[p-1] weighs the newest point),
  // backward nearest first; the polynomial puts the nearest point's weight
  // right after the leading 1 either way.
  std::vector<Cfloat> poly(static_cast<std::size_t>(p) + 1);
  poly[0] = 1;
  for (int32_t i = 1; i <= p; ++i)
    poly[static_cast<std::size_t>(i)] = -a[static_cast<std::size_t>(forward ? p - i : i - 1)];
  if (stabilise && !Stabilise(poly, p)) return Attempt::No_Root;
  coef.resize(static_cast<std::size_t>(p));
  for (int32_t i = 1; i <= p; ++i) coef[static_cast<std::size_t>(i - 1)] = -poly[static_cast<std::size_t>(i)];
  return Attempt::Done;
}

void Show_Failure(Session& s, Attempt why, const char* root_text) {
  Show_Message(s, why == Attempt::Singular ? "計算出来ません(InvGJ)!" : root_text,
               Style_OK + Icon_Exclamation, "Dataエラー");
}

bool Parameters_Refused(Session& s, bool ok) {
  if (ok) return false;
  Show_Message(s, "不正なLP パラメータです", Style_OK + Icon_Exclamation, "LPエラー");
  return true;
}

}  // namespace

std::vector<Cfloat> Mat_Multiply(const std::vector<Cfloat>& a, const std::vector<Cfloat>& b,
                                 int32_t r, int32_t k, int32_t c, bool conjugate_a) {
  std::vector<Cfloat> out(static_cast<std::size_t>(r) * c);
  std::vector<Cdouble> acc(static_cast<std::size_t>(c));
  for (int32_t i = 0; i < r; ++i) {
    std::fill(acc.begin(), acc.end(), Cdouble{});
    for (int32_t t = 0; t < k; ++t) {
      const Cdouble f = conjugate_a ? std::conj(Wide(a[static_cast<std::size_t>(t) * r + i]))
                                    : Wide(a[static_cast<std::size_t>(i) * k + t]);
      const Cfloat* row = b.data() + static_cast<std::size_t>(t) * c;
      for (int32_t j = 0; j < c; ++j) acc[static_cast<std::size_t>(j)] += f * Wide(row[j]);
    }
    for (int32_t j = 0; j < c; ++j)
      out[static_cast<std::size_t>(i) * c + j] = Narrow(acc[static_cast<std::size_t>(j)]);
  }
  return out;
}

bool Mat_Invert(std::vector<Cfloat>& a, int32_t n) {
  if (n < 1) return false;
  auto at = [&](int32_t i, int32_t j) -> Cfloat& { return a[static_cast<std::size_t>(i) * n + j]; };
  if (n == 1) {
    if (std::abs(Wide(at(0, 0))) < 1e-15) return false;
    at(0, 0) = Narrow(1.0 / Wide(at(0, 0)));
    return true;
  }
  std::vector<int32_t> perm(static_cast<std::size_t>(n));
  for (int32_t col = 0; col < n; ++col) {
    int32_t piv = col;
    double best = -1;
    for (int32_t i = col; i < n; ++i) {
      const double m = std::abs(Wide(at(i, col)));
      if (m > best) best = m, piv = i;
    }
    if (best < 1e-15) return false;
    perm[static_cast<std::size_t>(col)] = piv;
    if (piv != col)
      for (int32_t j = 0; j < n; ++j) std::swap(at(col, j), at(piv, j));
    const Cdouble inv = 1.0 / Wide(at(col, col));
    at(col, col) = 1;
    for (int32_t j = 0; j < n; ++j) at(col, j) = Narrow(Wide(at(col, j)) * inv);
    for (int32_t i = 0; i < n; ++i) {
      if (i == col) continue;
      const Cdouble f = Wide(at(i, col));
      if (f == Cdouble{}) continue;
      at(i, col) = 0;
      for (int32_t j = 0; j < n; ++j) at(i, j) = Narrow(Wide(at(i, j)) - f * Wide(at(col, j)));
    }
  }
  // Undo the row swaps as column swaps, last first.
  for (int32_t col = n - 1; col >= 0; --col) {
    const int32_t piv = perm[static_cast<std::size_t>(col)];
    if (piv != col)
      for (int32_t i = 0; i < n; ++i) std::swap(at(i, col), at(i, piv));
  }
  return true;
}

int Find_Root(std::vector<Cfloat>& c, double& x, double& y, int32_t n, int32_t iterations) {
  if (n < 2 || static_cast<int32_t>(c.size()) < n) return 0;
  std::vector<double> A(static_cast<std::size_t>(n) + 1), B(static_cast<std::size_t>(n) + 1);
  double prev_d = 1e20;
  double ox = x, oy = y, sx = 0, sy = 0;
  bool have_step = false;
  int count = 0;
  int halvings = 0;
  for (;;) {
    // 1. Powers z^(k-1) = A[k] + i B[k] by the real recurrence of z.
    const double r2 = x * x + y * y;
    A[1] = 1, B[1] = 0;
    if (n >= 2) A[2] = x, B[2] = y;
    for (int32_t k = 3; k <= n; ++k) {
      A[static_cast<std::size_t>(k)] = 2 * x * A[static_cast<std::size_t>(k - 1)] - r2 * A[static_cast<std::size_t>(k - 2)];
      B[static_cast<std::size_t>(k)] = 2 * x * B[static_cast<std::size_t>(k - 1)] - r2 * B[static_cast<std::size_t>(k - 2)];
    }
    // 2. Value and derivative.
    Cdouble f{}, fd{};
    for (int32_t k = 1; k <= n; ++k) {
      const Cdouble ck = Wide(c[static_cast<std::size_t>(k - 1)]);
      const auto e = static_cast<std::size_t>(n - k + 1);
      f += ck * Cdouble(A[e], B[e]);
      if (k < n) fd += ck * static_cast<double>(n - k) * Cdouble(A[e - 1], B[e - 1]);
    }
    const double d = std::norm(f);
    // 3. No progress: go back half the last step (bounded, so that a flat
    //    spot cannot hold the search for ever).
    if (have_step && d >= prev_d && d >= 1e-7 && halvings < 60) {
      sx *= 0.5, sy *= 0.5;
      x = ox + sx, y = oy + sy;
      ++halvings;
      continue;
    }
    halvings = 0;
    // 4. Flat: nudge and start over.
    if (std::norm(fd) == 0) {
      x += 0.001, y += 0.001;
      prev_d = 1e20;
      have_step = false;
      if (++count > iterations) return 0;
      continue;
    }
    prev_d = d;
    // 5. Newton step.
    const Cdouble step = -f / fd;
    sx = step.real(), sy = step.imag();
    ox = x, oy = y;
    x += sx, y += sy;
    have_step = true;
    // 6. Converged: divide the root out.
    if (std::fabs(sx) <= 1e-5 && std::fabs(sy) <= 1e-5) {
      const Cdouble z(x, y);
      Cdouble acc = Wide(c[0]);
      for (int32_t k = 2; k <= n - 1; ++k) {
        acc = Wide(c[static_cast<std::size_t>(k - 1)]) + z * acc;
        c[static_cast<std::size_t>(k - 1)] = Narrow(acc);
      }
      return count + 1;
    }
    // 7. Limit.
    if (count > iterations) return 0;
    ++count;
  }
}

void Reflect_Roots(std::vector<Cfloat>& roots) {
  for (Cfloat& r : roots) {
    const double m2 = std::norm(Wide(r));
    if (m2 > 1) r = Narrow(Wide(r) / m2);
  }
}

int LP_Forward(Session& s, int32_t from, int32_t to) {
  const int32_t p = s.LP_Order, m = s.LP_Points;
  Fid_Row x = Row_Zero(s);
  std::vector<Cfloat> coef;
  int32_t q = s.LP_Start;
  for (int attempts = 0;;) {
    const Attempt result = Attempt_Coefficients(x, p, m, q, true, true, coef);
    if (result == Attempt::Done) break;
    ++q;
    ++attempts;
    if (m + p + q > s.Fid_Points) q = 1;
    if (attempts > 10) {
      Show_Failure(s, result, "計算出来ません(root)!");
      return 1;
    }
  }
  for (int32_t k = 0; k <= to - from; ++k) {
    const int32_t t = from + k - 1;
    if (t - p < 0) continue;
    Cdouble sum{};
    for (int32_t i = 1; i <= p; ++i) sum += Wide(coef[static_cast<std::size_t>(i - 1)]) * Wide(x.at(t - i));
    x.set(t, sum);
  }
  return 0;
}

int LP_Backward(Session& s) {
  const int32_t p = s.LP_Order, m = s.LP_Points, b = s.LP_Back_Points;
  Fid_Row x = Row_Zero(s);
  std::vector<Cfloat> coef;
  int32_t q = b;
  for (int attempts = 0;;) {
    const Attempt result = Attempt_Coefficients(x, p, m, q, false, s.LP_Stability != 0, coef);
    if (result == Attempt::Done) break;
    ++q;
    ++attempts;
    if (m + p + q >= s.Base_Point_Count || attempts > 10) {
      Show_Failure(s, result, "計算出来ません(Root)!");
      return 1;
    }
  }
  for (int32_t k = b - 1; k >= 0; --k) {
    Cdouble sum{};
    for (int32_t i = 1; i <= p; ++i) sum += Wide(coef[static_cast<std::size_t>(i - 1)]) * Wide(x.at(k + i));
    x.set(k, sum);
  }
  return 0;
}

bool Set_LP_Order(Session& s, int32_t p) {
  if (p < 20 || p >= 101) return false;
  s.LP_Order = p;
  return true;
}

bool Set_LP_Points(Session& s, int32_t m) {
  if (m < 1 || m < s.LP_Order) return false;
  s.LP_Points = m;
  return true;
}

bool Set_LP_Start(Session& s, int32_t start) {
  const int32_t limit = s.Base_Point_Count + 1 - s.LP_Order - s.LP_Points;
  if (start < 1 || start > limit) return false;
  s.LP_Start = start;
  return true;
}

bool Set_LP_Back_Points(Session& s, int32_t b) {
  if (b < 1 || b >= 31) return false;
  s.LP_Back_Points = b;
  return true;
}

int LP_Fill(Session& s, Ft_Form_State& st) {
  const int64_t n = static_cast<int64_t>(s.Base_Point_Count) * 2 * s.LP_Fill_Factor;
  if (n > Fft_Table_Size || !s.Fid_Work_Saved) return 2;
  const int32_t p = s.LP_Order, m = s.LP_Points, q = s.LP_Start;
  if (Parameters_Refused(s, p <= m && p > 0 && m > 0 && q >= 0 && m + p + q - 1 <= s.Fid_Points))
    return 1;
  s.LP_Fill_Factor = static_cast<int16_t>(s.LP_Fill_Factor * 2);
  if (Reload_Fid_Work_File(s, static_cast<int32_t>(n)) != 0) return 1;
  s.ui->Wait_Cursor(true);
  const int status = LP_Forward(s, s.Fid_Points, static_cast<int32_t>(n));
  s.ui->Wait_Cursor(false);
  st.Zero_Fill_Enabled = false;
  Parameters_Changed(s, st);
  return status;
}

int LP_Back(Session& s, Ft_Form_State& st) {
  const int32_t p = s.LP_Order, m = s.LP_Points, b = s.LP_Back_Points;
  if (Parameters_Refused(s, p <= m && p > 0 && m > 0 && b > 0 && b + m + p <= s.Base_Point_Count))
    return 1;
  s.ui->Wait_Cursor(true);
  const int status = LP_Backward(s);
  s.ui->Wait_Cursor(false);
  Run_Preview(s, st);
  return status;
}

}  // namespace tevo::signal
