// The transform against an independent DFT, the axis convention (zero
// frequency at N/2 - 1), lines of known frequency and width, and the window.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <random>
#include <vector>

#include "session/session.h"
#include "signal/fft.h"
#include "signal/window.h"
#include "synthetic.h"

namespace tevo::signal {
namespace {

using Cx = std::complex<double>;
constexpr double kPi = 3.14159265358979323846;

// Index of the largest magnitude of Ft row 0.
int32_t Peak_Of(const Session& s) {
  int32_t best = 0;
  double top = -1;
  for (int32_t i = 0; i < s.Spec_Points; ++i) {
    const double m = std::hypot(s.Ft_Re(i), s.Ft_Im(i));
    if (m > top) top = m, best = i;
  }
  return best;
}

// Full width at half height of the real part around a peak, by linear
// interpolation between points, in points; the baseline is read far away.
double Width_At_Half(const Session& s, int32_t peak) {
  const double base = s.Ft_Re(static_cast<std::size_t>((peak + s.Spec_Points / 4) % s.Spec_Points));
  const double half = base + (s.Ft_Re(peak) - base) / 2;
  auto cross = [&](int dir) {
    int32_t i = peak;
    while (s.Ft_Re(i + dir) > half) i += dir;
    const double a = s.Ft_Re(i), b = s.Ft_Re(i + dir);
    return i + dir * (a - half) / (a - b);
  };
  return cross(+1) - cross(-1);
}

TEST(Transform, MatchesDirectDftWithConjugateAndCentring) {
  const float* T = Fft_Sine().data();
  ASSERT_EQ(Fft_Sine().size(), 655361u);
  EXPECT_EQ(T[0], 0.0f);
  EXPECT_FLOAT_EQ(T[131072], 1.0f);  // sin(pi/2), the cosine of 0
  EXPECT_NEAR(T[655360], 1.0f, 1e-7);  // one and a quarter periods

  for (int32_t n : {1, 2, 8, 64, 1024}) {
    std::mt19937 gen(n);
    std::uniform_real_distribution<float> u(-1, 1);
    std::vector<float> xr(n), xi(n), w(n, 1.0f), re(n), im(n);
    for (int32_t i = 0; i < n; ++i) xr[i] = u(gen), xi[i] = u(gen);
    Spectrum_Transform(xr.data(), xi.data(), w.data(), re.data(), im.data(), n, 0);
    // Output i is bin (i + n/2 + 1) mod n of the plain DFT of the conjugate.
    for (int32_t i = 0; i < n; ++i) {
      const int32_t k = (i + n / 2 + 1) % n;
      Cx sum{};
      for (int32_t t = 0; t < n; ++t)
        sum += Cx(xr[t], -xi[t]) * std::polar(1.0, -2 * kPi * k * t / n);
      EXPECT_NEAR(re[i], sum.real(), 2e-5 * n) << "n " << n << " i " << i;
      EXPECT_NEAR(im[i], sum.imag(), 2e-5 * n) << "n " << n << " i " << i;
    }
  }
}

TEST(Transform, ConstantFidPeaksAtHalfMinusOne) {
  Session s;
  test::Fill_Fid(s, 4096, 4096, 1000, 400, {{0.0, 1.0, 1e9}});
  ASSERT_EQ(Build_Window(s), 0);  // default trapezoid: W[0] = 0 even here
  EXPECT_EQ(s.Window_Func[0], 0.0f);
  const float top = FT_Preview(s, 0);
  EXPECT_EQ(Peak_Of(s), 4096 / 2 - 1);
  // The peak is the plain sum of the window weights (no scaling), and the
  // preview's plot maximum is that magnitude.
  double sum = 0;
  for (float v : s.Window_Func) sum += v;
  EXPECT_NEAR(s.Ft_Re(2047), sum, 1e-3 * sum);
  EXPECT_NEAR(top, sum, 1e-3 * sum);
  // The FID row is left as it was by the preview.
  EXPECT_EQ(s.Fid_Re(0), 1.0f);
}

TEST(Transform, LinesLandAtTheirFrequencyWithTheWindowsWidth) {
  // Sweep 4000 Hz over 16384 points: 0.244 Hz per point. Lines at +500 Hz
  // and -1250 Hz (whole points away from the centre), T2 0.5 s: natural
  // width 1 / (pi T2) = 0.637 Hz; the exponential window adds LB Hz.
  const int32_t n = 16384;
  const double sw = 4000, t2 = 0.5;
  Session s;
  test::Fill_Fid(s, n, n, sw, 400, {{500, 1.0, t2}, {-1250, 0.5, t2}});
  for (double lb : {0.5, 2.0}) {
    s.Line_Broadening = static_cast<float>(lb);
    ASSERT_EQ(Build_Window(s), 0);
    FT_Preview(s, 0);
    const int32_t p1 = n / 2 - 1 + static_cast<int32_t>(500 * n / sw);
    const int32_t p2 = n / 2 - 1 - static_cast<int32_t>(1250 * n / sw);
    EXPECT_EQ(Peak_Of(s), p1);
    // Both lines are in absorption in the real part, heights 2 : 1.
    EXPECT_GT(s.Ft_Re(p1), 0);
    EXPECT_NEAR(s.Ft_Re(p2) / s.Ft_Re(p1), 0.5, 0.01);
    const double expected_hz = 1 / (kPi * t2) + lb;
    for (int32_t p : {p1, p2})
      EXPECT_NEAR(Width_At_Half(s, p) * sw / n, expected_hz, 0.03 * expected_hz) << "lb " << lb;
  }
}

TEST(Window, KindsBoundsAndTrapezoid) {
  Session s;
  test::Fill_Fid(s, 1024, 1000, 1000, 400, {});

  // Exponential with the default trapezoid 0, 0, 80, 100: W[0] = 0, then
  // exp(-LB pi i / SW), falling linearly to 0 from 80 % to 100 % of L.
  s.Line_Broadening = 5;
  ASSERT_EQ(Build_Window(s), 0);
  EXPECT_EQ(s.Window_Func[0], 0.0f);
  EXPECT_NEAR(s.Window_Func[1], std::exp(-5 * kPi / 1000), 1e-6);
  EXPECT_NEAR(s.Window_Func[900], std::exp(-5 * kPi * 900 / 1000) * 0.5, 1e-6);
  EXPECT_EQ(s.Window_Func[1000], 0.0f);
  EXPECT_EQ(s.Window_Func[1023], 0.0f);

  // Half sine bell ending at twice the FID length: still rising at the end.
  s.Trap_T3 = 100;
  s.Window_Kind = 1;
  s.Window_End = 200;
  ASSERT_EQ(Build_Window(s), 0);
  EXPECT_NEAR(s.Window_Func[500], std::sin(kPi / 4), 1e-6);
  EXPECT_NEAR(s.Window_Func[999], std::sin(999.0 / 2000 * kPi), 1e-6);
  EXPECT_GT(s.Window_Func[999], s.Window_Func[998]);
  EXPECT_EQ(s.Window_Func[1000], 0.0f);

  // A sine bell that starts inside the FID is not clipped: before its start
  // the weights are negative.
  s.Window_Start = 20;
  s.Window_End = 100;
  ASSERT_EQ(Build_Window(s), 0);
  EXPECT_LT(s.Window_Func[100], 0.0f);
  EXPECT_NEAR(s.Window_Func[100], std::sin((100 - 200) / 800.0 * kPi), 1e-6);

  // Squared sine and Gaussian.
  s.Window_Start = 0;
  s.Window_Kind = 2;
  ASSERT_EQ(Build_Window(s), 0);
  EXPECT_NEAR(s.Window_Func[250], 0.5, 1e-6);
  s.Window_Kind = 3;
  ASSERT_EQ(Build_Window(s), 0);
  EXPECT_NEAR(s.Window_Func[500], 1.0, 1e-6);
  EXPECT_NEAR(s.Window_Func[250], std::exp(-0.0625 * 20), 1e-6);

  // Bounds out of range fall back to 0 and 100.
  s.Window_Start = 150;
  s.Window_End = 250;
  ASSERT_EQ(Build_Window(s), 0);
  EXPECT_EQ(s.Window_Start, 0);
  EXPECT_EQ(s.Window_End, 100);
  s.Window_Start = 60;
  s.Window_End = 40;  // start must stay below end: the start is dropped
  ASSERT_EQ(Build_Window(s), 0);
  EXPECT_EQ(s.Window_Start, 0);
  EXPECT_EQ(s.Window_End, 40);

  // With a left shift the trapezoid is measured on what is left: L - shift.
  s.Window_Kind = 0;
  s.Line_Broadening = 0;
  s.Window_End = 100;
  s.Trap_T3 = 50;
  s.Fid_Shift = 200;
  ASSERT_EQ(Build_Window(s), 0);
  EXPECT_EQ(s.Window_Func[400], 1.0f);  // p3 = 400
  EXPECT_EQ(s.Window_Func[800], 0.0f);  // p4 = 800
  EXPECT_NEAR(s.Window_Func[600], 0.5, 1e-6);

  // Bounds that round to one point on short data are a division by zero.
  test::Fill_Fid(s, 4, 2, 1000, 400, {});
  s.Window_Kind = 1;
  s.Window_Start = 0;
  s.Window_End = 10;
  auto& ui = static_cast<platform::Scripted_Ui&>(*s.ui);
  const std::size_t shown = ui.shown.size();
  EXPECT_EQ(Build_Window(s), -1);
  EXPECT_EQ(ui.shown.size(), shown + 1);
}

TEST(Transform, ShiftMovesTheFidUnderAFixedWindow) {
  Session s;
  test::Fill_Fid(s, 256, 256, 1000, 400, {{120, 1.0, 0.05}, {-300, 0.3, 0.02}});
  s.Trap_T3 = 100;
  ASSERT_EQ(Build_Window(s), 0);

  // Negative shift: the first -s points are 0 and the window stays on the
  // destination index.
  std::vector<float> re(256), im(256);
  Shift_Window_Conjugate(s.Fid_Re.Row(0).data(), s.Fid_Im.Row(0).data(), s.Window_Func.data(),
                         re.data(), im.data(), 256, -5);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(re[i], 0.0f);
    EXPECT_EQ(im[i], 0.0f);
  }
  EXPECT_EQ(re[7], s.Fid_Re(2) * s.Window_Func[7]);
  EXPECT_EQ(im[7], -s.Fid_Im(2) * s.Window_Func[7]);
  // Positive shift: the tail has no source.
  Shift_Window_Conjugate(s.Fid_Re.Row(0).data(), s.Fid_Im.Row(0).data(), s.Window_Func.data(),
                         re.data(), im.data(), 256, 9);
  EXPECT_EQ(re[3], s.Fid_Re(12) * s.Window_Func[3]);
  EXPECT_EQ(re[250], 0.0f);

  // In place, either direction gives exactly the preview's result.
  for (int32_t shift : {-7, 0, 7}) {
    Session t = s;
    FT_Preview(t, shift);
    FT_Row(t, 0, shift);
    for (int32_t i = 0; i < 256; ++i) {
      ASSERT_EQ(t.Fid_Re(i), t.Ft_Re(i)) << shift;
      ASSERT_EQ(t.Fid_Im(i), t.Ft_Im(i)) << shift;
    }
  }
}

}  // namespace
}  // namespace tevo::signal
