// JEOL ".jdf": every 1D file of the jeol data package opens, values read off
// the files separately, the 2D files are refused, damaged copies fail.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <vector>

#include "datafiles/jeol_jdf.h"
#include "datafiles/quiet_session.h"
#include "session/session.h"
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
      // Clipped: points 26215 to 235929 of 262144 are stored.
      {"8PA_SynLK_5360u150uDMSO_snc1811_qH_SpinOn-1-2.jdf", false, 209715, "1H", 399.78219837825},
      {"8PA_SynLK_5360u150uDMSO_snc1811_qH_spinOff-1-2.jdf", false, 209715, "1H", 399.78219837825},
      {"PM032220_3000U200U_Bin_180218_qH-1-4.jdf", false, 104858, "1H", 399.78219837825},  // 3 to 104860
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

  // Processed, real only: the imaginary part stays 0.
  Quiet_Session r;
  ASSERT_EQ(Read_Ecp(r.s, Jeol("PM032220_3000U200U_Bin_180218_qH-1-4.jdf")), 0);
  // File point 100, the 98th stored from offset 3, at the top end reversed.
  EXPECT_DOUBLE_EQ(r.s.Spec_Re(104858 - 98), static_cast<float>(-3.993004621772304e-05));
  EXPECT_EQ(r.s.Spec_Im(5000), 0.0f);
}

TEST(Jeol, ClippedSpectraPutTheirLinesWhereTheHeaderSays) {
  // Decoded here from the layout alone: point counts and the stored stretch
  // (start and stop offsets) as big-endian words at 176, 208 and 240, the
  // axis values of those two offsets as big-endian doubles at 272 and 336,
  // the data start at 1284, the real points as doubles in the endian the
  // byte at 8 states, the whole count of them before the imaginary ones.
  for (const char* name : {"8PA_SynLK_5360u150uDMSO_snc1811_qH_SpinOn-1-2.jdf",
                           "8PA_SynLK_5360u150uDMSO_snc1811_qH_spinOff-1-2.jdf"}) {
    SCOPED_TRACE(name);
    const std::vector<uint8_t> b = test::Read_Bytes(Jeol(name));
    auto be32 = [&](size_t o) { return (b[o] << 24) | (b[o + 1] << 16) | (b[o + 2] << 8) | b[o + 3]; };
    auto f64 = [&](size_t o, bool little) {
      uint64_t u = 0;
      for (int k = 0; k < 8; ++k) u = (u << 8) | b[o + (little ? 7 - k : k)];
      double d;
      std::memcpy(&d, &u, 8);
      return d;
    };
    const int32_t start = be32(208), stop = be32(240);
    ASSERT_EQ(be32(176), 262144);
    ASSERT_EQ(start, 26215);
    ASSERT_EQ(stop, 235929);
    const double first_ppm = f64(272, false), last_ppm = f64(336, false);
    const size_t data = static_cast<size_t>(be32(1284));
    int32_t top = start;
    for (int32_t k = start; k <= stop; ++k)
      if (f64(data + 8 * static_cast<size_t>(k), b[8] != 0) > f64(data + 8 * static_cast<size_t>(top), b[8] != 0))
        top = k;
    const double expected = first_ppm + (top - start) * (last_ppm - first_ppm) / (stop - start);

    Quiet_Session q;
    ASSERT_EQ(Read_Ecp(q.s, Jeol(name)), 0);
    const int32_t n = q.s.Spec_Points;
    ASSERT_EQ(n, stop - start + 1);
    EXPECT_NEAR(q.s.Spec_Axis[n - 1], first_ppm, 1e-4);
    EXPECT_NEAR(q.s.Spec_Axis[0], last_ppm, 1e-4);
    int32_t i = 0;
    for (int32_t k = 1; k < n; ++k)
      if (q.s.Spec_Re(k) > q.s.Spec_Re(i)) i = k;
    EXPECT_NEAR(q.s.Spec_Axis[i], expected, 0.01);
  }
}

TEST(Jeol, DamagedHeadersAreRefused) {
  Quiet_Session q;
  ASSERT_EQ(Read_Ecp(q.s, Jeol("phosphorus.jdf")), 0);
  const float kept = q.s.Fid_Re(100);
  const auto whole = test::Read_Bytes(Jeol("fluorine.jdf"));
  test::Temp_Dir dir;
  const auto path = (dir / "cut.jdf").string();
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
