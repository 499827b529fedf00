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

class Settings;

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

// ---- the text files ----

// Reads a Shift-JIS text file as UTF-8 lines; CR, LF or CR LF end a line.
// False when the file cannot be opened.
bool Read_Text_Lines(const std::string& path, std::vector<std::string>& lines);
// Writes UTF-8 lines as Shift-JIS, each ended by CR LF.
bool Write_Text_Lines(const std::string& path, const std::vector<std::string>& lines);

// ---- the settings file ----

// Splits one line of the settings file into key and value by the reader's
// rules, in order: a "PARA TABLE" line keeps everything behind its key; a
// line with no ";" (or one in column 1) has its key in columns 1-16; else
// the key is the text before the first ";" and the value the rest, or the
// text behind a tab in it. False when the line holds no key.
bool Split_Settings_Line(const std::string& line, std::string& key, std::string& value);

// Reads a settings file into `set` and applies the checks that follow the
// reading (clamps, colours, scaling factors, duplicate IDs). A missing file
// or a wrong title line leaves `set` as it was.
void Read_Settings_From(Settings& set, const std::string& path);

// The lines the writer puts in the settings file, title first.
std::vector<std::string> Settings_Lines(const Settings& set);

// Every per-user settings file App_Path/NMRCOL####.ini, sorted.
std::vector<std::string> List_User_Files(const std::string& app_path);

// ---- the files the program reads at start ----

// "1DCommon.ini": reads "ACCESS COUNT", "USER MODE", "LOG DIR", "LOG MODE",
// "LATEST USER"; builds the back-up name from the count as read, increases
// the count and rewrites the file. Returns false when the title was wrong.
bool Read_Common(Session& s);
void Write_Common(const Session& s);

// The settings file named by Settings_Read_Name / Settings_Write_Name (the
// common "NMRCOL.INI" when they are empty). Reading counts the start in
// "ACCESS COUNT" (1 for a new user) and writes the file at once.
void Read_Settings(Session& s);
void Write_Settings(const Session& s);
// Value of "USER NAME" of a settings file; empty if the title line is wrong.
std::string User_Name_Of(const std::string& file);

void Read_Nuclear(Session& s);
void Read_Required_Files(Session& s);
// The parameter file in force: "1D.prt" in the folder "PRINT TABLE DIR" (or
// App_Path when that is empty or no folder), or the file it names, given
// the extension ".prt".
std::string Print_Text_File(const Session& s);
// Its lines, trimmed and joined by CR LF, become the default parameter
// text; a missing file leaves the text as it was.
void Read_Print_Text(Session& s);

}  // namespace tevo::session
