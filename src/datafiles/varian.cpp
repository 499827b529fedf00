#include "datafiles/varian.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>

#include "datafiles/decoders.h"
#include "datafiles/recognition.h"
#include "datafiles/vendor_rules.h"
#include "datafiles/vendor_text.h"
#include "session/messages.h"
#include "session/session.h"

namespace tevo::datafiles {

namespace {

namespace fs = std::filesystem;

constexpr size_t Max_Entry_Values = 1024;
constexpr size_t File_Head = 32, Block_Head = 28;
// Head offsets, bytes.
constexpr size_t Off_Blocks = 0, Off_Np = 8, Off_Word_Bytes = 12, Off_Status = 27;
// Status bits of the low byte: float words, complex values.
constexpr uint8_t Status_32 = 0x04, Status_Complex = 0x10;
// Array dimensions from which a set is 2D: a phase-cycled set, and any
// other array.
constexpr int32_t Phase_2D_Rows = 128, Array_2D_Rows = 33;

std::vector<std::string> Fields(const std::string& line) {
  std::vector<std::string> out;
  size_t i = 0;
  while (i < line.size()) {
    while (i < line.size() && (line[i] == ' ' || line[i] == '\t')) ++i;
    const size_t start = i;
    while (i < line.size() && line[i] != ' ' && line[i] != '\t') ++i;
    if (i > start) out.push_back(line.substr(start, i - start));
  }
  return out;
}

// A string value: the text between its first and last quote.
std::string Unquote(const std::string& text) {
  const size_t a = text.find('"'), b = text.rfind('"');
  if (a == std::string::npos) return Trim(text);
  if (b == a) return text.substr(a + 1);
  return text.substr(a + 1, b - a - 1);
}

bool Float_Status(uint8_t status) {
  return status == 0x49 || status == 0xC9 || status == 0x1B || status == 0x0B;
}

const Vnmr_Entry* Find_Entry(const std::vector<Vnmr_Entry>& entries, const std::string& name) {
  for (const auto& e : entries)
    if (e.name == name) return &e;
  return nullptr;
}

std::optional<std::vector<std::string>> Param_Lines(const std::string& data_path) {
  const std::string param = Varian_Param_File(data_path);
  if (param.empty()) return std::nullopt;
  auto bytes = Read_Whole_File(param);
  if (!bytes) return std::nullopt;
  return Split_Lines(*bytes);
}

}  // namespace

Vnmr_Entry Read_Vnmr_Entry(const std::vector<std::string>& lines, size_t& at) {
  const Vnmr_Entry error{"ERROR:", {}};
  if (at + 1 >= lines.size()) return error;
  const auto head = Fields(lines[at]);
  if (head.size() < 3) return error;
  Vnmr_Entry e;
  e.name = Upper(head[0]);
  const bool text = head[2] == "2";
  const std::string& line = lines[at + 1];
  const auto count = Leading_Number(line);
  // A count no line or lines that follow could hold is damage (text values
  // take a line each, numbers share the count's line).
  if (!count || *count < 0 || *count != std::floor(*count) ||
      *count > static_cast<double>(lines.size() + line.size()))
    return error;
  at += 2;
  const auto n = static_cast<uint64_t>(*count);
  if (text) {
    // The first string stands behind the count, each further one on a line
    // of its own.
    if (n > 0) {
      const size_t quote = line.find('"');
      e.values.push_back(quote == std::string::npos ? std::string() : Unquote(line.substr(quote)));
    }
    for (uint64_t k = 1; k < n; ++k, ++at) {
      if (at >= lines.size()) return error;
      if (e.values.size() < Max_Entry_Values) e.values.push_back(Unquote(lines[at]));
    }
  } else {
    const auto f = Fields(line);
    for (size_t k = 1; k < f.size() && k <= n && e.values.size() < Max_Entry_Values; ++k) e.values.push_back(f[k]);
  }
  if (at < lines.size()) ++at;  // the enum line
  return e;
}

bool RPV(const std::vector<std::string>& lines, Varian_Params& v) {
  Data_Param& p = v.d.p;
  std::vector<Vnmr_Entry> entries;
  std::string explist;
  for (size_t at = 0; at < lines.size();) {
    Vnmr_Entry e = Read_Vnmr_Entry(lines, at);
    if (e.name == "ERROR:") return false;
    const std::string first = e.values.empty() ? std::string() : e.values[0];
    const double x = Val(first);
    const std::string& k = e.name;
    if (k == "ARRAYDIM") v.array_dim = To_Int32(x);
    else if (k == "ARRAY") v.array_name = Upper(first);
    else if (k == "EXPLIST") explist = Upper(first);
    else if (k == "SPIN") p.CSPED = To_Real32(x);
    else if (k == "SFRQ") {
      // The carrier as the JEOL fields hold it: whole MHz, kHz and Hz.
      v.d.Observe_Frequency = x;
      const double mhz = std::floor(x);
      const double hz = std::nearbyint((x - mhz) * 1e9) * 1e-3;  // to the mHz
      p.OBFRQ = To_Real32(mhz);
      p.OBSET = To_Real32(std::floor(hz * 1e-3));
      p.OBFIN = To_Real32(hz - p.OBSET * 1e3);
    } else if (k == "SW") p.FREQU = To_Real32(x);
    else if (k == "D1") p.PD = To_Real32(x);
    else if (k == "NP") p.POINT = To_Int32(x);
    else if (k == "TN") p.OBNUC = first;
    else if (k == "SAMPLE") p.COMNT = first;
    else if (k == "PW") p.PW[0] = To_Real32(x);
    else if (k == "SOLVENT") p.SLVNT = first;
    else if (k == "DN") p.IRNUC = first;
    else if (k == "GAIN") p.RGAIN = To_Int32(x);
    else if (k == "CT") p.SCANS = To_Int32(x);
    else if (k == "NT") p.TIMES = To_Int32(x);
    else if (k == "TEMP") p.CTEMP = To_Real32(x);
    else if (k == "RFL") v.rfl = x;
    else if ((k == "DATE" || k == "TIME_SUBMITTED") && !first.empty() && p.DATIM.empty()) {
      // Date words split at blanks and "/", joined by single blanks.
      std::string t = first;
      std::replace(t.begin(), t.end(), '/', ' ');
      std::string joined;
      for (const auto& w : Fields(t)) joined += (joined.empty() ? "" : " ") + w;
      p.DATIM = joined;
    }
    entries.push_back(std::move(e));
  }
  if (v.array_name.empty()) v.array_name = explist;
  // The entry of the arrayed parameter (the first of a joint array) holds
  // one value a row.
  const std::string arrayed = v.array_name.substr(0, v.array_name.find(','));
  if (const Vnmr_Entry* e = arrayed.empty() ? nullptr : Find_Entry(entries, arrayed))
    for (const auto& value : e->values) v.array_values.push_back(To_Real32(Val(value)));
  p.SMODE = 0;
  p.Instrument_Name = "Varian UNITY";
  return true;
}

std::string Varian_Kind(int32_t array_dim, const std::string& array_name) {
  const int32_t n = array_dim;
  if (array_name.empty() || array_name == "PHASE") return n >= Phase_2D_Rows ? "ASK" : "1D";
  if (n >= Array_2D_Rows) return "V2D";
  return n > 1 ? "ASK" : "1D";
}

std::string Varian_Param_File(const std::string& data_path) {
  const std::string folder = Folder_Of(data_path);
  for (const std::string& f : {folder, fs::path(folder).parent_path().string()})
    for (const char* name : {"procpar", "curpar"}) {
      std::string found = Find_In_Folder(f, name);
      if (!found.empty()) return found;
    }
  return {};
}

Kind_Check RMV(const std::string& path) {
  if (Varian_Param_File(path).empty()) return {"", 1, true};
  try {
    const auto lines = Param_Lines(path);
    Varian_Params v;
    if (!lines || !RPV(*lines, v)) return {"", -1, true};
    return {Varian_Kind(v.array_dim, v.array_name), 0, true};
  } catch (const std::exception&) {
    return {"", -1, true};
  }
}

int Read_Varian(Session& s, const std::string& path) {
  return Guarded_Read(s, "RPV/DRW", [&] {
    const std::string param = Varian_Param_File(path);
    if (param.empty()) return Reader_Fail(s, 53, "RPV/DRW");
    int err = 0;
    const auto text = Read_Whole_File(param, &err);
    if (!text) return Reader_Fail(s, err, "RPV/DRW");
    Varian_Params v;
    if (!RPV(Split_Lines(*text), v)) return Reader_Fail(s, 57, "RMV/DRW");
    const std::string kind = Varian_Kind(v.array_dim, v.array_name);
    if (kind == "ASK") {
      s.ui->Beep();
      if (Show_Message(s, "Array データですか(Yes),2Dデータですか(No)", Style_Yes_No | Icon_Question, "Data Type") !=
          Msg_Yes)
        return Reader_Refuse(s, "2D Data !");
    } else if (kind != "1D") {
      return Reader_Refuse(s, "2D Data !");
    }

    Vendor_Read& r = v.d;
    Data_Param& p = r.p;
    if (p.POINT < 10 || !(r.Observe_Frequency > 0 && r.Observe_Frequency < 1e5) || !(p.FREQU > 0) ||
        p.POINT / 2 > Fft_Table_Size_Max)
      return Reader_Refuse(s, Param_Error_Text);
    // 0 ppm lies RFL Hz above the low-frequency edge of the spectrum, which
    // is point 0 of the program's ascending index.
    r.Spectrum_Frequency = r.Observe_Frequency - (p.FREQU * 0.5 - v.rfl) * 1e-6;
    if (!(r.Spectrum_Frequency > 0)) return Reader_Refuse(s, Param_Error_Text);
    p.SMEXR = To_Real32(-v.rfl / r.Spectrum_Frequency);
    p.SMTMS = 0;
    p.ACQTM = To_Real32(p.POINT / 2.0 / p.FREQU);
    const int32_t param_points = Next_Power_Of_Two(p.POINT / 2);

    const auto bytes = Read_Whole_File(path, &err);
    if (!bytes) return Reader_Fail(s, err, "RPV/DRW");
    const Byte_View b = As_Bytes(*bytes);
    const int32_t blocks = Decode_BE_Int32(b, Off_Blocks), np = Decode_BE_Int32(b, Off_Np);
    const int32_t word_bytes_head = Decode_BE_Int32(b, Off_Word_Bytes);
    const uint8_t status = b[Off_Status];
    if (blocks <= 0 || np < 2) return Reader_Fail(s, 62, "RPV/DRW");
    const bool spectrum = Base_Name(path) != "FID";
    const bool is_float = Float_Status(status);
    // 16-bit integers where the head says 2 bytes a value and the status
    // neither float nor 32-bit words.
    const size_t word = !is_float && word_bytes_head == 2 && (status & Status_32) == 0 ? 2 : 4;
    const bool complex = !spectrum || (status & Status_Complex) != 0;
    const size_t stride = Block_Head + static_cast<size_t>(np) * word;
    if (!Counts_Fit(b.size(), File_Head, static_cast<uint64_t>(blocks), stride)) return Reader_Fail(s, 62, "RPV/DRW");
    int32_t n = complex ? np / 2 : np;
    if (!spectrum) n = std::min(n, param_points);
    if (n < 10 || n > Fft_Table_Size_Max) return Reader_Refuse(s, Param_Error_Text);

    auto value = [&](size_t at) -> double {
      if (is_float) return Decode_BE_Float32(b, at);
      if (word == 2) return Decode_BE_Int16(b, at);
      return Decode_BE_Int32(b, at);
    };
    r.Size_Rows(blocks, n);
    for (int32_t row = 0; row < blocks; ++row) {
      const size_t start = File_Head + static_cast<size_t>(row) * stride + Block_Head;
      for (int32_t k = 0; k < n; ++k) {
        const auto i = static_cast<size_t>(k);
        if (complex) {
          r.Re(row, k) = static_cast<float>(value(start + 2 * i * word));
          r.Im(row, k) = static_cast<float>(value(start + (2 * i + 1) * word));
        } else {
          r.Re(row, k) = static_cast<float>(value(start + i * word));
        }
      }
    }
    if (spectrum) {
      p.SMODE = 1;
      p.POINT = Next_Power_Of_Two(n);
      r.reverse = true;
    } else {
      // The conjugate gives the spectrum its right sense with the program's
      // transform, as for the other raw FIDs.
      for (float& x : r.im) x = -x;
      Remove_Dc_Offset(r);
      p.POINT = Next_Power_Of_Two(n);
    }
    p.RESOL = p.FREQU / static_cast<float>(p.POINT);
    r.format_class = 2;
    const std::string array_name = v.array_name;
    std::vector<float> values = v.array_values;
    Store_Vendor_Read(s, r);

    if (s.Param.COMNT.empty()) {
      const std::string comment = Find_In_Folder(Folder_Of(param), "text");
      if (const auto t = comment.empty() ? std::nullopt : Read_Whole_File(comment)) {
        std::string joined;
        for (const auto& l : Split_Lines(*t)) joined += (joined.empty() ? "" : " ") + Trim(l);
        s.Param.COMNT = joined;
      }
    }
    if (s.Array_Rows > 1) {
      values.resize(static_cast<size_t>(s.Array_Rows), 0.0f);
      s.Delay_List = values;
      s.Delay_Raw = values;
      s.Delay_Name = array_name;
      s.Delay_Unit = "t(" + array_name + ")";
      s.Delay_Axis_Label = "\\i(t)\\-((" + array_name + ")) / s";
      s.Delay_Linear = 0;
    }
    return 0;
  });
}

}  // namespace tevo::datafiles
