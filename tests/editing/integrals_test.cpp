// Integral regions: levelling from their ends on a tilted baseline, the
// region edits, the trim steps, the reference and the scale of the curves;
// and the aspirin FID after the automatic baseline against its protons.
#include <gtest/gtest.h>

#include <cmath>

#include "editing/baseline.h"
#include "editing/integral_sum.h"
#include "editing/integrals.h"
#include "editing/list_tables.h"
#include "session/number_text.h"
#include "editing/undo.h"
#include "spectrum_rows.h"

namespace tevo {
namespace {

using test::Lorentz;
using test::Spectrum_Session;

// Lines of heights 1, 2 and 3 (width 3 points) at 1000, 3000 and 6000 of
// 8192 points, on the baseline 0.2 - 0.3 * k / N.
std::complex<double> Three_Lines(int32_t k) {
  return Lorentz(1, 1000, 3, k) + Lorentz(2, 3000, 3, k) + Lorentz(3, 6000, 3, k) +
         std::complex<double>(0.2 - 0.3 * k / 8192.0, 0);
}

TEST(Integration, RegionsLevelledFromTheirEndsStandInTheRatioOfTheirLines) {
  Spectrum_Session d(8192, Three_Lines, 3.2f);
  Session& s = d.s;
  for (int32_t centre : {1000, 3000, 6000}) ASSERT_GE(editing::Integ_Add(s, centre + 400, centre - 400), 0);
  ASSERT_EQ(s.Integrals.size(), 3u);
  // The ends of each region are levelled to 0 (B0 cancels the end mean).
  const Integ_Rec& r = s.Integrals[0];
  double foot = 0;
  for (int32_t k = r.End_Point - 2; k <= r.End_Point + 2; ++k) foot += Three_Lines(k).real() / 5;
  EXPECT_NEAR(r.B0, -foot / 3.2, 1e-7);
  ASSERT_TRUE(editing::Integ_Set_Reference(s, 0, 1.0f));
  EXPECT_NEAR(editing::Integ_Shown_Value(s, 1), 2.0, 0.01);
  EXPECT_NEAR(editing::Integ_Shown_Value(s, 2), 3.0, 0.015);
  // The raw sum in units of Max_Abs: pi * w * height, less the part of the
  // tails outside and under the levelled ends (about 1 %).
  EXPECT_NEAR(s.Integrals[0].Value, M_PI * 3 / 3.2, 0.02 * M_PI * 3 / 3.2);
  // The curve scale: the tallest curve reaches 0.8 of the plot.
  EXPECT_NEAR(s.Integ_Scale, (0.8 - 0.1) / s.Integrals[2].Value, 1e-6);
  editing::Integ_Rescale(s);
  EXPECT_NEAR(s.Integ_Scale, (0.8 - 0.1) / s.Integrals[2].Value, 1e-6);
  const editing::List_Table table = editing::Integral_List_Table(s);
  EXPECT_EQ(table.heads, (std::vector<std::string>{"番号", "Start(ppm)", "End(ppm)", "積分値", "B0", "B1"}));
  ASSERT_EQ(table.rows.size(), 3u);
  EXPECT_EQ(table.rows[0][3], "1.000");
  EXPECT_EQ(table.rows[0][1], Format_Number(s.Spec_Axis[600], "###0.000"));
  // A reference value of 0 shows 0 for all; a reference region summing to 0
  // shows the raw values.
  editing::Integ_Set_Reference(s, 1, 0.0f);
  EXPECT_EQ(editing::Integ_Shown_Value(s, 2), 0.0);
  // Empty or reversed drags add nothing.
  EXPECT_EQ(editing::Integ_Add(s, 100, 100), -1);
  EXPECT_EQ(editing::Integ_Add(s, 50, 100), -1);
}

TEST(Integration, SplitMoveWidenTrimAndDeleteKeepTheRegionsConsistent) {
  Spectrum_Session d(8192, Three_Lines, 3.2f);
  Session& s = d.s;
  ASSERT_EQ(editing::Integ_Add(s, 3400, 2600), 0);
  ASSERT_EQ(editing::Integ_Add(s, 6400, 5600), 1);
  const double whole = s.Integrals[0].Value;
  // A split keeps the baseline line: the halves add up to the whole.
  ASSERT_TRUE(editing::Integ_Split(s, 0, 3000));
  ASSERT_EQ(s.Integrals.size(), 3u);
  EXPECT_EQ(s.Integrals[0].Start_Point, 3001);
  EXPECT_EQ(s.Integrals[1].End_Point, 3000);
  EXPECT_NEAR(double(s.Integrals[0].Value) + s.Integrals[1].Value, whole, 1e-5 * whole);
  // Widening an end keeps the line under the region: widened and brought
  // back, the region sums as before.
  const Integ_Rec before = s.Integrals[0];
  ASSERT_TRUE(editing::Integ_Widen(s, 0, 3500));
  EXPECT_EQ(s.Integrals[0].End_Point, 3500);
  ASSERT_TRUE(editing::Integ_Widen(s, 0, before.End_Point));
  EXPECT_NEAR(s.Integrals[0].Value, before.Value, 1e-5 * std::fabs(before.Value));
  EXPECT_NEAR(s.Integrals[0].B0, before.B0, 1e-7);
  ASSERT_TRUE(editing::Integ_Widen(s, 0, 3500));
  EXPECT_EQ(editing::Integ_Region_At(s, 3450), 0);
  EXPECT_EQ(editing::Integ_Region_At(s, 100), -1);
  ASSERT_TRUE(editing::Integ_Move(s, 2, -10));
  EXPECT_EQ(s.Integrals[2].End_Point, 6390);
  EXPECT_FALSE(editing::Integ_Move(s, 2, 0));
  // Trim: the fine step is 2e-6 / Integ_Scale, the coarse one ten times that.
  s.Integ_Cur = 2;
  editing::Integ_Trim_Begin(s);
  EXPECT_EQ(editing::Undo_Caption(s).caption, "取り消し(B0,B1の変更)");
  const float b0 = s.Integrals[2].B0, b1 = s.Integrals[2].B1;
  const float value = s.Integrals[2].Value;
  EXPECT_FLOAT_EQ(editing::Integ_Trim_Step(s, editing::Trim_Button::B0_Up), static_cast<float>(b0 + 2e-6 / s.Integ_Scale));
  EXPECT_FLOAT_EQ(editing::Integ_Trim_Step(s, editing::Trim_Button::B1_Down_Coarse),
                  static_cast<float>(b1 - 2e-5 / s.Integ_Scale));
  EXPECT_NE(s.Integrals[2].Value, value);
  // Deleting the reference region moves the index inside the list.
  editing::Integ_Set_Reference(s, 2, 1.0f);
  ASSERT_TRUE(editing::Integ_Delete(s, 2));
  EXPECT_EQ(s.Integ_Ref_Index, 1);
  EXPECT_TRUE(editing::IntegralCommand2_Click(s));
  EXPECT_FALSE(editing::IntegralCommand2_Click(s));
}

TEST(Integration, AspirinMultipletsAfterTheAutomaticBaselineStandInTheRatioOfTheirProtons) {
  test::Temp_Dir home;
  Spectrum_Session d(16, [](int32_t) { return std::complex<double>(0, 0); });
  Session& s = d.s;
  ASSERT_TRUE(test::Open_Bruker_Fid(s, home.path(), "bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1"));
  ASSERT_TRUE(editing::m23_Click(s));
  EXPECT_GT(editing::Base_Auto_Points(s), 0);
  editing::BaseCorCommand2_Click(s);
  EXPECT_EQ(s.Base_Corrected, 1);
  // The four aromatic protons (one each) and the acetyl CH3 (three): the
  // regions of the vendor's own integration (pdata/1/integrals.txt), the
  // first one narrowed to leave out the broad line at 8.24 ppm.
  const double regions[][3] = {
      {8.100, 7.970, 1}, {7.598, 7.468, 1}, {7.345, 7.227, 1}, {7.128, 7.010, 1}, {2.341, 2.211, 3}};
  for (const auto& r : regions)
    ASSERT_GE(editing::Integ_Add(s, editing::Spec_Point_Of_Ppm(s, r[0]), editing::Spec_Point_Of_Ppm(s, r[1])), 0);
  editing::Integ_Set_Reference(s, 1, 1.0f);
  for (int i = 0; i < 5; ++i) {
    const double v = editing::Integ_Shown_Value(s, i);
    std::printf("aspirin %.2f..%.2f ppm: %.4f (protons %g)\n", regions[i][0], regions[i][1], v, regions[i][2]);
    EXPECT_NEAR(v, regions[i][2], 0.1 * regions[i][2]) << regions[i][0];
  }
}

}  // namespace
}  // namespace tevo
