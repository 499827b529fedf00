// Phase rotation of a complex spectrum.
//
// Every point i of a row is multiplied by exp(+i phi) with
//   phi = p0 + (i - pivot) * p1 / n   degrees,
// p0 being the zero-order phase, p1 the first-order phase over the whole
// width n, and pivot the point index (marker "pp", Session::Pivot_Pp) about
// which the first-order term turns. Two arithmetics give the same rotation:
// the table lookup (angle quantised to 360 / 524288 degrees, no sin/cos per
// point, used interactively) and per-point sine and cosine.
#pragma once

#include <cstdint>
#include <span>

namespace tevo {
struct Session;
}

namespace tevo::signal {

// Rotates points 0..n-1 of (re_in, im_in) into (re_out, im_out) through the
// sine table. Angles: phi * M / 360 rounded to the nearest table step (ties to
// even), reduced modulo M with the dividend's sign, and the cosine read M/4
// steps on. Input and output may be the same arrays (in-place rotation).
// p0, p1 in degrees; pivot a point index; every span holds at least n points.
void Rotate_By_Table(std::span<const float> re_in, std::span<const float> im_in,
                     std::span<float> re_out, std::span<float> im_out, int32_t n,
                     float p0, float p1, int32_t pivot);

// The same rotation with sin/cos per point, angle in double precision.
void Rotate_By_Sin_Cos(std::span<const float> re_in, std::span<const float> im_in,
                       std::span<float> re_out, std::span<float> im_out, int32_t n,
                       float p0, float p1, int32_t pivot);

// Phase by table from Ft_* of `row` into Spec_* of that row, about
// Session::Pivot_Pp. The display copy is left alone.
void Phase_Apply_Table(Session& s, float p0, float p1, int32_t n, int32_t row);

// Phase_Apply_Table on the current row (the processing dialog's preview).
void Phase_Preview(Session& s, float p0, float p1, int32_t n);

// The table rotation in place on Fid_Re/Fid_Im of `row`: the commit of a
// transform puts the previewed phase into the data this way.
void Phase_Row(Session& s, float p0, float p1, int32_t n, int32_t row);

// Rotation by sin/cos from Ft_* into Spec_* for every row, then the whole
// display copy is rebuilt.
void Phase_Apply_Exact(Session& s, float p0, float p1, int32_t n);

// The main window's apply: with Phase_Together every row is rotated by table
// and the whole display copy rebuilt; otherwise only the current row and its
// display row.
void Phase_Apply_Main(Session& s, float p0, float p1, int32_t n);

}  // namespace tevo::signal
