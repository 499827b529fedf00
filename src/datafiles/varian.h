// Varian data sets: a folder with the parameter file `procpar`, the raw
// data `fid` or the processed spectrum `data` / `phasefile`, and the comment
// `text`. The binary files share one head of 32 bytes (big-endian: blocks
// at 0, values a trace at 8, bytes a value at 12, status at 26), then the
// blocks, each a block head of 28 bytes and its values.
#pragma once

#include <string>
#include <vector>

#include "datafiles/native.h"
#include "datafiles/vendor_read.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// One entry of the parameter file: its name, upper-cased, and at most 1024
// values (strings without their quotes). A parse failure gives the name
// "ERROR:".
struct Vnmr_Entry {
  std::string name;
  std::vector<std::string> values;
};

// Reads the entry that starts at line `at` (a header line whose first
// field is the name and whose third the type, 1 real and 2 string; a line
// with the count and the values, string values one a line; a line of enum
// values) and moves `at` behind it.
Vnmr_Entry Read_Vnmr_Entry(const std::vector<std::string>& lines, size_t& at);

// What the parameter file gives beside the acquisition values: the array
// and its values, the reference.
struct Varian_Params {
  Vendor_Read d;
  int32_t array_dim = 1;  // ARRAYDIM
  std::string array_name;  // ARRAY (or EXPLIST), upper-cased
  std::vector<float> array_values;  // the values of the arrayed entry
  double rfl = 0;  // Hz from the low-frequency edge to the reference line
};

// The entries of a whole parameter file into `v`; false when an entry
// could not be read.
bool RPV(const std::vector<std::string>& lines, Varian_Params& v);

// The kind by the array: "1D", "V2D" (a 2D set for the 2D program) or
// "ASK" when only the operator can tell an array from a 2D set.
std::string Varian_Kind(int32_t array_dim, const std::string& array_name);

// The check `RMV` on a data file of a Varian folder (the parameter file
// beside it or in the parent folder): kind as Varian_Kind, status 1 when
// there is no parameter file, -1 when it can't be read.
Kind_Check RMV(const std::string& path);

// The parameter file of a data file: "procpar" (or "curpar") beside it or
// in the parent folder; empty when there is none.
std::string Varian_Param_File(const std::string& data_path);

// Reads `fid` (FID rows, SMODE 0) or `data` / `phasefile` (spectrum rows,
// SMODE 1) with the folder's parameters. An array becomes rows with their
// values in Delay_List. Locations "RPV/DRW" and "RMV/DRW".
int Read_Varian(Session& s, const std::string& path);

// The readers of the overlay path: the same routines as the main read.
inline int Read_Para_Varian_2(Session& s, const std::string& path) { return Read_Varian(s, path); }
inline int ReadDataVarian_Data_2(Session& s, const std::string& path) { return Read_Varian(s, path); }

}  // namespace tevo::datafiles
