#include "editing/mirror.h"

#include <algorithm>

#include "session/command_flow.h"
#include "session/messages.h"
#include "session/session.h"

namespace tevo::editing {

namespace {

// Reverses points 0 .. n-1 of every row; `negate` also changes the sign.
void Reverse_Rows(Point_Array& a, int32_t n, bool negate) {
  for (std::size_t r = 0; r < a.Rows(); ++r) {
    auto row = a.Row(r);
    if (row.size() < static_cast<std::size_t>(n)) continue;
    std::reverse(row.begin(), row.begin() + n);
    if (negate)
      for (int32_t i = 0; i < n; ++i) row[static_cast<std::size_t>(i)] = -row[static_cast<std::size_t>(i)];
  }
}

}  // namespace

void Mirror_Spectrum(Session& s) {
  const int32_t n = s.Spec_Points;
  if (n < 2 || s.Spec_Axis.size() < static_cast<std::size_t>(n)) return;
  const int32_t last = n - 1;
  // ppm p goes to sum - p: the two ends of the axis trade places.
  const double sum = static_cast<double>(s.Spec_Axis[0]) + s.Spec_Axis[static_cast<std::size_t>(last)];
  const auto turn = [sum](float ppm) { return static_cast<float>(sum - ppm); };

  Reverse_Rows(s.Spec_Re, n, false);
  Reverse_Rows(s.Spec_Im, n, true);
  s.Ft_Re = s.Spec_Re;
  s.Ft_Im = s.Spec_Im;
  s.Phase0 = s.Phase1 = 0;
  std::fill(s.Phase0_Row.begin(), s.Phase0_Row.end(), 0.0f);
  std::fill(s.Phase1_Row.begin(), s.Phase1_Row.end(), 0.0f);

  // Peaks keep ascending frequency: the list is reversed as well.
  const double width_hz = (s.Spec_Axis[static_cast<std::size_t>(last)] - s.Spec_Axis[0]) * s.Spectrum_Frequency;
  for (Peak_Rec& p : s.Peaks) {
    p.Point = last - p.Point;
    p.Freq_Hz = static_cast<float>(width_hz - p.Freq_Hz);
  }
  std::reverse(s.Peaks.begin(), s.Peaks.end());

  // A region's baseline B0 + B1 (End_Point - k) / N at point k must read the
  // same at the mirrored point: the tilt changes sign and the offset takes
  // what the old line had at the old start.
  for (Integ_Rec& r : s.Integrals) {
    const int32_t start = r.Start_Point, end = r.End_Point;
    r.Start_Point = last - end;
    r.End_Point = last - start;
    r.B0 = static_cast<float>(r.B0 + static_cast<double>(r.B1) * (end - start) / n);
    r.B1 = -r.B1;
  }

  for (int32_t& p : s.Base_Point) p = last - p;
  std::reverse(s.Base_Point.begin(), s.Base_Point.end());
  std::reverse(s.Base_Re.begin(), s.Base_Re.end());
  std::reverse(s.Base_Im.begin(), s.Base_Im.end());
  for (float& v : s.Base_Im) v = -v;

  for (Inset_Rec& in : s.Insets) {
    const float right = in.Inset_Right, left = in.Inset_Left;
    in.Inset_Right = turn(left);
    in.Inset_Left = turn(right);
  }

  const float left = s.X_Left, right = s.X_Right;
  s.X_Left = turn(right);
  s.X_Right = turn(left);
  s.X_Left_Hz = static_cast<float>(s.X_Left * s.Spectrum_Frequency);
  s.X_Right_Hz = static_cast<float>(s.X_Right * s.Spectrum_Frequency);
  s.View_History.clear();

  Build_Disp_Arrays(s, 0);
  s.Data_Saved = 0;
  s.Undo_Stack[0].Kind = Undo_None;
}

bool m291_Click(Session& s) {
  if (!session::Confirm_Mode_Exit(s)) return false;
  if (s.Spec_Points < 2) return false;
  if (Show_Message(s, "スペクトルの左右を反転しますか", Style_Yes_No + Icon_Question, "") != Msg_Yes) return false;
  Mirror_Spectrum(s);
  return true;
}

}  // namespace tevo::editing
