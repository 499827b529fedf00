// The page editor on a sheet of 10 pixels per cm, where every position can
// be worked out by hand: what the pointer takes, drags that come back as cm
// and frame fractions, the undo list's depth and captions, and the limits
// of the lists.
#include <gtest/gtest.h>

#include "datafiles/quiet_session.h"
#include "display/style.h"
#include "page/page_edit.h"
#include "page/page_model.h"
#include "platform/recording_surface.h"

namespace tevo::page {
namespace {

// A4 portrait shown whole on 210 x 297 pixels: 10 px per cm both ways.
// The frame stands 2 cm from the left and 3 cm above the bottom, 15 x 10 cm:
// pixels 20 .. 170 across and, from the top, 297 - 30 - 100 = 167 .. 267.
struct Edit_Session : test::Quiet_Session {
  Page_Geometry g;
  platform::RecordingSurface measure{210, 297};
  Page_Undo_List undo;
  Edit_Session() {
    for (auto [key, v] : {std::pair{"PAPER SIZE", 9.0}, {"PAPER ORIENT", 0.0}, {"X-LEFT MARGIN", 2.0},
                          {"X-LENGTH", 15.0}, {"Y-BOTTOM MARGIN", 3.0}, {"Y-LENGTH", 10.0},
                          {"PARA LEFT", 1.0}, {"PARA TOP", 1.0}, {"PARA WIDTH", 8.0},
                          {"PARA HEIGHT", 4.0}, {"DRAW PARAM ON", 1.0}, {"PRINT TEXT", 1.0}})
      display::Store_Setting(s, key, v);
    Layout();
  }
  void Layout() {
    const Page_Setup p = Read_Page_Setup(s);
    EXPECT_TRUE(Page_Layout(p, 210, 297, Whole_Sheet(p), g));
  }
  double Num(const char* key) { return display::Setting_Num(s, key, -1); }
  Page_Hit Hit(int x, int y) { return Hit_Test(s, measure, g, x, y); }
};

TEST(PageEdit, HitsFromTheTopLayerDownAndDragsComeBackAsCentimetres) {
  Edit_Session e;
  ASSERT_DOUBLE_EQ(e.g.Kx, 10);
  EXPECT_EQ(e.g.Frame.Left, 20);
  EXPECT_EQ(e.g.Frame.Top, 167);
  EXPECT_EQ(e.g.Frame.Bottom, 267);
  // The inverse: pixel 95 is 9.5 cm from the left, half across the frame.
  EXPECT_DOUBLE_EQ(e.g.Cm_X(95), 9.5);
  EXPECT_DOUBLE_EQ(e.g.Frame_Fraction_X(95), 0.5);
  EXPECT_DOUBLE_EQ(e.g.Frame_Fraction_Y(217), 0.5);

  // The frame: its body moves, its lower right corner resizes.
  Page_Hit h = e.Hit(100, 200);
  EXPECT_EQ(h.Kind, Hit_Kind::Frame);
  EXPECT_EQ(h.Part, Hit_Part::Body);
  EXPECT_EQ(Drag_Status(e.g, Read_Page_Setup(e.s), h.Box), "左 2.00, 下 3.00 cm   15.00 x 10.00 cm");
  // 30 px right and 20 px up: 3 cm further in, 2 cm higher.
  ASSERT_TRUE(Drop_Drag(e.s, e.undo, e.g, h, 30, -20));
  EXPECT_NEAR(e.Num("X-LEFT MARGIN"), 5.0, 1e-9);
  EXPECT_NEAR(e.Num("Y-BOTTOM MARGIN"), 5.0, 1e-9);
  EXPECT_NEAR(e.Num("X-LENGTH"), 15.0, 1e-9);
  EXPECT_EQ(Page_Undo_Caption(e.undo.Slots[0].Kind, false).Text, "取り消し(Main ｽﾍﾟｸﾄﾙの移動)");
  e.Layout();  // frame now 50 .. 200 across, 147 .. 247 down
  h = e.Hit(201, 246);
  EXPECT_EQ(h.Part, Hit_Part::Corner);
  // The corner 10 px right and 10 px down: 16 x 11 cm, standing 1 cm lower.
  ASSERT_TRUE(Drop_Drag(e.s, e.undo, e.g, h, 10, 10));
  EXPECT_NEAR(e.Num("X-LENGTH"), 16.0, 1e-9);
  EXPECT_NEAR(e.Num("Y-LENGTH"), 11.0, 1e-9);
  EXPECT_NEAR(e.Num("Y-BOTTOM MARGIN"), 4.0, 1e-9);
  ASSERT_TRUE(Undo_Pop(e.undo, e.s));
  ASSERT_TRUE(Undo_Pop(e.undo, e.s));
  EXPECT_NEAR(e.Num("X-LEFT MARGIN"), 2.0, 1e-9);
  EXPECT_NEAR(e.Num("Y-LENGTH"), 10.0, 1e-9);
  e.Layout();

  // The parameter block lies outside the frame: 10 .. 90 across, 10 .. 50 down.
  h = e.Hit(30, 30);
  EXPECT_EQ(h.Kind, Hit_Kind::Para);
  ASSERT_TRUE(Drop_Drag(e.s, e.undo, e.g, h, 5, 15));
  EXPECT_NEAR(e.Num("PARA LEFT"), 1.5, 1e-9);
  EXPECT_NEAR(e.Num("PARA TOP"), 2.5, 1e-9);

  // A text at pixel (50, 180): 0.2 of the frame across, 0.13 down; it lies
  // over the frame and is taken first.
  const int t = Add_Text(e.s, e.undo, Text_At(e.g, 50, 180, "NMR"));
  ASSERT_EQ(t, 0);
  EXPECT_FLOAT_EQ(e.s.Texts[0].X, 0.2f);
  EXPECT_FLOAT_EQ(e.s.Texts[0].Y, 0.13f);
  h = e.Hit(52, 182);
  EXPECT_EQ(h.Kind, Hit_Kind::Text);
  ASSERT_TRUE(Drop_Drag(e.s, e.undo, e.g, h, 15, -10));
  EXPECT_NEAR(e.s.Texts[0].X, 0.3, 1e-6);
  EXPECT_NEAR(e.s.Texts[0].Y, 0.03, 1e-6);

  // A line from (30, 250) to (130, 250): its end, then its body.
  ASSERT_EQ(Add_Line(e.s, e.undo, Line_Between(e.g, 30, 250, 130, 250, 1, 0)), 0);
  h = e.Hit(128, 251);
  EXPECT_EQ(h.Kind, Hit_Kind::Line);
  EXPECT_EQ(h.Part, Hit_Part::End2);
  ASSERT_TRUE(Drop_Drag(e.s, e.undo, e.g, h, 15, 10));
  EXPECT_NEAR(e.s.Lines[0].X2, 125.0 / 150, 1e-6);
  EXPECT_NEAR(e.s.Lines[0].Y2, 0.93, 1e-6);
  EXPECT_NEAR(e.s.Lines[0].X1, 10.0 / 150, 1e-6);
  EXPECT_EQ(e.Hit(88, 255).Kind, Hit_Kind::Line);  // on the shaft, away from the ends

  // Two pictures overlapping: the later is on top; its corner keeps the aspect.
  ASSERT_EQ(Add_Image(e.s, e.undo, e.g, {1, 2, 3}, 80, 180, 40, 20), 0);
  ASSERT_EQ(Add_Image(e.s, e.undo, e.g, {4, 5, 6}, 100, 190, 30, 30), 1);
  EXPECT_EQ(e.Hit(110, 195).Index, 1);
  EXPECT_EQ(e.Hit(85, 185).Index, 0);
  h = e.Hit(130, 220);
  EXPECT_EQ(h.Part, Hit_Part::Corner);
  EXPECT_EQ(Drag_Box(h, 15, 0).Bottom, 190 + 45);
  ASSERT_TRUE(Drop_Drag(e.s, e.undo, e.g, h, 15, 0));
  EXPECT_NEAR(e.s.Images[1].Width, 0.3, 1e-6);
  EXPECT_NEAR(e.s.Images[1].Height, 0.45, 1e-6);
  // To the back and undone: the order comes back.
  EXPECT_EQ(Image_To_Back(e.s, e.undo, 1), 0);
  EXPECT_EQ(e.s.Images[0].Body[0], 4);
  ASSERT_TRUE(Undo_Pop(e.undo, e.s));
  EXPECT_EQ(e.s.Images[1].Body[0], 4);
  EXPECT_EQ(Image_To_Front(e.s, e.undo, 0), 1);
  ASSERT_TRUE(Undo_Pop(e.undo, e.s));
  EXPECT_EQ(e.s.Images[0].Body[0], 1);

  // Outside everything there is nothing to take.
  EXPECT_EQ(e.Hit(205, 120).Kind, Hit_Kind::None);
}

TEST(PageEdit, UndoKeepsTwentyStepsWithTheirCaptionsAndListsStopAtTheirLimits) {
  Edit_Session e;
  ASSERT_EQ(Add_Text(e.s, e.undo, Text_At(e.g, 50, 200, "a")), 0);
  // 25 edits of the text's size: 1 .. 25 points.
  for (int k = 1; k <= 25; ++k) {
    Text_Rec t = e.s.Texts[0];
    t.Font_Size = static_cast<float>(k);
    ASSERT_TRUE(Change_Text(e.s, e.undo, 0, t));
  }
  EXPECT_FLOAT_EQ(e.s.Texts[0].Font_Size, 25);
  // Twenty steps back reach the size before the sixth edit; the oldest fell off.
  for (int k = 0; k < 20; ++k) ASSERT_TRUE(Undo_Pop(e.undo, e.s)) << k;
  EXPECT_FLOAT_EQ(e.s.Texts[0].Font_Size, 5);
  EXPECT_EQ(e.undo.Slots[0].Kind, Page_Undo_Empty);
  EXPECT_FALSE(Undo_Pop(e.undo, e.s));
  EXPECT_EQ(e.s.Texts.size(), 1u);

  // A delete undone puts the text back in its place; an add undone removes it.
  ASSERT_EQ(Add_Text(e.s, e.undo, Text_At(e.g, 60, 200, "b")), 1);
  ASSERT_TRUE(Delete_Text(e.s, e.undo, 0));
  EXPECT_EQ(Page_Undo_Caption(e.undo.Slots[0].Kind, false).Text, "取り消し(文字の削除)");
  ASSERT_TRUE(Undo_Pop(e.undo, e.s));
  EXPECT_EQ(e.s.Texts[0].Text, "a");
  EXPECT_EQ(Page_Undo_Caption(e.undo.Slots[0].Kind, false).Text, "取り消し(文字の追加)");
  ASSERT_TRUE(Undo_Pop(e.undo, e.s));
  EXPECT_EQ(e.s.Texts.size(), 1u);

  // Captions by kind; the text editor's own list while it is open.
  EXPECT_EQ(Page_Undo_Caption(22, false).Text, "取り消し(Image(Parameter,PeakList)の移動)");
  EXPECT_EQ(Page_Undo_Caption(25, false).Text, "取り消し(Imageの順序)");
  EXPECT_EQ(Page_Undo_Caption(36, false).Text, "取り消し(印刷のプロパティ)");
  EXPECT_EQ(Page_Undo_Caption(36, true).Text, "取り消し(入力)");
  EXPECT_EQ(Page_Undo_Caption(4032, false).Text, "取り消し(Peak 数値の位置(拡大図))");
  for (uint16_t unknown : {uint16_t{99}, uint16_t{Page_Undo_Empty}}) {
    EXPECT_EQ(Page_Undo_Caption(unknown, false).Text, "取り消し");
    EXPECT_FALSE(Page_Undo_Caption(unknown, false).Enabled);
  }

  // 200 texts, 200 lines and 20 pictures at most.
  while (e.s.Texts.size() < 200) Add_Text(e.s, e.undo, Text_At(e.g, 50, 200, "x"));
  EXPECT_EQ(Add_Text(e.s, e.undo, Text_At(e.g, 50, 200, "x")), -1);
  for (int k = 0; k < 200; ++k) Add_Line(e.s, e.undo, Line_Between(e.g, 30, 200, 60, 220, 0, 0));
  EXPECT_EQ(Add_Line(e.s, e.undo, Line_Between(e.g, 30, 200, 60, 220, 0, 0)), -1);
  for (int k = 0; k < 20; ++k) Add_Image(e.s, e.undo, e.g, {1}, 30, 200, 10, 10);
  EXPECT_EQ(Add_Image(e.s, e.undo, e.g, {1}, 30, 200, 10, 10), -1);

  // Kinds and dashes by their captions; grouped font and size inserts.
  EXPECT_EQ(Line_Kind_Table().size(), 16u);
  EXPECT_EQ(Line_Kind_Table()[13], "14. 右矢印中抜き");
  EXPECT_EQ(Dash_Table()[9], "二点鎖線(2)");
  ASSERT_TRUE(Set_Line_Kind(e.s, e.undo, 0, 40, 3));
  EXPECT_EQ(e.s.Lines[0].Kind, 15);
  EXPECT_EQ(e.s.Lines[0].Style, 3);
  EXPECT_EQ(Font_Group("Arial", "CH3"), "\\f:Arial(CH3)");
  EXPECT_EQ(Size_Group(14, "x"), "\\p14(x)");
  EXPECT_EQ(Size_Group(10.5, ""), "\\p10.5()");

  // Picture kinds by extension; metafiles by their headers.
  EXPECT_TRUE(Picture_Kind_Known("/tmp/a.Jpeg"));
  EXPECT_FALSE(Picture_Kind_Known("/tmp/a.gif"));
  EXPECT_EQ(Picture_Refused_Text("x.gif"), "ﾌｧｲﾙが不正です。または,.GIF");
  std::vector<uint8_t> wmf = {1, 0, 9, 0, 0, 3};
  wmf.resize(18);
  EXPECT_TRUE(Is_Metafile_Bytes(wmf));
  wmf[2] = 8;
  EXPECT_FALSE(Is_Metafile_Bytes(wmf));
}

}  // namespace
}  // namespace tevo::page
