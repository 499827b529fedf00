#include "datafiles/vendor_read.h"

#include <algorithm>
#include <utility>

#include "datafiles/nucleus.h"
#include "datafiles/vendor_text.h"
#include "session/session.h"

namespace tevo::datafiles {

void Vendor_Read::Size_Rows(int32_t row_count, int32_t point_count) {
  rows = row_count;
  points = point_count;
  const std::size_t n = static_cast<std::size_t>(rows) * static_cast<std::size_t>(points);
  re.assign(n, 0.0f);
  im.assign(n, 0.0f);
}

bool Counts_Fit(std::size_t available, std::size_t offset, uint64_t count, std::size_t word_size) {
  if (offset > available || word_size == 0) return false;
  return count <= (available - offset) / word_size;
}

double Zero_Ppm_Frequency(const Data_Param& p, double observe_mhz) {
  return ((p.SMTMS / static_cast<double>(p.POINT) - 0.5) * p.FREQU * 1e-6 + observe_mhz) / (p.SMEXR * 1e-6 + 1);
}

void Remove_Dc_Offset(Vendor_Read& r) {
  const int32_t n = r.points;
  const auto tail = static_cast<int32_t>(n * 0.4);
  if (tail <= 0) return;
  for (int32_t row = 0; row < r.rows; ++row) {
    double sr = 0, si = 0;
    for (int32_t k = n - tail; k < n; ++k) {
      sr += r.Re(row, k);
      si += r.Im(row, k);
    }
    const double mr = sr / tail, mi = si / tail;
    for (int32_t k = 0; k < n; ++k) {
      r.Re(row, k) = static_cast<float>(r.Re(row, k) - mr);
      r.Im(row, k) = static_cast<float>(r.Im(row, k) - mi);
    }
  }
}

void Store_Vendor_Read(Session& s, Vendor_Read& r) {
  Data_Param& p = r.p;
  // A nucleus the table doesn't know (or none) is "1H" at a proton frequency.
  const std::string named = Normalize_Nucleus(p.OBNUC, s.Nuclei).nucleus;
  if ((named == "NUL" || named == "??") && !Nucleus_From_Frequency(r.Observe_Frequency).empty())
    p.OBNUC = Nucleus_From_Frequency(r.Observe_Frequency);
  p.OBNUC = Normalize_Nucleus(p.OBNUC, s.Nuclei).text;
  if (!p.IRNUC.empty()) p.IRNUC = Normalize_Nucleus(p.IRNUC, s.Nuclei).text;
  p.Observe_Text = Observe_Text_Of(r.Observe_Frequency);
  const bool fid = p.SMODE == 0;
  const int32_t size = p.POINT;
  const int32_t n = std::min(r.points, size);

  s.Array_Rows = std::max(r.rows, 1);
  s.Array_Row = 0;
  Alloc_Point_Arrays(s, size);
  s.Spec_Points = size;
  s.Base_Point_Count = size;
  s.Fid_Points = r.points;
  s.Spec_Axis.assign(static_cast<std::size_t>(size), 0.0f);
  for (int32_t row = 0; row < r.rows; ++row) {
    const auto rw = static_cast<std::size_t>(row);
    for (int32_t i = 0; i < n; ++i) {
      if (fid) {
        s.Fid_Re(static_cast<std::size_t>(i), rw) = r.Re(row, i);
        s.Fid_Im(static_cast<std::size_t>(i), rw) = r.Im(row, i);
      } else {
        const auto k = static_cast<std::size_t>(r.reverse ? n - 1 - i : i);
        s.Ft_Re(k, rw) = s.Spec_Re(k, rw) = r.Re(row, i);
        s.Ft_Im(k, rw) = s.Spec_Im(k, rw) = r.Im(row, i);
      }
    }
  }
  if (!fid)
    for (int32_t i = 0; i < size; ++i)
      s.Spec_Axis[static_cast<std::size_t>(i)] = static_cast<float>(
          (i - static_cast<double>(p.SMTMS)) * p.RESOL / r.Spectrum_Frequency + p.SMEXR);
  s.Param = std::move(p);
  s.Observe_Frequency = r.Observe_Frequency;
  s.Spectrum_Frequency = r.Spectrum_Frequency;
  s.Acq_Mode = 0;
  s.Fid_Shift_Preset = -1;
  s.Fid_Format_Class = r.format_class;
  s.Is_Fid = fid ? 1 : 0;
  s.Is_Spectrum = fid ? 0 : 1;
  if (!fid) Update_Scale_Values(s);
}

}  // namespace tevo::datafiles
