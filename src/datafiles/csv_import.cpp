#include "datafiles/csv_import.h"

#include <cerrno>
#include <cstdlib>
#include <vector>

#include "datafiles/parameter_forms.h"
#include "datafiles/text_lines.h"
#include "datafiles/vendor_rules.h"
#include "datafiles/vendor_text.h"
#include "session/session.h"
#include "session/text_encoding.h"

namespace tevo::datafiles {

namespace {

std::vector<std::string> Fields(const std::string& line) {
  std::vector<std::string> out;
  size_t pos = 0;
  for (;;) {
    const size_t comma = line.find(',', pos);
    out.push_back(Trim(line.substr(pos, comma == std::string::npos ? std::string::npos : comma - pos)));
    if (comma == std::string::npos) return out;
    pos = comma + 1;
  }
}

// The whole field as a number.
std::optional<double> Number(const std::string& field) {
  if (field.empty()) return std::nullopt;
  char* end = nullptr;
  errno = 0;
  const double v = std::strtod(field.c_str(), &end);
  if (end != field.c_str() + field.size() || errno == ERANGE || !Leading_Number(field)) return std::nullopt;
  return v;
}

// A key line of the keyed head into the parameters.
void Take_Key(Csv_Read& c, const std::vector<std::string>& f) {
  Data_Param& p = c.data.p;
  const std::string key = Upper(f[0]);
  const std::string v = f.size() > 1 ? f[1] : std::string();
  const std::string unit = f.size() > 2 ? Upper(f[2]) : std::string();
  const double x = Val(v);
  const auto r = To_Real32(x);
  const auto i = To_Int32(x);
  const auto i16 = To_Int16(x);
  auto text = [&v] { return Sjis_To_Utf8(v); };
  static const char* const pw[] = {"PW1", "PW2", "PW3", "PW4", "PW5"};
  static const char* const pi[] = {"PI1", "PI2", "PI3"};
  for (size_t k = 0; k < 5; ++k)
    if (key == pw[k]) p.PW[k] = r;
  for (size_t k = 0; k < 3; ++k)
    if (key == pi[k]) p.PI[k] = r;
  if (key == "ACQTM") p.ACQTM = r;
  else if (key == "ADBIT") p.ADBIT = r;
  else if (key == "CGNBL") c.CGNBL = v;
  else if (key == "CPHBL") c.CPHBL = v;
  else if (key == "COMNT") p.COMNT = text();
  else if (key == "CSPED") p.CSPED = r;
  else if (key == "CTEMP") p.CTEMP = r;
  else if (key == "DATIM") p.DATIM = text();
  else if (key == "DELAY") p.DELAY = r;
  else if (key == "DET") p.DEADT = r;
  else if (key == "DUMMY") p.DUMMY = i;
  else if (key == "EXMOD") p.EXMOD = text();
  else if (key == "EXPCM") p.EXPCM = text();
  else if (key == "FLT") p.FILTR = r;
  else if (key == "FREQU") p.FREQU = To_Real32(x * (unit == "MHZ" ? 1e6 : unit == "KHZ" ? 1e3 : 1.0));
  else if (key == "IFR") p.IRFRQ = r;
  else if (key == "IRATN") p.IRATN = i16;
  else if (key == "IRNUC") p.IRNUC = v;
  else if (key == "IRPHS") p.IRPHS = r;
  else if (key == "IRRPW") p.IRRPW = i16;
  else if (key == "OBNUC") p.OBNUC = v;
  else if (key == "OBATN") p.OBATN = i16;
  else if (key == "OFR") c.data.Observe_Frequency = x * (unit == "HZ" ? 1e-6 : unit == "KHZ" ? 1e-3 : 1.0);
  else if (key == "PD") p.PD = r;
  else if (key == "RESOL") p.RESOL = r;
  else if (key == "RGAIN") p.RGAIN = i;
  else if (key == "SCANS") p.SCANS = i;
  else if (key == "SLVNT") p.SLVNT = text();
  else if (key == "SMODE") p.SMODE = i == 0 ? 0 : 1;
  else if (key == "TOSCN") p.TOSCN = i;
}

}  // namespace

Csv_Read Parse_Csv(std::string_view bytes) {
  Csv_Read c;
  Vendor_Read& d = c.data;
  d.p.SMODE = 1;
  const Byte_View b = As_Bytes(bytes);
  size_t pos = 0;
  std::string line;
  if (!Read_Line_Any(b, pos, line)) return c;
  const std::vector<std::string> first = Fields(line);
  c.keyed = Upper(first[0]) == "$CSVSTART";
  if (c.keyed) {
    while (Read_Line_Any(b, pos, line)) {
      const std::vector<std::string> f = Fields(line);
      if (Upper(f[0]) == "$END") break;
      Take_Key(c, f);
    }
    line.clear();
    if (!Read_Line_Any(b, pos, line)) return c;
  }
  // The points: from the line in hand on.
  do {
    const std::vector<std::string> f = Fields(line);
    const auto re = Number(f[0]);
    const auto im = f.size() > 1 ? Number(f[1]) : std::optional<double>(0.0);
    if (!re || !im || (c.keyed && f.size() != 2)) break;
    if (static_cast<int32_t>(d.re.size()) >= Fft_Table_Size_Max) {
      c.too_long = true;
      break;
    }
    d.re.push_back(To_Real32(*re));
    d.im.push_back(To_Real32(*im));
  } while (Read_Line_Any(b, pos, line));
  d.points = d.p.POINT = static_cast<int32_t>(d.re.size());
  if (d.p.TIMES == 0) d.p.TIMES = d.p.SCANS;
  return c;
}

Kind_Check Check_Csv(const std::string& path) {
  return Check_File(path, [](Byte_View b) -> Kind_Check {
    size_t pos = 0;
    std::string line;
    Read_Line_Any(b, pos, line);
    const std::string first = Fields(line)[0];
    if (Upper(first) == "$CSVSTART") return {"CSV", 0};
    if (Number(first)) return {"OLDCSV", 0};
    return {"", 1};
  });
}

int Read_Csv(Session& s, const std::string& path) {
  return Guarded_File_Read(s, path, "CSV/DRW", [&](Byte_View b) {
    Csv_Read c = Parse_Csv({reinterpret_cast<const char*>(b.data()), b.size()});
    Vendor_Read& d = c.data;
    if (c.too_long) return Reader_Refuse(s, Param_Error_Text);
    if (d.re.empty()) return Reader_Refuse(s, "Dataが違います");
    if (NMR1D_Form103_CSV(s, d.p, d.Observe_Frequency) != 0) return 1;
    if (!Vendor_Sizes_Ok(d.points, d.Observe_Frequency, d.p.FREQU, d.p.SMODE)) return Reader_Refuse(s, Param_Error_Text);
    Store_With_Rules(s, d, Reference_At::Carrier);
    return 0;
  });
}

}  // namespace tevo::datafiles
