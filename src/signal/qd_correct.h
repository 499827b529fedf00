// Correction of FIDs recorded with a single analogue-digital converter: the
// two quadrature channels are sampled one after the other, half a dwell time
// apart. The offset is removed in the frequency domain, where a delay of half
// a dwell is a phase linear in frequency, and the FID rebuilt from there.
#pragma once

#include <cstdint>

namespace tevo {
struct Session;
}

namespace tevo::signal {

// One row of n points (a power of two). The imaginary channel is taken as
// its own signal U = i * im and the real channel as X = re; both are
// transformed (butterflies and bit reversal only: no window, shift,
// conjugation or centring). Then, per frequency point k with
// a = float(k / n) * pi below n/2 and (float(k / n) - 1) * pi from n/2 on,
// the result is X - U * exp(-i a): the imaginary channel moved back by half
// a dwell. Left in re/im as a spectrum in bit-reversal-free natural order.
// Mode 1 also reverses the points end for end.
void QD_Correct(float* re, float* im, int32_t n, int mode);

// Forward transform (butterflies and bit reversal) of one row, after
// negating the imaginary part when conjugate is 1. Applied to the output of
// QD_Correct this returns n times the conjugate of the corrected FID.
void Plain_Transform(float* re, float* im, int32_t n, int conjugate);

// "OK" of the "Bruker補正" window (NMR1D_Form14): "Single AD-Converter"
// selected sets Acq_Mode to 1, "Dual AD-Converter" to 0.
void Form14_OK(Session& s, bool single_converter);

// The step after reading a FID: when Acq_Mode is 1, every row is corrected
// (QD_Correct mode 0, then Plain_Transform with conjugation), Acq_Mode is
// cleared, and the FID is normalised again: divided by the largest |Fid_Re|
// of row 0 (at least 0.1), which multiplies into Fid_Scale. Returns whether
// the correction ran.
bool Single_Converter_Correction(Session& s);

}  // namespace tevo::signal
