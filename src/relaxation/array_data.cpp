#include "relaxation/array_data.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <utility>

#include "display/view_commands.h"
#include "overlay/slot_read.h"
#include "platform/ui.h"
#include "session/messages.h"
#include "session/number_text.h"

namespace tevo::relaxation {

namespace {

std::size_t Z(int32_t i) { return static_cast<std::size_t>(i); }

// The main spectrum and nine overlay slots: rows beyond these are dropped
// when an array is read as overlays.
constexpr int32_t Overlay_Rows_Of_Array = 10;

// Sum of Spec_Re of one row over first..last, ascending, in extended
// precision; 0 unless both ends are set.
long double Region_Sum(const Session& s, int32_t row, int32_t first, int32_t last) {
  if (first < 1 || last < 1) return 0;
  long double sum = 0;
  for (int32_t i = first; i <= last && i < s.Spec_Points; ++i) sum += s.Spec_Re(Z(i), Z(row));
  return sum;
}

}  // namespace

void Set_Delay_Labels(Session& s) {
  const bool doubled = s.Delay_Name == "T2" || s.Delay_Name == "T2COM";
  const std::string inner = doubled ? s.Delay_Name + "*2 + PW2" : s.Delay_Name;
  s.Delay_Label = "t(" + inner + ")";
  s.Delay_Axis_Label = "\\i(t)\\-((" + inner + ")) / s";
}

void Sort_Array_Rows(Session& s, int16_t direction) {
  const int32_t rows = std::min<int32_t>(s.Array_Rows, static_cast<int32_t>(s.Delay_List.size()));
  if (rows < 2 || direction < 1 || direction > 2) return;
  s.Delay_Raw.resize(s.Delay_List.size(), 0.0f);
  std::vector<float> remembered(s.Delay_List.begin(), s.Delay_List.begin() + rows);
  const bool up = direction == 1;
  for (int32_t i = 0; i < rows - 1; ++i)
    for (int32_t j = i + 1; j < rows; ++j) {
      const float a = s.Delay_List[Z(i)], b = s.Delay_List[Z(j)];
      if (up ? a > b : a < b) {
        std::swap(s.Delay_List[Z(i)], s.Delay_List[Z(j)]);
        std::swap(s.Delay_Raw[Z(i)], s.Delay_Raw[Z(j)]);
      }
    }
  // A taken row's delay becomes a value no sorted delay can equal.
  const float sentinel = s.Delay_List[0] + (up ? -100.0f : 100.0f);
  const Point_Array re = s.Spec_Re, im = s.Spec_Im;
  const int32_t n = s.Spec_Points;
  for (int32_t place = 0; place < rows; ++place) {
    for (int32_t r = 0; r < rows; ++r) {
      if (remembered[Z(r)] != s.Delay_List[Z(place)]) continue;
      for (int32_t i = 0; i < n; ++i) {
        s.Spec_Re(Z(i), Z(place)) = re(Z(i), Z(r));
        s.Spec_Im(Z(i), Z(place)) = im(Z(i), Z(r));
      }
      remembered[Z(r)] = sentinel;
      break;
    }
  }
  s.Ft_Re = s.Spec_Re;
  s.Ft_Im = s.Spec_Im;
}

std::vector<Intensity_Pair> Extract_Intensities(const Session& s, int32_t selection, int32_t region_first,
                                                int32_t region_last, float least_largest, bool swap_equal,
                                                float* largest) {
  std::vector<Intensity_Pair> pairs;
  const std::vector<Peak_Rec>& row_peaks = s.Peaks;
  float big = least_largest;
  for (int32_t r = 0; r < s.Array_Rows; ++r) {
    Intensity_Pair p;
    if (selection == 0) {
      p.y = static_cast<float>(Region_Sum(s, r, region_first, region_last));
    } else if (selection >= 1 && Z(selection) <= row_peaks.size()) {
      const int32_t at = row_peaks[Z(selection - 1)].Point;
      p.y = at >= 0 && at < s.Spec_Points ? s.Spec_Re(Z(at), Z(r)) : 0.0f;
    }
    big = std::max(big, std::fabs(p.y));
    p.t = Z(r) < s.Delay_List.size() ? s.Delay_List[Z(r)] : 0.0f;
    pairs.push_back(p);
  }
  for (Intensity_Pair& p : pairs) p.y /= big;
  for (std::size_t i = 0; i + 1 < pairs.size(); ++i)
    for (std::size_t j = i + 1; j < pairs.size(); ++j)
      if (pairs[i].t > pairs[j].t || (swap_equal && pairs[i].t == pairs[j].t)) std::swap(pairs[i], pairs[j]);
  if (largest) *largest = big;
  return pairs;
}

int32_t Phase_Row(const Session& s) {
  const bool decay = s.Delay_Name == "T2" || s.Delay_Name == "T2COM";
  const int32_t rows = std::min<int32_t>(s.Array_Rows, static_cast<int32_t>(s.Delay_List.size()));
  int32_t best = 0;
  for (int32_t r = 1; r < rows; ++r)
    if (decay ? s.Delay_List[Z(r)] < s.Delay_List[Z(best)] : s.Delay_List[Z(r)] > s.Delay_List[Z(best)]) best = r;
  return best;
}

std::vector<double> Array_List_Values(const Session& s, int32_t first, int32_t last) {
  std::vector<double> sums;
  double big = 0.1;
  for (int32_t r = 0; r < s.Array_Rows; ++r) {
    sums.push_back(static_cast<double>(Region_Sum(s, r, first, last)));
    big = std::max(big, std::fabs(sums.back()));
  }
  for (double& v : sums) v /= big;
  return sums;
}

std::string NMR1D_Form20(Session& s) {
  // Option1 .. Option4, the parameter order split by Option10 / Option11.
  static const std::vector<std::string> options = {
      "DEPT データとして読み込む", "Arrayデータ(パラメータ順)　小　=>　大", "Arrayデータ(パラメータ順)　大　=>　小",
      "Arrayデータ(読込み順)", "重ね書きデータ(10個のみ)として読み込む"};
  constexpr int read_order = 3;
  const int pick = s.ui->Choose("Multi(Array) データ", "", options, read_order);
  if (pick < 0 || pick >= static_cast<int>(options.size())) return "CANCEL";
  s.Array_Read_Dept = pick == 0 ? 1 : 0;
  s.Array_Read_Array = pick >= 1 && pick <= 3 ? 1 : 0;
  s.Array_Sort = static_cast<int16_t>(pick == 1 ? 1 : pick == 2 ? 2 : 0);
  // The answer is remembered: 0 an array, 1 rows as overlays, 2 DEPT rows.
  s.settings.Set("ARRAY MODE", pick == 0 ? 2 : pick == 4 ? 1 : 0);
  s.settings.Set("ARRAY SORT", s.Array_Sort);
  return "OK";
}

namespace {

// Rows 1 .. to overlay slots 1 ..; row 0 stays the main spectrum.
void Rows_To_Overlays(Session& s, bool dept) {
  const int32_t rows = s.Array_Rows;
  const int32_t last = std::min(rows, Overlay_Rows_Of_Array) - 1;
  bool occupied = false;
  for (int32_t r = 1; r <= last; ++r) occupied = occupied || s.Overlay[Z(r)].Slot_Points > 0;
  const bool overwrite = occupied && Show_Message(s, "重ね書きデータに上書きしますか。", Style_Yes_No + Icon_Question,
                                                  "重ね書き,上書き確認") == Msg_Yes;
  static const char* const dept_labels[] = {"", "CH", "CH2", "CH3"};
  const float zoom = 0.95f / static_cast<float>(rows);
  const int32_t shown = s.Array_Row;
  for (int32_t r = 1; r <= last; ++r) {
    Overlay_Slot& slot = s.Overlay[Z(r)];
    if (slot.Slot_Points > 0 && !overwrite) continue;
    s.Array_Row = r;
    slot = overlay::Slot_From_Session(s, s.Open_Name, slot);
    float largest = 0.1f;
    for (std::size_t i = 0; i < slot.Slot_Y.size(); ++i)
      largest = std::max(largest, std::fabs(slot.Slot_Y[i]));
    slot.Slot_Max_Abs = largest;
    slot.Slot_Y_Mag = zoom;
    slot.Slot_Y_Full = largest / zoom;
    slot.Slot_Y_Offset = static_cast<float>(r) / static_cast<float>(rows);
    if (dept)
      slot.Slot_Comment = r < 4 ? dept_labels[r] : "";
    else if (Z(r) < s.Delay_List.size())
      slot.Slot_Comment = "t= " + Format_Number(s.Delay_List[Z(r)], "#####0.0#####");
  }
  s.Array_Row = shown;
  s.Array_Rows = 1;
  if (!s.Delay_List.empty()) s.Delay_List.resize(1);
  if (!s.Delay_Raw.empty()) s.Delay_Raw.resize(1);
}

}  // namespace

float Commit_Array_Rows(Session& s) {
  if (s.Array_Rows < 2) return 0.95f;
  if (s.Array_Read_Dept || !s.Array_Read_Array) {
    const int32_t rows = s.Array_Rows;
    Rows_To_Overlays(s, s.Array_Read_Dept != 0);
    return 0.95f / static_cast<float>(rows);
  }
  if (s.Array_Sort > 0) Sort_Array_Rows(s, s.Array_Sort);
  return 0.95f;
}

std::string Join_Individual_Paths(const std::vector<std::string>& paths) {
  if (paths.empty()) return {};
  const std::filesystem::path folder = std::filesystem::path(paths.front()).parent_path();
  std::string joined = folder.string();
  for (const std::string& p : paths) {
    const std::filesystem::path file(p);
    joined += "|" + (file.parent_path() == folder ? file.filename().string() : p);
  }
  return joined;
}

std::vector<std::string> Split_Individual_Paths(const std::string& joined) {
  if (joined.find('|') == std::string::npos) return joined.empty() ? std::vector<std::string>{} : std::vector{joined};
  std::vector<std::string> parts;
  std::size_t from = 0;
  for (;;) {
    const std::size_t bar = joined.find('|', from);
    parts.push_back(joined.substr(from, bar - from));
    if (bar == std::string::npos) break;
    from = bar + 1;
  }
  std::vector<std::string> files;
  for (std::size_t k = 1; k < parts.size(); ++k)
    if (!parts[k].empty()) files.push_back((std::filesystem::path(parts[0]) / parts[k]).string());
  return files;
}

float Stored_Delay(const Session& s) { return s.Delay_List.empty() ? s.Delay_Start : s.Delay_List.front(); }

bool Join_Individual_Rows(Session& s, const std::vector<Session>& others) {
  const auto fits = [&s](const Session& o) {
    return o.Array_Rows == 1 && o.Point_Capacity == s.Point_Capacity && o.Spec_Points == s.Spec_Points &&
           o.Fid_Points == s.Fid_Points && o.Param.SMODE == s.Param.SMODE;
  };
  if (s.Array_Rows != 1 || !std::all_of(others.begin(), others.end(), fits)) return false;
  const auto rows = static_cast<int32_t>(others.size()) + 1;
  std::vector<float> delays{Stored_Delay(s)};
  for (const Session& o : others) delays.push_back(Stored_Delay(o));
  using Member = Point_Array Session::*;
  for (Member m : {&Session::Fid_Re, &Session::Fid_Im, &Session::Ft_Re, &Session::Ft_Im, &Session::Spec_Re,
                   &Session::Spec_Im}) {
    Point_Array joined;
    joined.Allocate(s.Point_Capacity, rows);
    const auto copy = [&joined](const Point_Array& from, int32_t row) {
      if (from.Empty()) return;
      const std::span<const float> src = from.Row(0);
      std::copy(src.begin(), src.end(), joined.Row(Z(row)).begin());
    };
    copy(s.*m, 0);
    for (int32_t r = 1; r < rows; ++r) copy(others[Z(r - 1)].*m, r);
    s.*m = std::move(joined);
  }
  s.Array_Rows = rows;
  s.Array_Row = 0;
  s.Delay_List = delays;
  s.Delay_Raw = delays;
  s.Delay_Linear = 0;
  s.Delay_Start = 0;
  s.Delay_Step = 0;
  Set_Delay_Labels(s);
  // The FID work file is written anew for all rows.
  s.Fid_Work_Saved = false;
  return true;
}

std::string NMR1D_Form21(Session& s) {
  const int pick = s.ui->Choose("T1/T2個別データ", "位相補正を行うデータは？",
                                {"一番始めのデータ(T2)", "一番最後のデータ(T1)"}, 0);
  if (pick < 0 || pick > 1) return "CANCEL";
  s.Array_Row = pick == 0 ? 0 : s.Array_Rows - 1;
  return pick == 0 ? "START" : "END";
}

void NMR1D_Form32_OK(Session& s, const std::string& x_text, const std::string& y_text) {
  double x = 0, y = 0;
  if (display::Parse_Number(x_text, x) && x > -1 && x < 1) s.settings.Set("X AXIS RATIO", x);
  if (display::Parse_Number(y_text, y) && y >= 0 && y < 1) s.settings.Set("Y AXIS RATIO", y);
  // The frame of the stack has changed: the whole spectrum again.
  display::View_After_Load(s);
}

}  // namespace tevo::relaxation
