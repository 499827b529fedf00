// Drawing the main spectrum: a spectrum of 524288 points whose display copy
// holds 1048576 points, over a 1600-pixel frame, into a recording surface
// and, when the Qt back end is built, into an image; and an array stack of
// ten rows.
#include <benchmark/benchmark.h>

#include <cmath>

#include "display/array_stack.h"
#include "display/spectrum_trace.h"
#include "platform/recording_surface.h"
#include "session/session.h"
#ifdef TEVO_HAVE_QT_SURFACE
#include <QImage>

#include "platform/qt/qt_output.h"
#include "platform/qt/qt_surface.h"
#endif

namespace {

void Fill(tevo::Session& s, int32_t n, int32_t rows = 1) {
  s.Array_Rows = rows;
  tevo::Alloc_Point_Arrays(s, n);
  s.Spec_Points = n;
  s.Spectrum_Frequency = 400;
  s.Param.RESOL = 0.05f;
  for (int32_t i = 0; i < n; ++i) {
    const double x = i * (12.0 / n);
    // A few Lorentzian lines over noise-like ripple.
    double y = 0.002 * std::sin(i * 0.37);
    for (double c : {1.2, 2.1, 3.7, 7.26, 7.3, 8.1}) y += 1.0 / (1.0 + std::pow((x - c) / 0.002, 2));
    for (int32_t r = 0; r < rows; ++r)
      s.Spec_Re(static_cast<std::size_t>(i), static_cast<std::size_t>(r)) = static_cast<float>(y * (r + 1) / rows);
    s.Spec_Axis[static_cast<std::size_t>(i)] = static_cast<float>(x);
  }
  // Twice as many display points as spectrum points.
  s.settings.Set("DISPLAY MIN", 2.0 * n);
  tevo::Build_Disp_Arrays(s, 0);
  s.Max_Abs = 1;
  s.X_Left = s.Spec_Axis[static_cast<std::size_t>(n - 1)];
  s.X_Right = s.Spec_Axis[0];
  s.Y_Full_Scale = 1 / 0.95f;
}

void BM_Draw_Main_Spectrum_Recording(benchmark::State& state) {
  tevo::Session s;
  Fill(s, static_cast<int32_t>(state.range(0)));
  tevo::platform::RecordingSurface surf(1600, 1000);
  for (auto _ : state) {
    surf.Forget_Ops();
    tevo::display::Draw_Main_Spectrum(s, surf, s.X_Left, s.X_Right, 0, 1600, s.Y_Full_Scale, 0,
                                      950, 0, 1000, 0);
    benchmark::DoNotOptimize(surf.Ops().size());
  }
  state.counters["ops"] = static_cast<double>(surf.Ops().size());
  state.counters["display_points"] = s.Disp_Points;
}
BENCHMARK(BM_Draw_Main_Spectrum_Recording)->Arg(32768)->Arg(524288)->Unit(benchmark::kMillisecond);

// Ten rows stacked over the frame, each shifted by a tenth of the ratios.
void BM_Draw_Spec_Array_Recording(benchmark::State& state) {
  tevo::Session s;
  Fill(s, static_cast<int32_t>(state.range(0)), 10);
  s.settings.Set("Y AXIS RATIO", 0.5);
  tevo::platform::RecordingSurface surf(1600, 1000);
  for (auto _ : state) {
    surf.Forget_Ops();
    tevo::display::Draw_Spec_Array(s, surf, s.X_Left, s.X_Right, 0, 1280, 320, 1600, s.Y_Full_Scale, 0,
                                   950, 0, 1000, 0);
    benchmark::DoNotOptimize(surf.Ops().size());
  }
  state.counters["ops"] = static_cast<double>(surf.Ops().size());
}
BENCHMARK(BM_Draw_Spec_Array_Recording)->Arg(32768)->Unit(benchmark::kMillisecond);

#ifdef TEVO_HAVE_QT_SURFACE
// The same trace painted into a 1600 x 1000 image, as the window's plot and
// the render command paint it.
void BM_Draw_Main_Spectrum_QImage(benchmark::State& state) {
  tevo::platform::Ensure_Gui_Application();
  tevo::Session s;
  Fill(s, static_cast<int32_t>(state.range(0)));
  QImage image(1600, 1000, QImage::Format_RGB32);
  tevo::platform::QtSurface surf(image);
  for (auto _ : state) {
    surf.Clear();
    tevo::display::Draw_Main_Spectrum(s, surf, s.X_Left, s.X_Right, 0, 1600, s.Y_Full_Scale, 0,
                                      950, 0, 1000, 0);
    benchmark::DoNotOptimize(image.constBits());
  }
  state.counters["display_points"] = s.Disp_Points;
}
BENCHMARK(BM_Draw_Main_Spectrum_QImage)->Arg(32768)->Arg(524288)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
