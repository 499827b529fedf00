// The operator's own file types: two filter patterns for the open dialog and
// up to five extensions, each bound to one of the data types the program
// reads, so that a renamed raw file still finds its reader.
#pragma once

#include <string>
#include <vector>

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// The 17 patterns offered for the two user filters of the open dialog.
const std::vector<std::string>& User_Pattern_List();
// The list a pattern combo shows: the current value first, then the 17.
std::vector<std::string> User_Pattern_Choices(const std::string& current);

// The data types an extension can be bound to, in the order of their index.
const std::vector<std::string>& User_Data_Types();
// The file class of a data type index, or empty for an index out of range.
std::string User_Type_Class(int index);

// An extension as typed: trimmed, upper-cased, given a leading ".".
std::string Normalize_User_Extension(const std::string& text);

struct User_Extension {
  std::string ext;  // ".BRUF"; empty for a blank row
  int type = -1;  // index into User_Data_Types(), -1 for a blank row
};

// The rows of the dialog as stored: blank extensions are dropped (their type
// becomes -1); at most `keep` rows are taken.
std::vector<User_Extension> Read_User_Extensions(const std::vector<User_Extension>& rows, size_t keep = 3);

// The extension table from the settings ("USER EXTENSION 1".."5" with
// "USER EXT NUM 1".."5"); absent keys leave their row out.
std::vector<User_Extension> User_Extensions_Of(const Session& s);

// The class an extension is bound to by the table, or empty.
std::string User_Extension_Class(const std::vector<User_Extension>& table, const std::string& ext_class);

}  // namespace tevo::datafiles
