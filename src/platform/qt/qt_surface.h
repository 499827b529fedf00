// The drawing surface over QPainter: a QImage (the window's backing picture,
// PNG and BMP files, the clipboard), or any painter already open on a
// widget, a PDF writer, an SVG generator or a printer.
//
// On an image every operation is exact to the pixel: XOR drawing works, a
// second identical XOR drawing restores the picture, and pixels can be read.
// On vector devices (PDF, SVG, printers) XOR drawing is done in copy mode
// and there are no pixels to read.
//
// Fonts: the Japanese faces the program names are drawn with the installed
// IPA faces, and Symbol-font text is mapped to Unicode Greek and signs.
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <memory>
#include <QPainter>
#include <QString>

#include "platform/surface.h"

namespace tevo::platform {

class QtSurface : public Surface {
 public:
  // Paints on image (Format_RGB32 or ARGB32_Premultiplied), which must
  // outlive the surface.
  explicit QtSurface(QImage& image, double pixels_per_inch = 96.0);
  // Paints with a painter already begun on some device of width x height
  // pixels. raster says whether the device keeps pixels (a widget does,
  // PDF, SVG and printers do not).
  QtSurface(QPainter& painter, int width, int height, double pixels_per_inch, bool raster);
  ~QtSurface() override;
  QtSurface(const QtSurface&) = delete;
  QtSurface& operator=(const QtSurface&) = delete;

  int Width() const override { return width_; }
  int Height() const override { return height_; }
  double Pixels_Per_Inch() const override { return ppi_; }
  bool Is_Raster() const override { return raster_; }

  void Set_Pen(Pen_Style style, int width, Colour colour) override;
  void Set_Brush(Colour colour, bool hollow = false) override;
  void Set_Fill_Mode(Fill_Mode mode) override { fill_ = mode; }
  void Set_Raster_Op(Raster_Op op) override;
  void Set_Background_Mode(Background_Mode mode) override { bk_mode_ = mode; }
  void Set_Background_Colour(Colour colour) override { bk_colour_ = colour; }
  void Set_Text_Colour(Colour colour) override { text_colour_ = colour; }

  void Move_To(int x, int y) override;
  void Line_To(int x, int y) override;
  Point Current_Position() const override { return pos_; }
  void Polygon(std::span<const Point> points) override;
  Colour Get_Pixel(int x, int y) const override;
  void Set_Pixel(int x, int y, Colour colour) override;

  void Text_Out(int x, int y, std::string_view text, const Font_Rec& font, double height_px,
                int angle_tenths = 0, int weight = 400) override;
  Text_Size Text_Extent(std::string_view text, const Font_Rec& font, double height_px,
                        int weight = 400) override;

  bool Draw_Picture(int x, int y, int w, int h, std::span<const uint8_t> bytes,
                    Picture_Ink ink) override;

  void Clear() override;
  void Keep_Picture() override;
  void Drop_Picture() override;

  QPainter& Painter() { return *painter_; }

 private:
  bool Xor_Now() const { return op_ == Raster_Op::Xor && raster_; }
  void Use_Op();
  // Called before anything changes the image: makes a due copy of the kept
  // picture and notes the image as drawn on.
  void Before_Drawing();
  void Xor_Thin_Line(Point a, Point b);
  // The Qt font and its metrics for a font record, kept while the same
  // font is asked for again (the markup pen measures run after run).
  struct Font_Entry {
    Font_Rec font;
    double height = 0;
    int weight = 0;
    QFont qt;
    std::unique_ptr<QFontMetricsF> metrics;
  };
  const Font_Entry& Font_For(const Font_Rec& font, double height_px, int weight);
  Font_Entry fonts_[4];
  int next_font_ = 0;

  QImage* image_ = nullptr;
  QPainter own_painter_;
  QPainter* painter_ = nullptr;
  int width_ = 0, height_ = 0;
  double ppi_ = 96;
  bool raster_ = true;

  Point pos_;
  Pen_Style pen_style_ = Pen_Style::Solid;
  int pen_width_ = 0;
  Colour pen_colour_ = 0;
  int pattern_pos_ = 0;  // place in the dash pattern, carried along a polyline
  Colour brush_colour_ = 0xFFFFFF;
  bool brush_hollow_ = false;
  Fill_Mode fill_ = Fill_Mode::Alternate;
  Raster_Op op_ = Raster_Op::Copy;
  Background_Mode bk_mode_ = Background_Mode::Opaque;
  Colour bk_colour_ = 0xFFFFFF;
  Colour text_colour_ = 0;
  QImage kept_;
  bool have_kept_ = false;
  // Something was drawn since the picture was kept or restored; without it
  // Clear has nothing to restore.
  bool drawn_since_kept_ = true;
  bool copy_due_ = false;  // kept_ is still to be copied from the image
};

// The Qt font that draws a font record at a character height in pixels.
QFont Qt_Font(const Font_Rec& font, double height_px, int weight);
// The installed face that stands in for a face the program names.
QString Installed_Face(const QString& face);
// The text as the font shows it: Symbol codes become Unicode.
QString Shown_Text(std::string_view text, const Font_Rec& font);

}  // namespace tevo::platform
