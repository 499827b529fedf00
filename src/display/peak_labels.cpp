#include "display/peak_labels.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "display/label_text.h"
#include "display/style.h"
#include "display/view_commands.h"
#include "session/number_text.h"
#include "session/session.h"

namespace tevo::display {

std::vector<double> Peak_Reduction_Pos(std::span<const int> x, double W, int x0, int x1,
                                       std::span<const double> previous) {
  const std::size_t n = x.size();
  std::vector<double> p(n);
  for (std::size_t i = 0; i < n; ++i) p[i] = i < previous.size() ? previous[i] : x[i];
  bool low_full = false, high_full = false;
  std::size_t start = 0;
  double slack = 0;

  // Moves label j and, while they overlap, its right-hand neighbours right.
  auto push = [&](std::ptrdiff_t j, double shift) {
    while (j >= static_cast<std::ptrdiff_t>(start)) {
      p[static_cast<std::size_t>(j)] += shift;
      if (p[static_cast<std::size_t>(j)] > x1) high_full = true;
      if (j > 0) {
        shift = W + p[static_cast<std::size_t>(j)] - p[static_cast<std::size_t>(j - 1)];
        if (shift <= 0) break;
      }
      --j;
    }
  };

  for (std::size_t i = 0; i < n; ++i) {
    const double xi = x[i];
    if (xi <= x0 || xi >= x1) {
      if (xi >= x1) {
        p[i] = x1;
        start = i + 1;
      } else if (xi < x0) {
        p[i] = x0;
      }
      continue;
    }
    if (i == 0) {
      p[i] = xi;
    } else if (p[i - 1] - xi >= W) {
      p[i] = xi;
    } else if (low_full) {
      const double t = p[i - 1] - 0.5 * W;
      double shift;
      if (x0 >= t) {
        p[i] = p[i - 1];
        shift = W;
      } else {
        p[i] = t;
        shift = 0.5 * W;
      }
      push(static_cast<std::ptrdiff_t>(i) - 1, shift);
    } else if (high_full) {
      p[i] = p[i - 1] - W;
    } else {
      double need = W - (p[i - 1] - xi);
      if (0.5 * W < slack) {
        need = std::min(need, W);
        p[i] = p[i - 1] - W + 0.5 * need;
        push(static_cast<std::ptrdiff_t>(i) - 1, 0.5 * need);
      } else {
        p[i] = xi - need;
      }
      if (x0 > p[i]) low_full = true;
    }
    // Room left: to the right of the first label of the run, or the widest
    // gap between two labels.
    slack = x1 - p[start] - 0.5 * W;
    for (std::size_t k = start + 1; k <= i; ++k) {
      const double d = p[k - 1] - p[k] - W;
      if (d > slack) slack = d;
    }
  }
  return p;
}

Peak_Label_Style Main_Peak_Label_Style(const Session& s) {
  Peak_Label_Style st;
  st.font = Setting_Font(s, "DISP PDFONT", 9);
  st.digits = Setting_Int(s, "DISP PEAK DIGIT", 2);
  st.unit = static_cast<int16_t>(Setting_Int(s, "PEAK-VAL UNIT", 0));
  st.axis_unit = s.Axis_Unit;
  st.above = Setting_Int(s, "PEAK POSITION", 1) != 0;
  st.text_colour = Setting_Colour(s, "DISP PEAK NUMCOL", 0);
  st.line_colour = Setting_Colour(s, "DISP PEAK COL", 0);
  st.line_width = Round_Pixel(Setting_Num(s, "DISP PEAK WIDTH", 1));
  return st;
}

void Draw_Peak_Labels(Session& s, platform::Surface& surf, const Plot_Frame& f, int axis_bottom) {
  const Peak_Label_Style st = Main_Peak_Label_Style(s);
  Draw_Peak_Values(s, surf, st, s.X_Left, s.X_Right, f.Frame_Left, f.Frame_Right, f.Frame_Top,
                   f.Frame_Base, axis_bottom, f.Frame_Bottom * 30 / 1200, f.Pixel_Per_Point);
}

void Draw_Peak_Values(Session& s, platform::Surface& surf, const Peak_Label_Style& st,
                      double left, double right, int x0, int x1, int top, int base,
                      int axis_bottom, int gap, double ppp) {
  if (s.Peaks.empty() || s.Spec_Points <= 0 || left == right) return;
  const Font_Rec& font = st.font;
  const double h = Text_Height(surf, "X", font, ppp);
  const double W = font.Charset == 128 ? h : 0.75 * h;
  const int hh = Round_Pixel(0.5 * h);
  const int16_t unit = st.unit;
  const std::string format = Number_Format(st.digits);

  std::vector<int> px;
  std::vector<std::string> text;
  std::vector<int> width;
  for (const Peak_Rec& pk : s.Peaks) {
    const double ppm = pk.Freq_Hz / s.Spectrum_Frequency + s.Spec_Axis[0];
    px.push_back(Round_Pixel(X_To_Pixel(ppm, left, right, x0, x1)));
    text.push_back("\\< " + Format_Number(Ppm_To_Unit(s, ppm, unit), format));
    width.push_back(Measure_Label(surf, text.back(), font, ppp).width);
  }
  const std::vector<double> label_x = Peak_Reduction_Pos(px, W, x0, x1);

  int ys, ya, yb;
  if (!st.above) {
    ys = axis_bottom + gap;
    ya = axis_bottom;
    yb = ys;
  } else {
    ys = top;
    yb = ys;
    for (std::size_t i = 0; i < px.size(); ++i)
      if (px[i] > x0 && px[i] < x1) yb = std::max(yb, ys + width[i]);
    ya = Round_Pixel(yb + (base - top) * 40 / 1000.0);
  }

  int last_x = -1;
  // The labels and their leaders are painted, not XOR-ed: the marks drawn
  // before them leave the surface in XOR, where black text would vanish.
  surf.Set_Raster_Op(platform::Raster_Op::Copy);
  for (std::size_t i = 0; i < px.size(); ++i) {
    if (px[i] <= x0 || px[i] >= x1) continue;
    const int lx = Round_Pixel(label_x[i]);
    Draw_Label(surf, lx - hh, ys + width[i], text[i], font, st.text_colour, ppp, 90);
    last_x = lx;
  }
  if (last_x >= 0 && unit != st.axis_unit) {
    const std::string u = unit == 1 ? "\\< Hz" : unit == 2 ? "\\< kHz" : "\\< ppm";
    const int w = Measure_Label(surf, u, font, ppp).width;
    Draw_Label(surf, Round_Pixel(last_x - 1.5 * h) - hh, ys + w, u, font, st.text_colour, ppp, 90);
  }

  surf.Set_Pen(platform::Pen_Style::Solid, st.line_width, st.line_colour);
  const int yc = Round_Pixel(0.2 * yb + 0.8 * ya), yd = Round_Pixel(0.8 * yb + 0.2 * ya);
  for (std::size_t i = 0; i < px.size(); ++i) {
    if (px[i] <= x0 || px[i] >= x1) continue;
    const int lx = Round_Pixel(label_x[i]);
    surf.Move_To(px[i], ya);
    surf.Line_To(px[i], yc);
    surf.Line_To(lx, yd);
    surf.Line_To(lx, yb);
  }
}

}  // namespace tevo::display
