#include "datafiles/nuts.h"

#include <algorithm>
#include <cstdint>

#include "datafiles/text_lines.h"
#include "datafiles/vendor_rules.h"
#include "datafiles/vendor_text.h"
#include "session/session.h"

namespace tevo::datafiles {

namespace {

constexpr int32_t Nuts_Key = 0x04030201;
constexpr int32_t Type1_Head_Words = 256;

// Head offsets of types 1 and 2, bytes.
constexpr size_t Off_Head_Words = 4, Off_Rows = 8, Off_Rows_2D = 544, Off_Points = 384, Off_Domain = 392,
                 Off_Sweep = 448, Off_Observe = 452, Off_Smexr = 456, Off_Temp = 1024, Off_Pulse90 = 1028,
                 Off_Pd = 1032, Off_Scans = 1036, Off_Name1 = 820, Off_Name2 = 1040;

// The mark in front of the kind by the number of rows: one trace, a small
// array, or a 2D data set.
std::string Row_Mark(int32_t rows) { return rows == 1 ? "X_" : rows > Nuts_Array_Max ? "V_" : "W_"; }

void Binary_Head(Byte_View b, Nuts_Head& h) {
  const int32_t words = Decode_LE_Int32(b, Off_Head_Words);
  h.type = words == Type1_Head_Words ? 1 : 2;
  // The key word, the count word and the counted words.
  h.data_start = words < 0 ? SIZE_MAX : 8 + 4 * static_cast<size_t>(words);
  const std::string name = h.type == 1 ? Fetch_Text(b, Off_Name1, 40) : Fetch_Text(b, Off_Name2, 32);
  int32_t rows = Decode_LE_Int32(b, Off_Rows);
  if (h.type == 2 && rows != 1) rows = Decode_LE_Int32(b, Off_Rows_2D);
  h.kind = Row_Mark(rows) + name;

  Vendor_Read& d = h.data;
  Data_Param& p = d.p;
  d.rows = rows;
  p.POINT = Decode_LE_Int32(b, Off_Points);
  p.SMODE = Decode_LE_Int16(b, Off_Domain) == 1 ? 1 : 0;
  p.FREQU = Decode_LE_Float32(b, Off_Sweep);
  d.Observe_Frequency = Decode_LE_Float32(b, Off_Observe);
  p.SMEXR = Decode_LE_Float32(b, Off_Smexr);
  p.EXMOD = name;
  // The words from 1024 on belong to the head only when it is that long.
  auto in_head = [&](size_t off) { return off + 4 <= h.data_start; };
  if (in_head(Off_Temp)) p.CTEMP = Decode_LE_Float32(b, Off_Temp);
  if (in_head(Off_Pulse90)) p.Pulse90 = Decode_LE_Float32(b, Off_Pulse90);
  if (in_head(Off_Pd)) p.PD = Decode_LE_Float32(b, Off_Pd);
  if (in_head(Off_Scans)) p.SCANS = p.TIMES = Decode_LE_Int32(b, Off_Scans);
}

// Type 3: "##LABEL= value" lines up to "##BINARY"; the labels of the block
// "$$ NUTS SPECIFIC PARAMETERS" give the pulse program and the row count.
void Text_Head(Byte_View b, Nuts_Head& h) {
  h.type = 3;
  Vendor_Read& d = h.data;
  Data_Param& p = d.p;
  int32_t rows = 1;
  std::string program;
  bool in_block = false;
  size_t pos = 0;
  std::string line;
  while (Read_Line_Any(b, pos, line)) {
    const std::string t = Trim(line);
    const std::string u = Upper(t);
    if (Starts_With_Ci(u, "##BINARY")) {
      if (pos < b.size() && b[pos - 1] == '\r' && b[pos] == '\n') ++pos;
      h.data_start = pos;
      break;
    }
    if (u.rfind("$$ END OF NUTS SPECIFIC PARAMETERS", 0) == 0) in_block = false;
    else if (u.rfind("$$ NUTS SPECIFIC PARAMETERS", 0) == 0) in_block = true;
    const size_t eq = t.find('=');
    if (t.rfind("##", 0) != 0 || eq == std::string::npos) continue;
    const std::string label = Upper(Trim(t.substr(2, eq - 2)));
    const std::string v = Trim(t.substr(eq + 1));
    if (label == "TITLE") p.COMNT = v;
    else if (label == "DATA TYPE") p.SMODE = Upper(v).find("NMR FID") != std::string::npos ? 0 : 1;
    else if (label == ".OBSERVE FREQUENCY") d.Observe_Frequency = Val(v);
    else if (label == ".OBSERVE NUCLEUS") p.OBNUC = v.size() > 1 && v[0] == '^' ? v.substr(1) : v;
    else if (label == "NPOINTS") p.POINT = To_Int32(Val(v));
    else if (in_block && label == "$PULPROG") program = v;
    else if (in_block && label == "$POINTS") rows = To_Int32(Val(v));
    else if (in_block && label == "$SW") p.FREQU = To_Real32(Val(v));
  }
  if (h.data_start == 0) h.data_start = SIZE_MAX;  // no data announced
  p.EXMOD = program;
  d.rows = rows;
  h.kind = Row_Mark(rows) + program;
}

// Label lines from the start, up to the data, one of them "##JCAMP-DXB".
bool Is_Type3(Byte_View b) {
  size_t pos = 0;
  std::string line;
  while (Read_Line_Any(b, pos, line)) {
    const std::string t = Trim(line);
    if (t.rfind("##", 0) != 0 && t.rfind("$$", 0) != 0) return false;
    if (Starts_With_Ci(t, "##JCAMP-DXB")) return true;
    if (Starts_With_Ci(t, "##BINARY")) return false;
  }
  return false;
}

}  // namespace

Nuts_Head Read_Nuts_Head(Byte_View b) {
  Nuts_Head h;
  if (b.size() >= 4 && Decode_LE_Int32(b, 0) == Nuts_Key) Binary_Head(b, h);
  else if (Is_Type3(b)) Text_Head(b, h);
  h.data.p.Instrument_Name = "NUTS";
  return h;
}

Kind_Check RMNut(const std::string& path) {
  return Check_File(path, [](Byte_View b) -> Kind_Check {
    const Nuts_Head h = Read_Nuts_Head(b);
    if (h.type == 0) return {"", 1};
    return {h.kind, 0};
  });
}

int RDNut(Session& s, const std::string& path) {
  return Guarded_File_Read(s, path, "RDNut/DRW", [&](Byte_View b) {
    Nuts_Head h = Read_Nuts_Head(b);
    Vendor_Read& d = h.data;
    if (h.type == 0) return Reader_Refuse(s, "Dataが違います");
    if (d.rows > Nuts_Array_Max) return Reader_Refuse(s, "Dataが違います(2D Data)");
    const int32_t n = d.p.POINT;
    if (d.rows < 1 || !Vendor_Sizes_Ok(n, d.Observe_Frequency, d.p.FREQU, d.p.SMODE))
      return Reader_Refuse(s, Param_Error_Text);
    // Each row: its mark, then 2 x POINT words.
    const uint64_t row_words = 1 + 2 * static_cast<uint64_t>(n);
    if (!Counts_Fit(b.size(), h.data_start, row_words * static_cast<uint64_t>(d.rows), 4))
      return Reader_Fail(s, 62, "RDNut/DRW");

    d.Size_Rows(d.rows, n);
    for (int32_t row = 0; row < d.rows; ++row) {
      const size_t row_start = h.data_start + 4 * (static_cast<size_t>(row) * row_words + 1);
      for (int32_t k = 0; k < n; ++k) {
        d.Re(row, k) = Decode_LE_Float32(b, row_start + 4 * static_cast<size_t>(k));
        d.Im(row, k) = Decode_LE_Float32(b, row_start + 4 * static_cast<size_t>(n + k));
      }
    }
    Store_With_Rules(s, d, Reference_At::Carrier);
    return 0;
  });
}

}  // namespace tevo::datafiles
