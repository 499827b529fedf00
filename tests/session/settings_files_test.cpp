// The settings files against files built byte by byte (Shift-JIS included):
// the line rules, the reader's checks, the keys it does not take back, the
// common file and the small tables.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "session/session.h"
#include "session/settings.h"
#include "session/settings_files.h"
#include "support/test_support.h"

namespace fs = std::filesystem;
using namespace tevo;
using session::Settings;

namespace {

// Lines joined with CR LF; the text is plain ASCII plus the Shift-JIS bytes
// spelled out by the caller.
std::string Crlf(const std::vector<std::string>& lines) {
  std::string out;
  for (const auto& l : lines) out += l + "\r\n";
  return out;
}

// Shift-JIS bytes of a few Japanese words, worked out from the code table.
const std::string kMinchoSjis = "\x82\x6c\x82\x72\x20\x96\xbe\x92\xa9";  // "ＭＳ 明朝"
const std::string kNihongoSjis = "\x93\xfa\x96\x7b\x8c\xea";  // "日本語"
const std::string kYamadaSjis = "\x8e\x52\x93\x63";  // "山田"

TEST(SettingsFile, LineRulesClampsAndRepeatedKeys) {
  test::Temp_Dir dir;
  std::vector<std::string> lines = {
      "1d initial SETTING   ",  // title compared trimmed, in upper case
      "DISPLAY MIN     ; 1000",  // below 65536 -> 65536
      "ZEROFILLSIZE    ;\t262144",  // value behind a tab
      "FFT GAMEN RATIO ; 1.5",  // -> 0.9
      "REAL TO IMAGE   ; -2",  // negative -> 1.0
      "GRID WIDTH      ; 0.5",  // -> 1
      "PEAK WAKU WIDTH ; -3",  // -> 1
      "PAPER DUPLEX    ; 0",  // always 1
      "AVERAGE POINT   ; abc",  // conversion error: line lost, default 5 stays
      "PEAK DIGIT      ; 3.5",  // whole numbers round to even
      "INTEGRAL DIGIT  ; 2.5",
      "START MODE      ; 70000",  // no 16-bit number: line lost
      "AXIS FONT NAME  ; " + kMinchoSjis,
      "PARA FONT NAME  ; No Such Face",  // unknown faces fall back by their kind
      "LISTS FONT NAME ; " + kNihongoSjis,
      "INTEG FONT NAME ; arial",  // faces compare without case
      "TEXT SIZE       12.5",  // no ";": key in columns 1-16
      "PRINTER TYPE;7;8",  // only the first ";" separates
      "short",  // no ";", under 17 characters: skipped
      "Display Min     ; 200000",  // keys compare with case
      "NO SUCH KEY     ; 5",
      "PARA TABLE      ; " + kNihongoSjis + " OBNUC ; x",
      "PARA TABLE;  line two",
      "INSTRUMENT ID   ; jnm-ecz400",
      "INSTRUMENT ID   ; ",  // empty: skipped
      "INSTRUMENT ID   ; JNM-ECZ400",  // duplicate: cleared after reading
      "INSTRUMENT ID   ; av600",
      "INSTRUMENT      ; 005" + kYamadaSjis,
      "INSTRUMENT      ; 100X",  // row 100 and more: skipped
      "INSTRUMENT      ; abX",  // no row number: lost
      "FID SHIFT VAL   ; 09912.5",
      "PEAK NUM FONT   ; Arial",  // written under this name but read under another
      "PEAK NUM NAME   ; Courier New",
      "MUL BG COLOR    ; 99",
      "MU BG COLOR     ; 255",
      "DEPT CH 45      ; 0.7",  // coefficients are not read back
      "COL BACKGROUND  ; -5",  // negative colour -> its default (white)
      "TH COLOR        ; -1",  // -> its default, red
      "MAIN SPECT COL  ; -1",  // -> black
      "MAGNIFICATION   ; 0",  // scaling factor -> 1.0
      "PARA LEFT       ; 0.5",  // fraction of X-LENGTH given further down
      "PARA TOP        ; 0.25",
      "X-LENGTH        ; 20",
      "X-LEFT MARGIN   ; 1.5",
      "PEAK BOTTOM HEIG; 0",  // not positive: from the margin key
      "PEAK BOTTOM MARG; 0.3",
      "CENTRE REF FREQ ; 399.782198123456",
      "LATEST ACCESS   ; 2001/01/01",
      "USER NAME       ; SOMEONE",
  };
  for (int i = 0; i < 22; ++i) lines.push_back("RECENT FILE     ; /data/f" + std::to_string(i) + ".tv1");
  test::Write_Text(dir / "set.ini", Crlf(lines));

  Settings set;
  session::Read_Settings_From(set, (dir / "set.ini").string());
  EXPECT_EQ(set.Int("DISPLAY MIN"), 65536);
  EXPECT_EQ(set.Int("ZEROFILLSIZE"), 262144);
  EXPECT_FLOAT_EQ(set.Real("FFT GAMEN RATIO"), 0.9f);
  EXPECT_DOUBLE_EQ(set.Real("REAL TO IMAGE"), 1.0);
  EXPECT_DOUBLE_EQ(set.Real("GRID WIDTH"), 1.0);
  EXPECT_EQ(set.Int("PEAK WAKU WIDTH"), 1);
  EXPECT_EQ(set.Int("PAPER DUPLEX"), 1);
  EXPECT_EQ(set.Int("AVERAGE POINT"), 5);
  EXPECT_EQ(set.Int("PEAK DIGIT"), 4);
  EXPECT_EQ(set.Int("INTEGRAL DIGIT"), 2);
  EXPECT_EQ(set.Int("START MODE"), 0);
  EXPECT_EQ(set.Text("AXIS FONT NAME"), "ＭＳ 明朝");
  EXPECT_EQ(set.Text("PARA FONT NAME"), "Arial");
  EXPECT_EQ(set.Text("LISTS FONT NAME"), "ＭＳ ゴシック");
  EXPECT_EQ(set.Text("INTEG FONT NAME"), "arial");
  EXPECT_DOUBLE_EQ(set.Real("TEXT SIZE"), 12.5);
  EXPECT_EQ(set.Int("PRINTER TYPE"), 0);  // "7;8" is no number
  EXPECT_EQ(set.Para_Table, "日本語 OBNUC ; x\r\nline two");
  EXPECT_EQ(set.Instrument_Ids, (std::vector<std::string>{"JNM-ECZ400", "", "AV600"}));
  EXPECT_EQ(set.Instrument[5], "山田");
  EXPECT_EQ(set.Fid_Shift_Val[99], "12.5");
  for (std::size_t r = 0; r < 100; ++r)
    if (r != 5) {
      EXPECT_EQ(set.Instrument[r], "") << r;
    }
  EXPECT_EQ(set.Text("PEAK NUM FONT"), "Courier New");
  EXPECT_EQ(set.Int("MUL BG COLOR"), 255);
  EXPECT_DOUBLE_EQ(set.Real("DEPT CH 45"), 1.0);  // its default
  EXPECT_EQ(set.Int("COL BACKGROUND"), 0xFFFFFF);
  EXPECT_EQ(set.Int("TH COLOR"), 0x0000FF);
  EXPECT_EQ(set.Int("MAIN SPECT COL"), 0);
  EXPECT_DOUBLE_EQ(set.Real("MAGNIFICATION"), 1.0);
  EXPECT_FLOAT_EQ(set.Real("PARA LEFT"), 0.5f * 20 + 1.5f);
  EXPECT_FLOAT_EQ(set.Real("PARA TOP"), (1 - 0.25f) * 25 + 2);  // Y-LENGTH and margin at their defaults
  EXPECT_FLOAT_EQ(set.Real("PEAK BOTTOM HEIG"), 0.3f);
  EXPECT_DOUBLE_EQ(set.Real("CENTRE REF FREQ"), 399.782198123456);
  EXPECT_EQ(set.Text("LATEST ACCESS"), "");
  EXPECT_EQ(set.Text("USER NAME"), "");
  ASSERT_EQ(set.Recent_Files.size(), 20u);
  EXPECT_EQ(set.Recent_Files.front(), "/data/f0.tv1");
}

// A number from a damaged data file set into a whole-number key is held at
// the ends of its field (NaN gives 0), and a huge real reads back as the
// largest 32-bit number.
TEST(SettingsValues, OutOfRangeNumbersAreHeldAtTheFieldEnds) {
  session::Settings st;
  st.Set("START MODE", 1.09e9);
  EXPECT_EQ(st.Int("START MODE"), 32767);
  st.Set("START MODE", -1e300);
  EXPECT_EQ(st.Int("START MODE"), -32768);
  st.Set("DISPLAY MIN", std::nan(""));
  EXPECT_EQ(st.Int("DISPLAY MIN"), 0);
  st.Set("PEAK TOP WIDTH", 1e30);
  EXPECT_EQ(st.Int("PEAK TOP WIDTH"), 2147483647);
}

TEST(SettingsFile, WrongTitleOrMissingFileLeavesDefaults) {
  test::Temp_Dir dir;
  test::Write_Text(dir / "bad.ini", Crlf({"1D Initial settings", "DISPLAY MIN     ; 262144", "RECENT FILE     ; /a"}));
  Settings set;
  set.Recent_Files = {"/kept"};
  session::Read_Settings_From(set, (dir / "bad.ini").string());
  session::Read_Settings_From(set, (dir / "missing.ini").string());
  EXPECT_EQ(set.Int("DISPLAY MIN"), 131072);
  EXPECT_EQ(set.Recent_Files, std::vector<std::string>{"/kept"});
  EXPECT_EQ(session::User_Name_Of((dir / "bad.ini").string()), "");
  EXPECT_EQ(session::User_Name_Of((dir / "missing.ini").string()), "");
}

// A value for every key that the reader's checks leave alone.
void Set_Unusual_Values(Settings& set) {
  int n = 0;
  for (const auto& def : session::Setting_Keys()) {
    ++n;
    switch (def.type) {
      case session::Setting_Type::Text:
        set.Set(def.key, def.rule == session::Setting_Rule::Font ? std::string(n % 2 ? "ＭＳ 明朝" : "Times New Roman")
                                                                  : std::string("値") + std::to_string(n) + " x;y");
        break;
      case session::Setting_Type::Int16:
      case session::Setting_Type::Int32:
        set.Set(def.key, def.rule == session::Setting_Rule::Clamp ? def.lo + 1 : 3.0 + n);
        break;
      case session::Setting_Type::Real32:
        set.Set(def.key, def.rule == session::Setting_Rule::Clamp ? (def.lo + std::min(def.hi, def.lo + 1)) / 2 : 0.1 * n + 1);
        break;
      case session::Setting_Type::Real64:
        set.Set(def.key, 400.123456789012 + n);
        break;
      case session::Setting_Type::List:
        break;
    }
  }
  set.Instrument_Ids = {"ECZ400", "ＡＶ６００"};
  set.Instrument[0] = "JNM 共通";
  set.Ref_Center_Ex[42] = "4.79";
  set.Recent_Files = {"/data/新しい.tv1", "/data/old.tv1"};
  set.Operators = {"山田", "Smith"};
  set.Para_Table = "  観測核 OBNUC  \r\n\r\nSCANS ; times";
}

TEST(SettingsFile, WriteThenReadKeepsEveryKeyReadBack) {
  test::Temp_Dir dir;
  Settings written;
  Set_Unusual_Values(written);
  const auto lines = session::Settings_Lines(written);
  ASSERT_TRUE(session::Write_Text_Lines((dir / "NMRCOL0001.ini").string(), lines));

  // The bytes on disk: title, CR LF, Shift-JIS, the key padded to 16 columns.
  const std::string bytes = test::Read_Text(dir / "NMRCOL0001.ini");
  EXPECT_EQ(bytes.rfind("1D Initial setting\r\nUSER NAME       ; ", 0), 0u);
  EXPECT_NE(bytes.find("\r\nDISPLAY MIN     ; 65537\r\n"), std::string::npos);
  EXPECT_NE(bytes.find("PARA TABLE      ; \x8a\xcf\x91\xaa\x8a\x6a OBNUC\r\nPARA TABLE      ; SCANS ; times\r\n"),
            std::string::npos);  // trimmed, the empty line dropped
  EXPECT_NE(bytes.find("INSTRUMENT      ; 000JNM \x8b\xa4\x92\xca\r\n"), std::string::npos);

  Settings read;
  session::Read_Settings_From(read, (dir / "NMRCOL0001.ini").string());
  const Settings defaults;
  // The keys written but not taken back, listed here from the file's
  // description rather than from the key table.
  std::set<std::string> not_read = {"PEAK NUM FONT",    "PEAK DATA FONT",   "MUL BG COLOR",   "PEAK LIST LEFT",
                                    "PEAK LIST TOP",    "PEAK LIST HEIGHT", "PEAK LIST WIDTH", "MULTI INTEG DISP",
                                    "LATEST ACCESS",    "USER NAME",        "DEPT CH2 45",    "DEPT CH2 135",
                                    "DEPT CH3 45",      "DEPT CH3 90",      "DEPT CH3 135",   "DEPT CH MUL",
                                    "DEPT CH 135",      "DEPT CH 45",       "DEPT CH 90"};
  for (int k = 1; k <= 5; ++k)
    for (const char* stem : {"USER EXTENSION ", "USER EXT NUM ", "ID AUTO MODE "}) not_read.insert(stem + std::to_string(k));
  std::set<std::string> lost;
  for (const auto& def : session::Setting_Keys()) {
    if (def.type == session::Setting_Type::List) continue;
    const std::string key = def.key;
    // The page fractions pass through a unit conversion: equal within float.
    const bool page = key == "PARA LEFT" || key == "PARA TOP" || key == "PARA WIDTH" || key == "PARA HEIGHT";
    const bool same = def.type == session::Setting_Type::Text ? read.Text(key) == written.Text(key)
                      : page ? std::fabs(read.Real(key) - written.Real(key)) <= 1e-5 * std::fabs(written.Real(key))
                             : read.Real(key) == written.Real(key);
    if (!same && def.rule != session::Setting_Rule::Always_Default) lost.insert(key);
  }
  EXPECT_EQ(lost, not_read);
  for (const auto& def : session::Setting_Keys()) {
    if (def.type == session::Setting_Type::List) continue;
    const std::string key = def.key;
    const bool page = key == "PARA LEFT" || key == "PARA TOP" || key == "PARA WIDTH" || key == "PARA HEIGHT";
    const Settings& expected = !def.read_back || def.rule == session::Setting_Rule::Always_Default ? defaults : written;
    if (def.type == session::Setting_Type::Text)
      EXPECT_EQ(read.Text(key), expected.Text(key)) << key;
    else if (page)
      EXPECT_NEAR(read.Real(key), expected.Real(key), 1e-5 * std::fabs(expected.Real(key))) << key;
    else
      EXPECT_EQ(read.Real(key), expected.Real(key)) << key;
  }
  EXPECT_EQ(read.Instrument_Ids, written.Instrument_Ids);
  EXPECT_EQ(read.Instrument, written.Instrument);
  EXPECT_EQ(read.Ref_Center_Ex, written.Ref_Center_Ex);
  EXPECT_EQ(read.Recent_Files, written.Recent_Files);
  EXPECT_EQ(read.Operators, written.Operators);
  EXPECT_EQ(read.Para_Table, "観測核 OBNUC\r\nSCANS ; times");
  EXPECT_EQ(session::User_Name_Of((dir / "NMRCOL0001.ini").string()), written.Text("USER NAME"));
}

TEST(SettingsFile, AccessCountAndNewUserOnSessionRead) {
  test::Temp_Dir dir;
  Session s;
  s.App_Path = dir.path().string();
  s.Print_Text = "from 1D.prt";
  // No file at all: the defaults are written at once, counted as one start.
  session::Read_Settings(s);
  ASSERT_TRUE(fs::exists(dir / "NMRCOL.INI"));
  EXPECT_EQ(s.settings.Int("ACCESS COUNT"), 1);
  EXPECT_EQ(s.settings.Para_Table, "from 1D.prt");

  Session again;
  again.App_Path = s.App_Path;
  session::Read_Settings(again);
  EXPECT_EQ(again.settings.Int("ACCESS COUNT"), 2);

  // A new user reads the common file and writes its own, counting from 1.
  Session fresh;
  fresh.App_Path = s.App_Path;
  fresh.Settings_Read_Name = (dir / "NMRCOL.INI").string();
  fresh.Settings_Write_Name = (dir / "NMRCOL0001.ini").string();
  session::Read_Settings(fresh);
  EXPECT_EQ(fresh.settings.Int("ACCESS COUNT"), 1);
  Settings mine;
  session::Read_Settings_From(mine, fresh.Settings_Write_Name);
  EXPECT_EQ(mine.Int("ACCESS COUNT"), 1);
}

TEST(CommonFile, CountBackUpNameAndIgnoredKeys) {
  test::Temp_Dir dir;
  test::Write_Text(dir / "1DCommon.ini",
                   Crlf({"1D Common Setting", "LOG DIR             /var/nmrlog", "LOG MODE            1",
                         "ACCESS COUNT        41 ; starts", "USER MODE           0",
                         "LATEST USER         " + kYamadaSjis, "USER EXTENSION 1    .XYZ"}));
  Session s;
  s.App_Path = dir.path().string();
  EXPECT_TRUE(session::Read_Common(s));
  EXPECT_EQ(s.Backup_File, (dir / "BackUp1_41.tv1").string());
  EXPECT_EQ(s.Access_Count, 42);
  EXPECT_EQ(s.Log_Dir, "/var/nmrlog");
  EXPECT_EQ(s.Log_Mode, 1);
  EXPECT_EQ(s.User_Name, "山田");
  EXPECT_EQ(s.settings.Text("USER EXTENSION 1"), ".BRUD");

  // Rewritten at once, with the count increased, in Shift-JIS.
  const std::string bytes = test::Read_Text(dir / "1DCommon.ini");
  EXPECT_EQ(bytes.rfind("1D Common Setting\r\nLOG DIR             /var/nmrlog\r\n", 0), 0u);
  EXPECT_NE(bytes.find("\r\nACCESS COUNT        42\r\n"), std::string::npos);
  EXPECT_NE(bytes.find("\r\nLATEST USER         " + kYamadaSjis + "\r\n"), std::string::npos);
  EXPECT_NE(bytes.find("\r\nUSER EXT NUM 5      10\r\n"), std::string::npos);

  // A wrong title: nothing is read, the count starts over.
  test::Write_Text(dir / "1DCommon.ini", Crlf({"Common", "ACCESS COUNT        7"}));
  Session t;
  t.App_Path = dir.path().string();
  EXPECT_FALSE(session::Read_Common(t));
  EXPECT_EQ(t.Access_Count, 1);
  EXPECT_EQ(t.Backup_File, (dir / "BackUp1_0.tv1").string());

  // A missing file is created.
  test::Temp_Dir empty;
  Session u;
  u.App_Path = empty.path().string();
  EXPECT_FALSE(session::Read_Common(u));
  EXPECT_TRUE(fs::exists(empty / "1DCommon.ini"));
}

TEST(SmallTables, NucleiRequiredFilesAndPrintText) {
  test::Temp_Dir dir;
  std::string nuclear = Crlf({"1h; proton ;1.0", ";empty name;2", "13C;" + kNihongoSjis + "; 0.251449530",
                              "15N;nitrogen;abc"});
  for (int i = 0; i < 150; ++i) nuclear += "X" + std::to_string(i) + ";x;0.5\r\n";
  test::Write_Text(dir / "Nuclear.dat", nuclear);
  test::Write_Text(dir / "RequiredFile1D.txt",
                   "JEOL Delta, " + kNihongoSjis + " files ,a.jdf, b.txt\r\nab\r\nBruker,fid data\n");
  test::Write_Text(dir / "1d.PRT", "  OBNUC \r\n\r\n" + kNihongoSjis + "  \r\nSCANS");

  Session s;
  s.App_Path = dir.path().string();
  session::Read_Nuclear(s);
  session::Read_Required_Files(s);
  session::Read_Print_Text(s);

  ASSERT_EQ(s.Nuclei.size(), 141u);
  EXPECT_EQ(s.Nuclei[0].name, "1H");
  EXPECT_EQ(s.Nuclei[0].text, "proton");
  EXPECT_DOUBLE_EQ(s.Nuclei[0].ratio, 1.0);
  EXPECT_EQ(s.Nuclei[1].name, "");  // number left free
  EXPECT_EQ(s.Nuclei[2].text, "日本語");
  EXPECT_DOUBLE_EQ(s.Nuclei[2].ratio, 0.251449530);
  EXPECT_EQ(s.Nuclei[3].name, "");  // ratio does not convert
  EXPECT_EQ(s.Nuclei[140].name, "X136");

  ASSERT_EQ(s.Required_Files.size(), 3u);
  EXPECT_EQ(s.Required_Files[0].format, "JEOL Delta");
  EXPECT_EQ(s.Required_Files[0].description, "日本語 files");
  EXPECT_EQ(s.Required_Files[0].files, "a.jdf\r\nb.txt");
  EXPECT_EQ(s.Required_Files[1].format, "");  // under 3 characters
  EXPECT_EQ(s.Required_Files[2].description, "fid data");

  EXPECT_EQ(s.Print_Text, "OBNUC\r\n\r\n日本語\r\nSCANS");
}

}  // namespace
