// Small picture files for the tests: a PNG of one colour, and metafiles
// built byte by byte: a filled rectangle and a thick line in known colours
// on a 100 x 100 unit picture, as an enhanced metafile and as a Windows
// metafile (with or without the placeable header).
//
// Metafile picture: a filled rectangle from (20, 20) to (80, 60) in `fill`,
// a line from (10, 85) to (90, 85), 6 units wide, in `line`. Colours are
// 0xBBGGRR.
#pragma once

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <vector>

namespace tevo::test {

// The bytes of a PNG file of 8 x 8 pixels in one colour.
inline std::vector<uint8_t> Png_Picture(const QColor& colour) {
  QImage image(8, 8, QImage::Format_RGB32);
  image.fill(colour);
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return {png.begin(), png.end()};
}

class Le_Bytes {
 public:
  void U16(uint32_t v) {
    b_.push_back(static_cast<uint8_t>(v));
    b_.push_back(static_cast<uint8_t>(v >> 8));
  }
  void U32(uint32_t v) {
    U16(v & 0xFFFF);
    U16(v >> 16);
  }
  void I32s(std::initializer_list<int32_t> vs) {
    for (int32_t v : vs) U32(static_cast<uint32_t>(v));
  }
  void I16s(std::initializer_list<int> vs) {
    for (int v : vs) U16(static_cast<uint32_t>(v) & 0xFFFF);
  }
  void Put_U32(std::size_t at, uint32_t v) {
    for (int k = 0; k < 4; ++k) b_[at + k] = static_cast<uint8_t>(v >> (8 * k));
  }
  std::size_t Size() const { return b_.size(); }
  std::vector<uint8_t>& Bytes() { return b_; }

 private:
  std::vector<uint8_t> b_;
};

// Enhanced metafile: logical units are device pixels (the default map
// mode), the device 1000 x 1000 pixels on 254 x 254 mm, so a unit is
// 0.254 mm and the frame 2540 hundredths of a millimetre.
inline std::vector<uint8_t> Emf_Picture(uint32_t fill, uint32_t line) {
  Le_Bytes e;
  // Header record (type 1, 108 bytes).
  e.U32(1), e.U32(108);
  e.I32s({0, 0, 99, 99});      // bounds, device units
  e.I32s({0, 0, 2540, 2540});  // frame, 0.01 mm
  e.U32(0x464D4520);           // " EMF"
  e.U32(0x10000);              // version
  e.U32(0);                    // file size, set below
  e.U32(0);                    // record count, set below
  e.U16(4), e.U16(0);          // handles (three and the reserved 0), reserved
  e.U32(0), e.U32(0), e.U32(0);  // description length, offset, palette
  e.I32s({1000, 1000, 254, 254});  // device in pixels and mm
  e.U32(0), e.U32(0), e.U32(0);    // pixel format, OpenGL
  e.I32s({254000, 254000});        // device in micrometres
  uint32_t records = 1;
  auto record = [&](uint32_t type, std::initializer_list<int32_t> fields) {
    e.U32(type), e.U32(static_cast<uint32_t>(8 + 4 * fields.size()));
    e.I32s(fields);
    ++records;
  };
  const int32_t fill_c = static_cast<int32_t>(fill), line_c = static_cast<int32_t>(line);
  record(39, {1, 0, fill_c, 0});     // brush 1: solid fill colour
  record(38, {2, 0, 1, 0, fill_c});  // pen 2: solid, 1 wide, fill colour
  record(37, {1});                   // select brush
  record(37, {2});                   // select pen
  record(43, {20, 20, 80, 60});      // rectangle
  record(38, {3, 0x10000, 6, 0, line_c});  // pen 3: geometric, 6 wide, line colour
  record(37, {3});
  record(27, {10, 85});  // move to
  record(54, {90, 85});  // line to
  record(14, {0, 16, 20});  // end of file
  e.Put_U32(48, static_cast<uint32_t>(e.Size()));
  e.Put_U32(52, records);
  return std::move(e.Bytes());
}

// Windows metafile: window origin 0, extent 100 x 100; with `placeable` the
// 22-byte header in front gives the bounding box 0 .. 100 at 100 units per
// inch.
inline std::vector<uint8_t> Wmf_Picture(uint32_t fill, uint32_t line, bool placeable) {
  Le_Bytes w;
  if (placeable) {
    w.U32(0x9AC6CDD7);
    w.I16s({0, 0, 0, 100, 100, 100});  // handle, box, units per inch
    w.U32(0);
    uint32_t sum = 0;
    for (std::size_t k = 0; k < 20; k += 2) sum ^= w.Bytes()[k] | (w.Bytes()[k + 1] << 8);
    w.U16(sum);
  }
  const std::size_t head = w.Size();
  w.I16s({1, 9, 0x0300});
  w.U32(0);  // size in words, set below
  w.U16(2);  // objects
  w.U32(0);  // largest record in words, set below
  w.U16(0);
  uint32_t largest = 0;
  auto record = [&](int function, std::initializer_list<int> params) {
    const uint32_t words = static_cast<uint32_t>(3 + params.size());
    largest = std::max(largest, words);
    w.U32(words);
    w.U16(static_cast<uint32_t>(function));
    w.I16s(params);
  };
  auto lo = [](uint32_t c) { return static_cast<int>(c & 0xFFFF); };
  auto hi = [](uint32_t c) { return static_cast<int>(c >> 16); };
  record(0x020B, {0, 0});      // window origin (y, x)
  record(0x020C, {100, 100});  // window extent (y, x)
  record(0x02FC, {0, lo(fill), hi(fill), 0});      // object 0: solid brush
  record(0x02FA, {0, 1, 0, lo(fill), hi(fill)});   // object 1: pen 1 wide
  record(0x012D, {0});
  record(0x012D, {1});
  record(0x041B, {60, 80, 20, 20});  // rectangle (bottom, right, top, left)
  record(0x01F0, {1});               // delete the pen: slot 1 is free again
  record(0x02FA, {0, 6, 0, lo(line), hi(line)});  // object 1: pen 6 wide
  record(0x012D, {1});
  record(0x0214, {85, 10});  // move to (y, x)
  record(0x0213, {85, 90});  // line to (y, x)
  record(0x0000, {});        // end
  const uint32_t words = static_cast<uint32_t>((w.Size() - head) / 2);
  auto& b = w.Bytes();
  b[head + 6] = static_cast<uint8_t>(words), b[head + 7] = static_cast<uint8_t>(words >> 8);
  b[head + 8] = static_cast<uint8_t>(words >> 16), b[head + 9] = static_cast<uint8_t>(words >> 24);
  b[head + 12] = static_cast<uint8_t>(largest), b[head + 13] = static_cast<uint8_t>(largest >> 8);
  return std::move(w.Bytes());
}

}  // namespace tevo::test
