// The peak search worked by hand on short rows, the mouse tools, the list
// rows, and the search on the real Bruker cyclosporin FID against the
// vendor's own processed spectrum.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <vector>

#include <cstring>

#include "editing/list_tables.h"
#include "editing/peaks.h"
#include "editing/undo.h"
#include "spectrum_rows.h"
#include "support/test_support.h"

namespace tevo {
namespace {

using test::Spectrum_Session;

// Display indices of the peaks in the list, by their frequencies.
std::vector<int32_t> Peak_Indices(const Session& s) {
  std::vector<int32_t> out;
  for (const Peak_Rec& p : s.Peaks) {
    const double x = p.Freq_Hz / s.Spectrum_Frequency + s.Spec_Axis[0];
    const auto at = std::min_element(s.Disp_X.begin(), s.Disp_X.end(),
                                     [&](float a, float b) { return std::fabs(a - x) < std::fabs(b - x); });
    out.push_back(static_cast<int32_t>(at - s.Disp_X.begin()));
  }
  return out;
}

// 16 points, all multiples of 1/8 so every difference is exact.
const double kRow[16] = {0, 1, 0.75, 0.5, 2, 1.875, 1.75, 1.5, 0.25, 0.375, 0.25, 0.875, 0.75, 0.5, 1.0, 1.5};

TEST(PeakSearch, HysteresisWalkerWorkedByHand) {
  auto search = [](float level, float noise, float base) {
    Spectrum_Session d(16, [](int32_t i) { return std::complex<double>(kRow[i], 0); });
    d.s.Peak_Level = level, d.s.Noise_Level = noise, d.s.Base_Level = base;
    editing::Peak_Search_All(d.s);
    return Peak_Indices(d.s);
  };
  // T = 0.5, N = 0.25: a fall of exactly N (1 -> 0.75) is not enough; the
  // rising edge at the end gives nothing.
  EXPECT_EQ(search(0.5f, 0.25f, 0), (std::vector<int32_t>{1, 4, 11}));
  // Base level counts against the noise level: N = |0.5 - 0.25|.
  EXPECT_EQ(search(0.5f, 0.5f, 0.25f), (std::vector<int32_t>{1, 4, 11}));
  // The peak at 11 (0.875) is below T = 0.9.
  EXPECT_EQ(search(0.9f, 0.25f, 0), (std::vector<int32_t>{1, 4}));
  // N = 0 marks every local maximum above 0, 9 included.
  EXPECT_EQ(search(0, 0.125f, 0.125f), (std::vector<int32_t>{1, 4, 9, 11}));
  // A level above Max_Abs: nothing, quietly.
  EXPECT_TRUE(search(2.5f, 0.25f, 0).empty());
}

TEST(PeakSearch, OfferRuleAndToolsKeepTheListInOrder) {
  Spectrum_Session d(16, [](int32_t i) { return std::complex<double>(kRow[i], 0); });
  Session& s = d.s;
  s.Peak_Level = 0.5f, s.Noise_Level = 0.25f, s.Base_Level = 0;
  EXPECT_EQ(editing::Peak_Search_All(s), 3);
  // Point uses the factor N = 16, not 15: index 11 gives round(11 * 16 / 15) = 12.
  ASSERT_EQ(s.Peaks.size(), 3u);
  EXPECT_EQ(s.Peaks[0].Point, 1);
  EXPECT_EQ(s.Peaks[1].Point, 4);
  EXPECT_EQ(s.Peaks[2].Point, 12);
  EXPECT_NEAR(s.Peaks[2].Freq_Hz, 11 * 250.0, 0.01);  // 4000 Hz over 16 points
  // A second search adds nothing (the 0.01 Hz rule), but still leaves its undo record.
  EXPECT_EQ(editing::Peak_Search_All(s), 0);
  EXPECT_EQ(editing::Undo_Caption(s).caption, "取り消し(ピーク位置の自動追加)");

  // Add at the cursor: index 0 is ignored; beyond the end is clamped, and
  // the top of the range gives Point = N. Inserted in frequency order.
  EXPECT_FALSE(editing::Peak_Add_At(s, 0));
  EXPECT_TRUE(editing::Peak_Add_At(s, 99));
  EXPECT_EQ(s.Peaks.back().Point, 16);
  EXPECT_TRUE(editing::Peak_Add_At(s, 7));
  EXPECT_EQ(Peak_Indices(s), (std::vector<int32_t>{1, 4, 7, 11, 15}));

  // Delete by pixel: the first peak within 2 pixels of the click.
  auto pixel = [&](double ppm) { return (ppm - s.Spec_Axis[0]) * 100; };
  const double px7 = pixel(s.Disp_X[7]);
  EXPECT_FALSE(editing::Peak_Delete_At(s, px7 + 2.5, pixel));
  EXPECT_TRUE(editing::Peak_Delete_At(s, px7 + 1.5, pixel));
  EXPECT_EQ(Peak_Indices(s), (std::vector<int32_t>{1, 4, 11, 15}));

  // List rows: heights from the display copy, 100 for the largest; reversed
  // with their numbers under "PEAK LIST DIRECT".
  auto rows = editing::Peak_List_Rows(s, false);
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_DOUBLE_EQ(rows[1].height, 2.0);
  EXPECT_DOUBLE_EQ(rows[1].strength, 100.0);
  EXPECT_DOUBLE_EQ(rows[0].strength, 50.0);
  EXPECT_NEAR(rows[0].ppm, s.Disp_X[1], 1e-5);
  s.settings.Set("PEAK LIST DIRECT", 1);
  rows = editing::Peak_List_Rows(s, true);
  EXPECT_EQ(rows[0].number, 1);
  EXPECT_NEAR(rows[0].freq, 3.75, 1e-6);  // the last peak first, in kHz

  // The list window's texts.
  s.settings.Set("PEAK LIST DIRECT", 0);
  const editing::List_Table table = editing::Peak_List_Table(s);
  EXPECT_EQ(table.heads, (std::vector<std::string>{"番号", "ppm", "Hz", "実強度", "強度"}));
  ASSERT_EQ(table.rows.size(), 4u);
  EXPECT_EQ(table.rows[1][0], "    2");
  EXPECT_EQ(table.rows[1][2], "     1000.0");
  EXPECT_EQ(table.rows[1][3], "2");
  EXPECT_EQ(table.rows[1][4], "  100.00");

  EXPECT_TRUE(editing::PeakCommand3_Click(s));
  EXPECT_TRUE(s.Peaks.empty());
  EXPECT_FALSE(editing::PeakCommand3_Click(s));
}

TEST(PeakSearch, AddNearestTakesTheNearerOfPositiveAndNegative) {
  // A positive line at 3 and a negative one at 7.
  Spectrum_Session d(16, [](int32_t i) { return std::complex<double>(i == 3 ? 1.0 : i == 7 ? -1.5 : 0.0, 0); });
  Session& s = d.s;
  s.Peak_Level = 0.5f, s.Noise_Level = 0.25f, s.Base_Level = 0;
  EXPECT_EQ(editing::Nearest_Peak(s, 6), 7);
  EXPECT_EQ(editing::Nearest_Peak(s, 5), 3);  // a tie goes to the positive one
  EXPECT_EQ(editing::Nearest_Peak(s, 4), 3);
  EXPECT_TRUE(editing::Peak_Add_Nearest(s, 6));
  EXPECT_EQ(Peak_Indices(s), (std::vector<int32_t>{7}));
  EXPECT_EQ(editing::Undo_Caption(s).caption, "取り消し(ピーク位置の追加)");
  // Nothing to find in a flat row.
  Spectrum_Session flat(16, [](int32_t) { return std::complex<double>(0.25, 0); });
  EXPECT_EQ(editing::Nearest_Peak(flat.s, 8), -1);
  EXPECT_FALSE(editing::Peak_Add_Nearest(flat.s, 8));
}

// The vendor's processed spectrum 1r: real32 or int32 little-endian by
// DTYPP, from the highest ppm down; returns the ppm and value of each point.
struct Vendor_Spectrum {
  std::vector<double> ppm, value;
};
Vendor_Spectrum Read_1r(const std::filesystem::path& pdata) {
  Vendor_Spectrum v;
  const std::string procs = test::Read_Text(pdata / "procs");
  auto number = [&](const std::string& key) {
    const auto at = procs.find("##$" + key + "= ");
    return at == std::string::npos ? 0.0 : std::stod(procs.substr(at + key.size() + 5));
  };
  const double offset = number("OFFSET"), sw = number("SW_p"), sf = number("SF");
  const auto bytes = test::Read_Bytes(pdata / "1r");
  const std::size_t n = bytes.size() / 4;
  const bool dbl = number("DTYPP") == 2;
  for (std::size_t i = 0; i < n; ++i) {
    int32_t word = 0;
    std::memcpy(&word, &bytes[4 * i], 4);
    float f = 0;
    std::memcpy(&f, &word, 4);
    v.value.push_back(dbl ? f : static_cast<double>(word));
    v.ppm.push_back(offset - sw / sf * static_cast<double>(i) / static_cast<double>(n));
  }
  return v;
}

TEST(PeakSearch, CyclosporinFidFindsEveryVendorLineAboveFivePercent) {
  const auto dir = test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/cyclosporin_1h/cyclosporin_1h/1");
  test::Temp_Dir home;
  Spectrum_Session d(16, [](int32_t) { return std::complex<double>(0, 0); });
  Session& s = d.s;
  ASSERT_TRUE(test::Open_Bruker_Fid(s, home.path(), "bruker-data-test@1.0.0/data/unzipped/cyclosporin_1h/cyclosporin_1h/1"));
  const Vendor_Spectrum vendor = Read_1r(dir / "pdata/1");
  editing::Peak_Search_All(s);  // default levels 0.01 and 0.005
  ASSERT_FALSE(s.Peaks.empty());

  // The vendor's lines: local maxima of 1r above 5 % of its strongest that
  // stand out from the lowest point on either side (walking until a higher
  // point) by more than the default noise level, 0.5 % of the strongest.
  // Shoulders that rise less than that are not resolved lines at this level.
  const std::vector<double>& v = vendor.value;
  const double top = *std::max_element(v.begin(), v.end());
  auto side_low = [&](std::size_t i, int step) {
    double low = v[i];
    for (auto k = static_cast<std::ptrdiff_t>(i) + step; k >= 0 && k < static_cast<std::ptrdiff_t>(v.size()) && v[static_cast<std::size_t>(k)] <= v[i]; k += step)
      low = std::min(low, v[static_cast<std::size_t>(k)]);
    return low;
  };
  std::vector<double> lines;
  for (std::size_t i = 1; i + 1 < v.size(); ++i)
    if (v[i] > 0.05 * top && v[i] >= v[i - 1] && v[i] > v[i + 1] &&
        v[i] - std::max(side_low(i, -1), side_low(i, 1)) > 0.005 * top)
      lines.push_back(vendor.ppm[i]);
  ASSERT_GE(lines.size(), 50u);
  const double tolerance = 1.0 / s.Spectrum_Frequency;  // 1 Hz, in ppm
  std::size_t missed = 0;
  for (double ppm : lines) {
    bool found = false;
    for (int32_t i = 0; i < static_cast<int32_t>(s.Peaks.size()); ++i)
      found |= std::fabs(editing::Peak_Ppm(s, i) - ppm) < tolerance;
    missed += !found;
    EXPECT_TRUE(found) << "vendor line at " << ppm << " ppm not found";
  }
  // None of the peaks found lies below the noise level.
  const auto rows = editing::Peak_List_Rows(s, false);
  for (const auto& r : rows) EXPECT_GT(r.height, s.Noise_Level * s.Max_Abs) << r.ppm;
  std::printf("cyclosporin: %zu vendor lines above 5 %%, %zu peaks found, %zu of the lines missed\n", lines.size(), s.Peaks.size(), missed);
}

}  // namespace
}  // namespace tevo
