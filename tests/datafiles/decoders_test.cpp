// Byte decoders, encoders, the line reader and the small text helpers,
// against bit patterns worked out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "datafiles/date_text.h"
#include "datafiles/decoders.h"
#include "datafiles/nucleus.h"
#include "datafiles/text_lines.h"

namespace tevo::datafiles {
namespace {

using B = std::vector<uint8_t>;

TEST(Decoders, IntegersInBothByteOrders) {
  B b = {0xFF, 0xFF, 0xFF, 0xFE, 0x80, 0x00, 0x00, 0x00, 0x12, 0x34};
  EXPECT_EQ(Decode_BE_Int32(b, 0), -2);
  EXPECT_EQ(Decode_LE_Int32(b, 0), -16777217);  // 0xFEFFFFFF
  EXPECT_EQ(Decode_BE_Int32(b, 4), INT32_MIN);
  EXPECT_EQ(Decode_LE_Int32(b, 4), 128);
  EXPECT_EQ(Decode_BE_Int16(b, 8), 0x1234);
  EXPECT_EQ(Decode_LE_Int16(b, 8), 0x3412);
  EXPECT_EQ(Decode_BE_Int16(b, 2), -2);
  // A field that runs past the end is an error, never a zero.
  EXPECT_THROW(Decode_BE_Int32(b, 7), std::out_of_range);
  EXPECT_THROW(Decode_LE_Float64(b, 3), std::out_of_range);
  EXPECT_THROW(Decode_BE_Int16(b, 100), std::out_of_range);
}

TEST(Decoders, IeeeNumbersAndTheZeroRule) {
  // 1.0f = 3F800000, -2.5f = C0200000, 2^-126 = 00800000.
  B be = {0x3F, 0x80, 0x00, 0x00, 0xC0, 0x20, 0x00, 0x00, 0x00, 0x80, 0x00, 0x00};
  EXPECT_EQ(Decode_BE_Float32(be, 0), 1.0f);
  EXPECT_EQ(Decode_BE_Float32(be, 4), -2.5f);
  EXPECT_EQ(Decode_BE_Float32(be, 8), std::ldexp(1.0f, -126));
  B le = {0x00, 0x00, 0x20, 0xC0};
  EXPECT_EQ(Decode_LE_Float32(le, 0), -2.5f);
  // Both exponent-bearing bytes zero: 0, even with fraction bits below.
  B tiny = {0x00, 0x00, 0x12, 0x34};
  EXPECT_EQ(Decode_BE_Float32(tiny, 0), 0.0f);
  B tiny_le = {0x34, 0x12, 0x00, 0x00};
  EXPECT_EQ(Decode_LE_Float32(tiny_le, 0), 0.0f);
  // 0.1 = 3FB999999999999A, -1.0 = BFF0000000000000.
  B d = {0x3F, 0xB9, 0x99, 0x99, 0x99, 0x99, 0x99, 0x9A};
  EXPECT_EQ(Decode_BE_Float64(d, 0), 0.1);
  B dl = {0, 0, 0, 0, 0, 0, 0xF0, 0xBF};
  EXPECT_EQ(Decode_LE_Float64(dl, 0), -1.0);
  B dz = {0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  EXPECT_EQ(Decode_BE_Float64(dz, 0), 0.0);
}

TEST(Decoders, VaxFloatingLayouts) {
  // 1.0: exponent 129, fraction 0.1000 (hidden bit only).
  EXPECT_EQ(Decode_VAX_F(B{0x80, 0x40, 0x00, 0x00}, 0), 1.0);
  // -3.0: exponent 130, fraction 0.11, sign set.
  EXPECT_EQ(Decode_VAX_F(B{0x40, 0xC1, 0x00, 0x00}, 0), -3.0);
  // Byte 2 holds the lowest fraction bits, byte 3 the middle ones.
  EXPECT_EQ(Decode_VAX_F(B{0x80, 0x40, 0x01, 0x00}, 0), 1.0 + std::ldexp(1.0, -23));
  EXPECT_EQ(Decode_VAX_F(B{0x80, 0x40, 0x00, 0x01}, 0), 1.0 + std::ldexp(1.0, -15));
  EXPECT_EQ(Decode_VAX_F(B{0x00, 0x00, 0x12, 0x34}, 0), 0.0);
  // D: bytes 4 and 5 extend the fraction to 40 bits; 6 and 7 are not read.
  EXPECT_EQ(Decode_VAX_D(B{0x80, 0x40, 0, 0, 0, 0, 0xFF, 0xFF}, 0), 1.0);
  EXPECT_EQ(Decode_VAX_D(B{0x80, 0x40, 0, 0, 0x01, 0, 0, 0}, 0), 1.0 + std::ldexp(1.0, -39));
  EXPECT_EQ(Decode_VAX_D(B{0x80, 0x40, 0, 0, 0, 0x01, 0, 0}, 0), 1.0 + std::ldexp(1.0, -31));
  EXPECT_EQ(Decode_VAX_D(B{0x40, 0xC1, 0, 0, 0, 0, 0, 0}, 0), -3.0);
}

TEST(Decoders, TwentyFourBitWords) {
  B w = {0x7F, 0xFF, 0xFF, 0x80, 0x00, 0x00, 0xFF, 0xFF, 0xFE};
  EXPECT_EQ(Decode_Aspect_Int24(w, 0), 8388607);
  EXPECT_EQ(Decode_Aspect_Int24(w, 3), -8388608);
  EXPECT_EQ(Decode_Aspect_Int24(w, 6), -2);

  // mantissa 2^35 (byte 0 = 0x40) with exponent 1 is 1.0.
  EXPECT_EQ(Decode_Aspect_Float48(B{0x40, 0, 0, 0x00, 0x20, 0}, 0), 1.0);
  EXPECT_EQ(Decode_Aspect_Float48(B{0x60, 0, 0, 0x00, 0x00, 0}, 0), 0.75);
  // Exponent 2047 is -1.
  EXPECT_EQ(Decode_Aspect_Float48(B{0x40, 0, 0, 0xFF, 0xE0, 0}, 0), 0.25);
  // Negative: bytes 0, 1, 2, 4, 5 of +1.0 complemented, byte 3 not.
  EXPECT_EQ(Decode_Aspect_Float48(B{0xBF, 0xFF, 0xFF, 0x00, 0xDF, 0xFF}, 0), -1.0);
  // Low mantissa pieces: byte 5, the low bits of byte 4, byte 2.
  EXPECT_EQ(Decode_Aspect_Float48(B{0x40, 0, 0, 0, 0x20, 0x01}, 0), 1.0 + std::ldexp(1.0, -35));
  EXPECT_EQ(Decode_Aspect_Float48(B{0x40, 0, 0, 0, 0x21, 0x00}, 0), 1.0 + std::ldexp(1.0, -27));
  EXPECT_EQ(Decode_Aspect_Float48(B{0x40, 0, 0x01, 0, 0x20, 0x00}, 0), 1.0 + std::ldexp(1.0, -22));

  // "A"=1, "B"=2, blank=0, "1"=49: 000001 000010 000000 110001.
  EXPECT_EQ(Decode_Aspect_Text(B{0x04, 0x20, 0x31}, 0), "AB 1");
}

TEST(Decoders, FetchTextKeepsShiftJisPairsAndStopsAtNul) {
  // "  AB", あ (82 A0), half-width ｱ (B1), 0xFD and 0xFF dropped, "C ",
  // NUL, then bytes that must not be read.
  B b = {' ', ' ', 'A', 'B', 0x82, 0xA0, 0xB1, 0xFF, 0xFD, 'C', ' ', 0x00, 'X', 'Y'};
  EXPECT_EQ(Fetch_Text(b, 0, b.size()), "ABあｱC");
  EXPECT_EQ(Fetch_Text(b, 2, 2), "AB");
  // A lead byte whose trail byte is cut off by the field end is dropped.
  EXPECT_EQ(Fetch_Text(b, 2, 3), "AB");
  // Field clipped to the array; a field outside it is empty.
  EXPECT_EQ(Fetch_Text(b, 12, 50), "XY");
  EXPECT_EQ(Fetch_Text(b, 40, 5), "");
}

TEST(Decoders, EncodersWriteTheLayoutsTheDecodersRead) {
  std::vector<uint8_t> out;
  Append_BE_Float32(out, 1.0f);
  Append_LE_Int32(out, -2);
  Append_BE_Int16(out, 0x1234);
  Append_LE_Int16(out, -1);
  EXPECT_EQ(out, (B{0x3F, 0x80, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF, 0x12, 0x34, 0xFF, 0xFF}));
  out.clear();
  Append_LE_Float64(out, -1.0);
  EXPECT_EQ(out, (B{0, 0, 0, 0, 0, 0, 0xF0, 0xBF}));

  // Round trips in both orders, through append and through put.
  const float floats[] = {3.5f, -1.25e-20f, 6.02e23f, 0.0f};
  const double doubles[] = {0.1, -123456.789, 1e-300};
  const int32_t ints[] = {0, 1, -1, INT32_MAX, INT32_MIN, 0x01020304};
  std::vector<uint8_t> le, be;
  for (float f : floats) Append_LE_Float32(le, f), Append_BE_Float32(be, f);
  for (double v : doubles) Append_LE_Float64(le, v), Append_BE_Float64(be, v);
  for (int32_t i : ints) Append_LE_Int32(le, i), Append_BE_Int32(be, i);
  size_t at = 0;
  for (float f : floats) {
    EXPECT_EQ(Decode_LE_Float32(le, at), f);
    EXPECT_EQ(Decode_BE_Float32(be, at), f);
    at += 4;
  }
  for (double v : doubles) {
    EXPECT_EQ(Decode_LE_Float64(le, at), v);
    EXPECT_EQ(Decode_BE_Float64(be, at), v);
    at += 8;
  }
  for (int32_t i : ints) {
    EXPECT_EQ(Decode_LE_Int32(le, at), i);
    EXPECT_EQ(Decode_BE_Int32(be, at), i);
    at += 4;
  }

  std::vector<uint8_t> buf(10, 0xAA);
  Put_BE_Int32(buf, 1, 0x01020304);
  Put_LE_Int16(buf, 6, 0x0506);
  EXPECT_EQ(buf, (B{0xAA, 1, 2, 3, 4, 0xAA, 6, 5, 0xAA, 0xAA}));
  Put_LE_Float32(buf, 6, -2.5f);
  EXPECT_EQ(Decode_LE_Float32(buf, 6), -2.5f);
  Put_BE_Float64(buf, 2, 0.1);
  EXPECT_EQ(Decode_BE_Float64(buf, 2), 0.1);
  EXPECT_THROW(Put_LE_Int32(buf, 7, 1), std::out_of_range);
}

TEST(TextLines, AnyLineEndAndShiftJisPairs) {
  // CR, LF and CR LF end lines; blank lines and leading control bytes
  // vanish; 表 (95 5C) keeps its trail byte; the last line needs no end.
  const std::string text = "\r\n\x01 first\r\nsecond\rthird\n\n\t\x95\x5C x\xFEy\nlast";
  std::vector<std::string> lines;
  std::istringstream in(text);
  std::string line;
  while (Read_Line_Any(in, line)) lines.push_back(line);
  EXPECT_EQ(line, "");
  const std::vector<std::string> want = {" first", "second", "third", "\x95\x5C xy", "last"};
  EXPECT_EQ(lines, want);

  // The same from memory.
  std::vector<std::string> mem;
  size_t pos = 0;
  while (Read_Line_Any(As_Bytes(text), pos, line)) mem.push_back(line);
  EXPECT_EQ(mem, want);
  EXPECT_EQ(pos, text.size());

  std::istringstream empty("\r\n\r\n");
  EXPECT_FALSE(Read_Line_Any(empty, line));
}

TEST(Nucleus, NominalFrequenciesAndProtonGuess) {
  EXPECT_EQ(Snap_Frequency(399.78), 400.0);
  EXPECT_EQ(Snap_Frequency(404.0), 400.0);  // exactly 1% off
  EXPECT_EQ(Snap_Frequency(404.1), 404.1);
  EXPECT_EQ(Snap_Frequency(22.6), 22.5);
  EXPECT_EQ(Snap_Frequency(67.0), 67.5);
  EXPECT_EQ(Snap_Frequency(100.6), 100.0);
  EXPECT_EQ(Snap_Frequency(0.0), 0.0);
  EXPECT_EQ(Nucleus_From_Frequency(399.78), "1H");
  EXPECT_EQ(Nucleus_From_Frequency(270.17), "1H");
  EXPECT_EQ(Nucleus_From_Frequency(100.6), "");  // 13C at 400 MHz
  EXPECT_EQ(Nucleus_From_Frequency(0.0), "");
}

TEST(Nucleus, SpellingsSettleOnTheTable) {
  std::vector<session::Nucleus_Row> table = {{"1H", "", 1.0}, {"13C", "", 0.25}, {"15N", "", 0.1},
                                             {"31P", "", 0.4}, {"19F", "", 0.94}};
  auto n = [&](const std::string& t) { return Normalize_Nucleus(t, table); };
  EXPECT_EQ(n("").nucleus, "NUL");
  EXPECT_EQ(n(" nul ").nucleus, "NUL");
  EXPECT_EQ(n("off").nucleus, "OFF");
  EXPECT_EQ(n("Proton").nucleus, "1H");
  EXPECT_EQ(n("D").nucleus, "2H");
  EXPECT_EQ(n("Deuterium").nucleus, "2H");
  EXPECT_EQ(n("carbon13").nucleus, "13C");
  EXPECT_EQ(n(" c13 ").nucleus, "13C");
  EXPECT_EQ(n(" c13 ").text, "13C");
  EXPECT_EQ(n("N15").nucleus, "15N");
  EXPECT_EQ(n("P-31").nucleus, "31P");
  auto miss = n("Xe129");
  EXPECT_EQ(miss.nucleus, "??");
  EXPECT_EQ(miss.text, "Xe129");
}

TEST(DateText, CommonLayouts) {
  auto d = Parse_Date_Text("14-MAR-1998 10:23:45");
  EXPECT_EQ(d.Year, 1998); EXPECT_EQ(d.Month, 3); EXPECT_EQ(d.Day, 14);
  EXPECT_EQ(d.Hour, 10); EXPECT_EQ(d.Minute, 23); EXPECT_EQ(d.Second, 45);

  d = Parse_Date_Text("Mon Jan 14 10:12:00 2008");
  EXPECT_EQ(d.Year, 2008); EXPECT_EQ(d.Month, 1); EXPECT_EQ(d.Day, 14); EXPECT_EQ(d.Hour, 10);

  d = Parse_Date_Text("2008/01/14 09:05");
  EXPECT_EQ(d.Year, 2008); EXPECT_EQ(d.Month, 1); EXPECT_EQ(d.Day, 14);
  EXPECT_EQ(d.Hour, 9); EXPECT_EQ(d.Minute, 5); EXPECT_EQ(d.Second, 0);

  d = Parse_Date_Text("2008年1月14日");
  EXPECT_EQ(d.Year, 2008); EXPECT_EQ(d.Month, 1); EXPECT_EQ(d.Day, 14);

  d = Parse_Date_Text("12/25/99");
  EXPECT_EQ(d.Year, 1999); EXPECT_EQ(d.Month, 12); EXPECT_EQ(d.Day, 25);

  d = Parse_Date_Text("5 September 03");
  EXPECT_EQ(d.Year, 2003); EXPECT_EQ(d.Month, 9); EXPECT_EQ(d.Day, 5);

  for (const char* bad : {"", "no date here", "12:30", "2008/13/40"}) {
    d = Parse_Date_Text(bad);
    EXPECT_FALSE(d.ok()) << bad;
    EXPECT_EQ(d.Hour, 0) << bad;
  }
}

}  // namespace
}  // namespace tevo::datafiles
