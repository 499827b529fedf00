// The peak list, integral list and integral curve files read back to the
// numbers of the session, and a native file saved with peaks, integrals and
// a baseline-corrected spectrum reopens with the same lists and values.
#include <gtest/gtest.h>

#include <charconv>
#include <sstream>

#include "datafiles/list_files.h"
#include "datafiles/native.h"
#include "datafiles/open_file.h"
#include "editing/baseline.h"
#include "editing/integral_sum.h"
#include "editing/integrals.h"
#include "editing/peaks.h"
#include "session/text_encoding.h"
#include "spectrum_rows.h"

namespace tevo {
namespace {

using test::Lorentz;
using test::Spectrum_Session;

std::complex<double> Lines(int32_t k) {
  return Lorentz(1, 300, 2, k) + Lorentz(0.5, 700, 2, k) + Lorentz(0.25, 800, 2, k) +
         std::complex<double>(0.01 + 2e-5 * k, 0);
}

// A spectrum with three peaks, two regions (the second the reference, worth
// 2), and the baseline points subtracted.
void Edit(Session& s) {
  s.Log_Mode = -1;
  s.Param.COMNT = "アスピリン test";
  s.Open_Name = "/data/run7.tv1";
  editing::m23_Click(s);
  editing::Base_Add_Point(s, 100);
  editing::Base_Add_Point(s, 950);
  editing::BaseCorCommand2_Click(s);
  editing::Peak_Search_All(s);
  editing::Integ_Add(s, 350, 250);
  editing::Integ_Add(s, 850, 650);
  editing::Integ_Set_Reference(s, 1, 2.0f);
}

// Lines of a written file: Shift-JIS decoded, each ended by CR LF.
std::vector<std::string> File_Lines(const std::filesystem::path& p) {
  const std::string text = Sjis_To_Utf8(test::Read_Text(p));
  std::vector<std::string> lines;
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t end = text.find("\r\n", at);
    EXPECT_NE(end, std::string::npos) << "a line without CR LF in " << p;
    if (end == std::string::npos) break;
    lines.push_back(text.substr(at, end - at));
    at = end + 2;
  }
  return lines;
}

std::vector<double> Fields(const std::string& line) {
  std::vector<double> out;
  std::istringstream in(line);
  std::string field;
  while (std::getline(in, field, ',')) out.push_back(std::stod(field));
  return out;
}

TEST(ListFiles, PeakAndIntegralListsAndTheCurveReadBackToTheSessionsNumbers) {
  Spectrum_Session d(1024, Lines);
  Session& s = d.s;
  test::Temp_Dir dir;
  Edit(s);
  ASSERT_EQ(s.Peaks.size(), 3u);

  ASSERT_EQ(datafiles::Write_Peak_List(s, (dir / "p.red").string(), datafiles::Peak_List_Layout::Comma), 0);
  auto lines = File_Lines(dir / "p.red");
  ASSERT_EQ(lines.size(), 8u);
  EXPECT_EQ(lines[0], "File: run7.tv1");
  EXPECT_EQ(lines[1], "Comment:  アスピリン test");
  EXPECT_EQ(lines[3], "Data No.= 3");
  EXPECT_EQ(lines[4], "No, Position(ppm), Frequency(Hz), Amplitude, Height(%)");
  const auto rows = editing::Peak_List_Rows(s, false);
  for (std::size_t i = 0; i < 3; ++i) {
    const auto f = Fields(lines[5 + i]);
    ASSERT_EQ(f.size(), 5u);
    EXPECT_EQ(f[0], rows[i].number);
    EXPECT_NEAR(f[1], rows[i].ppm, 1e-5);
    EXPECT_NEAR(f[2], rows[i].freq, 1e-4);
    EXPECT_NEAR(f[3], rows[i].height, 1e-3);
    EXPECT_NEAR(f[4], rows[i].strength, 1e-3);
  }
  EXPECT_DOUBLE_EQ(Fields(lines[5])[4], 100.0);

  s.settings.Set("PEAK-VAL UNIT", 2);
  ASSERT_EQ(datafiles::Write_Peak_List(s, (dir / "k.red").string(), datafiles::Peak_List_Layout::Comma), 0);
  lines = File_Lines(dir / "k.red");
  EXPECT_EQ(lines[4], "No, Position(ppm), Frequency(kHz), Amplitude, Height(%)");
  EXPECT_NEAR(Fields(lines[5])[2], rows[0].freq * 0.001, 5e-5);  // "######0.0###"

  ASSERT_EQ(datafiles::Write_Peak_List(s, (dir / "r.red").string(), datafiles::Peak_List_Layout::Report), 0);
  lines = File_Lines(dir / "r.red");
  ASSERT_EQ(lines.size(), 13u);
  EXPECT_EQ(lines[0], "PEAK   3");
  EXPECT_EQ(lines[7], "COMNT  アスピリン test");
  EXPECT_EQ(lines[9], "NO.           PPM      INT(%)      FREQ(Hz)  POSITION  BAR GRAPH");
  std::istringstream row(lines[10]);
  double no = 0, ppm = 0, rel = 0, hz = 0, pos = 0;
  row >> no >> ppm >> rel >> hz >> pos;
  EXPECT_EQ(no, 1);
  EXPECT_NEAR(ppm, rows[0].ppm, 1e-4);
  EXPECT_NEAR(rel, 100, 1e-3);
  EXPECT_EQ(pos, s.Peaks[0].Point);
  EXPECT_EQ(lines[10].substr(lines[10].size() - 22), std::string(22, '+'));

  ASSERT_EQ(datafiles::Write_Integral_List(s, (dir / "i.Ilist").string()), 0);
  lines = File_Lines(dir / "i.Ilist");
  ASSERT_EQ(lines.size(), 6u);
  EXPECT_EQ(lines[0], "List of Integral Intensity");
  EXPECT_EQ(lines[3], "No, Integral, Start(ppm), End(ppm), B0/Ymax, B1/Ymax");
  for (int32_t i = 0; i < 2; ++i) {
    const auto f = Fields(lines[static_cast<std::size_t>(4 + i)]);
    const Integ_Rec& r = s.Integrals[static_cast<std::size_t>(i)];
    EXPECT_NEAR(f[1], editing::Integ_Shown_Value(s, i), 1e-5);
    EXPECT_NEAR(f[2], s.Spec_Axis[static_cast<std::size_t>(r.Start_Point)], 0.005);
    EXPECT_NEAR(f[3], s.Spec_Axis[static_cast<std::size_t>(r.End_Point)], 0.005);
    EXPECT_NEAR(f[4], r.B0, 1e-6);
    EXPECT_NEAR(f[5], r.B1, 1e-6);
  }
  EXPECT_EQ(lines[5].substr(0, 12), "2, 2.00000, ");
  // A value of exactly 0 is printed as "0".
  s.Integ_Ref = 0;
  ASSERT_EQ(datafiles::Write_Integral_List(s, (dir / "z.Ilist").string()), 0);
  EXPECT_EQ(File_Lines(dir / "z.Ilist")[4].substr(0, 5), "1, 0,");
  s.Integ_Ref = 2;

  ASSERT_EQ(datafiles::Write_Integral_Curve(s, (dir / "c.int").string()), 0);
  lines = File_Lines(dir / "c.int");
  const std::size_t first = 101, second = 201;  // points in each region
  ASSERT_EQ(lines.size(), first + second + 2);
  EXPECT_EQ(lines[0], "No.= 1");
  EXPECT_NEAR(Fields(lines[first])[1], editing::Integ_Shown_Value(s, 0), 1e-5);
  EXPECT_NEAR(Fields(lines[first])[0], s.Spec_Axis[250], 1e-4);
  EXPECT_EQ(lines[first + 1], "No.= 2");
  EXPECT_NEAR(Fields(lines.back())[1], 2.0, 1e-5);

  // Nothing to write without a list; the default names.
  Spectrum_Session empty(16, Lines);
  EXPECT_EQ(datafiles::Write_Peak_List(empty.s, (dir / "e.red").string(), datafiles::Peak_List_Layout::Comma), 1);
  EXPECT_EQ(datafiles::List_Default_Name("/d/abc.tv1", datafiles::Peak_List_File), "/d/abc_red.red");
  EXPECT_EQ(datafiles::List_Default_Name("/d/abc.tv1", datafiles::Integral_List_File), "/d/abc_Ilist.Ilist");
  EXPECT_EQ(datafiles::List_Default_Name("/d/abc.tv1", datafiles::Integral_Curve_File), "/d/abc_INT.int");

  // The menu commands: the dialog offers the data name with the list's tail
  // under a title behind it; the curve refuses a foreign extension.
  d.ui.choice_answers = {1};
  d.ui.file_answers = {platform::File_Answer{(dir / "m.red").string(), 1}};
  ASSERT_EQ(datafiles::m172_Click(s), 0);
  EXPECT_EQ(d.ui.file_requests.back().title, "run7.tv1 の保存(ピークリスト)");
  EXPECT_EQ(d.ui.file_requests.back().initial_name, "run7_red.red");
  EXPECT_EQ(File_Lines(dir / "m.red"), File_Lines(dir / "r.red"));
  ASSERT_EQ(datafiles::m173_Click(s, (dir / "m.Ilist").string()), 0);
  EXPECT_EQ(File_Lines(dir / "m.Ilist"), File_Lines(dir / "i.Ilist"));
  d.ui.button_answers = {2};
  EXPECT_EQ(datafiles::m131_Click(s, (dir / "m.csv").string()), 1);
  EXPECT_FALSE(std::filesystem::exists(dir / "m.csv"));
}

TEST(ListFiles, NativeFileKeepsPeaksIntegralsAndTheCorrectedSpectrum) {
  Spectrum_Session d(1024, Lines);
  Session& s = d.s;
  test::Temp_Dir dir;
  Edit(s);
  const auto path = (dir / "edited.tv1").string();
  ASSERT_EQ(datafiles::Write_Native(s, path), 0);

  platform::Scripted_Ui ui;
  ui.quiet = true;
  Session r;
  r.ui = &ui;
  r.Log_Mode = -1;
  ASSERT_EQ(datafiles::Read_Native(r, path), 0);
  // Peaks are kept by frequency (the file's rule gives their points again).
  ASSERT_EQ(r.Peaks.size(), s.Peaks.size());
  for (std::size_t i = 0; i < s.Peaks.size(); ++i) {
    EXPECT_EQ(r.Peaks[i].Freq_Hz, s.Peaks[i].Freq_Hz);
    EXPECT_LE(std::abs(r.Peaks[i].Point - s.Peaks[i].Point), 1);
  }
  ASSERT_EQ(r.Integrals.size(), s.Integrals.size());
  for (std::size_t i = 0; i < s.Integrals.size(); ++i) {
    EXPECT_EQ(r.Integrals[i].Start_Point, s.Integrals[i].Start_Point);
    EXPECT_EQ(r.Integrals[i].End_Point, s.Integrals[i].End_Point);
    EXPECT_EQ(r.Integrals[i].B0, s.Integrals[i].B0);
    EXPECT_EQ(r.Integrals[i].B1, s.Integrals[i].B1);
    // The sum is not stored: summed again on the reopened spectrum.
    EXPECT_EQ(editing::Calc_Integral(r, static_cast<int32_t>(i)), s.Integrals[i].Value);
  }
  EXPECT_EQ(r.Integ_Ref, s.Integ_Ref);
  EXPECT_EQ(r.Peak_Level, s.Peak_Level);
  for (int32_t k = 0; k < 1024; k += 7) ASSERT_EQ(r.Spec_Re(k), s.Spec_Re(k)) << k;
  // The spectrum that comes back is the corrected one, not the raw transform.
  EXPECT_NE(r.Spec_Re(10), static_cast<float>(Lines(10).real()));
}

}  // namespace
}  // namespace tevo
