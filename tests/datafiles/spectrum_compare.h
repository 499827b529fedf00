// Processing a FID the way the processing window does with its defaults,
// and comparing the strongest lines of two spectra.
#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "session/session.h"
#include "signal/fid_processing.h"

namespace tevo::test {

// Opens the processing window's state on the FID, previews (automatic
// phase) and commits. Returns the commit's status.
inline int Process_With_Defaults(Session& s, const std::string& work_file) {
  s.Fid_Work_File = work_file;
  signal::Ft_Form_State st;
  signal::Save_Fid_Work_File(s);
  signal::Open_Ft_Form(s, st);
  signal::Run_Preview(s, st);
  return signal::Commit_Transform(s, st);
}

inline double Magnitude(const Session& s, int32_t i) { return std::hypot(s.Spec_Re(i), s.Spec_Im(i)); }

// Local maxima of the real part, strongest first, the first `count`.
inline std::vector<int32_t> Strongest_Tops(const Session& s, int count) {
  std::vector<int32_t> idx;
  for (int32_t i = 1; i + 1 < s.Spec_Points; ++i)
    if (s.Spec_Re(i) > s.Spec_Re(i - 1) && s.Spec_Re(i) >= s.Spec_Re(i + 1)) idx.push_back(i);
  count = std::min<int>(count, static_cast<int>(idx.size()));
  std::partial_sort(idx.begin(), idx.begin() + count, idx.end(),
                    [&](int32_t a, int32_t b) { return s.Spec_Re(a) > s.Spec_Re(b); });
  idx.resize(static_cast<std::size_t>(count));
  return idx;
}

struct Line_Match {
  double distance_points;  // in points of the coarser spectrum
  double absorption;  // real part over magnitude at the matched line
};

// For each of the ten strongest lines of `reference`, the nearest line (local
// maximum of the magnitude above 2 % of the largest) of the processed
// spectrum. Positions compare in absolute frequency (ppm on each spectrum's
// own Spectrum_Frequency); with `align` both are first lined up on their
// strongest line instead, for files whose axes carry no absolute reference.
inline std::vector<Line_Match> Match_Lines(const Session& processed, const Session& reference,
                                           bool align) {
  const int32_t n = processed.Spec_Points;
  double largest = 0;
  for (int32_t i = 0; i < n; ++i) largest = std::max(largest, Magnitude(processed, i));
  std::vector<int32_t> lines;
  for (int32_t i = 1; i + 1 < n; ++i) {
    const double m = Magnitude(processed, i);
    if (m > Magnitude(processed, i - 1) && m >= Magnitude(processed, i + 1) && m > 0.02 * largest)
      lines.push_back(i);
  }
  const double step_p = processed.Spec_Axis[1] - processed.Spec_Axis[0];
  const double step_r = reference.Spec_Axis[1] - reference.Spec_Axis[0];
  const double coarse = std::max(step_p, step_r);
  auto ppm_on_processed = [&](int32_t i) {
    const double hz = reference.Spectrum_Frequency * (1 + reference.Spec_Axis[i] * 1e-6);
    return (hz / processed.Spectrum_Frequency - 1) * 1e6;
  };
  const std::vector<int32_t> tops = Strongest_Tops(reference, 10);
  double offset = 0;
  if (align) {
    int32_t strongest = lines.front();
    for (int32_t j : lines)
      if (Magnitude(processed, j) > Magnitude(processed, strongest)) strongest = j;
    offset = processed.Spec_Axis[strongest] - ppm_on_processed(tops.front());
  }
  std::vector<Line_Match> out;
  for (int32_t i : tops) {
    const double want = ppm_on_processed(i) + offset;
    int32_t best = lines.front();
    for (int32_t j : lines)
      if (std::fabs(processed.Spec_Axis[j] - want) < std::fabs(processed.Spec_Axis[best] - want)) best = j;
    out.push_back({std::fabs(processed.Spec_Axis[best] - want) / coarse,
                   processed.Spec_Re(best) / Magnitude(processed, best)});
  }
  return out;
}

}  // namespace tevo::test
