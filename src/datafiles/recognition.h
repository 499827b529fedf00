// Recognising a spectrum file: its first bytes, then its name.
//
// A file is classified by its contents first and by its name second. The
// result is the file class, an upper-case pseudo extension (".TV1", ".BRUF",
// ".CSV", ...) that picks the reader in the routing table (open_routes.h).
#pragma once

#include <string>

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// What the first bytes of a file say: a tag ("TEV1", "ECP", "NUTS Type3",
// "CSV TYPE 0", ...; empty when nothing was recognised) and a status, 0 good
// or -1 when the file could not be read (the file error was shown with the
// location "RDMode/RDW").
struct Sniff_Result {
  std::string tag;
  int status = 0;
};
Sniff_Result RDMode(Session& s, const std::string& path);

// The real extension of a path with its dot, upper-cased ("" when none).
std::string Extension_Class(const std::string& path);
// The file name without its extension, upper-cased.
std::string Base_Name(const std::string& path);
// The folder of a path, without a trailing separator.
std::string Folder_Of(const std::string& path);

// A file named `name` in `folder`, matched without regard to case (raw
// vendor folders are written in either case); empty when there is none.
std::string Find_In_Folder(const std::string& folder, const std::string& name);

struct Recognition {
  std::string path;  // the data file; rewritten where a folder marker was given
  std::string file_class;  // upper-case pseudo extension
  std::string data_folder;
  std::string base_name;  // upper case
  Sniff_Result sniff;
};

// Classifies a path: the class rules of the name that look for companion
// files, then RDMode, then the class the sniff tag imposes. Leaves
// File_Class, Data_Folder and Sniff_Tag in the session.
Recognition Classify_File(Session& s, const std::string& path);

// True when `file_class` stands for `entry`. The short classes (".TV1",
// ".ALS", ".GXD", ...) compare their first 4 characters, ".IMPORT" its first
// 7, all others the whole text.
bool Class_Is(const std::string& file_class, const std::string& entry);

// True when the open command has a reader for the class or base name.
bool Class_Accepted(const Recognition& r);

// The two files of a twin pair: ".GXD"/".GXP" differ in the fourth character
// of the extension, ".FID"/".HED" in the whole extension. The data member is
// `data`, whichever was given. A path of no pair gives itself twice.
struct Twin_Files {
  std::string data, param;
};
Twin_Files Pair_Twin_Files(const std::string& path, const std::string& file_class);

// After a raw read in a vendor folder: when `enabled`, writes
// Data_Folder/SPEC + class extension with its marker text ("BRUKER",
// "VARIAN 1D" or "CMX"), so that the folder can be opened by that file
// later; sets an empty instrument name to the vendor's. Returns false when
// the class has no marker file or it could not be written.
bool Dummy_File(Session& s, const std::string& file_class, bool enabled);

}  // namespace tevo::datafiles
