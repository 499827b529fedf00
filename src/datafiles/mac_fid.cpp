#include "datafiles/mac_fid.h"

#include <cstdint>
#include <stdexcept>

#include "datafiles/vendor_rules.h"
#include "session/session.h"

namespace tevo::datafiles {

namespace {

constexpr size_t Block = 1024;

// Head offsets, bytes.
constexpr size_t Off_Head_Block = 0, Off_Iratn = 98, Off_Pw1 = 132, Off_Pw2 = 136, Off_Pi1 = 140,
                 Off_Dummy = 1024, Off_Spectrum = 1032, Off_Points = 1074, Off_Scans = 1078, Off_Kind = 1114,
                 Off_Observe = 1186, Off_Sweep = 1194, Off_Acqtm = 1210, Off_Pd = 1242, Off_Obatn = 1422,
                 Off_Rgain = 1436, Off_Reference = 1462, Kind_Length = 6;

}  // namespace

Mac_Head Read_Mac_Head(Byte_View b) {
  Mac_Head h;
  // The head block whose number the first word gives; the points follow it.
  const int32_t head_block = Decode_BE_Int32(b, Off_Head_Block);
  h.data_start = head_block < 1 ? SIZE_MAX : (static_cast<size_t>(head_block) + 1) * Block;
  if (b.size() < Off_Kind + Kind_Length) throw std::out_of_range("MAC head");
  std::string kind;
  for (size_t i = 0; i < Kind_Length; ++i) {
    if (b[Off_Kind + i] < 32) {
      kind.clear();
      break;
    }
    kind += static_cast<char>(b[Off_Kind + i]);
  }
  h.kind = head_block < 1 ? std::string() : kind;

  Vendor_Read& d = h.data;
  Data_Param& p = d.p;
  p.IRATN = Decode_BE_Int16(b, Off_Iratn);
  p.PW[0] = Decode_BE_Float32(b, Off_Pw1);
  p.PW[1] = Decode_BE_Float32(b, Off_Pw2);
  p.PI[0] = Decode_BE_Float32(b, Off_Pi1);
  p.DUMMY = Decode_BE_Int32(b, Off_Dummy);
  p.SMODE = b[Off_Spectrum] != 0 ? 1 : 0;
  p.POINT = Decode_BE_Int32(b, Off_Points);
  p.SCANS = p.TIMES = Decode_BE_Int32(b, Off_Scans);
  d.Observe_Frequency = Decode_BE_Float64(b, Off_Observe);
  p.FREQU = To_Real32(Decode_BE_Float64(b, Off_Sweep));
  p.ACQTM = To_Real32(Decode_BE_Float64(b, Off_Acqtm));
  p.PD = To_Real32(Decode_BE_Float64(b, Off_Pd));
  p.OBATN = Decode_BE_Int16(b, Off_Obatn);
  p.RGAIN = Decode_BE_Int16(b, Off_Rgain);
  // The reference, negated, is the shift of the first point as stored.
  p.SMEXR = To_Real32(-Decode_BE_Float64(b, Off_Reference));
  p.SMTMS = 0;
  p.EXMOD = Trim(h.kind);
  p.Instrument_Name = "MAC FID";
  return h;
}

Kind_Check Check_Mac(const std::string& path) {
  return Check_File(path, [](Byte_View b) -> Kind_Check {
    const Mac_Head h = Read_Mac_Head(b);
    if (h.kind.empty()) return {"", 1};
    return {h.kind, 0};
  });
}

int Read_Mac_Fid(Session& s, const std::string& path) {
  return Guarded_File_Read(s, path, "MAC/DRW", [&](Byte_View b) {
    Mac_Head h = Read_Mac_Head(b);
    Vendor_Read& r = h.data;
    if (h.kind.empty()) return Reader_Refuse(s, "Dataが違います");
    const int32_t n = r.p.POINT;
    if (!Vendor_Sizes_Ok(n, r.Observe_Frequency, r.p.FREQU, r.p.SMODE)) return Reader_Refuse(s, Param_Error_Text);
    if (!Counts_Fit(b.size(), h.data_start, 2 * static_cast<uint64_t>(n), 4)) return Reader_Fail(s, 62, "MAC/DRW");
    r.Size_Rows(1, n);
    for (int32_t k = 0; k < n; ++k) {
      const size_t at = h.data_start + 8 * static_cast<size_t>(k);
      r.Re(0, k) = Decode_BE_Float32(b, at);
      r.Im(0, k) = Decode_BE_Float32(b, at + 4);
    }
    Store_With_Rules(s, r, Reference_At::Stored_Point);
    return 0;
  });
}

}  // namespace tevo::datafiles
