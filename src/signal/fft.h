// The transform of the processing chain: a radix-2 complex FFT that reads its
// twiddle factors from one shared sine table, so that no trigonometric call
// is made per point. Also used by the phase rotation (the same table) and by
// the single-converter correction (the bare butterflies).
#pragma once

#include <cstdint>
#include <span>

#include "signal/sine_table.h"

namespace tevo {
struct Session;
}

namespace tevo::signal {

// Decimation-in-frequency butterflies over re/im[0 .. n), n a power of two
// not above M. Twiddles exp(-i 2 pi a / M) come from the table; nothing is
// scaled, so the result is the plain sum in bit-reversed order.
void Fft_Butterflies(float* re, float* im, int32_t n);

// Puts the output of Fft_Butterflies into natural order (swap of i and its
// bit-reversed partner).
void Fft_Bit_Reverse(float* re, float* im, int32_t n);

// Rotates left by one point and swaps the halves: out[i] = X[(i + n/2 + 1)
// mod n], which puts zero frequency at index n/2 - 1 and the highest
// frequency at the top, the axis convention of the whole program.
void Fft_Centre(float* re, float* im, int32_t n);

// The shift-window-conjugate pass from a FID row into separate arrays:
// re[i] = src_re[i + shift] * w[i], im[i] = -src_im[i + shift] * w[i] for
// i in 0 .. n - 1; points with no source (outside 0 .. n - 1) become 0.
// Source and destination may be the same arrays.
void Shift_Window_Conjugate(const float* src_re, const float* src_im, const float* w, float* re,
                            float* im, int32_t n, int32_t shift);

// The whole spectrum transform of one row: shift-window-conjugate, then
// butterflies, bit reversal and centring. Out of place.
void Spectrum_Transform(const float* src_re, const float* src_im, const float* w, float* re,
                        float* im, int32_t n, int32_t shift);

// Transforms row Array_Row of Fid_Re/Fid_Im (left untouched) into Ft_Re/Ft_Im
// with Window_Func and the given shift, N = Spec_Points. Returns the plot
// maximum of the preview: the square root of the largest re^2 + im^2 of the
// row, at least 1e-5.
float FT_Preview(Session& s, int32_t shift);

// The same transform in place in Fid_Re/Fid_Im of one row. The shift pass
// runs upward for shift >= 0 and downward for shift < 0, so that no source
// point is overwritten before it is read.
void FT_Row(Session& s, int32_t row, int32_t shift);

}  // namespace tevo::signal
