#include "datafiles/jeol_alpha.h"

#include <cstring>
#include <stdexcept>

#include "datafiles/decoders.h"
#include "datafiles/vendor_rules.h"
#include "session/session.h"

namespace tevo::datafiles {

namespace {

constexpr size_t Head_Size = 8705;
constexpr size_t Data_At_Long = 16384, Data_At_Short = 8704;
constexpr int32_t Long_Head_Mark = 33;
// Head offsets, bytes.
constexpr size_t Off_Layout = 40, Off_Spectrum = 516, Off_Second_Dim = 528, Off_Point = 576, Off_Scans = 584,
                 Off_Smtms = 824, Off_Dummy = 1452, Off_Rgain = 1528, Off_Obatn = 1540, Off_Iratn = 1544,
                 Off_Tratn = 1548, Off_Frequ = 1816, Off_Acqtm = 1840, Off_Filtr = 1848, Off_Pd = 1888,
                 Off_Pw = 1896, Off_Pi = 1968, Off_Adbit = 2144, Off_Observe = 2152, Off_Irr = 2168,
                 Off_Third = 2176, Off_Offset = 2184, Off_Obset = 2216, Off_Csped = 2304, Off_Ctemp = 2320,
                 Off_Smexr = 3696, Off_Obnuc = 5304, Off_Irnuc = 5312, Off_Trnuc = 5320, Off_Kind = 5440,
                 Nucleus_Length = 8;

bool Has_Banner(Byte_View b) { return b.size() >= 6 && std::memcmp(b.data(), "NFT1DT", 6) == 0; }

struct Alpha_Head {
  Vendor_Read r;
  bool two_d = false;
  size_t data_start = Data_At_Short;
  std::string kind;
};

Alpha_Head Read_Alpha_Head(Byte_View b) {
  if (b.size() < Head_Size) throw std::out_of_range("ALPHA head");
  Alpha_Head h;
  Data_Param& p = h.r.p;
  auto d = [&](size_t at) { return Decode_VAX_D(b, at); };
  h.data_start = Decode_LE_Int32(b, Off_Layout) == Long_Head_Mark ? Data_At_Long : Data_At_Short;
  p.SMODE = Decode_LE_Int32(b, Off_Spectrum) != 0 ? 1 : 0;
  h.two_d = Decode_LE_Int32(b, Off_Second_Dim) > 0;
  p.POINT = Decode_LE_Int32(b, Off_Point);
  p.SCANS = p.TIMES = Decode_LE_Int32(b, Off_Scans);
  p.SMTMS = static_cast<float>(Decode_LE_Int32(b, Off_Smtms));
  p.DUMMY = Decode_LE_Int32(b, Off_Dummy);
  p.RGAIN = Decode_LE_Int32(b, Off_Rgain);
  p.OBATN = Decode_LE_Int16(b, Off_Obatn);
  p.IRATN = Decode_LE_Int16(b, Off_Iratn);
  p.TRATN = Decode_LE_Int16(b, Off_Tratn);
  p.FREQU = To_Real32(d(Off_Frequ));
  p.ACQTM = To_Real32(d(Off_Acqtm));
  p.FILTR = To_Real32(d(Off_Filtr));
  p.PD = To_Real32(d(Off_Pd));
  for (size_t k = 0; k < 5; ++k) {
    p.PW[k] = To_Real32(d(Off_Pw + 8 * k) * 1e6);  // seconds to microseconds
    p.PI[k] = To_Real32(d(Off_Pi + 8 * k) * 1e6);
  }
  p.ADBIT = To_Real32(d(Off_Adbit));
  const double observe_hz = d(Off_Observe);
  p.OBFRQ = To_Real32(observe_hz * 1e-6);
  p.Irr_Frequency = d(Off_Irr) * 1e-6;
  p.IRFRQ = To_Real32(p.Irr_Frequency);
  p.TRFRQ = To_Real32(d(Off_Third) * 1e-6);
  h.r.Observe_Frequency = (observe_hz + d(Off_Offset)) * 1e-6;
  p.OBSET = To_Real32(d(Off_Obset) * 0.001);
  p.CSPED = To_Real32(d(Off_Csped));
  p.CTEMP = To_Real32(d(Off_Ctemp));
  p.SMEXR = To_Real32(d(Off_Smexr));
  p.OBNUC = Fetch_Text(b, Off_Obnuc, Nucleus_Length);
  p.IRNUC = Fetch_Text(b, Off_Irnuc, Nucleus_Length);
  p.TRNUC = Fetch_Text(b, Off_Trnuc, Nucleus_Length);
  h.kind = Fetch_Text(b, Off_Kind, Nucleus_Length);
  p.EXMOD = h.kind;
  p.Instrument_Name = "JEOL ALPHA";
  return h;
}

}  // namespace

bool Alpha_Rules(Vendor_Read& r) {
  Data_Param& p = r.p;
  const int32_t n = p.POINT;
  if (n < 10 || n > Fft_Table_Size_Max || !(r.Observe_Frequency > 0 && r.Observe_Frequency < 1e5) ||
      !(p.FREQU > 0 && p.FREQU < 1e9))
    return false;
  p.POINT = Next_Power_Of_Two(n);
  p.RESOL = p.FREQU / static_cast<float>(p.POINT);
  r.Spectrum_Frequency = r.Observe_Frequency;
  if (p.SMODE == 1) {
    p.SMTMS = static_cast<float>(p.POINT - p.SMTMS);
    r.Spectrum_Frequency = Zero_Ppm_Frequency(p, r.Observe_Frequency);
    if (!(r.Spectrum_Frequency > 0)) return false;
    r.reverse = true;
  }
  r.format_class = 3;
  return true;
}

Kind_Check Check_Alpha(const std::string& path) {
  return Check_File(path, [](Byte_View b) -> Kind_Check {
    if (!Has_Banner(b)) return {"", 1};
    const Alpha_Head h = Read_Alpha_Head(b);
    return {(h.two_d ? "2D:" : "1D:") + h.kind, 0};
  });
}

int Read_Alpha(Session& s, const std::string& path) {
  return Guarded_File_Read(s, path, "Read_Alpha/DRW", [&](Byte_View b) {
    if (!Has_Banner(b)) return Reader_Refuse(s, "Dataが違います");
    Alpha_Head h = Read_Alpha_Head(b);
    if (h.two_d) return Reader_Refuse(s, "Dataが違います(2D Data)");
    Vendor_Read& r = h.r;
    const int32_t n = r.p.POINT;
    if (!Alpha_Rules(r)) return Reader_Refuse(s, Param_Error_Text);
    if (!Counts_Fit(b.size(), h.data_start, 2 * static_cast<uint64_t>(n), 4))
      return Reader_Fail(s, 62, "Read_Alpha/DRW");
    r.Size_Rows(1, n);
    const bool vax = r.p.SMODE == 1;
    for (int32_t k = 0; k < n; ++k) {
      const size_t re = h.data_start + 4 * static_cast<size_t>(k), im = re + 4 * static_cast<size_t>(n);
      r.Re(0, k) = static_cast<float>(vax ? Decode_VAX_F(b, re) : Decode_LE_Float32(b, re));
      r.Im(0, k) = static_cast<float>(vax ? Decode_VAX_F(b, im) : Decode_LE_Float32(b, im));
    }
    Store_Vendor_Read(s, r);
    return 0;
  });
}

}  // namespace tevo::datafiles
