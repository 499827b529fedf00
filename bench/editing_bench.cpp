// The editing modes at the largest transform size: the peak search over the
// display copy, one trim-button step (B0 moved and the region summed again),
// and the automatic baseline (flags, both passes, the subtraction).
#include <benchmark/benchmark.h>

#include <cmath>
#include <complex>
#include <random>

#include "editing/baseline.h"
#include "editing/integrals.h"
#include "editing/peaks.h"
#include "session/session.h"

namespace {

constexpr int kN = 524288;

// kN points: 200 Lorentzian lines over a tilted baseline with a little noise.
void Fill(tevo::Session& s) {
  s.settings.Set("DISP EXTEND MODE", 1);
  tevo::Alloc_Point_Arrays(s, kN);
  s.Spec_Points = kN;
  s.Param.POINT = kN;
  s.Spectrum_Frequency = s.Observe_Frequency = 500;
  s.Spec_Axis.resize(kN);
  for (int k = 0; k < kN; ++k) s.Spec_Axis[static_cast<std::size_t>(k)] = -2.0f + 14.0f * k / kN;
  std::mt19937 random(3);
  std::normal_distribution<double> noise(0, 1e-4);
  std::vector<std::complex<double>> z(kN);
  for (int j = 0; j < 200; ++j) {
    const double k0 = 1000 + j * 2600.0, h = 0.2 + 0.8 * ((j * 37) % 100) / 100.0;
    for (int k = std::max(0, static_cast<int>(k0) - 3000); k < std::min(kN, static_cast<int>(k0) + 3000); ++k)
      z[static_cast<std::size_t>(k)] += h * 3.0 / std::complex<double>(3.0, k - k0);
  }
  for (int k = 0; k < kN; ++k) {
    const auto i = static_cast<std::size_t>(k);
    s.Ft_Re(i) = s.Spec_Re(i) = static_cast<float>(z[i].real() + 0.05 - 0.1 * k / kN + noise(random));
    s.Ft_Im(i) = s.Spec_Im(i) = static_cast<float>(z[i].imag() + noise(random));
  }
  s.Max_Abs = 1;
  tevo::Build_Disp_Arrays(s, 0);
}

tevo::Session& Spectrum() {
  static tevo::Session s = [] {
    tevo::Session t;
    Fill(t);
    return t;
  }();
  return s;
}

void BM_Peak_Search_All(benchmark::State& state) {
  tevo::Session& s = Spectrum();
  for (auto _ : state) {
    s.Peaks.clear();
    tevo::editing::Peak_Search_All(s);
    benchmark::DoNotOptimize(s.Peaks.data());
  }
  state.counters["peaks"] = static_cast<double>(s.Peaks.size());
}
BENCHMARK(BM_Peak_Search_All)->Unit(benchmark::kMillisecond);

void BM_Integral_Trim_Step(benchmark::State& state) {
  tevo::Session& s = Spectrum();
  s.Integrals.clear();
  tevo::editing::Integ_Add(s, kN - 1, 0);  // the whole spectrum: the worst case
  s.Integ_Cur = 0;
  tevo::editing::Integ_Trim_Begin(s);
  for (auto _ : state) benchmark::DoNotOptimize(tevo::editing::Integ_Trim_Step(s, tevo::editing::Trim_Button::B0_Up));
}
BENCHMARK(BM_Integral_Trim_Step)->Unit(benchmark::kMillisecond);

void BM_Baseline_Auto(benchmark::State& state) {
  tevo::Session& s = Spectrum();
  for (auto _ : state) benchmark::DoNotOptimize(tevo::editing::Base_Auto_Points(s));
  state.counters["points"] = static_cast<double>(s.Base_Point.size());
}
BENCHMARK(BM_Baseline_Auto)->Unit(benchmark::kMillisecond);

}  // namespace
