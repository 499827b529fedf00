// Start-up and shut-down: command line, work markers shared by copies side by
// side, the in-use check, the log and the clean-up at exit.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "platform/ui.h"
#include "session/session.h"
#include "session/startup.h"
#include "support/test_support.h"

namespace fs = std::filesystem;
using namespace tevo;

namespace {

TEST(CommandLine, QuotesDollarBlanksAndShortText) {
  EXPECT_EQ(session::Parse_Command_Line("").file, "");
  EXPECT_EQ(session::Parse_Command_Line(" ab ").file, "");  // under 3 characters
  EXPECT_EQ(session::Parse_Command_Line("abc").file, "abc");
  auto q = session::Parse_Command_Line("\"/data/a b.tv1\"");
  EXPECT_EQ(q.file, "/data/a b.tv1");
  EXPECT_FALSE(q.from_sibling);
  // Unquoted: anything behind the first blank is ignored.
  EXPECT_EQ(session::Parse_Command_Line("/data/a b.tv1").file, "/data/a");
  auto d = session::Parse_Command_Line("\"$/data/x.tv1\"");
  EXPECT_EQ(d.file, "/data/x.tv1");
  EXPECT_TRUE(d.from_sibling);
  EXPECT_TRUE(session::Parse_Command_Line("$/data/y").from_sibling);
  // A quote that is not closed keeps the rest.
  EXPECT_EQ(session::Parse_Command_Line("\"/data/open").file, "/data/open");
}

TEST(WorkMarkers, LowestFreeNumberAndCrashLeftovers) {
  test::Temp_Dir dir;
  for (const char* n : {"Work_File_1D0000.wkf", "Work_File_1D0001.wkf", "Work_File_1D0003.wkf"})
    test::Write_Text(dir / n, "");
  Session s;
  s.App_Path = dir.path().string();
  ASSERT_TRUE(session::Claim_Work_Marker(s));
  EXPECT_EQ(s.Work_Id, 2);
  EXPECT_EQ(fs::path(s.Work_File).filename(), "Work_File_1D0002.wkf");
  EXPECT_EQ(fs::path(s.Fid_Work_File).filename(), "FID_Work_File_1D0002.dat");
  // The three markers above were left by crashes: nobody holds them.
  EXPECT_FALSE(session::Other_Copy_Running(s));
  session::Shutdown_Cleanup(s);
  for (int n = 0; n < 4; ++n)
    EXPECT_FALSE(fs::exists(dir / ("Work_File_1D000" + std::to_string(n) + ".wkf"))) << n;
}

// Runs a second copy in a child process: it claims a marker, names an open
// file in it, reports its number, and waits for the parent before ending
// (with a clean shut-down, or as a crash that leaves its marker).
struct Child_Copy {
  pid_t pid = -1;
  int to_child[2]{}, from_child[2]{};
  int work_id = -1;

  Child_Copy(const std::string& app_path, const std::string& open_file) {
    if (::pipe(to_child) != 0 || ::pipe(from_child) != 0) return;
    pid = ::fork();
    if (pid == 0) {
      Session s;
      s.App_Path = app_path;
      int id = session::Claim_Work_Marker(s) ? s.Work_Id : -1;
      session::Mark_Open_File(s, open_file);
      (void)!::write(from_child[1], &id, sizeof id);
      char how = 0;
      (void)!::read(to_child[0], &how, 1);
      if (how == 'c') session::Shutdown_Cleanup(s);  // 'x': crash, leave the marker
      ::_exit(0);
    }
    (void)!::read(from_child[0], &work_id, sizeof work_id);
  }
  void Finish(char how) {
    (void)!::write(to_child[1], &how, 1);
    int status = 0;
    ::waitpid(pid, &status, 0);
  }
};

TEST(WorkMarkers, TwoCopiesOnOneFolder) {
  test::Temp_Dir dir;
  const std::string app = dir.path().string();
  Child_Copy other(app, "/data/Sample.tv1");
  ASSERT_GE(other.work_id, 0);

  Session s;
  s.App_Path = app;
  ASSERT_TRUE(session::Claim_Work_Marker(s));
  EXPECT_NE(s.Work_Id, other.work_id);
  EXPECT_TRUE(session::Other_Copy_Running(s));
  // The other copy has the file open; case does not matter; our own marker
  // never counts.
  EXPECT_TRUE(session::File_In_Use(s, "/DATA/sample.TV1"));
  EXPECT_FALSE(session::File_In_Use(s, "/data/other.tv1"));
  session::Mark_Open_File(s, "/data/mine.tv1");
  EXPECT_FALSE(session::File_In_Use(s, "/data/mine.tv1"));

  // The other copy crashes: its marker stays, and its number is skipped.
  other.Finish('x');
  EXPECT_FALSE(session::Other_Copy_Running(s));
  const fs::path crashed = dir / ("Work_File_1D000" + std::to_string(other.work_id) + ".wkf");
  EXPECT_TRUE(fs::exists(crashed));
  Session third;
  third.App_Path = app;
  ASSERT_TRUE(session::Claim_Work_Marker(third));
  EXPECT_NE(third.Work_Id, other.work_id);
  EXPECT_NE(third.Work_Id, s.Work_Id);

  // While `third` runs, our exit removes only our own marker.
  session::Shutdown_Cleanup(s);
  EXPECT_FALSE(fs::exists(s.Work_File));
  EXPECT_TRUE(fs::exists(crashed));
  EXPECT_TRUE(fs::exists(third.Work_File));
  // The last copy to end clears everything, the crash leftover included.
  session::Shutdown_Cleanup(third);
  EXPECT_FALSE(fs::exists(crashed));
  EXPECT_FALSE(fs::exists(third.Work_File));
}

TEST(Log, LineFormatFileNamesAndMissingFolder) {
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  ui.quiet = true;
  Session s;
  s.ui = &ui;
  s.Log_Dir = dir.path().string();
  s.User_Name = "TANAKA";
  std::tm when{};
  when.tm_year = 2026 - 1900;
  when.tm_mon = 10;
  when.tm_mday = 3;
  when.tm_hour = 14;
  when.tm_min = 5;
  when.tm_sec = 9;
  s.Log_Mode = 0;
  session::Write_Log_At(s, "Read", "/data/a.tv1", when);
  session::Write_Log_At(s, "Write", "/data/b.tv1", when);
  EXPECT_EQ(test::Read_Text(dir / "1D2026_11.log"),
            "TANAKA, 2026/Nov/03,14:05:09, Read, /data/a.tv1\r\n"
            "TANAKA, 2026/Nov/03,14:05:09, Write, /data/b.tv1\r\n");
  s.Log_Mode = 1;
  session::Write_Log_At(s, "Read(M)", "/data/c.tv1", when);
  EXPECT_TRUE(fs::exists(dir / "1D2026_11_03.log"));
  s.Log_Mode = -1;
  session::Write_Log_At(s, "Read", "/data/d.tv1", when);
  EXPECT_TRUE(ui.shown.empty());
  // A log folder that does not exist: the folder message, nothing written.
  s.Log_Mode = 0;
  s.Log_Dir = (dir / "missing").string();
  session::Write_Log_At(s, "Read", "/data/e.tv1", when);
  ASSERT_EQ(ui.shown.size(), 1u);
  EXPECT_EQ(ui.shown[0].text, "Logのフォルダー名が不適切です(WL)");
  EXPECT_EQ(ui.shown[0].title, "Folderエラー");
}

TEST(Shutdown, TemporariesAndBackupsGo) {
  test::Temp_Dir dir;
  Session s;
  s.App_Path = dir.path().string();
  for (const char* n : {"BackUp1_12.tv1", "BackUp1_3.tv1"}) test::Write_Text(dir / n, "x");
  session::Remove_Stale_Backups(s);
  EXPECT_FALSE(fs::exists(dir / "BackUp1_12.tv1"));
  ASSERT_TRUE(session::Claim_Work_Marker(s));
  s.Backup_File = (dir / "BackUp1_13.tv1").string();
  for (const char* n : {"Temp.dat", "Temp1.wmf", "TempX.WMF", "BackUp1_13.tv1", "keep.tv1"})
    test::Write_Text(dir / n, "x");
  test::Write_Text(s.Fid_Work_File, "x");
  session::Shutdown_Cleanup(s);
  EXPECT_TRUE(fs::exists(dir / "keep.tv1"));
  for (const char* n : {"Temp.dat", "Temp1.wmf", "TempX.WMF", "BackUp1_13.tv1"})
    EXPECT_FALSE(fs::exists(dir / n)) << n;
  EXPECT_FALSE(fs::exists(s.Fid_Work_File));
}

TEST(Paths, AppPathAndWindowsPaths) {
  test::Temp_Dir dir;
  EXPECT_EQ(session::Resolve_App_Path((dir / "home/").string(), ""), (dir / "home").string());
  EXPECT_TRUE(fs::is_directory(dir / "home"));
  EXPECT_EQ(session::Resolve_App_Path("", (dir / "tevo1d").string()), dir.path().string());
  const std::string home = std::getenv("HOME");
  EXPECT_EQ(session::Map_Windows_Path("C:\\NMRLog"), home + "/NMRLog");
  EXPECT_EQ(session::Map_Windows_Path("c:\\filename.txt"), (fs::temp_directory_path() / "filename.txt").string());
  EXPECT_EQ(session::Map_Windows_Path("/var/log"), "/var/log");
}

}  // namespace
