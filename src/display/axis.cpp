#include "display/axis.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "display/label_text.h"
#include "display/plot_geometry.h"
#include "display/style.h"
#include "display/view_commands.h"
#include "session/session.h"

namespace tevo::display {

namespace {

double Sign(double v) { return v > 0 ? 1.0 : (v < 0 ? -1.0 : 0.0); }

bool Inside(int px, int a, int b) { return px >= std::min(a, b) && px <= std::max(a, b); }

}  // namespace

Axis_Limits View_In_Axis_Unit(const Session& s) {
  return {Ppm_To_Unit(s, s.X_Left, s.Axis_Unit), Ppm_To_Unit(s, s.X_Right, s.Axis_Unit)};
}

Axis_Style Main_Axis_Style(const Session& s) {
  Axis_Style a;
  a.font = Setting_Font(s, "DISP AXFONT", 9);
  a.colour = Setting_Colour(s, "DISP X-AXIS COL", 0);
  a.width = Round_Pixel(Setting_Num(s, "DISP AXIS WIDTH", 1));
  a.unit = s.Axis_Unit;
  a.unit_pos = Setting_Int(s, "DISP UNIT POS", 3);
  if (Setting_Int(s, "DISP AXIS MODE", 0) != 0) {
    const bool hz = s.Axis_Unit != 0;
    a.fixed = true;
    a.step = Setting_Num(s, hz ? "DISP TIC STEP2" : "DISP TIC STEP", hz ? 500 : 1);
    a.minor = Setting_Num(s, hz ? "DISP TIC INC2" : "DISP TIC INC", hz ? 100 : 0.2);
    if (s.Axis_Unit == 2) {
      a.step *= 0.001;
      a.minor *= 0.001;
    }
  }
  return a;
}

void Draw_Axis_X(Session& s, platform::Surface& surf, double left, double right, int x0, int x1,
                 int y, int& bottom, double pixel_per_point) {
  Draw_Axis_Styled(surf, Main_Axis_Style(s), left, right, x0, x1, y, bottom, pixel_per_point);
}

void Draw_Axis_Styled(platform::Surface& surf, const Axis_Style& style, double left, double right,
                      int x0, int x1, int y, int& bottom, double pixel_per_point) {
  const Font_Rec& font = style.font;
  const platform::Colour colour = style.colour;
  const double h = Text_Height(surf, "X", font, pixel_per_point);

  surf.Set_Raster_Op(platform::Raster_Op::Copy);
  surf.Set_Pen(platform::Pen_Style::Solid, style.width, colour);
  surf.Move_To(x0, y);
  surf.Line_To(x1, y);
  bottom = Round_Pixel(y + 0.6 * h);
  const int major_end = Round_Pixel(y + 0.5 * h);
  const int minor_end = Round_Pixel(y + 0.3 * h);

  const Tick_Plan plan =
      style.fixed ? Fixed_Tick_Plan(left, right, style.step, style.minor)
                  : Auto_Tick_Plan(left, right, x0, x1, font.Charset, [&](const std::string& t) {
                      return static_cast<double>(Measure_Label(surf, t, font, pixel_per_point).width);
                    });
  const double step = plan.step;
  if (step == 0 || right == left) return;

  const double sgn = Sign(right - left);
  for (int n = -1; n < 100000; ++n) {
    double v = n * step + plan.first;
    if (std::fabs(v) < 0.01 * std::fabs(step)) v = 0;
    if ((v - right - 0.001 * step) * sgn >= 0) break;
    const int px = Round_Pixel(X_To_Pixel(v, left, right, x0, x1));
    if (Inside(px, x0, x1)) {
      surf.Move_To(px, y);
      surf.Line_To(px, major_end);
      const std::string label = Tick_Label_Text(v, left, right, step, font.Charset);
      const Label_Size size = Measure_Label(surf, label, font, pixel_per_point);
      Draw_Label(surf, px - size.width / 2, major_end, label, font, colour, pixel_per_point);
      surf.Set_Pen(platform::Pen_Style::Solid, style.width, colour);
      bottom = major_end + size.height;
    }
    if (plan.minor == 0) continue;
    for (int k = 1; k < 1000; ++k) {
      const double w = v + k * plan.minor;
      if ((v + step - w) * sgn <= 0) break;
      const int mx = Round_Pixel(X_To_Pixel(w, left, right, x0, x1));
      if (!Inside(mx, x0, x1)) continue;
      surf.Move_To(mx, y);
      surf.Line_To(mx, minor_end);
    }
  }

  const int pos = style.unit_pos;
  if (pos >= 1 && pos <= 3) {
    const char* unit = style.unit == 1 ? "Hz" : style.unit == 2 ? "kHz" : "ppm";
    const std::string text = std::string(pos == 3 ? "\\< \\g1 d\\g0  / " : "\\< ") + unit;
    const Label_Size size = Measure_Label(surf, text, font, pixel_per_point);
    int ux = 0, uy = Round_Pixel(y - h);
    if (pos == 2) ux = x1 - size.width;
    if (pos == 3) {
      ux = Round_Pixel((x0 + x1) / 2.0 - size.width / 2.0);
      uy = Round_Pixel(y + h + 0.5 * h);
    }
    Draw_Label(surf, ux, uy, text, font, colour, pixel_per_point);
  }
  bottom = Round_Pixel(y + 0.5 * h + h);
}

void Draw_Grid(Session& s, platform::Surface& surf, double xleft, double xright, double ylow,
               double yhigh, int x0, int x1, int base, int top) {
  surf.Set_Raster_Op(platform::Raster_Op::Copy);
  surf.Set_Pen(platform::Pen_Style::Dot, Round_Pixel(Setting_Num(s, "DISP GRID WIDTH", 1)),
               Setting_Colour(s, "DISP GRID COL", 0xC0C0C0));
  auto steps = [&](double lo, double hi, const char* auto_key, const char* inc_key) {
    Tick_Plan p;
    if (Setting_Int(s, auto_key, 1) == 1) {
      const Tick_Step t = Nice_Tick_Step(lo, hi);
      p.first = t.first;
      p.step = t.step;
    } else {
      p = Fixed_Tick_Plan(lo, hi, Setting_Num(s, inc_key, 1), 0);
    }
    return p;
  };
  if (xright != xleft) {
    const Tick_Plan p = steps(xleft, xright, "GRID X AUTO", "GRID X INC");
    for (double v : Grid_Values(p.first, p.step, xright, false)) {
      const int px = Round_Pixel(X_To_Pixel(v, xleft, xright, x0, x1));
      if (px <= std::min(x0, x1) || px >= std::max(x0, x1)) continue;
      surf.Move_To(px, base);
      surf.Line_To(px, top);
    }
  }
  if (yhigh != ylow) {
    const Tick_Plan p = steps(ylow, yhigh, "GRID Y AUTO", "GRID Y INC");
    for (double v : Grid_Values(p.first, p.step, yhigh, true)) {
      const int py = Round_Pixel(X_To_Pixel(v, ylow, yhigh, base, top));
      if (py <= std::min(base, top) || py >= std::max(base, top)) continue;
      surf.Move_To(x0, py);
      surf.Line_To(x1, py);
    }
  }
}

}  // namespace tevo::display
