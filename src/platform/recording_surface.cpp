#include "platform/recording_surface.h"

#include <cmath>

#include "platform/symbol_font.h"
#include "session/text_encoding.h"

namespace tevo::platform {

RecordingSurface::RecordingSurface(int width, int height, double pixels_per_inch)
    : width_(width), height_(height), ppi_(pixels_per_inch) {}

Recorded_Op& RecordingSurface::Add(Recorded_Op::Kind kind) {
  ops_.emplace_back();
  ops_.back().kind = kind;
  return ops_.back();
}

void RecordingSurface::Set_Pen(Pen_Style style, int width, Colour colour) {
  pen_style_ = style;
  pen_width_ = width;
  pen_colour_ = colour;
  auto& op = Add(Recorded_Op::Kind::Pen);
  op.value = static_cast<int>(style);
  op.width = width;
  op.colour = colour;
}

void RecordingSurface::Set_Brush(Colour colour, bool hollow) {
  brush_colour_ = colour;
  brush_hollow_ = hollow;
  auto& op = Add(Recorded_Op::Kind::Brush);
  op.colour = colour;
  op.value = hollow ? 1 : 0;
}

void RecordingSurface::Set_Fill_Mode(Fill_Mode mode) {
  fill_ = mode;
  Add(Recorded_Op::Kind::Fill_Mode).value = static_cast<int>(mode);
}

void RecordingSurface::Set_Raster_Op(Raster_Op op) {
  op_ = op;
  Add(Recorded_Op::Kind::Raster_Op).value = static_cast<int>(op);
}

void RecordingSurface::Set_Background_Mode(Background_Mode mode) {
  bk_mode_ = mode;
  Add(Recorded_Op::Kind::Background_Mode).value = static_cast<int>(mode);
}

void RecordingSurface::Set_Background_Colour(Colour colour) {
  bk_colour_ = colour;
  Add(Recorded_Op::Kind::Background_Colour).colour = colour;
}

void RecordingSurface::Set_Text_Colour(Colour colour) {
  text_colour_ = colour;
  Add(Recorded_Op::Kind::Text_Colour).colour = colour;
}

void RecordingSurface::Move_To(int x, int y) {
  pos_ = {x, y};
  Add(Recorded_Op::Kind::Move_To).at = pos_;
}

void RecordingSurface::Line_To(int x, int y) {
  auto& op = Add(Recorded_Op::Kind::Line_To);
  op.from = pos_;
  op.at = {x, y};
  op.value = static_cast<int>(pen_style_);
  op.width = pen_width_;
  op.colour = pen_colour_;
  op.op = op_;
  pos_ = {x, y};
}

void RecordingSurface::Polygon(std::span<const Point> points) {
  if (points.size() < 2) return;
  auto& op = Add(Recorded_Op::Kind::Polygon);
  op.points.assign(points.begin(), points.end());
  op.colour = brush_colour_;
  op.value = brush_hollow_ ? 1 : 0;
  op.op = op_;
}

Colour RecordingSurface::Get_Pixel(int x, int y) const {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) return Invalid_Colour;
  auto it = pixels_.find(static_cast<long long>(y) * width_ + x);
  return it == pixels_.end() ? bk_colour_ : it->second;
}

void RecordingSurface::Set_Pixel(int x, int y, Colour colour) {
  auto& op = Add(Recorded_Op::Kind::Set_Pixel);
  op.at = {x, y};
  op.colour = colour;
  if (x < 0 || y < 0 || x >= width_ || y >= height_) return;
  pixels_[static_cast<long long>(y) * width_ + x] = colour & 0xFFFFFF;
}

int RecordingSurface::Metric_Units(std::string_view text, bool symbol) {
  int units = 0;
  for (std::size_t i = 0; i < text.size();) {
    char32_t c = Next_Utf8(text, i);
    bool narrow = symbol || c < 0x100 || (c >= 0xFF61 && c <= 0xFF9F);
    units += narrow ? 1 : 2;
  }
  return units;
}

void RecordingSurface::Text_Out(int x, int y, std::string_view text, const Font_Rec& font,
                                double height_px, int angle_tenths, int weight) {
  auto& op = Add(Recorded_Op::Kind::Text_Out);
  op.at = {x, y};
  op.text = std::string(text);
  op.font = font;
  op.height = height_px;
  op.angle = angle_tenths;
  op.weight = weight;
  op.colour = text_colour_;
  op.op = op_;
}

Text_Size RecordingSurface::Text_Extent(std::string_view text, const Font_Rec& font,
                                        double height_px, int) {
  if (text.empty()) return {0, static_cast<int>(std::lround(height_px))};
  double w = Metric_Units(text, Is_Symbol_Font(font)) * height_px * 0.5;
  return {static_cast<int>(std::lround(w)), static_cast<int>(std::lround(height_px))};
}

bool RecordingSurface::Draw_Picture(int x, int y, int w, int h, std::span<const uint8_t> bytes,
                                    Picture_Ink ink) {
  Recorded_Op& op = Add(Recorded_Op::Kind::Picture);
  op.points = {{x, y}, {x + w, y + h}};
  op.value = static_cast<int>(bytes.size());
  op.width = ink.white_clear ? 1 : 0;
  op.colour = ink.black ? 0 : Invalid_Colour;
  return true;
}

void RecordingSurface::Clear() {
  pixels_ = kept_pixels_;
  Add(Recorded_Op::Kind::Clear).colour = bk_colour_;
}

void RecordingSurface::Keep_Picture() {
  kept_pixels_ = pixels_;
  Add(Recorded_Op::Kind::Keep_Picture);
}

void RecordingSurface::Drop_Picture() {
  kept_pixels_.clear();
  Add(Recorded_Op::Kind::Drop_Picture);
}

std::vector<Recorded_Op> RecordingSurface::Ops_Of(Recorded_Op::Kind kind) const {
  std::vector<Recorded_Op> out;
  for (const auto& op : ops_)
    if (op.kind == kind) out.push_back(op);
  return out;
}

std::string RecordingSurface::All_Text() const {
  std::string out;
  for (const auto& op : ops_)
    if (op.kind == Recorded_Op::Kind::Text_Out) out += op.text;
  return out;
}

}  // namespace tevo::platform
