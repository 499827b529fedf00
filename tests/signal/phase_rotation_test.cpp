// Phase rotation by the sine table and by sin/cos, and the table itself.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <vector>

#include "session/session.h"
#include "signal/phase.h"
#include "signal/sine_table.h"

namespace {

using tevo::signal::Fft_Sine;
using tevo::signal::Rotate_By_Sin_Cos;
using tevo::signal::Rotate_By_Table;

constexpr double kPi = 3.14159265358979323846;

TEST(SineTable, HoldsOneAndAQuarterPeriods) {
  const auto& t = Fft_Sine();
  ASSERT_EQ(t.size(), 655361u);
  const int m = 524288;
  EXPECT_EQ(t[0], 0.0f);
  EXPECT_FLOAT_EQ(t[m / 4], 1.0f);
  EXPECT_NEAR(t[m / 2], 0.0f, 1e-6);
  EXPECT_FLOAT_EQ(t[3 * m / 4], -1.0f);
  EXPECT_FLOAT_EQ(t[5 * m / 4], 1.0f);
  // 30 degrees is 524288 / 12 steps, not an integer: compare at 45 degrees.
  EXPECT_NEAR(t[m / 8], std::sqrt(0.5), 1e-7);
  EXPECT_NEAR(t[m / 8 + m / 4], std::sqrt(0.5), 1e-7);  // cos 45 read M/4 on
}

// Rotating known points: a unit real point by phi lands at (cos phi, sin phi),
// so the multiply is by exp(+i phi); the first-order term turns about the pivot.
TEST(PhaseRotation, TableAndSinCosRotateByZeroAndFirstOrderAboutPivot) {
  const int n = 1024, pivot = 300;
  const float p0 = -37.5f, p1 = 410.0f;
  std::vector<float> re(n), im(n), tr(n), ti(n), er(n), ei(n);
  for (int i = 0; i < n; ++i) {
    const std::complex<double> z = std::polar(1.0 + 0.001 * i, 0.01 * i);
    re[i] = static_cast<float>(z.real());
    im[i] = static_cast<float>(z.imag());
  }
  Rotate_By_Table(re, im, tr, ti, n, p0, p1, pivot);
  Rotate_By_Sin_Cos(re, im, er, ei, n, p0, p1, pivot);
  for (int i = 0; i < n; ++i) {
    const double phi = (p0 + (i - pivot) * static_cast<double>(p1) / n) * kPi / 180.0;
    const std::complex<double> want =
        std::complex<double>(re[i], im[i]) * std::polar(1.0, phi);
    // The table quantises the angle to 360/524288 degrees: about 6e-6 rad.
    const double tol = 2e-5 * std::abs(want) + 1e-6;
    ASSERT_NEAR(tr[i], want.real(), tol) << i;
    ASSERT_NEAR(ti[i], want.imag(), tol) << i;
    ASSERT_NEAR(er[i], want.real(), 1e-6) << i;
    ASSERT_NEAR(ei[i], want.imag(), 1e-6) << i;
  }
  // At the pivot only the zero order acts.
  const std::complex<double> at_pivot(re[pivot], im[pivot]);
  EXPECT_NEAR(std::arg(std::complex<double>(tr[pivot], ti[pivot]) / at_pivot) * 180 / kPi, p0,
              1e-3);

  // Whole turns and negative angles land on the same point as their
  // principal value (the remainder keeps the dividend's sign, then wraps).
  std::vector<float> one{1.0f}, zero{0.0f}, a(1), b(1);
  for (float deg : {90.0f, -270.0f, 450.0f, -630.0f, 3690.0f - 3600.0f}) {
    Rotate_By_Table(one, zero, a, b, 1, deg, 0.0f, 0);
    EXPECT_NEAR(a[0], 0.0f, 1e-6) << deg;
    EXPECT_NEAR(b[0], 1.0f, 1e-6) << deg;
  }
  Rotate_By_Table(one, zero, a, b, 1, -180.0f, 0.0f, 0);
  EXPECT_NEAR(a[0], -1.0f, 1e-6);
  EXPECT_NEAR(b[0], 0.0f, 1e-6);

  // In place gives the same as out of place.
  std::vector<float> ir = re, ii = im;
  Rotate_By_Table(ir, ii, ir, ii, n, p0, p1, pivot);
  EXPECT_EQ(ir, tr);
  EXPECT_EQ(ii, ti);
}

// Session-level appliers: Ft_* to Spec_* of one row, in place on the FID,
// and all rows with the display copy rebuilt.
TEST(PhaseRotation, SessionAppliersTouchTheRightRowsAndArrays) {
  tevo::Session s;
  s.settings.Set("DISP EXTEND MODE", 1);  // display copy point for point
  s.Array_Rows = 2;
  const int n = 64;
  tevo::Alloc_Point_Arrays(s, n);
  s.Spec_Points = n;
  s.Pivot_Pp = 10;
  for (int r = 0; r < 2; ++r)
    for (int i = 0; i < n; ++i) {
      s.Ft_Re(i, r) = 1.0f + r;
      s.Fid_Re(i, r) = 1.0f;
    }
  s.Array_Row = 1;
  tevo::signal::Phase_Preview(s, 90.0f, 0.0f, n);
  EXPECT_NEAR(s.Spec_Im(5, 1), 2.0f, 1e-6);
  EXPECT_EQ(s.Spec_Im(5, 0), 0.0f);  // other row untouched
  EXPECT_EQ(s.Ft_Re(5, 1), 2.0f);  // source untouched

  tevo::signal::Phase_Row(s, 0.0f, 360.0f, n, 0);  // one turn over the width
  EXPECT_NEAR(s.Fid_Re(10, 0), 1.0f, 1e-6);  // pivot keeps its phase
  EXPECT_NEAR(s.Fid_Im(10 + n / 4, 0), 1.0f, 1e-6);  // a quarter width on: +90
  EXPECT_EQ(s.Fid_Im(10, 1), 0.0f);

  tevo::signal::Phase_Apply_Exact(s, 180.0f, 0.0f, n);
  EXPECT_NEAR(s.Spec_Re(0, 0), -1.0f, 1e-6);
  EXPECT_NEAR(s.Spec_Re(0, 1), -2.0f, 1e-6);
  EXPECT_EQ(s.Disp_Points, n);
  EXPECT_NEAR(s.Disp_Y(3, 1), -2.0f, 1e-6);

  // Main window: only the current row unless Phase_Together is set.
  tevo::signal::Phase_Apply_Main(s, 0.0f, 0.0f, n);
  EXPECT_NEAR(s.Disp_Y(3, 1), 2.0f, 1e-6);
  EXPECT_NEAR(s.Disp_Y(3, 0), -1.0f, 1e-6);
  s.Phase_Together = 1;
  tevo::signal::Phase_Apply_Main(s, 0.0f, 0.0f, n);
  EXPECT_NEAR(s.Disp_Y(3, 0), 1.0f, 1e-6);
}

}  // namespace
