// GE Omega data (class ".FID" with its twin ".HED"): the ".HED" file is
// text, one key and value a line; the ".FID" file holds big-endian real32
// points, real and imaginary interleaved, one row after another.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "datafiles/native.h"
#include "datafiles/vendor_read.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// One line of the ".HED" file split at its first "=" or blank: the key
// upper-cased, the value trimmed.
std::pair<std::string, std::string> Read_Ge_Line(const std::string& line);

// The parameter keys of the head into `d` (sizes, frequencies, nucleus,
// scans), and the time values (AT, PD, DE) whose unit words "RD", "MS" and
// "US" stand for seconds, milliseconds and microseconds.
void RPGeO(const std::vector<std::string>& lines, Vendor_Read& d);
void RPGeOT(const std::vector<std::string>& lines, Vendor_Read& d);

// The check, given either member of the pair: kind "1D" when DIM1 is below
// 128, else "V2D"; status 1 when the ".HED" file is missing.
Kind_Check RMGEO(const std::string& path);

// Reads the pair into the session; `path` is the ".FID" member. Location
// "RPGeO/DRW".
int Read_Ge_Omega(Session& s, const std::string& path);

}  // namespace tevo::datafiles
