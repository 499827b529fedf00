// The tables of the peak and integral list windows, as texts: the window
// only shows them.
#pragma once

#include <string>
#include <vector>

namespace tevo {
struct Session;
}

namespace tevo::editing {

struct List_Table {
  std::vector<std::string> heads;
  std::vector<std::vector<std::string>> rows;
};

// "番号", "ppm", "Hz" (or "kHz" when the axis shows kHz), "実強度", "強度".
// Positions "###0.000" for 1H and "##0.0000" otherwise, frequencies
// "####0.0" (Hz) or "#0.0000" (kHz), heights as whole numbers, strengths
// "###0.00" of the largest height; the number, frequency and strength are
// padded on the left to 5, 11 and 8 characters. Rows as Peak_List_Rows
// gives them ("PEAK LIST DIRECT" reverses them).
List_Table Peak_List_Table(Session& s);

// "番号", "Start(ppm)", "End(ppm)" (or Hz, kHz by the axis unit), "積分値",
// "B0", "B1". Positions "###0.000" for 1H and "##0.0000" otherwise, in Hz
// "#####0.0", in kHz "#0.00000"; the value shown "###0.000", B0 and B1
// "###0.0#####".
List_Table Integral_List_Table(Session& s);

}  // namespace tevo::editing
