// The ASCII spectrum export: one point a line, "X, Y" with X in ppm, from
// the highest ppm down, CR LF. Its menu commands (the name, the extension
// check, the choice of values) are m18_Click and m182_Click in open_file.h.
#pragma once

#include <string>
#include <vector>

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// What the Y values are, as the choice of NMR1D_Form104 arrives:
//   "A"  the data as they stand; the imaginary part follows: "X, Re,Im"
//   "R", "R1"  relative to the largest value of this spectrum
//   "R2" relative to the largest value of spectrum 1 (the main spectrum)
//   "D"  as the screen shows them: the points of the view, with the frame's
//        height 1.0 (y / Y_Full_Scale + Y_Offset)
// A line whose imaginary part is not written ends ",0".
// Any other text is taken as "A".
inline constexpr const char* Ascii_Modes[] = {"A", "D", "R1", "R2"};
// The captions of those four choices, in the same order.
const std::vector<std::string>& Ascii_Mode_Captions();

// Writes spectrum `spectrum` (0 the main spectrum's current row, 1 .. 10 an
// overlay slot) to `path` and logs "Write". Returns 0 written, 1 nothing to
// write (an empty spectrum), -1 after the file error message.
int Write_Ascii(Session& s, const std::string& path, int spectrum, const std::string& mode);

}  // namespace tevo::datafiles
