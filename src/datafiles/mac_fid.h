// MAC FID files (class ".IMPORT"), written by Macintosh systems: a
// big-endian head of fixed fields in 1024-byte blocks, then the points as
// big-endian real32, real and imaginary in turn.
#pragma once

#include <string>

#include "datafiles/decoders.h"
#include "datafiles/native.h"
#include "datafiles/vendor_read.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

struct Mac_Head {
  std::string kind;  // the six characters at 1114; empty when they are no text
  size_t data_start = 0;  // bytes
  Vendor_Read data;  // parameters, POINT the complex points; no points yet
};

// Decodes the head. Throws std::out_of_range when the bytes end inside it.
Mac_Head Read_Mac_Head(Byte_View bytes);

// The check: the kind; status 1 when the head block number is below 1 or
// the kind holds a byte below 32, -1 when the file can't be read.
Kind_Check Check_Mac(const std::string& path);

// Reads a FID or a spectrum into the session. Location "MAC/DRW".
int Read_Mac_Fid(Session& s, const std::string& path);

}  // namespace tevo::datafiles
