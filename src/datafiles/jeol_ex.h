// JEOL EX, GX and GSX data: a text parameter file (".gxp") and its twin
// data file (".gxd") of little-endian real32 values, real and imaginary
// interleaved, with no head. The parameter file comes in two layouts: all
// keys on one long first line (80 characters or more), or one key and its
// value a line up to the first empty line.
#pragma once

#include <string>
#include <vector>

#include "datafiles/native.h"
#include "datafiles/vendor_read.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// What the parameter file gives beside the Data_Param fields.
struct Ex_Params {
  Vendor_Read d;
  int32_t dtype = 0;  // DTYPE: 0 one trace, 2 a 2D set
  int32_t clpnt = 0;  // CLPNT: rows of an array
  float irfrq = 0, irset = 0, irfin = 0;
};

// The keys of the parameter file's text (either layout) into `x`; a key
// read twice keeps the later value.
void RP(const std::string& text, Ex_Params& x);

// The check: kind is the EXMOD value, with "X_" in front for DTYPE 0 and
// "V_" for DTYPE 2 unless it already starts with "V" (a 2D set); status 1
// when the parameter file is missing, -1 when it can't be read. `path` is
// either member of the pair.
Kind_Check RMA(const std::string& path);

// Reads the pair (`path` the data member) into the session: a FID padded
// to a power of two, or a spectrum reversed so that its index ascends in
// ppm. Location "RP/DRW".
int Read_Ex(Session& s, const std::string& path);

}  // namespace tevo::datafiles
