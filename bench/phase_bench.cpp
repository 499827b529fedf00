// Phase rotation at the largest transform size: by table, by sin/cos, one
// interactive step of the main window (rotation of one row and its display
// copy), and the full automatic method.
#include <benchmark/benchmark.h>

#include <cmath>
#include <complex>

#include "session/session.h"
#include "signal/phase.h"
#include "signal/phase_auto.h"
#include "signal/sine_table.h"

namespace {

constexpr int kN = 524288;

// One row of kN points: three Lorentzian lines with a phase error.
tevo::Session& Spectrum() {
  static tevo::Session s = [] {
    tevo::Session t;
    tevo::Alloc_Point_Arrays(t, kN);
    t.Spec_Points = kN;
    t.Param.OBNUC = "13C";
    for (int k = 0; k < kN; ++k) {
      std::complex<double> z = 8.0 / std::complex<double>(8.0, k - 120000.0) +
                               5.0 / std::complex<double>(8.0, k - 400000.0) +
                               3.0 / std::complex<double>(8.0, k - 300000.0);
      z *= std::polar(1.0, -(0.7 + (k - 120000.0) / kN * 2.0));
      t.Ft_Re(k) = static_cast<float>(z.real());
      t.Ft_Im(k) = static_cast<float>(z.imag());
    }
    tevo::Build_Disp_Arrays(t, 0);
    return t;
  }();
  return s;
}

void BM_Rotate_By_Table(benchmark::State& state) {
  tevo::Session& s = Spectrum();
  tevo::signal::Fft_Sine();
  for (auto _ : state) {
    tevo::signal::Rotate_By_Table(s.Ft_Re.Row(0), s.Ft_Im.Row(0), s.Spec_Re.Row(0), s.Spec_Im.Row(0), kN, 33.3f,
                                  -120.0f, 1000);
    benchmark::DoNotOptimize(s.Spec_Re(17));
  }
  state.SetItemsProcessed(state.iterations() * kN);
}
BENCHMARK(BM_Rotate_By_Table)->Unit(benchmark::kMillisecond);

void BM_Rotate_By_Sin_Cos(benchmark::State& state) {
  tevo::Session& s = Spectrum();
  for (auto _ : state) {
    tevo::signal::Rotate_By_Sin_Cos(s.Ft_Re.Row(0), s.Ft_Im.Row(0), s.Spec_Re.Row(0), s.Spec_Im.Row(0), kN, 33.3f,
                                    -120.0f, 1000);
    benchmark::DoNotOptimize(s.Spec_Re(17));
  }
  state.SetItemsProcessed(state.iterations() * kN);
}
BENCHMARK(BM_Rotate_By_Sin_Cos)->Unit(benchmark::kMillisecond);

// What one scroll bar event costs: the table rotation of the current row and
// the refresh of its display row.
void BM_Interactive_Phase_Step(benchmark::State& state) {
  tevo::Session& s = Spectrum();
  float p0 = 0;
  for (auto _ : state) {
    p0 += 0.1f;
    tevo::signal::Phase_Apply_Main(s, p0, -120.0f, kN);
    benchmark::DoNotOptimize(s.Disp_Y(17, 0));
  }
}
BENCHMARK(BM_Interactive_Phase_Step)->Unit(benchmark::kMillisecond);

void BM_Phase_Auto_Full(benchmark::State& state) {
  tevo::Session& s = Spectrum();
  for (auto _ : state) {
    tevo::signal::Phase_Auto(s, 0, kN);
    benchmark::DoNotOptimize(s.Phase1);
  }
}
BENCHMARK(BM_Phase_Auto_Full)->Unit(benchmark::kMillisecond);

}  // namespace
