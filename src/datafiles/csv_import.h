// CSV data files (class ".CSV") in their two forms. The keyed form starts
// with the line "$CSVSTART", then "KEY,value[,unit]" lines up to "$END",
// then one "real,imaginary" line a point. The number list has no head: each
// line is one point, its first field the real value and a second field the
// imaginary value. After the read the operator confirms the parameters in
// NMR1D_Form103_CSV.
#pragma once

#include <string>
#include <string_view>

#include "datafiles/native.h"
#include "datafiles/vendor_read.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

struct Csv_Read {
  bool keyed = false;
  Vendor_Read data;  // parameters, one row of points
  std::string CGNBL, CPHBL;  // kept from the keyed head, used nowhere else
  bool too_long = false;  // more points than the transform takes
};

// Parses a whole file. The points stop at the first line that is not a
// pair of numbers (keyed form) or does not start with a number (list).
Csv_Read Parse_Csv(std::string_view bytes);

// The check of the first line's first field: "$CSVSTART" gives the kind
// "CSV", a number "OLDCSV", anything else status 1.
Kind_Check Check_Csv(const std::string& path);

// Reads either form, asks NMR1D_Form103_CSV and commits the data: a
// spectrum (FID or Spectrum "S") is reversed like the JEOL text data it
// mirrors, a FID padded to a power of two. Location "CSV/DRW".
int Read_Csv(Session& s, const std::string& path);

}  // namespace tevo::datafiles
