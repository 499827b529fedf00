// The older interchange format: a 1.01 round trip through the writer, and a
// 1.00 file built byte by byte.
#include <gtest/gtest.h>

#include <filesystem>

#include "datafiles/decoders.h"
#include "datafiles/native.h"
#include "datafiles/open_file.h"
#include "native_sample.h"
#include "session/settings.h"
#include "support/test_support.h"

namespace tevo {
namespace {

TEST(NativeOlder, Version101RoundTripKeepsDataAndParameters) {
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s;
  test::Quiet_Session(s, ui);
  test::Fill_Sample_Session(s);
  s.Param.COMNT = "エチルベンゼン";
  // A second overlay with a falling axis: 12, 11.5, ... 10 ppm.
  Overlay_Slot& five = s.Overlay[5];
  five.Slot_Points = 5;
  five.Slot_X = {12.0f, 11.5f, 11.0f, 10.5f, 10.0f};
  five.Slot_Y = {1, -2, 3, -4, 5};
  five.Slot_Colour = 0x0000FF;
  const std::string path = (dir / "sample.ALS").string();
  ASSERT_EQ(datafiles::Write_Older_Native(s, path), 0);

  const std::vector<uint8_t> f = test::Read_Bytes(path);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(f.data() + 258), 20), "VEX NMR VERSION 1.01");
  EXPECT_EQ(f[0], 0);
  const datafiles::Kind_Check k = datafiles::Check_Older_Native(path);
  EXPECT_EQ(k.status, 0);
  EXPECT_EQ(k.kind.substr(0, 2), "1D");

  Session b;
  platform::Scripted_Ui ui2;
  test::Quiet_Session(b, ui2);
  ASSERT_EQ(datafiles::Read_Older_Native(b, path), 0);
  EXPECT_TRUE(ui2.shown.empty());
  const Data_Param &p = s.Param, &q = b.Param;
  EXPECT_EQ(q.COMNT, p.COMNT);
  EXPECT_EQ(q.POINT, 1024);
  EXPECT_EQ(q.FREQU, p.FREQU);
  EXPECT_EQ(q.RESOL, p.RESOL);
  EXPECT_EQ(q.SMTMS, p.SMTMS);
  EXPECT_EQ(q.SMEXR, p.SMEXR);
  EXPECT_EQ(q.OBNUC, p.OBNUC);
  EXPECT_EQ(q.SLVNT, p.SLVNT);
  EXPECT_EQ(q.EXMOD, p.EXMOD);
  EXPECT_EQ(q.OBFRQ, p.OBFRQ);
  EXPECT_EQ(q.PW, p.PW);
  EXPECT_EQ(q.PI, p.PI);
  EXPECT_EQ(q.PS, p.PS);
  EXPECT_EQ(q.LOOP, p.LOOP);
  EXPECT_EQ(q.SCANS, p.SCANS);
  EXPECT_EQ(q.ACQTM, p.ACQTM);
  EXPECT_EQ(q.PD, p.PD);
  EXPECT_EQ(q.Pulse90, p.Pulse90);
  EXPECT_EQ(b.Observe_Frequency, s.Observe_Frequency);
  EXPECT_EQ(b.Spectrum_Frequency, s.Spectrum_Frequency);
  EXPECT_EQ(b.Max_Abs, s.Max_Abs);
  EXPECT_EQ(b.Array_Rows, 2);
  for (int r = 0; r < 2; ++r)
    for (int i = 0; i < 1024; i += 7) {
      ASSERT_EQ(b.Spec_Re(i, r), s.Spec_Re(i, r));
      ASSERT_EQ(b.Spec_Im(i, r), s.Spec_Im(i, r));
    }
  EXPECT_EQ(b.Delay_Name, "VD");
  EXPECT_EQ(b.Delay_List, s.Delay_List);
  EXPECT_EQ(b.Peaks, s.Peaks);
  EXPECT_EQ(b.Integrals, s.Integrals);
  EXPECT_EQ(b.X_Left, s.X_Left);
  EXPECT_EQ(b.Insets, s.Insets);
  EXPECT_EQ(b.Texts, s.Texts);

  // Overlays: the pair at 434 leads to the table; slot 2's record holds
  // 16 points and the ppm step of 1/128, slot 5 a step of -0.5.
  const int32_t table = datafiles::Decode_LE_Int32(f, 434);
  ASSERT_GT(table, 0);
  EXPECT_EQ(table % 16, 0);
  EXPECT_EQ(datafiles::Decode_LE_Float32(f, static_cast<size_t>(table)), 0.25f);
  const int32_t rec2 = datafiles::Decode_LE_Int32(f, static_cast<size_t>(table) + 4 + 8);
  ASSERT_GT(rec2, table);
  EXPECT_EQ(datafiles::Decode_LE_Int32(f, static_cast<size_t>(rec2) + 8), 16);
  EXPECT_EQ(datafiles::Decode_LE_Float64(f, static_cast<size_t>(rec2) + 12), 1.0 / 128);
  EXPECT_EQ(datafiles::Decode_LE_Int32(f, static_cast<size_t>(table) + 4 + 4), 0);  // slot 1 empty
  EXPECT_EQ(b.Overlay_Shift, 0.25f);
  const Overlay_Slot& o = b.Overlay[2];
  ASSERT_EQ(o.Slot_Points, 16);
  ASSERT_EQ(o.Slot_X.size(), 16u);
  for (int i = 0; i < 16; ++i) {
    EXPECT_EQ(o.Slot_X[static_cast<size_t>(i)], -1.0f + static_cast<float>(i) / 128.0f) << i;
    EXPECT_EQ(o.Slot_Y[static_cast<size_t>(i)], static_cast<float>(i * i)) << i;
  }
  EXPECT_EQ(o.Slot_Y_Mag, 1.25f);
  EXPECT_EQ(o.Slot_Y_Offset, 0.2f);
  EXPECT_EQ(o.Slot_Colour, 0xFF00FF);
  EXPECT_EQ(o.Slot_Show, 1);
  EXPECT_EQ(o.Slot_File, "/data/other.tv1");
  EXPECT_EQ(o.Slot_Comment, "重ね書き");
  const Overlay_Slot& o5 = b.Overlay[5];
  EXPECT_EQ(o5.Slot_X, (std::vector<float>{12.0f, 11.5f, 11.0f, 10.5f, 10.0f}));
  EXPECT_EQ(o5.Slot_Y, (std::vector<float>{1, -2, 3, -4, 5}));
  EXPECT_EQ(o5.Slot_Colour, 0x0000FF);
  EXPECT_EQ(o5.Slot_File, "No File Name");
  for (int n : {1, 3, 4, 6}) EXPECT_EQ(b.Overlay[static_cast<size_t>(n)].Slot_Points, 0) << n;

  // The overlay mode that keeps the slots leaves them as they were.
  Session kept;
  platform::Scripted_Ui ui_k;
  test::Quiet_Session(kept, ui_k);
  kept.Overlay_Read_Mode = 3;
  kept.Overlay[2].Slot_Points = 3;
  ASSERT_EQ(datafiles::Read_Older_Native(kept, path), 0);
  EXPECT_EQ(kept.Overlay[2].Slot_Points, 3);
  EXPECT_EQ(kept.Overlay[5].Slot_Points, 0);
  EXPECT_EQ(kept.Overlay_Shift, 0.0f);

  // A slot whose point count is out of range and one whose record lies
  // past the end of the file are dropped; the rest of the file still reads.
  std::vector<uint8_t> ov = f;
  datafiles::Put_LE_Int32(ov, static_cast<size_t>(rec2) + 8, Fft_Table_Size_Max + 1);
  datafiles::Put_LE_Int32(ov, static_cast<size_t>(table) + 4 + 4 * 5, static_cast<int32_t>(ov.size()));
  test::Write_Bytes(path, ov);
  Session ovb;
  platform::Scripted_Ui ui_o;
  test::Quiet_Session(ovb, ui_o);
  ASSERT_EQ(datafiles::Read_Older_Native(ovb, path), 0);
  EXPECT_TRUE(ui_o.shown.empty());
  EXPECT_EQ(ovb.Overlay[2].Slot_Points, 0);
  EXPECT_EQ(ovb.Overlay[5].Slot_Points, 0);
  EXPECT_EQ(ovb.Peaks, s.Peaks);

  // Cuts through the head, the parameters and the data each fail with a
  // status and never crash (data blocks that don't fit: the main format's test).
  std::vector<std::vector<uint8_t>> damaged;
  for (size_t cut : {size_t{300}, size_t{600}, size_t{1400}, size_t{1568 + 8000}})
    damaged.emplace_back(f.begin(), f.begin() + static_cast<std::ptrdiff_t>(cut));
  for (size_t k = 0; k < damaged.size(); ++k) {
    test::Write_Bytes(path, damaged[k]);
    Session d;
    platform::Scripted_Ui ui_d;
    test::Quiet_Session(d, ui_d);
    EXPECT_NE(datafiles::Read_Older_Native(d, path), 0) << k;
    EXPECT_EQ(ui_d.shown.size(), 1u) << k;
  }
}

// A version-1.00 file: banner at 82, directory at 146, parameter block at
// 336, eight points of data behind it.
std::vector<uint8_t> Build_Version_100(int32_t points) {
  std::vector<uint8_t> f(336 + 1040 + 64, 0);
  const std::string banner = "VEX NMR VERSION 1.00";
  std::copy(banner.begin(), banner.end(), f.begin() + 82);
  const std::string comment = "old file";
  std::copy(comment.begin(), comment.end(), f.begin() + 2);
  datafiles::Put_LE_Int32(f, 146, 336);
  datafiles::Put_LE_Int32(f, 150, 1040);
  datafiles::Put_LE_Int32(f, 154, 1376);
  datafiles::Put_LE_Int32(f, 158, 64);
  datafiles::Put_LE_Int16(f, 787, 1);
  datafiles::Put_LE_Int32(f, 336 + 874, points);
  datafiles::Put_LE_Float32(f, 336 + 886, 800.0f);  // FREQU
  datafiles::Put_LE_Float32(f, 336 + 902, 2.5f);  // SMEXR
  datafiles::Put_LE_Float32(f, 336 + 522, 100.25f);  // OBFRQ
  for (int i = 0; i < 8; ++i) {
    datafiles::Put_LE_Float32(f, 1376 + 4 * i, static_cast<float>(i * i));
    datafiles::Put_LE_Float32(f, 1376 + 32 + 4 * i, static_cast<float>(-i));
  }
  return f;
}

TEST(NativeOlder, Version100BuiltByHandReadsWithPageDefaults) {
  test::Temp_Dir dir;
  const std::string path = (dir / "old.als").string();
  test::Write_Bytes(path, Build_Version_100(8));
  platform::Scripted_Ui ui;
  Session s;
  test::Quiet_Session(s, ui);
  const bool known = session::Setting_Index("DISP EXTEND MODE") >= 0;
  double def = 0;
  if (known) {
    for (const auto& d : session::Setting_Keys())
      if (std::string(d.key) == "DISP EXTEND MODE") def = d.def_num;
    s.settings.Set("DISP EXTEND MODE", def == 0 ? 1.0 : 0.0);
  }
  s.Native.Page.assign(800, 1);
  ASSERT_EQ(datafiles::Read_Older_Native(s, path), 0);
  EXPECT_EQ(s.Param.COMNT, "old file");
  EXPECT_EQ(s.Spec_Points, 8);
  EXPECT_FLOAT_EQ(s.Param.RESOL, 100.0f);
  EXPECT_FLOAT_EQ(s.Param.OBFRQ, 100.25f);
  EXPECT_EQ(s.Spec_Re(3), 9.0f);
  EXPECT_EQ(s.Spec_Im(5), -5.0f);
  EXPECT_TRUE(s.Native.Page.empty());
  if (known) {
    EXPECT_EQ(s.settings.Real("DISP EXTEND MODE"), def);
  }

  test::Write_Bytes(path, Build_Version_100(Fft_Table_Size_Max + 1));
  Session t;
  platform::Scripted_Ui ui_t;
  test::Quiet_Session(t, ui_t);
  EXPECT_EQ(datafiles::Read_Older_Native(t, path), 1);
  ASSERT_EQ(ui_t.shown.size(), 1u);
  EXPECT_EQ(ui_t.shown[0].text, "Dataが大きすぎます(または、正しくない)");

  std::vector<uint8_t> other = Build_Version_100(8);
  other[82] = 'W';
  test::Write_Bytes(path, other);
  Session w;
  platform::Scripted_Ui ui_w;
  test::Quiet_Session(w, ui_w);
  EXPECT_EQ(datafiles::Read_Older_Native(w, path), 1);
  ASSERT_EQ(ui_w.shown.size(), 1u);
  EXPECT_EQ(ui_w.shown[0].text, "Dataが違います");
}

// The save command of the older format writes through the real writer, and
// the open command routes the file back to the older reader.
TEST(NativeOlder, SaveCommandAndOpenCommandMeet) {
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s;
  test::Quiet_Session(s, ui);
  s.App_Path = dir.path().string();
  test::Fill_Sample_Session(s);
  s.Param.COMNT = "saved by command";
  s.Open_Name = "/data/sample.tv1";

  // The dialog offers the open name with ".als"; a name with another
  // extension is refused with the older format's message, then asked again.
  ui.file_answers = {platform::File_Answer{(dir / "a.tv1").string(), 1},
                     platform::File_Answer{(dir / "a.als").string(), 1}};
  ui.button_answers = {1};  // Yes: choose again
  ASSERT_EQ(datafiles::m13_Click(s), 0);
  ASSERT_FALSE(ui.shown.empty());
  EXPECT_EQ(ui.shown[0].text, "ファイルが不正です。または,\rファイルの拡張子が als でない");
  EXPECT_FALSE(std::filesystem::exists(dir / "a.tv1"));
  const std::string path = (dir / "a.als").string();
  ASSERT_TRUE(std::filesystem::exists(path));
  EXPECT_EQ(s.Data_Saved, 1);
  EXPECT_EQ(s.Param.Data_File, path);
  const std::vector<uint8_t> f = test::Read_Bytes(path);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(f.data() + 258), 20), "VEX NMR VERSION 1.01");

  platform::Scripted_Ui ui_b;
  Session b;
  test::Quiet_Session(b, ui_b);
  b.App_Path = dir.path().string();
  ASSERT_EQ(datafiles::NM1D_m11_Click(b, {path, {}}), 0);
  EXPECT_EQ(b.Param.COMNT, "saved by command");
  EXPECT_EQ(b.Spec_Points, 1024);
  EXPECT_EQ(b.Spec_Re(500, 1), s.Spec_Re(500, 1));
  EXPECT_EQ(b.Open_Name, path);
}

}  // namespace
}  // namespace tevo
