#include "display/array_stack.h"

#include "display/plot_geometry.h"
#include "display/spectrum_trace.h"
#include "display/style.h"
#include "session/session.h"

namespace tevo::display {

void Draw_Spec_Array(Session& s, platform::Surface& surf, double left, double right, int x0, int x1,
                     int x0_last, [[maybe_unused]] int x1_last, double full_scale, double offset, int base, int top,
                     int bottom, platform::Colour colour) {
  const int n = s.Array_Rows;
  if (n < 2) return;
  const double y_ratio = Setting_Num(s, "Y AXIS RATIO", 0);
  for (int r = 0; r < n; ++r) {
    const int xr0 = Round_Pixel((static_cast<double>(x0) * (n - 1 - r) + static_cast<double>(x0_last) * r) / (n - 1));
    // The row keeps the first row's width, so every row has the same x
    // scale; its right end, interpolated from x1 and x1_last, differs from
    // this by rounding alone.
    const int xr1 = xr0 + (x1 - x0);
    // The lift of the row, as a part of the frame height, adds to the offset.
    const double lift = y_ratio * r / (n - 1);
    Draw_Spectrum_Row(s, surf, r, left, right, xr0, xr1, full_scale, offset + lift, base, top,
                      bottom, colour);
  }
}

}  // namespace tevo::display
