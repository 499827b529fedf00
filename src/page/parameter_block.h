// The text of the parameter block on the page: which parameters, under
// which captions, with which units, and their values for the data set.
#pragma once

#include <string>
#include <vector>

namespace tevo {
struct Session;
}

namespace tevo::page {

// The parameter text in force: the text of the parameter file when
// "PARAMETER TABLE" is 1 ("Fileを使う") and the file has one; else the
// "PARA TABLE" lines of the settings ("Listを使う"), else the text of the
// parameter file, else the built-in list. Lines are joined by CR LF.
// A line is "TAG|caption|unit": the parameter's tag (OBNUC, OBFRQ, SCANS,
// DFILE for the file, ...), the caption printed before the value (the tag
// when empty) and a unit written behind it (" MHz", " Hz", ...). A line
// whose first field is no known tag is printed as it stands.
std::string Parameter_Text(const Session& s);

// The value of a parameter by its tag as the page prints it; false for a
// tag the data set does not have.
bool Parameter_Value(const Session& s, const std::string& tag, std::string& value);

struct Parameter_Row {
  std::string caption;  // plain text
  std::string value;  // plain text with its unit; empty for a line as it stands
};
std::vector<Parameter_Row> Parameter_Rows(const Session& s);

// One line of a parameter text split into its three fields, as the list
// editor shows it.
struct Parameter_Line {
  std::string tag, caption, unit;
  bool operator==(const Parameter_Line&) const = default;
};
std::vector<Parameter_Line> Parameter_Lines(const std::string& text);
// The lines joined back by CR LF; empty lines are dropped, and empty fields
// at a line's end are left off.
std::string Parameter_Lines_Text(const std::vector<Parameter_Line>& lines);
// The tags a line may name, and the units it may append.
std::vector<std::string> Parameter_Tags();
const std::vector<std::string>& Parameter_Units();

// The text of the parameter file in force, as its editor opens it: the
// file's lines joined by CR LF, or the parameter text in force when there
// is no file yet.
std::string Parameter_File_Text(const Session& s);
// Writes the text to the parameter file in force (Shift-JIS, CR LF; an old
// file survives a failed write) and reads it back as the default text.
// Returns 0 written, -1 after the disk message.
int Save_Parameter_File(Session& s, const std::string& text);

}  // namespace tevo::page
