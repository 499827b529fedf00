// Referencing a synthetic spectrum: a peak moves to the typed ppm, the
// frequency of 0 ppm follows, the instrument table brings it back.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "editing/instrument_table.h"
#include "editing/reference.h"
#include "platform/ui.h"
#include "session/command_flow.h"
#include "session/session.h"

namespace {

using namespace tevo::editing;

constexpr int kN = 1024;
constexpr double kObs = 400.13;  // MHz, carrier at the centre
constexpr double kSw = 8000.0;  // Hz

// A 1H spectrum of kN points with a Lorentzian at `centre` (fractional
// point), referenced so that the centre point N/2 is 0 ppm.
void Make_Spectrum(tevo::Session& s, double centre, tevo::platform::Scripted_Ui& ui) {
  ui.quiet = true;
  s.ui = &ui;
  tevo::Alloc_Point_Arrays(s, kN);
  s.Spec_Points = kN;
  s.Observe_Frequency = kObs;
  s.Param.FREQU = static_cast<float>(kSw);
  s.Param.RESOL = static_cast<float>(kSw / kN);
  s.Param.OBNUC = "1H";
  s.Param.SLVNT = "CDCl3";
  s.Param.Observe_Text = "400.15";
  s.Param.SMTMS = kN / 2;
  s.Param.SMEXR = 0;
  s.Spectrum_Frequency = kObs;
  Axis_From_Reference(s);
  for (int i = 0; i < kN; ++i) {
    const double d = i - centre;
    s.Spec_Re(i) = s.Ft_Re(i) = static_cast<float>(10.0 / (1.0 + d * d / 4.0));
    s.Spec_Re(i) += 0.2f * (i == 100);  // a small bump elsewhere
  }
  tevo::Build_Disp_Arrays(s, 0);
  s.X_Left = s.Spec_Axis[900];
  s.X_Right = s.Spec_Axis[100];
}

TEST(Reference, RangeMovesThePeakToTheTypedShift) {
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Make_Spectrum(s, 700.3, ui);
  const int f = s.Disp_Points / kN;
  ASSERT_GT(f, 1);  // the display copy is denser: the peak sits between points

  ASSERT_TRUE(m21_Click(s));
  EXPECT_EQ(Ref_Text(s.Reference_Value), " 0.0");
  EXPECT_FALSE(RefText1_Typed(s, "7.2x"));
  ASSERT_TRUE(RefText1_Typed(s, "7.26"));
  EXPECT_EQ(Ref_Text(s.Reference_Value), " 7.26");
  Set_Reference_On_Range(s, 750, 650);  // either order
  EXPECT_EQ(s.Param.SMTMS, 700.0f);
  EXPECT_EQ(s.Param.SMEXR, 7.26f);

  // The display point at the summit reads the typed value.
  int p = 650 * f;
  for (int i = 650 * f; i <= 750 * f; ++i)
    if (s.Disp_Y(i, 0) > s.Disp_Y(p, 0)) p = i;
  EXPECT_NEAR(p / static_cast<double>(f), 700.3, 0.15);  // interpolated summit
  EXPECT_NEAR(s.Disp_X[p], 7.26, 2e-5);

  // The summit's absolute frequency is the carrier plus its offset; 0 ppm
  // lies 7.26 ppm of that frequency below it.
  const double summit = kObs + (static_cast<double>(p) / s.Disp_Points - 0.5) * kSw * 1e-6;
  EXPECT_NEAR(s.Spectrum_Frequency, summit / (1 + 7.26e-6), 1e-9);
  EXPECT_NEAR(s.Spec_Axis[701] - s.Spec_Axis[700], kSw / kN / s.Spectrum_Frequency, 1e-6);
  // The view keeps the same points.
  EXPECT_NEAR(s.X_Left, s.Spec_Axis[900], 1e-4);
  EXPECT_NEAR(s.X_Right, s.Spec_Axis[100], 1e-4);
  EXPECT_EQ(s.Mode.Mode_Unchanged, 0);

  // An empty range does nothing.
  const double before = s.Spectrum_Frequency;
  s.Reference_Value = 1;
  Set_Reference_On_Range(s, 300, 300);
  EXPECT_EQ(s.Spectrum_Frequency, before);

  // Cancel restores the axis as it was.
  RefCommand2_Click(s);
  EXPECT_EQ(s.Mode.Edit_Mode, tevo::session::Mode_Basic);
  EXPECT_EQ(s.Spectrum_Frequency, kObs);
  EXPECT_NEAR(s.Spec_Axis[kN / 2], 0.0, 1e-6);
  EXPECT_EQ(s.Param.SMEXR, 0.0f);
}

TEST(Reference, ClickSetsTheTypedShiftAtThatPointAndTracksTheEntryReference) {
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Make_Spectrum(s, 700, ui);
  EXPECT_TRUE(std::isnan(Entry_Reference_Ppm(s)));  // no mode entered yet
  ASSERT_TRUE(m21_Click(s));
  // On entry the old reference (0 ppm at the centre point) is where it was.
  EXPECT_NEAR(Entry_Reference_Ppm(s), 0.0, 1e-6);

  // A click between spectrum points: exactly that display point takes the
  // typed value, not the nearest summit.
  const int f = s.Disp_Points / kN;
  const int p = 300 * f + f / 2;
  ASSERT_TRUE(RefText1_Typed(s, "3.5"));
  Set_Reference_On_Click(s, p);
  EXPECT_NEAR(s.Disp_X[p], 3.5, 2e-5);
  EXPECT_EQ(s.Param.SMEXR, 3.5f);
  const double hz = kObs + (static_cast<double>(p) / s.Disp_Points - 0.5) * kSw * 1e-6;
  const double f0 = hz / (1 + 3.5e-6);
  EXPECT_NEAR(s.Spectrum_Frequency, f0, 1e-9);
  EXPECT_EQ(s.Mode.Mode_Unchanged, 0);

  // The centre point lies on the carrier, kObs MHz: on the new scale it
  // reads (kObs / f0 - 1) 1e6 ppm, and that is where the entry reference is.
  const double centre = (kObs / f0 - 1) * 1e6;
  EXPECT_NEAR(s.Spec_Axis[kN / 2], centre, 1e-4);
  EXPECT_NEAR(Entry_Reference_Ppm(s), centre, 1e-4);

  // Clicks off the display copy change nothing.
  const std::vector<float> axis = s.Spec_Axis;
  Set_Reference_On_Click(s, -1);
  Set_Reference_On_Click(s, s.Disp_Points);
  EXPECT_EQ(s.Spec_Axis, axis);
}

TEST(Reference, ConfirmStoresCentreAndInstrumentRowThatReferenceLaterData) {
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Make_Spectrum(s, 700, ui);
  s.Param.Instrument_Id = "LAB-A";
  ASSERT_TRUE(m21_Click(s));
  RefText1_Typed(s, "7.26");
  Set_Reference_On_Range(s, 690, 710);
  RefCommand1_Click(s);
  EXPECT_EQ(s.Mode.Edit_Mode, tevo::session::Mode_Basic);
  EXPECT_EQ(s.Data_Saved, 0);
  EXPECT_FLOAT_EQ(static_cast<float>(s.settings.Real("REF INITITAL")), 7.26f);
  EXPECT_NEAR(s.settings.Real("HCENTRE REF FREQ"), kObs, 1e-6);
  EXPECT_NEAR(s.settings.Real("HCENTRE REF"), s.Spec_Axis[kN / 2], 1e-5);
  EXPECT_NEAR(s.settings.Real("CENTRE REF"), s.Spec_Axis[kN / 2], 1e-5);
  EXPECT_EQ(s.settings.Real("CCENTRE REF FREQ"), 0.0);
  // Centre data of this observe frequency: carrier and the ppm at N/2.
  int row = -1;
  for (int k = 0; k < 100; ++k)
    if (s.settings.Instrument[k] == "400.15") row = k;
  ASSERT_GE(row, 0);
  EXPECT_NEAR(std::stod(s.settings.Ref_Center_Frq[row]), kObs, 1e-9);
  EXPECT_NEAR(std::stod(s.settings.Ref_Center_Ex[row]), s.Spec_Axis[kN / 2], 1e-6);
  // The instrument row holds the new 0 ppm frequency.
  ASSERT_EQ(s.Instr_Tab.size(), 1u);
  EXPECT_DOUBLE_EQ(s.Instr_Tab[0].Zero_Freq, s.Spectrum_Frequency);
  EXPECT_FLOAT_EQ(s.Instr_Tab[0].Obs_Freq, 400.15f);

  // A later data set of the same instrument, still unreferenced, takes the
  // row (pre-selected) and its peak lands at 7.26 ppm again.
  tevo::Session t;
  tevo::platform::Scripted_Ui ui2;
  Make_Spectrum(t, 700, ui2);
  t.Param.Instrument_Id = "lab-a";
  t.Instr_Tab = s.Instr_Tab;
  EXPECT_EQ(Form109_Preselect(t), 0);
  ASSERT_EQ(RefCommand3_Click(t), 0);
  EXPECT_NEAR(t.Spec_Axis[700], 7.26, 1e-4);
  EXPECT_NEAR(t.Spectrum_Frequency, s.Spectrum_Frequency, 1e-12);

  // A row of another solvent asks first; "No" leaves the axis alone.
  tevo::Session u;
  tevo::platform::Scripted_Ui ui3;
  Make_Spectrum(u, 700, ui3);
  u.Param.SLVNT = "D2O";
  u.Instr_Tab = s.Instr_Tab;
  ui3.choice_answers = {0};
  ui3.button_answers = {2};
  EXPECT_EQ(RefCommand3_Click(u), 1);
  EXPECT_EQ(ui3.shown.back().text, "溶媒または核種が違っていますが、このまま設定しますか？");
  EXPECT_EQ(ui3.shown.back().title, "核種エラー");
  EXPECT_NEAR(u.Spec_Axis[kN / 2], 0.0, 1e-6);
  ui3.choice_answers = {0};
  ui3.button_answers = {1};
  EXPECT_EQ(RefCommand3_Click(u), 0);
  EXPECT_NEAR(u.Spec_Axis[700], 7.26, 1e-4);
}

TEST(Reference, FineSetPutsThePeakNearestZeroAtZero) {
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Make_Spectrum(s, 700, ui);
  // A small reference line 0.04 ppm off zero: 0.04 ppm is 16 Hz, 2 points.
  const int tms = kN / 2 + 2;
  for (int i = 0; i < kN; ++i) {
    const double d = i - tms;
    s.Spec_Re(i) += static_cast<float>(1.0 / (1.0 + d * d));
  }
  tevo::Build_Disp_Arrays(s, 0);
  Reference_After_Transform(s);  // "REF FINE SET" off: nothing moves
  EXPECT_EQ(s.Param.SMTMS, static_cast<float>(kN / 2));
  s.settings.Set("REF FINE SET", 1);
  Reference_After_Transform(s);
  EXPECT_EQ(s.Param.SMTMS, static_cast<float>(tms));
  EXPECT_NEAR(s.Spec_Axis[tms], 0.0, 1e-6);

  // Nothing near 0 ppm: the reference stays.
  tevo::Session t;
  tevo::platform::Scripted_Ui ui2;
  Make_Spectrum(t, 700, ui2);
  EXPECT_FALSE(Reference_Fine_Set(t));
  EXPECT_EQ(t.Param.SMTMS, static_cast<float>(kN / 2));
}

}  // namespace
