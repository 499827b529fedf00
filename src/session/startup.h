// Start-up and shut-down of a copy of the program: paths, the work markers
// that let copies side by side keep out of each other's way, the command
// line, the log, and the clean-up at exit. The window and the command-line
// tool both run these steps.
#pragma once

#include <ctime>
#include <filesystem>
#include <string>

namespace tevo {
struct Session;
}

namespace tevo::session {

// ---- paths ----

// The program folder: `home` when given; else the folder of the executable
// when it is writable; else $XDG_DATA_HOME/tevo1d (~/.local/share/tevo1d),
// created on demand. Never ends with a separator.
std::string Resolve_App_Path(const std::string& home, const std::string& exe_path);

// Maps a path of the Windows installation to this platform: "C:\NMRLog"
// becomes ~/NMRLog, "C:\name.txt" the same name in the temp folder, other
// drive paths lose the drive and take "/" separators. Other paths stay.
std::string Map_Windows_Path(const std::string& path);

// The one-line file handed to the sibling program ("C:\filename.txt").
std::filesystem::path Handover_File();

// Deletes every App_Path/BackUp1_*.*: back-ups left by a crash are never
// offered.
void Remove_Stale_Backups(const Session& s);

// ---- command line ----

struct Command_Line {
  std::string file;  // empty when no file was named
  bool from_sibling = false;  // "$" prefix: a file handed over, not to be handed back
};

// The rules of the command line, in order: trimmed; under 3 characters is
// empty; a leading double quote is dropped and a closing one cut, otherwise
// the text is cut at the first blank; a leading "$" is remembered and dropped.
Command_Line Parse_Command_Line(const std::string& raw);

// Writes the trimmed command line, whatever it holds, as the one line of the
// hand-over file. Fails silently.
void Write_Handover(const std::string& raw_command_line);

// ---- work markers ----

// Claims this copy's marker: the lowest number 0..9999 that no
// App_Path/Work_File_1D####.wkf bears; creates the empty marker, sets
// Work_Id, Work_File and Fid_Work_File, and holds a lock on the marker for
// as long as the copy runs (that is how other copies tell a live marker from
// one left by a crash). With no number free the paths stay empty; returns
// false then.
bool Claim_Work_Marker(Session& s);

// Overwrites this copy's marker with the open file's path (after each load).
void Mark_Open_File(Session& s, const std::string& path);

// True when another running copy has `path` open: the first line of any
// other marker, trimmed and upper-cased, equals the path upper-cased.
// Unreadable markers are skipped.
bool File_In_Use(const Session& s, const std::string& path);

// True when another copy of the program runs on the same App_Path.
bool Other_Copy_Running(const Session& s);

// ---- log ----

// Appends one line "user, yyyy/mmm/dd,hh:nn:ss, operation, path" to
// Log_Dir/1D<yyyy_mm or yyyy_mm_dd>.log ("LOG MODE" 0 monthly, 1 daily,
// -1 none). A missing log folder shows "Logのフォルダー名が不適切です(WL)".
void Write_Log(Session& s, const std::string& operation, const std::string& path);
// The same at a given time (for tests).
void Write_Log_At(Session& s, const std::string& operation, const std::string& path,
                  const std::tm& when);
// Name of the log file for a time under the current "LOG MODE".
std::string Log_File_Name(const Session& s, const std::tm& when);

// ---- shut-down ----

// The clean-up of the end of the program: removes Temp.dat, Temp*.wmf, this
// copy's back-up and FID work file; then only this copy's marker while
// another copy runs, else every marker (which clears those left by crashes).
// `all_markers` forces the second form (the user dialog's end button).
void Shutdown_Cleanup(Session& s, bool all_markers = false);

// Releases the marker lock without deleting anything (a crash, as far as the
// other copies can tell; for tests).
void Release_Work_Marker(Session& s);

}  // namespace tevo::session
