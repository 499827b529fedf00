// The open command and its read frame, start-up resolution and the save of
// the native file, on files built in the test.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "datafiles/decoders.h"
#include "datafiles/native.h"
#include "editing/data_history.h"
#include "datafiles/open_file.h"
#include "datafiles/open_routes.h"
#include "datafiles/recognition.h"
#include "platform/ui.h"
#include "relaxation/array_data.h"
#include "session/session.h"
#include "support/test_support.h"

namespace tevo::datafiles {
namespace {

namespace fs = std::filesystem;
using test::Read_Text;
using test::Temp_Dir;
using test::Write_Bytes;
using test::Write_Text;

// A small spectrum: 8 points of a ramp, with a comment to recognise it by.
void Fill_Spectrum(Session& s, const std::string& comment, float scale) {
  s.Array_Rows = 1;
  Alloc_Point_Arrays(s, 8);
  s.Spec_Points = 8;
  s.Param.POINT = 8;
  s.Param.SMODE = 1;
  s.Param.COMNT = comment;
  s.Param.FREQU = 4000;
  s.Observe_Frequency = 399.78;
  s.Spectrum_Frequency = 399.78;
  for (int i = 0; i < 8; ++i) {
    s.Spec_Re(static_cast<size_t>(i)) = scale * static_cast<float>(i);
    s.Spec_Axis[static_cast<size_t>(i)] = static_cast<float>(i);
  }
  s.Is_Spectrum = 1;
}

struct Open_Fixture : ::testing::Test {
  Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s;
  Open_Fixture() {
    ui.quiet = true;
    s.ui = &ui;
    s.App_Path = dir.path().string();
    s.Log_Mode = -1;
  }
  // A marker of another running copy that holds `path` open.
  void Other_Copy_Has(const std::string& path) { Write_Text(dir / "Work_File_1D0007.wkf", path + "\r\n"); }
};

// Readers that stand in for a format: one fails half way, one succeeds.
int Failing_Reader(Session& s, const std::string&) {
  Fill_Spectrum(s, "half read", 99.0f);
  return -1;
}
int Good_Reader(Session& s, const std::string& path) {
  Fill_Spectrum(s, "new " + fs::path(path).filename().string(), 2.0f);
  return 0;
}
Kind_Check Check_2D(const std::string&) { return {"2D NORM", 0}; }
Kind_Check Check_Empty_Kind(const std::string&) { return {"", 0}; }

Open_Route Test_Route(Read_Fn read, Check_Fn check = nullptr, bool empty_kind = false) {
  return {".TST", false, false, check, Refuse_2D::First_2, read, empty_kind, "T1", 0, "T2", 2};
}

Recognition Test_File(const Temp_Dir& dir) {
  Write_Bytes(dir / "data.tst", std::vector<uint8_t>(400, 0));
  Recognition r;
  r.path = (dir / "data.tst").string();
  r.file_class = ".TST";
  return r;
}

using Read_Frame = Open_Fixture;

TEST_F(Read_Frame, FailedReadBringsTheFormerDataBack) {
  Fill_Spectrum(s, "former", 1.0f);
  s.Open_Name = "/data/former.tv1";
  s.Peaks.push_back({3, 0, 0, 1550.0f});  // 3 x 500 Hz per point, plus a part
  const auto r = Test_File(dir);
  EXPECT_EQ(Read_Routed(s, r, Test_Route(Failing_Reader)), -1);
  EXPECT_EQ(s.Param.COMNT, "former");
  EXPECT_EQ(s.Spec_Points, 8);
  EXPECT_FLOAT_EQ(s.Spec_Re(5), 5.0f);
  ASSERT_EQ(s.Peaks.size(), 1u);
  EXPECT_EQ(s.Peaks[0].Point, 3);
  EXPECT_EQ(s.Open_Name, "/data/former.tv1");
  EXPECT_EQ(s.App_Path, dir.path().string());

  // A native file damaged at several places: the read fails, never crashes,
  // and the former data stay.
  Session other;
  other.ui = &ui;
  other.Log_Mode = -1;
  Fill_Spectrum(other, "other", 3.0f);
  const auto good = dir / "other.tv1";
  ASSERT_EQ(Write_Native(other, good.string()), 0);
  const auto bytes = test::Read_Bytes(good);
  auto open_damaged = [&](const fs::path& damaged) {
    const std::size_t shown = ui.shown.size();
    EXPECT_NE(NM1D_m11_Click(s, {damaged.string(), {}}), 0) << damaged;
    EXPECT_GT(ui.shown.size(), shown) << damaged;  // always a message
    EXPECT_EQ(s.Param.COMNT, "former") << damaged;
    EXPECT_EQ(s.Spec_Points, 8) << damaged;
    EXPECT_FLOAT_EQ(s.Spec_Re(7), 7.0f) << damaged;
  };
  for (size_t cut : {size_t{20}, size_t{300}, bytes.size() / 2, bytes.size() - 3}) {
    const auto damaged = dir / ("cut" + std::to_string(cut) + ".tv1");
    Write_Bytes(damaged, std::vector<uint8_t>(bytes.begin(), bytes.begin() + static_cast<long>(cut)));
    open_damaged(damaged);
  }
  // Directory entries that point outside the file: the data section's
  // offset far past the end, and its length running past the end.
  for (int field : {24, 28}) {
    std::vector<uint8_t> bad = bytes;
    Put_LE_Int32(bad, static_cast<size_t>(32 + field), 0x7FFFFF00);
    const auto damaged = dir / ("outside" + std::to_string(field) + ".tv1");
    Write_Bytes(damaged, bad);
    open_damaged(damaged);
  }
  // The whole file opens.
  EXPECT_EQ(NM1D_m11_Click(s, {good.string(), {}}), 0);
  EXPECT_EQ(s.Param.COMNT, "other");
  EXPECT_FLOAT_EQ(s.Spec_Re(7), 21.0f);
  EXPECT_EQ(s.Open_Name, good.string());
  EXPECT_EQ(s.Param.Observe_Text, "399.80");
  ASSERT_FALSE(s.settings.Recent_Files.empty());
  EXPECT_EQ(s.settings.Recent_Files[0], good.string());
}

TEST_F(Read_Frame, RefusalsChangeNothing) {
  Fill_Spectrum(s, "former", 1.0f);
  const auto r = Test_File(dir);
  // 2D data.
  EXPECT_EQ(Read_Routed(s, r, Test_Route(Good_Reader, Check_2D)), 1);
  ASSERT_EQ(ui.shown.size(), 1u);
  EXPECT_EQ(ui.shown[0].text, "2D Data !");
  EXPECT_EQ(ui.shown[0].title, "Dataエラー");
  // No reader for the class yet.
  EXPECT_EQ(Read_Routed(s, r, Test_Route(nullptr)), 1);
  EXPECT_EQ(ui.shown.back().text, "Dataが違います");
  // Open by another copy.
  Other_Copy_Has(r.path);
  Open_Route in_use = Test_Route(Good_Reader);
  in_use.in_use_test = true;
  EXPECT_EQ(Read_Routed(s, r, in_use), 1);
  EXPECT_EQ(ui.shown.back().text, "このファイルは、他のアプリケーションで使用中です");
  EXPECT_EQ(ui.shown.back().title, "File Warning");
  EXPECT_EQ(s.Param.COMNT, "former");

  // Unsaved data: cancel in the prompt ends the open before the dialog.
  s.Data_Saved = 0;
  ui.button_answers = {3};
  EXPECT_EQ(NM1D_m11_Click(s, {r.path, {}}), 1);
  EXPECT_EQ(ui.shown.back().title, "注意！");
  EXPECT_EQ(ui.shown.back().buttons, (std::vector<std::string>{"保存する", "保存しない", "キャンセル"}));
  EXPECT_EQ(s.Param.COMNT, "former");

  // An unknown file: the retry question; retry brings the dialog back,
  // whose cancel ends the open.
  Write_Bytes(dir / "x.abc", std::vector<uint8_t>(400, 'x'));
  s.Data_Saved = 1;
  ui.button_answers = {1};
  ui.file_answers = {std::nullopt};
  EXPECT_EQ(NM1D_m11_Click(s, {(dir / "x.abc").string(), {}}), 1);
  EXPECT_EQ(ui.shown.back().title, "ファイル名エラー");
  EXPECT_EQ(ui.shown.back().text, "ﾌｧｲﾙが不正です。または,\rﾌｧｲﾙの拡張子が 正しくない");
  EXPECT_TRUE(ui.file_answers.empty());
  EXPECT_EQ(s.Param.COMNT, "former");
}

TEST_F(Read_Frame, OverlaysAskedOnceAndKeptOnRequest) {
  Fill_Spectrum(s, "former", 1.0f);
  s.Overlay[1].Slot_Points = 4;
  s.Overlay[1].Slot_Y = {1, 2, 3, 4};
  const auto r = Test_File(dir);
  ui.choice_answers = {1};  // keep
  EXPECT_EQ(Read_Routed(s, r, Test_Route(Good_Reader)), 0);
  EXPECT_EQ(s.Overlay[1].Slot_Points, 4);
  EXPECT_EQ(s.Param.COMNT, "new data.tst");
  EXPECT_EQ(s.Open_Name, r.path);
  ui.choice_answers = {0};  // delete
  EXPECT_EQ(Read_Routed(s, r, Test_Route(Good_Reader)), 0);
  EXPECT_EQ(s.Overlay[1].Slot_Points, 0);
  // Nothing held: nothing asked.
  ui.choice_answers = {-1};
  EXPECT_EQ(Read_Routed(s, r, Test_Route(Good_Reader)), 0);
  EXPECT_EQ(ui.choice_answers.size(), 1u);

  // A file of the class with no NMR content: refused after the read, the
  // former data come back.
  EXPECT_EQ(Read_Routed(s, r, Test_Route(Good_Reader, Check_Empty_Kind, true)), 1);
  EXPECT_EQ(ui.shown.back().text, "Non NMR Data !");
  EXPECT_EQ(s.Param.COMNT, "new data.tst");
}

TEST_F(Open_Fixture, IndividualFilesBecomeOneArrayInTheirOrder) {
  // Three one-row spectra, each saved with the delay it was measured at.
  const std::vector<float> delays{2.0f, 0.1f, 0.5f};
  std::vector<std::string> paths;
  for (int k = 0; k < 3; ++k) {
    Session one;
    one.ui = &ui;
    one.Log_Mode = -1;
    Fill_Spectrum(one, "row " + std::to_string(k), k + 1.0f);
    one.Delay_Linear = 1;
    one.Delay_Start = delays[static_cast<size_t>(k)];
    paths.push_back((dir / ("r" + std::to_string(k) + ".tv1")).string());
    ASSERT_EQ(Write_Native(one, paths.back()), 0);
  }
  const std::string joined = relaxation::Join_Individual_Paths(paths);
  EXPECT_EQ(joined, dir.path().string() + "|r0.tv1|r1.tv1|r2.tv1");
  EXPECT_EQ(relaxation::Split_Individual_Paths(joined), paths);
  // A file of another folder keeps its whole path.
  EXPECT_EQ(relaxation::Split_Individual_Paths(relaxation::Join_Individual_Paths({paths[0], "/elsewhere/x.tv1"})),
            (std::vector<std::string>{paths[0], "/elsewhere/x.tv1"}));

  const auto expect_set = [&] {
    ASSERT_EQ(s.Array_Rows, 3);
    EXPECT_EQ(s.Delay_List, delays);
    EXPECT_EQ(s.Delay_Linear, 0);
    for (size_t r = 0; r < 3; ++r) EXPECT_FLOAT_EQ(s.Spec_Re(7, r), 7.0f * static_cast<float>(r + 1)) << r;
  };
  ASSERT_EQ(NM1D_m111_Click(s, {joined, {}}), 0);
  expect_set();
  EXPECT_EQ(s.Open_Name, paths[0]);
  EXPECT_EQ(s.settings.Recent_Files.front(), joined);  // reopened from the list in the window's test

  // A file of other points does not join: the set in memory stays.
  Session odd;
  odd.ui = &ui;
  Fill_Spectrum(odd, "odd", 1.0f);
  Alloc_Point_Arrays(odd, 16);
  odd.Spec_Points = odd.Param.POINT = 16;
  ASSERT_EQ(Write_Native(odd, (dir / "odd.tv1").string()), 0);
  s.Data_Saved = 1;
  EXPECT_EQ(NM1D_m111_Click(s, {dir.path().string() + "|r0.tv1|odd.tv1", {}}), 1);
  EXPECT_EQ(ui.shown.back().text, "Dataが違います");
  expect_set();
}

TEST(Reset_Session_Data, ClearsTheDataKeepsTheProgram) {
  Session s;
  s.App_Path = "/app";
  s.Work_Lock_Fd = 42;
  s.Instr_Tab.resize(2);
  s.settings.Recent_Files = {"/a.tv1"};
  s.Nuclei = {{"1H", "", 1.0}};
  Fill_Spectrum(s, "data", 1.0f);
  s.Peaks.push_back({1, 0, 0, 500.0f});
  s.Integrals.push_back({});
  s.Data_Saved = 0;
  s.Overlay[1].Slot_Points = 3;
  Reset_Session_Data(s, true);
  EXPECT_EQ(s.Overlay[1].Slot_Points, 3);
  Reset_Session_Data(s, false);
  EXPECT_EQ(s.Overlay[1].Slot_Points, 0);
  EXPECT_EQ(s.App_Path, "/app");
  EXPECT_EQ(s.Work_Lock_Fd, 42);
  EXPECT_EQ(s.Instr_Tab.size(), 2u);
  EXPECT_EQ(s.settings.Recent_Files.size(), 1u);
  EXPECT_EQ(s.Nuclei.size(), 1u);
  EXPECT_TRUE(s.Peaks.empty());
  EXPECT_TRUE(s.Integrals.empty());
  EXPECT_EQ(s.Spec_Points, 0);
  EXPECT_EQ(s.Param.COMNT, "");
  EXPECT_EQ(s.Data_Saved, 1);
}

TEST(Observe_Text, RoundsToFiftyKilohertz) {
  EXPECT_EQ(Observe_Text(399.78), "399.80");
  EXPECT_EQ(Observe_Text(100.6123), "100.60");
  EXPECT_EQ(Observe_Text(500.1249), "500.10");
  EXPECT_EQ(Observe_Text(500.125), "500.15");
  EXPECT_EQ(Observe_Text(0), "0.00");
}

TEST_F(Open_Fixture, ResolveTellsOneFromTwoDimensions) {
  auto native = [&](const std::string& name, const std::string& kind) {
    std::vector<uint8_t> b(600, 0);
    const std::string banner = "TV NMR Ver.3.00";
    std::copy(banner.begin(), banner.end(), b.begin());
    std::copy(kind.begin(), kind.end(), b.begin() + 16);
    Write_Bytes(dir / name, b);
    return (dir / name).string();
  };
  std::string p = native("one.tv1", "1D NORM NORM");
  auto res = Resolve_Data_File(s, p);
  EXPECT_EQ(res.tag, "TEVO1");
  EXPECT_EQ(res.status, 0);
  p = native("two.xyz", "2D NORM NORM");
  res = Resolve_Data_File(s, p);
  EXPECT_EQ(res.tag, "TEVO2");
  EXPECT_EQ(res.status, 2);

  // A folder marker resolves to the data file it points at.
  fs::create_directories(dir / "raw");
  Write_Bytes(dir / "raw/fid", std::vector<uint8_t>(1000, 0));
  Write_Text(dir / "raw/Spec.BRUF", "BRUKER\r\n");
  p = (dir / "raw/Spec.BRUF").string();
  Resolve_Data_File(s, p);
  EXPECT_EQ(fs::path(p).filename(), "fid");
  EXPECT_EQ(s.File_Class, ".BRUF");

  // Unreadable: -1 and no tag.
  p = (dir / "missing.tv1").string();
  res = Resolve_Data_File(s, p);
  EXPECT_EQ(res.status, -1);
  EXPECT_EQ(res.tag, "");
}

TEST(Routes, ClassesAndNamesFindTheirRow) {
  auto route_of = [](const std::string& cls, const std::string& base = "X") {
    Recognition r;
    r.file_class = cls;
    r.base_name = base;
    return Find_Route(r);
  };
  ASSERT_NE(route_of(".TV1"), nullptr);
  EXPECT_EQ(route_of(".TV1")->read, &Read_Native);
  EXPECT_EQ(route_of(".TVO2")->read, &Read1D_DataTevoV4_2);
  EXPECT_EQ(route_of(".ALS")->read, &Read_Older_Native);
  EXPECT_EQ(route_of(".TV2"), route_of(".TV1"));
  EXPECT_EQ(route_of(".TVO"), route_of(".TVO1"));
  EXPECT_TRUE(route_of(".GXP")->twin);
  EXPECT_EQ(route_of("", "FID"), route_of(".BRUF"));
  EXPECT_EQ(route_of("", "PHASEFILE"), route_of(".CMX"));
  EXPECT_EQ(route_of(".ABC"), nullptr);

  // The 2D rules of the rows.
  const Open_Route* tv1 = route_of(".TV1");
  EXPECT_TRUE(Is_2D(*tv1, {"2D NORM", 0}));
  EXPECT_FALSE(Is_2D(*tv1, {"1D NORM", 0}));
  EXPECT_TRUE(Is_2D(*route_of(".ALS"), {"V_", 0}));
  EXPECT_TRUE(Is_2D(*route_of(".ECP"), {"", 2}));
  EXPECT_FALSE(Check_Failed(*route_of(".ECP"), {"", 1}));
  EXPECT_TRUE(Is_2D(*route_of(".LAM"), {"x 2D", 0}));
}

// Writers that stand in for the native writer: one checks that the former
// file is out of the way while it writes, one fails after a partial write.
int Writer_Seeing_Old(Session&, const std::string& path) {
  if (!fs::exists(path + ".$") || fs::exists(path)) return -1;
  Write_Text(path, "NEW");
  return 0;
}
int Partial_Writer(Session&, const std::string& path) {
  Write_Text(path, "PART");
  return -1;
}
int Plain_Writer(Session&, const std::string& path) {
  Write_Text(path, "X");
  return 0;
}

using Save = Open_Fixture;

TEST_F(Save, OldFileSurvivesAFailedWrite) {
  Fill_Spectrum(s, "data", 1.0f);
  const auto path = (dir / "keep.tv1").string();
  Write_Text(path, "OLD");
  s.Data_Saved = 0;
  EXPECT_EQ(m10_Click(s, path, Partial_Writer), -1);
  EXPECT_EQ(Read_Text(path), "OLD");
  EXPECT_FALSE(fs::exists(path + ".$"));
  EXPECT_EQ(s.Data_Saved, 0);
  EXPECT_TRUE(s.Save_By.empty());  // a save that did not happen is not in the history

  EXPECT_EQ(m10_Click(s, path, Writer_Seeing_Old), 0);
  EXPECT_EQ(Read_Text(path), "NEW");
  EXPECT_FALSE(fs::exists(path + ".$"));
  EXPECT_EQ(s.Data_Saved, 1);
  EXPECT_EQ(s.Param.EXMOD, "NON");
  EXPECT_EQ(s.Open_Name, path);

  // Another extension and a file open elsewhere are refused.
  EXPECT_EQ(m10_Click(s, (dir / "x.als").string(), Plain_Writer), 1);
  EXPECT_EQ(ui.shown.back().text, "ファイルが不正です。または,\rファイルの拡張子が tv1 でない");
  EXPECT_FALSE(fs::exists(dir / "x.als"));
  Other_Copy_Has((dir / "busy.tv1").string());
  EXPECT_EQ(m10_Click(s, (dir / "busy.tv1").string(), Plain_Writer), 1);
  EXPECT_EQ(ui.shown.back().text, "このファイル名は、他のアプリケーションで使用中です");

  // The dialog offers the name with ".tv1"; a wrong name is asked again.
  s.Open_Name = "/data/sample.als";
  ui.file_answers = {platform::File_Answer{(dir / "a.txt").string(), 1},
                     platform::File_Answer{(dir / "a.tv1").string(), 1}};
  ui.button_answers = {1};  // Yes: choose again
  EXPECT_EQ(m10_Click(s, {}, Plain_Writer), 0);
  EXPECT_TRUE(fs::exists(dir / "a.tv1"));
}

TEST_F(Save, HistoryGrowsWithEachSaveAndTravelsInTheFile) {
  Fill_Spectrum(s, "data", 1.0f);
  s.User_Name = "山田";
  s.Param.DATIM = "2021/03/04 05:06:07";
  s.Measured_By = "NMR_mess";
  s.Measured_Name = "/data/orig/1/fid";
  const auto path = (dir / "hist.tv1").string();
  ASSERT_EQ(m10_Click(s, path), 0);
  ASSERT_EQ(m10_Click(s, path), 0);
  const editing::List_Table table = editing::Data_History_Table(s);
  ASSERT_EQ(table.rows.size(), 3u);  // never transformed here: no "FFT" row
  EXPECT_EQ(table.rows[0], (std::vector<std::string>{"Measured", "NMR_mess", "2021-03-04  05:06:07"}));
  for (size_t k : {1u, 2u}) {
    EXPECT_EQ(table.rows[k][0], "Saved ");
    EXPECT_EQ(table.rows[k][1], "山田");
    const std::string& d = table.rows[k][2];
    ASSERT_EQ(d.size(), 20u) << d;
    EXPECT_TRUE(d[4] == '-' && d[7] == '-' && d.substr(10, 2) == "  " && d[14] == ':' && d[17] == ':') << d;
  }

  // Opening the file gives its history back, and replaces the one in memory.
  auto reopen = [&](const std::vector<uint8_t>& bytes) {
    Write_Bytes(dir / "copy.tv1", bytes);
    Session t;
    t.ui = &ui;
    t.App_Path = s.App_Path;
    t.Log_Mode = -1;
    t.Save_By = {"left over"};
    t.Save_Date = {"2000-01-01  00:00:00"};
    EXPECT_EQ(NM1D_m11_Click(t, {(dir / "copy.tv1").string(), {}}), 0);
    return t;
  };
  std::vector<uint8_t> bytes = test::Read_Bytes(path);
  const Session back = reopen(bytes);
  EXPECT_EQ(editing::Data_History_Table(back).rows, table.rows);
  EXPECT_EQ(back.Measured_Name, "/data/orig/1/fid");

  // A file written before the history had a place (directory entry 192
  // empty) has none and was measured under its own name; so does one whose
  // section is too short for the count it states.
  const size_t entry = 32 + 192;
  const int32_t off = Decode_LE_Int32(bytes, entry);
  ASSERT_GT(off, 0);
  for (const auto& [field, value] : {std::pair{entry + 4, 0}, std::pair{static_cast<size_t>(off), 3},
                                     std::pair{static_cast<size_t>(off), 1 << 30}, std::pair{static_cast<size_t>(off), -1}}) {
    std::vector<uint8_t> changed = bytes;
    Put_LE_Int32(changed, field, value);
    const Session older = reopen(changed);
    EXPECT_TRUE(older.Save_By.empty()) << value;
    EXPECT_EQ(older.Measured_Name, (dir / "copy.tv1").string());
    EXPECT_EQ(editing::Data_History_Table(older).rows[0][1], "Unknown");
  }

  // A measurement date at 1960-01-01, which stands for unknown, is shown empty.
  Session unknown;
  unknown.Param.DATIM = "1960/01/01 00:00:00";
  EXPECT_EQ(editing::Measured_Date(unknown), "");
}

TEST_F(Save, RecentListMovesTopAndHoldsTwenty) {
  Fill_Spectrum(s, "data", 1.0f);
  for (int k = 0; k < 21; ++k) m10_Click(s, (dir / ("f" + std::to_string(k) + ".tv1")).string(), Plain_Writer);
  auto& list = s.settings.Recent_Files;
  ASSERT_EQ(list.size(), 20u);
  EXPECT_EQ(fs::path(list.front()).filename(), "f20.tv1");
  EXPECT_EQ(fs::path(list.back()).filename(), "f1.tv1");  // f0 pushed out
  // The same name in other case moves to the top, no second entry.
  m10_Click(s, (dir / "F5.TV1").string(), Plain_Writer);
  EXPECT_EQ(list.size(), 20u);
  EXPECT_EQ(fs::path(list.front()).filename(), "F5.TV1");
  EXPECT_EQ(std::count_if(list.begin(), list.end(),
                          [](const std::string& p) { return fs::path(p).filename() == "f5.tv1"; }),
            0);
}

}  // namespace
}  // namespace tevo::datafiles
