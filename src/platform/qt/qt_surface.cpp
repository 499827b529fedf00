#include "platform/qt/qt_surface.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPolygon>
#include <QVector>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <cstdlib>
#include <vector>

#include "platform/qt/qt_picture.h"
#include "platform/symbol_font.h"

namespace tevo::platform {

namespace {

QColor To_Qt(Colour c) { return QColor(Red_Of(c), Green_Of(c), Blue_Of(c)); }

Colour From_Qt(QRgb c) { return Rgb(qRed(c), qGreen(c), qBlue(c)); }

// On and off runs of the styled one-pixel pens, in pixels.
std::vector<int> Dash_Pattern(Pen_Style style) {
  switch (style) {
    case Pen_Style::Dash: return {18, 6};
    case Pen_Style::Dot: return {3, 3};
    case Pen_Style::Dash_Dot: return {9, 6, 3, 6};
    case Pen_Style::Dash_Dot_Dot: return {9, 3, 3, 3, 3, 3};
    default: return {};
  }
}

// Whether step k of a dash pattern paints.
bool Pattern_On(const std::vector<int>& pattern, int k) {
  if (pattern.empty()) return true;
  int period = 0;
  for (int n : pattern) period += n;
  k %= period;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (k < pattern[i]) return i % 2 == 0;
    k -= pattern[i];
  }
  return true;
}

}  // namespace

QString Installed_Face(const QString& face) {
  struct Stand_In {
    const char* names[3];
    const char* installed;
  };
  static const std::array<Stand_In, 7> stand_ins = {{
      {{"ＭＳ ゴシック", "MS Gothic", nullptr}, "IPAGothic"},
      {{"ＭＳ Ｐゴシック", "MS PGothic", "MS UI Gothic"}, "IPAPGothic"},
      {{"ＭＳ 明朝", "MS Mincho", nullptr}, "IPAMincho"},
      {{"ＭＳ Ｐ明朝", "MS PMincho", nullptr}, "IPAPMincho"},
      {{"Arial", "Helvetica", "MS Sans Serif"}, "DejaVu Sans"},
      {{"Times New Roman", "Times", "Century"}, "DejaVu Serif"},
      {{"Courier New", "Courier", nullptr}, "DejaVu Sans Mono"},
  }};
  if (QFontDatabase::hasFamily(face)) return face;
  for (const auto& s : stand_ins)
    for (const char* name : s.names)
      if (name && face.compare(QString::fromUtf8(name), Qt::CaseInsensitive) == 0)
        return QString::fromUtf8(s.installed);
  return face;
}

QFont Qt_Font(const Font_Rec& font, double height_px, int weight) {
  QFont f;
  const QString face = Is_Symbol_Font(font) ? QStringLiteral("DejaVu Serif")
                                            : Installed_Face(QString::fromStdString(font.Face));
  // Missing glyphs fall back to a Latin face with Greek, then to Japanese.
  f.setFamilies({face, QStringLiteral("DejaVu Sans"), QStringLiteral("IPAGothic")});
  f.setPixelSize(std::max(1, static_cast<int>(std::lround(height_px))));
  f.setWeight(static_cast<QFont::Weight>(std::clamp(weight, 100, 900)));
  f.setItalic(font.Italic != 0);
  f.setUnderline(font.Underline != 0);
  f.setStrikeOut(font.Strike != 0);
  f.setKerning(false);
  return f;
}

QString Shown_Text(std::string_view text, const Font_Rec& font) {
  if (Is_Symbol_Font(font)) return QString::fromStdString(Symbol_Text_To_Unicode(text));
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QtSurface::QtSurface(QImage& image, double pixels_per_inch)
    : image_(&image), width_(image.width()), height_(image.height()), ppi_(pixels_per_inch),
      raster_(true) {
  const int dpm = static_cast<int>(std::lround(pixels_per_inch / 0.0254));
  image.setDotsPerMeterX(dpm);
  image.setDotsPerMeterY(dpm);
  own_painter_.begin(&image);
  painter_ = &own_painter_;
  painter_->setRenderHint(QPainter::Antialiasing, false);
  painter_->setRenderHint(QPainter::TextAntialiasing, true);
}

QtSurface::QtSurface(QPainter& painter, int width, int height, double pixels_per_inch, bool raster)
    : painter_(&painter), width_(width), height_(height), ppi_(pixels_per_inch), raster_(raster) {
  painter_->setRenderHint(QPainter::Antialiasing, false);
  painter_->setRenderHint(QPainter::TextAntialiasing, true);
}

QtSurface::~QtSurface() {
  if (own_painter_.isActive()) own_painter_.end();
}

void QtSurface::Set_Pen(Pen_Style style, int width, Colour colour) {
  pen_style_ = style;
  pen_width_ = std::max(0, width);
  pen_colour_ = colour;
}

void QtSurface::Set_Brush(Colour colour, bool hollow) {
  brush_colour_ = colour;
  brush_hollow_ = hollow;
}

void QtSurface::Set_Raster_Op(Raster_Op op) { op_ = op; }

void QtSurface::Before_Drawing() {
  // The kept picture is copied only when the image is about to change: a
  // picture kept and never drawn over (the main plot keeps its own image)
  // costs nothing.
  if (copy_due_) {
    if (kept_.size() == image_->size() && kept_.format() == image_->format() &&
        kept_.bytesPerLine() == image_->bytesPerLine())
      std::memcpy(kept_.bits(), image_->constBits(), static_cast<std::size_t>(image_->sizeInBytes()));
    else
      kept_ = image_->copy();
    copy_due_ = false;
  }
  drawn_since_kept_ = true;
}

void QtSurface::Use_Op() {
  // Every drawing call passes here (and Set_Pixel calls Before_Drawing).
  Before_Drawing();
  painter_->setCompositionMode(Xor_Now() ? QPainter::RasterOp_SourceXorDestination
                                         : QPainter::CompositionMode_SourceOver);
}

void QtSurface::Move_To(int x, int y) {
  pos_ = {x, y};
  pattern_pos_ = 0;
}

// A one-pixel line XORed point by point, without its end point, so that
// joined strokes and a second drawing of the same line cancel exactly.
void QtSurface::Xor_Thin_Line(Point a, Point b) {
  const std::vector<int> pattern = Dash_Pattern(pen_style_);
  QVector<QPoint> points;
  const int dx = std::abs(b.x - a.x), sx = a.x < b.x ? 1 : -1;
  const int dy = -std::abs(b.y - a.y), sy = a.y < b.y ? 1 : -1;
  int err = dx + dy;
  int x = a.x, y = a.y;
  while (x != b.x || y != b.y) {
    if (Pattern_On(pattern, pattern_pos_++)) points.push_back(QPoint(x, y));
    const int e2 = 2 * err;
    if (e2 >= dy) {
      err += dy;
      x += sx;
    }
    if (e2 <= dx) {
      err += dx;
      y += sy;
    }
  }
  if (points.isEmpty()) return;
  painter_->setPen(QPen(To_Qt(pen_colour_), 0));
  painter_->drawPoints(points.data(), static_cast<int>(points.size()));
}

void QtSurface::Line_To(int x, int y) {
  const Point from = pos_;
  pos_ = {x, y};
  if (pen_style_ == Pen_Style::Null) return;
  Use_Op();
  if (Xor_Now() && pen_width_ <= 1) {
    Xor_Thin_Line(from, pos_);
    return;
  }
  QPen pen(To_Qt(pen_colour_));
  if (pen_width_ <= 1) {
    pen.setWidth(0);
    pen.setCapStyle(Qt::FlatCap);
    const std::vector<int> pattern = Dash_Pattern(pen_style_);
    if (!pattern.empty()) pen.setDashPattern(QList<qreal>(pattern.begin(), pattern.end()));
  } else {
    // Wide pens are solid with round ends, whatever their style.
    pen.setWidth(pen_width_);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
  }
  painter_->setPen(pen);
  painter_->drawLine(from.x, from.y, x, y);
}

void QtSurface::Polygon(std::span<const Point> points) {
  if (points.size() < 2) return;
  QPolygon poly;
  for (const Point& p : points) poly << QPoint(p.x, p.y);
  Use_Op();
  if (pen_style_ == Pen_Style::Null) {
    painter_->setPen(Qt::NoPen);
  } else {
    QPen pen(To_Qt(pen_colour_));
    pen.setWidth(pen_width_ <= 1 ? 0 : pen_width_);
    painter_->setPen(pen);
  }
  painter_->setBrush(brush_hollow_ ? QBrush(Qt::NoBrush) : QBrush(To_Qt(brush_colour_)));
  painter_->drawPolygon(poly, fill_ == Fill_Mode::Winding ? Qt::WindingFill : Qt::OddEvenFill);
}

Colour QtSurface::Get_Pixel(int x, int y) const {
  if (!image_ || x < 0 || y < 0 || x >= width_ || y >= height_) return Invalid_Colour;
  return From_Qt(image_->pixel(x, y));
}

bool QtSurface::Draw_Picture(int x, int y, int w, int h, std::span<const uint8_t> bytes,
                             Picture_Ink ink) {
  Before_Drawing();
  painter_->setCompositionMode(QPainter::CompositionMode_SourceOver);
  return Paint_Picture(*painter_, QRect(x, y, w, h), bytes, ink);
}

void QtSurface::Set_Pixel(int x, int y, Colour colour) {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) return;
  Before_Drawing();
  painter_->setCompositionMode(QPainter::CompositionMode_Source);
  painter_->fillRect(x, y, 1, 1, To_Qt(colour));
}

const QtSurface::Font_Entry& QtSurface::Font_For(const Font_Rec& font, double height_px,
                                                  int weight) {
  for (const Font_Entry& e : fonts_)
    if (e.metrics && e.height == height_px && e.weight == weight && e.font.Face == font.Face &&
        e.font.Charset == font.Charset && e.font.Italic == font.Italic &&
        e.font.Underline == font.Underline && e.font.Strike == font.Strike)
      return e;
  Font_Entry& e = fonts_[next_font_];
  next_font_ = (next_font_ + 1) % 4;
  e.font = font;
  e.height = height_px;
  e.weight = weight;
  e.qt = Qt_Font(font, height_px, weight);
  e.metrics = std::make_unique<QFontMetricsF>(e.qt, painter_->device());
  return e;
}

void QtSurface::Text_Out(int x, int y, std::string_view text, const Font_Rec& font,
                         double height_px, int angle_tenths, int weight) {
  if (text.empty()) return;
  const Font_Entry& f = Font_For(font, height_px, weight);
  const QFontMetricsF& fm = *f.metrics;
  const QString shown = Shown_Text(text, font);
  painter_->save();
  Use_Op();
  if (Xor_Now()) painter_->setRenderHint(QPainter::TextAntialiasing, false);
  painter_->setFont(f.qt);
  painter_->translate(x, y);
  if (angle_tenths != 0) painter_->rotate(-angle_tenths / 10.0);
  if (bk_mode_ == Background_Mode::Opaque)
    painter_->fillRect(QRectF(0, 0, fm.horizontalAdvance(shown), fm.height()), To_Qt(bk_colour_));
  painter_->setPen(To_Qt(text_colour_));
  painter_->drawText(QPointF(0, fm.ascent()), shown);
  painter_->restore();
}

Text_Size QtSurface::Text_Extent(std::string_view text, const Font_Rec& font, double height_px,
                                 int weight) {
  const QFontMetricsF& fm = *Font_For(font, height_px, weight).metrics;
  return {static_cast<int>(std::lround(fm.horizontalAdvance(Shown_Text(text, font)))),
          static_cast<int>(std::lround(fm.height()))};
}

void QtSurface::Clear() {
  if (image_ && have_kept_) {
    // Nothing drawn since the picture was kept or restored: it is there.
    if (!drawn_since_kept_) return;
    painter_->setCompositionMode(QPainter::CompositionMode_Source);
    painter_->drawImage(0, 0, kept_);
    drawn_since_kept_ = false;
  } else if (raster_ || !have_kept_) {
    // A vector page keeps what was drawn: the kept picture is the page.
    painter_->setCompositionMode(QPainter::CompositionMode_Source);
    painter_->fillRect(0, 0, width_, height_, To_Qt(bk_colour_));
  }
}

void QtSurface::Keep_Picture() {
  // The image as it stands is the picture; the copy waits for the next
  // drawing call (Before_Drawing).
  copy_due_ = image_ != nullptr;
  have_kept_ = true;
  drawn_since_kept_ = false;
}

void QtSurface::Drop_Picture() {
  // The buffer stays for the next Keep_Picture.
  have_kept_ = false;
  copy_due_ = false;
}

}  // namespace tevo::platform
