// Frames, pixel maps, tick steps and tick labels.
#include <gtest/gtest.h>

#include <cmath>

#include "display/plot_geometry.h"
#include "session/number_text.h"

using namespace tevo::display;

TEST(PictureFormat, PatternsPrintAsTheFieldsShowThem) {
  using tevo::Format_Number;
  EXPECT_EQ(Format_Number(2.5, "####0.0###"), "2.5");
  EXPECT_EQ(Format_Number(12.123456, "####0.0###"), "12.1235");
  EXPECT_EQ(Format_Number(3, "####0.0###"), "3.0");
  EXPECT_EQ(Format_Number(0.5, "#.00"), ".50");
  EXPECT_EQ(Format_Number(5, "0.##"), "5.");
  EXPECT_EQ(Format_Number(7.25, "0.000"), "7.250");
  EXPECT_EQ(Format_Number(-7.25, "###0.0# Hz"), "-7.25 Hz");
  EXPECT_EQ(Format_Number(42.6, "#######0"), "43");
  EXPECT_EQ(Format_Number(-0.0001, "0.00"), "0.00");
  EXPECT_EQ(Format_Number(123456, "0.00E+"), "1.23E+5");
  EXPECT_EQ(Format_Number(0.000123, "0.0E+"), "1.2E-4");
  EXPECT_EQ(Format_Number(123456, "0.0E+00"), "1.2E+05");
  EXPECT_EQ(Format_Number(99999, "0.0E+"), "1.0E+5");
}

TEST(PlotFrame, SingleAndArrayFrames) {
  // 1200 high: the base at 950, the axis 50 below, the markers 200 above it.
  Plot_Frame f = Make_Plot_Frame(10, 800, 0, 1200, 96.0 / 72);
  EXPECT_EQ(f.Frame_Left, 10);
  EXPECT_EQ(f.Frame_Right, 810);
  EXPECT_EQ(f.Frame_Left_Last, 10);
  EXPECT_EQ(f.Frame_Right_Last, 810);
  EXPECT_EQ(f.Frame_Base, 950);
  EXPECT_EQ(f.Axis_Y, 1000);
  EXPECT_EQ(f.Marker_Top, 800);
  EXPECT_EQ(f.Frame_Bottom, 1200);
  // 600 high and 20 down: integer division before the top is added.
  f = Make_Plot_Frame(0, 400, 20, 600, 1);
  EXPECT_EQ(f.Frame_Base, 475 + 20);
  EXPECT_EQ(f.Axis_Y, 495 + 25);

  // Array stack: a negative ratio puts the first row to the right.
  f = Make_Array_Frame(0, 1000, 0, 1200, 1, -0.2);
  EXPECT_EQ(f.Frame_Left, 200);
  EXPECT_EQ(f.Frame_Left_Last, 0);
  EXPECT_EQ(f.Frame_Right, 1000);
  EXPECT_EQ(f.Frame_Right_Last, 800);
  f = Make_Array_Frame(0, 1000, 0, 1200, 1, 0.25);
  EXPECT_EQ(f.Frame_Left, 0);
  EXPECT_EQ(f.Frame_Left_Last, 250);
  EXPECT_EQ(f.Frame_Right, 750);
  EXPECT_EQ(f.Frame_Right_Last, 1000);
}

TEST(PlotFrame, PixelMaps) {
  // 10 ppm on the left edge, 0 ppm on the right, over 0..1000 pixels.
  EXPECT_DOUBLE_EQ(X_To_Pixel(10, 10, 0, 0, 1000), 0);
  EXPECT_DOUBLE_EQ(X_To_Pixel(0, 10, 0, 0, 1000), 1000);
  EXPECT_DOUBLE_EQ(X_To_Pixel(2.5, 10, 0, 0, 1000), 750);
  // Half pixels round to even.
  EXPECT_EQ(Round_Pixel(2.5), 2);
  EXPECT_EQ(Round_Pixel(3.5), 4);
  // Signal 0 at the base, full scale at the top; an offset of 0.5 lifts the
  // whole trace by half the base-to-top distance.
  EXPECT_DOUBLE_EQ(Y_To_Pixel(0, 950, 0, 100, 0), 950);
  EXPECT_DOUBLE_EQ(Y_To_Pixel(100, 950, 0, 100, 0), 0);
  EXPECT_DOUBLE_EQ(Y_To_Pixel(50, 950, 0, 100, 0.5), 0);
  EXPECT_DOUBLE_EQ(Y_To_Pixel(-50, 950, 0, 100, 0), 1425);
}

TEST(Ticks, NiceStepsExponentsAndReversedRanges) {
  // 7 ppm wide: mantissa 10, step 1. 2 ppm: mantissa 2, step 0.2. 1.4: step 0.1.
  Tick_Step t = Nice_Tick_Step(0, 7);
  EXPECT_EQ(t.mantissa, 10);
  EXPECT_NEAR(t.step, 1.0, 1e-12);
  EXPECT_NEAR(t.first, 0.0, 1e-12);  // a left edge on a multiple is the first tick
  t = Nice_Tick_Step(3, 5);
  EXPECT_EQ(t.mantissa, 2);
  EXPECT_NEAR(t.step, 0.2, 1e-12);
  t = Nice_Tick_Step(0, 1.4);
  EXPECT_EQ(t.mantissa, 1);
  EXPECT_NEAR(t.step, 0.1, 1e-12);
  // A range of 3 is mantissa 5: step 0.5.
  t = Nice_Tick_Step(0, 3);
  EXPECT_EQ(t.mantissa, 5);
  EXPECT_NEAR(t.step, 0.5, 1e-12);
  // Left above right (the usual ppm axis): negative step, ticks walk down.
  t = Nice_Tick_Step(10, 0);
  EXPECT_NEAR(t.step, -1.0, 1e-12);
  EXPECT_NEAR(t.first, 10.0, 1e-12);
  EXPECT_FALSE(Nice_Tick_Step(4, 4).valid);

  // A left edge a hair below a multiple counts as on it.
  EXPECT_NEAR(Align_First_Tick(0.99999999, 5, 1), 1.0, 1e-12);
  EXPECT_NEAR(Align_First_Tick(1.2, 5, 1), 2.0, 1e-12);
  EXPECT_EQ(Align_First_Tick(1, 1, 1), 0);
  EXPECT_EQ(Align_First_Tick(1, 5, 0), 0);

  EXPECT_EQ(Decimal_Exponent(0), 0);
  EXPECT_EQ(Decimal_Exponent(1000), 3);
  EXPECT_EQ(Decimal_Exponent(999.999), 3);  // within the tolerance of 1000
  EXPECT_EQ(Decimal_Exponent(990), 2);
  EXPECT_EQ(Decimal_Exponent(990), 2);
  EXPECT_EQ(Decimal_Exponent(-0.05), -2);
  EXPECT_EQ(Decimal_Exponent(0.2), -1);
}

TEST(Ticks, LabelTextsPlainAndScientific) {
  // Plain form: decimals follow the step's exponent.
  EXPECT_EQ(Format_Tick_Label(1.4, 128, -1, 1, 0), "1.4");
  EXPECT_EQ(Format_Tick_Label(1.25, 128, -2, 1, 0), "1.25");
  EXPECT_EQ(Format_Tick_Label(7, 128, 0, 1, 0), "7");
  EXPECT_EQ(Format_Tick_Label(-3, 128, 0, 1, 0), "-3");
  EXPECT_EQ(Format_Tick_Label(250, 128, 1, 1, 0), "250");
  EXPECT_EQ(Format_Tick_Label(0, 128, -1, 1, 0), "0");
  // Scientific form: mantissa, multiplication sign, a superscript power.
  EXPECT_EQ(Format_Tick_Label(100000, 128, 3, 2, 0), "1.00x10\\+1 5\\+0 ");
  EXPECT_EQ(Format_Tick_Label(-120000, 128, 4, 2, 0), "-1.2x10\\+1 5\\+0 ");
  EXPECT_EQ(Format_Tick_Label(0.0002, 128, -4, 2, 0), "2x10\\+1 -4\\+0 ");
  EXPECT_EQ(Format_Tick_Label(3, 128, 0, 2, -1), "3");
  // The axis font's own signs with charset 0.
  EXPECT_EQ(Format_Tick_Label(-100000, 0, 5, 2, 0), "\xE2\x88\x92" "1\xC3\x97" "10\\+1 5\\+0 ");

  // Which form: labels of 100000 with a step of 10000 are scientific, with a
  // step of 1000 (exponent 3) still plain; all limits below 0.5 too.
  EXPECT_EQ(Tick_Label_Mode(100000, 0, -10000), 2);
  EXPECT_EQ(Tick_Label_Mode(100000, 0, -1000), 1);
  EXPECT_EQ(Tick_Label_Mode(10, 0, -1), 1);
  EXPECT_EQ(Tick_Label_Mode(0.0004, 0, -0.00005), 2);
  EXPECT_EQ(Tick_Label_Text(200000, 300000, 0, -50000, 128), "\\< 2.0x10\\+1 5\\+0 ");
}

TEST(Ticks, AutomaticSearchWalksOneTwoFiveTenTwentyFifty) {
  // Ten pixels a character: labels are wide, the frame narrow, so the
  // search must widen several times.
  auto width = [](const std::string& t) { return 10.0 * static_cast<double>(t.size()); };
  // 0..1.4 over 40 px: the first step is 0.1, and 5 is the first step whose
  // labels ("\< 50", 50 px) fit 0.8 of the distance between ticks.
  Tick_Plan p = Auto_Tick_Plan(0, 1.4, 0, 40, 128, width);
  ASSERT_GE(p.tried.size(), 6u);
  const double expect[] = {0.1, 0.2, 0.5, 1.0, 2.0, 5.0};
  for (int i = 0; i < 6; ++i) EXPECT_NEAR(p.tried[static_cast<std::size_t>(i)], expect[i], 1e-12);
  // At most seven widenings.
  EXPECT_LE(p.tried.size(), 8u);

  // Wide frame: the first step fits, minor is a fifth (mantissa 1).
  p = Auto_Tick_Plan(0, 1.4, 0, 2000, 128, width);
  ASSERT_EQ(p.tried.size(), 1u);
  EXPECT_NEAR(p.step, 0.1, 1e-12);
  EXPECT_NEAR(p.minor, 0.02, 1e-12);
  // Mantissa 2: four minor parts.
  p = Auto_Tick_Plan(5, 3, 0, 2000, 128, width);
  EXPECT_NEAR(p.step, -0.2, 1e-12);
  EXPECT_NEAR(p.minor, -0.05, 1e-12);
  EXPECT_NEAR(p.first, 5.0, 1e-9);
  // 7 ppm: step 1, minor 0.2.
  p = Auto_Tick_Plan(7, 0, 0, 2000, 128, width);
  EXPECT_NEAR(p.step, -1, 1e-12);
  EXPECT_NEAR(p.minor, -0.2, 1e-12);

  // Fixed ticks take the sign of the range.
  p = Fixed_Tick_Plan(10, 0, 2, 0.5);
  EXPECT_EQ(p.step, -2);
  EXPECT_EQ(p.minor, -0.5);
  EXPECT_NEAR(p.first, 10, 1e-12);
  EXPECT_NEAR(Fixed_Tick_Plan(9.5, 0, 2, 0.5).first, 8, 1e-12);
}

TEST(Grid, HorizontalLoopStopsOneStepBeforeVertical) {
  // 0.0001 of a step of 10000 is exactly 1, so a value of 30000 against a
  // right limit of 29999 sits exactly on the stop point.
  const auto vertical = Grid_Values(0, 10000, 29999, false);
  const auto horizontal = Grid_Values(0, 10000, 29999, true);
  ASSERT_EQ(vertical.size(), 4u);
  ASSERT_EQ(horizontal.size(), 3u);
  EXPECT_EQ(vertical.back(), 30000);
  EXPECT_EQ(horizontal.back(), 20000);
  // Reversed range: the loop runs by the sign of the step.
  const auto down = Grid_Values(9, -1, 0, false);
  ASSERT_EQ(down.size(), 10u);
  EXPECT_EQ(down.back(), 0);
  EXPECT_TRUE(Grid_Values(0, 0, 1, false).empty());
}
