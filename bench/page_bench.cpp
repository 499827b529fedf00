// The printed sheet: a whole A4 page at 300 dpi (2480 x 3508 pixels) with a
// spectrum of 524288 points, its axis, 40 peak values, six integrals, an
// inset, the parameter block, a text and an arrow, painted by the page
// routine into an image as the PNG export and the printer get it. The full
// case adds two more insets and nine overlays, all drawn ("DRAW MULTI VIEW",
// "DRAW MULTI SPEC").
#include <benchmark/benchmark.h>

#include <cmath>

#include "display/insets.h"
#include "display/style.h"
#include "overlay/overlay_set.h"
#include "page/draw_page.h"
#include "page/page_model.h"
#include "platform/recording_surface.h"
#include "platform/ui.h"
#include "session/session.h"
#ifdef TEVO_HAVE_QT_SURFACE
#include <QImage>

#include "platform/qt/qt_output.h"
#include "platform/qt/qt_surface.h"
#endif

namespace {

constexpr double Line_Ppm[] = {1.2, 2.1, 3.7, 7.26, 7.3, 8.1};

void Fill_Page(tevo::Session& s, int32_t n) {
  tevo::Alloc_Point_Arrays(s, n);
  s.Spec_Points = n;
  s.Spectrum_Frequency = 400;
  s.Param.RESOL = 0.05f;
  s.Param.OBNUC = "1H";
  s.Param.SCANS = 16;
  for (int32_t i = 0; i < n; ++i) {
    const double x = i * (12.0 / n);
    double y = 0.002 * std::sin(i * 0.37);
    for (double c : Line_Ppm) y += 1.0 / (1.0 + std::pow((x - c) / 0.002, 2));
    s.Spec_Re(static_cast<std::size_t>(i)) = static_cast<float>(y);
    s.Spec_Axis[static_cast<std::size_t>(i)] = static_cast<float>(x);
  }
  tevo::Build_Disp_Arrays(s, 0);
  s.Max_Abs = 1;
  s.X_Left = s.Spec_Axis[static_cast<std::size_t>(n - 1)];
  s.X_Right = s.Spec_Axis[0];
  s.Y_Full_Scale = 1 / 0.95f;
  for (int k = 0; k < 40; ++k) {
    tevo::Peak_Rec p;
    p.Point = static_cast<int32_t>((0.5 + k * 0.27) / 12.0 * n);
    p.Freq_Hz = static_cast<float>((s.Spec_Axis[static_cast<std::size_t>(p.Point)] - s.Spec_Axis[0]) * 400);
    s.Peaks.push_back(p);
  }
  for (double c : Line_Ppm) {
    tevo::Integ_Rec r;
    r.Start_Point = static_cast<int32_t>((c - 0.02) / 12.0 * n);
    r.End_Point = static_cast<int32_t>((c + 0.02) / 12.0 * n);
    s.Integrals.push_back(r);
  }
  tevo::Inset_Rec inset = tevo::display::New_Inset_Record(s);
  inset.Frame_X0 = 0.6f, inset.Frame_X1 = 0.95f, inset.Frame_Y0 = 0.5f, inset.Frame_Y1 = 0.9f;
  inset.Inset_Left = 7.4f, inset.Inset_Right = 7.2f, inset.Inset_Y_Full = 1;
  s.Insets.push_back(inset);
  tevo::Text_Rec t;
  t.X = 0.1f, t.Y = 0.1f, t.Font_Size = 14;
  t.Text = "アスピリン \\i(J) = 7 Hz";
  s.Texts.push_back(t);
  tevo::Line_Rec l;
  l.X1 = 0.2f, l.Y1 = 0.15f, l.X2 = 0.35f, l.Y2 = 0.3f, l.Kind = 5, l.Width = 3;
  s.Lines.push_back(l);
  tevo::display::Store_Setting(s, "PAPER SIZE", 9);
  tevo::page::Standard_Page_Places(s);
}

// Three insets (each over two of the lines) and nine overlay slots holding
// the spectrum, stacked 4 % apart.
void Fill_Full_Page(tevo::Session& s, tevo::platform::Scripted_Ui& ui, int32_t n) {
  Fill_Page(s, n);
  ui.quiet = true;
  s.ui = &ui;
  for (int k = 1; k <= 2; ++k) {
    tevo::Inset_Rec inset = s.Insets.front();
    inset.Frame_X0 = 0.05f + 0.3f * static_cast<float>(k - 1), inset.Frame_X1 = inset.Frame_X0 + 0.25f;
    inset.Inset_Left = static_cast<float>(Line_Ppm[2 * k - 1] + 0.1);
    inset.Inset_Right = static_cast<float>(Line_Ppm[2 * k - 2] - 0.1);
    s.Insets.push_back(inset);
  }
  for (int k = 1; k <= 9; ++k) {
    tevo::overlay::Copy_Slot(s, 0, k);
    s.Overlay[static_cast<std::size_t>(k)].Slot_Show = 1;
    s.Overlay[static_cast<std::size_t>(k)].Slot_Y_Offset = 0.04f * static_cast<float>(k);
  }
  tevo::display::Store_Setting(s, "DRAW MULTI VIEW", 1);
  tevo::display::Store_Setting(s, "DRAW MULTI SPEC", 1);
}

void BM_Draw_Page_Recording(benchmark::State& state) {
  tevo::Session s;
  Fill_Page(s, static_cast<int32_t>(state.range(0)));
  tevo::platform::RecordingSurface surf(2480, 3508, 300);
  for (auto _ : state) {
    surf.Forget_Ops();
    tevo::page::Draw_Page(s, surf);
    benchmark::DoNotOptimize(surf.Ops().size());
  }
  state.counters["ops"] = static_cast<double>(surf.Ops().size());
}
BENCHMARK(BM_Draw_Page_Recording)->Arg(524288)->Unit(benchmark::kMillisecond);

#ifdef TEVO_HAVE_QT_SURFACE
void BM_Draw_Page_QImage_A4_300dpi(benchmark::State& state) {
  tevo::platform::Ensure_Gui_Application();
  tevo::platform::Probe_Font_Table();
  tevo::Session s;
  Fill_Page(s, static_cast<int32_t>(state.range(0)));
  QImage image(2480, 3508, QImage::Format_RGB32);
  for (auto _ : state) {
    tevo::platform::QtSurface surf(image, 300);
    tevo::page::Draw_Page(s, surf);
    benchmark::DoNotOptimize(image.constBits());
  }
}
BENCHMARK(BM_Draw_Page_QImage_A4_300dpi)->Arg(524288)->Unit(benchmark::kMillisecond);

void BM_Draw_Page_Full_A4_300dpi(benchmark::State& state) {
  tevo::platform::Ensure_Gui_Application();
  tevo::platform::Probe_Font_Table();
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Fill_Full_Page(s, ui, static_cast<int32_t>(state.range(0)));
  QImage image(2480, 3508, QImage::Format_RGB32);
  for (auto _ : state) {
    tevo::platform::QtSurface surf(image, 300);
    tevo::page::Draw_Page(s, surf);
    benchmark::DoNotOptimize(image.constBits());
  }
  state.counters["insets"] = static_cast<double>(s.Insets.size());
}
BENCHMARK(BM_Draw_Page_Full_A4_300dpi)->Arg(524288)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
