// The seam to the window system for drawing.
//
// Every picture of the program (the main plot, previews, printed pages,
// exported bitmaps, PDF and SVG files) is painted by the same routines through
// this interface; only the surface differs. The model is a small stateful
// device: a selected pen, brush, raster operation, background mode and text
// colour, a current position for line drawing, and text drawn with a font
// record, a pixel height and an angle.
//
// Coordinates are integer pixels, x to the right, y downward, (0, 0) the top
// left of the drawing area. Colours are 0xBBGGRR.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "session/records.h"

namespace tevo::platform {

using Colour = int32_t;  // 0xBBGGRR

// Returned by Get_Pixel outside the drawing area or where the surface keeps
// no pixels.
inline constexpr Colour Invalid_Colour = -1;

enum class Pen_Style : int {
  Solid = 0,
  Dash = 1,
  Dot = 2,
  Dash_Dot = 3,
  Dash_Dot_Dot = 4,
  Null = 5,  // draws nothing (a polygon with fill only)
};

// How a polygon decides inside from outside.
enum class Fill_Mode : int { Alternate = 1, Winding = 2 };

// What a pen or brush does with the pixels below: Copy paints its colour,
// Xor combines colour and pixel bit by bit, so a second identical drawing
// restores the picture. The values are the classic raster-op codes the
// routines pass around (13 copy pen, 7 XOR pen).
enum class Raster_Op : int { Xor = 7, Copy = 13 };

// Whether text cells are filled with the background colour first.
enum class Background_Mode : int { Transparent = 1, Opaque = 2 };

struct Point {
  int x = 0;
  int y = 0;
  bool operator==(const Point&) const = default;
};

struct Text_Size {
  int cx = 0;  // advance width, pixels
  int cy = 0;  // cell height (ascent + descent), pixels
  bool operator==(const Text_Size&) const = default;
};

// How a picture's pixels go onto the surface.
struct Picture_Ink {
  bool white_clear = false;  // its white pixels leave what lies below visible
  bool black = false;        // every pixel that is not white is drawn black
};

// Colour helpers for 0xBBGGRR.
inline constexpr int Red_Of(Colour c) { return c & 0xFF; }
inline constexpr int Green_Of(Colour c) { return (c >> 8) & 0xFF; }
inline constexpr int Blue_Of(Colour c) { return (c >> 16) & 0xFF; }
inline constexpr Colour Rgb(int r, int g, int b) { return (b << 16) | (g << 8) | r; }

class Surface {
 public:
  virtual ~Surface() = default;

  // --- Device ---
  // Size of the drawing area in pixels.
  virtual int Width() const = 0;
  virtual int Height() const = 0;
  // Vertical pixels per inch (the device's logical resolution).
  virtual double Pixels_Per_Inch() const = 0;
  // Pixels per typographic point (1/72 inch): the factor of all font sizes.
  double Pixels_Per_Point() const { return Pixels_Per_Inch() / 72.0; }
  // True when the surface keeps pixels (widget, image): XOR and pixel reads
  // work there. On PDF, SVG and printers XOR drawing falls back to copy.
  virtual bool Is_Raster() const = 0;

  // --- Drawing state ---
  // The pen of lines and polygon outlines. width in pixels; 0 means the
  // thinnest line of the device (one pixel).
  virtual void Set_Pen(Pen_Style style, int width, Colour colour) = 0;
  // The brush of polygon interiors; hollow leaves the interior untouched.
  virtual void Set_Brush(Colour colour, bool hollow = false) = 0;
  virtual void Set_Fill_Mode(Fill_Mode mode) = 0;
  virtual void Set_Raster_Op(Raster_Op op) = 0;
  virtual void Set_Background_Mode(Background_Mode mode) = 0;
  // Colour behind opaque text and the colour Clear fills with.
  virtual void Set_Background_Colour(Colour colour) = 0;
  virtual void Set_Text_Colour(Colour colour) = 0;

  // --- Lines and areas ---
  virtual void Move_To(int x, int y) = 0;
  // A line from the current position to (x, y) in the current pen; the end
  // point itself is not painted, so joined strokes do not XOR a pixel twice.
  // (x, y) becomes the current position.
  virtual void Line_To(int x, int y) = 0;
  virtual Point Current_Position() const = 0;
  // A closed polygon filled with the brush by the fill mode and outlined
  // with the pen. Fewer than two points draw nothing.
  virtual void Polygon(std::span<const Point> points) = 0;
  virtual Colour Get_Pixel(int x, int y) const = 0;
  virtual void Set_Pixel(int x, int y, Colour colour) = 0;

  // --- Text ---
  // Draws text (UTF-8) in the text colour with its cell's top-left corner at
  // (x, y), turned counter-clockwise by angle_tenths (tenths of a degree)
  // about that corner. The font is chosen by font.Face, Italic, Underline,
  // Strike and Charset; its character height is height_px pixels and its
  // weight weight (400 regular, 700 bold; font.Bold, Size and Colour are not
  // read, the caller folds them into weight, height_px and the text colour).
  // With Charset 2 (Symbol) the characters U+0020..U+00FF are Symbol-font
  // codes and are shown as the glyphs of that font (for example "a" as alpha).
  virtual void Text_Out(int x, int y, std::string_view text, const Font_Rec& font, double height_px,
                        int angle_tenths = 0, int weight = 400) = 0;
  // The size of text drawn unturned with that font.
  virtual Text_Size Text_Extent(std::string_view text, const Font_Rec& font, double height_px,
                                int weight = 400) = 0;

  // --- Pictures ---
  // Draws a picture given as the bytes of a picture file stretched over
  // w x h pixels from (x, y). Raster files (PNG, JPEG, BMP, ICO) and
  // metafiles (EMF, WMF) are told apart by their bytes. False, and nothing
  // drawn, when the surface shows no pictures or cannot read the bytes.
  virtual bool Draw_Picture(int x, int y, int w, int h, std::span<const uint8_t> bytes,
                            Picture_Ink ink) {
    (void)x, (void)y, (void)w, (void)h, (void)bytes, (void)ink;
    return false;
  }

  // --- The kept picture ---
  // A surface may keep a picture below what is drawn on it: Clear restores
  // that picture, or fills the whole area with the background colour when
  // none is kept. Keep_Picture makes the present image the picture;
  // Drop_Picture forgets it.
  virtual void Clear() = 0;
  virtual void Keep_Picture() = 0;
  virtual void Drop_Picture() = 0;
};

}  // namespace tevo::platform
