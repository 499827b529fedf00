// Difference and DEPT spectra on Lorentzian lines of known places: the
// residues are held to the error of linear interpolation, A·h²/(4·w²) for a
// line of height A and half-width w read between points h apart.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "overlay/difference.h"
#include "session/session.h"

namespace tevo {
namespace {

constexpr int32_t kPoints = 1024;
constexpr double kStep = 0.01, kFirst = -1.0;  // ppm
constexpr double kWidth = 0.05;  // half-width (ppm): five points
constexpr double kInterpolation = kStep * kStep / (4 * kWidth * kWidth);  // 0.01 of a line's height

double Lines(double ppm, std::initializer_list<double> places) {
  double y = 0;
  for (double c : places) y += 1.0 / (1.0 + (ppm - c) * (ppm - c) / (kWidth * kWidth));
  return y;
}

// A main spectrum of f on the axis kFirst + i·kStep (Ft_Re and Spec_Re).
void Main(Session& s, const std::function<double(double)>& f) {
  s.Array_Rows = 1;
  Alloc_Point_Arrays(s, kPoints);
  s.Spec_Points = kPoints;
  s.Spec_Axis.assign(kPoints, 0);
  for (int32_t i = 0; i < kPoints; ++i) {
    const auto k = static_cast<std::size_t>(i);
    s.Spec_Axis[k] = static_cast<float>(kFirst + i * kStep);
    s.Ft_Re(k) = s.Spec_Re(k) = static_cast<float>(f(s.Spec_Axis[k]));
  }
}

// Slot k holds f on an axis that starts `offset` ppm from the main one and
// runs over `points` points.
void Slot(Session& s, int k, const std::function<double(double)>& f, double offset, int32_t points = kPoints) {
  Overlay_Slot& o = s.Overlay[static_cast<std::size_t>(k)];
  o.Slot_Points = points;
  o.Slot_X.resize(static_cast<std::size_t>(points));
  o.Slot_Y.resize(static_cast<std::size_t>(points));
  for (int32_t i = 0; i < points; ++i) {
    o.Slot_X[static_cast<std::size_t>(i)] = static_cast<float>(kFirst + offset + i * kStep);
    o.Slot_Y[static_cast<std::size_t>(i)] = static_cast<float>(f(o.Slot_X[static_cast<std::size_t>(i)]));
  }
}

double Largest(const Session& s, const std::function<double(std::size_t)>& residue) {
  double worst = 0;
  for (std::size_t i = 0; i < kPoints; ++i) worst = std::max(worst, std::fabs(residue(i)));
  return worst;
}

TEST(Difference, ItselfShiftedCopiesScaleAndRange) {
  Session s;
  const auto f = [](double x) { return Lines(x, {1.0, 3.3, 6.72}); };
  Main(s, f);
  // Minus itself: zero within rounding. The axes are float: a point's
  // spacing differs from the mean one by up to a few 1e-4 of it, and so do
  // the interpolation weights from 1.
  Slot(s, 1, f, 0);
  overlay::Calc_Difference_Spec(s, 1);
  EXPECT_LT(Largest(s, [&](std::size_t i) { return s.Spec_Re(i); }), 1e-3);

  // A copy 0.0237 ppm higher (not a whole number of points), its shift
  // given: zero within the interpolation error.
  const double shift = 0.0237;
  Slot(s, 2, [&](double x) { return f(x - shift); }, 0);
  s.Diff_Shift = static_cast<float>(-shift);
  overlay::Calc_Difference_Spec(s, 2);
  const double residue = Largest(s, [&](std::size_t i) { return s.Spec_Re(i); });
  EXPECT_LT(residue, kInterpolation);
  EXPECT_GT(residue, 1e-4);  // the interpolation is really used
  // Without the shift the lines do not cancel.
  s.Diff_Shift = 0;
  overlay::Calc_Difference_Spec(s, 2);
  EXPECT_GT(Largest(s, [&](std::size_t i) { return s.Spec_Re(i); }), 0.1);

  // Diff_Mag 0, slot 0 and a one-point slot give the plain spectrum; a slot
  // covering part of the axis leaves the rest as it is, and so does a shift
  // that leaves no overlap.
  const auto plain = [&] { return Largest(s, [&](std::size_t i) { return s.Spec_Re(i) - s.Ft_Re(i); }); };
  s.Diff_Mag = 0;
  overlay::Calc_Difference_Spec(s, 1);
  EXPECT_EQ(plain(), 0);
  s.Diff_Mag = 1;
  overlay::Calc_Difference_Spec(s, 0);
  EXPECT_EQ(plain(), 0);
  Slot(s, 3, f, 0, 1);
  overlay::Calc_Difference_Spec(s, 3);
  EXPECT_EQ(plain(), 0);
  Slot(s, 4, f, 0, 300);  // -1.0 .. 1.99 ppm
  overlay::Calc_Difference_Spec(s, 4);
  EXPECT_LT(std::fabs(s.Spec_Re(200)), 1e-3);  // 1.0 ppm, covered
  EXPECT_EQ(s.Spec_Re(430), s.Ft_Re(430));  // 3.3 ppm, beyond the slot
  s.Diff_Shift = 50;
  overlay::Calc_Difference_Spec(s, 1);
  EXPECT_EQ(plain(), 0);
}

TEST(Dept, SubSpectraHoldEachGroupAloneOnOneAxisAndOnDifferingAxes) {
  const auto ch = [](double x) { return Lines(x, {1.0, 3.0}); };
  const auto ch2 = [](double x) { return Lines(x, {2.0, 5.0}); };
  const auto ch3 = [](double x) { return Lines(x, {4.0, 6.0}); };
  for (const double offset : {0.0, kStep / 2}) {
    SCOPED_TRACE(offset);
    Session s;
    // DEPT-45 (main), a CH spectrum (slot 1), DEPT-90 (slot 2, CH at the
    // height that 1.414 turns into twice the DEPT-45 one), DEPT-135 (slot 3).
    Main(s, [&](double x) { return ch(x) + ch2(x) + ch3(x); });
    Slot(s, 1, ch, offset);
    Slot(s, 2, [&](double x) { return 2 / 1.414 * ch(x); }, offset);
    Slot(s, 3, [&](double x) { return ch(x) - ch2(x) + ch3(x); }, offset);
    overlay::Calc_DEPT_Spec(s);
    // Half a point off, each term carries its interpolation error.
    const double tolerance = offset == 0 ? 1e-6 : 2.5 * kInterpolation;
    const struct {
      int slot;
      std::function<double(double)> group;
    } outputs[] = {{1, ch}, {2, ch3}, {3, ch2}};
    for (const auto& out : outputs) {
      const auto& y = s.Overlay[static_cast<std::size_t>(out.slot)].Slot_Y_Im;
      ASSERT_EQ(y.size(), static_cast<std::size_t>(kPoints));
      EXPECT_LT(Largest(s, [&](std::size_t i) { return y[i] - out.group(s.Spec_Axis[i]); }), tolerance) << out.slot;
    }
    // The DEPT display draws the sub-spectra on the main axis, at the main
    // scale, even where the slots' own axes differ.
    s.Y_Full_Scale = 2.5f;
    ASSERT_TRUE(overlay::Set_DEPT_Mode(s, true));
    const overlay::Slot_Trace t = overlay::Drawn_Slot(s, 3);
    EXPECT_EQ(t.x.data(), s.Spec_Axis.data());
    EXPECT_EQ(t.y.data(), s.Overlay[3].Slot_Y_Im.data());
    EXPECT_EQ(t.full, 2.5);
    ASSERT_TRUE(overlay::Set_DEPT_Mode(s, false));
    EXPECT_EQ(overlay::Drawn_Slot(s, 3).y.data(), s.Overlay[3].Slot_Y.data());
  }
  // Without the three slots nothing is computed, and the display stays off.
  Session s;
  Main(s, ch);
  Slot(s, 1, ch, 0);
  overlay::Calc_DEPT_Spec(s);
  EXPECT_TRUE(s.Overlay[1].Slot_Y_Im.empty());
  EXPECT_FALSE(overlay::Set_DEPT_Mode(s, true));
  EXPECT_EQ(s.DEPT_Mode, 0);

  // Coefficient steps of 0.01 stop at 9.9 and come back without drift.
  float c = 1.414f;
  for (int k = 0; k < 50; ++k) c = overlay::Step_DEPT_Coefficient(c, 1);
  for (int k = 0; k < 50; ++k) c = overlay::Step_DEPT_Coefficient(c, -1);
  EXPECT_EQ(c, 1.414f);
  for (int k = 0; k < 1000; ++k) c = overlay::Step_DEPT_Coefficient(c, 1);
  EXPECT_EQ(c, 9.9f);
  EXPECT_EQ(overlay::Step_DEPT_Coefficient(-9.895f, -1), -9.9f);
}

}  // namespace
}  // namespace tevo
