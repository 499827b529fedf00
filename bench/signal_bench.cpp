// The hot paths of processing at the largest size, 524288 points: the
// transform on the sine table, the table phase rotation, the display copy,
// and one interactive phase step (rotation of one row plus its display
// copy). FFTW's single-precision plan of the same size runs beside them, so
// the ratio reads from one run.
#include <benchmark/benchmark.h>

#include <cmath>

#include "session/session.h"
#include "signal/fft.h"
#include "signal/phase.h"
#include "signal/window.h"

#ifdef TEVO_HAVE_FFTW
#include <fftw3.h>
#endif

namespace {

constexpr int32_t kPoints = 524288;

// One row of a decaying line at full size, window built, spectrum in place.
void Fill(tevo::Session& s) {
  s.Array_Rows = 1;
  tevo::Alloc_Point_Arrays(s, kPoints);
  s.Spec_Points = kPoints;
  s.Base_Point_Count = kPoints;
  s.Fid_Points = kPoints;
  s.Param.FREQU = 8000;
  s.Param.RESOL = 8000.0f / kPoints;
  for (int32_t i = 0; i < kPoints; ++i) {
    s.Fid_Re(static_cast<std::size_t>(i)) = static_cast<float>(std::exp(-i * 1e-5) * std::cos(i * 0.3));
    s.Fid_Im(static_cast<std::size_t>(i)) = static_cast<float>(std::exp(-i * 1e-5) * std::sin(i * 0.3));
    s.Spec_Axis[static_cast<std::size_t>(i)] = static_cast<float>(i) / 400.0f;
  }
  tevo::signal::Build_Window(s);
  tevo::signal::FT_Preview(s, 0);
  tevo::signal::Phase_Apply_Table(s, 10, 20, kPoints, 0);
}

void BM_Transform_Preview(benchmark::State& state) {
  tevo::Session s;
  Fill(s);
  for (auto _ : state) {
    benchmark::DoNotOptimize(tevo::signal::FT_Preview(s, 0));
  }
}
BENCHMARK(BM_Transform_Preview)->Unit(benchmark::kMillisecond);

void BM_Phase_Table(benchmark::State& state) {
  tevo::Session s;
  Fill(s);
  float p0 = 0;
  for (auto _ : state) {
    tevo::signal::Phase_Apply_Table(s, p0, 30, kPoints, 0);
    p0 += 0.1f;
    benchmark::DoNotOptimize(s.Spec_Re(0));
  }
}
BENCHMARK(BM_Phase_Table)->Unit(benchmark::kMillisecond);

void BM_Build_Disp_Arrays(benchmark::State& state) {
  tevo::Session s;
  Fill(s);
  for (auto _ : state) {
    tevo::Build_Disp_Arrays(s, 0);
    benchmark::DoNotOptimize(s.Disp_Y(0));
  }
}
BENCHMARK(BM_Build_Disp_Arrays)->Unit(benchmark::kMillisecond);

// What a scroll-bar event costs: rotate the row, refresh its display row.
void BM_Interactive_Phase_Step(benchmark::State& state) {
  tevo::Session s;
  Fill(s);
  tevo::Build_Disp_Arrays(s, 0);
  float p0 = 0;
  for (auto _ : state) {
    tevo::signal::Phase_Apply_Table(s, p0, 30, kPoints, 0);
    tevo::Build_Disp_Arrays(s, 1);
    p0 += 0.1f;
    benchmark::DoNotOptimize(s.Disp_Y(0));
  }
}
BENCHMARK(BM_Interactive_Phase_Step)->Unit(benchmark::kMillisecond);

#ifdef TEVO_HAVE_FFTW
void BM_Fftw_Plan_Same_Size(benchmark::State& state) {
  fftwf_complex* in = fftwf_alloc_complex(kPoints);
  fftwf_complex* out = fftwf_alloc_complex(kPoints);
  fftwf_plan plan = fftwf_plan_dft_1d(kPoints, in, out, FFTW_FORWARD, FFTW_ESTIMATE);
  for (int32_t i = 0; i < kPoints; ++i) {
    in[i][0] = static_cast<float>(std::exp(-i * 1e-5) * std::cos(i * 0.3));
    in[i][1] = static_cast<float>(std::exp(-i * 1e-5) * std::sin(i * 0.3));
  }
  for (auto _ : state) {
    fftwf_execute(plan);
    benchmark::DoNotOptimize(out[0][0]);
  }
  fftwf_destroy_plan(plan);
  fftwf_free(in);
  fftwf_free(out);
}
BENCHMARK(BM_Fftw_Plan_Same_Size)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
