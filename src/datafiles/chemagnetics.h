// Chemagnetics CMX data (class ".CMX"): a folder holding the text files
// "acq" (parameters, "NAME=value" lines), optionally "acq_2" (end date and
// time, acquisitions done) and "proc" (comments), and the file "data" with
// the points as big-endian int32, each row a real block then an imaginary
// block.
#pragma once

#include <string>
#include <vector>

#include "datafiles/native.h"
#include "datafiles/vendor_read.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// The check, given the data file or any file of the folder: the value of
// PPFN in "acq" is the kind; status 1 without "acq" or without PPFN.
Kind_Check RMCmx(const std::string& path);

// The keys of "acq", "acq_2" and "proc" (the lines of each) into `d`; the
// rows are NO_STEPS when above 1. Returns STEP_SIZE, the step of the array
// value from row to row.
double RPCmx(const std::vector<std::string>& acq, const std::vector<std::string>& acq_2,
             const std::vector<std::string>& proc, Vendor_Read& d);

// Reads the folder of `path` into the session. Location "RPCmx/DRW".
int Read_Cmx(Session& s, const std::string& path);

}  // namespace tevo::datafiles
