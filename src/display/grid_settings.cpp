#include "display/grid_settings.h"

#include <cmath>

#include "session/session.h"

namespace tevo::display {

Grid_Values Grid_Dialog_Values(const Session& s) {
  const auto& c = s.settings;
  Grid_Values v;
  v.shown = c.Int("DISPLAY GRID") == 1;
  v.x_auto = c.Int("GRID X AUTO") == 1;
  v.x_step = c.Real("GRID X INC");
  v.y_auto = c.Int("GRID Y AUTO") == 1;
  v.y_step = c.Real("GRID Y INC");
  v.width = c.Real("DISP GRID WIDTH");
  return v;
}

bool Grid_Dialog_OK(Session& s, const Grid_Values& v) {
  const auto positive = [](double x) { return std::isfinite(x) && x > 0; };
  if ((!v.x_auto && !positive(v.x_step)) || (!v.y_auto && !positive(v.y_step))) return false;
  if (!std::isfinite(v.width) || v.width < 1) return false;
  auto& c = s.settings;
  c.Set("DISPLAY GRID", v.shown ? 1 : 0);
  c.Set("GRID X AUTO", v.x_auto ? 1 : 0);
  if (positive(v.x_step)) c.Set("GRID X INC", v.x_step);
  c.Set("GRID Y AUTO", v.y_auto ? 1 : 0);
  if (positive(v.y_step)) c.Set("GRID Y INC", v.y_step);
  c.Set("DISP GRID WIDTH", v.width);
  return true;
}

}  // namespace tevo::display
