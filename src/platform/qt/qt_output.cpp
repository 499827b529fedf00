#include "platform/qt/qt_output.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QSvgGenerator>
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <memory>
#include <string>

#include "page/fonts.h"
#include "platform/qt/qt_surface.h"

namespace tevo::platform {

void Ensure_Gui_Application() {
  if (QGuiApplication::instance()) return;
  if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 0);
  static int argc = 1;
  static char name[] = "tevo1d";
  static char* argv[] = {name, nullptr};
  static std::unique_ptr<QGuiApplication> app = std::make_unique<QGuiApplication>(argc, argv);
}

void Probe_Font_Table() {
  Ensure_Gui_Application();
  std::vector<page::Font_Face> faces = page::Named_Faces();
  for (const QString& family : QFontDatabase::families()) {
    const auto systems = QFontDatabase::writingSystems(family);
    int16_t charset = page::Charset_Ansi;
    if (systems.contains(QFontDatabase::Japanese)) charset = page::Charset_Shift_Jis;
    if (systems.contains(QFontDatabase::Symbol) && !systems.contains(QFontDatabase::Latin))
      charset = page::Charset_Symbol;
    const std::string name = family.toStdString();
    const bool known = std::any_of(faces.begin(), faces.end(),
                                   [&](const page::Font_Face& f) { return f.Name == name; });
    if (!known) faces.push_back({name, charset});
  }
  page::Set_Font_Table(std::move(faces));
}

int Render_To_File(const std::filesystem::path& path, int width, int height,
                   double pixels_per_inch, Colour background,
                   const std::function<void(Surface&)>& paint) {
  Ensure_Gui_Application();
  if (width <= 0 || height <= 0) return -1;
  std::string ext = path.extension().string();
  std::transform(ext.begin(), ext.end(), ext.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  const QString file = QString::fromStdString(path.string());
  auto paint_on = [&](Surface& s) {
    s.Set_Background_Colour(background);
    s.Clear();
    paint(s);
  };
  if (ext == ".png" || ext == ".bmp") {
    QImage image(width, height, QImage::Format_RGB32);
    {
      QtSurface s(image, pixels_per_inch);
      paint_on(s);
    }
    return image.save(file, ext == ".png" ? "PNG" : "BMP") ? 0 : -1;
  }
  if (ext == ".pdf")
    return Render_Pages_To_Pdf(path, width, height, pixels_per_inch, [&](Surface& s, int) {
      paint_on(s);
      return false;
    });
  if (ext == ".svg") {
    QSvgGenerator generator;
    generator.setFileName(file);
    generator.setSize(QSize(width, height));
    generator.setViewBox(QRect(0, 0, width, height));
    generator.setResolution(static_cast<int>(std::lround(pixels_per_inch)));
    QPainter painter;
    if (!painter.begin(&generator)) return -1;
    {
      QtSurface s(painter, width, height, pixels_per_inch, false);
      paint_on(s);
    }
    return painter.end() ? 0 : -1;
  }
  return -1;
}

int Render_Pages_To_Pdf(const std::filesystem::path& path, int width, int height,
                        double pixels_per_inch,
                        const std::function<bool(Surface&, int)>& paint_page) {
  Ensure_Gui_Application();
  if (width <= 0 || height <= 0) return -1;
  QPdfWriter writer(QString::fromStdString(path.string()));
  writer.setResolution(static_cast<int>(std::lround(pixels_per_inch)));
  writer.setPageSize(QPageSize(QSizeF(width * 72.0 / pixels_per_inch, height * 72.0 / pixels_per_inch),
                               QPageSize::Point, QString(), QPageSize::ExactMatch));
  writer.setPageMargins(QMarginsF(0, 0, 0, 0));
  writer.setCreator(QStringLiteral("tevo1d"));
  QPainter painter;
  if (!painter.begin(&writer)) return -1;
  // A runaway list stops at a thousand pages.
  for (int page = 0; page < 1000; ++page) {
    if (page > 0) writer.newPage();
    QtSurface s(painter, width, height, pixels_per_inch, false);
    if (!paint_page(s, page)) break;
  }
  return painter.end() ? 0 : -1;
}

void Printer_Paper_mm(const QPrinter& printer, double& width, double& height) {
  const QRectF paper = printer.paperRect(QPrinter::Millimeter);
  width = paper.width();
  height = paper.height();
}

int Print_Pages(QPrinter& printer, const std::function<bool(Surface&, int)>& paint_page) {
  Ensure_Gui_Application();
  printer.setFullPage(true);
  QPainter painter;
  if (!painter.begin(&printer)) return -1;
  const QRect paper = printer.paperRect(QPrinter::DevicePixel).toRect();
  // A runaway list stops at a thousand pages.
  for (int page = 0; page < 1000; ++page) {
    if (page > 0 && !printer.newPage()) break;
    QtSurface s(painter, paper.width(), paper.height(), printer.resolution(), false);
    s.Set_Pixel(0, 0, 0xFFFFFF);
    if (!paint_page(s, page)) break;
  }
  return painter.end() ? 0 : -1;
}

int Print_Page(QPrinter& printer, const std::function<void(Surface&)>& paint) {
  return Print_Pages(printer, [&paint](Surface& s, int) {
    paint(s);
    return false;
  });
}

}  // namespace tevo::platform
