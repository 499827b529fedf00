// JEOL ".jdf" files (banner "JEOL.NMR"): 1D spectra in Hz or ppm and 1D
// FIDs (time axis in seconds), with the parameter block of named records.
// The header numbers are big-endian; the parameter block and the data follow
// the endian byte at offset 8 (0 big-endian, other little-endian).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "datafiles/decoders.h"
#include "datafiles/native.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// Axis unit codes of the header (byte 33 for the first axis).
inline constexpr uint8_t Ecp_Unit_Hz = 13, Ecp_Unit_Ppm = 26, Ecp_Unit_Second = 28;

// One record of the parameter block.
struct Ecp_Param {
  std::string name;  // upper-cased, trimmed
  int type = 0;  // 0 text, 1 integer, other a number
  std::string text;
  double number = 0;  // the integer or the double
};

// The records of the parameter block of a whole file. Throws
// std::out_of_range when the block runs past the bytes.
std::vector<Ecp_Param> Read_Ecp_Params(Byte_View bytes);

// The check: kind is the EXPERIMENT record; status 0 a readable 1D set
// (spectrum in Hz or ppm, or FID in seconds), 2 a multi-dimensional set,
// 1 not this format or an axis kind not read, -1 a read failure.
Kind_Check Check_Ecp(const std::string& path);

// Reads a 1D file into the session: a spectrum into Spec_*/Ft_* with the
// axis ascending in ppm, a FID into Fid_Re/Fid_Im. Location "ECP/DRW".
int Read_Ecp(Session& s, const std::string& path);

}  // namespace tevo::datafiles
