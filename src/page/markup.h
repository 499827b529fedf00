// The text markup of every label, axis number, list line and free text.
//
// Inner notation (what the drawing routines read) starts with "\<" and ends
// at "\>" or the end of the string. Commands are switches, each followed by
// an optional blank that belongs to the command:
//   \\  a backslash            \'hh  a byte by hex value (up to ":" or a non-hex)
//   \i1 \i0  italic            \b1 \b0  bold        \u1 \u0  underline
//   \s1 \s0  strike-through    \+1  superscript     \-1  subscript
//   \+0 \-0  normal size and baseline again
//   \g1 \g0  Greek (the Symbol face) on, off
//   \f:name:  face by name     \f0  the start face
//   \p:size:  size in points   \p0  the start size
//   \c:hex:   colour 0xBBGGRR  \c0  the start colour
//   \tb  tab                   \cr  new line
// Anything else after a backslash is passed over.
//
// Grouped notation (what the operator types) uses parentheses that nest:
// "\+(2)", "\i(text)", "\p12(big)", "\cFF(red)", "\f:Arial(x)", "\=(a,b)",
// "\(65)" for a character by code. To_Inner_Text converts it.
//
// Strings are UTF-8; "double-byte" means a character of two bytes in
// Shift-JIS, the unit the byte counts of the files use.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "page/fonts.h"
#include "platform/surface.h"
#include "session/records.h"

namespace tevo::page {

using platform::Colour;
using platform::Surface;

// Converts grouped notation to inner notation. A text that starts with
// "\<" is returned unchanged, an empty one stays empty.
std::string To_Inner_Text(std::string_view text);

// Wraps text typed without markup as inner text: backslashes double, line
// ends become "\cr ", a tab four blanks, other control characters go; a
// later "\<" ends the conversion and the rest is kept as it is. Unless
// charset is 128, runs of double-byte characters are set in Default_Font so
// that Japanese stays readable in a Latin face.
std::string Plain_To_Inner(std::string_view text, int charset);

// The longest head (tail) of text that takes at most n bytes in Shift-JIS; a
// double-byte character counts 2 and is never split.
std::string Cut_To_Bytes(std::string_view text, std::size_t n);
std::string Cut_Right_To_Bytes(std::string_view text, std::size_t n);

// Width and height of a text run in pixels.
struct Text_Metrics {
  double Text_W = 0;
  double Text_H = 0;
};

// Measures one run in one font with `scale` pixels per point. The font is
// taken ten times as large and the extent divided by ten, so the width does
// not depend on the rounding of small pixel sizes. Weight as passed, 700
// when Bold is set. An empty text measures 0 x 0.
Text_Metrics Measure_Text(Surface& hdc, std::string_view text, const Font_Rec& font, double scale,
                          int weight = 400);

// Draws one run with its top-left corner at (x, y), turned by angle degrees
// counter-clockwise, and returns its measure. An angle of 0 is drawn at one
// tenth of a degree, so straight text takes the same shapes as turned text.
Text_Metrics Put_Text(Surface& hdc, int x, int y, std::string_view text, const Font_Rec& font,
                      double angle, double scale, int weight = 400);
// The same in the font's own colour.
Text_Metrics Put_Coloured_Text(Surface& hdc, int x, int y, std::string_view text,
                               const Font_Rec& font, double angle, double scale, int weight = 400);

// What a markup walk leaves behind.
struct Markup_Result {
  double Width = 0;  // the largest pen column reached, pixels from x
  double Next_Y = 0;  // baseline of the last line, pixels below y along the text
  // Mode -2 only: the text that did not fit before the wrap, as inner text
  // carrying the state in force (empty when nothing is left).
  std::string Remainder;
};

// Draws markup (grouped or inner) with the top-left of its first line at
// (x, y), turned by angle degrees counter-clockwise, in colour unless the
// text sets its own. mode > 0 draws, 0 only measures, -2 draws and stops at
// the first wrap, returning the rest. wrap > 0 is the pen column (pixels
// from x) at which a line breaks; a new line starts at pen column
// line_start_x. scale is pixels per point.
Markup_Result Draw_Markup(Surface& hdc, int mode, std::string_view text, double x, double y,
                          double angle, Colour colour, double wrap, double line_start_x,
                          const Font_Rec& font, double scale, int weight = 400);

// The width of markup as Draw_Markup would draw it on one line.
double Measure_Markup(Surface& hdc, std::string_view text, const Font_Rec& font, double scale,
                      int weight = 400);

// Height of the line of inner text that starts at byte `from`: the largest
// of font.Size and every "\p:n:" (n >= 1) up to the next "\cr" or "\>",
// times scale x 1.1.
double Line_Height(std::string_view text, std::size_t from, const Font_Rec& font, double scale);

// --- Rich text ---

// True for text in RTF ("{\rtf" at the start).
bool Is_Rtf(std::string_view text);

// Converts RTF of the page editor's rich-text control to inner notation.
// font and charset stand for the text's own font where the RTF names none.
std::string Rtf_To_Inner(std::string_view rtf, const Font_Rec& font, int charset);

// RTF for another resolution: every font size is scaled by factor (at least
// 2 points), super- and subscripts become raised or lowered text by 0.3 of
// the size in force.
std::string Rtf_Scale(std::string_view rtf, double factor);

// Flags of Draw_Rtf: with these the RTF's automatic colour is the caller's
// colour, otherwise black.
inline constexpr int Rtf_Caller_Colour = 16;
inline constexpr int Rtf_Caller_Colour_Alt = -17;

// Draws RTF with the pen of Draw_Markup; font.Colour is the caller's colour
// and Next_Y of the result the height.
Markup_Result Draw_Rtf(Surface& hdc, int mode, int flags, std::string_view rtf, double x, double y,
                       double angle, const Font_Rec& font, double scale);

}  // namespace tevo::page
