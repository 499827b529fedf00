#include "display/spectrum_trace.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "display/plot_geometry.h"
#include "display/style.h"
#include "session/rounding.h"
#include "session/session.h"

namespace tevo::display {

using platform::Point;

int Flush_Pixel_Column(std::span<Point> v, int count, int first_y, int max_y, int min_y,
                       int last_y, int x) {
  auto add = [&](int y) {
    if (static_cast<std::size_t>(count) < v.size()) v[static_cast<std::size_t>(count++)] = {x, y};
  };
  if (first_y >= max_y) {
    if (first_y > min_y) {
      add(min_y);
      if (last_y > min_y) add(last_y);
    }
  } else if (first_y <= min_y) {
    add(max_y);
    if (last_y < max_y) add(last_y);
  } else if (last_y != max_y) {
    add(max_y);
    add(min_y);
    if (last_y > min_y) add(last_y);
  } else {
    add(min_y);
    add(max_y);
  }
  return count;
}

namespace {

// The y of a value, clamped to the frame. A NaN rounds to the top.
struct Y_Map {
  double ay, by;
  int top, bottom;
  int operator()(double v) const { return std::clamp(Round_Pixel(ay * v + by), top, bottom); }
};

// Finishes a column from its first, largest, smallest and last values.
int Flush_Values(std::span<Point> v, int count, const Y_Map& map, double first, double vmax,
                 double vmin, double last, int x) {
  const int ya = map(vmax), yb = map(vmin);
  return Flush_Pixel_Column(v, count, map(first), std::max(ya, yb), std::min(ya, yb), map(last), x);
}

}  // namespace

Trace_Vertices Decimate_Trace(std::span<const float> x, std::span<const float> y, int32_t count,
                              double left, double right, int x0, int x1, double full_scale,
                              double offset, int base, int top, int bottom, int64_t select_first,
                              int64_t select_last) {
  Trace_Vertices out;
  if (right == left || full_scale == 0 || count <= 0) return out;
  std::size_t have = y.size();
  if (!x.empty()) have = std::min(have, x.size());
  count = static_cast<int32_t>(std::min<std::size_t>(static_cast<std::size_t>(count), have));
  const double ax = (x1 - x0) / (right - left);
  const double bx = x0 - ax * left;
  const double ay = (top - base) / full_scale;
  const double by = base + (top - base) * offset;
  const int lo = std::min(x0, x1), hi = std::max(x0, x1);
  const Y_Map pixel_y{ay, by, top, bottom};
  // The y map is monotonic, so a column's highest and lowest pixels are
  // those of its largest and smallest values: a column collects values and
  // maps only its first, extremes and last. A NaN is held as the value that
  // maps to the top, as it would if mapped itself.
  const double nan_value = ay < 0 ? INFINITY : -INFINITY;
  // Sized from the frame, never from the data: four vertices a column.
  out.points.resize(static_cast<std::size_t>(4 * std::abs(x1 - x0) + 4));
  std::span<Point> v(out.points);
  int c = 0;
  double first = 0, vmax = 0, vmin = 0, last = 0;
  int column = 0;
  bool open = false;
  for (int32_t i = 0; i < count; ++i) {
    const auto k = static_cast<std::size_t>(i);
    // An empty x span: the point index is the x value.
    const double xv = ax * (x.empty() ? static_cast<double>(i) : static_cast<double>(x[k])) + bx;
    // Tested against the frame before it is rounded (NaN: outside).
    const int px = xv >= lo - 1 && xv <= hi + 1 ? static_cast<int>(Round_Near(xv)) : hi + 1;
    if (px < lo || px > hi) {
      if (c > 0) {
        c = Flush_Values(v, c, pixel_y, first, vmax, vmin, last, column);
        open = false;
        if (i < select_last) out.select_to = c - 1;
        break;
      }
      continue;
    }
    double yv = y[k];
    if (yv != yv) yv = nan_value;
    if (i == select_first) out.select_from = c;
    if (i == select_last) out.select_to = c;
    if (c > 0 && px == column) {
      vmax = std::max(vmax, yv);
      vmin = std::min(vmin, yv);
      last = yv;
      continue;
    }
    if (c > 0) c = Flush_Values(v, c, pixel_y, first, vmax, vmin, last, column);
    if (static_cast<std::size_t>(c) < v.size()) v[static_cast<std::size_t>(c++)] = {px, pixel_y(yv)};
    first = vmax = vmin = last = yv;
    column = px;
    open = true;
  }
  // The data ended inside the window: finish the last column too.
  if (open) c = Flush_Values(v, c, pixel_y, first, vmax, vmin, last, column);
  out.points.resize(static_cast<std::size_t>(c));
  return out;
}

void Stroke(platform::Surface& surf, std::span<const Point> v) {
  if (v.size() < 2) return;
  surf.Move_To(v[0].x, v[0].y);
  for (std::size_t k = 1; k < v.size(); ++k) surf.Line_To(v[k].x, v[k].y);
}

void Draw_Main_Spectrum(Session& s, platform::Surface& surf, double left, double right, int x0,
                        int x1, double full_scale, double offset, int base, int top, int bottom,
                        platform::Colour colour) {
  Draw_Spectrum_Row(s, surf, s.Row(), left, right, x0, x1, full_scale, offset, base, top, bottom,
                    colour);
}

void Draw_Spectrum_Row(Session& s, platform::Surface& surf, int32_t row, double left, double right,
                       int x0, int x1, double full_scale, double offset, int base, int top,
                       int bottom, platform::Colour colour) {
  if (s.Disp_Points <= 0 || s.Spec_Points <= 0 || s.Disp_Y.Empty() || row < 0 ||
      row >= s.Array_Rows)
    return;
  surf.Set_Raster_Op(platform::Raster_Op::Copy);
  // Display points per spectrum point: the select range is kept in points of
  // Spec_Re.
  const int64_t f = std::llround(static_cast<double>(s.Disp_Points) / s.Spec_Points);
  const int64_t sel0 = s.Select_Start >= 0 ? s.Select_Start * f : -1;
  const int64_t sel1 = s.Select_End >= 0 ? s.Select_End * f : -1;
  const Trace_Vertices t =
      Decimate_Trace(s.Disp_X, s.Disp_Y.Row(static_cast<std::size_t>(row)), s.Disp_Points,
                     left, right, x0, x1, full_scale, offset, base, top, bottom, sel0, sel1);
  if (t.points.size() < 2) return;
  const int width = Round_Pixel(Setting_Num(s, "DISP SPEC WIDTH", 1));
  surf.Set_Pen(platform::Pen_Style::Solid, width, colour);
  Stroke(surf, t.points);
  if (t.select_to > t.select_from) {
    surf.Set_Pen(platform::Pen_Style::Solid, width, Setting_Colour(s, "SELECT SPECT COL", 0x0000FF));
    Stroke(surf, std::span<const Point>(t.points).subspan(
                     static_cast<std::size_t>(t.select_from),
                     static_cast<std::size_t>(t.select_to - t.select_from + 1)));
  }
}

void Draw_Overlay_Trace(const Session& s, platform::Surface& surf, std::span<const float> x_values,
                        std::span<const float> y_values, int32_t count, double left, double right,
                        int x0, int x1, double full_scale, double offset, int base, int top,
                        int bottom, platform::Colour colour) {
  const Trace_Vertices t = Decimate_Trace(x_values, y_values, count, left, right, x0, x1,
                                          full_scale, offset, base, top, bottom);
  if (t.points.size() < 2) return;
  surf.Set_Pen(platform::Pen_Style::Solid, Round_Pixel(Setting_Num(s, "DISP SPEC WIDTH", 1)),
               colour);
  Stroke(surf, t.points);
}

}  // namespace tevo::display
