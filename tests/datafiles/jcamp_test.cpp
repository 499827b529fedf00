// JCAMP-DX: the number forms, real files of the jcamp data package with the
// values their headers state, the refusals, and write-read round trips.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "datafiles/jcamp.h"
#include "datafiles/open_file.h"
#include "platform/ui.h"
#include "session/session.h"
#include "datafiles/quiet_session.h"
#include "support/test_support.h"

namespace tevo::datafiles {
namespace {

using test::Test_Data_File;

std::string Jcamp(const std::string& name) {
  return Test_Data_File("jcamp-data-test@0.2.1/data/" + name).string();
}

using test::Quiet_Session;

TEST(Jcamp, TokensOfEveryForm) {
  struct Case {
    std::string text;
    std::vector<std::pair<Asdf_Form, double>> tokens;
  };
  const std::vector<Case> cases = {
      {"1.5E+02 -3", {{Asdf_Form::Affn, 150}, {Asdf_Form::Affn, -3}}},
      // "E" without a sign behind it is the SQZ digit 5, not an exponent.
      {"22644E7l5", {{Asdf_Form::Affn, 22644}, {Asdf_Form::Sqz, 57}, {Asdf_Form::Dif, -35}}},
      {"10+20-5", {{Asdf_Form::Affn, 10}, {Asdf_Form::Affn, 20}, {Asdf_Form::Affn, -5}}},
      {"@J5j%s Z", {{Asdf_Form::Sqz, 0}, {Asdf_Form::Dif, 15}, {Asdf_Form::Dif, -1},
                    {Asdf_Form::Dif, 0}, {Asdf_Form::Dup, 9}, {Asdf_Form::Dup, 8}}},
      {"? 7 $$ comment", {{Asdf_Form::Missing, 0}, {Asdf_Form::Affn, 7}}},
      {"5 #", {{Asdf_Form::Affn, 5}, {Asdf_Form::Error, 0}}},
  };
  for (const Case& c : cases) {
    std::size_t pos = 0;
    for (const auto& [form, value] : c.tokens) {
      const Asdf_Token t = Next_Asdf_Token(c.text, pos);
      EXPECT_EQ(t.form, form) << c.text;
      if (form != Asdf_Form::Error) EXPECT_DOUBLE_EQ(t.value, value) << c.text;
    }
    if (c.tokens.back().first != Asdf_Form::Error)
      EXPECT_EQ(Next_Asdf_Token(c.text, pos).form, Asdf_Form::End) << c.text;
  }
  // A DUP count past the largest row, however written, is refused before
  // the points are made.
  for (const std::string line : {"0 5S99999999", "0 5S9999999999999999999999"}) {
    Asdf_Decoder d;
    EXPECT_EQ(d.Add_Line(line), -1) << line;
    EXPECT_LE(d.y.size(), 1u);
  }
  EXPECT_EQ(Encode_Asdf(-123, Asdf_Out::Sqz), "a23");
  EXPECT_EQ(Encode_Asdf(0, Asdf_Out::Dif), "%");
  EXPECT_EQ(Encode_Asdf(-45, Asdf_Out::Dif), "m5");
  EXPECT_EQ(Encode_Asdf(9, Asdf_Out::Dup), "s");
  EXPECT_EQ(Encode_Asdf(12, Asdf_Out::Dup), "S2");
  EXPECT_EQ(Encode_Asdf(-5, Asdf_Out::Affn), " -5");
  EXPECT_EQ(Encode_Asdf(7, Asdf_Out::Pac), "+7");
  EXPECT_EQ(Format_Fixed(400, 0, 0, 9), "400.");
  EXPECT_EQ(Format_Fixed(0.5, 0, 0, 6), ".5");
  EXPECT_EQ(Format_Fixed(2.25, 1, 1, 6), "2.25");
  EXPECT_EQ(Format_Fixed(3, 1, 1, 6), "3.0");
}

// A small file with every form, Hz descending, and a DIF check point.
std::string Forms_File(const std::string& check_line) {
  return "##TITLE=forms\r\n##JCAMPDX=4.24\r\n##DATA TYPE=NMR SPECTRUM\r\n"
         "##.OBSERVE FREQUENCY=100\r\n##XUNITS=HZ\r\n##FIRSTX=1000\r\n##LASTX=0\r\n"
         "##NPOINTS=11\r\n##YFACTOR=2\r\n##XYDATA=(X++(Y..Y))\r\n"
         "1000 10 20+30-5\r\n600?A0J0T\r\n" +
         check_line + "\r\n##END=\r\n";
}

TEST(Jcamp, ByteBuiltFileDecodesEveryFormAndTurnsHzRound) {
  test::Temp_Dir dir;
  test::Write_Text(dir / "forms.dx", Forms_File("300C0%U"));
  Quiet_Session q;
  Jcamp_Read_Info info;
  ASSERT_EQ(RMJ((dir / "forms.dx").string()).status, 0);
  ASSERT_EQ(RDJ(q.s, (dir / "forms.dx").string(), &info), 0);
  // File order 10 20 30 -5 0 10 20 30 | 30 30 30, times 2, then reversed
  // because the X axis runs from 1000 Hz down to 0.
  const std::vector<float> expected = {60, 60, 60, 60, 40, 20, 0, -10, 60, 40, 20};
  ASSERT_EQ(q.s.Spec_Points, 11);
  for (int i = 0; i < 11; ++i) EXPECT_FLOAT_EQ(q.s.Spec_Re(i), expected[i]) << i;
  EXPECT_FLOAT_EQ(q.s.Spec_Axis[0], 0.0f);
  EXPECT_FLOAT_EQ(q.s.Spec_Axis[10], 10.0f);
  EXPECT_EQ(info.check_count, 1);
  EXPECT_EQ(info.check_failures, 0);
  EXPECT_EQ(q.s.Param.COMNT, "forms");
  EXPECT_EQ(q.s.Param.SMODE, 1);

  // A check point that does not repeat the last value is counted.
  test::Write_Text(dir / "bad_check.dx", Forms_File("300C1%U"));
  ASSERT_EQ(RDJ(q.s, (dir / "bad_check.dx").string(), &info), 0);
  EXPECT_EQ(info.check_failures, 1);
}

struct Real_Spectrum {
  std::string file;
  int32_t npoints;
  float first_re, last_re;  // points 0 and N-1 after the axis is made ascending
  float max_re;
  bool imaginary;
  std::string nucleus;
  double observe;
  float step;  // ##YFACTOR: the header values are not quantised, the data are
};

TEST(Jcamp, RealSpectraOpenWithTheirPointCountAndPassingChecks) {
  // Values from each file's own header lines (##FIRST/##LAST/##MAX or
  // ##FIRSTY/##MAXY), independent of the data decoding.
  const std::vector<Real_Spectrum> files = {
      {"aspirin-1h.dx", 32768, -78595.f, -118793.f, 440519097.f, true, "1H", 300.132250975, 1},
      {"naphtoicAcid-1h.dx", 131072, -269420.f, -810218.f, 319363610.f, true, "1H", 500.13750195, 1},
      {"Rutin_3080ug200uL_DMSOd6_13CNMR_400MHz_JDX.jdx", 52430, NAN, 9.4438801170326769352e-06f,
       0.0037350698839873075485f, false, "13C", 100.52530332516499811,
       6.840532745291729603e-08f},
      {"Rutin_3080ug200uL_DMSOd6_qHNMR_400MHz_JDX.jdx", 52430, NAN, -0.00036584879853762686253f,
       0.12090309709310531616f, false, "1H", 399.78219837824997285,
       4.9776292514548946375e-08f},
  };
  for (const Real_Spectrum& f : files) {
    SCOPED_TRACE(f.file);
    Quiet_Session q;
    Jcamp_Read_Info info;
    EXPECT_EQ(RMJ(Jcamp(f.file)).status, 0);
    ASSERT_EQ(RDJ(q.s, Jcamp(f.file), &info), 0);
    EXPECT_EQ(info.npoints, f.npoints);
    EXPECT_EQ(info.points_read, f.npoints);
    EXPECT_GT(info.check_count, 1000);
    EXPECT_EQ(info.check_failures, 0);
    EXPECT_EQ(info.has_imaginary, f.imaginary);
    EXPECT_EQ(q.s.Spec_Points, f.npoints);
    EXPECT_EQ(q.s.Is_Spectrum, 1);
    EXPECT_EQ(q.s.Param.OBNUC, f.nucleus);
    EXPECT_NEAR(q.s.Observe_Frequency, f.observe, 1e-9);
    const float tol_last = std::fabs(f.last_re) * 1e-6f + f.step;
    if (!std::isnan(f.first_re)) EXPECT_NEAR(q.s.Spec_Re(0), f.first_re, std::fabs(f.first_re) * 1e-5f);
    EXPECT_NEAR(q.s.Spec_Re(f.npoints - 1), f.last_re, tol_last);
    float mx = -1e30f;
    for (int i = 0; i < f.npoints; ++i) mx = std::max(mx, q.s.Spec_Re(i));
    EXPECT_NEAR(mx, f.max_re, f.max_re * 1e-5f);
    for (int i = 1; i < f.npoints; ++i) ASSERT_GT(q.s.Spec_Axis[i], q.s.Spec_Axis[i - 1]);
  }
  // The Bruker file's shift reference puts its first file point at 15.47866 ppm.
  Quiet_Session q;
  ASSERT_EQ(RDJ(q.s, Jcamp("aspirin-1h.dx")), 0);
  EXPECT_NEAR(q.s.Spec_Axis[32767], 15.47866f, 1e-4f);
  EXPECT_NEAR(q.s.Spec_Axis[32767] - q.s.Spec_Axis[0], 4789.12587366797 / 300.132250975, 1e-3);
}

TEST(Jcamp, RealFidsOpenAsFids) {
  struct Fid {
    std::string file;
    int32_t n;
    double sweep_hz;
    float re0, im0;
  };
  // Sweep = (N - 1) / (##LAST - ##FIRST) of the time column; first points
  // from ##FIRST of the R and I columns.
  const std::vector<Fid> fids = {
      {"aspirin-1h.fid.dx", 8192, 8191 / 1.7102808, 0, 0},
      {"naphtoicAcid-1h.fid.dx", 8192, 0, 0, 0},
      // Every JCAMP-DX FID's imaginary part is negated on reading.
      {"qmagnetics/ibuprofen_j_ave_qmagnetics.jdx", 40000, 39999 / 3.9999, -1973.0809823166692f,
       -394.2546185805657f},
  };
  for (const Fid& f : fids) {
    SCOPED_TRACE(f.file);
    Quiet_Session q;
    Jcamp_Read_Info info;
    ASSERT_EQ(RMJ(Jcamp(f.file)).status, 0);
    ASSERT_EQ(RDJ(q.s, Jcamp(f.file), &info), 0);
    EXPECT_EQ(q.s.Is_Fid, 1);
    EXPECT_EQ(q.s.Param.SMODE, 0);
    EXPECT_EQ(q.s.Fid_Points, f.n);
    EXPECT_EQ(info.points_read, f.n);
    EXPECT_EQ(info.check_failures, 0);
    EXPECT_GE(q.s.Spec_Points, f.n);
    EXPECT_EQ(q.s.Spec_Points & (q.s.Spec_Points - 1), 0);
    if (f.sweep_hz > 0) EXPECT_NEAR(q.s.Param.FREQU, f.sweep_hz, f.sweep_hz * 1e-5);
    // The data are whole numbers; the header's ##FIRST keeps the fraction.
    EXPECT_NEAR(q.s.Fid_Re(0), f.re0, 1.0);
    EXPECT_NEAR(q.s.Fid_Im(0), f.im0, 1.0);
  }
}

TEST(Jcamp, NumbersOutOfRangeAndLostLinesKeepTheFormerData) {
  Quiet_Session q;
  ASSERT_EQ(RDJ(q.s, Jcamp("Rutin_3080ug200uL_DMSOd6_qHNMR_400MHz_JDX.jdx")), 0);
  const float kept = q.s.Spec_Re(100);
  test::Temp_Dir dir;
  // Numbers beyond a real's range, a line lost from the middle of a table,
  // a FID without its observe frequency.
  struct Edit {
    std::string file, from, to;
    int status;
    std::string message;
  };
  const std::string overflow = "オーバーフローしました(RDJ/DRW)";
  const std::vector<Edit> edits = {
      {"aspirin-1h.dx", "0.146156983357279, 1,  ", "0.146156983357279, 1E300,", -1, overflow},
      {"aspirin-1h.dx", "##FACTOR=    0.146156983357279,", "##FACTOR=    1E400,", -1, overflow},
      {"aspirin-1h.dx", "32767a18793J479", "32767 -9E+99J479", -1, overflow},
      {"Rutin_3080ug200uL_DMSOd6_qHNMR_400MHz_JDX.jdx", "##NPOINTS=\t52430", "##NPOINTS=\t1E20", -1, overflow},
      {"aspirin-1h.dx", "32749a13453j273M19J319l34j589J58K227J382m52k11N33p63j958j31K262J317\r\n", "", -1,
       "(RDJ/DRW)"},
      {"aspirin-1h.fid.dx", "##.OBSERVE FREQUENCY= 300.132250975", "##.OBSERVE FREQUENCY=", 1,
       "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ"},
  };
  for (const Edit& e : edits) {
    SCOPED_TRACE(e.to.empty() ? e.from : e.to);
    std::string text = test::Read_Text(Jcamp(e.file));
    const std::size_t at = text.find(e.from);
    ASSERT_NE(at, std::string::npos);
    text.replace(at, e.from.size(), e.to);
    test::Write_Text(dir / "edited.dx", text);
    EXPECT_EQ(RDJ(q.s, (dir / "edited.dx").string()), e.status);
    EXPECT_NE(q.Last_Message().find(e.message), std::string::npos) << q.Last_Message();
    EXPECT_EQ(q.s.Spec_Points, 52430);
    EXPECT_EQ(q.s.Spec_Re(100), kept);
  }
}

TEST(Jcamp, BothWritersReadBackWithinTheQuantisation) {
  Quiet_Session q;
  ASSERT_EQ(RDJ(q.s, Jcamp("aspirin-1h.dx")), 0);
  const int32_t n = q.s.Spec_Points;
  std::vector<float> re(n), im(n), axis(q.s.Spec_Axis);
  float m = 0;
  for (int i = 0; i < n; ++i) {
    re[i] = q.s.Spec_Re(i);
    im[i] = q.s.Spec_Im(i);
    m = std::max(m, std::fabs(re[i]));
  }
  const double step = m / 4194304.0;
  test::Temp_Dir dir;
  for (bool extended : {false, true}) {
    SCOPED_TRACE(extended ? "extended" : "compact");
    const auto path = (dir / (extended ? "x.jdx" : "c.dx")).string();
    Quiet_Session w;
    ASSERT_EQ(RDJ(w.s, Jcamp("aspirin-1h.dx")), 0);
    w.s.App_Path = dir.path().string();
    ASSERT_EQ(extended ? Write_Jcamp_Extended(w.s, path) : Write_Jcamp_Compact(w.s, path), 0);
    const std::string text = test::Read_Text(path);
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) ASSERT_LT(line.size(), 81u) << line;
    EXPECT_NE(text.find("\r\n##ORGIN=NOT SPECIFIED\r\n"), std::string::npos);
    EXPECT_NE(text.find("\r\n##.ACQUISITION NODE=SIMULTANEOUS\r\n"), std::string::npos);
    EXPECT_NE(text.find("\r\n##JCAMP-DX=5.00\r\n"), std::string::npos);
    EXPECT_NE(text.find(extended ? "##DATA TABLE=(X++(I..I)), XYDATA" : "##XYDATA=(X++(Y..Y))"),
              std::string::npos);
    EXPECT_NE(text.find("##$OBNUC=1H\r\n"), std::string::npos);

    Quiet_Session r;
    Jcamp_Read_Info info;
    ASSERT_EQ(RMJ(path).status, 0);
    ASSERT_EQ(RDJ(r.s, path, &info), 0);
    ASSERT_EQ(r.s.Spec_Points, n);
    EXPECT_EQ(info.check_failures, 0);
    EXPECT_GT(info.check_count, 100);
    double worst = 0, worst_im = 0, worst_axis = 0;
    for (int i = 0; i < n; ++i) {
      worst = std::max(worst, std::fabs(double(r.s.Spec_Re(i)) - re[i]));
      if (extended) worst_im = std::max(worst_im, std::fabs(double(r.s.Spec_Im(i)) - im[i]));
      worst_axis = std::max(worst_axis, std::fabs(double(r.s.Spec_Axis[i]) - axis[i]));
    }
    // Half a step of rounding plus float storage of values near 4.4e8.
    EXPECT_LE(worst, 0.5 * step + 64);
    if (extended) EXPECT_LE(worst_im, 0.5 * step + 64);
    EXPECT_LT(worst_axis, 1e-4);
    EXPECT_EQ(r.s.Param.OBNUC, "1H");
    EXPECT_EQ(r.s.Param.COMNT, q.s.Param.COMNT);
  }
}

// The two export commands ask with their own titles and the one filter,
// offer the data name with ".dx", replace an existing file only after a good
// write, and leave the data marked as not saved: the native file is the
// record of the work.
TEST(Jcamp, ExportCommandsWriteWithoutMarkingTheDataSaved) {
  test::Temp_Dir dir;
  const std::string path = (dir / "export.dx").string();
  test::Write_Text(path, "old contents");
  for (int extended : {1, 0}) {
    SCOPED_TRACE(extended);
    Quiet_Session q;
    ASSERT_EQ(RDJ(q.s, Jcamp("aspirin-1h.dx")), 0);
    q.s.App_Path = dir.path().string();
    q.s.Open_Name = "/data/aspirin-1h.dx";
    q.s.Data_Saved = 0;
    q.ui.file_answers = {platform::File_Answer{path, 1}};
    ASSERT_EQ(extended ? m181_Click(q.s) : m183_Click(q.s), 0);
    ASSERT_EQ(q.ui.file_requests.size(), 1u);
    EXPECT_EQ(q.ui.file_requests[0].title,
              extended ? "データの保存(JCAMP(拡張))" : "データの保存(JCAMP(縮小))");
    EXPECT_EQ(q.ui.file_requests[0].filter, "JCAMP形式(*.dx)|*.dx|全てのファイル|*.*|");
    EXPECT_EQ(q.ui.file_requests[0].initial_name, "aspirin-1h.dx");
    EXPECT_EQ(q.s.Data_Saved, 0);
    EXPECT_TRUE(q.s.settings.Recent_Files.empty());
    EXPECT_FALSE(std::filesystem::exists(path + ".$"));
    const std::string text = test::Read_Text(path);
    EXPECT_NE(text.find(extended ? "##DATA CLASS=NTUPLES" : "##DATA CLASS=XYDATA"), std::string::npos);
    Quiet_Session r;
    ASSERT_EQ(RDJ(r.s, path), 0);
    EXPECT_EQ(r.s.Spec_Points, q.s.Spec_Points);
  }
}

}  // namespace
}  // namespace tevo::datafiles

namespace tevo::datafiles {
namespace {

}  // namespace
}  // namespace tevo::datafiles
