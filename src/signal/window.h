// Window (apodisation) weights of the transform.
#pragma once

#include <cstdint>

namespace tevo {
struct Session;
}

namespace tevo::signal {

// Fills Window_Func (N = Spec_Points weights) from Window_Kind,
// Line_Broadening (Hz), Window_Start/Window_End (percent of the FID length),
// the trapezoid Trap_T1..Trap_T4 (percent) and Fid_Shift. The FID length L is
// Fid_Points, or N once forward prediction has filled the data.
//
// Bounds out of range are first put back to 0 and 100 in the session. Sine
// and Gaussian weights run over the whole FID (not clipped to the bounds);
// the trapezoid then clears point 0 up to its first corner inclusive, ramps
// up to the second, down from the third to the fourth and clears the rest.
// Returns 0, or -1 after the common error text for a division by zero: the
// bounds collapse to one point, or the exponential kind has no sweep width.
int Build_Window(Session& s);

}  // namespace tevo::signal
