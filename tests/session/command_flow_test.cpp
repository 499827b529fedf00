// The mode interlock, the recent-file list and the menu state.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/ui.h"
#include "session/command_flow.h"
#include "session/session.h"
#include "session/user_choice.h"

using namespace tevo;

namespace {

TEST(ModeInterlock, AskConfirmCancelAndQuietLeave) {
  platform::Scripted_Ui ui;
  ui.quiet = true;
  Session s;
  s.ui = &ui;
  int confirmed = 0, cancelled = 0, closed = 0;
  s.Mode.handlers[session::Mode_Phase] = {[&](Session&) { ++confirmed; }, [&](Session&) { ++cancelled; }, {}};
  s.Mode.handlers[session::Mode_Peak] = {{}, {}, [&](Session&) { ++closed; }};

  ASSERT_TRUE(session::Enter_Mode(s, session::Mode_Phase));
  EXPECT_EQ(s.Mode.Edit_Mode, session::Mode_Phase);
  // Unchanged: leaving cancels quietly, nothing is asked.
  ASSERT_TRUE(session::Enter_Mode(s, session::Mode_Peak));
  EXPECT_EQ(cancelled, 1);
  EXPECT_TRUE(ui.shown.empty());
  // Modes 4..6 close without a question.
  ASSERT_TRUE(session::Enter_Mode(s, session::Mode_Phase));
  EXPECT_EQ(closed, 1);

  // Changed: Yes confirms, No cancels, Cancel keeps the mode untouched.
  session::Mode_Edited(s);
  ui.button_answers = {3};  // "Cancel"
  EXPECT_FALSE(session::Confirm_Mode_Exit(s));
  EXPECT_EQ(s.Mode.Edit_Mode, session::Mode_Phase);
  EXPECT_EQ(ui.shown.back().text, "位相補正を実行しますか");
  ui.button_answers = {1};
  EXPECT_TRUE(session::Confirm_Mode_Exit(s));
  EXPECT_EQ(confirmed, 1);
  EXPECT_EQ(s.Mode.Edit_Mode, session::Mode_Basic);
  EXPECT_EQ(s.Mode.Tool_Add, 2);

  // Entering a mode clears the undo history.
  s.Undo_Stack[0].Kind = 4;
  ASSERT_TRUE(session::Enter_Mode(s, session::Mode_Reference));
  EXPECT_EQ(s.Undo_Stack[0].Kind, Undo_None);
}

TEST(RecentFiles, MoveToTopAndDropTheTwentyFirst) {
  Session s;
  for (int i = 1; i <= 21; ++i) session::Set_RecentFile_Menu(s, "/d/f" + std::to_string(i) + ".tv1");
  ASSERT_EQ(s.settings.Recent_Files.size(), 20u);
  EXPECT_EQ(s.settings.Recent_Files.front(), "/d/f21.tv1");
  EXPECT_EQ(s.settings.Recent_Files.back(), "/d/f2.tv1");  // f1 pushed out
  session::Set_RecentFile_Menu(s, "/D/F5.TV1");  // a hit regardless of case
  EXPECT_EQ(s.settings.Recent_Files.size(), 20u);
  EXPECT_EQ(s.settings.Recent_Files.front(), "/D/F5.TV1");
  EXPECT_EQ(std::count(s.settings.Recent_Files.begin(), s.settings.Recent_Files.end(), "/d/f5.tv1"), 0);

  EXPECT_EQ(session::Recent_Caption(3, "/a/b.tv1"), "  &3. /a/b.tv1");
  EXPECT_EQ(session::Recent_Caption(12, "/a/b.tv1"), "  12. /a/b.tv1");
  const std::string longp = "/home/user/data/2026/november/experiments/sample.tv1";
  const std::string shortp = session::Shorten_Path(longp, 30);
  EXPECT_LE(session::Display_Columns(shortp), 30);
  EXPECT_NE(shortp.find("..../sample.tv1"), std::string::npos);
  // Double-width characters count twice.
  EXPECT_EQ(session::Display_Columns("データa"), 7);
  EXPECT_LE(session::Display_Columns(session::Shorten_Path("/データ/とても長いフォルダの名前です/スペクトル.tv1", 30)), 30);
}

TEST(MenuState, NoDataLoadedAndArray) {
  Session s;
  auto m = session::Menu_Enabled(s);
  EXPECT_TRUE(m["NM1D_m11"]);
  EXPECT_TRUE(m["m19"]);
  EXPECT_FALSE(m["m10"]);
  EXPECT_FALSE(m["m22"]);
  EXPECT_FALSE(m["m102"]);
  EXPECT_FALSE(m["m51"]);
  s.Is_Spectrum = 1;
  s.Spec_Points = 1024;
  m = session::Menu_Enabled(s);
  EXPECT_TRUE(m["m10"]);
  EXPECT_TRUE(m["m22"]);
  EXPECT_TRUE(m["m51"]);  // the line separation needs a spectrum only
  EXPECT_FALSE(m["m52"]);
  s.Array_Rows = 4;
  // The T1/T2 window needs two rows or more; the peak separation (m61)
  // has no code yet and stays off.
  EXPECT_TRUE(session::Menu_Enabled(s)["m52"]);
  EXPECT_FALSE(session::Menu_Enabled(s)["m61"]);
  EXPECT_TRUE(session::Menu_Enabled(s)["m24"]);
  // Undo only with a record to undo.
  EXPECT_FALSE(session::Menu_Enabled(s)["m20"]);
  s.Undo_Stack[0].Kind = 2;
  EXPECT_TRUE(session::Menu_Enabled(s)["m20"]);
  EXPECT_EQ(session::Window_Caption("/data/a.tv1"), "NMR 1D              /DATA/A.TV1");

  // The display switches show their key and turn it over; the two places of
  // the peak labels set it.
  const auto& switches = session::Layer_Switches();
  const auto find = [&](const char* id) {
    return *std::find_if(switches.begin(), switches.end(), [&](const auto& l) { return std::string(l.id) == id; });
  };
  s.settings.Set("DISPLAY GRID", 0.0);
  EXPECT_FALSE(session::Layer_Checked(s, find("m367")));
  session::Layer_Chosen(s, find("m367"));
  EXPECT_EQ(s.settings.Int("DISPLAY GRID"), 1);
  EXPECT_TRUE(session::Layer_Checked(s, find("m367")));
  session::Layer_Chosen(s, find("m372"));
  EXPECT_EQ(s.settings.Int("PEAK POSITION"), 0);
  EXPECT_TRUE(session::Layer_Checked(s, find("m372")));
  EXPECT_FALSE(session::Layer_Checked(s, find("m371")));
  EXPECT_TRUE(session::Menu_Enabled(s)["m367"]);
}

TEST(OperatorList, AddRefusesATwinDeleteAsks) {
  platform::Scripted_Ui ui;
  ui.quiet = true;
  Session s;
  s.ui = &ui;
  EXPECT_TRUE(session::Operator_Add(s, " 山田 "));
  EXPECT_FALSE(session::Operator_Add(s, "山田"));
  EXPECT_EQ(ui.shown.back().text, "山田はすでに存在します");
  EXPECT_EQ(ui.shown.back().title, "追加エラー");
  EXPECT_FALSE(session::Operator_Add(s, "  "));
  EXPECT_TRUE(session::Operator_Add(s, "SUZUKI"));
  ui.button_answers = {2};  // いいえ
  EXPECT_FALSE(session::Operator_Delete(s, 0));
  EXPECT_EQ(ui.shown.back().text, "山田を削除します");
  EXPECT_EQ(ui.shown.back().title, "削除");
  ui.button_answers = {1};
  EXPECT_TRUE(session::Operator_Delete(s, 0));
  EXPECT_EQ(s.settings.Operators, std::vector<std::string>{"SUZUKI"});
}

}  // namespace
