#include "display/paint.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "display/array_stack.h"
#include "display/axis.h"
#include "display/insets.h"
#include "display/label_text.h"
#include "display/peak_labels.h"
#include "display/spectrum_trace.h"
#include "display/style.h"
#include "display/view_commands.h"
#include "editing/integral_sum.h"
#include "editing/reference.h"
#include "overlay/difference.h"
#include "overlay/overlay_set.h"
#include "overlay/slot_edit.h"
#include "session/number_text.h"
#include "session/session.h"

namespace tevo::display {

using platform::Colour;
using platform::Raster_Op;
using platform::Surface;

namespace {

bool Spectrum_Loaded(const Session& s) {
  return s.Spec_Points > 0 && s.Disp_Points > 0 && !s.Disp_Y.Empty() && !s.Disp_X.empty();
}

int Level_Y(const Session& s, const Plot_Frame& f, double level) {
  return Round_Pixel(Y_To_Pixel(s.Max_Abs * level, f.Frame_Base, f.Frame_Top, s.Y_Full_Scale,
                                s.Y_Offset));
}

void Line(Surface& surf, int xa, int ya, int xb, int yb) {
  surf.Move_To(xa, ya);
  surf.Line_To(xb, yb);
}

int Ppm_Pixel(const Session& s, const Plot_Frame& f, double ppm) {
  return Round_Pixel(X_To_Pixel(ppm, s.X_Left, s.X_Right, f.Frame_Left, f.Frame_Right));
}

// y of the spectrum at a ppm value, never above Frame_Top + 10.
int Value_Y(Session& s, const Plot_Frame& f, double ppm) {
  const Ppm_Lookup at = Point_From_Ppm(s, static_cast<float>(ppm), s.Row());
  const int y = Round_Pixel(
      Y_To_Pixel(at.height, f.Frame_Base, f.Frame_Top, s.Y_Full_Scale, s.Y_Offset));
  return std::max(y, f.Frame_Top + 10);
}

bool Strictly_Inside(const Plot_Frame& f, int px) {
  return px > f.Frame_Left && px < f.Frame_Right;
}

// A marked spot of the phase or reference mode: a vertical line from
// Marker_Top to the axis with its name beside the top. A NaN ppm is not drawn.
struct Point_Marker {
  double ppm;
  const char* colour_key;
  Colour default_colour;
  const char* name;
};

void Draw_Point_Markers(Session& s, Surface& surf, const Plot_Frame& f, Colour background,
                        std::span<const Point_Marker> markers) {
  Font_Rec font;
  font.Face = Gothic_Face;
  font.Size = 9;
  const int th = Text_Height(surf, "P", font, f.Pixel_Per_Point);
  for (const Point_Marker& m : markers) {
    if (!std::isfinite(m.ppm)) continue;
    const Colour c = Setting_Colour(s, m.colour_key, m.default_colour);
    const int x = Ppm_Pixel(s, f, m.ppm);
    surf.Set_Raster_Op(Raster_Op::Xor);
    surf.Set_Pen(platform::Pen_Style::Solid, 1, c);
    Line(surf, x, f.Marker_Top, x, f.Axis_Y);
    int y_end = 0;
    Draw_Xor_Text(surf, x + 2, f.Axis_Y - th, y_end, m.name, c ^ background, font,
                  f.Pixel_Per_Point);
  }
}

// Level lines, baseline crosses, phase pivots or reference marks of the open
// edit panel.
void Draw_Edit_Lines(Session& s, Surface& surf, const Plot_Frame& f, Colour background) {
  switch (s.Mode.Edit_Mode) {
    case 4: {
      const std::pair<double, const char*> lines[] = {
          {s.Peak_Level, "TH COLOR"}, {s.Noise_Level, "NL COLOR"}, {s.Base_Level, "BA COLOR"}};
      const Colour defaults[] = {0x0000FF, 0xFF0000, 0x008000};
      for (int k = 0; k < 3; ++k) {
        surf.Set_Pen(platform::Pen_Style::Solid, 1, Setting_Colour(s, lines[k].second, defaults[k]));
        const int y = Level_Y(s, f, lines[k].first);
        Line(surf, f.Frame_Left, y, f.Frame_Right, y);
      }
      break;
    }
    case 3: {
      surf.Set_Pen(platform::Pen_Style::Solid, 1, Setting_Colour(s, "Cursor COL 1", 0x0000FF));
      const auto row = static_cast<std::size_t>(s.Row());
      for (int32_t p : s.Base_Point) {
        if (p < 0 || p >= s.Spec_Points) continue;
        const int x = Ppm_Pixel(s, f, s.Spec_Axis[static_cast<std::size_t>(p)]);
        const int y = Round_Pixel(Y_To_Pixel(s.Spec_Re(static_cast<std::size_t>(p), row),
                                             f.Frame_Base, f.Frame_Top, s.Y_Full_Scale,
                                             s.Y_Offset));
        Line(surf, x - 5, y, x + 6, y);
        Line(surf, x, y - 5, x, y + 6);
      }
      break;
    }
    case 2: {
      const auto at = [&](int32_t p) {
        return p >= 0 && p < s.Spec_Points ? static_cast<double>(s.Spec_Axis[static_cast<std::size_t>(p)])
                                           : std::nan("");
      };
      const Point_Marker pivots[] = {{at(s.Pivot_Pp), "PP COLOR", 0x0000FF, "pp"},
                                     {at(s.Pivot_P2), "PP2 COLOR", 0x008000, "p2"}};
      Draw_Point_Markers(s, surf, f, background, pivots);
      break;
    }
    case 1: {
      // "P" where the axis reads the reference value, "p2" where the
      // reference stood when the mode was entered, once it has moved away
      // (two XOR lines on one column would wipe each other out).
      Point_Marker refs[] = {{s.Param.SMEXR, "PP COLOR", 0x0000FF, "P"},
                             {editing::Entry_Reference_Ppm(s), "PP2 COLOR", 0x008000, "p2"}};
      if (std::isfinite(refs[1].ppm) && Ppm_Pixel(s, f, refs[1].ppm) == Ppm_Pixel(s, f, refs[0].ppm))
        refs[1].ppm = std::nan("");
      Draw_Point_Markers(s, surf, f, background, refs);
      break;
    }
    default:
      break;
  }
}

// Numbered marks (numbers = true) or plain top marks over each peak.
void Draw_Peak_Marks(Session& s, Surface& surf, const Plot_Frame& f, Colour background,
                     bool numbers) {
  const Colour top_colour = Setting_Colour(s, "DISP PEAKTOP COL", 0x0000FF) ^ background;
  const Colour num_colour = Setting_Colour(s, "DISP PEAK NUMCOL", 0) ^ background;
  Font_Rec font = Setting_Font(s, "DISP PFONT", 9);
  font.Bold = font.Italic = 0;
  const int width = numbers ? 1 : Round_Pixel(Setting_Num(s, "DISP PEAKTOPWIDT", 1));
  const bool reversed = Setting_Int(s, "PEAK LIST DIRECT", 0) != 0;
  const int count = static_cast<int>(s.Peaks.size());
  for (int i = 0; i < count; ++i) {
    const Peak_Rec& pk = s.Peaks[static_cast<std::size_t>(i)];
    const double ppm = pk.Freq_Hz / s.Spectrum_Frequency + s.Spec_Axis[0];
    const int px = Ppm_Pixel(s, f, ppm);
    if (!Strictly_Inside(f, px)) continue;
    const int y = Value_Y(s, f, ppm);
    surf.Set_Pen(platform::Pen_Style::Solid, width, top_colour);
    Line(surf, px, y - 12, px, y - 2);
    if (!numbers) continue;
    const int lx = Round_Pixel(px + 40 * pk.Label_Dx);
    const int ly = Round_Pixel(y - 12 - 40 * pk.Label_Dy);
    Line(surf, px, y - 12, lx, ly);
    const std::string text = std::to_string(reversed ? count - i : i + 1);
    const Label_Size size = Measure_Label(surf, text, font, f.Pixel_Per_Point);
    int y_end = 0;
    Draw_Xor_Text(surf, lx - size.width / 2, ly - size.height, y_end, text, num_colour, font,
                  f.Pixel_Per_Point);
  }
}

void Draw_Integrals(Session& s, Surface& surf, const Plot_Frame& f) {
  const bool mode5 = s.Mode.Edit_Mode == 5;
  const bool bases = Setting_Int(s, "INTEG BASE DISP", 1) == 1 || mode5;
  const Colour colour = mode5 ? 0xFF0000 : Setting_Colour(s, "DISP INTEG COL", 0x008000);
  const int n = static_cast<int>(s.Integrals.size());
  for (int i = 0; i < n; ++i) editing::Calc_Integral(s, i);
  auto curve = [&](int i, Colour c) {
    Draw_Integral_Curve(s, surf, i, c, s.X_Left, s.X_Right, f.Frame_Left, f.Frame_Right,
                        f.Frame_Top, f.Frame_Base, f.Pixel_Per_Point, mode5);
  };
  auto base = [&](int i, Colour c) {
    Draw_Integral_Base(s, surf, i, c, s.X_Left, s.X_Right, f.Frame_Left, f.Frame_Right,
                       s.Y_Full_Scale, s.Y_Offset, f.Frame_Base, f.Frame_Top, mode5);
  };
  for (int i = 0; i < n; ++i) {
    curve(i, colour);
    if (bases) base(i, colour);
  }
  // The selected region again: XOR twice takes it out of the common colour,
  // and it is drawn once more in red.
  if (mode5 && s.Integ_Cur >= 0 && s.Integ_Cur < n) {
    base(s.Integ_Cur, colour);
    curve(s.Integ_Cur, 0x0000FF);
    base(s.Integ_Cur, 0x0000FF);
  }
}

std::vector<std::string> Draw_Distance_Cursors(Session& s, Surface& surf, const Plot_Frame& f) {
  const int32_t last = s.Disp_Points - 1;
  s.Cursor_Left = std::clamp(s.Cursor_Left, 0, last);
  s.Cursor_Right = std::clamp(s.Cursor_Right, 0, last);
  const std::pair<int32_t*, int32_t*> cursors[] = {{&s.Cursor_Left, &s.Cursor_Left_Frozen},
                                                   {&s.Cursor_Right, &s.Cursor_Right_Frozen}};
  const char* keys[] = {"Cursor COL START", "Cursor COL END"};
  double ppm[2];
  for (int k = 0; k < 2; ++k) {
    const int32_t idx = *cursors[k].first;
    ppm[k] = s.Disp_X[static_cast<std::size_t>(idx)];
    const int x = Ppm_Pixel(s, f, ppm[k]);
    if (x < f.Frame_Left || x > f.Frame_Right) {
      *cursors[k].second = -1;
      continue;
    }
    *cursors[k].second = idx;
    const int y = Value_Y(s, f, ppm[k]);
    surf.Set_Pen(platform::Pen_Style::Solid, 1, Setting_Colour(s, keys[k], 0x0000FF));
    Line(surf, x, y - 20, x, y - 2);
  }
  return Distance_Text(s, ppm[0], ppm[1]);
}

}  // namespace

void Draw_Xor_Text(Surface& surf, int x, int y, int& y_end, const std::string& text,
                   Colour colour, const Font_Rec& font, double pixel_per_point) {
  // The surface applies the XOR raster op to text itself, so no pixel copy
  // through a helper picture is needed.
  surf.Set_Raster_Op(Raster_Op::Xor);
  const Label_Size size = Measure_Label(surf, text, font, pixel_per_point);
  Draw_Label(surf, x, y, text, font, colour, pixel_per_point);
  y_end = y + size.height;
}

void Draw_Xor_Text_Rotated(Surface& surf, int x, int y, int& y_end, const std::string& text,
                           Colour colour, double pixel_per_point, const Font_Rec& font) {
  surf.Set_Raster_Op(Raster_Op::Xor);
  const Label_Size size = Measure_Label(surf, text, font, pixel_per_point);
  Draw_Label(surf, Round_Pixel(x - 0.8 * size.height), y, text, font, colour, pixel_per_point, 90);
  y_end = y - size.width;
}

void Draw_Integral_Curve(Session& s, Surface& surf, int index, Colour colour, double left,
                         double right, int x0, int x1, int top, int bottom, double pixel_per_point,
                         bool in_mode) {
  (void)in_mode;
  if (index < 0 || index >= static_cast<int>(s.Integrals.size()) || right == left) return;
  const Integ_Rec& r = s.Integrals[static_cast<std::size_t>(index)];
  const int32_t hi = std::min(r.End_Point, s.Spec_Points - 1), lo = std::max(r.Start_Point, 0);
  if (hi < lo) return;
  const int pa = Round_Pixel(X_To_Pixel(s.Spec_Axis[static_cast<std::size_t>(hi)], left, right, x0, x1));
  const int pb = Round_Pixel(X_To_Pixel(s.Spec_Axis[static_cast<std::size_t>(lo)], left, right, x0, x1));
  const int xl = std::min(x0, x1), xr = std::max(x0, x1);
  if (std::max(pa, pb) < xl || std::min(pa, pb) > xr) return;
  // The curve rises from its foot by the running sum: g pixels per unit of
  // the sum (negative: up).
  const double n = s.Spec_Points;
  const double g = (top - bottom) * static_cast<double>(s.Integ_Scale);
  const double a = (r.B0 + r.B1 * r.End_Point / n) * g;
  const double b = g / s.Max_Abs;
  const double c = r.B1 / n * g;
  const auto row = static_cast<std::size_t>(s.Row());
  double yv = bottom - r.Curve_Y * (bottom - top);
  std::vector<platform::Point> v;
  int column = INT32_MIN;
  for (int32_t i = hi; i >= lo; --i) {
    yv += a + b * s.Spec_Re(static_cast<std::size_t>(i), row) - c * i;
    const int px = Round_Pixel(X_To_Pixel(s.Spec_Axis[static_cast<std::size_t>(i)], left, right, x0, x1));
    if (px == column || px < xl || px > xr) continue;
    column = px;
    v.push_back({px, std::clamp(Round_Pixel(yv), top, bottom)});
  }
  if (v.size() < 2) return;
  surf.Set_Raster_Op(Raster_Op::Xor);
  surf.Set_Pen(platform::Pen_Style::Solid, Round_Pixel(Setting_Num(s, "DISP INTEG WIDTH", 1)),
               colour);
  Stroke(surf, v);

  const std::size_t ref = static_cast<std::size_t>(s.Integ_Ref_Index);
  const double ref_value = ref < s.Integrals.size() ? s.Integrals[ref].Value : 0.0;
  const std::string text =
      ref_value == 0 ? "0000"
                     : Format_Number(r.Value / ref_value * s.Integ_Ref,
                                     Number_Format(Setting_Int(s, "DISP INTEG DIGIT", 2)));
  int y_end = 0;
  Draw_Xor_Text_Rotated(surf, v.back().x, v.back().y - 5, y_end, text, colour, pixel_per_point,
                        Setting_Font(s, "DISP INFONT", 9));
}

void Draw_Integral_Base(Session& s, Surface& surf, int index, Colour colour, double left,
                        double right, int x0, int x1, double full_scale, double offset, int base,
                        int top, bool in_mode) {
  if (index < 0 || index >= static_cast<int>(s.Integrals.size()) || right == left ||
      full_scale == 0)
    return;
  const Integ_Rec& r = s.Integrals[static_cast<std::size_t>(index)];
  const int32_t hi = std::min(r.End_Point, s.Spec_Points - 1), lo = std::max(r.Start_Point, 0);
  if (hi <= lo) return;
  const double n = s.Spec_Points;
  // The baseline the sum takes off, in signal units, at a point k.
  auto level = [&](int32_t k) { return -(r.B0 + r.B1 * (r.End_Point - k) / n) * s.Max_Abs; };
  auto at = [&](int32_t k) {
    return platform::Point{
        Round_Pixel(X_To_Pixel(s.Spec_Axis[static_cast<std::size_t>(k)], left, right, x0, x1)),
        Round_Pixel(Y_To_Pixel(level(k), base, top, full_scale, offset))};
  };
  const platform::Point ends[2] = {at(lo), at(hi)};
  if (ends[0].x == ends[1].x) return;
  const int xl = std::min(x0, x1), xr = std::max(x0, x1);
  if (std::max(ends[0].x, ends[1].x) < xl || std::min(ends[0].x, ends[1].x) > xr) return;
  surf.Set_Raster_Op(Raster_Op::Xor);
  surf.Set_Pen(platform::Pen_Style::Solid, 1, colour);
  Line(surf, ends[0].x, ends[0].y, ends[1].x, ends[1].y);
  for (const platform::Point& e : ends) {
    if (in_mode) {
      surf.Set_Brush(colour);
      const platform::Point sq[4] = {
          {e.x - 3, e.y - 3}, {e.x + 3, e.y - 3}, {e.x + 3, e.y + 3}, {e.x - 3, e.y + 3}};
      surf.Polygon(sq);
    } else {
      Line(surf, e.x, e.y - 8, e.x, e.y + 8);
    }
  }
}

namespace {

// Overlay slot k over the main spectrum, with its offset, full scale and
// colour, moved sideways by the slant; a slot with its peak column checked
// gets a short mark above each of its peaks, one with its integral column
// checked its integral curves.
void Draw_Slot(const Session& s, Surface& surf, const Plot_Frame& f, int k) {
  const Overlay_Slot& o = s.Overlay[static_cast<std::size_t>(k)];
  const overlay::Slot_Trace t = overlay::Drawn_Slot(s, k);
  if (o.Slot_Show != 1 || t.points < 1 || !(t.full > 0)) return;
  double left = 0, right = 0;
  overlay::Slot_Draw_Limits(s, k, left, right);
  const Colour colour = overlay::Slot_Colour(s, k);
  Draw_Overlay_Trace(s, surf, t.x, t.y, t.points, left, right, f.Frame_Left, f.Frame_Right, t.full,
                     o.Slot_Y_Offset, f.Frame_Base, f.Frame_Top, f.Frame_Bottom, colour);
  if (left == right || t.y.data() != o.Slot_Y.data()) return;  // a DEPT sub-spectrum has no lists
  // With its integral column checked, the slot's integral curves: the slot
  // as a spectrum of its own (as the overlay editor sees it) through the
  // main integral drawing, raised with the slot's offset.
  if (o.Slot_Show_Integrals == 1 && !o.Slot_Integrals.empty()) {
    Session w = overlay::Session_From_Slot(s, k);
    const int lift = Round_Pixel(Y_To_Pixel(0, f.Frame_Base, f.Frame_Top, t.full, o.Slot_Y_Offset)) - f.Frame_Base;
    for (int i = 0; i < static_cast<int>(w.Integrals.size()); ++i) {
      editing::Calc_Integral(w, i);
      Draw_Integral_Curve(w, surf, i, colour, left, right, f.Frame_Left, f.Frame_Right, f.Frame_Top + lift,
                          f.Frame_Base + lift, f.Pixel_Per_Point, false);
    }
  }
  // Peak marks go with the slot's own trace.
  if (o.Slot_Show_Peaks != 1) return;
  const double full = t.full;
  surf.Set_Pen(platform::Pen_Style::Solid, 1, colour);
  const auto n = static_cast<int32_t>(std::min({o.Slot_X.size(), o.Slot_Y.size(), static_cast<std::size_t>(o.Slot_Points)}));
  for (const Peak_Rec& p : o.Slot_Peaks) {
    if (p.Point < 0 || p.Point >= n) continue;
    const auto i = static_cast<std::size_t>(p.Point);
    const int px = Round_Pixel(X_To_Pixel(o.Slot_X[i], left, right, f.Frame_Left, f.Frame_Right));
    if (!Strictly_Inside(f, px)) continue;
    const int py = std::max(
        Round_Pixel(Y_To_Pixel(o.Slot_Y[i], f.Frame_Base, f.Frame_Top, full, o.Slot_Y_Offset)), f.Frame_Top + 12);
    Line(surf, px, py - 12, px, py - 2);
  }
}

}  // namespace

Paint_Result Picture1_Paint(Session& s, Surface& surf) {
  Paint_Result out;
  const Colour background = Setting_Colour(s, "COL BACKGROUND", 0xFFFFFF);
  surf.Set_Background_Colour(background);
  surf.Set_Raster_Op(Raster_Op::Copy);
  surf.Clear();

  const bool array_view = s.Array_Rows > 1 && Setting_Int(s, "DISP ARRAY MODE", 0) != 0;
  const double ppp = surf.Pixels_Per_Point();
  Plot_Frame f = array_view ? Make_Array_Frame(0, surf.Width(), 0, surf.Height(), ppp,
                                               Setting_Num(s, "X AXIS RATIO", 0))
                            : Make_Plot_Frame(0, surf.Width(), 0, surf.Height(), ppp);
  const Axis_Limits lim = View_In_Axis_Unit(s);
  const bool loaded = Spectrum_Loaded(s);

  if (!s.Keep_Base_Layer) {
    surf.Drop_Picture();
    surf.Clear();
    if (Setting_Int(s, "DISPLAY GRID", 0) == 1) {
      const double q = s.Max_Abs != 0 ? s.Y_Full_Scale / s.Max_Abs : 1.0;
      const double ylow = -s.Y_Offset * q;
      Draw_Grid(s, surf, lim.left, lim.right, ylow, ylow + q, f.Frame_Left, f.Frame_Right,
                f.Frame_Base, f.Frame_Top);
    }
    if (loaded && array_view) {
      Draw_Spec_Array(s, surf, s.X_Left, s.X_Right, f.Frame_Left, f.Frame_Right,
                      f.Frame_Left_Last, f.Frame_Right_Last, s.Y_Full_Scale, s.Y_Offset,
                      f.Frame_Base, f.Frame_Top, surf.Height(), Setting_Colour(s, "MAIN SPECT COL", 0));
    } else if (loaded) {
      Draw_Main_Spectrum(s, surf, s.X_Left, s.X_Right, f.Frame_Left, f.Frame_Right,
                         s.Y_Full_Scale, s.Y_Offset, f.Frame_Base, f.Frame_Top, f.Frame_Bottom,
                         Setting_Colour(s, "MAIN SPECT COL", 0));
    }
    if (Setting_Int(s, "MULTI SPEC DISP", 1) == 1 && !array_view) {
      for (int k = 1; k < overlay::Overlay_Rows; ++k) Draw_Slot(s, surf, f, k);
    }
    if (lim.left != lim.right)
      Draw_Axis_X(s, surf, lim.left, lim.right, f.Frame_Left, f.Frame_Right, f.Axis_Y,
                  f.Axis_Bottom, ppp);
    surf.Keep_Picture();
    surf.Clear();
  } else if (lim.left != lim.right) {
    // The axis is in the kept picture; its lowest y is measured again.
    const Font_Rec font = Setting_Font(s, "DISP AXFONT", 9);
    const int h = Text_Height(surf, "X", font, ppp);
    f.Axis_Bottom = Round_Pixel(f.Axis_Y + 0.5 * h + h);
  }

  if (loaded && s.X_Left != s.X_Right) {
    surf.Set_Raster_Op(Raster_Op::Xor);
    if (s.Cursor_X >= 0 || s.Cursor_Y >= 0) {
      surf.Set_Pen(platform::Pen_Style::Solid, 1, Setting_Colour(s, "Cursor COL 0", 0x808080));
      if (s.Cursor_X >= 0) Line(surf, s.Cursor_X, f.Frame_Top, s.Cursor_X, f.Frame_Bottom);
      if (s.Cursor_Y >= 0) Line(surf, f.Frame_Left, s.Cursor_Y, f.Frame_Right, s.Cursor_Y);
    }
    Draw_Edit_Lines(s, surf, f, background);
    surf.Set_Raster_Op(Raster_Op::Xor);
    if (Setting_Int(s, "PEAK NUM DISP", 0) == 1)
      Draw_Peak_Marks(s, surf, f, background, true);
    else if (Setting_Int(s, "PEAK TOP DISP", 0) == 1 || s.Mode.Edit_Mode == 4)
      Draw_Peak_Marks(s, surf, f, background, false);
    if (Setting_Int(s, "PEAK PICK DISP", 1) == 1 || s.Mode.Edit_Mode == 4)
      Draw_Peak_Labels(s, surf, f, f.Axis_Bottom);
    if (Setting_Int(s, "INTEGRAL DISP", 1) == 1 || s.Mode.Edit_Mode == 5)
      Draw_Integrals(s, surf, f);
    if (Setting_Int(s, "MULTI VIEW DISP", 0) == 1 || s.Mode.Edit_Mode == 6)
      Draw_Insets(s, surf, f, background);
    surf.Set_Raster_Op(Raster_Op::Xor);
    if (s.Show_Distance == 1) out.distance_text = Draw_Distance_Cursors(s, surf, f);
  }

  surf.Set_Raster_Op(Raster_Op::Copy);
  out.mag_text = X_Mag_Text(s);
  out.scroll = Scroll_From_View(s);
  if (s.Array_Rows > 1 && !array_view) {
    Font_Rec font;
    font.Face = Gothic_Face;
    Draw_Label(surf, 0, 0, "Data No= " + std::to_string(s.Row() + 1), font, 0, ppp);
  }
  out.frame = f;
  return out;
}

}  // namespace tevo::display
