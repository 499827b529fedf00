// The application's plot at 524288 points in a 1600 x 900 picture: one
// mouse move (the cross-hair over the kept picture, or the whole plot
// painted again as before), one phase step of the main window end to end
// (rotation, display copy, paint), and one repaint of the processing
// window with its preview, one trim-button step of the integral mode
// (B0 moved, the region summed again, the plot painted), and the plot with
// nine overlay spectra. Run offscreen.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QCheckBox>
#include <QImage>
#include <QMouseEvent>
#include <cmath>
#include <cstdlib>

#include "display/view_commands.h"
#include "editing/integrals.h"
#include "fid_window.h"
#include "platform/ui.h"
#include "plot_widget.h"
#include "session/session.h"
#include "signal/phase_mode.h"

namespace {

constexpr int32_t kPoints = 524288;

QApplication& App() {
  static int argc = 1;
  static char name[] = "window_bench";
  static char* argv[] = {name, nullptr};
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  static QApplication app(argc, argv);
  return app;
}

// A spectrum of many narrow lines over the whole width.
void Fill_Spectrum(tevo::Session& s) {
  s.Array_Rows = 1;
  tevo::Alloc_Point_Arrays(s, kPoints);
  s.Spec_Points = kPoints;
  s.Is_Spectrum = 1;
  s.Param.POINT = kPoints;
  s.Param.FREQU = 8000;
  s.Param.RESOL = 8000.0f / kPoints;
  s.Spectrum_Frequency = 400;
  for (int32_t i = 0; i < kPoints; ++i) {
    const auto k = static_cast<std::size_t>(i);
    const double d = std::fmod(i, 4099.0) - 2049;
    s.Spec_Re(k) = s.Ft_Re(k) = static_cast<float>(1.0 / (1.0 + d * d / 9.0));
    s.Spec_Im(k) = s.Ft_Im(k) = static_cast<float>(d / 3.0 / (1.0 + d * d / 9.0));
    s.Spec_Axis[k] = static_cast<float>(i * 20.0 / kPoints);
  }
  s.Max_Abs = 1;
  tevo::Build_Disp_Arrays(s, 0);
  tevo::display::View_After_Load(s);
}

// A quiet session with the spectrum, and the main plot over it.
struct Plot_Bench {
  QApplication& app = App();
  tevo::platform::Scripted_Ui ui;
  tevo::Session s;
  tevo::app::Plot_Widget plot{s};
  QImage image;
  Plot_Bench() {
    ui.quiet = true;
    s.ui = &ui;
    Fill_Spectrum(s);
    plot.resize(1600, 900);
    image = QImage(plot.size(), QImage::Format_RGB32);
    plot.render(&image);
  }
};

void BM_Mouse_Move(benchmark::State& state) {
  Plot_Bench b;
  auto& plot = b.plot;
  auto& image = b.image;
  const bool kept = state.range(0) != 0;
  int x = 100;
  for (auto _ : state) {
    if (!kept) plot.Redraw();  // every move paints the whole plot, as before
    x = x < 1500 ? x + 7 : 100;
    QMouseEvent move(QEvent::MouseMove, QPointF(x, 400), QPointF(x, 400), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&plot, &move);
    plot.render(&image);
  }
}
BENCHMARK(BM_Mouse_Move)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_Main_Phase_Step(benchmark::State& state) {
  Plot_Bench b;
  int step = 0;
  for (auto _ : state) {
    tevo::signal::Phase_Step(b.s, tevo::signal::Phase_Place::Main_Window, 0, (step++ & 1) ? 5 : 8);
    b.plot.Redraw();
    b.plot.render(&b.image);
  }
}
BENCHMARK(BM_Main_Phase_Step)->Unit(benchmark::kMillisecond);

void BM_Integral_Trim_Step_Redrawn(benchmark::State& state) {
  Plot_Bench b;
  b.s.Mode.Edit_Mode = 5;  // the integral mode's curves and markers
  tevo::editing::Integ_Add(b.s, kPoints - 1, 0);  // the whole spectrum: the worst case
  b.s.Integ_Cur = 0;
  tevo::editing::Integ_Trim_Begin(b.s);
  for (auto _ : state) {
    tevo::editing::Integ_Trim_Step(b.s, tevo::editing::Trim_Button::B0_Up);
    b.plot.Redraw();
    b.plot.render(&b.image);
  }
}
BENCHMARK(BM_Integral_Trim_Step_Redrawn)->Unit(benchmark::kMillisecond);

// The main plot painted whole with Arg overlay slots of 65536 points each
// over the same 20 ppm, each at its own offset (9: every slot in use).
void BM_Main_Plot_With_Overlays(benchmark::State& state) {
  Plot_Bench b;
  constexpr int32_t slot_points = 65536;
  for (int k = 1; k <= state.range(0); ++k) {
    tevo::Overlay_Slot& o = b.s.Overlay[static_cast<std::size_t>(k)];
    o.Slot_Points = slot_points;
    o.Slot_Show = 1;
    o.Slot_Max_Abs = 1;
    o.Slot_Y_Full = 1 / 0.95f;
    o.Slot_X.resize(slot_points);
    o.Slot_Y.resize(slot_points);
    for (int32_t i = 0; i < slot_points; ++i) {
      const double d = std::fmod(i + 37.0 * k, 521.0) - 260;
      o.Slot_X[static_cast<std::size_t>(i)] = static_cast<float>(i * 20.0 / slot_points);
      o.Slot_Y[static_cast<std::size_t>(i)] = static_cast<float>(1.0 / (1.0 + d * d / 4.0));
    }
  }
  for (auto _ : state) {
    b.plot.Redraw();
    b.plot.render(&b.image);
  }
}
BENCHMARK(BM_Main_Plot_With_Overlays)->Arg(0)->Arg(9)->Unit(benchmark::kMillisecond);

// Arg 0: the whole processing window; 1: its spectrum preview alone, at
// 1600 x 900; 2: the same with the imaginary part.
void BM_Processing_Window_Repaint(benchmark::State& state) {
  App();
  tevo::platform::Scripted_Ui ui;
  ui.quiet = true;
  tevo::Session s;
  s.ui = &ui;
  Fill_Spectrum(s);
  s.Base_Point_Count = s.Fid_Points = kPoints;
  s.Observe_Frequency = 400;
  s.Is_Fid = 1;
  s.Is_Spectrum = 0;
  for (int32_t i = 0; i < kPoints; ++i) {
    const double t = i / 8000.0;
    s.Fid_Re(static_cast<std::size_t>(i)) = static_cast<float>(std::exp(-t) * std::cos(6.283 * 1000 * t));
    s.Fid_Im(static_cast<std::size_t>(i)) = static_cast<float>(std::exp(-t) * std::sin(6.283 * 1000 * t));
  }
  tevo::app::Fid_Window window(s);
  window.resize(1600, 900);
  QWidget* target = &window;
  if (state.range(0) > 0) {
    target = window.findChild<QWidget*>("SpectrumPlot");
    target->resize(1600, 900);
  }
  if (state.range(0) == 2) window.findChild<QCheckBox*>("m31")->setChecked(true);
  QImage image(target->size(), QImage::Format_RGB32);
  for (auto _ : state) target->render(&image);
}
BENCHMARK(BM_Processing_Window_Repaint)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace
