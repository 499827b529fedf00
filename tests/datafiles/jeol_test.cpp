// JEOL ".jdf": every 1D file of the jeol data package opens, values read off
// the files separately, the 2D files are refused, damaged copies fail.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <vector>

#include "datafiles/jeol_jdf.h"
#include "datafiles/quiet_session.h"
#include "session/session.h"
#include "signal/fft.h"
#include "support/test_support.h"

namespace tevo::datafiles {
namespace {

using test::Quiet_Session;

std::string Jeol(const std::string& name) {
  return test::Test_Data_File("jeol-data-test@0.5.2/data/" + name).string();
}

TEST(Jeol, EveryOneDimensionalFileOpens) {
  struct Expected {
    std::string file;
    bool fid;
    int32_t n;
    std::string nucleus;
    double observe;
  };
  const std::vector<Expected> files = {
      {"EC_10m200u_400_298K_bzhou_qH-1-1.jdf", true, 32768, "1H", 399.78219837825},
      {"EC=8C_5m200u_MeOD_bzhou21_20190228_qH-1-1.jdf", true, 32768, "1H", 399.78219837825},
      {"EC=8EC_2m200u_MeOD_bzhou21_20190328_qH-1-1.jdf", true, 32768, "1H", 399.78219837825},
      {"EC=8eC_10m150u_MeOD_bzhou21_qH-1-1.jdf", true, 32768, "1H", 399.78219837825},
      {"EC=8eEC_10m150u_MeOD_bzhou21_201802_qH-1-1.jdf", true, 32768, "1H", 399.78219837825},
      {"PM032109_5000u200u_01172018bzhou_qH-1-1.jdf", true, 32768, "1H", 399.78219837825},
      {"PM032220_3000U200U_Bin_180218_qH-1-1.jdf", true, 32768, "1H", 399.78219837825},
      {"Rutin_3080ug200uL_DMSOd6_qHNMR_400MHz_Jeol.jdf", true, 32768, "1H", 399.78219837825},
      {"Resveratrol1_11280u600u_MeOD.jdf", true, 44984, "1H", 599.772305},
      {"11_pm033220_400JEOL_278Kcarbon_.jdf", true, 32768, "13C", 100.5253033},
      {"12_pm033236_400JEOL_278k carbon_C.jdf", true, 65536, "13C", 100.5253033},
      {"13_pm032839_400JEOL_278k carbon_C.jdf", true, 65536, "13C", 100.5253033},
      {"14_400JEOL_PM033228 278K_C.jdf", true, 65536, "13C", 100.5253033},
      {"16_pm031642_400JEOL_278k_C.jdf", true, 65536, "13C", 100.5253033},
      {"PM031528 255K_400JEOL_C.jdf", true, 65536, "13C", 100.5253033},
      {"EC=8C_5m200u_MeOD_bzhou21_20190228_qCarbon-1-1.jdf", true, 32768, "13C", 100.5253033},
      {"EC=8EC_2m200u_MeOD_bzhou21_20190328_qC-1-1.jdf", true, 32768, "13C", 100.5253033},
      {"EC=8eC_2m150u_MeOD_bzhou21_20190328_qC-2-1.jdf", true, 32768, "13C", 100.5253033},
      {"EC=8eEC_10m150u_MeOD_bzhou21_qC-1-1.jdf", true, 65536, "13C", 100.5253033},
      {"PM032220_3000U200U_MeOD_18224Bin_qC-2-1.jdf", true, 32768, "13C", 100.5253033},
      {"Rutin_3080ug200uL_DMSOd6_13CNMR_400MHz_Jeol.jdf", true, 32768, "13C", 100.5253033},
      {"fluorine.jdf", true, 32768, "19F", 470.3635084},
      {"phosphorus.jdf", true, 32768, "31P", 202.3577658},
      {"8PA_SynLK_5360u150uDMSO_snc1811_qH_SpinOn-1-2.jdf", false, 262144, "1H", 399.78219837825},
      {"8PA_SynLK_5360u150uDMSO_snc1811_qH_spinOff-1-2.jdf", false, 262144, "1H", 399.78219837825},
      {"PM032220_3000U200U_Bin_180218_qH-1-4.jdf", false, 104864, "1H", 399.78219837825},
  };
  for (const Expected& e : files) {
    SCOPED_TRACE(e.file);
    EXPECT_EQ(Check_Ecp(Jeol(e.file)).status, 0);
    Quiet_Session q;
    ASSERT_EQ(Read_Ecp(q.s, Jeol(e.file)), 0);
    EXPECT_EQ(q.s.Is_Fid, e.fid ? 1 : 0);
    EXPECT_EQ(q.s.Param.SMODE, e.fid ? 0 : 1);
    EXPECT_EQ(q.s.Fid_Points, e.n);
    EXPECT_EQ(q.s.Param.OBNUC, e.nucleus);
    EXPECT_NEAR(q.s.Observe_Frequency, e.observe, 1e-6);
    if (e.fid) {
      EXPECT_EQ(q.s.Spec_Points & (q.s.Spec_Points - 1), 0);
      EXPECT_GE(q.s.Spec_Points, e.n);
      EXPECT_GT(q.s.Param.FREQU, 0);
    } else {
      EXPECT_EQ(q.s.Spec_Points, e.n);
      for (int32_t i = 1; i < e.n; i += 997) ASSERT_GT(q.s.Spec_Axis[i], q.s.Spec_Axis[i - 1]);
    }
  }
}

TEST(Jeol, ParametersAndPointsMatchTheFile) {
  // Values decoded separately: the header (big-endian) and the data and
  // parameter block (little-endian, as the endian byte says).
  Quiet_Session q;
  ASSERT_EQ(Read_Ecp(q.s, Jeol("EC_10m200u_400_298K_bzhou_qH-1-1.jdf")), 0);
  EXPECT_EQ(Check_Ecp(Jeol("EC_10m200u_400_298K_bzhou_qH-1-1.jdf")).kind, "single_pulse_dec");
  EXPECT_EQ(q.s.Param.EXMOD, "single_pulse_dec");
  EXPECT_EQ(q.s.Param.SLVNT, "METHANOL-D4");
  EXPECT_EQ(q.s.Param.SCANS, 64);
  EXPECT_EQ(q.s.Param.DUMMY, 4);
  EXPECT_EQ(q.s.Param.IRNUC, "13C");
  EXPECT_NEAR(q.s.Param.FREQU, 7494.00479616307, 0.01);
  EXPECT_FLOAT_EQ(q.s.Param.PD, 1.5f);
  EXPECT_FLOAT_EQ(q.s.Param.CTEMP, 25.0f);
  EXPECT_EQ(q.s.Param.COMNT, "PM032111_10000u200u_01172018bzhou");
  EXPECT_EQ(q.s.Param.EXPCM, "sample complete soluble in methnol-d4");
  // ACTUAL_START_TIME 885001724 s after 1990-01-01.
  EXPECT_EQ(q.s.Param.DATIM, "2018/01/17 01:48:44");
  EXPECT_DOUBLE_EQ(q.s.Fid_Re(0), static_cast<float>(2.7860128262750975e-06));
  EXPECT_DOUBLE_EQ(q.s.Fid_Re(100), static_cast<float>(36.13751891292603));
  EXPECT_DOUBLE_EQ(q.s.Fid_Im(0), static_cast<float>(-1.0418621879469137e-05));
  EXPECT_DOUBLE_EQ(q.s.Fid_Im(100), static_cast<float>(-9.474067514361304));
  EXPECT_DOUBLE_EQ(q.s.Fid_Re(32767), static_cast<float>(-0.001245817434500673));

  Quiet_Session f;
  ASSERT_EQ(Read_Ecp(f.s, Jeol("fluorine.jdf")), 0);
  EXPECT_DOUBLE_EQ(f.s.Fid_Re(100), static_cast<float>(67.61282587655818));
  EXPECT_DOUBLE_EQ(f.s.Fid_Im(100), static_cast<float>(39.63160596783636));
  // The carrier sits at X_OFFSET = -100 ppm.
  EXPECT_NEAR(f.s.Spectrum_Frequency, 470.3635084 / (1 - 100e-6), 1e-6);

  // Processed, complex: the file runs from high to low ppm, so its first
  // point is the top index; the axis ends are the header's.
  Quiet_Session p;
  ASSERT_EQ(Read_Ecp(p.s, Jeol("8PA_SynLK_5360u150uDMSO_snc1811_qH_SpinOn-1-2.jdf")), 0);
  const int32_t n = 262144;
  EXPECT_DOUBLE_EQ(p.s.Spec_Re(n - 1), static_cast<float>(-7.863373538399405e-08));
  EXPECT_DOUBLE_EQ(p.s.Spec_Re(n - 101), static_cast<float>(-2.4843496337333567e-08));
  EXPECT_DOUBLE_EQ(p.s.Spec_Im(n - 1), static_cast<float>(-4.455959560031941e-08));
  EXPECT_DOUBLE_EQ(p.s.Spec_Re(0), static_cast<float>(2.962952936907179e-09));
  EXPECT_NEAR(p.s.Spec_Axis[n - 1], 13.498, 1e-3);
  EXPECT_NEAR(p.s.Spec_Axis[0], -1.49804, 1e-4);
  // Processed, real only: the imaginary part stays 0.
  Quiet_Session r;
  ASSERT_EQ(Read_Ecp(r.s, Jeol("PM032220_3000U200U_Bin_180218_qH-1-4.jdf")), 0);
  EXPECT_DOUBLE_EQ(r.s.Spec_Re(104864 - 101), static_cast<float>(-3.993004621772304e-05));
  EXPECT_EQ(r.s.Spec_Im(5000), 0.0f);
}

TEST(Jeol, FidProcessesToTheProcessedSpectrumOfTheSameExperiment) {
  // qH-1-1 is the FID, qH-1-4 the instrument's processed spectrum of it: the
  // eight strongest lines of the FID's transform, read without any sign
  // change, fall within 0.002 ppm of the processed ones.
  Quiet_Session f, p;
  ASSERT_EQ(Read_Ecp(f.s, Jeol("PM032220_3000U200U_Bin_180218_qH-1-1.jdf")), 0);
  ASSERT_EQ(Read_Ecp(p.s, Jeol("PM032220_3000U200U_Bin_180218_qH-1-4.jdf")), 0);
  const int32_t n = f.s.Spec_Points;
  std::vector<float> w(n), re(n), im(n);
  for (int32_t i = 0; i < n; ++i) w[i] = static_cast<float>(std::exp(-M_PI * 0.3 * i / f.s.Param.FREQU));
  signal::Spectrum_Transform(&f.s.Fid_Re(0), &f.s.Fid_Im(0), w.data(), re.data(), im.data(), n, 0);
  auto tops = [](auto height, int32_t count) {
    std::vector<int32_t> idx;
    for (int32_t i = 1; i + 1 < count; ++i)
      if (height(i) > height(i - 1) && height(i) >= height(i + 1)) idx.push_back(i);
    std::partial_sort(idx.begin(), idx.begin() + 8, idx.end(),
                      [&](int32_t a, int32_t b) { return height(a) > height(b); });
    idx.resize(8);
    return idx;
  };
  const double sf = f.s.Spectrum_Frequency;
  auto fid_ppm = [&](int32_t i) {
    return ((i - (n / 2 - 1)) * f.s.Param.FREQU / n + (f.s.Observe_Frequency - sf) * 1e6) / sf;
  };
  std::vector<double> from_fid, processed;
  for (int32_t i : tops([&](int32_t i) { return std::hypot(re[i], im[i]); }, n))
    from_fid.push_back(fid_ppm(i));
  for (int32_t i : tops([&](int32_t i) { return std::fabs(p.s.Spec_Re(i)); }, p.s.Spec_Points))
    processed.push_back(p.s.Spec_Axis[i]);
  for (double ppm : from_fid) {
    double nearest = 1e9;
    for (double q : processed) nearest = std::min(nearest, std::fabs(q - ppm));
    EXPECT_LT(nearest, 0.002) << ppm;
  }
}

TEST(Jeol, TwoDimensionalAndDamagedFilesAreRefused) {
  Quiet_Session q;
  ASSERT_EQ(Read_Ecp(q.s, Jeol("phosphorus.jdf")), 0);
  const float kept = q.s.Fid_Re(100);
  for (const char* name : {"Rutin_3080ug200uL_DMSOd6_COSY_400MHz_Jeol.jdf",
                           "EC=8EC_2m200u_MeOD_bzhou21_20190328_HSQC-1-1.jdf",
                           "EC=8C_5m200u_MeOD_bzhou21_20190228_HMBCabs-1-1.jdf"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(Check_Ecp(Jeol(name)).status, 2);
    EXPECT_EQ(Read_Ecp(q.s, Jeol(name)), 1);
    EXPECT_EQ(q.Last_Message(), "2D Data !");
    EXPECT_EQ(q.s.Fid_Re(100), kept);
  }
  const auto whole = test::Read_Bytes(Jeol("fluorine.jdf"));
  test::Temp_Dir dir;
  const auto path = (dir / "cut.jdf").string();
  for (std::size_t cut : {std::size_t{0}, std::size_t{7}, std::size_t{40}, std::size_t{1300},
                          std::size_t{3000}, std::size_t{20000},
                          std::size_t{16384 + 524288 - 1} /* data start + length - 1 */}) {
    SCOPED_TRACE(cut);
    test::Write_Bytes(path, {whole.begin(), whole.begin() + cut});
    const std::size_t shown = q.ui.shown.size();
    EXPECT_NE(Read_Ecp(q.s, path), 0);
    EXPECT_GT(q.ui.shown.size(), shown);
    EXPECT_EQ(q.s.Fid_Re(100), kept);
    EXPECT_EQ(q.s.Param.OBNUC, "31P");
  }
  // Damaged headers: a wrong banner, a parameter block that points past the
  // end, a data start beyond the file, an axis unit not read.
  auto damaged = [&](std::size_t at, std::vector<uint8_t> with) {
    auto b = whole;
    std::copy(with.begin(), with.end(), b.begin() + static_cast<long>(at));
    test::Write_Bytes(path, b);
    return Read_Ecp(q.s, path);
  };
  EXPECT_EQ(damaged(0, {'J', 'E', 'O', 'X'}), 1);
  EXPECT_EQ(damaged(1212, {0x7f, 0, 0, 0}), -1);
  EXPECT_EQ(damaged(1284, {0x10, 0, 0, 0}), -1);
  EXPECT_EQ(damaged(33, {5}), 1);
  EXPECT_EQ(damaged(176, {0x7f, 0xff, 0xff, 0xff}), 1);
  EXPECT_EQ(q.s.Fid_Re(100), kept);
}

}  // namespace
}  // namespace tevo::datafiles
