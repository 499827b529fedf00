#include "datafiles/jeol_ex.h"

#include <cmath>
#include <cstring>

#include "datafiles/decoders.h"
#include "datafiles/recognition.h"
#include "datafiles/vendor_rules.h"
#include "datafiles/vendor_text.h"
#include "session/session.h"

namespace tevo::datafiles {

namespace {

// A first line this long holds every key.
constexpr size_t Long_Line = 80;
constexpr size_t Key_Length = 5;
// Long-line layout: COMNT is 64 characters from 7 behind the start of its
// key, the search going on 71 behind it; the other texts are the 7
// characters behind the key.
constexpr size_t Comment_From = 7, Comment_Length = 64, Comment_Skip = 71, Text_Length = 7;

// The lines of the text, empty ones kept: CR, LF or CR LF end a line.
std::vector<std::string> Raw_Lines(const std::string& text) {
  std::vector<std::string> out;
  std::string line;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '\r' || c == '\n') {
      out.push_back(line);
      line.clear();
      if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    } else {
      line += c;
    }
  }
  if (!line.empty()) out.push_back(line);
  return out;
}

bool Text_Key(const std::string& k) {
  for (const char* t : {"COMNT", "DATIM", "EXMOD", "EXPCM", "IRNUC", "OBNUC", "TRNUC", "SLVNT"})
    if (k == t) return true;
  return false;
}

// Sets the field of one key; false when the key is none of the file's.
bool Set_Key(Ex_Params& x, const std::string& k, const std::string& value) {
  Data_Param& p = x.d.p;
  const double v = Val(value);
  const float f = To_Real32(v);
  const int32_t i = To_Int32(v);
  auto numbered = [&](const char* head, auto& list) {
    if (k.size() == 3 && k.compare(0, 2, head) == 0 && k[2] >= '1' && k[2] <= '5') {
      list[static_cast<size_t>(k[2] - '1')] = static_cast<std::remove_reference_t<decltype(list[0])>>(v);
      return true;
    }
    return false;
  };
  if (k == "COMNT") p.COMNT = value;
  else if (k == "DATIM") p.DATIM = value;
  else if (k == "EXMOD") p.EXMOD = value;
  else if (k == "EXPCM") p.EXPCM = value;
  else if (k == "IRNUC") p.IRNUC = value;
  else if (k == "OBNUC") p.OBNUC = value;
  else if (k == "TRNUC") p.TRNUC = value;
  else if (k == "SLVNT") p.SLVNT = value;
  else if (k == "ACQTM") p.ACQTM = f;
  else if (k == "ADBIT") p.ADBIT = f;
  else if (k == "CLPNT") x.clpnt = i;
  else if (k == "CSPED") p.CSPED = f;
  else if (k == "CTEMP") p.CTEMP = f;
  else if (k == "DELAY") p.DELAY = f;
  else if (k == "DET" || k == "DEADT") p.DEADT = f;
  else if (k == "DTYPE") x.dtype = i;
  else if (k == "DUMMY") p.DUMMY = i;
  else if (k == "FLT" || k == "FILTR") p.FILTR = f;
  else if (k == "FREQU") p.FREQU = f;
  else if (k == "IFR" || k == "IRFRQ") x.irfrq = p.IRFRQ = f;
  else if (k == "INTVL") p.INTVL = f;
  else if (k == "IRATN") p.IRATN = To_Int16(v);
  else if (k == "IRFIN") x.irfin = p.IRFIN = f;
  else if (k == "IRPHS") p.IRPHS = f;
  else if (k == "IRRPW") p.IRRPW = To_Int16(v);
  else if (k == "IRSET") x.irset = p.IRSET = f;
  else if (k == "IWT" || k == "INIWT") p.INIWT = f;
  else if (k == "OBATN") p.OBATN = To_Int16(v);
  else if (k == "OBFIN") p.OBFIN = f;
  else if (k == "OFR" || k == "OBFRQ") p.OBFRQ = f;
  else if (k == "OBSET") p.OBSET = f;
  else if (k == "PD") p.PD = f;
  else if (k == "POINT") p.POINT = i;
  else if (k == "RGAIN") p.RGAIN = i;
  else if (k == "SCANS") p.SCANS = i;
  else if (k == "SMEXR") p.SMEXR = f;
  else if (k == "SMODE") p.SMODE = To_Int16(v);
  else if (k == "SMTMS") p.SMTMS = f;
  else if (k == "TIMES") p.TIMES = i;
  else if (k == "TOSCN") p.TOSCN = i;
  else if (k == "TR") p.TR = f;
  else if (k == "TRATN") p.TRATN = To_Int16(v);
  else if (k == "TRFIN") p.TRFIN = f;
  else if (k == "TRFRQ") p.TRFRQ = f;
  else if (k == "TRRPW") p.TRRPW = To_Int16(v);
  else if (k == "TRSET") p.TRSET = f;
  else if (k.compare(0, 4, "LOOP") == 0 && k.size() == 5 && k[4] >= '1' && k[4] <= '5')
    p.LOOP[static_cast<size_t>(k[4] - '1')] = i;
  else if (numbered("PI", p.PI) || numbered("PS", p.PS) || numbered("PW", p.PW)) {
  } else {
    // Keys the program keeps no field for.
    static const char* const known[] = {"CLFRQ", "CLRSO", "IRFN2", "IRST2", "OBFN2", "OBPHS",
                                        "OBST2", "RESOL", "TRFN2", "TRPHS", "TRST2"};
    for (const char* n : known)
      if (k == n) return true;
    return false;
  }
  return true;
}

bool Is_Blank(char c) { return c == ' ' || c == '\t'; }

void Long_Line_Keys(const std::string& line, Ex_Params& x) {
  size_t i = 0;
  while (i < line.size()) {
    while (i < line.size() && Is_Blank(line[i])) ++i;
    const size_t start = i;
    while (i < line.size() && !Is_Blank(line[i])) ++i;
    const std::string key = line.substr(start, i - start);
    if (key == "COMNT") {
      if (start + Comment_From < line.size()) Set_Key(x, key, Trim(line.substr(start + Comment_From, Comment_Length)));
      i = start + Comment_Skip;
    } else if (Text_Key(key)) {
      if (start + Key_Length < line.size()) Set_Key(x, key, Trim(line.substr(start + Key_Length, Text_Length)));
      i = std::max(i, start + Key_Length + Text_Length);
    } else if (key.size() <= Key_Length + 1) {
      // The token behind the key is its value; a unit behind it reads as no
      // key and is passed over.
      size_t j = i;
      while (j < line.size() && Is_Blank(line[j])) ++j;
      const size_t vs = j;
      while (j < line.size() && !Is_Blank(line[j])) ++j;
      if (Set_Key(x, key, line.substr(vs, j - vs))) i = j;
    }
  }
}

std::string Param_Path(const std::string& path) { return Pair_Twin_Files(path, ".GXD").param; }

}  // namespace

void RP(const std::string& text, Ex_Params& x) {
  const std::vector<std::string> lines = Raw_Lines(text);
  if (lines.empty()) return;
  if (lines[0].size() >= Long_Line) {
    Long_Line_Keys(lines[0], x);
    return;
  }
  // The head lines before the keys read as no key; the keys end at the
  // first empty line.
  bool keys = false;
  for (const std::string& raw : lines) {
    const std::string line = Trim(raw);
    if (line.empty()) {
      if (keys) break;
      continue;
    }
    size_t cut = 0;
    while (cut < line.size() && !Is_Blank(line[cut]) && line[cut] != '=') ++cut;
    std::string value = Trim(line.substr(cut));
    if (!value.empty() && value[0] == '=') value = Trim(value.substr(1));
    keys = Set_Key(x, Upper(line.substr(0, cut)), value) || keys;
  }
}

Kind_Check RMA(const std::string& path) {
  const std::string param = Param_Path(path);
  int err = 0;
  const auto text = Read_Whole_File(param, &err);
  if (!text) return {"", err == 53 ? 1 : -1};
  Ex_Params x;
  RP(*text, x);
  std::string kind = x.d.p.EXMOD;
  if (kind.empty() || kind[0] != 'V') {
    if (x.dtype == 0) kind = "X_" + kind;
    else if (x.dtype == 2) kind = "V_" + kind;
  }
  return {kind, 0};
}

int Read_Ex(Session& s, const std::string& path) {
  return Guarded_Read(s, "RP/DRW", [&] {
    int err = 0;
    const auto text = Read_Whole_File(Param_Path(path), &err);
    if (!text) return Reader_Fail(s, err, "RP/DRW");
    Ex_Params x;
    RP(*text, x);
    Vendor_Read& r = x.d;
    Data_Param& p = r.p;
    if (p.SCANS == 0) p.SCANS = p.TIMES;
    if (p.TIMES == 0) p.TIMES = p.SCANS;
    p.Irr_Frequency = x.irfrq + x.irset * 0.001 + x.irfin * 1e-6;
    r.Observe_Frequency = p.OBFRQ + p.OBSET * 0.001 + p.OBFIN * 1e-6;
    r.Spectrum_Frequency = r.Observe_Frequency;
    if (p.POINT < 10 || !(r.Observe_Frequency > 0 && r.Observe_Frequency < 1e5) || !(p.FREQU > 0) ||
        p.POINT / 2 > Fft_Table_Size_Max)
      return Reader_Refuse(s, Param_Error_Text);
    const int32_t rows = std::max(x.clpnt, 1);
    // POINT counts real values.
    const int32_t n = p.POINT / 2;
    p.SMODE = p.SMODE == 0 ? 0 : 1;
    p.POINT = p.SMODE == 0 ? Next_Power_Of_Two(n) : n;
    p.RESOL = p.FREQU / static_cast<float>(p.POINT);

    const auto bytes = Read_Whole_File(path, &err);
    if (!bytes) return Reader_Fail(s, err, "RP/DRW");
    const Byte_View b = As_Bytes(*bytes);
    if (!Counts_Fit(b.size(), 0, 2 * static_cast<uint64_t>(n) * static_cast<uint64_t>(rows), 4))
      return Reader_Fail(s, 62, "RP/DRW");
    r.Size_Rows(rows, n);
    for (int32_t row = 0; row < rows; ++row)
      for (int32_t k = 0; k < n; ++k) {
        const size_t at = 8 * r.Index(row, k);
        r.Re(row, k) = Decode_LE_Float32(b, at);
        r.Im(row, k) = Decode_LE_Float32(b, at + 4);
      }
    if (p.SMODE == 1) {
      // Stored from the highest frequency down: the reference point counts
      // from the other end.
      p.SMTMS = static_cast<float>(p.POINT - p.SMTMS - 1);
      r.Spectrum_Frequency = Zero_Ppm_Frequency(p, r.Observe_Frequency);
      if (!(r.Spectrum_Frequency > 0)) return Reader_Refuse(s, Param_Error_Text);
      r.reverse = true;
    }
    r.format_class = 3;
    Store_Vendor_Read(s, r);
    return 0;
  });
}

}  // namespace tevo::datafiles
