// Bruker folders: the real experiments of the bruker data package (unpacked
// by scripts/fetch-testdata), byte-built folders for the word format rules,
// and damaged copies.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <tuple>

#include "datafiles/bruker.h"
#include "datafiles/decoders.h"
#include "platform/ui.h"
#include "session/session.h"
#include "signal/fft.h"
#include "datafiles/jcamp.h"
#include "datafiles/open_file.h"
#include "datafiles/quiet_session.h"
#include "relaxation/array_data.h"
#include "signal/fid_processing.h"
#include "support/test_support.h"

namespace tevo::datafiles {
namespace {

namespace fs = std::filesystem;

std::string Bruker(const std::string& rel) {
  return test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/" + rel).string();
}

using test::Quiet_Session;

struct Expected_Fid {
  std::string folder;
  double sfo1, sw_h;
  int32_t td;
  std::string solvent;
  int16_t acq_mode;  // ##$AQ_MOD 1 -> 0, 3 -> 2
  int32_t preset;  // rounded digital filter delay
  // Fid_Re/Fid_Im at points 0, 80, 100 and 1000: the file's numbers decoded
  // separately, the odd ones negated, less the means over the last 40 %.
  std::array<std::pair<double, double>, 4> points;
};

TEST(Bruker, RealFidsOpenWithTheirAcquisitionParameters) {
  const std::vector<Expected_Fid> fids = {
      {"aspirin-1h/1", 300.132250975, 4789.27203065134, 16384, "CDCl3", 0, 61,
       {{{621.4847, 793.5894}, {625967.4847, -104728.4106}, {-334931.5153, -46864.4106},
         {172084.4847, 127751.5894}}}},
      {"naphtoicAcid-1h/1", 500.13750195, 17482.5174825175, 16384, "Acetone", 2, 53,
       {{{3.6355, 3.3748}, {138169.6355, -65037.6252}, {-38283.3645, 280653.3748},
         {71298.6355, -48525.6252}}}},
      {"cyclosporin_1h/cyclosporin_1h/1", 500.132249206, 5494.50549450549, 65536, "C6D6", 2, 76,
       {{{-2.3515, -0.4617}, {1652655.6485, 670148.5383}, {-89616.3515, -615710.4617},
         {36223.6485, -191496.4617}}}},
  };
  for (const Expected_Fid& e : fids) {
    SCOPED_TRACE(e.folder);
    int16_t acq_mode = -1;
    const Kind_Check k = Check_Bruker_Acquisition(Bruker(e.folder + "/acqus"), &acq_mode);
    EXPECT_EQ(k.status, 0);
    EXPECT_EQ(k.kind, "zg30");
    EXPECT_EQ(acq_mode, e.acq_mode);
    Quiet_Session q;
    ASSERT_EQ(Read_Bruker_Fid(q.s, Bruker(e.folder + "/fid")), 0);
    EXPECT_TRUE(q.ui.shown.empty());
    EXPECT_DOUBLE_EQ(q.s.Observe_Frequency, e.sfo1);
    EXPECT_FLOAT_EQ(q.s.Param.FREQU, static_cast<float>(e.sw_h));
    EXPECT_EQ(q.s.Fid_Points, e.td / 2);
    EXPECT_EQ(q.s.Spec_Points, e.td / 2);
    EXPECT_EQ(q.s.Param.OBNUC, "1H");
    EXPECT_EQ(q.s.Param.SLVNT, e.solvent);
    EXPECT_EQ(q.s.Param.EXMOD, "zg30");
    EXPECT_EQ(q.s.Param.SMODE, 0);
    EXPECT_EQ(q.s.Is_Fid, 1);
    EXPECT_EQ(q.s.Acq_Mode, e.acq_mode);
    EXPECT_EQ(q.s.Fid_Shift_Preset, e.preset);
    EXPECT_NEAR(q.s.Param.ACQTM, e.td / 2 / e.sw_h, 1e-5);
    const int idx[] = {0, 80, 100, 1000};
    for (int i = 0; i < 4; ++i) {
      EXPECT_NEAR(q.s.Fid_Re(idx[i]), e.points[i].first, 0.05) << idx[i];
      EXPECT_NEAR(q.s.Fid_Im(idx[i]), e.points[i].second, 0.05) << idx[i];
    }
  }
  // The date of acqus (##$DATE= 1138699492) in UTC, and ##$TE= 298.
  Quiet_Session q;
  ASSERT_EQ(Read_Bruker_Fid(q.s, Bruker("aspirin-1h/1")), 0);
  EXPECT_EQ(q.s.Param.DATIM, "2006/Jan/31  09:24:52");
  EXPECT_NEAR(q.s.Param.CTEMP, 24.85f, 1e-4f);
  EXPECT_EQ(q.s.Param.SCANS, 32);
  EXPECT_FLOAT_EQ(q.s.Param.PD, 1.2f);
  EXPECT_EQ(Bruker_Group_Delay(24, 10), 61.020833333);
  EXPECT_EQ(Bruker_Group_Delay(24, 99), 0);
}

TEST(Bruker, ProcessedSpectraOpenWithTheAxisOfProcs) {
  struct Expected {
    std::string folder;
    double offset, sw_p, sf;
    float ymax, ymin;  // ##$YMAX_P, ##$YMIN_P
    float file_first, file_last;  // first and last int32 of 1r
    int nc;  // ##$NC_proc: the points are the integers times 2^nc
    std::string title;
  };
  const std::vector<Expected> spectra = {
      {"aspirin-1h-processed/1", 15.47866, 4789.27203065133, 300.13, 440597001.f, -43221.f,
       -1896.f, -114.f, -2, ""},
      {"cyclosporin_1h/cyclosporin_1h/1", 9.99032, 5494.5054945055, 500.13, 455613096.f,
       -4469335.f, -713129.f, -975781.f, -8, "1H Cyclosporin"},
  };
  for (const Expected& e : spectra) {
    SCOPED_TRACE(e.folder);
    EXPECT_EQ(RMBP(Bruker(e.folder + "/pdata/1/procs")).status, 0);
    // Both the experiment folder (pdata/N search) and the 1r file open it.
    for (const std::string& path : {Bruker(e.folder), Bruker(e.folder + "/pdata/1/1r")}) {
      Quiet_Session q;
      ASSERT_EQ(Read_Bruker_Spectrum(q.s, path), 0);
      const int32_t n = 32768;
      ASSERT_EQ(q.s.Spec_Points, n);
      EXPECT_EQ(q.s.Is_Spectrum, 1);
      EXPECT_EQ(q.s.Param.SMODE, 1);
      EXPECT_EQ(q.s.Param.OBNUC, "1H");
      EXPECT_DOUBLE_EQ(q.s.Spectrum_Frequency, e.sf);
      EXPECT_NEAR(q.s.Spec_Axis[n - 1], e.offset, 1e-5);
      EXPECT_NEAR(q.s.Spec_Axis[0], e.offset - (n - 1) * e.sw_p / n / e.sf, 1e-5);
      EXPECT_NEAR(q.s.Observe_Frequency, (e.offset * e.sf - e.sw_p / 2) * 1e-6 + e.sf, 1e-9);
      // The file runs from high to low ppm: its first point is the top index.
      const float k = std::ldexp(1.0f, e.nc);
      EXPECT_EQ(q.s.Spec_Re(n - 1), e.file_first * k);
      EXPECT_EQ(q.s.Spec_Re(0), e.file_last * k);
      const auto* re = &q.s.Spec_Re(0);
      EXPECT_EQ(*std::max_element(re, re + n), e.ymax * k);
      EXPECT_EQ(*std::min_element(re, re + n), e.ymin * k);
      EXPECT_NE(q.s.Spec_Im(n - 1), 0.0f);
      if (!e.title.empty()) EXPECT_EQ(q.s.Param.COMNT, e.title);
    }
  }
}

// Spectrum of a FID row by the program's transform with an exponential
// window of 0.3 Hz and the given left shift; magnitude per point.
std::vector<double> Magnitude_Spectrum(const Session& s, bool negate_odd_real) {
  const int32_t n = s.Spec_Points;
  std::vector<float> re(n), im(n), w(n), ore(n), oim(n);
  for (int32_t i = 0; i < n; ++i) {
    re[i] = s.Fid_Re(i) * (negate_odd_real && (i & 1) ? -1.0f : 1.0f);
    im[i] = s.Fid_Im(i);
    w[i] = static_cast<float>(std::exp(-M_PI * 0.3 * i / s.Param.FREQU));
  }
  signal::Spectrum_Transform(re.data(), im.data(), w.data(), ore.data(), oim.data(), n,
                             s.Fid_Shift_Preset);
  std::vector<double> mag(n);
  for (int32_t i = 0; i < n; ++i) mag[i] = std::hypot(ore[i], oim[i]);
  return mag;
}

TEST(Bruker, ModernQuadratureDataNeedNoOddPointNegation) {
  // ##$AQ_MOD= 3 (cyclosporin): the FID read as it stands puts every one of
  // the ten strongest peaks of the vendor's own 1r within two points at full
  // height. Negating every odd real point halves them (half of each line
  // moves half a sweep width away), so the reader negates nothing.
  Quiet_Session fid, vendor;
  ASSERT_EQ(Read_Bruker_Fid(fid.s, Bruker("cyclosporin_1h/cyclosporin_1h/1")), 0);
  ASSERT_EQ(Read_Bruker_Spectrum(vendor.s, Bruker("cyclosporin_1h/cyclosporin_1h/1/pdata/1/1r")), 0);
  ASSERT_EQ(fid.s.Acq_Mode, 2);
  const std::vector<double> plain = Magnitude_Spectrum(fid.s, false);
  const std::vector<double> negated = Magnitude_Spectrum(fid.s, true);
  const int32_t n = fid.s.Spec_Points, m = vendor.s.Spec_Points;
  std::vector<int32_t> tops;
  for (int32_t i = 1; i + 1 < m; ++i)
    if (vendor.s.Spec_Re(i) > vendor.s.Spec_Re(i - 1) && vendor.s.Spec_Re(i) >= vendor.s.Spec_Re(i + 1))
      tops.push_back(i);
  std::partial_sort(tops.begin(), tops.begin() + 10, tops.end(),
                    [&](int32_t a, int32_t b) { return vendor.s.Spec_Re(a) > vendor.s.Spec_Re(b); });
  const double hz_per_point = fid.s.Param.FREQU / n;
  for (int k = 0; k < 10; ++k) {
    // Absolute frequency of the vendor's peak, then the FID spectrum's point
    // of that frequency (zero offset from SFO1 sits at n/2 - 1).
    const double hz = vendor.s.Spectrum_Frequency * 1e6 * (1 + vendor.s.Spec_Axis[tops[k]] * 1e-6);
    const double at = (hz - fid.s.Observe_Frequency * 1e6) / hz_per_point + (n / 2 - 1);
    const auto j = static_cast<int32_t>(std::lround(at));
    int32_t best = j;
    for (int32_t d = -2; d <= 2; ++d)
      if (plain[j + d] > plain[best]) best = j + d;
    EXPECT_LE(std::abs(best - j), 2) << k;
    EXPECT_GT(plain[best], 1.8 * negated[best]) << k;
  }
}

// A byte-built experiment folder: acqus text and a fid of the given bytes.
void Write_Experiment(const fs::path& dir, const std::string& extra_labels,
                      const std::vector<uint8_t>& fid, int32_t td) {
  fs::create_directories(dir);
  test::Write_Text(dir / "acqus",
                   "##TITLE= Parameter file\n##ORIGIN= Bruker BioSpin GmbH\n"
                   "##$SFO1= 400.13\n##$BF1= 400.13\n##$SW_h= 8000\n##$TD= " +
                       std::to_string(td) + "\n##$NUC1= <1H>\n##$NUCLEUS= <off>\n" +
                       extra_labels + "##END=\n");
  test::Write_Bytes(dir / "fid", fid);
}

TEST(Bruker, WordFormatByteOrderAndLabelRules) {
  test::Temp_Dir dir;
  const int32_t td = 64;
  // real32, little-endian, with a decimal point in ##$YMAX_a: asks, the
  // operator says SINGLE.
  {
    std::vector<uint8_t> b;
    for (int i = 0; i < td; ++i) Append_LE_Float32(b, i % 2 ? -0.5f * i : 1.5f * i);
    Write_Experiment(dir / "f32", "##$BYTORDA= 0\n##$YMAX_a= 1.0e6\n##$AQ_mod= 3\n", b, td);
    Quiet_Session q;
    q.ui.choice_answers.push_back(0);
    ASSERT_EQ(Read_Bruker_Fid(q.s, (dir / "f32").string()), 0);
    EXPECT_TRUE(q.ui.choice_answers.empty());  // the question was asked
    // Point 10: re 15, im -(-5.5) = 5.5, less the tail means.
    double mr = 0, mi = 0;
    for (int k = 20; k < 32; ++k) {
      mr += 1.5 * 2 * k;
      mi += 0.5 * (2 * k + 1);
    }
    mr /= 12;
    mi /= 12;
    EXPECT_NEAR(q.s.Fid_Re(10), 30 - mr, 1e-4);
    EXPECT_NEAR(q.s.Fid_Im(10), 10.5 - mi, 1e-4);
  }
  // int32 big-endian with integer limits: no question; NUC1 off takes NUCLEUS.
  {
    std::vector<uint8_t> b;
    for (int i = 0; i < td; ++i) Append_BE_Int32(b, i == 0 ? -7 : 1000 + i);
    Write_Experiment(dir / "i32",
                     "##$BYTORDA= 1\n##$YMAX_a= 1000000\n##$TE= 300\n##$GRPDLY= 67.98\n"
                     "##$DECIM= 24\n##$DSPFVS= 10\n",
                     b, td);
    Quiet_Session q;
    q.ui.choice_answers.push_back(1);
    ASSERT_EQ(Read_Bruker_Fid(q.s, (dir / "i32" / "fid").string()), 0);
    EXPECT_EQ(q.ui.choice_answers.size(), 1u);  // not asked
    EXPECT_NEAR(q.s.Param.CTEMP, 26.85f, 1e-4f);
    EXPECT_EQ(q.s.Fid_Shift_Preset, 68);  // GRPDLY comes before the DECIM table
    double mr = 0;
    for (int k = 20; k < 32; ++k) mr += 1000 + 2 * k;
    EXPECT_NEAR(q.s.Fid_Re(0), -7 - mr / 12, 1e-3);
  }
  // 8 bytes per TD point: real64 whatever the labels say, without a question.
  {
    std::vector<uint8_t> b;
    for (int i = 0; i < td; ++i) Append_BE_Float64(b, 0.25 * i);
    Write_Experiment(dir / "f64", "##$BYTORDA= 1\n##$YMAX_a= 2.5\n##$NUC1= <off>\n##$NUCLEUS= <13C>\n", b, td);
    Quiet_Session q;
    q.ui.choice_answers.push_back(0);
    ASSERT_EQ(Read_Bruker_Fid(q.s, (dir / "f64").string()), 0);
    EXPECT_EQ(q.ui.choice_answers.size(), 1u);
    EXPECT_EQ(q.s.Param.OBNUC, "13C");
    double mr = 0;
    for (int k = 20; k < 32; ++k) mr += 0.25 * 2 * k;
    EXPECT_NEAR(q.s.Fid_Re(3), 1.5 - mr / 12, 1e-6);
  }
}

// Replaces the first `from` in a text file by `to`.
void Edit_Text(const fs::path& file, const std::string& from, const std::string& to) {
  std::string t = test::Read_Text(file);
  const std::size_t at = t.find(from);
  ASSERT_NE(at, std::string::npos) << from;
  t.replace(at, from.size(), to);
  test::Write_Text(file, t);
}

TEST(Bruker, AcquisitionValuesReachTheNativeFileAndFaultyLabelsAreRefused) {
  // A NOESY of the coffee series: a probe name broken over two lines, a
  // gradient program, the lists, ##$WDW= 1, ##$NC_proc= -3, the title in
  // pdata/1 and no title beside the fid.
  test::Temp_Dir dir;
  const fs::path e = dir / "12", proc = e / "pdata" / "1";
  fs::copy(test::Test_Data_File("bruker-data-test@1.0.0/data/flat/coffee/UV1010_M1-1003-1002_6268756_ErISKLIoeB/12"),
           e, fs::copy_options::recursive);
  Quiet_Session fid;
  ASSERT_EQ(Read_Bruker_Fid(fid.s, e.string()), 0);
  const Data_Param& p = fid.s.Param;
  EXPECT_EQ(p.Probe_Name, "5 mm PABBO BB-1H/D Z-GRD Z104450/0119");
  EXPECT_EQ(p.Gradient_Program, "grad_out");
  EXPECT_FLOAT_EQ(p.P_List[2], 20.02696f);
  EXPECT_FLOAT_EQ(p.D_List[16], 0.0002f);
  EXPECT_FLOAT_EQ(p.CNST_List[2], 145.0f);
  EXPECT_EQ(p.COMNT, "COFFEE_meoh_noesyp64.lims COFFEE_calctemp {C:\\Bruker\\TOPSPIN} COFFEE 5");
  EXPECT_EQ(fid.s.Fid_Points, 32768);

  Quiet_Session spec;
  ASSERT_EQ(Read_Bruker_Spectrum(spec.s, (proc / "1r").string()), 0);
  EXPECT_EQ(spec.s.Param.Window_Code, 3);
  EXPECT_EQ(spec.s.Param.Gradient_Program, "grad_out");
  const std::string saved = (dir / "noesy.tv1").string();
  ASSERT_EQ(Write_Native(spec.s, saved), 0);
  Quiet_Session back;
  ASSERT_EQ(Read_Native(back.s, saved), 0);
  EXPECT_EQ(back.s.Param.Probe_Name, "5 mm PABBO BB-1H/D Z-GRD Z104450");  // the field's 32 bytes
  EXPECT_EQ(back.s.Param.Gradient_Program, "grad_out");
  EXPECT_EQ(back.s.Param.P_List, spec.s.Param.P_List);
  EXPECT_EQ(back.s.Param.D_List, spec.s.Param.D_List);
  EXPECT_EQ(back.s.Param.CNST_List, spec.s.Param.CNST_List);
  EXPECT_EQ(back.s.Param.Window_Code, 3);

  // The 1r integers are intensity / 2^NC_proc: a copy stored two bits
  // coarser with NC_proc -1 gives the same spectrum within those bits.
  {
    auto bytes = test::Read_Bytes(proc / "1r");
    for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4)
      Put_LE_Int32(bytes, at, Decode_LE_Int32(bytes, at) >> 2);
    const fs::path coarse = dir / "coarse";
    fs::copy(e, coarse, fs::copy_options::recursive);
    test::Write_Bytes(coarse / "pdata" / "1" / "1r", bytes);
    Edit_Text(coarse / "pdata" / "1" / "procs", "##$NC_proc= -3", "##$NC_proc= -1");
    Quiet_Session c;
    ASSERT_EQ(Read_Bruker_Spectrum(c.s, (coarse / "pdata" / "1" / "1r").string()), 0);
    // Two dropped bits are 3/8 at most, besides the real32 rounding.
    float top = 0;
    int32_t apart = 0;
    for (int32_t i = 0; i < c.s.Spec_Points; ++i) {
      const float v = spec.s.Spec_Re(i);
      apart += std::fabs(c.s.Spec_Re(i) - v) > 0.375f + std::fabs(v) * 2.4e-7f;
      top = std::max(top, v);
    }
    EXPECT_EQ(apart, 0);
    EXPECT_GT(top, 1e5f);
    // "BRUKER NC SCALE" 0: the integers as they stand.
    Quiet_Session raw;
    raw.s.settings.Set("BRUKER NC SCALE", 0.0);
    ASSERT_EQ(Read_Bruker_Spectrum(raw.s, (proc / "1r").string()), 0);
    EXPECT_EQ(raw.s.Spec_Re(100), spec.s.Spec_Re(100) * 8);
  }

  // An acqus without ##$TD after acqu: acqu's count, halved once.
  Edit_Text(e / "acqus", "##$TD= 65536", "##$TDX= 65536");
  Quiet_Session no_td;
  ASSERT_EQ(Read_Bruker_Fid(no_td.s, e.string()), 0);
  EXPECT_EQ(no_td.s.Fid_Points, 32768);

  // Byte orders other than 0 and 1, and a negative sweep width: the reader's refusal.
  const std::vector<std::tuple<fs::path, std::string, std::string>> faults = {
      {e / "acqus", "##$BYTORDA= 0", "##$BYTORDA= 2"},
      {proc / "procs", "##$BYTORDP= 0", "##$BYTORDP= -1"},
      {proc / "procs", "##$SW_p= 8223.68421052632", "##$SW_p= -8223.68421052632"},
  };
  for (const auto& [file, from, to] : faults) {
    SCOPED_TRACE(to);
    Edit_Text(file, from, to);
    Quiet_Session q;
    const bool raw_fid = file.filename() == "acqus";
    EXPECT_EQ(raw_fid ? Read_Bruker_Fid(q.s, e.string()) : Read_Bruker_Spectrum(q.s, (proc / "1r").string()), 1);
    EXPECT_EQ(q.Last_Message(), "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ");
    EXPECT_EQ(q.s.Spec_Points, 0);
    Edit_Text(file, to, from);
  }
}

TEST(Bruker, SingleConverterQuestionAndADamagedLabelKeepTheFormerData) {
  Quiet_Session q;
  ASSERT_EQ(Read_Bruker_Spectrum(q.s, Bruker("aspirin-1h-processed/1")), 0);
  const float kept = q.s.Spec_Re(27074);
  const int32_t kept_n = q.s.Spec_Points;
  auto unchanged = [&] {
    EXPECT_EQ(q.s.Spec_Points, kept_n);
    EXPECT_EQ(q.s.Spec_Re(27074), kept);
    EXPECT_EQ(q.s.Is_Spectrum, 1);
  };
  test::Temp_Dir dir;
  // ##$AQ_mod= 2 asks for the single-converter correction; cancel abandons.
  {
    std::vector<uint8_t> b(64 * 4, 0);
    Write_Experiment(dir / "qseq", "##$AQ_mod= 2\n", b, 64);
    q.ui.choice_answers.push_back(-1);
    EXPECT_EQ(Read_Bruker_Fid(q.s, (dir / "qseq").string()), 1);
    unchanged();
    Quiet_Session d;
    d.ui.choice_answers.push_back(1);  // "Dual AD-Converter" overrides
    ASSERT_EQ(Read_Bruker_Fid(d.s, (dir / "qseq").string()), 0);
    EXPECT_EQ(d.s.Acq_Mode, 0);
  }
  // An array label with a word in it. (Cut files and a header without its
  // origin are refused through the open frame in the vendor open test.)
  fs::create_directories(dir / "cut");
  fs::copy_file(Bruker("cyclosporin_1h/cyclosporin_1h/1/fid"), dir / "cut" / "fid");
  const std::string acqus = test::Read_Text(Bruker("cyclosporin_1h/cyclosporin_1h/1/acqus"));
  {
    std::string bad = acqus;
    const std::size_t p = bad.find("##$CNST= (0..63)");
    ASSERT_NE(p, std::string::npos);
    bad.replace(bad.find('\n', p) + 1, 3, "x!x");
    test::Write_Text(dir / "cut" / "acqus", bad);
    EXPECT_EQ(Read_Bruker_Fid(q.s, (dir / "cut").string()), -1);
    unchanged();
  }
}

}  // namespace
}  // namespace tevo::datafiles

namespace tevo::datafiles {
namespace {

TEST(Bruker, RelaxationSeriesOpenAsArraysAndTrueTwoDimensionalSetsAreRefused) {
  // Inversion recovery: the pulse program steps "ivd" over vdlist, ten rows.
  Quiet_Session ir;
  ASSERT_EQ(NM1D_m11_Click(ir.s, {Bruker("inversionRecovery2D/inversionRecovery2D/1"), {}}), 0);
  EXPECT_EQ(ir.s.Array_Rows, 10);
  EXPECT_EQ(ir.s.Delay_List, (std::vector<float>{10, 5, 4, 3, 2, 1, 0.5f, 0.25f, 0.1f, 0.01f}));
  EXPECT_EQ(ir.s.Delay_Name, "menthol_T1");
  EXPECT_EQ(ir.s.Delay_Label, "t(menthol_T1)");
  // Row 9 starts from the inverted magnetisation: its first point has the
  // sign opposite to row 0's, fully recovered after 10 s.
  EXPECT_LT(ir.s.Fid_Re(70, 0) * ir.s.Fid_Re(70, 9), 0);
  signal::Process_Report report;
  ASSERT_EQ(signal::Process_Fid(ir.s, {}, report), 0);
  const float shortest = ir.s.Spec_Re(1000, 9);
  relaxation::Sort_Array_Rows(ir.s, 1);
  EXPECT_EQ(ir.s.Delay_List.front(), 0.01f);
  EXPECT_EQ(ir.s.Spec_Re(1000, 0), shortest);

  // A T2 echo train: "ivc" counts the loop passes in vclist; each pass is
  // 2 d20 + p2 (d20 set to 0.5 ms in a copy of the set, p2 = 14.6 us).
  test::Temp_Dir dir;
  const fs::path cpmg = dir / "cpmg";
  fs::copy(Bruker("inversionRecovery2D/inversionRecovery2D/1"), cpmg, fs::copy_options::recursive);
  fs::remove(cpmg / "vdlist");
  const auto edit = [&cpmg](const char* name, const auto& change) {
    std::istringstream lines(test::Read_Text(cpmg / name));
    std::string out, line;
    bool after_d = false;
    while (std::getline(lines, line)) {
      out += change(line, after_d) + "\n";
      after_d = line.rfind("##$D=", 0) == 0;
    }
    test::Write_Text(cpmg / name, out);
  };
  edit("pulseprogram", [](std::string line, bool) {
    for (auto at = line.find("ivd"); at != std::string::npos; at = line.find("ivd")) line.replace(at, 3, "ivc");
    return line;
  });
  edit("acqus", [](const std::string& line, bool after_d) {
    if (!after_d) return line;
    std::istringstream values(line);
    std::vector<std::string> v{std::istream_iterator<std::string>(values), {}};
    v.at(20) = "0.0005";
    std::string joined;
    for (const std::string& x : v) joined += (joined.empty() ? "" : " ") + x;
    return joined;
  });
  test::Write_Text(cpmg / "vclist", "1\n2\n4\n8\n16\n32\n64\n128\n256\n512\n");
  Quiet_Session t2;
  ASSERT_EQ(NM1D_m11_Click(t2.s, {(cpmg / "ser").string(), {}}), 0);
  ASSERT_EQ(t2.s.Array_Rows, 10);
  for (int r = 0; r < 10; ++r) EXPECT_FLOAT_EQ(t2.s.Delay_List[r], static_cast<float>((1 << r) * (2 * 0.0005 + 14.6e-6))) << r;
  EXPECT_EQ(t2.s.Delay_Name, "CCCCCCCCCCCCCCC");  // as acqus names its vclist
  // Without a d20 the counts give no delays: the set is refused as 2D.
  edit("acqus", [](const std::string& line, bool after_d) {
    return after_d ? "0 15 0 0 0 0 0 5 0 0.06 0 0.03 0 0 0 0 0.0001 0 0 0 0 0" : line;
  });
  EXPECT_NE(NM1D_m11_Click(t2.s, {(cpmg / "ser").string(), {}}), 0);
  EXPECT_EQ(t2.Last_Message(), "2D Data !");

  // T1rho: "ivp" over vplist, 22 rows from a list of 21 that runs round.
  Quiet_Session rho;
  ASSERT_EQ(NM1D_m11_Click(rho.s, {Bruker("t1rho-1H/189/ser"), {}}), 0);
  EXPECT_EQ(rho.s.Array_Rows, 22);
  EXPECT_FLOAT_EQ(rho.s.Delay_List[0], 90e-6f);
  EXPECT_FLOAT_EQ(rho.s.Delay_List[20], 0.4f);
  EXPECT_FLOAT_EQ(rho.s.Delay_List[21], 90e-6f);
  EXPECT_EQ(rho.s.Delay_Name, "vpt1rho");

  // COSY, HSQC and HMBC evolve an indirect time: refused as before, the
  // former data kept.
  for (const char* two_d : {"cyclosporin_cosy/cyclosporin_cosy/1/ser", "cyclosporin_hsqc/cyclosporin_hsqc/3/ser",
                            "cyclosporin_hmbc/cyclosporin_hmbc/2/ser", "cosy-nus/2/ser"}) {
    SCOPED_TRACE(two_d);
    EXPECT_NE(NM1D_m11_Click(rho.s, {Bruker(two_d), {}}), 0);
    EXPECT_EQ(rho.Last_Message(), "2D Data !");
    EXPECT_EQ(rho.s.Array_Rows, 22);
  }
}

}  // namespace
}  // namespace tevo::datafiles
