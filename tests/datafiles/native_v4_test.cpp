// The version-4 format, read only: files built byte by byte with a main
// set, an overlay, page sections, a section that runs past the end, and the
// 2D refusal.
#include <gtest/gtest.h>

#include <string>

#include "datafiles/decoders.h"
#include "datafiles/native.h"
#include "native_sample.h"
#include "session/settings.h"
#include "support/test_support.h"

namespace tevo {
namespace {

using datafiles::Put_LE_Float32;
using datafiles::Put_LE_Float64;
using datafiles::Put_LE_Int16;
using datafiles::Put_LE_Int32;

void Put_Text(std::vector<uint8_t>& f, size_t at, const std::string& t) {
  std::copy(t.begin(), t.end(), f.begin() + static_cast<std::ptrdiff_t>(at));
}

// One data set at `set`: title, own directory at 32, a parameter subsection
// (fields at the version-4 positions), the data, and three peaks.
void Put_Set(std::vector<uint8_t>& f, size_t set, int32_t points, float frequ, float scale) {
  Put_Text(f, set, "1D NORM NORM");
  const size_t par = set + 256, data = par + 2576, peaks = data + 16 + 8 * static_cast<size_t>(points) + 16;
  Put_LE_Int32(f, set + 32, static_cast<int32_t>(par));
  Put_LE_Int32(f, set + 36, 2576);
  Put_LE_Int32(f, set + 40, static_cast<int32_t>(data));
  Put_LE_Int32(f, set + 44, 16 + 8 * points);
  Put_LE_Int32(f, set + 64, static_cast<int32_t>(peaks));
  Put_LE_Int32(f, set + 68, 40 + 24 * 2);
  Put_Text(f, par + 16 + 64, "V4 TEST");  // instrument, text field moved by 16
  Put_Text(f, par + 128 + 816, "13C");  // OBNUC
  Put_LE_Int32(f, par + 128 + 916, points);  // POINT
  Put_LE_Float32(f, par + 128 + 920, frequ);  // FREQU
  // The reference shift stands twice; the later field is the one taken.
  Put_LE_Float32(f, par + 128 + 932, 77.0f);
  Put_LE_Float32(f, par + 128 + 1152, 77.0f);
  Put_LE_Float64(f, par + 128 + 976, 100.6);  // observe frequency
  Put_LE_Float64(f, par + 128 + 984, 100.5);  // frequency of 0 ppm
  Put_LE_Int32(f, par + 656, 123456);  // RGAIN as int32
  Put_LE_Float32(f, par + 1552 + 4, 9.5f);  // P list, second entry
  Put_LE_Float32(f, par + 128 + 1104, 50.0f);  // Max_Abs
  for (int32_t i = 0; i < points; ++i) Put_LE_Float32(f, data + 16 + 4 * static_cast<size_t>(i), scale * static_cast<float>(i));
  Put_LE_Int32(f, peaks + 16, 2);
  Put_LE_Int32(f, peaks + 20, 2);
  Put_LE_Float32(f, peaks + 24, 0.4f);
  Put_LE_Float32(f, peaks + 40, 3.5f * frequ / static_cast<float>(points));  // at point 3.5
  Put_LE_Int16(f, peaks + 52, 7);
  Put_LE_Float32(f, peaks + 64, 9.0f * frequ / static_cast<float>(points));
}

std::vector<uint8_t> Build_V4(const std::string& banner, bool with_overlay) {
  std::vector<uint8_t> f(20000, 0);
  Put_Text(f, 0, banner);
  Put_LE_Int32(f, 512, 0);
  Put_LE_Int32(f, 516, 1);
  Put_LE_Int32(f, 520, 1024);  // main set
  Put_LE_Int32(f, 524, 100);  // stored size, replaced by the distance
  Put_Set(f, 1024, 16, 1600.0f, 1.0f);
  if (with_overlay) {
    Put_LE_Int32(f, 528, 4096);
    Put_LE_Int32(f, 532, 3000);
    Put_Set(f, 4096, 16, 1600.0f, -2.0f);
  }
  // Lines: one record from offset 16 of the section.
  Put_LE_Int32(f, 768, 8192);
  Put_LE_Int32(f, 772, 16 + 4 + 32);
  Put_LE_Int32(f, 8192 + 16, 1);
  Put_LE_Float32(f, 8192 + 20, 0.25f);
  Put_LE_Int32(f, 8192 + 20 + 16, 0x00FF00);
  Put_LE_Int16(f, 8192 + 20 + 24, -3);  // a negative arrow style reads as 1
  // Text notes: the pair runs past the end of the file.
  Put_LE_Int32(f, 776, 19000);
  Put_LE_Int32(f, 780, 5000);
  // Relaxation page, where the version puts it.
  const size_t relax_pair = banner == "TV NMR Ver.4.01" ? 712 : 720;
  Put_LE_Int32(f, relax_pair, 9000);
  Put_LE_Int32(f, relax_pair + 4, 16 + 100);
  Put_LE_Float32(f, 9000 + 16 + 0, -5.0f);  // CAL CIRCLE RADII
  Put_LE_Float32(f, 9000 + 16 + 52, 0.0f);  // CAL PREVIEW MAG
  return f;
}

TEST(NativeV4, BuiltFilesReadWithOverlaysAndFallbacks) {
  for (const std::string banner : {"TV NMR Ver.4.01", "TV NMR Ver.4.00"}) {
    test::Temp_Dir dir;
    const std::string path = (dir / "set.tvo").string();
    test::Write_Bytes(path, Build_V4(banner, true));
    const datafiles::Kind_Check k = datafiles::Check_Native_V4(path);
    EXPECT_EQ(k.status, 0);
    EXPECT_EQ(k.kind, "1D:V4");

    platform::Scripted_Ui ui;
    Session s;
    test::Quiet_Session(s, ui);
    s.Lines.push_back({});
    s.Texts.push_back({});
    ASSERT_EQ(datafiles::Read1D_DataTevoV4_2(s, path), 0) << banner;
    EXPECT_TRUE(ui.shown.empty());
    EXPECT_EQ(s.Spec_Points, 16);
    EXPECT_EQ(s.Param.Instrument_Name, "V4 TEST");
    EXPECT_EQ(s.Param.OBNUC, "13C");
    EXPECT_EQ(s.Param.RGAIN, 123456);
    EXPECT_EQ(s.Param.P_List[1], 9.5f);
    EXPECT_FLOAT_EQ(s.Param.RESOL, 100.0f);
    EXPECT_EQ(s.Spectrum_Frequency, 100.5);
    EXPECT_EQ(s.Spec_Re(5), 5.0f);
    // Axis: (i - SMTMS) x FREQU / SF / POINT + reference, SMTMS 0.
    EXPECT_NEAR(s.Spec_Axis[8], 77.0 + 8 * 1600.0 / 100.5 / 16, 1e-4);
    ASSERT_EQ(s.Peaks.size(), 2u);
    EXPECT_EQ(s.Peaks[0].Point, 3);
    EXPECT_EQ(s.Peaks[0].Height, 7);
    EXPECT_EQ(s.Peaks[1].Point, 9);
    EXPECT_FLOAT_EQ(s.Peak_Level, 0.4f);
    // The overlay set went to slot 1.
    const Overlay_Slot& o = s.Overlay[1];
    EXPECT_EQ(o.Slot_Points, 16);
    EXPECT_EQ(o.Slot_Y[4], -8.0f);
    EXPECT_EQ(o.Slot_Show, 1);
    EXPECT_NEAR(o.Slot_X[8], s.Spec_Axis[8], 1e-6);
    // Lines read; the notes' pair leaves the file, so they alone are lost.
    ASSERT_EQ(s.Lines.size(), 1u);
    EXPECT_EQ(s.Lines[0].X1, 0.25f);
    EXPECT_EQ(s.Lines[0].Colour, 0x00FF00);
    EXPECT_EQ(s.Lines[0].Kind, 1);
    EXPECT_EQ(s.Texts.size(), 1u);  // untouched
    if (session::Setting_Index("CAL CIRCLE RADII") >= 0) {
      EXPECT_EQ(s.settings.Real("CAL CIRCLE RADII"), 0.0);
    }
    if (session::Setting_Index("CAL PREVIEW MAG") >= 0) {
      EXPECT_EQ(s.settings.Real("CAL PREVIEW MAG"), 1.0);
    }
    ASSERT_EQ(s.Native.Relax_Page.size(), 100u);

    // A session with overlays is asked; No keeps them and skips the file's.
    Session keep;
    platform::Scripted_Ui ui_k;
    test::Quiet_Session(keep, ui_k);
    keep.Overlay[1].Slot_Points = 4;
    keep.Overlay[1].Slot_Y = {1, 2, 3, 4};
    ui_k.button_answers.push_back(2);
    ASSERT_EQ(datafiles::Read1D_DataTevoV4_2(keep, path), 0);
    ASSERT_EQ(ui_k.shown.size(), 1u);
    EXPECT_EQ(ui_k.shown[0].text, "重ね書きデータに上書きしますか。");
    EXPECT_EQ(ui_k.shown[0].title, "重ね書き,上書き確認");
    EXPECT_EQ(keep.Overlay[1].Slot_Points, 4);

    // The overlay mode that keeps the slots skips them without asking.
    Session held;
    platform::Scripted_Ui ui_h;
    test::Quiet_Session(held, ui_h);
    held.Overlay_Read_Mode = 3;
    ASSERT_EQ(datafiles::Read1D_DataTevoV4_2(held, path), 0);
    EXPECT_TRUE(ui_h.shown.empty());
    EXPECT_EQ(held.Overlay[1].Slot_Points, 0);
    EXPECT_EQ(held.Spec_Points, 16);
  }
}

TEST(NativeV4, TwoDimensionalKindsBrokenSetsAndBanner) {
  test::Temp_Dir dir;
  const std::string path = (dir / "two.tvo").string();
  std::vector<uint8_t> f = Build_V4("TV NMR Ver.4.01", false);
  Put_LE_Int32(f, 516, 257);
  Put_LE_Int32(f, 512, 1024);
  Put_Text(f, 1024 + 16, "2D HOMO PH RR");
  test::Write_Bytes(path, f);
  EXPECT_EQ(datafiles::Check_Native_V4(path).kind, "VPH_HOMO:");
  Put_Text(f, 1024 + 16, "2D HETE AB RR");
  test::Write_Bytes(path, f);
  EXPECT_EQ(datafiles::Check_Native_V4(path).kind, "V_HETERO:");

  platform::Scripted_Ui ui;
  Session s;
  test::Quiet_Session(s, ui);
  EXPECT_EQ(datafiles::Read1D_DataTevoV4_2(s, path), 1);
  ASSERT_EQ(ui.shown.size(), 1u);
  EXPECT_EQ(ui.shown[0].text, "Dataが違います(2D)");
  EXPECT_EQ(ui.shown[0].title, "Dataエラー(RDR V4 in DRW　1D)");

  f = Build_V4("TV NMR Ver.4.01", false);
  Put_Text(f, 1024, "XX");  // the main set's title is wrong
  test::Write_Bytes(path, f);
  Session b;
  platform::Scripted_Ui ui_b;
  test::Quiet_Session(b, ui_b);
  EXPECT_EQ(datafiles::Read1D_DataTevoV4_2(b, path), 1);
  ASSERT_EQ(ui_b.shown.size(), 1u);
  EXPECT_EQ(ui_b.shown[0].text, "Dataが壊れています");

  // A row count that the data subsection cannot hold is a broken set.
  f = Build_V4("TV NMR Ver.4.01", false);
  Put_LE_Int32(f, 1024 + 256 + 128 + 1108, 100000);
  test::Write_Bytes(path, f);
  Session rows;
  platform::Scripted_Ui ui_r;
  test::Quiet_Session(rows, ui_r);
  EXPECT_EQ(datafiles::Read1D_DataTevoV4_2(rows, path), 1);
  EXPECT_EQ(ui_r.shown.at(0).text, "Dataが壊れています");

  f = Build_V4("TV NMR Ver.3.99", false);
  test::Write_Bytes(path, f);
  EXPECT_EQ(datafiles::Check_Native_V4(path).status, 1);
  Session w;
  platform::Scripted_Ui ui_w;
  test::Quiet_Session(w, ui_w);
  EXPECT_EQ(datafiles::Read1D_DataTevoV4_2(w, path), 1);
  EXPECT_EQ(ui_w.shown.at(0).text, "Dataが違います");
}

}  // namespace
}  // namespace tevo
