// Nominal spectrometer frequencies and the spelling of nucleus names, as
// the readers of foreign files settle them.
#pragma once

#include <string>
#include <vector>

#include "session/settings_files.h"

namespace tevo::datafiles {

// A frequency (MHz) within 1% of a nominal spectrometer frequency (22.5, 25,
// 50, ... 1000 MHz) becomes that value; anything else is returned as it is.
double Snap_Frequency(double mhz);

// "1H" when the frequency (MHz) is within 1% of a proton frequency of a
// common magnet (60, 90, 270, 300, 400, 500, 600, 800, 900, 1000 MHz), else
// an empty text.
std::string Nucleus_From_Frequency(double mhz);

struct Nucleus_Name {
  std::string nucleus;  // the normalized name, or "??" when unknown
  std::string text;  // the normalized name, or the input unchanged when unknown
};

// Settles the spelling of a nucleus name: trimmed and upper-cased; empty and
// "NUL" give "NUL", "OFF" stays, the usual words for proton, deuterium and
// carbon-13 give "1H", "2H", "13C". Anything else is rearranged as its digits
// followed by its letters ("C13" -> "13C") and looked up in the nucleus
// table.
Nucleus_Name Normalize_Nucleus(const std::string& text, const std::vector<session::Nucleus_Row>& table);

}  // namespace tevo::datafiles
