// The text of the parameter block on the page: which parameters, under
// which captions, with which units, and their values for the data set.
#pragma once

#include <string>
#include <vector>

namespace tevo {
struct Session;
}

namespace tevo::page {

// The parameter text in force: the "PARA TABLE" lines of the settings, else
// the text of "1D.prt", else the built-in list. Lines are joined by CR LF.
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

}  // namespace tevo::page
