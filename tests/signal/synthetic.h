// Synthetic FIDs for the signal tests: sums of damped complex lines, stored
// the way the readers store a FID (Fid_Re/Fid_Im of each row, N points).
#pragma once

#include <cmath>
#include <complex>
#include <cstdint>
#include <random>
#include <vector>

#include "platform/ui.h"
#include "session/session.h"

namespace tevo::test {

struct Line {
  double freq_hz;  // offset from the carrier
  double amplitude;
  double t2_s;  // decay time constant
  double phase_deg = 0;
};

// Sample t of the sum of lines at sweep width sw (dwell 1/sw).
inline std::complex<double> Line_Sample(const std::vector<Line>& lines, double sw, int32_t t) {
  const double pi = 3.14159265358979323846;
  std::complex<double> v{};
  const double time = t / sw;
  for (const Line& l : lines)
    v += l.amplitude * std::exp(-time / l.t2_s) *
         std::polar(1.0, 2 * pi * l.freq_hz * time + l.phase_deg * pi / 180);
  return v;
}

// A session holding one row of `measured` points of the lines (the rest 0),
// transform size n, sweep width sw Hz, observe frequency obs MHz. The signal
// is stored conjugated: the transform conjugates it back, so a line of
// positive offset lands above the centre (at a higher index and ppm).
inline void Fill_Fid(Session& s, int32_t n, int32_t measured, double sw, double obs,
                     const std::vector<Line>& lines, double noise = 0, uint32_t seed = 7) {
  static platform::Scripted_Ui quiet_ui = [] {
    platform::Scripted_Ui u;
    u.quiet = true;
    return u;
  }();
  s.ui = &quiet_ui;
  s.Array_Rows = 1;
  s.Array_Row = 0;
  Alloc_Point_Arrays(s, n);
  s.Spec_Points = n;
  s.Base_Point_Count = n;
  s.Fid_Points = measured;
  s.Param.FREQU = static_cast<float>(sw);
  s.Param.RESOL = static_cast<float>(sw / n);
  s.Param.OBFRQ = static_cast<float>(obs);
  s.Observe_Frequency = obs;
  s.Spectrum_Frequency = obs;
  s.Is_Fid = 1;
  std::mt19937 gen(seed);
  std::normal_distribution<double> g(0.0, noise > 0 ? noise : 1.0);
  for (int32_t t = 0; t < measured; ++t) {
    std::complex<double> v = Line_Sample(lines, sw, t);
    if (noise > 0) v += std::complex<double>(g(gen), g(gen));
    s.Fid_Re(static_cast<std::size_t>(t)) = static_cast<float>(v.real());
    s.Fid_Im(static_cast<std::size_t>(t)) = static_cast<float>(-v.imag());
  }
}

}  // namespace tevo::test
