#include "signal/phase_mode.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "platform/ui.h"
#include "session/command_flow.h"
#include "session/messages.h"
#include "session/number_text.h"
#include "session/session.h"
#include "signal/phase.h"

namespace tevo::signal {

namespace {

std::vector<float>& Row_Values(Session& s, int order) { return order == 0 ? s.Phase0_Row : s.Phase1_Row; }

// Sizes the per-row vectors to the rows, new rows taking Phase0/Phase1.
void Size_Row_Values(Session& s) {
  const auto rows = static_cast<std::size_t>(std::max(s.Array_Rows, 1));
  if (s.Phase0_Row.size() < rows) s.Phase0_Row.resize(rows, s.Phase0);
  if (s.Phase1_Row.size() < rows) s.Phase1_Row.resize(rows, s.Phase1);
}

// Rotated spectrum becomes the transformed one; the phase is then inside
// the data.
void Phase_Commit(Session& s) {
  s.Ft_Re = s.Spec_Re;
  s.Ft_Im = s.Spec_Im;
  s.Phase0 = 0;
  s.Phase1 = 0;
  s.Phase0_Row.assign(s.Phase0_Row.size(), 0.0f);
  s.Phase1_Row.assign(s.Phase1_Row.size(), 0.0f);
  s.View_History.clear();
}

// The transformed spectrum is shown again unrotated.
void Phase_Discard(Session& s) {
  s.Spec_Re = s.Ft_Re;
  s.Spec_Im = s.Ft_Im;
  Build_Disp_Arrays(s, 0);
}

}  // namespace

float Phase_Limit(int order) { return order == 0 ? Phase0_Limit : Phase1_Limit; }

std::string Phase_Text(float degrees) { return Format_Number(degrees, "####0.0#"); }

int16_t Phase_Scroll_Value(float degrees) {
  const double v = std::nearbyint(static_cast<double>(degrees) * 10.0);
  return static_cast<int16_t>(std::clamp(v, -32768.0, 32767.0));
}

float& Phase_Value(Session& s, Phase_Place place, int order) {
  if (place == Phase_Place::Dialog) return order == 0 ? s.Phase0 : s.Phase1;
  Size_Row_Values(s);
  return Row_Values(s, order)[static_cast<std::size_t>(s.Row())];
}

void Phase_Apply_Current(Session& s, Phase_Place place) {
  const float p0 = Phase_Value(s, place, 0);
  const float p1 = Phase_Value(s, place, 1);
  if (place == Phase_Place::Dialog) {
    Phase_Preview(s, p0, p1, s.Spec_Points);
  } else {
    Phase_Apply_Main(s, p0, p1, s.Spec_Points);
    session::Mode_Edited(s);
  }
}

void Phase_Step(Session& s, Phase_Place place, int order, int index) {
  if (index < 0 || index >= static_cast<int>(Phase_Steps.size())) return;
  float& v = Phase_Value(s, place, order);
  const float lim = Phase_Limit(order);
  v = std::clamp(static_cast<float>(v + Phase_Steps[static_cast<std::size_t>(index)]), -lim, lim);
  Phase_Apply_Current(s, place);
}

bool Phase_Typed(Session& s, Phase_Place place, int order, const std::string& text) {
  const char* begin = text.c_str();
  char* end = nullptr;
  const double x = std::strtod(begin, &end);
  if (end == begin) return false;
  while (*end == ' ' || *end == '\t') ++end;
  if (*end != '\0') return false;
  const double lim = Phase_Limit(order);
  if (!(x > -lim && x < lim)) return false;
  Phase_Value(s, place, order) = static_cast<float>(x);
  Phase_Apply_Current(s, place);
  return true;
}

void Phase_Scroll(Session& s, Phase_Place place, int order, int value) {
  Phase_Value(s, place, order) = static_cast<float>(static_cast<int16_t>(value) * 0.1);
  Phase_Apply_Current(s, place);
}

void Phase_Set_Marker(Session& s, int which, int32_t point) {
  const int32_t p = std::clamp(point, 0, std::max(s.Spec_Points - 1, 0));
  (which == 0 ? s.Pivot_Pp : s.Pivot_P2) = p;
}

bool m22_Click(Session& s) {
  if (s.Mode.Edit_Mode == session::Mode_Phase) return false;
  if (s.Base_Corrected) {
    s.ui->Beep();
    const std::string text = "BaseLine補正を行っているため、\r\n正確に位相補正ができません。\r\n続行しますか？";
    if (Show_Message(s, text, Style_Yes_No | Icon_Question, "") != Msg_Yes) return false;
  }
  if (!session::Enter_Mode(s, session::Mode_Phase)) return false;
  s.Mode.handlers[session::Mode_Phase] = {Phase_Commit, Phase_Discard, nullptr};
  const auto rows = static_cast<std::size_t>(std::max(s.Array_Rows, 1));
  s.Phase0_Row.assign(rows, s.Phase0);
  s.Phase1_Row.assign(rows, s.Phase1);
  Phase_Set_Marker(s, 0, s.Pivot_Pp);
  Phase_Set_Marker(s, 1, s.Pivot_P2);
  return true;
}

void Phase_Auto_Main(Session& s, int mode) {
  Phase_Auto(s, mode, s.Spec_Points, Phase_Place::Main_Window);
  session::Mode_Edited(s);
}

void Phase_Reset_Row(Session& s) {
  Phase_Value(s, Phase_Place::Main_Window, 0) = s.Phase0;
  Phase_Value(s, Phase_Place::Main_Window, 1) = s.Phase1;
  Phase_Apply_Current(s, Phase_Place::Main_Window);
}

void PhaseCommand1_Click(Session& s) { session::Finish_Mode(s, true); }

void PhaseCommand2_Click(Session& s) { session::Finish_Mode(s, false); }

void m34_Click(Session& s) {
  s.Show_Magnitude = s.Show_Magnitude ? 0 : 1;
  Build_Disp_Arrays(s, 0);
}

}  // namespace tevo::signal
