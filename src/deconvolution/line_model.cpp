#include "deconvolution/line_model.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace tevo::deconvolution {

namespace {
std::size_t Z(int32_t i) { return static_cast<std::size_t>(i); }
}  // namespace

double Line_Shape(double p, double w, double h, double g, double x, double f) {
  const double w2 = w * w;
  if (h == 0 || w2 <= 0) return 0;
  const double d = (p - x) * f, d2 = d * d;
  const double lorentz = w2 / (w2 + d2);
  const double gauss = std::exp(-(d2 / w2) * 0.693147180559945);
  return h * (lorentz * (1 - g) + g * gauss);
}

double Line_Value(std::span<const float> trial, double x, double f) {
  double y = 0;
  for (std::size_t q = 0; q + 3 < trial.size(); q += 4) y += Line_Shape(trial[q], trial[q + 1], trial[q + 2], trial[q + 3], x, f);
  return y;
}

float Peak_Area(float height, float width, float gauss) {
  return (1.5707964f - gauss * 0.5063293f) * height * width;
}

std::vector<float> Relative_Areas(const Sim_Peaks& peaks) {
  std::vector<float> areas;
  float largest = 1e-5f;
  for (int32_t k = 0; k < peaks.Sim_Peak_Count; ++k) {
    areas.push_back(Peak_Area(peaks.Peak_Height[Z(k)], peaks.Peak_Width[Z(k)], peaks.Peak_Gauss[Z(k)]));
    largest = std::max(largest, areas.back());
  }
  for (float& a : areas) a = 100 * a / largest;
  return areas;
}

void Sort_Peaks(Sim_Peaks& peaks, bool descending) {
  for (int32_t i = 0; i + 1 < peaks.Sim_Peak_Count; ++i)
    for (int32_t j = i + 1; j < peaks.Sim_Peak_Count; ++j) {
      const float a = peaks.Peak_Pos[Z(i)], b = peaks.Peak_Pos[Z(j)];
      if (descending ? a < b : a > b) {
        std::swap(peaks.Peak_Pos[Z(i)], peaks.Peak_Pos[Z(j)]);
        std::swap(peaks.Peak_Width[Z(i)], peaks.Peak_Width[Z(j)]);
        std::swap(peaks.Peak_Height[Z(i)], peaks.Peak_Height[Z(j)]);
        std::swap(peaks.Peak_Gauss[Z(i)], peaks.Peak_Gauss[Z(j)]);
      }
    }
}

bool Add_Sim_Peak(Sim_Peaks& peaks, float ppm, float axis0, float height, float width, float gauss,
                  bool descending) {
  if (peaks.Sim_Peak_Count >= Sim_Peak_Max) return false;
  const std::size_t k = Z(peaks.Sim_Peak_Count);
  peaks.Peak_Pos[k] = ppm - axis0;
  peaks.Peak_Width[k] = width;
  peaks.Peak_Height[k] = height;
  peaks.Peak_Gauss[k] = gauss;
  ++peaks.Sim_Peak_Count;
  Sort_Peaks(peaks, descending);
  return true;
}

void Delete_Sim_Peak(Sim_Peaks& peaks, int32_t k) {
  if (k < 0 || k >= peaks.Sim_Peak_Count) return;
  for (int32_t i = k; i + 1 < peaks.Sim_Peak_Count; ++i) {
    peaks.Peak_Pos[Z(i)] = peaks.Peak_Pos[Z(i + 1)];
    peaks.Peak_Width[Z(i)] = peaks.Peak_Width[Z(i + 1)];
    peaks.Peak_Height[Z(i)] = peaks.Peak_Height[Z(i + 1)];
    peaks.Peak_Gauss[Z(i)] = peaks.Peak_Gauss[Z(i + 1)];
  }
  --peaks.Sim_Peak_Count;
}

void Sim_Undo_Push(Sim_Undo_List& list, uint16_t code, const Sim_Peaks& peaks) {
  std::move_backward(list.begin(), list.end() - 1, list.end());
  list[0] = {code, peaks};
}

bool Sim_Undo_Pop(Sim_Undo_List& list, Sim_Peaks& peaks) {
  if (list[0].Code == 65535) return false;
  peaks = list[0].Peaks;
  std::move(list.begin() + 1, list.end(), list.begin());
  list.back() = Sim_Undo_Rec{};
  return true;
}

std::string Sim_Undo_Caption(const Sim_Undo_List& list) {
  switch (list[0].Code) {
    case 1: return "UnDo(ピークの全削除)";
    case 2: return "UnDo(ピークの削除)";
    case 3: return "UnDo(ピークの追加)";
    case 4: return "UnDo(ピークの変更)";
    case 11: return "UnDo(計算範囲)";
    case 101: return "UnDo(ピーク表示位置の変更)";
    case 102: return "UnDo(計算曲線表示位置の変更)";
    case 201: return "UnDo(計算範囲(右))";
    case 202: return "UnDo(計算範囲(左))";
    default: return "UnDo";
  }
}

}  // namespace tevo::deconvolution
