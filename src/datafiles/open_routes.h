// The table that routes a file class to its check, its 2D refusal and its
// reader. The open command, the start-up resolution and `tevo1d-cli info`
// all go through it; a reader of a new format is one row in
// open_routes.cpp.
#pragma once

#include <cstdint>
#include <string>

#include "datafiles/native.h"
#include "datafiles/recognition.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// When a checked file is a 2D data set, which this program hands to the 2D
// program instead of opening it.
enum class Refuse_2D : uint8_t {
  None,
  First_V,  // the kind text starts with "V"
  First_2,  // the kind text starts with "2"
  Status_2,  // the check returned status 2
  Has_2D,  // the kind text contains "2D"
  Varian_First_V,  // a Varian check's kind text starts with "V"
  Always,  // the class is 2D by its name (a marker file that found "ser" or "2rr")
};

using Check_Fn = Kind_Check (*)(const std::string& path);
using Read_Fn = int (*)(Session& s, const std::string& path);

// Start-up resolution of a row whose tags need more than the 2D rule (raw
// vendor folders): returns the tag and sets the status.
using Resolve_Fn = std::string (*)(const std::string& path, int& status);

struct Open_Route {
  // "|"-separated classes (".GXD|.GXP"), base names ("FID") and both at
  // once (".BRUF/SER": class .BRUF whose data file is "ser")
  const char* match;
  bool in_use_test;  // refuse a file that another copy has open
  bool twin;  // a twin pair (.GXD/.GXP, .FID/.HED): the data member is checked and read
  Check_Fn check;  // null: the class has no check of its own
  Refuse_2D refuse;
  Read_Fn read;  // null: no reader yet, the open refuses the file
  bool empty_kind_non_nmr;  // an empty kind text after the read: "Non NMR Data !"
  // Resolve_Data_File: tag and status of a 1D and of a 2D data set.
  const char* tag_1d;
  int status_1d;
  const char* tag_2d;
  int status_2d;
  Resolve_Fn resolve = nullptr;  // replaces the two tags when set
};

// The first row that fits the class or the base name, or null.
const Open_Route* Find_Route(const Recognition& r);

// True when a check result is a 2D data set under the row's rule.
bool Is_2D(const Open_Route& route, const Kind_Check& k);

// True when a check failed (as opposed to finding 1D or 2D data).
bool Check_Failed(const Open_Route& route, const Kind_Check& k);

}  // namespace tevo::datafiles
