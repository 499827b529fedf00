// What a reader of a foreign binary has decoded, held apart from the session
// until the whole file has read, and the one routine that puts it into the
// session: the FID rows into Fid_Re/Fid_Im, or the spectrum rows into
// Ft_*/Spec_* with the ppm axis. A reader that fails never reaches it, so
// the former data set stays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "session/records.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

struct Vendor_Read {
  Data_Param p;  // SMODE 0 FID, 1 spectrum; POINT, RESOL, SMTMS, SMEXR final
  double Observe_Frequency = 0;  // MHz
  double Spectrum_Frequency = 0;  // MHz of 0 ppm
  int32_t points = 0;  // complex points of each row as read
  int32_t rows = 1;
  // Row after row, `points` values each, in the file's order.
  std::vector<float> re, im;
  // A spectrum stored from high to low ppm: file point i goes to N - 1 - i.
  bool reverse = false;
  int16_t format_class = 0;  // FID shift memory class: 2 Varian, 3 JEOL

  float& Re(int32_t row, int32_t i) { return re[Index(row, i)]; }
  float& Im(int32_t row, int32_t i) { return im[Index(row, i)]; }
  std::size_t Index(int32_t row, int32_t i) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(points) + static_cast<std::size_t>(i);
  }
  // Sizes re and im for rows x points values, all 0.
  void Size_Rows(int32_t row_count, int32_t point_count);
};

// True when `count` words of `word_size` bytes fit into `available` bytes
// from `offset` on: the test every reader makes before it allocates for a
// count a file has given.
bool Counts_Fit(std::size_t available, std::size_t offset, uint64_t count, std::size_t word_size);

// The frequency (MHz) of 0 ppm of a spectrum whose point SMTMS (of POINT,
// ascending in frequency, the carrier at the middle) has the shift SMEXR:
// ((SMTMS / POINT - 0.5) x FREQU x 1e-6 + observe) / (SMEXR x 1e-6 + 1).
double Zero_Ppm_Frequency(const Data_Param& p, double observe_mhz);

// Subtracts from every point of each row the means of re and im over the
// last 40 % of that row's points (the DC offset of a raw FID).
void Remove_Dc_Offset(Vendor_Read& r);

// Puts the read into the session: the nuclei through the nucleus table (an
// unknown observe nucleus "1H" at a proton frequency), the
// observe text, the point arrays for POINT points and `rows` rows. A FID
// (SMODE 0) fills Fid_Re/Fid_Im; a spectrum fills Ft_*/Spec_* (reversed when
// asked) with Spec_Axis[i] = (i - SMTMS) x RESOL / Spectrum_Frequency +
// SMEXR and the scale values.
void Store_Vendor_Read(Session& s, Vendor_Read& r);

}  // namespace tevo::datafiles
