// The message window's style decoding, results, keys, and the file error texts.
#include <gtest/gtest.h>

#include "platform/ui.h"
#include "session/messages.h"
#include "session/session.h"

using namespace tevo;

namespace {

TEST(MessageBox, StyleDecoding) {
  auto plain = Message_Layout("本文", 0, "");
  EXPECT_EQ(plain.title, "メッセージ");
  ASSERT_EQ(plain.buttons.size(), 1u);
  EXPECT_EQ(plain.buttons[0], "OK");
  EXPECT_EQ(plain.icon, 0);

  auto ync = Message_Layout("t", 3 + 32 + 512, "保存");
  EXPECT_EQ(ync.title, "保存");
  EXPECT_EQ(ync.buttons, (std::vector<std::string>{"はい(Y)", "いいえ(N)", "Cancel"}));
  EXPECT_EQ(ync.icon, 2);
  EXPECT_EQ(ync.default_button, 3);
  // The value 64 alone is the fourth icon; 48 the third.
  EXPECT_EQ(Message_Layout("t", 64, "").icon, 4);
  EXPECT_EQ(Message_Layout("t", 48, "").icon, 3);
  EXPECT_EQ(Message_Layout("t", 16, "").icon, 1);
  // A default of Command2 needs a second button; Command3 only in styles 2, 3.
  EXPECT_EQ(Message_Layout("t", 0 + 256, "").default_button, 1);
  EXPECT_EQ(Message_Layout("t", 4 + 256, "").default_button, 2);
  EXPECT_EQ(Message_Layout("t", 4 + 512, "").default_button, 1);
  EXPECT_EQ(Message_Layout("t", 2 + 512, "").default_button, 3);
  EXPECT_EQ(Message_Layout("t", 2, "").buttons,
            (std::vector<std::string>{"中止(A)", "再試行(R)", "無視(I)"}));
  EXPECT_EQ(Message_Layout("t", 5, "").buttons, (std::vector<std::string>{"再試行(R)", "キャンセル"}));
}

TEST(MessageBox, ResultsAndKeys) {
  EXPECT_EQ(Message_Button_Result(0, 1), Msg_OK);
  EXPECT_EQ(Message_Button_Result(0, 2), 0);
  EXPECT_EQ(Message_Button_Result(1, 2), Msg_Cancel);
  EXPECT_EQ(Message_Button_Result(2, 1), Msg_Abort);
  EXPECT_EQ(Message_Button_Result(2, 3), Msg_Ignore);
  EXPECT_EQ(Message_Button_Result(3, 3), Msg_Cancel);
  EXPECT_EQ(Message_Button_Result(4, 3), 0);
  EXPECT_EQ(Message_Button_Result(4, 2), Msg_No);
  EXPECT_EQ(Message_Button_Result(5, 1), Msg_Retry);
  EXPECT_EQ(Message_Key_Result(2, 'a'), Msg_Abort);
  EXPECT_EQ(Message_Key_Result(2, 'R'), Msg_Retry);
  EXPECT_EQ(Message_Key_Result(3, 'y'), Msg_Yes);
  EXPECT_EQ(Message_Key_Result(4, 'N'), Msg_No);
  EXPECT_EQ(Message_Key_Result(5, 'r'), Msg_Retry);
  EXPECT_FALSE(Message_Key_Result(1, 'N').has_value());  // N in a style-1 box does nothing
  EXPECT_FALSE(Message_Key_Result(0, 'Y').has_value());

  platform::Scripted_Ui ui;
  ui.quiet = true;
  Session s;
  s.ui = &ui;
  ui.button_answers = {2};
  EXPECT_EQ(Show_Message(s, "消しますか", 4 + 32, "削除"), Msg_No);
  EXPECT_EQ(s.Msg_Result, "7");
  EXPECT_EQ(s.Msg_Title, "削除");
  // With no scripted answer the default button is taken.
  EXPECT_EQ(Show_Message(s, "t", 4 + 256, ""), Msg_No);
}

TEST(DiskError, TextsLocationsAndResultMapping) {
  platform::Scripted_Ui ui;
  ui.quiet = true;
  Session s;
  s.ui = &ui;
  EXPECT_EQ(Disk_Error_Text(s, 0, "X"), 0);
  EXPECT_TRUE(ui.shown.empty());

  EXPECT_EQ(Disk_Error_Text(s, 53, "RMA/DRW"), 2);  // OK on a warning gives up
  EXPECT_EQ(ui.shown.back().text, "ファイルが見つかりません(RMA/DRW)");
  EXPECT_EQ(ui.shown.back().title, "ディスク エラー");
  EXPECT_EQ(ui.shown.back().style, 48);

  ui.button_answers = {1};
  EXPECT_EQ(Disk_Error_Text(s, 71, ""), 0);  // OK on the drive question repeats
  EXPECT_EQ(ui.shown.back().style, 49);
  EXPECT_EQ(ui.shown.back().text, "ディスクをドライブに入れてドアを閉じて下さい");
  ui.button_answers = {2};
  EXPECT_EQ(Disk_Error_Text(s, 71, ""), 2);
  ui.button_answers = {3};  // no such button: not handled
  EXPECT_EQ(Disk_Error_Text(s, 61, ""), 3);
  EXPECT_EQ(Error_Text(62),
            "ファイルの EOF 記号が標準と異なりますまたは、EOF 記号を越えてデータを読み込もうとしました");
  EXPECT_EQ(Error_Text(64), Error_Text(52));
}

}  // namespace
