// Array rows ordered by delay and the intensities taken out of them.
#include <gtest/gtest.h>

#include <vector>

#include "relaxation/array_data.h"

namespace tevo::relaxation {
namespace {

// Four rows of eight points; row r holds r + 1 at every point, so a row
// can be recognised wherever the sort puts it.
Session Rows(const std::vector<float>& delays) {
  Session s;
  s.Array_Rows = static_cast<int32_t>(delays.size());
  s.Spec_Points = 8;
  s.Spec_Re.Allocate(8, s.Array_Rows);
  s.Spec_Im.Allocate(8, s.Array_Rows);
  for (int32_t r = 0; r < s.Array_Rows; ++r)
    for (int32_t i = 0; i < 8; ++i) s.Spec_Re(i, r) = static_cast<float>(r + 1), s.Spec_Im(i, r) = -(r + 1.0f);
  s.Delay_List = delays;
  for (float d : delays) s.Delay_Raw.push_back(d * 1000);
  return s;
}

TEST(ArrayData, SortingKeepsEqualDelaysWithDistinctSpectra) {
  // Rows 1 and 3 (from 1) share 0.5 s: each keeps a spectrum of its own.
  Session up = Rows({0.5f, 0.1f, 0.5f, 0.2f});
  Sort_Array_Rows(up, 1);
  EXPECT_EQ(up.Delay_List, (std::vector<float>{0.1f, 0.2f, 0.5f, 0.5f}));
  EXPECT_EQ(up.Delay_Raw, (std::vector<float>{100, 200, 500, 500}));
  const std::vector<float> rows_up{2, 4, 1, 3};
  for (int32_t r = 0; r < 4; ++r) {
    EXPECT_EQ(up.Spec_Re(5, r), rows_up[r]) << r;
    EXPECT_EQ(up.Spec_Im(5, r), -rows_up[r]) << r;
    EXPECT_EQ(up.Ft_Re(5, r), rows_up[r]) << r;
  }
  Session down = Rows({0.5f, 0.1f, 0.5f, 0.2f});
  Sort_Array_Rows(down, 2);
  EXPECT_EQ(down.Delay_List, (std::vector<float>{0.5f, 0.5f, 0.2f, 0.1f}));
  const std::vector<float> rows_down{1, 3, 4, 2};
  for (int32_t r = 0; r < 4; ++r) EXPECT_EQ(down.Spec_Re(0, r), rows_down[r]) << r;

  down.Delay_Name = "T2";
  Set_Delay_Labels(down);
  EXPECT_EQ(down.Delay_Label, "t(T2*2 + PW2)");
  EXPECT_EQ(down.Delay_Axis_Label, "\\i(t)\\-((T2*2 + PW2)) / s");
}

TEST(ArrayData, RegionSumsAndPeakHeightsNormalisedAndOrderedByDelay) {
  Session s = Rows({0.3f, 0.1f, 0.2f});
  s.Spec_Re(4, 1) = -9;  // the peak's point in row 2
  s.Peaks.push_back(Peak_Rec{4});
  float largest = 0;
  // Region 2..5: four points of value r + 1.
  std::vector<Intensity_Pair> p = Extract_Intensities(s, 0, 2, 5, 0.1f, false, &largest);
  EXPECT_EQ(largest, 12.0f);
  ASSERT_EQ(p.size(), 3u);
  EXPECT_EQ(p[0].t, 0.1f);
  EXPECT_FLOAT_EQ(p[0].y, (2 + 2 + 2 - 9) / 12.0f);
  EXPECT_FLOAT_EQ(p[1].y, 1.0f);
  EXPECT_FLOAT_EQ(p[2].y, 4 / 12.0f);
  // Without a region every row gives 0, divided by the starting 0.1.
  p = Extract_Intensities(s, 0, 0, 5, 0.1f, false, &largest);
  EXPECT_EQ(largest, 0.1f);
  for (const Intensity_Pair& q : p) EXPECT_EQ(q.y, 0.0f);
  // Peak 1: the height at its point in each row.
  p = Extract_Intensities(s, 1, 0, 0, 1e-28f, false, &largest);
  EXPECT_EQ(largest, 9.0f);
  EXPECT_FLOAT_EQ(p[0].y, -1.0f);
  EXPECT_FLOAT_EQ(p[1].y, 3 / 9.0f);

  // Equal delays swap only at a new selection.
  Session e = Rows({0.1f, 0.1f});
  EXPECT_EQ(Extract_Intensities(e, 0, 1, 1, 0.1f, false)[0].y, 0.5f);
  EXPECT_EQ(Extract_Intensities(e, 0, 1, 1, 0.1f, true)[0].y, 1.0f);

  // The printed list: region sums over the largest of them.
  const std::vector<double> list = Array_List_Values(s, 2, 5);
  EXPECT_DOUBLE_EQ(list[0], 4 / 12.0);
  EXPECT_DOUBLE_EQ(list[1], -3 / 12.0);
}

}  // namespace
}  // namespace tevo::relaxation
