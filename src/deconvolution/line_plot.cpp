#include "deconvolution/line_plot.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "deconvolution/line_model.h"
#include "display/style.h"
#include "editing/integrals.h"
#include "page/page_model.h"
#include "session/number_text.h"
#include "session/session.h"

namespace tevo::deconvolution {

using display::Setting_Colour;
using display::Setting_Int;
using display::Setting_Num;
using platform::Colour;
using platform::Pen_Style;

namespace {

int Round(double v) { return static_cast<int>(std::lround(v)); }

Font_Rec Plot_Font(float size) {
  Font_Rec f;
  f.Face = "MS UI Gothic";
  f.Size = size;
  return f;
}

void Text(platform::Surface& surf, int x, int y, const std::string& text, const Font_Rec& font, double scale,
          Colour colour) {
  surf.Set_Text_Colour(colour);
  surf.Text_Out(x, y, text, font, font.Size * scale, 0, font.Bold ? 700 : 400);
}

void Box(platform::Surface& surf, int left, int top, int right, int bottom, int width, Colour colour) {
  surf.Set_Pen(Pen_Style::Solid, width, colour);
  surf.Move_To(left, top);
  surf.Line_To(right, top);
  surf.Line_To(right, bottom);
  surf.Line_To(left, bottom);
  surf.Line_To(left, top);
}

void Fill(platform::Surface& surf, int left, int top, int right, int bottom, Colour colour) {
  surf.Set_Pen(Pen_Style::Null, 0, colour);
  surf.Set_Brush(colour, false);
  const platform::Point p[4] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
  surf.Polygon(p);
}

}  // namespace

Line_Plot_Bands Line_Bands(int left, int top, int right, int bottom, bool residual) {
  Line_Plot_Bands b{left, right, top, top, top, bottom};
  if (!residual) return b;
  const int h = bottom - top;
  b.res_bottom = top + h / 5;
  b.top = b.res_bottom + std::max(4, h / 40);
  return b;
}

Colour Line_Colour(int k) {
  static const Colour table[] = {platform::Rgb(0, 128, 0), platform::Rgb(0, 0, 255), platform::Rgb(192, 96, 0),
                                 platform::Rgb(128, 0, 160), platform::Rgb(0, 128, 160)};
  return table[static_cast<std::size_t>(k) % std::size(table)];
}

Line_Plot_Style Line_Display_Style(const Session& s, double scale) {
  Line_Plot_Style st;
  st.spectrum = Setting_Colour(s, "SIM MEAS LINECOL", 0);
  st.model = Setting_Colour(s, "SIM LINE COLOR", platform::Rgb(255, 0, 0));
  st.frame = Setting_Colour(s, "SIM X AX COL", 0);
  st.axis = Setting_Colour(s, "SIM Y AX COL", 0);
  st.residual_frame = Setting_Colour(s, "SIM RES AX COL", 0);
  st.background = Setting_Colour(s, "SIM SPC BG COL", 0xFFFFFF);
  st.residual_background = Setting_Colour(s, "SIM RES BG COL", 0xFFFFFF);
  st.axis_width = std::max(1, Round(Setting_Num(s, "SIMDAX LINEWIDTH", 1)));
  st.trace_width = std::max(1, Round(Setting_Num(s, "SIMDSPCLINEWIDTH", 1)));
  st.numbers = page::Print_Font(s, "SIMDXNUMFONTNAME", "SIMDXNUMFONTSIZE", "SIMDXNUMFONTBOLD", "SIMDXNUMFONTITA",
                                Plot_Font(8));
  st.peak_numbers = page::Print_Font(s, "SIMDPNUMFONTNAME", "SIMDPNUMFONTSIZE", "SIMDPNUMFONTBOLD",
                                     "SIMDPNUMFONTITA", Plot_Font(8));
  st.scale = scale;
  return st;
}

Line_Plot_Style Line_Print_Style(const Session& s, double px_per_cm) {
  // The traces keep the window's colours; the print style sets the frames,
  // widths, fonts and what is drawn. Widths count 0.1 mm, at least a pixel.
  Line_Plot_Style st = Line_Display_Style(s, px_per_cm * 2.54 / 72);
  const auto width = [&](const char* key) { return std::max(1, Round(Setting_Num(s, key, 1) * 0.01 * px_per_cm)); };
  st.frame = Setting_Colour(s, "SIM SPC WAKU COL", 0);
  st.residual_frame = Setting_Colour(s, "SIM RES WAKU COL", 0);
  st.background = st.residual_background = Setting_Colour(s, "SIM PAPER COL", 0xFFFFFF);
  st.axis_width = width("SIM AX LINEWIDTH");
  st.trace_width = width("SIM SPCLINEWIDTH");
  st.numbers = page::Print_Font(s, "SIM XNUMFONTNAME", "SIM XNUMFONTSIZE", "SIM XNUMFONTBOLD", "SIM XNUMFONTITA",
                                Plot_Font(9));
  st.peak_numbers = page::Print_Font(s, "SIM PNUMFONTNAME", "SIM PNUMFONTSIZE", "SIM PNUMFONTBOLD",
                                     "SIM PNUMFONTITA", Plot_Font(8));
  st.residual = Setting_Int(s, "SIM PRNT RESID", 1) == 1;
  st.outline = Setting_Int(s, "SIM PRNT WAKU", 1) == 1;
  st.line_numbers = Setting_Int(s, "SIM PRNT PEAKNO", 1) == 1;
  st.y_axis = Setting_Int(s, "SIM PRNT Y AX", 1) == 1;
  return st;
}

void Draw_Line_Plot(const Session& s, const Sim_State& st, const Sim_Curve& c, float y_mag,
                    platform::Surface& surf, const Line_Plot_Bands& b, const Line_Plot_Style& style) {
  if (s.Spec_Points <= 0 || s.Spec_Axis.empty() || b.right <= b.left) return;
  const bool residual = style.residual && b.res_bottom > b.res_top;
  Fill(surf, b.left, b.top, b.right, b.bottom, style.background);
  if (residual) Fill(surf, b.left, b.res_top, b.right, b.res_bottom, style.residual_background);
  const double span = st.Range_Right_Ppm - st.Range_Left_Ppm;
  const auto px = [&](double ppm) {
    return span == 0 ? b.left : Round(b.left + (ppm - st.Range_Left_Ppm) / span * (b.right - b.left));
  };
  // The spectrum's vertical scale: its extremes in view (0 always shown).
  const int32_t pa = editing::Spec_Point_Of_Ppm(s, st.Range_Left_Ppm);
  const int32_t pb = editing::Spec_Point_Of_Ppm(s, st.Range_Right_Ppm);
  const int32_t p0 = std::min(pa, pb), p1 = std::max(pa, pb);
  float y0 = 0, y1 = 0;
  for (int32_t p = p0; p <= p1; ++p) {
    const float v = Sim_Spectrum_Value(s, p);
    y0 = std::min(y0, v);
    y1 = std::max(y1, v);
  }
  y1 = y1 <= y0 ? y0 + 1 : y1 + (y1 - y0) * 0.05f;
  y1 = y0 + (y1 - y0) / (y_mag > 0 ? y_mag : 1.0f);
  const auto py = [&](double v) { return b.bottom - Round((v - y0) / (y1 - y0) * (b.bottom - b.top)); };
  const auto trace = [&](std::size_t n, const auto& x_of, const auto& y_of, Colour colour) {
    if (n == 0) return;
    surf.Set_Pen(Pen_Style::Solid, style.trace_width, colour);
    surf.Move_To(px(x_of(0)), py(y_of(0)));
    for (std::size_t j = 1; j < n; ++j) surf.Line_To(px(x_of(j)), py(y_of(j)));
  };
  const std::size_t points = p0 <= p1 ? static_cast<std::size_t>(p1 - p0 + 1) : 0;
  trace(points, [&](std::size_t j) { return s.Spec_Axis[static_cast<std::size_t>(p0) + j]; },
        [&](std::size_t j) { return Sim_Spectrum_Value(s, p0 + static_cast<int32_t>(j)); }, style.spectrum);
  // Each line on its own, then the sum.
  const float axis0 = Sim_Axis0(s);
  const auto x_at = [&](std::size_t j) { return c.x[j]; };
  for (int32_t k = 0; k < st.Peaks.Sim_Peak_Count; ++k) {
    const auto i = static_cast<std::size_t>(k);
    trace(c.x.size(), x_at, [&](std::size_t j) {
      return Line_Shape(st.Peaks.Peak_Pos[i] + axis0, st.Peaks.Peak_Width[i], st.Peaks.Peak_Height[i],
                        st.Peaks.Peak_Gauss[i], c.x[j], s.Spectrum_Frequency);
    }, Line_Colour(k));
  }
  trace(std::min(c.x.size(), c.y.size()), x_at, [&](std::size_t j) { return c.y[j]; }, style.model);
  // The calculation range's edges, dashed.
  const int edge_top = residual ? b.res_top : b.top;
  surf.Set_Pen(Pen_Style::Dash, 1, platform::Rgb(200, 0, 200));
  for (int32_t p : {st.Range_First, st.Range_Last}) {
    const int x = px(s.Spec_Axis[static_cast<std::size_t>(std::clamp(p, 0, s.Spec_Points - 1))]);
    surf.Move_To(x, edge_top);
    surf.Line_To(x, b.bottom);
  }
  if (residual) {
    // The residual in its band, symmetric around 0.
    const int mid = (b.res_top + b.res_bottom) / 2;
    surf.Set_Pen(Pen_Style::Dot, 1, platform::Rgb(128, 128, 128));
    surf.Move_To(b.left, mid);
    surf.Line_To(b.right, mid);
    const std::size_t n = std::min(c.range_x.size(), c.residual.size());
    if (n > 0) {
      surf.Set_Pen(Pen_Style::Solid, style.trace_width, style.spectrum);
      const auto ry = [&](float v) { return mid - Round(v / c.limit * (mid - b.res_top)); };
      surf.Move_To(px(c.range_x[0]), ry(c.residual[0]));
      for (std::size_t j = 1; j < n; ++j) surf.Line_To(px(c.range_x[j]), ry(c.residual[j]));
    }
  }
  if (style.outline) {
    Box(surf, b.left, b.top, b.right, b.bottom, style.axis_width, style.frame);
    if (residual) Box(surf, b.left, b.res_top, b.right, b.res_bottom, style.axis_width, style.residual_frame);
  }
  // The lines' numbers above their tops, the ends' ppm below, the residual's
  // scale beside its band.
  surf.Set_Background_Mode(platform::Background_Mode::Transparent);
  const double em = style.numbers.Size * style.scale, pem = style.peak_numbers.Size * style.scale;
  if (style.line_numbers)
    for (int32_t k = 0; k < st.Peaks.Sim_Peak_Count; ++k) {
      const auto i = static_cast<std::size_t>(k);
      const int x = px(st.Peaks.Peak_Pos[i] + axis0), y = std::max(b.top + Round(2.2 * pem), py(st.Peaks.Peak_Height[i]));
      surf.Set_Pen(Pen_Style::Solid, style.axis_width, Line_Colour(k));
      surf.Move_To(x, y - Round(0.3 * pem));
      surf.Line_To(x, y - Round(1.1 * pem));
      const std::string number = std::to_string(k + 1);
      const int w = surf.Text_Extent(number, style.peak_numbers, pem).cx;
      Text(surf, x - w / 2, y - Round(2.2 * pem), number, style.peak_numbers, style.scale, Line_Colour(k));
    }
  const std::string right = Format_Number(st.Range_Right_Ppm, "##0.000");
  Text(surf, b.left, b.bottom + Round(0.4 * em), Format_Number(st.Range_Left_Ppm, "##0.000"), style.numbers,
       style.scale, style.axis);
  Text(surf, b.right - surf.Text_Extent(right, style.numbers, em).cx, b.bottom + Round(0.4 * em), right,
       style.numbers, style.scale, style.axis);
  const auto left_of_frame = [&](int y, const std::string& text) {
    const int w = surf.Text_Extent(text, style.numbers, em).cx;
    Text(surf, b.left - w - Round(0.4 * em), y - Round(0.5 * em), text, style.numbers, style.scale, style.axis);
  };
  if (residual) left_of_frame(b.res_top + Round(0.5 * em), Format_Number(c.limit, "0.0##") + "%");
  if (style.y_axis) {
    left_of_frame(b.top, Format_Number(y1, "0.00E+00"));
    left_of_frame(b.bottom, Format_Number(y0, "0.00E+00"));
  }
}

}  // namespace tevo::deconvolution
