// The whole start and end of a copy of the program in a scratch program
// folder: files made and counted, the user choice, the command line's early
// exits, and the exit command.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "page/fonts.h"
#include "platform/ui.h"
#include "session/session.h"
#include "session/settings_files.h"
#include "session/startup.h"
#include "session/user_choice.h"
#include "session/user_notes.h"
#include "support/test_support.h"

namespace fs = std::filesystem;
using namespace tevo;

namespace {

struct Copy {
  Session s;
  platform::Scripted_Ui ui;
  Copy() {
    ui.quiet = true;
    s.ui = &ui;
  }
};

session::Start_Options Options(const test::Temp_Dir& home, bool interactive) {
  session::Start_Options o;
  o.home = home.path().string();
  o.interactive = interactive;
  return o;
}

int Markers(const test::Temp_Dir& home) {
  int n = 0;
  for (const auto& e : fs::directory_iterator(home.path()))
    n += e.path().filename().string().rfind("Work_File_1D", 0) == 0;
  return n;
}

TEST(StartUp, FreshFolderThenSecondStart) {
  test::Temp_Dir home;
  test::Write_Text(home / "BackUp1_3.tv1", "old");
  test::Write_Text(home / "BackUp1_9.bak", "old");
  test::Write_Text(home / "NMRCOL.INI", "1D Initial setting\r\nREF INITITAL    ; 7.26\r\nSTART MODE      ; 1\r\n"
                                        "STRUCTURE DISP  ; 1\r\nWINDOW STATE    ; 2\r\n");
  test::Write_Text(home / "Nuclear.dat", "1H;proton;1.0\r\n");
  test::Write_Text(home / "1D.prt", "OBNUC\r\nSCANS\r\n");
  test::Write_Text(home / "ALIDIR.EXE", "");
  test::Write_Text(home / "ALIDATA.EXE", "");

  Copy a;
  const auto r = session::Start_Up(a.s, Options(home, false));
  ASSERT_TRUE(r.go_on);
  EXPECT_TRUE(r.show_environment);
  EXPECT_TRUE(r.show_structure);
  EXPECT_TRUE(r.jeol_disk_reader);
  EXPECT_EQ(r.window_state, 2);
  EXPECT_FALSE(fs::exists(home / "BackUp1_3.tv1"));
  EXPECT_FALSE(fs::exists(home / "BackUp1_9.bak"));
  EXPECT_EQ(a.s.Backup_File, (home / "BackUp1_0.tv1").string());
  EXPECT_EQ(a.s.Access_Count, 1);
  EXPECT_EQ(a.s.User_Name, "共通");
  EXPECT_EQ(a.s.Settings_Write_Name, (home / "NMRCOL.INI").string());
  EXPECT_FLOAT_EQ(a.s.Param.SMEXR, 7.26f);
  EXPECT_EQ(a.s.settings.Int("ACCESS COUNT"), 1);
  EXPECT_EQ(a.s.settings.Para_Table, "OBNUC\r\nSCANS");  // the settings had none
  ASSERT_EQ(a.s.Nuclei.size(), 1u);
  EXPECT_EQ(a.s.Work_File, (home / "Work_File_1D0000.wkf").string());
  EXPECT_TRUE(fs::exists(home / "1DCommon.ini"));
  EXPECT_EQ(a.s.Point_Capacity, 8192);

  a.s.settings.Set("DISPLAY MIN", 262144.0);
  session::Finish_Session(a.s);
  EXPECT_EQ(Markers(home), 0);

  Copy b;
  ASSERT_TRUE(session::Start_Up(b.s, Options(home, false)).go_on);
  EXPECT_EQ(b.s.Backup_File, (home / "BackUp1_1.tv1").string());
  EXPECT_EQ(b.s.Access_Count, 2);
  EXPECT_EQ(b.s.settings.Int("ACCESS COUNT"), 2);
  EXPECT_EQ(b.s.settings.Int("DISPLAY MIN"), 262144);
  EXPECT_EQ(b.s.settings.Para_Table, "OBNUC\r\nSCANS");  // now from the settings file
  // ユーザー情報 after the second start, and メモ kept beside the settings.
  EXPECT_EQ(session::User_Info_Text(b.s), "使用者 : 共通\n設定ファイル : " + (home / "NMRCOL.INI").string() +
                                              "\n起動回数 : 2\nこの設定での起動回数 : 2");
  EXPECT_EQ(session::Read_Memo(b.s), "");
  ASSERT_EQ(session::Save_Memo(b.s, "測定予約\r\n\r\n400 MHz"), 0);
  EXPECT_EQ(test::Read_Text(home / "Memo1D.txt").size(), 21u);  // Shift-JIS, CR LF: 8 + 2, 2, 7 + 2
  EXPECT_EQ(session::Read_Memo(b.s), "測定予約\r\n\r\n400 MHz");
  session::Shutdown_Cleanup(b.s);
}

// "DEFAULT FONT" names the Japanese face of the whole program once the
// settings are read; a face the system lacks, or a Latin one, leaves the
// built-in one.
TEST(StartUp, DefaultFontSettingChoosesTheJapaneseFace) {
  const page::Font_Setup saved = page::Fonts();
  auto faces = page::Named_Faces();
  faces.push_back({"IPAexMincho", page::Charset_Shift_Jis});
  page::Set_Font_Table(faces);
  for (const auto& [face, expected] : {std::pair{"IPAexMincho", "IPAexMincho"},
                                       std::pair{"NoSuchFace", "ＭＳ ゴシック"},
                                       std::pair{"Arial", "ＭＳ ゴシック"}}) {
    SCOPED_TRACE(face);
    page::Fonts().Default_Font = "ＭＳ ゴシック";
    test::Temp_Dir home;
    test::Write_Text(home / "NMRCOL.INI", std::string("1D Initial setting\r\nDEFAULT FONT    ; ") + face + "\r\n");
    Copy a;
    ASSERT_TRUE(session::Start_Up(a.s, Options(home, false)).go_on);
    EXPECT_EQ(page::Fonts().Default_Font, expected);
    session::Shutdown_Cleanup(a.s);
  }
  page::Fonts() = saved;
}

TEST(StartUp, UserChoiceNewKnownCommonAndEnd) {
  test::Temp_Dir home;
  test::Write_Text(home / "NMRCOL.INI", "1D Initial setting\r\nDISPLAY MIN     ; 262144\r\n");

  // A new name: its own file, settings from the common one, counted from 1.
  Copy a;
  a.ui.text_answers.push_back(std::string("  yamada "));
  ASSERT_TRUE(session::Start_Up(a.s, Options(home, true)).go_on);
  EXPECT_EQ(a.s.User_Name, "YAMADA");
  EXPECT_EQ(a.s.Settings_Read_Name, (home / "NMRCOL.INI").string());
  EXPECT_EQ(a.s.Settings_Write_Name, (home / "NMRCOL0001.ini").string());
  EXPECT_EQ(a.s.settings.Int("DISPLAY MIN"), 262144);
  EXPECT_EQ(a.s.settings.Int("ACCESS COUNT"), 1);
  EXPECT_EQ(session::User_Name_Of((home / "NMRCOL0001.ini").string()), "YAMADA");
  a.s.settings.Set("DISPLAY MIN", 524288.0);
  session::Finish_Session(a.s);

  // The same name in another case finds the file; the window offers the
  // latest user.
  Copy b;
  b.ui.text_answers.push_back(std::string("Yamada"));
  ASSERT_TRUE(session::Start_Up(b.s, Options(home, true)).go_on);
  EXPECT_EQ(b.s.Settings_Read_Name, (home / "NMRCOL0001.ini").string());
  EXPECT_EQ(b.s.settings.Int("DISPLAY MIN"), 524288);
  EXPECT_EQ(b.s.settings.Int("ACCESS COUNT"), 2);
  const auto users = session::List_Users(b.s);
  ASSERT_EQ(users.size(), 2u);
  EXPECT_EQ(users[0].name, "YAMADA");
  EXPECT_EQ(users[1].name, "共通");
  session::Finish_Session(b.s);

  // Without a window the latest user is taken.
  Copy c;
  ASSERT_TRUE(session::Start_Up(c.s, Options(home, false)).go_on);
  EXPECT_EQ(c.s.Settings_Write_Name, (home / "NMRCOL0001.ini").string());
  // A second new user gets the next number; "共通" goes back to the common file.
  EXPECT_TRUE(session::Choose_User(c.s, "suzuki"));
  EXPECT_EQ(c.s.Settings_Write_Name, (home / "NMRCOL0002.ini").string());
  EXPECT_TRUE(session::Choose_User(c.s, " 共通 "));
  EXPECT_EQ(c.s.Settings_Write_Name, (home / "NMRCOL.INI").string());
  session::Finish_Session(c.s);

  // "終了" ends at once and removes every marker, also one left by a crash.
  test::Write_Text(home / "Work_File_1D0007.wkf", "");
  Copy d;
  d.ui.text_answers.push_back(std::nullopt);
  EXPECT_FALSE(session::Start_Up(d.s, Options(home, true)).go_on);
  EXPECT_EQ(Markers(home), 0);

  // "USER MODE" non-zero: no question, always the common settings.
  std::string common = test::Read_Text(home / "1DCommon.ini");
  common.replace(common.find("USER MODE           0"), 21, "USER MODE           1");
  test::Write_Text(home / "1DCommon.ini", common);
  Copy e;
  e.ui.text_answers.push_back(std::string("YAMADA"));
  ASSERT_TRUE(session::Start_Up(e.s, Options(home, true)).go_on);
  EXPECT_EQ(e.s.Settings_Write_Name, (home / "NMRCOL.INI").string());
  EXPECT_EQ(e.ui.text_answers.size(), 1u);
  session::Shutdown_Cleanup(e.s);
}

TEST(StartUp, CommandLineInUseAndTwoDimensionalData) {
  test::Temp_Dir home;
  test::Write_Text(home / "Work_File_1D0005.wkf", "/data/x.tv1\r\n");

  Copy a;
  auto o = Options(home, false);
  o.command_line = "\"/DATA/X.TV1\"";
  EXPECT_FALSE(session::Start_Up(a.s, o).go_on);
  ASSERT_EQ(a.ui.shown.size(), 1u);
  EXPECT_EQ(a.ui.shown[0].title, "File Warning");
  EXPECT_EQ(a.ui.shown[0].text, "このファイルは、他のアプリケーションで使用中です");
  EXPECT_FALSE(fs::exists(home / "1DCommon.ini"));  // nothing read or written

  std::string program, arguments;
  o.data_kind = [](const std::string& p) { return p.find("2d") != std::string::npos ? 2 : 1; };
  o.start_sibling = [&](const std::string& prog, const std::string& args) {
    program = prog;
    arguments = args;
  };
  o.command_line = "/data/2d.jdf trailing";
  Copy b;
  EXPECT_FALSE(session::Start_Up(b.s, o).go_on);
  EXPECT_EQ(program, (home / "tevo2d").string());
  EXPECT_EQ(arguments, "\"$/data/2d.jdf\"");
  EXPECT_FALSE(fs::exists(home / "1DCommon.ini"));

  // Handed over by the sibling: kept here, the reader refuses it later.
  o.command_line = "$/data/2d.jdf";
  Copy c;
  const auto r = session::Start_Up(c.s, o);
  EXPECT_TRUE(r.go_on);
  EXPECT_EQ(c.s.Cmd_File, "/data/2d.jdf");
  EXPECT_TRUE(c.s.Cmd_From_Sibling);
  session::Shutdown_Cleanup(c.s);
}

TEST(StartUp, ExitCommandAsksToSaveData) {
  test::Temp_Dir home;
  Copy a;
  ASSERT_TRUE(session::Start_Up(a.s, Options(home, false)).go_on);
  a.s.Spec_Points = 1024;
  a.s.settings.Set("DISPLAY MIN", 524288.0);

  // Saved data: no question, unless "EXIT ASK UNSAVED" is 0.
  a.s.settings.Set("EXIT ASK UNSAVED", 0.0);
  a.ui.button_answers = {3};  // "終了をｷｬﾝｾﾙ"
  EXPECT_FALSE(session::m19_Click(a.s, nullptr));
  a.s.settings.Set("EXIT ASK UNSAVED", 1.0);
  a.s.Data_Saved = 0;

  a.ui.button_answers = {3};  // "終了をｷｬﾝｾﾙ"
  EXPECT_FALSE(session::m19_Click(a.s, nullptr));
  EXPECT_EQ(a.ui.shown.back().title, "1D NMRの終了");
  a.ui.button_answers = {2};  // "保存する", the save is cancelled
  EXPECT_FALSE(session::m19_Click(a.s, [](Session&) { return false; }));
  EXPECT_EQ(Markers(home), 1);

  bool saved = false;
  a.ui.button_answers = {2};
  EXPECT_TRUE(session::m19_Click(a.s, [&](Session&) { return saved = true; }));
  EXPECT_TRUE(saved);
  EXPECT_EQ(Markers(home), 0);
  session::Settings set;
  session::Read_Settings_From(set, (home / "NMRCOL.INI").string());
  EXPECT_EQ(set.Int("DISPLAY MIN"), 524288);
}

}  // namespace
