#include "datafiles/ge_omega.h"

#include "datafiles/decoders.h"
#include "datafiles/recognition.h"
#include "datafiles/vendor_rules.h"
#include "datafiles/vendor_text.h"
#include "session/session.h"

namespace tevo::datafiles {

namespace {

// DIM1 from 128 on is a 2D data set for the 2D program.
constexpr int32_t Ge_2D_Rows = 128;

std::string Head_Path(const std::string& path) { return Pair_Twin_Files(path, ".FID").param; }

std::optional<std::vector<std::string>> Head_Lines(const std::string& path, int* error) {
  auto bytes = Read_Whole_File(Head_Path(path), error);
  if (!bytes) return std::nullopt;
  return Split_Lines(*bytes);
}

// A time value with its unit word: seconds.
double Seconds_Of(const std::string& value) {
  const double v = Val(value);
  const std::string u = Upper(value);
  if (u.find("US") != std::string::npos) return v * 1e-6;
  if (u.find("MS") != std::string::npos) return v * 1e-3;
  return v;  // "RD" or no unit
}

}  // namespace

std::pair<std::string, std::string> Read_Ge_Line(const std::string& line) {
  const std::string t = Trim(line);
  const size_t cut = t.find_first_of("= \t");
  if (cut == std::string::npos) return {Upper(t), ""};
  std::string value = Trim(t.substr(cut + 1));
  if (!value.empty() && value[0] == '=') value = Trim(value.substr(1));
  return {Upper(Trim(t.substr(0, cut))), value};
}

void RPGeO(const std::vector<std::string>& lines, Vendor_Read& d) {
  Data_Param& p = d.p;
  for (const std::string& l : lines) {
    const auto [key, v] = Read_Ge_Line(l);
    if (key == "DIM0") p.POINT = To_Int32(Val(v));
    else if (key == "DIM1") d.rows = To_Int32(Val(v));
    else if (key == "DIM0_FREQ") d.Observe_Frequency = Val(v);
    else if (key == "SPEC_WIDTH0") p.FREQU = To_Real32(Val(v));
    else if (key == "F1_NUCLEUS") p.OBNUC = v;
    else if (key == "FILTER_FREQ") p.FILTR = To_Real32(Val(v));
    else if (key == "NA" || key == "NS") p.SCANS = To_Int32(Val(v));
  }
  if (d.rows < 1) d.rows = 1;
  p.TIMES = p.SCANS;
  p.SMODE = 0;
  p.Instrument_Name = "Ge Omega";
}

void RPGeOT(const std::vector<std::string>& lines, Vendor_Read& d) {
  for (const std::string& l : lines) {
    const auto [key, v] = Read_Ge_Line(l);
    if (key == "AT") d.p.ACQTM = To_Real32(Seconds_Of(v));
    else if (key == "PD") d.p.PD = To_Real32(Seconds_Of(v));
    else if (key == "DE") d.p.DEADT = To_Real32(Seconds_Of(v) * 1e6);  // microseconds
  }
}

Kind_Check RMGEO(const std::string& path) {
  int err = 0;
  auto lines = Head_Lines(path, &err);
  if (!lines) return {"", 1};
  Vendor_Read r;
  RPGeO(*lines, r);
  return {r.rows < Ge_2D_Rows ? "1D" : "V2D", 0};
}

int Read_Ge_Omega(Session& s, const std::string& path) {
  return Guarded_Read(s, "RPGeO/DRW", [&] {
    int err = 0;
    auto lines = Head_Lines(path, &err);
    if (!lines) return Reader_Fail(s, err, "RPGeO/DRW");
    Vendor_Read d;
    RPGeO(*lines, d);
    RPGeOT(*lines, d);
    const int32_t n = d.p.POINT;
    if (!Vendor_Sizes_Ok(n, d.Observe_Frequency, d.p.FREQU, 0) || d.rows >= Ge_2D_Rows)
      return Reader_Refuse(s, Param_Error_Text);

    auto bytes = Read_Whole_File(path, &err);
    if (!bytes) return Reader_Fail(s, err, "RPGeO/DRW");
    const Byte_View b = As_Bytes(*bytes);
    if (!Counts_Fit(b.size(), 0, 2 * static_cast<uint64_t>(n) * static_cast<uint64_t>(d.rows), 4))
      return Reader_Fail(s, 62, "RPGeO/DRW");
    d.Size_Rows(d.rows, n);
    for (int32_t row = 0; row < d.rows; ++row)
      for (int32_t k = 0; k < n; ++k) {
        const size_t at = 8 * d.Index(row, k);
        d.Re(row, k) = Decode_BE_Float32(b, at);
        d.Im(row, k) = Decode_BE_Float32(b, at + 4);
      }
    Store_With_Rules(s, d, Reference_At::Carrier);
    return 0;
  });
}

}  // namespace tevo::datafiles
