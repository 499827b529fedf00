// JEOL ".jdf" reader. Everything is decoded into locals first; the session
// changes only when the whole file read, so a refused or broken file leaves
// the former data set in place.
#include "datafiles/jeol_jdf.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <sstream>
#include <stdexcept>

#include "datafiles/nucleus.h"
#include "datafiles/vendor_read.h"
#include "datafiles/date_text.h"
#include "datafiles/vendor_text.h"
#include "platform/ui.h"
#include "session/messages.h"
#include "session/session.h"

namespace tevo::datafiles {

namespace {

// Header offsets (big-endian numbers).
constexpr size_t Off_Endian = 8, Off_Dimensions = 12, Off_Data_Type = 14, Off_Axis_Type = 24,
                 Off_Unit_X = 33, Off_Unit_Y = 35, Off_Title = 48, Off_Points = 176,
                 Off_Offset_Start = 208, Off_Offset_Stop = 240,
                 Off_Axis_Start = 272, Off_Axis_Stop = 336, Off_Comment = 680,
                 Off_Base_Freq = 1064, Off_Param_Start = 1212, Off_Data_Start = 1284;

bool Has_Banner(Byte_View b) {
  static const char banner[] = "JEOL.NMR";
  if (b.size() < 8) return false;
  for (size_t i = 0; i < 8; ++i)
    if (b[i] != static_cast<uint8_t>(banner[i])) return false;
  return true;
}

bool Little(Byte_View b) { return b[Off_Endian] != 0; }

int32_t Int32_At(Byte_View b, size_t off, bool little) {
  return little ? Decode_LE_Int32(b, off) : Decode_BE_Int32(b, off);
}
double Float64_At(Byte_View b, size_t off, bool little) {
  return little ? Decode_LE_Float64(b, off) : Decode_BE_Float64(b, off);
}

// 1 a readable 1D set, 2 multi-dimensional, 0 an axis kind not read.
int Dimension_Class(Byte_View b) {
  if (b.size() <= Off_Unit_Y) throw std::out_of_range("ECP header");
  if (b[Off_Dimensions] != 1 || b[Off_Unit_Y] != 0) return 2;
  const uint8_t unit = b[Off_Unit_X];
  return unit == Ecp_Unit_Hz || unit == Ecp_Unit_Ppm || unit == Ecp_Unit_Second ? 1 : 0;
}

const Ecp_Param* Find(const std::vector<Ecp_Param>& params, const char* name) {
  for (const Ecp_Param& p : params)
    if (p.name == name) return &p;
  return nullptr;
}

std::string Date_Since_1990(double seconds) {
  // 1990-01-01 00:00:00 UTC is 631152000 s after 1970.
  const std::time_t t = Clamped_Epoch_Seconds(631152000.0 + seconds);
  std::tm tm{};
  gmtime_r(&t, &tm);
  char buf[64];
  std::snprintf(buf, sizeof buf, "%04d/%02d/%02d %02d:%02d:%02d", tm.tm_year + 1900,
                tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec);
  return buf;
}

// The parameter records into the block; `observe_hz` helps the nucleus.
void Take_Params(Data_Param& p, const std::vector<Ecp_Param>& params) {
  auto num = [&](const char* name, double fallback = 0) {
    const Ecp_Param* e = Find(params, name);
    return e && e->type != 0 ? e->number : fallback;
  };
  auto text = [&](const char* name) {
    const Ecp_Param* e = Find(params, name);
    return e && e->type == 0 ? e->text : std::string();
  };
  p.SCANS = p.TIMES = To_Int32(num("SCANS"));
  p.IRNUC = text("IRR_DOMAIN");
  p.IRFRQ = To_Real32(num("IRR_FREQ") * 1e-6);
  p.IRRPW = static_cast<int16_t>(std::clamp(num("IRR_PWIDTH") * 1e6, -32768.0, 32767.0));
  p.OBNUC = text("X_DOMAIN");
  p.OBFRQ = To_Real32(num("X_FREQ") * 1e-6);
  p.OBSET = To_Real32(num("X_OFFSET"));
  p.RESOL = To_Real32(num("X_RESOLUTION"));
  p.FREQU = To_Real32(num("X_SWEEP"));
  p.PW[0] = To_Real32(num("X_PULSE") * 1e6);
  p.PW[1] = To_Real32(num("X_90_WIDTH", num("X90")) * 1e6);
  p.PD = To_Real32(num("RELAXATION_DELAY"));
  p.RGAIN = To_Int32(num("RECVR_GAIN"));
  p.SLVNT = text("SOLVENT");
  p.FILTR = To_Real32(num("FILTER_WIDTH"));
  p.ADBIT = To_Real32(num("ADC_CARD"));
  p.CTEMP = To_Real32(num("TEMP_GET"));
  p.CSPED = To_Real32(num("SPIN_GET"));
  p.DUMMY = To_Int32(num("X_PRESCANS"));
  p.DEADT = To_Real32(num("ACQ_DELAY") * 1e6);
  p.EXMOD = text("EXPERIMENT");
  const double start = num("ACTUAL_START_TIME", -1);
  p.DATIM = start > 0 ? Date_Since_1990(start) : "1990/01/01";
}

// The digital filter's delay in points of the stored FID. "ORDERS" is the
// number of stages followed by each stage's filter length, "FACTORS" each
// stage's decimation. A stage of length L delays by L / 2 of its input
// samples, which are the product of the decimations from it on shorter than
// the stored dwell; the acquisition delay (s) has already passed at the
// first point. 0 when the file states no filter.
double Ecp_Filter_Delay(const std::vector<Ecp_Param>& params, double sweep_hz) {
  const Ecp_Param* orders = Find(params, "ORDERS");
  const Ecp_Param* factors = Find(params, "FACTORS");
  if (!orders || !factors || orders->type != 0 || factors->type != 0) return 0;
  auto numbers = [](const std::string& text) {
    std::vector<double> v;
    std::istringstream in(text);
    for (double x; in >> x;) v.push_back(x);
    return v;
  };
  const std::vector<double> o = numbers(orders->text), f = numbers(factors->text);
  if (o.empty() || o[0] < 1 || o.size() < static_cast<size_t>(o[0]) + 1 || f.size() < static_cast<size_t>(o[0]))
    return 0;
  const auto stages = static_cast<size_t>(o[0]);
  double delay = 0;
  for (size_t k = 0; k < stages; ++k) {
    double rate = 1;
    for (size_t j = k; j < stages; ++j) rate *= f[j];
    if (!(rate > 0)) return 0;
    delay += o[k + 1] / 2 / rate;
  }
  const Ecp_Param* acq = Find(params, "ACQ_DELAY");
  if (acq && acq->type != 0) delay -= acq->number * sweep_hz;
  return delay > 0 && delay < 1e4 ? delay : 0;
}

// The nucleus words of the parameter block ("Proton", "Carbon13",
// "Fluorine19") as mass number and element symbol ("1H", "13C", "19F").
std::string Nucleus_Of_Word(const std::string& word) {
  static const std::pair<const char*, const char*> elements[] = {
      {"PROTON", "1H"},     {"DEUTERIUM", "2H"}, {"TRITIUM", "3H"},    {"HYDROGEN", "H"},
      {"CARBON", "C"},      {"FLUORINE", "F"},   {"PHOSPHORUS", "P"},  {"NITROGEN", "N"},
      {"SILICON", "SI"},    {"BORON", "B"},      {"LITHIUM", "LI"},    {"SODIUM", "NA"},
      {"OXYGEN", "O"},      {"ALUMINUM", "AL"},  {"ALUMINIUM", "AL"},  {"SELENIUM", "SE"},
      {"CADMIUM", "CD"},    {"TIN", "SN"},       {"XENON", "XE"},      {"PLATINUM", "PT"},
      {"CHLORINE", "CL"},   {"VANADIUM", "V"},   {"CESIUM", "CS"},     {"POTASSIUM", "K"},
      {"MAGNESIUM", "MG"},  {"LEAD", "PB"},      {"MERCURY", "HG"},    {"RHODIUM", "RH"},
      {"SILVER", "AG"},     {"TUNGSTEN", "W"},   {"COBALT", "CO"},     {"COPPER", "CU"},
      {"GALLIUM", "GA"},    {"BROMINE", "BR"},   {"IODINE", "I"},      {"SULFUR", "S"},
      {"TELLURIUM", "TE"},  {"YTTRIUM", "Y"},    {"ZINC", "ZN"},       {"HELIUM", "HE"}};
  const std::string u = Upper(Trim(word));
  std::string letters, digits;
  for (char c : u) (c >= '0' && c <= '9' ? digits : letters) += c;
  for (const auto& [name, symbol] : elements)
    if (letters == name) return symbol[0] >= '0' && symbol[0] <= '9' ? symbol : digits + symbol;
  return word;
}

// The observe nucleus: the word through the nucleus table; a name the table
// doesn't know comes from the frequency. With no table loaded a mass number
// and symbol stand as they are.
std::string Observe_Nucleus(const Session& s, const std::string& word, double mhz) {
  const std::string text = Nucleus_Of_Word(word);
  const Nucleus_Name ob = Normalize_Nucleus(text, s.Nuclei);
  if (ob.nucleus != "??") return ob.nucleus;
  const bool mass_and_symbol = !text.empty() && text[0] >= '0' && text[0] <= '9' &&
                               text.find_first_not_of("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ") ==
                                   std::string::npos;
  if (s.Nuclei.empty() && mass_and_symbol) return text;
  const std::string h = Nucleus_From_Frequency(mhz);
  return h.empty() ? "??" : h;
}

}  // namespace

std::vector<Ecp_Param> Read_Ecp_Params(Byte_View b) {
  const bool little = Little(b);
  const auto start = static_cast<size_t>(static_cast<uint32_t>(Decode_BE_Int32(b, Off_Param_Start)));
  const int32_t size = Int32_At(b, start, little);
  const int32_t high = Int32_At(b, start + 8, little);
  if (size < 64 || size > 4096 || high < 0 || high > 100000) throw std::out_of_range("ECP params");
  std::vector<Ecp_Param> out;
  for (int32_t i = 0; i <= high; ++i) {
    const size_t rec = start + 16 + static_cast<size_t>(i) * static_cast<size_t>(size);
    if (rec + static_cast<size_t>(size) > b.size()) throw std::out_of_range("ECP params");
    Ecp_Param e;
    e.name = Upper(Fetch_Text(b, rec + 36, 28));
    e.type = b[rec + (little ? 32 : 35)];
    if (e.type == 0) e.text = Fetch_Text(b, rec + 16, 16);
    else if (e.type == 1) e.number = Int32_At(b, rec + 16, little);
    else e.number = Float64_At(b, rec + 16, little);
    out.push_back(std::move(e));
  }
  return out;
}

Kind_Check Check_Ecp(const std::string& path) {
  Kind_Check out;
  auto bytes = Read_Whole_File(path);
  if (!bytes) {
    out.status = -1;
    return out;
  }
  try {
    const Byte_View b = As_Bytes(*bytes);
    if (!Has_Banner(b)) return out;
    const int cls = Dimension_Class(b);
    const std::vector<Ecp_Param> params = Read_Ecp_Params(b);
    if (const Ecp_Param* e = Find(params, "EXPERIMENT")) out.kind = e->text;
    out.status = cls == 1 ? 0 : cls == 2 ? 2 : 1;
  } catch (const std::exception&) {
    out.status = -1;
  }
  return out;
}

int Read_Ecp(Session& s, const std::string& path) {
  try {
    s.ui->Wait_Cursor(true);
    int err = 0;
    auto bytes = Read_Whole_File(path, &err);
    if (!bytes) return Reader_Fail(s, err, "ECP/DRW");
    const Byte_View b = As_Bytes(*bytes);
    if (!Has_Banner(b)) return Reader_Refuse(s, "Dataが違います");
    const int cls = Dimension_Class(b);
    if (cls == 2) return Reader_Refuse(s, "2D Data !");
    if (cls == 0) return Reader_Refuse(s, "Dataが違います");
    const bool little = Little(b);
    const uint8_t unit = b[Off_Unit_X];
    const int32_t total = Decode_BE_Int32(b, Off_Points);
    // A clipped set holds its points from the start offset to the stop
    // offset of the whole; the axis start and stop belong to those two.
    int32_t first_point = Decode_BE_Int32(b, Off_Offset_Start);
    int32_t last_point = Decode_BE_Int32(b, Off_Offset_Stop);
    if (first_point < 0 || last_point < first_point || last_point >= total) {
      first_point = 0;
      last_point = total - 1;
    }
    const int32_t n = last_point - first_point + 1;
    const double axis_start = Decode_BE_Float64(b, Off_Axis_Start);
    const double axis_stop = Decode_BE_Float64(b, Off_Axis_Stop);
    const double observe = Decode_BE_Float64(b, Off_Base_Freq);
    const auto data_start = static_cast<size_t>(static_cast<uint32_t>(Decode_BE_Int32(b, Off_Data_Start)));
    const bool real_only = b[Off_Axis_Type] == 1;
    const bool single = (b[Off_Data_Type] >> 6) == 1;  // 32-bit numbers, else doubles
    const bool fid = unit == Ecp_Unit_Second;
    if (n < 10 || total > Fft_Table_Size_Max || !(observe > 0))
      return Reader_Refuse(s, "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ");
    const int32_t size = fid ? Next_Power_Of_Two(n) : n;
    if (size > Fft_Table_Size_Max) return Reader_Refuse(s, "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ");

    // Real block, then imaginary block.
    const size_t word = single ? 4 : 8;
    auto value = [&](size_t off) -> double {
      if (single) return little ? Decode_LE_Float32(b, off) : Decode_BE_Float32(b, off);
      return Float64_At(b, off, little);
    };
    if (!Counts_Fit(b.size(), data_start, static_cast<uint64_t>(total) * (real_only ? 1 : 2), word))
      return Reader_Fail(s, 62, "ECP/DRW");
    std::vector<float> re(static_cast<size_t>(n)), im(static_cast<size_t>(n), 0.0f);
    const auto skip = static_cast<size_t>(first_point);
    for (int32_t i = 0; i < n; ++i)
      re[static_cast<size_t>(i)] = static_cast<float>(value(data_start + (skip + static_cast<size_t>(i)) * word));
    if (!real_only)
      for (int32_t i = 0; i < n; ++i)
        im[static_cast<size_t>(i)] = static_cast<float>(
            value(data_start + (static_cast<size_t>(total) + skip + static_cast<size_t>(i)) * word));

    Data_Param p;
    const std::vector<Ecp_Param> params = Read_Ecp_Params(b);
    Take_Params(p, params);
    const std::string title = Fetch_Text(b, Off_Title, 128);
    const std::string comment = Fetch_Text(b, Off_Comment, 128);
    const bool swap = session::Setting_Index("ECP COMNT MODE") >= 0 &&
                      s.settings.Int("ECP COMNT MODE") != 0;
    p.COMNT = swap ? comment : title;
    p.EXPCM = swap ? title : comment;
    p.OBNUC = Observe_Nucleus(s, p.OBNUC, observe);
    if (!p.IRNUC.empty()) p.IRNUC = Normalize_Nucleus(Nucleus_Of_Word(p.IRNUC), s.Nuclei).text;
    p.Data_File = path;
    p.Instrument_Name = "JEOL";
    p.Observe_Text = Observe_Text_Of(observe);
    // The carrier sits at X_OFFSET ppm: 0 ppm is that far below it.
    const double zero_ppm = observe / (1 + p.OBSET * 1e-6);

    s.Array_Rows = 1;
    s.Array_Row = 0;
    if (fid) {
      const double dwell = (axis_stop - axis_start) / (n - 1);
      if (dwell > 0) p.FREQU = static_cast<float>(1.0 / dwell);
      if (!(p.FREQU > 0)) return Reader_Refuse(s, "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ");
      p.SMODE = 0;
      p.POINT = size;
      p.ACQTM = static_cast<float>(n / static_cast<double>(p.FREQU));
      p.RESOL = p.FREQU / static_cast<float>(size);
      p.SMEXR = p.OBSET;
      p.SMTMS = static_cast<float>(size / 2);
      Alloc_Point_Arrays(s, size);
      for (int32_t i = 0; i < n; ++i) {
        s.Fid_Re(static_cast<size_t>(i)) = re[static_cast<size_t>(i)];
        s.Fid_Im(static_cast<size_t>(i)) = im[static_cast<size_t>(i)];
      }
      s.Spec_Axis.assign(static_cast<size_t>(size), 0.0f);
      s.Fid_Format_Class = 3;
      s.Is_Fid = 1;
      s.Is_Spectrum = 0;
    } else {
      double first = unit == Ecp_Unit_Ppm ? axis_start : axis_start / observe;
      double last = unit == Ecp_Unit_Ppm ? axis_stop : axis_stop / observe;
      if (first > last) {
        std::reverse(re.begin(), re.end());
        std::reverse(im.begin(), im.end());
        std::swap(first, last);
      }
      const double step = (last - first) / (n - 1);
      p.SMODE = 1;
      p.POINT = n;
      p.RESOL = static_cast<float>(step * zero_ppm);
      p.FREQU = static_cast<float>(step * n * zero_ppm);
      p.SMTMS = 0;
      p.SMEXR = static_cast<float>(first);
      Alloc_Point_Arrays(s, n);
      s.Spec_Axis.assign(static_cast<size_t>(n), 0.0f);
      for (int32_t i = 0; i < n; ++i) {
        const auto k = static_cast<size_t>(i);
        s.Spec_Re(k) = s.Ft_Re(k) = re[k];
        s.Spec_Im(k) = s.Ft_Im(k) = im[k];
        s.Spec_Axis[k] = static_cast<float>(first + step * i);
      }
      s.Is_Fid = 0;
      s.Is_Spectrum = 1;
    }
    s.Spec_Points = size;
    s.Base_Point_Count = size;
    s.Fid_Points = n;
    s.Param = p;
    s.Observe_Frequency = observe;
    s.Spectrum_Frequency = zero_ppm;
    s.Acq_Mode = 0;
    const double delay = fid ? Ecp_Filter_Delay(params, p.FREQU) : 0;
    s.Fid_Shift_Preset = delay > 0 ? To_Int32(std::nearbyint(delay)) : -1;
    s.Vendor_Zero_Frequency = fid ? zero_ppm : 0.0;
    if (!fid) Update_Scale_Values(s);
    s.ui->Wait_Cursor(false);
    return 0;
  } catch (const std::out_of_range&) {
    return Reader_Fail(s, 62, "ECP/DRW");
  } catch (const std::bad_alloc&) {
    return Reader_Fail(s, 7, "ECP/DRW");
  } catch (const std::exception&) {
    return Reader_Fail(s, 57, "ECP/DRW");
  }
}

}  // namespace tevo::datafiles
