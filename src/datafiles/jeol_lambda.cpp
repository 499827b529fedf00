#include "datafiles/jeol_lambda.h"

#include <cstring>
#include <stdexcept>

#include "datafiles/decoders.h"
#include "datafiles/jeol_alpha.h"
#include "datafiles/recognition.h"
#include "datafiles/vendor_rules.h"
#include "session/session.h"

namespace tevo::datafiles {

namespace {

// File head offsets, bytes.
constexpr size_t Off_Block = 64, Off_Data = 80;
// Offsets in the parameter block, bytes.
constexpr size_t Off_Exmod = 290, Off_Slvnt = 364, Off_Obnuc = 503, Off_Irnuc = 512, Off_Trnuc = 521,
                 Off_Point = 728, Off_Second_Dim = 732, Off_Scans = 812, Off_Frequ = 896, Off_Smexr = 928,
                 Off_Smtms = 944, Off_Pd = 1088, Off_Pw = 1120, Off_Pi = 1288, Off_Obset = 2000,
                 Off_Offset = 2064, Off_Irr = 2136, Off_Times = 2492, Off_Intvl = 2520, Off_Acqtm = 2568,
                 Off_Filtr = 2572, Off_Dummy = 2576, Off_Rgain = 2652, Off_Csped = 3556, Off_Ctemp = 3560,
                 Block_Used = 3952, Text_Length = 32, Nucleus_Length = 8;

bool Has_Banner(Byte_View b) { return b.size() >= 10 && std::memcmp(b.data(), "JEOLUSF001", 10) == 0; }

struct Lambda_Head {
  Vendor_Read r;
  bool two_d = false;
  size_t data_start = 0;
};

// The parameter block as a view of its own, so that every field is read
// inside it.
Lambda_Head Read_Lambda_Head(Byte_View file) {
  const int32_t block = Decode_LE_Int32(file, Off_Block), data = Decode_LE_Int32(file, Off_Data);
  if (block < 0 || data < 0 || !Counts_Fit(file.size(), static_cast<size_t>(block), Block_Used, 1))
    throw std::out_of_range("LAMBDA parameter block");
  const Byte_View b = file.subspan(static_cast<size_t>(block));
  Lambda_Head h;
  h.data_start = static_cast<size_t>(data);
  Data_Param& p = h.r.p;
  p.EXMOD = Fetch_Text(b, Off_Exmod, Text_Length);
  p.SLVNT = Fetch_Text(b, Off_Slvnt, Nucleus_Length);
  p.OBNUC = Fetch_Text(b, Off_Obnuc, Nucleus_Length);
  p.IRNUC = Fetch_Text(b, Off_Irnuc, Nucleus_Length);
  p.TRNUC = Fetch_Text(b, Off_Trnuc, Nucleus_Length);
  p.POINT = Decode_LE_Int32(b, Off_Point);
  h.two_d = Decode_LE_Int32(b, Off_Second_Dim) > 0;
  p.SCANS = Decode_LE_Int32(b, Off_Scans);
  p.FREQU = Decode_LE_Float32(b, Off_Frequ);
  p.SMEXR = Decode_LE_Float32(b, Off_Smexr);
  p.SMTMS = static_cast<float>(Decode_LE_Int32(b, Off_Smtms));
  p.PD = To_Real32(Decode_LE_Float64(b, Off_Pd));
  for (size_t k = 0; k < 5; ++k) {
    p.PW[k] = To_Real32(Decode_LE_Float64(b, Off_Pw + 8 * k));
    p.PI[k] = To_Real32(Decode_LE_Float64(b, Off_Pi + 8 * k));
  }
  const double observe_hz = Decode_LE_Float64(b, Off_Obset);
  p.OBFRQ = To_Real32(observe_hz * 1e-6);
  h.r.Observe_Frequency = (observe_hz + Decode_LE_Float64(b, Off_Offset)) * 1e-6;
  p.Irr_Frequency = Decode_LE_Float64(b, Off_Irr) * 1e-6;
  p.IRFRQ = To_Real32(p.Irr_Frequency);
  p.TIMES = Decode_LE_Int32(b, Off_Times);
  p.INTVL = Decode_LE_Float32(b, Off_Intvl);
  p.ACQTM = Decode_LE_Float32(b, Off_Acqtm);
  p.FILTR = Decode_LE_Float32(b, Off_Filtr);
  p.DUMMY = Decode_LE_Int32(b, Off_Dummy);
  p.RGAIN = Decode_LE_Int32(b, Off_Rgain);
  p.CSPED = Decode_LE_Float32(b, Off_Csped);
  p.CTEMP = Decode_LE_Float32(b, Off_Ctemp);
  p.Instrument_Name = "JEOL LAMBDA";
  return h;
}

// FID or spectrum by the name: ".nmfid..." a FID, ".nmdata..." a spectrum,
// else the operator's answer; -1 when he cancels.
int Lambda_Smode(Session& s, const std::string& path) {
  const std::string ext = Extension_Class(path);
  if (ext.rfind(".NMFID", 0) == 0) return 0;
  if (ext.rfind(".NMDATA", 0) == 0) return 1;
  const std::string answer = NMR1D_Form102(s);
  return answer.empty() ? -1 : answer == "1" ? 1 : 0;
}

}  // namespace

Kind_Check Check_Lambda(const std::string& path) {
  return Check_File(path, [](Byte_View b) -> Kind_Check {
    if (!Has_Banner(b)) return {"", 1};
    const Lambda_Head h = Read_Lambda_Head(b);
    return {(h.two_d ? "2D:" : "1D:") + h.r.p.EXMOD, 0};
  });
}

int Read_Lambda(Session& s, const std::string& path) {
  return Guarded_File_Read(s, path, "Read_Lambda/DRW", [&](Byte_View b) {
    if (!Has_Banner(b)) return Reader_Refuse(s, "Dataが違います");
    Lambda_Head h = Read_Lambda_Head(b);
    if (h.two_d) return Reader_Refuse(s, "Dataが違います(2D Data)");
    Vendor_Read& r = h.r;
    const int smode = Lambda_Smode(s, path);
    if (smode < 0) return 1;
    r.p.SMODE = static_cast<int16_t>(smode);
    const int32_t n = r.p.POINT;
    if (!Alpha_Rules(r)) return Reader_Refuse(s, Param_Error_Text);
    if (!Counts_Fit(b.size(), h.data_start, 2 * static_cast<uint64_t>(n), 4))
      return Reader_Fail(s, 62, "Read_Lambda/DRW");
    r.Size_Rows(1, n);
    for (int32_t k = 0; k < n; ++k) {
      const size_t re = h.data_start + 4 * static_cast<size_t>(k);
      r.Re(0, k) = Decode_LE_Float32(b, re);
      r.Im(0, k) = Decode_LE_Float32(b, re + 4 * static_cast<size_t>(n));
    }
    Store_Vendor_Read(s, r);
    return 0;
  });
}

}  // namespace tevo::datafiles
