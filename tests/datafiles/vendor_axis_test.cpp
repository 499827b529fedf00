// FIDs of real instruments, processed with the processing window's defaults,
// against the spectrometer's own processed spectrum of the same experiment:
// the lines must stand at the ppm the instrument prints, and the spectra
// must look alike.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "datafiles/open_file.h"
#include "datafiles/quiet_session.h"
#include "session/session.h"
#include "signal/fid_processing.h"
#include "support/test_support.h"

namespace tevo::datafiles {
namespace {

using test::Quiet_Session;

std::string Data(const std::string& name) { return test::Test_Data_File(name).string(); }

// Opens a file through the open command and, for a FID, runs the
// processing window's defaults.
void Open_Processed(Quiet_Session& q, const std::string& path, signal::Process_Report* report = nullptr) {
  ASSERT_EQ(NM1D_m11_Click(q.s, {path, {}}), 0) << path;
  if (q.s.Param.SMODE != 0) return;
  signal::Process_Report r;
  ASSERT_EQ(signal::Process_Fid(q.s, signal::Process_Request{}, r), 0) << path;
  if (report) *report = r;
}

struct Likeness {
  double worst_ppm = 0;  // of the ten strongest lines of the reference
  double r = 0;  // correlation on the reference's axis
};

std::vector<int32_t> Maxima(const Session& s) {
  std::vector<int32_t> out;
  for (int32_t i = 1; i + 1 < s.Spec_Points; ++i)
    if (s.Spec_Re(i) > s.Spec_Re(i - 1) && s.Spec_Re(i) >= s.Spec_Re(i + 1)) out.push_back(i);
  return out;
}

// Spec_Re of `s` at `ppm`, interpolated on its (ascending) axis.
double Value_At(const Session& s, double ppm) {
  const auto* axis = s.Spec_Axis.data();
  const auto n = static_cast<std::size_t>(s.Spec_Points);
  const auto it = std::lower_bound(axis, axis + n, static_cast<float>(ppm));
  if (it == axis || it == axis + n) return 0;
  const auto k = static_cast<std::size_t>(it - axis);
  const double t = (ppm - axis[k - 1]) / (axis[k] - axis[k - 1]);
  return s.Spec_Re(k - 1) + t * (s.Spec_Re(k) - s.Spec_Re(k - 1));
}

// The reference's lines: its maxima less the ringing of a line five times
// stronger within 0.25 ppm (a spectrum processed without line broadening
// rings around a strong line).
std::vector<int32_t> Lines(const Session& s) {
  const std::vector<int32_t> all = Maxima(s);
  std::vector<int32_t> out;
  for (int32_t i : all) {
    bool ringing = false;
    for (int32_t j : all)
      ringing = ringing || (std::fabs(s.Spec_Axis[j] - s.Spec_Axis[i]) < 0.25f && s.Spec_Re(j) > 5 * s.Spec_Re(i));
    if (!ringing) out.push_back(i);
  }
  return out;
}

Likeness Compare(const Session& mine, const Session& ref) {
  Likeness out;
  std::vector<int32_t> top = Lines(ref);
  std::partial_sort(top.begin(), top.begin() + 10, top.end(),
                    [&](int32_t a, int32_t b) { return ref.Spec_Re(a) > ref.Spec_Re(b); });
  top.resize(10);
  const std::vector<int32_t> lines = Maxima(mine);
  for (int32_t i : top) {
    double nearest = 1e9;
    for (int32_t k : lines) nearest = std::min(nearest, std::fabs(static_cast<double>(mine.Spec_Axis[k]) - ref.Spec_Axis[i]));
    out.worst_ppm = std::max(out.worst_ppm, nearest);
  }
  double sa = 0, sb = 0, saa = 0, sbb = 0, sab = 0;
  const int32_t n = ref.Spec_Points;
  for (int32_t i = 0; i < n; ++i) {
    const double a = Value_At(mine, ref.Spec_Axis[i]), b = ref.Spec_Re(i);
    sa += a, sb += b, saa += a * a, sbb += b * b, sab += a * b;
  }
  out.r = (sab - sa * sb / n) / std::sqrt((saa - sa * sa / n) * (sbb - sb * sb / n));
  return out;
}

TEST(VendorAxis, ProcessedFidsMatchTheSpectrometersOwnSpectra) {
  const std::string bruker = "bruker-data-test@1.0.0/data/", jcamp = "jcamp-data-test@0.2.1/data/",
                    jeol = "jeol-data-test@0.5.2/data/";
  const std::string c9 = bruker + "flat/coffee/UV1009_M1-1003-1002_6268712_73uEjPg4XR/",
                    c10 = bruker + "flat/coffee/UV1010_M1-1003-1002_6268756_ErISKLIoeB/";
  struct Pair {
    std::string fid, spectrum;
    double r;
  };
  const std::vector<Pair> pairs = {
      {bruker + "unzipped/aspirin-1h/1/fid", bruker + "unzipped/aspirin-1h-processed/1/pdata/1/1r", 0.98},
      {bruker + "unzipped/cyclosporin_1h/cyclosporin_1h/1/fid",
       bruker + "unzipped/cyclosporin_1h/cyclosporin_1h/1/pdata/1/1r", 0.98},
      {bruker + "unzipped/strychnine-1h/strychnine/10/fid",
       bruker + "unzipped/strychnine-1h/strychnine/10/pdata/1/1r", 0.98},
      {c9 + "20/fid", c9 + "20/pdata/1/1r", 0.98},
      {c9 + "21/fid", c9 + "21/pdata/1/1r", 0.98},
      {c9 + "22/fid", c9 + "22/pdata/1/1r", 0.98},
      {c10 + "11/fid", c10 + "11/pdata/1/1r", 0.98},
      {c10 + "12/fid", c10 + "12/pdata/1/1r", 0.98},
      {jcamp + "aspirin-1h.fid.dx", jcamp + "aspirin-1h.dx", 0.98},
      {jcamp + "naphtoicAcid-1h.fid.dx", jcamp + "naphtoicAcid-1h.dx", 0.98},
      {jeol + "PM032220_3000U200U_Bin_180218_qH-1-1.jdf", jeol + "PM032220_3000U200U_Bin_180218_qH-1-4.jdf", 0.95},
  };
  for (const Pair& p : pairs) {
    SCOPED_TRACE(p.fid);
    Quiet_Session fid, spectrum;
    Open_Processed(fid, Data(p.fid));
    Open_Processed(spectrum, Data(p.spectrum));
    const Likeness l = Compare(fid.s, spectrum.s);
    EXPECT_LT(l.worst_ppm, 0.01);
    EXPECT_GE(l.r, p.r);
  }
}

TEST(VendorAxis, SwitchedOffExtensionsGiveTheDescribedAxisAndShift) {
  // Aspirin: SFO1 beside BF1 puts the carrier 4.5 ppm above 0 ppm, and the
  // filter of DECIM 24 / DSPFVS 10 delays the FID by 61 points.
  const std::string fid = Data("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid");
  Quiet_Session on, off;
  signal::Process_Report with, without;
  Open_Processed(on, fid, &with);
  EXPECT_EQ(with.fid_shift, 61);
  const int32_t n = on.s.Spec_Points;
  EXPECT_NEAR(on.s.Spec_Axis[n / 2 - 1], (on.s.Observe_Frequency / on.s.Spectrum_Frequency - 1) * 1e6, 1e-4);
  EXPECT_GT(on.s.Spec_Axis[n / 2 - 1], 4);

  off.s.settings.Set("VENDOR REFERENCE", 0.0);
  off.s.settings.Set("AUTO FILTER SHIFT", 0.0);
  Open_Processed(off, fid, &without);
  // The described axis: the carrier in the middle at 0 ppm, the observe
  // frequency as the 0 ppm frequency; the shift the one kept for the class.
  EXPECT_EQ(off.s.Spectrum_Frequency, off.s.Observe_Frequency);
  EXPECT_EQ(off.s.Param.SMTMS, static_cast<float>(n / 2));
  EXPECT_EQ(off.s.Spec_Axis[n / 2], 0.0f);
  EXPECT_EQ(without.fid_shift, off.s.settings.Int("FID SHFT H1 BRU"));
}

TEST(VendorAxis, JcampFidsOfAnyMakerComeOutTheRightWayRound) {
  // Ibuprofen from a benchtop instrument: its aromatic doublets (7.1 ppm)
  // must stand 6.2 ppm above the strongest line, the two methyls at 0.9 ppm.
  Quiet_Session q;
  Open_Processed(q, Data("jcamp-data-test@0.2.1/data/qmagnetics/ibuprofen_j_ave_qmagnetics.jdx"));
  const Session& s = q.s;
  int32_t methyl = 0;
  for (int32_t i = 0; i < s.Spec_Points; ++i)
    if (s.Spec_Re(i) > s.Spec_Re(methyl)) methyl = i;
  int32_t aromatic = -1;
  for (int32_t i = 0; i < s.Spec_Points; ++i)
    if (std::fabs(s.Spec_Axis[i] - s.Spec_Axis[methyl]) > 4 && (aromatic < 0 || s.Spec_Re(i) > s.Spec_Re(aromatic)))
      aromatic = i;
  EXPECT_NEAR(s.Spec_Axis[aromatic] - s.Spec_Axis[methyl], 6.2, 0.2);

  // Its shift reference puts 0 ppm at the carrier; one that names 1.5 ppm
  // there moves every line up by 1.5 ppm.
  test::Temp_Dir dir;
  std::string text = test::Read_Text(Data("jcamp-data-test@0.2.1/data/qmagnetics/ibuprofen_j_ave_qmagnetics.jdx"));
  const auto at = text.find(",20000.5  ,0");
  ASSERT_NE(at, std::string::npos);
  text.replace(at, 12, ",20000.5  ,1.5");
  test::Write_Text(dir / "moved.jdx", text);
  Quiet_Session moved;
  Open_Processed(moved, (dir / "moved.jdx").string());
  EXPECT_NEAR(Value_At(moved.s, s.Spec_Axis[methyl] + 1.5), s.Spec_Re(methyl), 0.02 * s.Spec_Re(methyl));
}

}  // namespace
}  // namespace tevo::datafiles
