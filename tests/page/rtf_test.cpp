// Rich text as the page editor's control writes it: a Japanese code page,
// a font table with a Shift-JIS face name, a colour table, a generator
// group, and text with scripts, colour, a Symbol run and two paragraphs.
#include <gtest/gtest.h>

#include "page/markup.h"
#include "platform/recording_surface.h"

namespace tevo::page {
namespace {

using platform::Recorded_Op;
using platform::RecordingSurface;

const std::string Editor_Rtf =
    "{\\rtf1\\ansi\\ansicpg932\\deff0\\deflang1033\\deflangfe1041"
    "{\\fonttbl{\\f0\\fnil\\fcharset128 \\'82\\'6c\\'82\\'72 \\'83\\'53\\'83\\'56\\'83\\'62\\'83\\'4e;}"
    "{\\f1\\froman\\fprq2\\fcharset2 Symbol;}{\\f2\\fswiss\\fcharset0 Arial;}}\r\n"
    "{\\colortbl ;\\red255\\green0\\blue0;}\r\n"
    "{\\*\\generator Msftedit 5.41.21.2510;}\\viewkind4\\uc1\\pard\\lang1041\\f0\\fs20 "
    "H\\sub 2\\nosupersub O \\cf1\\b\\'93\\'fa\\'96\\'7b\\cf0\\b0  \\f1 a\\f2\\fs24\\i x\\i0\\par\r\n"
    "\\pard\\up6 2\\up0\\tab\\ul u\\ulnone\\par\r\n"
    "}\r\n";

TEST(Rtf, EditorTextConvertsToInner) {
  Font_Rec font;
  font.Face = "Arial";
  const std::string inner = Rtf_To_Inner(Editor_Rtf, font, 128);
  EXPECT_EQ(inner,
            "\\< \\f:ＭＳ ゴシック: \\p:10: H\\-1 2\\+0 O \\c:FF: \\b1 日本\\c0 \\b0  "
            "\\f:Symbol: a\\f:Arial: \\p:12: \\i1 x\\i0 \\cr "
            "\\i0 \\b0 \\u0 \\s0 \\f0 \\p0 \\c0 \\+0 \\+1 2\\+0 \\tb \\u1 u\\u0 \\cr ");
  // Text before any paragraph reset gets none; escaped braces and
  // backslashes stand for themselves; the 236 pair is the micro sign; a
  // first font of the Symbol set opens Greek.
  EXPECT_EQ(Rtf_To_Inner("{\\rtf1{\\fonttbl{\\f0\\fcharset2 Symbol;}}\\pard \\{a\\}\\\\b\\~c\\'ec\\'d5",
                         font, 0),
            "\\< \\g1 {a}\\\\b c\xC2\xB5");
  EXPECT_TRUE(Is_Rtf(Editor_Rtf));
  EXPECT_FALSE(Is_Rtf("\\< {\\rtf"));
}

TEST(Rtf, DrawsWithTheMarkupPen) {
  Font_Rec font;
  font.Face = "Arial";
  font.Colour = 0x00AA00;
  RecordingSurface s;
  auto r = Draw_Rtf(s, 1, Rtf_Caller_Colour, Editor_Rtf, 0, 0, 0, font, 1);
  auto t = s.Ops_Of(Recorded_Op::Kind::Text_Out);
  ASSERT_GE(t.size(), 8u);
  EXPECT_EQ(t[0].text, "H");
  EXPECT_EQ(t[0].font.Face, "ＭＳ ゴシック");
  EXPECT_EQ(t[0].colour, 0x00AA00);  // automatic colour is the caller's
  EXPECT_EQ(t[3].text, "日本");
  EXPECT_EQ(t[3].colour, 0x0000FF);
  EXPECT_EQ(t[3].weight, 700);
  EXPECT_EQ(t[4].text, " ");
  EXPECT_EQ(t[4].colour, 0x00AA00);
  EXPECT_EQ(t[5].text, "a");
  EXPECT_EQ(t[5].font.Face, "Symbol");
  // Line 1 is 11 px (no size before the text: 10 pt), line 2 is measured
  // in the 12 pt in force at the break, the closing paragraph at 10 pt
  // again after the reset.
  EXPECT_NEAR(r.Next_Y, 11 + 13.2 + 11, 1e-9);
  // The superscript of line 2 keeps its top at the line's top, 13.2.
  EXPECT_EQ(t[7].text, "2");
  EXPECT_EQ(t[7].at.y, 13);
  // Without the flag, automatic colour is black.
  RecordingSurface b;
  Draw_Rtf(b, 1, 0, Editor_Rtf, 0, 0, 0, font, 1);
  EXPECT_EQ(b.Ops_Of(Recorded_Op::Kind::Text_Out)[0].colour, 0);
}

TEST(Rtf, ScalesSizesAndScripts) {
  const std::string scaled = Rtf_Scale(Editor_Rtf, 2.0);
  std::string expected = Editor_Rtf;
  auto replace = [&](const std::string& from, const std::string& to) {
    const auto at = expected.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    expected.replace(at, from.size(), to);
  };
  replace("\\fs20 ", "\\fs40 ");
  replace("\\sub 2", "\\dn12 2");  // 0.3 x 40 half-points
  replace("\\nosupersub O", "\\dn0\\up0 O");
  replace("\\fs24", "\\fs48");
  replace("\\up6 2", "\\up14 2");  // 0.3 x 48 = 14.4
  EXPECT_EQ(scaled, expected);
  // Sizes never fall below 4 half-points.
  EXPECT_EQ(Rtf_Scale("{\\rtf1\\fs20 a\\super b}", 0.1), "{\\rtf1\\fs4 a\\up1 b}");
}

}  // namespace
}  // namespace tevo::page
