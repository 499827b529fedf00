// Placeholder of the older and version-4 native files until their readers are in.
#include "datafiles/native.h"

#include "session/session.h"

namespace tevo::datafiles {

int Write_Older_Native(Session&, const std::string&) { return -1; }
int Read_Older_Native(Session&, const std::string&) { return -1; }
Kind_Check Check_Older_Native(const std::string&) { return {"1D", 0}; }
int Read1D_DataTevoV4_2(Session&, const std::string&) { return -1; }
Kind_Check Check_Native_V4(const std::string&) { return {"1D", 0}; }

}  // namespace tevo::datafiles
