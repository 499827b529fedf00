// Array rows ordered by delay and the intensities taken out of them.
#include <gtest/gtest.h>

#include <vector>

#include "datafiles/open_file.h"
#include "datafiles/quiet_session.h"
#include "relaxation/array_data.h"
#include "relaxation/relaxation_fit.h"
#include "signal/fid_processing.h"
#include "support/test_support.h"

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

  // The fit's data: the same series with its start values over all three
  // rows (B the last, A0 the first less B); two rows, or one delay for all,
  // leave nothing to fit.
  Relax_Fit fit;
  ASSERT_EQ(Select_Fit_Data(s, 0, 2, 5, true, 1.0f, fit), Fit_Data_Status::Ready);
  EXPECT_EQ(fit.Data_T, (std::vector<float>{0.1f, 0.2f, 0.3f}));
  EXPECT_FLOAT_EQ(fit.Start_Value[Relax_B], 4 / 12.0f);
  EXPECT_FLOAT_EQ(fit.Start_Value[Relax_A0], (-3 - 4) / 12.0f);
  EXPECT_EQ(fit.Start_Value[Relax_K], 1.0f);  // no inner pair: the previous k
  EXPECT_EQ(fit.Last_Point, 2);
  EXPECT_EQ(s.Intensity_Pairs.size(), 3u);
  Session two = Rows({0.1f, 0.2f}), alike = Rows({0.1f, 0.1f, 0.1f});
  EXPECT_EQ(Select_Fit_Data(two, 0, 1, 1, true, 1.0f, fit), Fit_Data_Status::Too_Few_Rows);
  EXPECT_EQ(Select_Fit_Data(alike, 0, 1, 1, false, 1.0f, fit), Fit_Data_Status::All_Alike);

  // The printed list: region sums over the largest of them.
  const std::vector<double> list = Array_List_Values(s, 2, 5);
  EXPECT_DOUBLE_EQ(list[0], 4 / 12.0);
  EXPECT_DOUBLE_EQ(list[1], -3 / 12.0);
}

// Reads a real relaxation series with the given answers to the questions
// of the open, then commits the transform with the processing defaults.
void Read_And_Commit(test::Quiet_Session& q, const std::string& series, std::initializer_list<int> choices) {
  for (int c : choices) q.ui.choice_answers.push_back(c);
  const std::string path = test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/" + series).string();
  ASSERT_EQ(datafiles::NM1D_m11_Click(q.s, {path, {}}), 0);
  signal::Process_Report report;
  ASSERT_EQ(signal::Process_Fid(q.s, {}, report), 0);
}

bool Same_Row(const Session& a, int32_t row_a, const Session& b, int32_t row_b) {
  for (int32_t i = 0; i < a.Spec_Points; i += 97)
    if (a.Spec_Re(i, row_a) != b.Spec_Re(i, row_b)) return false;
  return true;
}

constexpr int Form20_Dept = 0, Form20_Descending = 2, Form20_Read_Order = 3, Form20_Overlays = 4;
constexpr const char* T1rho = "t1rho-1H/189/ser";  // 22 rows, the first and last at 90 us

TEST(ArrayCommit, RowsBecomeOverlaysOrAreSortedByDelayKeepingTheirSpectra) {
  // Kept as read: the reference for where each row must end up.
  test::Quiet_Session kept;
  Read_And_Commit(kept, T1rho, {Form20_Read_Order});
  ASSERT_EQ(kept.s.Array_Rows, 22);

  // As overlays, with slot 4 occupied and the overwrite refused: rows 1..9
  // fill the other slots, the rest of the 22 rows is dropped.
  test::Quiet_Session over;
  over.s.Overlay[4].Slot_Points = 1;
  over.s.Overlay[4].Slot_Comment = "old";
  over.ui.button_answers.push_back(2);  // "no" to the overwrite
  Read_And_Commit(over, T1rho, {1 /* keep the overlays */, Form20_Overlays});
  ASSERT_FALSE(over.ui.shown.empty());
  EXPECT_EQ(over.ui.shown.back().title, "重ね書き,上書き確認");
  EXPECT_EQ(over.ui.shown.back().text, "重ね書きデータに上書きしますか。");
  EXPECT_EQ(over.s.Array_Rows, 1);
  EXPECT_TRUE(Same_Row(over.s, 0, kept.s, 0));
  EXPECT_FLOAT_EQ(over.s.Y_Mag, 0.95f / 22);
  const char* labels[] = {"", "t= 0.00017", "t= 0.0005", "t= 0.003", "", "t= 0.01",
                          "t= 0.015", "t= 0.025", "t= 0.03", "t= 0.04"};
  for (int r = 1; r <= 9; ++r) {
    SCOPED_TRACE(r);
    const Overlay_Slot& o = over.s.Overlay[static_cast<size_t>(r)];
    if (r == 4) {
      EXPECT_EQ(o.Slot_Comment, "old");
      continue;
    }
    EXPECT_EQ(o.Slot_Comment, labels[r]);
    ASSERT_EQ(o.Slot_Points, kept.s.Spec_Points);
    EXPECT_EQ(o.Slot_Y[100], kept.s.Spec_Re(100, r));
    EXPECT_EQ(o.Slot_Y[kept.s.Spec_Points / 2], kept.s.Spec_Re(kept.s.Spec_Points / 2, r));
    EXPECT_FLOAT_EQ(o.Slot_Y_Offset, r / 22.0f);
    EXPECT_FLOAT_EQ(o.Slot_Y_Mag, 0.95f / 22);
    EXPECT_FLOAT_EQ(o.Slot_Y_Full, o.Slot_Max_Abs * 22 / 0.95f);
  }
  EXPECT_EQ(over.s.Overlay[10].Slot_Points, 0);

  // DEPT rows of a ten-row set, into empty slots without a question.
  test::Quiet_Session dept;
  Read_And_Commit(dept, "inversionRecovery2D/inversionRecovery2D/1", {Form20_Dept});
  EXPECT_TRUE(dept.ui.shown.empty());
  EXPECT_EQ(dept.s.Array_Rows, 1);
  EXPECT_EQ(dept.s.Overlay[1].Slot_Comment, "CH");
  EXPECT_EQ(dept.s.Overlay[3].Slot_Comment, "CH3");
  EXPECT_GT(dept.s.Overlay[9].Slot_Points, 0);

  // Sorted descending: every place holds a row of the same delay with that
  // row's spectrum, and the two rows at 90 us both stay.
  test::Quiet_Session sorted;
  Read_And_Commit(sorted, T1rho, {Form20_Descending});
  ASSERT_EQ(sorted.s.Array_Rows, 22);
  std::vector<bool> taken(22, false);
  for (int32_t p = 0; p < 22; ++p) {
    SCOPED_TRACE(p);
    if (p > 0) EXPECT_GE(sorted.s.Delay_List[p - 1], sorted.s.Delay_List[p]);
    bool found = false;
    for (int32_t k = 0; k < 22 && !found; ++k)
      if (!taken[k] && kept.s.Delay_List[k] == sorted.s.Delay_List[p] && Same_Row(sorted.s, p, kept.s, k))
        taken[k] = found = true;
    EXPECT_TRUE(found);
  }
  EXPECT_FALSE(Same_Row(sorted.s, 20, sorted.s, 21));

  // Cancelling the question gives up the open of the next series.
  sorted.ui.choice_answers.push_back(-1);
  const std::string ir =
      test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/inversionRecovery2D/inversionRecovery2D/1").string();
  EXPECT_EQ(datafiles::NM1D_m11_Click(sorted.s, {ir, {}}), 1);
  EXPECT_NE(sorted.s.Array_Rows, 10);
}

TEST(ArrayCommit, IndividualFidsAreTransformedTogetherWithThePhaseOfTheChosenRow) {
  // The same FID twice: NMR1D_Form21 picks the last row to phase, and both
  // rows come out of the transform alike.
  test::Quiet_Session q;
  const std::string fid = test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid").string();
  q.ui.choice_answers.push_back(1);  // "一番最後のデータ(T1)"
  ASSERT_EQ(datafiles::NM1D_m111_Click(q.s, {Join_Individual_Paths({fid, fid}), {}}), 0);
  ASSERT_EQ(q.s.Array_Rows, 2);
  EXPECT_EQ(q.s.Array_Row, 1);
  EXPECT_EQ(q.s.Is_Fid, 1);
  signal::Process_Report report;
  ASSERT_EQ(signal::Process_Fid(q.s, {}, report), 0);
  ASSERT_EQ(q.s.Array_Rows, 2);
  EXPECT_TRUE(Same_Row(q.s, 0, q.s, 1));
  EXPECT_GT(q.s.Max_Abs, 1.0f);
}

TEST(ArrayCommit, StackPlacementAndPlotLimitsTakeOnlyValuesInsideTheirRules) {
  Session s;
  NMR1D_Form32_OK(s, "-0.3", "0");
  EXPECT_FLOAT_EQ(static_cast<float>(s.settings.Real("X AXIS RATIO")), -0.3f);
  EXPECT_FLOAT_EQ(static_cast<float>(s.settings.Real("Y AXIS RATIO")), 0.0f);
  for (const auto& [x, y] : {std::pair{"1", "1"}, {"-1", "-0.01"}, {"abc", ""}}) {
    NMR1D_Form32_OK(s, x, y);
    EXPECT_FLOAT_EQ(static_cast<float>(s.settings.Real("X AXIS RATIO")), -0.3f);
    EXPECT_FLOAT_EQ(static_cast<float>(s.settings.Real("Y AXIS RATIO")), 0.0f);
  }
  NMR1D_Form32_OK(s, "0.99", "0.5");
  EXPECT_FLOAT_EQ(static_cast<float>(s.settings.Real("X AXIS RATIO")), 0.99f);
  EXPECT_FLOAT_EQ(static_cast<float>(s.settings.Real("Y AXIS RATIO")), 0.5f);

  // The plot of the T1/T2 window: a delay pair only lower below upper, an
  // intensity pair whatever its order.
  Relax_Limits l;
  T1Cal_Form2_OK(l, "3", "3", "0.5", "-1");
  EXPECT_EQ(l.X_Min, 0.0f);
  EXPECT_EQ(l.X_Max, 1.0f);
  EXPECT_EQ(l.Y_Min, 0.5f);
  EXPECT_EQ(l.Y_Max, -1.0f);
  T1Cal_Form2_OK(l, "0.25", "4", "x", "1");
  EXPECT_EQ(l.X_Min, 0.25f);
  EXPECT_EQ(l.X_Max, 4.0f);
  EXPECT_EQ(l.Y_Min, 0.5f);
}

}  // namespace
}  // namespace tevo::relaxation
