// The transform at the largest size, 524288 points, on the sine table, with
// FFTW's single-precision plan of the same size beside it, so the ratio reads
// from one run. Phase rotation and the interactive step are in phase_bench,
// the display copy in display_bench.
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
