// A file read into an overlay slot is the main read of it: the same points,
// axis and parameters, a FID transformed as the processing window does by
// default; "CENT" lays the carriers together.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "datafiles/open_file.h"
#include "overlay/slot_read.h"
#include "platform/ui.h"
#include "session/session.h"
#include "signal/fid_processing.h"
#include "support/test_support.h"
#include "support/vendor_files.h"

namespace tevo::overlay {
namespace {

namespace fs = std::filesystem;

struct Slot_Read : ::testing::Test {
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s;
  Slot_Read() {
    ui.quiet = true;
    s.ui = &ui;
    s.App_Path = dir.path().string();
    s.Log_Mode = -1;
  }
  int Open(const fs::path& path) { return datafiles::NM1D_m11_Click(s, {path.string(), {}}); }
};

// The slot against the spectrum of the session that read the same file.
void Expect_Same(const Overlay_Slot& o, const Session& main) {
  ASSERT_EQ(o.Slot_Points, main.Spec_Points);
  ASSERT_EQ(o.Slot_X.size(), static_cast<size_t>(main.Spec_Points));
  for (size_t i = 0; i < o.Slot_X.size(); ++i) {
    ASSERT_EQ(o.Slot_X[i], main.Spec_Axis[i]) << i;
    ASSERT_EQ(o.Slot_Y[i], main.Spec_Re(i)) << i;
    ASSERT_EQ(o.Slot_Y_Im[i], main.Spec_Im(i)) << i;
  }
  EXPECT_EQ(o.Slot_Max_Abs, main.Max_Abs);
  EXPECT_EQ(o.Slot_Observe_Frequency, main.Observe_Frequency);
  EXPECT_EQ(o.Slot_Spectrum_Frequency, main.Spectrum_Frequency);
  EXPECT_EQ(o.Slot_Param.OBNUC, main.Param.OBNUC);
  EXPECT_EQ(o.Slot_Param.EXMOD, main.Param.EXMOD);
  EXPECT_EQ(o.Slot_Param.RESOL, main.Param.RESOL);
  EXPECT_EQ(o.Slot_Param.SMTMS, main.Param.SMTMS);
  EXPECT_EQ(o.Slot_Param.SMEXR, main.Param.SMEXR);
  EXPECT_EQ(o.Slot_Show, 1);
  EXPECT_FLOAT_EQ(o.Slot_Y_Mag, 0.95f);
}

TEST_F(Slot_Read, ASlotReadIsTheMainReadOfTheFile) {
  test::Vendor_Spec spectrum;
  spectrum.spectrum = true;
  const auto data = test::Build_Varian(dir / "vdata", spectrum);
  test::Vendor_Spec fid;
  fid.observe_mhz = 404.0;  // 1 % off 400.13
  const auto ex = test::Build_Ex(dir / "ex", fid, false);

  // The main reads, one at a time, copied aside.
  ASSERT_EQ(Open(data.Open()), 0);
  Session spectrum_main = std::move(s);
  s = Session();
  s.ui = &ui;
  s.App_Path = dir.path().string();
  s.Log_Mode = -1;
  ASSERT_EQ(Open(ex.Open()), 0);
  signal::Process_Report report;
  ASSERT_EQ(signal::Process_Fid(s, {}, report), 0);
  Session fid_main = std::move(s);

  // A new session holding the MAC spectrum as the main one.
  s = Session();
  s.ui = &ui;
  s.App_Path = dir.path().string();
  s.Log_Mode = -1;
  ASSERT_EQ(Open(test::Build_Mac(dir / "mac", spectrum).Open()), 0);
  const std::vector<float> main_axis = s.Spec_Axis;

  ASSERT_EQ(Read_Overlay_Slot(s, 1, data.Open().string(), Slot_Align::Chem), 0);
  Expect_Same(s.Overlay[1], spectrum_main);
  EXPECT_EQ(s.Overlay[1].Slot_File, data.Open().string());
  ASSERT_EQ(Read_Overlay_Slot(s, 2, ex.Open().string(), Slot_Align::Chem), 0);
  Expect_Same(s.Overlay[2], fid_main);
  EXPECT_EQ(s.Overlay[2].Slot_Comment, "built gx file");
  EXPECT_EQ(s.Spec_Axis, main_axis);  // the main spectrum untouched

  // "CENT": the carrier of the slot falls on the main one, Hz per point the
  // file's (a field 2 % off: the overlay set's tests).
  ASSERT_EQ(Read_Overlay_Slot(s, 3, data.Open().string(), Slot_Align::Cent), 0);
  const Overlay_Slot& c = s.Overlay[3];
  const double main_carrier = (s.Observe_Frequency / s.Spectrum_Frequency - 1) * 1e6;
  EXPECT_NEAR(c.Slot_X[512], main_carrier, 1e-4);
  EXPECT_NEAR((c.Slot_X[513] - c.Slot_X[512]) * s.Spectrum_Frequency, 8000.0 / 1024, 1e-3);
  // A refused file leaves the slot as it was.
  test::Write_Text(dir / "none.xyz", "no spectrum\n");
  EXPECT_EQ(Read_Overlay_Slot(s, 1, (dir / "none.xyz").string(), Slot_Align::Chem), 1);
  Expect_Same(s.Overlay[1], spectrum_main);
}

}  // namespace
}  // namespace tevo::overlay
