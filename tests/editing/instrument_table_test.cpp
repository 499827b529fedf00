// The instrument table file "OB_0ppm.frq" and the rows the data sets write.
#include <gtest/gtest.h>

#include <string>

#include "editing/instrument_table.h"
#include "platform/ui.h"
#include "session/session.h"
#include "session/text_encoding.h"
#include "support/test_support.h"

namespace {

using tevo::Instr_Row;
using namespace tevo::editing;

// Fixed-width line: ID 32, ";", solvent 16, ";", nucleus 8, "; ", 0 ppm
// frequency 18, ";", used 20, ";", updated 20, ";", nominal frequency 8.
TEST(InstrumentTable, LineLayoutByteForByte) {
  Instr_Row r{"LAB-A 400", "CDCl3", "1H", 399.7843215678, 0.0f, "2024/05/01 10:20:30", ""};
  const std::string line = Instr_Table_Line(r, "2024/05/02 11:00:00");
  const std::string want =
      "LAB-A 400                       "  // 9 + 23 blanks
      ";CDCl3           "  // 5 + 11
      ";1H      "  // 2 + 6
      "; 399.7843215678    "  // 14 + 4
      ";2024/05/01 10:20:30 "
      ";2024/05/02 11:00:00 "  // empty date written as now
      ";399.80  ";  // 0 filled by round(399.784 * 20) / 20 = 7996 / 20
  EXPECT_EQ(line, want);
  EXPECT_EQ(line.size(), 32u + 1 + 16 + 1 + 8 + 2 + 18 + 1 + 20 + 1 + 20 + 1 + 8);

  // A two-byte ID counts its Shift-JIS bytes: 分析室 is 6 bytes.
  Instr_Row j{"分析室400", "D2O", "13C", 100.5, 100.5f, "a", "b"};
  const std::string sj = tevo::Utf8_To_Sjis(Instr_Table_Line(j, "n"));
  EXPECT_EQ(sj.substr(0, 33), tevo::Utf8_To_Sjis("分析室400") + std::string(23, ' ') + ";");
  EXPECT_EQ(sj.substr(sj.size() - 8), "100.50  ");
  EXPECT_NE(sj.find("; 100.5             ;"), std::string::npos);
}

TEST(InstrumentTable, ReadWriteRoundTripInAnyCaseAndNarrowFields) {
  tevo::test::Temp_Dir dir;
  tevo::Session s;
  s.App_Path = dir.path().string();
  // Hand-written file: a narrow row with a tab, a lower-case ID, a row
  // without ID, a Shift-JIS ID.
  const std::string text = tevo::Utf8_To_Sjis(
      "lab-b;cdcl3;13C; 100.6123456789;2023/01/01 00:00:00;2023/02/01 00:00:00;100.60\r\n"
      " ;CDCl3;1H; 400.1;x;y;400.10\r\n"
      "分析室400\t;D2O;1H;499.9;;;0\n");
  tevo::test::Write_Text(dir / "OB_0ppm.frq", text);
  s.settings.Instrument_Ids = {"LAB-A"};
  Read_Instr_Table(s);
  ASSERT_EQ(s.Instr_Tab.size(), 2u);
  EXPECT_EQ(s.Instr_Tab[0].Id, "lab-b");
  EXPECT_EQ(s.Instr_Tab[0].Solvent, "cdcl3");
  EXPECT_DOUBLE_EQ(s.Instr_Tab[0].Zero_Freq, 100.6123456789);
  EXPECT_FLOAT_EQ(s.Instr_Tab[0].Obs_Freq, 100.6f);
  EXPECT_EQ(s.Instr_Tab[0].Updated_Date, "2023/02/01 00:00:00");
  EXPECT_EQ(s.Instr_Tab[1].Id, "分析室400");  // the tab became a blank and was trimmed
  EXPECT_EQ(s.settings.Instrument_Ids, (std::vector<std::string>{"LAB-A", "LAB-B", "分析室400"}));

  ASSERT_EQ(Write_Instr_Table(s), 0);
  tevo::Session t;
  t.App_Path = s.App_Path;
  Read_Instr_Table(t);
  ASSERT_EQ(t.Instr_Tab.size(), 2u);
  EXPECT_EQ(t.Instr_Tab[0].Id, "lab-b");
  EXPECT_DOUBLE_EQ(t.Instr_Tab[0].Zero_Freq, 100.6123456789);
  EXPECT_EQ(t.Instr_Tab[0].Used_Date, "2023/01/01 00:00:00");
  EXPECT_EQ(t.Instr_Tab[1].Nucleus, "1H");
  EXPECT_FLOAT_EQ(t.Instr_Tab[1].Obs_Freq, 499.9f);  // 0 was filled from the 0 ppm frequency
  EXPECT_EQ(t.Instr_Tab[1].Used_Date.size(), 19u);  // empty dates were written as now
  const std::string bytes = tevo::test::Read_Text(dir / "OB_0ppm.frq");
  EXPECT_EQ(bytes.substr(bytes.size() - 2), "\r\n");

  // No file: an empty table.
  tevo::Session none;
  none.App_Path = (dir / "missing").string();
  none.Instr_Tab.resize(3);
  Read_Instr_Table(none);
  EXPECT_TRUE(none.Instr_Tab.empty());
}

TEST(InstrumentTable, UpdateRowMatchesByIdSolventNucleusAndFrequency) {
  tevo::Session s;
  s.Param.SLVNT = "CDCl3";
  s.Param.OBNUC = "1H";
  s.Observe_Frequency = 399.78;
  s.Spectrum_Frequency = 399.7812345;
  // Without an ID the table is never touched.
  Update_Instr_Row(s);
  EXPECT_TRUE(s.Instr_Tab.empty());

  s.Param.Instrument_Id = "LAB-A";
  s.Instr_Tab = {Instr_Row{"lab-a", "cdcl3", "1h", 399.70, 399.75f, "", ""},   // 0.03 MHz: the same
                 Instr_Row{"LAB-A", "CDCl3", "1H", 399.60, 399.72f, "", ""}};  // 0.06 MHz: another
  Update_Instr_Row(s);
  ASSERT_EQ(s.Instr_Tab.size(), 2u);
  EXPECT_DOUBLE_EQ(s.Instr_Tab[0].Zero_Freq, 399.7812345);
  EXPECT_EQ(s.Instr_Tab[0].Used_Date.size(), 19u);
  EXPECT_EQ(s.Instr_Tab[0].Used_Date, s.Instr_Tab[0].Updated_Date);
  EXPECT_DOUBLE_EQ(s.Instr_Tab[1].Zero_Freq, 399.60);
  EXPECT_EQ(Form109_Preselect(s), 0);

  // A frequency 0.06 MHz off is a different instrument: a new row, with
  // the nominal frequency rounded to 0.05 MHz.
  s.Instr_Tab = {Instr_Row{"LAB-A", "CDCl3", "1H", 399.60, 399.72f, "", ""}, Instr_Row{}};
  Update_Instr_Row(s);
  ASSERT_EQ(s.Instr_Tab.size(), 2u);  // the empty row was taken
  EXPECT_EQ(s.Instr_Tab[1].Id, "LAB-A");
  EXPECT_FLOAT_EQ(s.Instr_Tab[1].Obs_Freq, 399.8f);
  EXPECT_TRUE(s.Instr_Tab[1].Used_Date.empty());
  EXPECT_EQ(s.Instr_Tab[1].Updated_Date.size(), 19u);
  EXPECT_EQ(Form109_Preselect(s), 1);

  // The list shows the file's columns at widths 32, 16, 5 and 18.
  EXPECT_EQ(Instr_List_Text(s.Instr_Tab[1]),
            "LAB-A" + std::string(27, ' ') + ";CDCl3" + std::string(11, ' ') + ";1H   ; 399.7812345" +
                std::string(7, ' '));
}

TEST(InstrumentTable, DeletingIdsAndRowsAsksFirst) {
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  ui.quiet = true;
  s.ui = &ui;
  s.settings.Instrument_Ids = {"A", "B"};
  s.Instr_Tab = {Instr_Row{"A", "X", "1H", 1, 1, "", ""}};
  ui.button_answers = {2, 1};
  EXPECT_FALSE(Delete_Instr_Id(s, "B"));
  EXPECT_TRUE(Delete_Instr_Id(s, "B"));
  EXPECT_EQ(ui.shown[0].text, "Bを削除します？");
  EXPECT_EQ(ui.shown[0].title, "装置IDの削除");
  EXPECT_EQ(s.settings.Instrument_Ids, std::vector<std::string>{"A"});
  ui.button_answers = {1};
  EXPECT_TRUE(Delete_Instr_Row(s, 0));
  EXPECT_EQ(ui.shown.back().title, "装置 Dataの削除");
  EXPECT_TRUE(s.Instr_Tab.empty());
  Form107_OK(s, " lab-c ");
  EXPECT_EQ(s.Param.Instrument_Id, "LAB-C");
}

}  // namespace
