// The Qt surface painting into images and files.
#include <QFontInfo>
#include <QFontMetricsF>
#include <QImage>
#include <gtest/gtest.h>

#include "page/markup.h"
#include "platform/qt/qt_output.h"
#include "platform/qt/qt_picture.h"
#include "platform/qt/qt_surface.h"
#include "support/picture_bytes.h"
#include "support/test_support.h"

namespace tevo::platform {
namespace {

int Pixels_Not(const QImage& image, QRgb background) {
  int n = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if ((image.pixel(x, y) & 0xFFFFFF) != (background & 0xFFFFFF)) ++n;
  return n;
}

QImage White_Image(int w, int h) {
  QImage image(w, h, QImage::Format_RGB32);
  image.fill(Qt::white);
  return image;
}

TEST(QtSurface, XorLinesAreExactAndCancel) {
  Ensure_Gui_Application();
  QImage image = White_Image(120, 80);
  {
    QtSurface s(image);
    // A picture below: a filled square and a diagonal in copy mode.
    s.Set_Pen(Pen_Style::Solid, 0, 0x00FF00);
    s.Set_Brush(0x808080);
    s.Set_Fill_Mode(Fill_Mode::Winding);
    const Point square[] = {{50, 20}, {90, 20}, {90, 60}, {50, 60}};
    s.Polygon(square);
    s.Move_To(0, 79);
    s.Line_To(119, 0);
  }
  const QImage before = image.copy();
  auto xor_layer = [](QImage& img) {
    QtSurface s(img);
    s.Set_Raster_Op(Raster_Op::Xor);
    s.Set_Pen(Pen_Style::Solid, 1, 0x0000FF);
    s.Move_To(10, 10);
    s.Line_To(20, 10);
    s.Line_To(20, 30);
    s.Set_Pen(Pen_Style::Dot, 0, 0xFF0000);
    s.Move_To(0, 40);
    s.Line_To(119, 40);
    s.Set_Brush(0x00FFFF);
    s.Set_Pen(Pen_Style::Null, 0, 0);
    const Point box[] = {{60, 30}, {100, 30}, {100, 70}, {60, 70}};
    s.Polygon(box);
  };
  xor_layer(image);
  // White XOR red (0x0000FF) is 0xFFFF00 in 0xBBGGRR, cyan on screen.
  EXPECT_EQ(image.pixel(10, 10) & 0xFFFFFF, qRgb(0, 255, 255) & 0xFFFFFF);
  EXPECT_EQ(image.pixel(19, 10) & 0xFFFFFF, qRgb(0, 255, 255) & 0xFFFFFF);
  // The joint is painted once (by the second stroke), the end not at all.
  EXPECT_EQ(image.pixel(20, 10) & 0xFFFFFF, qRgb(0, 255, 255) & 0xFFFFFF);
  EXPECT_EQ(image.pixel(20, 29) & 0xFFFFFF, qRgb(0, 255, 255) & 0xFFFFFF);
  EXPECT_EQ(image.pixel(20, 30) & 0xFFFFFF, 0xFFFFFFu);
  // The dotted pen: three on, three off.
  EXPECT_NE(image.pixel(2, 40) & 0xFFFFFF, 0xFFFFFFu);
  EXPECT_EQ(image.pixel(4, 40) & 0xFFFFFF, 0xFFFFFFu);
  EXPECT_NE(image.pixel(6, 40) & 0xFFFFFF, 0xFFFFFFu);
  EXPECT_NE(image, before);
  xor_layer(image);
  EXPECT_EQ(image, before);
}

TEST(QtSurface, PixelsKeptPictureAndColourOrder) {
  Ensure_Gui_Application();
  QImage image = White_Image(20, 20);
  QtSurface s(image, 144);
  EXPECT_DOUBLE_EQ(s.Pixels_Per_Point(), 2.0);
  EXPECT_TRUE(s.Is_Raster());
  s.Set_Pixel(3, 4, 0x0000FF);  // red in 0xBBGGRR
  EXPECT_EQ(s.Get_Pixel(3, 4), 0x0000FF);
  EXPECT_EQ(qRed(image.pixel(3, 4)), 255);
  EXPECT_EQ(qBlue(image.pixel(3, 4)), 0);
  EXPECT_EQ(s.Get_Pixel(20, 0), Invalid_Colour);
  s.Keep_Picture();
  s.Set_Pixel(5, 5, 0);
  s.Clear();
  EXPECT_EQ(s.Get_Pixel(5, 5), 0xFFFFFF);
  EXPECT_EQ(s.Get_Pixel(3, 4), 0x0000FF);
  s.Drop_Picture();
  s.Set_Background_Colour(0x00FF00);
  s.Clear();
  EXPECT_EQ(s.Get_Pixel(3, 4), 0x00FF00);
}

TEST(QtSurface, JapaneseAndSymbolTextUseRealGlyphs) {
  Ensure_Gui_Application();
  Font_Rec gothic;
  gothic.Face = "ＭＳ ゴシック";
  gothic.Charset = 128;
  EXPECT_EQ(QFontInfo(Qt_Font(gothic, 20, 400)).family(), QStringLiteral("IPAGothic"));
  gothic.Face = "ＭＳ 明朝";
  EXPECT_EQ(QFontInfo(Qt_Font(gothic, 20, 400)).family(), QStringLiteral("IPAMincho"));
  gothic.Face = "ＭＳ ゴシック";

  QImage image = White_Image(200, 60);
  {
    QtSurface s(image);
    s.Set_Background_Mode(Background_Mode::Transparent);
    s.Set_Text_Colour(0);
    s.Text_Out(5, 5, "日本語", gothic, 30);
    const Text_Size e = s.Text_Extent("日本語", gothic, 30);
    EXPECT_NEAR(e.cx, 90, 3);  // three full-width characters of 30 px
    EXPECT_GE(e.cy, 30);
  }
  EXPECT_GT(Pixels_Not(image, qRgb(255, 255, 255)), 200);

  // Symbol codes: "a" and "m" are alpha and mu, and the font has them.
  Font_Rec symbol;
  symbol.Face = "Symbol";
  symbol.Charset = 2;
  EXPECT_EQ(Shown_Text("am", symbol), QString::fromUtf8("αμ"));
  const QFontMetricsF fm(Qt_Font(symbol, 20, 400));
  EXPECT_TRUE(fm.inFontUcs4(0x03B1));
  QImage latin = White_Image(60, 40), greek = White_Image(60, 40);
  Font_Rec arial;
  arial.Face = "Arial";
  arial.Charset = 0;
  {
    QtSurface a(latin), g(greek);
    a.Set_Background_Mode(Background_Mode::Transparent);
    g.Set_Background_Mode(Background_Mode::Transparent);
    a.Text_Out(5, 5, "abg", arial, 24);
    g.Text_Out(5, 5, "abg", symbol, 24);
  }
  EXPECT_GT(Pixels_Not(greek, qRgb(255, 255, 255)), 50);
  EXPECT_NE(latin, greek);
}

TEST(QtSurface, FontTableFromTheSystem) {
  Probe_Font_Table();
  const page::Font_Face* ipa = page::Find_Face("IPAGothic");
  ASSERT_NE(ipa, nullptr);
  EXPECT_EQ(ipa->Charset, page::Charset_Shift_Jis);
  const page::Font_Face* dejavu = page::Find_Face("DejaVu Sans");
  ASSERT_NE(dejavu, nullptr);
  EXPECT_EQ(dejavu->Charset, page::Charset_Ansi);
  // The faces the program names stay known; the surface draws stand-ins.
  ASSERT_NE(page::Find_Face("ＭＳ Ｐゴシック"), nullptr);
  EXPECT_EQ(page::Fonts().Symbol_Face, "Symbol");
  Font_Rec f;
  f.Face = "IPAMincho";
  f.Charset = 128;
  f.Bold = 1;
  page::Check_Font(f);
  EXPECT_EQ(f.Face, "IPAMincho");
  EXPECT_EQ(f.Bold, 1);
}

TEST(QtSurface, MarkupOnARealFont) {
  Ensure_Gui_Application();
  QImage image = White_Image(300, 100);
  QtSurface s(image);
  Font_Rec arial;
  arial.Face = "Arial";
  arial.Size = 12;
  arial.Charset = 0;
  // A superscript is narrower than the same digit at full size, and the
  // whole label draws ink inside the image.
  const double full = page::Measure_Markup(s, "x2", arial, 2);
  const double script = page::Measure_Markup(s, "x\\+(2)", arial, 2);
  EXPECT_GT(full, script);
  EXPECT_GT(script, page::Measure_Markup(s, "x", arial, 2));
  const auto r = page::Draw_Markup(s, 1, "\\p14(δ) = 7.26 ppm 日本", 10, 10, 0, 0, 0, 0, arial, 2);
  EXPECT_GT(r.Width, 100);
  EXPECT_GT(Pixels_Not(image, qRgb(255, 255, 255)), 300);
}

TEST(QtSurface, FilesByExtension) {
  test::Temp_Dir dir;
  auto paint = [](Surface& s) {
    s.Set_Pen(Pen_Style::Solid, 2, 0x0000FF);
    s.Move_To(10, 50);
    s.Line_To(190, 50);
    // XOR on a vector page is drawn in copy mode.
    s.Set_Raster_Op(Raster_Op::Xor);
    s.Set_Pen(Pen_Style::Solid, 0, 0xFF0000);
    s.Move_To(100, 0);
    s.Line_To(100, 99);
    s.Set_Raster_Op(Raster_Op::Copy);
    Font_Rec f;
    f.Face = "ＭＳ ゴシック";
    f.Charset = 128;
    s.Set_Background_Mode(Background_Mode::Transparent);
    s.Text_Out(20, 60, "化学シフト", f, 16);
  };
  struct Case {
    const char* name;
    std::string magic;
  };
  for (const Case& c : {Case{"p.png", "\x89PNG\r\n\x1a\n"}, Case{"p.bmp", "BM"},
                        Case{"p.pdf", "%PDF-"}, Case{"p.svg", "<?xml"}}) {
    SCOPED_TRACE(c.name);
    ASSERT_EQ(Render_To_File(dir / c.name, 200, 100, 96, 0xFFFFFF, paint), 0);
    const auto bytes = test::Read_Bytes(dir / c.name);
    ASSERT_GT(bytes.size(), 100u);
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + c.magic.size()), c.magic);
  }
  QImage png(QString::fromStdString((dir / "p.png").string()));
  ASSERT_EQ(png.size(), QSize(200, 100));
  EXPECT_EQ(png.pixel(50, 50) & 0xFFFFFF, qRgb(255, 0, 0) & 0xFFFFFF);
  EXPECT_EQ(png.pixel(100, 10) & 0xFFFFFF, qRgb(255, 255, 0) & 0xFFFFFF);  // white XOR blue
  const std::string svg = test::Read_Text(dir / "p.svg");
  EXPECT_NE(svg.find("<svg"), std::string::npos);
  EXPECT_NE(svg.find("#0000ff"), std::string::npos);  // the XOR line, in copy
  EXPECT_EQ(Render_To_File(dir / "p.xyz", 10, 10, 96, 0, paint), -1);
}

// Metafiles built byte by byte (a red rectangle over 20..80 x 20..60 and a
// blue line at y = 85 of a 100-unit picture) drawn over 200 x 100 pixels
// from (50, 40): the rectangle covers x 90..210, y 60..100 and the line
// lies at y 125, whichever kind the bytes are.
TEST(QtSurface, MetafilesLandInTheirRectangle) {
  Ensure_Gui_Application();
  const QRgb red = qRgb(255, 0, 0), blue = qRgb(0, 0, 255), green = qRgb(0, 255, 0);
  const auto emf = test::Emf_Picture(0x0000FF, 0xFF0000);
  const auto wmf = test::Wmf_Picture(0x0000FF, 0xFF0000, true);
  const auto plain_wmf = test::Wmf_Picture(0x0000FF, 0xFF0000, false);
  EXPECT_EQ(Kind_Of_Picture(emf), Picture_Kind::Emf);
  EXPECT_EQ(Kind_Of_Picture(wmf), Picture_Kind::Wmf);
  EXPECT_EQ(Kind_Of_Picture(plain_wmf), Picture_Kind::Wmf);
  auto drawn = [](const std::vector<uint8_t>& bytes, bool* ok) {
    QImage image(300, 200, QImage::Format_RGB32);
    image.fill(QColor(0, 255, 0));
    QtSurface s(image);
    *ok = s.Draw_Picture(50, 40, 200, 100, bytes, {});
    return image;
  };
  for (const auto* bytes : {&emf, &wmf, &plain_wmf}) {
    SCOPED_TRACE(bytes == &emf ? "EMF" : bytes == &wmf ? "placeable WMF" : "standard WMF");
    bool ok = false;
    const QImage image = drawn(*bytes, &ok);
    ASSERT_TRUE(ok);
    auto at = [&](int x, int y) { return image.pixel(x, y) & 0xFFFFFF; };
    for (const QPoint p : {QPoint(95, 65), QPoint(150, 80), QPoint(205, 95)})
      EXPECT_EQ(at(p.x(), p.y()), red & 0xFFFFFF) << p.x() << "," << p.y();
    for (const QPoint p : {QPoint(84, 80), QPoint(216, 80), QPoint(150, 54), QPoint(150, 106),
                           QPoint(40, 30), QPoint(260, 150)})
      EXPECT_EQ(at(p.x(), p.y()), green & 0xFFFFFF) << p.x() << "," << p.y();
    EXPECT_EQ(at(150, 125), blue & 0xFFFFFF);
    EXPECT_EQ(at(76, 125), blue & 0xFFFFFF);
    EXPECT_EQ(at(150, 135), green & 0xFFFFFF);
  }
  // Bytes that only look like a metafile draw nothing and say so.
  for (std::vector<uint8_t> bad : {std::vector<uint8_t>(emf.begin(), emf.begin() + 60),
                                   std::vector<uint8_t>(wmf.begin(), wmf.begin() + 40)}) {
    bool ok = true;
    const QImage image = drawn(bad, &ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(image.pixel(150, 80) & 0xFFFFFF, green & 0xFFFFFF);
  }

  // On an SVG page the metafile stays shapes: no embedded image.
  test::Temp_Dir dir;
  ASSERT_EQ(Render_To_File(dir / "m.svg", 300, 200, 96, 0xFFFFFF,
                           [&](Surface& s) { s.Draw_Picture(50, 40, 200, 100, emf, {}); }),
            0);
  const std::string svg = test::Read_Text(dir / "m.svg");
  EXPECT_NE(svg.find("#ff0000"), std::string::npos);
  EXPECT_EQ(svg.find("<image"), std::string::npos);
}

}  // namespace
}  // namespace tevo::platform
