#include "support/vendor_files.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "datafiles/decoders.h"
#include "support/test_support.h"

namespace tevo::test {

namespace fs = std::filesystem;
using datafiles::Put_BE_Float32;
using datafiles::Put_BE_Float64;
using datafiles::Put_BE_Int16;
using datafiles::Put_BE_Int32;
using datafiles::Put_LE_Float32;
using datafiles::Put_LE_Float64;
using datafiles::Put_LE_Int16;
using datafiles::Put_LE_Int32;

namespace {

constexpr double Pi = 3.14159265358979323846;

std::string Number(double v) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.10g", v);
  return buf;
}

// ---- the 24-bit words of the Aspect files ----

void Put_Int24(std::vector<uint8_t>& b, size_t off, int32_t v) {
  const auto u = static_cast<uint32_t>(v) & 0xFFFFFFu;
  b[off] = static_cast<uint8_t>(u >> 16);
  b[off + 1] = static_cast<uint8_t>(u >> 8);
  b[off + 2] = static_cast<uint8_t>(u);
}

// Two words: an 11-bit exponent e and a 36-bit mantissa m with v = m 2^(e-36),
// normalised to 2^35 <= m < 2^36; a negative value is the positive one with
// bytes 0, 1, 2, 4 and 5 complemented.
void Put_Float48(std::vector<uint8_t>& b, size_t off, double v) {
  uint8_t w[6] = {};
  if (v != 0) {
    int e = 0;
    const double f = std::frexp(std::fabs(v), &e);  // 0.5 <= f < 1
    const auto m = static_cast<uint64_t>(std::llround(std::ldexp(f, 36)));
    const unsigned ex = static_cast<unsigned>(e) & 0x7FFu;
    w[0] = static_cast<uint8_t>(m >> 29);
    w[1] = static_cast<uint8_t>(m >> 21);
    w[2] = static_cast<uint8_t>(m >> 13);
    w[3] = static_cast<uint8_t>(ex >> 3);
    w[4] = static_cast<uint8_t>(((ex & 7u) << 5) | ((m >> 8) & 31u));
    w[5] = static_cast<uint8_t>(m);
    if (v < 0)
      for (int i : {0, 1, 2, 4, 5}) w[i] = static_cast<uint8_t>(~w[i]);
  }
  for (size_t i = 0; i < 6; ++i) b[off + i] = w[i];
}

// Text in words of four 6-bit codes: blank 0, letters from 1, digits as
// themselves.
void Put_Aspect_Text(std::vector<uint8_t>& b, size_t off, const std::string& text, int words) {
  for (int w = 0; w < words; ++w) {
    uint32_t word = 0;
    for (int c = 0; c < 4; ++c) {
      const size_t i = static_cast<size_t>(4 * w + c);
      const unsigned ch = i < text.size() ? static_cast<unsigned char>(text[i]) : ' ';
      const unsigned code = ch == ' ' ? 0 : ch >= 64 ? ch - 64 : ch;
      word = (word << 6) | (code & 63u);
    }
    Put_Int24(b, off + 3 * static_cast<size_t>(w), static_cast<int32_t>(word));
  }
}

std::vector<uint8_t> Int24_Bytes(int32_t v) {
  std::vector<uint8_t> b(3);
  Put_Int24(b, 0, v);
  return b;
}
std::vector<uint8_t> LE32_Bytes(int32_t v) {
  std::vector<uint8_t> b(4);
  Put_LE_Int32(b, 0, v);
  return b;
}
std::vector<uint8_t> BE32_Bytes(int32_t v) {
  std::vector<uint8_t> b(4);
  Put_BE_Int32(b, 0, v);
  return b;
}

// The vendor's spelling of a nucleus: symbol, then mass number.
std::string Symbol_First(const std::string& nucleus) {
  size_t digits = 0;
  while (digits < nucleus.size() && std::isdigit(static_cast<unsigned char>(nucleus[digits]))) ++digits;
  return nucleus.substr(digits) + nucleus.substr(0, digits);
}

// Every row of points as real32 words, real and imaginary interleaved,
// rows one after another.
std::vector<uint8_t> Interleaved_Float32(const Vendor_Spec& spec, bool big_endian) {
  const auto n = static_cast<size_t>(spec.points);
  std::vector<uint8_t> b(8 * n * static_cast<size_t>(spec.rows));
  for (int32_t r = 0; r < spec.rows; ++r)
    for (size_t k = 0; k < n; ++k) {
      const auto v = Vendor_Point(spec, static_cast<int32_t>(k), r);
      const size_t at = 8 * (static_cast<size_t>(r) * n + k);
      (big_endian ? Put_BE_Float32 : Put_LE_Float32)(b, at, v.real());
      (big_endian ? Put_BE_Float32 : Put_LE_Float32)(b, at + 4, v.imag());
    }
  return b;
}

Built_File Start(const fs::path& folder, std::string open, std::string data) {
  fs::create_directories(folder);
  Built_File b;
  b.folder = folder;
  b.open = std::move(open);
  b.data = std::move(data);
  return b;
}

}  // namespace

std::complex<float> Vendor_Point(const Vendor_Spec& spec, int32_t k, int32_t r) {
  if (spec.spectrum) return {static_cast<float>(1000 * (r + 1) + 3 * k), static_cast<float>(-k)};
  const double t = k / spec.sweep_hz;
  const double a = spec.amplitude * (r + 1) * std::exp(-t / 0.05);
  const double w = 2 * Pi * spec.line_hz * t;
  return {static_cast<float>(std::nearbyint(a * std::cos(w))), static_cast<float>(std::nearbyint(-a * std::sin(w)))};
}

Built_File Build_Msl(const fs::path& folder, const Vendor_Spec& spec) {
  Built_File out = Start(folder, "aspect.msl", "aspect.msl");
  constexpr int32_t head_words = 256;
  const size_t start = head_words * 3 + 768;
  const auto n = static_cast<size_t>(spec.points);
  std::vector<uint8_t> b(start + 6 * n, 0);
  Put_Int24(b, 0, 0x4784F5);
  Put_Aspect_Text(b, 3, spec.kind, 3);
  Put_Int24(b, 18, 1);
  Put_Int24(b, 30, 0x240315);
  Put_Int24(b, 120, head_words);
  Put_Int24(b, 123, spec.spectrum ? 1 : 0);
  Put_Int24(b, 126, 16);
  Put_Int24(b, 156, 4);
  Put_Float48(b, 159, spec.sweep_hz);
  Put_Int24(b, 165, 2 * spec.points);
  const double base = std::floor(spec.observe_mhz);
  Put_Float48(b, 171, base);
  Put_Float48(b, 177, (spec.observe_mhz - base) * 1e6);
  Put_Int24(b, 210, 16);
  Put_Float48(b, 231, spec.points / spec.sweep_hz);
  Put_Int24(b, 243, 5);
  Put_Int24(b, 255, 298);
  Put_Int24(b, 264, 12);
  Put_Aspect_Text(b, 381, spec.kind, 3);
  Put_Float48(b, 543, spec.shift_ppm);
  Put_Aspect_Text(b, 735, Symbol_First(spec.nucleus), 2);
  // A FID is stored unconjugated: the reader negates its imaginary part.
  const float im_sign = spec.spectrum ? 1.0f : -1.0f;
  for (size_t k = 0; k < n; ++k) {
    const auto v = Vendor_Point(spec, static_cast<int32_t>(k), 0);
    Put_Int24(b, start + 6 * k, static_cast<int32_t>(v.real()));
    Put_Int24(b, start + 6 * k + 3, static_cast<int32_t>(im_sign * v.imag()));
  }
  Write_Bytes(folder / out.data, b);
  out.bad_counts = {{out.data, 165, Int24_Bytes(0x7FFFFF)},
                    {out.data, 165, Int24_Bytes(-0x800000)},
                    {out.data, 120, Int24_Bytes(0x7FFFFF)}};
  return out;
}

Built_File Build_Ge(const fs::path& folder, const Vendor_Spec& spec) {
  Built_File out = Start(folder, "ge.fid", "ge.fid");
  const std::string dim0 = "DIM0 = " + std::to_string(spec.points), dim1 = "DIM1 = " + std::to_string(spec.rows);
  Write_Text(folder / "ge.hed", dim0 + "\n" + dim1 + "\nDIM0_FREQ = " + Number(spec.observe_mhz) +
                                    "\nSPEC_WIDTH0 = " + Number(spec.sweep_hz) + "\nF1_NUCLEUS " + spec.nucleus +
                                    "\nFILTER_FREQ = 4000\nNA = 16\nAT = 128 MS\nPD = 2 RD\nDE = 25 US\n");
  Write_Bytes(folder / out.data, Interleaved_Float32(spec, true));
  out.bad_text = {{"ge.hed", dim0, "DIM0 = 99999999"},
                  {"ge.hed", dim0, "DIM0 = -1024"},
                  {"ge.hed", dim1, "DIM1 = 127"}};
  return out;
}

Built_File Build_Cmx(const fs::path& folder, const Vendor_Spec& spec) {
  Built_File out = Start(folder, "Spec.CMX", "data");
  const std::string al = "AL=" + std::to_string(spec.points), steps = "NO_STEPS=" + std::to_string(spec.rows);
  Write_Text(folder / "acq", "PPFN=" + spec.kind + "\nNA=16\nCH1=" + spec.nucleus + "\nCH2=13C\nSF1=" +
                                 Number(spec.observe_mhz) + "\nSF2=100.6\nSW=" + Number(spec.sweep_hz) +
                                 "\nAQTM=0.128\n" + al + "\nSPEED=5000\nTEMP=25\nPD=2\nRG=10\n" + steps +
                                 "\nSTEP_SIZE=0.25\n");
  Write_Text(folder / "acq_2", "END_DATE=2024/03/15\nEND_TIME=10:20:30\nAC=16\n");
  Write_Text(folder / "proc", "COM=first\nCOM_B=second\nCOM_C=third\n");
  Write_Text(folder / "Spec.CMX", "CMX\r\n");
  const auto n = static_cast<size_t>(spec.points);
  std::vector<uint8_t> b(8 * n * static_cast<size_t>(spec.rows));
  for (int32_t r = 0; r < spec.rows; ++r)
    for (size_t k = 0; k < n; ++k) {
      const auto v = Vendor_Point(spec, static_cast<int32_t>(k), r);
      const size_t row = 8 * n * static_cast<size_t>(r);
      Put_BE_Int32(b, row + 4 * k, static_cast<int32_t>(v.real()));
      Put_BE_Int32(b, row + 4 * (n + k), static_cast<int32_t>(v.imag()));
    }
  Write_Bytes(folder / out.data, b);
  out.bad_text = {{"acq", al, "AL=99999999"}, {"acq", al, "AL=-1024"}, {"acq", steps, "NO_STEPS=999999"}};
  return out;
}

Built_File Build_Nuts(const fs::path& folder, const Vendor_Spec& spec, int type) {
  Built_File out = Start(folder, type == 1 ? "nuts.fid" : "nuts.nut", type == 1 ? "nuts.fid" : "nuts.nut");
  const auto n = static_cast<size_t>(spec.points), rows = static_cast<size_t>(spec.rows);
  std::vector<uint8_t> head;
  if (type == 3) {
    const std::string text = "##TITLE= nuts three\r\n##JCAMP-DXB= 5.0\r\n##DATA TYPE= " +
                             std::string(spec.spectrum ? "NMR SPECTRUM" : "NMR FID") +
                             "\r\n##.OBSERVE FREQUENCY= " + Number(spec.observe_mhz) + "\r\n##.OBSERVE NUCLEUS= ^" +
                             spec.nucleus + "\r\n##NPOINTS= " + std::to_string(spec.points) +
                             "\r\n$$ NUTS SPECIFIC PARAMETERS\r\n##$PULPROG= " + spec.kind +
                             "\r\n##$POINTS= " + std::to_string(spec.rows) + "\r\n##$SW= " + Number(spec.sweep_hz) +
                             "\r\n$$ END OF NUTS SPECIFIC PARAMETERS\r\n##BINARY=\r\n";
    head.assign(text.begin(), text.end());
    out.bad_text = {{out.data, "##NPOINTS= " + std::to_string(spec.points), "##NPOINTS= 99999999"},
                    {out.data, "##NPOINTS= " + std::to_string(spec.points), "##NPOINTS= -5"},
                    {out.data, "##$POINTS= " + std::to_string(spec.rows), "##$POINTS= 9"}};
  } else {
    const int32_t words = type == 1 ? 256 : 300;
    head.assign(8 + 4 * static_cast<size_t>(words), 0);
    Put_LE_Int32(head, 0, 0x04030201);
    Put_LE_Int32(head, 4, words);
    // Type 2 gives its rows as the second dimension's count.
    Put_LE_Int32(head, 8, type == 2 ? 2 : spec.rows);
    if (type == 2) Put_LE_Int32(head, 544, spec.rows);
    Put_LE_Int32(head, 384, spec.points);
    Put_LE_Int32(head, 392, spec.spectrum ? 1 : 0);
    Put_LE_Float32(head, 448, static_cast<float>(spec.sweep_hz));
    Put_LE_Float32(head, 452, static_cast<float>(spec.observe_mhz));
    Put_LE_Float32(head, 456, static_cast<float>(spec.shift_ppm));
    const size_t name_at = type == 1 ? 820 : 1040;
    for (size_t i = 0; i < spec.kind.size(); ++i) head[name_at + i] = static_cast<uint8_t>(spec.kind[i]);
    Put_LE_Float32(head, 1024, 25.0f);
    Put_LE_Float32(head, 1028, 10.5f);
    if (type == 2) {
      Put_LE_Float32(head, 1032, 2.0f);
      Put_LE_Int32(head, 1036, 16);
    }
    out.bad_counts = {{out.data, 384, LE32_Bytes(0x7FFFFFFF)},
                      {out.data, 384, LE32_Bytes(-16)},
                      {out.data, type == 1 ? size_t{8} : size_t{544}, LE32_Bytes(9)}};
    if (type == 2) out.bad_counts.push_back({out.data, 4, LE32_Bytes(0x7FFFFFFF)});
  }
  std::vector<uint8_t> b = head;
  b.resize(head.size() + 4 * rows * (1 + 2 * n));
  for (size_t r = 0; r < rows; ++r) {
    const size_t at = head.size() + 4 * r * (1 + 2 * n);
    Put_LE_Int32(b, at, static_cast<int32_t>(r + 1));  // the row mark
    for (size_t k = 0; k < n; ++k) {
      const auto v = Vendor_Point(spec, static_cast<int32_t>(k), static_cast<int32_t>(r));
      Put_LE_Float32(b, at + 4 + 4 * k, v.real());
      Put_LE_Float32(b, at + 4 + 4 * (n + k), v.imag());
    }
  }
  Write_Bytes(folder / out.data, b);
  return out;
}

Built_File Build_Mac(const fs::path& folder, const Vendor_Spec& spec) {
  Built_File out = Start(folder, "mac.import", "mac.import");
  const auto n = static_cast<size_t>(spec.points);
  std::vector<uint8_t> b(2048 + 8 * n, 0);
  Put_BE_Int32(b, 0, 1);
  Put_BE_Int16(b, 98, 5);
  Put_BE_Float32(b, 132, 4.5f);
  Put_BE_Float32(b, 136, 9.0f);
  Put_BE_Float32(b, 140, 0.5f);
  Put_BE_Int32(b, 1024, 4);
  b[1032] = spec.spectrum ? 1 : 0;
  Put_BE_Int32(b, 1074, spec.points);
  Put_BE_Int32(b, 1078, 16);
  std::string kind = spec.kind;
  kind.resize(6, ' ');
  for (size_t i = 0; i < 6; ++i) b[1114 + i] = static_cast<uint8_t>(kind[i]);
  Put_BE_Float64(b, 1186, spec.observe_mhz);
  Put_BE_Float64(b, 1194, spec.sweep_hz);
  Put_BE_Float64(b, 1210, spec.points / spec.sweep_hz);
  Put_BE_Float64(b, 1242, 2.0);
  Put_BE_Int16(b, 1422, 3);
  Put_BE_Int16(b, 1436, 12);
  Put_BE_Float64(b, 1462, -spec.shift_ppm);
  for (size_t k = 0; k < n; ++k) {
    const auto v = Vendor_Point(spec, static_cast<int32_t>(k), 0);
    Put_BE_Float32(b, 2048 + 8 * k, v.real());
    Put_BE_Float32(b, 2048 + 8 * k + 4, v.imag());
  }
  Write_Bytes(folder / out.data, b);
  out.bad_counts = {{out.data, 1074, BE32_Bytes(0x7FFFFFFF)},
                    {out.data, 1074, BE32_Bytes(-1024)},
                    {out.data, 0, BE32_Bytes(0x7FFFFFFF)}};
  return out;
}

Built_File Build_Csv(const fs::path& folder, const Vendor_Spec& spec) {
  Built_File out = Start(folder, "keyed.csv", "keyed.csv");
  std::string t = "$CSVSTART\r\nEXMOD," + spec.kind + "\r\nOBNUC," + spec.nucleus + "\r\nOFR," +
                  Number(spec.observe_mhz * 1000) + ",KHZ\r\nFREQU," + Number(spec.sweep_hz / 1000) +
                  ",KHZ\r\nSCANS,16\r\nSMODE," + (spec.spectrum ? "1" : "0") +
                  "\r\nCOMNT,keyed file\r\nCGNBL,7\r\nPOINT," + std::to_string(spec.points) + "\r\n$END\r\n";
  for (int32_t k = 0; k < spec.points; ++k) {
    const auto v = Vendor_Point(spec, k, 0);
    t += Number(v.real()) + "," + Number(v.imag()) + "\r\n";
  }
  Write_Text(folder / out.data, t);
  return out;
}

// ---- VAX numbers: sign and 8-bit exponent (bias 128) over a fraction
// 0.5 <= f < 1 whose top bit is hidden, in 16-bit words, low word first ----

namespace {
void Put_Vax(std::vector<uint8_t>& b, size_t off, double v, int bits) {
  const size_t bytes = bits == 24 ? 4 : 8;
  for (size_t i = 0; i < bytes; ++i) b[off + i] = 0;
  if (v == 0) return;
  int e = 0;
  const double f = std::frexp(std::fabs(v), &e);
  const auto frac = static_cast<uint64_t>(std::llround(std::ldexp(f, bits)));
  const unsigned ex = static_cast<unsigned>(e + 128);
  b[off + 1] = static_cast<uint8_t>((v < 0 ? 0x80 : 0) | (ex >> 1));
  b[off] = static_cast<uint8_t>(((ex & 1u) << 7) | ((frac >> (bits - 8)) & 0x7F));
  b[off + 3] = static_cast<uint8_t>(frac >> (bits - 16));
  b[off + 2] = static_cast<uint8_t>(frac >> (bits - 24));
  if (bytes == 8) {
    b[off + 5] = static_cast<uint8_t>(frac >> 8);
    b[off + 4] = static_cast<uint8_t>(frac);
  }
}

void Put_Text(std::vector<uint8_t>& b, size_t off, const std::string& text) {
  std::copy(text.begin(), text.end(), b.begin() + static_cast<long>(off));
}

std::vector<uint8_t> LE32(int32_t v) { return LE32_Bytes(v); }

// The Varian words of one value.
void Put_Varian(std::vector<uint8_t>& b, size_t off, double v, Varian_Words w) {
  if (w == Varian_Words::Float32) Put_BE_Float32(b, off, static_cast<float>(v));
  else if (w == Varian_Words::Int16) Put_BE_Int16(b, off, static_cast<int16_t>(v));
  else Put_BE_Int32(b, off, static_cast<int32_t>(v));
}

// One procpar entry: header line (name, subtype, type 1 real / 2 string,
// limits, groups, protection, active, tree), the values, the enum line.
std::string Procpar_Entry(const std::string& name, const std::vector<std::string>& values, bool text) {
  std::string out = name + " 1 " + (text ? "2" : "1") + " 1e+18 -1e+18 0 2 1 0 1 64\n";
  out += std::to_string(values.size());
  for (size_t i = 0; i < values.size(); ++i)
    out += text ? (i == 0 ? " \"" : "\"") + values[i] + "\"\n" : " " + values[i];
  if (!text || values.empty()) out += "\n";
  return out + "0 \n";
}
}  // namespace

void Put_Vax_F(std::vector<uint8_t>& b, size_t off, double v) { Put_Vax(b, off, v, 24); }
void Put_Vax_D(std::vector<uint8_t>& b, size_t off, double v) { Put_Vax(b, off, v, 40); }

Built_File Build_Varian(const fs::path& folder, const Vendor_Spec& spec, Varian_Words words) {
  const bool spectrum = spec.spectrum;
  Built_File out = Start(folder, spectrum ? "datdir/data" : "fid", spectrum ? "datdir/data" : "fid");
  const double zero = spec.observe_mhz / (1 + spec.shift_ppm * 1e-6);
  const double rfl = (zero - spec.observe_mhz) * 1e6 + spec.sweep_hz / 2;
  std::vector<std::string> d1;
  for (int32_t r = 0; r < spec.rows; ++r) d1.push_back(Number(0.1 * (r + 1)));
  const std::string np = Procpar_Entry("np", {std::to_string(2 * spec.points)}, false);
  std::string pp = Procpar_Entry("sfrq", {Number(spec.observe_mhz)}, false) +
                   Procpar_Entry("sw", {Number(spec.sweep_hz)}, false) + np +
                   Procpar_Entry("tn", {Symbol_First(spec.nucleus)}, true) +
                   Procpar_Entry("dn", {"C13"}, true) + Procpar_Entry("sample", {""}, true) +
                   Procpar_Entry("solvent", {"cdcl3"}, true) + Procpar_Entry("seqfil", {spec.kind}, true) +
                   Procpar_Entry("ct", {"16"}, false) + Procpar_Entry("nt", {"16"}, false) +
                   Procpar_Entry("temp", {"25"}, false) + Procpar_Entry("gain", {"30"}, false) +
                   Procpar_Entry("pw", {"8.5"}, false) + Procpar_Entry("d1", d1, false) +
                   Procpar_Entry("array", {spec.rows > 1 ? "d1" : ""}, true) +
                   Procpar_Entry("arraydim", {std::to_string(spec.rows)}, false) +
                   Procpar_Entry("rfl", {Number(rfl)}, false) + Procpar_Entry("rfp", {"0"}, false) +
                   Procpar_Entry("date", {"Mar 15 2024"}, true) +
                   Procpar_Entry("comment", {"first", "second line"}, true);
  Write_Text(folder / "procpar", pp);
  Write_Text(folder / "text", "built varian\nset\n");

  if (spectrum) words = Varian_Words::Float32;
  const size_t word = words == Varian_Words::Int16 ? 2 : 4;
  const auto n = static_cast<size_t>(spec.points), rows = static_cast<size_t>(spec.rows);
  const size_t stride = 28 + 2 * n * word;
  std::vector<uint8_t> b(32 + rows * stride, 0);
  Put_BE_Int32(b, 0, spec.rows);
  Put_BE_Int32(b, 4, 1);
  Put_BE_Int32(b, 8, 2 * spec.points);
  Put_BE_Int32(b, 12, static_cast<int32_t>(word));
  Put_BE_Int32(b, 16, static_cast<int32_t>(2 * n * word));
  Put_BE_Int32(b, 20, static_cast<int32_t>(stride));
  Put_BE_Int16(b, 24, 0);
  // Status: data, 32-bit words, float words, spectrum, complex, parameters.
  const int16_t status = spectrum ? 0x1B
                         : words == Varian_Words::Float32 ? 0x49
                         : words == Varian_Words::Int32   ? 0x45
                                                          : 0x41;
  Put_BE_Int16(b, 26, status);
  Put_BE_Int32(b, 28, 1);
  for (size_t r = 0; r < rows; ++r) {
    const size_t block = 32 + r * stride;
    Put_BE_Int16(b, block + 4, static_cast<int16_t>(r + 1));  // the block's index
    for (size_t k = 0; k < n; ++k) {
      const auto v = Vendor_Point(spec, static_cast<int32_t>(k), static_cast<int32_t>(r));
      // A FID is stored unconjugated: the reader negates its imaginary part.
      Put_Varian(b, block + 28 + 2 * k * word, v.real(), words);
      Put_Varian(b, block + 28 + (2 * k + 1) * word, spectrum ? v.imag() : -v.imag(), words);
    }
  }
  fs::create_directories((folder / out.data).parent_path());
  Write_Bytes(folder / out.data, b);
  out.bad_counts = {{out.data, 0, BE32_Bytes(0x7FFFFFFF)}, {out.data, 0, BE32_Bytes(-5)},
                    {out.data, 8, BE32_Bytes(0x7FFFFFFF)}, {out.data, 8, BE32_Bytes(-2048)}};
  out.bad_text = {{"procpar", np, Procpar_Entry("np", {"99999999"}, false)},
                  {"procpar", np, Procpar_Entry("np", {"-2048"}, false)},
                  {"procpar", np, "np 1 1\n"}};
  return out;
}

Built_File Build_Ex(const fs::path& folder, const Vendor_Spec& spec, bool long_line) {
  Built_File out = Start(folder, "ex.gxd", "ex.gxd");
  const double mhz = std::floor(spec.observe_mhz);
  // A spectrum keeps the carrier, point n / 2 of the ascending index, as
  // its reference; the file counts its points from the other end.
  const std::vector<std::pair<std::string, std::string>> keys = {
      {"EXMOD", spec.kind}, {"OBNUC", spec.nucleus}, {"OFR", Number(mhz) + " MHZ"},
      {"OBSET", Number((spec.observe_mhz - mhz) * 1000) + " KHZ"}, {"OBFIN", "0 HZ"},
      {"FREQU", Number(spec.sweep_hz) + " HZ"}, {"POINT", std::to_string(2 * spec.points)},
      {"TIMES", "16"}, {"DTYPE", "0"}, {"SMODE", spec.spectrum ? "1" : "0"}, {"SMEXR", Number(spec.shift_ppm)},
      {"SMTMS", std::to_string(spec.points / 2 - 1)}, {"CLPNT", std::to_string(spec.rows)},
      {"FLT", "4000 HZ"}, {"FILTR", "5000 HZ"}, {"ACQTM", "0.128 SEC"}, {"PD", "2 SEC"}, {"IRRPW", "12.6"},
      {"COMNT", "built gx file"}};
  std::string text;
  if (long_line) {
    // One line: COMNT with its 64 characters first, then each key with its
    // value in a field of 16.
    std::string comment = "built gx file";
    comment.resize(64, ' ');
    text = "COMNT  " + comment;
    for (const auto& [k, v] : keys) {
      if (k == "COMNT") continue;
      std::string field = k + "  " + v;
      field.resize(std::max<size_t>(16, field.size() + 1), ' ');
      text += field;
    }
    text += "\r\n";
  } else {
    text = "JEOL GSX DATA PARAMETERS\r\n";
    for (const auto& [k, v] : keys) text += k + "  " + v + "\r\n";
    text += "\r\nPOINT  64\r\n";
  }
  Write_Text(folder / "ex.gxp", text);
  Write_Bytes(folder / out.data, Interleaved_Float32(spec, false));
  const std::string point = "POINT  " + std::to_string(2 * spec.points);
  out.bad_text = {{"ex.gxp", point, "POINT  99999999"},
                  {"ex.gxp", point, "POINT  -2048   "},
                  {"ex.gxp", "CLPNT  " + std::to_string(spec.rows), "CLPNT  9999"}};
  return out;
}

Built_File Build_Alpha(const fs::path& folder, const Vendor_Spec& spec, bool long_head) {
  Built_File out = Start(folder, "alpha.nmf", "alpha.nmf");
  const size_t start = long_head ? 16384 : 8704;
  const auto n = static_cast<size_t>(spec.points);
  std::vector<uint8_t> b(start + 8 * n, 0);
  Put_Text(b, 0, "NFT1DT");
  Put_LE_Int32(b, 40, long_head ? 33 : 1);
  Put_LE_Int32(b, 516, spec.spectrum ? 1 : 0);
  Put_LE_Int32(b, 576, spec.points);
  Put_LE_Int32(b, 584, 16);
  // The reference point counts from the highest frequency.
  Put_LE_Int32(b, 824, spec.points / 2);
  Put_LE_Int32(b, 1452, 4);
  Put_LE_Int32(b, 1528, 20);
  Put_LE_Int16(b, 1540, 3);
  Put_Vax_D(b, 1816, spec.sweep_hz);
  Put_Vax_D(b, 1840, spec.points / spec.sweep_hz);
  Put_Vax_D(b, 1848, 5000);
  Put_Vax_D(b, 1888, 2.0);
  Put_Vax_D(b, 1896, 8.5e-6);
  Put_Vax_D(b, 2144, 16);
  const double mhz = std::floor(spec.observe_mhz);
  Put_Vax_D(b, 2152, mhz * 1e6);
  Put_Vax_D(b, 2184, (spec.observe_mhz - mhz) * 1e6);
  Put_Vax_D(b, 2320, 25.5);
  Put_Vax_D(b, 3696, spec.shift_ppm);
  Put_Text(b, 5304, spec.nucleus);
  Put_Text(b, 5312, "13C");
  Put_Text(b, 5440, spec.kind);
  for (size_t k = 0; k < n; ++k) {
    const auto v = Vendor_Point(spec, static_cast<int32_t>(k), 0);
    const size_t re = start + 4 * k, im = start + 4 * (n + k);
    if (spec.spectrum) {
      Put_Vax_F(b, re, v.real());
      Put_Vax_F(b, im, v.imag());
    } else {
      Put_LE_Float32(b, re, v.real());
      Put_LE_Float32(b, im, v.imag());
    }
  }
  Write_Bytes(folder / out.data, b);
  out.bad_counts = {{out.data, 576, LE32(0x7FFFFFFF)}, {out.data, 576, LE32(-1024)}, {out.data, 576, LE32(65536)}};
  return out;
}

Built_File Build_Lambda(const fs::path& folder, const Vendor_Spec& spec) {
  const std::string name = spec.spectrum ? "lambda.nmdata" : "lambda.nmfid";
  Built_File out = Start(folder, name, name);
  constexpr size_t block = 256, block_size = 4096, data = block + block_size;
  const auto n = static_cast<size_t>(spec.points);
  std::vector<uint8_t> b(data + 8 * n, 0);
  Put_Text(b, 0, "JEOLUSF001");
  Put_LE_Int32(b, 64, block);
  Put_LE_Int32(b, 68, block_size);
  Put_LE_Int32(b, 80, data);
  Put_LE_Int32(b, 84, static_cast<int32_t>(8 * n));
  Put_Text(b, block + 290, spec.kind);
  Put_Text(b, block + 364, "CDCL3");
  Put_Text(b, block + 503, spec.nucleus);
  Put_LE_Int32(b, block + 728, spec.points);
  Put_LE_Int32(b, block + 812, 16);
  Put_LE_Float32(b, block + 896, static_cast<float>(spec.sweep_hz));
  Put_LE_Float32(b, block + 928, static_cast<float>(spec.shift_ppm));
  Put_LE_Int32(b, block + 944, spec.points / 2);
  Put_LE_Float64(b, block + 1088, 2.0);
  const double mhz = std::floor(spec.observe_mhz);
  Put_LE_Float64(b, block + 2000, mhz * 1e6);
  Put_LE_Float64(b, block + 2064, (spec.observe_mhz - mhz) * 1e6);
  Put_LE_Int32(b, block + 2492, 16);
  Put_LE_Float32(b, block + 2568, static_cast<float>(spec.points / spec.sweep_hz));
  Put_LE_Float32(b, block + 3560, 25.5f);
  for (size_t k = 0; k < n; ++k) {
    const auto v = Vendor_Point(spec, static_cast<int32_t>(k), 0);
    Put_LE_Float32(b, data + 4 * k, v.real());
    Put_LE_Float32(b, data + 4 * (n + k), v.imag());
  }
  Write_Bytes(folder / out.data, b);
  out.bad_counts = {{out.data, block + 728, LE32(0x7FFFFFFF)}, {out.data, block + 728, LE32(-1024)},
                    {out.data, 64, LE32(0x7FFFFFFF)}, {out.data, 80, LE32(-8)}};
  return out;
}

std::vector<fs::path> Damaged_Copies(const Built_File& built, const fs::path& where) {
  std::vector<fs::path> out;
  int count = 0;
  auto copy = [&] {
    const fs::path f = where / (built.folder.filename().string() + "_" + std::to_string(count++));
    fs::create_directories(f);
    fs::copy(built.folder, f, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    out.push_back(f / built.open);
    return f;
  };
  const std::vector<uint8_t> whole = Read_Bytes(built.folder / built.data);
  for (size_t cut : {size_t{0}, size_t{1}, size_t{7}, size_t{64}, size_t{700}, whole.size() / 3, whole.size() / 2,
                     whole.size() - 1}) {
    if (cut >= whole.size()) continue;
    const fs::path f = copy();
    Write_Bytes(f / built.data, {whole.begin(), whole.begin() + static_cast<long>(cut)});
  }
  for (const auto& p : built.bad_counts) {
    const fs::path f = copy();
    std::vector<uint8_t> b = Read_Bytes(f / p.file);
    std::copy(p.bytes.begin(), p.bytes.end(), b.begin() + static_cast<long>(p.offset));
    Write_Bytes(f / p.file, b);
  }
  for (const auto& e : built.bad_text) {
    const fs::path f = copy();
    std::string t = Read_Text(f / e.file);
    const size_t at = t.find(e.from);
    if (at != std::string::npos) t.replace(at, e.from.size(), e.to);
    Write_Text(f / e.file, t);
  }
  return out;
}

}  // namespace tevo::test
