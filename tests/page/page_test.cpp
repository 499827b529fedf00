// The printed sheet: paper sizes, the frame in pixels worked out by hand
// from cm x dpi / 2.54, and the page painted on the recording surface with
// its texts and lines where the page numbers put them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <vector>

#include "datafiles/quiet_session.h"
#include "deconvolution/line_model.h"
#include "display/style.h"
#include "page/bitmap_export.h"
#include "page/draw_page.h"
#include "page/page_model.h"
#include "page/parameter_block.h"
#include "page/print_lists.h"
#include "page/printer_setup.h"
#include "page/window_pages.h"
#include "platform/recording_surface.h"
#include "support/test_support.h"

namespace tevo::page {
namespace {

using platform::Recorded_Op;
using platform::RecordingSurface;

struct Page_Session : test::Quiet_Session {
  void Set(const char* key, double v) { display::Store_Setting(s, key, v); }
};

TEST(Page, PaperSizesNamesAndCaptions) {
  double h = 0, w = 0;
  EXPECT_EQ(Paper_Size(999, 0, h, w, false), "A4");
  EXPECT_DOUBLE_EQ(w, 210);
  EXPECT_DOUBLE_EQ(h, 297);
  EXPECT_EQ(Paper_Size(8, 1, h, w, true), "A3");
  EXPECT_DOUBLE_EQ(w, 42);
  EXPECT_DOUBLE_EQ(h, 29.7);
  EXPECT_EQ(Paper_Text(9, 1, true), "A4 横 29.7x21 cm");
  EXPECT_EQ(Paper_Text(101, 0, false), "A4 Half 縦 58.7x83 mm");
  EXPECT_EQ(Paper_Code("b5"), 13);
  EXPECT_EQ(Paper_Code("A4 Full Column"), 102);
  EXPECT_EQ(Paper_Code("Letter"), -1);
}

TEST(Page, FrameAndBlockInPixelsAtThreeHundredDpi) {
  Page_Session ps;
  ps.Set("PAPER SIZE", 9);
  ps.Set("X-LEFT MARGIN", 1);
  ps.Set("X-LENGTH", 18);
  ps.Set("Y-BOTTOM MARGIN", 2.5);
  ps.Set("Y-LENGTH", 12);
  ps.Set("Y-BIAS", 2);
  ps.Set("Y-LEVEL", 0.5);
  ps.Set("PARA LEFT", 1.5);
  ps.Set("PARA TOP", 1.5);
  ps.Set("PARA WIDTH", 10);
  ps.Set("PARA HEIGHT", 5);
  const Page_Setup p = Read_Page_Setup(ps.s);
  EXPECT_TRUE(Page_Fits_Sheet(p));
  // A4 portrait at 300 dpi: 21 cm = 2480.3 px, 29.7 cm = 3507.9 px.
  ASSERT_EQ(Sheet_Pixels(p.Paper_Width, 300), 2480);
  ASSERT_EQ(Sheet_Pixels(p.Paper_Height, 300), 3508);
  Page_Geometry g;
  ASSERT_TRUE(Page_Layout(p, 2480, 3508, Whole_Sheet(p), g));
  // kx = 2480 / 21 = 118.095 px/cm, ky = 3508 / 29.7 = 118.114 px/cm.
  EXPECT_EQ(g.Frame.Left, 118);     // 1 cm
  EXPECT_EQ(g.Frame.Right, 2244);   // 19 cm: 2243.8
  EXPECT_EQ(g.Frame.Bottom, 3213);  // 27.2 cm from the top: 3212.7
  EXPECT_EQ(g.Frame.Top, 1795);     // 15.2 cm: 1795.3
  EXPECT_EQ(g.Zero_Y, 2976);        // 25.2 cm: 2976.5
  EXPECT_EQ(g.Axis_Y, 3154);        // 26.7 cm: 3153.7
  EXPECT_EQ(g.Para.Left, 177);
  EXPECT_EQ(g.Para.Top, 177);
  EXPECT_EQ(g.Para.Right, 1358);    // 11.5 cm
  EXPECT_EQ(g.Para.Bottom, 768);    // 6.5 cm: 767.7
  EXPECT_NEAR(g.Scale, 300.0 / 72, 0.01);
  EXPECT_EQ(g.Line_Width(3), 4);    // 0.3 mm = 3.5 px
  EXPECT_EQ(g.Line_Width(0), 1);    // never thinner than a pixel
  // A window of the sheet (10..20 cm across, 5..15 cm down) on 1000 x 1000
  // pixels: 100 px/cm, the window's corner at the origin.
  ASSERT_TRUE(Page_Layout(p, 1000, 1000, {10, 20, 5, 15}, g));
  EXPECT_EQ(g.X(10), 0);
  EXPECT_EQ(g.Frame.Left, -900);
  EXPECT_EQ(g.Frame.Top, 1020);
  EXPECT_FALSE(Page_Layout(p, 1000, 1000, {3, 3, 0, 1}, g));

  // The stored places (a 32 cm frame) leave A4 portrait; the standard ones
  // fit every paper both ways.
  Page_Session fresh;
  EXPECT_FALSE(Page_Fits_Sheet(Read_Page_Setup(fresh.s)));
  for (const Paper& paper : Paper_Table()) {
    for (int orient : {0, 1}) {
      fresh.Set("PAPER SIZE", paper.Code);
      fresh.Set("PAPER ORIENT", orient);
      Standard_Page_Places(fresh.s);
      EXPECT_TRUE(Page_Fits_Sheet(Read_Page_Setup(fresh.s))) << paper.Name << " " << orient;
    }
  }

}

TEST(Page, BitmapSizesKeepTheAspectUnderTheLimit) {
  EXPECT_EQ(Copy_Size(3000, 1500), (Bitmap_Size{2048, 1024}));
  EXPECT_EQ(Copy_Size(1000, -3000), (Bitmap_Size{683, 2048}));  // a range dragged upward
  EXPECT_EQ(Copy_Size(800, 600), (Bitmap_Size{800, 600}));
  EXPECT_EQ(Copy_Size(1, 600), Bitmap_Size{});
  // Typed sides: 6000 on the PNG panel is 5000; the other side follows, and
  // a side that would pass the limit pulls the typed one back.
  EXPECT_EQ(Size_From_Width(6000, 0.5f, Png_Limit), (Bitmap_Size{5000, 2500}));
  EXPECT_EQ(Size_From_Width(1500, 2.0f, Bitmap_Limit), (Bitmap_Size{1024, 2048}));
  EXPECT_EQ(Size_From_Height(1000, 0.5f, Bitmap_Limit), (Bitmap_Size{2000, 1000}));
  // The estimate under the fields: w x h x 0.003 Kbyte, a second decimal
  // only when it counts.
  EXPECT_EQ(Size_Estimate_Text({1000, 500}), "1500.0 Kbyte");
  EXPECT_EQ(Size_Estimate_Text({683, 2048}), "4196.35 Kbyte");
  EXPECT_EQ(Size_Estimate_Text({2, 1}), "0.01 Kbyte");
}

TEST(Page, PictureRangeNamesAndTheSaveThatKeepsTheOldFile) {
  Page_Session ps;
  // A range dragged from the bottom right to the middle of an A4 sheet.
  const Page_Window w = Copy_Window(Read_Page_Setup(ps.s), {0.75, 1.0, 0.25, 0.5});
  EXPECT_DOUBLE_EQ(w.Left, 5.25);
  EXPECT_DOUBLE_EQ(w.Right, 15.75);
  EXPECT_DOUBLE_EQ(w.Top, 14.85);
  EXPECT_DOUBLE_EQ(w.Bottom, 29.7);
  EXPECT_EQ(Open_Copy_Range(ps.s, 1, 600), Bitmap_Size{});
  EXPECT_EQ(ps.Last_Message(), "コピーする範囲を設定してください");
  EXPECT_EQ(ps.ui.shown.back().title, "範囲エラー");

  std::string name = "shot";
  EXPECT_EQ(Check_Export_Name(ps.s, name, Export_Kind::Png), 0);
  EXPECT_EQ(name, "shot.png");
  name = "SHOT.PNG";
  EXPECT_EQ(Check_Export_Name(ps.s, name, Export_Kind::Png), 0);
  EXPECT_EQ(name, "SHOT.PNG");
  name = "shot.png";
  EXPECT_EQ(Check_Export_Name(ps.s, name, Export_Kind::Bmp), 1);
  EXPECT_EQ(ps.Last_Message(), "ﾌｧｲﾙが不正です。または,\nﾌｧｲﾙ名の拡張子が bmp でない");
  EXPECT_EQ(ps.ui.shown.back().title, "ファイル名エラー");

  // Written under the work name and moved in place; a failed write, even
  // one that left half a file, puts the old file back; nothing else stays.
  test::Temp_Dir dir;
  const std::filesystem::path target = dir / "shot.png";
  test::Write_Bytes(target, {'o', 'l', 'd'});
  const auto writer = [](const char* bytes, int status) {
    return [bytes, status](const std::string& name) {
      EXPECT_EQ(name.substr(name.size() - 3), ".$$");
      std::ofstream(name, std::ios::binary) << bytes;
      return status;
    };
  };
  EXPECT_EQ(Save_Export(ps.s, Export_Kind::Png, target.string(), writer("half", -1)), -1);
  EXPECT_EQ(test::Read_Text(target), "old");
  EXPECT_EQ(Save_Export(ps.s, Export_Kind::Png, (dir / "shot").string(), writer("new", 0)), 0);
  EXPECT_EQ(test::Read_Text(target), "new");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
  // Without a name the dialog asks with the PNG title and filter.
  EXPECT_EQ(Save_Export(ps.s, Export_Kind::Png, {}, writer("x", 0)), 1);
  EXPECT_EQ(ps.ui.file_requests.back().title, "画面の保存(PNG)");
  EXPECT_EQ(ps.ui.file_requests.back().filter, "PNG形式(*.png)|*.png|");
}

TEST(Page, PrinterOrientationAgainstTheSetting) {
  Page_Session ps;
  // Printer landscape, setting portrait: asked once; "ユーザー(現)の設定を使う"
  // prints portrait and keeps the setting.
  ps.ui.choice_answers = {1, 0, -1};
  EXPECT_EQ(Choose_Print_Orientation(ps.s, 1), 0);
  EXPECT_EQ(ps.ui.choice_answers.size(), 2u);
  EXPECT_EQ(ps.s.settings.Int("PAPER ORIENT"), 0);
  // "プリンターの設定を使う": the setting turns landscape; then they agree and
  // nothing is asked.
  EXPECT_EQ(Choose_Print_Orientation(ps.s, 1), 1);
  EXPECT_EQ(ps.s.settings.Int("PAPER ORIENT"), 1);
  EXPECT_EQ(Choose_Print_Orientation(ps.s, 1), 1);
  EXPECT_EQ(ps.ui.choice_answers.size(), 1u);
  // Cancelled: no print.
  EXPECT_EQ(Choose_Print_Orientation(ps.s, 0), -1);
}

TEST(Page, DashesFollowTheTableAndCarryTheirPhase) {
  RecordingSurface r(2000, 100);
  double phase = 0;
  r.Move_To(0, 10);
  // Style 2: pen down for 0-0.3 and 0.5-0.8 of each 100 px cycle.
  Draw_Dash_Line(r, 1000, 10, 2, 100, phase);
  std::vector<std::pair<int, int>> dashes;
  for (const Recorded_Op& op : r.Ops_Of(Recorded_Op::Kind::Line_To))
    if (op.at.x != op.from.x) dashes.push_back({op.from.x, op.at.x});
  ASSERT_EQ(dashes.size(), 20u);
  EXPECT_EQ(dashes[0], std::make_pair(0, 30));
  EXPECT_EQ(dashes[1], std::make_pair(50, 80));
  EXPECT_EQ(dashes[19], std::make_pair(950, 980));
  EXPECT_DOUBLE_EQ(phase, 0);
  // Broken at 45 px, the second piece goes on with the pattern.
  r.Forget_Ops();
  r.Move_To(0, 10);
  Draw_Dash_Line(r, 45, 10, 2, 100, phase);
  EXPECT_DOUBLE_EQ(phase, 45);
  Draw_Dash_Line(r, 100, 10, 2, 100, phase);
  dashes.clear();
  for (const Recorded_Op& op : r.Ops_Of(Recorded_Op::Kind::Line_To))
    if (op.at.x != op.from.x) dashes.push_back({op.from.x, op.at.x});
  EXPECT_EQ(dashes, (std::vector<std::pair<int, int>>{{0, 30}, {50, 80}}));
  // Style 0 is one plain line.
  r.Forget_Ops();
  Draw_Dash_Line(r, 500, 10, 0, 100, phase);
  EXPECT_EQ(r.Ops_Of(Recorded_Op::Kind::Line_To).size(), 1u);
}

TEST(Page, TextsLinesAndParameterBlockStandWhereThePageNumbersPutThem) {
  Page_Session ps;
  ps.Set("PAPER SIZE", 9);
  ps.Set("PAPER ORIENT", 1);  // A4 landscape, 29.7 x 21 cm
  ps.Set("X-LEFT MARGIN", 2);
  ps.Set("X-LENGTH", 25);
  ps.Set("Y-BOTTOM MARGIN", 2);
  ps.Set("Y-LENGTH", 15);
  ps.Set("PARA LEFT", 3);
  ps.Set("PARA TOP", 1);
  ps.Set("PARA WIDTH", 10);
  ps.Set("PARA HEIGHT", 3);
  ps.Set("PAPER COLOR", 0xE0FFFF);
  ps.s.Param.OBNUC = "1H";
  Text_Rec t;
  t.X = 0.25f;
  t.Y = 0.5f;
  t.Font_Size = 2;  // raised to 3 points
  t.Text = "\\i(J) = 7 Hz";
  ps.s.Texts.push_back(t);
  Line_Rec plain;
  plain.X1 = 0.1f, plain.Y1 = 0.2f, plain.X2 = 0.6f, plain.Y2 = 0.2f;
  plain.Width = 5;  // 0.5 mm
  plain.Colour = 0x0000FF;
  Line_Rec arrow = plain;
  arrow.Y1 = arrow.Y2 = 0.8f;
  arrow.Kind = 5;  // right-hand solid head
  ps.s.Lines = {plain, arrow};

  // 300 dpi: 29.7 cm = 3508 px, 21 cm = 2480 px.
  RecordingSurface r(3508, 2480, 300);
  Draw_Page(ps.s, r);
  const double k = 300 / 2.54;  // px per cm, both ways to 0.02 %
  auto near = [&](int px, double cm) { EXPECT_NEAR(px, cm * k, 1.0) << cm << " cm"; };

  // The sheet is filled first in the paper colour, then the frame.
  const std::vector<Recorded_Op> fills = r.Ops_Of(Recorded_Op::Kind::Polygon);
  ASSERT_GE(fills.size(), 3u);
  EXPECT_EQ(fills[0].colour, 0xE0FFFF);
  near(fills[1].points[0].x, 2);   // frame left
  near(fills[1].points[0].y, 4);   // frame top: 21 - 2 - 15 cm
  near(fills[1].points[2].x, 27);
  near(fills[1].points[2].y, 19);

  // The text's corner at a quarter of the frame across and half down: 8.25
  // cm, 11.5 cm; its size is 3 points.
  const std::vector<Recorded_Op> texts = r.Ops_Of(Recorded_Op::Kind::Text_Out);
  const auto j = std::find_if(texts.begin(), texts.end(), [](const Recorded_Op& op) { return op.text == "J"; });
  ASSERT_NE(j, texts.end());
  near(j->at.x, 8.25);
  near(j->at.y, 11.5);
  EXPECT_NEAR(j->height, 3 * 300.0 / 72, 0.5);
  EXPECT_EQ(j->font.Italic, 1);

  // The plain line from 4.5 cm to 17 cm, 7 cm down, 0.5 mm = 6 px wide.
  const std::vector<Recorded_Op> lines = r.Ops_Of(Recorded_Op::Kind::Line_To);
  const auto red = std::find_if(lines.begin(), lines.end(), [](const Recorded_Op& op) {
    return op.colour == 0x0000FF && op.from.y == op.at.y && op.at.y < 1000;
  });
  ASSERT_NE(red, lines.end());
  near(red->from.x, 4.5);
  near(red->at.x, 17);
  near(red->at.y, 7);
  EXPECT_EQ(red->width, 6);
  // The arrow's solid head has its tip at the second end, 17 cm, 16 cm down.
  const auto head = std::find_if(fills.begin(), fills.end(), [](const Recorded_Op& op) {
    return op.colour == 0x0000FF && op.points.size() == 3;
  });
  ASSERT_NE(head, fills.end());
  near(head->points[0].x, 17);
  near(head->points[0].y, 16);

  // The parameter block: its captions and values inside its rectangle.
  const std::string all = r.All_Text();
  EXPECT_NE(all.find("観測核"), std::string::npos);
  int values = 0;
  for (const Recorded_Op& op : texts) {
    if (op.text != "1H") continue;
    ++values;
    EXPECT_GT(op.at.x, 3 * k);
    EXPECT_LT(op.at.x, 13 * k);
    EXPECT_GT(op.at.y, 1 * k);
    EXPECT_LT(op.at.y, 4 * k);
  }
  EXPECT_EQ(values, 1);
  // Its lines stop at the block's bottom: 3 cm hold about six of the
  // eleven rows, so the scans (row 9) are left out.
  EXPECT_EQ(all.find("積算回数"), std::string::npos);

  // Switched off, texts and lines are left out.
  ps.Set("PRINT TEXT", 0);
  r.Forget_Ops();
  Draw_Page(ps.s, r);
  EXPECT_EQ(r.All_Text().find("J"), std::string::npos);
}

TEST(Page, AnArrayStackSlantsAcrossTheFrame) {
  Page_Session ps;
  Session& s = ps.s;
  s.Array_Rows = 3;
  Alloc_Point_Arrays(s, 256);
  s.Spec_Points = 256;
  for (int i = 0; i < 256; ++i) {
    s.Spec_Axis[static_cast<std::size_t>(i)] = i * 0.01f;
    for (std::size_t r = 0; r < 3; ++r) s.Spec_Re(static_cast<std::size_t>(i), r) = 0.5f;
  }
  Build_Disp_Arrays(s, 0);
  s.Max_Abs = 1;
  s.Y_Full_Scale = 1;
  s.X_Left = s.Spec_Axis[255];
  s.X_Right = 0;
  for (const auto& [key, v] : {std::pair{"PAPER SIZE", 9.0}, {"X-LEFT MARGIN", 1.0}, {"X-LENGTH", 18.0},
                               {"Y-BOTTOM MARGIN", 2.5}, {"Y-LENGTH", 12.0}, {"DISP ARRAY MODE", 1.0},
                               {"X AXIS RATIO", 0.2}, {"Y AXIS RATIO", 0.5}, {"MAIN SPECT COL", 0x123456}})
    ps.Set(key, v);
  // 100 px per cm: the frame from 100 to 1900 px; with a ratio of 0.2 the
  // first row spans 100 .. 1540, the second 280 .. 1720 and the last
  // 460 .. 1900, each row flat at its own height.
  RecordingSurface r(2100, 2970, 254);
  Draw_Page(s, r);
  std::map<int, std::pair<int, int>> rows;  // y -> x extent of level strokes
  for (const Recorded_Op& op : r.Ops_Of(Recorded_Op::Kind::Line_To)) {
    if (op.colour != 0x123456 || op.from.y != op.at.y) continue;
    auto [it, fresh] = rows.try_emplace(op.at.y, std::min(op.from.x, op.at.x), std::max(op.from.x, op.at.x));
    it->second.first = std::min({it->second.first, op.from.x, op.at.x});
    it->second.second = std::max({it->second.second, op.from.x, op.at.x});
  }
  // Each row's own level stretch is there (its start joins the edge below it
  // in a few pixels; the stack also draws joins and edges).
  for (const auto& [first, last] : {std::pair{460, 1900}, {280, 1720}, {100, 1540}}) {
    const bool found = std::any_of(rows.begin(), rows.end(), [&, first = first, last = last](const auto& row) {
      return std::abs(row.second.first - first) <= 8 && std::abs(row.second.second - last) <= 2;
    });
    EXPECT_TRUE(found) << first << " .. " << last;
  }

  // Black and white: every ink black, the grounds (the tinted sheet and
  // frame fill) left white as the paper; the rows are still drawn.
  ps.Set("PRINTER TYPE", 1);
  ps.Set("PAPER COLOR", 0xE0FFFF);
  ps.Set("COL BG PRINT", 0xC0C0C0);
  ps.Set("DRAW SCALE ON", 1);
  r.Forget_Ops();
  Draw_Page(s, r);
  int black_rows = 0;
  for (const Recorded_Op& op : r.Ops()) {
    if (op.kind == Recorded_Op::Kind::Line_To && op.from.y == op.at.y && op.colour == 0) ++black_rows;
    EXPECT_TRUE(op.colour == 0 || op.colour == 0xFFFFFF) << static_cast<int>(op.kind) << " " << op.colour;
  }
  EXPECT_GT(black_rows, 3);
  EXPECT_EQ(r.Ops_Of(Recorded_Op::Kind::Polygon).front().colour, 0xFFFFFF);
}

TEST(Page, PrinterDialogRowsAndKeys) {
  EXPECT_EQ(Paper_Code_Of_Index(0), 8);
  EXPECT_EQ(Paper_Code_Of_Index(1), 9);
  EXPECT_EQ(Paper_Code_Of_Index(2), 11);
  EXPECT_EQ(Paper_Code_Of_Index(3), 12);
  EXPECT_EQ(Paper_Code_Of_Index(4), 13);
  EXPECT_EQ(Paper_Code_Of_Index(5), 101);
  EXPECT_EQ(Paper_Code_Of_Index(6), 102);
  EXPECT_EQ(Paper_Code_Of_Index(7), 9);
  EXPECT_EQ(Paper_Code_Of_Index(-1), 9);
  // OK stores the keys, and reading them back gives the dialog's rows.
  Page_Session ps;
  Printer_Dialog d;
  d.Printer = "lab";
  d.Paper_Index = 4;
  d.Orient = 1;
  d.Copies = 0;
  d.Colour_Mode = 1;
  EXPECT_EQ(Store_Printer_Setup(ps.s, d).Copies, 1);
  EXPECT_EQ(ps.s.settings.Int("PAPER SIZE"), 13);
  EXPECT_EQ(Print_Colour_Mode(ps.s), 1);
  const Printer_Dialog back = Read_Printer_Setup(ps.s);
  EXPECT_EQ(back.Printer, "lab");
  EXPECT_EQ(back.Paper_Index, 4);
  EXPECT_EQ(back.Orient, 1);
  EXPECT_EQ(Window_Paper_Caption(ps.s), "B5 横置");
  // A paper code outside the list shows as A4.
  ps.Set("PAPER SIZE", 10);
  EXPECT_EQ(Read_Printer_Setup(ps.s).Paper_Index, 1);
  EXPECT_EQ(Window_Paper_Caption(ps.s), "A4 横置");
  // The lists' paper is a group of its own, duplex included; the page's
  // paper stays.
  d.Paper_Index = 5;
  d.Orient = 0;
  d.Bin = 2;
  d.Duplex = 2;
  Store_Printer_Setup(ps.s, d, Printer_Group::List);
  EXPECT_EQ(ps.s.settings.Text("PAPER SIZE LIST"), "101");
  EXPECT_EQ(ps.s.settings.Text("PAPER DUPL LIST"), "2");
  EXPECT_EQ(ps.s.settings.Int("PAPER SIZE"), 10);
  EXPECT_EQ(ps.s.settings.Int("PAPER ORIENT"), 1);
  const Printer_Dialog list = Read_Printer_Setup(ps.s, Printer_Group::List);
  EXPECT_EQ(std::vector<int>({list.Paper_Index, list.Orient, list.Bin, list.Duplex}), std::vector<int>({5, 0, 2, 2}));
  double width = 0, height = 0;
  List_Paper_Cm(ps.s, 0, width, height);
  EXPECT_DOUBLE_EQ(width, 5.87);
}

TEST(Page, ParameterLinesTakeTagsCaptionsAndUnits) {
  Page_Session ps;
  ps.s.Param.OBFRQ = 399.78f;
  ps.s.Param.SLVNT = "CDCL3";
  ps.s.settings.Para_Table = "OBFRQ|周波数| MHz\r\nSLVNT\r\n-- 測定条件 --";
  const std::vector<Parameter_Row> rows = Parameter_Rows(ps.s);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].caption, "周波数");
  EXPECT_EQ(rows[0].value, "399.78 MHz");
  EXPECT_EQ(rows[1].caption, "SLVNT");
  EXPECT_EQ(rows[1].value, "CDCL3");
  EXPECT_EQ(rows[2].caption, "-- 測定条件 --");
  EXPECT_TRUE(rows[2].value.empty());
  // The list editor's fields and back; empty lines and empty ends go.
  const std::vector<Parameter_Line> lines = Parameter_Lines("OBFRQ|周波数| MHz\r\nSLVNT\r\n\r\nSCANS||");
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0], (Parameter_Line{"OBFRQ", "周波数", " MHz"}));
  EXPECT_EQ(Parameter_Lines_Text(lines), "OBFRQ|周波数| MHz\r\nSLVNT\r\nSCANS");

  // "Fileを使う": the parameter file named in the settings, always ".prt",
  // saved as Shift-JIS lines and printed from then on.
  test::Temp_Dir dir;
  ps.s.App_Path = dir.path().string();
  ps.s.settings.Set("PRINT TABLE DIR", (dir / "mine.txt").string());
  ps.Set("PARAMETER TABLE", 1);
  EXPECT_EQ(Parameter_File_Text(ps.s), ps.s.settings.Para_Table);  // no file yet: the list in force
  ASSERT_EQ(Save_Parameter_File(ps.s, "SLVNT|溶媒\r\n  OBFRQ  "), 0);
  EXPECT_EQ(test::Read_Text(dir / "mine.prt"), "SLVNT|\x97\x6E\x94\x7D\r\n  OBFRQ  \r\n");
  EXPECT_EQ(Parameter_Text(ps.s), "SLVNT|溶媒\r\nOBFRQ");
  EXPECT_EQ(Parameter_Rows(ps.s)[0].caption, "溶媒");
  ps.Set("PARAMETER TABLE", 0);
  EXPECT_EQ(Parameter_Rows(ps.s)[0].caption, "周波数");
}

TEST(Page, PeakListPagesDecimalPointsAndThePagesList) {
  Page_Session ps;
  Session& s = ps.s;
  Alloc_Point_Arrays(s, 1024);
  s.Spec_Points = 1024;
  s.Spectrum_Frequency = 400;
  s.Param.OBNUC = "1H";
  for (int i = 0; i < 1024; ++i) s.Spec_Axis[static_cast<std::size_t>(i)] = i * 0.0125f;
  Build_Disp_Arrays(s, 0);
  for (int k = 0; k < 100; ++k) {
    Peak_Rec p;
    p.Point = 8 + 10 * k;
    p.Freq_Hz = s.Spec_Axis[static_cast<std::size_t>(p.Point)] * 400;
    s.Peaks.push_back(p);
  }
  // A4 at 72 dpi: one pixel a point; 10-point rows 10.7 px apart below a
  // head block that ends at 84.8 px: (842 - 42 - 84.8) / 10.7 = 66 rows.
  RecordingSurface r(595, 842, 72);
  EXPECT_TRUE(Print_Peak_List(s, r, {0, 42, 1.0}));
  auto numbers = [&r] {
    std::vector<std::string> n;
    for (const Recorded_Op& op : r.Ops_Of(Recorded_Op::Kind::Text_Out))
      if (op.at.x < 80 && op.text.find_first_not_of("0123456789") == std::string::npos) n.push_back(op.text);
    return n;
  };
  std::vector<std::string> first = numbers();
  ASSERT_EQ(first.size(), 66u);
  EXPECT_EQ(first.back(), "66");
  // 0.1000 and 10.1000 ppm (peaks 1 and 101 of the axis): the longer
  // whole part starts one character (5 px) further left.
  int x_small = 0, x_large = 0;
  for (const Recorded_Op& op : r.Ops_Of(Recorded_Op::Kind::Text_Out)) {
    if (op.text == "0.1000") x_small = op.at.x;
    if (op.text == "1.1000") x_large = op.at.x;
  }
  EXPECT_GT(x_small, 0);
  EXPECT_EQ(x_large, x_small);
  r.Forget_Ops();
  EXPECT_FALSE(Print_Peak_List(s, r, {1, 42, 1.0}));
  const std::vector<std::string> second = numbers();
  ASSERT_EQ(second.size(), 34u);
  EXPECT_EQ(second.front(), "67");
  int x_ten = 0;
  for (const Recorded_Op& op : r.Ops_Of(Recorded_Op::Kind::Text_Out))
    if (op.text == "10.1000") x_ten = op.at.x;
  EXPECT_EQ(x_ten, x_small - 5);

  // On the page (no axis, no parameter block: no other numbers), the list
  // fills its rectangle (parts of the frame, up from its bottom) and stops
  // there: frame 1 .. 19 cm across, 15.2 .. 27.2 cm
  // down; the list from 2.8 cm across and 16.4 cm down, 5.4 x 2.4 cm.
  for (const auto& [key, v] : {std::pair{"PAPER SIZE", 9.0}, {"X-LEFT MARGIN", 1.0}, {"X-LENGTH", 18.0},
                               {"Y-BOTTOM MARGIN", 2.5}, {"Y-LENGTH", 12.0}, {"PEAK LIST TABLE", 1.0},
                               {"PEAK LIST LEFT", 0.1}, {"PEAK LIST TOP", 0.9}, {"PEAK LIST WIDTH", 0.3},
                               {"PEAK LIST HEIGHT", 0.2}, {"DRAW SCALE ON", 0.0}, {"DRAW PARAM ON", 0.0}})
    ps.Set(key, v);
  s.X_Left = 12.8f;
  s.X_Right = 0;
  r.Forget_Ops();
  Draw_Page(s, r);
  const double k = 72 / 2.54;
  std::vector<std::string> listed;
  for (const Recorded_Op& op : r.Ops_Of(Recorded_Op::Kind::Text_Out)) {
    if (op.text.find_first_not_of("0123456789") != std::string::npos || op.at.x > 5 * k) continue;
    listed.push_back(op.text);
    EXPECT_GT(op.at.x, 2.8 * k);
    EXPECT_GT(op.at.y, 16.4 * k);
    EXPECT_LT(op.at.y, 18.8 * k);
  }
  // 2.4 cm = 68 px less the head block and the column heads (4 rows of
  // 9.6 px): three rows.
  EXPECT_EQ(listed, (std::vector<std::string>{"1", "2", "3"}));

  // Peak tops: 3 mm marks; the first peak's number moved 1 cm left and
  // 0.5 cm up on its leader.
  ps.Set("DRAW PEAK TOP", 1);
  ps.Set("PEAK TOP NUM", 1);
  s.Peaks[0].Label_Dx = -1;
  s.Peaks[0].Label_Dy = 0.5f;
  r.Forget_Ops();
  Draw_Page(s, r);
  std::vector<Recorded_Op> marks, leaders;
  for (const Recorded_Op& op : r.Ops_Of(Recorded_Op::Kind::Line_To))
    if (op.colour == 0x0000FF) (op.from.x == op.at.x ? marks : leaders).push_back(op);
  ASSERT_FALSE(marks.empty());
  EXPECT_NEAR(marks[0].from.y - marks[0].at.y, 0.3 * k, 1);
  ASSERT_EQ(leaders.size(), 1u);
  EXPECT_NEAR(leaders[0].at.x - leaders[0].from.x, -1 * k, 1);
  EXPECT_NEAR(leaders[0].from.y - leaders[0].at.y, 0.5 * k, 1);
}

// The spectrometer's layout of 120 peaks, the array list, the T1/T2 pairs
// and the fitted lines: the head texts, values as printed, and the pages.
TEST(Page, JeolArrayT1AndLineListsHeadsValuesAndPages) {
  Page_Session ps;
  Session& s = ps.s;
  Alloc_Point_Arrays(s, 2048);
  s.Spec_Points = 2048;
  s.Spectrum_Frequency = 400;
  s.Param.OBNUC = "1H";
  s.Axis_Unit = 2;
  s.Param.RESOL = 5;  // 0.0125 ppm at 400 MHz
  for (int i = 0; i < 2048; ++i) s.Spec_Axis[static_cast<std::size_t>(i)] = i * 0.0125f;
  // Peak k (from 0) at point 8 + 16 k, height k + 1: the last is the highest.
  for (int k = 0; k < 120; ++k) {
    Peak_Rec p;
    p.Point = 8 + 16 * k;
    p.Freq_Hz = s.Spec_Axis[static_cast<std::size_t>(p.Point)] * 400;
    s.Spec_Re(static_cast<std::size_t>(p.Point), 0) = static_cast<float>(k + 1);
    s.Peaks.push_back(p);
  }
  Build_Disp_Arrays(s, 0);
  RecordingSurface r(595, 842, 72);
  const auto texts = [&r] {
    std::vector<std::string> t;
    for (const Recorded_Op& op : r.Ops_Of(Recorded_Op::Kind::Text_Out)) t.push_back(op.text);
    return t;
  };
  // A text as drawn, leading spaces aside.
  const auto has = [](const std::vector<std::string>& t, const std::string& x) {
    const auto trim = [](const std::string& v) { return v.substr(std::min(v.size(), v.find_first_not_of(' '))); };
    return std::any_of(t.begin(), t.end(), [&](const std::string& v) { return trim(v) == trim(x); });
  };
  // Three head lines and the column heads (6 x 1.5 rows of 10.7 px) under
  // the 42 px margin leave (800 - 106.2) / 10.7 = 64 rows: two pages.
  EXPECT_TRUE(Print_List(s, List_Kind::Peaks, 1, r, {0, 42, 1.0}));
  std::vector<std::string> t = texts();
  EXPECT_TRUE(has(t, " POSITION KHz"));
  EXPECT_TRUE(has(t, " MXINT  120     NGAIN  0     PEAK  120"));
  // Peak 1 at 0.1 ppm = 40 Hz = 0.04 kHz, 1/120 of the highest: no bar;
  // peak 60 half as high as the highest, with half its 22 "+".
  EXPECT_TRUE(has(t, "0.1000") && has(t, "40.00") && has(t, "0.0400000") && has(t, "0.8"));
  EXPECT_TRUE(has(t, "64") && !has(t, "65"));
  EXPECT_TRUE(has(t, "50.0") && has(t, std::string(11, '+')));  // peak 60
  r.Forget_Ops();
  EXPECT_FALSE(Print_List(s, List_Kind::Peaks, 1, r, {1, 42, 1.0}));
  t = texts();
  EXPECT_TRUE(has(t, "120") && has(t, "100.0") && has(t, std::string(22, '+')));
  s.Axis_Unit = 0;
  r.Forget_Ops();
  Print_List(s, List_Kind::Peaks, 1, r, {0, 42, 1.0});
  EXPECT_TRUE(has(texts(), " POSITION PPM"));

  // Three rows of delays 0.01, 0.1 and 1.5 s whose sums over points 1..2
  // are -2, 1 and 4: printed as parts of 4.
  s.Array_Rows = 3;
  s.Spec_Re.Allocate(2048, 3);
  const float sums[3][2] = {{-1, -1}, {0.25f, 0.75f}, {3, 1}};
  for (int row = 0; row < 3; ++row)
    for (int i = 0; i < 2; ++i) s.Spec_Re(static_cast<std::size_t>(i + 1), static_cast<std::size_t>(row)) = sums[row][i];
  s.Delay_List = {0.01f, 0.1f, 1.5f};
  s.Select_Start = 2;
  s.Select_End = 1;
  r.Forget_Ops();
  EXPECT_FALSE(Print_List(s, List_Kind::Array, 0, r, {0, 42, 1.0}));
  t = texts();
  for (const char* x : {" Data No.= 1", " Start:  0.025 ppm", " End:    0.013 ppm", "0.01", "1.5", "-0.5", "0.25", "1.0"})
    EXPECT_TRUE(has(t, x)) << x;

  // The T1/T2 pairs: seven places, six from 10 up, five from 100 up.
  s.User_Name = "山田";
  s.Intensity_Pairs = {{0.5f, -0.123456789f}, {12.25f, 1}, {123.456789f, 0.5f}};
  r.Forget_Ops();
  EXPECT_FALSE(Print_List(s, List_Kind::T1, 0, r, {0, 42, 1.0}));
  t = texts();
  for (const char* x : {"-0.1234568", "12.25", "123.45679", "   (X)  "}) EXPECT_TRUE(has(t, x)) << x;

  // Two fitted lines, the second half as high with twice the width.
  deconvolution::Sim_Peaks lines;
  lines.Sim_Peak_Count = 2;
  lines.Peak_Pos[0] = 1.0f;
  lines.Peak_Width[0] = 2;
  lines.Peak_Height[0] = 10;
  lines.Peak_Pos[1] = 2.0f;
  lines.Peak_Width[1] = 4;
  lines.Peak_Height[1] = 5;
  lines.Peak_Gauss[1] = 1;
  r.Forget_Ops();
  EXPECT_FALSE(Print_Sim_List(s, lines, r, {0, 42, 1.0}));
  t = texts();
  for (const char* x : {" Gauss-Func.(Area(Height))", "100.00", "50.00", "1.000", "4.000", "2.0000"})
    EXPECT_TRUE(has(t, x)) << x;
}

// The list setup dialog writes the font only when it differs.
TEST(Page, ListSetupStoresTheFontOnlyOnARealChange) {
  Page_Session ps;
  Session& s = ps.s;
  Font_Rec font = List_Font(s);
  EXPECT_FALSE(Store_List_Setup(s, 0, font));
  EXPECT_EQ(s.settings.Text("LISTS FONT NAME"), "");  // still unset
  EXPECT_TRUE(Store_List_Setup(s, 1, font));
  EXPECT_EQ(List_Orient(s), 1);
  EXPECT_EQ(s.settings.Text("LISTS FONT NAME"), "");
  font.Size = 12;
  font.Bold = 1;
  EXPECT_TRUE(Store_List_Setup(s, 1, font));
  EXPECT_EQ(List_Font(s).Size, 12.0f);
  EXPECT_EQ(List_Font(s).Bold, 1);
  EXPECT_EQ(s.settings.Text("LISTS FONT NAME"), font.Face);
}

}  // namespace
}  // namespace tevo::page
