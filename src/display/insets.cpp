#include "display/insets.h"

#include <algorithm>
#include <cmath>

#include "display/axis.h"
#include "display/label_text.h"
#include "display/paint.h"
#include "display/peak_labels.h"
#include "display/spectrum_trace.h"
#include "display/style.h"
#include "display/view_commands.h"
#include "session/command_flow.h"
#include "session/session.h"

namespace tevo::display {

using platform::Colour;
using platform::Raster_Op;
using platform::Surface;

namespace {

// A font of the inset keys: face, size, bold and italic; an empty face is
// the gothic one and a size of 0 the display's 9 points.
Font_Rec Inset_Font(const Session& s, const char* face, const char* size, const char* bold,
                    const char* italic) {
  Font_Rec f;
  f.Face = Setting_Text(s, face, Gothic_Face);
  if (f.Face.empty()) f.Face = Gothic_Face;
  f.Size = static_cast<float>(Setting_Num(s, size, 9));
  if (!(f.Size > 0)) f.Size = 9;
  f.Bold = static_cast<int16_t>(Setting_Int(s, bold, 0));
  f.Italic = static_cast<int16_t>(Setting_Int(s, italic, 0));
  return f;
}

void Box(Surface& surf, int left, int top, int right, int bottom) {
  surf.Move_To(left, top);
  surf.Line_To(right, top);
  surf.Line_To(right, bottom);
  surf.Line_To(left, bottom);
  surf.Line_To(left, top);
}

bool Valid(const Session& s, int index) {
  return index >= 0 && index < static_cast<int>(s.Insets.size());
}

// Integral curves (and bases) of all regions in the inset, the curves
// scaled by the inset's own factor on top of Integ_Scale.
void Draw_Inset_Integrals(Session& s, Surface& surf, const Inset_Rec& r, const Inset_Box& b,
                          double full, double offset, double ppp) {
  const Colour colour = Setting_Colour(s, "DISP INTEG COL", 0x008000);
  const float scale = s.Integ_Scale;
  s.Integ_Scale = static_cast<float>(scale * r.Integ_Expand);
  for (int i = 0; i < static_cast<int>(s.Integrals.size()); ++i) {
    Draw_Integral_Curve(s, surf, i, colour, r.Inset_Left, r.Inset_Right, b.left, b.right, b.top,
                        b.base, ppp, false);
    if (r.Show_Integ_Base)
      Draw_Integral_Base(s, surf, i, colour, r.Inset_Left, r.Inset_Right, b.left, b.right, full,
                         offset, b.base, b.top, false);
  }
  s.Integ_Scale = scale;
}

// A short upright mark over each peak of the inset's window, with the
// peak's number above it (numbers = true) in the inset's peak font.
void Draw_Inset_Tops(Session& s, Surface& surf, const Inset_Rec& r, const Inset_Box& b,
                     double full, double offset, Colour colour, bool numbers, double ppp) {
  surf.Set_Raster_Op(Raster_Op::Xor);
  surf.Set_Pen(platform::Pen_Style::Solid, 1, colour);
  for (std::size_t i = 0; i < s.Peaks.size(); ++i) {
    const Peak_Rec& pk = s.Peaks[i];
    const double ppm = pk.Freq_Hz / s.Spectrum_Frequency + s.Spec_Axis[0];
    const int x = Round_Pixel(X_To_Pixel(ppm, r.Inset_Left, r.Inset_Right, b.left, b.right));
    if (x <= b.left || x >= b.right) continue;
    const Ppm_Lookup at = Point_From_Ppm(s, static_cast<float>(ppm), s.Row());
    const int y = std::max(Round_Pixel(Y_To_Pixel(at.height, b.base, b.top, full, offset)), b.top + 12);
    surf.Move_To(x, y - 12);
    surf.Line_To(x, y - 2);
    if (!numbers) continue;
    const std::string text = std::to_string(i + 1);
    const Label_Size size = Measure_Label(surf, text, r.Peak_Font, ppp);
    int y_end = 0;
    Draw_Xor_Text(surf, x - size.width / 2, y - 14 - size.height, y_end, text, colour, r.Peak_Font, ppp);
    surf.Set_Pen(platform::Pen_Style::Solid, 1, colour);
  }
}

}  // namespace

Inset_Box Inset_Rectangle(const Plot_Frame& f, const Inset_Rec& r) {
  const double B = f.Frame_Base, d = f.Frame_Base - f.Frame_Top;
  const double w = f.Frame_Right - f.Frame_Left;
  Inset_Box b;
  b.left = Round_Pixel(r.Frame_X0 * w + f.Frame_Left);
  b.right = Round_Pixel(r.Frame_X1 * w + f.Frame_Left);
  b.top = Round_Pixel(B - d * r.Frame_Y1);
  b.base = Round_Pixel(B - d * 0.06 / 1.06 - d * r.Frame_Y0);
  b.axis = Round_Pixel(B - d * 0.04 / 1.06 - d * r.Frame_Y0);
  b.bottom = Round_Pixel(B - d * r.Frame_Y0);
  return b;
}

bool Inset_Y_Scale(const Session& s, const Inset_Rec& r, double& full, double& offset) {
  // To six decimals, so that a height of 0.06 stored in real32 counts as
  // no room at all.
  const double q = std::nearbyint((static_cast<double>(r.Frame_Y1) - r.Frame_Y0 - 0.06) * 1e6) / 1e6;
  full = r.Inset_Y_Full != 0 ? s.Max_Abs / r.Inset_Y_Full * q : 0;
  offset = q != 0 ? r.Inset_Y_Offset / q * r.Inset_Y_Full : 0;
  return full > 0 && std::isfinite(full);
}

Inset_Rec New_Inset_Record(const Session& s) {
  Inset_Rec r;
  r.Axis_Font = Inset_Font(s, "MULTI AXIS FONT", "MUL AX FONTSIZE", "MUL AX FONTBOLD", "MUL AX FONTITA");
  r.Peak_Font = Inset_Font(s, "MULTI PEAK FONT", "ML PEAK FONTSIZE", "ML PEAK FONTBOLD", "ML PEAK FONTITA");
  r.Value_Font = r.Integ_Font = r.Peak_Font;
  auto i16 = [&s](const char* key, int def) { return static_cast<int16_t>(Setting_Int(s, key, def)); };
  auto f32 = [&s](const char* key, double def) { return static_cast<float>(Setting_Num(s, key, def)); };
  r.Peak_Pos = i16("MULTI PEAK POS", 1);
  r.Show_Axis = i16("MULTI SCALE DISP", 1);
  r.Show_Values = i16("MULTI PEAK DISP", 0);
  r.Show_Integrals = i16("MULTI INTEG DISP", 0);
  r.Show_Integ_Base = i16("MULTI INTEG BASE", 0);
  r.Show_Border = i16("MULTI WAKU DISP", 1);
  r.Integ_Level = f32("ML INTEG LEVEL", 0);
  r.Integ_Expand = f32("ML INTEG EXPAND", 1);
  if (!(r.Integ_Expand > 0)) r.Integ_Expand = 1;
  r.Tick_Mode = i16("ML SCALE MODE", 0);
  r.Unit = i16("ML SCALE UNIT", 0);
  r.Tick_Step1 = f32("ML SCALE STEP1", 0);
  r.Tick_Inc1 = f32("ML SCALE INC1", 0);
  r.Tick_Step2 = f32("ML SCALE STEP2", 0);
  r.Tick_Inc2 = f32("ML SCALE INC2", 0);
  r.Axis_Digit = i16("MUL AX DIGIT", 1);
  r.Integ_Digit = i16("MUL INT DIGIT", 2);
  r.Peak_Digit = i16("MUL PEAK DIGIT", 2);
  r.Peak_Unit = i16("MUL PEAK UNIT", 0);
  r.Line_Colour = Setting_Colour(s, "MULTI COLOR", 0);
  r.Fill_Colour = Setting_Colour(s, "MU BG COLOR", 0xFFFFFF);
  r.Opaque = static_cast<int16_t>(Setting_Int(s, "MUL BG COL TRANS", 0) == 0 ? 1 : 0);
  r.Border_Colour = Setting_Colour(s, "MUL WAKU COL", 0);
  r.Show_Tops = i16("MUL PEAK TOP", 0);
  r.Show_Numbers = i16("MUL PEAK NUM", 0);
  r.Font_Mag = f32("MUL FONT MAG", 1);
  r.Font_Mag_Mode = i16("MUL FONTMAG MODE", 0);
  r.Peakline_Top = f32("MUL PEAKLINE TOP", 0);
  r.Peakline_Bottom = f32("MUL PEAKLINE BOT", 0);
  r.Inset_X_Mag = f32("MULTI EXPAND X", 2.0);
  r.Inset_Y_Mag = f32("MULTI EXPAND Y", 2.0);
  return r;
}

void Refresh_Inset_Scale(Session& s) {
  for (Inset_Rec& r : s.Insets) {
    const double v = (static_cast<double>(r.Frame_X1) - r.Frame_X0) *
                     (static_cast<double>(s.X_Left) - s.X_Right) /
                     (static_cast<double>(r.Inset_Left) - r.Inset_Right);
    if (!(v > 0) || !std::isfinite(v)) continue;
    const double e = std::log10(v);
    const double i = std::floor(e);
    const double m = std::pow(10.0, e - i);
    // Two roundings, as the text under the inset shows three figures.
    const double m3 = std::nearbyint(std::nearbyint(m * 1000 + 1) / 10) / 100;
    r.Inset_X_Scale = static_cast<float>(m3 * std::pow(10.0, i));
  }
}

void Draw_Multiview(Session& s, Surface& surf, const Plot_Frame& f, int index) {
  if (!Valid(s, index) || s.Disp_Points <= 0 || s.Disp_Y.Empty()) return;
  const Inset_Rec& r = s.Insets[static_cast<std::size_t>(index)];
  double full = 0, offset = 0;
  if (!Inset_Y_Scale(s, r, full, offset)) return;
  const Inset_Box b = Inset_Rectangle(f, r);
  const Trace_Vertices t =
      Decimate_Trace(s.Disp_X, s.Disp_Y.Row(static_cast<std::size_t>(s.Row())), s.Disp_Points,
                     r.Inset_Left, r.Inset_Right, b.left, b.right, full, offset, b.base, b.top, b.axis);
  surf.Set_Raster_Op(Raster_Op::Copy);
  surf.Set_Pen(platform::Pen_Style::Solid, 1, r.Line_Colour);
  Stroke(surf, t.points);
}

void MultiView_Axis_X(Session& s, Surface& surf, double left, double right, int x0, int x1, int y,
                      int& bottom, int index, double pixel_per_point) {
  if (!Valid(s, index)) return;
  const Inset_Rec& r = s.Insets[static_cast<std::size_t>(index)];
  Axis_Style a = Main_Axis_Style(s);
  a.width = 1;
  if (r.Font_Mag_Mode != 0)
    a.font.Size = static_cast<float>(a.font.Size * r.Font_Mag);
  else
    a.font = r.Axis_Font;
  a.unit = r.Unit;
  a.fixed = r.Tick_Mode != 0;
  a.step = r.Unit == 0 ? r.Tick_Step1 : r.Tick_Step2;
  a.minor = r.Unit == 0 ? r.Tick_Inc1 : r.Tick_Inc2;
  if (r.Unit == 2) {
    a.step *= 0.001;
    a.minor *= 0.001;
  }
  a.fixed = a.fixed && a.step != 0;
  if (a.unit_pos != 3) a.unit_pos = 0;
  Draw_Axis_Styled(surf, a, left, right, x0, x1, y, bottom, pixel_per_point);
}

void Draw_Inset_Peak_Labels(Session& s, Surface& surf, const Plot_Frame& f, int index,
                            int axis_bottom) {
  if (!Valid(s, index)) return;
  const Inset_Rec& r = s.Insets[static_cast<std::size_t>(index)];
  const Inset_Box b = Inset_Rectangle(f, r);
  Peak_Label_Style st;
  st.font = r.Peak_Font;
  st.digits = r.Peak_Digit;
  st.unit = r.Peak_Unit;
  st.axis_unit = r.Unit;
  st.above = r.Peak_Pos != 0;
  st.text_colour = r.Peak_Font.Colour;
  st.line_colour = r.Line_Colour;
  Draw_Peak_Values(s, surf, st, r.Inset_Left, r.Inset_Right, b.left, b.right, b.top, b.base,
                   axis_bottom, f.Frame_Bottom * 30 / 1200, f.Pixel_Per_Point);
}

void Draw_Insets(Session& s, Surface& surf, const Plot_Frame& f, Colour background) {
  const bool in_mode = s.Mode.Edit_Mode == session::Mode_Inset;
  const double ppp = f.Pixel_Per_Point;
  for (int i = 0; i < static_cast<int>(s.Insets.size()); ++i) {
    const Inset_Rec& r = s.Insets[static_cast<std::size_t>(i)];
    double full = 0, offset = 0;
    if (!Inset_Y_Scale(s, r, full, offset)) continue;
    const Inset_Box b = Inset_Rectangle(f, r);
    surf.Set_Raster_Op(Raster_Op::Xor);
    if (r.Opaque) {
      const Colour fill = static_cast<Colour>(r.Fill_Colour) ^ background;
      surf.Set_Pen(platform::Pen_Style::Solid, 1, fill);
      surf.Set_Brush(fill);
      const platform::Point corners[4] = {
          {b.left, b.top}, {b.right, b.top}, {b.right, b.bottom}, {b.left, b.bottom}};
      surf.Polygon(corners);
    }
    if (r.Show_Border) {
      surf.Set_Pen(platform::Pen_Style::Solid, 1, static_cast<Colour>(r.Border_Colour) ^ background);
      Box(surf, b.left, b.top, b.right, b.bottom);
    } else if (in_mode) {
      surf.Set_Pen(platform::Pen_Style::Solid, 1,
                   Setting_Colour(s, "DISP MULTWAKUCOL", 0x808080) ^ background);
      Box(surf, b.left, b.top, b.right, b.bottom);
    }
    if (in_mode && i == s.Inset_Cur) {
      // Two pixels outside the border, which the XOR would wipe out if it
      // fell on the same line.
      surf.Set_Pen(platform::Pen_Style::Solid, 1, Setting_Colour(s, "Cursor COL 1", 0x0000FF) ^ background);
      Box(surf, b.left - 2, b.top - 2, b.right + 2, b.bottom + 2);
    }
    Draw_Multiview(s, surf, f, i);
    if (r.Show_Integrals) Draw_Inset_Integrals(s, surf, r, b, full, offset, ppp);
    int axis_bottom = b.axis;
    if (r.Show_Axis && r.Inset_Left != r.Inset_Right)
      MultiView_Axis_X(s, surf, Ppm_To_Unit(s, r.Inset_Left, r.Unit), Ppm_To_Unit(s, r.Inset_Right, r.Unit),
                       b.left, b.right, b.axis, axis_bottom, i, ppp);
    if (r.Show_Values) Draw_Inset_Peak_Labels(s, surf, f, i, axis_bottom);
    if (r.Show_Tops || r.Show_Numbers)
      Draw_Inset_Tops(s, surf, r, b, full, offset, Setting_Colour(s, "DISP PEAKTOP COL", 0x0000FF) ^ background,
                      r.Show_Numbers != 0, ppp);
  }
  surf.Set_Raster_Op(Raster_Op::Copy);
}

}  // namespace tevo::display
