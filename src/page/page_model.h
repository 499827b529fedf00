// The printed sheet: paper sizes, where the spectrum frame and the parameter
// block stand on it (in cm, from the settings), and the mapping of those
// centimetres to the pixels of any surface that shows a window of the sheet.
// Preview, bitmap, PDF and printer differ only in that mapping.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/surface.h"

namespace tevo {
struct Session;
}

namespace tevo::page {

// One paper of the paper combo, in mm, portrait.
struct Paper {
  int16_t Code;
  const char* Name;
  double Width_mm, Height_mm;
};

// The papers by code: A3, A4, A4(small), A5, B4, B5, A4 Half, A4 Full.
const std::vector<Paper>& Paper_Table();

// Name of a paper code and its height and width: mm, or cm when in_cm;
// orient 1 swaps width and height. An unknown code is A4.
std::string Paper_Size(int code, int orient, double& height, double& width, bool in_cm);

// Caption of a paper as the dialogs show it: name, "縦" or "横", width
// "x" height and the unit, e.g. "A4 横 29.7x21 cm".
std::string Paper_Text(int code, int orient, bool in_cm);

// The code of a paper named as in the table (case-insensitive, "A4 Half
// Column" and "A4 Full Column" too), or -1.
int Paper_Code(std::string_view name);

// The page keys of the settings, lengths in cm.
struct Page_Setup {
  int16_t Paper_Code = 9, Orient = 0;
  double Paper_Width = 21, Paper_Height = 29.7;  // of the oriented sheet
  double X_Length = 0, Y_Length = 0;  // the spectrum frame
  double X_Left_Margin = 0, Y_Bottom_Margin = 0;  // its left and bottom edge
  double Y_Bias = 0;  // zero line above the frame bottom
  double Y_Level = 0;  // axis above the frame bottom (may be negative)
  double Para_Left = 0, Para_Top = 0, Para_Width = 0, Para_Height = 0;  // from left and top
  platform::Colour Paper_Colour = 0xFFFFFF, Frame_Colour = 0, Frame_Fill = 0xFFFFFF;
};
Page_Setup Read_Page_Setup(const Session& s);

// A print font from its four keys; an empty name or a size of 0 keeps the
// fallback's, and the result is checked against the faces of the system.
Font_Rec Print_Font(const Session& s, const char* name_key, const char* size_key,
                    const char* bold_key, const char* italic_key, Font_Rec fallback);

// The part of the sheet a surface shows, in cm from the sheet's top left.
struct Page_Window {
  double Left = 0, Right = 0, Top = 0, Bottom = 0;
};
Page_Window Whole_Sheet(const Page_Setup& p);

// Pixels of a length in cm at a resolution (dots per inch), rounded.
int Sheet_Pixels(double cm, double dpi);

struct Pixel_Rect {
  int Left = 0, Top = 0, Right = 0, Bottom = 0;
};

// The sheet on a surface of W x H pixels showing `window`: kx, ky pixels
// per cm, (ox, oy) the pixel of the sheet's top left corner, and the frame,
// zero line, axis and parameter block in pixels.
struct Page_Geometry {
  double Kx = 0, Ky = 0, Ox = 0, Oy = 0;
  Pixel_Rect Sheet, Frame, Para;
  int Zero_Y = 0, Axis_Y = 0;
  double Scale = 1;  // pixels per typographic point: kx x 2.54 / 72
  // A point given in cm from the sheet's left and top.
  int X(double cm) const;
  int Y(double cm) const;
  // A point given as fractions of the frame: x from its left, y from its top.
  int Frame_X(double fraction) const;
  int Frame_Y(double fraction) const;
  // A pen width set in 0.1 mm, at least one pixel.
  int Line_Width(double tenth_mm) const;
  // The inverses: a pixel back to cm from the sheet's left and top, and to
  // fractions of the frame.
  double Cm_X(double px) const;
  double Cm_Y(double px) const;
  double Frame_Fraction_X(double px) const;
  double Frame_Fraction_Y(double px) const;
};
// False (and nothing to draw) when the window is empty.
bool Page_Layout(const Page_Setup& p, int width, int height, const Page_Window& window,
                 Page_Geometry& g);

// Whether the frame and the parameter block lie on the sheet.
bool Page_Fits_Sheet(const Page_Setup& p);

// The standard places of the frame and the parameter block for the paper in
// the settings: the frame 1.5 cm in from the sides and 2.5 cm above the
// bottom, at most 0.7 times as high as wide; the block above it across the
// sheet when there are 4 cm free there, otherwise in the frame's upper left;
// the peak list in the frame's upper right.
void Standard_Page_Places(Session& s);

// --- Bitmaps of a part of the sheet ---
// Largest side of a bitmap export, and of the PNG export.
inline constexpr int Bitmap_Limit = 2048, Png_Limit = 5000;

struct Bitmap_Size {
  int width = 0, height = 0;
  bool operator==(const Bitmap_Size&) const = default;
};

// The size first offered for a copy range of w x h preview pixels: the range
// itself, or, when a side passes Bitmap_Limit, scaled down with its aspect
// (h / w, a 32-bit value) until neither does. A range under 2 pixels either
// way is no range: 0 x 0.
Bitmap_Size Copy_Size(int w, int h);

// The size panel after one side was typed: n clamped to the limit, the
// other side round(n x aspect) (or n / aspect), and when that passes the
// limit it is the limit and n follows from it.
Bitmap_Size Size_From_Width(int n, float aspect, int limit);
Bitmap_Size Size_From_Height(int n, float aspect, int limit);

// Standard_Page_Places when the frame or the block would leave the sheet
// of the settings; true when the places changed.
bool Keep_Page_On_Sheet(Session& s);

// The printer's orientation (0 portrait, 1 landscape) against "PAPER
// ORIENT": when they differ the operator chooses "プリンターの設定を使う"
// (the setting takes the printer's) or "ユーザー(現)の設定を使う" (the
// printer turns to the setting). Returns the orientation to print in, or -1
// when the choice is cancelled.
int Choose_Print_Orientation(Session& s, int printer_orient);

// The message when the printer's paper (mm, as the printer holds it) is
// smaller than the sheet of the settings; returns 0 when it fits, 1 after
// the message.
int Check_Printer_Paper(Session& s, double printer_width_mm, double printer_height_mm);

}  // namespace tevo::page
