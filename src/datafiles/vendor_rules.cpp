#include "datafiles/vendor_rules.h"

#include "datafiles/nucleus.h"
#include "session/session.h"

namespace tevo::datafiles {

bool Vendor_Sizes_Ok(int32_t points, double observe, double frequ, int16_t smode) {
  if (points < 10 || !(observe > 0 && observe < 1e5) || !(frequ > 0 && frequ < 1e9)) return false;
  if (points > Fft_Table_Size_Max) return false;
  return smode != 0 || Next_Power_Of_Two(points) <= Fft_Table_Size_Max;
}

void Store_With_Rules(Session& s, Vendor_Read& r, Reference_At at) {
  Data_Param& p = r.p;
  const int32_t n = r.points;
  const bool fid = p.SMODE == 0;
  // The reference point as the program holds it, index ascending in
  // frequency with the carrier at the middle.
  const double ref_index = at == Reference_At::Carrier ? n / 2.0 : n - 1 - static_cast<double>(p.SMTMS);
  p.POINT = n;
  p.SMTMS = static_cast<float>(ref_index);
  r.Spectrum_Frequency = Zero_Ppm_Frequency(p, r.Observe_Frequency);
  // A reference shift no magnet has keeps the carrier at 0 ppm instead.
  if (!(r.Spectrum_Frequency > 0 && r.Spectrum_Frequency < 1e5)) {
    r.Spectrum_Frequency = r.Observe_Frequency;
    p.SMEXR = 0;
  }
  if (fid) {
    p.POINT = Next_Power_Of_Two(n);
    if (p.ACQTM == 0) p.ACQTM = To_Real32(n / static_cast<double>(p.FREQU));
    // The transform puts the carrier at the middle point.
    p.SMTMS = static_cast<float>(p.POINT / 2);
    p.SMEXR = To_Real32((r.Observe_Frequency / r.Spectrum_Frequency - 1) * 1e6);
  }
  r.reverse = !fid;
  p.RESOL = p.FREQU / static_cast<float>(p.POINT);
  if (p.OBFRQ == 0) p.OBFRQ = To_Real32(r.Observe_Frequency);
  Store_Vendor_Read(s, r);
}

}  // namespace tevo::datafiles
