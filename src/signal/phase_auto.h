// Automatic phase correction read geometrically from the spectrum's trace
// through the complex plane.
//
// Around a peak the points of a Lorentzian line run on a circle through the
// origin; its tilt is the line's phase. The zero-order phase is read at the
// strongest peak ("pp"), the first-order phase at a distant second peak ("p2").
// No search for a best-looking spectrum takes place.
#pragma once

#include <cstdint>

namespace tevo {
struct Session;
}

namespace tevo::signal {

// Where an automatic or manual phase acts. The processing dialog holds one
// pair (Phase0, Phase1) and rotates the current row by table; the main
// window's phase mode keeps a pair per row (Phase0_Row, Phase1_Row of
// Array_Row) and its automatic method rotates every row with sin/cos.
enum class Phase_Place { Dialog, Main_Window };

inline constexpr float Phase0_Limit = 360.0f;  // |Phase0| at most, degrees
inline constexpr float Phase1_Limit = 1800.0f;  // |Phase1| at most, degrees

// Angle of the point (x, y) in degrees, -180 .. 180. Points on the negative
// real axis give -180; the origin gives 0. For |x| < |y| the angle comes from
// atan(x / y), which keeps it exact near the imaginary axis.
double Phase_Angle(double x, double y);

// Spec_Mag = |Ft| of the current row over n points; Peak_Index is the first
// index of the strictly largest value (0 when all are 0), Peak_Magnitude
// that value.
void Find_Magnitude(Session& s, int32_t n);

// The geometric analysis on Spec_* of the current row: corrects p0 (degrees)
// at Pivot_Pp, then, for mode 0, picks Pivot_P2 as the farther of the first
// peaks met from either edge, and corrects p1 (degrees over n points) there.
// In mode 1 the operator's Pivot_P2 stands. Each correction is applied
// before the next reading. Curve_Mask keeps its values outside the windows
// analysed, and the first stage reads them; that carry-over is intended.
void Phase_Analyse(Session& s, float& p0, float& p1, int32_t n, int mode, Phase_Place place);

// The automatic phase of the current row: mode 0 full ("全自動", pivot at
// the strongest peak), mode 1 semi ("半自動", the operator's markers stand).
// The values found are stored clamped to ±360 / ±1800 degrees; the spectrum
// stays rotated by the unclamped values until the next apply.
void Phase_Auto(Session& s, int mode, int32_t n, Phase_Place place = Phase_Place::Dialog);

}  // namespace tevo::signal
