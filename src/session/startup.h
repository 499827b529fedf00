// Start-up and shut-down of a copy of the program: paths, the work markers
// that let copies side by side keep out of each other's way, the command
// line, the log, and the clean-up at exit. The window and the command-line
// tool both run these steps.
#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <functional>
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

// ---- the whole start and end ----

struct Start_Options {
  std::string home;  // --home: App_Path; empty: the executable's folder rule
  std::string exe_path;  // path of the executable (argv[0])
  std::string command_line;  // the raw command line: at most one data file
  // true: ask for the user through the Ui (unless "USER MODE" says common);
  // false (no window): the latest user, or the common settings.
  bool interactive = true;
  // Kind of a data file by its recognition; kinds 2 and 6 hold 2D data.
  // Without it no file is handed on.
  std::function<int(const std::string& path)> data_kind;
  // Starts the sibling 2D program with a command line (style 4: a normal
  // window without focus). Without it a 2D file is not handed on.
  std::function<void(const std::string& program, const std::string& arguments)> start_sibling;
};

struct Start_Result {
  bool go_on = true;  // false: this process ends now (file in use, 2D data handed on, "終了")
  bool show_environment = false;  // "START MODE" 1: the environment window, first tab
  bool show_structure = false;  // "STRUCTURE DISP" 1: the image window on top
  bool jeol_disk_reader = false;  // ALIDIR.EXE and ALIDATA.EXE are there: menu m12 shown
  int16_t window_state = 0;  // "WINDOW STATE"
};

// The start of a copy of the program, in order: paths and log folder,
// stale back-ups removed, the command line (hand-over file, in-use check,
// 2D data handed to the sibling), the work marker, "1DCommon.ini" (access
// count), the user, the sine table and the point arrays, "1D.prt", the
// settings file, "REF INITITAL" into SMEXR, "Nuclear.dat",
// "RequiredFile1D.txt", and the session marked as saved with no data. The
// window and the command-line tool both call it; the caller opens
// s.Cmd_File afterwards when it names one.
Start_Result Start_Up(Session& s, const Start_Options& options);

// The end of the program once the operator has agreed (the window has put
// its state in "WINDOW STATE"): the settings file and "1DCommon.ini" are
// written, then the temporaries and markers are cleaned up.
void Finish_Session(Session& s);

// The exit command (and the close box): leaves the current mode (or stops
// on cancel), asks whether to save a spectrum in memory ("1D NMRの終了":
// "保存しない", "保存する" through `save_as`, "終了をｷｬﾝｾﾙ"), and on "END"
// finishes the session. Returns true when the program is to end.
bool m19_Click(Session& s, const std::function<bool(Session&)>& save_as);

// Releases the marker lock without deleting anything (a crash, as far as the
// other copies can tell; for tests).
void Release_Work_Marker(Session& s);

}  // namespace tevo::session
