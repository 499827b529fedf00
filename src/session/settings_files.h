// Readers and writers of the settings files beside the program: the common
// file "1DCommon.ini", the per-user settings file ("1D Initial setting"),
// "Nuclear.dat", "RequiredFile1D.txt" and "1D.prt". All are Shift-JIS text.
// No reader shows a message: a missing file leaves the defaults, a bad line
// is skipped.
#pragma once

#include <string>
#include <vector>

namespace tevo {
struct Session;
}

namespace tevo::session {

// One row of the nuclei table ("Nuclear.dat").
struct Nucleus_Row {
  std::string name;  // upper case, e.g. "13C"
  std::string text;  // second field
  double ratio = 0;  // frequency ratio
};

// One row of "RequiredFile1D.txt".
struct Required_Row {
  std::string format;
  std::string description;
  std::string files;  // further names joined with CR LF
};

// "1DCommon.ini": reads "ACCESS COUNT", "USER MODE", "LOG DIR", "LOG MODE",
// "LATEST USER"; builds the back-up name from the count as read, increases
// the count and rewrites the file. Returns false when the title was wrong.
bool Read_Common(Session& s);
void Write_Common(const Session& s);

// The settings file named by Settings_Read_Name / Settings_Write_Name.
void Read_Settings(Session& s);
void Write_Settings(const Session& s);
// Value of "USER NAME" of a settings file; empty if the title line is wrong.
std::string User_Name_Of(const std::string& file);

void Read_Nuclear(Session& s);
void Read_Required_Files(Session& s);
void Read_Print_Text(Session& s);

}  // namespace tevo::session
