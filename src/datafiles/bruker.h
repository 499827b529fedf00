// Bruker data folders: the raw FID ("fid" with "acqu"/"acqus") and the
// processed spectrum ("pdata/N/1r", "1i" with "procs", "acqus", "parm.txt",
// "title"). The parameter files are "##$LABEL= value" text.
// Status words: 0 good, 1 refused, -1 run-time failure.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "datafiles/native.h"
#include "session/records.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// One "##NAME= value" line, or an array label with its numbers.
struct Bruker_Label {
  std::string name;  // upper-case, without "##"; "ERROR:" when the array failed
  std::string value;  // trimmed, "<" ">" removed
  std::vector<double> list;  // numbers of an array label "(0..n)"
};

// Reads every label of a parameter text; array values take the following
// lines up to the next "##" line. "$$" comment lines are returned with the
// name "$$" and the text behind it as value.
std::vector<Bruker_Label> Read_Bruker_Labels(const std::string& text);

// What the parameter files give beyond the parameter block, and the block
// itself; the open commits it to the session only when the data read too.
struct Bruker_Read {
  Data_Param p;
  double Observe_Frequency = 0;  // MHz
  double Spectrum_Frequency = 0;  // MHz of 0 ppm (processed: SF)
  double Bf1 = 0;  // ##$BF1, MHz: the spectrometer's 0 ppm frequency with SR = 0
  int16_t Byte_Order = 0;  // 1 big-endian, 0 little-endian
  int16_t Acq_Mode = 0;  // from ##$AQ_MOD: 1 -> 0, 2 -> 1, other -> 2
  int32_t Td = 0;  // ##$TD (raw) or ##$SI (processed): points for the word format
  bool Y_Has_Point = false;  // ##$YMAX_x or ##$YMIN_x written with a decimal point
  bool Origin_Ok = false;  // "##ORIGIN" named the vendor
  std::string Nuc1, Nucleus;  // observe nucleus candidates, upper-cased
  std::vector<double> P, D, Cnst;  // the whole lists
  std::string Probe, Gradient_Program;
  std::string Owner;  // ##OWNER: the operator who measured
  double Group_Delay = 0;  // ##$GRPDLY, or the DECIM/DSPFVS pair's delay, points
  double Decim = 0, Dspfvs = 0;
  int32_t Fid_Points = 0;
  int16_t Window_Code = 0;  // ##$WDW mapped to the program's window kinds
  int32_t Nc_Proc = 0;  // ##$NC_proc: the 1r integers are intensity / 2^NC_proc
};

// A "ser" whose rows step through a list of delays or pulse lengths (the
// pulse program advances "ivd" over "vdlist" or "ivp" over "vplist") rather
// than an indirect evolution time: the rows of a relaxation series. Values
// in seconds and as written; the name the acquisition gives the list.
struct Bruker_Series {
  std::string name;
  std::vector<double> seconds, raw;
};
std::optional<Bruker_Series> Find_Series_List(const std::filesystem::path& folder);
// Rows of a "ser": ##$TD of acqu2s, 0 when missing.
int32_t Series_Rows(const std::filesystem::path& folder);
// The acquisition check of a "ser"; kind "SERIES" for a relaxation series,
// "2D" for a true two-dimensional experiment.
Kind_Check Check_Bruker_Series(const std::string& path);
// Reads a relaxation series as array data: one row per FID, the list as
// Delay_List.
int Read_Bruker_Series(Session& s, const std::string& path);

// Acquisition check of "acqus": the pulse program as kind; status 1 unless
// "##ORIGIN" names the vendor. `acq_mode` receives the mapped ##$AQ_MOD.
Kind_Check Check_Bruker_Acquisition(const std::string& path, int16_t* acq_mode = nullptr);
// The same for "procs".
Kind_Check RMBP(const std::string& path);
// The checks as the open runs them on the data file: the acquisition check
// of "acqus" beside "fid" (or of "x.aqs" beside "x.fid"), and RMBP of
// "procs" beside "1r" (or of "x.fqs" beside "x.1r"). Status 1 when the
// parameter file is missing.
Kind_Check Check_Bruker_Fid_Folder(const std::string& path);
Kind_Check Check_Bruker_Processed_Folder(const std::string& path);

// Parameter readers into `r`. RPBru runs on "acqu" and then "acqus" and
// works out the FID sizes; RPBruA takes the same labels for a processed read
// and leaves the sizes alone; RPBruP reads "procs".
int RPBru(Bruker_Read& r, const std::string& path);
int RPBruA(Bruker_Read& r, const std::string& path);
int RPBruP(Bruker_Read& r, const std::string& path);
// "parm.txt": "KEY value" lines; the values overwrite what acqus gave.
int Read_Parm_Text(Bruker_Read& r, const std::string& path);
// The first lines of "title" (up to 3, joined by a blank) as the comment.
int Read_Title(const std::string& path, std::string& comment);

// Delay of the digital filter in points for a DECIM/DSPFVS pair, 0 when the
// pair is not known.
double Bruker_Group_Delay(double decim, double dspfvs);

// Word format for a data file of `length` bytes: 0 int32, 2 real32, 3
// real64. Asks the operator (Form120) only when `ask` and a Y limit label
// had a decimal point.
int16_t Decide_Word_Format(Session& s, std::size_t length, int32_t td, bool y_has_point, bool ask);

// Opens the raw FID of a folder (or the path of its "fid", or "x.fid" with
// its twin "x.aqs"): acqu, acqus,
// fid, the single-converter correction when ##$AQ_MOD asks for it, and the
// digital filter delay as the preset shift. Location "RPBru/DRW".
int Read_Bruker_Fid(Session& s, const std::string& path);
// Opens a processed spectrum: `path` is "1r"/"1i" or its folder; "procs" is
// looked for there, then "acqus"/"acqu" there and one and two folders up.
int Read_Bruker_Spectrum(Session& s, const std::string& path);

}  // namespace tevo::datafiles
