// Opening and saving a data set: the open command and its read frame, the
// start-up resolution of a file named on the command line, and the save of
// the native file. Questions go through the session's platform::Ui.
#pragma once

#include <functional>
#include <string>

#include "datafiles/open_routes.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// Clears the data set for a new read: every list, the parameters, the
// points, the view and undo, keeping what belongs to the running program
// (paths, settings, tables, markers, the Ui, the mode handlers). The overlay
// slots are kept when `keep_overlays`.
void Reset_Session_Data(Session& s, bool keep_overlays);

// When any overlay slot holds a spectrum, asks whether to delete the slots
// or keep them (NMR1D_Form23), `keep` preselected. Returns 0 delete (or
// nothing to ask), 3 keep, -1 cancel.
int Overlay_Keep_Prompt(Session& s, bool keep = false);

// Asks for the file to open, the dialog on filter `forced` (0: the
// remembered one, which the chosen one replaces); empty when cancelled.
// `multiple` lets several files be chosen, answered in the joined form of
// relaxation::Join_Individual_Paths.
std::string Ask_Open_Path(Session& s, int forced = 0, bool multiple = false);

// The observe frequency to 0.05 MHz as the parameter text shows it.
std::string Observe_Text(double observe_mhz);

struct Open_Request {
  std::string path;  // empty: ask with the file dialog
  // Shown for a FID after the read; returns "OK" (transform accepted),
  // "OKX" (kept as it is) or "" (given up: the former data come back).
  // Unset: the FID stays as read.
  std::function<std::string(Session&)> fid_window;
  // The filter the file dialog starts with (1-based); 0 the remembered one
  // ("INITIATL FILE"), which a chosen filter then replaces.
  int filter_index = 0;
};

// The open command: mode interlock, unsaved-data prompt, file dialog,
// recognition and routing, the read inside its frame, then the caption,
// the marker, the log, the recent list and the display copy. Returns 0
// loaded, 1 refused or cancelled (the former data set stays), -1 failure
// (the former data set was read back).
int NM1D_m11_Click(Session& s, const Open_Request& request);

// The open of several files as one array of individual delays: the files
// chosen together in the dialog, or `request.path` in the joined form of
// relaxation::Join_Individual_Paths. Each row is the main read of its file;
// the set takes each file's stored delay. A FID set asks which row is
// phased (NMR1D_Form21). The recent-file entry is the joined form. Returns
// as NM1D_m11_Click.
int NM1D_m111_Click(Session& s, const Open_Request& request);

// A session that shares the operator's settings, tables and window system
// with `s` and holds no data, with a work copy of its own (`backup_name` in
// the program folder): the place of a read that is not the main data set.
Session Scratch_Session(const Session& s, const std::string& backup_name);

// The open with the file dialog on the CSV filter ("CSVデータ(*.csv)"),
// leaving the remembered filter as it was.
int NM1D_m112_Click(Session& s, Open_Request request);

// The read of one classified file inside its frame: work copy of the
// current data, overlay question, reset, check, 2D refusal, reader; on a
// failure the work copy is read back. Returns the reader's status.
int Read_Routed(Session& s, const Recognition& r, const Open_Route& route);

// Start-up resolution of a file named on the command line: rewrites `path`
// to the real data file, classifies it, runs the class's check and returns
// the tag with a status (0 or 1 a 1D data set, 2 or 6 a 2D data set for
// the 2D program, -1 failure).
struct Resolved_File {
  std::string tag;
  int status = -1;
  std::string kind;  // the check's kind text
  Recognition recognition;  // what the classification found
};
Resolved_File Resolve_Data_File(Session& s, std::string& path);

using Write_Fn = int (*)(Session& s, const std::string& path);

// The save of the native file: mode interlock, the name (asked when `path`
// is empty, forced to ".tv1"), the in-use check, "NON" for an empty EXMOD,
// then an existing file renamed with ".$" behind it, the write, and the old
// file removed on success or renamed back on failure. On success the data
// are marked saved, the marker and the recent list are updated. Returns 0
// saved, 1 refused or cancelled, -1 write failure.
int m10_Click(Session& s, const std::string& path = {}, Write_Fn writer = Write_Native);

// The save in the older interchange format (.ALS, version 1.01): the same
// frame as m10_Click with the ".als" name, filter and extension check. The
// menu item is shown only while "ALS SAVE OK" is on; this function does not
// look at that setting.
int m13_Click(Session& s, const std::string& path = {}, Write_Fn writer = Write_Older_Native);

// The JCAMP-DX exports of the current row: extended (NTUPLES, real and
// imaginary pages) and compact (XYDATA, DIF/DUP). Any name is taken; the
// write keeps an old file until it succeeds. An export does not mark the
// data saved. Returns 0 written, 1 cancelled, -1 write failure.
int m181_Click(Session& s, const std::string& path = {});
int m183_Click(Session& s, const std::string& path = {});

// The ASCII export of the main spectrum's current row: the choice of values
// (NMR1D_Form104, "ASCIIデータの設定"; the first, the data as they stand, is
// offered), then the name, which must end in .txt, .dat or .asc. Returns 0
// written, 1 cancelled or refused, -1 write failure.
int m18_Click(Session& s, const std::string& path = {});
// The same export of overlay spectrum `spectrum` (1 .. Overlay_Max; 0 is
// the main one), from the rows of "重書をASCII 形式で保存".
int m182_Click(Session& s, int spectrum, const std::string& path = {});

// The list files of the main menu: the peak list (m172; `layout` 0 the
// comma layout, 1 the report layout, -1 asks), the integral list (m173) and
// the integral curves (m131, a name ending in .int, .txt, .dat or .asc).
// The save dialog offers the data name with the list's tail and extension.
// Returns 0 written, 1 cancelled, refused or nothing to write, -1 write
// failure.
int m172_Click(Session& s, const std::string& path = {}, int layout = -1);
int m173_Click(Session& s, const std::string& path = {});
int m131_Click(Session& s, const std::string& path = {});

}  // namespace tevo::datafiles
