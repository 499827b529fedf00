// The main native format: a full round trip, byte stability of a second
// write, the head and directory as laid down, and the refusals.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "datafiles/decoders.h"
#include "datafiles/native.h"
#include "datafiles/open_file.h"
#include "native_sample.h"
#include "session/settings.h"
#include "support/test_support.h"

namespace tevo {
namespace {

using datafiles::Decode_LE_Int32;
using test::Read_Bytes;
using test::Write_Bytes;

void Expect_Same_Session(const Session& a, const Session& b) {
  EXPECT_EQ(a.Param, b.Param);
  EXPECT_EQ(a.Array_Rows, b.Array_Rows);
  EXPECT_EQ(a.Spec_Points, b.Spec_Points);
  for (int r = 0; r < a.Array_Rows; ++r)
    for (int i = 0; i < a.Spec_Points; ++i) {
      ASSERT_EQ(a.Spec_Re(i, r), b.Spec_Re(i, r)) << i << "," << r;
      ASSERT_EQ(a.Spec_Im(i, r), b.Spec_Im(i, r)) << i << "," << r;
    }
  EXPECT_EQ(a.Observe_Frequency, b.Observe_Frequency);
  EXPECT_EQ(a.Spectrum_Frequency, b.Spectrum_Frequency);
  EXPECT_EQ(a.Max_Abs, b.Max_Abs);
  EXPECT_EQ(a.Y_Mag, b.Y_Mag);
  EXPECT_EQ(a.Y_Offset, b.Y_Offset);
  EXPECT_EQ(a.Fid_Scale, b.Fid_Scale);
  EXPECT_EQ(a.X_Left, b.X_Left);
  EXPECT_EQ(a.X_Right, b.X_Right);
  EXPECT_EQ(a.Peaks, b.Peaks);
  EXPECT_EQ(a.Peak_Level, b.Peak_Level);
  EXPECT_EQ(a.Noise_Level, b.Noise_Level);
  EXPECT_EQ(a.Base_Level, b.Base_Level);
  EXPECT_EQ(a.Integrals, b.Integrals);
  EXPECT_EQ(a.Integ_Cur, b.Integ_Cur);
  EXPECT_EQ(a.Integ_Ref, b.Integ_Ref);
  EXPECT_EQ(a.Integ_Scale, b.Integ_Scale);
  EXPECT_EQ(a.Integ_Disp_Mode, b.Integ_Disp_Mode);
  EXPECT_EQ(a.Insets, b.Insets);
  EXPECT_EQ(a.Texts, b.Texts);
  EXPECT_EQ(a.Lines, b.Lines);
  EXPECT_EQ(a.Images, b.Images);
  EXPECT_EQ(a.Structure, b.Structure);
  EXPECT_EQ(a.Overlay_Shift, b.Overlay_Shift);
  for (size_t n = 0; n < a.Overlay.size(); ++n) EXPECT_EQ(a.Overlay[n], b.Overlay[n]) << "slot " << n;
  EXPECT_EQ(a.Delay_Name, b.Delay_Name);
  EXPECT_EQ(a.Delay_Unit, b.Delay_Unit);
  EXPECT_EQ(a.Delay_Linear, b.Delay_Linear);
  EXPECT_EQ(a.Delay_Start, b.Delay_Start);
  EXPECT_EQ(a.Delay_Step, b.Delay_Step);
  EXPECT_EQ(a.Delay_List, b.Delay_List);
  EXPECT_EQ(a.Delay_Raw, b.Delay_Raw);
  EXPECT_EQ(a.Array_Row_Names, b.Array_Row_Names);
  EXPECT_EQ(a.Array_Sources, b.Array_Sources);
  // The carried blocks come back with their spare bytes; keyed fields hold
  // the settings as written.
  const std::pair<const std::vector<uint8_t>*, const std::vector<uint8_t>*> blocks[] = {
      {&a.Native.Param, &b.Native.Param}, {&a.Native.Page, &b.Native.Page},
      {&a.Native.Deconv_Page, &b.Native.Deconv_Page}, {&a.Native.Relax_Page, &b.Native.Relax_Page},
      {&a.Native.List_Page, &b.Native.List_Page}, {&a.Native.Markers, &b.Native.Markers}};
  for (const auto& [x, y] : blocks) EXPECT_EQ(x->size(), y->size());
  EXPECT_EQ(b.Native.Param[256], 0x11);
  EXPECT_EQ(b.Native.Param[160], 'F');
  EXPECT_EQ(b.Native.Param[304], 2);
  EXPECT_EQ(b.Native.Page[62], 9);
  EXPECT_EQ(b.Native.Page[528], 'A');
  EXPECT_EQ(b.Native.Deconv_Page[1028], 0x42);
  EXPECT_EQ(b.Native.Relax_Page[60], 3);
  EXPECT_EQ(b.Native.List_Page[272], 'L');
  EXPECT_EQ(a.Native.Markers, b.Native.Markers);
}

TEST(NativeMain, RoundTripKeepsEveryListAndRewritesTheSameBytes) {
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s;
  test::Quiet_Session(s, ui);
  test::Fill_Sample_Session(s);
  s.Data_Saved = 0;
  const bool extend_known = session::Setting_Index("DISP EXTEND MODE") >= 0;
  if (extend_known) s.settings.Set("DISP EXTEND MODE", 1.0);
  s.DEPT_Mode = 1;
  s.DEPT_CH3_90 = 1.25f;
  s.DEPT_CH_MUL = -0.5f;
  s.DEPT_CH2_135 = 0.75f;

  const std::string first = (dir / "first.tv1").string();
  ASSERT_EQ(datafiles::Write_Native(s, first), 0);
  EXPECT_EQ(s.Data_Saved, 1);

  Session back;
  platform::Scripted_Ui ui2;
  test::Quiet_Session(back, ui2);
  ASSERT_EQ(datafiles::Read_Native(back, first), 0);
  EXPECT_TRUE(ui2.shown.empty());
  Expect_Same_Session(s, back);
  EXPECT_EQ(back.Param.SMODE, 1);
  EXPECT_EQ(back.Is_Spectrum, 1);
  if (extend_known) {
    EXPECT_EQ(back.settings.Int("DISP EXTEND MODE"), 1);
  }
  // The DEPT display and coefficients come back from the page block, where
  // the flag is the int16 at 360 and CH3 90 and the multiplier the floats at
  // 368 and 376; a coefficient left alone keeps its default.
  EXPECT_EQ(back.DEPT_Mode, 1);
  EXPECT_EQ(back.DEPT_CH3_90, 1.25f);
  EXPECT_EQ(back.DEPT_CH_MUL, -0.5f);
  EXPECT_EQ(back.DEPT_CH2_135, 0.75f);
  EXPECT_EQ(back.DEPT_CH2_45, 1.0f);
  EXPECT_EQ(back.Native.Page[360], 1);
  EXPECT_EQ(datafiles::Decode_LE_Float32(back.Native.Page, 368), 1.25f);
  EXPECT_EQ(datafiles::Decode_LE_Float32(back.Native.Page, 376), -0.5f);
  // The transform copy gets the data too, and the axis is rebuilt from the
  // reference: point SMTMS sits at SMEXR, FREQU / SF ppm across POINT points.
  EXPECT_EQ(back.Ft_Re(500, 1), s.Spec_Re(500, 1));
  const double per_point = 4000.0 / 399.78009876 / 1024;
  EXPECT_NEAR(back.Spec_Axis[100], 7.26, 1e-5);
  EXPECT_NEAR(back.Spec_Axis[612], 7.26 + 512 * per_point, 1e-4);

  // Written again from what was read: the same bytes but the save path.
  const std::string second = (dir / "second.tv1").string();
  ASSERT_EQ(datafiles::Write_Native(back, second), 0);
  std::vector<uint8_t> a = Read_Bytes(first), b = Read_Bytes(second);
  ASSERT_EQ(a.size(), b.size());
  std::fill(a.begin() + 800, a.begin() + 1056, 0);
  std::fill(b.begin() + 800, b.begin() + 1056, 0);
  EXPECT_TRUE(a == b);
}

TEST(NativeMain, HeadDirectoryAndSectionsAreLaidDownAsTheFormatSays) {
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s;
  test::Quiet_Session(s, ui);
  test::Fill_Sample_Session(s);
  const std::string path = (dir / "laid.tv1").string();
  ASSERT_EQ(datafiles::Write_Native(s, path), 0);
  const std::vector<uint8_t> f = Read_Bytes(path);

  EXPECT_EQ(std::string(reinterpret_cast<const char*>(f.data()), 15), "TV NMR Ver.3.00");
  EXPECT_EQ(f[15], 0);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(f.data() + 16), 15), "1D NORM NORM   ");
  auto entry = [&](size_t e) { return std::pair{Decode_LE_Int32(f, 32 + e), Decode_LE_Int32(f, 36 + e)}; };
  EXPECT_EQ(entry(0), (std::pair{544, 256}));
  EXPECT_EQ(entry(8), (std::pair{800, 256}));
  EXPECT_EQ(entry(16), (std::pair{1056, 2560}));
  EXPECT_EQ(entry(24), (std::pair{3616, 1024 * 8 * 2}));
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(f.data() + 800), path.size()), path);

  // Every section starts on a 16-byte boundary, and the sections follow in
  // the writer's order with at least 16 zero bytes between them.
  const size_t order[] = {32, 184, 56, 136, 48, 144, 64, 96, 152, 72, 40, 80, 88, 104, 112, 120, 128, 160, 176, 168, 192};
  size_t last_end = 3616 + 1024 * 16;
  for (size_t e : order) {
    const auto [off, size] = entry(e);
    ASSERT_GT(off, 0) << "entry " << e;
    EXPECT_EQ(off % 16, 0) << "entry " << e;
    EXPECT_GE(static_cast<size_t>(off), (last_end / 16 + 1) * 16) << "entry " << e;
    for (size_t k = last_end; k < static_cast<size_t>(off); ++k) ASSERT_EQ(f[k], 0) << "entry " << e;
    last_end = static_cast<size_t>(off) + (e == 160 ? 320 : static_cast<size_t>(size));
  }
  EXPECT_EQ(entry(160).second, 160);  // the marker list says 160 for its 320 bytes

  // Comment 1 is the first line, Shift-JIS, 4 zero bytes behind it.
  const auto [c_off, c_size] = entry(32);
  const std::string sjis_name = "\x83\x47\x83\x60\x83\x8B\x83\x78\x83\x93\x83\x5B\x83\x93";
  EXPECT_EQ(c_size, static_cast<int32_t>(sjis_name.size() + 4));
  EXPECT_EQ(std::memcmp(f.data() + c_off, sjis_name.data(), sjis_name.size()), 0);
  // Peaks are written in layout 2 with the frequency first.
  const auto [p_off, p_size] = entry(48);
  EXPECT_EQ(Decode_LE_Int32(f, p_off), 3);
  EXPECT_EQ(Decode_LE_Int32(f, p_off + 4), 2);
  EXPECT_EQ(p_size, 24 + 3 * 20);
  EXPECT_FLOAT_EQ(datafiles::Decode_LE_Float32(f, p_off + 24), 100 * 3.90625f + 1);
  // The SMODE word is the constant 1.
  EXPECT_EQ(Decode_LE_Int32(f, 1056 + 912), 1);
}

TEST(NativeMain, EdgeValuesOfTheParameterSectionAndEmptyLists) {
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s;
  test::Quiet_Session(s, ui);
  s.Param.POINT = 8;
  s.Param.FREQU = 80;
  s.Param.RGAIN = 40000;  // does not fit in 15 bits
  s.Param.Pulse90 = 150;  // outside 0 .. 100
  Alloc_Point_Arrays(s, 8);
  s.Spec_Points = 8;
  const std::string path = (dir / "edge.tv1").string();
  ASSERT_EQ(datafiles::Write_Native(s, path), 0);
  const std::vector<uint8_t> f = Read_Bytes(path);
  EXPECT_EQ(datafiles::Decode_LE_Int16(f, 1056 + 528), -1);
  EXPECT_FLOAT_EQ(datafiles::Decode_LE_Float32(f, 1056 + 896), 10.6f);
  // No comment: size 0. No integrals: all zero but -1 for the current one.
  EXPECT_EQ(Decode_LE_Int32(f, 32 + 36), 0);
  const int32_t integ = Decode_LE_Int32(f, 32 + 56);
  EXPECT_EQ(Decode_LE_Int32(f, integ), 0);
  EXPECT_EQ(Decode_LE_Int32(f, integ + 8), -1);
  // One row: no array section, no name table, no pictures.
  EXPECT_EQ(Decode_LE_Int32(f, 32 + 128), 0);
  EXPECT_EQ(Decode_LE_Int32(f, 32 + 168), 0);
  EXPECT_EQ(Decode_LE_Int32(f, 32 + 104), 0);

  Session back;
  platform::Scripted_Ui ui2;
  test::Quiet_Session(back, ui2);
  ASSERT_EQ(datafiles::Read_Native(back, path), 0);
  EXPECT_EQ(back.Param.COMNT, "");
  EXPECT_EQ(back.Param.RGAIN, 65535);  // the int16 -1 read back as 4 bytes
  EXPECT_FLOAT_EQ(back.Param.RESOL, 10.0f);
  EXPECT_TRUE(back.Integrals.empty());
  EXPECT_EQ(back.Integ_Cur, -1);
  EXPECT_TRUE(back.Texts.empty());
  EXPECT_TRUE(back.Lines.empty());
}

TEST(NativeMain, PeaksFollowTheirFrequencyWhenThePointCountChanges) {
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s;
  test::Quiet_Session(s, ui);
  test::Fill_Sample_Session(s);
  const std::string path = (dir / "peaks.tv1").string();
  ASSERT_EQ(datafiles::Write_Native(s, path), 0);
  std::vector<uint8_t> f = Read_Bytes(path);
  // Twice the points over the same width, one row and no data section: the
  // parameters stand alone and the peaks keep their frequencies.
  datafiles::Put_LE_Int32(f, 1056 + 916, 2048);
  datafiles::Put_LE_Int32(f, 1056 + 1108, 1);
  datafiles::Put_LE_Int32(f, 32 + 28, 0);
  Write_Bytes(path, f);
  Session back;
  platform::Scripted_Ui ui2;
  test::Quiet_Session(back, ui2);
  ASSERT_EQ(datafiles::Read_Native(back, path), 0);
  ASSERT_EQ(back.Peaks.size(), 3u);
  EXPECT_FLOAT_EQ(back.Param.RESOL, 4000.0f / 2048);
  EXPECT_EQ(back.Peaks[0].Point, 200);  // 391.625 Hz at 1.953125 Hz per point
  EXPECT_EQ(back.Peaks[0].Freq_Hz, s.Peaks[0].Freq_Hz);
}

TEST(NativeMain, PointLimitsBannerAndDamage) {
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s;
  test::Quiet_Session(s, ui);
  s.Param.POINT = Fft_Table_Size_Max;
  s.Param.FREQU = 10000;
  Alloc_Point_Arrays(s, s.Param.POINT);
  s.Spec_Points = s.Param.POINT;
  s.Spec_Re(Fft_Table_Size_Max - 1) = 42.5f;
  const std::string path = (dir / "big.tv1").string();
  ASSERT_EQ(datafiles::Write_Native(s, path), 0);

  Session big;
  platform::Scripted_Ui ui_big;
  test::Quiet_Session(big, ui_big);
  ASSERT_EQ(datafiles::Read_Native(big, path), 0);
  EXPECT_EQ(big.Spec_Points, Fft_Table_Size_Max);
  EXPECT_EQ(big.Spec_Re(Fft_Table_Size_Max - 1), 42.5f);

  std::vector<uint8_t> f = Read_Bytes(path);
  for (int32_t bad : {Fft_Table_Size_Max + 1, 0}) {
    datafiles::Put_LE_Int32(f, 1056 + 916, bad);
    const std::string p2 = (dir / "toobig.tv1").string();
    Write_Bytes(p2, f);
    Session t;
    platform::Scripted_Ui ui_t;
    test::Quiet_Session(t, ui_t);
    EXPECT_EQ(datafiles::Read_Native(t, p2), 1);
    ASSERT_EQ(ui_t.shown.size(), 1u);
    EXPECT_EQ(ui_t.shown[0].text, "Dataが大きすぎます(または、正しくない)");
    EXPECT_EQ(ui_t.shown[0].title, "Dataエラー");
    EXPECT_EQ(t.Param.FREQU, 0);  // stopped before any field was taken
  }

  f = Read_Bytes(path);
  f[7] = 'X';
  const std::string p3 = (dir / "banner.tv1").string();
  Write_Bytes(p3, f);
  Session w;
  platform::Scripted_Ui ui_w;
  test::Quiet_Session(w, ui_w);
  EXPECT_EQ(datafiles::Read_Native(w, p3), 1);
  ASSERT_EQ(ui_w.shown.size(), 1u);
  EXPECT_EQ(ui_w.shown[0].text, "Dataが違います");
  EXPECT_EQ(datafiles::Check_Native(p3).status, 1);
  const datafiles::Kind_Check k = datafiles::Check_Native(path);
  EXPECT_EQ(k.status, 0);
  EXPECT_EQ(k.kind.substr(0, 2), "1D");

  // Cut short at several places: never a crash, always a message.
  f = Read_Bytes(path);
  for (size_t cut : {size_t{20}, size_t{600}, size_t{2000}, size_t{5000}, f.size() - 10}) {
    std::vector<uint8_t> part(f.begin(), f.begin() + static_cast<std::ptrdiff_t>(cut));
    const std::string p4 = (dir / "cut.tv1").string();
    Write_Bytes(p4, part);
    Session c;
    platform::Scripted_Ui ui_c;
    test::Quiet_Session(c, ui_c);
    EXPECT_NE(datafiles::Read_Native(c, p4), 0) << cut;
    EXPECT_FALSE(ui_c.shown.empty()) << cut;
  }
  // A directory entry pointing outside the file.
  f = Read_Bytes(path);
  datafiles::Put_LE_Int32(f, 32 + 48, 0x7FFFFF00);
  const std::string p5 = (dir / "outside.tv1").string();
  Write_Bytes(p5, f);
  Session o;
  platform::Scripted_Ui ui_o;
  test::Quiet_Session(o, ui_o);
  EXPECT_EQ(datafiles::Read_Native(o, p5), -1);
}

TEST(NativeMain, DataBlocksTheFileCannotHoldAreRefusedBeforeTheArraysGrow) {
  // Every damage here is found from the head alone: the message of a damaged
  // file, and no point array sized by the row and point counts it claims
  // (3000 rows of 524288 points would be 38 GB).
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s;
  test::Quiet_Session(s, ui);
  test::Fill_Sample_Session(s);
  const std::string tv1 = (dir / "good.tv1").string(), als = (dir / "good.als").string();
  ASSERT_EQ(datafiles::Write_Native(s, tv1), 0);
  ASSERT_EQ(datafiles::Write_Older_Native(s, als), 0);
  const std::vector<uint8_t> main = Read_Bytes(tv1), older = Read_Bytes(als);
  const int32_t main_size = static_cast<int32_t>(main.size()), older_size = static_cast<int32_t>(older.size());
  constexpr size_t Rows = 1056 + 1108, Points = 1056 + 916, Data = 32 + 24;  // main format
  constexpr size_t Older_Data = 146 + 176 + 8, Older_Rows = 787 + 176;  // version 1.01
  struct Damage {
    const char* label;
    bool older;
    std::vector<std::pair<size_t, int32_t>> int32s;
    int16_t older_rows = 0;
  };
  const std::vector<Damage> damages = {
      {"3000 rows, no data section", false, {{Rows, 3000}, {Points, Fft_Table_Size_Max}, {Data + 4, 0}}},
      {"3000 rows behind the data offset", false, {{Rows, 3000}, {Points, Fft_Table_Size_Max}}},
      {"negative data offset", false, {{Data, -16}}},
      {"data offset behind the end", false, {{Data, main_size + 16}}},
      {"older: negative data offset", true, {{Older_Data, -64}}},
      {"older: data offset behind the end", true, {{Older_Data, older_size}}},
      {"older: rows the file cannot hold", true, {}, 30000},
  };
  for (const Damage& d : damages) {
    SCOPED_TRACE(d.label);
    std::vector<uint8_t> f = d.older ? older : main;
    for (const auto& [at, v] : d.int32s) datafiles::Put_LE_Int32(f, at, v);
    if (d.older_rows) datafiles::Put_LE_Int16(f, Older_Rows, d.older_rows);
    const std::string path = (dir / (d.older ? "bad.als" : "bad.tv1")).string();
    Write_Bytes(path, f);
    Session t;
    platform::Scripted_Ui ui_t;
    test::Quiet_Session(t, ui_t);
    EXPECT_EQ(d.older ? datafiles::Read_Older_Native(t, path) : datafiles::Read_Native(t, path), 1);
    ASSERT_EQ(ui_t.shown.size(), 1u);
    EXPECT_EQ(ui_t.shown[0].text, "Dataが壊れています");
    EXPECT_EQ(ui_t.shown[0].title, "Dataエラー");
    EXPECT_EQ(t.Point_Capacity, 0);
  }

  // Found by fuzzing: a file whose read fails late, opened with no data set
  // before it, left its 160 rows and the display settings it carries behind,
  // and the display copy was sized from them (84 MB for a 19 kB file).
  const char* source = std::getenv("TEVO_SOURCE_DIR");
  ASSERT_NE(source, nullptr);
  Session e;
  platform::Scripted_Ui ui_e;
  test::Quiet_Session(e, ui_e);
  const session::Settings before = e.settings;
  const std::string found = std::string(source) + "/tests/fuzz/corpus/native_tv1/failed_read_left_160_rows";
  const std::string copy = (dir / "failed.tv1").string();
  Write_Bytes(copy, Read_Bytes(found));
  EXPECT_NE(datafiles::NM1D_m11_Click(e, {copy, {}}), 0);
  EXPECT_EQ(e.Spec_Points, 0);
  EXPECT_EQ(e.Array_Rows, 1);
  EXPECT_TRUE(e.Disp_Y.Empty());
  EXPECT_EQ(e.settings.Int("DISPLAY MIN"), before.Int("DISPLAY MIN"));
}

}  // namespace
}  // namespace tevo
