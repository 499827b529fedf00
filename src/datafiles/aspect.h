// Bruker Aspect files (class ".MSL"): a stream of 24-bit words, most
// significant byte first, recognised by the first word 0x4784F5. A head of
// parameters in words, then the points as 24-bit integers, real and
// imaginary in turn.
#pragma once

#include <string>

#include "datafiles/decoders.h"
#include "datafiles/native.h"
#include "datafiles/vendor_read.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// The head fields as the reader takes them.
struct Msl_Head {
  std::string name;  // the three name words, trimmed once at the end
  bool older_layout = false;  // layout word 1: the older "ASP" layout
  std::string date;  // the date word as six hexadecimal digits
  size_t data_start = 0;  // bytes
  int32_t words = 0;  // point count: real and imaginary words together
  Vendor_Read data;  // parameters, POINT the complex points; no points yet
};

// Decodes the head of a whole file. Throws std::out_of_range when the bytes
// end inside it.
Msl_Head Read_Msl_Head(Byte_View bytes);

// The check: "SINGLE PULSE" when the first word matches, an empty kind (and
// status 0) otherwise; status -1 when the file can't be read.
Kind_Check Check_Msl(const std::string& path);

// Reads a FID or a spectrum into the session. Location "MSL/DRW".
int ReadDataMSL_2(Session& s, const std::string& path);

}  // namespace tevo::datafiles
