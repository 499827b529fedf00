// The processing window's commands on the session: zero fill and its undo
// through the work file, the preview, the commit (phase, scale, axis, shift
// memory) and the acceptance rules of its fields.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>

#include "session/session.h"
#include "signal/fid_processing.h"
#include "signal/fft.h"
#include "signal/phase_auto.h"
#include "support/test_support.h"
#include "synthetic.h"

namespace tevo::signal {
namespace {

constexpr double kPi = 3.14159265358979323846;

int32_t Peak_Of_Spec(const Session& s, int32_t row) {
  int32_t best = 0;
  double top = -1;
  for (int32_t i = 0; i < s.Spec_Points; ++i) {
    const double m = std::hypot(s.Spec_Re(i, row), s.Spec_Im(i, row));
    if (m > top) top = m, best = i;
  }
  return best;
}

TEST(FidProcessing, ZeroFillAndUndoStartFromTheWorkFile) {
  test::Temp_Dir dir;
  Session s;
  test::Fill_Fid(s, 1024, 1000, 2000, 400, {{300, 1.0, 0.1}});
  Ft_Form_State st;
  Open_Ft_Form(s, st);

  // Without a work file nothing happens, silently.
  EXPECT_FALSE(Zero_Fill(s, st));
  EXPECT_EQ(s.Spec_Points, 1024);

  s.Fid_Work_File = (dir / "fid.dat").string();
  const float first = s.Fid_Re(0), fifth = s.Fid_Re(5), last = s.Fid_Im(999);
  ASSERT_EQ(Save_Fid_Work_File(s), 0);
  s.Fid_Re(5) = 99;  // changed after saving: the fill must not see this

  ASSERT_TRUE(Zero_Fill(s, st));
  EXPECT_EQ(s.Zero_Fill_Factor, 2);
  EXPECT_EQ(s.Spec_Points, 2048);
  EXPECT_EQ(s.Fid_Re(0), first);
  EXPECT_EQ(s.Fid_Im(999), last);
  EXPECT_EQ(s.Fid_Re(5), fifth);
  for (int32_t i = 1024; i < 2048; ++i) ASSERT_EQ(s.Fid_Re(i), 0.0f);
  EXPECT_FALSE(st.LP_Fill_Enabled);
  EXPECT_TRUE(st.Commit_Enabled);  // the fill ran a preview
  EXPECT_EQ(s.Window_Func.size(), 2048u);

  ASSERT_TRUE(Zero_Fill(s, st));
  EXPECT_EQ(s.Spec_Points, 4096);
  s.LP_Fill_Factor = 2;
  ASSERT_TRUE(Undo_Zero_Fill(s, st));
  EXPECT_EQ(s.Spec_Points, 1024);
  EXPECT_EQ(s.Zero_Fill_Factor, 1);
  EXPECT_EQ(s.LP_Fill_Factor, 1);
  EXPECT_TRUE(st.LP_Fill_Enabled);
  EXPECT_EQ(s.Fid_Re(0), first);

  // The largest size is 524288 points: one fill of 262144 fits, no second.
  Session big;
  test::Fill_Fid(big, 262144, 262144, 2000, 400, {{300, 1.0, 0.1}});
  big.Fid_Work_File = (dir / "big.dat").string();
  ASSERT_EQ(Save_Fid_Work_File(big), 0);
  Ft_Form_State bst;
  Open_Ft_Form(big, bst);
  EXPECT_TRUE(Zero_Fill(big, bst));
  EXPECT_EQ(big.Spec_Points, 524288);
  EXPECT_FALSE(Zero_Fill(big, bst));
  EXPECT_EQ(big.Zero_Fill_Factor, 2);
}

TEST(FidProcessing, CommitPhasesEveryRowAlikeScalesAndReferences) {
  // Two rows of the same line at +500 Hz, with 40 and 100 degrees of phase.
  const int32_t n = 8192;
  const double sw = 4096, obs = 400.0;  // the line sits exactly on point 1000
  Session s;
  test::Fill_Fid(s, n, n, sw, obs, {});
  s.Array_Rows = 2;
  Alloc_Point_Arrays(s, n);
  for (int32_t row = 0; row < 2; ++row)
    for (int32_t t = 0; t < n; ++t) {
      const auto v = test::Line_Sample({{500, 1.0, 0.2, row == 0 ? 40.0 : 100.0}}, sw, t);
      s.Fid_Re(t, row) = static_cast<float>(v.real());
      s.Fid_Im(t, row) = static_cast<float>(-v.imag());
    }
  s.Fid_Scale = 8;
  s.Zero_Fill_Factor = 2;  // as if filled: RESOL halves on commit
  // 0 ppm at 4.7 ppm below the carrier.
  s.Spectrum_Frequency = obs / (1 + 4.7e-6);
  s.Param.Observe_Text = "400.00";
  s.Fid_Shift = 0;

  Ft_Form_State st;
  Run_Preview(s, st);  // automatic phase on row 0
  EXPECT_TRUE(st.Commit_Enabled);
  EXPECT_NEAR(s.Phase0, -40, 2);
  EXPECT_EQ(st.Phase0_Scroll, static_cast<int16_t>(std::nearbyint(s.Phase0 * 10)));

  ASSERT_EQ(Commit_Transform(s, st), 0);
  EXPECT_EQ(st.Result, "OK");
  EXPECT_EQ(s.Is_Spectrum, 1);
  EXPECT_EQ(s.Is_Fid, 0);
  EXPECT_EQ(s.Phase0, 0);
  EXPECT_FLOAT_EQ(s.Param.RESOL, static_cast<float>(sw / n / 2));

  const int32_t p = n / 2 - 1 + static_cast<int32_t>(500 * n / sw);
  EXPECT_EQ(Peak_Of_Spec(s, 0), p);
  EXPECT_EQ(Peak_Of_Spec(s, 1), p);
  // Row 0 in absorption; row 1 keeps its extra 60 degrees: the previewed
  // phase went to both rows, it was not found per row.
  auto angle = [&](int32_t row) {
    return std::atan2(s.Spec_Im(p, row), s.Spec_Re(p, row)) * 180 / kPi;
  };
  EXPECT_NEAR(angle(0), 0, 2);
  EXPECT_NEAR(angle(1), 60, 2);
  EXPECT_EQ(s.Ft_Re(p, 1), s.Spec_Re(p, 1));

  // Scale: the committed data carry Fid_Scale; Max_Abs is the largest
  // magnitude over the rows (both rows have the same line). On its own
  // point the line's height is the windowed sum of its decay.
  const double height = std::hypot(s.Spec_Re(p, 0), s.Spec_Im(p, 0));
  EXPECT_NEAR(s.Max_Abs, height, 1e-3 * height);
  double sum = 0;
  for (int32_t t = 0; t < n; ++t) sum += std::exp(-t / (0.2 * sw)) * s.Window_Func[t];
  EXPECT_NEAR(height, 8 * sum, 1e-4 * height);

  // Axis: the line at +500 Hz from a carrier at 4.7 ppm lies at
  // 4.7 + 500 Hz / 400 MHz = 5.95 ppm, within the one point that the axis
  // convention (zero frequency at N/2 - 1, axis centred on N/2) leaves.
  const double ppm_per_point = sw / n / s.Spectrum_Frequency;
  EXPECT_NEAR(s.Spec_Axis[p], 4.7 + 500 / s.Spectrum_Frequency, 1.01 * ppm_per_point);
  EXPECT_NEAR(s.Spec_Axis[n / 2], 4.7, 1e-5);
  EXPECT_LT(s.Spec_Axis[0], s.Spec_Axis[n - 1]);
  EXPECT_EQ(s.Disp_Points, s.Spec_Points * (131072 / n));
  EXPECT_EQ(s.Transformed_By, s.User_Name);
  EXPECT_EQ(s.Transformed_Date.size(), 20u);  // "yyyy-mm-dd  hh:nn:ss"
}

TEST(FidProcessing, ShiftAndCentreAreRememberedPerSpectrometer) {
  Session s;
  test::Fill_Fid(s, 1024, 1024, 4000, 400.13, {{0, 1.0, 0.1}});
  s.Param.Observe_Text = "400.15";
  s.Spectrum_Frequency = 400.13 / (1 + 4.7e-6);
  s.Fid_Shift = 3;
  Ft_Form_State st;
  Run_Preview(s, st);
  ASSERT_EQ(Commit_Transform(s, st), 0);
  EXPECT_EQ(s.settings.Instrument[0], "400.15");
  EXPECT_EQ(s.settings.Fid_Shift_Val[0], "3");

  // A second spectrometer takes the next row; the first is overwritten in place.
  Session t;
  test::Fill_Fid(t, 1024, 1024, 4000, 600, {{0, 1.0, 0.1}});
  t.settings = s.settings;
  t.Param.Observe_Text = "600.00";
  t.Fid_Shift = -2;
  Run_Preview(t, st);
  Commit_Transform(t, st);
  EXPECT_EQ(t.settings.Instrument[1], "600.00");
  EXPECT_EQ(t.settings.Fid_Shift_Val[1], "-2");

  // The next data set of the first spectrometer gets its shift back on
  // opening, and its axis from the centre data: with the carrier 100 Hz
  // higher the centre lies 100 Hz / 400 MHz = 0.25 ppm higher.
  Session u;
  test::Fill_Fid(u, 1024, 1024, 4000, 400.13 + 100e-6, {{0, 1.0, 0.1}});
  u.settings = t.settings;
  u.Param.Observe_Text = "400.15";
  u.Spectrum_Frequency = 0;
  Open_Ft_Form(u, st);
  EXPECT_EQ(u.Fid_Shift, 3);
  Run_Preview(u, st);
  Commit_Transform(u, st);
  EXPECT_NEAR(u.Spec_Axis[512], 4.7 + 0.25, 1e-4);
  EXPECT_EQ(u.settings.Instrument[2], "");
}

TEST(FidProcessing, FieldRulesAndHeldShiftButtons) {
  Session s;
  test::Fill_Fid(s, 256, 200, 1000, 400, {{100, 1.0, 0.05}});
  Ft_Form_State st;
  Open_Ft_Form(s, st);

  EXPECT_FALSE(Set_Line_Broadening(s, st, 0));
  EXPECT_FALSE(Set_Line_Broadening(s, st, 0.25f));  // unchanged
  EXPECT_TRUE(Set_Line_Broadening(s, st, 1.5f));
  EXPECT_TRUE(st.Commit_Enabled);

  EXPECT_FALSE(Set_Trap_Corner(s, st, 3, 120));  // above T4
  EXPECT_EQ(s.Trap_T3, 80);
  EXPECT_TRUE(Set_Trap_Corner(s, st, 3, 100));  // equal is allowed
  EXPECT_FALSE(Set_Trap_Corner(s, st, 1, 10));  // above T2 = 0
  EXPECT_TRUE(Set_Trap_Corner(s, st, 2, 10));
  EXPECT_FALSE(Set_Window_Kind(s, st, 4));

  EXPECT_TRUE(Set_Fid_Shift(s, st, 1000));
  EXPECT_EQ(s.Fid_Shift, 255);
  Set_Fid_Shift(s, st, -1000);
  EXPECT_EQ(s.Fid_Shift, -255);

  // Down from 2 stops at 0; down from 0 runs to 1 - Base_Point_Count.
  Set_Fid_Shift(s, st, 2);
  int steps = 0;
  while (Step_Fid_Shift(s, -1, 2)) ++steps;
  EXPECT_EQ(steps, 2);
  EXPECT_EQ(s.Fid_Shift, 0);
  Set_Fid_Shift(s, st, -253);
  steps = 0;
  while (Step_Fid_Shift(s, -1, 0)) ++steps;
  EXPECT_EQ(s.Fid_Shift, -255);
  EXPECT_EQ(steps, 2);
  // Up from below 0 stops at 0.
  Set_Fid_Shift(s, st, -1);
  while (Step_Fid_Shift(s, +1, -1)) {
  }
  EXPECT_EQ(s.Fid_Shift, 0);

  // Discarding asks first; "No" keeps the window.
  auto& ui = static_cast<platform::Scripted_Ui&>(*s.ui);
  ui.button_answers = {2};
  EXPECT_FALSE(Discard_Ft_Form(s, st));
  EXPECT_EQ(ui.shown.back().text, "このデータを破棄しますか");
  EXPECT_EQ(ui.shown.back().title, "ＦＴデータ変換終了");
  ui.button_answers = {1};
  EXPECT_TRUE(Discard_Ft_Form(s, st));
  EXPECT_EQ(st.Result, "CANCEL");
}

}  // namespace
}  // namespace tevo::signal

namespace tevo::signal {
namespace {

TEST(FidProcessing, WholeChainFromARequest) {
  test::Temp_Dir dir;
  Session s;
  test::Fill_Fid(s, 2048, 2000, 4096, 400, {{512, 1.0, 0.1, 25}});
  s.Fid_Work_File = (dir / "fid.dat").string();
  Process_Request req;
  req.window_kind = 2;
  req.trapezoid = std::array<float, 4>{0, 0, 100, 100};
  req.zero_fill = 4;
  req.fid_shift = 1;
  Process_Report rep;
  ASSERT_EQ(Process_Fid(s, req, rep), 0);
  EXPECT_EQ(rep.points, 8192);
  EXPECT_EQ(rep.zero_fill_factor, 4);
  EXPECT_EQ(rep.fid_shift, 1);
  // Starting one dwell later turns a line at +512 Hz of a 4096 Hz sweep by
  // 360 * 512 / 4096 = 45 degrees more: -(25 + 45).
  EXPECT_NEAR(rep.phase0, -70, 2);
  EXPECT_EQ(s.Is_Spectrum, 1);
  EXPECT_EQ(s.Spec_Points, 8192);
  EXPECT_EQ(s.Window_Kind, 2);

  // Given phases are used as they are; refused values are reported.
  Session t;
  test::Fill_Fid(t, 1024, 1024, 4096, 400, {{512, 1.0, 0.1}});
  req = {};
  req.phase_mode = 2;
  req.phase0 = 30;
  ASSERT_EQ(Process_Fid(t, req, rep), 0);
  EXPECT_EQ(rep.phase0, 30);
  EXPECT_EQ(rep.phase1, 0);
  Session u;
  test::Fill_Fid(u, 1024, 1024, 4096, 400, {{512, 1.0, 0.1}});
  req.trapezoid = std::array<float, 4>{0, 50, 40, 100};
  EXPECT_EQ(Process_Fid(u, req, rep), 2);
  EXPECT_EQ(u.Is_Spectrum, 0);
}

}  // namespace
}  // namespace tevo::signal
