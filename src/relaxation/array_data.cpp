#include "relaxation/array_data.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace tevo::relaxation {

namespace {

std::size_t Z(int32_t i) { return static_cast<std::size_t>(i); }

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

}  // namespace tevo::relaxation
