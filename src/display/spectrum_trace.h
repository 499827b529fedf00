// Drawing a trace of many points over few pixel columns. Each column keeps
// its first value, its extremes and its last value, so a spike narrower than
// a pixel still shows at full height and the stroke goes on from where the
// column ended; no column gets more than four vertices, whatever the number
// of points.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/surface.h"

namespace tevo {
struct Session;
}

namespace tevo::display {

// Appends the vertices that finish a pixel column at x (at most three), given
// its first, largest, smallest and last y; returns the new count. A column
// whose values are all equal adds nothing to its first vertex.
int Flush_Pixel_Column(std::span<platform::Point> vertices, int count, int first_y, int max_y,
                       int min_y, int last_y, int x);

// The decimated vertex list of a trace: points (x[i], y[i]) in order, mapped
// by [left, right] -> [x0, x1] and by the y transform, y clamped to
// [top, bottom]. Points before the window are passed over; the walk stops at
// the first point past it. An empty x span takes the point index as the x
// value (a FID or a spectrum drawn by points). `select_first`/`select_last`
// are point indices whose vertex positions are reported (-1: none).
struct Trace_Vertices {
  std::vector<platform::Point> points;
  int select_from = 0, select_to = 0;  // vertex range of the selection
};
Trace_Vertices Decimate_Trace(std::span<const float> x, std::span<const float> y, int32_t count,
                              double left, double right, int x0, int x1, double full_scale,
                              double offset, int base, int top, int bottom,
                              int64_t select_first = -1, int64_t select_last = -1);

// Strokes a vertex list with the current pen.
void Stroke(platform::Surface& surf, std::span<const platform::Point> v);

// The main spectrum: the current row of Disp_Y over Disp_X in `colour`, with
// the select range stroked again in "SELECT SPECT COL". Draws nothing when
// left = right or the full scale is 0.
void Draw_Main_Spectrum(Session& s, platform::Surface& surf, double left, double right, int x0,
                        int x1, double full_scale, double offset, int base, int top, int bottom,
                        platform::Colour colour);

// The same for any row of Disp_Y.
void Draw_Spectrum_Row(Session& s, platform::Surface& surf, int32_t row, double left, double right,
                       int x0, int x1, double full_scale, double offset, int base, int top,
                       int bottom, platform::Colour colour);

// An overlay trace from its own arrays; nothing with fewer than two vertices.
void Draw_Overlay_Trace(const Session& s, platform::Surface& surf, std::span<const float> x_values,
                        std::span<const float> y_values, int32_t count, double left, double right,
                        int x0, int x1, double full_scale, double offset, int base, int top,
                        int bottom, platform::Colour colour);

}  // namespace tevo::display
