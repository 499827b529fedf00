// Placeholder of the native files until their reader and writer are in.
#include "datafiles/native.h"

#include <fstream>

#include "session/session.h"

namespace tevo::datafiles {

int Write_Native(Session& s, const std::string& path) {
  std::ofstream out(path, std::ios::binary);
  out << "TV NMR Ver.3.00" << '\0' << "1D NORM NORM" << std::string(400, '\0');
  if (!out) return -1;
  s.Data_Saved = 1;
  return 0;
}
int Read_Native(Session&, const std::string&) { return -1; }
Kind_Check Check_Native(const std::string&) { return {"1D NORM", 0}; }
int Write_Older_Native(Session&, const std::string&) { return -1; }
int Read_Older_Native(Session&, const std::string&) { return -1; }
Kind_Check Check_Older_Native(const std::string&) { return {"1D", 0}; }
int Read1D_DataTevoV4_2(Session&, const std::string&) { return -1; }
Kind_Check Check_Native_V4(const std::string&) { return {"1D", 0}; }

}  // namespace tevo::datafiles
