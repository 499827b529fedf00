#include "datafiles/aspect.h"

#include <cstdio>

#include "datafiles/vendor_rules.h"
#include "session/session.h"

namespace tevo::datafiles {

namespace {

constexpr int32_t Msl_Magic = 0x4784F5;

// Head offsets in bytes (every one a multiple of the 3-byte word).
constexpr size_t Off_Name = 3, Off_Layout = 18, Off_Date = 30, Off_Head_Words = 120, Off_Spectrum = 123,
                 Off_Scans = 126, Off_Dummy = 156, Off_Sweep = 159, Off_Points = 165, Off_Freq_Mhz = 171,
                 Off_Freq_Hz = 177, Off_Times = 210, Off_Acqtm = 231, Off_Iratn = 243, Off_Temp = 255,
                 Off_Rgain = 264, Off_Exmod = 381, Off_Smexr = 543, Off_Nucleus = 735;

// `count` text words from `offset`, joined.
std::string Text_Words(Byte_View b, size_t offset, int count) {
  std::string t;
  for (int k = 0; k < count; ++k) t += Decode_Aspect_Text(b, offset + 3 * static_cast<size_t>(k));
  return t;
}

// The Aspect spelling of a nucleus, mass number behind the symbol.
std::string Msl_Nucleus(const std::string& word) {
  const std::string n = Trim(word);
  if (n == "H1") return "1H";
  if (n == "C13") return "13C";
  return n;
}

}  // namespace

Msl_Head Read_Msl_Head(Byte_View b) {
  Msl_Head h;
  // A word of code 0 reads as blanks inside the name: trimmed once, here.
  h.name = Trim(Text_Words(b, Off_Name, 3));
  h.older_layout = Decode_Aspect_Int24(b, Off_Layout) == 1;
  char date[16];
  std::snprintf(date, sizeof date, "%06X", static_cast<unsigned>(Decode_Aspect_Int24(b, Off_Date)) & 0xFFFFFFu);
  h.date = date;
  h.data_start = static_cast<size_t>(static_cast<int64_t>(Decode_Aspect_Int24(b, Off_Head_Words)) * 3 + 768);
  h.words = Decode_Aspect_Int24(b, Off_Points);

  Data_Param& p = h.data.p;
  p.SMODE = Decode_Aspect_Int24(b, Off_Spectrum) != 0 ? 1 : 0;
  p.SCANS = Decode_Aspect_Int24(b, Off_Scans);
  p.DUMMY = Decode_Aspect_Int24(b, Off_Dummy);
  p.FREQU = To_Real32(Decode_Aspect_Float48(b, Off_Sweep));
  // The carrier: the base frequency in MHz and the offset from it in Hz.
  h.data.Observe_Frequency = Decode_Aspect_Float48(b, Off_Freq_Mhz) + Decode_Aspect_Float48(b, Off_Freq_Hz) * 1e-6;
  p.TIMES = Decode_Aspect_Int24(b, Off_Times);
  p.ACQTM = To_Real32(Decode_Aspect_Float48(b, Off_Acqtm));
  p.IRATN = static_cast<int16_t>(Decode_Aspect_Int24(b, Off_Iratn));
  p.CTEMP = static_cast<float>(Decode_Aspect_Int24(b, Off_Temp) - 273);
  p.RGAIN = Decode_Aspect_Int24(b, Off_Rgain);
  p.EXMOD = Trim(Text_Words(b, Off_Exmod, 3));
  p.SMEXR = To_Real32(Decode_Aspect_Float48(b, Off_Smexr));
  p.OBNUC = Msl_Nucleus(Text_Words(b, Off_Nucleus, 2));
  p.DATIM = h.date;
  p.Instrument_Name = h.older_layout ? "ASP" : "MSL";
  if (p.TIMES == 0) p.TIMES = p.SCANS;
  p.POINT = h.words / 2;
  return h;
}

Kind_Check Check_Msl(const std::string& path) {
  return Check_File(path, [](Byte_View b) -> Kind_Check {
    if (b.size() >= 3 && Decode_Aspect_Int24(b, 0) == Msl_Magic) return {"SINGLE PULSE", 0};
    return {"", 0};
  });
}

int ReadDataMSL_2(Session& s, const std::string& path) {
  return Guarded_File_Read(s, path, "MSL/DRW", [&](Byte_View b) {
    Msl_Head h = Read_Msl_Head(b);
    Vendor_Read& r = h.data;
    const int32_t n = r.p.POINT;
    if (!Vendor_Sizes_Ok(n, r.Observe_Frequency, r.p.FREQU, r.p.SMODE)) return Reader_Refuse(s, Param_Error_Text);
    if (!Counts_Fit(b.size(), h.data_start, 2 * static_cast<uint64_t>(n), 3)) return Reader_Fail(s, 62, "MSL/DRW");

    r.Size_Rows(1, n);
    // A FID holds the conjugate of what the transform expects, as the raw
    // files of the same vendor do: the imaginary part is negated.
    const float im_sign = r.p.SMODE == 0 ? -1.0f : 1.0f;
    for (int32_t k = 0; k < n; ++k) {
      const size_t at = h.data_start + 6 * static_cast<size_t>(k);
      r.Re(0, k) = static_cast<float>(Decode_Aspect_Int24(b, at));
      r.Im(0, k) = im_sign * static_cast<float>(Decode_Aspect_Int24(b, at + 3));
    }
    Store_With_Rules(s, r, Reference_At::Carrier);
    return 0;
  });
}

}  // namespace tevo::datafiles
