// NUTS data files (class ".NUT") in their three types. Types 1 and 2 are
// binary with the little-endian key 0x04030201 at offset 0 and a head of
// 32-bit words; type 3 is a text head of "##" labels (first label
// "##JCAMP-DXB") with the points behind the "##BINARY" line. In every type
// each row is a 4-byte row mark, then the real block and the imaginary
// block of little-endian real32.
#pragma once

#include <string>

#include "datafiles/decoders.h"
#include "datafiles/native.h"
#include "datafiles/vendor_read.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// Rows above this count are a 2D data set.
inline constexpr int32_t Nuts_Array_Max = 10;

// The head of a whole file of any type, without the points.
struct Nuts_Head {
  int type = 0;  // 1, 2, 3; 0 not a NUTS file
  std::string kind;  // "X_", "W_" or "V_", then the name (types 1, 2) or pulse program (type 3)
  size_t data_start = 0;  // bytes
  Vendor_Read data;  // parameters and the row count
};

// Decodes the head. Throws std::out_of_range when the bytes end inside a
// field it needs.
Nuts_Head Read_Nuts_Head(Byte_View bytes);

// The check: the kind with its mark; status 1 when the file is no NUTS
// file, -1 when it can't be read.
Kind_Check RMNut(const std::string& path);

// Reads the rows into the session. More rows than an array holds:
// "Dataが違います(2D Data)". Location "RDNut/DRW".
int RDNut(Session& s, const std::string& path);

}  // namespace tevo::datafiles
