// Start-up and shut-down of a copy of the program: paths, the work markers
// that let copies side by side keep out of each other's way, the command
// line, the log, and the clean-up at exit. The window and the command-line
// tool both run these steps.
#pragma once

#include <string>

namespace tevo {
struct Session;
}

namespace tevo::session {

// Appends one line "user, yyyy/mmm/dd,hh:nn:ss, operation, path" to the
// monthly or daily log ("LOG MODE"); "Read", "Read(M)" or "Write".
void Write_Log(Session& s, const std::string& operation, const std::string& path);

// True when another running copy has `path` open (its marker's first line).
bool File_In_Use(const Session& s, const std::string& path);

}  // namespace tevo::session
