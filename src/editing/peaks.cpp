#include "editing/peaks.h"

#include <algorithm>
#include <cmath>

#include "editing/undo.h"
#include "session/session.h"

namespace tevo::editing {

namespace {

// The hysteresis walker of the search over y[first .. last]. `found` gets
// the index of each peak and returns false to stop the walk.
template <class Y, class Found>
void Walk_Peaks(const Session& s, Y y_at, int32_t first, int32_t last, Found found) {
  if (first > last) return;
  const auto t = static_cast<float>(s.Peak_Level * s.Max_Abs);
  const auto n = static_cast<float>(std::fabs(s.Noise_Level * s.Max_Abs - s.Base_Level * s.Max_Abs));
  double hi = y_at(first), lo = hi;
  int32_t at = first, dir = -1;
  for (int32_t i = first; i <= last; ++i) {
    const double y = y_at(i);
    bool step4_with_equal = false;
    if (y > hi) {
      if (y - lo > n) {
        dir = 1, hi = y, at = i;
        continue;
      }
    } else if (y < hi) {
      if (hi - y > n && hi > t && dir == 1) {
        if (!found(at)) return;
        lo = hi = y, dir = -1, at = i;
        continue;
      }
      step4_with_equal = true;
    }
    if (dir == -1 && (y < lo || (step4_with_equal && y == lo))) lo = hi = y, at = i;
  }
}

std::size_t Row_Of(const Session& s) {
  return static_cast<std::size_t>(std::clamp(s.Array_Row, 0, std::max(s.Array_Rows - 1, 0)));
}

int32_t Last_Disp(const Session& s) {
  return std::min<int32_t>(s.Disp_Points, static_cast<int32_t>(s.Disp_X.size())) - 1;
}

}  // namespace

bool Peak_List_Full(const Session& s) { return s.Peaks.size() >= static_cast<std::size_t>(Peak_Max); }

void Peak_Search(Session& s, int32_t first, int32_t last) {
  const std::size_t row = Row_Of(s);
  last = std::min(last, Last_Disp(s));
  first = std::max(first, 0);
  if (Peak_List_Full(s)) return;
  Walk_Peaks(
      s, [&](int32_t i) { return static_cast<double>(s.Disp_Y(static_cast<std::size_t>(i), row)); }, first, last,
      [&](int32_t at) {
        Offer_Peak(s, at);
        return !Peak_List_Full(s);
      });
}

bool Offer_Peak(Session& s, int32_t at) {
  if (at < 0 || at > Last_Disp(s) || s.Spec_Axis.empty() || Peak_List_Full(s)) return false;
  const int32_t n = s.Spec_Points;
  const double x = s.Disp_X[static_cast<std::size_t>(at)];
  const double a0 = s.Spec_Axis[0], a1 = s.Spec_Axis[static_cast<std::size_t>(n - 1)];
  const auto f = static_cast<float>((x - a0) * s.Spectrum_Frequency);
  for (const Peak_Rec& p : s.Peaks)
    if (std::fabs(double(p.Freq_Hz) - f) < 0.01) return false;
  Peak_Rec r;
  r.Freq_Hz = f;
  r.Point = a1 != a0 ? static_cast<int32_t>(std::nearbyint((x - a0) / (a1 - a0) * n)) : 0;
  const auto pos = std::find_if(s.Peaks.begin(), s.Peaks.end(), [&](const Peak_Rec& p) { return p.Freq_Hz > f; });
  s.Peaks.insert(pos, r);
  return true;
}

int32_t Peak_Search_Shown(Session& s) {
  const std::size_t before = s.Peaks.size();
  Undo_Take_Peaks(s, Undo_Peak_Search);
  const int32_t last = Last_Disp(s);
  const int32_t left = std::clamp(Point_From_Ppm(s, s.X_Left, s.Row()).index, 0, std::max(last, 0));
  const int32_t right = std::clamp(Point_From_Ppm(s, s.X_Right, s.Row()).index, 0, std::max(last, 0));
  if (right < left) Peak_Search(s, right, left);
  session::Mode_Edited(s);
  return static_cast<int32_t>(s.Peaks.size() - before);
}

int32_t Peak_Search_All(Session& s) {
  const std::size_t before = s.Peaks.size();
  Undo_Take_Peaks(s, Undo_Peak_Search);
  Peak_Search(s, 0, Last_Disp(s));
  session::Mode_Edited(s);
  return static_cast<int32_t>(s.Peaks.size() - before);
}

int32_t Nearest_Peak(Session& s, int32_t c) {
  const std::size_t row = Row_Of(s);
  const int32_t first = std::max(c - 40, 0), last = std::min(c + 40, Last_Disp(s));
  auto nearest = [&](double sign) {
    int32_t best = 0;
    Walk_Peaks(
        s, [&](int32_t i) { return sign * s.Disp_Y(static_cast<std::size_t>(i), row); }, first, last,
        [&](int32_t at) {
          if (best < 1 || std::abs(at - c) < std::abs(best - c)) best = at;
          return true;
        });
    return best;
  };
  const int32_t pos = nearest(1.0), neg = nearest(-1.0);
  int32_t best = pos;
  if (neg >= 1 && (pos < 1 || std::abs(neg - c) < std::abs(pos - c))) best = neg;
  return best >= 1 ? best : -1;
}

bool Peak_Add_Nearest(Session& s, int32_t c) {
  if (Peak_List_Full(s)) return false;
  const int32_t at = Nearest_Peak(s, c);
  if (at < 1) return false;
  Undo_Take_Peaks(s, Undo_Peak_Add);
  const bool added = Offer_Peak(s, at);
  session::Mode_Edited(s);
  return added;
}

bool Peak_Add_At(Session& s, int32_t c) {
  if (Peak_List_Full(s)) return false;
  c = std::min(c, Last_Disp(s));
  if (c < 1) return false;
  Undo_Take_Peaks(s, Undo_Peak_Add);
  const bool added = Offer_Peak(s, c);
  session::Mode_Edited(s);
  return added;
}

bool Peak_Delete_At(Session& s, double click_x, const std::function<double(double)>& pixel_of_ppm) {
  for (std::size_t i = 0; i < s.Peaks.size(); ++i) {
    if (std::fabs(pixel_of_ppm(Peak_Ppm(s, static_cast<int32_t>(i))) - click_x) < 2) {
      Undo_Take_Peaks(s, Undo_Peak_Delete);
      s.Peaks.erase(s.Peaks.begin() + static_cast<std::ptrdiff_t>(i));
      session::Mode_Edited(s);
      return true;
    }
  }
  return false;
}

bool PeakCommand3_Click(Session& s) {
  if (s.Peaks.empty()) return false;
  Undo_Take_Peaks(s, Undo_Peak_Delete_All);
  s.Peaks.clear();
  session::Mode_Edited(s);
  return true;
}

double Peak_Ppm(const Session& s, int32_t i) {
  const double a0 = s.Spec_Axis.empty() ? 0.0 : s.Spec_Axis[0];
  return s.Peaks[static_cast<std::size_t>(i)].Freq_Hz / s.Spectrum_Frequency + a0;
}

std::vector<Peak_Row> Peak_List_Rows(Session& s, bool khz) {
  std::vector<Peak_Row> rows;
  double largest = 0.001;
  const auto count = static_cast<int32_t>(s.Peaks.size());
  for (int32_t i = 0; i < count; ++i) {
    Peak_Row r;
    r.ppm = Peak_Ppm(s, i);
    r.freq = s.Peaks[static_cast<std::size_t>(i)].Freq_Hz * (khz ? 0.001 : 1.0);
    r.height = Point_From_Ppm(s, static_cast<float>(r.ppm), s.Row()).height;
    largest = std::max(largest, r.height);
    rows.push_back(r);
  }
  const bool reverse = s.settings.Int("PEAK LIST DIRECT") != 0;
  for (int32_t i = 0; i < count; ++i) {
    Peak_Row& r = rows[static_cast<std::size_t>(i)];
    r.strength = r.height / largest * 100;
    r.number = reverse ? count - i : i + 1;
  }
  if (reverse) std::reverse(rows.begin(), rows.end());
  return rows;
}

namespace {

void Peak_Close(Session& s) {
  if (!s.Mode.Mode_Unchanged) s.Data_Saved = 0;
  Undo_Clear(s);
}

}  // namespace

bool m24_Click(Session& s) {
  if (s.Mode.Edit_Mode == session::Mode_Peak) return false;
  if (!session::Enter_Mode(s, session::Mode_Peak)) return false;
  s.Mode.handlers[session::Mode_Peak] = {nullptr, nullptr, Peak_Close};
  return true;
}

void PeakCommand1_Click(Session& s) {
  if (s.Mode.Edit_Mode == session::Mode_Peak) session::Confirm_Mode_Exit(s);
}

}  // namespace tevo::editing
