// A surface that draws nothing and records every operation, for tests and
// for anything that wants to look at a picture as a list of operations.
//
// Its text metric is fixed and needs no fonts: a character advances half the
// character height when it is a one-byte character of the code page (code
// points below U+0100, half-width katakana, every character of a Symbol
// font) and the full height otherwise; the cell height is the character
// height. Both are rounded to whole pixels per call, as a device would.
// Pixels set by Set_Pixel are kept; every other pixel of the area reads as
// the background colour.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "platform/surface.h"

namespace tevo::platform {

struct Recorded_Op {
  enum class Kind {
    Pen,
    Brush,
    Fill_Mode,
    Raster_Op,
    Background_Mode,
    Background_Colour,
    Text_Colour,
    Move_To,
    Line_To,
    Polygon,
    Set_Pixel,
    Text_Out,
    Picture,
    Clear,
    Keep_Picture,
    Drop_Picture,
  };
  Kind kind = Kind::Clear;
  // Move_To, Set_Pixel, Text_Out: the point; Line_To: the end point.
  Point at;
  Point from;  // Line_To: the current position before the line
  std::vector<Point> points;  // Polygon; Picture: its top-left and bottom-right corners
  // Pen: style and width; Brush: hollow (0/1); Fill_Mode, Raster_Op,
  // Background_Mode: the enum's value.
  int value = 0;
  int width = 0;
  // Pen, Brush, Background_Colour, Text_Colour, Set_Pixel: that colour;
  // Line_To: the pen colour; Polygon: the brush colour; Text_Out: the text
  // colour in force.
  Colour colour = 0;
  Raster_Op op = Raster_Op::Copy;  // Line_To, Polygon, Text_Out: the op in force
  // Text_Out
  std::string text;
  Font_Rec font;
  double height = 0;
  int angle = 0;
  int weight = 400;
};

class RecordingSurface : public Surface {
 public:
  RecordingSurface(int width = 800, int height = 600, double pixels_per_inch = 96.0);

  int Width() const override { return width_; }
  int Height() const override { return height_; }
  double Pixels_Per_Inch() const override { return ppi_; }
  bool Is_Raster() const override { return true; }

  void Set_Pen(Pen_Style style, int width, Colour colour) override;
  void Set_Brush(Colour colour, bool hollow = false) override;
  void Set_Fill_Mode(Fill_Mode mode) override;
  void Set_Raster_Op(Raster_Op op) override;
  void Set_Background_Mode(Background_Mode mode) override;
  void Set_Background_Colour(Colour colour) override;
  void Set_Text_Colour(Colour colour) override;

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

  // Records the rectangle (points), the byte count (value), white_clear
  // (width 1) and black (colour 0, else Invalid_Colour); reports the picture
  // as drawn.
  bool Draw_Picture(int x, int y, int w, int h, std::span<const uint8_t> bytes,
                    Picture_Ink ink) override;

  void Clear() override;
  void Keep_Picture() override;
  void Drop_Picture() override;

  // Everything drawn or set, in order.
  const std::vector<Recorded_Op>& Ops() const { return ops_; }
  // Only the operations of one kind, in order.
  std::vector<Recorded_Op> Ops_Of(Recorded_Op::Kind kind) const;
  // The texts of all Text_Out calls joined in order (handy for assertions).
  std::string All_Text() const;
  void Forget_Ops() { ops_.clear(); }

  // The state in force.
  Pen_Style Pen_Style_Now() const { return pen_style_; }
  int Pen_Width_Now() const { return pen_width_; }
  Colour Pen_Colour_Now() const { return pen_colour_; }
  Colour Text_Colour_Now() const { return text_colour_; }
  Raster_Op Raster_Op_Now() const { return op_; }
  Background_Mode Background_Mode_Now() const { return bk_mode_; }

  // Width in metric units (1 = half a character height) of a UTF-8 text.
  static int Metric_Units(std::string_view text, bool symbol_font);

 private:
  Recorded_Op& Add(Recorded_Op::Kind kind);

  int width_, height_;
  double ppi_;
  std::vector<Recorded_Op> ops_;
  Point pos_;
  Pen_Style pen_style_ = Pen_Style::Solid;
  int pen_width_ = 0;
  Colour pen_colour_ = 0;
  Colour brush_colour_ = 0xFFFFFF;
  bool brush_hollow_ = false;
  Fill_Mode fill_ = Fill_Mode::Alternate;
  Raster_Op op_ = Raster_Op::Copy;
  Background_Mode bk_mode_ = Background_Mode::Opaque;
  Colour bk_colour_ = 0xFFFFFF;
  Colour text_colour_ = 0;
  std::unordered_map<long long, Colour> pixels_;
  std::unordered_map<long long, Colour> kept_pixels_;
};

}  // namespace tevo::platform
