#include "datafiles/decoders.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "session/text_encoding.h"

namespace tevo::datafiles {

// The IEEE encoders and decoders assemble the bit pattern from the bytes in
// a fixed order and then reinterpret it; that needs the host's float and
// double to be IEEE, which every supported compiler gives.
static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559);

namespace {

void Check_Range(size_t size, size_t offset, size_t n) {
  if (offset > size || size - offset < n) throw std::out_of_range("byte decoder: read past the end");
}

// n bytes from offset as an unsigned number, most significant first when
// big_endian.
uint64_t Read_Unsigned(Byte_View bytes, size_t offset, size_t n, bool big_endian) {
  Check_Range(bytes.size(), offset, n);
  uint64_t v = 0;
  for (size_t i = 0; i < n; ++i) {
    size_t k = big_endian ? i : n - 1 - i;
    v = (v << 8) | bytes[offset + k];
  }
  return v;
}

void Store_Unsigned(std::span<uint8_t> bytes, size_t offset, size_t n, bool big_endian, uint64_t v) {
  Check_Range(bytes.size(), offset, n);
  for (size_t i = 0; i < n; ++i) {
    size_t k = big_endian ? n - 1 - i : i;
    bytes[offset + k] = static_cast<uint8_t>(v >> (8 * i));
  }
}

void Append_Unsigned(std::vector<uint8_t>& out, size_t n, bool big_endian, uint64_t v) {
  size_t at = out.size();
  out.resize(at + n);
  Store_Unsigned(out, at, n, big_endian, v);
}

// The top 16 bits of an IEEE pattern are the two bytes that carry the sign
// and the exponent; both zero reads as 0.
float Float32_From_Bits(uint32_t bits) {
  if ((bits >> 16) == 0) return 0.0f;
  return std::bit_cast<float>(bits);
}

double Float64_From_Bits(uint64_t bits) {
  if ((bits >> 48) == 0) return 0.0;
  return std::bit_cast<double>(bits);
}

uint8_t At(Byte_View bytes, size_t offset, size_t i) { return bytes[offset + i]; }

}  // namespace

int32_t Decode_BE_Int32(Byte_View bytes, size_t offset) {
  return static_cast<int32_t>(static_cast<uint32_t>(Read_Unsigned(bytes, offset, 4, true)));
}
int32_t Decode_LE_Int32(Byte_View bytes, size_t offset) {
  return static_cast<int32_t>(static_cast<uint32_t>(Read_Unsigned(bytes, offset, 4, false)));
}
int16_t Decode_BE_Int16(Byte_View bytes, size_t offset) {
  return static_cast<int16_t>(static_cast<uint16_t>(Read_Unsigned(bytes, offset, 2, true)));
}
int16_t Decode_LE_Int16(Byte_View bytes, size_t offset) {
  return static_cast<int16_t>(static_cast<uint16_t>(Read_Unsigned(bytes, offset, 2, false)));
}

float Decode_BE_Float32(Byte_View bytes, size_t offset) {
  return Float32_From_Bits(static_cast<uint32_t>(Read_Unsigned(bytes, offset, 4, true)));
}
float Decode_LE_Float32(Byte_View bytes, size_t offset) {
  return Float32_From_Bits(static_cast<uint32_t>(Read_Unsigned(bytes, offset, 4, false)));
}
double Decode_BE_Float64(Byte_View bytes, size_t offset) {
  return Float64_From_Bits(Read_Unsigned(bytes, offset, 8, true));
}
double Decode_LE_Float64(Byte_View bytes, size_t offset) {
  return Float64_From_Bits(Read_Unsigned(bytes, offset, 8, false));
}

namespace {

// The common head of the VAX F and D layouts: sign, 8-bit exponent and the
// top fraction byte with its hidden bit.
struct Vax_Head {
  bool negative;
  int exponent;
  uint64_t top;  // 0x80 | 7 fraction bits
};

Vax_Head Vax_Head_Of(Byte_View bytes, size_t offset) {
  uint8_t b0 = At(bytes, offset, 0), b1 = At(bytes, offset, 1);
  return {(b1 & 0x80) != 0, ((b1 & 0x7F) << 1) | (b0 >> 7), 0x80u | (b0 & 0x7Fu)};
}

}  // namespace

double Decode_VAX_F(Byte_View bytes, size_t offset) {
  Check_Range(bytes.size(), offset, 4);
  Vax_Head h = Vax_Head_Of(bytes, offset);
  if (h.exponent == 0) return 0.0;
  uint64_t fraction = (h.top << 16) | (uint64_t{At(bytes, offset, 3)} << 8) | At(bytes, offset, 2);
  double v = std::ldexp(static_cast<double>(fraction), h.exponent - 152);
  return h.negative ? -v : v;
}

double Decode_VAX_D(Byte_View bytes, size_t offset) {
  Check_Range(bytes.size(), offset, 8);
  Vax_Head h = Vax_Head_Of(bytes, offset);
  if (h.exponent == 0) return 0.0;
  uint64_t fraction = (h.top << 32) | (uint64_t{At(bytes, offset, 3)} << 24) |
                      (uint64_t{At(bytes, offset, 2)} << 16) | (uint64_t{At(bytes, offset, 5)} << 8) |
                      At(bytes, offset, 4);
  double v = std::ldexp(static_cast<double>(fraction), h.exponent - 168);
  return h.negative ? -v : v;
}

int32_t Decode_Aspect_Int24(Byte_View bytes, size_t offset) {
  auto v = static_cast<int32_t>(Read_Unsigned(bytes, offset, 3, true));
  return (v & 0x800000) ? v - 0x1000000 : v;
}

double Decode_Aspect_Float48(Byte_View bytes, size_t offset) {
  Check_Range(bytes.size(), offset, 6);
  uint8_t b[6];
  for (size_t i = 0; i < 6; ++i) b[i] = At(bytes, offset, i);
  bool negative = (b[0] & 0x80) != 0;
  if (negative)
    for (size_t i : {0, 1, 2, 4, 5}) b[i] = static_cast<uint8_t>(~b[i]);
  int exponent = b[3] * 8 + (b[4] >> 5);
  if (exponent > 1024) exponent -= 2048;
  double mantissa = std::ldexp(b[0], 29) + std::ldexp(b[1], 21) + std::ldexp(b[2], 13) +
                    (b[4] % 32) * 256.0 + b[5];
  double v = std::ldexp(mantissa, exponent - 36);
  return negative ? -v : v;
}

std::string Decode_Aspect_Text(Byte_View bytes, size_t offset) {
  auto word = static_cast<uint32_t>(Read_Unsigned(bytes, offset, 3, true));
  std::string text;
  for (int shift = 18; shift >= 0; shift -= 6) {
    unsigned code = (word >> shift) & 0x3F;
    text += code == 0 ? ' ' : code < 32 ? static_cast<char>(code + 64) : static_cast<char>(code);
  }
  return text;
}

std::string Fetch_Sjis(Byte_View bytes, size_t offset, size_t length) {
  std::string out;
  if (offset >= bytes.size()) return out;
  size_t end = offset + std::min(length, bytes.size() - offset);
  for (size_t i = offset; i < end; ++i) {
    uint8_t c = bytes[i];
    if (c == 0) break;
    if (Is_Sjis_Lead(c)) {
      // A lead byte without its trail byte inside the field is dropped.
      if (i + 1 < end && bytes[i + 1] != 0) {
        out += static_cast<char>(c);
        out += static_cast<char>(bytes[++i]);
      }
    } else if (c < 129 || (c >= 160 && c <= 223)) {
      out += static_cast<char>(c);
    }
  }
  return out;
}

std::string Fetch_Text(Byte_View bytes, size_t offset, size_t length) {
  std::string text = Sjis_To_Utf8(Fetch_Sjis(bytes, offset, length));
  size_t a = text.find_first_not_of(' ');
  if (a == std::string::npos) return {};
  size_t b = text.find_last_not_of(' ');
  return text.substr(a, b - a + 1);
}

void Append_LE_Int16(std::vector<uint8_t>& out, int16_t v) { Append_Unsigned(out, 2, false, static_cast<uint16_t>(v)); }
void Append_LE_Int32(std::vector<uint8_t>& out, int32_t v) { Append_Unsigned(out, 4, false, static_cast<uint32_t>(v)); }
void Append_LE_Float32(std::vector<uint8_t>& out, float v) { Append_Unsigned(out, 4, false, std::bit_cast<uint32_t>(v)); }
void Append_LE_Float64(std::vector<uint8_t>& out, double v) { Append_Unsigned(out, 8, false, std::bit_cast<uint64_t>(v)); }
void Append_BE_Int16(std::vector<uint8_t>& out, int16_t v) { Append_Unsigned(out, 2, true, static_cast<uint16_t>(v)); }
void Append_BE_Int32(std::vector<uint8_t>& out, int32_t v) { Append_Unsigned(out, 4, true, static_cast<uint32_t>(v)); }
void Append_BE_Float32(std::vector<uint8_t>& out, float v) { Append_Unsigned(out, 4, true, std::bit_cast<uint32_t>(v)); }
void Append_BE_Float64(std::vector<uint8_t>& out, double v) { Append_Unsigned(out, 8, true, std::bit_cast<uint64_t>(v)); }

void Put_LE_Int16(std::span<uint8_t> b, size_t at, int16_t v) { Store_Unsigned(b, at, 2, false, static_cast<uint16_t>(v)); }
void Put_LE_Int32(std::span<uint8_t> b, size_t at, int32_t v) { Store_Unsigned(b, at, 4, false, static_cast<uint32_t>(v)); }
void Put_LE_Float32(std::span<uint8_t> b, size_t at, float v) { Store_Unsigned(b, at, 4, false, std::bit_cast<uint32_t>(v)); }
void Put_LE_Float64(std::span<uint8_t> b, size_t at, double v) { Store_Unsigned(b, at, 8, false, std::bit_cast<uint64_t>(v)); }
void Put_BE_Int16(std::span<uint8_t> b, size_t at, int16_t v) { Store_Unsigned(b, at, 2, true, static_cast<uint16_t>(v)); }
void Put_BE_Int32(std::span<uint8_t> b, size_t at, int32_t v) { Store_Unsigned(b, at, 4, true, static_cast<uint32_t>(v)); }
void Put_BE_Float32(std::span<uint8_t> b, size_t at, float v) { Store_Unsigned(b, at, 4, true, std::bit_cast<uint32_t>(v)); }
void Put_BE_Float64(std::span<uint8_t> b, size_t at, double v) { Store_Unsigned(b, at, 8, true, std::bit_cast<uint64_t>(v)); }

}  // namespace tevo::datafiles
