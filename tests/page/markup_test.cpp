// Markup conversions and the pen of the markup walk, on the recording
// surface whose text metric is fixed: a one-byte character is half the
// character height wide, a double-byte one the full height.
#include <gtest/gtest.h>

#include "page/markup.h"
#include "platform/recording_surface.h"

namespace tevo::page {
namespace {

using platform::Recorded_Op;
using platform::RecordingSurface;

Font_Rec Arial(float size) {
  Font_Rec f;
  f.Face = "Arial";
  f.Size = size;
  f.Charset = Charset_Ansi;
  return f;
}

std::vector<Recorded_Op> Texts(const RecordingSurface& s) {
  return s.Ops_Of(Recorded_Op::Kind::Text_Out);
}

TEST(Markup, GroupedNotationConverts) {
  EXPECT_EQ(To_Inner_Text("\\+(2)"), "\\< \\+1 2\\+0 \\>");
  EXPECT_EQ(To_Inner_Text("\\=(a,b)"), "\\< \\d1 a\\u1 b\\+0 \\>");
  // Groups nest: the inner one closes first.
  EXPECT_EQ(To_Inner_Text("\\+(a\\i(b))"), "\\< \\+1 a\\i1 b\\i0 \\+0 \\>");
  EXPECT_EQ(To_Inner_Text("\\p12.5(big)"), "\\< \\p:12.5: big\\p0 \\>");
  EXPECT_EQ(To_Inner_Text("\\cFF(r)\\h00ff00(g)"), "\\< \\c:FF: r\\c0 \\c:00ff00: g\\c0 \\>");
  EXPECT_EQ(To_Inner_Text("\\f: Times New Roman (x)"), "\\< \\f:Times New Roman: x\\f0 \\>");
  EXPECT_EQ(To_Inner_Text("\\I(\\B(x))\\g(a)\\S(s)\\U(u)\\-(2)"),
            "\\< \\i1 \\b1 x\\b0 \\i0 \\g1 a\\g0 \\s1 s\\s0 \\u1 u\\u0 \\-1 2\\-0 \\>");
  // Character codes: 13 is a new line, 92 a backslash, below 32 nothing;
  // a code above 255 is a double-byte character.
  EXPECT_EQ(To_Inner_Text("\\(65)\\(13)\\(92)\\(7)\\(33440)"), "\\< A\\cr \\\\あ\\>");
  // Plain parentheses and commas stay, a stray ")" too; "\r(" only groups.
  EXPECT_EQ(To_Inner_Text("f(a,b))\\r(x)"), "\\< f(a,b))x\\>");
  // Unknown escapes go with their backslash; a zero size is no size.
  EXPECT_EQ(To_Inner_Text("a\\qb\\p0(c)"), "\\< ab0(c)\\>");
  // CR LF and LF CR are one line end; a closing one is cut; blanks trimmed.
  EXPECT_EQ(To_Inner_Text("  a\r\nb\n\rc\rd\n  "), "\\< a\\cr b\\cr c\\cr d\\>");
  EXPECT_EQ(To_Inner_Text("\\\\"), "\\< \\\\\\>");
  EXPECT_EQ(To_Inner_Text("\\< \\i1 x"), "\\< \\i1 x");
  EXPECT_EQ(To_Inner_Text(""), "");
}

TEST(Markup, PlainTextWrapsAsInner) {
  EXPECT_EQ(Plain_To_Inner("a\\b\tc\x01\r\nd", Charset_Shift_Jis), "\\< a\\\\b    c\\cr d");
  // In a Latin font, Japanese runs go into the default Japanese face.
  EXPECT_EQ(Plain_To_Inner("x日本y", Charset_Ansi), "\\< x\\f:" + Fonts().Default_Font + ": 日本\\f0 y");
  EXPECT_EQ(Plain_To_Inner("日", Charset_Ansi), "\\< \\f:" + Fonts().Default_Font + ": 日\\f0 ");
  EXPECT_EQ(Plain_To_Inner("x日本y", Charset_Shift_Jis), "\\< x日本y");
  // A later "\<" ends the conversion: the rest is inner text already.
  EXPECT_EQ(Plain_To_Inner("p\\<\\i1 q\\r", Charset_Shift_Jis), "\\< p\\<\\i1 q\\r");
}

TEST(Markup, ByteCutsNeverSplitADoubleByteCharacter) {
  // "abc" + one kanji: 5 bytes in Shift-JIS.
  EXPECT_EQ(Cut_To_Bytes("abc日", 4), "abc");
  EXPECT_EQ(Cut_To_Bytes("abc日", 5), "abc日");
  EXPECT_EQ(Cut_To_Bytes("日本", 3), "日");
  EXPECT_EQ(Cut_To_Bytes("日本", 1), "");
  EXPECT_EQ(Cut_Right_To_Bytes("日abc", 4), "abc");
  EXPECT_EQ(Cut_Right_To_Bytes("a日本", 5), "a日本");
  EXPECT_EQ(Cut_Right_To_Bytes("a日本", 3), "本");
  // Half-width katakana are one byte each.
  EXPECT_EQ(Cut_To_Bytes("ｱｲｳ", 2), "ｱｲ");
  EXPECT_EQ(Cut_Right_To_Bytes("", 3), "");
}

TEST(Markup, ScriptsSitOnTheLineAsDerived) {
  // Size 10 at 2 px per point: line height 22, a character 10 px wide; the
  // scripts are 6.5 pt, 13 px high and 6.5 px wide. The superscript's top
  // stays at the line's top; the subscript's 14.3 px cell stands on the
  // baseline at 22, so its top is 7.7 px down.
  RecordingSurface s;
  const auto r = Draw_Markup(s, 1, "x\\+(2)\\-(3)y", 100, 200, 0, 0x0000FF, 0, 0, Arial(10), 2);
  const auto t = Texts(s);
  ASSERT_EQ(t.size(), 4u);
  EXPECT_EQ(t[0].text, "x");
  EXPECT_EQ(t[0].at, (platform::Point{100, 200}));
  EXPECT_EQ(t[0].height, 20);
  EXPECT_EQ(t[0].angle, 1);  // straight text goes at a tenth of a degree
  EXPECT_EQ(t[0].colour, 0x0000FF);
  EXPECT_EQ(t[1].text, "2");
  EXPECT_EQ(t[1].at, (platform::Point{110, 200}));
  EXPECT_EQ(t[1].height, 13);
  EXPECT_EQ(t[2].text, "3");
  EXPECT_EQ(t[2].at, (platform::Point{116, 208}));  // 116.5 rounds to even
  EXPECT_EQ(t[3].at, (platform::Point{123, 200}));
  EXPECT_EQ(t[3].height, 20);
  EXPECT_DOUBLE_EQ(r.Width, 33);
  EXPECT_DOUBLE_EQ(r.Next_Y, 22);
  EXPECT_EQ(s.Background_Mode_Now(), platform::Background_Mode::Transparent);
  // Measuring walks the same pen and draws nothing.
  RecordingSurface m;
  EXPECT_DOUBLE_EQ(Measure_Markup(m, "x\\+(2)\\-(3)y", Arial(10), 2), 33);
  EXPECT_TRUE(Texts(m).empty());
}

TEST(Markup, TurnedTextFollowsTheAngle) {
  // At 90 degrees the pen column runs up the page and the text top offset
  // runs to the right.
  RecordingSurface s;
  Draw_Markup(s, 1, "x\\+(2)\\-(3)y", 100, 200, 90, 0, 0, 0, Arial(10), 2);
  auto t = Texts(s);
  ASSERT_EQ(t.size(), 4u);
  EXPECT_EQ(t[0].at, (platform::Point{100, 200}));
  EXPECT_EQ(t[1].at, (platform::Point{100, 190}));
  EXPECT_EQ(t[2].at, (platform::Point{108, 184}));  // 183.5 rounds to even
  EXPECT_EQ(t[3].at, (platform::Point{100, 177}));
  EXPECT_EQ(t[0].angle, 900);
  // -90 is drawn as 270.
  RecordingSurface d;
  Draw_Markup(d, 1, "\\< ab\\-1 c", 100, 200, -90, 0, 0, 0, Arial(10), 2);
  t = Texts(d);
  ASSERT_EQ(t.size(), 2u);
  EXPECT_EQ(t[0].angle, 2700);
  EXPECT_EQ(t[1].at, (platform::Point{92, 220}));  // top 7.7 to the left, 20 down
}

TEST(Markup, SwitchesFontsAndPen) {
  RecordingSurface s;
  // Greek goes to the Symbol face and back; italic moves the pen 0.05 line
  // heights; a tab goes to the next multiple of 3.8 sizes; \p:1: is ignored.
  auto r = Draw_Markup(s, 1, "\\< \\g1 a\\g0 b\\i1 c\\i0 \\tb d\\p:1: \\c:FF00: e\\c0 f",
                       0, 0, 0, 0x123456, 0, 0, Arial(10), 2);
  auto t = Texts(s);
  ASSERT_EQ(t.size(), 6u);
  EXPECT_EQ(t[0].text, "a");
  EXPECT_EQ(t[0].font.Face, Fonts().Symbol_Face);
  EXPECT_EQ(t[0].font.Charset, Charset_Symbol);
  EXPECT_EQ(t[1].text, "b");
  EXPECT_EQ(t[1].font.Face, "Arial");
  EXPECT_EQ(t[1].font.Charset, Charset_Ansi);
  EXPECT_EQ(t[1].at.x, 10);
  EXPECT_EQ(t[2].text, "c");
  EXPECT_EQ(t[2].at.x, 21);  // 20 + 0.05 * 22
  EXPECT_TRUE(t[2].font.Italic);
  EXPECT_EQ(t[3].text, "d");
  EXPECT_EQ(t[3].at.x, 76);  // 10 pt * 2 px * 3.8
  EXPECT_EQ(t[3].height, 20);
  EXPECT_EQ(t[4].text, "e");
  EXPECT_EQ(t[4].colour, 0xFF00);
  EXPECT_EQ(t[4].height, 20);
  EXPECT_EQ(t[5].colour, 0x123456);
  EXPECT_DOUBLE_EQ(r.Width, 106);
  // Byte escapes: in a Japanese font a Shift-JIS pair joins into one
  // character; in a Latin font each byte is a Latin character.
  RecordingSurface j;
  Font_Rec gothic = Arial(10);
  gothic.Face = "ＭＳ ゴシック";
  gothic.Charset = Charset_Shift_Jis;
  r = Draw_Markup(j, 1, "\\< \\'41:B\\'82\\'a0\\'e9", 0, 0, 0, 0, 0, 0, gothic, 2);
  EXPECT_EQ(j.All_Text(), "ABあ\xEF\xBF\xBD");  // a lone lead byte does not decode
  EXPECT_DOUBLE_EQ(r.Width, 60);
  RecordingSurface l;
  Draw_Markup(l, 1, "\\< \\'e9t\\'e9", 0, 0, 0, 0, 0, 0, Arial(10), 2);
  EXPECT_EQ(l.All_Text(), "été");
  // Bold draws at weight 700.
  RecordingSurface b;
  Draw_Markup(b, 1, "\\b(x)y", 0, 0, 0, 0, 0, 0, Arial(10), 1);
  t = Texts(b);
  ASSERT_EQ(t.size(), 2u);
  EXPECT_EQ(t[0].weight, 700);
  EXPECT_EQ(t[1].weight, 400);
}

TEST(Markup, LinesAndWrapping) {
  // Line heights come from the largest size on the coming line.
  EXPECT_DOUBLE_EQ(Line_Height("\\< a\\p:24: b\\cr c", 0, Arial(10), 1), 24 * 1.1);
  EXPECT_DOUBLE_EQ(Line_Height("\\< a\\p:24: b\\cr c", 14, Arial(10), 1), 11);
  EXPECT_DOUBLE_EQ(Line_Height("\\< a\\>\\p:24:", 0, Arial(10), 1), 11);

  // A new line whose text is 20 pt: its baseline is 22 px below the first
  // (11 px) line's, and the big text's top 11 px below the start.
  RecordingSurface c;
  auto r = Draw_Markup(c, 1, "\\< a\\cr \\p:20: b", 0, 0, 0, 0, 0, 0, Arial(10), 1);
  auto t = Texts(c);
  ASSERT_EQ(t.size(), 2u);
  EXPECT_EQ(t[1].at, (platform::Point{0, 11}));
  EXPECT_EQ(t[1].height, 20);
  EXPECT_DOUBLE_EQ(r.Next_Y, 33);

  // Characters 10 px wide, wrap at 35: "abc" | "de" | "f", the new lines
  // starting at pen column 5.
  RecordingSurface w;
  r = Draw_Markup(w, 1, "abcdef", 100, 200, 0, 0, 35, 5, Arial(10), 2);
  t = Texts(w);
  ASSERT_EQ(t.size(), 3u);
  EXPECT_EQ(t[0].text, "abc");
  EXPECT_EQ(t[1].text, "de");
  EXPECT_EQ(t[1].at, (platform::Point{105, 222}));
  EXPECT_EQ(t[2].text, "f");
  EXPECT_EQ(t[2].at, (platform::Point{105, 244}));
  EXPECT_DOUBLE_EQ(r.Width, 30);
  EXPECT_DOUBLE_EQ(r.Next_Y, 66);
  EXPECT_TRUE(r.Remainder.empty());

  // Mode -2 stops at the wrap and hands back the rest with the state in
  // force: 20 pt characters are 10 px wide at 1 px per point; "ab", the
  // italic step of 1.1, "cd" reach 41.1, and "e" would pass 45.
  RecordingSurface m;
  r = Draw_Markup(m, -2, "\\< \\b1 \\c:FF: \\p:20: ab\\i1 cdef", 0, 0, 0, 0, 45, 0, Arial(10), 1);
  EXPECT_EQ(m.All_Text(), "abcd");
  EXPECT_EQ(r.Remainder, "\\< \\c:FF: \\i1 \\b1 \\p:20: ef");
  // The remainder draws the rest in the same state.
  RecordingSurface n;
  Draw_Markup(n, 1, r.Remainder, 0, 0, 0, 0, 0, 0, Arial(10), 1);
  t = Texts(n);
  ASSERT_EQ(t.size(), 1u);
  EXPECT_EQ(t[0].text, "ef");
  EXPECT_EQ(t[0].colour, 0xFF);
  EXPECT_EQ(t[0].height, 20);
  EXPECT_TRUE(t[0].font.Italic);
  EXPECT_EQ(t[0].weight, 700);
  // A character wider than the whole line stays on it rather than looping.
  RecordingSurface one;
  r = Draw_Markup(one, -2, "W", 0, 0, 0, 0, 3, 0, Arial(10), 1);
  EXPECT_EQ(one.All_Text(), "W");
  EXPECT_TRUE(r.Remainder.empty());
}

TEST(Markup, CheckFontFallsBackByCharset) {
  Font_Rec f = Arial(1);
  Check_Font(f);
  EXPECT_EQ(f.Size, 2);
  f = Arial(900);
  f.Face = "No Such Face";
  f.Bold = 1;
  f.Italic = 1;
  f.Underline = 1;
  Check_Font(f);
  EXPECT_EQ(f.Face, Fonts().Latin_Font);
  EXPECT_EQ(f.Size, 500);
  EXPECT_EQ(f.Bold, 0);
  EXPECT_EQ(f.Italic, 0);
  EXPECT_EQ(f.Underline, 1);
  f.Face = "No Such Face";
  f.Charset = Charset_Shift_Jis;
  Check_Font(f);
  EXPECT_EQ(f.Face, Fonts().Default_Font);
  f = Arial(30);
  f.Face.clear();
  f.Colour = 0xFF;
  Check_Font(f);
  EXPECT_EQ(f.Face, Fonts().Default_Font);
  EXPECT_EQ(f.Size, 10);
  EXPECT_EQ(f.Colour, 0);
  EXPECT_EQ(f.Charset, Charset_Shift_Jis);
  // Faces match without regard to case.
  f = Arial(10);
  f.Face = "arial";
  f.Bold = 1;
  Check_Font(f);
  EXPECT_EQ(f.Face, "arial");
  EXPECT_EQ(f.Bold, 1);
}

}  // namespace
}  // namespace tevo::page

namespace tevo::page {
namespace {

// Truncated escapes, stray bytes and random mixtures neither crash nor hang
// any of the converters or the pen.
TEST(Markup, BadInputIsHarmless) {
  const std::vector<std::string> pieces = {
      "\\", "\\'", "\\'8", "\\'82", "\\f:", "\\p:", "\\c:", "\\p", "\\c", "\\(", "\\(99999",
      "\\+(", "\\=(", ",", ")", "(", "\\<", "\\>", "\\cr", "\\tb", "\xE6", "\xE6\x97", "日",
      "\r", "\n", "\t", "{", "}", "\\rtf", "{\\rtf1", "\\fs", "\\fs-3", "\\u-4000?", "\\'ec",
      "\\*", "{\\*", "{\\fonttbl", "\\f99", "\\cf7", "a", " ", ";", "\\i", "\\i1", "\\g1"};
  RecordingSurface s;
  Font_Rec f;
  f.Face = "Arial";
  f.Charset = Charset_Ansi;
  unsigned seed = 12345;
  for (int round = 0; round < 2000; ++round) {
    std::string text = round % 3 == 0 ? "{\\rtf1" : round % 3 == 1 ? "\\< " : "";
    const int n = 1 + static_cast<int>(seed % 12);
    for (int k = 0; k < n; ++k) {
      seed = seed * 1103515245u + 12345u;
      text += pieces[(seed >> 8) % pieces.size()];
    }
    const std::string inner = To_Inner_Text(text);
    Draw_Markup(s, -2, text, 0, 0, 30, 0, 40, 0, f, 1);
    Measure_Markup(s, inner, f, 1);
    Plain_To_Inner(text, Charset_Ansi);
    Cut_To_Bytes(text, round % 7);
    Cut_Right_To_Bytes(text, round % 7);
    if (Is_Rtf(text)) {
      Draw_Markup(s, 1, Rtf_To_Inner(text, f, 128), 0, 0, 0, 0, 0, 0, f, 1);
      Rtf_Scale(text, 0.5);
      Draw_Rtf(s, 1, 16, text, 0, 0, 0, f, 1);
    }
    s.Forget_Ops();
  }
}

}  // namespace
}  // namespace tevo::page
