// Manual phase controls and the main window's phase mode.
#include <gtest/gtest.h>

#include <cmath>

#include "platform/ui.h"
#include "session/command_flow.h"
#include "session/session.h"
#include "signal/phase_mode.h"

namespace {

using namespace tevo::signal;
using tevo::session::Mode_Basic;
using tevo::session::Mode_Phase;

// Two rows of 32 points, each a real constant (1 and 2), unphased.
void Two_Rows(tevo::Session& s, tevo::platform::Scripted_Ui& ui) {
  ui.quiet = true;
  s.ui = &ui;
  s.settings.Set("DISP EXTEND MODE", 1);
  s.Array_Rows = 2;
  tevo::Alloc_Point_Arrays(s, 32);
  s.Spec_Points = 32;
  for (int r = 0; r < 2; ++r)
    for (int i = 0; i < 32; ++i) s.Spec_Re(i, r) = s.Ft_Re(i, r) = 1.0f + r;
  tevo::Build_Disp_Arrays(s, 0);
}

TEST(PhaseManual, FieldTextAndScrollPosition) {
  EXPECT_EQ(Phase_Text(12.5f), "12.5");
  EXPECT_EQ(Phase_Text(0.0f), "0.0");
  EXPECT_EQ(Phase_Text(-3.25f), "-3.25");
  EXPECT_EQ(Phase_Text(359.999f), "360.0");
  EXPECT_EQ(Phase_Scroll_Value(-1799.96f), -18000);
  EXPECT_EQ(Phase_Scroll_Value(0.25f), 2);  // ties to even
}

TEST(PhaseManual, StepsTypedValuesAndScrollInTheDialog) {
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Two_Rows(s, ui);
  s.Array_Row = 1;
  s.Phase0 = 355;
  Phase_Step(s, Phase_Place::Dialog, 0, 13);  // +10, clamped
  EXPECT_EQ(s.Phase0, 360.0f);
  EXPECT_NEAR(s.Spec_Re(4, 1), 2.0f, 1e-5);  // a full turn
  Phase_Step(s, Phase_Place::Dialog, 0, 0);  // -10
  EXPECT_EQ(s.Phase0, 350.0f);
  EXPECT_EQ(Phase_Text(s.Phase0), "350.0");
  EXPECT_EQ(Phase_Scroll_Value(s.Phase0), 3500);
  EXPECT_NEAR(s.Spec_Im(4, 1), 2.0f * std::sin(350 * M_PI / 180), 3e-5);  // table step 360/524288 degrees
  EXPECT_EQ(s.Spec_Re(4, 0), 1.0f);  // the dialog previews one row only

  s.Phase1 = -1795;
  Phase_Step(s, Phase_Place::Dialog, 1, 1);  // -5 reaches the limit
  Phase_Step(s, Phase_Place::Dialog, 1, 0);
  EXPECT_EQ(s.Phase1, -1800.0f);
  Phase_Step(s, Phase_Place::Dialog, 1, 14);  // no such label
  EXPECT_EQ(s.Phase1, -1800.0f);

  // Typed values: open intervals; anything else leaves the value.
  EXPECT_FALSE(Phase_Typed(s, Phase_Place::Dialog, 0, "360"));
  EXPECT_FALSE(Phase_Typed(s, Phase_Place::Dialog, 0, "abc"));
  EXPECT_FALSE(Phase_Typed(s, Phase_Place::Dialog, 0, "12x"));
  EXPECT_EQ(s.Phase0, 350.0f);
  EXPECT_TRUE(Phase_Typed(s, Phase_Place::Dialog, 0, "-90"));
  EXPECT_TRUE(Phase_Typed(s, Phase_Place::Dialog, 1, "1799.5"));
  EXPECT_FALSE(Phase_Typed(s, Phase_Place::Dialog, 1, "-1800"));
  EXPECT_EQ(s.Phase1, 1799.5f);
  Phase_Typed(s, Phase_Place::Dialog, 1, "0");
  EXPECT_NEAR(s.Spec_Im(7, 1), -2.0f, 1e-5);

  // Scroll bar: tenths of a degree.
  Phase_Scroll(s, Phase_Place::Dialog, 0, 900);
  EXPECT_FLOAT_EQ(s.Phase0, 90.0f);
  EXPECT_NEAR(s.Spec_Im(7, 1), 2.0f, 1e-5);
}

TEST(PhaseMode, EnterStepPerRowConfirmAndCancel) {
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Two_Rows(s, ui);
  s.Pivot_Pp = 500;  // beyond the data: clamped on entry
  s.Pivot_P2 = -3;
  ASSERT_TRUE(m22_Click(s));
  EXPECT_EQ(s.Mode.Edit_Mode, Mode_Phase);
  EXPECT_EQ(s.Pivot_Pp, 31);
  EXPECT_EQ(s.Pivot_P2, 0);
  EXPECT_FALSE(m22_Click(s));  // already on
  ASSERT_EQ(s.Phase0_Row.size(), 2u);

  // Per-row phase: only the current row turns.
  s.Array_Row = 1;
  Phase_Typed(s, Phase_Place::Main_Window, 0, "180");
  EXPECT_EQ(s.Phase0_Row[1], 180.0f);
  EXPECT_EQ(s.Phase0_Row[0], 0.0f);
  EXPECT_NEAR(s.Disp_Y(5, 1), -2.0f, 1e-5);
  EXPECT_NEAR(s.Disp_Y(5, 0), 1.0f, 1e-5);
  EXPECT_EQ(s.Mode.Mode_Unchanged, 0);

  // Button 6 returns the row to Phase0/Phase1.
  Phase_Reset_Row(s);
  EXPECT_EQ(s.Phase0_Row[1], 0.0f);
  EXPECT_NEAR(s.Disp_Y(5, 1), 2.0f, 1e-5);

  // Together: the current row's phase goes to every row.
  s.Phase_Together = 1;
  Phase_Step(s, Phase_Place::Main_Window, 0, 0);  // -10 degrees
  for (int r = 0; r < 2; ++r) EXPECT_NEAR(s.Spec_Im(5, r), -(1.0f + r) * std::sin(10 * M_PI / 180), 3e-5);

  // Cancel: the unrotated data come back.
  PhaseCommand2_Click(s);
  EXPECT_EQ(s.Mode.Edit_Mode, Mode_Basic);
  EXPECT_EQ(s.Spec_Im(5, 0), 0.0f);
  EXPECT_EQ(s.Disp_Y(5, 1), 2.0f);

  // Confirm: the rotation goes into Ft_*, the phase values are cleared,
  // and so is the zoom history.
  ASSERT_TRUE(m22_Click(s));
  Phase_Typed(s, Phase_Place::Main_Window, 0, "90");
  s.View_History.resize(3);
  PhaseCommand1_Click(s);
  EXPECT_EQ(s.Mode.Edit_Mode, Mode_Basic);
  EXPECT_NEAR(s.Ft_Im(5, 1), 2.0f, 1e-5);
  EXPECT_NEAR(s.Ft_Re(5, 0), 0.0f, 1e-5);
  EXPECT_EQ(s.Phase0, 0.0f);
  EXPECT_EQ(s.Phase0_Row[1], 0.0f);
  EXPECT_TRUE(s.View_History.empty());
}

TEST(PhaseMode, LeavingThroughTheInterlockAndTheBaselineQuestion) {
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Two_Rows(s, ui);
  // After a baseline correction the operator is asked; "No" stays out.
  s.Base_Corrected = 1;
  ui.button_answers = {2};
  EXPECT_FALSE(m22_Click(s));
  EXPECT_EQ(s.Mode.Edit_Mode, Mode_Basic);
  ASSERT_EQ(ui.shown.size(), 1u);
  EXPECT_EQ(ui.shown[0].text, "BaseLine補正を行っているため、\r\n正確に位相補正ができません。\r\n続行しますか？");
  ui.button_answers = {1};
  ASSERT_TRUE(m22_Click(s));

  // A changed phase left by another command asks; "Yes" commits it.
  Phase_Typed(s, Phase_Place::Main_Window, 0, "180");
  ui.button_answers = {1};
  ASSERT_TRUE(tevo::session::Confirm_Mode_Exit(s));
  EXPECT_EQ(ui.shown.back().text, "位相補正を実行しますか");
  EXPECT_NEAR(s.Ft_Re(3, 0), -1.0f, 1e-5);
  EXPECT_EQ(s.Mode.Edit_Mode, Mode_Basic);

  // Unchanged, it is left quietly and restores the data.
  const auto shown = ui.shown.size();
  s.Base_Corrected = 0;
  ASSERT_TRUE(m22_Click(s));
  ASSERT_TRUE(tevo::session::Confirm_Mode_Exit(s));
  EXPECT_EQ(ui.shown.size(), shown);
}

TEST(PowerSpectrum, DisplayShowsMagnitudeAndDataStayComplex) {
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Two_Rows(s, ui);
  s.Spec_Re(4, 0) = 3;
  s.Spec_Im(4, 0) = -4;
  m34_Click(s);
  EXPECT_EQ(s.Show_Magnitude, 1);
  EXPECT_FLOAT_EQ(s.Disp_Y(4, 0), 5.0f);
  EXPECT_FLOAT_EQ(s.Disp_Y(4, 1), 2.0f);
  EXPECT_EQ(s.Spec_Im(4, 0), -4.0f);
  m34_Click(s);
  EXPECT_FLOAT_EQ(s.Disp_Y(4, 0), 3.0f);
}

}  // namespace
