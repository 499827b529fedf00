#include "datafiles/chemagnetics.h"

#include "datafiles/decoders.h"
#include "datafiles/recognition.h"
#include "datafiles/vendor_rules.h"
#include "datafiles/vendor_text.h"
#include "session/session.h"

namespace tevo::datafiles {

namespace {

// "NAME=value": the name upper-cased, the value trimmed; empty name when the
// line holds no "=".
std::pair<std::string, std::string> Key_Value(const std::string& line) {
  const size_t eq = line.find('=');
  if (eq == std::string::npos) return {};
  return {Upper(Trim(line.substr(0, eq))), Trim(line.substr(eq + 1))};
}

// The lines of a file of the folder; empty when it is missing.
std::vector<std::string> Folder_Lines(const std::string& folder, const char* name, bool* found = nullptr) {
  const std::string path = Find_In_Folder(folder, name);
  if (found) *found = !path.empty();
  if (path.empty()) return {};
  auto bytes = Read_Whole_File(path);
  return bytes ? Split_Lines(*bytes) : std::vector<std::string>{};
}

}  // namespace

Kind_Check RMCmx(const std::string& path) {
  bool found = false;
  const auto acq = Folder_Lines(Folder_Of(path), "acq", &found);
  if (!found) return {"", 1};
  for (const std::string& l : acq) {
    const auto [key, value] = Key_Value(l);
    if (key == "PPFN") return {value, 0};
  }
  return {"", 1};
}

double RPCmx(const std::vector<std::string>& acq, const std::vector<std::string>& acq_2,
             const std::vector<std::string>& proc, Vendor_Read& d) {
  Data_Param& p = d.p;
  double steps = 1, step_size = 0;
  for (const std::string& l : acq) {
    const auto [k, v] = Key_Value(l);
    const double x = Val(v);
    const auto f = To_Real32(x);
    const auto i = To_Int32(x);
    if (k == "PPFN") p.EXMOD = v;
    else if (k == "NA") p.SCANS = i;
    else if (k == "CH1") p.OBNUC = v;
    else if (k == "CH2") p.IRNUC = v;
    else if (k == "SF1") d.Observe_Frequency = x;
    else if (k == "SF2") p.IRFRQ = f;
    else if (k == "SF3") p.TRFRQ = f;
    else if (k == "SW") p.FREQU = f;
    else if (k == "AQTM") p.ACQTM = f;
    else if (k == "AL") p.POINT = i;
    else if (k == "SPEED") p.CSPED = f;
    else if (k == "TEMP") p.CTEMP = f;
    else if (k == "PD") p.PD = f;
    else if (k == "RG") p.RGAIN = i;
    else if (k == "P") p.PW[0] = f;
    else if (k == "PW90H") p.Pulse90_2 = f;
    else if (k == "CT") p.PW[1] = f;  // contact time
    else if (k == "RD") p.DELAY = f;  // ring-down delay
    else if (k == "AD") p.DEADT = f;  // acquisition delay
    else if (k == "NO_STEPS") steps = x;
    else if (k == "STEP_SIZE") step_size = x;
  }
  std::string date, time;
  for (const std::string& l : acq_2) {
    const auto [k, v] = Key_Value(l);
    if (k == "END_DATE") date = v;
    else if (k == "END_TIME") time = v;
    else if (k == "AC") p.TIMES = To_Int32(Val(v));
  }
  p.DATIM = time.empty() ? date : date + "  " + time;
  std::string comment;
  for (const char* key : {"COM", "COM_B", "COM_C"})
    for (const std::string& l : proc) {
      const auto [k, v] = Key_Value(l);
      if (k != key || v.empty()) continue;
      if (!comment.empty()) comment += ' ';
      comment += v;
    }
  p.COMNT = comment;
  if (p.TIMES == 0) p.TIMES = p.SCANS;
  p.SMODE = 0;
  p.Instrument_Name = "CMX***";
  // Above one step the rows are an array over the stepped value.
  d.rows = steps > 1 && steps < 1e6 ? static_cast<int32_t>(steps) : 1;
  return step_size;
}

int Read_Cmx(Session& s, const std::string& path) {
  return Guarded_Read(s, "RPCmx/DRW", [&] {
    const std::string folder = Folder_Of(path);
    bool found = false;
    const auto acq = Folder_Lines(folder, "acq", &found);
    if (!found) return Reader_Refuse(s, "Dataが違います");
    Vendor_Read d;
    const double step = RPCmx(acq, Folder_Lines(folder, "acq_2"), Folder_Lines(folder, "proc"), d);
    const int32_t n = d.p.POINT;
    if (!Vendor_Sizes_Ok(n, d.Observe_Frequency, d.p.FREQU, 0)) return Reader_Refuse(s, Param_Error_Text);

    const std::string data = Find_In_Folder(folder, "data");
    int err = 53;
    auto bytes = data.empty() ? std::nullopt : Read_Whole_File(data, &err);
    if (!bytes) return Reader_Fail(s, err, "RPCmx/DRW");
    const Byte_View b = As_Bytes(*bytes);
    if (!Counts_Fit(b.size(), 0, 2 * static_cast<uint64_t>(n) * static_cast<uint64_t>(d.rows), 4))
      return Reader_Fail(s, 62, "RPCmx/DRW");
    d.Size_Rows(d.rows, n);
    for (int32_t row = 0; row < d.rows; ++row) {
      const size_t row_start = 8 * d.Index(row, 0);
      for (int32_t k = 0; k < n; ++k) {
        d.Re(row, k) = static_cast<float>(Decode_BE_Int32(b, row_start + 4 * static_cast<size_t>(k)));
        d.Im(row, k) = static_cast<float>(Decode_BE_Int32(b, row_start + 4 * static_cast<size_t>(n + k)));
      }
    }
    const int32_t rows = d.rows;
    Store_With_Rules(s, d, Reference_At::Carrier);
    if (rows > 1) {
      s.Delay_List.clear();
      for (int32_t r = 0; r < rows; ++r) s.Delay_List.push_back(To_Real32(r * step));
      s.Delay_Raw = s.Delay_List;
      s.Delay_Name = "STEP_SIZE";
    }
    return 0;
  });
}

}  // namespace tevo::datafiles
