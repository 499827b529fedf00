// An overlay slot edited as a spectrum of its own: the working session made
// from a real spectrum read into the slot, edited by the main routines, and
// written back into the slot with its row fields kept.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "datafiles/native_sample.h"
#include "display/paint.h"
#include "display/style.h"
#include "editing/baseline.h"
#include "editing/integrals.h"
#include "editing/peaks.h"
#include "overlay/overlay_set.h"
#include "overlay/slot_edit.h"
#include "platform/recording_surface.h"
#include "platform/ui.h"
#include "session/command_flow.h"
#include "session/session.h"
#include "signal/phase_mode.h"
#include "support/test_support.h"

namespace tevo::overlay {
namespace {

TEST(Slot_Edit, AspirinSlotPhasedAndPickedGoesBackIntoTheSlot) {
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  ui.quiet = true;
  Session s;
  s.ui = &ui;
  s.App_Path = dir.path().string();
  s.Log_Mode = -1;
  test::Fill_Sample_Session(s);  // a main spectrum the editing must not touch
  const std::vector<float> main_points(s.Spec_Re.Row(0).begin(), s.Spec_Re.Row(0).end());
  const std::vector<Peak_Rec> main_peaks = s.Peaks;
  s.X_Left = 9.0f;
  s.X_Right = 1.0f;
  const std::string dx = test::Test_Data_File("jcamp-data-test@0.2.1/data/aspirin-1h.dx").string();
  constexpr int slot = 2;
  ASSERT_EQ(Read_Overlay_Slot(s, slot, dx, Slot_Align::Chem), 0);
  Overlay_Slot& o = s.Overlay[slot];
  ASSERT_GT(o.Slot_Points, 1000);
  // A slot from a file without levels, without a stored resolution.
  o.Slot_Noise_Level = o.Slot_Peak_Level = o.Slot_Integ_Ref = o.Slot_Integ_Scale = 0;
  const float resol = o.Slot_Param.RESOL;
  o.Slot_Param.RESOL = 0;
  o.Slot_Y_Offset = 0.3f;
  o.Slot_Y_Mag = 2.0f;
  o.Slot_Comment = "aspirin";
  Set_Slot_Colour(s, slot, 0x00A0FF);
  const Overlay_Slot before = o;

  // The menu rows count down; a one-point slot does not open.
  EXPECT_EQ(Edit_Menu_Slot(1), 9);
  EXPECT_EQ(Edit_Menu_Slot(9), 1);
  EXPECT_TRUE(Slot_Editable(s, slot));
  s.Overlay[4].Slot_Points = 1;
  EXPECT_FALSE(Slot_Editable(s, 4));
  EXPECT_FALSE(Slot_Editable(s, 0));
  EXPECT_EQ(Slot_Edit_Title(slot, o.Slot_File), "重書き(3) データ編集: aspirin-1h.dx");

  Session w = Session_From_Slot(s, slot);
  ASSERT_EQ(w.Spec_Points, o.Slot_Points);
  EXPECT_FLOAT_EQ(w.Noise_Level, 0.005f);
  EXPECT_FLOAT_EQ(w.Peak_Level, 0.01f);
  EXPECT_FLOAT_EQ(w.Integ_Ref, 1.0f);
  EXPECT_FLOAT_EQ(w.Integ_Scale, 1.0f);
  // Hz per point from the axis span equals the file's own.
  EXPECT_NEAR(w.Param.RESOL, resol, 1e-3 * resol);
  EXPECT_FLOAT_EQ(w.X_Left, 9.0f);
  EXPECT_FLOAT_EQ(w.X_Right, 1.0f);
  EXPECT_EQ(display::Setting_Colour(w, "MAIN SPECT COL", 0), 0x00A0FF);
  EXPECT_EQ(w.Overlay[slot].Slot_Points, 0);  // the editor draws no other slot

  // Peaks of the whole spectrum, then a zero-order phase of 180 degrees,
  // which turns every point over whatever the sense of rotation.
  ASSERT_TRUE(editing::m24_Click(w));
  ASSERT_GT(editing::Peak_Search_All(w), 3);
  session::Finish_Mode(w, false);
  ASSERT_TRUE(signal::m22_Click(w));
  ASSERT_TRUE(signal::Phase_Typed(w, signal::Phase_Place::Main_Window, 0, "180"));
  signal::PhaseCommand1_Click(w);
  Slot_Back_From_Session(s, slot, w, before);

  ASSERT_EQ(o.Slot_Points, before.Slot_Points);
  const float scale = before.Slot_Max_Abs;
  for (std::size_t i = 0; i < o.Slot_Y.size(); i += 97) {
    ASSERT_NEAR(o.Slot_Y[i], -before.Slot_Y[i], 1e-5f * scale) << i;
    ASSERT_NEAR(o.Slot_Y_Im[i], -before.Slot_Y_Im[i], 1e-5f * scale) << i;
  }
  EXPECT_EQ(o.Slot_Peaks, w.Peaks);
  EXPECT_FALSE(o.Slot_Peaks.empty());
  EXPECT_FLOAT_EQ(o.Slot_Noise_Level, 0.005f);
  EXPECT_EQ(o.Slot_X, before.Slot_X);
  EXPECT_FLOAT_EQ(o.Slot_Y_Offset, 0.3f);
  EXPECT_FLOAT_EQ(o.Slot_Y_Mag, 2.0f);
  EXPECT_FLOAT_EQ(o.Slot_Y_Full, o.Slot_Max_Abs / 2.0f);
  EXPECT_EQ(o.Slot_Colour, 0x00A0FF);
  EXPECT_EQ(o.Slot_Comment, "aspirin");
  EXPECT_EQ(o.Slot_File, before.Slot_File);

  // The slot's peaks are marked in the main plot (a 10-pixel stroke in the
  // slot's colour above each) only while its peak column is checked.
  const auto strokes = [&s](bool marks_only) {
    platform::RecordingSurface surf(1000, 600);
    display::Picture1_Paint(s, surf);
    int n = 0;
    for (const platform::Recorded_Op& op : surf.Ops())
      n += op.kind == platform::Recorded_Op::Kind::Line_To && op.colour == 0x00A0FF &&
           (!marks_only || (op.from.x == op.at.x && op.at.y - op.from.y == 10));
    return n;
  };
  const auto marks = [&strokes] { return strokes(true); };
  const int plain = marks();  // the trace itself may hold such a stroke
  ASSERT_TRUE(Set_Slot_Show_Peaks(s, slot, true));
  EXPECT_GE(marks() - plain, 10);

  // A baseline corrected in the editor changes the slot's points; the main
  // spectrum and its peaks are what they were.
  Session b = Session_From_Slot(s, slot);
  ASSERT_TRUE(editing::m23_Click(b));
  ASSERT_GT(editing::Base_Auto_Points(b), 2);
  editing::BaseCorCommand2_Click(b);
  const std::vector<float> phased = o.Slot_Y;
  Slot_Back_From_Session(s, slot, b, o);
  EXPECT_NE(o.Slot_Y, phased);
  EXPECT_TRUE(std::equal(main_points.begin(), main_points.end(), s.Spec_Re.Row(0).begin()));
  EXPECT_EQ(s.Peaks, main_peaks);

  // An integral made in the editor is drawn in the main plot in the slot's
  // colour while the slot's integral column is checked.
  Session g = Session_From_Slot(s, slot);
  const int32_t a = editing::Spec_Point_Of_Ppm(g, 2.4f), z = editing::Spec_Point_Of_Ppm(g, 2.2f);
  Integ_Rec methyl;
  methyl.Start_Point = std::min(a, z);
  methyl.End_Point = std::max(a, z);
  g.Integrals = {methyl};
  Slot_Back_From_Session(s, slot, g, o);
  ASSERT_EQ(o.Slot_Integrals.size(), 1u);
  const int without = strokes(false);
  ASSERT_TRUE(Set_Slot_Show_Integrals(s, slot, true));
  EXPECT_GT(strokes(false), without + 5);

  // Replace: "No" keeps the working data; "Yes" reads the file anew.
  Overlay_Slot row = before;
  ui.button_answers = {2};
  EXPECT_EQ(Replace_Edit_Slot(s, slot, w, row, dx), 1);
  EXPECT_EQ(ui.shown.back().text, "データを置き換えますか？");
  EXPECT_EQ(ui.shown.back().title, "データの置き換え");
  ui.button_answers = {1};
  ASSERT_EQ(Replace_Edit_Slot(s, slot, w, row, dx), 0);
  EXPECT_EQ(w.ui, &ui);
  EXPECT_TRUE(w.Peaks.empty());
  EXPECT_NEAR(w.Spec_Re(100), before.Slot_Y[100], 1e-6f * scale);
}

}  // namespace
}  // namespace tevo::overlay
