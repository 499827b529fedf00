// Automatic phase on synthetic spectra whose phase errors are known.
//
// The spectra are sums of complex Lorentzians A / (g + i (k - c)) in the sign
// convention of the transform's output (real part absorption, imaginary part
// falling through zero as the index rises), multiplied by exp(-i err(k)) with
// err(k) = e0 + (k - c_strongest) * e1 / n degrees. The correction that puts
// them back into absorption is p0 = e0 and p1 = e1 about the strongest line.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <random>
#include <vector>

#include "session/session.h"
#include "signal/phase.h"
#include "signal/phase_auto.h"

namespace {

using tevo::signal::Phase_Angle;
using tevo::signal::Phase_Auto;
using tevo::signal::Phase_Place;

constexpr double kPi = 3.14159265358979323846;

struct Line {
  double centre;  // point index
  double amp;  // height of the absorption summit
  double width;  // half width at half height, points
};

// Fills Ft_* of the current row with the lines, rotated by -err(k), plus
// Gaussian noise of standard deviation `noise`.
void Fill(tevo::Session& s, int n, const std::vector<Line>& lines, double e0, double e1,
          double pivot, double noise, unsigned seed = 7) {
  s.settings.Set("DISP EXTEND MODE", 1);
  tevo::Alloc_Point_Arrays(s, n);
  s.Spec_Points = n;
  std::mt19937 rng(seed);
  std::normal_distribution<double> g(0.0, noise);
  const auto row = static_cast<std::size_t>(s.Row());
  for (int k = 0; k < n; ++k) {
    std::complex<double> z(0, 0);
    for (const Line& l : lines) z += l.amp * l.width / std::complex<double>(l.width, k - l.centre);
    const double err = (e0 + (k - pivot) * e1 / n) * kPi / 180.0;
    z *= std::polar(1.0, -err);
    s.Ft_Re(k, row) = static_cast<float>(z.real() + (noise > 0 ? g(rng) : 0.0));
    s.Ft_Im(k, row) = static_cast<float>(z.imag() + (noise > 0 ? g(rng) : 0.0));
  }
}

// Phase of the corrected spectrum at a point, degrees.
double Phase_At(const tevo::Session& s, int k) {
  const auto row = static_cast<std::size_t>(s.Array_Row);
  return std::atan2(s.Spec_Im(k, row), s.Spec_Re(k, row)) * 180.0 / kPi;
}

double Wrap(double deg) { return std::remainder(deg, 360.0); }

TEST(PhaseAngle, QuadrantsAndTies) {
  EXPECT_DOUBLE_EQ(Phase_Angle(-1.0, 0.0), -180.0);  // negative real axis: -180, not +180
  EXPECT_DOUBLE_EQ(Phase_Angle(0.0, 0.0), 0.0);
  EXPECT_DOUBLE_EQ(Phase_Angle(1.0, 0.0), 0.0);
  EXPECT_DOUBLE_EQ(Phase_Angle(0.0, 2.0), 90.0);
  EXPECT_DOUBLE_EQ(Phase_Angle(0.0, -2.0), -90.0);
  EXPECT_NEAR(Phase_Angle(1.0, 1.0), 45.0, 1e-12);  // |x| = |y| goes the x way
  EXPECT_NEAR(Phase_Angle(-1.0, 1.0), 135.0, 1e-12);
  EXPECT_NEAR(Phase_Angle(-1.0, -1.0), -135.0, 1e-12);
  EXPECT_NEAR(Phase_Angle(1.0, -1.0), -45.0, 1e-12);
  // Away from the ties it is the ordinary two-argument arctangent.
  for (double a = -179.5; a < 180; a += 7.25) {
    const double r = a * kPi / 180.0;
    EXPECT_NEAR(Phase_Angle(3 * std::cos(r), 3 * std::sin(r)), a, 1e-9) << a;
  }
}

TEST(FindMagnitude, FirstOfEqualPeaksWins) {
  tevo::Session s;
  tevo::Alloc_Point_Arrays(s, 16);
  s.Ft_Re(3) = 3;
  s.Ft_Im(3) = 4;  // |z| = 5
  s.Ft_Re(9) = -5;  // also 5
  s.Ft_Im(12) = 4.5f;
  tevo::signal::Find_Magnitude(s, 16);
  EXPECT_EQ(s.Peak_Index, 3);
  EXPECT_FLOAT_EQ(s.Peak_Magnitude, 5.0f);
  EXPECT_FLOAT_EQ(s.Spec_Mag[12], 4.5f);
  tevo::Session empty;
  tevo::Alloc_Point_Arrays(empty, 8);
  tevo::signal::Find_Magnitude(empty, 8);
  EXPECT_EQ(empty.Peak_Index, 0);
  EXPECT_EQ(empty.Peak_Magnitude, 0.0f);
}

// Full automatic method on three lines far apart with zero- and first-order
// errors, in both the dialog (table) and the main window (sin/cos) variants.
TEST(PhaseAuto, FullMethodRestoresAbsorptionOfDistantLines) {
  const int n = 16384;
  const std::vector<Line> lines = {{4000, 1.0, 4}, {13000, 0.6, 4}, {9000, 0.4, 5}};
  struct Case {
    double e0, e1;
  };
  for (const Case c : {Case{40, 120}, Case{-75, -200}, Case{150, 60}, Case{-20, 300}}) {
    for (Phase_Place place : {Phase_Place::Dialog, Phase_Place::Main_Window}) {
      tevo::Session s;
      s.Param.OBNUC = "13C";
      Fill(s, n, lines, c.e0, c.e1, 4000, 1e-3);
      Phase_Auto(s, 0, n, place);
      const float p0 = place == Phase_Place::Dialog ? s.Phase0 : s.Phase0_Row[0];
      const float p1 = place == Phase_Place::Dialog ? s.Phase1 : s.Phase1_Row[0];
      SCOPED_TRACE(::testing::Message() << "e0 " << c.e0 << " e1 " << c.e1 << " main "
                                        << (place == Phase_Place::Main_Window));
      EXPECT_EQ(s.Pivot_Pp, 4000);
      EXPECT_EQ(s.Pivot_P2, 13000);  // the farther of the first peaks from either edge
      EXPECT_NEAR(Wrap(p0 - c.e0), 0.0, 3.0);
      EXPECT_NEAR(p1, c.e1, 4.0);
      for (const Line& l : lines) {
        EXPECT_NEAR(Phase_At(s, static_cast<int>(l.centre)), 0.0, 3.0) << l.centre;
        EXPECT_GT(s.Spec_Re(static_cast<int>(l.centre), 0), 0.95 * l.amp);
      }
    }
  }
}

TEST(PhaseAuto, SingleLineLeavesFirstOrderAtZero) {
  const int n = 8192;
  for (double e0 : {-170.0, -30.0, 0.0, 65.0, 179.0}) {
    tevo::Session s;
    s.Param.OBNUC = "1H";
    Fill(s, n, {{5100, 2.0, 3}}, e0, 0, 5100, 2e-4);
    s.Phase1 = 55;  // a previous value does not survive
    Phase_Auto(s, 0, n);
    EXPECT_EQ(s.Pivot_Pp, 5100);
    EXPECT_TRUE(s.Pivot_P2 < 0 || std::abs(s.Pivot_P2 - 5100) < 100) << s.Pivot_P2;
    EXPECT_EQ(s.Phase1, 0.0f);
    EXPECT_NEAR(Wrap(s.Phase0 - e0), 0.0, 2.0) << e0;
    EXPECT_NEAR(Phase_At(s, 5100), 0.0, 2.0) << e0;
  }
}

// A line within n/64 of the end: the window moves inside and the phase is
// still read; the second line then lies on the left.
TEST(PhaseAuto, PeakNearTheEdgeAndSecondPeakToTheLeft) {
  const int n = 8192;
  tevo::Session s;
  s.Param.OBNUC = "13C";
  Fill(s, n, {{8150, 1.0, 3}, {1500, 0.5, 3}}, -50, 90, 8150, 5e-4);
  Phase_Auto(s, 0, n);
  EXPECT_EQ(s.Pivot_Pp, 8150);
  EXPECT_EQ(s.Pivot_P2, 1500);
  // The first-order error turns the phase by 2.8 degrees across the
  // truncated window, which the reading does not fully average out.
  EXPECT_NEAR(Wrap(s.Phase0 + 50), 0.0, 5.0);
  EXPECT_NEAR(s.Phase1, 90.0, 6.0);
  EXPECT_NEAR(Phase_At(s, 1500), 0.0, 5.0);
}

// Semi-automatic: the operator's markers stand, even on a weaker line.
TEST(PhaseAuto, SemiKeepsTheMarkers) {
  const int n = 16384;
  tevo::Session s;
  s.Param.OBNUC = "13C";
  const std::vector<Line> lines = {{3000, 1.0, 4}, {8000, 0.5, 4}, {14000, 0.7, 4}};
  Fill(s, n, lines, 25, -150, 3000, 1e-3);
  s.Pivot_Pp = 8000;
  s.Pivot_P2 = 3000;
  Phase_Auto(s, 1, n);
  EXPECT_EQ(s.Pivot_Pp, 8000);
  EXPECT_EQ(s.Pivot_P2, 3000);
  // About the pivot 8000 the zero order absorbs the first-order error there.
  EXPECT_NEAR(Wrap(s.Phase0 - (25 + (8000 - 3000) * -150.0 / n)), 0.0, 3.0);
  EXPECT_NEAR(s.Phase1, -150.0, 8.0);
  for (const Line& l : lines) EXPECT_NEAR(Phase_At(s, static_cast<int>(l.centre)), 0.0, 5.0);
}

// A first-order phase beyond the limit: the stored value is clamped, the
// spectrum keeps the rotation actually found.
TEST(PhaseAuto, StoredValuesAreClampedButNotTheSpectrum) {
  const int n = 16384;
  tevo::Session s;
  s.Param.OBNUC = "13C";
  Fill(s, n, {{6000, 1.0, 3}, {7000, 0.6, 3}}, 10, 2500, 6000, 5e-4);
  Phase_Auto(s, 0, n);
  EXPECT_EQ(s.Pivot_P2, 7000);
  EXPECT_EQ(s.Phase1, 1800.0f);
  EXPECT_NEAR(Phase_At(s, 7000), 0.0, 3.0);  // still rotated by about 2500
  // Applying the stored values shows the clamp.
  tevo::signal::Phase_Preview(s, s.Phase0, s.Phase1, n);
  EXPECT_NEAR(Wrap(Phase_At(s, 7000) + 700.0 * 1000 / n), 0.0, 4.0);
}

// Selections outside the analysed windows are kept from one call to the next.
TEST(PhaseAuto, CurveMaskOutsideTheWindowsIsCarriedOver) {
  const int n = 8192;
  tevo::Session s;
  s.Param.OBNUC = "1H";
  Fill(s, n, {{3000, 1.0, 3}}, 30, 0, 3000, 1e-3);
  s.Curve_Mask.assign(n + 1, 1);
  Phase_Auto(s, 0, n);
  int kept = 0;
  for (int i = 0; i < 2000; ++i) kept += s.Curve_Mask[i];
  EXPECT_EQ(kept, 2000);
  // With every point of the last tenth still selected there is no baseline
  // sample; the zero order is read all the same.
  EXPECT_NEAR(Wrap(s.Phase0 - 30), 0.0, 2.0);
}

}  // namespace
