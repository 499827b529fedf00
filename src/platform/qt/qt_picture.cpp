#include "platform/qt/qt_picture.h"

#include <emf2svg.h>
#include <libwmf/api.h>
#include <libwmf/svg.h>

#include <QPainter>
#include <QSvgRenderer>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace tevo::platform {

namespace {

uint32_t U16_At(std::span<const uint8_t> b, std::size_t at) {
  return at + 2 <= b.size() ? b[at] | (b[at + 1] << 8) : 0;
}
uint32_t U32_At(std::span<const uint8_t> b, std::size_t at) {
  return U16_At(b, at) | (U16_At(b, at + 2) << 16);
}
int I16_At(std::span<const uint8_t> b, std::size_t at) {
  return static_cast<int16_t>(U16_At(b, at));
}

constexpr uint32_t Placeable_Key = 0x9AC6CDD7;
constexpr std::size_t Placeable_Size = 22;

// The enhanced metafile through libemf2svg: coordinates stay the file's
// logical units, the picture's size is its bounds.
QByteArray Emf_Svg(std::span<const uint8_t> bytes) {
  generatorOptions options{};
  char no_prefix[] = "";
  options.nameSpace = no_prefix;
  options.svgDelimiter = true;
  options.emfplus = true;
  // The converter reads its input only; its interface is not const.
  std::vector<char> in(bytes.begin(), bytes.end());
  char* out = nullptr;
  size_t length = 0;
  const int ok = emf2svg(in.data(), in.size(), &out, &length, &options);
  QByteArray svg;
  if (ok == 1 && out) svg = QByteArray(out, static_cast<qsizetype>(length));
  std::free(out);
  return svg;
}

// The rectangle of a Windows metafile that its picture fills, in the units
// of libwmf's player: a placeable file's box at 72 units per inch, or the
// window a standard file sets up in its logical units. False when the file
// names neither (the player's own extent of what is drawn serves then).
bool Wmf_Nominal_Box(std::span<const uint8_t> b, wmfD_Rect& box) {
  if (U32_At(b, 0) == Placeable_Key) {
    const int inch = I16_At(b, 14);
    const int l = I16_At(b, 6), t = I16_At(b, 8), r = I16_At(b, 10), bottom = I16_At(b, 12);
    if (inch <= 0 || r <= l || bottom <= t) return false;
    const float k = 72.0f / static_cast<float>(inch);
    box.TL = {l * k, t * k};
    box.BR = {r * k, bottom * k};
    return true;
  }
  // Records after the 18-byte header: size in words, function, parameters.
  int org_x = 0, org_y = 0, ext_x = 0, ext_y = 0;
  for (std::size_t at = 18; at + 6 <= b.size();) {
    const uint32_t words = U32_At(b, at);
    const uint32_t function = U16_At(b, at + 4);
    if (words < 3 || function == 0) break;
    if (function == 0x020B) org_y = I16_At(b, at + 6), org_x = I16_At(b, at + 8);
    if (function == 0x020C) ext_y = I16_At(b, at + 6), ext_x = I16_At(b, at + 8);
    if (ext_x != 0) break;
    at += 2 * static_cast<std::size_t>(words);
  }
  if (ext_x <= 0 || ext_y <= 0) return false;
  box.TL = {static_cast<float>(org_x), static_cast<float>(org_y)};
  box.BR = {static_cast<float>(org_x + ext_x), static_cast<float>(org_y + ext_y)};
  return true;
}

// The Windows metafile through libwmf's SVG device, played over the
// file's own rectangle so that its picture fills the SVG as it filled
// its window.
QByteArray Wmf_Svg(std::span<const uint8_t> bytes) {
  wmfAPI* api = nullptr;
  wmfAPI_Options options{};
  options.function = wmf_svg_function;
  const unsigned long flags =
      WMF_OPT_FUNCTION | WMF_OPT_IGNORE_NONFATAL | WMF_OPT_NO_ERROR | WMF_OPT_NO_DEBUG;
  if (wmf_api_create(&api, flags, &options) != wmf_E_None) {
    if (api) wmf_api_destroy(api);
    return {};
  }
  std::vector<unsigned char> in(bytes.begin(), bytes.end());
  QByteArray svg;
  wmfD_Rect box{};
  if (wmf_mem_open(api, in.data(), static_cast<long>(in.size())) == wmf_E_None &&
      wmf_scan(api, 0, &box) == wmf_E_None) {
    Wmf_Nominal_Box(bytes, box);
    wmf_svg_t* device = WMF_SVG_GetData(api);
    char description[] = "tevo1d";
    device->out = wmf_stream_create(api, nullptr);
    device->Description = description;
    device->bbox = box;
    device->width = static_cast<unsigned>(std::max(1L, std::lround(box.BR.x - box.TL.x)));
    device->height = static_cast<unsigned>(std::max(1L, std::lround(box.BR.y - box.TL.y)));
    const bool played = device->out && wmf_play(api, 0, &box) == wmf_E_None;
    char* text = nullptr;
    unsigned long length = 0;
    // The stream's memory belongs to the player and goes with it.
    if (device->out) wmf_stream_destroy(api, device->out, &text, &length);
    if (played && text) svg = QByteArray(text, static_cast<qsizetype>(length));
  }
  wmf_api_destroy(api);
  return svg;
}

// White-out and black ink on an image of format ARGB32: white pixels become
// clear, every other pixel black (its coverage kept).
void Apply_Ink(QImage& image, Picture_Ink ink) {
  for (int y = 0; y < image.height(); ++y) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      const bool white = (line[x] & 0xFFFFFF) == 0xFFFFFF;
      if (white && ink.white_clear)
        line[x] = 0;
      else if (!white && ink.black)
        line[x] &= 0xFF000000;
    }
  }
}

// The largest image a metafile is drawn into for white-out or black ink,
// in pixels (a whole A4 sheet at 300 per inch is about 8.7 million).
constexpr double Most_Ink_Pixels = 16e6;

}  // namespace

Picture_Kind Kind_Of_Picture(std::span<const uint8_t> b) {
  if (b.size() >= 44 && U32_At(b, 0) == 1 && U32_At(b, 40) == 0x464D4520) return Picture_Kind::Emf;
  if (b.size() >= Placeable_Size + 18 && U32_At(b, 0) == Placeable_Key) return Picture_Kind::Wmf;
  const uint32_t type = U16_At(b, 0), version = U16_At(b, 4);
  if (b.size() >= 18 && (type == 1 || type == 2) && U16_At(b, 2) == 9 &&
      (version == 0x0300 || version == 0x0100))
    return Picture_Kind::Wmf;
  return b.empty() ? Picture_Kind::Unknown : Picture_Kind::Raster;
}

QByteArray Metafile_Svg(std::span<const uint8_t> bytes) {
  switch (Kind_Of_Picture(bytes)) {
    case Picture_Kind::Emf: return Emf_Svg(bytes);
    case Picture_Kind::Wmf: return Wmf_Svg(bytes);
    default: return {};
  }
}

bool Paint_Picture(QPainter& painter, const QRect& rect, std::span<const uint8_t> bytes,
                   Picture_Ink ink) {
  if (rect.width() <= 0 || rect.height() <= 0) return false;
  const Picture_Kind kind = Kind_Of_Picture(bytes);
  if (kind == Picture_Kind::Unknown) return false;
  const bool inked = ink.white_clear || ink.black;
  QImage image;
  if (kind == Picture_Kind::Raster) {
    if (!image.loadFromData(bytes.data(), static_cast<int>(bytes.size()))) return false;
  } else {
    QSvgRenderer svg(Metafile_Svg(bytes));
    if (!svg.isValid()) return false;
    if (!inked) {
      painter.save();
      svg.render(&painter, QRectF(rect));
      painter.restore();
      return true;
    }
    const double k =
        std::min(1.0, std::sqrt(Most_Ink_Pixels / (double(rect.width()) * rect.height())));
    image = QImage(std::max(1, int(rect.width() * k)), std::max(1, int(rect.height() * k)),
                   QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter on_image(&image);
    svg.render(&on_image);
  }
  if (inked) {
    image = image.convertToFormat(QImage::Format_ARGB32);
    Apply_Ink(image, ink);
  }
  painter.drawImage(rect, image);
  return true;
}

QImage Picture_Image(std::span<const uint8_t> bytes, QSize size) {
  if (size.isEmpty()) return {};
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  const bool drawn = Paint_Picture(painter, QRect(QPoint(0, 0), size), bytes);
  painter.end();
  return drawn ? image : QImage();
}

}  // namespace tevo::platform
