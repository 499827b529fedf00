#include <gtest/gtest.h>

#include "platform/recording_surface.h"

namespace tevo::platform {
namespace {

using Kind = Recorded_Op::Kind;

TEST(RecordingSurface, LinesCarryTheirPenAndStartPoint) {
  RecordingSurface s(200, 100);
  s.Set_Pen(Pen_Style::Dot, 2, 0x0000FF);
  s.Set_Raster_Op(Raster_Op::Xor);
  s.Move_To(10, 20);
  s.Line_To(30, 40);
  s.Line_To(50, 40);
  EXPECT_EQ(s.Current_Position(), (Point{50, 40}));
  auto lines = s.Ops_Of(Kind::Line_To);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].from, (Point{10, 20}));
  EXPECT_EQ(lines[1].from, (Point{30, 40}));
  EXPECT_EQ(lines[1].colour, 0x0000FF);
  EXPECT_EQ(lines[1].value, static_cast<int>(Pen_Style::Dot));
  EXPECT_EQ(lines[1].op, Raster_Op::Xor);
  // A polygon of one point is no polygon.
  Point one[] = {{1, 1}};
  s.Polygon(one);
  EXPECT_TRUE(s.Ops_Of(Kind::Polygon).empty());
}

TEST(RecordingSurface, FixedTextMetric) {
  RecordingSurface s;
  Font_Rec f;
  f.Face = "Arial";
  f.Charset = 0;
  // 5 one-byte characters at 20 px: 5 x 10 px.
  EXPECT_EQ(s.Text_Extent("abcde", f, 20), (Text_Size{50, 20}));
  // Two kanji and a half-width katakana: 2 + 2 + 1 half-heights.
  EXPECT_EQ(s.Text_Extent("日本ｱ", f, 10), (Text_Size{25, 10}));
  // Symbol-font codes are all one byte, also above U+007F.
  f.Charset = 2;
  EXPECT_EQ(s.Text_Extent("a\xC2\xB5", f, 10), (Text_Size{10, 10}));
  // Rounded per call, as a device does.
  f.Charset = 0;
  EXPECT_EQ(s.Text_Extent("abc", f, 7), (Text_Size{11, 7}));  // 10.5 rounds away
}

TEST(RecordingSurface, PixelsAndKeptPicture) {
  RecordingSurface s(10, 10);
  s.Set_Background_Colour(0x102030);
  EXPECT_EQ(s.Get_Pixel(3, 3), 0x102030);
  EXPECT_EQ(s.Get_Pixel(10, 3), Invalid_Colour);
  EXPECT_EQ(s.Get_Pixel(-1, 0), Invalid_Colour);
  s.Set_Pixel(3, 3, 0xABCDEF);
  s.Keep_Picture();
  s.Set_Pixel(4, 4, 0x111111);
  s.Clear();  // back to the kept picture
  EXPECT_EQ(s.Get_Pixel(3, 3), 0xABCDEF);
  EXPECT_EQ(s.Get_Pixel(4, 4), 0x102030);
  s.Drop_Picture();
  s.Clear();
  EXPECT_EQ(s.Get_Pixel(3, 3), 0x102030);
}

}  // namespace
}  // namespace tevo::platform
