#include "relaxation/relax_plot.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "display/style.h"
#include "page/page_model.h"
#include "session/number_text.h"

namespace tevo::relaxation {

using display::Setting_Colour;
using display::Setting_Num;
using platform::Colour;
using platform::Pen_Style;

namespace {

int Round(double v) { return static_cast<int>(std::lround(v)); }

// A float as the window's fields show it: up to seven significant digits.
std::string General(float v) {
  char text[32];
  std::snprintf(text, sizeof text, "%.7g", static_cast<double>(v));
  return text;
}

Font_Rec Plot_Font(float size) {
  Font_Rec f;
  f.Face = "MS UI Gothic";
  f.Size = size;
  return f;
}

// The four font keys of a stem such as "CAL FONT 1X": "CAL FONT 1X",
// "CAL FONTSIZE 1X", "CAL FONTBLD 1X", "CAL FONTITA 1X".
Font_Rec Cal_Font(const Session& s, const std::string& head, const std::string& tail, Font_Rec fallback) {
  const std::string name = head + " " + tail, size = head + "SIZE " + tail, bold = head + "BLD " + tail,
                    ital = head + "ITA " + tail;
  return page::Print_Font(s, name.c_str(), size.c_str(), bold.c_str(), ital.c_str(), fallback);
}

}  // namespace

Relax_Plot_Style Relax_Display_Style(const Session& s, double scale) {
  Relax_Plot_Style st;
  st.curve = Setting_Colour(s, "CAL SIM COL", st.curve);
  st.points = Setting_Colour(s, "CAL MEAS COL", st.points);
  st.circle = Setting_Colour(s, "CAL CIRCLE COL", st.circle);
  st.axis = Setting_Colour(s, "CAL AXIS COL", 0);
  st.axis_width = std::max(1, Round(Setting_Num(s, "CALDDRAW WIDTH 1", 1)));
  st.curve_width = std::max(1, Round(Setting_Num(s, "CALDDRAW WIDTH 2", 1)));
  st.radius = std::max(1, Round(Setting_Num(s, "CALDCIRCLE RADII", 3)));
  st.numbers = Cal_Font(s, "CALDFONT", "1X", Plot_Font(9));
  st.label = Cal_Font(s, "CALDFONT", "2X", Plot_Font(9));
  st.scale = scale;
  return st;
}

Relax_Plot_Style Relax_Print_Style(const Session& s, double px_per_cm) {
  Relax_Plot_Style st = Relax_Display_Style(s, px_per_cm * 2.54 / 72);
  const auto tenth_mm = [&](const char* key, double def) {
    return std::max(1, Round(Setting_Num(s, key, def) * 0.01 * px_per_cm));
  };
  st.axis_width = tenth_mm("CAL DRAW WIDTH 1", 2);
  st.curve_width = tenth_mm("CAL DRAW WIDTH 2", 2);
  st.radius = tenth_mm("CAL CIRCLE RADII", 10);
  st.numbers = Cal_Font(s, "CAL FONT", "1X", Plot_Font(10));
  st.label = Cal_Font(s, "CAL FONT", "2X", Plot_Font(10));
  return st;
}

void Draw_Relax_Plot(const Relax_Fit& fit, const Relax_Limits& limits, platform::Surface& surf, int left, int top,
                     int right, int bottom, const Relax_Plot_Style& style) {
  if (right <= left || bottom <= top) return;
  const double x0 = limits.X_Min, x1 = limits.X_Max == limits.X_Min ? limits.X_Min + 1 : limits.X_Max;
  // The intensity pair is taken as typed; a pair of one value still draws.
  const double y0 = limits.Y_Min, y1 = limits.Y_Max == limits.Y_Min ? limits.Y_Min + 1 : limits.Y_Max;
  const auto px = [&](double t) { return left + Round((t - x0) / (x1 - x0) * (right - left)); };
  const auto py = [&](double y) { return bottom - Round((y - y0) / (y1 - y0) * (bottom - top)); };
  const auto inside = [&](int x, int y) { return x >= left && x <= right && y >= top && y <= bottom; };
  surf.Set_Pen(Pen_Style::Solid, style.axis_width, style.axis);
  surf.Move_To(left, top);
  surf.Line_To(right, top);
  surf.Line_To(right, bottom);
  surf.Line_To(left, bottom);
  surf.Line_To(left, top);
  // The zero line of the intensity, dotted.
  if (y0 < 0 && y1 > 0) {
    surf.Set_Pen(Pen_Style::Dot, 1, style.axis);
    surf.Move_To(left, py(0));
    surf.Line_To(right, py(0));
  }
  surf.Set_Background_Mode(platform::Background_Mode::Transparent);
  const auto text = [&](int x, int y, const std::string& t, const Font_Rec& font) {
    surf.Set_Text_Colour(style.axis);
    surf.Text_Out(x, y, t, font, font.Size * style.scale, 0, font.Bold ? 700 : 400);
  };
  const double em = style.numbers.Size * style.scale;
  const auto width = [&](const std::string& t, const Font_Rec& font) {
    return surf.Text_Extent(t, font, font.Size * style.scale).cx;
  };
  const std::string y_top = Format_Number(y1, "0.00"), y_bottom = Format_Number(y0, "0.00");
  const int gap = Round(0.5 * em);
  text(left - gap - width(y_top, style.numbers), top - Round(0.5 * em), y_top, style.numbers);
  text(left - gap - width(y_bottom, style.numbers), bottom - Round(0.5 * em), y_bottom, style.numbers);
  const std::string t_right = Format_Number(x1, "0.0##");
  text(left, bottom + gap, Format_Number(x0, "0.0##"), style.numbers);
  text(right - width(t_right, style.numbers), bottom + gap, t_right, style.numbers);
  text((left + right) / 2 - width("t / s", style.label) / 2, bottom + gap + Round(1.2 * em), "t / s", style.label);
  // The points: those in use filled, the others hollow; a point on the
  // frame's edge still shows whole.
  const int r = style.radius;
  for (std::size_t j = 0; j < fit.Data_T.size() && j < fit.Data_Y.size(); ++j) {
    const int x = px(fit.Data_T[j]), y = py(fit.Data_Y[j]);
    if (!inside(x, y)) continue;
    const bool used = static_cast<int32_t>(j) >= fit.First_Point && static_cast<int32_t>(j) <= fit.Last_Point;
    surf.Set_Pen(Pen_Style::Solid, 1, style.circle);
    surf.Set_Brush(style.points, !used);
    platform::Point ring[16];
    for (int k = 0; k < 16; ++k)
      ring[k] = {x + Round(r * std::cos(k * M_PI / 8)), y + Round(r * std::sin(k * M_PI / 8))};
    surf.Polygon(ring);
  }
  // The curve, broken where it leaves the frame.
  surf.Set_Pen(Pen_Style::Solid, style.curve_width, style.curve);
  bool down = false;
  for (std::size_t j = 0; j < fit.Fit_Curve_T.size() && j < fit.Fit_Curve_Y.size(); ++j) {
    const int x = px(fit.Fit_Curve_T[j]), y = py(fit.Fit_Curve_Y[j]);
    const bool in = inside(x, y);
    if (in && down) surf.Line_To(x, y);
    if (in && !down) surf.Move_To(x, y);
    down = in;
  }
}

std::vector<std::string> Relax_Result_Lines(const Relax_Fit& fit) {
  if (fit.State.Trial.size() != Relax_Param_Count || fit.Data_T.empty() || fit.First_Point < 0 ||
      fit.Last_Point < fit.First_Point || fit.Last_Point >= static_cast<int32_t>(fit.Data_T.size()))
    return {};
  const float k = fit.State.Trial[Relax_K];
  const std::string t = Relax_T_Text(k);
  return {"A0 = " + General(fit.State.Trial[Relax_A0]),
          "k = " + General(k) + " s-1",
          "T = " + t + (t == "***" ? "" : " s"),
          "B = " + General(fit.State.Trial[Relax_B]),
          "Start=" + Format_Number(fit.Data_T[static_cast<std::size_t>(fit.First_Point)], "####0.0##") + " s",
          "  End=" + Format_Number(fit.Data_T[static_cast<std::size_t>(fit.Last_Point)], "####0.0##") + " s"};
}

}  // namespace tevo::relaxation
