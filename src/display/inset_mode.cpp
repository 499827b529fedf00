#include "display/inset_mode.h"

#include <algorithm>
#include <cmath>

#include "display/insets.h"
#include "editing/undo.h"
#include "platform/ui.h"
#include "session/command_flow.h"
#include "session/messages.h"
#include "session/number_text.h"
#include "session/session.h"

namespace tevo::display {

namespace {

// A drag ends this many pixels from its press or more; less is a click.
constexpr int Click_Slack = 2;
// A press within this many pixels of an inset's lower right corner resizes.
constexpr int Corner_Grab = 6;
// The smallest inset: its height must leave room for the base line and the
// axis (0.06 of the height); both sides at least this fraction.
constexpr double Min_Width = 0.02, Min_Height = 0.08;

Inset_Rec* Current(Session& s) {
  if (s.Inset_Cur < 0 || s.Inset_Cur >= static_cast<int32_t>(s.Insets.size())) return nullptr;
  return &s.Insets[static_cast<std::size_t>(s.Inset_Cur)];
}

// Takes the undo record and marks the edit; returns the current inset.
Inset_Rec* Edit_Current(Session& s, int16_t kind) {
  if (Current(s) == nullptr) return nullptr;
  editing::Undo_Take_Insets(s, kind);
  session::Mode_Edited(s);
  s.Data_Saved = 0;
  return Current(s);
}

double Ppm_At(const Session& s, const Plot_Frame& f, int x) {
  if (f.Frame_Right == f.Frame_Left) return s.X_Left;
  return s.X_Left + (static_cast<double>(s.X_Right) - s.X_Left) * (x - f.Frame_Left) /
                        (f.Frame_Right - f.Frame_Left);
}

// Frame fractions of a pixel rectangle, the inverse of Inset_Rectangle.
void Set_Frame(Inset_Rec& r, const Plot_Frame& f, int left, int right, int top, int bottom) {
  const double w = f.Frame_Right - f.Frame_Left, d = f.Frame_Base - f.Frame_Top;
  if (w <= 0 || d <= 0) return;
  r.Frame_X0 = static_cast<float>((left - f.Frame_Left) / w);
  r.Frame_X1 = static_cast<float>((right - f.Frame_Left) / w);
  r.Frame_Y1 = static_cast<float>((f.Frame_Base - top) / d);
  r.Frame_Y0 = static_cast<float>((f.Frame_Base - bottom) / d);
}

}  // namespace

double Inset_Mag_Step(double mag, bool up) {
  // From 2 up the step is 1; going down from exactly 2 it is 0.1.
  const double step = (up ? mag >= 2 : mag > 2) ? 1.0 : 0.1;
  const double v = std::nearbyint((mag + (up ? step : -step)) * 1000) / 1000;
  return std::max(v, Inset_Mag_Min);
}

bool m26_Click(Session& s) {
  if (s.Mode.Edit_Mode == session::Mode_Inset) return false;
  if (!session::Enter_Mode(s, session::Mode_Inset)) return false;
  // Leaving disarms the tools and ends undo, as every mode does.
  s.Mode.handlers[session::Mode_Inset] = {nullptr, nullptr, [](Session& t) {
                                            t.Mouse_Tool = 0;
                                            editing::Undo_Clear(t);
                                          }};
  s.Inset_Cur = static_cast<int32_t>(s.Insets.size());
  s.Mouse_Tool = 0;
  return true;
}

void MultiViewCommand1_Click(Session& s) {
  if (s.Mode.Edit_Mode == session::Mode_Inset) session::Confirm_Mode_Exit(s);
}

bool MultiView_New(Session& s) {
  if (static_cast<int32_t>(s.Insets.size()) >= Inset_Max) {
    s.ui->Beep();
    s.Mouse_Tool = 0;
    return false;
  }
  s.Inset_Cur = static_cast<int32_t>(s.Insets.size());
  s.Mouse_Tool = Tool_Inset_New;
  return true;
}

bool MultiView_Delete(Session& s) {
  s.Mouse_Tool = 0;
  return Inset_Delete(s, s.Inset_Cur);
}

bool MultiView_Align(Session& s) {
  s.Mouse_Tool = 0;
  const Inset_Rec* cur = Current(s);
  if (cur == nullptr) return false;
  const float top = cur->Frame_Y1, bottom = cur->Frame_Y0;
  editing::Undo_Take_Insets(s, editing::Undo_Inset_Align);
  session::Mode_Edited(s);
  s.Data_Saved = 0;
  for (Inset_Rec& r : s.Insets) {
    r.Frame_Y1 = top;
    r.Frame_Y0 = bottom;
  }
  return true;
}

bool MultiView_Pick(Session& s) {
  if (Current(s) == nullptr) return false;
  s.Mouse_Tool = Tool_Inset_Range;
  return true;
}

bool Inset_Add(Session& s, double ppm_a, double ppm_b) {
  if (static_cast<int32_t>(s.Insets.size()) >= Inset_Max || s.X_Left == s.X_Right) return false;
  const double view = static_cast<double>(s.X_Left) - s.X_Right;
  Inset_Rec r = New_Inset_Record(s);
  const double expand_x = r.Inset_X_Mag > 0 ? r.Inset_X_Mag : 2.0;
  // A click (no width) takes the window the magnification gives around it.
  double width = std::fabs(ppm_a - ppm_b);
  if (width < std::fabs(view) * 1e-4) width = std::fabs(view) / expand_x;
  const double centre = 0.5 * (ppm_a + ppm_b);
  // Left is the larger ppm when the view runs that way.
  const double sign = view >= 0 ? 1.0 : -1.0;
  r.Inset_Left = static_cast<float>(centre + sign * width / 2);
  r.Inset_Right = static_cast<float>(centre - sign * width / 2);
  const double frame_w = std::min(0.9, width / std::fabs(view) * expand_x);
  const double at = (s.X_Left - centre) / view;  // fraction of the frame from the left
  r.Frame_X0 = static_cast<float>(std::clamp(at - frame_w / 2, 0.0, 1.0 - frame_w));
  r.Frame_X1 = static_cast<float>(r.Frame_X0 + frame_w);
  r.Frame_Y1 = 0.95f;
  r.Frame_Y0 = 0.5f;
  r.Inset_X_Mag = static_cast<float>(std::fabs(view) / width);
  r.Inset_Y_Full = r.Inset_Y_Mag * s.Y_Mag;
  editing::Undo_Take_Insets(s, editing::Undo_Inset_Add);
  session::Mode_Edited(s);
  s.Data_Saved = 0;
  s.Insets.push_back(r);
  s.Inset_Cur = static_cast<int32_t>(s.Insets.size()) - 1;
  Refresh_Inset_Scale(s);
  return true;
}

bool Inset_Set_Window(Session& s, double ppm_a, double ppm_b) {
  if (ppm_a == ppm_b || s.X_Left == s.X_Right) return false;
  Inset_Rec* r = Edit_Current(s, editing::Undo_Inset_Window);
  if (r == nullptr) return false;
  const bool descending = s.X_Left > s.X_Right;
  r->Inset_Left = static_cast<float>(descending ? std::max(ppm_a, ppm_b) : std::min(ppm_a, ppm_b));
  r->Inset_Right = static_cast<float>(descending ? std::min(ppm_a, ppm_b) : std::max(ppm_a, ppm_b));
  r->Inset_X_Mag = static_cast<float>(std::fabs((static_cast<double>(s.X_Left) - s.X_Right) /
                                                (static_cast<double>(r->Inset_Left) - r->Inset_Right)));
  Refresh_Inset_Scale(s);
  return true;
}

int Inset_Hit(const Session& s, const Plot_Frame& f, int x, int y, bool& corner) {
  corner = false;
  for (int i = static_cast<int>(s.Insets.size()) - 1; i >= 0; --i) {
    const Inset_Box b = Inset_Rectangle(f, s.Insets[static_cast<std::size_t>(i)]);
    if (std::abs(x - b.right) <= Corner_Grab && std::abs(y - b.bottom) <= Corner_Grab) {
      corner = true;
      return i;
    }
    if (x >= b.left && x <= b.right && y >= b.top && y <= b.bottom) return i;
  }
  return -1;
}

bool Inset_Move(Session& s, const Plot_Frame& f, int index, int dx, int dy) {
  if (index < 0 || index >= static_cast<int>(s.Insets.size()) || (dx == 0 && dy == 0)) return false;
  s.Inset_Cur = index;
  Inset_Rec* r = Edit_Current(s, editing::Undo_Inset_Move);
  const Inset_Box b = Inset_Rectangle(f, *r);
  Set_Frame(*r, f, b.left + dx, b.right + dx, b.top + dy, b.bottom + dy);
  return true;
}

bool Inset_Resize(Session& s, const Plot_Frame& f, int index, int x, int y) {
  if (index < 0 || index >= static_cast<int>(s.Insets.size())) return false;
  const Inset_Box b = Inset_Rectangle(f, s.Insets[static_cast<std::size_t>(index)]);
  const double w = f.Frame_Right - f.Frame_Left, d = f.Frame_Base - f.Frame_Top;
  const int right = std::max(x, b.left + static_cast<int>(std::ceil(Min_Width * w)));
  const int bottom = std::max(y, b.top + static_cast<int>(std::ceil(Min_Height * d)));
  if (right == b.right && bottom == b.bottom) return false;
  s.Inset_Cur = index;
  Inset_Rec* r = Edit_Current(s, editing::Undo_Inset_Resize);
  Set_Frame(*r, f, b.left, right, b.top, bottom);
  Refresh_Inset_Scale(s);
  return true;
}

bool Inset_Delete(Session& s, int index) {
  if (index < 0 || index >= static_cast<int>(s.Insets.size())) return false;
  if (Show_Message(s, "この拡大図を削除しますか", Style_Yes_No + Icon_Question, "拡大図の削除") != Msg_Yes)
    return false;
  s.Inset_Cur = index;
  Edit_Current(s, editing::Undo_Inset_Delete);
  s.Insets.erase(s.Insets.begin() + index);
  s.Inset_Cur = static_cast<int32_t>(s.Insets.size());
  return true;
}

bool Inset_Mouse(Session& s, const Plot_Frame& f, int px, int py, int rx, int ry) {
  const bool click = std::abs(rx - px) + std::abs(ry - py) <= Click_Slack;
  const int16_t tool = s.Mouse_Tool;
  if (tool == Tool_Inset_New || tool == Tool_Inset_Range) {
    s.Mouse_Tool = 0;
    const double a = Ppm_At(s, f, px), b = Ppm_At(s, f, click ? px : rx);
    return tool == Tool_Inset_New ? Inset_Add(s, a, b) : Inset_Set_Window(s, a, b);
  }
  bool corner = false;
  const int hit = Inset_Hit(s, f, px, py, corner);
  if (hit < 0) return false;
  if (tool == Tool_Inset_Delete) {
    s.Mouse_Tool = 0;
    return Inset_Delete(s, hit);
  }
  s.Inset_Cur = hit;
  if (click) return false;
  // An armed move or resize tool serves one drag.
  if (tool == Tool_Inset_Move || tool == Tool_Inset_Resize) s.Mouse_Tool = 0;
  if (tool == Tool_Inset_Resize || (tool != Tool_Inset_Move && corner)) {
    const Inset_Box b = Inset_Rectangle(f, s.Insets[static_cast<std::size_t>(hit)]);
    return Inset_Resize(s, f, hit, b.right + rx - px, b.bottom + ry - py);
  }
  return Inset_Move(s, f, hit, rx - px, ry - py);
}

bool Inset_Drag_Box(const Session& s, const Plot_Frame& f, int px, int py, int x, int y, Inset_Box& out) {
  const int16_t tool = s.Mouse_Tool;
  if (tool == Tool_Inset_New || tool == Tool_Inset_Range || tool == Tool_Inset_Delete) return false;
  bool corner = false;
  const int hit = Inset_Hit(s, f, px, py, corner);
  if (hit < 0) return false;
  out = Inset_Rectangle(f, s.Insets[static_cast<std::size_t>(hit)]);
  if (tool == Tool_Inset_Resize || (tool != Tool_Inset_Move && corner)) {
    out.right += x - px;
    out.bottom += y - py;
  } else {
    for (int* v : {&out.left, &out.right}) *v += x - px;
    for (int* v : {&out.top, &out.base, &out.axis, &out.bottom}) *v += y - py;
  }
  return true;
}

std::string Inset_Tool_Text(int16_t tool) {
  switch (tool) {
    case Tool_Inset_Move: return "拡大図の移動";
    case Tool_Inset_Resize: return "拡大図の大きさ変更";
    case Tool_Inset_Delete: return "拡大図の削除";
    default: return {};
  }
}

bool Set_Inset_X_Mag(Session& s, double mag) {
  if (!(mag >= Inset_Mag_Min) || !std::isfinite(mag)) return false;
  Inset_Rec* r = Edit_Current(s, editing::Undo_Inset_X_Mag);
  if (r == nullptr) return false;
  const double centre = 0.5 * (static_cast<double>(r->Inset_Left) + r->Inset_Right);
  const double width = (static_cast<double>(s.X_Right) - s.X_Left) / mag;
  r->Inset_Left = static_cast<float>(centre - width / 2);
  r->Inset_Right = static_cast<float>(centre + width / 2);
  r->Inset_X_Mag = static_cast<float>(mag);
  Refresh_Inset_Scale(s);
  return true;
}

bool Set_Inset_Y_Mag(Session& s, double mag) {
  if (!(mag >= Inset_Mag_Min) || !std::isfinite(mag)) return false;
  Inset_Rec* r = Edit_Current(s, editing::Undo_Inset_Y_Mag);
  if (r == nullptr) return false;
  // The inset's height cancels out of its pixels per signal unit, so
  // Inset_Y_Full over Y_Mag is the magnification against the main plot.
  r->Inset_Y_Mag = static_cast<float>(mag);
  r->Inset_Y_Full = static_cast<float>(mag * s.Y_Mag);
  return true;
}

bool Set_Inset_Offset(Session& s, double offset) {
  if (!(offset >= -1 && offset <= 1)) return false;
  Inset_Rec* r = Edit_Current(s, editing::Undo_Inset_Offset);
  if (r == nullptr) return false;
  r->Inset_Y_Offset = static_cast<float>(offset);
  return true;
}

bool Step_Inset_Offset(Session& s, bool up) {
  const Inset_Rec* r = Current(s);
  if (r == nullptr) return false;
  const double step = r->Inset_Y_Full > 0 ? 0.002 / r->Inset_Y_Full : 0.002;
  return Set_Inset_Offset(s, std::clamp(r->Inset_Y_Offset + (up ? step : -step), -1.0, 1.0));
}

bool Shift_Inset_Window(Session& s, bool left) {
  Inset_Rec* r = Edit_Current(s, editing::Undo_Inset_Shift);
  if (r == nullptr) return false;
  // Toward the left end of the main view, whichever way it runs.
  const double step = std::fabs(static_cast<double>(r->Inset_Right) - r->Inset_Left) * 0.01 *
                      (s.X_Left >= s.X_Right ? 1.0 : -1.0) * (left ? 1.0 : -1.0);
  r->Inset_Left = static_cast<float>(r->Inset_Left + step);
  r->Inset_Right = static_cast<float>(r->Inset_Right + step);
  return true;
}

double Inset_X_Magnification(const Session& s, const Inset_Rec& r) {
  const double window = std::fabs(static_cast<double>(r.Inset_Left) - r.Inset_Right);
  return window > 0 ? std::fabs(static_cast<double>(s.X_Left) - s.X_Right) / window : 0;
}

double Inset_Y_Magnification(const Session& s, const Inset_Rec& r) {
  return s.Y_Mag > 0 ? r.Inset_Y_Full / s.Y_Mag : 0;
}

Inset_Fields Inset_Field_Texts(const Session& s) {
  const Inset_Rec* cur = s.Inset_Cur >= 0 && s.Inset_Cur < static_cast<int32_t>(s.Insets.size())
                             ? &s.Insets[static_cast<std::size_t>(s.Inset_Cur)]
                             : nullptr;
  if (cur == nullptr) {
    const Inset_Rec r = New_Inset_Record(s);
    return {Format_Number(r.Inset_X_Mag, "###0.0##"), Format_Number(r.Inset_Y_Mag, "##0.0##"), "0"};
  }
  return {Format_Number(Inset_X_Magnification(s, *cur), "###0.0##"),
          Format_Number(Inset_Y_Magnification(s, *cur), "##0.0##"),
          Format_Number(cur->Inset_Y_Offset, "#0.0####")};
}

}  // namespace tevo::display
