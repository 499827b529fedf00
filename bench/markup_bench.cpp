// The markup pen on a page-sized text: a wrapped paragraph with scripts,
// Greek and Japanese, measured character by character as the wrap needs.
#include <benchmark/benchmark.h>

#include <QImage>

#include "page/markup.h"
#include "platform/qt/qt_output.h"
#include "platform/qt/qt_surface.h"
#include "platform/recording_surface.h"

namespace {

std::string Paragraph() {
  std::string text;
  for (int i = 0; i < 20; ++i)
    text += "\\g(d) 7.26 (d, \\i(J) = 8.1 Hz, 2H), CH\\-(3) 10\\+(-3) 化学シフト ";
  return text;
}

tevo::Font_Rec Arial() {
  tevo::Font_Rec f;
  f.Face = "Arial";
  f.Size = 10;
  f.Charset = 0;
  return f;
}

void BM_Markup_Wrapped_Recording(benchmark::State& state) {
  const std::string text = Paragraph();
  for (auto _ : state) {
    tevo::platform::RecordingSurface s(2000, 3000);
    auto r = tevo::page::Draw_Markup(s, 1, text, 50, 50, 0, 0, 1500, 0, Arial(), 4.17);
    benchmark::DoNotOptimize(r.Next_Y);
  }
}
BENCHMARK(BM_Markup_Wrapped_Recording)->Unit(benchmark::kMillisecond);

void BM_Markup_Wrapped_Image(benchmark::State& state) {
  tevo::platform::Ensure_Gui_Application();
  const std::string text = Paragraph();
  QImage image(2000, 3000, QImage::Format_RGB32);
  for (auto _ : state) {
    image.fill(Qt::white);
    tevo::platform::QtSurface s(image, 300);
    auto r = tevo::page::Draw_Markup(s, 1, text, 50, 50, 0, 0, 1500, 0, Arial(), 4.17);
    benchmark::DoNotOptimize(r.Next_Y);
  }
}
BENCHMARK(BM_Markup_Wrapped_Image)->Unit(benchmark::kMillisecond);

}  // namespace
