// Byte decoders and encoders: the one place where byte order and the number
// layouts of foreign machines are handled.
//
// Every decoder takes a byte array and an offset and builds the value from
// the bytes one by one, so the result never depends on the layout of the
// machine the program runs on. A read past the end of the array throws
// std::out_of_range; readers catch it at their edge and report a failure, so
// a truncated file can never be read as zeros.
//
// The encoders write the same layouts (two's complement integers, IEEE
// numbers) in either byte order, appended to a growing buffer or stored at an
// offset of an existing one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tevo::datafiles {

using Byte_View = std::span<const uint8_t>;

// A byte view of text read in binary mode.
inline Byte_View As_Bytes(std::string_view text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

// ---- integers, two's complement ----
int32_t Decode_BE_Int32(Byte_View bytes, size_t offset);
int32_t Decode_LE_Int32(Byte_View bytes, size_t offset);
int16_t Decode_BE_Int16(Byte_View bytes, size_t offset);
int16_t Decode_LE_Int16(Byte_View bytes, size_t offset);

// ---- IEEE numbers; a value whose two exponent-bearing bytes are both 0
// reads as 0 (which also flushes the smallest denormals) ----
float Decode_BE_Float32(Byte_View bytes, size_t offset);
float Decode_LE_Float32(Byte_View bytes, size_t offset);
double Decode_BE_Float64(Byte_View bytes, size_t offset);
double Decode_LE_Float64(Byte_View bytes, size_t offset);

// VAX F floating (4 bytes): byte 1 holds the sign and the high 7 exponent
// bits, byte 0 the low exponent bit and the top 7 fraction bits, then bytes 3
// and 2. Value = fraction x 2^(exponent - 152), the fraction read as a 24-bit
// integer with the hidden bit 0x80 set in its top byte. Exponent 0 is 0.
double Decode_VAX_F(Byte_View bytes, size_t offset);
// VAX D floating (8 bytes): the same head, then bytes 3, 2, 5, 4 make a
// 40-bit fraction; value = fraction x 2^(exponent - 168). Bytes 6 and 7 (the
// lowest fraction bits) are not used.
double Decode_VAX_D(Byte_View bytes, size_t offset);

// ---- the 24-bit word machine of the MSL files ----
// One word, big-endian, sign-extended from bit 23.
int32_t Decode_Aspect_Int24(Byte_View bytes, size_t offset);
// Two words (6 bytes): sign in the top bit of byte 0 (when set, bytes 0, 1,
// 2, 4, 5 are complemented first); an 11-bit exponent byte3 x 8 + byte4 >> 5,
// less 2048 above 1024; a 36-bit mantissa from bytes 0, 1, 2, the low 5 bits
// of byte 4 and byte 5; value = mantissa x 2^(exponent - 36).
double Decode_Aspect_Float48(Byte_View bytes, size_t offset);
// One word as four 6-bit characters, left to right: 0 a blank, 1..31 the
// letters from "A" (code + 64), 32..63 the code itself.
std::string Decode_Aspect_Text(Byte_View bytes, size_t offset);

// Text of a fixed field of `length` bytes: stops at the first NUL; a
// Shift-JIS lead byte (129..159, 224..252) takes its trail byte with it;
// 160..223 and bytes below 129 are single characters; any other byte is
// skipped. Returned as UTF-8, trimmed of blanks. The field is clipped to the
// array.
std::string Fetch_Text(Byte_View bytes, size_t offset, size_t length);
// The same, returning the Shift-JIS bytes (not trimmed, not converted).
std::string Fetch_Sjis(Byte_View bytes, size_t offset, size_t length);

// ---- encoders: append to a buffer ----
void Append_LE_Int16(std::vector<uint8_t>& out, int16_t v);
void Append_LE_Int32(std::vector<uint8_t>& out, int32_t v);
void Append_LE_Float32(std::vector<uint8_t>& out, float v);
void Append_LE_Float64(std::vector<uint8_t>& out, double v);
void Append_BE_Int16(std::vector<uint8_t>& out, int16_t v);
void Append_BE_Int32(std::vector<uint8_t>& out, int32_t v);
void Append_BE_Float32(std::vector<uint8_t>& out, float v);
void Append_BE_Float64(std::vector<uint8_t>& out, double v);

// ---- encoders: store at an offset; throw std::out_of_range past the end ----
void Put_LE_Int16(std::span<uint8_t> bytes, size_t offset, int16_t v);
void Put_LE_Int32(std::span<uint8_t> bytes, size_t offset, int32_t v);
void Put_LE_Float32(std::span<uint8_t> bytes, size_t offset, float v);
void Put_LE_Float64(std::span<uint8_t> bytes, size_t offset, double v);
void Put_BE_Int16(std::span<uint8_t> bytes, size_t offset, int16_t v);
void Put_BE_Int32(std::span<uint8_t> bytes, size_t offset, int32_t v);
void Put_BE_Float32(std::span<uint8_t> bytes, size_t offset, float v);
void Put_BE_Float64(std::span<uint8_t> bytes, size_t offset, double v);

}  // namespace tevo::datafiles
