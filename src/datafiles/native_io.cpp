// Shared pieces of the native formats: file image access, the parameter
// block, integral, peak and inset records, font records and the keyed page
// blocks.
#include "datafiles/native_io.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <fstream>
#include <iterator>
#include <span>

#include "overlay/difference.h"
#include "session/messages.h"
#include "session/session.h"
#include "session/text_encoding.h"

namespace tevo::datafiles::native_io {

// ---------------------------------------------------------------- writer ----

void Image_Writer::Raw(size_t off, const std::vector<uint8_t>& b) {
  Reach(off + b.size());
  std::copy(b.begin(), b.end(), bytes.begin() + static_cast<std::ptrdiff_t>(off));
}

namespace {
// Shift-JIS bytes of the text cut after the last whole character that fits.
std::string Sjis_Cut(const std::string& utf8, size_t width) {
  std::string sjis = Utf8_To_Sjis(utf8);
  size_t n = 0;
  while (n < sjis.size()) {
    const size_t step = Is_Sjis_Lead(static_cast<unsigned char>(sjis[n])) ? 2 : 1;
    if (n + step > width) break;
    n += step;
  }
  sjis.resize(std::min(n, sjis.size()));
  return sjis;
}
}  // namespace

void Image_Writer::Text_Field(size_t off, const std::string& utf8, size_t width) {
  const std::string sjis = Sjis_Cut(utf8, width);
  Reach(off + width);
  std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(off), width, 0);
  std::copy(sjis.begin(), sjis.end(), bytes.begin() + static_cast<std::ptrdiff_t>(off));
}

size_t Image_Writer::Text_Block(size_t off, const std::string& utf8) {
  const std::string sjis = Utf8_To_Sjis(utf8);
  Reach(off + sjis.size() + 4);
  std::copy(sjis.begin(), sjis.end(), bytes.begin() + static_cast<std::ptrdiff_t>(off));
  return sjis.size() + 4;
}

size_t Image_Writer::Next_Section() {
  const size_t next = (bytes.size() / 16 + 1) * 16;
  Reach(next);
  return next;
}

// ---------------------------------------------------------------- reader ----

int16_t Image_Reader::I16(size_t off) const {
  if (!Has(off, 2)) return short_read = true, 0;
  return Decode_LE_Int16(bytes, off);
}
int32_t Image_Reader::I32(size_t off) const {
  if (!Has(off, 4)) return short_read = true, 0;
  return Decode_LE_Int32(bytes, off);
}
float Image_Reader::F32(size_t off) const {
  if (!Has(off, 4)) return short_read = true, 0.0f;
  return Decode_LE_Float32(bytes, off);
}
double Image_Reader::F64(size_t off) const {
  if (!Has(off, 8)) return short_read = true, 0.0;
  return Decode_LE_Float64(bytes, off);
}
std::string Image_Reader::Text(size_t off, size_t width) const {
  if (!Has(off, width)) {
    short_read = true;
    if (off >= bytes.size()) return {};
  }
  return Fetch_Text(bytes, off, width);
}
std::vector<uint8_t> Image_Reader::Raw(size_t off, size_t n) const {
  if (off >= bytes.size()) return {};
  n = std::min(n, bytes.size() - off);
  return {bytes.begin() + static_cast<std::ptrdiff_t>(off),
          bytes.begin() + static_cast<std::ptrdiff_t>(off + n)};
}

// ------------------------------------------------------- parameter block ----

namespace {

// Values of the parameter section that live beside Data_Param.
struct Param_Extras {
  double obs = 0, zero_ppm = 400;
  float max_abs = 0.1f, y_mag = 0.95f, y_offset = 0, fid_scale = 1;
  int32_t rows = 1;
  std::string array_name, array_unit;
  int16_t array_mode = 0;
  float array_start = 0, array_step = 0;
};

// Calls the visitor for every field of the parameter section with its
// offset in the main format. One table serves the writer and the reader.
template <class V>
void Param_Fields(V& v, Data_Param& p, Param_Extras& x) {
  v.Text(32, 32, p.Probe_Name);
  v.Text(64, 32, p.Instrument_Name);
  v.Text(128, 32, p.Gradient_Program);
  v.F32(260, p.CSPED);
  v.F32(268, p.CTEMP);
  v.F32(344, p.OBFRQ);
  v.F32(348, p.OBSET);
  v.F32(352, p.OBFIN);
  v.I16(364, p.OBATN);
  v.F32(368, p.IRFRQ);
  v.F32(372, p.IRSET);
  v.F32(376, p.IRFIN);
  v.F32(388, p.IRPHS);
  v.I16(392, p.IRATN);
  v.I16(396, p.IRRPW);
  v.F32(404, p.TRFRQ);
  v.F32(408, p.TRSET);
  v.F32(412, p.TRFIN);
  v.I16(428, p.TRATN);
  v.I16(432, p.TRRPW);
  for (int k = 0; k < 5; ++k) v.I32(440 + 4 * k, p.LOOP[k]);
  for (int k = 0; k < 5; ++k) v.F32(460 + 4 * k, p.PS[k]);
  v.F32(500, p.TR);
  v.F32(504, p.INIWT);
  v.F32(508, p.DEADT);
  v.F32(512, p.DELAY);
  v.F32(520, p.INTVL);
  v.F32(524, p.FILTR);
  v.F32(532, p.ADBIT);
  v.Text(544, 8, p.TRNUC);
  v.Text(552, 216, p.DATIM);
  v.Text(768, 16, p.SLVNT);
  v.Text(784, 32, p.EXMOD);
  v.Text(816, 8, p.OBNUC);
  v.Text(824, 8, p.IRNUC);
  v.I32(832, p.TIMES);
  v.I32(836, p.SCANS);
  v.I32(840, p.DUMMY);
  v.I32(844, p.TOSCN);
  v.F32(848, p.ACQTM);
  v.F32(852, p.PD);
  for (int k = 0; k < 5; ++k) v.F32(856 + 4 * k, p.PW[k]);
  for (int k = 0; k < 5; ++k) v.F32(876 + 4 * k, p.PI[k]);
  v.F32(900, p.Pulse90_2);
  v.I32(916, p.POINT);
  v.F32(920, p.FREQU);
  v.F32(924, p.RESOL);
  v.F32(928, p.SMTMS);
  v.F32(932, p.SMEXR);
  v.F64(976, x.obs);
  v.F64(984, x.zero_ppm);
  v.F64(1072, p.Irr_Frequency);
  v.F32(1104, x.max_abs);
  v.I32(1108, x.rows);
  v.F32(1120, x.y_mag);
  v.F32(1124, x.y_offset);
  v.F32(1148, x.fid_scale);
  v.F32(1152, p.SMEXR);
  v.I16(1156, p.Window_Code);
  for (int k = 0; k < 32; ++k) {
    v.F32(1280 + 4 * k, p.P_List[k]);
    v.F32(1408 + 4 * k, p.D_List[k]);
    v.F32(1536 + 4 * k, p.CNST_List[k]);
    v.F32(1664 + 4 * k, p.Extra_List[k]);
  }
  v.Text(1792, 64, p.Pulse_Program);
  v.Text(1920, 16, x.array_name);
  v.I16(1936, x.array_mode);
  v.F32(1940, x.array_start);
  v.F32(1944, x.array_step);
  v.Text(1952, 8, x.array_unit);
}

// The settings value of a key as a number, 0 when the key is not known.
double Setting_Or_Zero(const Session& s, const char* key) {
  return session::Setting_Index(key) >= 0 ? s.settings.Real(key) : 0.0;
}

}  // namespace

void Write_Param_Section(Image_Writer& w, const Session& s, const Param_Layout& at) {
  // Spare and free-text fields come from the block as last read.
  std::vector<uint8_t> block = s.Native.Param;
  block.resize(Param_Section_Size, 0);
  w.Raw(at.At(0), std::vector<uint8_t>(block.begin(), block.begin() + 256));
  w.Raw(at.At(256), std::vector<uint8_t>(block.begin() + 256, block.begin() + 1280));
  w.Raw(at.At(1280), std::vector<uint8_t>(block.begin() + 1280, block.end()));

  Data_Param p = s.Param;
  Param_Extras x;
  x.obs = s.Observe_Frequency;
  x.zero_ppm = s.Spectrum_Frequency;
  x.max_abs = s.Max_Abs;
  x.y_mag = s.Y_Mag;
  x.y_offset = s.Y_Offset;
  x.fid_scale = s.Fid_Scale;
  x.rows = std::max(s.Array_Rows, 1);
  if (s.Array_Rows > 1) x.array_name = s.Delay_Name;
  x.array_unit = s.Delay_Unit;
  x.array_mode = s.Delay_Linear;
  x.array_start = s.Delay_Start;
  x.array_step = s.Delay_Step;
  Param_Writer v{w, at};
  Param_Fields(v, p, x);

  w.Text_Field(at.At(0), p.DATIM, 32);
  // RGAIN as int16; a gain that needs more than 15 bits is written as -1.
  w.I16(at.At(528), (p.RGAIN >= -32768 && p.RGAIN <= 32767) ? static_cast<int16_t>(p.RGAIN) : -1);
  w.F32(at.At(896), (p.Pulse90 > 0 && p.Pulse90 < 100) ? p.Pulse90 : 10.6f);
  w.I32(at.At(912), 1);  // a native file always holds a spectrum
  w.F64(at.At(1136), Setting_Or_Zero(s, "CENTRE REF FREQ"));
  w.F32(at.At(1144), static_cast<float>(Setting_Or_Zero(s, "CENTRE REF")));
}

void Read_Param_Section(const Image_Reader& r, Session& s, const Param_Layout& at) {
  std::vector<uint8_t> block = r.Raw(at.At(0), 256);
  block.resize(256, 0);
  auto add = [&](size_t from, size_t n) {
    std::vector<uint8_t> part = r.Raw(at.At(from), n);
    part.resize(n, 0);
    block.insert(block.end(), part.begin(), part.end());
  };
  add(256, 1024);
  add(1280, Param_Section_Size - 1280);
  s.Native.Param = std::move(block);

  Param_Extras x;
  Param_Reader v{r, at};
  Param_Fields(v, s.Param, x);
  s.Param.RGAIN = r.I32(at.At(528));
  s.Param.Pulse90 = r.F32(at.At(896));
  s.Param.SMODE = r.I16(at.At(912));
  s.Observe_Frequency = x.obs;
  s.Spectrum_Frequency = x.zero_ppm;
  s.Max_Abs = x.max_abs;
  s.Y_Mag = x.y_mag;
  s.Y_Offset = x.y_offset;
  s.Fid_Scale = x.fid_scale;
  s.Array_Rows = std::max(x.rows, 1);
  s.Delay_Name = x.array_name;
  s.Delay_Unit = x.array_unit;
  s.Delay_Linear = x.array_mode;
  s.Delay_Start = x.array_start;
  s.Delay_Step = x.array_step;
  if (session::Setting_Index("CENTRE REF FREQ") >= 0)
    s.settings.Set("CENTRE REF FREQ", r.F64(at.At(1136)));
  if (session::Setting_Index("CENTRE REF") >= 0)
    s.settings.Set("CENTRE REF", static_cast<double>(r.F32(at.At(1144))));
}

void Write_Data_Block(Image_Writer& w, size_t at, const Session& s, int32_t points, int32_t rows) {
  w.Reach(at + 8 * static_cast<size_t>(points) * static_cast<size_t>(rows));
  for (const Point_Array* a : {&s.Spec_Re, &s.Spec_Im})
    for (int32_t r = 0; r < rows; ++r)
      for (int32_t i = 0; i < points; ++i, at += 4)
        w.F32(at, a->Empty() ? 0.0f : (*a)(static_cast<size_t>(i), static_cast<size_t>(r)));
}

void Read_Data_Block(const Image_Reader& r, size_t at, Session& s, int32_t points, int32_t rows) {
  for (auto [shown, ft] : {std::pair{&s.Spec_Re, &s.Ft_Re}, std::pair{&s.Spec_Im, &s.Ft_Im}})
    for (int32_t row = 0; row < rows; ++row)
      for (int32_t i = 0; i < points; ++i, at += 4) {
        const float v = r.F32(at);
        (*shown)(static_cast<size_t>(i), static_cast<size_t>(row)) = v;
        (*ft)(static_cast<size_t>(i), static_cast<size_t>(row)) = v;
      }
  s.Is_Spectrum = 1;
  s.Is_Fid = 0;
}

bool Data_Block_Fits(const Image_Reader& r, int64_t offset, int32_t points, int32_t rows) {
  if (points < 1 || rows < 1) return false;
  if (offset == 0) return rows == 1;
  if (offset < 0 || static_cast<uint64_t>(offset) >= r.Size()) return false;
  return r.Has(static_cast<size_t>(offset), 8 * static_cast<size_t>(points) * static_cast<size_t>(rows));
}

void Finish_Param_Read(Session& s) {
  Data_Param& p = s.Param;
  if (p.POINT > 0) p.RESOL = static_cast<float>(static_cast<double>(p.FREQU) / p.POINT);
  if (!(s.Y_Mag > 0 && s.Y_Mag < 10000)) s.Y_Mag = 0.95f;
  if (!(s.Max_Abs >= 0.1f)) s.Max_Abs = 0.1f;
  s.Y_Full_Scale = s.Max_Abs / s.Y_Mag;
  s.Spec_Points = p.POINT;
  if (s.Spectrum_Frequency > 0 && p.POINT > 0) {
    s.Spec_Axis.resize(static_cast<size_t>(std::max(s.Point_Capacity, p.POINT)) + 1, 0.0f);
    for (int32_t i = 0; i < p.POINT; ++i)
      s.Spec_Axis[static_cast<size_t>(i)] = static_cast<float>(
          (i - static_cast<double>(p.SMTMS)) * p.FREQU / s.Spectrum_Frequency / p.POINT + p.SMEXR);
  }
}

// ------------------------------------------------------------- integrals ----

size_t Write_Integrals(Image_Writer& w, size_t off, const std::vector<Integ_Rec>& list,
                       int32_t cur, float ref, float y_mag, float scale, int16_t disp_mode) {
  w.Reach(off + 24);
  if (list.empty()) {
    w.I32(off + 8, -1);  // no current integral
  } else {
    w.I32(off, static_cast<int32_t>(list.size()));
    w.I16(off + 4, disp_mode);
    w.I32(off + 8, cur);
    w.F32(off + 12, ref);
    w.F32(off + 16, y_mag);
    w.F32(off + 20, scale);
  }
  size_t at = off + 24;
  for (const Integ_Rec& g : list) {
    w.I32(at, g.End_Point);
    w.I32(at + 4, g.Start_Point);
    w.F32(at + 8, g.B0);
    w.F32(at + 12, g.B1);
    w.F32(at + 16, g.Curve_Y);
    at += 20;
  }
  return at - off;
}

std::vector<Integ_Rec> Read_Integrals(const Image_Reader& r, size_t off, size_t size,
                                      Integ_Head& head) {
  std::vector<Integ_Rec> list;
  const int32_t count = r.I32(off);
  head.cur = r.I32(off + 8);
  if (count <= 0) return list;
  head.disp_mode = r.I16(off + 4);
  head.ref = r.F32(off + 12);
  head.y_mag = r.F32(off + 16);
  head.scale = r.F32(off + 20);
  const int32_t fit = static_cast<int32_t>(size >= 24 ? (size - 24) / 20 : 0);
  const int32_t n = std::min({count, Integ_Max, fit});
  for (int32_t k = 0; k < n; ++k) {
    list.push_back(Read_Integ_Record(r, off + 24 + 20 * static_cast<size_t>(k)));
  }
  return list;
}

Integ_Rec Read_Integ_Record(const Image_Reader& r, size_t at) {
  Integ_Rec g;
  g.End_Point = r.I32(at);
  g.Start_Point = r.I32(at + 4);
  g.B0 = r.F32(at + 8);
  g.B1 = r.F32(at + 12);
  g.Curve_Y = r.F32(at + 16);
  return g;
}

int32_t Point_Of_Frequency(float hz, float resol, int32_t points) {
  if (!(resol > 0)) return 0;
  const double q = static_cast<double>(hz) / resol;
  const int32_t pt = std::isfinite(q) ? static_cast<int32_t>(std::clamp(q, -1.0, 2147483647.0)) : 0;
  return std::clamp(pt, 0, points > 1 ? points - 1 : 0);
}

// ----------------------------------------------------------------- peaks ----

size_t Write_Peaks(Image_Writer& w, size_t off, const std::vector<Peak_Rec>& list,
                   const Peak_Levels& levels) {
  w.I32(off, static_cast<int32_t>(list.size()));
  w.I32(off + 4, 2);
  w.F32(off + 8, levels.peak);
  w.F32(off + 12, levels.base);
  w.F32(off + 16, levels.noise);
  w.F32(off + 20, levels.max_abs);
  size_t at = off + 24;
  for (const Peak_Rec& p : list) {
    w.F32(at, p.Freq_Hz);
    w.F32(at + 4, p.Label_Dx);
    w.F32(at + 8, p.Label_Dy);
    w.I16(at + 12, p.Height);
    w.Reach(at + 20);
    at += 20;
  }
  return at - off;
}

std::vector<Peak_Rec> Read_Peaks(const Image_Reader& r, size_t off, size_t size,
                                 Peak_Levels& levels, float resol, float frequ, int32_t points) {
  std::vector<Peak_Rec> list;
  const int32_t count = r.I32(off);
  const int32_t layout = r.I32(off + 4);
  levels.peak = r.F32(off + 8);
  levels.base = r.F32(off + 12);
  levels.noise = r.F32(off + 16);
  levels.max_abs = r.F32(off + 20);
  const size_t rec = layout > 0 ? 20 : 8;
  const int32_t fit = static_cast<int32_t>(size >= 24 ? (size - 24) / rec : 0);
  const int32_t n = std::min({count, Peak_Max, fit});
  // Peaks are kept by frequency, so a change of the point count keeps them.
  auto point_of = [&](float hz) { return Point_Of_Frequency(hz, resol, points); };
  for (int32_t k = 0; k < n; ++k) {
    const size_t at = off + 24 + rec * static_cast<size_t>(k);
    Peak_Rec p;
    if (layout < 0) {
      p.Point = r.I32(at);
      if (p.Point < 0 || p.Point >= points) p.Point = 0;
      p.Freq_Hz = points > 0 ? static_cast<float>(static_cast<double>(p.Point) * frequ / points) : 0;
    } else if (layout == 0) {
      p.Freq_Hz = r.F32(at + 4);
      p.Point = point_of(p.Freq_Hz);
    } else {
      p.Freq_Hz = r.F32(at);
      p.Label_Dx = r.F32(at + 4);
      p.Label_Dy = r.F32(at + 8);
      p.Height = r.I16(at + 12);
      p.Point = point_of(p.Freq_Hz);
    }
    list.push_back(p);
  }
  return list;
}

// ----------------------------------------------------------------- fonts ----

namespace {
const char* const Default_Face = "ＭＳ ゴシック";
}

void Write_Font_Record(Image_Writer& w, size_t off, const Font_Rec& f, size_t name_at) {
  w.F32(off, f.Size);
  w.I16(off + 4, f.Bold);
  w.I16(off + 6, f.Italic);
  w.Text_Field(off + name_at, f.Face, 32);
}

Font_Rec Read_Font_Record(const Image_Reader& r, size_t off, size_t name_at) {
  Font_Rec f;
  f.Size = r.F32(off);
  f.Bold = r.I16(off + 4);
  f.Italic = r.I16(off + 6);
  f.Face = r.Text(off + name_at, 32);
  if (f.Face.empty()) f.Face = Default_Face;
  return f;
}

// ---------------------------------------------------------------- insets ----

namespace {

// An inset font keeps its name 36 bytes behind its size.
constexpr size_t Inset_Font_Name = 36;

// Field table of the 512-byte inset record.
template <class V, class R>
void Inset_Fields(V& v, R& in) {
  v.F32(0, in.Frame_X1);
  v.F32(4, in.Frame_X0);
  v.F32(8, in.Frame_Y1);
  v.F32(12, in.Frame_Y0);
  v.F32(16, in.Inset_Y_Offset);
  v.F32(20, in.Inset_X_Scale);
  v.F32(24, in.Inset_Y_Full);
  v.F32(28, in.Integ_Expand);
  v.F32(32, in.Inset_Right);
  v.F32(36, in.Inset_Left);
  v.I16(40, in.Peak_Pos);
  v.I16(42, in.Opaque);
  v.I16(44, in.Show_Values);
  v.I16(48, in.Show_Integrals);
  v.I16(50, in.Show_Integ_Base);
  v.I16(52, in.Show_Border);
  v.I16(56, in.Show_Axis);
  v.I16(60, in.Axis_Digit);
  v.I16(64, in.Integ_Digit);
  v.I16(68, in.Peak_Digit);
  v.I16(72, in.Tick_Mode);
  v.I16(76, in.Unit);
  v.F32(80, in.Tick_Step1);
  v.F32(84, in.Tick_Inc1);
  v.F32(88, in.Tick_Step2);
  v.F32(92, in.Tick_Inc2);
  v.F32(96, in.Integ_Level);
  v.I32(100, in.Line_Colour);
  v.I16(104, in.Show_Tops);
  v.I16(106, in.Show_Numbers);
  v.I16(108, in.Peak_Unit);
  v.I32(112, in.Fill_Colour);
  v.I32(116, in.Border_Colour);
  v.F32(120, in.Font_Mag);
  v.I16(124, in.Font_Mag_Mode);
  v.F32(128, in.Peakline_Top);
  v.F32(132, in.Peakline_Bottom);
  v.F32(136, in.Inset_X_Mag);
  v.F32(140, in.Inset_Y_Mag);
}

struct Field_Writer {
  Image_Writer& w;
  size_t base;
  void F32(size_t off, float v) { w.F32(base + off, v); }
  void I32(size_t off, int32_t v) { w.I32(base + off, v); }
  void I16(size_t off, int16_t v) { w.I16(base + off, v); }
};
struct Field_Reader {
  const Image_Reader& r;
  size_t base;
  void F32(size_t off, float& v) { v = r.F32(base + off); }
  void I32(size_t off, int32_t& v) { v = r.I32(base + off); }
  void I16(size_t off, int16_t& v) { v = r.I16(base + off); }
};

}  // namespace

void Write_Inset(Image_Writer& w, size_t off, const Inset_Rec& in) {
  w.Reach(off + 512);
  Field_Writer v{w, off};
  Inset_Fields(v, in);
  Write_Font_Record(w, off + 256, in.Integ_Font, Inset_Font_Name);
  Write_Font_Record(w, off + 304, in.Axis_Font, Inset_Font_Name);
  Write_Font_Record(w, off + 352, in.Peak_Font, Inset_Font_Name);
}

Inset_Rec Read_Inset(const Image_Reader& r, size_t off) {
  Inset_Rec in;
  Field_Reader v{r, off};
  Inset_Fields(v, in);
  in.Integ_Font = Read_Font_Record(r, off + 256, Inset_Font_Name);
  in.Axis_Font = Read_Font_Record(r, off + 304, Inset_Font_Name);
  in.Peak_Font = Read_Font_Record(r, off + 352, Inset_Font_Name);
  return in;
}

// ------------------------------------------------- notes, lines, pictures ----

size_t Write_Insets(Image_Writer& w, size_t at, const std::vector<Inset_Rec>& insets) {
  const size_t n = std::min(insets.size(), static_cast<size_t>(Inset_Max));
  w.I32(at, static_cast<int32_t>(n));
  w.Reach(at + 24 + 512 * n);
  for (size_t k = 0; k < n; ++k) Write_Inset(w, at + 24 + 512 * k, insets[k]);
  return 24 + 512 * n;
}

std::vector<Inset_Rec> Read_Insets(const Image_Reader& r, size_t at, size_t size) {
  std::vector<Inset_Rec> list;
  const int32_t n = std::clamp(r.I32(at), 0, Inset_Max);
  for (int32_t k = 0; k < n && size >= 24 + 512 * static_cast<size_t>(k + 1); ++k)
    list.push_back(Read_Inset(r, at + 24 + 512 * static_cast<size_t>(k)));
  return list;
}

// ---------------------------------------------------------- overlay tables ----

size_t Write_Overlay_Table(Image_Writer& w, size_t at, const Session& s,
                           const std::function<size_t(size_t, const Overlay_Slot&)>& record) {
  constexpr size_t Index_Size = 80;
  w.Reach(at + Index_Size);
  w.F32(at, s.Overlay_Shift);
  for (int n = 1; n <= Overlay_Max; ++n) {
    const Overlay_Slot& o = s.Overlay[static_cast<size_t>(n)];
    if (o.Slot_Points <= 1) continue;
    const size_t rec = w.Next_Section();
    const size_t size = record(rec, o);
    w.Reach(rec + size + 16);
    w.I32(at + 4 + 4 * static_cast<size_t>(n), static_cast<int32_t>(rec));
  }
  return w.Size() - at;
}

size_t Overlay_Slot_Record(const Image_Reader& r, size_t at, int n) {
  const int32_t off = r.I32(at + 4 + 4 * static_cast<size_t>(n));
  return off > 0 && r.Has(static_cast<size_t>(off), 16) ? static_cast<size_t>(off) : 0;
}

size_t Write_Slot_Spectrum(Image_Writer& w, size_t at, const Overlay_Slot& o) {
  const int32_t n = o.Slot_Points;
  const size_t count = static_cast<size_t>(std::max(n, 0));
  const double x0 = o.Slot_X.empty() ? 0.0 : o.Slot_X[0];
  // The axis is stored as its first ppm and an even step from first to last.
  const double step = (n > 1 && o.Slot_X.size() >= count)
                          ? (static_cast<double>(o.Slot_X[count - 1]) - x0) / (n - 1)
                          : 0.0;
  w.F32(at, static_cast<float>(x0));
  w.F32(at + 4, o.Slot_Y_Mag);
  w.I32(at + 8, n);
  w.F64(at + 12, step);
  w.F32(at + 20, o.Slot_Y_Offset);
  w.I32(at + 24, o.Slot_Colour);
  w.I16(at + 28, o.Slot_Show);
  w.Text_Field(at + 64, o.Slot_File, 256);
  w.Text_Field(at + 320, o.Slot_Comment, 256);
  w.Reach(at + 576 + 4 * count);
  for (size_t i = 0; i < count; ++i) w.F32(at + 576 + 4 * i, i < o.Slot_Y.size() ? o.Slot_Y[i] : 0.0f);
  return 576 + 4 * count;
}

bool Read_Slot_Spectrum(const Image_Reader& r, size_t rec, Overlay_Slot& o) {
  const int32_t points = r.I32(rec + 8);
  if (points < 2 || points > Fft_Table_Size_Max || !r.Has(rec + 576, 4 * static_cast<size_t>(points)))
    return false;
  const size_t count = static_cast<size_t>(points);
  const double x0 = r.F32(rec), step = r.F64(rec + 12);
  o.Slot_Y_Mag = r.F32(rec + 4);
  o.Slot_Points = points;
  o.Slot_Y_Offset = r.F32(rec + 20);
  o.Slot_Colour = r.I32(rec + 24);
  o.Slot_Show = r.I16(rec + 28);
  o.Slot_File = r.Text(rec + 64, 256);
  if (o.Slot_File.empty()) o.Slot_File = "No File Name";
  o.Slot_Comment = r.Text(rec + 320, 256);
  o.Slot_X.resize(count);
  o.Slot_Y.resize(count);
  for (size_t i = 0; i < count; ++i) {
    o.Slot_X[i] = static_cast<float>(x0 + static_cast<double>(i) * step);
    o.Slot_Y[i] = r.F32(rec + 576 + 4 * i);
  }
  return true;
}

size_t Write_Texts(Image_Writer& w, size_t at, const std::vector<Text_Rec>& texts) {
  const size_t n = texts.size();
  w.I32(at, static_cast<int32_t>(n));
  w.Reach(at + 4 + 4 * n);
  for (size_t k = 0; k < n; ++k) {
    const Text_Rec& t = texts[k];
    const size_t rec = w.Next_Section();
    w.I32(at + 4 + 4 * k, static_cast<int32_t>(rec));
    w.F32(rec, t.X);
    w.F32(rec + 4, t.Y);
    for (size_t j = 0; j < 3; ++j) w.F32(rec + 8 + 4 * j, t.Frame[j]);
    w.F32(rec + 20, t.Font_Size);
    w.I16(rec + 24, t.Bold);
    w.I16(rec + 26, t.Italic);
    w.Text_Field(rec + 32, t.Font_Name, 32);
    const size_t len = w.Text_Block(rec + 64, t.Text) - 4;
    w.I32(rec + 28, static_cast<int32_t>(len));
  }
  return w.Size() - at;
}

void Read_Texts(const Image_Reader& r, size_t off, Session& s) {
  const int32_t n = std::clamp(r.I32(off), 0, Text_Max);
  s.Texts.clear();
  for (int32_t k = 0; k < n; ++k) {
    const size_t rec = static_cast<size_t>(r.I32(off + 4 + 4 * static_cast<size_t>(k)));
    if (!r.Has(rec, 64)) {
      r.short_read = true;
      return;
    }
    Text_Rec t;
    t.X = r.F32(rec);
    t.Y = r.F32(rec + 4);
    for (size_t j = 0; j < 3; ++j) t.Frame[j] = r.F32(rec + 8 + 4 * j);
    t.Font_Size = std::max(r.F32(rec + 20), 3.0f);
    t.Bold = r.I16(rec + 24);
    t.Italic = r.I16(rec + 26);
    const int32_t len = r.I32(rec + 28);
    t.Font_Name = r.Text(rec + 32, 32);
    if (t.Font_Name.empty()) t.Font_Name = Default_Face;
    if (len > 0) t.Text = r.Text(rec + 64, static_cast<size_t>(len));
    s.Texts.push_back(t);
  }
}

void Read_Lines(const Image_Reader& r, size_t off, Session& s) {
  int32_t n = r.I32(off);
  if (n < 1 || n > Line_Max) n = 0;
  s.Lines.clear();
  for (int32_t k = 0; k < n; ++k) {
    const size_t rec = off + 4 + 32 * static_cast<size_t>(k);
    Line_Rec l;
    l.X1 = r.F32(rec);
    l.Y1 = r.F32(rec + 4);
    l.X2 = r.F32(rec + 8);
    l.Y2 = r.F32(rec + 12);
    l.Colour = std::max(r.I32(rec + 16), 0);
    l.Width = r.I16(rec + 20);
    l.Arrow_Width = r.I16(rec + 22);
    l.Kind = r.I16(rec + 24);
    if (l.Kind < 0) l.Kind = 1;
    l.Style = r.I16(rec + 26);
    s.Lines.push_back(l);
  }
}

void Read_Pictures(const Image_Reader& r, size_t off, Session& s) {
  const int32_t n = r.I32(off);
  s.Images.clear();
  if (n < 1 || n > 20) return;
  size_t body = off + 4096;
  for (int32_t k = 0; k < n; ++k) {
    const size_t h = off + 4 + 32 * static_cast<size_t>(k);
    Image_Rec p;
    p.Left = r.F32(h);
    p.Top = r.F32(h + 4);
    p.Width = r.F32(h + 8);
    p.Height = r.F32(h + 12);
    const int32_t size = r.I32(h + 16);
    p.Extra = r.I32(h + 20);
    if (size < 0 || !r.Has(body, static_cast<size_t>(size))) {
      r.short_read = true;
      return;
    }
    p.Body = r.Raw(body, static_cast<size_t>(size));
    body = ((body + static_cast<size_t>(size)) / 16 + 1) * 16;
    s.Images.push_back(std::move(p));
  }
}

void Read_Structure(const Image_Reader& r, size_t off, Session& s) {
  Structure_Rec& st = s.Structure;
  st.Show = r.I16(off);
  st.Value_A = r.F32(off + 4);
  st.Value_B = r.F32(off + 8);
  const int32_t size = r.I32(off + 12);
  if (size > 0 && r.Has(off + 32, static_cast<size_t>(size)))
    st.Body = r.Raw(off + 32, static_cast<size_t>(size));
  else if (size > 0)
    r.short_read = true;
}

// ------------------------------------------------------------ page blocks ----

namespace {

constexpr Keyed_Field Page_Fields[] = {
    {8, 2, "AXIS TIC MODE"},       {12, 4, "AXIS TIC STEP"},      {16, 4, "AXIS TIC INCRE"},
    {20, 4, "AXIS TIC STEP 2"},    {24, 4, "AXIS TIC INCRE 2"},   {28, 4, "AXIS DIGIT"},
    {36, 4, "PEAK BOTTOM HEIG"},   {40, 4, "PEAK LIST TOP HE"},   {44, 2, "DRAW SCALE ON"},
    {48, 2, "DRAW WAKU ON"},       {52, 2, "DRAW COMMENT"},       {56, 2, "DRAW PARAM ON"},
    {60, 2, "DRAW INTEG ON"},      {64, 2, "DRAW PEAK PICK"},     {68, 2, "DRAW MULTI VIEW"},
    {72, 2, "MULTI TRANSPAR"},     {76, 2, "PRINT TEXT"},         {80, 2, "UNIT POSITION"},
    {84, 2, "COMMENT POSIT"},      {88, 2, "PRINTER TYPE"},       {92, 2, "PAPER ORIENT"},
    {96, 2, "PEAK POSITION"},      {100, 2, "PAPER SIZE"},        {108, 4, "Y-LENGTH"},
    {112, 4, "Y-BOTTOM MARGIN"},   {116, 4, "Y-BIAS"},            {120, 4, "X-LENGTH"},
    {124, 4, "X-LEFT MARGIN"},     {128, 4, "Y-LEVEL"},           {140, 4, "MAIN SPECT COL"},
    {148, 4, "X-AXIS COL"},        {156, 4, "WAKU COL"},          {164, 4, "PEAK PICK COL"},
    {172, 4, "INTEGRAL COL"},      {180, 4, "COL MULTI WAKU"},    {188, 4, "PARAMETER COL"},
    {192, 4, "COL INTEG VALUE"},   {200, 2, "INTEGRAL DIGIT"},    {204, 2, "PEAK DIGIT"},
    {212, 2, "DRAW MULTI SPEC"},   {224, 4, "PARA WIDTH"},        {228, 4, "PARA HEIGHT"},
    {240, 2, "PARA WAKU"},         {244, 4, "PARA WAKU COL"},     {252, 2, "PARA BGCOL TRANS"},
    {260, 2, "PEAK TOP WIDTH"},    {262, 2, "PEAK TOP HEIGHT"},   {264, 2, "DRAW PEAK TOP"},
    {276, 2, "PEAK LIST DIRECT"},  {280, 4, "MULTI SPEC SHIFT"},  {284, 2, "PEAK-VAL UNIT"},
    {288, 2, "PEAK BGCOL TRANS"},  {292, 4, "PEAK LIST WIDTH"},   {296, 4, "PEAK LIST TOP"},
    {300, 4, "PEAK LIST LEFT"},    {304, 4, "PEAK LIST HEIGHT"},  {308, 4, "PEAK LIST COL"},
    {312, 4, "PEAK WAKU COL"},     {316, 2, "PEAK WAKU WIDTH"},   {320, 2, "PEAK LIST WAKU"},
    {324, 2, "PEAK LIST TABLE"},   {328, 2, "PEAK TOP NUM"},      {332, 2, "PRNT PEAK HEAD"},
    {336, 2, "PRNT PEAKLIST NO"},  {340, 2, "PRNT PAEK PPM"},     {344, 2, "PRNT PEAK HZ"},
    {348, 2, "PRNT PEAK HEIGHT"},  {352, 2, "PRNT PEAK INTENS"},  {360, 2, "DEPT MODE"},
    {364, 4, "DEPT CH2 45"},       {368, 4, "DEPT CH3 90"},       {372, 4, "DEPT CH3 135"},
    {376, 4, "DEPT CH MUL"},       {380, 4, "DEPT CH 135"},       {384, 4, "DEPT CH2 135"},
    {388, 4, "DEPT CH3 45"},       {392, 4, "DEPT CH 45"},        {396, 4, "DEPT CH 90"},
    {400, 4, "SELECT SPECT COL"},  {408, 4, "PAPER COLOR"},       {424, 2, "DISP EXTEND MODE"},
    {428, 2, "DISP ARRAY MODE"},   {432, 4, "Y AXIS RATIO"},      {436, 4, "X AXIS RATIO"},
    {440, 2, "INSEN MODE"},        {468, 4, "GRID COL"},          {472, 2, "PRTINT GRID"},
    {474, 2, "GRID X AUTO"},       {476, 2, "DISPLAY GRID"},      {478, 2, "GRID Y AUTO"},
    {480, 4, "GRID WIDTH"},        {484, 4, "GRID X INC"},        {488, 4, "GRID Y INC"},
    {508, 2, "PRINT LIST BACK"},   {512, 4, "PARA FONT SIZE"},    {516, 2, "PARA FONT BOLD"},
    {518, 2, "PARA FONT ITALIC"},  {560, 4, "AXIS FONT SIZE"},    {564, 2, "AXIS FONT BOLD"},
    {566, 2, "AXIS FONT ITALIC"},  {608, 4, "INTEG FONT SIZE"},   {612, 2, "INTEG FONT BOLD"},
    {614, 2, "INTEG FONT ITAL"},   {656, 4, "PEAKL FONT SIZE"},   {660, 2, "PEAKL FONT BOLD"},
    {662, 2, "PEAKL FONT ITAL"},   {704, 4, "PEAK NUM SIZE"},     {708, 2, "PEAK NUM BOLD"},
    {710, 2, "PEAK NUM ITALIC"},   {752, 4, "PEAK DATA SIZE"},    {756, 2, "PEAK DATA BOLD"},
    {758, 2, "PEAK DATA ITALIC"},
};

constexpr Keyed_Field Deconv_Fields[] = {
    {96, 4, "SIM MEAS LINECOL"},  {100, 4, "SIM LINE COLOR"},   {104, 4, "SIM X AXIS LENG"},
    {108, 4, "SIM Y AXIS LENG"},  {112, 2, "SIM AX LINEWIDTH"}, {116, 2, "SIM SPCLINEWIDTH"},
    {120, 2, "SIM X LAB MODE"},   {124, 2, "SIM Y LAB MODE"},   {128, 2, "SIM SPEC  MODE"},
    {132, 2, "SIM PRNT RESID"},   {136, 2, "SIM PRNT PARA"},    {140, 2, "SIM PRNT COMNT"},
    {144, 2, "SIM PRINTER MODE"}, {148, 2, "SIM PAPER SIZE"},   {164, 2, "SIM PRNT Y AX"},
    {168, 2, "SIM PRNT WAKU"},    {172, 2, "SIM AXIS MODE"},    {184, 4, "SIM OFFSET PEAK"},
    {188, 4, "SIM OFFSET SIM"},   {200, 2, "SIM PRNT DIFWAKU"}, {204, 2, "SIM PRNT PEAKNO"},
    {240, 4, "SIM X AXIS SHIFT"}, {244, 4, "SIM Y AXIS SHIFT"}, {248, 4, "SIM DY AXIS LENG"},
    {252, 4, "SIM DY AXIS SHIF"}, {256, 4, "SIM PARA TOP"},     {260, 4, "SIM PARA LEFT"},
    {264, 4, "SIM PARA WIDTH"},   {268, 4, "SIM PARA HEIGHT"},  {276, 4, "SIM SPC WAKU COL"},
    {280, 4, "SIM RES WAKU COL"}, {284, 4, "SIM PAR WAKU COL"}, {288, 4, "SIM PARA COL"},
    {292, 4, "SIM X AX COL"},     {296, 4, "SIM Y AX COL"},     {300, 4, "SIM RES AX COL"},
    {304, 4, "SIM SPC BG COL"},   {308, 4, "SIM RES BG COL"},   {312, 4, "SIM PAR BG COL"},
    {316, 4, "SIM PAPER COL"},    {320, 4, "SIM Y LEVEL"},
};

constexpr Keyed_Field Relax_Fields[] = {
    {0, 4, "CAL CIRCLE RADII"},  {4, 2, "CAL CIRCLE MODE"},   {8, 4, "CAL X LENGTH"},
    {12, 4, "CAL Y LENGTH"},     {16, 2, "CAL PRINTER MODE"}, {24, 2, "CAL PARA MODE"},
    {28, 2, "CAL R/UWAKU MODE"}, {32, 2, "CAL PAPER SIZE"},   {36, 2, "CAL DRAW WIDTH 1"},
    {40, 2, "CAL DRAW WIDTH 2"}, {44, 4, "CAL SIM COL"},      {48, 4, "CAL MEAS COL"},
    {52, 4, "CAL PREVIEW MAG"},
};

constexpr Keyed_Field List_Fields[] = {
    {0, 2, "PAPER ORIENTLIST"},
    {4, 2, "PEAK REDUCT MODE"},
    {256, 4, "LISTS FONT SIZE"},
};

std::span<const Keyed_Field> Fields_Of(Page_Block which) {
  switch (which) {
    case Page_Block::Page: return Page_Fields;
    case Page_Block::Deconv: return Deconv_Fields;
    case Page_Block::Relax: return Relax_Fields;
    case Page_Block::List: return List_Fields;
  }
  return {};
}

}  // namespace

bool Is_Page_Key(const std::string& key) {
  for (const Keyed_Field& f : Page_Fields)
    if (key == f.key) return true;
  return false;
}

namespace {

bool Is_Real_Key(const char* key) {
  const int i = session::Setting_Index(key);
  return i >= 0 && session::Setting_Keys()[static_cast<size_t>(i)].type == session::Setting_Type::Real32;
}

}  // namespace

void Write_Page_Block(Image_Writer& w, size_t off, const Session& s, Page_Block which,
                      const std::vector<uint8_t>& carried, size_t size) {
  std::vector<uint8_t> block = carried;
  if (block.size() < size) block.resize(size, 0);
  w.Raw(off, block);
  for (const Keyed_Field& f : Fields_Of(which)) {
    const int i = session::Setting_Index(f.key);
    if (i < 0 || session::Setting_Keys()[static_cast<size_t>(i)].type == session::Setting_Type::Text)
      continue;  // a key the settings do not know keeps the carried bytes
    const double v = s.settings.Real(f.key);
    if (f.width == 2)
      w.I16(off + f.off, static_cast<int16_t>(std::lround(v)));
    else if (Is_Real_Key(f.key))
      w.F32(off + f.off, static_cast<float>(v));
    else
      w.I32(off + f.off, static_cast<int32_t>(std::llround(v)));
  }
}

std::vector<uint8_t> Read_Page_Block(const Image_Reader& r, size_t off, size_t size, Session& s,
                                     Page_Block which) {
  std::vector<uint8_t> block = r.Raw(off, size);
  for (const Keyed_Field& f : Fields_Of(which)) {
    if (f.off + f.width > block.size()) continue;
    const int i = session::Setting_Index(f.key);
    if (i < 0 || session::Setting_Keys()[static_cast<size_t>(i)].type == session::Setting_Type::Text)
      continue;
    if (f.width == 2)
      s.settings.Set(f.key, static_cast<double>(r.I16(off + f.off)));
    else if (Is_Real_Key(f.key))
      s.settings.Set(f.key, static_cast<double>(r.F32(off + f.off)));
    else
      s.settings.Set(f.key, static_cast<double>(r.I32(off + f.off)));
  }
  // The DEPT display and its coefficients belong to the data.
  if (which == Page_Block::Page) overlay::Take_DEPT_Settings(s);
  return block;
}

// -------------------------------------------------------------- messages ----

int Refuse(Session& s, const std::string& text, const std::string& caption) {
  Show_Message(s, text, Style_OK + Icon_Exclamation, caption);
  return 1;
}

int Refuse_Damaged(Session& s) { return Refuse(s, "Dataが壊れています", "Dataエラー"); }

int Run_Time_Failure(Session& s, const std::string& location) {
  Disk_Error_Text(s, 57, location);
  return -1;
}

std::vector<uint8_t> Load_File(const std::string& path, bool& ok) {
  std::ifstream in(path, std::ios::binary);
  ok = static_cast<bool>(in);
  if (!ok) return {};
  std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  ok = !in.bad();
  return bytes;
}

int Read_Whole_File(Session& s, const std::string& path, const char* location,
                    const std::function<int(const std::vector<uint8_t>&)>& read) {
  bool ok = false;
  const std::vector<uint8_t> bytes = Load_File(path, ok);
  if (!ok) return Run_Time_Failure(s, location);
  int status;
  try {
    status = read(bytes);
  } catch (const std::exception&) {
    status = -1;
  }
  return status < 0 ? Run_Time_Failure(s, location) : status;
}

bool Save_File(const std::string& path, const std::vector<uint8_t>& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!out) return false;
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  out.close();
  return static_cast<bool>(out);
}

}  // namespace tevo::datafiles::native_io
