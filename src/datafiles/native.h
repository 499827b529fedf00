// The program's own spectrum files: the main format ("TV NMR Ver.3.00",
// .tv1), the older interchange format ("VEX NMR VERSION 1.00"/"1.01", .ALS)
// and the read-only version-4 format ("TV NMR Ver.4.00"/"4.01", .tvo).
// Status words: 0 good, 1 refused after a message, -1 run-time failure.
#pragma once

#include <string>

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// Result of a kind check: the kind text ("1D..." / "2D..." / "V...") and a
// status (0 good, 1 not this format, -1 error), without loading.
struct Kind_Check {
  std::string kind;
  int status = 1;
  bool varian = false;  // a Varian check gave the kind ("V..." marks its 2D sets)
};

// Writes the whole session, logs "Write" and marks the data saved.
int Write_Native(Session& s, const std::string& path);
int Read_Native(Session& s, const std::string& path);
Kind_Check Check_Native(const std::string& path);

int Write_Older_Native(Session& s, const std::string& path);
int Read_Older_Native(Session& s, const std::string& path);
Kind_Check Check_Older_Native(const std::string& path);

int Read1D_DataTevoV4_2(Session& s, const std::string& path);
Kind_Check Check_Native_V4(const std::string& path);

}  // namespace tevo::datafiles
