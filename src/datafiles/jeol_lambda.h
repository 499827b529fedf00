// JEOL LAMBDA data (banner "JEOLUSF001"): the int32 at 64 gives the offset
// of the parameter block and the one at 80 that of the data block;
// little-endian integers and IEEE numbers; the data are the real32 real
// part, then the imaginary part. A ".nmfid" file holds a FID, a ".nmdata"
// file a spectrum; for any other name the operator is asked.
#pragma once

#include <string>

#include "datafiles/native.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// The check: kind "1D:" or "2D:" and EXMOD; status 1 without the banner,
// -1 when unreadable.
Kind_Check Check_Lambda(const std::string& path);

// Reads a 1D file with the rules of the ALPHA read. Location
// "Read_Lambda/DRW".
int Read_Lambda(Session& s, const std::string& path);

}  // namespace tevo::datafiles
