// The list rows and result file of the line separation against areas
// worked out from the integrals of the two shapes, and the window's edits
// (click heights, delete within reach, delete all, range edges, undo) on a
// spectrum of one known Lorentzian line.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <sstream>
#include <numbers>

#include "deconvolution/line_edit.h"
#include "deconvolution/line_results.h"
#include "editing/spectrum_rows.h"
#include "session/number_text.h"
#include "session/text_encoding.h"
#include "support/test_support.h"

namespace tevo::deconvolution {
namespace {

TEST(LineResults, RowsAndFileCarryTheAreasOfBothShapes) {
  test::Spectrum_Session t(1024, [](int32_t) { return std::complex<double>(); });
  Session& s = t.s;
  s.Log_Mode = -1;
  const float axis0 = Sim_Axis0(s);
  // Lorentzian, Gaussian, and a negative half-and-half line.
  const float lines[3][4] = {{2.5f, 2.0f, 0.8f, 0.0f}, {2.48f, 1.5f, 0.5f, 1.0f}, {1.0f, 1.0f, -0.4f, 0.5f}};
  Sim_Peaks p;
  for (const auto& l : lines) {
    const auto k = static_cast<std::size_t>(p.Sim_Peak_Count++);
    p.Peak_Pos[k] = l[0] - axis0, p.Peak_Width[k] = l[1], p.Peak_Height[k] = l[2], p.Peak_Gauss[k] = l[3];
  }
  // Half the integral over Hz: pi h w for h w^2/(w^2+d^2), h w sqrt(pi/ln 2)
  // for h exp(-ln2 d^2/w^2).
  const double lorentz = std::numbers::pi / 2, gauss = std::sqrt(std::numbers::pi / std::log(2.0)) / 2;
  const double areas[3] = {lorentz * 1.6, gauss * 0.75, -0.4 * (0.5 * lorentz + 0.5 * gauss)};
  const auto rows = Line_Result_Rows(p, axis0, 400);
  ASSERT_EQ(rows.size(), 3u);
  for (std::size_t k = 0; k < 3; ++k) {
    EXPECT_NEAR(rows[k].area, areas[k], 1e-5 * std::fabs(areas[k])) << k;
    EXPECT_NEAR(rows[k].relative, 100 * areas[k] / areas[0], 1e-3) << k;
  }
  EXPECT_EQ(rows[0].text, (std::array<std::string, 7>{"1", "2.5000", "1000.00", "2.0000", "0.8000", "0.000", "100.0000"}));
  EXPECT_EQ(rows[2].text[6], "-20.9708");

  test::Temp_Dir dir;
  const auto path = dir / "lines.txt";
  ASSERT_EQ(Write_Line_Results(s, p, axis0, path.string()), 0);
  const std::string text = Sjis_To_Utf8(test::Read_Text(path));
  EXPECT_EQ(text.substr(0, text.find("\r\n", text.find("\r\n") + 2) + 2),
            "番号, δ/ppm, ν/Hz, 半値幅/Hz, 高さ, 関数, 積分比\r\n1, 2.5000, 1000.00, 2.0000, 0.8000, 0.000, 100.0000\r\n");
  EXPECT_EQ(Write_Line_Results(s, Sim_Peaks{}, axis0, path.string()), 1);
}

TEST(LineEdit, ClicksRangeUndoAndTheResidualOfAnExactLine) {
  // One Lorentzian of height 0.8 at point 700, half width 3 points; the
  // window shows it divided by Max_Abs = 2.
  test::Spectrum_Session t(1024, [](int32_t k) { return test::Lorentz(0.8, 700, 3, k); }, 2.0f);
  Session& s = t.s;
  s.X_Left = s.Spec_Axis[1023];  // the whole spectrum, high ppm on the left
  s.X_Right = s.Spec_Axis[0];
  Sim_State st;
  Sim_Open(s, st);
  EXPECT_EQ(st.Range_First, 0);
  EXPECT_EQ(st.Range_Last, 1023);
  const auto ppm = [&](int32_t k) { return static_cast<double>(s.Spec_Axis[static_cast<std::size_t>(k)]); };
  ASSERT_TRUE(Sim_Add_Peak(s, st, ppm(300)));
  ASSERT_TRUE(Sim_Add_Peak(s, st, ppm(700)));
  ASSERT_EQ(st.Peaks.Sim_Peak_Count, 2);
  EXPECT_FLOAT_EQ(st.Peaks.Peak_Height[0], 0.4f);  // the higher ppm first
  EXPECT_FLOAT_EQ(st.Peaks.Peak_Width[0], 1.0f);  // the shared start width
  // A settings file of an earlier version holds 0 for the fit's steps: the
  // fit would not move. Such a step is the key's default.
  s.settings.Set("SIM HENDOU POS", 0.0);
  s.settings.Set("SIM HENDOU WIDTH", 0.5);
  EXPECT_FLOAT_EQ(Sim_Fit_Steps(s)[0], 0.001f);
  EXPECT_FLOAT_EQ(Sim_Fit_Steps(s)[1], 0.5f);
  EXPECT_FALSE(Sim_Delete_Near(s, st, ppm(320), 0.01));
  EXPECT_TRUE(Sim_Delete_Near(s, st, ppm(301), 0.02));
  EXPECT_EQ(Sim_Undo_Caption(st.Undo), "UnDo(ピークの削除)");

  // The edges: the right one (lower ppm) to point 650, the left to 750.
  Sim_Set_Range_Edge(s, st, ppm(650), true);
  Sim_Set_Range_Edge(s, st, ppm(750), false);
  EXPECT_EQ(st.Range_First, 650);
  EXPECT_EQ(st.Range_Last, 750);
  EXPECT_EQ(Sim_Range_Text(s, st, true), "Start=" + Format_Number(ppm(750), "####0.0###") + " ppm");

  // The true width gives a residual of nothing, and the fit takes that line.
  st.Peaks.Peak_Width[0] = 3 * 4000.0f / 1024;
  const Sim_Curve c = Calc_Simulation(s, st, ppm(1023), ppm(0), 500);
  EXPECT_EQ(c.x.size(), 1024u);  // more points in view than the limit: one per point
  EXPECT_EQ(c.residual.size(), 101u);
  EXPECT_LT(c.limit, 1e-3f);
  EXPECT_EQ(Calc_Simulation(s, st, ppm(710), ppm(690), 500).x.size(), 500u);
  // The curve file: at the line's point the spectrum, the sum and the line all 0.4.
  test::Temp_Dir dir;
  ASSERT_EQ(Write_Line_Curves(s, st, (dir / "curves.dat").string()), 0);
  std::istringstream lines(test::Read_Text(dir / "curves.dat"));
  std::vector<std::string> rows;
  for (std::string l; std::getline(lines, l);) rows.push_back(l);
  ASSERT_EQ(rows.size(), 101u);
  double x = 0, y = 0, sum = 0, own = 0;
  ASSERT_EQ(std::sscanf(rows[50].c_str(), "%lf, %lf, %lf, %lf, ", &x, &y, &sum, &own), 4);
  EXPECT_NEAR(x, ppm(700), 1e-6);
  for (double v : {y, sum, own}) EXPECT_NEAR(v, 0.4, 1e-6);
  Line_Fit fit;
  Sim_Prepare_Fit(s, st, fit);
  EXPECT_EQ(fit.Fit_Peak_Index.size(), 1u);
  EXPECT_EQ(fit.Fit_Y.size(), 101u);

  // Undo walks back through the range and the deletion.
  ASSERT_TRUE(Sim_Undo(st));
  EXPECT_EQ(st.Range_Last, 1023);
  ASSERT_TRUE(Sim_Undo(st));
  EXPECT_EQ(st.Range_First, 0);
  ASSERT_TRUE(Sim_Undo(st));
  EXPECT_EQ(st.Peaks.Sim_Peak_Count, 2);

  // Delete all asks: no keeps the lines, yes removes them.
  t.ui.button_answers = {2, 1};
  EXPECT_FALSE(Sim_Delete_All(s, st));
  EXPECT_EQ(st.Peaks.Sim_Peak_Count, 2);
  EXPECT_TRUE(Sim_Delete_All(s, st));
  EXPECT_EQ(st.Peaks.Sim_Peak_Count, 0);
  EXPECT_EQ(t.ui.shown.back().text, "全ピークを削除しますか？");
  EXPECT_EQ(Sim_Undo_Caption(st.Undo), "UnDo(ピークの全削除)");
}

}  // namespace
}  // namespace tevo::deconvolution
