// Bruker raw and processed data. The parameter readers fill a Bruker_Read;
// the session is only changed once the data file decoded, so a refused or
// broken data set leaves the former one in place.
#include "datafiles/bruker.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <map>
#include <stdexcept>

#include "datafiles/decoders.h"
#include "datafiles/nucleus.h"
#include "datafiles/parameter_forms.h"
#include "datafiles/date_text.h"
#include "datafiles/vendor_text.h"
#include "platform/ui.h"
#include "relaxation/array_data.h"
#include "session/messages.h"
#include "session/session.h"
#include "session/text_encoding.h"

namespace tevo::datafiles {

namespace fs = std::filesystem;

namespace {

// A text value the vendor broke over lines: "<first part" on the label line,
// the rest on the following lines up to the one that ends in ">".
void Continue_Text_Value(Bruker_Label& l, const std::string& line) {
  std::string part = line;
  if (!part.empty() && part.back() == '>') part.pop_back();
  part = Trim(part);
  if (part.empty()) return;
  if (!l.value.empty()) l.value += ' ';
  l.value += part;
}

}  // namespace

std::vector<Bruker_Label> Read_Bruker_Labels(const std::string& text) {
  std::vector<Bruker_Label> out;
  Bruker_Label* array = nullptr;  // the array label still taking numbers
  Bruker_Label* open_text = nullptr;  // a "<..." value still waiting for its ">"
  for (const std::string& raw : Split_Lines(text)) {
    const std::string line = Trim(raw);
    if (open_text && line.rfind("##", 0) != 0) {
      Continue_Text_Value(*open_text, line);
      if (!line.empty() && line.back() == '>') open_text = nullptr;
      continue;
    }
    open_text = nullptr;
    if (line.rfind("##", 0) == 0) {
      array = nullptr;
      Bruker_Label l;
      const std::size_t eq = line.find('=');
      l.name = Upper(Trim(line.substr(2, eq == std::string::npos ? std::string::npos : eq - 2)));
      std::string v = eq == std::string::npos ? std::string() : Trim(line.substr(eq + 1));
      const bool unclosed = v.size() >= 1 && v.front() == '<' && (v.size() < 2 || v.back() != '>');
      if (v.size() >= 2 && v.front() == '<' && v.back() == '>') v = v.substr(1, v.size() - 2);
      if (unclosed) v.erase(0, 1);
      l.value = v;
      out.push_back(l);
      if (unclosed) open_text = &out.back();
      // "(0..31)" announces the numbers on the following lines.
      if (v.size() > 2 && v.front() == '(' && v.find("..") != std::string::npos &&
          v.back() == ')')
        array = &out.back();
      continue;
    }
    if (line.rfind("$$", 0) == 0) {
      array = nullptr;
      out.push_back({"$$", Trim(line.substr(2)), {}});
      continue;
    }
    if (!array) continue;
    if (!line.empty() && line[0] == '<') continue;  // a list of names: kept as text
    std::size_t pos = 0;
    while (pos < line.size()) {
      while (pos < line.size() && line[pos] == ' ') ++pos;
      if (pos >= line.size()) break;
      const std::size_t end = std::min(line.find(' ', pos), line.size());
      const auto num = Leading_Number(line.substr(pos, end - pos));
      if (!num) {
        array->name = "ERROR:";
        array = nullptr;
        break;
      }
      array->list.push_back(*num);
      pos = end;
    }
  }
  return out;
}

namespace {

int16_t Map_Acq_Mode(double aq_mod) {
  const auto v = static_cast<int>(std::llround(aq_mod));
  return v == 1 ? 0 : v == 2 ? 1 : 2;
}

bool Origin_Names_Vendor(const std::string& value) {
  const std::string u = Upper(value);
  return u.find("UXNMR") != std::string::npos || u.find("BRUKER") != std::string::npos ||
         u.find("XWIN-NMR") != std::string::npos;
}

// The labels of a parameter file, or nullopt with the error number.
std::optional<std::vector<Bruker_Label>> Load_Labels(const std::string& path, int* error) {
  auto bytes = Read_Whole_File(path, error);
  if (!bytes) return std::nullopt;
  return Read_Bruker_Labels(*bytes);
}

std::string Date_Text_Of(double seconds) {
  static const char* const months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const std::time_t t = Clamped_Epoch_Seconds(seconds);
  std::tm tm{};
  gmtime_r(&t, &tm);
  char buf[64];
  std::snprintf(buf, sizeof buf, "%04d/%s/%02d  %02d:%02d:%02d", tm.tm_year + 1900,
                months[tm.tm_mon], tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec);
  return buf;
}

bool Has_Point(const std::string& v) { return v.find('.') != std::string::npos; }

// ##$BYTORDA / ##$BYTORDP: 0 little-endian, 1 big-endian; any other value
// gives -1, which the size checks refuse.
int16_t Byte_Order_Of(const std::string& v) {
  const auto n = Leading_Number(v);
  return n == 0.0 ? 0 : n == 1.0 ? 1 : -1;
}

// The labels shared by the raw and the processed read of acqu/acqus. With
// `sizes` the size and axis labels are taken too.
void Take_Acquisition_Label(Bruker_Read& r, const Bruker_Label& l, bool sizes) {
  Data_Param& p = r.p;
  const std::string& n = l.name;
  const std::string& v = l.value;
  if (n == "ORIGIN") {
    if (Origin_Names_Vendor(v)) r.Origin_Ok = true;
  } else if (n == "OWNER") r.Owner = v;
  else if (n == "$PULPROG") p.EXMOD = v;
  else if (n == "$PROBHD") r.Probe = v;
  else if (n == "$GRDPROG") r.Gradient_Program = v;
  else if (n == "$INSTRUM") p.Instrument_Name = v;
  else if (n == "$DE") p.DELAY = To_Real32(Val(v));
  else if (n == "$DS") p.DUMMY = To_Int32(Val(v));
  else if (n == "$FW") p.FILTR = To_Real32(Val(v));
  else if (n == "$RO") p.CSPED = To_Real32(Val(v));
  else if (n == "$NUC1") r.Nuc1 = Upper(v);
  else if (n == "$NUCLEUS") r.Nucleus = Upper(v);
  else if (n == "$P") {
    r.P = l.list;
    for (std::size_t i = 0; i < 5 && i < l.list.size(); ++i) p.PW[i] = static_cast<float>(l.list[i]);
  } else if (n == "$D") {
    r.D = l.list;
    for (std::size_t i = 0; i < 5 && i + 1 < l.list.size(); ++i)
      p.PI[i] = static_cast<float>(l.list[i + 1]);
    if (p.PD == 0 && l.list.size() > 1) p.PD = static_cast<float>(l.list[1]);
  } else if (n == "$CNST") r.Cnst = l.list;
  else if (n == "$SOLVENT") p.SLVNT = v;
  else if (n == "$DECNUC") p.IRNUC = v;
  else if (n == "$RG") p.RGAIN = To_Int32(Val(v));
  else if (n == "$NS") p.SCANS = p.TIMES = To_Int32(Val(v));
  else if (n == "$TE") p.CTEMP = To_Real32(Val(v) - 273.15);
  else if (n == "$DATE") {
    if (Val(v) > 0) p.DATIM = Date_Text_Of(Val(v));
  } else if (n == "$GRPDLY") {
    if (Val(v) > 0) r.Group_Delay = Val(v);
  } else if (n == "$DECIM") r.Decim = Val(v);
  else if (n == "$DSPFVS") r.Dspfvs = Val(v);
  else if (n == "$AQ_MOD") r.Acq_Mode = Map_Acq_Mode(Val(v));
  else if (!sizes) return;
  else if (n == "$BYTORDA") r.Byte_Order = Byte_Order_Of(v);
  else if (n == "$BF1") {
    r.Bf1 = Val(v);
    p.OBFRQ = static_cast<float>(r.Bf1);
  }
  else if (n == "$SFO1") {
    r.Observe_Frequency = Val(v);
    p.OBSET = 0;
    p.OBFIN = To_Real32(Val(v) * 1e6 - static_cast<double>(p.OBFRQ) * 1e6);
  } else if (n == "$SW_H") p.FREQU = To_Real32(Val(v));
  else if (n == "$TD") {
    p.POINT = To_Int32(Val(v));
    r.Td = p.POINT;
  } else if (n == "$YMAX_A" || n == "$YMIN_A") {
    if (Has_Point(v)) r.Y_Has_Point = true;
  }
}

int Take_Acquisition_File(Bruker_Read& r, const std::string& path, bool sizes) {
  int err = 0;
  auto labels = Load_Labels(path, &err);
  if (!labels) return -1;
  for (const Bruker_Label& l : *labels) {
    if (l.name == "ERROR:") return -1;
    Take_Acquisition_Label(r, l, sizes);
  }
  return 0;
}

Kind_Check Check_Labels(const std::string& path, const char* byte_order_label,
                        int16_t* acq_mode) {
  Kind_Check out;
  int err = 0;
  auto labels = Load_Labels(path, &err);
  if (!labels) {
    out.status = -1;
    return out;
  }
  bool origin = false;
  for (const Bruker_Label& l : *labels) {
    if (l.name == "ORIGIN" && Origin_Names_Vendor(l.value)) origin = true;
    else if (l.name == "$PULPROG") out.kind = l.value;
    else if (l.name == "$AQ_MOD" && acq_mode) *acq_mode = Map_Acq_Mode(Val(l.value));
  }
  (void)byte_order_label;
  out.status = origin ? 0 : 1;
  return out;
}

// Decodes `count` numbers of the word format and byte order from offset 0.
// Throws std::out_of_range when the file is shorter than that.
std::vector<double> Decode_Words(const std::string& bytes, int32_t count, int16_t word_format,
                                 int16_t byte_order) {
  const Byte_View v = As_Bytes(bytes);
  std::vector<double> out(static_cast<std::size_t>(count));
  const bool big = byte_order == 1;
  for (int32_t i = 0; i < count; ++i) {
    const auto k = static_cast<std::size_t>(i);
    switch (word_format) {
      case 0:
        out[k] = big ? Decode_BE_Int32(v, k * 4) : Decode_LE_Int32(v, k * 4);
        break;
      case 2:
        out[k] = big ? Decode_BE_Float32(v, k * 4) : Decode_LE_Float32(v, k * 4);
        break;
      default:
        out[k] = big ? Decode_BE_Float64(v, k * 8) : Decode_LE_Float64(v, k * 8);
        break;
    }
  }
  return out;
}

// The folder of a data file, or the path itself when it is a folder.
fs::path Folder_Of(const std::string& path) {
  const fs::path p(path);
  std::error_code ec;
  if (fs::is_directory(p, ec)) return p;
  return p.parent_path();
}

// A file of the folder by name, trying the name as given and upper-cased.
std::optional<fs::path> Find_File(const fs::path& folder, const std::string& name) {
  std::error_code ec;
  for (const std::string& n : {name, Upper(name)}) {
    const fs::path p = folder / n;
    if (fs::is_regular_file(p, ec)) return p;
  }
  return std::nullopt;
}

// The twin of a data file that carries an extension: the same stem with
// `ext` (".aqs" beside "x.fid", ".fqs" beside "x.1r"), either case.
std::optional<fs::path> Twin_Of(const std::string& path, const std::string& ext) {
  const fs::path p(path);
  std::error_code ec;
  if (!p.has_extension() || !fs::is_regular_file(p, ec)) return std::nullopt;
  for (const std::string& e : {ext, Upper(ext)}) {
    fs::path twin = p;
    twin.replace_extension(e);
    if (fs::is_regular_file(twin, ec) && fs::file_size(twin, ec) > 0) return twin;
  }
  return std::nullopt;
}

}  // namespace

Kind_Check Check_Bruker_Fid_Folder(const std::string& path) {
  if (const auto twin = Twin_Of(path, ".aqs")) return Check_Bruker_Acquisition(twin->string());
  const auto acqus = Find_File(Folder_Of(path), "acqus");
  if (!acqus) return {};
  return Check_Bruker_Acquisition(acqus->string());
}

Kind_Check Check_Bruker_Processed_Folder(const std::string& path) {
  if (const auto twin = Twin_Of(path, ".fqs")) return RMBP(twin->string());
  const auto procs = Find_File(Folder_Of(path), "procs");
  if (!procs) return {};
  return RMBP(procs->string());
}

Kind_Check Check_Bruker_Acquisition(const std::string& path, int16_t* acq_mode) {
  return Check_Labels(path, "$BYTORDA", acq_mode);
}

Kind_Check RMBP(const std::string& path) { return Check_Labels(path, "$BYTORDP", nullptr); }

double Bruker_Group_Delay(double decim, double dspfvs) {
  // Delays (points) of the vendor's digital filters by firmware version and
  // decimation factor, as published with the format.
  static const std::map<int, std::map<int, double>> table = {
      {10, {{2, 44.75},     {3, 33.5},       {4, 66.625},     {6, 59.083333333},
            {8, 68.5625},   {12, 60.375},    {16, 69.53125},  {24, 61.020833333},
            {32, 70.015625}, {48, 61.34375}, {64, 70.2578125}, {96, 61.505208333},
            {128, 70.37890625}, {192, 61.5859375}, {256, 70.439453125},
            {384, 61.626302083}, {512, 70.4697265625}, {768, 61.646484375},
            {1024, 70.48486328125}, {1536, 61.656575521}, {2048, 70.492431640625}}},
      {11, {{2, 46},  {3, 36.5},  {4, 48},  {6, 50.166666667}, {8, 53.25}, {12, 69.5},
            {16, 72.25}, {24, 70.166666667}, {32, 72.75}, {48, 70.5}, {64, 73},
            {96, 70.666666667}, {128, 72.5}, {192, 71.333333333}, {256, 72.25},
            {384, 71.666666667}, {512, 72.125}, {768, 71.833333333}, {1024, 72.0625},
            {1536, 71.916666667}, {2048, 72.03125}}},
      {12, {{2, 46},  {3, 36.5},  {4, 48},  {6, 50.166666667}, {8, 53.25}, {12, 69.5},
            {16, 71.625}, {24, 70.166666667}, {32, 72.125}, {48, 70.5}, {64, 72.375},
            {96, 70.666666667}, {128, 72.5}, {192, 71.333333333}, {256, 72.25},
            {384, 71.666666667}, {512, 72.125}, {768, 71.833333333}, {1024, 72.0625},
            {1536, 71.916666667}, {2048, 72.03125}}},
      {13, {{2, 2.75}, {3, 2.833333333}, {4, 2.875}, {6, 2.916666667}, {8, 2.9375},
            {12, 2.958333333}, {16, 2.96875}, {24, 2.979166667}, {32, 2.984375},
            {48, 2.989583333}, {64, 2.9921875}, {96, 2.994791667}}},
  };
  const auto v = table.find(static_cast<int>(std::llround(dspfvs)));
  if (v == table.end()) return 0;
  const auto d = v->second.find(static_cast<int>(std::llround(decim)));
  return d == v->second.end() ? 0 : d->second;
}

int RPBru(Bruker_Read& r, const std::string& path) {
  if (Take_Acquisition_File(r, path, true) != 0) return -1;
  Data_Param& p = r.p;
  p.SMODE = 0;
  // The sizes come from ##$TD on every run: an acqus without it after acqu
  // keeps acqu's count instead of halving the halved one again.
  p.POINT = r.Td;
  if (p.POINT < 10 || r.Observe_Frequency == 0 || p.FREQU <= 0 || p.POINT / 2 > 524288 ||
      !r.Origin_Ok || r.Byte_Order < 0)
    return 1;
  r.Spectrum_Frequency = r.Observe_Frequency;
  p.ACQTM = static_cast<float>(p.POINT / 2 / static_cast<double>(p.FREQU));
  r.Fid_Points = p.POINT / 2;
  p.POINT = Next_Power_Of_Two(r.Fid_Points);
  p.RESOL = p.FREQU / static_cast<float>(p.POINT);
  p.OBNUC = r.Nuc1 == "OFF" ? r.Nucleus : r.Nuc1;
  p.TR = 0;
  if (r.Group_Delay <= 0) r.Group_Delay = Bruker_Group_Delay(r.Decim, r.Dspfvs);
  return 0;
}

int RPBruA(Bruker_Read& r, const std::string& path) {
  return Take_Acquisition_File(r, path, false);
}

int RPBruP(Bruker_Read& r, const std::string& path) {
  int err = 0;
  auto labels = Load_Labels(path, &err);
  if (!labels) return -1;
  Data_Param& p = r.p;
  for (const Bruker_Label& l : *labels) {
    const std::string& n = l.name;
    const std::string& v = l.value;
    if (n == "ERROR:") return -1;
    if (n == "ORIGIN") {
      if (Origin_Names_Vendor(v)) r.Origin_Ok = true;
    } else if (n == "$BYTORDP") r.Byte_Order = Byte_Order_Of(v);
    else if (n == "$SF") r.Spectrum_Frequency = Val(v);
    else if (n == "$SW_P") p.FREQU = To_Real32(Val(v));
    else if (n == "$SI") {
      p.POINT = To_Int32(Val(v));
      r.Td = p.POINT;
    } else if (n == "$OFFSET") p.SMEXR = To_Real32(Val(v));
    else if (n == "$NC_PROC") r.Nc_Proc = static_cast<int32_t>(std::clamp(Val(v), -1e6, 1e6));
    else if (n == "$YMAX_P" || n == "$YMIN_P") {
      if (Has_Point(v)) r.Y_Has_Point = true;
    } else if (n == "$WDW") {
      static const int16_t kinds[] = {0, 3, 1, 2};
      const int w = static_cast<int>(Val(v));
      if (w >= 0 && w <= 3) r.Window_Code = kinds[w];
    } else if (n == "$$" && p.DATIM.empty() && v.size() > 1) {
      p.DATIM = Trim(v);
    }
  }
  p.SMODE = 1;
  r.Observe_Frequency = (static_cast<double>(p.SMEXR) * r.Spectrum_Frequency - p.FREQU / 2.0) * 1e-6 +
                        r.Spectrum_Frequency;
  p.OBFRQ = static_cast<float>(r.Observe_Frequency) - 0.01f;
  p.OBSET = 0;
  p.OBFIN = static_cast<float>(r.Observe_Frequency * 1e6 - static_cast<double>(p.OBFRQ) * 1e6);
  // A missing or zero ##$SF leaves the middle frequency at -FREQU/2 Hz, not
  // 0, so it is refused on its own: the ppm axis divides by it. A negative
  // ##$SW_p would turn the axis round; an unknown byte order or a scale
  // exponent beyond a real's range can't give the intensities.
  if (p.POINT < 10 || r.Observe_Frequency == 0 || !(r.Spectrum_Frequency > 0) || !(p.FREQU > 0) ||
      p.POINT > 524288 || !r.Origin_Ok || r.Byte_Order < 0 || std::abs(r.Nc_Proc) > 64)
    return 1;
  p.ACQTM = p.FREQU > 0 ? static_cast<float>(p.POINT / static_cast<double>(p.FREQU)) : 0.0f;
  p.SMTMS = static_cast<float>(p.POINT - 1);
  p.RESOL = p.FREQU / static_cast<float>(p.POINT);
  p.OBNUC.clear();
  return 0;
}

int Read_Parm_Text(Bruker_Read& r, const std::string& path) {
  int err = 0;
  auto bytes = Read_Whole_File(path, &err);
  if (!bytes) return -1;
  Data_Param& p = r.p;
  for (const std::string& raw : Split_Lines(*bytes)) {
    const std::string line = Trim(raw);
    const std::size_t sp = line.find_first_of(" \t");
    if (sp == std::string::npos) continue;
    const std::string key = Upper(line.substr(0, sp));
    const std::string v = Trim(line.substr(sp));
    if (key == "PULPROG") p.EXMOD = v;
    else if (key == "PROBHD") r.Probe = v;
    else if (key == "GRDPROG") r.Gradient_Program = v;
    else if (key == "AQ") p.ACQTM = To_Real32(Val(v));
    else if (key == "INSTRUM") p.Instrument_Name = v;
    else if (key == "WDW") {
      const std::string w = Upper(v);
      if (w == "EM") r.Window_Code = 0;
      else if (w == "SINE") r.Window_Code = 1;
      else if (w == "QSINE") r.Window_Code = 2;
      else if (w == "GAUSS" || w == "GM") r.Window_Code = 3;
    } else if (key == "NS") p.SCANS = p.TIMES = To_Int32(Val(v));
    else if (key == "DS") p.DUMMY = To_Int32(Val(v));
    else if (key == "RG") p.RGAIN = To_Int32(Val(v));
    else if (key == "SOLVENT") p.SLVNT = v;
    else if (key == "NUC1") r.Nuc1 = Upper(v);
    else if (key == "NUCLEUS") r.Nucleus = Upper(v);
    else if (key == "TE") p.CTEMP = To_Real32(Val(v) - 273.15);
    else if (key == "P0") p.PW[0] = To_Real32(Val(v));
    else if (key == "D1") p.PD = To_Real32(Val(v));
  }
  return 0;
}

int Read_Title(const std::string& path, std::string& comment) {
  auto bytes = Read_Whole_File(path);
  if (!bytes) return -1;
  std::string out;
  int taken = 0;
  for (const std::string& raw : Split_Lines(*bytes)) {
    const std::string line = Trim(raw);
    if (line.empty()) continue;
    if (!out.empty()) out += ' ';
    out += Sjis_To_Utf8(line);
    if (++taken == 3) break;
  }
  comment = out;
  return 0;
}

int16_t Decide_Word_Format(Session& s, std::size_t length, int32_t td, bool y_has_point, bool ask) {
  if (td > 0 && length / static_cast<std::size_t>(td) == 8) return 3;
  if (y_has_point && ask) {
    const std::string word = Form120(s);
    return word == "SINGLE" ? 2 : word == "DOUBLE" ? 3 : 0;
  }
  return 0;
}

namespace {

// The nucleus spelling of the open: OBNUC and IRNUC through the table.
void Settle_Nuclei(Session& s, Data_Param& p) {
  const Nucleus_Name ob = Normalize_Nucleus(p.OBNUC, s.Nuclei);
  p.OBNUC = ob.text;
  if (!p.IRNUC.empty()) p.IRNUC = Normalize_Nucleus(p.IRNUC, s.Nuclei).text;
}

// What the parameter block and the native file keep beside the tags: the
// probe and the gradient program, the first 32 entries of the P, D and CNST
// lists, and the window of the vendor's own processing.
void Keep_Acquisition_Extras(const Bruker_Read& r, Data_Param& p) {
  p.Probe_Name = r.Probe;
  p.Gradient_Program = r.Gradient_Program;
  for (auto [from, to] : {std::pair{&r.P, &p.P_List}, std::pair{&r.D, &p.D_List}, std::pair{&r.Cnst, &p.CNST_List}}) {
    to->fill(0.0f);
    for (std::size_t k = 0; k < to->size() && k < from->size(); ++k) (*to)[k] = static_cast<float>((*from)[k]);
  }
  p.Window_Code = r.Window_Code;
}

// The comment of an experiment: "title" beside the data, or the one the
// vendor keeps in the first processing folder ("pdata/1/title").
void Read_Experiment_Title(const fs::path& folder, std::string& comment) {
  if (const auto title = Find_File(folder, "title")) Read_Title(title->string(), comment);
  else if (const auto first = Find_File(folder / "pdata" / "1", "title")) Read_Title(first->string(), comment);
}

// Factor of the 1r and 1i integers: the vendor stores intensity / 2^NC_proc,
// so spectra of one sample processed with different exponents compare only
// once it is put back. "BRUKER NC SCALE" 0 takes the integers as they stand.
double Nc_Scale(const Session& s, const Bruker_Read& r) {
  return s.settings.Int("BRUKER NC SCALE") != 0 ? std::ldexp(1.0, r.Nc_Proc) : 1.0;
}

// The 0 ppm frequency (MHz) of a FID's data set as the spectrometer states
// it: ##$SF of pdata/1/procs beside the FID when there is one (it carries
// the operator's reference, SR = SF - BF1), else ##$BF1 of the acquisition.
double Fid_Zero_Frequency(const fs::path& folder, double bf1) {
  if (const auto procs = Find_File(folder / "pdata" / "1", "procs")) {
    int err = 0;
    if (const auto labels = Load_Labels(procs->string(), &err))
      for (const Bruker_Label& l : *labels)
        if (l.name == "$SF" && Val(l.value) > 0) return Val(l.value);
  }
  return bf1 > 0 ? bf1 : 0.0;
}

// The single-converter question; false when the operator cancels.
bool Ask_Single_Converter(Session& s, int16_t& acq_mode) {
  const int c = s.ui->Choose(
      "Bruker補正",
      "BrukerのQD検出システムで,Single AD コンバーターモードで測定したときは特別な補正フーリエ変換"
      "が必要です。測定モードにより選んでください。通常は自動設定ですので変更しないでください。",
      {"Single AD-Converter", "Dual AD-Converter"}, 0);
  if (c < 0) return false;
  acq_mode = c == 0 ? 1 : 0;
  return true;
}

}  // namespace

// ---- relaxation series in a "ser" ----

namespace {

// The pulse program's text without its comments (";" to the end of a line).
std::string Pulse_Program_Text(const fs::path& folder) {
  const auto file = Find_File(folder, "pulseprogram");
  const auto text = file ? Read_Whole_File(file->string()) : std::nullopt;
  if (!text) return {};
  std::string out;
  for (const std::string& line : Split_Lines(*text)) out += line.substr(0, line.find(';')) + "\n";
  return out;
}

bool Has_Word(const std::string& text, const std::string& word) {
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
    const auto is_name = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; };
    const bool before = at == 0 || !is_name(text[at - 1]);
    const bool after = at + word.size() >= text.size() || !is_name(text[at + word.size()]);
    if (before && after) return true;
  }
  return false;
}

// A list line in seconds: "10s", "5m" (ms), "90u" (us), or a bare number in
// the list's own unit.
std::optional<double> List_Seconds(const std::string& line, double bare_unit, double& raw) {
  const std::string t = Trim(line);
  if (t.empty()) return std::nullopt;
  char* end = nullptr;
  raw = std::strtod(t.c_str(), &end);
  if (end == t.c_str()) return std::nullopt;
  const std::string unit = Trim(end);
  if (unit.empty()) return raw * bare_unit;
  if (unit == "s") return raw;
  if (unit == "m" || unit == "ms") return raw * 1e-3;
  if (unit == "u" || unit == "us") return raw * 1e-6;
  return std::nullopt;
}

// The name the acquisition gives the list (##$VDLIST= <menthol_T1>), else
// the file's own name.
std::string List_Name(const fs::path& folder, const std::string& label, const std::string& file) {
  if (const auto acqus = Find_File(folder, "acqus"))
    if (const auto labels = Load_Labels(acqus->string(), nullptr))
      for (const Bruker_Label& l : *labels)
        if (l.name == label) {
          std::string v = Trim(l.value);
          if (v.size() >= 2 && v.front() == '<' && v.back() == '>') v = v.substr(1, v.size() - 2);
          if (!v.empty()) return v;
        }
  return file;
}

// The time of one pass of the loop a vclist counts: an echo train of the
// T2 series repeats "d20, 180-degree pulse p2, d20", so one pass lasts
// 2 d20 + p2 (acqus D[20] in s, P[2] in us). Nothing without a d20.
std::optional<double> Echo_Loop_Seconds(const fs::path& folder) {
  const auto acqus = Find_File(folder, "acqus");
  const auto labels = acqus ? Load_Labels(acqus->string(), nullptr) : std::nullopt;
  if (!labels) return std::nullopt;
  double d20 = 0, p2 = 0;
  for (const Bruker_Label& l : *labels) {
    if (l.name == "$D" && l.list.size() > 20) d20 = l.list[20];
    if (l.name == "$P" && l.list.size() > 2) p2 = l.list[2];
  }
  if (!(d20 > 0) || !std::isfinite(d20) || !(p2 >= 0) || !std::isfinite(p2)) return std::nullopt;
  return 2 * d20 + p2 * 1e-6;
}

}  // namespace

std::optional<Bruker_Series> Find_Series_List(const fs::path& folder) {
  const std::string program = Pulse_Program_Text(folder);
  // The list that the pulse program steps on from one row to the next.
  struct Kind {
    const char* step;
    const char* file;
    const char* label;
    double bare_unit;  // s per unit of a number written without one; 0: a loop count
  };
  for (const Kind& k : {Kind{"ivd", "vdlist", "$VDLIST", 1.0}, Kind{"ivp", "vplist", "$VPLIST", 1e-6},
                        Kind{"ivc", "vclist", "$VCLIST", 0.0}}) {
    if (!Has_Word(program, k.step)) continue;
    // A count list gives delays only with the time of one pass of its loop.
    double bare_unit = k.bare_unit;
    if (bare_unit == 0) {
      const auto loop = Echo_Loop_Seconds(folder);
      if (!loop) continue;
      bare_unit = *loop;
    }
    const auto file = Find_File(folder, k.file);
    const auto text = file ? Read_Whole_File(file->string()) : std::nullopt;
    if (!text) continue;
    Bruker_Series list;
    for (const std::string& line : Split_Lines(*text)) {
      double raw = 0;
      if (const auto sec = List_Seconds(line, bare_unit, raw)) {
        list.seconds.push_back(*sec);
        list.raw.push_back(raw);
      }
    }
    if (list.seconds.empty()) continue;
    list.name = List_Name(folder, k.label, k.file);
    return list;
  }
  return std::nullopt;
}

int32_t Series_Rows(const fs::path& folder) {
  const auto acqu2s = Find_File(folder, "acqu2s");
  const auto labels = acqu2s ? Load_Labels(acqu2s->string(), nullptr) : std::nullopt;
  if (!labels) return 0;
  for (const Bruker_Label& l : *labels)
    if (l.name == "$TD") {
      const double td = Val(l.value);
      return td >= 1 && td <= 65536 ? static_cast<int32_t>(td) : 0;
    }
  return 0;
}

Kind_Check Check_Bruker_Series(const std::string& path) {
  Kind_Check k = Check_Bruker_Fid_Folder(path);
  if (k.status == 0) k.kind = Find_Series_List(Folder_Of(path)) ? "SERIES" : "2D";
  return k;
}

namespace {

// One FID row from `bytes` at `offset`: real and negated imaginary part
// (the conjugate gives the spectrum its right sense with the program's
// transform), less the DC offset, the means over the last 40 % of the points.
void Decode_Fid_Row(const std::string& bytes, std::size_t offset, std::size_t length, int32_t n, int16_t word,
                    int16_t order, std::vector<float>& re, std::vector<float>& im) {
  const std::vector<double> v = Decode_Words(bytes.substr(offset, length), 2 * n, word, order);
  re.assign(static_cast<std::size_t>(n), 0.0f);
  im.assign(static_cast<std::size_t>(n), 0.0f);
  for (int32_t k = 0; k < n; ++k) {
    re[static_cast<std::size_t>(k)] = static_cast<float>(v[2 * static_cast<std::size_t>(k)]);
    im[static_cast<std::size_t>(k)] = static_cast<float>(-v[2 * static_cast<std::size_t>(k) + 1]);
  }
  const auto tail = static_cast<int32_t>(n * 0.4);
  if (tail > 0) {
    double sr = 0, si = 0;
    for (int32_t k = n - tail; k < n; ++k) {
      sr += re[static_cast<std::size_t>(k)];
      si += im[static_cast<std::size_t>(k)];
    }
    const double mr = sr / tail, mi = si / tail;
    for (int32_t k = 0; k < n; ++k) {
      re[static_cast<std::size_t>(k)] = static_cast<float>(re[static_cast<std::size_t>(k)] - mr);
      im[static_cast<std::size_t>(k)] = static_cast<float>(im[static_cast<std::size_t>(k)] - mi);
    }
  }
}

// The FID of "fid" (one row) or the rows of a relaxation series "ser", each
// row padded to whole 1024-byte blocks as the spectrometer writes them.
int Read_Bruker_Rows(Session& s, const std::string& path, bool series) {
  try {
    s.ui->Wait_Cursor(true);
    const fs::path folder = Folder_Of(path);
    Bruker_Read r;
    // "x.fid" with its twin "x.aqs" holding the parameters, or a folder.
    const auto twin = series ? std::nullopt : Twin_Of(path, ".aqs");
    const auto acqus = twin ? twin : Find_File(folder, "acqus");
    if (!acqus) {
      s.ui->Wait_Cursor(false);
      return 1;
    }
    // acqu first, so that the values of acqus stand.
    if (const auto acqu = twin ? std::nullopt : Find_File(folder, "acqu"))
      if (RPBru(r, acqu->string()) < 0) return Reader_Fail(s, 57, "RPBru/DRW");
    const int st = RPBru(r, acqus->string());
    if (st < 0) return Reader_Fail(s, 57, "RPBru/DRW");
    if (st > 0) return Reader_Refuse(s, "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ");

    std::optional<Bruker_Series> list;
    int32_t rows = 1;
    if (series) {
      list = Find_Series_List(folder);
      rows = list ? Series_Rows(folder) : 0;
      if (rows < 1) return Reader_Refuse(s, "2D Data !");
    }
    const auto fid = twin ? std::optional<fs::path>(path) : Find_File(folder, series ? "ser" : "fid");
    if (!fid) return Reader_Fail(s, 53, "RPBru/DRW");
    int err = 0;
    auto bytes = Read_Whole_File(fid->string(), &err);
    if (!bytes) return Reader_Fail(s, err, "RPBru/DRW");
    const std::size_t row_bytes = series ? bytes->size() / static_cast<std::size_t>(rows) : bytes->size();
    const int16_t word = Decide_Word_Format(s, row_bytes, r.Td, r.Y_Has_Point, true);
    const int32_t n = r.Fid_Points;
    const std::size_t size_of_word = word == 3 ? 8 : 4;
    const std::size_t stride = (2 * static_cast<std::size_t>(n) * size_of_word + 1023) / 1024 * 1024;
    if (series && stride * static_cast<std::size_t>(rows) > bytes->size())
      return Reader_Refuse(s, "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ");
    std::vector<std::vector<float>> re(static_cast<std::size_t>(rows)), im(static_cast<std::size_t>(rows));
    for (int32_t row = 0; row < rows; ++row)
      Decode_Fid_Row(*bytes, static_cast<std::size_t>(row) * stride, stride, n, word, r.Byte_Order,
                     re[static_cast<std::size_t>(row)], im[static_cast<std::size_t>(row)]);

    int16_t acq_mode = r.Acq_Mode;
    if (acq_mode == 1 && !Ask_Single_Converter(s, acq_mode)) {
      s.ui->Wait_Cursor(false);
      return 1;
    }

    // Commit.
    Data_Param p = r.p;
    Settle_Nuclei(s, p);
    Keep_Acquisition_Extras(r, p);
    Read_Experiment_Title(folder, p.COMNT);
    p.Data_File = fid->string();
    p.Observe_Text = Observe_Text_Of(r.Observe_Frequency);
    const int32_t size = p.POINT;
    s.Array_Rows = rows;
    s.Array_Row = 0;
    Alloc_Point_Arrays(s, size);
    s.Spec_Points = size;
    s.Base_Point_Count = size;
    s.Fid_Points = n;
    for (int32_t row = 0; row < rows; ++row)
      for (int32_t k = 0; k < n; ++k) {
        const auto i = static_cast<std::size_t>(k), j = static_cast<std::size_t>(row);
        s.Fid_Re(i, j) = re[j][i];
        s.Fid_Im(i, j) = im[j][i];
      }
    s.Spec_Axis.assign(static_cast<std::size_t>(size), 0.0f);
    s.Param = p;
    s.Measured_By = r.Owner;
    s.Observe_Frequency = r.Observe_Frequency;
    s.Spectrum_Frequency = r.Spectrum_Frequency;
    s.Acq_Mode = acq_mode;
    s.Fid_Format_Class = 1;
    s.Fid_Shift_Preset = r.Group_Delay > 0 ? static_cast<int32_t>(std::nearbyint(r.Group_Delay)) : -1;
    s.Vendor_Zero_Frequency = twin ? (r.Bf1 > 0 ? r.Bf1 : 0.0) : Fid_Zero_Frequency(folder, r.Bf1);
    s.Is_Fid = 1;
    s.Is_Spectrum = 0;
    if (list) {
      // The list runs round when the series has more rows than entries.
      s.Delay_List.clear();
      s.Delay_Raw.clear();
      for (int32_t row = 0; row < rows; ++row) {
        const std::size_t k = static_cast<std::size_t>(row) % list->seconds.size();
        s.Delay_List.push_back(static_cast<float>(list->seconds[k]));
        s.Delay_Raw.push_back(static_cast<float>(list->raw[k]));
      }
      s.Delay_Name = list->name;
      s.Delay_Linear = 0;
      relaxation::Set_Delay_Labels(s);
    }
    s.ui->Wait_Cursor(false);
    return 0;
  } catch (const std::out_of_range&) {
    return Reader_Fail(s, 62, "RPBru/DRW");
  } catch (const std::bad_alloc&) {
    return Reader_Fail(s, 7, "RPBru/DRW");
  } catch (const std::exception&) {
    return Reader_Fail(s, 57, "RPBru/DRW");
  }
}

}  // namespace

int Read_Bruker_Fid(Session& s, const std::string& path) { return Read_Bruker_Rows(s, path, false); }

int Read_Bruker_Series(Session& s, const std::string& path) { return Read_Bruker_Rows(s, path, true); }

int Read_Bruker_Spectrum(Session& s, const std::string& path) {
  try {
    s.ui->Wait_Cursor(true);
    fs::path folder = Folder_Of(path);
    // An experiment folder: the processed data sit in pdata/N; the lowest N
    // that holds a "1r" is taken.
    if (!Find_File(folder, "procs") && fs::is_directory(folder / "pdata")) {
      std::vector<int> numbers;
      for (const auto& e : fs::directory_iterator(folder / "pdata")) {
        const std::string name = e.path().filename().string();
        if (!name.empty() && name.find_first_not_of("0123456789") == std::string::npos &&
            Find_File(e.path(), "1r"))
          numbers.push_back(std::stoi(name));
      }
      if (numbers.empty()) return Reader_Refuse(s, "Dataが違います");
      folder = folder / "pdata" / std::to_string(*std::min_element(numbers.begin(), numbers.end()));
    }
    Bruker_Read r;
    // "x.1r" with its twin "x.fqs" holding the parameters, or a folder.
    const auto twin = Twin_Of(path, ".fqs");
    const auto procs = twin ? twin : Find_File(folder, "procs");
    if (!procs) {
      s.ui->Wait_Cursor(false);
      return 1;
    }
    const int st = RPBruP(r, procs->string());
    if (st < 0) return Reader_Fail(s, 57, "RPBruP/DRW");
    if (st > 0) return Reader_Refuse(s, "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ");
    // acqu then acqus, here or one and two folders up.
    for (const fs::path& up : {folder, folder.parent_path(), folder.parent_path().parent_path()}) {
      const auto acqus = Find_File(up, "acqus");
      if (!acqus) continue;
      if (const auto acqu = Find_File(up, "acqu"))
        if (RPBruA(r, acqu->string()) < 0) return Reader_Fail(s, 57, "RPBruA/DRW");
      if (RPBruA(r, acqus->string()) < 0) return Reader_Fail(s, 57, "RPBruA/DRW");
      break;
    }
    if (const auto parm = Find_File(folder, "parm.txt")) Read_Parm_Text(r, parm->string());
    Read_Experiment_Title(folder, r.p.COMNT);
    r.p.OBNUC = r.Nuc1.empty() || r.Nuc1 == "OFF" ? r.Nucleus : r.Nuc1;

    const auto f1r = twin ? std::optional<fs::path>(path) : Find_File(folder, "1r");
    if (!f1r) return Reader_Fail(s, 53, "RPBruP/DRW");
    int err = 0;
    auto bytes = Read_Whole_File(f1r->string(), &err);
    if (!bytes) return Reader_Fail(s, err, "RPBruP/DRW");
    const int32_t n = r.p.POINT;
    const int16_t word = Decide_Word_Format(s, bytes->size(), r.Td, r.Y_Has_Point, r.p.LOOP[3] == 0);
    const std::vector<double> vr = Decode_Words(*bytes, n, word, r.Byte_Order);
    std::vector<double> vi;
    auto f1i = twin ? Twin_Of(path, ".1i") : Find_File(folder, "1i");
    if (f1i) {
      auto ib = Read_Whole_File(f1i->string(), &err);
      if (!ib) return Reader_Fail(s, err, "RPBruP/DRW");
      vi = Decode_Words(*ib, n, word, r.Byte_Order);
    }

    Data_Param p = r.p;
    Settle_Nuclei(s, p);
    Keep_Acquisition_Extras(r, p);
    p.Data_File = f1r->string();
    p.Observe_Text = Observe_Text_Of(r.Observe_Frequency);
    s.Array_Rows = 1;
    s.Array_Row = 0;
    Alloc_Point_Arrays(s, n);
    s.Spec_Points = n;
    s.Base_Point_Count = n;
    s.Fid_Points = n;
    s.Spec_Axis.assign(static_cast<std::size_t>(n), 0.0f);
    // File point i goes to N - 1 - i, so the index ascends in ppm.
    const double scale = Nc_Scale(s, r);
    for (int32_t i = 0; i < n; ++i) {
      const auto k = static_cast<std::size_t>(n - 1 - i);
      s.Ft_Re(k) = s.Spec_Re(k) = static_cast<float>(vr[static_cast<std::size_t>(i)] * scale);
      s.Ft_Im(k) = s.Spec_Im(k) = vi.empty() ? 0.0f : static_cast<float>(vi[static_cast<std::size_t>(i)] * scale);
    }
    for (int32_t i = 0; i < n; ++i)
      s.Spec_Axis[static_cast<std::size_t>(i)] =
          static_cast<float>((i - static_cast<double>(p.SMTMS)) * p.RESOL / r.Spectrum_Frequency + p.SMEXR);
    s.Param = p;
    s.Measured_By = r.Owner;
    s.Observe_Frequency = r.Observe_Frequency;
    s.Spectrum_Frequency = r.Spectrum_Frequency;
    s.Acq_Mode = 0;
    s.Is_Fid = 0;
    s.Is_Spectrum = 1;
    Update_Scale_Values(s);
    s.ui->Wait_Cursor(false);
    return 0;
  } catch (const std::out_of_range&) {
    return Reader_Fail(s, 62, "RPBruP/DRW");
  } catch (const std::bad_alloc&) {
    return Reader_Fail(s, 7, "RPBruP/DRW");
  } catch (const std::exception&) {
    return Reader_Fail(s, 57, "RPBruP/DRW");
  }
}

}  // namespace tevo::datafiles
