// The view commands of the main plot on a session without a window.
#include <gtest/gtest.h>

#include <cmath>

#include "display/view_commands.h"
#include "platform/ui.h"
#include "session/command_flow.h"
#include "session/session.h"

using namespace tevo;
using namespace tevo::display;

namespace {

// 1024 points, 0.5 Hz per point at 400 MHz; point 0 is -0.5 ppm, the
// reference point 512 is 0 ppm. A peak of height 8 at point 700.
void Load(Session& s) {
  s.Array_Rows = 1;
  Alloc_Point_Arrays(s, 1024);
  s.Spec_Points = 1024;
  s.Spectrum_Frequency = 400;
  s.Param.RESOL = 200;  // Hz per point: 0.5 ppm per point
  s.Param.FREQU = 204800;
  s.Param.SMTMS = 512;
  s.Param.SMEXR = 0;
  for (int i = 0; i < 1024; ++i) {
    s.Spec_Axis[static_cast<std::size_t>(i)] = static_cast<float>((i - 512) * 0.5);
    s.Spec_Re(static_cast<std::size_t>(i)) = i == 700 ? 8.0f : 0.0f;
  }
  s.Max_Abs = 8;
  s.X_Left = s.Spec_Axis[1023];
  s.X_Right = s.Spec_Axis[0];
  s.Y_Mag = 0.95f;
  s.Y_Full_Scale = s.Max_Abs / s.Y_Mag;
  s.settings.Set("DISP EXTEND MODE", 1.0);
  Build_Disp_Arrays(s, 0);
}

}  // namespace

TEST(ViewHistory, ZoomAndBackRestoreTheView) {
  Session s;
  Load(s);
  EXPECT_FALSE(Back_Enabled(s));
  EXPECT_FALSE(View_Back(s));  // empty history: nothing happens

  const float left0 = s.X_Left, right0 = s.X_Right, full0 = s.Y_Full_Scale;
  // Horizontal zoom to display points 100..300, then a box zoom.
  ASSERT_TRUE(Mouse_Zoom(s, Tool_H_Zoom, {300, 0}, {100, 0}));
  EXPECT_FLOAT_EQ(s.X_Left, s.Spec_Axis[300]);
  EXPECT_FLOAT_EQ(s.X_Right, s.Spec_Axis[100]);
  const float left1 = s.X_Left, right1 = s.X_Right;
  ASSERT_TRUE(Mouse_Zoom(s, Tool_Box_Zoom, {150, 4.0}, {200, 2.0}));
  EXPECT_FLOAT_EQ(s.Y_Full_Scale, 4.0f);
  EXPECT_FLOAT_EQ(s.Y_Mag, 2.0f);
  // A box above zero moves the base down to its lower edge: 2..4 gives
  // offset -0.5.
  EXPECT_FLOAT_EQ(s.Y_Offset, -0.5f);
  EXPECT_EQ(s.View_History.size(), 2u);

  // Saving the same view twice keeps one entry.
  Save_Mag(s);
  Save_Mag(s);
  EXPECT_EQ(s.View_History.size(), 3u);
  ASSERT_TRUE(View_Back(s));
  ASSERT_TRUE(View_Back(s));
  EXPECT_FLOAT_EQ(s.X_Left, left1);
  EXPECT_FLOAT_EQ(s.X_Right, right1);
  EXPECT_FLOAT_EQ(s.Y_Full_Scale, full0);
  ASSERT_TRUE(View_Back(s));
  EXPECT_FLOAT_EQ(s.X_Left, left0);
  EXPECT_FLOAT_EQ(s.X_Right, right0);
  EXPECT_FALSE(Back_Enabled(s));

  // A box reaching below zero leaves the base at its usual place.
  ASSERT_TRUE(Mouse_Zoom(s, Tool_V_Zoom, {0, -2.0}, {0, 6.0}));
  EXPECT_FLOAT_EQ(s.Y_Full_Scale, 6.0f);
  EXPECT_EQ(s.Y_Offset, 0.0f);
  // Equal indices do nothing for the horizontal tool.
  EXPECT_FALSE(Mouse_Zoom(s, Tool_H_Zoom, {5, 0}, {5, 1}));

  // The cursor pair measures instead of zooming, and stays armed: 100 ppm
  // apart at 400 MHz is 40000 Hz.
  const auto views = s.View_History.size();
  EXPECT_TRUE(Distance_Text(s).empty());  // the window is closed
  ASSERT_TRUE(Mouse_Zoom(s, Tool_Cursor_Pair, {612, 0}, {412, 0}));
  EXPECT_EQ(s.View_History.size(), views);
  EXPECT_EQ(s.Show_Distance, 1);
  EXPECT_EQ(std::vector<std::string>({"\xCE\xB4" "1= 50.0 ppm", "\xCE\xB4" "2= -50.0 ppm",
                                      "\xCE\x94" "= 40000.0 Hz      (100.0 ppm)"}),
            Distance_Text(s));
  s.Axis_Unit = 1;
  EXPECT_EQ(Distance_Text(s)[0], "\xCE\xB4" "1= 20000.0 Hz");

  // Only 50 entries are kept.
  for (int i = 0; i < 60; ++i) {
    s.X_Left = static_cast<float>(100 - i);
    Save_Mag(s);
  }
  EXPECT_EQ(s.View_History.size(), 50u);
}

TEST(ViewCommands, ToolbarWholeViewAndAutomaticScale) {
  Session s;
  Load(s);
  s.X_Left = 10;
  s.X_Right = 0;
  s.Y_Offset = 0.5f;
  // Button 8: the highest point shown is 8 at 94 ppm -- outside, so none:
  // M = 0 and the magnification becomes 0.95 * (1 - 0.5).
  ASSERT_TRUE(Basic_Toolbar(s, 8));
  EXPECT_FLOAT_EQ(s.Y_Mag, 0.475f);
  // Now show the peak: M = 8 = Max_Abs, a = 0.95 * 0.5.
  s.X_Left = 100;
  EXPECT_FALSE(Basic_Toolbar(s, 8));
  s.Y_Offset = 0;
  ASSERT_TRUE(Basic_Toolbar(s, 8));
  EXPECT_FLOAT_EQ(s.Y_Mag, 0.95f);

  // Button 6: whole spectrum and Y reset; a second press changes nothing.
  s.Y_Offset = 0.2f;
  ASSERT_TRUE(Basic_Toolbar(s, 6));
  EXPECT_EQ(s.X_Left, s.Spec_Axis[1023]);
  EXPECT_EQ(s.X_Right, s.Spec_Axis[0]);
  EXPECT_EQ(s.Y_Offset, 0.0f);
  const auto depth = s.View_History.size();
  EXPECT_FALSE(Basic_Toolbar(s, 6));
  EXPECT_EQ(s.View_History.size(), depth);
  // DEPT data reset to a quarter.
  s.DEPT_Mode = 1;
  Basic_Toolbar(s, 6);
  EXPECT_FLOAT_EQ(s.Y_Mag, 0.95f / 4);
  // Button 7 only when not whole; it leaves Y alone.
  EXPECT_FALSE(Basic_Toolbar(s, 7));
  s.X_Left = 5;
  ASSERT_TRUE(Basic_Toolbar(s, 7));
  EXPECT_FLOAT_EQ(s.Y_Mag, 0.95f / 4);
  // Tool buttons arm the mouse.
  Basic_Toolbar(s, 2);
  EXPECT_EQ(s.Mouse_Tool, Tool_H_Zoom);
}

TEST(ViewCommands, StepButtonsTypedValuesAndScrollBar) {
  Session s;
  Load(s);
  // Whole view: 511.5 ppm wide = 204600 Hz; magnification 204800 / 204600.
  EXPECT_EQ(X_Mag_Text(s), "1.001");
  // Shift: 1 % of the width per step, fixed at the press.
  s.X_Left = 100;
  s.X_Right = 0;
  Hold_Repeat r = View_Press(s, View_Button::X_Left);
  EXPECT_FLOAT_EQ(s.X_Left, 99);
  EXPECT_FLOAT_EQ(s.X_Right, -1);
  View_Repeat(s, r);
  EXPECT_FLOAT_EQ(s.X_Left, 98);
  EXPECT_EQ(Repeat_Interval_Ms(1), 500);
  EXPECT_EQ(Repeat_Interval_Ms(2), 50);

  // Magnification: 100 ppm of 512 is 5.12; up by 1.1 around the centre.
  s.X_Left = 100;
  s.X_Right = 0;
  EXPECT_EQ(X_Mag_Text(s), "5.12");
  View_Press(s, View_Button::X_Mag_Up);
  EXPECT_NEAR(s.X_Left - s.X_Right, 512 / (5.12 * 1.1), 1e-4);
  EXPECT_NEAR((s.X_Left + s.X_Right) / 2, 50, 1e-4);
  // At 1000 the step is refused; below 1 too.
  Set_X_Mag(s, 950);
  r = View_Press(s, View_Button::X_Mag_Up);
  EXPECT_EQ(r.steps, 0);
  Set_X_Mag(s, 1.05);
  r = View_Press(s, View_Button::X_Mag_Down);
  EXPECT_EQ(r.steps, 0);

  // Level and Y magnification stay inside their limits and renew the scale.
  s.Y_Offset = 0.995f;
  r = View_Press(s, View_Button::Y_Level_Up);
  EXPECT_EQ(r.steps, 0);
  r = View_Press(s, View_Button::Y_Mag_Up);
  EXPECT_NEAR(s.Y_Mag, 0.95 * 1.1, 1e-6);
  EXPECT_FLOAT_EQ(s.Y_Full_Scale, s.Max_Abs / s.Y_Mag);

  // Typed values: bad or out-of-range text writes the old value back.
  Typed_Result t = Type_Y_Mag(s, "abc");
  EXPECT_FALSE(t.taken);
  t = Type_Y_Mag(s, "2.5");
  EXPECT_TRUE(t.taken);
  EXPECT_EQ(t.text, "2.5");
  EXPECT_FLOAT_EQ(s.Y_Full_Scale, 8 / 2.5f);
  EXPECT_FALSE(Type_Y_Level(s, "1").taken);
  t = Type_Y_Level(s, "-0.25");
  EXPECT_TRUE(t.taken);
  EXPECT_EQ(t.text, "-0.25");
  t = Type_X_Mag(s, "2");
  EXPECT_TRUE(t.taken);
  EXPECT_NEAR(s.X_Left - s.X_Right, 256, 1e-3);

  // Scroll bar: a window of a quarter of the spectrum at the high end.
  const double S = s.Spec_Axis[1023] - s.Spec_Axis[0];
  s.X_Left = s.Spec_Axis[1023];
  s.X_Right = static_cast<float>(s.X_Left - S / 4);
  Scroll_State b = Scroll_From_View(s);
  EXPECT_TRUE(b.enabled);
  EXPECT_EQ(b.large_change, 2500);
  EXPECT_EQ(b.small_change, 25);
  EXPECT_EQ(b.value, 0);
  // To the far end and back: the width is kept.
  Scroll_To_View(s, 10000);
  EXPECT_NEAR(s.X_Right, s.Spec_Axis[0], 1e-3);
  EXPECT_EQ(Scroll_From_View(s).value, 10000);
  Scroll_To_View(s, 5000);
  EXPECT_EQ(Scroll_From_View(s).value, 5000);
  EXPECT_NEAR(s.X_Left - s.X_Right, S / 4, 1e-3);
  // The whole width switches the bar off.
  Basic_Toolbar(s, 7);
  EXPECT_FALSE(Scroll_From_View(s).enabled);
}

TEST(ViewCommands, RangeDialogOrdersWidensAndConvertsUnits) {
  Session s;
  Load(s);
  Range_Dialog_OK(s, {0, 2, 8});  // swapped
  EXPECT_EQ(s.X_Left, 8);
  EXPECT_EQ(s.X_Right, 2);
  Range_Dialog_OK(s, {0, 3, 3});  // equal: one ppm apart
  EXPECT_EQ(s.X_Left, 4);
  EXPECT_EQ(s.X_Right, 3);
  Range_Dialog_OK(s, {1, 4000, 400});  // Hz at 400 MHz
  EXPECT_EQ(s.Axis_Unit, 1);
  EXPECT_FLOAT_EQ(s.X_Left, 10);
  EXPECT_FLOAT_EQ(s.X_Right, 1);
  Range_Dialog_OK(s, {2, 2, 2});  // kHz: equal limits 10 Hz apart
  EXPECT_FLOAT_EQ(s.X_Left, 2010 / 400.0f);
  EXPECT_FLOAT_EQ(s.X_Right, 5);
  Range_Values v = Range_Dialog_Values(s, 2);
  EXPECT_NEAR(v.upper, 2.01, 1e-6);
  EXPECT_EQ(s.View_History.size(), 4u);
}

TEST(ArrayRows, TypedAndSteppedRowsAskFirstWithOpenBaselinePoints) {
  platform::Scripted_Ui ui;
  ui.quiet = true;
  Session s;
  s.ui = &ui;
  s.Array_Rows = 3;
  Alloc_Point_Arrays(s, 64);
  s.Spec_Points = 64;
  Build_Disp_Arrays(s, 0);
  // Rows are typed from 1; beyond the last is the last; junk keeps the row.
  EXPECT_TRUE(Type_Array_Row(s, "2").taken);
  EXPECT_EQ(s.Array_Row, 1);
  const Typed_Result last = Type_Array_Row(s, "9");
  EXPECT_EQ(last.text, "3");
  EXPECT_FALSE(Type_Array_Row(s, "2x").taken);
  EXPECT_EQ(Type_Array_Row(s, "2x").text, "3");
  EXPECT_FALSE(Set_Array_Row(s, 5));  // already the last

  // Baseline points of this row: Cancel keeps the row and the mode, No
  // drops the points and leaves the mode, then the row changes.
  s.Mode.Edit_Mode = session::Mode_Baseline;
  s.Mode.Mode_Unchanged = 0;
  s.Base_Point = {10};
  ui.button_answers = {3};
  EXPECT_FALSE(Set_Array_Row(s, 0));
  EXPECT_EQ(s.Array_Row, 2);
  EXPECT_EQ(s.Mode.Edit_Mode, session::Mode_Baseline);
  ui.button_answers = {2};
  EXPECT_TRUE(Set_Array_Row(s, 0));
  EXPECT_EQ(s.Array_Row, 0);
  EXPECT_EQ(s.Mode.Edit_Mode, session::Mode_Basic);
  ASSERT_EQ(ui.shown.size(), 2u);
  EXPECT_EQ(ui.shown[0].text, "ベースライン補正を実行しますか");
}
