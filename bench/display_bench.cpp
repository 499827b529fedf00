// Display copy of a 524288-point spectrum: Build_Disp_Arrays modes 0 and 1.
#include <benchmark/benchmark.h>

#include <cmath>

#include "session/session.h"

namespace {

void Fill(tevo::Session& s, int32_t n) {
  s.Array_Rows = 1;
  tevo::Alloc_Point_Arrays(s, n);
  s.Spec_Points = n;
  s.Param.RESOL = 1.0f;
  for (int32_t i = 0; i < n; ++i) {
    s.Spec_Re(static_cast<std::size_t>(i)) = static_cast<float>(std::sin(i * 0.001));
    s.Spec_Axis[static_cast<std::size_t>(i)] = static_cast<float>(i) / 400.0f;
  }
}

void BM_Build_Disp_Arrays_Full(benchmark::State& state) {
  tevo::Session s;
  Fill(s, static_cast<int32_t>(state.range(0)));
  for (auto _ : state) {
    tevo::Build_Disp_Arrays(s, 0);
    benchmark::DoNotOptimize(s.Disp_Y(0));
  }
}
BENCHMARK(BM_Build_Disp_Arrays_Full)->Arg(32768)->Arg(524288)->Unit(benchmark::kMillisecond);

void BM_Build_Disp_Arrays_Row(benchmark::State& state) {
  tevo::Session s;
  Fill(s, static_cast<int32_t>(state.range(0)));
  tevo::Build_Disp_Arrays(s, 0);
  for (auto _ : state) {
    tevo::Build_Disp_Arrays(s, 1);
    benchmark::DoNotOptimize(s.Disp_Y(0));
  }
}
BENCHMARK(BM_Build_Disp_Arrays_Row)->Arg(32768)->Arg(524288)->Unit(benchmark::kMillisecond);

}  // namespace
